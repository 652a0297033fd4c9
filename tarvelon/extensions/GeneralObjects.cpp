// Values of the extensions: the standard ones (RFC 5280, the OCSP nonce, the Netscape certificate
// type, the Russian qualified-certificate extensions) and the private ones (storage lists, OCSP
// check reports and request options, key storage, blocking dates, owner and parent information, the
// Kestrune key identifier). Each is the DER of an extnValue, encoded from and decoded into separate
// fields or built element by element as a list; the OIDs are the callers' business.
#include <cstring>

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/text/LibraryTime.h"
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
    {DistributionPointSlot::kReasons, &kReasonFlagsField},        // reasons           [1] ReasonFlags OPTIONAL
    {DistributionPointSlot::kCrlIssuer, &kCrlIssuerField},        // cRLIssuer         [2] GeneralNames OPTIONAL
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
    {IssuingDistributionPointSlot::kOnlyContainsUserCerts, &kFlag<1>},                // onlyContainsUserCerts      [1] BOOLEAN DEFAULT FALSE
    {IssuingDistributionPointSlot::kOnlyContainsCaCerts, &kFlag<2>},                  // onlyContainsCACerts        [2] BOOLEAN DEFAULT FALSE
    {IssuingDistributionPointSlot::kOnlySomeReasons, &kReasonFlagsField},             // onlySomeReasons            [1] ReasonFlags OPTIONAL
    {IssuingDistributionPointSlot::kIndirectCrl, &kFlag<4>},                          // indirectCRL                [4] BOOLEAN DEFAULT FALSE
    {IssuingDistributionPointSlot::kOnlyContainsAttributeCerts, &kFlag<5>},           // onlyContainsAttributeCerts [5] BOOLEAN DEFAULT FALSE
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
    {AccessDescriptionSlot::kAccessMethod, &kOid},           // accessMethod    OBJECT IDENTIFIER
    {AccessDescriptionSlot::kAccessLocation, &kGeneralName}, // accessLocation  GeneralName
});

// PolicyQualifierInfo ::= SEQUENCE {                                   (RFC 5280 4.2.1.4)
constexpr Asn1Descriptor kOptionalAny = Optional(kAny);
constexpr auto kPolicyQualifierInfoParts = Slots<PolicyQualifierInfoSlot>({
    {PolicyQualifierInfoSlot::kPolicyQualifierId, &kOid}, // policyQualifierId  PolicyQualifierId
    {PolicyQualifierInfoSlot::kQualifier, &kOptionalAny}, // qualifier          ANY DEFINED BY policyQualifierId (absent when not given)
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
    {PolicyInformationSlot::kPolicyIdentifier, &kOid},                   // policyIdentifier  CertPolicyId
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
    {BasicConstraintsSlot::kCa, &kBooleanDefaultFalse},            // cA                 BOOLEAN DEFAULT FALSE
    {BasicConstraintsSlot::kPathLenConstraint, &kOptionalInteger}, // pathLenConstraint  INTEGER (0..MAX) OPTIONAL
});
constinit const Asn1Descriptor kBasicConstraints = Sequence(kBasicConstraintsParts);

// PrivateKeyUsagePeriod ::= SEQUENCE {                                 (RFC 3280 4.2.1.4)
enum class PrivateKeyUsagePeriodSlot : uint32_t { kNotBefore, kNotAfter, kCount };
constexpr Asn1Descriptor kNotBeforeField = Optional(Implicit(0, kGeneralizedTime));
constexpr Asn1Descriptor kNotAfterField = Optional(Implicit(1, kGeneralizedTime));
constexpr auto kPrivateKeyUsagePeriodParts = Slots<PrivateKeyUsagePeriodSlot>({
    {PrivateKeyUsagePeriodSlot::kNotBefore, &kNotBeforeField}, // notBefore  [0] GeneralizedTime OPTIONAL
    {PrivateKeyUsagePeriodSlot::kNotAfter, &kNotAfterField},   // notAfter   [1] GeneralizedTime OPTIONAL
});
constinit const Asn1Descriptor kPrivateKeyUsagePeriod = Sequence(kPrivateKeyUsagePeriodParts);

// IssuerSignTool ::= SEQUENCE {           (Russian qualified certificates, 1.2.643.100.112)
enum class IssuerSignToolSlot : uint32_t { kSignTool, kCaTool, kSignToolCert, kCaToolCert, kCount };
constexpr auto kIssuerSignToolParts = Slots<IssuerSignToolSlot>({
    {IssuerSignToolSlot::kSignTool, &kUtf8String},     // signTool      UTF8String
    {IssuerSignToolSlot::kCaTool, &kUtf8String},       // cATool        UTF8String
    {IssuerSignToolSlot::kSignToolCert, &kUtf8String}, // signToolCert  UTF8String
    {IssuerSignToolSlot::kCaToolCert, &kUtf8String},   // cAToolCert    UTF8String
});
constinit const Asn1Descriptor kIssuerSignTool = Sequence(kIssuerSignToolParts);

constinit const Asn1Descriptor kIssuingDistributionPointReasonsFirst = Sequence(kReasonsFirstParts);

// ---- private extension values ----------------------------------------------------------------

inline constexpr Asn1Descriptor kPrintableString = Prim(ASN1_PRINTABLE_STRING);

// A tag number that the peers' type tables give without a class: the number replaces the type's
// own and the class stays universal, so a text goes out under 03 and a GeneralNames under 20.
// These identifiers collide with real universal types on purpose and are read back the same way.
constexpr Asn1Descriptor UniversalNumbered(int32_t tag, Asn1Descriptor d) {
    d.tagClass = ASN1_CLASS_UNIVERSAL;
    d.tag = tag;
    return d;
}

// StoreItem ::= SEQUENCE {
enum class StoreItemSlot : uint32_t { kKind, kData, kCount };
constexpr auto kStoreItemParts = Slots<StoreItemSlot>({
    {StoreItemSlot::kKind, &kEnumerated},  // kind  ENUMERATED
    {StoreItemSlot::kData, &kOctetString}, // data  OCTET STRING
});

inline constexpr Asn1Descriptor kOptionalEnumerated = Optional(kEnumerated);
inline constexpr Asn1Descriptor kOptionalUtf8String = Optional(kUtf8String);
inline constexpr Asn1Descriptor kOptionalGeneralizedTime = Optional(kGeneralizedTime);

