// Certificates, CRLs and requests: OpenSSL-made fixtures read field by field and rebuilt through
// the setters; key identifiers against what OpenSSL wrote; the working-buffer limits; the search of
// an indirect CRL; requested extensions under both attribute OIDs and the 1024-octet limit.
#include <algorithm>
#include <cstring>

#include "TestUtil.h"
#include "tarvelon/tarvelon.hpp"
#include "tarvelon/x509/Certificate.h"

using namespace tvtest;

namespace {

template <auto Free, typename Create>
Own<Free> Made(Create create) {
    Own<Free> o;
    EXPECT_EQ(create(&o.p), TV_OK);
    return o;
}
// What a getter writes through its last argument, expecting success: Val(GetCertificateVersion, c).
template <typename... P, typename... A>
auto Val(uint32_t (*get)(P...), const A&... args) {
    std::remove_pointer_t<std::tuple_element_t<sizeof...(P) - 1, std::tuple<P...>>> v{};
    EXPECT_EQ(get(args..., &v), TV_OK);
    return v;
}
Own<FreeCertificate> Cert(const std::string& fixture) {
    return Decoded<FreeCertificate>(DecodeCertificate, FixtureFile(fixture + ".der"));
}
Own<FreeCertificate> FreshCert() { return Made<FreeCertificate>(CreateCertificate); }
bool Contains(const Bytes& hay, const Bytes& needle) {
    return std::search(hay.begin(), hay.end(), needle.begin(), needle.end()) != hay.end();
}
// An algorithm's OID and parameters, each through the size protocol.
template <typename Fn, typename H>
std::pair<Bytes, Bytes> Algorithm(Fn get, H* h) {
    uint8_t oid[32];
    uint32_t oidLen = sizeof oid;
    return {Get(get, h, Out, nullptr, nullptr).bytes, Get(get, h, oid, &oidLen).bytes};
}
const Bytes kSki = Packed("2.5.29.14"), kAki = Packed("2.5.29.35");

// Every field read from a fixture and written into a fresh certificate gives back the fixture.
TEST(Certificate, FixturesRebuildThroughTheAccessors) {
    for (const char* name : {"certs/rsa_ca", "certs/gost2001", "certs/gost2012_256", "certs/gost2012_512", "pki/ca_rsa",
                             "pki/ca_gost2012_512", "pki/ee_rsa", "pki/ee_gost2012_256"}) {
        SCOPED_TRACE(name);
        auto s = Cert(name), d = FreshCert();
        const auto [sigOid, sigParams] = Algorithm(GetCertificateSignatureAlgorithmOidAndParameters, s.p);
        const auto [keyOid, keyParams] = Algorithm(GetCertificatePublicKeyAlgorithmOidAndParameters, s.p);
        const Bytes serial = Get(GetCertificateSerialNumber, s.p).bytes, key = Get(GetCertificatePublicKey, s.p).bytes,
                    signature = Get(GetCertificateSignature, s.p).bytes;
        const LibraryTime from = Val(GetCertificateValidNotBefore, s), to = Val(GetCertificateValidNotAfter, s);
        EXPECT_EQ(Val(GetCertificateVersion, s), 2u);
        for (uint32_t rc :
             {SetCertificateVersion(d, 2), SetCertificateSerialNumber(d, serial.data(), Size(serial)),
              SetCertificateSignatureAlgorithmOidAndParameters(d, sigOid.data(), sigParams.data(), Size(sigParams)),
              SetCertificatePublicKeyAlgorithmOidAndParameters(d, keyOid.data(), keyParams.data(), Size(keyParams)),
              SetCertificatePublicKey(d, key.data(), Size(key)), SetCertificateIssuer(d, Val(GetCertificateIssuer, s)),
              SetCertificateSubject(d, Val(GetCertificateSubject, s)), SetCertificateValidNotBefore(d, &from),
              SetCertificateValidNotAfter(d, &to), SetCertificateExtensions(d, Val(GetCertificateExtensions, s)),
              SetCertificateSignature(d, signature.data(), Size(signature))})
            ASSERT_EQ(rc, 0u);
        EXPECT_EQ(Get(EncodeCertificate, d.p).bytes, FixtureFile(std::string(name) + ".der"));
        // The key identifier OpenSSL wrote (subjectKeyIdentifier=hash) is the one computed here:
        // replaced, then appended.
        const Bytes expected = Get(GetCertificateSubjectKeyIdentifier, s.p).bytes;
        ASSERT_EQ(SetCertificateSubjectKeyIdentifier(s), 0u);
        EXPECT_EQ(Get(GetCertificateSubjectKeyIdentifier, s.p).bytes, expected);
        X509Extensions* e = Val(GetCertificateExtensions, s);
        EXPECT_EQ(Val(FindX509Extension, e, kSki.data()), Val(GetX509ExtensionsExtensionsCount, e) - 1);
    }
}

TEST(Certificate, FieldRules) {
    auto c = FreshCert();
    uint8_t buf[8], unused = 0;
    uint32_t n = sizeof buf;
    LibraryTime t{};
    EXPECT_EQ(Val(GetCertificateVersion, c), 0u);  // DEFAULT v1
    for (uint32_t rc : {GetCertificateSerialNumber(c, buf, &n), GetCertificateValidNotAfter(c, &t),
                        GetCertificateIssuerUniqueId(c, buf, &n, nullptr), GetCertificateSignature(c, buf, &n),
                        GetCertificatePublicKey(c, buf, &n),
                        GetCertificateSignatureAlgorithmOidAndParameters(c, buf, &n, nullptr, nullptr)})
        EXPECT_EQ(rc, 311u);
    EXPECT_EQ(GetCertificateExtensionValue(c, kSki.data(), buf, &n), 322u);
    EXPECT_EQ(ptr_GetCertificateSerialNumber(c, &n), nullptr);
    EXPECT_EQ(SetCertificateVersion(c, 3), 32u);
    EXPECT_EQ(SetCertificateSerialNumber(c, buf, 0), 32u);
    for (const Bytes& s : {Hex("00 7F"), Hex("7F"), Hex("FF"), Bytes(40, 0x11)}) {
        ASSERT_EQ(SetCertificateSerialNumber(c, s.data(), Size(s)), 0u);
        const uint8_t* p = ptr_GetCertificateSerialNumber(c, &n);
        EXPECT_EQ(Bytes(p, p + n), s) << "stored as given, not normalised";
    }
    ASSERT_EQ(SetCertificateSubjectUniqueId(c, Hex("A5 F0").data(), 2, 4), 0u);
    EXPECT_EQ(Get(GetCertificateSubjectUniqueId, c.p, Out, &unused).hex(), "A5 F0");
    EXPECT_EQ(unused, 4);
    ASSERT_EQ(SetCertificateSubjectUniqueId(c, nullptr, 0, 0), 0u);
    EXPECT_EQ(GetCertificateSubjectUniqueId(c, nullptr, &n, nullptr), 311u);

    // The subject of a fresh certificate is made in place; an issuer is taken over without a copy
    // (a sanitizer run reports a double free if the old one is mishandled).
    X509Name* subject = Val(GetCertificateSubject, c);
    ASSERT_EQ(AddX509NameEntry(subject, U8("TestX"), 5, ASN1_UTF8_STRING, Packed("2.5.4.3").data(), 1), 0u);
    EXPECT_EQ(Val(GetCertificateSubject, c), subject);
    X509Name* issuer = Val(CopyX509Name, subject);
    const LibraryTime from{2024, 1, 1, 0, 0, 0}, to{2051, 1, 1, 0, 0, 0}, wide{12050, 1, 1, 0, 0, 0};
    const Bytes key(64, 0x5A);
    for (uint32_t rc : {SetCertificateIssuer_i(c, issuer, 0), SetCertificateIssuer_i(c, issuer, 0),
                        SetCertificateValidNotBefore(c, &from), SetCertificateValidNotAfter(c, &to),
                        SetCertificateGostR34102001SignatureAlgorithmID(c, 3002, 255),
                        SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(c, 3000, 1, 1, 3, 1),
                        SetCertificateGostR34102001PublicKey(c, key.data(), 64)})
        ASSERT_EQ(rc, 0u);
    EXPECT_EQ(SetCertificateValidNotAfter(c, &wide), 313u);  // the old value stays
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
    auto block = [](const char* keySet, const char* digest) {  // SEQUENCE { OID, OID }
        Bytes b = {0x06};
        for (const Bytes& part : {Packed(keySet), Bytes{0x06}, Packed(digest)}) b.insert(b.end(), part.begin(), part.end());
        b.insert(b.begin(), {0x30, uint8_t(b.size())});
        return b;
    };
    for (auto [what, algId, params, rc] :
         {std::tuple{"2012-256 with the 512-bit digest", 3000u, block("1.2.643.2.2.35.1", "1.2.643.7.1.1.2.3"), 317u},
          {"2012-256 with a 512-bit key set", 3000u, block("1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.2"), 317u},
          {"2012-512 with a 256-bit key set", 3001u, block("1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.3"), 317u},
          {"2001 with the 2012 digest", 102u, block("1.2.643.2.2.35.1", "1.2.643.7.1.1.2.2"), 317u},
          {"2001 test set", 102u, block("1.2.643.2.2.35.0", "1.2.643.2.2.30.0"), 0u},
          {"2012-256 TC26 A", 3000u, block("1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.2"), 0u},
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
    auto list = Made<FreeCertificates>(CreateCertificates);
    Bytes body;
    for (const char* name : {"pki/ca_rsa", "pki/ee_rsa"}) {
        const Bytes der = FixtureFile(std::string(name) + ".der");
        body.insert(body.end(), der.begin(), der.end());
        ASSERT_EQ(AddCertificateToCertificates(list, Decoded<FreeCertificate>(DecodeCertificate, der).release()), 0u);
    }
    Certificate* second = nullptr;
    EXPECT_EQ(Val(GetCertificatesCount, list), 2u);
    EXPECT_EQ(Get(GetCertificateSerialNumber, Val(GetCertificatesCertificate, list, 1u)).hex(), "0E E0 00 00 00 00 00 01");
    EXPECT_EQ(GetCertificatesCertificate(list, 2, &second), 32u);
    auto copy = Made<FreeCertificates>([&](Certificates** out) { return CreateCertificatesCopy(list, out); });
    const Bytes encoded = Get(EncodeCertificates, copy.p).bytes;
    EXPECT_TRUE(std::equal(body.rbegin(), body.rend(), encoded.rbegin()));
    EXPECT_EQ(Get(EncodeCertificates, Decoded<FreeCertificates>(DecodeCertificates, encoded).p).bytes, encoded);
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
    X509Name *caName = Val(GetCertificateSubject, ca), *eeName = Val(GetCertificateSubject, ee), *none = nullptr;
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ee, key, &keyLen, &issuer.p, sn, &snLen), 0u);
    EXPECT_EQ(Bytes(key, key + keyLen), keyId);
    EXPECT_EQ(Bytes(sn, sn + snLen), serial);
    EXPECT_EQ(CompareX509Names(issuer, caName), 0u);
    keyLen = sizeof key, snLen = sizeof sn;  // the CA's own identifier is a key id only
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ca, key, &keyLen, &none, sn, &snLen), 0u);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(snLen, 0u);
    EXPECT_EQ(SetCertificateAuthorityKeyIdentifier2(ee, nullptr, 0, nullptr, sn, 4), 32u);

    Bytes otherKey = keyId, padded = serial;
    otherKey[0] ^= 1;
    padded.insert(padded.begin(), 0x00);
    auto p = [](const Bytes& b) { return b.empty() ? nullptr : b.data(); };  // empty: not given
    using Case = std::tuple<const char*, Certificate*, Bytes, X509Name*, Bytes, uint32_t>;
    for (const auto& [what, cert, id, name, number, rc] :
         {Case{"key id decides alone", ca, keyId, eeName, padded, 0}, {"other key id", ca, otherKey, caName, serial, 320},
          {"issuer and serial", ca, {}, caName, serial, 0}, {"serial 00-prefixed", ca, {}, caName, padded, 320},
          {"other issuer", ca, {}, eeName, serial, 320}, {"nothing given", ca, {}, nullptr, {}, 32},
          {"no subject key id", fresh, keyId, nullptr, {}, 320}, {"no serial", fresh, {}, caName, serial, 307}})
        EXPECT_EQ(IsCertificateCorrespondToAuthKeyIdent(cert, p(id), Size(id), name, p(number), Size(number)), rc) << what;
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
    const std::string want = H("30 24 30 22 A0 20 A0 1E 86 1C" + ToHex(Text(url)));
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, points.data()).hex(), want);
    EXPECT_EQ(Val(GetX509ExtensionsExtensionsCount, Val(GetCertificateExtensions, c)), 1u);
    // Beyond the 2048-octet working buffer: 49, the certificate unchanged.
    EXPECT_EQ(SetCertificateExtensionCrlDistributionPoints(c, ("http://" + std::string(2100, 'a')).c_str()), 49u);
    EXPECT_EQ(Get(GetCertificateExtensionValue, c.p, points.data()).hex(), want);

    // Each working-buffer limit passes at its size and answers 338 one octet beyond.
    auto issuer = Cert("pki/ca_rsa");
    auto withExtension = [](const Bytes& oid, const Bytes& value) {
        auto cert = FreshCert();
        EXPECT_EQ(AddX509ExtensionsExtension(Val(GetCertificateExtensions, cert), oid.data(), 0, value.data(), Size(value)), 0u);
        return cert;
    };
    auto longForm = [](uint8_t tag, size_t total, uint8_t fill, size_t inner = 0) {  // TAG 82 LL LL [80 82 LL LL] fill...
        Bytes v = {tag, 0x82, uint8_t((total - 4) >> 8), uint8_t(total - 4)};
        if (inner) v.insert(v.end(), {0x80, 0x82, uint8_t((total - 8) >> 8), uint8_t(total - 8)});
        v.resize(total, fill);
        return v;
    };
    auto issuerSerial = [&](size_t n) { return SetCertificateSerialNumber(issuer, Bytes(n, 0x21).data(), uint32_t(n)); };
    const struct {
        const char* what;
        size_t fits;
        uint32_t beyond;
        std::function<uint32_t(size_t)> run;
    } limits[] = {
        {"public key 512", 512, 338, [](size_t n) {
             auto cert = FreshCert();
             EXPECT_EQ(SetCertificatePublicKey(cert, Bytes(n, 0x42).data(), uint32_t(n)), 0u);
             return SetCertificateSubjectKeyIdentifier(cert); }},
        {"issuer serial 64", 64, 338, [&](size_t n) {
             EXPECT_EQ(issuerSerial(n), 0u);
             return SetCertificateAuthorityKeyIdentifier(FreshCert(), issuer); }},
        {"pair serial 100", 100, 338, [&](size_t n) {
             EXPECT_EQ(issuerSerial(n), 0u);
             return IsCertificatePairIssuerAndSerialEqual(issuer, issuer); }},  // not exported yet
        {"subject key id 32", 32, 338, [&](size_t n) {
             Bytes value = {0x04, uint8_t(n)};
             value.resize(2 + n, 0x33);
             return IsCertificateCorrespondToAuthKeyIdent(withExtension(kSki, value), value.data() + 2, uint32_t(n), nullptr,
                                                          nullptr, 0); }},
        {"authority key id value 1024", 1024, 338, [&](size_t n) {
             Bytes keyId(2048);
             uint32_t keyIdLen = Size(keyId), serialLen = 0;
             return GetCertificateAuthorityKeyIdentifier(withExtension(kAki, longForm(0x30, n, 0x44, 1)), keyId.data(),
                                                         &keyIdLen, nullptr, nullptr, &serialLen); }},
        {"subject key id value 1024 answers 1", 1024, 1, [&](size_t n) {
             return Get(GetCertificateSubjectKeyIdentifier, withExtension(kSki, longForm(0x04, n, 0x55)).p).rc; }},
    };
    for (const auto& l : limits) {
        EXPECT_EQ(l.run(l.fits), 0u) << l.what;
        EXPECT_EQ(l.run(l.fits + 1), l.beyond) << l.what;
    }
}

