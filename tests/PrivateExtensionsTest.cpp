// Private extension values: exact encodings (including the identifiers 03/04/05, 20 and B0 that
// peers expect in place of the usual ones), round trips, the store and check-result lists, and
// every cleanup path under allocation failure.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/extensions/GeneralObjects.h"

using namespace tvtest;


namespace {

using Encoder = Writer;

const uint8_t* P(const char* s) { return reinterpret_cast<const uint8_t*>(s); }

const LibraryTime kMarch5{2024, 3, 5, 6, 7, 8};
const std::string kMarch5Der = "18 0F 3230323430333035303630373038 5A";  // "20240305060708Z"
const uint8_t kParentOid[] = {3, 0x2A, 0x85, 0x03};                          // 1.2.643


TEST(PrivateExtensions, DescriptorsDeviateOnlyWhereThePeersDo) {
    // The lint refuses universal-class retagging in general; here it is the contract, exactly at
    // text3, text4, kind5 of OcspCheckFile and the names of an ExtResult.
    const struct {
        const Asn1Descriptor* d;
        const char* name;
        std::vector<std::string> expected;
    } cases[] = {
        {&tv::desc::kStoreItems, "StoreItems", {}},
        {&tv::desc::kOcspCheckFile, "OcspCheckFile",
         {"OcspCheckFile/4: a tag with the universal class", "OcspCheckFile/5: a tag with the universal class",
          "OcspCheckFile/6: a tag with the universal class"}},
        {&tv::desc::kExtResults, "ExtResults", {"ExtResults/0/5: a tag with the universal class"}},
        {&tv::desc::kCryptoNetRegistry, "CryptoNetRegistry", {}},
        {&tv::desc::kOcspCheckTime2, "OcspCheckTime2", {}},
        {&tv::desc::kCodedText, "CodedText", {}},
        {&tv::desc::kRequestBlockingDate, "RequestBlockingDate", {}},
    };
    for (const auto& c : cases) EXPECT_EQ(LintDescriptor(c.d, c.name), c.expected) << c.name;
}

TEST(PrivateExtensions, EncodesExactBytes) {
    const struct {
        const char* name;
        Encoder encode;
        std::string hex;
    } cases[] = {
        {"time2 without time", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckTime2(1, nullptr, o, n); },
         "B0 03 0A 01 01"},
        {"time2 with time", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckTime2(2, &kMarch5, o, n); },
         "B0 14 0A 01 02" + kMarch5Der},
        {"check file, hash and text3",
         [](uint8_t* o, uint32_t* n) {
             return EncodeExtensionOcspCheckFile(P("\x01\x02"), 2, nullptr, 0, nullptr, 0, 0, 0, P("A"), 1, nullptr, 0,
                                                 0, 0, o, n);
         },
         "30 07 04 02 01 02 03 01 41"},
        {"check file, every field",
         [](uint8_t* o, uint32_t* n) {
             return EncodeExtensionOcspCheckFile(P("\xAA"), 1, P("\xBB"), 1, P("\xCC"), 1, 1, 1, P("A"), 1, P("B"), 1,
                                                 1, 2, o, n);
         },
         "30 15 04 01 AA 80 01 BB 81 01 CC 0A 01 01 03 01 41 04 01 42 05 01 02"},
        {"key storage without text", [](uint8_t* o, uint32_t* n) { return EncodeExtensionKeyStorage(7, nullptr, 0, o, n); },
         "30 03 0A 01 07"},
        {"extended result, sign octet",
         [](uint8_t* o, uint32_t* n) { return EncodeExtensionExtendedResult(0x80, P("ok"), 2, o, n); },
         "30 08 0A 02 00 80 0C 02 6F 6B"},
        {"blocking date, none",
         [](uint8_t* o, uint32_t* n) { return EncodeExtensionRequestBlockingDate(nullptr, nullptr, o, n); }, "30 00"},
        {"blocking date, until only",
         [](uint8_t* o, uint32_t* n) { return EncodeExtensionRequestBlockingDate(nullptr, &kMarch5, o, n); },
         "30 11 81" + kMarch5Der.substr(2)},
        {"registry without kind",
         [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckCryptoNetRegistry(P("a"), 1, P("b"), 1, 0, 9, o, n); },
         "30 06 0C 01 61 0C 01 62"},
        {"registry with kind",
         [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckCryptoNetRegistry(P("a"), 1, P(""), 0, 1, 9, o, n); },
         "30 08 0C 01 61 0C 00 0A 01 09"},
        {"kestrune id", [](uint8_t* o, uint32_t* n) { return EncodeExtensionKestruneKeyIdentifier(P("AB"), 2, o, n); },
         "0C 02 41 42"},
        {"osb code", [](uint8_t* o, uint32_t* n) { return EncodeExtensionRelatedOsbKod(P("12"), 2, o, n); }, "13 02 31 32"},
        {"documents", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspRequestDocuments(0x80, o, n); },
         "02 02 00 80"},
        {"certificates, all bits", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspRequestCertificates(0xFFFFFFFF, o, n); },
         "0A 01 FF"},
        {"key contexts", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspRequestPrivateKeyContexts(0x12345, o, n); },
         "0A 03 01 23 45"},
        {"parent", [](uint8_t* o, uint32_t* n) { return EncodeExtensionParentAS(kParentOid, o, n); }, "06 03 2A 85 03"},
        {"check time", [](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckTime(&kMarch5, o, n); }, kMarch5Der},
    };
    for (const auto& c : cases) EXPECT_EQ(ToHex(OldSized(c.encode)), ToHex(Hex(c.hex))) << c.name;
}

