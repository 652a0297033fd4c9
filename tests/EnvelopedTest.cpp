// CMS enveloped messages made by openssl (one given an originatorInfo by hand), read field by field
// through the accessors and compared with what openssl printed (tests/fixtures/enveloped/EXPECT):
// each recipient identifier matched against the certificate whose key decrypts the message, and the
// EnvelopedData, recipients, GOST key transport and GOST 28147-89 parameters cut out of them written
// back byte for byte.
#include <sstream>

#include "TestUtil.h"

using namespace tvtest;

namespace {

// Octets as EXPECT writes them: "-" for none, the status when the getter refused.
std::string Octets(const Got& g) { return g.rc != TV_OK ? g.hex() : g.bytes.empty() ? "-" : PlainHex(g.bytes); }

std::vector<std::string> Items(const Fields& expected, const std::string& key) {
    std::vector<std::string> items;
    if (!expected.count(key)) return items;
    std::stringstream list(expected.at(key));
    for (std::string item; std::getline(list, item, ',');) items.push_back(item);
    return items;
}

// `name` when `bytes` is that fixture, so that a map holding it says which file matched.
std::string SameAs(const Bytes& bytes, const std::string& name) {
    return name != "-" && FixtureFile(name.find('/') == std::string::npos ? "enveloped/" + name : name) == bytes
               ? name : "differs from " + name;
}

struct Algorithm {
    Bytes oid, params;
};
template <typename T, typename Fn>
Algorithm AlgorithmOf(Fn get, const T* h) {
    uint8_t oid[64], params[256];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    EXPECT_EQ(get(h, oid, &oidLen, params, &paramsLen), TV_OK);
    return {Bytes(oid, oid + oidLen), Bytes(params, params + paramsLen)};
}

bool Rfc4490KeyTransport(const Bytes& keyAlg) {
    for (const char* gost : {"1.2.643.2.2.19", "1.2.643.7.1.1.1.1", "1.2.643.7.1.1.1.2"})
        if (keyAlg == Packed(gost)) return true;
    return false;
}

// rid and id, and whether they name `certFile`: its issuer and serial, or its subjectKeyIdentifier.
void ReadRecipient(KeyTrans* kt, const std::string& certFile, Fields& got) {
    X509Name* issuer = nullptr;
    uint8_t serial[64], keyId[64];
    uint32_t serialLen = sizeof serial, keyIdLen = sizeof keyId;
    EXPECT_EQ(GetKeyTransRecipientIdentifier(kt, &issuer, serial, &serialLen, keyId, &keyIdLen), TV_OK);
    auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(certFile));
    bool named;
    if (issuer) {
        X509Name* certIssuer = nullptr;
        EXPECT_EQ(GetCertificateIssuer(cert, &certIssuer), TV_OK);
        named = CompareX509Names(issuer, certIssuer) == TV_OK &&
                Get(GetCertificateSerialNumber, cert.p).bytes == Bytes(serial, serial + serialLen);
        Append(got, "rid", "issuerAndSerial");
        Append(got, "id", PlainHex(Bytes(serial, serial + serialLen)));
    } else {
        named = Get(GetCertificateSubjectKeyIdentifier, cert.p).bytes == Bytes(keyId, keyId + keyIdLen);
        Append(got, "rid", "keyid");
        Append(got, "id", PlainHex(Bytes(keyId, keyId + keyIdLen)));
    }
    Append(got, "cert", named ? certFile : "not " + certFile);
}

