// tarvelon show: CMS enveloped messages (RFC 5652 ContentInfo holding EnvelopedData). Every
// recipient is listed; a key-transport one with its identifier and algorithm, and for GOST the
// GostR3410-KeyTransport its encrypted key carries (RFC 4490). The GOST 28147-89 parameters of the
// content encryption show their IV and parameter set; other parameters show as bytes.
#include "show.h"

#include <iterator>
#include <string>

#include "render.h"

namespace show {
namespace {

constexpr char kEnvelopedDataType[] = "1.2.840.113549.1.7.3";
constexpr char kGost28147[] = "1.2.643.2.2.21";

// Indexed by the TV_CMS_RECIPIENT_* kind; 0 is an alternative the library does not know.
const char* const kRecipientKinds[] = {"unknown kind", "key transport", "key agreement", "key encryption key",
                                       "password", "other"};

// The GostR3410-KeyTransport inside a GOST recipient's encrypted key; nothing when the octets are
// something else (an RSA recipient's wrapped key).
void PrintGostKeyTransport(Report& report, const Bytes& encryptedKey) {
    GostR3410KeyTransport* kt = nullptr;
    if (DecodeGostR3410KeyTransport(encryptedKey.data(), static_cast<uint32_t>(encryptedKey.size()), &kt) != TV_OK) {
        FreeGostR3410KeyTransport(kt);
        return;
    }
    Print(4, "GOST key transport:");
    const auto octets = [&](const char* title, auto get, bool optional) {
        Bytes v;
        const uint32_t rc = Fetch(v, [&](uint8_t* o, uint32_t* n) { return get(kt, o, n); });
        if (optional && rc == TV_OK && v.empty()) return;
        if (optional && rc == TV_ERR_ABSENT) return;
        Print(5, std::string(title) + ": " + (rc == TV_OK ? Hex(v) : report.Failed(rc)));
    };
    octets("Encrypted key", GetGostR3410KeyTransportEncryptedKey, false);
    octets("Mask key", GetGostR3410KeyTransportMaskKey, true);
    octets("MAC", GetGostR3410KeyTransportMacKey, false);
    Bytes set;
    uint32_t rc = Fetch(set, [&](uint8_t* o, uint32_t* n) { return GetGostR3410KeyTransportEncryptionParamSetOid(kt, o, n); });
    if (rc != TV_ERR_ABSENT) {  // transportParameters are optional as a whole
        Print(5, "Parameter set: " + (rc == TV_OK ? ParameterSetText(set) : report.Failed(rc)));
        AlgorithmParts alg;
        rc = GetAlgorithm(alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) {
            return GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(kt, o, ol, p, pl);
        });
        if (rc != TV_ERR_ABSENT) {
            Print(5, "Ephemeral key algorithm: " + (rc == TV_OK ? AlgorithmText(alg.oid) : report.Failed(rc)));
            Bytes key;
            rc = Fetch(key, [&](uint8_t* o, uint32_t* n) { return GetGostR3410KeyTransportEphemeralPublicKey(kt, o, n); });
            Print(5, "Ephemeral key: " + (rc == TV_OK ? std::to_string(key.size()) + " bytes" : report.Failed(rc)));
        }
        octets("UKM", GetGostR3410KeyTransportUkm, false);
    }
    FreeGostR3410KeyTransport(kt);
}

void PrintKeyTrans(Report& report, KeyTrans* kt) {
    Print(3, "Identifier: " + IdentifierText(report, kt, GetKeyTransRecipientIdentifier));
    uint32_t version = 0;
    uint32_t rc = GetKeyTransVersion(kt, &version);
    Print(3, "Version: " + (rc == TV_OK ? std::to_string(version) : report.Failed(rc)));
    AlgorithmParts alg;
    rc = GetAlgorithm(alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) {
        return GetKeyTransKeyEncryptionAlgorithmOidAndParameters(kt, o, ol, p, pl);
    });
    Print(3, "Key encryption algorithm: " + (rc == TV_OK ? AlgorithmText(alg.oid) : report.Failed(rc)));
    Bytes key;
    rc = Fetch(key, [&](uint8_t* o, uint32_t* n) { return GetKeyTransEncryptedKey(kt, o, n); });
    Print(3, "Encrypted key: " + (rc == TV_OK ? std::to_string(key.size()) + " bytes" : report.Failed(rc)));
    if (rc == TV_OK) PrintGostKeyTransport(report, key);
}

