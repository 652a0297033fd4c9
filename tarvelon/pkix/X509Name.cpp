// Distinguished names: the RDNSequence value, the attribute type table and the entry operations.
#include "tarvelon/pkix/X509Name.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509Name)

namespace tv::desc {

// AttributeTypeAndValue ::= SEQUENCE {
//     type   AttributeType,              -- OBJECT IDENTIFIER
//     value  AttributeValue }            -- ANY DEFINED BY type
constexpr auto kAttributeTypeAndValueParts = Slots<AttributeTypeAndValueSlot>({
        {AttributeTypeAndValueSlot::kType, &kOid},   // type   OBJECT IDENTIFIER
        {AttributeTypeAndValueSlot::kValue, &kAny},  // value  ANY, kept as the whole element so any string type survives
    });
constinit const Asn1Descriptor kAttributeTypeAndValue = Sequence(kAttributeTypeAndValueParts);

// RelativeDistinguishedName ::= SET SIZE (1..MAX) OF AttributeTypeAndValue
constinit const Asn1Descriptor kRelativeDistinguishedName = SetOf<&kAttributeTypeAndValue>();

// Name ::= CHOICE { rdnSequence RDNSequence }  -- only the one alternative exists, so it is used directly
// RDNSequence ::= SEQUENCE OF RelativeDistinguishedName
constinit const Asn1Descriptor kX509Name = SequenceOf<&kRelativeDistinguishedName>();

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kNameFamily{&desc::kX509Name, Module::X509Name, 0};
constinit const Family kRdnFamily{&desc::kRelativeDistinguishedName, Module::X509Name, 0};

// Attribute types known by number. Rows hold packed OIDs (length octet, DER contents) and are
// scanned in id order: row i has id i + 1.
struct AttributeRow {
    uint8_t packed[12];
};

constexpr AttributeRow kAttributeTypes[] = {
    {{3, 0x55, 0x04, 0x03}},                                            // 1  2.5.4.3 commonName
    {{3, 0x55, 0x04, 0x0A}},                                            // 2  2.5.4.10 organizationName
    {{3, 0x55, 0x04, 0x0B}},                                            // 3  2.5.4.11 organizationalUnitName
    {{3, 0x55, 0x04, 0x06}},                                            // 4  2.5.4.6 countryName
    {{3, 0x55, 0x04, 0x08}},                                            // 5  2.5.4.8 stateOrProvinceName
    {{3, 0x55, 0x04, 0x07}},                                            // 6  2.5.4.7 localityName
    {{9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x09, 0x01}},        // 7  1.2.840.113549.1.9.1 emailAddress
    {{3, 0x55, 0x04, 0x04}},                                            // 8  2.5.4.4 surname
    {{3, 0x55, 0x04, 0x2A}},                                            // 9  2.5.4.42 givenName
    {{3, 0x55, 0x04, 0x0C}},                                            // 10 2.5.4.12 title
    {{10, 0x09, 0x92, 0x26, 0x89, 0x93, 0xF2, 0x2C, 0x64, 0x01, 0x19}}, // 11 0.9.2342.19200300.100.1.25 domainComponent
    {{3, 0x55, 0x04, 0x01}},                                            // 12 2.5.4.1 aliasedEntryName
    {{8, 0x2B, 0x06, 0x01, 0x05, 0x05, 0x07, 0x09, 0x01}},              // 13 1.3.6.1.5.5.7.9.1 dateOfBirth
    {{3, 0x55, 0x04, 0x24}},                                            // 14 2.5.4.36 userCertificate
    {{3, 0x55, 0x04, 0x0D}},                                            // 15 2.5.4.13 description
    {{8, 0x2B, 0x06, 0x01, 0x05, 0x05, 0x07, 0x09, 0x03}},              // 16 1.3.6.1.5.5.7.9.3 gender
    {{3, 0x55, 0x04, 0x2C}},                                            // 17 2.5.4.44 generationQualifier
    {{3, 0x55, 0x04, 0x2B}},                                            // 18 2.5.4.43 initials
    {{10, 0x2B, 0x06, 0x01, 0x04, 0x01, 0x2A, 0x02, 0x0B, 0x02, 0x01}}, // 19 1.3.6.1.4.1.42.2.11.2.1 IP address
    {{8, 0x2B, 0x06, 0x01, 0x05, 0x05, 0x07, 0x09, 0x02}},              // 20 1.3.6.1.5.5.7.9.2 placeOfBirth
    {{3, 0x55, 0x04, 0x10}},                                            // 21 2.5.4.16 postalAddress
    {{3, 0x55, 0x04, 0x11}},                                            // 22 2.5.4.17 postalCode
    {{3, 0x55, 0x04, 0x41}},                                            // 23 2.5.4.65 pseudonym
    {{3, 0x55, 0x04, 0x05}},                                            // 24 2.5.4.5 serialNumber
    {{3, 0x55, 0x04, 0x09}},                                            // 25 2.5.4.9 streetAddress
    {{10, 0x09, 0x92, 0x26, 0x89, 0x93, 0xF2, 0x2C, 0x64, 0x01, 0x01}}, // 26 0.9.2342.19200300.100.1.1 userid
    {{3, 0x55, 0x04, 0x21}},                                            // 27 2.5.4.33 roleOccupant
    {{3, 0x55, 0x04, 0x20}},                                            // 28 2.5.4.32 owner
    {{3, 0x55, 0x04, 0x2D}},                                            // 29 2.5.4.45 uniqueIdentifier
    {{5, 0x2A, 0x85, 0x03, 0x64, 0x03}},                                // 30 1.2.643.100.3 SNILS
    {{8, 0x2A, 0x85, 0x03, 0x03, 0x81, 0x03, 0x01, 0x01}},              // 31 1.2.643.3.131.1.1 INN
    {{5, 0x2A, 0x85, 0x03, 0x64, 0x01}},                                // 32 1.2.643.100.1 OGRN
};
constexpr uint32_t kAttributeTypeCount = sizeof(kAttributeTypes) / sizeof(kAttributeTypes[0]);
static_assert(kAttributeTypeCount == 32);

constexpr bool IsDigitOrSpace(uint8_t c) { return c == ' ' || (c >= '0' && c <= '9'); }

// X.680 PrintableString: letters, digits, space and '()+,-./:=?
constexpr bool IsPrintableChar(uint8_t c) {
    if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) return true;
    switch (c) {
        case ' ': case '\'': case '(': case ')': case '+': case ',': case '-': case '.': case '/': case ':':
        case '=': case '?':
            return true;
        default:
            return false;
    }
}

