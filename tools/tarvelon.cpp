// tarvelon: command-line companion of the library.
//
//   tarvelon asn1 FILE         indented dump of any BER/DER element tree
//   tarvelon pem LABEL FILE    the object as PEM text with that label
//   tarvelon der FILE          the object as raw DER
//   tarvelon show FILE         readable summary of a certificate, CRL, certification request, OCSP
//                              message, CMS signed or enveloped message, time-stamp query or
//                              reply, or SeveralData
//   tarvelon signers FILE      the signers of a CMS signed message, one line each
//   tarvelon --help | --version
//
// Every FILE may be DER (BER for CMS) or PEM, and `-` is standard input. PEM text is decoded first;
// show and der take every block of a PEM bundle in turn.
#include <cerrno>
#include <cstdio>
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "render.h"
#include "show.h"
#include "tarvelon/tarvelon.h"

namespace {

const char* kUsage =
    "usage: tarvelon asn1 FILE | pem LABEL FILE | der FILE | show [OPTIONS] FILE | signers FILE\n"
    "       tarvelon --help | --version\n"
    "  asn1 FILE         dump the BER/DER element tree of FILE\n"
    "  pem LABEL FILE    write FILE as PEM text with LABEL to stdout\n"
    "  der FILE          write FILE as raw DER to stdout (every block of a PEM bundle)\n"
    "  show [OPTIONS] FILE  summary of a certificate, CRL, certification request,\n"
    "                    OCSP request or response, CMS signed or enveloped message,\n"
    "                    time-stamp query or reply, or SeveralData (every block of a\n"
    "                    PEM bundle), with its SHA-1 fingerprint; names in RFC 4514\n"
    "                    order (last RDN first). Options: -noout (no summary) and the\n"
    "                    fields -subject -issuer -serial -dates -fingerprint\n"
    "  signers FILE      number, signing time and name of each signer of a CMS\n"
    "                    signed message\n"
    "FILE may be DER or PEM, CMS messages BER; - reads standard input.\n";

// The whole file, or standard input for "-"; errno says why when it cannot be read.
bool ReadFile(const char* path, std::vector<uint8_t>& data) {
    const bool standardInput = std::strcmp(path, "-") == 0;
    FILE* f = standardInput ? stdin : std::fopen(path, "rb");
    if (!f) return false;
    uint8_t chunk[65536];
    size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0) data.insert(data.end(), chunk, chunk + n);
    const int error = std::ferror(f) ? errno : 0;
    if (!standardInput) std::fclose(f);
    errno = error;
    return error == 0;
}

bool Contains(const std::vector<uint8_t>& data, const char* marker) {
    const size_t n = std::strlen(marker);
    for (size_t i = 0; i + n <= data.size(); ++i)
        if (data[i] == '-' && std::memcmp(data.data() + i, marker, n) == 0) return true;
    return false;
}

// The DER of each PEM block of `data` (DecodePem reads the first block of the text it is given, so
// each block is handed over from its own BEGIN line). Prints the reason and returns the exit code on
// failure, 0 on success.
int DecodeBlocks(const char* path, const std::vector<uint8_t>& data, std::vector<std::vector<uint8_t>>& objects) {
    std::vector<size_t> starts;
    for (size_t i = 0; i + 10 <= data.size(); ++i)
        if (data[i] == '-' && (std::memcmp(&data[i], "-----BEGIN", 10) == 0 || std::memcmp(&data[i], "----- BEGIN", 11) == 0))
            starts.push_back(i), i += 10;
    for (size_t b = 0; b < starts.size(); ++b) {
        const char* text = reinterpret_cast<const char*>(data.data()) + starts[b];
        const auto textLen = static_cast<uint32_t>((b + 1 < starts.size() ? starts[b + 1] : data.size()) - starts[b]);
        std::vector<uint8_t> der;
        uint32_t size = 0;
        uint32_t rc = DecodePem(text, textLen, nullptr, &size);
        if (rc == TV_OK) {
            der.resize(size);
            rc = DecodePem(text, textLen, der.data(), &size);
        }
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: malformed PEM text in block %zu (status %u)\n", path, b + 1, rc);
            return 1;
        }
        der.resize(size);
        if (der.empty()) {
            std::fprintf(stderr, "tarvelon: %s: PEM block %zu holds no data\n", path, b + 1);
            return 1;
        }
        objects.push_back(std::move(der));
    }
    return 0;
}

