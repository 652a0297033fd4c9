// Certificate revocation lists: life cycle, CRL lists, fields, revoked entries and the search of
// a (possibly indirect) CRL for a certificate given by issuer and serial number.
#include "tarvelon/x509/X509Crl.h"

#include "tarvelon/engine/Fields.h"
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
        {RevokedCertificateSlot::kUserCertificate, &kInteger},                     // userCertificate     CertificateSerialNumber
        {RevokedCertificateSlot::kRevocationDate, &kTime},                         // revocationDate      Time
        {RevokedCertificateSlot::kCrlEntryExtensions, &kOptionalEntryExtensions},  // crlEntryExtensions  Extensions OPTIONAL
    });

}  // namespace

constinit const Asn1Descriptor kRevokedCertificate = Sequence(kRevokedCertificateParts);
constinit const Asn1Descriptor kRevokedCertificates = SequenceOf<&kRevokedCertificate>();

namespace {

constexpr Asn1Descriptor kOptionalRevokedCertificates = Optional(SequenceOf<&kRevokedCertificate>());

// TBSCertList ::= SEQUENCE {                                           (RFC 5280 5.1)
constexpr auto kTbsCertListParts = Slots<TbsCertListSlot>({
    {TbsCertListSlot::kVersion, &kOptionalVersion},                          // version              Version OPTIONAL
    {TbsCertListSlot::kSignature, &kAlgorithmIdentifier},                    // signature            AlgorithmIdentifier
    {TbsCertListSlot::kIssuer, &kX509Name},                                  // issuer               Name (its one alternative)
    {TbsCertListSlot::kThisUpdate, &kTime},                                  // thisUpdate           Time
    {TbsCertListSlot::kNextUpdate, &kOptionalTime},                          // nextUpdate           Time OPTIONAL
    {TbsCertListSlot::kRevokedCertificates, &kOptionalRevokedCertificates},  // revokedCertificates  SEQUENCE OF ... OPTIONAL
    {TbsCertListSlot::kCrlExtensions, &kOptionalCrlExtensions},              // crlExtensions        [0] EXPLICIT Extensions OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kTbsCertList = Sequence(kTbsCertListParts);

namespace {

// CertificateList ::= SEQUENCE {                                       (RFC 5280 5.1)
constexpr auto kCertificateListParts = Slots<CertificateListSlot>({
        {CertificateListSlot::kTbsCertList, &kTbsCertList},                 // tbsCertList         TBSCertList
        {CertificateListSlot::kSignatureAlgorithm, &kAlgorithmIdentifier},  // signatureAlgorithm  AlgorithmIdentifier
        {CertificateListSlot::kSignatureValue, &kBitString},                // signatureValue      BIT STRING
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


// The address of a slot of tbsCertList: 32 without a CRL, 311 without the part.
template <SlotEnum... Steps>
uint32_t TbsSlot(const X509Crl* crl, void*** out, Steps... steps) {
    return Walk(TV_SITE, const_cast<X509Crl*>(crl), out, CertificateListSlot::kTbsCertList, steps...);
}

uint32_t RevokedList(const X509Crl* crl, Asn1List** out) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kRevokedCertificates));
    *out = static_cast<Asn1List*>(*slot);
    return TV_OK;
}

uint32_t EntryAt(const Asn1List* list, uint32_t index, void** entry) {
    return ListElementT(kRevokedFamily, list, index, entry);
}

uint32_t ReadTime(const void* choice, LibraryTime* out) {
    if (!out) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetTimeIfChosen(TV_SITE, choice, out);
}

// Step 3 of adding an entry: a fresh RevokedCertificate, or nothing. An empty serial is refused
// (32) rather than stored: an INTEGER without contents is not DER, and the CRL would then fail to
// decode anywhere else.
uint32_t NewEntry(const uint8_t* serial, uint32_t serialLen, const LibraryTime* date, OwnedValue& entry) {
    if (!serial || serialLen == 0 || !date) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(NewStructure(TV_SITE, kRevokedCertificate, entry));
    void*& number = Slot(entry.get(), RevokedCertificateSlot::kUserCertificate);
    if (!(number = NewPrimitive(ASN1_INTEGER, serial, serialLen))) return TV_FAIL(TV_ERR_NO_MEMORY);
    return SetTimeChoice(&Slot(entry.get(), RevokedCertificateSlot::kRevocationDate), date);
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
    void* entry = nullptr;
    TV_TRY(EntryAt(list, index, &entry));
    *handle = ExtensionsHandleOfSlot(&Slot(entry, RevokedCertificateSlot::kCrlEntryExtensions));
    return TV_OK;
}

// ---- search ---------------------------------------------------------------------------------------

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
uint32_t FollowCertificateIssuer(void* entry, IssuerInForce& inForce) {
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

}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- life cycle and coding ------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(X509Crl, kCrlFamily)

TV_FAMILY_LIFE_CYCLE(X509Crls, kCrlsFamily)

extern "C" TV_API uint32_t CreateX509CrlCopy(const X509Crl* crl, X509Crl** outCrl) {
    return CopyT(kCrlFamily, crl, outCrl);
}

extern "C" TV_API uint32_t CreateX509CrlsCopy(const X509Crls* crls, X509Crls** outCrls) {
    return CopyT(kCrlsFamily, crls, outCrls);
}

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
    return GetToBeSigned(TV_SITE, kSignedCrl, crl, out, outLen);
}

// ---- fields ---------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlVersion(const X509Crl* crl, uint32_t* outVersion) {
    if (!outVersion) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kVersion));
    return GetVersion(TV_SITE, *slot, VersionForm::kFourOctets, outVersion);
}

