// CMS enveloped data and GOST key transport: their descriptors, for the fuzzer and the lint.
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// EnvelopedData ::= SEQUENCE { version, originatorInfo [0] IMPLICIT OPTIONAL, recipientInfos SET OF
//     RecipientInfo, encryptedContentInfo, unprotectedAttrs [1] IMPLICIT OPTIONAL }  (RFC 5652 6.1)
extern const Asn1Descriptor kEnvelopedData;
// KeyTransRecipientInfo ::= SEQUENCE { version, rid, keyEncryptionAlgorithm, encryptedKey }
extern const Asn1Descriptor kKeyTrans;
// GostR3410-KeyTransport ::= SEQUENCE { sessionEncryptedKey, transportParameters [0] IMPLICIT OPTIONAL }
extern const Asn1Descriptor kGostR3410KeyTransport;

}  // namespace tv::desc
