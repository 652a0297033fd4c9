/* Tarvelon: PKCS #10 certification requests (RFC 2986). */
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

typedef struct PKCS10CertReq PKCS10CertReq;

/* Life cycle and coding. A new request holds version 0, an empty subject and an empty attribute set. */
TV_API uint32_t CreatePKCS10CertReq(PKCS10CertReq** outRequest);
/* A decoded request writes its attributes in the order received, so the signed bytes re-encode unchanged. */
TV_API uint32_t DecodePKCS10CertReq(const uint8_t* in, uint32_t inLen, PKCS10CertReq** outRequest);
TV_API uint32_t EncodePKCS10CertReq(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
TV_API uint32_t CreatePKCS10CertReqCopy(const PKCS10CertReq* request, PKCS10CertReq** outRequest);
TV_API uint32_t FreePKCS10CertReq(PKCS10CertReq* request);
/* The DER of the CertificationRequestInfo, the bytes to sign. */
TV_API uint32_t GetPKCS10CertReqToBeSignedPart(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);

/* Version and subject. The subject returned is borrowed from the request. */
TV_API uint32_t GetPKCS10CertReqVersion(const PKCS10CertReq* request, uint32_t* outVersion);
TV_API uint32_t SetPKCS10CertReqVersion(PKCS10CertReq* request, uint32_t version);
TV_API uint32_t GetPKCS10CertReqSubject(PKCS10CertReq* request, X509Name** outName);
TV_API uint32_t SetPKCS10CertReqSubject(PKCS10CertReq* request, const X509Name* name);

/* Public key: the subjectPublicKey octets, or a raw GOST key wrapped in / taken out of an OCTET STRING. */
TV_API uint32_t GetPKCS10CertReqPublicKey(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetPKCS10CertReqPublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
TV_API uint32_t SetPKCS10CertReqGostR34102012PublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetPKCS10CertReqPublicKeyGostR3410(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(PKCS10CertReq* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* Signature algorithm (the one signatureAlgorithm field) and signature value. */
TV_API uint32_t GetPKCS10CertReqSignatureAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetPKCS10CertReqSignatureAlgorithmOidAndParameters(PKCS10CertReq* request, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/* mode 0 (NULL parameters) or 255 (none) only. */
TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmID(PKCS10CertReq* request, uint32_t algId, uint8_t mode);
TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);
TV_API uint32_t GetPKCS10CertReqSignature(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetPKCS10CertReqSignature(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen);

/* Attributes: the handle returned is the request's own set (borrowed); the setter stores a copy. */
TV_API uint32_t GetPKCS10CertReqAttributes(PKCS10CertReq* request, RsaAttributes** outAttributes);
TV_API uint32_t SetPKCS10CertReqAttributes(PKCS10CertReq* request, const RsaAttributes* attributes);
/* Requested extensions from 1.2.840.113549.1.9.14, else 1.3.6.1.4.1.311.2.1.14; the caller frees the result. */
TV_API uint32_t GetPKCS10CertReqExtensions(const PKCS10CertReq* request, X509Extensions** outExtensions);
/* Replaces the 1.2.840.113549.1.9.14 attribute; a list whose DER exceeds 1024 bytes is refused with 49. */
TV_API uint32_t SetPKCS10CertReqExtensions(PKCS10CertReq* request, const X509Extensions* extensions);

#ifdef __cplusplus
}
#endif

#endif
