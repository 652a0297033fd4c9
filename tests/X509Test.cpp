// Certificates, CRLs and requests: OpenSSL-made fixtures read field by field and rebuilt through
// the setters; key identifiers against what OpenSSL wrote; the working-buffer limits; the search of
// an indirect CRL; requested extensions under both attribute OIDs and the 1024-octet limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>

#include "TestUtil.h"
#include "tarvelon/x509/Certificate.h"

using namespace tvtest;

namespace {

Own<FreeCertificate> Cert(const std::string& fixture) {
    return Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(fixture + ".der"));
}
Own<FreeCertificate> FreshCert() {
    Own<FreeCertificate> c;
    EXPECT_EQ(CreateCertificate(&c.p), 0u);
    return c;
}
X509Extensions* ExtensionsOf(Certificate* c) {
    X509Extensions* e = nullptr;
    EXPECT_EQ(GetCertificateExtensions(c, &e), 0u);
    return e;
}
bool Contains(const Bytes& hay, const Bytes& needle) {
    return std::search(hay.begin(), hay.end(), needle.begin(), needle.end()) != hay.end();
}
// An algorithm's OID and parameters, both through the size protocol.
Bytes AlgorithmOf(std::function<uint32_t(uint8_t*, uint32_t*, uint8_t*, uint32_t*)> get, Bytes* params) {
    uint8_t oid[32];
    uint32_t oidLen = sizeof oid;
    *params = Sized([&](uint8_t* p, uint32_t* n) {
                  oidLen = sizeof oid;
                  return get(oid, &oidLen, p, n);
              }).bytes;
    return Bytes(oid, oid + oidLen);
}
const Bytes kSki = Packed("2.5.29.14"), kAki = Packed("2.5.29.35");

// Every field read from a fixture and written into a fresh certificate gives back the fixture.
TEST(Certificate, FixturesRebuildThroughTheAccessors) {
    for (const char* name : {"certs/rsa_ca", "certs/gost2001", "certs/gost2012_256", "certs/gost2012_512", "pki/ca_rsa",
                             "pki/ca_gost2012_512", "pki/ee_rsa", "pki/ee_gost2012_256"}) {
        SCOPED_TRACE(name);
        auto s = Cert(name), d = FreshCert();
        uint32_t version = 0;
        LibraryTime t{};
        X509Name* n = nullptr;
        Bytes params;
        ASSERT_EQ(GetCertificateVersion(s, &version), 0u);
        EXPECT_EQ(version, 2u);
        ASSERT_EQ(SetCertificateVersion(d, version), 0u);
        const Bytes serial = Get(GetCertificateSerialNumber, s.p).bytes, key = Get(GetCertificatePublicKey, s.p).bytes,
                    signature = Get(GetCertificateSignature, s.p).bytes;
        ASSERT_EQ(SetCertificateSerialNumber(d, serial.data(), Size(serial)), 0u);
        Bytes oid = AlgorithmOf([&](uint8_t* o, uint32_t* on, uint8_t* p, uint32_t* pn) {
            return GetCertificateSignatureAlgorithmOidAndParameters(s, o, on, p, pn); }, &params);
        ASSERT_EQ(SetCertificateSignatureAlgorithmOidAndParameters(d, oid.data(), params.data(), Size(params)), 0u);
        oid = AlgorithmOf([&](uint8_t* o, uint32_t* on, uint8_t* p, uint32_t* pn) {
            return GetCertificatePublicKeyAlgorithmOidAndParameters(s, o, on, p, pn); }, &params);
        ASSERT_EQ(SetCertificatePublicKeyAlgorithmOidAndParameters(d, oid.data(), params.data(), Size(params)), 0u);
        ASSERT_EQ(SetCertificatePublicKey(d, key.data(), Size(key)), 0u);
        ASSERT_EQ(GetCertificateIssuer(s, &n), 0u);
        ASSERT_EQ(SetCertificateIssuer(d, n), 0u);
        ASSERT_EQ(GetCertificateSubject(s, &n), 0u);
        ASSERT_EQ(SetCertificateSubject(d, n), 0u);
        ASSERT_EQ(GetCertificateValidNotBefore(s, &t), 0u);
        ASSERT_EQ(SetCertificateValidNotBefore(d, &t), 0u);
        ASSERT_EQ(GetCertificateValidNotAfter(s, &t), 0u);
        ASSERT_EQ(SetCertificateValidNotAfter(d, &t), 0u);
        ASSERT_EQ(SetCertificateExtensions(d, ExtensionsOf(s)), 0u);
        ASSERT_EQ(SetCertificateSignature(d, signature.data(), Size(signature)), 0u);
        EXPECT_EQ(Get(EncodeCertificate, d.p).bytes, FixtureFile(std::string(name) + ".der"));
        // The key identifier OpenSSL wrote (subjectKeyIdentifier=hash) is the one computed here:
        // replaced, then appended.
        const Bytes expected = Get(GetCertificateSubjectKeyIdentifier, s.p).bytes;
        uint32_t count = 0, index = 0;
        ASSERT_EQ(SetCertificateSubjectKeyIdentifier(s), 0u);
        EXPECT_EQ(Get(GetCertificateSubjectKeyIdentifier, s.p).bytes, expected);
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(ExtensionsOf(s), &count), 0u);
        EXPECT_EQ(FindX509Extension(ExtensionsOf(s), kSki.data(), &index), 0u);
        EXPECT_EQ(index, count - 1);
    }
}

