// CMS signed messages through the public API, beside OpenSSL (or a plain copy) on the same octets in
// the same run.
//
// DetachedRoundTrip: a detached signature made once by CMS_sign (signer ee_rsa, certificates ee_rsa
// and ca_rsa, OpenSSL's default signed attributes) is decoded and encoded again. Ours: ContentInfo,
// its content, SignedData, then SignedData, the ContentInfo's content and the ContentInfo back to
// octets; OpenSSL's: d2i_CMS_ContentInfo and i2d_CMS_ContentInfo. Both must give back the octets
// they were given.
//
// Read64MiB: a 64 MiB attached message (made by Sign64MiB below) decoded down to its content, which
// ends in a caller buffer. Ours: ContentInfo, its content, SignedData, its content; OpenSSL's:
// d2i_CMS_ContentInfo and a copy out of CMS_get0_content. `fresh`: the caller allocates every buffer
// it hands in, as a one-shot reader does; `held`: the caller's buffers are kept (already touched)
// from call to call, so only the libraries' own buffers are new.
//
// Sign64MiB: CreateCmsFileSignature2 over 64 MiB of content (attached, the signer's certificate as
// the one extra certificate, RSA signature made once at start-up), against one copy of the content
// (malloc, memcpy, free). `fresh`: the output is allocated per call after the size query; `held`:
// the output buffer is kept.
//
// Touching fresh memory costs far more than copying into touched memory on these machines, so the
// large rows carry, from one call made in a forked child:
//   fresh_bufs  minor page faults of the call, in units of the content size (about the number of
//               content-sized buffers first touched; with transparent huge pages, e.g.
//               GLIBC_TUNABLES=glibc.malloc.hugetlb=1, one fault maps 2 MiB and this undercounts);
//   big_allocs  allocations of 1 MiB or more (the libraries' and the caller's);
//   rss_MiB     ru_maxrss growth over the call (the child's peak is reset first, so nothing freed
//               before hides it; the content and the message are already resident), and rss_x the
//               same in content sizes.
//
// Before the first row: OpenSSL must verify the large message we assemble (signature, digest,
// signer found among the certificates we stored) and both sides must read its content back intact.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "BenchUtil.h"
#include "tarvelon/tarvelon.h"

// OpenSSL's headers cannot share a translation unit with ours (its ASN1_INTEGER... typedefs collide
// with our type-code enumerators): the peer calls are declared by hand, as libcrypto 3 exports them.
extern "C" {
typedef struct x509_st X509;
typedef struct evp_pkey_st EVP_PKEY;
typedef struct evp_md_st EVP_MD;
typedef struct evp_md_ctx_st EVP_MD_CTX;
typedef struct engine_st ENGINE;
typedef struct bio_st BIO;
typedef struct stack_st OPENSSL_STACK;
typedef struct CMS_ContentInfo_st CMS_ContentInfo;
typedef struct asn1_string_st OSSL_OCTET_STRING;
X509* d2i_X509(X509** a, const unsigned char** in, long len);
void X509_free(X509* a);
BIO* BIO_new_file(const char* filename, const char* mode);
BIO* BIO_new_mem_buf(const void* buf, int len);
int BIO_free(BIO* a);
EVP_PKEY* PEM_read_bio_PrivateKey(BIO* bp, EVP_PKEY** x, int (*cb)(char*, int, int, void*), void* u);
void EVP_PKEY_free(EVP_PKEY* pkey);
const EVP_MD* EVP_sha256(void);
EVP_MD_CTX* EVP_MD_CTX_new(void);
void EVP_MD_CTX_free(EVP_MD_CTX* ctx);
int EVP_DigestSignInit(EVP_MD_CTX* ctx, void** pctx, const EVP_MD* type, ENGINE* e, EVP_PKEY* pkey);
int EVP_DigestSign(EVP_MD_CTX* ctx, unsigned char* sigret, size_t* siglen, const unsigned char* tbs, size_t tbslen);
unsigned char* SHA256(const unsigned char* d, size_t n, unsigned char* md);
OPENSSL_STACK* OPENSSL_sk_new_null(void);
int OPENSSL_sk_push(OPENSSL_STACK* st, const void* data);
void OPENSSL_sk_free(OPENSSL_STACK* st);
CMS_ContentInfo* CMS_sign(X509* signcert, EVP_PKEY* pkey, OPENSSL_STACK* certs, BIO* data, unsigned int flags);
int CMS_verify(CMS_ContentInfo* cms, OPENSSL_STACK* certs, void* store, BIO* dcont, BIO* out, unsigned int flags);
CMS_ContentInfo* d2i_CMS_ContentInfo(CMS_ContentInfo** a, const unsigned char** in, long len);
int i2d_CMS_ContentInfo(const CMS_ContentInfo* a, unsigned char** out);
void CMS_ContentInfo_free(CMS_ContentInfo* cms);
OSSL_OCTET_STRING** CMS_get0_content(CMS_ContentInfo* cms);
const unsigned char* ASN1_STRING_get0_data(const OSSL_OCTET_STRING* x);
int ASN1_STRING_length(const OSSL_OCTET_STRING* x);
void ERR_print_errors_fp(FILE* fp);
void CRYPTO_free(void* ptr, const char* file, int line);

// The allocator underneath malloc, reached directly by the counting wrappers below.
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* p, size_t size);
}
#define OPENSSL_free(p) CRYPTO_free((p), __FILE__, __LINE__)

