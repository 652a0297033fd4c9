/*
 * Tarvelon: records, type codes and status codes shared by every family.
 *
 * Declaration conventions (the Java binding generator reads them, keep them regular):
 *   - one declaration per line: `TV_API uint32_t Name(params);`
 *   - `const uint8_t* in, uint32_t inLen`          input octets and their count
 *   - `uint8_t* out, uint32_t* outLen`              caller buffer (may be null) and its size, size protocol:
 *                                                   null buffer stores the size and returns 0, a short one
 *                                                   stores the size and returns TV_ERR_BUFFER_TOO_SMALL (49)
 *   - `void** outValue`, `Type** outX`              receives a new handle owned by the caller
 *   - `uint32_t* outX`, `int32_t* outX`             scalar results
 *   - other pointers are borrowed inputs; handles returned by getters are borrowed from their tree.
 * Buffers that the library allocates for the caller (Asn1Encode) come from malloc: release them with free().
 */
#ifndef TARVELON_TYPES_H
#define TARVELON_TYPES_H

#include <stddef.h> /* NULL and size_t for callers */
#include <stdint.h>

#if defined(__GNUC__)
#define TV_API __attribute__((visibility("default")))
#else
#define TV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Status codes. */
enum {
    TV_OK = 0,
    TV_ERR_NO_MEMORY = 1,
    TV_ERR_FILE_SEEK = 3,
    TV_ERR_FILE_OPEN = 12,
    TV_ERR_FILE_SHORT_READ = 46,
    TV_ERR_FILE_SHORT_WRITE = 47,
    TV_ERR_INVALID_ARGUMENT = 32,
    TV_ERR_BUFFER_TOO_SMALL = 49,
    TV_ERR_UNSUPPORTED_TYPE = 300,
    TV_ERR_MALFORMED = 302,
    TV_ERR_LENGTH_TOO_LONG = 304,
    TV_ERR_BAD_DESCRIPTOR = 305,
    TV_ERR_NO_ALTERNATIVE = 306,
    TV_ERR_NOT_DER = 307,
    TV_ERR_OID_NOT_FOUND = 308,
    TV_ERR_ID_NOT_FOUND = 309,
    TV_ERR_ABSENT = 311,
    TV_ERR_TIME = 313,
    TV_ERR_NOT_SIGNED_DATA = 314,
    TV_ERR_KEY_KIND = 317,
    TV_ERR_PEM = 319,
    TV_ERR_DIFFERENT = 320,
    TV_ERR_NOT_FOUND = 322,
    TV_ERR_MALFORMED_FOR_PURPOSE = 323,
    TV_ERR_INDEFINITE = 335,
    TV_ERR_SEGMENT_TAG = 336,
    TV_ERR_WORK_BUFFER = 338,
    TV_ERR_DUPLICATE = 344
};

/* Identifier class bits (Asn1TagClass). */
enum {
    ASN1_CLASS_UNIVERSAL = 0x00,
    ASN1_CLASS_APPLICATION = 0x40,
    ASN1_CLASS_CONTEXT = 0x80,
    ASN1_CLASS_PRIVATE = 0xC0
};

/* Asn1Descriptor.constructed */
enum { ASN1_PRIMITIVE_FORM = 0x00, ASN1_CONSTRUCTED_FORM = 0x20 };

/* Asn1Descriptor.flags */
enum { ASN1_FLAG_EXPLICIT = 0x01, ASN1_FLAG_OPTIONAL = 0x02 };

/* Type codes (Asn1TypeCode): universal tag numbers, and bit 7 for the engine's own kinds. */
enum {
    ASN1_BOOLEAN = 1,
    ASN1_INTEGER = 2,
    ASN1_BIT_STRING = 3,
    ASN1_OCTET_STRING = 4,
    ASN1_NULL = 5,
    ASN1_OBJECT_IDENTIFIER = 6,
    ASN1_ENUMERATED = 10,
    ASN1_UTF8_STRING = 12,
    ASN1_SEQUENCE = 16,
    ASN1_SET = 17,
    ASN1_NUMERIC_STRING = 18,
    ASN1_PRINTABLE_STRING = 19,
    ASN1_TELETEX_STRING = 20,
    ASN1_VIDEOTEX_STRING = 21,
    ASN1_IA5_STRING = 22,
    ASN1_UTC_TIME = 23,
    ASN1_GENERALIZED_TIME = 24,
    ASN1_GRAPHIC_STRING = 25,
    ASN1_VISIBLE_STRING = 26,
    ASN1_GENERAL_STRING = 27,
    ASN1_UNIVERSAL_STRING = 28,
    ASN1_BMP_STRING = 30,
    ASN1_CHOICE = 128,
    ASN1_ANY = 129,
    ASN1_SEQUENCE_OF = 144,
    ASN1_SET_OF = 145
};

/* Read-only description of one ASN.1 type or component position. */
typedef struct Asn1Descriptor {
    uint8_t tagClass;      /* ASN1_CLASS_* */
    uint8_t constructed;   /* 0x20 when encoded in constructed form */
    uint8_t flags;         /* ASN1_FLAG_EXPLICIT | ASN1_FLAG_OPTIONAL */
    uint8_t typeCode;      /* ASN1_* type code */
    int32_t tag;           /* replacing tag number, -1 for the universal tag of typeCode */
    uint32_t valueSize;    /* SEQUENCE/SET: one pointer-sized slot per component */
    const struct Asn1Descriptor* const* components; /* components, alternatives or the one element */
    uint32_t componentCount;
    const void* defaultValue; /* value of this type used for an absent DEFAULT component */
} Asn1Descriptor;

/* Leaf value: INTEGER, BOOLEAN, strings, times, NULL, identifiers; ANY holds a whole element. */
typedef struct Asn1Primitive {
    uint32_t word;     /* type code once set or decoded; tag number for ANY */
    uint32_t length;   /* content octets */
    uint8_t* content;  /* owned copy, null when length is 0 */
} Asn1Primitive;

typedef struct Asn1BitStringValue {
    uint32_t unusedBits; /* 0..7, unused bits in the last content octet */
    uint32_t length;     /* content octets without the unused-bits octet */
    uint8_t* content;
} Asn1BitStringValue;

typedef struct Asn1ChoiceValue {
    int32_t index;  /* chosen alternative */
    void* value;    /* its value, null while nothing is chosen */
} Asn1ChoiceValue;

typedef int (*Asn1ListCompare)(const void* a, const void* b);

/* SEQUENCE OF / SET OF value. */
typedef struct Asn1List {
    uint32_t count;
    void** items;
    uint32_t capacity;
    Asn1ListCompare compare;
    uint32_t sorted; /* SET OF is written in DER order while set; 1 on creation */
} Asn1List;

#ifdef __cplusplus
}
#endif

#endif
