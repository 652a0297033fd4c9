// OCSP responses (RFC 6960 4.2): the outer response with its responseBytes, the basic response a
// responder signs, its single responses, and the library's own list of basic responses.
#include "tarvelon/messages/Ocsp.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(OcspResponse)

namespace tv::desc {
namespace {

// ResponseBytes ::= SEQUENCE {                                         (RFC 6960 4.2.1)
constexpr auto kResponseBytesParts = Slots<ResponseBytesSlot>({
    {ResponseBytesSlot::kResponseType, &kOid},       // responseType  OBJECT IDENTIFIER
    {ResponseBytesSlot::kResponse, &kOctetString},   // response      OCTET STRING
});

}  // namespace

constinit const Asn1Descriptor kResponseBytes = Explicit(0, Optional(Sequence(kResponseBytesParts)));

namespace {

// OCSPResponse ::= SEQUENCE {                                          (RFC 6960 4.2.1)
constexpr auto kOcspResponseParts = Slots<OcspResponseSlot>({
    {OcspResponseSlot::kResponseStatus, &kEnumerated},   // responseStatus  OCSPResponseStatus
    {OcspResponseSlot::kResponseBytes, &kResponseBytes}, // responseBytes   [0] EXPLICIT ResponseBytes OPTIONAL
});

// ResponderID ::= CHOICE {                                             (RFC 6960 4.2.1)
constexpr Asn1Descriptor kByName = Explicit(1, Any());
constexpr Asn1Descriptor kByKey = Explicit(2, kOctetString);
constexpr auto kResponderIdAlternatives = Slots<ResponderIdKind>({
    {ResponderIdKind::kByName, &kByName},  // byName  [1] Name   (its complete DER)
    {ResponderIdKind::kByKey, &kByKey},    // byKey   [2] KeyHash
});

constexpr Asn1Descriptor kRevocationReason = Explicit(0, Optional(kEnumerated));

// RevokedInfo ::= SEQUENCE {                                           (RFC 6960 4.2.1)
constexpr auto kRevokedInfoParts = Slots<RevokedInfoSlot>({
    {RevokedInfoSlot::kRevocationTime, &kGeneralizedTime},     // revocationTime    GeneralizedTime
    {RevokedInfoSlot::kRevocationReason, &kRevocationReason},  // revocationReason  [0] EXPLICIT CRLReason OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kOcspResponse = Sequence(kOcspResponseParts);
constinit const Asn1Descriptor kResponderId = Choice(kResponderIdAlternatives);
constinit const Asn1Descriptor kRevokedInfo = Implicit(1, Sequence(kRevokedInfoParts));

namespace {

constexpr Asn1Descriptor kGood = Implicit(0, kNull);
constexpr Asn1Descriptor kUnknown = Implicit(2, kNull);

// CertStatus ::= CHOICE {                                              (RFC 6960 4.2.1)
constexpr auto kCertStatusAlternatives = Slots<CertStatusKind>({
    {CertStatusKind::kGood, &kGood},            // good     [0] IMPLICIT NULL
    {CertStatusKind::kRevoked, &kRevokedInfo},  // revoked  [1] IMPLICIT RevokedInfo
    {CertStatusKind::kUnknown, &kUnknown},      // unknown  [2] IMPLICIT UnknownInfo
});

}  // namespace

constinit const Asn1Descriptor kCertStatus = Choice(kCertStatusAlternatives);

namespace {

constexpr Asn1Descriptor kNextUpdate = Explicit(0, Optional(kGeneralizedTime));
constexpr Asn1Descriptor kSingleExtensions = Explicit(1, Optional(SequenceOf<&kExtension>()));

// SingleResponse ::= SEQUENCE {                                        (RFC 6960 4.2.1)
constexpr auto kSingleResponseParts = Slots<SingleResponseSlot>({
    {SingleResponseSlot::kCertId, &kCertId},                      // certID            CertID
    {SingleResponseSlot::kCertStatus, &kCertStatus},              // certStatus        CertStatus
    {SingleResponseSlot::kThisUpdate, &kGeneralizedTime},         // thisUpdate        GeneralizedTime
    {SingleResponseSlot::kNextUpdate, &kNextUpdate},              // nextUpdate        [0] EXPLICIT GeneralizedTime OPTIONAL
    {SingleResponseSlot::kSingleExtensions, &kSingleExtensions},  // singleExtensions  [1] EXPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kSingleResponse = Sequence(kSingleResponseParts);

namespace {

constexpr Asn1Descriptor kResponses = SequenceOf<&kSingleResponse>();
constexpr Asn1Descriptor kResponseExtensions = Explicit(1, Optional(SequenceOf<&kExtension>()));

// ResponseData ::= SEQUENCE {                                          (RFC 6960 4.2.1)
constexpr auto kResponseDataParts = Slots<ResponseDataSlot>({
    {ResponseDataSlot::kVersion, &kExplicitVersion},                // version             [0] EXPLICIT Version DEFAULT v1
    {ResponseDataSlot::kResponderId, &kResponderId},                // responderID         ResponderID
    {ResponseDataSlot::kProducedAt, &kGeneralizedTime},             // producedAt          GeneralizedTime
    {ResponseDataSlot::kResponses, &kResponses},                    // responses           SEQUENCE OF SingleResponse
    {ResponseDataSlot::kResponseExtensions, &kResponseExtensions},  // responseExtensions  [1] EXPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kResponseData = Sequence(kResponseDataParts);

namespace {

// BasicOCSPResponse ::= SEQUENCE {                                     (RFC 6960 4.2.1)
constexpr auto kBasicOcspResponseParts = Slots<BasicOcspResponseSlot>({
    {BasicOcspResponseSlot::kTbsResponseData, &kResponseData},             // tbsResponseData     ResponseData
    {BasicOcspResponseSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},  // signatureAlgorithm  AlgorithmIdentifier
    {BasicOcspResponseSlot::kSignature, &kBitString},                     // signature           BIT STRING
    {BasicOcspResponseSlot::kCerts, &kOcspCerts},                         // certs               [0] EXPLICIT SEQUENCE OF Certificate OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kBasicOcspResponse = Sequence(kBasicOcspResponseParts);
constinit const Asn1Descriptor kBasicOcspResponses = SequenceOf<&kBasicOcspResponse>();

}  // namespace tv::desc

namespace tv {
namespace {

using namespace desc;

constinit const Family kResponseFamily{&kOcspResponse, Module::OcspResponse, 0};
constinit const Family kBasicFamily{&kBasicOcspResponse, Module::OcspResponse, 0};
constinit const Family kBasicListFamily{&kBasicOcspResponses, Module::OcspResponse, 0};
constinit const Family kSingleFamily{&kSingleResponse, Module::OcspResponse, 0};
constinit const Family kResponsesFamily{&kResponses, Module::OcspResponse, 0};

// The address of a slot of tbsResponseData: 32 without a response, 311 without the part.
uint32_t DataSlot(const OcspBasicResponse* response, ResponseDataSlot which, void*** out) {
    return Walk(TV_SITE, const_cast<OcspBasicResponse*>(response), out, BasicOcspResponseSlot::kTbsResponseData,
                which);
}

// GeneralizedTime fields: a null record is a null argument here, and an absent field is 311.
uint32_t SetTime(void** slot, const LibraryTime* time) {
    if (!time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetGeneralizedTimeLeaf(slot, time);
}

uint32_t GetTime(const void* leaf, LibraryTime* out) {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!leaf) return TV_FAIL(TV_ERR_ABSENT);
    return GetTimeFromGeneralizedTimeLeaf(leaf, out);
}

uint32_t SingleSlot(const OcspSingleResponse* single, SingleResponseSlot which, void*** out) {
    if (!single) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *out = &Slot(const_cast<OcspSingleResponse*>(single), which);
    return TV_OK;
}

// The chosen alternative of a CHOICE slot; a CHOICE made fresh holds nothing yet and reads as absent.
uint32_t Chosen(const void* choice, const Asn1ChoiceValue** out) {
    auto* c = static_cast<const Asn1ChoiceValue*>(choice);
    if (!c || !c->value) return TV_FAIL(TV_ERR_ABSENT);
    *out = c;
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- life cycle and coding ------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(OcspResponse, kResponseFamily)

TV_FAMILY_LIFE_CYCLE(OcspBasicResponse, kBasicFamily)

TV_FAMILY_LIFE_CYCLE(OcspSingleResponse, kSingleFamily)

TV_FAMILY_LIFE_CYCLE(OcspBasicResponses, kBasicListFamily)

// The engine's copy refuses NULL values, a limitation kept for its callers, and every good or
// unknown certStatus is one: the list is copied through its DER instead, which gives the same tree
// (a list that cannot be encoded yet cannot be copied either).
extern "C" TV_API uint32_t CreateOcspBasicResponsesCopy(const OcspBasicResponses* responses,
                                                        OcspBasicResponses** outResponses) {
    if (!responses || !outResponses) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    HeapBytes der;
    uint32_t len = 0;
    TV_TRY(EncodeToHeap(TV_SITE, responses, kBasicOcspResponses, der, &len));
    return DecodeT(kBasicListFamily, der.get(), len, outResponses);
}

// The list takes the basic response itself; on failure the caller keeps it.
extern "C" TV_API uint32_t AddResponseToOcspBasicResponses(OcspBasicResponses* responses, OcspBasicResponse* response) {
    if (!responses || !response) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ListAppend(responses, response);
}

extern "C" TV_API uint32_t GetOcspBasicResponsesCount(const OcspBasicResponses* responses, uint32_t* outCount) {
    return ListCountT(kBasicListFamily, responses, outCount);
}

extern "C" TV_API uint32_t GetOcspBasicResponsesResponse(const OcspBasicResponses* responses, uint32_t index,
                                                         OcspBasicResponse** outResponse) {
    return ListElementT(kBasicListFamily, responses, index, outResponse);
}

// ---- the outer response -------------------------------------------------------------------------------

extern "C" TV_API uint32_t SetOcspResponseStatus(OcspResponse* response, uint32_t status) {
    if (!response) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetNumber(&Slot(response, OcspResponseSlot::kResponseStatus), ASN1_ENUMERATED, status);
}

extern "C" TV_API uint32_t GetOcspResponseStatus(const OcspResponse* response, uint32_t* outStatus) {
    if (!response || !outStatus) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetNumber(TV_SITE, Slot(response, OcspResponseSlot::kResponseStatus), outStatus);
}

// The record is made aside when absent and stored only once its type is set, so a failure leaves the
// response as it was.
extern "C" TV_API uint32_t SetOcspResponseBytes(OcspResponse* response, const uint8_t* responseType,
                                                const uint8_t* in, uint32_t inLen) {
    if (!response) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void*& bytes = Slot(response, OcspResponseSlot::kResponseBytes);
    if (!responseType || responseType[0] == 0) {
        if (inLen != 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        FreeAsn1Object(&kResponseBytes, bytes);
        bytes = nullptr;
        return TV_OK;
    }
    OwnedValue fresh(&kResponseBytes);
    if (!bytes) TV_TRY(NewStructure(TV_SITE, kResponseBytes, fresh));
    void* record = bytes ? bytes : fresh.get();
    TV_TRY(SetOid(TV_SITE, &Slot(record, ResponseBytesSlot::kResponseType), responseType));
    if (in && inLen) TV_TRY(SetOptionalLeaf(&Slot(record, ResponseBytesSlot::kResponse), ASN1_OCTET_STRING, in, inLen));
    if (!bytes) bytes = fresh.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspResponseBytes(const OcspResponse* response, uint8_t* outResponseType,
                                                uint32_t* outResponseTypeLen, uint8_t* out, uint32_t* outLen) {
    if (!response || !outResponseTypeLen || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* bytes = Slot(response, OcspResponseSlot::kResponseBytes);
    if (!bytes) return TV_FAIL(TV_ERR_ABSENT);
    return FirstFailure({GetOid(TV_SITE, Slot(bytes, ResponseBytesSlot::kResponseType), outResponseType,
                                outResponseTypeLen),
                         GetLeaf(TV_SITE, Slot(bytes, ResponseBytesSlot::kResponse), out, outLen)});
}

// ---- basic response: version, responder, producedAt ------------------------------------------------------

extern "C" TV_API uint32_t SetOcspBasicResponseVersion(OcspBasicResponse* response, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kVersion, &slot));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetOcspBasicResponseVersion(const OcspBasicResponse* response, uint32_t* outVersion) {
    if (!outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kVersion, &slot));
    return GetVersion(TV_SITE, *slot, VersionForm::kFourOctets, outVersion);
}

// byName keeps the Name as the one complete element it was given; byKey the hash octets.
extern "C" TV_API uint32_t SetOcspBasicResponseResponderID(OcspBasicResponse* response, uint32_t kind,
                                                           const uint8_t* in, uint32_t inLen) {
    if (!in || kind >= SlotCount<ResponderIdKind>) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponderId, &slot));
    const auto which = static_cast<ResponderIdKind>(kind);
    OwnedValue value(Component(kResponderId, which));
    if (which == ResponderIdKind::kByName)
        TV_TRY(SetAny(TV_SITE, value.Out(), in, inLen));
    else
        TV_TRY(SetOptionalLeaf(value.Out(), ASN1_OCTET_STRING, in, inLen));
    return SetChoice(kResponderId, slot, which, value);
}

extern "C" TV_API uint32_t GetOcspBasicResponseResponderID(const OcspBasicResponse* response, uint32_t* outKind,
                                                           uint8_t* out, uint32_t* outLen) {
    if (!outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponderId, &slot));
    const Asn1ChoiceValue* id = nullptr;
    TV_TRY(Chosen(*slot, &id));
    if (id->index < 0 || id->index >= Index(ResponderIdKind::kCount)) return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    *outKind = uint32_t(id->index);
    return GetLeaf(TV_SITE, id->value, out, outLen);
}

extern "C" TV_API uint32_t SetOcspBasicResponseProducedAt(OcspBasicResponse* response, const LibraryTime* time) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kProducedAt, &slot));
    return SetTime(slot, time);
}

extern "C" TV_API uint32_t GetOcspBasicResponseProducedAt(const OcspBasicResponse* response, LibraryTime* outTime) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kProducedAt, &slot));
    return GetTime(*slot, outTime);
}

// ---- basic response: single responses and extensions ---------------------------------------------------

extern "C" TV_API uint32_t AddOcspBasicResponseSingleResponse(OcspBasicResponse* response,
                                                              OcspSingleResponse* single) {
    if (!single) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponses, &slot));
    return AdoptIntoSlotList(kResponsesFamily, slot, single);
}

extern "C" TV_API uint32_t GetOcspBasicResponseSingleResponsesCount(const OcspBasicResponse* response,
                                                                    uint32_t* outCount) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponses, &slot));
    return SlotListCount(TV_SITE, kResponsesFamily, *slot, outCount);
}

extern "C" TV_API uint32_t GetOcspBasicResponseSingleResponse(const OcspBasicResponse* response, uint32_t index,
                                                              OcspSingleResponse** outSingle) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponses, &slot));
    return SlotListElement(TV_SITE, kResponsesFamily, *slot, index, outSingle);
}

