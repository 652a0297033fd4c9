// Extension lists: the critical DEFAULT, the forward removal walk, lookups on empty and released
// lists, and the size protocol of the getters.
#include <gtest/gtest.h>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/engine/Engine.h"
#include "tarvelon/extensions/X509Extension.h"

using namespace tvtest;

namespace {

const Bytes kOidA = Hex("03 55 1D 0F");  // 2.5.29.15
const Bytes kOidB = Hex("03 55 1D 13");  // 2.5.29.19
const Bytes kValue = Hex("03 02 01 86");

struct Handle {
    X509Extensions* h = nullptr;
    Handle() { EXPECT_EQ(CreateX509Extensions(&h), 0u); }
    ~Handle() { FreeX509Extensions(h); }
    void Add(const Bytes& oid, int critical = 0) {
        ASSERT_EQ(AddX509ExtensionsExtension(h, oid.data(), critical, kValue.data(), uint32_t(kValue.size())), 0u);
    }
    Bytes Der() const { return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Extensions(h, o, n); }); }
    uint32_t Count() const {
        uint32_t n = 99;
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(h, &n), 0u);
        return n;
    }
};

TEST(X509Extension, DescriptorsAreWellFormed) {
    EXPECT_TRUE(LintDescriptor(&tv::desc::kExtension, "Extension").empty());
    EXPECT_TRUE(LintDescriptor(&tv::desc::kExtensions, "Extensions").empty());
}

TEST(X509Extension, CriticalIsWrittenOnlyWhenTrueAndReadBackAsItsDefault) {
    const struct {
        int critical;
        const char* der;
    } cases[] = {
        {0, "30 0B 06 03 55 1D 0F 04 04 03 02 01 86"},
        {1, "30 0E 06 03 55 1D 0F 01 01 FF 04 04 03 02 01 86"},
        {7, "30 0E 06 03 55 1D 0F 01 01 FF 04 04 03 02 01 86"},
    };
    for (const auto& c : cases) {
        X509Extension* e = nullptr;
        ASSERT_EQ(CreateX509Extension(&e, kOidA.data(), c.critical, kValue.data(), uint32_t(kValue.size())), 0u);
        const Bytes der = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Extension(e, o, n); });
        EXPECT_EQ(ToHex(der), ToHex(Hex(c.der)));
        FreeX509Extension(e);

        // Decoding fills an absent BOOLEAN with FALSE; the flag reads back as 0 or 1.
        ASSERT_EQ(DecodeX509Extension(der.data(), uint32_t(der.size()), &e), 0u);
        uint8_t oid[8], value[8];
        uint32_t oidLen = sizeof oid, valueLen = sizeof value, critical = 99;
        EXPECT_EQ(GetX509Extension(e, oid, &oidLen, &critical, value, &valueLen), 0u);
        EXPECT_EQ(critical, c.critical ? 1u : 0u);
        EXPECT_EQ(Bytes(oid, oid + oidLen), kOidA);
        EXPECT_EQ(Bytes(value, value + valueLen), kValue);
        FreeX509Extension(e);
    }
}

TEST(X509Extension, GetterPrecedenceAndSizes) {
    // A BOOLEAN other than 00/FF is 307 before any buffer is judged; both sizes are still stored.
    // The decoder refuses such a BOOLEAN, so it is planted in a built extension.
    X509Extension* e = nullptr;
    ASSERT_EQ(CreateX509Extension(&e, kOidA.data(), 1, kValue.data(), uint32_t(kValue.size())), 0u);
    const uint8_t one = 0x01;
    auto** slots = reinterpret_cast<void**>(e);
    ASSERT_EQ(tv::SetPrimitive(static_cast<Asn1Primitive*>(slots[tv::desc::kCritical]), ASN1_BOOLEAN, &one, 1), 0u);
    uint32_t oidLen = 0, valueLen = 0, critical = 0;
    EXPECT_EQ(GetX509Extension(e, nullptr, &oidLen, &critical, nullptr, &valueLen), 307u);
    EXPECT_EQ(oidLen, 4u);
    EXPECT_EQ(valueLen, 4u);
    FreeX509Extension(e);

    Handle list;
    list.Add(kOidA, 1);
    uint8_t small[2];
    oidLen = 0;
    valueLen = 0;
    EXPECT_EQ(GetX509ExtensionsExtension(list.h, 0, nullptr, &oidLen, &critical, nullptr, &valueLen), 0u);
    EXPECT_EQ(oidLen, 4u);  // packed: contents + 1
    EXPECT_EQ(valueLen, 4u);
    uint8_t oid[4];
    oidLen = sizeof oid;
    valueLen = sizeof small;
    EXPECT_EQ(GetX509ExtensionsExtension(list.h, 0, oid, &oidLen, &critical, small, &valueLen), 49u);
    EXPECT_EQ(valueLen, 4u);
    EXPECT_EQ(GetX509ExtensionsExtension(list.h, 1, nullptr, &oidLen, &critical, nullptr, &valueLen), 32u);
    EXPECT_EQ(GetX509ExtensionsExtensionValue(list.h, kOidA.data(), nullptr, &valueLen), 0u);
    EXPECT_EQ(valueLen, 4u);
}

