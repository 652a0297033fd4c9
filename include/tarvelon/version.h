/**
 * @file tarvelon/version.h
 * The version of these headers (the library's own is in its SONAME, libtarvelon.so.1) and the
 * thread model.
 *
 * Threads: distinct value trees may be used from different threads at the same time; one tree must
 * never be used from two threads at once. The library keeps no other shared state than the
 * last-error record of GetLastFileErrorAsn, which is process-wide: after a failure, another
 * thread's failure may already have replaced it (@ref threads).
 */
#ifndef TARVELON_VERSION_H
#define TARVELON_VERSION_H

/** Major version: changes when the interface breaks callers. */
#define TARVELON_VERSION_MAJOR 1
/** Minor version: changes when functions are added. */
#define TARVELON_VERSION_MINOR 0
/** Patch version: changes for fixes that leave the interface alone. */
#define TARVELON_VERSION_PATCH 0

#endif
