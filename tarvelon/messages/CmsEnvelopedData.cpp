// EnvelopedData and its key-transport recipients (RFC 5652 6): the descriptors and the accessors
// of single fields. Nothing is encrypted here; the octets the caller's provider made are stored as
// given. Originator certificates and CRLs and the recipient identifier are the SignedData shapes,
// shared through the cms:: helpers.
#include "tarvelon/messages/Cms.h"
#include "tarvelon/messages/Enveloped.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/enveloped.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CmsEnvelopedData)

namespace tv::desc {
namespace {

// OriginatorInfo ::= SEQUENCE {                                       (RFC 5652 6.1)
enum class OriginatorInfoSlot : uint32_t { kCerts, kCrls, kCount };
constexpr auto kOriginatorInfoParts = Slots<OriginatorInfoSlot>({
    {OriginatorInfoSlot::kCerts, &kCertificateSet},        // certs  [0] IMPLICIT CertificateSet OPTIONAL
    {OriginatorInfoSlot::kCrls, &kRevocationInfoChoices},  // crls   [1] IMPLICIT RevocationInfoChoices OPTIONAL
});
constexpr Asn1Descriptor kOriginatorInfo = Implicit(0, Optional(Sequence(kOriginatorInfoParts)));

// KeyTransRecipientInfo ::= SEQUENCE {                                (RFC 5652 6.2.1)
enum class KeyTransSlot : uint32_t { kVersion, kRid, kKeyEncryptionAlgorithm, kEncryptedKey, kCount };
constexpr auto kKeyTransParts = Slots<KeyTransSlot>({
    {KeyTransSlot::kVersion, &kInteger},                            // version                 CMSVersion
    {KeyTransSlot::kRid, &kCmsIdentifier},                          // rid                     RecipientIdentifier
    {KeyTransSlot::kKeyEncryptionAlgorithm, &kAlgorithmIdentifier}, // keyEncryptionAlgorithm  KeyEncryptionAlgorithmIdentifier
    {KeyTransSlot::kEncryptedKey, &kOctetString},                   // encryptedKey            EncryptedKey
});

}  // namespace

constinit const Asn1Descriptor kKeyTrans = Sequence(kKeyTransParts);

namespace {

// The other recipient records are kept as their complete elements.
constexpr Asn1Descriptor kKeyAgree = Implicit(1, ConstructedAny());
constexpr Asn1Descriptor kKek = Implicit(2, ConstructedAny());
constexpr Asn1Descriptor kPassword = Implicit(3, ConstructedAny());
constexpr Asn1Descriptor kOtherRecipient = Implicit(4, ConstructedAny());

// RecipientInfo ::= CHOICE {                                          (RFC 5652 6.2)
enum class RecipientKind : uint32_t { kKeyTrans, kKeyAgree, kKek, kPassword, kOther, kCount };
constexpr auto kRecipientInfoAlternatives = Slots<RecipientKind>({
    {RecipientKind::kKeyTrans, &kKeyTrans},        // ktri   KeyTransRecipientInfo
    {RecipientKind::kKeyAgree, &kKeyAgree},        // kari   [1] KeyAgreeRecipientInfo
    {RecipientKind::kKek, &kKek},                  // kekri  [2] KEKRecipientInfo
    {RecipientKind::kPassword, &kPassword},        // pwri   [3] PasswordRecipientinfo
    {RecipientKind::kOther, &kOtherRecipient},     // ori    [4] OtherRecipientInfo
});
constexpr Asn1Descriptor kRecipientInfo = Choice(kRecipientInfoAlternatives);
constexpr Asn1Descriptor kRecipientInfos = SetOf<&kRecipientInfo>();

// EncryptedContentInfo ::= SEQUENCE {                                 (RFC 5652 6.1)
enum class EncryptedContentInfoSlot : uint32_t { kContentType, kContentEncryptionAlgorithm, kEncryptedContent, kCount };
constexpr Asn1Descriptor kEncryptedContent = Implicit(0, Optional(kOctetString));
constexpr auto kEncryptedContentInfoParts = Slots<EncryptedContentInfoSlot>({
    {EncryptedContentInfoSlot::kContentType, &kOid},                                 // contentType                 ContentType
    {EncryptedContentInfoSlot::kContentEncryptionAlgorithm, &kAlgorithmIdentifier},  // contentEncryptionAlgorithm  ContentEncryptionAlgorithmIdentifier
    {EncryptedContentInfoSlot::kEncryptedContent, &kEncryptedContent},               // encryptedContent            [0] IMPLICIT EncryptedContent OPTIONAL
});
constexpr Asn1Descriptor kEncryptedContentInfo = Sequence(kEncryptedContentInfoParts);
constexpr Asn1Descriptor kUnprotectedAttrs = Implicit(1, Optional(SetOf<&kAttribute>()));

// EnvelopedData ::= SEQUENCE {                                        (RFC 5652 6.1)
enum class EnvelopedDataSlot : uint32_t {
    kVersion, kOriginatorInfo, kRecipientInfos, kEncryptedContentInfo, kUnprotectedAttrs, kCount
};
constexpr auto kEnvelopedDataParts = Slots<EnvelopedDataSlot>({
    {EnvelopedDataSlot::kVersion, &kInteger},                           // version               CMSVersion
    {EnvelopedDataSlot::kOriginatorInfo, &kOriginatorInfo},             // originatorInfo        [0] IMPLICIT OriginatorInfo OPTIONAL
    {EnvelopedDataSlot::kRecipientInfos, &kRecipientInfos},             // recipientInfos        RecipientInfos
    {EnvelopedDataSlot::kEncryptedContentInfo, &kEncryptedContentInfo}, // encryptedContentInfo  EncryptedContentInfo
    {EnvelopedDataSlot::kUnprotectedAttrs, &kUnprotectedAttrs},         // unprotectedAttrs      [1] IMPLICIT UnprotectedAttributes OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kEnvelopedData = Sequence(kEnvelopedDataParts);

}  // namespace tv::desc

namespace tv {
namespace {

using namespace desc;
using D = EnvelopedDataSlot;
using O = OriginatorInfoSlot;
using C = EncryptedContentInfoSlot;
using K = KeyTransSlot;

constinit const Family kEnvelopedDataFamily{&kEnvelopedData, Module::CmsEnvelopedData, 1};
constinit const Family kKeyTransFamily{&kKeyTrans, Module::CmsEnvelopedData, 1};
constinit const Family kRecipientInfosFamily{&kRecipientInfos, Module::CmsEnvelopedData, 0};
constinit const Family kElementsFamily{&kCertificateSet, Module::CmsEnvelopedData, 0};

// The certificate or CRL set slot of originatorInfo, making originatorInfo first when it is absent.
uint32_t OriginatorSet(CmsEnvelopedData* envelopedData, O which, void*** out) noexcept {
    void** info = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &info, D::kOriginatorInfo));
    if (!*info) {
        OwnedValue fresh(Component(kEnvelopedData, D::kOriginatorInfo));
        TV_TRY(NewStructure(TV_SITE, *Component(kEnvelopedData, D::kOriginatorInfo), fresh));
        *info = fresh.Release();
    }
    *out = &Slot(*info, which);
    return TV_OK;
}

// The set of originatorInfo for readers: null when originatorInfo or the set is absent.
uint32_t OriginatorSet(const CmsEnvelopedData* envelopedData, O which, const void** out) noexcept {
    const void* info = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &info, D::kOriginatorInfo));
    *out = info ? Slot(info, which) : nullptr;
    return TV_OK;
}

// originatorInfo itself stays: a message whose sets are both removed writes an empty [0].
uint32_t RemoveOriginatorSet(CmsEnvelopedData* envelopedData, O which) noexcept {
    void** info = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &info, D::kOriginatorInfo));
    if (*info) cms::RemoveElements(&Slot(*info, which));
    return TV_OK;
}