// ---- CRLs ----------------------------------------------------------------------------------------

const LibraryTime kApril1{2025, 4, 1, 0, 0, 0}, kMay1{2025, 5, 1, 0, 0, 0};
const Bytes kCertIssuer = Packed("2.5.29.29");
const char *kC = "2.5.4.6", *kO = "2.5.4.10", *kCN = "2.5.4.3";

Own<FreeX509Name> NameOf(std::initializer_list<std::tuple<const char*, uint8_t, const char*>> entries) {
    auto n = Made<FreeX509Name>(CreateX509Name);
    for (auto [oid, tag, text] : entries)
        EXPECT_EQ(AddX509NameEntry(n, U8(text), uint32_t(std::strlen(text)), tag, Packed(oid).data(), 1), 0u);
    return n;
}
uint32_t Find(const X509Crl* crl, const X509Name* issuer, const char* serial, uint32_t* index) {
    return FindX509CrlFind(crl, issuer, Hex(serial).data(), Size(Hex(serial)), index);
}
// A complete v2 CRL: issuer C=RU, O=Tarvelon (PrintableString), dates, GOST signature algorithm, a signature.
Own<FreeX509Crl> FilledCrl() {
    auto crl = Made<FreeX509Crl>(CreateX509Crl);
    auto issuer = NameOf({{kC, ASN1_PRINTABLE_STRING, "RU"}, {kO, ASN1_PRINTABLE_STRING, "Tarvelon"}});
    for (uint32_t rc : {SetX509CrlVersion(crl, 1), SetX509CrlIssuer(crl, issuer), SetX509CrlThisUpdate(crl, &kApril1),
                        SetX509CrlNextUpdate(crl, &kMay1), SetX509CrlGostR34102001SignatureAlgorithmID(crl, 3002, 255),
                        SetX509CrlSignature(crl, U8("\x01\x02\x03\x04"), 4)})
        EXPECT_EQ(rc, 0u);
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
        uint32_t at = 0;
        EXPECT_EQ(Val(GetX509CrlVersion, crl), 1u);
        EXPECT_TRUE(SameTime(Val(GetX509CrlThisUpdate, crl), kApril1));
        EXPECT_TRUE(SameTime(Val(GetX509CrlNextUpdate, crl), kMay1));
        EXPECT_EQ(Val(GetX509CrlRevokedCertificateCount, crl), entries);
        EXPECT_EQ(Get(GetX509CrlRevokedCertificateSerialNumber, crl.p, 0u).hex(), H(first));
        EXPECT_EQ(Get(GetX509CrlRevokedCertificateSerialNumber, crl.p, entries - 1).hex(), H(last));
        EXPECT_EQ(Algorithm(GetX509CrlSignatureAlgorithmOidAndParameters, crl.p).first, Packed(algorithm));
        EXPECT_GE(Get(GetX509CrlSignature, crl.p).bytes.size(), 64u);
        EXPECT_EQ(FindX509Extension(Val(GetX509CrlExtensions, crl), kAki.data(), &at), 0u);
        EXPECT_EQ(Find(crl, Val(GetX509CrlIssuer, crl), last, &at), 0u);
        EXPECT_EQ(at, entries - 1);
    }
}

