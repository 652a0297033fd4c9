// Leaves: booleans, integers (little-endian at the interface), octet strings and their collection.
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1Value)

namespace tv {

Asn1Primitive* NewPrimitive(uint32_t word, const uint8_t* content, uint32_t len) noexcept {
    auto* p = New<Asn1Primitive>();
    if (!p) return nullptr;
    if (len) {
        p->content = Duplicate(content, len);
        if (!p->content) {
            Free(p);
            return nullptr;
        }
    }
    p->word = word;
    p->length = len;
    return p;
}

uint32_t SetPrimitive(Asn1Primitive* p, uint32_t word, const uint8_t* content, uint32_t len) noexcept {
    if (!p || (!content && len)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t* copy = Duplicate(content, len);
    if (len && !copy) return TV_FAIL(TV_ERR_NO_MEMORY);
    Free(p->content);
    p->content = copy;
    p->length = len;
    p->word = word;
    return TV_OK;
}

uint32_t SetOrCreatePrimitive(void** slot, uint32_t word, const uint8_t* content, uint32_t len) noexcept {
    if (!slot) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (*slot) return SetPrimitive(static_cast<Asn1Primitive*>(*slot), word, content, len);
    if (!content && len) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1Primitive* p = NewPrimitive(word, content, len);
    if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
    *slot = p;
    return TV_OK;
}

}  // namespace tv

using namespace tv;

namespace {

bool HasContents(const Asn1Primitive* v) { return v->content != nullptr || v->length == 0; }

uint32_t CheckBooleanContents(const Asn1Primitive* v) {
    if (v->length != 1 || !v->content || (v->content[0] != 0x00 && v->content[0] != 0xFF))
        return TV_FAIL(TV_ERR_NOT_DER);
    return TV_OK;
}

}  // namespace

extern "C" TV_API uint32_t GetAsn1Value(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen) {
    if (!value || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!HasContents(value)) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, value->content, value->length, out, outLen);
}

extern "C" TV_API uint32_t GetAsn1ValueAndType(const Asn1Primitive* value, uint32_t* outWord, uint8_t* out,
                                               uint32_t* outLen) {
    if (!value || !outLen || !outWord) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(GetAsn1Value(value, out, outLen));
    if (out) *outWord = value->word;
    return TV_OK;
}

extern "C" TV_API uint32_t GetAsn1ValueLength(const Asn1Primitive* value) { return value ? value->length : 0; }

extern "C" TV_API uint32_t GetAsn1Boolean(const Asn1Primitive* value, uint32_t* outFlag) {
    if (!value || !outFlag) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!value->content) return TV_FAIL(TV_ERR_ABSENT);
    TV_TRY(CheckBooleanContents(value));
    *outFlag = value->content[0] == 0xFF ? 1 : 0;
    return TV_OK;
}

