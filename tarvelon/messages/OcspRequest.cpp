// OCSP requests (RFC 6960 4.1): life cycle, the Request entries with their CertIDs, the requestor
// name and the optional signature with its certificates. The CertID is shared with the responses.
#include "tarvelon/messages/Ocsp.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/x509/Certificate.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(OcspRequest)

namespace tv::desc {
namespace {

// CertID ::= SEQUENCE {                                                (RFC 6960 4.1.1)
constexpr auto kCertIdParts = Slots<CertIdSlot>({
    {CertIdSlot::kHashAlgorithm, &kAlgorithmIdentifier},  // hashAlgorithm   AlgorithmIdentifier
    {CertIdSlot::kIssuerNameHash, &kOctetString},         // issuerNameHash  OCTET STRING
    {CertIdSlot::kIssuerKeyHash, &kOctetString},          // issuerKeyHash   OCTET STRING
    {CertIdSlot::kSerialNumber, &kInteger},               // serialNumber    CertificateSerialNumber
});

}  // namespace

constinit const Asn1Descriptor kCertId = Sequence(kCertIdParts);

namespace {

constexpr Asn1Descriptor kSingleRequestExtensions = Explicit(0, Optional(SequenceOf<&kExtension>()));

// Request ::= SEQUENCE {                                               (RFC 6960 4.1.1)
constexpr auto kRequestParts = Slots<RequestSlot>({
    {RequestSlot::kReqCert, &kCertId},                                    // reqCert                  CertID
    {RequestSlot::kSingleRequestExtensions, &kSingleRequestExtensions},  // singleRequestExtensions  [0] EXPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kRequest = Sequence(kRequestParts);
constinit const Asn1Descriptor kRequestList = SequenceOf<&kRequest>();

namespace {

constexpr Asn1Descriptor kRequestorName = Explicit(1, Optional(Choice(kGeneralNameAlternatives)));
constexpr Asn1Descriptor kRequestExtensions = Explicit(2, Optional(SequenceOf<&kExtension>()));

// TBSRequest ::= SEQUENCE {                                            (RFC 6960 4.1.1)
constexpr auto kTbsRequestParts = Slots<TbsRequestSlot>({
    {TbsRequestSlot::kVersion, &kExplicitVersion},             // version            [0] EXPLICIT Version DEFAULT v1
    {TbsRequestSlot::kRequestorName, &kRequestorName},         // requestorName      [1] EXPLICIT GeneralName OPTIONAL
    {TbsRequestSlot::kRequestList, &kRequestList},             // requestList        SEQUENCE OF Request
    {TbsRequestSlot::kRequestExtensions, &kRequestExtensions}, // requestExtensions  [2] EXPLICIT Extensions OPTIONAL
});

// Signature ::= SEQUENCE {                                             (RFC 6960 4.1.1)
constexpr auto kSignatureParts = Slots<SignatureSlot>({
    {SignatureSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},  // signatureAlgorithm  AlgorithmIdentifier
    {SignatureSlot::kSignature, &kBitString},                     // signature           BIT STRING
    {SignatureSlot::kCerts, &kOcspCerts},                         // certs               [0] EXPLICIT SEQUENCE OF Certificate OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kTbsRequest = Sequence(kTbsRequestParts);
constinit const Asn1Descriptor kOptionalSignature = Explicit(0, Optional(Sequence(kSignatureParts)));

namespace {

// OCSPRequest ::= SEQUENCE {                                           (RFC 6960 4.1.1)
constexpr auto kOcspRequestParts = Slots<OcspRequestSlot>({
    {OcspRequestSlot::kTbsRequest, &kTbsRequest},                // tbsRequest         TBSRequest
    {OcspRequestSlot::kOptionalSignature, &kOptionalSignature},  // optionalSignature  [0] EXPLICIT Signature OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kOcspRequest = Sequence(kOcspRequestParts);

}  // namespace tv::desc

namespace tv {

uint32_t NewCertId(Site site, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen,
                   const uint8_t* issuerNameHash, uint32_t issuerNameHashLen, const uint8_t* issuerKeyHash,
                   uint32_t issuerKeyHashLen, const uint8_t* serial, uint32_t serialLen, OwnedValue& out) noexcept {
    using S = desc::CertIdSlot;
    // An INTEGER without contents is not DER: refused like a missing serial rather than stored.
    if (!hashOid || !issuerNameHash || !issuerKeyHash || !serial || serialLen == 0)
        return Fail(site, TV_ERR_INVALID_ARGUMENT);
    TV_TRY(NewStructure(site, desc::kCertId, out));
    void* id = out.get();
    TV_TRY(SetAlgorithmOidAndParameters(&Slot(id, S::kHashAlgorithm), hashOid, hashParams, hashParamsLen));
    TV_TRY(SetOptionalLeaf(&Slot(id, S::kIssuerNameHash), ASN1_OCTET_STRING, issuerNameHash, issuerNameHashLen));
    TV_TRY(SetOptionalLeaf(&Slot(id, S::kIssuerKeyHash), ASN1_OCTET_STRING, issuerKeyHash, issuerKeyHashLen));
    return SetOptionalLeaf(&Slot(id, S::kSerialNumber), ASN1_INTEGER, serial, serialLen);
}

namespace {

using namespace desc;

constinit const Family kRequestFamily{&kOcspRequest, Module::OcspRequest, 0};
constinit const Family kRequestListFamily{&kRequestList, Module::OcspRequest, 0};

// The address of a slot of tbsRequest: 32 without a request, 311 without the part.
uint32_t TbsSlot(const OcspRequest* request, TbsRequestSlot which, void*** out) {
    return Walk(TV_SITE, const_cast<OcspRequest*>(request), out, OcspRequestSlot::kTbsRequest, which);
}

uint32_t RequestorName(const OcspRequest* request, const GeneralName** out) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestorName, &slot));
    if (!*slot) return TV_FAIL(TV_ERR_ABSENT);
    *out = static_cast<const GeneralName*>(*slot);
    return TV_OK;
}

// The five CertID parts in order, each under the size protocol, with the flow callers have always
// seen: the OID decides alone; after a part that did not fit, the next part is still tried, but one
// copied successfully ends the call with 49 at once; other failures after the OID are passed over;
// 49 when the serial or any earlier part did not fit.
uint32_t ReadCertIdParts(const void* certId, uint8_t* hashOid, uint32_t* hashOidLen, uint8_t* hashParams,
                         uint32_t* hashParamsLen, uint8_t* nameHash, uint32_t* nameHashLen, uint8_t* keyHash,
                         uint32_t* keyHashLen, uint8_t* serial, uint32_t* serialLen) {
    using S = CertIdSlot;
    const void* algorithm = Slot(certId, S::kHashAlgorithm);
    TV_TRY(GetOid(TV_SITE, Slot(algorithm, AlgorithmIdentifierSlot::kAlgorithm), hashOid, hashOidLen));
    bool shortOfRoom = false;
    const auto part = [&](uint32_t rc) {
        if (rc == TV_ERR_BUFFER_TOO_SMALL) shortOfRoom = true;
        return rc == TV_OK && shortOfRoom;  // a later part fitted after one that did not: stop here
    };
    if (part(GetOptionalLeaf(TV_SITE, Slot(algorithm, AlgorithmIdentifierSlot::kParameters), hashParams,
                             hashParamsLen)) ||
        part(GetLeaf(TV_SITE, Slot(certId, S::kIssuerNameHash), nameHash, nameHashLen)) ||
        part(GetLeaf(TV_SITE, Slot(certId, S::kIssuerKeyHash), keyHash, keyHashLen)))
        return TV_ERR_BUFFER_TOO_SMALL;
    part(GetLeaf(TV_SITE, Slot(certId, S::kSerialNumber), serial, serialLen));
    return shortOfRoom ? TV_ERR_BUFFER_TOO_SMALL : TV_OK;
}

bool CertIdComplete(const void* certId) {
    using S = CertIdSlot;
    const void* algorithm = certId ? Slot(certId, S::kHashAlgorithm) : nullptr;
    return algorithm && Slot(algorithm, AlgorithmIdentifierSlot::kAlgorithm) && Slot(certId, S::kIssuerNameHash) &&
           Slot(certId, S::kIssuerKeyHash) && Slot(certId, S::kSerialNumber);
}

}  // namespace

uint32_t ReadCertId(Site site, const void* certId, uint8_t* hashOid, uint32_t* hashOidLen, uint8_t* hashParams,
                    uint32_t* hashParamsLen, uint8_t* nameHash, uint32_t* nameHashLen, uint8_t* keyHash,
                    uint32_t* keyHashLen, uint8_t* serial, uint32_t* serialLen) noexcept {
    using S = CertIdSlot;
    if (!hashOidLen || !hashParamsLen || !nameHashLen || !keyHashLen || !serialLen)
        return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (!certId) return Fail(site, TV_ERR_ABSENT);
    const void* algorithm = Slot(certId, S::kHashAlgorithm);
    return FirstFailure({GetAlgorithmOidAndParameters(algorithm, hashOid, hashOidLen, hashParams, hashParamsLen),
                         GetLeaf(site, Slot(certId, S::kIssuerNameHash), nameHash, nameHashLen),
                         GetLeaf(site, Slot(certId, S::kIssuerKeyHash), keyHash, keyHashLen),
                         GetLeaf(site, Slot(certId, S::kSerialNumber), serial, serialLen)});
}

}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- life cycle and coding ------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(OcspRequest, kRequestFamily)

// ---- version and requestor name --------------------------------------------------------------------

extern "C" TV_API uint32_t SetOcspRequestVersion(OcspRequest* request, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kVersion, &slot));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetOcspRequestVersion(const OcspRequest* request, uint32_t* outVersion) {
    if (!outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kVersion, &slot));
    return GetVersion(TV_SITE, *slot, VersionForm::kFourOctets, outVersion);
}

// The new name is complete before the old one goes, so a failure leaves the request as it was.
extern "C" TV_API uint32_t SetOcspRequestRequestorName(OcspRequest* request, uint32_t kind, const uint8_t* in,
                                                       uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestorName, &slot));
    GeneralName* name = nullptr;
    TV_TRY(AllocX509GeneralNameValue(&name, kind, in, inLen));
    FreeAsn1Object(&kGeneralName, *slot);
    *slot = name;
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspRequestRequestorName(const OcspRequest* request, GeneralName** outName) {
    if (!outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const GeneralName* name = nullptr;
    TV_TRY(RequestorName(request, &name));
    *outName = const_cast<GeneralName*>(name);
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspRequestRequestorNameValue(const OcspRequest* request, uint32_t* outKind,
                                                            uint8_t* out, uint32_t* outLen) {
    if (!outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const GeneralName* name = nullptr;
    TV_TRY(RequestorName(request, &name));
    return GetX509GeneralNameValue(name, outKind, out, outLen);
}

extern "C" TV_API uint32_t RemoveOcspRequestRequestorName(OcspRequest* request) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestorName, &slot));
    FreeAsn1Object(&kGeneralName, *slot);
    *slot = nullptr;
    return TV_OK;
}

// ---- Request entries --------------------------------------------------------------------------------

extern "C" TV_API uint32_t AddOcspRequestCertRequest(OcspRequest* request, const uint8_t* hashOid,
                                                     const uint8_t* hashParams, uint32_t hashParamsLen,
                                                     const uint8_t* issuerNameHash, uint32_t issuerNameHashLen,
                                                     const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen,
                                                     const uint8_t* serial, uint32_t serialLen,
                                                     const X509Extensions* extensions) {
    if (!request || !hashOid || !issuerNameHash || !issuerKeyHash || !serial)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** list = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestList, &list));
    if (!*list) return TV_FAIL(TV_ERR_ABSENT);
    OwnedValue entry(&kRequest);
    TV_TRY(NewStructure(TV_SITE, kRequest, entry));
    OwnedValue certId(&kCertId);
    TV_TRY(NewCertId(TV_SITE, hashOid, hashParams, hashParamsLen, issuerNameHash, issuerNameHashLen, issuerKeyHash,
                     issuerKeyHashLen, serial, serialLen, certId));
    Slot(entry.get(), RequestSlot::kReqCert) = certId.Release();
    if (extensions && extensions->list)
        TV_TRY(CopyValue(&kExtensions, extensions->list, &Slot(entry.get(), RequestSlot::kSingleRequestExtensions)));
    return ListAppendT(kRequestListFamily, static_cast<Asn1List*>(*list), entry);
}

extern "C" TV_API uint32_t GetOcspRequestCertRequestsCount(const OcspRequest* request, uint32_t* outCount) {
    void** list = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestList, &list));
    return SlotListCount(TV_SITE, kRequestListFamily, *list, outCount);
}

