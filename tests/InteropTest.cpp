// Interoperability with OpenSSL as an independent peer: a CA certificate, an end-entity certificate,
// a CRL revoking it and a PKCS#10 request are built field by field through the C API, signed by the
// openssl command line over the to-be-signed bytes the library hands out, and then checked by
// `openssl verify`, `openssl crl -verify` and `openssl req -verify`. Once with GOST R 34.10-2012
// (256-bit, paramset A) keys, once with RSA 2048.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "TestUtil.h"
#include "tarvelon/tarvelon.h"

using namespace tvtest;

namespace {

// Reads through the size protocol, expecting success.
Bytes Read(const Writer& get) {
    const Got g = Sized(get);
    EXPECT_EQ(g.rc, TV_OK);
    return g.bytes;
}

void WriteFile(const std::string& path, const void* p, size_t n) {
    std::ofstream f(path, std::ios::binary);
    f.write(static_cast<const char*>(p), static_cast<std::streamsize>(n));
    ASSERT_TRUE(f.good()) << path;
}

void WritePem(const std::string& path, const Bytes& der, const char* label) {
    const Bytes text = Read([&](uint8_t* o, uint32_t* n) {
        return EncodePem(der.data(), Size(der), label, reinterpret_cast<char*>(o), n);
    });
    WriteFile(path, text.data(), text.size());
}

struct Output {
    int status;
    std::string out;  // stdout and stderr together
};

Output Shell(const std::string& command) {
    Output r{-1, {}};
    FILE* p = popen((command + " 2>&1").c_str(), "r");
    if (!p) return r;
    char buf[4096];
    for (size_t n; (n = fread(buf, 1, sizeof buf, p)) > 0;) r.out.append(buf, n);
    int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

// A mkdtemp directory, removed with everything in it.
struct TempDir {
    std::string path;
    TempDir() {
        std::string t = (std::filesystem::temp_directory_path() / "tv_interop_XXXXXX").string();
        if (mkdtemp(t.data())) path = t;
    }
    ~TempDir() {
        if (!path.empty()) std::filesystem::remove_all(path);
    }
    std::string operator/(const std::string& name) const { return path + "/" + name; }
};

const Bytes kCn = Packed("2.5.4.3"), kC = Packed("2.5.4.6"), kO = Packed("2.5.4.10");
const Bytes kBasicConstraints = Packed("2.5.29.19"), kKeyUsage = Packed("2.5.29.15");
const Bytes kExtKeyUsage = Packed("2.5.29.37"), kSubjectAltName = Packed("2.5.29.17");
const Bytes kCrlNumber = Packed("2.5.29.20"), kReasonCode = Packed("2.5.29.21");
const Bytes kSubjectSignTool = Packed("1.2.643.100.111"), kClientAuth = Packed("1.3.6.1.5.5.7.3.2");

struct Case {
    const char* name;
    bool gost;
    const char* genpkey;  // openssl genpkey arguments
    const char* digest;   // openssl dgst digest option
    Bytes sigAlg, sigParams;
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

// openssl with the GOST engine loaded through a config file: `openssl crl` has no -engine option.
class Interop : public ::testing::TestWithParam<Case> {
protected:
    TempDir dir;
    std::string openssl = "openssl";

    void SetUp() override {
        ASSERT_FALSE(dir.path.empty()) << "mkdtemp failed";
        if (!GetParam().gost) return;
        if (Shell("openssl version").status != 0) GTEST_SKIP() << "openssl is not installed";
        WriteFile(dir / "gost.cnf", kGostConf, sizeof kGostConf - 1);
        openssl = "OPENSSL_CONF=" + (dir / "gost.cnf") + " openssl";
        if (Shell(openssl + " engine -t gost").status != 0)
            GTEST_SKIP() << "the OpenSSL GOST engine is not installed (libengine-gost-openssl)";
    }

    static constexpr char kGostConf[] =
        "openssl_conf = init\n[init]\nengines = engines\n[engines]\ngost = gost_engine\n"
        "[gost_engine]\ndefault_algorithms = ALL\n";

    Output Ossl(const std::string& args) { return Shell(openssl + " " + args); }

    // Makes a key; returns its SubjectPublicKeyInfo as openssl writes it.
    Bytes MakeKey(const std::string& name) {
        Output g = Ossl("genpkey " + std::string(GetParam().genpkey) + " -out " + (dir / name));
        EXPECT_EQ(g.status, 0) << g.out;
        Output p = Ossl("pkey -in " + (dir / name) + " -pubout -outform DER -out " + (dir / (name + ".pub")));
        EXPECT_EQ(p.status, 0) << p.out;
        return ReadFile(dir / (name + ".pub"));
    }

    // The signature over the octets `tbs` hands out, as `openssl dgst -sign` writes it.
    Bytes Sign(const Writer& tbs, const std::string& key) {
        Bytes in = Read(tbs);
        WriteFile(dir / "tbs", in.data(), in.size());
        Output s = Ossl("dgst " + std::string(GetParam().digest) + " -sign " + (dir / key) + " -out " + (dir / "sig") +
                        " " + (dir / "tbs"));
        EXPECT_EQ(s.status, 0) << s.out;
        return ReadFile(dir / "sig");
    }
};

// openssl's SubjectPublicKeyInfo taken apart. A GOST key also as the raw point (the OCTET STRING
// content), the form in which a provider hands it out and the GOST key setters take it.
struct Spki {
    Bytes oid, key, params, raw;
};

Spki Split(const Bytes& der, bool gost) {
    uint32_t oidLen = 0, keyLen = 0, parLen = 0;
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(der.data(), Size(der), nullptr, &oidLen, nullptr, &keyLen, nullptr, &parLen), TV_OK);
    Spki s{Bytes(oidLen), Bytes(keyLen), Bytes(parLen), {}};
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(der.data(), Size(der), s.oid.data(), &oidLen, s.key.data(), &keyLen,
                                         s.params.data(), &parLen), TV_OK);
    if (gost) {
        s.raw = Get(DecodePublicKeyGostR34102012, s.key.data(), keyLen).bytes;
        EXPECT_EQ(s.raw.size(), 64u);
    }
    return s;
}

const uint8_t* U8(const std::string& s) { return reinterpret_cast<const uint8_t*>(s.data()); }

void AddExt(X509Extensions* exts, const Bytes& oid, int critical, const Bytes& value) {
    ASSERT_EQ(AddX509ExtensionsExtension(exts, oid.data(), critical, value.data(), value.size()), TV_OK);
}

Bytes KeyUsage(uint32_t bits) { return Get(EncodeExtensionKeyUsage, bits).bytes; }

X509Name* MakeName(const std::string& cn, const std::string& org) {
    X509Name* name = nullptr;
    EXPECT_EQ(CreateX509Name(&name), TV_OK);
    EXPECT_EQ(AddX509NameEntry(name, U8("RU"), 2, ASN1_PRINTABLE_STRING, kC.data(), 1), TV_OK);
    EXPECT_EQ(AddX509NameEntry(name, U8(org), org.size(), ASN1_UTF8_STRING, kO.data(), 1), TV_OK);
    EXPECT_EQ(AddX509NameEntry(name, U8(cn), cn.size(), ASN1_UTF8_STRING, kCn.data(), 1), TV_OK);
    return name;
}

LibraryTime Time(uint32_t day, uint32_t month, uint32_t year) { return {year, month, day, 0, 0, 0}; }

LibraryTime FromNow(uint32_t days) {
    LibraryTime t{};
    EXPECT_EQ(GetCurrentLibTime(&t), TV_OK);
    EXPECT_EQ(AddDaysToLibTime(&t, days), TV_OK);
    return t;
}

// Decoding what was built and encoding it again gives the same octets.
template <auto Free, typename Dec, typename Enc>
void ExpectRoundTrip(const Bytes& der, Dec dec, Enc enc) {
    EXPECT_EQ(Get(enc, Decoded<Free>(dec, der).p).hex(), ToHex(der));
}

TEST_P(Interop, OpenSslAcceptsBuiltObjects) {
    const Case& c = GetParam();
    const Bytes caSpki = MakeKey("ca.key"), eeSpki = MakeKey("ee.key");
    ASSERT_FALSE(caSpki.empty());
    ASSERT_FALSE(eeSpki.empty());
    const Spki eeKey = Split(eeSpki, c.gost);
    const Bytes caSerial = Hex("01 C0 FF EE"), eeSerial = Hex("2A 00 00 00 00 00 00 07");

    auto fillCert = [&](Certificate* cert, const Bytes& serial, const X509Name* issuer, const X509Name* subject,
                        const Spki& k) {
        ASSERT_EQ(SetCertificateVersion(cert, 2), TV_OK);
        ASSERT_EQ(SetCertificateSerialNumber(cert, serial.data(), serial.size()), TV_OK);
        ASSERT_EQ(SetCertificateSignatureAlgorithmOidAndParameters(cert, c.sigAlg.data(), c.sigParams.data(),
                                                                   c.sigParams.size()), TV_OK);
        ASSERT_EQ(SetCertificateIssuer(cert, issuer), TV_OK);
        ASSERT_EQ(SetCertificateSubject(cert, subject), TV_OK);
        LibraryTime from = Time(1, 1, 2024), to = FromNow(3650);
        ASSERT_EQ(SetCertificateValidNotBefore(cert, &from), TV_OK);
        ASSERT_EQ(SetCertificateValidNotAfter(cert, &to), TV_OK);
        ASSERT_EQ(SetCertificatePublicKeyAlgorithmOidAndParameters(cert, k.oid.data(), k.params.data(), k.params.size()),
                  TV_OK);
        ASSERT_EQ(c.gost ? SetCertificateGostR34102001PublicKey(cert, k.raw.data(), k.raw.size())
                         : SetCertificatePublicKey(cert, k.key.data(), k.key.size()), TV_OK);
    };
    auto certTbs = [](const Certificate* cert) {
        return [cert](uint8_t* o, uint32_t* n) { return GetCertificateToBeSignedPart(cert, o, n); };
    };
    auto certDer = [](const Certificate* cert) { return Get(EncodeCertificate, cert).bytes; };

    // The CA: issuer = subject, Cyrillic CN.
    X509Name* caName = MakeName("Тестовый УЦ Тарвелон", "Тарвелон");
    X509Name* eeName = MakeName("Иванов Иван Иванович", "Тарвелон");
    Certificate* ca = nullptr;
    ASSERT_EQ(CreateCertificate(&ca), TV_OK);
    ASSERT_NO_FATAL_FAILURE(fillCert(ca, caSerial, caName, caName, Split(caSpki, c.gost)));
    X509Extensions* exts = nullptr;
    ASSERT_EQ(GetCertificateExtensions(ca, &exts), TV_OK);
    AddExt(exts, kBasicConstraints, 1, Get(EncodeExtensionBasicConstraints, 1, 0xFFFFFFFFu).bytes);
    AddExt(exts, kKeyUsage, 1, KeyUsage(0x04 | 0x02));  // keyCertSign | cRLSign
    ASSERT_EQ(SetCertificateSubjectKeyIdentifier(ca), TV_OK);
    const Bytes caTbs = Read(certTbs(ca));

    // Byte order of a GOST signature between the signer and the BIT STRING: none to convert.
    // Evidence (OpenSSL 3.0.19, its GOST engine, GOST R 34.10-2012-256 paramset A): of the three
    // arrangements of the `openssl dgst -md_gost12_256 -sign` output tried below -- as is, reversed,
    // halves swapped -- `openssl verify -check_ss_sig` accepts "as is" only. Conversely, the last 64
    // octets of a certificate made by `openssl req -x509` pass `openssl dgst -verify` unchanged and
    // fail reversed or swapped. Both sides use the RFC 4491 2.2.2 layout (s, then r, big-endian), so
    // the signer's output goes to SetCertificateSignature as it is. For RSA the probe is trivial.
    const Bytes caSig = Sign(certTbs(ca), "ca.key");
    const Bytes reversed(caSig.rbegin(), caSig.rend());
    Bytes swapped = caSig;
    std::rotate(swapped.begin(), swapped.begin() + swapped.size() / 2, swapped.end());
    std::string accepted;
    for (const auto& [sig, label] : {std::pair{caSig, "as is"}, {reversed, "reversed"}, {swapped, "halves swapped"}}) {
        ASSERT_EQ(SetCertificateSignature(ca, sig.data(), sig.size()), TV_OK);
        const std::string probe = dir / "probe.pem";
        WritePem(probe, certDer(ca), "CERTIFICATE");
        if (Ossl("verify -check_ss_sig -CAfile " + probe + " " + probe).status == 0) accepted += label;
    }
    EXPECT_EQ(accepted, "as is");
    ASSERT_EQ(SetCertificateSignature(ca, caSig.data(), caSig.size()), TV_OK);
    EXPECT_EQ(ToHex(Read(certTbs(ca))), ToHex(caTbs)) << "storing the signature changed the signed bytes";
    const Bytes caDer = certDer(ca);
    WritePem(dir / "ca.pem", caDer, "CERTIFICATE");

    // The end entity, issued by the CA.
    Certificate* ee = nullptr;
    ASSERT_EQ(CreateCertificate(&ee), TV_OK);
    ASSERT_NO_FATAL_FAILURE(fillCert(ee, eeSerial, caName, eeName, eeKey));
    ASSERT_EQ(GetCertificateExtensions(ee, &exts), TV_OK);
    AddExt(exts, kKeyUsage, 1, KeyUsage(0x80 | 0x40));  // digitalSignature | nonRepudiation
    ExtendedKeyUsage* eku = nullptr;
    ASSERT_EQ(CreateExtensionExtendedKeyUsage(&eku), TV_OK);
    ASSERT_EQ(AddExtensionExtendedKeyUsage(eku, kClientAuth.data()), TV_OK);
    AddExt(exts, kExtKeyUsage, 0, Get(EncodeExtensionExtendedKeyUsage, eku).bytes);
    FreeExtensionExtendedKeyUsage(eku);
    const std::string tool = "СКЗИ «Тарвелон-CSP»";
    AddExt(exts, kSubjectSignTool, 0, Get(EncodeExtensionSubjectSignTool, U8(tool), uint32_t(tool.size())).bytes);
    ASSERT_EQ(SetCertificateExtensionCrlDistributionPoints(ee, "http://pki.tarvelon.test/ca.crl"), TV_OK);
    ASSERT_EQ(SetCertificateAuthorityKeyIdentifier(ee, ca), TV_OK);
    Bytes sig = Sign(certTbs(ee), "ca.key");
    ASSERT_EQ(SetCertificateSignature(ee, sig.data(), sig.size()), TV_OK);
    const Bytes eeDer = certDer(ee);
    WritePem(dir / "ee.pem", eeDer, "CERTIFICATE");
    EXPECT_NE(std::search(eeDer.begin(), eeDer.end(), eeSpki.begin(), eeSpki.end()), eeDer.end())
        << "the certificate does not carry openssl's SubjectPublicKeyInfo unchanged";

    // The CRL revoking the end entity.
    X509Crl* crl = nullptr;
    ASSERT_EQ(CreateX509Crl(&crl), TV_OK);
    ASSERT_EQ(SetX509CrlVersion(crl, 1), TV_OK);
    ASSERT_EQ(SetX509CrlSignatureAlgorithmOidAndParameters(crl, c.sigAlg.data(), c.sigParams.data(), c.sigParams.size()),
              TV_OK);
    ASSERT_EQ(SetX509CrlIssuer(crl, caName), TV_OK);
    LibraryTime thisUpdate = Time(1, 6, 2025), nextUpdate = FromNow(30), revoked = Time(15, 5, 2025);
    ASSERT_EQ(SetX509CrlThisUpdate(crl, &thisUpdate), TV_OK);
    ASSERT_EQ(SetX509CrlNextUpdate(crl, &nextUpdate), TV_OK);
    uint32_t index = 99;
    ASSERT_EQ(AddX509CrlRevokedCertificate(crl, eeSerial.data(), eeSerial.size(), &revoked, &index), TV_OK);
    ASSERT_EQ(GetX509CrlRevokedCertificateExtensions(crl, index, &exts), TV_OK);
    AddExt(exts, kReasonCode, 0, Get(EncodeExtensionReasonCode, 1u).bytes);
    ASSERT_EQ(GetX509CrlExtensions(crl, &exts), TV_OK);
    const Bytes crlNumber = Hex("10 01");
    AddExt(exts, kCrlNumber, 0, Get(EncodeExtensionCrlNumber, crlNumber.data(), 2u).bytes);
    ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier(crl, ca), TV_OK);
    sig = Sign([&](uint8_t* o, uint32_t* n) { return GetX509CrlToBeSignedPart(crl, o, n); }, "ca.key");
    ASSERT_EQ(SetX509CrlSignature(crl, sig.data(), sig.size()), TV_OK);
    const Bytes crlDer = Get(EncodeX509Crl, crl).bytes;
    WritePem(dir / "crl.pem", crlDer, "X509 CRL");

