// The generic engine through its exported calls, on descriptors written here as plain records:
// what the decoder accepts and what each malformation returns, the DER the encoder writes, value
// trees, leaves, identifiers and lists.
#include <functional>

#include <gtest/gtest.h>

#include <cstring>

#include "TestUtil.h"
#include "tarvelon/engine/Engine.h"

using namespace tvtest;

namespace {

constexpr Asn1Descriptor Prim(uint8_t type) { return {0, 0, 0, type, -1, 0, nullptr, 0, nullptr}; }
constexpr Asn1Descriptor Tagged(int32_t tag, Asn1Descriptor d, uint8_t flags = 0) {
    d.tagClass = ASN1_CLASS_CONTEXT, d.tag = tag, d.flags |= flags;
    return d;
}
constexpr Asn1Descriptor Opt(Asn1Descriptor d, const void* byDefault = nullptr) {
    d.flags |= ASN1_FLAG_OPTIONAL, d.defaultValue = byDefault;
    return d;
}
template <size_t N>
constexpr Asn1Descriptor Of(uint8_t type, const Asn1Descriptor* const (&parts)[N]) {
    const bool slots = type == ASN1_SEQUENCE || type == ASN1_SET;
    return {0, ASN1_CONSTRUCTED_FORM, 0, type, -1, slots ? uint32_t(N * sizeof(void*)) : 0, parts, N, nullptr};
}

uint8_t kZeroOctet[1] = {0};
constinit const Asn1Primitive kZero{ASN1_INTEGER, 1, kZeroOctet};
constinit const Asn1Primitive kFalse{ASN1_BOOLEAN, 1, kZeroOctet};

constexpr Asn1Descriptor kInt = Prim(ASN1_INTEGER), kBool = Prim(ASN1_BOOLEAN), kOctets = Prim(ASN1_OCTET_STRING),
                         kNull = Prim(ASN1_NULL), kBits = Prim(ASN1_BIT_STRING), kAny = Prim(ASN1_ANY);

// Sample ::= SEQUENCE { version [0] EXPLICIT INTEGER DEFAULT 0, flag BOOLEAN DEFAULT FALSE,
//                       number INTEGER, note [1] IMPLICIT OCTET STRING OPTIONAL, text UTF8String OPTIONAL }
enum { kVersion, kFlag, kNumber, kNote, kText };
constexpr Asn1Descriptor kVersionD = Opt(Tagged(0, kInt, ASN1_FLAG_EXPLICIT), &kZero), kFlagD = Opt(kBool, &kFalse),
                         kNoteD = Opt(Tagged(1, kOctets)), kTextD = Opt(Prim(ASN1_UTF8_STRING));
constexpr const Asn1Descriptor* kSampleParts[] = {&kVersionD, &kFlagD, &kInt, &kNoteD, &kTextD};
constexpr Asn1Descriptor kSample = Of(ASN1_SEQUENCE, kSampleParts);

constexpr const Asn1Descriptor* kIntElement[] = {&kInt};
constexpr const Asn1Descriptor* kAnyElement[] = {&kAny};
constexpr Asn1Descriptor kIntSetOf = Of(ASN1_SET_OF, kIntElement), kIntSeqOf = Of(ASN1_SEQUENCE_OF, kIntElement),
                         kAnySeqOf = Of(ASN1_SEQUENCE_OF, kAnyElement);

// Alt ::= CHOICE { n INTEGER, s [2] IMPLICIT OCTET STRING, e [3] EXPLICIT BOOLEAN }
constexpr Asn1Descriptor kAltS = Tagged(2, kOctets), kAltE = Tagged(3, kBool, ASN1_FLAG_EXPLICIT);
constexpr const Asn1Descriptor* kAltParts[] = {&kInt, &kAltS, &kAltE};
constexpr Asn1Descriptor kAlt = Of(ASN1_CHOICE, kAltParts);

constexpr Asn1Descriptor kHighTag = Tagged(31, kInt), kHighTagExplicit = Tagged(200, kInt, ASN1_FLAG_EXPLICIT);

// Nest ::= SEQUENCE { inner SEQUENCE OF Nest OPTIONAL } -- recursive, so only the depth bound stops it.
extern const Asn1Descriptor kNest;
constexpr const Asn1Descriptor* kNestElement[] = {&kNest};
constexpr Asn1Descriptor kNestList = Opt(Of(ASN1_SEQUENCE_OF, kNestElement));
constexpr const Asn1Descriptor* kNestParts[] = {&kNestList};
constinit const Asn1Descriptor kNest = Of(ASN1_SEQUENCE, kNestParts);

// Holds a tree for the duration of a test.
struct Tree {
    const Asn1Descriptor* d;
    void* v = nullptr;
    explicit Tree(const Asn1Descriptor* desc) : d(desc) {}
    ~Tree() { FreeAsn1Object(d, v); }
    uint32_t consumed = 0;
    void* slot(int i) const { return static_cast<void**>(v)[i]; }
    uint32_t Decode(const Bytes& in) { return Asn1DecodeItem(in.data(), Size(in), d, &v, &consumed); }
    Got Encode(const Asn1Descriptor* as = nullptr) const { return Get(GetAsn1EncodedValue, v, as ? as : d); }
};

const Asn1Primitive* Leaf(void* p) { return static_cast<const Asn1Primitive*>(p); }
uint8_t* Mutable(const char* s) { return const_cast<uint8_t*>(U8(s)); }

TEST(Decoder, Table) {
    const struct {
        const char* name;
        const Asn1Descriptor* d;
        const char* in;
        uint32_t code, consumed;  // consumed: checked when code is 0
        const char* reencoded;    // DER written back, when code is 0; null: the input
    } cases[] = {
        // BOOLEAN and INTEGER carry the DER checks.
        {"bool false", &kBool, "01 01 00", 0, 3, nullptr},
        {"bool true", &kBool, "01 01 FF", 0, 3, nullptr},
        {"bool 01 not DER", &kBool, "01 01 01", 307, 0, nullptr},
        {"bool two octets", &kBool, "01 02 00 00", 307, 0, nullptr},
        {"int 00 7F not minimal", &kInt, "02 02 00 7F", 307, 0, nullptr},
        {"int FF 80 not minimal", &kInt, "02 02 FF 80", 307, 0, nullptr},
        {"int 00 80", &kInt, "02 02 00 80", 0, 4, nullptr},
        {"int FF 7F", &kInt, "02 02 FF 7F", 0, 4, nullptr},
        {"int empty", &kInt, "02 00", 307, 0, nullptr},
        // Lengths: non-minimal long forms are BER and accepted; more than four length octets are not.
        {"length 81 05", &kOctets, "04 81 05 01 02 03 04 05", 0, 8, "04 05 01 02 03 04 05"},
        {"length 84", &kOctets, "04 84 00 00 00 01 AA", 0, 7, "04 01 AA"},
        {"length 85", &kOctets, "04 85 00 00 00 00 01 AA", 304, 0, nullptr},
        {"length FF", &kOctets, "04 FF", 304, 0, nullptr},
        {"length past input", &kOctets, "04 05 01 02", 302, 0, nullptr},
        {"huge length", &kOctets, "04 84 FF FF FF F0 00", 302, 0, nullptr},
        {"length octets cut", &kOctets, "04 82 01", 302, 0, nullptr},
        {"one octet", &kOctets, "04", 302, 0, nullptr},
        {"trailing octets ignored", &kInt, "02 01 05 FF FF", 0, 3, "02 01 05"},
        {"wrong tag", &kInt, "04 01 05", 302, 0, nullptr},
        {"NULL with contents", &kNull, "05 01 00", 0, 3, nullptr},
        {"bit string", &kBits, "03 02 07 80", 0, 4, nullptr},
        {"bit string empty", &kBits, "03 00", 302, 0, nullptr},
        {"bit string unused 8", &kBits, "03 02 08 00", 302, 0, nullptr},
        {"constructed bit string", &kBits, "23 80 03 02 00 AA 00 00", 32, 0, nullptr},
        // Segmented OCTET STRING in the indefinite form.
        {"segments", &kOctets, "24 80 04 02 AA BB 04 01 CC 00 00", 0, 11, "04 03 AA BB CC"},
        {"segments, input ends", &kOctets, "24 80 04 01 AA", 0, 5, "04 01 AA"},
        {"segment with other tag", &kOctets, "24 80 02 01 AA 00 00", 336, 0, nullptr},
        {"segment past end", &kOctets, "24 80 04 05 AA 00 00", 302, 0, nullptr},
        {"definite constructed", &kOctets, "24 03 04 01 AA", 302, 0, nullptr},
        {"primitive indefinite", &kOctets, "04 80 AA 00 00", 335, 0, nullptr},
        // Structures: OPTIONAL and DEFAULT components.
        {"only required", &kSample, "30 03 02 01 05", 0, 5, nullptr},
        {"empty note, no text", &kSample, "30 05 02 01 05 81 00", 0, 7, nullptr},
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
        // Each element is bounded by the one that encloses it, not by the end of the input.
        {"component past sequence, input goes on", &kSample, "30 03 02 05 05 00 00 00 00", 302, 0, nullptr},
        {"explicit inner past wrapper", &kSample, "30 0D A0 03 02 06 02 01 05 02 01 05 02 01 07", 302, 0, nullptr},
        {"item past its list", &kNest, "30 04 30 02 30 03 00 00 00", 302, 0, nullptr},
        {"any past input", &kAny, "30 05 02 01 05", 302, 0, nullptr},
        // Lists: a SET OF is written in DER order, a SEQUENCE OF as it came.
        {"set of", &kIntSetOf, "31 06 02 01 05 02 01 03", 0, 8, "31 06 02 01 03 02 01 05"},
        {"set of, a prefix first", &kIntSetOf, "31 07 02 02 05 00 02 01 05", 0, 9, "31 07 02 01 05 02 02 05 00"},
        {"set of, by octets not length", &kIntSetOf, "31 07 02 01 7F 02 02 00 80", 0, 9, nullptr},
        {"set of, equal ones kept", &kIntSetOf, "31 09 02 01 01 02 01 01 02 01 00", 0, 11, "31 09 02 01 00 02 01 01 02 01 01"},
        {"set of empty", &kIntSetOf, "31 00", 0, 2, nullptr},
        {"set of indefinite", &kIntSetOf, "31 80 02 01 05 00 00", 0, 7, "31 03 02 01 05"},
        {"set of stray octet", &kIntSetOf, "31 04 02 01 05 00", 302, 0, nullptr},
        {"set of bad element", &kIntSetOf, "31 04 02 02 00 05", 307, 0, nullptr},
        {"seq of keeps order", &kIntSeqOf, "30 06 02 01 05 02 01 03", 0, 8, nullptr},
        {"any items", &kAnySeqOf, "30 09 05 00 30 80 02 01 01 00 00", 0, 11, nullptr},
        {"any indefinite without end", &kAnySeqOf, "30 06 30 80 02 01 01 00", 335, 0, nullptr},
        {"choice integer", &kAlt, "02 01 07", 0, 3, nullptr},
        {"choice implicit", &kAlt, "82 01 07", 0, 3, nullptr},
        {"choice explicit", &kAlt, "A3 03 01 01 FF", 0, 5, nullptr},
        {"choice none", &kAlt, "04 01 07", 302, 0, nullptr},
        {"tag 31", &kHighTag, "9F 1F 01 05", 0, 4, nullptr},
        {"tag 200 explicit", &kHighTagExplicit, "BF 81 48 03 02 01 05", 0, 7, nullptr},
        {"tag octets cut", &kHighTag, "9F 81", 302, 0, nullptr},
        {"tag 2^32 + 31 does not wrap to 31", &kHighTag, "9F 90 80 80 80 1F 01 05", 302, 0, nullptr},
        {"empty nest", &kNest, "30 00", 0, 2, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Tree tree(c.d);
        ASSERT_EQ(tree.Decode(Hex(c.in)), c.code);
        EXPECT_EQ(tree.v == nullptr, c.code != 0);
        if (c.code == 0) {
            EXPECT_EQ(tree.consumed, c.consumed);
            EXPECT_EQ(tree.Encode().hex(), H(c.reencoded ? c.reencoded : c.in));
        }
    }
    uint32_t line = 0;  // the last failure stays on record through the successes after it
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/Asn1Codec.cpp");
    EXPECT_GT(line, 0u);
    // An absent OPTIONAL is no error even without input; a required component is.
    void* v = reinterpret_cast<void*>(1);
    uint32_t consumed = 7;
    EXPECT_EQ(Asn1DecodeItem(kZeroOctet, 0, &kTextD, &v, &consumed), 0u);
    EXPECT_EQ(v, nullptr);
    EXPECT_EQ(consumed, 0u);
    EXPECT_EQ(Asn1DecodeItem(kZeroOctet, 0, &kInt, &v, &consumed), 302u);
    EXPECT_EQ(Asn1DecodeItem(nullptr, 1, &kInt, &v, &consumed), 32u);
    EXPECT_EQ(Asn1DecodeItem(kZeroOctet, 1, nullptr, &v, &consumed), 32u);
    EXPECT_EQ(Asn1DecodeItem(kZeroOctet, 1, &kInt, nullptr, &consumed), 32u);
}

TEST(Decoder, NestingIsBoundedAndAnyCostsNoStack) {
    // SEQUENCE { SEQUENCE OF { SEQUENCE { ... } } }, two constructed levels per step, indefinite form.
    auto nested = [](int levels, int perLevel) {
        Bytes b;
        for (int i = 0; i < levels * perLevel; ++i) b.insert(b.end(), {0x30, 0x80});
        b.resize(b.size() * 2, 0);
        return b;
    };
    for (int levels : {30, 33, 1000, 100000}) {
        SCOPED_TRACE(levels);
        Tree deep(&kNest);
        EXPECT_EQ(deep.Decode(nested(levels, 2)), levels == 30 ? 0u : 302u);
    }
    // An ANY measures its indefinite end iteratively, however deep the nesting.
    Tree any(&kAny);
    ASSERT_EQ(any.Decode(nested(200000, 1)), 0u);
    EXPECT_EQ(any.consumed, 800000u);
}

TEST(HeaderInfo, Table) {
    const struct {
        const char* in;
        uint32_t code;
        uint8_t cls, cons;
        uint32_t tag, length, indefinite, header;
        bool askForm = true;  // without the form asked for, the content length is checked against the input
    } cases[] = {
        {"30 03 02 01 05", 0, 0x00, 0x20, 16, 3, 0, 2},
        {"A0 80 02 01 05 00 00", 0, 0x80, 0x20, 0, 5, 1, 2},
        {"9F 1F 01 05", 0, 0x80, 0x00, 31, 1, 0, 3},
        {"5F 81 00 00", 0, 0x40, 0x00, 128, 0, 0, 4},
        {"04 82 01 00", 0, 0x00, 0x00, 4, 256, 0, 4},
        {"04 82 01 00", 302, 0, 0, 0, 0, 0, 0, false},
        {"9F 8F FF FF FF 7F 00", 0, 0x80, 0x00, 0xFFFFFFFF, 0, 0, 7},
        {"9F 80 80 80 80 80 01 00", 0, 0x80, 0x00, 1, 0, 0, 8},  // leading zero groups
        {"9F 90 80 80 80 00 00", 302, 0, 0, 0, 0, 0, 0},           // 2^32
    };
    uint8_t cls = 9, cons = 9;
    uint32_t tag = 0, len = 0, indef = 0, header = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        const Bytes in = Hex(c.in);
        ASSERT_EQ(GetAsn1ObjectInfo(in.data(), Size(in), &cls, &cons, &tag, &len, c.askForm ? &indef : nullptr, &header), c.code);
        if (c.code == 0) {
            EXPECT_EQ(std::vector<uint32_t>({cls, cons, tag, len, indef, header}),
                      std::vector<uint32_t>({c.cls, c.cons, c.tag, c.length, c.indefinite, c.header}));
        }
    }
    // A stored ANY is read with the same bound, so a hand-made record cannot send its readers past it.
    Bytes cut = Hex("30 05 02 01 05");
    const Asn1Primitive any{0x30, 5, cut.data()};
    EXPECT_EQ(GetAsn1AnyInfo(&any, &cls, &cons, &tag, &len, &header), 302u);
}

// An ANY is written out unchanged and read back by its own header, so every entry point that
// stores caller bytes as one takes exactly one complete element.
TEST(AnyValues, EveryEntryPointTakesOneWholeElement) {
    const Bytes oid = Packed("1.2.643.2.2.3");
    const std::pair<const char*, std::function<uint32_t(const Bytes&)>> entries[] = {
        {"general name", [](const Bytes& b) {
             Own<FreeX509GeneralName> n;
             return AllocX509GeneralNameValue(&n.p, 0, b.data(), Size(b));
         }},
        {"algorithm parameters", [&](const Bytes& b) {
             Own<FreeX509Crl> crl;
             EXPECT_EQ(CreateX509Crl(&crl.p), 0u);
             return SetX509CrlSignatureAlgorithmOidAndParameters(crl.p, oid.data(), b.data(), Size(b));
         }},
        {"attribute value", [&](const Bytes& b) {
             Own<FreeRsaAttribute> a;
             return CreateRsaAttribute(&a.p, oid.data(), b.data(), Size(b));
         }},
        {"policy qualifier", [&](const Bytes& b) {
             Own<FreeExtensionCertificatePolicies> list;
             uint32_t index = 0;
             EXPECT_EQ(CreateExtensionCertificatePolicies(&list.p), 0u);
             EXPECT_EQ(AddExtensionPolicyInformation(list.p, oid.data(), &index), 0u);
             return AddExtensionPolicyQualifier(list.p, index, oid.data(), b.data(), Size(b));
         }},
    };
    const std::pair<const char*, uint32_t> inputs[] = {
        {"30 03 02 01 05", 0},         {"30 80 02 01 05 00 00", 0}, {"30 03 02 01 05 00", 32},
        {"05 00 05 00", 32},           {"30 05 02 01 05", 32},      {"30 80 02 01 05", 32},
        {"9F 90 80 80 80 1F 00", 32},  {"30", 32},
    };
    for (const auto& [entry, call] : entries)
        for (const auto& [in, code] : inputs) EXPECT_EQ(call(Hex(in)), code) << entry << ": " << in;
}

TEST(Encoder, LengthFormsAndHighTags) {
    for (auto [n, header] : {std::pair{0u, "04 00"}, {127u, "04 7F"}, {128u, "04 81 80"}, {255u, "04 81 FF"},
                             {256u, "04 82 01 00"}, {65535u, "04 82 FF FF"}, {65536u, "04 83 01 00 00"},
                             {16777216u, "04 84 01 00 00 00"}}) {
        Bytes content(n, 0xAB);
        Asn1Primitive p{ASN1_OCTET_STRING, n, content.data()};
        const Got out = Get(GetAsn1EncodedValue, &p, &kOctets);
        ASSERT_EQ(out.bytes.size(), Hex(header).size() + n) << n;
        EXPECT_EQ(ToHex(out.bytes.data(), Hex(header).size()), H(header)) << n;
    }
    for (auto [tag, constructed, der] : {std::tuple{30, 0, "9E 00"}, {31, 0, "9F 1F 00"}, {31, ASN1_CONSTRUCTED_FORM, "BF 1F 00"},
                                         {127, 0, "9F 7F 00"}, {128, 0, "9F 81 00 00"}, {16384, 0, "9F 81 80 00 00"}}) {
        Asn1Descriptor d = Tagged(tag, kNull);
        d.constructed = uint8_t(constructed);
        Asn1Primitive null{ASN1_NULL, 0, nullptr};
        EXPECT_EQ(Get(GetAsn1EncodedValue, &null, &d).hex(), H(der)) << tag;
    }
}

TEST(Encoder, Refusals) {
    Tree unset(&kSample);
    ASSERT_EQ(CreateAsn1Object(&kSample, &unset.v, 0), 0u);
    EXPECT_EQ(unset.Encode().rc, 311u);  // a required component never set
    // A DEFAULT of a kind that cannot be compared makes a present component unencodable.
    static constinit const Asn1Primitive kNullDefault{ASN1_NULL, 0, nullptr};
    constexpr Asn1Descriptor kNullWithDefault = Opt(kNull, &kNullDefault);
    EXPECT_EQ(Get(GetAsn1EncodedValue, &kNullDefault, &kNullWithDefault).rc, 300u);
    Asn1ChoiceValue choice{5, nullptr};
    EXPECT_EQ(Get(GetAsn1EncodedValue, &choice, &kAlt).rc, 306u);
    constexpr Asn1Descriptor kSetStruct = Of(ASN1_SET, kAltParts);  // SET as a structure cannot be written
    void* slots[3] = {};
    EXPECT_EQ(Get(GetAsn1EncodedValue, slots, &kSetStruct).rc, 300u);
    uint32_t size = 0;
    EXPECT_EQ(Asn1Encode(nullptr, &kInt, nullptr, &size), 32u);
    // A context-tagged ANY rewrites the stored identifier and keeps its constructed bit.
    Tree any(&kAny);
    ASSERT_EQ(any.Decode(Hex("30 03 02 01 05")), 0u);
    constexpr Asn1Descriptor kImplicitAny = Tagged(4, kAny), kExplicitAny = Tagged(4, kAny, ASN1_FLAG_EXPLICIT);
    EXPECT_EQ(any.Encode(&kImplicitAny).hex(), H("A4 03 02 01 05"));
    EXPECT_EQ(any.Encode(&kExplicitAny).hex(), H("A4 05 30 03 02 01 05"));
}

// Holder ::= SEQUENCE { v INTEGER DEFAULT 0, n INTEGER, c Alt, a ANY, l SEQUENCE OF INTEGER, o OCTET STRING OPTIONAL }
enum { kV, kN, kC, kA, kL, kO };
constexpr Asn1Descriptor kDefaultInt = Opt(kInt, &kZero), kOptOctets = Opt(kOctets);
constexpr const Asn1Descriptor* kHolderParts[] = {&kDefaultInt, &kInt, &kAlt, &kAny, &kIntSeqOf, &kOptOctets};
constexpr Asn1Descriptor kHolder = Of(ASN1_SEQUENCE, kHolderParts), kOptHolder = Opt(kHolder), kBogus = Prim(7);

TEST(Values, CreateFillsWhatTheLeavesFlagAsks) {
    for (uint32_t leaves : {0u, 1u}) {
        SCOPED_TRACE(leaves);
        Tree t(&kHolder);
        ASSERT_EQ(CreateAsn1Object(&kHolder, &t.v, leaves), 0u);
        EXPECT_EQ(Leaf(t.slot(kV))->content[0], 0);        // DEFAULT: a copy of the default, whatever the flag
        EXPECT_EQ(t.slot(kN) != nullptr, leaves == 1);      // primitive slots only with leaves
        EXPECT_EQ(static_cast<Asn1ChoiceValue*>(t.slot(kC))->value, nullptr);  // CHOICE, ANY and lists always
        EXPECT_NE(t.slot(kA), nullptr);
        EXPECT_EQ(static_cast<Asn1List*>(t.slot(kL))->sorted, 1u);
        EXPECT_EQ(t.slot(kO), nullptr);  // OPTIONAL without default stays absent
    }
    void* v = nullptr;
    EXPECT_EQ(CreateAsn1Object(&kOptOctets, &v, 1), 0u);
    EXPECT_EQ(v, nullptr);
    EXPECT_EQ(CreateAsn1Object(nullptr, &v, 1), 32u);
    EXPECT_EQ(CreateAsn1Object(&kBogus, &v, 1), 300u);
    Tree opt(&kOptHolder);
    ASSERT_EQ(CreateOptionalAsn1Sequence(&kOptHolder, &opt.v, 1), 0u);
    EXPECT_NE(opt.slot(kN), nullptr);
    EXPECT_EQ(CreateOptionalAsn1Sequence(&kHolder, &v, 1), 32u);     // not OPTIONAL
    EXPECT_EQ(CreateOptionalAsn1Sequence(&kOptOctets, &v, 1), 32u);  // not a SEQUENCE
    EXPECT_EQ(FreeAsn1Object(nullptr, reinterpret_cast<void*>(1)), 0u);
}

TEST(Values, CompareKindsAndTheDeliberateRefusals) {
    Asn1Primitive a{ASN1_INTEGER, 1, Mutable("\x05")}, b{99, 1, Mutable("\x05")}, c{ASN1_INTEGER, 2, Mutable("\x05\x00")};
    Asn1BitStringValue x{0, 1, a.content}, y{1, 1, a.content};
    Tree h(&kHolder), l1(&kIntSeqOf), l2(&kIntSeqOf);
    ASSERT_EQ(CreateAsn1Object(&kHolder, &h.v, 1), 0u);
    ASSERT_EQ(l1.Decode(Hex("30 06 02 01 01 02 01 02")), 0u);
    ASSERT_EQ(l2.Decode(Hex("30 06 02 01 02 02 01 01")), 0u);
    const struct {
        const Asn1Descriptor* d;
        const void *x, *y;
        uint32_t rc, equal;
    } cases[] = {
        {&kInt, &a, &b, 0, 1},  // the word is not compared...
        {&kBits, &x, &y, 0, 0},  // ...but the unused bits are
        {&kInt, &a, &c, 0, 0},
        {&kInt, nullptr, nullptr, 0, 1},
        {&kInt, &a, nullptr, 0, 0},
        {&kIntSeqOf, l1.v, l2.v, 0, 0},  // order matters
        {&kIntSeqOf, l1.v, l1.v, 0, 1},
        {&kNull, &a, &a, 300, 9},  // NULL, ENUMERATED, CHOICE and ANY cannot be compared, nor what holds them...
        {&kAlt, &a, &a, 300, 9},
        {&kHolder, h.v, h.v, 300, 9},
        {&kAny, nullptr, nullptr, 0, 1},  // ...but two absent values are equal
    };
    for (const auto& k : cases) {
        uint32_t eq = 9;
        EXPECT_EQ(CompareAsn1Objects(k.d, k.x, k.y, &eq), k.rc) << (&k - cases);
        if (k.rc == 0) {
            EXPECT_EQ(eq, k.equal) << (&k - cases);
        }
    }
}

TEST(Leaves, IntegersBooleansAndTheSizeProtocol) {
    for (auto [n, stored] : {std::pair{0, "00"}, {127, "7F"}, {128, "00 80"}, {-1, "FF"}, {-128, "80"}, {-129, "FF 7F"},
                             {0x7FFFFFFF, "7F FF FF FF"}, {INT32_MIN, "80 00 00 00"}, {256, "01 00"}}) {
        SCOPED_TRACE(n);
        Asn1Primitive* p = AllocAsn1Integer(n);
        const Bytes bigEndian(p->content, p->content + p->length);
        EXPECT_EQ(ToHex(bigEndian), H(stored));
        EXPECT_EQ(CheckAsn1Integer(p), 0u);
        EXPECT_EQ(Get(GetAsn1Integer, p).bytes, Bytes(bigEndian.rbegin(), bigEndian.rend()));
        int32_t back[2] = {};
        const Bytes der = Get(EncodeAsn1Int32, n).bytes;
        ASSERT_EQ(GetAsn1Int32(p, reinterpret_cast<uint8_t*>(&back[0])), 0u);
        ASSERT_EQ(DecodeAsn1Int32(der.data(), Size(der), reinterpret_cast<uint8_t*>(&back[1])), 0u);
        EXPECT_EQ(back[0], n);
        EXPECT_EQ(back[1], n);
        FreeAsn1Object(&kInt, p);
    }
    Asn1Primitive* raw = AllocAsn1Integer_s(U8("\x01\x00\x00\x00\x00"), 5);  // kept as given, even when too long...
    uint8_t four[4];
    EXPECT_EQ(GetAsn1Int32(raw, four), 49u);
    EXPECT_EQ(CheckAsn1Integer(raw), 0u);
    FreeAsn1Object(&kInt, raw);
    raw = AllocAsn1Integer_s(U8("\x00\x05"), 2);  // ...or not minimal
    EXPECT_EQ(CheckAsn1Integer(raw), 307u);
    for (auto [le, stored] : {std::pair{"05 00 00 00", "05"}, {"80 FF FF", "80"}, {"80 00", "00 80"}}) {
        ASSERT_EQ(SetAsn1Integer(raw, Hex(le).data(), Size(Hex(le))), 0u);  // redundant sign octets trimmed
        EXPECT_EQ(ToHex(raw->content, raw->length), H(stored));
    }
    FreeAsn1Object(&kInt, raw);

    // content, word, then what GetAsn1Boolean returns and gives and what CheckAsn1Boolean returns
    for (auto [content, word, get, flag, check] : {std::tuple{"00", 1u, 0u, 0u, 0u}, {"FF", 1u, 0u, 1u, 0u}, {"01", 1u, 307u, 0u, 307u},
                                                   {"00 00", 1u, 307u, 0u, 307u}, {"FF", 4u, 0u, 1u, 307u}}) {
        Bytes octets = Hex(content);
        Asn1Primitive p{word, Size(octets), octets.data()};
        uint32_t got = 0;
        EXPECT_EQ(GetAsn1Boolean(&p, &got), get) << content;
        EXPECT_EQ(got, flag) << content;
        EXPECT_EQ(CheckAsn1Boolean(&p), check) << content;
    }
    Asn1Primitive* t = AllocAsn1Boolean(7);
    EXPECT_EQ(ToHex(t->content, 1), "FF");
    FreeAsn1Object(&kBool, t);

    Bytes content = Hex("01 02 03");
    Asn1Primitive octets{ASN1_OCTET_STRING, 3, content.data()}, empty{ASN1_OCTET_STRING, 0, nullptr},
        broken{ASN1_OCTET_STRING, 2, nullptr};
    uint32_t word = 0, n = 0;
    EXPECT_EQ(Get(GetAsn1ValueAndType, &octets, &word).hex(), "01 02 03");
    EXPECT_EQ(word, uint32_t{ASN1_OCTET_STRING});
    EXPECT_EQ(GetAsn1ValueLength(&octets), 3u);
    EXPECT_EQ(Get(GetAsn1Value, &empty).hex(), "");
    EXPECT_EQ(GetAsn1Value(&broken, content.data(), &n), 311u);
    EXPECT_EQ(GetAsn1Value(nullptr, content.data(), &n), 32u);
    Asn1BitStringValue bits{3, 2, content.data()};
    uint8_t unused = 9;
    EXPECT_EQ(Get(GetAsn1BitString, &bits, &unused).hex(), "01 02");
    EXPECT_EQ(unused, 3);
}

TEST(Oids, TextConversions) {
    std::string arcs42 = "1.2";  // the most arcs a text may have
    for (int i = 3; i <= 42; ++i) arcs42.append(".").append(std::to_string(i));
    const std::string arcs43 = arcs42 + ".43";
    const struct {
        const char* text;
        uint32_t code;
        const char* packed;  // when code is 0
        const char* back;    // text converted back; null: same as the input
    } cases[] = {
        {"1.2.840.113549.1.1.11", 0, "09 2A 86 48 86 F7 0D 01 01 0B", nullptr},
        {"5", 0, "02 81 48", "5.0"},        // a lone arc gains arc 0; 200 takes two octets
        {"2.999", 0, "02 88 37", "26.39"},  // the first number is always split by 40
        {"1.2x.3", 0, "02 2A 03", "1.2.3"},  // text after the digits of a piece is ignored
        {"0.0", 0, "01 00", nullptr},
        {"", 0, "00", "0.0"},
        {"1..2", 32, nullptr, nullptr},
        {".1", 32, nullptr, nullptr},
        {"a.b", 32, nullptr, nullptr},
        {arcs42.c_str(), 0, nullptr, nullptr},
        {arcs43.c_str(), 32, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const Got packed = Get(ConvertStringToOid, c.text);
        ASSERT_EQ(packed.rc, c.code);
        if (c.code) continue;
        if (c.packed) {
            EXPECT_EQ(packed.hex(), H(c.packed));
        }
        char text[512];
        uint32_t size = sizeof text;
        ASSERT_EQ(ConvertOidToString(packed.bytes.data(), text, &size), 0u);
        EXPECT_STREQ(text, c.back ? c.back : c.text);
        EXPECT_EQ(size, std::strlen(text) + 1);
    }
    for (auto [packed, code, text] : {std::tuple{"02 87 67", 0u, "24.39"}, {"00", 0u, "0.0"}, {"02 2A 86", 32u, ""},
                                      {"01 80", 32u, ""}}) {
        char out[64] = "";
        uint32_t size = sizeof out;
        EXPECT_EQ(ConvertOidToString(Hex(packed).data(), out, &size), code) << packed;
        EXPECT_STREQ(out, text);
    }
    char small[3];
    uint32_t size = sizeof small;
    EXPECT_EQ(ConvertOidToString(kZeroOctet, small, &size), 49u);  // "0.0" and its NUL
    EXPECT_EQ(size, 4u);
}

TEST(Oids, ElementsAndEquality) {
    const Bytes packed = Hex("03 55 04 03"), prefix = Hex("02 55 04");
    const Got der = Get(EncodeAsn1Oid, packed.data());
    EXPECT_EQ(der.hex(), "06 03 55 04 03");
    EXPECT_EQ(Get(DecodeAsn1Oid, der.bytes.data(), Size(der.bytes)).bytes, packed);
    Bytes longOid = {0x06, 0x82, 0x01, 0x00};  // longer than a packed form can hold: refused, not cut
    longOid.resize(4 + 256, 0x01);
    for (auto [in, code] : {std::pair{Hex("04 03 55 04 03"), 302u}, {Hex("06 05 55 04 03"), 302u},
                            {Hex("26 80 00 00"), 335u}, {Hex("86 01 00"), 302u}, {longOid, 32u}})
        EXPECT_EQ(Get(DecodeAsn1Oid, in.data(), Size(in)).rc, code) << ToHex(in.data(), 4);
    EXPECT_EQ(IsOidEquals(packed.data(), packed.data()), 1u);
    EXPECT_EQ(IsOidEquals(packed.data(), prefix.data()), 0u);
    Asn1Primitive value{ASN1_OBJECT_IDENTIFIER, 3, const_cast<uint8_t*>(packed.data() + 1)},
        emptyValue{ASN1_OBJECT_IDENTIFIER, 0, nullptr};
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(packed.data(), &value), 1u);
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(prefix.data(), &value), 0u);
    EXPECT_EQ(IsOidAndAsn1ObjectIdentifierEquals(kZeroOctet, &emptyValue), 1u);
}

