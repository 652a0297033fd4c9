// CMS signed messages made by openssl, read field by field through the accessors and compared with
// what openssl printed (tests/fixtures/cms/EXPECT); the streamed BER message once more after its
// re-encoding to DER. Byte-exact round trips of the DER messages are the corpus's.
#include <iconv.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kSigningTime = Packed("1.2.840.113549.1.9.5"), kMessageDigest = Packed("1.2.840.113549.1.9.4"),
            kContentType = Packed("1.2.840.113549.1.9.3");

// EXPECT writes names in UTF-8 with _ for spaces; the library's texts are code page 1251.
std::string Utf8(const Bytes& cp1251) {
    std::string out(cp1251.size() * 2, '\0');
    iconv_t cd = iconv_open("UTF-8", "CP1251");
    char* in = const_cast<char*>(reinterpret_cast<const char*>(cp1251.data()));
    char* op = out.data();
    size_t il = cp1251.size(), ol = out.size();
    EXPECT_NE(iconv(cd, &in, &il, &op, &ol), size_t(-1));
    iconv_close(cd);
    out.resize(out.size() - ol);
    std::replace(out.begin(), out.end(), ' ', '_');
    return out;
}

std::vector<std::string> Split(const std::string& list) {
    std::vector<std::string> items;
    std::istringstream in(list);
    for (std::string item; std::getline(in, item, ',');) items.push_back(item);
    return items;
}

// `name` when the stored bytes are that fixture's, else the bytes' size.
std::string Named(const Bytes& stored, const std::string& name) {
    return !name.empty() && name != "-" && FixtureFile(name) == stored ? name : std::to_string(stored.size()) + " octets";
}

// "serial, " prefixes the signer texts when every serial octet is printable.
std::string Printable(const Bytes& serial) {
    for (uint8_t c : serial)
        if (c < 0x20 || c > 0x7A) return "";
    return std::string(serial.begin(), serial.end()) + ", ";
}

// No indefinite length anywhere, and nothing after the outer element.
bool DefiniteLengths(const uint8_t* p, size_t n) {
    while (n) {
        if (n < 2) return false;
        const bool constructed = p[0] & 0x20;
        size_t header = 2, length = p[1];
        if (length == 0x80) return false;
        if (length > 0x80) {
            const size_t octets = length & 0x7F;
            if (n < 2 + octets) return false;
            length = 0;
            for (size_t k = 0; k < octets; ++k) length = length << 8 | p[2 + k];
            header += octets;
        }
        if (n < header + length || (constructed && !DefiniteLengths(p + header, length))) return false;
        p += header + length, n -= header + length;
    }
    return true;
}

