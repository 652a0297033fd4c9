// Real certificates through the engine: the fixtures made with OpenSSL and the system's CA bundle
// must decode with the certificate shape and come back byte for byte, and what the engine finds
// inside (serial number, TBS bytes, validity) must agree with what OpenSSL found at fixture time.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "CertificateShape.h"
#include "TestUtil.h"
#include "tarvelon/Descriptor.h"
#include "tarvelon/Engine.h"

using namespace tvtest;
namespace x509 = tvtest::x509;

namespace {

const char* const kFixtureCerts[] = {"rsa_ca", "gost2001", "gost2012_256", "gost2012_512"};
const char* const kCaDirectory = "/etc/ssl/certs";

// ---- PEM, kept local: the library's own reader is not something these tests should lean on -------

Bytes DecodeBase64(const std::string& text, bool* ok) {
    Bytes out;
    uint32_t acc = 0;
    int bits = 0;
    int padding = 0;
    *ok = true;
    for (char c : text) {
        int v;
        if (c >= 'A' && c <= 'Z') v = c - 'A';
        else if (c >= 'a' && c <= 'z') v = c - 'a' + 26;
        else if (c >= '0' && c <= '9') v = c - '0' + 52;
        else if (c == '+') v = 62;
        else if (c == '/') v = 63;
        else if (c == '=') { ++padding; continue; }
        else if (c == '\n' || c == '\r' || c == ' ' || c == '\t') continue;
        else { *ok = false; return {}; }
        if (padding) { *ok = false; return {}; }  // data after padding
        acc = (acc << 6) | static_cast<uint32_t>(v);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            out.push_back(static_cast<uint8_t>(acc >> bits));
        }
    }
    return out;
}

// Every CERTIFICATE block of a PEM file, in order.
std::vector<Bytes> PemCertificates(const std::string& text, bool* ok) {
    static const std::string kBegin = "-----BEGIN CERTIFICATE-----";
    static const std::string kEnd = "-----END CERTIFICATE-----";
    std::vector<Bytes> certs;
    *ok = true;
    for (size_t pos = text.find(kBegin); pos != std::string::npos; pos = text.find(kBegin, pos)) {
        size_t body = pos + kBegin.size();
        size_t end = text.find(kEnd, body);
        if (end == std::string::npos) { *ok = false; break; }
        certs.push_back(DecodeBase64(text.substr(body, end - body), ok));
        if (!*ok) break;
        pos = end + kEnd.size();
    }
    return certs;
}

// ---- what the engine found -------------------------------------------------------------------------

Bytes Slice(const uint8_t* p, uint32_t n) { return Bytes(p, p + n); }

const Asn1Primitive* Leaf(void* v) { return static_cast<const Asn1Primitive*>(v); }

void* Tbs(const Tree& cert) { return x509::At(cert.v, x509::CertificateSlot::TbsCertificate); }

// The TBSCertificate element as it sits in the input, found by walking two headers only.
Bytes TbsSliceOf(const Bytes& der) {
    uint8_t cls, cons;
    uint32_t tag, content, indefinite, header;
    if (GetAsn1ObjectInfo(der.data(), static_cast<uint32_t>(der.size()), &cls, &cons, &tag, &content, &indefinite,
                          &header) != TV_OK)
        return {};
    const uint8_t* tbs = der.data() + header;
    uint32_t left = static_cast<uint32_t>(der.size()) - header;
    uint32_t tbsHeader;
    if (GetAsn1ObjectInfo(tbs, left, &cls, &cons, &tag, &content, &indefinite, &tbsHeader) != TV_OK || indefinite ||
        tbsHeader + content > left)
        return {};
    return Slice(tbs, tbsHeader + content);
}

