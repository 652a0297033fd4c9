// Extension and attribute lists and the extension values: the critical DEFAULT, the removal walks,
// the states of a list handle and the two orderings of attributes; the exact bytes of standard and
// private values (the peers expect 03/04/05, 20 and B0 in place of the usual identifiers) and what
// their decoders give back.
#include <gtest/gtest.h>

#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kKeyUsage = Packed("2.5.29.15"), kBasic = Packed("2.5.29.19"), kValue = Hex("03 02 01 86");
Bytes Ext(const std::string& name) { return FixtureFile("extensions/" + name + ".der"); }
// An encoder with its arguments bound, for the size protocol.
template <typename Fn, typename... A>
Writer W(Fn fn, A... args) {
    return [=](uint8_t* o, uint32_t* n) { return fn(args..., o, n); };
}

struct Extensions : Own<FreeX509Extensions> {
    Extensions() { EXPECT_EQ(CreateX509Extensions(&p), 0u); }
    void Add(const Bytes& oid, int critical = 0) {
        EXPECT_EQ(AddX509ExtensionsExtension(p, oid.data(), critical, kValue.data(), Size(kValue)), 0u);
    }
    uint32_t Count() const {
        uint32_t n = 99;
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(p, &n), 0u);
        return n;
    }
};

TEST(ExtensionList, CriticalIsWrittenOnlyWhenTrueAndReadBackAsItsDefault) {
    for (auto [critical, der] : {std::pair{0, "30 0B 06 03 55 1D 0F 04 04 03 02 01 86"},
                                 {1, "30 0E 06 03 55 1D 0F 01 01 FF 04 04 03 02 01 86"},
                                 {7, "30 0E 06 03 55 1D 0F 01 01 FF 04 04 03 02 01 86"}}) {
        Own<FreeX509Extension> e, back;
        ASSERT_EQ(CreateX509Extension(&e.p, kKeyUsage.data(), critical, kValue.data(), Size(kValue)), 0u);
        const Got encoded = Get(EncodeX509Extension, e.p);
        EXPECT_EQ(encoded.hex(), H(der));
        ASSERT_EQ(DecodeX509Extension(encoded.bytes.data(), Size(encoded.bytes), &back.p), 0u);
        uint8_t oid[8];
        uint32_t oidLen = sizeof oid, flag = 99;
        EXPECT_EQ(Get(GetX509Extension, back.p, oid, &oidLen, &flag).bytes, kValue);
        EXPECT_EQ(flag, critical ? 1u : 0u);
        EXPECT_EQ(Bytes(oid, oid + oidLen), kKeyUsage);
    }
    X509Extension* none = reinterpret_cast<X509Extension*>(1);
    EXPECT_EQ(CreateX509Extension(&none, nullptr, 0, kValue.data(), 1), 32u);
    EXPECT_EQ(none, nullptr);
    Extensions list;
    list.Add(kKeyUsage, 1);
    uint8_t oid[4], small[2];
    uint32_t oidLen = sizeof oid, valueLen = sizeof small, critical = 0;
    EXPECT_EQ(GetX509ExtensionsExtension(list, 0, oid, &oidLen, &critical, small, &valueLen), 49u);
    EXPECT_EQ(valueLen, 4u);
    EXPECT_EQ(GetX509ExtensionsExtension(list, 1, nullptr, &oidLen, &critical, nullptr, &valueLen), 32u);
    EXPECT_EQ(Get(GetX509ExtensionsExtensionValue, list.p, kKeyUsage.data()).bytes, kValue);
    EXPECT_EQ(AddX509ExtensionsExtension(nullptr, kKeyUsage.data(), 0, kValue.data(), 1), 32u);
}

// Of two adjacent extensions with the same OID, one call removes only the first (kept as it is).
TEST(ExtensionList, ForwardRemovalWalkSkipsTheElementThatMovesIn) {
    Extensions list;
    list.Add(kKeyUsage), list.Add(kKeyUsage), list.Add(kBasic);
    uint32_t index = 99;
    for (uint32_t left : {2u, 1u, 1u}) {
        ASSERT_EQ(RemoveX509ExtensionsExtension2(list, kKeyUsage.data()), 0u);  // nothing matching is no failure
        EXPECT_EQ(list.Count(), left);
    }
    EXPECT_EQ(FindX509Extension(list, kBasic.data(), &index), 0u);
    EXPECT_EQ(index, 0u);
}

TEST(ExtensionList, EmptyReleasedAndOrderedLists) {
    Extensions list;
    uint32_t index = 0, n = 0, critical = 0;
    EXPECT_EQ(FindX509Extension(list, kKeyUsage.data(), &index), 322u);
    list.Add(kBasic), list.Add(kKeyUsage);
    const Got before = Get(EncodeX509Extensions, list.p);  // insertion order, whatever the sorted flag
    ASSERT_EQ(SetX509ExtensionsSorted(list, 1), 0u);
    EXPECT_EQ(Get(EncodeX509Extensions, list.p).bytes, before.bytes);
    EXPECT_EQ(ToHex(before.bytes.data() + 2, 7), "30 0B 06 03 55 1D 13");
    ASSERT_EQ(ClearX509Extensions(list), 0u);
    EXPECT_EQ(Get(EncodeX509Extensions, list.p).hex(), "30 00");
    ASSERT_EQ(RemoveX509Extensions(list), 0u);  // released: no list at all
    EXPECT_EQ(list.Count(), 0u);
    EXPECT_EQ(FindX509Extension(list, kKeyUsage.data(), &index), 322u);
    EXPECT_EQ(GetX509ExtensionsExtension(list, 0, nullptr, &n, &critical, nullptr, &n), 311u);
    EXPECT_EQ(RemoveX509ExtensionsExtension(list, 0), 311u);
    EXPECT_EQ(RemoveX509ExtensionsExtension2(list, kKeyUsage.data()), 0u);
    EXPECT_EQ(ClearX509Extensions(list), 0u);
    EXPECT_EQ(SetX509ExtensionsSorted(list, 0), 0u);
    EXPECT_EQ(EncodeX509Extensions(list, nullptr, &n), 311u);
    list.Add(kBasic);  // the released handle takes a new list
    EXPECT_EQ(list.Count(), 1u);
    EXPECT_EQ(RemoveX509ExtensionsExtension(list, 1), 32u);
    X509Extensions* decoded = nullptr;
    EXPECT_NE(DecodeX509Extensions(Hex("30 05 30 03 06 01").data(), 7, &decoded), 0u);
    EXPECT_EQ(decoded, nullptr);
}

