#include "CertificateShape.h"

#include "tarvelon/Descriptor.h"

namespace tvtest::x509 {
namespace {

using tv::Choice;
using tv::Components;
using tv::Explicit;
using tv::Implicit;
using tv::Optional;
using tv::Prim;
using tv::Sequence;
using tv::SequenceOf;
using tv::SetOf;
using tv::Slots;
using namespace tv::desc;

constexpr uint8_t kZeroOctet[1] = {0x00};
// Version DEFAULT v1 and critical DEFAULT FALSE: both one content octet 00.
constinit const Asn1Primitive kIntegerZero{ASN1_INTEGER, 1, const_cast<uint8_t*>(kZeroOctet)};
constinit const Asn1Primitive kBooleanFalse{ASN1_BOOLEAN, 1, const_cast<uint8_t*>(kZeroOctet)};

constexpr Asn1Descriptor kVersion = Optional(Explicit(0, kInteger), &kIntegerZero);
constexpr Asn1Descriptor kOptionalAny = Optional(kAny);
constexpr Asn1Descriptor kUtcTime = Prim(ASN1_UTC_TIME);
constexpr Asn1Descriptor kGeneralizedTime = Prim(ASN1_GENERALIZED_TIME);
constexpr Asn1Descriptor kIssuerUniqueId = Optional(Implicit(1, kBitString));
constexpr Asn1Descriptor kSubjectUniqueId = Optional(Implicit(2, kBitString));
constexpr Asn1Descriptor kCritical = Optional(kBoolean, &kBooleanFalse);

// AlgorithmIdentifier ::= SEQUENCE {
//      algorithm               OBJECT IDENTIFIER,
//      parameters              ANY DEFINED BY algorithm OPTIONAL }
constexpr Components<2> kAlgorithmIdentifierParts = Slots<AlgorithmIdentifierSlot, 2>({
    {AlgorithmIdentifierSlot::Algorithm, &kOid},           // algorithm   OBJECT IDENTIFIER
    {AlgorithmIdentifierSlot::Parameters, &kOptionalAny},  // parameters  ANY DEFINED BY algorithm OPTIONAL
});

// AttributeTypeAndValue ::= SEQUENCE {
//      type     AttributeType,
//      value    AttributeValue }
constexpr Components<2> kAttributeTypeAndValueParts = Slots<AttributeTypeAndValueSlot, 2>({
    {AttributeTypeAndValueSlot::Type, &kOid},   // type   AttributeType ::= OBJECT IDENTIFIER
    {AttributeTypeAndValueSlot::Value, &kAny},  // value  AttributeValue ::= ANY -- DEFINED BY AttributeType
});
constexpr Asn1Descriptor kAttributeTypeAndValue = Sequence(kAttributeTypeAndValueParts);

// RelativeDistinguishedName ::= SET SIZE (1..MAX) OF AttributeTypeAndValue
constexpr Asn1Descriptor kRelativeDistinguishedName = SetOf<&kAttributeTypeAndValue>();

// Time ::= CHOICE {
//      utcTime        UTCTime,
//      generalTime    GeneralizedTime }
constexpr Components<2> kTimeAlternatives = Slots<TimeAlternative, 2>({
    {TimeAlternative::UtcTime, &kUtcTime},                 // utcTime      UTCTime
    {TimeAlternative::GeneralTime, &kGeneralizedTime},     // generalTime  GeneralizedTime
});
constexpr Asn1Descriptor kTime = Choice(kTimeAlternatives);

// Validity ::= SEQUENCE {
//      notBefore      Time,
//      notAfter       Time }
constexpr Components<2> kValidityParts = Slots<ValiditySlot, 2>({
    {ValiditySlot::NotBefore, &kTime},  // notBefore  Time
    {ValiditySlot::NotAfter, &kTime},   // notAfter   Time
});

// SubjectPublicKeyInfo ::= SEQUENCE {
//      algorithm            AlgorithmIdentifier,
//      subjectPublicKey     BIT STRING }
constexpr Components<2> kSubjectPublicKeyInfoParts = Slots<SubjectPublicKeyInfoSlot, 2>({
    {SubjectPublicKeyInfoSlot::Algorithm, &kAlgorithmIdentifier},  // algorithm         AlgorithmIdentifier
    {SubjectPublicKeyInfoSlot::SubjectPublicKey, &kBitString},     // subjectPublicKey  BIT STRING
});

// Extension ::= SEQUENCE {
//      extnID      OBJECT IDENTIFIER,
//      critical    BOOLEAN DEFAULT FALSE,
//      extnValue   OCTET STRING }
constexpr Components<3> kExtensionParts = Slots<ExtensionSlot, 3>({
    {ExtensionSlot::ExtnId, &kOid},             // extnID     OBJECT IDENTIFIER
    {ExtensionSlot::Critical, &kCritical},      // critical   BOOLEAN DEFAULT FALSE
    {ExtensionSlot::ExtnValue, &kOctetString},  // extnValue  OCTET STRING
});

// [3] EXPLICIT Extensions OPTIONAL
constexpr Asn1Descriptor kOptionalExtensions = Optional(Explicit(3, SequenceOf<&kExtension>()));

// TBSCertificate ::= SEQUENCE {
//      version         [0]  EXPLICIT Version DEFAULT v1,
//      serialNumber         CertificateSerialNumber,
//      signature            AlgorithmIdentifier,
//      issuer               Name,
//      validity             Validity,
//      subject              Name,
//      subjectPublicKeyInfo SubjectPublicKeyInfo,
//      issuerUniqueID  [1]  IMPLICIT UniqueIdentifier OPTIONAL,
//      subjectUniqueID [2]  IMPLICIT UniqueIdentifier OPTIONAL,
//      extensions      [3]  EXPLICIT Extensions OPTIONAL }
constexpr Components<10> kTbsCertificateParts = Slots<TbsSlot, 10>({
    {TbsSlot::Version, &kVersion},                             // version [0] EXPLICIT Version DEFAULT v1
    {TbsSlot::SerialNumber, &kInteger},                        // serialNumber CertificateSerialNumber ::= INTEGER
    {TbsSlot::Signature, &kAlgorithmIdentifier},               // signature AlgorithmIdentifier
    {TbsSlot::Issuer, &kName},                                 // issuer Name
    {TbsSlot::Validity, &kValidity},                           // validity Validity
    {TbsSlot::Subject, &kName},                                // subject Name
    {TbsSlot::SubjectPublicKeyInfo, &kSubjectPublicKeyInfo},   // subjectPublicKeyInfo SubjectPublicKeyInfo
    {TbsSlot::IssuerUniqueId, &kIssuerUniqueId},               // issuerUniqueID [1] IMPLICIT UniqueIdentifier OPTIONAL
    {TbsSlot::SubjectUniqueId, &kSubjectUniqueId},             // subjectUniqueID [2] IMPLICIT UniqueIdentifier OPTIONAL
    {TbsSlot::Extensions, &kOptionalExtensions},               // extensions [3] EXPLICIT Extensions OPTIONAL
});

// Certificate ::= SEQUENCE {
//      tbsCertificate       TBSCertificate,
//      signatureAlgorithm   AlgorithmIdentifier,
//      signatureValue       BIT STRING }
constexpr Components<3> kCertificateParts = Slots<CertificateSlot, 3>({
    {CertificateSlot::TbsCertificate, &kTbsCertificate},          // tbsCertificate      TBSCertificate
    {CertificateSlot::SignatureAlgorithm, &kAlgorithmIdentifier}, // signatureAlgorithm  AlgorithmIdentifier
    {CertificateSlot::SignatureValue, &kBitString},               // signatureValue      BIT STRING
});

}  // namespace

constinit const Asn1Descriptor kAlgorithmIdentifier = Sequence(kAlgorithmIdentifierParts);
// Name ::= CHOICE { rdnSequence RDNSequence } -- the only alternative, so the SEQUENCE OF stands for it
// RDNSequence ::= SEQUENCE OF RelativeDistinguishedName
constinit const Asn1Descriptor kName = SequenceOf<&kRelativeDistinguishedName>();
constinit const Asn1Descriptor kValidity = Sequence(kValidityParts);
constinit const Asn1Descriptor kSubjectPublicKeyInfo = Sequence(kSubjectPublicKeyInfoParts);
constinit const Asn1Descriptor kExtension = Sequence(kExtensionParts);
// Extensions ::= SEQUENCE SIZE (1..MAX) OF Extension
constinit const Asn1Descriptor kExtensions = SequenceOf<&kExtension>();
constinit const Asn1Descriptor kTbsCertificate = Sequence(kTbsCertificateParts);
constinit const Asn1Descriptor kCertificate = Sequence(kCertificateParts);

}  // namespace tvtest::x509
