/**
 * @file tarvelon/time.h
 * Library time records and the ASN.1 time forms. All times are UTC.
 */
#ifndef TARVELON_TIME_H
#define TARVELON_TIME_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A calendar time to the second; the all-zero record is the null time. */
typedef struct LibraryTime {
    uint32_t year;   /**< 1900..2100 */
    uint32_t month;  /**< 1..12 */
    uint32_t day;    /**< 1..days of the month (February always allows 29) */
    uint32_t hour;   /**< 0..23 */
    uint32_t minute; /**< 0..59 */
    uint32_t second; /**< 0..59 */
} LibraryTime;

/** A calendar time to the microsecond. */
typedef struct LibraryPreciseTime {
    uint32_t year;        /**< 1900..2100 */
    uint32_t month;       /**< 1..12 */
    uint32_t day;         /**< 1..days of the month (February always allows 29) */
    uint32_t hour;        /**< 0..23 */
    uint32_t minute;      /**< 0..59 */
    uint32_t second;      /**< 0..59 */
    uint32_t millisecond; /**< 0..999 */
    uint32_t microsecond; /**< 0..999, within the millisecond */
} LibraryPreciseTime;

/** Accuracy of a time stamp (RFC 3161); no range checks. */
typedef struct Accuracy {
    uint32_t seconds;      /**< Whole seconds. */
    uint32_t milliseconds; /**< Milliseconds (RFC 3161 allows 1..999). */
    uint32_t microseconds; /**< Microseconds (RFC 3161 allows 1..999). */
} Accuracy;

/* Records. Set* checks and stores field by field (month, day, year, hour, minute, second, then the
   sub-second fields): a failed call leaves the fields before the failing one changed. */
/**
 * Creates a time record holding the null time (all fields 0).
 *
 * @param[out] outTime  Receives a new record owned by the caller (FreeLibraryTime()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateLibraryTime(LibraryTime** outTime);
/**
 * Creates a precise time record holding the null time (all fields 0).
 *
 * @param[out] outTime  Receives a new record owned by the caller (FreeLibraryPreciseTime()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateLibraryPreciseTime(LibraryPreciseTime** outTime);
/**
 * Creates an accuracy record with all fields 0.
 *
 * @param[out] outAccuracy  Receives a new record owned by the caller (FreeAccuracy()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateAccuracy(Accuracy** outAccuracy);
/**
 * Frees a time record made by CreateLibraryTime().
 *
 * @param[in] time  The record (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeLibraryTime(LibraryTime* time);
/**
 * Frees a precise time record made by CreateLibraryPreciseTime().
 *
 * @param[in] time  The record (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeLibraryPreciseTime(LibraryPreciseTime* time);
/**
 * Frees an accuracy record made by CreateAccuracy().
 *
 * @param[in] accuracy  The record (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeAccuracy(Accuracy* accuracy);
/**
 * Sets a time record after checking each field against its range.
 *
 * The fields are checked and stored one by one in the order month, day, year, hour, minute,
 * second: a failed call leaves the fields before the failing one changed (behaviour kept). The day
 * is checked against the month only, February always allowing 29.
 *
 * @param[in,out] time    The record (borrowed).
 * @param[in]     day     1 to the days of @p month.
 * @param[in]     month   1 to 12.
 * @param[in]     year    1900 to 2100.
 * @param[in]     hour    0 to 23.
 * @param[in]     minute  0 to 59.
 * @param[in]     second  0 to 59.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field out of its range.
 */
TV_API uint32_t SetLibraryTime(LibraryTime* time, uint32_t day, uint32_t month, uint32_t year, uint32_t hour, uint32_t minute, uint32_t second);
/**
 * Sets a precise time record after checking each field against its range, as SetLibraryTime()
 * does, then the millisecond and the microsecond.
 *
 * @param[in,out] time         The record (borrowed).
 * @param[in]     day          1 to the days of @p month.
 * @param[in]     month        1 to 12.
 * @param[in]     year         1900 to 2100.
 * @param[in]     hour         0 to 23.
 * @param[in]     minute       0 to 59.
 * @param[in]     second       0 to 59.
 * @param[in]     millisecond  0 to 999.
 * @param[in]     microsecond  0 to 999.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field out of its range, the fields
 *         before it already stored.
 */
