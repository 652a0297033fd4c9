// Certification requests (RFC 2986): the descriptors and slots shared by the request's two modules.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/request.h"

namespace tv::desc {

// CertificationRequestInfo ::= SEQUENCE {
//     version        INTEGER { v1(0) },
//     subject        Name,
//     subjectPKInfo  SubjectPublicKeyInfo,
//     attributes     [0] IMPLICIT Attributes }
enum class CertificationRequestInfoSlot : uint32_t { kVersion, kSubject, kSubjectPKInfo, kAttributes, kCount };
extern const Asn1Descriptor kCertificationRequestInfo;

// CertificationRequest ::= SEQUENCE {
//     certificationRequestInfo  CertificationRequestInfo,
//     signatureAlgorithm        AlgorithmIdentifier,
//     signature                 BIT STRING }
enum class CertificationRequestSlot : uint32_t { kCertificationRequestInfo, kSignatureAlgorithm, kSignature, kCount };
extern const Asn1Descriptor kCertificationRequest;

}  // namespace tv::desc

namespace tv {

using RequestSlots = void*[SlotCount<desc::CertificationRequestSlot>];
using RequestInfoSlots = void*[SlotCount<desc::CertificationRequestInfoSlot>];

inline RequestSlots& SlotsOf(PKCS10CertReq* r) noexcept { return *reinterpret_cast<RequestSlots*>(r); }
inline const RequestSlots& SlotsOf(const PKCS10CertReq* r) noexcept { return *reinterpret_cast<const RequestSlots*>(r); }

// The request info of a request, null when it has none.
inline RequestInfoSlots* InfoOf(const PKCS10CertReq* r) noexcept {
    return static_cast<RequestInfoSlots*>(Slot(r, desc::CertificationRequestSlot::kCertificationRequestInfo));
}

}  // namespace tv
