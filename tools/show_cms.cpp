// tarvelon show and signers: CMS signed messages (RFC 5652 ContentInfo holding SignedData). The
// certificates and CRLs the message carries are decoded one by one for a line each; the signed and
// unsigned attributes of every signer go through the library's attribute value codecs.
#include "show.h"

#include <cstdio>
#include <iterator>
#include <string>

#include "render.h"

namespace show {
namespace {

constexpr char kSignedDataType[] = "1.2.840.113549.1.7.2";
constexpr char kTstInfoType[] = "1.2.840.113549.1.9.16.1.4";  // the eContent of a time-stamp token

}  // namespace

const OidName kCmsContentTypes[7] = {
    {"1.2.840.113549.1.7.1", "data"},
    {"1.2.840.113549.1.7.2", "signedData"},
    {"1.2.840.113549.1.7.3", "envelopedData"},
    {"1.2.840.113549.1.7.5", "digestedData"},
    {"1.2.840.113549.1.7.6", "encryptedData"},
    {"1.2.840.113549.1.9.16.1.2", "authData"},
    {"1.2.840.113549.1.9.16.1.4", "tSTInfo"},
};

namespace {

// Indexed by the TV_CMS_CERT_* kind; 0 is an identifier octet of no known kind.
const char* const kCertificateKinds[] = {"unknown kind",           "certificate",
                                         "extended certificate",   "attribute certificate v1",
                                         "attribute certificate v2", "other certificate format"};

// ---------------------------------------------------------------------------------------------
// Attributes

using Printer = uint32_t (*)(const Bytes& v, Lines& out);

// Buffers for decoder outputs: no decoded part is longer than the value it came from.
Bytes Room(const Bytes& v) { return Bytes(v.size() + 1); }

uint32_t PrintContentType(const Bytes& v, Lines& out) {
    uint8_t oid[256];
    uint32_t len = sizeof oid;
    if (uint32_t rc = DecodeRsaAttributeContentTypeValue(v.data(), static_cast<uint32_t>(v.size()), oid, &len))
        return rc;
    out.Add(0, NamedWithOid(kCmsContentTypes, OidText(oid)));
    return TV_OK;
}

uint32_t PrintMessageDigest(const Bytes& v, Lines& out) {
    Bytes digest = Room(v);
    auto len = static_cast<uint32_t>(digest.size());
    if (uint32_t rc =
            DecodeRsaAttributeMessageDigestValue(v.data(), static_cast<uint32_t>(v.size()), digest.data(), &len))
        return rc;
    digest.resize(len);
    out.Add(0, Hex(digest));
    return TV_OK;
}

uint32_t PrintSigningTime(const Bytes& v, Lines& out) {
    LibraryTime t{};
    if (uint32_t rc = DecodeRsaAttributeSigningTimeValue(v.data(), static_cast<uint32_t>(v.size()), &t)) return rc;
    out.Add(0, TimeText(t));
    return TV_OK;
}

// One ESSCertID or ESSCertIDv2: the hash with its algorithm, then the issuer and serial when given.
void AddCertId(uint32_t index, const std::string& algorithm, const Bytes& hash, const GeneralNames* issuer,
               const Bytes& serial, Lines& out) {
    out.Add(0, "Certificate " + std::to_string(index + 1) + ": " + algorithm + ", hash " + Hex(hash));
    if (!issuer) return;
    if (uint32_t rc = AddGeneralNames(issuer, 1, "Issuer: ", out))
        out.Add(1, "Issuer: <unreadable, status " + std::to_string(rc) + ">");
    out.Add(1, "Serial: " + Hex(serial));
}

void AddPolicies(const CertificatePolicies* policies, Lines& out) {
    uint32_t count = 0;
    if (!policies || GetExtensionPolicyInformationCount(policies, &count) != TV_OK) return;
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t len = sizeof oid;
        out.Add(0, "Policy: " + (GetExtensionPolicyInformation(policies, i, oid, &len) == TV_OK ? OidText(oid)
                                                                                                 : std::string("?")));
    }
}

// SigningCertificate (RFC 2634): the hashes are SHA-1.
uint32_t PrintSigningCertificate(const Bytes& v, Lines& out) {
    ESSCertIDs* certs = nullptr;
    CertificatePolicies* policies = nullptr;
    uint32_t rc = DecodeRsaAttributeSigningCertificateValue(v.data(), static_cast<uint32_t>(v.size()), &certs, &policies);
    uint32_t count = 0;
    if (rc == TV_OK) rc = GetESSCertIDCount(certs, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        Bytes hash = Room(v), serial = Room(v);
        auto hashLen = static_cast<uint32_t>(hash.size()), serialLen = static_cast<uint32_t>(serial.size());
        GeneralNames* issuer = nullptr;
        rc = GetESSCertIDInformation(certs, i, hash.data(), &hashLen, &issuer, serial.data(), &serialLen);
        hash.resize(hashLen);
        serial.resize(serialLen);
        if (rc == TV_OK) AddCertId(i, "sha1 (1.3.14.3.2.26)", hash, issuer, serial, out);
    }
    if (rc == TV_OK) AddPolicies(policies, out);
    FreeESSCertIDs(certs);
    FreeExtensionCertificatePolicies(policies);
    return rc;
}

// SigningCertificateV2 (RFC 5035): the hash algorithm is read back as SHA-256 when left out.
uint32_t PrintSigningCertificateV2(const Bytes& v, Lines& out) {
    ESSCertIDsV2* certs = nullptr;
    CertificatePolicies* policies = nullptr;
    uint32_t rc =
        DecodeRsaAttributeSigningCertificateV2Value(v.data(), static_cast<uint32_t>(v.size()), &certs, &policies);
    uint32_t count = 0;
    if (rc == TV_OK) rc = GetESSCertIDV2Count(certs, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        Bytes oid(256), params = Room(v), hash = Room(v), serial = Room(v);
        auto oidLen = static_cast<uint32_t>(oid.size()), paramsLen = static_cast<uint32_t>(params.size());
        auto hashLen = static_cast<uint32_t>(hash.size()), serialLen = static_cast<uint32_t>(serial.size());
        GeneralNames* issuer = nullptr;
        rc = GetESSCertIDV2Information(certs, i, oid.data(), &oidLen, params.data(), &paramsLen, hash.data(), &hashLen,
                                       &issuer, serial.data(), &serialLen);
        oid.resize(oidLen);
        hash.resize(hashLen);
        serial.resize(serialLen);
        if (rc == TV_OK) AddCertId(i, AlgorithmText(oid), hash, issuer, serial, out);
    }
    if (rc == TV_OK) AddPolicies(policies, out);
    FreeESSCertIDsV2(certs);
    FreeExtensionCertificatePolicies(policies);
    return rc;
}

struct AttributeKind {
    const char* oid;
    const char* name;
    Printer print;  // null: only the value's length is shown
};

const AttributeKind kAttributes[] = {
    {"1.2.840.113549.1.9.3", "contentType", PrintContentType},
    {"1.2.840.113549.1.9.4", "messageDigest", PrintMessageDigest},
    {"1.2.840.113549.1.9.5", "signingTime", PrintSigningTime},
    {"1.2.840.113549.1.9.6", "counterSignature", nullptr},
    {"1.2.840.113549.1.9.15", "smimeCapabilities", nullptr},
    {"1.2.840.113549.1.9.16.2.4", "contentHints", nullptr},
    {"1.2.840.113549.1.9.16.2.7", "contentIdentifier", nullptr},
    {"1.2.840.113549.1.9.16.2.12", "signingCertificate", PrintSigningCertificate},
    {"1.2.840.113549.1.9.16.2.14", "signatureTimeStampToken", nullptr},
    {"1.2.840.113549.1.9.16.2.15", "signaturePolicyIdentifier", nullptr},
    {"1.2.840.113549.1.9.16.2.16", "commitmentTypeIndication", nullptr},
    {"1.2.840.113549.1.9.16.2.17", "signerLocation", nullptr},
    {"1.2.840.113549.1.9.16.2.19", "otherSigningCertificate", nullptr},
    {"1.2.840.113549.1.9.16.2.20", "contentTimeStamp", nullptr},
    {"1.2.840.113549.1.9.16.2.21", "completeCertificateRefs", nullptr},
    {"1.2.840.113549.1.9.16.2.22", "completeRevocationRefs", nullptr},
    {"1.2.840.113549.1.9.16.2.23", "certValues", nullptr},
    {"1.2.840.113549.1.9.16.2.24", "revocationValues", nullptr},
    {"1.2.840.113549.1.9.16.2.25", "escTimeStamp", nullptr},
    {"1.2.840.113549.1.9.16.2.47", "signingCertificateV2", PrintSigningCertificateV2},
    {"0.4.0.1733.2.4", "archiveTimestampV3", nullptr},
    {"0.4.0.1733.2.5", "ATSHashIndex", nullptr},
};

const AttributeKind* FindAttribute(const std::string& dotted) {
    for (const AttributeKind& kind : kAttributes)
        if (dotted == kind.oid) return &kind;
    return nullptr;
}

// One value of an attribute: decoded by its kind's codec, else (or when that fails) its length.
Lines AttributeValueLines(const AttributeKind* kind, const Bytes& value) {
    Lines lines;
    const uint32_t rc = kind && kind->print ? kind->print(value, lines) : uint32_t{TV_ERR_NOT_FOUND};
    if (rc != TV_OK) {
        lines.items.clear();
        std::string text = std::to_string(value.size()) + " bytes";
        if (kind && kind->print) text += " (not decoded, status " + std::to_string(rc) + ")";
        lines.Add(0, text);
    }
    return lines;
}

}  // namespace

