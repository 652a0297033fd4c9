// tarvelon show: readable summary of a certificate, CRL, certification request, OCSP message or CMS
// signed message; tarvelon signers: the signers of a CMS signed message.
#ifndef TARVELON_TOOLS_SHOW_H
#define TARVELON_TOOLS_SHOW_H

#include <cstdint>
#include <string>
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

// CMS signed messages (show_cms.cpp). A ContentInfo that holds no SignedData is refused with
// TV_ERR_NOT_SIGNED_DATA; `problem` then says why in a few words (", content type ... is not ...").
uint32_t DecodeSignedMessage(const std::vector<uint8_t>& der, CmsSignedData** signedData, std::string& problem);
uint32_t DecodeAndShowCms(const std::vector<uint8_t>& der, int& failures, std::string& problem);

// One line per signer of the message read from `path`: number, signing time, name. Returns the
// process exit code.
int ListSigners(const char* path, const std::vector<uint8_t>& der);

}  // namespace show

#endif
