// X.509 certificates (RFC 5280 4.1): the descriptors shared with every family that carries or
// names a certificate (CRLs, CMS, OCSP, time stamps), the named slots, and the internal matching
// helpers of the signature workflows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/x509/SignedStructure.h"
#include "tarvelon/certificate.h"

namespace tv::desc {

// Certificate ::= SEQUENCE { tbsCertificate, signatureAlgorithm, signatureValue }
enum class CertificateSlot : uint32_t { kTbsCertificate, kSignatureAlgorithm, kSignatureValue, kCount };

// TBSCertificate ::= SEQUENCE { version .. extensions }, slots in field order.
enum class TbsCertificateSlot : uint32_t {
    kVersion,
    kSerialNumber,
    kSignature,
    kIssuer,
    kValidity,
    kSubject,
    kSubjectPublicKeyInfo,
    kIssuerUniqueId,
    kSubjectUniqueId,
    kExtensions,
    kCount
};

extern const Asn1Descriptor kCertificate;
extern const Asn1Descriptor kTbsCertificate;
// Certificates ::= SEQUENCE OF Certificate
extern const Asn1Descriptor kCertificates;

}  // namespace tv::desc

namespace tv {

// Certificate ::= SEQUENCE { tbsCertificate, signatureAlgorithm, signatureValue }, the algorithm
// kept in step with tbsCertificate.signature.
inline constexpr SignedParts kSignedCertificate =
    SignedParts::Mirrored(desc::kTbsCertificate, desc::CertificateSlot::kTbsCertificate,
                          desc::CertificateSlot::kSignatureAlgorithm, desc::CertificateSlot::kSignatureValue,
                          desc::TbsCertificateSlot::kSignature);

// The certificate's slot `which` of its to-be-signed part, without recording anything: null when
// the certificate or the part is missing. For the matchers, where absence is an answer.
inline const void* TbsField(const Certificate* cert, desc::TbsCertificateSlot which) noexcept {
    const void* tbs = cert ? Slot(cert, desc::CertificateSlot::kTbsCertificate) : nullptr;
    return tbs ? Slot(tbs, which) : nullptr;
}

}  // namespace tv

// 0 when the certificate's serial number is byte-identical to `serial` and its issuer equals
// `issuer` (CompareX509Names); 320 when either differs, 307 when the certificate has no serial.
uint32_t IsCertificateIssuerAndSerial(const Certificate* cert, const X509Name* issuer, const uint8_t* serial,
                                      uint32_t serialLen) noexcept;
// IsCertificateIssuerAndSerial of `b` against the issuer and serial number of `a`.
uint32_t IsCertificatePairIssuerAndSerialEqual(const Certificate* a, const Certificate* b) noexcept;
