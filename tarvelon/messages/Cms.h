// CMS (RFC 5652): the descriptors of ContentInfo, SignedData and SignerInfo and their named slots,
// shared by the container modules, the signature workflows and the messages that travel inside a
// ContentInfo (time-stamp tokens, enveloped data, multi-content containers).
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/cms.h"

namespace tv::desc {

// ContentInfo ::= SEQUENCE {
//     contentType  ContentType,                            -- OBJECT IDENTIFIER
//     content      [0] EXPLICIT ANY DEFINED BY contentType OPTIONAL }
enum class ContentInfoSlot : uint32_t { kContentType, kContent, kCount };
extern const Asn1Descriptor kContentInfo;
// Its components, for fields that hold a ContentInfo OPTIONAL (a time-stamp response's token).
extern const Components<SlotCount<ContentInfoSlot>> kContentInfoParts;

// EncapsulatedContentInfo ::= SEQUENCE {
//     eContentType  ContentType,
//     eContent      [0] EXPLICIT OCTET STRING OPTIONAL }
enum class EncapsulatedContentInfoSlot : uint32_t { kEContentType, kEContent, kCount };

// IssuerAndSerialNumber ::= SEQUENCE { issuer Name, serialNumber CertificateSerialNumber }
enum class IssuerAndSerialNumberSlot : uint32_t { kIssuer, kSerialNumber, kCount };

// SignerIdentifier ::= CHOICE {
//     issuerAndSerialNumber  IssuerAndSerialNumber,
//     subjectKeyIdentifier   [0] SubjectKeyIdentifier }   -- IMPLICIT OCTET STRING
enum class SignerIdentifierKind : uint32_t { kIssuerAndSerialNumber, kSubjectKeyIdentifier, kCount };

// SignerIdentifier ::= CHOICE { ... } as above, and RecipientIdentifier of KeyTransRecipientInfo,
// which has the same alternatives.
extern const Asn1Descriptor kCmsIdentifier;

// CertificateSet ::= SET OF CertificateChoices and RevocationInfoChoices ::= SET OF
// RevocationInfoChoice, [0] and [1] IMPLICIT OPTIONAL in both SignedData and OriginatorInfo; each
// choice is kept as its complete element, its kind read from the identifier octet.
extern const Asn1Descriptor kCertificateSet;
extern const Asn1Descriptor kRevocationInfoChoices;

// SignerInfo ::= SEQUENCE {
//     version             CMSVersion,
//     sid                 SignerIdentifier,
//     digestAlgorithm     DigestAlgorithmIdentifier,
//     signedAttrs         [0] IMPLICIT SignedAttributes OPTIONAL,
//     signatureAlgorithm  SignatureAlgorithmIdentifier,
//     signature           SignatureValue,               -- OCTET STRING
//     unsignedAttrs       [1] IMPLICIT UnsignedAttributes OPTIONAL }
enum class SignerInfoSlot : uint32_t {
    kVersion,
    kSid,
    kDigestAlgorithm,
    kSignedAttrs,
    kSignatureAlgorithm,
    kSignature,
    kUnsignedAttrs,
    kCount
};
extern const Asn1Descriptor kSignerInfo;

// SignedData ::= SEQUENCE {
//     version           CMSVersion,
//     digestAlgorithms  SET OF DigestAlgorithmIdentifier,
//     encapContentInfo  EncapsulatedContentInfo,
//     certificates      [0] IMPLICIT CertificateSet OPTIONAL,
//     crls              [1] IMPLICIT RevocationInfoChoices OPTIONAL,
//     signerInfos       SET OF SignerInfo }
enum class SignedDataSlot : uint32_t {
    kVersion,
    kDigestAlgorithms,
    kEncapContentInfo,
    kCertificates,
    kCrls,
    kSignerInfos,
    kCount
};
extern const Asn1Descriptor kSignedData;
// content [0] EXPLICIT SignedData: a ContentInfo's content where the message is known to be signed.
extern const Asn1Descriptor kSignedDataContent;

}  // namespace tv::desc

namespace tv {

extern const Family kContentInfoFamily;  // module CmsContentInfo
extern const Family kSignedDataFamily;   // module CmsProperties
extern const Family kSignerInfoFamily;   // module CmsProperties

// The certificate and CRL sets and the identifier CHOICE, for SignedData and SignerInfo
// (CmsProperties) and for EnvelopedData and KeyTrans (CmsEnvelopedData). Failures are recorded
// under the module of `f`, the family of the set or of the identifier's owner.
namespace cms {

// Adds an encoded certificate to the set in `slot` (made first if absent), its identifier octet
// replaced by the kind's; an element equal to one already stored is not stored again. An unknown
// kind is `unknownKind` (the two containers answer differently).
[[nodiscard]] uint32_t AddCertificate(const Family& f, void** slot, uint32_t kind, const uint8_t* in, uint32_t inLen,
                                      uint32_t unknownKind) noexcept;
// Appends an encoded CRL (kind 1) or the contents of an other revocation record (kind 2, wrapped in
// a constructed [1]) to the set in `slot`, made first if absent; never deduplicated.
[[nodiscard]] uint32_t AddCrl(const Family& f, void** slot, uint32_t kind, const uint8_t* in, uint32_t inLen,
                              uint32_t unknownKind) noexcept;
// Kind, then the whole element under the size protocol; with neither buffer nor length only the kind.
[[nodiscard]] uint32_t ReadCertificate(const Family& f, const void* set, uint32_t index, uint32_t* outKind, uint8_t* out,
                                       uint32_t* outLen) noexcept;
[[nodiscard]] uint32_t ReadCrl(const Family& f, const void* set, uint32_t index, uint32_t* outKind, uint8_t* out,
                               uint32_t* outLen) noexcept;
// Elements in a set, 0 for an absent one.
[[nodiscard]] uint32_t CountElements(const Family& f, const void* set, uint32_t* outCount) noexcept;
// Frees the set in `slot`.
void RemoveElements(void** slot) noexcept;

// The identifier CHOICE value `id` of a SignerInfo or KeyTrans.
[[nodiscard]] uint32_t SetIssuerAndSerialNumber(const Family& f, Asn1ChoiceValue* id, const X509Name* issuer,
                                                const uint8_t* serial, uint32_t serialLen) noexcept;
[[nodiscard]] uint32_t SetSubjectKeyIdentifier(const Family& f, Asn1ChoiceValue* id, const uint8_t* keyId,
                                               uint32_t keyIdLen) noexcept;
[[nodiscard]] uint32_t GetIdentifier(const Family& f, Asn1ChoiceValue* id, X509Name** outIssuer, uint8_t* outSerial,
                                     uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen) noexcept;

}  // namespace cms

namespace oid {
inline constexpr uint8_t kData[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x07, 0x01};        // 1.2.840.113549.1.7.1
inline constexpr uint8_t kSignedData[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x07, 0x02};  // 1.2.840.113549.1.7.2
}  // namespace oid

}  // namespace tv
