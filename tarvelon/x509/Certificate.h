// X.509 certificates (RFC 5280 4.1): the descriptors shared with every family that carries or
// names a certificate (CRLs, CMS, OCSP, time stamps), the named slots, and the internal matching
// helpers of the signature workflows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarvelon/engine/Descriptor.h"
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

// Validity ::= SEQUENCE { notBefore Time, notAfter Time }
enum class ValiditySlot : uint32_t { kNotBefore, kNotAfter, kCount };

extern const Asn1Descriptor kCertificate;
extern const Asn1Descriptor kTbsCertificate;
extern const Asn1Descriptor kValidity;
// Certificates ::= SEQUENCE OF Certificate
extern const Asn1Descriptor kCertificates;

}  // namespace tv::desc

namespace tv {

// The to-be-signed part of a certificate, null when the certificate or the part is missing.
inline void* TbsOf(Certificate* cert) noexcept {
    return cert ? Slot(cert, desc::CertificateSlot::kTbsCertificate) : nullptr;
}
inline const void* TbsOf(const Certificate* cert) noexcept {
    return cert ? Slot(cert, desc::CertificateSlot::kTbsCertificate) : nullptr;
}

}  // namespace tv

// 0 when the certificate's serial number is byte-identical to `serial` and its issuer equals
// `issuer` (CompareX509Names); 320 when either differs, 307 when the certificate has no serial.
uint32_t IsCertificateIssuerAndSerial(const Certificate* cert, const X509Name* issuer, const uint8_t* serial,
                                      uint32_t serialLen) noexcept;
// IsCertificateIssuerAndSerial of `b` against the issuer and serial number of `a`.
uint32_t IsCertificatePairIssuerAndSerialEqual(const Certificate* a, const Certificate* b) noexcept;
