// Decodes arbitrary octets with a handful of descriptors and holds every accepted value to the
// engine's round-trip promises: the DER it writes decodes again to a tree that writes the same DER
// (a fixpoint after one pass, since BER input may legitimately change on the first), the size query
// agrees with the bytes, a deep copy writes the same DER, and nothing leaks on any path.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > UINT32_MAX) return 0;
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
