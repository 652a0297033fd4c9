// tarvelon show: tells the kind of the object from its shape and hands it to that kind's summary
// (show_<kind>.cpp). A new kind is its summary file and one row of kKinds.
#include "show.h"

#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "render.h"

namespace show {

// A CMS ContentInfo is SEQUENCE { contentType OBJECT IDENTIFIER, [0] content }, often in BER with
// indefinite lengths, so the outer header is read alone and only the OID after it must be whole; the
// constructed [0] octet after the OID tells it from a SEQUENCE OF OBJECT IDENTIFIER.
std::string ContentInfoType(const Bytes& der) {
    uint8_t cls = 0, cons = 0;
    uint32_t tag = 0, len = 0, indefinite = 0, header = 0;
    Element type;
    if (GetAsn1ObjectInfo(der.data(), static_cast<uint32_t>(der.size()), &cls, &cons, &tag, &len, &indefinite,
                          &header) != TV_OK ||
        cls != ASN1_CLASS_UNIVERSAL || tag != ASN1_SEQUENCE || !cons || header >= der.size() ||
        !ReadElement(der.data() + header, der.size() - header, type) || !IsUniversal(type, ASN1_OBJECT_IDENTIFIER) ||
        type.len == 0 || type.len > 255)
        return "";
    const size_t content = header + type.total;
    if (content >= der.size() || der[content] != 0xA0) return "";  // [0], constructed
    Bytes packed{static_cast<uint8_t>(type.len)};
    packed.insert(packed.end(), type.content, type.content + type.len);
    return OidText(packed.data());
}

bool IsContentInfo(const Bytes& der) { return !ContentInfoType(der).empty(); }

namespace {

// Certificates, CRLs and requests are all SEQUENCE { tbs SEQUENCE, AlgorithmIdentifier, BIT STRING };
// the to-be-signed part tells them apart by its leading elements:
//   certificate  [0] version, or (v1) serial INTEGER, AlgorithmIdentifier, Name, Validity SEQUENCE
//   CRL          optional version INTEGER, AlgorithmIdentifier, Name, thisUpdate Time
//   request      version INTEGER, Name, SubjectPublicKeyInfo, [0] attributes (never omitted)
// Only the tags are looked at, so a malformed body still reaches the right decoder and its status.
// Anything else (BER with indefinite lengths, truncation) matches no kind and every decoder is tried.

// The elements of the to-be-signed part, at least three of them.
bool ReadToBeSigned(const Bytes& der, std::vector<Element>& tbs) {
    Element top;
    std::vector<Element> outer;
    return ReadElement(der.data(), der.size(), top) && IsUniversal(top, ASN1_SEQUENCE) && Children(top, outer) &&
           outer.size() == 3 && IsUniversal(outer[0], ASN1_SEQUENCE) && Children(outer[0], tbs) && tbs.size() >= 3;
}

bool IsCertificate(const Bytes& der) {
    std::vector<Element> tbs;
    if (!ReadToBeSigned(der, tbs)) return false;
    if (Is(tbs[0], ASN1_CLASS_CONTEXT, 0) && tbs[0].cons) return true;
    return IsUniversal(tbs[0], ASN1_INTEGER) && tbs.size() >= 6 && IsUniversal(tbs[3], ASN1_SEQUENCE);
}

bool IsCrl(const Bytes& der) {
    std::vector<Element> tbs;
    if (!ReadToBeSigned(der, tbs)) return false;
    const size_t time = IsUniversal(tbs[0], ASN1_INTEGER) ? 3 : 2;
    return time < tbs.size() &&
           (IsUniversal(tbs[time], ASN1_UTC_TIME) || IsUniversal(tbs[time], ASN1_GENERALIZED_TIME));
}

bool IsRequest(const Bytes& der) {
    std::vector<Element> tbs;
    return ReadToBeSigned(der, tbs) && IsUniversal(tbs[0], ASN1_INTEGER) && tbs.size() == 4 &&
           Is(tbs[3], ASN1_CLASS_CONTEXT, 0) && tbs[3].cons;
}

// OCSP messages are not three-part signed structures, so they never match the detectors above:
//   OCSP request   tbsRequest SEQUENCE { [0] version, [1] requestor, requestList SEQUENCE,
//                  [2] extensions } and an optional [0] signature
//   OCSP response  responseStatus ENUMERATED and an optional [0] responseBytes

// The one or two elements of an OCSP message; a second one is a constructed [0].
bool ReadOcspMessage(const Bytes& der, std::vector<Element>& parts) {
    Element top;
    return ReadElement(der.data(), der.size(), top) && IsUniversal(top, ASN1_SEQUENCE) && Children(top, parts) &&
           (parts.size() == 1 || (parts.size() == 2 && Is(parts[1], ASN1_CLASS_CONTEXT, 0) && parts[1].cons));
}

bool IsOcspRequest(const Bytes& der) {
    std::vector<Element> parts, tbs;
    if (!ReadOcspMessage(der, parts) || !IsUniversal(parts[0], ASN1_SEQUENCE) || !Children(parts[0], tbs)) return false;
    size_t i = 0;
    const auto optional = [&](uint32_t tag) {
        i += i < tbs.size() && Is(tbs[i], ASN1_CLASS_CONTEXT, tag) && tbs[i].cons;
    };
    optional(0);
    optional(1);
    if (i == tbs.size() || !IsUniversal(tbs[i++], ASN1_SEQUENCE)) return false;
    optional(2);
    return i == tbs.size();
}

bool IsOcspResponse(const Bytes& der) {
    std::vector<Element> parts;
    return ReadOcspMessage(der, parts) && IsUniversal(parts[0], ASN1_ENUMERATED);
}

// Decodes as one kind and prints; returns the decoder's status (the summary's own failures go to
// `failures`, what the status alone does not say to `problem`).
template <class Object, uint32_t (*Decode)(const uint8_t*, uint32_t, Object**), uint32_t (*Free)(Object*),
          int (*Show)(Object*)>
uint32_t DecodeAndShow(const Bytes& der, int& failures, std::string& /*problem*/) {
    Object* object = nullptr;
    const uint32_t rc = Decode(der.data(), static_cast<uint32_t>(der.size()), &object);
    if (rc == TV_OK) failures = Show(object);
    Free(object);
    return rc;
}

struct Kind {
    const char* name;
    bool (*detect)(const Bytes& der);
    uint32_t (*decodeAndShow)(const Bytes& der, int& failures, std::string& problem);
};

// The first kind whose detector matches is shown. When none matches, every decoder is tried in this
// order and the first one's status is reported, so the likeliest kind comes first.
const Kind kKinds[] = {
    {"certificate", IsCertificate, DecodeAndShow<Certificate, DecodeCertificate, FreeCertificate, ShowCertificate>},
    {"CRL", IsCrl, DecodeAndShow<X509Crl, DecodeX509Crl, FreeX509Crl, ShowCrl>},
    {"certification request", IsRequest,
     DecodeAndShow<PKCS10CertReq, DecodePKCS10CertReq, FreePKCS10CertReq, ShowRequest>},
    {"OCSP request", IsOcspRequest, DecodeAndShow<OcspRequest, DecodeOcspRequest, FreeOcspRequest, ShowOcspRequest>},
    {"OCSP response", IsOcspResponse,
     DecodeAndShow<OcspResponse, DecodeOcspResponse, FreeOcspResponse, ShowOcspResponse>},
    {"time-stamp query", IsTimeStampQuery, DecodeAndShowQuery},
    {"time-stamp reply", IsTimeStampReply, DecodeAndShowReply},
    {"SeveralData", IsSeveralData, DecodeAndShowSeveral},
    {"CMS enveloped message", IsEnvelopedMessage, DecodeAndShowEnveloped},
    {"CMS signed message", IsContentInfo, DecodeAndShowCms},
};

// "certificate, CRL, certification request, ..., CMS enveloped message or CMS signed message"
std::string KindNames() {
    std::string s;
    const size_t n = std::size(kKinds);
    for (size_t i = 0; i < n; ++i) s += std::string(i == 0 ? "" : i + 1 == n ? " or " : ", ") + kKinds[i].name;
    return s;
}

}  // namespace

int ShowObject(const char* path, const std::vector<uint8_t>& der) {
    int failures = 0;
    std::string problem;
    const Kind* kind = nullptr;
    for (const Kind& k : kKinds) {
        if (k.detect(der)) {
            kind = &k;
            break;
        }
    }
    if (kind) {
        const uint32_t rc = kind->decodeAndShow(der, failures, problem);
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: cannot decode the %s%s (status %u)\n", path, kind->name,
                         problem.c_str(), rc);
            return 1;
        }
    } else {
        uint32_t rc = TV_OK, first = TV_OK;
        for (const Kind& k : kKinds) {
            rc = k.decodeAndShow(der, failures, problem);
            if (rc == TV_OK) break;
            if (first == TV_OK) first = rc;
        }
        if (rc != TV_OK) {
            std::fprintf(stderr, "tarvelon: %s: not a %s%s (status %u)\n", path, KindNames().c_str(),
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

}  // namespace show