// OcspCheckFile ::= SEQUENCE {
enum class OcspCheckFileSlot : uint32_t { kFileHash, kHash0, kHash1, kCheckKind, kText3, kText4, kKind5, kCount };
inline constexpr Asn1Descriptor kHash0Field = Optional(Implicit(0, kOctetString));
inline constexpr Asn1Descriptor kHash1Field = Optional(Implicit(1, kOctetString));
inline constexpr Asn1Descriptor kText3Field = Optional(UniversalNumbered(3, kUtf8String));
inline constexpr Asn1Descriptor kText4Field = Optional(UniversalNumbered(4, kUtf8String));
inline constexpr Asn1Descriptor kKind5Field = Optional(UniversalNumbered(5, kEnumerated));
constexpr auto kOcspCheckFileParts = Slots<OcspCheckFileSlot>({
    {OcspCheckFileSlot::kFileHash, &kOctetString},         // fileHash   OCTET STRING
    {OcspCheckFileSlot::kHash0, &kHash0Field},             // hash0      [0] IMPLICIT OCTET STRING OPTIONAL
    {OcspCheckFileSlot::kHash1, &kHash1Field},             // hash1      [1] IMPLICIT OCTET STRING OPTIONAL
    {OcspCheckFileSlot::kCheckKind, &kOptionalEnumerated}, // checkKind  ENUMERATED OPTIONAL
    {OcspCheckFileSlot::kText3, &kText3Field},             // text3      3 UTF8String OPTIONAL      -- identifier 03
    {OcspCheckFileSlot::kText4, &kText4Field},             // text4      4 UTF8String OPTIONAL      -- identifier 04
    {OcspCheckFileSlot::kKind5, &kKind5Field},             // kind5      5 ENUMERATED OPTIONAL      -- identifier 05
});

// ExtResult ::= SEQUENCE {
enum class ExtResultSlot : uint32_t { kResultKind, kResultText, kStatusKind, kCheckTime, kItems, kNames, kCount };
// The value is a GeneralNames list, so the caller's tree is taken over as it is.
inline constexpr Asn1Descriptor kNamesField = Optional(UniversalNumbered(0, kGeneralNamesValue));
constexpr auto kExtResultParts = Slots<ExtResultSlot>({
    {ExtResultSlot::kResultKind, &kEnumerated},             // resultKind  ENUMERATED
    {ExtResultSlot::kResultText, &kUtf8String},             // text        UTF8String
    {ExtResultSlot::kStatusKind, &kEnumerated},             // statusKind  ENUMERATED
    {ExtResultSlot::kCheckTime, &kOptionalGeneralizedTime}, // checkTime   GeneralizedTime OPTIONAL
    {ExtResultSlot::kItems, &kStoreItems},                  // items       SEQUENCE OF StoreItem
    {ExtResultSlot::kNames, &kNamesField},                  // names       0 GeneralNames OPTIONAL  -- identifier 20
});

// OcspCheckCryptoNetRegistry ::= SEQUENCE {
enum class RegistrySlot : uint32_t { kText1, kText2, kKind, kCount };
constexpr auto kRegistryParts = Slots<RegistrySlot>({
    {RegistrySlot::kText1, &kUtf8String},        // registryText1  UTF8String
    {RegistrySlot::kText2, &kUtf8String},        // registryText2  UTF8String
    {RegistrySlot::kKind, &kOptionalEnumerated}, // registryKind   ENUMERATED OPTIONAL
});

// OcspCheckTime2 ::= [16] IMPLICIT SEQUENCE {                          -- identifier B0
enum class CheckTime2Slot : uint32_t { kTimeKind, kCheckTime, kCount };
constexpr auto kCheckTime2Parts = Slots<CheckTime2Slot>({
    {CheckTime2Slot::kTimeKind, &kEnumerated},               // timeKind   ENUMERATED
    {CheckTime2Slot::kCheckTime, &kOptionalGeneralizedTime}, // checkTime  GeneralizedTime OPTIONAL
});

// ExtendedResult, KeyStorage ::= SEQUENCE {
enum class CodedTextSlot : uint32_t { kCode, kText, kCount };
constexpr auto kCodedTextParts = Slots<CodedTextSlot>({
    {CodedTextSlot::kCode, &kEnumerated},         // code  ENUMERATED
    {CodedTextSlot::kText, &kOptionalUtf8String}, // text  UTF8String OPTIONAL
});

// RequestBlockingDate ::= SEQUENCE {
enum class BlockingDateSlot : uint32_t { kFrom, kUntil, kCount };
inline constexpr Asn1Descriptor kFromField = Optional(Implicit(0, kGeneralizedTime));
inline constexpr Asn1Descriptor kUntilField = Optional(Implicit(1, kGeneralizedTime));
constexpr auto kBlockingDateParts = Slots<BlockingDateSlot>({
    {BlockingDateSlot::kFrom, &kFromField},   // from   [0] IMPLICIT GeneralizedTime OPTIONAL
    {BlockingDateSlot::kUntil, &kUntilField}, // until  [1] IMPLICIT GeneralizedTime OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kStoreItem = Sequence(kStoreItemParts);
// StoreCertificates, StorePrivateKeyContexts, StoreOcspRequestDocuments ::= SEQUENCE OF StoreItem
constinit const Asn1Descriptor kStoreItems = SequenceOf<&kStoreItem>();
constinit const Asn1Descriptor kOcspCheckFile = Sequence(kOcspCheckFileParts);
constinit const Asn1Descriptor kExtResult = Sequence(kExtResultParts);
// OcspCheckFileExtResults ::= SEQUENCE OF ExtResult
constinit const Asn1Descriptor kExtResults = SequenceOf<&kExtResult>();
constinit const Asn1Descriptor kCryptoNetRegistry = Sequence(kRegistryParts);
constinit const Asn1Descriptor kOcspCheckTime2 = Implicit(16, Sequence(kCheckTime2Parts));
constinit const Asn1Descriptor kCodedText = Sequence(kCodedTextParts);
constinit const Asn1Descriptor kRequestBlockingDate = Sequence(kBlockingDateParts);

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kCrlDistributionPointsFamily{&desc::kCrlDistributionPoints, Module::GeneralObjects, 0};
constinit const Family kExtendedKeyUsageFamily{&desc::kExtendedKeyUsage, Module::GeneralObjects, 0};
constinit const Family kAuthorityInformationAccessFamily{&desc::kAuthorityInformationAccess, Module::GeneralObjects, 0};
constinit const Family kCertificatePoliciesFamily{&desc::kCertificatePolicies, Module::GeneralObjects, 0};
constinit const Family kPolicyQualifiersFamily{&desc::kPolicyQualifiers, Module::GeneralObjects, 0};
constinit const Family kStoreItemsFamily{&desc::kStoreItems, Module::GeneralObjects, 0};
constinit const Family kExtResultsFamily{&desc::kExtResults, Module::GeneralObjects, 0};

// ---- scalars ------------------------------------------------------------------------------------

uint32_t DecodeGeneralizedTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&desc::kGeneralizedTime);
    TV_TRY(DecodeValue(TV_SITE, desc::kGeneralizedTime, in, inLen, leaf));
    return GetTimeFromGeneralizedTimeLeaf(leaf.get(), outTime);
}