// What the corpus cannot tell from a round trip: the order of the texts, and the partial results of a
// decode that runs out of room.
TEST(ExtensionValues, DecodedContentMatchesOpenSsl) {
    // The texts of the fixture's ASN1: configuration, Cyrillic included.
    const Bytes texts[4] = {Text("СКЗИ «Тарвелон-КС2» версии 4.0"), Text("ПАК «Удостоверяющий центр Тарвелон»"),
                            Text("Сертификат соответствия № СФ/124-3966 от 15.01.2021"),
                            Text("Сертификат соответствия № СФ/128-3868 от 23.07.2020")};
    EXPECT_EQ(Get(EncodeExtensionIssuerSignTool, texts[0].data(), Size(texts[0]), texts[1].data(), Size(texts[1]),
                  texts[2].data(), Size(texts[2]), texts[3].data(), Size(texts[3])).bytes, Ext("issuer_sign_tool"));
    const Bytes tool = Text("Средство электронной подписи «Тарвелон-КС2»");
    EXPECT_EQ(Get(EncodeExtensionSubjectSignTool, tool.data(), Size(tool)).bytes, Ext("subject_sign_tool"));
    // A short key buffer: 49, the serial still delivered, nothing to free.
    const Bytes aki = Ext("aki_full");
    uint8_t key[4], serial[64];
    uint32_t keyLen = sizeof key, serialLen = sizeof serial;
    GeneralNames* issuer = reinterpret_cast<GeneralNames*>(1);
    EXPECT_EQ(DecodeExtensionAuthorityKeyIdentifier(aki.data(), Size(aki), key, &keyLen, &issuer, serial, &serialLen), 49u);
    EXPECT_EQ(std::vector<uint64_t>({keyLen, serialLen, uint64_t(issuer)}), std::vector<uint64_t>({20, 1, 0}));
    EXPECT_EQ(DecodeExtensionAuthorityKeyIdentifier(aki.data(), 0, key, &keyLen, nullptr, serial, &serialLen), 32u);
}

TEST(ExtensionValues, ExactBytes) {
    const LibraryTime march5{2024, 3, 5, 6, 7, 8};
    const std::string march5Der = "18 0F 3230323430333035303630373038 5A";  // "20240305060708Z"
    const Bytes keyId(20, 0xAB), parent = Hex("03 2A 85 03");
    const std::pair<Writer, std::string> cases[] = {
        {W(EncodeExtensionKeyUsage, 0x86u), "03020186"},
        {W(EncodeExtensionKeyUsage, 0x80u), "03020780"},
        {W(EncodeExtensionKeyUsage, 0x8000u), "0303070080"},  // decipherOnly
        {W(EncodeExtensionNetscapeCertificateType, 0u), "030100"},
        {W(EncodeExtensionBasicConstraints, 0, 0xFFFFFFFFu), "3000"},
        {W(EncodeExtensionBasicConstraints, 1, 0u), "30060101FF020100"},
        {W(EncodeExtensionBasicConstraints, 0, 200u), "3004020200C8"},  // pathLen without cA
        {W(EncodeExtensionReasonCode, 128u), "0A020080"},
        {W(EncodeExtensionAuthorityKeyIdentifier, nullptr, 0u, nullptr, nullptr, 0u), "3000"},
        {W(EncodeExtensionAuthorityKeyIdentifier, keyId.data(), 20u, nullptr, nullptr, 0u), "30168014" + ToHex(keyId)},
        {W(EncodeExtensionIssuingDistributionPoint, nullptr, nullptr, 0u, 0u, 0u, 0u, 0x60u, 1u, 0u, 0u, 0u, 0u),
         "3004810205 60"},  // reasons under [1]
        {W(EncodeExtensionIssuingDistributionPoint, nullptr, nullptr, 0u, 1u, 1u, 1u, 0u, 0u, 0u, 1u, 1u, 1u),
         "30068201FF8501FF"},  // FALSE flags left out
        {W(EncodeExtensionOcspCheckTime2, 1u, nullptr), "B0 03 0A 01 01"},
        {W(EncodeExtensionOcspCheckTime2, 2u, &march5), "B0 14 0A 01 02" + march5Der},
        {W(EncodeExtensionOcspCheckFile, U8("\x01\x02"), 2u, nullptr, 0u, nullptr, 0u, 0u, 0u, U8("A"), 1u, nullptr, 0u, 0u, 0u),
         "30 07 04 02 01 02 03 01 41"},
        {W(EncodeExtensionOcspCheckFile, U8("\xAA"), 1u, U8("\xBB"), 1u, U8("\xCC"), 1u, 1u, 1u, U8("A"), 1u, U8("B"), 1u, 1u, 2u),
         "30 15 04 01 AA 80 01 BB 81 01 CC 0A 01 01 03 01 41 04 01 42 05 01 02"},
        {W(EncodeExtensionKeyStorage, 7u, nullptr, 0u), "30 03 0A 01 07"},
        {W(EncodeExtensionExtendedResult, 0x80u, U8("ok"), 2u), "30 08 0A 02 00 80 0C 02 6F 6B"},
        {W(EncodeExtensionRequestBlockingDate, nullptr, nullptr), "30 00"},
        {W(EncodeExtensionRequestBlockingDate, nullptr, &march5), "30 11 81" + march5Der.substr(2)},
        {W(EncodeExtensionOcspCheckCryptoNetRegistry, U8("a"), 1u, U8("b"), 1u, 0u, 9u), "30 06 0C 01 61 0C 01 62"},
        {W(EncodeExtensionOcspCheckCryptoNetRegistry, U8("a"), 1u, U8(""), 0u, 1u, 9u), "30 08 0C 01 61 0C 00 0A 01 09"},
        {W(EncodeExtensionRelatedOsbKod, U8("12"), 2u), "13 02 31 32"},
        {W(EncodeExtensionOcspRequestDocuments, 0x80u), "02 02 00 80"},
        {W(EncodeExtensionOcspRequestCertificates, 0xFFFFFFFFu), "0A 01 FF"},
        {W(EncodeExtensionOcspRequestPrivateKeyContexts, 0x12345u), "0A 03 01 23 45"},
        {W(EncodeExtensionParentAS, parent.data()), "06 03 2A 85 03"},
        {W(EncodeExtensionOcspCheckTime, &march5), march5Der},
    };
    for (const auto& [encode, hex] : cases) {
        EXPECT_EQ(Sized(encode).hex(), H(hex));
        EXPECT_GT(ForEachAllocationFailure([&] { return Sized(encode).rc; }), 0) << hex;
    }
    uint32_t bits = 0;
    EXPECT_EQ(DecodeExtensionKeyUsage(Hex("03020187").data(), 4, &bits), 0u);
    EXPECT_EQ(bits, 0x86u);  // the unused bit is cleared
    EXPECT_EQ(DecodeExtensionKeyUsage(Hex("0306000102030405").data(), 8, &bits), 0u);
    EXPECT_EQ(bits, 0x04030201u);  // a longer string is cut to four octets
    EXPECT_EQ(EncodeExtensionKeyUsage(0x86, nullptr, nullptr), 32u);
}

