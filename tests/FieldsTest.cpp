// The field layer on its own: reaching nested parts, the number and version rules, and DER carried
// inside ANY and OCTET STRING fields.
#include <gtest/gtest.h>

#include "TestUtil.h"
#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/x509/SignedStructure.h"

using namespace tv;
using namespace tvtest;

namespace {

constexpr Site kSite{Module::Asn1Value, 1};

// Outer ::= SEQUENCE { inner SEQUENCE { number INTEGER } }
enum class InnerSlot : uint32_t { kNumber, kCount };
constexpr auto kInnerParts = Slots<InnerSlot>({{InnerSlot::kNumber, &desc::kInteger}});
constinit const Asn1Descriptor kInner = Sequence(kInnerParts);
enum class OuterSlot : uint32_t { kInner, kCount };
constexpr auto kOuterParts = Slots<OuterSlot>({{OuterSlot::kInner, &kInner}});
constinit const Asn1Descriptor kOuter = Sequence(kOuterParts);

TEST(Fields, WalkTellsNullRootFromAbsentStep) {
    OwnedValue outer(&kOuter);
    ASSERT_EQ(NewStructure(kSite, kOuter, outer), 0u);
    void** slot = nullptr;
    const void* value = nullptr;
    EXPECT_EQ(Walk(kSite, nullptr, &slot, OuterSlot::kInner, InnerSlot::kNumber), 32u);
    EXPECT_EQ(Walk(kSite, outer.get(), &slot, OuterSlot::kInner, InnerSlot::kNumber), 311u);
    OwnedValue inner(&kInner);
    ASSERT_EQ(NewStructure(kSite, kInner, inner), 0u);
    Slot(outer.get(), OuterSlot::kInner) = inner.Release();
    ASSERT_EQ(Walk(kSite, outer.get(), &slot, OuterSlot::kInner, InnerSlot::kNumber), 0u);
    EXPECT_EQ(slot, &Slot(Slot(outer.get(), OuterSlot::kInner), InnerSlot::kNumber));
    EXPECT_EQ(WalkPresent(kSite, outer.get(), &value, OuterSlot::kInner, InnerSlot::kNumber), 311u);
    ASSERT_EQ(SetNumber(slot, ASN1_INTEGER, 5), 0u);
    EXPECT_EQ(WalkPresent(kSite, outer.get(), &value, OuterSlot::kInner, InnerSlot::kNumber), 0u);
    EXPECT_EQ(value, *slot);
}

TEST(Fields, NumbersAreMinimalTwosComplementAndReadBack) {
    const struct {
        uint32_t number;
        const char* contents;
    } rows[] = {{0, "00"},           {127, "7F"},      {128, "0080"},          {0x12345678, "12345678"},
                {0xFFFFFFFF, "FF"}, {0xFFFFFF80, "80"}, {0x80000000, "80000000"}, {0xFFFF7FFF, "FF7FFF"}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.contents);
        OwnedValue leaf(&desc::kInteger);
        ASSERT_EQ(SetNumber(leaf.Out(), ASN1_INTEGER, r.number), 0u);
        EXPECT_EQ(ToHex(leaf.as<Asn1Primitive>()->content, leaf.as<Asn1Primitive>()->length), ToHex(Hex(r.contents)));
        uint32_t back = 0;
        EXPECT_EQ(GetNumber(kSite, leaf.get(), &back), 0u);
        EXPECT_EQ(back, r.number);
    }
    uint32_t present = 7, number = 7;
    EXPECT_EQ(GetNumber(kSite, nullptr, &number), 311u);
    EXPECT_EQ(GetOptionalNumber(kSite, nullptr, &present, &number), 0u);
    EXPECT_EQ(present + number, 0u);
}

