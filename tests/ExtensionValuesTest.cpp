// Standard extension values against OpenSSL's bytes (fixtures/extensions and the system CA bundle):
// every value decodes, and rebuilt from the decoded content it encodes byte for byte as OpenSSL did.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/extensions/GeneralObjects.h"

using namespace tvtest;

namespace {

using Encoder = Writer;

Bytes Ext(const std::string& name) { return ReadFile(Fixture("extensions/" + name + ".der")); }

}  // namespace

TEST(ExtensionValues, DescriptorsLintClean) {
    for (auto [d, name] : {std::pair{&tv::desc::kCrlDistributionPoints, "CRLDistributionPoints"},
                           {&tv::desc::kAuthorityKeyIdentifier, "AuthorityKeyIdentifier"},
                           {&tv::desc::kIssuingDistributionPoint, "IssuingDistributionPoint"},
                           {&tv::desc::kAuthorityInformationAccess, "AuthorityInfoAccessSyntax"},
                           {&tv::desc::kCertificatePolicies, "CertificatePolicies"},
                           {&tv::desc::kExtendedKeyUsage, "ExtKeyUsageSyntax"}}) {
        auto problems = LintDescriptor(d, name);
        // The issuing distribution point repeats [1] on purpose (reasons); nothing else may be flagged.
        for (const auto& p : problems) EXPECT_NE(p.find("IssuingDistributionPoint"), std::string::npos) << p;
    }
}

TEST(ExtensionValues, DecodedContentMatchesOpenSslText) {
    uint32_t bits = 0;
    ASSERT_EQ(DecodeExtensionKeyUsage(Ext("key_usage_ee").data(), Ext("key_usage_ee").size(), &bits), 0u);
    EXPECT_EQ(bits, 0x80u | 0x40u | 0x20u | 0x8000u);  // digitalSignature, nonRepudiation, keyEncipherment, decipherOnly
    uint8_t ca = 0;
    uint32_t pathLen = 0;
    ASSERT_EQ(DecodeExtensionBasicConstraints(Ext("basic_constraints_ee").data(), 2, &ca, &pathLen), 0u);
    EXPECT_EQ(ca, 0x00);  // absent: the default filled in
    EXPECT_EQ(pathLen, 0xFFFFFFFFu);
    uint32_t reason = 0;
    ASSERT_EQ(DecodeExtensionReasonCode(Ext("reason_code").data(), Ext("reason_code").size(), &reason), 0u);
    EXPECT_EQ(reason, 1u);  // keyCompromise
    LibraryTime t{};
    ASSERT_EQ(DecodeExtensionInvalidityDate(Ext("invalidity_date").data(), Ext("invalidity_date").size(), &t), 0u);
    EXPECT_EQ(std::vector<uint32_t>({t.year, t.month, t.day, t.hour, t.minute, t.second}),
              std::vector<uint32_t>({2024, 2, 29, 23, 59, 59}));
    // The same four texts as the fixture's ASN1: configuration, Cyrillic included.
    const Bytes texts[4] = {Text("СКЗИ «Тарвелон-КС2» версии 4.0"), Text("ПАК «Удостоверяющий центр Тарвелон»"),
                            Text("Сертификат соответствия № СФ/124-3966 от 15.01.2021"),
                            Text("Сертификат соответствия № СФ/128-3868 от 23.07.2020")};
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) {
                  return EncodeExtensionIssuerSignTool(texts[0].data(), texts[0].size(), texts[1].data(), texts[1].size(),
                                                       texts[2].data(), texts[2].size(), texts[3].data(), texts[3].size(),
                                                       o, n);
              })),
              ToHex(Ext("issuer_sign_tool")));
    const Bytes tool = Text("Средство электронной подписи «Тарвелон-КС2»");
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionSubjectSignTool(tool.data(), tool.size(), o, n); })),
              ToHex(Ext("subject_sign_tool")));
}

