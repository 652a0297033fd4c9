/**
 * @file tarvelon/tarvelon.h
 * Umbrella header: includes every family. Valid C11 and C++.
 */
#ifndef TARVELON_H
#define TARVELON_H

#include "tarvelon/version.h"
#include "tarvelon/types.h"
#include "tarvelon/asn1.h"
#include "tarvelon/time.h"
#include "tarvelon/text.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/x509name.h"
#include "tarvelon/extensions.h"
#include "tarvelon/extension_values.h"
#include "tarvelon/private_extensions.h"
#include "tarvelon/attributes.h"
#include "tarvelon/attribute_values.h"
#include "tarvelon/certificate.h"
#include "tarvelon/crl.h"
#include "tarvelon/request.h"
#include "tarvelon/ocsp.h"
#include "tarvelon/cms.h"
#include "tarvelon/enveloped.h"
#include "tarvelon/timestamp.h"

#endif
