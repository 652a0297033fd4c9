/* Tarvelon: library time records and the ASN.1 time forms. All times are UTC. */
#ifndef TARVELON_TIME_H
#define TARVELON_TIME_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A calendar time to the second; the all-zero record is the null time. */
typedef struct LibraryTime {
    uint32_t year;   /* 1900..2100 */
    uint32_t month;  /* 1..12 */
    uint32_t day;    /* 1..days of the month (February always allows 29) */
    uint32_t hour;   /* 0..23 */
    uint32_t minute; /* 0..59 */
    uint32_t second; /* 0..59 */
} LibraryTime;

/* A calendar time to the microsecond. */
typedef struct LibraryPreciseTime {
    uint32_t year;
    uint32_t month;
    uint32_t day;
    uint32_t hour;
    uint32_t minute;
    uint32_t second;
    uint32_t millisecond; /* 0..999 */
    uint32_t microsecond; /* 0..999 */
} LibraryPreciseTime;

/* Accuracy of a time stamp (RFC 3161); no range checks. */
typedef struct Accuracy {
    uint32_t seconds;
    uint32_t milliseconds;
    uint32_t microseconds;
} Accuracy;

/* Records. Set* checks and stores field by field (month, day, year, hour, minute, second, then the
   sub-second fields): a failed call leaves the fields before the failing one changed. */
TV_API uint32_t CreateLibraryTime(LibraryTime** outTime);
TV_API uint32_t CreateLibraryPreciseTime(LibraryPreciseTime** outTime);
TV_API uint32_t CreateAccuracy(Accuracy** outAccuracy);
TV_API uint32_t FreeLibraryTime(LibraryTime* time);
TV_API uint32_t FreeLibraryPreciseTime(LibraryPreciseTime* time);
TV_API uint32_t FreeAccuracy(Accuracy* accuracy);
TV_API uint32_t SetLibraryTime(LibraryTime* time, uint32_t day, uint32_t month, uint32_t year, uint32_t hour, uint32_t minute, uint32_t second);
TV_API uint32_t SetLibraryPreciseTime(LibraryPreciseTime* time, uint32_t day, uint32_t month, uint32_t year, uint32_t hour, uint32_t minute, uint32_t second, uint32_t millisecond, uint32_t microsecond);
TV_API uint32_t SetLibraryTimeToNull(LibraryTime* time);
TV_API uint32_t SetLibraryPreciseTimeToNull(LibraryPreciseTime* time);
TV_API uint32_t SetAccuracy(Accuracy* accuracy, uint32_t seconds, uint32_t milliseconds, uint32_t microseconds);
TV_API uint32_t SetAccuracyToNull(Accuracy* accuracy);

/* Truth values, not statuses: 1 when the pointer is null or every field is 0. */
TV_API uint32_t IsLibraryTimeNull(const LibraryTime* time);
TV_API uint32_t IsLibraryPreciseTimeNull(const LibraryPreciseTime* time);
TV_API uint32_t IsAccuracyNull(const Accuracy* accuracy);

/* A null record stores 0 in every output and returns 32. The Local forms do no zone conversion. */
TV_API uint32_t GetLibraryTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond);
TV_API uint32_t GetLibraryLocalTime(const LibraryTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond);
TV_API uint32_t GetLibraryPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond, uint32_t* outMillisecond, uint32_t* outMicrosecond);
TV_API uint32_t GetLibraryLocalPreciseTime(const LibraryPreciseTime* time, uint32_t* outDay, uint32_t* outMonth, uint32_t* outYear, uint32_t* outHour, uint32_t* outMinute, uint32_t* outSecond, uint32_t* outMillisecond, uint32_t* outMicrosecond);
TV_API uint32_t GetAccuracy(const Accuracy* accuracy, uint32_t* outSeconds, uint32_t* outMilliseconds, uint32_t* outMicroseconds);
TV_API uint32_t CopyLibraryTime(LibraryTime* outCopy, const LibraryTime* source);
TV_API uint32_t CopyLibraryPreciseTime(LibraryPreciseTime* outCopy, const LibraryPreciseTime* source);
TV_API uint32_t CopyAccuracy(Accuracy* outCopy, const Accuracy* source);

/* Current system time in UTC; the precise form stores zero sub-second fields. */
TV_API uint32_t GetCurrentLibTime(LibraryTime* outTime);
TV_API uint32_t GetCurrentLibPreciseTime(LibraryPreciseTime* outTime);

/* Calendar arithmetic on the date; the time of day (and the sub-second fields) stay. */
TV_API uint32_t AddDaysToLibTime(LibraryTime* inOutTime, uint32_t days);
TV_API uint32_t AddDaysToLibPreciseTime(LibraryPreciseTime* inOutTime, uint32_t days);

/* -1, 0 or 1 ordering a before, equal to or after b to the second; a null record reads as all zero. */
TV_API int32_t CompareTime(const LibraryTime* timeA, const LibraryTime* timeB);
/* 1 when time lies outside [start, end], else 0. */
TV_API uint32_t TestTimeValidity(const LibraryTime* start, const LibraryTime* time, const LibraryTime* end);

/* The DER X.509 Time (RFC 5280 4.1.2.5): UTCTime before 2050, GeneralizedTime from 2050 on. */
TV_API uint32_t EncodeTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* One primitive element of universal type typeCode around the given content octets, and back. */
TV_API uint32_t EncodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeAsn1PrimitiveValue(uint32_t typeCode, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
