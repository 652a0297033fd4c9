// What every benchmark file needs: the fixtures' octets and the size protocol's two calls.
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace bench {

using Bytes = std::vector<uint8_t>;

// A file under tests/fixtures; empty when it cannot be read.
inline Bytes Load(const std::string& relative) {
    std::ifstream f(std::string(TV_FIXTURES) + "/" + relative, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
}

// The size protocol: the size, then the octets; empty on failure.
template <class T>
Bytes Encoded(uint32_t (*encode)(const T*, uint8_t*, uint32_t*), const T* handle) {
    uint32_t n = 0;
    if (encode(handle, nullptr, &n) != 0) return {};
    Bytes out(n);
    return encode(handle, out.data(), &n) == 0 ? out : Bytes{};
}

}  // namespace bench