namespace {

// Large blocks are counted only in the measuring child; everywhere else the wrappers cost one
// comparison per allocation, for every row of the binary.
constexpr size_t kLargeBlock = size_t(1) << 20;
struct {
    bool on = false;
    uint32_t count = 0;
} g_large;

inline void NoteBlock(size_t size) {
    if (size >= kLargeBlock && g_large.on) ++g_large.count;
}

}  // namespace

extern "C" void* malloc(size_t size) noexcept {
    NoteBlock(size);
    return __libc_malloc(size);
}
extern "C" void* calloc(size_t count, size_t size) noexcept {
    NoteBlock(count * size);
    return __libc_calloc(count, size);
}
// A grown block may move: counted as a new block, which is what it costs when it does.
extern "C" void* realloc(void* p, size_t size) noexcept {
    NoteBlock(size);
    return __libc_realloc(p, size);
}

namespace {

using bench::Bytes;
using bench::Encoded;
using bench::Load;

constexpr uint32_t kLargeSize = 64u << 20;
constexpr LibraryTime kSigningTime{2026, 11, 21, 12, 0, 0};
constexpr uint8_t kSha256[] = {9, 0x60, 0x86, 0x48, 0x01, 0x65, 0x03, 0x04, 0x02, 0x01};
constexpr uint8_t kRsaEncryption[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x01};
constexpr uint8_t kNull[] = {0x05, 0x00};
constexpr unsigned kCmsNoSignerCertVerify = 0x20, kCmsDetached = 0x40, kCmsBinary = 0x80;

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "CmsBench: %s\n", what);
    ERR_print_errors_fp(stderr);
    std::abort();
}

X509* ToX509(const Bytes& der) {
    const unsigned char* p = der.data();
    return d2i_X509(nullptr, &p, long(der.size()));
}

Bytes ToDer(const CMS_ContentInfo* cms) {
    Bytes out(size_t(std::max(i2d_CMS_ContentInfo(cms, nullptr), 0)));
    unsigned char* p = out.data();
    if (out.empty() || i2d_CMS_ContentInfo(cms, &p) != int(out.size())) return {};
    return out;
}

CMS_ContentInfo* FromDer(const Bytes& der) {
    const unsigned char* p = der.data();
    return d2i_CMS_ContentInfo(nullptr, &p, long(der.size()));
}

struct Fixture {
    Bytes eeDer, caDer;
    Bytes detached;  // CMS_sign's detached signature, certificates ee_rsa and ca_rsa
    Bytes content;   // kLargeSize pseudo-random octets
    uint8_t digest[32] = {};
    Bytes signature;  // ee_rsa's RSA signature over the signed attributes of `content`
    Bytes large;      // our attached message over `content`
};

// The one CreateCmsFileSignature2 call of the large rows: attached, the signer's certificate stored.
uint32_t SignLarge(const Fixture& f, uint8_t* out, uint32_t* outLen) {
    const uint8_t* certs[] = {f.eeDer.data()};
    const uint32_t certLens[] = {uint32_t(f.eeDer.size())};
    return CreateCmsFileSignature2(f.content.data(), uint32_t(f.content.size()), f.digest, sizeof f.digest,
                                   &kSigningTime, kSha256, nullptr, 0, f.eeDer.data(), uint32_t(f.eeDer.size()), certs,
                                   certLens, 1, kRsaEncryption, kNull, sizeof kNull, 1, nullptr, 0,
                                   f.signature.data(), uint32_t(f.signature.size()), nullptr, 0, out, outLen);
}