void PrintAttributes(Report& report, uint32_t rc, const RsaAttributes* attributes, const char* title, bool none,
                     int depth) {
    uint32_t count = 0;
    if (rc == TV_OK && attributes) rc = GetRsaAttributesAttributesCount(attributes, &count);
    if (rc != TV_OK && rc != TV_ERR_ABSENT) {
        Print(depth, std::string(title) + ": " + report.Failed(rc));
        return;
    }
    if (count == 0) {
        if (none) Print(depth, std::string(title) + ": (none)");
        return;
    }
    Print(depth, std::string(title) + " (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, values = 0;
        rc = GetRsaAttributesAttributeOid(attributes, i, oid, &oidLen);
        if (rc == TV_OK) rc = GetRsaAttributesAttributeValuesCount(attributes, i, &values);
        if (rc != TV_OK) {
            Print(depth + 1, "attribute " + std::to_string(i + 1) + ": " + report.Failed(rc));
            continue;
        }
        const std::string dotted = OidText(oid);
        const AttributeKind* kind = FindAttribute(dotted);
        const std::string head = kind ? std::string(kind->name) : dotted;
        if (values == 0) Print(depth + 1, head + ": (no value)");
        for (uint32_t k = 0; k < values; ++k) {
            Bytes value;
            rc = Fetch(value, [&](uint8_t* o, uint32_t* n) { return GetRsaAttributesAttributeValue(attributes, i, k, o, n); });
            PrintHeaded(depth + 1, head, rc == TV_OK ? AttributeValueLines(kind, value) : Lines{{{0, report.Failed(rc)}}});
        }
    }
}

