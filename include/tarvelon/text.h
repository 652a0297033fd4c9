/* Tarvelon: base64 and PEM, SHA-1 and the format conversions. */
#ifndef TARVELON_TEXT_H
#define TARVELON_TEXT_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Base64 in 64-character lines joined by CR LF. DecodeFromBase64 reads only that layout and does not
 * validate; DecodePem is the tolerant reader (markers, any label, CR/LF/space between groups, bare
 * base64). Text outputs are not NUL-terminated. */
TV_API uint32_t EncodeToBase64(const uint8_t* in, uint32_t inLen, char* out, uint32_t* outLen);
TV_API uint32_t DecodeFromBase64(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodePem(const uint8_t* in, uint32_t inLen, const char* label, char* out, uint32_t* outLen);
TV_API uint32_t DecodePem(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* SHA-1 of the input; outDigest receives 20 bytes (any alignment). */
TV_API uint32_t sha1(const uint8_t* in, uint32_t inLen, uint8_t* outDigest);

/* GOST R 34.10 signatures (64 or 128 bytes) and public keys between the X.509 and Kestrune forms. */
TV_API uint32_t ConvertX509SignatureToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t ConvertKestruneSignatureToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t ConvertX509PublicKeyToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t ConvertKestrunePublicKeyToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* 0 when both arrays hold the same bytes (two null arrays are equal), TV_ERR_DIFFERENT otherwise. */
TV_API uint32_t IsArrayEquals(const uint8_t* inA, uint32_t inALen, const uint8_t* inB, uint32_t inBLen);

/* Code page 1251 text (NUL-terminated) to NUL-terminated UTF-8; outLen receives the length without
 * the terminator. A short buffer gets 49 and the suggested capacity 2 x input length + 20. */
TV_API uint32_t ConvertAnsiToUTF8(const char* text, char* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
