/* Tarvelon: values of the private extensions (storage lists, OCSP check reports and request
 * options, key storage, blocking dates, owner and parent information, Kestrune key identifier). */
#ifndef TARVELON_PRIVATE_EXTENSIONS_H
#define TARVELON_PRIVATE_EXTENSIONS_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/* SEQUENCE OF StoreItem { kind ENUMERATED, data OCTET STRING } (certificates, key containers, documents). */
typedef Asn1List StoreItems;
/* SEQUENCE OF ExtResult. */
typedef Asn1List OcspCheckFileExtResults;

#ifdef __cplusplus
}
#endif

#endif
