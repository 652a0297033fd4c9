/* Tarvelon: RFC 3161 time-stamp messages, each built or read in one call, and SeveralData, the
 * library's own list of CMS ContentInfo values.
 *
 * A time-stamp authority decodes the request (DecodeTimeStampReq), encodes the TSTInfo
 * (EncodeTSTInfo), signs it as the eContent of a SignedData of content type id-ct-TSTInfo with the
 * CMS functions, and wraps the ContentInfo in the response (EncodeTimeStampResp). A client does the
 * reverse. Handles passed to the encoders are copied; handles handed out by the decoders belong to
 * the caller.
 *
 * Decoders with several buffers try every field: one that does not fit stores its size and the call
 * ends with 49 after the others were filled. An absent optional field reads as length 0, 0 or a null
 * handle. */
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

/* SeveralData ::= SEQUENCE OF ContentInfo */
typedef Asn1List SeveralData;

/* TimeStampReq. Required: the hash OID and the hashed message; reqPolicy, nonce and extensions are
 * written when given; certReq FALSE is left out (DEFAULT). `reserved` is not used. */
TV_API uint32_t EncodeTimeStampReq(uint32_t version, const uint8_t* inHashOid, const uint8_t* inHashParams, uint32_t inHashParamsLen, const uint8_t* inHashedMessage, uint32_t inHashedMessageLen, const uint8_t* inPolicyOid, uint64_t reserved, const uint8_t* inNonce, uint32_t inNonceLen, uint32_t certReq, const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
/* Required: the hash-OID length, the hashed-message length, certReq and the extensions out pointer;
 * the other outputs may be null (not asked for). */
TV_API uint32_t DecodeTimeStampReq(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHashedMessage, uint32_t* outHashedMessageLen, uint8_t* outPolicyOid, uint32_t* outPolicyOidLen, uint8_t* outNonce, uint32_t* outNonceLen, uint32_t* outCertReq, X509Extensions** outExtensions);

/* TimeStampResp. failInfo 0 leaves it out; otherwise the word's octets, least significant first, are
 * the BIT STRING's leading content octets (trailing zero bits trimmed), the exact inverse of the
 * decoder, which copies up to four content octets into the word from its lowest-addressed byte. */
TV_API uint32_t EncodeTimeStampResp(uint32_t status, const PKIFreeText* statusString, uint32_t failInfo, const CmsContentInfo* token, uint8_t* out, uint32_t* outLen);
/* Every output is required; the status text and the token are the caller's copies (null when absent). */
TV_API uint32_t DecodeTimeStampResp(const uint8_t* in, uint32_t inLen, uint32_t* outStatus, PKIFreeText** outStatusString, uint32_t* outFailInfo, CmsContentInfo** outToken);

/* TSTInfo. Required: policy, hash OID, hashed message, serial and genTime (its fraction written as
 * the record holds it, the shortest form). The accuracy is written only when one of its values is
 * non-zero, and each value only when non-zero; ordering FALSE is left out (DEFAULT). */
TV_API uint32_t EncodeTSTInfo(uint32_t version, const uint8_t* inPolicyOid, const uint8_t* inHashOid, const uint8_t* inHashParams, uint32_t inHashParamsLen, const uint8_t* inHashedMessage, uint32_t inHashedMessageLen, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryPreciseTime* genTime, const Accuracy* accuracy, uint32_t ordering, const uint8_t* inNonce, uint32_t inNonceLen, const GeneralName* tsa, const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
/* Every output may be null (the field is skipped). An absent accuracy reads as three zeros; inside a
 * present one, absent millis or micros read as 0 while an absent seconds leaves the caller's value. */
TV_API uint32_t DecodeTSTInfo(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outPolicyOid, uint32_t* outPolicyOidLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHashedMessage, uint32_t* outHashedMessageLen, uint8_t* outSerial, uint32_t* outSerialLen, LibraryPreciseTime* outGenTime, Accuracy* outAccuracy, uint32_t* outOrdering, uint8_t* outNonce, uint32_t* outNonceLen, GeneralName** outTsa, X509Extensions** outExtensions);

/* SeveralData. Add takes the ContentInfo itself: on success the list frees it; on failure the
 * caller keeps it. Get hands out a borrowed pointer. */
TV_API uint32_t CreateSeveralData(SeveralData** outList);
TV_API uint32_t FreeSeveralData(SeveralData* list);
TV_API uint32_t EncodeSeveralData(const SeveralData* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeSeveralData(const uint8_t* in, uint32_t inLen, SeveralData** outList);
TV_API uint32_t AddSeveralDataContentInfo(SeveralData* list, CmsContentInfo* contentInfo);
TV_API uint32_t GetSeveralDataContentInfoCount(const SeveralData* list, uint32_t* outCount);
TV_API uint32_t GetSeveralDataContentInfo(const SeveralData* list, uint32_t index, CmsContentInfo** outContentInfo);
TV_API uint32_t RemoveSeveralDataContentInfo(SeveralData* list, uint32_t index);

#ifdef __cplusplus
}
#endif

#endif
