// CRL signature, signature algorithm and authority key identifier.
#include "tarvelon/x509/X509Crl.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(X509CrlProperties)

using namespace tv;
using namespace tv::desc;

// ---- signature ------------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetX509CrlSignature(const X509Crl* crl, uint8_t* out, uint32_t* outLen) {
    return GetSignature(TV_SITE, kSignedCrl, crl, out, outLen);
}

extern "C" TV_API uint32_t SetX509CrlSignature(X509Crl* crl, const uint8_t* in, uint32_t inLen) {
    return SetSignature(TV_SITE, kSignedCrl, crl, in, inLen);
}

// ---- signature algorithm: read from the TBSCertList, written there first, then outside -----------

extern "C" TV_API uint32_t GetX509CrlSignatureAlgorithmOidAndParameters(const X509Crl* crl, uint8_t* outOid,
                                                                        uint32_t* outOidLen, uint8_t* outParams,
                                                                        uint32_t* outParamsLen) {
    return GetSignatureAlgorithm(TV_CRL_TBS_SITE, kSignedCrl, crl, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetX509CrlSignatureAlgorithmOidAndParameters(X509Crl* crl, const uint8_t* inOid,
                                                                        const uint8_t* inParams,
                                                                        uint32_t inParamsLen) {
    return SetSignatureAlgorithm(TV_CRL_TBS_SITE, kSignedCrl, crl, inOid, inParams, inParamsLen);
}

// The part is looked for before the mode is checked.
extern "C" TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmID(X509Crl* crl, uint32_t algId, uint8_t mode) {
    void* tbs = nullptr;
    TV_TRY(TbsOf(TV_CRL_TBS_SITE, kSignedCrl, crl, &tbs));
    if (mode != kGostParametersNull && mode != kGostParametersAbsent) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetGostSignatureAlgorithm(TV_CRL_TBS_SITE, kSignedCrl, crl, algId, mode, 0, 0, 0);
}

extern "C" TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(
    X509Crl* crl, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    return SetGostSignatureAlgorithm(TV_CRL_TBS_SITE, kSignedCrl, crl, algId, mode, publicKeyParamId, digestParamId,
                                     encryptionParamId);
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
    TV_TRY(EncodeToHeap(
        TV_SITE, [&](uint8_t* out, uint32_t* len) { return EncodeX509Name(issuer, out, len); }, name, &nameLen));
    GeneralNames* created = nullptr;
    TV_TRY(CreateX509GeneralNames(&created));
    OwnedValue names(&kGeneralNames, created);
    TV_TRY(AddX509GeneralName(created, Index(GeneralNameKind::kDirectoryName), name.get(), nameLen));

    HeapBytes value;
    uint32_t valueLen = 0;
    TV_TRY(EncodeToHeap(
        TV_SITE,
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