TEST(ExtensionValues, NamedBitsAndStructureEdges) {
    const struct {
        const char* what;
        Encoder encode;
        const char* hex;
    } cases[] = {
        {"key usage CA", [](uint8_t* o, uint32_t* n) { return EncodeExtensionKeyUsage(0x86, o, n); }, "03020186"},
        {"digitalSignature", [](uint8_t* o, uint32_t* n) { return EncodeExtensionKeyUsage(0x80, o, n); }, "03020780"},
        {"decipherOnly", [](uint8_t* o, uint32_t* n) { return EncodeExtensionKeyUsage(0x8000, o, n); }, "0303070080"},
        {"no bits", [](uint8_t* o, uint32_t* n) { return EncodeExtensionNetscapeCertificateType(0, o, n); }, "030100"},
        {"end entity", [](uint8_t* o, uint32_t* n) { return EncodeExtensionBasicConstraints(0, 0xFFFFFFFF, o, n); }, "3000"},
        {"CA pathLen 0", [](uint8_t* o, uint32_t* n) { return EncodeExtensionBasicConstraints(1, 0, o, n); },
         "30060101FF020100"},
        {"pathLen without cA", [](uint8_t* o, uint32_t* n) { return EncodeExtensionBasicConstraints(0, 200, o, n); },
         "3004020200C8"},
        {"reason 128", [](uint8_t* o, uint32_t* n) { return EncodeExtensionReasonCode(128, o, n); }, "0A020080"},
        {"empty AKI", [](uint8_t* o, uint32_t* n) {
             return EncodeExtensionAuthorityKeyIdentifier(nullptr, 0, nullptr, nullptr, 0, o, n);
         }, "3000"},
        {"AKI key id", [](uint8_t* o, uint32_t* n) {
             static const Bytes key(20, 0xAB);
             return EncodeExtensionAuthorityKeyIdentifier(key.data(), 20, nullptr, nullptr, 0, o, n);
         }, "30168014ABABABABABABABABABABABABABABABABABABABAB"},
        {"IDP reasons only, under [1]", [](uint8_t* o, uint32_t* n) {
             return EncodeExtensionIssuingDistributionPoint(nullptr, nullptr, 0, 0, 0, 0, 0x60, 1, 0, 0, 0, 0, o, n);
         }, "3004810205 60"},
        {"IDP FALSE flags left out", [](uint8_t* o, uint32_t* n) {
             return EncodeExtensionIssuingDistributionPoint(nullptr, nullptr, 0, 1, 1, 1, 0, 0, 0, 1, 1, 1, o, n);
         }, "3006820 1FF8501FF"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(ToHex(OldSized(c.encode)), ToHex(Hex(c.hex)));
    }
    uint32_t bits = 0;
    EXPECT_EQ(DecodeExtensionKeyUsage(Hex("03020187").data(), 4, &bits), 0u);
    EXPECT_EQ(bits, 0x86u);  // the unused bit is cleared
    EXPECT_EQ(DecodeExtensionKeyUsage(Hex("0306000102030405").data(), 8, &bits), 0u);
    EXPECT_EQ(bits, 0x04030201u);  // a longer string is cut to four octets
    EXPECT_EQ(DecodeExtensionKeyUsage(Hex("03020187").data(), 0, &bits), 32u);
    EXPECT_EQ(EncodeExtensionKeyUsage(0x86, nullptr, nullptr), 32u);
}

TEST(ExtensionValues, IssuingDistributionPointReasonsUnderTagOne) {
    struct Flags {
        uint8_t user = 0x55, ca = 0x55, indirect = 0x55, attr = 0x55;
        uint32_t userP = 0, caP = 0, indirectP = 0, attrP = 0, reasons = 0, reasonsP = 0;
        GeneralNames* full = nullptr;
        X509Name* relative = nullptr;
        uint32_t Decode(const Bytes& in) {
            return DecodeExtensionIssuingDistributionPoint(in.data(), in.size(), &full, &relative, &user, &userP, &ca, &caP,
                                                           &reasons, &reasonsP, &indirect, &indirectP, &attr, &attrP);
        }
        ~Flags() {
            FreeX509GeneralNames(full);
            FreeX509Name(relative);
        }
    };
    const struct {
        const char* hex;
        uint8_t user;
        uint32_t reasons, reasonsPresent;
    } cases[] = {
        {"3004810205 60", 0x00, 0x60, 1},            // reasons alone: the [1] is not a BOOLEAN
        {"3007 8101FF 81020560", 0xFF, 0x60, 1},      // user flag, then the reasons
        {"3007 810100 81020560", 0x00, 0x60, 1},      // BER: an explicit FALSE before the reasons
        {"3003 810100", 0x00, 0, 1},                  // [1] with one zero octet: the empty reasons
        {"3007 8101FF 83020560", 0xFF, 0, 0},         // RFC 5280 [3] is not read as reasons
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.hex);
        Flags f;
        ASSERT_EQ(f.Decode(Hex(c.hex)), 0u);
        EXPECT_EQ(f.user, c.user);
        EXPECT_EQ(f.reasons, c.reasons);
        EXPECT_EQ(f.reasonsP, c.reasonsPresent);
        EXPECT_EQ(f.userP + f.caP + f.indirectP + f.attrP, 4u);
        EXPECT_EQ(f.ca, 0x00);
    }
    // OpenSSL's value keeps its name and flag; its [3] reasons are not read.
    Flags f;
    ASSERT_EQ(f.Decode(Ext("idp_rfc_reasons")), 0u);
    EXPECT_EQ(f.user, 0xFF);
    EXPECT_EQ(f.reasonsP, 0u);
    ASSERT_NE(f.full, nullptr);
    // Round trip of a full value through our own layout, the names copied out.
    const Bytes again = OldSized([&](uint8_t* o, uint32_t* n) {
        return EncodeExtensionIssuingDistributionPoint(f.full, nullptr, 1, 1, 1, 1, 0x0680, 1, 1, 1, 0, 1, o, n);
    });
    Flags g;
    ASSERT_EQ(g.Decode(again), 0u);
    EXPECT_EQ(std::vector<uint32_t>({g.user, g.ca, g.indirect, g.attr, g.reasons}),
              std::vector<uint32_t>({0xFF, 0xFF, 0xFF, 0x00, 0x0680}));
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509GeneralNames(g.full, o, n); })),
              ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509GeneralNames(f.full, o, n); })));
}

