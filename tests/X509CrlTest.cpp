// CRLs: real CRLs made by OpenSSL (plain, GOST, indirect, 10,000 entries) against the README that
// lists their entries and issuers, built CRLs read back through the decoder, the search of an
// indirect CRL, the size protocol and the cleanup paths.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/x509/X509Crl.h"

using namespace tvtest;

namespace {

constexpr uint8_t kOidC[] = {3, 0x55, 0x04, 0x06};
constexpr uint8_t kOidO[] = {3, 0x55, 0x04, 0x0A};
constexpr uint8_t kOidCN[] = {3, 0x55, 0x04, 0x03};
constexpr uint8_t kOidAki[] = {3, 0x55, 0x1D, 0x23};
constexpr uint8_t kOidCertificateIssuer[] = {3, 0x55, 0x1D, 0x1D};
constexpr LibraryTime kApril1{2025, 4, 1, 0, 0, 0};
constexpr LibraryTime kMay1{2025, 5, 1, 0, 0, 0};

struct Crl {
    X509Crl* p = nullptr;
    Crl() = default;
    explicit Crl(const Bytes& der) { EXPECT_EQ(DecodeX509Crl(der.data(), static_cast<uint32_t>(der.size()), &p), TV_OK); }
    ~Crl() { FreeX509Crl(p); }
    Crl(const Crl&) = delete;
    Crl& operator=(const Crl&) = delete;
};

struct Name {
    X509Name* p = nullptr;
    Name() { EXPECT_EQ(CreateX509Name(&p), TV_OK); }
    ~Name() { FreeX509Name(p); }
    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;
    Name& Add(const uint8_t* oid, uint8_t tag, const std::string& text) {
        EXPECT_EQ(AddX509NameEntry(p, reinterpret_cast<const uint8_t*>(text.data()), static_cast<uint32_t>(text.size()),
                                   tag, oid, 1),
                  TV_OK);
        return *this;
    }
};

Bytes EncodeCrl(const X509Crl* crl, uint32_t* rc = nullptr) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Crl(crl, o, n); }, rc);
}
Bytes Tbs(const X509Crl* crl) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetX509CrlToBeSignedPart(crl, o, n); });
}
Bytes Serial(const X509Crl* crl, uint32_t i) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetX509CrlRevokedCertificateSerialNumber(crl, i, o, n); });
}
Bytes NameDer(const X509Name* name) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Name(name, o, n); });
}

uint32_t Find(const X509Crl* crl, const X509Name* issuer, const Bytes& serial, uint32_t* index) {
    return FindX509CrlFind(crl, issuer, serial.data(), static_cast<uint32_t>(serial.size()), index);
}

uint32_t Count(const X509Crl* crl) {
    uint32_t n = 0xFFFF;
    EXPECT_EQ(GetX509CrlRevokedCertificateCount(crl, &n), TV_OK);
    return n;
}

// A complete v2 CRL: issuer C=RU, O=Tarvelon (PrintableString), dates, GOST 2012-256 signature
// algorithm and a signature.
void FillCrl(X509Crl* crl) {
    Name issuer;
    issuer.Add(kOidC, ASN1_PRINTABLE_STRING, "RU").Add(kOidO, ASN1_PRINTABLE_STRING, "Tarvelon");
    ASSERT_EQ(SetX509CrlVersion(crl, 1), TV_OK);
    ASSERT_EQ(SetX509CrlIssuer(crl, issuer.p), TV_OK);
    ASSERT_EQ(SetX509CrlThisUpdate(crl, &kApril1), TV_OK);
    ASSERT_EQ(SetX509CrlNextUpdate(crl, &kMay1), TV_OK);
    ASSERT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(crl, 3002, 255), TV_OK);
    const uint8_t signature[] = {1, 2, 3, 4};
    ASSERT_EQ(SetX509CrlSignature(crl, signature, sizeof signature), TV_OK);
}

std::string PkiFixture(const std::string& name) { return Fixture("pki/" + name); }

// ---- descriptors ------------------------------------------------------------------------------------

