// The field layer on its own: the number and version rules, and DER carried inside ANY and OCTET
// STRING fields.
#include <gtest/gtest.h>

#include "TestUtil.h"
#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/x509/SignedStructure.h"

using namespace tv;
using namespace tvtest;

namespace {

constexpr Site kSite{Module::Asn1Value, 1};

TEST(Fields, NumbersAreMinimalTwosComplementAndReadBack) {
    for (auto [number, contents] : {std::pair{0u, "00"}, {127u, "7F"}, {128u, "00 80"}, {0x12345678u, "12 34 56 78"},
                                    {0xFFFFFFFFu, "FF"}, {0xFFFFFF80u, "80"}, {0x80000000u, "80 00 00 00"},
                                    {0xFFFF7FFFu, "FF 7F FF"}}) {
        OwnedValue leaf(&desc::kInteger);
        ASSERT_EQ(SetNumber(leaf.Out(), ASN1_INTEGER, number), 0u);
        EXPECT_EQ(ToHex(leaf.as<Asn1Primitive>()->content, leaf.as<Asn1Primitive>()->length), H(contents));
        uint32_t back = 0;
        EXPECT_EQ(GetNumber(kSite, leaf.get(), &back), 0u);
        EXPECT_EQ(back, number);
    }
    uint32_t present = 7, number = 7;
    EXPECT_EQ(GetNumber(kSite, nullptr, &number), 311u);
    EXPECT_EQ(GetOptionalNumber(kSite, nullptr, &present, &number), 0u);
    EXPECT_EQ(present + number, 0u);
}

TEST(Fields, VersionForms) {
    constexpr auto kFour = VersionForm::kFourOctets, kZeros = VersionForm::kLeadingZeros;
    for (auto [contents, form, code, expected] :
         {std::tuple{"02", kFour, 0u, 2u}, {"", kFour, 307u, 0u}, {"80", kFour, 307u, 0u}, {"00 00 00 00 01", kFour, 307u, 0u},
          {"00 00 00 00 01", kZeros, 0u, 1u}, {"00 80", kZeros, 0u, 128u}, {"", kZeros, 311u, 0u}, {"FF", kZeros, 307u, 0u},
          {"01 00 00 00 00", kZeros, 307u, 0u}}) {
        Bytes octets = Hex(contents);
        const Asn1Primitive leaf{ASN1_INTEGER, Size(octets), octets.empty() ? nullptr : octets.data()};
        uint32_t version = 0;
        EXPECT_EQ(GetVersion(kSite, &leaf, form, &version), code) << contents;
        EXPECT_EQ(version, expected) << contents;
    }
    uint32_t version = 0;
    EXPECT_EQ(GetVersion(kSite, nullptr, kFour, &version), 311u);
}

TEST(Fields, CarriedDerRoundTripsThroughBothCarriers) {
    const Family names{&desc::kX509Name, Module::X509Name, 0};
    OwnedValue name(&desc::kX509Name);
    ASSERT_EQ(CreateX509Name(reinterpret_cast<X509Name**>(name.Out())), 0u);
    ASSERT_EQ(AddX509NameEntry(name.as<X509Name>(), U8("RU"), 2, ASN1_PRINTABLE_STRING, Packed("2.5.4.6").data(), 1), 0u);
    const Bytes der = Get(EncodeX509Name, name.as<X509Name>()).bytes;
    for (uint8_t type : {uint8_t{ASN1_ANY}, uint8_t{ASN1_OCTET_STRING}}) {
        SCOPED_TRACE(int{type});
        OwnedValue carrier(type == ASN1_ANY ? &desc::kAny : &desc::kOctetString);
        auto encode = [&] { return EncodeIntoCarrier(kSite, name.get(), names, type, carrier.Out()); };
        EXPECT_GT(ForEachAllocationFailure(encode), 1);
        ASSERT_EQ(encode(), 0u);  // replaces the first
        const auto* p = carrier.as<Asn1Primitive>();
        EXPECT_EQ(Bytes(p->content, p->content + p->length), der);
        void* back = nullptr;
        ASSERT_EQ(DecodeCarried(kSite, carrier.get(), names, &back), 0u);
        OwnedValue backGuard(&desc::kX509Name, back);
        EXPECT_EQ(CompareX509Names(name.as<X509Name>(), static_cast<X509Name*>(back)), 0u);
    }
    Bytes trailing = der;
    trailing.push_back(0x00);
    const Asn1Primitive extra{ASN1_OCTET_STRING, Size(trailing), trailing.data()}, empty{ASN1_OCTET_STRING, 0, nullptr};
    void* out = nullptr;
    EXPECT_EQ(DecodeCarried(kSite, &extra, names, &out), 302u);
    EXPECT_EQ(DecodeCarried(kSite, &empty, names, &out), 311u);
    EXPECT_EQ(DecodeCarried(kSite, nullptr, names, &out), 311u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(EncodeIntoCarrier(kSite, name.get(), names, ASN1_BIT_STRING, &out), 32u);
    EXPECT_EQ(EncodeIntoCarrier(kSite, nullptr, names, ASN1_ANY, &out), 32u);
}

}  // namespace
