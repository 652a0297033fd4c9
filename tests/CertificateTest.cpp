// Certificates: real certificates (OpenSSL-made fixtures and the system CA store) through decode,
// encode and the bytes to be signed; rebuilding each fixture field by field through the accessors;
// key identifiers checked against what OpenSSL wrote; working-buffer limits; allocation failures.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/x509/Certificate.h"
#include "tarvelon/engine/Error.h"
#include "tarvelon/extensions/X509Extension.h"

using namespace tvtest;

namespace {

struct CertDeleter {
    void operator()(Certificate* c) const { FreeCertificate(c); }
};
using Cert = std::unique_ptr<Certificate, CertDeleter>;
struct NameDeleter {
    void operator()(X509Name* n) const { FreeX509Name(n); }
};
using Name = std::unique_ptr<X509Name, NameDeleter>;

Cert DecodeDer(const Bytes& der) {
    Certificate* c = nullptr;
    EXPECT_EQ(DecodeCertificate(der.data(), static_cast<uint32_t>(der.size()), &c), TV_OK);
    return Cert(c);
}
Cert Load(const std::string& fixture) { return DecodeDer(ReadFile(Fixture(fixture + ".der"))); }
Cert Fresh() {
    Certificate* c = nullptr;
    EXPECT_EQ(CreateCertificate(&c), TV_OK);
    return Cert(c);
}

Bytes EncodeCert(const Certificate* c) { return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeCertificate(c, o, n); }); }
Bytes Tbs(const Certificate* c) { return OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateToBeSignedPart(c, o, n); }); }
Bytes ExtensionValue(Certificate* c, const uint8_t* oid, uint32_t* rc = nullptr) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateExtensionValue(c, oid, o, n); }, rc);
}
Bytes Ski(Certificate* c, uint32_t* rc = nullptr) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateSubjectKeyIdentifier(c, o, n); }, rc);
}
Bytes Serial(const Certificate* c) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateSerialNumber(c, o, n); });
}
X509Extensions* Extensions(Certificate* c) {
    X509Extensions* h = nullptr;
    EXPECT_EQ(GetCertificateExtensions(c, &h), TV_OK);
    return h;
}
bool Contains(const Bytes& hay, const Bytes& needle) {
    return std::search(hay.begin(), hay.end(), needle.begin(), needle.end()) != hay.end();
}
const char* const kFixtures[] = {"certs/rsa_ca",       "certs/gost2001",        "certs/gost2012_256",
                                 "certs/gost2012_512", "pki/ca_rsa",            "pki/ca_gost2001",
                                 "pki/ca_gost2012_256", "pki/ca_gost2012_512",  "pki/ee_rsa",
                                 "pki/ee_gost2012_256"};

}  // namespace

TEST(CertificateDescriptors, Lint) {
    for (auto [d, name] : {std::pair{&tv::desc::kCertificate, "Certificate"}, {&tv::desc::kCertificates, "Certificates"}})
        EXPECT_TRUE(LintDescriptor(d, name).empty()) << name;
}

