// SHA-1 (FIPS 180-4), one-shot. Used for subject key identifiers and offered to callers; it is the
// library's only cryptographic primitive. Processors with the SHA extensions take the SHA-NI path,
// chosen at run time so that the library itself stays baseline x86-64.
#include "tarvelon/text/Text.h"

#include "tarvelon/text.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <immintrin.h>
#define TV_SHA1_X86 1
#endif

TV_MODULE(sha1)

namespace tv {
namespace {

constexpr uint32_t kInitial[5] = {0x67452301u, 0xEFCDAB89u, 0x98BADCFEu, 0x10325476u, 0xC3D2E1F0u};
constexpr size_t kBlock = 64;

using BlockFn = void (*)(uint32_t state[5], const uint8_t* data, size_t blocks);

inline uint32_t Rotl(uint32_t x, int n) { return (x << n) | (x >> (32 - n)); }

inline uint32_t LoadBe32(const uint8_t* p) {
    return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}

void BlocksPortable(uint32_t state[5], const uint8_t* data, size_t blocks) {
    uint32_t a = state[0], b = state[1], c = state[2], d = state[3], e = state[4];
    for (; blocks; --blocks, data += kBlock) {
        uint32_t w[16];
        for (int i = 0; i < 16; ++i) w[i] = LoadBe32(data + 4 * i);
        const uint32_t sa = a, sb = b, sc = c, sd = d, se = e;
        // Message words past 15 are computed in place in a 16-word ring.
        auto W = [&w](int t) -> uint32_t {
            if (t < 16) return w[t];
            const uint32_t v = Rotl(w[(t + 13) & 15] ^ w[(t + 8) & 15] ^ w[(t + 2) & 15] ^ w[t & 15], 1);
            w[t & 15] = v;
            return v;
        };
#define TV_SHA1_R(t, f, k)                                                  \
    do {                                                                    \
        const uint32_t tmp = Rotl(a, 5) + (f) + e + (k) + W(t);             \
        e = d;                                                              \
        d = c;                                                              \
        c = Rotl(b, 30);                                                    \
        b = a;                                                              \
        a = tmp;                                                            \
    } while (0)
        for (int t = 0; t < 20; ++t) TV_SHA1_R(t, (b & c) | (~b & d), 0x5A827999u);
        for (int t = 20; t < 40; ++t) TV_SHA1_R(t, b ^ c ^ d, 0x6ED9EBA1u);
        for (int t = 40; t < 60; ++t) TV_SHA1_R(t, (b & c) | (b & d) | (c & d), 0x8F1BBCDCu);
        for (int t = 60; t < 80; ++t) TV_SHA1_R(t, b ^ c ^ d, 0xCA62C1D6u);
#undef TV_SHA1_R
        a += sa;
        b += sb;
        c += sc;
        d += sd;
        e += se;
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
    state[3] = d;
    state[4] = e;
}

#ifdef TV_SHA1_X86

// Four rounds per step k (0..19), round function k / 5. The message schedule runs three steps ahead
// in a ring of four registers: msg1 starts word group k + 3, the XOR adds group k + 2 and msg2
// finishes group k + 1. E alternates between two registers, one feeding the rounds, one saving A.
#define TV_SHA1_NI_STEP(k, eCur, eNext)                                                   \
    do {                                                                                  \
        if ((k) == 0) eCur = _mm_add_epi32(eCur, m[0]);                                   \
        else eCur = _mm_sha1nexte_epu32(eCur, m[(k) & 3]);                                \
        eNext = abcd;                                                                     \
        if ((k) >= 3 && (k) <= 18) m[((k) + 1) & 3] = _mm_sha1msg2_epu32(m[((k) + 1) & 3], m[(k) & 3]); \
        abcd = _mm_sha1rnds4_epu32(abcd, eCur, (k) / 5);                                  \
        if ((k) >= 1 && (k) <= 16) m[((k) - 1) & 3] = _mm_sha1msg1_epu32(m[((k) - 1) & 3], m[(k) & 3]); \
        if ((k) >= 2 && (k) <= 17) m[((k) - 2) & 3] = _mm_xor_si128(m[((k) - 2) & 3], m[(k) & 3]); \
    } while (0)

__attribute__((target("sha,sse4.1"))) void BlocksShaNi(uint32_t state[5], const uint8_t* data, size_t blocks) {
    const __m128i byteSwap = _mm_set_epi64x(0x0001020304050607LL, 0x08090A0B0C0D0E0FLL);
    __m128i abcd = _mm_shuffle_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(state)), 0x1B);
    __m128i e0 = _mm_set_epi32(static_cast<int>(state[4]), 0, 0, 0);
    __m128i e1;
    for (; blocks; --blocks, data += kBlock) {
        const __m128i abcdSave = abcd, eSave = e0;
        __m128i m[4];
        for (int i = 0; i < 4; ++i)
            m[i] = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(data + 16 * i)), byteSwap);
        TV_SHA1_NI_STEP(0, e0, e1);
        TV_SHA1_NI_STEP(1, e1, e0);
        TV_SHA1_NI_STEP(2, e0, e1);
        TV_SHA1_NI_STEP(3, e1, e0);
        TV_SHA1_NI_STEP(4, e0, e1);
        TV_SHA1_NI_STEP(5, e1, e0);
        TV_SHA1_NI_STEP(6, e0, e1);
        TV_SHA1_NI_STEP(7, e1, e0);
        TV_SHA1_NI_STEP(8, e0, e1);
        TV_SHA1_NI_STEP(9, e1, e0);
        TV_SHA1_NI_STEP(10, e0, e1);
        TV_SHA1_NI_STEP(11, e1, e0);
        TV_SHA1_NI_STEP(12, e0, e1);
        TV_SHA1_NI_STEP(13, e1, e0);
        TV_SHA1_NI_STEP(14, e0, e1);
        TV_SHA1_NI_STEP(15, e1, e0);
        TV_SHA1_NI_STEP(16, e0, e1);
        TV_SHA1_NI_STEP(17, e1, e0);
        TV_SHA1_NI_STEP(18, e0, e1);
        TV_SHA1_NI_STEP(19, e1, e0);
        e0 = _mm_sha1nexte_epu32(e0, eSave);
        abcd = _mm_add_epi32(abcd, abcdSave);
    }
    _mm_storeu_si128(reinterpret_cast<__m128i*>(state), _mm_shuffle_epi32(abcd, 0x1B));
    state[4] = static_cast<uint32_t>(_mm_extract_epi32(e0, 3));
}
#undef TV_SHA1_NI_STEP

