// Attributes: the descriptors shared by every structure that carries an attribute set (signer
// infos, certification requests), the handle record, and the OIDs the library itself looks up.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/attributes.h"

// The handle of an attribute list: one field, the Asn1List of Attribute trees or null. It has the
// layout of a value slot, so a structure that holds a set in a slot (a request's attributes, a
// signer's signedAttrs) hands out the address of that slot as its handle, and the list operations
// create, fill or replace the set in place.
struct RsaAttributes {
    void* list;
};

namespace tv::desc {

// Attribute ::= SEQUENCE { attrType OBJECT IDENTIFIER, attrValues SET OF AttributeValue }
enum class AttributeSlot : uint32_t { kType, kValues, kCount };
extern const Asn1Descriptor kAttribute;
// Attributes ::= SET OF Attribute
extern const Asn1Descriptor kAttributes;

// IssuerSerial ::= SEQUENCE { issuer GeneralNames, serialNumber CertificateSerialNumber }   (RFC 5035)
enum class IssuerSerialSlot : uint32_t { kIssuer, kSerialNumber, kCount };
extern const Asn1Descriptor kIssuerSerial;

// ESSCertID ::= SEQUENCE { certHash Hash, issuerSerial IssuerSerial OPTIONAL }             (RFC 2634)
enum class EssCertIdSlot : uint32_t { kCertHash, kIssuerSerial, kCount };
extern const Asn1Descriptor kEssCertId;

// ESSCertIDv2 ::= SEQUENCE {                                                              (RFC 5035)
//     hashAlgorithm  AlgorithmIdentifier DEFAULT {algorithm id-sha256},
//     certHash       Hash,
//     issuerSerial   IssuerSerial OPTIONAL }
enum class EssCertIdV2Slot : uint32_t { kHashAlgorithm, kCertHash, kIssuerSerial, kCount };
extern const Asn1Descriptor kEssCertIdV2;

// OtherHash ::= CHOICE { sha1Hash OtherHashValue, otherHash OtherHashAlgAndValue }      (ETSI TS 101 733)
enum class OtherHashKind : uint32_t { kSha1Hash, kOtherHash, kCount };
extern const Asn1Descriptor kOtherHash;
// OtherHashAlgAndValue ::= SEQUENCE { hashAlgorithm AlgorithmIdentifier, hashValue OtherHashValue }
enum class OtherHashAlgAndValueSlot : uint32_t { kHashAlgorithm, kHashValue, kCount };

// OtherCertID ::= SEQUENCE { otherCertHash OtherHash, issuerSerial IssuerSerial OPTIONAL }
enum class OtherCertIdSlot : uint32_t { kOtherCertHash, kIssuerSerial, kCount };
extern const Asn1Descriptor kOtherCertId;
extern const Asn1Descriptor kOtherCertIds;  // SEQUENCE OF OtherCertID

// SigningCertificate, SigningCertificateV2, OtherSigningCertificate ::= SEQUENCE {
//     certs     SEQUENCE OF ESSCertID / ESSCertIDv2 / OtherCertID,
//     policies  SEQUENCE OF PolicyInformation OPTIONAL }
enum class SigningCertificateSlot : uint32_t { kCerts, kPolicies, kCount };
extern const Asn1Descriptor kSigningCertificate;
extern const Asn1Descriptor kSigningCertificateV2;
extern const Asn1Descriptor kOtherSigningCertificate;

// CrlOcspRef ::= SEQUENCE {                                                (ETSI TS 101 733 5.7.3)
//     crlids    [0] EXPLICIT CRLListID OPTIONAL,     -- CRLListID ::= SEQUENCE { crls SEQUENCE OF CrlValidatedID }
//     ocspids   [1] EXPLICIT OcspListID OPTIONAL,    -- OcspListID ::= SEQUENCE { ocspResponses SEQUENCE OF OcspResponsesID }
//     otherRev  [2] EXPLICIT OtherRevRefs OPTIONAL }
enum class CrlOcspRefSlot : uint32_t { kCrlIds, kOcspIds, kOtherRev, kCount };
// CompleteRevocationRefs ::= SEQUENCE OF CrlOcspRef
extern const Asn1Descriptor kCompleteRevocationRefs;
// OtherRevRefs, OtherRevVals ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }
enum class OtherRevSlot : uint32_t { kType, kValue, kCount };
extern const Asn1Descriptor kOtherRev;
// Its components, for the explicitly tagged fields that hold one (otherRev, otherRevVals).
extern const Components<SlotCount<OtherRevSlot>> kOtherRevParts;

// ATSHashIndex ::= SEQUENCE {                                             (ETSI TS 101 733 6.4.1)
//     hashIndAlgorithm        AlgorithmIdentifier DEFAULT {algorithm id-sha256},
//     certificatesHashIndex   SEQUENCE OF OCTET STRING,
//     crlsHashIndex           SEQUENCE OF OCTET STRING,
//     unsignedAttrsHashIndex  SEQUENCE OF OCTET STRING }
enum class AtsHashIndexSlot : uint32_t { kHashIndAlgorithm, kCertificates, kCrls, kUnsignedAttrs, kCount };
extern const Asn1Descriptor kAtsHashIndex;

// ExtSubjInfo ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }   -- the value may be missing on input
enum class ExtSubjInfoSlot : uint32_t { kType, kValue, kCount };
extern const Asn1Descriptor kExtSubjInfo;

// DocInfo ::= SEQUENCE {
//     docKind   ENUMERATED,
//     docText1  [0] IMPLICIT UTF8String OPTIONAL,  docText2 [1] ..., docText3 [2] ...,
//     docDate1  [3] IMPLICIT GeneralizedTime OPTIONAL,  docDate2 [4] ...,
//     docText4  [5] IMPLICIT UTF8String OPTIONAL }
enum class DocInfoSlot : uint32_t { kDocKind, kDocText1, kDocText2, kDocText3, kDocDate1, kDocDate2, kDocText4, kCount };
extern const Asn1Descriptor kDocInfo;

}  // namespace tv::desc

namespace tv {

inline RsaAttributes* AttributesHandleOfSlot(void** slot) noexcept { return reinterpret_cast<RsaAttributes*>(slot); }
inline Asn1List* AttributeList(const RsaAttributes* handle) noexcept { return static_cast<Asn1List*>(handle->list); }

// Packed OIDs (length octet, contents) of the attributes the library adds or looks up itself.
namespace oid {
inline constexpr uint8_t kContentType[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x03};       // 1.2.840.113549.1.9.3
inline constexpr uint8_t kMessageDigest[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x04};     // 1.2.840.113549.1.9.4
inline constexpr uint8_t kSigningTime[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x05};       // 1.2.840.113549.1.9.5
inline constexpr uint8_t kExtensionRequest[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x0E};  // 1.2.840.113549.1.9.14
// 1.2.840.113549.1.9.16.2.47
inline constexpr uint8_t kSigningCertificateV2[] = {11, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x10, 0x02, 0x2F};
// 1.3.6.1.4.1.311.2.1.14, the extension request that some enrolment clients send instead
inline constexpr uint8_t kMsExtensionRequest[] = {10, 0x2B, 0x06, 0x01, 0x04, 0x01, 0x82, 0x37, 0x02, 0x01, 0x0E};
}  // namespace oid

}  // namespace tv