// Decode, re-encode, deep copy. Failures are reported as test failures in the caller's scope.
void ExpectRoundTrip(const Bytes& der, Tree& cert) {
    uint32_t consumed = 0;
    ASSERT_EQ(Decode(der, cert, &consumed), TV_OK);
    ASSERT_NE(cert.v, nullptr);
    EXPECT_EQ(consumed, der.size());
    EXPECT_EQ(ToHex(Encode(cert.v, cert.d)), ToHex(der));

    Tree copy(cert.d);
    ASSERT_EQ(tv::CopyValue(cert.d, cert.v, &copy.v), TV_OK);
    EXPECT_EQ(ToHex(Encode(copy.v, copy.d)), ToHex(der));

    // The whole tree holds CHOICE and ANY, which the engine refuses to compare; the pieces that
    // carry no such kinds are compared on their own, and must be equal yet not shared.
    uint32_t equal = 0;
    EXPECT_EQ(CompareAsn1Objects(cert.d, cert.v, copy.v, &equal), TV_ERR_UNSUPPORTED_TYPE);
    struct Part {
        const char* name;
        const Asn1Descriptor* d;
        void* a;
        void* b;
    };
    void* tbsA = Tbs(cert);
    void* tbsB = Tbs(copy);
    void* spkiA = x509::At(tbsA, x509::TbsSlot::SubjectPublicKeyInfo);
    void* spkiB = x509::At(tbsB, x509::TbsSlot::SubjectPublicKeyInfo);
    const Part parts[] = {
        {"serialNumber", &tv::desc::kInteger, x509::At(tbsA, x509::TbsSlot::SerialNumber),
         x509::At(tbsB, x509::TbsSlot::SerialNumber)},
        {"subjectPublicKey", &tv::desc::kBitString, x509::At(spkiA, x509::SubjectPublicKeyInfoSlot::SubjectPublicKey),
         x509::At(spkiB, x509::SubjectPublicKeyInfoSlot::SubjectPublicKey)},
        {"extensions", &x509::kExtensions, x509::At(tbsA, x509::TbsSlot::Extensions),
         x509::At(tbsB, x509::TbsSlot::Extensions)},
        {"signatureValue", &tv::desc::kBitString, x509::At(cert.v, x509::CertificateSlot::SignatureValue),
         x509::At(copy.v, x509::CertificateSlot::SignatureValue)},
    };
    for (const Part& p : parts) {
        SCOPED_TRACE(p.name);
        if (p.a) {
            EXPECT_NE(p.a, p.b);
        }
        ASSERT_EQ(CompareAsn1Objects(p.d, p.a, p.b, &equal), TV_OK);
        EXPECT_EQ(equal, 1u);
    }
}

// ---- fixture expectations ----------------------------------------------------------------------------

std::map<std::string, std::string> ReadKeyValues(const std::string& path) {
    std::map<std::string, std::string> kv;
    std::ifstream f(path);
    for (std::string line; std::getline(f, line);) {
        size_t eq = line.find('=');
        if (eq != std::string::npos) kv[line.substr(0, eq)] = line.substr(eq + 1);
    }
    return kv;
}

// "Nov 21 21:48:06 2026 GMT" (OpenSSL's print) -> "261121214806Z" (UTCTime as RFC 5280 4.1.2.5.1
// requires it for years before 2050); GeneralizedTime text from 2050 on.
std::string AsnTimeText(const std::string& printed) {
    static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    std::istringstream in(printed);
    std::string mon, time, zone;
    int day = 0, year = 0;
    in >> mon >> day >> time >> year >> zone;
    int m = 0;
    while (m < 12 && mon != kMonths[m]) ++m;
    if (m == 12 || time.size() != 8 || zone != "GMT") return "unreadable: " + printed;
    char buf[32];
    std::string hms = time.substr(0, 2) + time.substr(3, 2) + time.substr(6, 2);
    if (year < 2050)
        std::snprintf(buf, sizeof buf, "%02d%02d%02d%sZ", year % 100, m + 1, day, hms.c_str());
    else
        std::snprintf(buf, sizeof buf, "%04d%02d%02d%sZ", year, m + 1, day, hms.c_str());
    return buf;
}

std::string TimeText(void* validity, x509::ValiditySlot slot, int32_t* alternative) {
    auto* choice = static_cast<const Asn1ChoiceValue*>(x509::At(validity, slot));
    if (!choice || !choice->value) return "absent";
    *alternative = choice->index;
    const Asn1Primitive* p = Leaf(choice->value);
    return std::string(reinterpret_cast<const char*>(p->content), p->length);
}

// ---- tests -------------------------------------------------------------------------------------------

