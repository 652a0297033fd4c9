// Distinguished names: descriptors shared with every family that carries a Name (certificates,
// CRLs, requests, general names), and the internal helpers other modules build on.
#pragma once

#include "tarvelon/engine/Descriptor.h"

namespace tv::desc {

// AttributeTypeAndValue ::= SEQUENCE { type OBJECT IDENTIFIER, value ANY }
enum class AttributeTypeAndValueSlot : uint32_t { kType, kValue, kCount };
extern const Asn1Descriptor kAttributeTypeAndValue;

// RelativeDistinguishedName ::= SET OF AttributeTypeAndValue
extern const Asn1Descriptor kRelativeDistinguishedName;

// Name ::= RDNSequence ::= SEQUENCE OF RelativeDistinguishedName
// (the RDNSequence is used directly; there is no CHOICE wrapper)
extern const Asn1Descriptor kX509Name;

}  // namespace tv::desc
