/**
 * @file tarvelon/request.h
 * PKCS #10 certification requests (RFC 2986).
 *
 * A request is built field by field on a tree from CreatePKCS10CertReq();
 * GetPKCS10CertReqToBeSignedPart() then hands out the octets to sign and SetPKCS10CertReqSignature()
 * stores the signature the caller's provider computed over them.
 */
#ifndef TARVELON_REQUEST_H
#define TARVELON_REQUEST_H

#include "tarvelon/types.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"
#include "tarvelon/attributes.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A CertificationRequest: certificationRequestInfo, signatureAlgorithm and signature. */
typedef struct PKCS10CertReq PKCS10CertReq;

/* Life cycle and coding. */

/**
 * Creates a request holding version 0 (v1, the only version defined), an empty subject and an empty
 * attribute set.
 *
 * The key, its algorithm, the signature algorithm and the signature are unset (they read as
 * #TV_ERR_ABSENT) until set; the request encodes once they are.
 *
 * @param[out] outRequest  Receives a new request owned by the caller (FreePKCS10CertReq()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreatePKCS10CertReq(PKCS10CertReq** outRequest);
/**
 * Decodes a request; octets after the first complete element are ignored.
 *
 * A decoded request writes its attributes in the order received, not in DER set order, so the
 * signed bytes re-encode unchanged.
 *
 * @param[in]  in          The encoding (borrowed).
 * @param[in]  inLen       Octets in @p in.
 * @param[out] outRequest  Receives a new request owned by the caller (FreePKCS10CertReq()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodePKCS10CertReq(const uint8_t* in, uint32_t inLen, PKCS10CertReq** outRequest);
/**
 * Writes a request as DER.
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a mandatory field is unset.
 */