extern "C" TV_API uint32_t SetX509CrlVersion(X509Crl* crl, uint32_t version) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kVersion));
    if (version > 1) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetNumber(slot, ASN1_INTEGER, version);
}

extern "C" TV_API uint32_t GetX509CrlIssuer(X509Crl* crl, X509Name** outIssuer) {
    if (!outIssuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kIssuer));
    return NameInSlot(TV_SITE, slot, outIssuer);
}

extern "C" TV_API uint32_t SetX509CrlIssuer(X509Crl* crl, const X509Name* issuer) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kIssuer));
    if (!issuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetNameCopy(slot, issuer);
}

extern "C" TV_API uint32_t GetX509CrlThisUpdate(const X509Crl* crl, LibraryTime* outTime) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kThisUpdate));
    return ReadTime(*slot, outTime);
}

extern "C" TV_API uint32_t SetX509CrlThisUpdate(X509Crl* crl, const LibraryTime* time) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kThisUpdate));
    if (!time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetTimeChoice(slot, time);
}

extern "C" TV_API uint32_t GetX509CrlNextUpdate(const X509Crl* crl, LibraryTime* outTime) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kNextUpdate));
    return ReadTime(*slot, outTime);
}

extern "C" TV_API uint32_t SetX509CrlNextUpdate(X509Crl* crl, const LibraryTime* time) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kNextUpdate));
    if (!time) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetTimeChoice(slot, time);
}

extern "C" TV_API uint32_t RemoveX509CrlNextUpdate(X509Crl* crl) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kNextUpdate));
    FreeAsn1Object(&kOptionalTime, *slot);
    *slot = nullptr;
    return TV_OK;
}

// The handle is the crlExtensions slot itself, also while it holds no list, so that the first
// extension can be added in place.
extern "C" TV_API uint32_t GetX509CrlExtensions(X509Crl* crl, X509Extensions** outExtensions) {
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kCrlExtensions));
    *outExtensions = ExtensionsHandleOfSlot(slot);
    return TV_OK;
}

