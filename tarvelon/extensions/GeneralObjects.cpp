// Standard extension values: scalar codecs, structures read into and written from separate fields,
// and the list-valued extensions built element by element.
#include "tarvelon/extensions/GeneralObjects.h"

#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(GeneralObjects)

namespace tv::desc {
namespace {

constexpr Asn1Descriptor kGeneralNamesValue = SequenceOf<&kGeneralName>();
constexpr Asn1Descriptor kNameValue = SequenceOf<&kRelativeDistinguishedName>();

// DistributionPointName ::= CHOICE {                                   (RFC 5280 4.2.1.13)
constexpr Asn1Descriptor kFullNameAlt = Implicit(0, kGeneralNamesValue);
constexpr Asn1Descriptor kRelativeNameAlt = Implicit(1, kNameValue);
constexpr auto kDistributionPointNameAlternatives = Slots<DistributionPointNameKind>({
        {DistributionPointNameKind::kFullName, &kFullNameAlt},                    // fullName                 [0] GeneralNames
        {DistributionPointNameKind::kNameRelativeToCrlIssuer, &kRelativeNameAlt}, // nameRelativeToCRLIssuer  [1] Name (whole RDNSequence)
    });

// A CHOICE under a context tag is tagged explicitly, even in an IMPLICIT TAGS module.
constexpr Asn1Descriptor kDistributionPointNameField = Optional(Explicit(0, Choice(kDistributionPointNameAlternatives)));
constexpr Asn1Descriptor kReasonFlagsField = Optional(Implicit(1, kBitString));
constexpr Asn1Descriptor kCrlIssuerField = Optional(Implicit(2, kGeneralNamesValue));

// DistributionPoint ::= SEQUENCE {                                     (RFC 5280 4.2.1.13)
constexpr auto kDistributionPointParts = Slots<DistributionPointSlot>({
        {DistributionPointSlot::kName, &kDistributionPointNameField}, // distributionPoint [0] DistributionPointName OPTIONAL
        {DistributionPointSlot::kReasons, &kReasonFlagsField},                           // reasons           [1] ReasonFlags OPTIONAL
        {DistributionPointSlot::kCrlIssuer, &kCrlIssuerField},                           // cRLIssuer         [2] GeneralNames OPTIONAL
    });

// AuthorityKeyIdentifier ::= SEQUENCE {                                (RFC 5280 4.2.1.1)
constexpr Asn1Descriptor kKeyIdentifierField = Optional(Implicit(0, kOctetString));
constexpr Asn1Descriptor kAuthorityCertIssuerField = Optional(Implicit(1, kGeneralNamesValue));
constexpr Asn1Descriptor kAuthorityCertSerialField = Optional(Implicit(2, kInteger));
constexpr auto kAuthorityKeyIdentifierParts = Slots<AuthorityKeyIdentifierSlot>({
        {AuthorityKeyIdentifierSlot::kKeyIdentifier, &kKeyIdentifierField},                   // keyIdentifier             [0] KeyIdentifier OPTIONAL
        {AuthorityKeyIdentifierSlot::kAuthorityCertIssuer, &kAuthorityCertIssuerField},       // authorityCertIssuer       [1] GeneralNames OPTIONAL
        {AuthorityKeyIdentifierSlot::kAuthorityCertSerialNumber, &kAuthorityCertSerialField}, // authorityCertSerialNumber [2] CertificateSerialNumber OPTIONAL
    });

// The flags of an issuing distribution point: BOOLEAN DEFAULT FALSE under a context tag.
template <int32_t Tag>
constexpr Asn1Descriptor kFlag = Optional(Implicit(Tag, kBoolean), &kFalseValue);

// IssuingDistributionPoint ::= SEQUENCE {                              (RFC 5280 5.2.5, reasons re-tagged)
// The reasons are written and read under [1], the tag of onlyContainsUserCerts, where RFC 5280 has
// [3]: values issued with this tag exist and must keep reading back, so an element under [3] is not
// taken for the reasons.
constexpr auto kIssuingDistributionPointParts = Slots<IssuingDistributionPointSlot>({
        {IssuingDistributionPointSlot::kDistributionPoint, &kDistributionPointNameField}, // distributionPoint          [0] DistributionPointName OPTIONAL
        {IssuingDistributionPointSlot::kOnlyContainsUserCerts, &kFlag<1>},                   // onlyContainsUserCerts      [1] BOOLEAN DEFAULT FALSE
        {IssuingDistributionPointSlot::kOnlyContainsCaCerts, &kFlag<2>},                     // onlyContainsCACerts        [2] BOOLEAN DEFAULT FALSE
        {IssuingDistributionPointSlot::kOnlySomeReasons, &kReasonFlagsField},                // onlySomeReasons            [1] ReasonFlags OPTIONAL
        {IssuingDistributionPointSlot::kIndirectCrl, &kFlag<4>},                             // indirectCRL                [4] BOOLEAN DEFAULT FALSE
        {IssuingDistributionPointSlot::kOnlyContainsAttributeCerts, &kFlag<5>},              // onlyContainsAttributeCerts [5] BOOLEAN DEFAULT FALSE
    });

// The same layout read when the first element after the name is the reasons: DER leaves a FALSE
// user-certificates flag out, so its slot matches nothing (a private tag never written here) and
// takes the default, and the [1] element reaches the reasons.
constexpr Asn1Descriptor kFlagNotPresent = [] {
    Asn1Descriptor d = kFlag<1>;
    d.tagClass = ASN1_CLASS_PRIVATE;
    return d;
}();
constexpr auto kReasonsFirstParts = Slots<IssuingDistributionPointSlot>({
        {IssuingDistributionPointSlot::kDistributionPoint, &kDistributionPointNameField},
        {IssuingDistributionPointSlot::kOnlyContainsUserCerts, &kFlagNotPresent},
        {IssuingDistributionPointSlot::kOnlyContainsCaCerts, &kFlag<2>},
        {IssuingDistributionPointSlot::kOnlySomeReasons, &kReasonFlagsField},
        {IssuingDistributionPointSlot::kIndirectCrl, &kFlag<4>},
        {IssuingDistributionPointSlot::kOnlyContainsAttributeCerts, &kFlag<5>},
    });

// AccessDescription ::= SEQUENCE {                                     (RFC 5280 4.2.2.1)
constexpr auto kAccessDescriptionParts = Slots<AccessDescriptionSlot>({
        {AccessDescriptionSlot::kAccessMethod, &kOid},            // accessMethod    OBJECT IDENTIFIER
        {AccessDescriptionSlot::kAccessLocation, &kGeneralName},  // accessLocation  GeneralName
    });

// PolicyQualifierInfo ::= SEQUENCE {                                   (RFC 5280 4.2.1.4)
constexpr Asn1Descriptor kOptionalAny = Optional(kAny);
constexpr auto kPolicyQualifierInfoParts = Slots<PolicyQualifierInfoSlot>({
        {PolicyQualifierInfoSlot::kPolicyQualifierId, &kOid},    // policyQualifierId  PolicyQualifierId
        {PolicyQualifierInfoSlot::kQualifier, &kOptionalAny},    // qualifier          ANY DEFINED BY policyQualifierId (absent when not given)
    });

}  // namespace

constinit const Asn1Descriptor kDistributionPointName = Choice(kDistributionPointNameAlternatives);
constinit const Asn1Descriptor kDistributionPoint = Sequence(kDistributionPointParts);
// CRLDistributionPoints ::= SEQUENCE SIZE (1..MAX) OF DistributionPoint
constinit const Asn1Descriptor kCrlDistributionPoints = SequenceOf<&kDistributionPoint>();
constinit const Asn1Descriptor kAuthorityKeyIdentifier = Sequence(kAuthorityKeyIdentifierParts);
constinit const Asn1Descriptor kIssuingDistributionPoint = Sequence(kIssuingDistributionPointParts);
constinit const Asn1Descriptor kAccessDescription = Sequence(kAccessDescriptionParts);
// AuthorityInfoAccessSyntax ::= SEQUENCE SIZE (1..MAX) OF AccessDescription
constinit const Asn1Descriptor kAuthorityInformationAccess = SequenceOf<&kAccessDescription>();
constinit const Asn1Descriptor kPolicyQualifierInfo = Sequence(kPolicyQualifierInfoParts);
// policyQualifiers SEQUENCE SIZE (1..MAX) OF PolicyQualifierInfo
constinit const Asn1Descriptor kPolicyQualifiers = SequenceOf<&kPolicyQualifierInfo>();

namespace {
constexpr Asn1Descriptor kPolicyQualifiersField = Optional(SequenceOf<&kPolicyQualifierInfo>());
// PolicyInformation ::= SEQUENCE {                                     (RFC 5280 4.2.1.4)
constexpr auto kPolicyInformationParts = Slots<PolicyInformationSlot>({
        {PolicyInformationSlot::kPolicyIdentifier, &kOid},                       // policyIdentifier  CertPolicyId
        {PolicyInformationSlot::kPolicyQualifiers, &kPolicyQualifiersField}, // policyQualifiers  SEQUENCE SIZE (1..MAX) OF PolicyQualifierInfo OPTIONAL
    });
}  // namespace

constinit const Asn1Descriptor kPolicyInformation = Sequence(kPolicyInformationParts);
// certificatePolicies ::= SEQUENCE SIZE (1..MAX) OF PolicyInformation
constinit const Asn1Descriptor kCertificatePolicies = SequenceOf<&kPolicyInformation>();
// ExtKeyUsageSyntax ::= SEQUENCE SIZE (1..MAX) OF KeyPurposeId
constinit const Asn1Descriptor kExtendedKeyUsage = SequenceOf<&kOid>();

namespace {

// BasicConstraints ::= SEQUENCE {                                      (RFC 5280 4.2.1.9)
enum class BasicConstraintsSlot : uint32_t { kCa, kPathLenConstraint, kCount };
constexpr Asn1Descriptor kOptionalInteger = Optional(kInteger);
constexpr auto kBasicConstraintsParts = Slots<BasicConstraintsSlot>({
        {BasicConstraintsSlot::kCa, &kBooleanDefaultFalse},             // cA                 BOOLEAN DEFAULT FALSE
        {BasicConstraintsSlot::kPathLenConstraint, &kOptionalInteger},  // pathLenConstraint  INTEGER (0..MAX) OPTIONAL
    });
constinit const Asn1Descriptor kBasicConstraints = Sequence(kBasicConstraintsParts);

// PrivateKeyUsagePeriod ::= SEQUENCE {                                 (RFC 3280 4.2.1.4)
enum class PrivateKeyUsagePeriodSlot : uint32_t { kNotBefore, kNotAfter, kCount };
constexpr Asn1Descriptor kNotBeforeField = Optional(Implicit(0, kGeneralizedTime));
constexpr Asn1Descriptor kNotAfterField = Optional(Implicit(1, kGeneralizedTime));
constexpr auto kPrivateKeyUsagePeriodParts = Slots<PrivateKeyUsagePeriodSlot>({
        {PrivateKeyUsagePeriodSlot::kNotBefore, &kNotBeforeField},  // notBefore  [0] GeneralizedTime OPTIONAL
        {PrivateKeyUsagePeriodSlot::kNotAfter, &kNotAfterField},    // notAfter   [1] GeneralizedTime OPTIONAL
    });
constinit const Asn1Descriptor kPrivateKeyUsagePeriod = Sequence(kPrivateKeyUsagePeriodParts);

// IssuerSignTool ::= SEQUENCE {           (Russian qualified certificates, 1.2.643.100.112)
enum class IssuerSignToolSlot : uint32_t { kSignTool, kCaTool, kSignToolCert, kCaToolCert, kCount };
constexpr auto kIssuerSignToolParts = Slots<IssuerSignToolSlot>({
    {IssuerSignToolSlot::kSignTool, &kUtf8String},      // signTool      UTF8String
    {IssuerSignToolSlot::kCaTool, &kUtf8String},        // cATool        UTF8String
    {IssuerSignToolSlot::kSignToolCert, &kUtf8String},  // signToolCert  UTF8String
    {IssuerSignToolSlot::kCaToolCert, &kUtf8String},    // cAToolCert    UTF8String
});
constinit const Asn1Descriptor kIssuerSignTool = Sequence(kIssuerSignToolParts);

constinit const Asn1Descriptor kIssuingDistributionPointReasonsFirst = Sequence(kReasonsFirstParts);

}  // namespace
}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kCrlDistributionPointsFamily{&desc::kCrlDistributionPoints, Module::GeneralObjects, 0};
constinit const Family kExtendedKeyUsageFamily{&desc::kExtendedKeyUsage, Module::GeneralObjects, 0};
constinit const Family kAuthorityInformationAccessFamily{&desc::kAuthorityInformationAccess, Module::GeneralObjects, 0};
constinit const Family kCertificatePoliciesFamily{&desc::kCertificatePolicies, Module::GeneralObjects, 0};
constinit const Family kPolicyQualifiersFamily{&desc::kPolicyQualifiers, Module::GeneralObjects, 0};

