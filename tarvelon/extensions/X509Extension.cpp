// Extensions keyed by OID with opaque values, one at a time and as lists behind a one-field handle.
#include "tarvelon/extensions/X509Extension.h"

#include "tarvelon/extensions/OidKeyedList.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509Extension)

namespace tv::desc {

// Extension ::= SEQUENCE {                                             (RFC 5280 4.1)
constexpr auto kExtensionParts = Slots<ExtensionSlot>({
    {ExtensionSlot::kExtnId, &kOid},                   // extnID     OBJECT IDENTIFIER
    {ExtensionSlot::kCritical, &kBooleanDefaultFalse}, // critical   BOOLEAN DEFAULT FALSE
    {ExtensionSlot::kExtnValue, &kOctetString},        // extnValue  OCTET STRING
});
constinit const Asn1Descriptor kExtension = Sequence(kExtensionParts);
constinit const Asn1Descriptor kExtensions = SequenceOf<&kExtension>();

}  // namespace tv::desc

namespace tv {
namespace {

constinit const Family kExtensionFamily{&desc::kExtension, Module::X509Extension, 0};
constinit const Family kExtensionsFamily{&desc::kExtensions, Module::X509Extension, 0};

// The three parts are built before anything in the extension is released, so a failure leaves
// the extension as it was.
uint32_t StoreExtension(X509Extension* e, const uint8_t* oid, bool critical, const uint8_t* value, uint32_t valueLen) {
    if (!e || !oid || !value) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue id(&desc::kOid, NewPrimitive(ASN1_OBJECT_IDENTIFIER, oid + 1, oid[0]));
    const uint8_t flag = critical ? 0xFF : 0x00;
    OwnedValue boolean(&desc::kBoolean, NewPrimitive(ASN1_BOOLEAN, &flag, 1));
    OwnedValue octets(&desc::kOctetString, NewPrimitive(ASN1_OCTET_STRING, value, valueLen));
    if (!id.get() || !boolean.get() || !octets.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    FreeAsn1Object(&desc::kOid, Slot(e, desc::ExtensionSlot::kExtnId));
    FreeAsn1Object(&desc::kBoolean, Slot(e, desc::ExtensionSlot::kCritical));
    FreeAsn1Object(&desc::kOctetString, Slot(e, desc::ExtensionSlot::kExtnValue));
    Slot(e, desc::ExtensionSlot::kExtnId) = id.Release();
    Slot(e, desc::ExtensionSlot::kCritical) = boolean.Release();
    Slot(e, desc::ExtensionSlot::kExtnValue) = octets.Release();
    return TV_OK;
}

uint32_t NewExtension(const uint8_t* oid, bool critical, const uint8_t* value, uint32_t valueLen, OwnedValue& out) {
    TV_TRY(CreateT(kExtensionFamily, reinterpret_cast<X509Extension**>(out.Out())));
    return StoreExtension(static_cast<X509Extension*>(out.get()), oid, critical, value, valueLen);
}

// Both sizes are stored whatever happens; a malformed BOOLEAN wins over the buffers' 49s, the
// OID's 49 over the value's.
uint32_t ReadExtension(const X509Extension* e, uint8_t* oid, uint32_t* oidLen, uint32_t* critical, uint8_t* value,
                       uint32_t* valueLen) {
    auto* id = static_cast<const Asn1Primitive*>(Slot(e, desc::ExtensionSlot::kExtnId));
    auto* octets = static_cast<const Asn1Primitive*>(Slot(e, desc::ExtensionSlot::kExtnValue));
    if (!id || !octets) return TV_FAIL(TV_ERR_ABSENT);
    uint32_t booleanRc = TV_OK;
    uint32_t flag = 0;  // an extension created but never set holds no BOOLEAN: the default
    if (auto* b = static_cast<const Asn1Primitive*>(Slot(e, desc::ExtensionSlot::kCritical))) {
        if (b->length == 1 && b->content[0] == 0x00) flag = 0;
        else if (b->length == 1 && b->content[0] == 0xFF) flag = 1;
        else booleanRc = TV_FAIL(TV_ERR_NOT_DER);
    }
    const uint32_t oidRc = OidToPacked(id, oid, oidLen);
    const uint32_t valueRc = PutBytes(TV_SITE, octets->content, octets->length, value, valueLen);
    if (booleanRc != TV_OK) return booleanRc;
    if (critical) *critical = flag;
    return oidRc != TV_OK ? oidRc : valueRc;
}

}  // namespace

bool FindExtensionIndex(const X509Extensions* handle, const uint8_t* packedOid, uint32_t* index) noexcept {
    return FindOid(handle ? ListOf(handle) : nullptr, desc::ExtensionSlot::kExtnId, packedOid, index);
}

}  // namespace tv

using namespace tv;

// ---- one extension --------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateX509Extension(X509Extension** outExtension, const uint8_t* inOid, int critical,
                                               const uint8_t* inValue, uint32_t inValueLen) {
    if (!outExtension) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outExtension = nullptr;
    if (!inOid || !inValue) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kExtension);
    TV_TRY(NewExtension(inOid, critical != 0, inValue, inValueLen, built));
    *outExtension = static_cast<X509Extension*>(built.Release());
    return TV_OK;
}

extern "C" TV_API uint32_t SetX509Extension(X509Extension* extension, const uint8_t* inOid, uint32_t critical,
                                            const uint8_t* inValue, uint32_t inValueLen) {
    return StoreExtension(extension, inOid, critical != 0, inValue, inValueLen);
}

