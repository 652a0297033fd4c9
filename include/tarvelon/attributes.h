/**
 * @file tarvelon/attributes.h
 * Attribute lists (Attributes ::= SET OF Attribute, RFC 5652 / PKCS #9), keyed by OID; values are
 * complete DER elements.
 *
 * The values of an attribute are always written in DER order; the attributes themselves follow the
 * list's sorted flag: DER order while it is set (a new or decoded list has it set), list order once
 * SetRsaAttributesSorted() has cleared it.
 */
#ifndef TARVELON_ATTRIBUTES_H
#define TARVELON_ATTRIBUTES_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One attribute: Attribute ::= SEQUENCE { attrType OBJECT IDENTIFIER, attrValues SET OF ANY }. */
typedef struct RsaAttribute RsaAttribute;
/**
 * A handle holding one attribute list, or none. A request or a signer hands out the handle of its
 * own list, which the functions below change in place.
 */
typedef struct RsaAttributes RsaAttributes;

/**
 * Makes an attribute of the given type with its first value.
 *
 * @param[out] outAttribute  Receives a new attribute owned by the caller (FreeRsaAttribute()); null on
 *                           failure.
 * @param[in]  inOid         The attribute type, packed (borrowed); an empty OID is refused.
 * @param[in]  in            The value: exactly one complete DER element (borrowed), kept as given.
 * @param[in]  inLen         Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty OID, an empty value or
 *         a value that is not one complete element.
 */
TV_API uint32_t CreateRsaAttribute(RsaAttribute** outAttribute, const uint8_t* inOid, const uint8_t* in, uint32_t inLen);
/**
 * Adds a value to an attribute.
 *
 * @param[in,out] attribute  The attribute (borrowed).
 * @param[in]     in         The value: exactly one complete DER element (borrowed), kept as given.
 * @param[in]     inLen      Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty value or one that is
 *         not one complete element.
 */
TV_API uint32_t AddRsaAttributeValue(RsaAttribute* attribute, const uint8_t* in, uint32_t inLen);
/**
 * Gets the type of an attribute.
 *
 * @param[in]     attribute  The attribute (borrowed).
 * @param[out]    outOid     Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen  Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the attribute has no type.
 */