TV_API uint32_t SetLibraryPreciseTime(LibraryPreciseTime* time, uint32_t day, uint32_t month, uint32_t year, uint32_t hour, uint32_t minute, uint32_t second, uint32_t millisecond, uint32_t microsecond);
/**
 * Meant to set the null time, but refuses: it goes through the setter, whose month check fails
 * first, so the record is left unchanged (behaviour kept). A null time comes from
 * CreateLibraryTime() or a zero-filled record.
 *
 * @param[in,out] time  The record (borrowed); not changed.
 * @return #TV_ERR_TIME (313) for any record; #TV_ERR_INVALID_ARGUMENT for a null one.
 */
TV_API uint32_t SetLibraryTimeToNull(LibraryTime* time);
/**
 * Meant to set the null time, but refuses like SetLibraryTimeToNull() and leaves the record
 * unchanged (behaviour kept). A null time comes from CreateLibraryPreciseTime() or a zero-filled
 * record.
 *
 * @param[in,out] time  The record (borrowed); not changed.
 * @return #TV_ERR_TIME (313) for any record; #TV_ERR_INVALID_ARGUMENT for a null one.
 */
TV_API uint32_t SetLibraryPreciseTimeToNull(LibraryPreciseTime* time);
/**
 * Sets an accuracy record; the values are stored unchecked.
 *
 * @param[in,out] accuracy      The record (borrowed).
 * @param[in]     seconds       Whole seconds.
 * @param[in]     milliseconds  Milliseconds.
 * @param[in]     microseconds  Microseconds.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetAccuracy(Accuracy* accuracy, uint32_t seconds, uint32_t milliseconds, uint32_t microseconds);
/**
 * Sets every field of an accuracy record to 0.
 *
 * @param[in,out] accuracy  The record (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetAccuracyToNull(Accuracy* accuracy);

/* Truth values, not statuses: 1 when the pointer is null or every field is 0. */
/**
 * Tests whether a time record holds the null time.
 *
 * @param[in] time  The record (borrowed), may be null.
 * @return 1 when @p time is null or every field is 0, otherwise 0. Not a status.
 */
TV_API uint32_t IsLibraryTimeNull(const LibraryTime* time);
/**
 * Tests whether a precise time record holds the null time, sub-second fields included.
 *
 * @param[in] time  The record (borrowed), may be null.
 * @return 1 when @p time is null or every field is 0, otherwise 0. Not a status.
 */
TV_API uint32_t IsLibraryPreciseTimeNull(const LibraryPreciseTime* time);
/**
 * Tests whether an accuracy record is all zero.
 *
 * @param[in] accuracy  The record (borrowed), may be null.
 * @return 1 when @p accuracy is null or every field is 0, otherwise 0. Not a status.
 */
TV_API uint32_t IsAccuracyNull(const Accuracy* accuracy);

/* A null record stores 0 in every output and returns 32. The Local forms do no zone conversion. */
/**
 * Reads the fields of a time record.
 *
 * @param[in]  time       The record (borrowed); null stores 0 in every output and fails.
 * @param[out] outDay     Receives the day.
 * @param[out] outMonth   Receives the month.
 * @param[out] outYear    Receives the year.
 * @param[out] outHour    Receives the hour.
 * @param[out] outMinute  Receives the minute.
 * @param[out] outSecond  Receives the second.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null record, after the
 *         zeros are stored.
 */
TV_API uint32_t GetLibraryTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond);
/**
 * Reads the fields of a time record exactly as GetLibraryTime() does: times are UTC throughout and
 * no zone conversion takes place.
 *
 * @param[in]  time       The record (borrowed); null stores 0 in every output and fails.
 * @param[out] outDay     Receives the day.
 * @param[out] outMonth   Receives the month.
 * @param[out] outYear    Receives the year.
 * @param[out] outHour    Receives the hour.
 * @param[out] outMinute  Receives the minute.
 * @param[out] outSecond  Receives the second.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null record, after the
 *         zeros are stored.
 */
