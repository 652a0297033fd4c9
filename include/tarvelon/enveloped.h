/**
 * @file tarvelon/enveloped.h
 * CMS enveloped messages (RFC 5652 6) with key-transport recipients, the GOST 28147-89
 * content-encryption parameters (RFC 4357) and the GostR3410-KeyTransport structure (RFC 4490).
 *
 * The library encrypts nothing: the caller's provider makes the content-encryption key, encrypts the
 * content and wraps the key for each recipient; the library builds and reads the structures around
 * the octets it is given (encrypted content, IV, encrypted key, MAC, UKM, ephemeral key), storing
 * each exactly as given, without length checks.
 *
 * An EnvelopedData travels in a ContentInfo of type id-envelopedData (1.2.840.113549.1.7.3): encode
 * it and pass the encoding to SetCmsContentInfoContent() (cms.h).
 *
 * Originator certificates and CRLs follow the SignedData rules of cms.h (kinds, the identifier
 * octet rewritten, identical certificates stored once, CRLs never deduplicated), except that an
 * unknown kind is #TV_ERR_NO_ALTERNATIVE (306) here, and that originatorInfo and its SETs are made
 * on the first Add.
 */
#ifndef TARVELON_ENVELOPED_H
#define TARVELON_ENVELOPED_H

#include "tarvelon/types.h"
#include "tarvelon/x509name.h"
#include "tarvelon/attributes.h"
#include "tarvelon/cms.h"

