// tarvelon show: a readable UTF-8 summary of a certificate, CRL or PKCS #10 request, built only on
// the library's public C API and its typed extension codecs.
//
// Names are printed as RFC 4514 strings: the last RDN of the encoding comes first, so the most
// significant RDN (usually C=) ends the line; entries of a multi-valued RDN are joined with '+'.
#include "show.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tarvelon/tarvelon.h"

namespace {

using Bytes = std::vector<uint8_t>;

// ---------------------------------------------------------------------------------------------
// Output

// Lines of one section, each with its depth. A value is collected first and printed only once its
// codec has succeeded, so a failure never leaves half a value on the screen.
struct Lines {
    std::vector<std::pair<int, std::string>> items;
    void Add(int depth, std::string text) { items.emplace_back(depth, std::move(text)); }
};

void Print(int depth, const std::string& text) { std::printf("%*s%s\n", depth * 2, "", text.c_str()); }

void Print(const Lines& lines, int extraDepth) {
    for (const auto& [depth, text] : lines.items) Print(depth + extraDepth, text);
}

// Values that a decoded object should always yield; a failure is shown in place and makes the exit
// status non-zero, but the rest of the summary is still printed.
struct Report {
    int failures = 0;
    std::string Failed(uint32_t rc) {
        ++failures;
        return "<unreadable, status " + std::to_string(rc) + ">";
    }
};

// ---------------------------------------------------------------------------------------------
// Buffers, hex, numbers, times

// Runs a getter under the size protocol: the size first, then the data.
template <class Get>
uint32_t Fetch(Bytes& out, Get&& get) {
    uint32_t len = 0;
    uint32_t rc = get(nullptr, &len);
    if (rc != TV_OK) return rc;
    out.assign(len, 0);
    if (len == 0) return TV_OK;
    rc = get(out.data(), &len);
    if (rc == TV_OK) out.resize(len);
    return rc;
}

constexpr size_t kHexShown = 32;

std::string Hex(const uint8_t* p, size_t n, size_t limit = SIZE_MAX) {
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
std::string Hex(const Bytes& b, size_t limit = SIZE_MAX) { return Hex(b.data(), b.size(), limit); }

std::string CompactHex(const uint8_t* p, size_t n) {
    std::string s = "0x";
    for (char c : Hex(p, n))
        if (c != ':') s += c;
    return s;
}

// An INTEGER's content octets: decimal when non-negative and small (with the hex beside it unless
// plain is asked for), else hex.
std::string IntegerText(const uint8_t* p, size_t n, bool plain = false) {
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

// ---------------------------------------------------------------------------------------------
// Text: every string type to UTF-8

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

std::string PlainText(const uint8_t* p, size_t n, uint32_t tag = ASN1_UTF8_STRING) {
    std::vector<Char> chars;
    DecodeString(tag, p, n, chars);
    return Render(chars, false);
}
std::string PlainText(const Bytes& b, uint32_t tag = ASN1_UTF8_STRING) { return PlainText(b.data(), b.size(), tag); }

// ---------------------------------------------------------------------------------------------
// A minimal DER walker for the few places the library hands out a whole element without a codec
// (policy qualifiers, otherName, the RSA key, the kind of the object).

struct Element {
    uint8_t cls = 0;
    uint8_t cons = 0;
    uint32_t tag = 0;
    const uint8_t* content = nullptr;
    uint32_t len = 0;
    uint32_t total = 0;  // header and content
};

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

bool Is(const Element& e, uint8_t cls, uint32_t tag) { return e.cls == cls && e.tag == tag; }
bool IsUniversal(const Element& e, uint32_t tag) { return Is(e, ASN1_CLASS_UNIVERSAL, tag); }

// Text of a string element, or its hex when it is not a string.
std::string ElementText(const Element& e) {
    std::vector<Char> chars;
    if (e.cls == ASN1_CLASS_UNIVERSAL && !e.cons && DecodeString(e.tag, e.content, e.len, chars))
        return "\"" + Render(chars, false) + "\"";
    return "#" + Hex(e.content - (e.total - e.len), e.total, kHexShown);
}

// ---------------------------------------------------------------------------------------------
// Object identifiers and their names

struct OidName {
    const char* oid;
    const char* name;
};

std::string OidText(const uint8_t* packed) {
    char text[1024];
    uint32_t size = sizeof text - 1;
    if (!packed || ConvertOidToString(packed, text, &size) != TV_OK) return "<bad OID>";
    text[size] = 0;
    return text;  // the size may count a terminator
}

template <size_t N>
const char* Lookup(const OidName (&table)[N], const std::string& dotted) {
    for (const OidName& row : table)
        if (dotted == row.oid) return row.name;
    return nullptr;
}

template <size_t N>
std::string Named(const OidName (&table)[N], const std::string& dotted) {
    const char* name = Lookup(table, dotted);
    return name ? name : dotted;
}

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

// Public-key and signature algorithms share one table: their OIDs never collide.
const OidName kAlgorithmNames[] = {
    {"1.2.840.113549.1.1.1", "rsaEncryption"},
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

const OidName kKeyPurposes[] = {
    {"1.3.6.1.5.5.7.3.1", "serverAuth"},    {"1.3.6.1.5.5.7.3.2", "clientAuth"},
    {"1.3.6.1.5.5.7.3.3", "codeSigning"},   {"1.3.6.1.5.5.7.3.4", "emailProtection"},
    {"1.3.6.1.5.5.7.3.8", "timeStamping"},  {"1.3.6.1.5.5.7.3.9", "OCSPSigning"},
    {"2.5.29.37.0", "anyExtendedKeyUsage"},
};

const OidName kAccessMethods[] = {
    {"1.3.6.1.5.5.7.48.1", "OCSP"},
    {"1.3.6.1.5.5.7.48.2", "caIssuers"},
    {"1.3.6.1.5.5.7.48.3", "timeStamping"},
    {"1.3.6.1.5.5.7.48.5", "caRepository"},
};

const OidName kPolicies[] = {
    {"2.5.29.32.0", "anyPolicy"},
    {"1.2.643.100.113.1", "KC1 signing tool class"},
    {"1.2.643.100.113.2", "KC2 signing tool class"},
    {"1.2.643.100.113.3", "KC3 signing tool class"},
    {"1.2.643.100.113.4", "KB1 signing tool class"},
    {"1.2.643.100.113.5", "KB2 signing tool class"},
    {"1.2.643.100.113.6", "KA1 signing tool class"},
};

const OidName kAttributeTypes[] = {
    {"1.2.840.113549.1.9.7", "challengePassword"},
    {"1.2.840.113549.1.9.2", "unstructuredName"},
    {"1.2.840.113549.1.9.14", "extensionRequest"},
    {"1.3.6.1.4.1.311.2.1.14", "extensionRequest (Microsoft)"},
};

// Named bits in the flag word of the bit-string codecs (first content octet is the low byte).
struct FlagName {
    uint32_t mask;
    const char* name;
};

const FlagName kKeyUsageBits[] = {
    {0x80, "digitalSignature"}, {0x40, "nonRepudiation"}, {0x20, "keyEncipherment"},
    {0x10, "dataEncipherment"}, {0x08, "keyAgreement"},   {0x04, "keyCertSign"},
    {0x02, "cRLSign"},          {0x01, "encipherOnly"},   {0x8000, "decipherOnly"},
};

const FlagName kReasonBits[] = {
    {0x80, "unused"},         {0x40, "keyCompromise"},        {0x20, "cACompromise"},    {0x10, "affiliationChanged"},
    {0x08, "superseded"},     {0x04, "cessationOfOperation"}, {0x02, "certificateHold"}, {0x01, "privilegeWithdrawn"},
    {0x8000, "aACompromise"},
};

const FlagName kNetscapeTypeBits[] = {
    {0x80, "SSL client"}, {0x40, "SSL server"}, {0x20, "S/MIME"},    {0x10, "object signing"},
    {0x08, "reserved"},   {0x04, "SSL CA"},     {0x02, "S/MIME CA"}, {0x01, "object signing CA"},
};

template <size_t N>
std::string Flags(const FlagName (&table)[N], uint32_t bits) {
    std::string s;
    for (const FlagName& f : table) {
        if (!(bits & f.mask)) continue;
        if (!s.empty()) s += ", ";
        s += f.name;
        bits &= ~f.mask;
    }
    if (bits) {
        char rest[32];
        std::snprintf(rest, sizeof rest, "%sother bits 0x%X", s.empty() ? "" : ", ", bits);
        s += rest;
    }
    return s.empty() ? "(none)" : s;
}

const char* ReasonName(uint32_t code) {
    static const char* const names[] = {"unspecified",        "keyCompromise", "cACompromise",
                                        "affiliationChanged", "superseded",    "cessationOfOperation",
                                        "certificateHold",    nullptr,         "removeFromCRL",
                                        "privilegeWithdrawn", "aACompromise"};
    return code < sizeof names / sizeof names[0] ? names[code] : nullptr;
}

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
    return "#" + CompactHex(element.data(), element.size()).substr(2);
}

uint32_t NameText(const X509Name* name, std::string& out) {
    uint32_t rdns = 0;
    if (uint32_t rc = GetX509NameRdnCount(name, &rdns)) return rc;
    out.clear();
    for (uint32_t r = rdns; r-- > 0;) {
        uint32_t entries = 0;
        if (uint32_t rc = GetX509NameEntryCount(name, r, &entries)) return rc;
        if (r + 1 != rdns) out += ',';
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
            if (e) out += '+';
            out += Named(kAttributeNames, OidText(oid)) + "=" + AttributeValueText(cls, cons, tag, value);
        }
    }
    if (out.empty()) out = "(empty)";
    return TV_OK;
}

std::string NameOrStatus(const X509Name* name) {
    std::string text;
    if (uint32_t rc = NameText(name, text)) return "<unreadable name, status " + std::to_string(rc) + ">";
    return text;
}

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
// Extension values: one printer per kind, keyed by OID. A printer fills `out` (depth 0 is the
// value's own level) and returns the codec's status; on failure the value is shown in hex.

using Printer = uint32_t (*)(const Bytes& v, Lines& out);

// Buffers for decoder outputs: no decoded part is longer than the value it came from.
Bytes Room(const Bytes& v) { return Bytes(v.size() + 1); }

uint32_t PrintKeyUsage(const Bytes& v, Lines& out) {
    uint32_t bits = 0;
    if (uint32_t rc = DecodeExtensionKeyUsage(v.data(), static_cast<uint32_t>(v.size()), &bits)) return rc;
    out.Add(0, Flags(kKeyUsageBits, bits));
    return TV_OK;
}

uint32_t PrintNetscapeType(const Bytes& v, Lines& out) {
    uint32_t bits = 0;
    if (uint32_t rc = DecodeExtensionNetscapeCertificateType(v.data(), static_cast<uint32_t>(v.size()), &bits))
        return rc;
    out.Add(0, Flags(kNetscapeTypeBits, bits));
    return TV_OK;
}

uint32_t PrintBasicConstraints(const Bytes& v, Lines& out) {
    uint8_t ca = 0;
    uint32_t pathLen = 0;
    if (uint32_t rc = DecodeExtensionBasicConstraints(v.data(), static_cast<uint32_t>(v.size()), &ca, &pathLen))
        return rc;
    std::string s = ca ? "CA:TRUE" : "CA:FALSE";
    if (pathLen != 0xFFFFFFFF) s += ", pathlen:" + std::to_string(pathLen);
    out.Add(0, s);
    return TV_OK;
}

// Scalar codecs of one shape: (in, inLen, out, outLen) returning content octets.
using ScalarDecoder = uint32_t (*)(const uint8_t*, uint32_t, uint8_t*, uint32_t*);

uint32_t DecodeScalar(ScalarDecoder decode, const Bytes& v, Bytes& content) {
    return Fetch(content,
                 [&](uint8_t* o, uint32_t* n) { return decode(v.data(), static_cast<uint32_t>(v.size()), o, n); });
}

// A scalar value shown through one formatter of its content octets.
std::string HexOf(const Bytes& b) { return Hex(b); }
std::string TextOf(const Bytes& b) { return PlainText(b); }

template <ScalarDecoder Decode, std::string (*Format)(const Bytes&)>
uint32_t PrintScalar(const Bytes& v, Lines& out) {
    Bytes content;
    if (uint32_t rc = DecodeScalar(Decode, v, content)) return rc;
    out.Add(0, Format(content));
    return TV_OK;
}

uint32_t PrintAuthorityKeyId(const Bytes& v, Lines& out) {
    Bytes keyId = Room(v), serial = Room(v);
    uint32_t keyIdLen = static_cast<uint32_t>(keyId.size()), serialLen = static_cast<uint32_t>(serial.size());
    GeneralNames* issuer = nullptr;
    uint32_t rc = DecodeExtensionAuthorityKeyIdentifier(v.data(), static_cast<uint32_t>(v.size()), keyId.data(),
                                                        &keyIdLen, &issuer, serial.data(), &serialLen);
    if (rc == TV_OK) {
        keyId.resize(keyIdLen);
        serial.resize(serialLen);
        if (!keyId.empty()) out.Add(0, "keyid: " + Hex(keyId));
        if (issuer) rc = AddGeneralNames(issuer, 0, "issuer: ", out);
        if (!serial.empty()) out.Add(0, "serial: " + Hex(serial));
    }
    FreeX509GeneralNames(issuer);
    return rc;
}

uint32_t PrintPrivateKeyUsagePeriod(const Bytes& v, Lines& out) {
    LibraryTime notBefore{}, notAfter{};
    if (uint32_t rc =
            DecodeExtensionPrivateKeyUsagePeriod(v.data(), static_cast<uint32_t>(v.size()), &notBefore, &notAfter))
        return rc;
    if (!IsLibraryTimeNull(&notBefore)) out.Add(0, "notBefore: " + TimeText(notBefore));
    if (!IsLibraryTimeNull(&notAfter)) out.Add(0, "notAfter: " + TimeText(notAfter));
    return TV_OK;
}

uint32_t PrintIssuerSignTool(const Bytes& v, Lines& out) {
    Bytes t[4] = {Room(v), Room(v), Room(v), Room(v)};
    uint32_t n[4];
    for (int i = 0; i < 4; ++i) n[i] = static_cast<uint32_t>(t[i].size());
    if (uint32_t rc = DecodeExtensionIssuerSignTool(v.data(), static_cast<uint32_t>(v.size()), t[0].data(), &n[0],
                                                    t[1].data(), &n[1], t[2].data(), &n[2], t[3].data(), &n[3]))
        return rc;
    static const char* const labels[] = {"signTool: ", "cATool: ", "signToolCert: ", "cAToolCert: "};
    for (int i = 0; i < 4; ++i) out.Add(0, labels[i] + PlainText(t[i].data(), n[i]));
    return TV_OK;
}

uint32_t PrintReasonCode(const Bytes& v, Lines& out) {
    uint32_t code = 0;
    if (uint32_t rc = DecodeExtensionReasonCode(v.data(), static_cast<uint32_t>(v.size()), &code)) return rc;
    const char* name = ReasonName(code);
    out.Add(0, name ? name : "reason " + std::to_string(code));
    return TV_OK;
}

const OidName kHoldInstructions[] = {
    {"1.2.840.10040.2.1", "holdInstructionNone"},
    {"1.2.840.10040.2.2", "holdInstructionCallIssuer"},
    {"1.2.840.10040.2.3", "holdInstructionReject"},
};

uint32_t PrintHoldInstruction(const Bytes& v, Lines& out) {
    uint8_t oid[256];
    uint32_t oidLen = sizeof oid;
    if (uint32_t rc = DecodeAsn1Oid(v.data(), static_cast<uint32_t>(v.size()), oid, &oidLen)) return rc;
    out.Add(0, Named(kHoldInstructions, OidText(oid)));
    return TV_OK;
}

uint32_t PrintInvalidityDate(const Bytes& v, Lines& out) {
    LibraryTime t{};
    if (uint32_t rc = DecodeExtensionInvalidityDate(v.data(), static_cast<uint32_t>(v.size()), &t)) return rc;
    out.Add(0, TimeText(t));
    return TV_OK;
}

uint32_t PrintGeneralNames(const Bytes& v, Lines& out) {
    GeneralNames* names = nullptr;
    if (uint32_t rc = DecodeX509GeneralNames(v.data(), static_cast<uint32_t>(v.size()), &names)) return rc;
    uint32_t rc = AddGeneralNames(names, 0, "", out);
    FreeX509GeneralNames(names);
    return rc;
}

uint32_t PrintDistributionPoints(const Bytes& v, Lines& out) {
    CrlDistributionPoints* list = nullptr;
    if (uint32_t rc = DecodeExtensionCrlDistributionPoints(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionCrlDistributionPointsCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        GeneralNames* fullName = nullptr;
        GeneralNames* crlIssuer = nullptr;
        X509Name* relative = nullptr;
        uint32_t reasons = 0;
        rc = GetExtensionCrlDistributionPoint(list, i, &fullName, &relative, &reasons, &crlIssuer);
        if (rc != TV_OK) break;
        out.Add(0, "Distribution point " + std::to_string(i + 1) + ":");
        if (fullName) rc = AddGeneralNames(fullName, 1, "", out);
        if (relative) out.Add(1, "relative name: " + NameOrStatus(relative));
        if (reasons) out.Add(1, "reasons: " + Flags(kReasonBits, reasons));
        if (crlIssuer && rc == TV_OK) rc = AddGeneralNames(crlIssuer, 1, "CRL issuer: ", out);
    }
    FreeExtensionCrlDistributionPoints(list);
    return rc;
}

// The codec reads onlySomeReasons under [1] only; RFC 5280 writers put it under [3], which the
// codec skips, so that form is read here to keep the reasons from vanishing from the summary.
uint32_t RfcOnlySomeReasons(const Bytes& v, uint32_t& reasons) {
    Element idp;
    std::vector<Element> fields;
    if (!ReadElement(v.data(), v.size(), idp) || !Children(idp, fields)) return 0;
    for (const Element& f : fields) {
        if (!Is(f, ASN1_CLASS_CONTEXT, 3) || f.cons || f.len < 1 || f.content[0] > 7) continue;
        reasons = 0;
        for (uint32_t i = 1; i < f.len && i <= 4; ++i) reasons |= uint32_t{f.content[i]} << 8 * (i - 1);
        if (f.len <= 5) reasons &= ~(((1u << f.content[0]) - 1) << 8 * (f.len - 2));  // the unused bits
        return 1;
    }
    return 0;
}

uint32_t PrintIssuingDistributionPoint(const Bytes& v, Lines& out) {
    GeneralNames* fullName = nullptr;
    X509Name* relative = nullptr;
    uint8_t user = 0, ca = 0, indirect = 0, attr = 0;
    uint32_t userP = 0, caP = 0, reasons = 0, reasonsP = 0, indirectP = 0, attrP = 0;
    uint32_t rc = DecodeExtensionIssuingDistributionPoint(v.data(), static_cast<uint32_t>(v.size()), &fullName,
                                                          &relative, &user, &userP, &ca, &caP, &reasons, &reasonsP,
                                                          &indirect, &indirectP, &attr, &attrP);
    if (rc == TV_OK) {
        if (fullName) rc = AddGeneralNames(fullName, 0, "", out);
        if (relative) out.Add(0, "relative name: " + NameOrStatus(relative));
        if (user) out.Add(0, "onlyContainsUserCerts");
        if (ca) out.Add(0, "onlyContainsCACerts");
        if (!reasonsP) reasonsP = RfcOnlySomeReasons(v, reasons);
        if (reasonsP) out.Add(0, "onlySomeReasons: " + Flags(kReasonBits, reasons));
        if (indirect) out.Add(0, "indirectCRL");
        if (attr) out.Add(0, "onlyContainsAttributeCerts");
        if (out.items.empty()) out.Add(0, "(empty)");
    }
    FreeX509GeneralNames(fullName);
    FreeX509Name(relative);
    return rc;
}

uint32_t PrintExtendedKeyUsage(const Bytes& v, Lines& out) {
    ExtendedKeyUsage* list = nullptr;
    if (uint32_t rc = DecodeExtensionExtendedKeyUsage(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionExtendedKeyUsageCount(list, &count);
    std::string s;
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid;
        rc = GetExtensionExtendedKeyUsage(list, i, oid, &oidLen);
        if (rc == TV_OK) s += (i ? ", " : "") + Named(kKeyPurposes, OidText(oid));
    }
    FreeExtensionExtendedKeyUsage(list);
    if (rc == TV_OK) out.Add(0, s.empty() ? "(none)" : s);
    return rc;
}

uint32_t PrintInformationAccess(const Bytes& v, Lines& out) {
    AuthorityInformationAccess* list = nullptr;
    if (uint32_t rc = DecodeExtensionAuthorityInformationAccess(v.data(), static_cast<uint32_t>(v.size()), &list))
        return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionAuthorityInformationAccessCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, kind = 0;
        GeneralName* location = nullptr;
        Bytes where;
        rc = GetExtensionAuthorityInformationAccess(list, i, oid, &oidLen, &location);
        if (rc == TV_OK)
            rc = Fetch(where, [&](uint8_t* o, uint32_t* n) { return GetX509GeneralNameValue(location, &kind, o, n); });
        if (rc == TV_OK) out.Add(0, Named(kAccessMethods, OidText(oid)) + " - " + GeneralNameText(kind, where));
    }
    FreeExtensionAuthorityInformationAccess(list);
    return rc;
}

// UserNotice ::= SEQUENCE { noticeRef SEQUENCE { organization, noticeNumbers } OPTIONAL,
//                           explicitText DisplayText OPTIONAL }  (RFC 5280 4.2.1.4)
void AddUserNotice(const Element& notice, Lines& out) {
    std::vector<Element> parts;
    if (!IsUniversal(notice, ASN1_SEQUENCE) || !Children(notice, parts)) {
        out.Add(1, "User notice: " + ElementText(notice));
        return;
    }
    out.Add(1, "User notice:");
    for (const Element& part : parts) {
        std::vector<Element> ref;
        if (IsUniversal(part, ASN1_SEQUENCE) && Children(part, ref) && !ref.empty()) {
            std::string numbers;
            std::vector<Element> noticeNumbers;
            if (ref.size() > 1 && Children(ref[1], noticeNumbers))
                for (const Element& n : noticeNumbers)
                    numbers += (numbers.empty() ? " " : ", ") + IntegerText(n.content, n.len, true);
            out.Add(2, "Organization: " + ElementText(ref[0]) + (numbers.empty() ? "" : ", notice" + numbers));
            continue;
        }
        out.Add(2, "Explicit text: " + ElementText(part));
    }
}

uint32_t PrintPolicies(const Bytes& v, Lines& out) {
    CertificatePolicies* list = nullptr;
    if (uint32_t rc = DecodeExtensionCertificatePolicies(v.data(), static_cast<uint32_t>(v.size()), &list)) return rc;
    uint32_t count = 0;
    uint32_t rc = GetExtensionPolicyInformationCount(list, &count);
    for (uint32_t i = 0; rc == TV_OK && i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, qualifiers = 0;
        rc = GetExtensionPolicyInformation(list, i, oid, &oidLen);
        if (rc == TV_OK) rc = GetExtensionPolicyQualifiersCount(list, i, &qualifiers);
        if (rc != TV_OK) break;
        const std::string dotted = OidText(oid);
        const char* name = Lookup(kPolicies, dotted);
        out.Add(0, "Policy: " + (name ? std::string(name) + " (" + dotted + ")" : dotted));
        for (uint32_t q = 0; rc == TV_OK && q < qualifiers; ++q) {
            uint8_t qualifierOid[256];
            Bytes qualifier;
            rc = Fetch(qualifier, [&](uint8_t* o, uint32_t* n) {
                uint32_t qLen = sizeof qualifierOid;
                return GetExtensionPolicyQualifier(list, i, q, qualifierOid, &qLen, o, n);
            });
            if (rc != TV_OK) break;
            const std::string qualifierId = OidText(qualifierOid);
            Element e;
            if (!ReadElement(qualifier.data(), qualifier.size(), e))
                out.Add(1, qualifierId + ": #" + Hex(qualifier, kHexShown));
            else if (qualifierId == "1.3.6.1.5.5.7.2.1")
                out.Add(1, "CPS: " + ElementText(e));
            else if (qualifierId == "1.3.6.1.5.5.7.2.2")
                AddUserNotice(e, out);
            else
                out.Add(1, qualifierId + ": " + ElementText(e));
        }
    }
    FreeExtensionCertificatePolicies(list);
    return rc;
}

struct ExtensionKind {
    const char* oid;
    const char* name;
    Printer print;  // null: the value is shown in hex
};

const ExtensionKind kExtensions[] = {
    {"2.5.29.14", "subjectKeyIdentifier", PrintScalar<DecodeExtensionSubjectKeyIdentifier, HexOf>},
    {"2.5.29.15", "keyUsage", PrintKeyUsage},
    {"2.5.29.16", "privateKeyUsagePeriod", PrintPrivateKeyUsagePeriod},
    {"2.5.29.17", "subjectAltName", PrintGeneralNames},
    {"2.5.29.18", "issuerAltName", PrintGeneralNames},
    {"2.5.29.19", "basicConstraints", PrintBasicConstraints},
    {"2.5.29.20", "cRLNumber", PrintScalar<DecodeExtensionCrlNumber, IntegerText>},
    {"2.5.29.21", "reasonCode", PrintReasonCode},
    {"2.5.29.23", "holdInstructionCode", PrintHoldInstruction},
    {"2.5.29.24", "invalidityDate", PrintInvalidityDate},
    {"2.5.29.27", "deltaCRLIndicator", PrintScalar<DecodeExtensionDeltaCrlIndicator, IntegerText>},
    {"2.5.29.28", "issuingDistributionPoint", PrintIssuingDistributionPoint},
    {"2.5.29.29", "certificateIssuer", PrintGeneralNames},
    {"2.5.29.30", "nameConstraints", nullptr},
    {"2.5.29.31", "cRLDistributionPoints", PrintDistributionPoints},
    {"2.5.29.32", "certificatePolicies", PrintPolicies},
    {"2.5.29.33", "policyMappings", nullptr},
    {"2.5.29.35", "authorityKeyIdentifier", PrintAuthorityKeyId},
    {"2.5.29.36", "policyConstraints", nullptr},
    {"2.5.29.37", "extKeyUsage", PrintExtendedKeyUsage},
    {"2.5.29.46", "freshestCRL", PrintDistributionPoints},
    {"2.5.29.54", "inhibitAnyPolicy", nullptr},
    {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess", PrintInformationAccess},
    {"1.3.6.1.5.5.7.1.3", "qcStatements", nullptr},
    {"1.3.6.1.5.5.7.1.11", "subjectInfoAccess", PrintInformationAccess},
    {"1.3.6.1.5.5.7.48.1.2", "OCSP nonce", PrintScalar<DecodeExtensionOcspNonce, HexOf>},
    {"1.3.6.1.5.5.7.48.1.5", "OCSP no check", nullptr},
    {"2.16.840.1.113730.1.1", "netscapeCertType", PrintNetscapeType},
    {"1.2.643.100.111", "subjectSignTool", PrintScalar<DecodeExtensionSubjectSignTool, TextOf>},
    {"1.2.643.100.112", "issuerSignTool", PrintIssuerSignTool},
    {"1.2.643.3.901.3.1", "Kestrune key identifier", PrintScalar<DecodeExtensionKestruneKeyIdentifier, TextOf>},
};

const ExtensionKind* FindExtension(const std::string& dotted) {
    for (const ExtensionKind& kind : kExtensions)
        if (dotted == kind.oid) return &kind;
    return nullptr;
}

constexpr size_t kHexValueShown = 64;

// Prints every extension of the list; a null or empty list prints nothing but the count.
void PrintExtensions(const X509Extensions* extensions, int depth, const char* title, Report& report) {
    uint32_t count = 0;
    if (extensions) {
        uint32_t rc = GetX509ExtensionsExtensionsCount(extensions, &count);
        if (rc == TV_ERR_ABSENT)
            count = 0;  // the field exists but holds no list
        else if (rc != TV_OK) {
            Print(depth, std::string(title) + ": " + report.Failed(rc));
            return;
        }
    }
    if (count == 0) return;
    Print(depth, std::string(title) + " (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, critical = 0;
        Bytes value;
        uint32_t rc = Fetch(value, [&](uint8_t* o, uint32_t* n) {
            oidLen = sizeof oid;
            return GetX509ExtensionsExtension(extensions, i, oid, &oidLen, &critical, o, n);
        });
        if (rc != TV_OK) {
            Print(depth + 1, "extension " + std::to_string(i + 1) + ": " + report.Failed(rc));
            continue;
        }
        const std::string dotted = OidText(oid);
        const ExtensionKind* kind = FindExtension(dotted);
        std::string head = kind ? std::string(kind->name) : dotted;
        if (critical) head += " (critical)";
        Lines lines;
        rc = kind && kind->print ? kind->print(value, lines) : uint32_t{TV_ERR_NOT_FOUND};
        if (rc != TV_OK) {
            lines.items.clear();
            std::string hex = value.empty() ? "(empty)" : Hex(value, kHexValueShown);
            if (value.size() > kHexValueShown) hex += " (" + std::to_string(value.size()) + " bytes)";
            if (kind && kind->print) hex += " (not decoded, status " + std::to_string(rc) + ")";
            lines.Add(0, hex);
        }
        if (lines.items.size() == 1) {
            Print(depth + 1, head + ": " + lines.items[0].second);
        } else {
            Print(depth + 1, head + ":");
            Print(lines, depth + 2);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// Algorithms and keys

std::string AlgorithmText(const Bytes& oid) {
    if (oid.empty()) return "<none>";
    const std::string dotted = OidText(oid.data());
    const char* name = Lookup(kAlgorithmNames, dotted);
    return name ? std::string(name) + " (" + dotted + ")" : dotted;
}

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

// ---------------------------------------------------------------------------------------------
// The three kinds

// A name field of the object: its text, or the status of its getter or of reading it.
std::string NameField(Report& report, uint32_t rc, const X509Name* name) {
    std::string text;
    if (rc == TV_OK) rc = NameText(name, text);
    return rc == TV_OK ? text : report.Failed(rc);
}

// Reads a value with the size protocol, or shows the status in its place.
template <class Get>
Bytes Need(Report& report, std::string& error, Get&& get) {
    Bytes out;
    error.clear();
    if (uint32_t rc = Fetch(out, get)) error = report.Failed(rc);
    return out;
}

struct AlgorithmParts {
    Bytes oid, params;
};

// The getters of algorithm and parameters share one shape: (oid, oidLen, params, paramsLen).
template <class Get>
uint32_t GetAlgorithm(AlgorithmParts& a, Get&& get) {
    uint8_t oid[256];
    uint32_t oidLen = sizeof oid, paramsLen = 0;
    uint32_t rc = get(oid, &oidLen, nullptr, &paramsLen);
    if (rc != TV_OK) return rc;
    a.params.assign(paramsLen + 1, 0);
    oidLen = sizeof oid;
    rc = get(oid, &oidLen, a.params.data(), &paramsLen);
    if (rc != TV_OK) return rc;
    a.params.resize(paramsLen);
    a.oid.assign(oid, oid + oidLen);
    return TV_OK;
}

enum class Part { PublicKey, Signature };

// The public key or the signature with its algorithm, read through the kind's own getters.
template <class Object, class GetAlgorithmFn, class GetOctetsFn>
void PrintAlgorithmPart(Part part, Report& report, Object* object, GetAlgorithmFn getAlgorithm, GetOctetsFn getOctets) {
    AlgorithmParts alg;
    const uint32_t rc = GetAlgorithm(
        alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) { return getAlgorithm(object, o, ol, p, pl); });
    Bytes octets;
    const uint32_t octetsRc = Fetch(octets, [&](uint8_t* o, uint32_t* n) { return getOctets(object, o, n); });
    const std::string title = part == Part::PublicKey ? "Public key: " : "Signature algorithm: ";
    if (rc != TV_OK || octetsRc != TV_OK) {
        Print(1, title + (rc != TV_OK ? report.Failed(rc) : AlgorithmText(alg.oid)));
        if (octetsRc != TV_OK) Print(2, (part == Part::PublicKey ? "Key: " : "Signature: ") + report.Failed(octetsRc));
        return;
    }
    if (part == Part::PublicKey)
        PrintPublicKey(1, alg.oid, alg.params, octets);
    else
        PrintSignature(1, alg.oid, alg.params, octets);
}

int ShowCertificate(Certificate* cert) {
    Report report;
    std::string err;
    Print(0, "Certificate:");
    uint32_t version = 0;
    uint32_t rc = GetCertificateVersion(cert, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version + 1) : rc == TV_ERR_ABSENT ? "1" : report.Failed(rc)));
    Bytes serial = Need(report, err, [&](uint8_t* o, uint32_t* n) { return GetCertificateSerialNumber(cert, o, n); });
    Print(1, "Serial: " + (err.empty() ? Hex(serial) : err));
    X509Name* name = nullptr;
    rc = GetCertificateIssuer(cert, &name);
    Print(1, "Issuer: " + NameField(report, rc, name));
    LibraryTime t{};
    rc = GetCertificateValidNotBefore(cert, &t);
    Print(1, "Not before: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetCertificateValidNotAfter(cert, &t);
    Print(1, "Not after:  " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetCertificateSubject(cert, &name);
    Print(1, "Subject: " + NameField(report, rc, name));

    PrintAlgorithmPart(Part::PublicKey, report, cert, GetCertificatePublicKeyAlgorithmOidAndParameters,
                       GetCertificatePublicKey);

    // Unique identifiers are rare (v2 only); absent ones print nothing.
    for (auto get : {GetCertificateIssuerUniqueId, GetCertificateSubjectUniqueId}) {
        uint8_t unused = 0;
        Bytes id;
        if (Fetch(id, [&](uint8_t* o, uint32_t* n) { return get(cert, o, n, &unused); }) == TV_OK && !id.empty())
            Print(1,
                  std::string(get == GetCertificateIssuerUniqueId ? "Issuer" : "Subject") + " unique id: " + Hex(id));
    }

    X509Extensions* extensions = nullptr;
    rc = GetCertificateExtensions(cert, &extensions);
    if (rc != TV_OK && rc != TV_ERR_ABSENT)
        Print(1, "Extensions: " + report.Failed(rc));
    else if (rc == TV_OK)
        PrintExtensions(extensions, 1, "Extensions", report);

    PrintAlgorithmPart(Part::Signature, report, cert, GetCertificateSignatureAlgorithmOidAndParameters,
                       GetCertificateSignature);
    return report.failures;
}

constexpr uint32_t kEntriesShown = 20;

int ShowCrl(X509Crl* crl) {
    Report report;
    std::string err;
    Print(0, "CRL:");
    uint32_t version = 0;
    uint32_t rc = GetX509CrlVersion(crl, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version + 1) : rc == TV_ERR_ABSENT ? "1" : report.Failed(rc)));
    X509Name* name = nullptr;
    rc = GetX509CrlIssuer(crl, &name);
    Print(1, "Issuer: " + NameField(report, rc, name));
    LibraryTime t{};
    rc = GetX509CrlThisUpdate(crl, &t);
    Print(1, "This update: " + (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
    rc = GetX509CrlNextUpdate(crl, &t);
    Print(1, "Next update: " + (rc == TV_OK ? TimeText(t) : rc == TV_ERR_ABSENT ? "(none)" : report.Failed(rc)));

    X509Extensions* extensions = nullptr;
    rc = GetX509CrlExtensions(crl, &extensions);
    if (rc != TV_OK && rc != TV_ERR_ABSENT)
        Print(1, "Extensions: " + report.Failed(rc));
    else if (rc == TV_OK)
        PrintExtensions(extensions, 1, "Extensions", report);

    uint32_t count = 0;
    rc = GetX509CrlRevokedCertificateCount(crl, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    Print(1, "Revoked certificates: " + (rc == TV_OK ? std::to_string(count) : report.Failed(rc)));
    const uint32_t shown = count < kEntriesShown ? count : kEntriesShown;
    for (uint32_t i = 0; i < shown; ++i) {
        Bytes serial = Need(report, err, [&](uint8_t* o, uint32_t* n) {
            return GetX509CrlRevokedCertificateSerialNumber(crl, i, o, n);
        });
        rc = GetX509CrlRevokedCertificateRevokationDate(crl, i, &t);
        Print(2, "Serial " + (err.empty() ? Hex(serial) : err) + ", revoked " +
                     (rc == TV_OK ? TimeText(t) : report.Failed(rc)));
        X509Extensions* entry = nullptr;
        rc = GetX509CrlRevokedCertificateExtensions(crl, i, &entry);
        if (rc == TV_OK)
            PrintExtensions(entry, 3, "Entry extensions", report);
        else if (rc != TV_ERR_ABSENT)
            Print(3, "Entry extensions: " + report.Failed(rc));
    }
    if (shown < count) Print(2, "... and " + std::to_string(count - shown) + " more");

    PrintAlgorithmPart(Part::Signature, report, crl, GetX509CrlSignatureAlgorithmOidAndParameters, GetX509CrlSignature);
    return report.failures;
}

bool IsExtensionRequest(const std::string& dotted) {
    return dotted == "1.2.840.113549.1.9.14" || dotted == "1.3.6.1.4.1.311.2.1.14";
}

void PrintAttributes(RsaAttributes* attributes, Report& report) {
    uint32_t count = 0;
    uint32_t rc = GetRsaAttributesAttributesCount(attributes, &count);
    if (rc == TV_ERR_ABSENT) count = 0, rc = TV_OK;
    if (rc != TV_OK) {
        Print(1, "Attributes: " + report.Failed(rc));
        return;
    }
    Print(1, "Attributes (" + std::to_string(count) + "):");
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[256];
        uint32_t oidLen = sizeof oid, values = 0;
        rc = GetRsaAttributesAttributeOid(attributes, i, oid, &oidLen);
        if (rc == TV_OK) rc = GetRsaAttributesAttributeValuesCount(attributes, i, &values);
        if (rc != TV_OK) {
            Print(2, "attribute " + std::to_string(i + 1) + ": " + report.Failed(rc));
            continue;
        }
        const std::string dotted = OidText(oid);
        const std::string head = Named(kAttributeTypes, dotted) + ": ";
        if (IsExtensionRequest(dotted)) {
            Print(2, head + "see the requested extensions");
            continue;
        }
        for (uint32_t v = 0; v < values; ++v) {
            Bytes value;
            rc = Fetch(value,
                       [&](uint8_t* o, uint32_t* n) { return GetRsaAttributesAttributeValue(attributes, i, v, o, n); });
            Element e;
            if (rc != TV_OK)
                Print(2, head + report.Failed(rc));
            else if (ReadElement(value.data(), value.size(), e))
                Print(2, head + ElementText(e));
            else
                Print(2, head + "#" + Hex(value, kHexValueShown));
        }
    }
}

int ShowRequest(PKCS10CertReq* request) {
    Report report;
    Print(0, "Certification request:");
    uint32_t version = 0;
    uint32_t rc = GetPKCS10CertReqVersion(request, &version);
    Print(1, "Version: " + (rc == TV_OK ? std::to_string(version + 1) : report.Failed(rc)));
    X509Name* name = nullptr;
    rc = GetPKCS10CertReqSubject(request, &name);
    Print(1, "Subject: " + NameField(report, rc, name));

    PrintAlgorithmPart(Part::PublicKey, report, request, GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters,
                       GetPKCS10CertReqPublicKey);

    RsaAttributes* attributes = nullptr;
    rc = GetPKCS10CertReqAttributes(request, &attributes);
    if (rc == TV_OK)
        PrintAttributes(attributes, report);
    else if (rc != TV_ERR_ABSENT)
        Print(1, "Attributes: " + report.Failed(rc));

    // The library finds the PKCS #9 extensionRequest, or the Microsoft one in its place.
    X509Extensions* requested = nullptr;
    rc = GetPKCS10CertReqExtensions(request, &requested);
    if (rc == TV_OK)
        PrintExtensions(requested, 1, "Requested extensions", report);
    else if (rc != TV_ERR_NOT_FOUND && rc != TV_ERR_ABSENT)
        Print(1, "Requested extensions: " + report.Failed(rc));
    FreeX509Extensions(requested);

    PrintAlgorithmPart(Part::Signature, report, request, GetPKCS10CertReqSignatureAlgorithmOidAndParameters,
                       GetPKCS10CertReqSignature);
    return report.failures;
}

// ---------------------------------------------------------------------------------------------
// Kind detection

enum class Kind { Unknown, Certificate, Crl, Request };

const char* KindName(Kind kind) {
    switch (kind) {
    case Kind::Certificate: return "certificate";
    case Kind::Crl: return "CRL";
    case Kind::Request: return "certification request";
    default: return "object";
    }
}

// All three are SEQUENCE { tbs SEQUENCE, AlgorithmIdentifier, BIT STRING }; the to-be-signed part
// tells them apart by its leading elements:
//   certificate  [0] version, or (v1) serial INTEGER, AlgorithmIdentifier, Name, Validity SEQUENCE
//   CRL          optional version INTEGER, AlgorithmIdentifier, Name, thisUpdate Time
//   request      version INTEGER, Name, SubjectPublicKeyInfo, [0] attributes (never omitted)
// Only the tags are looked at, so a malformed body still reaches the right decoder and its status.
// Anything else (BER with indefinite lengths, truncation) is left Unknown and every decoder is tried.
Kind DetectKind(const Bytes& der) {
    Element top, tbs;
    std::vector<Element> outer, c;
    if (!ReadElement(der.data(), der.size(), top) || !IsUniversal(top, ASN1_SEQUENCE) || !Children(top, outer) ||
        outer.size() != 3 || !IsUniversal(outer[0], ASN1_SEQUENCE) || !Children(outer[0], c) || c.size() < 3)
        return Kind::Unknown;
    if (Is(c[0], ASN1_CLASS_CONTEXT, 0) && c[0].cons) return Kind::Certificate;
    // Past a leading INTEGER (CRL version, request version or v1 certificate serial) the third
    // element is the Time of a CRL, the [0] attributes of a request or the Validity of a certificate.
    const size_t skip = IsUniversal(c[0], ASN1_INTEGER) ? 1 : 0;
    if (c.size() <= skip + 2) return Kind::Unknown;
    const Element& third = c[skip + 2];
    if (IsUniversal(third, ASN1_UTC_TIME) || IsUniversal(third, ASN1_GENERALIZED_TIME)) return Kind::Crl;
    if (skip && c.size() == 4 && Is(third, ASN1_CLASS_CONTEXT, 0) && third.cons) return Kind::Request;
    if (skip && c.size() >= 6 && IsUniversal(third, ASN1_SEQUENCE)) return Kind::Certificate;
    return Kind::Unknown;
}

// Decodes as the given kind and prints; returns the decoder's status (the summary's own failures
// go to `failures`).
uint32_t DecodeAndShow(Kind kind, const Bytes& der, int& failures) {
    const auto len = static_cast<uint32_t>(der.size());
    uint32_t rc = TV_ERR_MALFORMED;
    switch (kind) {
    case Kind::Certificate: {
        Certificate* cert = nullptr;
        if ((rc = DecodeCertificate(der.data(), len, &cert)) == TV_OK) failures = ShowCertificate(cert);
        FreeCertificate(cert);
        break;
    }
    case Kind::Crl: {
        X509Crl* crl = nullptr;
        if ((rc = DecodeX509Crl(der.data(), len, &crl)) == TV_OK) failures = ShowCrl(crl);
        FreeX509Crl(crl);
        break;
    }
    case Kind::Request: {
        PKCS10CertReq* request = nullptr;
        if ((rc = DecodePKCS10CertReq(der.data(), len, &request)) == TV_OK) failures = ShowRequest(request);
        FreePKCS10CertReq(request);
        break;
    }
    case Kind::Unknown: break;
    }
    return rc;
}

// What the outer header alone says about bytes that no decoder took.
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

}  // namespace

int ShowObject(const char* path, const std::vector<uint8_t>& der) {
    int failures = 0;
    const Kind kind = DetectKind(der);
    uint32_t rc = TV_OK;
    if (kind != Kind::Unknown) {
        rc = DecodeAndShow(kind, der, failures);
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: cannot decode the %s (status %u)\n", path, KindName(kind), rc);
            return 1;
        }
    } else {
        // The certificate decoder's status is the one reported: it is the likeliest kind.
        uint32_t first = TV_OK;
        for (Kind k : {Kind::Certificate, Kind::Crl, Kind::Request}) {
            rc = DecodeAndShow(k, der, failures);
            if (rc == TV_OK) break;
            if (first == TV_OK) first = rc;
        }
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: not a certificate, CRL or certification request%s (status %u)\n", path,
                         OuterProblem(der).c_str(), first);
            return 1;
        }
    }
    std::fflush(stdout);
    if (failures) {
        std::fprintf(stderr, "tarvelon: %s: %d field(s) could not be read\n", path, failures);
        return 1;
    }
    return 0;
}
