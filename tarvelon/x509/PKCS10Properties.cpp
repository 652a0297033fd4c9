// Certification requests: public key and its algorithm, signature algorithm and value, attributes
// and the requested extensions.
#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/x509/pkcs10.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(PKCS10Properties)

namespace tv {
namespace {

// Extension lists up to this size are encoded into the extensionRequest attribute; longer ones are
// refused (49) rather than written, a limit callers have built on.
constexpr uint32_t kExtensionsWorkingSize = 1024;

using desc::CertificationRequestSlot;
using InfoSlot = desc::CertificationRequestInfoSlot;

// The address of a slot of the request info: 32 without a request, 311 without the info.
uint32_t InfoSlotOf(const PKCS10CertReq* request, InfoSlot which, void*** out) {
    return Walk(TV_SITE, const_cast<PKCS10CertReq*>(request), out, CertificationRequestSlot::kCertificationRequestInfo,
                which);
}

// The SubjectPublicKeyInfo to read: 311 when the request lacks it.
uint32_t SpkiFor(const PKCS10CertReq* request, const void** out) {
    return WalkPresent(TV_SITE, request, out, CertificationRequestSlot::kCertificationRequestInfo,
                       InfoSlot::kSubjectPKInfo);
}

// The SubjectPublicKeyInfo to write, created empty when the request lacks it.
uint32_t SpkiForWrite(PKCS10CertReq* request, void** out) {
    void** spki = nullptr;
    TV_TRY(InfoSlotOf(request, InfoSlot::kSubjectPKInfo, &spki));
    if (!*spki) TV_TRY(CreateAsn1Object(&desc::kSubjectPublicKeyInfo, spki, 0));
    *out = *spki;
    return TV_OK;
}

uint32_t SpkiAlgorithmSlot(PKCS10CertReq* request, void*** out) {
    void* spki = nullptr;
    TV_TRY(SpkiForWrite(request, &spki));
    *out = &Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm);
    return TV_OK;
}

// The attribute set as a handle: 311 when the request has none.
uint32_t AttributesFor(const PKCS10CertReq* request, RsaAttributes** out) {
    void** slot = nullptr;
    TV_TRY(InfoSlotOf(request, InfoSlot::kAttributes, &slot));
    if (!*slot) return TV_FAIL(TV_ERR_ABSENT);
    *out = AttributesHandleOfSlot(slot);
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- public key -----------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetPKCS10CertReqPublicKey(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* spki = nullptr;
    TV_TRY(SpkiFor(request, &spki));
    return GetSubjectPublicKey(spki, out, outLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqPublicKey(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen) {
    if (!in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* spki = nullptr;
    TV_TRY(SpkiForWrite(request, &spki));
    return SetSubjectPublicKey(spki, in, inLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKey(PKCS10CertReq* request, const uint8_t* in,
                                                                  uint32_t inLen) {
    if (!in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* spki = nullptr;
    TV_TRY(SpkiForWrite(request, &spki));
    return SetGostPublicKey(spki, in, inLen);
}

// The 2012 key is wrapped exactly like the 2001 one (RFC 4491, RFC 9215).
extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102012PublicKey(PKCS10CertReq* request, const uint8_t* in,
                                                                  uint32_t inLen) {
    return SetPKCS10CertReqGostR34102001PublicKey(request, in, inLen);
}

extern "C" TV_API uint32_t GetPKCS10CertReqPublicKeyGostR3410(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* spki = nullptr;
    TV_TRY(SpkiFor(request, &spki));
    return GetGostPublicKey(spki, out, outLen);
}

extern "C" TV_API uint32_t GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid,
                                                                              uint32_t* outOidLen, uint8_t* outParams,
                                                                              uint32_t* outParamsLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const void* spki = nullptr;
    TV_TRY(SpkiFor(request, &spki));
    return GetAlgorithmOidAndParameters(Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm), outOid, outOidLen,
                                        outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(PKCS10CertReq* request,
                                                                              const uint8_t* inOid,
                                                                              const uint8_t* inParams,
                                                                              uint32_t inParamsLen) {
    if (!inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** slot = nullptr;
    TV_TRY(SpkiAlgorithmSlot(request, &slot));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(
    PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    void** slot = nullptr;
    TV_TRY(SpkiAlgorithmSlot(request, &slot));
    return SetAlgorithmGostR34102001AndParameters(slot, algId, mode, publicKeyParamId, digestParamId,
                                                  encryptionParamId);
}

// ---- signature ------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetPKCS10CertReqSignatureAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid,
                                                                              uint32_t* outOidLen, uint8_t* outParams,
                                                                              uint32_t* outParamsLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetSignatureAlgorithm(TV_SITE, kSignedRequest, request, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqSignatureAlgorithmOidAndParameters(PKCS10CertReq* request,
                                                                              const uint8_t* inOid,
                                                                              const uint8_t* inParams,
                                                                              uint32_t inParamsLen) {
    if (!inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetSignatureAlgorithm(TV_SITE, kSignedRequest, request, inOid, inParams, inParamsLen);
}

// Without a parameter block: NULL parameters (mode 0) or none (mode 255).
extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmID(PKCS10CertReq* request, uint32_t algId,
                                                                             uint8_t mode) {
    if (!request) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (mode != kGostParametersNull && mode != kGostParametersAbsent) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetGostSignatureAlgorithm(TV_SITE, kSignedRequest, request, algId, mode, 0, 0, 0);
}

extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(
    PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    return SetGostSignatureAlgorithm(TV_SITE, kSignedRequest, request, algId, mode, publicKeyParamId, digestParamId,
                                     encryptionParamId);
}

extern "C" TV_API uint32_t GetPKCS10CertReqSignature(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    return GetSignature(TV_SITE, kSignedRequest, request, out, outLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqSignature(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen) {
    return SetSignature(TV_SITE, kSignedRequest, request, in, inLen);
}

// ---- attributes and extensions --------------------------------------------------------------------

extern "C" TV_API uint32_t GetPKCS10CertReqAttributes(PKCS10CertReq* request, RsaAttributes** outAttributes) {
    if (!outAttributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return AttributesFor(request, outAttributes);
}

// The copy keeps the source's sorted flag, so a set taken from a received request stays in its order.
extern "C" TV_API uint32_t SetPKCS10CertReqAttributes(PKCS10CertReq* request, const RsaAttributes* attributes) {
    if (!attributes) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttributes* target = nullptr;
    TV_TRY(AttributesFor(request, &target));
    if (!attributes->list) return TV_FAIL(TV_ERR_ABSENT);
    if (attributes == target) return TV_OK;
    OwnedValue copy(&desc::kAttributes);
    TV_TRY(CopyValue(&desc::kAttributes, attributes->list, copy.Out()));
    FreeAsn1Object(&desc::kAttributes, target->list);
    target->list = copy.Release();
    return TV_OK;
}

extern "C" TV_API uint32_t GetPKCS10CertReqExtensions(const PKCS10CertReq* request, X509Extensions** outExtensions) {
    if (!outExtensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttributes* attributes = nullptr;
    TV_TRY(AttributesFor(request, &attributes));
    uint32_t index = 0;
    if (FindRsaAttributesAttribute(attributes, oid::kExtensionRequest, &index) != TV_OK)
        TV_TRY(FindRsaAttributesAttribute(attributes, oid::kMsExtensionRequest, &index));
    HeapBytes value;
    uint32_t valueLen = 0;
    TV_TRY(WriteGrowing(TV_SITE, kExtensionsWorkingSize, value, &valueLen, [&](uint8_t* out, uint32_t* len) {
        return GetRsaAttributesAttributeValue(attributes, index, 0, out, len);
    }));
    return DecodeX509Extensions(value.get(), valueLen, outExtensions);
}

// The new attribute joins before the old ones go, so a failure leaves the request as it was.
// An attribute 1.3.6.1.4.1.311.2.1.14 is left alone.
extern "C" TV_API uint32_t SetPKCS10CertReqExtensions(PKCS10CertReq* request, const X509Extensions* extensions) {
    if (!request || !extensions) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttributes* attributes = nullptr;
    TV_TRY(AttributesFor(request, &attributes));
    uint8_t encoded[kExtensionsWorkingSize];
    uint32_t encodedLen = sizeof encoded;
    const uint32_t rc = EncodeX509Extensions(extensions, encoded, &encodedLen);
    if (rc == TV_ERR_BUFFER_TOO_SMALL) return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
    TV_TRY(rc);
    OwnedValue fresh(&desc::kAttribute);
    TV_TRY(CreateRsaAttribute(reinterpret_cast<RsaAttribute**>(fresh.Out()), oid::kExtensionRequest, encoded, encodedLen));
    Asn1List* list = AttributeList(attributes);
    TV_TRY(ListAppend(list, fresh.get()));
    fresh.Release();
    for (uint32_t i = list->count - 1; i-- > 0;) {
        auto* attribute = static_cast<void* const*>(list->items[i]);
        const void* type = attribute ? Slot(attribute, desc::AttributeSlot::kType) : nullptr;
        if (type && IsOidAndAsn1ObjectIdentifierEquals(oid::kExtensionRequest, static_cast<const Asn1Primitive*>(type)))
            TV_TRY(ListRemoveAt(list, i, &desc::kAttribute));
    }
    return TV_OK;
}