namespace {

// ---------------------------------------------------------------------------------------------
// Certificates, CRLs, signers

}  // namespace

std::string CertificateLine(uint32_t kind, const Bytes& der) {
    if (kind != TV_CMS_CERT_CERTIFICATE)
        return std::string(kCertificateKinds[kind < std::size(kCertificateKinds) ? kind : 0]) + ", " +
               std::to_string(der.size()) + " bytes";
    Certificate* cert = nullptr;
    if (uint32_t rc = DecodeCertificate(der.data(), static_cast<uint32_t>(der.size()), &cert))
        return "certificate, " + std::to_string(der.size()) + " bytes (not decoded, status " + std::to_string(rc) + ")";
    Bytes serial;
    const uint32_t serialRc =
        Fetch(serial, [&](uint8_t* o, uint32_t* n) { return GetCertificateSerialNumber(cert, o, n); });
    X509Name *subject = nullptr, *issuer = nullptr;
    const uint32_t subjectRc = GetCertificateSubject(cert, &subject);
    const uint32_t issuerRc = GetCertificateIssuer(cert, &issuer);
    const auto status = [](uint32_t rc) { return "<unreadable, status " + std::to_string(rc) + ">"; };
    std::string line = "Serial " + (serialRc == TV_OK ? Hex(serial) : status(serialRc)) + ", subject " +
                       (subjectRc == TV_OK ? CommonNameText(subject) : status(subjectRc)) + ", issuer " +
                       (issuerRc == TV_OK ? CommonNameText(issuer) : status(issuerRc));
    FreeCertificate(cert);
    return line;
}