TEST(Certificate, FieldRules) {
    auto c = FreshCert();
    uint8_t buf[8];
    uint32_t n = sizeof buf, version = 7;
    LibraryTime t{};
    EXPECT_EQ(GetCertificateVersion(c, &version), 0u);
    EXPECT_EQ(version, 0u);  // DEFAULT v1
    for (uint32_t rc : {GetCertificateSerialNumber(c, buf, &n), GetCertificateValidNotAfter(c, &t),
                        GetCertificateIssuerUniqueId(c, buf, &n, nullptr), GetCertificateSignature(c, buf, &n),
                        GetCertificatePublicKey(c, buf, &n),
                        GetCertificateSignatureAlgorithmOidAndParameters(c, buf, &n, nullptr, nullptr)})
        EXPECT_EQ(rc, 311u);
    EXPECT_EQ(GetCertificateExtensionValue(c, kSki.data(), buf, &n), 322u);
    EXPECT_EQ(ptr_GetCertificateSerialNumber(c, &n), nullptr);
    EXPECT_EQ(SetCertificateVersion(c, 3), 32u);
    for (const Bytes& s : {Hex("00 7F"), Hex("7F"), Hex("FF"), Bytes(40, 0x11)}) {
        ASSERT_EQ(SetCertificateSerialNumber(c, s.data(), Size(s)), 0u);
        const uint8_t* p = ptr_GetCertificateSerialNumber(c, &n);
        EXPECT_EQ(Bytes(p, p + n), s) << "stored as given, not normalised";
    }
    EXPECT_EQ(SetCertificateSerialNumber(c, buf, 0), 32u);
    uint8_t unused = 0;
    ASSERT_EQ(SetCertificateSubjectUniqueId(c, Hex("A5 F0").data(), 2, 4), 0u);
    EXPECT_EQ(Get(GetCertificateSubjectUniqueId, c.p, Out, &unused).hex(), "A5 F0");
    EXPECT_EQ(unused, 4);
    ASSERT_EQ(SetCertificateSubjectUniqueId(c, nullptr, 0, 0), 0u);
    EXPECT_EQ(GetCertificateSubjectUniqueId(c, nullptr, &n, nullptr), 311u);

    // The subject of a fresh certificate is made in place; an issuer is taken over without a copy
    // (a sanitizer run reports a double free if the old one is mishandled).
    X509Name *subject = nullptr, *again = nullptr, *issuer = nullptr;
    ASSERT_EQ(GetCertificateSubject(c, &subject), 0u);
    ASSERT_EQ(AddX509NameEntry(subject, U8("TestX"), 5, ASN1_UTF8_STRING, Packed("2.5.4.3").data(), 1), 0u);
    ASSERT_EQ(GetCertificateSubject(c, &again), 0u);
    EXPECT_EQ(again, subject);
    ASSERT_EQ(CopyX509Name(subject, &issuer), 0u);
    ASSERT_EQ(SetCertificateIssuer_i(c, issuer, 0), 0u);
    ASSERT_EQ(SetCertificateIssuer_i(c, issuer, 0), 0u);
    const LibraryTime from{2024, 1, 1, 0, 0, 0}, to{2051, 1, 1, 0, 0, 0}, wide{12050, 1, 1, 0, 0, 0};
    ASSERT_EQ(SetCertificateValidNotBefore(c, &from), 0u);
    ASSERT_EQ(SetCertificateValidNotAfter(c, &to), 0u);
    EXPECT_EQ(SetCertificateValidNotAfter(c, &wide), 313u);  // the old value stays
    ASSERT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c, 3002, 255), 0u);
    ASSERT_EQ(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(c, 3000, 1, 1, 3, 1), 0u);
    const Bytes key(64, 0x5A);
    ASSERT_EQ(SetCertificateGostR34102001PublicKey(c, key.data(), 64), 0u);
    const Bytes tbs = Get(GetCertificateToBeSignedPart, c.p).bytes;
    EXPECT_TRUE(Contains(tbs, Hex("0C 05 54 65 73 74 58")));
    EXPECT_TRUE(Contains(tbs, Hex("18 0F 32 30 35 31 30 31 30 31")));  // GeneralizedTime from 2050 on
    uint32_t ids[3] = {};
    EXPECT_EQ(Get(GetCertificateDecodedPublicKeyGostR34102012, c.p, Out, &ids[0], &ids[1], &ids[2]).bytes, key);
    EXPECT_EQ(std::vector<uint32_t>(ids, ids + 3), std::vector<uint32_t>({1, 3, 1}));
}

TEST(Certificate, AlgorithmsAndKeys) {
    // The inner signature field first, the outer mirror second; a refusal leaves both as they were.
    auto c = Cert("pki/ca_rsa");
    ASSERT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c, 100, 0), 0u);
    const Bytes der = Get(EncodeCertificate, c.p).bytes, gostNull = Hex("30 0A 06 06 2A 85 03 02 02 03 05 00");
    const Bytes tbs = Get(GetCertificateToBeSignedPart, c.p).bytes;
    EXPECT_TRUE(Contains(tbs, gostNull));
    EXPECT_TRUE(Contains(Bytes(der.begin() + 4 + tbs.size(), der.end()), gostNull));
    EXPECT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c, 100, 1), 32u);
    EXPECT_EQ(SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(c, 7, 255, 0, 0, 0), 309u);
    EXPECT_EQ(Get(EncodeCertificate, c.p).bytes, der);
    uint8_t key[256], oid[16], params[16];
    uint32_t n = sizeof key, ids[3], oidLen = 3, paramsLen = sizeof params;
    EXPECT_EQ(GetCertificateDecodedPublicKeyGostR34102012(c, key, &n, &ids[0], &ids[1], &ids[2]), 317u);
    // A short OID buffer: 49 with both sizes, the parameters delivered anyway; then the other way round.
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c, oid, &oidLen, params, &paramsLen), 49u);
    EXPECT_EQ(std::vector<uint32_t>({oidLen, paramsLen, params[0]}), std::vector<uint32_t>({7, 2, 5}));
    paramsLen = 1;
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c, oid, &oidLen, params, &paramsLen), 49u);
    EXPECT_EQ(Bytes(oid, oid + oidLen), Packed("1.2.643.2.2.3"));
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c, oid, &oidLen, nullptr, nullptr), 0u);
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c, oid, &oidLen, params, nullptr), 32u);
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c, oid, nullptr, params, &paramsLen), 32u);

    // A GOST key is checked against the parameter block of its algorithm.
    auto gost = Cert("certs/gost2012_256");
    auto block = [](std::initializer_list<const char*> oids) {
        Bytes b;
        for (const char* o : oids) {
            const Bytes p = Packed(o);
            b.push_back(ASN1_OBJECT_IDENTIFIER), b.insert(b.end(), p.begin(), p.end());
        }
        b.insert(b.begin(), {0x30, uint8_t(b.size())});
        return b;
    };
    for (auto [what, algId, params, rc] :
         {std::tuple{"2012-256 with the 512-bit digest", 3000u, block({"1.2.643.2.2.35.1", "1.2.643.7.1.1.2.3"}), 317u},
          {"2012-256 with a 512-bit key set", 3000u, block({"1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.2"}), 317u},
          {"2012-512 with a 256-bit key set", 3001u, block({"1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.3"}), 317u},
          {"2001 with the 2012 digest", 102u, block({"1.2.643.2.2.35.1", "1.2.643.7.1.1.2.2"}), 317u},
          {"2001 test set", 102u, block({"1.2.643.2.2.35.0", "1.2.643.2.2.30.0"}), 0u},
          {"2012-256 TC26 A", 3000u, block({"1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.2"}), 0u},
          {"NULL parameters", 3000u, Hex("05 00"), 317u}, {"no parameters", 3000u, Bytes{}, 317u},
          {"RSA key", 1u, Hex("05 00"), 317u}, {"signature algorithm", 3002u, Bytes{}, 317u}}) {
        ASSERT_EQ(SetCertificatePublicKeyAlgorithmIdAndParameters(gost, algId, params.data(), Size(params)), 0u) << what;
        n = sizeof key;
        EXPECT_EQ(GetCertificateDecodedPublicKeyGostR34102012(gost, key, &n, &ids[0], &ids[1], &ids[2]), rc) << what;
    }
    ASSERT_EQ(SetCertificatePublicKeyAlgorithmOidAndParameters(gost, Packed("1.2.643.100.1").data(), nullptr, 0), 0u);
    EXPECT_EQ(GetCertificateDecodedPublicKeyGostR34102012(gost, key, &n, &ids[0], &ids[1], &ids[2]), 308u);
    // The raw key goes into an OCTET STRING in a working buffer of 256.
    const Bytes big(271, 0x42);
    EXPECT_EQ(SetCertificateGostR34102001PublicKey(gost, big.data(), 253), 0u);  // 04 81 FD + 253 octets
    EXPECT_EQ(SetCertificateGostR34102001PublicKey(gost, big.data(), 254), 338u);
    ASSERT_EQ(SetCertificatePublicKey(gost, big.data(), 271), 0u);
    EXPECT_EQ(Get(GetCertificatePublicKeyGostR3410, gost.p).rc, 338u);
}