// The signer `i` of `message` (its SignedData decoded as `sd`), with what EXPECT says of it at `i`.
void SignerFields(const Bytes& message, CmsSignedData* sd, uint32_t i, const Fields& expected, Fields& got) {
    SCOPED_TRACE("signer " + std::to_string(i));
    const auto want = [&](const char* key) { return Split(expected.at(key)).at(i); };
    CmsSignerInfo* signer = nullptr;
    ASSERT_EQ(GetCmsSignedDataSignerInfo(sd, i, &signer), TV_OK);
    uint32_t version = 0;
    EXPECT_EQ(GetCmsSignerInfoVersion(signer, &version), TV_OK);
    Append(got, "siVersion", std::to_string(version));

    // The identifier names the certificate EXPECT says signed; ca_rsa signed nothing.
    auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(want("cert")));
    auto other = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ca_rsa.der"));
    X509Name* issuer = nullptr;
    X509Name* certIssuer = nullptr;
    Bytes serial(64), keyId(64);
    uint32_t serialLen = 64, keyIdLen = 64;
    ASSERT_EQ(GetCmsSignerInfoSignerIdentifier(signer, &issuer, serial.data(), &serialLen, keyId.data(), &keyIdLen), TV_OK);
    serial.resize(serialLen), keyId.resize(keyIdLen);
    ASSERT_EQ(GetCertificateIssuer(cert, &certIssuer), TV_OK);
    if (issuer) {
        EXPECT_EQ(CompareX509Names(issuer, certIssuer), TV_OK);
        EXPECT_EQ(serial, Get(GetCertificateSerialNumber, cert.p).bytes);
        EXPECT_TRUE(keyId.empty());
    } else {
        EXPECT_EQ(keyId, Get(GetCertificateSubjectKeyIdentifier, cert.p).bytes);
        EXPECT_TRUE(serial.empty());
    }
    Append(got, "sid", issuer ? "issuerAndSerial" : "keyid");
    Append(got, "id", PlainHex(issuer ? serial : keyId));
    EXPECT_EQ(CompareSignerInfoAndCertificate(signer, cert), TV_OK);
    EXPECT_EQ(CompareSignerInfoAndCertificate(signer, other), TV_ERR_DIFFERENT);
    Append(got, "cert", want("cert"));

    Bytes oid(64), params(64);
    uint32_t oidLen = 64, paramsLen = 64;
    EXPECT_EQ(GetCmsSignerInfoDigestAlgorithmOidAndParameters(signer, oid.data(), &oidLen, params.data(), &paramsLen), TV_OK);
    Append(got, "digest", Dotted(oid));
    oidLen = paramsLen = 64;
    EXPECT_EQ(GetCmsSignerInfoSignatureAlgorithmOidAndParameters(signer, oid.data(), &oidLen, params.data(), &paramsLen), TV_OK);
    Append(got, "sig", Dotted(oid));
    Append(got, "sigLen", std::to_string(Get(GetCmsSignerInfoSignature, signer).bytes.size()));

    RsaAttributes* attributes = nullptr;
    uint32_t count = 0;
    ASSERT_EQ(GetCmsSignerInfoSignedAttributes(signer, &attributes), TV_OK);
    EXPECT_EQ(GetRsaAttributesAttributesCount(attributes, &count), TV_OK);
    LibraryTime t{}, attributeTime{};
    EXPECT_EQ(GetBufferCmsSignatureTime(i + 1, message.data(), Size(message), &t), TV_OK);
    std::string attrs;
    for (uint32_t a = 0; a < count; ++a) {
        const Bytes type = Get(GetRsaAttributesAttributeOid, attributes, a).bytes;
        const Got value = Get(GetRsaAttributesAttributeValue, attributes, a, 0u);
        attrs += (a ? "+" : "") + Dotted(type);
        if (type == kMessageDigest) Append(got, "md", PlainHex(Get(DecodeRsaAttributeMessageDigestValue, value.bytes.data(), Size(value.bytes)).bytes, true));
        if (type == kSigningTime) {
            EXPECT_EQ(DecodeRsaAttributeSigningTimeValue(value.bytes.data(), Size(value.bytes), &attributeTime), TV_OK);
            EXPECT_TRUE(SameTime(attributeTime, t));
        }
        if (type == kContentType) {
            EXPECT_EQ(Dotted(Get(DecodeRsaAttributeContentTypeValue, value.bytes.data(), Size(value.bytes)).bytes), expected.at("eContentType"));
        }
    }
    Append(got, "attrs", attrs);
    char when[32];
    std::snprintf(when, sizeof when, "%04u%02u%02u%02u%02u%02uZ", t.year, t.month, t.day, t.hour, t.minute, t.second);
    Append(got, "signingTime", when);

    // The octets signed: the [0] IMPLICIT signedAttrs of the message as a SET. signerInfos is the
    // last component of SignedData; the cut needs definite lengths.
    int last = 0;
    while (!Child(message, {1, 0, last + 1}).empty()) ++last;
    if (DefiniteLengths(message.data(), message.size())) {
        Bytes cut = Child(message, {1, 0, last, static_cast<int>(i), 3});
        ASSERT_FALSE(cut.empty());
        EXPECT_EQ(cut[0], 0xA0);
        cut[0] = 0x31;
        EXPECT_EQ(Get(GetCmsSignerInfoEncodedSignedAttributes, signer).hex(), ToHex(cut));
    }

    // The signer text: "serial, " and the identifier's issuer CN; a signer named by a key
    // identifier longer than four octets has none.
    const Got text = Get(GetBufferCmsSignatureTimeAndCN, i + 1, message.data(), Size(message), &t, Out);
    const Got cn = Get(GetCertificateCN, cert.p, Out);
    const std::string prefix = Printable(Get(GetCertificateSerialNumber, cert.p).bytes);
    ASSERT_EQ(cn.rc, TV_OK);
    EXPECT_EQ(std::string(cn.bytes.begin(), cn.bytes.begin() + prefix.size()), prefix);
    Append(got, "cn", Utf8(Bytes(cn.bytes.begin() + prefix.size(), cn.bytes.end())));
    if (!issuer) {
        EXPECT_EQ(text.rc, TV_ERR_BUFFER_TOO_SMALL);
        Append(got, "issuerCn", want("issuerCn"));
        return;
    }
    ASSERT_EQ(text.rc, TV_OK);
    EXPECT_EQ(std::string(text.bytes.begin(), text.bytes.begin() + prefix.size()), prefix);
    Append(got, "issuerCn", Utf8(Bytes(text.bytes.begin() + prefix.size(), text.bytes.end())));
}

