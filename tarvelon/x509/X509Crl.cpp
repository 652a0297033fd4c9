// Certificate revocation lists: life cycle, CRL lists, fields, revoked entries and the search of
// a (possibly indirect) CRL for a certificate given by issuer and serial number.
#include "tarvelon/x509/X509Crl.h"

#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509Crl)

namespace tv::desc {
namespace {

// Version ::= INTEGER { v1(0), v2(1), v3(2) }
constexpr Asn1Descriptor kOptionalVersion = Optional(kInteger);

// Extensions ::= SEQUENCE SIZE (1..MAX) OF Extension, in the two places a CRL carries it.
constexpr Asn1Descriptor kOptionalEntryExtensions = Optional(SequenceOf<&kExtension>());
constexpr Asn1Descriptor kOptionalCrlExtensions = Explicit(0, Optional(SequenceOf<&kExtension>()));

// RevokedCertificate ::= SEQUENCE {                                    (RFC 5280 5.1)
constexpr auto kRevokedCertificateParts = Slots<RevokedCertificateSlot>({
        {RevokedCertificateSlot::kUserCertificate, &kInteger},                       // userCertificate     CertificateSerialNumber
        {RevokedCertificateSlot::kRevocationDate, &kTime},                           // revocationDate      Time
        {RevokedCertificateSlot::kCrlEntryExtensions, &kOptionalEntryExtensions},    // crlEntryExtensions  Extensions OPTIONAL
    });

}  // namespace

constinit const Asn1Descriptor kRevokedCertificate = Sequence(kRevokedCertificateParts);
constinit const Asn1Descriptor kRevokedCertificates = SequenceOf<&kRevokedCertificate>();

namespace {

constexpr Asn1Descriptor kOptionalRevokedCertificates = Optional(SequenceOf<&kRevokedCertificate>());

// TBSCertList ::= SEQUENCE {                                           (RFC 5280 5.1)
constexpr auto kTbsCertListParts = Slots<TbsCertListSlot>({
    {TbsCertListSlot::kVersion, &kOptionalVersion},                        // version              Version OPTIONAL
    {TbsCertListSlot::kSignature, &kAlgorithmIdentifier},                  // signature            AlgorithmIdentifier
    {TbsCertListSlot::kIssuer, &kX509Name},                            // issuer               Name (its one alternative)
    {TbsCertListSlot::kThisUpdate, &kTime},                                // thisUpdate           Time
    {TbsCertListSlot::kNextUpdate, &kOptionalTime},                        // nextUpdate           Time OPTIONAL
    {TbsCertListSlot::kRevokedCertificates, &kOptionalRevokedCertificates},// revokedCertificates  SEQUENCE OF ... OPTIONAL
    {TbsCertListSlot::kCrlExtensions, &kOptionalCrlExtensions},               // crlExtensions        [0] EXPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kTbsCertList = Sequence(kTbsCertListParts);

namespace {

// CertificateList ::= SEQUENCE {                                       (RFC 5280 5.1)
constexpr auto kCertificateListParts = Slots<CertificateListSlot>({
        {CertificateListSlot::kTbsCertList, &kTbsCertList},                    // tbsCertList         TBSCertList
        {CertificateListSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},     // signatureAlgorithm  AlgorithmIdentifier
        {CertificateListSlot::kSignatureValue, &kBitString},                   // signatureValue      BIT STRING
    });

}  // namespace

constinit const Asn1Descriptor kCertificateList = Sequence(kCertificateListParts);
constinit const Asn1Descriptor kX509Crls = SequenceOf<&kCertificateList>();

}  // namespace tv::desc

namespace tv {
namespace {

using namespace desc;

constinit const Family kCrlFamily{&kCertificateList, Module::X509Crl, 0};
constinit const Family kCrlsFamily{&kX509Crls, Module::X509Crl, 0};
constinit const Family kRevokedFamily{&kRevokedCertificates, Module::X509Crl, 0};

// Working-buffer limits of the search; callers rely on 49 for anything larger.
constexpr uint32_t kSearchSerialLimit = 150;
constexpr uint32_t kSearchIssuerLimit = 1500;


Asn1List* RevokedListOf(void** tbs) { return static_cast<Asn1List*>(Slot(tbs, TbsCertListSlot::kRevokedCertificates)); }

uint32_t EntryAt(const Asn1List* list, uint32_t index, void*** entry) {
    if (!list || index >= list->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!list->items[index]) return TV_FAIL(TV_ERR_ABSENT);
    *entry = static_cast<void**>(list->items[index]);
    return TV_OK;
}

// A Time slot of a fresh CRL holds a CHOICE with nothing chosen yet: that reads as absent too.
uint32_t ReadTime(const void* choice, LibraryTime* out) {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!choice || !static_cast<const Asn1ChoiceValue*>(choice)->value) return TV_FAIL(TV_ERR_ABSENT);
    return GetTimeFromTimeChoice(choice, out);
}

X509Name* IssuerNameOf(void** tbs) { return static_cast<X509Name*>(Slot(tbs, TbsCertListSlot::kIssuer)); }

// Stores `name` (taken over) as the issuer, releasing the old one.
uint32_t StoreIssuer(void** tbs, OwnedValue& name) {
    FreeAsn1Object(&kX509Name, Slot(tbs, TbsCertListSlot::kIssuer));
    Slot(tbs, TbsCertListSlot::kIssuer) = name.Release();
    return TV_OK;
}

// Versions are 0 (v1) and 1 (v2); anything longer than four octets or negative cannot be one.
uint32_t ReadVersion(const Asn1Primitive* p, uint32_t* out) {
    if (p->length == 0 || p->length > 4 || (p->content[0] & 0x80)) return TV_FAIL(TV_ERR_NOT_DER);
    uint32_t v = 0;
    for (uint32_t i = 0; i < p->length; ++i) v = (v << 8) | p->content[i];
    *out = v;
    return TV_OK;
}

// Step 3 of adding an entry: a fresh RevokedCertificate, or nothing. An empty serial is refused
// (32) rather than stored: an INTEGER without contents is not DER, and the CRL would then fail to
// decode anywhere else.
uint32_t NewEntry(const uint8_t* serial, uint32_t serialLen, const LibraryTime* date, OwnedValue& entry) {
    if (!serial || serialLen == 0 || !date) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *entry.Out() = AllocZero(kRevokedCertificate.valueSize);
    if (!entry.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    auto** slots = entry.as<void*>();
    Slot(slots, RevokedCertificateSlot::kUserCertificate) = NewPrimitive(ASN1_INTEGER, serial, serialLen);
    if (!Slot(slots, RevokedCertificateSlot::kUserCertificate)) return TV_FAIL(TV_ERR_NO_MEMORY);
    return SetTimeChoice(&Slot(slots, RevokedCertificateSlot::kRevocationDate), date);
}

uint32_t AppendEntry(Asn1List* list, const uint8_t* serial, uint32_t serialLen, const LibraryTime* date,
                     uint32_t* index) {
    OwnedValue entry(&kRevokedCertificate);
    TV_TRY(NewEntry(serial, serialLen, date, entry));
    TV_TRY(ListAppendT(kRevokedFamily, list, entry));
    *index = list->count - 1;
    return TV_OK;
}

uint32_t EntryExtensions(const Asn1List* list, uint32_t index, X509Extensions** handle) {
    if (!handle) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** entry = nullptr;
    TV_TRY(EntryAt(list, index, &entry));
    *handle = ExtensionsHandleOfSlot(&Slot(entry, RevokedCertificateSlot::kCrlEntryExtensions));
    return TV_OK;
}

// ---- search ---------------------------------------------------------------------------------------

// DER of a name in a fresh block (measure, allocate, encode).
uint32_t EncodeNameToHeap(const X509Name* name, HeapBytes& der, uint32_t* len) {
    TV_TRY(EncodeX509Name(name, nullptr, len));
    if (!der.Allocate(*len)) return TV_FAIL(TV_ERR_NO_MEMORY);
    return EncodeX509Name(name, der.get(), len);
}

// The issuer in force for the entries of an indirect CRL (RFC 5280 5.3.3). It lives in a buffer of
// its own, apart from the one general names are read into, so that names of other kinds following
// the last directoryName of a certificate issuer extension cannot overwrite the issuer they leave
// in force.
struct IssuerInForce {
    uint8_t der[kSearchIssuerLimit];
    uint32_t len;
};

// Applies the certificate issuer extension of an entry, if it has one: each directoryName it holds
// becomes the issuer in force, the last one winning.
uint32_t FollowCertificateIssuer(void** entry, IssuerInForce& inForce) {
    auto* extensions = ExtensionsHandleOfSlot(&Slot(entry, RevokedCertificateSlot::kCrlEntryExtensions));
    uint32_t at = 0;
    if (!FindExtensionIndex(extensions, oid::kCertificateIssuer, &at)) return TV_OK;
    uint8_t value[kSearchIssuerLimit];
    uint32_t valueLen = sizeof value;
    TV_TRY(GetX509ExtensionsExtensionValue(extensions, oid::kCertificateIssuer, value, &valueLen));
    GeneralNames* decoded = nullptr;
    TV_TRY(DecodeX509GeneralNames(value, valueLen, &decoded));
    OwnedValue names(&kGeneralNames, decoded);
    uint8_t work[kSearchIssuerLimit];
    for (uint32_t i = 0; i < decoded->count; ++i) {
        uint32_t kind = 0;
        uint32_t len = sizeof work;
        TV_TRY(GetX509GeneralName(decoded, i, &kind, work, &len));
        if (kind != uint32_t(Index(GeneralNameKind::kDirectoryName))) continue;
        std::memcpy(inForce.der, work, len);
        inForce.len = len;
    }
    return TV_OK;
}

}  // namespace

uint32_t TbsOf(const X509Crl* crl, void*** tbs) noexcept {
    if (!crl) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto** part = static_cast<void**>(Slot(crl, CertificateListSlot::kTbsCertList));
    if (!part) return TV_FAIL(TV_ERR_ABSENT);
    *tbs = part;
    return TV_OK;
}

}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- life cycle and coding ------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateX509Crl(X509Crl** outCrl) { return CreateT(kCrlFamily, outCrl); }

extern "C" TV_API uint32_t CreateX509Crls(X509Crls** outCrls) { return CreateT(kCrlsFamily, outCrls); }

extern "C" TV_API uint32_t DecodeX509Crl(const uint8_t* in, uint32_t inLen, X509Crl** outCrl) {
    return DecodeT(kCrlFamily, in, inLen, outCrl);
}

extern "C" TV_API uint32_t DecodeX509Crls(const uint8_t* in, uint32_t inLen, X509Crls** outCrls) {
    return DecodeT(kCrlsFamily, in, inLen, outCrls);
}

extern "C" TV_API uint32_t EncodeX509Crl(const X509Crl* crl, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kCrlFamily, crl, out, outLen);
}

extern "C" TV_API uint32_t EncodeX509Crls(const X509Crls* crls, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kCrlsFamily, crls, out, outLen);
}

extern "C" TV_API uint32_t CreateX509CrlCopy(const X509Crl* crl, X509Crl** outCrl) {
    return CopyT(kCrlFamily, crl, outCrl);
}

extern "C" TV_API uint32_t CreateX509CrlsCopy(const X509Crls* crls, X509Crls** outCrls) {
    return CopyT(kCrlsFamily, crls, outCrls);
}

extern "C" TV_API uint32_t FreeX509Crl(X509Crl* crl) { return FreeT(kCrlFamily, crl); }

extern "C" TV_API uint32_t FreeX509Crls(X509Crls* crls) { return FreeT(kCrlsFamily, crls); }

extern "C" TV_API uint32_t GetX509CrlsCount(const X509Crls* crls, uint32_t* outCount) {
    return ListCountT(kCrlsFamily, crls, outCount);
}

extern "C" TV_API uint32_t GetX509CrlsCrl(const X509Crls* crls, uint32_t index, X509Crl** outCrl) {
    return ListElementT(kCrlsFamily, crls, index, outCrl);
}

extern "C" TV_API uint32_t AddX509CrlToX509Crls(X509Crls* crls, X509Crl* crl) {
    if (!crls || !crl) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ListAppend(crls, crl);
}

extern "C" TV_API uint32_t GetX509CrlToBeSignedPart(const X509Crl* crl, uint8_t* out, uint32_t* outLen) {
    void** tbs = nullptr;
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    return EncodeSized(TV_SITE, tbs, &kTbsCertList, out, outLen);
}

// ---- fields ---------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlVersion(const X509Crl* crl, uint32_t* outVersion) {
    void** tbs = nullptr;
    if (!outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    auto* version = static_cast<const Asn1Primitive*>(Slot(tbs, TbsCertListSlot::kVersion));
    if (!version) return TV_FAIL(TV_ERR_ABSENT);
    return ReadVersion(version, outVersion);
}

extern "C" TV_API uint32_t SetX509CrlVersion(X509Crl* crl, uint32_t version) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    if (version > 1) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const auto octet = static_cast<uint8_t>(version);
    return SetOrCreatePrimitive(&Slot(tbs, TbsCertListSlot::kVersion), ASN1_INTEGER, &octet, 1);
}

