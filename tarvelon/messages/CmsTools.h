// CAdES values that carry whole CRLs and basic OCSP responses.
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// RevocationValues ::= SEQUENCE {                                      (ETSI TS 101 733 6.3.4)
//     crlVals       [0] EXPLICIT SEQUENCE OF CertificateList OPTIONAL,
//     ocspVals      [1] EXPLICIT SEQUENCE OF BasicOCSPResponse OPTIONAL,
//     otherRevVals  [2] EXPLICIT OtherRevVals OPTIONAL }
extern const Asn1Descriptor kRevocationValues;

}  // namespace tv::desc
