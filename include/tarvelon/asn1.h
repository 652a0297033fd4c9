/**
 * @file tarvelon/asn1.h
 * The generic ASN.1 engine: descriptors, value trees, the BER/DER codec, object identifiers,
 * leaves and lists.
 */
#ifndef TARVELON_ASN1_H
#define TARVELON_ASN1_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Value trees. */
/**
 * Creates the empty value tree of a descriptor.
 *
 * An OPTIONAL descriptor gives a copy of its default value, or null when it has none (use
 * CreateOptionalAsn1Sequence() to build an optional structure). A structure gets one slot per
 * component, filled the same way; a CHOICE gets a record with no value, a list an empty list. With
 * @p leaves 0 the leaf components stay null, and a leaf descriptor leaves @p outValue untouched:
 * set it to null before the call.
 *
 * @param[in]  descriptor  Type of the tree (borrowed).
 * @param[out] outValue    Receives a new tree owned by the caller (FreeAsn1Object()), or null.
 * @param[in]  leaves      Non-zero to create empty leaf records as well, 0 to leave them null.
 * @return #TV_OK, or a status code; #TV_ERR_UNSUPPORTED_TYPE (300) for a type code the engine does
 *         not know.
 */
TV_API uint32_t CreateAsn1Object(const Asn1Descriptor* descriptor, void** outValue, uint32_t leaves);
/**
 * Creates the empty structure of an OPTIONAL SEQUENCE or SET descriptor, which CreateAsn1Object()
 * would leave null.
 *
 * @param[in]  descriptor  An OPTIONAL SEQUENCE or SET descriptor (borrowed).
 * @param[out] outValue    Receives a new tree owned by the caller (FreeAsn1Object()).
 * @param[in]  leaves      Non-zero to create empty leaf records for the components, 0 to leave them null.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a descriptor that is not
 *         OPTIONAL or not a SEQUENCE or SET.
 */
TV_API uint32_t CreateOptionalAsn1Sequence(const Asn1Descriptor* descriptor, void** outValue, uint32_t leaves);
/**
 * Frees a value tree and everything it holds.
 *
 * @param[in] descriptor  Type of the tree (borrowed); null frees nothing.
 * @param[in] value       The tree (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeAsn1Object(const Asn1Descriptor* descriptor, void* value);
/**
 * Compares two value trees of the same descriptor, component by component.
 *
 * Leaves compare by their content octets only (a bit string also by its unused bits); two absent
 * values are equal, one absent value differs. NULL, ENUMERATED, CHOICE and ANY values cannot be
 * compared: reaching one fails, also inside a structure.
 *
 * @param[in]  descriptor  Type of both trees (borrowed).
 * @param[in]  valueA      First tree (borrowed), may be null.
 * @param[in]  valueB      Second tree (borrowed), may be null.
 * @param[out] outEqual    Receives 1 when the trees are equal, 0 otherwise.
 * @return #TV_OK, or a status code; #TV_ERR_UNSUPPORTED_TYPE (300) for a value that cannot be
 *         compared, #TV_ERR_BAD_DESCRIPTOR (305) for a list descriptor without one element type.
 */
TV_API uint32_t CompareAsn1Objects(const Asn1Descriptor* descriptor, const void* valueA, const void* valueB, uint32_t* outEqual);

/**
 * Names the module and line of the most recent failure anywhere in the process.
 *
 * The record is written where a failure is detected and is never cleared by success; it is shared
 * by all threads (@ref threads).
 *
 * @param[out] outLine  Receives the source line of the failure (0 before any failure), or null.
 * @return The module as "tarvelon/<Module>.cpp" (static text, do not free), or null before any
 *         failure.
 */
TV_API const char* GetLastFileErrorAsn(uint32_t* outLine);

