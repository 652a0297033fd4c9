#include "TestUtil.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "tarvelon/Mem.h"

namespace tvtest {

Bytes Hex(const std::string& text) {
    Bytes out;
    int nibble = -1;
    for (char c : text) {
        int v;
        if (c >= '0' && c <= '9') v = c - '0';
        else if (c >= 'a' && c <= 'f') v = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') v = c - 'A' + 10;
        else continue;
        if (nibble < 0) {
            nibble = v;
        } else {
            out.push_back(static_cast<uint8_t>(nibble << 4 | v));
            nibble = -1;
        }
    }
    return out;
}

std::string ToHex(const uint8_t* p, size_t n) {
    static const char* digits = "0123456789ABCDEF";
    std::string s;
    for (size_t i = 0; i < n; ++i) {
        if (i) s += ' ';
        s += digits[p[i] >> 4];
        s += digits[p[i] & 15];
    }
    return s;
}

Bytes ReadFile(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
}

std::string Fixture(const std::string& relative) { return std::string(TV_FIXTURES) + "/" + relative; }

Bytes Encode(const void* value, const Asn1Descriptor* d, uint32_t* rc) {
    uint8_t* buffer = nullptr;
    uint32_t len = 0;
    uint32_t code = Asn1Encode(value, d, &buffer, &len);
    if (rc) *rc = code;
    if (code != TV_OK) return {};
    Bytes out(buffer, buffer + len);
    std::free(buffer);
    return out;
}

uint32_t Decode(const Bytes& in, Tree& tree, uint32_t* consumed) {
    uint32_t used = 0;
    static const uint8_t kEmpty = 0;
    uint32_t rc = Asn1DecodeItem(in.empty() ? &kEmpty : in.data(), static_cast<uint32_t>(in.size()), tree.d, &tree.v,
                                 &used);
    if (consumed) *consumed = used;
    return rc;
}

void SetAllocationsBeforeFailure(long n) { tv::testing::gAllocsBeforeFailure.store(n); }

}  // namespace tvtest
