// tarvelon show: the summaries of OCSP requests and responses (RFC 6960). Both carry CertIDs and
// lists of certificates, which are printed the same way.
#include "show.h"

#include <iterator>
#include <string>

#include "render.h"

namespace show {
namespace {

// OCSPResponseStatus (RFC 6960 4.2.1); 4 is not used.
const char* const kResponseStatuses[] = {"successful", "malformedRequest", "internalError", "tryLater",
                                         nullptr,      "sigRequired",      "unauthorized"};

constexpr char kBasicResponseType[] = "1.3.6.1.5.5.7.48.1.1";  // id-pkix-ocsp-basic

// hashAlgorithm (OID, parameters), issuerNameHash, issuerKeyHash, serialNumber.
struct CertId {
    Bytes oid, params, nameHash, keyHash, serial;
};

// Both CertID getters hand out the five parts in one call under the size protocol; `get` is called
// with the five buffers and sizes in that order.
template <class Get>
uint32_t ReadCertId(CertId& id, Get&& get) {
    Bytes* parts[] = {&id.oid, &id.params, &id.nameHash, &id.keyHash, &id.serial};
    uint8_t* at[5] = {};
    uint32_t n[5] = {};
    if (uint32_t rc = get(at, n)) return rc;
    for (int i = 0; i < 5; ++i) {
        parts[i]->assign(n[i] + 1, 0);
        at[i] = parts[i]->data();
    }
    if (uint32_t rc = get(at, n)) return rc;
    for (int i = 0; i < 5; ++i) parts[i]->resize(n[i]);
    return TV_OK;
}

// The CertID at `depth`, its hashes one level deeper.
void PrintCertId(Report& report, uint32_t rc, const CertId& id, int depth) {
    if (rc != TV_OK) {
        Print(depth, "Certificate ID: " + report.Failed(rc));
        return;
    }
    Print(depth, "Certificate ID: " + AlgorithmText(id.oid) + ", serial " + Hex(id.serial));
    Print(depth + 1, "Issuer name hash: " + Hex(id.nameHash));
    Print(depth + 1, "Issuer key hash: " + Hex(id.keyHash));
}

// The certificates that come with the signature, one line each; none prints nothing.
template <class Object>
void PrintCertificates(Report& report, const Object* object, uint32_t (*count)(const Object*, uint32_t*),
                       uint32_t (*get)(const Object*, uint32_t, Certificate**)) {
    uint32_t n = 0;
    uint32_t rc = count(object, &n);
    if (rc == TV_ERR_ABSENT) n = 0, rc = TV_OK;
    if (rc != TV_OK) Print(1, "Certificates: " + report.Failed(rc));
    if (n) Print(1, "Certificates (" + std::to_string(n) + "):");
    for (uint32_t i = 0; i < n; ++i) {
        Certificate* cert = nullptr;
        if ((rc = get(object, i, &cert)) != TV_OK) {
            Print(2, report.Failed(rc));
            continue;
        }
        X509Name* subject = nullptr;
        rc = GetCertificateSubject(cert, &subject);
        std::string err;
        Bytes serial =
            Need(report, err, [&](uint8_t* o, uint32_t* len) { return GetCertificateSerialNumber(cert, o, len); });
        Print(2, "Serial " + (err.empty() ? Hex(serial) : err) + ", subject " + NameField(report, rc, subject));
    }
}

std::string CertStatusText(Report& report, const OcspSingleResponse* single) {
    uint32_t status = 0;
    if (uint32_t rc = GetOcspSingleResponseCertStatus(single, &status)) return report.Failed(rc);
    if (status == TV_OCSP_STATUS_GOOD) return "good";
    if (status == TV_OCSP_STATUS_UNKNOWN) return "unknown";
    LibraryTime t{};
    int32_t reason = -1;
    if (uint32_t rc = GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason))
        return "revoked, " + report.Failed(rc);
    return "revoked " + TimeText(t) + (reason >= 0 ? ", " + ReasonText(static_cast<uint32_t>(reason)) : "");
}

void PrintSingleResponse(Report& report, OcspSingleResponse* single) {
    CertId id;
    uint32_t rc = ReadCertId(id, [&](uint8_t** p, uint32_t* n) {
        return GetOcspSingleResponseCertID(single, p[0], &n[0], p[1], &n[1], p[2], &n[2], p[3], &n[3], p[4], &n[4]);
    });
    PrintCertId(report, rc, id, 2);
    Print(3, "Status: " + CertStatusText(report, single));
    LibraryTime t{};
    rc = GetOcspSingleResponseThisUpdate(single, &t);
    Print(3, "This update: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetOcspSingleResponseNextUpdate(single, &t);
    if (rc != TV_ERR_ABSENT) Print(3, "Next update: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    X509Extensions* extensions = nullptr;
    rc = GetOcspSingleResponseExtensions(single, &extensions);
    PrintExtensions(rc, extensions, 3, "Single extensions", report);
}

void PrintBasicResponse(Report& report, OcspBasicResponse* basic) {
    uint32_t version = 0;
    uint32_t rc = GetOcspBasicResponseVersion(basic, &version);
    Print(1, "Version: " + VersionField(report, rc, version));
    uint32_t kind = 0;
    Bytes responder;
    rc = Fetch(responder,
               [&](uint8_t* o, uint32_t* n) { return GetOcspBasicResponseResponderID(basic, &kind, o, n); });
    if (rc == TV_OK && kind == TV_OCSP_RESPONDER_BY_KEY) {
        Print(1, "Responder key hash: " + Hex(responder));
    } else {
        X509Name* name = nullptr;
        if (rc == TV_OK) rc = DecodeX509Name(responder.data(), static_cast<uint32_t>(responder.size()), &name);
        Print(1, "Responder: " + NameField(report, rc, name));
        FreeX509Name(name);
    }
    LibraryTime t{};
    rc = GetOcspBasicResponseProducedAt(basic, &t);
    Print(1, "Produced at: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));

    uint32_t count = 0;
    rc = GetOcspBasicResponseSingleResponsesCount(basic, &count);
    Print(1, "Responses: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        OcspSingleResponse* single = nullptr;
        if (uint32_t got = GetOcspBasicResponseSingleResponse(basic, i, &single))
            Print(2, "response " + std::to_string(i + 1) + ": " + report.Failed(got));
        else
            PrintSingleResponse(report, single);
    }
    X509Extensions* extensions = nullptr;
    rc = GetOcspBasicResponseExtensions(basic, &extensions);
    PrintExtensions(rc, extensions, 1, "Response extensions", report);

    PrintAlgorithmPart(Part::Signature, report, basic, GetOcspBasicResponseSignatureAlgorithmAndParameters,
                       GetOcspBasicResponseSignature);
    PrintCertificates(report, basic, GetOcspBasicResponseCertificatesCount, GetOcspBasicResponseCertificate);
}

}  // namespace

int ShowOcspRequest(OcspRequest* request) {
    Report report;
    Print(0, "OCSP request:");
    uint32_t version = 0;
    uint32_t rc = GetOcspRequestVersion(request, &version);
    Print(1, "Version: " + VersionField(report, rc, version));
    uint32_t kind = 0;
    Bytes requestor;
    rc = Fetch(requestor,
               [&](uint8_t* o, uint32_t* n) { return GetOcspRequestRequestorNameValue(request, &kind, o, n); });
    if (rc != TV_ERR_ABSENT)
        Print(1, "Requestor: " + (rc == TV_OK ? GeneralNameText(kind, requestor) : report.Failed(rc)));

    uint32_t count = 0;
    rc = GetOcspRequestCertRequestsCount(request, &count);
    Print(1, "Requests: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        CertId id;
        X509Extensions* extensions = nullptr;
        const uint32_t got = ReadCertId(id, [&](uint8_t** p, uint32_t* n) {
            return GetOcspRequestCertRequest(request, i, p[0], &n[0], p[1], &n[1], p[2], &n[2], p[3], &n[3], p[4],
                                             &n[4], &extensions);
        });
        PrintCertId(report, got, id, 2);
        if (got == TV_OK) PrintExtensions(TV_OK, extensions, 3, "Single request extensions", report);
    }
    X509Extensions* extensions = nullptr;
    rc = GetOcspRequestExtensions(request, &extensions);
    PrintExtensions(rc, extensions, 1, "Request extensions", report);

    rc = IsExistsOcspRequestSignature(request);
    if (rc != TV_OK) {
        Print(1, "Signature: " + (rc == TV_ERR_ABSENT ? "(none)" : report.Failed(rc)));
        return report.failures;
    }
    PrintAlgorithmPart(Part::Signature, report, request, GetOcspRequestSignatureAlgorithmAndParameters,
                       GetOcspRequestSignature);
    PrintCertificates(report, request, GetOcspRequestCertificatesCount, GetOcspRequestCertificate);
    return report.failures;
}

int ShowOcspResponse(OcspResponse* response) {
    Report report;
    Print(0, "OCSP response:");
    uint32_t status = 0;
    uint32_t rc = GetOcspResponseStatus(response, &status);
    const char* name = status < std::size(kResponseStatuses) ? kResponseStatuses[status] : nullptr;
    Print(1, "Status: " + (rc != TV_OK ? report.Failed(rc) : name ? name : "undefined, " + std::to_string(status)));

    uint8_t type[256];
    Bytes bytes;
    rc = Fetch(bytes, [&](uint8_t* o, uint32_t* n) {
        uint32_t typeLen = sizeof type;
        return GetOcspResponseBytes(response, type, &typeLen, o, n);
    });
    if (rc == TV_ERR_ABSENT) return report.failures;
    if (rc != TV_OK) {
        Print(1, "Response bytes: " + report.Failed(rc));
        return report.failures;
    }
    const std::string dotted = OidText(type);
    if (dotted != kBasicResponseType) {
        Print(1, "Response type: " + dotted + ", " + std::to_string(bytes.size()) + " bytes");
        return report.failures;
    }
    Print(1, "Response type: basic (" + dotted + ")");
    OcspBasicResponse* basic = nullptr;
    rc = DecodeOcspBasicResponse(bytes.data(), static_cast<uint32_t>(bytes.size()), &basic);
    if (rc == TV_OK)
        PrintBasicResponse(report, basic);
    else
        Print(1, "Basic response: " + report.Failed(rc));
    FreeOcspBasicResponse(basic);
    return report.failures;
}

}  // namespace show