TEST(X509Crl, DescriptorsLintClean) {
    for (auto [d, name] : {std::pair{&tv::desc::kCertificateList, "CertificateList"},
                           std::pair{&tv::desc::kX509Crls, "X509Crls"},
                           std::pair{&tv::desc::kRevokedCertificates, "RevokedCertificates"}}) {
        EXPECT_TRUE(LintDescriptor(d, name).empty()) << name;
    }
}

// ---- real CRLs --------------------------------------------------------------------------------------

struct RealCrl {
    const char* file;
    uint32_t entries;
    const char* firstSerial;
    const char* signatureOid;  // packed
};

// Serials and algorithms as the fixture README and OpenSSL's dump list them.
const RealCrl kRealCrls[] = {
    {"crl_rsa", 9, "1001", "09 2A864886F70D01010B"},
    {"crl_gost2001", 9, "1001", "06 2A8503020203"},
    {"crl_gost2012_256", 9, "1001", "08 2A85030701010302"},
    {"crl_gost2012_512", 9, "1001", "08 2A85030701010303"},
    {"crl_indirect", 7, "2001", "09 2A864886F70D01010B"},
    {"crl_10000", 10000, "100001", "09 2A864886F70D01010B"},
};

TEST(X509Crl, RealCrlsRoundTripAndReadBack) {
    for (const RealCrl& c : kRealCrls) {
        SCOPED_TRACE(c.file);
        const Bytes der = ReadFile(PkiFixture(std::string(c.file) + ".der"));
        ASSERT_FALSE(der.empty());
        Crl crl(der);
        ASSERT_NE(crl.p, nullptr);

        uint32_t version = 9;
        EXPECT_EQ(GetX509CrlVersion(crl.p, &version), TV_OK);
        EXPECT_EQ(version, 1u);
        LibraryTime t{};
        EXPECT_EQ(GetX509CrlThisUpdate(crl.p, &t), TV_OK);
        EXPECT_TRUE(SameTime(t, kApril1));
        EXPECT_EQ(GetX509CrlNextUpdate(crl.p, &t), TV_OK);
        EXPECT_TRUE(SameTime(t, kMay1));
        EXPECT_EQ(Count(crl.p), c.entries);
        EXPECT_EQ(Flat(Serial(crl.p, 0)), Flat(Hex(c.firstSerial)));

        uint8_t oid[32];
        uint32_t oidLen = sizeof oid, paramsLen = 0;
        EXPECT_EQ(GetX509CrlSignatureAlgorithmOidAndParameters(crl.p, oid, &oidLen, nullptr, &paramsLen), TV_OK);
        EXPECT_EQ(Flat(Bytes(oid, oid + oidLen)), Flat(Hex(c.signatureOid)));
        uint32_t signatureLen = 0;
        EXPECT_EQ(GetX509CrlSignature(crl.p, nullptr, &signatureLen), TV_OK);
        EXPECT_GE(signatureLen, 64u);

        // Every CRL carries an authority key identifier; the first entry of each is on it.
        X509Extensions* extensions = nullptr;
        uint32_t at = 0;
        ASSERT_EQ(GetX509CrlExtensions(crl.p, &extensions), TV_OK);
        EXPECT_EQ(FindX509Extension(extensions, kOidAki, &at), TV_OK);
        X509Name* issuer = nullptr;
        ASSERT_EQ(GetX509CrlIssuer(crl.p, &issuer), TV_OK);
        EXPECT_EQ(Find(crl.p, issuer, Hex(c.firstSerial), &at), TV_OK);
        EXPECT_EQ(at, 0u);
    }
}

