// Calendar records of the interface and their ASN.1 forms: UTCTime, GeneralizedTime (with and
// without a fraction of a second) and the X.509 Time choice (RFC 5280 4.1.2.5).
#include "tarvelon/text/LibraryTime.h"

#include <ctime>

#include "tarvelon/engine/Engine.h"

TV_MODULE(LibraryTime)

namespace tv::desc {
namespace {

// Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime }
constexpr auto kTimeParts = Slots<TimeAlternative>({
    {TimeAlternative::kUtcTime, &kUtcTime},              // utcTime      UTCTime
    {TimeAlternative::kGeneralTime, &kGeneralizedTime},  // generalTime  GeneralizedTime
});

}  // namespace

constinit const Asn1Descriptor kTime = Choice(kTimeParts);
constinit const Asn1Descriptor kOptionalTime = Optional(Choice(kTimeParts));

namespace {

// Validity ::= SEQUENCE {                                             (RFC 5280 4.1.2.5)
constexpr auto kValidityParts = Slots<ValiditySlot>({
    {ValiditySlot::kNotBefore, &kTime},  // notBefore  Time
    {ValiditySlot::kNotAfter, &kTime},   // notAfter   Time
});

}  // namespace

constinit const Asn1Descriptor kValidity = Sequence(kValidityParts);

}  // namespace tv::desc