void** SlotsOf(void* sequence) { return static_cast<void**>(sequence); }

const Asn1Primitive* Leaf(const void* value) { return static_cast<const Asn1Primitive*>(value); }

// ---- scalars ------------------------------------------------------------------------------------

// One primitive over the caller's octets; the leaf borrows them, nothing is copied before the write.
// Named bits: the BIT STRING element of a flag word, and the flag word of a decoded one.
uint32_t EncodeFlags(uint32_t flags, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1BitStringValue bits{};
    TV_TRY(SetBitStringFromFlags(&bits, flags));
    HeapBytes contents(bits.content);
    return EncodeSized(TV_SITE, &bits, &desc::kBitString, out, outLen);
}

uint32_t DecodeFlags(const uint8_t* in, uint32_t inLen, uint32_t* outFlags) {
    if (!outFlags) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outFlags = 0;
    OwnedValue value(&desc::kBitString);
    TV_TRY(DecodeValue(desc::kBitString, in, inLen, value));
    *outFlags = FlagsFromBitString(value.as<Asn1BitStringValue>());
    return TV_OK;
}

// A fresh BIT STRING value in `*slot` for a flag word.
uint32_t StoreFlags(void** slot, uint32_t flags) {
    OwnedValue bits(&desc::kBitString, New<Asn1BitStringValue>());
    if (!bits.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetBitStringFromFlags(bits.as<Asn1BitStringValue>(), flags));
    *slot = bits.Release();
    return TV_OK;
}

