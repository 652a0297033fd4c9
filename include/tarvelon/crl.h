/* Tarvelon: certificate revocation lists (RFC 5280 CertificateList) and CRL lists. */
#ifndef TARVELON_CRL_H
#define TARVELON_CRL_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"
#include "tarvelon/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct X509Crl X509Crl;
/* X509Crls ::= SEQUENCE OF CertificateList */
typedef Asn1List X509Crls;
/* The revokedCertificates list as a value of its own. */
typedef Asn1List X509RevokedCertificates;

/* Life cycle, coding and CRL lists. A CRL added to a list belongs to the list from then on. */
TV_API uint32_t CreateX509Crl(X509Crl** outCrl);
TV_API uint32_t CreateX509Crls(X509Crls** outCrls);
TV_API uint32_t DecodeX509Crl(const uint8_t* in, uint32_t inLen, X509Crl** outCrl);
TV_API uint32_t DecodeX509Crls(const uint8_t* in, uint32_t inLen, X509Crls** outCrls);
TV_API uint32_t EncodeX509Crl(const X509Crl* crl, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeX509Crls(const X509Crls* crls, uint8_t* out, uint32_t* outLen);
TV_API uint32_t CreateX509CrlCopy(const X509Crl* crl, X509Crl** outCrl);
TV_API uint32_t CreateX509CrlsCopy(const X509Crls* crls, X509Crls** outCrls);
TV_API uint32_t FreeX509Crl(X509Crl* crl);
TV_API uint32_t FreeX509Crls(X509Crls* crls);
TV_API uint32_t GetX509CrlsCount(const X509Crls* crls, uint32_t* outCount);
TV_API uint32_t GetX509CrlsCrl(const X509Crls* crls, uint32_t index, X509Crl** outCrl);
TV_API uint32_t AddX509CrlToX509Crls(X509Crls* crls, X509Crl* crl);
/* The DER of the TBSCertList, encoded afresh from the fields: the octets to sign. */
TV_API uint32_t GetX509CrlToBeSignedPart(const X509Crl* crl, uint8_t* out, uint32_t* outLen);

/* Fields. Versions are 0 (v1) and 1 (v2). GetX509CrlIssuer creates an empty name in place when the
 * CRL holds none. The extension handles are the fields themselves, valid while the CRL lives, and
 * given out also while no list is held, so that the first extension can be added in place. */
TV_API uint32_t GetX509CrlVersion(const X509Crl* crl, uint32_t* outVersion);
TV_API uint32_t SetX509CrlVersion(X509Crl* crl, uint32_t version);
TV_API uint32_t GetX509CrlIssuer(X509Crl* crl, X509Name** outIssuer);
TV_API uint32_t SetX509CrlIssuer(X509Crl* crl, const X509Name* issuer);
TV_API uint32_t GetX509CrlThisUpdate(const X509Crl* crl, LibraryTime* outTime);
TV_API uint32_t SetX509CrlThisUpdate(X509Crl* crl, const LibraryTime* time);
TV_API uint32_t GetX509CrlNextUpdate(const X509Crl* crl, LibraryTime* outTime);
TV_API uint32_t SetX509CrlNextUpdate(X509Crl* crl, const LibraryTime* time);
TV_API uint32_t RemoveX509CrlNextUpdate(X509Crl* crl);
TV_API uint32_t GetX509CrlExtensions(X509Crl* crl, X509Extensions** outExtensions);

/* Signature and its algorithm. The algorithm is read from the TBSCertList; the setters write it
 * there first and then into the outer signatureAlgorithm. The ...AlgorithmID form takes modes 0
 * (NULL parameters) and 255 (none) only. */
TV_API uint32_t GetX509CrlSignature(const X509Crl* crl, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetX509CrlSignature(X509Crl* crl, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetX509CrlSignatureAlgorithmOidAndParameters(const X509Crl* crl, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetX509CrlSignatureAlgorithmOidAndParameters(X509Crl* crl, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmID(X509Crl* crl, uint32_t algId, uint8_t mode);
TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(X509Crl* crl, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* Revoked entries, kept in the order added or decoded; duplicates are allowed. */
TV_API uint32_t GetX509CrlRevokedCertificateCount(const X509Crl* crl, uint32_t* outCount);
TV_API uint32_t GetX509CrlRevokedCertificateSerialNumber(const X509Crl* crl, uint32_t index, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetX509CrlRevokedCertificateRevokationDate(const X509Crl* crl, uint32_t index, LibraryTime* outTime);
TV_API uint32_t GetX509CrlRevokedCertificateExtensions(X509Crl* crl, uint32_t index, X509Extensions** outExtensions);
TV_API uint32_t AddX509CrlRevokedCertificate(X509Crl* crl, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryTime* revocationDate, uint32_t* outIndex);
/* Clear keeps an empty list (an empty SEQUENCE in the encoding); Remove drops the field. */
TV_API uint32_t ClearX509CrlRevokedCertificates(X509Crl* crl);
TV_API uint32_t RemoveX509CrlRevokedCertificates(X509Crl* crl);

/* Stand-alone revoked lists. */
TV_API uint32_t CreateX509RevokedCertificates(X509RevokedCertificates** outList);
TV_API uint32_t EncodeX509RevokedCertificates(const X509RevokedCertificates* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t FreeX509RevokedCertificates(X509RevokedCertificates* list);
TV_API uint32_t AddX509RevokedCertificatesRevokedCertificate(X509RevokedCertificates* list, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryTime* revocationDate, uint32_t* outIndex);
TV_API uint32_t GetX509RevokedCertificatesRevokedCertificateExtensions(X509RevokedCertificates* list, uint32_t index, X509Extensions** outExtensions);

/* Authority key identifier (crlExtensions). The general names are always built from the issuer,
 * so a key identifier without an issuer fails with 32. */
TV_API uint32_t SetX509CrlAuthorityKeyIdentifier2(X509Crl* crl, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
TV_API uint32_t SetX509CrlAuthorityKeyIdentifier(X509Crl* crl, const Certificate* issuerCert);

/* 0 and the index of the first entry for the serial under the issuer in force (the CRL's issuer,
 * or the last certificate issuer extension met, RFC 5280 5.3.3); 322 when there is none. Issuers
 * are compared as DER octets: another string type or attribute order does not match. */
TV_API uint32_t FindX509CrlFind(const X509Crl* crl, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen, uint32_t* outIndex);

#ifdef __cplusplus
}
#endif

#endif
