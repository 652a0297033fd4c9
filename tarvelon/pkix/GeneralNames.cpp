// General names: the nine RFC 5280 alternatives, built from and read back to caller octets.
#include "tarvelon/pkix/GeneralNames.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(GeneralNames)

namespace tv::desc {
namespace {

constexpr Asn1Descriptor kIa5String = Prim(ASN1_IA5_STRING);

constexpr Asn1Descriptor kOtherNameAlt = Implicit(0, ConstructedAny());
constexpr Asn1Descriptor kRfc822NameAlt = Implicit(1, kIa5String);
constexpr Asn1Descriptor kDnsNameAlt = Implicit(2, kIa5String);
constexpr Asn1Descriptor kX400AddressAlt = Implicit(3, ConstructedAny());
constexpr Asn1Descriptor kDirectoryNameAlt = Explicit(4, Any());
constexpr Asn1Descriptor kEdiPartyNameAlt = Implicit(5, ConstructedAny());
constexpr Asn1Descriptor kUriAlt = Implicit(6, kIa5String);
constexpr Asn1Descriptor kIpAddressAlt = Implicit(7, kOctetString);
constexpr Asn1Descriptor kRegisteredIdAlt = Implicit(8, kOid);

}  // namespace

// GeneralName ::= CHOICE {   -- RFC 5280 4.2.1.6, IMPLICIT TAGS module
constinit const Components<SlotCount<GeneralNameKind>> kGeneralNameAlternatives = Slots<GeneralNameKind>({
    {GeneralNameKind::kOtherName, &kOtherNameAlt},            // otherName                  [0] OtherName (a SEQUENCE)
    {GeneralNameKind::kRfc822Name, &kRfc822NameAlt},          // rfc822Name                 [1] IA5String
    {GeneralNameKind::kDnsName, &kDnsNameAlt},                // dNSName                    [2] IA5String
    {GeneralNameKind::kX400Address, &kX400AddressAlt},        // x400Address                [3] ORAddress (a SEQUENCE)
    {GeneralNameKind::kDirectoryName, &kDirectoryNameAlt},    // directoryName              [4] Name, EXPLICIT as Name is a CHOICE
    {GeneralNameKind::kEdiPartyName, &kEdiPartyNameAlt},      // ediPartyName               [5] EDIPartyName (a SEQUENCE)
    {GeneralNameKind::kUniformResourceIdentifier, &kUriAlt},  // uniformResourceIdentifier  [6] IA5String
    {GeneralNameKind::kIpAddress, &kIpAddressAlt},            // iPAddress                  [7] OCTET STRING
    {GeneralNameKind::kRegisteredId, &kRegisteredIdAlt},      // registeredID               [8] OBJECT IDENTIFIER
});

constinit const Asn1Descriptor kGeneralName = Choice(kGeneralNameAlternatives);
// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName  -- the lower bound is not enforced
constinit const Asn1Descriptor kGeneralNames = SequenceOf<&kGeneralName>();

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kGeneralNamesFamily{&desc::kGeneralNames, Module::GeneralNames, 0};
constinit const Family kGeneralNameFamily{&desc::kGeneralName, Module::GeneralNames, 0};

using Kind = desc::GeneralNameKind;

bool IsWholeElementKind(Kind kind) {
    return kind == Kind::kOtherName || kind == Kind::kX400Address || kind == Kind::kDirectoryName ||
           kind == Kind::kEdiPartyName;
}

uint32_t BuildGeneralName(uint32_t number, const uint8_t* in, uint32_t inLen, GeneralName** out) {
    if (!in || !out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (number >= SlotCount<Kind>) return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    const auto kind = static_cast<Kind>(number);
    const Asn1Descriptor* alternative = Component(desc::kGeneralName, kind);
    OwnedValue value(alternative);
    if (IsWholeElementKind(kind)) {
        TV_TRY(SetAny(TV_SITE, value.Out(), in, inLen));
    } else if (kind == Kind::kRegisteredId) {
        // A packed OID: its first octet counts the contents, which must lie inside the input.
        if (inLen == 0 || uint32_t{in[0]} + 1 > inLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        TV_TRY(SetOid(TV_SITE, value.Out(), in));
    } else {
        const uint32_t word = kind == Kind::kIpAddress ? ASN1_OCTET_STRING : ASN1_IA5_STRING;
        *value.Out() = NewPrimitive(word, in, inLen);
        if (!value.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    }
    Asn1ChoiceValue* choice = nullptr;
    TV_TRY(NewChoice(Index(kind), value.get(), &choice));
    value.Release();
    *out = choice;
    return TV_OK;
}

// Common tail of both readers; the kind goes out before anything else is checked.
uint32_t ReadGeneralName(const GeneralName* name, uint32_t* outKind, uint8_t* out, uint32_t* outLen) {
    if (!name->value) return TV_FAIL(TV_ERR_ABSENT);
    *outKind = static_cast<uint32_t>(name->index);
    if (name->index < 0 || static_cast<uint32_t>(name->index) >= SlotCount<desc::GeneralNameKind>)
        return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    auto* value = static_cast<const Asn1Primitive*>(name->value);
    if (name->index == Index(Kind::kRegisteredId)) return OidToPacked(value, out, outLen);
    return GetLeaf(TV_SITE, value, out, outLen);
}

}  // namespace
}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t CreateX509GeneralNames(GeneralNames** outNames) {
    return CreateT(kGeneralNamesFamily, outNames);
}

extern "C" TV_API uint32_t CopyX509GeneralNames(const GeneralNames* names, GeneralNames** outNames) {
    return CopyT(kGeneralNamesFamily, names, outNames);
}

extern "C" TV_API uint32_t FreeX509GeneralNames(GeneralNames* names) { return FreeT(kGeneralNamesFamily, names); }

extern "C" TV_API uint32_t CreateX509GeneralName(GeneralName** outName) { return CreateT(kGeneralNameFamily, outName); }

extern "C" TV_API uint32_t CreateX509GeneralNameCopy(const GeneralName* name, GeneralName** outName) {
    return CopyT(kGeneralNameFamily, name, outName);
}

extern "C" TV_API uint32_t FreeX509GeneralName(GeneralName* name) { return FreeT(kGeneralNameFamily, name); }

extern "C" TV_API uint32_t DecodeX509GeneralNames(const uint8_t* in, uint32_t inLen, GeneralNames** outNames) {
    return DecodeT(kGeneralNamesFamily, in, inLen, outNames);
}

extern "C" TV_API uint32_t EncodeX509GeneralNames(const GeneralNames* names, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kGeneralNamesFamily, names, out, outLen);
}

extern "C" TV_API uint32_t GetX509GeneralNameCount(const GeneralNames* names, uint32_t* outCount) {
    return ListCountT(kGeneralNamesFamily, names, outCount);
}

extern "C" TV_API uint32_t AddX509GeneralName(GeneralNames* names, uint32_t kind, const uint8_t* in, uint32_t inLen) {
    if (!names) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    GeneralName* built = nullptr;
    TV_TRY(BuildGeneralName(kind, in, inLen, &built));
    OwnedValue guard(&desc::kGeneralName, built);
    return ListAppendT(kGeneralNamesFamily, names, guard);
}

extern "C" TV_API uint32_t AllocX509GeneralNameValue(GeneralName** outName, uint32_t kind, const uint8_t* in,
                                                     uint32_t inLen) {
    return BuildGeneralName(kind, in, inLen, outName);
}

extern "C" TV_API uint32_t GetX509GeneralName(const GeneralNames* names, uint32_t index, uint32_t* outKind, uint8_t* out,
                                              uint32_t* outLen) {
    if (!outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const GeneralName* name = nullptr;
    TV_TRY(ListElementT(kGeneralNamesFamily, names, index, &name));
    return ReadGeneralName(name, outKind, out, outLen);
}

extern "C" TV_API uint32_t GetX509GeneralNameValue(const GeneralName* name, uint32_t* outKind, uint8_t* out,
                                                   uint32_t* outLen) {
    if (!name || !outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadGeneralName(name, outKind, out, outLen);
}

extern "C" TV_API uint32_t GetX509NameFromGeneralNames(const GeneralNames* names, X509Name** outName) {
    if (!names || !outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!names->items || names->count == 0) return TV_FAIL(TV_ERR_NOT_FOUND);
    for (uint32_t i = 0; i < names->count; ++i) {
        auto* name = static_cast<const GeneralName*>(names->items[i]);
        if (!name || name->index != Index(desc::GeneralNameKind::kDirectoryName) || !name->value) continue;
        auto* element = static_cast<const Asn1Primitive*>(name->value);
        X509Name* decoded = nullptr;
        const uint32_t rc = DecodeX509Name(element->content, element->length, &decoded);
        if (rc == TV_OK) {
            *outName = decoded;
            return TV_OK;
        }
        // Undecodable directory names are passed over; running out of memory is not a verdict on them.
        if (rc == TV_ERR_NO_MEMORY) return rc;
    }
    return TV_FAIL(TV_ERR_NOT_FOUND);
}