extern "C" TV_API uint32_t ClearOcspBasicResponseResponses(OcspBasicResponse* response) {
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponses, &slot));
    if (*slot) ListClear(static_cast<Asn1List*>(*slot), &kSingleResponse);
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspBasicResponseExtensions(OcspBasicResponse* response, X509Extensions** outExtensions) {
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(DataSlot(response, ResponseDataSlot::kResponseExtensions, &slot));
    *outExtensions = ExtensionsHandleOfSlot(slot);
    return TV_OK;
}

// ---- basic response: signature and certificates -------------------------------------------------------

extern "C" TV_API uint32_t GetOcspBasicResponseToBeSignedPart(const OcspBasicResponse* response, uint8_t* out,
                                                              uint32_t* outLen) {
    return GetToBeSigned(TV_SITE, kSignedBasicResponse, response, out, outLen);
}

extern "C" TV_API uint32_t SetOcspBasicResponseSignatureAlgorithmOidAndParameters(OcspBasicResponse* response,
                                                                                  const uint8_t* inOid,
                                                                                  const uint8_t* inParams,
                                                                                  uint32_t inParamsLen) {
    return SetSignatureAlgorithm(TV_SITE, kSignedBasicResponse, response, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetOcspBasicResponseSignatureAlgorithmAndParameters(const OcspBasicResponse* response,
                                                                               uint8_t* outOid, uint32_t* outOidLen,
                                                                               uint8_t* outParams,
                                                                               uint32_t* outParamsLen) {
    return GetSignatureAlgorithm(TV_SITE, kSignedBasicResponse, response, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetOcspBasicResponseSignature(OcspBasicResponse* response, const uint8_t* in,
                                                         uint32_t inLen) {
    return SetSignature(TV_SITE, kSignedBasicResponse, response, in, inLen);
}

extern "C" TV_API uint32_t GetOcspBasicResponseSignature(const OcspBasicResponse* response, uint8_t* out,
                                                         uint32_t* outLen) {
    return GetSignature(TV_SITE, kSignedBasicResponse, response, out, outLen);
}

extern "C" TV_API uint32_t AddOcspBasicResponseCertificate(OcspBasicResponse* response, Certificate* certificate) {
    return AddCertificate(TV_SITE, kSignedBasicResponse, response, certificate);
}

extern "C" TV_API uint32_t GetOcspBasicResponseCertificatesCount(const OcspBasicResponse* response,
                                                                 uint32_t* outCount) {
    return GetCertificateCount(TV_SITE, kSignedBasicResponse, response, outCount);
}

extern "C" TV_API uint32_t GetOcspBasicResponseCertificate(const OcspBasicResponse* response, uint32_t index,
                                                           Certificate** outCertificate) {
    return GetCertificateAt(TV_SITE, kSignedBasicResponse, response, index, outCertificate);
}

extern "C" TV_API uint32_t RemoveOcspBasicResponseCertificates(OcspBasicResponse* response) {
    return RemoveCertificates(TV_SITE, kSignedBasicResponse, response);
}

// ---- single responses -----------------------------------------------------------------------------------

// The new CertID is complete before the old one goes.
extern "C" TV_API uint32_t SetOcspSingleResponseCertID(OcspSingleResponse* single, const uint8_t* hashOid,
                                                       const uint8_t* hashParams, uint32_t hashParamsLen,
                                                       const uint8_t* issuerNameHash, uint32_t issuerNameHashLen,
                                                       const uint8_t* issuerKeyHash, uint32_t issuerKeyHashLen,
                                                       const uint8_t* serial, uint32_t serialLen) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kCertId, &slot));
    OwnedValue certId(&kCertId);
    TV_TRY(NewCertId(TV_SITE, hashOid, hashParams, hashParamsLen, issuerNameHash, issuerNameHashLen, issuerKeyHash,
                     issuerKeyHashLen, serial, serialLen, certId));
    FreeAsn1Object(&kCertId, *slot);
    *slot = certId.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspSingleResponseCertID(const OcspSingleResponse* single, uint8_t* outHashOid,
                                                       uint32_t* outHashOidLen, uint8_t* outHashParams,
                                                       uint32_t* outHashParamsLen, uint8_t* outIssuerNameHash,
                                                       uint32_t* outIssuerNameHashLen, uint8_t* outIssuerKeyHash,
                                                       uint32_t* outIssuerKeyHashLen, uint8_t* outSerial,
                                                       uint32_t* outSerialLen) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kCertId, &slot));
    return ReadCertId(TV_SITE, *slot, outHashOid, outHashOidLen, outHashParams, outHashParamsLen, outIssuerNameHash,
                      outIssuerNameHashLen, outIssuerKeyHash, outIssuerKeyHashLen, outSerial, outSerialLen);
}

