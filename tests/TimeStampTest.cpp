// RFC 3161 time stamps through the exported calls: openssl's queries, replies and tokens read field by
// field against tests/fixtures/timestamp/EXPECT, and each written back from what was read, byte for
// byte. The corpus round-trips the SeveralData file (two of these tokens).
#include <algorithm>
#include <cstdio>

#include "TestUtil.h"

using namespace tvtest;

namespace {

// A decoder's output buffer, read back as the octets it was given.
struct Buf {
    uint8_t b[128];
    uint32_t n = sizeof b;
    Bytes bytes() const { return Bytes(b, b + n); }
    uint8_t* orNull() { return n ? b : nullptr; }
};

std::string Hash(const Bytes& oid) {
    for (auto [dotted, name] : {std::pair{"1.3.14.3.2.26", "sha1"}, {"2.16.840.1.101.3.4.2.1", "sha256"},
                                {"1.2.643.7.1.1.2.2", "streebog256"}})
        if (Packed(dotted) == oid) return name;
    return "?";
}

// Compared packed: ConvertOidToString keeps writing arcs under 2 past 2.39 as a first number over 2.
std::string Policy(const Bytes& packed, const Fields& expected) {
    if (packed.empty()) return "-";
    const std::string dotted = expected.count("policy") ? expected.at("policy") : "-";
    return dotted != "-" && Packed(dotted.c_str()) == packed ? dotted : ToHex(packed);
}

// Octets as EXPECT writes them: hex, INTEGER contents without leading zero octets, "-" for none.
std::string Plain(const Bytes& b, bool integer = false) {
    if (b.empty()) return "-";
    return PlainHex(Bytes(integer ? std::find_if(b.begin(), b.end() - 1, [](uint8_t o) { return o; }) : b.begin(), b.end()));
}

std::string Bool(uint32_t b) { return b ? "yes" : "no"; }
std::string Count(const X509Extensions* list) { return list ? Counted(GetX509ExtensionsExtensionsCount, list) : "0"; }

struct Query {
    uint32_t version = 9, certReq = 9;
    Buf hash, params, message, policy, nonce;
    Own<FreeX509Extensions> extensions;
};

Query ReadQuery(const Bytes& der) {
    Query q;
    EXPECT_EQ(DecodeTimeStampReq(der.data(), Size(der), &q.version, q.hash.b, &q.hash.n, q.params.b, &q.params.n,
                                 q.message.b, &q.message.n, q.policy.b, &q.policy.n, q.nonce.b, &q.nonce.n, &q.certReq,
                                 &q.extensions.p), TV_OK);
    return q;
}

Fields QueryFields(const Bytes& der, const Fields& expected) {
    Query q = ReadQuery(der);
    EXPECT_EQ(Get(EncodeTimeStampReq, q.version, q.hash.b, q.params.orNull(), q.params.n, q.message.b, q.message.n,
                  q.policy.orNull(), uint64_t{0}, q.nonce.orNull(), q.nonce.n, q.certReq, q.extensions.p).hex(), ToHex(der));
    return {{"version", std::to_string(q.version)}, {"hash", Hash(q.hash.bytes())}, {"imprint", Plain(q.message.bytes())},
            {"policy", Policy(q.policy.bytes(), expected)}, {"nonce", Plain(q.nonce.bytes(), true)}, {"certReq", Bool(q.certReq)},
            {"extensions", Count(q.extensions)}};
}

// PKIFailureInfo bits by their RFC 3161 names; bit n sits in the word's octet n / 8, first bit highest.
std::string FailInfo(uint32_t word) {
    const std::map<int, const char*> names{{0, "badAlg"}, {2, "badRequest"}, {5, "badDataFormat"},
                                           {14, "timeNotAvailable"}, {15, "unacceptedPolicy"}, {16, "unacceptedExtension"},
                                           {17, "addInfoNotAvailable"}, {25, "systemFailure"}};
    std::string s;
    for (int n = 0; n < 32; ++n) {
        if (!(word >> (n / 8 * 8 + 7 - n % 8) & 1)) continue;
        if (!s.empty()) s += '+';
        s += names.count(n) ? names.at(n) : std::to_string(n);
    }
    return s.empty() ? "-" : s;
}

Fields ReplyFields(const Bytes& der, const Fields& expected) {
    uint32_t status = 99, failInfo = 99;
    Own<FreePKIFreeText> text;
    Own<FreeCmsContentInfo> token;
    EXPECT_EQ(DecodeTimeStampResp(der.data(), Size(der), &status, &text.p, &failInfo, &token.p), TV_OK);
    EXPECT_EQ(Get(EncodeTimeStampResp, status, text.p, failInfo, token.p).hex(), ToHex(der));
    const char* statuses[] = {"granted", "grantedWithMods", "rejection", "waiting", "revocationWarning", "revocationNotification"};
    Fields got{{"query", expected.at("query")}, {"status", status < 6 ? statuses[status] : "?"}, {"text", "-"},
               {"failInfo", FailInfo(failInfo)}, {"token", token ? expected.at("token") : "-"}};
    if (text) {
        EXPECT_EQ(Counted(GetPKIFreeTextStringCount, text.p), "1");
        const Bytes s = Get(GetPKIFreeTextString, text.p, 0u).bytes;
        got["text"].assign(s.begin(), s.end());
        std::replace(got["text"].begin(), got["text"].end(), ' ', '_');
    }
    if (token) {
        EXPECT_EQ(Get(EncodeCmsContentInfo, token.p).hex(), ToHex(FixtureFile("timestamp/" + expected.at("token"))));
    }
    return got;
}

std::string GenTime(const LibraryPreciseTime& t) {
    char text[40];
    snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u.%03u%03u", t.year, t.month, t.day, t.hour, t.minute,
             t.second, t.millisecond, t.microsecond);
    std::string s = text;
    while (s.back() == '0') s.pop_back();
    if (s.back() == '.') s.pop_back();
    return s;
}