extern "C" TV_API uint32_t GetX509CrlIssuer(X509Crl* crl, X509Name** outIssuer) {
    void** tbs = nullptr;
    if (!outIssuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    if (X509Name* held = IssuerNameOf(tbs)) {
        *outIssuer = held;
        return TV_OK;
    }
    // Created in place so that the caller can fill the name with AddX509NameEntry.
    OwnedValue empty(&kX509Name, ListCreate());
    if (!empty.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    auto* name = empty.as<X509Name>();
    TV_TRY(StoreIssuer(tbs, empty));
    *outIssuer = name;
    return TV_OK;
}

extern "C" TV_API uint32_t SetX509CrlIssuer(X509Crl* crl, const X509Name* issuer) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    if (!issuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue copy(&kX509Name);
    TV_TRY(CopyValue(&kX509Name, issuer, copy.Out()));
    return StoreIssuer(tbs, copy);
}

extern "C" TV_API uint32_t GetX509CrlThisUpdate(const X509Crl* crl, LibraryTime* outTime) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return ReadTime(Slot(tbs, TbsCertListSlot::kThisUpdate), outTime);
}

extern "C" TV_API uint32_t SetX509CrlThisUpdate(X509Crl* crl, const LibraryTime* time) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    if (!time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetTimeChoice(&Slot(tbs, TbsCertListSlot::kThisUpdate), time);
}

extern "C" TV_API uint32_t GetX509CrlNextUpdate(const X509Crl* crl, LibraryTime* outTime) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return ReadTime(Slot(tbs, TbsCertListSlot::kNextUpdate), outTime);
}