// Byte-for-byte round trips with the to-be-signed bytes as OpenSSL extracted them; and every field
// read from a fixture and written into a fresh certificate gives back the fixture.
TEST(CertificateRealData, FixturesRoundTripAndRebuildThroughTheAccessors) {
    for (const char* name : kFixtures) {
        SCOPED_TRACE(name);
        const Bytes der = ReadFile(Fixture(std::string(name) + ".der"));
        Cert src = DecodeDer(der);
        ASSERT_TRUE(src);
        Cert dst = Fresh();
        Certificate* s = src.get();
        Certificate* d = dst.get();
        uint32_t version = 0;
        ASSERT_EQ(GetCertificateVersion(s, &version), TV_OK);
        EXPECT_EQ(version, 2u);
        ASSERT_EQ(SetCertificateVersion(d, version), TV_OK);
        const Bytes serial = Serial(s);
        ASSERT_EQ(SetCertificateSerialNumber(d, serial.data(), static_cast<uint32_t>(serial.size())), TV_OK);

        auto algorithm = [](auto get, const Certificate* c, Bytes* params) {
            uint32_t oidLen = 0, paramsLen = 0;
            EXPECT_EQ(get(c, nullptr, &oidLen, nullptr, &paramsLen), TV_OK);
            Bytes oid(oidLen);
            params->assign(paramsLen, 0);
            EXPECT_EQ(get(c, oid.data(), &oidLen, params->data(), &paramsLen), TV_OK);
            return oid;
        };
        Bytes params;
        Bytes oid = algorithm(GetCertificateSignatureAlgorithmOidAndParameters, s, &params);
        ASSERT_EQ(SetCertificateSignatureAlgorithmOidAndParameters(d, oid.data(), params.data(), static_cast<uint32_t>(params.size())), TV_OK);
        oid = algorithm(GetCertificatePublicKeyAlgorithmOidAndParameters, s, &params);
        ASSERT_EQ(SetCertificatePublicKeyAlgorithmOidAndParameters(d, oid.data(), params.data(), static_cast<uint32_t>(params.size())), TV_OK);
        const Bytes key = OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificatePublicKey(s, o, n); });
        ASSERT_EQ(SetCertificatePublicKey(d, key.data(), static_cast<uint32_t>(key.size())), TV_OK);

        X509Name* name1 = nullptr;
        ASSERT_EQ(GetCertificateIssuer(s, &name1), TV_OK);
        ASSERT_EQ(SetCertificateIssuer(d, name1), TV_OK);
        ASSERT_EQ(GetCertificateSubject(s, &name1), TV_OK);
        ASSERT_EQ(SetCertificateSubject(d, name1), TV_OK);
        LibraryTime t{};
        ASSERT_EQ(GetCertificateValidNotBefore(s, &t), TV_OK);
        ASSERT_EQ(SetCertificateValidNotBefore(d, &t), TV_OK);
        ASSERT_EQ(GetCertificateValidNotAfter(s, &t), TV_OK);
        ASSERT_EQ(SetCertificateValidNotAfter(d, &t), TV_OK);
        ASSERT_EQ(SetCertificateExtensions(d, Extensions(s)), TV_OK);
        const Bytes signature = OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateSignature(s, o, n); });
        ASSERT_EQ(SetCertificateSignature(d, signature.data(), static_cast<uint32_t>(signature.size())), TV_OK);
        EXPECT_EQ(ToHex(EncodeCert(d)), ToHex(der));
    }
}

TEST(CertificateFields, FreshCertificateReportsAbsentFields) {
    Cert c = Fresh();
    uint8_t buf[8];
    uint32_t n = sizeof buf;
    LibraryTime t{};
    uint32_t version = 7;
    EXPECT_EQ(GetCertificateVersion(c.get(), &version), TV_OK);
    EXPECT_EQ(version, 0u);  // DEFAULT v1
    EXPECT_EQ(GetCertificateSerialNumber(c.get(), buf, &n), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificateValidNotAfter(c.get(), &t), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificateIssuerUniqueId(c.get(), buf, &n, nullptr), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificateSignature(c.get(), buf, &n), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificatePublicKey(c.get(), buf, &n), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificateSignatureAlgorithmOidAndParameters(c.get(), buf, &n, nullptr, nullptr), TV_ERR_ABSENT);
    EXPECT_EQ(GetCertificateExtensionValue(c.get(), tv::oid::kKeyUsage, buf, &n), TV_ERR_NOT_FOUND);
    EXPECT_EQ(ptr_GetCertificateSerialNumber(c.get(), &n), nullptr);
    EXPECT_EQ(GetCertificateSerialNumber(nullptr, buf, &n), TV_ERR_INVALID_ARGUMENT);
}

