// Base64 (RFC 4648 alphabet) in the one layout the library writes: 64-character lines joined by
// CR LF. The decoder here trusts that layout and validates nothing; tolerant reading is DecodePem's.
#include "tarvelon/text/Text.h"

#include "tarvelon/text.h"

TV_MODULE(base64)

namespace tv {
namespace {

// Two output characters for every 12-bit half of a group, in memory order: one lookup and one
// two-byte store per half instead of two of each.
constexpr std::array<uint16_t, 4096> kPairs = [] {
    std::array<uint16_t, 4096> t{};
    for (int v = 0; v < 4096; ++v) {
        const auto hi = static_cast<uint8_t>(kBase64Alphabet[v >> 6]);
        const auto lo = static_cast<uint8_t>(kBase64Alphabet[v & 63]);
        t[v] = static_cast<uint16_t>(hi | (lo << 8));  // little-endian: `hi` lands first
    }
    return t;
}();

inline char* EncodeGroup(const uint8_t* in, char* out) noexcept {
    const uint32_t v = (uint32_t{in[0]} << 16) | (uint32_t{in[1]} << 8) | in[2];
    std::memcpy(out, &kPairs[v >> 12], 2);
    std::memcpy(out + 2, &kPairs[v & 0xFFF], 2);
    return out + 4;
}

// The decoding table pre-shifted to each position of a group. Characters outside the alphabet
// contribute their table value's low six bits: no validation here, by design.
constexpr std::array<std::array<uint32_t, 256>, 4> kShifted = [] {
    std::array<std::array<uint32_t, 256>, 4> t{};
    for (int pos = 0; pos < 4; ++pos)
        for (int c = 0; c < 256; ++c) t[pos][c] = uint32_t{kBase64Decode[c] & 0x3Fu} << (18 - 6 * pos);
    return t;
}();

inline uint32_t DecodeGroup(const uint8_t* p) noexcept {
    return kShifted[0][p[0]] | kShifted[1][p[1]] | kShifted[2][p[2]] | kShifted[3][p[3]];
}

constexpr size_t kLineOctets = 48;  // 64 characters
constexpr size_t kLineChars = 64;
constexpr size_t kBreakChars = 2;

}  // namespace

size_t EncodeBase64Body(const uint8_t* in, size_t n, char* out) noexcept {
    char* o = out;
    size_t i = 0;
    while (n - i >= kLineOctets) {
        for (size_t g = 0; g < kLineOctets; g += 3) o = EncodeGroup(in + i + g, o);
        i += kLineOctets;
        if (i < n) {  // no break after a last line that ends the input exactly
            *o++ = '\r';
            *o++ = '\n';
        }
    }
    for (; n - i >= 3; i += 3) o = EncodeGroup(in + i, o);
    if (const size_t rest = n - i; rest) {
        const uint8_t tail[3] = {in[i], rest == 2 ? in[i + 1] : uint8_t{0}, 0};
        EncodeGroup(tail, o);
        o[3] = '=';
        if (rest == 1) o[2] = '=';
        o += 4;
    }
    return static_cast<size_t>(o - out);
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t EncodeToBase64(const uint8_t* in, uint32_t inLen, char* out, uint32_t* outLen) {
    if (!in || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t rc = TV_OK;
    if (!HasRoom(TV_SITE, Base64TextSize(inLen), out, outLen, &rc)) return rc;
    *outLen = static_cast<uint32_t>(EncodeBase64Body(in, inLen, out));
    return TV_OK;
}

extern "C" TV_API uint32_t DecodeFromBase64(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // The size estimate reads the last two characters.
    if (inLen < 4) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const uint64_t len = inLen;
    uint64_t size = (len - kBreakChars * (len / (kLineChars + kBreakChars))) * 3 / 4;
    if (in[len - 2] == '=') size -= 2;
    else if (in[len - 1] == '=') size -= 1;
    uint32_t rc = TV_OK;
    if (!HasRoom(TV_SITE, size, out, outLen, &rc)) return rc;

    const auto* t = reinterpret_cast<const uint8_t*>(in);
    size_t pos = 0, written = 0, inLine = 0;
    // Whole lines followed by at least one more group: none of their groups is the last, and the
    // octets of a line plus the spare of the wide store fit within the size.
    constexpr size_t kLineStep = kLineChars + kBreakChars;
    while (pos + kLineStep + 4 <= len && written + kLineOctets + 2 <= size) {
        for (size_t g = 0; g < kLineChars; g += 8) {
            const uint64_t two = (uint64_t{DecodeGroup(t + pos + g)} << 24) | DecodeGroup(t + pos + g + 4);
            const uint64_t be = __builtin_bswap64(two << 16);  // six octets and two spare
            std::memcpy(out + written, &be, 8);
            written += 6;
        }
        pos += kLineStep;
    }
    while (pos + 4 <= len) {
        const uint32_t v = DecodeGroup(t + pos);
        size_t next = pos + 4;
        if (++inLine == kLineChars / 4) {
            next += kBreakChars;  // whatever the two characters are
            inLine = 0;
        }
        size_t count = 3;
        if (next + 4 > len) {  // only the last group may carry padding
            if (t[pos + 2] == '=') count = 1;
            else if (t[pos + 3] == '=') count = 2;
        }
        // Text in another layout yields more groups than the estimate: never past the reported size.
        if (count > size - written) count = size - written;
        const uint8_t bytes[3] = {static_cast<uint8_t>(v >> 16), static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)};
        std::memcpy(out + written, bytes, count);
        written += count;
        pos = next;
    }
    if (written < size) std::memset(out + written, 0, size - written);  // fewer groups than estimated
    *outLen = static_cast<uint32_t>(size);
    return TV_OK;
}