namespace {

// OtherRevocationInfoFormat ::= SEQUENCE { otherRevInfoFormat OBJECT IDENTIFIER, otherRevInfo ANY },
// handed out under its [1] identifier.
std::string OtherRevocationFormat(const Bytes& der) {
    Element outer;
    std::vector<Element> parts;
    if (!ReadElement(der.data(), der.size(), outer) || !Children(outer, parts) || parts.empty() ||
        !IsUniversal(parts[0], ASN1_OBJECT_IDENTIFIER) || parts[0].len >= 256)
        return "?";
    uint8_t packed[256] = {static_cast<uint8_t>(parts[0].len)};
    std::copy(parts[0].content, parts[0].content + parts[0].len, packed + 1);
    return OidText(packed);
}

}  // namespace

std::string CrlLine(uint32_t kind, const Bytes& der) {
    if (kind != TV_CMS_CRL_CERTIFICATE_LIST)
        return "other revocation info " + OtherRevocationFormat(der) + ", " + std::to_string(der.size()) + " bytes";
    X509Crl* crl = nullptr;
    if (uint32_t rc = DecodeX509Crl(der.data(), static_cast<uint32_t>(der.size()), &crl))
        return "CRL, " + std::to_string(der.size()) + " bytes (not decoded, status " + std::to_string(rc) + ")";
    X509Name* issuer = nullptr;
    LibraryTime t{};
    uint32_t entries = 0;
    uint32_t rc = GetX509CrlIssuer(crl, &issuer);
    std::string line = "Issuer " + (rc == TV_OK ? CommonNameText(issuer) : "<unreadable, status " + std::to_string(rc) + ">");
    rc = GetX509CrlThisUpdate(crl, &t);
    line += ", this update " + (rc == TV_OK ? TimeText(t) : "<unreadable, status " + std::to_string(rc) + ">");
    rc = GetX509CrlRevokedCertificateCount(crl, &entries);
    if (rc == TV_ERR_ABSENT) entries = 0, rc = TV_OK;
    line += ", " + (rc == TV_OK ? std::to_string(entries) : "<unreadable, status " + std::to_string(rc) + ">") +
            " entries";
    FreeX509Crl(crl);
    return line;
}

namespace {

void PrintSigner(Report& report, CmsSignerInfo* signer) {
    Print(3, "Identifier: " + IdentifierText(report, signer, GetCmsSignerInfoSignerIdentifier));
    uint32_t version = 0;
    uint32_t rc = GetCmsSignerInfoVersion(signer, &version);
    Print(3, "Version: " + (rc == TV_OK ? std::to_string(version) : report.Failed(rc)));
    AlgorithmParts digest;
    rc = GetAlgorithm(digest, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) {
        return GetCmsSignerInfoDigestAlgorithmOidAndParameters(signer, o, ol, p, pl);
    });
    Print(3, "Digest algorithm: " + (rc == TV_OK ? AlgorithmText(digest.oid) : report.Failed(rc)));
    PrintAlgorithmPart(Part::Signature, report, signer, GetCmsSignerInfoSignatureAlgorithmOidAndParameters,
                       GetCmsSignerInfoSignature, 3);
    RsaAttributes* attributes = nullptr;
    rc = GetCmsSignerInfoSignedAttributes(signer, &attributes);
    PrintAttributes(report, rc, attributes, "Signed attributes", true, 3);
    rc = GetCmsSignerInfoUnsignedAttributes(signer, &attributes);
    PrintAttributes(report, rc, attributes, "Unsigned attributes", false, 3);
}