Fields TokenFields(const Bytes& der, const Fields& expected) {
    auto token = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, der);
    EXPECT_EQ(Get(GetCmsContentInfoTypeOid, token.p).bytes, Packed("1.2.840.113549.1.7.2"));
    auto signedData = Decoded<FreeCmsSignedData>(DecodeCmsSignedData, Get(GetCmsContentInfoContent, token.p).bytes);
    EXPECT_EQ(Get(GetCmsSignedDataContentTypeOid, signedData.p).bytes, Packed("1.2.840.113549.1.9.16.1.4"));
    const Bytes info = Get(GetCmsSignedDataContent, signedData.p).bytes;
    EXPECT_EQ(ToHex(info), ToHex(FixtureFile("timestamp/" + expected.at("tstinfo"))));

    uint32_t version = 9, ordering = 9;
    Buf policy, hash, params, message, serial, nonce;
    LibraryPreciseTime genTime{};
    Accuracy accuracy{77, 9, 9};  // 77: an absent seconds leaves the caller's value
    Own<FreeX509GeneralName> tsa;
    Own<FreeX509Extensions> extensions;
    EXPECT_EQ(DecodeTSTInfo(info.data(), Size(info), &version, policy.b, &policy.n, hash.b, &hash.n, params.b, &params.n,
                            message.b, &message.n, serial.b, &serial.n, &genTime, &accuracy, &ordering, nonce.b, &nonce.n,
                            &tsa.p, &extensions.p), TV_OK);
    const bool noAccuracy = !accuracy.seconds && !accuracy.milliseconds && !accuracy.microseconds;
    auto unit = [](uint32_t v, uint32_t absent) { return v == absent ? std::string("-") : std::to_string(v); };
    Fields got{{"version", std::to_string(version)}, {"policy", Policy(policy.bytes(), expected)}, {"hash", Hash(hash.bytes())},
               {"imprint", Plain(message.bytes())}, {"serial", Plain(serial.bytes(), true)}, {"genTime", GenTime(genTime)},
               {"accuracy", noAccuracy ? "-" : unit(accuracy.seconds, 77) + "," + unit(accuracy.milliseconds, 0) + "," +
                                                   unit(accuracy.microseconds, 0)},
               {"ordering", Bool(ordering)}, {"nonce", Plain(nonce.bytes(), true)}, {"tsa", "-"}, {"extensions", Count(extensions)}};
    for (const char* key : {"query", "tstinfo", "tsaCert"}) got[key] = expected.at(key);
    if (accuracy.seconds == 77) accuracy.seconds = 0;
    EXPECT_EQ(Get(EncodeTSTInfo, version, policy.b, hash.b, params.orNull(), params.n, message.b, message.n, serial.b,
                  serial.n, &genTime, &accuracy, ordering, nonce.orNull(), nonce.n, tsa.p, extensions.p).hex(), ToHex(info));

    EXPECT_EQ(nonce.bytes(), ReadQuery(FixtureFile("timestamp/" + expected.at("query"))).nonce.bytes());
    if (tsa) {  // the TSA names itself by its certificate's subject
        uint32_t kind = 0;
        auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("timestamp/" + expected.at("tsaCert")));
        X509Name* subject = nullptr;
        EXPECT_EQ(GetCertificateSubject(cert, &subject), TV_OK);
        EXPECT_EQ(Get(GetX509GeneralNameValue, tsa.p, &kind).hex(), Get(EncodeX509Name, subject).hex());
        got["tsa"] = kind == 4 ? "dirName" : std::to_string(kind);
    }
    return got;
}

TEST(TimeStampFixtures, EveryFieldReadsBackAsOpenSslPrintedItAndWritesBackTheSameBytes) {
    const std::pair<const char*, Fields (*)(const Bytes&, const Fields&)> readers[] = {
        {"query_", QueryFields}, {"reply_", ReplyFields}, {"token_", TokenFields}};
    int files = 0;
    for (const auto& [file, expected] : ExpectRows("timestamp")) {
        for (auto [prefix, read] : readers) {
            if (!file.starts_with(prefix)) continue;
            EXPECT_EQ(read(FixtureFile("timestamp/" + file), expected), expected) << file;
            ++files;
        }
    }
    EXPECT_EQ(files, 16);
}

}  // namespace
