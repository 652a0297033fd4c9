/* Tarvelon: base64 and PEM, SHA-1 and the format conversions. */
#ifndef TARVELON_TEXT_H
#define TARVELON_TEXT_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

#ifdef __cplusplus
}
#endif

#endif