TEST(Lists, ItemsOctetStringsChoicesAndAny) {
    // A SET OF is put in DER order in the output only, and not at all with sorting off.
    Tree list(&kIntSetOf);
    ASSERT_EQ(list.Decode(Hex("31 06 02 01 05 02 01 03")), 0u);
    auto* l = static_cast<Asn1List*>(list.v);
    EXPECT_EQ(list.Encode().hex(), H("31 06 02 01 03 02 01 05"));
    void* item = nullptr;
    ASSERT_EQ(GetAsn1ListItem(l, 0, &item), 0u);
    EXPECT_EQ(Leaf(item)->content[0], 5);
    ASSERT_EQ(SetAsn1ListSorted(l, 0), 0u);
    EXPECT_EQ(list.Encode().hex(), H("31 06 02 01 05 02 01 03"));
    EXPECT_EQ(GetAsn1ListLength(l), 2u);
    EXPECT_EQ(GetAsn1ListItem(l, -1, &item), 32u);
    EXPECT_EQ(GetAsn1ListItem(l, 2, &item), 32u);

    Own<FreeOctetStrings> strings;
    uint32_t n = 0;
    ASSERT_EQ(CreateOctetStrings(&strings.p), 0u);
    ASSERT_EQ(AddOctetStringsValue(strings, U8("\xAA\xBB"), 2), 0u);
    ASSERT_EQ(AddOctetStringsValue(strings, nullptr, 0), 0u);
    EXPECT_EQ(GetOctetStringsValue(strings, 2, nullptr, &n), 32u);
    static constexpr const Asn1Descriptor* kOctetsElement[] = {&kOctets};
    static constexpr Asn1Descriptor kOctetStrings = Of(ASN1_SEQUENCE_OF, kOctetsElement);
    EXPECT_EQ(Get(GetAsn1EncodedValue, strings.p, &kOctetStrings).hex(), H("30 06 04 02 AA BB 04 00"));

    Tree alt(&kAlt);
    ASSERT_EQ(alt.Decode(Hex("82 01 AA")), 0u);
    void* v = alt.v;
    const Asn1Descriptor* d = &kAlt;
    ASSERT_EQ(GetAsn1ChoiceUnderlyingType(&v, &d), 0u);
    EXPECT_EQ(d, &kAltS);
    EXPECT_EQ(Leaf(v)->content[0], 0xAA);
    Asn1ChoiceValue bad{3, nullptr};
    v = &bad, d = &kAlt;
    EXPECT_EQ(GetAsn1ChoiceUnderlyingType(&v, &d), 306u);

    Tree any(&kAny);  // an indefinite ANY is measured to its end-of-contents
    ASSERT_EQ(any.Decode(Hex("A1 80 02 01 05 00 00")), 0u);
    uint8_t cls, cons;
    uint32_t tag, len, header;
    ASSERT_EQ(GetAsn1AnyInfo(Leaf(any.v), &cls, &cons, &tag, &len, &header), 0u);
    EXPECT_EQ(std::vector<uint32_t>({Leaf(any.v)->word, cls, cons, tag, len, header}), std::vector<uint32_t>({1, 0x80, 0x20, 1, 5, 2}));
    EXPECT_EQ(Get(GetAsn1AnyValue, Leaf(any.v)).hex(), H("A1 80 02 01 05 00 00"));
}

}  // namespace