// ---- revoked entries ------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateCount(const X509Crl* crl, uint32_t* outCount) {
    if (!outCount) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1List* list = nullptr;
    TV_TRY(RevokedList(crl, &list));
    *outCount = list ? list->count : 0;
    return TV_OK;
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateSerialNumber(const X509Crl* crl, uint32_t index, uint8_t* out,
                                                                    uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1List* list = nullptr;
    void* entry = nullptr;
    TV_TRY(RevokedList(crl, &list));
    TV_TRY(EntryAt(list, index, &entry));
    return GetLeaf(TV_SITE, Slot(entry, RevokedCertificateSlot::kUserCertificate), out, outLen);
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateRevokationDate(const X509Crl* crl, uint32_t index,
                                                                      LibraryTime* outTime) {
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    Asn1List* list = nullptr;
    void* entry = nullptr;
    TV_TRY(RevokedList(crl, &list));
    TV_TRY(EntryAt(list, index, &entry));
    return ReadTime(Slot(entry, RevokedCertificateSlot::kRevocationDate), outTime);
}

extern "C" TV_API uint32_t GetX509CrlRevokedCertificateExtensions(X509Crl* crl, uint32_t index,
                                                                  X509Extensions** outExtensions) {
    Asn1List* list = nullptr;
    TV_TRY(RevokedList(crl, &list));
    return EntryExtensions(list, index, outExtensions);
}

extern "C" TV_API uint32_t AddX509CrlRevokedCertificate(X509Crl* crl, const uint8_t* inSerial, uint32_t inSerialLen,
                                                        const LibraryTime* revocationDate, uint32_t* outIndex) {
    if (!crl || !inSerial || !revocationDate || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kRevokedCertificates));
    const bool created = !*slot;
    if (created && !(*slot = ListCreate())) return TV_FAIL(TV_ERR_NO_MEMORY);
    const uint32_t rc = AppendEntry(static_cast<Asn1List*>(*slot), inSerial, inSerialLen, revocationDate, outIndex);
    // A failed add leaves the CRL as it was: a list made for it would show as an empty SEQUENCE.
    if (rc != TV_OK && created) {
        ListFree(static_cast<Asn1List*>(*slot), &kRevokedCertificate);
        *slot = nullptr;
    }
    return rc;
}

extern "C" TV_API uint32_t ClearX509CrlRevokedCertificates(X509Crl* crl) {
    Asn1List* list = nullptr;
    TV_TRY(RevokedList(crl, &list));
    // An absent list stays absent: there is nothing to clear, and clearing must not add a field.
    if (list) ListClear(list, &kRevokedCertificate);
    return TV_OK;
}

extern "C" TV_API uint32_t RemoveX509CrlRevokedCertificates(X509Crl* crl) {
    void** slot = nullptr;
    TV_TRY(TbsSlot(crl, &slot, TbsCertListSlot::kRevokedCertificates));
    ListFree(static_cast<Asn1List*>(*slot), &kRevokedCertificate);
    *slot = nullptr;
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
    if (!issuer || !inSerial || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* tbs = nullptr;
    TV_TRY(TbsOf(TV_SITE, kSignedCrl, crl, &tbs));
    HeapBytes sought;
    uint32_t soughtLen = 0;
    auto encodeIssuer = [&](uint8_t* buffer, uint32_t* len) { return EncodeX509Name(issuer, buffer, len); };
    TV_TRY(EncodeToHeap(TV_SITE, encodeIssuer, sought, &soughtLen));

    const auto* list = static_cast<const Asn1List*>(Slot(tbs, TbsCertListSlot::kRevokedCertificates));
    const auto* own = static_cast<const X509Name*>(Slot(tbs, TbsCertListSlot::kIssuer));
    if (!own) return TV_FAIL(TV_ERR_ABSENT);
    IssuerInForce inForce;
    inForce.len = sizeof inForce.der;
    TV_TRY(EncodeX509Name(own, inForce.der, &inForce.len));
    if (!list || list->count == 0) return TV_FAIL(TV_ERR_NOT_FOUND);

    for (uint32_t i = 0; i < list->count; ++i) {
        void* entry = list->items[i];
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
