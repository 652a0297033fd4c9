/* Tarvelon: certificate revocation lists (RFC 5280 CertificateList) and CRL lists. */
#ifndef TARVELON_CRL_H
#define TARVELON_CRL_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"
#include "tarvelon/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct X509Crl X509Crl;
/* X509Crls ::= SEQUENCE OF CertificateList */
typedef Asn1List X509Crls;
/* The revokedCertificates list as a value of its own. */
typedef Asn1List X509RevokedCertificates;

#ifdef __cplusplus
}
#endif

#endif
