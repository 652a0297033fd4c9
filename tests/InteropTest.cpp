// Interoperability with OpenSSL as an independent peer: a CA certificate, an end-entity certificate,
// a CRL revoking it and a PKCS#10 request are built field by field through the C API, signed by the
// openssl command line over the to-be-signed bytes the library hands out, and then checked by
// `openssl verify`, `openssl crl -verify` and `openssl req -verify`; OCSP responses and requests go
// both ways with `openssl ocsp`; CMS signed messages signed the external way (openssl hashes and
// signs, the library assembles) pass `openssl cms -verify`, and the library reads and trims the
// signers of messages from either side; a time-stamp authority written with the library answers
// `openssl ts -query` and passes `openssl ts -verify`. Once with GOST R 34.10-2012 (256-bit,
// paramset A) keys, once with RSA 2048.
#include <iconv.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>

#include "TestUtil.h"

using namespace tvtest;

namespace {

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
    const int st = pclose(p);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

void WriteFile(const std::string& path, const Bytes& b) {
    std::ofstream f(path, std::ios::binary);
    f.write(reinterpret_cast<const char*>(b.data()), static_cast<std::streamsize>(b.size()));
    ASSERT_TRUE(f.good()) << path;
}

Bytes Pem(const Bytes& der, const char* label) {
    const Got pem = Sized([&](uint8_t* o, uint32_t* n) {
        return EncodePem(der.data(), Size(der), label, reinterpret_cast<char*>(o), n);
    });
    EXPECT_EQ(pem.rc, TV_OK);
    return pem.bytes;
}

void WritePem(const std::string& path, const Bytes& der, const char* label) { WriteFile(path, Pem(der, label)); }

// UTF-8 text in code page 1251, the signer texts' encoding.
Bytes Cp1251(const std::string& utf8) {
    iconv_t cd = iconv_open("CP1251", "UTF-8");
    EXPECT_NE(cd, iconv_t(-1));
    std::string in = utf8;
    Bytes out(in.size());
    char *from = in.data(), *to = reinterpret_cast<char*>(out.data());
    size_t left = in.size(), room = out.size();
    EXPECT_EQ(iconv(cd, &from, &left, &to, &room), 0u) << utf8;
    iconv_close(cd);
    out.resize(out.size() - room);
    return out;
}

// The SignedData of a ContentInfo.
Own<FreeCmsSignedData> SignedDataOf(const Bytes& msg) {
    const auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, msg);
    return Decoded<FreeCmsSignedData>(DecodeCmsSignedData, Get(GetCmsContentInfoContent, info.p).bytes);
}

// A ContentInfo of `type` around an encoded inner value.
Own<FreeCmsContentInfo> Wrapped(const char* type, const Bytes& inner) {
    auto info = Made<FreeCmsContentInfo>(CreateCmsContentInfo);
    EXPECT_EQ(SetCmsContentInfoTypeOid(info, Packed(type).data()), TV_OK);
    EXPECT_EQ(SetCmsContentInfoContent(info, inner.data(), Size(inner)), TV_OK);
    return info;
}

// And back: the id-signedData ContentInfo around a SignedData.
Own<FreeCmsContentInfo> ContentInfoOf(const CmsSignedData* sd) {
    return Wrapped("1.2.840.113549.1.7.2", Get(EncodeCmsSignedData, sd).bytes);
}

// A signingCertificateV2 attribute value (RFC 5035) naming one certificate by its SHA-256 hash.
Bytes SigningCertificateV2(const Bytes& sha256) {
    Own<FreeESSCertIDsV2> ids;
    EXPECT_EQ(CreateESSCertIDsV2(&ids.p), TV_OK);
    EXPECT_EQ(AddESSCertIDv2ToList(ids, Packed("2.16.840.1.101.3.4.2.1").data(), nullptr, 0, sha256.data(), Size(sha256),
                                   nullptr, nullptr, 0), TV_OK);
    return Get(EncodeRsaAttributeSigningCertificateV2Value, ids.p, static_cast<CertificatePolicies*>(nullptr)).bytes;
}

// A signer of the CMS cases from tests/fixtures/pki, with the algorithms its SignerInfo names.
struct CmsSigner {
    std::string cert, ca;  // fixture stems; the key is <cert>.key.pem
    const char* digest;    // openssl dgst digest option
    Bytes digestOid, sigAlg, sigParams;
    std::string issuerCn;  // UTF-8
};

struct Case {
    const char* name;
    bool gost;
    const char* genpkey;  // openssl genpkey arguments
    const char* digest;   // openssl dgst digest option
    Bytes sigAlg, sigParams;
    const CmsSigner *signer, *cosigner;  // the CMS cases' first signer and the one added to its message
};

void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }

// openssl's SubjectPublicKeyInfo taken apart. A GOST key also as the raw point (the OCTET STRING
// content), the form in which a provider hands it out and the GOST key setters take it.
struct Spki {
    Bytes oid, key, params, raw;
};

const uint8_t* U8(const std::string& s) { return reinterpret_cast<const uint8_t*>(s.data()); }

void AddExt(X509Extensions* exts, const char* oid, int critical, const Bytes& value) {
    ASSERT_EQ(AddX509ExtensionsExtension(exts, Packed(oid).data(), critical, value.data(), Size(value)), TV_OK);
}

Own<FreeX509Name> MakeName(const std::string& cn) {
    Own<FreeX509Name> name;
    EXPECT_EQ(CreateX509Name(&name.p), TV_OK);
    for (auto [oid, tag, text] : {std::tuple<const char*, uint8_t, std::string>{"2.5.4.6", ASN1_PRINTABLE_STRING, "RU"},
                                  {"2.5.4.10", ASN1_UTF8_STRING, "Тарвелон"}, {"2.5.4.3", ASN1_UTF8_STRING, cn}})
        EXPECT_EQ(AddX509NameEntry(name, U8(text), uint32_t(text.size()), tag, Packed(oid).data(), 1), TV_OK);
    return name;
}

LibraryTime FromNow(uint32_t days) {
    LibraryTime t{};
    EXPECT_EQ(GetCurrentLibTime(&t), TV_OK);
    EXPECT_EQ(AddDaysToLibTime(&t, days), TV_OK);
    return t;
}

Bytes ExtendedKeyUsage(const char* purpose) {
    Own<FreeExtensionExtendedKeyUsage> eku;
    EXPECT_EQ(CreateExtensionExtendedKeyUsage(&eku.p), TV_OK);
    EXPECT_EQ(AddExtensionExtendedKeyUsage(eku, Packed(purpose).data()), TV_OK);
    return Get(EncodeExtensionExtendedKeyUsage, eku.p).bytes;
}

Bytes Sha1(const Bytes& in) {
    Bytes digest(20);
    EXPECT_EQ(sha1(in.data(), Size(in), digest.data()), TV_OK);
    return digest;
}

Bytes SubjectDer(Certificate* cert) {
    X509Name* name = nullptr;
    EXPECT_EQ(GetCertificateSubject(cert, &name), TV_OK);
    return Get(EncodeX509Name, name).bytes;
}

// The N outputs of a getter written with N (buffer, length) pairs, `get` taking just those pairs:
// sizes first, then the buffers.
template <size_t N, typename G>
std::array<Bytes, N> Parts(G get) {
    std::array<Bytes, N> b;
    std::array<uint32_t, N> n{};
    [&]<size_t... I>(std::index_sequence<I...>) {
        EXPECT_EQ(std::apply(get, std::tuple_cat(std::make_tuple(static_cast<uint8_t*>(nullptr), &n[I])...)), TV_OK);
        (b[I].resize(n[I]), ...);
        EXPECT_EQ(std::apply(get, std::tuple_cat(std::make_tuple(b[I].data(), &n[I])...)), TV_OK);
    }(std::make_index_sequence<N>{});
    return b;
}

// Parts as hex, one line for a readable comparison.
template <size_t N>
std::string Hexes(const std::array<Bytes, N>& parts) {
    std::string s;
    for (const Bytes& p : parts) s += ToHex(p) + " | ";
    return s;
}

// Adds `o` through a call that takes it over on success only.
template <typename Add, typename To, auto Free>
uint32_t Give(Add add, To* to, Own<Free>& o) {
    const uint32_t rc = add(to, o.p);
    if (rc == TV_OK) o.release();
    return rc;
}

// openssl with the GOST engine loaded through a config file: `openssl crl` has no -engine option.
class Interop : public ::testing::TestWithParam<Case> {
protected:
    std::string dir, openssl = "openssl";

