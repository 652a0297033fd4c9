// tarvelon show: readable summary of a certificate, CRL, certification request or OCSP message.
#ifndef TARVELON_TOOLS_SHOW_H
#define TARVELON_TOOLS_SHOW_H

#include <cstdint>
#include <vector>

#include "tarvelon/tarvelon.h"

namespace show {

// Prints the summary of the DER object read from `path` to stdout. Returns the process exit code;
// on failure one message naming the file and the library status goes to stderr.
int ShowObject(const char* path, const std::vector<uint8_t>& der);

// The summary of one kind of object, each in its own show_<kind>.cpp. Returns the number of fields
// that could not be read.
int ShowCertificate(Certificate* cert);
int ShowCrl(X509Crl* crl);
int ShowRequest(PKCS10CertReq* request);
int ShowOcspRequest(OcspRequest* request);
int ShowOcspResponse(OcspResponse* response);

}  // namespace show

#endif
