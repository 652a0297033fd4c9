// Certificates and CRLs through the public API, beside OpenSSL on the same octets in the same run.
//
// Decode: DecodeCertificate + FreeCertificate against d2i_X509 + X509_free. OpenSSL does more than
// parse in d2i (it also builds a key object when it knows the algorithm, RSA yes, GOST without the
// engine no), so this is the cost a caller would otherwise pay rather than like for like.
//
// Encode: OpenSSL keeps the to-be-signed octets it decoded and copies them back on i2d, so a plain
// i2d measures a copy. Both sides therefore change the serial number before every encoding, which
// is what a CA does. X509_set_serialNumber alone leaves OpenSSL's cache in place (i2d_X509 would
// then write the old serial), so i2d_re_X509_tbs marks it stale first; like our size query, that
// call walks the whole to-be-signed part once more before i2d_X509 writes it from its fields.
// Both sides allocate the output each time.
//
// CRLs: DecodeX509Crl + EncodeX509Crl + FreeX509Crl against d2i_X509_CRL + i2d_X509_CRL +
// X509_CRL_free on a 10,000-entry CRL. Again i2d would copy OpenSSL's cached octets, so the fair
// row first marks them stale with i2d_re_X509_CRL_tbs; the cached row is shown for reference.
// The per-entry scaling rows build CRLs of 1,000 to 100,000 entries with the library itself.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "BenchUtil.h"
#include "tarvelon/tarvelon.h"

// OpenSSL's headers cannot share a translation unit with ours: its ASN1_INTEGER, ASN1_BOOLEAN...
// typedefs collide with our type-code enumerators. The few calls needed are declared by hand,
// exactly as libcrypto 3 exports them.
extern "C" {
typedef struct x509_st X509;
typedef struct X509_crl_st X509_CRL;
typedef struct asn1_string_st OSSL_ASN1_INTEGER;
X509* d2i_X509(X509** a, const unsigned char** in, long len);
int i2d_X509(const X509* a, unsigned char** out);
int i2d_re_X509_tbs(X509* x, unsigned char** out);
void X509_free(X509* a);
int X509_set_serialNumber(X509* x, OSSL_ASN1_INTEGER* serial);
OSSL_ASN1_INTEGER* ASN1_INTEGER_new(void);
int ASN1_INTEGER_set(OSSL_ASN1_INTEGER* a, long v);
void ASN1_INTEGER_free(OSSL_ASN1_INTEGER* a);
X509_CRL* d2i_X509_CRL(X509_CRL** a, const unsigned char** in, long len);
int i2d_X509_CRL(const X509_CRL* a, unsigned char** out);
int i2d_re_X509_CRL_tbs(X509_CRL* crl, unsigned char** out);
void X509_CRL_free(X509_CRL* a);
void CRYPTO_free(void* ptr, const char* file, int line);
}
#define OPENSSL_free(p) CRYPTO_free((p), __FILE__, __LINE__)