int ShowSignedData(CmsSignedData* sd) {
    Report report;
    Print(0, "CMS signed message:");
    uint32_t version = 0;
    uint32_t rc = GetCmsSignedDataVersion(sd, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version) : report.Failed(rc)));
    uint8_t type[256];
    uint32_t typeLen = sizeof type;
    rc = GetCmsSignedDataContentTypeOid(sd, type, &typeLen);
    Print(1, "Content type: " + (rc == TV_OK ? NamedWithOid(kCmsContentTypes, OidText(type)) : report.Failed(rc)));
    uint32_t contentLen = 0;
    rc = GetCmsSignedDataContent(sd, nullptr, &contentLen);
    Print(1, "Content: " + (rc != TV_OK      ? report.Failed(rc)
                            : contentLen == 0 ? std::string("detached")
                                              : std::to_string(contentLen) + " bytes"));
    if (rc == TV_OK && contentLen && typeLen && OidText(type) == kTstInfoType) {
        Bytes tstInfo;
        if ((rc = Fetch(tstInfo, [&](uint8_t* o, uint32_t* n) { return GetCmsSignedDataContent(sd, o, n); })) == TV_OK)
            PrintTstInfo(report, tstInfo, 1);
    }

    uint32_t count = 0;
    rc = GetCmsSignedDataDigestAlgorithmsCount(sd, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    Print(1, "Digest algorithms: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        AlgorithmParts alg;
        const uint32_t got = GetAlgorithm(alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) {
            return GetCmsSignedDataDigestAlgorithmOidAndParameters(sd, i, o, ol, p, pl);
        });
        Print(2, got == TV_OK ? AlgorithmText(alg.oid) : report.Failed(got));
    }

    PrintStored(report, "Certificates", sd, GetCmsSignedDataCertificatesCount, GetCmsSignedDataEncodedCertificate,
                CertificateLine);
    PrintStored(report, "CRLs", sd, GetCmsSignedDataCrlsCount, GetCmsSignedDataEncodedCrl, CrlLine);

    rc = GetCmsSignedDataSignerInfosCount(sd, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    Print(1, "Signers: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        CmsSignerInfo* signer = nullptr;
        const uint32_t got = GetCmsSignedDataSignerInfo(sd, i, &signer);
        if (got != TV_OK) {
            Print(2, "Signer " + std::to_string(i + 1) + ": " + report.Failed(got));
            continue;
        }
        Print(2, "Signer " + std::to_string(i + 1) + ":");
        PrintSigner(report, signer);
    }
    return report.failures;
}