Bytes RsaSign(EVP_PKEY* key, const Bytes& toBeSigned) {
    EVP_MD_CTX* ctx = EVP_MD_CTX_new();
    size_t n = 0;
    Bytes out;
    if (ctx && EVP_DigestSignInit(ctx, nullptr, EVP_sha256(), nullptr, key) == 1 &&
        EVP_DigestSign(ctx, nullptr, &n, toBeSigned.data(), toBeSigned.size()) == 1) {
        out.resize(n);
        if (EVP_DigestSign(ctx, out.data(), &n, toBeSigned.data(), toBeSigned.size()) != 1) out.clear();
        out.resize(n);
    }
    EVP_MD_CTX_free(ctx);
    return out;
}

// Ours, decoded and encoded back: ContentInfo, its content, SignedData and back out.
Bytes TarvelonRoundTrip(const Bytes& der) {
    CmsContentInfo* info = nullptr;
    CmsSignedData* signedData = nullptr;
    Bytes out;
    if (DecodeCmsContentInfo(der.data(), uint32_t(der.size()), &info) == 0) {
        const Bytes inner = Encoded(GetCmsContentInfoContent, static_cast<const CmsContentInfo*>(info));
        if (!inner.empty() && DecodeCmsSignedData(inner.data(), uint32_t(inner.size()), &signedData) == 0) {
            const Bytes again = Encoded(EncodeCmsSignedData, static_cast<const CmsSignedData*>(signedData));
            if (!again.empty() && SetCmsContentInfoContent(info, again.data(), uint32_t(again.size())) == 0)
                out = Encoded(EncodeCmsContentInfo, static_cast<const CmsContentInfo*>(info));
        }
    }
    FreeCmsSignedData(signedData);
    FreeCmsContentInfo(info);
    return out;
}

Bytes OpenSslRoundTrip(const Bytes& der) {
    CMS_ContentInfo* cms = FromDer(der);
    Bytes out;
    if (cms) {
        unsigned char* p = nullptr;
        const int n = i2d_CMS_ContentInfo(cms, &p);
        if (n > 0) out.assign(p, p + n);
        OPENSSL_free(p);
    }
    CMS_ContentInfo_free(cms);
    return out;
}

// Where a content read lands: `held` buffers are the caller's, kept from call to call; without them
// every buffer is allocated for the call and freed after it.
struct Held {
    Bytes inner;    // our ContentInfo's content (the SignedData)
    Bytes content;  // the eContent, both sides
};

uint8_t* Room(Bytes* held, uint32_t size) {
    return held ? (held->size() >= size ? held->data() : nullptr) : static_cast<uint8_t*>(std::malloc(size));
}
void Release(const Bytes* held, uint8_t* p) {
    if (!held) std::free(p);
}

// The content out of our message into the caller's memory; its length, 0 on failure.
uint32_t TarvelonReadContent(const Bytes& message, Held* held) {
    CmsContentInfo* info = nullptr;
    if (DecodeCmsContentInfo(message.data(), uint32_t(message.size()), &info) != 0) return 0;
    uint32_t innerLen = 0;
    GetCmsContentInfoContent(info, nullptr, &innerLen);
    uint8_t* inner = Room(held ? &held->inner : nullptr, innerLen);
    const bool gotInner = inner && GetCmsContentInfoContent(info, inner, &innerLen) == 0;
    FreeCmsContentInfo(info);  // the caller's copy of the SignedData is all that is needed now
    CmsSignedData* signedData = nullptr;
    const bool decoded = gotInner && DecodeCmsSignedData(inner, innerLen, &signedData) == 0;
    Release(held ? &held->inner : nullptr, inner);
    if (!decoded) return 0;
    uint32_t contentLen = 0;
    GetCmsSignedDataContent(signedData, nullptr, &contentLen);
    uint8_t* content = Room(held ? &held->content : nullptr, contentLen);
    const bool got = content && GetCmsSignedDataContent(signedData, content, &contentLen) == 0;
    FreeCmsSignedData(signedData);
    benchmark::DoNotOptimize(content);
    benchmark::ClobberMemory();
    Release(held ? &held->content : nullptr, content);
    return got ? contentLen : 0;
}

