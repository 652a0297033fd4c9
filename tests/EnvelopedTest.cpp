// CMS enveloped messages made by openssl, read field by field through the accessors and compared
// with what the fixture script's own DER reader found (tests/fixtures/enveloped/EXPECT); each
// EnvelopedData and the GOST key transport written back byte for byte, and the recipients matched
// against their certificates.
#include "TestUtil.h"

using namespace tvtest;

namespace {

// An algorithm getter's OID as dotted text.
template <typename Get>
std::string AlgorithmOf(Get get) {
    uint8_t oid[64], params[128];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    const uint32_t rc = get(oid, &oidLen, params, &paramsLen);
    return rc == TV_OK ? Dotted(Bytes(oid, oid + oidLen)) : "status " + std::to_string(rc);
}

// The certificate a recipient names: the issuer compared, the serial or key identifier returned.
std::string RecipientId(KeyTrans* kt, Fields& got) {
    X509Name* issuer = nullptr;
    uint8_t serial[64], keyId[64];
    uint32_t serialLen = sizeof serial, keyIdLen = sizeof keyId;
    EXPECT_EQ(GetKeyTransRecipientIdentifier(kt, &issuer, serial, &serialLen, keyId, &keyIdLen), TV_OK);
    Append(got, "rid", issuer ? "issuerAndSerial" : "keyid");
    if (!issuer) return PlainHex(Bytes(keyId, keyId + keyIdLen));
    std::string hex = PlainHex(Bytes(serial, serial + serialLen));
    hex.erase(0, std::min(hex.find_first_not_of('0'), hex.size() - 1));
    // Every recipient here is one of the pki certificates: its issuer is the one in the message.
    bool matched = false;
    for (const char* name : {"ee_rsa", "ca_rsa", "ee_gost2012_256"}) {
        auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(std::string("pki/") + name + ".der"));
        X509Name* certIssuer = nullptr;
        EXPECT_EQ(GetCertificateIssuer(cert, &certIssuer), TV_OK);
        matched |= Get(GetCertificateSerialNumber, cert.p).bytes == Bytes(serial, serial + serialLen) &&
                   CompareX509Names(issuer, certIssuer) == TV_OK;
    }
    EXPECT_TRUE(matched) << hex;
    return hex;
}

Fields MessageFields(const Bytes& message) {
    Fields got;
    auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, message);
    got["type"] = Dotted(Get(GetCmsContentInfoTypeOid, info.p).bytes);
    const Bytes inner = Get(GetCmsContentInfoContent, info.p).bytes;
    auto ed = Decoded<FreeCmsEnvelopedData>(DecodeCmsEnvelopedData, inner);
    EXPECT_EQ(Get(EncodeCmsEnvelopedData, ed.p).bytes, inner) << "written back byte for byte";
    uint32_t n = 0;
    EXPECT_EQ(GetCmsEnvelopedDataVersion(ed, &n), TV_OK);
    got["version"] = std::to_string(n);
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfosCount(ed, &n), TV_OK);
    got["recipients"] = std::to_string(n);
    for (uint32_t i = 0; i < n; ++i) {
        void* value = nullptr;
        uint32_t kind = 0;
        EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(ed, i, &value, &kind), TV_OK);
        EXPECT_EQ(kind, TV_CMS_RECIPIENT_KEY_TRANS);
        auto* kt = static_cast<KeyTrans*>(value);
        Append(got, "id", RecipientId(kt, got));
        Append(got, "keyAlg", AlgorithmOf([&](auto... a) { return GetKeyTransKeyEncryptionAlgorithmOidAndParameters(kt, a...); }));
        const Bytes key = Get(GetKeyTransEncryptedKey, kt).bytes;
        Append(got, "encryptedKeyLen", std::to_string(key.size()));
        if (i == 0 && FixtureFile("enveloped/gost_kt.der") == key) got["keyTransport"] = "gost_kt.der";
    }
    got["contentType"] = Dotted(Get(GetCmsEnvelopedDataEncryptedContentTypeOid, ed.p).bytes);
    uint8_t oid[64], params[128];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    EXPECT_EQ(GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(ed, oid, &oidLen, params, &paramsLen), TV_OK);
    got["cipher"] = Dotted(Bytes(oid, oid + oidLen));
    if (paramsLen && params[0] == 0x04) got["iv"] = PlainHex(Bytes(params + 2, params + paramsLen));
    if (paramsLen && params[0] == 0x30) {
        uint8_t iv[16], set[16];
        uint32_t ivLen = sizeof iv, setLen = sizeof set;
        EXPECT_EQ(DecodeGost2814789Parameters(params, paramsLen, iv, &ivLen, set, &setLen), TV_OK);
        got["iv"] = PlainHex(Bytes(iv, iv + ivLen));
        got["paramSet"] = Dotted(Bytes(set, set + setLen));
        EXPECT_EQ(Get(EncodeGost2814789Parameters, iv, ivLen, static_cast<const uint8_t*>(set)).bytes,
                  Bytes(params, params + paramsLen));
    }
    got["encryptedContentLen"] = std::to_string(Get(GetCmsEnvelopedDataEncryptedContent, ed.p).bytes.size());
    return got;
}

Fields KeyTransportFields(const Bytes& der) {
    Fields got;
    auto kt = Decoded<FreeGostR3410KeyTransport>(DecodeGostR3410KeyTransport, der);
    const auto hex = [](const Got& g) { return g.rc != TV_OK ? g.hex() : g.bytes.empty() ? "-" : PlainHex(g.bytes); };
    got["encryptedKey"] = hex(Get(GetGostR3410KeyTransportEncryptedKey, kt.p));
    got["maskKey"] = hex(Get(GetGostR3410KeyTransportMaskKey, kt.p));
    got["macKey"] = hex(Get(GetGostR3410KeyTransportMacKey, kt.p));
    got["paramSet"] = Dotted(Get(GetGostR3410KeyTransportEncryptionParamSetOid, kt.p).bytes);
    got["ukm"] = hex(Get(GetGostR3410KeyTransportUkm, kt.p));
    got["ephemeralKey"] = hex(Get(GetGostR3410KeyTransportEphemeralPublicKey, kt.p));
    uint8_t oid[64], params[128];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    EXPECT_EQ(GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(kt, oid, &oidLen, params, &paramsLen),
              TV_OK);
    got["ephemeralAlg"] = Dotted(Bytes(oid, oid + oidLen));
    got["ephemeralParams"] = paramsLen ? PlainHex(Bytes(params, params + paramsLen)) : "-";
    return got;
}

}  // namespace

TEST(EnvelopedFixtures, EveryFieldReadsBackAsTheDerSaysAndWritesBackTheSameBytes) {
    int files = 0;
    for (auto [file, expected] : ExpectRows("enveloped")) {
        ++files;
        const Bytes der = FixtureFile("enveloped/" + file);
        if (file == "gost_kt.der") {
            EXPECT_EQ(KeyTransportFields(der), expected) << file;
            continue;
        }
        if (file == "env_gost.der") expected["keyTransport"] = "gost_kt.der";  // the cut holds what it carries
        EXPECT_EQ(MessageFields(der), expected) << file;
    }
    EXPECT_EQ(files, 6);
}