TEST(Certificate, Lists) {
    Own<FreeCertificates> list, decoded, copy;
    ASSERT_EQ(CreateCertificates(&list.p), 0u);
    Bytes body;
    for (const char* name : {"pki/ca_rsa", "pki/ee_rsa"}) {
        const Bytes der = FixtureFile(std::string(name) + ".der");
        body.insert(body.end(), der.begin(), der.end());
        ASSERT_EQ(AddCertificateToCertificates(list, Decoded<FreeCertificate>(DecodeCertificate, der).release()), 0u);
    }
    uint32_t count = 0;
    Certificate* second = nullptr;
    EXPECT_EQ(GetCertificatesCount(list, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(GetCertificatesCertificate(list, 1, &second), 0u);
    EXPECT_EQ(Get(GetCertificateSerialNumber, second).hex(), "0E E0 00 00 00 00 00 01");
    EXPECT_EQ(GetCertificatesCertificate(list, 2, &second), 32u);
    ASSERT_EQ(CreateCertificatesCopy(list, &copy.p), 0u);
    const Got encoded = Get(EncodeCertificates, copy.p);
    EXPECT_TRUE(std::equal(body.rbegin(), body.rend(), encoded.bytes.rbegin()));
    ASSERT_EQ(DecodeCertificates(encoded.bytes.data(), Size(encoded.bytes), &decoded.p), 0u);
    EXPECT_EQ(Get(EncodeCertificates, decoded.p).bytes, encoded.bytes);
}

// ee_rsa's authority key identifier holds the CA's key id, the CA's issuer name and its serial.
TEST(Certificate, AuthorityKeyIdentifiersMatchOpenSsl) {
    auto ca = Cert("pki/ca_rsa"), ee = Cert("pki/ee_rsa"), fresh = FreshCert();
    const Bytes expected = Get(GetCertificateExtensionValue, ee.p, kAki.data()).bytes;
    ASSERT_EQ(SetCertificateAuthorityKeyIdentifier(ee, ca), 0u);
    EXPECT_EQ(Get(GetCertificateExtensionValue, ee.p, kAki.data()).bytes, expected);
    const Bytes keyId = Get(GetCertificateSubjectKeyIdentifier, ca.p).bytes, serial = Get(GetCertificateSerialNumber, ca.p).bytes;
    uint8_t key[32], sn[32];
    uint32_t keyLen = sizeof key, snLen = sizeof sn;
    Own<FreeX509Name> issuer;
    X509Name *caName = nullptr, *eeName = nullptr;
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ee, key, &keyLen, &issuer.p, sn, &snLen), 0u);
    ASSERT_EQ(GetCertificateSubject(ca, &caName), 0u);
    ASSERT_EQ(GetCertificateSubject(ee, &eeName), 0u);
    EXPECT_EQ(Bytes(key, key + keyLen), keyId);
    EXPECT_EQ(Bytes(sn, sn + snLen), serial);
    EXPECT_EQ(CompareX509Names(issuer, caName), 0u);
    keyLen = sizeof key, snLen = sizeof sn;
    X509Name* none = nullptr;  // the CA's own identifier is a key id only
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ca, key, &keyLen, &none, sn, &snLen), 0u);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(snLen, 0u);
    EXPECT_EQ(SetCertificateAuthorityKeyIdentifier2(ee, nullptr, 0, nullptr, sn, 4), 32u);

    Bytes otherKey = keyId, padded = serial;
    otherKey[0] ^= 1;
    padded.insert(padded.begin(), 0x00);
    const struct {
        const char* what;
        Certificate* cert;
        const Bytes* key;
        X509Name* issuer;
        const Bytes* serial;
        uint32_t rc;
    } cases[] = {
        {"key id decides alone", ca, &keyId, eeName, &padded, 0},
        {"other key id", ca, &otherKey, caName, &serial, 320},
        {"issuer and serial", ca, nullptr, caName, &serial, 0},
        {"serial 00-prefixed", ca, nullptr, caName, &padded, 320},
        {"other issuer", ca, nullptr, eeName, &serial, 320},
        {"nothing given", ca, nullptr, nullptr, nullptr, 32},
        {"no subject key id", fresh, &keyId, nullptr, nullptr, 320},
        {"no serial", fresh, nullptr, caName, &serial, 307},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(IsCertificateCorrespondToAuthKeyIdent(c.cert, c.key ? c.key->data() : nullptr, c.key ? Size(*c.key) : 0,
                                                        c.issuer, c.serial ? c.serial->data() : nullptr,
                                                        c.serial ? Size(*c.serial) : 0), c.rc) << c.what;
    }
}