/* Decoding and encoding. */
/**
 * Reads the identifier and length octets of the element at the start of a buffer.
 *
 * For an indefinite length the content length reported is the rest of the input. With
 * @p outIndefinite given, the header alone is read and the element need not fit in @p inLen: the
 * caller checks the length itself (behaviour kept). With @p outIndefinite null, a definite length
 * running past @p inLen is refused.
 *
 * @param[in]  in              The encoding (borrowed).
 * @param[in]  inLen           Octets in @p in.
 * @param[out] outClass        Receives the class bits (ASN1_CLASS_*).
 * @param[out] outConstructed  Receives ASN1_CONSTRUCTED_FORM or ASN1_PRIMITIVE_FORM.
 * @param[out] outTag          Receives the tag number.
 * @param[out] outContentLen   Receives the content length (see above for an indefinite length).
 * @param[out] outIndefinite   Receives 1 for an indefinite length, 0 otherwise; or null.
 * @param[out] outHeaderLen    Receives the octets of identifier and length.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetAsn1ObjectInfo(const uint8_t* in, uint32_t inLen, uint8_t* outClass, uint8_t* outConstructed, uint32_t* outTag, uint32_t* outContentLen, uint32_t* outIndefinite, uint32_t* outHeaderLen);
/**
 * Decodes one element (BER) into a new value tree of a descriptor.
 *
 * Indefinite and non-minimal lengths and segmented OCTET STRINGs are read; BOOLEAN and INTEGER
 * contents must be DER. Octets after the last known component of a definite structure are
 * skipped; octets after the element are left to the caller (@p outConsumed). A leaf keeps the
 * descriptor's type code, not the tag read. For an OPTIONAL descriptor, empty input or an element
 * with another tag is not an error: @p outValue receives its default value or null, and nothing is
 * consumed.
 *
 * @param[in]  in           The encoding (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[in]  descriptor   Type to decode (borrowed).
 * @param[out] outValue     Receives a new tree owned by the caller (FreeAsn1Object()); null on failure.
 * @param[out] outConsumed  Receives the octets read, or null.
 * @return #TV_OK, or a status code; #TV_ERR_BAD_DESCRIPTOR (305) for an inconsistent descriptor,
 *         #TV_ERR_UNSUPPORTED_TYPE (300) for a leaf type the engine cannot decode,
 *         #TV_ERR_INVALID_ARGUMENT also for a segmented BIT STRING, which is not read.
 */
TV_API uint32_t Asn1DecodeItem(const uint8_t* in, uint32_t inLen, const Asn1Descriptor* descriptor, void** outValue, uint32_t* outConsumed);
/**
 * Encodes a value tree as DER into a buffer the library allocates.
 *
 * Absent OPTIONAL components and DEFAULT components equal to their default are left out; a SET OF
 * is written in DER order while its list is sorted (SetAsn1ListSorted()), otherwise in list order.
 *
 * @param[in]  value       The tree (borrowed).
 * @param[in]  descriptor  Its type (borrowed).
 * @param[out] outBuffer   Receives a new buffer of the encoding, released with `free`; or null to
 *                         ask only the size.
 * @param[out] outLen      Receives the size of the encoding.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required component is null,
 *         #TV_ERR_NO_ALTERNATIVE (306) for a CHOICE with no valid alternative chosen,
 *         #TV_ERR_UNSUPPORTED_TYPE (300) for a SET structure (SET OF is supported) or an unknown type,
 *         #TV_ERR_WORK_BUFFER (338) for an encoding over 4 GiB.
 */
TV_API uint32_t Asn1Encode(const void* value, const Asn1Descriptor* descriptor, uint8_t** outBuffer, uint32_t* outLen);
/**
 * Encodes a value tree as DER into a caller buffer; the same encoding as Asn1Encode().
 *
 * @param[in]     value       The tree (borrowed).
 * @param[in]     descriptor  Its type (borrowed).
 * @param[out]    out         Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; the codes of Asn1Encode().
 */
TV_API uint32_t GetAsn1EncodedValue(const void* value, const Asn1Descriptor* descriptor, uint8_t* out, uint32_t* outLen);

/* Object identifiers; "packed" is one length octet followed by the DER contents. */
/**
 * Tests whether two packed object identifiers are the same.
 *
 * @param[in] packedA  First identifier, packed (borrowed), may be null.
 * @param[in] packedB  Second identifier, packed (borrowed), may be null.
 * @return 1 when both hold the same octets, 0 when they differ or either is null.
 */
TV_API uint32_t IsOidEquals(const uint8_t* packedA, const uint8_t* packedB);
/**
 * Tests whether a packed object identifier equals an identifier value of a tree.
 *
 * @param[in] packed   The identifier, packed (borrowed), may be null.
 * @param[in] oidValue The identifier leaf (borrowed), may be null.
 * @return 1 when both hold the same contents, 0 when they differ or either is null.
 */
