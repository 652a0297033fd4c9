// General names and free text: all nine kinds through build, encode, decode and read; the alternative
// and authority-issuer names of OpenSSL-made certificates; the directoryName search.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/engine/Engine.h"
#include "tarvelon/pkix/X509General.h"

using namespace tvtest;

namespace {

struct ListHolder {
    GeneralNames* g = nullptr;
    ListHolder() { EXPECT_EQ(CreateX509GeneralNames(&g), 0u); }
    explicit ListHolder(GeneralNames* taken) : g(taken) {}
    ~ListHolder() { FreeX509GeneralNames(g); }
    ListHolder(const ListHolder&) = delete;
    ListHolder& operator=(const ListHolder&) = delete;
};

Bytes EncodeList(const GeneralNames* g) { return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509GeneralNames(g, o, n); }); }

struct Read {
    uint32_t kind;
    Bytes value;
};

std::vector<Read> ReadAll(const GeneralNames* g) {
    uint32_t count = 0;
    EXPECT_EQ(GetX509GeneralNameCount(g, &count), 0u);
    std::vector<Read> all;
    for (uint32_t i = 0; i < count; ++i) {
        Read r{};
        r.value = OldSized([&](uint8_t* o, uint32_t* n) { return GetX509GeneralName(g, i, &r.kind, o, n); });
        all.push_back(r);
    }
    return all;
}


// Contents of the extension `lastArc` under id-ce (2.5.29) in a DER certificate; empty when absent.
Bytes ExtensionValue(const Bytes& cert, uint8_t lastArc) {
    const uint8_t oid[] = {0x06, 0x03, 0x55, 0x1D, lastArc};
    for (size_t i = 0; i + sizeof oid < cert.size(); ++i) {
        if (std::memcmp(cert.data() + i, oid, sizeof oid) != 0) continue;
        size_t pos = i + sizeof oid;
        if (cert[pos] == 0x01) pos += 3;  // critical BOOLEAN
        uint8_t cls, cons;
        uint32_t tag, len, indefinite, hl;
        if (GetAsn1ObjectInfo(cert.data() + pos, static_cast<uint32_t>(cert.size() - pos), &cls, &cons, &tag, &len,
                              &indefinite, &hl) != 0 || tag != ASN1_OCTET_STRING)
            return {};
        return Bytes(cert.begin() + pos + hl, cert.begin() + pos + hl + len);
    }
    return {};
}

// One value per kind, what it encodes to inside GeneralNames, and what a decoded list gives back.
struct KindCase {
    uint32_t kind;
    const char* given;
    const char* encoded;
    const char* decoded;
};
const KindCase kKinds[] = {
    {0, "30 0B 06 03 2A 03 04 A0 04 0C 02 68 69", "A0 0B 06 03 2A 03 04 A0 04 0C 02 68 69",
     "A0 0B 06 03 2A 03 04 A0 04 0C 02 68 69"},  // otherName keeps the [0] octet it arrived with
    {1, "61 40 62 2E 72 75", "81 06 61 40 62 2E 72 75", "61 40 62 2E 72 75"},
    {2, "65 78 2E 72 75", "82 05 65 78 2E 72 75", "65 78 2E 72 75"},
    {3, "30 03 02 01 05", "A3 03 02 01 05", "A3 03 02 01 05"},
    {4, "30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55", "A4 0F 30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55",
     "30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55"},  // the bare Name, without the explicit wrapper
    {5, "30 06 A1 04 0C 02 68 69", "A5 06 A1 04 0C 02 68 69", "A5 06 A1 04 0C 02 68 69"},
    {6, "68 74 74 70 3A 2F 2F 78", "86 08 68 74 74 70 3A 2F 2F 78", "68 74 74 70 3A 2F 2F 78"},
    {7, "C0 00 02 11", "87 04 C0 00 02 11", "C0 00 02 11"},
    {8, "05 2A 85 03 64 01", "88 05 2A 85 03 64 01", "05 2A 85 03 64 01"},
};

