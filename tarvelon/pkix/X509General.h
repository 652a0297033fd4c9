// Free text (RFC 4210 PKIFreeText), carried by OCSP and time-stamp status fields.
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// PKIFreeText ::= SEQUENCE SIZE (1..MAX) OF UTF8String
extern const Asn1Descriptor kPKIFreeText;

}  // namespace tv::desc