    void SetUp() override {
        std::string t = (std::filesystem::temp_directory_path() / "tv_interop_XXXXXX").string();
        ASSERT_NE(mkdtemp(t.data()), nullptr);
        dir = t;
        if (Shell("openssl version").status != 0) GTEST_SKIP() << "openssl is not installed";
        if (!GetParam().gost) return;
        WriteFile(At("gost.cnf"), Text("openssl_conf = init\n[init]\nengines = engines\n[engines]\ngost = gost_engine\n"
                                       "[gost_engine]\ndefault_algorithms = ALL\n"));
        openssl = "OPENSSL_CONF=" + At("gost.cnf") + " openssl";
        if (Shell(openssl + " engine -t gost").status != 0)
            GTEST_SKIP() << "the OpenSSL GOST engine is not installed (libengine-gost-openssl)";
    }
    void TearDown() override {
        if (!dir.empty()) std::filesystem::remove_all(dir);
    }

    std::string At(const std::string& name) const { return dir + "/" + name; }
    Output Ossl(const std::string& args) { return Shell(openssl + " " + args); }

    // Makes a key of the case's algorithm (`as`, by default the test's); returns its
    // SubjectPublicKeyInfo as openssl writes it, and taken apart.
    Spki MakeKey(const std::string& name, Bytes* der, const Case* as = nullptr) {
        const Case& c = as ? *as : GetParam();
        Output g = Ossl("genpkey " + std::string(c.genpkey) + " -out " + At(name));
        EXPECT_EQ(g.status, 0) << g.out;
        Output p = Ossl("pkey -in " + At(name) + " -pubout -outform DER -out " + At(name + ".pub"));
        EXPECT_EQ(p.status, 0) << p.out;
        *der = ReadFile(At(name + ".pub"));
        uint32_t n[3] = {};
        EXPECT_EQ(DecodeSubjectPublicKeyInfo(der->data(), Size(*der), nullptr, &n[0], nullptr, &n[1], nullptr, &n[2]), TV_OK);
        Spki s{Bytes(n[0]), Bytes(n[1]), Bytes(n[2]), {}};
        EXPECT_EQ(DecodeSubjectPublicKeyInfo(der->data(), Size(*der), s.oid.data(), &n[0], s.key.data(), &n[1],
                                             s.params.data(), &n[2]), TV_OK);
        if (c.gost) s.raw = Get(DecodePublicKeyGostR34102012, s.key.data(), n[1]).bytes;
        return s;
    }

    // The signature over `tbs`, as `openssl dgst -sign` writes it.
    Bytes Sign(const Bytes& tbs, const std::string& key, const char* digest = nullptr) {
        WriteFile(At("tbs"), tbs);
        Output s = Ossl("dgst " + std::string(digest ? digest : GetParam().digest) + " -sign " + At(key) + " -out " +
                        At("sig") + " " + At("tbs"));
        EXPECT_EQ(s.status, 0) << s.out;
        return ReadFile(At("sig"));
    }

    // A certificate of `k` for `subject` under `issuer`, signed with the key file `signer` once
    // `extend` has added its extensions; the algorithms are those of `as`, by default the test's case.
    Own<FreeCertificate> Issue(const Bytes& serial, const X509Name* issuer, const X509Name* subject, const Spki& k,
                               const std::string& signer,
                               const std::function<void(Certificate*, X509Extensions*)>& extend = {},
                               const Case* as = nullptr) {
        const Case& c = as ? *as : GetParam();
        const LibraryTime from{2024, 1, 1, 0, 0, 0}, to = FromNow(3650);
        Own<FreeCertificate> cert;
        X509Extensions* exts = nullptr;
        for (uint32_t rc :
             {CreateCertificate(&cert.p), SetCertificateVersion(cert, 2),
              SetCertificateSerialNumber(cert, serial.data(), Size(serial)),
              SetCertificateSignatureAlgorithmOidAndParameters(cert, c.sigAlg.data(), c.sigParams.data(), Size(c.sigParams)),
              SetCertificateIssuer(cert, issuer), SetCertificateSubject(cert, subject),
              SetCertificateValidNotBefore(cert, &from), SetCertificateValidNotAfter(cert, &to),
              SetCertificatePublicKeyAlgorithmOidAndParameters(cert, k.oid.data(), k.params.data(), Size(k.params)),
              c.gost ? SetCertificateGostR34102001PublicKey(cert, k.raw.data(), Size(k.raw))
                     : SetCertificatePublicKey(cert, k.key.data(), Size(k.key)),
              GetCertificateExtensions(cert, &exts)})
            EXPECT_EQ(rc, TV_OK);
        if (extend) extend(cert, exts);
        const Bytes sig = Sign(Get(GetCertificateToBeSignedPart, cert.p).bytes, signer, c.digest);
        EXPECT_EQ(SetCertificateSignature(cert, sig.data(), Size(sig)), TV_OK);
        return cert;
    }

    // The CA of every test: issuer = subject, Cyrillic CN, in ca.pem.
    Spki caKey;
    Own<FreeX509Name> caName;
    Own<FreeCertificate> ca;
    void MakeCa() {
        Bytes spki;
        caKey = MakeKey("ca.key", &spki);
        ASSERT_FALSE(spki.empty());
        caName = MakeName("Тестовый УЦ Тарвелон");
        ca = Issue(Hex("01 C0 FF EE"), caName, caName, caKey, "ca.key", [](Certificate* cert, X509Extensions* exts) {
            AddExt(exts, "2.5.29.19", 1, Get(EncodeExtensionBasicConstraints, 1, 0xFFFFFFFFu).bytes);
            AddExt(exts, "2.5.29.15", 1, Get(EncodeExtensionKeyUsage, 0x04u | 0x02u).bytes);  // keyCertSign | cRLSign
            ASSERT_EQ(SetCertificateSubjectKeyIdentifier(cert), TV_OK);
        });
        WritePem(At("ca.pem"), Get(EncodeCertificate, ca.p).bytes, "CERTIFICATE");
    }

    // Runs openssl, which must succeed (or fail, `ok` false) and print each of `says`.
    Output Expect(const std::string& args, const std::vector<std::string>& says, bool ok = true) {
        Output r = Ossl(args);
        EXPECT_EQ(r.status == 0, ok) << args << "\n" << r.out;
        for (const std::string& s : says) EXPECT_NE(r.out.find(s), std::string::npos) << s << "\n" << args << "\n" << r.out;
        return r;
    }

    // The CMS cases' work directory: the signers' keys, their CAs in cas.pem and the content. Every
    // message is signed a day after the first signer's certificate was issued, and openssl checks
    // the chains at that time, so the fixtures' validity does not run out under the test.
    const std::string text = "Подписываемый документ Тарвелон\r\n";
    const Bytes content = Text(text);
    LibraryTime when{};
    std::string attime;
    void PrepareCms() {
        const Case& c = GetParam();
        Bytes cas;
        for (const CmsSigner* s : {c.signer, c.cosigner}) {
            WriteFile(At(s->cert + ".key"), FixtureFile("pki/" + s->cert + ".key.pem"));
            const Bytes pem = Pem(FixtureFile("pki/" + s->ca + ".der"), "CERTIFICATE");
            cas.insert(cas.end(), pem.begin(), pem.end());
        }
        WriteFile(At("cas.pem"), cas);
        WriteFile(At("content"), content);
        const auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/" + c.signer->cert + ".der"));
        ASSERT_EQ(GetCertificateValidNotBefore(cert, &when), TV_OK);
        ASSERT_EQ(AddDaysToLibTime(&when, 1), TV_OK);
        attime = std::to_string(Epoch(when));
    }

    Bytes Digest(const char* option, const std::string& file) {
        Output d = Ossl("dgst " + std::string(option) + " -binary -out " + At("md") + " " + file);
        EXPECT_EQ(d.status, 0) << d.out;
        return ReadFile(At("md"));
    }

    // A message signed by `s` the external way: openssl hashes the content and signs the attributes
    // the library hands out, the library assembles the message (onto `existing`, when given) with
    // the signer's certificate.
    Bytes SignCms(const CmsSigner& s, bool attached, const LibraryTime* time, const Bytes& existing = {},
                  const RsaAttributes* extra = nullptr) {
        const Bytes digest = Digest(s.digest, At("content")), cert = FixtureFile("pki/" + s.cert + ".der");
        const Bytes tbs = extra ? Get(GetCmsSignedDataToBeSignedPart2, digest.data(), Size(digest), time, extra).bytes
                                : Get(GetCmsSignedDataToBeSignedPart, digest.data(), Size(digest), time).bytes;
        EXPECT_EQ(tbs.empty() ? 0 : tbs[0], 0x31);
        // openssl's CMS signs (and checks) the DER SET of the attributes as `openssl dgst -sign` signs
        // any input, GOST included: `cms -verify` accepts the output as it is, no octets reordered.
        const Bytes sig = Sign(tbs, s.cert + ".key", s.digest);
        const uint8_t* certs[] = {cert.data()};
        const uint32_t lens[] = {Size(cert)};
        const Got msg = Sized([&](uint8_t* o, uint32_t* n) {
            return CreateCmsFileSignature2(attached ? content.data() : nullptr, attached ? Size(content) : 0, digest.data(),
                                           Size(digest), time ? time : &when, s.digestOid.data(), nullptr, 0, cert.data(), Size(cert),
                                           certs, lens, 1, s.sigAlg.data(), s.sigParams.data(), Size(s.sigParams), 1,
                                           extra, 0, sig.data(), Size(sig), existing.empty() ? nullptr : existing.data(),
                                           Size(existing), o, n);
        });
        EXPECT_EQ(msg.rc, TV_OK);
        return time ? msg.bytes : Untimed(msg.bytes, digest, tbs);
    }