Asn1List* RdnAt(const X509Name* name, uint32_t index) { return static_cast<Asn1List*>(name->items[index]); }

// Values are equal when everything after the identifier octet agrees, so the string type is ignored.
bool SameValueAfterFirstOctet(const Asn1Primitive* a, const Asn1Primitive* b) {
    const uint32_t na = a->length ? a->length - 1 : 0;
    const uint32_t nb = b->length ? b->length - 1 : 0;
    if (na != nb) return false;
    return na == 0 || std::memcmp(a->content + 1, b->content + 1, na) == 0;
}

uint32_t CompareRdns(const Asn1List* a, const Asn1List* b) {
    if (!a || !b) {
        if (a != b) return TV_FAIL(TV_ERR_DIFFERENT);
        return TV_OK;
    }
    if (a->count != b->count) return TV_FAIL(TV_ERR_DIFFERENT);
    for (uint32_t i = 0; i < a->count; ++i) {
        auto* ea = static_cast<void* const*>(a->items[i]);
        auto* eb = static_cast<void* const*>(b->items[i]);
        auto* va = ea ? static_cast<const Asn1Primitive*>(Slot(ea, desc::AttributeTypeAndValueSlot::kValue)) : nullptr;
        auto* vb = eb ? static_cast<const Asn1Primitive*>(Slot(eb, desc::AttributeTypeAndValueSlot::kValue)) : nullptr;
        if (!va || !vb) {
            if (va != vb) return TV_FAIL(TV_ERR_DIFFERENT);
            continue;
        }
        if (!SameValueAfterFirstOctet(va, vb)) return TV_FAIL(TV_ERR_DIFFERENT);
    }
    return TV_OK;
}

}  // namespace

uint32_t NameInSlot(Site site, void** slot, X509Name** out) noexcept {
    if (!*slot && !(*slot = ListCreate())) return Fail(site, TV_ERR_NO_MEMORY);
    *out = static_cast<X509Name*>(*slot);
    return TV_OK;
}

