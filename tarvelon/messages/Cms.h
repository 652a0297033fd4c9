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

namespace oid {
inline constexpr uint8_t kData[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x07, 0x01};        // 1.2.840.113549.1.7.1
inline constexpr uint8_t kSignedData[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x07, 0x02};  // 1.2.840.113549.1.7.2
}  // namespace oid

}  // namespace tv
