// The generic engine on real certificates, beside OpenSSL's hand-tuned X509 templates.
//
// Decode: Asn1DecodeItem + FreeAsn1Object against d2i_X509 + X509_free. OpenSSL does more than
// parse in d2i (it also builds a key object from SubjectPublicKeyInfo when it knows the algorithm,
// which it does for RSA and not for GOST without the engine), so it is not a like-for-like
// comparison; it is the cost a caller would otherwise pay.
//
// Encode: OpenSSL keeps the TBSCertificate octets it decoded and copies them back on i2d_X509, so
// its plain i2d timing measures a copy. i2d_re_X509_tbs marks that cache stale, after which every
// i2d_X509 writes the TBS from its fields again; the "Reencode" cases time that, which is the fair
// comparison with Asn1Encode. Both sides allocate the output buffer on every iteration.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/CertificateShape.h"
#include "tarvelon/asn1.h"

// OpenSSL's headers cannot share a translation unit with ours: its ASN1_INTEGER, ASN1_BOOLEAN...
// typedefs collide with our type-code enumerators. The handful of calls needed here are declared by
// hand, exactly as libcrypto 3 exports them.
extern "C" {
typedef struct x509_st X509;
X509* d2i_X509(X509** a, const unsigned char** in, long len);
int i2d_X509(const X509* a, unsigned char** out);
int i2d_re_X509_tbs(X509* x, unsigned char** out);
void X509_free(X509* a);
void CRYPTO_free(void* ptr, const char* file, int line);
}
#define OPENSSL_free(p) CRYPTO_free((p), __FILE__, __LINE__)

namespace {

using Bytes = std::vector<uint8_t>;
namespace x509 = tvtest::x509;

Bytes LoadCert(const char* name) {
    std::ifstream f(std::string(TV_FIXTURES) + "/certs/" + name + ".der", std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
}

void* EngineDecode(const Bytes& der) {
    void* v = nullptr;
    uint32_t used = 0;
    if (Asn1DecodeItem(der.data(), static_cast<uint32_t>(der.size()), &x509::kCertificate, &v, &used) != 0)
        return nullptr;
    return v;
}

X509* OpenSslDecode(const Bytes& der) {
    const unsigned char* p = der.data();
    return d2i_X509(nullptr, &p, static_cast<long>(der.size()));
}

void BM_EngineDecodeFree(benchmark::State& state, const char* name) {
    const Bytes der = LoadCert(name);
    if (void* probe = EngineDecode(der)) {
        FreeAsn1Object(&x509::kCertificate, probe);
    } else {
        state.SkipWithError("fixture does not decode");
        return;
    }
    for (auto _ : state) {
        void* v = nullptr;
        uint32_t used = 0;
        uint32_t rc = Asn1DecodeItem(der.data(), static_cast<uint32_t>(der.size()), &x509::kCertificate, &v, &used);
        benchmark::DoNotOptimize(rc);
        FreeAsn1Object(&x509::kCertificate, v);
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(der.size()));
}

void BM_OpenSslDecodeFree(benchmark::State& state, const char* name) {
    const Bytes der = LoadCert(name);
    if (X509* probe = OpenSslDecode(der)) {
        X509_free(probe);
    } else {
        state.SkipWithError("fixture does not decode");
        return;
    }
    for (auto _ : state) {
        X509* x = OpenSslDecode(der);
        benchmark::DoNotOptimize(x);
        X509_free(x);
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(der.size()));
}

void BM_EngineEncode(benchmark::State& state, const char* name) {
    const Bytes der = LoadCert(name);
    void* v = EngineDecode(der);
    if (!v) {
        state.SkipWithError("fixture does not decode");
        return;
    }
    for (auto _ : state) {
        uint8_t* out = nullptr;
        uint32_t len = 0;
        uint32_t rc = Asn1Encode(v, &x509::kCertificate, &out, &len);
        benchmark::DoNotOptimize(rc);
        benchmark::DoNotOptimize(out);
        std::free(out);
    }
    FreeAsn1Object(&x509::kCertificate, v);
    state.SetItemsProcessed(state.iterations());
}

// reencode: false times i2d_X509 from OpenSSL's cached TBS octets, true from the fields.
void OpenSslEncode(benchmark::State& state, const char* name, bool reencode) {
    const Bytes der = LoadCert(name);
    X509* x = OpenSslDecode(der);
    if (!x) {
        state.SkipWithError("fixture does not decode");
        return;
    }
    if (reencode) {
        unsigned char* tbs = nullptr;
        if (i2d_re_X509_tbs(x, &tbs) <= 0) {
            state.SkipWithError("i2d_re_X509_tbs failed");
            X509_free(x);
            return;
        }
        OPENSSL_free(tbs);
    }
    // Both paths must still give the input back, or the comparison means nothing.
    unsigned char* check = nullptr;
    int n = i2d_X509(x, &check);
    bool same = n == static_cast<int>(der.size()) && std::memcmp(check, der.data(), der.size()) == 0;
    OPENSSL_free(check);
    if (!same) {
        state.SkipWithError("OpenSSL does not reproduce the fixture");
        X509_free(x);
        return;
    }
    for (auto _ : state) {
        unsigned char* out = nullptr;
        int len = i2d_X509(x, &out);
        benchmark::DoNotOptimize(len);
        benchmark::DoNotOptimize(out);
        OPENSSL_free(out);
    }
    X509_free(x);
    state.SetItemsProcessed(state.iterations());
}

void BM_OpenSslEncodeCached(benchmark::State& state, const char* name) { OpenSslEncode(state, name, false); }
void BM_OpenSslEncodeReencode(benchmark::State& state, const char* name) { OpenSslEncode(state, name, true); }

BENCHMARK_CAPTURE(BM_EngineDecodeFree, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_OpenSslDecodeFree, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_EngineDecodeFree, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_OpenSslDecodeFree, gost2012_256, "gost2012_256");

BENCHMARK_CAPTURE(BM_EngineEncode, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_OpenSslEncodeReencode, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_OpenSslEncodeCached, rsa_ca, "rsa_ca");
BENCHMARK_CAPTURE(BM_EngineEncode, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_OpenSslEncodeReencode, gost2012_256, "gost2012_256");
BENCHMARK_CAPTURE(BM_OpenSslEncodeCached, gost2012_256, "gost2012_256");

}  // namespace
