// Certification requests: public key and its algorithm, signature algorithm and value, attributes
// and the requested extensions.
#include "tarvelon/engine/FamilyOps.h"
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

uint32_t InfoFor(const PKCS10CertReq* request, RequestInfoSlots** out) {
    if (!request) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *out = InfoOf(request);
    if (!*out) return TV_FAIL(TV_ERR_ABSENT);
    return TV_OK;
}

// The SubjectPublicKeyInfo to read: 311 when the request lacks it.
uint32_t SpkiFor(const PKCS10CertReq* request, void** out) {
    RequestInfoSlots* info = nullptr;
    TV_TRY(InfoFor(request, &info));
    *out = Slot(*info, desc::CertificationRequestInfoSlot::kSubjectPKInfo);
    if (!*out) return TV_FAIL(TV_ERR_ABSENT);
    return TV_OK;
}

// The SubjectPublicKeyInfo to write, created empty when the request lacks it.
uint32_t SpkiForWrite(PKCS10CertReq* request, void** out) {
    RequestInfoSlots* info = nullptr;
    TV_TRY(InfoFor(request, &info));
    void*& spki = Slot(*info, desc::CertificationRequestInfoSlot::kSubjectPKInfo);
    if (!spki) TV_TRY(CreateAsn1Object(&desc::kSubjectPublicKeyInfo, &spki, 0));
    *out = spki;
    return TV_OK;
}

uint32_t SpkiAlgorithmSlot(PKCS10CertReq* request, void*** out) {
    void* spki = nullptr;
    TV_TRY(SpkiForWrite(request, &spki));
    *out = &Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm);
    return TV_OK;
}

RsaAttributes* AttributesOf(RequestInfoSlots& info) { return AttributesHandleOfSlot(&Slot(info, desc::CertificationRequestInfoSlot::kAttributes)); }

uint32_t AttributesFor(const PKCS10CertReq* request, RsaAttributes** out) {
    RequestInfoSlots* info = nullptr;
    TV_TRY(InfoFor(request, &info));
    if (!Slot(*info, desc::CertificationRequestInfoSlot::kAttributes)) return TV_FAIL(TV_ERR_ABSENT);
    *out = AttributesOf(*info);
    return TV_OK;
}

}  // namespace
}  // namespace tv

using namespace tv;

// ---- public key -----------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetPKCS10CertReqPublicKey(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* spki = nullptr;
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
    void* spki = nullptr;
    TV_TRY(SpkiFor(request, &spki));
    return GetGostPublicKey(spki, out, outLen);
}

extern "C" TV_API uint32_t GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid,
                                                                              uint32_t* outOidLen, uint8_t* outParams,
                                                                              uint32_t* outParamsLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* spki = nullptr;
    TV_TRY(SpkiFor(request, &spki));
    return GetAlgorithmOidAndParameters(Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm), outOid, outOidLen, outParams,
                                        outParamsLen);
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
// A request has one signatureAlgorithm, outside the signed part: no inner copy to keep in step.

extern "C" TV_API uint32_t GetPKCS10CertReqSignatureAlgorithmOidAndParameters(const PKCS10CertReq* request, uint8_t* outOid,
                                                                              uint32_t* outOidLen, uint8_t* outParams,
                                                                              uint32_t* outParamsLen) {
    if (!request || !outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetAlgorithmOidAndParameters(Slot(request, desc::CertificationRequestSlot::kSignatureAlgorithm), outOid, outOidLen, outParams,
                                        outParamsLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqSignatureAlgorithmOidAndParameters(PKCS10CertReq* request,
                                                                              const uint8_t* inOid,
                                                                              const uint8_t* inParams,
                                                                              uint32_t inParamsLen) {
    if (!request || !inOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetAlgorithmOidAndParameters(&Slot(request, desc::CertificationRequestSlot::kSignatureAlgorithm), inOid, inParams, inParamsLen);
}

// Without a parameter block: NULL parameters (mode 0) or none (mode 255).
extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmID(PKCS10CertReq* request, uint32_t algId,
                                                                             uint8_t mode) {
    if (!request) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (mode != kGostParametersNull && mode != kGostParametersAbsent) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetAlgorithmGostR34102001AndParameters(&Slot(request, desc::CertificationRequestSlot::kSignatureAlgorithm), algId, mode, 0, 0, 0);
}

extern "C" TV_API uint32_t SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(
    PKCS10CertReq* request, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    if (!request) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetAlgorithmGostR34102001AndParameters(&Slot(request, desc::CertificationRequestSlot::kSignatureAlgorithm), algId, mode,
                                                  publicKeyParamId, digestParamId, encryptionParamId);
}

extern "C" TV_API uint32_t GetPKCS10CertReqSignature(const PKCS10CertReq* request, uint8_t* out, uint32_t* outLen) {
    if (!request || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* bits = static_cast<const Asn1BitStringValue*>(Slot(request, desc::CertificationRequestSlot::kSignature));
    if (!bits || (!bits->content && bits->length)) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, bits->content, bits->length, out, outLen);
}

extern "C" TV_API uint32_t SetPKCS10CertReqSignature(PKCS10CertReq* request, const uint8_t* in, uint32_t inLen) {
    if (!request || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue fresh(&desc::kBitString, New<Asn1BitStringValue>());
    if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetBitString(fresh.as<Asn1BitStringValue>(), in, inLen, 0, false));
    void*& slot = Slot(request, desc::CertificationRequestSlot::kSignature);
    FreeAsn1Object(&desc::kBitString, slot);
    slot = fresh.Release();
    return TV_OK;
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
    if (!value.Allocate(kExtensionsWorkingSize)) return TV_FAIL(TV_ERR_NO_MEMORY);
    uint32_t valueLen = kExtensionsWorkingSize;
    uint32_t rc = GetRsaAttributesAttributeValue(attributes, index, 0, value.get(), &valueLen);
    if (rc == TV_ERR_BUFFER_TOO_SMALL) {
        if (!value.Allocate(valueLen)) return TV_FAIL(TV_ERR_NO_MEMORY);
        rc = GetRsaAttributesAttributeValue(attributes, index, 0, value.get(), &valueLen);
    }
    TV_TRY(rc);
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
        if (attribute && IsOidAndAsn1ObjectIdentifierEquals(
                             oid::kExtensionRequest, static_cast<const Asn1Primitive*>(Slot(attribute, desc::AttributeSlot::kType))))
            TV_TRY(ListRemoveAt(list, i, &desc::kAttribute));
    }
    return TV_OK;
}
