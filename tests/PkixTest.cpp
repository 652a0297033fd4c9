// Names, general names, free text and algorithms: names built entry by entry against what OpenSSL
// writes, the entry, comparison and deletion rules; every general-name kind; GOST parameter blocks
// and keys of certificates made by OpenSSL's GOST engine.
#include <gtest/gtest.h>

#include <cstring>

#include "TestUtil.h"
#include "tarvelon/pkix/X509Algorithm.h"

using namespace tvtest;

namespace {

Bytes AttributeOid(uint32_t id) { return Get(GetNameAttributeTypeOid, id).bytes; }
uint32_t AddText(X509Name* n, uint32_t id, uint8_t tag, const std::string& text, uint32_t newRdn) {
    return AddX509NameEntry(n, U8(text.c_str()), uint32_t(text.size()), tag, AttributeOid(id).data(), newRdn);
}
Own<FreeX509Name> NewName() {
    Own<FreeX509Name> n;
    EXPECT_EQ(CreateX509Name(&n.p), 0u);
    return n;
}
struct Entry {
    uint32_t id;
    uint8_t tag;
    std::string text;
    uint32_t newRdn = 1;
};
Own<FreeX509Name> NameOf(const std::vector<Entry>& entries) {
    auto n = NewName();
    for (const Entry& e : entries) EXPECT_EQ(AddText(n, e.id, e.tag, e.text, e.newRdn), 0u) << e.text;
    return n;
}

TEST(Name, SuitableStringType) {
    const uint32_t N = ASN1_NUMERIC_STRING, P = ASN1_PRINTABLE_STRING, I = ASN1_IA5_STRING, U = ASN1_UTF8_STRING;
    for (auto [text, type] : {std::pair{"", N}, {"   ", N}, {"0123 45", N}, {"12 AB", P}, {"ABC-12", P},
                              {"'()+,-./:=?", P}, {"a*b", I}, {"12 a_b", I}, {"user@example.ru", I},
                              {"x\x7F", I},  // DEL is ASCII, only outside PrintableString
                              {"a*b\n", U}, {"tab\there", U}, {"12\x01", U}, {"\x1F", U}, {"caf\xC3\xA9", U},
                              {"\x80", U}, {"7 \xFF", U}, {"\xD0\x9C\xD0\xBE", U}}) {
        uint32_t got = 0;
        EXPECT_EQ(DetermineSuitableStringType(U8(text), uint32_t(std::strlen(text)), &got), 0u);
        EXPECT_EQ(got, type) << ToHex(U8(text), std::strlen(text));
    }
    uint32_t type = 0;  // only the stated length counts: an embedded NUL is a control character
    EXPECT_EQ(DetermineSuitableStringType(U8("AB\0C"), 4, &type), 0u);
    EXPECT_EQ(type, U);
    EXPECT_EQ(DetermineSuitableStringType(nullptr, 0, &type), 32u);
    EXPECT_EQ(DetermineSuitableStringType(U8("A"), 1, nullptr), 32u);
}

TEST(Name, AttributeTypesRoundTripAndRefuse) {
    uint32_t id = 1, found = 0, len = 0;
    for (; GetNameAttributeTypeOid(id, nullptr, &len) == 0; ++id) {
        ASSERT_EQ(FindNameAttributeTypeIdByOid(AttributeOid(id).data(), &found), 0u) << id;
        EXPECT_EQ(found, id);
    }
    EXPECT_EQ(id, 33u);
    EXPECT_EQ(AttributeOid(32), Packed("1.2.643.100.1"));  // OGRN closes the table
    EXPECT_EQ(GetNameAttributeTypeOid(0, nullptr, &len), 309u);
    EXPECT_EQ(GetNameAttributeTypeOid(1, nullptr, nullptr), 32u);
    EXPECT_EQ(FindNameAttributeTypeIdByOid(Hex("03 55 04 63").data(), &found), 308u);
    EXPECT_EQ(FindNameAttributeTypeIdByOid(Hex("02 55 04").data(), &found), 308u);  // a prefix of 2.5.4.x
    EXPECT_EQ(FindNameAttributeTypeIdByOid(nullptr, &found), 32u);
}

// Subjects written by `openssl req -subj ... -utf8 [-multivalue-rdn]`, rebuilt entry by entry.
// Entries of the multi-valued RDN are added out of DER order on purpose.
TEST(Name, BuiltNamesMatchOpenSsl) {
    constexpr uint8_t U = ASN1_UTF8_STRING, P = ASN1_PRINTABLE_STRING, I = ASN1_IA5_STRING, N = ASN1_NUMERIC_STRING;
    const struct {
        const char* fixture;
        std::vector<Entry> entries;
    } cases[] = {
        {"cyrillic_cn", {{1, U, "Иванов Иван Иванович"}}},
        {"country_org", {{4, P, "RU"}, {2, U, "ООО Тарвелон"}, {3, U, "Отдел ключей"}}},
        {"email", {{4, P, "RU"}, {1, U, "Petrov"}, {7, I, "petrov@example.ru"}}},
        {"multivalue",
         {{4, P, "RU"}, {10, U, "Главный бухгалтер"}, {3, U, "Бухгалтерия", 0}, {1, U, "Сидоров", 0}, {2, U, "Тарвелон"}}},
        {"russian_ids",
         {{4, P, "RU"}, {1, U, "ИП Кузнецов"}, {30, N, "12345678901"}, {31, N, "007712345678"}, {32, N, "1027700132195"}}},
        {"full",
         {{4, P, "RU"}, {5, U, "77 г. Москва"}, {6, U, "Москва"}, {25, U, "ул. Тверская, д. 1"}, {2, U, "Тарвелон"},
          {3, U, "УЦ"}, {10, U, "Инженер"}, {8, U, "Кузнецов"}, {9, U, "Пётр Ильич"}, {1, U, "Кузнецов Пётр"},
          {7, I, "kuznetsov@example.ru"}, {31, N, "771234567890"}, {30, N, "09876543210"}, {32, N, "1027700132195"},
          {24, P, "A-17"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fixture);
        const Bytes expected = FixtureFile(std::string("names/subject_") + c.fixture + ".der");
        auto built = NameOf(c.entries);
        EXPECT_EQ(Get(EncodeX509Name, built.p).hex(), ToHex(expected));
        auto decoded = Decoded<FreeX509Name>(DecodeX509Name, expected);
        // Position by position: the multi-valued RDN was built in another order than it decodes in.
        EXPECT_EQ(CompareX509Names(built, decoded), std::string(c.fixture) == "multivalue" ? 320u : 0u);
    }
}

TEST(Name, EntryReadsAndTheirBuffers) {
    const std::string longText(200, 'x');  // long-form length octets must not leak into the value
    auto n = NameOf({{1, ASN1_UTF8_STRING, "Тест"}, {15, ASN1_IA5_STRING, longText, 0}});
    const struct {
        const char* what;
        uint32_t entry;
        bool value, oid;
        uint32_t valueCap, oidCap, rc, valueLen, oidLen;
    } cases[] = {
        {"size query", 0, false, false, 0, 0, 0, 8, 4},   {"value buffer only", 0, true, false, 64, 0, 49, 8, 4},
        {"oid buffer only", 0, false, true, 0, 16, 49, 8, 4}, {"short value buffer", 0, true, true, 7, 16, 49, 8, 4},
        {"short oid buffer", 0, true, true, 64, 3, 49, 8, 4}, {"exact buffers", 0, true, true, 8, 4, 0, 8, 4},
        {"long value", 1, true, true, 256, 16, 0, 200, 4},
    };
    for (const auto& c : cases) {  // entries read back in the order they were added
        SCOPED_TRACE(c.what);
        Bytes value(c.valueCap + 1), oid(c.oidCap + 1);
        uint32_t valueLen = c.valueCap, oidLen = c.oidCap;
        uint8_t cls = 0xEE, cons = 0xEE, tag = 0xEE;
        EXPECT_EQ(GetX509NameEntryExt(n, 0, c.entry, c.value ? value.data() : nullptr, &valueLen, &cls, &cons, &tag,
                                      c.oid ? oid.data() : nullptr, &oidLen), c.rc);
        EXPECT_EQ(std::vector<uint32_t>({valueLen, oidLen, cls, cons}), std::vector<uint32_t>({c.valueLen, c.oidLen, 0, 0}));
        if (c.rc == 0 && c.value) {  // the tag is promised only when the value is delivered
            EXPECT_EQ(tag, c.entry == 0 ? ASN1_UTF8_STRING : ASN1_IA5_STRING);
            EXPECT_EQ(std::string(value.begin(), value.begin() + valueLen), c.entry == 0 ? "Тест" : longText);
        }
    }
    uint8_t tag = 0, oid[8];
    uint32_t oidLen = sizeof oid, count = 0, len = 0;
    for (auto [rdn, entry, length] : {std::tuple{1u, 0u, &len}, {0u, 2u, &len}, {0u, 0u, (uint32_t*)nullptr}})
        EXPECT_EQ(GetX509NameEntry(n, rdn, entry, nullptr, length, &tag, oid, &oidLen), 32u) << rdn << entry;
    EXPECT_EQ(GetX509NameEntryCount(n, 0, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(GetX509NameEntryCount(n, 1, &count), 32u);

    // Values of another class keep it and their form; a caller's 1 for "constructed" means 0x20.
    auto other = NewName();
    const Bytes content = Hex("0C 02 41 42"), ou = AttributeOid(14);
    ASSERT_EQ(AddX509NameEntryExt(other, content.data(), 4, ASN1_CLASS_CONTEXT, ASN1_CONSTRUCTED_FORM, 3, ou.data(), 1), 0u);
    ASSERT_EQ(AddX509NameEntryExt(other, content.data(), 4, ASN1_CLASS_APPLICATION, 1, 40, ou.data(), 1), 0u);
    EXPECT_EQ(Get(EncodeX509Name, other.p).hex(),
              H("30 1F 31 0D 30 0B 06 03 55 04 24 A3 04 0C 02 41 42 31 0E 30 0C 06 03 55 04 24 7F 28 04 0C 02 41 42"));
    uint8_t cls = 0, cons = 0, value[8];
    oidLen = sizeof oid, len = sizeof value;
    EXPECT_EQ(GetX509NameEntryExt(other, 1, 0, value, &len, &cls, &cons, &tag, oid, nullptr), 32u);
    ASSERT_EQ(GetX509NameEntryExt(other, 1, 0, value, &len, &cls, &cons, &tag, oid, &oidLen), 0u);
    EXPECT_EQ(Bytes(value, value + len), content);
    EXPECT_EQ(std::vector<uint32_t>({cls, cons, tag}), std::vector<uint32_t>({ASN1_CLASS_APPLICATION, ASN1_CONSTRUCTED_FORM, 40}));
}

TEST(Name, AddAndDelete) {
    auto n = NewName();
    const Bytes cn = AttributeOid(1);
    EXPECT_EQ(AddX509NameEntry(n, U8("A"), 1, ASN1_UTF8_STRING, cn.data(), 0), 32u);  // no RDN to add to yet
    EXPECT_EQ(AddX509NameEntry(nullptr, U8("A"), 1, ASN1_UTF8_STRING, cn.data(), 1), 32u);
    EXPECT_EQ(AddX509NameEntry(n, nullptr, 0, ASN1_UTF8_STRING, cn.data(), 1), 32u);
    EXPECT_EQ(AddX509NameEntry(n, U8("A"), 1, ASN1_UTF8_STRING, nullptr, 1), 32u);
    ASSERT_EQ(AddX509NameEntry(n, U8("A"), 0, ASN1_UTF8_STRING, cn.data(), 1), 0u);  // an empty value is a value
    EXPECT_EQ(Get(EncodeX509Name, n.p).hex(), H("30 0B 31 09 30 07 06 03 55 04 03 0C 00"));  // and the failed adds left nothing

    // RDN 0: {CN a, OU b}; RDN 1: {O c}. The entry index is checked against the last RDN (kept as it is).
    auto d = NameOf({{1, ASN1_UTF8_STRING, "a"}, {3, ASN1_UTF8_STRING, "b", 0}, {2, ASN1_UTF8_STRING, "c"}});
    EXPECT_EQ(DeleteX509NameEntry(d, 0, 1), 32u);
    EXPECT_EQ(DeleteX509NameEntry(d, 2, 0), 32u);
    EXPECT_EQ(DeleteX509NameEntry(nullptr, 0, 0), 32u);
    for (const char* left : {"30 18 31 0A 30 08 06 03 55 04 0B 0C 01 62 31 0A 30 08 06 03 55 04 0A 0C 01 63",
                             "30 0C 31 0A 30 08 06 03 55 04 0A 0C 01 63",  // the only entry takes its RDN along
                             "30 00"}) {
        ASSERT_EQ(DeleteX509NameEntry(d, 0, 0), 0u);
        EXPECT_EQ(Get(EncodeX509Name, d.p).hex(), H(left));
    }
    EXPECT_EQ(DeleteX509NameEntry(d, 0, 0), 32u);
}

// Values are compared position by position; string types and attribute types are not (kept as it is).
TEST(Name, ClearAndCompareIgnoringStringTypeAndAttributeType) {
    const struct {
        const char* what;
        std::vector<Entry> a, b;
        uint32_t rc;
    } cases[] = {
        {"same", {{1, 12, "Ivan"}}, {{1, 12, "Ivan"}}, 0},
        {"other attribute type", {{1, 12, "Ivan"}}, {{2, 12, "Ivan"}}, 0},
        {"other string type", {{1, 19, "Ivan"}}, {{1, 12, "Ivan"}}, 0},
        {"letter case", {{1, 12, "Ivan"}}, {{1, 12, "IVAN"}}, 320},
        {"trailing space", {{1, 12, "Ivan"}}, {{1, 12, "Ivan "}}, 320},
        {"rdn count", {{1, 12, "Ivan"}}, {{1, 12, "Ivan"}, {2, 12, "X"}}, 320},
        {"entry count", {{1, 12, "Ivan"}}, {{1, 12, "Ivan"}, {2, 12, "X", 0}}, 320},
        {"entries in other order", {{1, 12, "A"}, {3, 12, "B", 0}}, {{3, 12, "B"}, {1, 12, "A", 0}}, 320},
        {"rdns in other order", {{1, 12, "A"}, {3, 12, "B"}}, {{3, 12, "B"}, {1, 12, "A"}}, 320},
    };
    for (const auto& c : cases) {
        auto a = NameOf(c.a), b = NameOf(c.b);
        EXPECT_EQ(CompareX509Names(a, b), c.rc) << c.what;
        EXPECT_EQ(CompareX509Names(b, a), c.rc) << c.what;
    }
    auto fresh = NewName(), emptied = NameOf({{1, 12, "x"}});
    ASSERT_EQ(ClearX509Name(emptied), 0u);
    EXPECT_EQ(Get(EncodeX509Name, emptied.p).hex(), "30 00");
    EXPECT_EQ(ClearX509Name(nullptr), 32u);
    EXPECT_EQ(CompareX509Names(fresh, fresh), 311u);  // never held an RDN
    EXPECT_EQ(CompareX509Names(emptied, emptied), 0u);
    EXPECT_EQ(CompareX509Names(nullptr, emptied), 32u);
}

// One value per kind, what it encodes to inside GeneralNames, and what a decoded list gives back.
const struct {
    uint32_t kind;
    const char *given, *encoded, *decoded;
} kKinds[] = {
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

TEST(GeneralNames, AllNineKinds) {
    Own<FreeX509GeneralNames> built, decoded;
    ASSERT_EQ(CreateX509GeneralNames(&built.p), 0u);
    std::string expected;
    for (const auto& k : kKinds) {
        const Bytes given = Hex(k.given);
        ASSERT_EQ(AddX509GeneralName(built, k.kind, given.data(), Size(given)), 0u) << k.kind;
        expected += k.encoded;
        Own<FreeX509GeneralName> one, copy;  // stand-alone, and its copy
        uint32_t kind = 99;
        ASSERT_EQ(AllocX509GeneralNameValue(&one.p, k.kind, given.data(), Size(given)), 0u);
        ASSERT_EQ(CreateX509GeneralNameCopy(one, &copy.p), 0u);
        EXPECT_EQ(Get(GetX509GeneralNameValue, copy.p, &kind).bytes, given);
        EXPECT_EQ(kind, k.kind);
    }
    const Got der = Get(EncodeX509GeneralNames, built.p);
    EXPECT_EQ(der.hex(), H("30" + ToHex(Bytes{uint8_t(Hex(expected).size())}) + expected));
    ASSERT_EQ(DecodeX509GeneralNames(der.bytes.data(), Size(der.bytes), &decoded.p), 0u);
    for (uint32_t i = 0; i < std::size(kKinds); ++i) {
        uint32_t kind = 99;
        EXPECT_EQ(Get(GetX509GeneralName, built.p, i, &kind).hex(), H(kKinds[i].given));  // what was given
        EXPECT_EQ(Get(GetX509GeneralName, decoded.p, i, &kind).hex(), H(kKinds[i].decoded));
        EXPECT_EQ(kind, kKinds[i].kind);
    }
}

TEST(GeneralNames, RefusalsAndTheDirectoryNameSearch) {
    Own<FreeX509GeneralNames> g;
    ASSERT_EQ(CreateX509GeneralNames(&g.p), 0u);
    const Bytes dns = Text("example.ru");
    uint32_t count = 0, kind = 77, len = 0;
    ASSERT_EQ(AddX509GeneralName(g, 2, dns.data(), Size(dns)), 0u);
    EXPECT_EQ(AddX509GeneralName(g, 9, dns.data(), Size(dns)), 306u);
    EXPECT_EQ(AddX509GeneralName(g, 2, nullptr, 0), 32u);
    EXPECT_EQ(AddX509GeneralName(nullptr, 2, dns.data(), 1), 32u);
    EXPECT_EQ(AddX509GeneralName(g, 8, Hex("05 2A 85 03").data(), 4), 32u);  // says five octets, holds three
    EXPECT_EQ(GetX509GeneralNameCount(g, &count), 0u);
    EXPECT_EQ(count, 1u);  // failed adds leave the list as it was
    EXPECT_EQ(GetX509GeneralName(g, 1, &kind, nullptr, &len), 32u);
    EXPECT_EQ(kind, 77u);  // untouched on a bad index
    EXPECT_EQ(GetX509GeneralName(g, 0, nullptr, nullptr, &len), 32u);
    Own<FreeX509GeneralName> empty, none;
    ASSERT_EQ(CreateX509GeneralName(&empty.p), 0u);
    EXPECT_EQ(GetX509GeneralNameValue(empty, &kind, nullptr, &len), 311u);
    EXPECT_EQ(AllocX509GeneralNameValue(&none.p, 9, dns.data(), 1), 306u);
    EXPECT_EQ(none.p, nullptr);
    ASSERT_EQ(AllocX509GeneralNameValue(&none.p, 2, dns.data(), 2), 0u);
    none.p->index = 12;  // a record naming no known kind: the kind is reported, then refused
    EXPECT_EQ(GetX509GeneralNameValue(none, &kind, nullptr, &len), 306u);
    EXPECT_EQ(kind, 12u);
    none.p->index = 2;

    // The first directoryName that decodes, after names of any other kind.
    const Bytes name = Hex(kKinds[4].given), notAName = Hex("04 01 00");
    for (auto [items, rc] : {std::pair{std::vector<std::pair<uint32_t, Bytes>>{}, 322u}, {{{2, dns}, {2, dns}}, 322u},
                             {{{4, notAName}}, 322u}, {{{4, notAName}, {2, dns}, {4, name}}, 0u},
                             {{{2, dns}, {6, dns}, {4, name}}, 0u}}) {
        Own<FreeX509GeneralNames> list;
        Own<FreeX509Name> found;
        ASSERT_EQ(CreateX509GeneralNames(&list.p), 0u);
        for (const auto& [k, value] : items) ASSERT_EQ(AddX509GeneralName(list, k, value.data(), Size(value)), 0u);
        EXPECT_EQ(GetX509NameFromGeneralNames(list, &found.p), rc) << items.size();
        EXPECT_EQ(Get(EncodeX509Name, found.p).bytes, rc ? Bytes{} : name);
    }
    X509Name* found = nullptr;
    EXPECT_EQ(GetX509NameFromGeneralNames(nullptr, &found), 32u);
}

// The alternative names and the authority's issuer that OpenSSL wrote into gost_altnames.der.
TEST(GeneralNames, OpenSslAltNamesReadAsTheirKinds) {
    auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("names/gost_altnames.der"));
    auto names = Decoded<FreeX509GeneralNames>(DecodeX509GeneralNames,
                                               Get(GetCertificateExtensionValue, cert.p, Packed("2.5.29.17").data()).bytes);
    const std::vector<std::pair<uint32_t, Bytes>> expected = {
        {1, Text("alt@example.ru")}, {2, Text("www.example.ru")}, {2, Text("example.ru")},
        {6, Text("http://example.ru/ca")}, {7, Hex("C0 00 02 11")}, {7, Hex("20 01 0D B8 00 00 00 00 00 00 00 00 00 00 00 01")},
        {8, Hex("06 2A 85 03 64 71 01")},
        {4, Hex("30 34 31 0B 30 09 06 03 55 04 06 13 02 52 55 31 11 30 0F 06 03 55 04 0A 0C 08 54 61 72 76 65 6C 6F 6E"
                "31 12 30 10 06 03 55 04 03 0C 09 44 69 72 65 63 74 6F 72 79")},
        {0, Hex("A0 1F 06 0A 2B 06 01 04 01 82 37 14 02 03 A0 11 0C 0F 75 73 65 72 40 65 78 61 6D 70 6C 65 2E 72 75")}};
    uint32_t count = 0;
    ASSERT_EQ(GetX509GeneralNameCount(names, &count), 0u);
    ASSERT_EQ(count, expected.size());
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t kind = 99;
        EXPECT_EQ(Get(GetX509GeneralName, names.p, i, &kind).hex(), ToHex(expected[i].second)) << i;
        EXPECT_EQ(kind, expected[i].first) << i;
    }
    uint8_t key[32], serial[32], tag = 0, value[64], oid[8];
    uint32_t keyLen = sizeof key, serialLen = sizeof serial, rdns = 0, valueLen = sizeof value, oidLen = sizeof oid;
    Own<FreeX509Name> issuer;
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(cert, key, &keyLen, &issuer.p, serial, &serialLen), 0u);
    EXPECT_EQ(GetX509NameRdnCount(issuer, &rdns), 0u);
    EXPECT_EQ(rdns, 3u);
    ASSERT_EQ(GetX509NameEntry(issuer, 2, 0, value, &valueLen, &tag, oid, &oidLen), 0u);
    EXPECT_EQ(Bytes(value, value + valueLen), Text("ГОСТ альтернативные имена"));
    EXPECT_EQ(tag, ASN1_UTF8_STRING);
}

TEST(FreeText, BuildEncodeDecodeRead) {
    Own<FreePKIFreeText> t, d, copy;
    ASSERT_EQ(CreatePKIFreeText(&t.p), 0u);
    EXPECT_EQ(Get(EncodePKIFreeText, t.p).hex(), "30 00");
    const std::vector<Bytes> texts = {Text("Отказ"), Text(""), Text("rejected: bad\nrequest")};
    for (const Bytes& s : texts) ASSERT_EQ(AddPKIFreeTextString(t, s.empty() ? U8("") : s.data(), Size(s)), 0u);
    EXPECT_EQ(AddPKIFreeTextString(t, nullptr, 0), 32u);
    const Got der = Get(EncodePKIFreeText, t.p);
    EXPECT_EQ(der.hex(), H("30 25 0C 0A D0 9E D1 82 D0 BA D0 B0 D0 B7 0C 00 0C 15 72 65 6A 65 63 74 65 64 3A 20 62 61 "
                           "64 0A 72 65 71 75 65 73 74"));
    ASSERT_EQ(DecodePKIFreeText(der.bytes.data(), Size(der.bytes), &d.p), 0u);
    ASSERT_EQ(CreatePKIFreeTextCopy(d, &copy.p), 0u);
    uint32_t count = 0, len = 0;
    ASSERT_EQ(GetPKIFreeTextStringCount(copy, &count), 0u);
    ASSERT_EQ(count, texts.size());
    for (uint32_t i = 0; i < count; ++i) EXPECT_EQ(Get(GetPKIFreeTextString, copy.p, i).bytes, texts[i]) << i;
    EXPECT_EQ(GetPKIFreeTextString(copy, count, nullptr, &len), 32u);
}

// ---- algorithms ---------------------------------------------------------------------------------------

Bytes Block(std::initializer_list<const char*> oids) {  // SEQUENCE of OBJECT IDENTIFIERs
    Bytes body;
    for (const char* o : oids) {
        const Bytes p = Packed(o);
        body.push_back(ASN1_OBJECT_IDENTIFIER);
        body.insert(body.end(), p.begin(), p.end());
    }
    body.insert(body.begin(), {0x30, uint8_t(body.size())});
    return body;
}
uint32_t DecodeIds(const Bytes& params, uint8_t* mode, uint32_t ids[3]) {
    return DecodeAlgorithmGostR34102001Parameters(params.empty() ? nullptr : params.data(), Size(params), mode, &ids[0],
                                                  &ids[1], &ids[2]);
}
uint32_t DecodeOids(uint32_t algId, const Bytes& params, uint8_t* mode, uint8_t (*o)[32], uint32_t* n) {
    n[0] = n[1] = n[2] = 32;
    return DecodeAlgorithmGostR3410ParameterOids(algId, params.data(), Size(params), mode, o[0], &n[0], o[1], &n[1], o[2], &n[2]);
}

TEST(Algorithm, IdsAndOidsRoundTrip) {
    uint32_t found = 0, ids = 0;
    for (uint32_t id = 0; id < 4000; ++id) {
        const Got oid = Get(GetPublicKeyAlgorithmOid, id);
        if (oid.rc == 309) continue;
        ASSERT_EQ(FindAlgIdByOid(oid.bytes.data(), &found), 0u) << id;
        EXPECT_EQ(found, id);
        ++ids;
    }
    EXPECT_GE(ids, 5u);
    EXPECT_EQ(Get(GetPublicKeyAlgorithmOid, 3000u).bytes, Packed("1.2.643.7.1.1.1.1"));
    found = 77;
    EXPECT_EQ(FindAlgIdByOid(Packed("1.2.840.113549.1.1.11").data(), &found), 308u);
    EXPECT_EQ(FindAlgIdByOid(Packed("1.2.643.7.1.1.1").data(), &found), 308u);  // a prefix is no match
    EXPECT_EQ(found, 77u);
    EXPECT_EQ(FindAlgIdByOid(nullptr, &found), 32u);
    EXPECT_EQ(GetPublicKeyAlgorithmOid(1, nullptr, nullptr), 32u);

    // Every set id of the three tables (the others held at a known row) encodes to a block that both
    // decoders read back, and the OIDs they give encode to the same block again.
    for (int table = 0; table < 3; ++table) {
        for (uint32_t id = 1;; ++id) {
            uint32_t given[3] = {1, 1, 8};
            given[table] = id;
            const Got block = Get(EncodeAlgorithmGostR34102001Parameters, uint8_t(1), given[0], given[1], given[2]);
            if (block.rc == 309) {
                EXPECT_GT(id, 4u) << table;
                break;
            }
            SCOPED_TRACE(std::to_string(table) + "/" + std::to_string(id));
            uint8_t mode = 0, o[3][32];
            uint32_t back[3] = {}, n[3];
            ASSERT_EQ(DecodeIds(block.bytes, &mode, back), 0u);
            EXPECT_EQ(std::vector<uint32_t>(back, back + 3), std::vector<uint32_t>(given, given + 3));
            ASSERT_EQ(DecodeOids(102, block.bytes, &mode, o, n), 0u);
            EXPECT_EQ(Get(EncodeAlgorithmGostR3410ParametersOid, 102u, mode, o[0], o[1], o[2]).bytes, block.bytes);
        }
    }
}

// The blocks of certificates made by the GOST engine, with the sets OpenSSL named (NAME.txt).
TEST(Algorithm, OpenSslKeysAndBlocks) {
    const struct {
        const char* file;
        uint32_t algId, keySet, digestSet;
        const char* keySetOid;
    } rows[] = {
        {"certs/gost2001", 102, 1, 1, "1.2.643.2.2.35.1"},          {"algorithms/gost2001_B", 102, 2, 1, "1.2.643.2.2.35.2"},
        {"algorithms/gost2001_C", 102, 3, 1, "1.2.643.2.2.35.3"},   {"algorithms/gost2001_XA", 102, 4, 1, "1.2.643.2.2.36.0"},
        {"algorithms/gost2001_XB", 102, 5, 1, "1.2.643.2.2.36.1"},  {"certs/gost2012_256", 3000, 1, 3, "1.2.643.2.2.35.1"},
        {"algorithms/gost2012_256_B", 3000, 2, 3, "1.2.643.2.2.35.2"}, {"algorithms/gost2012_256_C", 3000, 3, 3, "1.2.643.2.2.35.3"},
        {"algorithms/gost2012_256_XA", 3000, 4, 3, "1.2.643.2.2.36.0"}, {"algorithms/gost2012_256_XB", 3000, 5, 3, "1.2.643.2.2.36.1"},
        {"certs/gost2012_512", 3001, 10, 4, "1.2.643.7.1.2.1.2.1"}, {"algorithms/gost2012_512_B", 3001, 11, 4, "1.2.643.7.1.2.1.2.2"},
    };
    uint8_t oid[32], mode = 0, o[3][32];
    uint32_t oidLen = sizeof oid, algId = 0, ids[3] = {}, n[3], checked[3] = {};
    auto paramsOf = [&](const char* file) {
        auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(std::string(file) + ".der"));
        return Sized([&](uint8_t* p, uint32_t* m) {
            oidLen = sizeof oid;
            return GetCertificatePublicKeyAlgorithmOidAndParameters(cert, oid, &oidLen, p, m);
        });
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(std::string(row.file) + ".der"));
        const Got params = paramsOf(row.file);
        ASSERT_EQ(FindAlgIdByOid(oid, &algId), 0u);
        EXPECT_EQ(algId, row.algId);
        ASSERT_EQ(DecodeIds(params.bytes, &mode, ids), 0u);  // the omitted encryption set reads as the 2001 default
        EXPECT_EQ(std::vector<uint32_t>({mode, ids[0], ids[1], ids[2]}), std::vector<uint32_t>({1, row.keySet, row.digestSet, 1}));
        EXPECT_EQ(Get(EncodeAlgorithmGostR34102001Parameters, mode, ids[0], ids[1], ids[2]).bytes, params.bytes);
        // OIDs through the block of the key's own algorithm: the 2012 block's default is set Z.
        ASSERT_EQ(DecodeOids(algId, params.bytes, &mode, o, n), 0u);
        EXPECT_EQ(Bytes(o[0], o[0] + n[0]), Packed(row.keySetOid));
        EXPECT_EQ(Bytes(o[2], o[2] + n[2]), Packed(algId == 102 ? "1.2.643.2.2.31.1" : "1.2.643.7.1.2.5.1.1"));
        EXPECT_EQ(Get(EncodeAlgorithmGostR3410ParametersOid, algId, mode, o[0], o[1], o[2]).bytes, params.bytes);
        // The key: an OCTET STRING of 64 or 128 octets in the bit string, unchanged both ways.
        const Got key = Get(GetCertificatePublicKey, cert.p);
        const Got raw = Get(DecodePublicKeyGostR34102012, key.bytes.data(), Size(key.bytes));
        EXPECT_EQ(raw.bytes.size(), algId == 3001 ? 128u : 64u);
        EXPECT_EQ(Get(EncodeGostR34102001PublicKey, raw.bytes.data(), Size(raw.bytes)).bytes, key.bytes);
        EXPECT_EQ(Get(GetCertificatePublicKeyGostR3410, cert.p).bytes, raw.bytes);
        const Got checkedKey = Get(GetCertificateDecodedPublicKeyGostR34102012, cert.p, Out, &checked[0], &checked[1], &checked[2]);
        EXPECT_EQ(checkedKey.bytes, raw.bytes);
        EXPECT_EQ(checked[0], row.keySet);
    }
    // The engine writes the set-C block of a 512-bit key with the key set alone (RFC 9215 lets the
    // digest set go); the block here keeps the digest set mandatory, so that block is refused.
    const Got params = paramsOf("algorithms/gost2012_512_C");
    EXPECT_EQ(params.bytes, Block({"1.2.643.7.1.2.1.2.3"}));
    EXPECT_EQ(DecodeIds(params.bytes, &mode, ids), 302u);
    EXPECT_EQ(DecodeOids(3001, params.bytes, &mode, o, n), 302u);
}

TEST(Algorithm, ParameterBlocksNullAbsentAndFailing) {
    for (auto [mode, params, identifier] : {std::tuple{uint8_t(0), "05 00", "30 0A 06 06 2A8503020213 05 00"},
                                            {uint8_t(255), "", "30 08 06 06 2A8503020213"}}) {  // NULL, none
        for (uint32_t algId : {102u, 3000u, 3001u})
            EXPECT_EQ(Get(EncodeAlgorithmGostR3410ParametersOid, algId, mode, nullptr, nullptr, nullptr).hex(), H(params));
        EXPECT_EQ(Get(EncodeAlgorithmGostR34102001Parameters, mode, 99u, 99u, 99u).hex(), H(params));  // ids unused
        uint8_t read = 7, o[3][32];
        uint32_t n[3], ids[3];
        ASSERT_EQ(DecodeOids(3000, Hex(params), &read, o, n), 0u);
        EXPECT_EQ(n[0] + n[1] + n[2], 0u);
        ASSERT_EQ(DecodeIds(Hex(params), &read, ids), 0u);
        EXPECT_EQ(read, mode);
        void* algorithm = nullptr;
        ASSERT_EQ(CreateAsn1Object(&tv::desc::kAlgorithmIdentifier, &algorithm, 1), 0u);
        EXPECT_EQ(SetAlgorithmGostR34102001AndParameters(static_cast<AlgorithmIdentifier*>(algorithm), 102, mode, 0, 0, 0), 0u);
        EXPECT_EQ(Get(GetAsn1EncodedValue, algorithm, &tv::desc::kAlgorithmIdentifier).hex(), H(identifier));
        FreeAsn1Object(&tv::desc::kAlgorithmIdentifier, algorithm);
    }
    EXPECT_EQ(SetAlgorithmGostR34102001AndParameters(nullptr, 102, 0, 0, 0, 0), 32u);
    const Bytes good = Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1"});
    const struct {
        const char* name;
        Bytes params;
        uint32_t rc, keySet;  // what the lookups left behind; 0 = untouched
    } rows[] = {
        {"one OID only", Block({"1.2.643.2.2.35.1"}), 302, 0},
        {"not a SEQUENCE", Hex("06 03 2A 03 04"), 302, 0},
        {"truncated", Bytes(good.begin(), good.end() - 1), 302, 0},
        {"NULL with contents", Hex("05 01 00"), 302, 0},
        {"unknown key set", Block({"1.2.643.2.2.35.9", "1.2.643.2.2.30.1"}), 308, 0},
        // The lookups stop at the first unknown set: the key set is stored, nothing after it.
        {"unknown digest set", Block({"1.2.643.2.2.35.2", "1.2.643.2.2.35.2"}), 308, 2},
        {"unknown cipher set", Block({"1.2.643.2.2.35.3", "1.2.643.2.2.30.1", "1.2.643.2.2.31.10"}), 308, 3},
    };
    for (const auto& row : rows) {
        uint8_t mode = 0;
        uint32_t ids[3] = {};
        EXPECT_EQ(DecodeIds(row.params, &mode, ids), row.rc) << row.name;
        EXPECT_EQ(ids[0] * 10 + ids[2], row.keySet * 10) << row.name;
    }
    uint8_t mode = 0, out[64];
    uint32_t id = 0, len = sizeof out;
    const Bytes a = Packed("1.2.643.2.2.35.1"), d = Packed("1.2.643.2.2.30.1"), z = Packed("1.2.643.7.1.2.5.1.1"),
                cpA = Packed("1.2.643.2.2.31.1");
    uint8_t o[3][32];
    uint32_t n[3] = {32, 32, 32};
    ASSERT_EQ(DecodeAlgorithmGostR34102001ParameterOids(good.data(), Size(good), &mode, o[0], &n[0], o[1], &n[1], o[2], &n[2]), 0u);
    EXPECT_EQ(Bytes(o[2], o[2] + n[2]), cpA);  // the 2001 default filled in
    EXPECT_EQ(DecodeAlgorithmGostR3410ParameterOids(100, good.data(), 2, &mode, nullptr, &len, nullptr, &len, nullptr, &len), 32u);
    EXPECT_EQ(EncodeAlgorithmGostR3410ParametersOid(1, 1, a.data(), d.data(), nullptr, out, &len), 32u);
    EXPECT_EQ(EncodeAlgorithmGostR3410ParametersOid(102, 2, a.data(), d.data(), nullptr, out, &len), 32u);
    EXPECT_EQ(EncodeAlgorithmGostR34102001Parameters(1, 1, 1, 1, out, nullptr), 32u);
    EXPECT_EQ(DecodeAlgorithmGostR34102001Parameters(good.data(), Size(good), &mode, &id, nullptr, &id), 32u);
    EXPECT_EQ(DecodeAlgorithmGostR34102001Parameters(good.data(), 2, nullptr, &id, &id, &id), 32u);
    // Set Z is the 2012 block's default and left out there, kept in the 2001 block; CryptoPro A the other way round.
    EXPECT_EQ(Get(EncodeAlgorithmGostR34102001Parameters, uint8_t(1), 1u, 1u, 9u).bytes,
              Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.7.1.2.5.1.1"}));
    EXPECT_EQ(Get(EncodeAlgorithmGostR34102012ParametersOid, uint8_t(1), a.data(), d.data(), z.data()).bytes, good);
    EXPECT_EQ(Get(EncodeAlgorithmGostR34102012ParametersOid, uint8_t(1), a.data(), d.data(), cpA.data()).bytes,
              Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.2.2.31.1"}));
    EXPECT_EQ(Get(EncodeAlgorithmGostR34102001ParametersOid, uint8_t(1), a.data(), d.data(), cpA.data()).bytes, good);

    // All three OIDs are delivered before the result is chosen: encryption, digest, key.
    const Bytes block = Block({"1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.3", "1.2.643.2.2.31.1"});
    uint8_t key[32], digest[4], cipher[32];
    uint32_t keyLen = sizeof key, digestLen = sizeof digest, cipherLen = sizeof cipher;
    EXPECT_EQ(DecodeAlgorithmGostR34102012ParameterOids(block.data(), Size(block), &mode, key, &keyLen, digest,
                                                        &digestLen, cipher, &cipherLen), 49u);
    EXPECT_EQ(Bytes(key, key + keyLen), Packed("1.2.643.7.1.2.1.2.1"));
    EXPECT_EQ(digestLen, 9u);
    EXPECT_EQ(Bytes(cipher, cipher + cipherLen), cpA);
    EXPECT_EQ(DecodePublicKeyGostR34102001(Hex("03 02 00 01").data(), 4, out, &len), 302u);  // not an OCTET STRING
    EXPECT_EQ(DecodePublicKeyGostR34102001(nullptr, 4, out, &len), 32u);
    EXPECT_EQ(EncodeGostR34102012PublicKey(nullptr, 3, out, &len), 32u);
}

TEST(Algorithm, SubjectPublicKeyInfoReading) {
    const Bytes rsa = FixtureFile("pem/rsa_pub.der");  // OpenSSL's RSA SubjectPublicKeyInfo
    uint8_t oid[16], params[64];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    uint8_t key[300];
    uint32_t keyRoom = sizeof key;
    ASSERT_EQ(DecodeSubjectPublicKeyInfo(rsa.data(), Size(rsa), oid, &oidLen, key, &keyRoom, params, &paramsLen), 0u);
    EXPECT_EQ(Bytes(oid, oid + oidLen), Packed("1.2.840.113549.1.1.1"));
    EXPECT_EQ(ToHex(params, paramsLen), "05 00");
    EXPECT_EQ(keyRoom, 270u);  // RSAPublicKey of a 2048-bit modulus
    // The key's 49 comes first; the OID and parameters are still delivered.
    const Bytes spki = Child(FixtureFile("certs/gost2012_512.der"), {0, 6});
    uint8_t small[4], shortKey[8];
    uint32_t smallLen = sizeof small, keyLen = sizeof shortKey;
    paramsLen = sizeof params;
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), Size(spki), small, &smallLen, shortKey, &keyLen, params, &paramsLen), 49u);
    EXPECT_EQ(std::vector<uint32_t>({smallLen, keyLen, paramsLen, params[0]}), std::vector<uint32_t>({9, 131, 23, 0x30}));
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), Size(spki), small, &smallLen, shortKey, &keyLen, params, nullptr), 32u);
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), 5, nullptr, &smallLen, nullptr, &keyLen, nullptr, &paramsLen), 302u);
    EXPECT_EQ(GetSubjectPublicKeyInfoPublicKey(nullptr, nullptr, &keyLen), 32u);
}

}  // namespace