// ---- named bits ---------------------------------------------------------------------------------

// The flag word of a named-bit BIT STRING: at most four octets, unused bits cleared.
uint32_t FlagsFromBitString(const Asn1BitStringValue* bits) {
    if (!bits || !bits->content) return 0;
    uint8_t octets[4] = {};
    const uint32_t n = bits->length < 4 ? bits->length : 4;
    std::memcpy(octets, bits->content, n);
    // Padding bits may arrive set in BER; they are not flags.
    if (n == bits->length && n > 0) octets[n - 1] = static_cast<uint8_t>((octets[n - 1] >> bits->unusedBits) << bits->unusedBits);
    return uint32_t{octets[0]} | uint32_t{octets[1]} << 8 | uint32_t{octets[2]} << 16 | uint32_t{octets[3]} << 24;
}

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
    TV_TRY(DecodeValue(TV_SITE, desc::kBitString, in, inLen, value));
    *outFlags = FlagsFromBitString(value.as<Asn1BitStringValue>());
    return TV_OK;
}

// ---- lists --------------------------------------------------------------------------------------

// What every list-valued extension (and each store list) adds to the FamilyOps list members: a
// null list is refused, and so is empty input, before the engine sees it.
uint32_t EncodeListT(const Family& f, const Asn1List* list, uint8_t* out, uint32_t* outLen) {
    if (!list) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return EncodeT(f, list, out, outLen);
}

uint32_t DecodeListT(const Family& f, const uint8_t* in, uint32_t inLen, Asn1List** out) {
    if (inLen == 0) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return DecodeT(f, in, inLen, out);
}

// ---- distribution points --------------------------------------------------------------------------

// The alternative of a distribution point name that holds general names, or else a relative name.
constexpr desc::DistributionPointNameKind NameKind(bool full) {
    return full ? desc::DistributionPointNameKind::kFullName : desc::DistributionPointNameKind::kNameRelativeToCrlIssuer;
}

// The [0] name of a distribution point over a copy of whichever name is given, general names first.
uint32_t StoreNameCopy(void** slot, const GeneralNames* fullName, const X509Name* relativeName) {
    const bool full = fullName != nullptr;
    const Asn1Descriptor* d = full ? &desc::kGeneralNames : &desc::kX509Name;
    OwnedValue copy(d);
    TV_TRY(CopyValue(d, full ? static_cast<const void*>(fullName) : relativeName, copy.Out()));
    return SetChoice(desc::kDistributionPointName, slot, NameKind(full), copy);
}

// Reads the [0] name of a distribution point: 306 for an alternative that is neither name.
uint32_t ReadDistributionPointName(const void* slot, void** outFullName, void** outRelativeName) {
    *outFullName = nullptr;
    *outRelativeName = nullptr;
    if (!slot) return TV_OK;
    auto* choice = static_cast<const Asn1ChoiceValue*>(slot);
    if (choice->index == Index(NameKind(true))) *outFullName = choice->value;
    else if (choice->index == Index(NameKind(false))) *outRelativeName = choice->value;
    else return TV_FAIL(TV_ERR_NO_ALTERNATIVE);
    return TV_OK;
}

// The first element after the optional [0] name of an issuing distribution point is a [1]. It is
// the user-certificates flag when it holds TRUE, or a BER FALSE that another [1] follows; anything
// else under [1] is the reasons (a FALSE flag is never written in DER).
bool ReasonsComeFirst(const uint8_t* in, uint32_t inLen) {
    Header outer;
    if (ReadElement(in, inLen, &outer) != TV_OK || outer.indefinite) return false;
    const uint8_t* p = in + outer.headerLen;
    size_t left = outer.contentLen;
    auto next = [&](Header* h) { return left != 0 && ReadElement(p, left, h) == TV_OK && !h->indefinite; };
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

// ---- private values -------------------------------------------------------------------------------

uint32_t EncodeCodedText(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen) {
    using S = desc::CodedTextSlot;
    return EncodeBuilt(TV_SITE, desc::kCodedText, out, outLen, [&](void* v) -> uint32_t {
        TV_TRY(SetNumber(&Slot(v, S::kCode), ASN1_ENUMERATED, code));
        return SetOptionalLeaf(&Slot(v, S::kText), ASN1_UTF8_STRING, text, textLen);
    });
}

uint32_t DecodeCodedText(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen) {
    using S = desc::CodedTextSlot;
    if (!outCode || !outTextLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kCodedText, in, inLen, [&](const void* v) {
        return FirstFailure({GetNumber(TV_SITE, Slot(v, S::kCode), outCode),
                             GetOptionalLeaf(TV_SITE, Slot(v, S::kText), outText, outTextLen)});
    });
}

uint32_t AddStoreItem(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen) {
    using S = desc::StoreItemSlot;
    if (!list || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue item(&desc::kStoreItem);
    TV_TRY(NewStructure(TV_SITE, desc::kStoreItem, item));
    TV_TRY(SetNumber(&Slot(item.get(), S::kKind), ASN1_ENUMERATED, kind));
    TV_TRY(SetOrCreatePrimitive(&Slot(item.get(), S::kData), ASN1_OCTET_STRING, in, inLen));
    return ListAppendT(kStoreItemsFamily, list, item);
}

uint32_t GetStoreItem(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen) {
    using S = desc::StoreItemSlot;
    if (!outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* item = nullptr;
    TV_TRY(ListElementT(kStoreItemsFamily, list, index, &item));
    const void* kindLeaf = Slot(item, S::kKind);
    const void* data = Slot(item, S::kData);
    if (!kindLeaf || !data) return TV_FAIL(TV_ERR_ABSENT);
    return FirstFailure({GetNumber(TV_SITE, kindLeaf, outKind), GetLeaf(TV_SITE, data, out, outLen)});
}

}  // namespace
}  // namespace tv

using namespace tv;

// The exported pair of a scalar extension value: EncodeExtension<Name> and DecodeExtension<Name>.
#define TV_EXTENSION_SCALAR_CODEC(Name, descriptor)                                                         \
    extern "C" TV_API uint32_t EncodeExtension##Name(const uint8_t* in, uint32_t inLen, uint8_t* out,        \
                                                     uint32_t* outLen) {                                     \
        return EncodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                             \
    }                                                                                                        \
    extern "C" TV_API uint32_t DecodeExtension##Name(const uint8_t* in, uint32_t inLen, uint8_t* out,        \
                                                     uint32_t* outLen) {                                     \
        return DecodeScalar(TV_SITE, descriptor, in, inLen, out, outLen);                                             \
    }

