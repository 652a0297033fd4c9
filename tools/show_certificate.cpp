// tarvelon show: the summary of an X.509 certificate.
#include "show.h"

#include <string>

#include "render.h"

namespace show {

int ShowCertificate(Certificate* cert) {
    Report report;
    std::string err;
    Print(0, "Certificate:");
    uint32_t version = 0;
    uint32_t rc = GetCertificateVersion(cert, &version);
    Print(1, "Version: " + VersionField(report, rc, version));
    Bytes serial = Need(report, err, [&](uint8_t* o, uint32_t* n) { return GetCertificateSerialNumber(cert, o, n); });
    Print(1, "Serial: " + (err.empty() ? Hex(serial) : err));
    X509Name* name = nullptr;
    rc = GetCertificateIssuer(cert, &name);
    Print(1, "Issuer: " + NameField(report, rc, name));
    LibraryTime t{};
    rc = GetCertificateValidNotBefore(cert, &t);
    Print(1, "Not before: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetCertificateValidNotAfter(cert, &t);
    Print(1, "Not after:  " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetCertificateSubject(cert, &name);
    Print(1, "Subject: " + NameField(report, rc, name));

    PrintAlgorithmPart(Part::PublicKey, report, cert, GetCertificatePublicKeyAlgorithmOidAndParameters,
                       GetCertificatePublicKey);

    // Unique identifiers are rare (v2 only); absent ones print nothing.
    for (auto get : {GetCertificateIssuerUniqueId, GetCertificateSubjectUniqueId}) {
        uint8_t unused = 0;
        Bytes id;
        if (Fetch(id, [&](uint8_t* o, uint32_t* n) { return get(cert, o, n, &unused); }) == TV_OK && !id.empty())
            Print(1,
                  std::string(get == GetCertificateIssuerUniqueId ? "Issuer" : "Subject") + " unique id: " + Hex(id));
    }

    X509Extensions* extensions = nullptr;
    rc = GetCertificateExtensions(cert, &extensions);
    PrintExtensions(rc, extensions, 1, "Extensions", report);

    PrintAlgorithmPart(Part::Signature, report, cert, GetCertificateSignatureAlgorithmOidAndParameters,
                       GetCertificateSignature);
    return report.failures;
}

}  // namespace show
