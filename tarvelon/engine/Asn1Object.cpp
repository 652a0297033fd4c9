// Value trees of any descriptor: creation, release, deep copy and comparison.
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1Object)

// The records are part of the binary interface: callers (and the Java binding) lay them out
// themselves, so their shape is pinned here.
#include <cstddef>
#include <type_traits>
static_assert(std::is_standard_layout_v<Asn1Descriptor> && std::is_trivially_copyable_v<Asn1Descriptor>);
static_assert(offsetof(Asn1Descriptor, tagClass) == 0 && offsetof(Asn1Descriptor, constructed) == 1 &&
              offsetof(Asn1Descriptor, flags) == 2 && offsetof(Asn1Descriptor, typeCode) == 3 &&
              offsetof(Asn1Descriptor, tag) == 4 && offsetof(Asn1Descriptor, valueSize) == 8 &&
              offsetof(Asn1Descriptor, components) == 16 && offsetof(Asn1Descriptor, componentCount) == 24 &&
              offsetof(Asn1Descriptor, defaultValue) == 32 && sizeof(Asn1Descriptor) == 40);
static_assert(offsetof(Asn1Primitive, word) == 0 && offsetof(Asn1Primitive, length) == 4 &&
              offsetof(Asn1Primitive, content) == 8 && sizeof(Asn1Primitive) == 16);
// Bit strings share the leaf layout, so copy, free and compare treat them alike.
static_assert(offsetof(Asn1BitStringValue, unusedBits) == offsetof(Asn1Primitive, word) &&
              offsetof(Asn1BitStringValue, length) == offsetof(Asn1Primitive, length) &&
              offsetof(Asn1BitStringValue, content) == offsetof(Asn1Primitive, content) &&
              sizeof(Asn1BitStringValue) == sizeof(Asn1Primitive));
static_assert(offsetof(Asn1ChoiceValue, value) == 8 && sizeof(Asn1ChoiceValue) == 16);
static_assert(offsetof(Asn1List, count) == 0 && offsetof(Asn1List, items) == 8 && offsetof(Asn1List, capacity) == 16 &&
              offsetof(Asn1List, compare) == 24 && offsetof(Asn1List, sorted) == 32 && sizeof(Asn1List) == 40);

