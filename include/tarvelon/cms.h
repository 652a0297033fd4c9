/* Tarvelon: CMS signed messages (RFC 5652): ContentInfo, SignedData and SignerInfo, and the
 * signature workflows built on them. The library computes no digest and no signature: the caller
 * hashes the content, signs the bytes handed out by GetCmsSignedDataToBeSignedPart (or
 * GetCmsSignerInfoEncodedSignedAttributes) and stores the signature back.
 *
 * Certificates and CRLs inside SignedData are kept as their encoded elements; decode them with the
 * certificate and CRL families when their fields are needed.
 *
 * Display texts (GetCertificateCN, GetCrlCN, the signer texts, the Kestrune identifier) are
 * single-byte code page 1251 and NUL-terminated: a size query reports the text length + 1, and after
 * a successful copy the length is the text length without the NUL. */
#ifndef TARVELON_CMS_H
#define TARVELON_CMS_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/attributes.h"
#include "tarvelon/certificate.h"
#include "tarvelon/crl.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ContentInfo ::= SEQUENCE { contentType OBJECT IDENTIFIER, content [0] EXPLICIT ANY OPTIONAL } */
typedef struct CmsContentInfo CmsContentInfo;
typedef struct CmsSignedData CmsSignedData;
typedef struct CmsSignerInfo CmsSignerInfo;
/* EncapsulatedContentInfo ::= SEQUENCE { eContentType OBJECT IDENTIFIER, eContent [0] EXPLICIT OCTET STRING OPTIONAL } */
typedef struct CmsEncapsulatedContentInfo CmsEncapsulatedContentInfo;

/* Kinds of stored certificates (CertificateChoices) and the identifier octet each imposes. */
#define TV_CMS_CERT_CERTIFICATE 1u /* 0x30 */
#define TV_CMS_CERT_EXTENDED 2u    /* [0] 0xA0 */
#define TV_CMS_CERT_V1_ATTR 3u     /* [1] 0xA1 */
#define TV_CMS_CERT_V2_ATTR 4u     /* [2] 0xA2 */
#define TV_CMS_CERT_OTHER 5u       /* [3] 0xA3 */
/* Kinds of stored CRLs (RevocationInfoChoice): a CertificateList, or the content octets of an
 * OtherRevocationInfoFormat that the library wraps in a constructed [1] header. */
#define TV_CMS_CRL_CERTIFICATE_LIST 1u
#define TV_CMS_CRL_OTHER 2u
/* Signer identifier alternatives. */
#define TV_CMS_SID_ISSUER_AND_SERIAL 0u
#define TV_CMS_SID_KEY_IDENTIFIER 1u

/* ContentInfo. Create makes the mandatory members; the content is the complete encoding of the
 * inner value (tag included). */
