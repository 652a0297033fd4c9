// Every input goes to every decoder. First each Decode... export, called by name with every output
// asked for and every handle it hands out freed, under the caller buffer sizes the input picks (a
// size query, a short buffer, plenty). Then the descriptors of the top-level structures and a few
// engine shapes, holding every accepted value to the engine's round-trip promises: the DER it writes
// decodes again to a tree that writes the same DER (a fixpoint after one pass, since BER input may
// legitimately change on the first), the size query agrees with the bytes, a deep copy writes the
// same DER, and nothing leaks on any path. Last the readers a caller runs over what decoded.
//
// TARVELON_FUZZ_ONLY=<export name> narrows a run to one Decode... export (and skips the rest);
// TARVELON_FUZZ_REPORT=1 prints at exit how many inputs each export accepted, which `make fuzz`
// uses over the final corpus. TARVELON_FUZZ_SPLIT=<folder> decodes nothing: it writes every element
// of every input, and the elements inside OCTET and BIT STRINGs, as seeds into the folder, so each
// extension and attribute value of the fixtures seeds its own decoder.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>
#include <vector>

#include "tarvelon/x509/Certificate.h"
#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/x509/X509Crl.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/x509/pkcs10.h"
#include "tarvelon/messages/CmsTools.h"
#include "tarvelon/messages/Cms.h"
#include "tarvelon/messages/Enveloped.h"
#include "tarvelon/messages/Ocsp.h"
#include "tarvelon/messages/TimeStamp.h"
#include "tarvelon/tarvelon.h"
#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