TEST(Certificate, KestruneIdentifierCrlDistributionPointAndWorkingBuffers) {
    // "ключ-7f3a-19c2" in code page 1251 becomes the UTF8String that ee_rsa carries.
    const Bytes kestrune = Packed("1.2.643.3.901.3.1"), points = Packed("2.5.29.31");
    auto ee = Cert("pki/ee_rsa"), c = FreshCert();
    ASSERT_EQ(SetCertificateKestruneKeyIdentifier(c, "\xEA\xEB\xFE\xF7-7f3a-19c2"), 0u);
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, kestrune.data()).bytes,
              Get(GetCertificateExtensionValue, ee.p, kestrune.data()).bytes);
    // The old identifier goes first, so a text too long for the working buffer leaves none (kept as it is).
    EXPECT_EQ(SetCertificateKestruneKeyIdentifier(c, std::string(200, 'k').c_str()), 338u);
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, kestrune.data()).rc, 322u);
    const std::string url = "http://crl.example.ru/ca.crl";
    for (int i = 0; i < 2; ++i) ASSERT_EQ(SetCertificateExtensionCrlDistributionPoints(c, url.c_str()), 0u);
    const std::string want = "30 24 30 22 A0 20 A0 1E 86 1C" + ToHex(Text(url));
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, points.data()).hex(), H(want));
    uint32_t count = 0;
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(ExtensionsOf(c), &count), 0u);
    EXPECT_EQ(count, 1u);
    // Beyond the 2048-octet working buffer: 49, the certificate unchanged.
    EXPECT_EQ(SetCertificateExtensionCrlDistributionPoints(c, ("http://" + std::string(2100, 'a')).c_str()), 49u);
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, points.data()).hex(), H(want));

    // Each working-buffer limit passes at its size and answers 338 one octet beyond.
    auto issuer = Cert("pki/ca_rsa");
    auto withExtension = [](const Bytes& oid, const Bytes& value) {
        auto cert = FreshCert();
        EXPECT_EQ(AddX509ExtensionsExtension(ExtensionsOf(cert), oid.data(), 0, value.data(), Size(value)), 0u);
        return cert;
    };
    auto longForm = [](uint8_t tag, size_t total, uint8_t fill, size_t inner = 0) {  // TAG 82 LL LL [80 82 LL LL] fill...
        Bytes v = {tag, 0x82, uint8_t((total - 4) >> 8), uint8_t(total - 4)};
        if (inner) v.insert(v.end(), {0x80, 0x82, uint8_t((total - 8) >> 8), uint8_t(total - 8)});
        v.resize(total, fill);
        return v;
    };
    const struct {
        const char* what;
        size_t fits;
        uint32_t beyond;
        std::function<uint32_t(size_t)> run;
    } limits[] = {
        {"public key 512", 512, 338, [](size_t n) {
             auto cert = FreshCert();
             const Bytes key(n, 0x42);
             EXPECT_EQ(SetCertificatePublicKey(cert, key.data(), uint32_t(n)), 0u);
             return SetCertificateSubjectKeyIdentifier(cert); }},
        {"issuer serial 64", 64, 338, [&](size_t n) {
             auto target = FreshCert();
             const Bytes serial(n, 0x21);
             EXPECT_EQ(SetCertificateSerialNumber(issuer, serial.data(), uint32_t(n)), 0u);
             return SetCertificateAuthorityKeyIdentifier(target, issuer); }},
        {"pair serial 100", 100, 338, [&](size_t n) {
             const Bytes serial(n, 0x21);
             EXPECT_EQ(SetCertificateSerialNumber(issuer, serial.data(), uint32_t(n)), 0u);
             return IsCertificatePairIssuerAndSerialEqual(issuer, issuer); }},  // not exported yet
        {"subject key id 32", 32, 338, [&](size_t n) {
             Bytes value = {0x04, uint8_t(n)};
             value.resize(2 + n, 0x33);
             auto cert = withExtension(kSki, value);
             return IsCertificateCorrespondToAuthKeyIdent(cert, value.data() + 2, uint32_t(n), nullptr, nullptr, 0); }},
        {"authority key id value 1024", 1024, 338, [&](size_t n) {
             auto cert = withExtension(kAki, longForm(0x30, n, 0x44, 1));
             Bytes keyId(2048);
             uint32_t keyIdLen = Size(keyId), serialLen = 0;
             return GetCertificateAuthorityKeyIdentifier(cert, keyId.data(), &keyIdLen, nullptr, nullptr, &serialLen); }},
        {"subject key id value 1024 answers 1", 1024, 1, [&](size_t n) {
             auto cert = withExtension(kSki, longForm(0x04, n, 0x55));
             return Get(GetCertificateSubjectKeyIdentifier, cert.p).rc; }},
    };
    for (const auto& l : limits) {
        EXPECT_EQ(l.run(l.fits), 0u) << l.what;
        EXPECT_EQ(l.run(l.fits + 1), l.beyond) << l.what;
    }
}

// ---- CRLs ----------------------------------------------------------------------------------------

const LibraryTime kApril1{2025, 4, 1, 0, 0, 0}, kMay1{2025, 5, 1, 0, 0, 0};
const Bytes kC = Packed("2.5.4.6"), kO = Packed("2.5.4.10"), kCN = Packed("2.5.4.3"), kCertIssuer = Packed("2.5.29.29");

Own<FreeX509Name> NameOf(std::initializer_list<std::tuple<const Bytes*, uint8_t, const char*>> entries) {
    Own<FreeX509Name> n;
    EXPECT_EQ(CreateX509Name(&n.p), 0u);
    for (auto [oid, tag, text] : entries)
        EXPECT_EQ(AddX509NameEntry(n, U8(text), uint32_t(std::strlen(text)), tag, oid->data(), 1), 0u);
    return n;
}
uint32_t Count(const X509Crl* crl) {
    uint32_t n = 0xFFFF;
    EXPECT_EQ(GetX509CrlRevokedCertificateCount(crl, &n), 0u);
    return n;
}
uint32_t Find(const X509Crl* crl, const X509Name* issuer, const char* serial, uint32_t* index) {
    return FindX509CrlFind(crl, issuer, Hex(serial).data(), Size(Hex(serial)), index);
}
// A complete v2 CRL: issuer C=RU, O=Tarvelon (PrintableString), dates, GOST signature algorithm, a signature.
Own<FreeX509Crl> FilledCrl() {
    Own<FreeX509Crl> crl;
    EXPECT_EQ(CreateX509Crl(&crl.p), 0u);
    auto issuer = NameOf({{&kC, ASN1_PRINTABLE_STRING, "RU"}, {&kO, ASN1_PRINTABLE_STRING, "Tarvelon"}});
    EXPECT_EQ(SetX509CrlVersion(crl, 1), 0u);
    EXPECT_EQ(SetX509CrlIssuer(crl, issuer), 0u);
    EXPECT_EQ(SetX509CrlThisUpdate(crl, &kApril1), 0u);
    EXPECT_EQ(SetX509CrlNextUpdate(crl, &kMay1), 0u);
    EXPECT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(crl, 3002, 255), 0u);
    EXPECT_EQ(SetX509CrlSignature(crl, U8("\x01\x02\x03\x04"), 4), 0u);
    return crl;
}

// Serials and algorithms as the fixture README and OpenSSL's dump list them.
TEST(Crl, OpenSslCrlsReadBack) {
    for (auto [file, entries, first, last, algorithm] :
         {std::tuple{"crl_rsa", 9u, "1001", "1009", "1.2.840.113549.1.1.11"}, {"crl_gost2001", 9u, "1001", "1009", "1.2.643.2.2.3"},
          {"crl_gost2012_256", 9u, "1001", "1009", "1.2.643.7.1.1.3.2"}, {"crl_gost2012_512", 9u, "1001", "1009", "1.2.643.7.1.1.3.3"},
          {"crl_indirect", 7u, "2001", "2004", "1.2.840.113549.1.1.11"}, {"crl_10000", 10000u, "100001", "102710", "1.2.840.113549.1.1.11"}}) {
        SCOPED_TRACE(file);
        auto crl = Decoded<FreeX509Crl>(DecodeX509Crl, FixtureFile(std::string("pki/") + file + ".der"));
        uint32_t version = 9, at = 0;
        LibraryTime t{};
        EXPECT_EQ(GetX509CrlVersion(crl, &version), 0u);
        EXPECT_EQ(version, 1u);
        EXPECT_EQ(GetX509CrlThisUpdate(crl, &t), 0u);
        EXPECT_TRUE(SameTime(t, kApril1));
        EXPECT_EQ(GetX509CrlNextUpdate(crl, &t), 0u);
        EXPECT_TRUE(SameTime(t, kMay1));
        EXPECT_EQ(Count(crl), entries);
        EXPECT_EQ(Get(GetX509CrlRevokedCertificateSerialNumber, crl.p, 0u).hex(), H(first));
        EXPECT_EQ(Get(GetX509CrlRevokedCertificateSerialNumber, crl.p, entries - 1).hex(), H(last));
        Bytes params;
        EXPECT_EQ(AlgorithmOf([&](uint8_t* o, uint32_t* on, uint8_t* p, uint32_t* pn) {
            return GetX509CrlSignatureAlgorithmOidAndParameters(crl, o, on, p, pn); }, &params), Packed(algorithm));
        EXPECT_GE(Get(GetX509CrlSignature, crl.p).bytes.size(), 64u);
        X509Extensions* extensions = nullptr;
        X509Name* issuer = nullptr;
        ASSERT_EQ(GetX509CrlExtensions(crl, &extensions), 0u);
        EXPECT_EQ(FindX509Extension(extensions, kAki.data(), &at), 0u);
        ASSERT_EQ(GetX509CrlIssuer(crl, &issuer), 0u);
        EXPECT_EQ(Find(crl, issuer, last, &at), 0u);
        EXPECT_EQ(at, entries - 1);
    }
}

