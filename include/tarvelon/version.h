/* Tarvelon: the version of these headers (the library's is the SONAME's, libtarvelon.so.1).
 *
 * Threads: distinct value trees may be used from different threads at the same time; one tree must
 * never be used from two threads at once. The library keeps no other shared state than the
 * last-error record of GetLastFileErrorAsn, which is process-wide: after a failure, another
 * thread's failure may already have replaced it. */
#ifndef TARVELON_VERSION_H
#define TARVELON_VERSION_H

#define TARVELON_VERSION_MAJOR 1
#define TARVELON_VERSION_MINOR 0
#define TARVELON_VERSION_PATCH 0

#endif