// The recipient identifier's CHOICE value: 32 without a recipient, 311 without the choice.
uint32_t RidOf(const KeyTrans* keyTrans, Asn1ChoiceValue** out) noexcept {
    const void* rid = nullptr;
    TV_TRY(WalkPresent(TV_SITE, keyTrans, &rid, K::kRid));
    *out = static_cast<Asn1ChoiceValue*>(const_cast<void*>(rid));
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- EnvelopedData -----------------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(CmsEnvelopedData, kEnvelopedDataFamily)

extern "C" TV_API uint32_t SetCmsEnvelopedDataVersion(CmsEnvelopedData* envelopedData, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kVersion));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataVersion(const CmsEnvelopedData* envelopedData, uint32_t* outVersion) {
    const void* version = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &version, D::kVersion));
    return GetNumber(TV_SITE, version, outVersion);
}

// An unknown kind is 306 here where SignedData says 32: both are kept as callers know them.
extern "C" TV_API uint32_t AddCmsEnvelopedDataEncodedCertificate(CmsEnvelopedData* envelopedData, uint32_t certKind,
                                                                const uint8_t* in, uint32_t inLen) {
    if (!envelopedData || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCerts, &set));
    return cms::AddCertificate(kElementsFamily, set, certKind, in, inLen, TV_ERR_NO_ALTERNATIVE);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataCertificatesCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount) {
    const void* set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCerts, &set));
    return cms::CountElements(kElementsFamily, set, outCount);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataEncodedCertificate(const CmsEnvelopedData* envelopedData, uint32_t index,
                                                                uint32_t* outCertKind, uint8_t* out, uint32_t* outLen) {
    const void* set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCerts, &set));
    return cms::ReadCertificate(kElementsFamily, set, index, outCertKind, out, outLen);
}