TEST(GeneralNames, DescriptorsPassLint) {
    EXPECT_EQ(LintDescriptor(&tv::desc::kGeneralNames, "GeneralNames"), std::vector<std::string>{});
    EXPECT_EQ(LintDescriptor(&tv::desc::kPKIFreeText, "PKIFreeText"), std::vector<std::string>{});
}

TEST(GeneralNames, AllNineKindsRoundTrip) {
    ListHolder built;
    std::string expected;
    for (const KindCase& k : kKinds) {
        const Bytes given = Hex(k.given);
        ASSERT_EQ(AddX509GeneralName(built.g, k.kind, given.data(), static_cast<uint32_t>(given.size())), 0u) << k.kind;
        expected += std::string(expected.empty() ? "" : " ") + k.encoded;
    }
    const Bytes der = EncodeList(built.g);
    Bytes want = Hex(expected);
    ASSERT_LT(want.size(), 128u);
    want.insert(want.begin(), {0x30, static_cast<uint8_t>(want.size())});
    ASSERT_EQ(ToHex(der), ToHex(want));

    // Values read back from the built list are what was given.
    auto builtRead = ReadAll(built.g);
    ASSERT_EQ(builtRead.size(), std::size(kKinds));
    for (size_t i = 0; i < builtRead.size(); ++i) {
        SCOPED_TRACE(kKinds[i].kind);
        EXPECT_EQ(builtRead[i].kind, kKinds[i].kind);
        EXPECT_EQ(ToHex(builtRead[i].value), ToHex(Hex(kKinds[i].given)));
    }

    GeneralNames* decoded = nullptr;
    ASSERT_EQ(DecodeX509GeneralNames(der.data(), static_cast<uint32_t>(der.size()), &decoded), 0u);
    ListHolder d(decoded);
    EXPECT_EQ(ToHex(EncodeList(d.g)), ToHex(der));
    auto decodedRead = ReadAll(d.g);
    ASSERT_EQ(decodedRead.size(), std::size(kKinds));
    for (size_t i = 0; i < decodedRead.size(); ++i) {
        SCOPED_TRACE(kKinds[i].kind);
        EXPECT_EQ(decodedRead[i].kind, kKinds[i].kind);
        EXPECT_EQ(ToHex(decodedRead[i].value), ToHex(Hex(kKinds[i].decoded)));
    }

    GeneralNames* copy = nullptr;
    ASSERT_EQ(CopyX509GeneralNames(d.g, &copy), 0u);
    ListHolder c(copy);
    EXPECT_EQ(ToHex(EncodeList(c.g)), ToHex(der));
}

// A stand-alone general name and its copy read back what was given.
TEST(GeneralNames, StandAloneValues) {
    for (const KindCase& k : kKinds) {
        SCOPED_TRACE(k.kind);
        const Bytes given = Hex(k.given);
        GeneralName* one = nullptr;
        ASSERT_EQ(AllocX509GeneralNameValue(&one, k.kind, given.data(), static_cast<uint32_t>(given.size())), 0u);
        GeneralName* copy = nullptr;
        ASSERT_EQ(CreateX509GeneralNameCopy(one, &copy), 0u);
        FreeX509GeneralName(one);
        uint32_t kind = 99;
        const Bytes value = OldSized([&](uint8_t* o, uint32_t* n) { return GetX509GeneralNameValue(copy, &kind, o, n); });
        EXPECT_EQ(kind, k.kind);
        EXPECT_EQ(value, given);
        FreeX509GeneralName(copy);
    }
}

