// Certificate revocation lists (RFC 5280 5.1): the descriptors of the CRL family and the slot
// names both CRL modules and the families that carry CRLs (CMS, signature workflows) read through.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/x509/SignedStructure.h"
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

// CertificateList ::= SEQUENCE { tbsCertList, signatureAlgorithm, signatureValue }, the algorithm
// kept in step with tbsCertList.signature.
inline constexpr SignedParts kSignedCrl =
    SignedParts::Mirrored(desc::kTbsCertList, desc::CertificateListSlot::kTbsCertList,
                          desc::CertificateListSlot::kSignatureAlgorithm, desc::CertificateListSlot::kSignatureValue,
                          desc::TbsCertListSlot::kSignature);

// Both CRL modules have always recorded a missing CRL or to-be-signed part under X509Crl, which
// owned the lookup; the record stays that way.
#define TV_CRL_TBS_SITE (::tv::Site{::tv::Module::X509Crl, static_cast<uint32_t>(__LINE__)})

}  // namespace tv