extern "C" TV_API uint32_t GetOcspRequestCertRequest(OcspRequest* request, uint32_t index, uint8_t* outHashOid,
                                                     uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                     uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash,
                                                     uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash,
                                                     uint32_t* outIssuerKeyHashLen, uint8_t* outSerial,
                                                     uint32_t* outSerialLen, X509Extensions** outExtensions) {
    if (!outHashOidLen || !outHashParamsLen || !outIssuerNameHashLen || !outIssuerKeyHashLen || !outSerialLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** list = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestList, &list));
    void* entry = nullptr;
    TV_TRY(SlotListElement(TV_SITE, kRequestListFamily, *list, index, &entry));
    const void* certId = Slot(entry, RequestSlot::kReqCert);
    if (!CertIdComplete(certId)) return TV_FAIL(TV_ERR_ABSENT);
    if (outExtensions) *outExtensions = ExtensionsHandleOfSlot(&Slot(entry, RequestSlot::kSingleRequestExtensions));
    return ReadCertIdParts(certId, outHashOid, outHashOidLen, outHashParams, outHashParamsLen, outIssuerNameHash,
                           outIssuerNameHashLen, outIssuerKeyHash, outIssuerKeyHashLen, outSerial, outSerialLen);
}

extern "C" TV_API uint32_t ClearOcspRequestCertRequests(OcspRequest* request) {
    void** list = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestList, &list));
    if (*list) ListClear(static_cast<Asn1List*>(*list), &kRequest);
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspRequestExtensions(OcspRequest* request, X509Extensions** outExtensions) {
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(request, TbsRequestSlot::kRequestExtensions, &slot));
    *outExtensions = ExtensionsHandleOfSlot(slot);
    return TV_OK;
}

