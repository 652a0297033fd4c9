// tarvelon show: readable summary of a certificate, CRL, certification request, OCSP message, CMS
// signed or enveloped message, time-stamp query or reply, or SeveralData; tarvelon signers: the
// signers of a CMS signed message.
#ifndef TARVELON_TOOLS_SHOW_H
#define TARVELON_TOOLS_SHOW_H

#include <cstdint>
#include <string>
#include <vector>

#include "tarvelon/tarvelon.h"

#include "render.h"

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

// The SHA-1 fingerprint of an object's encoding, as colon hex (the library's own SHA-1).
std::string Fingerprint(const std::vector<uint8_t>& der);

// Field selectors for scripts (`show -noout -subject ...`), certificates only: prints one
// `name=value` line per selected field in the order given; returns the exit code.
int ShowCertificateFields(const char* path, const std::vector<uint8_t>& der, const std::vector<std::string>& fields);

// CMS signed messages (show_cms.cpp). A ContentInfo that holds no SignedData is refused with
// TV_ERR_NOT_SIGNED_DATA; `problem` then says why in a few words (", content type ... is not ...").
uint32_t DecodeSignedMessage(const std::vector<uint8_t>& der, CmsSignedData** signedData, std::string& problem);
uint32_t DecodeAndShowCms(const std::vector<uint8_t>& der, int& failures, std::string& problem);

// CMS enveloped messages (show_enveloped.cpp): a ContentInfo whose content type is envelopedData.
bool IsEnvelopedMessage(const std::vector<uint8_t>& der);
uint32_t DecodeAndShowEnveloped(const std::vector<uint8_t>& der, int& failures, std::string& problem);

// RFC 3161 time-stamp queries and replies, and SeveralData (show_timestamp.cpp).
bool IsTimeStampQuery(const std::vector<uint8_t>& der);
bool IsTimeStampReply(const std::vector<uint8_t>& der);
bool IsSeveralData(const std::vector<uint8_t>& der);
uint32_t DecodeAndShowQuery(const std::vector<uint8_t>& der, int& failures, std::string& problem);
uint32_t DecodeAndShowReply(const std::vector<uint8_t>& der, int& failures, std::string& problem);
uint32_t DecodeAndShowSeveral(const std::vector<uint8_t>& der, int& failures, std::string& problem);
// The TSTInfo a time-stamp token signs, at `depth`.
void PrintTstInfo(Report& report, const Bytes& der, int depth);

// ---- shared by the CMS summaries (show_cms.cpp) --------------------------------------------------

// SEQUENCE { OBJECT IDENTIFIER, [0] ... }, the shape of every CMS message (show.cpp): its content
// type, dotted, or "" for another shape. Only the outer header and the OID must be whole.
std::string ContentInfoType(const Bytes& der);
bool IsContentInfo(const Bytes& der);
// The CMS content types by name.
extern const OidName kCmsContentTypes[7];

// A stored certificate or CRL of a CMS message in one line: a plain one decoded, others by kind.
std::string CertificateLine(uint32_t kind, const Bytes& der);
std::string CrlLine(uint32_t kind, const Bytes& der);
// An attribute list given its getter's status: a title with the count and every attribute, or the
// status of a failed getter. An empty list prints "(none)" when `none` is set, else nothing.
void PrintAttributes(Report& report, uint32_t rc, const RsaAttributes* attributes, const char* title, bool none,
                     int depth);

// The certificates or the CRLs a CMS message carries, one line each at depth 2; none prints nothing.
template <class Object>
void PrintStored(Report& report, const char* title, const Object* o, uint32_t (*countOf)(const Object*, uint32_t*),
                 uint32_t (*get)(const Object*, uint32_t, uint32_t*, uint8_t*, uint32_t*),
                 std::string (*lineOf)(uint32_t kind, const Bytes& der)) {
    uint32_t count = 0;
    uint32_t rc = countOf(o, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    if (rc != TV_OK) Print(1, std::string(title) + ": " + report.Failed(rc));
    if (count) Print(1, std::string(title) + " (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t kind = 0;
        Bytes der;
        rc = Fetch(der, [&](uint8_t* out, uint32_t* n) { return get(o, i, &kind, out, n); });
        Print(2, rc == TV_OK ? lineOf(kind, der) : report.Failed(rc));
    }
}

// A signer's or recipient's identifier: "issuer NAME, serial HEX" or "key id HEX".
template <class Object>
std::string IdentifierText(Report& report, Object* o,
                           uint32_t (*get)(Object*, X509Name**, uint8_t*, uint32_t*, uint8_t*, uint32_t*)) {
    X509Name* issuer = nullptr;
    uint32_t serialLen = 0, keyIdLen = 0;
    uint32_t rc = get(o, &issuer, nullptr, &serialLen, nullptr, &keyIdLen);
    Bytes serial(serialLen + 1), keyId(keyIdLen + 1);
    if (rc == TV_OK) rc = get(o, &issuer, serial.data(), &serialLen, keyId.data(), &keyIdLen);
    if (rc != TV_OK) return report.Failed(rc);
    serial.resize(serialLen);
    keyId.resize(keyIdLen);
    if (!issuer) return "key id " + Hex(keyId);
    return "issuer " + NameField(report, TV_OK, issuer) + ", serial " + Hex(serial);
}

// One line per signer of the message read from `path`: number, signing time, name. Returns the
// process exit code.
int ListSigners(const char* path, const std::vector<uint8_t>& der);

}  // namespace show

#endif
