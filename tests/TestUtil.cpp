#include "TestUtil.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tarvelon/engine/Mem.h"

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
Bytes FixtureFile(const std::string& relative) { return ReadFile(Fixture(relative)); }

Bytes Child(const Bytes& der, std::initializer_list<int> path) {
    const uint8_t* at = der.data();
    uint32_t room = Size(der), header = 0, length = 0, tag = 0;
    uint8_t cls = 0, constructed = 0;
    if (GetAsn1ObjectInfo(at, room, &cls, &constructed, &tag, &length, nullptr, &header) != TV_OK) return {};
    for (int index : path) {
        room = length, at += header;  // into the contents, then past `index` siblings
        for (int i = 0;; ++i) {
            if (GetAsn1ObjectInfo(at, room, &cls, &constructed, &tag, &length, nullptr, &header) != TV_OK) return {};
            if (i == index) break;
            at += header + length, room -= header + length;
        }
    }
    return Bytes(at, at + header + length);
}

std::string Got::hex() const { return rc == TV_OK ? ToHex(bytes) : "status " + std::to_string(rc); }

Got Sized(const Writer& write) {
    Got g;
    uint32_t n = 0;
    if ((g.rc = write(nullptr, &n)) != TV_OK) return g;
    if (n > 0) {
        Bytes shortBuffer(n);  // never empty: a null buffer would be a size query
        uint32_t m = n - 1;
        const uint32_t rc = write(shortBuffer.data(), &m);
        if (rc != TV_ERR_BUFFER_TOO_SMALL) {
            EXPECT_NE(rc, TV_OK) << "a buffer one octet short was accepted";
            g.rc = rc;
            return g;
        }
        EXPECT_EQ(m, n) << "the size was not kept with 49";
    }
    g.bytes.resize(n);
    g.rc = write(g.bytes.data(), &n);
    g.bytes.resize(g.rc == TV_OK ? n : 0);
    return g;
}

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

Bytes OldSized(const Writer& write, uint32_t* rc) {
    uint32_t n = 0;
    uint32_t r = write(nullptr, &n);
    if (r == TV_OK && n > 0) {
        Bytes shortBuf(n);  // never empty: a null buffer would be a size query
        uint32_t m = n - 1;
        const uint32_t s = write(shortBuf.data(), &m);
        if (s == TV_ERR_NO_MEMORY) {
            r = s;
        } else {
            EXPECT_EQ(s, TV_ERR_BUFFER_TOO_SMALL);
            EXPECT_EQ(m, n);
        }
    }
    Bytes out(n);
    if (r == TV_OK) r = write(out.data(), &n);
    if (rc) *rc = r;
    else EXPECT_EQ(r, TV_OK);
    out.resize(r == TV_OK ? n : 0);
    return out;
}

std::string Flat(const Bytes& b) {
    std::string h = ToHex(b);
    std::erase(h, ' ');
    return h;
}

Bytes Packed(const char* dotted) {
    uint8_t buf[64];
    uint32_t n = sizeof buf;
    EXPECT_EQ(ConvertStringToOid(dotted, buf, &n), TV_OK) << dotted;
    return Bytes(buf, buf + n);
}

bool SameTime(const LibraryTime& a, const LibraryTime& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
           a.second == b.second;
}

std::vector<std::pair<std::string, Bytes>> SystemCaCertificates() {
    std::vector<std::pair<std::string, Bytes>> out;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator("/etc/ssl/certs", ec)) {
        if (entry.path().extension() != ".pem") continue;
        const Bytes text = ReadFile(entry.path().string());
        const char* pem = reinterpret_cast<const char*>(text.data());
        uint32_t n = 0;
        if (text.empty() || DecodePem(pem, static_cast<uint32_t>(text.size()), nullptr, &n) != TV_OK) continue;
        Bytes der(n);
        EXPECT_EQ(DecodePem(pem, static_cast<uint32_t>(text.size()), der.data(), &n), TV_OK) << entry.path();
        der.resize(n);
        out.emplace_back(entry.path().string(), std::move(der));
    }
    return out;
}

void SetAllocationsBeforeFailure(long n) { tv::testing::gAllocsBeforeFailure.store(n); }

}  // namespace tvtest
