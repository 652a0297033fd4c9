// ANY values: a complete element kept as its encoding.
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1Any)

namespace tv {

uint32_t SetAnyEncoding(Asn1Primitive* any, const uint8_t* encoding, uint32_t len) noexcept {
    if (!any || (!encoding && len)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (len) {
        size_t total = 0;
        if (FindElementEnd(encoding, len, &total) != TV_OK || total != len) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    }
    return SetPrimitive(any, len ? encoding[0] : 0, encoding, len);
}

uint32_t SetAnyParts(Asn1Primitive* any, uint8_t tagClass, uint8_t constructed, uint32_t tag, uint32_t word,
                     const uint8_t* content, uint32_t len) noexcept {
    if (!any || (!content && len)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const size_t total = HeaderSize(tag, len) + len;
    if (total > UINT32_MAX) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* encoding = static_cast<uint8_t*>(Alloc(total));
    if (!encoding) return TV_FAIL(TV_ERR_NO_MEMORY);
    uint8_t* p = WriteHeader(encoding, tagClass, constructed, tag, len);
    if (len) std::memcpy(p, content, len);
    Free(any->content);
    any->content = encoding;
    any->length = static_cast<uint32_t>(total);
    any->word = word;
    return TV_OK;
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t GetAsn1AnyValue(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen) {
    return GetAsn1Value(value, out, outLen);
}

extern "C" TV_API uint32_t GetAsn1AnyInfo(const Asn1Primitive* value, uint8_t* outClass, uint8_t* outConstructed,
                                          uint32_t* outTag, uint32_t* outContentLen, uint32_t* outHeaderLen) {
    if (!value || !outClass || !outConstructed || !outTag || !outContentLen || !outHeaderLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!value->content) return TV_FAIL(TV_ERR_ABSENT);
    Header h;
    TV_TRY(ReadElement(value->content, value->length, &h));
    uint32_t contentLen = h.contentLen;
    if (h.indefinite) {
        size_t total = 0;
        TV_TRY(FindElementEnd(value->content, value->length, &total));
        contentLen = static_cast<uint32_t>(total - h.headerLen);
    }
    *outClass = h.tagClass;
    *outConstructed = h.constructed;
    *outTag = h.tag;
    *outContentLen = contentLen;
    *outHeaderLen = h.headerLen;
    return TV_OK;
}
