// X.509 v3 certificates and certificate lists: life cycle, coding, the bytes to be signed and the
// field accessors. Algorithms, keys, signatures and key identifiers are in CertificateProperties.
#include "tarvelon/x509/Certificate.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(Certificate)

namespace tv::desc {
namespace {

// UniqueIdentifier ::= BIT STRING
constexpr Asn1Descriptor kIssuerUniqueId = Optional(Implicit(1, kBitString));
constexpr Asn1Descriptor kSubjectUniqueId = Optional(Implicit(2, kBitString));
constexpr Asn1Descriptor kOptionalExtensions = Optional(Explicit(3, SequenceOf<&kExtension>()));

// TBSCertificate ::= SEQUENCE {                                       (RFC 5280 4.1)
// Name ::= CHOICE { rdnSequence RDNSequence } has one alternative, so the RDNSequence stands in
// its slot directly: the encoding is the same, and the name getters hand out the list itself.
using Tbs = TbsCertificateSlot;
constexpr auto kTbsCertificateParts = Slots<Tbs>({
        {Tbs::kVersion, &kExplicitVersion},                    // version          [0] EXPLICIT Version DEFAULT v1
        {Tbs::kSerialNumber, &kInteger},                       // serialNumber         CertificateSerialNumber
        {Tbs::kSignature, &kAlgorithmIdentifier},              // signature            AlgorithmIdentifier
        {Tbs::kIssuer, &kX509Name},                            // issuer               Name
        {Tbs::kValidity, &kValidity},                          // validity             Validity
        {Tbs::kSubject, &kX509Name},                           // subject              Name
        {Tbs::kSubjectPublicKeyInfo, &kSubjectPublicKeyInfo},  // subjectPublicKeyInfo SubjectPublicKeyInfo
        {Tbs::kIssuerUniqueId, &kIssuerUniqueId},              // issuerUniqueID   [1] IMPLICIT UniqueIdentifier OPTIONAL
        {Tbs::kSubjectUniqueId, &kSubjectUniqueId},            // subjectUniqueID  [2] IMPLICIT UniqueIdentifier OPTIONAL
        {Tbs::kExtensions, &kOptionalExtensions},              // extensions       [3] EXPLICIT Extensions OPTIONAL
    });

// Certificate ::= SEQUENCE {                                          (RFC 5280 4.1)
constexpr auto kCertificateParts = Slots<CertificateSlot>({
        {CertificateSlot::kTbsCertificate, &kTbsCertificate},           // tbsCertificate      TBSCertificate
        {CertificateSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},  // signatureAlgorithm  AlgorithmIdentifier
        {CertificateSlot::kSignatureValue, &kBitString},                // signatureValue      BIT STRING
    });

}  // namespace

constinit const Asn1Descriptor kTbsCertificate = Sequence(kTbsCertificateParts);
constinit const Asn1Descriptor kCertificate = Sequence(kCertificateParts);
constinit const Asn1Descriptor kCertificates = SequenceOf<&kCertificate>();

}  // namespace tv::desc

namespace tv {
namespace {

using desc::CertificateSlot;
using desc::TbsCertificateSlot;
using desc::ValiditySlot;

// Leaves are left out on creation: a field never set reads as absent (311) instead of as an
// empty value that would encode as, say, a zero-length serial number.
constinit const Family kCertificateFamily{&desc::kCertificate, Module::Certificate, 0};
constinit const Family kCertificatesFamily{&desc::kCertificates, Module::Certificate, 0};

// ---- fields of the to-be-signed part --------------------------------------------------------------

// The address of a slot of tbsCertificate: 32 without a certificate, 311 without the part.
template <SlotEnum... Steps>
uint32_t TbsSlot(Certificate* cert, void*** out, Steps... steps) {
    return Walk(TV_SITE, cert, out, CertificateSlot::kTbsCertificate, steps...);
}

uint32_t GetName(Certificate* cert, TbsCertificateSlot which, X509Name** outName) {
    if (!cert || !outName) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(cert, &slot, which));
    return NameInSlot(TV_SITE, slot, outName);
}

uint32_t SetName(Certificate* cert, TbsCertificateSlot which, X509Name* name, uint32_t copy) {
    if (!cert || !name) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(cert, &slot, which));
    if (copy) return SetNameCopy(slot, name);
    if (*slot == name) return TV_OK;  // the certificate's own name handed back
    FreeAsn1Object(&desc::kX509Name, *slot);
    *slot = name;
    return TV_OK;
}

