/**
 * @file tarvelon/extensions.h
 * X.509 extensions (RFC 5280 Extension, Extensions) keyed by OID with opaque values, one at a time
 * and as lists.
 *
 * OIDs are packed (@ref size_protocol). The typed values that go into an extension's extnValue are
 * built and read by the codecs of extension_values.h and private_extensions.h. The decoders read the
 * first element of their input and ignore any octets after it.
 */
#ifndef TARVELON_EXTENSIONS_H
#define TARVELON_EXTENSIONS_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * One extension: `Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE,
 * extnValue OCTET STRING }`.
 */
typedef struct X509Extension X509Extension;
/**
 * A handle holding one list of extensions, or none. The certificate, CRL, CRL-entry, OCSP and
 * time-stamp getters hand out the handle that lives inside their structure: a structure without
 * extensions gives a handle without a list, and adding to it creates the list in place.
 */
typedef struct X509Extensions X509Extensions;

/**
 * Creates an extension from its OID, critical flag and value.
 *
 * The flag is written only when true, as its DEFAULT requires.
 *
 * @param[out] outExtension  Receives a new extension owned by the caller (FreeX509Extension()); null
 *                           on failure.
 * @param[in]  inOid         The packed extnID (borrowed).
 * @param[in]  critical      Non-zero for a critical extension.
 * @param[in]  inValue       The extnValue contents, normally the DER of the typed value (borrowed,
 *                           copied, not checked); required even when @p inValueLen is 0.
 * @param[in]  inValueLen    Octets in @p inValue.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509Extension(X509Extension** outExtension, const uint8_t* inOid, int critical, const uint8_t* inValue, uint32_t inValueLen);
/**
 * Replaces the OID, critical flag and value of an extension; on failure it stays as it was.
 *
 * @param[in,out] extension   The extension (borrowed).
 * @param[in]     inOid       The packed extnID (borrowed).
 * @param[in]     critical    Non-zero for a critical extension.
 * @param[in]     inValue     The extnValue contents (borrowed, copied); required even when
 *                            @p inValueLen is 0.
 * @param[in]     inValueLen  Octets in @p inValue.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509Extension(X509Extension* extension, const uint8_t* inOid, uint32_t critical, const uint8_t* inValue, uint32_t inValueLen);
/**
 * Copies out the OID, critical flag and value of an extension.
 *
 * Both sizes are stored whatever the outcome, so one call with two null buffers asks for both.
 *
 * @param[in]     extension    The extension (borrowed).
 * @param[out]    outOid       Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen    Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outCritical  Receives 1 for a critical extension, 0 otherwise; may be null.
 * @param[out]    outValue     Caller buffer for the extnValue contents, or null to ask their size.
 * @param[in,out] outValueLen  Room in @p outValue; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an OID of more than 255 content
 *         octets, which has no packed form.
 */
TV_API uint32_t GetX509Extension(const X509Extension* extension, uint8_t* outOid, uint32_t* outOidLen, uint32_t* outCritical, uint8_t* outValue, uint32_t* outValueLen);
/**
 * Writes an extension as DER.
 *
 * @param[in]     extension  The extension (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeX509Extension(const X509Extension* extension, uint8_t* out, uint32_t* outLen);
/**
 * Reads one DER Extension.
 *
 * @param[in]  in            The DER (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outExtension  Receives a new extension owned by the caller (FreeX509Extension()),
 *                           stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509Extension(const uint8_t* in, uint32_t inLen, X509Extension** outExtension);
/**
 * Frees an extension made by CreateX509Extension() or DecodeX509Extension().
 *
 * @param[in] extension  The extension (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeX509Extension(X509Extension* extension);

/**
 * Creates a handle holding an empty extension list.
 *
 * @param[out] outExtensions  Receives a new handle owned by the caller (FreeX509Extensions()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509Extensions(X509Extensions** outExtensions);
/**
 * Appends an extension built from its OID, critical flag and value to a list.
 *
 * A handle without a list gets a new one. An extension with the same OID already in the list is
 * not looked for.
 *
 * @param[in,out] extensions  The list handle (borrowed).
 * @param[in]     inOid       The packed extnID (borrowed).
 * @param[in]     critical    Non-zero for a critical extension.
 * @param[in]     inValue     The extnValue contents (borrowed, copied); required even when
 *                            @p inValueLen is 0.
 * @param[in]     inValueLen  Octets in @p inValue.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddX509ExtensionsExtension(X509Extensions* extensions, const uint8_t* inOid, int critical, const uint8_t* inValue, uint32_t inValueLen);
/**
 * Counts the extensions of a list; a handle without a list counts 0.
 *
 * @param[in]  extensions  The list handle (borrowed).
 * @param[out] outCount    Receives the number of extensions.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509ExtensionsExtensionsCount(const X509Extensions* extensions, uint32_t* outCount);
/**
 * Copies out the OID, critical flag and value of the extension at an index.
 *
 * Both sizes are stored whatever the outcome, so one call with two null buffers asks for both.
 *
 * @param[in]     extensions   The list handle (borrowed).
 * @param[in]     index        Position in the list, from 0.
 * @param[out]    outOid       Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen    Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outCritical  Receives 1 for a critical extension, 0 otherwise; may be null.
 * @param[out]    outValue     Caller buffer for the extnValue contents, or null to ask their size.
 * @param[in,out] outValueLen  Room in @p outValue; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list,
 *         #TV_ERR_INVALID_ARGUMENT for an index past the end or an OID of more than 255 content
 *         octets.
 */
TV_API uint32_t GetX509ExtensionsExtension(const X509Extensions* extensions, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, uint32_t* outCritical, uint8_t* outValue, uint32_t* outValueLen);
/**
 * Finds the first extension of a list with an OID.
 *
 * @param[in]  extensions  The list handle (borrowed).
 * @param[in]  inOid       The packed OID looked for (borrowed).
 * @param[out] outIndex    Receives its index.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when no extension has the OID, also
 *         when the handle holds no list.
 */
TV_API uint32_t FindX509Extension(const X509Extensions* extensions, const uint8_t* inOid, uint32_t* outIndex);
/**
 * Copies out the value of the first extension of a list with an OID.
 *
 * @param[in]     extensions   The list handle (borrowed).
 * @param[in]     inOid        The packed OID looked for (borrowed).
 * @param[out]    outValue     Caller buffer for the extnValue contents, or null to ask their size.
 * @param[in,out] outValueLen  Room in @p outValue; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when no extension has the OID, also
 *         when the handle holds no list.
 */
TV_API uint32_t GetX509ExtensionsExtensionValue(const X509Extensions* extensions, const uint8_t* inOid, uint8_t* outValue, uint32_t* outValueLen);
/**
 * Frees the extension at an index; those after it move down one place.
 *
 * @param[in,out] extensions  The list handle (borrowed).
 * @param[in]     index       Position in the list, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list,
 *         #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t RemoveX509ExtensionsExtension(X509Extensions* extensions, uint32_t index);
/**
 * Frees the extensions with an OID, walking the list forwards.
 *
 * Kept as callers know it: the walk does not look again at the place it has just emptied, so of two
 * adjacent matches one call removes only the first. Call again until FindX509Extension() answers
 * #TV_ERR_NOT_FOUND to be sure none is left.
 *
 * @param[in,out] extensions  The list handle (borrowed).
 * @param[in]     inOid       The packed OID to remove (borrowed).
 * @return #TV_OK, or a status code; no match (or no list) is not a failure.
 */
TV_API uint32_t RemoveX509ExtensionsExtension2(X509Extensions* extensions, const uint8_t* inOid);
/**
 * Frees every extension of a list; the list stays, empty, and encodes as an empty SEQUENCE.
 *
 * @param[in,out] extensions  The list handle (borrowed); one without a list is left as it is.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearX509Extensions(X509Extensions* extensions);
/**
 * Frees the list of a handle, which stays usable and holds no list.
 *
 * Until the next AddX509ExtensionsExtension() creates a new list, EncodeX509Extensions(),
 * GetX509ExtensionsExtension() and RemoveX509ExtensionsExtension() answer #TV_ERR_ABSENT. On a handle
 * lent by a structure, the structure is left without its extensions.
 *
 * @param[in,out] extensions  The list handle (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveX509Extensions(X509Extensions* extensions);
/**
 * Frees a handle made by CreateX509Extensions() or DecodeX509Extensions(), with its list.
 *
 * Never call it on a handle lent by a structure's getter: use RemoveX509Extensions() there.
 *
 * @param[in] extensions  The handle (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeX509Extensions(X509Extensions* extensions);
/**
 * Stores a sorted flag in the list, nothing more: an extension list is a SEQUENCE OF and is always
 * written in list order.
 *
 * @param[in,out] extensions  The list handle (borrowed); one without a list stores nothing.
 * @param[in]     sorted      The flag.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509ExtensionsSorted(X509Extensions* extensions, uint32_t sorted);
/**
 * Writes the list as a DER SEQUENCE OF Extension, in list order.
 *
 * @param[in]     extensions  The list handle (borrowed).
 * @param[out]    out         Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen      Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the handle holds no list (an empty
 *         list is written as an empty SEQUENCE).
 */
TV_API uint32_t EncodeX509Extensions(const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
/**
 * Reads a DER SEQUENCE OF Extension into a new handle; an empty SEQUENCE is accepted.
 *
 * @param[in]  in             The DER (borrowed).
 * @param[in]  inLen          Octets in @p in.
 * @param[out] outExtensions  Receives a new handle owned by the caller (FreeX509Extensions()),
 *                            stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509Extensions(const uint8_t* in, uint32_t inLen, X509Extensions** outExtensions);

#ifdef __cplusplus
}
#endif

#endif
