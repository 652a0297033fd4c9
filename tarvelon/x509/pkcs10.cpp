// Certification requests: life cycle, coding, the bytes to be signed, version and subject.
#include "tarvelon/x509/pkcs10.h"

#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(pkcs10)

namespace tv::desc {

// attributes [0] IMPLICIT SET OF Attribute: always present, possibly empty
constexpr Asn1Descriptor kRequestAttributes = Implicit(0, SetOf<&kAttribute>());

// CertificationRequestInfo ::= SEQUENCE {                              (RFC 2986 4.1)
constexpr auto kRequestInfoParts = Slots<CertificationRequestInfoSlot>({
    {CertificationRequestInfoSlot::kVersion, &kInteger},                   // version        INTEGER { v1(0) }
    {CertificationRequestInfoSlot::kSubject, &kX509Name},                  // subject        Name
    {CertificationRequestInfoSlot::kSubjectPKInfo, &kSubjectPublicKeyInfo},  // subjectPKInfo  SubjectPublicKeyInfo
    {CertificationRequestInfoSlot::kAttributes, &kRequestAttributes},      // attributes     [0] IMPLICIT Attributes
});
constinit const Asn1Descriptor kCertificationRequestInfo = Sequence(kRequestInfoParts);

// CertificationRequest ::= SEQUENCE {                                  (RFC 2986 4.2)
constexpr auto kRequestParts = Slots<CertificationRequestSlot>({
    {CertificationRequestSlot::kCertificationRequestInfo, &kCertificationRequestInfo},          // certificationRequestInfo  CertificationRequestInfo
    {CertificationRequestSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},  // signatureAlgorithm        AlgorithmIdentifier
    {CertificationRequestSlot::kSignature, &kBitString},                    // signature                 BIT STRING
});
constinit const Asn1Descriptor kCertificationRequest = Sequence(kRequestParts);

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kRequestFamily{&desc::kCertificationRequest, Module::pkcs10, 0};

// Replaces the version with the shortest two's-complement form of a non-negative number: the
// fifth octet keeps versions of 2^31 and above positive.
uint32_t StoreVersion(RequestInfoSlots& info, uint32_t version) {
    const uint8_t le[5] = {static_cast<uint8_t>(version), static_cast<uint8_t>(version >> 8),
                           static_cast<uint8_t>(version >> 16), static_cast<uint8_t>(version >> 24), 0};
    OwnedValue fresh(&desc::kInteger, New<Asn1Primitive>());
    if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetAsn1Integer(fresh.as<Asn1Primitive>(), le, sizeof le));
    FreeAsn1Object(&desc::kInteger, Slot(info, desc::CertificationRequestInfoSlot::kVersion));
    Slot(info, desc::CertificationRequestInfoSlot::kVersion) = fresh.Release();
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- life cycle and coding ------------------------------------------------------------------------

// Every mandatory part is there, version v1 included: the only version RFC 2986 defines, so a
// request built field by field encodes as soon as its key, subject and signature are set.
extern "C" TV_API uint32_t CreatePKCS10CertReq(PKCS10CertReq** outRequest) {
    if (!outRequest) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kCertificationRequest);
    TV_TRY(CreateT(kRequestFamily, reinterpret_cast<PKCS10CertReq**>(built.Out())));
    TV_TRY(StoreVersion(*InfoOf(built.as<PKCS10CertReq>()), 0));
    *outRequest = static_cast<PKCS10CertReq*>(built.Release());
    return TV_OK;
}

// The signature covers the attributes in the order they arrived; the set keeps that order so the
// request info re-encodes to the signed bytes.
extern "C" TV_API uint32_t DecodePKCS10CertReq(const uint8_t* in, uint32_t inLen, PKCS10CertReq** outRequest) {
    PKCS10CertReq* request = nullptr;
    TV_TRY(DecodeT(kRequestFamily, in, inLen, &request));
    if (RequestInfoSlots* info = InfoOf(request); info && Slot(*info, desc::CertificationRequestInfoSlot::kAttributes))
        static_cast<Asn1List*>(Slot(*info, desc::CertificationRequestInfoSlot::kAttributes))->sorted = 0;
    *outRequest = request;
    return TV_OK;
}

extern "C" TV_API uint32_t EncodePKCS10CertReq(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kRequestFamily, request, out, outLen);
}

extern "C" TV_API uint32_t CreatePKCS10CertReqCopy(const PKCS10CertReq* request, PKCS10CertReq** outRequest) {
    return CopyT(kRequestFamily, request, outRequest);
}

extern "C" TV_API uint32_t FreePKCS10CertReq(PKCS10CertReq* request) { return FreeT(kRequestFamily, request); }

extern "C" TV_API uint32_t GetPKCS10CertReqToBeSignedPart(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    if (!request || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RequestInfoSlots* info = InfoOf(request);
    if (!info) return TV_FAIL(TV_ERR_ABSENT);
    return EncodeSized(TV_SITE, info, &desc::kCertificationRequestInfo, out, outLen);
}

// ---- version and subject --------------------------------------------------------------------------

// Contents that are negative or wider than 32 bits name no version this interface can report.
extern "C" TV_API uint32_t GetPKCS10CertReqVersion(const PKCS10CertReq* request, uint32_t* outVersion) {
    if (!request || !outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RequestInfoSlots* info = InfoOf(request);
    if (!info) return TV_FAIL(TV_ERR_ABSENT);
    auto* version = static_cast<const Asn1Primitive*>(Slot(*info, desc::CertificationRequestInfoSlot::kVersion));
    if (!version || !version->content || version->length == 0) return TV_FAIL(TV_ERR_ABSENT);
    const uint8_t* p = version->content;
    uint32_t n = version->length;
    if (p[0] & 0x80) return TV_FAIL(TV_ERR_NOT_DER);
    while (n > 1 && p[0] == 0) ++p, --n;
    if (n > 4) return TV_FAIL(TV_ERR_NOT_DER);
    uint32_t value = 0;
    for (uint32_t i = 0; i < n; ++i) value = value << 8 | p[i];
    *outVersion = value;
    return TV_OK;
}

extern "C" TV_API uint32_t SetPKCS10CertReqVersion(PKCS10CertReq* request, uint32_t version) {
    if (!request) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RequestInfoSlots* info = InfoOf(request);
    if (!info) return TV_FAIL(TV_ERR_ABSENT);
    return StoreVersion(*info, version);
}

extern "C" TV_API uint32_t GetPKCS10CertReqSubject(PKCS10CertReq* request, X509Name** outName) {
    if (!request || !outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RequestInfoSlots* info = InfoOf(request);
    if (!info) return TV_FAIL(TV_ERR_ABSENT);
    void*& subject = Slot(*info, desc::CertificationRequestInfoSlot::kSubject);
    if (!subject) TV_TRY(CreateAsn1Object(&desc::kX509Name, &subject, 0));
    *outName = static_cast<X509Name*>(subject);
    return TV_OK;
}

extern "C" TV_API uint32_t SetPKCS10CertReqSubject(PKCS10CertReq* request, const X509Name* name) {
    if (!request || !name) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RequestInfoSlots* info = InfoOf(request);
    if (!info) return TV_FAIL(TV_ERR_ABSENT);
    OwnedValue copy(&desc::kX509Name);
    TV_TRY(CopyValue(&desc::kX509Name, name, copy.Out()));
    FreeAsn1Object(&desc::kX509Name, Slot(*info, desc::CertificationRequestInfoSlot::kSubject));
    Slot(*info, desc::CertificationRequestInfoSlot::kSubject) = copy.Release();
    return TV_OK;
}