    // The request for the end-entity key, signed by that key.
    PKCS10CertReq* req = nullptr;
    ASSERT_EQ(CreatePKCS10CertReq(&req), TV_OK);
    ASSERT_EQ(SetPKCS10CertReqSubject(req, eeName), TV_OK);
    ASSERT_EQ(SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(req, eeKey.oid.data(), eeKey.params.data(),
                                                                 eeKey.params.size()), TV_OK);
    ASSERT_EQ(c.gost ? SetPKCS10CertReqGostR34102012PublicKey(req, eeKey.raw.data(), eeKey.raw.size())
                     : SetPKCS10CertReqPublicKey(req, eeKey.key.data(), eeKey.key.size()), TV_OK);
    ASSERT_EQ(SetPKCS10CertReqSignatureAlgorithmOidAndParameters(req, c.sigAlg.data(), c.sigParams.data(),
                                                                 c.sigParams.size()), TV_OK);
    X509Extensions* wanted = nullptr;
    ASSERT_EQ(CreateX509Extensions(&wanted), TV_OK);
    AddExt(wanted, kKeyUsage, 1, KeyUsage(0x80 | 0x40));
    GeneralNames* san = nullptr;
    ASSERT_EQ(CreateX509GeneralNames(&san), TV_OK);
    ASSERT_EQ(AddX509GeneralName(san, 1, U8("ivanov@tarvelon.test"), 20), TV_OK);
    ASSERT_EQ(AddX509GeneralName(san, 2, U8("ee.tarvelon.test"), 16), TV_OK);
    AddExt(wanted, kSubjectAltName, 0, Get(EncodeX509GeneralNames, san).bytes);
    FreeX509GeneralNames(san);
    ASSERT_EQ(SetPKCS10CertReqExtensions(req, wanted), TV_OK);
    FreeX509Extensions(wanted);
    sig = Sign([&](uint8_t* o, uint32_t* n) { return GetPKCS10CertReqToBeSignedPart(req, o, n); }, "ee.key");
    ASSERT_EQ(SetPKCS10CertReqSignature(req, sig.data(), sig.size()), TV_OK);
    const Bytes reqDer = Get(EncodePKCS10CertReq, req).bytes;
    WriteFile(dir / "req.der", reqDer.data(), reqDer.size());