TEST(PrivateExtensions, StructuresReadBackWhatWasWritten) {
    Bytes in = Hex("30 15 04 01 AA 80 01 BB 81 01 CC 0A 01 01 03 01 41 04 01 42 05 01 02");
    uint8_t b[5][8];
    uint32_t n[5] = {8, 8, 8, 8, 8}, kindPresent = 9, kind = 9, kind5Present = 9, kind5 = 9;
    ASSERT_EQ(DecodeExtensionOcspCheckFile(in.data(), uint32_t(in.size()), b[0], &n[0], b[1], &n[1], b[2], &n[2],
                                           &kindPresent, &kind, b[3], &n[3], b[4], &n[4], &kind5Present, &kind5), 0u);
    EXPECT_EQ(ToHex(b[0], n[0]) + ToHex(b[1], n[1]) + ToHex(b[2], n[2]), "AABBCC");
    EXPECT_EQ(std::string(reinterpret_cast<char*>(b[3]), n[3]) + std::string(reinterpret_cast<char*>(b[4]), n[4]), "AB");
    EXPECT_EQ(kindPresent * 100 + kind * 10 + kind5Present, 111u);
    EXPECT_EQ(kind5, 2u);

    // Absent optional parts: length 0, flags 0; a short buffer still stores every size.
    in = Hex("30 07 04 02 01 02 03 01 41");
    uint32_t shortLen[5] = {1, 0, 0, 0, 0};
    EXPECT_EQ(DecodeExtensionOcspCheckFile(in.data(), uint32_t(in.size()), b[0], &shortLen[0], b[1], &shortLen[1], b[2],
                                           &shortLen[2], &kindPresent, &kind, nullptr, &shortLen[3], b[4], &shortLen[4],
                                           &kind5Present, &kind5), uint32_t{TV_ERR_BUFFER_TOO_SMALL});
    EXPECT_EQ(std::vector<uint32_t>(shortLen, shortLen + 5), (std::vector<uint32_t>{2, 0, 0, 1, 0}));
    EXPECT_EQ(kindPresent + kind5Present, 0u);

    // B0 is the only identifier OcspCheckTime2 answers to; its time is absent or read.
    uint32_t timeKind = 0;
    LibraryTime t{1, 1, 1, 1, 1, 1};
    in = Hex("B0 03 0A 01 01");
    ASSERT_EQ(DecodeExtensionOcspCheckTime2(in.data(), uint32_t(in.size()), &timeKind, &t), 0u);
    EXPECT_TRUE(timeKind == 1 && SameTime(t, LibraryTime{}));
    in = Hex("B0 14 0A 01 02" + kMarch5Der);
    ASSERT_EQ(DecodeExtensionOcspCheckTime2(in.data(), uint32_t(in.size()), &timeKind, &t), 0u);
    EXPECT_TRUE(timeKind == 2 && SameTime(t, kMarch5));
    in = Hex("30 03 0A 01 01");
    EXPECT_NE(DecodeExtensionOcspCheckTime2(in.data(), uint32_t(in.size()), &timeKind, &t), 0u);

    // Blocking dates: both absent give two null times.
    LibraryTime from{1, 1, 1, 1, 1, 1}, until = kMarch5;
    in = Hex("30 00");
    ASSERT_EQ(DecodeExtensionRequestBlockingDate(in.data(), uint32_t(in.size()), &from, &until), 0u);
    EXPECT_TRUE(SameTime(from, LibraryTime{}) && SameTime(until, LibraryTime{}));
    in = Hex("30 11 80" + kMarch5Der.substr(2));
    ASSERT_EQ(DecodeExtensionRequestBlockingDate(in.data(), uint32_t(in.size()), &from, &until), 0u);
    EXPECT_TRUE(SameTime(from, kMarch5) && SameTime(until, LibraryTime{}));

    uint32_t code = 0, textLen = 8;
    uint8_t text[8];
    in = Hex("30 08 0A 02 00 80 0C 02 6F 6B");
    ASSERT_EQ(DecodeExtensionExtendedResult(in.data(), uint32_t(in.size()), &code, text, &textLen), 0u);
    EXPECT_EQ(code, 0x80u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(text), textLen), "ok");
    in = Hex("30 03 0A 01 07");
    ASSERT_EQ(DecodeExtensionKeyStorage(in.data(), uint32_t(in.size()), &code, text, &textLen), 0u);
    EXPECT_EQ(code * 100 + textLen, 700u);

    uint32_t len1 = 8, len2 = 8, present = 0;
    in = Hex("30 08 0C 01 61 0C 00 0A 01 09");
    ASSERT_EQ(DecodeExtensionOcspCheckCryptoNetRegistry(in.data(), uint32_t(in.size()), b[0], &len1, b[1], &len2,
                                                        &present, &kind), 0u);
    EXPECT_EQ(len1 * 1000 + len2 * 100 + present * 10 + kind, 1019u);
}