TEST(GeneralNames, Refusals) {
    ListHolder g;
    const Bytes dns = Text("example.ru");
    ASSERT_EQ(AddX509GeneralName(g.g, 2, dns.data(), static_cast<uint32_t>(dns.size())), 0u);
    EXPECT_EQ(AddX509GeneralName(g.g, 9, dns.data(), static_cast<uint32_t>(dns.size())), 306u);
    EXPECT_EQ(AddX509GeneralName(g.g, 2, nullptr, 0), 32u);
    EXPECT_EQ(AddX509GeneralName(nullptr, 2, dns.data(), 1), 32u);
    const Bytes shortOid = Hex("05 2A 85 03");  // says five content octets, holds three
    EXPECT_EQ(AddX509GeneralName(g.g, 8, shortOid.data(), static_cast<uint32_t>(shortOid.size())), 32u);
    uint32_t count = 0;
    ASSERT_EQ(GetX509GeneralNameCount(g.g, &count), 0u);
    EXPECT_EQ(count, 1u);  // failed adds leave the list as it was

    uint32_t kind = 77, len = 0;
    EXPECT_EQ(GetX509GeneralName(g.g, 1, &kind, nullptr, &len), 32u);
    EXPECT_EQ(kind, 77u);  // untouched on a bad index
    EXPECT_EQ(GetX509GeneralName(g.g, 0, nullptr, nullptr, &len), 32u);
    EXPECT_EQ(GetX509GeneralName(g.g, 0, &kind, nullptr, nullptr), 32u);

    GeneralName* empty = nullptr;
    ASSERT_EQ(CreateX509GeneralName(&empty), 0u);
    EXPECT_EQ(GetX509GeneralNameValue(empty, &kind, nullptr, &len), 311u);
    // A choice record naming no known kind: the kind is reported, then refused.
    Asn1Primitive* stray = tv::NewPrimitive(ASN1_IA5_STRING, dns.data(), 2);
    empty->index = 12;
    empty->value = stray;
    kind = 0;
    EXPECT_EQ(GetX509GeneralNameValue(empty, &kind, nullptr, &len), 306u);
    EXPECT_EQ(kind, 12u);
    empty->index = 2;  // so that the free below knows the alternative
    FreeX509GeneralName(empty);

    GeneralName* none = nullptr;
    EXPECT_EQ(AllocX509GeneralNameValue(&none, 9, dns.data(), 1), 306u);
    EXPECT_EQ(none, nullptr);
}

TEST(GeneralNames, FirstDecodableDirectoryName) {
    const Bytes name = Hex("30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55");
    const Bytes notAName = Hex("04 01 00");
    const Bytes dns = Text("example.ru");
    struct Item {
        uint32_t kind;
        const Bytes* value;
    };
    struct Case {
        const char* what;
        std::vector<Item> items;
        uint32_t rc;
    } cases[] = {
        {"empty list", {}, 322},
        {"only dNSName", {{2, &dns}, {2, &dns}}, 322},
        {"only an undecodable directoryName", {{4, &notAName}}, 322},
        {"undecodable first, valid second", {{4, &notAName}, {2, &dns}, {4, &name}}, 0},
        {"after other kinds", {{2, &dns}, {6, &dns}, {4, &name}}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ListHolder g;
        for (const Item& it : c.items)
            ASSERT_EQ(AddX509GeneralName(g.g, it.kind, it.value->data(), static_cast<uint32_t>(it.value->size())), 0u);
        X509Name* found = nullptr;
        EXPECT_EQ(GetX509NameFromGeneralNames(g.g, &found), c.rc);
        if (c.rc == 0) {
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Name(found, o, n); }), name);
        }
        FreeX509Name(found);
    }
    X509Name* found = nullptr;
    EXPECT_EQ(GetX509NameFromGeneralNames(nullptr, &found), 32u);
}

