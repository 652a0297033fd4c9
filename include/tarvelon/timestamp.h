/**
 * @file tarvelon/timestamp.h
 * RFC 3161 time-stamp messages, each built or read in one call, and SeveralData, the library's own
 * list of CMS ContentInfo values.
 *
 * A time-stamp authority decodes the request (DecodeTimeStampReq()), encodes the TSTInfo
 * (EncodeTSTInfo()), signs it as the eContent of a SignedData of content type id-ct-TSTInfo with the
 * CMS functions, and wraps the ContentInfo in the response (EncodeTimeStampResp()). A client does
 * the reverse. Handles passed to the encoders are only read for the write, neither kept nor freed;
 * handles handed out by the decoders belong to the caller.
 *
 * Decoders with several buffers try every field: one that does not fit stores its size and the call
 * ends with #TV_ERR_BUFFER_TOO_SMALL after the others were filled; any other failure ends the call
 * at once. An absent optional field reads as length 0, 0 or a null handle.
 */
#ifndef TARVELON_TIMESTAMP_H
#define TARVELON_TIMESTAMP_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/extensions.h"
#include "tarvelon/cms.h"

#ifdef __cplusplus
extern "C" {
#endif

/** SeveralData ::= SEQUENCE OF ContentInfo: several CMS messages in one encoding. */
typedef Asn1List SeveralData;

/**
 * Writes a TimeStampReq as DER from its fields.
 *
 * Required: the hash OID and the hashed message. reqPolicy, nonce and extensions are written when
 * given; certReq FALSE is left out (DEFAULT).
 *
 * @param[in]     version             The version, written as given (1 for v1).
 * @param[in]     inHashOid           Packed OID of the hash algorithm of the message imprint (borrowed).
 * @param[in]     inHashParams        Complete DER of the hash algorithm's parameters (borrowed), or null
 *                                    (or empty) to leave them absent.
 * @param[in]     inHashParamsLen     Octets in @p inHashParams.
 * @param[in]     inHashedMessage     The hash of the data to be time-stamped (borrowed).
 * @param[in]     inHashedMessageLen  Octets in @p inHashedMessage.
 * @param[in]     inPolicyOid         Packed OID of the policy asked for (borrowed), or null for none.
 * @param[in]     reserved            Not used.
 * @param[in]     inNonce             Content octets of the nonce INTEGER (borrowed), or null for none.
 * @param[in]     inNonceLen          Octets in @p inNonce.
 * @param[in]     certReq             Non-zero to ask for the authority's certificate in the token.
 * @param[in]     extensions          Extensions (borrowed), or null (or a handle holding no list) for
 *                                    none.
 * @param[out]    out                 Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen              Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeTimeStampReq(uint32_t version, const uint8_t* inHashOid, const uint8_t* inHashParams, uint32_t inHashParamsLen, const uint8_t* inHashedMessage, uint32_t inHashedMessageLen, const uint8_t* inPolicyOid, uint64_t reserved, const uint8_t* inNonce, uint32_t inNonceLen, uint32_t certReq, const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
/**
 * Reads a TimeStampReq into the caller's outputs.
 *
 * Required are the hash-OID length, the hashed-message length, @p outCertReq and @p outExtensions;
 * every other output may be null, and a buffer whose length pointer is null is not asked for. The
 * extensions are handed out even when the call ends with #TV_ERR_BUFFER_TOO_SMALL: free them then
 * too.
 *
 * @param[in]     in                   The encoding (borrowed), not empty.
 * @param[in]     inLen                Octets in @p in.
 * @param[out]    outVersion           Receives the version, or null.
 * @param[out]    outHashOid           Caller buffer for the packed hash OID, or null to ask its size.
 * @param[in,out] outHashOidLen        Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams        Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen     Room in @p outHashParams; the octets written or needed (0 when
 *                                     absent); null to skip.
 * @param[out]    outHashedMessage     Caller buffer for the hashed message, or null to ask its size.
 * @param[in,out] outHashedMessageLen  Room in @p outHashedMessage; the octets written or needed.
 * @param[out]    outPolicyOid         Caller buffer for the packed reqPolicy OID, or null to ask its size.
 * @param[in,out] outPolicyOidLen      Room in @p outPolicyOid; the octets written or needed (0 when
 *                                     absent); null to skip.
 * @param[out]    outNonce             Caller buffer for the nonce's content octets, or null to ask.
 * @param[in,out] outNonceLen          Room in @p outNonce; the octets written or needed (0 when
 *                                     absent); null to skip.
 * @param[out]    outCertReq           Receives 1 when certReq is TRUE, else 0.
 * @param[out]    outExtensions        Receives a new extensions handle owned by the caller
 *                                     (FreeX509Extensions()), or null when the request has none.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for empty input.
 */
TV_API uint32_t DecodeTimeStampReq(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHashedMessage, uint32_t* outHashedMessageLen, uint8_t* outPolicyOid, uint32_t* outPolicyOidLen, uint8_t* outNonce, uint32_t* outNonceLen, uint32_t* outCertReq, X509Extensions** outExtensions);

/**
 * Writes a TimeStampResp as DER: the status information and, when given, the token.
 *
 * failInfo 0 leaves it out; otherwise the word's octets, least significant first, are the BIT
 * STRING's leading content octets (trailing zero bits trimmed), the exact inverse of
 * DecodeTimeStampResp(): PKIFailureInfo bit n is (0x80 >> n % 8) << (8 * (n / 8)) in the word, so
 * badAlg (0) is 0x80 and badRequest (2) is 0x20.
 *
 * @param[in]     status        The PKIStatus (0 granted, 1 grantedWithMods, 2 rejection, ...), written
 *                              as given.
 * @param[in]     statusString  Status text (borrowed), or null for none.
 * @param[in]     failInfo      The failure bits as above, or 0 for none.
 * @param[in]     token         The time-stamp token, a ContentInfo holding the SignedData (borrowed),
 *                              or null for none.
 * @param[out]    out           Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeTimeStampResp(uint32_t status, const PKIFreeText* statusString, uint32_t failInfo, const CmsContentInfo* token, uint8_t* out, uint32_t* outLen);
/**
 * Reads a TimeStampResp: the status, its text, the failure bits and the token.
 *
 * Every output is required. The status text and the token are copies of the caller's own; on
 * failure the caller gets neither.
 *
 * @param[in]  in               The encoding (borrowed), not empty.
 * @param[in]  inLen            Octets in @p in.
 * @param[out] outStatus        Receives the PKIStatus.
 * @param[out] outStatusString  Receives a new status text owned by the caller (FreePKIFreeText()), or
 *                              null when absent.
 * @param[out] outFailInfo      Receives up to four content octets of failInfo, the first in the
 *                              lowest byte (the layout of EncodeTimeStampResp()), or 0 when absent.
 * @param[out] outToken         Receives a new ContentInfo owned by the caller (FreeCmsContentInfo()),
 *                              or null when the response carries no token.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for empty input.
 */
TV_API uint32_t DecodeTimeStampResp(const uint8_t* in, uint32_t inLen, uint32_t* outStatus, PKIFreeText** outStatusString, uint32_t* outFailInfo, CmsContentInfo** outToken);

/**
 * Writes a TSTInfo as DER from its fields: the octets to sign as the eContent of the token.
 *
 * Required: policy, hash OID, hashed message, serial and genTime. The accuracy is written only when
 * one of its values is non-zero, and each value only when non-zero; ordering FALSE is left out
 * (DEFAULT). genTime carries the record's fraction of a second
 * in its shortest form (".5", ".000001", none for a whole second).
 *
 * @param[in]     version             The version, written as given (1 for v1).
 * @param[in]     inPolicyOid         Packed OID of the authority's policy (borrowed).
 * @param[in]     inHashOid           Packed OID of the hash algorithm of the message imprint (borrowed).
 * @param[in]     inHashParams        Complete DER of the hash algorithm's parameters (borrowed), or null
 *                                    (or empty) to leave them absent.
 * @param[in]     inHashParamsLen     Octets in @p inHashParams.
 * @param[in]     inHashedMessage     The hashed message from the request (borrowed).
 * @param[in]     inHashedMessageLen  Octets in @p inHashedMessage.
 * @param[in]     inSerial            Content octets of the serial number INTEGER (borrowed), as given.
 * @param[in]     inSerialLen         Octets in @p inSerial.
 * @param[in]     genTime             The generation time, UTC (borrowed).
 * @param[in]     accuracy            The accuracy (borrowed), or null for none.
 * @param[in]     ordering            Non-zero for ordering TRUE.
 * @param[in]     inNonce             Content octets of the nonce INTEGER (borrowed), or null for none.
 * @param[in]     inNonceLen          Octets in @p inNonce.
 * @param[in]     tsa                 The authority's name (borrowed), or null for none.
 * @param[in]     extensions          Extensions (borrowed), or null (or a handle holding no list) for
 *                                    none.
 * @param[out]    out                 Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen              Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a genTime out of the record's range.
 */
TV_API uint32_t EncodeTSTInfo(uint32_t version, const uint8_t* inPolicyOid, const uint8_t* inHashOid, const uint8_t* inHashParams, uint32_t inHashParamsLen, const uint8_t* inHashedMessage, uint32_t inHashedMessageLen, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryPreciseTime* genTime, const Accuracy* accuracy, uint32_t ordering, const uint8_t* inNonce, uint32_t inNonceLen, const GeneralName* tsa, const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
/**
 * Reads a TSTInfo into the caller's outputs.
 *
 * Every output may be null, and a buffer whose length pointer is null is not asked for. An absent
 * accuracy reads as three zeros; inside a present one, absent millis or micros read as 0 while an
 * absent seconds leaves the caller's value (kept as callers have always seen it). The tsa and the
 * extensions are handed out even when the call ends with #TV_ERR_BUFFER_TOO_SMALL: free them then
 * too.
 *
 * @param[in]     in                   The encoding (borrowed), not empty.
 * @param[in]     inLen                Octets in @p in.
 * @param[out]    outVersion           Receives the version, or null.
 * @param[out]    outPolicyOid         Caller buffer for the packed policy OID, or null to ask its size.
 * @param[in,out] outPolicyOidLen      Room in @p outPolicyOid; the octets written or needed; null to
 *                                     skip.
 * @param[out]    outHashOid           Caller buffer for the packed hash OID, or null to ask its size.
 * @param[in,out] outHashOidLen        Room in @p outHashOid; the octets written or needed; null to skip.
 * @param[out]    outHashParams        Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen     Room in @p outHashParams; the octets written or needed (0 when
 *                                     absent); null to skip.
 * @param[out]    outHashedMessage     Caller buffer for the hashed message, or null to ask its size.
 * @param[in,out] outHashedMessageLen  Room in @p outHashedMessage; the octets written or needed; null
 *                                     to skip.
 * @param[out]    outSerial            Caller buffer for the serial's content octets, or null to ask.
 * @param[in,out] outSerialLen         Room in @p outSerial; the octets written or needed; null to skip.
 * @param[out]    outGenTime           Receives genTime with its milli- and microseconds, or null.
 * @param[out]    outAccuracy          Receives the accuracy as described above, or null.
 * @param[out]    outOrdering          Receives 1 when ordering is TRUE, else 0; or null.
 * @param[out]    outNonce             Caller buffer for the nonce's content octets, or null to ask.
 * @param[in,out] outNonceLen          Room in @p outNonce; the octets written or needed (0 when
 *                                     absent); null to skip.
 * @param[out]    outTsa               Receives a new name owned by the caller (FreeX509GeneralName()),
 *                                     or null when absent; null to skip.
 * @param[out]    outExtensions        Receives a new extensions handle owned by the caller
 *                                     (FreeX509Extensions()), or null when absent; null to skip.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for empty input.
 */
TV_API uint32_t DecodeTSTInfo(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outPolicyOid, uint32_t* outPolicyOidLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHashedMessage, uint32_t* outHashedMessageLen, uint8_t* outSerial, uint32_t* outSerialLen, LibraryPreciseTime* outGenTime, Accuracy* outAccuracy, uint32_t* outOrdering, uint8_t* outNonce, uint32_t* outNonceLen, GeneralName** outTsa, X509Extensions** outExtensions);

/* SeveralData. */

/**
 * Creates an empty SeveralData list.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeSeveralData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateSeveralData(SeveralData** outList);
/**
 * Frees a SeveralData list with every ContentInfo in it.
 *
 * @param[in] list  The list (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeSeveralData(SeveralData* list);
/**
 * Writes a SeveralData list as DER; an empty list is an empty SEQUENCE.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeSeveralData(const SeveralData* list, uint8_t* out, uint32_t* outLen);
/**
 * Decodes a SeveralData list; octets after the first complete element are ignored.
 *
 * @param[in]  in       The encoding (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeSeveralData()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeSeveralData(const uint8_t* in, uint32_t inLen, SeveralData** outList);
/**
 * Appends a ContentInfo to the list, which takes the ContentInfo itself.
 *
 * @param[in,out] list         The list (borrowed).
 * @param[in]     contentInfo  The ContentInfo (taken over on success: freed with the list); after a
 *                             failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddSeveralDataContentInfo(SeveralData* list, CmsContentInfo* contentInfo);
/**
 * Counts the ContentInfo values in the list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of entries.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetSeveralDataContentInfoCount(const SeveralData* list, uint32_t* outCount);
/**
 * Hands out one ContentInfo of the list.
 *
 * @param[in]  list            The list (borrowed).
 * @param[in]  index           Position from 0.
 * @param[out] outContentInfo  Receives the ContentInfo, lent by @p list (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetSeveralDataContentInfo(const SeveralData* list, uint32_t index, CmsContentInfo** outContentInfo);
/**
 * Removes and frees one ContentInfo; the entries after it move down by one.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Position from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t RemoveSeveralDataContentInfo(SeveralData* list, uint32_t index);

#ifdef __cplusplus
}
#endif

#endif
