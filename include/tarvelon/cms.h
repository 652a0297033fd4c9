/**
 * @file tarvelon/cms.h
 * CMS signed messages (RFC 5652): ContentInfo, SignedData and SignerInfo, and the signature
 * workflows built on them.
 *
 * The library computes no digest and no signature: the caller hashes the content, signs the bytes
 * handed out by GetCmsSignedDataToBeSignedPart() (or GetCmsSignerInfoEncodedSignedAttributes()) and
 * stores the signature back.
 *
 * Certificates and CRLs inside SignedData are kept as their encoded elements; decode them with the
 * certificate and CRL families when their fields are needed.
 *
 * Display texts (GetCertificateCN(), GetCrlCN(), the signer texts, the Kestrune identifier) are
 * single-byte code page 1251 and NUL-terminated: a size query reports the text length + 1, and after
 * a successful copy the length is the text length without the NUL.
 */
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

/**
 * ContentInfo ::= SEQUENCE { contentType OBJECT IDENTIFIER, content [0] EXPLICIT ANY OPTIONAL }; the
 * content is kept as the complete encoding of the inner value.
 */
typedef struct CmsContentInfo CmsContentInfo;
/** SignedData: the content of an id-signedData ContentInfo. */
typedef struct CmsSignedData CmsSignedData;
/** One signer of a SignedData. */
typedef struct CmsSignerInfo CmsSignerInfo;
/**
 * EncapsulatedContentInfo ::= SEQUENCE { eContentType OBJECT IDENTIFIER,
 * eContent [0] EXPLICIT OCTET STRING OPTIONAL }.
 */
typedef struct CmsEncapsulatedContentInfo CmsEncapsulatedContentInfo;

/* Kinds of stored certificates (CertificateChoices) and the identifier octet each imposes. */
/** A certificate (identifier octet 0x30). */
#define TV_CMS_CERT_CERTIFICATE 1u
/** An extended certificate, [0] (identifier octet 0xA0). */
#define TV_CMS_CERT_EXTENDED 2u
/** A version 1 attribute certificate, [1] (identifier octet 0xA1). */
#define TV_CMS_CERT_V1_ATTR 3u
/** A version 2 attribute certificate, [2] (identifier octet 0xA2). */
#define TV_CMS_CERT_V2_ATTR 4u
/** Another certificate format, [3] (identifier octet 0xA3). */
#define TV_CMS_CERT_OTHER 5u
/* Kinds of stored CRLs (RevocationInfoChoice). */
/** A CertificateList, stored as given. */
#define TV_CMS_CRL_CERTIFICATE_LIST 1u
/** The content octets of an OtherRevocationInfoFormat, wrapped by the library in a constructed [1]. */
#define TV_CMS_CRL_OTHER 2u
/* Signer identifier alternatives. */
/** The signer is named by the issuer and serial number of its certificate. */
#define TV_CMS_SID_ISSUER_AND_SERIAL 0u
/** The signer is named by the subject key identifier of its certificate. */
#define TV_CMS_SID_KEY_IDENTIFIER 1u

/**
 * Makes an empty ContentInfo: its mandatory members are made, without a content.
 *
 * @param[out] outContentInfo  Receives a new ContentInfo owned by the caller (FreeCmsContentInfo()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsContentInfo(CmsContentInfo** outContentInfo);
/**
 * Frees a ContentInfo and everything it holds.
 *
 * @param[in] contentInfo  The ContentInfo (taken over and freed); null does nothing.
 * @return #TV_OK.
 */
TV_API uint32_t FreeCmsContentInfo(CmsContentInfo* contentInfo);
/**
 * Makes a deep copy of a ContentInfo.
 *
 * @param[in]  contentInfo     The ContentInfo to copy (borrowed).
 * @param[out] outContentInfo  Receives a new ContentInfo owned by the caller (FreeCmsContentInfo()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsContentInfoCopy(const CmsContentInfo* contentInfo, CmsContentInfo** outContentInfo);
/**
 * Writes a ContentInfo as DER.
 *
 * @param[in]     contentInfo  The ContentInfo (borrowed).
 * @param[out]    out          Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeCmsContentInfo(const CmsContentInfo* contentInfo, uint8_t* out, uint32_t* outLen);
/**
 * Reads a ContentInfo; the content stays the complete encoding it arrived as, undecoded.
 *
 * Octets after the first complete element are ignored. Decode the content with the family that knows
 * its type (DecodeCmsSignedData() for id-signedData), from the octets GetCmsContentInfoContent() gives.
 *
 * @param[in]  in              The encoding (borrowed).
 * @param[in]  inLen           Octets in @p in.
 * @param[out] outContentInfo  Receives a new ContentInfo owned by the caller (FreeCmsContentInfo()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCmsContentInfo(const uint8_t* in, uint32_t inLen, CmsContentInfo** outContentInfo);
/**
 * Wraps octets as the OCTET STRING element that an id-data ContentInfo carries as its content.
 *
 * @param[in]     in      The data (borrowed); null with @p inLen 0 gives the empty OCTET STRING.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Takes the data out of the OCTET STRING element of an id-data content; the inverse of
 * EncodeCmsContentInfoContent().
 *
 * @param[in]     in      The OCTET STRING element (borrowed), not empty.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the data, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Sets the content type of a ContentInfo.
 *
 * @param[in,out] contentInfo  The ContentInfo (borrowed).
 * @param[in]     inOid        The content type, packed (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsContentInfoTypeOid(CmsContentInfo* contentInfo, const uint8_t* inOid);
/**
 * Gets the content type of a ContentInfo; a new ContentInfo gives the empty OID (the single octet 0).
 *
 * @param[in]     contentInfo  The ContentInfo (borrowed).
 * @param[out]    outOid       Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen    Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsContentInfoTypeOid(const CmsContentInfo* contentInfo, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Replaces the content of a ContentInfo with a complete encoding of the inner value, tag included.
 *
 * The old content is freed first, so a failure leaves the ContentInfo without content.
 *
 * @param[in,out] contentInfo  The ContentInfo (borrowed).
 * @param[in]     in           One complete DER element (borrowed, copied); null or @p inLen 0 removes
 *                             the content.
 * @param[in]     inLen        Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when @p in is not exactly one
 *         complete element.
 */
