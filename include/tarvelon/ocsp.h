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
/** Responder ID kind byKey: the octets of the responder's key hash (KeyHash). */
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
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetOcspBasicResponsesResponse(const OcspBasicResponses* responses, uint32_t index, OcspBasicResponse** outResponse);

/* Request: version, requestor name, the Request entries and requestExtensions. */

/**
 * Sets the request's version (0 for v1, the DEFAULT).
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     version  The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspRequestVersion(OcspRequest* request, uint32_t version);
/**
 * Reads the request's version; a request that carries none reads 0 (v1).
 *
 * @param[in]  request     The request (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_DER (307) for a negative version or one longer than
 *         four octets.
 */
TV_API uint32_t GetOcspRequestVersion(const OcspRequest* request, uint32_t* outVersion);
/**
 * Sets the requestor name, built from a kind and a value as AllocX509GeneralNameValue() builds it.
 *
 * The new name is complete before the old one goes: a failure leaves the request as it was.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     kind     The GeneralName alternative, as AllocX509GeneralNameValue() takes it.
 * @param[in]     in       The value (borrowed).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_NO_ALTERNATIVE (306) for an unknown kind.
 */
TV_API uint32_t SetOcspRequestRequestorName(OcspRequest* request, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Hands out the requestor name.
 *
 * @param[in]  request  The request (borrowed).
 * @param[out] outName  Receives the name, lent by @p request (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the request names no requestor.
 */
TV_API uint32_t GetOcspRequestRequestorName(const OcspRequest* request, GeneralName** outName);
/**
 * Reads the requestor name as a kind and a value, as GetX509GeneralNameValue() reads a name.
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    outKind  Receives the GeneralName alternative.
 * @param[out]    out      Caller buffer for the value, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the request names no requestor.
 */
TV_API uint32_t GetOcspRequestRequestorNameValue(const OcspRequest* request, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Removes the requestor name; a request without one is left as it is.
 *
 * @param[in,out] request  The request (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveOcspRequestRequestorName(OcspRequest* request);
/**
 * Appends a Request entry made from the parts of a CertID and, optionally, singleRequestExtensions.
 *
 * The caller computes the hashes; nothing is checked against a certificate. The serial is the
 * INTEGER's content octets, stored as given.
 *
 * @param[in,out] request            The request (borrowed).
 * @param[in]     hashOid            Packed OID of the hash algorithm (borrowed).
 * @param[in]     hashParams         Complete DER of the algorithm's parameters (borrowed), or null
 *                                   (or empty) to leave them absent.
 * @param[in]     hashParamsLen      Octets in @p hashParams.
 * @param[in]     issuerNameHash     Hash of the issuer's Name (borrowed).
 * @param[in]     issuerNameHashLen  Octets in @p issuerNameHash.
 * @param[in]     issuerKeyHash      Hash of the issuer's public key (borrowed).
 * @param[in]     issuerKeyHashLen   Octets in @p issuerKeyHash.
 * @param[in]     serial             Content octets of the certificate's serial number (borrowed).
 * @param[in]     serialLen          Octets in @p serial, at least 1.
 * @param[in]     extensions         Extensions for the entry (borrowed: deep-copied, the caller keeps
 *                                   its own), or null for none.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an empty serial.
 */
TV_API uint32_t AddOcspRequestCertRequest(OcspRequest* request, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* issuerNameHash, uint32_t issuerNameHashLen, const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen, const uint8_t* serial, uint32_t serialLen, const X509Extensions* extensions);
/**
 * Counts the Request entries.
 *
 * @param[in]  request   The request (borrowed).
 * @param[out] outCount  Receives the number of entries.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspRequestCertRequestsCount(const OcspRequest* request, uint32_t* outCount);
/**
 * Reads the five CertID parts of one Request entry, each under the size protocol, and hands out the
 * entry's singleRequestExtensions.
 *
 * The parts are read in order, with a flow kept as callers know it: the hash OID decides alone (a
 * failure there, 49 included, ends the call). After a part that did not fit, the next part that
 * succeeds (copied, or sized for a null buffer) ends the call with #TV_ERR_BUFFER_TOO_SMALL, and the
 * parts after it are neither written nor sized. So the result is 49 whenever any part did not fit,
 * with the parts before it filled; one call with null buffers sizes all five. Absent parameters read
 * as length 0.
 *
 * @param[in]     request               The request (borrowed).
 * @param[in]     index                 Position of the entry from 0.
 * @param[out]    outHashOid            Caller buffer for the packed hash OID, or null to ask its size.
 * @param[in,out] outHashOidLen         Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams         Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen      Room in @p outHashParams; the octets written or needed.
 * @param[out]    outIssuerNameHash     Caller buffer for the issuer name hash, or null to ask its size.
 * @param[in,out] outIssuerNameHashLen  Room in @p outIssuerNameHash; the octets written or needed.
 * @param[out]    outIssuerKeyHash      Caller buffer for the issuer key hash, or null to ask its size.
 * @param[in,out] outIssuerKeyHashLen   Room in @p outIssuerKeyHash; the octets written or needed.
 * @param[out]    outSerial             Caller buffer for the serial's content octets, or null to ask.
 * @param[in,out] outSerialLen          Room in @p outSerial; the octets written or needed.
 * @param[out]    outExtensions         Receives the entry's extensions handle, lent by @p request (do
 *                                      not free; it may hold no list), or null when not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end;
 *         #TV_ERR_ABSENT (311) for an entry whose CertID is incomplete.
 */
TV_API uint32_t GetOcspRequestCertRequest(OcspRequest* request, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash, uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash, uint32_t* outIssuerKeyHashLen, uint8_t* outSerial, uint32_t* outSerialLen, X509Extensions** outExtensions);
/**
 * Removes every Request entry, leaving the list empty.
 *
 * @param[in,out] request  The request (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearOcspRequestCertRequests(OcspRequest* request);
/**
 * Hands out the handle of the request's requestExtensions.
 *
 * The handle works while the request has no extensions: adding through it creates them.
 *
 * @param[in,out] request        The request (borrowed).
 * @param[out]    outExtensions  Receives the handle, lent by @p request (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspRequestExtensions(OcspRequest* request, X509Extensions** outExtensions);

/* Request signature ([0] EXPLICIT Signature OPTIONAL): a block holding the algorithm, the signature
 * (a BIT STRING with no unused bits) and the certificates, made on demand by the setters and by
 * AddOcspRequestCertificate(). */

/**
 * Tells whether the request carries a signature block.
 *
 * @param[in] request  The request (borrowed).
 * @return #TV_OK (0) when the block is present, #TV_ERR_ABSENT (311) when it is not, or another
 *         status code.
 */
TV_API uint32_t IsExistsOcspRequestSignature(const OcspRequest* request);
/**
 * Removes the signature block with its algorithm, signature and certificates; a request without one
 * is left as it is.
 *
 * @param[in,out] request  The request (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveOcspRequestSignature(OcspRequest* request);
/**
 * Sets the signature algorithm, making the signature block when there is none.
 *
 * A block made for a call that then fails is removed again.
 *
 * @param[in,out] request      The request (borrowed).
 * @param[in]     inOid        Packed OID of the signature algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspRequestSignatureAlgorithmOidAndParameters(OcspRequest* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Reads the signature algorithm as a packed OID and the DER of its parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result is
 * #TV_ERR_BUFFER_TOO_SMALL with both sizes stored. Absent parameters read as length 0.
 *
 * @param[in]     request       The request (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed; may be null with a
 *                              null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no signature block or no
 *         algorithm in it.
 */
TV_API uint32_t GetOcspRequestSignatureAlgorithmAndParameters(const OcspRequest* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Stores the signature the caller computed, as a BIT STRING with no unused bits, making the
 * signature block when there is none.
 *
 * The new value replaces the old one once it is complete; a block made for a call that then fails is
 * removed again.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     in       The signature octets (borrowed).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspRequestSignature(OcspRequest* request, const uint8_t* in, uint32_t inLen);
/**
 * Reads the signature octets (the unused-bits count is not reported).
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no signature block or no
 *         signature in it.
 */
TV_API uint32_t GetOcspRequestSignature(const OcspRequest* request, uint8_t* out, uint32_t* outLen);
/**
 * Appends a certificate to the signature block's certs, making the block and the list when needed.
 *
 * A block made for a call that then fails is removed again.
 *
 * @param[in,out] request      The request (borrowed).
 * @param[in]     certificate  The certificate (taken over on success: freed with the request); after
 *                             a failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddOcspRequestCertificate(OcspRequest* request, Certificate* certificate);
/**
 * Counts the certificates of the signature block.
 *
 * @param[in]  request   The request (borrowed).
 * @param[out] outCount  Receives the number of certificates.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no signature block or it
 *         carries no certificate list.
 */
TV_API uint32_t GetOcspRequestCertificatesCount(const OcspRequest* request, uint32_t* outCount);
/**
 * Hands out one certificate of the signature block.
 *
 * @param[in]  request         The request (borrowed).
 * @param[in]  index           Position from 0.
 * @param[out] outCertificate  Receives the certificate, lent by @p request (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no signature block or no
 *         certificate list; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetOcspRequestCertificate(const OcspRequest* request, uint32_t index, Certificate** outCertificate);
/**
 * Removes the certificate list from the signature block, which itself stays; nothing to do when
 * there is no block or no list.
 *
 * @param[in,out] request  The request (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveOcspRequestCertificates(OcspRequest* request);

/* Outer response: the status and responseBytes. */

/**
 * Sets the response status: 0 successful, 1 malformedRequest, 2 internalError, 3 tryLater,
 * 5 sigRequired, 6 unauthorized; any number is stored as given.
 *
 * @param[in,out] response  The response (borrowed).
 * @param[in]     status    The OCSPResponseStatus value.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspResponseStatus(OcspResponse* response, uint32_t status);
/**
 * Reads the response status.
 *
 * @param[in]  response   The response (borrowed).
 * @param[out] outStatus  Receives the OCSPResponseStatus value.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no status has been set.
 */
TV_API uint32_t GetOcspResponseStatus(const OcspResponse* response, uint32_t* outStatus);
/**
 * Sets or removes responseBytes: the response type and the octets of the response it names
 * (for id-pkix-ocsp-basic, the DER of EncodeOcspBasicResponse()).
 *
 * A null or empty @p responseType (first octet 0) with @p inLen 0 removes responseBytes. With a type,
 * the type is set, and the octets are replaced when @p in is given and @p inLen is not 0; otherwise
 * the octets already held stay (a new responseBytes has none until they are given).
 *
 * @param[in,out] response      The response (borrowed).
 * @param[in]     responseType  Packed OID of the response type (borrowed), or null or empty.
 * @param[in]     in            The response octets (borrowed), or null to keep those held.
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for octets without a type.
 */
TV_API uint32_t SetOcspResponseBytes(OcspResponse* response, const uint8_t* responseType, const uint8_t* in, uint32_t inLen);
/**
 * Reads responseBytes: the packed response type and the response octets.
 *
 * Both parts are tried, each under the size protocol, so one call stores both sizes; the first
 * failure in that order is reported.
 *
 * @param[in]     response            The response (borrowed).
 * @param[out]    outResponseType     Caller buffer for the packed type OID, or null to ask its size.
 * @param[in,out] outResponseTypeLen  Room in @p outResponseType; the octets written or needed.
 * @param[out]    out                 Caller buffer for the response octets, or null to ask their size.
 * @param[in,out] outLen              Room in @p out; the octets written or needed.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the response has no responseBytes, or
 *         they hold no octets yet.
 */
TV_API uint32_t GetOcspResponseBytes(const OcspResponse* response, uint8_t* outResponseType, uint32_t* outResponseTypeLen, uint8_t* out, uint32_t* outLen);

/* Basic response: tbsResponseData, then the signature the responder computes over its DER. */

/**
 * Sets the basic response's version (0 for v1, the DEFAULT).
 *
 * @param[in,out] response  The basic response (borrowed).
 * @param[in]     version   The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspBasicResponseVersion(OcspBasicResponse* response, uint32_t version);
/**
 * Reads the basic response's version; one that carries none reads 0 (v1).
 *
 * @param[in]  response    The basic response (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_DER (307) for a negative version or one longer than
 *         four octets.
 */
TV_API uint32_t GetOcspBasicResponseVersion(const OcspBasicResponse* response, uint32_t* outVersion);
/**
 * Sets the responder ID: by name with the complete DER of the responder's Name, or by key with the
 * octets of its key hash.
 *
 * The Name is kept as the one element it was given, not parsed. The old ID is replaced only once the
 * new one is complete.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @param[in]     kind      #TV_OCSP_RESPONDER_BY_NAME or #TV_OCSP_RESPONDER_BY_KEY.
 * @param[in]     in        The Name's DER or the key hash (borrowed).
 * @param[in]     inLen     Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another kind, or a Name that is
 *         not exactly one complete element.
 */
TV_API uint32_t SetOcspBasicResponseResponderID(OcspBasicResponse* response, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Reads the responder ID: its kind and the Name's complete DER or the key hash octets.
 *
 * @param[in]     response  The basic response (borrowed).
 * @param[out]    outKind   Receives #TV_OCSP_RESPONDER_BY_NAME or #TV_OCSP_RESPONDER_BY_KEY.
 * @param[out]    out       Caller buffer for the Name's DER or the key hash, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no responder ID has been set.
 */
TV_API uint32_t GetOcspBasicResponseResponderID(const OcspBasicResponse* response, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Sets producedAt, written as GeneralizedTime.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @param[in]     time      The time, UTC (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time out of the record's range.
 */
TV_API uint32_t SetOcspBasicResponseProducedAt(OcspBasicResponse* response, const LibraryTime* time);
/**
 * Reads producedAt.
 *
 * @param[in]  response  The basic response (borrowed).
 * @param[out] outTime   Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while producedAt has not been set.
 */
TV_API uint32_t GetOcspBasicResponseProducedAt(const OcspBasicResponse* response, LibraryTime* outTime);
/**
 * Appends a single response to the basic response, which takes the single response itself.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @param[in]     single    The single response (taken over on success: freed with @p response);
 *                          after a failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddOcspBasicResponseSingleResponse(OcspBasicResponse* response, OcspSingleResponse* single);
/**
 * Counts the single responses.
 *
 * @param[in]  response  The basic response (borrowed).
 * @param[out] outCount  Receives the number of single responses.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspBasicResponseSingleResponsesCount(const OcspBasicResponse* response, uint32_t* outCount);
/**
 * Hands out one single response.
 *
 * @param[in]  response   The basic response (borrowed).
 * @param[in]  index      Position from 0.
 * @param[out] outSingle  Receives the single response, lent by @p response (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetOcspBasicResponseSingleResponse(const OcspBasicResponse* response, uint32_t index, OcspSingleResponse** outSingle);
/**
 * Removes every single response, leaving the list empty.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearOcspBasicResponseResponses(OcspBasicResponse* response);
/**
 * Hands out the handle of the basic response's responseExtensions.
 *
 * The handle works while the response has no extensions: adding through it creates them.
 *
 * @param[in,out] response       The basic response (borrowed).
 * @param[out]    outExtensions  Receives the handle, lent by @p response (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspBasicResponseExtensions(OcspBasicResponse* response, X509Extensions** outExtensions);
/**
 * Writes the DER of tbsResponseData, the octets the responder signs.
 *
 * The DER is encoded afresh from the fields, never sliced from a decoded input: a response that came
 * in as BER yields the DER its signature was computed over.
 *
 * @param[in]     response  The basic response (borrowed).
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while the responder ID, producedAt or a part
 *         of a single response is unset.
 */
TV_API uint32_t GetOcspBasicResponseToBeSignedPart(const OcspBasicResponse* response, uint8_t* out, uint32_t* outLen);
/**
 * Sets the signature algorithm.
 *
 * @param[in,out] response     The basic response (borrowed).
 * @param[in]     inOid        Packed OID of the signature algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspBasicResponseSignatureAlgorithmOidAndParameters(OcspBasicResponse* response, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Reads the signature algorithm as a packed OID and the DER of its parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result is
 * #TV_ERR_BUFFER_TOO_SMALL with both sizes stored. Absent parameters read as length 0.
 *
 * @param[in]     response      The basic response (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed; may be null with a
 *                              null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no algorithm has been set.
 */
TV_API uint32_t GetOcspBasicResponseSignatureAlgorithmAndParameters(const OcspBasicResponse* response, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Stores the signature the caller computed over GetOcspBasicResponseToBeSignedPart(), as a BIT
 * STRING with no unused bits; the old value is replaced once the new one is complete.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @param[in]     in        The signature octets (borrowed).
 * @param[in]     inLen     Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspBasicResponseSignature(OcspBasicResponse* response, const uint8_t* in, uint32_t inLen);
/**
 * Reads the signature octets (the unused-bits count is not reported).
 *
 * @param[in]     response  The basic response (borrowed).
 * @param[out]    out       Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no signature has been set.
 */
TV_API uint32_t GetOcspBasicResponseSignature(const OcspBasicResponse* response, uint8_t* out, uint32_t* outLen);
/**
 * Appends a certificate to the basic response's certs, making the list when needed.
 *
 * @param[in,out] response     The basic response (borrowed).
 * @param[in]     certificate  The certificate (taken over on success: freed with @p response); after
 *                             a failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddOcspBasicResponseCertificate(OcspBasicResponse* response, Certificate* certificate);
/**
 * Counts the certificates of the basic response.
 *
 * @param[in]  response  The basic response (borrowed).
 * @param[out] outCount  Receives the number of certificates.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the response carries no certificate
 *         list.
 */
TV_API uint32_t GetOcspBasicResponseCertificatesCount(const OcspBasicResponse* response, uint32_t* outCount);
/**
 * Hands out one certificate of the basic response.
 *
 * @param[in]  response        The basic response (borrowed).
 * @param[in]  index           Position from 0.
 * @param[out] outCertificate  Receives the certificate, lent by @p response (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the response carries no certificate
 *         list; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetOcspBasicResponseCertificate(const OcspBasicResponse* response, uint32_t index, Certificate** outCertificate);
/**
 * Removes the certificate list; nothing to do when there is none.
 *
 * @param[in,out] response  The basic response (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveOcspBasicResponseCertificates(OcspBasicResponse* response);

/* Single response. Times are stored as GeneralizedTime. */

/**
 * Sets the CertID from its parts, as AddOcspRequestCertRequest() takes them; the old CertID is
 * replaced only once the new one is complete.
 *
 * @param[in,out] single             The single response (borrowed).
 * @param[in]     hashOid            Packed OID of the hash algorithm (borrowed).
 * @param[in]     hashParams         Complete DER of the algorithm's parameters (borrowed), or null
 *                                   (or empty) to leave them absent.
 * @param[in]     hashParamsLen      Octets in @p hashParams.
 * @param[in]     issuerNameHash     Hash of the issuer's Name (borrowed).
 * @param[in]     issuerNameHashLen  Octets in @p issuerNameHash.
 * @param[in]     issuerKeyHash      Hash of the issuer's public key (borrowed).
 * @param[in]     issuerKeyHashLen   Octets in @p issuerKeyHash.
 * @param[in]     serial             Content octets of the certificate's serial number (borrowed),
 *                                   stored as given.
 * @param[in]     serialLen          Octets in @p serial, at least 1.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an empty serial.
 */
TV_API uint32_t SetOcspSingleResponseCertID(OcspSingleResponse* single, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* issuerNameHash, uint32_t issuerNameHashLen, const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen, const uint8_t* serial, uint32_t serialLen);
/**
 * Reads the five CertID parts, each under the size protocol.
 *
 * Unlike GetOcspRequestCertRequest(), every part is tried whatever the others answered, so one call
 * stores all five sizes; the first failure in order is reported, #TV_ERR_BUFFER_TOO_SMALL when a
 * part did not fit. Absent parameters read as length 0.
 *
 * @param[in]     single                The single response (borrowed).
 * @param[out]    outHashOid            Caller buffer for the packed hash OID, or null to ask its size.
 * @param[in,out] outHashOidLen         Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams         Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen      Room in @p outHashParams; the octets written or needed.
 * @param[out]    outIssuerNameHash     Caller buffer for the issuer name hash, or null to ask its size.
 * @param[in,out] outIssuerNameHashLen  Room in @p outIssuerNameHash; the octets written or needed.
 * @param[out]    outIssuerKeyHash      Caller buffer for the issuer key hash, or null to ask its size.
 * @param[in,out] outIssuerKeyHashLen   Room in @p outIssuerKeyHash; the octets written or needed.
 * @param[out]    outSerial             Caller buffer for the serial's content octets, or null to ask.
 * @param[in,out] outSerialLen          Room in @p outSerial; the octets written or needed.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no CertID has been set.
 */
TV_API uint32_t GetOcspSingleResponseCertID(const OcspSingleResponse* single, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash, uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash, uint32_t* outIssuerKeyHashLen, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Sets the certificate status to good.
 *
 * @param[in,out] single  The single response (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspSingleResponseCertStatusGood(OcspSingleResponse* single);
/**
 * Sets the certificate status to unknown.
 *
 * @param[in,out] single  The single response (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetOcspSingleResponseCertStatusUnknown(OcspSingleResponse* single);
/**
 * Sets the certificate status to revoked, with the revocation time and, optionally, the reason.
 *
 * @param[in,out] single          The single response (borrowed).
 * @param[in]     revocationTime  The revocation time, UTC (borrowed).
 * @param[in]     reason          The CRLReason code, or -1 (any negative value) for none.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time out of the record's range.
 */
TV_API uint32_t SetOcspSingleResponseCertStatusRevoked(OcspSingleResponse* single, const LibraryTime* revocationTime, int32_t reason);
/**
 * Sets the certificate status from a status number and, for revoked, a RevokedInfo.
 *
 * The RevokedInfo is taken over whatever the result, even on refusal (there is no other way to free
 * it); a refused call leaves the status as it was.
 *
 * @param[in,out] single       The single response (borrowed).
 * @param[in]     status       #TV_OCSP_STATUS_GOOD, #TV_OCSP_STATUS_REVOKED or #TV_OCSP_STATUS_UNKNOWN.
 * @param[in]     revokedInfo  For #TV_OCSP_STATUS_REVOKED a record from AllocCertStatusRevokedInfo()
 *                             (taken over on every path); null for the other statuses.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another status, or a record
 *         given with good or unknown, or missing with revoked.
 */
TV_API uint32_t SetOcspSingleResponseCertStatus(OcspSingleResponse* single, uint32_t status, OcspRevokedInfo* revokedInfo);
/**
 * Reads which certificate status the single response holds.
 *
 * @param[in]  single     The single response (borrowed).
 * @param[out] outStatus  Receives #TV_OCSP_STATUS_GOOD, #TV_OCSP_STATUS_REVOKED or
 *                        #TV_OCSP_STATUS_UNKNOWN.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no status has been set.
 */
TV_API uint32_t GetOcspSingleResponseCertStatus(const OcspSingleResponse* single, uint32_t* outStatus);
/**
 * Reads the revocation time and reason of a revoked status.
 *
 * @param[in]  single             The single response (borrowed).
 * @param[out] outRevocationTime  Receives the revocation time.
 * @param[out] outReason          Receives the CRLReason code, or -1 when the reason is absent.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also when the status is not revoked
 *         or not set (kept: the wrong status for this reader, not an absent field).
 */
TV_API uint32_t GetOcspSingleResponseCertStatusRevokedInfo(const OcspSingleResponse* single, LibraryTime* outRevocationTime, int32_t* outReason);
/**
 * Makes a RevokedInfo for SetOcspSingleResponseCertStatus().
 *
 * @param[in]  revocationTime  The revocation time, UTC (borrowed).
 * @param[in]  reason          The CRLReason code, or -1 (any negative value) for none.
 * @param[out] outRevokedInfo  Receives a new record owned by the caller, released only by handing it
 *                             to SetOcspSingleResponseCertStatus().
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time out of the record's range.
 */
TV_API uint32_t AllocCertStatusRevokedInfo(const LibraryTime* revocationTime, int32_t reason, OcspRevokedInfo** outRevokedInfo);
/**
 * Sets thisUpdate.
 *
 * @param[in,out] single  The single response (borrowed).
 * @param[in]     time    The time, UTC (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time out of the record's range.
 */
TV_API uint32_t SetOcspSingleResponseThisUpdate(OcspSingleResponse* single, const LibraryTime* time);
/**
 * Reads thisUpdate.
 *
 * @param[in]  single   The single response (borrowed).
 * @param[out] outTime  Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while thisUpdate has not been set.
 */
TV_API uint32_t GetOcspSingleResponseThisUpdate(const OcspSingleResponse* single, LibraryTime* outTime);
/**
 * Sets nextUpdate; once set it can be replaced but not removed.
 *
 * @param[in,out] single  The single response (borrowed).
 * @param[in]     time    The time, UTC (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time out of the record's range.
 */
TV_API uint32_t SetOcspSingleResponseNextUpdate(OcspSingleResponse* single, const LibraryTime* time);
/**
 * Reads nextUpdate.
 *
 * @param[in]  single   The single response (borrowed).
 * @param[out] outTime  Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the single response has no nextUpdate.
 */
TV_API uint32_t GetOcspSingleResponseNextUpdate(const OcspSingleResponse* single, LibraryTime* outTime);
/**
 * Hands out the handle of the single response's singleExtensions.
 *
 * The handle works while the single response has no extensions: adding through it creates them.
 *
 * @param[in,out] single         The single response (borrowed).
 * @param[out]    outExtensions  Receives the handle, lent by @p single (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspSingleResponseExtensions(OcspSingleResponse* single, X509Extensions** outExtensions);

#ifdef __cplusplus
}
#endif

#endif
