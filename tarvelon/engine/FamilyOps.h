// The life cycle every structure family shares, written once: a family is a descriptor plus the
// module its failures are recorded under, and its exported Create/Decode/Encode/Copy/Free are
// one-line calls of these templates; where the handle type carries the family's exported name, one
// line makes the four of them:
//
//   constinit const Family kNameFamily{&kX509NameDescriptor, Module::X509Name, 1};
//   TV_FAMILY_LIFE_CYCLE(X509Name, kNameFamily)   // CreateX509Name, FreeX509Name, EncodeX509Name, DecodeX509Name
#pragma once

#include "tarvelon/engine/Engine.h"

namespace tv {

struct Family {
    const Asn1Descriptor* descriptor;
    Module module;
    uint32_t leaves;  // leaves flag passed to CreateAsn1Object
};

#define TV_FAMILY_SITE(family) (::tv::Site{(family).module, static_cast<uint32_t>(__LINE__)})

template <typename T>
[[nodiscard]] uint32_t CreateT(const Family& f, T** out) noexcept {
    if (!out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    void* v = nullptr;
    TV_TRY(CreateAsn1Object(f.descriptor, &v, f.leaves));
    *out = static_cast<T*>(v);
    return TV_OK;
}

// Octets after the first complete element are ignored, as callers pass whole files or buffers.
template <typename T>
[[nodiscard]] uint32_t DecodeT(const Family& f, const uint8_t* in, uint32_t inLen, T** out) noexcept {
    if (!in || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    void* v = nullptr;
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(in, inLen, f.descriptor, &v, &consumed));
    *out = static_cast<T*>(v);
    return TV_OK;
}

// DER straight into the caller's buffer with the size protocol; no intermediate copy.
template <typename T>
[[nodiscard]] uint32_t EncodeT(const Family& f, const T* value, uint8_t* out, uint32_t* outLen) noexcept {
    return EncodeSized(TV_FAMILY_SITE(f), value, f.descriptor, out, outLen);
}

template <typename T>
[[nodiscard]] uint32_t CopyT(const Family& f, const T* src, T** out) noexcept {
    if (!src || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    void* v = nullptr;
    TV_TRY(CopyValue(f.descriptor, src, &v));
    *out = static_cast<T*>(v);
    return TV_OK;
}

template <typename T>
uint32_t FreeT(const Family& f, T* value) noexcept {
    FreeAsn1Object(f.descriptor, value);
    return TV_OK;
}

// The exported Create, Free, Encode and Decode of a family whose handle type is `Name`; the public
// header declares them (CreateName(Name**), FreeName(Name*), EncodeName(const Name*, out, outLen),
// DecodeName(in, inLen, Name**)).
#define TV_FAMILY_LIFE_CYCLE(Name, family)                                                                \
    extern "C" TV_API uint32_t Create##Name(Name** out) { return ::tv::CreateT(family, out); }           \
    extern "C" TV_API uint32_t Free##Name(Name* value) { return ::tv::FreeT(family, value); }            \
    extern "C" TV_API uint32_t Encode##Name(const Name* value, uint8_t* out, uint32_t* outLen) {          \
        return ::tv::EncodeT(family, value, out, outLen);                                                  \
    }                                                                                                     \
    extern "C" TV_API uint32_t Decode##Name(const uint8_t* in, uint32_t inLen, Name** out) {             \
        return ::tv::DecodeT(family, in, inLen, out);                                                      \
    }

// ---- lists of element trees ----------------------------------------------------------------------
// The members that list-valued families (extension values, store lists, certificate and CRL lists)
// share; the family's descriptor is the SEQUENCE OF or SET OF, and Create/Decode/Encode/Copy/Free
// above apply to it unchanged. Only Add and Get, which know the element's shape, are per family.

inline const Asn1Descriptor* ElementOf(const Family& f) noexcept { return f.descriptor->components[0]; }

[[nodiscard]] inline uint32_t ListCountT(const Family& f, const Asn1List* list, uint32_t* outCount) noexcept {
    if (!list || !outCount) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    *outCount = list->count;
    return TV_OK;
}

// The element at `index`: out of range 32, an empty slot 311.
template <typename T>
[[nodiscard]] uint32_t ListElementT(const Family& f, const Asn1List* list, uint32_t index, T** out) noexcept {
    if (!list || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (index >= list->count) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (!list->items[index]) return Fail(TV_FAMILY_SITE(f), TV_ERR_ABSENT);
    *out = static_cast<T*>(list->items[index]);
    return TV_OK;
}

// Appends a finished element; the list takes it over only on success (the guard frees it otherwise).
[[nodiscard]] inline uint32_t ListAppendT(const Family& f, Asn1List* list, OwnedValue& element) noexcept {
    if (!list) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    TV_TRY(ListAppend(list, element.get()));
    element.Release();
    return TV_OK;
}

// Frees the element at `index` and closes the gap (null list or index out of range: 32).
[[nodiscard]] inline uint32_t ListRemoveT(const Family& f, Asn1List* list, uint32_t index) noexcept {
    if (!list || index >= list->count) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return ListRemoveAt(list, index, ElementOf(f));
}

// ---- one-field list handles -----------------------------------------------------------------------
// Extension and attribute lists are reached through a handle `{ void* list; }` that may hold no
// list at all (never created, or released while the handle stays usable), so that a structure can
// hand out the address of its own slot as the handle. These are the members that do not depend on
// the element's shape; `f` is the family of the list (SEQUENCE OF or SET OF).

template <typename Handle>
Asn1List* ListOf(const Handle* h) noexcept {
    return static_cast<Asn1List*>(h->list);
}

template <typename Handle>
[[nodiscard]] uint32_t HandleCreateT(const Family& f, Handle** out) noexcept {
    if (!out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    auto* handle = New<Handle>();
    if (handle) handle->list = ListCreate();
    if (!handle || !handle->list) {
        Free(handle);
        return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    }
    *out = handle;
    return TV_OK;
}

// The handle's list, created on first use.
template <typename Handle>
[[nodiscard]] uint32_t HandleListT(const Family& f, Handle* h, Asn1List** out) noexcept {
    if (!h->list && !(h->list = ListCreate())) return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    *out = ListOf(h);
    return TV_OK;
}

// No list counts as empty.
template <typename Handle>
[[nodiscard]] uint32_t HandleCountT(const Family& f, const Handle* h, uint32_t* outCount) noexcept {
    if (!h || !outCount) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    *outCount = h->list ? ListOf(h)->count : 0;
    return TV_OK;
}

// Frees every element; the list stays, empty. No list: nothing to do.
template <typename Handle>
[[nodiscard]] uint32_t HandleClearT(const Family& f, Handle* h) noexcept {
    if (!h) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    ListClear(ListOf(h), ElementOf(f));
    return TV_OK;
}

// Frees the list; the handle stays usable and takes a new list on the next addition.
template <typename Handle>
[[nodiscard]] uint32_t HandleRemoveListT(const Family& f, Handle* h) noexcept {
    if (!h) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    ListFree(ListOf(h), ElementOf(f));
    h->list = nullptr;
    return TV_OK;
}

template <typename Handle>
uint32_t HandleFreeT(const Family& f, Handle* h) noexcept {
    if (!h) return TV_OK;
    ListFree(ListOf(h), ElementOf(f));
    Free(h);
    return TV_OK;
}

// Stored in the list; no list: nothing stored.
template <typename Handle>
[[nodiscard]] uint32_t HandleSetSortedT(const Family& f, Handle* h, uint32_t sorted) noexcept {
    if (!h) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (h->list) ListOf(h)->sorted = sorted;
    return TV_OK;
}

// A handle without a list has nothing to encode (311); an empty list is the empty SEQUENCE or SET.
template <typename Handle>
[[nodiscard]] uint32_t HandleEncodeT(const Family& f, const Handle* h, uint8_t* out, uint32_t* outLen) noexcept {
    if (!h) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (!h->list) return Fail(TV_FAMILY_SITE(f), TV_ERR_ABSENT);
    return EncodeT(f, ListOf(h), out, outLen);
}

// A fresh handle holding the decoded list; stored only on success (a failed decode releases it:
// the caller never saw it).
template <typename Handle>
[[nodiscard]] uint32_t HandleDecodeT(const Family& f, const uint8_t* in, uint32_t inLen, Handle** out) noexcept {
    if (!in || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    auto* handle = New<Handle>();
    if (!handle) return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    Asn1List* list = nullptr;
    if (const uint32_t rc = DecodeT(f, in, inLen, &list); rc != TV_OK) {
        Free(handle);
        return rc;
    }
    handle->list = list;
    *out = handle;
    return TV_OK;
}

}  // namespace tv
