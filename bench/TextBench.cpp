// Base64, PEM and SHA-1 against OpenSSL on the same 1 MiB in the same run.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tarvelon/text/Text.h"
#include "tarvelon/tarvelon.h"

// OpenSSL's headers cannot share a translation unit with ours (its ASN1_INTEGER... typedefs collide
// with our type-code enumerators): the peer calls are declared by hand, as libcrypto 3 exports them.
extern "C" {
int EVP_EncodeBlock(unsigned char* t, const unsigned char* f, int n);
int EVP_DecodeBlock(unsigned char* t, const unsigned char* f, int n);
unsigned char* SHA1(const unsigned char* d, size_t n, unsigned char* md);
}

namespace {

constexpr size_t kSize = 1 << 20;

const std::vector<uint8_t>& Data() {
    static const std::vector<uint8_t> data = [] {
        std::vector<uint8_t> d(kSize);
        uint32_t x = 0x12345678;
        for (auto& b : d) {
            x = x * 1664525u + 1013904223u;
            b = static_cast<uint8_t>(x >> 24);
        }
        return d;
    }();
    return data;
}

// The PEM text our decoder reads (64-character lines, CR LF) and the unbroken base64 that
// EVP_DecodeBlock takes (it accepts no line breaks inside the text).
const std::string& Pem() {
    static const std::string pem = [] {
        uint32_t n = 0;
        EncodePem(Data().data(), kSize, "BLOB", nullptr, &n);
        std::string s(n, '\0');
        EncodePem(Data().data(), kSize, "BLOB", s.data(), &n);
        return s;
    }();
    return pem;
}

const std::string& FlatBase64() {
    static const std::string text = [] {
        std::string s(4 * ((kSize + 2) / 3) + 1, '\0');
        const int n = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(s.data()), Data().data(), kSize);
        s.resize(static_cast<size_t>(n));
        return s;
    }();
    return text;
}

void Sha1Tarvelon(benchmark::State& state) {
    uint8_t digest[20];
    for (auto _ : state) {
        sha1(Data().data(), kSize, digest);
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void Sha1Portable(benchmark::State& state) {
    uint8_t digest[20];
    for (auto _ : state) {
        tv::Sha1Digest(Data().data(), kSize, digest, tv::Sha1Path::Portable);
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void Sha1OpenSsl(benchmark::State& state) {
    uint8_t digest[20];
    for (auto _ : state) {
        SHA1(Data().data(), kSize, digest);
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void EncodeToBase64Tarvelon(benchmark::State& state) {
    std::string out(kSize * 2, '\0');
    for (auto _ : state) {
        uint32_t n = static_cast<uint32_t>(out.size());
        EncodeToBase64(Data().data(), kSize, out.data(), &n);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void EncodeBlockOpenSsl(benchmark::State& state) {
    std::string out(kSize * 2, '\0');
    for (auto _ : state) {
        benchmark::DoNotOptimize(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(out.data()), Data().data(), kSize));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void DecodePemTarvelon(benchmark::State& state) {
    const std::string& pem = Pem();
    std::vector<uint8_t> out(kSize + 64);
    for (auto _ : state) {
        uint32_t n = static_cast<uint32_t>(out.size());
        if (DecodePem(pem.data(), static_cast<uint32_t>(pem.size()), out.data(), &n) != 0 || n != kSize)
            state.SkipWithError("DecodePem failed");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void DecodeBlockOpenSsl(benchmark::State& state) {
    const std::string& text = FlatBase64();
    std::vector<uint8_t> out(kSize + 64);
    for (auto _ : state) {
        if (EVP_DecodeBlock(out.data(), reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size())) < 0)
            state.SkipWithError("EVP_DecodeBlock failed");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

void DecodeFromBase64Tarvelon(benchmark::State& state) {
    uint32_t n = 0;
    EncodeToBase64(Data().data(), kSize, nullptr, &n);
    std::string text(n, '\0');
    EncodeToBase64(Data().data(), kSize, text.data(), &n);
    std::vector<uint8_t> out(kSize + 64);
    for (auto _ : state) {
        uint32_t m = static_cast<uint32_t>(out.size());
        DecodeFromBase64(text.data(), n, out.data(), &m);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSize));
}

}  // namespace

BENCHMARK(Sha1Tarvelon);
BENCHMARK(Sha1OpenSsl);
BENCHMARK(Sha1Portable);
BENCHMARK(EncodeToBase64Tarvelon);
BENCHMARK(EncodeBlockOpenSsl);
BENCHMARK(DecodePemTarvelon);
BENCHMARK(DecodeBlockOpenSsl);
BENCHMARK(DecodeFromBase64Tarvelon);