namespace {

using namespace tv;
using namespace tv::desc;

constexpr uint8_t kZeroOctet[1] = {0x00};
constinit const Asn1Primitive kIntegerZero{ASN1_INTEGER, 1, const_cast<uint8_t*>(kZeroOctet)};

// SetOfInteger ::= SET OF INTEGER
constexpr Asn1Descriptor kSetOfInteger = SetOf<&kInteger>();

// Versioned ::= SEQUENCE {
//      version  [0] EXPLICIT INTEGER DEFAULT 0,
//      body     INTEGER }
enum class VersionedSlot : uint32_t { kVersion, kBody, kCount };
constexpr Asn1Descriptor kVersion = Optional(Explicit(0, kInteger), &kIntegerZero);
constexpr auto kVersionedParts = Slots<VersionedSlot>({
    {VersionedSlot::kVersion, &kVersion},  // version  [0] EXPLICIT INTEGER DEFAULT 0
    {VersionedSlot::kBody, &kInteger},     // body     INTEGER
});
constexpr Asn1Descriptor kVersioned = Sequence(kVersionedParts);

// Pick ::= CHOICE {
//      number   INTEGER,
//      octets   OCTET STRING,
//      flag     [0] EXPLICIT BOOLEAN,
//      text     [1] IMPLICIT UTF8String,
//      numbers  [2] IMPLICIT SET OF INTEGER }
enum class PickAlternative : uint32_t { kNumber, kOctets, kFlag, kText, kNumbers, kCount };
constexpr Asn1Descriptor kFlag = Explicit(0, kBoolean);
constexpr Asn1Descriptor kText = Implicit(1, kUtf8String);
constexpr Asn1Descriptor kNumbers = Implicit(2, kSetOfInteger);
constexpr auto kPickAlternatives = Slots<PickAlternative>({
    {PickAlternative::kNumber, &kInteger},      // number   INTEGER
    {PickAlternative::kOctets, &kOctetString},  // octets   OCTET STRING
    {PickAlternative::kFlag, &kFlag},           // flag     [0] EXPLICIT BOOLEAN
    {PickAlternative::kText, &kText},           // text     [1] IMPLICIT UTF8String
    {PickAlternative::kNumbers, &kNumbers},     // numbers  [2] IMPLICIT SET OF INTEGER
});
constexpr Asn1Descriptor kPick = Choice(kPickAlternatives);

// Wrapped ::= SEQUENCE {
//      payload  ANY,
//      extra    OCTET STRING OPTIONAL }
enum class WrappedSlot : uint32_t { kPayload, kExtra, kCount };
constexpr Asn1Descriptor kOptionalOctets = Optional(kOctetString);
constexpr auto kWrappedParts = Slots<WrappedSlot>({
    {WrappedSlot::kPayload, &kAny},           // payload  ANY
    {WrappedSlot::kExtra, &kOptionalOctets},  // extra    OCTET STRING OPTIONAL
});
constexpr Asn1Descriptor kWrapped = Sequence(kWrappedParts);

struct Shape {
    const char* name;
    const Asn1Descriptor* d;
};

const Shape kShapes[] = {
    {"Certificate", &kCertificate},
    {"CertificateList", &kCertificateList},
    {"CertificationRequest", &kCertificationRequest},
    {"Extensions", &kExtensions},
    {"Attributes", &kAttributes},
    {"CRLDistributionPoints", &kCrlDistributionPoints},
    {"CertificatePolicies", &kCertificatePolicies},
    {"OcspCheckFileExtResults", &kExtResults},
    {"OCSPRequest", &kOcspRequest},
    {"OCSPResponse", &kOcspResponse},
    {"BasicOCSPResponse", &kBasicOcspResponse},
    {"SigningCertificateV2", &kSigningCertificateV2},
    {"OtherSigningCertificate", &kOtherSigningCertificate},
    {"ATSHashIndex", &kAtsHashIndex},
    {"DocInfo", &kDocInfo},
    {"CompleteRevocationRefs", &kCompleteRevocationRefs},
    {"RevocationValues", &kRevocationValues},
    {"ContentInfo", &kContentInfo},
    {"SignedData", &kSignedData},
    {"SignerInfo", &kSignerInfo},
    {"TimeStampReq", &kTimeStampRequest},
    {"TimeStampResp", &kTimeStampResponse},
    {"TSTInfo", &kTstInfo},
    {"SeveralData", &kSeveralData},
    {"EnvelopedData", &kEnvelopedData},
    {"KeyTransRecipientInfo", &kKeyTrans},
    {"GostR3410-KeyTransport", &kGostR3410KeyTransport},
    {"INTEGER", &kInteger},
    {"OCTET STRING", &kOctetString},
    {"SET OF INTEGER", &kSetOfInteger},
    {"Versioned", &kVersioned},
    {"Pick", &kPick},
    {"ANY", &kAny},
    {"Wrapped", &kWrapped},
};

[[noreturn]] void Broken(const Shape& s, const char* what, uint32_t rc) {
    std::fprintf(stderr, "%s: %s (status %u)\n", s.name, what, rc);
    std::abort();
}

// Status codes that malformed input may legitimately produce.
bool IsRejection(uint32_t rc) {
    switch (rc) {
        case TV_ERR_INVALID_ARGUMENT:  // a constructed BIT STRING
        case TV_ERR_MALFORMED:
        case TV_ERR_LENGTH_TOO_LONG:
        case TV_ERR_NOT_DER:
        case TV_ERR_INDEFINITE:
        case TV_ERR_SEGMENT_TAG:
            return true;
        default:
            return false;
    }
}

struct Encoding {
    uint8_t* p = nullptr;
    uint32_t n = 0;
    ~Encoding() { std::free(p); }
    bool operator==(const Encoding& o) const { return n == o.n && (n == 0 || std::memcmp(p, o.p, n) == 0); }
};

void EncodeOrDie(const Shape& s, const void* v, Encoding* e, const char* what) {
    if (uint32_t rc = Asn1Encode(v, s.d, &e->p, &e->n); rc != TV_OK) Broken(s, what, rc);
}

void RoundTrip(const Shape& s, const uint8_t* data, uint32_t size) {
    OwnedValue first(s.d);
    uint32_t used = 0;
    uint32_t rc = Asn1DecodeItem(data, size, s.d, first.Out(), &used);
    if (rc != TV_OK) {
        if (!IsRejection(rc)) Broken(s, "unexpected rejection", rc);
        if (first.get()) Broken(s, "failed decode left a value", rc);
        return;
    }
    if (used > size) Broken(s, "consumed more than the input", used);
    if (!first.get()) Broken(s, "decode produced no value", 0);

    Encoding e1;
    EncodeOrDie(s, first.get(), &e1, "encoding a decoded value failed");

    uint32_t sized = 0;
    if ((rc = GetAsn1EncodedValue(first.get(), s.d, nullptr, &sized)) != TV_OK || sized != e1.n)
        Broken(s, "size query disagrees with the encoding", rc);
    Encoding inPlace;
    inPlace.p = static_cast<uint8_t*>(std::malloc(sized ? sized : 1));
    inPlace.n = sized;
    if ((rc = GetAsn1EncodedValue(first.get(), s.d, inPlace.p, &inPlace.n)) != TV_OK || !(inPlace == e1))
        Broken(s, "writing in place disagrees with Asn1Encode", rc);

    // The engine's copy refuses NULL values (300, kept): a good or unknown OCSP status is one.
    OwnedValue copy(s.d);
    if ((rc = CopyValue(s.d, first.get(), copy.Out())) != TV_OK && rc != TV_ERR_UNSUPPORTED_TYPE)
        Broken(s, "copy failed", rc);
    if (rc == TV_OK) {
        Encoding ec;
        EncodeOrDie(s, copy.get(), &ec, "encoding a copy failed");
        if (!(ec == e1)) Broken(s, "copy encodes differently", 0);
        uint32_t equal = 0;
        rc = CompareAsn1Objects(s.d, first.get(), copy.get(), &equal);
        // Trees holding CHOICE or ANY cannot be compared (300); anything comparable must be equal.
        if (rc == TV_OK ? equal != 1 : rc != TV_ERR_UNSUPPORTED_TYPE) Broken(s, "copy compares unequal", rc);
    }

    OwnedValue second(s.d);
    if ((rc = Asn1DecodeItem(e1.p, e1.n, s.d, second.Out(), &used)) != TV_OK)
        Broken(s, "our own DER does not decode", rc);
    if (used != e1.n) Broken(s, "our own DER is not consumed whole", used);
    Encoding e2;
    EncodeOrDie(s, second.get(), &e2, "encoding the re-decoded value failed");
    if (!(e2 == e1)) Broken(s, "no fixpoint: re-encoding changed the DER", 0);
}

// Typed readers whose layout the generic round trip cannot hold to a fixpoint: the issuing
// distribution point reuses [1] for the reasons, so a value whose explicit FALSE flag the encoder
// drops reads back differently, and its reader picks the layout by looking ahead. These must only
// answer with a status and release everything they built (LeakSanitizer watches).
void PublicReaders(const uint8_t* data, uint32_t size) {
    GeneralNames* full = nullptr;
    X509Name* relative = nullptr;
    uint8_t flags[5];
    uint32_t present[5], reasons = 0, reasonsPresent = 0;
    if (DecodeExtensionIssuingDistributionPoint(data, size, &full, &relative, &flags[0], &present[0], &flags[1],
                                                &present[1], &reasons, &reasonsPresent, &flags[2], &present[2],
                                                &flags[3], &present[3]) == TV_OK) {
        FreeX509GeneralNames(full);
        FreeX509Name(relative);
    }
    uint8_t keyId[64], serial[64];
    uint32_t keyIdLen = sizeof keyId, serialLen = sizeof serial;
    GeneralNames* issuer = nullptr;
    if (DecodeExtensionAuthorityKeyIdentifier(data, size, keyId, &keyIdLen, &issuer, serial, &serialLen) == TV_OK)
        FreeX509GeneralNames(issuer);
    uint8_t ca = 0;
    uint32_t pathLen = 0;
    DecodeExtensionBasicConstraints(data, size, &ca, &pathLen);
    PKCS10CertReq* request = nullptr;
    if (DecodePKCS10CertReq(data, size, &request) == TV_OK) {
        X509Extensions* requested = nullptr;
        if (GetPKCS10CertReqExtensions(request, &requested) == TV_OK) FreeX509Extensions(requested);
        FreePKCS10CertReq(request);
    }
}

// The OCSP readers over whatever tree a hostile message decodes to: the responder's path through a
// request, and a client's through a response and the basic response it carries.
void OcspReaders(const uint8_t* data, uint32_t size) {
    uint8_t buf[5][64];
    uint32_t n[5], count = 0, kind = 0, status = 0;
    OcspRequest* request = nullptr;
    if (DecodeOcspRequest(data, size, &request) == TV_OK) {
        if (GetOcspRequestCertRequestsCount(request, &count) == TV_OK)
            for (uint32_t i = 0; i < count; ++i) {
                for (uint32_t& len : n) len = sizeof buf[0];
                X509Extensions* extensions = nullptr;
                GetOcspRequestCertRequest(request, i, buf[0], &n[0], buf[1], &n[1], buf[2], &n[2], buf[3], &n[3],
                                          buf[4], &n[4], &extensions);
            }
        n[0] = sizeof buf[0];
        GetOcspRequestRequestorNameValue(request, &kind, buf[0], &n[0]);
        FreeOcspRequest(request);
    }
    OcspResponse* response = nullptr;
    if (DecodeOcspResponse(data, size, &response) != TV_OK) return;
    uint32_t typeLen = sizeof buf[0], len = 0;
    OcspBasicResponse* basic = nullptr;
    if (GetOcspResponseBytes(response, buf[0], &typeLen, nullptr, &len) == TV_OK) {
        std::vector<uint8_t> octets(len);
        if (GetOcspResponseBytes(response, buf[0], &typeLen, octets.data(), &len) == TV_OK &&
            DecodeOcspBasicResponse(octets.data(), len, &basic) == TV_OK) {
            n[0] = sizeof buf[0];
            GetOcspBasicResponseResponderID(basic, &kind, buf[0], &n[0]);
            OcspSingleResponse* single = nullptr;
            LibraryTime t;
            int32_t reason = 0;
            if (GetOcspBasicResponseSingleResponsesCount(basic, &count) == TV_OK)
                for (uint32_t i = 0; i < count; ++i)
                    if (GetOcspBasicResponseSingleResponse(basic, i, &single) == TV_OK &&
                        GetOcspSingleResponseCertStatus(single, &status) == TV_OK)
                        GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason);
            FreeOcspBasicResponse(basic);
        }
    }
    FreeOcspResponse(response);
}