    // CreateCmsFileSignature2 wants a signing time along with signed attributes, so the message
    // without one is the timed message with its last signer's attributes filled again, no time given.
    Bytes Untimed(const Bytes& msg, const Bytes& digest, const Bytes& tbs) {
        const auto sd = SignedDataOf(msg);
        CmsSignerInfo* signer = nullptr;
        RsaAttributes* attributes = nullptr;
        uint32_t count = 0;
        for (uint32_t rc : {GetCmsSignedDataSignerInfosCount(sd, &count), GetCmsSignedDataSignerInfo(sd, count - 1, &signer),
                            GetCmsSignerInfoSignedAttributes(signer, &attributes), ClearRsaAttributes(attributes),
                            FillCmsSignerInfoWithSignedAttributes(signer, digest.data(), Size(digest), nullptr)})
            EXPECT_EQ(rc, TV_OK);
        EXPECT_EQ(Get(GetCmsSignerInfoEncodedSignedAttributes, signer).bytes, tbs);
        return Get(EncodeCmsContentInfo, ContentInfoOf(sd).p).bytes;
    }

    // `openssl cms -verify` of a message (detached: given the content), which prints the content
    // when every signer verifies, or fails saying `failure`.
    void CmsVerify(const Bytes& msg, bool detached, const std::string& options = "", const char* failure = nullptr) {
        WriteFile(At("msg.der"), msg);
        Expect("cms -verify -binary -inform DER -in " + At("msg.der") + " -CAfile " + At("cas.pem") + " -attime " + attime +
                   (detached ? " -content " + At("content") : "") + options,
               failure ? std::vector<std::string>{"Verification failure", failure}
                       : std::vector<std::string>{"Verification successful", text},
               !failure);
    }

    static time_t Epoch(const LibraryTime& t) {
        std::tm x{};
        x.tm_year = int(t.year) - 1900, x.tm_mon = int(t.month) - 1, x.tm_mday = int(t.day);
        x.tm_hour = int(t.hour), x.tm_min = int(t.minute), x.tm_sec = int(t.second);
        return timegm(&x);
    }
};

TEST_P(Interop, OpenSslAcceptsBuiltObjects) {
    const Case& c = GetParam();
    ASSERT_NO_FATAL_FAILURE(MakeCa());
    Bytes eeSpki;
    const Spki eeKey = MakeKey("ee.key", &eeSpki);
    ASSERT_FALSE(eeSpki.empty());
    const Bytes eeSerial = Hex("2A 00 00 00 00 00 00 07");
    const auto eeName = MakeName("Иванов Иван Иванович");
    X509Extensions* exts = nullptr;
    const Bytes caTbs = Get(GetCertificateToBeSignedPart, ca.p).bytes;

    // Byte order of a GOST signature between the signer and the BIT STRING: none to convert.
    // Evidence (OpenSSL 3.0.19, its GOST engine, GOST R 34.10-2012-256 paramset A): of the three
    // arrangements of the `openssl dgst -md_gost12_256 -sign` output tried below -- as is, reversed,
    // halves swapped -- `openssl verify -check_ss_sig` accepts "as is" only. Conversely, the last 64
    // octets of a certificate made by `openssl req -x509` pass `openssl dgst -verify` unchanged and
    // fail reversed or swapped. Both sides use the RFC 4491 2.2.2 layout (s, then r, big-endian), so
    // the signer's output goes to SetCertificateSignature as it is. For RSA the probe is trivial.
    const Bytes caSig = Sign(caTbs, "ca.key"), reversed(caSig.rbegin(), caSig.rend());
    Bytes swapped = caSig;
    std::rotate(swapped.begin(), swapped.begin() + swapped.size() / 2, swapped.end());
    std::string accepted;
    for (const auto& [sig, label] : {std::pair{caSig, "as is"}, {reversed, "reversed"}, {swapped, "halves swapped"}}) {
        ASSERT_EQ(SetCertificateSignature(ca, sig.data(), Size(sig)), TV_OK);
        WritePem(At("probe.pem"), Get(EncodeCertificate, ca.p).bytes, "CERTIFICATE");
        if (Ossl("verify -check_ss_sig -CAfile " + At("probe.pem") + " " + At("probe.pem")).status == 0) accepted += label;
    }
    EXPECT_EQ(accepted, "as is");
    ASSERT_EQ(SetCertificateSignature(ca, caSig.data(), Size(caSig)), TV_OK);
    EXPECT_EQ(Get(GetCertificateToBeSignedPart, ca.p).bytes, caTbs) << "storing the signature changed the signed bytes";
    const Bytes caDer = Get(EncodeCertificate, ca.p).bytes;
    WritePem(At("ca.pem"), caDer, "CERTIFICATE");

    // The end entity, issued by the CA.
    const std::string tool = "СКЗИ «Тарвелон-CSP»";
    const auto ee = Issue(eeSerial, caName, eeName, eeKey, "ca.key", [&](Certificate* cert, X509Extensions* x) {
        AddExt(x, "2.5.29.15", 1, Get(EncodeExtensionKeyUsage, 0x80u | 0x40u).bytes);  // digitalSignature | nonRepudiation
        AddExt(x, "2.5.29.37", 0, ExtendedKeyUsage("1.3.6.1.5.5.7.3.2"));           // clientAuth
        AddExt(x, "1.2.643.100.111", 0, Get(EncodeExtensionSubjectSignTool, U8(tool), uint32_t(tool.size())).bytes);
        ASSERT_EQ(SetCertificateExtensionCrlDistributionPoints(cert, "http://pki.tarvelon.test/ca.crl"), TV_OK);
        ASSERT_EQ(SetCertificateAuthorityKeyIdentifier(cert, ca), TV_OK);
    });
    const Bytes eeDer = Get(EncodeCertificate, ee.p).bytes;
    WritePem(At("ee.pem"), eeDer, "CERTIFICATE");
    EXPECT_NE(std::search(eeDer.begin(), eeDer.end(), eeSpki.begin(), eeSpki.end()), eeDer.end())
        << "the certificate does not carry openssl's SubjectPublicKeyInfo unchanged";
    Bytes sig;

    // The CRL revoking the end entity.
    Own<FreeX509Crl> crl;
    ASSERT_EQ(CreateX509Crl(&crl.p), TV_OK);
    const LibraryTime thisUpdate{2025, 6, 1, 0, 0, 0}, nextUpdate = FromNow(30), revoked{2025, 5, 15, 0, 0, 0};
    const Bytes crlNumber = Hex("10 01");
    uint32_t index = 99;
    for (uint32_t rc : {SetX509CrlVersion(crl, 1), SetX509CrlIssuer(crl, caName),
                        SetX509CrlSignatureAlgorithmOidAndParameters(crl, c.sigAlg.data(), c.sigParams.data(),
                                                                     Size(c.sigParams)),
                        SetX509CrlThisUpdate(crl, &thisUpdate), SetX509CrlNextUpdate(crl, &nextUpdate),
                        AddX509CrlRevokedCertificate(crl, eeSerial.data(), Size(eeSerial), &revoked, &index),
                        GetX509CrlRevokedCertificateExtensions(crl, index, &exts)})
        ASSERT_EQ(rc, TV_OK);
    AddExt(exts, "2.5.29.21", 0, Get(EncodeExtensionReasonCode, 1u).bytes);
    ASSERT_EQ(GetX509CrlExtensions(crl, &exts), TV_OK);
    AddExt(exts, "2.5.29.20", 0, Get(EncodeExtensionCrlNumber, crlNumber.data(), 2u).bytes);
    ASSERT_EQ(SetX509CrlAuthorityKeyIdentifier(crl, ca), TV_OK);
    sig = Sign(Get(GetX509CrlToBeSignedPart, crl.p).bytes, "ca.key");
    ASSERT_EQ(SetX509CrlSignature(crl, sig.data(), Size(sig)), TV_OK);
    const Bytes crlDer = Get(EncodeX509Crl, crl.p).bytes;
    WritePem(At("crl.pem"), crlDer, "X509 CRL");

    // The request for the end-entity key, signed by that key.
    Own<FreePKCS10CertReq> req;
    Own<FreeX509Extensions> wanted;
    Own<FreeX509GeneralNames> san;
    for (uint32_t rc : {CreatePKCS10CertReq(&req.p), CreateX509Extensions(&wanted.p), CreateX509GeneralNames(&san.p),
                        SetPKCS10CertReqSubject(req, eeName),
                        SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(req, eeKey.oid.data(), eeKey.params.data(),
                                                                           Size(eeKey.params)),
                        c.gost ? SetPKCS10CertReqGostR34102012PublicKey(req, eeKey.raw.data(), Size(eeKey.raw))
                               : SetPKCS10CertReqPublicKey(req, eeKey.key.data(), Size(eeKey.key)),
                        SetPKCS10CertReqSignatureAlgorithmOidAndParameters(req, c.sigAlg.data(), c.sigParams.data(),
                                                                           Size(c.sigParams)),
                        AddX509GeneralName(san, 1, U8("ivanov@tarvelon.test"), 20),
                        AddX509GeneralName(san, 2, U8("ee.tarvelon.test"), 16)})
        ASSERT_EQ(rc, TV_OK);
    AddExt(wanted, "2.5.29.15", 1, Get(EncodeExtensionKeyUsage, 0x80u | 0x40u).bytes);
    AddExt(wanted, "2.5.29.17", 0, Get(EncodeX509GeneralNames, san.p).bytes);
    ASSERT_EQ(SetPKCS10CertReqExtensions(req, wanted), TV_OK);
    sig = Sign(Get(GetPKCS10CertReqToBeSignedPart, req.p).bytes, "ee.key");
    ASSERT_EQ(SetPKCS10CertReqSignature(req, sig.data(), Size(sig)), TV_OK);
    const Bytes reqDer = Get(EncodePKCS10CertReq, req.p).bytes;
    WriteFile(At("req.der"), reqDer);

    // OpenSSL's verdicts: every signature checks, and with the CRL the end entity is revoked.
    const std::string caFile = " -CAfile " + At("ca.pem") + " ";
    struct Verdict { std::string cmd; bool ok; const char* says; };
    for (const Verdict& v : std::vector<Verdict>{
             {"verify -check_ss_sig" + caFile + At("ee.pem"), true, ": OK"},
             {"verify -check_ss_sig -crl_check -CRLfile " + At("crl.pem") + caFile + At("ee.pem"), false,
              "certificate revoked"},
             {"crl -noout -verify -in " + At("crl.pem") + caFile, true, "verify OK"},
             {"req -noout -verify -inform DER -in " + At("req.der"), true, "verify OK"}}) {
        Expect(v.cmd, {v.says}, v.ok);
    }

    // OpenSSL's reading of the content, one telling line per object.
    const std::string text = " -noout -text -nameopt utf8,sep_comma_plus -in ";
    struct Dump { std::string cmd; std::vector<std::string> expect; };
    for (const Dump& d : std::vector<Dump>{
             {"x509" + text + At("ca.pem"), {"CN=Тестовый УЦ Тарвелон", "CA:TRUE", "Certificate Sign, CRL Sign"}},
             {"x509" + text + At("ee.pem"), {"TLS Web Client Authentication", "Digital Signature, Non Repudiation",
                                             "URI:http://pki.tarvelon.test/ca.crl", "Signing Tool of Subject", tool}},
             {"crl" + text + At("crl.pem"), {"Key Compromise", "Serial Number: 2A00000000000007", "CRL Number", "4097"}},
             {"req -inform DER" + text + At("req.der"), {"email:ivanov@tarvelon.test", "DNS:ee.tarvelon.test",
                                                         "CN=Иванов Иван Иванович"}}}) {
        Expect(d.cmd, d.expect);
    }

    // Each object read back by the library re-encodes unchanged.
    EXPECT_EQ(Get(EncodeCertificate, Decoded<FreeCertificate>(DecodeCertificate, caDer).p).bytes, caDer);
    EXPECT_EQ(Get(EncodeCertificate, Decoded<FreeCertificate>(DecodeCertificate, eeDer).p).bytes, eeDer);
    EXPECT_EQ(Get(EncodeX509Crl, Decoded<FreeX509Crl>(DecodeX509Crl, crlDer).p).bytes, crlDer);
    EXPECT_EQ(Get(EncodePKCS10CertReq, Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, reqDer).p).bytes, reqDer);
}

