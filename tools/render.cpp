// The shared rendering of `tarvelon show`, built only on the library's public C API.
//
// Names are printed as RFC 4514 strings: the last RDN of the encoding comes first, so the most
// significant RDN (usually C=) ends the line; entries of a multi-valued RDN are joined with '+'.
#include "render.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace show {

// ---------------------------------------------------------------------------------------------
// Output

namespace {
int gIndent = 0;  // depth added to every line while a nested summary prints
}  // namespace

Indent::Indent(int by) : by_(by) { gIndent += by; }
Indent::~Indent() { gIndent -= by_; }

void Print(int depth, const std::string& text) { std::printf("%*s%s\n", (depth + gIndent) * 2, "", text.c_str()); }

void Print(const Lines& lines, int extraDepth) {
    for (const auto& [depth, text] : lines.items) Print(depth + extraDepth, text);
}

void PrintHeaded(int depth, const std::string& head, const Lines& lines) {
    if (lines.items.size() == 1) {
        Print(depth, head + ": " + lines.items[0].second);
        return;
    }
    Print(depth, head + ":");
    Print(lines, depth + 1);
}

// ---------------------------------------------------------------------------------------------
// Buffers, hex, numbers, times

std::string Hex(const uint8_t* p, size_t n, size_t limit) {
    static const char digits[] = "0123456789ABCDEF";
    std::string s;
    const size_t shown = n < limit ? n : limit;
    for (size_t i = 0; i < shown; ++i) {
        if (i) s += ':';
        s += digits[p[i] >> 4];
        s += digits[p[i] & 15];
    }
    if (shown < n) s += "...";
    return s;
}
std::string Hex(const Bytes& b, size_t limit) { return Hex(b.data(), b.size(), limit); }

namespace {

std::string CompactHex(const uint8_t* p, size_t n) {
    std::string s = "0x";
    for (char c : Hex(p, n))
        if (c != ':') s += c;
    return s;
}

}  // namespace

// An INTEGER's content octets: decimal when non-negative and small (with the hex beside it unless
// plain is asked for), else hex.
std::string IntegerText(const uint8_t* p, size_t n, bool plain) {
    if (n == 0) return "0";
    if (n <= 8 && !(p[0] & 0x80)) {
        uint64_t v = 0;
        for (size_t i = 0; i < n; ++i) v = v << 8 | p[i];
        return std::to_string(v) + (plain ? "" : " (" + CompactHex(p, n) + ")");
    }
    return CompactHex(p, n);
}
std::string IntegerText(const Bytes& v) { return IntegerText(v.data(), v.size()); }