// Reads FILE as DER objects: the file itself, or the blocks of its PEM text. Prints the reason and
// returns the exit code on failure, 0 on success.
int ReadObjects(const char* path, std::vector<std::vector<uint8_t>>& objects) {
    std::vector<uint8_t> data;
    if (!ReadFile(path, data)) {
        std::fprintf(stderr, "tarvelon: cannot read %s: %s\n", path, std::strerror(errno));
        return 2;
    }
    if (data.empty()) {
        std::fprintf(stderr, "tarvelon: %s is empty\n", path);
        return 1;
    }
    if (data.size() > UINT32_MAX) {
        std::fprintf(stderr, "tarvelon: %s is too large\n", path);
        return 1;
    }
    if (!Contains(data, "-----BEGIN") && !Contains(data, "----- BEGIN")) {
        objects.push_back(std::move(data));
        return 0;
    }
    return DecodeBlocks(path, data, objects);
}

// The first object of FILE, for the commands that read one.
int ReadObject(const char* path, std::vector<uint8_t>& der) {
    std::vector<std::vector<uint8_t>> objects;
    if (int rc = ReadObjects(path, objects)) return rc;
    der.swap(objects.front());
    return 0;
}

bool WriteOut(const void* p, size_t n) { return std::fwrite(p, 1, n, stdout) == n && std::fflush(stdout) == 0; }

int PemCommand(const char* label, const char* path) {
    std::vector<uint8_t> der;
    if (int rc = ReadObject(path, der)) return rc;
    const auto derLen = static_cast<uint32_t>(der.size());
    uint32_t size = 0;
    uint32_t rc = EncodePem(der.data(), derLen, label, nullptr, &size);
    std::string text;
    if (rc == TV_OK) {
        text.resize(size);
        rc = EncodePem(der.data(), derLen, label, text.data(), &size);
    }
    if (rc != TV_OK) {
        std::fprintf(stderr, "tarvelon: %s: cannot write PEM (status %u)\n", path, rc);
        return 1;
    }
    return WriteOut(text.data(), size) ? 0 : 1;
}

// The status of reading `der` as exactly one BER or DER element (0 when it is one).
uint32_t OneElement(const std::vector<uint8_t>& der) {
    static const Asn1Descriptor kAny{ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_ANY, -1, 0, nullptr, 0, nullptr};
    void* value = nullptr;
    uint32_t used = 0;
    uint32_t rc = Asn1DecodeItem(der.data(), static_cast<uint32_t>(der.size()), &kAny, &value, &used);
    FreeAsn1Object(&kAny, value);
    if (rc == TV_OK && used != der.size()) rc = TV_ERR_MALFORMED;
    return rc;
}

int DerCommand(const char* path) {
    std::vector<std::vector<uint8_t>> objects;
    if (int rc = ReadObjects(path, objects)) return rc;
    for (size_t i = 0; i < objects.size(); ++i)
        if (const uint32_t rc = OneElement(objects[i])) {
            std::fprintf(stderr, "tarvelon: %s: object %zu is not one BER or DER element (status %u)\n", path, i + 1, rc);
            return 1;
        }
    for (const auto& der : objects)
        if (!WriteOut(der.data(), der.size())) return 1;
    if (objects.size() > 1) std::fprintf(stderr, "tarvelon: %zu objects read\n", objects.size());
    return 0;
}

const char* UniversalName(uint32_t tag) {
    static const char* const names[] = {
        "EOC", "BOOLEAN", "INTEGER", "BIT STRING", "OCTET STRING", "NULL", "OBJECT IDENTIFIER",
        "ObjectDescriptor", "EXTERNAL", "REAL", "ENUMERATED", "EMBEDDED PDV", "UTF8String", "RELATIVE-OID",
        "TIME", "[UNIVERSAL 15]", "SEQUENCE", "SET", "NumericString", "PrintableString", "TeletexString",
        "VideotexString", "IA5String", "UTCTime", "GeneralizedTime", "GraphicString", "VisibleString",
        "GeneralString", "UniversalString", "CHARACTER STRING", "BMPString"};
    return tag < sizeof names / sizeof names[0] ? names[tag] : nullptr;
}

std::string TagText(uint8_t cls, uint32_t tag) {
    if (cls == ASN1_CLASS_UNIVERSAL) {
        if (const char* name = UniversalName(tag)) return name;
        return "[UNIVERSAL " + std::to_string(tag) + "]";
    }
    const char* prefix = cls == ASN1_CLASS_CONTEXT ? "" : cls == ASN1_CLASS_APPLICATION ? "APPLICATION " : "PRIVATE ";
    return std::string("[") + prefix + std::to_string(tag) + "]";
}

bool IsText(uint32_t tag) {
    return tag == ASN1_UTF8_STRING || (tag >= ASN1_NUMERIC_STRING && tag <= ASN1_GENERALIZED_TIME) ||
           tag == ASN1_VISIBLE_STRING;
}

struct Failure {
    size_t offset;
    uint32_t code;
    const char* what;
};