extern "C" TV_API uint32_t RemoveCmsEnvelopedDataCertificates(CmsEnvelopedData* envelopedData) {
    return RemoveOriginatorSet(envelopedData, O::kCerts);
}

extern "C" TV_API uint32_t AddCmsEnvelopedDataEncodedCrl(CmsEnvelopedData* envelopedData, uint32_t crlKind,
                                                        const uint8_t* in, uint32_t inLen) {
    if (!envelopedData || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCrls, &set));
    return cms::AddCrl(kElementsFamily, set, crlKind, in, inLen, TV_ERR_NO_ALTERNATIVE);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataCrlsCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount) {
    const void* set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCrls, &set));
    return cms::CountElements(kElementsFamily, set, outCount);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataEncodedCrl(const CmsEnvelopedData* envelopedData, uint32_t index,
                                                        uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen) {
    const void* set = nullptr;
    TV_TRY(OriginatorSet(envelopedData, O::kCrls, &set));
    return cms::ReadCrl(kElementsFamily, set, index, outCrlKind, out, outLen);
}

extern "C" TV_API uint32_t RemoveCmsEnvelopedDataCrls(CmsEnvelopedData* envelopedData) {
    return RemoveOriginatorSet(envelopedData, O::kCrls);
}

// The value becomes the recipient's only once it is in the SET; after a failure it is still the
// caller's.
extern "C" TV_API uint32_t AddCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t recipientKind,
                                                           void* value) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kRecipientInfos));
    if (!value || recipientKind < 1 || recipientKind > SlotCount<RecipientKind>) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1ChoiceValue* recipient = nullptr;
    TV_TRY(NewChoice(static_cast<int32_t>(recipientKind - 1), value, &recipient));
    OwnedValue held(&kRecipientInfo, recipient);
    const uint32_t rc = AppendToSlotList(kRecipientInfosFamily, slot, held);
    if (rc != TV_OK) {
        held.Release();
        recipient->value = nullptr;  // the caller's again
        FreeAsn1Object(&kRecipientInfo, recipient);
    }
    return rc;
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataRecipientInfosCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &list, D::kRecipientInfos));
    return SlotListCount(TV_SITE, kRecipientInfosFamily, list, outCount);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t index, void** outValue,
                                                           uint32_t* outRecipientKind) {
    if (!outValue || !outRecipientKind) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &list, D::kRecipientInfos));
    Asn1ChoiceValue* recipient = nullptr;
    TV_TRY(SlotListElement(TV_SITE, kRecipientInfosFamily, list, index, &recipient));
    const bool known = recipient->index >= 0 && static_cast<uint32_t>(recipient->index) < SlotCount<RecipientKind>;
    *outRecipientKind = known ? static_cast<uint32_t>(recipient->index) + 1 : 0;
    *outValue = recipient->value;
    return TV_OK;
}

extern "C" TV_API uint32_t RemoveCmsEnvelopedDataRecipientInfos(CmsEnvelopedData* envelopedData) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kRecipientInfos));
    ListClear(static_cast<Asn1List*>(*slot), &kRecipientInfo);
    return TV_OK;
}

extern "C" TV_API uint32_t SetCmsEnvelopedDataEncryptedContentTypeOid(CmsEnvelopedData* envelopedData, const uint8_t* inOid) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kEncryptedContentInfo, C::kContentType));
    return SetOid(TV_SITE, slot, inOid);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataEncryptedContentTypeOid(const CmsEnvelopedData* envelopedData, uint8_t* outOid,
                                                                     uint32_t* outOidLen) {
    const void* oid = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &oid, D::kEncryptedContentInfo, C::kContentType));
    return GetOid(TV_SITE, oid, outOid, outOidLen);
}