// The attribute-value readers that hand out lists or pick a layout by looking ahead.
void AttributeReaders(const uint8_t* data, uint32_t size) {
    uint8_t oid[64], params[64];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    Asn1List *certs = nullptr, *crls = nullptr, *attrs = nullptr;
    if (DecodeRsaAttributeAtsHashIndex(data, size, oid, &oidLen, params, &paramsLen, &certs, &crls, &attrs) == TV_OK)
        for (Asn1List* list : {certs, crls, attrs}) FreeOctetStrings(list);
    OtherCertIDs* ids = nullptr;
    CertificatePolicies* policies = nullptr;
    if (DecodeRsaAttributeOtherSigningCertificateValue(data, size, &ids, &policies) == TV_OK) {
        uint32_t count = 0, n[4];
        GeneralNames* issuer = nullptr;
        uint8_t hash[64], serial[32];
        GetOtherCertIDCount(ids, &count);
        for (uint32_t i = 0; i < count; ++i) {
            n[0] = sizeof oid, n[1] = sizeof params, n[2] = sizeof hash, n[3] = sizeof serial;
            GetOtherCertIDInformation(ids, i, oid, &n[0], params, &n[1], hash, &n[2], &issuer, serial, &n[3]);
        }
        FreeOtherCertIDs(ids);
        FreeExtensionCertificatePolicies(policies);
    }
}

