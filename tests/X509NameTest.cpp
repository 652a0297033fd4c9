// Distinguished names: names built entry by entry against what OpenSSL writes for the same subject,
// names of real certificates re-encoded byte for byte, and the entry, comparison and deletion rules.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/pkix/X509Name.h"

using namespace tvtest;

namespace {

struct NameHolder {
    X509Name* n = nullptr;
    NameHolder() { EXPECT_EQ(CreateX509Name(&n), 0u); }
    explicit NameHolder(X509Name* taken) : n(taken) {}
    ~NameHolder() { FreeX509Name(n); }
    NameHolder(const NameHolder&) = delete;
    NameHolder& operator=(const NameHolder&) = delete;
};

Bytes AttributeOid(uint32_t id) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetNameAttributeTypeOid(id, o, n); });
}

Bytes EncodeName(const X509Name* n) { return OldSized([&](uint8_t* o, uint32_t* len) { return EncodeX509Name(n, o, len); }); }

uint32_t AddText(X509Name* n, uint32_t id, uint8_t tag, const std::string& text, uint32_t newRdn) {
    Bytes oid = AttributeOid(id);
    return AddX509NameEntry(n, reinterpret_cast<const uint8_t*>(text.data()), static_cast<uint32_t>(text.size()), tag,
                            oid.data(), newRdn);
}

TEST(X509Name, DescriptorsPassLint) {
    EXPECT_EQ(LintDescriptor(&tv::desc::kX509Name, "Name"), std::vector<std::string>{});
    EXPECT_EQ(LintDescriptor(&tv::desc::kAttributeTypeAndValue, "AttributeTypeAndValue"), std::vector<std::string>{});
}

TEST(X509Name, SuitableStringType) {
    struct Case {
        const char* text;
        uint32_t expected;
    } cases[] = {
        {"", ASN1_NUMERIC_STRING},
        {"   ", ASN1_NUMERIC_STRING},
        {"0123 45", ASN1_NUMERIC_STRING},
        {"12 AB", ASN1_PRINTABLE_STRING},  // the digit run ends, checking goes on
        {"ABC-12", ASN1_PRINTABLE_STRING},
        {"'()+,-./:=?", ASN1_PRINTABLE_STRING},
        {"a*b", ASN1_IA5_STRING},
        {"12 a_b", ASN1_IA5_STRING},
        {"user@example.ru", ASN1_IA5_STRING},
        {"x\x7F", ASN1_IA5_STRING},  // DEL is ASCII, only outside PrintableString
        {"a*b\n", ASN1_UTF8_STRING},
        {"a*b\ncd", ASN1_UTF8_STRING},
        {"tab\there", ASN1_UTF8_STRING},
        {"12\x01", ASN1_UTF8_STRING},
        {"\x1F", ASN1_UTF8_STRING},
        {"caf\xC3\xA9", ASN1_UTF8_STRING},
        {"\x80", ASN1_UTF8_STRING},
        {"7 \xFF", ASN1_UTF8_STRING},
        {"\xD0\x9C\xD0\xBE\xD1\x81\xD0\xBA\xD0\xB2\xD0\xB0", ASN1_UTF8_STRING},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(ToHex(reinterpret_cast<const uint8_t*>(c.text), std::strlen(c.text)));
        uint32_t type = 0;
        EXPECT_EQ(DetermineSuitableStringType(reinterpret_cast<const uint8_t*>(c.text),
                                              static_cast<uint32_t>(std::strlen(c.text)), &type),
                  0u);
        EXPECT_EQ(type, c.expected);
    }
    // Only the stated length counts: an embedded NUL is a control character.
    uint32_t type = 0;
    EXPECT_EQ(DetermineSuitableStringType(reinterpret_cast<const uint8_t*>("AB\0C"), 4, &type), 0u);
    EXPECT_EQ(type, static_cast<uint32_t>(ASN1_UTF8_STRING));
    EXPECT_EQ(DetermineSuitableStringType(nullptr, 0, &type), 32u);
    EXPECT_EQ(DetermineSuitableStringType(reinterpret_cast<const uint8_t*>("A"), 1, nullptr), 32u);
}

