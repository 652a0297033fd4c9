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

#ifdef __cplusplus
}
#endif

#endif