// ---- signature -------------------------------------------------------------------------------------

extern "C" TV_API uint32_t IsExistsOcspRequestSignature(const OcspRequest* request) {
    return HasSignatureBlock(TV_SITE, kSignedOcspRequest, request);
}

extern "C" TV_API uint32_t RemoveOcspRequestSignature(OcspRequest* request) {
    return RemoveSignatureBlock(TV_SITE, kSignedOcspRequest, request);
}

extern "C" TV_API uint32_t SetOcspRequestSignatureAlgorithmOidAndParameters(OcspRequest* request, const uint8_t* inOid,
                                                                            const uint8_t* inParams,
                                                                            uint32_t inParamsLen) {
    return SetSignatureAlgorithm(TV_SITE, kSignedOcspRequest, request, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetOcspRequestSignatureAlgorithmAndParameters(const OcspRequest* request, uint8_t* outOid,
                                                                         uint32_t* outOidLen, uint8_t* outParams,
                                                                         uint32_t* outParamsLen) {
    return GetSignatureAlgorithm(TV_SITE, kSignedOcspRequest, request, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetOcspRequestSignature(OcspRequest* request, const uint8_t* in, uint32_t inLen) {
    return SetSignature(TV_SITE, kSignedOcspRequest, request, in, inLen);
}

extern "C" TV_API uint32_t GetOcspRequestSignature(const OcspRequest* request, uint8_t* out, uint32_t* outLen) {
    return GetSignature(TV_SITE, kSignedOcspRequest, request, out, outLen);
}

extern "C" TV_API uint32_t AddOcspRequestCertificate(OcspRequest* request, Certificate* certificate) {
    return AddCertificate(TV_SITE, kSignedOcspRequest, request, certificate);
}

extern "C" TV_API uint32_t GetOcspRequestCertificatesCount(const OcspRequest* request, uint32_t* outCount) {
    return GetCertificateCount(TV_SITE, kSignedOcspRequest, request, outCount);
}

extern "C" TV_API uint32_t GetOcspRequestCertificate(const OcspRequest* request, uint32_t index,
                                                     Certificate** outCertificate) {
    return GetCertificateAt(TV_SITE, kSignedOcspRequest, request, index, outCertificate);
}

extern "C" TV_API uint32_t RemoveOcspRequestCertificates(OcspRequest* request) {
    return RemoveCertificates(TV_SITE, kSignedOcspRequest, request);
}