TEST(X509Crl, IndirectCrlSearchFollowsCertificateIssuer) {
    Crl crl(ReadFile(PkiFixture("crl_indirect.der")));
    ASSERT_NE(crl.p, nullptr);
    X509Name* own = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &own), TV_OK);
    // Issuer B as entry 3 names it (C=RU, O=Tarvelon B, CN=Issuer B).
    X509Extensions* entry = nullptr;
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl.p, 2, &entry), TV_OK);
    const Bytes value = OldSized(
        [&](uint8_t* o, uint32_t* n) { return GetX509ExtensionsExtensionValue(entry, kOidCertificateIssuer, o, n); });
    GeneralNames* names = nullptr;
    ASSERT_EQ(DecodeX509GeneralNames(value.data(), static_cast<uint32_t>(value.size()), &names), TV_OK);
    X509Name* issuerB = nullptr;
    ASSERT_EQ(GetX509NameFromGeneralNames(names, &issuerB), TV_OK);
    FreeX509GeneralNames(names);

    struct Case {
        const char* serial;
        bool underB;
        uint32_t rc;
        uint32_t index;
    };
    // README: 1) 2001 own, 2) 2002 own, 3) 2001 -> B, 4) 3002 B, 5) 3003 B, 6) 2003 -> own, 7) 2004 own.
    const Case cases[] = {
        {"2001", false, TV_OK, 0}, {"2001", true, TV_OK, 2},  {"2002", false, TV_OK, 1},
        {"2002", true, 322, 0},    {"3002", true, TV_OK, 3},  {"3002", false, 322, 0},
        {"3003", true, TV_OK, 4},  {"3003", false, 322, 0},   {"2003", false, TV_OK, 5},
        {"2003", true, 322, 0},    {"2004", false, TV_OK, 6}, {"2004", true, 322, 0},
        {"9999", false, 322, 0},   {"002001", false, 322, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.serial) + (c.underB ? " under B" : " under own issuer"));
        uint32_t index = 77;
        EXPECT_EQ(Find(crl.p, c.underB ? issuerB : own, Hex(c.serial), &index), c.rc);
        if (c.rc == TV_OK) {
            EXPECT_EQ(index, c.index);
        }
    }
    FreeX509Name(issuerB);
}

TEST(X509Crl, TenThousandEntriesReadAndSearch) {
    const Bytes der = ReadFile(PkiFixture("crl_10000.der"));
    Crl crl(der);
    ASSERT_NE(crl.p, nullptr);
    EXPECT_EQ(Flat(Serial(crl.p, 9999)), "102710");
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &issuer), TV_OK);
    uint32_t index = 0;
    EXPECT_EQ(Find(crl.p, issuer, Hex("102710"), &index), TV_OK);
    EXPECT_EQ(index, 9999u);
}

// ---- building -----------------------------------------------------------------------------------------

TEST(X509Crl, EntriesListPresenceAndDuplicates) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    FillCrl(crl.p);
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &issuer), TV_OK);
    uint32_t index = 5;
    // No list: count 0 and nothing to find, and the field is not in the encoding.
    EXPECT_EQ(Count(crl.p), 0u);
    EXPECT_EQ(Find(crl.p, issuer, Hex("01"), &index), 322u);
    const size_t withoutList = EncodeCrl(crl.p).size();

    for (uint32_t expected : {0u, 1u}) {
        ASSERT_EQ(AddX509CrlRevokedCertificate(crl.p, Hex("01").data(), 1, &kApril1, &index), TV_OK);
        EXPECT_EQ(index, expected);
    }
    EXPECT_EQ(Find(crl.p, issuer, Hex("01"), &index), TV_OK);
    EXPECT_EQ(index, 0u);

    // A date from 2050 on (GeneralizedTime) and an entry extension added in place survive decoding.
    const LibraryTime late{2051, 3, 4, 5, 6, 7};
    const uint8_t reason[] = {0x0A, 0x01, 0x01};
    X509Extensions* entry = nullptr;
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl.p, Hex("0080").data(), 2, &late, &index), TV_OK);
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl.p, 2, &entry), TV_OK);
    ASSERT_EQ(AddX509ExtensionsExtension(entry, Hex("03 551D15").data(), 0, reason, sizeof reason), TV_OK);
    const Bytes der = EncodeCrl(crl.p);
    Crl decoded(der);
    LibraryTime t{};
    uint32_t n = 0;
    ASSERT_EQ(GetX509CrlRevokedCertificateRevokationDate(decoded.p, 2, &t), TV_OK);
    EXPECT_TRUE(SameTime(t, late));
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(decoded.p, 2, &entry), TV_OK);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(entry, &n), TV_OK);
    EXPECT_EQ(n, 1u);
    EXPECT_EQ(Flat(Serial(decoded.p, 2)), "0080");
    EXPECT_EQ(EncodeCrl(decoded.p), der);

    ASSERT_EQ(ClearX509CrlRevokedCertificates(crl.p), TV_OK);
    EXPECT_EQ(Count(crl.p), 0u);
    EXPECT_EQ(Find(crl.p, issuer, Hex("01"), &index), 322u);
    EXPECT_EQ(EncodeCrl(crl.p).size(), withoutList + 2);  // an empty SEQUENCE: 30 00
    EXPECT_TRUE(Flat(Tbs(crl.p)).ends_with("5A3000"));  // right after nextUpdate
    ASSERT_EQ(RemoveX509CrlRevokedCertificates(crl.p), TV_OK);
    EXPECT_EQ(EncodeCrl(crl.p).size(), withoutList);
    EXPECT_EQ(RemoveX509CrlRevokedCertificates(crl.p), TV_OK);
    EXPECT_EQ(ClearX509CrlRevokedCertificates(crl.p), TV_OK);
    EXPECT_EQ(EncodeCrl(crl.p).size(), withoutList);
}

