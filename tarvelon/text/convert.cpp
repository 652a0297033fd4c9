// Byte-layout conversions between the X.509 forms of GOST R 34.10 keys and signatures and the
// Kestrune record forms, byte-array comparison, and code page 1251 display text to UTF-8.
#include "tarvelon/text/Text.h"

#include <algorithm>

#include "tarvelon/text.h"

TV_MODULE(convert)

namespace tv {
namespace {

constexpr uint32_t kSignature256 = 64;  // r || s of GOST R 34.10-2001 / -2012 256-bit
constexpr uint32_t kSignature512 = 128;
constexpr uint32_t kRecordSize = 256;
constexpr size_t kHalf256 = 32;
constexpr size_t kSlot256 = 64;  // each coordinate of a 256-bit key sits at the start of a 64-byte slot
constexpr size_t kTagOffset = 252;
constexpr size_t kKindOffset = 254;

inline bool IsKeyOrSignatureLength(uint32_t n) { return n == kSignature256 || n == kSignature512; }

// Kinds of Kestrune records; the 512-bit kinds hold the key whole, the others as two slotted halves.
inline bool IsLongKind(uint8_t k) { return k == '1' || k == '2' || k == '3'; }
inline bool IsShortKind(uint8_t k) {
    switch (k) {
        case 'A': case 'B': case 'C': case 'D': case 'X': case 'Y':
        case 'a': case 'b': case 'c': case 'x': case 'y':
            return true;
        default:
            return false;
    }
}

// Both directions are the same whole-buffer reversal: the Kestrune form stores the integer
// little-endian, X.509 (RFC 4491 2.2.2) big-endian.
uint32_t ReverseSignature(Site site, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    uint8_t reversed[kSignature512];
    for (uint32_t i = 0; i < inLen; ++i) reversed[i] = in[inLen - 1 - i];
    return PutBytes(site, reversed, inLen, out, outLen);
}

// UTF-8 of one code page 1251 byte at 0x80 and above. The letters 0xC0..0xFF are U+0410..U+044F,
// i.e. byte + 0x350; the listed punctuation and Ukrainian/Belarusian letters get their own code
// points, and the remaining bytes follow the same offset rule (kept: display texts never use them).
struct Utf8Char {
    uint8_t len;
    uint8_t bytes[3];
};

constexpr std::array<Utf8Char, 128> kHighHalf = [] {
    std::array<Utf8Char, 128> t{};
    auto two = [](uint32_t cp) {
        return Utf8Char{2, {static_cast<uint8_t>(0xC0 | (cp >> 6)), static_cast<uint8_t>(0x80 | (cp & 0x3F)), 0}};
    };
    auto three = [](uint32_t cp) {
        return Utf8Char{3, {static_cast<uint8_t>(0xE0 | (cp >> 12)), static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3F)),
                            static_cast<uint8_t>(0x80 | (cp & 0x3F))}};
    };
    for (uint32_t b = 0x80; b < 0x100; ++b) t[b - 0x80] = two(b + 0x350);
    const struct {
        uint8_t byte;
        uint32_t cp;
    } named[] = {{0xA8, 0x0401}, {0xB8, 0x0451}, {0xAA, 0x0404}, {0xBA, 0x0454}, {0xAF, 0x0407},
                 {0xBF, 0x0457}, {0xA1, 0x040E}, {0xA2, 0x045E}, {0xA4, 0x00A4}, {0xB0, 0x00B0},
                 {0xB7, 0x00B7}, {0x95, 0x2022}, {0xB9, 0x2116}};
    for (const auto& n : named) t[n.byte - 0x80] = n.cp < 0x800 ? two(n.cp) : three(n.cp);
    return t;
}();

// Room the conversion keeps in reserve below the caller's capacity: the terminator and the
// overshoot of the last character written before the limit is noticed.
constexpr uint64_t kReserve = 9;

inline uint64_t SuggestedSize(size_t inputLen) { return uint64_t{inputLen} * 2 + 20; }

// Capacity that the conversion needs to succeed: the last character must start below the work
// limit.
uint64_t NeededCapacity(const uint8_t* text, size_t n) {
    uint64_t before = 0;
    for (size_t i = 0; i + 1 < n; ++i) before += text[i] < 0x80 ? 1 : kHighHalf[text[i] - 0x80].len;
    return before + kReserve + 1;
}

}  // namespace

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t ConvertX509SignatureToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen || !IsKeyOrSignatureLength(inLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReverseSignature(TV_SITE, in, inLen, out, outLen);
}

extern "C" TV_API uint32_t ConvertKestruneSignatureToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen || !IsKeyOrSignatureLength(inLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReverseSignature(TV_SITE, in, inLen, out, outLen);
}