// OCSP both ways, a delegated responder answering for the CA. openssl asks about three certificates
// and checks the library's signed answer, once per kind of responder ID; then the library asks about
// two of them and `openssl ocsp` answers from its index.
TEST_P(Interop, OpenSslExchangesOcspMessages) {
    const Case& c = GetParam();
    const char* kNonce = "1.3.6.1.5.5.7.48.1.2";
    ASSERT_NO_FATAL_FAILURE(MakeCa());
    // What is asked about, the answer, and how openssl's summary names it. Only the end entity is a
    // certificate: a CertID names the others by serial alone.
    const struct Entry { Bytes serial; uint32_t status; std::string ask, says; } entries[] = {
        {Hex("2A 00 00 00 00 00 00 07"), TV_OCSP_STATUS_GOOD, " -cert " + At("ee.pem"), "ee.pem: good"},
        {Hex("2A 00 00 00 00 00 00 08"), TV_OCSP_STATUS_REVOKED, " -serial 0x2A00000000000008", "0x2A00000000000008: revoked"},
        {Hex("2A 00 00 00 00 00 00 09"), TV_OCSP_STATUS_UNKNOWN, " -serial 0x2A00000000000009", "0x2A00000000000009: unknown"}};
    Bytes spki;
    const Spki eeKey = MakeKey("ee.key", &spki), rsKey = MakeKey("rs.key", &spki);
    const auto ee = Issue(entries[0].serial, caName, MakeName("Иванов Иван Иванович"), eeKey, "ca.key");
    const auto rs = Issue(Hex("0C 5B"), caName, MakeName("OCSP-служба Тарвелон"), rsKey, "ca.key",
                          [](Certificate*, X509Extensions* x) {
                              AddExt(x, "2.5.29.37", 0, ExtendedKeyUsage("1.3.6.1.5.5.7.3.9"));  // OCSPSigning
                          });
    const Bytes rsDer = Get(EncodeCertificate, rs.p).bytes;
    WritePem(At("ee.pem"), Get(EncodeCertificate, ee.p).bytes, "CERTIFICATE");
    WritePem(At("rs.pem"), rsDer, "CERTIFICATE");

    // CertIDs (RFC 6960 4.1.1) as openssl writes them: SHA-1 with NULL parameters, over the CA's
    // subject DER and the contents of its key's BIT STRING.
    const Bytes sha1Oid = Packed("1.3.14.3.2.26"), null = Hex("05 00"), nameHash = Sha1(SubjectDer(ca)),
                keyHash = Sha1(caKey.key), nonceOid = Packed(kNonce);
    auto certId = [&](const Bytes& serial) { return Hexes<5>({sha1Oid, null, nameHash, keyHash, serial}); };

    // openssl asks: its first CertID is the one computed here, and its nonce goes into the answer.
    std::string ask = "ocsp -issuer " + At("ca.pem");
    for (const Entry& e : entries) ask += e.ask;
    Expect(ask + " -reqout " + At("req.der"), {});
    const Bytes reqDer = ReadFile(At("req.der"));
    const auto theirs = Decoded<FreeOcspRequest>(DecodeOcspRequest, reqDer);
    EXPECT_EQ(Get(EncodeOcspRequest, theirs.p).bytes, reqDer);
    EXPECT_EQ(Hexes(Parts<5>([&](auto... o) { return GetOcspRequestCertRequest(theirs, 0, o..., nullptr); })),
              certId(entries[0].serial));
    X509Extensions* exts = nullptr;
    ASSERT_EQ(GetOcspRequestExtensions(theirs, &exts), TV_OK);
    const Bytes nonce = Get(GetX509ExtensionsExtensionValue, exts, nonceOid.data()).bytes;
    ASSERT_FALSE(nonce.empty());

    // The answer, signed by the responder that `kind` and `id` name.
    const LibraryTime thisUpdate{2025, 6, 1, 0, 0, 0}, nextUpdate = FromNow(30), revokedAt{2025, 5, 15, 0, 0, 0};
    auto respond = [&](uint32_t kind, const Bytes& id) {
        Own<FreeOcspBasicResponse> basic;
        const LibraryTime now = FromNow(0);
        for (uint32_t rc : {CreateOcspBasicResponse(&basic.p), SetOcspBasicResponseResponderID(basic, kind, id.data(), Size(id)),
                            SetOcspBasicResponseProducedAt(basic, &now), GetOcspBasicResponseExtensions(basic, &exts)})
            EXPECT_EQ(rc, TV_OK);
        AddExt(exts, kNonce, 0, nonce);
        for (const Entry& e : entries) {
            Own<FreeOcspSingleResponse> single;
            for (uint32_t rc :
                 {CreateOcspSingleResponse(&single.p),
                  SetOcspSingleResponseCertID(single, sha1Oid.data(), null.data(), Size(null), nameHash.data(), Size(nameHash),
                                              keyHash.data(), Size(keyHash), e.serial.data(), Size(e.serial)),
                  e.status == TV_OCSP_STATUS_GOOD      ? SetOcspSingleResponseCertStatusGood(single)
                  : e.status == TV_OCSP_STATUS_REVOKED ? SetOcspSingleResponseCertStatusRevoked(single, &revokedAt, 1)  // keyCompromise
                                                       : SetOcspSingleResponseCertStatusUnknown(single),
                  SetOcspSingleResponseThisUpdate(single, &thisUpdate), SetOcspSingleResponseNextUpdate(single, &nextUpdate),
                  Give(AddOcspBasicResponseSingleResponse, basic.p, single)})
                EXPECT_EQ(rc, TV_OK);
        }
        auto rsCopy = Decoded<FreeCertificate>(DecodeCertificate, rsDer);
        for (uint32_t rc : {Give(AddOcspBasicResponseCertificate, basic.p, rsCopy),
                            SetOcspBasicResponseSignatureAlgorithmOidAndParameters(basic, c.sigAlg.data(), c.sigParams.data(),
                                                                                   Size(c.sigParams))})
            EXPECT_EQ(rc, TV_OK);
        const Bytes sig = Sign(Get(GetOcspBasicResponseToBeSignedPart, basic.p).bytes, "rs.key");
        EXPECT_EQ(SetOcspBasicResponseSignature(basic, sig.data(), Size(sig)), TV_OK);
        const Bytes basicDer = Get(EncodeOcspBasicResponse, basic.p).bytes;
        Own<FreeOcspResponse> response;
        for (uint32_t rc : {CreateOcspResponse(&response.p), SetOcspResponseStatus(response, 0),
                            SetOcspResponseBytes(response, Packed("1.3.6.1.5.5.7.48.1.1").data(), basicDer.data(),
                                                 Size(basicDer))})
            EXPECT_EQ(rc, TV_OK);
        return Get(EncodeOcspResponse, response.p).bytes;
    };

    // Checked against the request as sent (nonce included), and matched by openssl to the
    // certificates it asks about in its summary.
    const std::string verify = " -respin " + At("resp.der") + " -CAfile " + At("ca.pem");
    for (const auto& [kind, id] :
         {std::pair{TV_OCSP_RESPONDER_BY_NAME, SubjectDer(rs)}, {TV_OCSP_RESPONDER_BY_KEY, Sha1(rsKey.key)}}) {
        SCOPED_TRACE(kind == TV_OCSP_RESPONDER_BY_NAME ? "responder by name" : "responder by key");
        const Bytes der = respond(kind, id);
        EXPECT_EQ(Get(EncodeOcspResponse, Decoded<FreeOcspResponse>(DecodeOcspResponse, der).p).bytes, der);
        WriteFile(At("resp.der"), der);
        Expect("ocsp -resp_text -issuer " + At("ca.pem") + " -reqin " + At("req.der") + verify,
               {"Response verify OK", "Cert Status: good", "Cert Status: revoked", "Revocation Reason: keyCompromise",
                "Cert Status: unknown"});
        const Output summary = Expect(ask + " -no_nonce" + verify, {"Response verify OK", entries[0].says, entries[1].says,
                                                                   "Reason: keyCompromise", entries[2].says});
        EXPECT_EQ(summary.out.find("WARNING"), std::string::npos) << summary.out;
    }

    // The library asks about the end entity and the revoked serial; openssl answers from its index.
    Own<FreeOcspRequest> ours;
    ASSERT_EQ(CreateOcspRequest(&ours.p), TV_OK);
    for (const Entry& e : {entries[0], entries[1]})
        ASSERT_EQ(AddOcspRequestCertRequest(ours, sha1Oid.data(), null.data(), Size(null), nameHash.data(), Size(nameHash),
                                            keyHash.data(), Size(keyHash), e.serial.data(), Size(e.serial), nullptr), TV_OK);
    const Bytes ourNonce = Get(EncodeExtensionOcspNonce, U8("tarvelon-nonce-1"), 16u).bytes;
    ASSERT_EQ(GetOcspRequestExtensions(ours, &exts), TV_OK);
    AddExt(exts, kNonce, 0, ourNonce);
    WriteFile(At("ours.der"), Get(EncodeOcspRequest, ours.p).bytes);
    Expect("ocsp -req_text -reqin " + At("ours.der"),
           {"Serial Number: 2A00000000000007", "Serial Number: 2A00000000000008", "OCSP Nonce"});
    WriteFile(At("index.txt"), Text("V\t351231000000Z\t\t2A00000000000007\tunknown\t/CN=EE\n"
                                    "R\t351231000000Z\t250515000000Z,keyCompromise\t2A00000000000008\tunknown\t/CN=R\n"));
    Expect("ocsp -index " + At("index.txt") + " -CA " + At("ca.pem") + " -rsigner " + At("rs.pem") + " -rkey " +
               At("rs.key") + " -ndays 1 -reqin " + At("ours.der") + " -respout " + At("r.der"), {});
    // Its answer through the library (every field of openssl's answers is read in the OCSP test):
    // the statuses of our two CertIDs, in order, and our nonce.
    const auto answer = Decoded<FreeOcspResponse>(DecodeOcspResponse, ReadFile(At("r.der")));
    const auto [type, basicDer] = Parts<2>([&](auto... o) { return GetOcspResponseBytes(answer, o...); });
    const auto basic = Decoded<FreeOcspBasicResponse>(DecodeOcspBasicResponse, basicDer);
    for (uint32_t i : {0u, 1u}) {
        OcspSingleResponse* single = nullptr;
        uint32_t status = 99;
        ASSERT_EQ(GetOcspBasicResponseSingleResponse(basic, i, &single), TV_OK);
        EXPECT_EQ(Hexes(Parts<5>([&](auto... o) { return GetOcspSingleResponseCertID(single, o...); })),
                  certId(entries[i].serial));
        EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
        EXPECT_EQ(status, entries[i].status);
    }
    ASSERT_EQ(GetOcspBasicResponseExtensions(basic, &exts), TV_OK);
    EXPECT_EQ(Get(GetX509ExtensionsExtensionValue, exts, nonceOid.data()).bytes, ourNonce) << "the nonce did not come back";
}

