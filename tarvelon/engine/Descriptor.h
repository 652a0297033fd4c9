// Builders for constant descriptor tables, so a table reads like the ASN.1 it describes:
//
//   // AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }
//   enum AlgorithmIdentifier : uint32_t { kAlgorithm, kParameters, kAlgorithmIdentifierCount };
//   constexpr Components<2> kAlgIdParts = Slots<AlgorithmIdentifier, 2>({
//       {kAlgorithm, &kOid},             // algorithm  OBJECT IDENTIFIER
//       {kParameters, &kOptionalAny},    // parameters ANY DEFINED BY algorithm OPTIONAL
//   });
//   constinit const Asn1Descriptor kAlgorithmIdentifier = Sequence(kAlgIdParts);
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarvelon/types.h"

namespace tv {

constexpr Asn1Descriptor Prim(uint8_t typeCode) {
    return Asn1Descriptor{ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, typeCode, -1, 0, nullptr, 0, nullptr};
}

// The component array of a SEQUENCE or CHOICE, in slot order.
template <size_t N>
struct Components {
    const Asn1Descriptor* items[N];
};

template <typename Slot>
struct SlotEntry {
    Slot slot;
    const Asn1Descriptor* descriptor;
};

// Refuses to compile unless every slot 0..N-1 appears once, in order.
// Deliberately not constexpr: reaching it during constant evaluation is a compile error.
inline void ComponentSlotsOutOfOrder() {}

template <typename Slot, size_t N>
consteval Components<N> Slots(const SlotEntry<Slot> (&entries)[N]) {
    Components<N> c{};
    for (size_t i = 0; i < N; ++i) {
        if (static_cast<size_t>(entries[i].slot) != i)
            ComponentSlotsOutOfOrder();
        c.items[i] = entries[i].descriptor;
    }
    return c;
}

template <size_t N>
constexpr Asn1Descriptor Sequence(const Components<N>& parts) {
    return Asn1Descriptor{ASN1_CLASS_UNIVERSAL, ASN1_CONSTRUCTED_FORM, 0, ASN1_SEQUENCE, -1,
                          static_cast<uint32_t>(N * sizeof(void*)), parts.items, static_cast<uint32_t>(N), nullptr};
}

template <size_t N>
constexpr Asn1Descriptor Set(const Components<N>& parts) {
    Asn1Descriptor d = Sequence(parts);
    d.typeCode = ASN1_SET;
    return d;
}

template <size_t N>
constexpr Asn1Descriptor Choice(const Components<N>& alternatives) {
    return Asn1Descriptor{ASN1_CLASS_UNIVERSAL, ASN1_CONSTRUCTED_FORM, 0, ASN1_CHOICE, -1, 0,
                          alternatives.items, static_cast<uint32_t>(N), nullptr};
}

constexpr Asn1Descriptor Any() {
    return Asn1Descriptor{ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_ANY, -1, 0, nullptr, 0, nullptr};
}

// The one-entry component array of a list, held per element descriptor.
template <const Asn1Descriptor* Element>
inline constexpr Components<1> kListElement{{Element}};

template <const Asn1Descriptor* Element>
constexpr Asn1Descriptor SequenceOf() {
    return Asn1Descriptor{ASN1_CLASS_UNIVERSAL, ASN1_CONSTRUCTED_FORM, 0, ASN1_SEQUENCE_OF, -1, 0,
                          kListElement<Element>.items, 1, nullptr};
}

template <const Asn1Descriptor* Element>
constexpr Asn1Descriptor SetOf() {
    Asn1Descriptor d = SequenceOf<Element>();
    d.typeCode = ASN1_SET_OF;
    return d;
}

// [tag] IMPLICIT: the context tag replaces the universal one.
constexpr Asn1Descriptor Implicit(int32_t tag, Asn1Descriptor d) {
    d.tagClass = ASN1_CLASS_CONTEXT;
    d.tag = tag;
    return d;
}

// [tag] EXPLICIT: a constructed context wrapper around the element with its universal tag.
constexpr Asn1Descriptor Explicit(int32_t tag, Asn1Descriptor d) {
    d.tagClass = ASN1_CLASS_CONTEXT;
    d.tag = tag;
    d.flags |= ASN1_FLAG_EXPLICIT;
    return d;
}

// OPTIONAL, or DEFAULT when a default value of the same kind is given.
constexpr Asn1Descriptor Optional(Asn1Descriptor d, const void* defaultValue = nullptr) {
    d.flags |= ASN1_FLAG_OPTIONAL;
    d.defaultValue = defaultValue;
    return d;
}

// The universal tag number of a descriptor's kind (SEQUENCE OF is a SEQUENCE on the wire).
constexpr uint32_t UniversalTag(const Asn1Descriptor& d) { return d.typeCode & 0x7Fu; }

// Kinds whose value is a plain Asn1Primitive holding the content octets as encoded.
constexpr bool IsScalarKind(uint8_t code) {
    switch (code) {
        case ASN1_BOOLEAN: case ASN1_INTEGER: case ASN1_OCTET_STRING: case ASN1_NULL: case ASN1_ENUMERATED:
        case ASN1_UTF8_STRING: case ASN1_BMP_STRING:
            return true;
        default:
            return code >= ASN1_NUMERIC_STRING && code <= ASN1_UNIVERSAL_STRING;
    }
}

constexpr bool IsExplicit(const Asn1Descriptor& d) { return (d.flags & ASN1_FLAG_EXPLICIT) != 0; }
constexpr bool IsOptional(const Asn1Descriptor& d) { return (d.flags & ASN1_FLAG_OPTIONAL) != 0; }

}  // namespace tv

namespace tv::desc {

// Plain universal types, shared by every family.
inline constexpr Asn1Descriptor kBoolean = Prim(ASN1_BOOLEAN);
inline constexpr Asn1Descriptor kInteger = Prim(ASN1_INTEGER);
inline constexpr Asn1Descriptor kBitString = Prim(ASN1_BIT_STRING);
inline constexpr Asn1Descriptor kOctetString = Prim(ASN1_OCTET_STRING);
inline constexpr Asn1Descriptor kNull = Prim(ASN1_NULL);
inline constexpr Asn1Descriptor kOid = Prim(ASN1_OBJECT_IDENTIFIER);
inline constexpr Asn1Descriptor kEnumerated = Prim(ASN1_ENUMERATED);
inline constexpr Asn1Descriptor kUtf8String = Prim(ASN1_UTF8_STRING);
inline constexpr Asn1Descriptor kAny = Any();
// OctetStrings ::= SEQUENCE OF OCTET STRING
inline constexpr Asn1Descriptor kOctetStrings = SequenceOf<&kOctetString>();

// The value FALSE as a DEFAULT: one content octet 0x00. A slot built from it is left out of the
// encoding while it holds FALSE and is filled with FALSE when absent from the input.
inline constexpr uint8_t kFalseOctet[1] = {0x00};
inline constinit const Asn1Primitive kFalseValue{ASN1_BOOLEAN, 1, const_cast<uint8_t*>(kFalseOctet)};
// BOOLEAN DEFAULT FALSE
inline constexpr Asn1Descriptor kBooleanDefaultFalse = Optional(kBoolean, &kFalseValue);

}  // namespace tv::desc
