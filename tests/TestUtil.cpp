#include "TestUtil.h"

#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>

#include "tarvelon/engine/Mem.h"

namespace tvtest {

Bytes Hex(const std::string& text) {
    std::string digits;
    for (char c : text)
        if (std::isxdigit(static_cast<unsigned char>(c))) digits += c;
    Bytes out;
    for (size_t i = 0; i + 1 < digits.size(); i += 2) out.push_back(static_cast<uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
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

std::vector<std::pair<std::string, Fields>> ExpectRows(const std::string& folder) {
    std::vector<std::pair<std::string, Fields>> rows;
    std::ifstream lines(Fixture(folder + "/EXPECT"));
    for (std::string line, pair; std::getline(lines, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        auto& [file, fields] = rows.emplace_back();
        for (words >> file; words >> pair;) fields[pair.substr(0, pair.find('='))] = pair.substr(pair.find('=') + 1);
    }
    return rows;
}

void Append(Fields& got, const std::string& key, const std::string& item, const char* separator) {
    std::string& list = got[key];
    list += (list.empty() ? "" : separator) + item;
}

std::string PlainHex(const Bytes& b, bool lower) {
    std::string hex = ToHex(b);
    std::erase(hex, ' ');
    if (lower)
        for (char& c : hex) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return hex;
}

std::string Dotted(const Bytes& packed) {
    if (packed.empty()) return "-";
    char text[160];
    uint32_t n = sizeof text;
    const uint32_t rc = ConvertOidToString(packed.data(), text, &n);
    return rc == TV_OK ? std::string(text) : "status " + std::to_string(rc);
}

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

void SetAllocationsBeforeFailure(long n) { tv::testing::gAllocsBeforeFailure.store(n); }

}  // namespace tvtest