extern "C" TV_API uint32_t SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(CmsEnvelopedData* envelopedData,
                                                                                        const uint8_t* inOid,
                                                                                        const uint8_t* inParams,
                                                                                        uint32_t inParamsLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kEncryptedContentInfo, C::kContentEncryptionAlgorithm));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(const CmsEnvelopedData* envelopedData,
                                                                                        uint8_t* outOid, uint32_t* outOidLen,
                                                                                        uint8_t* outParams,
                                                                                        uint32_t* outParamsLen) {
    const void* algorithm = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &algorithm, D::kEncryptedContentInfo, C::kContentEncryptionAlgorithm));
    return GetAlgorithmOidAndParameters(algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetCmsEnvelopedDataEncryptedContent(CmsEnvelopedData* envelopedData, const uint8_t* in,
                                                              uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kEncryptedContentInfo, C::kEncryptedContent));
    return ReplaceOptionalOctets(slot, in, inLen);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataEncryptedContent(const CmsEnvelopedData* envelopedData, uint8_t* out,
                                                              uint32_t* outLen) {
    const void* content = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &content, D::kEncryptedContentInfo, C::kEncryptedContent));
    return GetOptionalLeaf(TV_SITE, content, out, outLen);
}

extern "C" TV_API uint32_t GetCmsEnvelopedDataUnprotectedAttributes(CmsEnvelopedData* envelopedData,
                                                                   RsaAttributes** outAttributes) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, envelopedData, &slot, D::kUnprotectedAttrs));
    if (!outAttributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAttributes = AttributesHandleOfSlot(slot);
    return TV_OK;
}

// ---- KeyTrans -----------------------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(KeyTrans, kKeyTransFamily)

extern "C" TV_API uint32_t SetKeyTransVersion(KeyTrans* keyTrans, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &slot, K::kVersion));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetKeyTransVersion(const KeyTrans* keyTrans, uint32_t* outVersion) {
    const void* version = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &version, K::kVersion));
    return GetNumber(TV_SITE, version, outVersion);
}

extern "C" TV_API uint32_t SetKeyTransRecipientIdentifierIssuerAndSerialNumber(KeyTrans* keyTrans, const X509Name* issuer,
                                                                              const uint8_t* inSerial, uint32_t inSerialLen) {
    Asn1ChoiceValue* rid = nullptr;
    TV_TRY(RidOf(keyTrans, &rid));
    return cms::SetIssuerAndSerialNumber(kKeyTransFamily, rid, issuer, inSerial, inSerialLen);
}

extern "C" TV_API uint32_t SetKeyTransRecipientIdentifierSubjectKeyIdentifier(KeyTrans* keyTrans, const uint8_t* inKeyId,
                                                                             uint32_t inKeyIdLen) {
    Asn1ChoiceValue* rid = nullptr;
    TV_TRY(RidOf(keyTrans, &rid));
    return cms::SetSubjectKeyIdentifier(kKeyTransFamily, rid, inKeyId, inKeyIdLen);
}

extern "C" TV_API uint32_t GetKeyTransRecipientIdentifier(KeyTrans* keyTrans, X509Name** outIssuer, uint8_t* outSerial,
                                                         uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen) {
    Asn1ChoiceValue* rid = nullptr;
    TV_TRY(RidOf(keyTrans, &rid));
    return cms::GetIdentifier(kKeyTransFamily, rid, outIssuer, outSerial, outSerialLen, outKeyId, outKeyIdLen);
}

extern "C" TV_API uint32_t SetKeyTransKeyEncryptionAlgorithmOidAndParameters(KeyTrans* keyTrans, const uint8_t* inOid,
                                                                            const uint8_t* inParams, uint32_t inParamsLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &slot, K::kKeyEncryptionAlgorithm));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetKeyTransKeyEncryptionAlgorithmOidAndParameters(const KeyTrans* keyTrans, uint8_t* outOid,
                                                                            uint32_t* outOidLen, uint8_t* outParams,
                                                                            uint32_t* outParamsLen) {
    const void* algorithm = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &algorithm, K::kKeyEncryptionAlgorithm));
    return GetAlgorithmOidAndParameters(algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetKeyTransEncryptedKey(KeyTrans* keyTrans, const uint8_t* in, uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &slot, K::kEncryptedKey));
    if (!in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetOrCreatePrimitive(slot, ASN1_OCTET_STRING, in, inLen);
}

extern "C" TV_API uint32_t GetKeyTransEncryptedKey(const KeyTrans* keyTrans, uint8_t* out, uint32_t* outLen) {
    const void* key = nullptr;
    TV_TRY(Walk(TV_SITE, keyTrans, &key, K::kEncryptedKey));
    return GetLeaf(TV_SITE, key, out, outLen);
}