    FreeCertificate(ca);
    FreeCertificate(ee);
    FreeX509Crl(crl);
    FreePKCS10CertReq(req);
    FreeX509Name(caName);
    FreeX509Name(eeName);

    // OpenSSL's verdicts: every signature checks, and with the CRL the end entity is revoked.
    const std::string caFile = " -CAfile " + (dir / "ca.pem") + " ";
    struct Verdict { std::string cmd; bool ok; const char* says; };
    for (const Verdict& v : std::vector<Verdict>{
             {"verify -check_ss_sig" + caFile + (dir / "ee.pem"), true, ": OK"},
             {"verify -check_ss_sig -crl_check -CRLfile " + (dir / "crl.pem") + caFile + (dir / "ee.pem"), false,
              "certificate revoked"},
             {"crl -noout -verify -in " + (dir / "crl.pem") + caFile, true, "verify OK"},
             {"req -noout -verify -inform DER -in " + (dir / "req.der"), true, "verify OK"}}) {
        Output r = Ossl(v.cmd);
        EXPECT_EQ(r.status == 0, v.ok) << v.cmd << "\n" << r.out;
        EXPECT_NE(r.out.find(v.says), std::string::npos) << v.cmd << "\n" << r.out;
    }

    // OpenSSL's reading of the content, one telling line per object.
    const std::string text = " -noout -text -nameopt utf8,sep_comma_plus -in ";
    struct Dump { std::string cmd; std::vector<std::string> expect; };
    for (const Dump& d : std::vector<Dump>{
             {"x509" + text + (dir / "ca.pem"), {"CN=Тестовый УЦ Тарвелон", "CA:TRUE", "Certificate Sign, CRL Sign"}},
             {"x509" + text + (dir / "ee.pem"), {"TLS Web Client Authentication", "Digital Signature, Non Repudiation",
                                                 "URI:http://pki.tarvelon.test/ca.crl", "Signing Tool of Subject", tool}},
             {"crl" + text + (dir / "crl.pem"), {"Key Compromise", "Serial Number: 2A00000000000007",
                                                 "CRL Number", "4097"}},
             {"req -inform DER" + text + (dir / "req.der"), {"email:ivanov@tarvelon.test", "DNS:ee.tarvelon.test",
                                                             "CN=Иванов Иван Иванович"}}}) {
        Output r = Ossl(d.cmd);
        EXPECT_EQ(r.status, 0) << d.cmd << "\n" << r.out;
        for (const std::string& e : d.expect) EXPECT_NE(r.out.find(e), std::string::npos) << e << "\n" << r.out;
    }

    // Each object read back by the library re-encodes unchanged.
    ExpectRoundTrip<FreeCertificate>(caDer, DecodeCertificate, EncodeCertificate);
    ExpectRoundTrip<FreeCertificate>(eeDer, DecodeCertificate, EncodeCertificate);
    ExpectRoundTrip<FreeX509Crl>(crlDer, DecodeX509Crl, EncodeX509Crl);
    ExpectRoundTrip<FreePKCS10CertReq>(reqDer, DecodePKCS10CertReq, EncodePKCS10CertReq);
}

INSTANTIATE_TEST_SUITE_P(
    , Interop,
    ::testing::Values(Case{"Gost2012_256", true, "-algorithm gost2012_256 -pkeyopt paramset:A", "-md_gost12_256",
                           Packed("1.2.643.7.1.1.3.2"), {}},
                      Case{"Rsa2048", false, "-algorithm RSA -pkeyopt rsa_keygen_bits:2048", "-sha256",
                           Packed("1.2.840.113549.1.1.11"), Hex("05 00")}),
    [](const ::testing::TestParamInfo<Case>& i) { return std::string(i.param.name); });

}  // namespace
