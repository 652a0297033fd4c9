// Certificate revocation lists (RFC 5280 5.1): the descriptors of the CRL family and the slot
// names both CRL modules and the families that carry CRLs (CMS, signature workflows) read through.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/crl.h"

namespace tv::desc {

// CertificateList ::= SEQUENCE {
//     tbsCertList          TBSCertList,
//     signatureAlgorithm   AlgorithmIdentifier,
//     signatureValue       BIT STRING }
enum class CertificateListSlot : uint32_t { kTbsCertList, kSignatureAlgorithm, kSignatureValue, kCount };
extern const Asn1Descriptor kCertificateList;

// TBSCertList ::= SEQUENCE {
//     version              Version OPTIONAL,   -- if present, MUST be v2
//     signature            AlgorithmIdentifier,
//     issuer               Name,
//     thisUpdate           Time,
//     nextUpdate           Time OPTIONAL,
//     revokedCertificates  SEQUENCE OF RevokedCertificate OPTIONAL,
//     crlExtensions        [0] EXPLICIT Extensions OPTIONAL }
enum class TbsCertListSlot : uint32_t {
    kVersion,
    kSignature,
    kIssuer,
    kThisUpdate,
    kNextUpdate,
    kRevokedCertificates,
    kCrlExtensions,
    kCount
};
extern const Asn1Descriptor kTbsCertList;

// Name ::= CHOICE { rdnSequence RDNSequence }: the one alternative is used directly, as in every
// family, so the issuer slot holds the X509Name itself.

// RevokedCertificate ::= SEQUENCE {
//     userCertificate      CertificateSerialNumber,
//     revocationDate       Time,
//     crlEntryExtensions   Extensions OPTIONAL }
enum class RevokedCertificateSlot : uint32_t { kUserCertificate, kRevocationDate, kCrlEntryExtensions, kCount };
extern const Asn1Descriptor kRevokedCertificate;
// revokedCertificates as a value of its own (X509RevokedCertificates)
extern const Asn1Descriptor kRevokedCertificates;

// X509Crls ::= SEQUENCE OF CertificateList
extern const Asn1Descriptor kX509Crls;

}  // namespace tv::desc

namespace tv {

// The three slots of a CRL value (CertificateListSlot).
inline void** SlotsOf(const X509Crl* crl) noexcept { return reinterpret_cast<void**>(const_cast<X509Crl*>(crl)); }

// The slots of a CRL's to-be-signed part, for both CRL modules: null CRL 32, no part 311.
uint32_t TbsOf(const X509Crl* crl, void*** tbs) noexcept;

}  // namespace tv