#ifdef __cplusplus
extern "C" {
#endif

/** An EnvelopedData: SEQUENCE { version, originatorInfo [0] IMPLICIT OPTIONAL, recipientInfos SET OF
 * RecipientInfo, encryptedContentInfo, unprotectedAttrs [1] IMPLICIT OPTIONAL }. */
typedef struct CmsEnvelopedData CmsEnvelopedData;
/** A KeyTransRecipientInfo: SEQUENCE { version, rid, keyEncryptionAlgorithm, encryptedKey }. */
typedef struct KeyTrans KeyTrans;
/** A GostR3410-KeyTransport: SEQUENCE { sessionEncryptedKey, transportParameters [0] IMPLICIT
 * OPTIONAL }. */
typedef struct GostR3410KeyTransport GostR3410KeyTransport;

/* Recipient kinds, the RecipientInfo alternatives (AddCmsEnvelopedDataRecipientInfo() shows how a
 * caller makes the value of kinds 2 to 5). */
#define TV_CMS_RECIPIENT_KEY_TRANS 1u /**< ktri: KeyTransRecipientInfo, held as a KeyTrans handle. */
#define TV_CMS_RECIPIENT_KEY_AGREE 2u /**< kari: [1] KeyAgreeRecipientInfo, held whole as an ANY value. */
#define TV_CMS_RECIPIENT_KEK 3u       /**< kekri: [2] KEKRecipientInfo, held whole as an ANY value. */
#define TV_CMS_RECIPIENT_PASSWORD 4u  /**< pwri: [3] PasswordRecipientInfo, held whole as an ANY value. */
#define TV_CMS_RECIPIENT_OTHER 5u     /**< ori: [4] OtherRecipientInfo, held whole as an ANY value. */

/**
 * Creates an EnvelopedData with its mandatory members made but empty.
 *
 * The version, the content type and the content-encryption algorithm are to be set before encoding;
 * recipientInfos starts as an empty SET.
 *
 * @param[out] outEnvelopedData  Receives a new EnvelopedData owned by the caller (FreeCmsEnvelopedData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsEnvelopedData(CmsEnvelopedData** outEnvelopedData);
/**
 * Frees an EnvelopedData with everything it holds, its recipients included.
 *
 * @param[in] envelopedData  The EnvelopedData to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeCmsEnvelopedData(CmsEnvelopedData* envelopedData);
/**
 * Writes an EnvelopedData as DER.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[out]    out            Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required member was never set.
 */
TV_API uint32_t EncodeCmsEnvelopedData(const CmsEnvelopedData* envelopedData, uint8_t* out, uint32_t* outLen);
/**
 * Reads an EnvelopedData (the content of its ContentInfo, not the ContentInfo itself); octets after
 * the first element are ignored.
 *
 * @param[in]  in                The encoding (borrowed).
 * @param[in]  inLen             Octets in @p in.
 * @param[out] outEnvelopedData  Receives a new EnvelopedData owned by the caller (FreeCmsEnvelopedData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCmsEnvelopedData(const uint8_t* in, uint32_t inLen, CmsEnvelopedData** outEnvelopedData);
/**
 * Sets the version; the library does not derive it from the contents (RFC 5652 6.1 says which
 * number the members call for).
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     version        The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsEnvelopedDataVersion(CmsEnvelopedData* envelopedData, uint32_t version);
/**
 * Reads the version.
 *
 * @param[in]  envelopedData  The EnvelopedData (borrowed).
 * @param[out] outVersion     Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no version is held.
 */
TV_API uint32_t GetCmsEnvelopedDataVersion(const CmsEnvelopedData* envelopedData, uint32_t* outVersion);
/**
 * Adds an encoded certificate to the originator certificates, making originatorInfo and its
 * certificate SET on first use.
 *
 * The element's identifier octet is replaced by the one @p certKind stands for (TV_CMS_CERT_* of
 * cms.h); its length octets and contents are kept as given. A certificate equal to one already held
 * is not stored again, and the call still succeeds. originatorInfo and the SET are made before the
 * kind is looked at, so a refused kind leaves them behind, empty.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     certKind       TV_CMS_CERT_CERTIFICATE to TV_CMS_CERT_OTHER.
 * @param[in]     in             One complete encoded element (borrowed; copied).
 * @param[in]     inLen          Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_NO_ALTERNATIVE (306) for an unknown kind (SignedData
 *         answers 32 there), #TV_ERR_INVALID_ARGUMENT also when @p in is not exactly one element.
 */
TV_API uint32_t AddCmsEnvelopedDataEncodedCertificate(CmsEnvelopedData* envelopedData, uint32_t certKind, const uint8_t* in, uint32_t inLen);
/**
 * Counts the originator certificates.
 *
 * @param[in]  envelopedData  The EnvelopedData (borrowed).
 * @param[out] outCount       Receives the number, 0 when there is no originatorInfo or no SET.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsEnvelopedDataCertificatesCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
/**
 * Reads one originator certificate: its kind, and the whole element.
 *
 * The kind is read from the stored identifier octet: TV_CMS_CERT_CERTIFICATE for a SEQUENCE, the
 * kinds 2 to 5 for the constructed [0] to [3], 0 for anything else. With both @p out and @p outLen
 * null only the kind is read.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[in]     index          Position, from 0, in the order added or decoded.
 * @param[out]    outCertKind    Receives the kind, or null when not wanted.
 * @param[out]    out            Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol);
 *                               null only together with a null @p out.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end.
 */
TV_API uint32_t GetCmsEnvelopedDataEncodedCertificate(const CmsEnvelopedData* envelopedData, uint32_t index, uint32_t* outCertKind, uint8_t* out, uint32_t* outLen);
/**
 * Removes every originator certificate; originatorInfo itself stays, empty if it holds no CRLs.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @return #TV_OK, or a status code; nothing to remove is not a failure.
 */
TV_API uint32_t RemoveCmsEnvelopedDataCertificates(CmsEnvelopedData* envelopedData);
/**
 * Adds a CRL or another revocation record to the originator CRLs, making originatorInfo and its
 * CRL SET on first use.
 *
 * TV_CMS_CRL_CERTIFICATE_LIST stores an encoded CRL as given; TV_CMS_CRL_OTHER takes the contents
 * of an OtherRevocationInfoFormat and wraps them in a constructed [1]. CRLs are never deduplicated:
 * each Add adds one. originatorInfo and the SET are made before the kind is looked at, so a refused
 * kind leaves them behind, empty.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     crlKind        TV_CMS_CRL_CERTIFICATE_LIST or TV_CMS_CRL_OTHER.
 * @param[in]     in             The CRL, or the record's contents (borrowed; copied).
 * @param[in]     inLen          Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_NO_ALTERNATIVE (306) for an unknown kind (SignedData
 *         answers 32 there), #TV_ERR_INVALID_ARGUMENT also when a CRL is not exactly one element.
 */
TV_API uint32_t AddCmsEnvelopedDataEncodedCrl(CmsEnvelopedData* envelopedData, uint32_t crlKind, const uint8_t* in, uint32_t inLen);
/**
 * Counts the originator CRLs and other revocation records.
 *
 * @param[in]  envelopedData  The EnvelopedData (borrowed).
 * @param[out] outCount       Receives the number, 0 when there is no originatorInfo or no SET.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsEnvelopedDataCrlsCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
/**
 * Reads one originator CRL or revocation record: its kind, and the whole element.
 *
 * The kind is TV_CMS_CRL_CERTIFICATE_LIST for a SEQUENCE, TV_CMS_CRL_OTHER for a constructed [1]
 * (whose element comes back whole, [1] included), 0 for anything else. With both @p out and
 * @p outLen null only the kind is read.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[in]     index          Position, from 0, in the order added or decoded.
 * @param[out]    outCrlKind     Receives the kind, or null when not wanted.
 * @param[out]    out            Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol);
 *                               null only together with a null @p out.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end.
 */
TV_API uint32_t GetCmsEnvelopedDataEncodedCrl(const CmsEnvelopedData* envelopedData, uint32_t index, uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen);
/**
 * Removes every originator CRL and revocation record; originatorInfo itself stays, empty if it
 * holds no certificates.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @return #TV_OK, or a status code; nothing to remove is not a failure.
 */
TV_API uint32_t RemoveCmsEnvelopedDataCrls(CmsEnvelopedData* envelopedData);
/**
 * Appends a recipient of the given kind whose value the EnvelopedData takes over.
 *
 * For TV_CMS_RECIPIENT_KEY_TRANS the value is a KeyTrans; for the other kinds it is an ANY value of
 * the engine (asn1.h) holding the complete element ([1] to [4]), which a caller makes from its
 * encoding with a descriptor of type ANY:
 * @code
 * static const Asn1Descriptor any = {ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_ANY, -1, 0,
 *                                    NULL, 0, NULL};
 * void* value = NULL; uint32_t used = 0;
 * Asn1DecodeItem(element, elementLen, &any, &value, &used);   // element: A1 ... (a KeyAgreeRecipientInfo)
 * AddCmsEnvelopedDataRecipientInfo(envelopedData, TV_CMS_RECIPIENT_KEY_AGREE, value);
 * @endcode
 * The value becomes the EnvelopedData's only on success; after a failure it is still the caller's.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     recipientKind  TV_CMS_RECIPIENT_KEY_TRANS to TV_CMS_RECIPIENT_OTHER.
 * @param[in]     value          The recipient (taken over on success: freed with @p envelopedData).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a kind outside 1 to 5.
 */
TV_API uint32_t AddCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t recipientKind, void* value);
/**
 * Counts the recipients.
 *
 * @param[in]  envelopedData  The EnvelopedData (borrowed).
 * @param[out] outCount       Receives the number of recipients.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsEnvelopedDataRecipientInfosCount(const CmsEnvelopedData* envelopedData, uint32_t* outCount);
/**
 * Gives out one recipient's value and kind.
 *
 * Recipients are kept in the order added or decoded, but written in the SET's DER order, so their
 * positions may change across an encoding and decoding. The value of kind 1 is a KeyTrans; that of
 * kinds 2 to 5 an ANY value (an Asn1Primitive) whose complete element GetAsn1AnyValue() reads.
 *
 * @param[in]  envelopedData     The EnvelopedData (borrowed).
 * @param[in]  index             Position, from 0.
 * @param[out] outValue          Receives the value, lent by @p envelopedData (do not free).
 * @param[out] outRecipientKind  Receives the kind, TV_CMS_RECIPIENT_*, or 0 for an alternative the
 *                               library does not know.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end.
 */
