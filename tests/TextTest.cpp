// Base64 and PEM, SHA-1, the Kestrune conversions, byte comparison and code page 1251 text.
#include <gtest/gtest.h>
#include <iconv.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

#include "TestUtil.h"
#include "tarvelon/text/Text.h"

using tvtest::Bytes;
using tvtest::Hex;

namespace {

using Writer = std::function<uint32_t(uint8_t*, uint32_t*)>;

Bytes Pattern(size_t n, unsigned seed = 7) {
    Bytes b(n);
    for (size_t i = 0; i < n; ++i) b[i] = static_cast<uint8_t>(i * 131 + seed);
    return b;
}

uint32_t Len(const std::string& s) { return static_cast<uint32_t>(s.size()); }
char* Chars(uint8_t* p) { return reinterpret_cast<char*>(p); }
std::string Text(const Bytes& b) { return std::string(b.begin(), b.end()); }

// Size query, then the write into exactly that much room.
uint32_t Query(const Writer& write, Bytes* out) {
    uint32_t size = 0;
    if (uint32_t rc = write(nullptr, &size)) return rc;
    out->assign(size, 0);
    const uint32_t rc = write(out->data(), &size);
    out->resize(size);
    return rc;
}
std::string Queried(const Writer& write) {
    Bytes out;
    EXPECT_EQ(Query(write, &out), TV_OK);
    return Text(out);
}
std::string ToBase64(const Bytes& d) {
    return Queried([&](uint8_t* o, uint32_t* n) { return EncodeToBase64(d.data(), uint32_t(d.size()), Chars(o), n); });
}
std::string ToPem(const Bytes& d, const char* label) {
    return Queried([&](uint8_t* o, uint32_t* n) { return EncodePem(d.data(), uint32_t(d.size()), label, Chars(o), n); });
}
uint32_t FromPem(const std::string& text, Bytes* out) {
    return Query([&](uint8_t* o, uint32_t* n) { return DecodePem(text.data(), Len(text), o, n); }, out);
}

std::string Remove(std::string s, char c) {
    s.erase(std::remove(s.begin(), s.end(), c), s.end());
    return s;
}

// Flat base64 re-wrapped into lines of `width` joined by `sep`.
std::string Wrap(const std::string& flat, size_t width, const std::string& sep) {
    std::string out;
    for (size_t i = 0; i < flat.size(); i += width) out += (i ? sep : "") + flat.substr(i, width);
    return out;
}
std::string Wrapped(const Bytes& data, size_t width, const std::string& sep) {
    return Wrap(Remove(Remove(ToBase64(data), '\r'), '\n'), width, sep);
}

uint32_t AnsiToUtf8(const std::string& in, uint32_t capacity, std::string* out, uint32_t* stored) {
    std::string buffer(capacity + 4, '\x7E');
    *stored = capacity;
    const uint32_t rc = ConvertAnsiToUTF8(in.c_str(), buffer.data(), stored);
    if (rc == TV_OK) {
        EXPECT_EQ(buffer[*stored], '\0');
        *out = buffer.substr(0, *stored);
    }
    EXPECT_EQ(buffer.substr(capacity), std::string(4, '\x7E')) << "written past the capacity";
    return rc;
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

}  // namespace

TEST(TextBase64, KnownVectors) {
    const struct {
        std::string data;
        const char* text;
    } cases[] = {{std::string(1, '\0'), "AA=="}, {std::string(2, '\0'), "AAA="}, {"f", "Zg=="}, {"fo", "Zm8="},
                 {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"},
                 {"\xFF\xFE\xFD", "//79"}, {"\xFB\xEF", "++8="}};
    for (const auto& c : cases) EXPECT_EQ(ToBase64(Bytes(c.data.begin(), c.data.end())), c.text);
}

TEST(TextBase64, LayoutAndRoundTripOfEveryTail) {
    for (size_t n = 1; n <= 400; ++n) {
        SCOPED_TRACE(n);
        const Bytes data = Pattern(n, static_cast<unsigned>(n));
        const std::string text = ToBase64(data);
        // CR LF after every 64 characters, none after the last line.
        const std::string flat = Remove(Remove(text, '\r'), '\n');
        ASSERT_EQ(flat.size(), 4 * ((n + 2) / 3));
        ASSERT_EQ(text, Wrap(flat, 64, "\r\n"));
        Bytes back(n + 8, 0xEE);
        uint32_t size = uint32_t(back.size());
        ASSERT_EQ(DecodeFromBase64(text.data(), Len(text), back.data(), &size), TV_OK);
        ASSERT_EQ(Bytes(back.begin(), back.begin() + size), data);
        ASSERT_EQ(FromPem(text, &back), TV_OK);
        ASSERT_EQ(back, data);
        // In place from offset 0: the output catches up with the text as closely as it ever can.
        Bytes inPlace(text.begin(), text.end());
        uint32_t length = uint32_t(inPlace.size());
        ASSERT_EQ(tv::DecodePemInPlace(inPlace.data(), &length), 1);
        ASSERT_EQ(Bytes(inPlace.begin(), inPlace.begin() + length), data);
    }
}

TEST(TextBase64, EmptyInputKeepsTheWrappedSize) {
    const uint8_t none = 0;
    char small[16];
    uint32_t size = 0;
    EXPECT_EQ(EncodeToBase64(&none, 0, nullptr, &size), TV_OK);
    EXPECT_EQ(size, 134217726u);  // the 32-bit wrap of an empty body, kept
    EXPECT_EQ(EncodePem(&none, 0, "X", nullptr, &size), TV_OK);
    EXPECT_EQ(size, 134217726u + 36 + 2);
    size = sizeof small;
    EXPECT_EQ(EncodeToBase64(&none, 0, small, &size), TV_ERR_BUFFER_TOO_SMALL);
}

TEST(TextBase64, DecoderReadsOnlyTheEncoderLayout) {
    const Bytes data = Pattern(100);
    const std::string lf = Wrapped(data, 64, "\n");
    Bytes back(100, 0);
    uint32_t size = 100;
    // Skips a fixed two characters after 64: LF-only breaks decode without an error but wrongly.
    EXPECT_EQ(DecodeFromBase64(lf.data(), Len(lf), back.data(), &size), TV_OK);
    EXPECT_NE(Bytes(back.begin(), back.begin() + size), data);
    uint8_t guard[8];
    std::memset(guard, 0xAB, sizeof guard);
    size = sizeof guard;
    EXPECT_EQ(DecodeFromBase64("QUJD=X", 6, guard, &size), TV_OK);
    EXPECT_EQ(size, 2u);
    EXPECT_EQ(guard[2], 0xAB);
    for (const char* shortText : {"", "Q", "QU", "QU="}) {
        size = sizeof guard;
        EXPECT_EQ(DecodeFromBase64(shortText, uint32_t(std::strlen(shortText)), guard, &size), TV_ERR_INVALID_ARGUMENT)
            << shortText;
    }
}

TEST(TextPem, TolerantReading) {
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
        {"LF-only breaks", "-----BEGIN CERTIFICATE-----\n" + lf + "\n-----END CERTIFICATE-----\n", TV_OK, ""},
        {"spaced BEGIN, any label", "----- BEGIN whatever label, really -----\r\n" + crlf + "\r\n----- END X -----\r\n", TV_OK, ""},
        {"text around the armour", "Subject: test\n-----BEGIN X-----\n" + lf + "\n-----END X-----\ntrailer", TV_OK, ""},
        {"blank lines and spaces", "-----BEGIN X-----\r\n\r\n  " + Wrapped(data, 8, " \r\n ") + "  \r\n\r\n-----END X-----", TV_OK, ""},
        {"76-character lines", "-----BEGIN X-----\n" + Wrapped(data, 76, "\n") + "\n-----END X-----\n", TV_OK, ""},
        {"bare base64, LF-only", lf + "\n", TV_OK, ""},
        {"no END marker", "-----BEGIN X-----\n" + lf + "\n", TV_OK, ""},
        {"high-bit alphabet", "-----BEGIN X-----\n" + high + "\n-----END X-----\n", TV_OK, "ABCD"},
        {"high-bit bare", "\xC1\xC1\xC1\xC1", TV_OK, std::string(3, '\0')},
        {"high-bit padding", "QQ\xBD\xBD", TV_OK, "A"},
        // The spaced END marker is compared over eight characters and needs more than nine
        // characters from its dash to the end of the text.
        {"END quirk: ENDING", "-----BEGIN X-----\nQUJD\n----- ENDING SOON", TV_OK, "ABC"},
        {"END quirk: END-", "-----BEGIN X-----\nQUJD\n----- END-", TV_OK, "ABC"},
        {"END quirk: unspaced", "-----BEGIN X-----\nQUJD\n-----END", TV_OK, "ABC"},
        {"END quirk: spaced, short", "-----BEGIN X-----\nQUJD\n----- END", TV_ERR_PEM, ""},
        {"END quirk: EN", "-----BEGIN X-----\nQUJD\n----- EN", TV_ERR_PEM, ""},
        {"65-character lines", "-----BEGIN X-----\n" + Wrapped(data, 65, "\n") + "\n-----END X-----\n", TV_ERR_PEM, ""},
        {"a tab between lines", "-----BEGIN X-----\n" + Wrapped(data, 64, "\t\n") + "\n-----END X-----\n", TV_ERR_PEM, ""},
        {"BEGIN without a line end", "-----BEGIN X-----" + Wrapped(data, 1000, ""), TV_ERR_PEM, ""},
        {"only whitespace after BEGIN", "-----BEGIN X-----\r\n  \r\n", TV_ERR_PEM, ""},
        {"nothing between the markers", "-----BEGIN X-----\n-----END X-----\n", TV_ERR_PEM, ""},
        {"three characters", "-----BEGIN X-----\nQUJ\n-----END X-----\n", TV_ERR_PEM, ""},
        {"trailing fragment", "-----BEGIN X-----\n" + lf + "\nQU\n", TV_ERR_PEM, ""},
        {"a line that breaks a group", "-----BEGIN X-----\n" + lf + "QUJ\n-----END X-----\n", TV_ERR_PEM, ""},
        {"padding before the end", "-----BEGIN X-----\nQQ==QUJD\n-----END X-----\n", TV_ERR_PEM, ""},
        {"padding in the second position", "-----BEGIN X-----\nQ===\n-----END X-----\n", TV_ERR_PEM, ""},
        {"pad then letter", "-----BEGIN X-----\nQU=D\n-----END X-----\n", TV_ERR_PEM, ""},
        {"shorter than four", "QUJ", TV_ERR_PEM, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes out;
        ASSERT_EQ(FromPem(c.text, &out), c.rc);  // errors come from the size query
        if (c.rc == TV_OK) {
            EXPECT_EQ(out, c.out.empty() ? data : Bytes(c.out.begin(), c.out.end()));
        }
    }
}

TEST(TextPem, OpenSslFiles) {
    // Written and decoded by OpenSSL (fixtures/pem/make_fixtures.sh); LF line ends, various labels.
    for (const char* name : {"rsa_ca", "rsa_key", "rsa_pub", "request"}) {
        SCOPED_TRACE(name);
        const Bytes pem = tvtest::ReadFile(tvtest::Fixture(std::string("pem/") + name + ".pem"));
        const Bytes der = tvtest::ReadFile(tvtest::Fixture(std::string("pem/") + name + ".der"));
        ASSERT_FALSE(der.empty());
        Bytes out;
        ASSERT_EQ(FromPem(Text(pem), &out), TV_OK);
        EXPECT_EQ(out, der);
        // Ours is OpenSSL's text with CR LF line ends.
        const std::string text = Text(pem);
        EXPECT_EQ(Remove(ToPem(der, text.substr(11, text.find("-----", 11) - 11).c_str()), '\r'), text);
        out = pem;
        uint32_t length = uint32_t(out.size());
        ASSERT_EQ(tv::DecodePemInPlace(out.data(), &length), 1);
        EXPECT_EQ(Bytes(out.begin(), out.begin() + length), der);
    }
}

TEST(TextPem, InPlaceFailureKeepsTheLength) {
    std::string text = "-----BEGIN X-----\nQU\tJD\n-----END X-----\n";
    uint32_t length = Len(text), line = 0;
    EXPECT_EQ(tv::DecodePemInPlace(reinterpret_cast<uint8_t*>(text.data()), &length), 0);
    EXPECT_EQ(length, text.size());
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/pem.cpp");
}

TEST(TextSha1, Vectors) {
    // Lengths around the padding boundaries and a long input; digests from Python's hashlib.
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
        SCOPED_TRACE(c.data.size());
        const uint8_t dummy = 0;
        const uint8_t* in = c.data.empty() ? &dummy : c.data.data();
        // Every output alignment; the bytes around the digest stay untouched.
        for (size_t offset = 0; offset < 4; ++offset) {
            Bytes buffer(32, 0x5C);
            ASSERT_EQ(sha1(in, uint32_t(c.data.size()), buffer.data() + offset), TV_OK);
            Bytes expected(32, 0x5C);
            const Bytes digest = Hex(c.digest);
            std::copy(digest.begin(), digest.end(), expected.begin() + offset);
            EXPECT_EQ(buffer, expected) << offset;
        }
        for (auto path : {tv::Sha1Path::Portable, tv::Sha1Path::ShaNi}) {
            uint8_t digest[20];
            tv::Sha1Digest(in, c.data.size(), digest, path);
            EXPECT_EQ(Bytes(digest, digest + 20), Hex(c.digest)) << "path " << static_cast<int>(path);
        }
    }
    uint8_t digest[20];
    EXPECT_EQ(sha1(nullptr, 0, digest), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(sha1(digest, 0, nullptr), TV_ERR_INVALID_ARGUMENT);
}

TEST(TextSha1, PathsAgreeOnEveryLength) {
    if (!tv::Sha1HasShaNi()) GTEST_SKIP() << "no SHA extensions on this processor";
    const Bytes data = Pattern(1100, 91);
    for (size_t n = 0; n <= data.size(); ++n) {
        uint8_t portable[20], ni[20];
        tv::Sha1Digest(data.data(), n, portable, tv::Sha1Path::Portable);
        tv::Sha1Digest(data.data(), n, ni, tv::Sha1Path::ShaNi);
        ASSERT_EQ(0, std::memcmp(portable, ni, 20)) << n;
    }
}

TEST(TextKestrune, Signatures) {
    for (auto* convert : {ConvertX509SignatureToKestrune, ConvertKestruneSignatureToX509}) {
        for (uint32_t n : {64u, 128u}) {
            const Bytes in = Pattern(n);
            Bytes out(n);
            uint32_t size = n;
            ASSERT_EQ(convert(in.data(), n, out.data(), &size), TV_OK);
            EXPECT_TRUE(std::equal(in.rbegin(), in.rend(), out.begin())) << n;  // whole buffer, not per half
        }
        uint8_t buffer[256] = {};
        for (uint32_t bad : {0u, 32u, 63u, 65u, 96u, 127u, 129u, 256u}) {
            uint32_t size = sizeof buffer;
            EXPECT_EQ(convert(buffer, bad, buffer, &size), TV_ERR_INVALID_ARGUMENT) << bad;
        }
    }
}

TEST(TextKestrune, PublicKeys) {
    const Bytes key64 = Pattern(64, 1), key128 = Pattern(128, 2);
    Bytes record(256), key(128);
    uint32_t size = 256;
    auto back = [&](int kind) {
        record[254] = static_cast<uint8_t>(kind);
        size = 128;
        return ConvertKestrunePublicKeyToX509(record.data(), 256, key.data(), &size);
    };
    ASSERT_EQ(ConvertX509PublicKeyToKestrune(key64.data(), 64, record.data(), &size), TV_OK);
    Bytes expected(256, 0);  // the halves in 32-octet slots 64 apart, the "v5" mark, kind 0
    std::copy(key64.begin(), key64.begin() + 32, expected.begin());
    std::copy(key64.begin() + 32, key64.end(), expected.begin() + 64);
    expected[252] = 'v';
    expected[253] = '5';
    EXPECT_EQ(record, expected);
    EXPECT_EQ(back(0), TV_ERR_KEY_KIND);  // kind 0 as written does not convert back (kept)
    for (int kind : {'A', 'B', 'C', 'D', 'X', 'Y', 'a', 'b', 'c', 'x', 'y'}) {
        ASSERT_EQ(back(kind), TV_OK) << kind;
        EXPECT_EQ(Bytes(key.begin(), key.begin() + size), key64) << kind;
    }
    size = 256;
    ASSERT_EQ(ConvertX509PublicKeyToKestrune(key128.data(), 128, record.data(), &size), TV_OK);
    EXPECT_EQ(Bytes(record.begin() + 128, record.begin() + 252), Bytes(124, 0));
    for (int kind : {'1', '2', '3'}) {
        ASSERT_EQ(back(kind), TV_OK) << kind;
        EXPECT_EQ(key, key128) << kind;
    }
    for (int kind : {int{'0'}, int{'4'}, int{'E'}, int{'Z'}, int{'d'}, int{'z'}, int{'v'}, 0xFF}) {
        EXPECT_EQ(back(kind), TV_ERR_KEY_KIND) << kind;
    }
    EXPECT_EQ(ConvertKestrunePublicKeyToX509(record.data(), 255, key.data(), &size), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(ConvertX509PublicKeyToKestrune(key64.data(), 96, record.data(), &size), TV_ERR_INVALID_ARGUMENT);
}

TEST(TextIsArrayEquals, Table) {
    const uint8_t a[] = {1, 2, 3}, b[] = {1, 2, 3}, c[] = {1, 2, 4};
    const struct {
        const uint8_t *x, *y;
        uint32_t nx, ny, rc;
    } cases[] = {{nullptr, nullptr, 0, 0, TV_OK}, {a, nullptr, 3, 0, TV_ERR_DIFFERENT}, {nullptr, a, 0, 0, TV_ERR_DIFFERENT},
                 {a, b, 3, 3, TV_OK},           {a, c, 3, 3, TV_ERR_DIFFERENT},      {a, b, 2, 3, TV_ERR_DIFFERENT},
                 {a, c, 0, 0, TV_OK}};
    for (const auto& t : cases) EXPECT_EQ(IsArrayEquals(t.x, t.nx, t.y, t.ny), t.rc) << (&t - cases);
}

TEST(TextAnsiToUtf8, CodePage1251Letters) {
    // The letters and the listed signs agree with the C library's code page 1251 converter.
    const std::string listed = "\xA8\xB8\xAA\xBA\xAF\xBF\xA1\xA2\xA4\xB0\xB7\x95\xB9";
    if (Iconv1251(0xC0).empty()) GTEST_SKIP() << "no CP1251 converter in this C library";
    for (int b = 0x80; b < 0x100; ++b) {
        if (b < 0xC0 && listed.find(static_cast<char>(b)) == std::string::npos) continue;
        SCOPED_TRACE(b);
        std::string out;
        uint32_t stored = 0;
        ASSERT_EQ(AnsiToUtf8(std::string(1, static_cast<char>(b)), 64, &out, &stored), TV_OK);
        EXPECT_EQ(out, Iconv1251(static_cast<uint8_t>(b)));
    }
}

TEST(TextAnsiToUtf8, Table) {
    const struct {
        const char* name;
        std::string in;
        uint32_t capacity, rc;
        std::string out;  // or the suggested size, as text, for 49
    } cases[] = {
        {"ASCII and yo", "A\xA8z", 64, TV_OK, "A\xD0\x81z"},
        {"unlisted high bytes follow the letter offset", "\x80\xBE", 64, TV_OK, "\xCF\x90\xD0\x8E"},
        {"empty", "", 1, TV_OK, ""},
        {"capacity 10 is short", "\xC0\xC1", 10, TV_ERR_BUFFER_TOO_SMALL, "24"},
        {"capacity 9 leaves no work room", "A", 9, TV_ERR_BUFFER_TOO_SMALL, "22"},
        {"limit reached before the end", "ABCDEFGH", 12, TV_ERR_BUFFER_TOO_SMALL, "36"},
        {"last character may start just below the limit", "ABC\x95", 13, TV_OK, "ABC\xE2\x80\xA2"},
        // 40 three-byte signs: the suggestion (2 x 40 + 20) is itself too small.
        {"suggestion too small", std::string(40, '\x95'), 100, TV_ERR_BUFFER_TOO_SMALL, "100"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string out;
        uint32_t stored = 0;
        ASSERT_EQ(AnsiToUtf8(c.in, c.capacity, &out, &stored), c.rc);
        EXPECT_EQ(c.rc == TV_OK ? out : std::to_string(stored), c.out);
    }
    // A size query gives a capacity that works, where the suggestion above does not.
    const std::string bullets(40, '\x95');
    uint32_t need = 0, stored = 0;
    std::string out;
    ASSERT_EQ(ConvertAnsiToUTF8(bullets.c_str(), nullptr, &need), TV_OK);
    ASSERT_EQ(AnsiToUtf8(bullets, need, &out, &stored), TV_OK);
    EXPECT_EQ(stored, 120u);
    EXPECT_EQ(ConvertAnsiToUTF8(nullptr, nullptr, &stored), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(ConvertAnsiToUTF8("A", nullptr, nullptr), TV_ERR_INVALID_ARGUMENT);
}

TEST(TextSizeProtocol, EveryWriter) {
    const Bytes data = Pattern(200);
    const std::string base64 = ToBase64(data), pem = ToPem(data, "CERTIFICATE");
    const Bytes sig = Pattern(64), key = Pattern(128);
    Bytes record(256, 0);
    record[254] = 'A';
    const struct {
        const char* name;
        Writer write;
        uint32_t size;
    } cases[] = {
        {"EncodeToBase64", [&](uint8_t* o, uint32_t* n) { return EncodeToBase64(data.data(), 200, Chars(o), n); }, 276},
        {"DecodeFromBase64", [&](uint8_t* o, uint32_t* n) { return DecodeFromBase64(base64.data(), Len(base64), o, n); }, 200},
        {"EncodePem", [&](uint8_t* o, uint32_t* n) { return EncodePem(data.data(), 200, "CERTIFICATE", Chars(o), n); }, 276 + 36 + 22},
        {"DecodePem", [&](uint8_t* o, uint32_t* n) { return DecodePem(pem.data(), Len(pem), o, n); }, 200},
        {"X509SignatureToKestrune", [&](uint8_t* o, uint32_t* n) { return ConvertX509SignatureToKestrune(sig.data(), 64, o, n); }, 64},
        {"KestruneSignatureToX509", [&](uint8_t* o, uint32_t* n) { return ConvertKestruneSignatureToX509(key.data(), 128, o, n); }, 128},
        {"X509PublicKeyToKestrune", [&](uint8_t* o, uint32_t* n) { return ConvertX509PublicKeyToKestrune(key.data(), 128, o, n); }, 256},
        {"KestrunePublicKeyToX509", [&](uint8_t* o, uint32_t* n) { return ConvertKestrunePublicKeyToX509(record.data(), 256, o, n); }, 64},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        uint32_t n = 12345;
        ASSERT_EQ(c.write(nullptr, &n), TV_OK);
        ASSERT_EQ(n, c.size);
        uint8_t one[1];
        EXPECT_EQ(c.write(one, nullptr), TV_ERR_INVALID_ARGUMENT);
        // Group edges included: nothing lands past the room, and exact room gets what ample room does.
        Bytes reference;
        for (uint32_t room : {c.size + 8, c.size, 0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, c.size / 2, c.size - 3, c.size - 2,
                              c.size - 1}) {
            SCOPED_TRACE(room);
            Bytes buffer(c.size + 8, 0xA5);
            n = room;
            ASSERT_EQ(c.write(buffer.data(), &n), room < c.size ? TV_ERR_BUFFER_TOO_SMALL : TV_OK);
            EXPECT_EQ(n, c.size);
            const uint32_t used = std::min(room, c.size);
            EXPECT_EQ(Bytes(buffer.begin() + used, buffer.end()), Bytes(buffer.size() - used, 0xA5));
            if (room >= c.size) {
                if (reference.empty()) reference = buffer;
                EXPECT_EQ(buffer, reference);
            }
        }
    }
}
