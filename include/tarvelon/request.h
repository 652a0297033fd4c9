/* Tarvelon: PKCS #10 certification requests (RFC 2986). */
#ifndef TARVELON_REQUEST_H
#define TARVELON_REQUEST_H

#include "tarvelon/types.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"
#include "tarvelon/attributes.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct PKCS10CertReq PKCS10CertReq;

#ifdef __cplusplus
}
#endif

#endif