extern "C" TV_API uint32_t GetX509Extension(const X509Extension* extension, uint8_t* outOid, uint32_t* outOidLen,
                                            uint32_t* outCritical, uint8_t* outValue, uint32_t* outValueLen) {
    if (!extension || !outOidLen || !outValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReadExtension(extension, outOid, outOidLen, outCritical, outValue, outValueLen);
}

extern "C" TV_API uint32_t EncodeX509Extension(const X509Extension* extension, uint8_t* out, uint32_t* outLen) {
    return EncodeT(kExtensionFamily, extension, out, outLen);
}

extern "C" TV_API uint32_t DecodeX509Extension(const uint8_t* in, uint32_t inLen, X509Extension** outExtension) {
    return DecodeT(kExtensionFamily, in, inLen, outExtension);
}

extern "C" TV_API uint32_t FreeX509Extension(X509Extension* extension) { return FreeT(kExtensionFamily, extension); }

// ---- lists ------------------------------------------------------------------------------------------

extern "C" TV_API uint32_t CreateX509Extensions(X509Extensions** outExtensions) {
    return HandleCreateT(kExtensionsFamily, outExtensions);
}

extern "C" TV_API uint32_t AddX509ExtensionsExtension(X509Extensions* extensions, const uint8_t* inOid, int critical,
                                                      const uint8_t* inValue, uint32_t inValueLen) {
    if (!extensions || !inOid || !inValue) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue built(&desc::kExtension);
    TV_TRY(NewExtension(inOid, critical != 0, inValue, inValueLen, built));
    Asn1List* list = nullptr;
    TV_TRY(HandleListT(kExtensionsFamily, extensions, &list));
    return ListAppendT(kExtensionsFamily, list, built);
}

extern "C" TV_API uint32_t GetX509ExtensionsExtensionsCount(const X509Extensions* extensions, uint32_t* outCount) {
    return HandleCountT(kExtensionsFamily, extensions, outCount);
}

extern "C" TV_API uint32_t GetX509ExtensionsExtension(const X509Extensions* extensions, uint32_t index, uint8_t* outOid,
                                                      uint32_t* outOidLen, uint32_t* outCritical, uint8_t* outValue,
                                                      uint32_t* outValueLen) {
    if (!extensions || !outOidLen || !outValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!extensions->list) return TV_FAIL(TV_ERR_ABSENT);
    const X509Extension* e = nullptr;
    TV_TRY(ListElementT(kExtensionsFamily, ListOf(extensions), index, &e));
    return ReadExtension(e, outOid, outOidLen, outCritical, outValue, outValueLen);
}

extern "C" TV_API uint32_t FindX509Extension(const X509Extensions* extensions, const uint8_t* inOid, uint32_t* outIndex) {
    if (!extensions || !inOid || !outIndex) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return FindExtensionIndex(extensions, inOid, outIndex) ? uint32_t{TV_OK} : TV_FAIL(TV_ERR_NOT_FOUND);
}

extern "C" TV_API uint32_t GetX509ExtensionsExtensionValue(const X509Extensions* extensions, const uint8_t* inOid,
                                                           uint8_t* outValue, uint32_t* outValueLen) {
    if (!outValueLen || !extensions || !inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* e = ElementWithOid(ListOf(extensions), desc::ExtensionSlot::kExtnId, inOid);
    if (!e) return TV_FAIL(TV_ERR_NOT_FOUND);
    return GetLeaf(TV_SITE, Slot(e, desc::ExtensionSlot::kExtnValue), outValue, outValueLen);
}

extern "C" TV_API uint32_t RemoveX509ExtensionsExtension(X509Extensions* extensions, uint32_t index) {
    if (!extensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!extensions->list) return TV_FAIL(TV_ERR_ABSENT);
    return ListRemoveT(kExtensionsFamily, ListOf(extensions), index);
}

extern "C" TV_API uint32_t RemoveX509ExtensionsExtension2(X509Extensions* extensions, const uint8_t* inOid) {
    if (!extensions || !inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // Of two adjacent matches one call removes the first, as callers know it.
    return RemoveOid(kExtensionsFamily, ListOf(extensions), desc::ExtensionSlot::kExtnId, inOid, OidWalk::kForwardSkippingMovedIn);
}

extern "C" TV_API uint32_t ClearX509Extensions(X509Extensions* extensions) {
    return HandleClearT(kExtensionsFamily, extensions);
}

extern "C" TV_API uint32_t RemoveX509Extensions(X509Extensions* extensions) {
    return HandleRemoveListT(kExtensionsFamily, extensions);
}

extern "C" TV_API uint32_t FreeX509Extensions(X509Extensions* extensions) {
    return HandleFreeT(kExtensionsFamily, extensions);
}

extern "C" TV_API uint32_t SetX509ExtensionsSorted(X509Extensions* extensions, uint32_t sorted) {
    return HandleSetSortedT(kExtensionsFamily, extensions, sorted);
}

extern "C" TV_API uint32_t EncodeX509Extensions(const X509Extensions* extensions, uint8_t* out, uint32_t* outLen) {
    return HandleEncodeT(kExtensionsFamily, extensions, out, outLen);
}

extern "C" TV_API uint32_t DecodeX509Extensions(const uint8_t* in, uint32_t inLen, X509Extensions** outExtensions) {
    return HandleDecodeT(kExtensionsFamily, in, inLen, outExtensions);
}