// The readers of whole signed messages: every signer's time and text, each signer removed, and the
// signer identifier matched against every certificate the message carries.
void CmsReaders(const uint8_t* data, uint32_t size) {
    uint32_t signers = 0, n = 0;
    OwnedValue signedData(&kSignedData);
    CmsContentInfo* info = nullptr;
    if (DecodeCmsContentInfo(data, size, &info) != TV_OK) return;
    uint8_t inner[8192];
    n = sizeof inner;
    if (GetCmsContentInfoContent(info, inner, &n) == TV_OK && n &&
        DecodeCmsSignedData(inner, n, reinterpret_cast<CmsSignedData**>(signedData.Out())) == TV_OK) {
        auto* sd = signedData.as<CmsSignedData>();
        uint32_t certs = 0;
        GetCmsSignedDataSignerInfosCount(sd, &signers);
        GetCmsSignedDataCertificatesCount(sd, &certs);
        for (uint32_t i = 0; i < signers; ++i) {
            CmsSignerInfo* signer = nullptr;
            if (GetCmsSignedDataSignerInfo(sd, i, &signer) != TV_OK) continue;
            for (uint32_t c = 0; c < certs; ++c) {
                uint8_t der[8192];
                uint32_t kind = 0, len = sizeof der;
                Certificate* cert = nullptr;
                if (GetCmsSignedDataEncodedCertificate(sd, c, &kind, der, &len) == TV_OK &&
                    DecodeCertificate(der, len, &cert) == TV_OK) {
                    CompareSignerInfoAndCertificate(signer, cert);
                    FreeCertificate(cert);
                }
            }
        }
    }
    FreeCmsContentInfo(info);
    for (uint32_t i = 1; i <= signers + 1; ++i) {
        LibraryTime time{};
        char text[1100];
        uint8_t out[8192];
        uint32_t textLen = sizeof text, outLen = sizeof out;
        GetBufferCmsSignatureTimeAndCN(i, data, size, &time, text, &textLen);
        DeleteBufferCmsSignerInfo(i, data, size, out, &outLen);
    }
}

// The one-call time-stamp readers, every output asked for, and every handle they hand out freed.
void TimeStampReaders(const uint8_t* data, uint32_t size) {
    uint8_t b[6][256];
    uint32_t n[6], version = 0, flag = 0;
    const auto room = [&] {
        for (uint32_t& len : n) len = sizeof b[0];
    };
    X509Extensions* extensions = nullptr;
    room();
    if (DecodeTimeStampReq(data, size, &version, b[0], &n[0], b[1], &n[1], b[2], &n[2], b[3], &n[3], b[4], &n[4], &flag,
                           &extensions) != TV_ERR_INVALID_ARGUMENT)
        FreeX509Extensions(extensions);
    extensions = nullptr;
    GeneralName* tsa = nullptr;
    LibraryPreciseTime time{};
    Accuracy accuracy{};
    room();
    DecodeTSTInfo(data, size, &version, b[0], &n[0], b[1], &n[1], b[2], &n[2], b[3], &n[3], b[4], &n[4], &time, &accuracy,
                  &flag, b[5], &n[5], &tsa, &extensions);
    FreeX509GeneralName(tsa);
    FreeX509Extensions(extensions);
    PKIFreeText* text = nullptr;
    CmsContentInfo* token = nullptr;
    if (DecodeTimeStampResp(data, size, &version, &text, &flag, &token) == TV_OK) {
        FreePKIFreeText(text);
        FreeCmsContentInfo(token);
    }
}

// An enveloped message read as its recipient's software would: every recipient, for key transport
// its fields and the GOST key transport inside its encrypted key, the content's algorithm and the
// GOST 28147-89 parameters in it.
void GostKeyTransportReaders(const uint8_t* data, uint32_t size) {
    GostR3410KeyTransport* transport = nullptr;
    if (DecodeGostR3410KeyTransport(data, size, &transport) != TV_OK) return;
    uint8_t b[256], p[256];
    uint32_t n = sizeof b, m = sizeof p;
    for (auto get : {GetGostR3410KeyTransportEncryptedKey, GetGostR3410KeyTransportMaskKey, GetGostR3410KeyTransportMacKey,
                     GetGostR3410KeyTransportUkm, GetGostR3410KeyTransportEphemeralPublicKey}) {
        n = sizeof b;
        get(transport, b, &n);
    }
    n = sizeof b;
    GetGostR3410KeyTransportEncryptionParamSetOid(transport, b, &n);
    n = sizeof b;
    GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(transport, b, &n, p, &m);
    FreeGostR3410KeyTransport(transport);
}