TEST(Crl, IndirectCrlSearchFollowsCertificateIssuer) {
    auto crl = Decoded<FreeX509Crl>(DecodeX509Crl, FixtureFile("pki/crl_indirect.der"));
    X509Extensions* entry = Val(GetX509CrlRevokedCertificateExtensions, crl, 2u);  // issuer B, as entry 3 names it
    auto names = Decoded<FreeX509GeneralNames>(DecodeX509GeneralNames,
                                               Get(GetX509ExtensionsExtensionValue, entry, kCertIssuer.data()).bytes);
    Own<FreeX509Name> b(Val(GetX509NameFromGeneralNames, names));
    X509Name* own = Val(GetX509CrlIssuer, crl);
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
    X509Name* issuer = Val(GetX509CrlIssuer, crl);
    uint32_t index = 5;
    EXPECT_EQ(Val(GetX509CrlRevokedCertificateCount, crl), 0u);  // no list: nothing to find, and not in the encoding
    EXPECT_EQ(Find(crl, issuer, "01", &index), 322u);
    const size_t withoutList = Get(EncodeX509Crl, crl.p).bytes.size();
    for (uint32_t expected : {0u, 1u}) {  // duplicates are not refused
        ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8("\x01"), 1, &kApril1, &index), 0u);
        EXPECT_EQ(index, expected);
    }
    // A date from 2050 on (GeneralizedTime) and an entry extension added in place survive decoding.
    const LibraryTime late{2051, 3, 4, 5, 6, 7};
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8("\x00\x80"), 2, &late, &index), 0u);
    ASSERT_EQ(AddX509ExtensionsExtension(Val(GetX509CrlRevokedCertificateExtensions, crl, 2u), Packed("2.5.29.21").data(), 0,
                                         U8("\x0A\x01\x01"), 3), 0u);
    auto decoded = Decoded<FreeX509Crl>(DecodeX509Crl, Get(EncodeX509Crl, crl.p).bytes);
    EXPECT_TRUE(SameTime(Val(GetX509CrlRevokedCertificateRevokationDate, decoded, 2u), late));
    EXPECT_EQ(Val(GetX509ExtensionsExtensionsCount, Val(GetX509CrlRevokedCertificateExtensions, decoded, 2u)), 1u);
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
    EXPECT_EQ(Find(crl, NameOf({{kC, ASN1_PRINTABLE_STRING, "RU"}, {kO, ASN1_PRINTABLE_STRING, "Tarvelon"}}), "05", &index), 0u);
    EXPECT_EQ(Find(crl, NameOf({{kC, ASN1_PRINTABLE_STRING, "RU"}, {kO, ASN1_UTF8_STRING, "Tarvelon"}}), "05", &index), 322u);
    EXPECT_EQ(Find(crl, NameOf({{kO, ASN1_PRINTABLE_STRING, "Tarvelon"}, {kC, ASN1_PRINTABLE_STRING, "RU"}}), "05", &index), 322u);

    // A certificate issuer extension names B from its entry on, until another changes it; the last
    // directoryName of an extension wins over names of other kinds after it.
    auto b = NameOf({{kCN, ASN1_UTF8_STRING, "Issuer B"}}), c = NameOf({{kCN, ASN1_UTF8_STRING, "Issuer C"}});
    for (const char* serial : {"\x02", "\x03", "\x04"}) ASSERT_EQ(AddX509CrlRevokedCertificate(crl, U8(serial), 1, &kApril1, &index), 0u);
    auto names = Made<FreeX509GeneralNames>(CreateX509GeneralNames);
    const Bytes derB = Get(EncodeX509Name, b.p).bytes, derC = Get(EncodeX509Name, c.p).bytes;
    ASSERT_EQ(AddX509GeneralName(names, 4, derC.data(), Size(derC)), 0u);
    ASSERT_EQ(AddX509GeneralName(names, 4, derB.data(), Size(derB)), 0u);
    ASSERT_EQ(AddX509GeneralName(names, 6, U8("http://example.ru/"), 18), 0u);
    const Bytes value = Get(EncodeX509GeneralNames, names.p).bytes;
    ASSERT_EQ(AddX509ExtensionsExtension(Val(GetX509CrlRevokedCertificateExtensions, crl, 1u), kCertIssuer.data(), 1,
                                         value.data(), Size(value)), 0u);
    for (auto [serial, name, rc] : {std::tuple{"05", issuer, 0u}, {"05", b.p, 322u}, {"02", b.p, 0u}, {"02", issuer, 322u},
                                    {"03", b.p, 0u}, {"04", b.p, 0u}, {"04", issuer, 322u}, {"03", c.p, 322u}})
        EXPECT_EQ(Find(crl, name, serial, &index), rc) << serial;
}