namespace tv {
namespace {

// The setter lets February have 29 days whatever the year: records are checked for plausibility,
// not against the calendar.
constexpr uint32_t kSetterMonthDays[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

constexpr uint32_t kUtcTimeLength = 13;          // YYMMDDhhmmssZ
constexpr uint32_t kGeneralizedTimeLength = 15;  // YYYYMMDDhhmmssZ
constexpr uint32_t kFractionMark = 14;           // position of "." in a GeneralizedTime with a fraction
// The longest Time element: a two-octet header and a GeneralizedTime without fraction.
constexpr uint32_t kMaxTimeElement = 2 + kGeneralizedTimeLength;

bool IsLeapYear(uint32_t year) { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0); }

// LibraryTime and LibraryPreciseTime share their first six fields; the templates below serve both.
template <typename T>
uint32_t SetDateAndTime(T* t, uint32_t day, uint32_t month, uint32_t year, uint32_t hour, uint32_t minute,
                        uint32_t second) {
    if (!t) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Each field is stored as soon as it passes: callers rely on the partial store (kept as it is).
    if (month < 1 || month > 12) return TV_FAIL(TV_ERR_TIME);
    t->month = month;
    if (day < 1 || day > kSetterMonthDays[month - 1]) return TV_FAIL(TV_ERR_TIME);
    t->day = day;
    if (year < 1900 || year > 2100) return TV_FAIL(TV_ERR_TIME);
    t->year = year;
    if (hour > 23) return TV_FAIL(TV_ERR_TIME);
    t->hour = hour;
    if (minute > 59) return TV_FAIL(TV_ERR_TIME);
    t->minute = minute;
    if (second > 59) return TV_FAIL(TV_ERR_TIME);
    t->second = second;
    return TV_OK;
}

template <typename T>
uint32_t GetDateAndTime(const T* t, uint32_t* day, uint32_t* month, uint32_t* year, uint32_t* hour,
                        uint32_t* minute, uint32_t* second) {
    if (!day || !month || !year || !hour || !minute || !second) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const T zero{};
    const T& v = t ? *t : zero;
    *day = v.day;
    *month = v.month;
    *year = v.year;
    *hour = v.hour;
    *minute = v.minute;
    *second = v.second;
    if (!t) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return TV_OK;
}

uint32_t GetPrecise(const LibraryPreciseTime* t, uint32_t* day, uint32_t* month, uint32_t* year, uint32_t* hour,
                    uint32_t* minute, uint32_t* second, uint32_t* millisecond, uint32_t* microsecond,
                    bool withFraction) {
    if (!day || !month || !year || !hour || !minute || !second || !millisecond || !microsecond)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // With every output present, the only failure left is a null record, which stores zeros.
    const uint32_t rc = GetDateAndTime(t, day, month, year, hour, minute, second);
    *millisecond = t && withFraction ? t->millisecond : 0;
    *microsecond = t && withFraction ? t->microsecond : 0;
    return rc;
}

template <typename T>
uint32_t AddDays(T* t, uint32_t days) {
    if (!t) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // The month indexes the table below: a record that was never set cannot be advanced.
    if (t->month < 1 || t->month > 12) return TV_FAIL(TV_ERR_TIME);
    // A table of our own per call: one shared by all calls, whose February entry each call
    // rewrites, would carry a leap year into the next call's result and race between threads.
    uint32_t monthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    uint32_t year = t->year;
    uint32_t month = t->month;
    monthDays[1] = IsLeapYear(year) ? 29 : 28;
    uint64_t day = uint64_t{t->day} + days;
    // 400 Gregorian years are exactly 146097 days from any date, so whole cycles need no walk.
    constexpr uint32_t kDaysPer400Years = 146097;
    if (day > kDaysPer400Years) {
        const uint64_t cycles = (day - 1) / kDaysPer400Years;
        day -= cycles * kDaysPer400Years;
        year += static_cast<uint32_t>(cycles * 400);
    }
    while (day > monthDays[month - 1]) {
        day -= monthDays[month - 1];
        if (++month > 12) {
            month = 1;
            ++year;
            monthDays[1] = IsLeapYear(year) ? 29 : 28;
        }
    }
    t->year = year;
    t->month = month;
    t->day = static_cast<uint32_t>(day);
    return TV_OK;
}

// ---- text forms ---------------------------------------------------------------------------------

struct TimeText {
    char chars[24];  // the longest form: 14 digits, ".", 6 digits, "Z"
    uint32_t length;
};

// Writes `value` as exactly `width` decimal digits; false when it needs more. By hand rather than
// through printf: a responder formats several times per answer, and printf dominated that path.
bool PutDigits(char*& p, uint32_t value, int width) {
    for (int i = width - 1; i >= 0; --i, value /= 10) p[i] = static_cast<char>('0' + value % 10);
    p += width;
    return value == 0;
}

// YYYYMMDDhhmmss, or YYMMDDhhmmss with the year modulo 100.
bool PutDateAndTime(char*& p, const LibraryTime& t, bool twoDigitYear) {
    bool fits = PutDigits(p, twoDigitYear ? t.year % 100 : t.year, twoDigitYear ? 2 : 4);
    for (uint32_t field : {t.month, t.day, t.hour, t.minute, t.second}) fits = PutDigits(p, field, 2) && fits;
    return fits;
}

// "YYMMDDhhmmssZ" or "YYYYMMDDhhmmssZ". False when a field is wider than its place (a record
// filled without the setter), which would move the "Z".
bool FormatTime(const LibraryTime& t, uint32_t word, TimeText* out) {
    char* p = out->chars;
    const bool fits = PutDateAndTime(p, t, word == ASN1_UTC_TIME);
    *p++ = 'Z';
    out->length = static_cast<uint32_t>(p - out->chars);
    return fits;
}

// The shortest GeneralizedTime that keeps every sub-second digit: 120000.5Z, 120000.000001Z, 120000Z.
bool FormatPreciseTime(const LibraryPreciseTime& t, TimeText* out) {
    char* p = out->chars;
    const LibraryTime whole{t.year, t.month, t.day, t.hour, t.minute, t.second};
    bool fits = PutDateAndTime(p, whole, false);
    *p++ = '.';
    fits = PutDigits(p, t.millisecond, 3) && fits;
    if (!(PutDigits(p, t.microsecond, 3) && fits)) return false;
    uint32_t length = 21;
    while (length > kFractionMark + 1 && out->chars[length - 1] == '0') --length;
    if (length == kFractionMark + 1) length = kFractionMark;  // no fraction left: the "." goes too
    out->chars[length++] = 'Z';
    out->length = length;
    return true;
}

// The Time alternative a record is written as: RFC 5280 moves to GeneralizedTime in 2050.
uint32_t TimeWordFor(const LibraryTime& t) { return t.year < 2050 ? ASN1_UTC_TIME : ASN1_GENERALIZED_TIME; }

// A fresh Time choice for the record. `badRecord` is the code for a record whose text does not
// fit: 1 on the paths that build values for encoding, 313 for the setters.
uint32_t NewTimeChoice(const LibraryTime& t, uint32_t badRecord, void** out) {
    const uint32_t word = TimeWordFor(t);
    TimeText text;
    if (!FormatTime(t, word, &text)) return TV_FAIL(badRecord);
    OwnedValue leaf(&desc::kGeneralizedTime, NewPrimitive(word, reinterpret_cast<const uint8_t*>(text.chars),
                                                          text.length));
    if (!leaf.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    Asn1ChoiceValue* choice = nullptr;
    using Alternative = desc::TimeAlternative;
    const int32_t index = Index(word == ASN1_UTC_TIME ? Alternative::kUtcTime : Alternative::kGeneralTime);
    TV_TRY(NewChoice(index, leaf.get(), &choice));
    leaf.Release();
    *out = choice;
    return TV_OK;
}

uint32_t SetTimeLeaf(void** slot, const LibraryTime* time, uint32_t word) {
    if (!slot) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!time) return TV_FAIL(TV_ERR_TIME);
    TimeText text;
    if (!FormatTime(*time, word, &text)) return TV_FAIL(TV_ERR_TIME);
    return SetOrCreatePrimitive(slot, word, reinterpret_cast<const uint8_t*>(text.chars), text.length);
}

// Two characters as a number. Digits are not checked: a non-digit gives a value that the setter
// refuses, or a wrong one (kept as it is).
uint32_t TwoDigits(const uint8_t* p) {
    return (uint32_t{p[0]} - uint32_t{'0'}) * 10 + (uint32_t{p[1]} - uint32_t{'0'});
}

// Up to three fraction digits, as thousandths: "5" is 500, "05" is 50.
uint32_t Thousandths(const uint8_t* p, uint32_t available) {
    uint32_t v = 0;
    for (uint32_t i = 0; i < 3; ++i) v = v * 10 + (i < available ? uint32_t{p[i]} - uint32_t{'0'} : 0);
    return v;
}

const Asn1Primitive* LeafContents(const void* leaf) {
    auto* p = static_cast<const Asn1Primitive*>(leaf);
    return p->content && p->length ? p : nullptr;
}

template <typename T>
uint32_t StoreTimeText(const uint8_t* c, bool twoDigitYear, T* out) {
    uint32_t year;
    if (twoDigitYear) {
        year = TwoDigits(c);
        year += year > 49 ? 1900 : 2000;  // RFC 5280 4.1.2.5.1: 50..99 are 19xx
        c += 2;
    } else {
        year = TwoDigits(c) * 100 + TwoDigits(c + 2);
        c += 4;
    }
    return SetDateAndTime(out, TwoDigits(c + 2), TwoDigits(c), year, TwoDigits(c + 4), TwoDigits(c + 6),
                          TwoDigits(c + 8));
}

// A time leaf into a record; `minimum` is the shortest contents accepted.
uint32_t ReadTimeLeaf(const void* leaf, bool twoDigitYear, uint32_t minimum, LibraryTime* out) {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!leaf) return TV_FAIL(TV_ERR_ABSENT);
    const Asn1Primitive* p = LeafContents(leaf);
    if (!p) return TV_FAIL(TV_ERR_MALFORMED);
    if (p->length < minimum) return TV_FAIL(TV_ERR_NOT_DER);
    return StoreTimeText(p->content, twoDigitYear, out);
}

bool CurrentUtc(std::tm* out) {
    const std::time_t now = std::time(nullptr);
    // gmtime_r rather than gmtime: the latter hands back one static record shared by all threads.
    return now != static_cast<std::time_t>(-1) && gmtime_r(&now, out) != nullptr;
}

// Kinds a lone primitive element can carry: the leaves the engine keeps as content octets.
bool IsPrimitiveKind(uint32_t code) {
    return code <= 0xFF && (IsScalarKind(static_cast<uint8_t>(code)) || code == ASN1_OBJECT_IDENTIFIER ||
                            code == ASN1_BIT_STRING);
}

}  // namespace

