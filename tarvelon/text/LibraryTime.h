// Time values inside value trees, for the families whose structures carry times (certificate
// validity, CRL update and revocation dates, OCSP and time-stamp times, time attributes).
//
// Writers take the address of the slot that holds (or will hold) the value, so a family setter is
// one line:   return tv::SetTimeChoice(&Slot(validity, ValiditySlot::kNotBefore), time);
// They leave the slot untouched on failure and report a record that cannot be written as 313.
// Readers take the slot's value, null when the component is absent (311, the record untouched),
// and store the fields through the setter, so an out-of-range field is 313 with the fields before
// it already stored.
#pragma once

#include <cstdint>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Error.h"
#include "tarvelon/time.h"

namespace tv::desc {

inline constexpr Asn1Descriptor kUtcTime = Prim(ASN1_UTC_TIME);
inline constexpr Asn1Descriptor kGeneralizedTime = Prim(ASN1_GENERALIZED_TIME);

// Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime }     (RFC 5280 4.1.2.5)
enum class TimeAlternative : int32_t { kUtcTime, kGeneralTime, kCount };
extern const Asn1Descriptor kTime;
// Time OPTIONAL, as in TBSCertList.nextUpdate.
extern const Asn1Descriptor kOptionalTime;

// Validity ::= SEQUENCE { notBefore Time, notAfter Time }  (certificates and the validity attribute)
enum class ValiditySlot : uint32_t { kNotBefore, kNotAfter, kCount };
extern const Asn1Descriptor kValidity;

}  // namespace tv::desc

namespace tv {

// ---- writing ------------------------------------------------------------------------------------

// UTCTime "YYMMDDhhmmssZ" (the year modulo 100) or GeneralizedTime "YYYYMMDDhhmmssZ" into the
// Asn1Primitive at *slot, created when the slot is empty.
uint32_t SetUtcTimeLeaf(void** slot, const LibraryTime* time) noexcept;
uint32_t SetGeneralizedTimeLeaf(void** slot, const LibraryTime* time) noexcept;

// The X.509 Time value (an Asn1ChoiceValue of kTime) for the record: UTCTime before 2050,
// GeneralizedTime from 2050 on. The old value in *slot is freed once the new one is built.
uint32_t SetTimeChoice(void** slot, const LibraryTime* time) noexcept;

// GeneralizedTime with the shortest fraction of a second: ".5", ".000001", none for a whole second.
uint32_t SetPreciseGeneralizedTimeLeaf(void** slot, const LibraryPreciseTime* time) noexcept;

// The DER GeneralizedTime element (18 0F ...) with the size protocol.
uint32_t EncodeGeneralizedTimeElement(const LibraryTime* time, uint8_t* out, uint32_t* outLen) noexcept;

// ---- reading ------------------------------------------------------------------------------------

// `leaf` is an Asn1Primitive. Contents not checked beyond their length: digits are taken as the
// character minus '0', the zone mark and any fraction are ignored.
// UTCTime years 50..99 are 1950..1999 and 00..49 are 2000..2049. The lone UTCTime reader needs 15
// octets (a 13-octet UTCTime is 307) where the Time reader needs 13: kept as it is.
uint32_t GetTimeFromUtcTimeLeaf(const void* leaf, LibraryTime* out) noexcept;
uint32_t GetTimeFromGeneralizedTimeLeaf(const void* leaf, LibraryTime* out) noexcept;

// A GeneralizedTime leaf that may be absent: absent reads as the null time, the all-zero record
// (not through SetLibraryTimeToNull, which refuses to write it).
uint32_t GetOptionalTime(const void* leaf, LibraryTime* out) noexcept;

// `choice` is an Asn1ChoiceValue of kTime; another alternative is 307.
uint32_t GetTimeFromTimeChoice(const void* choice, LibraryTime* out) noexcept;

// A Time slot of a fresh structure holds a CHOICE with nothing chosen yet: that reads as absent
// (311, recorded at `site`) just like an empty slot; otherwise as GetTimeFromTimeChoice.
[[nodiscard]] uint32_t GetTimeIfChosen(Site site, const void* choice, LibraryTime* out) noexcept;

// GeneralizedTime with an optional fraction: the "Z" and the "." are checked (307), up to three
// digits give the milliseconds and the next up to three the microseconds, each right-padded with 0.
uint32_t GetPreciseTimeFromGeneralizedTimeLeaf(const void* leaf, LibraryPreciseTime* out) noexcept;

}  // namespace tv