TEST(CertificateFields, VersionSerialAndUniqueIds) {
    Cert c = Fresh();
    for (uint32_t v : {0u, 1u, 2u}) EXPECT_EQ(SetCertificateVersion(c.get(), v), TV_OK);
    EXPECT_EQ(SetCertificateVersion(c.get(), 3), TV_ERR_INVALID_ARGUMENT);
    const Bytes serials[] = {Hex("00 7F"), Hex("7F"), Hex("FF"), Bytes(40, 0x11)};
    for (const Bytes& s : serials) {
        ASSERT_EQ(SetCertificateSerialNumber(c.get(), s.data(), static_cast<uint32_t>(s.size())), TV_OK);
        uint32_t n = 0;
        const uint8_t* p = ptr_GetCertificateSerialNumber(c.get(), &n);
        EXPECT_EQ(ToHex(p, n), ToHex(s)) << "stored exactly as given, no normalisation";
    }
    EXPECT_EQ(SetCertificateSerialNumber(c.get(), serials[0].data(), 0), TV_ERR_INVALID_ARGUMENT);

    const Bytes id = Hex("A5 F0");
    ASSERT_EQ(SetCertificateSubjectUniqueId(c.get(), id.data(), 2, 4), TV_OK);
    uint8_t unused = 0;
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) { return GetCertificateSubjectUniqueId(c.get(), o, n, &unused); })), "A5 F0");
    EXPECT_EQ(unused, 4);
    ASSERT_EQ(SetCertificateSubjectUniqueId(c.get(), nullptr, 0, 0), TV_OK);
    uint32_t n = 0;
    EXPECT_EQ(GetCertificateSubjectUniqueId(c.get(), nullptr, &n, nullptr), TV_ERR_ABSENT);
}

TEST(CertificateFields, SubjectOfAFreshCertificateIsOwnedAndEncoded) {
    Cert c = Fresh();
    X509Name* subject = nullptr;
    ASSERT_EQ(GetCertificateSubject(c.get(), &subject), TV_OK);
    const Bytes cn = {'T', 'e', 's', 't', 'X'};
    const uint8_t kCommonName[] = {3, 0x55, 0x04, 0x03};
    ASSERT_EQ(AddX509NameEntry(subject, cn.data(), 5, ASN1_UTF8_STRING, kCommonName, 1), TV_OK);
    X509Name* again = nullptr;
    ASSERT_EQ(GetCertificateSubject(c.get(), &again), TV_OK);
    EXPECT_EQ(again, subject);

    // Taken over without a copy; ASan reports a double free if the old name is mishandled.
    X509Name* issuer = nullptr;
    ASSERT_EQ(CopyX509Name(subject, &issuer), TV_OK);
    ASSERT_EQ(SetCertificateIssuer_i(c.get(), issuer, 0), TV_OK);
    ASSERT_EQ(SetCertificateIssuer_i(c.get(), issuer, 0), TV_OK);
    const LibraryTime from{2024, 1, 1, 0, 0, 0}, to{2051, 1, 1, 0, 0, 0};
    ASSERT_EQ(SetCertificateValidNotBefore(c.get(), &from), TV_OK);
    ASSERT_EQ(SetCertificateValidNotAfter(c.get(), &to), TV_OK);
    const Bytes serial = Hex("01");
    ASSERT_EQ(SetCertificateSerialNumber(c.get(), serial.data(), 1), TV_OK);
    ASSERT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c.get(), 3002, 255), TV_OK);
    ASSERT_EQ(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(c.get(), 3000, 1, 1, 3, 1), TV_OK);
    const Bytes key(64, 0x5A);
    ASSERT_EQ(SetCertificateGostR34102001PublicKey(c.get(), key.data(), 64), TV_OK);
    const Bytes tbs = Tbs(c.get());
    ASSERT_FALSE(tbs.empty());
    EXPECT_TRUE(Contains(tbs, Hex("0C 05 54 65 73 74 58")));
    EXPECT_TRUE(Contains(tbs, Hex("18 0F 32 30 35 31")));  // GeneralizedTime from 2050 on
    uint32_t pk = 0, dg = 0, enc = 0;
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) {
                  return GetCertificateDecodedPublicKeyGostR34102012(c.get(), o, n, &pk, &dg, &enc);
              })),
              ToHex(key));
    EXPECT_EQ(pk * 100 + dg * 10 + enc, 131u);
}

// Inner signature field first, outer mirror second; a failure leaves the outer one untouched.
TEST(CertificateFields, SignatureAlgorithmIsWrittenTwice) {
    Cert c = Load("pki/ca_rsa");
    ASSERT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c.get(), 100, 0), TV_OK);
    const Bytes der = EncodeCert(c.get());
    const Bytes gostNull = Hex("30 0A 06 06 2A 85 03 02 02 03 05 00");
    const Bytes tbs = Tbs(c.get());
    EXPECT_TRUE(Contains(tbs, gostNull));
    EXPECT_TRUE(Contains(Bytes(der.begin() + 4 + tbs.size(), der.end()), gostNull));
    EXPECT_EQ(SetCertificateGostR34102001SignatureAlgorithmID(c.get(), 100, 1), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(c.get(), 7, 255, 0, 0, 0), TV_ERR_ID_NOT_FOUND);
    EXPECT_EQ(ToHex(EncodeCert(c.get())), ToHex(der));
    uint8_t key[64];
    uint32_t n = sizeof key, a, b, e;
    EXPECT_EQ(GetCertificateDecodedPublicKeyGostR34102012(c.get(), key, &n, &a, &b, &e), TV_ERR_KEY_KIND);
}