TEST(PrivateExtensions, ScalarsRoundTripAndRefuse) {
    uint8_t buf[16];
    uint32_t len = sizeof buf, number = 0;
    Bytes in = Hex("0C 02 41 42");
    ASSERT_EQ(DecodeExtensionKestruneKeyIdentifier(in.data(), uint32_t(in.size()), buf, &len), 0u);
    EXPECT_EQ(ToHex(buf, len), "41 42");
    len = sizeof buf;
    EXPECT_NE(DecodeExtensionRelatedOsbKod(in.data(), uint32_t(in.size()), buf, &len), 0u);  // the tag is checked
    for (uint32_t value : {0u, 1u, 0x7Fu, 0x80u, 0xFFFFu, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Bytes enumerated = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspRequestCertificates(value, o, n); });
        ASSERT_EQ(DecodeExtensionOcspRequestCertificates(enumerated.data(), uint32_t(enumerated.size()), &number), 0u);
        EXPECT_EQ(number, value);
        Bytes integer = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspRequestDocuments(value, o, n); });
        ASSERT_EQ(DecodeExtensionOcspRequestDocuments(integer.data(), uint32_t(integer.size()), &number), 0u);
        EXPECT_EQ(number, value);
    }
    in = Hex("0A 05 01 00 00 00 00");
    EXPECT_NE(DecodeExtensionOcspRequestPrivateKeyContexts(in.data(), uint32_t(in.size()), &number), 0u);

    in = Hex("06 03 2A 85 03");
    len = sizeof buf;
    ASSERT_EQ(DecodeExtensionParentAS(in.data(), uint32_t(in.size()), buf, &len), 0u);
    EXPECT_EQ(ToHex(buf, len), ToHex(kParentOid, sizeof kParentOid));
    LibraryTime t{};
    in = Hex(kMarch5Der);
    ASSERT_EQ(DecodeExtensionOcspCheckTime(in.data(), uint32_t(in.size()), &t), 0u);
    EXPECT_TRUE(SameTime(t, kMarch5));

    X509Name* name = nullptr;
    in = Hex("30 0F 31 0D 30 0B 06 03 55 04 03 0C 04 54 65 73 74");  // CN=Test
    ASSERT_EQ(DecodeExtensionOwnerInformation(in.data(), uint32_t(in.size()), &name), 0u);
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionOwnerInformation(name, o, n); })), ToHex(in));
    FreeX509Name(name);

    // Required arguments and empty input.
    EXPECT_EQ(EncodeExtensionOcspCheckFile(nullptr, 0, nullptr, 0, nullptr, 0, 0, 0, nullptr, 0, nullptr, 0, 0, 0, buf, &len), 32u);
    EXPECT_EQ(EncodeExtensionParentAS(kParentOid, buf, nullptr), 32u);
    // An empty text is a value like any other; only a null pointer with octets to read is refused.
    EXPECT_EQ(EncodeExtensionOrganizationCode(nullptr, 3, buf, &len), 32u);
    EXPECT_EQ(EncodeExtensionOwnerInformation(nullptr, buf, &len), 32u);
    EXPECT_EQ(DecodeExtensionKeyStorage(in.data(), 0, &number, buf, &len), 32u);
    EXPECT_EQ(DecodeExtensionClockNumber(in.data(), 0, buf, &len), 32u);
}

