/* Tarvelon: typed values of the standard extensions (RFC 5280, OCSP nonce, Netscape certificate
 * type, Russian qualified-certificate extensions), encoded to and decoded from an extnValue. */
#ifndef TARVELON_EXTENSION_VALUES_H
#define TARVELON_EXTENSION_VALUES_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/* List-valued extensions: each is a list of element trees handled by its Create/Add/Get/Remove/
 * Free/Count/Encode/Decode family. */
typedef Asn1List CrlDistributionPoints;
typedef Asn1List ExtendedKeyUsage;
typedef Asn1List AuthorityInformationAccess;
typedef Asn1List CertificatePolicies;

#ifdef __cplusplus
}
#endif

#endif