// The members every list-valued extension value shares, as exported names over the FamilyOps list
// members: CreateExtension<List>, FreeExtension<List>, EncodeExtension<List>, DecodeExtension<List>,
// RemoveExtension<Item> and GetExtension<Counted>Count. Add and Get know the element's shape and
// are written per list.
#define TV_EXTENSION_LIST_MEMBERS(Type, family, List, Item, Counted)                                        \
    extern "C" TV_API uint32_t CreateExtension##List(Type** outList) { return CreateT(family, outList); }     \
    extern "C" TV_API uint32_t FreeExtension##List(Type* list) { return FreeT(family, list); }                \
    extern "C" TV_API uint32_t RemoveExtension##Item(Type* list, uint32_t index) {                             \
        return ListRemoveT(family, list, index);                                                                 \
    }                                                                                                            \
    extern "C" TV_API uint32_t GetExtension##Counted##Count(const Type* list, uint32_t* outCount) {            \
        return ListCountT(family, list, outCount);                                                               \
    }                                                                                                            \
    extern "C" TV_API uint32_t EncodeExtension##List(const Type* list, uint8_t* out, uint32_t* outLen) {       \
        return EncodeListT(family, list, out, outLen);                                                           \
    }                                                                                                            \
    extern "C" TV_API uint32_t DecodeExtension##List(const uint8_t* in, uint32_t inLen, Type** outList) {      \
        return DecodeListT(family, in, inLen, outList);                                                          \
    }

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
    return EncodeNumber(TV_SITE, desc::kEnumerated, reason, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionReasonCode(const uint8_t* in, uint32_t inLen, uint32_t* outReason) {
    return DecodeNumber(TV_SITE, desc::kEnumerated, in, inLen, outReason);
}

extern "C" TV_API uint32_t EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    if (!time || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&desc::kGeneralizedTime);
    TV_TRY(SetGeneralizedTimeLeaf(leaf.Out(), time));
    return EncodeSized(TV_SITE, leaf.get(), &desc::kGeneralizedTime, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionInvalidityDate(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    return DecodeGeneralizedTime(in, inLen, outTime);
}

// ---- structures -------------------------------------------------------------------------------------

// No consistency rule between the two fields: a path length with cA false is written as given.
extern "C" TV_API uint32_t EncodeExtensionBasicConstraints(int cA, uint32_t pathLen, uint8_t* out, uint32_t* outLen) {
    using S = desc::BasicConstraintsSlot;
    return EncodeBuilt(TV_SITE, desc::kBasicConstraints, out, outLen, [&](void* slots) -> uint32_t {
        TV_TRY(SetBooleanLeaf(&Slot(slots, S::kCa), cA != 0));
        if (pathLen != 0xFFFFFFFFu) {
            OwnedValue number(&desc::kInteger, New<Asn1Primitive>());
            if (!number.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
            const uint8_t le[5] = {uint8_t(pathLen), uint8_t(pathLen >> 8), uint8_t(pathLen >> 16), uint8_t(pathLen >> 24), 0};
            TV_TRY(SetAsn1Integer(number.as<Asn1Primitive>(), le, 5));  // unsigned: a top bit gets a 00 octet
            Slot(slots, S::kPathLenConstraint) = number.Release();
        }
        return TV_OK;
    });
}

extern "C" TV_API uint32_t DecodeExtensionBasicConstraints(const uint8_t* in, uint32_t inLen, uint8_t* outCa,
                                                           uint32_t* outPathLen) {
    using S = desc::BasicConstraintsSlot;
    if (!outCa || !outPathLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kBasicConstraints, in, inLen, [&](const void* slots) -> uint32_t {
        uint32_t pathLen = 0xFFFFFFFFu;
        if (const void* number = Slot(slots, S::kPathLenConstraint))
            TV_TRY(GetNumber(TV_SITE, number, &pathLen));
        *outCa = BooleanOctet(Slot(slots, S::kCa));
        *outPathLen = pathLen;
        return TV_OK;
    });
}

extern "C" TV_API uint32_t EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyId, uint32_t keyIdLen,
                                                                 const GeneralNames* issuer, const uint8_t* serial,
                                                                 uint32_t serialLen, uint8_t* out, uint32_t* outLen) {
    using S = desc::AuthorityKeyIdentifierSlot;
    return EncodeBuilt(TV_SITE, desc::kAuthorityKeyIdentifier, out, outLen, [&](void* slots) -> uint32_t {
        if (keyId) TV_TRY(SetOrCreatePrimitive(&Slot(slots, S::kKeyIdentifier), ASN1_OCTET_STRING, keyId, keyIdLen));
        if (issuer) TV_TRY(CopyValue(&desc::kGeneralNames, issuer, &Slot(slots, S::kAuthorityCertIssuer)));
        if (serial) TV_TRY(SetOrCreatePrimitive(&Slot(slots, S::kAuthorityCertSerialNumber), ASN1_INTEGER, serial, serialLen));
        return TV_OK;
    });
}

// The issuer copy goes to the caller only with a success: a call answered 49 (typically a size
// query with one short buffer) leaves nothing to free.
extern "C" TV_API uint32_t DecodeExtensionAuthorityKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* outKeyId,
                                                                 uint32_t* outKeyIdLen, GeneralNames** outIssuer,
                                                                 uint8_t* outSerial, uint32_t* outSerialLen) {
    using S = desc::AuthorityKeyIdentifierSlot;
    if (!in || inLen == 0 || !outKeyIdLen || !outSerialLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (outIssuer) *outIssuer = nullptr;
    return DecodeRead(TV_SITE, desc::kAuthorityKeyIdentifier, in, inLen, [&](const void* slots) -> uint32_t {
        const uint32_t keyRc = GetOptionalLeaf(TV_SITE, Slot(slots, S::kKeyIdentifier), outKeyId, outKeyIdLen);
        OwnedValue issuer(&desc::kGeneralNames);
        uint32_t issuerRc = TV_OK;
        if (outIssuer && Slot(slots, S::kAuthorityCertIssuer))
            issuerRc = CopyValue(&desc::kGeneralNames, Slot(slots, S::kAuthorityCertIssuer), issuer.Out());
        const uint32_t serialRc = GetOptionalLeaf(TV_SITE, Slot(slots, S::kAuthorityCertSerialNumber), outSerial, outSerialLen);
        if (keyRc != TV_OK) return keyRc;
        if (issuerRc != TV_OK) return issuerRc;
        if (serialRc != TV_OK) return serialRc;
        if (outIssuer) *outIssuer = static_cast<GeneralNames*>(issuer.Release());
        return TV_OK;
    });
}

extern "C" TV_API uint32_t EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter,
                                                                uint8_t* out, uint32_t* outLen) {
    using S = desc::PrivateKeyUsagePeriodSlot;
    return EncodeBuilt(TV_SITE, desc::kPrivateKeyUsagePeriod, out, outLen, [&](void* slots) -> uint32_t {
        if (notBefore) TV_TRY(SetGeneralizedTimeLeaf(&Slot(slots, S::kNotBefore), notBefore));
        if (notAfter) TV_TRY(SetGeneralizedTimeLeaf(&Slot(slots, S::kNotAfter), notAfter));
        return TV_OK;
    });
}

// An absent part reads as the null time, the all-zero record.
extern "C" TV_API uint32_t DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* in, uint32_t inLen,
                                                                LibraryTime* outNotBefore, LibraryTime* outNotAfter) {
    using S = desc::PrivateKeyUsagePeriodSlot;
    if (!outNotBefore || !outNotAfter) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kPrivateKeyUsagePeriod, in, inLen, [&](const void* slots) -> uint32_t {
        *outNotBefore = LibraryTime{};
        *outNotAfter = LibraryTime{};
        TV_TRY(GetOptionalTime(Slot(slots, S::kNotBefore), outNotBefore));
        return GetOptionalTime(Slot(slots, S::kNotAfter), outNotAfter);
    });
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
    using S = desc::IssuerSignToolSlot;
    if (!outSignToolLen || !outCaToolLen || !outSignToolCertLen || !outCaToolCertLen)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kIssuerSignTool, in, inLen, [&](const void* slots) -> uint32_t {
        struct Output {
            S slot;
            uint8_t* out;
            uint32_t* outLen;
        } outputs[] = {{S::kSignTool, outSignTool, outSignToolLen},
                       {S::kCaTool, outCaTool, outCaToolLen},
                       {S::kSignToolCert, outSignToolCert, outSignToolCertLen},
                       {S::kCaToolCert, outCaToolCert, outCaToolCertLen}};
        uint32_t result = TV_OK;
        for (const Output& o : outputs) {
            if (const uint32_t rc = GetLeaf(TV_SITE, Slot(slots, o.slot), o.out, o.outLen); rc != TV_OK) result = rc;
        }
        return result;
    });
}