TEST(Crl, FieldRulesAndAlgorithms) {
    auto crl = Made<FreeX509Crl>(CreateX509Crl);
    uint32_t u = 0, len = 8;
    LibraryTime t{};
    uint8_t buf[8];
    for (auto [what, rc, expected] :
         {std::tuple{"version", GetX509CrlVersion(crl, &u), 311u}, {"thisUpdate", GetX509CrlThisUpdate(crl, &t), 311u},
          {"nextUpdate", GetX509CrlNextUpdate(crl, &t), 311u}, {"signature", GetX509CrlSignature(crl, buf, &len), 311u},
          {"algorithm", GetX509CrlSignatureAlgorithmOidAndParameters(crl, buf, &len, nullptr, &u), 311u},
          {"entry 0", GetX509CrlRevokedCertificateRevokationDate(crl, 0, &t), 32u},
          {"version 2", SetX509CrlVersion(crl, 2), 32u},
          {"mode 1 without parameters", SetX509CrlGostR34102001SignatureAlgorithmID(crl, 3002, 1), 32u},
          {"empty serial", AddX509CrlRevokedCertificate(crl, buf, 0, &kApril1, &u), 32u},
          {"null date", AddX509CrlRevokedCertificate(crl, buf, 1, nullptr, &u), 32u},
          {"remove absent nextUpdate", RemoveX509CrlNextUpdate(crl), 0u},
          {"encode incomplete", EncodeX509Crl(crl, nullptr, &len), 311u}})
        EXPECT_EQ(rc, expected) << what;
    EXPECT_EQ(Val(GetX509CrlRevokedCertificateCount, crl), 0u);  // the refused adds created no list
    // The issuer is made in place, and its entries appear in the encoding; v1 has no version field.
    X509Name* issuer = Val(GetX509CrlIssuer, crl);
    EXPECT_EQ(Val(GetX509CrlIssuer, crl), issuer);
    ASSERT_EQ(AddX509NameEntry(issuer, U8("RU"), 2, ASN1_PRINTABLE_STRING, Packed(kC).data(), 1), 0u);
    ASSERT_EQ(SetX509CrlThisUpdate(crl, &kApril1), 0u);
    ASSERT_EQ(SetX509CrlSignatureAlgorithmOidAndParameters(crl, Packed("1.2.643.2.2.3").data(), nullptr, 0), 0u);
    EXPECT_EQ(Get(GetX509CrlToBeSignedPart, crl.p).hex(),
              H("302830080606 2A8503020203 300D310B3009060355040613025255 170D3235303430313030303030305A"));
    EXPECT_EQ(GetX509CrlVersion(crl, &u), 311u);
    ASSERT_EQ(SetX509CrlNextUpdate(crl, &kMay1), 0u);
    EXPECT_TRUE(SameTime(Val(GetX509CrlNextUpdate, crl), kMay1));
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
    auto revoked = Made<FreeX509RevokedCertificates>(CreateX509RevokedCertificates);
    uint32_t index = 9;
    X509Extensions* entry = nullptr;
    ASSERT_EQ(AddX509RevokedCertificatesRevokedCertificate(revoked, U8("\x2A"), 1, &kApril1, &index), 0u);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(revoked, 0, &entry), 0u);
    EXPECT_EQ(GetX509RevokedCertificatesRevokedCertificateExtensions(revoked, 1, &entry), 32u);
    EXPECT_EQ(Get(EncodeX509RevokedCertificates, revoked.p).hex(), H("3014301202012A170D3235303430313030303030305A"));
    // A list owns the CRLs added to it; copy, encoding and decoding keep them all.
    auto crls = Made<FreeX509Crls>(CreateX509Crls);
    const Bytes rsa = FixtureFile("pki/crl_rsa.der");
    for (int i = 0; i < 2; ++i) ASSERT_EQ(AddX509CrlToX509Crls(crls, Decoded<FreeX509Crl>(DecodeX509Crl, rsa).release()), 0u);
    auto copy = Made<FreeX509Crls>([&](X509Crls** out) { return CreateX509CrlsCopy(crls, out); });
    auto decoded = Decoded<FreeX509Crls>(DecodeX509Crls, Get(EncodeX509Crls, copy.p).bytes);
    X509Crl* second = nullptr;
    EXPECT_EQ(Val(GetX509CrlsCount, decoded), 2u);
    EXPECT_EQ(Get(EncodeX509Crl, Val(GetX509CrlsCrl, decoded, 1u)).bytes, rsa);
    EXPECT_EQ(GetX509CrlsCrl(decoded, 2, &second), 32u);

    auto crl = FilledCrl();
    X509Name* issuer = Val(GetX509CrlIssuer, crl);
    X509Extensions* extensions = Val(GetX509CrlExtensions, crl);
    const Bytes keyId = Hex("0102030405"), serial = Hex("7E57");
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, keyId.data(), 5, nullptr, nullptr, 0), 32u);
    EXPECT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, nullptr, 0, issuer, nullptr, 0), 32u);
    for (int i = 0; i < 2; ++i)  // set twice: the second replaces the first
        ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier2(crl, keyId.data(), 5, issuer, serial.data(), 2), 0u);
    EXPECT_EQ(Val(GetX509ExtensionsExtensionsCount, extensions), 1u);
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
    RsaAttributes* a = Val(GetPKCS10CertReqAttributes, r);
    uint32_t matches = 0;
    for (uint32_t i = 0, total = Val(GetRsaAttributesAttributesCount, a); i < total; ++i)
        matches += Get(GetRsaAttributesAttributeOid, a, i).bytes == oid;
    return matches;
}
// One extension whose list encodes to exactly `total` octets (273 or more).
Own<FreeX509Extensions> ExtensionsOfSize(size_t total) {
    auto e = Made<FreeX509Extensions>(CreateX509Extensions);
    const Bytes value(total - 17, 0x5A);  // 30 82 LL LL { 30 82 LL LL 06 03 55 1D 0E 04 82 LL LL value }
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
        EXPECT_EQ(Val(GetPKCS10CertReqVersion, q), 0u);
        EXPECT_EQ(Get(GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters, q.p, Out, nullptr, nullptr).bytes, Packed(keyAlgorithm));
        EXPECT_EQ(Get(GetPKCS10CertReqSignatureAlgorithmOidAndParameters, q.p, Out, nullptr, nullptr).bytes, Packed(signatureAlgorithm));
        const Bytes signature = Get(GetPKCS10CertReqSignature, q.p).bytes;  // the last element: its octets end the file
        EXPECT_TRUE(!signature.empty() && std::equal(signature.rbegin(), signature.rend(), der.rbegin()));
        const Got gostKey = Get(GetPKCS10CertReqPublicKeyGostR3410, q.p);  // an RSA key is no OCTET STRING
        EXPECT_EQ(gostKey.rc * 1000 + gostKey.bytes.size(), gostKeyLen ? gostKeyLen : 302000u);
        EXPECT_TRUE(Contains(tbs, Get(EncodeX509Name, Val(GetPKCS10CertReqSubject, q)).bytes));
        EXPECT_EQ(ExtensionCount(q), extensions);
        EXPECT_EQ(Val(GetRsaAttributesAttributesCount, Val(GetPKCS10CertReqAttributes, q)), attributes);
    }
    // The unsorted fixture would come out differently in DER order, so its byte-for-byte round trip
    // is no accident of the input; a copy of its attributes keeps the received order too.
    auto q = Request("req_unsorted_attributes");
    auto fresh = Made<FreePKCS10CertReq>(CreatePKCS10CertReq);
    RsaAttributes* from = Val(GetPKCS10CertReqAttributes, q);
    for (int i = 0; i < 2; ++i) ASSERT_EQ(SetPKCS10CertReqAttributes(fresh, from), 0u);  // replaces, does not add
    RsaAttributes* to = Val(GetPKCS10CertReqAttributes, fresh);
    EXPECT_EQ(Get(EncodeRsaAttributes, to).bytes, Get(EncodeRsaAttributes, from).bytes);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, to), 0u);  // itself
    EXPECT_EQ(ExtensionCount(fresh), 3u);
    const Bytes tbs = FixtureFile("pki/req_unsorted_attributes.tbs");
    ASSERT_EQ(SetRsaAttributesSorted(from, 1), 0u);
    const Bytes sorted = Get(GetPKCS10CertReqToBeSignedPart, q.p).bytes;
    EXPECT_EQ(sorted.size(), tbs.size());
    EXPECT_NE(sorted, tbs);
    auto empty = Made<FreeRsaAttributes>(CreateRsaAttributes);
    ASSERT_EQ(RemoveRsaAttributes(empty), 0u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, empty), 311u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh, nullptr), 32u);
}