uint32_t StoreBoolean(void** slot, bool flag) {
    const uint8_t octet = flag ? 0xFF : 0x00;
    return SetOrCreatePrimitive(slot, ASN1_BOOLEAN, &octet, 1);
}

// The raw octet of a decoded BOOLEAN (the decoder has filled absent ones with their default).
uint8_t BooleanOctet(const void* value) {
    const Asn1Primitive* b = Leaf(value);
    return (b && b->length >= 1) ? b->content[0] : 0x00;
}

uint32_t StoreOid(void** slot, const uint8_t* packed) {
    if (!packed) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *slot = NewPrimitive(ASN1_OBJECT_IDENTIFIER, packed + 1, packed[0]);
    if (!*slot) return TV_FAIL(TV_ERR_NO_MEMORY);
    return TV_OK;
}

uint32_t NewSequence(const Asn1Descriptor& d, OwnedValue& out) { return CreateAsn1Object(&d, out.Out(), 0); }

// ---- distribution points --------------------------------------------------------------------------

// The [0] name of a distribution point over a copy of whichever name is given, general names first.
uint32_t StoreNameCopy(void** slot, const GeneralNames* fullName, const X509Name* relativeName) {
    const bool full = fullName != nullptr;
    const Asn1Descriptor* d = full ? &desc::kGeneralNames : &desc::kX509Name;
    OwnedValue copy(d);
    TV_TRY(CopyValue(d, full ? static_cast<const void*>(fullName) : relativeName, copy.Out()));
    Asn1ChoiceValue* choice = nullptr;
    TV_TRY(NewChoice(Index(full ? desc::DistributionPointNameKind::kFullName : desc::DistributionPointNameKind::kNameRelativeToCrlIssuer), copy.get(), &choice));
    copy.Release();
    *slot = choice;
    return TV_OK;
}

// Reads the [0] name of a distribution point: 306 for an alternative that is neither name.
uint32_t ReadDistributionPointName(const void* slot, void** outFullName, void** outRelativeName) {
    *outFullName = nullptr;
    *outRelativeName = nullptr;
    if (!slot) return TV_OK;
    auto* choice = static_cast<const Asn1ChoiceValue*>(slot);
    if (choice->index == Index(desc::DistributionPointNameKind::kFullName)) *outFullName = choice->value;
    else if (choice->index == Index(desc::DistributionPointNameKind::kNameRelativeToCrlIssuer)) *outRelativeName = choice->value;
    else return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    return TV_OK;
}

// Appends an element whose listed slots hold trees the caller handed over. Ownership passes only
// on success: after a failure the caller still owns them, so they leave the element before the
// guard frees it.
template <size_t N>
uint32_t AppendAdopting(const Family& f, Asn1List* list, OwnedValue& element, void** const (&adopted)[N]) {
    if (const uint32_t rc = ListAppendT(f, list, element); rc != TV_OK) {
        for (void** slot : adopted)
            if (slot) *slot = nullptr;
        return rc;
    }
    return TV_OK;
}

// The first element after the optional [0] name of an issuing distribution point is a [1]. It is
// the user-certificates flag when it holds TRUE, or a BER FALSE that another [1] follows; anything
// else under [1] is the reasons (a FALSE flag is never written in DER).
bool ReasonsComeFirst(const uint8_t* in, uint32_t inLen) {
    Header outer;
    if (ParseHeader(in, inLen, &outer) != TV_OK || outer.indefinite) return false;
    const uint8_t* p = in + outer.headerLen;
    size_t left = std::min<size_t>(outer.contentLen, inLen - outer.headerLen);
    auto next = [&](Header* h) {
        if (left == 0 || ParseHeader(p, left, h) != TV_OK || h->indefinite) return false;
        return uint64_t{h->headerLen} + h->contentLen <= left;
    };
    auto skip = [&](const Header& h) {
        p += h.headerLen + h.contentLen;
        left -= h.headerLen + h.contentLen;
    };
    Header h;
    if (!next(&h)) return false;
    if (h.tagClass == ASN1_CLASS_CONTEXT && h.tag == 0) {
        skip(h);
        if (!next(&h)) return false;
    }
    if (h.tagClass != ASN1_CLASS_CONTEXT || h.tag != 1 || h.constructed) return false;
    const uint8_t* content = p + h.headerLen;
    if (h.contentLen == 1 && content[0] == 0xFF) return false;
    if (h.contentLen == 1 && content[0] == 0x00) {
        skip(h);
        Header following;
        return !(next(&following) && following.tagClass == ASN1_CLASS_CONTEXT && following.tag == 1);
    }
    return true;
}