// The three store lists are one implementation behind three name sets.
struct StoreApi {
    const char* name;
    uint32_t (*create)(StoreItems**);
    uint32_t (*add)(StoreItems*, uint32_t, const uint8_t*, uint32_t);
    uint32_t (*get)(const StoreItems*, uint32_t, uint32_t*, uint8_t*, uint32_t*);
    uint32_t (*remove)(StoreItems*, uint32_t);
    uint32_t (*free)(StoreItems*);
    uint32_t (*count)(const StoreItems*, uint32_t*);
    uint32_t (*encode)(const StoreItems*, uint8_t*, uint32_t*);
    uint32_t (*decode)(const uint8_t*, uint32_t, StoreItems**);
};

#define STORE_API(Name)                                                                                          \
    StoreApi{#Name, CreateExtension##Name, AddExtension##Name, GetExtension##Name, RemoveExtension##Name,         \
             FreeExtension##Name, GetExtension##Name##Count, EncodeExtension##Name, DecodeExtension##Name}
const StoreApi kStores[] = {STORE_API(StoreCertificates), STORE_API(StorePrivateKeyContexts),
                            STORE_API(StoreOcspRequestDocuments)};

TEST(PrivateExtensions, StoreListsBuildEncodeDecodeRemove) {
    const std::string twoItems = "30 11 30 07 0A 01 01 04 02 AA BB 30 06 0A 01 02 04 01 CC";
    for (const StoreApi& api : kStores) {
        SCOPED_TRACE(api.name);
        StoreItems* list = nullptr;
        ASSERT_EQ(api.create(&list), 0u);
        ASSERT_EQ(api.add(list, 1, P("\xAA\xBB"), 2), 0u);
        ASSERT_EQ(api.add(list, 2, P("\xCC"), 1), 0u);
        EXPECT_EQ(api.add(nullptr, 1, P("x"), 1), 32u);
        EXPECT_EQ(api.add(list, 1, nullptr, 0), 32u);
        Bytes der = OldSized([&](uint8_t* o, uint32_t* n) { return api.encode(list, o, n); });
        EXPECT_EQ(ToHex(der), ToHex(Hex(twoItems)));
        api.free(list);

        ASSERT_EQ(api.decode(der.data(), uint32_t(der.size()), &list), 0u);
        uint32_t count = 0, kind = 0, len = 0;
        EXPECT_EQ(api.count(list, &count), 0u);
        EXPECT_EQ(count, 2u);
        EXPECT_EQ(api.remove(list, 2), 32u);
        EXPECT_EQ(api.remove(list, 0), 0u);
        EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return api.get(list, 0, &kind, o, n); })), "CC");
        EXPECT_EQ(kind, 2u);
        EXPECT_EQ(api.get(list, 1, &kind, nullptr, &len), 32u);
        EXPECT_EQ(api.decode(der.data(), 0, &list), 32u);
        EXPECT_EQ(api.free(list), 0u);
        EXPECT_EQ(api.free(nullptr), 0u);
    }
}

// Builds the two-result list of the test below; the caller's items and names are freed on failure.
uint32_t BuildResults(OcspCheckFileExtResults** out) {
    OcspCheckFileExtResults* list = nullptr;
    StoreItems* items = nullptr;
    GeneralNames* names = nullptr;
    uint32_t rc = CreateExtensionOcspCheckFileExtResults(&list);
    if (!rc) rc = CreateExtensionStoreCertificates(&items);
    if (!rc) rc = AddExtensionStoreCertificates(items, 1, P("\xAA"), 1);
    if (!rc) rc = CreateX509GeneralNames(&names);
    if (!rc) rc = AddX509GeneralName(names, 2, P("a"), 1);  // dNSName
    if (!rc) rc = AddExtensionOcspCheckFileExtResults(list, 1, P("t"), 1, 2, &kMarch5, items, names);
    if (rc) {
        FreeExtensionStoreCertificates(items);
        FreeX509GeneralNames(names);
    }
    if (!rc) rc = AddExtensionOcspCheckFileExtResults(list, 3, nullptr, 0, 4, nullptr, nullptr, nullptr);
    if (rc) FreeExtensionOcspCheckFileExtResults(list);
    else *out = list;
    return rc;
}

const std::string kTwoResults = "30 37 30 29 0A 01 01 0C 01 74 0A 01 02" + kMarch5Der +
                                "30 08 30 06 0A 01 01 04 01 AA 20 03 82 01 61"
                                "30 0A 0A 01 03 0C 00 0A 01 04 30 00";

