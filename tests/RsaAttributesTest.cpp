// Attribute lists: the two orderings (attributes by the list's flag, values always in DER order),
// the backward removal walk, the states a handle can be in, deep copies and cleanup under failure.
#include <gtest/gtest.h>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/extensions/RsaAttributes.h"

using namespace tvtest;

namespace {

const Bytes kContentType = Hex("09 2A864886F70D010903");   // 1.2.840.113549.1.9.3
const Bytes kSigningTime = Hex("09 2A864886F70D010905");   // 1.2.840.113549.1.9.5
const Bytes kIdData = Hex("06 09 2A864886F70D010701");
const Bytes kUtcTime = Hex("17 0D 3236303130313030303030305A");  // 260101000000Z

// Attribute elements written out by hand from RFC 5652's ASN.1.
const Bytes kContentTypeAttribute = Hex("30 18 06 09 2A864886F70D010903 31 0B 06 09 2A864886F70D010701");
const Bytes kSigningTimeAttribute = Hex("30 1C 06 09 2A864886F70D010905 31 0F 17 0D 3236303130313030303030305A");

struct Handle {
    RsaAttributes* h = nullptr;
    Handle() { EXPECT_EQ(CreateRsaAttributes(&h), 0u); }
    ~Handle() { FreeRsaAttributes(h); }
};

Bytes Encoded(const RsaAttributes* h) { return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeRsaAttributes(h, o, n); }); }

Bytes SetOf(std::initializer_list<Bytes> elements) {
    Bytes body;
    for (const Bytes& e : elements) body.insert(body.end(), e.begin(), e.end());
    body.insert(body.begin(), {0x31, static_cast<uint8_t>(body.size())});
    return body;
}

uint32_t Add(RsaAttributes* h, const Bytes& oid, const Bytes& value) {
    uint32_t index = 0;
    return AddRsaAttributesAttributeWithValue(h, oid.data(), &index, value.data(), static_cast<uint32_t>(value.size()));
}

uint32_t Count(const RsaAttributes* h) {
    uint32_t n = 99;
    EXPECT_EQ(GetRsaAttributesAttributesCount(h, &n), 0u);
    return n;
}

Bytes OidAt(const RsaAttributes* h, uint32_t index) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetRsaAttributesAttributeOid(h, index, o, n); });
}

TEST(RsaAttributes, DescriptorsLintClean) {
    EXPECT_TRUE(LintDescriptor(&tv::desc::kAttribute, "Attribute").empty());
    EXPECT_TRUE(LintDescriptor(&tv::desc::kAttributes, "Attributes").empty());
}

TEST(RsaAttributes, AttributeOrderFollowsTheSortedFlag) {
    struct Case {
        uint32_t sorted;
        Bytes expected;
    } cases[] = {
        {1, SetOf({kContentTypeAttribute, kSigningTimeAttribute})},
        {0, SetOf({kSigningTimeAttribute, kContentTypeAttribute})},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sorted);
        Handle a;
        ASSERT_EQ(Add(a.h, kSigningTime, kUtcTime), 0u);
        ASSERT_EQ(Add(a.h, kContentType, kIdData), 0u);
        ASSERT_EQ(SetRsaAttributesSorted(a.h, c.sorted), 0u);
        EXPECT_EQ(ToHex(Encoded(a.h)), ToHex(c.expected));
        // The list itself keeps insertion order; only the writing is sorted.
        EXPECT_EQ(OidAt(a.h, 0), kSigningTime);
    }
}

TEST(RsaAttributes, ValuesAreAlwaysWrittenInDerOrder) {
    for (uint32_t sorted : {1u, 0u}) {
        SCOPED_TRACE(sorted);
        Handle a;
        uint32_t index = 7;
        ASSERT_EQ(AddRsaAttributesAttribute(a.h, kContentType.data(), &index), 0u);
        EXPECT_EQ(index, 0u);
        for (const char* v : {"04 01 02", "04 01 01"}) {
            const Bytes value = Hex(v);
            ASSERT_EQ(AddRsaAttributesAttributeValue(a.h, index, value.data(), 3), 0u);
        }
        ASSERT_EQ(SetRsaAttributesSorted(a.h, sorted), 0u);
        EXPECT_EQ(ToHex(Encoded(a.h)), ToHex(Hex("31 15 30 13 06 09 2A864886F70D010903 31 06 040101 040102")));
        // Read back in the order added.
        EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* n) { return GetRsaAttributesAttributeValue(a.h, 0, 0, o, n); }),
                  Hex("04 01 02"));
    }
}