// subjectAltName and the authority key identifier's issuer as OpenSSL wrote them
// (tests/fixtures/certs and tests/fixtures/names, see the make_fixtures.sh scripts).
TEST(GeneralNames, CertificateAltNamesDecodeToExpectedKinds) {
    struct Case {
        const char* cert;
        std::vector<Read> expected;
    };
    const std::vector<Read> caAlt = {{1, Text("ca@example.ru")}, {2, Text("ca.example.ru")},
                                     {6, Text("http://ca.example.ru/")}};
    const Case cases[] = {
        {"certs/rsa_ca.der", caAlt},
        {"certs/gost2001.der", caAlt},
        {"certs/gost2012_256.der", caAlt},
        {"certs/gost2012_512.der", caAlt},
        {"names/gost_altnames.der",
         {{1, Text("alt@example.ru")},
          {2, Text("www.example.ru")},
          {2, Text("example.ru")},
          {6, Text("http://example.ru/ca")},
          {7, Hex("C0 00 02 11")},
          {7, Hex("20 01 0D B8 00 00 00 00 00 00 00 00 00 00 00 01")},
          {8, Hex("06 2A 85 03 64 71 01")},
          {4, Hex("30 34 31 0B 30 09 06 03 55 04 06 13 02 52 55 31 11 30 0F 06 03 55 04 0A 0C 08 54 61 72 76 65 6C 6F 6E"
                  "31 12 30 10 06 03 55 04 03 0C 09 44 69 72 65 63 74 6F 72 79")},
          {0, Hex("A0 1F 06 0A 2B 06 01 04 01 82 37 14 02 03 A0 11 0C 0F 75 73 65 72 40 65 78 61 6D 70 6C 65 2E 72 75")}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cert);
        const Bytes san = ExtensionValue(ReadFile(Fixture(c.cert)), 17);
        ASSERT_FALSE(san.empty());
        GeneralNames* decoded = nullptr;
        ASSERT_EQ(DecodeX509GeneralNames(san.data(), static_cast<uint32_t>(san.size()), &decoded), 0u);
        ListHolder g(decoded);
        EXPECT_EQ(ToHex(EncodeList(g.g)), ToHex(san));
        const auto got = ReadAll(g.g);
        ASSERT_EQ(got.size(), c.expected.size());
        for (size_t i = 0; i < got.size(); ++i) {
            SCOPED_TRACE(i);
            EXPECT_EQ(got[i].kind, c.expected[i].kind);
            EXPECT_EQ(ToHex(got[i].value), ToHex(c.expected[i].value));
        }
        X509Name* dir = nullptr;
        const bool hasDirectory = std::string(c.cert) == "names/gost_altnames.der";
        EXPECT_EQ(GetX509NameFromGeneralNames(g.g, &dir), hasDirectory ? 0u : 322u);
        FreeX509Name(dir);
    }
}

TEST(GeneralNames, AuthorityKeyIdentifierIssuer) {
    // AuthorityKeyIdentifier ::= SEQUENCE { keyIdentifier [0] ..., authorityCertIssuer [1] GeneralNames, ... }
    const Bytes aki = ExtensionValue(ReadFile(Fixture("names/gost_altnames.der")), 35);
    ASSERT_GT(aki.size(), 30u);
    uint8_t cls, cons;
    uint32_t tag, len, indefinite, hl;
    ASSERT_EQ(GetAsn1ObjectInfo(aki.data(), static_cast<uint32_t>(aki.size()), &cls, &cons, &tag, &len, &indefinite, &hl), 0u);
    size_t pos = hl;
    ASSERT_EQ(GetAsn1ObjectInfo(aki.data() + pos, static_cast<uint32_t>(aki.size() - pos), &cls, &cons, &tag, &len,
                                &indefinite, &hl), 0u);
    ASSERT_EQ(tag, 0u);
    pos += hl + len;
    ASSERT_EQ(aki[pos], 0xA1);
    ASSERT_EQ(GetAsn1ObjectInfo(aki.data() + pos, static_cast<uint32_t>(aki.size() - pos), &cls, &cons, &tag, &len,
                                &indefinite, &hl), 0u);
    Bytes issuer(aki.begin() + pos, aki.begin() + pos + hl + len);
    issuer[0] = 0x30;  // [1] IMPLICIT GeneralNames read as the plain SEQUENCE

    GeneralNames* decoded = nullptr;
    ASSERT_EQ(DecodeX509GeneralNames(issuer.data(), static_cast<uint32_t>(issuer.size()), &decoded), 0u);
    ListHolder g(decoded);
    EXPECT_EQ(ToHex(EncodeList(g.g)), ToHex(issuer));
    const auto got = ReadAll(g.g);
    ASSERT_EQ(got.size(), 1u);
    EXPECT_EQ(got[0].kind, 4u);

    X509Name* name = nullptr;
    ASSERT_EQ(GetX509NameFromGeneralNames(g.g, &name), 0u);
    uint32_t rdns = 0;
    EXPECT_EQ(GetX509NameRdnCount(name, &rdns), 0u);
    EXPECT_EQ(rdns, 3u);
    Bytes cn(128), oid(16);
    uint32_t cnLen = 128, oidLen = 16;
    uint8_t stringTag = 0;
    ASSERT_EQ(GetX509NameEntry(name, 2, 0, cn.data(), &cnLen, &stringTag, oid.data(), &oidLen), 0u);
    cn.resize(cnLen);
    EXPECT_EQ(cn, Text("ГОСТ альтернативные имена"));  // the -subj of make_fixtures.sh
    EXPECT_EQ(stringTag, ASN1_UTF8_STRING);
    FreeX509Name(name);
}

TEST(GeneralNames, AllocationFailures) {
    const Bytes san = ExtensionValue(ReadFile(Fixture("names/gost_altnames.der")), 17);
    ASSERT_FALSE(san.empty());
    int runs = ForEachAllocationFailure([&] {
        GeneralNames* g = reinterpret_cast<GeneralNames*>(1);
        uint32_t rc = DecodeX509GeneralNames(san.data(), static_cast<uint32_t>(san.size()), &g);
        if (rc != 0) return rc;
        X509Name* n = nullptr;
        rc = GetX509NameFromGeneralNames(g, &n);
        FreeX509Name(n);
        FreeX509GeneralNames(g);
        return rc;
    });
    EXPECT_GT(runs, 1);

    ListHolder g;
    for (const KindCase& k : kKinds) {
        SCOPED_TRACE(k.kind);
        const Bytes given = Hex(k.given);
        uint32_t before = 0;
        ASSERT_EQ(GetX509GeneralNameCount(g.g, &before), 0u);
        ForEachAllocationFailure([&] {
            uint32_t rc = AddX509GeneralName(g.g, k.kind, given.data(), static_cast<uint32_t>(given.size()));
            uint32_t after = 0;
            EXPECT_EQ(GetX509GeneralNameCount(g.g, &after), 0u);
            EXPECT_EQ(after, rc == 0 ? before + 1 : before);
            return rc;
        });
    }
}

TEST(PKIFreeText, BuildEncodeDecodeRead) {
    PKIFreeText* t = nullptr;
    ASSERT_EQ(CreatePKIFreeText(&t), 0u);
    auto encode = [&] { return OldSized([&](uint8_t* o, uint32_t* n) { return EncodePKIFreeText(t, o, n); }); };
    EXPECT_EQ(ToHex(encode()), "30 00");

    const std::vector<Bytes> texts = {Text("Отказ"), Text(""), Text("rejected: bad\nrequest")};
    static const uint8_t kNothing[1] = {};
    for (const Bytes& s : texts)
        ASSERT_EQ(AddPKIFreeTextString(t, s.empty() ? kNothing : s.data(), static_cast<uint32_t>(s.size())), 0u);
    EXPECT_EQ(AddPKIFreeTextString(t, nullptr, 0), 32u);
    const Bytes der = encode();
    EXPECT_EQ(ToHex(der), "30 25 0C 0A D0 9E D1 82 D0 BA D0 B0 D0 B7 0C 00 0C 15 72 65 6A 65 63 74 65 64 3A 20 62 61 64 0A 72 65 71 75 65 73 74");
    FreePKIFreeText(t);

    PKIFreeText* d = nullptr;
    ASSERT_EQ(DecodePKIFreeText(der.data(), static_cast<uint32_t>(der.size()), &d), 0u);
    PKIFreeText* copy = nullptr;
    ASSERT_EQ(CreatePKIFreeTextCopy(d, &copy), 0u);
    FreePKIFreeText(d);
    uint32_t count = 0;
    ASSERT_EQ(GetPKIFreeTextStringCount(copy, &count), 0u);
    ASSERT_EQ(count, texts.size());
    for (uint32_t i = 0; i < count; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* n) { return GetPKIFreeTextString(copy, i, o, n); }), texts[i]);
    }
    uint32_t len = 0;
    EXPECT_EQ(GetPKIFreeTextString(copy, count, nullptr, &len), 32u);
    FreePKIFreeText(copy);
}

}  // namespace
