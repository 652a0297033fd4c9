// Internal interface of the text and digest modules: the base64 tables and body codec that the PEM
// module shares, in-place PEM decoding for callers that hold a file image, and the SHA-1 paths.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "tarvelon/engine/Engine.h"

namespace tv {

// ---- base64 -------------------------------------------------------------------------------------

inline constexpr char kBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
inline constexpr uint8_t kBase64Invalid = 254;
inline constexpr uint8_t kBase64Pad = 255;

// Character -> 6-bit value. The top-bit copies of the alphabet (and of '=') decode like the plain
// characters: texts that passed through an 8-bit channel which set bit 7 still decode. Both
// markers have bits 6 and 7 set, so one mask over four OR-ed values tells whether a group is clean.
inline constexpr std::array<uint8_t, 256> kBase64Decode = [] {
    std::array<uint8_t, 256> t{};
    for (auto& v : t) v = kBase64Invalid;
    for (int i = 0; i < 64; ++i) {
        const auto c = static_cast<uint8_t>(kBase64Alphabet[i]);
        t[c] = static_cast<uint8_t>(i);
        t[c | 0x80] = static_cast<uint8_t>(i);
    }
    t['='] = kBase64Pad;
    t['=' | 0x80] = kBase64Pad;
    return t;
}();

// Characters of the base64 text for `n` input octets: 64-character lines joined by CR LF, no break
// after the last line. Wraps for n == 0 exactly as the 32-bit formula callers size buffers by
// (134217726); 64-bit so that a huge input can be refused instead of wrapping.
inline uint64_t Base64TextSize(uint32_t n) noexcept {
    const uint32_t chars = 4 * ((n / 3) + (n % 3 != 0));
    if (n == 0) return 2 * ((chars - 1) / 64);  // the 32-bit wrap, kept
    const uint64_t c = 4 * ((uint64_t{n} + 2) / 3);
    return c + 2 * ((c - 1) / 64);
}

// Writes the base64 text of `in` (layout above) and returns the characters written.
size_t EncodeBase64Body(const uint8_t* in, size_t n, char* out) noexcept;

// ---- PEM ----------------------------------------------------------------------------------------

// Decodes the PEM (or bare base64) text in `buffer` into the same buffer. Returns 1 and the new
// length on success, 0 on any failure with `*length` unchanged (the failure site is recorded).
int DecodePemInPlace(uint8_t* buffer, uint32_t* length) noexcept;

// Sizes an in-place write under the common size protocol: true when the caller's buffer takes `n`
// octets; otherwise `*rc` is the protocol's answer (0 with the size stored for a query, 49 for a
// short buffer) and nothing may be written.
inline bool HasRoom(Site site, uint64_t n, const void* out, uint32_t* outLen, uint32_t* rc) noexcept {
    if (out && n <= *outLen) return true;
    *rc = PutBytes(site, nullptr, n, const_cast<void*>(out), outLen);
    return false;
}

// ---- code page 1251 display text -------------------------------------------------------------------

// UTF-8 to code page 1251, the display conversion callers have always had: octets below 0x80 are
// copied; a lead octet 110xxxxx and the continuation after it give
//   code = (lead & 3) * 64 + (next & 63) + ((lead >> 2) & 5) * 256
// written as 0xA8 for U+0401, 0xB8 for U+0451 and (code - 848) mod 256 otherwise. The mask 5 (not 7)
// decodes U+0400..U+047F correctly and nothing else reliably: kept as it is. Every other octet from
// 0x80 up (three- and four-octet sequences, stray continuations) is dropped. Returns the number of
// output octets, counted on past `room`; only those that fit are written.
size_t Utf8ToCp1251(const uint8_t* in, size_t n, char* out, size_t room) noexcept;

// BMPString (UTF-16, big-endian) to code page 1251, one octet per code unit (a lone last octet is
// ignored): below U+0100 the low octet; then a table of 13 code units (Ukrainian and Belarusian
// letters, degree, bullet, middle dot, numero, currency sign, Ё, ё); other units of U+0400..U+044F
// their low octet minus 0x50 (so the unlisted U+0400..U+040F land on 0xB0..0xBF, kept as it is);
// anything else "?". `out` takes n / 2 octets.
void BmpToCp1251(const uint8_t* in, size_t n, char* out) noexcept;

// A UTF-8 literal of ASCII and Russian letters as code page 1251, made at compile time so the
// fixed texts read as what they say. Any other character does not compile.
void NotRussianText();  // deliberately not constexpr: reaching it in a constant expression fails
template <size_t N>
struct Cp1251Text {
    char text[N] = {};
    size_t length = 0;
    consteval Cp1251Text(const char (&utf8)[N]) {
        for (size_t i = 0; i + 1 < N; ++i) {
            const auto b = static_cast<uint8_t>(utf8[i]);
            if (b < 0x80) {
                text[length++] = utf8[i];
                continue;
            }
            const auto next = static_cast<uint8_t>(utf8[++i]);
            const uint32_t code = (b & 0x1Fu) << 6 | (next & 0x3Fu);
            if (code == 0x401) text[length++] = char(0xA8);
            else if (code == 0x451) text[length++] = char(0xB8);
            else if (code >= 0x410 && code <= 0x44F) text[length++] = char(code - 0x350);
            else NotRussianText();
        }
    }
};

// ---- SHA-1 --------------------------------------------------------------------------------------

enum class Sha1Path { Auto, Portable, ShaNi };

inline constexpr size_t kSha1Size = 20;

// True when the processor has the SHA extensions (and SSSE3/SSE4.1 that the path also uses).
bool Sha1HasShaNi() noexcept;

// Digest of `n` octets into `digest` (any alignment). ShaNi on a processor without the extensions
// falls back to the portable path, so the tests can ask for both everywhere.
void Sha1Digest(const uint8_t* in, size_t n, uint8_t* digest, Sha1Path path = Sha1Path::Auto) noexcept;

}  // namespace tv
