// Extension values of `tarvelon show`: one printer per kind, keyed by OID, built on the library's
// typed extension codecs.
#include "render.h"

#include <cstdio>
#include <string>
#include <vector>

namespace show {
namespace {

const OidName kKeyPurposes[] = {
    {"1.3.6.1.5.5.7.3.1", "serverAuth"},    {"1.3.6.1.5.5.7.3.2", "clientAuth"},
    {"1.3.6.1.5.5.7.3.3", "codeSigning"},   {"1.3.6.1.5.5.7.3.4", "emailProtection"},
    {"1.3.6.1.5.5.7.3.8", "timeStamping"},  {"1.3.6.1.5.5.7.3.9", "OCSPSigning"},
    {"2.5.29.37.0", "anyExtendedKeyUsage"},
};

const OidName kAccessMethods[] = {
    {"1.3.6.1.5.5.7.48.1", "OCSP"},
    {"1.3.6.1.5.5.7.48.2", "caIssuers"},
    {"1.3.6.1.5.5.7.48.3", "timeStamping"},
    {"1.3.6.1.5.5.7.48.5", "caRepository"},
};

const OidName kPolicies[] = {
    {"2.5.29.32.0", "anyPolicy"},
    {"1.2.643.100.113.1", "KC1 signing tool class"},
    {"1.2.643.100.113.2", "KC2 signing tool class"},
    {"1.2.643.100.113.3", "KC3 signing tool class"},
    {"1.2.643.100.113.4", "KB1 signing tool class"},
    {"1.2.643.100.113.5", "KB2 signing tool class"},
    {"1.2.643.100.113.6", "KA1 signing tool class"},
};

// Named bits in the flag word of the bit-string codecs (first content octet is the low byte).
struct FlagName {
    uint32_t mask;
    const char* name;
};

const FlagName kKeyUsageBits[] = {
    {0x80, "digitalSignature"}, {0x40, "nonRepudiation"}, {0x20, "keyEncipherment"},
    {0x10, "dataEncipherment"}, {0x08, "keyAgreement"},   {0x04, "keyCertSign"},
    {0x02, "cRLSign"},          {0x01, "encipherOnly"},   {0x8000, "decipherOnly"},
};

const FlagName kReasonBits[] = {
    {0x80, "unused"},         {0x40, "keyCompromise"},        {0x20, "cACompromise"},    {0x10, "affiliationChanged"},
    {0x08, "superseded"},     {0x04, "cessationOfOperation"}, {0x02, "certificateHold"}, {0x01, "privilegeWithdrawn"},
    {0x8000, "aACompromise"},
};

const FlagName kNetscapeTypeBits[] = {
    {0x80, "SSL client"}, {0x40, "SSL server"}, {0x20, "S/MIME"},    {0x10, "object signing"},
    {0x08, "reserved"},   {0x04, "SSL CA"},     {0x02, "S/MIME CA"}, {0x01, "object signing CA"},
};

template <size_t N>
std::string Flags(const FlagName (&table)[N], uint32_t bits) {
    std::string s;
    for (const FlagName& f : table) {
        if (!(bits & f.mask)) continue;
        if (!s.empty()) s += ", ";
        s += f.name;
        bits &= ~f.mask;
    }
    if (bits) {
        char rest[32];
        std::snprintf(rest, sizeof rest, "%sother bits 0x%X", s.empty() ? "" : ", ", bits);
        s += rest;
    }
    return s.empty() ? "(none)" : s;
}

// ---------------------------------------------------------------------------------------------
// A printer fills `out` (depth 0 is the value's own level) and returns the codec's status; on
// failure the value is shown in hex.

using Printer = uint32_t (*)(const Bytes& v, Lines& out);

// Buffers for decoder outputs: no decoded part is longer than the value it came from.
Bytes Room(const Bytes& v) { return Bytes(v.size() + 1); }

uint32_t PrintKeyUsage(const Bytes& v, Lines& out) {
    uint32_t bits = 0;
    if (uint32_t rc = DecodeExtensionKeyUsage(v.data(), static_cast<uint32_t>(v.size()), &bits)) return rc;
    out.Add(0, Flags(kKeyUsageBits, bits));
    return TV_OK;
}

uint32_t PrintNetscapeType(const Bytes& v, Lines& out) {
    uint32_t bits = 0;
    if (uint32_t rc = DecodeExtensionNetscapeCertificateType(v.data(), static_cast<uint32_t>(v.size()), &bits))
        return rc;
    out.Add(0, Flags(kNetscapeTypeBits, bits));
    return TV_OK;
}

uint32_t PrintBasicConstraints(const Bytes& v, Lines& out) {
    uint8_t ca = 0;
    uint32_t pathLen = 0;
    if (uint32_t rc = DecodeExtensionBasicConstraints(v.data(), static_cast<uint32_t>(v.size()), &ca, &pathLen))
        return rc;
    std::string s = ca ? "CA:TRUE" : "CA:FALSE";
    if (pathLen != 0xFFFFFFFF) s += ", pathlen:" + std::to_string(pathLen);
    out.Add(0, s);
    return TV_OK;
}

// Scalar codecs of one shape: (in, inLen, out, outLen) returning content octets.
using ScalarDecoder = uint32_t (*)(const uint8_t*, uint32_t, uint8_t*, uint32_t*);

uint32_t DecodeScalar(ScalarDecoder decode, const Bytes& v, Bytes& content) {
    return Fetch(content,
                 [&](uint8_t* o, uint32_t* n) { return decode(v.data(), static_cast<uint32_t>(v.size()), o, n); });
}

// A scalar value shown through one formatter of its content octets.
std::string HexOf(const Bytes& b) { return Hex(b); }
std::string TextOf(const Bytes& b) { return PlainText(b); }

template <ScalarDecoder Decode, std::string (*Format)(const Bytes&)>
uint32_t PrintScalar(const Bytes& v, Lines& out) {
    Bytes content;
    if (uint32_t rc = DecodeScalar(Decode, v, content)) return rc;
    out.Add(0, Format(content));
    return TV_OK;
}

uint32_t PrintAuthorityKeyId(const Bytes& v, Lines& out) {
    Bytes keyId = Room(v), serial = Room(v);
    uint32_t keyIdLen = static_cast<uint32_t>(keyId.size()), serialLen = static_cast<uint32_t>(serial.size());
    GeneralNames* issuer = nullptr;
    uint32_t rc = DecodeExtensionAuthorityKeyIdentifier(v.data(), static_cast<uint32_t>(v.size()), keyId.data(),
                                                        &keyIdLen, &issuer, serial.data(), &serialLen);
    if (rc == TV_OK) {
        keyId.resize(keyIdLen);
        serial.resize(serialLen);
        if (!keyId.empty()) out.Add(0, "keyid: " + Hex(keyId));
        if (issuer) rc = AddGeneralNames(issuer, 0, "issuer: ", out);
        if (!serial.empty()) out.Add(0, "serial: " + Hex(serial));
    }
    FreeX509GeneralNames(issuer);
    return rc;
}

uint32_t PrintPrivateKeyUsagePeriod(const Bytes& v, Lines& out) {
    LibraryTime notBefore{}, notAfter{};
    if (uint32_t rc =
            DecodeExtensionPrivateKeyUsagePeriod(v.data(), static_cast<uint32_t>(v.size()), &notBefore, &notAfter))
        return rc;
    if (!IsLibraryTimeNull(&notBefore)) out.Add(0, "notBefore: " + TimeText(notBefore));
    if (!IsLibraryTimeNull(&notAfter)) out.Add(0, "notAfter: " + TimeText(notAfter));
    return TV_OK;
}

uint32_t PrintIssuerSignTool(const Bytes& v, Lines& out) {
    Bytes t[4] = {Room(v), Room(v), Room(v), Room(v)};
    uint32_t n[4];
    for (int i = 0; i < 4; ++i) n[i] = static_cast<uint32_t>(t[i].size());
    if (uint32_t rc = DecodeExtensionIssuerSignTool(v.data(), static_cast<uint32_t>(v.size()), t[0].data(), &n[0],
                                                    t[1].data(), &n[1], t[2].data(), &n[2], t[3].data(), &n[3]))
        return rc;
    static const char* const labels[] = {"signTool: ", "cATool: ", "signToolCert: ", "cAToolCert: "};
    for (int i = 0; i < 4; ++i) out.Add(0, labels[i] + PlainText(t[i].data(), n[i]));
    return TV_OK;
}

uint32_t PrintReasonCode(const Bytes& v, Lines& out) {
    uint32_t code = 0;
    if (uint32_t rc = DecodeExtensionReasonCode(v.data(), static_cast<uint32_t>(v.size()), &code)) return rc;
    out.Add(0, ReasonText(code));
    return TV_OK;
}

const OidName kHoldInstructions[] = {
    {"1.2.840.10040.2.1", "holdInstructionNone"},
    {"1.2.840.10040.2.2", "holdInstructionCallIssuer"},
    {"1.2.840.10040.2.3", "holdInstructionReject"},
};

uint32_t PrintHoldInstruction(const Bytes& v, Lines& out) {
    uint8_t oid[256];
    uint32_t oidLen = sizeof oid;
    if (uint32_t rc = DecodeAsn1Oid(v.data(), static_cast<uint32_t>(v.size()), oid, &oidLen)) return rc;
    out.Add(0, Named(kHoldInstructions, OidText(oid)));
    return TV_OK;
}

uint32_t PrintInvalidityDate(const Bytes& v, Lines& out) {
    LibraryTime t{};
    if (uint32_t rc = DecodeExtensionInvalidityDate(v.data(), static_cast<uint32_t>(v.size()), &t)) return rc;
    out.Add(0, TimeText(t));
    return TV_OK;
}

uint32_t PrintGeneralNames(const Bytes& v, Lines& out) {
    GeneralNames* names = nullptr;
    if (uint32_t rc = DecodeX509GeneralNames(v.data(), static_cast<uint32_t>(v.size()), &names)) return rc;
    uint32_t rc = AddGeneralNames(names, 0, "", out);
    FreeX509GeneralNames(names);
    return rc;
}

uint32_t PrintDistributionPoints(const Bytes& v, Lines& out) {
    CrlDistributionPoints* list = nullptr;
    if (uint32_t rc = DecodeExtensionCrlDistributionPoints(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionCrlDistributionPointsCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        GeneralNames* fullName = nullptr;
        GeneralNames* crlIssuer = nullptr;
        X509Name* relative = nullptr;
        uint32_t reasons = 0;
        rc = GetExtensionCrlDistributionPoint(list, i, &fullName, &relative, &reasons, &crlIssuer);
        if (rc != TV_OK) break;
        out.Add(0, "Distribution point " + std::to_string(i + 1) + ":");
        if (fullName) rc = AddGeneralNames(fullName, 1, "", out);
        if (relative) out.Add(1, "relative name: " + NameOrStatus(relative));
        if (reasons) out.Add(1, "reasons: " + Flags(kReasonBits, reasons));
        if (crlIssuer && rc == TV_OK) rc = AddGeneralNames(crlIssuer, 1, "CRL issuer: ", out);
    }
    FreeExtensionCrlDistributionPoints(list);
    return rc;
}

// The codec reads onlySomeReasons under [1] only; RFC 5280 writers put it under [3], which the
// codec skips, so that form is read here to keep the reasons from vanishing from the summary.
uint32_t RfcOnlySomeReasons(const Bytes& v, uint32_t& reasons) {
    Element idp;
    std::vector<Element> fields;
    if (!ReadElement(v.data(), v.size(), idp) || !Children(idp, fields)) return 0;
    for (const Element& f : fields) {
        if (!Is(f, ASN1_CLASS_CONTEXT, 3) || f.cons || f.len < 1 || f.content[0] > 7) continue;
        reasons = 0;
        for (uint32_t i = 1; i < f.len && i <= 4; ++i) reasons |= uint32_t{f.content[i]} << 8 * (i - 1);
        if (f.len <= 5) reasons &= ~(((1u << f.content[0]) - 1) << 8 * (f.len - 2));  // the unused bits
        return 1;
    }
    return 0;
}

uint32_t PrintIssuingDistributionPoint(const Bytes& v, Lines& out) {
    GeneralNames* fullName = nullptr;
    X509Name* relative = nullptr;
    uint8_t user = 0, ca = 0, indirect = 0, attr = 0;
    uint32_t userP = 0, caP = 0, reasons = 0, reasonsP = 0, indirectP = 0, attrP = 0;
    uint32_t rc = DecodeExtensionIssuingDistributionPoint(v.data(), static_cast<uint32_t>(v.size()), &fullName,
                                                          &relative, &user, &userP, &ca, &caP, &reasons, &reasonsP,
                                                          &indirect, &indirectP, &attr, &attrP);
    if (rc == TV_OK) {
        if (fullName) rc = AddGeneralNames(fullName, 0, "", out);
        if (relative) out.Add(0, "relative name: " + NameOrStatus(relative));
        if (user) out.Add(0, "onlyContainsUserCerts");
        if (ca) out.Add(0, "onlyContainsCACerts");
        if (!reasonsP) reasonsP = RfcOnlySomeReasons(v, reasons);
        if (reasonsP) out.Add(0, "onlySomeReasons: " + Flags(kReasonBits, reasons));
        if (indirect) out.Add(0, "indirectCRL");
        if (attr) out.Add(0, "onlyContainsAttributeCerts");
        if (out.items.empty()) out.Add(0, "(empty)");
    }
    FreeX509GeneralNames(fullName);
    FreeX509Name(relative);
    return rc;
}

uint32_t PrintExtendedKeyUsage(const Bytes& v, Lines& out) {
    ExtendedKeyUsage* list = nullptr;
    if (uint32_t rc = DecodeExtensionExtendedKeyUsage(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionExtendedKeyUsageCount(list, &count);
    std::string s;
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid;
        rc = GetExtensionExtendedKeyUsage(list, i, oid, &oidLen);
        if (rc == TV_OK) s += (i ? ", " : "") + Named(kKeyPurposes, OidText(oid));
    }
    FreeExtensionExtendedKeyUsage(list);
    if (rc == TV_OK) out.Add(0, s.empty() ? "(none)" : s);
    return rc;
}

uint32_t PrintInformationAccess(const Bytes& v, Lines& out) {
    AuthorityInformationAccess* list = nullptr;
    if (uint32_t rc = DecodeExtensionAuthorityInformationAccess(v.data(), static_cast<uint32_t>(v.size()), &list))
        return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionAuthorityInformationAccessCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, kind = 0;
        GeneralName* location = nullptr;
        Bytes where;
        rc = GetExtensionAuthorityInformationAccess(list, i, oid, &oidLen, &location);
        if (rc == TV_OK)
            rc = Fetch(where, [&](uint8_t* o, uint32_t* n) { return GetX509GeneralNameValue(location, &kind, o, n); });
        if (rc == TV_OK) out.Add(0, Named(kAccessMethods, OidText(oid)) + " - " + GeneralNameText(kind, where));
    }
    FreeExtensionAuthorityInformationAccess(list);
    return rc;
}

// UserNotice ::= SEQUENCE { noticeRef SEQUENCE { organization, noticeNumbers } OPTIONAL,
//                           explicitText DisplayText OPTIONAL }  (RFC 5280 4.2.1.4)
void AddUserNotice(const Element& notice, Lines& out) {
    std::vector<Element> parts;
    if (!IsUniversal(notice, ASN1_SEQUENCE) || !Children(notice, parts)) {
        out.Add(1, "User notice: " + ElementText(notice));
        return;
    }
    out.Add(1, "User notice:");
    for (const Element& part : parts) {
        std::vector<Element> ref;
        if (IsUniversal(part, ASN1_SEQUENCE) && Children(part, ref) && !ref.empty()) {
            std::string numbers;
            std::vector<Element> noticeNumbers;
            if (ref.size() > 1 && Children(ref[1], noticeNumbers))
                for (const Element& n : noticeNumbers)
                    numbers += (numbers.empty() ? " " : ", ") + IntegerText(n.content, n.len, true);
            out.Add(2, "Organization: " + ElementText(ref[0]) + (numbers.empty() ? "" : ", notice" + numbers));
            continue;
        }
        out.Add(2, "Explicit text: " + ElementText(part));
    }
}

uint32_t PrintPolicies(const Bytes& v, Lines& out) {
    CertificatePolicies* list = nullptr;
    if (uint32_t rc = DecodeExtensionCertificatePolicies(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionPolicyInformationCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, qualifiers = 0;
        rc = GetExtensionPolicyInformation(list, i, oid, &oidLen);
        if (rc == TV_OK) rc = GetExtensionPolicyQualifiersCount(list, i, &qualifiers);
        if (rc != TV_OK) break;
        const std::string dotted = OidText(oid);
        const char* name = Lookup(kPolicies, dotted);
        out.Add(0, "Policy: " + (name ? std::string(name) + " (" + dotted + ")" : dotted));
        for (uint32_t q = 0; rc == TV_OK && q < qualifiers; ++q) {
            uint8_t qualifierOid[256];
            Bytes qualifier;
            rc = Fetch(qualifier, [&](uint8_t* o, uint32_t* n) {
                uint32_t qLen = sizeof qualifierOid;
                return GetExtensionPolicyQualifier(list, i, q, qualifierOid, &qLen, o, n);
            });
            if (rc != TV_OK) break;
            const std::string qualifierId = OidText(qualifierOid);
            Element e;
            if (!ReadElement(qualifier.data(), qualifier.size(), e))
                out.Add(1, qualifierId + ": #" + Hex(qualifier, kHexShown));
            else if (qualifierId == "1.3.6.1.5.5.7.2.1")
                out.Add(1, "CPS: " + ElementText(e));
            else if (qualifierId == "1.3.6.1.5.5.7.2.2")
                AddUserNotice(e, out);
            else
                out.Add(1, qualifierId + ": " + ElementText(e));
        }
    }
    FreeExtensionCertificatePolicies(list);
    return rc;
}

struct ExtensionKind {
    const char* oid;
    const char* name;
    Printer print;  // null: the value is shown in hex
};

const ExtensionKind kExtensions[] = {
    {"2.5.29.14", "subjectKeyIdentifier", PrintScalar<DecodeExtensionSubjectKeyIdentifier, HexOf>},
    {"2.5.29.15", "keyUsage", PrintKeyUsage},
    {"2.5.29.16", "privateKeyUsagePeriod", PrintPrivateKeyUsagePeriod},
    {"2.5.29.17", "subjectAltName", PrintGeneralNames},
    {"2.5.29.18", "issuerAltName", PrintGeneralNames},
    {"2.5.29.19", "basicConstraints", PrintBasicConstraints},
    {"2.5.29.20", "cRLNumber", PrintScalar<DecodeExtensionCrlNumber, IntegerText>},
    {"2.5.29.21", "reasonCode", PrintReasonCode},
    {"2.5.29.23", "holdInstructionCode", PrintHoldInstruction},
    {"2.5.29.24", "invalidityDate", PrintInvalidityDate},
    {"2.5.29.27", "deltaCRLIndicator", PrintScalar<DecodeExtensionDeltaCrlIndicator, IntegerText>},
    {"2.5.29.28", "issuingDistributionPoint", PrintIssuingDistributionPoint},
    {"2.5.29.29", "certificateIssuer", PrintGeneralNames},
    {"2.5.29.30", "nameConstraints", nullptr},
    {"2.5.29.31", "cRLDistributionPoints", PrintDistributionPoints},
    {"2.5.29.32", "certificatePolicies", PrintPolicies},
    {"2.5.29.33", "policyMappings", nullptr},
    {"2.5.29.35", "authorityKeyIdentifier", PrintAuthorityKeyId},
    {"2.5.29.36", "policyConstraints", nullptr},
    {"2.5.29.37", "extKeyUsage", PrintExtendedKeyUsage},
    {"2.5.29.46", "freshestCRL", PrintDistributionPoints},
    {"2.5.29.54", "inhibitAnyPolicy", nullptr},
    {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess", PrintInformationAccess},
    {"1.3.6.1.5.5.7.1.3", "qcStatements", nullptr},
    {"1.3.6.1.5.5.7.1.11", "subjectInfoAccess", PrintInformationAccess},
    {"1.3.6.1.5.5.7.48.1.2", "OCSP nonce", PrintScalar<DecodeExtensionOcspNonce, HexOf>},
    {"1.3.6.1.5.5.7.48.1.5", "OCSP no check", nullptr},
    {"2.16.840.1.113730.1.1", "netscapeCertType", PrintNetscapeType},
    {"1.2.643.100.111", "subjectSignTool", PrintScalar<DecodeExtensionSubjectSignTool, TextOf>},
    {"1.2.643.100.112", "issuerSignTool", PrintIssuerSignTool},
    {"1.2.643.3.901.3.1", "Kestrune key identifier", PrintScalar<DecodeExtensionKestruneKeyIdentifier, TextOf>},
};

const ExtensionKind* FindExtension(const std::string& dotted) {
    for (const ExtensionKind& kind : kExtensions)
        if (dotted == kind.oid) return &kind;
    return nullptr;
}

}  // namespace

std::string ReasonText(uint32_t code) {
    static const char* const names[] = {"unspecified",        "keyCompromise", "cACompromise",
                                        "affiliationChanged", "superseded",    "cessationOfOperation",
                                        "certificateHold",    nullptr,         "removeFromCRL",
                                        "privilegeWithdrawn", "aACompromise"};
    const char* name = code < sizeof names / sizeof names[0] ? names[code] : nullptr;
    return name ? name : "reason " + std::to_string(code);
}

void PrintExtensions(uint32_t rc, const X509Extensions* extensions, int depth, const char* title, Report& report) {
    uint32_t count = 0;
    if (rc == TV_OK && extensions) rc = GetX509ExtensionsExtensionsCount(extensions, &count);
    if (rc != TV_OK && rc != TV_ERR_ABSENT) {  // absent: no field, or a field that holds no list
        Print(depth, std::string(title) + ": " + report.Failed(rc));
        return;
    }
    if (count == 0) return;
    Print(depth, std::string(title) + " (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, critical = 0;
        Bytes value;
        uint32_t rc = Fetch(value, [&](uint8_t* o, uint32_t* n) {
            oidLen = sizeof oid;
            return GetX509ExtensionsExtension(extensions, i, oid, &oidLen, &critical, o, n);
        });
        if (rc != TV_OK) {
            Print(depth + 1, "extension " + std::to_string(i + 1) + ": " + report.Failed(rc));
            continue;
        }
        const std::string dotted = OidText(oid);
        const ExtensionKind* kind = FindExtension(dotted);
        std::string head = kind ? std::string(kind->name) : dotted;
        if (critical) head += " (critical)";
        Lines lines;
        rc = kind && kind->print ? kind->print(value, lines) : uint32_t{TV_ERR_NOT_FOUND};
        if (rc != TV_OK) {
            lines.items.clear();
            std::string hex = value.empty() ? "(empty)" : Hex(value, kHexValueShown);
            if (value.size() > kHexValueShown) hex += " (" + std::to_string(value.size()) + " bytes)";
            if (kind && kind->print) hex += " (not decoded, status " + std::to_string(rc) + ")";
            lines.Add(0, hex);
        }
        PrintHeaded(depth + 1, head, lines);
    }
}

const char* ExtensionOidName(const std::string& dotted) {
    if (const ExtensionKind* kind = FindExtension(dotted)) return kind->name;
    for (const char* name : {Lookup(kKeyPurposes, dotted), Lookup(kAccessMethods, dotted), Lookup(kPolicies, dotted),
                             Lookup(kHoldInstructions, dotted)})
        if (name) return name;
    return nullptr;
}

}  // namespace show