TV_API uint32_t EncodePKCS10CertReq(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
/**
 * Makes a deep copy of a request.
 *
 * @param[in]  request     The request to copy (borrowed).
 * @param[out] outRequest  Receives a new request owned by the caller (FreePKCS10CertReq()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreatePKCS10CertReqCopy(const PKCS10CertReq* request, PKCS10CertReq** outRequest);
/**
 * Frees a request with everything it holds.
 *
 * @param[in] request  The request (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreePKCS10CertReq(PKCS10CertReq* request);
/**
 * Writes the DER of the CertificationRequestInfo, the octets the requester signs.
 *
 * The DER is encoded afresh from the fields, never sliced from a decoded input.
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a mandatory field of the request
 *         info (the public key, say) is unset.
 */
TV_API uint32_t GetPKCS10CertReqToBeSignedPart(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);

/* Version and subject. */

/**
 * Reads the version; leading zero octets of the INTEGER do not count.
 *
 * @param[in]  request     The request (borrowed).
 * @param[out] outVersion  Receives the version number, 0 for v1.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the version is missing or empty;
 *         #TV_ERR_NOT_DER (307) for a negative version or one beyond 32 bits.
 */
TV_API uint32_t GetPKCS10CertReqVersion(const PKCS10CertReq* request, uint32_t* outVersion);
/**
 * Sets the version; any number is written, as the shortest non-negative INTEGER.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     version  The version number, 0 for v1.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqVersion(PKCS10CertReq* request, uint32_t version);
/**
 * Hands out the subject name for reading or filling in place; a missing subject is first created
 * empty, so AddX509NameEntry() on the handle builds it.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[out]    outName  Receives the subject, lent by @p request (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetPKCS10CertReqSubject(PKCS10CertReq* request, X509Name** outName);
/**
 * Replaces the subject name with a copy of @p name; a failed copy leaves the old one.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     name     The name (borrowed, copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqSubject(PKCS10CertReq* request, const X509Name* name);

/* Public key: the subjectPublicKey octets, or a raw GOST key wrapped in or taken out of an OCTET
 * STRING. Algorithm parameters cross as one complete DER element, length 0 when they are absent. */

/**
 * Reads the subjectPublicKey octets (the content of the BIT STRING, unused-bits count not reported).
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the key, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no public key is set.
 */
TV_API uint32_t GetPKCS10CertReqPublicKey(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
/**
 * Replaces the subjectPublicKey with the given octets as a BIT STRING with no unused bits.
 *
 * The octets are stored as they are: for an RSA key the DER RSAPublicKey, for a GOST key the DER
 * OCTET STRING (SetPKCS10CertReqGostR34102001PublicKey() wraps a raw one).
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     in       The key octets (borrowed, copied).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqPublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
/**
 * Stores a raw GOST R 34.10 public key: wrapped in a DER OCTET STRING, it becomes the
 * subjectPublicKey.
 *
 * The OCTET STRING is built in a working buffer of 256 octets, so a key over 253 octets is refused.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     in       The raw key, 64 or 128 octets for the usual key sizes (borrowed, copied).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_WORK_BUFFER (338) for a key over 253 octets.
 */
TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
/**
 * Stores a raw GOST R 34.10-2012 public key, wrapped exactly as
 * SetPKCS10CertReqGostR34102001PublicKey() wraps a 2001 key.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     in       The raw key, 64 or 128 octets (borrowed, copied).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_WORK_BUFFER (338) for a key over 253 octets.
 */
TV_API uint32_t SetPKCS10CertReqGostR34102012PublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
/**
 * Reads a raw GOST R 34.10 public key: the content of the OCTET STRING the subjectPublicKey holds.
 *
 * The algorithm is not looked at. The subjectPublicKey passes through a working buffer of 270
 * octets.
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the raw key, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no public key is set;
 *         #TV_ERR_MALFORMED (302) when the key is no OCTET STRING (an RSA key, say);
 *         #TV_ERR_WORK_BUFFER (338) for a subjectPublicKey over 270 octets.
 */
TV_API uint32_t GetPKCS10CertReqPublicKeyGostR3410(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
/**
 * Reads the public key's algorithm as a packed OID and the DER of its parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored (and the part that fitted written).
 *
 * @param[in]     request       The request (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when absent; may
 *                              be null with a null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no algorithm has been set.
 */
TV_API uint32_t GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the public key's algorithm from a packed OID and the DER of its parameters.
 *
 * The new value is built before the old one goes, so a failure leaves the old algorithm.
 *
 * @param[in,out] request      The request (borrowed).
 * @param[in]     inOid        Packed OID of the algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(PKCS10CertReq* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets the public key's algorithm from an algorithm id of tarvelon/algorithm.h and GOST R 34.10
 * parameters given by mode and parameter-set ids.
 *
 * The parameter block always has the 2001 shape, whose DER leaves out encryption set 1 (its
 * default), whatever algorithm @p algId names.
 *
 * @param[in,out] request            The request (borrowed).
 * @param[in]     algId              Algorithm id, e.g. 102, 3000 or 3001.
 * @param[in]     mode               1 a parameter block, 0 NULL parameters, 255 no parameters.
 * @param[in]     publicKeyParamId   Id of the public-key parameter set (read with mode 1 only).
 * @param[in]     digestParamId      Id of the digest parameter set (read with mode 1 only).
 * @param[in]     encryptionParamId  Id of the encryption parameter set (read with mode 1 only).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another mode;
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm or parameter-set id.
 */
TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* Signature algorithm (the one signatureAlgorithm field, outside the signed part) and signature
 * value. */

/**
 * Reads the signature algorithm as a packed OID and the DER of its parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored (and the part that fitted written).
 *
 * @param[in]     request       The request (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when absent; may
 *                              be null with a null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no algorithm has been set.
 */
TV_API uint32_t GetPKCS10CertReqSignatureAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the signature algorithm from a packed OID and the DER of its parameters.
 *
 * The new value is built before the old one goes, so a failure leaves the old algorithm.
 *
 * @param[in,out] request      The request (borrowed).
 * @param[in]     inOid        Packed OID of the signature algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqSignatureAlgorithmOidAndParameters(PKCS10CertReq* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets the signature algorithm from an algorithm id, with NULL parameters or none.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     algId    Algorithm id, e.g. 100, 3002 or 3003.
 * @param[in]     mode     0 for NULL parameters or 255 for none; a parameter block (1) is refused.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for a mode other than 0 or
 *         255; #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm id.
 */
TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmID(PKCS10CertReq* request, uint32_t algId, uint8_t mode);
/**
 * Sets the signature algorithm from an algorithm id and GOST R 34.10-2001 parameters given by mode
 * and parameter-set ids.
 *
 * @param[in,out] request            The request (borrowed).
 * @param[in]     algId              Algorithm id.
 * @param[in]     mode               1 a parameter block, 0 NULL parameters, 255 no parameters.
 * @param[in]     publicKeyParamId   Id of the public-key parameter set (read with mode 1 only).
 * @param[in]     digestParamId      Id of the digest parameter set (read with mode 1 only).
 * @param[in]     encryptionParamId  Id of the encryption parameter set (read with mode 1 only).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another mode;
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm or parameter-set id.
 */
TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);
/**
 * Reads the signature octets (the unused-bits count is not reported).
 *
 * @param[in]     request  The request (borrowed).
 * @param[out]    out      Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no signature has been set, also for
 *         a signature with a length but no octets.
 */
TV_API uint32_t GetPKCS10CertReqSignature(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
/**
 * Stores the signature the caller computed over GetPKCS10CertReqToBeSignedPart(), as a BIT STRING
 * with no unused bits; the old value is replaced once the new one is complete.
 *
 * @param[in,out] request  The request (borrowed).
 * @param[in]     in       The signature octets (borrowed, copied).
 * @param[in]     inLen    Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetPKCS10CertReqSignature(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);

/* Attributes and requested extensions. */

/**
 * Hands out the request's own attribute set for reading or changing in place.
 *
 * @param[in,out] request        The request (borrowed).
 * @param[out]    outAttributes  Receives the set, lent by @p request (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the request has no attribute set.
 */
TV_API uint32_t GetPKCS10CertReqAttributes(PKCS10CertReq* request, RsaAttributes** outAttributes);
/**
 * Replaces the attribute set with a copy of @p attributes.
 *
 * The copy keeps the source's sorted flag (SetRsaAttributesSorted()), so a set taken from a
 * received request keeps its order.
 * Passing the request's own set changes nothing.
 *
 * @param[in,out] request     The request (borrowed).
 * @param[in]     attributes  The attributes (borrowed, copied).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when @p attributes holds no list or the
 *         request has no attribute set.
 */
TV_API uint32_t SetPKCS10CertReqAttributes(PKCS10CertReq* request, const RsaAttributes* attributes);
/**
 * Decodes the requested extensions: the first value of the extensionRequest attribute
 * (1.2.840.113549.1.9.14), else of the attribute 1.3.6.1.4.1.311.2.1.14.
 *
 * @param[in]  request        The request (borrowed).
 * @param[out] outExtensions  Receives a new extension list owned by the caller
 *                            (FreeX509Extensions()).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the request carries neither
 *         attribute; #TV_ERR_ABSENT (311) when it has no attribute set.
 */
TV_API uint32_t GetPKCS10CertReqExtensions(const PKCS10CertReq* request, X509Extensions** outExtensions);
/**
 * Replaces the extensionRequest attribute (1.2.840.113549.1.9.14) with one holding the given
 * extensions.
 *
 * The new attribute is appended before the old ones of that OID go, so a failure leaves the
 * request as it was; an attribute 1.3.6.1.4.1.311.2.1.14 is left alone (GetPKCS10CertReqExtensions()
 * then prefers the new one). The list is encoded in a working buffer of 1024 octets: a longer one is
 * refused with #TV_ERR_BUFFER_TOO_SMALL and the previous attribute stays (kept as it is).
 *
 * @param[in,out] request     The request (borrowed).
 * @param[in]     extensions  The extensions (borrowed, copied as their DER).
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for extensions whose DER exceeds
 *         1024 octets; #TV_ERR_ABSENT (311) when the request has no attribute set.
 */
TV_API uint32_t SetPKCS10CertReqExtensions(PKCS10CertReq* request, const X509Extensions* extensions);

#ifdef __cplusplus
}
#endif

#endif