// ---- certificate policies ------------------------------------------------------------------------

uint32_t PolicyAt(const Asn1List* list, uint32_t index, void** outPolicy) {
    return ListElementT(kCertificatePoliciesFamily, list, index, outPolicy);
}

// The qualifier list of a policy and one of its records: 32 without a list or past its end.
uint32_t QualifierAt(const Asn1List* list, uint32_t policyIndex, uint32_t qualifierIndex, void** outQualifier) {
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, policyIndex, &policy));
    auto* qualifiers = static_cast<const Asn1List*>(Slot(policy, desc::PolicyInformationSlot::kPolicyQualifiers));
    if (!qualifiers) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ListElementT(kPolicyQualifiersFamily, qualifiers, qualifierIndex, outQualifier);
}

}  // namespace

uint32_t EncodeScalar(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) noexcept {
    if ((!in && inLen) || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1Primitive leaf{d.typeCode, inLen, const_cast<uint8_t*>(in)};
    return EncodeSized(TV_SITE, &leaf, &d, out, outLen);
}

uint32_t DecodeValue(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, OwnedValue& value) noexcept {
    if (!in || inLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(Asn1DecodeItem(in, inLen, &d, value.Out(), nullptr));
    if (!value.get()) return TV_FAIL(TV_ERR_ABSENT);
    return TV_OK;
}

uint32_t DecodeScalar(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) noexcept {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&d);
    TV_TRY(DecodeValue(d, in, inLen, value));
    return PutBytes(TV_SITE, value.as<Asn1Primitive>()->content, value.as<Asn1Primitive>()->length, out, outLen);
}

uint32_t FlagsFromBitString(const Asn1BitStringValue* bits) noexcept {
    if (!bits || !bits->content) return 0;
    uint8_t octets[4] = {};
    const uint32_t n = bits->length < 4 ? bits->length : 4;
    std::memcpy(octets, bits->content, n);
    // Padding bits may arrive set in BER; they are not flags.
    if (n == bits->length && n > 0) octets[n - 1] = static_cast<uint8_t>((octets[n - 1] >> bits->unusedBits) << bits->unusedBits);
    return uint32_t{octets[0]} | uint32_t{octets[1]} << 8 | uint32_t{octets[2]} << 16 | uint32_t{octets[3]} << 24;
}

}  // namespace tv

using namespace tv;

// ---- scalar codecs ----------------------------------------------------------------------------------

