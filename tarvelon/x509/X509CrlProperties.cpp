// CRL signature, signature algorithm and authority key identifier.
#include "tarvelon/x509/X509Crl.h"

#include "tarvelon/engine/Engine.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509CrlProperties)

namespace tv {
namespace {

using namespace desc;


// DER of a value with the size protocol in a fresh block (measure, allocate, encode).
template <typename Encode>
uint32_t EncodeToHeap(Encode encode, HeapBytes& out, uint32_t* len) {
    TV_TRY(encode(nullptr, len));
    if (!out.Allocate(*len)) return TV_FAIL(TV_ERR_NO_MEMORY);
    return encode(out.get(), len);
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- signature ------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlSignature(const X509Crl* crl, uint8_t* out, uint32_t* outLen) {
    if (!crl || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* bits = static_cast<const Asn1BitStringValue*>(Slot(crl, CertificateListSlot::kSignatureValue));
    if (!bits) return TV_FAIL(TV_ERR_ABSENT);
    return PutBytes(TV_SITE, bits->content, bits->length, out, outLen);
}

extern "C" TV_API uint32_t SetX509CrlSignature(X509Crl* crl, const uint8_t* in, uint32_t inLen) {
    if (!crl || !in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void*& slot = Slot(crl, CertificateListSlot::kSignatureValue);
    if (slot) return SetBitString(static_cast<Asn1BitStringValue*>(slot), in, inLen, 0, false);
    OwnedValue fresh(&kBitString, New<Asn1BitStringValue>());
    if (!fresh.get()) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(SetBitString(fresh.as<Asn1BitStringValue>(), in, inLen, 0, false));
    slot = fresh.Release();
    return TV_OK;
}

// ---- signature algorithm: read from the TBSCertList, written there first, then outside -----------

extern "C" TV_API uint32_t GetX509CrlSignatureAlgorithmOidAndParameters(const X509Crl* crl, uint8_t* outOid,
                                                                        uint32_t* outOidLen, uint8_t* outParams,
                                                                        uint32_t* outParamsLen) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return GetAlgorithmOidAndParameters(Slot(tbs, TbsCertListSlot::kSignature), outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetX509CrlSignatureAlgorithmOidAndParameters(X509Crl* crl, const uint8_t* inOid,
                                                                        const uint8_t* inParams,
                                                                        uint32_t inParamsLen) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return SetAlgorithmOidAndParameters(&Slot(tbs, TbsCertListSlot::kSignature), inOid, inParams, inParamsLen,
                                        &Slot(crl, CertificateListSlot::kSignatureAlgorithm));
}

extern "C" TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmID(X509Crl* crl, uint32_t algId, uint8_t mode) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    if (mode != kGostParametersNull && mode != kGostParametersAbsent) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetAlgorithmGostR34102001AndParameters(&Slot(tbs, TbsCertListSlot::kSignature), algId, mode, 0, 0, 0,
                                                  &Slot(crl, CertificateListSlot::kSignatureAlgorithm));
}

extern "C" TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(
    X509Crl* crl, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    void** tbs = nullptr;
    TV_TRY(TbsOf(crl, &tbs));
    return SetAlgorithmGostR34102001AndParameters(&Slot(tbs, TbsCertListSlot::kSignature), algId, mode, publicKeyParamId, digestParamId,
                                                  encryptionParamId, &Slot(crl, CertificateListSlot::kSignatureAlgorithm));
}

// ---- authority key identifier ---------------------------------------------------------------------

// Unlike the certificate's, the general names are built from the issuer whether or not one is
// given (kept: callers know a key identifier alone to fail here with 32 from the name encoder).
extern "C" TV_API uint32_t SetX509CrlAuthorityKeyIdentifier2(X509Crl* crl, const uint8_t* inKeyId, uint32_t inKeyIdLen,
                                                             const X509Name* issuer, const uint8_t* inSerial,
                                                             uint32_t inSerialLen) {
    if (!crl) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    // A key identifier or serial of no octets identifies nothing: it counts as absent, rather
    // than becoming an empty [0] or an INTEGER without contents.
    const uint8_t* keyId = inKeyIdLen ? inKeyId : nullptr;
    const uint8_t* serial = inSerialLen ? inSerial : nullptr;
    if (!keyId && (!issuer || !serial)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    X509Extensions* extensions = nullptr;
    TV_TRY(GetX509CrlExtensions(crl, &extensions));

    HeapBytes name;
    uint32_t nameLen = 0;
    TV_TRY(EncodeToHeap([&](uint8_t* out, uint32_t* len) { return EncodeX509Name(issuer, out, len); }, name, &nameLen));
    GeneralNames* created = nullptr;
    TV_TRY(CreateX509GeneralNames(&created));
    OwnedValue names(&kGeneralNames, created);
    TV_TRY(AddX509GeneralName(created, Index(GeneralNameKind::kDirectoryName), name.get(), nameLen));

    HeapBytes value;
    uint32_t valueLen = 0;
    TV_TRY(EncodeToHeap(
        [&](uint8_t* out, uint32_t* len) {
            return EncodeExtensionAuthorityKeyIdentifier(keyId, inKeyIdLen, created, serial, inSerialLen, out, len);
        },
        value, &valueLen));
    TV_TRY(RemoveX509ExtensionsExtension2(extensions, oid::kAuthorityKeyIdentifier));
    return AddX509ExtensionsExtension(extensions, oid::kAuthorityKeyIdentifier, 0, value.get(), valueLen);
}

// Key identifier, issuer and serial of the issuing certificate. Its issuer is read through the
// certificate API, which makes an empty name in place for a certificate that holds none; only
// such a malformed certificate is touched, and it then names the empty issuer it reads as anyway.
extern "C" TV_API uint32_t SetX509CrlAuthorityKeyIdentifier(X509Crl* crl, const Certificate* issuerCert) {
    if (!crl || !issuerCert) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* cert = const_cast<Certificate*>(issuerCert);
    uint8_t keyId[32];
    uint32_t keyIdLen = sizeof keyId;
    // A key identifier that cannot be read for any reason is left out; issuer and serial remain.
    if (GetCertificateSubjectKeyIdentifier(cert, keyId, &keyIdLen) != TV_OK) keyIdLen = 0;
    X509Name* issuer = nullptr;
    TV_TRY(GetCertificateIssuer(cert, &issuer));
    uint8_t serial[64];
    uint32_t serialLen = sizeof serial;
    const uint32_t rc = GetCertificateSerialNumber(issuerCert, serial, &serialLen);
    if (rc == TV_ERR_BUFFER_TOO_SMALL) return TV_FAIL(TV_ERR_WORK_BUFFER);
    TV_TRY(rc);
    return SetX509CrlAuthorityKeyIdentifier2(crl, keyIdLen ? keyId : nullptr, keyIdLen, issuer, serial, serialLen);
}