TEST(ExtensionValues, ListFamilyRules) {
    CrlDistributionPoints* list = nullptr;
    ASSERT_EQ(CreateExtensionCrlDistributionPoints(&list), 0u);
    GeneralNames* names = nullptr;
    X509Name* name = nullptr;
    CreateX509GeneralNames(&names);
    CreateX509Name(&name);
    EXPECT_EQ(AddExtensionCrlDistributionPoint(list, names, name, 0, nullptr), 32u);  // the names exclude each other
    EXPECT_EQ(AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 0, nullptr), 32u);
    uint32_t count = 9;
    EXPECT_EQ(GetExtensionCrlDistributionPointsCount(list, &count), 0u);
    EXPECT_EQ(count, 0u);
    FreeX509Name(name);  // still the caller's after the refusals
    EXPECT_EQ(AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 0x40, names), 0u);  // taken over
    GeneralNames *full = nullptr, *issuer = nullptr;
    X509Name* relative = nullptr;
    uint32_t reasons = 0;
    EXPECT_EQ(GetExtensionCrlDistributionPoint(list, 0, &full, &relative, &reasons, &issuer), 0u);
    EXPECT_EQ(issuer, names);
    EXPECT_EQ(reasons, 0x40u);
    EXPECT_EQ(GetExtensionCrlDistributionPoint(list, 1, &full, &relative, &reasons, &issuer), 32u);
    EXPECT_EQ(RemoveExtensionCrlDistributionPoint(list, 1), 32u);
    EXPECT_EQ(RemoveExtensionCrlDistributionPoint(list, 0), 0u);
    EXPECT_EQ(FreeExtensionCrlDistributionPoints(list), 0u);
    EXPECT_EQ(FreeExtensionCrlDistributionPoints(nullptr), 0u);
    EXPECT_EQ(DecodeExtensionExtendedKeyUsage(Hex("3000").data(), 0, nullptr), 32u);

    // Qualifiers join the policy they are added to; the last one removed takes the list with it.
    CertificatePolicies* policies = nullptr;
    CreateExtensionCertificatePolicies(&policies);
    const Bytes policy = Hex("062A850364710 1"), cps = Hex("082B06010505070201"), uri = Hex("160168");
    uint32_t index = 0;
    ASSERT_EQ(AddExtensionPolicyInformation(policies, policy.data(), &index), 0u);
    EXPECT_EQ(GetExtensionPolicyQualifiersCount(policies, 0, &count), 0u);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(AddExtensionPolicyQualifier(policies, 0, cps.data(), Hex("1601").data(), 2), 32u);  // not one element
    ASSERT_EQ(AddExtensionPolicyQualifier(policies, 0, cps.data(), uri.data(), uri.size()), 0u);
    EXPECT_EQ(GetExtensionPolicyQualifiersCount(policies, 0, &count), 0u);
    EXPECT_EQ(count, 1u);
    uint8_t oid[16], small[2];
    uint32_t oidLen = sizeof oid, len = sizeof small;
    EXPECT_EQ(GetExtensionPolicyQualifier(policies, 0, 0, oid, &oidLen, small, &len), 49u);
    EXPECT_EQ(ToHex(Bytes(oid, oid + oidLen)), ToHex(cps));  // copied despite the short buffer
    EXPECT_EQ(len, 3u);
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionCertificatePolicies(policies, o, n); })),
              ToHex(Hex("301B3019 06062A8503647101 300F300D06082B06010505070201160168")));
    EXPECT_EQ(GetExtensionPolicyQualifier(policies, 0, 1, oid, &oidLen, small, &len), 32u);
    EXPECT_EQ(RemoveExtensionPolicyQualifier(policies, 0, 0), 0u);
    EXPECT_EQ(RemoveExtensionPolicyQualifier(policies, 0, 0), 32u);
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionCertificatePolicies(policies, o, n); })),
              ToHex(Hex("300A300806062A8503647101")));
    FreeExtensionCertificatePolicies(policies);
}