TEST(Crl, IndirectCrlSearchFollowsCertificateIssuer) {
    auto crl = Decoded<FreeX509Crl>(DecodeX509Crl, FixtureFile("pki/crl_indirect.der"));
    X509Name* own = nullptr;
    X509Extensions* entry = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl, &own), 0u);
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl, 2, &entry), 0u);  // issuer B, as entry 3 names it
    auto names = Decoded<FreeX509GeneralNames>(DecodeX509GeneralNames,
                                               Get(GetX509ExtensionsExtensionValue, entry, kCertIssuer.data()).bytes);
    Own<FreeX509Name> b;
    ASSERT_EQ(GetX509NameFromGeneralNames(names, &b.p), 0u);
    // README: 1) 2001 own, 2) 2002 own, 3) 2001 -> B, 4) 3002 B, 5) 3003 B, 6) 2003 -> own, 7) 2004 own.
    for (auto [serial, underB, rc, index] :
         {std::tuple{"2001", false, 0u, 0u}, {"2001", true, 0u, 2u}, {"2002", false, 0u, 1u}, {"2002", true, 322u, 0u},
          {"3002", true, 0u, 3u}, {"3002", false, 322u, 0u}, {"3003", true, 0u, 4u}, {"3003", false, 322u, 0u},
          {"2003", false, 0u, 5u}, {"2003", true, 322u, 0u}, {"2004", false, 0u, 6u}, {"2004", true, 322u, 0u},
          {"9999", false, 322u, 0u}, {"002001", false, 322u, 0u}}) {
        uint32_t at = 0;
        EXPECT_EQ(Find(crl, underB ? b.p : own, serial, &at), rc) << serial << underB;
        EXPECT_EQ(at, index) << serial << underB;
    }
}

TEST(Crl, EntriesIssuersAndTheCertificateIssuerExtension) {
    auto crl = FilledCrl();
    X509Name* issuer = nullptr;
    uint32_t index = 5;
    ASSERT_EQ(GetX509CrlIssuer(crl, &issuer), 0u);
    EXPECT_EQ(Count(crl), 0u);  // no list: nothing to find, and the field is not in the encoding
    EXPECT_EQ(Find(crl, issuer, "01", &index), 322u);
    const size_t withoutList = Get(EncodeX509Crl, crl.p).bytes.size();
    for (uint32_t expected : {0u, 1u}) {  // duplicates are not refused
        ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8("\x01"), 1, &kApril1, &index), 0u);
        EXPECT_EQ(index, expected);
    }
    // A date from 2050 on (GeneralizedTime) and an entry extension added in place survive decoding.
    const LibraryTime late{2051, 3, 4, 5, 6, 7};
    X509Extensions* entry = nullptr;
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8("\x00\x80"), 2, &late, &index), 0u);
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl, 2, &entry), 0u);
    ASSERT_EQ(AddX509ExtensionsExtension(entry, Packed("2.5.29.21").data(), 0, U8("\x0A\x01\x01"), 3), 0u);
    auto decoded = Decoded<FreeX509Crl>(DecodeX509Crl, Get(EncodeX509Crl, crl.p).bytes);
    LibraryTime t{};
    uint32_t n = 0;
    ASSERT_EQ(GetX509CrlRevokedCertificateRevokationDate(decoded, 2, &t), 0u);
    EXPECT_TRUE(SameTime(t, late));
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(decoded, 2, &entry), 0u);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(entry, &n), 0u);
    EXPECT_EQ(n, 1u);
    EXPECT_EQ(Get(GetX509CrlRevokedCertificateSerialNumber, decoded.p, 2u).hex(), "00 80");
    ASSERT_EQ(ClearX509CrlRevokedCertificates(crl), 0u);
    EXPECT_EQ(Find(crl, issuer, "01", &index), 322u);
    EXPECT_EQ(Get(EncodeX509Crl, crl.p).bytes.size(), withoutList + 2);  // an empty SEQUENCE right after nextUpdate
    EXPECT_TRUE(Get(GetX509CrlToBeSignedPart, crl.p).hex().ends_with("5A 30 00"));
    for (int i = 0; i < 2; ++i) ASSERT_EQ(RemoveX509CrlRevokedCertificates(crl), 0u);
    EXPECT_EQ(ClearX509CrlRevokedCertificates(crl), 0u);
    EXPECT_EQ(Get(EncodeX509Crl, crl.p).bytes.size(), withoutList);

    // Issuers are compared as DER octets.
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8("\x05"), 1, &kApril1, &index), 0u);
    EXPECT_EQ(Find(crl, NameOf({{&kC, ASN1_PRINTABLE_STRING, "RU"}, {&kO, ASN1_PRINTABLE_STRING, "Tarvelon"}}), "05", &index), 0u);
    EXPECT_EQ(Find(crl, NameOf({{&kC, ASN1_PRINTABLE_STRING, "RU"}, {&kO, ASN1_UTF8_STRING, "Tarvelon"}}), "05", &index), 322u);
    EXPECT_EQ(Find(crl, NameOf({{&kO, ASN1_PRINTABLE_STRING, "Tarvelon"}, {&kC, ASN1_PRINTABLE_STRING, "RU"}}), "05", &index), 322u);

    // A certificate issuer extension names B from its entry on, until another changes it; the last
    // directoryName of an extension wins over names of other kinds after it.
    auto b = NameOf({{&kCN, ASN1_UTF8_STRING, "Issuer B"}}), c = NameOf({{&kCN, ASN1_UTF8_STRING, "Issuer C"}});
    for (const char* serial : {"\x02", "\x03", "\x04"}) ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8(serial), 1, &kApril1, &index), 0u);
    Own<FreeX509GeneralNames> names;
    ASSERT_EQ(CreateX509GeneralNames(&names.p), 0u);
    const Bytes derB = Get(EncodeX509Name, b.p).bytes, derC = Get(EncodeX509Name, c.p).bytes;
    ASSERT_EQ(AddX509GeneralName(names, 4, derC.data(), Size(derC)), 0u);
    ASSERT_EQ(AddX509GeneralName(names, 4, derB.data(), Size(derB)), 0u);
    ASSERT_EQ(AddX509GeneralName(names, 6, U8("http://example.ru/"), 18), 0u);
    const Bytes value = Get(EncodeX509GeneralNames, names.p).bytes;
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl, 1, &entry), 0u);
    ASSERT_EQ(AddX509ExtensionsExtension(entry, kCertIssuer.data(), 1, value.data(), Size(value)), 0u);
    for (auto [serial, name, rc] : {std::tuple{"05", issuer, 0u}, {"05", b.p, 322u}, {"02", b.p, 0u}, {"02", issuer, 322u},
                                    {"03", b.p, 0u}, {"04", b.p, 0u}, {"04", issuer, 322u}, {"03", c.p, 322u}})
        EXPECT_EQ(Find(crl, name, serial, &index), rc) << serial;
}