uint32_t OpenSslReadContent(const Bytes& message, Held* held) {
    CMS_ContentInfo* cms = FromDer(message);
    OSSL_OCTET_STRING** inner = cms ? CMS_get0_content(cms) : nullptr;
    uint32_t contentLen = 0;
    if (inner && *inner) {
        contentLen = uint32_t(ASN1_STRING_length(*inner));
        uint8_t* content = Room(held ? &held->content : nullptr, contentLen);
        if (content) {
            std::memcpy(content, ASN1_STRING_get0_data(*inner), contentLen);
            benchmark::DoNotOptimize(content);
            benchmark::ClobberMemory();
        } else {
            contentLen = 0;
        }
        Release(held ? &held->content : nullptr, content);
    }
    CMS_ContentInfo_free(cms);
    return contentLen;
}

// Both sides read back exactly the content the message was made over.
void CheckContentRead(const Fixture& f) {
    CmsContentInfo* info = nullptr;
    CmsSignedData* signedData = nullptr;
    Bytes inner, content;
    if (DecodeCmsContentInfo(f.large.data(), uint32_t(f.large.size()), &info) == 0)
        inner = Encoded(GetCmsContentInfoContent, static_cast<const CmsContentInfo*>(info));
    if (!inner.empty() && DecodeCmsSignedData(inner.data(), uint32_t(inner.size()), &signedData) == 0)
        content = Encoded(GetCmsSignedDataContent, static_cast<const CmsSignedData*>(signedData));
    FreeCmsSignedData(signedData);
    FreeCmsContentInfo(info);
    if (content != f.content) Fail("our reader does not give the content back");

    CMS_ContentInfo* cms = FromDer(f.large);
    OSSL_OCTET_STRING** os = cms ? CMS_get0_content(cms) : nullptr;
    if (!os || !*os || size_t(ASN1_STRING_length(*os)) != f.content.size() ||
        std::memcmp(ASN1_STRING_get0_data(*os), f.content.data(), f.content.size()) != 0)
        Fail("OpenSSL does not read our content back");
    // The signature over our signed attributes, their messageDigest against the content, the signer
    // found by issuer and serial among the certificates we stored; the chain is not in question.
    if (CMS_verify(cms, nullptr, nullptr, nullptr, nullptr, kCmsNoSignerCertVerify | kCmsBinary) != 1)
        Fail("OpenSSL does not verify our signed message");
    CMS_ContentInfo_free(cms);
}

Fixture MakeFixture() {
    Fixture f;
    f.eeDer = Load("pki/ee_rsa.der");
    f.caDer = Load("pki/ca_rsa.der");
    X509* ee = ToX509(f.eeDer);
    X509* ca = ToX509(f.caDer);
    BIO* keyFile = BIO_new_file((std::string(TV_FIXTURES) + "/pki/ee_rsa.key.pem").c_str(), "r");
    EVP_PKEY* key = keyFile ? PEM_read_bio_PrivateKey(keyFile, nullptr, nullptr, nullptr) : nullptr;
    BIO_free(keyFile);
    if (!ee || !ca || !key) Fail("cannot read ee_rsa, its key or ca_rsa");

    static const char kSmall[] = "A contract of a few lines, signed apart from its text.\n";
    BIO* data = BIO_new_mem_buf(kSmall, int(sizeof kSmall - 1));
    OPENSSL_STACK* certs = OPENSSL_sk_new_null();
    OPENSSL_sk_push(certs, ca);
    CMS_ContentInfo* cms = CMS_sign(ee, key, certs, data, kCmsDetached | kCmsBinary);
    if (!cms) Fail("CMS_sign failed");
    f.detached = ToDer(cms);
    CMS_ContentInfo_free(cms);
    OPENSSL_sk_free(certs);
    BIO_free(data);
    if (TarvelonRoundTrip(f.detached) != f.detached) Fail("our round trip changes the detached signature");
    if (OpenSslRoundTrip(f.detached) != f.detached) Fail("OpenSSL's round trip changes the detached signature");

    f.content.resize(kLargeSize);
    uint32_t x = 0x12345678;
    for (auto& b : f.content) {
        x = x * 1664525u + 1013904223u;
        b = uint8_t(x >> 24);
    }
    SHA256(f.content.data(), f.content.size(), f.digest);
    uint32_t n = 0;
    Bytes toBeSigned;
    if (GetCmsSignedDataToBeSignedPart(f.digest, sizeof f.digest, &kSigningTime, nullptr, &n) == 0) {
        toBeSigned.resize(n);
        if (GetCmsSignedDataToBeSignedPart(f.digest, sizeof f.digest, &kSigningTime, toBeSigned.data(), &n) != 0)
            toBeSigned.clear();
    }
    f.signature = toBeSigned.empty() ? Bytes{} : RsaSign(key, toBeSigned);
    if (f.signature.empty()) Fail("cannot sign the signed attributes");
    n = 0;
    if (SignLarge(f, nullptr, &n) != 0) Fail("CreateCmsFileSignature2 refuses the size query");
    f.large.resize(n);
    if (SignLarge(f, f.large.data(), &n) != 0 || n != f.large.size()) Fail("CreateCmsFileSignature2 failed");
    CheckContentRead(f);

    EVP_PKEY_free(key);
    X509_free(ca);
    X509_free(ee);
    return f;
}