// The external-signature workflow with openssl as the signer's provider, checked by `openssl cms
// -verify`: with and without signing time, detached and attached; a second signer added to the
// message (one digestAlgorithms entry when both use the same digest); CAdES-BES with the signer's
// certificate hash, which `-cades` checks.
TEST_P(Interop, OpenSslVerifiesExternallySignedCms) {
    const Case& c = GetParam();
    ASSERT_NO_FATAL_FAILURE(PrepareCms());
    for (const LibraryTime* time : {&when, static_cast<LibraryTime*>(nullptr)})
        for (const bool attached : {true, false}) {
            SCOPED_TRACE(std::string(time ? "with" : "without") + " signing time, " + (attached ? "attached" : "detached"));
            CmsVerify(SignCms(*c.signer, attached, time), !attached);
        }

    const Bytes both = SignCms(*c.cosigner, true, &when, SignCms(*c.signer, true, &when));
    CmsVerify(both, false);
    const auto sd = SignedDataOf(both);
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, sd.p), "2");
    EXPECT_EQ(Counted(GetCmsSignedDataDigestAlgorithmsCount, sd.p), c.signer->digestOid == c.cosigner->digestOid ? "1" : "2");

    const Bytes certHash = Digest("-sha256", Fixture("pki/" + c.signer->cert + ".der"));
    for (const bool right : {true, false}) {
        SCOPED_TRACE(right ? "the signer's certificate hash" : "a wrong hash");
        Bytes hash = certHash;
        hash.back() ^= right ? 0 : 1;
        Own<FreeRsaAttributes> extra;
        uint32_t index = 0;
        const Bytes value = SigningCertificateV2(hash);
        ASSERT_EQ(CreateRsaAttributes(&extra.p), TV_OK);
        ASSERT_EQ(AddRsaAttributesAttributeWithValue(extra, Packed("1.2.840.113549.1.9.16.2.47").data(), &index, value.data(),
                                                     Size(value)), TV_OK);
        CmsVerify(SignCms(*c.signer, true, &when, {}, extra), false, " -cades", right ? nullptr : "ess cert id not found");
    }
}