TEST(X509Crl, IssuersCompareAsDerOctets) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    FillCrl(crl.p);
    uint32_t index = 0;
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl.p, Hex("05").data(), 1, &kApril1, &index), TV_OK);
    struct Case {
        const char* what;
        uint8_t countryTag, orgTag;
        bool reversed;
        uint32_t rc;
    };
    const Case cases[] = {
        {"same octets", ASN1_PRINTABLE_STRING, ASN1_PRINTABLE_STRING, false, TV_OK},
        {"UTF8String organisation", ASN1_PRINTABLE_STRING, ASN1_UTF8_STRING, false, 322},
        {"attributes reversed", ASN1_PRINTABLE_STRING, ASN1_PRINTABLE_STRING, true, 322},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Name sought;
        if (c.reversed) sought.Add(kOidO, c.orgTag, "Tarvelon").Add(kOidC, c.countryTag, "RU");
        else sought.Add(kOidC, c.countryTag, "RU").Add(kOidO, c.orgTag, "Tarvelon");
        EXPECT_EQ(Find(crl.p, sought.p, Hex("05"), &index), c.rc);
    }
}

// A certificate issuer extension names B; the entries after it stay under B until another one
// changes it, and the last directoryName of an extension wins over names of other kinds after it.
TEST(X509Crl, CertificateIssuerExtensionCarriesForward) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    FillCrl(crl.p);
    X509Name* own = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &own), TV_OK);
    Name b, c;
    b.Add(kOidCN, ASN1_UTF8_STRING, "Issuer B");
    c.Add(kOidCN, ASN1_UTF8_STRING, "Issuer C");
    uint32_t index = 0;
    for (const char* serial : {"01", "02", "03", "04"})
        ASSERT_EQ(AddX509CrlRevokedCertificate(crl.p, Hex(serial).data(), 1, &kApril1, &index), TV_OK);

    // Entry 1 (02): C then B then a URI; so B is in force from entry 1 on.
    GeneralNames* names = nullptr;
    ASSERT_EQ(CreateX509GeneralNames(&names), TV_OK);
    const Bytes derB = NameDer(b.p), derC = NameDer(c.p);
    const std::string uri = "http://example.ru/";
    ASSERT_EQ(AddX509GeneralName(names, 4, derC.data(), static_cast<uint32_t>(derC.size())), TV_OK);
    ASSERT_EQ(AddX509GeneralName(names, 4, derB.data(), static_cast<uint32_t>(derB.size())), TV_OK);
    ASSERT_EQ(AddX509GeneralName(names, 6, reinterpret_cast<const uint8_t*>(uri.data()),
                                 static_cast<uint32_t>(uri.size())),
              TV_OK);
    const Bytes value = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509GeneralNames(names, o, n); });
    FreeX509GeneralNames(names);
    X509Extensions* entry = nullptr;
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl.p, 1, &entry), TV_OK);
    ASSERT_EQ(AddX509ExtensionsExtension(entry, kOidCertificateIssuer, 1, value.data(),
                                         static_cast<uint32_t>(value.size())),
              TV_OK);

    struct Case {
        const char* serial;
        X509Name* issuer;
        uint32_t rc;
    };
    const Case cases[] = {{"01", own, TV_OK}, {"01", b.p, 322},   {"02", b.p, TV_OK}, {"02", own, 322},
                          {"03", b.p, TV_OK}, {"04", b.p, TV_OK}, {"04", own, 322},   {"03", c.p, 322}};
    for (const Case& k : cases) {
        SCOPED_TRACE(k.serial);
        EXPECT_EQ(Find(crl.p, k.issuer, Hex(k.serial), &index), k.rc);
    }
}

