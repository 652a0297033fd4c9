// BIT STRING values, and named-bit lists carried as 32-bit flag words.
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1BitString)

namespace tv {

uint32_t SetBitString(Asn1BitStringValue* b, const uint8_t* content, uint32_t len, uint32_t unusedBits,
                      bool trim) noexcept {
    if (!b || (!content && len) || unusedBits > 7) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t* copy = Duplicate(content, len);
    if (len && !copy) return TV_FAIL(TV_ERR_NO_MEMORY);
    if (len) copy[len - 1] &= static_cast<uint8_t>(0xFF << unusedBits);
    else unusedBits = 0;
    if (trim) {
        // DER for named bits: trailing zero bits go, and so do all-zero trailing octets.
        while (len > 0) {
            const uint8_t last = copy[len - 1];
            if (last) {
                unusedBits = static_cast<uint32_t>(__builtin_ctz(last));
                break;
            }
            --len;
            unusedBits = 0;
        }
        if (len == 0) {
            Free(copy);
            copy = nullptr;
        }
    }
    Free(b->content);
    b->content = copy;
    b->length = len;
    b->unusedBits = unusedBits;
    return TV_OK;
}

uint32_t SetBitStringFromFlags(Asn1BitStringValue* b, uint32_t flags) noexcept {
    const uint8_t octets[4] = {uint8_t(flags), uint8_t(flags >> 8), uint8_t(flags >> 16), uint8_t(flags >> 24)};
    return SetBitString(b, octets, 4, 0, true);
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t GetAsn1BitString(const Asn1BitStringValue* value, uint8_t* outUnusedBits, uint8_t* out,
                                            uint32_t* outLen) {
    if (!value || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!value->content) return TV_FAIL(TV_ERR_ABSENT);
    if (outUnusedBits) *outUnusedBits = static_cast<uint8_t>(value->unusedBits);
    return PutBytes(TV_SITE, value->content, value->length, out, outLen);
}