namespace {

using bench::Bytes;
using bench::Load;

const char* CertPath(const char* name) {
    static std::string path;
    path = std::string("certs/") + name + ".der";
    return path.c_str();
}

// ---- certificates -------------------------------------------------------------------------------

void BM_TarvelonCertDecodeFree(benchmark::State& state, const char* name) {
    const Bytes der = Load(CertPath(name));
    for (auto _ : state) {
        Certificate* c = nullptr;
        if (DecodeCertificate(der.data(), uint32_t(der.size()), &c) != 0) {
            state.SkipWithError("fixture does not decode");
            break;
        }
        FreeCertificate(c);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_OpenSslCertDecodeFree(benchmark::State& state, const char* name) {
    const Bytes der = Load(CertPath(name));
    for (auto _ : state) {
        const unsigned char* p = der.data();
        X509* x = d2i_X509(nullptr, &p, long(der.size()));
        if (!x) {
            state.SkipWithError("fixture does not decode");
            break;
        }
        X509_free(x);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_TarvelonCertChangeEncode(benchmark::State& state, const char* name) {
    const Bytes der = Load(CertPath(name));
    Certificate* c = nullptr;
    if (DecodeCertificate(der.data(), uint32_t(der.size()), &c) != 0) return state.SkipWithError("no decode");
    uint32_t serial = 1;
    for (auto _ : state) {
        const uint8_t octets[3] = {uint8_t(serial >> 16 & 0x7F), uint8_t(serial >> 8), uint8_t(serial)};
        ++serial;
        SetCertificateSerialNumber(c, octets, sizeof octets);
        uint32_t n = 0;
        EncodeCertificate(c, nullptr, &n);
        auto* out = static_cast<uint8_t*>(std::malloc(n));
        benchmark::DoNotOptimize(EncodeCertificate(c, out, &n));
        std::free(out);
    }
    FreeCertificate(c);
    state.SetItemsProcessed(state.iterations());
}

void BM_OpenSslCertChangeEncode(benchmark::State& state, const char* name) {
    const Bytes der = Load(CertPath(name));
    const unsigned char* p = der.data();
    X509* x = d2i_X509(nullptr, &p, long(der.size()));
    if (!x) return state.SkipWithError("no decode");
    OSSL_ASN1_INTEGER* serial = ASN1_INTEGER_new();
    long next = 1;
    for (auto _ : state) {
        ASN1_INTEGER_set(serial, next++ & 0x7FFFFF);
        X509_set_serialNumber(x, serial);
        i2d_re_X509_tbs(x, nullptr);
        unsigned char* out = nullptr;
        benchmark::DoNotOptimize(i2d_X509(x, &out));
        OPENSSL_free(out);
    }
    ASN1_INTEGER_free(serial);
    X509_free(x);
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(BM_TarvelonCertDecodeFree, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_OpenSslCertDecodeFree, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_TarvelonCertDecodeFree, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_OpenSslCertDecodeFree, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_TarvelonCertChangeEncode, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_OpenSslCertChangeEncode, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_TarvelonCertChangeEncode, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_OpenSslCertChangeEncode, gost2012_256, "gost2012_256");

// ---- CRLs ---------------------------------------------------------------------------------------

void TarvelonCrlRoundTrip(benchmark::State& state, const Bytes& der, size_t entries) {
    for (auto _ : state) {
        X509Crl* crl = nullptr;
        if (DecodeX509Crl(der.data(), uint32_t(der.size()), &crl) != 0) {
            state.SkipWithError("CRL does not decode");
            break;
        }
        uint32_t n = 0;
        EncodeX509Crl(crl, nullptr, &n);
        auto* out = static_cast<uint8_t*>(std::malloc(n));
        benchmark::DoNotOptimize(EncodeX509Crl(crl, out, &n));
        std::free(out);
        FreeX509Crl(crl);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * int64_t(entries));  // items = entries
}

void BM_TarvelonCrl10000DecodeEncode(benchmark::State& state) {
    TarvelonCrlRoundTrip(state, Load("pki/crl_10000.der"), 10000);
}

// restale: mark OpenSSL's cached to-be-signed octets stale first, so i2d writes from the fields.
void OpenSslCrlRoundTrip(benchmark::State& state, bool restale) {
    const Bytes der = Load("pki/crl_10000.der");
    for (auto _ : state) {
        const unsigned char* p = der.data();
        X509_CRL* crl = d2i_X509_CRL(nullptr, &p, long(der.size()));
        if (!crl) {
            state.SkipWithError("CRL does not decode");
            break;
        }
        if (restale) {
            unsigned char* tbs = nullptr;
            i2d_re_X509_CRL_tbs(crl, &tbs);
            OPENSSL_free(tbs);
        }
        unsigned char* out = nullptr;
        benchmark::DoNotOptimize(i2d_X509_CRL(crl, &out));
        OPENSSL_free(out);
        X509_CRL_free(crl);
    }
    state.SetItemsProcessed(int64_t(state.iterations()) * 10000);
}

void BM_OpenSslCrl10000DecodeReencode(benchmark::State& state) { OpenSslCrlRoundTrip(state, true); }
void BM_OpenSslCrl10000DecodeCachedEncode(benchmark::State& state) { OpenSslCrlRoundTrip(state, false); }

// A CRL of `entries` entries built by the library: serials of 16 octets, a reason code on every
// tenth entry, as large CAs issue them.
Bytes BuildCrl(size_t entries) {
    X509Crl* crl = nullptr;
    CreateX509Crl(&crl);
    SetX509CrlVersion(crl, 1);
    X509Name* issuer = nullptr;
    GetX509CrlIssuer(crl, &issuer);
    const uint8_t cn[] = "Scaling CA";
    const uint8_t commonName[] = {3, 0x55, 0x04, 0x03};
    AddX509NameEntry(issuer, cn, sizeof cn - 1, ASN1_UTF8_STRING, commonName, 1);
    const LibraryTime now{2026, 11, 21, 12, 0, 0};
    SetX509CrlThisUpdate(crl, &now);
    const uint8_t sha256Rsa[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x0B};
    const uint8_t null[] = {0x05, 0x00};
    SetX509CrlSignatureAlgorithmOidAndParameters(crl, sha256Rsa, null, sizeof null);
    const uint8_t reason[] = {0x0A, 0x01, 0x01};
    const uint8_t reasonOid[] = {3, 0x55, 0x1D, 0x15};
    for (size_t i = 0; i < entries; ++i) {
        uint8_t serial[16] = {0x1F};
        for (int k = 0; k < 8; ++k) serial[15 - k] = uint8_t(i >> (8 * k));
        uint32_t index = 0;
        AddX509CrlRevokedCertificate(crl, serial, sizeof serial, &now, &index);
        if (i % 10 == 0) {
            X509Extensions* ext = nullptr;
            GetX509CrlRevokedCertificateExtensions(crl, index, &ext);
            AddX509ExtensionsExtension(ext, reasonOid, 0, reason, sizeof reason);
        }
    }
    const uint8_t signature[64] = {1};
    SetX509CrlSignature(crl, signature, sizeof signature);
    uint32_t n = 0;
    EncodeX509Crl(crl, nullptr, &n);
    Bytes der(n);
    EncodeX509Crl(crl, der.data(), &n);
    FreeX509Crl(crl);
    return der;
}

void BM_TarvelonCrlScaling(benchmark::State& state) {
    const auto entries = size_t(state.range(0));
    TarvelonCrlRoundTrip(state, BuildCrl(entries), entries);
}

BENCHMARK(BM_TarvelonCrl10000DecodeEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenSslCrl10000DecodeReencode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OpenSslCrl10000DecodeCachedEncode)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TarvelonCrlScaling)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace

namespace {

// The Java binding's per-call cost is measured against this call made from C (bench/java/CallCost.java
// makes the same one through dll_GetCertificateSerialNumber): a serial number into a caller buffer.
void BM_SerialNumberFromC(benchmark::State& state) {
    const bench::Bytes der = bench::Load("pki/ee_rsa.der");
    Certificate* cert = nullptr;
    if (DecodeCertificate(der.data(), static_cast<uint32_t>(der.size()), &cert) != 0) return state.SkipWithError("decode");
    uint8_t serial[32];
    for (auto _ : state) {
        uint32_t n = sizeof serial;
        benchmark::DoNotOptimize(GetCertificateSerialNumber(cert, serial, &n));
        benchmark::ClobberMemory();
    }
    FreeCertificate(cert);
}
BENCHMARK(BM_SerialNumberFromC);

}  // namespace