void EnvelopedReaders(const uint8_t* data, uint32_t size) {
    CmsEnvelopedData* enveloped = nullptr;
    if (DecodeCmsEnvelopedData(data, size, &enveloped) != TV_OK) return;
    uint8_t b[4096], p[256];
    uint32_t count = 0, kind = 0, n = sizeof b, m = sizeof p;
    if (GetCmsEnvelopedDataRecipientInfosCount(enveloped, &count) == TV_OK)
        for (uint32_t i = 0; i < count; ++i) {
            void* value = nullptr;
            if (GetCmsEnvelopedDataRecipientInfo(enveloped, i, &value, &kind) != TV_OK || kind != TV_CMS_RECIPIENT_KEY_TRANS)
                continue;
            auto* keyTrans = static_cast<KeyTrans*>(value);
            X509Name* issuer = nullptr;
            uint32_t serialLen = 64, keyIdLen = 64;
            GetKeyTransRecipientIdentifier(keyTrans, &issuer, b, &serialLen, p, &keyIdLen);
            n = sizeof b, m = sizeof p;
            GetKeyTransKeyEncryptionAlgorithmOidAndParameters(keyTrans, b, &n, p, &m);
            n = sizeof b;
            if (GetKeyTransEncryptedKey(keyTrans, b, &n) == TV_OK) GostKeyTransportReaders(b, n);
        }
    for (uint32_t i = 0; GetCmsEnvelopedDataEncodedCertificate(enveloped, i, &kind, nullptr, nullptr) == TV_OK; ++i) {}
    n = sizeof b, m = sizeof p;
    if (GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(enveloped, b, &n, p, &m) == TV_OK) {
        uint8_t iv[64], oid[64];
        uint32_t ivLen = sizeof iv, oidLen = sizeof oid;
        DecodeGost2814789Parameters(p, m, iv, &ivLen, oid, &oidLen);
    }
    FreeCmsEnvelopedData(enveloped);
}

// Caller bytes stored as an ANY: what is accepted must be one whole element, so the stored header
// spans exactly the stored octets and the ANY decoder takes all of them.
void CallerAny(const uint8_t* data, uint32_t size) {
    const Shape s{"caller ANY", &kAny};
    OwnedValue any(&kAny, New<Asn1Primitive>());
    if (size == 0 || !any.get() || SetAnyEncoding(any.as<Asn1Primitive>(), data, size) != TV_OK) return;
    uint8_t cls = 0, cons = 0;
    uint32_t tag = 0, contentLen = 0, headerLen = 0, used = 0;
    uint32_t rc = GetAsn1AnyInfo(any.as<Asn1Primitive>(), &cls, &cons, &tag, &contentLen, &headerLen);
    if (rc != TV_OK || uint64_t{headerLen} + contentLen != size) Broken(s, "stored header does not span it", rc);
    OwnedValue back(&kAny);
    if ((rc = Asn1DecodeItem(data, size, &kAny, back.Out(), &used)) != TV_OK || used != size)
        Broken(s, "accepted bytes are not one element", rc);
}


// ---- Every Decode... export by name ------------------------------------------------------------

// The caller's side of one output parameter, by its type: octet and text buffers of the room the
// input picks (null for a size query), lengths holding that room, records zeroed, and handles that
// start null and are freed afterwards with the Free function the table names.
template <typename T>
struct Arg;
template <typename T>
struct Arg<T*> {
    T v{};
    T* get(uint32_t) { return &v; }
};
template <typename C>
struct Buffer {
    std::vector<C> b;
    C* get(uint32_t room) {
        if (room == kSizeQuery) return nullptr;
        b.assign(room ? room : 1, C{});
        return b.data();
    }
    static constexpr uint32_t kSizeQuery = UINT32_MAX;
};
template <>
struct Arg<uint8_t*> : Buffer<uint8_t> {};
template <>
struct Arg<char*> : Buffer<char> {};
template <>
struct Arg<uint32_t*> {
    uint32_t v = 0;
    uint32_t* get(uint32_t room) {
        v = room == Buffer<uint8_t>::kSizeQuery ? 0 : room;
        return &v;
    }
};
template <typename T>
struct Arg<T**> {
    T* h = nullptr;
    T** get(uint32_t) { return &h; }
};

template <typename T>
constexpr int kHandles = 0;
template <typename T>
constexpr int kHandles<T**> = 1;

template <typename T>
void Release(void* handle, uint32_t (*free)(T*)) {
    if (handle) free(static_cast<T*>(handle));
}

template <typename T>
void Collect(Arg<T>&, void**&) {}
template <typename T>
void Collect(Arg<T**>& a, void**& next) {
    *next++ = a.h;
}

template <auto... Frees, typename In, typename... Outs>
uint32_t Invoke(uint32_t (*decode)(const In*, uint32_t, Outs...), const uint8_t* data, uint32_t size, uint32_t room) {
    static_assert((kHandles<Outs> + ... + 0) == sizeof...(Frees), "one Free function per handle output");
    std::tuple<Arg<Outs>...> args;
    const uint32_t rc = std::apply(
        [&](auto&... a) { return decode(reinterpret_cast<const In*>(data), size, a.get(room)...); }, args);
    void* handles[sizeof...(Frees) + 1] = {};
    void** next = handles;
    std::apply([&](auto&... a) { (Collect(a, next), ...); }, args);
    int i = 0;
    (Release(handles[i++], Frees), ...);
    return rc;
}

// The two decoders that take a selector first (an algorithm, a type code) get one that fits the
// input from the Select function the table names.
template <auto Select, typename... Outs>
uint32_t Invoke(uint32_t (*decode)(uint32_t, const uint8_t*, uint32_t, Outs...), const uint8_t* data, uint32_t size,
                uint32_t room) {
    static_assert((kHandles<Outs> + ... + 0) == 0, "no handle outputs");
    std::tuple<Arg<Outs>...> args;
    return std::apply([&](auto&... a) { return decode(Select(data, size), data, size, a.get(room)...); }, args);
}

