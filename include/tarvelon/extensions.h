/* Tarvelon: X.509 extensions (RFC 5280 Extension, Extensions) keyed by OID with opaque values.
 *
 * OIDs are packed: one length octet followed by the DER content octets. The typed values that go
 * into an extension's extnValue are built and read by the codecs of extension_values.h and
 * private_extensions.h. */
#ifndef TARVELON_EXTENSIONS_H
#define TARVELON_EXTENSIONS_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING } */
typedef struct X509Extension X509Extension;
/* A handle holding one list of extensions (or none). The certificate, CRL, CRL-entry, OCSP and
 * time-stamp getters hand out the handle that lives inside their structure. */
typedef struct X509Extensions X509Extensions;

/* One extension. */
TV_API uint32_t CreateX509Extension(X509Extension** outExtension, const uint8_t* inOid, int critical, const uint8_t* inValue, uint32_t inValueLen);
TV_API uint32_t SetX509Extension(X509Extension* extension, const uint8_t* inOid, uint32_t critical, const uint8_t* inValue, uint32_t inValueLen);
TV_API uint32_t GetX509Extension(const X509Extension* extension, uint8_t* outOid, uint32_t* outOidLen, uint32_t* outCritical, uint8_t* outValue, uint32_t* outValueLen);
TV_API uint32_t EncodeX509Extension(const X509Extension* extension, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeX509Extension(const uint8_t* in, uint32_t inLen, X509Extension** outExtension);
TV_API uint32_t FreeX509Extension(X509Extension* extension);

/* Lists. */
TV_API uint32_t CreateX509Extensions(X509Extensions** outExtensions);
TV_API uint32_t AddX509ExtensionsExtension(X509Extensions* extensions, const uint8_t* inOid, int critical, const uint8_t* inValue, uint32_t inValueLen);
TV_API uint32_t GetX509ExtensionsExtensionsCount(const X509Extensions* extensions, uint32_t* outCount);
TV_API uint32_t GetX509ExtensionsExtension(const X509Extensions* extensions, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, uint32_t* outCritical, uint8_t* outValue, uint32_t* outValueLen);
TV_API uint32_t FindX509Extension(const X509Extensions* extensions, const uint8_t* inOid, uint32_t* outIndex);
TV_API uint32_t GetX509ExtensionsExtensionValue(const X509Extensions* extensions, const uint8_t* inOid, uint8_t* outValue, uint32_t* outValueLen);
TV_API uint32_t RemoveX509ExtensionsExtension(X509Extensions* extensions, uint32_t index);
/* Removes matches walking forwards; of two adjacent matches only the first goes in one call. */
TV_API uint32_t RemoveX509ExtensionsExtension2(X509Extensions* extensions, const uint8_t* inOid);
TV_API uint32_t ClearX509Extensions(X509Extensions* extensions);
/* Frees the list; the handle stays usable. */
TV_API uint32_t RemoveX509Extensions(X509Extensions* extensions);
TV_API uint32_t FreeX509Extensions(X509Extensions* extensions);
/* Stored only; an extension list is a SEQUENCE OF and always written in list order. */
TV_API uint32_t SetX509ExtensionsSorted(X509Extensions* extensions, uint32_t sorted);
TV_API uint32_t EncodeX509Extensions(const X509Extensions* extensions, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeX509Extensions(const uint8_t* in, uint32_t inLen, X509Extensions** outExtensions);

#ifdef __cplusplus
}
#endif

#endif