TV_API uint32_t GetRsaAttributeOid(const RsaAttribute* attribute, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Counts the values of an attribute.
 *
 * @param[in]  attribute  The attribute (borrowed).
 * @param[out] outCount   Receives the number of values.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the attribute has no value at all.
 */
TV_API uint32_t GetRsaAttributeValuesCount(const RsaAttribute* attribute, uint32_t* outCount);
/**
 * Copies one value of an attribute, as the complete DER element.
 *
 * @param[in]     attribute  The attribute (borrowed).
 * @param[in]     index      The value's position, from 0.
 * @param[out]    out        Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the attribute has no value at all,
 *         #TV_ERR_INVALID_ARGUMENT when @p index is out of range.
 */
TV_API uint32_t GetRsaAttributeValue(const RsaAttribute* attribute, uint32_t index, uint8_t* out, uint32_t* outLen);
/**
 * Frees an attribute made by CreateRsaAttribute().
 *
 * @param[in] attribute  The attribute (taken over and freed); null does nothing.
 * @return #TV_OK.
 */
TV_API uint32_t FreeRsaAttribute(RsaAttribute* attribute);

/**
 * Makes a handle holding a new empty list, with the sorted flag set.
 *
 * @param[out] outAttributes  Receives a new handle owned by the caller (FreeRsaAttributes()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateRsaAttributes(RsaAttributes** outAttributes);
/**
 * Appends an attribute of the given type, still without a value, to a list.
 *
 * No check is made for an attribute of the same type already there. A handle without a list gets a
 * new one. Until a value is added the attribute has none: the value getters answer #TV_ERR_ABSENT.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @param[in]     inOid       The attribute type, packed (borrowed); an empty OID is refused.
 * @param[out]    outIndex    Receives the new attribute's position in the list.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty OID.
 */
TV_API uint32_t AddRsaAttributesAttribute(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex);
/**
 * Adds a value to the attribute at a position of a list.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @param[in]     index       The attribute's position, from 0.
 * @param[in]     in          The value: exactly one complete DER element (borrowed), kept as given.
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list,
 *         #TV_ERR_INVALID_ARGUMENT when @p index is out of range or the value is empty or not one
 *         complete element.
 */
TV_API uint32_t AddRsaAttributesAttributeValue(RsaAttributes* attributes, uint32_t index, const uint8_t* in, uint32_t inLen);
/**
 * Appends an attribute of the given type with its first value to a list.
 *
 * A failure adding the value leaves the new attribute, without a value, in the list (and its position
 * in @p outIndex): remove it with RemoveRsaAttributesAttribute2() when that matters.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @param[in]     inOid       The attribute type, packed (borrowed).
 * @param[out]    outIndex    Receives the new attribute's position in the list.
 * @param[in]     in          The value: exactly one complete DER element (borrowed), kept as given.
 * @param[in]     inLen       Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty OID or a value that is
 *         empty or not one complete element.
 */
TV_API uint32_t AddRsaAttributesAttributeWithValue(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex, const uint8_t* in, uint32_t inLen);
/**
 * Counts the attributes of a list.
 *
 * @param[in]  attributes  The handle (borrowed).
 * @param[out] outCount    Receives the number of attributes; 0 for a handle without a list.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetRsaAttributesAttributesCount(const RsaAttributes* attributes, uint32_t* outCount);
/**
 * Gets the type of the attribute at a position of a list.
 *
 * @param[in]     attributes  The handle (borrowed).
 * @param[in]     index       The attribute's position, from 0.
 * @param[out]    outOid      Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen   Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when the handle holds no list or
 *         @p index is out of range.
 */
TV_API uint32_t GetRsaAttributesAttributeOid(const RsaAttributes* attributes, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Counts the values of the attribute at a position of a list.
 *
 * @param[in]  attributes  The handle (borrowed).
 * @param[in]  index       The attribute's position, from 0.
 * @param[out] outCount    Receives the number of values.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list or the
 *         attribute has no value at all, #TV_ERR_INVALID_ARGUMENT when @p index is out of range.
 */
TV_API uint32_t GetRsaAttributesAttributeValuesCount(const RsaAttributes* attributes, uint32_t index, uint32_t* outCount);
/**
 * Copies one value of the attribute at a position of a list, as the complete DER element.
 *
 * @param[in]     attributes  The handle (borrowed).
 * @param[in]     index       The attribute's position, from 0.
 * @param[in]     valueIndex  The value's position within the attribute, from 0.
 * @param[out]    out         Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when the handle holds no list or an
 *         index is out of range, #TV_ERR_ABSENT (311) when the attribute has no value at all.
 */
TV_API uint32_t GetRsaAttributesAttributeValue(const RsaAttributes* attributes, uint32_t index, uint32_t valueIndex, uint8_t* out, uint32_t* outLen);
/**
 * Finds the first attribute of a type in a list.
 *
 * @param[in]  attributes  The handle (borrowed).
 * @param[in]  inOid       The attribute type, packed (borrowed).
 * @param[out] outIndex    Receives the position of the first attribute of that type.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list,
 *         #TV_ERR_NOT_FOUND (322) when no attribute has that type.
 */
TV_API uint32_t FindRsaAttributesAttribute(const RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex);
/**
 * Removes and frees every attribute of a type from a list.
 *
 * The list is walked from the back, so adjacent matches all go in one call.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @param[in]     inOid       The attribute type, packed (borrowed).
 * @return #TV_OK, also when no attribute has that type, or a status code; #TV_ERR_ABSENT (311) when
 *         the handle holds no list.
 */
TV_API uint32_t RemoveRsaAttributesAttribute2(RsaAttributes* attributes, const uint8_t* inOid);
/**
 * Removes and frees every attribute of a list; the list stays, empty (a handle without a list is left
 * as it is).
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearRsaAttributes(RsaAttributes* attributes);
/**
 * Chooses the order in which the attributes of a list are written.
 *
 * A cleared flag writes them in list order: a received set re-encoded exactly as it was signed. The
 * flag belongs to the list: a handle without a list stores nothing, and a list made later has it set.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @param[in]     sorted      Nonzero for DER order (the default), 0 for list order.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetRsaAttributesSorted(RsaAttributes* attributes, uint32_t sorted);
/**
 * Frees the list of a handle; the handle stays usable and gets a new list with the next attribute
 * added.
 *
 * On the handle of a signer's or a request's set this removes the set from its structure.
 *
 * @param[in,out] attributes  The handle (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveRsaAttributes(RsaAttributes* attributes);
/**
 * Frees a handle made by CreateRsaAttributes() or DecodeRsaAttributes(), with its list.
 *
 * Never pass the handle lent by a signer or a request: free their structure instead.
 *
 * @param[in] attributes  The handle (taken over and freed); null does nothing.
 * @return #TV_OK.
 */
TV_API uint32_t FreeRsaAttributes(RsaAttributes* attributes);
/**
 * Appends deep copies of the attributes of another list.
 *
 * A failure keeps the copies already appended. Appending a list to itself copies the attributes it
 * held when the call began.
 *
 * @param[in,out] attributes  The handle receiving the copies (borrowed).
 * @param[in]     source      The handle copied from (borrowed); null appends nothing.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when either handle holds no list.
 */
TV_API uint32_t AppendRsaAttributes(RsaAttributes* attributes, const RsaAttributes* source);
/**
 * Writes a list as a DER SET OF Attribute (an empty list is the empty SET).
 *
 * @param[in]     attributes  The handle (borrowed).
 * @param[out]    out         Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list.
 */
TV_API uint32_t EncodeRsaAttributes(const RsaAttributes* attributes, uint8_t* out, uint32_t* outLen);
/**
 * Reads a SET OF Attribute into a new handle, with the sorted flag set.
 *
 * Octets after the first complete element are ignored.
 *
 * @param[in]  in             The encoding (borrowed).
 * @param[in]  inLen          Octets in @p in.
 * @param[out] outAttributes  Receives a new handle owned by the caller (FreeRsaAttributes()); left as
 *                            it was on failure.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributes(const uint8_t* in, uint32_t inLen, RsaAttributes** outAttributes);

#ifdef __cplusplus
}
#endif

#endif
