// Certification requests (RFC 2986): the descriptors and slots shared by the request's two modules.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/x509/SignedStructure.h"
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

// CertificationRequest ::= SEQUENCE { certificationRequestInfo, signatureAlgorithm, signature }: one
// algorithm, outside the signed part. A signature with a length but no octets reads as absent, and
// a new signature replaces the old value.
inline constexpr SignedParts kSignedRequest =
    SignedParts::Single(desc::kCertificationRequestInfo, desc::CertificationRequestSlot::kCertificationRequestInfo,
                        desc::CertificationRequestSlot::kSignatureAlgorithm,
                        desc::CertificationRequestSlot::kSignature, true, true);

}  // namespace tv