// ---- internal interface -------------------------------------------------------------------------

uint32_t SetUtcTimeLeaf(void** slot, const LibraryTime* time) noexcept {
    return SetTimeLeaf(slot, time, ASN1_UTC_TIME);
}

uint32_t SetGeneralizedTimeLeaf(void** slot, const LibraryTime* time) noexcept {
    return SetTimeLeaf(slot, time, ASN1_GENERALIZED_TIME);
}

uint32_t SetTimeChoice(void** slot, const LibraryTime* time) noexcept {
    if (!slot) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!time) return TV_FAIL(TV_ERR_TIME);
    void* fresh = nullptr;
    TV_TRY(NewTimeChoice(*time, TV_ERR_TIME, &fresh));
    FreeAsn1Object(&desc::kTime, *slot);
    *slot = fresh;
    return TV_OK;
}

uint32_t SetPreciseGeneralizedTimeLeaf(void** slot, const LibraryPreciseTime* time) noexcept {
    if (!slot) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!time) return TV_FAIL(TV_ERR_TIME);
    TimeText text;
    if (!FormatPreciseTime(*time, &text)) return TV_FAIL(TV_ERR_TIME);
    return SetOrCreatePrimitive(slot, ASN1_GENERALIZED_TIME, reinterpret_cast<const uint8_t*>(text.chars),
                                text.length);
}