TEST(Fields, VersionForms) {
    constexpr auto kFour = VersionForm::kFourOctets;
    constexpr auto kZeros = VersionForm::kLeadingZeros;
    const struct {
        const char* contents;
        VersionForm form;
        uint32_t code, version;
    } rows[] = {{"02", kFour, 0, 2},      {"", kFour, 307, 0},         {"80", kFour, 307, 0},
                {"0000000001", kFour, 307, 0}, {"0000000001", kZeros, 0, 1}, {"0080", kZeros, 0, 128},
                {"", kZeros, 311, 0},     {"FF", kZeros, 307, 0},      {"0100000000", kZeros, 307, 0}};
    for (const auto& r : rows) {
        SCOPED_TRACE(r.contents);
        Bytes contents = Hex(r.contents);
        const Asn1Primitive leaf{ASN1_INTEGER, uint32_t(contents.size()), contents.empty() ? nullptr : contents.data()};
        uint32_t version = 0;
        EXPECT_EQ(GetVersion(kSite, &leaf, r.form, &version), r.code);
        if (r.code == 0) {
            EXPECT_EQ(version, r.version);
        }
    }
    uint32_t version = 0;
    EXPECT_EQ(GetVersion(kSite, nullptr, kFour, &version), 311u);
}

TEST(Fields, CarriedDerRoundTripsThroughBothCarriers) {
    const Family names{&desc::kX509Name, Module::X509Name, 0};
    OwnedValue name(&desc::kX509Name);
    ASSERT_EQ(CreateX509Name(reinterpret_cast<X509Name**>(name.Out())), 0u);
    const Bytes country = Packed("2.5.4.6");
    ASSERT_EQ(AddX509NameEntry(name.as<X509Name>(), reinterpret_cast<const uint8_t*>("RU"), 2, ASN1_PRINTABLE_STRING,
                               country.data(), 1),
              0u);
    const Bytes der = Sized([&](uint8_t* out, uint32_t* len) { return EncodeX509Name(name.as<X509Name>(), out, len); }).bytes;
    for (uint8_t type : {uint8_t{ASN1_ANY}, uint8_t{ASN1_OCTET_STRING}}) {
        SCOPED_TRACE(int{type});
        OwnedValue carrier(type == ASN1_ANY ? &desc::kAny : &desc::kOctetString);
        auto encode = [&] { return EncodeIntoCarrier(kSite, name.get(), names, type, carrier.Out()); };
        EXPECT_GT(ForEachAllocationFailure(encode), 1);
        ASSERT_EQ(EncodeIntoCarrier(kSite, name.get(), names, type, carrier.Out()), 0u);  // replaces the first
        const auto* p = carrier.as<Asn1Primitive>();
        EXPECT_EQ(Bytes(p->content, p->content + p->length), der);
        void* back = nullptr;
        ASSERT_EQ(DecodeCarried(kSite, carrier.get(), names, &back), 0u);
        OwnedValue backGuard(&desc::kX509Name, back);
        EXPECT_EQ(CompareX509Names(name.as<X509Name>(), static_cast<X509Name*>(back)), 0u);
    }
    Bytes trailing = der;
    trailing.push_back(0x00);
    const Asn1Primitive extra{ASN1_OCTET_STRING, uint32_t(trailing.size()), trailing.data()};
    const Asn1Primitive empty{ASN1_OCTET_STRING, 0, nullptr};
    void* out = nullptr;
    EXPECT_EQ(DecodeCarried(kSite, &extra, names, &out), 302u);
    EXPECT_EQ(DecodeCarried(kSite, &empty, names, &out), 311u);
    EXPECT_EQ(DecodeCarried(kSite, nullptr, names, &out), 311u);
    EXPECT_EQ(out, nullptr);
    void* slot = nullptr;
    EXPECT_EQ(EncodeIntoCarrier(kSite, name.get(), names, ASN1_BIT_STRING, &slot), 32u);
    EXPECT_EQ(EncodeIntoCarrier(kSite, nullptr, names, ASN1_ANY, &slot), 32u);
}

}  // namespace