const Fixture& TheFixture() {
    static const Fixture fixture = MakeFixture();
    return fixture;
}

// ---- one call measured in a child ---------------------------------------------------------------

struct Footprint {
    bool ok = false;
    long faults = 0;      // minor page faults
    long rssKiB = 0;      // ru_maxrss growth
    uint32_t large = 0;   // allocations of kLargeBlock or more
};

// The peak resident size of this process becomes its present size (Linux: clear_refs 5).
bool ResetPeak() {
    const int fd = open("/proc/self/clear_refs", O_WRONLY);
    const bool ok = fd >= 0 && write(fd, "5", 1) == 1;
    if (fd >= 0) close(fd);
    return ok;
}

// `call` once in a forked child, so that neither this process's earlier peak nor its allocator's
// cached memory hides what the call takes; false from `call` is a failed call. The parent runs it
// after its timed loop: a fork leaves the parent's pages write-protected, and the first write to
// each would then be timed as a fault.
template <class Call>
Footprint MeasureInChild(const std::vector<Bytes*>& held, Call call) {
    Footprint result;
    int pipeFds[2];
    if (pipe(pipeFds) != 0) return result;
    const pid_t pid = fork();
    if (pid == 0) {
        close(pipeFds[0]);
        Footprint f;
        // The held buffers are the parent's pages until written: their copies are made here, not
        // counted against the call.
        for (Bytes* buffer : held) std::memset(buffer->data(), 0, buffer->size());
        const bool reset = ResetPeak();
        rusage before{}, after{};
        getrusage(RUSAGE_SELF, &before);
        g_large.on = true;
        const bool called = call();
        g_large.on = false;
        getrusage(RUSAGE_SELF, &after);
        f.ok = reset && called;
        f.faults = after.ru_minflt - before.ru_minflt;
        f.rssKiB = after.ru_maxrss - before.ru_maxrss;
        f.large = g_large.count;
        _exit(write(pipeFds[1], &f, sizeof f) == sizeof f ? 0 : 1);
    }
    close(pipeFds[1]);
    if (pid > 0) {
        if (read(pipeFds[0], &result, sizeof result) != sizeof result) result = Footprint{};
        waitpid(pid, nullptr, 0);
    }
    close(pipeFds[0]);
    return result;
}

// The footprint of a row (a side, with or without held buffers), measured once however often the
// library runs the row.
template <class Call>
void ReportFootprint(benchmark::State& state, const void* side, const std::vector<Bytes*>& held, Call call) {
    static std::map<std::pair<const void*, bool>, Footprint> measured;
    const auto row = std::make_pair(side, !held.empty());
    auto it = measured.find(row);
    if (it == measured.end()) it = measured.emplace(row, MeasureInChild(held, call)).first;
    const Footprint& f = it->second;
    if (!f.ok) return state.SkipWithError("the measuring child failed");
    const double contentMiB = double(kLargeSize) / (1 << 20);
    state.counters["fresh_bufs"] = double(f.faults) * double(sysconf(_SC_PAGESIZE)) / kLargeSize;
    state.counters["big_allocs"] = f.large;
    state.counters["rss_MiB"] = double(f.rssKiB) / 1024;
    state.counters["rss_x"] = double(f.rssKiB) / 1024 / contentMiB;
}