uint32_t EncodeGeneralizedTimeElement(const LibraryTime* time, uint8_t* out, uint32_t* outLen) noexcept {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!time) return TV_FAIL(TV_ERR_TIME);
    TimeText text;
    if (!FormatTime(*time, ASN1_GENERALIZED_TIME, &text)) return TV_FAIL(TV_ERR_TIME);
    // The leaf borrows the text: nothing here needs the heap.
    Asn1Primitive leaf{ASN1_GENERALIZED_TIME, text.length, reinterpret_cast<uint8_t*>(text.chars)};
    return EncodeSized(TV_SITE, &leaf, &desc::kGeneralizedTime, out, outLen);
}

uint32_t GetTimeFromUtcTimeLeaf(const void* leaf, LibraryTime* out) noexcept {
    // The lone reader asks for 15 octets, the Time reader for 13 (kept as it is).
    return ReadTimeLeaf(leaf, true, kGeneralizedTimeLength, out);
}

uint32_t GetTimeFromGeneralizedTimeLeaf(const void* leaf, LibraryTime* out) noexcept {
    return ReadTimeLeaf(leaf, false, kGeneralizedTimeLength, out);
}

uint32_t GetTimeFromTimeChoice(const void* choice, LibraryTime* out) noexcept {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!choice) return TV_FAIL(TV_ERR_ABSENT);
    auto* c = static_cast<const Asn1ChoiceValue*>(choice);
    if (c->index != Index(desc::TimeAlternative::kUtcTime) && c->index != Index(desc::TimeAlternative::kGeneralTime))
        return TV_FAIL(TV_ERR_NOT_DER);
    // A chosen alternative without its leaf is a time with no contents.
    if (!c->value) return TV_FAIL(TV_ERR_MALFORMED);
    if (c->index == Index(desc::TimeAlternative::kUtcTime)) return ReadTimeLeaf(c->value, true, kUtcTimeLength, out);
    return ReadTimeLeaf(c->value, false, kGeneralizedTimeLength, out);
}

uint32_t GetOptionalTime(const void* leaf, LibraryTime* out) noexcept {
    if (leaf) return GetTimeFromGeneralizedTimeLeaf(leaf, out);
    *out = LibraryTime{};
    return TV_OK;
}

uint32_t GetTimeIfChosen(Site site, const void* choice, LibraryTime* out) noexcept {
    if (!choice || !static_cast<const Asn1ChoiceValue*>(choice)->value) return Fail(site, TV_ERR_ABSENT);
    return GetTimeFromTimeChoice(choice, out);
}