TEST(ExtensionValues, IssuingDistributionPointReasonsUnderTagOne) {
    struct Read {
        uint8_t user = 0x55, ca = 0x55, indirect = 0x55, attr = 0x55;
        uint32_t present[4] = {}, reasons = 0, reasonsPresent = 0;
        Own<FreeX509GeneralNames> full;
        Own<FreeX509Name> relative;
        uint32_t From(const Bytes& in) {
            return DecodeExtensionIssuingDistributionPoint(in.data(), Size(in), &full.p, &relative.p, &user, &present[0],
                                                           &ca, &present[1], &reasons, &reasonsPresent, &indirect,
                                                           &present[2], &attr, &present[3]);
        }
    };
    for (auto [hex, user, reasons, reasonsPresent] :
         {std::tuple{"3004810205 60", 0x00, 0x60u, 1u},  // reasons alone: the [1] is not a BOOLEAN
          {"3007 8101FF 81020560", 0xFF, 0x60u, 1u},     // user flag, then the reasons
          {"3007 810100 81020560", 0x00, 0x60u, 1u},     // BER: an explicit FALSE before the reasons
          {"3003 810100", 0x00, 0u, 1u},                 // [1] with one zero octet: the empty reasons
          {"3007 8101FF 83020560", 0xFF, 0u, 0u}}) {     // RFC 5280 [3] is not read as reasons
        Read r;
        ASSERT_EQ(r.From(Hex(hex)), 0u) << hex;
        EXPECT_EQ(std::vector<uint32_t>({r.user, r.reasons, r.reasonsPresent, r.ca}),
                  std::vector<uint32_t>({uint32_t(user), reasons, reasonsPresent, 0})) << hex;
        EXPECT_EQ(r.present[0] + r.present[1] + r.present[2] + r.present[3], 4u);
    }
    Read openssl, again;  // OpenSSL's value keeps its name and flag; its [3] reasons are not read
    ASSERT_EQ(openssl.From(Ext("idp_rfc_reasons")), 0u);
    EXPECT_EQ(openssl.user * 10 + openssl.reasonsPresent, 0xFF * 10u);
    const Got ours = Get(EncodeExtensionIssuingDistributionPoint, openssl.full.p, (X509Name*)nullptr, 1u, 1u, 1u, 1u,
                         0x0680u, 1u, 1u, 1u, 0u, 1u);
    ASSERT_EQ(again.From(ours.bytes), 0u);
    EXPECT_EQ(std::vector<uint32_t>({again.user, again.ca, again.indirect, again.attr, again.reasons}),
              std::vector<uint32_t>({0xFF, 0xFF, 0xFF, 0x00, 0x0680}));
    EXPECT_EQ(Get(EncodeX509GeneralNames, again.full.p).bytes, Get(EncodeX509GeneralNames, openssl.full.p).bytes);
    EXPECT_NE(Read().From(Ext("idp_relative_name")), 0u);  // its relative name is not a whole Name under [1]
}

