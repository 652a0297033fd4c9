// RFC 3161 time-stamp messages: the request, the response and the TSTInfo a token signs, each
// written from or read into the caller's arguments in one call over a temporary tree. Handles the
// caller passes to an encoder are lent to the tree for the write, never copied or taken.
#include <utility>

#include "tarvelon/messages/Cms.h"
#include "tarvelon/messages/TimeStamp.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(TimeStamp)

namespace tv::desc {
namespace {

// MessageImprint ::= SEQUENCE {                                       (RFC 3161 2.4.1)
enum class MessageImprintSlot : uint32_t { kHashAlgorithm, kHashedMessage, kCount };
constexpr auto kMessageImprintParts = Slots<MessageImprintSlot>({
    {MessageImprintSlot::kHashAlgorithm, &kAlgorithmIdentifier},  // hashAlgorithm  AlgorithmIdentifier
    {MessageImprintSlot::kHashedMessage, &kOctetString},          // hashedMessage  OCTET STRING
});
constexpr Asn1Descriptor kMessageImprint = Sequence(kMessageImprintParts);

constexpr Asn1Descriptor kOptionalOid = Optional(kOid);
constexpr Asn1Descriptor kOptionalInteger = Optional(kInteger);
constexpr Asn1Descriptor kRequestExtensions = Implicit(0, Optional(SequenceOf<&kExtension>()));

// TimeStampReq ::= SEQUENCE {                                         (RFC 3161 2.4.1)
enum class TimeStampReqSlot : uint32_t { kVersion, kMessageImprint, kReqPolicy, kNonce, kCertReq, kExtensions, kCount };
constexpr auto kTimeStampReqParts = Slots<TimeStampReqSlot>({
    {TimeStampReqSlot::kVersion, &kInteger},                // version         INTEGER { v1(1) }
    {TimeStampReqSlot::kMessageImprint, &kMessageImprint},  // messageImprint  MessageImprint
    {TimeStampReqSlot::kReqPolicy, &kOptionalOid},          // reqPolicy       TSAPolicyId OPTIONAL
    {TimeStampReqSlot::kNonce, &kOptionalInteger},          // nonce           INTEGER OPTIONAL
    {TimeStampReqSlot::kCertReq, &kBooleanDefaultFalse},    // certReq         BOOLEAN DEFAULT FALSE
    {TimeStampReqSlot::kExtensions, &kRequestExtensions},   // extensions      [0] IMPLICIT Extensions OPTIONAL
});
constexpr Asn1Descriptor kTimeStampReq = Sequence(kTimeStampReqParts);

constexpr Asn1Descriptor kStatusString = Optional(SequenceOf<&kUtf8String>());
constexpr Asn1Descriptor kFailInfo = Optional(kBitString);

// PKIStatusInfo ::= SEQUENCE {                                        (RFC 3161 2.4.2)
enum class PkiStatusInfoSlot : uint32_t { kStatus, kStatusString, kFailInfo, kCount };
constexpr auto kPkiStatusInfoParts = Slots<PkiStatusInfoSlot>({
    {PkiStatusInfoSlot::kStatus, &kInteger},              // status        PKIStatus
    {PkiStatusInfoSlot::kStatusString, &kStatusString},   // statusString  PKIFreeText OPTIONAL
    {PkiStatusInfoSlot::kFailInfo, &kFailInfo},           // failInfo      PKIFailureInfo OPTIONAL
});
constexpr Asn1Descriptor kPkiStatusInfo = Sequence(kPkiStatusInfoParts);
constexpr Asn1Descriptor kTimeStampToken = Optional(Sequence(kContentInfoParts));

// TimeStampResp ::= SEQUENCE {                                        (RFC 3161 2.4.2)
enum class TimeStampRespSlot : uint32_t { kStatus, kTimeStampToken, kCount };
constexpr auto kTimeStampRespParts = Slots<TimeStampRespSlot>({
    {TimeStampRespSlot::kStatus, &kPkiStatusInfo},           // status          PKIStatusInfo
    {TimeStampRespSlot::kTimeStampToken, &kTimeStampToken},  // timeStampToken  TimeStampToken OPTIONAL
});
constexpr Asn1Descriptor kTimeStampResp = Sequence(kTimeStampRespParts);

constexpr Asn1Descriptor kMillis = Implicit(0, Optional(kInteger));
constexpr Asn1Descriptor kMicros = Implicit(1, Optional(kInteger));

// Accuracy ::= SEQUENCE {                                             (RFC 3161 2.4.2)
enum class AccuracySlot : uint32_t { kSeconds, kMillis, kMicros, kCount };
constexpr auto kAccuracyParts = Slots<AccuracySlot>({
    {AccuracySlot::kSeconds, &kOptionalInteger},  // seconds  INTEGER OPTIONAL
    {AccuracySlot::kMillis, &kMillis},            // millis   [0] IMPLICIT INTEGER (1..999) OPTIONAL
    {AccuracySlot::kMicros, &kMicros},            // micros   [1] IMPLICIT INTEGER (1..999) OPTIONAL
});
constexpr Asn1Descriptor kAccuracy = Optional(Sequence(kAccuracyParts));
constexpr Asn1Descriptor kTsa = Explicit(0, Optional(Choice(kGeneralNameAlternatives)));
constexpr Asn1Descriptor kTstExtensions = Implicit(1, Optional(SequenceOf<&kExtension>()));

// TSTInfo ::= SEQUENCE {                                              (RFC 3161 2.4.2)
enum class TstInfoSlot : uint32_t {
    kVersion, kPolicy, kMessageImprint, kSerialNumber, kGenTime, kAccuracy, kOrdering, kNonce, kTsa, kExtensions, kCount
};
constexpr auto kTstInfoParts = Slots<TstInfoSlot>({
    {TstInfoSlot::kVersion, &kInteger},                // version         INTEGER { v1(1) }
    {TstInfoSlot::kPolicy, &kOid},                     // policy          TSAPolicyId
    {TstInfoSlot::kMessageImprint, &kMessageImprint},  // messageImprint  MessageImprint
    {TstInfoSlot::kSerialNumber, &kInteger},           // serialNumber    INTEGER
    {TstInfoSlot::kGenTime, &kGeneralizedTime},        // genTime         GeneralizedTime
    {TstInfoSlot::kAccuracy, &kAccuracy},              // accuracy        Accuracy OPTIONAL
    {TstInfoSlot::kOrdering, &kBooleanDefaultFalse},   // ordering        BOOLEAN DEFAULT FALSE
    {TstInfoSlot::kNonce, &kOptionalInteger},          // nonce           INTEGER OPTIONAL
    {TstInfoSlot::kTsa, &kTsa},                        // tsa             [0] GeneralName OPTIONAL
    {TstInfoSlot::kExtensions, &kTstExtensions},       // extensions      [1] IMPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kTimeStampRequest = Sequence(kTimeStampReqParts);
constinit const Asn1Descriptor kTimeStampResponse = Sequence(kTimeStampRespParts);
constinit const Asn1Descriptor kTstInfo = Sequence(kTstInfoParts);

}  // namespace tv::desc

namespace tv {
namespace {

using namespace desc;
using M = MessageImprintSlot;

// A MessageImprint from the caller's parts into `slot` (hash OID and message required: 32).
uint32_t SetImprint(void** slot, const uint8_t* hashOid, const uint8_t* params, uint32_t paramsLen,
                    const uint8_t* message, uint32_t messageLen) noexcept {
    if (!hashOid || !message) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue imprint(&kMessageImprint);
    TV_TRY(NewStructure(TV_SITE, kMessageImprint, imprint));
    TV_TRY(SetAlgorithmOidAndParameters(&Slot(imprint.get(), M::kHashAlgorithm), hashOid, params, paramsLen));
    TV_TRY(SetOrCreatePrimitive(&Slot(imprint.get(), M::kHashedMessage), ASN1_OCTET_STRING, message, messageLen));
    *slot = imprint.Release();
    return TV_OK;
}

// The outputs of a decoder that tries every field: a field that does not fit is remembered and the
// others still go; any other failure ends the call at once.
struct Outputs {
    bool shortOfRoom = false;
    uint32_t Put(uint32_t rc) noexcept {
        if (rc != TV_ERR_BUFFER_TOO_SMALL) return rc;
        shortOfRoom = true;
        return TV_OK;
    }
    uint32_t Result() const noexcept { return shortOfRoom ? uint32_t{TV_ERR_BUFFER_TOO_SMALL} : uint32_t{TV_OK}; }
};

// An optional OID or leaf for an optional output: no length pointer skips it, absent reads as length 0.
uint32_t OptionalOid(const void* oid, uint8_t* out, uint32_t* outLen) noexcept {
    if (!outLen) return TV_OK;
    if (!oid) {
        *outLen = 0;
        return TV_OK;
    }
    return GetOid(TV_SITE, oid, out, outLen);
}
uint32_t OptionalLeaf(const void* leaf, uint8_t* out, uint32_t* outLen) noexcept {
    return outLen ? GetOptionalLeaf(TV_SITE, leaf, out, outLen) : uint32_t{TV_OK};
}

// The imprint's parts; each length pointer null skips its part.
uint32_t ReadImprint(Outputs& o, const void* imprint, uint8_t* hashOid, uint32_t* hashOidLen, uint8_t* params,
                     uint32_t* paramsLen, uint8_t* message, uint32_t* messageLen) noexcept {
    const void* algorithm = Slot(imprint, M::kHashAlgorithm);
    if (hashOidLen) {
        uint32_t ignored = 0;
        TV_TRY(o.Put(GetAlgorithmOidAndParameters(algorithm, hashOid, hashOidLen, paramsLen ? params : nullptr,
                                                  paramsLen ? paramsLen : &ignored)));
    } else if (paramsLen) {
        TV_TRY(o.Put(GetOptionalLeaf(TV_SITE, Slot(algorithm, AlgorithmIdentifierSlot::kParameters), params, paramsLen)));
    }
    return o.Put(OptionalLeaf(Slot(imprint, M::kHashedMessage), message, messageLen));
}

// A list taken out of the temporary tree into a fresh handle of the caller's (none: null).
uint32_t HandOutExtensions(void** slot, X509Extensions** out) noexcept {
    if (!out) return TV_OK;
    *out = nullptr;
    if (!*slot) return TV_OK;
    auto* handle = New<X509Extensions>();
    if (!handle) return TV_FAIL(TV_ERR_NO_MEMORY);
    handle->list = std::exchange(*slot, nullptr);
    *out = handle;
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;
using Q = TimeStampReqSlot;
using P = PkiStatusInfoSlot;
using R = TimeStampRespSlot;
using T = TstInfoSlot;
using A = AccuracySlot;

extern "C" TV_API uint32_t EncodeTimeStampReq(uint32_t version, const uint8_t* inHashOid, const uint8_t* inHashParams,
                                              uint32_t inHashParamsLen, const uint8_t* inHashedMessage,
                                              uint32_t inHashedMessageLen, const uint8_t* inPolicyOid,
                                              uint64_t /*reserved*/, const uint8_t* inNonce, uint32_t inNonceLen,
                                              uint32_t certReq, const X509Extensions* extensions, uint8_t* out,
                                              uint32_t* outLen) {
    if (!inHashOid || !inHashedMessage || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue request(&kTimeStampRequest);
    TV_TRY(NewStructure(TV_SITE, kTimeStampRequest, request));
    LentSlots<1> lent;
    void* r = request.get();
    TV_TRY(SetNumber(&Slot(r, Q::kVersion), ASN1_INTEGER, version));
    TV_TRY(SetImprint(&Slot(r, Q::kMessageImprint), inHashOid, inHashParams, inHashParamsLen, inHashedMessage,
                      inHashedMessageLen));
    if (inPolicyOid) TV_TRY(SetOid(TV_SITE, &Slot(r, Q::kReqPolicy), inPolicyOid));
    TV_TRY(SetOptionalLeaf(&Slot(r, Q::kNonce), ASN1_INTEGER, inNonce, inNonceLen));
    TV_TRY(SetBooleanLeaf(&Slot(r, Q::kCertReq), certReq != 0));
    if (extensions) lent.Lend(0, &Slot(r, Q::kExtensions), extensions->list);
    return EncodeSized(TV_SITE, r, &kTimeStampRequest, out, outLen);
}

extern "C" TV_API uint32_t DecodeTimeStampReq(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outHashOid,
                                              uint32_t* outHashOidLen, uint8_t* outHashParams,
                                              uint32_t* outHashParamsLen, uint8_t* outHashedMessage,
                                              uint32_t* outHashedMessageLen, uint8_t* outPolicyOid,
                                              uint32_t* outPolicyOidLen, uint8_t* outNonce, uint32_t* outNonceLen,
                                              uint32_t* outCertReq, X509Extensions** outExtensions) {
    if (!outHashOidLen || !outHashedMessageLen || !outCertReq || !outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue request(&kTimeStampRequest);
    TV_TRY(DecodeValue(TV_SITE, kTimeStampRequest, in, inLen, request));
    void* r = request.get();
    Outputs o;
    if (outVersion) TV_TRY(GetNumber(TV_SITE, Slot(r, Q::kVersion), outVersion));
    TV_TRY(ReadImprint(o, Slot(r, Q::kMessageImprint), outHashOid, outHashOidLen, outHashParams, outHashParamsLen,
                       outHashedMessage, outHashedMessageLen));
    TV_TRY(o.Put(OptionalOid(Slot(r, Q::kReqPolicy), outPolicyOid, outPolicyOidLen)));
    TV_TRY(o.Put(OptionalLeaf(Slot(r, Q::kNonce), outNonce, outNonceLen)));
    *outCertReq = BooleanOctet(Slot(r, Q::kCertReq)) ? 1 : 0;
    TV_TRY(HandOutExtensions(&Slot(r, Q::kExtensions), outExtensions));
    return o.Result();
}

// failInfo is written with the named-bit rule of flag words (the word's octets least significant
// first, trailing zero bits trimmed), the inverse of the reader below.
extern "C" TV_API uint32_t EncodeTimeStampResp(uint32_t status, const PKIFreeText* statusString, uint32_t failInfo,
                                               const CmsContentInfo* token, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue response(&kTimeStampResponse);
    TV_TRY(NewStructure(TV_SITE, kTimeStampResponse, response));
    LentSlots<2> lent;
    void** info = &Slot(response.get(), R::kStatus);
    OwnedValue statusInfo(&kPkiStatusInfo);
    TV_TRY(NewStructure(TV_SITE, kPkiStatusInfo, statusInfo));
    *info = statusInfo.Release();
    TV_TRY(SetNumber(&Slot(*info, P::kStatus), ASN1_INTEGER, status));
    lent.Lend(0, &Slot(*info, P::kStatusString), statusString);
    if (failInfo) TV_TRY(SetFlags(TV_SITE, &Slot(*info, P::kFailInfo), failInfo));
    lent.Lend(1, &Slot(response.get(), R::kTimeStampToken), token);
    return EncodeSized(TV_SITE, response.get(), &kTimeStampResponse, out, outLen);
}

// The status text and the token are copies of the caller's own; a token that cannot be copied takes
// the text back with it, so the caller gets both or neither.
extern "C" TV_API uint32_t DecodeTimeStampResp(const uint8_t* in, uint32_t inLen, uint32_t* outStatus,
                                               PKIFreeText** outStatusString, uint32_t* outFailInfo,
                                               CmsContentInfo** outToken) {
    if (!outStatus || !outStatusString || !outFailInfo || !outToken) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue response(&kTimeStampResponse);
    TV_TRY(DecodeValue(TV_SITE, kTimeStampResponse, in, inLen, response));
    const void* info = nullptr;
    TV_TRY(WalkPresent(TV_SITE, response.get(), &info, R::kStatus));
    TV_TRY(GetNumber(TV_SITE, Slot(info, P::kStatus), outStatus));
    *outFailInfo = 0;
    if (const auto* bits = static_cast<const Asn1BitStringValue*>(Slot(info, P::kFailInfo)))
        for (uint32_t i = 0; i < bits->length && i < 4; ++i) *outFailInfo |= uint32_t{bits->content[i]} << (8 * i);
    *outStatusString = nullptr;
    *outToken = nullptr;
    OwnedValue text(&kStatusString), token(&kTimeStampToken);
    if (const void* s = Slot(info, P::kStatusString)) TV_TRY(CopyValue(&kStatusString, s, text.Out()));
    if (const void* t = Slot(response.get(), R::kTimeStampToken)) TV_TRY(CopyValue(&kTimeStampToken, t, token.Out()));
    *outStatusString = static_cast<PKIFreeText*>(text.Release());
    *outToken = static_cast<CmsContentInfo*>(token.Release());
    return TV_OK;
}

// The accuracy is written only when it says something, and each of its values only when non-zero.
extern "C" TV_API uint32_t EncodeTSTInfo(uint32_t version, const uint8_t* inPolicyOid, const uint8_t* inHashOid,
                                         const uint8_t* inHashParams, uint32_t inHashParamsLen,
                                         const uint8_t* inHashedMessage, uint32_t inHashedMessageLen,
                                         const uint8_t* inSerial, uint32_t inSerialLen, const LibraryPreciseTime* genTime,
                                         const Accuracy* accuracy, uint32_t ordering, const uint8_t* inNonce,
                                         uint32_t inNonceLen, const GeneralName* tsa, const X509Extensions* extensions,
                                         uint8_t* out, uint32_t* outLen) {
    if (!inPolicyOid || !inHashOid || !inHashedMessage || !inSerial || !genTime || !outLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue info(&kTstInfo);
    TV_TRY(NewStructure(TV_SITE, kTstInfo, info));
    LentSlots<2> lent;
    void* t = info.get();
    TV_TRY(SetNumber(&Slot(t, T::kVersion), ASN1_INTEGER, version));
    TV_TRY(SetOid(TV_SITE, &Slot(t, T::kPolicy), inPolicyOid));
    TV_TRY(SetImprint(&Slot(t, T::kMessageImprint), inHashOid, inHashParams, inHashParamsLen, inHashedMessage,
                      inHashedMessageLen));
    TV_TRY(SetOrCreatePrimitive(&Slot(t, T::kSerialNumber), ASN1_INTEGER, inSerial, inSerialLen));
    TV_TRY(SetPreciseGeneralizedTimeLeaf(&Slot(t, T::kGenTime), genTime));
    if (accuracy && (accuracy->seconds || accuracy->milliseconds || accuracy->microseconds)) {
        OwnedValue block(Component(kTstInfo, T::kAccuracy));
        TV_TRY(NewStructure(TV_SITE, *Component(kTstInfo, T::kAccuracy), block));
        const std::pair<A, uint32_t> values[] = {
            {A::kSeconds, accuracy->seconds}, {A::kMillis, accuracy->milliseconds}, {A::kMicros, accuracy->microseconds}};
        for (const auto& [slot, value] : values)
            if (value) TV_TRY(SetNumber(&Slot(block.get(), slot), ASN1_INTEGER, value));
        Slot(t, T::kAccuracy) = block.Release();
    }
    TV_TRY(SetBooleanLeaf(&Slot(t, T::kOrdering), ordering != 0));
    TV_TRY(SetOptionalLeaf(&Slot(t, T::kNonce), ASN1_INTEGER, inNonce, inNonceLen));
    lent.Lend(0, &Slot(t, T::kTsa), tsa);
    if (extensions) lent.Lend(1, &Slot(t, T::kExtensions), extensions->list);
    return EncodeSized(TV_SITE, t, &kTstInfo, out, outLen);
}

extern "C" TV_API uint32_t DecodeTSTInfo(const uint8_t* in, uint32_t inLen, uint32_t* outVersion, uint8_t* outPolicyOid,
                                         uint32_t* outPolicyOidLen, uint8_t* outHashOid, uint32_t* outHashOidLen,
                                         uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHashedMessage,
                                         uint32_t* outHashedMessageLen, uint8_t* outSerial, uint32_t* outSerialLen,
                                         LibraryPreciseTime* outGenTime, Accuracy* outAccuracy, uint32_t* outOrdering,
                                         uint8_t* outNonce, uint32_t* outNonceLen, GeneralName** outTsa,
                                         X509Extensions** outExtensions) {
    OwnedValue info(&kTstInfo);
    TV_TRY(DecodeValue(TV_SITE, kTstInfo, in, inLen, info));
    void* t = info.get();
    Outputs o;
    if (outVersion) TV_TRY(GetNumber(TV_SITE, Slot(t, T::kVersion), outVersion));
    TV_TRY(o.Put(OptionalOid(Slot(t, T::kPolicy), outPolicyOid, outPolicyOidLen)));
    TV_TRY(ReadImprint(o, Slot(t, T::kMessageImprint), outHashOid, outHashOidLen, outHashParams, outHashParamsLen,
                       outHashedMessage, outHashedMessageLen));
    TV_TRY(o.Put(OptionalLeaf(Slot(t, T::kSerialNumber), outSerial, outSerialLen)));
    if (outGenTime) TV_TRY(GetPreciseTimeFromGeneralizedTimeLeaf(Slot(t, T::kGenTime), outGenTime));
    if (outAccuracy) {
        // An absent seconds leaves the caller's value: kept as callers have always seen it.
        const void* block = Slot(t, T::kAccuracy);
        if (!block) outAccuracy->seconds = 0;
        else if (Slot(block, A::kSeconds)) TV_TRY(GetNumber(TV_SITE, Slot(block, A::kSeconds), &outAccuracy->seconds));
        uint32_t present = 0;
        outAccuracy->milliseconds = outAccuracy->microseconds = 0;
        if (block) {
            TV_TRY(GetOptionalNumber(TV_SITE, Slot(block, A::kMillis), &present, &outAccuracy->milliseconds));
            TV_TRY(GetOptionalNumber(TV_SITE, Slot(block, A::kMicros), &present, &outAccuracy->microseconds));
        }
    }
    if (outOrdering) *outOrdering = BooleanOctet(Slot(t, T::kOrdering)) ? 1 : 0;
    TV_TRY(o.Put(OptionalLeaf(Slot(t, T::kNonce), outNonce, outNonceLen)));
    // The extensions' handle is the one allocation here: made before the name is handed out, so a
    // failure leaves the caller owning nothing.
    TV_TRY(HandOutExtensions(&Slot(t, T::kExtensions), outExtensions));
    if (outTsa) *outTsa = static_cast<GeneralName*>(std::exchange(Slot(t, T::kTsa), nullptr));
    return o.Result();
}