TEST(X509Name, AttributeTypeTableMatchesDottedOids) {
    const char* dotted[] = {
        "2.5.4.3", "2.5.4.10", "2.5.4.11", "2.5.4.6", "2.5.4.8", "2.5.4.7", "1.2.840.113549.1.9.1", "2.5.4.4",
        "2.5.4.42", "2.5.4.12", "0.9.2342.19200300.100.1.25", "2.5.4.1", "1.3.6.1.5.5.7.9.1", "2.5.4.36",
        "2.5.4.13", "1.3.6.1.5.5.7.9.3", "2.5.4.44", "2.5.4.43", "1.3.6.1.4.1.42.2.11.2.1", "1.3.6.1.5.5.7.9.2",
        "2.5.4.16", "2.5.4.17", "2.5.4.65", "2.5.4.5", "2.5.4.9", "0.9.2342.19200300.100.1.1", "2.5.4.33",
        "2.5.4.32", "2.5.4.45", "1.2.643.100.3", "1.2.643.3.131.1.1", "1.2.643.100.1",
    };
    for (uint32_t id = 1; id <= 32; ++id) {
        SCOPED_TRACE(dotted[id - 1]);
        const Bytes expected = Packed(dotted[id - 1]);
        EXPECT_EQ(ToHex(AttributeOid(id)), ToHex(expected));
        uint32_t found = 0;
        EXPECT_EQ(FindNameAttributeTypeIdByOid(expected.data(), &found), 0u);
        EXPECT_EQ(found, id);
    }
    uint32_t len = 0;
    EXPECT_EQ(GetNameAttributeTypeOid(0, nullptr, &len), 309u);
    EXPECT_EQ(GetNameAttributeTypeOid(33, nullptr, &len), 309u);
    EXPECT_EQ(GetNameAttributeTypeOid(1, nullptr, nullptr), 32u);
    uint32_t id = 0;
    const Bytes unknown = Hex("03 55 04 63");
    EXPECT_EQ(FindNameAttributeTypeIdByOid(unknown.data(), &id), 308u);
    const Bytes prefix = Hex("02 55 04");  // same leading bytes as 2.5.4.x, shorter
    EXPECT_EQ(FindNameAttributeTypeIdByOid(prefix.data(), &id), 308u);
    EXPECT_EQ(FindNameAttributeTypeIdByOid(nullptr, &id), 32u);
}

