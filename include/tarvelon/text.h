/**
 * @file tarvelon/text.h
 * Base64 and PEM, SHA-1, and the conversions between signature, key and text formats.
 */
#ifndef TARVELON_TEXT_H
#define TARVELON_TEXT_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Writes octets as base64 in lines of 64 characters joined by CR LF, with no break after the last
 * line and no NUL terminator.
 *
 * @param[in]     in      Octets to encode (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the characters written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeToBase64(const uint8_t* in, uint32_t inLen, char* out, uint32_t* outLen);
/**
 * Reads base64 in exactly the layout EncodeToBase64() writes, without validating it.
 *
 * The size is estimated from the text's length and padding, so text in another layout decodes to
 * that many octets whatever it holds; DecodePem() is the reader for text from elsewhere.
 *
 * @param[in]     in      Base64 text (borrowed), not NUL-terminated.
 * @param[in]     inLen   Characters in @p in.
 * @param[out]    out     Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for text under four characters.
 */
TV_API uint32_t DecodeFromBase64(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes octets as a PEM block: `-----BEGIN label-----`, the base64 lines of EncodeToBase64(), and
 * `-----END label-----`, each line ended by CR LF; no NUL terminator.
 *
 * @param[in]     in      Octets to encode (borrowed), usually one DER element.
 * @param[in]     inLen   Octets in @p in.
 * @param[in]     label   NUL-terminated label such as "CERTIFICATE" (borrowed).
 * @param[out]    out     Caller buffer for the text, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the characters written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodePem(const uint8_t* in, uint32_t inLen, const char* label, char* out, uint32_t* outLen);
/**
 * Reads the first PEM block of a text, or bare base64: BEGIN and END markers with any label, CR, LF
 * and spaces between groups are all accepted.
 *
 * The octets go straight into @p out while it has room, so the size is known only at the end: a
 * short buffer is partly written before #TV_ERR_BUFFER_TOO_SMALL.
 *
 * @param[in]     in      The text (borrowed), not necessarily NUL-terminated.
 * @param[in]     inLen   Characters in @p in.
 * @param[out]    out     Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_PEM (319) when there is no base64 to read, a character
 *         outside the alphabet, padding before the end or a trailing fragment.
 */
TV_API uint32_t DecodePem(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/**
 * Computes the SHA-1 digest (FIPS 180-4) of the input.
 *
 * @param[in]  in         Octets to hash (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outDigest  Caller buffer of at least 20 octets, any alignment, for the digest.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t sha1(const uint8_t* in, uint32_t inLen, uint8_t* outDigest);

/**
 * Turns a GOST R 34.10 signature as X.509 carries it (64 or 128 octets, big-endian) into the
 * Kestrune order: the same octets reversed, little-endian.
 *
 * @param[in]     in      The signature (borrowed).
 * @param[in]     inLen   64 or 128.
 * @param[out]    out     Caller buffer for the converted signature, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for any other length.
 */
TV_API uint32_t ConvertX509SignatureToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Turns a GOST R 34.10 signature in the Kestrune order back into the X.509 order; the inverse of
 * ConvertX509SignatureToKestrune().
 *
 * @param[in]     in      The signature (borrowed).
 * @param[in]     inLen   64 or 128.
 * @param[out]    out     Caller buffer for the converted signature, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for any other length.
 */
TV_API uint32_t ConvertKestruneSignatureToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Places a GOST R 34.10 public key (64 or 128 octets of X.509 key value) into a Kestrune key record.
 *
 * The record's kind octet stays 0, which ConvertKestrunePublicKeyToX509() does not accept back: the
 * caller sets the kind it means.
 *
 * @param[in]     in      The key value (borrowed).
 * @param[in]     inLen   64 or 128.
 * @param[out]    out     Caller buffer for the record, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for any other length.
 */
TV_API uint32_t ConvertX509PublicKeyToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Takes the GOST R 34.10 public key out of a Kestrune key record, as 64 or 128 octets of X.509 key
 * value depending on the record's kind.
 *
 * @param[in]     in      The key record (borrowed).
 * @param[in]     inLen   The record's size, 256 octets.
 * @param[out]    out     Caller buffer for the key value, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for a record of another size,
 *         #TV_ERR_KEY_KIND (317) for a kind octet the library does not know.
 */
TV_API uint32_t ConvertKestrunePublicKeyToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/**
 * Compares two arrays of octets.
 *
 * @param[in] inA     First array (borrowed), may be null.
 * @param[in] inALen  Octets in @p inA.
 * @param[in] inB     Second array (borrowed), may be null.
 * @param[in] inBLen  Octets in @p inB.
 * @return 0 when both hold the same octets (two null arrays are equal), #TV_ERR_DIFFERENT (320)
 *         otherwise, also when only one is null.
 */
TV_API uint32_t IsArrayEquals(const uint8_t* inA, uint32_t inALen, const uint8_t* inB, uint32_t inBLen);

/**
 * Converts NUL-terminated code page 1251 text to NUL-terminated UTF-8.
 *
 * A size query (null @p out) answers with a capacity that is always enough. A short buffer gets
 * #TV_ERR_BUFFER_TOO_SMALL and the suggested capacity, twice the input length plus 20, which is
 * short for text heavy in three-byte characters: ask with a null buffer when in doubt.
 *
 * @param[in]     text    The text (borrowed).
 * @param[out]    out     Caller buffer for the UTF-8 text and its terminator, or null to ask.
 * @param[in,out] outLen  Room in @p out; on success the length without the terminator.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ConvertAnsiToUTF8(const char* text, char* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
