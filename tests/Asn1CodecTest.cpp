// The decoder and encoder against hand-made encodings: what is accepted, what each malformation
// returns, and that what decodes re-encodes to DER.
#include <gtest/gtest.h>

#include <cstdlib>

#include "TestUtil.h"
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

using namespace tvtest;
using namespace tv;

namespace {

constinit const Asn1Primitive kZero{ASN1_INTEGER, 1, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x00"))};
constinit const Asn1Primitive kFalse{ASN1_BOOLEAN, 1, const_cast<uint8_t*>(reinterpret_cast<const uint8_t*>("\x00"))};

// Sample ::= SEQUENCE {
//   version  [0] EXPLICIT INTEGER DEFAULT 0,
//   flag     BOOLEAN DEFAULT FALSE,
//   number   INTEGER,
//   note     [1] IMPLICIT OCTET STRING OPTIONAL,
//   text     UTF8String OPTIONAL }
enum SampleSlot : uint32_t { kVersion, kFlag, kNumber, kNote, kText };
constexpr Asn1Descriptor kVersionD = Optional(Explicit(0, desc::kInteger), &kZero);
constexpr Asn1Descriptor kFlagD = Optional(desc::kBoolean, &kFalse);
constexpr Asn1Descriptor kNoteD = Optional(Implicit(1, desc::kOctetString));
constexpr Asn1Descriptor kTextD = Optional(desc::kUtf8String);
constexpr Components<5> kSampleParts = Slots<SampleSlot, 5>({
    {kVersion, &kVersionD},          // version [0] EXPLICIT INTEGER DEFAULT 0
    {kFlag, &kFlagD},                // flag BOOLEAN DEFAULT FALSE
    {kNumber, &desc::kInteger},      // number INTEGER
    {kNote, &kNoteD},                // note [1] IMPLICIT OCTET STRING OPTIONAL
    {kText, &kTextD},                // text UTF8String OPTIONAL
});
constexpr Asn1Descriptor kSample = Sequence(kSampleParts);

constexpr Asn1Descriptor kIntSetOf = SetOf<&desc::kInteger>();
constexpr Asn1Descriptor kIntSeqOf = SequenceOf<&desc::kInteger>();
constexpr Asn1Descriptor kAnySeqOf = SequenceOf<&desc::kAny>();

// Alt ::= CHOICE { n INTEGER, s [2] IMPLICIT OCTET STRING, e [3] EXPLICIT BOOLEAN }
constexpr Asn1Descriptor kAltS = Implicit(2, desc::kOctetString);
constexpr Asn1Descriptor kAltE = Explicit(3, desc::kBoolean);
enum AltSlot : uint32_t { kAltNumber, kAltString, kAltExplicit };
constexpr Components<3> kAltParts = Slots<AltSlot, 3>({
    {kAltNumber, &desc::kInteger},   // n INTEGER
    {kAltString, &kAltS},            // s [2] IMPLICIT OCTET STRING
    {kAltExplicit, &kAltE},          // e [3] EXPLICIT BOOLEAN
});
constexpr Asn1Descriptor kAlt = Choice(kAltParts);

constexpr Asn1Descriptor kHighTag = Implicit(31, desc::kInteger);
constexpr Asn1Descriptor kHighTagExplicit = Explicit(200, desc::kInteger);

// Nest ::= SEQUENCE { inner SEQUENCE OF Nest } — recursive, so only the depth bound stops it.
extern const Asn1Descriptor kNest;
constexpr Asn1Descriptor kNestList{ASN1_CLASS_UNIVERSAL, ASN1_CONSTRUCTED_FORM, 0, ASN1_SEQUENCE_OF, -1, 0,
                                   kListElement<&kNest>.items, 1, nullptr};
constexpr Asn1Descriptor kNestListOpt = Optional(kNestList);
enum NestSlot : uint32_t { kNestInner };
constexpr Components<1> kNestParts = Slots<NestSlot, 1>({{kNestInner, &kNestListOpt}});
constinit const Asn1Descriptor kNest = Sequence(kNestParts);

struct DecodeCase {
    const char* name;
    const Asn1Descriptor* d;
    const char* in;
    uint32_t code;
    uint32_t consumed;    // checked when code is 0
    const char* reencoded;  // DER written back, when code is 0; null: same as the input
};

const DecodeCase kDecodeCases[] = {
    // BOOLEAN and INTEGER carry the DER checks.
    {"bool false", &desc::kBoolean, "01 01 00", 0, 3, nullptr},
    {"bool true", &desc::kBoolean, "01 01 FF", 0, 3, nullptr},
    {"bool 01 not DER", &desc::kBoolean, "01 01 01", 307, 0, nullptr},
    {"bool two octets", &desc::kBoolean, "01 02 00 00", 307, 0, nullptr},
    {"int 00 7F not minimal", &desc::kInteger, "02 02 00 7F", 307, 0, nullptr},
    {"int FF 80 not minimal", &desc::kInteger, "02 02 FF 80", 307, 0, nullptr},
    {"int 00 80", &desc::kInteger, "02 02 00 80", 0, 4, nullptr},
    {"int FF 7F", &desc::kInteger, "02 02 FF 7F", 0, 4, nullptr},
    {"int empty", &desc::kInteger, "02 00", 307, 0, nullptr},
    // Lengths: non-minimal long forms are BER and accepted; more than four length octets are not.
    {"length 81 05", &desc::kOctetString, "04 81 05 01 02 03 04 05", 0, 8, "04 05 01 02 03 04 05"},
    {"length 84", &desc::kOctetString, "04 84 00 00 00 01 AA", 0, 7, "04 01 AA"},
    {"length 85", &desc::kOctetString, "04 85 00 00 00 00 01 AA", 304, 0, nullptr},
    {"length FF", &desc::kOctetString, "04 FF", 304, 0, nullptr},
    {"length past input", &desc::kOctetString, "04 05 01 02", 302, 0, nullptr},
    {"huge length", &desc::kOctetString, "04 84 FF FF FF F0 00", 302, 0, nullptr},
    {"length octets cut", &desc::kOctetString, "04 82 01", 302, 0, nullptr},
    {"one octet", &desc::kOctetString, "04", 302, 0, nullptr},
    {"trailing octets ignored", &desc::kInteger, "02 01 05 FF FF", 0, 3, "02 01 05"},
    {"wrong tag", &desc::kInteger, "04 01 05", 302, 0, nullptr},
    {"NULL with contents", &desc::kNull, "05 01 00", 0, 3, nullptr},
    // Bit strings.
    {"bit string", &desc::kBitString, "03 02 07 80", 0, 4, nullptr},
    {"bit string empty", &desc::kBitString, "03 00", 302, 0, nullptr},
    {"bit string unused 8", &desc::kBitString, "03 02 08 00", 302, 0, nullptr},
    {"constructed bit string", &desc::kBitString, "23 80 03 02 00 AA 00 00", 32, 0, nullptr},
    // Segmented OCTET STRING in the indefinite form.
    {"segments", &desc::kOctetString, "24 80 04 02 AA BB 04 01 CC 00 00", 0, 11, "04 03 AA BB CC"},
    {"segments, input ends", &desc::kOctetString, "24 80 04 01 AA", 0, 5, "04 01 AA"},
    {"segment with other tag", &desc::kOctetString, "24 80 02 01 AA 00 00", 336, 0, nullptr},
    {"segment past end", &desc::kOctetString, "24 80 04 05 AA 00 00", 302, 0, nullptr},
    {"definite constructed", &desc::kOctetString, "24 03 04 01 AA", 302, 0, nullptr},
    {"primitive indefinite", &desc::kOctetString, "04 80 AA 00 00", 335, 0, nullptr},
    // Structures: OPTIONAL and DEFAULT components.
    {"only required", &kSample, "30 03 02 01 05", 0, 5, nullptr},
    {"all present", &kSample, "30 12 A0 03 02 01 02 01 01 FF 02 01 05 81 01 AA 0C 02 68 69", 0, 20, nullptr},
    {"defaults written", &kSample, "30 0B A0 03 02 01 00 01 01 00 02 01 05", 0, 13, "30 03 02 01 05"},
    {"optional skipped", &kSample, "30 07 02 01 05 0C 02 68 69", 0, 9, nullptr},
    {"required missing", &kSample, "30 04 0C 02 68 69", 302, 0, nullptr},
    {"extra octets in sequence", &kSample, "30 05 02 01 05 05 00", 0, 7, "30 03 02 01 05"},
    {"one octet left for optional", &kSample, "30 04 02 01 05 0C", 302, 0, nullptr},
    {"sequence indefinite", &kSample, "30 80 02 01 05 00 00", 0, 7, "30 03 02 01 05"},
    {"sequence indefinite no EOC", &kSample, "30 80 02 01 05 0C 00", 335, 0, nullptr},
    {"explicit indefinite", &kSample, "30 80 A0 80 02 01 02 00 00 02 01 05 00 00", 0, 14,
     "30 08 A0 03 02 01 02 02 01 05"},
    {"explicit indefinite no EOC", &kSample, "30 80 A0 80 02 01 02 02 01 05 00 00", 335, 0, nullptr},
    {"explicit runs past sequence", &kSample, "30 05 A0 09 02 01 02 02 01 05", 302, 0, nullptr},
    {"component past sequence", &kSample, "30 03 02 05 05", 302, 0, nullptr},
    // Lists.
    {"set of", &kIntSetOf, "31 06 02 01 05 02 01 03", 0, 8, "31 06 02 01 03 02 01 05"},
    {"set of empty", &kIntSetOf, "31 00", 0, 2, nullptr},
    {"set of indefinite", &kIntSetOf, "31 80 02 01 05 00 00", 0, 7, "31 03 02 01 05"},
    {"set of stray octet", &kIntSetOf, "31 04 02 01 05 00", 302, 0, nullptr},
    {"set of bad element", &kIntSetOf, "31 04 02 02 00 05", 307, 0, nullptr},
    {"seq of keeps order", &kIntSeqOf, "30 06 02 01 05 02 01 03", 0, 8, nullptr},
    {"any items", &kAnySeqOf, "30 09 05 00 30 80 02 01 01 00 00", 0, 11, nullptr},
    {"any indefinite without end", &kAnySeqOf, "30 06 30 80 02 01 01 00", 335, 0, nullptr},
    // CHOICE.
    {"choice integer", &kAlt, "02 01 07", 0, 3, nullptr},
    {"choice implicit", &kAlt, "82 01 07", 0, 3, nullptr},
    {"choice explicit", &kAlt, "A3 03 01 01 FF", 0, 5, nullptr},
    {"choice none", &kAlt, "04 01 07", 302, 0, nullptr},
    // High tag numbers.
    {"tag 31", &kHighTag, "9F 1F 01 05", 0, 4, nullptr},
    {"tag 200 explicit", &kHighTagExplicit, "BF 81 48 03 02 01 05", 0, 7, nullptr},
    {"tag octets cut", &kHighTag, "9F 81", 302, 0, nullptr},
    // Nesting is bounded; 60 levels decode, 100 do not.
    {"empty nest", &kNest, "30 00", 0, 2, nullptr},
};

TEST(Decoder, Table) {
    for (const auto& c : kDecodeCases) {
        SCOPED_TRACE(c.name);
        Bytes in = Hex(c.in);
        Tree tree(c.d);
        uint32_t consumed = 0;
        ASSERT_EQ(Decode(in, tree, &consumed), c.code);
        if (c.code != 0) {
            EXPECT_EQ(tree.v, nullptr);
            continue;
        }
        EXPECT_EQ(consumed, c.consumed);
        Bytes expected = c.reencoded ? Hex(c.reencoded) : in;
        EXPECT_EQ(ToHex(Encode(tree.v, c.d)), ToHex(expected));
    }
}

Bytes Nested(int levels) {
    // SEQUENCE { SEQUENCE OF { SEQUENCE { ... } } }, two constructed levels per step, indefinite form.
    Bytes b;
    for (int i = 0; i < levels; ++i) b.insert(b.end(), {0x30, 0x80, 0x30, 0x80});
    for (int i = 0; i < 2 * levels; ++i) b.insert(b.end(), {0x00, 0x00});
    return b;
}

TEST(Decoder, NestingIsBounded) {
    {
        Tree ok(&kNest);
        EXPECT_EQ(Decode(Nested(30), ok), 0u);
    }
    for (int levels : {33, 1000, 100000}) {
        SCOPED_TRACE(levels);
        Tree deep(&kNest);
        EXPECT_EQ(Decode(Nested(levels), deep), 302u);
        EXPECT_EQ(deep.v, nullptr);
    }
}

TEST(Decoder, IndefiniteAnyNestingCostsNoStack) {
    // An ANY measures its indefinite end iteratively, however deep the nesting.
    Bytes b = {0x30, 0x80};
    for (int i = 0; i < 200000; ++i) b.insert(b.end(), {0x30, 0x80});
    for (int i = 0; i < 200001; ++i) b.insert(b.end(), {0x00, 0x00});
    Tree any(&desc::kAny);
    uint32_t consumed = 0;
    ASSERT_EQ(Decode(b, any, &consumed), 0u);
    EXPECT_EQ(consumed, b.size());
}

TEST(Decoder, AbsentOptionalLeavesElementForNext) {
    Tree t(&kSample);
    ASSERT_EQ(Decode(Hex("30 05 02 01 05 81 00"), t), 0u);
    auto** slots = t.as<void*>();
    // The defaults are filled in as copies, the absent OPTIONAL without default stays null.
    ASSERT_NE(slots[kVersion], nullptr);
    EXPECT_EQ(ToHex(static_cast<Asn1Primitive*>(slots[kVersion])->content, 1), "00");
    ASSERT_NE(slots[kFlag], nullptr);
    EXPECT_NE(slots[kFlag], &kFalse);
    EXPECT_EQ(static_cast<Asn1Primitive*>(slots[kNumber])->content[0], 5);
    ASSERT_NE(slots[kNote], nullptr);
    EXPECT_EQ(static_cast<Asn1Primitive*>(slots[kNote])->length, 0u);
    EXPECT_EQ(static_cast<Asn1Primitive*>(slots[kNote])->word, uint32_t{ASN1_OCTET_STRING});
    EXPECT_EQ(slots[kText], nullptr);
}

TEST(Decoder, EmptyInputAndNullArguments) {
    void* v = reinterpret_cast<void*>(1);
    uint32_t consumed = 7;
    const uint8_t octet = 0;
    EXPECT_EQ(Asn1DecodeItem(&octet, 0, &kTextD, &v, &consumed), 0u);  // absent OPTIONAL
    EXPECT_EQ(v, nullptr);
    EXPECT_EQ(consumed, 0u);
    EXPECT_EQ(Asn1DecodeItem(&octet, 0, &desc::kInteger, &v, &consumed), 302u);
    EXPECT_EQ(Asn1DecodeItem(nullptr, 1, &desc::kInteger, &v, &consumed), 32u);
    EXPECT_EQ(Asn1DecodeItem(&octet, 1, nullptr, &v, &consumed), 32u);
    EXPECT_EQ(Asn1DecodeItem(&octet, 1, &desc::kInteger, nullptr, &consumed), 32u);
}

TEST(HeaderInfo, Table) {
    struct Case {
        const char* in;
        uint32_t code;
        uint8_t cls, cons;
        uint32_t tag, length, indefinite, header;
    } cases[] = {
        {"30 03 02 01 05", 0, 0x00, 0x20, 16, 3, 0, 2},
        {"A0 80 02 01 05 00 00", 0, 0x80, 0x20, 0, 5, 1, 2},
        {"9F 1F 01 05", 0, 0x80, 0x00, 31, 1, 0, 3},
        {"5F 81 00 00", 0, 0x40, 0x00, 128, 0, 0, 4},
        {"04 82 01 00", 0, 0x00, 0x00, 4, 256, 0, 4},  // length not checked when the form is asked for
        {"04", 302, 0, 0, 0, 0, 0, 0},
        {"1F 80", 302, 0, 0, 0, 0, 0, 0},
        {"04 85 00 00 00 00 01", 304, 0, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        Bytes in = Hex(c.in);
        uint8_t cls = 9, cons = 9;
        uint32_t tag = 0, len = 0, indef = 0, header = 0;
        ASSERT_EQ(GetAsn1ObjectInfo(in.data(), in.size(), &cls, &cons, &tag, &len, &indef, &header), c.code);
        if (c.code) continue;
        EXPECT_EQ(cls, c.cls);
        EXPECT_EQ(cons, c.cons);
        EXPECT_EQ(tag, c.tag);
        EXPECT_EQ(len, c.length);
        EXPECT_EQ(indef, c.indefinite);
        EXPECT_EQ(header, c.header);
    }
    // Without the form asked for, the content length is checked against the input.
    Bytes shortInput = Hex("04 82 01 00");
    uint8_t cls, cons;
    uint32_t tag, len, header;
    EXPECT_EQ(GetAsn1ObjectInfo(shortInput.data(), 4, &cls, &cons, &tag, &len, nullptr, &header), 302u);
}

TEST(Encoder, LengthForms) {
    for (uint32_t n : {0u, 127u, 128u, 255u, 256u, 65535u, 65536u, 16777216u}) {
        SCOPED_TRACE(n);
        Bytes content(n, 0xAB);
        Asn1Primitive p{ASN1_OCTET_STRING, n, content.data()};
        const Bytes out = OldSized([&](uint8_t* o, uint32_t* m) { return GetAsn1EncodedValue(&p, &desc::kOctetString, o, m); });
        const char* header = n == 0 ? "04 00" : n == 127 ? "04 7F" : n == 128 ? "04 81 80" : n == 255 ? "04 81 FF"
                           : n == 256 ? "04 82 01 00" : n == 65535 ? "04 82 FF FF" : n == 65536 ? "04 83 01 00 00"
                                                                                            : "04 84 01 00 00 00";
        Bytes h = Hex(header);
        EXPECT_EQ(out.size(), h.size() + n);
        EXPECT_EQ(ToHex(out.data(), h.size()), ToHex(h));
    }
}

TEST(Encoder, HighTags) {
    struct Case {
        int32_t tag;
        bool constructed;
        const char* header;
    } cases[] = {{30, false, "9E"}, {31, false, "9F 1F"}, {31, true, "BF 1F"}, {127, false, "9F 7F"},
                 {128, false, "9F 81 00"}, {16384, false, "9F 81 80 00"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.tag);
        Asn1Descriptor d = Implicit(c.tag, desc::kNull);
        if (c.constructed) d.constructed = ASN1_CONSTRUCTED_FORM;
        Asn1Primitive p{ASN1_NULL, 0, nullptr};
        Bytes out = Encode(&p, &d);
        Bytes expected = Hex(c.header);
        expected.push_back(0);
        EXPECT_EQ(ToHex(out), ToHex(expected));
        if (!c.constructed) {
            Tree back(&d);
            EXPECT_EQ(Decode(out, back), 0u);
        }
    }
}

TEST(Encoder, SetOfOrder) {
    struct Case {
        const char* name;
        std::vector<const char*> items;  // encodings of the elements, in list order
        bool sorted;
        const char* out;
    } cases[] = {
        {"sorted", {"02 01 05", "02 01 03"}, true, "31 06 02 01 03 02 01 05"},
        {"unsorted keeps order", {"02 01 05", "02 01 03"}, false, "31 06 02 01 05 02 01 03"},
        {"prefix first", {"02 02 05 00", "02 01 05"}, true, "31 07 02 01 05 02 02 05 00"},
        {"by octets, not length", {"02 01 7F", "02 02 00 80"}, true, "31 07 02 01 7F 02 02 00 80"},
        {"equal kept", {"02 01 01", "02 01 01", "02 01 00"}, true, "31 09 02 01 00 02 01 01 02 01 01"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Tree list(&kIntSetOf);
        ASSERT_EQ(CreateAsn1Object(&kIntSetOf, &list.v, 1), 0u);
        for (const char* item : c.items) {
            Tree element(&desc::kInteger);
            ASSERT_EQ(Decode(Hex(item), element), 0u);
            ASSERT_EQ(ListAppend(list.as<Asn1List>(), element.v), 0u);
            element.v = nullptr;
        }
        SetAsn1ListSorted(list.as<Asn1List>(), c.sorted);
        EXPECT_EQ(ToHex(Encode(list.v, &kIntSetOf)), ToHex(Hex(c.out)));
        // Sorting happens in the output only: the list keeps its order.
        EXPECT_EQ(ToHex(static_cast<Asn1Primitive*>(list.as<Asn1List>()->items[0])->content, 1),
                  ToHex(Hex(c.items[0]).data() + 2, 1));
    }
}

TEST(Encoder, DefaultOmission) {
    Tree t(&kSample);
    ASSERT_EQ(CreateAsn1Object(&kSample, &t.v, 1), 0u);
    auto** slots = t.as<void*>();
    ASSERT_EQ(SetAsn1Int32(static_cast<Asn1Primitive*>(slots[kNumber]), 5), 0u);
    EXPECT_EQ(ToHex(Encode(t.v, &kSample)), "30 03 02 01 05");  // version 0 and FALSE omitted
    ASSERT_EQ(SetAsn1Int32(static_cast<Asn1Primitive*>(slots[kVersion]), 2), 0u);
    ASSERT_EQ(SetBoolean(static_cast<Asn1Primitive*>(slots[kFlag]), true), 0u);
    EXPECT_EQ(ToHex(Encode(t.v, &kSample)), "30 0B A0 03 02 01 02 01 01 FF 02 01 05");
}

TEST(Encoder, Refusals) {
    // A required component never set.
    Tree t(&kSample);
    ASSERT_EQ(CreateAsn1Object(&kSample, &t.v, 0), 0u);
    uint32_t rc = 0;
    Encode(t.v, &kSample, &rc);
    EXPECT_EQ(rc, 311u);
    // A DEFAULT of a kind that cannot be compared makes a present component unencodable.
    static constinit const Asn1Primitive kNullDefault{ASN1_NULL, 0, nullptr};
    constexpr Asn1Descriptor kNullWithDefault = Optional(desc::kNull, &kNullDefault);
    Asn1Primitive null{ASN1_NULL, 0, nullptr};
    Encode(&null, &kNullWithDefault, &rc);
    EXPECT_EQ(rc, 300u);
    // A CHOICE naming no alternative.
    Asn1ChoiceValue choice{5, nullptr};
    Encode(&choice, &kAlt, &rc);
    EXPECT_EQ(rc, 306u);
    // SET as a structure cannot be written.
    constexpr Asn1Descriptor kSetStruct = Set(kAltParts);
    void* slots[3] = {};
    Encode(slots, &kSetStruct, &rc);
    EXPECT_EQ(rc, 300u);
    uint32_t size = 0;
    EXPECT_EQ(Asn1Encode(nullptr, &desc::kInteger, nullptr, &size), 32u);
}

TEST(Encoder, AnyRetaggedImplicitly) {
    // A context-tagged ANY rewrites the stored identifier and keeps its constructed bit.
    constexpr Asn1Descriptor kTaggedAny = Implicit(4, desc::kAny);
    Tree any(&desc::kAny);
    ASSERT_EQ(Decode(Hex("30 03 02 01 05"), any), 0u);
    EXPECT_EQ(ToHex(Encode(any.v, &kTaggedAny)), "A4 03 02 01 05");
    constexpr Asn1Descriptor kExplicitAny = Explicit(4, desc::kAny);
    EXPECT_EQ(ToHex(Encode(any.v, &kExplicitAny)), "A4 05 30 03 02 01 05");
}

TEST(LastError, RecordsInnermostSite) {
    Tree t(&kSample);
    ASSERT_EQ(Decode(Hex("30 05 02 02 00 05 00"), t), 307u);
    uint32_t line = 0;
    const char* module = GetLastFileErrorAsn(&line);
    ASSERT_NE(module, nullptr);
    EXPECT_STREQ(module, "tarvelon/Asn1Codec.cpp");
    EXPECT_GT(line, 0u);
    // Success does not clear it; a null line address is allowed.
    Tree ok(&desc::kInteger);
    ASSERT_EQ(Decode(Hex("02 01 05"), ok), 0u);
    EXPECT_STREQ(GetLastFileErrorAsn(nullptr), "tarvelon/Asn1Codec.cpp");
    // Another module's failure names that module.
    uint32_t size = 0;
    EXPECT_EQ(ConvertStringToOid("1..2", nullptr, &size), 32u);
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/Asn1ObjectIdentifier.cpp");
}

TEST(Codec, AllocationFailuresReturnOneAndLeakNothing) {
    const Bytes in = Hex("30 12 A0 03 02 01 02 01 01 FF 02 01 05 81 01 AA 0C 02 68 69");
    int runs = ForEachAllocationFailure([&] {
        Tree t(&kSample);
        uint32_t rc = Decode(in, t);
        if (rc) {
            EXPECT_EQ(t.v, nullptr);
            return rc;
        }
        Encode(t.v, &kSample, &rc);
        return rc;
    });
    EXPECT_GT(runs, 5);
    const Bytes set = Hex("31 09 02 01 05 02 01 03 02 01 04");
    runs = ForEachAllocationFailure([&] {
        Tree t(&kIntSetOf);
        uint32_t rc = Decode(set, t);
        if (rc) return rc;
        Bytes out = Encode(t.v, &kIntSetOf, &rc);
        if (rc == 0) {
            EXPECT_EQ(ToHex(out), "31 09 02 01 03 02 01 04 02 01 05");
        }
        return rc;
    });
    EXPECT_GT(runs, 3);
}

}  // namespace

#include "DescriptorLint.h"

namespace {

TEST(DescriptorLint, TestTablesAreClean) {
    for (auto [d, name] : {std::pair{&kSample, "Sample"}, {&kAlt, "Alt"}, {&kNest, "Nest"}, {&kIntSetOf, "IntSetOf"}}) {
        auto problems = LintDescriptor(d, name);
        EXPECT_TRUE(problems.empty()) << problems.front();
    }
}

TEST(DescriptorLint, FindsTableMistakes) {
    static constexpr Asn1Descriptor kTwoInts[] = {desc::kInteger, Optional(desc::kInteger)};
    static constexpr Components<2> kAmbiguous = {{&kTwoInts[1], &kTwoInts[0]}};
    static constexpr Asn1Descriptor kBadSeq = Sequence(kAmbiguous);
    static constexpr Components<2> kSameAlt = {{&kTwoInts[0], &kTwoInts[0]}};
    static constexpr Asn1Descriptor kBadChoice = Choice(kSameAlt);
    static constexpr Asn1Descriptor kNoTag = Asn1Descriptor{0x80, 0, ASN1_FLAG_EXPLICIT, ASN1_INTEGER, -1, 0, nullptr, 0, nullptr};
    static constinit const Asn1Primitive kNullValue{ASN1_NULL, 0, nullptr};
    static constexpr Asn1Descriptor kNullDefault = Optional(desc::kNull, &kNullValue);
    for (const Asn1Descriptor* d : {&kBadSeq, &kBadChoice, &kNoTag, &kNullDefault}) {
        EXPECT_FALSE(LintDescriptor(d, "bad").empty());
    }
}

}  // namespace