TEST(RsaAttributes, RemovalByOidTakesEveryMatchInOneCall) {
    const Bytes b = Hex("04 01 0B");
    struct Case {
        const char* name;
        std::vector<const Bytes*> oids;
        const Bytes* remove;
        std::vector<const Bytes*> left;
    } cases[] = {
        {"A A B", {&kContentType, &kContentType, &kSigningTime}, &kContentType, {&kSigningTime}},
        {"A B A", {&kContentType, &kSigningTime, &kContentType}, &kContentType, {&kSigningTime}},
        {"B A A", {&kSigningTime, &kContentType, &kContentType}, &kContentType, {&kSigningTime}},
        {"all", {&kContentType, &kContentType}, &kContentType, {}},
        {"none", {&kSigningTime}, &kContentType, {&kSigningTime}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Handle a;
        for (const Bytes* oid : c.oids) ASSERT_EQ(Add(a.h, *oid, b), 0u);
        EXPECT_EQ(RemoveRsaAttributesAttribute2(a.h, c.remove->data()), 0u);
        ASSERT_EQ(Count(a.h), c.left.size());
        for (uint32_t i = 0; i < c.left.size(); ++i) EXPECT_EQ(OidAt(a.h, i), *c.left[i]);
    }
}

// A handle is fresh, emptied, cleared of its list, or holds attributes; each answers differently.
TEST(RsaAttributes, HandleStates) {
    const Bytes v = Hex("04 01 01");
    uint32_t index = 0, count = 0;
    uint8_t buf[16];
    uint32_t n = sizeof buf;

    Handle fresh;
    EXPECT_EQ(Count(fresh.h), 0u);
    EXPECT_EQ(FindRsaAttributesAttribute(fresh.h, kContentType.data(), &index), 322u);
    EXPECT_EQ(ToHex(Encoded(fresh.h)), "31 00");

    Handle cleared;
    ASSERT_EQ(Add(cleared.h, kContentType, v), 0u);
    EXPECT_EQ(ClearRsaAttributes(cleared.h), 0u);
    EXPECT_EQ(Count(cleared.h), 0u);
    EXPECT_EQ(FindRsaAttributesAttribute(cleared.h, kContentType.data(), &index), 322u);

    Handle removed;
    ASSERT_EQ(Add(removed.h, kContentType, v), 0u);
    ASSERT_EQ(RemoveRsaAttributes(removed.h), 0u);
    EXPECT_EQ(Count(removed.h), 0u);
    EXPECT_EQ(FindRsaAttributesAttribute(removed.h, kContentType.data(), &index), 311u);
    EXPECT_EQ(RemoveRsaAttributesAttribute2(removed.h, kContentType.data()), 311u);
    EXPECT_EQ(AddRsaAttributesAttributeValue(removed.h, 0, v.data(), 3), 311u);
    EXPECT_EQ(GetRsaAttributesAttributeValuesCount(removed.h, 0, &count), 311u);
    EXPECT_EQ(AppendRsaAttributes(removed.h, fresh.h), 311u);
    EXPECT_EQ(AppendRsaAttributes(fresh.h, removed.h), 311u);
    EXPECT_EQ(GetRsaAttributesAttributeOid(removed.h, 0, buf, &n), 32u);
    EXPECT_EQ(GetRsaAttributesAttributeValue(removed.h, 0, 0, buf, &n), 32u);
    EXPECT_EQ(EncodeRsaAttributes(removed.h, nullptr, &n), 311u);
    EXPECT_EQ(ClearRsaAttributes(removed.h), 0u);
    EXPECT_EQ(SetRsaAttributesSorted(removed.h, 0), 0u);
    // Adding brings a list back, with the flag every new list gets.
    ASSERT_EQ(Add(removed.h, kSigningTime, kUtcTime), 0u);
    ASSERT_EQ(Add(removed.h, kContentType, kIdData), 0u);
    EXPECT_EQ(ToHex(Encoded(removed.h)), ToHex(SetOf({kContentTypeAttribute, kSigningTimeAttribute})));
    EXPECT_EQ(FindRsaAttributesAttribute(removed.h, kContentType.data(), &index), 0u);
    EXPECT_EQ(index, 1u);
}

TEST(RsaAttributes, IndexAndSlotErrors) {
    Handle a;
    uint32_t index = 0;
    ASSERT_EQ(AddRsaAttributesAttribute(a.h, kContentType.data(), &index), 0u);  // no values yet
    ASSERT_EQ(Add(a.h, kSigningTime, kUtcTime), 0u);
    uint8_t buf[32];
    uint32_t n = sizeof buf, count = 0;
    struct Case {
        const char* name;
        uint32_t rc;
        uint32_t expected;
    } cases[] = {
        {"oid past the end", GetRsaAttributesAttributeOid(a.h, 2, buf, &n), 32},
        {"values count past the end", GetRsaAttributesAttributeValuesCount(a.h, 2, &count), 32},
        {"values count without values", GetRsaAttributesAttributeValuesCount(a.h, 0, &count), 311},
        {"value without values", GetRsaAttributesAttributeValue(a.h, 0, 0, buf, &n), 311},
        {"value index past the end", GetRsaAttributesAttributeValue(a.h, 1, 1, buf, &n), 32},
        {"attribute index past the end", GetRsaAttributesAttributeValue(a.h, 2, 0, buf, &n), 32},
        {"value to past the end", AddRsaAttributesAttributeValue(a.h, 2, kIdData.data(), 11), 32},
        {"empty value", AddRsaAttributesAttributeValue(a.h, 0, kIdData.data(), 0), 32},
        {"null oid", AddRsaAttributesAttribute(a.h, nullptr, &index), 32},
        {"null out index", AddRsaAttributesAttributeWithValue(a.h, kContentType.data(), nullptr, kIdData.data(), 11), 32},
        {"null handle", GetRsaAttributesAttributesCount(nullptr, &count), 32},
        {"null destination", AppendRsaAttributes(nullptr, a.h), 32},
        {"null source", AppendRsaAttributes(a.h, nullptr), 0},
        {"encoding a valueless attribute", EncodeRsaAttributes(a.h, nullptr, &n), 311},
    };
    for (const Case& c : cases) EXPECT_EQ(c.rc, c.expected) << c.name;
    EXPECT_EQ(Count(a.h), 2u);
}

TEST(RsaAttributes, AppendCopiesDeeply) {
    Handle dst, src;
    ASSERT_EQ(Add(dst.h, kSigningTime, kUtcTime), 0u);
    ASSERT_EQ(Add(src.h, kContentType, kIdData), 0u);
    ASSERT_EQ(AddRsaAttributesAttributeValue(src.h, 0, kUtcTime.data(), static_cast<uint32_t>(kUtcTime.size())), 0u);
    ASSERT_EQ(AppendRsaAttributes(dst.h, src.h), 0u);
    const Bytes srcBytes = Encoded(src.h);
    ASSERT_EQ(ClearRsaAttributes(src.h), 0u);  // the copies must not share anything with the source
    ASSERT_EQ(Count(dst.h), 2u);
    EXPECT_EQ(OidAt(dst.h, 1), kContentType);
    uint32_t values = 0;
    ASSERT_EQ(GetRsaAttributesAttributeValuesCount(dst.h, 1, &values), 0u);
    EXPECT_EQ(values, 2u);

    RsaAttributes* back = nullptr;
    ASSERT_EQ(DecodeRsaAttributes(srcBytes.data(), static_cast<uint32_t>(srcBytes.size()), &back), 0u);
    ASSERT_EQ(AppendRsaAttributes(back, back), 0u);  // onto itself: what it held at the start
    EXPECT_EQ(Count(back), 2u);
    FreeRsaAttributes(back);
    EXPECT_EQ(AppendRsaAttributes(dst.h, src.h), 0u);  // empty source
    EXPECT_EQ(Count(dst.h), 2u);
}

TEST(RsaAttributes, SingleAttribute) {
    RsaAttribute* a = reinterpret_cast<RsaAttribute*>(1);
    EXPECT_EQ(CreateRsaAttribute(&a, kContentType.data(), nullptr, 0), 32u);
    EXPECT_EQ(a, nullptr);
    ASSERT_EQ(CreateRsaAttribute(&a, kContentType.data(), kIdData.data(), static_cast<uint32_t>(kIdData.size())), 0u);
    ASSERT_EQ(AddRsaAttributeValue(a, kUtcTime.data(), static_cast<uint32_t>(kUtcTime.size())), 0u);
    uint32_t n = 0, count = 0;
    EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* m) { return GetRsaAttributeOid(a, o, m); }), kContentType);
    ASSERT_EQ(GetRsaAttributeValuesCount(a, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* m) { return GetRsaAttributeValue(a, 1, o, m); }), kUtcTime);
    EXPECT_EQ(GetRsaAttributeValue(a, 2, nullptr, &n), 32u);
    EXPECT_EQ(FreeRsaAttribute(a), 0u);
}

