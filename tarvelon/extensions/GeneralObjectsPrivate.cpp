// Values of the private extensions: storage lists, OCSP check reports and request options, key
// storage, blocking dates, owner and parent information, and the Kestrune key identifier. Like the
// standard extension values they are the DER of an extnValue; the OIDs are the callers' business.
#include <initializer_list>

#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(GeneralObjects)

namespace tv::desc {

namespace {

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
inline constexpr Asn1Descriptor kNamesField = Optional(UniversalNumbered(0, SequenceOf<&kGeneralName>()));
constexpr auto kExtResultParts = Slots<ExtResultSlot>({
    {ExtResultSlot::kResultKind, &kEnumerated},              // resultKind  ENUMERATED
    {ExtResultSlot::kResultText, &kUtf8String},              // text        UTF8String
    {ExtResultSlot::kStatusKind, &kEnumerated},              // statusKind  ENUMERATED
    {ExtResultSlot::kCheckTime, &kOptionalGeneralizedTime},  // checkTime   GeneralizedTime OPTIONAL
    {ExtResultSlot::kItems, &kStoreItems},                   // items       SEQUENCE OF StoreItem
    {ExtResultSlot::kNames, &kNamesField},                   // names       0 GeneralNames OPTIONAL  -- identifier 20
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
    {CheckTime2Slot::kTimeKind, &kEnumerated},                    // timeKind   ENUMERATED
    {CheckTime2Slot::kCheckTime, &kOptionalGeneralizedTime}, // checkTime  GeneralizedTime OPTIONAL
});

// ExtendedResult, KeyStorage ::= SEQUENCE {
enum class CodedTextSlot : uint32_t { kCode, kText, kCount };
constexpr auto kCodedTextParts = Slots<CodedTextSlot>({
    {CodedTextSlot::kCode, &kEnumerated},             // code  ENUMERATED
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

// ---- scalars ------------------------------------------------------------------------------------

uint32_t PutLeaf(const void* leaf, uint8_t* out, uint32_t* outLen) {
    auto* p = static_cast<const Asn1Primitive*>(leaf);
    return PutBytes(TV_SITE, p->content, p->length, out, outLen);
}

// Numbers cross the interface unsigned but are written as the minimal two's complement of the
// signed 32-bit value, the INTEGER rule of the engine: every four-octet content reads back to the
// number that wrote it, and small codes take one octet.
uint32_t SetNumberLeaf(void** slot, uint8_t typeCode, uint32_t number) {
    uint8_t be[4] = {uint8_t(number >> 24), uint8_t(number >> 16), uint8_t(number >> 8), uint8_t(number)};
    uint32_t skip = 0;
    while (skip < 3 && ((be[skip] == 0x00 && !(be[skip + 1] & 0x80)) || (be[skip] == 0xFF && (be[skip + 1] & 0x80))))
        ++skip;
    return SetOrCreatePrimitive(slot, typeCode, be + skip, 4 - skip);
}

// Contents longer than four octets fail in the engine's reader.
uint32_t GetNumber(const void* leaf, uint32_t* out) {
    if (!leaf) return TV_FAIL(TV_ERR_ABSENT);
    uint8_t le[4];
    TV_TRY(GetAsn1Int32(static_cast<const Asn1Primitive*>(leaf), le));
    *out = uint32_t{le[0]} | uint32_t{le[1]} << 8 | uint32_t{le[2]} << 16 | uint32_t{le[3]} << 24;
    return TV_OK;
}

uint32_t EncodeNumber(const Asn1Descriptor* d, uint32_t number, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(d);
    TV_TRY(SetNumberLeaf(leaf.Out(), d->typeCode, number));
    return EncodeSized(TV_SITE, leaf.get(), d, out, outLen);
}

uint32_t DecodeNumber(const Asn1Descriptor* d, const uint8_t* in, uint32_t inLen, uint32_t* outNumber) {
    if (!outNumber) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(d);
    TV_TRY(DecodeValue(*d, in, inLen, leaf));
    return GetNumber(leaf.get(), outNumber);
}

// ---- structures ---------------------------------------------------------------------------------

void** SlotsOf(void* v) { return static_cast<void**>(v); }
void* const* SlotsOf(const void* v) { return static_cast<void* const*>(v); }

uint32_t NewStructure(const Asn1Descriptor* d, OwnedValue& v) { return CreateAsn1Object(d, v.Out(), 0); }

// An optional leaf is written when the caller gave its octets.
uint32_t SetOptionalLeaf(void** slot, uint8_t typeCode, const uint8_t* in, uint32_t inLen) {
    return in ? SetOrCreatePrimitive(slot, typeCode, in, inLen) : uint32_t{TV_OK};
}

// Octets under the size protocol; an absent part has length 0.
uint32_t GetOptionalLeaf(const void* leaf, uint8_t* out, uint32_t* outLen) {
    if (leaf) return PutLeaf(leaf, out, outLen);
    *outLen = 0;
    return TV_OK;
}

uint32_t GetOptionalNumber(const void* leaf, uint32_t* outPresent, uint32_t* outNumber) {
    *outPresent = leaf ? 1 : 0;
    *outNumber = 0;
    return leaf ? GetNumber(leaf, outNumber) : uint32_t{TV_OK};
}

// An absent time reads as the null time, the all-zero record (not through SetLibraryTimeToNull,
// which refuses to write it).
uint32_t GetOptionalTime(const void* leaf, LibraryTime* out) {
    if (leaf) return GetTimeFromGeneralizedTimeLeaf(leaf, out);
    *out = LibraryTime{};
    return TV_OK;
}

// Every output is filled before the result is chosen, so one call stores all sizes; the first
// failing field in ASN.1 order is reported.
uint32_t FirstFailure(std::initializer_list<uint32_t> codes) {
    for (uint32_t rc : codes)
        if (rc != TV_OK) return rc;
    return TV_OK;
}

// ExtendedResult and KeyStorage share one shape.
uint32_t EncodeCodedText(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kCodedText);
    TV_TRY(NewStructure(&desc::kCodedText, v));
    void** s = SlotsOf(v.get());
    TV_TRY(SetNumberLeaf(&Slot(s, desc::CodedTextSlot::kCode), ASN1_ENUMERATED, code));
    TV_TRY(SetOptionalLeaf(&Slot(s, desc::CodedTextSlot::kText), ASN1_UTF8_STRING, text, textLen));
    return EncodeSized(TV_SITE, v.get(), &desc::kCodedText, out, outLen);
}

uint32_t DecodeCodedText(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen) {
    if (!outCode || !outTextLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kCodedText);
    TV_TRY(DecodeValue(desc::kCodedText, in, inLen, v));
    void* const* s = SlotsOf(static_cast<const void*>(v.get()));
    return FirstFailure({GetNumber(Slot(s, desc::CodedTextSlot::kCode), outCode), GetOptionalLeaf(Slot(s, desc::CodedTextSlot::kText), outText, outTextLen)});
}

// ---- lists --------------------------------------------------------------------------------------

constinit const Family kStoreItemsFamily{&desc::kStoreItems, Module::GeneralObjects, 0};
constinit const Family kExtResultsFamily{&desc::kExtResults, Module::GeneralObjects, 0};

uint32_t AddStoreItem(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen) {
    if (!list || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue item(&desc::kStoreItem);
    TV_TRY(NewStructure(&desc::kStoreItem, item));
    void** s = SlotsOf(item.get());
    TV_TRY(SetNumberLeaf(&Slot(s, desc::StoreItemSlot::kKind), ASN1_ENUMERATED, kind));
    TV_TRY(SetOrCreatePrimitive(&Slot(s, desc::StoreItemSlot::kData), ASN1_OCTET_STRING, in, inLen));
    return ListAppendT(kStoreItemsFamily, list, item);
}

uint32_t GetStoreItem(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen) {
    if (!outKind || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* item = nullptr;
    TV_TRY(ListElementT(kStoreItemsFamily, list, index, &item));
    void* const* s = SlotsOf(item);
    if (!Slot(s, desc::StoreItemSlot::kKind) || !Slot(s, desc::StoreItemSlot::kData)) return TV_FAIL(TV_ERR_ABSENT);
    return FirstFailure({GetNumber(Slot(s, desc::StoreItemSlot::kKind), outKind), PutLeaf(Slot(s, desc::StoreItemSlot::kData), out, outLen)});
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- scalar codecs ----------------------------------------------------------------------------------

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
        return EncodeNumber(&(descriptor), number, out, outLen);                                                \
    }                                                                                                           \
    extern "C" TV_API uint32_t DecodeExtension##Name(const uint8_t* in, uint32_t inLen, uint32_t* outNumber) {  \
        return DecodeNumber(&(descriptor), in, inLen, outNumber);                                               \
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
    if (!outTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue leaf(&desc::kGeneralizedTime);
    TV_TRY(DecodeValue(desc::kGeneralizedTime, in, inLen, leaf));
    return GetTimeFromGeneralizedTimeLeaf(leaf.get(), outTime);
}

// ---- structured values ------------------------------------------------------------------------------

extern "C" TV_API uint32_t EncodeExtensionOcspCheckFile(const uint8_t* fileHash, uint32_t fileHashLen,
                                                        const uint8_t* hash0, uint32_t hash0Len, const uint8_t* hash1,
                                                        uint32_t hash1Len, uint32_t checkKindPresent,
                                                        uint32_t checkKind, const uint8_t* text3, uint32_t text3Len,
                                                        const uint8_t* text4, uint32_t text4Len,
                                                        uint32_t kind5Present, uint32_t kind5, uint8_t* out,
                                                        uint32_t* outLen) {
    if (!fileHash || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kOcspCheckFile);
    TV_TRY(NewStructure(&desc::kOcspCheckFile, v));
    void** s = SlotsOf(v.get());
    TV_TRY(SetOrCreatePrimitive(&Slot(s, desc::OcspCheckFileSlot::kFileHash), ASN1_OCTET_STRING, fileHash, fileHashLen));
    TV_TRY(SetOptionalLeaf(&Slot(s, desc::OcspCheckFileSlot::kHash0), ASN1_OCTET_STRING, hash0, hash0Len));
    TV_TRY(SetOptionalLeaf(&Slot(s, desc::OcspCheckFileSlot::kHash1), ASN1_OCTET_STRING, hash1, hash1Len));
    if (checkKindPresent) TV_TRY(SetNumberLeaf(&Slot(s, desc::OcspCheckFileSlot::kCheckKind), ASN1_ENUMERATED, checkKind));
    TV_TRY(SetOptionalLeaf(&Slot(s, desc::OcspCheckFileSlot::kText3), ASN1_UTF8_STRING, text3, text3Len));
    TV_TRY(SetOptionalLeaf(&Slot(s, desc::OcspCheckFileSlot::kText4), ASN1_UTF8_STRING, text4, text4Len));
    if (kind5Present) TV_TRY(SetNumberLeaf(&Slot(s, desc::OcspCheckFileSlot::kKind5), ASN1_ENUMERATED, kind5));
    return EncodeSized(TV_SITE, v.get(), &desc::kOcspCheckFile, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckFile(const uint8_t* in, uint32_t inLen, uint8_t* outFileHash,
                                                        uint32_t* outFileHashLen, uint8_t* outHash0,
                                                        uint32_t* outHash0Len, uint8_t* outHash1,
                                                        uint32_t* outHash1Len, uint32_t* outCheckKindPresent,
                                                        uint32_t* outCheckKind, uint8_t* outText3,
                                                        uint32_t* outText3Len, uint8_t* outText4,
                                                        uint32_t* outText4Len, uint32_t* outKind5Present,
                                                        uint32_t* outKind5) {
    if (!outFileHashLen || !outHash0Len || !outHash1Len || !outCheckKindPresent || !outCheckKind || !outText3Len ||
        !outText4Len || !outKind5Present || !outKind5)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kOcspCheckFile);
    TV_TRY(DecodeValue(desc::kOcspCheckFile, in, inLen, v));
    void* const* s = SlotsOf(static_cast<const void*>(v.get()));
    return FirstFailure({
        PutLeaf(Slot(s, desc::OcspCheckFileSlot::kFileHash), outFileHash, outFileHashLen),
        GetOptionalLeaf(Slot(s, desc::OcspCheckFileSlot::kHash0), outHash0, outHash0Len),
        GetOptionalLeaf(Slot(s, desc::OcspCheckFileSlot::kHash1), outHash1, outHash1Len),
        GetOptionalNumber(Slot(s, desc::OcspCheckFileSlot::kCheckKind), outCheckKindPresent, outCheckKind),
        GetOptionalLeaf(Slot(s, desc::OcspCheckFileSlot::kText3), outText3, outText3Len),
        GetOptionalLeaf(Slot(s, desc::OcspCheckFileSlot::kText4), outText4, outText4Len),
        GetOptionalNumber(Slot(s, desc::OcspCheckFileSlot::kKind5), outKind5Present, outKind5),
    });
}

extern "C" TV_API uint32_t EncodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* text1, uint32_t text1Len,
                                                                     const uint8_t* text2, uint32_t text2Len,
                                                                     uint32_t kindPresent, uint32_t kind,
                                                                     uint8_t* out, uint32_t* outLen) {
    if (!text1 || !text2 || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kCryptoNetRegistry);
    TV_TRY(NewStructure(&desc::kCryptoNetRegistry, v));
    void** s = SlotsOf(v.get());
    TV_TRY(SetOrCreatePrimitive(&Slot(s, desc::RegistrySlot::kText1), ASN1_UTF8_STRING, text1, text1Len));
    TV_TRY(SetOrCreatePrimitive(&Slot(s, desc::RegistrySlot::kText2), ASN1_UTF8_STRING, text2, text2Len));
    if (kindPresent) TV_TRY(SetNumberLeaf(&Slot(s, desc::RegistrySlot::kKind), ASN1_ENUMERATED, kind));
    return EncodeSized(TV_SITE, v.get(), &desc::kCryptoNetRegistry, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* in, uint32_t inLen,
                                                                     uint8_t* outText1, uint32_t* outText1Len,
                                                                     uint8_t* outText2, uint32_t* outText2Len,
                                                                     uint32_t* outKindPresent, uint32_t* outKind) {
    if (!outText1Len || !outText2Len || !outKindPresent || !outKind) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kCryptoNetRegistry);
    TV_TRY(DecodeValue(desc::kCryptoNetRegistry, in, inLen, v));
    void* const* s = SlotsOf(static_cast<const void*>(v.get()));
    return FirstFailure({
        PutLeaf(Slot(s, desc::RegistrySlot::kText1), outText1, outText1Len),
        PutLeaf(Slot(s, desc::RegistrySlot::kText2), outText2, outText2Len),
        GetOptionalNumber(Slot(s, desc::RegistrySlot::kKind), outKindPresent, outKind),
    });
}

extern "C" TV_API uint32_t EncodeExtensionOcspCheckTime2(uint32_t timeKind, const LibraryTime* checkTime, uint8_t* out,
                                                         uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kOcspCheckTime2);
    TV_TRY(NewStructure(&desc::kOcspCheckTime2, v));
    void** s = SlotsOf(v.get());
    TV_TRY(SetNumberLeaf(&Slot(s, desc::CheckTime2Slot::kTimeKind), ASN1_ENUMERATED, timeKind));
    if (checkTime) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, desc::CheckTime2Slot::kCheckTime), checkTime));
    return EncodeSized(TV_SITE, v.get(), &desc::kOcspCheckTime2, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionOcspCheckTime2(const uint8_t* in, uint32_t inLen, uint32_t* outTimeKind,
                                                         LibraryTime* outCheckTime) {
    if (!outTimeKind || !outCheckTime) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kOcspCheckTime2);
    TV_TRY(DecodeValue(desc::kOcspCheckTime2, in, inLen, v));
    void* const* s = SlotsOf(static_cast<const void*>(v.get()));
    TV_TRY(GetNumber(Slot(s, desc::CheckTime2Slot::kTimeKind), outTimeKind));
    return GetOptionalTime(Slot(s, desc::CheckTime2Slot::kCheckTime), outCheckTime);
}

extern "C" TV_API uint32_t EncodeExtensionExtendedResult(uint32_t code, const uint8_t* text, uint32_t textLen,
                                                         uint8_t* out, uint32_t* outLen) {
    return EncodeCodedText(code, text, textLen, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionExtendedResult(const uint8_t* in, uint32_t inLen, uint32_t* outCode,
                                                         uint8_t* outText, uint32_t* outTextLen) {
    return DecodeCodedText(in, inLen, outCode, outText, outTextLen);
}

extern "C" TV_API uint32_t EncodeExtensionKeyStorage(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out,
                                                     uint32_t* outLen) {
    return EncodeCodedText(code, text, textLen, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionKeyStorage(const uint8_t* in, uint32_t inLen, uint32_t* outCode,
                                                     uint8_t* outText, uint32_t* outTextLen) {
    return DecodeCodedText(in, inLen, outCode, outText, outTextLen);
}

extern "C" TV_API uint32_t EncodeExtensionRequestBlockingDate(const LibraryTime* from, const LibraryTime* until,
                                                              uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kRequestBlockingDate);
    TV_TRY(NewStructure(&desc::kRequestBlockingDate, v));
    void** s = SlotsOf(v.get());
    if (from) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, desc::BlockingDateSlot::kFrom), from));
    if (until) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, desc::BlockingDateSlot::kUntil), until));
    return EncodeSized(TV_SITE, v.get(), &desc::kRequestBlockingDate, out, outLen);
}