TV_API uint32_t GetLibraryLocalTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond);
/**
 * Reads the fields of a precise time record.
 *
 * @param[in]  time            The record (borrowed); null stores 0 in every output and fails.
 * @param[out] outDay          Receives the day.
 * @param[out] outMonth        Receives the month.
 * @param[out] outYear         Receives the year.
 * @param[out] outHour         Receives the hour.
 * @param[out] outMinute       Receives the minute.
 * @param[out] outSecond       Receives the second.
 * @param[out] outMillisecond  Receives the millisecond.
 * @param[out] outMicrosecond  Receives the microsecond.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null record, after the
 *         zeros are stored.
 */
TV_API uint32_t GetLibraryPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond, uint32_t* outMillisecond, uint32_t* outMicrosecond);
/**
 * Reads a precise time record to the second, without zone conversion: unlike
 * GetLibraryPreciseTime(), the millisecond and microsecond are always stored as 0.
 *
 * @param[in]  time            The record (borrowed); null stores 0 in every output and fails.
 * @param[out] outDay          Receives the day.
 * @param[out] outMonth        Receives the month.
 * @param[out] outYear         Receives the year.
 * @param[out] outHour         Receives the hour.
 * @param[out] outMinute       Receives the minute.
 * @param[out] outSecond       Receives the second.
 * @param[out] outMillisecond  Receives 0.
 * @param[out] outMicrosecond  Receives 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null record, after the
 *         zeros are stored.
 */
TV_API uint32_t GetLibraryLocalPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond, uint32_t* outMillisecond, uint32_t* outMicrosecond);
/**
 * Reads the fields of an accuracy record.
 *
 * @param[in]  accuracy         The record (borrowed); null stores 0 in every output and fails.
 * @param[out] outSeconds       Receives the seconds.
 * @param[out] outMilliseconds  Receives the milliseconds.
 * @param[out] outMicroseconds  Receives the microseconds.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for a null record, after the
 *         zeros are stored.
 */
TV_API uint32_t GetAccuracy(const Accuracy* accuracy, uint32_t* outSeconds, uint32_t* outMilliseconds, uint32_t* outMicroseconds);
/**
 * Copies a time record into another; note the destination comes first.
 *
 * @param[out] outCopy  Caller record that receives the copy.
 * @param[in]  source   The record to copy (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CopyLibraryTime(LibraryTime* outCopy, const LibraryTime* source);
/**
 * Copies a precise time record into another; note the destination comes first.
 *
 * @param[out] outCopy  Caller record that receives the copy.
 * @param[in]  source   The record to copy (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CopyLibraryPreciseTime(LibraryPreciseTime* outCopy, const LibraryPreciseTime* source);
/**
 * Copies an accuracy record into another; note the destination comes first.
 *
 * @param[out] outCopy  Caller record that receives the copy.
 * @param[in]  source   The record to copy (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CopyAccuracy(Accuracy* outCopy, const Accuracy* source);

/* Current system time in UTC; the precise form stores zero sub-second fields. */
/**
 * Reads the current system time in UTC, to the second.
 *
 * The time goes through SetLibraryTime(), so a leap second (second 60) is refused.
 *
 * @param[out] outTime  Caller record that receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) when the clock cannot be read or gives a
 *         time the record does not take.
 */
TV_API uint32_t GetCurrentLibTime(LibraryTime* outTime);
/**
 * Reads the current system time in UTC into a precise record; the sub-second fields are stored
 * as 0.
 *
 * @param[out] outTime  Caller record that receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) as for GetCurrentLibTime().
 */
TV_API uint32_t GetCurrentLibPreciseTime(LibraryPreciseTime* outTime);

/* Calendar arithmetic on the date; the time of day (and the sub-second fields) stay. */
/**
 * Moves a time forward by whole days on the Gregorian calendar (leap years counted); the time of
 * day stays.
 *
 * The resulting year is not checked against the setter's range.
 *
 * @param[in,out] inOutTime  The record (borrowed).
 * @param[in]     days       Days to add.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a record whose month is not 1 to 12
 *         (such as the null time).
 */
TV_API uint32_t AddDaysToLibTime(LibraryTime* inOutTime, uint32_t days);
/**
 * Moves a precise time forward by whole days, as AddDaysToLibTime() does; the time of day and the
 * sub-second fields stay.
 *
 * @param[in,out] inOutTime  The record (borrowed).
 * @param[in]     days       Days to add.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a record whose month is not 1 to 12.
 */