// ---- field rules ----------------------------------------------------------------------------------

TEST(X509Crl, FreshCrlReportsAbsentFields) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    uint32_t u = 0;
    LibraryTime t{};
    uint8_t buf[8];
    uint32_t len = sizeof buf, paramsLen = 0;
    struct Case {
        const char* what;
        uint32_t rc;
        uint32_t expected;
    };
    const Case cases[] = {
        {"version", GetX509CrlVersion(crl.p, &u), 311},
        {"thisUpdate", GetX509CrlThisUpdate(crl.p, &t), 311},
        {"nextUpdate", GetX509CrlNextUpdate(crl.p, &t), 311},
        {"signature", GetX509CrlSignature(crl.p, buf, &len), 311},
        {"algorithm", GetX509CrlSignatureAlgorithmOidAndParameters(crl.p, buf, &len, nullptr, &paramsLen), 311},
        {"entry 0", GetX509CrlRevokedCertificateRevokationDate(crl.p, 0, &t), 32},
        {"version 2", SetX509CrlVersion(crl.p, 2), 32},
        {"mode 1 without parameters", SetX509CrlGostR34102001SignatureAlgorithmID(crl.p, 3002, 1), 32},
        {"empty serial", AddX509CrlRevokedCertificate(crl.p, buf, 0, &kApril1, &u), 32},
        {"null date", AddX509CrlRevokedCertificate(crl.p, buf, 1, nullptr, &u), 32},
        {"null crl", GetX509CrlRevokedCertificateCount(nullptr, &u), 32},
        {"remove absent nextUpdate", RemoveX509CrlNextUpdate(crl.p), 0},
        {"encode incomplete", EncodeX509Crl(crl.p, nullptr, &len), 311},
    };
    for (const Case& c : cases) EXPECT_EQ(c.rc, c.expected) << c.what;
    EXPECT_EQ(Count(crl.p), 0u);  // the refused adds created no list

    // The issuer is made in place, and entries added to it appear in the encoding.
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &issuer), TV_OK);
    X509Name* again = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &again), TV_OK);
    EXPECT_EQ(issuer, again);
    ASSERT_EQ(AddX509NameEntry(issuer, reinterpret_cast<const uint8_t*>("RU"), 2, ASN1_PRINTABLE_STRING, kOidC, 1),
              TV_OK);
    ASSERT_EQ(SetX509CrlThisUpdate(crl.p, &kApril1), TV_OK);
    ASSERT_EQ(SetX509CrlSignatureAlgorithmOidAndParameters(crl.p, Hex("06 2A8503020203").data(), nullptr, 0), TV_OK);
    EXPECT_EQ(Flat(Tbs(crl.p)), "302830080606" "2A8503020203" "300D310B3009060355040613025255" "170D3235303430313030303030305A");
    EXPECT_EQ(GetX509CrlVersion(crl.p, &u), 311u);  // v1: no version field

    // nextUpdate comes and goes.
    ASSERT_EQ(SetX509CrlNextUpdate(crl.p, &kMay1), TV_OK);
    ASSERT_EQ(GetX509CrlNextUpdate(crl.p, &t), TV_OK);
    EXPECT_TRUE(SameTime(t, kMay1));
    ASSERT_EQ(RemoveX509CrlNextUpdate(crl.p), TV_OK);
    EXPECT_EQ(GetX509CrlNextUpdate(crl.p, &t), 311u);
    EXPECT_FALSE(Tbs(crl.p).empty());
}

