// Free text (RFC 4210 PKIFreeText): UTF8String octets stored and returned as given.
#include "tarvelon/pkix/X509General.h"

#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509General)

namespace tv::desc {

// PKIFreeText ::= SEQUENCE SIZE (1..MAX) OF UTF8String  -- the lower bound is not enforced
constinit const Asn1Descriptor kPKIFreeText = SequenceOf<&kUtf8String>();

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kFreeTextFamily{&desc::kPKIFreeText, Module::X509General, 0};

}  // namespace
}  // namespace tv

using namespace tv;

TV_FAMILY_LIFE_CYCLE(PKIFreeText, kFreeTextFamily)

extern "C" TV_API uint32_t CreatePKIFreeTextCopy(const PKIFreeText* text, PKIFreeText** outText) {
    return CopyT(kFreeTextFamily, text, outText);
}

extern "C" TV_API uint32_t GetPKIFreeTextStringCount(const PKIFreeText* text, uint32_t* outCount) {
    return ListCountT(kFreeTextFamily, text, outCount);
}

extern "C" TV_API uint32_t AddPKIFreeTextString(PKIFreeText* text, const uint8_t* in, uint32_t inLen) {
    if (!text || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue item(&desc::kUtf8String, NewPrimitive(ASN1_UTF8_STRING, in, inLen));
    if (!item.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    return ListAppendT(kFreeTextFamily, text, item);
}

extern "C" TV_API uint32_t GetPKIFreeTextString(const PKIFreeText* text, uint32_t index, uint8_t* out,
                                                uint32_t* outLen) {
    if (!text || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (index >= text->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetAsn1Value(static_cast<const Asn1Primitive*>(text->items[index]), out, outLen);
}
