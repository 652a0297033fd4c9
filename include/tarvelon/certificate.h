/* Tarvelon: X.509 v3 certificates (RFC 5280) and certificate lists. */
#ifndef TARVELON_CERTIFICATE_H
#define TARVELON_CERTIFICATE_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Certificate Certificate;
/* Certificates ::= SEQUENCE OF Certificate */
typedef Asn1List Certificates;

/* Life cycle and coding. A new certificate has its structures present and its fields unset. */
TV_API uint32_t CreateCertificate(Certificate** outCertificate);
TV_API uint32_t DecodeCertificate(const uint8_t* in, uint32_t inLen, Certificate** outCertificate);
TV_API uint32_t EncodeCertificate(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t CreateCertificateCopy(const Certificate* certificate, Certificate** outCertificate);
TV_API uint32_t FreeCertificate(Certificate* certificate);
/* The DER of the TBSCertificate, written afresh from the fields (not the bytes once decoded). */
TV_API uint32_t GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* out, uint32_t* outLen);

/* Certificate lists. Add takes the certificate over without a copy; Get lends it. */
TV_API uint32_t CreateCertificates(Certificates** outCertificates);
TV_API uint32_t DecodeCertificates(const uint8_t* in, uint32_t inLen, Certificates** outCertificates);
TV_API uint32_t EncodeCertificates(const Certificates* certificates, uint8_t* out, uint32_t* outLen);
TV_API uint32_t CreateCertificatesCopy(const Certificates* certificates, Certificates** outCertificates);
TV_API uint32_t FreeCertificates(Certificates* certificates);
TV_API uint32_t GetCertificatesCount(const Certificates* certificates, uint32_t* outCount);
TV_API uint32_t GetCertificatesCertificate(const Certificates* certificates, uint32_t index, Certificate** outCertificate);
TV_API uint32_t AddCertificateToCertificates(Certificates* certificates, Certificate* certificate);

/* Fields. Name and extension getters lend handles into the certificate; an unset name is created
 * empty in place. The _i setters with copy 0 take the given name over. */
TV_API uint32_t GetCertificateSubject(Certificate* certificate, X509Name** outName);
TV_API uint32_t SetCertificateSubject(Certificate* certificate, const X509Name* name);
TV_API uint32_t SetCertificateSubject_i(Certificate* certificate, X509Name* name, uint32_t copy);
TV_API uint32_t GetCertificateIssuer(Certificate* certificate, X509Name** outName);
TV_API uint32_t SetCertificateIssuer(Certificate* certificate, const X509Name* name);
TV_API uint32_t SetCertificateIssuer_i(Certificate* certificate, X509Name* name, uint32_t copy);
/* 0 for v1, 1 for v2, 2 for v3. */
TV_API uint32_t GetCertificateVersion(const Certificate* certificate, uint32_t* outVersion);
TV_API uint32_t SetCertificateVersion(Certificate* certificate, uint32_t version);
/* The INTEGER's content octets exactly as stored (big-endian two's complement, not normalised). */
TV_API uint32_t GetCertificateSerialNumber(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetCertificateSerialNumber(Certificate* certificate, const uint8_t* in, uint32_t inLen);
/* Null (not a status) when anything is missing. */
TV_API const uint8_t* ptr_GetCertificateSerialNumber(const Certificate* certificate, uint32_t* outLen);
TV_API uint32_t GetCertificateValidNotBefore(const Certificate* certificate, LibraryTime* outTime);
TV_API uint32_t GetCertificateValidNotAfter(const Certificate* certificate, LibraryTime* outTime);
TV_API uint32_t SetCertificateValidNotBefore(Certificate* certificate, const LibraryTime* time);
TV_API uint32_t SetCertificateValidNotAfter(Certificate* certificate, const LibraryTime* time);
/* Null input octets leave the unique id absent. */
TV_API uint32_t GetCertificateIssuerUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint8_t* outUnusedBits);
TV_API uint32_t GetCertificateSubjectUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint8_t* outUnusedBits);
TV_API uint32_t SetCertificateIssuerUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen, uint8_t unusedBits);
TV_API uint32_t SetCertificateSubjectUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen, uint8_t unusedBits);
/* The handle is the certificate's extensions field, given also while it holds no list, so the
 * extension list operations create and fill the list in place. */
TV_API uint32_t GetCertificateExtensions(Certificate* certificate, X509Extensions** outExtensions);
TV_API uint32_t SetCertificateExtensions(Certificate* certificate, const X509Extensions* extensions);

/* Signature, public key and algorithms. Signature-algorithm setters write tbsCertificate.signature
 * and then signatureAlgorithm; the getter reads tbsCertificate.signature. Parameters cross as a whole
 * DER element, length 0 when absent. */
TV_API uint32_t GetCertificateSignature(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetCertificateSignature(Certificate* certificate, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCertificatePublicKey(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetCertificatePublicKey(Certificate* certificate, const uint8_t* in, uint32_t inLen);
TV_API uint32_t SetCertificateGostR34102001PublicKey(Certificate* certificate, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCertificatePublicKeyGostR3410(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetCertificateDecodedPublicKeyGostR34102012(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint32_t* outPublicKeyParamId, uint32_t* outDigestParamId, uint32_t* outEncryptionParamId);
TV_API uint32_t GetCertificatePublicKeyAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetCertificatePublicKeyAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t SetCertificatePublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algId, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);
TV_API uint32_t GetCertificateSignatureAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetCertificateSignatureAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/* Mode 0 (NULL parameters) or 255 (none) only. */
TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmID(Certificate* certificate, uint32_t algId, uint8_t mode);
TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* Key identifiers. The subject key identifier is the SHA-1 of the public key's bit-string octets
 * (RFC 5280 4.2.1.2 method 1). Each setter replaces its extension, added as not critical. */
TV_API uint32_t SetCertificateSubjectKeyIdentifier(Certificate* certificate);
TV_API uint32_t GetCertificateSubjectKeyIdentifier(Certificate* certificate, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetCertificateAuthorityKeyIdentifier(Certificate* certificate, const Certificate* issuerCertificate);
TV_API uint32_t SetCertificateAuthorityKeyIdentifier2(Certificate* certificate, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/* The issuer comes back as new general names (or, from the 2 form, a new name; null when the
 * extension names no issuer) that the caller frees. */
TV_API uint32_t GetCertificateAuthorityKeyIdentifier(Certificate* certificate, uint8_t* outKeyId, uint32_t* outKeyIdLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
TV_API uint32_t GetCertificateAuthorityKeyIdentifier2(Certificate* certificate, uint8_t* outKeyId, uint32_t* outKeyIdLen, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/* 0 when the certificate is the one the identifier names, TV_ERR_DIFFERENT otherwise. A given key
 * id decides alone; issuer and serial are then ignored. */
TV_API uint32_t IsCertificateCorrespondToAuthKeyIdent(Certificate* certificate, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/* Code page 1251 text. The old extension is removed first, so a failure leaves none. */
TV_API uint32_t SetCertificateKestruneKeyIdentifier(Certificate* certificate, const char* text);

/* Extension conveniences. */
TV_API uint32_t GetCertificateExtensionValue(Certificate* certificate, const uint8_t* inOid, uint8_t* out, uint32_t* outLen);
/* Replaces the CRL distribution points with one point whose full name is the URL. */
TV_API uint32_t SetCertificateExtensionCrlDistributionPoints(Certificate* certificate, const char* url);

#ifdef __cplusplus
}
#endif

#endif