TEST(X509Crl, AlgorithmSetters) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    FillCrl(crl.p);
    // A refused algorithm leaves both fields as they were.
    const Bytes before = EncodeCrl(crl.p);
    EXPECT_EQ(SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(crl.p, 3002, 7, 1, 1, 1), 32u);
    EXPECT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(crl.p, 424242, 0), 309u);
    EXPECT_EQ(EncodeCrl(crl.p), before);
    // Mode 0: NULL parameters, in both fields.
    ASSERT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(crl.p, 100, 0), TV_OK);
    const std::string der = Flat(EncodeCrl(crl.p));
    const std::string algorithm = "300A06062A85030202030500";
    EXPECT_NE(der.find(algorithm), der.rfind(algorithm));
}

// ---- stand-alone lists ---------------------------------------------------------------------------

TEST(X509Crl, RevokedListAndCrlListMembers) {
    X509RevokedCertificates* list = nullptr;
    ASSERT_EQ(CreateX509RevokedCertificates(&list), TV_OK);
    uint32_t index = 9;
    ASSERT_EQ(AddX509RevokedCertificatesRevokedCertificate(list, Hex("2A").data(), 1, &kApril1, &index), TV_OK);
    EXPECT_EQ(index, 0u);
    X509Extensions* entry = nullptr;
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(list, 0, &entry), TV_OK);
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(list, 1, &entry), 32u);
    const Bytes der = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509RevokedCertificates(list, o, n); });
    EXPECT_EQ(Flat(der), "3014301202012A170D3235303430313030303030305A");
    FreeX509RevokedCertificates(list);

    // A list owns the CRLs added to it; copy, encoding and decoding keep them all.
    X509Crls* crls = nullptr;
    X509Crls* copy = nullptr;
    ASSERT_EQ(CreateX509Crls(&crls), TV_OK);
    const Bytes rsa = ReadFile(PkiFixture("crl_rsa.der"));
    for (int i = 0; i < 2; ++i) {
        X509Crl* crl = nullptr;
        ASSERT_EQ(DecodeX509Crl(rsa.data(), static_cast<uint32_t>(rsa.size()), &crl), TV_OK);
        ASSERT_EQ(AddX509CrlToX509Crls(crls, crl), TV_OK);
    }
    ASSERT_EQ(CreateX509CrlsCopy(crls, &copy), TV_OK);
    FreeX509Crls(crls);
    const Bytes all = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Crls(copy, o, n); });
    FreeX509Crls(copy);
    ASSERT_EQ(DecodeX509Crls(all.data(), static_cast<uint32_t>(all.size()), &crls), TV_OK);
    uint32_t count = 0;
    X509Crl* second = nullptr;
    EXPECT_EQ(GetX509CrlsCount(crls, &count), TV_OK);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(GetX509CrlsCrl(crls, 1, &second), TV_OK);
    EXPECT_EQ(EncodeCrl(second), rsa);
    EXPECT_EQ(GetX509CrlsCrl(crls, 2, &second), 32u);
    FreeX509Crls(crls);
}

// ---- authority key identifier ---------------------------------------------------------------------

