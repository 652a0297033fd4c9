// General names (RFC 5280 GeneralName, GeneralNames): descriptors for the families that carry them
// (authority key identifiers, alternative names, CRL issuers, OCSP and time-stamp messages).
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// The alternative index of a GeneralName is its kind, the context tag number of RFC 5280.
enum class GeneralNameKind : uint32_t {
    kOtherName,
    kRfc822Name,
    kDnsName,
    kX400Address,
    kDirectoryName,
    kEdiPartyName,
    kUniformResourceIdentifier,
    kIpAddress,
    kRegisteredId,
    kCount
};

// GeneralName ::= CHOICE { ... nine context-tagged alternatives ... }
extern const Asn1Descriptor kGeneralName;
// Its alternatives, for fields that carry a GeneralName under a tag of their own (an OCSP
// requestorName [1], a time stamp's tsa [0]): Explicit(1, Optional(Choice(kGeneralNameAlternatives))).
extern const Components<SlotCount<GeneralNameKind>> kGeneralNameAlternatives;
// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName
extern const Asn1Descriptor kGeneralNames;

}  // namespace tv::desc