TEST(CertificateLists, AddCountGetEncode) {
    Certificates* list = nullptr;
    ASSERT_EQ(CreateCertificates(&list), TV_OK);
    std::unique_ptr<Certificates, decltype(&FreeCertificates)> owned(list, FreeCertificates);
    Bytes body;
    for (const char* name : {"pki/ca_rsa", "pki/ee_rsa"}) {
        const Bytes der = ReadFile(Fixture(std::string(name) + ".der"));
        body.insert(body.end(), der.begin(), der.end());
        ASSERT_EQ(AddCertificateToCertificates(list, DecodeDer(der).release()), TV_OK);
    }
    uint32_t count = 0;
    EXPECT_EQ(GetCertificatesCount(list, &count), TV_OK);
    EXPECT_EQ(count, 2u);
    Certificate* second = nullptr;
    EXPECT_EQ(GetCertificatesCertificate(list, 1, &second), TV_OK);
    EXPECT_EQ(Serial(second), Hex("0E E0 00 00 00 00 00 01"));
    EXPECT_EQ(GetCertificatesCertificate(list, 2, &second), TV_ERR_INVALID_ARGUMENT);
    const Bytes encoded = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeCertificates(list, o, n); });
    ASSERT_GT(encoded.size(), body.size());
    EXPECT_EQ(ToHex(Bytes(encoded.end() - body.size(), encoded.end())), ToHex(body));
    Certificates* decoded = nullptr;
    ASSERT_EQ(DecodeCertificates(encoded.data(), static_cast<uint32_t>(encoded.size()), &decoded), TV_OK);
    FreeCertificates(decoded);
}

// The subject key identifier OpenSSL wrote (subjectKeyIdentifier=hash) is the one this library computes.
TEST(CertificateKeyIdentifiers, SubjectKeyIdMatchesOpenSsl) {
    for (const char* name : kFixtures) {
        SCOPED_TRACE(name);
        Cert c = Load(name);
        const Bytes expected = Ski(c.get());
        ASSERT_EQ(expected.size(), 20u);
        ASSERT_EQ(SetCertificateSubjectKeyIdentifier(c.get()), TV_OK);
        EXPECT_EQ(ToHex(Ski(c.get())), ToHex(expected));
        uint32_t count = 0, index = 0;
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(Extensions(c.get()), &count), TV_OK);
        EXPECT_EQ(FindX509Extension(Extensions(c.get()), tv::oid::kSubjectKeyIdentifier, &index), TV_OK);
        EXPECT_EQ(index, count - 1) << "replaced, then appended";
    }
}

// ee_rsa's authority key identifier holds the CA's key id, the CA's issuer name and its serial.
TEST(CertificateKeyIdentifiers, AuthorityKeyIdFromTheIssuerMatchesOpenSsl) {
    Cert ca = Load("pki/ca_rsa"), ee = Load("pki/ee_rsa");
    const Bytes expected = ExtensionValue(ee.get(), tv::oid::kAuthorityKeyIdentifier);
    ASSERT_EQ(SetCertificateAuthorityKeyIdentifier(ee.get(), ca.get()), TV_OK);
    EXPECT_EQ(ToHex(ExtensionValue(ee.get(), tv::oid::kAuthorityKeyIdentifier)), ToHex(expected));

    uint8_t keyId[32], serial[32];
    uint32_t keyIdLen = sizeof keyId, serialLen = sizeof serial;
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ee.get(), keyId, &keyIdLen, &issuer, serial, &serialLen), TV_OK);
    Name owned(issuer);
    EXPECT_EQ(ToHex(keyId, keyIdLen), ToHex(Ski(ca.get())));
    EXPECT_EQ(ToHex(serial, serialLen), ToHex(Serial(ca.get())));
    X509Name* caSubject = nullptr;
    ASSERT_EQ(GetCertificateSubject(ca.get(), &caSubject), TV_OK);
    EXPECT_EQ(CompareX509Names(issuer, caSubject), TV_OK);

    // The CA's own identifier is key id only: no issuer comes back.
    keyIdLen = sizeof keyId, serialLen = sizeof serial;
    ASSERT_EQ(GetCertificateAuthorityKeyIdentifier2(ca.get(), keyId, &keyIdLen, &issuer, serial, &serialLen), TV_OK);
    EXPECT_EQ(issuer, nullptr);
    EXPECT_EQ(serialLen, 0u);
    EXPECT_EQ(SetCertificateAuthorityKeyIdentifier2(ee.get(), nullptr, 0, nullptr, serial, 4), TV_ERR_INVALID_ARGUMENT);
}

