// Field helpers. No module of their own: every failure found here is recorded at the caller's site.
#include "tarvelon/engine/Fields.h"

namespace tv {

uint32_t NewStructure(Site site, const Asn1Descriptor& d, OwnedValue& out) noexcept {
    void* block = AllocZero(d.valueSize);
    if (!block) return Fail(site, TV_ERR_NO_MEMORY);
    FreeAsn1Object(&d, out.Release());
    *out.Out() = block;
    return TV_OK;
}

uint32_t EncodeToHeap(Site site, const void* value, const Asn1Descriptor& d, HeapBytes& out, uint32_t* len) noexcept {
    return EncodeToHeap(
        site, [&](uint8_t* buffer, uint32_t* n) { return EncodeSized(site, value, &d, buffer, n); }, out, len);
}

uint32_t GetLeaf(Site site, const void* leaf, uint8_t* out, uint32_t* outLen) noexcept {
    if (!leaf) return Fail(site, TV_ERR_ABSENT);
    auto* p = static_cast<const Asn1Primitive*>(leaf);
    return PutBytes(site, p->content, p->length, out, outLen);
}

uint32_t GetOptionalLeaf(Site site, const void* leaf, uint8_t* out, uint32_t* outLen) noexcept {
    if (leaf) return GetLeaf(site, leaf, out, outLen);
    if (!outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    *outLen = 0;
    return TV_OK;
}

uint32_t SetOptionalLeaf(void** slot, uint8_t typeCode, const uint8_t* in, uint32_t inLen) noexcept {
    return in ? SetOrCreatePrimitive(slot, typeCode, in, inLen) : uint32_t{TV_OK};
}

uint32_t ReplaceOptionalOctets(void** slot, const uint8_t* in, uint32_t inLen) noexcept {
    FreeAsn1Object(&desc::kOctetString, *slot);
    *slot = nullptr;
    if (!in || inLen == 0) return TV_OK;
    return SetOrCreatePrimitive(slot, ASN1_OCTET_STRING, in, inLen);
}

uint32_t SetNumber(void** slot, uint8_t typeCode, uint32_t number) noexcept {
    uint8_t be[4] = {uint8_t(number >> 24), uint8_t(number >> 16), uint8_t(number >> 8), uint8_t(number)};
    uint32_t skip = 0;
    while (skip < 3 && ((be[skip] == 0x00 && !(be[skip + 1] & 0x80)) || (be[skip] == 0xFF && (be[skip + 1] & 0x80))))
        ++skip;
    return SetOrCreatePrimitive(slot, typeCode, be + skip, 4 - skip);
}

uint32_t GetNumber(Site site, const void* leaf, uint32_t* out) noexcept {
    if (!leaf) return Fail(site, TV_ERR_ABSENT);
    uint8_t le[4];
    TV_TRY(GetAsn1Int32(static_cast<const Asn1Primitive*>(leaf), le));
    *out = uint32_t{le[0]} | uint32_t{le[1]} << 8 | uint32_t{le[2]} << 16 | uint32_t{le[3]} << 24;
    return TV_OK;
}

uint32_t GetOptionalNumber(Site site, const void* leaf, uint32_t* outPresent, uint32_t* outNumber) noexcept {
    *outPresent = leaf ? 1 : 0;
    *outNumber = 0;
    return leaf ? GetNumber(site, leaf, outNumber) : uint32_t{TV_OK};
}

uint32_t SetBooleanLeaf(void** slot, bool flag) noexcept {
    const uint8_t octet = flag ? 0xFF : 0x00;
    return SetOrCreatePrimitive(slot, ASN1_BOOLEAN, &octet, 1);
}

uint8_t BooleanOctet(const void* leaf) noexcept {
    auto* b = static_cast<const Asn1Primitive*>(leaf);
    return (b && b->length >= 1) ? b->content[0] : 0x00;
}

uint32_t GetOid(Site site, const void* oid, uint8_t* out, uint32_t* outLen) noexcept {
    if (!oid) return Fail(site, TV_ERR_ABSENT);
    return OidToPacked(static_cast<const Asn1Primitive*>(oid), out, outLen);
}

uint32_t SetOid(Site site, void** slot, const uint8_t* packed) noexcept {
    if (!packed) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    Asn1Primitive* fresh = NewPrimitive(ASN1_OBJECT_IDENTIFIER, packed + 1, packed[0]);
    if (!fresh) return Fail(site, TV_ERR_NO_MEMORY);
    FreeAsn1Object(&desc::kOid, *slot);
    *slot = fresh;
    return TV_OK;
}

uint32_t GetBits(Site site, const void* bits, uint8_t* out, uint32_t* outLen) noexcept {
    if (!bits) return Fail(site, TV_ERR_ABSENT);
    auto* b = static_cast<const Asn1BitStringValue*>(bits);
    return PutBytes(site, b->content, b->length, out, outLen);
}

uint32_t SetBits(Site site, void** slot, const uint8_t* in, uint32_t inLen) noexcept {
    if (*slot) return SetBitString(static_cast<Asn1BitStringValue*>(*slot), in, inLen, 0, false);
    OwnedValue fresh(&desc::kBitString, New<Asn1BitStringValue>());
    if (!fresh.get()) return Fail(site, TV_ERR_NO_MEMORY);
    TV_TRY(SetBitString(fresh.as<Asn1BitStringValue>(), in, inLen, 0, false));
    *slot = fresh.Release();
    return TV_OK;
}

uint32_t ReplaceBits(Site site, void** slot, const uint8_t* in, uint32_t inLen) noexcept {
    void* fresh = nullptr;
    TV_TRY(SetBits(site, &fresh, in, inLen));
    FreeAsn1Object(&desc::kBitString, *slot);
    *slot = fresh;
    return TV_OK;
}

uint32_t SetFlags(Site site, void** slot, uint32_t flags) noexcept {
    OwnedValue bits(&desc::kBitString, New<Asn1BitStringValue>());
    if (!bits.get()) return Fail(site, TV_ERR_NO_MEMORY);
    TV_TRY(SetBitStringFromFlags(bits.as<Asn1BitStringValue>(), flags));
    FreeAsn1Object(&desc::kBitString, *slot);
    *slot = bits.Release();
    return TV_OK;
}

uint32_t SetChoice(const Asn1Descriptor& choice, void** slot, int32_t alternative, OwnedValue& value) noexcept {
    Asn1ChoiceValue* fresh = nullptr;
    TV_TRY(NewChoice(alternative, value.get(), &fresh));
    value.Release();
    FreeAsn1Object(&choice, *slot);
    *slot = fresh;
    return TV_OK;
}

uint32_t SetAny(Site site, void** slot, const uint8_t* element, uint32_t len) noexcept {
    OwnedValue fresh(&desc::kAny, New<Asn1Primitive>());
    if (!fresh.get()) return Fail(site, TV_ERR_NO_MEMORY);
    TV_TRY(SetAnyEncoding(fresh.as<Asn1Primitive>(), element, len));
    FreeAsn1Object(&desc::kAny, *slot);
    *slot = fresh.Release();
    return TV_OK;
}

uint32_t DecodeCarried(Site site, const void* carrier, const Family& f, void** out) noexcept {
    auto* p = static_cast<const Asn1Primitive*>(carrier);
    if (!out) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (!p || !p->content || p->length == 0) return Fail(site, TV_ERR_ABSENT);
    OwnedValue value(f.descriptor);
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(p->content, p->length, f.descriptor, value.Out(), &consumed));
    if (consumed != p->length) return Fail(site, TV_ERR_MALFORMED);
    *out = value.Release();
    return TV_OK;
}

uint32_t EncodeIntoCarrier(Site site, const void* value, const Family& f, uint8_t typeCode, void** slot) noexcept {
    if (!value || !slot || (typeCode != ASN1_ANY && typeCode != ASN1_OCTET_STRING))
        return Fail(site, TV_ERR_INVALID_ARGUMENT);
    HeapBytes der;
    uint32_t len = 0;
    TV_TRY(EncodeToHeap(site, value, *f.descriptor, der, &len));
    auto* fresh = New<Asn1Primitive>();
    if (!fresh) return Fail(site, TV_ERR_NO_MEMORY);
    // The encoding is adopted, not copied: carried structures can be large.
    fresh->word = typeCode == ASN1_ANY ? der.get()[0] : uint32_t{ASN1_OCTET_STRING};
    fresh->length = len;
    fresh->content = der.Release();
    FreeAsn1Object(typeCode == ASN1_ANY ? &desc::kAny : &desc::kOctetString, *slot);
    *slot = fresh;
    return TV_OK;
}

uint32_t EncodeScalar(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out,
                      uint32_t* outLen) noexcept {
    if ((!in && inLen) || !outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    Asn1Primitive leaf{d.typeCode, inLen, const_cast<uint8_t*>(in)};
    return EncodeSized(site, &leaf, &d, out, outLen);
}

uint32_t DecodeValue(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, OwnedValue& value) noexcept {
    if (!in || inLen == 0) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    TV_TRY(Asn1DecodeItem(in, inLen, &d, value.Out(), nullptr));
    if (!value.get()) return Fail(site, TV_ERR_ABSENT);
    return TV_OK;
}

uint32_t DecodeScalar(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out,
                      uint32_t* outLen) noexcept {
    if (!outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&d);
    TV_TRY(DecodeValue(site, d, in, inLen, value));
    return GetLeaf(site, value.get(), out, outLen);
}

uint32_t EncodeNumber(Site site, const Asn1Descriptor& d, uint32_t number, uint8_t* out, uint32_t* outLen) noexcept {
    if (!outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&d);
    TV_TRY(SetNumber(leaf.Out(), d.typeCode, number));
    return EncodeSized(site, leaf.get(), &d, out, outLen);
}

uint32_t DecodeNumber(Site site, const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen,
                      uint32_t* outNumber) noexcept {
    if (!outNumber) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&d);
    TV_TRY(DecodeValue(site, d, in, inLen, leaf));
    return GetNumber(site, leaf.get(), outNumber);
}

}  // namespace tv