extern "C" TV_API uint32_t SetX509CrlNextUpdate(X509Crl* crl, const LibraryTime* time) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    if (!time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetTimeChoice(&Slot(tbs, TbsCertListSlot::kNextUpdate), time);
}

extern "C" TV_API uint32_t RemoveX509CrlNextUpdate(X509Crl* crl) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    FreeAsn1Object(&kOptionalTime, Slot(tbs, TbsCertListSlot::kNextUpdate));
    Slot(tbs, TbsCertListSlot::kNextUpdate) = nullptr;
    return TV_OK;
}

// The handle is the crlExtensions slot itself, also while it holds no list, so that the first
// extension can be added in place.
extern "C" TV_API uint32_t GetX509CrlExtensions(X509Crl* crl, X509Extensions** outExtensions) {
    void** tbs = nullptr;
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    *outExtensions = ExtensionsHandleOfSlot(&Slot(tbs, TbsCertListSlot::kCrlExtensions));
    return TV_OK;
}

// ---- revoked entries ------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateCount(const X509Crl* crl, uint32_t* outCount) {
    void** tbs = nullptr;
    if (!outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    const Asn1List* list = RevokedListOf(tbs);
    *outCount = list ? list->count : 0;
    return TV_OK;
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateSerialNumber(const X509Crl* crl, uint32_t index, uint8_t* out,
                                                                    uint32_t* outLen) {
    void** tbs = nullptr;
    void** entry = nullptr;
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    TV_TRY(EntryAt(RevokedListOf(tbs), index, &entry));
    auto* serial = static_cast<const Asn1Primitive*>(Slot(entry, RevokedCertificateSlot::kUserCertificate));
    if (!serial) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, serial->content, serial->length, out, outLen);
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateRevokationDate(const X509Crl* crl, uint32_t index,
                                                                      LibraryTime* outTime) {
    void** tbs = nullptr;
    void** entry = nullptr;
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    TV_TRY(EntryAt(RevokedListOf(tbs), index, &entry));
    return ReadTime(Slot(entry, RevokedCertificateSlot::kRevocationDate), outTime);
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateExtensions(X509Crl* crl, uint32_t index,
                                                                  X509Extensions** outExtensions) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return EntryExtensions(RevokedListOf(tbs), index, outExtensions);
}

extern "C" TV_API uint32_t AddX509CrlRevokedCertificate(X509Crl* crl, const uint8_t* inSerial, uint32_t inSerialLen,
                                                        const LibraryTime* revocationDate, uint32_t* outIndex) {
    void** tbs = nullptr;
    if (!crl || !inSerial || !revocationDate || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    const bool created = !Slot(tbs, TbsCertListSlot::kRevokedCertificates);
    if (created && !(Slot(tbs, TbsCertListSlot::kRevokedCertificates) = ListCreate())) return TV_FAIL(TV_ERR_NO_MEMORY);
    const uint32_t rc = AppendEntry(RevokedListOf(tbs), inSerial, inSerialLen, revocationDate, outIndex);
    // A failed add leaves the CRL as it was: a list made for it would show as an empty SEQUENCE.
    if (rc != TV_OK && created) {
        ListFree(RevokedListOf(tbs), &kRevokedCertificate);
        Slot(tbs, TbsCertListSlot::kRevokedCertificates) = nullptr;
    }
    return rc;
}

extern "C" TV_API uint32_t ClearX509CrlRevokedCertificates(X509Crl* crl) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    // An absent list stays absent: there is nothing to clear, and clearing must not add a field.
    if (Asn1List* list = RevokedListOf(tbs)) ListClear(list, &kRevokedCertificate);
    return TV_OK;
}

extern "C" TV_API uint32_t RemoveX509CrlRevokedCertificates(X509Crl* crl) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    ListFree(RevokedListOf(tbs), &kRevokedCertificate);
    Slot(tbs, TbsCertListSlot::kRevokedCertificates) = nullptr;
    return TV_OK;
}

