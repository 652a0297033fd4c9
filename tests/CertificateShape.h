// An X.509 certificate described with the engine's builders, shared by the real-data tests, the
// benchmark and the fuzzer. It exercises every kind a certificate needs (EXPLICIT DEFAULT, IMPLICIT
// OPTIONAL, CHOICE, ANY, SET OF inside SEQUENCE OF) without waiting for the certificate family.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarvelon/types.h"

namespace tvtest::x509 {

enum class CertificateSlot : uint32_t { TbsCertificate, SignatureAlgorithm, SignatureValue, Count };

enum class TbsSlot : uint32_t {
    Version,
    SerialNumber,
    Signature,
    Issuer,
    Validity,
    Subject,
    SubjectPublicKeyInfo,
    IssuerUniqueId,
    SubjectUniqueId,
    Extensions,
    Count
};

enum class AlgorithmIdentifierSlot : uint32_t { Algorithm, Parameters, Count };
enum class AttributeTypeAndValueSlot : uint32_t { Type, Value, Count };
enum class ValiditySlot : uint32_t { NotBefore, NotAfter, Count };
enum class TimeAlternative : uint32_t { UtcTime, GeneralTime, Count };
enum class SubjectPublicKeyInfoSlot : uint32_t { Algorithm, SubjectPublicKey, Count };
enum class ExtensionSlot : uint32_t { ExtnId, Critical, ExtnValue, Count };

extern const Asn1Descriptor kCertificate;
extern const Asn1Descriptor kTbsCertificate;
extern const Asn1Descriptor kAlgorithmIdentifier;
extern const Asn1Descriptor kName;
extern const Asn1Descriptor kValidity;
extern const Asn1Descriptor kSubjectPublicKeyInfo;
extern const Asn1Descriptor kExtension;
extern const Asn1Descriptor kExtensions;

// The slot of a SEQUENCE value named by its enum.
template <typename Slot>
void* At(const void* sequence, Slot slot) {
    return static_cast<void* const*>(sequence)[static_cast<size_t>(slot)];
}

// The descriptor of a SEQUENCE component named by its enum.
template <typename Slot>
const Asn1Descriptor* ComponentOf(const Asn1Descriptor& sequence, Slot slot) {
    return sequence.components[static_cast<size_t>(slot)];
}

}  // namespace tvtest::x509
