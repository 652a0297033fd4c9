// CAdES values that carry whole CRLs and basic OCSP responses, so they sit above both families.
#include "tarvelon/messages/CmsTools.h"

#include <utility>

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/messages/Ocsp.h"
#include "tarvelon/x509/X509Crl.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CmsTools)

namespace tv::desc {
namespace {

// RevocationValues ::= SEQUENCE {
enum class RevocationValuesSlot : uint32_t { kCrlVals, kOcspVals, kOtherRevVals, kCount };
constexpr Asn1Descriptor kCrlVals = Explicit(0, Optional(SequenceOf<&kCertificateList>()));
constexpr Asn1Descriptor kOcspVals = Explicit(1, Optional(SequenceOf<&kBasicOcspResponse>()));
constexpr Asn1Descriptor kOtherRevVals = Explicit(2, Optional(Sequence(kOtherRevParts)));
constexpr auto kRevocationValuesParts = Slots<RevocationValuesSlot>({
    {RevocationValuesSlot::kCrlVals, &kCrlVals},            // crlVals       [0] EXPLICIT SEQUENCE OF CertificateList OPTIONAL
    {RevocationValuesSlot::kOcspVals, &kOcspVals},          // ocspVals      [1] EXPLICIT SEQUENCE OF BasicOCSPResponse OPTIONAL
    {RevocationValuesSlot::kOtherRevVals, &kOtherRevVals},  // otherRevVals  [2] EXPLICIT OtherRevVals OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kRevocationValues = Sequence(kRevocationValuesParts);

}  // namespace tv::desc

using namespace tv;
using S = desc::RevocationValuesSlot;
using R = desc::OtherRevSlot;

// The caller's lists stand in the slots of a structure on the stack for the one write; only the
// other value is built here.
extern "C" TV_API uint32_t EncodeRsaAttributeRevocationValues(const X509Crls* crls, const OcspBasicResponses* ocspResponses,
                                                              const uint8_t* otherType, const uint8_t* otherValue,
                                                              uint32_t otherValueLen, uint8_t* out, uint32_t* outLen) {
    const bool other = otherType && otherValue && otherValueLen;
    if ((!crls && !ocspResponses && !other) || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue rev(Component(desc::kRevocationValues, S::kOtherRevVals));
    if (other) {
        TV_TRY(NewStructure(TV_SITE, desc::kOtherRev, rev));
        TV_TRY(SetOid(TV_SITE, &Slot(rev.get(), R::kType), otherType));
        TV_TRY(SetAny(TV_SITE, &Slot(rev.get(), R::kValue), otherValue, otherValueLen));
    }
    const void* slots[] = {crls, ocspResponses, rev.get()};
    return EncodeSized(TV_SITE, slots, &desc::kRevocationValues, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributeRevocationValues(const uint8_t* in, uint32_t inLen, X509Crls** outCrls,
                                                              OcspBasicResponses** outOcspResponses,
                                                              uint8_t* outOtherType, uint32_t* outOtherTypeLen,
                                                              uint8_t* outOtherValue, uint32_t* outOtherValueLen) {
    if (!outCrls || !outOcspResponses || !outOtherTypeLen || !outOtherValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kRevocationValues);
    TV_TRY(DecodeValue(TV_SITE, desc::kRevocationValues, in, inLen, value));
    const void* other = Slot(value.get(), S::kOtherRevVals);
    if (other) {
        TV_TRY(FirstFailure({GetOid(TV_SITE, Slot(other, R::kType), outOtherType, outOtherTypeLen),
                             GetLeaf(TV_SITE, Slot(other, R::kValue), outOtherValue, outOtherValueLen)}));
    } else {
        *outOtherTypeLen = *outOtherValueLen = 0;
    }
    *outCrls = static_cast<X509Crls*>(std::exchange(Slot(value.get(), S::kCrlVals), nullptr));
    *outOcspResponses = static_cast<OcspBasicResponses*>(std::exchange(Slot(value.get(), S::kOcspVals), nullptr));
    return TV_OK;
}