// Signer time and text of openssl's and the library's messages, and signers removed, from buffers
// and from files.
TEST_P(Interop, ReadsAndRemovesSignersOfCms) {
    const Case& c = GetParam();
    ASSERT_NO_FATAL_FAILURE(PrepareCms());
    const CmsSigner& s = *c.signer;
    WritePem(At("signer.pem"), FixtureFile("pki/" + s.cert + ".der"), "CERTIFICATE");
    const time_t before = time(nullptr);
    Expect("cms -sign -binary -nodetach -outform DER -in " + At("content") + " -signer " + At("signer.pem") + " -inkey " +
               At(s.cert + ".key") + " -out " + At("theirs.der"), {});
    const time_t after = time(nullptr);
    const Bytes theirs = ReadFile(At("theirs.der"));
    LibraryTime t{};
    // The EE serials hold unprintable octets, so the text is the issuer's common name alone.
    EXPECT_EQ(Get(GetBufferCmsSignatureTimeAndCN, 1u, theirs.data(), Size(theirs), &t).bytes, Cp1251(s.issuerCn));
    EXPECT_LE(before, Epoch(t));
    EXPECT_LE(Epoch(t), after);
    EXPECT_EQ(Get(DeleteBufferCmsSignerInfo, 1u, theirs.data(), Size(theirs)).bytes, content);

    const Bytes both = SignCms(*c.cosigner, true, &when, SignCms(s, true, &when));
    for (const auto& [n, signer] : {std::pair{1u, c.signer}, {2u, c.cosigner}}) {
        t = {};
        EXPECT_EQ(Get(GetBufferCmsSignatureTimeAndCN, n, both.data(), Size(both), &t).bytes, Cp1251(signer->issuerCn)) << n;
        EXPECT_TRUE(SameTime(t, when)) << n;
    }
    const Bytes one = Get(DeleteBufferCmsSignerInfo, 2u, both.data(), Size(both)).bytes;
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, SignedDataOf(one).p), "1");
    EXPECT_EQ(Get(GetBufferCmsSignatureTimeAndCN, 1u, one.data(), Size(one), &t).bytes, Cp1251(s.issuerCn));
    CmsVerify(one, false);

    WriteFile(At("both.der"), both);
    t = {};
    EXPECT_EQ(Get(GetCmsSignatureTimeAndCN, 2u, At("both.der").c_str(), &t).bytes, Cp1251(c.cosigner->issuerCn));
    EXPECT_TRUE(SameTime(t, when));
    for (const auto& [n, from, expect] : {std::tuple{2u, "both.der", one}, {1u, "theirs.der", content}}) {
        EXPECT_EQ(DeleteCmsSignerInfo(n, At(from).c_str(), At("out").c_str()), TV_OK) << from;
        EXPECT_EQ(ReadFile(At("out")), expect) << from;
    }
    EXPECT_EQ(GetCmsSignatureTimeAndCN(1, At("missing").c_str(), &t, nullptr, nullptr), TV_ERR_FILE_OPEN);
    EXPECT_EQ(DeleteCmsSignerInfo(1, At("missing").c_str(), At("out").c_str()), TV_ERR_FILE_OPEN);
}

const CmsSigner kEeGost{"ee_gost2012_256", "ca_gost2012_256", "-md_gost12_256", Packed("1.2.643.7.1.1.2.2"),
                        Packed("1.2.643.7.1.1.1.1"), {}, "Тестовый УЦ ГОСТ 2012-256"},
                kEeRsa{"ee_rsa", "ca_rsa", "-sha256", Packed("2.16.840.1.101.3.4.2.1"), Packed("1.2.840.113549.1.1.1"),
                       Hex("05 00"), "Тестовый УЦ RSA"},
                kCaRsa{"ca_rsa", "ca_rsa", "-sha256", Packed("2.16.840.1.101.3.4.2.1"), Packed("1.2.840.113549.1.1.1"),
                       Hex("05 00"), "Тестовый УЦ RSA"};

const Case kGost{"Gost2012_256", true, "-algorithm gost2012_256 -pkeyopt paramset:A", "-md_gost12_256",
                 Packed("1.2.643.7.1.1.3.2"), {}, &kEeGost, &kEeRsa},
           kRsa{"Rsa2048", false, "-algorithm RSA -pkeyopt rsa_keygen_bits:2048", "-sha256",
                Packed("1.2.840.113549.1.1.11"), Hex("05 00"), &kEeRsa, &kCaRsa};

std::string CaseName(const ::testing::TestParamInfo<Case>& i) { return i.param.name; }

INSTANTIATE_TEST_SUITE_P(, Interop, ::testing::Values(kGost, kRsa), CaseName);

// Time stamps from an authority written with the library, a GOST R 34.10-2012-256 one and an RSA
// one, each certified for time stamping by the pki CA of its algorithm. Both answer in one test so
// that their tokens can travel together in a SeveralData; it runs under the GOST case alone, whose
// openssl has the engine loaded (RSA stays with the default provider).
class TimeStamps : public Interop {};