uint32_t GetPreciseTimeFromGeneralizedTimeLeaf(const void* leaf, LibraryPreciseTime* out) noexcept {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!leaf) return TV_FAIL(TV_ERR_ABSENT);
    const Asn1Primitive* p = LeafContents(leaf);
    if (!p) return TV_FAIL(TV_ERR_MALFORMED);
    const uint8_t* c = p->content;
    const uint32_t n = p->length;
    if (n < kGeneralizedTimeLength || c[n - 1] != 'Z') return TV_FAIL(TV_ERR_NOT_DER);
    uint32_t millisecond = 0, microsecond = 0;
    if (n > kGeneralizedTimeLength + 1) {
        if (c[kFractionMark] != '.') return TV_FAIL(TV_ERR_NOT_DER);
        const uint8_t* fraction = c + kFractionMark + 1;
        const uint32_t digits = n - (kFractionMark + 2);  // between the "." and the "Z"
        millisecond = Thousandths(fraction, digits);
        if (n > kGeneralizedTimeLength + 4) microsecond = Thousandths(fraction + 3, digits - 3);
    }
    TV_TRY(StoreTimeText(c, false, out));
    if (millisecond > 999) return TV_FAIL(TV_ERR_TIME);
    out->millisecond = millisecond;
    if (microsecond > 999) return TV_FAIL(TV_ERR_TIME);
    out->microsecond = microsecond;
    return TV_OK;
}

}  // namespace tv

using namespace tv;

// ---- records ------------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateLibraryTime(LibraryTime** outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outTime = New<LibraryTime>();
    if (!*outTime) return TV_FAIL(TV_ERR_NO_MEMORY);
    return TV_OK;
}

extern "C" TV_API uint32_t CreateLibraryPreciseTime(LibraryPreciseTime** outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outTime = New<LibraryPreciseTime>();
    if (!*outTime) return TV_FAIL(TV_ERR_NO_MEMORY);
    return TV_OK;
}

extern "C" TV_API uint32_t CreateAccuracy(Accuracy** outAccuracy) {
    if (!outAccuracy) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAccuracy = New<Accuracy>();
    if (!*outAccuracy) return TV_FAIL(TV_ERR_NO_MEMORY);
    return TV_OK;
}

extern "C" TV_API uint32_t FreeLibraryTime(LibraryTime* time) {
    Free(time);
    return TV_OK;
}

extern "C" TV_API uint32_t FreeLibraryPreciseTime(LibraryPreciseTime* time) {
    Free(time);
    return TV_OK;
}

extern "C" TV_API uint32_t FreeAccuracy(Accuracy* accuracy) {
    Free(accuracy);
    return TV_OK;
}

extern "C" TV_API uint32_t SetLibraryTime(LibraryTime* time, uint32_t day, uint32_t month, uint32_t year,
                                          uint32_t hour, uint32_t minute, uint32_t second) {
    return SetDateAndTime(time, day, month, year, hour, minute, second);
}

extern "C" TV_API uint32_t SetLibraryPreciseTime(LibraryPreciseTime* time, uint32_t day, uint32_t month,
                                                 uint32_t year, uint32_t hour, uint32_t minute, uint32_t second,
                                                 uint32_t millisecond, uint32_t microsecond) {
    TV_TRY(SetDateAndTime(time, day, month, year, hour, minute, second));
    if (millisecond > 999) return TV_FAIL(TV_ERR_TIME);
    time->millisecond = millisecond;
    if (microsecond > 999) return TV_FAIL(TV_ERR_TIME);
    time->microsecond = microsecond;
    return TV_OK;
}

// Month 0 fails the setter's first check, so these refuse with 313 and change nothing; the null
// time comes from the Create functions (kept as it is).
extern "C" TV_API uint32_t SetLibraryTimeToNull(LibraryTime* time) { return SetLibraryTime(time, 0, 0, 0, 0, 0, 0); }

extern "C" TV_API uint32_t SetLibraryPreciseTimeToNull(LibraryPreciseTime* time) {
    return SetLibraryPreciseTime(time, 0, 0, 0, 0, 0, 0, 0, 0);
}

extern "C" TV_API uint32_t SetAccuracy(Accuracy* accuracy, uint32_t seconds, uint32_t milliseconds,
                                       uint32_t microseconds) {
    if (!accuracy) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *accuracy = Accuracy{seconds, milliseconds, microseconds};
    return TV_OK;
}

extern "C" TV_API uint32_t SetAccuracyToNull(Accuracy* accuracy) { return SetAccuracy(accuracy, 0, 0, 0); }

extern "C" TV_API uint32_t IsLibraryTimeNull(const LibraryTime* time) {
    if (!time) return 1;
    return (time->year | time->month | time->day | time->hour | time->minute | time->second) == 0;
}