extern "C" TV_API uint32_t EncodeExtensionIssuingDistributionPoint(
    const GeneralNames* fullName, const X509Name* relativeName, uint32_t onlyUserCerts, uint32_t onlyUserCertsPresent,
    uint32_t onlyCaCerts, uint32_t onlyCaCertsPresent, uint32_t reasons, uint32_t reasonsPresent, uint32_t indirectCrl,
    uint32_t indirectCrlPresent, uint32_t onlyAttributeCerts, uint32_t onlyAttributeCertsPresent, uint8_t* out,
    uint32_t* outLen) {
    using S = desc::IssuingDistributionPointSlot;
    return EncodeBuilt(TV_SITE, desc::kIssuingDistributionPoint, out, outLen, [&](void* slots) -> uint32_t {
        if (fullName || relativeName) TV_TRY(StoreNameCopy(&Slot(slots, S::kDistributionPoint), fullName, relativeName));
        // A flag given as FALSE is stored all the same; the DEFAULT leaves it out of the DER.
        const struct {
            S slot;
            uint32_t flag, present;
        } flags[] = {{S::kOnlyContainsUserCerts, onlyUserCerts, onlyUserCertsPresent},
                     {S::kOnlyContainsCaCerts, onlyCaCerts, onlyCaCertsPresent},
                     {S::kIndirectCrl, indirectCrl, indirectCrlPresent},
                     {S::kOnlyContainsAttributeCerts, onlyAttributeCerts, onlyAttributeCertsPresent}};
        for (const auto& f : flags)
            if (f.present) TV_TRY(SetBooleanLeaf(&Slot(slots, f.slot), f.flag != 0));
        if (reasonsPresent) TV_TRY(SetFlags(TV_SITE, &Slot(slots, S::kOnlySomeReasons), reasons));
        return TV_OK;
    });
}

// The two names come back as copies owned by the caller (null when absent), freed with
// FreeX509GeneralNames and FreeX509Name: the decoded tree is gone when this returns, so a reference
// into it would dangle.
extern "C" TV_API uint32_t DecodeExtensionIssuingDistributionPoint(
    const uint8_t* in, uint32_t inLen, GeneralNames** outFullName, X509Name** outRelativeName, uint8_t* outOnlyUserCerts,
    uint32_t* outOnlyUserCertsPresent, uint8_t* outOnlyCaCerts, uint32_t* outOnlyCaCertsPresent, uint32_t* outReasons,
    uint32_t* outReasonsPresent, uint8_t* outIndirectCrl, uint32_t* outIndirectCrlPresent, uint8_t* outOnlyAttributeCerts,
    uint32_t* outOnlyAttributeCertsPresent) {
    using S = desc::IssuingDistributionPointSlot;
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
    TV_TRY(DecodeValue(TV_SITE, d, in, inLen, value));
    const void* slots = value.get();
    void* fullName = nullptr;
    void* relativeName = nullptr;
    TV_TRY(ReadDistributionPointName(Slot(slots, S::kDistributionPoint), &fullName, &relativeName));
    OwnedValue fullCopy(&desc::kGeneralNames);
    OwnedValue relativeCopy(&desc::kX509Name);
    if (fullName) TV_TRY(CopyValue(&desc::kGeneralNames, fullName, fullCopy.Out()));
    if (relativeName) TV_TRY(CopyValue(&desc::kX509Name, relativeName, relativeCopy.Out()));
    *outOnlyUserCerts = BooleanOctet(Slot(slots, S::kOnlyContainsUserCerts));
    *outOnlyCaCerts = BooleanOctet(Slot(slots, S::kOnlyContainsCaCerts));
    *outIndirectCrl = BooleanOctet(Slot(slots, S::kIndirectCrl));
    *outOnlyAttributeCerts = BooleanOctet(Slot(slots, S::kOnlyContainsAttributeCerts));
    // Absent flags were filled with their default, so each is present after a decode.
    *outOnlyUserCertsPresent = *outOnlyCaCertsPresent = *outIndirectCrlPresent = *outOnlyAttributeCertsPresent = 1;
    const auto* reasons = static_cast<const Asn1BitStringValue*>(Slot(slots, S::kOnlySomeReasons));
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
    using S = desc::DistributionPointSlot;
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!fullName && !relativeName && !crlIssuer && reasons == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (fullName && relativeName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kDistributionPoint);
    TV_TRY(NewStructure(TV_SITE, desc::kDistributionPoint, element));
    void* slots = element.get();
    if (reasons) TV_TRY(SetFlags(TV_SITE, &Slot(slots, S::kReasons), reasons));
    void** adoptedName = nullptr;
    if (fullName || relativeName) {
        Asn1ChoiceValue* choice = nullptr;
        TV_TRY(NewChoice(Index(NameKind(fullName != nullptr)), nullptr, &choice));
        Slot(slots, S::kName) = choice;
        choice->value = fullName ? static_cast<void*>(fullName) : relativeName;
        adoptedName = &choice->value;
    }
    Slot(slots, S::kCrlIssuer) = crlIssuer;
    void** const adopted[] = {adoptedName, &Slot(slots, S::kCrlIssuer)};
    return AppendAdopting(kCrlDistributionPointsFamily, list, element, adopted);
}