TEST(CertificateKeyIdentifiers, CorrespondenceAndIssuerSerialMatching) {
    Cert ca = Load("pki/ca_rsa"), ee = Load("pki/ee_rsa"), fresh = Fresh();
    const Bytes keyId = Ski(ca.get()), serial = Serial(ca.get());
    Bytes otherKey = keyId;
    otherKey[0] ^= 1;
    X509Name *caName = nullptr, *eeName = nullptr;
    ASSERT_EQ(GetCertificateSubject(ca.get(), &caName), TV_OK);
    ASSERT_EQ(GetCertificateSubject(ee.get(), &eeName), TV_OK);
    Bytes padded = serial;
    padded.insert(padded.begin(), 0x00);
    struct Case {
        const char* what;
        Certificate* cert;
        const Bytes* key;
        X509Name* issuer;
        const Bytes* serial;
        uint32_t expected;
    } cases[] = {
        {"key id decides alone", ca.get(), &keyId, eeName, &padded, TV_OK},
        {"other key id", ca.get(), &otherKey, caName, &serial, TV_ERR_DIFFERENT},
        {"issuer and serial", ca.get(), nullptr, caName, &serial, TV_OK},
        {"serial 00-prefixed", ca.get(), nullptr, caName, &padded, TV_ERR_DIFFERENT},
        {"other issuer", ca.get(), nullptr, eeName, &serial, TV_ERR_DIFFERENT},
        {"nothing given", ca.get(), nullptr, nullptr, nullptr, TV_ERR_INVALID_ARGUMENT},
        {"no subject key id", fresh.get(), &keyId, nullptr, nullptr, TV_ERR_DIFFERENT},
        {"no serial", fresh.get(), nullptr, caName, &serial, TV_ERR_NOT_DER},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(IsCertificateCorrespondToAuthKeyIdent(c.cert, c.key ? c.key->data() : nullptr,
                                                        c.key ? static_cast<uint32_t>(c.key->size()) : 0, c.issuer,
                                                        c.serial ? c.serial->data() : nullptr,
                                                        c.serial ? static_cast<uint32_t>(c.serial->size()) : 0),
                  c.expected);
    }
    Cert copy = Load("pki/ee_rsa");
    EXPECT_EQ(IsCertificatePairIssuerAndSerialEqual(ee.get(), copy.get()), TV_OK);
    EXPECT_EQ(IsCertificatePairIssuerAndSerialEqual(ee.get(), ca.get()), TV_ERR_DIFFERENT);
}