TEST(RealData, FixturesRoundTripAndAgreeWithOpenSsl) {
    for (const char* name : kFixtureCerts) {
        SCOPED_TRACE(name);
        const std::string base = Fixture(std::string("certs/") + name);
        const Bytes der = ReadFile(base + ".der");
        const Bytes expectedTbs = ReadFile(base + ".tbs");
        auto expected = ReadKeyValues(base + ".txt");
        ASSERT_FALSE(der.empty());
        ASSERT_FALSE(expectedTbs.empty()) << "run make_expected.sh beside the fixtures";
        ASSERT_FALSE(expected["serial"].empty());

        Tree cert(&x509::kCertificate);
        ExpectRoundTrip(der, cert);
        if (HasFatalFailure()) return;
        void* tbs = Tbs(cert);

        // The bytes a signer signs: written from the tree, not sliced from the input.
        EXPECT_EQ(ToHex(Encode(tbs, &x509::kTbsCertificate)), ToHex(expectedTbs));

        const Asn1Primitive* serial = Leaf(x509::At(tbs, x509::TbsSlot::SerialNumber));
        EXPECT_EQ(ToHex(serial->content, serial->length), ToHex(Hex(expected["serial"])));

        // make_fixtures.sh asks for v3 with extensions; the DEFAULT version must not hide that.
        const Asn1Primitive* version = Leaf(x509::At(tbs, x509::TbsSlot::Version));
        ASSERT_NE(version, nullptr);
        EXPECT_EQ(ToHex(version->content, version->length), "02");
        auto* extensions = static_cast<const Asn1List*>(x509::At(tbs, x509::TbsSlot::Extensions));
        ASSERT_NE(extensions, nullptr);
        EXPECT_EQ(GetAsn1ListLength(extensions), 8u);  // the eight lines of [tv_ca]

        void* validity = x509::At(tbs, x509::TbsSlot::Validity);
        int32_t alternative = -1;
        EXPECT_EQ(TimeText(validity, x509::ValiditySlot::NotBefore, &alternative), AsnTimeText(expected["notBefore"]));
        EXPECT_EQ(alternative, static_cast<int32_t>(x509::TimeAlternative::UtcTime));
        EXPECT_EQ(TimeText(validity, x509::ValiditySlot::NotAfter, &alternative), AsnTimeText(expected["notAfter"]));
    }
}

// Critical extensions keep their TRUE and the others read as the DEFAULT; an extension that spells
// out critical FALSE (BER, seen in old CA certificates) decodes but is written without it, as DER
// requires.
TEST(RealData, CriticalFlagFollowsDer) {
    const Bytes der = ReadFile(Fixture("certs/rsa_ca.der"));
    Tree cert(&x509::kCertificate);
    ASSERT_EQ(Decode(der, cert), TV_OK);
    auto* extensions = static_cast<Asn1List*>(x509::At(Tbs(cert), x509::TbsSlot::Extensions));
    ASSERT_NE(extensions, nullptr);
    int critical = 0, plain = 0;
    for (uint32_t i = 0; i < extensions->count; ++i) {
        const Asn1Primitive* flag = Leaf(x509::At(extensions->items[i], x509::ExtensionSlot::Critical));
        ASSERT_NE(flag, nullptr) << "an absent DEFAULT must read as its default value";
        ASSERT_EQ(flag->length, 1u);
        (flag->content[0] ? critical : plain)++;
    }
    EXPECT_EQ(critical, 2);  // basicConstraints and keyUsage
    EXPECT_EQ(plain, 6);

    // Extension { extnID 2.5.29.19, critical FALSE (explicit), extnValue 30 00 }
    const Bytes explicitFalse = Hex("30 0C 06 03 55 1D 13 01 01 00 04 02 30 00");
    Tree ext(&x509::kExtension);
    ASSERT_EQ(Decode(explicitFalse, ext), TV_OK);
    EXPECT_EQ(ToHex(Encode(ext.v, ext.d)), "30 09 06 03 55 1D 13 04 02 30 00");
}

