// SignedData and SignerInfo (RFC 5652 5): the descriptors and the accessors of single fields. The
// certificates and CRLs a SignedData carries stay their encoded elements: the container neither
// needs nor checks their insides, and a caller who does decodes them with the certificate and CRL
// families.
#include <cstring>

#include "tarvelon/messages/Cms.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CmsProperties)

namespace tv::desc {
namespace {

constexpr Asn1Descriptor kEContent = Explicit(0, Optional(kOctetString));

// EncapsulatedContentInfo ::= SEQUENCE {                              (RFC 5652 5.2)
constexpr auto kEncapsulatedContentInfoParts = Slots<EncapsulatedContentInfoSlot>({
    {EncapsulatedContentInfoSlot::kEContentType, &kOid},     // eContentType  ContentType
    {EncapsulatedContentInfoSlot::kEContent, &kEContent},    // eContent      [0] EXPLICIT OCTET STRING OPTIONAL
});
constexpr Asn1Descriptor kEncapsulatedContentInfo = Sequence(kEncapsulatedContentInfoParts);

// IssuerAndSerialNumber ::= SEQUENCE {                                (RFC 5652 10.2.4)
constexpr auto kIssuerAndSerialNumberParts = Slots<IssuerAndSerialNumberSlot>({
    {IssuerAndSerialNumberSlot::kIssuer, &kX509Name},         // issuer        Name
    {IssuerAndSerialNumberSlot::kSerialNumber, &kInteger},    // serialNumber  CertificateSerialNumber
});
constexpr Asn1Descriptor kIssuerAndSerialNumber = Sequence(kIssuerAndSerialNumberParts);
constexpr Asn1Descriptor kSubjectKeyIdentifier = Implicit(0, kOctetString);

// SignerIdentifier ::= CHOICE {                                       (RFC 5652 5.3)
constexpr auto kSignerIdentifierAlternatives = Slots<SignerIdentifierKind>({
    {SignerIdentifierKind::kIssuerAndSerialNumber, &kIssuerAndSerialNumber},  // issuerAndSerialNumber  IssuerAndSerialNumber
    {SignerIdentifierKind::kSubjectKeyIdentifier, &kSubjectKeyIdentifier},    // subjectKeyIdentifier   [0] SubjectKeyIdentifier
});

}  // namespace

constinit const Asn1Descriptor kCmsIdentifier = Choice(kSignerIdentifierAlternatives);

namespace {

constexpr Asn1Descriptor kSignedAttrs = Implicit(0, Optional(SetOf<&kAttribute>()));
constexpr Asn1Descriptor kUnsignedAttrs = Implicit(1, Optional(SetOf<&kAttribute>()));

// SignerInfo ::= SEQUENCE {                                           (RFC 5652 5.3)
constexpr auto kSignerInfoParts = Slots<SignerInfoSlot>({
    {SignerInfoSlot::kVersion, &kInteger},                          // version             CMSVersion
    {SignerInfoSlot::kSid, &kCmsIdentifier},                        // sid                 SignerIdentifier
    {SignerInfoSlot::kDigestAlgorithm, &kAlgorithmIdentifier},      // digestAlgorithm     DigestAlgorithmIdentifier
    {SignerInfoSlot::kSignedAttrs, &kSignedAttrs},                  // signedAttrs         [0] IMPLICIT SignedAttributes OPTIONAL
    {SignerInfoSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},   // signatureAlgorithm  SignatureAlgorithmIdentifier
    {SignerInfoSlot::kSignature, &kOctetString},                    // signature           SignatureValue
    {SignerInfoSlot::kUnsignedAttrs, &kUnsignedAttrs},              // unsignedAttrs       [1] IMPLICIT UnsignedAttributes OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kSignerInfo = Sequence(kSignerInfoParts);

namespace {

constexpr Asn1Descriptor kDigestAlgorithms = SetOf<&kAlgorithmIdentifier>();
constexpr Asn1Descriptor kSignerInfos = SetOf<&kSignerInfo>();

}  // namespace

// CertificateSet ::= SET OF CertificateChoices
constinit const Asn1Descriptor kCertificateSet = Implicit(0, Optional(SetOf<&kAny>()));
// RevocationInfoChoices ::= SET OF RevocationInfoChoice, where
// RevocationInfoChoice ::= CHOICE { crl CertificateList, other [1] IMPLICIT OtherRevocationInfoFormat }
constinit const Asn1Descriptor kRevocationInfoChoices = Implicit(1, Optional(SetOf<&kAny>()));

namespace {

// SignedData ::= SEQUENCE {                                           (RFC 5652 5.1)
constexpr auto kSignedDataParts = Slots<SignedDataSlot>({
    {SignedDataSlot::kVersion, &kInteger},                               // version           CMSVersion
    {SignedDataSlot::kDigestAlgorithms, &kDigestAlgorithms},             // digestAlgorithms  SET OF DigestAlgorithmIdentifier
    {SignedDataSlot::kEncapContentInfo, &kEncapsulatedContentInfo},      // encapContentInfo  EncapsulatedContentInfo
    {SignedDataSlot::kCertificates, &kCertificateSet},                   // certificates      [0] IMPLICIT CertificateSet OPTIONAL
    {SignedDataSlot::kCrls, &kRevocationInfoChoices},                    // crls              [1] IMPLICIT RevocationInfoChoices OPTIONAL
    {SignedDataSlot::kSignerInfos, &kSignerInfos},                       // signerInfos       SET OF SignerInfo
});

}  // namespace

constinit const Asn1Descriptor kSignedData = Sequence(kSignedDataParts);
constinit const Asn1Descriptor kSignedDataContent = Explicit(0, Sequence(kSignedDataParts));

}  // namespace tv::desc

namespace tv {

constinit const Family kSignedDataFamily{&desc::kSignedData, Module::CmsProperties, 1};
constinit const Family kSignerInfoFamily{&desc::kSignerInfo, Module::CmsProperties, 1};

namespace {

using namespace desc;
using D = SignedDataSlot;
using E = EncapsulatedContentInfoSlot;
using I = SignerInfoSlot;
using A = IssuerAndSerialNumberSlot;

constinit const Family kDigestAlgorithmsFamily{&kDigestAlgorithms, Module::CmsProperties, 0};
constinit const Family kSignerInfosFamily{&kSignerInfos, Module::CmsProperties, 0};
constinit const Family kElementsFamily{&kCertificateSet, Module::CmsProperties, 0};

// The signer identifier's CHOICE value: 32 without a signer, 311 without the choice.
uint32_t SidOf(const CmsSignerInfo* signerInfo, Asn1ChoiceValue** out) noexcept {
    const void* sid = nullptr;
    TV_TRY(WalkPresent(TV_SITE, signerInfo, &sid, I::kSid));
    *out = static_cast<Asn1ChoiceValue*>(const_cast<void*>(sid));
    return TV_OK;
}

}  // namespace

// ---- shared with EnvelopedData and KeyTrans ---------------------------------------------------------

namespace cms {
namespace {

// The kind a stored element's identifier octets name: `constructedContextTags` maps the context tags
// first, first + 1, ... of the constructed form to the kinds 2, 3, ...; a constructed SEQUENCE is
// kind 1, anything else 0.
uint32_t ElementKind(const Asn1Primitive* element, uint32_t constructedContextTags, uint32_t firstContextTag) noexcept {
    Header h;
    if (ParseHeader(element->content, element->length, &h) != TV_OK || !h.constructed) return 0;
    if (h.tagClass == ASN1_CLASS_UNIVERSAL && h.tag == ASN1_SEQUENCE) return 1;
    if (h.tagClass == ASN1_CLASS_CONTEXT && h.tag >= firstContextTag && h.tag < firstContextTag + constructedContextTags)
        return 2 + h.tag - firstContextTag;
    return 0;
}

uint32_t ReadElement(const Family& f, const void* set, uint32_t index, uint32_t contextTags, uint32_t firstContextTag,
                     uint32_t* outKind, uint8_t* out, uint32_t* outLen) noexcept {
    const auto* list = static_cast<const Asn1List*>(set);
    if (!list || index >= list->count) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    const auto* element = static_cast<const Asn1Primitive*>(list->items[index]);
    if (outKind) *outKind = ElementKind(element, contextTags, firstContextTag);
    if (outLen) return GetLeaf(TV_FAMILY_SITE(f), element, out, outLen);
    return out ? Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT) : uint32_t{TV_OK};
}

// The list in an optional SET slot, made on first use.
uint32_t SetInSlot(const Family& f, void** slot, Asn1List** out) noexcept {
    if (!*slot && !(*slot = ListCreate())) return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    *out = static_cast<Asn1List*>(*slot);
    return TV_OK;
}

// The identifier octet each certificate kind 1..5 imposes (RFC 5652 10.2.2 CertificateChoices).
constexpr uint8_t kCertificateKindOctet[] = {0x30, 0xA0, 0xA1, 0xA2, 0xA3};

}  // namespace

// The caller's element with its identifier octet replaced by the kind's; the length octets and the
// contents are kept as given. The set exists before the kind is looked at.
uint32_t AddCertificate(const Family& f, void** slot, uint32_t kind, const uint8_t* in, uint32_t inLen,
                        uint32_t unknownKind) noexcept {
    if (!in) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    Asn1List* list = nullptr;
    TV_TRY(SetInSlot(f, slot, &list));
    if (kind < 1 || kind > 5) return Fail(TV_FAMILY_SITE(f), unknownKind);
    OwnedValue element(&kAny);
    TV_TRY(SetAny(TV_FAMILY_SITE(f), element.Out(), in, inLen));
    auto* stored = element.as<Asn1Primitive>();
    stored->content[0] = kCertificateKindOctet[kind - 1];
    stored->word = stored->content[0];
    for (uint32_t i = 0; i < list->count; ++i) {
        const auto* present = static_cast<const Asn1Primitive*>(list->items[i]);
        if (present->length == stored->length && std::memcmp(present->content, stored->content, stored->length) == 0)
            return TV_OK;
    }
    return ListAppendT(f, list, element);
}

// CRLs are appended as often as they come, without the certificates' duplicate check: callers have
// always been able to rely on the count growing by one.
uint32_t AddCrl(const Family& f, void** slot, uint32_t kind, const uint8_t* in, uint32_t inLen, uint32_t unknownKind) noexcept {
    if (!in) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    Asn1List* list = nullptr;
    TV_TRY(SetInSlot(f, slot, &list));
    OwnedValue element(&kAny, New<Asn1Primitive>());
    if (!element.get()) return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    auto* stored = element.as<Asn1Primitive>();
    if (kind == TV_CMS_CRL_CERTIFICATE_LIST) {
        TV_TRY(SetAnyEncoding(stored, in, inLen));
    } else if (kind == TV_CMS_CRL_OTHER) {
        // other [1] IMPLICIT OtherRevocationInfoFormat: the caller gives the SEQUENCE's contents
        TV_TRY(SetAnyParts(stored, ASN1_CLASS_CONTEXT, ASN1_CONSTRUCTED_FORM, 1, 0xA1, in, inLen));
    } else {
        return Fail(TV_FAMILY_SITE(f), unknownKind);
    }
    return ListAppendT(f, list, element);
}

uint32_t ReadCertificate(const Family& f, const void* set, uint32_t index, uint32_t* outKind, uint8_t* out,
                         uint32_t* outLen) noexcept {
    return ReadElement(f, set, index, 4, 0, outKind, out, outLen);
}

uint32_t ReadCrl(const Family& f, const void* set, uint32_t index, uint32_t* outKind, uint8_t* out,
                 uint32_t* outLen) noexcept {
    return ReadElement(f, set, index, 1, 1, outKind, out, outLen);
}

uint32_t CountElements(const Family& f, const void* set, uint32_t* outCount) noexcept {
    if (!outCount) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    *outCount = set ? static_cast<const Asn1List*>(set)->count : 0;
    return TV_OK;
}

void RemoveElements(void** slot) noexcept {
    FreeAsn1Object(&kCertificateSet, *slot);
    *slot = nullptr;
}

// The serial is stored as the caller's INTEGER contents, not normalised: it must match the
// certificate's serial octet for octet.
uint32_t SetIssuerAndSerialNumber(const Family& f, Asn1ChoiceValue* id, const X509Name* issuer, const uint8_t* serial,
                                  uint32_t serialLen) noexcept {
    if (!issuer || !serial) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (id->index == Index(SignerIdentifierKind::kSubjectKeyIdentifier)) TV_TRY(ReleaseChoiceAlternative(&kCmsIdentifier, id));
    if (!id->value) {
        OwnedValue fresh(&kIssuerAndSerialNumber);
        TV_TRY(NewStructure(TV_FAMILY_SITE(f), kIssuerAndSerialNumber, fresh));
        id->value = fresh.Release();
    }
    id->index = Index(SignerIdentifierKind::kIssuerAndSerialNumber);
    TV_TRY(SetNameCopy(&Slot(id->value, A::kIssuer), issuer));
    return SetOrCreatePrimitive(&Slot(id->value, A::kSerialNumber), ASN1_INTEGER, serial, serialLen);
}

uint32_t SetSubjectKeyIdentifier(const Family& f, Asn1ChoiceValue* id, const uint8_t* keyId, uint32_t keyIdLen) noexcept {
    if (!keyId) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    OwnedValue stored(&kOctetString);
    TV_TRY(SetOrCreatePrimitive(stored.Out(), ASN1_OCTET_STRING, keyId, keyIdLen));
    if (id->value) TV_TRY(ReleaseChoiceAlternative(&kCmsIdentifier, id));
    id->index = Index(SignerIdentifierKind::kSubjectKeyIdentifier);
    id->value = stored.Release();
    return TV_OK;
}

// Only the outputs of the alternative present are filled; the other's are cleared where given.
uint32_t GetIdentifier(const Family& f, Asn1ChoiceValue* id, X509Name** outIssuer, uint8_t* outSerial,
                       uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen) noexcept {
    switch (id->index) {
        case Index(SignerIdentifierKind::kSubjectKeyIdentifier):
            if (outIssuer) *outIssuer = nullptr;
            if (outSerialLen) *outSerialLen = 0;
            return GetLeaf(TV_FAMILY_SITE(f), id->value, outKeyId, outKeyIdLen);
        case Index(SignerIdentifierKind::kIssuerAndSerialNumber): {
            if (outKeyIdLen) *outKeyIdLen = 0;
            if (!outIssuer) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
            if (!id->value) {
                OwnedValue fresh(&kIssuerAndSerialNumber);
                TV_TRY(NewStructure(TV_FAMILY_SITE(f), kIssuerAndSerialNumber, fresh));
                id->value = fresh.Release();
            }
            TV_TRY(NameInSlot(TV_FAMILY_SITE(f), &Slot(id->value, A::kIssuer), outIssuer));
            return GetLeaf(TV_FAMILY_SITE(f), Slot(id->value, A::kSerialNumber), outSerial, outSerialLen);
        }
        default:
            return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_ALTERNATIVE);
    }
}

}  // namespace cms
}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- SignedData -------------------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(CmsSignedData, kSignedDataFamily)

extern "C" TV_API uint32_t CreateCmsSignedDataCopy(const CmsSignedData* signedData, CmsSignedData** outSignedData) {
    return CopyT(kSignedDataFamily, signedData, outSignedData);
}

extern "C" TV_API uint32_t SetCmsSignedDataVersion(CmsSignedData* signedData, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kVersion));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetCmsSignedDataVersion(const CmsSignedData* signedData, uint32_t* outVersion) {
    const void* version = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &version, D::kVersion));
    return GetNumber(TV_SITE, version, outVersion);
}