extern "C" TV_API uint32_t GetExtensionCrlDistributionPoint(const CrlDistributionPoints* list, uint32_t index,
                                                            GeneralNames** outFullName, X509Name** outRelativeName,
                                                            uint32_t* outReasons, GeneralNames** outCrlIssuer) {
    using S = desc::DistributionPointSlot;
    if (!outFullName || !outRelativeName || !outReasons || !outCrlIssuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outFullName = nullptr;
    *outRelativeName = nullptr;
    *outReasons = 0;
    *outCrlIssuer = nullptr;
    void* element = nullptr;
    TV_TRY(ListElementT(kCrlDistributionPointsFamily, list, index, &element));
    const void* slots = element;
    void* fullName = nullptr;
    void* relativeName = nullptr;
    TV_TRY(ReadDistributionPointName(Slot(slots, S::kName), &fullName, &relativeName));
    *outFullName = static_cast<GeneralNames*>(fullName);
    *outRelativeName = static_cast<X509Name*>(relativeName);
    *outReasons = FlagsFromBitString(static_cast<const Asn1BitStringValue*>(Slot(slots, S::kReasons)));
    *outCrlIssuer = static_cast<GeneralNames*>(Slot(slots, S::kCrlIssuer));
    return TV_OK;
}

TV_EXTENSION_LIST_MEMBERS(CrlDistributionPoints, kCrlDistributionPointsFamily,
                          CrlDistributionPoints, CrlDistributionPoint, CrlDistributionPoints)

// ---- extended key usage -------------------------------------------------------------------------------

extern "C" TV_API uint32_t AddExtensionExtendedKeyUsage(ExtendedKeyUsage* list, const uint8_t* purposeOid) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kOid);
    TV_TRY(SetOid(TV_SITE, element.Out(), purposeOid));
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
    using S = desc::AccessDescriptionSlot;
    if (!list || !methodOid || !location) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kAccessDescription);
    TV_TRY(NewStructure(TV_SITE, desc::kAccessDescription, element));
    void* slots = element.get();
    TV_TRY(SetOid(TV_SITE, &Slot(slots, S::kAccessMethod), methodOid));
    Slot(slots, S::kAccessLocation) = location;
    void** const adopted[] = {&Slot(slots, S::kAccessLocation)};
    return AppendAdopting(kAuthorityInformationAccessFamily, list, element, adopted);
}

extern "C" TV_API uint32_t GetExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint32_t index,
                                                                  uint8_t* outOid, uint32_t* outOidLen,
                                                                  GeneralName** outLocation) {
    using S = desc::AccessDescriptionSlot;
    void* element = nullptr;
    TV_TRY(ListElementT(kAuthorityInformationAccessFamily, list, index, &element));
    const void* slots = element;
    TV_TRY(GetOid(TV_SITE, Slot(slots, S::kAccessMethod), outOid, outOidLen));
    if (outLocation) *outLocation = static_cast<GeneralName*>(Slot(slots, S::kAccessLocation));
    return TV_OK;
}

TV_EXTENSION_LIST_MEMBERS(AuthorityInformationAccess, kAuthorityInformationAccessFamily,
                          AuthorityInformationAccess, AuthorityInformationAccess, AuthorityInformationAccess)

// ---- certificate policies -------------------------------------------------------------------------------

extern "C" TV_API uint32_t AddExtensionPolicyInformation(CertificatePolicies* list, const uint8_t* policyOid,
                                                         uint32_t* outIndex) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kPolicyInformation);
    TV_TRY(NewStructure(TV_SITE, desc::kPolicyInformation, element));
    TV_TRY(SetOid(TV_SITE, &Slot(element.get(), desc::PolicyInformationSlot::kPolicyIdentifier), policyOid));
    TV_TRY(ListAppendT(kCertificatePoliciesFamily, list, element));
    if (outIndex) *outIndex = list->count - 1;
    return TV_OK;
}