TEST(Request, RequestedExtensionsUnderBothOidsAndTheirLimit) {
    auto ms = Request("req_ms_extensions");
    EXPECT_EQ(AttributeCount(ms, kExtensionRequest), 0u);
    EXPECT_EQ(AttributeCount(ms, kMsExtensionRequest), 1u);
    Own<FreeX509Extensions> e(Val(GetPKCS10CertReqExtensions, ms)), one = Made<FreeX509Extensions>(CreateX509Extensions);
    EXPECT_EQ(Get(GetX509ExtensionsExtensionValue, e.p, Packed("2.5.29.15").data()).hex(), "03 02 05 A0");
    // Setting writes the standard attribute and leaves the other; reading then prefers ours.
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
    RsaAttributes* a = Val(GetPKCS10CertReqAttributes, q);
    uint32_t index = 0;
    ASSERT_EQ(RemoveRsaAttributesAttribute2(a, kExtensionRequest.data()), 0u);
    const Bytes value = Get(EncodeX509Extensions, ExtensionsOfSize(1500).p).bytes;
    ASSERT_EQ(AddRsaAttributesAttributeWithValue(a, kExtensionRequest.data(), &index, value.data(), Size(value)), 0u);
    EXPECT_EQ(ExtensionCount(q), 1u);
}

