// The CAdES and display tools above the message families: revocation values (which carry whole CRLs
// and basic OCSP responses), the code page 1251 display texts of certificates, CRLs and signers, and
// the whole-file reads of the signature workflows.
#pragma once

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"
#include "tarvelon/tarvelon.h"

namespace tv::desc {

// RevocationValues ::= SEQUENCE {                                      (ETSI TS 101 733 6.3.4)
//     crlVals       [0] EXPLICIT SEQUENCE OF CertificateList OPTIONAL,
//     ocspVals      [1] EXPLICIT SEQUENCE OF BasicOCSPResponse OPTIONAL,
//     otherRevVals  [2] EXPLICIT OtherRevVals OPTIONAL }
extern const Asn1Descriptor kRevocationValues;

}  // namespace tv::desc

namespace tv {

// Display texts are built in a block of this many octets: at most 1023 characters and the NUL.
inline constexpr size_t kDisplayRoom = 1024;

// A display text being built: characters appended within kDisplayRoom - 1.
struct DisplayText {
    char text[kDisplayRoom + 1] = {};  // one spare octet: a BMPString may fill the whole room
    size_t length = 0;
    size_t Room() const noexcept { return kDisplayRoom - length; }
    void Append(const char* s, size_t n) noexcept;
};

// "serial, " when every serial octet is printable (0x20..0x7A), else nothing.
void AppendPrintableSerial(DisplayText& text, const uint8_t* serial, uint32_t serialLen) noexcept;

// The common names of `name` (the first commonName of each RDN, joined with no separator) in code
// page 1251; 49 (at `site`) when one does not fit the room left.
[[nodiscard]] uint32_t AppendCommonNames(Site site, DisplayText& text, const X509Name* name) noexcept;

// A NUL-terminated text under the size protocol: the size asked for is length + 1, and after a copy
// the length is the text's without the NUL.
[[nodiscard]] uint32_t PutText(Site site, const char* text, size_t length, char* out, uint32_t* outLen) noexcept;

// A whole file under the size protocol: 12 when it cannot be opened, 3 when seeking fails, 46 for a
// short read; a file above 300,000,000 octets is not read and answers 0 with the length untouched
// (callers then see whatever length they passed, usually 0).
[[nodiscard]] uint32_t ReadWholeFile(Site site, const char* path, uint8_t* out, uint32_t* outLen) noexcept;

// The same into a fresh block (size, then contents).
[[nodiscard]] uint32_t ReadWholeFile(Site site, const char* path, HeapBytes& out, uint32_t* outLen) noexcept;

}  // namespace tv