class Dumper {
public:
    explicit Dumper(const std::vector<uint8_t>& data) : data_(data) {}

    // Dumps the elements in [begin, end); returns the offset reached (after an end-of-contents for
    // indefinite contents). Fails with the offset of the element that could not be read.
    bool Elements(size_t begin, size_t end, bool indefinite, int depth, size_t* reached, Failure* fail) {
        size_t pos = begin;
        while (pos < end) {
            if (end - pos >= 2 && data_[pos] == 0 && data_[pos + 1] == 0) {
                if (!indefinite) {  // zeros where an element should be: stop rather than list them
                    *fail = Failure{pos, TV_ERR_MALFORMED, "end-of-contents outside an indefinite-length element"};
                    return false;
                }
                std::printf("%8zu: %*sEOC\n", pos, depth * 2, "");
                *reached = pos + 2;
                return true;
            }
            if (depth > 64) {
                *fail = Failure{pos, TV_ERR_MALFORMED, "nesting deeper than 64 levels"};
                return false;
            }
            uint8_t cls = 0, cons = 0;
            uint32_t tag = 0, len = 0, indef = 0, hl = 0;
            uint32_t rc = GetAsn1ObjectInfo(data_.data() + pos, static_cast<uint32_t>(end - pos), &cls, &cons, &tag,
                                            &len, &indef, &hl);
            if (rc != TV_OK) {
                *fail = Failure{pos, rc, "unreadable header"};
                return false;
            }
            if (!indef && uint64_t{hl} + len > end - pos) {
                *fail = Failure{pos, TV_ERR_MALFORMED, "length runs past the enclosing element"};
                return false;
            }
            std::printf("%8zu: %*s%s%s", pos, depth * 2, "", TagText(cls, tag).c_str(), cons ? " {" : "");
            if (indef) std::printf(" (indefinite)");
            else std::printf(" len=%u", len);
            if (cons) {
                std::printf("\n");
                size_t inner = 0;
                size_t contentEnd = indef ? end : pos + hl + len;
                if (!Elements(pos + hl, contentEnd, indef, depth + 1, &inner, fail)) return false;
                if (indef && inner == 0) {
                    *fail = Failure{pos, TV_ERR_INDEFINITE, "missing end-of-contents"};
                    return false;
                }
                std::printf("%8s  %*s}\n", "", depth * 2, "");
                pos = indef ? inner : contentEnd;
                continue;
            }
            if (indef) {
                std::printf("\n");
                *fail = Failure{pos, TV_ERR_INDEFINITE, "primitive element with indefinite length"};
                return false;
            }
            if (!Contents(pos, hl, len, cls, tag, depth, fail)) return false;
            pos += hl + len;
        }
        *reached = indefinite ? 0 : pos;
        return true;
    }

private:
    // Whether [begin, end) is exactly one element, every nested length inside its enclosure.
    bool Clean(size_t begin, size_t end, int depth) const {
        if (begin >= end || depth > 64) return false;
        uint8_t cls = 0, cons = 0;
        uint32_t tag = 0, len = 0, indef = 0, hl = 0;
        if (GetAsn1ObjectInfo(data_.data() + begin, static_cast<uint32_t>(end - begin), &cls, &cons, &tag, &len, &indef,
                              &hl) != TV_OK ||
            indef || uint64_t{hl} + len != end - begin || (cls == 0 && tag == 0))
            return false;
        for (size_t pos = begin + hl; cons && pos < end;) {
            uint8_t c2 = 0, k2 = 0;
            uint32_t t2 = 0, l2 = 0, i2 = 0, h2 = 0;
            if (GetAsn1ObjectInfo(data_.data() + pos, static_cast<uint32_t>(end - pos), &c2, &k2, &t2, &l2, &i2, &h2) !=
                    TV_OK ||
                i2 || uint64_t{h2} + l2 > end - pos || !Clean(pos, pos + h2 + l2, depth + 1))
                return false;
            pos += h2 + l2;
        }
        return true;
    }

