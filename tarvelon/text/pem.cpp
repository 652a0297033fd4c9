// PEM armour (RFC 7468 layout) around the base64 of DER objects. Writing is strict (CR LF, 64-character
// lines); reading is the library's tolerant text entry point: it finds the markers, ignores the label,
// skips CR, LF and space between groups and also takes bare base64.
#include "tarvelon/text/Text.h"

#include "tarvelon/text.h"

TV_MODULE(pem)

namespace tv {
namespace {

constexpr char kBegin[] = "-----BEGIN";     // 10
constexpr char kBeginSp[] = "----- BEGIN";  // 11
constexpr char kEnd[] = "-----END";         // 8
constexpr char kEndSp[] = "----- END";      // 9
constexpr size_t kDashes = 5;               // the dashes that close a marker line

template <size_t N>
constexpr size_t Len(const char (&)[N]) {
    return N - 1;
}

constexpr std::array<bool, 256> kBlank = [] {
    std::array<bool, 256> t{};
    t['\r'] = t['\n'] = t[' '] = true;  // not tab: a tab is malformed text
    return t;
}();

inline const uint8_t* SkipBlank(const uint8_t* p, const uint8_t* end) noexcept {
    while (p < end && kBlank[*p]) ++p;
    return p;
}

inline bool At(const uint8_t* p, const uint8_t* end, const char* marker, size_t n) noexcept {
    return static_cast<size_t>(end - p) >= n && std::memcmp(p, marker, n) == 0;
}

inline const uint8_t* FindDash(const uint8_t* p, const uint8_t* end) noexcept {
    return p < end ? static_cast<const uint8_t*>(std::memchr(p, '-', static_cast<size_t>(end - p))) : nullptr;
}

// The base64 between the markers, [*b64, *b64End). Without a usable BEGIN line the whole text is
// taken, so bare base64 reads too.
void LocateBase64(const uint8_t* text, const uint8_t* end, const uint8_t** b64, const uint8_t** b64End) noexcept {
    const uint8_t* start = text;
    for (const uint8_t* p = FindDash(text, end); p; p = FindDash(p + 1, end)) {
        // A marker counts only when something follows it.
        size_t marker = 0;
        if (At(p, end, kBegin, Len(kBegin)) && end - p > static_cast<ptrdiff_t>(Len(kBegin))) marker = Len(kBegin);
        else if (At(p, end, kBeginSp, Len(kBeginSp)) && end - p > static_cast<ptrdiff_t>(Len(kBeginSp)))
            marker = Len(kBeginSp);
        if (!marker) continue;
        // The rest of the header line, label included, is not read.
        const auto* lf = static_cast<const uint8_t*>(std::memchr(p + marker, '\n', static_cast<size_t>(end - p - marker)));
        if (lf) {
            const uint8_t* s = SkipBlank(lf + 1, end);
            if (s < end) start = s;
        }
        break;
    }
    const uint8_t* stop = end;
    for (const uint8_t* p = FindDash(start, end); p; p = FindDash(p + 1, end)) {
        // The spaced form is compared over the length of the plain one ("----- EN") and needs more
        // than nine characters left; kept deliberately, for compatibility with existing callers.
        if (At(p, end, kEnd, Len(kEnd)) || (end - p > static_cast<ptrdiff_t>(Len(kEndSp)) && std::memcmp(p, kEndSp, Len(kEnd)) == 0)) {
            stop = p;
            break;
        }
    }
    *b64 = start;
    *b64End = stop;
}

// The decoding table pre-shifted to each position of a group, so that a clean group is four loads
// and three ORs; anything that is not an alphabet character (the pad included) sets the top octet
// and sends the group to the careful path.
using ShiftedTable = std::array<uint32_t, 256>;
constexpr std::array<ShiftedTable, 4> kShifted = [] {
    std::array<ShiftedTable, 4> t{};
    for (int pos = 0; pos < 4; ++pos)
        for (int c = 0; c < 256; ++c) {
            const uint32_t v = kBase64Decode[c];
            t[pos][c] = v < 64 ? v << (18 - 6 * pos) : 0xFF000000u;
        }
    return t;
}();

inline void StoreGroup(uint8_t* o, uint32_t v) noexcept {
    o[0] = static_cast<uint8_t>(v >> 16);
    o[1] = static_cast<uint8_t>(v >> 8);
    o[2] = static_cast<uint8_t>(v);
}

// Decodes groups of four with CR, LF and space allowed between groups only, and returns the number
// of octets the text holds. Octets go to `out` while they fit in `capacity` (nothing is written with
// a null `out`); past that the text is still read to the end, to validate it and learn its size.
// `out` may alias the text at or before `p`: a group is read before its octets are written, and
// those (with the spare fourth octet of the wide store) land before the next group.
uint32_t DecodeGroups(const uint8_t* p, const uint8_t* end, uint8_t* out, size_t capacity, size_t* total) noexcept {
    const auto& [d0, d1, d2, d3] = kShifted;
    if (!out) capacity = 0;
    size_t w = 0;
    while (p < end) {
        // Four clean adjacent groups at once (a 64-character line is four such blocks): no blank
        // can sit between them, since each group's first character is in the alphabet.
        while (end - p >= 16) {
            const uint32_t v1 = d0[p[0]] | d1[p[1]] | d2[p[2]] | d3[p[3]];
            const uint32_t v2 = d0[p[4]] | d1[p[5]] | d2[p[6]] | d3[p[7]];
            const uint32_t v3 = d0[p[8]] | d1[p[9]] | d2[p[10]] | d3[p[11]];
            const uint32_t v4 = d0[p[12]] | d1[p[13]] | d2[p[14]] | d3[p[15]];
            if ((v1 | v2 | v3 | v4) >= 0x01000000u) break;
            if (w + 14 <= capacity) {  // two wide stores of six octets each, two spare
                const uint64_t lo = __builtin_bswap64(((uint64_t{v1} << 24) | v2) << 16);
                const uint64_t hi = __builtin_bswap64(((uint64_t{v3} << 24) | v4) << 16);
                std::memcpy(out + w, &lo, 8);
                std::memcpy(out + w + 6, &hi, 8);
                w += 12;
            } else {
                for (const uint32_t v : {v1, v2, v3, v4}) {
                    if (w + 3 <= capacity) StoreGroup(out + w, v);
                    w += 3;
                }
            }
            p += 16;
            if (p < end && kBlank[*p]) p = SkipBlank(p, end);
        }
        if (p == end) break;
        if (end - p < 4) return TV_FAIL(TV_ERR_PEM);  // a trailing fragment
        const uint32_t v = d0[p[0]] | d1[p[1]] | d2[p[2]] | d3[p[3]];
        if (v < 0x01000000u) {
            if (w + 4 <= capacity) {
                const uint32_t be = __builtin_bswap32(v << 8);  // three octets and a spare
                std::memcpy(out + w, &be, 4);
            } else if (w + 3 <= capacity) {
                StoreGroup(out + w, v);
            }
            w += 3;
            p += 4;
            if (p < end && kBlank[*p]) p = SkipBlank(p, end);
            continue;
        }
        const auto& t = kBase64Decode;
        const uint32_t a = t[p[0]], b = t[p[1]], c = t[p[2]], d = t[p[3]];
        if ((a | b) & 0xC0) return TV_FAIL(TV_ERR_PEM);
        size_t count;
        if (c < 64 && d == kBase64Pad) count = 2;
        else if (c == kBase64Pad && d == kBase64Pad) count = 1;
        else return TV_FAIL(TV_ERR_PEM);
        if (SkipBlank(p + 4, end) != end) return TV_FAIL(TV_ERR_PEM);  // padding before the end
        const uint32_t last = (a << 18) | (b << 12) | ((c & 0x3F) << 6);
        if (w + count <= capacity) {
            uint8_t bytes[3];
            StoreGroup(bytes, last);
            std::memcpy(out + w, bytes, count);
        }
        w += count;
        break;
    }
    *total = w;
    return TV_OK;
}

// Texts under four characters have nothing to decode and would make the size estimates read
// before the text.
constexpr size_t kMinText = 4;

}  // namespace

int DecodePemInPlace(uint8_t* buffer, uint32_t* length) noexcept {
    if (!buffer || !length) {
        TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        return 0;
    }
    if (*length < kMinText) {
        TV_FAIL(TV_ERR_PEM);
        return 0;
    }
    const uint8_t *b64, *b64End;
    LocateBase64(buffer, buffer + *length, &b64, &b64End);
    if (b64End - b64 < static_cast<ptrdiff_t>(kMinText)) {
        TV_FAIL(TV_ERR_PEM);
        return 0;
    }
    size_t n = 0;
    if (DecodeGroups(b64, b64End, buffer, *length, &n) != TV_OK) return 0;
    *length = static_cast<uint32_t>(n);
    return 1;
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t EncodePem(const uint8_t* in, uint32_t inLen, const char* label, char* out, uint32_t* outLen) {
    if (!in || !label || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const size_t labelLen = std::strlen(label);
    // header "-----BEGIN " label "-----" CR LF, the body, CR LF, footer "-----END " label "-----" CR LF
    const uint64_t size = Base64TextSize(inLen) + 36 + 2 * uint64_t{labelLen};
    uint32_t rc = TV_OK;
    if (!HasRoom(TV_SITE, size, out, outLen, &rc)) return rc;
    char* o = out;
    auto put = [&o](const char* s, size_t n) {
        std::memcpy(o, s, n);
        o += n;
    };
    put(kBegin, Len(kBegin));
    put(" ", 1);
    put(label, labelLen);
    put(kBegin, kDashes);
    put("\r\n", 2);
    o += EncodeBase64Body(in, inLen, o);
    put("\r\n", 2);
    put(kEnd, Len(kEnd));
    put(" ", 1);
    put(label, labelLen);
    put(kBegin, kDashes);
    put("\r\n", 2);
    *outLen = static_cast<uint32_t>(o - out);
    return TV_OK;
}

extern "C" TV_API uint32_t DecodePem(const char* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (inLen < kMinText) return TV_FAIL(TV_ERR_PEM);
    const auto* text = reinterpret_cast<const uint8_t*>(in);
    const uint8_t *b64, *b64End;
    LocateBase64(text, text + inLen, &b64, &b64End);
    const auto chars = static_cast<size_t>(b64End - b64);
    if (chars < kMinText) return TV_FAIL(TV_ERR_PEM);
    // One pass: straight into the caller's buffer while it has room, counting on after that; the
    // size is known only at the end.
    size_t n = 0;
    TV_TRY(DecodeGroups(b64, b64End, out, out ? *outLen : 0, &n));
    const bool shortBuffer = out && n > *outLen;
    *outLen = static_cast<uint32_t>(n);
    if (shortBuffer) return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
    return TV_OK;
}
