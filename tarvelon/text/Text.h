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

// ---- SHA-1 --------------------------------------------------------------------------------------

enum class Sha1Path { Auto, Portable, ShaNi };

inline constexpr size_t kSha1Size = 20;

// True when the processor has the SHA extensions (and SSSE3/SSE4.1 that the path also uses).
bool Sha1HasShaNi() noexcept;

// Digest of `n` octets into `digest` (any alignment). ShaNi on a processor without the extensions
// falls back to the portable path, so the tests can ask for both everywhere.
void Sha1Digest(const uint8_t* in, size_t n, uint8_t* digest, Sha1Path path = Sha1Path::Auto) noexcept;

}  // namespace tv