uint32_t GetValidityTime(const Certificate* cert, ValiditySlot which, LibraryTime* out) {
    if (!cert || !out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* tbs = Slot(cert, CertificateSlot::kTbsCertificate);
    const void* validity = tbs ? Slot(tbs, TbsCertificateSlot::kValidity) : nullptr;
    // A fresh certificate holds a Time with nothing chosen yet: that is a time never set.
    return GetTimeIfChosen(TV_SITE, validity ? Slot(validity, which) : nullptr, out);
}

uint32_t SetValidityTime(Certificate* cert, ValiditySlot which, const LibraryTime* time) {
    if (!cert || !time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** validity = nullptr;
    TV_TRY(TbsSlot(cert, &validity, TbsCertificateSlot::kValidity));
    if (!*validity) TV_TRY(CreateAsn1Object(&desc::kValidity, validity, 0));
    return SetTimeChoice(&Slot(*validity, which), time);
}

uint32_t GetUniqueId(const Certificate* cert, TbsCertificateSlot which, uint8_t* out, uint32_t* outLen,
                     uint8_t* outUnusedBits) {
    if (!cert || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* id = static_cast<const Asn1BitStringValue*>(TbsField(cert, which));
    if (id && outUnusedBits) *outUnusedBits = static_cast<uint8_t>(id->unusedBits);
    return GetBits(TV_SITE, id, out, outLen);
}

uint32_t SetUniqueId(Certificate* cert, TbsCertificateSlot which, const uint8_t* in, uint32_t inLen,
                     uint8_t unusedBits) {
    if (!cert) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(cert, &slot, which));
    OwnedValue fresh(&desc::kBitString);
    if (in) {
        *fresh.Out() = New<Asn1BitStringValue>();
        if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
        TV_TRY(SetBitString(fresh.as<Asn1BitStringValue>(), in, inLen, unusedBits, false));
    }
    FreeAsn1Object(&desc::kBitString, *slot);
    *slot = fresh.Release();
    return TV_OK;
}

const Asn1Primitive* SerialOf(const Certificate* cert) {
    return static_cast<const Asn1Primitive*>(TbsField(cert, TbsCertificateSlot::kSerialNumber));
}

}  // namespace
}  // namespace tv

using namespace tv;
using desc::TbsCertificateSlot;
using desc::ValiditySlot;

// ---- life cycle and coding ------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(Certificate, kCertificateFamily)

TV_FAMILY_LIFE_CYCLE(Certificates, kCertificatesFamily)

extern "C" TV_API uint32_t CreateCertificateCopy(const Certificate* certificate, Certificate** outCertificate) {
    return CopyT(kCertificateFamily, certificate, outCertificate);
}

extern "C" TV_API uint32_t CreateCertificatesCopy(const Certificates* certificates, Certificates** outCertificates) {
    return CopyT(kCertificatesFamily, certificates, outCertificates);
}

extern "C" TV_API uint32_t GetCertificatesCount(const Certificates* certificates, uint32_t* outCount) {
    return ListCountT(kCertificatesFamily, certificates, outCount);
}

extern "C" TV_API uint32_t GetCertificatesCertificate(const Certificates* certificates, uint32_t index,
                                                      Certificate** outCertificate) {
    return ListElementT(kCertificatesFamily, certificates, index, outCertificate);
}

// The list takes the certificate itself; on failure the caller keeps it.
extern "C" TV_API uint32_t AddCertificateToCertificates(Certificates* certificates, Certificate* certificate) {
    if (!certificates || !certificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ListAppend(certificates, certificate);
}

extern "C" TV_API uint32_t GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* out,
                                                        uint32_t* outLen) {
    return GetToBeSigned(TV_SITE, kSignedCertificate, certificate, out, outLen);
}

// ---- names ----------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateSubject(Certificate* certificate, X509Name** outName) {
    return GetName(certificate, TbsCertificateSlot::kSubject, outName);
}

extern "C" TV_API uint32_t SetCertificateSubject(Certificate* certificate, const X509Name* name) {
    return SetName(certificate, TbsCertificateSlot::kSubject, const_cast<X509Name*>(name), 1);
}

extern "C" TV_API uint32_t SetCertificateSubject_i(Certificate* certificate, X509Name* name, uint32_t copy) {
    return SetName(certificate, TbsCertificateSlot::kSubject, name, copy);
}

extern "C" TV_API uint32_t GetCertificateIssuer(Certificate* certificate, X509Name** outName) {
    return GetName(certificate, TbsCertificateSlot::kIssuer, outName);
}

extern "C" TV_API uint32_t SetCertificateIssuer(Certificate* certificate, const X509Name* name) {
    return SetName(certificate, TbsCertificateSlot::kIssuer, const_cast<X509Name*>(name), 1);
}

