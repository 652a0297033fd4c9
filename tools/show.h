// tarvelon show: readable summary of a certificate, CRL or certification request.
#ifndef TARVELON_TOOLS_SHOW_H
#define TARVELON_TOOLS_SHOW_H

#include <cstdint>
#include <vector>

// Prints the summary of the DER object read from `path` to stdout. Returns the process exit code;
// on failure one message naming the file and the library status goes to stderr.
int ShowObject(const char* path, const std::vector<uint8_t>& der);

#endif