TV_EXTENSION_SCALAR_CODEC(OcspNonce, desc::kOctetString)
TV_EXTENSION_SCALAR_CODEC(CrlNumber, desc::kInteger)
TV_EXTENSION_SCALAR_CODEC(DeltaCrlIndicator, desc::kInteger)
TV_EXTENSION_SCALAR_CODEC(SubjectSignTool, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(Snils, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(SubjectKeyIdentifier, desc::kOctetString)

extern "C" TV_API uint32_t EncodeExtensionKeyUsage(uint32_t bits, uint8_t* out, uint32_t* outLen) {
    return EncodeFlags(bits, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionKeyUsage(const uint8_t* in, uint32_t inLen, uint32_t* outBits) {
    return DecodeFlags(in, inLen, outBits);
}

extern "C" TV_API uint32_t EncodeExtensionNetscapeCertificateType(uint32_t bits, uint8_t* out, uint32_t* outLen) {
    return EncodeFlags(bits, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionNetscapeCertificateType(const uint8_t* in, uint32_t inLen, uint32_t* outBits) {
    return DecodeFlags(in, inLen, outBits);
}

// The number is taken as a 32-bit two's-complement value, as the decoder gives it back.
extern "C" TV_API uint32_t EncodeExtensionReasonCode(uint32_t reason, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1Primitive leaf{};
    TV_TRY(SetAsn1Int32(&leaf, static_cast<int32_t>(reason)));
    HeapBytes contents(leaf.content);
    leaf.word = ASN1_ENUMERATED;
    return EncodeSized(TV_SITE, &leaf, &desc::kEnumerated, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionReasonCode(const uint8_t* in, uint32_t inLen, uint32_t* outReason) {
    if (!outReason) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kEnumerated);
    TV_TRY(DecodeValue(desc::kEnumerated, in, inLen, value));
    uint8_t number[4] = {};
    TV_TRY(GetAsn1Int32(value.as<Asn1Primitive>(), number));
    *outReason = uint32_t{number[0]} | uint32_t{number[1]} << 8 | uint32_t{number[2]} << 16 | uint32_t{number[3]} << 24;
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    if (!time || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&desc::kGeneralizedTime);
    TV_TRY(SetGeneralizedTimeLeaf(leaf.Out(), time));
    return EncodeSized(TV_SITE, leaf.get(), &desc::kGeneralizedTime, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionInvalidityDate(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&desc::kGeneralizedTime);
    TV_TRY(DecodeValue(desc::kGeneralizedTime, in, inLen, leaf));
    return GetTimeFromGeneralizedTimeLeaf(leaf.get(), outTime);
}

// ---- structures -------------------------------------------------------------------------------------

// No consistency rule between the two fields: a path length with cA false is written as given.
extern "C" TV_API uint32_t EncodeExtensionBasicConstraints(int cA, uint32_t pathLen, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kBasicConstraints);
    TV_TRY(NewSequence(desc::kBasicConstraints, value));
    void** slots = SlotsOf(value.get());
    TV_TRY(StoreBoolean(&Slot(slots, desc::BasicConstraintsSlot::kCa), cA != 0));
    if (pathLen != 0xFFFFFFFFu) {
        OwnedValue number(&desc::kInteger, New<Asn1Primitive>());
        if (!number.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
        const uint8_t le[5] = {uint8_t(pathLen), uint8_t(pathLen >> 8), uint8_t(pathLen >> 16), uint8_t(pathLen >> 24), 0};
        TV_TRY(SetAsn1Integer(number.as<Asn1Primitive>(), le, 5));  // unsigned: a top bit gets a 00 octet
        Slot(slots, desc::BasicConstraintsSlot::kPathLenConstraint) = number.Release();
    }
    return EncodeSized(TV_SITE, value.get(), &desc::kBasicConstraints, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionBasicConstraints(const uint8_t* in, uint32_t inLen, uint8_t* outCa,
                                                           uint32_t* outPathLen) {
    if (!outCa || !outPathLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kBasicConstraints);
    TV_TRY(DecodeValue(desc::kBasicConstraints, in, inLen, value));
    void* const* slots = SlotsOf(value.get());
    uint32_t pathLen = 0xFFFFFFFFu;
    if (const Asn1Primitive* number = Leaf(Slot(slots, desc::BasicConstraintsSlot::kPathLenConstraint))) {
        uint8_t le[4] = {};
        TV_TRY(GetAsn1Int32(number, le));
        pathLen = uint32_t{le[0]} | uint32_t{le[1]} << 8 | uint32_t{le[2]} << 16 | uint32_t{le[3]} << 24;
    }
    *outCa = BooleanOctet(Slot(slots, desc::BasicConstraintsSlot::kCa));
    *outPathLen = pathLen;
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyId, uint32_t keyIdLen,
                                                                 const GeneralNames* issuer, const uint8_t* serial,
                                                                 uint32_t serialLen, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kAuthorityKeyIdentifier);
    TV_TRY(NewSequence(desc::kAuthorityKeyIdentifier, value));
    void** slots = SlotsOf(value.get());
    if (keyId) TV_TRY(SetOrCreatePrimitive(&Slot(slots, desc::AuthorityKeyIdentifierSlot::kKeyIdentifier), ASN1_OCTET_STRING, keyId, keyIdLen));
    if (issuer) TV_TRY(CopyValue(&desc::kGeneralNames, issuer, &Slot(slots, desc::AuthorityKeyIdentifierSlot::kAuthorityCertIssuer)));
    if (serial) TV_TRY(SetOrCreatePrimitive(&Slot(slots, desc::AuthorityKeyIdentifierSlot::kAuthorityCertSerialNumber), ASN1_INTEGER, serial, serialLen));
    return EncodeSized(TV_SITE, value.get(), &desc::kAuthorityKeyIdentifier, out, outLen);
}

// The issuer copy goes to the caller only with a success: a call answered 49 (typically a size
// query with one short buffer) leaves nothing to free.
extern "C" TV_API uint32_t DecodeExtensionAuthorityKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* outKeyId,
                                                                 uint32_t* outKeyIdLen, GeneralNames** outIssuer,
                                                                 uint8_t* outSerial, uint32_t* outSerialLen) {
    if (!in || inLen == 0 || !outKeyIdLen || !outSerialLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (outIssuer) *outIssuer = nullptr;
    OwnedValue value(&desc::kAuthorityKeyIdentifier);
    TV_TRY(DecodeValue(desc::kAuthorityKeyIdentifier, in, inLen, value));
    void* const* slots = SlotsOf(value.get());
    auto octets = [](const void* slot, uint8_t* out, uint32_t* outLen) -> uint32_t {
        if (!slot) {
            *outLen = 0;
            return TV_OK;
        }
        return PutBytes(TV_SITE, Leaf(slot)->content, Leaf(slot)->length, out, outLen);
    };
    const uint32_t keyRc = octets(Slot(slots, desc::AuthorityKeyIdentifierSlot::kKeyIdentifier), outKeyId, outKeyIdLen);
    OwnedValue issuer(&desc::kGeneralNames);
    uint32_t issuerRc = TV_OK;
    if (outIssuer && Slot(slots, desc::AuthorityKeyIdentifierSlot::kAuthorityCertIssuer))
        issuerRc = CopyValue(&desc::kGeneralNames, Slot(slots, desc::AuthorityKeyIdentifierSlot::kAuthorityCertIssuer), issuer.Out());
    const uint32_t serialRc = octets(Slot(slots, desc::AuthorityKeyIdentifierSlot::kAuthorityCertSerialNumber), outSerial, outSerialLen);
    if (keyRc != TV_OK) return keyRc;
    if (issuerRc != TV_OK) return issuerRc;
    if (serialRc != TV_OK) return serialRc;
    if (outIssuer) *outIssuer = static_cast<GeneralNames*>(issuer.Release());
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter,
                                                                uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kPrivateKeyUsagePeriod);
    TV_TRY(NewSequence(desc::kPrivateKeyUsagePeriod, value));
    void** slots = SlotsOf(value.get());
    if (notBefore) TV_TRY(SetGeneralizedTimeLeaf(&Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotBefore), notBefore));
    if (notAfter) TV_TRY(SetGeneralizedTimeLeaf(&Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotAfter), notAfter));
    return EncodeSized(TV_SITE, value.get(), &desc::kPrivateKeyUsagePeriod, out, outLen);
}

// An absent part reads as the null time, the all-zero record.
extern "C" TV_API uint32_t DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* in, uint32_t inLen,
                                                                LibraryTime* outNotBefore, LibraryTime* outNotAfter) {
    if (!outNotBefore || !outNotAfter) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kPrivateKeyUsagePeriod);
    TV_TRY(DecodeValue(desc::kPrivateKeyUsagePeriod, in, inLen, value));
    void* const* slots = SlotsOf(value.get());
    *outNotBefore = LibraryTime{};
    *outNotAfter = LibraryTime{};
    if (Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotBefore)) TV_TRY(GetTimeFromGeneralizedTimeLeaf(Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotBefore), outNotBefore));
    if (Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotAfter)) TV_TRY(GetTimeFromGeneralizedTimeLeaf(Slot(slots, desc::PrivateKeyUsagePeriodSlot::kNotAfter), outNotAfter));
    return TV_OK;
}

extern "C" TV_API uint32_t EncodeExtensionIssuerSignTool(const uint8_t* signTool, uint32_t signToolLen,
                                                         const uint8_t* caTool, uint32_t caToolLen,
                                                         const uint8_t* signToolCert, uint32_t signToolCertLen,
                                                         const uint8_t* caToolCert, uint32_t caToolCertLen, uint8_t* out,
                                                         uint32_t* outLen) {
    if (!signTool || !caTool || !signToolCert || !caToolCert || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // The leaves borrow the caller's texts for the one write.
    Asn1Primitive texts[SlotCount<desc::IssuerSignToolSlot>] = {
        {ASN1_UTF8_STRING, signToolLen, const_cast<uint8_t*>(signTool)},
        {ASN1_UTF8_STRING, caToolLen, const_cast<uint8_t*>(caTool)},
        {ASN1_UTF8_STRING, signToolCertLen, const_cast<uint8_t*>(signToolCert)},
        {ASN1_UTF8_STRING, caToolCertLen, const_cast<uint8_t*>(caToolCert)},
    };
    void* slots[SlotCount<desc::IssuerSignToolSlot>] = {&texts[0], &texts[1], &texts[2], &texts[3]};
    return EncodeSized(TV_SITE, slots, &desc::kIssuerSignTool, out, outLen);
}

// Every text is attempted; of several failures the last text's code wins.
extern "C" TV_API uint32_t DecodeExtensionIssuerSignTool(const uint8_t* in, uint32_t inLen, uint8_t* outSignTool,
                                                         uint32_t* outSignToolLen, uint8_t* outCaTool,
                                                         uint32_t* outCaToolLen, uint8_t* outSignToolCert,
                                                         uint32_t* outSignToolCertLen, uint8_t* outCaToolCert,
                                                         uint32_t* outCaToolCertLen) {
    if (!outSignToolLen || !outCaToolLen || !outSignToolCertLen || !outCaToolCertLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kIssuerSignTool);
    TV_TRY(DecodeValue(desc::kIssuerSignTool, in, inLen, value));
    void* const* slots = SlotsOf(value.get());
    struct Output {
        desc::IssuerSignToolSlot slot;
        uint8_t* out;
        uint32_t* outLen;
    } outputs[] = {{desc::IssuerSignToolSlot::kSignTool, outSignTool, outSignToolLen},
                   {desc::IssuerSignToolSlot::kCaTool, outCaTool, outCaToolLen},
                   {desc::IssuerSignToolSlot::kSignToolCert, outSignToolCert, outSignToolCertLen},
                   {desc::IssuerSignToolSlot::kCaToolCert, outCaToolCert, outCaToolCertLen}};
    uint32_t result = TV_OK;
    for (const Output& o : outputs) {
        const Asn1Primitive* text = Leaf(Slot(slots, o.slot));
        if (const uint32_t rc = PutBytes(TV_SITE, text->content, text->length, o.out, o.outLen); rc != TV_OK) result = rc;
    }
    return result;
}

extern "C" TV_API uint32_t EncodeExtensionIssuingDistributionPoint(
    const GeneralNames* fullName, const X509Name* relativeName, uint32_t onlyUserCerts, uint32_t onlyUserCertsPresent,
    uint32_t onlyCaCerts, uint32_t onlyCaCertsPresent, uint32_t reasons, uint32_t reasonsPresent, uint32_t indirectCrl,
    uint32_t indirectCrlPresent, uint32_t onlyAttributeCerts, uint32_t onlyAttributeCertsPresent, uint8_t* out,
    uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kIssuingDistributionPoint);
    TV_TRY(NewSequence(desc::kIssuingDistributionPoint, value));
    void** slots = SlotsOf(value.get());
    if (fullName || relativeName) TV_TRY(StoreNameCopy(&Slot(slots, desc::IssuingDistributionPointSlot::kDistributionPoint), fullName, relativeName));
    // A flag given as FALSE is stored all the same; the DEFAULT leaves it out of the DER.
    const struct {
        desc::IssuingDistributionPointSlot slot;
        uint32_t flag, present;
    } flags[] = {{desc::IssuingDistributionPointSlot::kOnlyContainsUserCerts, onlyUserCerts, onlyUserCertsPresent},
                 {desc::IssuingDistributionPointSlot::kOnlyContainsCaCerts, onlyCaCerts, onlyCaCertsPresent},
                 {desc::IssuingDistributionPointSlot::kIndirectCrl, indirectCrl, indirectCrlPresent},
                 {desc::IssuingDistributionPointSlot::kOnlyContainsAttributeCerts, onlyAttributeCerts, onlyAttributeCertsPresent}};
    for (const auto& f : flags)
        if (f.present) TV_TRY(StoreBoolean(&Slot(slots, f.slot), f.flag != 0));
    if (reasonsPresent) TV_TRY(StoreFlags(&Slot(slots, desc::IssuingDistributionPointSlot::kOnlySomeReasons), reasons));
    return EncodeSized(TV_SITE, value.get(), &desc::kIssuingDistributionPoint, out, outLen);
}

// The two names come back as copies owned by the caller (null when absent), freed with
// FreeX509GeneralNames and FreeX509Name: the decoded tree is gone when this returns, so a reference
// into it would dangle.
extern "C" TV_API uint32_t DecodeExtensionIssuingDistributionPoint(
    const uint8_t* in, uint32_t inLen, GeneralNames** outFullName, X509Name** outRelativeName, uint8_t* outOnlyUserCerts,
    uint32_t* outOnlyUserCertsPresent, uint8_t* outOnlyCaCerts, uint32_t* outOnlyCaCertsPresent, uint32_t* outReasons,
    uint32_t* outReasonsPresent, uint8_t* outIndirectCrl, uint32_t* outIndirectCrlPresent, uint8_t* outOnlyAttributeCerts,
    uint32_t* outOnlyAttributeCertsPresent) {
    if (!outFullName || !outRelativeName || !outOnlyUserCerts || !outOnlyUserCertsPresent || !outOnlyCaCerts ||
        !outOnlyCaCertsPresent || !outReasons || !outReasonsPresent || !outIndirectCrl || !outIndirectCrlPresent ||
        !outOnlyAttributeCerts || !outOnlyAttributeCertsPresent)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outFullName = nullptr;
    *outRelativeName = nullptr;
    if (!in || inLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Asn1Descriptor& d =
        ReasonsComeFirst(in, inLen) ? desc::kIssuingDistributionPointReasonsFirst : desc::kIssuingDistributionPoint;
    OwnedValue value(&d);
    TV_TRY(DecodeValue(d, in, inLen, value));
    void* const* slots = SlotsOf(value.get());
    void* fullName = nullptr;
    void* relativeName = nullptr;
    TV_TRY(ReadDistributionPointName(Slot(slots, desc::IssuingDistributionPointSlot::kDistributionPoint), &fullName, &relativeName));
    OwnedValue fullCopy(&desc::kGeneralNames);
    OwnedValue relativeCopy(&desc::kX509Name);
    if (fullName) TV_TRY(CopyValue(&desc::kGeneralNames, fullName, fullCopy.Out()));
    if (relativeName) TV_TRY(CopyValue(&desc::kX509Name, relativeName, relativeCopy.Out()));
    *outOnlyUserCerts = BooleanOctet(Slot(slots, desc::IssuingDistributionPointSlot::kOnlyContainsUserCerts));
    *outOnlyCaCerts = BooleanOctet(Slot(slots, desc::IssuingDistributionPointSlot::kOnlyContainsCaCerts));
    *outIndirectCrl = BooleanOctet(Slot(slots, desc::IssuingDistributionPointSlot::kIndirectCrl));
    *outOnlyAttributeCerts = BooleanOctet(Slot(slots, desc::IssuingDistributionPointSlot::kOnlyContainsAttributeCerts));
    // Absent flags were filled with their default, so each is present after a decode.
    *outOnlyUserCertsPresent = *outOnlyCaCertsPresent = *outIndirectCrlPresent = *outOnlyAttributeCertsPresent = 1;
    const auto* reasons = static_cast<const Asn1BitStringValue*>(Slot(slots, desc::IssuingDistributionPointSlot::kOnlySomeReasons));
    *outReasons = FlagsFromBitString(reasons);
    *outReasonsPresent = reasons ? 1 : 0;
    *outFullName = static_cast<GeneralNames*>(fullCopy.Release());
    *outRelativeName = static_cast<X509Name*>(relativeCopy.Release());
    return TV_OK;
}

// ---- CRL distribution points ---------------------------------------------------------------------


extern "C" TV_API uint32_t AddExtensionCrlDistributionPoint(CrlDistributionPoints* list, GeneralNames* fullName,
                                                            X509Name* relativeName, uint32_t reasons,
                                                            GeneralNames* crlIssuer) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!fullName && !relativeName && !crlIssuer && reasons == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (fullName && relativeName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kDistributionPoint);
    TV_TRY(NewSequence(desc::kDistributionPoint, element));
    void** slots = SlotsOf(element.get());
    if (reasons) TV_TRY(StoreFlags(&Slot(slots, desc::DistributionPointSlot::kReasons), reasons));
    void** adoptedName = nullptr;
    if (fullName || relativeName) {
        Asn1ChoiceValue* choice = nullptr;
        TV_TRY(NewChoice(Index(fullName ? desc::DistributionPointNameKind::kFullName : desc::DistributionPointNameKind::kNameRelativeToCrlIssuer), nullptr, &choice));
        Slot(slots, desc::DistributionPointSlot::kName) = choice;
        choice->value = fullName ? static_cast<void*>(fullName) : relativeName;
        adoptedName = &choice->value;
    }
    Slot(slots, desc::DistributionPointSlot::kCrlIssuer) = crlIssuer;
    void** const adopted[] = {adoptedName, &Slot(slots, desc::DistributionPointSlot::kCrlIssuer)};
    return AppendAdopting(kCrlDistributionPointsFamily, list, element, adopted);
}

extern "C" TV_API uint32_t GetExtensionCrlDistributionPoint(const CrlDistributionPoints* list, uint32_t index,
                                                            GeneralNames** outFullName, X509Name** outRelativeName,
                                                            uint32_t* outReasons, GeneralNames** outCrlIssuer) {
    if (!outFullName || !outRelativeName || !outReasons || !outCrlIssuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outFullName = nullptr;
    *outRelativeName = nullptr;
    *outReasons = 0;
    *outCrlIssuer = nullptr;
    void* element = nullptr;
    TV_TRY(ListElementT(kCrlDistributionPointsFamily, list, index, &element));
    void* const* slots = SlotsOf(element);
    void* fullName = nullptr;
    void* relativeName = nullptr;
    TV_TRY(ReadDistributionPointName(Slot(slots, desc::DistributionPointSlot::kName), &fullName, &relativeName));
    *outFullName = static_cast<GeneralNames*>(fullName);
    *outRelativeName = static_cast<X509Name*>(relativeName);
    *outReasons = FlagsFromBitString(static_cast<const Asn1BitStringValue*>(Slot(slots, desc::DistributionPointSlot::kReasons)));
    *outCrlIssuer = static_cast<GeneralNames*>(Slot(slots, desc::DistributionPointSlot::kCrlIssuer));
    return TV_OK;
}

TV_EXTENSION_LIST_MEMBERS(CrlDistributionPoints, kCrlDistributionPointsFamily,
                          CrlDistributionPoints, CrlDistributionPoint, CrlDistributionPoints)



// ---- extended key usage -------------------------------------------------------------------------------


extern "C" TV_API uint32_t AddExtensionExtendedKeyUsage(ExtendedKeyUsage* list, const uint8_t* purposeOid) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kOid);
    TV_TRY(StoreOid(element.Out(), purposeOid));
    return ListAppendT(kExtendedKeyUsageFamily, list, element);
}

