/**
 * @file tarvelon/types.h
 * Status codes, ASN.1 type codes and the records shared by every family.
 *
 * Declaration conventions of the public headers (the Java binding generator reads them, keep them
 * regular):
 *   - one declaration per line: `TV_API uint32_t Name(params);`, documented by the comment above it
 *     (see "Documenting a function" below);
 *   - `const uint8_t* in, uint32_t inLen`: input octets and their count;
 *   - `uint8_t* out, uint32_t* outLen`: caller buffer (may be null) and its size, under the size
 *     protocol (@ref size_protocol);
 *   - `void** outValue`, `Type** outX`: receives a new handle owned by the caller;
 *   - `uint32_t* outX`, `int32_t* outX`: scalar results;
 *   - other pointers are borrowed inputs; handles returned by getters are borrowed from their tree.
 *
 * Documenting a function: a first sentence saying what it does; then, where it matters, what the
 * caller must know (kept behaviour, order of operations); one `@param` per parameter with its
 * direction (`[in]`, `[out]`, `[in,out]`) and, for pointers, whether it is borrowed, taken over or
 * handed out owned; `@return` naming the codes particular to the function (those that hold
 * everywhere are listed once, @ref status_codes).
 */
#ifndef TARVELON_TYPES_H
#define TARVELON_TYPES_H

#include <stddef.h> /* NULL and size_t for callers */
#include <stdint.h>

/** Marks a function exported by libtarvelon.so. */
#if defined(__GNUC__)
#define TV_API __attribute__((visibility("default")))
#else
#define TV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** Status codes returned by the functions (@ref status_codes). */
enum {
    TV_OK = 0, /**< Success. */
    TV_ERR_NO_MEMORY = 1, /**< An allocation failed; the trees handed in stay valid. */
    TV_ERR_FILE_SEEK = 3, /**< A file could not be positioned or sized. */
    TV_ERR_FILE_OPEN = 12, /**< A file or folder is missing or cannot be opened. */
    TV_ERR_FILE_SHORT_READ = 46, /**< A file gave fewer octets than its size. */
    TV_ERR_FILE_SHORT_WRITE = 47, /**< A file took fewer octets than were written. */
    TV_ERR_INVALID_ARGUMENT = 32, /**< A required pointer is null, or a number or kind is out of its range. */
    TV_ERR_BUFFER_TOO_SMALL = 49, /**< The caller's buffer is too short; the size needed has been stored. */
    TV_ERR_UNSUPPORTED_TYPE = 300, /**< The operation does not apply to this type of value. */
    TV_ERR_MALFORMED = 302, /**< The input is not a valid encoding of the expected structure. */
    TV_ERR_LENGTH_TOO_LONG = 304, /**< A length field of more than four octets, or a value too long for its place. */
    TV_ERR_BAD_DESCRIPTOR = 305, /**< A descriptor is inconsistent. */
    TV_ERR_NO_ALTERNATIVE = 306, /**< No CHOICE alternative (or kind) matches. */
    TV_ERR_NOT_DER = 307, /**< The input is valid BER but DER is required here. */
    TV_ERR_OID_NOT_FOUND = 308, /**< No entry with this object identifier. */
    TV_ERR_ID_NOT_FOUND = 309, /**< No entry with this identifier or number. */
    TV_ERR_ABSENT = 311, /**< The field asked for is absent. */
    TV_ERR_TIME = 313, /**< A time is outside the range of the time records, or not a valid time. */
    TV_ERR_NOT_SIGNED_DATA = 314, /**< The message is not a CMS SignedData. */
    TV_ERR_KEY_KIND = 317, /**< A key or signature record of an unknown kind. */
    TV_ERR_PEM = 319, /**< The text is not PEM or base64 that can be read. */
    TV_ERR_DIFFERENT = 320, /**< The compared values differ (also the answer of the comparison functions). */
    TV_ERR_NOT_FOUND = 322, /**< The item looked for is not there. */
    TV_ERR_MALFORMED_FOR_PURPOSE = 323, /**< The structure decodes but lacks what this operation needs. */
    TV_ERR_INDEFINITE = 335, /**< An indefinite length where none is allowed, or one never closed. */
    TV_ERR_SEGMENT_TAG = 336, /**< A segment of a constructed string has the wrong tag. */
    TV_ERR_WORK_BUFFER = 338, /**< A result does not fit the function's fixed working buffer. */
    TV_ERR_DUPLICATE = 344 /**< The list already holds an equal entry. */
};

/** Class bits of an identifier octet (Asn1Descriptor::tagClass). */
enum {
    ASN1_CLASS_UNIVERSAL = 0x00, /**< Universal class. */
    ASN1_CLASS_APPLICATION = 0x40, /**< Application class. */
    ASN1_CLASS_CONTEXT = 0x80, /**< Context-specific class. */
    ASN1_CLASS_PRIVATE = 0xC0 /**< Private class. */
};

/** Form bit of an identifier octet (Asn1Descriptor::constructed). */
enum {
    ASN1_PRIMITIVE_FORM = 0x00,  /**< Primitive encoding. */
    ASN1_CONSTRUCTED_FORM = 0x20 /**< Constructed encoding. */
};

