// Attributes keyed by OID whose values are complete DER elements, one at a time and as sets behind
// a one-field handle.
#include "tarvelon/extensions/RsaAttributes.h"

#include "tarvelon/extensions/OidKeyedList.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(RsaAttributes)

namespace tv::desc {

// AttributeValue ::= ANY, kept as the complete element
constexpr Asn1Descriptor kAttributeValues = SetOf<&kAny>();

// Attribute ::= SEQUENCE {                                             (RFC 5652 5.3)
constexpr auto kAttributeParts = Slots<AttributeSlot>({
    {AttributeSlot::kType, &kOid},                // attrType    OBJECT IDENTIFIER
    {AttributeSlot::kValues, &kAttributeValues},  // attrValues  SET OF AttributeValue
});
constinit const Asn1Descriptor kAttribute = Sequence(kAttributeParts);
// Attributes ::= SET OF Attribute   -- SignedAttributes' SIZE (1..MAX) is not enforced
constinit const Asn1Descriptor kAttributes = SetOf<&kAttribute>();

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kAttributeFamily{&desc::kAttribute, Module::RsaAttributes, 0};
constinit const Family kAttributesFamily{&desc::kAttributes, Module::RsaAttributes, 0};
constinit const Family kAttributeValuesFamily{&desc::kAttributeValues, Module::RsaAttributes, 0};

Asn1List* ValueList(const RsaAttribute* a) { return static_cast<Asn1List*>(Slot(a, desc::AttributeSlot::kValues)); }

// An empty identifier or value is refused here: neither could be written as a DER element.
uint32_t NewAttribute(const uint8_t* oid, OwnedValue& out) {
    if (!oid || oid[0] == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Both slots start empty: the value list appears with the first value.
    TV_TRY(NewStructure(TV_SITE, desc::kAttribute, out));
    return SetOid(TV_SITE, &Slot(out.get(), desc::AttributeSlot::kType), oid);
}

// The value is kept as given; its word is the tag number from the low five bits of the first octet.
uint32_t AddValue(RsaAttribute* a, const uint8_t* der, uint32_t derLen) {
    if (!a || !der || derLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kAny, New<Asn1Primitive>());
    if (!value.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetAnyEncoding(value.as<Asn1Primitive>(), der, derLen));
    value.as<Asn1Primitive>()->word = der[0] & 0x1Fu;
    return AppendToSlotList(kAttributeValuesFamily, &Slot(a, desc::AttributeSlot::kValues), value);
}

uint32_t ReadOid(const RsaAttribute* a, uint8_t* out, uint32_t* outLen) {
    auto* id = static_cast<const Asn1Primitive*>(Slot(a, desc::AttributeSlot::kType));
    if (!id || !id->content) return TV_FAIL(TV_ERR_ABSENT);
    return OidToPacked(id, out, outLen);
}

uint32_t CountValues(const RsaAttribute* a, uint32_t* outCount) {
    const Asn1List* values = ValueList(a);
    if (!values) return TV_FAIL(TV_ERR_ABSENT);
    *outCount = values->count;
    return TV_OK;
}

uint32_t ReadValue(const RsaAttribute* a, uint32_t index, uint8_t* out, uint32_t* outLen) {
    const Asn1List* values = ValueList(a);
    if (!values) return TV_FAIL(TV_ERR_ABSENT);
    if (index >= values->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* value = static_cast<const Asn1Primitive*>(values->items[index]);
    if (!value || !value->content) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, value->content, value->length, out, outLen);
}

// The attribute at `index` of a handle that must hold a list: no list 311, out of range 32,
// empty slot 311.
uint32_t AttributeAt(const RsaAttributes* handle, uint32_t index, RsaAttribute** out) {
    if (!handle->list) return TV_FAIL(TV_ERR_ABSENT);
    return ListElementT(kAttributesFamily, AttributeList(handle), index, out);
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- one attribute --------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateRsaAttribute(RsaAttribute** outAttribute, const uint8_t* inOid, const uint8_t* in,
                                              uint32_t inLen) {
    if (!outAttribute) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outAttribute = nullptr;
    if (!inOid || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kAttribute);
    TV_TRY(NewAttribute(inOid, built));
    TV_TRY(AddValue(built.as<RsaAttribute>(), in, inLen));
    *outAttribute = static_cast<RsaAttribute*>(built.Release());
    return TV_OK;
}

extern "C" TV_API uint32_t AddRsaAttributeValue(RsaAttribute* attribute, const uint8_t* in, uint32_t inLen) {
    return AddValue(attribute, in, inLen);
}

extern "C" TV_API uint32_t GetRsaAttributeOid(const RsaAttribute* attribute, uint8_t* outOid, uint32_t* outOidLen) {
    if (!attribute || !outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadOid(attribute, outOid, outOidLen);
}

extern "C" TV_API uint32_t GetRsaAttributeValuesCount(const RsaAttribute* attribute, uint32_t* outCount) {
    if (!attribute || !outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return CountValues(attribute, outCount);
}

extern "C" TV_API uint32_t GetRsaAttributeValue(const RsaAttribute* attribute, uint32_t index, uint8_t* out,
                                                uint32_t* outLen) {
    if (!attribute || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadValue(attribute, index, out, outLen);
}

extern "C" TV_API uint32_t FreeRsaAttribute(RsaAttribute* attribute) { return FreeT(kAttributeFamily, attribute); }

// ---- lists ------------------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateRsaAttributes(RsaAttributes** outAttributes) {
    return HandleCreateT(kAttributesFamily, outAttributes);
}

extern "C" TV_API uint32_t AddRsaAttributesAttribute(RsaAttributes* attributes, const uint8_t* inOid, uint32_t* outIndex) {
    if (!attributes || !inOid || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kAttribute);
    TV_TRY(NewAttribute(inOid, built));
    Asn1List* list = nullptr;
    TV_TRY(HandleListT(kAttributesFamily, attributes, &list));
    TV_TRY(ListAppendT(kAttributesFamily, list, built));
    *outIndex = AttributeList(attributes)->count - 1;
    return TV_OK;
}

extern "C" TV_API uint32_t AddRsaAttributesAttributeValue(RsaAttributes* attributes, uint32_t index, const uint8_t* in,
                                                          uint32_t inLen) {
    if (!attributes || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttribute* a = nullptr;
    TV_TRY(AttributeAt(attributes, index, &a));
    return AddValue(a, in, inLen);
}

extern "C" TV_API uint32_t AddRsaAttributesAttributeWithValue(RsaAttributes* attributes, const uint8_t* inOid,
                                                              uint32_t* outIndex, const uint8_t* in, uint32_t inLen) {
    if (!attributes || !inOid || !outIndex || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(AddRsaAttributesAttribute(attributes, inOid, outIndex));
    return AddRsaAttributesAttributeValue(attributes, *outIndex, in, inLen);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributesCount(const RsaAttributes* attributes, uint32_t* outCount) {
    return HandleCountT(kAttributesFamily, attributes, outCount);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributeOid(const RsaAttributes* attributes, uint32_t index, uint8_t* outOid,
                                                        uint32_t* outOidLen) {
    if (!attributes || !outOidLen || !attributes->list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RsaAttribute* a = nullptr;
    TV_TRY(ListElementT(kAttributesFamily, AttributeList(attributes), index, &a));
    return ReadOid(a, outOid, outOidLen);
}

extern "C" TV_API uint32_t GetRsaAttributesAttributeValuesCount(const RsaAttributes* attributes, uint32_t index,
                                                                uint32_t* outCount) {
    if (!attributes || !outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttribute* a = nullptr;
    TV_TRY(AttributeAt(attributes, index, &a));
    return CountValues(a, outCount);
}

// A handle without a list reads as an empty one: every attribute index is out of range (32).
extern "C" TV_API uint32_t GetRsaAttributesAttributeValue(const RsaAttributes* attributes, uint32_t index,
                                                          uint32_t valueIndex, uint8_t* out, uint32_t* outLen) {
    if (!attributes || !outLen || !attributes->list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const RsaAttribute* a = nullptr;
    TV_TRY(ListElementT(kAttributesFamily, AttributeList(attributes), index, &a));
    return ReadValue(a, valueIndex, out, outLen);
}

extern "C" TV_API uint32_t FindRsaAttributesAttribute(const RsaAttributes* attributes, const uint8_t* inOid,
                                                      uint32_t* outIndex) {
    if (!attributes || !inOid || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!attributes->list) return TV_FAIL(TV_ERR_ABSENT);
    if (!FindOid(AttributeList(attributes), desc::AttributeSlot::kType, inOid, outIndex)) return TV_FAIL(TV_ERR_NOT_FOUND);
    return TV_OK;
}

extern "C" TV_API uint32_t RemoveRsaAttributesAttribute2(RsaAttributes* attributes, const uint8_t* inOid) {
    if (!attributes || !inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!attributes->list) return TV_FAIL(TV_ERR_ABSENT);
    return RemoveOid(kAttributesFamily, AttributeList(attributes), desc::AttributeSlot::kType, inOid, OidWalk::kBackwardEvery);
}

extern "C" TV_API uint32_t ClearRsaAttributes(RsaAttributes* attributes) {
    return HandleClearT(kAttributesFamily, attributes);
}

extern "C" TV_API uint32_t SetRsaAttributesSorted(RsaAttributes* attributes, uint32_t sorted) {
    return HandleSetSortedT(kAttributesFamily, attributes, sorted);
}

extern "C" TV_API uint32_t RemoveRsaAttributes(RsaAttributes* attributes) {
    return HandleRemoveListT(kAttributesFamily, attributes);
}

extern "C" TV_API uint32_t FreeRsaAttributes(RsaAttributes* attributes) {
    return HandleFreeT(kAttributesFamily, attributes);
}

// Appending a list to itself copies the attributes it held when the call began.
extern "C" TV_API uint32_t AppendRsaAttributes(RsaAttributes* attributes, const RsaAttributes* source) {
    if (!attributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!source) return TV_OK;
    if (!attributes->list || !source->list) return TV_FAIL(TV_ERR_ABSENT);
    const Asn1List* from = AttributeList(source);
    const uint32_t count = from->count;
    for (uint32_t i = 0; i < count; ++i) {
        if (!from->items[i]) continue;
        OwnedValue copy(&desc::kAttribute);
        TV_TRY(CopyT(kAttributeFamily, static_cast<const RsaAttribute*>(from->items[i]),
                     reinterpret_cast<RsaAttribute**>(copy.Out())));
        TV_TRY(ListAppendT(kAttributesFamily, AttributeList(attributes), copy));
    }
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeRsaAttributes(const RsaAttributes* attributes, uint8_t* out, uint32_t* outLen) {
    return HandleEncodeT(kAttributesFamily, attributes, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributes(const uint8_t* in, uint32_t inLen, RsaAttributes** outAttributes) {
    return HandleDecodeT(kAttributesFamily, in, inLen, outAttributes);
}

// ---- attribute values: scalars --------------------------------------------------------------------
// The generic one-element codecs with the attribute's fixed type.

#define TV_ATTRIBUTE_OCTETS_CODEC(Name, descriptor)                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return EncodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                       \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return DecodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                       \
    }

TV_ATTRIBUTE_OCTETS_CODEC(MessageDigest, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(TemplateDigest, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(KestrunePubKey, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(X509Certificate, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(CyksCertificate, desc::kOctetString)
TV_ATTRIBUTE_OCTETS_CODEC(TokenSerialNumber, desc::kUtf8String)
#undef TV_ATTRIBUTE_OCTETS_CODEC

#define TV_ATTRIBUTE_OID_CODEC(Name)                                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(const uint8_t* packedOid, uint8_t* out,           \
                                                               uint32_t* outLen) {                              \
        return EncodeAsn1Oid(packedOid, out, outLen);                                                           \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen, uint8_t* out, \
                                                               uint32_t* outLen) {                              \
        return DecodeAsn1Oid(in, inLen, out, outLen);                                                           \
    }

TV_ATTRIBUTE_OID_CODEC(ContentType)
TV_ATTRIBUTE_OID_CODEC(SecurityTokenType)
TV_ATTRIBUTE_OID_CODEC(ChannelCspClass)
TV_ATTRIBUTE_OID_CODEC(RequestCertificateStatus)
TV_ATTRIBUTE_OID_CODEC(SignatureConfirmationType)
TV_ATTRIBUTE_OID_CODEC(Usage)
#undef TV_ATTRIBUTE_OID_CODEC

namespace {

// The INTEGER's four little-endian octets, as the generic reader hands them out, as a number.
uint32_t DecodeInt32(const uint8_t* in, uint32_t inLen, int32_t* outNumber) {
    if (!outNumber) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t le[4];
    TV_TRY(DecodeAsn1Int32(in, inLen, le));
    *outNumber = static_cast<int32_t>(uint32_t{le[0]} | uint32_t{le[1]} << 8 | uint32_t{le[2]} << 16 |
                                      uint32_t{le[3]} << 24);
    return TV_OK;
}

}  // namespace

#define TV_ATTRIBUTE_INT32_CODEC(Name)                                                                           \
    extern "C" TV_API uint32_t EncodeRsaAttribute##Name##Value(int32_t number, uint8_t* out, uint32_t* outLen) { \
        return EncodeAsn1Int32(number, out, outLen);                                                              \
    }                                                                                                             \
    extern "C" TV_API uint32_t DecodeRsaAttribute##Name##Value(const uint8_t* in, uint32_t inLen,                \
                                                               int32_t* outNumber) {                              \
        return DecodeInt32(in, inLen, outNumber);                                                                 \
    }

TV_ATTRIBUTE_INT32_CODEC(PacketDigestNumber)
TV_ATTRIBUTE_INT32_CODEC(PacketDigestCount)
TV_ATTRIBUTE_INT32_CODEC(TokenSignatureNumber)
TV_ATTRIBUTE_INT32_CODEC(PinNumber)
TV_ATTRIBUTE_INT32_CODEC(RequestCertificateType)
TV_ATTRIBUTE_INT32_CODEC(ValidityPeriod)
#undef TV_ATTRIBUTE_INT32_CODEC

extern "C" TV_API uint32_t EncodeRsaAttributeSigningTimeValue(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    return EncodeTime(time, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributeSigningTimeValue(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    return DecodeTime(in, inLen, outTime);
}
