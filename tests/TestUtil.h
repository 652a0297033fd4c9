// Helpers shared by the tests: hex, fixtures, owners of library objects, the size protocol, packed
// OIDs and allocation-failure loops.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tarvelon/tarvelon.h"

namespace tvtest {

using Bytes = std::vector<uint8_t>;

// "30 03 02 01 05" or "300302" -> octets; anything but hex digits is skipped.
Bytes Hex(const std::string& text);
std::string ToHex(const uint8_t* p, size_t n);
inline std::string ToHex(const Bytes& b) { return ToHex(b.data(), b.size()); }
// Hex text in the form ToHex writes it, so that expected encodings can be written freely.
inline std::string H(const std::string& text) { return ToHex(Hex(text)); }
inline Bytes Text(const std::string& s) { return Bytes(s.begin(), s.end()); }
inline const uint8_t* U8(const char* s) { return reinterpret_cast<const uint8_t*>(s); }
inline uint32_t Size(const Bytes& b) { return static_cast<uint32_t>(b.size()); }

Bytes ReadFile(const std::string& path);
std::string Fixture(const std::string& relative);
Bytes FixtureFile(const std::string& relative);

// A fixture folder's EXPECT file: one line per file, "FILE KEY=VALUE...", # starts a comment. The
// field-by-field tests read a file into the same keys and compare the maps whole.
using Fields = std::map<std::string, std::string>;
std::vector<std::pair<std::string, Fields>> ExpectRows(const std::string& folder);
// Appends `item` to the list at `key` (comma-separated, as EXPECT writes lists over repeated parts).
void Append(Fields& got, const std::string& key, const std::string& item, const char* separator = ",");
// Hex without spaces, as EXPECT writes octets.
std::string PlainHex(const Bytes& b, bool lower = false);
// A packed OID as dotted text; "-" for none.
std::string Dotted(const Bytes& packed);

// The element reached from `der` by child indexes, header included: Child(cert, {0, 6}) is the
// SubjectPublicKeyInfo of a v3 certificate. Empty when the path does not exist.
Bytes Child(const Bytes& der, std::initializer_list<int> path);

// Dotted OID text -> packed form (length octet first).
Bytes Packed(const char* dotted);
bool SameTime(const LibraryTime& a, const LibraryTime& b);

// What a size-protocol getter gave: its status and, on success, its bytes.
struct Got {
    uint32_t rc = 0;
    Bytes bytes;
    Got(uint32_t status = TV_OK, Bytes b = {}) : rc(status), bytes(std::move(b)) {}
    // The bytes as ToHex writes them, or "status N" when the call failed.
    std::string hex() const;
};

// Runs a size-protocol writer (null buffer asks for the size) through the whole protocol: the size
// query, a buffer one octet short (49 with the size kept) and the exact buffer. A status other than
// 49 from the short buffer (an injected allocation failure) ends the run with that status.
using Writer = std::function<uint32_t(uint8_t*, uint32_t*)>;
Got Sized(const Writer& write);

// Get(GetCertificateSerialNumber, cert) calls the getter with the arguments given, then buffer and
// length; where further arguments follow the buffer, Out marks its place:
// Get(GetX509NameEntry, name, 0u, 0u, Out, &tag, oid, &oidLen).
struct OutTag {};
inline constexpr OutTag Out{};
template <typename T>
std::tuple<T> OutOr(uint8_t*, uint32_t*, T arg) {
    return std::tuple<T>(arg);
}
// The buffer as the getter takes it: octets, or the char buffer of a text.
struct OutBuffer {
    uint8_t* p;
    operator uint8_t*() const { return p; }
    operator char*() const { return reinterpret_cast<char*>(p); }
};
inline std::tuple<OutBuffer, uint32_t*> OutOr(uint8_t* out, uint32_t* n, OutTag) { return {OutBuffer{out}, n}; }
template <typename Fn, typename... A>
Got Get(Fn fn, A... args) {
    if constexpr ((std::is_same_v<A, OutTag> || ...))
        return Sized([&](uint8_t* out, uint32_t* n) { return std::apply(fn, std::tuple_cat(OutOr(out, n, args)...)); });
    else
        return Sized([&](uint8_t* out, uint32_t* n) { return fn(args..., OutBuffer{out}, n); });
}

// Owns a library object and frees it with the family's Free: Own<FreeCertificate> c; CreateCertificate(&c.p).
template <typename T>
T HandleOf(uint32_t (*)(T*));
template <auto Free>
struct Own {
    using T = decltype(HandleOf(Free));
    T* p = nullptr;
    Own() = default;
    explicit Own(T* taken) : p(taken) {}
    Own(Own&& o) noexcept : p(std::exchange(o.p, nullptr)) {}
    Own& operator=(Own&& o) noexcept {
        std::swap(p, o.p);
        return *this;
    }
    ~Own() { Free(p); }
    operator T*() const { return p; }
    T* release() { return std::exchange(p, nullptr); }
};

// Decodes `in` with a family's Decode, expecting success.
template <auto Free, typename Decode>
Own<Free> Decoded(Decode decode, const Bytes& in) {
    Own<Free> o;
    EXPECT_EQ(decode(in.data(), Size(in), &o.p), TV_OK);
    return o;
}

// A fresh object from a family's Create, expecting success: Made<FreeOcspRequest>(CreateOcspRequest).
template <auto Free, typename Create>
Own<Free> Made(Create create) {
    Own<Free> o;
    EXPECT_EQ(create(&o.p), TV_OK);
    return o;
}

// A count as text, or the status that refused it: "2", "status 311".
template <typename T>
std::string Counted(uint32_t (*count)(const T*, uint32_t*), const T* h) {
    uint32_t n = 0;
    const uint32_t rc = count(h, &n);
    return rc == TV_OK ? std::to_string(n) : "status " + std::to_string(rc);
}

// Runs `body` with the k-th allocation failing, k = 0, 1, ... until it succeeds without a failure;
// every failed run must return 1. Returns the number of runs, negated when another status came.
void SetAllocationsBeforeFailure(long n);
template <typename F>
int ForEachAllocationFailure(F body) {
    for (long k = 0;; ++k) {
        SetAllocationsBeforeFailure(k);
        const uint32_t rc = body();
        SetAllocationsBeforeFailure(-1);
        if (rc != TV_ERR_NO_MEMORY) return rc == TV_OK ? static_cast<int>(k) + 1 : -static_cast<int>(k) - 1;
    }
}

}  // namespace tvtest

// The status of a call that failed, passed on by the scenarios run under allocation failure.
#define TRY(call)                                 \
    do {                                          \
        if (const uint32_t rc_ = (call)) return rc_; \
    } while (0)
