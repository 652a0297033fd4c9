// The two removal walks of OID-keyed lists side by side, and the search they share, over lists
// written as strings of keys ("AAB": extensions keyed A, A, B).
#include <gtest/gtest.h>

#include <string>

#include "TestUtil.h"
#include "tarvelon/extensions/OidKeyedList.h"
#include "tarvelon/extensions/X509Extension.h"

using namespace tvtest;

namespace {

const Bytes kA = Hex("03 55 1D 0F");
const Bytes kB = Hex("03 55 1D 13");
const tv::Family kList{&tv::desc::kExtensions, tv::Module::X509Extension, 0};
constexpr auto kKey = tv::desc::ExtensionSlot::kExtnId;

struct Keyed {
    X509Extensions* h = nullptr;
    explicit Keyed(const std::string& keys) {
        EXPECT_EQ(CreateX509Extensions(&h), 0u);
        const uint8_t value[] = {0x05, 0x00};
        for (char k : keys)
            EXPECT_EQ(AddX509ExtensionsExtension(h, (k == 'A' ? kA : kB).data(), 0, value, sizeof value), 0u);
    }
    ~Keyed() { FreeX509Extensions(h); }
    Asn1List* list() const { return tv::ListOf(h); }
    std::string Keys() const {
        std::string keys;
        for (uint32_t i = 0; i < list()->count; ++i) keys += tv::HasOid(list()->items[i], kKey, kA.data()) ? 'A' : 'B';
        return keys;
    }
};

TEST(OidKeyedList, RemovalWalksAndSearch) {
    const struct {
        const char* keys;
        const char* forward;   // extension lists: the element that moves into a removed place is skipped
        const char* backward;  // attribute sets: every match goes
        int firstA;
    } cases[] = {
        {"", "", "", -1},      {"B", "B", "B", -1},    {"AAB", "AB", "B", 0},  {"ABA", "B", "B", 0},
        {"BAA", "BA", "B", 1}, {"AAA", "A", "", 0},    {"AAAA", "AA", "", 0},  {"BABAB", "BBB", "BBB", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys);
        Keyed forward(c.keys), backward(c.keys);
        uint32_t index = 99;
        const bool found = tv::FindOid(forward.list(), kKey, kA.data(), &index);
        EXPECT_EQ(found ? int(index) : -1, c.firstA);
        EXPECT_EQ(tv::ElementWithOid(forward.list(), kKey, kA.data()), found ? forward.list()->items[index] : nullptr);
        EXPECT_EQ(tv::RemoveOid(kList, forward.list(), kKey, kA.data(), tv::OidWalk::kForwardSkippingMovedIn), 0u);
        EXPECT_EQ(tv::RemoveOid(kList, backward.list(), kKey, kA.data(), tv::OidWalk::kBackwardEvery), 0u);
        EXPECT_EQ(forward.Keys(), c.forward);
        EXPECT_EQ(backward.Keys(), c.backward);
    }
    // No list is an empty one: nothing found, nothing removed.
    uint32_t index = 0;
    EXPECT_FALSE(tv::FindOid(nullptr, kKey, kA.data(), &index));
    EXPECT_EQ(tv::RemoveOid(kList, nullptr, kKey, kA.data(), tv::OidWalk::kBackwardEvery), 0u);
}

}  // namespace