TV_API uint32_t AddDaysToLibPreciseTime(LibraryPreciseTime* inOutTime, uint32_t days);

/* -1, 0 or 1 ordering a before, equal to or after b to the second; a null record reads as all zero. */
/**
 * Orders two times to the second, field by field from the year down.
 *
 * @param[in] timeA  First time (borrowed); null reads as the null time.
 * @param[in] timeB  Second time (borrowed); null reads as the null time.
 * @return -1 when @p timeA is earlier, 0 when equal, 1 when later. Not a status.
 */
TV_API int32_t CompareTime(const LibraryTime* timeA, const LibraryTime* timeB);
/* 1 when time lies outside [start, end], else 0. */
/**
 * Tests whether a time lies within a period, both ends included.
 *
 * @param[in] start  Start of the period (borrowed); null reads as the null time.
 * @param[in] time   The time to test (borrowed); null reads as the null time.
 * @param[in] end    End of the period (borrowed); null reads as the null time.
 * @return 0 when @p time lies within [@p start, @p end], 1 when outside. Not a status.
 */
TV_API uint32_t TestTimeValidity(const LibraryTime* start, const LibraryTime* time, const LibraryTime* end);

/* The DER X.509 Time (RFC 5280 4.1.2.5): UTCTime before 2050, GeneralizedTime from 2050 on. */
/**
 * Writes a time as the DER X.509 Time element: UTCTime before 2050, GeneralizedTime from 2050 on.
 *
 * Years before 1950 are also written as UTCTime and so read back a century later. The fields are
 * not range-checked here; a field too wide for its digits (a record filled without the setter)
 * answers #TV_ERR_NO_MEMORY (1), as the value-building paths do (behaviour kept).
 *
 * @param[in]     time    The time (borrowed).
 * @param[out]    out     Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a null @p time, #TV_ERR_NO_MEMORY (1)
 *         also for a field too wide (see above).
 */
TV_API uint32_t EncodeTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
/**
 * Reads an X.509 Time element, UTCTime or GeneralizedTime, into a time record.
 *
 * A two-digit year from 50 on is 19xx, below 50 20xx. The digits are not checked as digits, and
 * anything after the seconds (a fraction, the "Z") is ignored. The fields go through the setter,
 * so a failure may leave some of them stored.
 *
 * @param[in]  in       The element (borrowed); octets after it are ignored.
 * @param[in]  inLen    Octets in @p in, at least 1.
 * @param[out] outTime  Caller record that receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field out of its range.
 */
TV_API uint32_t DecodeTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* One primitive element of universal type typeCode around the given content octets, and back. */
/**
 * Wraps content octets in one DER primitive element of a universal type.
 *
 * The contents are not checked against the type. For a BIT STRING, the first octet of @p in is
 * the count of unused bits (0 to 7), as in the encoding.
 *
 * @param[in]     typeCode  A leaf type code: BOOLEAN, INTEGER, BIT STRING, OCTET STRING, NULL,
 *                          OBJECT IDENTIFIER, ENUMERATED, or a string or time type (ASN1_*).
 * @param[in]     in        The content octets (borrowed); not null, even when empty.
 * @param[in]     inLen     Octets in @p in.
 * @param[out]    out       Caller buffer for the element, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_UNSUPPORTED_TYPE (300) for a type code that is not a
 *         leaf, #TV_ERR_INVALID_ARGUMENT also for a BIT STRING without a valid unused-bits octet.
 */
TV_API uint32_t EncodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the content octets of one element of a universal type; the inverse of
 * EncodeAsn1PrimitiveValue().
 *
 * The element must carry the universal tag of @p typeCode. A segmented OCTET STRING of indefinite
 * length comes back joined; BOOLEAN and INTEGER contents must be DER. A BIT STRING comes back with
 * its unused-bits octet first. Octets after the element are ignored.
 *
 * @param[in]     typeCode  A leaf type code, as for EncodeAsn1PrimitiveValue().
 * @param[in]     in        The element (borrowed).
 * @param[in]     inLen     Octets in @p in.
 * @param[out]    out       Caller buffer for the content octets, or null to ask their number.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_UNSUPPORTED_TYPE (300) for a type code that is not a
 *         leaf.
 */
TV_API uint32_t DecodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