TEST(X509Extension, ForwardRemovalWalkSkipsTheElementThatMovesIn) {
    Handle list;
    list.Add(kOidA);
    list.Add(kOidA);
    list.Add(kOidB);
    ASSERT_EQ(RemoveX509ExtensionsExtension2(list.h, kOidA.data()), 0u);
    ASSERT_EQ(list.Count(), 2u);
    uint32_t index = 99;
    EXPECT_EQ(FindX509Extension(list.h, kOidA.data(), &index), 0u);
    EXPECT_EQ(index, 0u);
    ASSERT_EQ(RemoveX509ExtensionsExtension2(list.h, kOidA.data()), 0u);
    ASSERT_EQ(list.Count(), 1u);
    EXPECT_EQ(FindX509Extension(list.h, kOidB.data(), &index), 0u);
    EXPECT_EQ(index, 0u);
    // Nothing matching is no failure.
    EXPECT_EQ(RemoveX509ExtensionsExtension2(list.h, kOidA.data()), 0u);
}

TEST(X509Extension, EmptyAndReleasedLists) {
    Handle list;
    uint32_t index = 0, n = 0, critical = 0;
    EXPECT_EQ(FindX509Extension(list.h, kOidA.data(), &index), 322u);
    list.Add(kOidA);
    list.Add(kOidB);
    ASSERT_EQ(ClearX509Extensions(list.h), 0u);
    EXPECT_EQ(list.Count(), 0u);
    EXPECT_EQ(ToHex(list.Der()), "30 00");

    ASSERT_EQ(RemoveX509Extensions(list.h), 0u);
    EXPECT_EQ(list.Count(), 0u);
    EXPECT_EQ(FindX509Extension(list.h, kOidA.data(), &index), 322u);
    EXPECT_EQ(GetX509ExtensionsExtension(list.h, 0, nullptr, &n, &critical, nullptr, &n), 311u);
    EXPECT_EQ(RemoveX509ExtensionsExtension(list.h, 0), 311u);
    EXPECT_EQ(RemoveX509ExtensionsExtension2(list.h, kOidA.data()), 0u);
    EXPECT_EQ(ClearX509Extensions(list.h), 0u);
    EXPECT_EQ(SetX509ExtensionsSorted(list.h, 0), 0u);
    EXPECT_EQ(EncodeX509Extensions(list.h, nullptr, &n), 311u);
    // The released handle takes a new list.
    list.Add(kOidB);
    EXPECT_EQ(list.Count(), 1u);
    EXPECT_EQ(RemoveX509ExtensionsExtension(list.h, 1), 32u);
}

TEST(X509Extension, ListIsWrittenInInsertionOrderWhateverTheSortedFlag) {
    Handle list;
    list.Add(kOidB);
    list.Add(kOidA);
    const Bytes before = list.Der();
    ASSERT_EQ(SetX509ExtensionsSorted(list.h, 1), 0u);
    EXPECT_EQ(list.Der(), before);
    EXPECT_EQ(ToHex(Bytes(before.begin() + 2, before.begin() + 9)), "30 0B 06 03 55 1D 13");

    X509Extensions* decoded = nullptr;
    ASSERT_EQ(DecodeX509Extensions(before.data(), uint32_t(before.size()), &decoded), 0u);
    uint32_t count = 0;
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(decoded, &count), 0u);
    EXPECT_EQ(count, 2u);
    FreeX509Extensions(decoded);
    const Bytes broken = Hex("30 05 30 03 06 01");
    decoded = nullptr;
    EXPECT_NE(DecodeX509Extensions(broken.data(), uint32_t(broken.size()), &decoded), 0u);
    EXPECT_EQ(decoded, nullptr);
}

TEST(X509Extension, NullArgumentsAndAllocationFailures) {
    X509Extension* e = reinterpret_cast<X509Extension*>(1);
    EXPECT_EQ(CreateX509Extension(&e, nullptr, 0, kValue.data(), 1), 32u);
    EXPECT_EQ(e, nullptr);
    EXPECT_EQ(AddX509ExtensionsExtension(nullptr, kOidA.data(), 0, kValue.data(), 1), 32u);
    EXPECT_EQ(FreeX509Extensions(nullptr), 0u);

    EXPECT_GT(ForEachAllocationFailure([&] {
        X509Extensions* h = nullptr;
        uint32_t rc = CreateX509Extensions(&h);
        if (rc == 0) rc = AddX509ExtensionsExtension(h, kOidA.data(), 1, kValue.data(), uint32_t(kValue.size()));
        Bytes der(64);
        uint32_t n = uint32_t(der.size());
        if (rc == 0) rc = EncodeX509Extensions(h, der.data(), &n);
        X509Extensions* back = nullptr;
        if (rc == 0) rc = DecodeX509Extensions(der.data(), n, &back);
        FreeX509Extensions(back);
        FreeX509Extensions(h);
        return rc;
    }), 0);
}

}  // namespace
