// Distinguished names: descriptors shared with every family that carries a Name (certificates,
// CRLs, requests, general names), and the internal helpers other modules build on.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Error.h"
#include "tarvelon/x509name.h"

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

namespace tv {

// The name held in a slot; an empty one is made in place when there is none, so that the caller
// can fill it with AddX509NameEntry. Allocation failure is recorded at `site`.
[[nodiscard]] uint32_t NameInSlot(Site site, void** slot, X509Name** out) noexcept;

// A copy of `name` replaces the slot's name; a failed copy leaves the old one in place.
[[nodiscard]] uint32_t SetNameCopy(void** slot, const X509Name* name) noexcept;

}  // namespace tv
