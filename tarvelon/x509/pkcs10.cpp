// Certification requests: life cycle, coding, the bytes to be signed, version and subject.
#include "tarvelon/x509/pkcs10.h"

#include "tarvelon/engine/Fields.h"
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
    {CertificationRequestInfoSlot::kVersion, &kInteger},                     // version        INTEGER { v1(0) }
    {CertificationRequestInfoSlot::kSubject, &kX509Name},                    // subject        Name
    {CertificationRequestInfoSlot::kSubjectPKInfo, &kSubjectPublicKeyInfo},  // subjectPKInfo  SubjectPublicKeyInfo
    {CertificationRequestInfoSlot::kAttributes, &kRequestAttributes},        // attributes     [0] IMPLICIT Attributes
});
constinit const Asn1Descriptor kCertificationRequestInfo = Sequence(kRequestInfoParts);

// CertificationRequest ::= SEQUENCE {                                  (RFC 2986 4.2)
constexpr auto kRequestParts = Slots<CertificationRequestSlot>({
    {CertificationRequestSlot::kCertificationRequestInfo, &kCertificationRequestInfo},  // certificationRequestInfo  CertificationRequestInfo
    {CertificationRequestSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},             // signatureAlgorithm        AlgorithmIdentifier
    {CertificationRequestSlot::kSignature, &kBitString},                                // signature                 BIT STRING
});
constinit const Asn1Descriptor kCertificationRequest = Sequence(kRequestParts);

}  // namespace tv::desc

namespace tv {
namespace {

using InfoSlot = desc::CertificationRequestInfoSlot;

constinit const Family kRequestFamily{&desc::kCertificationRequest, Module::pkcs10, 0};

// The address of a slot of the request info: 32 without a request, 311 without the info.
uint32_t InfoSlotOf(PKCS10CertReq* request, InfoSlot which, void*** out) {
    return Walk(TV_SITE, request, out, desc::CertificationRequestSlot::kCertificationRequestInfo, which);
}

// Replaces the version with the shortest two's-complement form of a non-negative number: the
// fifth octet keeps versions of 2^31 and above positive.
uint32_t StoreVersion(void* info, uint32_t version) {
    const uint8_t le[5] = {static_cast<uint8_t>(version), static_cast<uint8_t>(version >> 8),
                           static_cast<uint8_t>(version >> 16), static_cast<uint8_t>(version >> 24), 0};
    OwnedValue fresh(&desc::kInteger, New<Asn1Primitive>());
    if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetAsn1Integer(fresh.as<Asn1Primitive>(), le, sizeof le));
    void*& slot = Slot(info, InfoSlot::kVersion);
    FreeAsn1Object(&desc::kInteger, slot);
    slot = fresh.Release();
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
    TV_TRY(StoreVersion(Slot(built.get(), desc::CertificationRequestSlot::kCertificationRequestInfo), 0));
    *outRequest = static_cast<PKCS10CertReq*>(built.Release());
    return TV_OK;
}

// The signature covers the attributes in the order they arrived; the set keeps that order so the
// request info re-encodes to the signed bytes.
extern "C" TV_API uint32_t DecodePKCS10CertReq(const uint8_t* in, uint32_t inLen, PKCS10CertReq** outRequest) {
    PKCS10CertReq* request = nullptr;
    TV_TRY(DecodeT(kRequestFamily, in, inLen, &request));
    const void* info = Slot(request, desc::CertificationRequestSlot::kCertificationRequestInfo);
    if (void* attributes = info ? Slot(info, InfoSlot::kAttributes) : nullptr)
        static_cast<Asn1List*>(attributes)->sorted = 0;
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
    return GetToBeSigned(TV_SITE, kSignedRequest, request, out, outLen);
}

// ---- version and subject --------------------------------------------------------------------------

// Contents that are negative or wider than 32 bits name no version this interface can report.
extern "C" TV_API uint32_t GetPKCS10CertReqVersion(const PKCS10CertReq* request, uint32_t* outVersion) {
    if (!request || !outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(InfoSlotOf(const_cast<PKCS10CertReq*>(request), InfoSlot::kVersion, &slot));
    return GetVersion(TV_SITE, *slot, VersionForm::kLeadingZeros, outVersion);
}

extern "C" TV_API uint32_t SetPKCS10CertReqVersion(PKCS10CertReq* request, uint32_t version) {
    void* info = nullptr;
    TV_TRY(TbsOf(TV_SITE, kSignedRequest, request, &info));
    return StoreVersion(info, version);
}

extern "C" TV_API uint32_t GetPKCS10CertReqSubject(PKCS10CertReq* request, X509Name** outName) {
    if (!request || !outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** subject = nullptr;
    TV_TRY(InfoSlotOf(request, InfoSlot::kSubject, &subject));
    // Made by the engine, not NameInSlot: an allocation failure is recorded where it always was.
    if (!*subject) TV_TRY(CreateAsn1Object(&desc::kX509Name, subject, 0));
    *outName = static_cast<X509Name*>(*subject);
    return TV_OK;
}

extern "C" TV_API uint32_t SetPKCS10CertReqSubject(PKCS10CertReq* request, const X509Name* name) {
    if (!request || !name) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** subject = nullptr;
    TV_TRY(InfoSlotOf(request, InfoSlot::kSubject, &subject));
    return SetNameCopy(subject, name);
}
