// Internal interface of the ASN.1 engine, shared by its modules and by every structure family.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tarvelon/engine/Error.h"
#include "tarvelon/engine/Mem.h"
#include "tarvelon/asn1.h"

namespace tv {

// Constructed levels a decoder will descend. Real PKI objects stay far below it; hostile input that
// nests deeper is refused with 302 before it can exhaust the stack.
inline constexpr int kMaxDecodeDepth = 64;

// ---- size protocol ------------------------------------------------------------------------------

// The size protocol of every function that copies bytes out: a null buffer asks for the size, a
// short one gets 49 with the size stored, else the bytes are copied. Failures are recorded at `site`.
[[nodiscard]] uint32_t PutBytes(Site site, const void* src, size_t n, void* out, uint32_t* outLen) noexcept;

// The same protocol for output produced in place: `write(out)` fills exactly n octets and returns
// a status; it runs only when the caller's buffer is large enough.
template <typename Write>
[[nodiscard]] uint32_t WriteSized(Site site, size_t n, uint8_t* out, uint32_t* outLen, Write write) noexcept {
    if (outLen == nullptr) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (n > UINT32_MAX) return Fail(site, TV_ERR_WORK_BUFFER);
    const auto needed = static_cast<uint32_t>(n);
    if (out == nullptr) {
        *outLen = needed;
        return TV_OK;
    }
    if (*outLen < needed) {
        *outLen = needed;
        return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
    }
    if (uint32_t rc = write(out); rc != TV_OK) return rc;
    *outLen = needed;
    return TV_OK;
}

// DER of a value tree with the size protocol, written in place; the protocol's own failures
// (null size, short buffer) are recorded at `site`, so they name the calling family.
[[nodiscard]] uint32_t EncodeSized(Site site, const void* value, const Asn1Descriptor* d, uint8_t* out,
                                   uint32_t* outLen) noexcept;

// ---- values -------------------------------------------------------------------------------------

[[nodiscard]] uint32_t CopyValue(const Asn1Descriptor* d, const void* src, void** out) noexcept;

// Lexicographic order by unsigned octets, a proper prefix first: <0, 0, >0.
int CompareOctets(const uint8_t* a, size_t na, const uint8_t* b, size_t nb) noexcept;

// ---- headers ------------------------------------------------------------------------------------

struct Header {
    uint8_t tagClass = 0;
    uint8_t constructed = 0;
    uint32_t tag = 0;
    uint32_t contentLen = 0;  // for the indefinite form: the rest of the input after the header
    bool indefinite = false;
    uint32_t headerLen = 0;
};

// Parses one identifier and length. Checks only that the header itself fits in `len`; a tag number
// that does not fit in 32 bits is 302.
[[nodiscard]] uint32_t ParseHeader(const uint8_t* in, size_t len, Header* h) noexcept;

// The bound every reader of contents relies on: 302 unless the definite element `h` heads, read
// from the start of `len` octets, ends inside them. An indefinite header passes: its end is found
// by walking (FindElementEnd), never from its length.
[[nodiscard]] uint32_t CheckElementInside(const Header& h, size_t len) noexcept;

// A header accepted only with its contents inside the input: ParseHeader, then CheckElementInside.
// Readers that decide on the tag before they may fail on the length call the two in turn.
[[nodiscard]] uint32_t ReadElement(const uint8_t* in, size_t len, Header* h) noexcept;

// Total length of the element at `in` (header, contents and, for the indefinite form, the
// end-of-contents octets). 335 when the input ends first.
[[nodiscard]] uint32_t FindElementEnd(const uint8_t* in, size_t len, size_t* total) noexcept;

// Octets of an identifier-and-length header for `tag` and a content length.
size_t HeaderSize(uint32_t tag, size_t contentLen) noexcept;

// Writes a header forwards at `out` (HeaderSize octets) and returns the position after it.
uint8_t* WriteHeader(uint8_t* out, uint8_t tagClass, uint8_t constructed, uint32_t tag, size_t contentLen) noexcept;

// ---- leaves -------------------------------------------------------------------------------------

[[nodiscard]] Asn1Primitive* NewPrimitive(uint32_t word, const uint8_t* content, uint32_t len) noexcept;
// Replaces the contents (old ones freed, new ones copied) and sets the word.
[[nodiscard]] uint32_t SetPrimitive(Asn1Primitive* p, uint32_t word, const uint8_t* content, uint32_t len) noexcept;
// Sets the leaf in `*slot`, creating the record when the slot is empty.
[[nodiscard]] uint32_t SetOrCreatePrimitive(void** slot, uint32_t word, const uint8_t* content, uint32_t len) noexcept;

// Bit strings. `trim` removes trailing zero bits (named-bit lists in DER).
[[nodiscard]] uint32_t SetBitString(Asn1BitStringValue* b, const uint8_t* content, uint32_t len, uint32_t unusedBits,
                                    bool trim) noexcept;
// Named bits from a flag word: its octets least significant first, named bit 0 = 0x80 of octet 0.
[[nodiscard]] uint32_t SetBitStringFromFlags(Asn1BitStringValue* b, uint32_t flags) noexcept;

// Identifiers. `packed` is one length octet followed by the contents.
[[nodiscard]] uint32_t OidToPacked(const Asn1Primitive* oid, uint8_t* out, uint32_t* outLen) noexcept;

// CHOICE values.
[[nodiscard]] uint32_t NewChoice(int32_t index, void* value, Asn1ChoiceValue** out) noexcept;
[[nodiscard]] uint32_t ReleaseChoiceAlternative(const Asn1Descriptor* choice, Asn1ChoiceValue* value) noexcept;

// ANY values. Readers of a stored ANY (GetAsn1AnyInfo, the name copier, the encoder) trust its
// header, so the caller's bytes are taken only as exactly one complete element: trailing octets, a
// second element or a truncated one are 32. Empty input stays allowed and leaves the value empty.
[[nodiscard]] uint32_t SetAnyEncoding(Asn1Primitive* any, const uint8_t* encoding, uint32_t len) noexcept;
[[nodiscard]] uint32_t SetAnyParts(Asn1Primitive* any, uint8_t tagClass, uint8_t constructed, uint32_t tag,
                                   uint32_t word, const uint8_t* content, uint32_t len) noexcept;

// ---- lists --------------------------------------------------------------------------------------

[[nodiscard]] Asn1List* ListCreate() noexcept;
[[nodiscard]] uint32_t ListAppend(Asn1List* list, void* item) noexcept;
// Frees the element with `element` (plain free when null) and closes the gap.
[[nodiscard]] uint32_t ListRemoveAt(Asn1List* list, uint32_t index, const Asn1Descriptor* element) noexcept;
void ListClear(Asn1List* list, const Asn1Descriptor* element) noexcept;
void ListFree(Asn1List* list, const Asn1Descriptor* element) noexcept;
void ListSort(Asn1List* list) noexcept;
// Appends unless an element with the same encoding is present (344).
[[nodiscard]] uint32_t ListAppendUnique(Asn1List* list, const Asn1Descriptor* element, void* item) noexcept;

}  // namespace tv