TEST(X509Crl, AuthorityKeyIdentifier) {
    Crl crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    FillCrl(crl.p);
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl.p, &issuer), TV_OK);
    const Bytes keyId = Hex("0102030405"), serial = Hex("7E57");
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl.p, keyId.data(), 5, nullptr, nullptr, 0), 32u);
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl.p, nullptr, 0, issuer, nullptr, 0), 32u);
    X509Extensions* extensions = nullptr;
    uint32_t count = 9;
    ASSERT_EQ(GetX509CrlExtensions(crl.p, &extensions), TV_OK);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(extensions, &count), TV_OK);
    EXPECT_EQ(count, 0u);

    // Set twice: the second replaces the first.
    for (int i = 0; i < 2; ++i)
        ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl.p, keyId.data(), 5, issuer, serial.data(), 2), TV_OK);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(extensions, &count), TV_OK);
    EXPECT_EQ(count, 1u);
    const std::string issuerDer = Flat(NameDer(issuer));
    const std::string expected = "30" "31" "8005" "0102030405" "A124" "A422" + issuerDer + "82027E57";
    const Bytes value =
        OldSized([&](uint8_t* o, uint32_t* n) { return GetX509ExtensionsExtensionValue(extensions, kOidAki, o, n); });
    EXPECT_EQ(Flat(value), expected);
    // crlExtensions is [0] EXPLICIT: A0 around the SEQUENCE OF.
    EXPECT_NE(Flat(Tbs(crl.p)).find("A03E303C303A0603551D23"), std::string::npos);

    // From the issuing certificate: its subject key identifier, its own issuer and its serial.
    const Bytes caDer = ReadFile(PkiFixture("ca_rsa.der"));
    Certificate* ca = nullptr;
    ASSERT_EQ(DecodeCertificate(caDer.data(), static_cast<uint32_t>(caDer.size()), &ca), TV_OK);
    ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier(crl.p, ca), TV_OK);
    const Bytes fromCa =
        OldSized([&](uint8_t* o, uint32_t* n) { return GetX509ExtensionsExtensionValue(extensions, kOidAki, o, n); });
    EXPECT_NE(Flat(fromCa).find("801445AC857C27343F7D863DE833B633DF3049AF4083"), std::string::npos);
    EXPECT_NE(Flat(fromCa).find("82087E57CA0000000001"), std::string::npos);
    FreeCertificate(ca);
}

// ---- cleanup paths ----------------------------------------------------------------------------------

TEST(X509Crl, AllocationFailuresFreeEverything) {
    const Bytes indirect = ReadFile(PkiFixture("crl_indirect.der"));
    const int decodeRuns = ForEachAllocationFailure([&]() -> uint32_t {
        X509Crl* crl = nullptr;
        uint32_t rc = DecodeX509Crl(indirect.data(), static_cast<uint32_t>(indirect.size()), &crl);
        if (rc != TV_OK) return rc;
        X509Crl* copy = nullptr;
        rc = CreateX509CrlCopy(crl, &copy);
        X509Name* issuer = nullptr;
        uint32_t index = 0;
        if (rc == TV_OK) rc = GetX509CrlIssuer(crl, &issuer);
        if (rc == TV_OK) rc = FindX509CrlFind(copy, issuer, Hex("3003").data(), 2, &index);
        if (rc == TV_ERR_NOT_FOUND) rc = TV_OK;
        if (rc == TV_OK) {
            const Bytes der = EncodeCrl(copy, &rc);
            if (rc == TV_OK) {
                EXPECT_EQ(der, indirect);
            }
        }
        FreeX509Crl(copy);
        FreeX509Crl(crl);
        return rc;
    });
    EXPECT_GT(decodeRuns, 0);

    Name issuer;
    issuer.Add(kOidCN, ASN1_UTF8_STRING, "CA");
    const Bytes serial = Hex("0102");
    const int buildRuns = ForEachAllocationFailure([&]() -> uint32_t {
        X509Crl* crl = nullptr;
        uint32_t rc = CreateX509Crl(&crl);
        uint32_t index = 0;
        if (rc == TV_OK) rc = SetX509CrlIssuer(crl, issuer.p);
        if (rc == TV_OK) rc = SetX509CrlThisUpdate(crl, &kApril1);
        if (rc == TV_OK) rc = SetX509CrlNextUpdate(crl, &kMay1);
        if (rc == TV_OK) rc = SetX509CrlVersion(crl, 1);
        if (rc == TV_OK) rc = SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(crl, 102, 1, 1, 1, 1);
        if (rc == TV_OK) {
            rc = AddX509CrlRevokedCertificate(crl, serial.data(), 2, &kApril1, &index);
            if (rc != TV_OK) {
                EXPECT_EQ(Count(crl), 0u) << "a failed add leaves no list behind";
            }
        }
        if (rc == TV_OK) rc = SetX509CrlAuthorityKeyIdentifier2(crl, serial.data(), 2, issuer.p, serial.data(), 2);
        if (rc == TV_OK) rc = SetX509CrlSignature(crl, serial.data(), 2);
        if (rc == TV_OK) EncodeCrl(crl, &rc);
        FreeX509Crl(crl);
        return rc;
    });
    EXPECT_GT(buildRuns, 0);
}

}  // namespace
