// Builders for constant descriptor tables, so a table reads like the ASN.1 it describes:
//
//   // AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }
//   enum class AlgorithmIdentifierSlot : uint32_t { kAlgorithm, kParameters, kCount };
//   constexpr auto kAlgIdParts = Slots<AlgorithmIdentifierSlot>({
//       {AlgorithmIdentifierSlot::kAlgorithm, &kOid},            // algorithm  OBJECT IDENTIFIER
//       {AlgorithmIdentifierSlot::kParameters, &kOptionalAny},   // parameters ANY DEFINED BY algorithm OPTIONAL
//   });
//   constinit const Asn1Descriptor kAlgorithmIdentifier = Sequence(kAlgIdParts);
//
// Every slot enum (and every enum of CHOICE alternatives) is scoped and ends with kCount, so a
// table that misses an enumerator, or an enumerator added without its table row, does not compile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

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

// A scoped enum naming the slots of a SEQUENCE or SET, or the alternatives of a CHOICE.
template <typename E>
concept SlotEnum = std::is_enum_v<E> && !std::is_convertible_v<E, int> && requires { E::kCount; };

template <SlotEnum E>
constexpr size_t SlotCount = static_cast<size_t>(E::kCount);

template <typename E>
struct SlotEntry {
    E slot;
    const Asn1Descriptor* descriptor;
};

// Refuses to compile unless every slot 0..N-1 appears once, in order.
// Deliberately not constexpr: reaching it during constant evaluation is a compile error.
inline void ComponentSlotsOutOfOrder() {}

template <SlotEnum E, size_t N>
consteval Components<N> Slots(const SlotEntry<E> (&entries)[N]) {
    static_assert(N == SlotCount<E>, "one table row per enumerator before kCount");
    Components<N> c{};
    for (size_t i = 0; i < N; ++i) {
        if (static_cast<size_t>(entries[i].slot) != i)
            ComponentSlotsOutOfOrder();
        c.items[i] = entries[i].descriptor;
    }
    return c;
}

// The slot of a structure value (SEQUENCE, SET) named by its enum; structure values are arrays
// of component pointers in slot order.
template <SlotEnum E>
inline void*& Slot(void* value, E s) noexcept {
    return static_cast<void**>(value)[static_cast<size_t>(s)];
}
template <SlotEnum E>
inline void* Slot(const void* value, E s) noexcept {
    return static_cast<void* const*>(value)[static_cast<size_t>(s)];
}
// Leaves, CHOICE values and lists have no slots: reaching into one is a mistake the compiler catches.
template <SlotEnum E> void Slot(const Asn1Primitive*, E) = delete;
template <SlotEnum E> void Slot(const Asn1BitStringValue*, E) = delete;
template <SlotEnum E> void Slot(const Asn1ChoiceValue*, E) = delete;
template <SlotEnum E> void Slot(const Asn1List*, E) = delete;

// The descriptor of a component named by its slot.
template <SlotEnum E>
constexpr const Asn1Descriptor* Component(const Asn1Descriptor& d, E s) noexcept {
    return d.components[static_cast<size_t>(s)];
}

// The index a CHOICE value stores for an alternative.
template <SlotEnum E>
constexpr int32_t Index(E alternative) noexcept {
    return static_cast<int32_t>(alternative);
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

// A constructed element kept whole: a CHOICE alternative whose structure the library does not
// interpret matches by its tag and constructed form and travels as its complete encoding.
constexpr Asn1Descriptor ConstructedAny() {
    Asn1Descriptor d = Any();
    d.constructed = ASN1_CONSTRUCTED_FORM;
    return d;
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

// The INTEGER 0 as a DEFAULT (Version DEFAULT v1 of certificates and OCSP messages).
inline constinit const Asn1Primitive kZeroValue{ASN1_INTEGER, 1, const_cast<uint8_t*>(kFalseOctet)};
// [0] EXPLICIT Version DEFAULT v1, Version ::= INTEGER { v1(0), ... }
inline constexpr Asn1Descriptor kExplicitVersion = Optional(Explicit(0, kInteger), &kZeroValue);

}  // namespace tv::desc
