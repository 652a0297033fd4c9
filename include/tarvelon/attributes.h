/* Tarvelon: attribute lists (Attributes ::= SET OF Attribute, RFC 5652 / PKCS #9), keyed by
 * OID; values are complete DER elements. */
#ifndef TARVELON_ATTRIBUTES_H
#define TARVELON_ATTRIBUTES_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Attribute ::= SEQUENCE { attrType OBJECT IDENTIFIER, attrValues SET OF ANY } */
typedef struct RsaAttribute RsaAttribute;
/* A handle holding one attribute list (or none); a request hands out the one inside it. */
typedef struct RsaAttributes RsaAttributes;

/* One attribute. Values are complete DER elements. */
TV_API uint32_t CreateRsaAttribute(RsaAttribute** outAttribute, const uint8_t* inOid, const uint8_t* in, uint32_t inLen);
TV_API uint32_t AddRsaAttributeValue(RsaAttribute* attribute, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetRsaAttributeOid(const RsaAttribute* attribute, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t GetRsaAttributeValuesCount(const RsaAttribute* attribute, uint32_t* outCount);
TV_API uint32_t GetRsaAttributeValue(const RsaAttribute* attribute, uint32_t index, uint8_t* out, uint32_t* outLen);
TV_API uint32_t FreeRsaAttribute(RsaAttribute* attribute);

/* Lists. The values of an attribute are always written in DER order; the attributes themselves
 * follow the list's sorted flag (DER order while set, the flag is set on creation). */
TV_API uint32_t CreateRsaAttributes(RsaAttributes** outAttributes);
TV_API uint32_t AddRsaAttributesAttribute(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex);
TV_API uint32_t AddRsaAttributesAttributeValue(RsaAttributes* attributes, uint32_t index, const uint8_t* in, uint32_t inLen);
/* A failure adding the value leaves the new attribute, without a value, in the list. */
TV_API uint32_t AddRsaAttributesAttributeWithValue(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetRsaAttributesAttributesCount(const RsaAttributes* attributes, uint32_t* outCount);
TV_API uint32_t GetRsaAttributesAttributeOid(const RsaAttributes* attributes, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t GetRsaAttributesAttributeValuesCount(const RsaAttributes* attributes, uint32_t index, uint32_t* outCount);
TV_API uint32_t GetRsaAttributesAttributeValue(const RsaAttributes* attributes, uint32_t index, uint32_t valueIndex, uint8_t* out, uint32_t* outLen);
TV_API uint32_t FindRsaAttributesAttribute(const RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex);
/* Removes every attribute with the OID (walking backwards); no match is not an error. */
TV_API uint32_t RemoveRsaAttributesAttribute2(RsaAttributes* attributes, const uint8_t* inOid);
TV_API uint32_t ClearRsaAttributes(RsaAttributes* attributes);
/* sorted 0 writes the attributes in list order (a received set re-encoded as it was signed). */
TV_API uint32_t SetRsaAttributesSorted(RsaAttributes* attributes, uint32_t sorted);
/* Frees the list; the handle stays usable. */
TV_API uint32_t RemoveRsaAttributes(RsaAttributes* attributes);
TV_API uint32_t FreeRsaAttributes(RsaAttributes* attributes);
/* Appends deep copies of the source's attributes; a failure keeps those already appended. */
TV_API uint32_t AppendRsaAttributes(RsaAttributes* attributes, const RsaAttributes* source);
TV_API uint32_t EncodeRsaAttributes(const RsaAttributes* attributes, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributes(const uint8_t* in, uint32_t inLen, RsaAttributes** outAttributes);

#ifdef __cplusplus
}
#endif

#endif