extern "C" TV_API uint32_t GetExtensionPolicyInformation(const CertificatePolicies* list, uint32_t index, uint8_t* outOid,
                                                         uint32_t* outOidLen) {
    void* policy = nullptr;
    TV_TRY(PolicyAt(list, index, &policy));
    return GetOid(TV_SITE, Slot(policy, desc::PolicyInformationSlot::kPolicyIdentifier), outOid, outOidLen);
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
    TV_TRY(NewStructure(TV_SITE, desc::kPolicyQualifierInfo, qualifier));
    void* slots = qualifier.get();
    TV_TRY(SetOid(TV_SITE, &Slot(slots, desc::PolicyQualifierInfoSlot::kPolicyQualifierId), qualifierOid));
    if (in && inLen) {
        TV_TRY(SetAny(TV_SITE, &Slot(slots, desc::PolicyQualifierInfoSlot::kQualifier), in, inLen));
    }
    return AppendToSlotList(kPolicyQualifiersFamily, &Slot(policy, desc::PolicyInformationSlot::kPolicyQualifiers),
                            qualifier);
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
    using S = desc::PolicyQualifierInfoSlot;
    if (!outOidLen || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* qualifier = nullptr;
    TV_TRY(QualifierAt(list, policyIndex, qualifierIndex, &qualifier));
    const void* slots = qualifier;
    if (!Slot(slots, S::kPolicyQualifierId)) return TV_FAIL(TV_ERR_ABSENT);
    const uint32_t oidRc = GetOid(TV_SITE, Slot(slots, S::kPolicyQualifierId), outOid, outOidLen);
    const uint32_t anyRc = GetOptionalLeaf(TV_SITE, Slot(slots, S::kQualifier), out, outLen);
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

// ---- private extensions: scalar codecs ---------------------------------------------------------------

TV_EXTENSION_SCALAR_CODEC(KestruneKeyIdentifier, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(OcspRequestBsnProdCode, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(OcspRequestPerson, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(OcspRequestGuid, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(OrganizationCode, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(ClockNumber, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(CorvantisSerialNumber, desc::kUtf8String)
TV_EXTENSION_SCALAR_CODEC(RelatedOsbKod, desc::kPrintableString)

#define TV_NUMBER_CODEC(Name, descriptor)                                                                      \
    extern "C" TV_API uint32_t EncodeExtension##Name(uint32_t number, uint8_t* out, uint32_t* outLen) {         \
        return EncodeNumber(TV_SITE, descriptor, number, out, outLen);                                                \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeExtension##Name(const uint8_t* in, uint32_t inLen, uint32_t* outNumber) {  \
        return DecodeNumber(TV_SITE, descriptor, in, inLen, outNumber);                                               \
    }

TV_NUMBER_CODEC(OcspRequestDocuments, desc::kInteger)
TV_NUMBER_CODEC(OcspRequestCertificates, desc::kEnumerated)
TV_NUMBER_CODEC(OcspRequestPrivateKeyContexts, desc::kEnumerated)
#undef TV_NUMBER_CODEC

extern "C" TV_API uint32_t EncodeExtensionParentAS(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen) {
    if (!packedOid || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeAsn1Oid(packedOid, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionParentAS(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    if (!in || inLen == 0 || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeAsn1Oid(in, inLen, out, outLen);
}

extern "C" TV_API uint32_t EncodeExtensionOwnerInformation(const X509Name* name, uint8_t* out, uint32_t* outLen) {
    if (!name || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeX509Name(name, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionOwnerInformation(const uint8_t* in, uint32_t inLen, X509Name** outName) {
    if (!in || inLen == 0 || !outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeX509Name(in, inLen, outName);
}

extern "C" TV_API uint32_t EncodeExtensionOcspCheckTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen) {
    if (!time || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeGeneralizedTimeElement(time, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime) {
    return DecodeGeneralizedTime(in, inLen, outTime);
}

// ---- structured values ------------------------------------------------------------------------------

extern "C" TV_API uint32_t EncodeExtensionOcspCheckFile(const uint8_t* fileHash, uint32_t fileHashLen,
                                                        const uint8_t* hash0, uint32_t hash0Len, const uint8_t* hash1,
                                                        uint32_t hash1Len, uint32_t checkKindPresent,
                                                        uint32_t checkKind, const uint8_t* text3, uint32_t text3Len,
                                                        const uint8_t* text4, uint32_t text4Len,
                                                        uint32_t kind5Present, uint32_t kind5, uint8_t* out,
                                                        uint32_t* outLen) {
    using S = desc::OcspCheckFileSlot;
    if (!fileHash) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeBuilt(TV_SITE, desc::kOcspCheckFile, out, outLen, [&](void* s) -> uint32_t {
        TV_TRY(SetOrCreatePrimitive(&Slot(s, S::kFileHash), ASN1_OCTET_STRING, fileHash, fileHashLen));
        TV_TRY(SetOptionalLeaf(&Slot(s, S::kHash0), ASN1_OCTET_STRING, hash0, hash0Len));
        TV_TRY(SetOptionalLeaf(&Slot(s, S::kHash1), ASN1_OCTET_STRING, hash1, hash1Len));
        if (checkKindPresent) TV_TRY(SetNumber(&Slot(s, S::kCheckKind), ASN1_ENUMERATED, checkKind));
        TV_TRY(SetOptionalLeaf(&Slot(s, S::kText3), ASN1_UTF8_STRING, text3, text3Len));
        TV_TRY(SetOptionalLeaf(&Slot(s, S::kText4), ASN1_UTF8_STRING, text4, text4Len));
        if (kind5Present) TV_TRY(SetNumber(&Slot(s, S::kKind5), ASN1_ENUMERATED, kind5));
        return TV_OK;
    });
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckFile(const uint8_t* in, uint32_t inLen, uint8_t* outFileHash,
                                                        uint32_t* outFileHashLen, uint8_t* outHash0,
                                                        uint32_t* outHash0Len, uint8_t* outHash1,
                                                        uint32_t* outHash1Len, uint32_t* outCheckKindPresent,
                                                        uint32_t* outCheckKind, uint8_t* outText3,
                                                        uint32_t* outText3Len, uint8_t* outText4,
                                                        uint32_t* outText4Len, uint32_t* outKind5Present,
                                                        uint32_t* outKind5) {
    using S = desc::OcspCheckFileSlot;
    if (!outFileHashLen || !outHash0Len || !outHash1Len || !outCheckKindPresent || !outCheckKind || !outText3Len ||
        !outText4Len || !outKind5Present || !outKind5)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kOcspCheckFile, in, inLen, [&](const void* s) -> uint32_t {
        return FirstFailure({
            GetLeaf(TV_SITE, Slot(s, S::kFileHash), outFileHash, outFileHashLen),
            GetOptionalLeaf(TV_SITE, Slot(s, S::kHash0), outHash0, outHash0Len),
            GetOptionalLeaf(TV_SITE, Slot(s, S::kHash1), outHash1, outHash1Len),
            GetOptionalNumber(TV_SITE, Slot(s, S::kCheckKind), outCheckKindPresent, outCheckKind),
            GetOptionalLeaf(TV_SITE, Slot(s, S::kText3), outText3, outText3Len),
            GetOptionalLeaf(TV_SITE, Slot(s, S::kText4), outText4, outText4Len),
            GetOptionalNumber(TV_SITE, Slot(s, S::kKind5), outKind5Present, outKind5),
        });
    });
}

extern "C" TV_API uint32_t EncodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* text1, uint32_t text1Len,
                                                                     const uint8_t* text2, uint32_t text2Len,
                                                                     uint32_t kindPresent, uint32_t kind,
                                                                     uint8_t* out, uint32_t* outLen) {
    using S = desc::RegistrySlot;
    if (!text1 || !text2) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeBuilt(TV_SITE, desc::kCryptoNetRegistry, out, outLen, [&](void* s) -> uint32_t {
        TV_TRY(SetOrCreatePrimitive(&Slot(s, S::kText1), ASN1_UTF8_STRING, text1, text1Len));
        TV_TRY(SetOrCreatePrimitive(&Slot(s, S::kText2), ASN1_UTF8_STRING, text2, text2Len));
        if (kindPresent) TV_TRY(SetNumber(&Slot(s, S::kKind), ASN1_ENUMERATED, kind));
        return TV_OK;
    });
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* in, uint32_t inLen,
                                                                     uint8_t* outText1, uint32_t* outText1Len,
                                                                     uint8_t* outText2, uint32_t* outText2Len,
                                                                     uint32_t* outKindPresent, uint32_t* outKind) {
    using S = desc::RegistrySlot;
    if (!outText1Len || !outText2Len || !outKindPresent || !outKind) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kCryptoNetRegistry, in, inLen, [&](const void* s) -> uint32_t {
        return FirstFailure({
            GetLeaf(TV_SITE, Slot(s, S::kText1), outText1, outText1Len),
            GetLeaf(TV_SITE, Slot(s, S::kText2), outText2, outText2Len),
            GetOptionalNumber(TV_SITE, Slot(s, S::kKind), outKindPresent, outKind),
        });
    });
}

extern "C" TV_API uint32_t EncodeExtensionOcspCheckTime2(uint32_t timeKind, const LibraryTime* checkTime, uint8_t* out,
                                                         uint32_t* outLen) {
    using S = desc::CheckTime2Slot;
    return EncodeBuilt(TV_SITE, desc::kOcspCheckTime2, out, outLen, [&](void* s) -> uint32_t {
        TV_TRY(SetNumber(&Slot(s, S::kTimeKind), ASN1_ENUMERATED, timeKind));
        if (checkTime) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, S::kCheckTime), checkTime));
        return TV_OK;
    });
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckTime2(const uint8_t* in, uint32_t inLen, uint32_t* outTimeKind,
                                                         LibraryTime* outCheckTime) {
    using S = desc::CheckTime2Slot;
    if (!outTimeKind || !outCheckTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kOcspCheckTime2, in, inLen, [&](const void* s) -> uint32_t {
        TV_TRY(GetNumber(TV_SITE, Slot(s, S::kTimeKind), outTimeKind));
        return GetOptionalTime(Slot(s, S::kCheckTime), outCheckTime);
    });
}

// ExtendedResult and KeyStorage share one shape.
#define TV_CODED_TEXT_CODEC(Name)                                                                              \
    extern "C" TV_API uint32_t EncodeExtension##Name(uint32_t code, const uint8_t* text, uint32_t textLen,      \
                                                     uint8_t* out, uint32_t* outLen) {                          \
        return EncodeCodedText(code, text, textLen, out, outLen);                                               \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeExtension##Name(const uint8_t* in, uint32_t inLen, uint32_t* outCode,      \
                                                     uint8_t* outText, uint32_t* outTextLen) {                  \
        return DecodeCodedText(in, inLen, outCode, outText, outTextLen);                                        \
    }

TV_CODED_TEXT_CODEC(ExtendedResult)
TV_CODED_TEXT_CODEC(KeyStorage)
#undef TV_CODED_TEXT_CODEC

extern "C" TV_API uint32_t EncodeExtensionRequestBlockingDate(const LibraryTime* from, const LibraryTime* until,
                                                              uint8_t* out, uint32_t* outLen) {
    using S = desc::BlockingDateSlot;
    return EncodeBuilt(TV_SITE, desc::kRequestBlockingDate, out, outLen, [&](void* s) -> uint32_t {
        if (from) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, S::kFrom), from));
        if (until) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, S::kUntil), until));
        return TV_OK;
    });
}

extern "C" TV_API uint32_t DecodeExtensionRequestBlockingDate(const uint8_t* in, uint32_t inLen, LibraryTime* outFrom,
                                                              LibraryTime* outUntil) {
    using S = desc::BlockingDateSlot;
    if (!outFrom || !outUntil) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return DecodeRead(TV_SITE, desc::kRequestBlockingDate, in, inLen, [&](const void* s) -> uint32_t {
        TV_TRY(GetOptionalTime(Slot(s, S::kFrom), outFrom));
        return GetOptionalTime(Slot(s, S::kUntil), outUntil);
    });
}

// ---- store lists: one shape under three names ---------------------------------------------------------

#define TV_STORE_LIST(Name)                                                                                       \
    TV_EXTENSION_LIST_MEMBERS(StoreItems, kStoreItemsFamily, Name, Name, Name)                                    \
    extern "C" TV_API uint32_t AddExtension##Name(StoreItems* list, uint32_t kind, const uint8_t* in,             \
                                                  uint32_t inLen) {                                                \
        return AddStoreItem(list, kind, in, inLen);                                                                \
    }                                                                                                              \
    extern "C" TV_API uint32_t GetExtension##Name(const StoreItems* list, uint32_t index, uint32_t* outKind,      \
                                                  uint8_t* out, uint32_t* outLen) {                                \
        return GetStoreItem(list, index, outKind, out, outLen);                                                    \
    }

TV_STORE_LIST(StoreCertificates)
TV_STORE_LIST(StorePrivateKeyContexts)
TV_STORE_LIST(StoreOcspRequestDocuments)
#undef TV_STORE_LIST

// ---- OCSP check results ---------------------------------------------------------------------------------

// The caller's items and names join the element only once everything else is built, and leave it
// again if the append fails, so a failed add frees nothing of theirs. A null items list stands for
// an empty one, since the field is required; null names leave the optional field out.
extern "C" TV_API uint32_t AddExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list, uint32_t resultKind,
                                                               const uint8_t* text, uint32_t textLen,
                                                               uint32_t statusKind, const LibraryTime* checkTime,
                                                               StoreItems* items, GeneralNames* names) {
    using S = desc::ExtResultSlot;
    if (!list || (!text && textLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kExtResult);
    TV_TRY(NewStructure(TV_SITE, desc::kExtResult, element));
    void* s = element.get();
    TV_TRY(SetNumber(&Slot(s, S::kResultKind), ASN1_ENUMERATED, resultKind));
    TV_TRY(SetOrCreatePrimitive(&Slot(s, S::kResultText), ASN1_UTF8_STRING, text, textLen));
    TV_TRY(SetNumber(&Slot(s, S::kStatusKind), ASN1_ENUMERATED, statusKind));
    if (checkTime) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, S::kCheckTime), checkTime));
    void** itemsSlot = &Slot(s, S::kItems);
    *itemsSlot = items ? items : ListCreate();
    if (!*itemsSlot) return TV_FAIL(TV_ERR_NO_MEMORY);
    Slot(s, S::kNames) = names;
    void** const adopted[] = {items ? itemsSlot : nullptr, &Slot(s, S::kNames)};
    return AppendAdopting(kExtResultsFamily, list, element, adopted);
}

