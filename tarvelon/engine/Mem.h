// Heap access for the whole library, and the guards that make "freed on every path" structural.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <atomic>

#include "tarvelon/types.h"

namespace tv {

namespace testing {
// Number of allocations that still succeed before every later one fails; negative: never fail.
// Only the tests set it, to drive every cleanup path.
extern std::atomic<long> gAllocsBeforeFailure;
}  // namespace testing

inline bool AllocationAllowed() noexcept {
    long left = testing::gAllocsBeforeFailure.load(std::memory_order_relaxed);
    if (left < 0) return true;
    if (left == 0) return false;
    testing::gAllocsBeforeFailure.store(left - 1, std::memory_order_relaxed);
    return true;
}

// Blocks from this size up hold large contents (a signed document, the message that carries it).
// Filling a fresh block is then dominated by page faults, one per 4 KiB page; on virtual machines
// that costs about as much as ten copies of the data. These blocks are aligned to 2 MiB and marked
// for transparent huge pages, so they are faulted in 2 MiB at a time. They remain ordinary malloc
// memory: free() releases them, as the callers of Asn1Encode do.
inline constexpr size_t kLargeBlock = size_t{4} << 20;
void* AllocLarge(size_t n) noexcept;

// malloc with the test hook; a request of 0 octets still returns a unique block.
inline void* Alloc(size_t n) noexcept {
    if (!AllocationAllowed()) return nullptr;
    return n >= kLargeBlock ? AllocLarge(n) : std::malloc(n ? n : 1);
}
inline void* AllocZero(size_t n) noexcept { return AllocationAllowed() ? std::calloc(n ? n : 1, 1) : nullptr; }
inline void* Realloc(void* p, size_t n) noexcept { return AllocationAllowed() ? std::realloc(p, n ? n : 1) : nullptr; }
inline void Free(void* p) noexcept { std::free(p); }

template <typename T>
inline T* New() noexcept { return static_cast<T*>(AllocZero(sizeof(T))); }

// Copy of `n` octets in a fresh block; null for n == 0 (records keep no contents then) or on failure
// (told apart by the caller through n).
inline uint8_t* Duplicate(const uint8_t* src, size_t n) noexcept {
    if (n == 0) return nullptr;
    auto* p = static_cast<uint8_t*>(Alloc(n));
    if (p) std::memcpy(p, src, n);
    return p;
}

// Owns a malloc'd block until Release().
class HeapBytes {
public:
    HeapBytes() = default;
    explicit HeapBytes(uint8_t* p) noexcept : p_(p) {}
    HeapBytes(const HeapBytes&) = delete;
    HeapBytes& operator=(const HeapBytes&) = delete;
    ~HeapBytes() { Free(p_); }
    bool Allocate(size_t n) noexcept {
        Free(p_);
        p_ = static_cast<uint8_t*>(Alloc(n));
        return p_ != nullptr;
    }
    uint8_t* get() const noexcept { return p_; }
    uint8_t** Out() noexcept { return &p_; }
    uint8_t* Release() noexcept {
        uint8_t* p = p_;
        p_ = nullptr;
        return p;
    }

private:
    uint8_t* p_ = nullptr;
};

}  // namespace tv

extern "C" uint32_t FreeAsn1Object(const Asn1Descriptor* descriptor, void* value);

namespace tv {

// Owns a value tree of one descriptor until Release(); frees it on every other path.
class OwnedValue {
public:
    explicit OwnedValue(const Asn1Descriptor* d, void* v = nullptr) noexcept : d_(d), v_(v) {}
    OwnedValue(const OwnedValue&) = delete;
    OwnedValue& operator=(const OwnedValue&) = delete;
    ~OwnedValue() { FreeAsn1Object(d_, v_); }
    void* get() const noexcept { return v_; }
    template <typename T>
    T* as() const noexcept { return static_cast<T*>(v_); }
    void** Out() noexcept { return &v_; }
    void* Release() noexcept {
        void* v = v_;
        v_ = nullptr;
        return v;
    }

private:
    const Asn1Descriptor* d_;
    void* v_;
};

}  // namespace tv
