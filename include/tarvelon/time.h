/* Tarvelon: library time records and the ASN.1 time forms. */
#ifndef TARVELON_TIME_H
#define TARVELON_TIME_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