extern "C" TV_API uint32_t GetExtensionExtendedKeyUsage(const ExtendedKeyUsage* list, uint32_t index, uint8_t* outOid,
                                                        uint32_t* outOidLen) {
    const Asn1Primitive* purpose = nullptr;
    TV_TRY(ListElementT(kExtendedKeyUsageFamily, list, index, &purpose));
    return OidToPacked(purpose, outOid, outOidLen);
}

TV_EXTENSION_LIST_MEMBERS(ExtendedKeyUsage, kExtendedKeyUsageFamily,
                          ExtendedKeyUsage, ExtendedKeyUsage, ExtendedKeyUsage)



// ---- authority information access -------------------------------------------------------------------


extern "C" TV_API uint32_t AddExtensionAuthorityInformationAccess(AuthorityInformationAccess* list,
                                                                  const uint8_t* methodOid, GeneralName* location) {
    if (!list || !methodOid || !location) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kAccessDescription);
    TV_TRY(NewSequence(desc::kAccessDescription, element));
    void** slots = SlotsOf(element.get());
    TV_TRY(StoreOid(&Slot(slots, desc::AccessDescriptionSlot::kAccessMethod), methodOid));
    // The empty choice record made with the element gives way to the caller's name.
    FreeAsn1Object(&desc::kGeneralName, Slot(slots, desc::AccessDescriptionSlot::kAccessLocation));
    Slot(slots, desc::AccessDescriptionSlot::kAccessLocation) = location;
    void** const adopted[] = {&Slot(slots, desc::AccessDescriptionSlot::kAccessLocation)};
    return AppendAdopting(kAuthorityInformationAccessFamily, list, element, adopted);
}

