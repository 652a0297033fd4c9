/* Tarvelon: X.509 v3 certificates (RFC 5280) and certificate lists. */
#ifndef TARVELON_CERTIFICATE_H
#define TARVELON_CERTIFICATE_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Certificate Certificate;
/* Certificates ::= SEQUENCE OF Certificate */
typedef Asn1List Certificates;

#ifdef __cplusplus
}
#endif

#endif