namespace tv {
namespace {

// Slots of a structure value; the block is never smaller than one slot per component.
size_t BlockSize(const Asn1Descriptor* d) {
    size_t slots = static_cast<size_t>(d->componentCount) * sizeof(void*);
    return d->valueSize > slots ? d->valueSize : slots;
}

uint32_t CreateStructure(const Asn1Descriptor* d, void** value, uint32_t leaves) {
    OwnedValue block(d, AllocZero(BlockSize(d)));
    if (!block.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    auto** slots = block.as<void*>();
    for (uint32_t i = 0; i < d->componentCount; ++i)
        TV_TRY(CreateAsn1Object(d->components[i], &slots[i], leaves));
    *value = block.Release();
    return TV_OK;
}

void FreePrimitive(void* value) {
    auto* p = static_cast<Asn1Primitive*>(value);
    Free(p->content);
    Free(p);
}

}  // namespace

int CompareOctets(const uint8_t* a, size_t na, const uint8_t* b, size_t nb) noexcept {
    size_t n = na < nb ? na : nb;
    int c = n ? std::memcmp(a, b, n) : 0;
    if (c != 0) return c;
    return na < nb ? -1 : (na > nb ? 1 : 0);
}

uint32_t CopyValue(const Asn1Descriptor* d, const void* src, void** out) noexcept {
    if (!d || !src || !out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const uint8_t code = d->typeCode;
    if ((IsScalarKind(code) && code != ASN1_NULL) || code == ASN1_ANY || code == ASN1_BIT_STRING ||
        code == ASN1_OBJECT_IDENTIFIER) {
        // Bit strings and identifiers share the primitive layout: word, length, contents.
        auto* s = static_cast<const Asn1Primitive*>(src);
        Asn1Primitive* p = NewPrimitive(s->word, s->content, s->length);
        if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
        *out = p;
        return TV_OK;
    }
    switch (code) {
        case ASN1_CHOICE: {
            auto* s = static_cast<const Asn1ChoiceValue*>(src);
            OwnedValue copy(d, New<Asn1ChoiceValue>());
            if (!copy.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
            auto* c = copy.as<Asn1ChoiceValue>();
            c->index = s->index;
            if (s->value) {
                if (s->index < 0 || static_cast<uint32_t>(s->index) >= d->componentCount)
                    return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
                TV_TRY(CopyValue(d->components[s->index], s->value, &c->value));
            }
            *out = copy.Release();
            return TV_OK;
        }
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF: {
            if (d->componentCount != 1 || !d->components[0]) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
            auto* s = static_cast<const Asn1List*>(src);
            OwnedValue copy(d, ListCreate());
            if (!copy.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
            auto* list = copy.as<Asn1List>();
            list->compare = s->compare;
            list->sorted = s->sorted;
            for (uint32_t i = 0; i < s->count; ++i) {
                OwnedValue item(d->components[0]);
                TV_TRY(CopyValue(d->components[0], s->items[i], item.Out()));
                TV_TRY(ListAppend(list, item.get()));
                item.Release();
            }
            *out = copy.Release();
            return TV_OK;
        }
        case ASN1_SEQUENCE:
        case ASN1_SET: {
            *out = nullptr;
            OwnedValue copy(d, AllocZero(BlockSize(d)));
            if (!copy.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
            auto* from = static_cast<void* const*>(src);
            auto* to = copy.as<void*>();
            for (uint32_t i = 0; i < d->componentCount; ++i)
                if (from[i]) TV_TRY(CopyValue(d->components[i], from[i], &to[i]));
            *out = copy.Release();
            return TV_OK;
        }
        default:
            // NULL is refused too: a limitation callers rely on never meeting.
            return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    }
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t CreateAsn1Object(const Asn1Descriptor* d, void** value, uint32_t leaves) {
    if (!d || !value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (IsOptional(*d)) {
        if (d->defaultValue) return CopyValue(d, d->defaultValue, value);
        *value = nullptr;
        return TV_OK;
    }
    const uint8_t code = d->typeCode;
    if (IsScalarKind(code) || code == ASN1_BIT_STRING || code == ASN1_OBJECT_IDENTIFIER) {
        if (!leaves) return TV_OK;
        auto* p = New<Asn1Primitive>();
        if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
        if (code == ASN1_OBJECT_IDENTIFIER) p->word = ASN1_OBJECT_IDENTIFIER;
        *value = p;
        return TV_OK;
    }
    switch (code) {
        case ASN1_CHOICE: {
            auto* c = New<Asn1ChoiceValue>();
            if (!c) return TV_FAIL(TV_ERR_NO_MEMORY);
            *value = c;
            return TV_OK;
        }
        case ASN1_ANY: {
            auto* p = New<Asn1Primitive>();
            if (!p) return TV_FAIL(TV_ERR_NO_MEMORY);
            *value = p;
            return TV_OK;
        }
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF: {
            Asn1List* list = ListCreate();
            if (!list) return TV_FAIL(TV_ERR_NO_MEMORY);
            *value = list;
            return TV_OK;
        }
        case ASN1_SEQUENCE:
        case ASN1_SET:
            return CreateStructure(d, value, leaves);
        default:
            return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    }
}

extern "C" TV_API uint32_t CreateOptionalAsn1Sequence(const Asn1Descriptor* d, void** value, uint32_t leaves) {
    if (!d || !value || !IsOptional(*d) || (d->typeCode != ASN1_SEQUENCE && d->typeCode != ASN1_SET))
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return CreateStructure(d, value, leaves);
}

extern "C" TV_API uint32_t FreeAsn1Object(const Asn1Descriptor* d, void* value) {
    if (!d || !value) return TV_OK;
    // Dispatch on the kind rather than the constructed field, so that a descriptor whose
    // constructed field disagrees with its kind can never make a leaf be freed as a block.
    const uint8_t code = d->typeCode;
    if (IsScalarKind(code) || code == ASN1_BIT_STRING || code == ASN1_OBJECT_IDENTIFIER || code == ASN1_ANY) {
        FreePrimitive(value);
        return TV_OK;
    }
    switch (code) {
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF:
            ListFree(static_cast<Asn1List*>(value), d->componentCount ? d->components[0] : nullptr);
            return TV_OK;
        case ASN1_CHOICE: {
            auto* c = static_cast<Asn1ChoiceValue*>(value);
            if (c->value && c->index >= 0 && static_cast<uint32_t>(c->index) < d->componentCount)
                FreeAsn1Object(d->components[c->index], c->value);
            Free(c);
            return TV_OK;
        }
        case ASN1_SEQUENCE:
        case ASN1_SET: {
            auto** slots = static_cast<void**>(value);
            for (uint32_t i = 0; i < d->componentCount; ++i) FreeAsn1Object(d->components[i], slots[i]);
            Free(value);
            return TV_OK;
        }
        default:
            return TV_OK;
    }
}

extern "C" TV_API uint32_t CompareAsn1Objects(const Asn1Descriptor* d, const void* a, const void* b, uint32_t* equal) {
    if (!d || !equal) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!a || !b) {
        *equal = (a == b);
        return TV_OK;
    }
    const uint8_t code = d->typeCode;
    if ((IsScalarKind(code) && code != ASN1_NULL && code != ASN1_ENUMERATED) || code == ASN1_OBJECT_IDENTIFIER ||
        code == ASN1_BIT_STRING) {
        auto* x = static_cast<const Asn1Primitive*>(a);
        auto* y = static_cast<const Asn1Primitive*>(b);
        bool same = x->length == y->length && (x->length == 0 || std::memcmp(x->content, y->content, x->length) == 0);
        // For a bit string the word is the unused-bit count, which takes part; other words do not.
        if (code == ASN1_BIT_STRING) same = same && x->word == y->word;
        *equal = same;
        return TV_OK;
    }
    switch (code) {
        case ASN1_SEQUENCE:
        case ASN1_SET: {
            auto* x = static_cast<void* const*>(a);
            auto* y = static_cast<void* const*>(b);
            for (uint32_t i = 0; i < d->componentCount; ++i) {
                TV_TRY(CompareAsn1Objects(d->components[i], x[i], y[i], equal));
                if (!*equal) return TV_OK;
            }
            *equal = 1;
            return TV_OK;
        }
        case ASN1_SEQUENCE_OF:
        case ASN1_SET_OF: {
            auto* x = static_cast<const Asn1List*>(a);
            auto* y = static_cast<const Asn1List*>(b);
            if (x->count != y->count) {
                *equal = 0;
                return TV_OK;
            }
            if (d->componentCount != 1) return TV_FAIL(TV_ERR_BAD_DESCRIPTOR);
            for (uint32_t i = 0; i < x->count; ++i) {
                TV_TRY(CompareAsn1Objects(d->components[0], x->items[i], y->items[i], equal));
                if (!*equal) return TV_OK;
            }
            *equal = 1;
            return TV_OK;
        }
        default:
            // NULL, ENUMERATED, CHOICE and ANY cannot be compared; a DEFAULT is declared only on
            // comparable kinds, and a structure holding one of these is refused as a whole.
            return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    }
}