extern "C" TV_API uint32_t IsLibraryPreciseTimeNull(const LibraryPreciseTime* time) {
    if (!time) return 1;
    return (time->year | time->month | time->day | time->hour | time->minute | time->second | time->millisecond |
            time->microsecond) == 0;
}

extern "C" TV_API uint32_t IsAccuracyNull(const Accuracy* accuracy) {
    if (!accuracy) return 1;
    return (accuracy->seconds | accuracy->milliseconds | accuracy->microseconds) == 0;
}

extern "C" TV_API uint32_t GetLibraryTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth,
                                          uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute,
                                          uint32_t* outSecond) {
    return GetDateAndTime(time, outDay, outMonth, outYear, outHour, outMinute, outSecond);
}

// Times are UTC throughout; the local form is the same reading.
extern "C" TV_API uint32_t GetLibraryLocalTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth,
                                               uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute,
                                               uint32_t* outSecond) {
    return GetDateAndTime(time, outDay, outMonth, outYear, outHour, outMinute, outSecond);
}

extern "C" TV_API uint32_t GetLibraryPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay,
                                                 uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour,
                                                 uint32_t* outMinute, uint32_t* outSecond,
                                                 uint32_t* outMillisecond, uint32_t* outMicrosecond) {
    return GetPrecise(time, outDay, outMonth, outYear, outHour, outMinute, outSecond, outMillisecond,
                      outMicrosecond, true);
}

extern "C" TV_API uint32_t GetLibraryLocalPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay,
                                                      uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour,
                                                      uint32_t* outMinute, uint32_t* outSecond,
                                                      uint32_t* outMillisecond, uint32_t* outMicrosecond) {
    return GetPrecise(time, outDay, outMonth, outYear, outHour, outMinute, outSecond, outMillisecond,
                      outMicrosecond, false);
}

extern "C" TV_API uint32_t GetAccuracy(const Accuracy* accuracy, uint32_t* outSeconds, uint32_t* outMilliseconds,
                                       uint32_t* outMicroseconds) {
    if (!outSeconds || !outMilliseconds || !outMicroseconds) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Accuracy v = accuracy ? *accuracy : Accuracy{};
    *outSeconds = v.seconds;
    *outMilliseconds = v.milliseconds;
    *outMicroseconds = v.microseconds;
    if (!accuracy) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return TV_OK;
}

extern "C" TV_API uint32_t CopyLibraryTime(LibraryTime* outCopy, const LibraryTime* source) {
    if (!outCopy || !source) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outCopy = *source;
    return TV_OK;
}

extern "C" TV_API uint32_t CopyLibraryPreciseTime(LibraryPreciseTime* outCopy, const LibraryPreciseTime* source) {
    if (!outCopy || !source) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outCopy = *source;
    return TV_OK;
}

extern "C" TV_API uint32_t CopyAccuracy(Accuracy* outCopy, const Accuracy* source) {
    if (!outCopy || !source) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outCopy = *source;
    return TV_OK;
}

// A leap second (tm_sec 60) goes through the setter too and is therefore refused with 313.
extern "C" TV_API uint32_t GetCurrentLibTime(LibraryTime* outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    std::tm now{};
    if (!CurrentUtc(&now)) return TV_FAIL(TV_ERR_TIME);
    return SetLibraryTime(outTime, static_cast<uint32_t>(now.tm_mday), static_cast<uint32_t>(now.tm_mon + 1),
                          static_cast<uint32_t>(now.tm_year + 1900), static_cast<uint32_t>(now.tm_hour),
                          static_cast<uint32_t>(now.tm_min), static_cast<uint32_t>(now.tm_sec));
}

extern "C" TV_API uint32_t GetCurrentLibPreciseTime(LibraryPreciseTime* outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    std::tm now{};
    if (!CurrentUtc(&now)) return TV_FAIL(TV_ERR_TIME);
    return SetLibraryPreciseTime(outTime, static_cast<uint32_t>(now.tm_mday), static_cast<uint32_t>(now.tm_mon + 1),
                                 static_cast<uint32_t>(now.tm_year + 1900), static_cast<uint32_t>(now.tm_hour),
                                 static_cast<uint32_t>(now.tm_min), static_cast<uint32_t>(now.tm_sec), 0, 0);
}

extern "C" TV_API uint32_t AddDaysToLibTime(LibraryTime* inOutTime, uint32_t days) {
    return AddDays(inOutTime, days);
}