TEST(ExtensionValues, ListFamilyRules) {
    Own<FreeExtensionCrlDistributionPoints> points;
    Own<FreeX509GeneralNames> names;
    Own<FreeX509Name> name;
    uint32_t count = 9, reasons = 0;
    ASSERT_EQ(CreateExtensionCrlDistributionPoints(&points.p), 0u);
    CreateX509GeneralNames(&names.p), CreateX509Name(&name.p);
    EXPECT_EQ(AddExtensionCrlDistributionPoint(points, names, name, 0, nullptr), 32u);  // the names exclude each other
    EXPECT_EQ(AddExtensionCrlDistributionPoint(points, nullptr, nullptr, 0, nullptr), 32u);
    EXPECT_TRUE(GetExtensionCrlDistributionPointsCount(points, &count) == 0 && count == 0);
    GeneralNames* issuer = names.release();
    EXPECT_EQ(AddExtensionCrlDistributionPoint(points, nullptr, nullptr, 0x40, issuer), 0u);  // taken over
    GeneralNames *full = nullptr, *read = nullptr;
    X509Name* relative = nullptr;
    EXPECT_EQ(GetExtensionCrlDistributionPoint(points, 0, &full, &relative, &reasons, &read), 0u);
    EXPECT_TRUE(read == issuer && reasons == 0x40u);
    EXPECT_EQ(GetExtensionCrlDistributionPoint(points, 1, &full, &relative, &reasons, &read), 32u);
    EXPECT_EQ(RemoveExtensionCrlDistributionPoint(points, 1), 32u);
    EXPECT_EQ(RemoveExtensionCrlDistributionPoint(points, 0), 0u);
    EXPECT_EQ(FreeExtensionCrlDistributionPoints(nullptr), 0u);
    EXPECT_EQ(DecodeExtensionExtendedKeyUsage(Hex("3000").data(), 0, nullptr), 32u);

    // Qualifiers join the policy they are added to; the last one removed takes the list with it.
    Own<FreeExtensionCertificatePolicies> policies;
    CreateExtensionCertificatePolicies(&policies.p);
    const Bytes policy = Hex("062A8503647101"), cps = Hex("082B06010505070201"), uri = Hex("160168");
    uint32_t index = 0;
    ASSERT_EQ(AddExtensionPolicyInformation(policies, policy.data(), &index), 0u);
    EXPECT_EQ(AddExtensionPolicyQualifier(policies, 0, cps.data(), Hex("1601").data(), 2), 32u);  // not one element
    ASSERT_EQ(AddExtensionPolicyQualifier(policies, 0, cps.data(), uri.data(), Size(uri)), 0u);
    EXPECT_TRUE(GetExtensionPolicyQualifiersCount(policies, 0, &count) == 0 && count == 1);
    uint8_t oid[16], small[2];
    uint32_t oidLen = sizeof oid, len = sizeof small;
    EXPECT_EQ(GetExtensionPolicyQualifier(policies, 0, 0, oid, &oidLen, small, &len), 49u);
    EXPECT_EQ(Bytes(oid, oid + oidLen), cps);  // copied despite the short buffer
    EXPECT_EQ(len, 3u);
    EXPECT_EQ(Get(EncodeExtensionCertificatePolicies, policies.p).hex(), H("301B3019 06062A8503647101 300F300D06082B06010505070201160168"));
    EXPECT_EQ(GetExtensionPolicyQualifier(policies, 0, 1, oid, &oidLen, small, &len), 32u);
    EXPECT_EQ(RemoveExtensionPolicyQualifier(policies, 0, 0), 0u);
    EXPECT_EQ(RemoveExtensionPolicyQualifier(policies, 0, 0), 32u);
    EXPECT_EQ(Get(EncodeExtensionCertificatePolicies, policies.p).hex(), H("300A300806062A8503647101"));
}