TEST(Crl, FieldRulesAndAlgorithms) {
    Own<FreeX509Crl> crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), 0u);
    uint32_t u = 0, len = 8;
    LibraryTime t{};
    uint8_t buf[8];
    const struct {
        const char* what;
        uint32_t rc, expected;
    } cases[] = {
        {"version", GetX509CrlVersion(crl, &u), 311},
        {"thisUpdate", GetX509CrlThisUpdate(crl, &t), 311},
        {"nextUpdate", GetX509CrlNextUpdate(crl, &t), 311},
        {"signature", GetX509CrlSignature(crl, buf, &len), 311},
        {"algorithm", GetX509CrlSignatureAlgorithmOidAndParameters(crl, buf, &len, nullptr, &u), 311},
        {"entry 0", GetX509CrlRevokedCertificateRevokationDate(crl, 0, &t), 32},
        {"version 2", SetX509CrlVersion(crl, 2), 32},
        {"mode 1 without parameters", SetX509CrlGostR34102001SignatureAlgorithmID(crl, 3002, 1), 32},
        {"empty serial", AddX509CrlRevokedCertificate(crl, buf, 0, &kApril1, &u), 32},
        {"null date", AddX509CrlRevokedCertificate(crl, buf, 1, nullptr, &u), 32},
        {"remove absent nextUpdate", RemoveX509CrlNextUpdate(crl), 0},
        {"encode incomplete", EncodeX509Crl(crl, nullptr, &len), 311},
    };
    for (const auto& c : cases) EXPECT_EQ(c.rc, c.expected) << c.what;
    EXPECT_EQ(Count(crl), 0u);  // the refused adds created no list
    // The issuer is made in place, and its entries appear in the encoding; v1 has no version field.
    X509Name *issuer = nullptr, *again = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl, &issuer), 0u);
    ASSERT_EQ(GetX509CrlIssuer(crl, &again), 0u);
    EXPECT_EQ(issuer, again);
    ASSERT_EQ(AddX509NameEntry(issuer, U8("RU"), 2, ASN1_PRINTABLE_STRING, kC.data(), 1), 0u);
    ASSERT_EQ(SetX509CrlThisUpdate(crl, &kApril1), 0u);
    ASSERT_EQ(SetX509CrlSignatureAlgorithmOidAndParameters(crl, Packed("1.2.643.2.2.3").data(), nullptr, 0), 0u);
    EXPECT_EQ(Get(GetX509CrlToBeSignedPart, crl.p).hex(),
              H("302830080606 2A8503020203 300D310B3009060355040613025255 170D3235303430313030303030305A"));
    EXPECT_EQ(GetX509CrlVersion(crl, &u), 311u);
    ASSERT_EQ(SetX509CrlNextUpdate(crl, &kMay1), 0u);
    ASSERT_EQ(GetX509CrlNextUpdate(crl, &t), 0u);
    EXPECT_TRUE(SameTime(t, kMay1));
    ASSERT_EQ(RemoveX509CrlNextUpdate(crl), 0u);
    EXPECT_EQ(GetX509CrlNextUpdate(crl, &t), 311u);

    // A refused algorithm leaves both fields as they were; mode 0 writes NULL parameters into both.
    auto filled = FilledCrl();
    const Bytes before = Get(EncodeX509Crl, filled.p).bytes;
    EXPECT_EQ(SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(filled, 3002, 7, 1, 1, 1), 32u);
    EXPECT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(filled, 424242, 0), 309u);
    EXPECT_EQ(Get(EncodeX509Crl, filled.p).bytes, before);
    ASSERT_EQ(SetX509CrlGostR34102001SignatureAlgorithmID(filled, 100, 0), 0u);
    const std::string der = Get(EncodeX509Crl, filled.p).hex(), algorithm = H("300A06062A85030202030500");
    EXPECT_NE(der.find(algorithm), der.rfind(algorithm));
}

TEST(Crl, ListsAndTheAuthorityKeyIdentifier) {
    Own<FreeX509RevokedCertificates> revoked;
    uint32_t index = 9, count = 9;
    X509Extensions* entry = nullptr;
    ASSERT_EQ(CreateX509RevokedCertificates(&revoked.p), 0u);
    ASSERT_EQ(AddX509RevokedCertificatesRevokedCertificate(revoked, U8("\x2A"), 1, &kApril1, &index), 0u);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(revoked, 0, &entry), 0u);
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(revoked, 1, &entry), 32u);
    EXPECT_EQ(Get(EncodeX509RevokedCertificates, revoked.p).hex(), H("3014301202012A170D3235303430313030303030305A"));
    // A list owns the CRLs added to it; copy, encoding and decoding keep them all.
    Own<FreeX509Crls> crls, copy, decoded;
    ASSERT_EQ(CreateX509Crls(&crls.p), 0u);
    const Bytes rsa = FixtureFile("pki/crl_rsa.der");
    for (int i = 0; i < 2; ++i) ASSERT_EQ(AddX509CrlToX509Crls(crls, Decoded<FreeX509Crl>(DecodeX509Crl, rsa).release()), 0u);
    ASSERT_EQ(CreateX509CrlsCopy(crls, &copy.p), 0u);
    const Got all = Get(EncodeX509Crls, copy.p);
    ASSERT_EQ(DecodeX509Crls(all.bytes.data(), Size(all.bytes), &decoded.p), 0u);
    X509Crl* second = nullptr;
    EXPECT_EQ(GetX509CrlsCount(decoded, &count), 0u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(GetX509CrlsCrl(decoded, 1, &second), 0u);
    EXPECT_EQ(Get(EncodeX509Crl, second).bytes, rsa);
    EXPECT_EQ(GetX509CrlsCrl(decoded, 2, &second), 32u);

    auto crl = FilledCrl();
    X509Name* issuer = nullptr;
    X509Extensions* extensions = nullptr;
    ASSERT_EQ(GetX509CrlIssuer(crl, &issuer), 0u);
    ASSERT_EQ(GetX509CrlExtensions(crl, &extensions), 0u);
    const Bytes keyId = Hex("0102030405"), serial = Hex("7E57");
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, keyId.data(), 5, nullptr, nullptr, 0), 32u);
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, nullptr, 0, issuer, nullptr, 0), 32u);
    for (int i = 0; i < 2; ++i)  // set twice: the second replaces the first
        ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, keyId.data(), 5, issuer, serial.data(), 2), 0u);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(extensions, &count), 0u);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(Get(GetX509ExtensionsExtensionValue, extensions, kAki.data()).hex(),
              H("3031 8005 0102030405 A124 A422" + Get(EncodeX509Name, issuer).hex() + "82027E57"));
    EXPECT_NE(Get(GetX509CrlToBeSignedPart, crl.p).hex().find(H("A03E303C303A0603551D23")), std::string::npos);  // [0] EXPLICIT
    // From the issuing certificate: its subject key identifier, its own issuer and its serial.
    ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier(crl, Cert("pki/ca_rsa")), 0u);
    const std::string fromCa = Get(GetX509ExtensionsExtensionValue, extensions, kAki.data()).hex();
    EXPECT_NE(fromCa.find(H("801445AC857C27343F7D863DE833B633DF3049AF4083")), std::string::npos);
    EXPECT_NE(fromCa.find(H("82087E57CA0000000001")), std::string::npos);
}

