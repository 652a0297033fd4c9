// Value trees, leaves, identifiers and lists: creation, copy and comparison rules, and the leaf
// conversions callers exchange values through.
#include <gtest/gtest.h>

#include <cstring>

#include "TestUtil.h"
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

using namespace tvtest;
using namespace tv;

namespace {

constinit const Asn1Primitive kZero{ASN1_INTEGER, 1, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x00"))};

// Holder ::= SEQUENCE { v INTEGER DEFAULT 0, n INTEGER, c CHOICE {...}, a ANY, l SEQUENCE OF INTEGER,
//                       o OCTET STRING OPTIONAL }
constexpr Asn1Descriptor kDefaultInt = Optional(desc::kInteger, &kZero);
constexpr Asn1Descriptor kOptOctets = Optional(desc::kOctetString);
constexpr Asn1Descriptor kIntList = SequenceOf<&desc::kInteger>();
enum class AltSlot : uint32_t { kAltInt, kAltOctets, kCount };
constexpr auto kAltInt = AltSlot::kAltInt;
constexpr auto kAltOctets = AltSlot::kAltOctets;
constexpr auto kAltParts = Slots<AltSlot>({{kAltInt, &desc::kInteger}, {kAltOctets, &desc::kOctetString}});
constexpr Asn1Descriptor kAlt = Choice(kAltParts);
enum class HolderSlot : uint32_t { kV, kN, kC, kA, kL, kO, kCount };
constexpr auto kV = HolderSlot::kV;
constexpr auto kN = HolderSlot::kN;
constexpr auto kC = HolderSlot::kC;
constexpr auto kA = HolderSlot::kA;
constexpr auto kL = HolderSlot::kL;
constexpr auto kO = HolderSlot::kO;
constexpr auto kHolderParts = Slots<HolderSlot>({
    {kV, &kDefaultInt},       // v INTEGER DEFAULT 0
    {kN, &desc::kInteger},    // n INTEGER
    {kC, &kAlt},              // c CHOICE { INTEGER, OCTET STRING }
    {kA, &desc::kAny},        // a ANY
    {kL, &kIntList},          // l SEQUENCE OF INTEGER
    {kO, &kOptOctets},        // o OCTET STRING OPTIONAL
});
constexpr Asn1Descriptor kHolder = Sequence(kHolderParts);

TEST(Create, LeavesFlagAndOptionals) {
    for (uint32_t leaves : {0u, 1u}) {
        SCOPED_TRACE(leaves);
        Tree t(&kHolder);
        ASSERT_EQ(CreateAsn1Object(&kHolder, &t.v, leaves), 0u);
        auto** s = t.as<void*>();
        ASSERT_NE(Slot(s, kV), nullptr);  // DEFAULT: a copy of the default, whatever the flag
        EXPECT_EQ(static_cast<Asn1Primitive*>(Slot(s, kV))->content[0], 0);
        EXPECT_EQ(Slot(s, kN) != nullptr, leaves == 1);  // primitive slots only with leaves
        ASSERT_NE(Slot(s, kC), nullptr);  // CHOICE, ANY and lists always
        EXPECT_EQ(static_cast<Asn1ChoiceValue*>(Slot(s, kC))->index, 0);
        EXPECT_EQ(static_cast<Asn1ChoiceValue*>(Slot(s, kC))->value, nullptr);
        EXPECT_NE(Slot(s, kA), nullptr);
        ASSERT_NE(Slot(s, kL), nullptr);
        EXPECT_EQ(static_cast<Asn1List*>(Slot(s, kL))->sorted, 1u);
        EXPECT_EQ(Slot(s, kO), nullptr);  // OPTIONAL without default stays absent
    }
    void* v = nullptr;
    EXPECT_EQ(CreateAsn1Object(&kOptOctets, &v, 1), 0u);
    EXPECT_EQ(v, nullptr);
    EXPECT_EQ(CreateAsn1Object(nullptr, &v, 1), 32u);
    Asn1Descriptor bogus = desc::kInteger;
    bogus.typeCode = 7;
    EXPECT_EQ(CreateAsn1Object(&bogus, &v, 1), 300u);
}

TEST(Create, OptionalSequence) {
    constexpr Asn1Descriptor kOptHolder = Optional(kHolder);
    Tree t(&kOptHolder);
    ASSERT_EQ(CreateAsn1Object(&kOptHolder, &t.v, 1), 0u);
    EXPECT_EQ(t.v, nullptr);
    ASSERT_EQ(CreateOptionalAsn1Sequence(&kOptHolder, &t.v, 1), 0u);
    ASSERT_NE(t.v, nullptr);
    EXPECT_NE(Slot(t.as<void*>(), kN), nullptr);
    void* v = nullptr;
    EXPECT_EQ(CreateOptionalAsn1Sequence(&kHolder, &v, 1), 32u);            // not OPTIONAL
    EXPECT_EQ(CreateOptionalAsn1Sequence(&kOptOctets, &v, 1), 32u);         // not a SEQUENCE
}

TEST(Compare, KindsAndRefusals) {
    Asn1Primitive a{ASN1_INTEGER, 1, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x05"))};
    Asn1Primitive b{99, 1, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x05"))};  // word not compared
    Asn1Primitive c{ASN1_INTEGER, 2, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x05\x00"))};
    uint32_t eq = 9;
    EXPECT_EQ(CompareAsn1Objects(&desc::kInteger, &a, &b, &eq), 0u);
    EXPECT_EQ(eq, 1u);
    EXPECT_EQ(CompareAsn1Objects(&desc::kInteger, &a, &c, &eq), 0u);
    EXPECT_EQ(eq, 0u);
    EXPECT_EQ(CompareAsn1Objects(&desc::kInteger, nullptr, nullptr, &eq), 0u);
    EXPECT_EQ(eq, 1u);
    EXPECT_EQ(CompareAsn1Objects(&desc::kInteger, &a, nullptr, &eq), 0u);
    EXPECT_EQ(eq, 0u);
    Asn1BitStringValue x{0, 1, a.content}, y{1, 1, a.content};
    EXPECT_EQ(CompareAsn1Objects(&desc::kBitString, &x, &y, &eq), 0u);
    EXPECT_EQ(eq, 0u);  // unused bits take part
    for (const Asn1Descriptor* d : {&desc::kNull, &desc::kEnumerated, &kAlt, &desc::kAny}) {
        SCOPED_TRACE(d->typeCode);
        EXPECT_EQ(CompareAsn1Objects(d, &a, &a, &eq), 300u);
        EXPECT_EQ(CompareAsn1Objects(d, nullptr, nullptr, &eq), 0u);  // two absent values are equal
        EXPECT_EQ(eq, 1u);
    }
    // A structure holding a CHOICE cannot be compared; one with it absent-equal still fails on it.
    Tree h(&kHolder);
    ASSERT_EQ(CreateAsn1Object(&kHolder, &h.v, 1), 0u);
    EXPECT_EQ(CompareAsn1Objects(&kHolder, h.v, h.v, &eq), 300u);
}

TEST(Compare, ListsInOrder) {
    Tree a(&kIntList), b(&kIntList);
    ASSERT_EQ(Decode(Hex("30 06 02 01 01 02 01 02"), a), 0u);
    ASSERT_EQ(Decode(Hex("30 06 02 01 02 02 01 01"), b), 0u);
    uint32_t eq = 9;
    EXPECT_EQ(CompareAsn1Objects(&kIntList, a.v, b.v, &eq), 0u);
    EXPECT_EQ(eq, 0u);  // order matters, for SET OF too
    EXPECT_EQ(CompareAsn1Objects(&kIntList, a.v, a.v, &eq), 0u);
    EXPECT_EQ(eq, 1u);
}

TEST(Copy, DeepAndRefusals) {
    Tree t(&kHolder);
    ASSERT_EQ(Decode(Hex("30 13 02 01 09 02 01 05 04 01 AA 05 00 30 03 02 01 07 04 01 BB"), t), 0u);
    Tree copy(&kHolder);
    ASSERT_EQ(CopyValue(&kHolder, t.v, &copy.v), 0u);
    EXPECT_EQ(ToHex(Encode(copy.v, &kHolder)), ToHex(Encode(t.v, &kHolder)));
    // Deep: the copy owns its leaves.
    EXPECT_NE(Slot(copy.as<void*>(), kN), Slot(t.as<void*>(), kN));
    EXPECT_NE(static_cast<Asn1Primitive*>(Slot(copy.as<void*>(), kN))->content,
              static_cast<Asn1Primitive*>(Slot(t.as<void*>(), kN))->content);
    // A NULL component cannot be copied: the copy fails and leaves nothing behind.
    constexpr Asn1Descriptor kWithNull = SequenceOf<&desc::kNull>();
    Tree nulls(&kWithNull);
    ASSERT_EQ(Decode(Hex("30 02 05 00"), nulls), 0u);
    void* out = reinterpret_cast<void*>(1);
    EXPECT_EQ(CopyValue(&kWithNull, nulls.v, &out), 300u);
    static constexpr Components<1> kNullPart{{&desc::kNull}};
    static constexpr Asn1Descriptor kSeqWithNull = Sequence(kNullPart);
    Tree seq(&kSeqWithNull);
    ASSERT_EQ(Decode(Hex("30 02 05 00"), seq), 0u);
    EXPECT_EQ(CopyValue(&kSeqWithNull, seq.v, &out), 300u);
    EXPECT_EQ(out, nullptr);
}

TEST(Free, NullArguments) {
    EXPECT_EQ(FreeAsn1Object(nullptr, reinterpret_cast<void*>(1)), 0u);
    EXPECT_EQ(FreeAsn1Object(&kHolder, nullptr), 0u);
}

TEST(Integers, LittleEndianInterface) {
    struct Case {
        int32_t n;
        const char* stored;
    } cases[] = {{0, "00"}, {127, "7F"}, {128, "00 80"}, {-1, "FF"}, {-128, "80"}, {-129, "FF 7F"},
                 {0x7FFFFFFF, "7F FF FF FF"}, {INT32_MIN, "80 00 00 00"}, {256, "01 00"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.n);
        Asn1Primitive* p = AllocAsn1Integer(c.n);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(ToHex(p->content, p->length), c.stored);
        EXPECT_EQ(CheckAsn1Integer(p), 0u);
        int32_t back = 0;
        ASSERT_EQ(GetAsn1Int32(p, reinterpret_cast<uint8_t*>(&back)), 0u);
        EXPECT_EQ(back, c.n);
        uint8_t le[8];
        uint32_t n = sizeof le;
        ASSERT_EQ(GetAsn1Integer(p, le, &n), 0u);
        EXPECT_EQ(n, p->length);
        EXPECT_EQ(le[0], p->content[p->length - 1]);
        uint8_t der[8];
        uint32_t derLen = sizeof der;
        ASSERT_EQ(EncodeAsn1Int32(c.n, der, &derLen), 0u);
        int32_t decoded = 0;
        ASSERT_EQ(DecodeAsn1Int32(der, derLen, reinterpret_cast<uint8_t*>(&decoded)), 0u);
        EXPECT_EQ(decoded, c.n);
        FreeAsn1Object(&desc::kInteger, p);
    }
    // Longer than four octets does not fit an int32.
    Asn1Primitive* big = AllocAsn1Integer_s(Hex("01 00 00 00 00").data(), 5);
    uint8_t four[4];
    EXPECT_EQ(GetAsn1Int32(big, four), 49u);
    EXPECT_EQ(CheckAsn1Integer(big), 0u);
    FreeAsn1Object(&desc::kInteger, big);
    // AllocAsn1Integer_s keeps the octets as given, even when not minimal.
    Asn1Primitive* raw = AllocAsn1Integer_s(Hex("00 05").data(), 2);
    EXPECT_EQ(ToHex(raw->content, raw->length), "00 05");
    EXPECT_EQ(CheckAsn1Integer(raw), 307u);
    // SetAsn1Integer trims redundant sign octets from little-endian input.
    EXPECT_EQ(SetAsn1Integer(raw, Hex("05 00 00 00").data(), 4), 0u);
    EXPECT_EQ(ToHex(raw->content, raw->length), "05");
    EXPECT_EQ(SetAsn1Integer(raw, Hex("80 FF FF").data(), 3), 0u);
    EXPECT_EQ(ToHex(raw->content, raw->length), "80");
    EXPECT_EQ(SetAsn1Integer(raw, Hex("80 00").data(), 2), 0u);
    EXPECT_EQ(ToHex(raw->content, raw->length), "00 80");
    FreeAsn1Object(&desc::kInteger, raw);
}

TEST(Booleans, Table) {
    struct Case {
        const char* content;
        uint32_t word, get, check, flag;
    } cases[] = {{"00", 1, 0, 0, 0}, {"FF", 1, 0, 0, 1}, {"01", 1, 307, 307, 0}, {"00 00", 1, 307, 307, 0},
                 {"FF", 4, 0, 307, 1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.content);
        Bytes b = Hex(c.content);
        Asn1Primitive p{c.word, static_cast<uint32_t>(b.size()), b.data()};
        uint32_t flag = 9;
        EXPECT_EQ(GetAsn1Boolean(&p, &flag), c.get);
        if (c.get == 0) {
            EXPECT_EQ(flag, c.flag);
        }
        EXPECT_EQ(CheckAsn1Boolean(&p), c.check);
    }
    Asn1Primitive* t = AllocAsn1Boolean(7);
    EXPECT_EQ(ToHex(t->content, 1), "FF");
    FreeAsn1Object(&desc::kBoolean, t);
}

TEST(Leaves, ReadersAndSizeProtocol) {
    Bytes b = Hex("01 02 03");
    Asn1Primitive p{ASN1_OCTET_STRING, 3, b.data()};
    uint8_t out[3];
    uint32_t n = 0;
    EXPECT_EQ(GetAsn1Value(&p, nullptr, &n), 0u);
    EXPECT_EQ(n, 3u);
    n = 2;
    EXPECT_EQ(GetAsn1Value(&p, out, &n), 49u);
    EXPECT_EQ(n, 3u);
    uint32_t word = 0;
    EXPECT_EQ(GetAsn1ValueAndType(&p, &word, out, &n), 0u);
    EXPECT_EQ(word, uint32_t{ASN1_OCTET_STRING});
    EXPECT_EQ(GetAsn1ValueLength(&p), 3u);
    Asn1Primitive empty{ASN1_OCTET_STRING, 0, nullptr};
    EXPECT_EQ(GetAsn1Value(&empty, out, &n), 0u);
    EXPECT_EQ(n, 0u);
    Asn1Primitive broken{ASN1_OCTET_STRING, 2, nullptr};
    EXPECT_EQ(GetAsn1Value(&broken, out, &n), 311u);
    EXPECT_EQ(GetAsn1Value(nullptr, out, &n), 32u);
}

TEST(BitStrings, NamedBitTrimming) {
    struct Case {
        uint32_t flags;
        const char* der;
    } cases[] = {{0x0080, "03 02 07 80"}, {0, "03 01 00"}, {0x0001, "03 02 00 01"}, {0x8000, "03 03 07 00 80"},
                 {0x0006, "03 02 01 06"}, {0x80000000, "03 05 07 00 00 00 80"}, {0x00A0, "03 02 05 A0"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.flags);
        uint8_t out[8];
        uint32_t n = sizeof out;
        ASSERT_EQ(EncodeBitStringFlags(c.flags, out, &n), 0u);
        EXPECT_EQ(ToHex(out, n), ToHex(Hex(c.der)));
    }
    // Untrimmed setting still clears the unused low bits.
    Asn1BitStringValue b{};
    ASSERT_EQ(SetBitString(&b, Hex("FF FF").data(), 2, 3, false), 0u);
    EXPECT_EQ(ToHex(b.content, b.length), "FF F8");
    uint8_t unused = 9, out[2];
    uint32_t n = sizeof out;
    EXPECT_EQ(GetAsn1BitString(&b, &unused, out, &n), 0u);
    EXPECT_EQ(unused, 3);
    EXPECT_EQ(SetBitString(&b, out, 2, 8, false), 32u);
    Free(b.content);
}

TEST(Oids, TextConversions) {
    struct Case {
        const char* text;
        uint32_t code;
        const char* packed;   // when code is 0
        const char* back;     // text converted back; null: same as the input
    } cases[] = {
        {"1.2.840.113549.1.1.11", 0, "09 2A 86 48 86 F7 0D 01 01 0B", nullptr},
        {"2.5.4.3", 0, "03 55 04 03", nullptr},
        {"1.2.643.7.1.1.1.1", 0, "08 2A 85 03 07 01 01 01 01", nullptr},
        {"5", 0, "02 81 48", "5.0"},           // a lone arc gains arc 0; 200 takes two octets
        {"2.999", 0, "02 88 37", "26.39"},     // the first number is always split by 40
        {"1.2x.3", 0, "02 2A 03", "1.2.3"},    // text after the digits of a piece is ignored
        {"0.0", 0, "01 00", nullptr},
        {"", 0, "00", "0.0"},
        {"1..2", 32, nullptr, nullptr},
        {".1", 32, nullptr, nullptr},
        {"a.b", 32, nullptr, nullptr},
        {"1.2.3.4.5.6.7.8.9.10.11.12.13.14.15.16.17.18.19.20.21.22.23.24.25.26.27.28.29.30.31.32.33.34.35.36."
         "37.38.39.40.41.42", 0, nullptr, nullptr},
        {"1.2.3.4.5.6.7.8.9.10.11.12.13.14.15.16.17.18.19.20.21.22.23.24.25.26.27.28.29.30.31.32.33.34.35.36."
         "37.38.39.40.41.42.43", 32, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        uint32_t size = 0;
        ASSERT_EQ(ConvertStringToOid(c.text, nullptr, &size), c.code);
        if (c.code) continue;
        Bytes packed(size);
        ASSERT_EQ(ConvertStringToOid(c.text, packed.data(), &size), 0u);
        if (c.packed) {
            EXPECT_EQ(ToHex(packed), ToHex(Hex(c.packed)));
        }
        char text[512];
        uint32_t textSize = sizeof text;
        ASSERT_EQ(ConvertOidToString(packed.data(), text, &textSize), 0u);
        EXPECT_STREQ(text, c.back ? c.back : c.text);
        EXPECT_EQ(textSize, std::strlen(text) + 1);
    }
}

TEST(Oids, PackedToText) {
    struct Case {
        const char* packed;
        uint32_t code;
        const char* text;
    } cases[] = {{"02 87 67", 0, "24.39"}, {"00", 0, "0.0"}, {"02 2A 86", 32, nullptr}, {"01 80", 32, nullptr}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.packed);
        Bytes packed = Hex(c.packed);
        char text[64];
        uint32_t size = sizeof text;
        ASSERT_EQ(ConvertOidToString(packed.data(), text, &size), c.code);
        if (c.code == 0) {
            EXPECT_STREQ(text, c.text);
        }
    }
    // The empty identifier's text with a short buffer: 49 and the size 4.
    uint8_t empty = 0;
    char small[3];
    uint32_t size = sizeof small;
    EXPECT_EQ(ConvertOidToString(&empty, small, &size), 49u);
    EXPECT_EQ(size, 4u);
}

TEST(Oids, ElementsAndEquality) {
    Bytes packed = Hex("03 55 04 03");
    uint8_t der[8];
    uint32_t n = sizeof der;
    ASSERT_EQ(EncodeAsn1Oid(packed.data(), der, &n), 0u);
    EXPECT_EQ(ToHex(der, n), "06 03 55 04 03");
    uint8_t back[8];
    uint32_t m = sizeof back;
    ASSERT_EQ(DecodeAsn1Oid(der, n, back, &m), 0u);
    EXPECT_EQ(ToHex(back, m), ToHex(packed));
    struct Bad {
        const char* in;
        uint32_t code;
    } bad[] = {{"04 03 55 04 03", 302}, {"06 05 55 04 03", 302}, {"26 80 00 00", 335}, {"86 01 00", 302}};
    for (const auto& b : bad) {
        SCOPED_TRACE(b.in);
        Bytes in = Hex(b.in);
        m = sizeof back;
        EXPECT_EQ(DecodeAsn1Oid(in.data(), in.size(), back, &m), b.code);
    }
    // Identifiers longer than a packed form can hold are refused rather than truncated.
    Bytes longOid = {0x06, 0x82, 0x01, 0x00};
    longOid.resize(4 + 256, 0x01);
    m = sizeof back;
    EXPECT_EQ(DecodeAsn1Oid(longOid.data(), longOid.size(), nullptr, &m), 32u);

    Bytes prefix = Hex("02 55 04");
    EXPECT_EQ(IsOidEquals(packed.data(), packed.data()), 1u);
    EXPECT_EQ(IsOidEquals(packed.data(), prefix.data()), 0u);
    Asn1Primitive value{ASN1_OBJECT_IDENTIFIER, 3, packed.data() + 1};
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(packed.data(), &value), 1u);
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(prefix.data(), &value), 0u);
    uint8_t zero = 0;
    Asn1Primitive emptyValue{ASN1_OBJECT_IDENTIFIER, 0, nullptr};
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(&zero, &emptyValue), 1u);
}

TEST(Oids, SecondSetEmpties) {
    Asn1Primitive oid{ASN1_OBJECT_IDENTIFIER, 0, nullptr};
    Bytes packed = Hex("03 55 04 03");
    ASSERT_EQ(SetOidPacked(&oid, packed.data()), 0u);
    EXPECT_EQ(oid.length, 3u);
    uint8_t out[4];
    uint32_t n = 3;
    EXPECT_EQ(OidToPacked(&oid, out, &n), 49u);
    EXPECT_EQ(n, 4u);
    ASSERT_EQ(SetOidPacked(&oid, packed.data()), 0u);
    EXPECT_EQ(oid.length, 0u);
    EXPECT_EQ(oid.content, nullptr);
}

TEST(Lists, GrowthAndAccess) {
    Asn1List* list = ListCreate();
    ASSERT_NE(list, nullptr);
    for (int i = 0; i < 10; ++i) ASSERT_EQ(ListAppend(list, AllocAsn1Integer(i)), 0u);
    EXPECT_EQ(list->capacity, 10u);
    ASSERT_EQ(ListAppend(list, AllocAsn1Integer(10)), 0u);
    EXPECT_EQ(list->capacity, 215u);
    EXPECT_EQ(GetAsn1ListLength(list), 11u);
    void* item = nullptr;
    EXPECT_EQ(GetAsn1ListItem(list, -1, &item), 32u);
    EXPECT_EQ(GetAsn1ListItem(list, 11, &item), 32u);
    ASSERT_EQ(GetAsn1ListItem(list, 3, &item), 0u);
    EXPECT_EQ(static_cast<Asn1Primitive*>(item)->content[0], 3);
    EXPECT_EQ(ListRemoveAt(list, 3, &desc::kInteger), 0u);
    ASSERT_EQ(GetAsn1ListItem(list, 3, &item), 0u);
    EXPECT_EQ(static_cast<Asn1Primitive*>(item)->content[0], 4);
    EXPECT_EQ(ListRemoveAt(list, 10, &desc::kInteger), 32u);
    // Duplicates by encoding are refused.
    Asn1Primitive* dup = AllocAsn1Integer(4);
    EXPECT_EQ(ListAppendUnique(list, &desc::kInteger, dup), 344u);
    EXPECT_EQ(GetAsn1ListLength(list), 10u);
    FreeAsn1Object(&desc::kInteger, dup);
    EXPECT_EQ(ListAppendUnique(list, &desc::kInteger, AllocAsn1Integer(99)), 0u);
    ListFree(list, &desc::kInteger);
}

TEST(Lists, AppendFailureLeavesListUnchanged) {
    Asn1List* list = ListCreate();
    for (int i = 0; i < 10; ++i) ASSERT_EQ(ListAppend(list, AllocAsn1Integer(i)), 0u);
    SetAllocationsBeforeFailure(0);
    Asn1Primitive extra{};
    EXPECT_EQ(ListAppend(list, &extra), 1u);
    SetAllocationsBeforeFailure(-1);
    EXPECT_EQ(list->count, 10u);
    EXPECT_EQ(list->capacity, 10u);
    ListFree(list, &desc::kInteger);
}

TEST(OctetStrings, Collection) {
    Asn1List* list = nullptr;
    ASSERT_EQ(CreateOctetStrings(&list), 0u);
    ASSERT_EQ(AddOctetStringsValue(list, Hex("AA BB").data(), 2), 0u);
    ASSERT_EQ(AddOctetStringsValue(list, nullptr, 0), 0u);
    uint32_t count = 0;
    ASSERT_EQ(GetOctetStringsCount(list, &count), 0u);
    EXPECT_EQ(count, 2u);
    uint8_t out[2];
    uint32_t n = 1;
    EXPECT_EQ(GetOctetStringsValue(list, 0, out, &n), 49u);
    EXPECT_EQ(n, 2u);
    ASSERT_EQ(GetOctetStringsValue(list, 0, out, &n), 0u);
    EXPECT_EQ(ToHex(out, n), "AA BB");
    EXPECT_EQ(GetOctetStringsValue(list, 2, out, &n), 32u);
    EXPECT_EQ(ToHex(Encode(list, &desc::kOctetStrings)), "30 06 04 02 AA BB 04 00");
    FreeOctetStrings(list);
}

TEST(ChoiceAndAny, Access) {
    Tree t(&kAlt);
    ASSERT_EQ(Decode(Hex("04 01 AA"), t), 0u);
    void* v = t.v;
    const Asn1Descriptor* d = &kAlt;
    ASSERT_EQ(GetAsn1ChoiceUnderlyingType(&v, &d), 0u);
    EXPECT_EQ(d, &desc::kOctetString);
    EXPECT_EQ(static_cast<Asn1Primitive*>(v)->content[0], 0xAA);
    Asn1ChoiceValue bad{2, nullptr};
    v = &bad;
    d = &kAlt;
    EXPECT_EQ(GetAsn1ChoiceUnderlyingType(&v, &d), 306u);
    ASSERT_EQ(ReleaseChoiceAlternative(&kAlt, t.as<Asn1ChoiceValue>()), 0u);
    EXPECT_EQ(t.as<Asn1ChoiceValue>()->value, nullptr);

    struct Case {
        const char* element;
        uint8_t cls, cons;
        uint32_t tag, length, header;
    } cases[] = {{"30 03 02 01 05", 0x00, 0x20, 16, 3, 2}, {"A1 80 02 01 05 00 00", 0x80, 0x20, 1, 5, 2},
                 {"9F 81 00 01 AA", 0x80, 0x00, 128, 1, 4}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.element);
        Tree any(&desc::kAny);
        Bytes in = Hex(c.element);
        ASSERT_EQ(Decode(in, any), 0u);
        EXPECT_EQ(any.as<Asn1Primitive>()->word, c.tag);
        uint8_t cls, cons;
        uint32_t tag, length, header;
        ASSERT_EQ(GetAsn1AnyInfo(any.as<Asn1Primitive>(), &cls, &cons, &tag, &length, &header), 0u);
        EXPECT_EQ(cls, c.cls);
        EXPECT_EQ(cons, c.cons);
        EXPECT_EQ(tag, c.tag);
        EXPECT_EQ(length, c.length);
        EXPECT_EQ(header, c.header);
        uint8_t out[16];
        uint32_t n = sizeof out;
        ASSERT_EQ(GetAsn1AnyValue(any.as<Asn1Primitive>(), out, &n), 0u);
        EXPECT_EQ(ToHex(out, n), ToHex(in));
    }
    Asn1Primitive any{};
    ASSERT_EQ(SetAnyParts(&any, 0x80, 0x20, 3, 3, Hex("02 01 05").data(), 3), 0u);
    EXPECT_EQ(ToHex(any.content, any.length), "A3 03 02 01 05");
    ASSERT_EQ(SetAnyEncoding(&any, Hex("05 00").data(), 2), 0u);
    EXPECT_EQ(any.word, 5u);
    Free(any.content);
}

}  // namespace