// "ключ-7f3a-19c2" in code page 1251 becomes the UTF8String that ee_rsa carries.
TEST(CertificateExtensions, KestruneIdentifierAndCrlDistributionPoint) {
    Cert ee = Load("pki/ee_rsa");
    const Bytes expected = ExtensionValue(ee.get(), tv::oid::kKestruneKeyIdentifier);
    Cert c = Fresh();
    ASSERT_EQ(SetCertificateKestruneKeyIdentifier(c.get(), "\xEA\xEB\xFE\xF7-7f3a-19c2"), TV_OK);
    EXPECT_EQ(ToHex(ExtensionValue(c.get(), tv::oid::kKestruneKeyIdentifier)), ToHex(expected));
    // The old identifier goes first, so a text too long for the working buffer leaves none.
    const std::string tooLong(200, 'k');
    EXPECT_EQ(SetCertificateKestruneKeyIdentifier(c.get(), tooLong.c_str()), TV_ERR_WORK_BUFFER);
    uint32_t rc = 0;
    ExtensionValue(c.get(), tv::oid::kKestruneKeyIdentifier, &rc);
    EXPECT_EQ(rc, TV_ERR_NOT_FOUND);

    const std::string url = "http://crl.example.ru/ca.crl";
    for (int i = 0; i < 2; ++i) ASSERT_EQ(SetCertificateExtensionCrlDistributionPoints(c.get(), url.c_str()), TV_OK);
    Bytes want = Hex("30 22 30 20 A0 1E A0 1C 86 1A");
    want.insert(want.end(), url.begin(), url.end());
    want[1] = static_cast<uint8_t>(want.size() - 2), want[3] = static_cast<uint8_t>(want.size() - 4);
    want[5] = static_cast<uint8_t>(want.size() - 6), want[7] = static_cast<uint8_t>(want.size() - 8);
    want[9] = static_cast<uint8_t>(url.size());
    EXPECT_EQ(ToHex(ExtensionValue(c.get(), tv::oid::kCrlDistributionPoints)), ToHex(want));
    uint32_t count = 0;
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(Extensions(c.get()), &count), TV_OK);
    EXPECT_EQ(count, 1u);
    // Beyond the 2048-octet working buffer: 49, the certificate unchanged.
    const std::string huge = "http://" + std::string(2100, 'a');
    EXPECT_EQ(SetCertificateExtensionCrlDistributionPoints(c.get(), huge.c_str()), TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(ToHex(ExtensionValue(c.get(), tv::oid::kCrlDistributionPoints)), ToHex(want));
}

// The fixed working buffers: each limit passes at its size and answers 338 one octet beyond.
TEST(CertificateKeyIdentifiers, WorkingBufferLimits) {
    struct Limit {
        const char* what;
        size_t fits;
        uint32_t expectedBeyond;
        std::function<uint32_t(size_t)> run;
    };
    Cert issuer = Load("pki/ca_rsa");
    const Limit limits[] = {
        {"public key 512", 512, TV_ERR_WORK_BUFFER, [](size_t n) {
             Cert c = Fresh();
             const Bytes key(n, 0x42);
             EXPECT_EQ(SetCertificatePublicKey(c.get(), key.data(), static_cast<uint32_t>(n)), TV_OK);
             return SetCertificateSubjectKeyIdentifier(c.get());
         }},
        {"issuer serial 64", 64, TV_ERR_WORK_BUFFER, [&](size_t n) {
             Cert target = Fresh();
             const Bytes serial(n, 0x21);
             EXPECT_EQ(SetCertificateSerialNumber(issuer.get(), serial.data(), static_cast<uint32_t>(n)), TV_OK);
             return SetCertificateAuthorityKeyIdentifier(target.get(), issuer.get());
         }},
        {"pair serial 100", 100, TV_ERR_WORK_BUFFER, [&](size_t n) {
             const Bytes serial(n, 0x21);
             EXPECT_EQ(SetCertificateSerialNumber(issuer.get(), serial.data(), static_cast<uint32_t>(n)), TV_OK);
             return IsCertificatePairIssuerAndSerialEqual(issuer.get(), issuer.get());
         }},
        {"subject key id 32", 32, TV_ERR_WORK_BUFFER, [](size_t n) {
             Cert c = Fresh();
             Bytes value = {0x04, static_cast<uint8_t>(n)};
             value.resize(2 + n, 0x33);
             EXPECT_EQ(AddX509ExtensionsExtension(Extensions(c.get()), tv::oid::kSubjectKeyIdentifier, 0, value.data(), static_cast<uint32_t>(value.size())), TV_OK);
             const Bytes key(n, 0x33);
             return IsCertificateCorrespondToAuthKeyIdent(c.get(), key.data(), static_cast<uint32_t>(n), nullptr, nullptr, 0);
         }},
        {"authority key id value 1024", 1024, TV_ERR_WORK_BUFFER, [](size_t n) {
             Cert c = Fresh();
             Bytes value = {0x30, 0x82, static_cast<uint8_t>((n - 4) >> 8), static_cast<uint8_t>(n - 4), 0x80, 0x82,
                            static_cast<uint8_t>((n - 8) >> 8), static_cast<uint8_t>(n - 8)};
             value.resize(n, 0x44);
             EXPECT_EQ(AddX509ExtensionsExtension(Extensions(c.get()), tv::oid::kAuthorityKeyIdentifier, 0, value.data(), static_cast<uint32_t>(n)), TV_OK);
             Bytes keyId(2048);
             uint32_t keyIdLen = static_cast<uint32_t>(keyId.size()), serialLen = 0;
             return GetCertificateAuthorityKeyIdentifier(c.get(), keyId.data(), &keyIdLen, nullptr, nullptr, &serialLen);
         }},
        {"subject key id value 1024 answers 1", 1024, TV_ERR_NO_MEMORY, [](size_t n) {
             Cert c = Fresh();
             Bytes value = {0x04, 0x82, static_cast<uint8_t>((n - 4) >> 8), static_cast<uint8_t>(n - 4)};
             value.resize(n, 0x55);
             EXPECT_EQ(AddX509ExtensionsExtension(Extensions(c.get()), tv::oid::kSubjectKeyIdentifier, 0, value.data(), static_cast<uint32_t>(n)), TV_OK);
             uint32_t rc = 0;
             Ski(c.get(), &rc);
             return rc;
         }},
    };
    for (const Limit& l : limits) {
        SCOPED_TRACE(l.what);
        EXPECT_EQ(l.run(l.fits), TV_OK);
        EXPECT_EQ(l.run(l.fits + 1), l.expectedBeyond);
    }
}