    // The contents of a primitive element: an OID dotted and named, text quoted, an OCTET STRING or
    // BIT STRING that holds one clean constructed element (an extension's value, a public key)
    // dumped as what it encapsulates, anything else in hex.
    bool Contents(size_t pos, uint32_t hl, uint32_t len, uint8_t cls, uint32_t tag, int depth, Failure* fail) {
        const uint8_t* c = data_.data() + pos + hl;
        if (cls == ASN1_CLASS_UNIVERSAL && tag == ASN1_OBJECT_IDENTIFIER && len > 0 && len < 256) {
            uint8_t packed[256];
            packed[0] = static_cast<uint8_t>(len);
            std::memcpy(packed + 1, c, len);
            const std::string dotted = show::OidText(packed);
            const char* name = show::BaseOidName(dotted);
            if (!name) name = show::ExtensionOidName(dotted);
            if (!name) name = show::Lookup(show::kCmsContentTypes, dotted);
            std::printf(" %s%s%s%s\n", dotted.c_str(), name ? " (" : "", name ? name : "", name ? ")" : "");
            return true;
        }
        if (cls == ASN1_CLASS_UNIVERSAL && IsText(tag)) {
            std::printf(" \"%.*s\"\n", static_cast<int>(len), reinterpret_cast<const char*>(c));
            return true;
        }
        if (cls == ASN1_CLASS_UNIVERSAL && (tag == ASN1_OCTET_STRING || (tag == ASN1_BIT_STRING && len > 1 && c[0] == 0))) {
            const size_t begin = pos + hl + (tag == ASN1_BIT_STRING ? 1 : 0), end = pos + hl + len;
            if (begin < end && (data_[begin] & 0x20) && Clean(begin, end, depth)) {
                std::printf(" encapsulates {\n");
                size_t reached = 0;
                if (!Elements(begin, end, false, depth + 1, &reached, fail)) return false;
                std::printf("%8s  %*s}\n", "", depth * 2, "");
                return true;
            }
        }
        std::printf("%s", len ? " :" : "");
        const uint32_t shown = len > 64 ? 64 : len;
        for (uint32_t i = 0; i < shown; ++i) std::printf(" %02X", c[i]);
        if (shown < len) std::printf(" ... (%u more)", len - shown);
        std::printf("\n");
        return true;
    }

    const std::vector<uint8_t>& data_;
};

// show [-noout] [-subject] [-issuer] [-serial] [-dates] [-fingerprint] FILE: the summary with the
// object's fingerprint, or with -noout only the selected fields, for scripts.
int ShowCommand(const char* path, bool summary, const std::vector<std::string>& fields) {
    std::vector<std::vector<uint8_t>> objects;
    if (int rc = ReadObjects(path, objects)) return rc;
    int worst = 0;
    for (size_t i = 0; i < objects.size(); ++i) {
        if (i && summary) std::printf("\n");
        int rc = 0;
        if (summary) {
            rc = show::ShowObject(path, objects[i]);
            if (rc == 0) std::printf("SHA-1 fingerprint: %s\n", show::Fingerprint(objects[i]).c_str());
        }
        if (!fields.empty()) rc = std::max(rc, show::ShowCertificateFields(path, objects[i], fields));
        if (rc > worst) worst = rc;
    }
    if (objects.size() > 1 && summary) std::printf("\n%zu objects read\n", objects.size());
    return worst;
}

int SignersCommand(const char* path) {
    std::vector<uint8_t> der;
    if (int rc = ReadObject(path, der)) return rc;
    return show::ListSigners(path, der);
}

int Asn1Command(const char* path) {
    std::vector<uint8_t> data;
    if (int rc = ReadObject(path, data)) return rc;
    Dumper dumper(data);
    size_t reached = 0;
    Failure fail{};
    if (!dumper.Elements(0, data.size(), false, 0, &reached, &fail)) {
        std::fprintf(stderr, "tarvelon: %s: %s at offset %zu (status %u)\n", path, fail.what, fail.offset, fail.code);
        return 1;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        char banner[128];
        uint32_t length = sizeof banner;
        if (GetVersionInfo(banner, &length) != TV_OK) banner[0] = 0;
        std::printf("tarvelon %d.%d.%d (%s)\n", TARVELON_VERSION_MAJOR, TARVELON_VERSION_MINOR, TARVELON_VERSION_PATCH,
                    banner);
        return 0;
    }
    if (argc == 3 && std::strcmp(argv[1], "asn1") == 0) return Asn1Command(argv[2]);
    if (argc == 4 && std::strcmp(argv[1], "pem") == 0) return PemCommand(argv[2], argv[3]);
    if (argc == 3 && std::strcmp(argv[1], "der") == 0) return DerCommand(argv[2]);
    if (argc >= 3 && std::strcmp(argv[1], "show") == 0) {
        bool summary = true, known = true;
        std::vector<std::string> fields;
        for (int i = 2; i + 1 < argc; ++i) {
            const std::string option = argv[i];
            if (option == "-noout") summary = false;
            else if (option == "-subject" || option == "-issuer" || option == "-serial" || option == "-dates" ||
                     option == "-fingerprint")
                fields.push_back(option.substr(1));
            else known = false;
        }
        if (known) return ShowCommand(argv[argc - 1], summary, fields);
    }
    if (argc == 3 && std::strcmp(argv[1], "signers") == 0) return SignersCommand(argv[2]);
    std::fputs(kUsage, stderr);
    return 2;
}