std::string TimeText(const LibraryTime& t) {
    if (IsLibraryTimeNull(&t)) return "(none)";
    char s[64];
    std::snprintf(s, sizeof s, "%04u-%02u-%02u %02u:%02u:%02u UTC", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return s;
}

std::string VersionField(Report& report, uint32_t rc, uint32_t version) {
    return rc == TV_OK ? std::to_string(version + 1) : rc == TV_ERR_ABSENT ? "1" : report.Failed(rc);
}

// ---------------------------------------------------------------------------------------------
// Text: every string type to UTF-8

namespace {

constexpr int32_t kRawByte = -1;  // code point slot for a byte that is not valid in its encoding

struct Char {
    int32_t cp;    // code point, or kRawByte
    uint8_t byte;  // the offending byte for kRawByte
};

void AppendUtf8(std::string& s, uint32_t cp) {
    if (cp < 0x80) {
        s += static_cast<char>(cp);
    } else if (cp < 0x800) {
        s += static_cast<char>(0xC0 | cp >> 6);
        s += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        s += static_cast<char>(0xE0 | cp >> 12);
        s += static_cast<char>(0x80 | (cp >> 6 & 0x3F));
        s += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        s += static_cast<char>(0xF0 | cp >> 18);
        s += static_cast<char>(0x80 | (cp >> 12 & 0x3F));
        s += static_cast<char>(0x80 | (cp >> 6 & 0x3F));
        s += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

void DecodeUtf8(const uint8_t* p, size_t n, std::vector<Char>& out) {
    size_t i = 0;
    while (i < n) {
        const uint8_t b = p[i];
        int extra = b < 0x80 ? 0 : (b & 0xE0) == 0xC0 ? 1 : (b & 0xF0) == 0xE0 ? 2 : (b & 0xF8) == 0xF0 ? 3 : -1;
        uint32_t cp = extra == 0 ? b : extra == 1 ? b & 0x1F : extra == 2 ? b & 0x0F : b & 0x07;
        bool ok = extra >= 0 && i + extra < n;
        for (int k = 1; ok && k <= extra; ++k) {
            ok = (p[i + k] & 0xC0) == 0x80;
            cp = cp << 6 | (p[i + k] & 0x3F);
        }
        // Overlong forms, surrogates and values past U+10FFFF are not text.
        static const uint32_t minimum[] = {0, 0x80, 0x800, 0x10000};
        if (ok && (cp < minimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))) ok = false;
        if (!ok) {
            out.push_back({kRawByte, b});
            ++i;
            continue;
        }
        out.push_back({static_cast<int32_t>(cp), 0});
        i += extra + 1;
    }
}

// Code points of a string value, or false when the tag is not a character string type.
bool DecodeString(uint32_t tag, const uint8_t* p, size_t n, std::vector<Char>& out) {
    switch (tag) {
    case ASN1_UTF8_STRING: DecodeUtf8(p, n, out); return true;
    case ASN1_BMP_STRING:  // UTF-16BE; a pair of surrogates makes one code point
        for (size_t i = 0; i < n; i += 2) {
            if (i + 1 >= n) {
                out.push_back({kRawByte, p[i]});
                break;
            }
            uint32_t u = p[i] << 8 | p[i + 1];
            if (u >= 0xD800 && u <= 0xDBFF && i + 3 < n) {
                const uint32_t low = p[i + 2] << 8 | p[i + 3];
                if (low >= 0xDC00 && low <= 0xDFFF) {
                    u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
                    i += 2;
                }
            }
            if (u >= 0xD800 && u <= 0xDFFF)
                out.push_back({0xFFFD, 0});
            else
                out.push_back({static_cast<int32_t>(u), 0});
        }
        return true;
    case ASN1_UNIVERSAL_STRING:  // UCS-4BE
        for (size_t i = 0; i + 3 < n; i += 4) {
            const uint32_t u = uint32_t{p[i]} << 24 | p[i + 1] << 16 | p[i + 2] << 8 | p[i + 3];
            out.push_back({u > 0x10FFFF || (u >= 0xD800 && u <= 0xDFFF) ? 0xFFFD : static_cast<int32_t>(u), 0});
        }
        for (size_t i = n - n % 4; i < n; ++i) out.push_back({kRawByte, p[i]});
        return true;
    case ASN1_NUMERIC_STRING:
    case ASN1_PRINTABLE_STRING:
    case ASN1_IA5_STRING:
    case ASN1_VISIBLE_STRING:
        for (size_t i = 0; i < n; ++i) out.push_back(p[i] < 0x80 ? Char{p[i], 0} : Char{kRawByte, p[i]});
        return true;
    case ASN1_TELETEX_STRING:  // in practice Latin-1 whatever T.61 says
    case ASN1_VIDEOTEX_STRING:
    case ASN1_GRAPHIC_STRING:
    case ASN1_GENERAL_STRING:
        for (size_t i = 0; i < n; ++i) out.push_back({p[i], 0});
        return true;
    default: return false;
    }
}

void AppendEscapedByte(std::string& s, uint8_t b) {
    char e[4];
    std::snprintf(e, sizeof e, "\\%02X", b);
    s += e;
}

bool IsRfc4514Special(int32_t cp) { return cp > 0 && cp < 0x80 && std::strchr(",+\"\\<>;", cp); }

// Controls and invalid bytes are shown as \XX so that nothing reaches the terminal raw. With
// rfc4514 set, the special characters of RFC 4514 section 2.4 are escaped as well.
std::string Render(const std::vector<Char>& chars, bool rfc4514) {
    std::string s;
    for (size_t i = 0; i < chars.size(); ++i) {
        const Char c = chars[i];
        if (c.cp == kRawByte) {
            AppendEscapedByte(s, c.byte);
        } else if (c.cp < 0x20 || c.cp == 0x7F) {
            AppendEscapedByte(s, static_cast<uint8_t>(c.cp));
        } else if (rfc4514 && (IsRfc4514Special(c.cp) || (i == 0 && (c.cp == '#' || c.cp == ' ')) ||
                               (i + 1 == chars.size() && c.cp == ' '))) {
            s += '\\';
            s += static_cast<char>(c.cp);
        } else {
            AppendUtf8(s, static_cast<uint32_t>(c.cp));
        }
    }
    return s;
}

}  // namespace

std::string PlainText(const uint8_t* p, size_t n, uint32_t tag) {
    std::vector<Char> chars;
    DecodeString(tag, p, n, chars);
    return Render(chars, false);
}
std::string PlainText(const Bytes& b, uint32_t tag) { return PlainText(b.data(), b.size(), tag); }

// ---------------------------------------------------------------------------------------------
// DER walker

bool ReadElement(const uint8_t* p, size_t n, Element& e) {
    if (n == 0 || n > UINT32_MAX) return false;
    uint32_t indefinite = 0, header = 0;
    if (GetAsn1ObjectInfo(p, static_cast<uint32_t>(n), &e.cls, &e.cons, &e.tag, &e.len, &indefinite, &header) != TV_OK)
        return false;
    if (indefinite || uint64_t{header} + e.len > n) return false;
    e.content = p + header;
    e.total = header + e.len;
    return true;
}

bool Children(const Element& parent, std::vector<Element>& out) {
    size_t pos = 0;
    while (pos < parent.len) {
        Element e;
        if (!ReadElement(parent.content + pos, parent.len - pos, e)) return false;
        out.push_back(e);
        pos += e.total;
    }
    return true;
}

// Text of a string element, or its hex when it is not a string.
std::string ElementText(const Element& e) {
    std::vector<Char> chars;
    if (e.cls == ASN1_CLASS_UNIVERSAL && !e.cons && DecodeString(e.tag, e.content, e.len, chars))
        return "\"" + Render(chars, false) + "\"";
    return '#' + Hex(e.content - (e.total - e.len), e.total, kHexShown);
}

std::string OuterProblem(const Bytes& der) {
    uint8_t cls = 0, cons = 0;
    uint32_t tag = 0, len = 0, indefinite = 0, header = 0;
    if (GetAsn1ObjectInfo(der.data(), static_cast<uint32_t>(der.size()), &cls, &cons, &tag, &len, &indefinite,
                          &header) != TV_OK)
        return ": no DER header";
    if (cls != ASN1_CLASS_UNIVERSAL || tag != ASN1_SEQUENCE) return ": does not start with a SEQUENCE";
    if (!indefinite && uint64_t{header} + len > der.size())
        return ": truncated, " + std::to_string(der.size()) + " of " + std::to_string(uint64_t{header} + len) +
               " bytes";
    return "";
}

// ---------------------------------------------------------------------------------------------
// Object identifiers and their names

// The arcs are decoded here rather than by ConvertOidToString, which keeps an old rule for a first
// subidentifier of 120 and above (2.999 comes out as 26.39): a reader wants the OID as registered.
std::string OidText(const uint8_t* packed) {
    if (!packed || packed[0] == 0 || (packed[packed[0]] & 0x80)) return "<bad OID>";
    std::string text;
    uint64_t arc = 0;
    for (uint32_t i = 1; i <= packed[0]; ++i) {
        if (arc >> 57) return "<bad OID>";  // wider than 64 bits
        arc = arc << 7 | (packed[i] & 0x7F);
        if (packed[i] & 0x80) continue;
        if (text.empty()) text = arc < 80 ? std::to_string(arc / 40) + "." + std::to_string(arc % 40) : "2." + std::to_string(arc - 80);
        else text += "." + std::to_string(arc);
        arc = 0;
    }
    return text;
}

namespace {

// RFC 4514 section 3 keywords where they exist, the usual short forms otherwise.
const OidName kAttributeNames[] = {
    {"2.5.4.3", "CN"},
    {"2.5.4.4", "SN"},
    {"2.5.4.5", "serialNumber"},
    {"2.5.4.6", "C"},
    {"2.5.4.7", "L"},
    {"2.5.4.8", "ST"},
    {"2.5.4.9", "street"},
    {"2.5.4.10", "O"},
    {"2.5.4.11", "OU"},
    {"2.5.4.12", "T"},
    {"2.5.4.13", "description"},
    {"2.5.4.17", "postalCode"},
    {"2.5.4.42", "GN"},
    {"2.5.4.43", "initials"},
    {"2.5.4.44", "generationQualifier"},
    {"2.5.4.46", "dnQualifier"},
    {"2.5.4.65", "pseudonym"},
    {"2.5.4.97", "organizationIdentifier"},
    {"1.2.840.113549.1.9.1", "emailAddress"},
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"0.9.2342.19200300.100.1.1", "UID"},
    {"0.9.2342.19200300.100.1.25", "DC"},
    {"1.2.643.100.1", "OGRN"},
    {"1.2.643.100.3", "SNILS"},
    {"1.2.643.100.4", "INNLE"},
    {"1.2.643.100.5", "OGRNIP"},
    {"1.2.643.3.131.1.1", "INN"},
};

// Public-key, signature and digest algorithms share one table: their OIDs never collide.
const OidName kAlgorithmNames[] = {
    {"1.3.14.3.2.26", "sha1"},
    {"2.16.840.1.101.3.4.2.1", "sha256"},
    {"2.16.840.1.101.3.4.2.2", "sha384"},
    {"2.16.840.1.101.3.4.2.3", "sha512"},
    {"2.16.840.1.101.3.4.2.4", "sha224"},
    {"1.2.643.2.2.9", "GOST R 34.11-94"},
    {"1.2.643.7.1.1.2.2", "GOST R 34.11-2012 256"},
    {"1.2.643.7.1.1.2.3", "GOST R 34.11-2012 512"},
    {"1.2.840.113549.1.1.1", "rsaEncryption"},
    {"1.2.840.113549.1.1.7", "RSAES-OAEP"},
    {"1.2.840.113549.3.7", "des-ede3-cbc"},
    {"2.16.840.1.101.3.4.1.2", "aes128-CBC"},
    {"2.16.840.1.101.3.4.1.22", "aes192-CBC"},
    {"2.16.840.1.101.3.4.1.42", "aes256-CBC"},
    {"1.2.643.2.2.21", "GOST 28147-89"},
    {"1.2.840.113549.1.1.2", "md2WithRSAEncryption"},
    {"1.2.840.113549.1.1.4", "md5WithRSAEncryption"},
    {"1.2.840.113549.1.1.5", "sha1WithRSAEncryption"},
    {"1.2.840.113549.1.1.10", "RSASSA-PSS"},
    {"1.2.840.113549.1.1.11", "sha256WithRSAEncryption"},
    {"1.2.840.113549.1.1.12", "sha384WithRSAEncryption"},
    {"1.2.840.113549.1.1.13", "sha512WithRSAEncryption"},
    {"1.2.840.113549.1.1.14", "sha224WithRSAEncryption"},
    {"1.2.840.10045.2.1", "id-ecPublicKey"},
    {"1.2.840.10045.4.3.2", "ecdsa-with-SHA256"},
    {"1.2.840.10045.4.3.3", "ecdsa-with-SHA384"},
    {"1.2.840.10045.4.3.4", "ecdsa-with-SHA512"},
    {"1.3.101.112", "Ed25519"},
    {"1.2.643.2.2.3", "GOST R 34.11-94 with GOST R 34.10-2001"},
    {"1.2.643.2.2.4", "GOST R 34.11-94 with GOST R 34.10-94"},
    {"1.2.643.2.2.19", "GOST R 34.10-2001"},
    {"1.2.643.2.2.20", "GOST R 34.10-94"},
    {"1.2.643.7.1.1.1.1", "GOST R 34.10-2012 256"},
    {"1.2.643.7.1.1.1.2", "GOST R 34.10-2012 512"},
    {"1.2.643.7.1.1.3.2", "GOST R 34.11-2012 256 with GOST R 34.10-2012 256"},
    {"1.2.643.7.1.1.3.3", "GOST R 34.11-2012 512 with GOST R 34.10-2012 512"},
};

// GOST public-key, digest and cipher parameter sets (RFC 4357, RFC 7836).
const OidName kGostParameterSets[] = {
    {"1.2.643.2.2.35.0", "id-GostR3410-2001-TestParamSet"},
    {"1.2.643.2.2.35.1", "id-GostR3410-2001-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.35.2", "id-GostR3410-2001-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.35.3", "id-GostR3410-2001-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.36.0", "id-GostR3410-2001-CryptoPro-XchA-ParamSet"},
    {"1.2.643.2.2.36.1", "id-GostR3410-2001-CryptoPro-XchB-ParamSet"},
    {"1.2.643.7.1.2.1.1.1", "id-tc26-gost-3410-2012-256-paramSetA"},
    {"1.2.643.7.1.2.1.1.2", "id-tc26-gost-3410-2012-256-paramSetB"},
    {"1.2.643.7.1.2.1.1.3", "id-tc26-gost-3410-2012-256-paramSetC"},
    {"1.2.643.7.1.2.1.1.4", "id-tc26-gost-3410-2012-256-paramSetD"},
    {"1.2.643.7.1.2.1.2.0", "id-tc26-gost-3410-2012-512-paramSetTest"},
    {"1.2.643.7.1.2.1.2.1", "id-tc26-gost-3410-2012-512-paramSetA"},
    {"1.2.643.7.1.2.1.2.2", "id-tc26-gost-3410-2012-512-paramSetB"},
    {"1.2.643.7.1.2.1.2.3", "id-tc26-gost-3410-2012-512-paramSetC"},
    {"1.2.643.2.2.30.0", "id-GostR3411-94-TestParamSet"},
    {"1.2.643.2.2.30.1", "id-GostR3411-94-CryptoProParamSet"},
    {"1.2.643.7.1.1.2.2", "id-tc26-gost3411-12-256"},
    {"1.2.643.7.1.1.2.3", "id-tc26-gost3411-12-512"},
    {"1.2.643.2.2.31.0", "id-Gost28147-89-TestParamSet"},
    {"1.2.643.2.2.31.1", "id-Gost28147-89-CryptoPro-A-ParamSet"},
    {"1.2.643.2.2.31.2", "id-Gost28147-89-CryptoPro-B-ParamSet"},
    {"1.2.643.2.2.31.3", "id-Gost28147-89-CryptoPro-C-ParamSet"},
    {"1.2.643.2.2.31.4", "id-Gost28147-89-CryptoPro-D-ParamSet"},
    {"1.2.643.7.1.2.5.1.1", "id-tc26-gost-28147-param-Z"},
};

// ---------------------------------------------------------------------------------------------
// Names and general names

std::string AttributeValueText(uint8_t cls, uint8_t cons, uint8_t tag, const Bytes& value) {
    std::vector<Char> chars;
    if (cls == ASN1_CLASS_UNIVERSAL && !cons && DecodeString(tag, value.data(), value.size(), chars))
        return Render(chars, true);
    // RFC 4514 2.4: a value of another type is '#' and the hex of its BER encoding.
    Bytes element{static_cast<uint8_t>(cls | (cons ? ASN1_CONSTRUCTED_FORM : 0) | tag)};
    const size_t n = value.size();
    if (n < 0x80) {
        element.push_back(static_cast<uint8_t>(n));
    } else {
        Bytes len;
        for (size_t k = n; k; k >>= 8) len.insert(len.begin(), static_cast<uint8_t>(k));
        element.push_back(static_cast<uint8_t>(0x80 | len.size()));
        element.insert(element.end(), len.begin(), len.end());
    }
    element.insert(element.end(), value.begin(), value.end());
    return '#' + CompactHex(element.data(), element.size()).substr(2);
}

// With `only` (a dotted OID) set, the entries of other types are left out.
uint32_t NameText(const X509Name* name, std::string& out, const char* only = nullptr) {
    uint32_t rdns = 0;
    if (uint32_t rc = GetX509NameRdnCount(name, &rdns)) return rc;
    out.clear();
    for (uint32_t r = rdns; r-- > 0;) {
        uint32_t entries = 0;
        if (uint32_t rc = GetX509NameEntryCount(name, r, &entries)) return rc;
        bool first = true;
        for (uint32_t e = 0; e < entries; ++e) {
            uint8_t cls = 0, cons = 0, tag = 0, oid[256];
            uint32_t len = 0, oidLen = 0;
            if (uint32_t rc = GetX509NameEntryExt(name, r, e, nullptr, &len, &cls, &cons, &tag, nullptr, &oidLen))
                return rc;
            Bytes value(len ? len : 1);
            oidLen = sizeof oid;
            if (uint32_t rc = GetX509NameEntryExt(name, r, e, value.data(), &len, &cls, &cons, &tag, oid, &oidLen))
                return rc;
            value.resize(len);
            const std::string type = OidText(oid);
            if (only && type != only) continue;
            if (!out.empty()) out += first ? ',' : '+';
            first = false;
            out += Named(kAttributeNames, type) + "=" + AttributeValueText(cls, cons, tag, value);
        }
    }
    if (out.empty()) out = "(empty)";
    return TV_OK;
}

}  // namespace

std::string NameOrStatus(const X509Name* name) {
    std::string text;
    if (uint32_t rc = NameText(name, text)) return "<unreadable name, status " + std::to_string(rc) + ">";
    return text;
}

std::string CommonNameText(const X509Name* name) {
    std::string text;
    if (uint32_t rc = NameText(name, text, "2.5.4.3")) return "<unreadable name, status " + std::to_string(rc) + ">";
    return text == "(empty)" ? NameOrStatus(name) : text;
}

std::string NameField(Report& report, uint32_t rc, const X509Name* name) {
    std::string text;
    if (rc == TV_OK) rc = NameText(name, text);
    return rc == TV_OK ? text : report.Failed(rc);
}

namespace {

std::string IpText(const Bytes& a) {
    char s[64];
    if (a.size() == 4) {
        std::snprintf(s, sizeof s, "%u.%u.%u.%u", a[0], a[1], a[2], a[3]);
        return s;
    }
    if (a.size() == 16) {
        std::string t;
        for (size_t i = 0; i < 16; i += 2) {
            std::snprintf(s, sizeof s, "%s%x", i ? ":" : "", a[i] << 8 | a[i + 1]);
            t += s;
        }
        return t;
    }
    return Hex(a);  // address and mask of a name constraint, or something odd
}

// otherName arrives as the whole [0] element: { type-id OBJECT IDENTIFIER, value [0] EXPLICIT ANY }.
std::string OtherNameText(const Bytes& v) {
    Element outer;
    std::vector<Element> parts;
    if (ReadElement(v.data(), v.size(), outer) && Children(outer, parts) && parts.size() == 2 &&
        IsUniversal(parts[0], ASN1_OBJECT_IDENTIFIER) && parts[0].len < 256) {
        uint8_t packed[256];
        packed[0] = static_cast<uint8_t>(parts[0].len);
        std::memcpy(packed + 1, parts[0].content, parts[0].len);
        Element inner;
        std::string value = ReadElement(parts[1].content, parts[1].len, inner) ? ElementText(inner) : "?";
        return OidText(packed) + ";" + value;
    }
    return "#" + Hex(v, kHexShown);
}

}  // namespace

std::string GeneralNameText(uint32_t kind, const Bytes& v) {
    switch (kind) {
    case 0: return "otherName:" + OtherNameText(v);
    case 1: return "email:" + PlainText(v, ASN1_IA5_STRING);
    case 2: return "DNS:" + PlainText(v, ASN1_IA5_STRING);
    case 3: return "X400:#" + Hex(v, kHexShown);
    case 4: {
        X509Name* name = nullptr;
        if (uint32_t rc = DecodeX509Name(v.data(), static_cast<uint32_t>(v.size()), &name))
            return "DirName:<undecodable, status " + std::to_string(rc) + "> #" + Hex(v, kHexShown);
        std::string text = "DirName:" + NameOrStatus(name);
        FreeX509Name(name);
        return text;
    }
    case 5: return "EdiParty:#" + Hex(v, kHexShown);
    case 6: return "URI:" + PlainText(v, ASN1_IA5_STRING);
    case 7: return "IP:" + IpText(v);
    case 8: return "RID:" + (v.empty() ? std::string("?") : OidText(v.data()));
    default: return "kind " + std::to_string(kind) + ":#" + Hex(v, kHexShown);
    }
}

uint32_t AddGeneralNames(const GeneralNames* names, int depth, const char* prefix, Lines& out) {
    uint32_t count = 0;
    if (uint32_t rc = GetX509GeneralNameCount(names, &count)) return rc;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t kind = 0;
        Bytes v;
        if (uint32_t rc = Fetch(v, [&](uint8_t* o, uint32_t* n) { return GetX509GeneralName(names, i, &kind, o, n); }))
            return rc;
        out.Add(depth, prefix + GeneralNameText(kind, v));
    }
    return TV_OK;
}