// GOST R 34.10-2001, -2012 256 and 512, and any other number.
uint32_t GostAlgorithm(const uint8_t*, uint32_t size) {
    constexpr uint32_t kAlgorithms[] = {102, 3000, 3001, 7};
    return kAlgorithms[(size / 4) % 4];
}

// The universal tag the input starts with.
uint32_t FirstTag(const uint8_t* data, uint32_t size) { return size ? data[0] & 0x1F : 0; }

template <auto Decode, auto... Extra>  // the Free functions, or the selector
uint32_t Run(const uint8_t* data, uint32_t size, uint32_t room) {
    return Invoke<Extra...>(Decode, data, size, room);
}

struct Decoder {
    const char* name;
    uint32_t (*run)(const uint8_t*, uint32_t, uint32_t);
};

#define TV_DECODER(f, ...) Decoder{#f, &Run<&f __VA_OPT__(, ) __VA_ARGS__>}

// Its result is a whole int32 behind an octet pointer (the binding's parameter kind).
uint32_t DecodeAsn1Int32AsInt(const uint8_t* in, uint32_t inLen, int32_t* out) {
    return DecodeAsn1Int32(in, inLen, reinterpret_cast<uint8_t*>(out));
}

const Decoder kDecoders[] = {
    // algorithm.h
    TV_DECODER(DecodeAlgorithmGostR3410ParameterOids, GostAlgorithm),
    TV_DECODER(DecodeAlgorithmGostR34102001ParameterOids),
    TV_DECODER(DecodeAlgorithmGostR34102012ParameterOids),
    TV_DECODER(DecodeAlgorithmGostR34102001Parameters),
    TV_DECODER(DecodePublicKeyGostR34102001),
    TV_DECODER(DecodePublicKeyGostR34102012),
    TV_DECODER(DecodeSubjectPublicKeyInfo),
    // asn1.h, text.h, time.h
    TV_DECODER(DecodeAsn1Oid),
    Decoder{"DecodeAsn1Int32", &Run<&DecodeAsn1Int32AsInt>},
    TV_DECODER(DecodeAsn1PrimitiveValue, FirstTag),
    TV_DECODER(DecodeFromBase64),
    TV_DECODER(DecodePem),
    TV_DECODER(DecodeTime),
    // attribute_values.h
    TV_DECODER(DecodeRsaAttributeMessageDigestValue),
    TV_DECODER(DecodeRsaAttributeTemplateDigestValue),
    TV_DECODER(DecodeRsaAttributeKestrunePubKeyValue),
    TV_DECODER(DecodeRsaAttributeX509CertificateValue),
    TV_DECODER(DecodeRsaAttributeCyksCertificateValue),
    TV_DECODER(DecodeRsaAttributeTokenSerialNumberValue),
    TV_DECODER(DecodeRsaAttributeContentTypeValue),
    TV_DECODER(DecodeRsaAttributeSecurityTokenTypeValue),
    TV_DECODER(DecodeRsaAttributeChannelCspClassValue),
    TV_DECODER(DecodeRsaAttributeRequestCertificateStatusValue),
    TV_DECODER(DecodeRsaAttributeSignatureConfirmationTypeValue),
    TV_DECODER(DecodeRsaAttributeUsageValue),
    TV_DECODER(DecodeRsaAttributePacketDigestNumberValue),
    TV_DECODER(DecodeRsaAttributePacketDigestCountValue),
    TV_DECODER(DecodeRsaAttributeTokenSignatureNumberValue),
    TV_DECODER(DecodeRsaAttributePinNumberValue),
    TV_DECODER(DecodeRsaAttributeRequestCertificateTypeValue),
    TV_DECODER(DecodeRsaAttributeValidityPeriodValue),
    TV_DECODER(DecodeRsaAttributeSigningTimeValue),
    TV_DECODER(DecodeOtherCertIDs, FreeOtherCertIDs),
    TV_DECODER(DecodeRsaAttributeSigningCertificateValue, FreeESSCertIDs, FreeExtensionCertificatePolicies),
    TV_DECODER(DecodeRsaAttributeSigningCertificateV2Value, FreeESSCertIDsV2, FreeExtensionCertificatePolicies),
    TV_DECODER(DecodeRsaAttributeOtherSigningCertificateValue, FreeOtherCertIDs, FreeExtensionCertificatePolicies),
    TV_DECODER(DecodeRsaAttributeAtsHashIndex, FreeOctetStrings, FreeOctetStrings, FreeOctetStrings),
    TV_DECODER(DecodeRsaAttributeCompleteRevocationRefs, FreeCrlOcspRefs),
    TV_DECODER(DecodeRsaAttributeRevocationValues, FreeX509Crls, FreeOcspBasicResponses),
    TV_DECODER(DecodeRsaAttributeValidityValue),
    TV_DECODER(DecodeRsaAttributeExtSubjInfoValue),
    TV_DECODER(DecodeDocInfo),
    TV_DECODER(DecodeRsaAttributes, FreeRsaAttributes),
    // certificate.h, crl.h, request.h
    TV_DECODER(DecodeCertificate, FreeCertificate),
    TV_DECODER(DecodeCertificates, FreeCertificates),
    TV_DECODER(DecodeX509Crl, FreeX509Crl),
    TV_DECODER(DecodeX509Crls, FreeX509Crls),
    TV_DECODER(DecodePKCS10CertReq, FreePKCS10CertReq),
    // cms.h, enveloped.h, timestamp.h
    TV_DECODER(DecodeCmsContentInfo, FreeCmsContentInfo),
    TV_DECODER(DecodeCmsContentInfoContent),
    TV_DECODER(DecodeCmsSignedData, FreeCmsSignedData),
    TV_DECODER(DecodeCmsEnvelopedData, FreeCmsEnvelopedData),
    TV_DECODER(DecodeKeyTrans, FreeKeyTrans),
    TV_DECODER(DecodeGost2814789Parameters),
    TV_DECODER(DecodeGostR3410KeyTransport, FreeGostR3410KeyTransport),
    TV_DECODER(DecodeTimeStampReq, FreeX509Extensions),
    TV_DECODER(DecodeTimeStampResp, FreePKIFreeText, FreeCmsContentInfo),
    TV_DECODER(DecodeTSTInfo, FreeX509GeneralName, FreeX509Extensions),
    TV_DECODER(DecodeSeveralData, FreeSeveralData),
    // extensions.h, extension_values.h
    TV_DECODER(DecodeX509Extension, FreeX509Extension),
    TV_DECODER(DecodeX509Extensions, FreeX509Extensions),
    TV_DECODER(DecodeExtensionOcspNonce),
    TV_DECODER(DecodeExtensionCrlNumber),
    TV_DECODER(DecodeExtensionDeltaCrlIndicator),
    TV_DECODER(DecodeExtensionSubjectSignTool),
    TV_DECODER(DecodeExtensionSnils),
    TV_DECODER(DecodeExtensionSubjectKeyIdentifier),
    TV_DECODER(DecodeExtensionKeyUsage),
    TV_DECODER(DecodeExtensionNetscapeCertificateType),
    TV_DECODER(DecodeExtensionReasonCode),
    TV_DECODER(DecodeExtensionInvalidityDate),
    TV_DECODER(DecodeExtensionBasicConstraints),
    TV_DECODER(DecodeExtensionAuthorityKeyIdentifier, FreeX509GeneralNames),
    TV_DECODER(DecodeExtensionPrivateKeyUsagePeriod),
    TV_DECODER(DecodeExtensionIssuerSignTool),
    TV_DECODER(DecodeExtensionIssuingDistributionPoint, FreeX509GeneralNames, FreeX509Name),
    TV_DECODER(DecodeExtensionCrlDistributionPoints, FreeExtensionCrlDistributionPoints),
    TV_DECODER(DecodeExtensionExtendedKeyUsage, FreeExtensionExtendedKeyUsage),
    TV_DECODER(DecodeExtensionAuthorityInformationAccess, FreeExtensionAuthorityInformationAccess),
    TV_DECODER(DecodeExtensionCertificatePolicies, FreeExtensionCertificatePolicies),
    // ocsp.h
    TV_DECODER(DecodeOcspRequest, FreeOcspRequest),
    TV_DECODER(DecodeOcspResponse, FreeOcspResponse),
    TV_DECODER(DecodeOcspBasicResponse, FreeOcspBasicResponse),
    TV_DECODER(DecodeOcspSingleResponse, FreeOcspSingleResponse),
    TV_DECODER(DecodeOcspBasicResponses, FreeOcspBasicResponses),
    // private_extensions.h
    TV_DECODER(DecodeExtensionKestruneKeyIdentifier),
    TV_DECODER(DecodeExtensionOcspRequestBsnProdCode),
    TV_DECODER(DecodeExtensionOcspRequestPerson),
    TV_DECODER(DecodeExtensionOcspRequestGuid),
    TV_DECODER(DecodeExtensionOrganizationCode),
    TV_DECODER(DecodeExtensionClockNumber),
    TV_DECODER(DecodeExtensionCorvantisSerialNumber),
    TV_DECODER(DecodeExtensionRelatedOsbKod),
    TV_DECODER(DecodeExtensionOcspRequestDocuments),
    TV_DECODER(DecodeExtensionOcspRequestCertificates),
    TV_DECODER(DecodeExtensionOcspRequestPrivateKeyContexts),
    TV_DECODER(DecodeExtensionParentAS),
    TV_DECODER(DecodeExtensionOwnerInformation, FreeX509Name),
    TV_DECODER(DecodeExtensionOcspCheckTime),
    TV_DECODER(DecodeExtensionOcspCheckFile),
    TV_DECODER(DecodeExtensionOcspCheckCryptoNetRegistry),
    TV_DECODER(DecodeExtensionOcspCheckTime2),
    TV_DECODER(DecodeExtensionExtendedResult),
    TV_DECODER(DecodeExtensionKeyStorage),
    TV_DECODER(DecodeExtensionRequestBlockingDate),
    TV_DECODER(DecodeExtensionStoreCertificates, FreeExtensionStoreCertificates),
    TV_DECODER(DecodeExtensionStorePrivateKeyContexts, FreeExtensionStorePrivateKeyContexts),
    TV_DECODER(DecodeExtensionStoreOcspRequestDocuments, FreeExtensionStoreOcspRequestDocuments),
    TV_DECODER(DecodeExtensionOcspCheckFileExtResults, FreeExtensionOcspCheckFileExtResults),
    // x509name.h
    TV_DECODER(DecodeX509Name, FreeX509Name),
    TV_DECODER(DecodeX509GeneralNames, FreeX509GeneralNames),
    TV_DECODER(DecodePKIFreeText, FreePKIFreeText),
};
constexpr size_t kDecoderCount = sizeof kDecoders / sizeof kDecoders[0];