extern "C" TV_API uint32_t GetExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint32_t index,
                                                               uint32_t* outResultKind, uint8_t* outText,
                                                               uint32_t* outTextLen, uint32_t* outStatusKind,
                                                               LibraryTime* outCheckTime, StoreItems** outItems,
                                                               GeneralNames** outNames) {
    using S = desc::ExtResultSlot;
    const void* element = nullptr;
    TV_TRY(ListElementT(kExtResultsFamily, list, index, &element));
    const void* s = element;
    uint32_t resultKind = TV_OK, text = TV_OK, statusKind = TV_OK, checkTime = TV_OK;
    if (outResultKind) resultKind = GetNumber(TV_SITE, Slot(s, S::kResultKind), outResultKind);
    if (outTextLen) text = GetLeaf(TV_SITE, Slot(s, S::kResultText), outText, outTextLen);
    if (outStatusKind) statusKind = GetNumber(TV_SITE, Slot(s, S::kStatusKind), outStatusKind);
    if (outCheckTime) checkTime = GetOptionalTime(Slot(s, S::kCheckTime), outCheckTime);
    if (outItems) *outItems = static_cast<StoreItems*>(Slot(s, S::kItems));
    if (outNames) *outNames = static_cast<GeneralNames*>(Slot(s, S::kNames));
    return FirstFailure({resultKind, text, statusKind, checkTime});
}

TV_EXTENSION_LIST_MEMBERS(OcspCheckFileExtResults, kExtResultsFamily,
                          OcspCheckFileExtResults, OcspCheckFileExtResults, OcspCheckFileExtResults)
