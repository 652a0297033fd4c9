// RFC 3161 time-stamp messages and SeveralData: their descriptors, for the fuzzer and the lint.
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// TimeStampReq ::= SEQUENCE {                                         (RFC 3161 2.4.1)
//     version         INTEGER { v1(1) },
//     messageImprint  MessageImprint,
//     reqPolicy       TSAPolicyId OPTIONAL,
//     nonce           INTEGER OPTIONAL,
//     certReq         BOOLEAN DEFAULT FALSE,
//     extensions      [0] IMPLICIT Extensions OPTIONAL }
extern const Asn1Descriptor kTimeStampRequest;
// TimeStampResp ::= SEQUENCE { status PKIStatusInfo, timeStampToken TimeStampToken OPTIONAL }
extern const Asn1Descriptor kTimeStampResponse;
// TSTInfo ::= SEQUENCE { version, policy, messageImprint, serialNumber, genTime, accuracy OPTIONAL,
//     ordering BOOLEAN DEFAULT FALSE, nonce OPTIONAL, tsa [0] GeneralName OPTIONAL, extensions [1] OPTIONAL }
extern const Asn1Descriptor kTstInfo;
// SeveralData ::= SEQUENCE OF ContentInfo
extern const Asn1Descriptor kSeveralData;

}  // namespace tv::desc
