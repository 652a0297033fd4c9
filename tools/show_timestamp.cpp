// tarvelon show: RFC 3161 time-stamp queries and replies, the TSTInfo inside a token (printed by the
// signed-message summary), and SeveralData, a SEQUENCE OF ContentInfo whose messages are summarised
// one after the other.
#include "show.h"

#include <cstdio>
#include <iterator>
#include <string>

#include "render.h"

namespace show {
namespace {

// PKIStatus (RFC 3161 2.4.2)
const char* const kStatusNames[] = {"granted", "grantedWithMods", "rejection", "waiting", "revocationWarning",
                                    "revocationNotification"};

// PKIFailureInfo bit numbers and names (RFC 3161 2.4.2)
const std::pair<int, const char*> kFailureBits[] = {
    {0, "badAlg"},           {2, "badRequest"},           {5, "badDataFormat"},
    {14, "timeNotAvailable"}, {15, "unacceptedPolicy"},    {16, "unacceptedExtension"},
    {17, "addInfoNotAvailable"}, {25, "systemFailure"},
};

std::string YesNo(uint32_t flag) { return flag ? "yes" : "no"; }

// A nonce is an INTEGER: its value in hex, without the sign octet DER puts before a high bit.
std::string NonceText(const uint8_t* p, uint32_t n) {
    while (n > 1 && p[0] == 0) ++p, --n;
    return Hex(p, n);
}

// The failInfo word holds the BIT STRING's first content octets from its lowest-addressed byte, so
// bit n of the string is bit 7 - n % 8 of byte n / 8.
std::string FailureText(uint32_t word) {
    std::string s;
    for (const auto& [bit, name] : kFailureBits)
        if ((word >> (8 * (bit / 8))) & (0x80u >> (bit % 8))) s += (s.empty() ? "" : ", ") + std::string(name);
    return s.empty() ? "bits " + std::to_string(word) : s;
}

// The time with its fraction as the record holds it: microseconds when there are any, else
// milliseconds, else none.
std::string PreciseTimeText(const LibraryPreciseTime& t) {
    char fraction[16] = "", text[64];
    if (t.microsecond) std::snprintf(fraction, sizeof fraction, ".%03u%03u", t.millisecond, t.microsecond);
    else if (t.millisecond) std::snprintf(fraction, sizeof fraction, ".%03u", t.millisecond);
    std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u%s UTC", t.year, t.month, t.day, t.hour, t.minute,
                  t.second, fraction);
    return text;
}

std::string AccuracyText(const Accuracy& a) {
    std::string s;
    const auto unit = [&](uint32_t v, const char* name) {
        if (v) s += (s.empty() ? "" : ", ") + std::to_string(v) + " " + name;
    };
    unit(a.seconds, "s");
    unit(a.milliseconds, "ms");
    unit(a.microseconds, "us");
    return s;
}

void PrintImprint(int depth, const Bytes& hashOid, const Bytes& hash) {
    Print(depth, "Message imprint: " + AlgorithmText(hashOid));
    Print(depth + 1, "Hash: " + Hex(hash));
}

uint32_t ShowQuery(const Bytes& der, int& failures) {
    Report report;
    uint8_t b[4][256];
    uint32_t n[4] = {sizeof b[0], sizeof b[1], sizeof b[2], sizeof b[3]}, version = 0, certReq = 0, paramsLen = 0;
    X509Extensions* extensions = nullptr;
    const uint32_t rc = DecodeTimeStampReq(der.data(), static_cast<uint32_t>(der.size()), &version, b[0], &n[0], nullptr,
                                           &paramsLen, b[1], &n[1], b[2], &n[2], b[3], &n[3], &certReq, &extensions);
    if (rc != TV_OK) {
        FreeX509Extensions(extensions);
        return rc;
    }
    Print(0, "Time-stamp query:");
    Print(1, "Version: " + std::to_string(version));
    PrintImprint(1, Bytes(b[0], b[0] + n[0]), Bytes(b[1], b[1] + n[1]));
    if (n[2]) Print(1, "Policy: " + OidText(b[2]));
    if (n[3]) Print(1, "Nonce: " + NonceText(b[3], n[3]));
    Print(1, "Certificate requested: " + YesNo(certReq));
    PrintExtensions(TV_OK, extensions, 1, "Extensions", report);
    FreeX509Extensions(extensions);
    failures = report.failures;
    return TV_OK;
}

uint32_t ShowReply(const Bytes& der, int& failures) {
    Report report;
    uint32_t status = 0, failInfo = 0;
    PKIFreeText* text = nullptr;
    CmsContentInfo* token = nullptr;
    uint32_t rc = DecodeTimeStampResp(der.data(), static_cast<uint32_t>(der.size()), &status, &text, &failInfo, &token);
    if (rc != TV_OK) return rc;
    Print(0, "Time-stamp reply:");
    Print(1, "Status: " + std::string(status < std::size(kStatusNames) ? kStatusNames[status] : "unknown") + " (" +
                 std::to_string(status) + ")");
    uint32_t lines = 0;
    if (text && GetPKIFreeTextStringCount(text, &lines) == TV_OK)
        for (uint32_t i = 0; i < lines; ++i) {
            Bytes line;
            rc = Fetch(line, [&](uint8_t* o, uint32_t* len) { return GetPKIFreeTextString(text, i, o, len); });
            std::string shown = rc == TV_OK ? PlainText(line) : report.Failed(rc);
            if (rc == TV_OK) shown = '"' + shown + '"';
            Print(1, "Status text: " + shown);
        }
    if (failInfo) Print(1, "Failure: " + FailureText(failInfo));
    FreePKIFreeText(text);
    if (token) {
        Bytes tokenDer;
        rc = Fetch(tokenDer, [&](uint8_t* o, uint32_t* len) { return EncodeCmsContentInfo(token, o, len); });
        int nestedFailures = 0;
        std::string problem;
        Indent nested(1);
        if (rc == TV_OK) rc = DecodeAndShowCms(tokenDer, nestedFailures, problem);
        if (rc != TV_OK) Print(0, "Token: " + report.Failed(rc));
        report.failures += nestedFailures;
    }
    FreeCmsContentInfo(token);
    failures = report.failures;
    return TV_OK;
}

// SeveralData: each message summarised as `tarvelon show` would summarise it alone.
uint32_t ShowSeveral(const Bytes& der, int& failures) {
    Report report;
    SeveralData* list = nullptr;
    uint32_t count = 0;
    uint32_t rc = DecodeSeveralData(der.data(), static_cast<uint32_t>(der.size()), &list);
    if (rc == TV_OK) rc = GetSeveralDataContentInfoCount(list, &count);
    if (rc != TV_OK) {
        FreeSeveralData(list);
        return rc;
    }
    Print(0, "SeveralData: " + std::to_string(count) + " messages");
    for (uint32_t i = 0; i < count; ++i) {
        CmsContentInfo* info = nullptr;
        Bytes message;
        uint32_t got = GetSeveralDataContentInfo(list, i, &info);
        if (got == TV_OK) got = Fetch(message, [&](uint8_t* o, uint32_t* len) { return EncodeCmsContentInfo(info, o, len); });
        Print(1, "Message " + std::to_string(i + 1) + ":");
        Indent nested(2);
        int nestedFailures = 0;
        std::string problem;
        if (got == TV_OK)
            got = IsEnvelopedMessage(message) ? DecodeAndShowEnveloped(message, nestedFailures, problem)
                                              : DecodeAndShowCms(message, nestedFailures, problem);
        if (got != TV_OK) Print(0, report.Failed(got) + problem);
        report.failures += nestedFailures;
    }
    FreeSeveralData(list);
    failures = report.failures;
    return TV_OK;
}

}  // namespace