// openssl asks (digest, nonce, certReq, a policy) and checks the answer: `ts -reply -text` shows
// what the TSTInfo says, `ts -verify` checks the imprint, nonce, policy and TSA name against the
// query, the ESS signingCertificateV2 against the signer and the chain up to the pki CA. Then both
// tokens go through one SeveralData's encoding, come out unchanged and still verify.
TEST_P(TimeStamps, OpenSslVerifiesTokensOfLibraryTsas) {
    const char* kPolicy = "1.3.6.1.4.1.99999.31.1";
    const Bytes tstInfoType = Packed("1.2.840.113549.1.9.16.1.4");
    WriteFile(At("content"), content);
    // The SignerInfo's algorithms and the issuing CA are those of the case's CMS signer.
    const struct Tsa { const Case* c; Bytes certSerial, serial; std::string cn, says; } tsas[] = {
        {&kGost, Hex("75 A0 00 01"), Hex("01 5E 71 A1 00 01"), "TSA GOST 2012-256", "Serial number: 0x015E71A10001"},
        {&kRsa, Hex("75 A0 00 02"), Hex("01 5E 71 A1 00 02"), "TSA RSA", "Serial number: 0x015E71A10002"}};
    // Against the query of `asked` (by default the TSA's own), which only that query passes.
    auto verify = [&](const Tsa& t, const std::string& in, const Tsa* asked = nullptr) {
        const std::string f = At(t.c->name);
        Expect("ts -verify -queryfile " + At((asked ? asked : &t)->c->name) + ".tsq " + in + " -CAfile " + f +
                   ".ca.pem -untrusted " + f + ".pem",
               {asked ? "message imprint mismatch" : "Verification: OK"}, !asked);
    };
    std::vector<Bytes> responses;
    for (const Tsa& t : tsas) {
        const Case& c = *t.c;
        const CmsSigner& s = *c.signer;
        const std::string f = At(c.name);  // this TSA's files
        SCOPED_TRACE(c.name);

        const Bytes caDer = FixtureFile("pki/" + s.ca + ".der");
        WritePem(f + ".ca.pem", caDer, "CERTIFICATE");
        WriteFile(f + ".ca.key", FixtureFile("pki/" + s.ca + ".key.pem"));
        const auto ca = Decoded<FreeCertificate>(DecodeCertificate, caDer);
        X509Name* issuer = nullptr;
        ASSERT_EQ(GetCertificateSubject(ca, &issuer), TV_OK);
        Bytes spki;
        const auto cert = Issue(t.certSerial, issuer, MakeName(t.cn), MakeKey(c.name + std::string(".key"), &spki, &c),
                                c.name + std::string(".ca.key"), [&](Certificate* x, X509Extensions* exts) {
                                    // RFC 3161 2.3: timeStamping alone, critical
                                    AddExt(exts, "2.5.29.37", 1, ExtendedKeyUsage("1.3.6.1.5.5.7.3.8"));
                                    ASSERT_EQ(SetCertificateAuthorityKeyIdentifier(x, ca), TV_OK);
                                }, &c);
        const Bytes certDer = Get(EncodeCertificate, cert.p).bytes;
        WriteFile(f + ".der", certDer);
        WritePem(f + ".pem", certDer, "CERTIFICATE");

        Expect("ts -query -data " + At("content") + " " + s.digest + " -cert -tspolicy " + kPolicy + " -out " + f + ".tsq", {});
        const Bytes query = ReadFile(f + ".tsq");
        uint32_t version = 0, certReq = 0;
        Own<FreeX509Extensions> queryExts;
        const auto [hashOid, hashParams, imprint, policy, nonce] = Parts<5>([&](auto... o) {
            FreeX509Extensions(queryExts.release());
            return DecodeTimeStampReq(query.data(), Size(query), &version, o..., &certReq, &queryExts.p);
        });
        EXPECT_EQ(Hexes<3>({hashOid, imprint, policy}), Hexes<3>({s.digestOid, Digest(s.digest, At("content")), Packed(kPolicy)}));
        EXPECT_EQ(version, 1u);
        EXPECT_EQ(certReq, 1u);
        ASSERT_FALSE(nonce.empty());

        LibraryPreciseTime genTime{};
        ASSERT_EQ(GetCurrentLibPreciseTime(&genTime), TV_OK);
        genTime.millisecond = 250;  // the clock gives whole seconds
        const Accuracy accuracy{1, 500, 0};
        const Bytes subject = SubjectDer(cert);
        Own<FreeX509GeneralName> tsaName;
        ASSERT_EQ(AllocX509GeneralNameValue(&tsaName.p, 4, subject.data(), Size(subject)), TV_OK);  // directoryName
        const Bytes tst = Get(EncodeTSTInfo, 1u, policy.data(), hashOid.data(), hashParams.data(), Size(hashParams),
                              imprint.data(), Size(imprint), t.serial.data(), Size(t.serial), &genTime, &accuracy, 0u,
                              nonce.data(), Size(nonce), tsaName.p, nullptr).bytes;
        WriteFile(f + ".tst", tst);

        // The token: eContent the TSTInfo, the signed attributes naming its type, its digest and the
        // TSA certificate (by SHA-256 for GOST too, which openssl accepts), signed by openssl.
        const Bytes typeValue = Get(EncodeRsaAttributeContentTypeValue, tstInfoType.data()).bytes,
                    tstDigest = Digest(s.digest, f + ".tst"),
                    digestValue = Get(EncodeRsaAttributeMessageDigestValue, tstDigest.data(), Size(tstDigest)).bytes,
                    certValue = SigningCertificateV2(Digest("-sha256", f + ".der"));
        const auto sd = Made<FreeCmsSignedData>(CreateCmsSignedData);
        CmsSignerInfo* signer = nullptr;
        RsaAttributes* attributes = nullptr;
        uint32_t index = 0;
        for (uint32_t rc :
             {SetCmsSignedDataVersion(sd, 3), AddCmsSignedDataDigestAlgorithmOidAndParameters(sd, s.digestOid.data(), nullptr, 0),
              SetCmsSignedDataContentTypeOid(sd, tstInfoType.data()), SetCmsSignedDataContent(sd, tst.data(), Size(tst)),
              AddCmsSignedDataEncodedCertificate(sd, TV_CMS_CERT_CERTIFICATE, certDer.data(), Size(certDer)),
              AddCmsSignedDataSignerInfo(sd, &signer), SetCmsSignerInfoVersion(signer, 1),
              SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(signer, issuer, t.certSerial.data(), Size(t.certSerial)),
              SetCmsSignerInfoDigestAlgorithmOidAndParameters(signer, s.digestOid.data(), nullptr, 0),
              GetCmsSignerInfoSignedAttributes(signer, &attributes),
              AddRsaAttributesAttributeWithValue(attributes, Packed("1.2.840.113549.1.9.3").data(), &index, typeValue.data(),
                                                 Size(typeValue)),
              AddRsaAttributesAttributeWithValue(attributes, Packed("1.2.840.113549.1.9.4").data(), &index, digestValue.data(),
                                                 Size(digestValue)),
              AddRsaAttributesAttributeWithValue(attributes, Packed("1.2.840.113549.1.9.16.2.47").data(), &index,
                                                 certValue.data(), Size(certValue)),
              SetCmsSignerInfoSignatureAlgorithmOidAndParameters(signer, s.sigAlg.data(), s.sigParams.data(), Size(s.sigParams))})
            ASSERT_EQ(rc, TV_OK);
        const Bytes sig = Sign(Get(GetCmsSignerInfoEncodedSignedAttributes, signer).bytes, c.name + std::string(".key"), s.digest);
        ASSERT_EQ(SetCmsSignerInfoSignature(signer, sig.data(), Size(sig)), TV_OK);
        const Bytes resp = Get(EncodeTimeStampResp, 0u, nullptr, 0u, ContentInfoOf(sd).p).bytes;
        WriteFile(f + ".tsr", resp);

        const bool sign = nonce.size() > 1 && nonce[0] == 0;  // openssl shows the value, not the octets
        Expect("ts -reply -text -in " + f + ".tsr", {"Status: Granted.", std::string("Policy OID: ") + kPolicy, t.says,
                                                     "Nonce: 0x" + PlainHex(Bytes(nonce.begin() + sign, nonce.end())),
                                                     "Accuracy: 0x01 seconds, 0x01F4 millis",
                                                     ".25 ", "TSA: DirName:", t.cn});
        verify(t, "-in " + f + ".tsr");
        responses.push_back(resp);
    }

    auto list = Made<FreeSeveralData>(CreateSeveralData);
    for (const Bytes& resp : responses) {
        uint32_t status = 99, failInfo = 99;
        Own<FreePKIFreeText> text;
        Own<FreeCmsContentInfo> token;
        ASSERT_EQ(DecodeTimeStampResp(resp.data(), Size(resp), &status, &text.p, &failInfo, &token.p), TV_OK);
        EXPECT_EQ(status + failInfo, 0u);
        EXPECT_EQ(text.p, nullptr);
        ASSERT_EQ(Give(AddSeveralDataContentInfo, list.p, token), TV_OK);
    }
    const auto back = Decoded<FreeSeveralData>(DecodeSeveralData, Get(EncodeSeveralData, list.p).bytes);
    ASSERT_EQ(Counted(GetSeveralDataContentInfoCount, back.p), "2");
    for (uint32_t i : {0u, 1u}) {
        SCOPED_TRACE(tsas[i].c->name);
        CmsContentInfo* token = nullptr;
        ASSERT_EQ(GetSeveralDataContentInfo(back, i, &token), TV_OK);
        EXPECT_EQ(Get(EncodeTimeStampResp, 0u, nullptr, 0u, token).bytes, responses[i]);
        const std::string f = At(tsas[i].c->name);
        WriteFile(f + ".token", Get(EncodeCmsContentInfo, token).bytes);
        verify(tsas[i], "-token_in -in " + f + ".token");
        verify(tsas[i], "-token_in -in " + f + ".token", &tsas[1 - i]);
    }
}

INSTANTIATE_TEST_SUITE_P(, TimeStamps, ::testing::Values(kGost), CaseName);

// Enveloped messages with openssl as the recipients' provider. RSA: the test encrypts the content
// under a fresh key (`openssl enc`) and wraps the key for each recipient (`openssl pkeyutl`), the
// library builds the EnvelopedData field by field, and `openssl cms -decrypt` gives each recipient
// the content. GOST: openssl's message is read out field by field and rebuilt from those values
// alone, byte for byte, and the rebuilt message still decrypts. Under the GOST case, whose openssl
// has the engine.
class Enveloped : public Interop {
protected:
    // The message takes the recipient over only when the Add succeeds.
    static uint32_t AddRecipient(CmsEnvelopedData* ed, Own<FreeKeyTrans>& kt) {
        const uint32_t rc = AddCmsEnvelopedDataRecipientInfo(ed, TV_CMS_RECIPIENT_KEY_TRANS, kt.p);
        if (rc == TV_OK) kt.release();
        return rc;
    }
    void Decrypts(const Bytes& message, const std::string& recipient) {
        WriteFile(At("message.der"), message);
        Expect("cms -decrypt -binary -inform DER -in " + At("message.der") + " -recip " + At(recipient + ".pem") +
                   " -inkey " + At(recipient + ".key") + " -out " + At("plain"),
               {});
        EXPECT_EQ(ReadFile(At("plain")), content) << recipient;
    }
};