void ReadRecipients(CmsEnvelopedData* ed, const Fields& expected, Fields& got) {
    const auto ktri = Items(expected, "ktri"), certs = Items(expected, "cert");
    uint32_t n = 0;
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfosCount(ed, &n), TV_OK);
    got["recipients"] = std::to_string(n);
    for (uint32_t i = 0; i < n; ++i) {
        void* value = nullptr;
        uint32_t kind = 0, version = 9;
        EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(ed, i, &value, &kind), TV_OK);
        Append(got, "kind", kind == TV_CMS_RECIPIENT_KEY_TRANS ? "ktri" : "kind " + std::to_string(kind));
        if (kind != TV_CMS_RECIPIENT_KEY_TRANS || i >= ktri.size() || i >= certs.size()) continue;
        auto* kt = static_cast<KeyTrans*>(value);
        Append(got, "ktri", SameAs(Get(EncodeKeyTrans, kt).bytes, ktri[i]));
        EXPECT_EQ(GetKeyTransVersion(kt, &version), TV_OK);
        Append(got, "riVersion", std::to_string(version));
        ReadRecipient(kt, certs[i], got);
        const Algorithm alg = AlgorithmOf(GetKeyTransKeyEncryptionAlgorithmOidAndParameters, kt);
        Append(got, "keyAlg", Dotted(alg.oid));
        const Bytes key = Get(GetKeyTransEncryptedKey, kt).bytes;
        Append(got, "encryptedKeyLen", std::to_string(key.size()));
        if (Rfc4490KeyTransport(alg.oid)) got["keyTransport"] = SameAs(key, expected.count("keyTransport") ? expected.at("keyTransport") : "-");
    }
}

// originatorInfo's certificates or CRLs, named by the fixtures EXPECT lists and checked to equal them.
template <typename Count, typename Read>
std::string Stored(const CmsEnvelopedData* ed, Count count, Read read, const std::vector<std::string>& files) {
    uint32_t n = 0, kind = 0;
    EXPECT_EQ(count(ed, &n), TV_OK);
    std::string list;
    for (uint32_t i = 0; i < n; ++i) {
        const Got object = Get(read, ed, i, &kind);
        list += (i ? "," : "") + (i < files.size() ? SameAs(object.bytes, files[i]) : object.hex());
        EXPECT_EQ(kind, 1u) << "a certificate / CertificateList";
    }
    return n ? list : "-";
}

Fields MessageFields(const Bytes& der, const Fields& expected) {
    Fields got;
    auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, der);
    got["type"] = Dotted(Get(GetCmsContentInfoTypeOid, info.p).bytes);
    const Bytes inner = Get(GetCmsContentInfoContent, info.p).bytes;
    got["env"] = SameAs(inner, expected.at("env"));
    auto ed = Decoded<FreeCmsEnvelopedData>(DecodeCmsEnvelopedData, inner);
    EXPECT_EQ(Get(EncodeCmsEnvelopedData, ed.p).bytes, inner) << "written back byte for byte";
    uint32_t version = 9;
    EXPECT_EQ(GetCmsEnvelopedDataVersion(ed, &version), TV_OK);
    got["version"] = std::to_string(version);
    got["certs"] = Stored(ed.p, GetCmsEnvelopedDataCertificatesCount, GetCmsEnvelopedDataEncodedCertificate, Items(expected, "certs"));
    got["crls"] = Stored(ed.p, GetCmsEnvelopedDataCrlsCount, GetCmsEnvelopedDataEncodedCrl, Items(expected, "crls"));
    got["originator"] = got["certs"] != "-" || got["crls"] != "-" ? "yes" : "no";
    ReadRecipients(ed, expected, got);

    got["contentType"] = Dotted(Get(GetCmsEnvelopedDataEncryptedContentTypeOid, ed.p).bytes);
    const Algorithm cipher = AlgorithmOf(GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters, ed.p);
    got["cipher"] = Dotted(cipher.oid);
    got["params"] = cipher.params.empty() ? "-" : PlainHex(cipher.params);
    const bool octets = cipher.params.size() > 2 && cipher.params[0] == 0x04 && cipher.params[1] == cipher.params.size() - 2;
    got["iv"] = octets ? PlainHex(Bytes(cipher.params.begin() + 2, cipher.params.end())) : "-";
    if (cipher.oid == Packed("1.2.643.2.2.21"))
        got["gost89Params"] = SameAs(cipher.params, expected.count("gost89Params") ? expected.at("gost89Params") : "-");
    got["encryptedContentLen"] = std::to_string(Get(GetCmsEnvelopedDataEncryptedContent, ed.p).bytes.size());

    // The list is made on demand: reading a message without one must not add an empty [1] to it.
    RsaAttributes* attrs = nullptr;
    EXPECT_EQ(GetCmsEnvelopedDataUnprotectedAttributes(ed, &attrs), TV_OK);
    uint32_t n = 0;
    EXPECT_EQ(GetRsaAttributesAttributesCount(attrs, &n), TV_OK);
    got["unprotectedAttrs"] = n ? "" : "-";
    for (uint32_t i = 0; i < n; ++i) Append(got, "unprotectedAttrs", Dotted(Get(GetRsaAttributesAttributeOid, attrs, i).bytes), "+");
    EXPECT_EQ(Get(EncodeCmsEnvelopedData, ed.p).bytes, inner) << "still the same bytes once the attributes were read";
    return got;
}

