// tarvelon show: the summary of an X.509 certificate.
#include "show.h"

#include <cstdio>
#include <string>
#include <vector>

#include "render.h"

namespace show {
namespace {

// A validity time the library's records cannot hold (a year past 2100, such as RFC 5280's
// 99991231235959Z for "no expiry") is shown from its own text: `which` 0 is notBefore, 1 notAfter.
std::string ValidityText(Certificate* cert, int which) {
    Bytes der;
    if (Fetch(der, [&](uint8_t* o, uint32_t* n) { return EncodeCertificate(cert, o, n); }) != TV_OK) return "";
    Element top, validity;
    std::vector<Element> parts, tbs, times;
    if (!ReadElement(der.data(), der.size(), top) || !Children(top, parts) || parts.empty() || !Children(parts[0], tbs))
        return "";
    const size_t at = !tbs.empty() && Is(tbs[0], ASN1_CLASS_CONTEXT, 0) ? 4 : 3;  // after [0] version, if any
    if (at >= tbs.size() || !Children(tbs[at], times) || times.size() != 2) return "";
    const Element& t = times[which];
    std::string text(reinterpret_cast<const char*>(t.content), t.len);
    if (IsUniversal(t, ASN1_UTC_TIME) && text.size() >= 12) text = (text < "50" ? "20" : "19") + text;
    if (!(IsUniversal(t, ASN1_UTC_TIME) || IsUniversal(t, ASN1_GENERALIZED_TIME)) || text.size() < 14) return "";
    return text.substr(0, 4) + "-" + text.substr(4, 2) + "-" + text.substr(6, 2) + " " + text.substr(8, 2) + ":" +
           text.substr(10, 2) + ":" + text.substr(12, 2) + " UTC";
}

std::string TimeField(Report& report, Certificate* cert, int which) {
    LibraryTime t{};
    const uint32_t rc = which == 0 ? GetCertificateValidNotBefore(cert, &t) : GetCertificateValidNotAfter(cert, &t);
    if (rc == TV_OK) return TimeText(t);
    const std::string own = rc == TV_ERR_TIME ? ValidityText(cert, which) : "";
    return own.empty() ? report.Failed(rc) : own;
}

}  // namespace

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
    Print(1, "Not before: " + TimeField(report, cert, 0));
    Print(1, "Not after:  " + TimeField(report, cert, 1));
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

std::string Fingerprint(const Bytes& der) {
    uint8_t digest[20];
    return sha1(der.data(), static_cast<uint32_t>(der.size()), digest) == TV_OK ? Hex(Bytes(digest, digest + 20)) : "?";
}

int ShowCertificateFields(const char* path, const Bytes& der, const std::vector<std::string>& fields) {
    Certificate* cert = nullptr;
    const uint32_t rc = DecodeCertificate(der.data(), static_cast<uint32_t>(der.size()), &cert);
    int status = 0;
    for (const std::string& field : fields) {
        if (field == "fingerprint") {
            std::printf("SHA1 Fingerprint=%s\n", Fingerprint(der).c_str());
            continue;
        }
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: -%s needs a certificate (status %u)\n", path, field.c_str(), rc);
            status = 1;
            continue;
        }
        Report report;
        X509Name* name = nullptr;
        if (field == "subject" || field == "issuer") {
            const uint32_t got = field == "subject" ? GetCertificateSubject(cert, &name) : GetCertificateIssuer(cert, &name);
            std::printf("%s=%s\n", field.c_str(), NameField(report, got, name).c_str());
        } else if (field == "serial") {
            Bytes serial;
            const uint32_t got = Fetch(serial, [&](uint8_t* o, uint32_t* n) { return GetCertificateSerialNumber(cert, o, n); });
            std::string hex = got == TV_OK ? Hex(serial) : report.Failed(got);
            if (got == TV_OK) std::erase(hex, ':');
            std::printf("serial=%s\n", hex.c_str());
        } else if (field == "dates") {
            std::printf("notBefore=%s\nnotAfter=%s\n", TimeField(report, cert, 0).c_str(), TimeField(report, cert, 1).c_str());
        }
        if (report.failures) status = 1;
    }
    FreeCertificate(cert);
    return status;
}

}  // namespace show