// ---- stand-alone revoked lists --------------------------------------------------------------------

extern "C" TV_API uint32_t CreateX509RevokedCertificates(X509RevokedCertificates** outList) {
    return CreateT(kRevokedFamily, outList);
}

extern "C" TV_API uint32_t EncodeX509RevokedCertificates(const X509RevokedCertificates* list, uint8_t* out,
                                                         uint32_t* outLen) {
    return EncodeT(kRevokedFamily, list, out, outLen);
}

extern "C" TV_API uint32_t FreeX509RevokedCertificates(X509RevokedCertificates* list) {
    return FreeT(kRevokedFamily, list);
}

extern "C" TV_API uint32_t AddX509RevokedCertificatesRevokedCertificate(X509RevokedCertificates* list,
                                                                        const uint8_t* inSerial, uint32_t inSerialLen,
                                                                        const LibraryTime* revocationDate,
                                                                        uint32_t* outIndex) {
    if (!list || !inSerial || !revocationDate || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return AppendEntry(list, inSerial, inSerialLen, revocationDate, outIndex);
}

extern "C" TV_API uint32_t GetX509RevokedCertificatesRevokedCertificateExtensions(X509RevokedCertificates* list,
                                                                                  uint32_t index,
                                                                                  X509Extensions** outExtensions) {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EntryExtensions(list, index, outExtensions);
}

// ---- search ---------------------------------------------------------------------------------------

// Issuers are compared as DER octets, not as names: an issuer written with another string type or
// another attribute order is a different issuer here. The first matching entry is reported.
extern "C" TV_API uint32_t FindX509CrlFind(const X509Crl* crl, const X509Name* issuer, const uint8_t* inSerial,
                                           uint32_t inSerialLen, uint32_t* outIndex) {
    void** tbs = nullptr;
    if (!issuer || !inSerial || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(TbsOf(crl, &tbs));
    HeapBytes sought;
    uint32_t soughtLen = 0;
    TV_TRY(EncodeNameToHeap(issuer, sought, &soughtLen));

    const Asn1List* list = RevokedListOf(tbs);
    const X509Name* own = IssuerNameOf(tbs);
    if (!own) return TV_FAIL(TV_ERR_ABSENT);
    IssuerInForce inForce;
    inForce.len = sizeof inForce.der;
    TV_TRY(EncodeX509Name(own, inForce.der, &inForce.len));
    if (!list || list->count == 0) return TV_FAIL(TV_ERR_NOT_FOUND);

    for (uint32_t i = 0; i < list->count; ++i) {
        auto** entry = static_cast<void**>(list->items[i]);
        if (!entry) continue;
        TV_TRY(FollowCertificateIssuer(entry, inForce));
        auto* serial = static_cast<const Asn1Primitive*>(Slot(entry, RevokedCertificateSlot::kUserCertificate));
        if (!serial) continue;
        if (serial->length > kSearchSerialLimit) return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
        if (CompareOctets(serial->content, serial->length, inSerial, inSerialLen) != 0) continue;
        if (CompareOctets(inForce.der, inForce.len, sought.get(), soughtLen) == 0) {
            *outIndex = i;
            return TV_OK;
        }
    }
    return TV_FAIL(TV_ERR_NOT_FOUND);
}
