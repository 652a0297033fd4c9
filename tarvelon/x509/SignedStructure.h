// Signed structures: SEQUENCE { toBeSigned, signatureAlgorithm AlgorithmIdentifier, signature BIT STRING }
// (certificates, CRLs, certification requests; OCSP basic responses and signed requests have the
// same shape). A family describes where its three parts sit, and whether the to-be-signed part
// carries its own copy of the algorithm; its exported accessors are then a line each.
//
// Failures found here are recorded at the caller's site. Checks a family makes before the lookup
// (a null output length, a bad mode) stay in the family's function, in the order it makes them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Error.h"
#include "tarvelon/certificate.h"

namespace tv {

struct SignedParts {
    const Asn1Descriptor* toBeSigned;  // the descriptor of the to-be-signed part
    size_t tbs, algorithm, signature;  // slots of the outer SEQUENCE
    // The AlgorithmIdentifier inside the to-be-signed part that the outer one mirrors (certificates
    // and CRLs: read from there, written there first); -1 when the family has only the outer one.
    ptrdiff_t innerAlgorithm;
    // Kept differences between the families:
    bool signatureNeedsContent;  // a signature with a length but no octets reads as absent (requests)
    bool freshSignature;         // a new signature value replaces the old one instead of being written into it
    // Where the algorithm, the signature and the certificates sit: -1 in the outer SEQUENCE itself;
    // otherwise the outer slot of an optional block holding them (an OCSP request's
    // optionalSignature), which readers find absent (311) and writers make on demand.
    ptrdiff_t block = -1;
    const Asn1Descriptor* blockDescriptor = nullptr;
    // The slot (of the block when there is one) of certs [0] EXPLICIT SEQUENCE OF Certificate
    // OPTIONAL, -1 when the family carries none.
    ptrdiff_t certificates = -1;

    template <SlotEnum Outer, SlotEnum Inner>
    static constexpr SignedParts Mirrored(const Asn1Descriptor& tbsDescriptor, Outer tbs, Outer algorithm,
                                          Outer signature, Inner inner) noexcept {
        return {&tbsDescriptor, size_t(tbs), size_t(algorithm), size_t(signature), ptrdiff_t(inner), false, false};
    }
    template <SlotEnum Outer>
    static constexpr SignedParts Single(const Asn1Descriptor& tbsDescriptor, Outer tbs, Outer algorithm,
                                        Outer signature, bool signatureNeedsContent, bool freshSignature) noexcept {
        return {&tbsDescriptor, size_t(tbs), size_t(algorithm), size_t(signature), -1, signatureNeedsContent,
                freshSignature};
    }
    // BasicOCSPResponse ::= SEQUENCE { tbsResponseData, signatureAlgorithm, signature, certs }
    template <SlotEnum Outer>
    static constexpr SignedParts WithCertificates(const Asn1Descriptor& tbsDescriptor, Outer tbs, Outer algorithm,
                                                  Outer signature, Outer certs) noexcept {
        SignedParts s = Single(tbsDescriptor, tbs, algorithm, signature, false, true);
        s.certificates = ptrdiff_t(certs);
        return s;
    }
    // OCSPRequest ::= SEQUENCE { tbsRequest, optionalSignature [0] EXPLICIT Signature OPTIONAL },
    // Signature ::= SEQUENCE { signatureAlgorithm, signature, certs }
    template <SlotEnum Outer, SlotEnum Block>
    static constexpr SignedParts Nested(const Asn1Descriptor& tbsDescriptor, Outer tbs, Outer block,
                                        const Asn1Descriptor& blockDescriptor, Block algorithm, Block signature,
                                        Block certs) noexcept {
        return {&tbsDescriptor, size_t(tbs), size_t(algorithm), size_t(signature), -1, false, true,
                ptrdiff_t(block), &blockDescriptor, ptrdiff_t(certs)};
    }
};

// The to-be-signed part: a null structure is 32, a missing part 311.
[[nodiscard]] uint32_t TbsOf(Site site, const SignedParts& s, const void* value, void** out) noexcept;

// The DER of the to-be-signed part, written afresh from the tree (never sliced from the decoded
// input, so a structure that came in as BER yields the DER its signature was computed over).
[[nodiscard]] uint32_t GetToBeSigned(Site site, const SignedParts& s, const void* value, uint8_t* out,
                                     uint32_t* outLen) noexcept;

// The signature octets (null structure or length: 32, none: 311), size protocol.
[[nodiscard]] uint32_t GetSignature(Site site, const SignedParts& s, const void* value, uint8_t* out,
                                    uint32_t* outLen) noexcept;
// The signature octets with no unused bits (null structure or input: 32).
[[nodiscard]] uint32_t SetSignature(Site site, const SignedParts& s, void* value, const uint8_t* in,
                                    uint32_t inLen) noexcept;

// The signature algorithm is read from the inner copy when there is one, else from the outer one;
// it is written to the inner copy first and then mirrored outside (see SetAlgorithmOidAndParameters).
[[nodiscard]] uint32_t GetSignatureAlgorithm(Site site, const SignedParts& s, const void* value, uint8_t* oid,
                                             uint32_t* oidLen, uint8_t* params, uint32_t* paramsLen) noexcept;
[[nodiscard]] uint32_t SetSignatureAlgorithm(Site site, const SignedParts& s, void* value, const uint8_t* oid,
                                             const uint8_t* params, uint32_t paramsLen) noexcept;
[[nodiscard]] uint32_t SetGostSignatureAlgorithm(Site site, const SignedParts& s, void* value, uint32_t algId,
                                                 uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
                                                 uint32_t encryptionParamId) noexcept;

// The certificates of a family that carries them, held as full certificate trees. Add appends the
// certificate itself (on failure the caller keeps it), making the block and the list on demand;
// Get hands out a borrowed pointer (no block or no list: 311, index beyond the end: 32); Remove
// frees the list and is content when there is none.
[[nodiscard]] uint32_t AddCertificate(Site site, const SignedParts& s, void* value, Certificate* cert) noexcept;
[[nodiscard]] uint32_t GetCertificateCount(Site site, const SignedParts& s, const void* value,
                                           uint32_t* outCount) noexcept;
[[nodiscard]] uint32_t GetCertificateAt(Site site, const SignedParts& s, const void* value, uint32_t index,
                                        Certificate** out) noexcept;
[[nodiscard]] uint32_t RemoveCertificates(Site site, const SignedParts& s, void* value) noexcept;

// The optional block of a family that has one: 0 when present, 311 when not; Remove frees it with
// everything in it and is content when it is absent.
[[nodiscard]] uint32_t HasSignatureBlock(Site site, const SignedParts& s, const void* value) noexcept;
[[nodiscard]] uint32_t RemoveSignatureBlock(Site site, const SignedParts& s, void* value) noexcept;

// How a family reads its version INTEGER. Both refuse negative contents and values beyond 32 bits
// (307) and report an absent version as 311.
enum class VersionForm {
    kFourOctets,    // at most four content octets; no contents at all is 307 (certificates, CRLs)
    kLeadingZeros,  // leading zero octets do not count; no contents at all is 311 (requests)
};
[[nodiscard]] uint32_t GetVersion(Site site, const void* leaf, VersionForm form, uint32_t* out) noexcept;

}  // namespace tv