// A set received out of order reads in its own order but writes in DER order unless told not to.
TEST(RsaAttributes, DecodedSetKeepsItsOrderForReading) {
    const Bytes unsorted = SetOf({kSigningTimeAttribute, kContentTypeAttribute});
    RsaAttributes* a = nullptr;
    ASSERT_EQ(DecodeRsaAttributes(unsorted.data(), static_cast<uint32_t>(unsorted.size()), &a), 0u);
    EXPECT_EQ(OidAt(a, 0), kSigningTime);
    EXPECT_EQ(ToHex(Encoded(a)), ToHex(SetOf({kContentTypeAttribute, kSigningTimeAttribute})));
    ASSERT_EQ(SetRsaAttributesSorted(a, 0), 0u);
    EXPECT_EQ(ToHex(Encoded(a)), ToHex(unsorted));
    FreeRsaAttributes(a);
    const Bytes bad = Hex("31 05 30 03 06 01");
    a = reinterpret_cast<RsaAttributes*>(1);
    EXPECT_NE(DecodeRsaAttributes(bad.data(), static_cast<uint32_t>(bad.size()), &a), 0u);
}

TEST(RsaAttributes, AllocationFailuresLeakNothing) {
    const Bytes set = SetOf({kContentTypeAttribute, kSigningTimeAttribute});
    int runs = ForEachAllocationFailure([&]() -> uint32_t {
        RsaAttributes* a = nullptr;
        RsaAttributes* b = nullptr;
        uint32_t rc = CreateRsaAttributes(&a);
        if (rc == 0) rc = Add(a, kSigningTime, kUtcTime);
        if (rc == 0) rc = DecodeRsaAttributes(set.data(), static_cast<uint32_t>(set.size()), &b);
        if (rc == 0) rc = AppendRsaAttributes(a, b);
        uint32_t n = 0;
        if (rc == 0) rc = EncodeRsaAttributes(a, nullptr, &n);
        FreeRsaAttributes(a);
        FreeRsaAttributes(b);
        return rc;
    });
    EXPECT_GT(runs, 5);

    // A failed addition leaves the list as it was.
    Handle a;
    ASSERT_EQ(Add(a.h, kContentType, kIdData), 0u);
    ForEachAllocationFailure([&] {
        uint32_t rc = AddRsaAttributesAttributeValue(a.h, 0, kUtcTime.data(), static_cast<uint32_t>(kUtcTime.size()));
        uint32_t values = 0;
        EXPECT_EQ(GetRsaAttributesAttributeValuesCount(a.h, 0, &values), 0u);
        EXPECT_EQ(values, rc == 0 ? 2u : 1u);
        return rc;
    });
}

}  // namespace