uint32_t SetNameCopy(void** slot, const X509Name* name) noexcept {
    OwnedValue copy(&desc::kX509Name);
    TV_TRY(CopyValue(&desc::kX509Name, name, copy.Out()));
    FreeAsn1Object(&desc::kX509Name, *slot);
    *slot = copy.Release();
    return TV_OK;
}

}  // namespace tv

using namespace tv;

TV_FAMILY_LIFE_CYCLE(X509Name, kNameFamily)

extern "C" TV_API uint32_t CopyX509Name(const X509Name* name, X509Name** outName) {
    return CopyT(kNameFamily, name, outName);
}

extern "C" TV_API uint32_t ClearX509Name(X509Name* name) {
    if (!name) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    ListClear(name, &desc::kRelativeDistinguishedName);
    return TV_OK;
}

extern "C" TV_API uint32_t GetX509NameRdnCount(const X509Name* name, uint32_t* outCount) {
    return ListCountT(kNameFamily, name, outCount);
}

extern "C" TV_API uint32_t GetX509NameEntryCount(const X509Name* name, uint32_t rdnIndex, uint32_t* outCount) {
    if (!outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Asn1List* rdn = nullptr;
    TV_TRY(ListElementT(kNameFamily, name, rdnIndex, &rdn));
    return ListCountT(kRdnFamily, rdn, outCount);
}

extern "C" TV_API uint32_t AddX509NameEntryExt(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tagClass,
                                               uint8_t constructed, uint8_t tag, const uint8_t* packedOid,
                                               uint32_t newRdn) {
    if (!name || !in || !packedOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Without an RDN there is nowhere to add to; refusing beats writing through a missing item.
    if (!newRdn && name->count == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);

    Asn1List* rdn = nullptr;
    if (newRdn) {
        OwnedValue fresh(&desc::kRelativeDistinguishedName, ListCreate());
        if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
        rdn = fresh.as<Asn1List>();
        rdn->sorted = 1;
        TV_TRY(ListAppendT(kNameFamily, name, fresh));
    } else {
        rdn = RdnAt(name, name->count - 1);
        if (!rdn) return TV_FAIL(TV_ERR_ABSENT);
    }

    OwnedValue entry(&desc::kAttributeTypeAndValue);
    TV_TRY(NewStructure(TV_SITE, desc::kAttributeTypeAndValue, entry));
    TV_TRY(SetOid(TV_SITE, &Slot(entry.get(), desc::AttributeTypeAndValueSlot::kType), packedOid));
    auto* value = New<Asn1Primitive>();
    if (!value) return TV_FAIL(TV_ERR_NO_MEMORY);
    Slot(entry.get(), desc::AttributeTypeAndValueSlot::kValue) = value;
    const uint8_t form = constructed ? ASN1_CONSTRUCTED_FORM : ASN1_PRIMITIVE_FORM;
    TV_TRY(SetAnyParts(value, tagClass & 0xC0, form, tag, tag, in, inLen));
    return ListAppendT(kRdnFamily, rdn, entry);
}

extern "C" TV_API uint32_t AddX509NameEntry(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tag,
                                            const uint8_t* packedOid, uint32_t newRdn) {
    return AddX509NameEntryExt(name, in, inLen, ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, tag, packedOid, newRdn);
}

extern "C" TV_API uint32_t GetX509NameEntryExt(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex,
                                               uint8_t* out, uint32_t* outLen, uint8_t* outClass,
                                               uint8_t* outConstructed, uint8_t* outTag, uint8_t* outOid,
                                               uint32_t* outOidLen) {
    if (!name || !outLen || !outClass || !outConstructed || !outTag) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Asn1List* rdn = nullptr;
    const void* entry = nullptr;
    TV_TRY(ListElementT(kNameFamily, name, rdnIndex, &rdn));
    TV_TRY(ListElementT(kRdnFamily, rdn, entryIndex, &entry));
    auto* value = static_cast<const Asn1Primitive*>(Slot(entry, desc::AttributeTypeAndValueSlot::kValue));
    const void* type = Slot(entry, desc::AttributeTypeAndValueSlot::kType);
    if (!value || !type) return TV_FAIL(TV_ERR_ABSENT);

    uint8_t tagClass = 0, form = 0;
    uint32_t tag = 0, contentLen = 0, headerLen = 0;
    TV_TRY(GetAsn1AnyInfo(value, &tagClass, &form, &tag, &contentLen, &headerLen));
    *outClass = tagClass;
    *outConstructed = form;

    if (uint32_t rc = OidToPacked(static_cast<const Asn1Primitive*>(type), outOid, outOidLen); rc != TV_OK) {
        *outLen = contentLen;
        return rc;
    }
    if (out && outOid && *outLen >= contentLen) {
        if (contentLen) std::memcpy(out, value->content + headerLen, contentLen);
        *outLen = contentLen;
        *outTag = static_cast<uint8_t>(tag);
        return TV_OK;
    }
    *outLen = contentLen;
    if (!out && !outOid) return TV_OK;  // a size query for value and identifier
    return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
}

extern "C" TV_API uint32_t GetX509NameEntry(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex, uint8_t* out,
                                            uint32_t* outLen, uint8_t* outTag, uint8_t* outOid, uint32_t* outOidLen) {
    uint8_t tagClass = 0, form = 0;
    return GetX509NameEntryExt(name, rdnIndex, entryIndex, out, outLen, &tagClass, &form, outTag, outOid, outOidLen);
}

extern "C" TV_API uint32_t DeleteX509NameEntry(X509Name* name, uint32_t rdnIndex, uint32_t entryIndex) {
    if (!name) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (rdnIndex >= name->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // The entry index is held against the last RDN first, then against the addressed one. Callers
    // depend on this order of refusals, so it stays even though it can refuse a valid index.
    const Asn1List* last = RdnAt(name, name->count - 1);
    if (!last || entryIndex >= last->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!name->items) return TV_FAIL(TV_ERR_ABSENT);
    Asn1List* rdn = RdnAt(name, rdnIndex);
    if (!rdn || entryIndex >= rdn->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (rdn->count == 1) return ListRemoveAt(name, rdnIndex, &desc::kRelativeDistinguishedName);
    return ListRemoveAt(rdn, entryIndex, &desc::kAttributeTypeAndValue);
}

extern "C" TV_API uint32_t CompareX509Names(const X509Name* nameA, const X509Name* nameB) {
    if (!nameA || !nameB) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!nameA->items || !nameB->items) return TV_FAIL(TV_ERR_ABSENT);
    if (nameA->count != nameB->count) return TV_FAIL(TV_ERR_DIFFERENT);
    // Position by position and without looking at attribute types: callers match names that
    // differ only in the string type or in how the type of a value was labelled.
    for (uint32_t i = 0; i < nameA->count; ++i)
        TV_TRY(CompareRdns(RdnAt(nameA, i), RdnAt(nameB, i)));
    return TV_OK;
}

extern "C" TV_API uint32_t GetNameAttributeTypeOid(uint32_t id, uint8_t* outOid, uint32_t* outOidLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (id == 0 || id > kAttributeTypeCount) return TV_FAIL(TV_ERR_ID_NOT_FOUND);
    const uint8_t* packed = kAttributeTypes[id - 1].packed;
    return PutBytes(TV_SITE, packed, size_t{packed[0]} + 1, outOid, outOidLen);
}

extern "C" TV_API uint32_t FindNameAttributeTypeIdByOid(const uint8_t* packedOid, uint32_t* outId) {
    if (!packedOid || !outId) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    for (uint32_t i = 0; i < kAttributeTypeCount; ++i) {
        if (IsOidEquals(kAttributeTypes[i].packed, packedOid)) {
            *outId = i + 1;
            return TV_OK;
        }
    }
    return TV_FAIL(TV_ERR_OID_NOT_FOUND);
}

extern "C" TV_API uint32_t DetermineSuitableStringType(const uint8_t* in, uint32_t inLen, uint32_t* outStringType) {
    if (!in || !outStringType) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outStringType = ASN1_NUMERIC_STRING;
    uint32_t pos = 0;
    while (pos < inLen && IsDigitOrSpace(in[pos])) ++pos;
    if (pos == inLen) return TV_OK;  // digits and spaces only, or nothing at all
    // Only a leading run of digits and spaces is skipped; from here on every octet counts.
    uint32_t type = ASN1_PRINTABLE_STRING;
    for (; pos < inLen; ++pos) {
        const uint8_t c = in[pos];
        if (c < 0x20 || c >= 0x80) {
            *outStringType = ASN1_UTF8_STRING;
            return TV_OK;
        }
        if (!IsPrintableChar(c)) type = ASN1_IA5_STRING;
    }
    *outStringType = type;
    return TV_OK;
}