TEST_P(Enveloped, OpenSslDecryptsWhatTheLibraryBuilds) {
    const char* const kEnvelopedData = "1.2.840.113549.1.7.3";
    const Bytes data = Packed("1.2.840.113549.1.7.1");
    WriteFile(At("content"), content);
    for (const std::string name : {"ee_rsa", "ca_rsa", "ee_gost2012_256"}) {
        WritePem(At(name + ".pem"), FixtureFile("pki/" + name + ".der"), "CERTIFICATE");
        WriteFile(At(name + ".key"), FixtureFile("pki/" + name + ".key.pem"));
    }

    Expect("rand -out " + At("cek") + " 32", {});
    Expect("rand -out " + At("iv") + " 16", {});
    const Bytes cek = ReadFile(At("cek")), iv = ReadFile(At("iv"));
    Expect("enc -aes-256-cbc -K " + PlainHex(cek) + " -iv " + PlainHex(iv) + " -in " + At("content") + " -out " +
               At("encrypted"),
           {});
    const Bytes encrypted = ReadFile(At("encrypted"));
    Bytes ivParameter{0x04, static_cast<uint8_t>(iv.size())};
    ivParameter.insert(ivParameter.end(), iv.begin(), iv.end());
    auto ed = Made<FreeCmsEnvelopedData>(CreateCmsEnvelopedData);
    for (uint32_t rc :
         {SetCmsEnvelopedDataVersion(ed, 2),  // 2 once a recipient is named by key identifier (RFC 5652 6.1)
          SetCmsEnvelopedDataEncryptedContentTypeOid(ed, data.data()),
          SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(ed, Packed("2.16.840.1.101.3.4.1.42").data(),
                                                                       ivParameter.data(), Size(ivParameter)),
          SetCmsEnvelopedDataEncryptedContent(ed, encrypted.data(), Size(encrypted))})
        ASSERT_EQ(rc, TV_OK);
    for (const auto& [name, byKeyId] : {std::pair{std::string("ee_rsa"), false}, {std::string("ca_rsa"), true}}) {
        Expect("pkeyutl -encrypt -certin -inkey " + At(name + ".pem") + " -in " + At("cek") + " -out " + At("wrapped"), {});
        const Bytes wrapped = ReadFile(At("wrapped"));
        const auto cert = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/" + name + ".der"));
        X509Name* issuer = nullptr;
        ASSERT_EQ(GetCertificateIssuer(cert, &issuer), TV_OK);
        const Bytes serial = Get(GetCertificateSerialNumber, cert.p).bytes,
                    keyId = Get(GetCertificateSubjectKeyIdentifier, cert.p).bytes;
        Own<FreeKeyTrans> kt;
        ASSERT_EQ(CreateKeyTrans(&kt.p), TV_OK);
        for (uint32_t rc : {SetKeyTransVersion(kt, byKeyId ? 2 : 0),
                            byKeyId ? SetKeyTransRecipientIdentifierSubjectKeyIdentifier(kt, keyId.data(), Size(keyId))
                                    : SetKeyTransRecipientIdentifierIssuerAndSerialNumber(kt, issuer, serial.data(), Size(serial)),
                            SetKeyTransKeyEncryptionAlgorithmOidAndParameters(kt, Packed("1.2.840.113549.1.1.1").data(),
                                                                              Hex("05 00").data(), 2),
                            SetKeyTransEncryptedKey(kt, wrapped.data(), Size(wrapped))})
            ASSERT_EQ(rc, TV_OK);
        ASSERT_EQ(AddRecipient(ed, kt), TV_OK);
    }
    const Bytes rsa = Get(EncodeCmsContentInfo, Wrapped(kEnvelopedData, Get(EncodeCmsEnvelopedData, ed.p).bytes).p).bytes;
    Decrypts(rsa, "ee_rsa");
    Decrypts(rsa, "ca_rsa");

    Expect("cms -encrypt -binary -gost89 -outform DER -in " + At("content") + " -out " + At("theirs.der") + " " +
               At("ee_gost2012_256.pem"),
           {});
    const auto theirs = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, ReadFile(At("theirs.der")));
    const Bytes inner = Get(GetCmsContentInfoContent, theirs.p).bytes;
    const auto read = Decoded<FreeCmsEnvelopedData>(DecodeCmsEnvelopedData, inner);
    void* value = nullptr;
    uint32_t kind = 0, version = 0, ktVersion = 0;
    ASSERT_EQ(GetCmsEnvelopedDataRecipientInfo(read, 0, &value, &kind), TV_OK);
    ASSERT_EQ(kind, TV_CMS_RECIPIENT_KEY_TRANS);
    auto* theirKt = static_cast<KeyTrans*>(value);
    X509Name* issuer = nullptr;
    const auto [serial, keyId] = Parts<2>([&](uint8_t* s, uint32_t* sn, uint8_t* k, uint32_t* kn) {
        return GetKeyTransRecipientIdentifier(theirKt, &issuer, s, sn, k, kn);
    });
    const auto [keyAlg, keyParams] = Parts<2>([&](auto... o) { return GetKeyTransKeyEncryptionAlgorithmOidAndParameters(theirKt, o...); });
    const auto [cipher, cipherParams] =
        Parts<2>([&](auto... o) { return GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(read, o...); });
    const auto [gostIv, paramSet] = Parts<2>([&](auto... o) {
        return DecodeGost2814789Parameters(cipherParams.data(), Size(cipherParams), o...);
    });
    const auto transport = Decoded<FreeGostR3410KeyTransport>(DecodeGostR3410KeyTransport, Get(GetKeyTransEncryptedKey, theirKt).bytes);
    const auto [ephemeralAlg, ephemeralParams] = Parts<2>([&](auto... o) {
        return GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(transport, o...);
    });
    const Got mask = Get(GetGostR3410KeyTransportMaskKey, transport.p);
    ASSERT_EQ(GetCmsEnvelopedDataVersion(read, &version) | GetKeyTransVersion(theirKt, &ktVersion), TV_OK);
    EXPECT_EQ(mask.bytes, Bytes{}) << "the engine writes no mask key";

    Own<FreeGostR3410KeyTransport> kt2;
    ASSERT_EQ(CreateGostR3410KeyTransport(&kt2.p), TV_OK);
    const auto copy = [&](auto set, auto get) {
        const Bytes v = Get(get, transport.p).bytes;
        return set(kt2, v.data(), Size(v));
    };
    const Bytes set = Get(GetGostR3410KeyTransportEncryptionParamSetOid, transport.p).bytes;
    for (uint32_t rc : {copy(SetGostR3410KeyTransportEncryptedKey, GetGostR3410KeyTransportEncryptedKey),
                        copy(SetGostR3410KeyTransportMacKey, GetGostR3410KeyTransportMacKey),
                        SetGostR3410KeyTransportEncryptionParamSetOid(kt2, set.data()),
                        SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(
                            kt2, ephemeralAlg.data(), ephemeralParams.data(), Size(ephemeralParams)),
                        copy(SetGostR3410KeyTransportEphemeralPublicKey, GetGostR3410KeyTransportEphemeralPublicKey),
                        copy(SetGostR3410KeyTransportUkm, GetGostR3410KeyTransportUkm)})
        ASSERT_EQ(rc, TV_OK);
    const Bytes wrappedKey = Get(EncodeGostR3410KeyTransport, kt2.p).bytes;
    Own<FreeKeyTrans> kt;
    ASSERT_EQ(CreateKeyTrans(&kt.p), TV_OK);
    for (uint32_t rc : {SetKeyTransVersion(kt, ktVersion),
                        SetKeyTransRecipientIdentifierIssuerAndSerialNumber(kt, issuer, serial.data(), Size(serial)),
                        SetKeyTransKeyEncryptionAlgorithmOidAndParameters(kt, keyAlg.data(), keyParams.data(), Size(keyParams)),
                        SetKeyTransEncryptedKey(kt, wrappedKey.data(), Size(wrappedKey))})
        ASSERT_EQ(rc, TV_OK);
    const Bytes parameters = Get(EncodeGost2814789Parameters, gostIv.data(), Size(gostIv), paramSet.data()).bytes;
    const Bytes content2 = Get(GetCmsEnvelopedDataEncryptedContent, read.p).bytes,
                type = Get(GetCmsEnvelopedDataEncryptedContentTypeOid, read.p).bytes;
    auto rebuilt = Made<FreeCmsEnvelopedData>(CreateCmsEnvelopedData);
    for (uint32_t rc : {SetCmsEnvelopedDataVersion(rebuilt, version), SetCmsEnvelopedDataEncryptedContentTypeOid(rebuilt, type.data()),
                        SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(rebuilt, cipher.data(), parameters.data(),
                                                                                     Size(parameters)),
                        SetCmsEnvelopedDataEncryptedContent(rebuilt, content2.data(), Size(content2)),
                        AddRecipient(rebuilt, kt)})
        ASSERT_EQ(rc, TV_OK);
    const Bytes ours = Get(EncodeCmsEnvelopedData, rebuilt.p).bytes;
    EXPECT_EQ(ToHex(ours), ToHex(inner)) << "rebuilt from the values read out";
    Decrypts(Get(EncodeCmsContentInfo, Wrapped(kEnvelopedData, ours).p).bytes, "ee_gost2012_256");
}

INSTANTIATE_TEST_SUITE_P(, Enveloped, ::testing::Values(kGost), CaseName);

}  // namespace