// The signer texts are the library's display texts in code page 1251; the terminal gets UTF-8.
// Failures count in the report and show in place of the name.
std::string SignerName(Report& report, CmsSignedData* sd, uint32_t number, const Bytes& der) {
    const auto len = static_cast<uint32_t>(der.size());
    uint32_t textLen = 0;
    uint32_t rc = GetBufferCmsSignatureTimeAndCN(number, der.data(), len, nullptr, nullptr, &textLen);
    std::string ansi(textLen + 1, '\0');
    if (rc == TV_OK) rc = GetBufferCmsSignatureTimeAndCN(number, der.data(), len, nullptr, ansi.data(), &textLen);
    // A key identifier longer than the display text allows has no text: show the identifier itself.
    CmsSignerInfo* signer = nullptr;
    if (rc == TV_ERR_BUFFER_TOO_SMALL && GetCmsSignedDataSignerInfo(sd, number - 1, &signer) == TV_OK)
        return IdentifierText(report, signer, GetCmsSignerInfoSignerIdentifier);
    if (rc != TV_OK) return report.Failed(rc);
    ansi.resize(textLen);
    // No code page 1251 character takes more than 3 octets; the converter asks for 2n + 20 at least.
    std::string utf8(3 * ansi.size() + 20, '\0');
    auto utf8Len = static_cast<uint32_t>(utf8.size());
    if ((rc = ConvertAnsiToUTF8(ansi.c_str(), utf8.data(), &utf8Len)) != TV_OK) return report.Failed(rc);
    utf8.resize(utf8Len);
    return PlainText(reinterpret_cast<const uint8_t*>(utf8.data()), utf8.size());
}

}  // namespace

uint32_t DecodeSignedMessage(const Bytes& der, CmsSignedData** signedData, std::string& problem) {
    *signedData = nullptr;
    problem.clear();
    CmsContentInfo* info = nullptr;
    uint32_t rc = DecodeCmsContentInfo(der.data(), static_cast<uint32_t>(der.size()), &info);
    if (rc != TV_OK) problem = rc == TV_ERR_INDEFINITE ? ": an indefinite length never ends" : OuterProblem(der);
    uint8_t type[256];
    uint32_t typeLen = sizeof type;
    if (rc == TV_OK) rc = GetCmsContentInfoTypeOid(info, type, &typeLen);
    if (rc == TV_OK && OidText(type) != kSignedDataType) {
        problem = ": content type " + NamedWithOid(kCmsContentTypes, OidText(type)) + " is not signedData";
        rc = TV_ERR_NOT_SIGNED_DATA;
    }
    Bytes content;
    if (rc == TV_OK)
        rc = Fetch(content, [&](uint8_t* o, uint32_t* n) { return GetCmsContentInfoContent(info, o, n); });
    if (rc == TV_OK && content.empty()) {
        problem = ": no content";
        rc = TV_ERR_ABSENT;
    }
    if (rc == TV_OK) rc = DecodeCmsSignedData(content.data(), static_cast<uint32_t>(content.size()), signedData);
    FreeCmsContentInfo(info);
    return rc;
}

uint32_t DecodeAndShowCms(const Bytes& der, int& failures, std::string& problem) {
    CmsSignedData* sd = nullptr;
    const uint32_t rc = DecodeSignedMessage(der, &sd, problem);
    if (rc == TV_OK) failures = ShowSignedData(sd);
    FreeCmsSignedData(sd);
    return rc;
}

int ListSigners(const char* path, const Bytes& der) {
    CmsSignedData* sd = nullptr;
    std::string problem;
    uint32_t count = 0;
    uint32_t rc = DecodeSignedMessage(der, &sd, problem);
    if (rc == TV_OK) rc = GetCmsSignedDataSignerInfosCount(sd, &count);
    if (rc != TV_OK) {
        FreeCmsSignedData(sd);
        std::fprintf(stderr, "tarvelon: %s: not a CMS signed message%s (status %u)\n", path, problem.c_str(), rc);
        return 1;
    }
    if (count == 0) std::printf("no signers\n");
    Report report;
    for (uint32_t number = 1; number <= count; ++number) {
        LibraryTime t{};
        rc = GetBufferCmsSignatureTime(number, der.data(), static_cast<uint32_t>(der.size()), &t);
        const std::string time = rc == TV_OK ? TimeText(t) : rc == TV_ERR_NOT_FOUND ? "no signing time" : report.Failed(rc);
        std::printf("%u: %s, %s\n", number, time.c_str(), SignerName(report, sd, number, der).c_str());
    }
    FreeCmsSignedData(sd);
    std::fflush(stdout);
    if (report.failures) {
        std::fprintf(stderr, "tarvelon: %s: %d field(s) could not be read\n", path, report.failures);
        return 1;
    }
    return 0;
}

}  // namespace show