void PrintContentEncryption(Report& report, CmsEnvelopedData* ed) {
    AlgorithmParts alg;
    uint32_t rc = GetAlgorithm(alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) {
        return GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(ed, o, ol, p, pl);
    });
    Print(1, "Content encryption: " + (rc == TV_OK ? AlgorithmText(alg.oid) : report.Failed(rc)));
    if (rc != TV_OK || alg.params.empty()) return;
    if (OidText(alg.oid.data()) == kGost28147) {
        uint8_t iv[64], set[64];
        uint32_t ivLen = sizeof iv, setLen = sizeof set;
        rc = DecodeGost2814789Parameters(alg.params.data(), static_cast<uint32_t>(alg.params.size()), iv, &ivLen, set, &setLen);
        if (rc == TV_OK) {
            Print(2, "IV: " + Hex(iv, ivLen));
            Print(2, "Parameter set: " + ParameterSetText(Bytes(set, set + setLen)));
            return;
        }
    }
    // CBC modes carry the IV as an OCTET STRING; anything else is shown as it is.
    Element e;
    if (ReadElement(alg.params.data(), alg.params.size(), e) && IsUniversal(e, ASN1_OCTET_STRING))
        Print(2, "IV: " + Hex(e.content, e.len));
    else
        Print(2, "Parameters: " + Hex(alg.params));
}

int ShowEnvelopedData(CmsEnvelopedData* ed) {
    Report report;
    Print(0, "CMS enveloped message:");
    uint32_t version = 0;
    uint32_t rc = GetCmsEnvelopedDataVersion(ed, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version) : report.Failed(rc)));
    PrintStored(report, "Originator certificates", static_cast<const CmsEnvelopedData*>(ed),
                GetCmsEnvelopedDataCertificatesCount, GetCmsEnvelopedDataEncodedCertificate, CertificateLine);
    PrintStored(report, "Originator CRLs", static_cast<const CmsEnvelopedData*>(ed), GetCmsEnvelopedDataCrlsCount,
                GetCmsEnvelopedDataEncodedCrl, CrlLine);

    uint32_t count = 0;
    rc = GetCmsEnvelopedDataRecipientInfosCount(ed, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    Print(1, "Recipients: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        void* value = nullptr;
        uint32_t kind = 0;
        const std::string head = "Recipient " + std::to_string(i + 1) + ": ";
        const uint32_t got = GetCmsEnvelopedDataRecipientInfo(ed, i, &value, &kind);
        if (got != TV_OK) {
            Print(2, head + report.Failed(got));
        } else if (kind == TV_CMS_RECIPIENT_KEY_TRANS) {
            Print(2, head + kRecipientKinds[kind]);
            PrintKeyTrans(report, static_cast<KeyTrans*>(value));
        } else {
            Bytes element;
            const uint32_t read =
                Fetch(element, [&](uint8_t* o, uint32_t* n) { return GetAsn1AnyValue(static_cast<Asn1Primitive*>(value), o, n); });
            Print(2, head + kRecipientKinds[kind < std::size(kRecipientKinds) ? kind : 0] + ", " +
                         (read == TV_OK ? std::to_string(element.size()) + " bytes" : report.Failed(read)));
        }
    }

    uint8_t type[256];
    uint32_t typeLen = sizeof type;
    rc = GetCmsEnvelopedDataEncryptedContentTypeOid(ed, type, &typeLen);
    Print(1, "Content type: " + (rc == TV_OK ? NamedWithOid(kCmsContentTypes, OidText(type)) : report.Failed(rc)));
    PrintContentEncryption(report, ed);
    uint32_t contentLen = 0;
    rc = GetCmsEnvelopedDataEncryptedContent(ed, nullptr, &contentLen);
    Print(1, "Encrypted content: " + (rc != TV_OK      ? report.Failed(rc)
                                      : contentLen == 0 ? std::string("detached")
                                                        : std::to_string(contentLen) + " bytes"));
    RsaAttributes* attributes = nullptr;
    rc = GetCmsEnvelopedDataUnprotectedAttributes(ed, &attributes);
    PrintAttributes(report, rc, attributes, "Unprotected attributes", false, 1);
    return report.failures;
}

}  // namespace

bool IsEnvelopedMessage(const Bytes& der) { return ContentInfoType(der) == kEnvelopedDataType; }

uint32_t DecodeAndShowEnveloped(const Bytes& der, int& failures, std::string& problem) {
    CmsContentInfo* info = nullptr;
    uint32_t rc = DecodeCmsContentInfo(der.data(), static_cast<uint32_t>(der.size()), &info);
    if (rc != TV_OK) problem = rc == TV_ERR_INDEFINITE ? ": an indefinite length never ends" : OuterProblem(der);
    Bytes content;
    if (rc == TV_OK) rc = Fetch(content, [&](uint8_t* o, uint32_t* n) { return GetCmsContentInfoContent(info, o, n); });
    FreeCmsContentInfo(info);
    if (rc == TV_OK && content.empty()) {
        problem = ": no content";
        rc = TV_ERR_ABSENT;
    }
    CmsEnvelopedData* ed = nullptr;
    if (rc == TV_OK) rc = DecodeCmsEnvelopedData(content.data(), static_cast<uint32_t>(content.size()), &ed);
    if (rc == TV_OK) failures = ShowEnvelopedData(ed);
    FreeCmsEnvelopedData(ed);
    return rc;
}

}  // namespace show
