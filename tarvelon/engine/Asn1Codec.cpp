// BER/DER decoding and DER encoding of value trees, driven by descriptors.
#include <algorithm>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1Codec)

namespace tv {

// ---- headers ------------------------------------------------------------------------------------

uint32_t ParseHeader(const uint8_t* in, size_t len, Header* h) noexcept {
    if (len < 2) return TV_FAIL(TV_ERR_MALFORMED);
    h->tagClass = in[0] & 0xC0;
    h->constructed = in[0] & 0x20;
    uint32_t tag = in[0] & 0x1F;
    size_t pos = 1;
    if (tag == 0x1F) {
        // High tag number: leading zero groups are accepted, but a number that needs more than 32
        // bits is refused rather than cut to its low bits, which would let it match another tag.
        tag = 0;
        for (;;) {
            if (pos >= len) return TV_FAIL(TV_ERR_MALFORMED);
            uint8_t octet = in[pos++];
            if (tag > (UINT32_MAX >> 7)) return TV_FAIL(TV_ERR_MALFORMED);
            tag = (tag << 7) | (octet & 0x7F);
            if (!(octet & 0x80)) break;
        }
    }
    h->tag = tag;
    if (pos >= len) return TV_FAIL(TV_ERR_MALFORMED);
    uint8_t first = in[pos++];
    h->indefinite = false;
    if (first < 0x80) {
        h->contentLen = first;
    } else if (first == 0x80) {
        h->indefinite = true;
        h->contentLen = static_cast<uint32_t>(len - pos);
    } else {
        size_t n = first & 0x7F;
        if (n > 4) return TV_FAIL(TV_ERR_LENGTH_TOO_LONG);
        if (len - pos < n) return TV_FAIL(TV_ERR_MALFORMED);
        uint32_t length = 0;  // non-minimal forms and leading zeros are accepted (BER)
        for (size_t i = 0; i < n; ++i) length = (length << 8) | in[pos++];
        h->contentLen = length;
    }
    h->headerLen = static_cast<uint32_t>(pos);
    return TV_OK;
}

uint32_t CheckElementInside(const Header& h, size_t len) noexcept {
    if (!h.indefinite && uint64_t{h.headerLen} + h.contentLen > len) return TV_FAIL(TV_ERR_MALFORMED);
    return TV_OK;
}

uint32_t ReadElement(const uint8_t* in, size_t len, Header* h) noexcept {
    TV_TRY(ParseHeader(in, len, h));
    return CheckElementInside(*h, len);
}

uint32_t FindElementEnd(const uint8_t* in, size_t len, size_t* total) noexcept {
    // Iterative, counting the end-of-contents octets still owed, so hostile nesting of indefinite
    // lengths costs no stack.
    size_t pos = 0;
    size_t open = 0;
    for (;;) {
        if (open > 0 && len - pos >= 2 && in[pos] == 0 && in[pos + 1] == 0) {
            pos += 2;
            if (--open == 0) break;
            continue;
        }
        Header h;
        if (uint32_t rc = ReadElement(in + pos, len - pos, &h); rc != TV_OK)
            return rc == TV_ERR_LENGTH_TOO_LONG ? rc : TV_FAIL(TV_ERR_INDEFINITE);
        if (h.indefinite) {
            pos += h.headerLen;
            ++open;
            continue;
        }
        pos += h.headerLen + h.contentLen;
        if (open == 0) break;
    }
    *total = pos;
    return TV_OK;
}

size_t HeaderSize(uint32_t tag, size_t contentLen) noexcept {
    size_t n = 2;
    if (tag >= 31)
        for (uint32_t t = tag; t; t >>= 7) ++n;  // one octet per base-128 group of a high tag
    if (contentLen >= 0x80)
        for (size_t l = contentLen; l; l >>= 8) ++n;  // one octet per octet of a long-form length
    return n;
}

uint8_t* WriteHeader(uint8_t* out, uint8_t tagClass, uint8_t constructed, uint32_t tag, size_t contentLen) noexcept {
    if (tag < 31) {
        *out++ = static_cast<uint8_t>(tagClass | constructed | tag);
    } else {
        *out++ = static_cast<uint8_t>(tagClass | constructed | 0x1F);
        int groups = 1;
        for (uint32_t t = tag; t >= 0x80; t >>= 7) ++groups;
        for (int g = groups - 1; g >= 0; --g)
            *out++ = static_cast<uint8_t>(((tag >> (7 * g)) & 0x7F) | (g ? 0x80 : 0));
    }
    if (contentLen < 0x80) {
        *out++ = static_cast<uint8_t>(contentLen);
    } else {
        int n = 0;
        for (size_t l = contentLen; l; l >>= 8) ++n;
        *out++ = static_cast<uint8_t>(0x80 | n);
        for (int i = n - 1; i >= 0; --i) *out++ = static_cast<uint8_t>(contentLen >> (8 * i));
    }
    return out;
}

namespace {

// ---- decoding -----------------------------------------------------------------------------------

struct Expect {
    uint8_t tagClass;
    uint32_t tag;
};

uint32_t DecodeItem(const uint8_t* in, size_t len, const Asn1Descriptor* d, void** value, size_t* consumed, int depth);

// An element that is not there: an OPTIONAL component takes its default (or stays absent) and
// leaves the octets to the next component; anything else is malformed.
uint32_t Absent(const Asn1Descriptor* d, void** value, size_t* consumed) {
    *consumed = 0;
    if (!IsOptional(*d)) return TV_FAIL(TV_ERR_MALFORMED);
    if (d->defaultValue) return CopyValue(d, d->defaultValue, value);
    *value = nullptr;
    return TV_OK;
}

uint32_t DecodePrimitive(const uint8_t* content, uint32_t len, const Asn1Descriptor* d, void** value) {
    const uint8_t code = d->typeCode;
    Asn1Primitive* p = nullptr;
    switch (code) {
        case ASN1_BOOLEAN:
            if (len != 1 || (content[0] != 0x00 && content[0] != 0xFF)) return TV_FAIL(TV_ERR_NOT_DER);
            break;
        case ASN1_INTEGER:
            if (len == 0) return TV_FAIL(TV_ERR_NOT_DER);
            if (len > 1 && ((content[0] == 0x00 && content[1] < 0x80) || (content[0] == 0xFF && content[1] >= 0x80)))
                return TV_FAIL(TV_ERR_NOT_DER);
            break;
        case ASN1_BIT_STRING:
            if (len == 0 || content[0] > 7) return TV_FAIL(TV_ERR_MALFORMED);
            // Padding bits are kept as sent: re-encoding gives back the octets that were read.
            p = NewPrimitive(content[0], content + 1, len - 1);
            if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
            *value = p;
            return TV_OK;
        default:
            // Identifier contents are not validated here; the text conversions check them.
            if (!IsScalarKind(code) && code != ASN1_OBJECT_IDENTIFIER) return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    }
    // The word is the descriptor's kind, not the tag on the wire (implicit tags are forgotten).
    p = NewPrimitive(code, content, len);
    if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
    *value = p;
    return TV_OK;
}

// Segmented OCTET STRING in the indefinite form: the segments' contents joined.
uint32_t DecodeSegments(const uint8_t* in, size_t len, void** value, size_t* consumed) {
    // First pass measures, so the joined contents are allocated once.
    size_t total = 0, pos = 0;
    bool eoc = false;
    for (;;) {
        if (pos == len) break;  // the input ending also ends the string
        if (len - pos >= 2 && in[pos] == 0 && in[pos + 1] == 0) {
            eoc = true;
            break;
        }
        Header h;
        TV_TRY(ParseHeader(in + pos, len - pos, &h));
        if (h.tag != ASN1_OCTET_STRING) return TV_FAIL(TV_ERR_SEGMENT_TAG);
        // Nested segmentation would need contents read as segments again; it is refused rather
        // than joined with its headers.
        if (h.indefinite) return TV_FAIL(TV_ERR_INDEFINITE);
        if (h.constructed) return TV_FAIL(TV_ERR_MALFORMED);
        TV_TRY(CheckElementInside(h, len - pos));
        total += h.contentLen;
        pos += h.headerLen + h.contentLen;
    }
    if (total > UINT32_MAX) return TV_FAIL(TV_ERR_MALFORMED);
    OwnedValue guard(&desc::kOctetString, New<Asn1Primitive>());
    auto* p = guard.as<Asn1Primitive>();
    if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
    p->word = ASN1_OCTET_STRING;
    if (total) {
        p->content = static_cast<uint8_t*>(Alloc(total));
        if (!p->content) return TV_FAIL(TV_ERR_NO_MEMORY);
    }
    size_t at = 0;
    for (size_t q = 0; q < pos;) {
        Header h;
        TV_TRY(ReadElement(in + q, len - q, &h));  // accepted by the first pass
        if (h.contentLen) std::memcpy(p->content + at, in + q + h.headerLen, h.contentLen);
        at += h.contentLen;
        q += h.headerLen + h.contentLen;
    }
    p->length = static_cast<uint32_t>(total);
    *value = guard.Release();
    *consumed = eoc ? pos + 2 : pos;
    return TV_OK;
}

bool AtEndOfContents(const uint8_t* in, size_t len) { return len >= 2 && in[0] == 0 && in[1] == 0; }

uint32_t DecodeList(const uint8_t* in, size_t len, bool indefinite, const Asn1Descriptor* d, void** value,
                    size_t* consumed, int depth) {
    if (d->componentCount != 1 || !d->components || !d->components[0]) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
    const Asn1Descriptor* element = d->components[0];
    OwnedValue list(d, ListCreate());
    if (!list.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    size_t pos = 0;
    for (;;) {
        if (indefinite && AtEndOfContents(in + pos, len - pos)) {
            pos += 2;
            break;
        }
        if (!indefinite && pos == len) break;
        if (len - pos < 2) return TV_FAIL(TV_ERR_MALFORMED);
        OwnedValue item(element);
        size_t used = 0;
        TV_TRY(DecodeItem(in + pos, len - pos, element, item.Out(), &used, depth));
        // An element that takes no octets would repeat for ever.
        if (used == 0) return TV_FAIL(TV_ERR_MALFORMED);
        TV_TRY(ListAppend(list.as<Asn1List>(), item.get()));
        item.Release();
        pos += used;
    }
    *value = list.Release();
    *consumed = pos;
    return TV_OK;
}

uint32_t DecodeStructure(const uint8_t* in, size_t len, bool indefinite, const Asn1Descriptor* d, void** value,
                         size_t* consumed, int depth) {
    void* created = nullptr;
    size_t slots = std::max<size_t>(d->valueSize, size_t{d->componentCount} * sizeof(void*));
    created = AllocZero(slots);
    if (!created) return TV_FAIL(TV_ERR_NO_MEMORY);
    OwnedValue block(d, created);
    auto** slot = block.as<void*>();
    size_t pos = 0;
    for (uint32_t i = 0; i < d->componentCount; ++i) {
        size_t used = 0;
        TV_TRY(DecodeItem(in + pos, len - pos, d->components[i], &slot[i], &used, depth));
        pos += used;
    }
    if (indefinite) {
        if (!AtEndOfContents(in + pos, len - pos)) return TV_FAIL(TV_ERR_INDEFINITE);
        pos += 2;
    } else {
        pos = len;  // octets after the last component are skipped with the element
    }
    *value = block.Release();
    *consumed = pos;
    return TV_OK;
}

uint32_t DecodeChoice(const uint8_t* in, size_t len, const Header& h, const Asn1Descriptor* d, void** value,
                      size_t* consumed, int depth) {
    for (uint32_t i = 0; i < d->componentCount; ++i) {
        const Asn1Descriptor* alt = d->components[i];
        if (alt->tagClass != h.tagClass) continue;
        bool match = IsExplicit(*alt)
                         ? (h.constructed && h.tag == static_cast<uint32_t>(alt->tag))
                         : (h.constructed == alt->constructed &&
                            h.tag == (alt->tag == -1 ? UniversalTag(*alt) : static_cast<uint32_t>(alt->tag)));
        if (!match) continue;
        Asn1ChoiceValue* choice = nullptr;
        TV_TRY(NewChoice(static_cast<int32_t>(i), nullptr, &choice));
        OwnedValue guard(d, choice);
        TV_TRY(DecodeItem(in, len, alt, &choice->value, consumed, depth));
        *value = guard.Release();
        return TV_OK;
    }
    return Absent(d, value, consumed);
}

// One element against a descriptor with the given expectation of class and tag.
uint32_t MatchElement(const uint8_t* in, size_t len, const Asn1Descriptor* d, Expect expect, void** value,
                      size_t* consumed, int depth) {
    // The bound is checked after the CHOICE step: a CHOICE only picks an alternative by the header
    // (the alternative checks the bound), and an OPTIONAL one that matches nothing leaves the
    // octets unread for the next component.
    Header h;
    TV_TRY(ParseHeader(in, len, &h));
    const uint8_t code = d->typeCode;
    if (code == ASN1_CHOICE) {
        if (d->componentCount == 0) return Absent(d, value, consumed);
        return DecodeChoice(in, len, h, d, value, consumed, depth);
    }
    TV_TRY(CheckElementInside(h, len));
    if (code == ASN1_ANY) {
        size_t total = h.headerLen + size_t{h.contentLen};
        if (h.indefinite) TV_TRY(FindElementEnd(in, len, &total));
        if (total > UINT32_MAX) return TV_FAIL(TV_ERR_MALFORMED);
        Asn1Primitive* p = NewPrimitive(h.tag, in, static_cast<uint32_t>(total));
        if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
        *value = p;
        *consumed = total;
        return TV_OK;
    }
    if (h.tag != expect.tag || h.tagClass != expect.tagClass) return Absent(d, value, consumed);
    if (h.constructed != d->constructed) {
        const uint32_t universal = UniversalTag(*d);
        bool segmented = h.indefinite && (universal == ASN1_BIT_STRING || universal == ASN1_OCTET_STRING);
        if (!segmented) return Absent(d, value, consumed);
    }
    const uint8_t* content = in + h.headerLen;
    size_t avail = h.indefinite ? len - h.headerLen : h.contentLen;
    if (!h.constructed) {
        if (h.indefinite) return TV_FAIL(TV_ERR_INDEFINITE);
        TV_TRY(DecodePrimitive(content, h.contentLen, d, value));
        *consumed = h.headerLen + size_t{h.contentLen};
        return TV_OK;
    }
    if (depth >= kMaxDecodeDepth) return TV_FAIL(TV_ERR_MALFORMED);
    size_t used = 0;
    switch (code) {
        case ASN1_OCTET_STRING:
            TV_TRY(DecodeSegments(content, avail, value, &used));
            break;
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF:
            TV_TRY(DecodeList(content, avail, h.indefinite, d, value, &used, depth + 1));
            break;
        case ASN1_SEQUENCE:
        case ASN1_SET:
            TV_TRY(DecodeStructure(content, avail, h.indefinite, d, value, &used, depth + 1));
            break;
        default:
            return TV_FAIL(TV_ERR_INVALID_ARGUMENT);  // a constructed BIT STRING among others
    }
    *consumed = h.headerLen + (h.indefinite ? used : size_t{h.contentLen});
    return TV_OK;
}

uint32_t DecodeItem(const uint8_t* in, size_t len, const Asn1Descriptor* d, void** value, size_t* consumed, int depth) {
    *value = nullptr;
    if (len == 0) return Absent(d, value, consumed);
    if (!IsExplicit(*d)) {
        Expect tagged{d->tagClass, d->tag == -1 ? UniversalTag(*d) : static_cast<uint32_t>(d->tag)};
        return MatchElement(in, len, d, tagged, value, consumed, depth);
    }
    if (d->tag == -1) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
    Header outer;
    TV_TRY(ParseHeader(in, len, &outer));
    if (outer.tag != static_cast<uint32_t>(d->tag) || outer.tagClass != d->tagClass || !outer.constructed)
        return Absent(d, value, consumed);
    if (depth >= kMaxDecodeDepth) return TV_FAIL(TV_ERR_MALFORMED);
    // A definite wrapper bounds its inner element; what the wrapper leaves after the element is
    // left for the next component, as the wrapper's length is not used to skip.
    TV_TRY(CheckElementInside(outer, len));
    const size_t inner = outer.indefinite ? len - outer.headerLen : outer.contentLen;
    OwnedValue v(d);
    size_t used = 0;
    TV_TRY(MatchElement(in + outer.headerLen, inner, d, Expect{ASN1_CLASS_UNIVERSAL, UniversalTag(*d)}, v.Out(),
                        &used, depth + 1));
    size_t total = outer.headerLen + used;
    if (outer.indefinite) {
        if (!AtEndOfContents(in + total, len - total)) return TV_FAIL(TV_ERR_INDEFINITE);
        total += 2;
    }
    *value = v.Release();
    *consumed = total;
    return TV_OK;
}

// ---- encoding -----------------------------------------------------------------------------------
//
// Two passes over the same decisions: Size() sums the tree bottom-up once; Write() fills an
// exact-size buffer from its end towards its start, so each constructed element's length is known
// (end minus position) when its header goes in front. No subtree is sized twice.

enum class Mode { Tagged, Universal };

uint32_t ItemSize(const void* v, const Asn1Descriptor* d, uint64_t* out);

uint32_t Omitted(const void* v, const Asn1Descriptor* d, bool* omit) {
    *omit = false;
    if (!IsOptional(*d)) {
        if (!v) return TV_FAIL(TV_ERR_ABSENT);  // a required component never set
        return TV_OK;
    }
    if (!v) {
        *omit = true;
        return TV_OK;
    }
    if (d->defaultValue) {
        uint32_t equal = 0;
        TV_TRY(CompareAsn1Objects(d, v, d->defaultValue, &equal));
        *omit = equal != 0;  // DER leaves out a DEFAULT component equal to its default
    }
    return TV_OK;
}

uint32_t ModeTag(const Asn1Descriptor* d, Mode mode) {
    return (mode == Mode::Universal || d->tag == -1) ? UniversalTag(*d) : static_cast<uint32_t>(d->tag);
}

uint8_t ModeClass(const Asn1Descriptor* d, Mode mode) {
    return mode == Mode::Universal ? uint8_t{ASN1_CLASS_UNIVERSAL} : d->tagClass;
}

const Asn1Descriptor* ListElement(const Asn1Descriptor* d) {
    return (d->componentCount == 1 && d->components) ? d->components[0] : nullptr;
}

uint32_t ChosenAlternative(const void* v, const Asn1Descriptor* d, const Asn1Descriptor** alt, const void** altValue) {
    auto* c = static_cast<const Asn1ChoiceValue*>(v);
    if (c->index < 0 || static_cast<uint32_t>(c->index) >= d->componentCount) return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    *alt = d->components[c->index];
    *altValue = c->value;
    return TV_OK;
}

uint32_t ContentSize(const void* v, const Asn1Descriptor* d, uint64_t* out) {
    switch (d->typeCode) {
        case ASN1_BIT_STRING:
            *out = uint64_t{static_cast<const Asn1BitStringValue*>(v)->length} + 1;
            return TV_OK;
        case ASN1_SEQUENCE: {
            auto* slots = static_cast<void* const*>(v);
            uint64_t sum = 0;
            for (uint32_t i = 0; i < d->componentCount; ++i) {
                uint64_t n = 0;
                TV_TRY(ItemSize(slots[i], d->components[i], &n));
                sum += n;
            }
            *out = sum;
            return TV_OK;
        }
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF: {
            const Asn1Descriptor* element = ListElement(d);
            if (!element) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
            auto* list = static_cast<const Asn1List*>(v);
            uint64_t sum = 0;
            for (uint32_t i = 0; i < list->count; ++i) {
                uint64_t n = 0;
                TV_TRY(ItemSize(list->items[i], element, &n));
                sum += n;
            }
            *out = sum;
            return TV_OK;
        }
        case ASN1_SET:
            return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
        default:
            if (!IsScalarKind(d->typeCode) && d->typeCode != ASN1_OBJECT_IDENTIFIER)
                return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
            *out = static_cast<const Asn1Primitive*>(v)->length;
            return TV_OK;
    }
}

uint32_t ElementSize(const void* v, const Asn1Descriptor* d, Mode mode, uint64_t* out) {
    if (d->typeCode == ASN1_CHOICE) {
        const Asn1Descriptor* alt = nullptr;
        const void* altValue = nullptr;
        TV_TRY(ChosenAlternative(v, d, &alt, &altValue));
        return ItemSize(altValue, alt, out);
    }
    if (d->typeCode == ASN1_ANY) {
        *out = static_cast<const Asn1Primitive*>(v)->length;
        return TV_OK;
    }
    uint64_t content = 0;
    TV_TRY(ContentSize(v, d, &content));
    if (content > UINT32_MAX) return TV_FAIL(TV_ERR_WORK_BUFFER);
    *out = HeaderSize(ModeTag(d, mode), content) + content;
    return TV_OK;
}

uint32_t ItemSize(const void* v, const Asn1Descriptor* d, uint64_t* out) {
    bool omit;
    TV_TRY(Omitted(v, d, &omit));
    if (omit) {
        *out = 0;
        return TV_OK;
    }
    if (!IsExplicit(*d)) return ElementSize(v, d, Mode::Tagged, out);
    uint64_t inner = 0;
    TV_TRY(ElementSize(v, d, Mode::Universal, &inner));
    if (inner > UINT32_MAX) return TV_FAIL(TV_ERR_WORK_BUFFER);
    *out = HeaderSize(static_cast<uint32_t>(d->tag), inner) + inner;
    return TV_OK;
}

// Writes backwards: `*pos` moves from the end of the element towards `start`. Every write is
// checked against `start`: the buffer was sized by the first pass, and a tree that changed between
// the passes must end in a status, not in a write before the caller's buffer.
struct Writer {
    uint8_t* start;
    uint8_t* pos;

    [[nodiscard]] uint32_t Reserve(size_t n) {
        if (static_cast<size_t>(pos - start) < n) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
        pos -= n;
        return TV_OK;
    }
    [[nodiscard]] uint32_t Bytes(const uint8_t* src, size_t n) {
        TV_TRY(Reserve(n));
        if (n) {
            if (src) std::memcpy(pos, src, n);
            else std::memset(pos, 0, n);  // a record with a length but no contents writes zeros
        }
        return TV_OK;
    }
    [[nodiscard]] uint32_t Octet(uint8_t b) {
        TV_TRY(Reserve(1));
        *pos = b;
        return TV_OK;
    }
    [[nodiscard]] uint32_t HeaderBefore(uint8_t* end, uint8_t tagClass, uint8_t constructed, uint32_t tag) {
        const auto len = static_cast<size_t>(end - pos);
        TV_TRY(Reserve(HeaderSize(tag, len)));
        WriteHeader(pos, tagClass, constructed, tag, len);
        return TV_OK;
    }
};

uint32_t ItemWrite(const void* v, const Asn1Descriptor* d, Writer& w);

uint32_t WriteSetOf(const Asn1List* list, const Asn1Descriptor* element, Writer& w) {
    struct Span {
        uint32_t offset;
        uint32_t length;
    };
    uint8_t* end = w.pos;
    // Element spans are recorded while writing in list order; the region is then copied once, the
    // spans sorted by their octets, and the region rewritten in that order.
    auto* spans = static_cast<Span*>(Alloc(sizeof(Span) * list->count));
    if (!spans) return TV_FAIL(TV_ERR_NO_MEMORY);
    HeapBytes spanGuard(reinterpret_cast<uint8_t*>(spans));
    for (uint32_t i = list->count; i-- > 0;) {
        uint8_t* elementEnd = w.pos;
        TV_TRY(ItemWrite(list->items[i], element, w));
        spans[i] = Span{static_cast<uint32_t>(w.pos - w.start), static_cast<uint32_t>(elementEnd - w.pos)};
    }
    size_t regionLen = static_cast<size_t>(end - w.pos);
    HeapBytes copy;
    if (!copy.Allocate(regionLen)) return TV_FAIL(TV_ERR_NO_MEMORY);
    std::memcpy(copy.get(), w.pos, regionLen);
    const auto regionOffset = static_cast<uint32_t>(w.pos - w.start);
    for (uint32_t i = 0; i < list->count; ++i) spans[i].offset -= regionOffset;  // now relative to the copy
    const uint8_t* base = copy.get();
    std::sort(spans, spans + list->count, [base](const Span& a, const Span& b) {
        return CompareOctets(base + a.offset, a.length, base + b.offset, b.length) < 0;
    });
    uint8_t* out = w.pos;
    for (uint32_t i = 0; i < list->count; ++i) {
        std::memcpy(out, base + spans[i].offset, spans[i].length);
        out += spans[i].length;
    }
    return TV_OK;
}

uint32_t ContentWrite(const void* v, const Asn1Descriptor* d, Writer& w) {
    switch (d->typeCode) {
        case ASN1_BIT_STRING: {
            auto* b = static_cast<const Asn1BitStringValue*>(v);
            TV_TRY(w.Bytes(b->content, b->length));
            return w.Octet(static_cast<uint8_t>(b->unusedBits));
        }
        case ASN1_SEQUENCE: {
            auto* slots = static_cast<void* const*>(v);
            for (uint32_t i = d->componentCount; i-- > 0;) TV_TRY(ItemWrite(slots[i], d->components[i], w));
            return TV_OK;
        }
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF: {
            auto* list = static_cast<const Asn1List*>(v);
            const Asn1Descriptor* element = ListElement(d);
            if (d->typeCode == ASN1_SET_OF && list->sorted && list->count > 1) return WriteSetOf(list, element, w);
            for (uint32_t i = list->count; i-- > 0;) TV_TRY(ItemWrite(list->items[i], element, w));
            return TV_OK;
        }
        default: {
            auto* p = static_cast<const Asn1Primitive*>(v);
            return w.Bytes(p->content, p->length);
        }
    }
}

uint32_t ElementWrite(const void* v, const Asn1Descriptor* d, Mode mode, Writer& w) {
    if (d->typeCode == ASN1_CHOICE) {
        const Asn1Descriptor* alt = nullptr;
        const void* altValue = nullptr;
        TV_TRY(ChosenAlternative(v, d, &alt, &altValue));
        return ItemWrite(altValue, alt, w);
    }
    if (d->typeCode == ASN1_ANY) {
        auto* p = static_cast<const Asn1Primitive*>(v);
        TV_TRY(w.Bytes(p->content, p->length));
        // Implicit retagging of a stored element: keeps its constructed bit, assumes a tag below 31.
        if (d->tagClass == ASN1_CLASS_CONTEXT && !IsExplicit(*d) && p->length > 0)
            *w.pos = static_cast<uint8_t>(ASN1_CLASS_CONTEXT | d->tag | (p->content[0] & 0x20));
        return TV_OK;
    }
    uint8_t* end = w.pos;
    TV_TRY(ContentWrite(v, d, w));
    return w.HeaderBefore(end, ModeClass(d, mode), d->constructed, ModeTag(d, mode));
}

uint32_t ItemWrite(const void* v, const Asn1Descriptor* d, Writer& w) {
    bool omit;
    TV_TRY(Omitted(v, d, &omit));
    if (omit) return TV_OK;
    if (!IsExplicit(*d)) return ElementWrite(v, d, Mode::Tagged, w);
    uint8_t* end = w.pos;
    TV_TRY(ElementWrite(v, d, Mode::Universal, w));
    return w.HeaderBefore(end, d->tagClass, ASN1_CONSTRUCTED_FORM, static_cast<uint32_t>(d->tag));
}

uint32_t EncodedSize(const void* v, const Asn1Descriptor* d, uint32_t* size) {
    uint64_t n = 0;
    TV_TRY(ItemSize(v, d, &n));
    if (n > UINT32_MAX) return TV_FAIL(TV_ERR_WORK_BUFFER);
    *size = static_cast<uint32_t>(n);
    return TV_OK;
}

uint32_t WriteInto(const void* v, const Asn1Descriptor* d, uint8_t* out, uint32_t size) {
    Writer w{out, out + size};
    TV_TRY(ItemWrite(v, d, w));
    // Both passes take the same decisions, so the writer ends exactly at the start; anything else
    // means the tree changed under us.
    if (w.pos != out) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
    return TV_OK;
}

}  // namespace

uint32_t EncodeSized(Site site, const void* value, const Asn1Descriptor* d, uint8_t* out, uint32_t* outLen) noexcept {
    if (!value || !d || !outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    uint32_t size = 0;
    TV_TRY(EncodedSize(value, d, &size));
    return WriteSized(site, size, out, outLen, [&](uint8_t* to) { return WriteInto(value, d, to, size); });
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t GetAsn1ObjectInfo(const uint8_t* in, uint32_t inLen, uint8_t* outClass,
                                             uint8_t* outConstructed, uint32_t* outTag, uint32_t* outContentLen,
                                             uint32_t* outIndefinite, uint32_t* outHeaderLen) {
    if (!in || !outClass || !outConstructed || !outTag || !outContentLen || !outHeaderLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Header h;
    TV_TRY(ParseHeader(in, inLen, &h));
    *outClass = h.tagClass;
    *outConstructed = h.constructed;
    *outTag = h.tag;
    *outContentLen = h.contentLen;
    *outHeaderLen = h.headerLen;
    if (outIndefinite) {
        // The caller asking for the form reads the length itself (kept as it is).
        *outIndefinite = h.indefinite ? 1 : 0;
        return TV_OK;
    }
    return CheckElementInside(h, inLen);
}

extern "C" TV_API uint32_t Asn1DecodeItem(const uint8_t* in, uint32_t inLen, const Asn1Descriptor* d, void** value,
                                          uint32_t* consumed) {
    if (!in || !d || !value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    size_t used = 0;
    uint32_t rc = DecodeItem(in, inLen, d, value, &used, 0);
    if (rc != TV_OK) {
        *value = nullptr;
        return rc;
    }
    if (consumed) *consumed = static_cast<uint32_t>(used);
    return TV_OK;
}

extern "C" TV_API uint32_t Asn1Encode(const void* value, const Asn1Descriptor* d, uint8_t** outBuffer,
                                      uint32_t* outLen) {
    if (!value || !d || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t size = 0;
    TV_TRY(EncodedSize(value, d, &size));
    *outLen = size;
    if (!outBuffer) return TV_OK;
    HeapBytes buffer;
    if (!buffer.Allocate(size)) {
        *outBuffer = nullptr;
        return TV_FAIL(TV_ERR_NO_MEMORY);
    }
    if (uint32_t rc = WriteInto(value, d, buffer.get(), size); rc != TV_OK) {
        *outBuffer = nullptr;
        return rc;
    }
    *outBuffer = buffer.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetAsn1EncodedValue(const void* value, const Asn1Descriptor* d, uint8_t* out,
                                               uint32_t* outLen) {
    return EncodeSized(TV_SITE, value, d, out, outLen);
}
