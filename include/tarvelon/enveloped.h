/* Tarvelon: CMS enveloped messages (RFC 5652 6) with key-transport recipients, the GOST 28147-89
 * content-encryption parameters (RFC 4357) and the GostR3410-KeyTransport structure (RFC 4490). The
 * library encrypts nothing: the caller's provider makes the content-encryption key, encrypts the
 * content and wraps the key for each recipient; the library builds and reads the structures around
 * the octets it is given (encrypted content, IV, encrypted key, MAC, UKM, ephemeral key), storing
 * each exactly as given, without length checks.
 *
 * An EnvelopedData travels in a ContentInfo of type id-envelopedData (1.2.840.113549.1.7.3): encode
 * it and pass the encoding to SetCmsContentInfoContent (cms.h).
 *
 * Originator certificates and CRLs follow the SignedData rules of cms.h (kinds, the identifier
 * octet rewritten, identical certificates stored once, CRLs never deduplicated), except that an
 * unknown kind is 306 here, and that originatorInfo and its SETs are made on the first Add. */
#ifndef TARVELON_ENVELOPED_H
#define TARVELON_ENVELOPED_H

#include "tarvelon/types.h"
#include "tarvelon/x509name.h"
#include "tarvelon/attributes.h"
#include "tarvelon/cms.h"