// Subjects written by `openssl req -subj ... -utf8 [-multivalue-rdn]` (tests/fixtures/names), rebuilt
// entry by entry. Entries of a multi-valued RDN are added out of DER order on purpose.
TEST(X509Name, BuiltNamesMatchOpenSsl) {
    constexpr uint8_t U = ASN1_UTF8_STRING, P = ASN1_PRINTABLE_STRING, I = ASN1_IA5_STRING, N = ASN1_NUMERIC_STRING;
    struct Entry {
        uint32_t id;
        uint8_t tag;
        std::string text;
        uint32_t newRdn = 1;
    };
    struct Case {
        const char* fixture;
        std::vector<Entry> entries;
    } cases[] = {
        {"cyrillic_cn", {{1, U, "Иванов Иван Иванович"}}},
        {"country_org", {{4, P, "RU"}, {2, U, "ООО Тарвелон"}, {3, U, "Отдел ключей"}}},
        {"email", {{4, P, "RU"}, {1, U, "Petrov"}, {7, I, "petrov@example.ru"}}},
        {"multivalue",
         {{4, P, "RU"}, {10, U, "Главный бухгалтер"}, {3, U, "Бухгалтерия", 0}, {1, U, "Сидоров", 0},
          {2, U, "Тарвелон"}}},
        {"russian_ids",
         {{4, P, "RU"}, {1, U, "ИП Кузнецов"}, {30, N, "12345678901"}, {31, N, "007712345678"},
          {32, N, "1027700132195"}}},
        {"full",
         {{4, P, "RU"}, {5, U, "77 г. Москва"}, {6, U, "Москва"}, {25, U, "ул. Тверская, д. 1"}, {2, U, "Тарвелон"},
          {3, U, "УЦ"}, {10, U, "Инженер"}, {8, U, "Кузнецов"}, {9, U, "Пётр Ильич"}, {1, U, "Кузнецов Пётр"},
          {7, I, "kuznetsov@example.ru"}, {31, N, "771234567890"}, {30, N, "09876543210"}, {32, N, "1027700132195"},
          {24, P, "A-17"}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fixture);
        const Bytes expected = ReadFile(Fixture(std::string("names/subject_") + c.fixture + ".der"));
        ASSERT_FALSE(expected.empty());
        NameHolder built;
        for (const Entry& e : c.entries) ASSERT_EQ(AddText(built.n, e.id, e.tag, e.text, e.newRdn), 0u) << e.text;
        EXPECT_EQ(ToHex(EncodeName(built.n)), ToHex(expected));

        X509Name* decoded = nullptr;
        ASSERT_EQ(DecodeX509Name(expected.data(), static_cast<uint32_t>(expected.size()), &decoded), 0u);
        NameHolder d(decoded);
        EXPECT_EQ(ToHex(EncodeName(d.n)), ToHex(expected));
        // Position by position: the multi-valued RDN was built in another order than it decodes in.
        const bool reordered = std::string(c.fixture) == "multivalue";
        EXPECT_EQ(CompareX509Names(built.n, d.n), reordered ? 320u : 0u);
    }
}

TEST(X509Name, EntryReadRules) {
    NameHolder n;
    ASSERT_EQ(AddText(n.n, 1, ASN1_UTF8_STRING, "Тест", 1), 0u);
    const std::string longText(200, 'x');  // long form length octets must not leak into the value
    ASSERT_EQ(AddText(n.n, 15, ASN1_IA5_STRING, longText, 0), 0u);
    const Bytes cn = AttributeOid(1);

    struct Case {
        const char* what;
        uint32_t entry;
        bool value, oid;
        uint32_t valueCap, oidCap;
        uint32_t rc, valueLen, oidLen;
    } cases[] = {
        {"size query", 0, false, false, 0, 0, 0, 8, 4},
        {"value buffer only", 0, true, false, 64, 0, 49, 8, 4},
        {"oid buffer only", 0, false, true, 0, 16, 49, 8, 4},
        {"short value buffer", 0, true, true, 7, 16, 49, 8, 4},
        {"short oid buffer", 0, true, true, 64, 3, 49, 8, 4},
        {"exact buffers", 0, true, true, 8, 4, 0, 8, 4},
        {"long value", 1, true, true, 256, 16, 0, 200, 4},
    };
    // The RDN's SET is ordered at encoding only; entries read back in the order they were added.
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Bytes value(c.valueCap + 1), oid(c.oidCap + 1);
        uint32_t valueLen = c.valueCap, oidLen = c.oidCap;
        uint8_t cls = 0xEE, cons = 0xEE, tag = 0xEE;
        EXPECT_EQ(GetX509NameEntryExt(n.n, 0, c.entry, c.value ? value.data() : nullptr, &valueLen, &cls, &cons, &tag,
                                      c.oid ? oid.data() : nullptr, &oidLen),
                  c.rc);
        EXPECT_EQ(valueLen, c.valueLen);
        EXPECT_EQ(oidLen, c.oidLen);
        EXPECT_EQ(cls, 0);
        EXPECT_EQ(cons, 0);
        if (c.rc == 0 && c.value) {  // the tag is promised only when the value is delivered
            EXPECT_EQ(tag, c.entry == 0 ? ASN1_UTF8_STRING : ASN1_IA5_STRING);
            const std::string expected = c.entry == 0 ? "Тест" : longText;
            EXPECT_EQ(std::string(value.begin(), value.begin() + valueLen), expected);
        }
    }
    Bytes value(8), oid(8);
    uint32_t valueLen = 8, oidLen = 8;
    uint8_t tag = 0;
    ASSERT_EQ(GetX509NameEntry(n.n, 0, 0, value.data(), &valueLen, &tag, oid.data(), &oidLen), 0u);
    oid.resize(oidLen);
    EXPECT_EQ(oid, cn);
    EXPECT_EQ(GetX509NameEntry(n.n, 1, 0, value.data(), &valueLen, &tag, oid.data(), &oidLen), 32u);
    EXPECT_EQ(GetX509NameEntry(n.n, 0, 2, value.data(), &valueLen, &tag, oid.data(), &oidLen), 32u);
    EXPECT_EQ(GetX509NameEntry(n.n, 0, 0, value.data(), nullptr, &tag, oid.data(), &oidLen), 32u);
    uint32_t count = 0;
    EXPECT_EQ(GetX509NameEntryCount(n.n, 0, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(GetX509NameEntryCount(n.n, 1, &count), 32u);
}

TEST(X509Name, NonUniversalValuesKeepClassAndForm) {
    NameHolder n;
    const Bytes content = Hex("0C 02 41 42");
    const Bytes oid = AttributeOid(14);
    ASSERT_EQ(AddX509NameEntryExt(n.n, content.data(), 4, ASN1_CLASS_CONTEXT, ASN1_CONSTRUCTED_FORM, 3, oid.data(), 1),
              0u);
    // A caller passing 1 for "constructed" means the same as 0x20.
    ASSERT_EQ(AddX509NameEntryExt(n.n, content.data(), 4, ASN1_CLASS_APPLICATION, 1, 40, oid.data(), 1), 0u);
    EXPECT_EQ(ToHex(EncodeName(n.n)),
              "30 1F 31 0D 30 0B 06 03 55 04 24 A3 04 0C 02 41 42 31 0E 30 0C 06 03 55 04 24 7F 28 04 0C 02 41 42");
    Bytes value(8), packed(8);
    uint32_t valueLen = 8, oidLen = 8;
    uint8_t cls = 0, cons = 0, tag = 0;
    ASSERT_EQ(GetX509NameEntryExt(n.n, 1, 0, value.data(), &valueLen, &cls, &cons, &tag, packed.data(), &oidLen), 0u);
    EXPECT_EQ(cls, ASN1_CLASS_APPLICATION);
    EXPECT_EQ(cons, ASN1_CONSTRUCTED_FORM);
    EXPECT_EQ(tag, 40);
    EXPECT_EQ(Bytes(value.begin(), value.begin() + valueLen), content);
}

TEST(X509Name, AddRefusals) {
    NameHolder n;
    const Bytes oid = AttributeOid(1);
    const uint8_t text[] = {'A'};
    // The first entry needs a new RDN; without one there is nothing to add to.
    EXPECT_EQ(AddX509NameEntry(n.n, text, 1, ASN1_UTF8_STRING, oid.data(), 0), 32u);
    EXPECT_EQ(AddX509NameEntry(nullptr, text, 1, ASN1_UTF8_STRING, oid.data(), 1), 32u);
    EXPECT_EQ(AddX509NameEntry(n.n, nullptr, 0, ASN1_UTF8_STRING, oid.data(), 1), 32u);
    EXPECT_EQ(AddX509NameEntry(n.n, text, 1, ASN1_UTF8_STRING, nullptr, 1), 32u);
    uint32_t count = 9;
    EXPECT_EQ(GetX509NameRdnCount(n.n, &count), 0u);
    EXPECT_EQ(count, 0u);
    // An empty value is still a value: 0C 00.
    ASSERT_EQ(AddX509NameEntry(n.n, text, 0, ASN1_UTF8_STRING, oid.data(), 1), 0u);
    EXPECT_EQ(ToHex(EncodeName(n.n)), "30 0B 31 09 30 07 06 03 55 04 03 0C 00");
}

TEST(X509Name, DeleteChecksLastRdnFirst) {
    // RDN 0: {CN, OU}; RDN 1: {O}.
    auto build = [](NameHolder& n) {
        ASSERT_EQ(AddText(n.n, 1, ASN1_UTF8_STRING, "a", 1), 0u);
        ASSERT_EQ(AddText(n.n, 3, ASN1_UTF8_STRING, "b", 0), 0u);
        ASSERT_EQ(AddText(n.n, 2, ASN1_UTF8_STRING, "c", 1), 0u);
    };
    {
        NameHolder n;
        build(n);
        EXPECT_EQ(DeleteX509NameEntry(n.n, 0, 1), 32u);  // valid for RDN 0, not for the last RDN
        EXPECT_EQ(DeleteX509NameEntry(n.n, 2, 0), 32u);
        EXPECT_EQ(DeleteX509NameEntry(nullptr, 0, 0), 32u);
        ASSERT_EQ(DeleteX509NameEntry(n.n, 0, 0), 0u);
        uint32_t count = 0;
        ASSERT_EQ(GetX509NameEntryCount(n.n, 0, &count), 0u);
        EXPECT_EQ(count, 1u);
        EXPECT_EQ(ToHex(EncodeName(n.n)), "30 18 31 0A 30 08 06 03 55 04 0B 0C 01 62 31 0A 30 08 06 03 55 04 0A 0C 01 63");
        // The only entry of an RDN takes the RDN with it; later RDNs move down.
        ASSERT_EQ(DeleteX509NameEntry(n.n, 0, 0), 0u);
        ASSERT_EQ(GetX509NameRdnCount(n.n, &count), 0u);
        EXPECT_EQ(count, 1u);
        EXPECT_EQ(ToHex(EncodeName(n.n)), "30 0C 31 0A 30 08 06 03 55 04 0A 0C 01 63");
        ASSERT_EQ(DeleteX509NameEntry(n.n, 0, 0), 0u);
        EXPECT_EQ(ToHex(EncodeName(n.n)), "30 00");
        EXPECT_EQ(DeleteX509NameEntry(n.n, 0, 0), 32u);
    }
    {
        NameHolder n;
        build(n);
        ASSERT_EQ(ClearX509Name(n.n), 0u);
        uint32_t count = 9;
        ASSERT_EQ(GetX509NameRdnCount(n.n, &count), 0u);
        EXPECT_EQ(count, 0u);
        ASSERT_EQ(AddText(n.n, 1, ASN1_UTF8_STRING, "again", 1), 0u);  // still usable
        EXPECT_EQ(ClearX509Name(nullptr), 32u);
    }
}

TEST(X509Name, CompareIgnoresStringTypeAndAttributeType) {
    struct Entry {
        uint32_t id;
        uint8_t tag;
        const char* text;
        uint32_t newRdn;
    };
    struct Case {
        const char* what;
        std::vector<Entry> a, b;
        uint32_t rc;
    } cases[] = {
        {"same", {{1, 12, "Ivan", 1}}, {{1, 12, "Ivan", 1}}, 0},
        {"other attribute type", {{1, 12, "Ivan", 1}}, {{2, 12, "Ivan", 1}}, 0},
        {"other string type", {{1, 19, "Ivan", 1}}, {{1, 12, "Ivan", 1}}, 0},
        {"letter case", {{1, 12, "Ivan", 1}}, {{1, 12, "IVAN", 1}}, 320},
        {"trailing space", {{1, 12, "Ivan", 1}}, {{1, 12, "Ivan ", 1}}, 320},
        {"rdn count", {{1, 12, "Ivan", 1}}, {{1, 12, "Ivan", 1}, {2, 12, "X", 1}}, 320},
        {"entry count", {{1, 12, "Ivan", 1}}, {{1, 12, "Ivan", 1}, {2, 12, "X", 0}}, 320},
        {"entries in other order", {{1, 12, "A", 1}, {3, 12, "B", 0}}, {{3, 12, "B", 1}, {1, 12, "A", 0}}, 320},
        {"rdns in other order", {{1, 12, "A", 1}, {3, 12, "B", 1}}, {{3, 12, "B", 1}, {1, 12, "A", 1}}, 320},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        NameHolder a, b;
        for (const Entry& e : c.a) ASSERT_EQ(AddText(a.n, e.id, e.tag, e.text, e.newRdn), 0u);
        for (const Entry& e : c.b) ASSERT_EQ(AddText(b.n, e.id, e.tag, e.text, e.newRdn), 0u);
        EXPECT_EQ(CompareX509Names(a.n, b.n), c.rc);
        EXPECT_EQ(CompareX509Names(b.n, a.n), c.rc);
    }
    NameHolder fresh, emptied;
    ASSERT_EQ(AddText(emptied.n, 1, 12, "x", 1), 0u);
    ASSERT_EQ(ClearX509Name(emptied.n), 0u);
    EXPECT_EQ(CompareX509Names(fresh.n, fresh.n), 311u);  // never held an RDN
    EXPECT_EQ(CompareX509Names(emptied.n, emptied.n), 0u);
    EXPECT_EQ(CompareX509Names(nullptr, emptied.n), 32u);
}

TEST(X509Name, AllocationFailuresLeaveNoLeaksAndNoPartialEntries) {
    const Bytes der = ReadFile(Fixture("names/subject_full.der"));
    ASSERT_FALSE(der.empty());
    int runs = ForEachAllocationFailure([&] {
        X509Name* n = reinterpret_cast<X509Name*>(1);
        uint32_t rc = DecodeX509Name(der.data(), static_cast<uint32_t>(der.size()), &n);
        if (rc == 0) {
            X509Name* copy = nullptr;
            rc = CopyX509Name(n, &copy);
            FreeX509Name(copy);
            FreeX509Name(n);
        }
        return rc;
    });
    EXPECT_GT(runs, 1);

    NameHolder n;
    ASSERT_EQ(AddText(n.n, 4, ASN1_PRINTABLE_STRING, "RU", 1), 0u);
    runs = ForEachAllocationFailure([&] {
        uint32_t rc = AddText(n.n, 1, ASN1_UTF8_STRING, "x", 0);
        uint32_t entries = 0;
        EXPECT_EQ(GetX509NameEntryCount(n.n, 0, &entries), 0u);
        EXPECT_EQ(entries, rc == 0 ? 2u : 1u);  // a failed add leaves the RDN as it was
        return rc;
    });
    EXPECT_GT(runs, 1);
}

}  // namespace
