// tarvelon show: the summary of a PKCS #10 certification request.
#include "show.h"

#include <string>

#include "render.h"

namespace show {
namespace {

const OidName kAttributeTypes[] = {
    {"1.2.840.113549.1.9.7", "challengePassword"},
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"1.2.840.113549.1.9.14", "extensionRequest"},
    {"1.3.6.1.4.1.311.2.1.14", "extensionRequest (Microsoft)"},
};

bool IsExtensionRequest(const std::string& dotted) {
    return dotted == "1.2.840.113549.1.9.14" || dotted == "1.3.6.1.4.1.311.2.1.14";
}

void PrintAttributes(RsaAttributes* attributes, Report& report) {
    uint32_t count = 0;
    uint32_t rc = GetRsaAttributesAttributesCount(attributes, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    if (rc != TV_OK) {
        Print(1, "Attributes: " + report.Failed(rc));
        return;
    }
    Print(1, "Attributes (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, values = 0;
        rc = GetRsaAttributesAttributeOid(attributes, i, oid, &oidLen);
        if (rc == TV_OK) rc = GetRsaAttributesAttributeValuesCount(attributes, i, &values);
        if (rc != TV_OK) {
            Print(2, "attribute " + std::to_string(i + 1) + ": " + report.Failed(rc));
            continue;
        }
        const std::string dotted = OidText(oid);
        const std::string head = Named(kAttributeTypes, dotted) + ": ";
        if (IsExtensionRequest(dotted)) {
            Print(2, head + "see the requested extensions");
            continue;
        }
        for (uint32_t v = 0; v < values; ++v) {
            Bytes value;
            rc = Fetch(value,
                       [&](uint8_t* o, uint32_t* n) { return GetRsaAttributesAttributeValue(attributes, i, v, o, n); });
            Element e;
            if (rc != TV_OK)
                Print(2, head + report.Failed(rc));
            else if (ReadElement(value.data(), value.size(), e))
                Print(2, head + ElementText(e));
            else
                Print(2, head + "#" + Hex(value, kHexValueShown));
        }
    }
}

}  // namespace

int ShowRequest(PKCS10CertReq* request) {
    Report report;
    Print(0, "Certification request:");
    uint32_t version = 0;
    uint32_t rc = GetPKCS10CertReqVersion(request, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version + 1) : report.Failed(rc)));
    X509Name* name = nullptr;
    rc = GetPKCS10CertReqSubject(request, &name);
    Print(1, "Subject: " + NameField(report, rc, name));

    PrintAlgorithmPart(Part::PublicKey, report, request, GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters,
                       GetPKCS10CertReqPublicKey);

    RsaAttributes* attributes = nullptr;
    rc = GetPKCS10CertReqAttributes(request, &attributes);
    if (rc == TV_OK)
        PrintAttributes(attributes, report);
    else if (rc != TV_ERR_ABSENT)
        Print(1, "Attributes: " + report.Failed(rc));

    // The library finds the PKCS #9 extensionRequest, or the Microsoft one in its place; a request
    // with neither is TV_ERR_NOT_FOUND, which means no requested extensions.
    X509Extensions* requested = nullptr;
    rc = GetPKCS10CertReqExtensions(request, &requested);
    if (rc == TV_ERR_NOT_FOUND) rc = TV_ERR_ABSENT;
    PrintExtensions(rc, requested, 1, "Requested extensions", report);
    FreeX509Extensions(requested);

    PrintAlgorithmPart(Part::Signature, report, request, GetPKCS10CertReqSignatureAlgorithmOidAndParameters,
                       GetPKCS10CertReqSignature);
    return report.failures;
}

}  // namespace show
