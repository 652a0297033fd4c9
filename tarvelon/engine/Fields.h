// Reading and writing the fields of a value tree: what every family accessor is made of.
//
// Each helper that can fail on its own takes the failure site first, so the record names the
// module of the exported function that called it (pass TV_SITE). Failures of the engine calls
// underneath are recorded where the engine detects them, exactly as when a family calls them itself.
//
//   void** slot = nullptr;
//   TV_TRY(Walk(TV_SITE, cert, &slot, CertificateSlot::kTbsCertificate, TbsCertificateSlot::kSerialNumber));
//   return GetLeaf(TV_SITE, *slot, out, outLen);
#pragma once

#include <initializer_list>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/FamilyOps.h"

namespace tv {

// ---- reaching a part ------------------------------------------------------------------------------

namespace detail {
inline uint32_t Descend(Site, void** slot, void*** out) noexcept {
    *out = slot;
    return TV_OK;
}
template <SlotEnum Next, SlotEnum... Rest>
uint32_t Descend(Site site, void** slot, void*** out, Next next, Rest... rest) noexcept {
    if (!*slot) return Fail(site, TV_ERR_ABSENT);
    return Descend(site, &Slot(*slot, next), out, rest...);
}
}  // namespace detail

// The address of a nested slot: the first step names a slot of `root`, each further one a slot of
// the structure held by the previous step. A null root is 32, an empty intermediate slot 311; the
// final slot may be empty (setters fill it, getters decide what its absence means).
template <SlotEnum First, SlotEnum... Rest>
[[nodiscard]] uint32_t Walk(Site site, void* root, void*** out, First first, Rest... rest) noexcept {
    if (!root) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    return detail::Descend(site, &Slot(root, first), out, rest...);
}

// The same for readers: the value held by the final slot (possibly null).
template <SlotEnum First, SlotEnum... Rest>
[[nodiscard]] uint32_t Walk(Site site, const void* root, const void** out, First first, Rest... rest) noexcept {
    void** slot = nullptr;
    TV_TRY(Walk(site, const_cast<void*>(root), &slot, first, rest...));
    *out = *slot;
    return TV_OK;
}

// The same for parts a getter cannot do without: an empty final slot is 311 as well.
template <SlotEnum First, SlotEnum... Rest>
[[nodiscard]] uint32_t WalkPresent(Site site, const void* root, const void** out, First first, Rest... rest) noexcept {
    TV_TRY(Walk(site, root, out, first, rest...));
    if (!*out) return Fail(site, TV_ERR_ABSENT);
    return TV_OK;
}

// ---- structures -----------------------------------------------------------------------------------

// A structure block of `d` with every slot empty, for builders that fill each field themselves.
[[nodiscard]] uint32_t NewStructure(Site site, const Asn1Descriptor& d, OwnedValue& out) noexcept;

// Every output is filled before the result is chosen, so one call stores all sizes; the first
// failing field in ASN.1 order is reported.
[[nodiscard]] inline uint32_t FirstFailure(std::initializer_list<uint32_t> codes) noexcept {
    for (uint32_t rc : codes)
        if (rc != TV_OK) return rc;
    return TV_OK;
}

// Appends an element whose listed slots hold trees the caller handed over. Ownership passes only
// on success: after a failure the caller still owns them, so they leave the element before the
// guard frees it.
template <size_t N>
[[nodiscard]] uint32_t AppendAdopting(const Family& f, Asn1List* list, OwnedValue& element,
                                      void** const (&adopted)[N]) noexcept {
    if (const uint32_t rc = ListAppendT(f, list, element); rc != TV_OK) {
        for (void** slot : adopted)
            if (slot) *slot = nullptr;
        return rc;
    }
    return TV_OK;
}

// DER in a fresh block: measured, allocated, encoded. `encode(out, len)` follows the size protocol.
template <typename Encode>
[[nodiscard]] uint32_t EncodeToHeap(Site site, Encode encode, HeapBytes& out, uint32_t* len) noexcept {
    TV_TRY(encode(nullptr, len));
    if (!out.Allocate(*len)) return Fail(site, TV_ERR_NO_MEMORY);
    return encode(out.get(), len);
}

// Output of a size-protocol call in a working block of `initial` octets, grown to the reported size
// and the call repeated when it did not fit.
template <typename Write>
[[nodiscard]] uint32_t WriteGrowing(Site site, uint32_t initial, HeapBytes& out, uint32_t* len, Write write) noexcept {
    if (!out.Allocate(initial)) return Fail(site, TV_ERR_NO_MEMORY);
    *len = initial;
    const uint32_t rc = write(out.get(), len);
    if (rc != TV_ERR_BUFFER_TOO_SMALL) return rc;
    if (!out.Allocate(*len)) return Fail(site, TV_ERR_NO_MEMORY);
    return write(out.get(), len);
}

// The same for a value tree of `d`.
[[nodiscard]] uint32_t EncodeToHeap(Site site, const void* value, const Asn1Descriptor& d, HeapBytes& out,
                                    uint32_t* len) noexcept;

// ---- leaves (Asn1Primitive) -----------------------------------------------------------------------

// The content octets under the size protocol; an absent leaf is 311.
[[nodiscard]] uint32_t GetLeaf(Site site, const void* leaf, uint8_t* out, uint32_t* outLen) noexcept;
// The same with an absent leaf read as length 0.
[[nodiscard]] uint32_t GetOptionalLeaf(Site site, const void* leaf, uint8_t* out, uint32_t* outLen) noexcept;
// An optional leaf is written when the caller gave its octets (null `in`: the slot is left alone).
[[nodiscard]] uint32_t SetOptionalLeaf(void** slot, uint8_t typeCode, const uint8_t* in, uint32_t inLen) noexcept;
// An optional OCTET STRING replaced by the caller's octets, the old one freed first so that a large
// content is never held twice; null or empty octets leave it absent.
[[nodiscard]] uint32_t ReplaceOptionalOctets(void** slot, const uint8_t* in, uint32_t inLen) noexcept;

// Numbers cross the interface unsigned but are written as the minimal two's complement of the
// signed 32-bit value, the INTEGER rule of the engine: every four-octet content reads back to the
// number that wrote it, and small codes take one octet.
[[nodiscard]] uint32_t SetNumber(void** slot, uint8_t typeCode, uint32_t number) noexcept;
// Absent: 311; contents longer than four octets fail in the engine's reader.
[[nodiscard]] uint32_t GetNumber(Site site, const void* leaf, uint32_t* out) noexcept;
// Absent: present 0 and number 0, no failure.
[[nodiscard]] uint32_t GetOptionalNumber(Site site, const void* leaf, uint32_t* outPresent,
                                         uint32_t* outNumber) noexcept;

[[nodiscard]] uint32_t SetBooleanLeaf(void** slot, bool flag) noexcept;
// The raw octet of a BOOLEAN (the decoder has filled absent DEFAULT ones), 0 when there is none.
uint8_t BooleanOctet(const void* leaf) noexcept;

// ---- identifiers ----------------------------------------------------------------------------------

// The packed OID (length octet, contents) under the size protocol; absent: 311.
[[nodiscard]] uint32_t GetOid(Site site, const void* oid, uint8_t* out, uint32_t* outLen) noexcept;
// A fresh identifier from a packed OID replaces the slot's value (null `packed`: 32).
[[nodiscard]] uint32_t SetOid(Site site, void** slot, const uint8_t* packed) noexcept;

// ---- BIT STRING -----------------------------------------------------------------------------------

// The octets of a BIT STRING (unused bits not reported); absent: 311.
[[nodiscard]] uint32_t GetBits(Site site, const void* bits, uint8_t* out, uint32_t* outLen) noexcept;
// Octets with no unused bits, written into the value in the slot or a fresh one when it is empty.
[[nodiscard]] uint32_t SetBits(Site site, void** slot, const uint8_t* in, uint32_t inLen) noexcept;
// The same into a fresh value that replaces the slot's value only once it is complete.
[[nodiscard]] uint32_t ReplaceBits(Site site, void** slot, const uint8_t* in, uint32_t inLen) noexcept;
// A fresh named-bit value for a flag word replaces the slot's value.
[[nodiscard]] uint32_t SetFlags(Site site, void** slot, uint32_t flags) noexcept;

// ---- CHOICE and ANY -------------------------------------------------------------------------------

// A fresh CHOICE value holding `value` as `alternative` replaces the slot's value; the choice takes
// the value over only on success.
[[nodiscard]] uint32_t SetChoice(const Asn1Descriptor& choice, void** slot, int32_t alternative,
                                 OwnedValue& value) noexcept;
template <SlotEnum E>
[[nodiscard]] uint32_t SetChoice(const Asn1Descriptor& choice, void** slot, E alternative, OwnedValue& value) noexcept {
    return SetChoice(choice, slot, Index(alternative), value);
}

// The value of a CHOICE when it holds `alternative`, else null.
template <SlotEnum E>
void* ChoiceValue(const void* choice, E alternative) noexcept {
    auto* c = static_cast<const Asn1ChoiceValue*>(choice);
    return c && c->index == Index(alternative) ? c->value : nullptr;
}

// A fresh ANY value holding a copy of one complete element replaces the slot's value.
[[nodiscard]] uint32_t SetAny(Site site, void** slot, const uint8_t* element, uint32_t len) noexcept;

// ---- DER carried inside a field --------------------------------------------------------------------
// Some fields carry a whole structure of another family as opaque DER: the content of a ContentInfo
// ([0] EXPLICIT ANY), eContent and responseBytes.response (OCTET STRING), the TSTInfo inside a
// time-stamp token. The tree keeps those octets exactly as they arrived, so a signature over them
// stays verifiable; a typed value is made from them only when a caller asks, and a changed value is
// written back whole. The carrier is an Asn1Primitive either way: an ANY holds the complete element,
// an OCTET STRING holds the element as its contents, so both read from content/length.
//
//   void* content = nullptr;                         // read: a fresh value that the caller frees
//   TV_TRY(DecodeCarried(TV_SITE, Slot(info, ContentInfoSlot::kContent), kDataFamily, &content));
//   TV_TRY(EncodeIntoCarrier(TV_SITE, content, kDataFamily, ASN1_ANY, &Slot(info, ContentInfoSlot::kContent)));

// One value of `f` from the carrier's octets: an absent or empty carrier is 311, octets left over
// after the value 302 (the carrier must hold exactly one element), decoder failures as the engine
// reports them. `*out` is stored only on success.
[[nodiscard]] uint32_t DecodeCarried(Site site, const void* carrier, const Family& f, void** out) noexcept;

// The DER of `value` (a tree of `f`) in a fresh carrier of `typeCode` (ASN1_ANY or ASN1_OCTET_STRING,
// anything else 32) that replaces the slot's carrier; on failure the old carrier stays.
[[nodiscard]] uint32_t EncodeIntoCarrier(Site site, const void* value, const Family& f, uint8_t typeCode,
                                         void** slot) noexcept;

// ---- one value as a whole element --------------------------------------------------------------------
// The one-shot codecs of extension and attribute values: one value of `d` written under the size
// protocol, or read from its DER. Empty input is refused (32) before the engine sees it.

// One primitive of `d`'s universal type over the caller's content octets (no conversion): the leaf
// borrows them, nothing is copied before the write.
[[nodiscard]] uint32_t EncodeScalar(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out,
                                    uint32_t* outLen) noexcept;
// The content octets of one such element, under the size protocol.
[[nodiscard]] uint32_t DecodeScalar(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out,
                                    uint32_t* outLen) noexcept;
// A number as INTEGER or ENUMERATED (the SetNumber rule), and back.
[[nodiscard]] uint32_t EncodeNumber(Site site, const Asn1Descriptor& d, uint32_t number, uint8_t* out,
                                    uint32_t* outLen) noexcept;
[[nodiscard]] uint32_t DecodeNumber(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen,
                                    uint32_t* outNumber) noexcept;
// One value of `d` into `value` (absent after decoding: 311).
[[nodiscard]] uint32_t DecodeValue(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen,
                                   OwnedValue& value) noexcept;

// Decodes one value of `d` and hands it to `read`, which fills the caller's outputs from it.
template <typename Read>
[[nodiscard]] uint32_t DecodeRead(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen,
                                  Read read) noexcept {
    OwnedValue value(&d);
    TV_TRY(DecodeValue(site, d, in, inLen, value));
    return read(static_cast<const void*>(value.get()));
}

// One value of `d` made field by field: `fill(value)` writes into a structure whose slots all start
// empty, and the result is written under the size protocol.
template <typename Fill>
[[nodiscard]] uint32_t EncodeBuilt(Site site, const Asn1Descriptor& d, uint8_t* out, uint32_t* outLen,
                                   Fill fill) noexcept {
    if (!outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&d);
    TV_TRY(NewStructure(site, d, value));
    TV_TRY(fill(value.get()));
    return EncodeSized(site, value.get(), &d, out, outLen);
}

// ---- values lent for one write ----------------------------------------------------------------------

// Slots of a temporary tree that hold the caller's values for the time of one write (an encoder that
// takes handles, a list added only on success): emptied again when the guard goes, so the tree's
// own guard, declared before this one, frees only what the tree made. Release() hands the values
// over instead.
template <size_t N>
struct LentSlots {
    void** slots[N] = {};
    LentSlots() = default;
    LentSlots(const LentSlots&) = delete;
    LentSlots& operator=(const LentSlots&) = delete;
    ~LentSlots() {
        for (void** slot : slots)
            if (slot) *slot = nullptr;
    }
    // Puts `value` (null: nothing) into `slot` as entry `i`.
    void Lend(size_t i, void** slot, const void* value) noexcept {
        if (!value) return;
        *slot = const_cast<void*>(value);
        slots[i] = slot;
    }
    void Release() noexcept {
        for (void**& slot : slots) slot = nullptr;
    }
};

// ---- lists held in a slot ---------------------------------------------------------------------------

// Appends a finished element to the list in `slot` (a SEQUENCE OF or SET OF of family `f`), making
// the list on first use. The list is stored only once it holds the element, so a failure leaves the
// slot as it was; the element is taken over only on success.
[[nodiscard]] inline uint32_t AppendToSlotList(const Family& f, void** slot, OwnedValue& element) noexcept {
    if (*slot) return ListAppendT(f, static_cast<Asn1List*>(*slot), element);
    OwnedValue list(f.descriptor, ListCreate());
    if (!list.get()) return Fail(TV_FAMILY_SITE(f), TV_ERR_NO_MEMORY);
    TV_TRY(ListAppendT(f, list.as<Asn1List>(), element));
    *slot = list.Release();
    return TV_OK;
}

// Appends an element the caller made and hands over as a handle (a certificate, a single response),
// making the list on first use. The list owns it only on success; after a failure the caller still
// does, so the element leaves the guard before it would free it.
[[nodiscard]] inline uint32_t AdoptIntoSlotList(const Family& f, void** slot, void* element) noexcept {
    OwnedValue held(ElementOf(f), element);
    const uint32_t rc = AppendToSlotList(f, slot, held);
    if (rc != TV_OK) held.Release();
    return rc;
}

// Count and element of a list held in an optional slot, for readers: no list is 311 (at `site`).
[[nodiscard]] inline uint32_t SlotListCount(Site site, const Family& f, const void* list, uint32_t* outCount) noexcept {
    if (!outCount) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (!list) return Fail(site, TV_ERR_ABSENT);
    return ListCountT(f, static_cast<const Asn1List*>(list), outCount);
}
template <typename T>
[[nodiscard]] uint32_t SlotListElement(Site site, const Family& f, const void* list, uint32_t index, T** out) noexcept {
    if (!out) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (!list) return Fail(site, TV_ERR_ABSENT);
    return ListElementT(f, static_cast<const Asn1List*>(list), index, out);
}

}  // namespace tv