// TimeStampReq ::= SEQUENCE { version INTEGER, messageImprint SEQUENCE { AlgorithmIdentifier, OCTET
// STRING }, ... }: no other kind starts with an INTEGER followed by such a pair.
bool IsTimeStampQuery(const Bytes& der) {
    Element top;
    std::vector<Element> parts, imprint;
    return ReadElement(der.data(), der.size(), top) && IsUniversal(top, ASN1_SEQUENCE) && Children(top, parts) &&
           parts.size() >= 2 && IsUniversal(parts[0], ASN1_INTEGER) && IsUniversal(parts[1], ASN1_SEQUENCE) &&
           Children(parts[1], imprint) && imprint.size() == 2 && IsUniversal(imprint[0], ASN1_SEQUENCE) &&
           IsUniversal(imprint[1], ASN1_OCTET_STRING);
}

// TimeStampResp ::= SEQUENCE { status SEQUENCE { INTEGER, ... }, timeStampToken ContentInfo OPTIONAL }
bool IsTimeStampReply(const Bytes& der) {
    Element top;
    std::vector<Element> parts, status;
    return ReadElement(der.data(), der.size(), top) && IsUniversal(top, ASN1_SEQUENCE) && Children(top, parts) &&
           (parts.size() == 1 || parts.size() == 2) && IsUniversal(parts[0], ASN1_SEQUENCE) &&
           Children(parts[0], status) && !status.empty() && IsUniversal(status[0], ASN1_INTEGER) &&
           (parts.size() == 1 || IsUniversal(parts[1], ASN1_SEQUENCE));
}