uint64_t gAccepted[kDecoderCount];
const char* gOnly = nullptr;  // TARVELON_FUZZ_ONLY

// The input's length picks the caller's buffers, so each decoder meets all three in a campaign.
uint32_t RoomFor(uint32_t size) {
    switch (size % 4) {
        case 0: return Buffer<uint8_t>::kSizeQuery;
        case 1: return size / 2;  // short for most outputs
        default: return 8192;
    }
}

void AllDecoders(const uint8_t* data, uint32_t size) {
    const uint32_t room = RoomFor(size);
    for (size_t i = 0; i < kDecoderCount; ++i) {
        if (gOnly && std::strcmp(gOnly, kDecoders[i].name) != 0) continue;
        if (kDecoders[i].run(data, size, room) == TV_OK) ++gAccepted[i];
    }
}

void Report() {
    std::fprintf(stderr, "%-52s %s\n", "decoder", "inputs accepted");
    for (size_t i = 0; i < kDecoderCount; ++i)
        if (!gOnly || std::strcmp(gOnly, kDecoders[i].name) == 0)
            std::fprintf(stderr, "%-52s %llu\n", kDecoders[i].name, static_cast<unsigned long long>(gAccepted[i]));
}


// ---- Seeds: every element of the fixtures --------------------------------------------------------