extern "C" TV_API uint32_t DecodeExtensionRequestBlockingDate(const uint8_t* in, uint32_t inLen, LibraryTime* outFrom,
                                                              LibraryTime* outUntil) {
    if (!outFrom || !outUntil) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue v(&desc::kRequestBlockingDate);
    TV_TRY(DecodeValue(desc::kRequestBlockingDate, in, inLen, v));
    void* const* s = SlotsOf(static_cast<const void*>(v.get()));
    TV_TRY(GetOptionalTime(Slot(s, desc::BlockingDateSlot::kFrom), outFrom));
    return GetOptionalTime(Slot(s, desc::BlockingDateSlot::kUntil), outUntil);
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
    if (!list || (!text && textLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue element(&desc::kExtResult);
    TV_TRY(NewStructure(&desc::kExtResult, element));
    void** s = SlotsOf(element.get());
    TV_TRY(SetNumberLeaf(&Slot(s, desc::ExtResultSlot::kResultKind), ASN1_ENUMERATED, resultKind));
    TV_TRY(SetOrCreatePrimitive(&Slot(s, desc::ExtResultSlot::kResultText), ASN1_UTF8_STRING, text, textLen));
    TV_TRY(SetNumberLeaf(&Slot(s, desc::ExtResultSlot::kStatusKind), ASN1_ENUMERATED, statusKind));
    if (checkTime) TV_TRY(SetGeneralizedTimeLeaf(&Slot(s, desc::ExtResultSlot::kCheckTime), checkTime));
    // The fresh element already holds an empty items list; the caller's replaces it.
    if (items) {
        FreeAsn1Object(&desc::kStoreItems, Slot(s, desc::ExtResultSlot::kItems));
        Slot(s, desc::ExtResultSlot::kItems) = items;
    } else if (!Slot(s, desc::ExtResultSlot::kItems) && !(Slot(s, desc::ExtResultSlot::kItems) = ListCreate())) {
        return TV_FAIL(TV_ERR_NO_MEMORY);
    }
    Slot(s, desc::ExtResultSlot::kNames) = names;
    if (const uint32_t rc = ListAppend(list, element.get()); rc != TV_OK) {
        if (items) Slot(s, desc::ExtResultSlot::kItems) = nullptr;
        Slot(s, desc::ExtResultSlot::kNames) = nullptr;
        return rc;
    }
    element.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint32_t index,
                                                               uint32_t* outResultKind, uint8_t* outText,
                                                               uint32_t* outTextLen, uint32_t* outStatusKind,
                                                               LibraryTime* outCheckTime, StoreItems** outItems,
                                                               GeneralNames** outNames) {
    const void* element = nullptr;
    TV_TRY(ListElementT(kExtResultsFamily, list, index, &element));
    void* const* s = SlotsOf(element);
    uint32_t resultKind = TV_OK, text = TV_OK, statusKind = TV_OK, checkTime = TV_OK;
    if (outResultKind) resultKind = GetNumber(Slot(s, desc::ExtResultSlot::kResultKind), outResultKind);
    if (outTextLen) text = Slot(s, desc::ExtResultSlot::kResultText) ? PutLeaf(Slot(s, desc::ExtResultSlot::kResultText), outText, outTextLen) : TV_FAIL(TV_ERR_ABSENT);
    if (outStatusKind) statusKind = GetNumber(Slot(s, desc::ExtResultSlot::kStatusKind), outStatusKind);
    if (outCheckTime) checkTime = GetOptionalTime(Slot(s, desc::ExtResultSlot::kCheckTime), outCheckTime);
    if (outItems) *outItems = static_cast<StoreItems*>(Slot(s, desc::ExtResultSlot::kItems));
    if (outNames) *outNames = static_cast<GeneralNames*>(Slot(s, desc::ExtResultSlot::kNames));
    return FirstFailure({resultKind, text, statusKind, checkTime});
}

TV_EXTENSION_LIST_MEMBERS(OcspCheckFileExtResults, kExtResultsFamily,
                          OcspCheckFileExtResults, OcspCheckFileExtResults, OcspCheckFileExtResults)



