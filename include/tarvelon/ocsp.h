/**
 * @file tarvelon/ocsp.h
 * OCSP requests and responses (RFC 6960).
 *
 * The library computes no hashes and no signatures: the caller supplies the CertID hashes, signs the
 * to-be-signed bytes handed out here and stores the signature back. OcspBasicResponses is the
 * library's own list of basic responses, several of them in one encoding.
 */
#ifndef TARVELON_OCSP_H
#define TARVELON_OCSP_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/extensions.h"
#include "tarvelon/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

/** An OCSPRequest: tbsRequest and the optional signature block with its certificates. */
typedef struct OcspRequest OcspRequest;
/** An OCSPResponse: the response status and the optional responseBytes. */
typedef struct OcspResponse OcspResponse;
/** A BasicOCSPResponse: tbsResponseData, signature algorithm, signature and certificates. */
typedef struct OcspBasicResponse OcspBasicResponse;
/** A SingleResponse: CertID, certificate status, thisUpdate, nextUpdate and singleExtensions. */
typedef struct OcspSingleResponse OcspSingleResponse;
/** RevokedInfo ::= SEQUENCE { revocationTime GeneralizedTime, revocationReason [0] EXPLICIT CRLReason
 * OPTIONAL }, made by AllocCertStatusRevokedInfo() for SetOcspSingleResponseCertStatus(). */
typedef struct OcspRevokedInfo OcspRevokedInfo;
/** OcspBasicResponses ::= SEQUENCE OF BasicOCSPResponse: several basic responses in one encoding. */
typedef Asn1List OcspBasicResponses;

/** Responder ID kind byName: the complete DER of the responder's Name. */
#define TV_OCSP_RESPONDER_BY_NAME 0u
/** Responder ID kind byKey: the SHA-1 hash of the responder's public key. */
#define TV_OCSP_RESPONDER_BY_KEY 1u
/** Certificate status good. */
#define TV_OCSP_STATUS_GOOD 0u
/** Certificate status revoked, with a RevokedInfo. */
#define TV_OCSP_STATUS_REVOKED 1u
/** Certificate status unknown. */
#define TV_OCSP_STATUS_UNKNOWN 2u

/* Life cycle and coding. */

/**
 * Creates an empty OCSP request: version v1 (DEFAULT), an empty request list, no requestor name, no
 * extensions and no signature.
 *
 * @param[out] outRequest  Receives a new request owned by the caller (FreeOcspRequest()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspRequest(OcspRequest** outRequest);
/**
 * Frees a request with everything it holds, certificates added to it included.
 *
 * @param[in] request  The request (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspRequest(OcspRequest* request);
/**
 * Writes a request as DER.
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeOcspRequest(const OcspRequest* request, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a request; octets after the first complete element are ignored.
 *
 * @param[in]  in          The encoding (borrowed).
 * @param[in]  inLen       Octets in @p in.
 * @param[out] outRequest  Receives a new request owned by the caller (FreeOcspRequest()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOcspRequest(const uint8_t* in, uint32_t inLen, OcspRequest** outRequest);
/**
 * Creates an empty OCSP response, with neither status nor responseBytes.
 *
 * @param[out] outResponse  Receives a new response owned by the caller (FreeOcspResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspResponse(OcspResponse** outResponse);
/**
 * Frees a response with everything it holds.
 *
 * @param[in] response  The response (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspResponse(OcspResponse* response);
/**
 * Writes a response as DER.
 *
 * @param[in]     response  The response (borrowed).
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while the status has not been set.
 */