const char* gSplitDir = nullptr;  // TARVELON_FUZZ_SPLIT

// One definite-length header; false for anything else (indefinite lengths end the walk there).
bool Header(const uint8_t* p, size_t n, size_t* headerLen, size_t* contentLen, bool* constructed, uint32_t* tag) {
    if (n < 2) return false;
    size_t i = 1;
    uint32_t t = p[0] & 0x1F;
    if (t == 0x1F) {
        t = 0;
        do {
            if (i >= n || i > 5) return false;
            t = (t << 7) | (p[i] & 0x7F);
        } while (p[i++] & 0x80);
    }
    if (i >= n) return false;
    size_t len = p[i++];
    if (len == 0x80) return false;
    if (len > 0x80) {
        const size_t k = len & 0x7F;
        if (k > 4 || k > n - i) return false;
        len = 0;
        for (size_t j = 0; j < k; ++j) len = (len << 8) | p[i + j];
        i += k;
    }
    if (len > n - i) return false;
    *headerLen = i, *contentLen = len, *constructed = p[0] & 0x20, *tag = t;
    return true;
}

void WriteSeed(const uint8_t* p, size_t n) {
    uint8_t digest[20];
    if (n > 8192 || sha1(p, static_cast<uint32_t>(n), digest) != TV_OK) return;
    char path[4096];
    int at = std::snprintf(path, sizeof path, "%s/", gSplitDir);
    for (uint8_t b : digest) at += std::snprintf(path + at, sizeof path - at, "%02x", b);
    if (FILE* f = std::fopen(path, "wb")) {
        std::fwrite(p, 1, n, f);
        std::fclose(f);
    }
}

// Every element in p[0, n) in turn, and what each holds, down to a bounded depth.
void Split(const uint8_t* p, size_t n, int depth) {
    size_t h = 0, len = 0;
    bool constructed = false;
    uint32_t tag = 0;
    while (depth < 32 && Header(p, n, &h, &len, &constructed, &tag)) {
        WriteSeed(p, h + len);
        const uint8_t* content = p + h;
        if (constructed) Split(content, len, depth + 1);
        else if ((p[0] & 0xC0) == 0 && tag == ASN1_OCTET_STRING) Split(content, len, depth + 1);
        else if ((p[0] & 0xC0) == 0 && tag == ASN1_BIT_STRING && len > 1) Split(content + 1, len - 1, depth + 1);
        p += h + len, n -= h + len;
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    gOnly = std::getenv("TARVELON_FUZZ_ONLY");
    gSplitDir = std::getenv("TARVELON_FUZZ_SPLIT");
    if (std::getenv("TARVELON_FUZZ_REPORT")) std::atexit(Report);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > UINT32_MAX) return 0;
    if (gSplitDir) {
        Split(data, size, 0);
        return 0;
    }
    AllDecoders(data, static_cast<uint32_t>(size));
    if (gOnly) return 0;
    for (const Shape& s : kShapes) RoundTrip(s, data, static_cast<uint32_t>(size));
    PublicReaders(data, static_cast<uint32_t>(size));
    OcspReaders(data, static_cast<uint32_t>(size));
    AttributeReaders(data, static_cast<uint32_t>(size));
    CmsReaders(data, static_cast<uint32_t>(size));
    TimeStampReaders(data, static_cast<uint32_t>(size));
    EnvelopedReaders(data, static_cast<uint32_t>(size));
    GostKeyTransportReaders(data, static_cast<uint32_t>(size));
    CallerAny(data, static_cast<uint32_t>(size));
    return 0;
}
