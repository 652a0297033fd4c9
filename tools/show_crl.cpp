// tarvelon show: the summary of an X.509 CRL; long lists of revoked certificates are cut short.
#include "show.h"

#include <string>

#include "render.h"

namespace show {

constexpr uint32_t kEntriesShown = 20;

int ShowCrl(X509Crl* crl) {
    Report report;
    std::string err;
    Print(0, "CRL:");
    uint32_t version = 0;
    uint32_t rc = GetX509CrlVersion(crl, &version);
    Print(1, "Version: " + VersionField(report, rc, version));
    X509Name* name = nullptr;
    rc = GetX509CrlIssuer(crl, &name);
    Print(1, "Issuer: " + NameField(report, rc, name));
    LibraryTime t{};
    rc = GetX509CrlThisUpdate(crl, &t);
    Print(1, "This update: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetX509CrlNextUpdate(crl, &t);
    Print(1, "Next update: " + (rc == TV_OK ? TimeText(t) : rc == TV_ERR_ABSENT ? "(none)" : report.Failed(rc)));

    X509Extensions* extensions = nullptr;
    rc = GetX509CrlExtensions(crl, &extensions);
    PrintExtensions(rc, extensions, 1, "Extensions", report);

    uint32_t count = 0;
    rc = GetX509CrlRevokedCertificateCount(crl, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    Print(1, "Revoked certificates: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    const uint32_t shown = count < kEntriesShown ? count : kEntriesShown;
    for (uint32_t i = 0; i < shown; ++i) {
        Bytes serial = Need(report, err, [&](uint8_t* o, uint32_t* n) {
            return GetX509CrlRevokedCertificateSerialNumber(crl, i, o, n);
        });
        rc = GetX509CrlRevokedCertificateRevokationDate(crl, i, &t);
        Print(2, "Serial " + (err.empty() ? Hex(serial) : err) + ", revoked " +
                     (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
        X509Extensions* entry = nullptr;
        rc = GetX509CrlRevokedCertificateExtensions(crl, i, &entry);
        PrintExtensions(rc, entry, 3, "Entry extensions", report);
    }
    if (shown < count) Print(2, "... and " + std::to_string(count - shown) + " more");

    PrintAlgorithmPart(Part::Signature, report, crl, GetX509CrlSignatureAlgorithmOidAndParameters, GetX509CrlSignature);
    return report.failures;
}

}  // namespace show