TV_API uint32_t CreateCmsContentInfo(CmsContentInfo** outContentInfo);
TV_API uint32_t FreeCmsContentInfo(CmsContentInfo* contentInfo);
TV_API uint32_t CreateCmsContentInfoCopy(const CmsContentInfo* contentInfo, CmsContentInfo** outContentInfo);
TV_API uint32_t EncodeCmsContentInfo(const CmsContentInfo* contentInfo, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeCmsContentInfo(const uint8_t* in, uint32_t inLen, CmsContentInfo** outContentInfo);
/* The content of an id-data ContentInfo: bytes as an OCTET STRING element, and back. */
TV_API uint32_t EncodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetCmsContentInfoTypeOid(CmsContentInfo* contentInfo, const uint8_t* inOid);
TV_API uint32_t GetCmsContentInfoTypeOid(const CmsContentInfo* contentInfo, uint8_t* outOid, uint32_t* outOidLen);
/* Null bytes or length 0 remove the content. An absent content reads as length 0. */
TV_API uint32_t SetCmsContentInfoContent(CmsContentInfo* contentInfo, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsContentInfoContent(const CmsContentInfo* contentInfo, uint8_t* out, uint32_t* outLen);

/* SignedData. */
TV_API uint32_t CreateCmsSignedData(CmsSignedData** outSignedData);
TV_API uint32_t FreeCmsSignedData(CmsSignedData* signedData);
TV_API uint32_t CreateCmsSignedDataCopy(const CmsSignedData* signedData, CmsSignedData** outSignedData);
TV_API uint32_t EncodeCmsSignedData(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeCmsSignedData(const uint8_t* in, uint32_t inLen, CmsSignedData** outSignedData);
TV_API uint32_t SetCmsSignedDataVersion(CmsSignedData* signedData, uint32_t version);
TV_API uint32_t GetCmsSignedDataVersion(const CmsSignedData* signedData, uint32_t* outVersion);
/* Parameters are a complete encoding (null or empty: none); an algorithm already present is not added again. */
TV_API uint32_t AddCmsSignedDataDigestAlgorithmOidAndParameters(CmsSignedData* signedData, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetCmsSignedDataDigestAlgorithmsCount(const CmsSignedData* signedData, uint32_t* outCount);
/* Both parts are tried, so both lengths report their needs; 49 when either did not fit. */
TV_API uint32_t GetCmsSignedDataDigestAlgorithmOidAndParameters(const CmsSignedData* signedData, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t ClearCmsSignedDataDigestAlgorithms(CmsSignedData* signedData);
TV_API uint32_t SetCmsSignedDataContentTypeOid(CmsSignedData* signedData, const uint8_t* inOid);
TV_API uint32_t GetCmsSignedDataContentTypeOid(const CmsSignedData* signedData, uint8_t* outOid, uint32_t* outOidLen);
/* eContent's octets; null bytes or length 0 remove eContent (a detached signature), which reads as length 0. */
TV_API uint32_t SetCmsSignedDataContent(CmsSignedData* signedData, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsSignedDataContent(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetCmsSignedDataContentInfo(CmsSignedData* signedData, CmsEncapsulatedContentInfo** outContentInfo);
/* The identifier octet of the stored copy is the kind's (the length octets are kept); a certificate
 * equal to one already stored is not stored again. */
TV_API uint32_t AddCmsSignedDataEncodedCertificate(CmsSignedData* signedData, uint32_t certKind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsSignedDataCertificatesCount(const CmsSignedData* signedData, uint32_t* outCount);
/* Kind 1..5 from the identifier octet, 0 for anything else; a null length with a buffer is 32, both null only report the kind. */
TV_API uint32_t GetCmsSignedDataEncodedCertificate(const CmsSignedData* signedData, uint32_t index, uint32_t* outCertKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveCmsSignedDataCertificates(CmsSignedData* signedData);
/* CRLs are stored as often as they are added (no duplicate check, unlike certificates). */
TV_API uint32_t AddCmsSignedDataEncodedCrl(CmsSignedData* signedData, uint32_t crlKind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsSignedDataCrlsCount(const CmsSignedData* signedData, uint32_t* outCount);
TV_API uint32_t GetCmsSignedDataEncodedCrl(const CmsSignedData* signedData, uint32_t index, uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveCmsSignedDataCrls(CmsSignedData* signedData);
/* A new empty signer, appended; the pointer is borrowed from the SignedData. */
TV_API uint32_t AddCmsSignedDataSignerInfo(CmsSignedData* signedData, CmsSignerInfo** outSignerInfo);
TV_API uint32_t GetCmsSignedDataSignerInfosCount(const CmsSignedData* signedData, uint32_t* outCount);
TV_API uint32_t GetCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index, CmsSignerInfo** outSignerInfo);
TV_API uint32_t DeleteCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index);
TV_API uint32_t ClearCmsSignedDataSignerInfos(CmsSignedData* signedData);

/* SignerInfo: made alone only to be filled and read (it reaches the wire inside a SignedData). The
 * identifier setters leave the version alone: RFC 5652 wants 1 with issuer and serial, 3 with a key
 * identifier. */
TV_API uint32_t CreateCmsSignerInfo(CmsSignerInfo** outSignerInfo);
TV_API uint32_t FreeCmsSignerInfo(CmsSignerInfo* signerInfo);
TV_API uint32_t SetCmsSignerInfoVersion(CmsSignerInfo* signerInfo, uint32_t version);
TV_API uint32_t GetCmsSignerInfoVersion(const CmsSignerInfo* signerInfo, uint32_t* outVersion);
/* The Name is copied; the serial is stored as the given INTEGER content octets. */
TV_API uint32_t SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(CmsSignerInfo* signerInfo, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
TV_API uint32_t SetCmsSignerInfoSignerSubjectKeyIdentifier(CmsSignerInfo* signerInfo, const uint8_t* inKeyId, uint32_t inKeyIdLen);
/* Issuer and serial: the issuer is borrowed, the serial under the size protocol and the key-id length 0.
 * Key identifier: the issuer is null, the serial length 0 and the key id under the size protocol. */
TV_API uint32_t GetCmsSignerInfoSignerIdentifier(CmsSignerInfo* signerInfo, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen);
TV_API uint32_t SetCmsSignerInfoDigestAlgorithmOidAndParameters(CmsSignerInfo* signerInfo, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetCmsSignerInfoDigestAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetCmsSignerInfoSignatureAlgorithmOidAndParameters(CmsSignerInfo* signerInfo, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetCmsSignerInfoSignatureAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetCmsSignerInfoSignature(CmsSignerInfo* signerInfo, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsSignerInfoSignature(const CmsSignerInfo* signerInfo, uint8_t* out, uint32_t* outLen);
/* The attribute-list handles are the signer's own slots: the attribute functions change them in place. */
TV_API uint32_t GetCmsSignerInfoSignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes);
TV_API uint32_t GetCmsSignerInfoUnsignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes);
/* The octets a CMS signature covers: the signed attributes as a SET (first octet 0x31, not the [0] of
 * the encoded SignerInfo); none: length 0. */
TV_API uint32_t GetCmsSignerInfoEncodedSignedAttributes(const CmsSignerInfo* signerInfo, uint8_t* out, uint32_t* outLen);

/* Signature workflows. */
/* The version banner; a null buffer is 32 (no size query); room for the NUL is needed. */
TV_API uint32_t GetVersionInfo(char* outText, uint32_t* outTextLen);
/* Adds contentType (always id-data), messageDigest and, when a time is given, signingTime; the 2-form
 * then appends every attribute of `extra` (null: none). Attributes already there stay. */
TV_API uint32_t FillCmsSignerInfoWithSignedAttributes(CmsSignerInfo* signerInfo, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime);
TV_API uint32_t FillCmsSignerInfoWithSignedAttributes2(CmsSignerInfo* signerInfo, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const RsaAttributes* extra);
/* The bytes to sign for those attributes; pass the same digest, time and extra attributes to
 * CreateCmsFileSignature2 to rebuild the identical set. */
TV_API uint32_t GetCmsSignedDataToBeSignedPart(const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetCmsSignedDataToBeSignedPart2(const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const RsaAttributes* extra, uint8_t* out, uint32_t* outLen);
/* A complete ContentInfo(SignedData) with one more signer. Content null: detached. The digest and time
 * are used only with withSignedAttributes, and then both are required (32): a signer whose signed
 * attributes carry no signingTime is built with the SignerInfo functions instead. inCerts/inCertLens: further certificates (stored once
 * each; the signer's own certificate only when it is among them). inExisting: a message to add the
 * signer to (its eContent must equal the content when both are there: 320; no content passed makes
 * the result detached). reserved is not used. */
TV_API uint32_t CreateCmsFileSignature2(const uint8_t* inContent, uint32_t inContentLen, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const uint8_t* inDigestOid, const uint8_t* inDigestParams, uint32_t inDigestParamsLen, const uint8_t* inSignerCert, uint32_t inSignerCertLen, const uint8_t* const* inCerts, const uint32_t* inCertLens, uint32_t certCount, const uint8_t* inSignatureOid, const uint8_t* inSignatureParams, uint32_t inSignatureParamsLen, uint32_t withSignedAttributes, const RsaAttributes* extra, uint64_t reserved, const uint8_t* inSignature, uint32_t inSignatureLen, const uint8_t* inExisting, uint32_t inExistingLen, uint8_t* out, uint32_t* outLen);
/* 0 when the certificate is the signer's: 320 for another serial or key identifier, the name
 * comparison's code for another issuer, 307 for a certificate without serial, 338 for an identifier
 * longer than 64 (serial) or 32 (key id) octets. */
TV_API uint32_t CompareSignerInfoAndCertificate(CmsSignerInfo* signerInfo, Certificate* certificate);
TV_API uint32_t GetKestruneIdentifierFromCertificate(const Certificate* certificate, char* outText, uint32_t* outTextLen);
/* "serial, " (when every serial octet is printable 0x20..0x7A) and the subject's common names. */
TV_API uint32_t GetCertificateCN(Certificate* certificate, char* outText, uint32_t* outTextLen);
/* Version, validity and the issuer's common names, in Russian. */
TV_API uint32_t GetCrlCN(X509Crl* crl, char* outText, uint32_t* outTextLen);
/* Signer numbers count from 1. The time out and the text length may be null (not asked for); the
 * text is the signer's issuer serial and common names, or "Подписант не найден" (code page 1251) for
 * a signer named by a key identifier of at most 4 octets (a longer one is 49 when text is asked for). */
TV_API uint32_t GetBufferCmsSignatureTimeAndCN(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, LibraryTime* outTime, char* outText, uint32_t* outTextLen);
TV_API uint32_t GetCmsSignatureTimeAndCN(uint32_t signerNumber, const char* path, LibraryTime* outTime, char* outText, uint32_t* outTextLen);
TV_API uint32_t GetBufferCmsSignatureTime(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, LibraryTime* outTime);
TV_API uint32_t GetCmsSignatureTime(uint32_t signerNumber, const char* path, LibraryTime* outTime);
/* The message without that signer; removing signer 1 of a message with one signer gives the content
 * itself (322 when detached). digestAlgorithms and certificates are left as they are. */
TV_API uint32_t DeleteBufferCmsSignerInfo(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DeleteCmsSignerInfo(uint32_t signerNumber, const char* inPath, const char* outPath);

#ifdef __cplusplus
}
#endif

#endif