// Every signer's digest algorithm is listed once, so a second signer with the same algorithm adds
// nothing (the equality is of the encodings, parameters included).
extern "C" TV_API uint32_t AddCmsSignedDataDigestAlgorithmOidAndParameters(CmsSignedData* signedData, const uint8_t* inOid,
                                                                          const uint8_t* inParams, uint32_t inParamsLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kDigestAlgorithms));
    if (!inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue algorithm(&kAlgorithmIdentifier);
    TV_TRY(SetAlgorithmOidAndParameters(algorithm.Out(), inOid, inParams, inParamsLen));
    if (!*slot && !(*slot = ListCreate())) return TV_FAIL(TV_ERR_NO_MEMORY);
    const uint32_t rc = ListAppendUnique(static_cast<Asn1List*>(*slot), &kAlgorithmIdentifier, algorithm.get());
    if (rc == TV_ERR_DUPLICATE) return TV_OK;
    TV_TRY(rc);
    algorithm.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetCmsSignedDataDigestAlgorithmsCount(const CmsSignedData* signedData, uint32_t* outCount) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kDigestAlgorithms));
    return SlotListCount(TV_SITE, kDigestAlgorithmsFamily, list, outCount);
}

extern "C" TV_API uint32_t GetCmsSignedDataDigestAlgorithmOidAndParameters(const CmsSignedData* signedData, uint32_t index,
                                                                          uint8_t* outOid, uint32_t* outOidLen,
                                                                          uint8_t* outParams, uint32_t* outParamsLen) {
    if (!outOidLen || !outParamsLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kDigestAlgorithms));
    const void* algorithm = nullptr;
    TV_TRY(SlotListElement(TV_SITE, kDigestAlgorithmsFamily, list, index, &algorithm));
    return GetAlgorithmOidAndParameters(algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t ClearCmsSignedDataDigestAlgorithms(CmsSignedData* signedData) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kDigestAlgorithms));
    ListClear(static_cast<Asn1List*>(*slot), &kAlgorithmIdentifier);
    return TV_OK;
}