TEST(PrivateExtensions, StructuresAndScalarsReadBack) {
    Bytes in = Hex("30 15 04 01 AA 80 01 BB 81 01 CC 0A 01 01 03 01 41 04 01 42 05 01 02");
    uint8_t b[5][8];
    uint32_t n[5] = {8, 8, 8, 8, 8}, kindPresent = 9, kind = 9, kind5Present = 9, kind5 = 9;
    EXPECT_GT(ForEachAllocationFailure([&] {
        std::fill(n, n + 5, 8u);
        return DecodeExtensionOcspCheckFile(in.data(), Size(in), b[0], &n[0], b[1], &n[1], b[2], &n[2], &kindPresent,
                                            &kind, b[3], &n[3], b[4], &n[4], &kind5Present, &kind5);
    }), 0);
    EXPECT_EQ(ToHex(b[0], n[0]) + ToHex(b[1], n[1]) + ToHex(b[2], n[2]) + ToHex(b[3], n[3]) + ToHex(b[4], n[4]), "AABBCC4142");
    EXPECT_EQ(std::vector<uint32_t>({kindPresent, kind, kind5Present, kind5}), std::vector<uint32_t>({1, 1, 1, 2}));
    // Absent optional parts: length 0, flags 0; a short buffer still stores every size.
    in = Hex("30 07 04 02 01 02 03 01 41");
    uint32_t s[5] = {1, 0, 0, 0, 0};
    EXPECT_EQ(DecodeExtensionOcspCheckFile(in.data(), Size(in), b[0], &s[0], b[1], &s[1], b[2], &s[2], &kindPresent,
                                           &kind, nullptr, &s[3], b[4], &s[4], &kind5Present, &kind5), 49u);
    EXPECT_EQ(std::vector<uint32_t>(s, s + 5), (std::vector<uint32_t>{2, 0, 0, 1, 0}));
    EXPECT_EQ(kindPresent + kind5Present, 0u);

    const LibraryTime march5{2024, 3, 5, 6, 7, 8};
    LibraryTime t{1, 1, 1, 1, 1, 1}, from{1, 1, 1, 1, 1, 1}, until = march5;
    uint32_t timeKind = 0, code = 0, number = 0, len = 8, present = 0;
    ASSERT_EQ(DecodeExtensionOcspCheckTime2(Hex("B0 03 0A 01 01").data(), 5, &timeKind, &t), 0u);  // only B0 will do
    EXPECT_TRUE(timeKind == 1 && SameTime(t, {}));
    EXPECT_NE(DecodeExtensionOcspCheckTime2(Hex("30 03 0A 01 01").data(), 5, &timeKind, &t), 0u);
    in = Hex("30 11 80 0F 3230323430333035303630373038 5A");
    ASSERT_EQ(DecodeExtensionRequestBlockingDate(in.data(), Size(in), &from, &until), 0u);
    EXPECT_TRUE(SameTime(from, march5) && SameTime(until, {}));
    ASSERT_EQ(DecodeExtensionExtendedResult(Hex("30 08 0A 02 00 80 0C 02 6F 6B").data(), 10, &code, b[0], &len), 0u);
    EXPECT_EQ(code * 100 + len, 0x80u * 100 + 2);
    ASSERT_EQ(DecodeExtensionKeyStorage(Hex("30 03 0A 01 07").data(), 5, &code, b[0], &len), 0u);
    EXPECT_EQ(code * 100 + len, 700u);
    n[0] = n[1] = 8;
    ASSERT_EQ(DecodeExtensionOcspCheckCryptoNetRegistry(Hex("30 08 0C 01 61 0C 00 0A 01 09").data(), 10, b[0], &n[0], b[1],
                                                        &n[1], &present, &kind), 0u);
    EXPECT_EQ(std::vector<uint32_t>({n[0], n[1], present, kind}), std::vector<uint32_t>({1, 0, 1, 9}));

    EXPECT_EQ(Get(DecodeExtensionKestruneKeyIdentifier, Hex("0C 02 41 42").data(), 4u).hex(), "41 42");
    EXPECT_NE(Get(DecodeExtensionRelatedOsbKod, Hex("0C 02 41 42").data(), 4u).rc, 0u);  // the tag is checked
    for (uint32_t value : {0u, 1u, 0x7Fu, 0x80u, 0xFFFFu, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        const Got e = Get(EncodeExtensionOcspRequestCertificates, value), i = Get(EncodeExtensionOcspRequestDocuments, value);
        ASSERT_EQ(DecodeExtensionOcspRequestCertificates(e.bytes.data(), Size(e.bytes), &number), 0u);
        EXPECT_EQ(number, value);
        ASSERT_EQ(DecodeExtensionOcspRequestDocuments(i.bytes.data(), Size(i.bytes), &number), 0u);
        EXPECT_EQ(number, value);
    }
    EXPECT_NE(DecodeExtensionOcspRequestPrivateKeyContexts(Hex("0A 05 01 00 00 00 00").data(), 7, &number), 0u);
    EXPECT_EQ(Get(DecodeExtensionParentAS, Hex("06 03 2A 85 03").data(), 5u).hex(), "03 2A 85 03");
    ASSERT_EQ(DecodeExtensionOcspCheckTime(Hex("18 0F 3230323430333035303630373038 5A").data(), 17, &t), 0u);
    EXPECT_TRUE(SameTime(t, march5));
    in = Hex("30 0F 31 0D 30 0B 06 03 55 04 03 0C 04 54 65 73 74");  // CN=Test
    Own<FreeX509Name> owner;
    ASSERT_EQ(DecodeExtensionOwnerInformation(in.data(), Size(in), &owner.p), 0u);
    EXPECT_EQ(Get(EncodeExtensionOwnerInformation, owner.p).bytes, in);
    // Required arguments and empty input; an empty text is a value, a null one with octets to read is not.
    EXPECT_EQ(EncodeExtensionOcspCheckFile(nullptr, 0, nullptr, 0, nullptr, 0, 0, 0, nullptr, 0, nullptr, 0, 0, 0, b[0], &len), 32u);
    EXPECT_EQ(EncodeExtensionParentAS(in.data(), b[0], nullptr), 32u);
    EXPECT_EQ(EncodeExtensionOrganizationCode(nullptr, 3, b[0], &len), 32u);
    EXPECT_EQ(EncodeExtensionOwnerInformation(nullptr, b[0], &len), 32u);
    EXPECT_EQ(DecodeExtensionKeyStorage(in.data(), 0, &number, b[0], &len), 32u);
    EXPECT_EQ(DecodeExtensionClockNumber(in.data(), 0, b[0], &len), 32u);
}

// The three store lists are one implementation behind three name sets.
template <auto Create, auto Add, auto GetItem, auto Remove, auto Free, auto Count, auto Encode, auto Decode>
void CheckStoreList() {
    StoreItems* list = nullptr;
    ASSERT_EQ(Create(&list), 0u);
    ASSERT_EQ(Add(list, 1, U8("\xAA\xBB"), 2), 0u);
    ASSERT_EQ(Add(list, 2, U8("\xCC"), 1), 0u);
    EXPECT_EQ(Add(nullptr, 1, U8("x"), 1), 32u);
    EXPECT_EQ(Add(list, 1, nullptr, 0), 32u);
    const Got der = Get(Encode, list);
    EXPECT_EQ(der.hex(), H("30 11 30 07 0A 01 01 04 02 AA BB 30 06 0A 01 02 04 01 CC"));
    Free(list);
    ASSERT_EQ(Decode(der.bytes.data(), Size(der.bytes), &list), 0u);
    uint32_t count = 0, kind = 0, len = 0;
    EXPECT_EQ(Count(list, &count), 0u);
    EXPECT_EQ(Remove(list, 2), 32u);
    EXPECT_EQ(Remove(list, 0), 0u);
    EXPECT_EQ(Get(GetItem, list, 0u, &kind).hex(), "CC");
    EXPECT_EQ(count * 10 + kind, 22u);
    EXPECT_EQ(GetItem(list, 1, &kind, nullptr, &len), 32u);
    EXPECT_EQ(Decode(der.bytes.data(), 0, &list), 32u);
    EXPECT_EQ(Free(list), 0u);
    EXPECT_EQ(Free(nullptr), 0u);
}

TEST(PrivateExtensions, StoreListsBuildEncodeDecodeRemove) {
#define STORE_LIST(Name)                                                                                       \
    CheckStoreList<CreateExtension##Name, AddExtension##Name, GetExtension##Name, RemoveExtension##Name,       \
                   FreeExtension##Name, GetExtension##Name##Count, EncodeExtension##Name, DecodeExtension##Name>
    for (auto check : {STORE_LIST(StoreCertificates), STORE_LIST(StorePrivateKeyContexts), STORE_LIST(StoreOcspRequestDocuments)})
        check();
#undef STORE_LIST
}

// Two check results, written and read back: one with a text, a time, store items and names (under
// 20), one with neither.
uint32_t BuildResults(Got& der, Own<FreeExtensionOcspCheckFileExtResults>& back) {
    const LibraryTime march5{2024, 3, 5, 6, 7, 8};
    Own<FreeExtensionOcspCheckFileExtResults> list;
    Own<FreeExtensionStoreCertificates> items;
    Own<FreeX509GeneralNames> names;
    TRY(CreateExtensionOcspCheckFileExtResults(&list.p));
    TRY(CreateExtensionStoreCertificates(&items.p));
    TRY(AddExtensionStoreCertificates(items, 1, U8("\xAA"), 1));
    TRY(CreateX509GeneralNames(&names.p));
    TRY(AddX509GeneralName(names, 2, U8("a"), 1));  // dNSName
    TRY(AddExtensionOcspCheckFileExtResults(list, 1, U8("t"), 1, 2, &march5, items, names));
    items.release(), names.release();
    TRY(AddExtensionOcspCheckFileExtResults(list, 3, nullptr, 0, 4, nullptr, nullptr, nullptr));
    TRY((der = Get(EncodeExtensionOcspCheckFileExtResults, list.p)).rc);
    back = Own<FreeExtensionOcspCheckFileExtResults>();
    return DecodeExtensionOcspCheckFileExtResults(der.bytes.data(), Size(der.bytes), &back.p);
}

TEST(PrivateExtensions, CheckResultsCarryItemsAndNamesUnder20) {
    Got der;
    Own<FreeExtensionOcspCheckFileExtResults> list;
    EXPECT_GT(ForEachAllocationFailure([&] { return BuildResults(der, list); }), 1);
    EXPECT_EQ(der.hex(), H("30 37 30 29 0A 01 01 0C 01 74 0A 01 02 18 0F 3230323430333035303630373038 5A"
                           "30 08 30 06 0A 01 01 04 01 AA 20 03 82 01 61 30 0A 0A 01 03 0C 00 0A 01 04 30 00"));
    uint32_t resultKind = 0, statusKind = 0, textLen = 4, count = 0, nameKind = 0;
    uint8_t text[4];
    LibraryTime t{};
    StoreItems* items = nullptr;
    GeneralNames* names = nullptr;
    ASSERT_EQ(GetExtensionOcspCheckFileExtResults(list, 0, &resultKind, text, &textLen, &statusKind, &t, &items, &names), 0u);
    EXPECT_EQ(std::vector<uint32_t>({resultKind, statusKind, textLen, text[0]}), std::vector<uint32_t>({1, 2, 1, 't'}));
    EXPECT_TRUE(SameTime(t, {2024, 3, 5, 6, 7, 8}));
    EXPECT_TRUE(GetExtensionStoreCertificatesCount(items, &count) == 0 && count == 1);
    EXPECT_EQ(Get(GetX509GeneralName, names, 0u, &nameKind).hex(), "61");
    textLen = 4;
    ASSERT_EQ(GetExtensionOcspCheckFileExtResults(list, 1, &resultKind, text, &textLen, &statusKind, &t, &items, &names), 0u);
    EXPECT_TRUE(SameTime(t, {}) && names == nullptr && textLen == 0);
    EXPECT_EQ(GetExtensionOcspCheckFileExtResults(list, 2, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 32u);
    EXPECT_EQ(RemoveExtensionOcspCheckFileExtResults(list, 0), 0u);
    EXPECT_TRUE(GetExtensionOcspCheckFileExtResultsCount(list, &count) == 0 && count == 1);
    Own<FreeExtensionStoreCertificates> mine;  // a refused add leaves the items with the caller
    ASSERT_EQ(CreateExtensionStoreCertificates(&mine.p), 0u);
    EXPECT_EQ(AddExtensionOcspCheckFileExtResults(nullptr, 1, U8("t"), 1, 2, nullptr, mine, nullptr), 32u);
}

// ---- attributes ---------------------------------------------------------------------------------

const Bytes kContentType = Packed("1.2.840.113549.1.9.3"), kSigningTime = Packed("1.2.840.113549.1.9.5");
const Bytes kIdData = Hex("06 09 2A864886F70D010701"), kUtcTime = Hex("17 0D 3236303130313030303030305A");
// Attribute elements written out by hand from RFC 5652's ASN.1, in DER order and the other way round.
const std::string kContentTypeAttribute = "30 18 06 09 2A864886F70D010903 31 0B 06 09 2A864886F70D010701";
const std::string kSigningTimeAttribute = "30 1C 06 09 2A864886F70D010905 31 0F 17 0D 3236303130313030303030305A";
const std::string kSorted = "31 38" + kContentTypeAttribute + kSigningTimeAttribute;
const std::string kUnsorted = "31 38" + kSigningTimeAttribute + kContentTypeAttribute;

struct Attributes : Own<FreeRsaAttributes> {
    Attributes() { EXPECT_EQ(CreateRsaAttributes(&p), 0u); }
    uint32_t Add(const Bytes& oid, const Bytes& value) const {
        uint32_t index = 0;
        return AddRsaAttributesAttributeWithValue(p, oid.data(), &index, value.data(), Size(value));
    }
    uint32_t Count() const {
        uint32_t n = 99;
        EXPECT_EQ(GetRsaAttributesAttributesCount(p, &n), 0u);
        return n;
    }
    uint32_t Values(uint32_t i) const {
        uint32_t n = 99;
        EXPECT_EQ(GetRsaAttributesAttributeValuesCount(p, i, &n), 0u);
        return n;
    }
    Bytes Oid(uint32_t i) const { return Get(GetRsaAttributesAttributeOid, p, i).bytes; }
};

// Attributes are written in DER order while the list's flag says so, values always; both read
// back in the order they came.
TEST(Attributes, TwoOrderings) {
    for (uint32_t sorted : {1u, 0u}) {
        Attributes a, values;
        uint32_t index = 7;
        ASSERT_EQ(a.Add(kSigningTime, kUtcTime), 0u);
        ASSERT_EQ(a.Add(kContentType, kIdData), 0u);
        ASSERT_EQ(SetRsaAttributesSorted(a, sorted), 0u);
        EXPECT_EQ(Get(EncodeRsaAttributes, a.p).hex(), H(sorted ? kSorted : kUnsorted));
        EXPECT_EQ(a.Oid(0), kSigningTime);
        ASSERT_EQ(AddRsaAttributesAttribute(values, kContentType.data(), &index), 0u);
        EXPECT_EQ(index, 0u);
        for (const char* v : {"04 01 02", "04 01 01"}) ASSERT_EQ(AddRsaAttributesAttributeValue(values, 0, Hex(v).data(), 3), 0u);
        ASSERT_EQ(SetRsaAttributesSorted(values, sorted), 0u);
        EXPECT_EQ(Get(EncodeRsaAttributes, values.p).hex(), H("31 15 30 13 06 09 2A864886F70D010903 31 06 040101 040102"));
        EXPECT_EQ(Get(GetRsaAttributesAttributeValue, values.p, 0u, 0u).hex(), "04 01 02");
    }
    // A set received out of order reads in its own order and is written in DER order unless told not to.
    const Bytes unsorted = Hex(kUnsorted);
    auto a = Decoded<FreeRsaAttributes>(DecodeRsaAttributes, unsorted);
    EXPECT_EQ(Get(GetRsaAttributesAttributeOid, a.p, 0u).bytes, kSigningTime);
    EXPECT_EQ(Get(EncodeRsaAttributes, a.p).hex(), H(kSorted));
    RsaAttributes* bad = reinterpret_cast<RsaAttributes*>(1);
    EXPECT_NE(DecodeRsaAttributes(Hex("31 05 30 03 06 01").data(), 7, &bad), 0u);
}

// One call removes every match (the walk goes backwards), unlike the extension list's.
TEST(Attributes, RemovalByOidTakesEveryMatchInOneCall) {
    const Bytes &A = kContentType, &B = kSigningTime;
    for (auto [oids, left] : {std::pair{std::vector<Bytes>{A, A, B}, std::vector<Bytes>{B}}, {{A, B, A}, {B}},
                              {{B, A, A}, {B}}, {{A, A}, {}}, {{B}, {B}}}) {
        Attributes a;
        for (const Bytes& oid : oids) ASSERT_EQ(a.Add(oid, Hex("04 01 0B")), 0u);
        EXPECT_EQ(RemoveRsaAttributesAttribute2(a, A.data()), 0u);
        ASSERT_EQ(a.Count(), left.size());
        for (uint32_t i = 0; i < left.size(); ++i) EXPECT_EQ(a.Oid(i), left[i]);
    }
}

// A handle is fresh, cleared, released, or holds attributes; each answers differently.
TEST(Attributes, HandleStatesAndIndexErrors) {
    const Bytes v = Hex("04 01 01");
    uint32_t index = 0, count = 0, n = 16;
    uint8_t buf[16];
    Attributes fresh, cleared, removed, a;
    EXPECT_EQ(FindRsaAttributesAttribute(fresh, kContentType.data(), &index), 322u);
    EXPECT_EQ(Get(EncodeRsaAttributes, fresh.p).hex(), "31 00");
    ASSERT_EQ(cleared.Add(kContentType, v), 0u);
    EXPECT_EQ(ClearRsaAttributes(cleared), 0u);
    EXPECT_EQ(cleared.Count(), 0u);
    EXPECT_EQ(FindRsaAttributesAttribute(cleared, kContentType.data(), &index), 322u);
    ASSERT_EQ(removed.Add(kContentType, v), 0u);
    ASSERT_EQ(RemoveRsaAttributes(removed), 0u);
    EXPECT_EQ(removed.Count(), 0u);
    ASSERT_EQ(AddRsaAttributesAttribute(a, kContentType.data(), &index), 0u);  // no values yet
    ASSERT_EQ(a.Add(kSigningTime, kUtcTime), 0u);
    const struct {
        const char* name;
        uint32_t rc, expected;
    } cases[] = {
        {"find in a released list", FindRsaAttributesAttribute(removed, kContentType.data(), &index), 311},
        {"remove from a released list", RemoveRsaAttributesAttribute2(removed, kContentType.data()), 311},
        {"value to a released list", AddRsaAttributesAttributeValue(removed, 0, v.data(), 3), 311},
        {"values of a released list", GetRsaAttributesAttributeValuesCount(removed, 0, &count), 311},
        {"append a released list", AppendRsaAttributes(removed, fresh), 311},
        {"append to a released list", AppendRsaAttributes(fresh, removed), 311},
        {"oid in a released list", GetRsaAttributesAttributeOid(removed, 0, buf, &n), 32},
        {"encode a released list", EncodeRsaAttributes(removed, nullptr, &n), 311},
        {"clear a released list", ClearRsaAttributes(removed), 0},
        {"oid past the end", GetRsaAttributesAttributeOid(a, 2, buf, &n), 32},
        {"values count past the end", GetRsaAttributesAttributeValuesCount(a, 2, &count), 32},
        {"values count without values", GetRsaAttributesAttributeValuesCount(a, 0, &count), 311},
        {"value without values", GetRsaAttributesAttributeValue(a, 0, 0, buf, &n), 311},
        {"value index past the end", GetRsaAttributesAttributeValue(a, 1, 1, buf, &n), 32},
        {"value to past the end", AddRsaAttributesAttributeValue(a, 2, kIdData.data(), 11), 32},
        {"empty value", AddRsaAttributesAttributeValue(a, 0, kIdData.data(), 0), 32},
        {"null oid", AddRsaAttributesAttribute(a, nullptr, &index), 32},
        {"null out index", AddRsaAttributesAttributeWithValue(a, kContentType.data(), nullptr, kIdData.data(), 11), 32},
        {"null destination", AppendRsaAttributes(nullptr, a), 32},
        {"null source", AppendRsaAttributes(a, nullptr), 0},
        {"encoding a valueless attribute", EncodeRsaAttributes(a, nullptr, &n), 311},
    };
    for (const auto& c : cases) EXPECT_EQ(c.rc, c.expected) << c.name;
    // Adding brings a released list back, with the flag every new list gets.
    ASSERT_EQ(removed.Add(kSigningTime, kUtcTime), 0u);
    ASSERT_EQ(removed.Add(kContentType, kIdData), 0u);
    EXPECT_EQ(Get(EncodeRsaAttributes, removed.p).hex(), H(kSorted));
    EXPECT_EQ(FindRsaAttributesAttribute(removed, kContentType.data(), &index), 0u);
    EXPECT_EQ(index, 1u);
}

TEST(Attributes, AppendCopiesDeeplyAndSingleAttributes) {
    Attributes dst, src;
    uint32_t values = 0;
    ASSERT_EQ(dst.Add(kSigningTime, kUtcTime), 0u);
    ASSERT_EQ(src.Add(kContentType, kIdData), 0u);
    ASSERT_EQ(AddRsaAttributesAttributeValue(src, 0, kUtcTime.data(), Size(kUtcTime)), 0u);
    ASSERT_EQ(AppendRsaAttributes(dst, src), 0u);
    auto back = Decoded<FreeRsaAttributes>(DecodeRsaAttributes, Get(EncodeRsaAttributes, src.p).bytes);
    ASSERT_EQ(ClearRsaAttributes(src), 0u);  // the copies share nothing with the source
    EXPECT_EQ(std::vector<uint32_t>({dst.Count(), dst.Values(1)}), std::vector<uint32_t>({2, 2}));
    EXPECT_EQ(dst.Oid(1), kContentType);
    ASSERT_EQ(AppendRsaAttributes(back, back), 0u);  // onto itself: what it held at the start
    EXPECT_TRUE(GetRsaAttributesAttributesCount(back, &values) == 0 && values == 2);
    EXPECT_EQ(AppendRsaAttributes(dst, src), 0u);  // an empty source
    EXPECT_EQ(dst.Count(), 2u);

    Own<FreeRsaAttribute> one;
    RsaAttribute* none = reinterpret_cast<RsaAttribute*>(1);
    EXPECT_EQ(CreateRsaAttribute(&none, kContentType.data(), nullptr, 0), 32u);
    EXPECT_EQ(none, nullptr);
    ASSERT_EQ(CreateRsaAttribute(&one.p, kContentType.data(), kIdData.data(), Size(kIdData)), 0u);
    ASSERT_EQ(AddRsaAttributeValue(one, kUtcTime.data(), Size(kUtcTime)), 0u);
    EXPECT_EQ(Get(GetRsaAttributeOid, one.p).bytes, kContentType);
    EXPECT_TRUE(GetRsaAttributeValuesCount(one, &values) == 0 && values == 2);
    EXPECT_EQ(Get(GetRsaAttributeValue, one.p, 1u).bytes, kUtcTime);
    EXPECT_EQ(Get(GetRsaAttributeValue, one.p, 2u).rc, 32u);
}

// The scalar attribute values are the generic codecs with a fixed type: one row per type and its
// DER, every codec of the type through the same round trip.
TEST(AttributeValues, ScalarsRoundTripWithTheirType) {
    using Octets = uint32_t (*)(const uint8_t*, uint32_t, uint8_t*, uint32_t*);
    using OidIn = uint32_t (*)(const uint8_t*, uint8_t*, uint32_t*);
    using IntIn = uint32_t (*)(int32_t, uint8_t*, uint32_t*);
    using IntOut = uint32_t (*)(const uint8_t*, uint32_t, int32_t*);
    const Bytes hash = Hex("01 02 03"), oid = Packed("1.2.840.113549.1.7.1"), text = Text("Токен 7");
    const std::string octets = "04 03 01 02 03", utf8 = "0C 0C D0 A2 D0 BE D0 BA D0 B5 D0 BD 20 37";
    for (auto [encode, decode, in, der] : {
             std::tuple<Octets, Octets, const Bytes*, std::string>{EncodeRsaAttributeMessageDigestValue,
                                                                   DecodeRsaAttributeMessageDigestValue, &hash, octets},
             {EncodeRsaAttributeTemplateDigestValue, DecodeRsaAttributeTemplateDigestValue, &hash, octets},
             {EncodeRsaAttributeKestrunePubKeyValue, DecodeRsaAttributeKestrunePubKeyValue, &hash, octets},
             {EncodeRsaAttributeX509CertificateValue, DecodeRsaAttributeX509CertificateValue, &hash, octets},
             {EncodeRsaAttributeCyksCertificateValue, DecodeRsaAttributeCyksCertificateValue, &hash, octets},
             {EncodeRsaAttributeTokenSerialNumberValue, DecodeRsaAttributeTokenSerialNumberValue, &text, utf8}}) {
        EXPECT_EQ(Get(encode, in->data(), Size(*in)).hex(), H(der));
        EXPECT_EQ(Get(decode, Hex(der).data(), Size(Hex(der))).bytes, *in) << der;
    }
    for (auto [encode, decode] : {std::pair<OidIn, Octets>{EncodeRsaAttributeContentTypeValue, DecodeRsaAttributeContentTypeValue},
                                  {EncodeRsaAttributeSecurityTokenTypeValue, DecodeRsaAttributeSecurityTokenTypeValue},
                                  {EncodeRsaAttributeChannelCspClassValue, DecodeRsaAttributeChannelCspClassValue},
                                  {EncodeRsaAttributeRequestCertificateStatusValue, DecodeRsaAttributeRequestCertificateStatusValue},
                                  {EncodeRsaAttributeSignatureConfirmationTypeValue, DecodeRsaAttributeSignatureConfirmationTypeValue},
                                  {EncodeRsaAttributeUsageValue, DecodeRsaAttributeUsageValue}}) {
        const Bytes der = Get(encode, oid.data()).bytes;
        EXPECT_EQ(ToHex(der), H("06 09 2A 86 48 86 F7 0D 01 07 01"));
        EXPECT_EQ(Get(decode, der.data(), Size(der)).bytes, oid);
    }
    for (auto [encode, decode] : {std::pair<IntIn, IntOut>{EncodeRsaAttributePacketDigestNumberValue, DecodeRsaAttributePacketDigestNumberValue},
                                  {EncodeRsaAttributePacketDigestCountValue, DecodeRsaAttributePacketDigestCountValue},
                                  {EncodeRsaAttributeTokenSignatureNumberValue, DecodeRsaAttributeTokenSignatureNumberValue},
                                  {EncodeRsaAttributePinNumberValue, DecodeRsaAttributePinNumberValue},
                                  {EncodeRsaAttributeRequestCertificateTypeValue, DecodeRsaAttributeRequestCertificateTypeValue},
                                  {EncodeRsaAttributeValidityPeriodValue, DecodeRsaAttributeValidityPeriodValue}}) {
        for (auto [number, der] : {std::pair{0, "02 01 00"}, {-129, "02 02 FF 7F"}, {0x7FFFFFFF, "02 04 7F FF FF FF"}}) {
            int32_t back = 7;
            EXPECT_EQ(Get(encode, number).hex(), H(der));
            EXPECT_EQ(decode(Hex(der).data(), Size(Hex(der)), &back), TV_OK);
            EXPECT_EQ(back, number);
        }
        EXPECT_EQ(decode(Hex("02 01 00").data(), 3, nullptr), 32u);
    }
    const LibraryTime t{2049, 12, 31, 23, 59, 58};
    const Bytes utc = Get(EncodeRsaAttributeSigningTimeValue, &t).bytes;
    LibraryTime back{};
    EXPECT_EQ(ToHex(utc), H("17 0D") + " " + ToHex(Text("491231235958Z")));
    EXPECT_EQ(DecodeRsaAttributeSigningTimeValue(utc.data(), Size(utc), &back), TV_OK);
    EXPECT_TRUE(SameTime(back, t));
}

}  // namespace