TEST(PrivateExtensions, CheckResultsCarryItemsAndNamesUnder20) {
    OcspCheckFileExtResults* list = nullptr;
    ASSERT_EQ(BuildResults(&list), 0u);
    Bytes der = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeExtensionOcspCheckFileExtResults(list, o, n); });
    EXPECT_EQ(ToHex(der), ToHex(Hex(kTwoResults)));
    FreeExtensionOcspCheckFileExtResults(list);

    ASSERT_EQ(DecodeExtensionOcspCheckFileExtResults(der.data(), uint32_t(der.size()), &list), 0u);
    uint32_t resultKind = 0, statusKind = 0, textLen = 4, count = 0;
    uint8_t text[4];
    LibraryTime t{};
    StoreItems* items = nullptr;
    GeneralNames* names = nullptr;
    ASSERT_EQ(GetExtensionOcspCheckFileExtResults(list, 0, &resultKind, text, &textLen, &statusKind, &t, &items, &names), 0u);
    EXPECT_EQ(resultKind * 10 + statusKind, 12u);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(text), textLen), "t");
    EXPECT_TRUE(SameTime(t, kMarch5));
    ASSERT_TRUE(items && names);
    EXPECT_EQ(GetExtensionStoreCertificatesCount(items, &count), 0u);
    EXPECT_EQ(count, 1u);
    uint32_t nameKind = 0, nameLen = 4;
    ASSERT_EQ(GetX509GeneralName(names, 0, &nameKind, text, &nameLen), 0u);
    EXPECT_EQ(nameKind * 10 + nameLen, 21u);

    textLen = 4;
    ASSERT_EQ(GetExtensionOcspCheckFileExtResults(list, 1, &resultKind, text, &textLen, &statusKind, &t, &items, &names), 0u);
    EXPECT_TRUE(SameTime(t, LibraryTime{}) && names == nullptr && textLen == 0);
    EXPECT_EQ(GetExtensionStoreCertificatesCount(items, &count), 0u);
    EXPECT_EQ(count, 0u);

    EXPECT_EQ(GetExtensionOcspCheckFileExtResults(list, 2, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 32u);
    EXPECT_EQ(RemoveExtensionOcspCheckFileExtResults(list, 0), 0u);
    EXPECT_EQ(GetExtensionOcspCheckFileExtResultsCount(list, &count), 0u);
    EXPECT_EQ(count, 1u);
    FreeExtensionOcspCheckFileExtResults(list);

    // A refused add leaves the items with the caller (freed here, once).
    StoreItems* mine = nullptr;
    ASSERT_EQ(CreateExtensionStoreCertificates(&mine), 0u);
    EXPECT_EQ(AddExtensionOcspCheckFileExtResults(nullptr, 1, P("t"), 1, 2, nullptr, mine, nullptr), 32u);
    FreeExtensionStoreCertificates(mine);
}

TEST(PrivateExtensions, EveryAllocationFailureIsCleanedUp) {
    EXPECT_GT(ForEachAllocationFailure([] {
                  OcspCheckFileExtResults* list = nullptr;
                  if (uint32_t rc = BuildResults(&list)) return rc;
                  uint32_t len = 0;
                  uint32_t rc = EncodeExtensionOcspCheckFileExtResults(list, nullptr, &len);
                  Bytes der(len);
                  if (!rc) rc = EncodeExtensionOcspCheckFileExtResults(list, der.data(), &len);
                  FreeExtensionOcspCheckFileExtResults(list);
                  if (!rc) rc = DecodeExtensionOcspCheckFileExtResults(der.data(), len, &list);
                  if (!rc) FreeExtensionOcspCheckFileExtResults(list);
                  return rc;
              }),
              0);
    EXPECT_GT(ForEachAllocationFailure([] {
                  uint8_t out[64], b[8];
                  uint32_t len = sizeof out, n[5] = {8, 8, 8, 8, 8}, p1, k1, p2, k2;
                  uint32_t rc = EncodeExtensionOcspCheckFile(P("\xAA"), 1, P("\xBB"), 1, P("\xCC"), 1, 1, 1, P("A"), 1,
                                                             P("B"), 1, 1, 2, out, &len);
                  if (!rc)
                      rc = DecodeExtensionOcspCheckFile(out, len, b, &n[0], b, &n[1], b, &n[2], &p1, &k1, b, &n[3], b,
                                                        &n[4], &p2, &k2);
                  uint32_t len2 = sizeof out;
                  if (!rc) rc = EncodeExtensionOcspCheckTime2(2, &kMarch5, out, &len2);
                  LibraryTime t;
                  if (!rc) rc = DecodeExtensionOcspCheckTime2(out, len2, &k1, &t);
                  return rc;
              }),
              0);
}

}  // namespace
