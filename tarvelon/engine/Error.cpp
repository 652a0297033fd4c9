#include "tarvelon/engine/Error.h"

#include <sys/mman.h>

#include <atomic>
#include <cstdlib>

#include "tarvelon/engine/Engine.h"

namespace tv {

namespace {

constexpr const char* kModuleNames[] = {
#define TV_MODULE_NAME(name) "tarvelon/" #name ".cpp",
    TV_MODULES(TV_MODULE_NAME)
#undef TV_MODULE_NAME
};

// Relaxed atomics cost nothing over the plain variables callers expect and keep concurrent
// failures free of data races; the record still names whichever failure came last.
std::atomic<const char*> gLastModule{nullptr};
std::atomic<uint32_t> gLastLine{0};

}  // namespace

namespace testing {
std::atomic<long> gAllocsBeforeFailure{-1};
}

void* AllocLarge(size_t n) noexcept {
    constexpr size_t kHugePage = size_t{2} << 20;
    void* p = nullptr;
    if (posix_memalign(&p, kHugePage, n) != 0) return nullptr;
    // Advice only: where transparent huge pages are off the block is an ordinary one.
    madvise(p, n, MADV_HUGEPAGE);
    return p;
}

const char* ModuleName(Module m) noexcept { return kModuleNames[static_cast<size_t>(m)]; }

uint32_t Fail(Site site, uint32_t code) noexcept {
    gLastModule.store(ModuleName(site.module), std::memory_order_relaxed);
    gLastLine.store(site.line, std::memory_order_relaxed);
    return code;
}

uint32_t PutBytes(Site site, const void* src, size_t n, void* out, uint32_t* outLen) noexcept {
    return WriteSized(site, n, static_cast<uint8_t*>(out), outLen, [&](uint8_t* to) {
        if (n) std::memcpy(to, src, n);
        return uint32_t{TV_OK};
    });
}

}  // namespace tv

extern "C" TV_API const char* GetLastFileErrorAsn(uint32_t* outLine) {
    const char* module = tv::gLastModule.load(std::memory_order_relaxed);
    if (outLine) *outLine = tv::gLastLine.load(std::memory_order_relaxed);
    return module;
}
