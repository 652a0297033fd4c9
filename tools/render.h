// The rendering that every kind of `tarvelon show` summary shares: output lines, hex, numbers,
// times and strings as UTF-8, a minimal DER walker, OID names, X.509 names and general names,
// extension lists, and the public key or signature with its algorithm.
#ifndef TARVELON_TOOLS_RENDER_H
#define TARVELON_TOOLS_RENDER_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tarvelon/tarvelon.h"

namespace show {

using Bytes = std::vector<uint8_t>;

// ---------------------------------------------------------------------------------------------
// Output

// Lines of one section, each with its depth. A value is collected first and printed only once its
// codec has succeeded, so a failure never leaves half a value on the screen.
struct Lines {
    std::vector<std::pair<int, std::string>> items;
    void Add(int depth, std::string text) { items.emplace_back(depth, std::move(text)); }
};

void Print(int depth, const std::string& text);
// While alive, every printed line goes `by` levels deeper: a whole summary nested in another (the
// token of a time-stamp reply, the messages of a SeveralData).
struct Indent {
    explicit Indent(int by);
    ~Indent();
    Indent(const Indent&) = delete;
    Indent& operator=(const Indent&) = delete;

private:
    int by_;
};
void Print(const Lines& lines, int extraDepth);

// A value's lines under its head: "head: line" when there is one line, else the head alone and the
// lines one level deeper.
void PrintHeaded(int depth, const std::string& head, const Lines& lines);

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
// Buffers, hex, numbers, times, text

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

// Reads a value with the size protocol, or shows the status in its place.
template <class Get>
Bytes Need(Report& report, std::string& error, Get&& get) {
    Bytes out;
    error.clear();
    if (uint32_t rc = Fetch(out, get)) error = report.Failed(rc);
    return out;
}

constexpr size_t kHexShown = 32;
constexpr size_t kHexValueShown = 64;

std::string Hex(const uint8_t* p, size_t n, size_t limit = SIZE_MAX);
std::string Hex(const Bytes& b, size_t limit = SIZE_MAX);

// An INTEGER's content octets: decimal when non-negative and small (with the hex beside it unless
// plain is asked for), else hex.
std::string IntegerText(const uint8_t* p, size_t n, bool plain = false);
std::string IntegerText(const Bytes& v);

std::string TimeText(const LibraryTime& t);

// A version field whose getter answers absent for the DEFAULT v1: the version as people count it.
std::string VersionField(Report& report, uint32_t rc, uint32_t version);

// A string value of the given type as UTF-8, controls and invalid bytes shown as \XX.
std::string PlainText(const uint8_t* p, size_t n, uint32_t tag = ASN1_UTF8_STRING);
std::string PlainText(const Bytes& b, uint32_t tag = ASN1_UTF8_STRING);

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

bool ReadElement(const uint8_t* p, size_t n, Element& e);
bool Children(const Element& parent, std::vector<Element>& out);
inline bool Is(const Element& e, uint8_t cls, uint32_t tag) { return e.cls == cls && e.tag == tag; }
inline bool IsUniversal(const Element& e, uint32_t tag) { return Is(e, ASN1_CLASS_UNIVERSAL, tag); }

// What the outer header alone says about bytes that did not decode as the SEQUENCE they should be
// (": truncated, 100 of 300 bytes"), or nothing when it looks whole.
std::string OuterProblem(const Bytes& der);

// Text of a string element, or its hex when it is not a string.
std::string ElementText(const Element& e);

// ---------------------------------------------------------------------------------------------
// Object identifiers and their names

struct OidName {
    const char* oid;
    const char* name;
};

std::string OidText(const uint8_t* packed);

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

// "name (dotted)", or the dotted OID alone when it has no name.
template <size_t N>
std::string NamedWithOid(const OidName (&table)[N], const std::string& dotted) {
    const char* name = Lookup(table, dotted);
    return name ? std::string(name) + " (" + dotted + ")" : dotted;
}

// ---------------------------------------------------------------------------------------------
// Names and general names

// The RFC 4514 string of a name, or the status of reading it.
std::string NameOrStatus(const X509Name* name);

// Only the common names of a name (as RFC 4514 text), the whole name when it has none.
std::string CommonNameText(const X509Name* name);

// A name field of the object: its text, or the status of its getter or of reading it.
std::string NameField(Report& report, uint32_t rc, const X509Name* name);

std::string GeneralNameText(uint32_t kind, const Bytes& v);
uint32_t AddGeneralNames(const GeneralNames* names, int depth, const char* prefix, Lines& out);

// ---------------------------------------------------------------------------------------------
// Extensions (render_extensions.cpp)

// Prints an extension list field given its getter's status `rc`: every extension under a title
// with the count, or the status of a failed getter. An absent, null or empty list prints nothing.
void PrintExtensions(uint32_t rc, const X509Extensions* extensions, int depth, const char* title, Report& report);

// The RFC 5280 CRLReason name of a code, or "reason N" for a code without one.
std::string ReasonText(uint32_t code);

// ---------------------------------------------------------------------------------------------
// Algorithms, public keys and signatures

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

// An algorithm's name with its dotted OID, or the dotted OID alone when it has no name.
std::string AlgorithmText(const Bytes& oid);
// A GOST parameter set (packed OID) by name, or its dotted OID.
std::string ParameterSetText(const Bytes& oid);

// The name a dotted OID has in the tool's tables (attribute types, algorithms, parameter sets,
// extensions and their values), or null.
const char* BaseOidName(const std::string& dotted);       // render.cpp
const char* ExtensionOidName(const std::string& dotted);  // render_extensions.cpp

enum class Part { PublicKey, Signature };

// Prints the algorithm and its key or signature at `depth`, or the statuses of reading them.
void PrintAlgorithmPart(Part part, Report& report, uint32_t algorithmRc, const AlgorithmParts& alg, uint32_t octetsRc,
                        const Bytes& octets, int depth = 1);

// The public key or the signature with its algorithm, read through the kind's own getters.
template <class Object, class GetAlgorithmFn, class GetOctetsFn>
void PrintAlgorithmPart(Part part, Report& report, Object* object, GetAlgorithmFn getAlgorithm, GetOctetsFn getOctets,
                        int depth = 1) {
    AlgorithmParts alg;
    const uint32_t rc = GetAlgorithm(
        alg, [&](uint8_t* o, uint32_t* ol, uint8_t* p, uint32_t* pl) { return getAlgorithm(object, o, ol, p, pl); });
    Bytes octets;
    const uint32_t octetsRc = Fetch(octets, [&](uint8_t* o, uint32_t* n) { return getOctets(object, o, n); });
    PrintAlgorithmPart(part, report, rc, alg, octetsRc, octets, depth);
}

}  // namespace show

#endif