TV_API uint32_t GetCmsEnvelopedDataRecipientInfo(CmsEnvelopedData* envelopedData, uint32_t index, void** outValue, uint32_t* outRecipientKind);
/**
 * Frees every recipient; the SET stays, empty.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveCmsEnvelopedDataRecipientInfos(CmsEnvelopedData* envelopedData);
/**
 * Sets the content type of encryptedContentInfo, the type of the content before encryption.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     inOid          Packed OID (borrowed; copied), e.g. id-data 1.2.840.113549.1.7.1.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsEnvelopedDataEncryptedContentTypeOid(CmsEnvelopedData* envelopedData, const uint8_t* inOid);
/**
 * Reads the content type of encryptedContentInfo.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[out]    outOid         Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen      Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no content type is held.
 */
TV_API uint32_t GetCmsEnvelopedDataEncryptedContentTypeOid(const CmsEnvelopedData* envelopedData, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Sets the content-encryption algorithm: its OID and its parameters.
 *
 * The parameters are a complete DER element copied unparsed (for GOST 28147-89, the output of
 * EncodeGost2814789Parameters()); null or empty parameters leave them absent. On failure the old
 * algorithm stays as it was.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     inOid          Packed OID of the algorithm (borrowed; copied).
 * @param[in]     inParams       The parameters element (borrowed; copied), or null.
 * @param[in]     inParamsLen    Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(CmsEnvelopedData* envelopedData, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Reads the content-encryption algorithm: its OID and its parameters element.
 *
 * Both parts are always written, each under the size protocol; when either does not fit the answer
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[out]    outOid         Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen      Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams      Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen   Room in @p outParams; the octets written or needed, 0 when the
 *                               parameters are absent; may be null when @p outParams is null.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no algorithm OID is held.
 */
TV_API uint32_t GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(const CmsEnvelopedData* envelopedData, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the encrypted content, or removes it when it travels apart from the message.
 *
 * The old content is freed before the new one is copied, so a large content is never held twice.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[in]     in             The encrypted octets (borrowed; copied); null or empty removes the field.
 * @param[in]     inLen          Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsEnvelopedDataEncryptedContent(CmsEnvelopedData* envelopedData, const uint8_t* in, uint32_t inLen);
/**
 * Reads the encrypted content; an absent one reads as length 0 without failure.
 *
 * @param[in]     envelopedData  The EnvelopedData (borrowed).
 * @param[out]    out            Caller buffer for the encrypted octets, or null to ask their number.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsEnvelopedDataEncryptedContent(const CmsEnvelopedData* envelopedData, uint8_t* out, uint32_t* outLen);
/**
 * Gives out the unprotectedAttrs field as an attribute list for the functions of attributes.h.
 *
 * The handle is the field itself, given out also while it holds no list, so that the first
 * attribute can be added in place; the list is made on demand.
 *
 * @param[in,out] envelopedData  The EnvelopedData (borrowed).
 * @param[out]    outAttributes  Receives the attribute list, lent by @p envelopedData (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsEnvelopedDataUnprotectedAttributes(CmsEnvelopedData* envelopedData, RsaAttributes** outAttributes);

/**
 * Creates a key-transport recipient with its mandatory members made but empty.
 *
 * Set the version, the recipient identifier, the key-encryption algorithm and the encrypted key,
 * then hand it to AddCmsEnvelopedDataRecipientInfo().
 *
 * @param[out] outKeyTrans  Receives a new KeyTrans owned by the caller (FreeKeyTrans()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateKeyTrans(KeyTrans** outKeyTrans);
/**
 * Frees a key-transport recipient; not for one an EnvelopedData has taken over.
 *
 * @param[in] keyTrans  The recipient to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeKeyTrans(KeyTrans* keyTrans);
/**
 * Writes a key-transport recipient as DER.
 *
 * @param[in]     keyTrans  The recipient (borrowed).
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required member was never set.
 */
TV_API uint32_t EncodeKeyTrans(const KeyTrans* keyTrans, uint8_t* out, uint32_t* outLen);
/**
 * Reads a KeyTransRecipientInfo; octets after the first element are ignored.
 *
 * @param[in]  in           The encoding (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outKeyTrans  Receives a new KeyTrans owned by the caller (FreeKeyTrans()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeKeyTrans(const uint8_t* in, uint32_t inLen, KeyTrans** outKeyTrans);
/**
 * Sets the version, which is the caller's to choose: RFC 5652 wants 0 with an issuer and serial
 * number, 2 with a subject key identifier.
 *
 * @param[in,out] keyTrans  The recipient (borrowed).
 * @param[in]     version   The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetKeyTransVersion(KeyTrans* keyTrans, uint32_t version);
/**
 * Reads the version.
 *
 * @param[in]  keyTrans    The recipient (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no version is held.
 */
TV_API uint32_t GetKeyTransVersion(const KeyTrans* keyTrans, uint32_t* outVersion);
/**
 * Identifies the recipient by the issuer and serial number of its certificate, replacing a subject
 * key identifier.
 *
 * The serial is stored as the INTEGER contents given, not normalised: it must match the
 * certificate's serial octet for octet.
 *
 * @param[in,out] keyTrans     The recipient (borrowed).
 * @param[in]     issuer       Issuer name of the recipient's certificate (borrowed; copied).
 * @param[in]     inSerial     Serial number as INTEGER contents (borrowed; copied).
 * @param[in]     inSerialLen  Octets in @p inSerial.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetKeyTransRecipientIdentifierIssuerAndSerialNumber(KeyTrans* keyTrans, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/**
 * Identifies the recipient by a subject key identifier, replacing an issuer and serial number.
 *
 * @param[in,out] keyTrans    The recipient (borrowed).
 * @param[in]     inKeyId     The key identifier (borrowed; copied).
 * @param[in]     inKeyIdLen  Octets in @p inKeyId.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetKeyTransRecipientIdentifierSubjectKeyIdentifier(KeyTrans* keyTrans, const uint8_t* inKeyId, uint32_t inKeyIdLen);
/**
 * Reads the recipient identifier, whichever of its two forms it holds.
 *
 * Only the outputs of the form present are filled; those of the other are cleared where given
 * (@p outIssuer null, the length 0). A recipient whose identifier was never set reads as an issuer
 * and serial number: an empty issuer is made in place, and the serial is absent.
 *
 * @param[in,out] keyTrans      The recipient (borrowed).
 * @param[out]    outIssuer     Receives the issuer, lent by @p keyTrans (do not free); required
 *                              when the identifier is an issuer and serial number.
 * @param[out]    outSerial     Caller buffer for the serial's INTEGER contents, or null to ask.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed (@ref size_protocol).
 * @param[out]    outKeyId      Caller buffer for the subject key identifier, or null to ask.
 * @param[in,out] outKeyIdLen   Room in @p outKeyId; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the serial is absent,
 *         #TV_ERR_NO_ALTERNATIVE (306) when the identifier holds neither form.
 */
TV_API uint32_t GetKeyTransRecipientIdentifier(KeyTrans* keyTrans, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen);
/**
 * Sets the key-encryption algorithm: its OID and its parameters.
 *
 * The parameters are a complete DER element copied unparsed; null or empty parameters leave them
 * absent. On failure the old algorithm stays as it was.
 *
 * @param[in,out] keyTrans     The recipient (borrowed).
 * @param[in]     inOid        Packed OID of the algorithm (borrowed; copied).
 * @param[in]     inParams     The parameters element (borrowed; copied), or null.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetKeyTransKeyEncryptionAlgorithmOidAndParameters(KeyTrans* keyTrans, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Reads the key-encryption algorithm: its OID and its parameters element.
 *
 * Both parts are always written, each under the size protocol; when either does not fit the answer
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored.
 *
 * @param[in]     keyTrans      The recipient (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when the
 *                              parameters are absent; may be null when @p outParams is null.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no algorithm OID is held.
 */
TV_API uint32_t GetKeyTransKeyEncryptionAlgorithmOidAndParameters(const KeyTrans* keyTrans, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the contents of the encryptedKey OCTET STRING, the content-encryption key as the caller's
 * provider wrapped it (for GOST, an encoded GostR3410-KeyTransport).
 *
 * @param[in,out] keyTrans  The recipient (borrowed).
 * @param[in]     in        The wrapped key (borrowed; copied).
 * @param[in]     inLen     Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetKeyTransEncryptedKey(KeyTrans* keyTrans, const uint8_t* in, uint32_t inLen);
/**
 * Reads the contents of the encryptedKey OCTET STRING.
 *
 * @param[in]     keyTrans  The recipient (borrowed).
 * @param[out]    out       Caller buffer for the wrapped key, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no encrypted key is held.
 */
TV_API uint32_t GetKeyTransEncryptedKey(const KeyTrans* keyTrans, uint8_t* out, uint32_t* outLen);

/**
 * Writes the Gost28147-89-Parameters SEQUENCE { iv OCTET STRING, encryptionParamSet OBJECT
 * IDENTIFIER }, the parameters of a GOST 28147-89 content-encryption algorithm.
 *
 * @param[in]     inIv           The IV (borrowed), stored as given whatever its length.
 * @param[in]     inIvLen        Octets in @p inIv.
 * @param[in]     inParamSetOid  Packed OID of the encryption parameter set (borrowed).
 * @param[out]    out            Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeGost2814789Parameters(const uint8_t* inIv, uint32_t inIvLen, const uint8_t* inParamSetOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads Gost28147-89-Parameters into the IV and the packed OID of the encryption parameter set.
 *
 * Both parts are always written, each under the size protocol; when either does not fit the answer
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored.
 *
 * @param[in]     in                 The encoding (borrowed).
 * @param[in]     inLen              Octets in @p in.
 * @param[out]    outIv              Caller buffer for the IV, or null to ask its size.
 * @param[in,out] outIvLen           Room in @p outIv; the octets written or needed (@ref size_protocol).
 * @param[out]    outParamSetOid     Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outParamSetOidLen  Room in @p outParamSetOid; the octets written or needed.
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for any input that is not these
 *         parameters, whatever the decoder found wrong with it.
 */
TV_API uint32_t DecodeGost2814789Parameters(const uint8_t* in, uint32_t inLen, uint8_t* outIv, uint32_t* outIvLen, uint8_t* outParamSetOid, uint32_t* outParamSetOidLen);

/**
 * Creates an empty GostR3410-KeyTransport.
 *
 * Nothing is set, and what the caller does not set reads as absent. The setters make the
 * SEQUENCEs that hold their fields on demand. Encoding needs the encrypted key and the MAC, and,
 * once any transport parameter is set, the parameter set and the UKM as well.
 *
 * @param[out] outKeyTransport  Receives a new key transport owned by the caller
 *                              (FreeGostR3410KeyTransport()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateGostR3410KeyTransport(GostR3410KeyTransport** outKeyTransport);
/**
 * Frees a GostR3410-KeyTransport.
 *
 * @param[in] keyTransport  The key transport to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeGostR3410KeyTransport(GostR3410KeyTransport* keyTransport);
/**
 * Writes a GostR3410-KeyTransport as DER, the contents of a GOST recipient's encryptedKey.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required field was never set.
 */
TV_API uint32_t EncodeGostR3410KeyTransport(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/**
 * Reads a GostR3410-KeyTransport; octets after the first element are ignored.
 *
 * @param[in]  in               The encoding (borrowed), e.g. the output of GetKeyTransEncryptedKey().
 * @param[in]  inLen            Octets in @p in.
 * @param[out] outKeyTransport  Receives a new key transport owned by the caller
 *                              (FreeGostR3410KeyTransport()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeGostR3410KeyTransport(const uint8_t* in, uint32_t inLen, GostR3410KeyTransport** outKeyTransport);
/**
 * Sets sessionEncryptedKey.encryptedKey, the wrapped content-encryption key.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     in            The wrapped key (borrowed; copied).
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportEncryptedKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
/**
 * Reads sessionEncryptedKey.encryptedKey.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the wrapped key, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when it is not set.
 */
TV_API uint32_t GetGostR3410KeyTransportEncryptedKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/**
 * Sets sessionEncryptedKey.macKey, the MAC of the wrapped key.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     in            The MAC (borrowed; copied).
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportMacKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
/**
 * Reads sessionEncryptedKey.macKey.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the MAC, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when it is not set.
 */
TV_API uint32_t GetGostR3410KeyTransportMacKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/**
 * Sets or removes the optional sessionEncryptedKey.maskKey.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     in            The mask key (borrowed; copied); null or empty removes it.
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportMaskKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
/**
 * Reads sessionEncryptedKey.maskKey; an absent one reads as length 0 without failure.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the mask key, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetGostR3410KeyTransportMaskKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/**
 * Sets transportParameters.encryptionParamSet, making transportParameters on first use.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     inOid         Packed OID of the encryption parameter set (borrowed; copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportEncryptionParamSetOid(GostR3410KeyTransport* keyTransport, const uint8_t* inOid);
/**
 * Reads transportParameters.encryptionParamSet.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when transportParameters or the OID is absent.
 */
TV_API uint32_t GetGostR3410KeyTransportEncryptionParamSetOid(const GostR3410KeyTransport* keyTransport, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Sets transportParameters.ukm, the user keying material, making transportParameters on first use.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     in            The UKM (borrowed; copied).
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportUkm(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
/**
 * Reads transportParameters.ukm.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the UKM, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when transportParameters or the UKM is absent.
 */
TV_API uint32_t GetGostR3410KeyTransportUkm(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);
/**
 * Sets the algorithm of transportParameters.ephemeralPublicKey, or removes the whole ephemeral key.
 *
 * transportParameters and the ephemeral key are made on first use; set the key with
 * SetGostR3410KeyTransportEphemeralPublicKey() as well before encoding. The parameters are a
 * complete DER element copied unparsed; null or empty parameters leave them absent. A null OID
 * removes the ephemeral key, algorithm and key together; the rest of transportParameters stays.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     inOid         Packed OID of the key's algorithm (borrowed; copied), or null to remove.
 * @param[in]     inParams      The parameters element (borrowed; copied), or null.
 * @param[in]     inParamsLen   Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(GostR3410KeyTransport* keyTransport, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Reads the algorithm of transportParameters.ephemeralPublicKey: its OID and its parameters element.
 *
 * Both parts are always written, each under the size protocol; when either does not fit the answer
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when the
 *                              parameters are absent; may be null when @p outParams is null.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no ephemeral key or no OID.
 */
TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(const GostR3410KeyTransport* keyTransport, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the key of transportParameters.ephemeralPublicKey, or removes the whole ephemeral key.
 *
 * The octets are stored as a BIT STRING with no unused bits. transportParameters and the ephemeral
 * key are made on first use; set the algorithm as well before encoding. Null octets remove the
 * ephemeral key, algorithm and key together; the rest of transportParameters stays.
 *
 * @param[in,out] keyTransport  The key transport (borrowed).
 * @param[in]     in            The key octets (borrowed; copied), or null to remove.
 * @param[in]     inLen         Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKey(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen);
/**
 * Reads the key of transportParameters.ephemeralPublicKey: the BIT STRING's content octets.
 *
 * @param[in]     keyTransport  The key transport (borrowed).
 * @param[out]    out           Caller buffer for the key octets, or null to ask their number.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is no ephemeral key or no key in it.
 */
TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKey(const GostR3410KeyTransport* keyTransport, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
