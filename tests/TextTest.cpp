// Text and time: base64 and PEM, SHA-1, the Kestrune conversions, code page 1251, byte comparison;
// time records, their arithmetic and the UTCTime / GeneralizedTime / X.509 Time forms.
#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <fstream>

#include "TestUtil.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/text/Text.h"

using namespace tvtest;

namespace {

Bytes Pattern(size_t n, unsigned seed = 7) {
    Bytes b(n);
    for (size_t i = 0; i < n; ++i) b[i] = static_cast<uint8_t>(i * 131 + seed);
    return b;
}
std::string ToBase64(const Bytes& d) {
    const Got g = Sized([&](uint8_t* o, uint32_t* n) { return EncodeToBase64(d.data(), Size(d), reinterpret_cast<char*>(o), n); });
    return std::string(g.bytes.begin(), g.bytes.end());
}
Got FromPem(const std::string& text) { return Get(DecodePem, text.data(), uint32_t(text.size())); }
// Base64 of `data` in lines of `width` joined by `sep`.
std::string Wrapped(const Bytes& data, size_t width, const std::string& sep) {
    std::string flat = ToBase64(data), out;
    std::erase_if(flat, [](char c) { return c == '\r' || c == '\n'; });
    for (size_t i = 0; i < flat.size(); i += width) out += (i ? sep : "") + flat.substr(i, width);
    return out;
}

TEST(Base64, EncoderLayoutAndTheStrictDecoder) {
    for (auto [data, text] : {std::pair{std::string(1, '\0'), "AA=="}, {std::string(2, '\0'), "AAA="}, {"f", "Zg=="},
                              {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="},
                              {"foobar", "Zm9vYmFy"}, {"\xFF\xFE\xFD", "//79"}, {"\xFB\xEF", "++8="}})
        EXPECT_EQ(ToBase64(Text(data)), text);
    for (size_t n = 1; n <= 400; ++n) {
        SCOPED_TRACE(n);
        const Bytes data = Pattern(n, unsigned(n));
        const std::string text = ToBase64(data);
        ASSERT_EQ(text, Wrapped(data, 64, "\r\n"));  // CR LF after every 64 characters, not after the last
        ASSERT_EQ(Wrapped(data, 64, "").size(), 4 * ((n + 2) / 3));
        ASSERT_EQ(Get(DecodeFromBase64, text.data(), uint32_t(text.size())).bytes, data);
        ASSERT_EQ(FromPem(text).bytes, data);
        Bytes inPlace = Text(text);  // the output catches up with the text as closely as it ever can
        uint32_t length = Size(inPlace);
        ASSERT_EQ(tv::DecodePemInPlace(inPlace.data(), &length), 1);
        ASSERT_EQ(Bytes(inPlace.begin(), inPlace.begin() + length), data);
    }
    // The size of an empty body wraps in 32 bits, as it always did.
    uint32_t size = 0;
    char small[16];
    EXPECT_EQ(EncodeToBase64(U8(""), 0, nullptr, &size), 0u);
    EXPECT_EQ(size, 134217726u);
    EXPECT_EQ(EncodePem(U8(""), 0, "X", nullptr, &size), 0u);
    EXPECT_EQ(size, 134217726u + 36 + 2);
    size = sizeof small;
    EXPECT_EQ(EncodeToBase64(U8(""), 0, small, &size), 49u);

    // The decoder skips a fixed two characters after 64: LF-only breaks decode without an error, but wrongly.
    const Bytes data = Pattern(100);
    const std::string lf = Wrapped(data, 64, "\n");
    const Got wrong = Get(DecodeFromBase64, lf.data(), uint32_t(lf.size()));
    EXPECT_EQ(wrong.rc, 0u);
    EXPECT_NE(wrong.bytes, data);
    uint8_t guard[8];
    std::memset(guard, 0xAB, sizeof guard);
    size = sizeof guard;
    EXPECT_EQ(DecodeFromBase64("QUJD=X", 6, guard, &size), 0u);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(guard[2], 0xAB);
    for (const char* shortText : {"", "Q", "QU", "QU="}) {
        size = sizeof guard;
        EXPECT_EQ(DecodeFromBase64(shortText, uint32_t(std::strlen(shortText)), guard, &size), 32u) << shortText;
    }
}

TEST(Pem, TolerantReadingAndItsLimits) {
    const Bytes data = Pattern(100);
    const std::string crlf = Wrapped(data, 64, "\r\n"), lf = Wrapped(data, 64, "\n");
    std::string high = "QUJDRA==";  // bit 7 set on alphabet characters and '=' still decodes
    for (char& c : high) c = static_cast<char>(c | 0x80);
    const struct {
        const char* name;
        std::string text;
        uint32_t rc;
        std::string out;  // empty: `data`
    } cases[] = {
        {"LF-only breaks", "-----BEGIN CERTIFICATE-----\n" + lf + "\n-----END CERTIFICATE-----\n", 0, ""},
        {"spaced BEGIN, any label", "----- BEGIN whatever label, really -----\r\n" + crlf + "\r\n----- END X -----\r\n", 0, ""},
        {"text around the armour", "Subject: test\n-----BEGIN X-----\n" + lf + "\n-----END X-----\ntrailer", 0, ""},
        {"blank lines and spaces", "-----BEGIN X-----\r\n\r\n  " + Wrapped(data, 8, " \r\n ") + "  \r\n\r\n-----END X-----", 0, ""},
        {"76-character lines", "-----BEGIN X-----\n" + Wrapped(data, 76, "\n") + "\n-----END X-----\n", 0, ""},
        {"bare base64, LF-only", lf + "\n", 0, ""},
        {"no END marker", "-----BEGIN X-----\n" + lf + "\n", 0, ""},
        {"high-bit alphabet", "-----BEGIN X-----\n" + high + "\n-----END X-----\n", 0, "ABCD"},
        {"high-bit bare", "\xC1\xC1\xC1\xC1", 0, std::string(3, '\0')},
        {"high-bit padding", "QQ\xBD\xBD", 0, "A"},
        // The spaced END marker is compared over eight characters and needs more than nine
        // characters from its dash to the end of the text.
        {"END quirk: ENDING", "-----BEGIN X-----\nQUJD\n----- ENDING SOON", 0, "ABC"},
        {"END quirk: END-", "-----BEGIN X-----\nQUJD\n----- END-", 0, "ABC"},
        {"END quirk: unspaced", "-----BEGIN X-----\nQUJD\n-----END", 0, "ABC"},
        {"END quirk: spaced, short", "-----BEGIN X-----\nQUJD\n----- END", 319, ""},
        {"END quirk: EN", "-----BEGIN X-----\nQUJD\n----- EN", 319, ""},
        {"65-character lines", "-----BEGIN X-----\n" + Wrapped(data, 65, "\n") + "\n-----END X-----\n", 319, ""},
        {"a tab between lines", "-----BEGIN X-----\n" + Wrapped(data, 64, "\t\n") + "\n-----END X-----\n", 319, ""},
        {"BEGIN without a line end", "-----BEGIN X-----" + Wrapped(data, 1000, ""), 319, ""},
        {"only whitespace after BEGIN", "-----BEGIN X-----\r\n  \r\n", 319, ""},
        {"nothing between the markers", "-----BEGIN X-----\n-----END X-----\n", 319, ""},
        {"three characters", "-----BEGIN X-----\nQUJ\n-----END X-----\n", 319, ""},
        {"trailing fragment", "-----BEGIN X-----\n" + lf + "\nQU\n", 319, ""},
        {"a line that breaks a group", "-----BEGIN X-----\n" + lf + "QUJ\n-----END X-----\n", 319, ""},
        {"padding before the end", "-----BEGIN X-----\nQQ==QUJD\n-----END X-----\n", 319, ""},
        {"padding in the second position", "-----BEGIN X-----\nQ===\n-----END X-----\n", 319, ""},
        {"pad then letter", "-----BEGIN X-----\nQU=D\n-----END X-----\n", 319, ""},
        {"shorter than four", "QUJ", 319, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Got out = FromPem(c.text);
        ASSERT_EQ(out.rc, c.rc);  // errors come from the size query
        EXPECT_EQ(out.bytes, c.rc ? Bytes{} : c.out.empty() ? data : Text(c.out));
    }
    std::string text = "-----BEGIN X-----\nQU\tJD\n-----END X-----\n";
    uint32_t length = uint32_t(text.size()), line = 0;
    EXPECT_EQ(tv::DecodePemInPlace(reinterpret_cast<uint8_t*>(text.data()), &length), 0);
    EXPECT_EQ(length, text.size());  // a failure keeps the length
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/pem.cpp");
}

TEST(Sha1, VectorsAlignmentsAndBothPaths) {
    // Lengths around the padding boundaries and a long input; digests from Python's hashlib. Where the
    // CPU has SHA instructions, these check them and the sweep below holds the portable path to them.
    const struct {
        Bytes data;
        const char* digest;
    } cases[] = {
        {{}, "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709"},
        {Pattern(55), "9E5A20C2604688DF0B1EECF4474B58BFE7227881"},
        {Pattern(56), "BD367CF3B85DC2CAC8F6B4827CB850E4C83C521C"},
        {Pattern(63), "A8F606C343B26FA851DFD149F7B12FC2DBF1AF34"},
        {Pattern(64), "1ABEC92BFBDE4197236CFBA30B6B61C69D605D88"},
        {Pattern(65), "362CE7BC4BC2B47979741DB349C65FD550840DC3"},
        {Pattern(3 * 1024 * 1024 + 5), "8DC1825EAFBE07F0E066B58AD1F1EAC76044F853"},
    };
    for (const auto& c : cases) {
        for (size_t offset = 0; offset < 4; ++offset) {  // any address; the bytes around the digest stay untouched
            Bytes buffer(32, 0x5C), expected(32, 0x5C);
            ASSERT_EQ(sha1(c.data.empty() ? U8("") : c.data.data(), Size(c.data), buffer.data() + offset), 0u);
            const Bytes digest = Hex(c.digest);
            std::copy(digest.begin(), digest.end(), expected.begin() + offset);
            EXPECT_EQ(buffer, expected) << c.data.size() << " at " << offset;
        }
    }
    uint8_t digest[20];
    EXPECT_EQ(sha1(nullptr, 0, digest), 32u);
    EXPECT_EQ(sha1(digest, 0, nullptr), 32u);
    if (!tv::Sha1HasShaNi()) return;
    const Bytes data = Pattern(1100, 91);
    for (size_t n = 0; n <= data.size(); ++n) {
        uint8_t portable[20], ni[20];
        tv::Sha1Digest(data.data(), n, portable, tv::Sha1Path::Portable);
        tv::Sha1Digest(data.data(), n, ni, tv::Sha1Path::ShaNi);
        ASSERT_EQ(0, std::memcmp(portable, ni, 20)) << n;
    }
}

TEST(Kestrune, SignaturesAndPublicKeys) {
    for (auto* convert : {ConvertX509SignatureToKestrune, ConvertKestruneSignatureToX509}) {
        for (uint32_t n : {64u, 128u}) {
            const Bytes in = Pattern(n);
            EXPECT_EQ(Get(convert, in.data(), n).bytes, Bytes(in.rbegin(), in.rend())) << n;  // whole, not per half
        }
        uint8_t buffer[256] = {};
        for (uint32_t bad : {0u, 32u, 63u, 65u, 96u, 127u, 129u, 256u}) {
            uint32_t size = sizeof buffer;
            EXPECT_EQ(convert(buffer, bad, buffer, &size), 32u) << bad;
        }
    }
    const Bytes key64 = Pattern(64, 1), key128 = Pattern(128, 2);
    Bytes record = Get(ConvertX509PublicKeyToKestrune, key64.data(), 64u).bytes;
    Bytes expected(256, 0);  // the halves in 32-octet slots 64 apart, the "v5" mark, kind 0
    std::copy(key64.begin(), key64.begin() + 32, expected.begin());
    std::copy(key64.begin() + 32, key64.end(), expected.begin() + 64);
    expected[252] = 'v', expected[253] = '5';
    EXPECT_EQ(record, expected);
    auto back = [&](int kind) {
        record[254] = static_cast<uint8_t>(kind);
        return Get(ConvertKestrunePublicKeyToX509, record.data(), 256u);
    };
    EXPECT_EQ(back(0).rc, 317u);  // kind 0 as written does not convert back, as it never did
    for (int kind : {'A', 'B', 'C', 'D', 'X', 'Y', 'a', 'b', 'c', 'x', 'y'}) EXPECT_EQ(back(kind).bytes, key64) << kind;
    record = Get(ConvertX509PublicKeyToKestrune, key128.data(), 128u).bytes;
    EXPECT_EQ(Bytes(record.begin() + 128, record.begin() + 252), Bytes(124, 0));
    for (int kind : {'1', '2', '3'}) EXPECT_EQ(back(kind).bytes, key128) << kind;
    for (int kind : {int{'0'}, int{'4'}, int{'E'}, int{'Z'}, int{'d'}, int{'z'}, int{'v'}, 0xFF})
        EXPECT_EQ(back(kind).rc, 317u) << kind;
    uint32_t size = 128;
    EXPECT_EQ(ConvertKestrunePublicKeyToX509(record.data(), 255, expected.data(), &size), 32u);
    EXPECT_EQ(ConvertX509PublicKeyToKestrune(key64.data(), 96, record.data(), &size), 32u);

    const uint8_t a[] = {1, 2, 3}, b[] = {1, 2, 3}, c[] = {1, 2, 4};
    for (auto [x, nx, y, ny, rc] : {std::tuple{(const uint8_t*)nullptr, 0u, (const uint8_t*)nullptr, 0u, 0u},
                                    {a, 3u, nullptr, 0u, 320u}, {nullptr, 0u, a, 0u, 320u}, {a, 3u, b, 3u, 0u},
                                    {a, 3u, c, 3u, 320u}, {a, 2u, b, 3u, 320u}, {a, 0u, c, 0u, 0u}})
        EXPECT_EQ(IsArrayEquals(x, nx, y, ny), rc);
}

std::string Iconv1251(uint8_t byte) {
    iconv_t cd = iconv_open("UTF-8", "CP1251");
    if (cd == reinterpret_cast<iconv_t>(-1)) return {};
    char in[1] = {static_cast<char>(byte)}, out[8];
    char *ip = in, *op = out;
    size_t il = 1, ol = sizeof out;
    const size_t r = iconv(cd, &ip, &il, &op, &ol);
    iconv_close(cd);
    return r == static_cast<size_t>(-1) ? std::string() : std::string(out, op);
}

// The converter's own capacity rules, checked for writes past the room it was given.
uint32_t AnsiToUtf8(const std::string& in, uint32_t capacity, std::string* out, uint32_t* stored) {
    std::string buffer(capacity + 4, '\x7E');
    *stored = capacity;
    const uint32_t rc = ConvertAnsiToUTF8(in.c_str(), buffer.data(), stored);
    if (rc == 0) *out = buffer.substr(0, *stored);
    EXPECT_EQ(rc == 0 ? buffer[*stored] : '\0', '\0');
    EXPECT_EQ(buffer.substr(capacity), std::string(4, '\x7E')) << "written past the capacity";
    return rc;
}

TEST(AnsiToUtf8, CodePage1251AndCapacityRules) {
    // Letters and the listed signs agree with the C library's converter, where it has one.
    const std::string listed = "\xA8\xB8\xAA\xBA\xAF\xBF\xA1\xA2\xA4\xB0\xB7\x95\xB9";
    std::string out;
    uint32_t stored = 0;
    for (int b = 0x80; b < 0x100 && !Iconv1251(0xC0).empty(); ++b) {
        if (b < 0xC0 && listed.find(char(b)) == std::string::npos) continue;
        ASSERT_EQ(AnsiToUtf8(std::string(1, char(b)), 64, &out, &stored), 0u);
        EXPECT_EQ(out, Iconv1251(uint8_t(b))) << b;
    }
    const struct {
        const char* name;
        std::string in;
        uint32_t capacity, rc;
        std::string out;  // or the suggested size, as text, for 49
    } cases[] = {
        {"ASCII and yo", "A\xA8z", 64, 0, "A\xD0\x81z"},
        {"unlisted high bytes follow the letter offset", "\x80\xBE", 64, 0, "\xCF\x90\xD0\x8E"},
        {"empty", "", 1, 0, ""},
        {"capacity 10 is short", "\xC0\xC1", 10, 49, "24"},
        {"capacity 9 leaves no work room", "A", 9, 49, "22"},
        {"limit reached before the end", "ABCDEFGH", 12, 49, "36"},
        {"last character may start just below the limit", "ABC\x95", 13, 0, "ABC\xE2\x80\xA2"},
        // 40 three-byte signs: the suggestion (2 x 40 + 20) is itself too small.
        {"suggestion too small", std::string(40, '\x95'), 100, 49, "100"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(AnsiToUtf8(c.in, c.capacity, &out, &stored), c.rc);
        EXPECT_EQ(c.rc == 0 ? out : std::to_string(stored), c.out);
    }
    uint32_t need = 0;  // a size query gives a capacity that works where the suggestion does not
    ASSERT_EQ(ConvertAnsiToUTF8(std::string(40, '\x95').c_str(), nullptr, &need), 0u);
    ASSERT_EQ(AnsiToUtf8(std::string(40, '\x95'), need, &out, &stored), 0u);
    EXPECT_EQ(stored, 120u);
    EXPECT_EQ(ConvertAnsiToUTF8(nullptr, nullptr, &stored), 32u);
    EXPECT_EQ(ConvertAnsiToUTF8("A", nullptr, nullptr), 32u);
}

// ---- time ---------------------------------------------------------------------------------------

std::string Show(const LibraryTime& t) {
    char text[80];
    std::snprintf(text, sizeof text, "%u-%02u-%02u %02u:%02u:%02u", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return text;
}
// A primitive element of universal `tag` around text contents.
Bytes Element(uint8_t tag, const std::string& contents) {
    Bytes b(contents.size() + 2, tag);
    b[1] = static_cast<uint8_t>(contents.size());
    std::copy(contents.begin(), contents.end(), b.begin() + 2);
    return b;
}

TEST(Time, X509TimeSwitchesToGeneralizedTimeIn2050AndReadsBack) {
    // The 2049/2050 pair is byte for byte what `openssl ca -startdate 20491231235959Z
    // -enddate 20500101000000Z` writes into a certificate's validity.
    for (auto [time, element, roundTrips] :
         {std::tuple{LibraryTime{2049, 12, 31, 23, 59, 59}, Element(0x17, "491231235959Z"), true},
          {LibraryTime{2050, 1, 1, 0, 0, 0}, Element(0x18, "20500101000000Z"), true},
          {LibraryTime{1950, 1, 1, 0, 0, 0}, Element(0x17, "500101000000Z"), true},
          {LibraryTime{2100, 12, 31, 23, 59, 59}, Element(0x18, "21001231235959Z"), true},
          // Every year before 2050 is a UTCTime, so 1900..1949 read back a century later.
          {LibraryTime{1949, 6, 1, 0, 0, 0}, Element(0x17, "490601000000Z"), false}}) {
        SCOPED_TRACE(Show(time));
        EXPECT_EQ(Get(EncodeTime, &time).bytes, element);
        LibraryTime back{};
        ASSERT_EQ(DecodeTime(element.data(), Size(element), &back), 0u);
        EXPECT_EQ(Show(back) == Show(time), roundTrips) << Show(back);
    }
    uint8_t out[17];
    uint32_t n = sizeof out;
    EXPECT_EQ(EncodeTime(nullptr, out, &n), 313u);
    // A year too wide for its four places (a record filled without the setter) moves the "Z"; the
    // value builder reports that as 1, as it always did.
    const LibraryTime wide{12050, 1, 1, 0, 0, 0};
    EXPECT_EQ(EncodeTime(&wide, out, &n), 1u);

    const struct {
        const char* name;
        Bytes in;
        uint32_t rc;
        LibraryTime expected;
    } cases[] = {
        {"GeneralizedTime before 2050", Element(0x18, "19491231235959Z"), 0, {1949, 12, 31, 23, 59, 59}},
        {"fraction ignored", Element(0x18, "20500101000000.999Z"), 0, {2050, 1, 1, 0, 0, 0}},
        {"zone not examined", Element(0x17, "491231235959-0300"), 0, {2049, 12, 31, 23, 59, 59}},
        {"UTCTime without seconds", Element(0x17, "4912312359Z"), 307, {}},
        {"GeneralizedTime of 14 octets", Element(0x18, "205001010000Z0"), 307, {}},
        {"empty UTCTime", Hex("17 00"), 302, {}},
        {"month 13", Element(0x17, "491331235959Z"), 313, {}},
        {"a letter among the digits", Element(0x17, "4912A1235959Z"), 313, {}},
        {"not a time", Element(0x04, "491231235959Z"), 302, {}},
        {"length beyond the input", Hex("17 0E 34 39"), 302, {}},
        {"no octets", Hex("17"), 32, {}},
    };
    for (const auto& c : cases) {
        LibraryTime t{};
        ASSERT_EQ(DecodeTime(c.in.data(), c.rc == 32 ? 0 : Size(c.in), &t), c.rc) << c.name;
        EXPECT_EQ(c.rc ? Show(c.expected) : Show(t), Show(c.expected)) << c.name;
    }
}

// "Nov 21 21:48:06 2026 GMT", as `openssl x509 -dates` prints it, against what the certificate gives.
TEST(Time, CertificateValidityAgreesWithOpenSsl) {
    for (const char* name : {"rsa_ca", "gost2001", "gost2012_256", "gost2012_512"}) {
        SCOPED_TRACE(name);
        auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(std::string("certs/") + name + ".der"));
        LibraryTime t[2] = {};
        ASSERT_EQ(GetCertificateValidNotBefore(cert, &t[0]), 0u);
        ASSERT_EQ(GetCertificateValidNotAfter(cert, &t[1]), 0u);
        std::ifstream txt(Fixture(std::string("certs/") + name + ".txt"));
        int i = 0;
        for (std::string line; std::getline(txt, line);) {
            if (line.rfind("notBefore=", 0) != 0 && line.rfind("notAfter=", 0) != 0) continue;
            char month[4] = {};
            LibraryTime f{};
            std::sscanf(line.substr(line.find('=') + 1).c_str(), "%3s %u %u:%u:%u %u", month, &f.day, &f.hour, &f.minute,
                        &f.second, &f.year);
            f.month = uint32_t(std::string("JanFebMarAprMayJunJulAugSepOctNovDec").find(month) / 3 + 1);
            EXPECT_EQ(Show(t[i++]), Show(f));
        }
        EXPECT_EQ(i, 2);
    }
}

TEST(Time, SetterStoresFieldByFieldUntilOneFails) {
    const LibraryTime start{2000, 1, 2, 3, 4, 5};
    const struct {
        const char* name;
        LibraryTime args;
        uint32_t rc;
        LibraryTime after;
    } cases[] = {
        {"month 13 leaves all", {2023, 13, 1, 0, 0, 0}, 313, start},
        {"30 February stores the month", {2023, 2, 30, 0, 0, 0}, 313, {2000, 2, 2, 3, 4, 5}},
        {"29 February 2023 passes", {2023, 2, 29, 0, 0, 0}, 0, {2023, 2, 29, 0, 0, 0}},
        {"year 1899", {1899, 6, 7, 0, 0, 0}, 313, {2000, 6, 7, 3, 4, 5}},
        {"hour 24", {2023, 6, 7, 24, 0, 0}, 313, {2023, 6, 7, 3, 4, 5}},
        {"leap second", {2023, 6, 7, 8, 9, 60}, 313, {2023, 6, 7, 8, 9, 5}},
        {"upper limits", {2100, 12, 31, 23, 59, 59}, 0, {2100, 12, 31, 23, 59, 59}},
    };
    for (const auto& [name, a, rc, after] : cases) {
        LibraryTime t = start;
        EXPECT_EQ(SetLibraryTime(&t, a.day, a.month, a.year, a.hour, a.minute, a.second), rc) << name;
        EXPECT_EQ(Show(t), Show(after)) << name;
    }
    LibraryTime t = start;
    EXPECT_EQ(SetLibraryTimeToNull(&t), 313u);  // month 0 fails first, as it always did
    EXPECT_EQ(Show(t), Show(start));
    EXPECT_STREQ(GetLastFileErrorAsn(nullptr), "tarvelon/LibraryTime.cpp");
    LibraryPreciseTime p{2000, 1, 2, 3, 4, 5, 6, 7};
    EXPECT_EQ(SetLibraryPreciseTime(&p, 29, 2, 2024, 23, 59, 59, 999, 1000), 313u);
    const LibraryPreciseTime partly{2024, 2, 29, 23, 59, 59, 999, 7};
    EXPECT_EQ(std::memcmp(&p, &partly, sizeof p), 0);

    uint32_t f[8];
    std::fill(std::begin(f), std::end(f), 77u);  // a null record gives zeros
    EXPECT_EQ(GetLibraryPreciseTime(nullptr, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6], &f[7]), 32u);
    EXPECT_EQ(std::count(std::begin(f), std::end(f), 0u), 8);
    const LibraryPreciseTime q{2024, 2, 29, 1, 2, 3, 4, 5};
    ASSERT_EQ(GetLibraryLocalPreciseTime(&q, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6], &f[7]), 0u);
    EXPECT_EQ(std::vector<uint32_t>(f, f + 8), std::vector<uint32_t>({29, 2, 2024, 1, 2, 3, 0, 0}));
}

// The heap records of the time-stamp interface: made zeroed (the only null time there is), copied
// whole, read as null when every field is zero or the record is missing.
TEST(Time, RecordsLifeCycle) {
    LibraryTime* t = nullptr;
    LibraryPreciseTime* p = nullptr;
    Accuracy* a = nullptr;
    ASSERT_EQ(CreateLibraryTime(&t) | CreateLibraryPreciseTime(&p) | CreateAccuracy(&a), 0u);
    EXPECT_EQ(IsLibraryTimeNull(t) + IsLibraryPreciseTimeNull(p) + IsAccuracyNull(a), 3u);
    EXPECT_EQ(IsLibraryTimeNull(nullptr) + IsLibraryPreciseTimeNull(nullptr) + IsAccuracyNull(nullptr), 3u);
    EXPECT_EQ(SetLibraryPreciseTimeToNull(p), 313u);
    ASSERT_EQ(SetLibraryPreciseTime(p, 1, 2, 2026, 3, 4, 5, 0, 1), 0u);
    EXPECT_EQ(IsLibraryPreciseTimeNull(p), 0u) << "a microsecond is enough";
    ASSERT_EQ(SetAccuracy(a, 0, 500, 0), 0u);
    Accuracy copy{9, 9, 9};
    LibraryPreciseTime pc{};
    LibraryTime tc{1, 1, 1, 1, 1, 1};
    EXPECT_EQ(CopyAccuracy(&copy, a) | CopyLibraryPreciseTime(&pc, p) | CopyLibraryTime(&tc, t), 0u);
    EXPECT_EQ(std::memcmp(&pc, p, sizeof pc), 0);
    EXPECT_EQ(IsLibraryTimeNull(&tc), 1u);
    uint32_t f[3] = {7, 7, 7};
    ASSERT_EQ(GetAccuracy(&copy, &f[0], &f[1], &f[2]), 0u);
    EXPECT_EQ(std::vector<uint32_t>(f, f + 3), std::vector<uint32_t>({0, 500, 0}));
    EXPECT_EQ(GetAccuracy(nullptr, &f[0], &f[1], &f[2]), 32u);
    EXPECT_EQ(f[1], 0u) << "a missing record reads as zeros";
    EXPECT_EQ(SetAccuracyToNull(a), 0u);
    EXPECT_EQ(IsAccuracyNull(a), 1u);
    EXPECT_EQ(CopyLibraryTime(&tc, nullptr), 32u);
    EXPECT_EQ(FreeLibraryTime(t) | FreeLibraryPreciseTime(p) | FreeAccuracy(a), 0u);
}

TEST(Time, ArithmeticComparisonAndNow) {
    // Expected dates from Python's datetime.date + timedelta.
    for (auto [start, days, expected] :
         {std::tuple{LibraryTime{2024, 2, 28, 10, 20, 30}, 1u, LibraryTime{2024, 2, 29, 10, 20, 30}},
          {LibraryTime{2023, 12, 31, 23, 59, 59}, 1u, LibraryTime{2024, 1, 1, 23, 59, 59}},
          {LibraryTime{2023, 2, 28, 0, 0, 0}, 1u, LibraryTime{2023, 3, 1, 0, 0, 0}},
          {LibraryTime{2100, 2, 28, 0, 0, 0}, 1u, LibraryTime{2100, 3, 1, 0, 0, 0}},
          {LibraryTime{2000, 2, 28, 0, 0, 0}, 1u, LibraryTime{2000, 2, 29, 0, 0, 0}},
          {LibraryTime{2023, 3, 1, 0, 0, 0}, 365u, LibraryTime{2024, 2, 29, 0, 0, 0}},
          {LibraryTime{2023, 1, 15, 0, 0, 0}, 10000u, LibraryTime{2050, 6, 2, 0, 0, 0}},
          {LibraryTime{2000, 1, 1, 0, 0, 0}, 292253u, LibraryTime{2800, 2, 29, 0, 0, 0}}}) {
        // After a call that went through a leap year: each call builds its own month table.
        LibraryTime leap{2024, 1, 1, 0, 0, 0}, t = start;
        ASSERT_EQ(AddDaysToLibTime(&leap, 400), 0u);
        ASSERT_EQ(AddDaysToLibTime(&t, days), 0u);
        EXPECT_EQ(Show(t), Show(expected)) << Show(start) << " + " << days;
    }
    LibraryPreciseTime p{2024, 2, 28, 1, 2, 3, 4, 5};
    ASSERT_EQ(AddDaysToLibPreciseTime(&p, 2), 0u);
    const LibraryPreciseTime expected{2024, 3, 1, 1, 2, 3, 4, 5};
    EXPECT_EQ(std::memcmp(&p, &expected, sizeof p), 0);
    LibraryTime null{};
    EXPECT_EQ(AddDaysToLibTime(&null, 1), 313u);

    const LibraryTime start{2024, 1, 1, 0, 0, 0}, end{2024, 12, 31, 23, 59, 59};
    for (auto [t, vsStart, outside] :
         {std::tuple{LibraryTime{2024, 1, 1, 0, 0, 0}, 0, 0u}, {LibraryTime{2024, 12, 31, 23, 59, 59}, 1, 0u},
          {LibraryTime{2023, 12, 31, 23, 59, 59}, -1, 1u}, {LibraryTime{2025, 1, 1, 0, 0, 0}, 1, 1u},
          {LibraryTime{2023, 12, 31, 0, 0, 0}, -1, 1u}}) {  // the year decides before a later month and day
        EXPECT_EQ(CompareTime(&t, &start), vsStart) << Show(t);
        EXPECT_EQ(CompareTime(&start, &t), -vsStart) << Show(t);
        EXPECT_EQ(TestTimeValidity(&start, &t, &end), outside) << Show(t);
    }
    EXPECT_EQ(CompareTime(nullptr, &start), -1);  // a null record reads as all zero

    const std::time_t before = std::time(nullptr);
    LibraryTime now{};
    ASSERT_EQ(GetCurrentLibTime(&now), 0u);
    std::tm broken{int(now.second), int(now.minute), int(now.hour), int(now.day), int(now.month) - 1, int(now.year) - 1900};
    const std::time_t read = timegm(&broken);
    EXPECT_TRUE(before <= read && read <= std::time(nullptr)) << Show(now);
}

TEST(Time, PrimitiveValueCodecs) {
    for (auto [type, contents, element] :
         {std::tuple{ASN1_INTEGER, "01 00", "02 02 01 00"}, {ASN1_OCTET_STRING, "", "04 00"},
          {ASN1_OBJECT_IDENTIFIER, "2A 85 03 02 02 03", "06 06 2A 85 03 02 02 03"},
          {ASN1_BIT_STRING, "07 80", "03 02 07 80"},  // the unused-bits count leads the contents
          {ASN1_UTC_TIME, "34 39 5A", "17 03 34 39 5A"}}) {
        const Bytes in = Hex(contents);
        const Got out = Get(EncodeAsn1PrimitiveValue, uint32_t(type), in.empty() ? U8("") : in.data(), Size(in));
        EXPECT_EQ(out.hex(), H(element));
        EXPECT_EQ(Get(DecodeAsn1PrimitiveValue, uint32_t(type), out.bytes.data(), Size(out.bytes)).bytes, in);
    }
    uint32_t n = 0;
    EXPECT_EQ(EncodeAsn1PrimitiveValue(ASN1_SEQUENCE, U8("\x05"), 1, nullptr, &n), 300u);
    EXPECT_EQ(EncodeAsn1PrimitiveValue(ASN1_INTEGER, nullptr, 0, nullptr, &n), 32u);
    EXPECT_EQ(DecodeAsn1PrimitiveValue(ASN1_OCTET_STRING, U8("\x02\x01\x05"), 3, nullptr, &n), 302u);
}

}  // namespace
