// CHOICE values: {index of the alternative, its value}.
#include "tarvelon/engine/Engine.h"

TV_MODULE(Asn1Choice)

namespace tv {

uint32_t NewChoice(int32_t index, void* value, Asn1ChoiceValue** out) noexcept {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* c = New<Asn1ChoiceValue>();
    if (!c) return TV_FAIL(TV_ERR_NO_MEMORY);
    c->index = index;
    c->value = value;
    *out = c;
    return TV_OK;
}

uint32_t ReleaseChoiceAlternative(const Asn1Descriptor* choice, Asn1ChoiceValue* value) noexcept {
    if (!choice || !value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (value->index < 0 || static_cast<uint32_t>(value->index) >= choice->componentCount)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    FreeAsn1Object(choice->components[value->index], value->value);
    value->value = nullptr;
    return TV_OK;
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t GetAsn1ChoiceUnderlyingType(void** inOutValue, const Asn1Descriptor** inOutDescriptor) {
    if (!inOutValue || !inOutDescriptor || !*inOutValue || !*inOutDescriptor) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* c = static_cast<Asn1ChoiceValue*>(*inOutValue);
    const Asn1Descriptor* d = *inOutDescriptor;
    if (c->index < 0 || static_cast<uint32_t>(c->index) >= d->componentCount) return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    *inOutValue = c->value;
    *inOutDescriptor = d->components[c->index];
    return TV_OK;
}