TEST(ExtensionValues, AuthorityKeyIdentifierResultPrecedence) {
    const Bytes aki = Ext("aki_full");
    uint8_t key[4], serial[64];
    uint32_t keyLen = sizeof key, serialLen = sizeof serial;
    GeneralNames* issuer = reinterpret_cast<GeneralNames*>(1);
    EXPECT_EQ(DecodeExtensionAuthorityKeyIdentifier(aki.data(), aki.size(), key, &keyLen, &issuer, serial, &serialLen), 49u);
    EXPECT_EQ(keyLen, 20u);
    EXPECT_EQ(issuer, nullptr);  // nothing to free after a failure
    EXPECT_EQ(serialLen, 1u);    // the serial (0x2A) is still delivered
    keyLen = 0;
    EXPECT_EQ(DecodeExtensionAuthorityKeyIdentifier(aki.data(), 0, key, &keyLen, nullptr, serial, &serialLen), 32u);
}

TEST(ExtensionValues, AllocationFailuresReleaseEverything) {
    const Bytes dp = Ext("crl_distribution_points_issuer"), policies = Ext("certificate_policies"), aki = Ext("aki_full");
    // Decode, copy a name out, add it to a fresh list with a qualifier-carrying policy, encode.
    EXPECT_GT(ForEachAllocationFailure([&]() -> uint32_t {
                  CrlDistributionPoints *read = nullptr, *built = nullptr;
                  CertificatePolicies* pol = nullptr;
                  GeneralNames *full = nullptr, *issuer = nullptr, *copy = nullptr;
                  X509Name* relative = nullptr;
                  uint32_t reasons = 0, len = 0, rc = 0, index = 0;
                  if ((rc = DecodeExtensionCrlDistributionPoints(dp.data(), dp.size(), &read)) == 0 &&
                      (rc = CreateExtensionCrlDistributionPoints(&built)) == 0 &&
                      (rc = GetExtensionCrlDistributionPoint(read, 0, &full, &relative, &reasons, &issuer)) == 0 &&
                      (rc = CopyX509GeneralNames(issuer, &copy)) == 0 &&
                      (rc = AddExtensionCrlDistributionPoint(built, nullptr, nullptr, reasons, copy)) == 0)
                      copy = nullptr;
                  if (rc == 0) rc = EncodeExtensionCrlDistributionPoints(built, nullptr, &len);
                  if (rc == 0) rc = DecodeExtensionCertificatePolicies(policies.data(), policies.size(), &pol);
                  if (rc == 0) rc = AddExtensionPolicyInformation(pol, Hex("03550420").data(), &index);
                  if (rc == 0) rc = AddExtensionPolicyQualifier(pol, index, Hex("03550420").data(), Hex("0500").data(), 2);
                  Bytes out(512);
                  uint32_t keyLen = 64, serialLen = 64;
                  GeneralNames* akiIssuer = nullptr;
                  if (rc == 0)
                      rc = DecodeExtensionAuthorityKeyIdentifier(aki.data(), aki.size(), out.data(), &keyLen, &akiIssuer,
                                                                 out.data() + 64, &serialLen);
                  len = 512;
                  if (rc == 0)
                      rc = EncodeExtensionIssuingDistributionPoint(akiIssuer, nullptr, 1, 1, 0, 0, 0x60, 1, 0, 0, 0, 0,
                                                                   out.data(), &len);
                  FreeX509GeneralNames(akiIssuer);
                  FreeX509GeneralNames(copy);
                  FreeExtensionCertificatePolicies(pol);
                  FreeExtensionCrlDistributionPoints(read);
                  FreeExtensionCrlDistributionPoints(built);
                  return rc;
              }),
              1);
}