// ---------------------------------------------------------------------------------------------
// Algorithms and keys

std::string AlgorithmText(const Bytes& oid) {
    if (oid.empty()) return "<none>";
    return NamedWithOid(kAlgorithmNames, OidText(oid.data()));
}

const char* BaseOidName(const std::string& dotted) {
    for (const char* name : {Lookup(kAttributeNames, dotted), Lookup(kAlgorithmNames, dotted), Lookup(kGostParameterSets, dotted)})
        if (name) return name;
    return nullptr;
}

std::string ParameterSetText(const Bytes& oid) {
    if (oid.empty()) return "<none>";
    return Named(kGostParameterSets, OidText(oid.data()));
}

namespace {

bool IsNullParameters(const Bytes& params) { return params.size() == 2 && params[0] == 0x05 && params[1] == 0; }

// RSAPublicKey ::= SEQUENCE { modulus INTEGER, publicExponent INTEGER }
void AddRsaKey(const Bytes& key, Lines& out) {
    Element seq;
    std::vector<Element> parts;
    if (!ReadElement(key.data(), key.size(), seq) || !Children(seq, parts) || parts.size() != 2 ||
        !IsUniversal(parts[0], ASN1_INTEGER) || !IsUniversal(parts[1], ASN1_INTEGER)) {
        out.Add(1, "Key: not an RSAPublicKey, " + std::to_string(key.size()) + " bytes");
        return;
    }
    const uint8_t* m = parts[0].content;
    uint32_t n = parts[0].len;
    while (n && *m == 0) ++m, --n;
    uint32_t bits = n * 8;
    for (uint8_t top = n ? *m : 0x80; bits && !(top & 0x80); top <<= 1) --bits;
    Bytes exponent(parts[1].content, parts[1].content + parts[1].len);
    out.Add(1, "RSA key: " + std::to_string(bits) + " bits, exponent " + IntegerText(exponent));
}

// The GOST parameter block: public-key and digest sets, the cipher set only when it is not the
// default that the decoder fills in for an absent one.
void AddGostParameters(uint32_t algId, const Bytes& params, Lines& out) {
    if (params.empty() || IsNullParameters(params)) return;
    uint8_t mode = 0, keySet[256], digestSet[256], cipherSet[256];
    uint32_t keyLen = sizeof keySet, digestLen = sizeof digestSet, cipherLen = sizeof cipherSet;
    uint32_t rc =
        DecodeAlgorithmGostR3410ParameterOids(algId, params.data(), static_cast<uint32_t>(params.size()), &mode, keySet,
                                              &keyLen, digestSet, &digestLen, cipherSet, &cipherLen);
    if (rc != TV_OK) {
        out.Add(1, "Parameters: #" + Hex(params, kHexShown) + " (not decoded, status " + std::to_string(rc) + ")");
        return;
    }
    if (mode != 1) return;
    out.Add(1, "Parameter set: " + Named(kGostParameterSets, OidText(keySet)));
    if (digestLen > 1) out.Add(1, "Digest parameter set: " + Named(kGostParameterSets, OidText(digestSet)));
    const std::string cipher = cipherLen > 1 ? OidText(cipherSet) : "";
    const char* defaultCipher = algId == 102 ? "1.2.643.2.2.31.1" : "1.2.643.7.1.2.5.1.1";
    if (!cipher.empty() && cipher != defaultCipher)
        out.Add(1, "Encryption parameter set: " + Named(kGostParameterSets, cipher));
}

void AddGostKey(uint32_t algId, const Bytes& key, Lines& out) {
    Bytes raw;
    uint32_t rc = Fetch(raw, [&](uint8_t* o, uint32_t* n) {
        return algId == 102 ? DecodePublicKeyGostR34102001(key.data(), static_cast<uint32_t>(key.size()), o, n)
                            : DecodePublicKeyGostR34102012(key.data(), static_cast<uint32_t>(key.size()), o, n);
    });
    if (rc == TV_OK)
        out.Add(1, "Key (" + std::to_string(raw.size()) + " bytes): " + Hex(raw, kHexShown));
    else
        out.Add(1, "Key: #" + Hex(key, kHexShown) + " (not decoded, status " + std::to_string(rc) + ")");
}

void PrintPublicKey(int depth, const Bytes& oid, const Bytes& params, const Bytes& key) {
    Lines lines;
    lines.Add(0, "Public key: " + AlgorithmText(oid));
    uint32_t algId = 0;
    if (!oid.empty() && FindAlgIdByOid(oid.data(), &algId) != TV_OK) algId = 0;
    if (algId == 102 || algId == 3000 || algId == 3001) {
        AddGostParameters(algId, params, lines);
        AddGostKey(algId, key, lines);
    } else if (algId == 1) {
        AddRsaKey(key, lines);
    } else {
        if (!params.empty() && !IsNullParameters(params)) lines.Add(1, "Parameters: #" + Hex(params, kHexShown));
        lines.Add(1, "Key (" + std::to_string(key.size()) + " bytes): " + Hex(key, kHexShown));
    }
    Print(lines, depth);
}

void PrintSignature(int depth, const Bytes& oid, const Bytes& params, const Bytes& signature) {
    std::string s = "Signature algorithm: " + AlgorithmText(oid);
    if (!params.empty() && !IsNullParameters(params)) s += ", parameters #" + Hex(params, kHexShown);
    Print(depth, s);
    Print(depth, "Signature: " + std::to_string(signature.size()) + " bytes");
}

}  // namespace

void PrintAlgorithmPart(Part part, Report& report, uint32_t algorithmRc, const AlgorithmParts& alg, uint32_t octetsRc,
                        const Bytes& octets, int depth) {
    const std::string title = part == Part::PublicKey ? "Public key: " : "Signature algorithm: ";
    if (algorithmRc != TV_OK || octetsRc != TV_OK) {
        Print(depth, title + (algorithmRc != TV_OK ? report.Failed(algorithmRc) : AlgorithmText(alg.oid)));
        if (octetsRc != TV_OK)
            Print(depth + 1, (part == Part::PublicKey ? "Key: " : "Signature: ") + report.Failed(octetsRc));
        return;
    }
    if (part == Part::PublicKey)
        PrintPublicKey(depth, alg.oid, alg.params, octets);
    else
        PrintSignature(depth, alg.oid, alg.params, octets);
}

}  // namespace show
