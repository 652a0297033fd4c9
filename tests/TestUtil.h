// Helpers shared by the tests: hex, files, owned values, allocation-failure loops.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tarvelon/tarvelon.h"

namespace tvtest {

using Bytes = std::vector<uint8_t>;

// "30 03 02 01 05" or "300302" -> octets; spaces ignored.
Bytes Hex(const std::string& text);
std::string ToHex(const uint8_t* p, size_t n);
inline std::string ToHex(const Bytes& b) { return ToHex(b.data(), b.size()); }

Bytes ReadFile(const std::string& path);
std::string Fixture(const std::string& relative);

// Any size-protocol writer (null buffer asks for the size): asks, checks that a buffer one octet
// short gives 49 with the size kept, then writes. Without `rc` success is expected; with it the
// code is stored and an empty vector returned on failure.
using Writer = std::function<uint32_t(uint8_t*, uint32_t*)>;
Bytes Sized(const Writer& write, uint32_t* rc = nullptr);

// Hex without separators, for substring searches in encodings.
std::string Flat(const Bytes& b);
// Dotted OID text -> packed form (length octet first).
Bytes Packed(const char* dotted);
bool SameTime(const LibraryTime& a, const LibraryTime& b);
// DER of every PEM certificate in /etc/ssl/certs (empty if there are none), with its file name.
std::vector<std::pair<std::string, Bytes>> SystemCaCertificates();

// Encodes with Asn1Encode; on failure returns an empty vector and stores the code.
Bytes Encode(const void* value, const Asn1Descriptor* d, uint32_t* rc = nullptr);

// Owns a value tree for the duration of a test.
struct Tree {
    const Asn1Descriptor* d;
    void* v = nullptr;
    explicit Tree(const Asn1Descriptor* desc) : d(desc) {}
    ~Tree() { FreeAsn1Object(d, v); }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    template <typename T>
    T* as() const { return static_cast<T*>(v); }
};

// Decodes `in` with `d`; returns the status and fills the tree and the consumed count.
uint32_t Decode(const Bytes& in, Tree& tree, uint32_t* consumed = nullptr);

// Runs `body` with the k-th allocation failing, k = 0, 1, ... until it succeeds without a failure;
// every failed run must return 1. Returns the number of runs.
template <typename F>
int ForEachAllocationFailure(F body);

void SetAllocationsBeforeFailure(long n);

template <typename F>
int ForEachAllocationFailure(F body) {
    for (long k = 0;; ++k) {
        SetAllocationsBeforeFailure(k);
        bool failedInjected = false;
        uint32_t rc = body();
        failedInjected = (rc == TV_ERR_NO_MEMORY);
        SetAllocationsBeforeFailure(-1);
        if (!failedInjected) {
            if (rc != TV_OK) return -static_cast<int>(k) - 1;  // an unexpected code
            return static_cast<int>(k) + 1;
        }
    }
}

}  // namespace tvtest
