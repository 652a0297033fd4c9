// Object identifiers: the packed interface form (length octet + DER contents), dotted text, and
// identifier values inside trees.
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1ObjectIdentifier)

namespace tv {
namespace {

// Arcs of the contents, 7 bits per octet, the first holding 40 x arc1 + arc2 as encoded.
uint32_t ExtractArcs(const uint8_t* contents, size_t n, uint32_t* arcs, size_t capacity, size_t* count) {
    if (capacity == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    size_t k = 0;
    uint32_t arc = 0;
    bool open = false;
    for (size_t i = 0; i < n; ++i) {
        if (k == capacity) return TV_FAIL(TV_ERR_LENGTH_TOO_LONG);
        arc = (arc << 7) | (contents[i] & 0x7F);  // wraps like the 32-bit arithmetic callers know
        open = (contents[i] & 0x80) != 0;
        if (!open) {
            arcs[k++] = arc;
            arc = 0;
        }
    }
    if (open) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);  // unterminated last arc
    *count = k;
    return TV_OK;
}

size_t Base128Size(uint32_t v) {
    size_t n = 1;
    while (v >= 0x80) {
        v >>= 7;
        ++n;
    }
    return n;
}

uint8_t* PutBase128(uint8_t* out, uint32_t v) {
    const size_t n = Base128Size(v);
    for (size_t g = n; g-- > 0;) *out++ = static_cast<uint8_t>(((v >> (7 * g)) & 0x7F) | (g ? 0x80 : 0));
    return out;
}

constexpr size_t kMaxTextArcs = 42;

}  // namespace

uint32_t OidToPacked(const Asn1Primitive* oid, uint8_t* out, uint32_t* outLen) noexcept {
    if (!oid || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (oid->length > 255) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);  // no packed form for it
    return WriteSized(TV_SITE, oid->length + 1, out, outLen, [&](uint8_t* to) {
        to[0] = static_cast<uint8_t>(oid->length);
        if (oid->length) std::memcpy(to + 1, oid->content, oid->length);
        return uint32_t{TV_OK};
    });
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t IsOidEquals(const uint8_t* a, const uint8_t* b) {
    if (!a || !b) return 0;
    return a[0] == b[0] && std::memcmp(a + 1, b + 1, a[0]) == 0;
}

extern "C" TV_API uint32_t IsOidAndAsn1ObjectIdentifierEquals(const uint8_t* packed, const Asn1Primitive* oid) {
    if (!packed || !oid) return 0;
    if (oid->length != packed[0]) return 0;
    return oid->length == 0 || std::memcmp(oid->content, packed + 1, oid->length) == 0;
}

extern "C" TV_API uint32_t EncodeAsn1Oid(const uint8_t* packed, uint8_t* out, uint32_t* outLen) {
    if (!packed || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const uint32_t n = packed[0];
    return WriteSized(TV_SITE, HeaderSize(ASN1_OBJECT_IDENTIFIER, n) + n, out, outLen, [&](uint8_t* to) {
        uint8_t* p = WriteHeader(to, ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, ASN1_OBJECT_IDENTIFIER, n);
        if (n) std::memcpy(p, packed + 1, n);
        return uint32_t{TV_OK};
    });
}

extern "C" TV_API uint32_t DecodeAsn1Oid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || inLen == 0 || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Header h;
    TV_TRY(ReadElement(in, inLen, &h));
    if (h.indefinite) return TV_FAIL(TV_ERR_INDEFINITE);
    if (h.tagClass != ASN1_CLASS_UNIVERSAL || h.tag != ASN1_OBJECT_IDENTIFIER) return TV_FAIL(TV_ERR_MALFORMED);
    if (h.contentLen > 255) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);  // no packed form for it
    return WriteSized(TV_SITE, h.contentLen + 1, out, outLen, [&](uint8_t* to) {
        to[0] = static_cast<uint8_t>(h.contentLen);
        std::memcpy(to + 1, in + h.headerLen, h.contentLen);
        return uint32_t{TV_OK};
    });
}

extern "C" TV_API uint32_t ConvertOidToString(const uint8_t* packed, char* out, uint32_t* outLen) {
    if (!packed || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const size_t n = packed[0];
    if (n == 0) return PutBytes(TV_SITE, "0.0", 4, out, outLen);
    uint32_t arcs[256];
    size_t count = 0;
    TV_TRY(ExtractArcs(packed + 1, n, arcs, n + 1, &count));
    // The first number is always the combined value split by 40, so 2.40 and above read as a first
    // number over 2 ("26.39" for 2.999, combined 1079): texts made here are compared with texts callers stored.
    char text[12 * 256 + 32];  // at most 255 arcs of up to ten digits and a dot
    int len = std::snprintf(text, sizeof text, "%u", arcs[0] / 40);
    len += std::snprintf(text + len, sizeof text - len, ".%u", arcs[0] % 40);
    for (size_t i = 1; i < count; ++i) len += std::snprintf(text + len, sizeof text - len, ".%u", arcs[i]);
    return PutBytes(TV_SITE, text, static_cast<size_t>(len) + 1, out, outLen);
}

extern "C" TV_API uint32_t ConvertStringToOid(const char* text, uint8_t* out, uint32_t* outLen) {
    if (!text || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t arcs[kMaxTextArcs + 1];
    size_t count = 0;
    if (*text != '\0') {
        for (const char* piece = text;;) {
            if (count == kMaxTextArcs) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
            char* end = nullptr;
            const long v = std::strtol(piece, &end, 10);
            // A piece reading as 0 must be exactly "0": empty pieces and non-digits are refused.
            const char* dot = std::strchr(piece, '.');
            const size_t pieceLen = dot ? static_cast<size_t>(dot - piece) : std::strlen(piece);
            if (v == 0 && !(pieceLen == 1 && piece[0] == '0')) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
            arcs[count++] = static_cast<uint32_t>(v);  // text after the digits is ignored; "-1" wraps
            if (!dot) break;
            piece = dot + 1;
        }
    }
    if (count == 1) arcs[count++] = 0;
    uint8_t contents[5 * kMaxTextArcs];
    uint8_t* p = contents;
    if (count > 0) {
        p = PutBase128(p, 40 * arcs[0] + arcs[1]);
        for (size_t i = 2; i < count; ++i) p = PutBase128(p, arcs[i]);
    }
    const size_t n = static_cast<size_t>(p - contents);
    if (n > 255) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t packed[256];
    packed[0] = static_cast<uint8_t>(n);
    std::memcpy(packed + 1, contents, n);
    return PutBytes(TV_SITE, packed, n + 1, out, outLen);
}
