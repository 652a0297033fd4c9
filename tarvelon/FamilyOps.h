// The life cycle every structure family shares, written once: a family is a descriptor plus the
// module its failures are recorded under, and its exported Create/Decode/Encode/Copy/Free are
// one-line calls of these templates.
//
//   constinit const Family kNameFamily{&kX509NameDescriptor, Module::X509Name, 1};
//   extern "C" TV_API uint32_t DecodeX509Name(const uint8_t* in, uint32_t inLen, X509Name** outName) {
//       return DecodeT(kNameFamily, in, inLen, outName);
//   }
#pragma once

#include "tarvelon/Engine.h"

namespace tv {

struct Family {
    const Asn1Descriptor* descriptor;
    Module module;
    uint32_t leaves;  // leaves flag passed to CreateAsn1Object
};

#define TV_FAMILY_SITE(family) (::tv::Site{(family).module, static_cast<uint32_t>(__LINE__)})

template <typename T>
uint32_t CreateT(const Family& f, T** out) noexcept {
    if (!out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    void* v = nullptr;
    TV_TRY(CreateAsn1Object(f.descriptor, &v, f.leaves));
    *out = static_cast<T*>(v);
    return TV_OK;
}

// Octets after the first complete element are ignored, as callers pass whole files or buffers.
template <typename T>
uint32_t DecodeT(const Family& f, const uint8_t* in, uint32_t inLen, T** out) noexcept {
    if (!in || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    void* v = nullptr;
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(in, inLen, f.descriptor, &v, &consumed));
    *out = static_cast<T*>(v);
    return TV_OK;
}

// DER straight into the caller's buffer with the size protocol; no intermediate copy.
template <typename T>
uint32_t EncodeT(const Family& f, const T* value, uint8_t* out, uint32_t* outLen) noexcept {
    return EncodeSized(TV_FAMILY_SITE(f), value, f.descriptor, out, outLen);
}

template <typename T>
uint32_t CopyT(const Family& f, const T* src, T** out) noexcept {
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

// ---- lists of element trees ----------------------------------------------------------------------
// The members that list-valued families (extension values, store lists, certificate and CRL lists)
// share; the family's descriptor is the SEQUENCE OF or SET OF, and Create/Decode/Encode/Copy/Free
// above apply to it unchanged. Only Add and Get, which know the element's shape, are per family.

inline const Asn1Descriptor* ElementOf(const Family& f) noexcept { return f.descriptor->components[0]; }

inline uint32_t ListCountT(const Family& f, const Asn1List* list, uint32_t* outCount) noexcept {
    if (!list || !outCount) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    *outCount = list->count;
    return TV_OK;
}

// The element at `index`: out of range 32, an empty slot 311.
template <typename T>
uint32_t ListElementT(const Family& f, const Asn1List* list, uint32_t index, T** out) noexcept {
    if (!list || !out) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (index >= list->count) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    if (!list->items[index]) return Fail(TV_FAMILY_SITE(f), TV_ERR_ABSENT);
    *out = static_cast<T*>(list->items[index]);
    return TV_OK;
}

// Appends a finished element; the list takes it over only on success (the guard frees it otherwise).
inline uint32_t ListAppendT(const Family& f, Asn1List* list, OwnedValue& element) noexcept {
    if (!list) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    TV_TRY(ListAppend(list, element.get()));
    element.Release();
    return TV_OK;
}

// Frees the element at `index` and closes the gap (null list or index out of range: 32).
inline uint32_t ListRemoveT(const Family& f, Asn1List* list, uint32_t index) noexcept {
    if (!list || index >= list->count) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return ListRemoveAt(list, index, ElementOf(f));
}

}  // namespace tv