TEST(RealData, SystemCaBundleRoundTrips) {
    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::is_directory(kCaDirectory, ec)) GTEST_SKIP() << kCaDirectory << " is missing";
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(kCaDirectory, ec))
        if (entry.path().extension() == ".pem") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    if (files.empty()) GTEST_SKIP() << "no .pem files in " << kCaDirectory;

    size_t roundTripped = 0;
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.string());
        std::ifstream in(file);
        std::stringstream text;
        text << in.rdbuf();
        bool ok = false;
        auto certs = PemCertificates(text.str(), &ok);
        ASSERT_TRUE(ok) << "unreadable PEM";
        for (const Bytes& der : certs) {
            Tree cert(&x509::kCertificate);
            ExpectRoundTrip(der, cert);
            if (!cert.v) continue;
            const Bytes tbs = TbsSliceOf(der);
            ASSERT_FALSE(tbs.empty());
            EXPECT_EQ(ToHex(Encode(Tbs(cert), &x509::kTbsCertificate)), ToHex(tbs));
            if (!HasFailure()) ++roundTripped;
        }
    }
    std::printf("[          ] %zu CA certificates from %zu files round-tripped\n", roundTripped, files.size());
    EXPECT_GT(roundTripped, 0u);
}

// Every allocation of decode, copy and encode fails once in turn: each run must end with 1, the
// output untouched, and nothing left behind (LeakSanitizer watches the sanitizer build).
TEST(RealData, AllocationFailuresAreCleanedUp) {
    const Bytes der = ReadFile(Fixture("certs/gost2012_256.der"));
    ASSERT_FALSE(der.empty());
    const Asn1Descriptor* d = &x509::kCertificate;
    bool outputsClean = true;
    int runs = ForEachAllocationFailure([&]() -> uint32_t {
        void* cert = nullptr;
        uint32_t consumed = 0;
        uint32_t rc = Asn1DecodeItem(der.data(), static_cast<uint32_t>(der.size()), d, &cert, &consumed);
        if (rc != TV_OK) {
            outputsClean = outputsClean && cert == nullptr;
            return rc;
        }
        void* copy = nullptr;
        rc = tv::CopyValue(d, cert, &copy);
        if (rc == TV_OK) {
            uint8_t* out = nullptr;
            uint32_t len = 0;
            rc = Asn1Encode(copy, d, &out, &len);
            if (rc == TV_OK && (len != der.size() || std::memcmp(out, der.data(), len) != 0)) rc = TV_ERR_DIFFERENT;
            outputsClean = outputsClean && (rc == TV_OK) == (out != nullptr);
            std::free(out);
        } else {
            outputsClean = outputsClean && copy == nullptr;
        }
        FreeAsn1Object(d, copy);
        FreeAsn1Object(d, cert);
        return rc;
    });
    RecordProperty("runs", runs);
    EXPECT_GT(runs, 50) << "a negative count is the run that returned something other than 1";
    EXPECT_TRUE(outputsClean);
}

// Inputs the fuzzer once choked on: each must be answered with a status, whatever it is, and what
// decodes must reach a fixpoint after one re-encoding.
TEST(RealData, FuzzRegressionsReplayCleanly) {
    namespace fs = std::filesystem;
    const fs::path dir = Fixture("regress");
    const Asn1Descriptor* const shapes[] = {&x509::kCertificate, &tv::desc::kInteger, &tv::desc::kOctetString,
                                            &tv::desc::kAny, &tv::desc::kOctetStrings};
    std::error_code ec;
    for (const auto& entry : fs::directory_iterator(dir, ec)) {
        if (!entry.is_regular_file() || entry.path().extension() == ".md") continue;
        const Bytes in = ReadFile(entry.path().string());
        for (const Asn1Descriptor* d : shapes) {
            SCOPED_TRACE(entry.path().filename().string() + " as type code " + std::to_string(d->typeCode));
            Tree value(d);
            if (Decode(in, value) != TV_OK) {
                EXPECT_EQ(value.v, nullptr);
                continue;
            }
            uint32_t rc = 0;
            const Bytes once = Encode(value.v, d, &rc);
            ASSERT_EQ(rc, TV_OK);
            Tree again(d);
            ASSERT_EQ(Decode(once, again), TV_OK);
            EXPECT_EQ(ToHex(Encode(again.v, d)), ToHex(once));
        }
    }
}

}  // namespace