extern "C" TV_API uint32_t SetCertificateIssuer_i(Certificate* certificate, X509Name* name, uint32_t copy) {
    return SetName(certificate, TbsCertificateSlot::kIssuer, name, copy);
}

// ---- version and serial number --------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateVersion(const Certificate* certificate, uint32_t* outVersion) {
    if (!certificate || !outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* version = TbsField(certificate, TbsCertificateSlot::kVersion);
    return GetVersion(TV_SITE, version, VersionForm::kFourOctets, outVersion);
}

extern "C" TV_API uint32_t SetCertificateVersion(Certificate* certificate, uint32_t version) {
    if (!certificate || version > 2) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(certificate, &slot, TbsCertificateSlot::kVersion));
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetCertificateSerialNumber(const Certificate* certificate, uint8_t* out, uint32_t* outLen) {
    if (!certificate || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetLeaf(TV_SITE, SerialOf(certificate), out, outLen);
}

// The octets are stored as given: 00 7F and 7F are different serial numbers to a matcher.
extern "C" TV_API uint32_t SetCertificateSerialNumber(Certificate* certificate, const uint8_t* in, uint32_t inLen) {
    if (!certificate || !in || inLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(certificate, &slot, TbsCertificateSlot::kSerialNumber));
    return SetOrCreatePrimitive(slot, ASN1_INTEGER, in, inLen);
}

extern "C" TV_API const uint8_t* ptr_GetCertificateSerialNumber(const Certificate* certificate, uint32_t* outLen) {
    const Asn1Primitive* serial = certificate ? SerialOf(certificate) : nullptr;
    if (!serial || !outLen) return nullptr;
    *outLen = serial->length;
    return serial->content;
}

// ---- validity -------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateValidNotBefore(const Certificate* certificate, LibraryTime* outTime) {
    return GetValidityTime(certificate, ValiditySlot::kNotBefore, outTime);
}

extern "C" TV_API uint32_t GetCertificateValidNotAfter(const Certificate* certificate, LibraryTime* outTime) {
    return GetValidityTime(certificate, ValiditySlot::kNotAfter, outTime);
}

extern "C" TV_API uint32_t SetCertificateValidNotBefore(Certificate* certificate, const LibraryTime* time) {
    return SetValidityTime(certificate, ValiditySlot::kNotBefore, time);
}

extern "C" TV_API uint32_t SetCertificateValidNotAfter(Certificate* certificate, const LibraryTime* time) {
    return SetValidityTime(certificate, ValiditySlot::kNotAfter, time);
}

// ---- unique identifiers ---------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateIssuerUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen,
                                                        uint8_t* outUnusedBits) {
    return GetUniqueId(certificate, TbsCertificateSlot::kIssuerUniqueId, out, outLen, outUnusedBits);
}

extern "C" TV_API uint32_t GetCertificateSubjectUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen,
                                                         uint8_t* outUnusedBits) {
    return GetUniqueId(certificate, TbsCertificateSlot::kSubjectUniqueId, out, outLen, outUnusedBits);
}

extern "C" TV_API uint32_t SetCertificateIssuerUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen,
                                                        uint8_t unusedBits) {
    return SetUniqueId(certificate, TbsCertificateSlot::kIssuerUniqueId, in, inLen, unusedBits);
}

extern "C" TV_API uint32_t SetCertificateSubjectUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen,
                                                         uint8_t unusedBits) {
    return SetUniqueId(certificate, TbsCertificateSlot::kSubjectUniqueId, in, inLen, unusedBits);
}

// ---- extensions -----------------------------------------------------------------------------------

// The handle is the extensions slot itself, list or not, so the first extension of a fresh
// certificate can be added in place through it.
extern "C" TV_API uint32_t GetCertificateExtensions(Certificate* certificate, X509Extensions** outExtensions) {
    if (!certificate || !outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(certificate, &slot, TbsCertificateSlot::kExtensions));
    *outExtensions = ExtensionsHandleOfSlot(slot);
    return TV_OK;
}

// A handle without a list leaves the certificate without extensions. The copy is made before the
// old list goes, so the certificate's own handle may be passed.
extern "C" TV_API uint32_t SetCertificateExtensions(Certificate* certificate, const X509Extensions* extensions) {
    if (!certificate || !extensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(certificate, &slot, TbsCertificateSlot::kExtensions));
    OwnedValue fresh(&desc::kExtensions);
    if (extensions->list) TV_TRY(CopyValue(&desc::kExtensions, extensions->list, fresh.Out()));
    FreeAsn1Object(&desc::kExtensions, *slot);
    *slot = fresh.Release();
    return TV_OK;
}