TEST(CertificateAllocation, DecodeCopyEncodeAndBuildClean) {
    const Bytes der = ReadFile(Fixture("pki/ee_gost2012_256.der"));
    const Bytes caDer = ReadFile(Fixture("pki/ca_gost2012_256.der"));
    int runs = ForEachAllocationFailure([&]() -> uint32_t {
        Certificate *c = nullptr, *copy = nullptr;
        TV_TRY(DecodeCertificate(der.data(), static_cast<uint32_t>(der.size()), &c));
        Cert owned(c);
        TV_TRY(CreateCertificateCopy(c, &copy));
        Cert ownedCopy(copy);
        uint32_t n = 0;
        TV_TRY(EncodeCertificate(copy, nullptr, &n));
        Bytes out(n);
        TV_TRY(EncodeCertificate(copy, out.data(), &n));
        return out == der ? TV_OK : TV_ERR_DIFFERENT;
    });
    EXPECT_GT(runs, 20);
    runs = ForEachAllocationFailure([&]() -> uint32_t {
        Certificate *c = nullptr, *ca = nullptr;
        TV_TRY(DecodeCertificate(caDer.data(), static_cast<uint32_t>(caDer.size()), &ca));
        Cert ownedCa(ca);
        TV_TRY(CreateCertificate(&c));
        Cert owned(c);
        const Bytes serial = Hex("01 02"), key(64, 7);
        const LibraryTime t{2030, 6, 1, 12, 0, 0};
        X509Name* subject = nullptr;
        TV_TRY(SetCertificateVersion(c, 2));
        TV_TRY(SetCertificateSerialNumber(c, serial.data(), 2));
        TV_TRY(GetCertificateSubject(ca, &subject));
        TV_TRY(SetCertificateSubject(c, subject));
        TV_TRY(SetCertificateIssuer(c, subject));
        TV_TRY(SetCertificateValidNotBefore(c, &t));
        TV_TRY(SetCertificateValidNotAfter(c, &t));
        TV_TRY(SetCertificateGostR34102001SignatureAlgorithmID(c, 3002, 255));
        TV_TRY(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(c, 3000, 1, 1, 3, 1));
        TV_TRY(SetCertificateGostR34102001PublicKey(c, key.data(), 64));
        TV_TRY(SetCertificateSubjectKeyIdentifier(c));
        TV_TRY(SetCertificateAuthorityKeyIdentifier(c, ca));
        TV_TRY(SetCertificateExtensionCrlDistributionPoints(c, "http://crl.example.ru/ca.crl"));
        TV_TRY(SetCertificateKestruneKeyIdentifier(c, "key"));
        TV_TRY(SetCertificateSignature(c, key.data(), 64));
        uint32_t n = 0;
        return EncodeCertificate(c, nullptr, &n);
    });
    EXPECT_GT(runs, 20);
}