extern "C" TV_API uint32_t GetExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint32_t index,
                                                                  uint8_t* outOid, uint32_t* outOidLen,
                                                                  GeneralName** outLocation) {
    void* element = nullptr;
    TV_TRY(ListElementT(kAuthorityInformationAccessFamily, list, index, &element));
    void* const* slots = SlotsOf(element);
    if (!Slot(slots, desc::AccessDescriptionSlot::kAccessMethod)) return TV_FAIL(TV_ERR_ABSENT);
    TV_TRY(OidToPacked(Leaf(Slot(slots, desc::AccessDescriptionSlot::kAccessMethod)), outOid, outOidLen));
    if (outLocation) *outLocation = static_cast<GeneralName*>(Slot(slots, desc::AccessDescriptionSlot::kAccessLocation));
    return TV_OK;
}

TV_EXTENSION_LIST_MEMBERS(AuthorityInformationAccess, kAuthorityInformationAccessFamily,
                          AuthorityInformationAccess, AuthorityInformationAccess, AuthorityInformationAccess)



// ---- certificate policies -------------------------------------------------------------------------------


extern "C" TV_API uint32_t AddExtensionPolicyInformation(CertificatePolicies* list, const uint8_t* policyOid,
                                                         uint32_t* outIndex) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kPolicyInformation);
    TV_TRY(NewSequence(desc::kPolicyInformation, element));
    TV_TRY(StoreOid(&Slot(element.get(), desc::PolicyInformationSlot::kPolicyIdentifier), policyOid));
    TV_TRY(ListAppendT(kCertificatePoliciesFamily, list, element));
    if (outIndex) *outIndex = list->count - 1;
    return TV_OK;
}

