// OCSP (RFC 6960): the descriptors of requests and responses and their named slots, shared by the
// request and response modules and by the families that carry OCSP data (CAdES revocation values).
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/x509/Certificate.h"
#include "tarvelon/x509/SignedStructure.h"
#include "tarvelon/ocsp.h"

namespace tv::desc {

// certs [0] EXPLICIT SEQUENCE OF Certificate OPTIONAL, in requests and basic responses alike
inline constexpr Asn1Descriptor kOcspCerts = Explicit(0, Optional(SequenceOf<&kCertificate>()));

// CertID ::= SEQUENCE {
//     hashAlgorithm   AlgorithmIdentifier,
//     issuerNameHash  OCTET STRING,
//     issuerKeyHash   OCTET STRING,
//     serialNumber    CertificateSerialNumber }
enum class CertIdSlot : uint32_t { kHashAlgorithm, kIssuerNameHash, kIssuerKeyHash, kSerialNumber, kCount };
extern const Asn1Descriptor kCertId;

// Request ::= SEQUENCE {
//     reqCert                  CertID,
//     singleRequestExtensions  [0] EXPLICIT Extensions OPTIONAL }
enum class RequestSlot : uint32_t { kReqCert, kSingleRequestExtensions, kCount };
extern const Asn1Descriptor kRequest;
extern const Asn1Descriptor kRequestList;

// TBSRequest ::= SEQUENCE {
//     version            [0] EXPLICIT Version DEFAULT v1,
//     requestorName      [1] EXPLICIT GeneralName OPTIONAL,
//     requestList        SEQUENCE OF Request,
//     requestExtensions  [2] EXPLICIT Extensions OPTIONAL }
enum class TbsRequestSlot : uint32_t { kVersion, kRequestorName, kRequestList, kRequestExtensions, kCount };
extern const Asn1Descriptor kTbsRequest;

// Signature ::= SEQUENCE {
//     signatureAlgorithm  AlgorithmIdentifier,
//     signature           BIT STRING,
//     certs               [0] EXPLICIT SEQUENCE OF Certificate OPTIONAL }
enum class SignatureSlot : uint32_t { kSignatureAlgorithm, kSignature, kCerts, kCount };
extern const Asn1Descriptor kOptionalSignature;  // [0] EXPLICIT Signature OPTIONAL

// OCSPRequest ::= SEQUENCE {
//     tbsRequest         TBSRequest,
//     optionalSignature  [0] EXPLICIT Signature OPTIONAL }
enum class OcspRequestSlot : uint32_t { kTbsRequest, kOptionalSignature, kCount };
extern const Asn1Descriptor kOcspRequest;

// OCSPResponse ::= SEQUENCE {
//     responseStatus  OCSPResponseStatus,   -- ENUMERATED
//     responseBytes   [0] EXPLICIT ResponseBytes OPTIONAL }
enum class OcspResponseSlot : uint32_t { kResponseStatus, kResponseBytes, kCount };
extern const Asn1Descriptor kOcspResponse;

// ResponseBytes ::= SEQUENCE { responseType OBJECT IDENTIFIER, response OCTET STRING }
enum class ResponseBytesSlot : uint32_t { kResponseType, kResponse, kCount };
extern const Asn1Descriptor kResponseBytes;  // [0] EXPLICIT ResponseBytes OPTIONAL

// ResponderID ::= CHOICE {
//     byName  [1] Name,      -- held as the complete DER of the Name
//     byKey   [2] KeyHash }  -- KeyHash ::= OCTET STRING
enum class ResponderIdKind : uint32_t { kByName, kByKey, kCount };
extern const Asn1Descriptor kResponderId;

// RevokedInfo ::= SEQUENCE {
//     revocationTime    GeneralizedTime,
//     revocationReason  [0] EXPLICIT CRLReason OPTIONAL }
enum class RevokedInfoSlot : uint32_t { kRevocationTime, kRevocationReason, kCount };
extern const Asn1Descriptor kRevokedInfo;  // as the [1] IMPLICIT alternative of CertStatus

// CertStatus ::= CHOICE {
//     good     [0] IMPLICIT NULL,
//     revoked  [1] IMPLICIT RevokedInfo,
//     unknown  [2] IMPLICIT UnknownInfo }  -- UnknownInfo ::= NULL
enum class CertStatusKind : uint32_t { kGood, kRevoked, kUnknown, kCount };
extern const Asn1Descriptor kCertStatus;

// SingleResponse ::= SEQUENCE {
//     certID            CertID,
//     certStatus        CertStatus,
//     thisUpdate        GeneralizedTime,
//     nextUpdate        [0] EXPLICIT GeneralizedTime OPTIONAL,
//     singleExtensions  [1] EXPLICIT Extensions OPTIONAL }
enum class SingleResponseSlot : uint32_t { kCertId, kCertStatus, kThisUpdate, kNextUpdate, kSingleExtensions, kCount };
extern const Asn1Descriptor kSingleResponse;

// ResponseData ::= SEQUENCE {
//     version             [0] EXPLICIT Version DEFAULT v1,
//     responderID         ResponderID,
//     producedAt          GeneralizedTime,
//     responses           SEQUENCE OF SingleResponse,
//     responseExtensions  [1] EXPLICIT Extensions OPTIONAL }
enum class ResponseDataSlot : uint32_t { kVersion, kResponderId, kProducedAt, kResponses, kResponseExtensions, kCount };
extern const Asn1Descriptor kResponseData;

// BasicOCSPResponse ::= SEQUENCE {
//     tbsResponseData     ResponseData,
//     signatureAlgorithm  AlgorithmIdentifier,
//     signature           BIT STRING,
//     certs               [0] EXPLICIT SEQUENCE OF Certificate OPTIONAL }
enum class BasicOcspResponseSlot : uint32_t { kTbsResponseData, kSignatureAlgorithm, kSignature, kCerts, kCount };
extern const Asn1Descriptor kBasicOcspResponse;
// OcspBasicResponses ::= SEQUENCE OF BasicOCSPResponse  -- the library's own container
extern const Asn1Descriptor kBasicOcspResponses;

}  // namespace tv::desc