/** Flag bits of Asn1Descriptor::flags. */
enum {
    ASN1_FLAG_EXPLICIT = 0x01, /**< The replacing tag wraps the value (EXPLICIT); without it the tag replaces (IMPLICIT). */
    ASN1_FLAG_OPTIONAL = 0x02  /**< The component may be absent (OPTIONAL or DEFAULT). */
};

/** Type codes (Asn1Descriptor::typeCode): universal tag numbers, and bit 7 set for the engine's own kinds. */
enum {
    ASN1_BOOLEAN = 1, /**< BOOLEAN. */
    ASN1_INTEGER = 2, /**< INTEGER. */
    ASN1_BIT_STRING = 3, /**< BIT STRING. */
    ASN1_OCTET_STRING = 4, /**< OCTET STRING. */
    ASN1_NULL = 5, /**< NULL. */
    ASN1_OBJECT_IDENTIFIER = 6, /**< OBJECT IDENTIFIER. */
    ASN1_ENUMERATED = 10, /**< ENUMERATED. */
    ASN1_UTF8_STRING = 12, /**< UTF8String. */
    ASN1_SEQUENCE = 16, /**< SEQUENCE. */
    ASN1_SET = 17, /**< SET. */
    ASN1_NUMERIC_STRING = 18, /**< NumericString. */
    ASN1_PRINTABLE_STRING = 19, /**< PrintableString. */
    ASN1_TELETEX_STRING = 20, /**< TeletexString (T61String). */
    ASN1_VIDEOTEX_STRING = 21, /**< VideotexString. */
    ASN1_IA5_STRING = 22, /**< IA5String. */
    ASN1_UTC_TIME = 23, /**< UTCTime. */
    ASN1_GENERALIZED_TIME = 24, /**< GeneralizedTime. */
    ASN1_GRAPHIC_STRING = 25, /**< GraphicString. */
    ASN1_VISIBLE_STRING = 26, /**< VisibleString. */
    ASN1_GENERAL_STRING = 27, /**< GeneralString. */
    ASN1_UNIVERSAL_STRING = 28, /**< UniversalString. */
    ASN1_BMP_STRING = 30, /**< BMPString. */
    ASN1_CHOICE = 128, /**< CHOICE: one of the alternatives (Asn1ChoiceValue). */
    ASN1_ANY = 129, /**< ANY: a whole element kept as its encoding (Asn1Primitive). */
    ASN1_SEQUENCE_OF = 144, /**< SEQUENCE OF (Asn1List). */
    ASN1_SET_OF = 145 /**< SET OF, written in DER order (Asn1List). */
};

/** Read-only description of one ASN.1 type, or of a component's position in its parent; the engine
 * creates, decodes, encodes, copies, compares and frees the value tree of any descriptor. */
typedef struct Asn1Descriptor {
    uint8_t tagClass;      /**< ASN1_CLASS_* of the replacing tag. */
    uint8_t constructed;   /**< ASN1_CONSTRUCTED_FORM when encoded in constructed form. */
    uint8_t flags;         /**< ASN1_FLAG_EXPLICIT and ASN1_FLAG_OPTIONAL bits. */
    uint8_t typeCode;      /**< ASN1_* type code. */
    int32_t tag;           /**< Replacing tag number, -1 for the universal tag of typeCode. */
    uint32_t valueSize;    /**< SEQUENCE and SET: one pointer-sized slot per component. */
    const struct Asn1Descriptor* const* components; /**< Components, alternatives or the one element type. */
    uint32_t componentCount; /**< Entries in components. */
    const void* defaultValue; /**< Value used for an absent DEFAULT component, or null. */
} Asn1Descriptor;

/** Leaf value: INTEGER, BOOLEAN, strings, times, NULL, identifiers; an ANY holds a whole element. */
typedef struct Asn1Primitive {
    uint32_t word;     /**< Type code once set or decoded; for an ANY the tag number. */
    uint32_t length;   /**< Content octets. */
    uint8_t* content;  /**< Owned copy of the content octets, null when length is 0. */
} Asn1Primitive;

/** BIT STRING value. */
typedef struct Asn1BitStringValue {
    uint32_t unusedBits; /**< 0 to 7: unused bits in the last content octet. */
    uint32_t length;     /**< Content octets without the unused-bits octet. */
    uint8_t* content;    /**< Owned copy of the content octets, null when length is 0. */
} Asn1BitStringValue;

/** CHOICE value. */
typedef struct Asn1ChoiceValue {
    int32_t index;  /**< Chosen alternative, an index into the descriptor's components. */
    void* value;    /**< Its value, null while nothing is chosen. */
} Asn1ChoiceValue;

/** Orders two list items as memcmp does: negative, 0 or positive. */
typedef int (*Asn1ListCompare)(const void* a, const void* b);

/** SEQUENCE OF or SET OF value. */
typedef struct Asn1List {
    uint32_t count;          /**< Items held. */
    void** items;            /**< The items, each a value of the element type. */
    uint32_t capacity;       /**< Room in items. */
    Asn1ListCompare compare; /**< Item order for searching, or null. */
    uint32_t sorted;         /**< A SET OF is written in DER order while set; 1 on creation. */
} Asn1List;

#ifdef __cplusplus
}
#endif

#endif