extern "C" TV_API uint32_t AddDaysToLibPreciseTime(LibraryPreciseTime* inOutTime, uint32_t days) {
    return AddDays(inOutTime, days);
}

extern "C" TV_API int32_t CompareTime(const LibraryTime* timeA, const LibraryTime* timeB) {
    const LibraryTime zero{};
    const LibraryTime& a = timeA ? *timeA : zero;
    const LibraryTime& b = timeB ? *timeB : zero;
    const uint32_t fieldsA[] = {a.year, a.month, a.day, a.hour, a.minute, a.second};
    const uint32_t fieldsB[] = {b.year, b.month, b.day, b.hour, b.minute, b.second};
    for (size_t i = 0; i < 6; ++i)
        if (fieldsA[i] != fieldsB[i]) return fieldsA[i] < fieldsB[i] ? -1 : 1;
    return 0;
}

extern "C" TV_API uint32_t TestTimeValidity(const LibraryTime* start, const LibraryTime* time,
                                            const LibraryTime* end) {
    return CompareTime(start, time) > 0 || CompareTime(time, end) > 0 ? 1 : 0;
}

// ---- X.509 Time ---------------------------------------------------------------------------------

extern "C" TV_API uint32_t EncodeTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!time) return TV_FAIL(TV_ERR_TIME);
    // Built as the setters build it, so these octets are the ones a certificate would carry.
    OwnedValue value(&desc::kTime);
    TV_TRY(NewTimeChoice(*time, TV_ERR_NO_MEMORY, value.Out()));
    uint8_t element[kMaxTimeElement];
    uint32_t n = sizeof element;
    TV_TRY(GetAsn1EncodedValue(value.get(), &desc::kTime, element, &n));
    return PutBytes(TV_SITE, element, n, out, outLen);
}

extern "C" TV_API uint32_t DecodeTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    if (!in || inLen == 0 || !outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kTime);
    TV_TRY(Asn1DecodeItem(in, inLen, &desc::kTime, value.Out(), nullptr));
    return GetTimeFromTimeChoice(value.get(), outTime);
}

// ---- lone primitive elements --------------------------------------------------------------------

extern "C" TV_API uint32_t EncodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                    uint32_t* outLen) {
    if (!in || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!IsPrimitiveKind(typeCode)) return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    const Asn1Descriptor d = Prim(static_cast<uint8_t>(typeCode));
    // The values borrow the caller's octets; nothing is copied before the write.
    if (typeCode == ASN1_BIT_STRING) {
        // The contents of a BIT STRING start with its count of unused bits.
        if (inLen == 0 || in[0] > 7) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        Asn1BitStringValue bits{in[0], inLen - 1, const_cast<uint8_t*>(in + 1)};
        return EncodeSized(TV_SITE, &bits, &d, out, outLen);
    }
    Asn1Primitive leaf{typeCode, inLen, const_cast<uint8_t*>(in)};
    return EncodeSized(TV_SITE, &leaf, &d, out, outLen);
}

extern "C" TV_API uint32_t DecodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                    uint32_t* outLen) {
    if (!in || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!IsPrimitiveKind(typeCode)) return TV_FAIL(TV_ERR_UNSUPPORTED_TYPE);
    const Asn1Descriptor d = Prim(static_cast<uint8_t>(typeCode));
    OwnedValue value(&d);
    TV_TRY(Asn1DecodeItem(in, inLen, &d, value.Out(), nullptr));
    if (typeCode != ASN1_BIT_STRING) {
        auto* leaf = value.as<Asn1Primitive>();
        return PutBytes(TV_SITE, leaf->content, leaf->length, out, outLen);
    }
    // Handed back as they were read: the unused-bits octet, then the bits.
    auto* bits = value.as<Asn1BitStringValue>();
    const size_t needed = size_t{bits->length} + 1;
    if (!out || *outLen < needed) return PutBytes(TV_SITE, nullptr, needed, out, outLen);
    out[0] = static_cast<uint8_t>(bits->unusedBits);
    if (bits->length) std::memcpy(out + 1, bits->content, bits->length);
    *outLen = static_cast<uint32_t>(needed);
    return TV_OK;
}