// Every field EXPECT names, read from `message`.
Fields MessageFields(const Bytes& message, const Fields& expected) {
    Fields got;
    auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, message);
    got["type"] = Dotted(Get(GetCmsContentInfoTypeOid, info.p).bytes);
    auto sd = Decoded<FreeCmsSignedData>(DecodeCmsSignedData, Get(GetCmsContentInfoContent, info.p).bytes);
    if (!sd.p) return got;
    uint32_t n = 0, kind = 0;
    EXPECT_EQ(GetCmsSignedDataVersion(sd, &n), TV_OK);
    got["version"] = std::to_string(n);
    EXPECT_EQ(GetCmsSignedDataDigestAlgorithmsCount(sd, &n), TV_OK);
    for (uint32_t i = 0; i < n; ++i) {
        Bytes oid(64), params(64);
        uint32_t oidLen = 64, paramsLen = 64;
        EXPECT_EQ(GetCmsSignedDataDigestAlgorithmOidAndParameters(sd, i, oid.data(), &oidLen, params.data(), &paramsLen), TV_OK);
        Append(got, "digests", Dotted(oid));
    }
    if (!n) got["digests"] = "-";
    got["eContentType"] = Dotted(Get(GetCmsSignedDataContentTypeOid, sd.p).bytes);
    const Bytes content = Get(GetCmsSignedDataContent, sd.p).bytes;
    const std::string& file = expected.at("eContent");
    got["eContent"] = content.empty() ? "-" : file != "-" && FixtureFile("cms/" + file) == content ? file : "other";
    if (!content.empty()) got["eContentLen"] = std::to_string(content.size());

    const std::vector<std::string> certs = Split(expected.at("certs")), crls = Split(expected.at("crls"));
    EXPECT_EQ(GetCmsSignedDataCertificatesCount(sd, &n), TV_OK);
    for (uint32_t i = 0; i < n; ++i) {
        Append(got, "certs", Named(Get(GetCmsSignedDataEncodedCertificate, sd.p, i, &kind).bytes, i < certs.size() ? certs[i] : ""));
        EXPECT_EQ(kind, TV_CMS_CERT_CERTIFICATE);
    }
    EXPECT_EQ(GetCmsSignedDataCrlsCount(sd, &n), TV_OK);
    for (uint32_t i = 0; i < n; ++i) {
        Append(got, "crls", Named(Get(GetCmsSignedDataEncodedCrl, sd.p, i, &kind).bytes, i < crls.size() ? crls[i] : ""));
        EXPECT_EQ(kind, TV_CMS_CRL_CERTIFICATE_LIST);
    }
    got.try_emplace("certs", "-"), got.try_emplace("crls", "-");

    EXPECT_EQ(GetCmsSignedDataSignerInfosCount(sd, &n), TV_OK);
    got["signers"] = std::to_string(n);
    if (n) got["content"] = expected.at("content");  // the messageDigest stands for it
    for (uint32_t i = 0; i < n && std::to_string(n) == expected.at("signers"); ++i) SignerFields(message, sd, i, expected, got);
    return got;
}

TEST(CmsFixtures, EveryMessageReadsBackAsOpensslPrintedIt) {
    int files = 0;
    for (const auto& [file, expected] : ExpectRows("cms")) {
        ++files;
        SCOPED_TRACE(file);
        const Bytes message = FixtureFile("cms/" + file);
        EXPECT_EQ(MessageFields(message, expected), expected);
        if (!file.ends_with("_ber.der")) continue;

        // Streamed BER decodes, re-encodes to DER and reads back the same. The ContentInfo keeps its
        // content as it came, so the SignedData is what re-encodes it.
        auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, message);
        auto sd = Decoded<FreeCmsSignedData>(DecodeCmsSignedData, Get(GetCmsContentInfoContent, info.p).bytes);
        const Got inner = Get(EncodeCmsSignedData, sd.p);
        ASSERT_EQ(SetCmsContentInfoContent(info, inner.bytes.data(), Size(inner.bytes)), TV_OK);
        const Got der = Get(EncodeCmsContentInfo, info.p);
        ASSERT_EQ(der.rc, TV_OK);
        EXPECT_EQ(ToHex(Bytes(der.bytes.begin(), der.bytes.begin() + 2)), H("30 82"));
        EXPECT_TRUE(DefiniteLengths(der.bytes.data(), der.bytes.size()));
        EXPECT_LT(der.bytes.size(), message.size());
        EXPECT_EQ(MessageFields(der.bytes, expected), expected);
        auto again = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, der.bytes);
        EXPECT_EQ(Get(EncodeCmsContentInfo, again.p).hex(), der.hex());
    }
    EXPECT_EQ(files, 12);
}

}  // namespace