TV_API uint32_t SetCmsContentInfoContent(CmsContentInfo* contentInfo, const uint8_t* in, uint32_t inLen);
/**
 * Copies the content of a ContentInfo: the complete encoding of the inner value, tag included.
 *
 * @param[in]     contentInfo  The ContentInfo (borrowed).
 * @param[out]    out          Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol); 0
 *                             when there is no content.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsContentInfoContent(const CmsContentInfo* contentInfo, uint8_t* out, uint32_t* outLen);

/* SignedData. */
/**
 * Makes an empty SignedData: its mandatory members are made, none of them filled.
 *
 * @param[out] outSignedData  Receives a new SignedData owned by the caller (FreeCmsSignedData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsSignedData(CmsSignedData** outSignedData);
/**
 * Frees a SignedData and everything it holds, its signers included.
 *
 * @param[in] signedData  The SignedData (taken over and freed); null does nothing.
 * @return #TV_OK.
 */
TV_API uint32_t FreeCmsSignedData(CmsSignedData* signedData);
/**
 * Makes a deep copy of a SignedData.
 *
 * @param[in]  signedData     The SignedData to copy (borrowed).
 * @param[out] outSignedData  Receives a new SignedData owned by the caller (FreeCmsSignedData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsSignedDataCopy(const CmsSignedData* signedData, CmsSignedData** outSignedData);
/**
 * Writes a SignedData as DER: the SignedData alone, not wrapped in a ContentInfo.
 *
 * @param[in]     signedData  The SignedData (borrowed).
 * @param[out]    out         Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeCmsSignedData(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen);
/**
 * Reads a SignedData: the content of an id-signedData ContentInfo, not the ContentInfo itself.
 *
 * Octets after the first complete element are ignored.
 *
 * @param[in]  in             The encoding (borrowed).
 * @param[in]  inLen          Octets in @p in.
 * @param[out] outSignedData  Receives a new SignedData owned by the caller (FreeCmsSignedData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCmsSignedData(const uint8_t* in, uint32_t inLen, CmsSignedData** outSignedData);
/**
 * Sets the version of a SignedData.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     version     The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsSignedDataVersion(CmsSignedData* signedData, uint32_t version);
/**
 * Gets the version of a SignedData.
 *
 * @param[in]  signedData  The SignedData (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no version is set.
 */
TV_API uint32_t GetCmsSignedDataVersion(const CmsSignedData* signedData, uint32_t* outVersion);
/**
 * Adds a digest algorithm to the set listed before the content, unless an equal one is there.
 *
 * Equal means the same encoding, parameters included: an algorithm with absent parameters and the
 * same one with NULL parameters are listed twice. A duplicate is not an error.
 *
 * @param[in,out] signedData   The SignedData (borrowed).
 * @param[in]     inOid        The algorithm, packed (borrowed).
 * @param[in]     inParams     The parameters as one complete DER element (borrowed, copied as
 *                             given), or null for none.
 * @param[in]     inParamsLen  Octets in @p inParams; 0 for none.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddCmsSignedDataDigestAlgorithmOidAndParameters(CmsSignedData* signedData, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Counts the digest algorithms of a SignedData.
 *
 * @param[in]  signedData  The SignedData (borrowed).
 * @param[out] outCount    Receives the number of algorithms.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData holds no set of them.
 */
TV_API uint32_t GetCmsSignedDataDigestAlgorithmsCount(const CmsSignedData* signedData, uint32_t* outCount);
/**
 * Gets one digest algorithm of a SignedData: its OID and its parameters.
 *
 * Both parts are always tried, so one call with null buffers sizes both; when either does not fit, the
 * answer is #TV_ERR_BUFFER_TOO_SMALL with both lengths filled in.
 *
 * @param[in]     signedData    The SignedData (borrowed).
 * @param[in]     index         The algorithm's position, from 0.
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when the
 *                              algorithm has no parameters (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData holds no set of
 *         algorithms, #TV_ERR_INVALID_ARGUMENT when @p index is out of range.
 */