// ---- rows ---------------------------------------------------------------------------------------

void DetachedRoundTrip(benchmark::State& state, Bytes (*roundTrip)(const Bytes&)) {
    const Fixture& f = TheFixture();
    for (auto _ : state) {
        const Bytes out = roundTrip(f.detached);
        if (out.size() != f.detached.size()) return state.SkipWithError("round trip failed");
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_TarvelonCmsDetachedRoundTrip(benchmark::State& state) { DetachedRoundTrip(state, TarvelonRoundTrip); }
void BM_OpenSslCmsDetachedRoundTrip(benchmark::State& state) { DetachedRoundTrip(state, OpenSslRoundTrip); }

void Read64MiB(benchmark::State& state, uint32_t (*read)(const Bytes&, Held*), bool keepBuffers) {
    const Fixture& f = TheFixture();
    Held kept;
    if (keepBuffers) kept = Held{f.large, f.content};  // touched, the sizes the reads need
    Held* held = keepBuffers ? &kept : nullptr;
    for (auto _ : state)
        if (read(f.large, held) != kLargeSize) return state.SkipWithError("content not read");
    state.SetBytesProcessed(int64_t(state.iterations()) * kLargeSize);
    ReportFootprint(state, reinterpret_cast<const void*>(read),
                    held ? std::vector<Bytes*>{&kept.inner, &kept.content} : std::vector<Bytes*>{},
                    [&] { return read(f.large, held) == kLargeSize; });
}

void BM_TarvelonCmsRead64MiB(benchmark::State& state, bool held) { Read64MiB(state, TarvelonReadContent, held); }
void BM_OpenSslCmsRead64MiB(benchmark::State& state, bool held) { Read64MiB(state, OpenSslReadContent, held); }

// Ours: the size query, the output and the call; the baseline: one copy of the content.
bool TarvelonSign(const Fixture& f, Bytes* held) {
    uint32_t n = held ? uint32_t(held->size()) : 0;
    if (!held && SignLarge(f, nullptr, &n) != 0) return false;
    uint8_t* out = Room(held, n);
    const bool ok = out && SignLarge(f, out, &n) == 0;
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
    Release(held, out);
    return ok;
}

bool BaselineCopy(const Fixture& f, Bytes* held) {
    uint8_t* out = Room(held, kLargeSize);
    if (!out) return false;
    std::memcpy(out, f.content.data(), kLargeSize);
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
    Release(held, out);
    return true;
}

void Sign64MiB(benchmark::State& state, bool (*sign)(const Fixture&, Bytes*), bool keepOutput) {
    const Fixture& f = TheFixture();
    Bytes kept = keepOutput ? f.large : Bytes{};  // touched, the size of the message
    Bytes* held = keepOutput ? &kept : nullptr;
    for (auto _ : state)
        if (!sign(f, held)) return state.SkipWithError("no message");
    state.SetBytesProcessed(int64_t(state.iterations()) * kLargeSize);
    ReportFootprint(state, reinterpret_cast<const void*>(sign), held ? std::vector<Bytes*>{held} : std::vector<Bytes*>{},
                    [&] { return sign(f, held); });
}

void BM_TarvelonCmsSign64MiB(benchmark::State& state, bool held) { Sign64MiB(state, TarvelonSign, held); }
void BM_BaselineCopy64MiB(benchmark::State& state, bool held) { Sign64MiB(state, BaselineCopy, held); }

BENCHMARK(BM_TarvelonCmsDetachedRoundTrip);
BENCHMARK(BM_OpenSslCmsDetachedRoundTrip);
BENCHMARK_CAPTURE(BM_TarvelonCmsRead64MiB, fresh, false)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_OpenSslCmsRead64MiB, fresh, false)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_TarvelonCmsRead64MiB, held, true)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_OpenSslCmsRead64MiB, held, true)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_TarvelonCmsSign64MiB, fresh, false)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_BaselineCopy64MiB, fresh, false)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_TarvelonCmsSign64MiB, held, true)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK_CAPTURE(BM_BaselineCopy64MiB, held, true)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace
