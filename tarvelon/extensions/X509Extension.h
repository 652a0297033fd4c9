// Extensions: the descriptor shared by every structure that carries an extension list, the handle
// record, and the OIDs the library itself looks up.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/extensions.h"

// The handle of an extension list: one field, the Asn1List of Extension trees or null. It has the
// layout of a value slot, so a structure that holds a list in a slot (tbsCertificate.extensions,
// crlExtensions, crlEntryExtensions, ...) hands out the address of that slot as its handle, and the
// list operations create, fill or replace the list in place.
struct X509Extensions {
    void* list;
};

namespace tv::desc {

// Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING }
enum class ExtensionSlot : uint32_t { kExtnId, kCritical, kExtnValue, kCount };
extern const Asn1Descriptor kExtension;
// Extensions ::= SEQUENCE SIZE (1..MAX) OF Extension   -- the lower bound is not enforced
extern const Asn1Descriptor kExtensions;

}  // namespace tv::desc

namespace tv {

inline X509Extensions* ExtensionsHandleOfSlot(void** slot) noexcept { return reinterpret_cast<X509Extensions*>(slot); }

// Index of the first extension with the packed OID, recording nothing (FindOid over the handle's
// list; a handle without a list has none).
bool FindExtensionIndex(const X509Extensions* handle, const uint8_t* packedOid, uint32_t* index) noexcept;

// Packed OIDs (length octet, contents) of the extensions the library reads or writes itself.
namespace oid {
inline constexpr uint8_t kSubjectKeyIdentifier[] = {3, 0x55, 0x1D, 0x0E};    // 2.5.29.14
inline constexpr uint8_t kKeyUsage[] = {3, 0x55, 0x1D, 0x0F};                // 2.5.29.15
inline constexpr uint8_t kBasicConstraints[] = {3, 0x55, 0x1D, 0x13};        // 2.5.29.19
inline constexpr uint8_t kCertificateIssuer[] = {3, 0x55, 0x1D, 0x1D};       // 2.5.29.29
inline constexpr uint8_t kCrlDistributionPoints[] = {3, 0x55, 0x1D, 0x1F};   // 2.5.29.31
inline constexpr uint8_t kAuthorityKeyIdentifier[] = {3, 0x55, 0x1D, 0x23};  // 2.5.29.35
// 1.2.643.3.901.3.1, the Kestrune key identifier
inline constexpr uint8_t kKestruneKeyIdentifier[] = {8, 0x2A, 0x85, 0x03, 0x03, 0x87, 0x05, 0x03, 0x01};
}  // namespace oid

}  // namespace tv
