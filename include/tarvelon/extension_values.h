/* Tarvelon: typed values of the standard extensions (RFC 5280, OCSP nonce, Netscape certificate
 * type, Russian qualified-certificate extensions), encoded to and decoded from an extnValue. */
#ifndef TARVELON_EXTENSION_VALUES_H
#define TARVELON_EXTENSION_VALUES_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/* List-valued extensions: each is a list of element trees handled by its Create/Add/Get/Remove/
 * Free/Count/Encode/Decode family. */
typedef Asn1List CrlDistributionPoints;
typedef Asn1List ExtendedKeyUsage;
typedef Asn1List AuthorityInformationAccess;
typedef Asn1List CertificatePolicies;

/* Scalar values: the caller's content octets under one universal tag (an INTEGER as its big-endian
 * two's-complement contents, a text as its bytes); decoding checks the tag and returns the contents. */
TV_API uint32_t EncodeExtensionOcspNonce(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspNonce(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionCrlNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionCrlNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionDeltaCrlIndicator(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionDeltaCrlIndicator(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionSubjectSignTool(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionSubjectSignTool(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionSnils(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionSnils(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionSubjectKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionSubjectKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* Named-bit lists travel as a flag word whose octets, least significant first, are the first four
 * content octets: digitalSignature 0x80 ... encipherOnly 0x01, decipherOnly 0x8000. Decoding keeps
 * at most four octets and clears the unused bits. */
TV_API uint32_t EncodeExtensionKeyUsage(uint32_t bits, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionKeyUsage(const uint8_t* in, uint32_t inLen, uint32_t* outBits);
TV_API uint32_t EncodeExtensionNetscapeCertificateType(uint32_t bits, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionNetscapeCertificateType(const uint8_t* in, uint32_t inLen, uint32_t* outBits);
TV_API uint32_t EncodeExtensionReasonCode(uint32_t reason, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionReasonCode(const uint8_t* in, uint32_t inLen, uint32_t* outReason);
TV_API uint32_t EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionInvalidityDate(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* Structures. pathLen 0xFFFFFFFF means absent; outCa receives the raw BOOLEAN octet (0xFF or 0x00). */
TV_API uint32_t EncodeExtensionBasicConstraints(int cA, uint32_t pathLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionBasicConstraints(const uint8_t* in, uint32_t inLen, uint8_t* outCa, uint32_t* outPathLen);
/* Each of keyId, issuer and serial is written when its pointer is not null. The decoded issuer is a
 * copy the caller frees with FreeX509GeneralNames (null when absent); absent octet parts give length 0. */
TV_API uint32_t EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyId, uint32_t keyIdLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionAuthorityKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* outKeyId, uint32_t* outKeyIdLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/* A null time is left out; an absent part decodes as the null (all-zero) time. */
TV_API uint32_t EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* in, uint32_t inLen, LibraryTime* outNotBefore, LibraryTime* outNotAfter);
TV_API uint32_t EncodeExtensionIssuerSignTool(const uint8_t* signTool, uint32_t signToolLen, const uint8_t* caTool, uint32_t caToolLen, const uint8_t* signToolCert, uint32_t signToolCertLen, const uint8_t* caToolCert, uint32_t caToolCertLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionIssuerSignTool(const uint8_t* in, uint32_t inLen, uint8_t* outSignTool, uint32_t* outSignToolLen, uint8_t* outCaTool, uint32_t* outCaToolLen, uint8_t* outSignToolCert, uint32_t* outSignToolCertLen, uint8_t* outCaToolCert, uint32_t* outCaToolCertLen);
/* The reasons carry context tag [1], not the [3] of RFC 5280, in both directions. The decoded names
 * are copies the caller frees (null when absent); a boolean's present flag is always 1 after a decode. */
TV_API uint32_t EncodeExtensionIssuingDistributionPoint(const GeneralNames* fullName, const X509Name* relativeName, uint32_t onlyUserCerts, uint32_t onlyUserCertsPresent, uint32_t onlyCaCerts, uint32_t onlyCaCertsPresent, uint32_t reasons, uint32_t reasonsPresent, uint32_t indirectCrl, uint32_t indirectCrlPresent, uint32_t onlyAttributeCerts, uint32_t onlyAttributeCertsPresent, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionIssuingDistributionPoint(const uint8_t* in, uint32_t inLen, GeneralNames** outFullName, X509Name** outRelativeName, uint8_t* outOnlyUserCerts, uint32_t* outOnlyUserCertsPresent, uint8_t* outOnlyCaCerts, uint32_t* outOnlyCaCertsPresent, uint32_t* outReasons, uint32_t* outReasonsPresent, uint8_t* outIndirectCrl, uint32_t* outIndirectCrlPresent, uint8_t* outOnlyAttributeCerts, uint32_t* outOnlyAttributeCertsPresent);

/* CRL distribution points. Add takes the given trees over (the caller no longer frees them after a
 * successful add); Get hands out borrowed references into the list. */
TV_API uint32_t CreateExtensionCrlDistributionPoints(CrlDistributionPoints** outList);
TV_API uint32_t AddExtensionCrlDistributionPoint(CrlDistributionPoints* list, GeneralNames* fullName, X509Name* relativeName, uint32_t reasons, GeneralNames* crlIssuer);
TV_API uint32_t GetExtensionCrlDistributionPoint(const CrlDistributionPoints* list, uint32_t index, GeneralNames** outFullName, X509Name** outRelativeName, uint32_t* outReasons, GeneralNames** outCrlIssuer);
TV_API uint32_t RemoveExtensionCrlDistributionPoint(CrlDistributionPoints* list, uint32_t index);
TV_API uint32_t FreeExtensionCrlDistributionPoints(CrlDistributionPoints* list);
TV_API uint32_t GetExtensionCrlDistributionPointsCount(const CrlDistributionPoints* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionCrlDistributionPoints(const CrlDistributionPoints* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionCrlDistributionPoints(const uint8_t* in, uint32_t inLen, CrlDistributionPoints** outList);

/* Extended key usage: packed key-purpose OIDs. */
TV_API uint32_t CreateExtensionExtendedKeyUsage(ExtendedKeyUsage** outList);
TV_API uint32_t AddExtensionExtendedKeyUsage(ExtendedKeyUsage* list, const uint8_t* purposeOid);
TV_API uint32_t GetExtensionExtendedKeyUsage(const ExtendedKeyUsage* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t RemoveExtensionExtendedKeyUsage(ExtendedKeyUsage* list, uint32_t index);
TV_API uint32_t FreeExtensionExtendedKeyUsage(ExtendedKeyUsage* list);
TV_API uint32_t GetExtensionExtendedKeyUsageCount(const ExtendedKeyUsage* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionExtendedKeyUsage(const ExtendedKeyUsage* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionExtendedKeyUsage(const uint8_t* in, uint32_t inLen, ExtendedKeyUsage** outList);

/* Authority information access: Add copies the method OID and takes the location over; Get lends it. */
TV_API uint32_t CreateExtensionAuthorityInformationAccess(AuthorityInformationAccess** outList);
TV_API uint32_t AddExtensionAuthorityInformationAccess(AuthorityInformationAccess* list, const uint8_t* methodOid, GeneralName* location);
TV_API uint32_t GetExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, GeneralName** outLocation);
TV_API uint32_t RemoveExtensionAuthorityInformationAccess(AuthorityInformationAccess* list, uint32_t index);
TV_API uint32_t FreeExtensionAuthorityInformationAccess(AuthorityInformationAccess* list);
TV_API uint32_t GetExtensionAuthorityInformationAccessCount(const AuthorityInformationAccess* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionAuthorityInformationAccess(const uint8_t* in, uint32_t inLen, AuthorityInformationAccess** outList);

/* Certificate policies and their qualifiers; a qualifier is handed in and out as its whole DER element. */
TV_API uint32_t CreateExtensionCertificatePolicies(CertificatePolicies** outList);
TV_API uint32_t AddExtensionPolicyInformation(CertificatePolicies* list, const uint8_t* policyOid, uint32_t* outIndex);
TV_API uint32_t GetExtensionPolicyInformation(const CertificatePolicies* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t RemoveExtensionPolicyInformation(CertificatePolicies* list, uint32_t index);
TV_API uint32_t FreeExtensionCertificatePolicies(CertificatePolicies* list);
TV_API uint32_t GetExtensionPolicyInformationCount(const CertificatePolicies* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionCertificatePolicies(const CertificatePolicies* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionCertificatePolicies(const uint8_t* in, uint32_t inLen, CertificatePolicies** outList);
TV_API uint32_t AddExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex, const uint8_t* qualifierOid, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetExtensionPolicyQualifiersCount(const CertificatePolicies* list, uint32_t policyIndex, uint32_t* outCount);
/* A short qualifier buffer still gets the OID; 49 is returned with the qualifier's size stored. */
TV_API uint32_t GetExtensionPolicyQualifier(const CertificatePolicies* list, uint32_t policyIndex, uint32_t qualifierIndex, uint8_t* outOid, uint32_t* outOidLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex, uint32_t qualifierIndex);

#ifdef __cplusplus
}
#endif

#endif