extern "C" TV_API uint32_t GetExtensionPolicyInformation(const CertificatePolicies* list, uint32_t index, uint8_t* outOid,
                                                         uint32_t* outOidLen) {
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, index, &policy));
    const Asn1Primitive* id = Leaf(Slot(policy, desc::PolicyInformationSlot::kPolicyIdentifier));
    if (!id) return TV_FAIL(TV_ERR_ABSENT);
    return OidToPacked(id, outOid, outOidLen);
}

TV_EXTENSION_LIST_MEMBERS(CertificatePolicies, kCertificatePoliciesFamily,
                          CertificatePolicies, PolicyInformation, PolicyInformation)



// The new qualifier record is what joins the policy's qualifier list (appending the policy record
// itself, as earlier releases did, would make the policy contain itself). The qualifier bytes must
// be one whole DER element, as they are written out unchanged.
extern "C" TV_API uint32_t AddExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex,
                                                       const uint8_t* qualifierOid, const uint8_t* in, uint32_t inLen) {
    if (!qualifierOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, policyIndex, &policy));
    OwnedValue qualifier(&desc::kPolicyQualifierInfo);
    TV_TRY(NewSequence(desc::kPolicyQualifierInfo, qualifier));
    void** slots = SlotsOf(qualifier.get());
    TV_TRY(StoreOid(&Slot(slots, desc::PolicyQualifierInfoSlot::kPolicyQualifierId), qualifierOid));
    if (in && inLen) {
        size_t total = 0;
        if (FindElementEnd(in, inLen, &total) != TV_OK || total != inLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        OwnedValue any(&desc::kAny, New<Asn1Primitive>());
        if (!any.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
        TV_TRY(SetAnyEncoding(any.as<Asn1Primitive>(), in, inLen));
        Slot(slots, desc::PolicyQualifierInfoSlot::kQualifier) = any.Release();
    }
    void** qualifiersSlot = &Slot(policy, desc::PolicyInformationSlot::kPolicyQualifiers);
    if (*qualifiersSlot) return ListAppendT(kPolicyQualifiersFamily, static_cast<Asn1List*>(*qualifiersSlot), qualifier);
    // The list is stored only once it holds the record, so a failure leaves the policy as it was.
    OwnedValue qualifiers(&desc::kPolicyQualifiers, ListCreate());
    if (!qualifiers.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(ListAppendT(kPolicyQualifiersFamily, qualifiers.as<Asn1List>(), qualifier));
    *qualifiersSlot = qualifiers.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetExtensionPolicyQualifiersCount(const CertificatePolicies* list, uint32_t policyIndex,
                                                             uint32_t* outCount) {
    if (!outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, policyIndex, &policy));
    auto* qualifiers = static_cast<const Asn1List*>(Slot(policy, desc::PolicyInformationSlot::kPolicyQualifiers));
    *outCount = qualifiers ? qualifiers->count : 0;
    return TV_OK;
}

// The OID is copied even when the qualifier's buffer is short; the OID's own 49 comes first.
extern "C" TV_API uint32_t GetExtensionPolicyQualifier(const CertificatePolicies* list, uint32_t policyIndex,
                                                       uint32_t qualifierIndex, uint8_t* outOid, uint32_t* outOidLen,
                                                       uint8_t* out, uint32_t* outLen) {
    if (!outOidLen || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* qualifier = nullptr;
    TV_TRY(QualifierAt(list, policyIndex, qualifierIndex, &qualifier));
    void* const* slots = SlotsOf(qualifier);
    if (!Slot(slots, desc::PolicyQualifierInfoSlot::kPolicyQualifierId)) return TV_FAIL(TV_ERR_ABSENT);
    const uint32_t oidRc = OidToPacked(Leaf(Slot(slots, desc::PolicyQualifierInfoSlot::kPolicyQualifierId)), outOid, outOidLen);
    const Asn1Primitive* any = Leaf(Slot(slots, desc::PolicyQualifierInfoSlot::kQualifier));
    const uint32_t anyRc = any ? PutBytes(TV_SITE, any->content, any->length, out, outLen)
                               : PutBytes(TV_SITE, nullptr, 0, out, outLen);
    return oidRc != TV_OK ? oidRc : anyRc;
}

// Removing the last qualifier drops the emptied list too: policyQualifiers has SIZE (1..MAX), so
// the policy is written without the field rather than with an empty SEQUENCE.
extern "C" TV_API uint32_t RemoveExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex,
                                                          uint32_t qualifierIndex) {
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, policyIndex, &policy));
    void** qualifiersSlot = &Slot(policy, desc::PolicyInformationSlot::kPolicyQualifiers);
    auto* qualifiers = static_cast<Asn1List*>(*qualifiersSlot);
    if (!qualifiers) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(ListRemoveT(kPolicyQualifiersFamily, qualifiers, qualifierIndex));
    if (qualifiers->count == 0) {
        FreeAsn1Object(&desc::kPolicyQualifiers, qualifiers);
        *qualifiersSlot = nullptr;
    }
    return TV_OK;
}