TV_API uint32_t IsOidAndAsn1ObjectIdentifierEquals(const uint8_t* packed, const Asn1Primitive* oidValue);
/**
 * Writes a packed object identifier as a DER OBJECT IDENTIFIER element.
 *
 * @param[in]     packed  The identifier, packed (borrowed); its contents are not checked.
 * @param[out]    out     Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeAsn1Oid(const uint8_t* packed, uint8_t* out, uint32_t* outLen);
/**
 * Reads an OBJECT IDENTIFIER element into the packed form.
 *
 * Octets after the element are ignored; the contents are copied unchecked.
 *
 * @param[in]     in      The element (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type,
 *         #TV_ERR_INVALID_ARGUMENT also for contents over 255 octets, which have no packed form.
 */
TV_API uint32_t DecodeAsn1Oid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a packed object identifier as NUL-terminated dotted text such as "1.2.643.7.1.1.1.1".
 *
 * The first two numbers are the first encoded arc divided by 40 and its remainder, so identifiers
 * from 2.40 on read with a first number over 2: 2.999 reads "26.39" (kept, as stored texts are
 * compared with these). Arcs over 32 bits wrap. An empty identifier reads "0.0".
 *
 * @param[in]     packed  The identifier, packed (borrowed).
 * @param[out]    out     Caller buffer for the text, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the characters written or needed, terminator included
 *                        (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when the last arc is not
 *         terminated.
 */
TV_API uint32_t ConvertOidToString(const uint8_t* packed, char* out, uint32_t* outLen);
/**
 * Converts dotted text such as "1.2.643.7.1.1.1.1" into a packed object identifier.
 *
 * Each number is read as far as its digits go (text after them, up to the next dot, is ignored,
 * and "-1" wraps); a number reading as 0 must be exactly "0". The first two numbers are not
 * range-checked. A single number gets a second arc 0; the empty text gives the empty identifier.
 *
 * @param[in]     text    NUL-terminated dotted text (borrowed).
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty or non-numeric
 *         piece, more than 42 numbers, or contents over 255 octets.
 */
TV_API uint32_t ConvertStringToOid(const char* text, uint8_t* out, uint32_t* outLen);

/* Leaves. */
/**
 * Copies the content octets of a leaf (for an ANY, its whole element).
 *
 * @param[in]     value   The leaf (borrowed).
 * @param[out]    out     Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the leaf claims contents it does not
 *         hold.
 */
TV_API uint32_t GetAsn1Value(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
/**
 * Copies the content octets of a leaf together with its type word (Asn1Primitive::word).
 *
 * The word is stored only when @p out is given, not on a size query.
 *
 * @param[in]     value    The leaf (borrowed).
 * @param[out]    outWord  Receives the type code (for an ANY, its tag number or first identifier octet).
 * @param[out]    out      Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) as for GetAsn1Value().
 */
TV_API uint32_t GetAsn1ValueAndType(const Asn1Primitive* value, uint32_t* outWord, uint8_t* out, uint32_t* outLen);
/**
 * Tells the number of content octets of a leaf.
 *
 * @param[in] value  The leaf (borrowed), may be null.
 * @return The number of content octets; 0 for a null leaf. Not a status.
 */
TV_API uint32_t GetAsn1ValueLength(const Asn1Primitive* value);
/**
 * Reads a BOOLEAN leaf.
 *
 * @param[in]  value    The leaf (borrowed).
 * @param[out] outFlag  Receives 1 for TRUE, 0 for FALSE.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a leaf without contents,
 *         #TV_ERR_NOT_DER (307) for contents other than one octet 0x00 or 0xFF.
 */
TV_API uint32_t GetAsn1Boolean(const Asn1Primitive* value, uint32_t* outFlag);
/**
 * Checks that a leaf is a BOOLEAN in DER: type word ASN1_BOOLEAN, one octet 0x00 or 0xFF.
 *
 * @param[in] value  The leaf (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_DER (307) when it is not.
 */
TV_API uint32_t CheckAsn1Boolean(const Asn1Primitive* value);
/**
 * Copies an INTEGER leaf as little-endian two's complement octets, the stored octets reversed.
 *
 * @param[in]     value   The leaf (borrowed).
 * @param[out]    out     Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a leaf without contents.
 */
TV_API uint32_t GetAsn1Integer(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
/**
 * Reads an INTEGER leaf of at most four octets as a little-endian 32-bit number, sign-extended.
 *
 * @param[in]  value     The leaf (borrowed).
 * @param[out] outInt32  Caller buffer of four octets for the number, little-endian.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a leaf without contents,
 *         #TV_ERR_BUFFER_TOO_SMALL (49) for an integer of more than four octets.
 */
TV_API uint32_t GetAsn1Int32(const Asn1Primitive* value, uint8_t* outInt32);
/**
 * Checks that a leaf is an INTEGER in DER: type word ASN1_INTEGER, at least one octet, no
 * redundant leading 0x00 or 0xFF.
 *
 * @param[in] value  The leaf (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_DER (307) when it is not.
 */
TV_API uint32_t CheckAsn1Integer(const Asn1Primitive* value);
/**
 * Stores a little-endian two's complement number in a leaf, making it an INTEGER.
 *
 * Redundant sign octets at the most significant end are dropped, so the stored contents are DER.
 *
 * @param[in,out] value            The leaf (borrowed); its former contents are freed.
 * @param[in]     littleEndian     The number's octets, least significant first (borrowed).
 * @param[in]     littleEndianLen  Octets in @p littleEndian, at least 1.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a length of 0.
 */
TV_API uint32_t SetAsn1Integer(Asn1Primitive* value, const uint8_t* littleEndian, uint32_t littleEndianLen);
/**
 * Stores a 32-bit number in a leaf, making it an INTEGER in DER.
 *
 * @param[in,out] value   The leaf (borrowed); its former contents are freed.
 * @param[in]     number  The number.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetAsn1Int32(Asn1Primitive* value, int32_t number);
/**
 * Allocates an INTEGER leaf holding a 32-bit number in DER.
 *
 * @param[in] number  The number.
 * @return A new leaf owned by the caller (FreeAsn1Object() with an INTEGER descriptor), or null
 *         when memory runs out.
 */
TV_API Asn1Primitive* AllocAsn1Integer(int32_t number);
/**
 * Allocates an INTEGER leaf holding big-endian octets exactly as given.
 *
 * The octets are not made minimal: a caller wanting DER passes DER contents.
 *
 * @param[in] bigEndian     The number's octets, most significant first (borrowed); may be null
 *                          when @p bigEndianLen is 0.
 * @param[in] bigEndianLen  Octets in @p bigEndian.
 * @return A new leaf owned by the caller (FreeAsn1Object() with an INTEGER descriptor), or null
 *         for null octets with a non-zero length or when memory runs out.
 */
TV_API Asn1Primitive* AllocAsn1Integer_s(const uint8_t* bigEndian, uint32_t bigEndianLen);
/**
 * Allocates a BOOLEAN leaf.
 *
 * @param[in] flag  Non-zero for TRUE (stored as 0xFF), 0 for FALSE.
 * @return A new leaf owned by the caller (FreeAsn1Object() with a BOOLEAN descriptor), or null
 *         when memory runs out.
 */
TV_API Asn1Primitive* AllocAsn1Boolean(uint32_t flag);
/**
 * Writes a 32-bit number as a DER INTEGER element.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeAsn1Int32(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads an INTEGER element of at most four content octets as a little-endian 32-bit number.
 *
 * @param[in]  in        The element (borrowed), DER contents; octets after it are ignored.
 * @param[in]  inLen     Octets in @p in, at least 1.
 * @param[out] outInt32  Caller buffer of four octets for the number, little-endian, sign-extended.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an integer of more than four
 *         octets.
 */
TV_API uint32_t DecodeAsn1Int32(const uint8_t* in, uint32_t inLen, uint8_t* outInt32);
/**
 * Copies the contents of a BIT STRING value and its count of unused bits.
 *
 * The unused bits are returned as stored, including any padding bits a decoded value carried.
 *
 * @param[in]     value          The bit string (borrowed).
 * @param[out]    outUnusedBits  Receives the unused bits in the last octet (0 to 7), or null.
 * @param[out]    out            Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a bit string without contents,
 *         also an empty one.
 */
TV_API uint32_t GetAsn1BitString(const Asn1BitStringValue* value, uint8_t* outUnusedBits, uint8_t* out, uint32_t* outLen);
/**
 * Copies the whole element, identifier and length included, held by an ANY value.
 *
 * @param[in]     value   The ANY value (borrowed).
 * @param[out]    out     Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) as for GetAsn1Value().
 */
TV_API uint32_t GetAsn1AnyValue(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
/**
 * Reads the identifier and length of the element held by an ANY value.
 *
 * For an indefinite length the content length counts up to the end of the element, its
 * end-of-contents octets included.
 *
 * @param[in]  value           The ANY value (borrowed).
 * @param[out] outClass        Receives the class bits (ASN1_CLASS_*).
 * @param[out] outConstructed  Receives ASN1_CONSTRUCTED_FORM or ASN1_PRIMITIVE_FORM.
 * @param[out] outTag          Receives the tag number.
 * @param[out] outContentLen   Receives the content length.
 * @param[out] outHeaderLen    Receives the octets of identifier and length.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a value without contents.
 */
TV_API uint32_t GetAsn1AnyInfo(const Asn1Primitive* value, uint8_t* outClass, uint8_t* outConstructed, uint32_t* outTag, uint32_t* outContentLen, uint32_t* outHeaderLen);
/**
 * Steps from a CHOICE value to its chosen alternative: replaces the value by the alternative's
 * value and the descriptor by the alternative's descriptor.
 *
 * A freshly created CHOICE has alternative 0 and no value, so the value received may be null.
 *
 * @param[in,out] inOutValue       The CHOICE value (borrowed); receives the alternative's value,
 *                                 lent by the CHOICE (do not free).
 * @param[in,out] inOutDescriptor  The CHOICE descriptor (borrowed); receives the alternative's
 *                                 descriptor.
 * @return #TV_OK, or a status code; #TV_ERR_NO_ALTERNATIVE (306) when the chosen index is not one
 *         of the descriptor's alternatives.
 */
TV_API uint32_t GetAsn1ChoiceUnderlyingType(void** inOutValue, const Asn1Descriptor** inOutDescriptor);

/* Lists and the octet-string collection (SEQUENCE OF OCTET STRING). */
/**
 * Tells the number of items of a SEQUENCE OF or SET OF value.
 *
 * @param[in] list  The list (borrowed), may be null.
 * @return The number of items; 0 for a null list. Not a status.
 */
TV_API uint32_t GetAsn1ListLength(const Asn1List* list);
/**
 * Gives one item of a list.
 *
 * @param[in]  list     The list (borrowed).
 * @param[in]  index    Position from 0.
 * @param[out] outItem  Receives the item, lent by @p list (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range.
 */
TV_API uint32_t GetAsn1ListItem(const Asn1List* list, int32_t index, void** outItem);
/**
 * Chooses whether a SET OF list is written in DER order (sorted by encoding) or in list order.
 *
 * Lists start sorted; turning it off keeps the caller's order, which is not DER.
 *
 * @param[in,out] list    The list (borrowed); null is ignored.
 * @param[in]     sorted  Non-zero for DER order, 0 for list order.
 * @return #TV_OK always.
 */
TV_API uint32_t SetAsn1ListSorted(Asn1List* list, uint32_t sorted);
/**
 * Creates an empty collection of octet strings.
 *
 * @param[out] outList  Receives a new collection owned by the caller (FreeOctetStrings()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOctetStrings(Asn1List** outList);
/**
 * Appends a copy of some octets to a collection of octet strings.
 *
 * @param[in,out] list   The collection (borrowed).
 * @param[in]     in     The octets (borrowed, copied); may be null when @p inLen is 0.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddOctetStringsValue(Asn1List* list, const uint8_t* in, uint32_t inLen);
/**
 * Tells the number of octet strings in a collection.
 *
 * @param[in]  list      The collection (borrowed).
 * @param[out] outCount  Receives the number of octet strings.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOctetStringsCount(const Asn1List* list, uint32_t* outCount);
/**
 * Copies one octet string of a collection.
 *
 * @param[in]     list    The collection (borrowed).
 * @param[in]     index   Position from 0.
 * @param[out]    out     Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range.
 */
TV_API uint32_t GetOctetStringsValue(const Asn1List* list, uint32_t index, uint8_t* out, uint32_t* outLen);
/**
 * Frees a collection of octet strings and the strings it holds.
 *
 * @param[in] list  The collection (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOctetStrings(Asn1List* list);

#ifdef __cplusplus
}
#endif

#endif