// ---- requests ------------------------------------------------------------------------------------

const Bytes kExtensionRequest = Packed("1.2.840.113549.1.9.14"), kMsExtensionRequest = Packed("1.3.6.1.4.1.311.2.1.14");

Own<FreePKCS10CertReq> Request(const char* fixture) {
    return Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, FixtureFile(std::string("pki/") + fixture + ".der"));
}
uint32_t ExtensionCount(const PKCS10CertReq* r) {
    Own<FreeX509Extensions> e;
    uint32_t count = 0;
    if (GetPKCS10CertReqExtensions(r, &e.p) == 0) GetX509ExtensionsExtensionsCount(e, &count);
    return count;
}
uint32_t AttributeCount(PKCS10CertReq* r, const Bytes& oid) {
    RsaAttributes* a = nullptr;
    uint32_t total = 0, matches = 0;
    EXPECT_EQ(GetPKCS10CertReqAttributes(r, &a), 0u);
    EXPECT_EQ(GetRsaAttributesAttributesCount(a, &total), 0u);
    for (uint32_t i = 0; i < total; ++i) matches += Get(GetRsaAttributesAttributeOid, a, i).bytes == oid;
    return matches;
}
// One extension whose list encodes to exactly `total` octets (273 or more).
Own<FreeX509Extensions> ExtensionsOfSize(size_t total) {
    Own<FreeX509Extensions> e;
    const Bytes value(total - 17, 0x5A);  // 30 82 LL LL { 30 82 LL LL 06 03 55 1D 0E 04 82 LL LL value }
    EXPECT_EQ(CreateX509Extensions(&e.p), 0u);
    EXPECT_EQ(AddX509ExtensionsExtension(e, kSki.data(), 0, value.data(), Size(value)), 0u);
    EXPECT_EQ(Get(EncodeX509Extensions, e.p).bytes.size(), total);
    return e;
}

// Expected values are those of OpenSSL's `req -text` beside each fixture.
TEST(Request, OpenSslRequestsReadBack) {
    for (auto [name, keyAlgorithm, signatureAlgorithm, gostKeyLen, extensions, attributes] :
         {std::tuple{"req_rsa", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0u, 4u, 3u},
          {"req_gost2001", "1.2.643.2.2.19", "1.2.643.2.2.3", 64u, 4u, 3u},
          {"req_gost2012_256", "1.2.643.7.1.1.1.1", "1.2.643.7.1.1.3.2", 64u, 4u, 3u},
          {"req_gost2012_512", "1.2.643.7.1.1.1.2", "1.2.643.7.1.1.3.3", 128u, 4u, 3u},
          {"req_ms_extensions", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0u, 3u, 1u},
          {"req_unsorted_attributes", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0u, 3u, 3u}}) {
        SCOPED_TRACE(name);
        auto q = Request(name);
        const Bytes der = FixtureFile(std::string("pki/") + name + ".der"), tbs = Get(GetPKCS10CertReqToBeSignedPart, q.p).bytes;
        uint32_t version = 99, count = 0;
        EXPECT_EQ(GetPKCS10CertReqVersion(q, &version), 0u);
        EXPECT_EQ(version, 0u);
        EXPECT_EQ(Get(GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters, q.p, Out, nullptr, nullptr).bytes, Packed(keyAlgorithm));
        EXPECT_EQ(Get(GetPKCS10CertReqSignatureAlgorithmOidAndParameters, q.p, Out, nullptr, nullptr).bytes, Packed(signatureAlgorithm));
        const Bytes signature = Get(GetPKCS10CertReqSignature, q.p).bytes;  // the last element: its octets end the file
        EXPECT_TRUE(!signature.empty() && std::equal(signature.rbegin(), signature.rend(), der.rbegin()));
        const Got gostKey = Get(GetPKCS10CertReqPublicKeyGostR3410, q.p);  // an RSA key is no OCTET STRING
        EXPECT_EQ(gostKey.rc * 1000 + gostKey.bytes.size(), gostKeyLen ? gostKeyLen : 302000u);
        X509Name* subject = nullptr;
        RsaAttributes* a = nullptr;
        ASSERT_EQ(GetPKCS10CertReqSubject(q, &subject), 0u);
        EXPECT_TRUE(Contains(tbs, Get(EncodeX509Name, subject).bytes));
        EXPECT_EQ(ExtensionCount(q), extensions);
        ASSERT_EQ(GetPKCS10CertReqAttributes(q, &a), 0u);
        EXPECT_EQ(GetRsaAttributesAttributesCount(a, &count), 0u);
        EXPECT_EQ(count, attributes);
    }
    // The unsorted fixture would come out differently in DER order, so its byte-for-byte round trip
    // is no accident of the input; a copy of its attributes keeps the received order too.
    auto q = Request("req_unsorted_attributes");
    Own<FreePKCS10CertReq> fresh;
    RsaAttributes *from = nullptr, *to = nullptr;
    ASSERT_EQ(GetPKCS10CertReqAttributes(q, &from), 0u);
    ASSERT_EQ(CreatePKCS10CertReq(&fresh.p), 0u);
    for (int i = 0; i < 2; ++i) ASSERT_EQ(SetPKCS10CertReqAttributes(fresh, from), 0u);  // replaces, does not add
    ASSERT_EQ(GetPKCS10CertReqAttributes(fresh, &to), 0u);
    EXPECT_EQ(Get(EncodeRsaAttributes, to).bytes, Get(EncodeRsaAttributes, from).bytes);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, to), 0u);  // itself
    EXPECT_EQ(ExtensionCount(fresh), 3u);
    const Bytes tbs = FixtureFile("pki/req_unsorted_attributes.tbs");
    ASSERT_EQ(SetRsaAttributesSorted(from, 1), 0u);
    const Bytes sorted = Get(GetPKCS10CertReqToBeSignedPart, q.p).bytes;
    EXPECT_EQ(sorted.size(), tbs.size());
    EXPECT_NE(sorted, tbs);
    Own<FreeRsaAttributes> empty;
    ASSERT_EQ(CreateRsaAttributes(&empty.p), 0u);
    ASSERT_EQ(RemoveRsaAttributes(empty), 0u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, empty), 311u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, nullptr), 32u);
}