TV_API uint32_t EncodeOcspResponse(const OcspResponse* response, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a response; octets after the first complete element are ignored.
 *
 * The basic response inside stays opaque octets: GetOcspResponseBytes() hands them out for
 * DecodeOcspBasicResponse().
 *
 * @param[in]  in           The encoding (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outResponse  Receives a new response owned by the caller (FreeOcspResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOcspResponse(const uint8_t* in, uint32_t inLen, OcspResponse** outResponse);
/**
 * Creates an empty basic response: version v1 (DEFAULT) and an empty list of single responses;
 * responder ID, producedAt, signature algorithm and signature are still to be set.
 *
 * @param[out] outResponse  Receives a new basic response owned by the caller (FreeOcspBasicResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspBasicResponse(OcspBasicResponse** outResponse);
/**
 * Frees a basic response with everything it holds, single responses and certificates included.
 *
 * @param[in] response  The basic response (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspBasicResponse(OcspBasicResponse* response);
/**
 * Writes a basic response as DER, the octets that go into responseBytes.
 *
 * @param[in]     response  The basic response (borrowed).
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a required field (responder ID,
 *         producedAt, signature algorithm, signature, or a part of a single response) is unset.
 */
TV_API uint32_t EncodeOcspBasicResponse(const OcspBasicResponse* response, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a basic response; octets after the first complete element are ignored.
 *
 * @param[in]  in           The encoding (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outResponse  Receives a new basic response owned by the caller (FreeOcspBasicResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOcspBasicResponse(const uint8_t* in, uint32_t inLen, OcspBasicResponse** outResponse);
/**
 * Creates an empty single response; CertID, status and thisUpdate are still to be set.
 *
 * @param[out] outResponse  Receives a new single response owned by the caller
 *                          (FreeOcspSingleResponse(), or hand it to AddOcspBasicResponseSingleResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspSingleResponse(OcspSingleResponse** outResponse);
/**
 * Frees a single response with everything it holds.
 *
 * @param[in] response  The single response (taken over), or null for nothing; never one lent by a
 *                      basic response.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspSingleResponse(OcspSingleResponse* response);
/**
 * Writes a single response as DER.
 *
 * @param[in]     response  The single response (borrowed).
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while the CertID, the status or thisUpdate
 *         is unset.
 */
TV_API uint32_t EncodeOcspSingleResponse(const OcspSingleResponse* response, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a single response; octets after the first complete element are ignored.
 *
 * @param[in]  in           The encoding (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outResponse  Receives a new single response owned by the caller (FreeOcspSingleResponse()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOcspSingleResponse(const uint8_t* in, uint32_t inLen, OcspSingleResponse** outResponse);
/**
 * Creates an empty list of basic responses.
 *
 * @param[out] outResponses  Receives a new list owned by the caller (FreeOcspBasicResponses()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspBasicResponses(OcspBasicResponses** outResponses);
/**
 * Frees a list of basic responses with every basic response in it.
 *
 * @param[in] responses  The list (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspBasicResponses(OcspBasicResponses* responses);
/**
 * Writes a list of basic responses as the DER of a SEQUENCE OF BasicOCSPResponse.
 *
 * @param[in]     responses  The list (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a basic response in it is incomplete.
 */
TV_API uint32_t EncodeOcspBasicResponses(const OcspBasicResponses* responses, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a list of basic responses; octets after the first complete element are ignored.
 *
 * @param[in]  in            The encoding (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outResponses  Receives a new list owned by the caller (FreeOcspBasicResponses()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOcspBasicResponses(const uint8_t* in, uint32_t inLen, OcspBasicResponses** outResponses);
/**
 * Makes a deep copy of a list of basic responses.
 *
 * The copy goes through the list's DER (kept: the tree copy cannot take the NULL of a good or unknown
 * status), so a list that cannot be encoded yet cannot be copied either.
 *
 * @param[in]  responses     The list to copy (borrowed).
 * @param[out] outResponses  Receives a new list owned by the caller (FreeOcspBasicResponses()).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a basic response in it is incomplete.
 */
TV_API uint32_t CreateOcspBasicResponsesCopy(const OcspBasicResponses* responses, OcspBasicResponses** outResponses);
/**
 * Appends a basic response to the list, which takes the response itself.
 *
 * @param[in,out] responses  The list (borrowed).
 * @param[in]     response   The basic response (taken over on success: freed with the list); after a
 *                           failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddResponseToOcspBasicResponses(OcspBasicResponses* responses, OcspBasicResponse* response);
/**
 * Counts the basic responses in the list.
 *
 * @param[in]  responses  The list (borrowed).
 * @param[out] outCount   Receives the number of basic responses.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspBasicResponsesCount(const OcspBasicResponses* responses, uint32_t* outCount);
/**
 * Hands out one basic response of the list.
 *
 * @param[in]  responses    The list (borrowed).
 * @param[in]  index        Position from 0.
 * @param[out] outResponse  Receives the basic response, lent by @p responses (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end.
 */
TV_API uint32_t GetOcspBasicResponsesResponse(const OcspBasicResponses* responses, uint32_t index, OcspBasicResponse** outResponse);

/* Request: version (DEFAULT 0), requestor name, the Request entries and requestExtensions. */
TV_API uint32_t SetOcspRequestVersion(OcspRequest* request, uint32_t version);
TV_API uint32_t GetOcspRequestVersion(const OcspRequest* request, uint32_t* outVersion);
/* The name is built from a kind and value as AllocX509GeneralNameValue builds it. */
TV_API uint32_t SetOcspRequestRequestorName(OcspRequest* request, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOcspRequestRequestorName(const OcspRequest* request, GeneralName** outName);
TV_API uint32_t GetOcspRequestRequestorNameValue(const OcspRequest* request, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveOcspRequestRequestorName(OcspRequest* request);
/* A new Request entry from the CertID parts (the serial as INTEGER content octets, stored as given)
 * and a deep copy of `extensions` when given (the caller keeps its own). */
TV_API uint32_t AddOcspRequestCertRequest(OcspRequest* request, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* issuerNameHash, uint32_t issuerNameHashLen, const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen, const uint8_t* serial, uint32_t serialLen, const X509Extensions* extensions);
TV_API uint32_t GetOcspRequestCertRequestsCount(const OcspRequest* request, uint32_t* outCount);
/* The five CertID parts, each under the size protocol (a part that does not fit makes the result 49
 * while the parts before it are filled), and the entry's singleRequestExtensions handle when
 * `outExtensions` is not null. */
TV_API uint32_t GetOcspRequestCertRequest(OcspRequest* request, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash, uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash, uint32_t* outIssuerKeyHashLen, uint8_t* outSerial, uint32_t* outSerialLen, X509Extensions** outExtensions);
TV_API uint32_t ClearOcspRequestCertRequests(OcspRequest* request);
TV_API uint32_t GetOcspRequestExtensions(OcspRequest* request, X509Extensions** outExtensions);

/* Request signature ([0] EXPLICIT Signature OPTIONAL), made on demand by the setters and by
 * AddOcspRequestCertificate. The signature is a BIT STRING with no unused bits. */
TV_API uint32_t IsExistsOcspRequestSignature(const OcspRequest* request);
TV_API uint32_t RemoveOcspRequestSignature(OcspRequest* request);
TV_API uint32_t SetOcspRequestSignatureAlgorithmOidAndParameters(OcspRequest* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetOcspRequestSignatureAlgorithmAndParameters(const OcspRequest* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetOcspRequestSignature(OcspRequest* request, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOcspRequestSignature(const OcspRequest* request, uint8_t* out, uint32_t* outLen);
/* The request takes the certificate itself; on failure the caller keeps it. Get hands out a
 * borrowed pointer. */
TV_API uint32_t AddOcspRequestCertificate(OcspRequest* request, Certificate* certificate);
TV_API uint32_t GetOcspRequestCertificatesCount(const OcspRequest* request, uint32_t* outCount);
TV_API uint32_t GetOcspRequestCertificate(const OcspRequest* request, uint32_t index, Certificate** outCertificate);
TV_API uint32_t RemoveOcspRequestCertificates(OcspRequest* request);

/* Outer response: the status (0 successful, 1 malformedRequest, 2 internalError, 3 tryLater,
 * 5 sigRequired, 6 unauthorized, stored as given) and responseBytes. A null or empty responseType
 * with length 0 removes responseBytes; with octets it is 32. */
TV_API uint32_t SetOcspResponseStatus(OcspResponse* response, uint32_t status);
TV_API uint32_t GetOcspResponseStatus(const OcspResponse* response, uint32_t* outStatus);
TV_API uint32_t SetOcspResponseBytes(OcspResponse* response, const uint8_t* responseType, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOcspResponseBytes(const OcspResponse* response, uint8_t* outResponseType, uint32_t* outResponseTypeLen, uint8_t* out, uint32_t* outLen);

/* Basic response. The responder ID is kind 0 with the complete DER of a Name, or kind 1 with the
 * key hash octets. */
TV_API uint32_t SetOcspBasicResponseVersion(OcspBasicResponse* response, uint32_t version);
TV_API uint32_t GetOcspBasicResponseVersion(const OcspBasicResponse* response, uint32_t* outVersion);
TV_API uint32_t SetOcspBasicResponseResponderID(OcspBasicResponse* response, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOcspBasicResponseResponderID(const OcspBasicResponse* response, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetOcspBasicResponseProducedAt(OcspBasicResponse* response, const LibraryTime* time);
TV_API uint32_t GetOcspBasicResponseProducedAt(const OcspBasicResponse* response, LibraryTime* outTime);
/* The basic response takes the single response itself; on failure the caller keeps it. */
TV_API uint32_t AddOcspBasicResponseSingleResponse(OcspBasicResponse* response, OcspSingleResponse* single);
TV_API uint32_t GetOcspBasicResponseSingleResponsesCount(const OcspBasicResponse* response, uint32_t* outCount);
TV_API uint32_t GetOcspBasicResponseSingleResponse(const OcspBasicResponse* response, uint32_t index, OcspSingleResponse** outSingle);
TV_API uint32_t ClearOcspBasicResponseResponses(OcspBasicResponse* response);
TV_API uint32_t GetOcspBasicResponseExtensions(OcspBasicResponse* response, X509Extensions** outExtensions);
/* The DER of tbsResponseData, encoded afresh from the fields: the octets the responder signs. */
TV_API uint32_t GetOcspBasicResponseToBeSignedPart(const OcspBasicResponse* response, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetOcspBasicResponseSignatureAlgorithmOidAndParameters(OcspBasicResponse* response, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetOcspBasicResponseSignatureAlgorithmAndParameters(const OcspBasicResponse* response, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetOcspBasicResponseSignature(OcspBasicResponse* response, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOcspBasicResponseSignature(const OcspBasicResponse* response, uint8_t* out, uint32_t* outLen);
/* The basic response takes the certificate itself; on failure the caller keeps it. */
TV_API uint32_t AddOcspBasicResponseCertificate(OcspBasicResponse* response, Certificate* certificate);
TV_API uint32_t GetOcspBasicResponseCertificatesCount(const OcspBasicResponse* response, uint32_t* outCount);
TV_API uint32_t GetOcspBasicResponseCertificate(const OcspBasicResponse* response, uint32_t index, Certificate** outCertificate);
TV_API uint32_t RemoveOcspBasicResponseCertificates(OcspBasicResponse* response);

/* Single response. Times are stored as GeneralizedTime; a revocation reason of -1 means none. */
TV_API uint32_t SetOcspSingleResponseCertID(OcspSingleResponse* single, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* issuerNameHash, uint32_t issuerNameHashLen, const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen, const uint8_t* serial, uint32_t serialLen);
TV_API uint32_t GetOcspSingleResponseCertID(const OcspSingleResponse* single, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash, uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash, uint32_t* outIssuerKeyHashLen, uint8_t* outSerial, uint32_t* outSerialLen);
TV_API uint32_t SetOcspSingleResponseCertStatusGood(OcspSingleResponse* single);
TV_API uint32_t SetOcspSingleResponseCertStatusUnknown(OcspSingleResponse* single);
TV_API uint32_t SetOcspSingleResponseCertStatusRevoked(OcspSingleResponse* single, const LibraryTime* revocationTime, int32_t reason);
/* Status 0 or 2 with a null `revokedInfo`, or 1 with one from AllocCertStatusRevokedInfo, which the
 * call takes over whatever its result (there is no other way to free it). */
TV_API uint32_t SetOcspSingleResponseCertStatus(OcspSingleResponse* single, uint32_t status, OcspRevokedInfo* revokedInfo);
TV_API uint32_t GetOcspSingleResponseCertStatus(const OcspSingleResponse* single, uint32_t* outStatus);
TV_API uint32_t GetOcspSingleResponseCertStatusRevokedInfo(const OcspSingleResponse* single, LibraryTime* outRevocationTime, int32_t* outReason);
TV_API uint32_t AllocCertStatusRevokedInfo(const LibraryTime* revocationTime, int32_t reason, OcspRevokedInfo** outRevokedInfo);
TV_API uint32_t SetOcspSingleResponseThisUpdate(OcspSingleResponse* single, const LibraryTime* time);
TV_API uint32_t GetOcspSingleResponseThisUpdate(const OcspSingleResponse* single, LibraryTime* outTime);
TV_API uint32_t SetOcspSingleResponseNextUpdate(OcspSingleResponse* single, const LibraryTime* time);
TV_API uint32_t GetOcspSingleResponseNextUpdate(const OcspSingleResponse* single, LibraryTime* outTime);
TV_API uint32_t GetOcspSingleResponseExtensions(OcspSingleResponse* single, X509Extensions** outExtensions);

#ifdef __cplusplus
}
#endif

#endif