#ifdef __cplusplus
extern "C" {
#endif

/* EnvelopedData ::= SEQUENCE { version, originatorInfo [0] IMPLICIT OPTIONAL, recipientInfos SET OF
 * RecipientInfo, encryptedContentInfo, unprotectedAttrs [1] IMPLICIT OPTIONAL } */
typedef struct CmsEnvelopedData CmsEnvelopedData;
/* KeyTransRecipientInfo ::= SEQUENCE { version, rid, keyEncryptionAlgorithm, encryptedKey } */
typedef struct KeyTrans KeyTrans;
/* GostR3410-KeyTransport ::= SEQUENCE { sessionEncryptedKey, transportParameters [0] IMPLICIT OPTIONAL } */
typedef struct GostR3410KeyTransport GostR3410KeyTransport;

/* Recipient kinds (RecipientInfo alternatives). Only key transport is read into fields; the others
 * are kept as the complete elements ([1]..[4]), held as ANY values of the engine (asn1.h). A caller
 * makes one from its encoding with the engine's decoder and a descriptor of type ANY:
 *     static const Asn1Descriptor any = {ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_ANY, -1, 0, NULL, 0, NULL};
 *     void* value = NULL; uint32_t used = 0;
 *     Asn1DecodeItem(element, elementLen, &any, &value, &used);   element: A1 ... (a KeyAgreeRecipientInfo)
 *     AddCmsEnvelopedDataRecipientInfo(envelopedData, TV_CMS_RECIPIENT_KEY_AGREE, value);
 * GetCmsEnvelopedDataRecipientInfo hands such a value back; GetAsn1AnyValue reads its octets. */
#define TV_CMS_RECIPIENT_KEY_TRANS 1u /* ktri  KeyTransRecipientInfo, a KeyTrans handle */
#define TV_CMS_RECIPIENT_KEY_AGREE 2u /* kari  [1] KeyAgreeRecipientInfo */
#define TV_CMS_RECIPIENT_KEK 3u       /* kekri [2] KEKRecipientInfo */
#define TV_CMS_RECIPIENT_PASSWORD 4u  /* pwri  [3] PasswordRecipientInfo */
#define TV_CMS_RECIPIENT_OTHER 5u     /* ori   [4] OtherRecipientInfo */

/* EnvelopedData. Create makes the mandatory members. */
TV_API uint32_t CreateCmsEnvelopedData(CmsEnvelopedData** outEnvelopedData);
TV_API uint32_t FreeCmsEnvelopedData(CmsEnvelopedData* envelopedData);
TV_API uint32_t EncodeCmsEnvelopedData(const CmsEnvelopedData* envelopedData, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeCmsEnvelopedData(const uint8_t* in, uint32_t inLen, CmsEnvelopedData** outEnvelopedData);
TV_API uint32_t SetCmsEnvelopedDataVersion(CmsEnvelopedData* envelopedData, uint32_t version);
TV_API uint32_t GetCmsEnvelopedDataVersion(const CmsEnvelopedData* envelopedData, uint32_t* outVersion);
/* originatorInfo certificates and CRLs; kinds as in cms.h (TV_CMS_CERT_*, TV_CMS_CRL_*). */
TV_API uint32_t AddCmsEnvelopedDataEncodedCertificate(CmsEnvelopedData* envelopedData, uint32_t certKind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsEnvelopedDataCertificatesCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
TV_API uint32_t GetCmsEnvelopedDataEncodedCertificate(const CmsEnvelopedData* envelopedData, uint32_t index, uint32_t* outCertKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveCmsEnvelopedDataCertificates(CmsEnvelopedData* envelopedData);
TV_API uint32_t AddCmsEnvelopedDataEncodedCrl(CmsEnvelopedData* envelopedData, uint32_t crlKind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsEnvelopedDataCrlsCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
TV_API uint32_t GetCmsEnvelopedDataEncodedCrl(const CmsEnvelopedData* envelopedData, uint32_t index, uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveCmsEnvelopedDataCrls(CmsEnvelopedData* envelopedData);
/* Appends a recipient of that kind whose value is `value` (a KeyTrans for kind 1, an ANY value for
 * 2..5); on success the EnvelopedData owns the value and the caller must not free it. */
TV_API uint32_t AddCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t recipientKind, void* value);
TV_API uint32_t GetCmsEnvelopedDataRecipientInfosCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
/* Borrowed value and its kind (0 for an alternative the library does not know). */
TV_API uint32_t GetCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t index, void** outValue, uint32_t* outRecipientKind);
TV_API uint32_t RemoveCmsEnvelopedDataRecipientInfos(CmsEnvelopedData* envelopedData);
/* encryptedContentInfo */
TV_API uint32_t SetCmsEnvelopedDataEncryptedContentTypeOid(CmsEnvelopedData* envelopedData, const uint8_t* inOid);
TV_API uint32_t GetCmsEnvelopedDataEncryptedContentTypeOid(const CmsEnvelopedData* envelopedData, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(CmsEnvelopedData* envelopedData, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(const CmsEnvelopedData* envelopedData, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/* Null bytes or length 0 remove the encrypted content (it travels apart); absent reads as length 0. */
TV_API uint32_t SetCmsEnvelopedDataEncryptedContent(CmsEnvelopedData* envelopedData, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetCmsEnvelopedDataEncryptedContent(const CmsEnvelopedData* envelopedData, uint8_t* out, uint32_t* outLen);
/* Borrowed attribute list of unprotectedAttrs, for the functions of attributes.h (made on demand). */
TV_API uint32_t GetCmsEnvelopedDataUnprotectedAttributes(CmsEnvelopedData* envelopedData, RsaAttributes** outAttributes);

/* KeyTrans. The version is the caller's (RFC 5652: 0 with issuerAndSerialNumber, 2 with
 * subjectKeyIdentifier); the identifier functions behave as the signer identifier ones of cms.h. */
TV_API uint32_t CreateKeyTrans(KeyTrans** outKeyTrans);
TV_API uint32_t FreeKeyTrans(KeyTrans* keyTrans);
TV_API uint32_t EncodeKeyTrans(const KeyTrans* keyTrans, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeKeyTrans(const uint8_t* in, uint32_t inLen, KeyTrans** outKeyTrans);
TV_API uint32_t SetKeyTransVersion(KeyTrans* keyTrans, uint32_t version);
TV_API uint32_t GetKeyTransVersion(const KeyTrans* keyTrans, uint32_t* outVersion);
TV_API uint32_t SetKeyTransRecipientIdentifierIssuerAndSerialNumber(KeyTrans* keyTrans, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
TV_API uint32_t SetKeyTransRecipientIdentifierSubjectKeyIdentifier(KeyTrans* keyTrans, const uint8_t* inKeyId, uint32_t inKeyIdLen);
TV_API uint32_t GetKeyTransRecipientIdentifier(KeyTrans* keyTrans, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen);
TV_API uint32_t SetKeyTransKeyEncryptionAlgorithmOidAndParameters(KeyTrans* keyTrans, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetKeyTransKeyEncryptionAlgorithmOidAndParameters(const KeyTrans* keyTrans, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/* The encryptedKey OCTET STRING's contents (for GOST, an encoded GostR3410-KeyTransport). */
TV_API uint32_t SetKeyTransEncryptedKey(KeyTrans* keyTrans, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetKeyTransEncryptedKey(const KeyTrans* keyTrans, uint8_t* out, uint32_t* outLen);

/* Gost28147-89-Parameters ::= SEQUENCE { iv OCTET STRING, encryptionParamSet OBJECT IDENTIFIER }:
 * the contentEncryptionAlgorithm's parameters. Decoding reports any malformed input as 302. */
TV_API uint32_t EncodeGost2814789Parameters(const uint8_t* inIv, uint32_t inIvLen, const uint8_t* inParamSetOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeGost2814789Parameters(const uint8_t* in, uint32_t inLen, uint8_t* outIv, uint32_t* outIvLen, uint8_t* outParamSetOid, uint32_t* outParamSetOidLen);

/* GostR3410KeyTransport. The containing SEQUENCEs are made on demand by the setters. */
TV_API uint32_t CreateGostR3410KeyTransport(GostR3410KeyTransport** outKeyTransport);
TV_API uint32_t FreeGostR3410KeyTransport(GostR3410KeyTransport* keyTransport);
TV_API uint32_t EncodeGostR3410KeyTransport(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeGostR3410KeyTransport(const uint8_t* in, uint32_t inLen, GostR3410KeyTransport** outKeyTransport);
/* sessionEncryptedKey.encryptedKey and .macKey: null bytes are 32; absent reads are 311. */
TV_API uint32_t SetGostR3410KeyTransportEncryptedKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetGostR3410KeyTransportEncryptedKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetGostR3410KeyTransportMacKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetGostR3410KeyTransportMacKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/* sessionEncryptedKey.maskKey: null bytes or length 0 remove it; absent reads as length 0 and 0. */
TV_API uint32_t SetGostR3410KeyTransportMaskKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetGostR3410KeyTransportMaskKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/* transportParameters.encryptionParamSet and .ukm (absent: 311). */
TV_API uint32_t SetGostR3410KeyTransportEncryptionParamSetOid(GostR3410KeyTransport* keyTransport, const uint8_t* inOid);
TV_API uint32_t GetGostR3410KeyTransportEncryptionParamSetOid(const GostR3410KeyTransport* keyTransport, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t SetGostR3410KeyTransportUkm(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetGostR3410KeyTransportUkm(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/* transportParameters.ephemeralPublicKey: its algorithm, and its key stored as a BIT STRING with no
 * unused bits (read back as the BIT STRING's content octets). A null OID or null key bytes remove
 * the whole ephemeral key. */
TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(GostR3410KeyTransport* keyTransport, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(const GostR3410KeyTransport* keyTransport, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