Fields KeyTransportFields(const Bytes& der) {
    Fields got;
    auto kt = Decoded<FreeGostR3410KeyTransport>(DecodeGostR3410KeyTransport, der);
    EXPECT_EQ(Get(EncodeGostR3410KeyTransport, kt.p).bytes, der) << "written back byte for byte";
    got["encryptedKey"] = Octets(Get(GetGostR3410KeyTransportEncryptedKey, kt.p));
    got["maskKey"] = Octets(Get(GetGostR3410KeyTransportMaskKey, kt.p));
    got["macKey"] = Octets(Get(GetGostR3410KeyTransportMacKey, kt.p));
    got["paramSet"] = Dotted(Get(GetGostR3410KeyTransportEncryptionParamSetOid, kt.p).bytes);
    got["ukm"] = Octets(Get(GetGostR3410KeyTransportUkm, kt.p));
    got["ephemeralKey"] = Octets(Get(GetGostR3410KeyTransportEphemeralPublicKey, kt.p));
    const Algorithm alg = AlgorithmOf(GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters, kt.p);
    got["ephemeralAlg"] = Dotted(alg.oid);
    got["ephemeralParams"] = alg.params.empty() ? "-" : PlainHex(alg.params);
    return got;
}

Fields Gost89Fields(const Bytes& der) {
    uint8_t iv[64], set[64];
    uint32_t ivLen = sizeof iv, setLen = sizeof set;
    EXPECT_EQ(DecodeGost2814789Parameters(der.data(), Size(der), iv, &ivLen, set, &setLen), TV_OK);
    EXPECT_EQ(Get(EncodeGost2814789Parameters, static_cast<const uint8_t*>(iv), ivLen, static_cast<const uint8_t*>(set)).bytes, der)
        << "written back from the IV and the OID";
    return {{"iv", PlainHex(Bytes(iv, iv + ivLen))}, {"paramSet", Dotted(Bytes(set, set + setLen))}};
}

}  // namespace

TEST(EnvelopedFixtures, EveryFieldReadsBackAsOpensslPrintedItAndWritesBackTheSameBytes) {
    int files = 0;
    for (const auto& [file, expected] : ExpectRows("enveloped")) {
        ++files;
        const Bytes der = FixtureFile("enveloped/" + file);
        if (file.starts_with("enveloped_")) EXPECT_EQ(MessageFields(der, expected), expected) << file;
        else if (file.starts_with("gost_kt_")) EXPECT_EQ(KeyTransportFields(der), expected) << file;
        else if (file.starts_with("gost89_params_")) EXPECT_EQ(Gost89Fields(der), expected) << file;
        else ADD_FAILURE() << file << ": no reader for it";
    }
    EXPECT_EQ(files, 10);
}