TV_API uint32_t GetCmsSignedDataDigestAlgorithmOidAndParameters(const CmsSignedData* signedData, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Removes every digest algorithm of a SignedData; the set stays, empty.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearCmsSignedDataDigestAlgorithms(CmsSignedData* signedData);
/**
 * Sets the type of the encapsulated content (eContentType).
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     inOid       The content type, packed (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData has no encapsulated
 *         content info.
 */
TV_API uint32_t SetCmsSignedDataContentTypeOid(CmsSignedData* signedData, const uint8_t* inOid);
/**
 * Gets the type of the encapsulated content (eContentType); a new SignedData gives the empty OID (the
 * single octet 0).
 *
 * @param[in]     signedData  The SignedData (borrowed).
 * @param[out]    outOid      Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen   Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData has no encapsulated
 *         content info.
 */
TV_API uint32_t GetCmsSignedDataContentTypeOid(const CmsSignedData* signedData, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Replaces the encapsulated content (the octets of eContent).
 *
 * The old content is freed first, so a large content is never held twice and a failure leaves none.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     in          The content octets (borrowed, copied); null or @p inLen 0 removes
 *                            eContent: a detached signature.
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData has no encapsulated
 *         content info.
 */
TV_API uint32_t SetCmsSignedDataContent(CmsSignedData* signedData, const uint8_t* in, uint32_t inLen);
/**
 * Copies the encapsulated content (the octets of eContent).
 *
 * @param[in]     signedData  The SignedData (borrowed).
 * @param[out]    out         Caller buffer for the content, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol); 0 for
 *                            a detached signature.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData has no encapsulated
 *         content info.
 */
TV_API uint32_t GetCmsSignedDataContent(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen);
/**
 * Hands out the encapsulated content info of a SignedData.
 *
 * The handle is opaque: read and change its fields with the SignedData content functions.
 *
 * @param[in]  signedData      The SignedData (borrowed).
 * @param[out] outContentInfo  Receives the EncapsulatedContentInfo, lent by @p signedData (do not
 *                             free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when there is none.
 */
TV_API uint32_t GetCmsSignedDataContentInfo(CmsSignedData* signedData, CmsEncapsulatedContentInfo** outContentInfo);
/**
 * Stores an encoded certificate (or other CertificateChoices element) in a SignedData.
 *
 * The stored copy's identifier octet becomes the one @p certKind imposes (TV_CMS_CERT_...); the length
 * octets and contents are kept as given and not checked. An element equal to one already stored
 * (after that change) is not stored again, without an error. The certificate set is made before the
 * kind is checked, so an unknown kind on a SignedData without certificates still leaves an empty set.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     certKind    #TV_CMS_CERT_CERTIFICATE to #TV_CMS_CERT_OTHER.
 * @param[in]     in          One complete DER element (borrowed, copied).
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a kind outside 1..5 or input
 *         that is not exactly one complete element.
 */
TV_API uint32_t AddCmsSignedDataEncodedCertificate(CmsSignedData* signedData, uint32_t certKind, const uint8_t* in, uint32_t inLen);
/**
 * Counts the certificates stored in a SignedData.
 *
 * @param[in]  signedData  The SignedData (borrowed).
 * @param[out] outCount    Receives the number of certificates; 0 when there is no certificate set.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignedDataCertificatesCount(const CmsSignedData* signedData, uint32_t* outCount);
/**
 * Copies one stored certificate as its complete element, and tells its kind.
 *
 * The kind is read from the identifier octet: #TV_CMS_CERT_CERTIFICATE for a SEQUENCE, 2 to 5 for a
 * constructed [0] to [3], 0 for anything else. With both @p out and @p outLen null only the kind is
 * reported.
 *
 * @param[in]     signedData   The SignedData (borrowed).
 * @param[in]     index        The certificate's position, from 0.
 * @param[out]    outCertKind  Receives the kind (TV_CMS_CERT_...), or null when not wanted.
 * @param[out]    out          Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol); may
 *                             be null only when @p out is null too.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when @p index is out of range.
 */
TV_API uint32_t GetCmsSignedDataEncodedCertificate(const CmsSignedData* signedData, uint32_t index, uint32_t* outCertKind, uint8_t* out, uint32_t* outLen);
/**
 * Removes the certificate set of a SignedData, with every certificate in it.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveCmsSignedDataCertificates(CmsSignedData* signedData);
/**
 * Appends a CRL, or another revocation information format, to a SignedData.
 *
 * CRLs are stored as often as they are added: unlike certificates there is no check for duplicates.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     crlKind     #TV_CMS_CRL_CERTIFICATE_LIST or #TV_CMS_CRL_OTHER.
 * @param[in]     in          For #TV_CMS_CRL_CERTIFICATE_LIST one complete DER element, stored as
 *                            given; for #TV_CMS_CRL_OTHER the content octets of the
 *                            OtherRevocationInfoFormat, stored under a constructed [1] header
 *                            (borrowed, copied).
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another kind or a CRL that is not
 *         exactly one complete element.
 */
TV_API uint32_t AddCmsSignedDataEncodedCrl(CmsSignedData* signedData, uint32_t crlKind, const uint8_t* in, uint32_t inLen);
/**
 * Counts the CRLs stored in a SignedData.
 *
 * @param[in]  signedData  The SignedData (borrowed).
 * @param[out] outCount    Receives the number of CRLs; 0 when there is no CRL set.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignedDataCrlsCount(const CmsSignedData* signedData, uint32_t* outCount);
/**
 * Copies one stored CRL as its complete element, and tells its kind.
 *
 * The kind is read from the identifier octet: #TV_CMS_CRL_CERTIFICATE_LIST for a SEQUENCE,
 * #TV_CMS_CRL_OTHER for a constructed [1], 0 for anything else. An other format comes back with its
 * [1] header, not as the content octets it was added as. With both @p out and @p outLen null only the
 * kind is reported.
 *
 * @param[in]     signedData  The SignedData (borrowed).
 * @param[in]     index       The CRL's position, from 0.
 * @param[out]    outCrlKind  Receives the kind (TV_CMS_CRL_...), or null when not wanted.
 * @param[out]    out         Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol); may be
 *                            null only when @p out is null too.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when @p index is out of range.
 */
TV_API uint32_t GetCmsSignedDataEncodedCrl(const CmsSignedData* signedData, uint32_t index, uint32_t* outCrlKind, uint8_t* out, uint32_t* outLen);
/**
 * Removes the CRL set of a SignedData, with every CRL in it.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveCmsSignedDataCrls(CmsSignedData* signedData);
/**
 * Appends a new empty signer to a SignedData, to be filled with the SignerInfo functions.
 *
 * @param[in,out] signedData     The SignedData (borrowed).
 * @param[out]    outSignerInfo  Receives the new signer, lent by @p signedData (do not free); it
 *                               lives until it is deleted or the SignedData is freed.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddCmsSignedDataSignerInfo(CmsSignedData* signedData, CmsSignerInfo** outSignerInfo);
/**
 * Counts the signers of a SignedData.
 *
 * @param[in]  signedData  The SignedData (borrowed).
 * @param[out] outCount    Receives the number of signers.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData holds no set of signers.
 */
TV_API uint32_t GetCmsSignedDataSignerInfosCount(const CmsSignedData* signedData, uint32_t* outCount);
/**
 * Hands out one signer of a SignedData, to read or change in place.
 *
 * @param[in]  signedData     The SignedData (borrowed).
 * @param[in]  index          The signer's position, from 0.
 * @param[out] outSignerInfo  Receives the signer, lent by @p signedData (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData holds no set of signers,
 *         #TV_ERR_INVALID_ARGUMENT when @p index is out of range.
 */
TV_API uint32_t GetCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index, CmsSignerInfo** outSignerInfo);
/**
 * Removes and frees one signer of a SignedData; the signers after it move up by one.
 *
 * Digest algorithms and certificates are left as they are. Handles lent for the removed signer become
 * invalid.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @param[in]     index       The signer's position, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the SignedData holds no set of signers,
 *         #TV_ERR_INVALID_ARGUMENT when @p index is out of range.
 */
TV_API uint32_t DeleteCmsSignedDataSignerInfo(CmsSignedData* signedData, uint32_t index);
/**
 * Removes and frees every signer of a SignedData; the set stays, empty.
 *
 * @param[in,out] signedData  The SignedData (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearCmsSignedDataSignerInfos(CmsSignedData* signedData);

/**
 * Makes an empty SignerInfo standing alone, to be filled and read.
 *
 * A signer reaches the wire only inside a SignedData: a signer for a message is made with
 * AddCmsSignedDataSignerInfo(); one made here serves to prepare or inspect values such as the signed
 * attributes.
 *
 * @param[out] outSignerInfo  Receives a new SignerInfo owned by the caller (FreeCmsSignerInfo()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCmsSignerInfo(CmsSignerInfo** outSignerInfo);
/**
 * Frees a SignerInfo made by CreateCmsSignerInfo(); never one lent by a SignedData.
 *
 * @param[in] signerInfo  The SignerInfo (taken over and freed); null does nothing.
 * @return #TV_OK.
 */
TV_API uint32_t FreeCmsSignerInfo(CmsSignerInfo* signerInfo);
/**
 * Sets the version of a signer.
 *
 * The identifier setters leave the version alone: set 1 for a signer named by issuer and serial
 * number, 3 for one named by a key identifier (RFC 5652 5.3).
 *
 * @param[in,out] signerInfo  The signer (borrowed).
 * @param[in]     version     The version number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsSignerInfoVersion(CmsSignerInfo* signerInfo, uint32_t version);
/**
 * Gets the version of a signer.
 *
 * @param[in]  signerInfo  The signer (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no version is set.
 */
TV_API uint32_t GetCmsSignerInfoVersion(const CmsSignerInfo* signerInfo, uint32_t* outVersion);
/**
 * Names the signer by the issuer and serial number of its certificate, replacing a key identifier.
 *
 * The serial is stored as the INTEGER content octets given, not normalised: CompareSignerInfoAndCertificate()
 * matches it against the certificate's serial octet for octet. The version is left as it is.
 *
 * @param[in,out] signerInfo   The signer (borrowed).
 * @param[in]     issuer       The issuer's name (borrowed, copied).
 * @param[in]     inSerial     The serial number's INTEGER content octets (borrowed).
 * @param[in]     inSerialLen  Octets in @p inSerial.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the signer has no identifier.
 */
TV_API uint32_t SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(CmsSignerInfo* signerInfo, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/**
 * Names the signer by the subject key identifier of its certificate, replacing an issuer and serial.
 *
 * The version is left as it is.
 *
 * @param[in,out] signerInfo  The signer (borrowed).
 * @param[in]     inKeyId     The key identifier octets (borrowed, copied).
 * @param[in]     inKeyIdLen  Octets in @p inKeyId.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the signer has no identifier.
 */
TV_API uint32_t SetCmsSignerInfoSignerSubjectKeyIdentifier(CmsSignerInfo* signerInfo, const uint8_t* inKeyId, uint32_t inKeyIdLen);
/**
 * Reads the signer's identifier, whichever alternative it holds.
 *
 * Only the outputs of the alternative present are filled; the other's are cleared where given. Issuer
 * and serial: @p outIssuer receives the name, @p outSerial the serial under the size protocol and
 * @p outKeyIdLen 0. Key identifier: @p outIssuer receives null, @p outSerialLen 0 and @p outKeyId the
 * identifier under the size protocol. A signer named by issuer and serial but without an issuer gets
 * an empty name made in place.
 *
 * @param[in]     signerInfo    The signer (borrowed; it may be changed as just said).
 * @param[out]    outIssuer     Receives the issuer's name, lent by @p signerInfo (do not free), or
 *                              null; required when the signer is named by issuer and serial.
 * @param[out]    outSerial     Caller buffer for the serial's INTEGER content octets, or null to ask.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed (@ref size_protocol).
 * @param[out]    outKeyId      Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outKeyIdLen   Room in @p outKeyId; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the signer has no identifier or no
 *         serial, #TV_ERR_NO_ALTERNATIVE (306) when the identifier holds neither alternative.
 */
TV_API uint32_t GetCmsSignerInfoSignerIdentifier(CmsSignerInfo* signerInfo, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen, uint8_t* outKeyId, uint32_t* outKeyIdLen);
/**
 * Sets the signer's digest algorithm.
 *
 * Add the same algorithm to the SignedData with AddCmsSignedDataDigestAlgorithmOidAndParameters(): this
 * does not do it.
 *
 * @param[in,out] signerInfo   The signer (borrowed).
 * @param[in]     inOid        The algorithm, packed (borrowed).
 * @param[in]     inParams     The parameters as one complete DER element (borrowed, copied as given),
 *                             or null for none.
 * @param[in]     inParamsLen  Octets in @p inParams; 0 for none.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsSignerInfoDigestAlgorithmOidAndParameters(CmsSignerInfo* signerInfo, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Gets the signer's digest algorithm: its OID and its parameters.
 *
 * Both parts are always tried, so one call with null buffers sizes both; when either does not fit, the
 * answer is #TV_ERR_BUFFER_TOO_SMALL with both lengths filled in.
 *
 * @param[in]     signerInfo    The signer (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when there are
 *                              none (@ref size_protocol); may be null when @p outParams is null.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoDigestAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the signer's signature algorithm.
 *
 * @param[in,out] signerInfo   The signer (borrowed).
 * @param[in]     inOid        The algorithm, packed (borrowed).
 * @param[in]     inParams     The parameters as one complete DER element (borrowed, copied as given),
 *                             or null for none.
 * @param[in]     inParamsLen  Octets in @p inParams; 0 for none.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsSignerInfoSignatureAlgorithmOidAndParameters(CmsSignerInfo* signerInfo, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Gets the signer's signature algorithm: its OID and its parameters.
 *
 * Both parts are always tried, so one call with null buffers sizes both; when either does not fit, the
 * answer is #TV_ERR_BUFFER_TOO_SMALL with both lengths filled in.
 *
 * @param[in]     signerInfo    The signer (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when there are
 *                              none (@ref size_protocol); may be null when @p outParams is null.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoSignatureAlgorithmOidAndParameters(const CmsSignerInfo* signerInfo, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Stores the signature value the caller's provider computed.
 *
 * @param[in,out] signerInfo  The signer (borrowed).
 * @param[in]     in          The signature octets (borrowed, copied); null with @p inLen 0 stores an
 *                            empty value.
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCmsSignerInfoSignature(CmsSignerInfo* signerInfo, const uint8_t* in, uint32_t inLen);
/**
 * Copies the signer's signature value.
 *
 * @param[in]     signerInfo  The signer (borrowed).
 * @param[out]    out         Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoSignature(const CmsSignerInfo* signerInfo, uint8_t* out, uint32_t* outLen);
/**
 * Hands out the signer's signed attributes as an attribute-list handle that changes them in place.
 *
 * The handle is the signer's own slot: the attribute-list functions of tarvelon/attributes.h add to,
 * read and remove from the signer's set directly. A signer without signed attributes gives a handle
 * without a list, which gets one with the first attribute added; RemoveRsaAttributes() takes the set
 * away again.
 *
 * @param[in,out] signerInfo     The signer (borrowed).
 * @param[out]    outAttributes  Receives the handle, lent by @p signerInfo (never FreeRsaAttributes()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoSignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes);
/**
 * Hands out the signer's unsigned attributes as an attribute-list handle that changes them in place.
 *
 * The handle is the signer's own slot, as for GetCmsSignerInfoSignedAttributes(): adding an attribute
 * to a handle without a list gives the signer an unsigned set.
 *
 * @param[in,out] signerInfo     The signer (borrowed).
 * @param[out]    outAttributes  Receives the handle, lent by @p signerInfo (never FreeRsaAttributes()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoUnsignedAttributes(CmsSignerInfo* signerInfo, RsaAttributes** outAttributes);
/**
 * Writes the octets a signature over signed attributes covers: the set as a universal SET.
 *
 * The first octet is 0x31, not the [0] the SignerInfo carries; the rest is identical to the encoding
 * inside the message. Hash these octets and sign the digest (or sign them) with the caller's provider.
 *
 * @param[in]     signerInfo  The signer (borrowed).
 * @param[out]    out         Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol); 0 when
 *                            the signer has no signed attributes.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignerInfoEncodedSignedAttributes(const CmsSignerInfo* signerInfo, uint8_t* out, uint32_t* outLen);

/* Signature workflows. */
/**
 * Copies the library's version banner: product, version, word size, build date and revision.
 *
 * Unlike the other texts there is no size query: a null buffer is refused. A buffer too short gets
 * #TV_ERR_BUFFER_TOO_SMALL and the size needed, the NUL included.
 *
 * @param[out]    outText     Caller buffer for the NUL-terminated text; must not be null.
 * @param[in,out] outTextLen  Room in @p outText; the text length without the NUL after a copy.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null @p outText.
 */
TV_API uint32_t GetVersionInfo(char* outText, uint32_t* outTextLen);
/**
 * Adds the signed attributes of a plain signature to a signer: contentType, messageDigest and, when a
 * time is given, signingTime, in that order.
 *
 * contentType is always id-data, whatever the message carries. Attributes already there stay, so a
 * second call adds a second set of them. The first failure ends the call; what was added stays.
 *
 * @param[in,out] signerInfo   The signer (borrowed).
 * @param[in]     inDigest     The digest of the content, computed by the caller (borrowed).
 * @param[in]     inDigestLen  Octets in @p inDigest.
 * @param[in]     signingTime  The signing time (borrowed), or null for no signingTime attribute.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t FillCmsSignerInfoWithSignedAttributes(CmsSignerInfo* signerInfo, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime);
/**
 * Adds the signed attributes of FillCmsSignerInfoWithSignedAttributes(), then copies of every
 * attribute of @p extra after them.
 *
 * @param[in,out] signerInfo   The signer (borrowed).
 * @param[in]     inDigest     The digest of the content, computed by the caller (borrowed).
 * @param[in]     inDigestLen  Octets in @p inDigest.
 * @param[in]     signingTime  The signing time (borrowed), or null for no signingTime attribute.
 * @param[in]     extra        Further attributes to append (borrowed, copied), or null for none.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when @p extra is a handle without a list.
 */
TV_API uint32_t FillCmsSignerInfoWithSignedAttributes2(CmsSignerInfo* signerInfo, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const RsaAttributes* extra);
/**
 * Writes the octets to sign for a signer with the attributes FillCmsSignerInfoWithSignedAttributes()
 * adds: those attributes as a universal SET (first octet 0x31) in DER order.
 *
 * Pass the same digest and time to CreateCmsFileSignature2() to rebuild the identical set around the
 * signature.
 *
 * @param[in]     inDigest     The digest of the content, computed by the caller (borrowed).
 * @param[in]     inDigestLen  Octets in @p inDigest.
 * @param[in]     signingTime  The signing time (borrowed), or null for no signingTime attribute.
 * @param[out]    out          Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCmsSignedDataToBeSignedPart(const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, uint8_t* out, uint32_t* outLen);
/**
 * Writes the octets to sign for a signer with the attributes FillCmsSignerInfoWithSignedAttributes2()
 * adds, as a universal SET (first octet 0x31) in DER order.
 *
 * Pass the same digest, time and extra attributes to CreateCmsFileSignature2() to rebuild the
 * identical set around the signature.
 *
 * @param[in]     inDigest     The digest of the content, computed by the caller (borrowed).
 * @param[in]     inDigestLen  Octets in @p inDigest.
 * @param[in]     signingTime  The signing time (borrowed), or null for no signingTime attribute.
 * @param[in]     extra        Further attributes (borrowed), or null for none.
 * @param[out]    out          Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when @p extra is a handle without a list.
 */
TV_API uint32_t GetCmsSignedDataToBeSignedPart2(const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const RsaAttributes* extra, uint8_t* out, uint32_t* outLen);
/**
 * Writes a complete ContentInfo(SignedData) with one more signer: a new message, or @p inExisting with
 * the signer added.
 *
 * The signer (version 1) is named by the issuer and serial number of @p inSignerCert and carries the
 * caller's algorithms and signature. With @p withSignedAttributes it gets the signed attributes of
 * FillCmsSignerInfoWithSignedAttributes2(), and @p inSignature must sign the octets
 * GetCmsSignedDataToBeSignedPart2() gave for the same digest, time and @p extra; both the digest and
 * the time are then required (a signer whose signed attributes carry no signingTime is built with the
 * SignerInfo functions instead). Without it, the digest, time and @p extra are not used.
 *
 * The SignedData's version is set to 1, its content type to id-data and the digest algorithm is
 * listed once, also in an existing message, whose signers, certificates and CRLs are kept. The content
 * passed becomes eContent; no content makes the result detached, even when the existing message had
 * one. The certificates of @p inCerts are stored once each; the signer's own certificate is stored
 * only when it is among them. The message is built anew on every call, a size query included.
 *
 * @param[in]     inContent             The content (borrowed), or null for a detached signature.
 * @param[in]     inContentLen          Octets in @p inContent.
 * @param[in]     inDigest              The content's digest (borrowed); used with signed attributes.
 * @param[in]     inDigestLen           Octets in @p inDigest.
 * @param[in]     signingTime           The signing time (borrowed); used with signed attributes.
 * @param[in]     inDigestOid           The digest algorithm, packed (borrowed).
 * @param[in]     inDigestParams        Its parameters as one DER element (borrowed), or null for none.
 * @param[in]     inDigestParamsLen     Octets in @p inDigestParams.
 * @param[in]     inSignerCert          The signer's encoded certificate (borrowed).
 * @param[in]     inSignerCertLen       Octets in @p inSignerCert.
 * @param[in]     inCerts               @p certCount encoded certificates to store (borrowed), or null
 *                                      when @p certCount is 0.
 * @param[in]     inCertLens            The octets of each of @p inCerts (borrowed).
 * @param[in]     certCount             The number of certificates in @p inCerts.
 * @param[in]     inSignatureOid        The signature algorithm, packed (borrowed).
 * @param[in]     inSignatureParams     Its parameters as one DER element (borrowed), or null for none.
 * @param[in]     inSignatureParamsLen  Octets in @p inSignatureParams.
 * @param[in]     withSignedAttributes  Nonzero to give the signer signed attributes.
 * @param[in]     extra                 Further signed attributes (borrowed, copied), or null for none.
 * @param[in]     reserved              Not used.
 * @param[in]     inSignature           The signature the caller's provider computed (borrowed).
 * @param[in]     inSignatureLen        Octets in @p inSignature.
 * @param[in]     inExisting            An encoded signed message to add the signer to (borrowed), or
 *                                      null for a new message.
 * @param[in]     inExistingLen         Octets in @p inExisting; 0 for a new message.
 * @param[out]    out                   Caller buffer for the message, or null to ask its size.
 * @param[in,out] outLen                Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when signed attributes are asked for
 *         without a digest or a time; #TV_ERR_NOT_SIGNED_DATA (314) when @p inExisting is a ContentInfo
 *         of another type, #TV_ERR_ABSENT (311) when it has no content; #TV_ERR_DIFFERENT (320) when
 *         its eContent and @p inContent are both present and differ; #TV_ERR_NOT_DER (307) for a signer
 *         certificate without serial number.
 */
TV_API uint32_t CreateCmsFileSignature2(const uint8_t* inContent, uint32_t inContentLen, const uint8_t* inDigest, uint32_t inDigestLen, const LibraryTime* signingTime, const uint8_t* inDigestOid, const uint8_t* inDigestParams, uint32_t inDigestParamsLen, const uint8_t* inSignerCert, uint32_t inSignerCertLen, const uint8_t* const* inCerts, const uint32_t* inCertLens, uint32_t certCount, const uint8_t* inSignatureOid, const uint8_t* inSignatureParams, uint32_t inSignatureParamsLen, uint32_t withSignedAttributes, const RsaAttributes* extra, uint64_t reserved, const uint8_t* inSignature, uint32_t inSignatureLen, const uint8_t* inExisting, uint32_t inExistingLen, uint8_t* out, uint32_t* outLen);
/**
 * Tells whether a certificate is the signer's, by the signer's identifier.
 *
 * Issuer and serial: the serial octets must be equal and the names equal by CompareX509Names(). Key
 * identifier: it must equal the certificate's subject key identifier. The identifiers are read into
 * fixed buffers of 64 octets (serial) and 32 octets (key identifier).
 *
 * @param[in] signerInfo   The signer (borrowed).
 * @param[in] certificate  The certificate (borrowed).
 * @return 0 when the certificate is the signer's; #TV_ERR_DIFFERENT (320) for another serial or key
 *         identifier; for another issuer the answer of CompareX509Names(); #TV_ERR_NOT_DER (307) for a
 *         certificate without serial number; #TV_ERR_WORK_BUFFER (338) for a serial longer than 64 or
 *         a key identifier longer than 32 octets; for a certificate without subject key identifier the
 *         code of GetCertificateSubjectKeyIdentifier(); or another status code.
 */
TV_API uint32_t CompareSignerInfoAndCertificate(CmsSignerInfo* signerInfo, Certificate* certificate);
/**
 * Copies the Kestrune key identifier a certificate carries in its private extension, converted from
 * UTF-8 to code page 1251 (characters of three or more UTF-8 octets are dropped).
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    outText      Caller buffer for the NUL-terminated text, or null to ask its size.
 * @param[in,out] outTextLen   Room in @p outText; the text length + 1 needed, or the length without
 *                             the NUL after a copy (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the certificate lacks the extension.
 */
TV_API uint32_t GetKestruneIdentifierFromCertificate(const Certificate* certificate, char* outText, uint32_t* outTextLen);
/**
 * Renders a certificate for display: "serial, " when every serial octet is printable (0x20 to 0x7A),
 * then the subject's common names.
 *
 * The first commonName of each RDN is taken, joined without separator: a UTF8String keeps ASCII and
 * Cyrillic and drops characters of three or more octets, a BMPString is mapped per code unit ("?" for
 * those code page 1251 lacks), any other string type gives one "?" per content octet. A subject
 * without a common name gives the serial part alone, possibly the empty text.
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    outText      Caller buffer for the NUL-terminated text, or null to ask its size.
 * @param[in,out] outTextLen   Room in @p outText; the text length + 1 needed, or the length without
 *                             the NUL after a copy (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) also, with @p outTextLen left
 *         alone, when the text would exceed 1023 characters or a name value 1024 octets.
 */
TV_API uint32_t GetCertificateCN(Certificate* certificate, char* outText, uint32_t* outTextLen);
/**
 * Renders a CRL for display, in Russian: the version number, "valid from" this update, "to" next
 * update when there is one, and "issuer:" followed by the issuer's common names.
 *
 * Dates are printed DD.MM.YYYY hh:mm:ss as the record holds them, without zone conversion although the
 * text says GMT; without next update the text has no GMT after the first date. Common names are
 * rendered as for GetCertificateCN().
 *
 * @param[in]     crl         The CRL (borrowed).
 * @param[out]    outText     Caller buffer for the NUL-terminated text, or null to ask its size.
 * @param[in,out] outTextLen  Room in @p outText; the text length + 1 needed, or the length without
 *                            the NUL after a copy (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) also, with @p outTextLen left
 *         alone, when the common names do not fit 1023 characters.
 */
TV_API uint32_t GetCrlCN(X509Crl* crl, char* outText, uint32_t* outTextLen);
/**
 * Reads the signing time and the display text of one signer of an encoded signed message.
 *
 * The text is "serial, " when every serial octet is printable, then the common names of the signer's
 * issuer, as GetCertificateCN() renders them. A signer named by a key identifier of 1 to 4 octets
 * gives a fixed text, the Russian for "signer not found" (in code page 1251 CF EE E4 EF E8 F1 E0 ED
 * F2 20 ED E5 20 ED E0 E9 E4 E5 ED); a longer identifier answers #TV_ERR_BUFFER_TOO_SMALL with
 * @p outTextLen left alone, an empty one #TV_ERR_MALFORMED_FOR_PURPOSE (323). The text is read first;
 * when it fails, the time is not read. The time is the first signingTime among the signed attributes;
 * every signed attribute before it must hold exactly one value.
 *
 * @param[in]     signerNumber  The signer, counted from 1.
 * @param[in]     in            The message: an encoded ContentInfo(SignedData) (borrowed).
 * @param[in]     inLen         Octets in @p in.
 * @param[out]    outTime       Receives the signing time (zeroed first), or null when not wanted.
 * @param[out]    outText       Caller buffer for the NUL-terminated text, or null to ask its size.
 * @param[in,out] outTextLen    Room in @p outText; the text length + 1 needed, or the length without
 *                              the NUL after a copy (@ref size_protocol); null when the text is not
 *                              wanted.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for signer number 0 or an empty
 *         message; #TV_ERR_NOT_SIGNED_DATA (314) for a ContentInfo of another type;
 *         #TV_ERR_ABSENT (311) for one without content; #TV_ERR_NOT_FOUND (322) when there is no such
 *         signer or it has no signingTime; #TV_ERR_MALFORMED_FOR_PURPOSE (323) for a signed attribute
 *         without exactly one value or of implausible size.
 */
TV_API uint32_t GetBufferCmsSignatureTimeAndCN(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, LibraryTime* outTime, char* outText, uint32_t* outTextLen);
/**
 * Reads the signing time and the display text of one signer of a signed message in a file, as
 * GetBufferCmsSignatureTimeAndCN() does.
 *
 * A file above 300,000,000 octets is not read, and answers as an empty message would.
 *
 * @param[in]     signerNumber  The signer, counted from 1.
 * @param[in]     path          The file's path, NUL-terminated (borrowed).
 * @param[out]    outTime       Receives the signing time (zeroed first), or null when not wanted.
 * @param[out]    outText       Caller buffer for the NUL-terminated text, or null to ask its size.
 * @param[in,out] outTextLen    Room in @p outText, as for GetBufferCmsSignatureTimeAndCN(); null when
 *                              the text is not wanted.
 * @return #TV_OK, or a status code: those of GetBufferCmsSignatureTimeAndCN(), and
 *         #TV_ERR_FILE_OPEN (12), #TV_ERR_FILE_SEEK (3) or #TV_ERR_FILE_SHORT_READ (46) for the file.
 */
TV_API uint32_t GetCmsSignatureTimeAndCN(uint32_t signerNumber, const char* path, LibraryTime* outTime, char* outText, uint32_t* outTextLen);
/**
 * Reads the signing time of one signer of an encoded signed message, as
 * GetBufferCmsSignatureTimeAndCN() does without the text.
 *
 * @param[in]  signerNumber  The signer, counted from 1.
 * @param[in]  in            The message: an encoded ContentInfo(SignedData) (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outTime       Receives the signing time (zeroed first), or null to check the signer only.
 * @return #TV_OK, or a status code: those of GetBufferCmsSignatureTimeAndCN().
 */
TV_API uint32_t GetBufferCmsSignatureTime(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, LibraryTime* outTime);
/**
 * Reads the signing time of one signer of a signed message in a file, as GetCmsSignatureTimeAndCN()
 * does without the text.
 *
 * @param[in]  signerNumber  The signer, counted from 1.
 * @param[in]  path          The file's path, NUL-terminated (borrowed).
 * @param[out] outTime       Receives the signing time (zeroed first), or null to check the signer only.
 * @return #TV_OK, or a status code: those of GetCmsSignatureTimeAndCN().
 */
TV_API uint32_t GetCmsSignatureTime(uint32_t signerNumber, const char* path, LibraryTime* outTime);
/**
 * Writes an encoded signed message without one of its signers.
 *
 * Digest algorithms and certificates are left as they are. Removing signer 1 of a message with a single
 * signer leaves no signed message: the answer is then the content itself (the octets of eContent).
 *
 * @param[in]     signerNumber  The signer to remove, counted from 1.
 * @param[in]     in            The message: an encoded ContentInfo(SignedData) (borrowed).
 * @param[in]     inLen         Octets in @p in.
 * @param[out]    out           Caller buffer for the result, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for signer number 0 or one beyond
 *         the signers, or an empty message; #TV_ERR_NOT_SIGNED_DATA (314) for a ContentInfo of another
 *         type, #TV_ERR_ABSENT (311) for one without content; #TV_ERR_NOT_FOUND (322) when the only
 *         signer of a detached message is removed.
 */
TV_API uint32_t DeleteBufferCmsSignerInfo(uint32_t signerNumber, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a signed message from a file, without one of its signers, to another file, as
 * DeleteBufferCmsSignerInfo() does.
 *
 * The output file is opened only once the result is complete. A file above 300,000,000 octets is not
 * read, and answers as an empty message would.
 *
 * @param[in] signerNumber  The signer to remove, counted from 1.
 * @param[in] inPath        The input file's path, NUL-terminated (borrowed).
 * @param[in] outPath       The output file's path, NUL-terminated (borrowed); created or replaced.
 * @return #TV_OK, or a status code: those of DeleteBufferCmsSignerInfo(), and #TV_ERR_FILE_OPEN (12)
 *         when a file cannot be opened, #TV_ERR_FILE_SEEK (3) or #TV_ERR_FILE_SHORT_READ (46) for the
 *         input, #TV_ERR_FILE_SHORT_WRITE (47) when the output is not written or closed in full.
 */
TV_API uint32_t DeleteCmsSignerInfo(uint32_t signerNumber, const char* inPath, const char* outPath);

#ifdef __cplusplus
}
#endif

#endif