extern "C" TV_API uint32_t AllocCertStatusRevokedInfo(const LibraryTime* revocationTime, int32_t reason,
                                                      OcspRevokedInfo** outRevokedInfo) {
    if (!revocationTime || !outRevokedInfo) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue info(&kRevokedInfo);
    TV_TRY(NewStructure(TV_SITE, kRevokedInfo, info));
    TV_TRY(SetGeneralizedTimeLeaf(&Slot(info.get(), RevokedInfoSlot::kRevocationTime), revocationTime));
    if (reason >= 0)
        TV_TRY(SetNumber(&Slot(info.get(), RevokedInfoSlot::kRevocationReason), ASN1_ENUMERATED, uint32_t(reason)));
    *outRevokedInfo = static_cast<OcspRevokedInfo*>(info.Release());
    return TV_OK;
}

// The RevokedInfo is taken over on every path: the interface has no other way to free one.
extern "C" TV_API uint32_t SetOcspSingleResponseCertStatus(OcspSingleResponse* single, uint32_t status,
                                                           OcspRevokedInfo* revokedInfo) {
    OwnedValue info(&kRevokedInfo, revokedInfo);
    const bool revoked = status == TV_OCSP_STATUS_REVOKED;
    if (!single || status >= SlotCount<CertStatusKind> || revoked != (revokedInfo != nullptr))
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const auto kind = static_cast<CertStatusKind>(status);
    OwnedValue value(Component(kCertStatus, kind), revoked ? info.Release() : NewPrimitive(ASN1_NULL, nullptr, 0));
    if (!value.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    return SetChoice(kCertStatus, &Slot(single, SingleResponseSlot::kCertStatus), kind, value);
}

extern "C" TV_API uint32_t SetOcspSingleResponseCertStatusGood(OcspSingleResponse* single) {
    return SetOcspSingleResponseCertStatus(single, TV_OCSP_STATUS_GOOD, nullptr);
}

extern "C" TV_API uint32_t SetOcspSingleResponseCertStatusUnknown(OcspSingleResponse* single) {
    return SetOcspSingleResponseCertStatus(single, TV_OCSP_STATUS_UNKNOWN, nullptr);
}

extern "C" TV_API uint32_t SetOcspSingleResponseCertStatusRevoked(OcspSingleResponse* single,
                                                                  const LibraryTime* revocationTime, int32_t reason) {
    if (!single) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OcspRevokedInfo* info = nullptr;
    TV_TRY(AllocCertStatusRevokedInfo(revocationTime, reason, &info));
    return SetOcspSingleResponseCertStatus(single, TV_OCSP_STATUS_REVOKED, info);
}

extern "C" TV_API uint32_t GetOcspSingleResponseCertStatus(const OcspSingleResponse* single, uint32_t* outStatus) {
    if (!single || !outStatus) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Asn1ChoiceValue* status = nullptr;
    TV_TRY(Chosen(Slot(single, SingleResponseSlot::kCertStatus), &status));
    *outStatus = uint32_t(status->index);
    return TV_OK;
}

extern "C" TV_API uint32_t GetOcspSingleResponseCertStatusRevokedInfo(const OcspSingleResponse* single,
                                                                      LibraryTime* outRevocationTime,
                                                                      int32_t* outReason) {
    if (!single || !outRevocationTime || !outReason) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* info = ChoiceValue(Slot(single, SingleResponseSlot::kCertStatus), CertStatusKind::kRevoked);
    if (!info) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);  // not revoked: the wrong status for this reader
    TV_TRY(GetTime(Slot(info, RevokedInfoSlot::kRevocationTime), outRevocationTime));
    const void* reason = Slot(info, RevokedInfoSlot::kRevocationReason);
    if (!reason) {
        *outReason = -1;
        return TV_OK;
    }
    uint32_t code = 0;
    TV_TRY(GetNumber(TV_SITE, reason, &code));
    *outReason = int32_t(code);
    return TV_OK;
}

extern "C" TV_API uint32_t SetOcspSingleResponseThisUpdate(OcspSingleResponse* single, const LibraryTime* time) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kThisUpdate, &slot));
    return SetTime(slot, time);
}

extern "C" TV_API uint32_t GetOcspSingleResponseThisUpdate(const OcspSingleResponse* single, LibraryTime* outTime) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kThisUpdate, &slot));
    return GetTime(*slot, outTime);
}

extern "C" TV_API uint32_t SetOcspSingleResponseNextUpdate(OcspSingleResponse* single, const LibraryTime* time) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kNextUpdate, &slot));
    return SetTime(slot, time);
}

extern "C" TV_API uint32_t GetOcspSingleResponseNextUpdate(const OcspSingleResponse* single, LibraryTime* outTime) {
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kNextUpdate, &slot));
    return GetTime(*slot, outTime);
}

extern "C" TV_API uint32_t GetOcspSingleResponseExtensions(OcspSingleResponse* single, X509Extensions** outExtensions) {
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(SingleSlot(single, SingleResponseSlot::kSingleExtensions, &slot));
    *outExtensions = ExtensionsHandleOfSlot(slot);
    return TV_OK;
}
