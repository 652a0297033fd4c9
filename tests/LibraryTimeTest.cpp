// Time records, their arithmetic, and the UTCTime / GeneralizedTime / X.509 Time forms.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string>

#include "TestUtil.h"
#include "tarvelon/text/LibraryTime.h"

namespace {

using tvtest::Bytes;
using tvtest::Hex;
using tvtest::ToHex;

struct Fields {
    uint32_t year, month, day, hour, minute, second;
};

LibraryTime Make(Fields f) { return LibraryTime{f.year, f.month, f.day, f.hour, f.minute, f.second}; }

std::string Show(const LibraryTime& t) {
    char text[80];
    std::snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
    return text;
}
std::string Show(Fields f) { return Show(Make(f)); }

// A primitive element of universal `tag` around text contents.
Bytes Element(uint8_t tag, const std::string& contents) {
    Bytes b(contents.size() + 2);
    b[0] = tag;
    b[1] = static_cast<uint8_t>(contents.size());
    std::copy(contents.begin(), contents.end(), b.begin() + 2);
    return b;
}

// A leaf borrowing `text` as its contents.
Asn1Primitive Leaf(uint32_t word, const std::string& text) {
    return {word, static_cast<uint32_t>(text.size()),
            text.empty() ? nullptr : reinterpret_cast<uint8_t*>(const_cast<char*>(text.data()))};
}
Asn1Primitive Leaf(uint32_t word, std::string&& text) = delete;  // would dangle

std::string EncodeTimeHex(const LibraryTime& t) {
    uint8_t out[64];
    uint32_t n = sizeof out;
    return EncodeTime(&t, out, &n) == TV_OK ? ToHex(out, n) : "";
}

TEST(LibraryTimeTest, EncodeTimeSwitchesToGeneralizedTimeIn2050) {
    // The 2049/2050 pair is byte for byte what `openssl ca -startdate 20491231235959Z
    // -enddate 20500101000000Z` writes into a certificate's validity.
    struct {
        Fields time;
        Bytes element;
        bool roundTrips;
    } cases[] = {
        {{2049, 12, 31, 23, 59, 59}, Element(0x17, "491231235959Z"), true},
        {{2050, 1, 1, 0, 0, 0}, Element(0x18, "20500101000000Z"), true},
        {{1950, 1, 1, 0, 0, 0}, Element(0x17, "500101000000Z"), true},
        {{2100, 12, 31, 23, 59, 59}, Element(0x18, "21001231235959Z"), true},
        // Every year before 2050 is a UTCTime, so 1900..1949 read back a century later.
        {{1949, 6, 1, 0, 0, 0}, Element(0x17, "490601000000Z"), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Show(c.time));
        EXPECT_EQ(EncodeTimeHex(Make(c.time)), ToHex(c.element));
        LibraryTime back{};
        ASSERT_EQ(DecodeTime(c.element.data(), static_cast<uint32_t>(c.element.size()), &back), TV_OK);
        EXPECT_EQ(Show(back) == Show(c.time), c.roundTrips) << Show(back);
    }
}

TEST(LibraryTimeTest, DecodeTime) {
    struct {
        const char* name;
        Bytes in;
        uint32_t rc;
        Fields expected;
    } cases[] = {
        {"GeneralizedTime before 2050", Element(0x18, "19491231235959Z"), TV_OK, {1949, 12, 31, 23, 59, 59}},
        {"fraction ignored", Element(0x18, "20500101000000.999Z"), TV_OK, {2050, 1, 1, 0, 0, 0}},
        {"zone not examined", Element(0x17, "491231235959-0300"), TV_OK, {2049, 12, 31, 23, 59, 59}},
        {"UTCTime without seconds", Element(0x17, "4912312359Z"), TV_ERR_NOT_DER, {}},
        {"GeneralizedTime of 14 octets", Element(0x18, "205001010000Z0"), TV_ERR_NOT_DER, {}},
        {"empty UTCTime", Hex("17 00"), TV_ERR_MALFORMED, {}},
        {"month 13", Element(0x17, "491331235959Z"), TV_ERR_TIME, {}},
        {"a letter among the digits", Element(0x17, "4912A1235959Z"), TV_ERR_TIME, {}},
        {"not a time", Element(0x04, "491231235959Z"), TV_ERR_MALFORMED, {}},
        {"length beyond the input", Hex("17 0E 34 39"), TV_ERR_MALFORMED, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        LibraryTime t{};
        ASSERT_EQ(DecodeTime(c.in.data(), static_cast<uint32_t>(c.in.size()), &t), c.rc);
        if (c.rc == TV_OK) {
            EXPECT_EQ(Show(t), Show(c.expected));
        }
    }
    LibraryTime t{};
    EXPECT_EQ(DecodeTime(Hex("17 00").data(), 0, &t), TV_ERR_INVALID_ARGUMENT);
}

TEST(LibraryTimeTest, EncodeTimeSizeProtocolAndFailures) {
    const LibraryTime t = Make({2050, 1, 1, 0, 0, 0});
    uint8_t out[17];
    for (uint32_t room : {0u, 16u, 17u}) {
        uint32_t n = room;
        EXPECT_EQ(EncodeTime(&t, room ? out : nullptr, &n), room == 16 ? TV_ERR_BUFFER_TOO_SMALL : TV_OK) << room;
        EXPECT_EQ(n, 17u) << room;
    }
    uint32_t n = sizeof out;

    EXPECT_EQ(EncodeTime(nullptr, out, &n), TV_ERR_TIME);
    // A year too wide for its four places (a record filled without the setter) moves the "Z";
    // the value builder reports that as 1 (kept as it is).
    const LibraryTime wide = Make({12050, 1, 1, 0, 0, 0});
    EXPECT_EQ(EncodeTime(&wide, out, &n), TV_ERR_NO_MEMORY);

    const int runs = tvtest::ForEachAllocationFailure([&] {
        uint32_t room = sizeof out;
        return EncodeTime(&t, out, &room);
    });
    EXPECT_GT(runs, 1);  // it allocates, and every injected failure came back as 1
}

// "Nov 21 21:48:06 2026 GMT", as `openssl x509 -dates` prints it.
Fields ParseOpenSslDate(const std::string& text) {
    char month[4] = {};
    Fields f{};
    std::sscanf(text.c_str(), "%3s %u %u:%u:%u %u", month, &f.day, &f.hour, &f.minute, &f.second, &f.year);
    f.month = static_cast<uint32_t>(std::string("JanFebMarAprMayJunJulAugSepOctNovDec").find(month) / 3 + 1);
    return f;
}

TEST(LibraryTimeTest, CertificateValidityAgreesWithOpenSsl) {
    for (const char* name : {"rsa_ca", "gost2001", "gost2012_256", "gost2012_512"}) {
        SCOPED_TRACE(name);
        const Bytes der = tvtest::ReadFile(tvtest::Fixture(std::string("certs/") + name + ".der"));
        std::ifstream txt(tvtest::Fixture(std::string("certs/") + name + ".txt"));
        std::string line, dates[2];
        while (std::getline(txt, line)) {
            if (line.rfind("notBefore=", 0) == 0) dates[0] = line.substr(10);
            if (line.rfind("notAfter=", 0) == 0) dates[1] = line.substr(9);
        }
        // Validity ::= SEQUENCE { notBefore Time, notAfter Time }, two UTCTimes here.
        const Bytes marker = Hex("30 1E 17 0D");
        const auto at = std::search(der.begin(), der.end(), marker.begin(), marker.end());
        ASSERT_NE(at, der.end());
        for (size_t i = 0; i < 2; ++i) {
            const uint8_t* element = &*at + 2 + 15 * i;
            LibraryTime t{};
            ASSERT_EQ(DecodeTime(element, 15, &t), TV_OK);
            EXPECT_EQ(Show(t), Show(ParseOpenSslDate(dates[i])));
            EXPECT_EQ(EncodeTimeHex(t), ToHex(element, 15));
        }
    }
}


TEST(LibraryTimeTest, LeafReadersAndTheirLengthRules) {
    struct {
        const char* name;
        uint32_t (*reader)(const void*, LibraryTime*) noexcept;
        std::string text;
        uint32_t rc;
    } cases[] = {
        // The lone UTCTime reader wants 15 octets, so it refuses what the writer produces.
        {"UTCTime, 13 octets", tv::GetTimeFromUtcTimeLeaf, "491231235959Z", TV_ERR_NOT_DER},
        {"UTCTime with an offset", tv::GetTimeFromUtcTimeLeaf, "491231235959-0300", TV_OK},
        {"UTCTime, no contents", tv::GetTimeFromUtcTimeLeaf, "", TV_ERR_MALFORMED},
        {"GeneralizedTime", tv::GetTimeFromGeneralizedTimeLeaf, "20491231235959Z", TV_OK},
        {"GeneralizedTime, 14 octets", tv::GetTimeFromGeneralizedTimeLeaf, "20491231235959", TV_ERR_NOT_DER},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Asn1Primitive leaf = Leaf(ASN1_UTC_TIME, c.text);
        LibraryTime t{};
        ASSERT_EQ(c.reader(&leaf, &t), c.rc);
        if (c.rc == TV_OK) {
            EXPECT_EQ(Show(t), "2049-12-31 23:59:59");
        }
        EXPECT_EQ(c.reader(nullptr, &t), TV_ERR_ABSENT);  // an absent component
    }
}

TEST(LibraryTimeTest, SlotWritersReplaceAndKeepOnFailure) {
    const LibraryTime first = Make({2049, 12, 31, 23, 59, 59});
    const LibraryTime second = Make({2050, 1, 1, 0, 0, 0});
    const LibraryTime wide = Make({12050, 1, 1, 0, 0, 0});

    void* leaf = nullptr;
    ASSERT_EQ(tv::SetUtcTimeLeaf(&leaf, &first), TV_OK);
    EXPECT_EQ(ToHex(tvtest::Encode(leaf, &tv::desc::kUtcTime)), ToHex(Element(0x17, "491231235959Z")));
    ASSERT_EQ(tv::SetGeneralizedTimeLeaf(&leaf, &second), TV_OK);
    EXPECT_EQ(tv::SetGeneralizedTimeLeaf(&leaf, &wide), TV_ERR_TIME);
    EXPECT_EQ(ToHex(tvtest::Encode(leaf, &tv::desc::kGeneralizedTime)), ToHex(Element(0x18, "20500101000000Z")));
    FreeAsn1Object(&tv::desc::kGeneralizedTime, leaf);

    void* choice = nullptr;
    ASSERT_EQ(tv::SetTimeChoice(&choice, &first), TV_OK);
    ASSERT_EQ(tv::SetTimeChoice(&choice, &second), TV_OK);  // the first value is freed (sanitizer run)
    EXPECT_EQ(tv::SetTimeChoice(&choice, &wide), TV_ERR_TIME);
    EXPECT_EQ(tv::SetTimeChoice(&choice, nullptr), TV_ERR_TIME);
    LibraryTime back{};
    ASSERT_EQ(tv::GetTimeFromTimeChoice(choice, &back), TV_OK);
    EXPECT_EQ(Show(back), Show(second));
    static_cast<Asn1ChoiceValue*>(choice)->index = 2;  // an alternative Time does not have
    EXPECT_EQ(tv::GetTimeFromTimeChoice(choice, &back), TV_ERR_NOT_DER);
    static_cast<Asn1ChoiceValue*>(choice)->index = tv::Index(tv::desc::TimeAlternative::kGeneralTime);
    FreeAsn1Object(&tv::desc::kTime, choice);

    uint8_t out[17];
    uint32_t n = 16;
    EXPECT_EQ(tv::EncodeGeneralizedTimeElement(&first, out, &n), TV_ERR_BUFFER_TOO_SMALL);
    ASSERT_EQ(n, 17u);
    ASSERT_EQ(tv::EncodeGeneralizedTimeElement(&first, out, &n), TV_OK);
    EXPECT_EQ(ToHex(out, n), ToHex(Element(0x18, "20491231235959Z")));
}


TEST(LibraryTimeTest, PreciseGeneralizedTimeWritesTheShortestFraction) {
    struct {
        uint32_t millisecond, microsecond;
        const char* text;
    } cases[] = {
        {500, 0, "20240229120000.5Z"},      {0, 1, "20240229120000.000001Z"}, {0, 0, "20240229120000Z"},
        {123, 456, "20240229120000.123456Z"}, {120, 0, "20240229120000.12Z"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const LibraryPreciseTime t{2024, 2, 29, 12, 0, 0, c.millisecond, c.microsecond};
        tvtest::Tree leaf(&tv::desc::kGeneralizedTime);
        ASSERT_EQ(tv::SetPreciseGeneralizedTimeLeaf(&leaf.v, &t), TV_OK);
        EXPECT_EQ(std::string(reinterpret_cast<char*>(leaf.as<Asn1Primitive>()->content),
                              leaf.as<Asn1Primitive>()->length), c.text);
        LibraryPreciseTime back{};
        EXPECT_EQ(tv::GetPreciseTimeFromGeneralizedTimeLeaf(leaf.v, &back), TV_OK);
        EXPECT_EQ(std::memcmp(&back, &t, sizeof t), 0);
    }
    const LibraryPreciseTime wide{2024, 2, 29, 12, 0, 0, 1000, 0};
    void* slot = nullptr;
    EXPECT_EQ(tv::SetPreciseGeneralizedTimeLeaf(&slot, &wide), TV_ERR_TIME);
    EXPECT_EQ(slot, nullptr);
}

TEST(LibraryTimeTest, PreciseGeneralizedTimeReading) {
    struct {
        const char* text;
        uint32_t rc, millisecond, microsecond;
    } cases[] = {
        {"20240229120000.5Z", TV_OK, 500, 0},
        {"20240229120000.1234Z", TV_OK, 123, 400},
        {"20240229120000.123456789Z", TV_OK, 123, 456},  // beyond microseconds: ignored
        {"20240229120000,5Z", TV_ERR_NOT_DER, 0, 0},     // bad fraction mark
        {"20240229120000.5", TV_ERR_NOT_DER, 0, 0},      // no Z
        {"202402291200Z", TV_ERR_NOT_DER, 0, 0},
        {"", TV_ERR_MALFORMED, 0, 0},
        {"20241329120000.5Z", TV_ERR_TIME, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const std::string text = c.text;
        const Asn1Primitive leaf = Leaf(ASN1_GENERALIZED_TIME, text);
        LibraryPreciseTime t{};
        ASSERT_EQ(tv::GetPreciseTimeFromGeneralizedTimeLeaf(&leaf, &t), c.rc);
        EXPECT_EQ(t.millisecond, c.millisecond);
        EXPECT_EQ(t.microsecond, c.microsecond);
    }
}


TEST(LibraryTimeTest, SetterStoresFieldByFieldUntilOneFails) {
    const Fields start{2000, 1, 2, 3, 4, 5};
    struct {
        const char* name;
        Fields args;
        uint32_t rc;
        Fields after;
    } cases[] = {
        {"month 13 leaves all", {2023, 13, 1, 0, 0, 0}, TV_ERR_TIME, start},
        {"30 February stores the month", {2023, 2, 30, 0, 0, 0}, TV_ERR_TIME, {2000, 2, 2, 3, 4, 5}},
        {"29 February 2023 passes", {2023, 2, 29, 0, 0, 0}, TV_OK, {2023, 2, 29, 0, 0, 0}},
        {"year 1899", {1899, 6, 7, 0, 0, 0}, TV_ERR_TIME, {2000, 6, 7, 3, 4, 5}},
        {"hour 24", {2023, 6, 7, 24, 0, 0}, TV_ERR_TIME, {2023, 6, 7, 3, 4, 5}},
        {"leap second", {2023, 6, 7, 8, 9, 60}, TV_ERR_TIME, {2023, 6, 7, 8, 9, 5}},
        {"upper limits", {2100, 12, 31, 23, 59, 59}, TV_OK, {2100, 12, 31, 23, 59, 59}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        LibraryTime t = Make(start);
        const Fields& a = c.args;
        EXPECT_EQ(SetLibraryTime(&t, a.day, a.month, a.year, a.hour, a.minute, a.second), c.rc);
        EXPECT_EQ(Show(t), Show(c.after));
    }
    LibraryTime t = Make(start);
    EXPECT_EQ(SetLibraryTimeToNull(&t), TV_ERR_TIME);  // month 0 fails first (kept as it is)
    EXPECT_EQ(Show(t), Show(start));
    uint32_t line = 0;
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/LibraryTime.cpp");

    LibraryPreciseTime p{2000, 1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(SetLibraryPreciseTime(&p, 29, 2, 2024, 23, 59, 59, 999, 1000), TV_ERR_TIME);
    const LibraryPreciseTime partly{2024, 2, 29, 23, 59, 59, 999, 7};
    EXPECT_EQ(std::memcmp(&p, &partly, sizeof p), 0);
}

TEST(LibraryTimeTest, GettersOfANullRecordStoreZeros) {
    uint32_t f[8];
    std::fill(std::begin(f), std::end(f), 77u);
    EXPECT_EQ(GetLibraryPreciseTime(nullptr, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6], &f[7]),
              TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(std::count(std::begin(f), std::end(f), 0u), 8);
    const LibraryPreciseTime p{2024, 2, 29, 1, 2, 3, 4, 5};
    ASSERT_EQ(GetLibraryLocalPreciseTime(&p, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6], &f[7]), TV_OK);
    const uint32_t setterOrder[6] = {29, 2, 2024, 1, 2, 3};
    EXPECT_TRUE(std::equal(setterOrder, setterOrder + 6, f));
    EXPECT_EQ(f[6] | f[7], 0u);  // the local form has no sub-second fields
}

TEST(LibraryTimeTest, CurrentTimeIsUtcNow) {
    auto utcNow = [] {
        const std::time_t now = std::time(nullptr);
        std::tm u{};
        gmtime_r(&now, &u);
        return Make({uint32_t(u.tm_year + 1900), uint32_t(u.tm_mon + 1), uint32_t(u.tm_mday), uint32_t(u.tm_hour),
                     uint32_t(u.tm_min), uint32_t(u.tm_sec)});
    };
    const LibraryTime before = utcNow();
    LibraryTime t{};
    ASSERT_EQ(GetCurrentLibTime(&t), TV_OK);
    const LibraryTime after = utcNow();
    EXPECT_EQ(TestTimeValidity(&before, &t, &after), 0u) << Show(t);
}


TEST(LibraryTimeTest, AddDaysFollowsTheGregorianCalendar) {
    // Expected dates from Python's datetime.date + timedelta.
    struct {
        Fields start;
        uint32_t days;
        Fields expected;
    } cases[] = {
        {{2024, 2, 28, 10, 20, 30}, 1, {2024, 2, 29, 10, 20, 30}},
        {{2023, 12, 31, 23, 59, 59}, 1, {2024, 1, 1, 23, 59, 59}},
        {{2023, 2, 28, 0, 0, 0}, 1, {2023, 3, 1, 0, 0, 0}},
        {{2100, 2, 28, 0, 0, 0}, 1, {2100, 3, 1, 0, 0, 0}},
        {{2000, 2, 28, 0, 0, 0}, 1, {2000, 2, 29, 0, 0, 0}},
        {{2023, 3, 1, 0, 0, 0}, 365, {2024, 2, 29, 0, 0, 0}},
        {{2023, 1, 15, 0, 0, 0}, 10000, {2050, 6, 2, 0, 0, 0}},
        {{2000, 1, 1, 0, 0, 0}, 292253, {2800, 2, 29, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Show(c.start) + " + " + std::to_string(c.days));
        // Run after a call that went through a leap year: each call builds its own month table,
        // so what came before does not matter.
        LibraryTime leap = Make({2024, 1, 1, 0, 0, 0});
        ASSERT_EQ(AddDaysToLibTime(&leap, 400), TV_OK);
        LibraryTime t = Make(c.start);
        ASSERT_EQ(AddDaysToLibTime(&t, c.days), TV_OK);
        EXPECT_EQ(Show(t), Show(c.expected));
    }
    LibraryPreciseTime p{2024, 2, 28, 1, 2, 3, 4, 5};
    ASSERT_EQ(AddDaysToLibPreciseTime(&p, 2), TV_OK);
    const LibraryPreciseTime expected{2024, 3, 1, 1, 2, 3, 4, 5};
    EXPECT_EQ(std::memcmp(&p, &expected, sizeof p), 0);
    LibraryTime null{};
    EXPECT_EQ(AddDaysToLibTime(&null, 1), TV_ERR_TIME);
}

TEST(LibraryTimeTest, CompareAndValidityWindow) {
    const LibraryTime start = Make({2024, 1, 1, 0, 0, 0});
    const LibraryTime end = Make({2024, 12, 31, 23, 59, 59});
    struct {
        Fields time;
        int32_t vsStart;
        uint32_t outside;
    } cases[] = {
        {{2024, 1, 1, 0, 0, 0}, 0, 0},        {{2024, 12, 31, 23, 59, 59}, 1, 0},
        {{2023, 12, 31, 23, 59, 59}, -1, 1},  {{2025, 1, 1, 0, 0, 0}, 1, 1},
        {{2023, 12, 31, 0, 0, 0}, -1, 1},  // the year decides before a later month and day
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Show(c.time));
        const LibraryTime t = Make(c.time);
        EXPECT_EQ(CompareTime(&t, &start), c.vsStart);
        EXPECT_EQ(CompareTime(&start, &t), -c.vsStart);
        EXPECT_EQ(TestTimeValidity(&start, &t, &end), c.outside);
    }
    EXPECT_EQ(CompareTime(nullptr, &start), -1);  // a null record reads as all zero
}


TEST(LibraryTimeTest, PrimitiveValueCodecs) {
    struct {
        uint32_t type;
        const char* contents;
        const char* element;
    } cases[] = {
        {ASN1_INTEGER, "01 00", "02 02 01 00"},
        {ASN1_OCTET_STRING, "", "04 00"},
        {ASN1_OBJECT_IDENTIFIER, "2A 85 03 02 02 03", "06 06 2A 85 03 02 02 03"},
        {ASN1_BIT_STRING, "07 80", "03 02 07 80"},  // the unused-bits count leads the contents
        {ASN1_UTC_TIME, "34 39 5A", "17 03 34 39 5A"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.element);
        const Bytes contents = Hex(c.contents);
        const uint8_t* in = contents.empty() ? reinterpret_cast<const uint8_t*>("") : contents.data();
        uint8_t element[16];
        uint32_t n = sizeof element;
        ASSERT_EQ(EncodeAsn1PrimitiveValue(c.type, in, uint32_t(contents.size()), element, &n), TV_OK);
        EXPECT_EQ(ToHex(element, n), ToHex(Hex(c.element)));
        uint8_t back[16];
        uint32_t m = sizeof back;
        ASSERT_EQ(DecodeAsn1PrimitiveValue(c.type, element, n, back, &m), TV_OK);
        EXPECT_EQ(ToHex(back, m), ToHex(contents));
    }
    const Bytes five = Hex("05");
    const Bytes element = Hex("02 01 05");
    uint8_t out[8];
    uint32_t n = 2;
    EXPECT_EQ(EncodeAsn1PrimitiveValue(ASN1_INTEGER, five.data(), 1, out, &n), TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(n, 3u);
    n = 0;
    EXPECT_EQ(DecodeAsn1PrimitiveValue(ASN1_INTEGER, element.data(), 3, out, &n), TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(n, 1u);
    EXPECT_EQ(EncodeAsn1PrimitiveValue(ASN1_SEQUENCE, five.data(), 1, nullptr, &n), TV_ERR_UNSUPPORTED_TYPE);
    EXPECT_EQ(EncodeAsn1PrimitiveValue(ASN1_INTEGER, nullptr, 0, nullptr, &n), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(DecodeAsn1PrimitiveValue(ASN1_OCTET_STRING, element.data(), 3, out, &n), TV_ERR_MALFORMED);
}

}  // namespace