TEST(Request, RequestedExtensionsUnderBothOidsAndTheirLimit) {
    auto ms = Request("req_ms_extensions");
    EXPECT_EQ(AttributeCount(ms, kExtensionRequest), 0u);
    EXPECT_EQ(AttributeCount(ms, kMsExtensionRequest), 1u);
    Own<FreeX509Extensions> e, one;
    ASSERT_EQ(GetPKCS10CertReqExtensions(ms, &e.p), 0u);
    EXPECT_EQ(Get(GetX509ExtensionsExtensionValue, e.p, Packed("2.5.29.15").data()).hex(), "03 02 05 A0");
    // Setting writes the standard attribute and leaves the other; reading then prefers ours.
    ASSERT_EQ(CreateX509Extensions(&one.p), 0u);
    ASSERT_EQ(AddX509ExtensionsExtension(one, Packed("2.5.29.19").data(), 1, U8("\x30\x00"), 2), 0u);
    ASSERT_EQ(SetPKCS10CertReqExtensions(ms, one), 0u);
    EXPECT_EQ(AttributeCount(ms, kMsExtensionRequest), 1u);
    EXPECT_EQ(ExtensionCount(ms), 1u);

    // The list is encoded into 1024 octets: more is 49 and the previous one stays (kept as it is).
    auto q = Request("req_rsa");
    for (auto [size, rc] : {std::pair{1024u, 0u}, {1024u, 0u}, {1025u, 49u}, {300u, 0u}}) {
        EXPECT_EQ(SetPKCS10CertReqExtensions(q, ExtensionsOfSize(size)), rc) << size;
        EXPECT_EQ(AttributeCount(q, kExtensionRequest), 1u);
        EXPECT_EQ(ExtensionCount(q), 1u);
    }
    // Reading grows its working buffer for a value over 1024 octets.
    RsaAttributes* a = nullptr;
    uint32_t index = 0;
    ASSERT_EQ(GetPKCS10CertReqAttributes(q, &a), 0u);
    ASSERT_EQ(RemoveRsaAttributesAttribute2(a, kExtensionRequest.data()), 0u);
    const Bytes value = Get(EncodeX509Extensions, ExtensionsOfSize(1500).p).bytes;
    ASSERT_EQ(AddRsaAttributesAttributeWithValue(a, kExtensionRequest.data(), &index, value.data(), Size(value)), 0u);
    EXPECT_EQ(ExtensionCount(q), 1u);
}

TEST(Request, BuiltRequestReadsBack) {
    Own<FreePKCS10CertReq> q;
    ASSERT_EQ(CreatePKCS10CertReq(&q.p), 0u);
    uint32_t version = 99, n = 8;
    uint8_t buf[8];
    Own<FreeX509Extensions> none;
    EXPECT_EQ(GetPKCS10CertReqVersion(q, &version), 0u);
    EXPECT_EQ(version, 0u);
    for (uint32_t rc : {GetPKCS10CertReqPublicKey(q, buf, &n), GetPKCS10CertReqPublicKeyGostR3410(q, buf, &n),
                        GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q, buf, &n, nullptr, nullptr),
                        GetPKCS10CertReqSignatureAlgorithmOidAndParameters(q, buf, &n, nullptr, nullptr),
                        GetPKCS10CertReqSignature(q, buf, &n), EncodePKCS10CertReq(q, nullptr, &n)})
        EXPECT_EQ(rc, 311u);
    EXPECT_EQ(SetPKCS10CertReqGostR34102001SignatureAlgorithmID(q, 100, 1), 32u);
    EXPECT_EQ(SetPKCS10CertReqSubject(q, nullptr), 32u);
    EXPECT_EQ(GetPKCS10CertReqExtensions(q, &none.p), 322u);

    const Bytes subjectDer = Hex("30 1A 31 0B 30 09 06 03 55 04 06 13 02 52 55 31 0B 30 09 06 03 55 04 03 0C 02 D0 90");
    const Bytes key(64, 0x11), signature(64, 0x22);
    ASSERT_EQ(SetPKCS10CertReqSubject(q, Decoded<FreeX509Name>(DecodeX509Name, subjectDer)), 0u);  // copied
    ASSERT_EQ(SetPKCS10CertReqGostR34102012PublicKey(q, key.data(), 64), 0u);
    ASSERT_EQ(SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(q, 102, 1, 1, 1, 1), 0u);
    ASSERT_EQ(SetPKCS10CertReqGostR34102001SignatureAlgorithmID(q, 100, 255), 0u);
    ASSERT_EQ(SetPKCS10CertReqSignature(q, signature.data(), 64), 0u);
    ASSERT_EQ(SetPKCS10CertReqVersion(q, 5), 0u);
    ASSERT_EQ(SetPKCS10CertReqExtensions(q, ExtensionsOfSize(400)), 0u);
    auto back = Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, Get(EncodePKCS10CertReq, q.p).bytes);
    EXPECT_EQ(GetPKCS10CertReqVersion(back, &version), 0u);
    EXPECT_EQ(version, 5u);
    EXPECT_EQ(Get(GetPKCS10CertReqPublicKeyGostR3410, back.p).bytes, key);
    EXPECT_EQ(Get(GetPKCS10CertReqSignature, back.p).bytes, signature);
    uint8_t oid[16];
    uint32_t oidLen = sizeof oid, paramsLen = 8;
    EXPECT_EQ(Get(GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters, back.p, oid, &oidLen).hex(),
              H("30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"));
    EXPECT_EQ(Bytes(oid, oid + oidLen), Packed("1.2.643.2.2.19"));
    EXPECT_EQ(Get(GetPKCS10CertReqSignatureAlgorithmOidAndParameters, back.p, Out, buf, &paramsLen).bytes, Packed("1.2.643.2.2.3"));
    EXPECT_EQ(paramsLen, 0u);
    X509Name* name = nullptr;
    ASSERT_EQ(GetPKCS10CertReqSubject(back, &name), 0u);
    EXPECT_EQ(Get(EncodeX509Name, name).bytes, subjectDer);
    EXPECT_EQ(ExtensionCount(back), 1u);

    // Versions are any number, written as a non-negative INTEGER right after the header.
    ASSERT_EQ(SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q, Packed("1.2.840.113549.1.1.1").data(), nullptr, 0), 0u);
    for (auto [v, element] : {std::pair{0u, "02 01 00"}, {128u, "02 02 00 80"}, {0x7FFFFFFFu, "02 04 7F FF FF FF"},
                              {0x80000000u, "02 05 00 80 00 00 00"}, {0xFFFFFFFFu, "02 05 00 FF FF FF FF"}}) {
        ASSERT_EQ(SetPKCS10CertReqVersion(q, v), 0u);
        EXPECT_EQ(GetPKCS10CertReqVersion(q, &version), 0u);
        EXPECT_EQ(version, v);
        EXPECT_EQ(ToHex(Get(GetPKCS10CertReqToBeSignedPart, q.p).bytes.data() + 4, Hex(element).size()), H(element));
    }
}

}  // namespace