extern "C" TV_API uint32_t CheckAsn1Boolean(const Asn1Primitive* value) {
    if (!value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (value->word != ASN1_BOOLEAN) return TV_FAIL(TV_ERR_NOT_DER);
    return CheckBooleanContents(value);
}

extern "C" TV_API uint32_t GetAsn1Integer(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen) {
    if (!value || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!value->content) return TV_FAIL(TV_ERR_ABSENT);
    const uint32_t n = value->length;
    return WriteSized(TV_SITE, n, out, outLen, [&](uint8_t* to) {
        for (uint32_t i = 0; i < n; ++i) to[i] = value->content[n - 1 - i];
        return uint32_t{TV_OK};
    });
}

extern "C" TV_API uint32_t GetAsn1Int32(const Asn1Primitive* value, uint8_t* outInt32) {
    if (!value || !outInt32) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t n = 4;
    TV_TRY(GetAsn1Integer(value, outInt32, &n));
    const uint8_t fill = (n > 0 && (outInt32[n - 1] & 0x80)) ? 0xFF : 0x00;
    for (uint32_t i = n; i < 4; ++i) outInt32[i] = fill;
    return TV_OK;
}

extern "C" TV_API uint32_t CheckAsn1Integer(const Asn1Primitive* value) {
    if (!value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (value->word != ASN1_INTEGER || value->length == 0 || !value->content) return TV_FAIL(TV_ERR_NOT_DER);
    if (value->length == 1) return TV_OK;
    const uint8_t a = value->content[0], b = value->content[1];
    if ((a == 0x00 && b < 0x80) || (a == 0xFF && b >= 0x80)) return TV_FAIL(TV_ERR_NOT_DER);
    return TV_OK;
}

extern "C" TV_API uint32_t SetAsn1Integer(Asn1Primitive* value, const uint8_t* le, uint32_t n) {
    if (!value || !le || n == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Redundant sign octets at the most significant end go; at least one octet stays.
    while (n > 1 && ((le[n - 1] == 0x00 && !(le[n - 2] & 0x80)) || (le[n - 1] == 0xFF && (le[n - 2] & 0x80)))) --n;
    auto* be = static_cast<uint8_t*>(Alloc(n));
    if (!be) return TV_FAIL(TV_ERR_NO_MEMORY);
    for (uint32_t i = 0; i < n; ++i) be[i] = le[n - 1 - i];
    Free(value->content);
    value->content = be;
    value->length = n;
    value->word = ASN1_INTEGER;
    return TV_OK;
}

extern "C" TV_API uint32_t SetAsn1Int32(Asn1Primitive* value, int32_t number) {
    const auto u = static_cast<uint32_t>(number);
    const uint8_t le[4] = {uint8_t(u), uint8_t(u >> 8), uint8_t(u >> 16), uint8_t(u >> 24)};
    return SetAsn1Integer(value, le, 4);
}

extern "C" TV_API Asn1Primitive* AllocAsn1Integer(int32_t number) {
    auto* p = New<Asn1Primitive>();
    if (!p) {
        TV_FAIL(TV_ERR_NO_MEMORY);
        return nullptr;
    }
    if (SetAsn1Int32(p, number) != TV_OK) {
        Free(p);
        return nullptr;
    }
    return p;
}

extern "C" TV_API Asn1Primitive* AllocAsn1Integer_s(const uint8_t* bigEndian, uint32_t bigEndianLen) {
    if (!bigEndian && bigEndianLen) {
        TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        return nullptr;
    }
    Asn1Primitive* p = NewPrimitive(ASN1_INTEGER, bigEndian, bigEndianLen);
    if (!p) TV_FAIL(TV_ERR_NO_MEMORY);
    return p;
}

extern "C" TV_API Asn1Primitive* AllocAsn1Boolean(uint32_t flag) {
    const uint8_t octet = flag ? 0xFF : 0x00;
    Asn1Primitive* p = NewPrimitive(ASN1_BOOLEAN, &octet, 1);
    if (!p) TV_FAIL(TV_ERR_NO_MEMORY);
    return p;
}

extern "C" TV_API uint32_t EncodeAsn1Int32(int32_t number, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kInteger, AllocAsn1Integer(number));
    if (!value.get()) return TV_ERR_NO_MEMORY;
    return GetAsn1EncodedValue(value.get(), &desc::kInteger, out, outLen);
}

extern "C" TV_API uint32_t DecodeAsn1Int32(const uint8_t* in, uint32_t inLen, uint8_t* outInt32) {
    if (!in || inLen == 0 || !outInt32) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kInteger);
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(in, inLen, &desc::kInteger, value.Out(), &consumed));
    return GetAsn1Int32(value.as<Asn1Primitive>(), outInt32);
}

extern "C" TV_API uint32_t CreateOctetStrings(Asn1List** outList) {
    if (!outList) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outList = ListCreate();
    if (!*outList) return TV_FAIL(TV_ERR_NO_MEMORY);
    return TV_OK;
}

extern "C" TV_API uint32_t AddOctetStringsValue(Asn1List* list, const uint8_t* in, uint32_t inLen) {
    if (!list || (!in && inLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue item(&desc::kOctetString, NewPrimitive(ASN1_OCTET_STRING, in, inLen));
    if (!item.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(ListAppend(list, item.get()));
    item.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetOctetStringsCount(const Asn1List* list, uint32_t* outCount) {
    if (!list || !outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outCount = list->count;
    return TV_OK;
}

// A short buffer gets 49 and the size, never an overrun.
extern "C" TV_API uint32_t GetOctetStringsValue(const Asn1List* list, uint32_t index, uint8_t* out, uint32_t* outLen) {
    if (!list || !outLen || index >= list->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* item = static_cast<const Asn1Primitive*>(list->items[index]);
    return PutBytes(TV_SITE, item->content, item->length, out, outLen);
}

extern "C" TV_API uint32_t FreeOctetStrings(Asn1List* list) {
    FreeAsn1Object(&desc::kOctetStrings, list);
    return TV_OK;
}