extern "C" TV_API uint32_t SetCmsSignedDataContentTypeOid(CmsSignedData* signedData, const uint8_t* inOid) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kEncapContentInfo, E::kEContentType));
    return SetOid(TV_SITE, slot, inOid);
}

extern "C" TV_API uint32_t GetCmsSignedDataContentTypeOid(const CmsSignedData* signedData, uint8_t* outOid,
                                                         uint32_t* outOidLen) {
    const void* oid = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &oid, D::kEncapContentInfo, E::kEContentType));
    return GetOid(TV_SITE, oid, outOid, outOidLen);
}

extern "C" TV_API uint32_t SetCmsSignedDataContent(CmsSignedData* signedData, const uint8_t* in, uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kEncapContentInfo, E::kEContent));
    return ReplaceOptionalOctets(slot, in, inLen);
}

extern "C" TV_API uint32_t GetCmsSignedDataContent(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen) {
    const void* content = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &content, D::kEncapContentInfo, E::kEContent));
    return GetOptionalLeaf(TV_SITE, content, out, outLen);
}

extern "C" TV_API uint32_t GetCmsSignedDataContentInfo(CmsSignedData* signedData, CmsEncapsulatedContentInfo** outContentInfo) {
    if (!outContentInfo) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* info = nullptr;
    TV_TRY(WalkPresent(TV_SITE, signedData, &info, D::kEncapContentInfo));
    *outContentInfo = static_cast<CmsEncapsulatedContentInfo*>(const_cast<void*>(info));
    return TV_OK;
}

extern "C" TV_API uint32_t AddCmsSignedDataEncodedCertificate(CmsSignedData* signedData, uint32_t certKind,
                                                             const uint8_t* in, uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kCertificates));
    return cms::AddCertificate(kElementsFamily, slot, certKind, in, inLen, TV_ERR_INVALID_ARGUMENT);
}

extern "C" TV_API uint32_t GetCmsSignedDataCertificatesCount(const CmsSignedData* signedData, uint32_t* outCount) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kCertificates));
    return cms::CountElements(kElementsFamily, list, outCount);
}

extern "C" TV_API uint32_t GetCmsSignedDataEncodedCertificate(const CmsSignedData* signedData, uint32_t index,
                                                             uint32_t* outCertKind, uint8_t* out, uint32_t* outLen) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kCertificates));
    return cms::ReadCertificate(kElementsFamily, list, index, outCertKind, out, outLen);
}

extern "C" TV_API uint32_t RemoveCmsSignedDataCertificates(CmsSignedData* signedData) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kCertificates));
    cms::RemoveElements(slot);
    return TV_OK;
}

extern "C" TV_API uint32_t AddCmsSignedDataEncodedCrl(CmsSignedData* signedData, uint32_t crlKind, const uint8_t* in,
                                                     uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kCrls));
    return cms::AddCrl(kElementsFamily, slot, crlKind, in, inLen, TV_ERR_INVALID_ARGUMENT);
}

extern "C" TV_API uint32_t GetCmsSignedDataCrlsCount(const CmsSignedData* signedData, uint32_t* outCount) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kCrls));
    return cms::CountElements(kElementsFamily, list, outCount);
}

extern "C" TV_API uint32_t GetCmsSignedDataEncodedCrl(const CmsSignedData* signedData, uint32_t index,
                                                     uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kCrls));
    return cms::ReadCrl(kElementsFamily, list, index, outCrlKind, out, outLen);
}

extern "C" TV_API uint32_t RemoveCmsSignedDataCrls(CmsSignedData* signedData) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kCrls));
    cms::RemoveElements(slot);
    return TV_OK;
}

extern "C" TV_API uint32_t AddCmsSignedDataSignerInfo(CmsSignedData* signedData, CmsSignerInfo** outSignerInfo) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kSignerInfos));
    if (!outSignerInfo) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue signer(&kSignerInfo);
    TV_TRY(CreateAsn1Object(&kSignerInfo, signer.Out(), 1));
    void* added = signer.get();
    TV_TRY(AppendToSlotList(kSignerInfosFamily, slot, signer));
    *outSignerInfo = static_cast<CmsSignerInfo*>(added);
    return TV_OK;
}

extern "C" TV_API uint32_t GetCmsSignedDataSignerInfosCount(const CmsSignedData* signedData, uint32_t* outCount) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kSignerInfos));
    return SlotListCount(TV_SITE, kSignerInfosFamily, list, outCount);
}

extern "C" TV_API uint32_t GetCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index, CmsSignerInfo** outSignerInfo) {
    const void* list = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &list, D::kSignerInfos));
    return SlotListElement(TV_SITE, kSignerInfosFamily, list, index, outSignerInfo);
}

extern "C" TV_API uint32_t DeleteCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kSignerInfos));
    if (!*slot) return TV_FAIL(TV_ERR_ABSENT);
    return ListRemoveT(kSignerInfosFamily, static_cast<Asn1List*>(*slot), index);
}

extern "C" TV_API uint32_t ClearCmsSignedDataSignerInfos(CmsSignedData* signedData) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signedData, &slot, D::kSignerInfos));
    ListClear(static_cast<Asn1List*>(*slot), &kSignerInfo);
    return TV_OK;
}

// ---- SignerInfo ---------------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateCmsSignerInfo(CmsSignerInfo** outSignerInfo) { return CreateT(kSignerInfoFamily, outSignerInfo); }
extern "C" TV_API uint32_t FreeCmsSignerInfo(CmsSignerInfo* signerInfo) { return FreeT(kSignerInfoFamily, signerInfo); }

extern "C" TV_API uint32_t SetCmsSignerInfoVersion(CmsSignerInfo* signerInfo, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kVersion));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetCmsSignerInfoVersion(const CmsSignerInfo* signerInfo, uint32_t* outVersion) {
    const void* version = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &version, I::kVersion));
    return GetNumber(TV_SITE, version, outVersion);
}

extern "C" TV_API uint32_t SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(CmsSignerInfo* signerInfo,
                                                                                const X509Name* issuer,
                                                                                const uint8_t* inSerial,
                                                                                uint32_t inSerialLen) {
    Asn1ChoiceValue* sid = nullptr;
    TV_TRY(SidOf(signerInfo, &sid));
    return cms::SetIssuerAndSerialNumber(kSignerInfoFamily, sid, issuer, inSerial, inSerialLen);
}

extern "C" TV_API uint32_t SetCmsSignerInfoSignerSubjectKeyIdentifier(CmsSignerInfo* signerInfo, const uint8_t* inKeyId,
                                                                     uint32_t inKeyIdLen) {
    Asn1ChoiceValue* sid = nullptr;
    TV_TRY(SidOf(signerInfo, &sid));
    return cms::SetSubjectKeyIdentifier(kSignerInfoFamily, sid, inKeyId, inKeyIdLen);
}

extern "C" TV_API uint32_t GetCmsSignerInfoSignerIdentifier(CmsSignerInfo* signerInfo, X509Name** outIssuer,
                                                           uint8_t* outSerial, uint32_t* outSerialLen, uint8_t* outKeyId,
                                                           uint32_t* outKeyIdLen) {
    Asn1ChoiceValue* sid = nullptr;
    TV_TRY(SidOf(signerInfo, &sid));
    return cms::GetIdentifier(kSignerInfoFamily, sid, outIssuer, outSerial, outSerialLen, outKeyId, outKeyIdLen);
}

extern "C" TV_API uint32_t SetCmsSignerInfoDigestAlgorithmOidAndParameters(CmsSignerInfo* signerInfo, const uint8_t* inOid,
                                                                          const uint8_t* inParams, uint32_t inParamsLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kDigestAlgorithm));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetCmsSignerInfoDigestAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo, uint8_t* outOid,
                                                                          uint32_t* outOidLen, uint8_t* outParams,
                                                                          uint32_t* outParamsLen) {
    const void* algorithm = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &algorithm, I::kDigestAlgorithm));
    return GetAlgorithmOidAndParameters(algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetCmsSignerInfoSignatureAlgorithmOidAndParameters(CmsSignerInfo* signerInfo,
                                                                             const uint8_t* inOid, const uint8_t* inParams,
                                                                             uint32_t inParamsLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kSignatureAlgorithm));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetCmsSignerInfoSignatureAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo,
                                                                             uint8_t* outOid, uint32_t* outOidLen,
                                                                             uint8_t* outParams, uint32_t* outParamsLen) {
    const void* algorithm = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &algorithm, I::kSignatureAlgorithm));
    return GetAlgorithmOidAndParameters(algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetCmsSignerInfoSignature(CmsSignerInfo* signerInfo, const uint8_t* in, uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kSignature));
    if (!in && inLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetOrCreatePrimitive(slot, ASN1_OCTET_STRING, in, inLen);
}

extern "C" TV_API uint32_t GetCmsSignerInfoSignature(const CmsSignerInfo* signerInfo, uint8_t* out, uint32_t* outLen) {
    const void* signature = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &signature, I::kSignature));
    return GetLeaf(TV_SITE, signature, out, outLen);
}

// The handles are the signer's own slots, so the attribute-list functions change the signer in place.
extern "C" TV_API uint32_t GetCmsSignerInfoSignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kSignedAttrs));
    if (!outAttributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAttributes = AttributesHandleOfSlot(slot);
    return TV_OK;
}

extern "C" TV_API uint32_t GetCmsSignerInfoUnsignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &slot, I::kUnsignedAttrs));
    if (!outAttributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAttributes = AttributesHandleOfSlot(slot);
    return TV_OK;
}

// RFC 5652 5.4: the signature covers the attributes as an EXPLICIT SET OF, so the [0] that the
// SignerInfo carries becomes the universal SET; the length octets are the same either way.
extern "C" TV_API uint32_t GetCmsSignerInfoEncodedSignedAttributes(const CmsSignerInfo* signerInfo, uint8_t* out,
                                                                  uint32_t* outLen) {
    const void* attributes = nullptr;
    TV_TRY(Walk(TV_SITE, signerInfo, &attributes, I::kSignedAttrs));
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!attributes) {
        *outLen = 0;
        return TV_OK;
    }
    TV_TRY(EncodeSized(TV_SITE, attributes, Component(kSignerInfo, I::kSignedAttrs), out, outLen));
    if (out) out[0] = 0x31;
    return TV_OK;
}