TEST(Request, BuiltRequestReadsBack) {
    auto q = Made<FreePKCS10CertReq>(CreatePKCS10CertReq);
    uint32_t n = 8;
    uint8_t buf[8];
    Own<FreeX509Extensions> none;
    EXPECT_EQ(Val(GetPKCS10CertReqVersion, q), 0u);
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
    for (uint32_t rc : {SetPKCS10CertReqSubject(q, Decoded<FreeX509Name>(DecodeX509Name, subjectDer)),  // copied
                        SetPKCS10CertReqGostR34102012PublicKey(q, key.data(), 64),
                        SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(q, 102, 1, 1, 1, 1),
                        SetPKCS10CertReqGostR34102001SignatureAlgorithmID(q, 100, 255),
                        SetPKCS10CertReqSignature(q, signature.data(), 64), SetPKCS10CertReqVersion(q, 5),
                        SetPKCS10CertReqExtensions(q, ExtensionsOfSize(400))})
        ASSERT_EQ(rc, 0u);
    auto back = Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, Get(EncodePKCS10CertReq, q.p).bytes);
    EXPECT_EQ(Val(GetPKCS10CertReqVersion, back), 5u);
    EXPECT_EQ(Get(GetPKCS10CertReqPublicKeyGostR3410, back.p).bytes, key);
    EXPECT_EQ(Get(GetPKCS10CertReqSignature, back.p).bytes, signature);
    const auto [keyOid, keyParams] = Algorithm(GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters, back.p);
    EXPECT_EQ(keyOid, Packed("1.2.643.2.2.19"));
    EXPECT_EQ(ToHex(keyParams), H("30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01"));
    const auto [sigOid, sigParams] = Algorithm(GetPKCS10CertReqSignatureAlgorithmOidAndParameters, back.p);
    EXPECT_EQ(sigOid, Packed("1.2.643.2.2.3"));
    EXPECT_TRUE(sigParams.empty());
    EXPECT_EQ(Get(EncodeX509Name, Val(GetPKCS10CertReqSubject, back)).bytes, subjectDer);
    EXPECT_EQ(ExtensionCount(back), 1u);

    // Versions are any number, written as a non-negative INTEGER right after the header.
    ASSERT_EQ(SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q, Packed("1.2.840.113549.1.1.1").data(), nullptr, 0), 0u);
    for (auto [v, element] : {std::pair{0u, "02 01 00"}, {128u, "02 02 00 80"}, {0x7FFFFFFFu, "02 04 7F FF FF FF"},
                              {0x80000000u, "02 05 00 80 00 00 00"}, {0xFFFFFFFFu, "02 05 00 FF FF FF FF"}}) {
        ASSERT_EQ(SetPKCS10CertReqVersion(q, v), 0u);
        EXPECT_EQ(Val(GetPKCS10CertReqVersion, q), v);
        EXPECT_EQ(ToHex(Get(GetPKCS10CertReqToBeSignedPart, q.p).bytes.data() + 4, Hex(element).size()), H(element));
    }
}

}  // namespace

// The C++ header: each handle in a unique_ptr freed by its own family (the sanitizer build sees a
// leak or a wrong Free).
TEST(CppHeader, HandlesFreeThemselves) {
    const Bytes der = FixtureFile("pki/ee_rsa.der");
    Certificate* raw = nullptr;
    ASSERT_EQ(DecodeCertificate(der.data(), Size(der), &raw), 0u);
    const tarvelon::CertificatePtr cert(raw);
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetCertificateIssuer(cert.get(), &issuer), 0u);
    X509Name* copy = nullptr;
    ASSERT_EQ(CopyX509Name(issuer, &copy), 0u);
    const tarvelon::X509NamePtr name(copy);
    EXPECT_EQ(CompareX509Names(name.get(), issuer), 0u);
    SeveralData* list = nullptr;
    ASSERT_EQ(CreateSeveralData(&list), 0u);
    const tarvelon::SeveralDataPtr several(list);
    EXPECT_EQ(Get(GetCertificateSerialNumber, cert.get()).hex(), H("0E E0 00 00 00 00 00 01"));
}