bool DetectShaNi() {
    unsigned a, b, c, d;
    if (!__get_cpuid(1, &a, &b, &c, &d)) return false;
    const bool ssse3 = (c & bit_SSSE3) != 0, sse41 = (c & bit_SSE4_1) != 0;
    if (!__get_cpuid_count(7, 0, &a, &b, &c, &d)) return false;
    return ssse3 && sse41 && (b & bit_SHA) != 0;
}

#endif

BlockFn Choose(Sha1Path path) {
#ifdef TV_SHA1_X86
    if (path != Sha1Path::Portable && Sha1HasShaNi()) return BlocksShaNi;
#else
    (void)path;
#endif
    return BlocksPortable;
}

}  // namespace

bool Sha1HasShaNi() noexcept {
#ifdef TV_SHA1_X86
    static const bool has = DetectShaNi();  // once; cpuid may trap to a hypervisor
    return has;
#else
    return false;
#endif
}

void Sha1Digest(const uint8_t* in, size_t n, uint8_t* digest, Sha1Path path) noexcept {
    const BlockFn blocks = Choose(path);
    uint32_t state[5];
    std::memcpy(state, kInitial, sizeof state);
    const size_t whole = n / kBlock;
    if (whole) blocks(state, in, whole);
    // The tail, the 0x80 marker and the 64-bit bit count fill one or two final blocks.
    uint8_t last[2 * kBlock] = {};
    const size_t rest = n - whole * kBlock;
    if (rest) std::memcpy(last, in + whole * kBlock, rest);
    last[rest] = 0x80;
    const size_t lastLen = rest < kBlock - 8 ? kBlock : 2 * kBlock;
    const uint64_t bits = uint64_t{n} * 8;
    for (int i = 0; i < 8; ++i) last[lastLen - 1 - i] = static_cast<uint8_t>(bits >> (8 * i));
    blocks(state, last, lastLen / kBlock);
    // Byte by byte: the standard digest at any address.
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 4; ++j) digest[4 * i + j] = static_cast<uint8_t>(state[i] >> (24 - 8 * j));
}

}  // namespace tv

extern "C" TV_API uint32_t sha1(const uint8_t* in, uint32_t inLen, uint8_t* outDigest) {
    if (!in || !outDigest) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    tv::Sha1Digest(in, inLen, outDigest);
    return TV_OK;
}
