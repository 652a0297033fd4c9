// Attributes keyed by OID whose values are complete DER elements, one at a time and as sets behind
// a one-field handle.
#include "tarvelon/extensions/RsaAttributes.h"

#include <utility>

#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/extensions/OidKeyedList.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(RsaAttributes)

namespace tv::desc {

// AttributeValue ::= ANY, kept as the complete element
constexpr Asn1Descriptor kAttributeValues = SetOf<&kAny>();

// Attribute ::= SEQUENCE {                                             (RFC 5652 5.3)
constexpr auto kAttributeParts = Slots<AttributeSlot>({
    {AttributeSlot::kType, &kOid},                // attrType    OBJECT IDENTIFIER
    {AttributeSlot::kValues, &kAttributeValues},  // attrValues  SET OF AttributeValue
});
constinit const Asn1Descriptor kAttribute = Sequence(kAttributeParts);
// Attributes ::= SET OF Attribute   -- SignedAttributes' SIZE (1..MAX) is not enforced
constinit const Asn1Descriptor kAttributes = SetOf<&kAttribute>();

namespace {

// IssuerSerial ::= SEQUENCE {                                          (RFC 5035 3)
constexpr auto kIssuerSerialParts = Slots<IssuerSerialSlot>({
    {IssuerSerialSlot::kIssuer, &kGeneralNames},   // issuer        GeneralNames
    {IssuerSerialSlot::kSerialNumber, &kInteger},  // serialNumber  CertificateSerialNumber
});
constexpr Asn1Descriptor kOptionalIssuerSerial = Optional(Sequence(kIssuerSerialParts));

// AlgorithmIdentifier DEFAULT {algorithm id-sha256}, no parameters   (RFC 5035 3)
constexpr uint8_t kSha256[] = {0x60, 0x86, 0x48, 0x01, 0x65, 0x03, 0x04, 0x02, 0x01};  // 2.16.840.1.101.3.4.2.1
constinit const Asn1Primitive kSha256Oid{ASN1_OBJECT_IDENTIFIER, sizeof kSha256, const_cast<uint8_t*>(kSha256)};
constinit void* const kSha256Algorithm[] = {const_cast<Asn1Primitive*>(&kSha256Oid), nullptr};
constexpr Asn1Descriptor kSha256ByDefault = Optional(Sequence(kAlgorithmIdentifierParts), kSha256Algorithm);

// ESSCertID ::= SEQUENCE {                                             (RFC 2634 5.4.1)
constexpr auto kEssCertIdParts = Slots<EssCertIdSlot>({
    {EssCertIdSlot::kCertHash, &kOctetString},              // certHash      Hash
    {EssCertIdSlot::kIssuerSerial, &kOptionalIssuerSerial},  // issuerSerial  IssuerSerial OPTIONAL
});

// ESSCertIDv2 ::= SEQUENCE {                                           (RFC 5035 4)
constexpr auto kEssCertIdV2Parts = Slots<EssCertIdV2Slot>({
    {EssCertIdV2Slot::kHashAlgorithm, &kSha256ByDefault},      // hashAlgorithm  AlgorithmIdentifier DEFAULT {id-sha256}
    {EssCertIdV2Slot::kCertHash, &kOctetString},               // certHash       Hash
    {EssCertIdV2Slot::kIssuerSerial, &kOptionalIssuerSerial},  // issuerSerial   IssuerSerial OPTIONAL
});

// OtherHashAlgAndValue ::= SEQUENCE {                                  (ETSI TS 101 733 5.8.2)
constexpr auto kOtherHashAlgAndValueParts = Slots<OtherHashAlgAndValueSlot>({
    {OtherHashAlgAndValueSlot::kHashAlgorithm, &kAlgorithmIdentifier},  // hashAlgorithm  AlgorithmIdentifier
    {OtherHashAlgAndValueSlot::kHashValue, &kOctetString},              // hashValue      OtherHashValue
});
constexpr Asn1Descriptor kOtherHashAlgAndValue = Sequence(kOtherHashAlgAndValueParts);

// OtherHash ::= CHOICE {
constexpr auto kOtherHashAlternatives = Slots<OtherHashKind>({
    {OtherHashKind::kSha1Hash, &kOctetString},            // sha1Hash   OtherHashValue  -- OCTET STRING
    {OtherHashKind::kOtherHash, &kOtherHashAlgAndValue},  // otherHash  OtherHashAlgAndValue
});

}  // namespace

constinit const Asn1Descriptor kIssuerSerial = Sequence(kIssuerSerialParts);
constinit const Asn1Descriptor kEssCertId = Sequence(kEssCertIdParts);
constinit const Asn1Descriptor kEssCertIdV2 = Sequence(kEssCertIdV2Parts);
constinit const Asn1Descriptor kOtherHash = Choice(kOtherHashAlternatives);

namespace {

// OtherCertID ::= SEQUENCE {                                           (ETSI TS 101 733 5.7.3.2)
constexpr auto kOtherCertIdParts = Slots<OtherCertIdSlot>({
    {OtherCertIdSlot::kOtherCertHash, &kOtherHash},            // otherCertHash  OtherHash
    {OtherCertIdSlot::kIssuerSerial, &kOptionalIssuerSerial},  // issuerSerial   IssuerSerial OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kOtherCertId = Sequence(kOtherCertIdParts);
constinit const Asn1Descriptor kOtherCertIds = SequenceOf<&kOtherCertId>();

namespace {

constexpr Asn1Descriptor kEssCertIds = SequenceOf<&kEssCertId>();
constexpr Asn1Descriptor kEssCertIdsV2 = SequenceOf<&kEssCertIdV2>();
constexpr Asn1Descriptor kOptionalPolicies = Optional(SequenceOf<&kPolicyInformation>());

// SigningCertificate ::= SEQUENCE { certs SEQUENCE OF ESSCertID, policies ... OPTIONAL }   (RFC 2634 5.4)
constexpr auto kSigningCertificateParts = Slots<SigningCertificateSlot>({
    {SigningCertificateSlot::kCerts, &kEssCertIds},           // certs     SEQUENCE OF ESSCertID
    {SigningCertificateSlot::kPolicies, &kOptionalPolicies},  // policies  SEQUENCE OF PolicyInformation OPTIONAL
});
// SigningCertificateV2 ::= SEQUENCE { certs SEQUENCE OF ESSCertIDv2, policies ... OPTIONAL }  (RFC 5035 3)
constexpr auto kSigningCertificateV2Parts = Slots<SigningCertificateSlot>({
    {SigningCertificateSlot::kCerts, &kEssCertIdsV2},         // certs     SEQUENCE OF ESSCertIDv2
    {SigningCertificateSlot::kPolicies, &kOptionalPolicies},  // policies  SEQUENCE OF PolicyInformation OPTIONAL
});
// OtherSigningCertificate ::= SEQUENCE { certs SEQUENCE OF OtherCertID, policies ... OPTIONAL }
constexpr auto kOtherSigningCertificateParts = Slots<SigningCertificateSlot>({
    {SigningCertificateSlot::kCerts, &kOtherCertIds},         // certs     SEQUENCE OF OtherCertID
    {SigningCertificateSlot::kPolicies, &kOptionalPolicies},  // policies  SEQUENCE OF PolicyInformation OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kSigningCertificate = Sequence(kSigningCertificateParts);
constinit const Asn1Descriptor kSigningCertificateV2 = Sequence(kSigningCertificateV2Parts);
constinit const Asn1Descriptor kOtherSigningCertificate = Sequence(kOtherSigningCertificateParts);

namespace {

// ATSHashIndex ::= SEQUENCE {                                          (ETSI TS 101 733 6.4.1)
constexpr auto kAtsHashIndexParts = Slots<AtsHashIndexSlot>({
    {AtsHashIndexSlot::kHashIndAlgorithm, &kSha256ByDefault},  // hashIndAlgorithm        AlgorithmIdentifier DEFAULT {id-sha256}
    {AtsHashIndexSlot::kCertificates, &kOctetStrings},         // certificatesHashIndex   SEQUENCE OF OCTET STRING
    {AtsHashIndexSlot::kCrls, &kOctetStrings},                 // crlsHashIndex           SEQUENCE OF OCTET STRING
    {AtsHashIndexSlot::kUnsignedAttrs, &kOctetStrings},        // unsignedAttrsHashIndex  SEQUENCE OF OCTET STRING
});

constexpr Asn1Descriptor kOptionalAny = Optional(Any());

// ExtSubjInfo ::= SEQUENCE {                                           (private)
constexpr auto kExtSubjInfoParts = Slots<ExtSubjInfoSlot>({
    {ExtSubjInfoSlot::kType, &kOid},           // type   OBJECT IDENTIFIER
    {ExtSubjInfoSlot::kValue, &kOptionalAny},  // value  ANY  -- read as absent when missing
});

constexpr Asn1Descriptor DocText(int32_t tag) { return Optional(Implicit(tag, kUtf8String)); }
constexpr Asn1Descriptor DocDate(int32_t tag) { return Optional(Implicit(tag, kGeneralizedTime)); }
constexpr Asn1Descriptor kDocText1 = DocText(0), kDocText2 = DocText(1), kDocText3 = DocText(2), kDocText4 = DocText(5);
constexpr Asn1Descriptor kDocDate1 = DocDate(3), kDocDate2 = DocDate(4);

// DocInfo ::= SEQUENCE {                                               (private)
constexpr auto kDocInfoParts = Slots<DocInfoSlot>({
    {DocInfoSlot::kDocKind, &kEnumerated},  // docKind   ENUMERATED
    {DocInfoSlot::kDocText1, &kDocText1},   // docText1  [0] IMPLICIT UTF8String OPTIONAL
    {DocInfoSlot::kDocText2, &kDocText2},   // docText2  [1] IMPLICIT UTF8String OPTIONAL
    {DocInfoSlot::kDocText3, &kDocText3},   // docText3  [2] IMPLICIT UTF8String OPTIONAL
    {DocInfoSlot::kDocDate1, &kDocDate1},   // docDate1  [3] IMPLICIT GeneralizedTime OPTIONAL
    {DocInfoSlot::kDocDate2, &kDocDate2},   // docDate2  [4] IMPLICIT GeneralizedTime OPTIONAL
    {DocInfoSlot::kDocText4, &kDocText4},   // docText4  [5] IMPLICIT UTF8String OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kAtsHashIndex = Sequence(kAtsHashIndexParts);

namespace {

// CrlIdentifier ::= SEQUENCE {                                         (ETSI TS 101 733 5.7.3)
enum class CrlIdentifierSlot : uint32_t { kCrlIssuer, kCrlIssuedTime, kCrlNumber, kCount };
constexpr Asn1Descriptor kOptionalInteger = Optional(kInteger);
constexpr auto kCrlIdentifierParts = Slots<CrlIdentifierSlot>({
    {CrlIdentifierSlot::kCrlIssuer, &kX509Name},         // crlissuer      Name
    {CrlIdentifierSlot::kCrlIssuedTime, &kUtcTime},      // crlIssuedTime  UTCTime
    {CrlIdentifierSlot::kCrlNumber, &kOptionalInteger},  // crlNumber      INTEGER OPTIONAL
});
constexpr Asn1Descriptor kOptionalCrlIdentifier = Optional(Sequence(kCrlIdentifierParts));

// CrlValidatedID ::= SEQUENCE {
enum class CrlValidatedIdSlot : uint32_t { kCrlHash, kCrlIdentifier, kCount };
constexpr auto kCrlValidatedIdParts = Slots<CrlValidatedIdSlot>({
    {CrlValidatedIdSlot::kCrlHash, &kOtherHash},                    // crlHash        OtherHash
    {CrlValidatedIdSlot::kCrlIdentifier, &kOptionalCrlIdentifier},  // crlIdentifier  CrlIdentifier OPTIONAL
});
constexpr Asn1Descriptor kCrlValidatedId = Sequence(kCrlValidatedIdParts);
constexpr Asn1Descriptor kCrlValidatedIds = SequenceOf<&kCrlValidatedId>();

// ResponderID ::= CHOICE { byName [1] EXPLICIT Name, byKey [2] EXPLICIT OCTET STRING }  -- the Name as a tree here
enum class RefResponderKind : uint32_t { kByName, kByKey, kCount };
constexpr Asn1Descriptor kRefByName = Explicit(1, SequenceOf<&kRelativeDistinguishedName>());
constexpr Asn1Descriptor kRefByKey = Explicit(2, kOctetString);
constexpr auto kRefResponderAlternatives = Slots<RefResponderKind>({
    {RefResponderKind::kByName, &kRefByName},  // byName  [1] Name
    {RefResponderKind::kByKey, &kRefByKey},    // byKey   [2] KeyHash
});
constexpr Asn1Descriptor kRefResponderId = Choice(kRefResponderAlternatives);

// OcspIdentifier ::= SEQUENCE {
enum class OcspIdentifierSlot : uint32_t { kResponderId, kProducedAt, kCount };
constexpr auto kOcspIdentifierParts = Slots<OcspIdentifierSlot>({
    {OcspIdentifierSlot::kResponderId, &kRefResponderId},   // ocspResponderID  ResponderID
    {OcspIdentifierSlot::kProducedAt, &kGeneralizedTime},  // producedAt       GeneralizedTime
});
constexpr Asn1Descriptor kOcspIdentifier = Sequence(kOcspIdentifierParts);
constexpr Asn1Descriptor kOptionalOtherHash = Optional(Choice(kOtherHashAlternatives));

// OcspResponsesID ::= SEQUENCE {
enum class OcspResponsesIdSlot : uint32_t { kOcspIdentifier, kOcspRepHash, kCount };
constexpr auto kOcspResponsesIdParts = Slots<OcspResponsesIdSlot>({
    {OcspResponsesIdSlot::kOcspIdentifier, &kOcspIdentifier},  // ocspIdentifier  OcspIdentifier
    {OcspResponsesIdSlot::kOcspRepHash, &kOptionalOtherHash},  // ocspRepHash     OtherHash OPTIONAL
});
constexpr Asn1Descriptor kOcspResponsesId = Sequence(kOcspResponsesIdParts);
constexpr Asn1Descriptor kOcspResponsesIds = SequenceOf<&kOcspResponsesId>();

// CRLListID ::= SEQUENCE { crls SEQUENCE OF CrlValidatedID }, OcspListID ::= SEQUENCE { ocspResponses ... }
enum class IdListSlot : uint32_t { kList, kCount };
constexpr auto kCrlListIdParts = Slots<IdListSlot>({{IdListSlot::kList, &kCrlValidatedIds}});
constexpr auto kOcspListIdParts = Slots<IdListSlot>({{IdListSlot::kList, &kOcspResponsesIds}});

}  // namespace

// OtherRevRefs ::= SEQUENCE {
constinit const Components<SlotCount<OtherRevSlot>> kOtherRevParts = Slots<OtherRevSlot>({
    {OtherRevSlot::kType, &kOid},   // otherRevRefType  OtherRevRefType  -- OBJECT IDENTIFIER
    {OtherRevSlot::kValue, &kAny},  // otherRevRefs     ANY DEFINED BY otherRevRefType
});

namespace {

constexpr Asn1Descriptor kCrlIdsField = Explicit(0, Optional(Sequence(kCrlListIdParts)));
constexpr Asn1Descriptor kOcspIdsField = Explicit(1, Optional(Sequence(kOcspListIdParts)));
constexpr Asn1Descriptor kOtherRevField = Explicit(2, Optional(Sequence(kOtherRevParts)));

// CrlOcspRef ::= SEQUENCE {
constexpr auto kCrlOcspRefParts = Slots<CrlOcspRefSlot>({
    {CrlOcspRefSlot::kCrlIds, &kCrlIdsField},      // crlids    [0] EXPLICIT CRLListID OPTIONAL
    {CrlOcspRefSlot::kOcspIds, &kOcspIdsField},    // ocspids   [1] EXPLICIT OcspListID OPTIONAL
    {CrlOcspRefSlot::kOtherRev, &kOtherRevField},  // otherRev  [2] EXPLICIT OtherRevRefs OPTIONAL
});
constexpr Asn1Descriptor kCrlOcspRef = Sequence(kCrlOcspRefParts);

}  // namespace

constinit const Asn1Descriptor kCompleteRevocationRefs = SequenceOf<&kCrlOcspRef>();
constinit const Asn1Descriptor kOtherRev = Sequence(kOtherRevParts);

namespace {

// The same without its first component. hashIndAlgorithm and certificatesHashIndex both begin with a
// SEQUENCE tag, so an index that leaves the algorithm to its DEFAULT cannot be told apart by the tag:
// the reader looks inside the first element and decodes with whichever shape fits.
enum class AtsHashListsSlot : uint32_t { kCertificates, kCrls, kUnsignedAttrs, kCount };
constexpr auto kAtsHashListsParts = Slots<AtsHashListsSlot>({
    {AtsHashListsSlot::kCertificates, &kOctetStrings},   // certificatesHashIndex   SEQUENCE OF OCTET STRING
    {AtsHashListsSlot::kCrls, &kOctetStrings},           // crlsHashIndex           SEQUENCE OF OCTET STRING
    {AtsHashListsSlot::kUnsignedAttrs, &kOctetStrings},  // unsignedAttrsHashIndex  SEQUENCE OF OCTET STRING
});

constexpr Asn1Descriptor kAtsHashLists = Sequence(kAtsHashListsParts);

}  // namespace
constinit const Asn1Descriptor kExtSubjInfo = Sequence(kExtSubjInfoParts);
constinit const Asn1Descriptor kDocInfo = Sequence(kDocInfoParts);

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kAttributeFamily{&desc::kAttribute, Module::RsaAttributes, 0};
constinit const Family kAttributesFamily{&desc::kAttributes, Module::RsaAttributes, 0};
constinit const Family kAttributeValuesFamily{&desc::kAttributeValues, Module::RsaAttributes, 0};

Asn1List* ValueList(const RsaAttribute* a) { return static_cast<Asn1List*>(Slot(a, desc::AttributeSlot::kValues)); }

// An empty identifier or value is refused here: neither could be written as a DER element.
uint32_t NewAttribute(const uint8_t* oid, OwnedValue& out) {
    if (!oid || oid[0] == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Both slots start empty: the value list appears with the first value.
    TV_TRY(NewStructure(TV_SITE, desc::kAttribute, out));
    return SetOid(TV_SITE, &Slot(out.get(), desc::AttributeSlot::kType), oid);
}

// The value is kept as given; its word is the tag number from the low five bits of the first octet.
uint32_t AddValue(RsaAttribute* a, const uint8_t* der, uint32_t derLen) {
    if (!a || !der || derLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kAny, New<Asn1Primitive>());
    if (!value.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetAnyEncoding(value.as<Asn1Primitive>(), der, derLen));
    value.as<Asn1Primitive>()->word = der[0] & 0x1Fu;
    return AppendToSlotList(kAttributeValuesFamily, &Slot(a, desc::AttributeSlot::kValues), value);
}

uint32_t ReadOid(const RsaAttribute* a, uint8_t* out, uint32_t* outLen) {
    auto* id = static_cast<const Asn1Primitive*>(Slot(a, desc::AttributeSlot::kType));
    if (!id || !id->content) return TV_FAIL(TV_ERR_ABSENT);
    return OidToPacked(id, out, outLen);
}

uint32_t CountValues(const RsaAttribute* a, uint32_t* outCount) {
    const Asn1List* values = ValueList(a);
    if (!values) return TV_FAIL(TV_ERR_ABSENT);
    *outCount = values->count;
    return TV_OK;
}

uint32_t ReadValue(const RsaAttribute* a, uint32_t index, uint8_t* out, uint32_t* outLen) {
    const Asn1List* values = ValueList(a);
    if (!values) return TV_FAIL(TV_ERR_ABSENT);
    if (index >= values->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* value = static_cast<const Asn1Primitive*>(values->items[index]);
    if (!value || !value->content) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, value->content, value->length, out, outLen);
}

// The attribute at `index` of a handle that must hold a list: no list 311, out of range 32,
// empty slot 311.
uint32_t AttributeAt(const RsaAttributes* handle, uint32_t index, RsaAttribute** out) {
    if (!handle->list) return TV_FAIL(TV_ERR_ABSENT);
    return ListElementT(kAttributesFamily, AttributeList(handle), index, out);
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- one attribute --------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateRsaAttribute(RsaAttribute** outAttribute, const uint8_t* inOid, const uint8_t* in,
                                              uint32_t inLen) {
    if (!outAttribute) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAttribute = nullptr;
    if (!inOid || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kAttribute);
    TV_TRY(NewAttribute(inOid, built));
    TV_TRY(AddValue(built.as<RsaAttribute>(), in, inLen));
    *outAttribute = static_cast<RsaAttribute*>(built.Release());
    return TV_OK;
}

extern "C" TV_API uint32_t AddRsaAttributeValue(RsaAttribute* attribute, const uint8_t* in, uint32_t inLen) {
    return AddValue(attribute, in, inLen);
}

extern "C" TV_API uint32_t GetRsaAttributeOid(const RsaAttribute* attribute, uint8_t* outOid, uint32_t* outOidLen) {
    if (!attribute || !outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadOid(attribute, outOid, outOidLen);
}

extern "C" TV_API uint32_t GetRsaAttributeValuesCount(const RsaAttribute* attribute, uint32_t* outCount) {
    if (!attribute || !outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return CountValues(attribute, outCount);
}

extern "C" TV_API uint32_t GetRsaAttributeValue(const RsaAttribute* attribute, uint32_t index, uint8_t* out,
                                                uint32_t* outLen) {
    if (!attribute || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadValue(attribute, index, out, outLen);
}

extern "C" TV_API uint32_t FreeRsaAttribute(RsaAttribute* attribute) { return FreeT(kAttributeFamily, attribute); }

// ---- lists ------------------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateRsaAttributes(RsaAttributes** outAttributes) {
    return HandleCreateT(kAttributesFamily, outAttributes);
}

extern "C" TV_API uint32_t AddRsaAttributesAttribute(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex) {
    if (!attributes || !inOid || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kAttribute);
    TV_TRY(NewAttribute(inOid, built));
    Asn1List* list = nullptr;
    TV_TRY(HandleListT(kAttributesFamily, attributes, &list));
    TV_TRY(ListAppendT(kAttributesFamily, list, built));
    *outIndex = AttributeList(attributes)->count - 1;
    return TV_OK;
}

extern "C" TV_API uint32_t AddRsaAttributesAttributeValue(RsaAttributes* attributes, uint32_t index, const uint8_t* in,
                                                          uint32_t inLen) {
    if (!attributes || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttribute* a = nullptr;
    TV_TRY(AttributeAt(attributes, index, &a));
    return AddValue(a, in, inLen);
}

extern "C" TV_API uint32_t AddRsaAttributesAttributeWithValue(RsaAttributes* attributes, const uint8_t* inOid,
                                                              uint32_t* outIndex, const uint8_t* in, uint32_t inLen) {
    if (!attributes || !inOid || !outIndex || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(AddRsaAttributesAttribute(attributes, inOid, outIndex));
    return AddRsaAttributesAttributeValue(attributes, *outIndex, in, inLen);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributesCount(const RsaAttributes* attributes, uint32_t* outCount) {
    return HandleCountT(kAttributesFamily, attributes, outCount);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributeOid(const RsaAttributes* attributes, uint32_t index, uint8_t* outOid,
                                                        uint32_t* outOidLen) {
    if (!attributes || !outOidLen || !attributes->list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RsaAttribute* a = nullptr;
    TV_TRY(ListElementT(kAttributesFamily, AttributeList(attributes), index, &a));
    return ReadOid(a, outOid, outOidLen);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributeValuesCount(const RsaAttributes* attributes, uint32_t index,
                                                                uint32_t* outCount) {
    if (!attributes || !outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttribute* a = nullptr;
    TV_TRY(AttributeAt(attributes, index, &a));
    return CountValues(a, outCount);
}

// A handle without a list reads as an empty one: every attribute index is out of range (32).
extern "C" TV_API uint32_t GetRsaAttributesAttributeValue(const RsaAttributes* attributes, uint32_t index,
                                                          uint32_t valueIndex, uint8_t* out, uint32_t* outLen) {
    if (!attributes || !outLen || !attributes->list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RsaAttribute* a = nullptr;
    TV_TRY(ListElementT(kAttributesFamily, AttributeList(attributes), index, &a));
    return ReadValue(a, valueIndex, out, outLen);
}

extern "C" TV_API uint32_t FindRsaAttributesAttribute(const RsaAttributes* attributes, const uint8_t* inOid,
                                                      uint32_t* outIndex) {
    if (!attributes || !inOid || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!attributes->list) return TV_FAIL(TV_ERR_ABSENT);
    if (!FindOid(AttributeList(attributes), desc::AttributeSlot::kType, inOid, outIndex)) return TV_FAIL(TV_ERR_NOT_FOUND);
    return TV_OK;
}

extern "C" TV_API uint32_t RemoveRsaAttributesAttribute2(RsaAttributes* attributes, const uint8_t* inOid) {
    if (!attributes || !inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!attributes->list) return TV_FAIL(TV_ERR_ABSENT);
    return RemoveOid(kAttributesFamily, AttributeList(attributes), desc::AttributeSlot::kType, inOid, OidWalk::kBackwardEvery);
}

extern "C" TV_API uint32_t ClearRsaAttributes(RsaAttributes* attributes) {
    return HandleClearT(kAttributesFamily, attributes);
}

extern "C" TV_API uint32_t SetRsaAttributesSorted(RsaAttributes* attributes, uint32_t sorted) {
    return HandleSetSortedT(kAttributesFamily, attributes, sorted);
}

extern "C" TV_API uint32_t RemoveRsaAttributes(RsaAttributes* attributes) {
    return HandleRemoveListT(kAttributesFamily, attributes);
}

extern "C" TV_API uint32_t FreeRsaAttributes(RsaAttributes* attributes) {
    return HandleFreeT(kAttributesFamily, attributes);
}

// Appending a list to itself copies the attributes it held when the call began.
extern "C" TV_API uint32_t AppendRsaAttributes(RsaAttributes* attributes, const RsaAttributes* source) {
    if (!attributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!source) return TV_OK;
    if (!attributes->list || !source->list) return TV_FAIL(TV_ERR_ABSENT);
    const Asn1List* from = AttributeList(source);
    const uint32_t count = from->count;
    for (uint32_t i = 0; i < count; ++i) {
        if (!from->items[i]) continue;
        OwnedValue copy(&desc::kAttribute);
        TV_TRY(CopyT(kAttributeFamily, static_cast<const RsaAttribute*>(from->items[i]),
                     reinterpret_cast<RsaAttribute**>(copy.Out())));
        TV_TRY(ListAppendT(kAttributesFamily, AttributeList(attributes), copy));
    }
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeRsaAttributes(const RsaAttributes* attributes, uint8_t* out, uint32_t* outLen) {
    return HandleEncodeT(kAttributesFamily, attributes, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributes(const uint8_t* in, uint32_t inLen, RsaAttributes** outAttributes) {
    return HandleDecodeT(kAttributesFamily, in, inLen, outAttributes);
}

// ---- attribute values: scalars --------------------------------------------------------------------
// The generic one-element codecs with the attribute's fixed type.

#define TV_ATTRIBUTE_OCTETS_CODEC(Name, descriptor)                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return EncodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                       \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return DecodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                       \
    }

TV_ATTRIBUTE_OCTETS_CODEC(MessageDigest, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(TemplateDigest, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(KestrunePubKey, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(X509Certificate, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(CyksCertificate, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(TokenSerialNumber, desc::kUtf8String)
#undef TV_ATTRIBUTE_OCTETS_CODEC

#define TV_ATTRIBUTE_OID_CODEC(Name)                                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(const uint8_t* packedOid, uint8_t* out,           \
                                                               uint32_t* outLen) {                              \
        return EncodeAsn1Oid(packedOid, out, outLen);                                                           \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return DecodeAsn1Oid(in, inLen, out, outLen);                                                           \
    }

TV_ATTRIBUTE_OID_CODEC(ContentType)
TV_ATTRIBUTE_OID_CODEC(SecurityTokenType)
TV_ATTRIBUTE_OID_CODEC(ChannelCspClass)
TV_ATTRIBUTE_OID_CODEC(RequestCertificateStatus)
TV_ATTRIBUTE_OID_CODEC(SignatureConfirmationType)
TV_ATTRIBUTE_OID_CODEC(Usage)
#undef TV_ATTRIBUTE_OID_CODEC

namespace {

// The INTEGER's four little-endian octets, as the generic reader hands them out, as a number.
uint32_t DecodeInt32(const uint8_t* in, uint32_t inLen, int32_t* outNumber) {
    if (!outNumber) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t le[4];
    TV_TRY(DecodeAsn1Int32(in, inLen, le));
    *outNumber = static_cast<int32_t>(uint32_t{le[0]} | uint32_t{le[1]} << 8 | uint32_t{le[2]} << 16 |
                                      uint32_t{le[3]} << 24);
    return TV_OK;
}

}  // namespace

#define TV_ATTRIBUTE_INT32_CODEC(Name)                                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(int32_t number, uint8_t* out, uint32_t* outLen) { \
        return EncodeAsn1Int32(number, out, outLen);                                                              \
    }                                                                                                             \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen,                \
                                                               int32_t* outNumber) {                              \
        return DecodeInt32(in, inLen, outNumber);                                                                 \
    }

TV_ATTRIBUTE_INT32_CODEC(PacketDigestNumber)
TV_ATTRIBUTE_INT32_CODEC(PacketDigestCount)
TV_ATTRIBUTE_INT32_CODEC(TokenSignatureNumber)
TV_ATTRIBUTE_INT32_CODEC(PinNumber)
TV_ATTRIBUTE_INT32_CODEC(RequestCertificateType)
TV_ATTRIBUTE_INT32_CODEC(ValidityPeriod)
#undef TV_ATTRIBUTE_INT32_CODEC

extern "C" TV_API uint32_t EncodeRsaAttributeSigningTimeValue(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    return EncodeTime(time, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributeSigningTimeValue(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    return DecodeTime(in, inLen, outTime);
}

// ---- attribute values: signing certificates ---------------------------------------------------------

namespace tv {
namespace {

constinit const Family kEssCertIdsFamily{&desc::kEssCertIds, Module::RsaAttributes, 0};
constinit const Family kEssCertIdsV2Family{&desc::kEssCertIdsV2, Module::RsaAttributes, 0};
constinit const Family kOtherCertIdsFamily{&desc::kOtherCertIds, Module::RsaAttributes, 0};

using desc::IssuerSerialSlot;

// The issuerSerial of a new identifier: both parts or neither (32); the issuer is copied.
uint32_t SetIssuerSerial(void** slot, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen) {
    if (!issuer != !serial) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!issuer) return TV_OK;
    OwnedValue pair(&desc::kIssuerSerial);
    TV_TRY(NewStructure(TV_SITE, desc::kIssuerSerial, pair));
    TV_TRY(CopyValue(&desc::kGeneralNames, issuer, &Slot(pair.get(), IssuerSerialSlot::kIssuer)));
    TV_TRY(SetOptionalLeaf(&Slot(pair.get(), IssuerSerialSlot::kSerialNumber), ASN1_INTEGER, serial, serialLen));
    *slot = pair.Release();
    return TV_OK;
}

// The issuer (borrowed) and the serial of an identifier's issuerSerial; without one, a null issuer
// and serial length 0.
uint32_t ReadIssuerSerial(const void* pair, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen) {
    if (!outIssuer || !outSerialLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outIssuer = pair ? static_cast<GeneralNames*>(Slot(pair, IssuerSerialSlot::kIssuer)) : nullptr;
    if (!pair) {
        *outSerialLen = 0;
        return TV_OK;
    }
    return GetLeaf(TV_SITE, Slot(pair, IssuerSerialSlot::kSerialNumber), outSerial, outSerialLen);
}

// An OtherHash: sha1Hash for a null algorithm, otherHash { algorithm, hash } otherwise.
uint32_t SetOtherHash(void** slot, const uint8_t* oid, const uint8_t* params, uint32_t paramsLen, const uint8_t* hash,
                      uint32_t hashLen) {
    using S = desc::OtherHashAlgAndValueSlot;
    using K = desc::OtherHashKind;
    const K kind = oid ? K::kOtherHash : K::kSha1Hash;
    OwnedValue value(Component(desc::kOtherHash, kind));
    if (kind == K::kSha1Hash) {
        TV_TRY(SetOptionalLeaf(value.Out(), ASN1_OCTET_STRING, hash, hashLen));
    } else {
        TV_TRY(NewStructure(TV_SITE, *Component(desc::kOtherHash, kind), value));
        TV_TRY(SetAlgorithmOidAndParameters(&Slot(value.get(), S::kHashAlgorithm), oid, params, paramsLen));
        TV_TRY(SetOptionalLeaf(&Slot(value.get(), S::kHashValue), ASN1_OCTET_STRING, hash, hashLen));
    }
    return SetChoice(desc::kOtherHash, slot, kind, value);
}

// The algorithm (lengths 0 for sha1Hash) and the hash of an OtherHash, each under the size protocol;
// another alternative is 302.
uint32_t ReadOtherHash(const void* choice, uint8_t* oid, uint32_t* oidLen, uint8_t* params, uint32_t* paramsLen,
                       uint8_t* hash, uint32_t* hashLen) {
    using S = desc::OtherHashAlgAndValueSlot;
    using K = desc::OtherHashKind;
    if (!oidLen || !paramsLen || !hashLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (const void* sha1 = ChoiceValue(choice, K::kSha1Hash)) {
        *oidLen = *paramsLen = 0;
        return GetLeaf(TV_SITE, sha1, hash, hashLen);
    }
    const void* other = ChoiceValue(choice, K::kOtherHash);
    if (!other) return TV_FAIL(TV_ERR_MALFORMED);
    return FirstFailure({GetAlgorithmOidAndParameters(Slot(other, S::kHashAlgorithm), oid, oidLen, params, paramsLen),
                         GetLeaf(TV_SITE, Slot(other, S::kHashValue), hash, hashLen)});
}

// A new identifier of `f`'s element shape: `fill(element)` writes the hash part, then issuerSerial.
template <SlotEnum E, typename Fill>
uint32_t AddCertId(const Family& f, Asn1List* list, E issuerSerial, const uint8_t* hash, const GeneralNames* issuer,
                   const uint8_t* serial, uint32_t serialLen, Fill fill) {
    if (!list || !hash) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue id(ElementOf(f));
    TV_TRY(NewStructure(TV_SITE, *ElementOf(f), id));
    TV_TRY(fill(id.get()));
    TV_TRY(SetIssuerSerial(&Slot(id.get(), issuerSerial), issuer, serial, serialLen));
    return ListAppendT(f, list, id);
}

// Encodes a signing-certificate value over the caller's lists without taking them: the structure is
// the two slots on the stack, so nothing of the caller's is ever freed.
uint32_t EncodeSigningCertificate(const Asn1Descriptor& d, const Asn1List* certs, const CertificatePolicies* policies,
                                  uint8_t* out, uint32_t* outLen) {
    if (!certs || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* slots[] = {certs, policies};
    return EncodeSized(TV_SITE, slots, &d, out, outLen);
}

// Hands the decoded lists to the caller.
template <typename List>
uint32_t DecodeSigningCertificate(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, List** outCerts,
                                  CertificatePolicies** outPolicies) {
    using S = desc::SigningCertificateSlot;
    if (!outCerts || !outPolicies) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&d);
    TV_TRY(DecodeValue(TV_SITE, d, in, inLen, value));
    *outCerts = static_cast<List*>(std::exchange(Slot(value.get(), S::kCerts), nullptr));
    *outPolicies = static_cast<CertificatePolicies*>(std::exchange(Slot(value.get(), S::kPolicies), nullptr));
    return TV_OK;
}

}  // namespace
}  // namespace tv

// The members every identifier list shares: Create<List>, Free<List> and Get<Counted>Count.
#define TV_ID_LIST_MEMBERS(List, Counted, family)                                                                     \
    extern "C" TV_API uint32_t Create##List(List** outList) { return CreateT(family, outList); }                      \
    extern "C" TV_API uint32_t Free##List(List* list) { return FreeT(family, list); }                                 \
    extern "C" TV_API uint32_t Get##Counted##Count(const List* list, uint32_t* outCount) {                            \
        return ListCountT(family, list, outCount);                                                                    \
    }

TV_ID_LIST_MEMBERS(ESSCertIDs, ESSCertID, kEssCertIdsFamily)
TV_ID_LIST_MEMBERS(ESSCertIDsV2, ESSCertIDV2, kEssCertIdsV2Family)
TV_ID_LIST_MEMBERS(OtherCertIDs, OtherCertID, kOtherCertIdsFamily)
extern "C" TV_API uint32_t EncodeOtherCertIDs(const OtherCertIDs* list, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kOtherCertIdsFamily, list, out, outLen);
}
extern "C" TV_API uint32_t DecodeOtherCertIDs(const uint8_t* in, uint32_t inLen, OtherCertIDs** outList) {
    return DecodeT(kOtherCertIdsFamily, in, inLen, outList);
}

extern "C" TV_API uint32_t AddESSCertIDToList(ESSCertIDs* list, const uint8_t* hash, uint32_t hashLen,
                                              const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen) {
    using S = desc::EssCertIdSlot;
    return AddCertId(kEssCertIdsFamily, list, S::kIssuerSerial, hash, issuer, serial, serialLen, [&](void* id) {
        return SetOptionalLeaf(&Slot(id, S::kCertHash), ASN1_OCTET_STRING, hash, hashLen);
    });
}

// Stored as given; the encoder leaves it out when it equals the DEFAULT.
extern "C" TV_API uint32_t AddESSCertIDv2ToList(ESSCertIDsV2* list, const uint8_t* hashOid, const uint8_t* hashParams,
                                                uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen,
                                                const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen) {
    using S = desc::EssCertIdV2Slot;
    if (!hashOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return AddCertId(kEssCertIdsV2Family, list, S::kIssuerSerial, hash, issuer, serial, serialLen, [&](void* id) {
        TV_TRY(SetAlgorithmOidAndParameters(&Slot(id, S::kHashAlgorithm), hashOid, hashParams, hashParamsLen));
        return SetOptionalLeaf(&Slot(id, S::kCertHash), ASN1_OCTET_STRING, hash, hashLen);
    });
}

extern "C" TV_API uint32_t AddOtherCertIDToList(OtherCertIDs* list, const uint8_t* hashOid, const uint8_t* hashParams,
                                                uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen,
                                                const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen) {
    using S = desc::OtherCertIdSlot;
    return AddCertId(kOtherCertIdsFamily, list, S::kIssuerSerial, hash, issuer, serial, serialLen, [&](void* id) {
        return SetOtherHash(&Slot(id, S::kOtherCertHash), hashOid, hashParams, hashParamsLen, hash, hashLen);
    });
}

// The hash part's shortage (49) does not stop the call: issuer and serial are read all the same.
extern "C" TV_API uint32_t GetESSCertIDInformation(const ESSCertIDs* list, uint32_t index, uint8_t* outHash,
                                                   uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial,
                                                   uint32_t* outSerialLen) {
    using S = desc::EssCertIdSlot;
    if (!outHashLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* id = nullptr;
    TV_TRY(ListElementT(kEssCertIdsFamily, list, index, &id));
    return FirstFailure({GetLeaf(TV_SITE, Slot(id, S::kCertHash), outHash, outHashLen),
                         ReadIssuerSerial(Slot(id, S::kIssuerSerial), outIssuer, outSerial, outSerialLen)});
}

extern "C" TV_API uint32_t GetESSCertIDV2Information(const ESSCertIDsV2* list, uint32_t index, uint8_t* outHashOid,
                                                     uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                     uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen,
                                                     GeneralNames** outIssuer, uint8_t* outSerial,
                                                     uint32_t* outSerialLen) {
    using S = desc::EssCertIdV2Slot;
    if (!outHashLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* id = nullptr;
    TV_TRY(ListElementT(kEssCertIdsV2Family, list, index, &id));
    return FirstFailure({GetAlgorithmOidAndParameters(Slot(id, S::kHashAlgorithm), outHashOid, outHashOidLen,
                                                      outHashParams, outHashParamsLen),
                         GetLeaf(TV_SITE, Slot(id, S::kCertHash), outHash, outHashLen),
                         ReadIssuerSerial(Slot(id, S::kIssuerSerial), outIssuer, outSerial, outSerialLen)});
}

extern "C" TV_API uint32_t GetOtherCertIDInformation(const OtherCertIDs* list, uint32_t index, uint8_t* outHashOid,
                                                     uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                     uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen,
                                                     GeneralNames** outIssuer, uint8_t* outSerial,
                                                     uint32_t* outSerialLen) {
    using S = desc::OtherCertIdSlot;
    const void* id = nullptr;
    TV_TRY(ListElementT(kOtherCertIdsFamily, list, index, &id));
    return FirstFailure({ReadOtherHash(Slot(id, S::kOtherCertHash), outHashOid, outHashOidLen, outHashParams,
                                       outHashParamsLen, outHash, outHashLen),
                         ReadIssuerSerial(Slot(id, S::kIssuerSerial), outIssuer, outSerial, outSerialLen)});
}

// The exported pair of a signing-certificate value over its identifier list.
#define TV_SIGNING_CERTIFICATE_CODEC(Name, List, descriptor)                                                        \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(const List* certs, const CertificatePolicies* policies, \
                                                               uint8_t* out, uint32_t* outLen) {                        \
        return EncodeSigningCertificate(descriptor, certs, policies, out, outLen);                                      \
    }                                                                                                                   \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, List** outCerts,      \
                                                               CertificatePolicies** outPolicies) {                     \
        return DecodeSigningCertificate(descriptor, in, inLen, outCerts, outPolicies);                                  \
    }

TV_SIGNING_CERTIFICATE_CODEC(SigningCertificate, ESSCertIDs, desc::kSigningCertificate)
TV_SIGNING_CERTIFICATE_CODEC(SigningCertificateV2, ESSCertIDsV2, desc::kSigningCertificateV2)
TV_SIGNING_CERTIFICATE_CODEC(OtherSigningCertificate, OtherCertIDs, desc::kOtherSigningCertificate)
#undef TV_SIGNING_CERTIFICATE_CODEC

// ---- attribute values: ATS hash index, validity, ExtSubjInfo, DocInfo ---------------------------------

// The hash algorithm is built here; the three lists stay the caller's, standing in the slots of a
// structure on the stack for the one write.
extern "C" TV_API uint32_t EncodeRsaAttributeAtsHashIndex(const uint8_t* hashOid, const uint8_t* hashParams,
                                                          uint32_t hashParamsLen, const Asn1List* certificatesHashes,
                                                          const Asn1List* crlsHashes,
                                                          const Asn1List* unsignedAttrsHashes, uint8_t* out,
                                                          uint32_t* outLen) {
    if (!hashOid || !certificatesHashes || !crlsHashes || !unsignedAttrsHashes || !outLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue algorithm(&desc::kAlgorithmIdentifier);
    TV_TRY(SetAlgorithmOidAndParameters(algorithm.Out(), hashOid, hashParams, hashParamsLen));
    const void* slots[] = {algorithm.get(), certificatesHashes, crlsHashes, unsignedAttrsHashes};
    return EncodeSized(TV_SITE, slots, &desc::kAtsHashIndex, out, outLen);
}

// A short OID or parameters buffer is no failure here (callers compare the stored sizes with their
// rooms): kept as callers have always had it.
extern "C" TV_API uint32_t DecodeRsaAttributeAtsHashIndex(const uint8_t* in, uint32_t inLen, uint8_t* outHashOid,
                                                          uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                          uint32_t* outHashParamsLen, Asn1List** outCertificatesHashes,
                                                          Asn1List** outCrlsHashes, Asn1List** outUnsignedAttrsHashes) {
    using S = desc::AtsHashIndexSlot;
    if (!in || inLen == 0 || !outCertificatesHashes || !outCrlsHashes || !outUnsignedAttrsHashes)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // An algorithm is there when the first element inside begins with an OID (an empty one is a hash
    // list); what the peek cannot read is left to the decoder to refuse.
    Header outer, first, inner;
    bool withAlgorithm = true;
    if (ReadElement(in, inLen, &outer) == TV_OK && ReadElement(in + outer.headerLen, outer.contentLen, &first) == TV_OK)
        withAlgorithm = first.contentLen != 0 &&
                        ParseHeader(in + outer.headerLen + first.headerLen, first.contentLen, &inner) == TV_OK &&
                        inner.tag == ASN1_OBJECT_IDENTIFIER;
    const Asn1Descriptor& d = withAlgorithm ? desc::kAtsHashIndex : desc::kAtsHashLists;
    OwnedValue value(&d);
    TV_TRY(DecodeValue(TV_SITE, d, in, inLen, value));
    void** lists = static_cast<void**>(value.get()) + (withAlgorithm ? 1 : 0);  // the three lists, in order
    const void* algorithm = withAlgorithm ? Slot(value.get(), S::kHashIndAlgorithm)
                                          : static_cast<const void*>(desc::kSha256Algorithm);
    const uint32_t rc = GetAlgorithmOidAndParameters(algorithm, outHashOid, outHashOidLen, outHashParams,
                                                     outHashParamsLen);
    if (rc != TV_OK && rc != TV_ERR_BUFFER_TOO_SMALL) return rc;
    *outCertificatesHashes = static_cast<Asn1List*>(std::exchange(lists[0], nullptr));
    *outCrlsHashes = static_cast<Asn1List*>(std::exchange(lists[1], nullptr));
    *outUnsignedAttrsHashes = static_cast<Asn1List*>(std::exchange(lists[2], nullptr));
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeRsaAttributeValidityValue(const LibraryTime* notBefore, const LibraryTime* notAfter,
                                                           uint8_t* out, uint32_t* outLen) {
    using S = desc::ValiditySlot;
    if (!notBefore || !notAfter) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeBuilt(TV_SITE, desc::kValidity, out, outLen, [&](void* validity) -> uint32_t {
        TV_TRY(SetTimeChoice(&Slot(validity, S::kNotBefore), notBefore));
        return SetTimeChoice(&Slot(validity, S::kNotAfter), notAfter);
    });
}

extern "C" TV_API uint32_t DecodeRsaAttributeValidityValue(const uint8_t* in, uint32_t inLen, LibraryTime* outNotBefore,
                                                           LibraryTime* outNotAfter) {
    using S = desc::ValiditySlot;
    if (!outNotBefore || !outNotAfter) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kValidity, in, inLen, [&](const void* validity) {
        return FirstFailure({GetTimeIfChosen(TV_SITE, Slot(validity, S::kNotBefore), outNotBefore),
                             GetTimeIfChosen(TV_SITE, Slot(validity, S::kNotAfter), outNotAfter)});
    });
}

extern "C" TV_API uint32_t EncodeRsaAttributeExtSubjInfoValue(const uint8_t* packedOid, const uint8_t* value,
                                                              uint32_t valueLen, uint8_t* out, uint32_t* outLen) {
    using S = desc::ExtSubjInfoSlot;
    if (!value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeBuilt(TV_SITE, desc::kExtSubjInfo, out, outLen, [&](void* info) -> uint32_t {
        TV_TRY(SetOid(TV_SITE, &Slot(info, S::kType), packedOid));
        return SetAny(TV_SITE, &Slot(info, S::kValue), value, valueLen);
    });
}

// The OID's failure comes first; a value without its ANY part is 311.
extern "C" TV_API uint32_t DecodeRsaAttributeExtSubjInfoValue(const uint8_t* in, uint32_t inLen, uint8_t* outOid,
                                                              uint32_t* outOidLen, uint8_t* outValue,
                                                              uint32_t* outValueLen) {
    using S = desc::ExtSubjInfoSlot;
    if (!outOidLen || !outValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kExtSubjInfo, in, inLen, [&](const void* info) {
        return FirstFailure({GetOid(TV_SITE, Slot(info, S::kType), outOid, outOidLen),
                             GetLeaf(TV_SITE, Slot(info, S::kValue), outValue, outValueLen)});
    });
}

extern "C" TV_API uint32_t EncodeDocInfo(uint32_t docKind, const uint8_t* docText1, uint32_t docText1Len,
                                         const uint8_t* docText2, uint32_t docText2Len, const uint8_t* docText3,
                                         uint32_t docText3Len, const LibraryTime* docDate1,
                                         const LibraryTime* docDate2, const uint8_t* docText4, uint32_t docText4Len,
                                         uint8_t* out, uint32_t* outLen) {
    using S = desc::DocInfoSlot;
    const auto date = [](void** slot, const LibraryTime* time) -> uint32_t {
        return IsLibraryTimeNull(time) ? uint32_t{TV_OK} : SetGeneralizedTimeLeaf(slot, time);  // a truth value
    };
    return EncodeBuilt(TV_SITE, desc::kDocInfo, out, outLen, [&](void* info) -> uint32_t {
        TV_TRY(SetNumber(&Slot(info, S::kDocKind), ASN1_ENUMERATED, docKind));
        TV_TRY(SetOptionalLeaf(&Slot(info, S::kDocText1), ASN1_UTF8_STRING, docText1, docText1Len));
        TV_TRY(SetOptionalLeaf(&Slot(info, S::kDocText2), ASN1_UTF8_STRING, docText2, docText2Len));
        TV_TRY(SetOptionalLeaf(&Slot(info, S::kDocText3), ASN1_UTF8_STRING, docText3, docText3Len));
        TV_TRY(date(&Slot(info, S::kDocDate1), docDate1));
        TV_TRY(date(&Slot(info, S::kDocDate2), docDate2));
        return SetOptionalLeaf(&Slot(info, S::kDocText4), ASN1_UTF8_STRING, docText4, docText4Len);
    });
}

// Every field is read even after one fails; the last failing field's code is the result, as callers
// have always had it.
extern "C" TV_API uint32_t DecodeDocInfo(const uint8_t* in, uint32_t inLen, uint32_t* outDocKind, uint8_t* outDocText1,
                                         uint32_t* outDocText1Len, uint8_t* outDocText2, uint32_t* outDocText2Len,
                                         uint8_t* outDocText3, uint32_t* outDocText3Len, LibraryTime* outDocDate1,
                                         LibraryTime* outDocDate2, uint8_t* outDocText4, uint32_t* outDocText4Len) {
    using S = desc::DocInfoSlot;
    if (!outDocKind || !outDocText1Len || !outDocText2Len || !outDocText3Len || !outDocDate1 || !outDocDate2 ||
        !outDocText4Len)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kDocInfo, in, inLen, [&](const void* info) {
        uint32_t last = TV_OK;
        for (uint32_t rc : {GetNumber(TV_SITE, Slot(info, S::kDocKind), outDocKind),
                            GetOptionalLeaf(TV_SITE, Slot(info, S::kDocText1), outDocText1, outDocText1Len),
                            GetOptionalLeaf(TV_SITE, Slot(info, S::kDocText2), outDocText2, outDocText2Len),
                            GetOptionalLeaf(TV_SITE, Slot(info, S::kDocText3), outDocText3, outDocText3Len),
                            GetOptionalTime(Slot(info, S::kDocDate1), outDocDate1),
                            GetOptionalTime(Slot(info, S::kDocDate2), outDocDate2),
                            GetOptionalLeaf(TV_SITE, Slot(info, S::kDocText4), outDocText4, outDocText4Len)})
            if (rc != TV_OK) last = rc;
        return last;
    });
}

// ---- attribute values: complete revocation references -------------------------------------------------

namespace tv {
namespace {

using desc::CrlIdentifierSlot;
using desc::CrlValidatedIdSlot;
using desc::IdListSlot;
using desc::OcspIdentifierSlot;
using desc::OcspResponsesIdSlot;
using desc::RefResponderKind;

constinit const Family kCrlOcspRefsFamily{&desc::kCompleteRevocationRefs, Module::RsaAttributes, 0};
constinit const Family kCrlListIdsFamily{&desc::kCrlValidatedIds, Module::RsaAttributes, 0};
constinit const Family kOcspListIdsFamily{&desc::kOcspResponsesIds, Module::RsaAttributes, 0};

// The identifier list inside a CRLListID or OcspListID block, or null.
template <typename List>
List* ListIn(const void* block) {
    return block ? static_cast<List*>(Slot(block, IdListSlot::kList)) : nullptr;
}

// A block { list } in `slot` holding the caller's `list`; `lent` receives the address that holds it.
uint32_t LendList(const Asn1Descriptor& d, Asn1List* list, void** slot, void*** lent) {
    OwnedValue block(&d);
    TV_TRY(NewStructure(TV_SITE, d, block));
    Slot(block.get(), IdListSlot::kList) = list;
    *lent = &Slot(block.get(), IdListSlot::kList);
    *slot = block.Release();
    return TV_OK;
}

}  // namespace
}  // namespace tv

TV_ID_LIST_MEMBERS(CrlOcspRefs, CrlOcspRef, kCrlOcspRefsFamily)
TV_ID_LIST_MEMBERS(CrlListIDs, CrlListIDs, kCrlListIdsFamily)
TV_ID_LIST_MEMBERS(OcspListIDs, OcspListIDs, kOcspListIdsFamily)
extern "C" TV_API uint32_t EncodeRsaAttributeCompleteRevocationRefs(const CrlOcspRefs* list, uint8_t* out,
                                                                    uint32_t* outLen) {
    return EncodeT(kCrlOcspRefsFamily, list, out, outLen);
}
extern "C" TV_API uint32_t DecodeRsaAttributeCompleteRevocationRefs(const uint8_t* in, uint32_t inLen,
                                                                    CrlOcspRefs** outList) {
    return DecodeT(kCrlOcspRefsFamily, in, inLen, outList);
}

// The two identifier lists become the reference's only once it is in the list; until then they stay
// the caller's and leave their blocks before the guard frees them.
extern "C" TV_API uint32_t AddCrlOcspRefToList(CrlOcspRefs* list, CrlListIDs* crlIds, OcspListIDs* ocspIds,
                                               const uint8_t* otherType, const uint8_t* otherValue,
                                               uint32_t otherValueLen) {
    using S = desc::CrlOcspRefSlot;
    using R = desc::OtherRevSlot;
    const bool other = otherType && otherValue && otherValueLen;
    if (!list || (!crlIds && !ocspIds && !other)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue ref(&desc::kCrlOcspRef);
    TV_TRY(NewStructure(TV_SITE, desc::kCrlOcspRef, ref));
    LentSlots<2> lent;  // declared after the guard, so it lets go first
    if (crlIds)
        TV_TRY(LendList(*Component(desc::kCrlOcspRef, S::kCrlIds), crlIds, &Slot(ref.get(), S::kCrlIds), &lent.slots[0]));
    if (ocspIds)
        TV_TRY(LendList(*Component(desc::kCrlOcspRef, S::kOcspIds), ocspIds, &Slot(ref.get(), S::kOcspIds),
                        &lent.slots[1]));
    if (other) {
        OwnedValue rev(&desc::kOtherRev);
        TV_TRY(NewStructure(TV_SITE, desc::kOtherRev, rev));
        TV_TRY(SetOid(TV_SITE, &Slot(rev.get(), R::kType), otherType));
        TV_TRY(SetAny(TV_SITE, &Slot(rev.get(), R::kValue), otherValue, otherValueLen));
        Slot(ref.get(), S::kOtherRev) = rev.Release();
    }
    TV_TRY(ListAppendT(kCrlOcspRefsFamily, list, ref));
    lent.Release();  // handed over with the reference
    return TV_OK;
}

extern "C" TV_API uint32_t GetCrlOcspRefInformation(const CrlOcspRefs* list, uint32_t index, CrlListIDs** outCrlIds,
                                                    OcspListIDs** outOcspIds, uint8_t* outOtherType,
                                                    uint32_t* outOtherTypeLen, uint8_t* outOtherValue,
                                                    uint32_t* outOtherValueLen) {
    using S = desc::CrlOcspRefSlot;
    if (!outCrlIds || !outOcspIds || !outOtherTypeLen || !outOtherValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* ref = nullptr;
    TV_TRY(ListElementT(kCrlOcspRefsFamily, list, index, &ref));
    *outCrlIds = ListIn<CrlListIDs>(Slot(ref, S::kCrlIds));
    *outOcspIds = ListIn<OcspListIDs>(Slot(ref, S::kOcspIds));
    const void* other = Slot(ref, S::kOtherRev);
    if (!other) {
        *outOtherTypeLen = *outOtherValueLen = 0;
        return TV_OK;
    }
    return FirstFailure({GetOid(TV_SITE, Slot(other, desc::OtherRevSlot::kType), outOtherType, outOtherTypeLen),
                         GetLeaf(TV_SITE, Slot(other, desc::OtherRevSlot::kValue), outOtherValue, outOtherValueLen)});
}

extern "C" TV_API uint32_t AddCrlValidatedIdToList(CrlListIDs* list, const uint8_t* hash, uint32_t hashLen,
                                                   const uint8_t* hashOid, const uint8_t* hashParams,
                                                   uint32_t hashParamsLen, const X509Name* crlIssuer,
                                                   const LibraryTime* crlIssuedTime, const uint8_t* crlNumber,
                                                   uint32_t crlNumberLen) {
    if (!list || !hash || (crlIssuer && !crlIssuedTime)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue id(&desc::kCrlValidatedId);
    TV_TRY(NewStructure(TV_SITE, desc::kCrlValidatedId, id));
    TV_TRY(SetOtherHash(&Slot(id.get(), CrlValidatedIdSlot::kCrlHash), hashOid, hashParams, hashParamsLen, hash, hashLen));
    if (crlIssuer) {
        void*& identifier = Slot(id.get(), CrlValidatedIdSlot::kCrlIdentifier);
        OwnedValue block(Component(desc::kCrlValidatedId, CrlValidatedIdSlot::kCrlIdentifier));
        TV_TRY(NewStructure(TV_SITE, *Component(desc::kCrlValidatedId, CrlValidatedIdSlot::kCrlIdentifier), block));
        TV_TRY(CopyValue(&desc::kX509Name, crlIssuer, &Slot(block.get(), CrlIdentifierSlot::kCrlIssuer)));
        TV_TRY(SetUtcTimeLeaf(&Slot(block.get(), CrlIdentifierSlot::kCrlIssuedTime), crlIssuedTime));
        if (crlNumber && crlNumberLen)
            TV_TRY(SetOptionalLeaf(&Slot(block.get(), CrlIdentifierSlot::kCrlNumber), ASN1_INTEGER, crlNumber,
                                   crlNumberLen));
        identifier = block.Release();
    }
    return ListAppendT(kCrlListIdsFamily, list, id);
}

extern "C" TV_API uint32_t GetCrlValidatedIdInformation(const CrlListIDs* list, uint32_t index, uint8_t* outHash,
                                                        uint32_t* outHashLen, uint8_t* outHashOid,
                                                        uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                        uint32_t* outHashParamsLen, X509Name** outCrlIssuer,
                                                        LibraryTime* outCrlIssuedTime, uint8_t* outCrlNumber,
                                                        uint32_t* outCrlNumberLen) {
    if (!outCrlIssuer || !outCrlIssuedTime || !outCrlNumberLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* id = nullptr;
    TV_TRY(ListElementT(kCrlListIdsFamily, list, index, &id));
    const uint32_t hashRc = ReadOtherHash(Slot(id, CrlValidatedIdSlot::kCrlHash), outHashOid, outHashOidLen,
                                          outHashParams, outHashParamsLen, outHash, outHashLen);
    const void* identifier = Slot(id, CrlValidatedIdSlot::kCrlIdentifier);
    *outCrlIssuer = identifier ? static_cast<X509Name*>(Slot(identifier, CrlIdentifierSlot::kCrlIssuer)) : nullptr;
    if (!identifier) {
        *outCrlIssuedTime = LibraryTime{};
        *outCrlNumberLen = 0;
        return hashRc;
    }
    return FirstFailure({hashRc, GetTimeFromUtcTimeLeaf(Slot(identifier, CrlIdentifierSlot::kCrlIssuedTime), outCrlIssuedTime),
                         GetOptionalLeaf(TV_SITE, Slot(identifier, CrlIdentifierSlot::kCrlNumber), outCrlNumber,
                                         outCrlNumberLen)});
}

// Without a name the key hash is recorded as byKey, so the entry encodes as RFC 5126 says and reads
// back as a key hash.
extern "C" TV_API uint32_t AddOcspResponseIdToList(OcspListIDs* list, const X509Name* responderName,
                                                   const uint8_t* responderKeyHash, uint32_t responderKeyHashLen,
                                                   const LibraryTime* producedAt, const uint8_t* responseHash,
                                                   uint32_t responseHashLen, const uint8_t* hashOid,
                                                   const uint8_t* hashParams, uint32_t hashParamsLen) {
    if (!list || (!responderName && !responderKeyHash) || !producedAt) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue id(&desc::kOcspResponsesId);
    TV_TRY(NewStructure(TV_SITE, desc::kOcspResponsesId, id));
    OwnedValue identifier(&desc::kOcspIdentifier);
    TV_TRY(NewStructure(TV_SITE, desc::kOcspIdentifier, identifier));
    const RefResponderKind kind = responderName ? RefResponderKind::kByName : RefResponderKind::kByKey;
    OwnedValue responder(Component(desc::kRefResponderId, kind));
    if (responderName)
        TV_TRY(CopyValue(&desc::kX509Name, responderName, responder.Out()));
    else
        TV_TRY(SetOptionalLeaf(responder.Out(), ASN1_OCTET_STRING, responderKeyHash, responderKeyHashLen));
    TV_TRY(SetChoice(desc::kRefResponderId, &Slot(identifier.get(), OcspIdentifierSlot::kResponderId), kind, responder));
    TV_TRY(SetGeneralizedTimeLeaf(&Slot(identifier.get(), OcspIdentifierSlot::kProducedAt), producedAt));
    Slot(id.get(), OcspResponsesIdSlot::kOcspIdentifier) = identifier.Release();
    if (responseHash)
        TV_TRY(SetOtherHash(&Slot(id.get(), OcspResponsesIdSlot::kOcspRepHash), hashOid, hashParams, hashParamsLen,
                            responseHash, responseHashLen));
    return ListAppendT(kOcspListIdsFamily, list, id);
}

extern "C" TV_API uint32_t GetOcspResponseIdInformation(const OcspListIDs* list, uint32_t index,
                                                        X509Name** outResponderName, uint8_t* outResponderKeyHash,
                                                        uint32_t* outResponderKeyHashLen, LibraryTime* outProducedAt,
                                                        uint8_t* outResponseHash, uint32_t* outResponseHashLen,
                                                        uint8_t* outHashOid, uint32_t* outHashOidLen,
                                                        uint8_t* outHashParams, uint32_t* outHashParamsLen) {
    if (!outResponderName || !outResponderKeyHashLen || !outProducedAt || !outResponseHashLen || !outHashOidLen ||
        !outHashParamsLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* id = nullptr;
    TV_TRY(ListElementT(kOcspListIdsFamily, list, index, &id));
    const void* identifier = Slot(id, OcspResponsesIdSlot::kOcspIdentifier);
    if (!identifier) return TV_FAIL(TV_ERR_ABSENT);
    const void* responder = Slot(identifier, OcspIdentifierSlot::kResponderId);
    *outResponderName = static_cast<X509Name*>(ChoiceValue(responder, RefResponderKind::kByName));
    const void* keyHash = ChoiceValue(responder, RefResponderKind::kByKey);
    uint32_t keyRc = TV_OK;
    if (keyHash)
        keyRc = GetLeaf(TV_SITE, keyHash, outResponderKeyHash, outResponderKeyHashLen);
    else
        *outResponderKeyHashLen = 0;
    const void* hash = Slot(id, OcspResponsesIdSlot::kOcspRepHash);
    uint32_t hashRc = TV_OK;
    if (hash)
        hashRc = ReadOtherHash(hash, outHashOid, outHashOidLen, outHashParams, outHashParamsLen, outResponseHash,
                               outResponseHashLen);
    else
        *outResponseHashLen = *outHashOidLen = *outHashParamsLen = 0;
    return FirstFailure({keyRc, GetTimeFromGeneralizedTimeLeaf(Slot(identifier, OcspIdentifierSlot::kProducedAt),
                                                               outProducedAt), hashRc});
}