// SeveralData ::= SEQUENCE OF ContentInfo, at least one.
bool IsSeveralData(const Bytes& der) {
    Element top;
    std::vector<Element> parts;
    if (!ReadElement(der.data(), der.size(), top) || !IsUniversal(top, ASN1_SEQUENCE) || !Children(top, parts) ||
        parts.empty())
        return false;
    for (const Element& e : parts) {
        const uint8_t* start = e.content - (e.total - e.len);
        if (ContentInfoType(Bytes(start, start + e.total)).empty()) return false;
    }
    return true;
}

uint32_t DecodeAndShowQuery(const Bytes& der, int& failures, std::string&) { return ShowQuery(der, failures); }
uint32_t DecodeAndShowReply(const Bytes& der, int& failures, std::string&) { return ShowReply(der, failures); }
uint32_t DecodeAndShowSeveral(const Bytes& der, int& failures, std::string&) { return ShowSeveral(der, failures); }

void PrintTstInfo(Report& report, const Bytes& der, int depth) {
    uint8_t b[5][256];
    uint32_t n[5] = {sizeof b[0], sizeof b[1], sizeof b[2], sizeof b[3], sizeof b[4]}, version = 0, ordering = 0,
             paramsLen = 0;
    LibraryPreciseTime genTime{};
    Accuracy accuracy{};
    GeneralName* tsa = nullptr;
    X509Extensions* extensions = nullptr;
    const uint32_t rc = DecodeTSTInfo(der.data(), static_cast<uint32_t>(der.size()), &version, b[0], &n[0], b[1], &n[1],
                                      nullptr, &paramsLen, b[2], &n[2], b[3], &n[3], &genTime, &accuracy, &ordering, b[4],
                                      &n[4], &tsa, &extensions);
    if (rc != TV_OK) {
        Print(depth, "Time-stamp info: " + report.Failed(rc));
    } else {
        Print(depth, "Time-stamp info:");
        Print(depth + 1, "Version: " + std::to_string(version));
        Print(depth + 1, "Policy: " + OidText(b[0]));
        PrintImprint(depth + 1, Bytes(b[1], b[1] + n[1]), Bytes(b[2], b[2] + n[2]));
        Print(depth + 1, "Serial: " + IntegerText(b[3], n[3]));
        Print(depth + 1, "Generation time: " + PreciseTimeText(genTime));
        const std::string accurate = AccuracyText(accuracy);
        if (!accurate.empty()) Print(depth + 1, "Accuracy: " + accurate);
        Print(depth + 1, "Ordering: " + YesNo(ordering));
        if (n[4]) Print(depth + 1, "Nonce: " + NonceText(b[4], n[4]));
        if (tsa) {
            uint32_t kind = 0;
            Bytes value;
            const uint32_t got = Fetch(value, [&](uint8_t* o, uint32_t* len) { return GetX509GeneralNameValue(tsa, &kind, o, len); });
            Print(depth + 1, "TSA: " + (got == TV_OK ? GeneralNameText(kind, value) : report.Failed(got)));
        }
        PrintExtensions(TV_OK, extensions, depth + 1, "Extensions", report);
    }
    FreeX509GeneralName(tsa);
    FreeX509Extensions(extensions);
}

}  // namespace show
