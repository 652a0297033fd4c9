// The shared operations of signed structures. No module of their own: failures are recorded at the
// caller's site.
#include "tarvelon/x509/SignedStructure.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/x509/Certificate.h"

namespace tv {
namespace {

void*& Part(void* value, size_t slot) { return static_cast<void**>(value)[slot]; }

// The structure holding the algorithm, the signature and the certificates: the value itself, or
// its optional block, made here for writers (`make`) and absent (311) for readers.
uint32_t Holder(Site site, const SignedParts& s, const void* value, bool make, void** out) {
    if (!value) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (s.block < 0) {
        *out = const_cast<void*>(value);
        return TV_OK;
    }
    void*& block = Part(const_cast<void*>(value), size_t(s.block));
    if (!block) {
        if (!make) return Fail(site, TV_ERR_ABSENT);
        TV_TRY(CreateOptionalAsn1Sequence(s.blockDescriptor, &block, 0));
    }
    *out = block;
    return TV_OK;
}

// Runs `write` on the holder, made on demand. A block made for a write that then fails goes again,
// so that a failure leaves the structure as it was.
template <typename Write>
uint32_t WriteInHolder(Site site, const SignedParts& s, void* value, Write write) {
    const bool made = value && s.block >= 0 && !Part(value, size_t(s.block));
    void* holder = nullptr;
    TV_TRY(Holder(site, s, value, true, &holder));
    const uint32_t rc = write(holder);
    if (rc != TV_OK && made) {
        FreeAsn1Object(s.blockDescriptor, holder);
        Part(value, size_t(s.block)) = nullptr;
    }
    return rc;
}

// The AlgorithmIdentifier slot that reads and writes go to, and the outer one it mirrors into.
uint32_t AlgorithmSlots(Site site, const SignedParts& s, void* value, void*** slot, void*** mirror) {
    if (s.innerAlgorithm < 0) {
        void* holder = nullptr;
        TV_TRY(Holder(site, s, value, false, &holder));
        *slot = &Part(holder, s.algorithm);
        *mirror = nullptr;
        return TV_OK;
    }
    void* tbs = nullptr;
    TV_TRY(TbsOf(site, s, value, &tbs));
    *slot = &Part(tbs, size_t(s.innerAlgorithm));
    *mirror = &Part(value, s.algorithm);
    return TV_OK;
}

// `set(slot, mirror)` on the algorithm that writes go to.
template <typename Set>
uint32_t WriteAlgorithm(Site site, const SignedParts& s, void* value, Set set) {
    if (s.innerAlgorithm < 0)
        return WriteInHolder(site, s, value, [&](void* holder) { return set(&Part(holder, s.algorithm), nullptr); });
    void** slot = nullptr;
    void** mirror = nullptr;
    TV_TRY(AlgorithmSlots(site, s, value, &slot, &mirror));
    return set(slot, mirror);
}

}  // namespace

uint32_t TbsOf(Site site, const SignedParts& s, const void* value, void** out) noexcept {
    if (!value) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    *out = Part(const_cast<void*>(value), s.tbs);
    if (!*out) return Fail(site, TV_ERR_ABSENT);
    return TV_OK;
}

uint32_t GetToBeSigned(Site site, const SignedParts& s, const void* value, uint8_t* out, uint32_t* outLen) noexcept {
    if (!value || !outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    void* tbs = nullptr;
    TV_TRY(TbsOf(site, s, value, &tbs));
    return EncodeSized(site, tbs, s.toBeSigned, out, outLen);
}

uint32_t GetSignature(Site site, const SignedParts& s, const void* value, uint8_t* out, uint32_t* outLen) noexcept {
    if (!value || !outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    void* holder = nullptr;
    TV_TRY(Holder(site, s, value, false, &holder));
    auto* bits = static_cast<const Asn1BitStringValue*>(Part(holder, s.signature));
    if (bits && s.signatureNeedsContent && !bits->content && bits->length) return Fail(site, TV_ERR_ABSENT);
    return GetBits(site, bits, out, outLen);
}

uint32_t SetSignature(Site site, const SignedParts& s, void* value, const uint8_t* in, uint32_t inLen) noexcept {
    if (!value || !in) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    return WriteInHolder(site, s, value, [&](void* holder) {
        void*& slot = Part(holder, s.signature);
        return s.freshSignature ? ReplaceBits(site, &slot, in, inLen) : SetBits(site, &slot, in, inLen);
    });
}

uint32_t GetSignatureAlgorithm(Site site, const SignedParts& s, const void* value, uint8_t* oid, uint32_t* oidLen,
                               uint8_t* params, uint32_t* paramsLen) noexcept {
    void** slot = nullptr;
    void** mirror = nullptr;
    TV_TRY(AlgorithmSlots(site, s, const_cast<void*>(value), &slot, &mirror));
    return GetAlgorithmOidAndParameters(*slot, oid, oidLen, params, paramsLen);
}

uint32_t SetSignatureAlgorithm(Site site, const SignedParts& s, void* value, const uint8_t* oid, const uint8_t* params,
                               uint32_t paramsLen) noexcept {
    return WriteAlgorithm(site, s, value, [&](void** slot, void** mirror) {
        return SetAlgorithmOidAndParameters(slot, oid, params, paramsLen, mirror);
    });
}

uint32_t SetGostSignatureAlgorithm(Site site, const SignedParts& s, void* value, uint32_t algId, uint8_t mode,
                                   uint32_t publicKeyParamId, uint32_t digestParamId,
                                   uint32_t encryptionParamId) noexcept {
    return WriteAlgorithm(site, s, value, [&](void** slot, void** mirror) {
        return SetAlgorithmGostR34102001AndParameters(slot, algId, mode, publicKeyParamId, digestParamId,
                                                      encryptionParamId, mirror);
    });
}

// ---- certificates -----------------------------------------------------------------------------------

namespace {

// The certificate list is recorded under the caller's module like everything else here.
Family CertificatesOf(Site site) { return Family{&desc::kCertificates, site.module, 0}; }

uint32_t CertificateList(Site site, const SignedParts& s, const void* value, const void** out) {
    void* holder = nullptr;
    TV_TRY(Holder(site, s, value, false, &holder));
    *out = Part(holder, size_t(s.certificates));
    return TV_OK;
}

}  // namespace

uint32_t AddCertificate(Site site, const SignedParts& s, void* value, Certificate* cert) noexcept {
    if (!cert) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    return WriteInHolder(site, s, value, [&](void* holder) {
        return AdoptIntoSlotList(CertificatesOf(site), &Part(holder, size_t(s.certificates)), cert);
    });
}

uint32_t GetCertificateCount(Site site, const SignedParts& s, const void* value, uint32_t* outCount) noexcept {
    const void* list = nullptr;
    TV_TRY(CertificateList(site, s, value, &list));
    return SlotListCount(site, CertificatesOf(site), list, outCount);
}

uint32_t GetCertificateAt(Site site, const SignedParts& s, const void* value, uint32_t index,
                          Certificate** out) noexcept {
    const void* list = nullptr;
    TV_TRY(CertificateList(site, s, value, &list));
    return SlotListElement(site, CertificatesOf(site), list, index, out);
}

uint32_t RemoveCertificates(Site site, const SignedParts& s, void* value) noexcept {
    if (!value) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    void* holder = s.block < 0 ? value : Part(value, size_t(s.block));
    if (!holder) return TV_OK;
    void*& list = Part(holder, size_t(s.certificates));
    FreeAsn1Object(&desc::kCertificates, list);
    list = nullptr;
    return TV_OK;
}

uint32_t HasSignatureBlock(Site site, const SignedParts& s, const void* value) noexcept {
    void* holder = nullptr;
    return Holder(site, s, value, false, &holder);
}

uint32_t RemoveSignatureBlock(Site site, const SignedParts& s, void* value) noexcept {
    if (!value) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    void*& block = Part(value, size_t(s.block));
    FreeAsn1Object(s.blockDescriptor, block);
    block = nullptr;
    return TV_OK;
}

uint32_t GetVersion(Site site, const void* leaf, VersionForm form, uint32_t* out) noexcept {
    auto* version = static_cast<const Asn1Primitive*>(leaf);
    if (!version) return Fail(site, TV_ERR_ABSENT);
    const uint8_t* p = version->content;
    uint32_t n = version->length;
    if (form == VersionForm::kLeadingZeros && (!p || n == 0)) return Fail(site, TV_ERR_ABSENT);
    if (n == 0 || (p[0] & 0x80)) return Fail(site, TV_ERR_NOT_DER);
    if (form == VersionForm::kLeadingZeros)
        while (n > 1 && p[0] == 0) ++p, --n;
    if (n > 4) return Fail(site, TV_ERR_NOT_DER);
    uint32_t v = 0;
    for (uint32_t i = 0; i < n; ++i) v = v << 8 | p[i];
    *out = v;
    return TV_OK;
}

}  // namespace tv