extern "C" TV_API uint32_t ConvertX509PublicKeyToKestrune(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen || !IsKeyOrSignatureLength(inLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t record[kRecordSize] = {};
    if (inLen == kSignature512) {
        std::memcpy(record, in, inLen);
    } else {
        std::memcpy(record, in, kHalf256);
        std::memcpy(record + kSlot256, in + kHalf256, kHalf256);
    }
    record[kTagOffset] = 'v';
    record[kTagOffset + 1] = '5';
    // The kind byte stays 0: such a record is not accepted back by ConvertKestrunePublicKeyToX509
    // (kept; callers set the kind they mean).
    return PutBytes(TV_SITE, record, sizeof record, out, outLen);
}

extern "C" TV_API uint32_t ConvertKestrunePublicKeyToX509(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen || inLen != kRecordSize) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const uint8_t kind = in[kKindOffset];
    uint8_t key[kSignature512];
    if (IsLongKind(kind)) return PutBytes(TV_SITE, in, kSignature512, out, outLen);
    if (!IsShortKind(kind)) return TV_FAIL(TV_ERR_KEY_KIND);
    std::memcpy(key, in, kHalf256);
    std::memcpy(key + kHalf256, in + kSlot256, kHalf256);
    return PutBytes(TV_SITE, key, kSignature256, out, outLen);
}

extern "C" TV_API uint32_t IsArrayEquals(const uint8_t* inA, uint32_t inALen, const uint8_t* inB, uint32_t inBLen) {
    if (!inA && !inB) return TV_OK;
    if (!inA || !inB || inALen != inBLen) return TV_FAIL(TV_ERR_DIFFERENT);
    if (inALen && std::memcmp(inA, inB, inALen) != 0) return TV_FAIL(TV_ERR_DIFFERENT);
    return TV_OK;
}

namespace tv {

size_t Utf8ToCp1251(const uint8_t* in, size_t n, char* out, size_t room) noexcept {
    size_t count = 0;
    const auto put = [&](uint8_t c) {
        if (count < room) out[count] = static_cast<char>(c);
        ++count;
    };
    uint8_t lead = 0;
    for (size_t i = 0; i < n; ++i) {
        const uint8_t b = in[i];
        if (b < 0x80) {
            lead = 0;
            put(b);
        } else if ((b & 0xE0) == 0xC0) {
            lead = b;
        } else if (lead && (b & 0xC0) == 0x80) {
            const uint32_t code = (lead & 3u) * 64 + (b & 63u) + ((lead >> 2) & 5u) * 256;
            put(code == 1025 ? 0xA8 : code == 1105 ? 0xB8 : static_cast<uint8_t>(code - 848));
            lead = 0;
        } else {
            lead = 0;
        }
    }
    return count;
}

void BmpToCp1251(const uint8_t* in, size_t n, char* out) noexcept {
    // Searched in this order; the first match wins.
    static constexpr struct {
        uint16_t unit;
        uint8_t octet;
    } kTable[] = {
        {0x0404, 0xAA}, {0x0454, 0xBA}, {0x0407, 0xAF}, {0x0457, 0xBF}, {0x040E, 0xA1}, {0x045E, 0xA2}, {0x00B0, 0xB0},
        {0x2022, 0x95}, {0x00B7, 0xB7}, {0x2116, 0xB9}, {0x00A4, 0xA4}, {0x0401, 0xA8}, {0x0451, 0xB8},
    };
    for (size_t i = 0; i + 1 < n; i += 2) {
        const uint16_t unit = static_cast<uint16_t>(in[i] << 8 | in[i + 1]);
        char c = '?';
        if (unit < 0x100) {
            c = static_cast<char>(unit);
        } else if (const auto* hit = std::find_if(std::begin(kTable), std::end(kTable),
                                                  [unit](const auto& e) { return e.unit == unit; });
                   hit != std::end(kTable)) {
            c = static_cast<char>(hit->octet);
        } else if (unit >= 0x0400 && unit <= 0x044F) {
            c = static_cast<char>(static_cast<uint8_t>((unit & 0xFF) - 0x50));
        }
        out[i / 2] = c;
    }
}

}  // namespace tv

extern "C" TV_API uint32_t ConvertAnsiToUTF8(const char* text, char* out, uint32_t* outLen) {
    if (!text || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const auto* in = reinterpret_cast<const uint8_t*>(text);
    const size_t n = std::strlen(text);
    if (!out) {
        // A size query answers with a capacity that works: the usual suggestion, or more for texts
        // heavy in three-byte characters, which the suggestion undercounts.
        const uint64_t need = n == 0 ? 1 : std::max(SuggestedSize(n), NeededCapacity(in, n));
        return PutBytes(TV_SITE, nullptr, need, nullptr, outLen);
    }
    if (n == 0) {
        if (*outLen) out[0] = '\0';
        *outLen = 0;
        return TV_OK;
    }
    const int64_t limit = int64_t{*outLen} - static_cast<int64_t>(kReserve);
    // Too small answers with the suggestion even when the capacity already reaches it (a text of
    // many three-byte characters); the size query above gives a capacity that works.
    if (limit < 1) {
        *outLen = static_cast<uint32_t>(std::min<uint64_t>(SuggestedSize(n), UINT32_MAX));
        return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
    }
    auto* o = reinterpret_cast<uint8_t*>(out);
    size_t i = 0;
    int64_t written = 0;
    for (; i < n && written < limit; ++i) {
        const uint8_t b = in[i];
        if (b < 0x80) {
            o[written++] = b;
            continue;
        }
        const Utf8Char& u = kHighHalf[b - 0x80];
        std::memcpy(o + written, u.bytes, u.len);
        written += u.len;
    }
    if (i < n) {
        *outLen = static_cast<uint32_t>(std::min<uint64_t>(SuggestedSize(n), UINT32_MAX));
        return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
    }
    o[written] = '\0';
    *outLen = static_cast<uint32_t>(written);
    return TV_OK;
}