namespace tv {

inline constexpr SignedParts kSignedOcspRequest = SignedParts::Nested(
    desc::kTbsRequest, desc::OcspRequestSlot::kTbsRequest, desc::OcspRequestSlot::kOptionalSignature,
    desc::kOptionalSignature, desc::SignatureSlot::kSignatureAlgorithm, desc::SignatureSlot::kSignature,
    desc::SignatureSlot::kCerts);

inline constexpr SignedParts kSignedBasicResponse = SignedParts::WithCertificates(
    desc::kResponseData, desc::BasicOcspResponseSlot::kTbsResponseData,
    desc::BasicOcspResponseSlot::kSignatureAlgorithm, desc::BasicOcspResponseSlot::kSignature,
    desc::BasicOcspResponseSlot::kCerts);

// A CertID from its parts, in a fresh structure (required parts null: 32). The serial is stored as
// the given INTEGER content octets.
[[nodiscard]] uint32_t NewCertId(Site site, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen,
                                 const uint8_t* issuerNameHash, uint32_t issuerNameHashLen,
                                 const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen, const uint8_t* serial,
                                 uint32_t serialLen, OwnedValue& out) noexcept;

// The parts of a CertID, each under the size protocol, all lengths stored in one call and the first
// failure in ASN.1 order reported (no CertID: 311).
[[nodiscard]] uint32_t ReadCertId(Site site, const void* certId, uint8_t* hashOid, uint32_t* hashOidLen,
                                  uint8_t* hashParams, uint32_t* hashParamsLen, uint8_t* issuerNameHash,
                                  uint32_t* issuerNameHashLen, uint8_t* issuerKeyHash, uint32_t* issuerKeyHashLen,
                                  uint8_t* serial, uint32_t* serialLen) noexcept;

}  // namespace tv
