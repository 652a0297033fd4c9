// Certificate properties: signature, public key and algorithm fields, key identifiers, the Kestrune
// key identifier, issuer-and-serial matching and the extension conveniences.
#include <cstring>

#include "tarvelon/x509/Certificate.h"
#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CertificateProperties)

namespace tv {
namespace {

using desc::CertificateSlot;
using desc::TbsCertificateSlot;

// Fixed working buffers. Callers know their limits (338 beyond them), so they are part of the
// interface rather than an implementation detail.
constexpr uint32_t kPublicKeyBuffer = 512;
constexpr uint32_t kKeyIdBuffer = 32;
constexpr uint32_t kSubjectKeyIdValueBuffer = 128;
constexpr uint32_t kSerialBuffer = 64;
constexpr uint32_t kPairSerialBuffer = 100;
constexpr uint32_t kExtensionValueBuffer = 1024;
constexpr uint32_t kKestruneBuffer = 138;
constexpr uint32_t kEncodingBuffer = 2048;

// The subject public key info: a missing certificate is the caller's mistake (32), a missing
// part the certificate's (311).
uint32_t SpkiOf(const Certificate* cert, void** out) {
    const void* spki = nullptr;
    TV_TRY(WalkPresent(TV_SITE, cert, &spki, CertificateSlot::kTbsCertificate,
                       TbsCertificateSlot::kSubjectPublicKeyInfo));
    *out = const_cast<void*>(spki);
    return TV_OK;
}

uint32_t SpkiAlgorithmOf(const Certificate* cert, void*** out) {
    void* spki = nullptr;
    TV_TRY(SpkiOf(cert, &spki));
    *out = &Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm);
    return TV_OK;
}

// A callee's "does not fit" turned into the working buffer's limit.
uint32_t IntoWorkBuffer(uint32_t rc, Site site) {
    return rc == TV_ERR_BUFFER_TOO_SMALL ? Fail(site, TV_ERR_WORK_BUFFER) : rc;
}

uint32_t ExtensionsOf(Certificate* cert, X509Extensions** handle) { return GetCertificateExtensions(cert, handle); }

// Drops every extension of that OID from the list (the list operation's walk, kept) and appends
// the new value as not critical.
uint32_t ReplaceExtension(X509Extensions* handle, const uint8_t* oid, const uint8_t* value, uint32_t valueLen) {
    TV_TRY(RemoveX509ExtensionsExtension2(handle, oid));
    return AddX509ExtensionsExtension(handle, oid, 0, value, valueLen);
}

uint32_t ReadSubjectKeyId(const Certificate* cert, uint8_t* out, uint32_t* outLen) {
    return GetCertificateSubjectKeyIdentifier(const_cast<Certificate*>(cert), out, outLen);
}

const X509Name* IssuerOf(const Certificate* cert) {
    return static_cast<const X509Name*>(TbsField(cert, TbsCertificateSlot::kIssuer));
}

}  // namespace
}  // namespace tv

using namespace tv;
using desc::CertificateSlot;
using desc::TbsCertificateSlot;

// ---- signature value ------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateSignature(const Certificate* certificate, uint8_t* out, uint32_t* outLen) {
    return GetSignature(TV_SITE, kSignedCertificate, certificate, out, outLen);
}

extern "C" TV_API uint32_t SetCertificateSignature(Certificate* certificate, const uint8_t* in, uint32_t inLen) {
    return SetSignature(TV_SITE, kSignedCertificate, certificate, in, inLen);
}

// ---- public key -----------------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificatePublicKey(const Certificate* certificate, uint8_t* out, uint32_t* outLen) {
    void* spki = nullptr;
    TV_TRY(SpkiOf(certificate, &spki));
    return GetSubjectPublicKey(spki, out, outLen);
}

extern "C" TV_API uint32_t SetCertificatePublicKey(Certificate* certificate, const uint8_t* in, uint32_t inLen) {
    void* spki = nullptr;
    TV_TRY(SpkiOf(certificate, &spki));
    return SetSubjectPublicKey(spki, in, inLen);
}

extern "C" TV_API uint32_t SetCertificateGostR34102001PublicKey(Certificate* certificate, const uint8_t* in,
                                                                uint32_t inLen) {
    void* spki = nullptr;
    TV_TRY(SpkiOf(certificate, &spki));
    return SetGostPublicKey(spki, in, inLen);
}

extern "C" TV_API uint32_t GetCertificatePublicKeyGostR3410(const Certificate* certificate, uint8_t* out,
                                                            uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* spki = nullptr;
    TV_TRY(SpkiOf(certificate, &spki));
    return GetGostPublicKey(spki, out, outLen);
}

extern "C" TV_API uint32_t GetCertificateDecodedPublicKeyGostR34102012(const Certificate* certificate, uint8_t* out,
                                                                       uint32_t* outLen, uint32_t* outPublicKeyParamId,
                                                                       uint32_t* outDigestParamId,
                                                                       uint32_t* outEncryptionParamId) {
    void* spki = nullptr;
    TV_TRY(SpkiOf(certificate, &spki));
    return GetCheckedGostPublicKey(spki, out, outLen, outPublicKeyParamId, outDigestParamId, outEncryptionParamId);
}

// ---- public-key algorithm -------------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificatePublicKeyAlgorithmOidAndParameters(const Certificate* certificate,
                                                                            uint8_t* outOid, uint32_t* outOidLen,
                                                                            uint8_t* outParams,
                                                                            uint32_t* outParamsLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void** algorithm = nullptr;
    TV_TRY(SpkiAlgorithmOf(certificate, &algorithm));
    return GetAlgorithmOidAndParameters(*algorithm, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetCertificatePublicKeyAlgorithmOidAndParameters(Certificate* certificate,
                                                                            const uint8_t* inOid,
                                                                            const uint8_t* inParams,
                                                                            uint32_t inParamsLen) {
    void** algorithm = nullptr;
    TV_TRY(SpkiAlgorithmOf(certificate, &algorithm));
    return SetAlgorithmOidAndParameters(algorithm, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t SetCertificatePublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algId,
                                                                           const uint8_t* inParams,
                                                                           uint32_t inParamsLen) {
    void** algorithm = nullptr;
    TV_TRY(SpkiAlgorithmOf(certificate, &algorithm));
    return SetAlgorithmIdAndParameters(algorithm, algId, inParams, inParamsLen);
}

extern "C" TV_API uint32_t SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(
    Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    void** algorithm = nullptr;
    TV_TRY(SpkiAlgorithmOf(certificate, &algorithm));
    return SetAlgorithmGostR34102001AndParameters(algorithm, algId, mode, publicKeyParamId, digestParamId,
                                                  encryptionParamId);
}

// ---- signature algorithm --------------------------------------------------------------------------
// Read from tbsCertificate.signature; written there first and then mirrored into the outer
// signatureAlgorithm, which a failure on the inner one leaves as it was.

extern "C" TV_API uint32_t GetCertificateSignatureAlgorithmOidAndParameters(const Certificate* certificate,
                                                                            uint8_t* outOid, uint32_t* outOidLen,
                                                                            uint8_t* outParams,
                                                                            uint32_t* outParamsLen) {
    if (!outOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return GetSignatureAlgorithm(TV_SITE, kSignedCertificate, certificate, outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetCertificateSignatureAlgorithmOidAndParameters(Certificate* certificate,
                                                                            const uint8_t* inOid,
                                                                            const uint8_t* inParams,
                                                                            uint32_t inParamsLen) {
    return SetSignatureAlgorithm(TV_SITE, kSignedCertificate, certificate, inOid, inParams, inParamsLen);
}

// Signature algorithms carry no parameter block: only NULL parameters or none.
extern "C" TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmID(Certificate* certificate, uint32_t algId,
                                                                           uint8_t mode) {
    if (mode != kGostParametersNull && mode != kGostParametersAbsent) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetGostSignatureAlgorithm(TV_SITE, kSignedCertificate, certificate, algId, mode, 0, 0, 0);
}

extern "C" TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(
    Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
    uint32_t encryptionParamId) {
    return SetGostSignatureAlgorithm(TV_SITE, kSignedCertificate, certificate, algId, mode, publicKeyParamId,
                                     digestParamId, encryptionParamId);
}

// ---- extension conveniences -----------------------------------------------------------------------

extern "C" TV_API uint32_t GetCertificateExtensionValue(Certificate* certificate, const uint8_t* inOid, uint8_t* out,
                                                        uint32_t* outLen) {
    X509Extensions* handle = nullptr;
    const uint32_t rc = ExtensionsOf(certificate, &handle);
    if (rc == TV_ERR_ABSENT) return TV_FAIL(TV_ERR_NOT_FOUND);  // no extensions: nothing to find
    TV_TRY(rc);
    return GetX509ExtensionsExtensionValue(handle, inOid, out, outLen);
}

extern "C" TV_API uint32_t GetCertificateSubjectKeyIdentifier(Certificate* certificate, uint8_t* out,
                                                              uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t value[kExtensionValueBuffer];
    uint32_t valueLen = sizeof value;
    const uint32_t rc = GetCertificateExtensionValue(certificate, oid::kSubjectKeyIdentifier, value, &valueLen);
    // An oversized value answers 1, not 49: kept as callers have always seen it.
    if (rc == TV_ERR_BUFFER_TOO_SMALL) return TV_FAIL(TV_ERR_NO_MEMORY);
    TV_TRY(rc);
    return DecodeExtensionSubjectKeyIdentifier(value, valueLen, out, outLen);
}

extern "C" TV_API uint32_t SetCertificateExtensionCrlDistributionPoints(Certificate* certificate, const char* url) {
    if (!certificate || !url) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue names(&desc::kGeneralNames);
    TV_TRY(CreateX509GeneralNames(reinterpret_cast<GeneralNames**>(names.Out())));
    TV_TRY(AddX509GeneralName(names.as<GeneralNames>(), Index(desc::GeneralNameKind::kUniformResourceIdentifier),
                              reinterpret_cast<const uint8_t*>(url), static_cast<uint32_t>(std::strlen(url))));
    CrlDistributionPoints* points = nullptr;
    TV_TRY(CreateExtensionCrlDistributionPoints(&points));
    const OwnedValue pointsGuard(&desc::kCrlDistributionPoints, points);
    // The list takes the names over once the point is added.
    TV_TRY(AddExtensionCrlDistributionPoint(points, names.as<GeneralNames>(), nullptr, 0, nullptr));
    names.Release();

    HeapBytes buffer;
    if (!buffer.Allocate(kEncodingBuffer)) return TV_FAIL(TV_ERR_NO_MEMORY);
    uint32_t len = kEncodingBuffer;
    if (const uint32_t rc = EncodeExtensionCrlDistributionPoints(points, buffer.get(), &len); rc != TV_OK) {
        if (rc != TV_ERR_BUFFER_TOO_SMALL) return rc;
        // A value beyond the working buffer grows it but is not encoded again: the call answers 49
        // and the certificate is unchanged. Callers depend on exactly this, odd as it is.
        if (!buffer.Allocate(len)) return TV_FAIL(TV_ERR_NO_MEMORY);
        return TV_FAIL(TV_ERR_BUFFER_TOO_SMALL);
    }
    X509Extensions* handle = nullptr;
    TV_TRY(ExtensionsOf(certificate, &handle));
    return ReplaceExtension(handle, oid::kCrlDistributionPoints, buffer.get(), len);
}

// ---- key identifiers ------------------------------------------------------------------------------

// RFC 5280 4.2.1.2 method 1: the SHA-1 of the subjectPublicKey bit-string octets.
extern "C" TV_API uint32_t SetCertificateSubjectKeyIdentifier(Certificate* certificate) {
    if (!certificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t key[kPublicKeyBuffer];
    uint32_t keyLen = sizeof key;
    TV_TRY(IntoWorkBuffer(GetCertificatePublicKey(certificate, key, &keyLen), TV_SITE));
    uint8_t keyId[20];
    TV_TRY(sha1(key, keyLen, keyId));
    // Encoded before the old identifier is removed, so a failure here leaves the certificate as it was.
    uint8_t value[kSubjectKeyIdValueBuffer];
    uint32_t valueLen = sizeof value;
    TV_TRY(IntoWorkBuffer(EncodeExtensionSubjectKeyIdentifier(keyId, sizeof keyId, value, &valueLen), TV_SITE));
    X509Extensions* handle = nullptr;
    TV_TRY(ExtensionsOf(certificate, &handle));
    return ReplaceExtension(handle, oid::kSubjectKeyIdentifier, value, valueLen);
}

extern "C" TV_API uint32_t SetCertificateAuthorityKeyIdentifier2(Certificate* certificate, const uint8_t* inKeyId,
                                                                 uint32_t inKeyIdLen, const X509Name* issuer,
                                                                 const uint8_t* inSerial, uint32_t inSerialLen) {
    if (!certificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const bool hasKeyId = inKeyId && inKeyIdLen;
    const bool hasSerial = inSerial && inSerialLen;
    if (!hasKeyId && (!issuer || !hasSerial)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);

    OwnedValue names(&desc::kGeneralNames);
    if (issuer) {
        HeapBytes name;
        uint32_t nameLen = 0;
        TV_TRY(WriteGrowing(TV_SITE, kEncodingBuffer, name, &nameLen, [&](uint8_t* out, uint32_t* outLen) {
            return EncodeX509Name(issuer, out, outLen);
        }));
        TV_TRY(CreateX509GeneralNames(reinterpret_cast<GeneralNames**>(names.Out())));
        TV_TRY(AddX509GeneralName(names.as<GeneralNames>(), Index(desc::GeneralNameKind::kDirectoryName), name.get(),
                                  nameLen));
    }
    HeapBytes value;
    uint32_t valueLen = 0;
    TV_TRY(WriteGrowing(TV_SITE, kEncodingBuffer, value, &valueLen, [&](uint8_t* out, uint32_t* outLen) {
        return EncodeExtensionAuthorityKeyIdentifier(hasKeyId ? inKeyId : nullptr, hasKeyId ? inKeyIdLen : 0,
                                                     names.as<GeneralNames>(), hasSerial ? inSerial : nullptr,
                                                     hasSerial ? inSerialLen : 0, out, outLen);
    }));
    X509Extensions* handle = nullptr;
    TV_TRY(ExtensionsOf(certificate, &handle));
    return ReplaceExtension(handle, oid::kAuthorityKeyIdentifier, value.get(), valueLen);
}

// The issuer's key id when it can be read at all, and always the issuer certificate's own issuer
// and serial number, so a verifier can find that certificate either way.
extern "C" TV_API uint32_t SetCertificateAuthorityKeyIdentifier(Certificate* certificate,
                                                                const Certificate* issuerCertificate) {
    if (!certificate || !issuerCertificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t keyId[kKeyIdBuffer];
    uint32_t keyIdLen = sizeof keyId;
    if (ReadSubjectKeyId(issuerCertificate, keyId, &keyIdLen) != TV_OK) keyIdLen = 0;
    uint8_t serial[kSerialBuffer];
    uint32_t serialLen = sizeof serial;
    TV_TRY(IntoWorkBuffer(GetCertificateSerialNumber(issuerCertificate, serial, &serialLen), TV_SITE));
    return SetCertificateAuthorityKeyIdentifier2(certificate, keyIdLen ? keyId : nullptr, keyIdLen,
                                                 IssuerOf(issuerCertificate), serial, serialLen);
}

extern "C" TV_API uint32_t GetCertificateAuthorityKeyIdentifier(Certificate* certificate, uint8_t* outKeyId,
                                                                uint32_t* outKeyIdLen, GeneralNames** outIssuer,
                                                                uint8_t* outSerial, uint32_t* outSerialLen) {
    uint8_t value[kExtensionValueBuffer];
    uint32_t valueLen = sizeof value;
    TV_TRY(IntoWorkBuffer(GetCertificateExtensionValue(certificate, oid::kAuthorityKeyIdentifier, value, &valueLen),
                          TV_SITE));
    return DecodeExtensionAuthorityKeyIdentifier(value, valueLen, outKeyId, outKeyIdLen, outIssuer, outSerial,
                                                 outSerialLen);
}

// General names that hold no directoryName name no issuer here either: the output stays null.
extern "C" TV_API uint32_t GetCertificateAuthorityKeyIdentifier2(Certificate* certificate, uint8_t* outKeyId,
                                                                 uint32_t* outKeyIdLen, X509Name** outIssuer,
                                                                 uint8_t* outSerial, uint32_t* outSerialLen) {
    if (outIssuer) *outIssuer = nullptr;
    OwnedValue names(&desc::kGeneralNames);
    TV_TRY(GetCertificateAuthorityKeyIdentifier(certificate, outKeyId, outKeyIdLen,
                                                reinterpret_cast<GeneralNames**>(names.Out()), outSerial,
                                                outSerialLen));
    if (!outIssuer || !names.get()) return TV_OK;
    const uint32_t rc = GetX509NameFromGeneralNames(names.as<GeneralNames>(), outIssuer);
    return rc == TV_ERR_NOT_FOUND ? uint32_t{TV_OK} : rc;
}

extern "C" TV_API uint32_t IsCertificateCorrespondToAuthKeyIdent(Certificate* certificate, const uint8_t* inKeyId,
                                                                 uint32_t inKeyIdLen, const X509Name* issuer,
                                                                 const uint8_t* inSerial, uint32_t inSerialLen) {
    if (!certificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const bool hasKeyId = inKeyId && inKeyIdLen;
    if (!hasKeyId && !issuer && !(inSerial && inSerialLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!hasKeyId) return IsCertificateIssuerAndSerial(certificate, issuer, inSerial, inSerialLen);

    // A key id decides alone: issuer and serial are not looked at.
    uint8_t keyId[kKeyIdBuffer];
    uint32_t keyIdLen = sizeof keyId;
    const uint32_t rc = ReadSubjectKeyId(certificate, keyId, &keyIdLen);
    if (rc == TV_ERR_NOT_FOUND) return TV_FAIL(TV_ERR_DIFFERENT);  // no identifier: not the one named
    TV_TRY(IntoWorkBuffer(rc, TV_SITE));
    if (IsArrayEquals(keyId, keyIdLen, inKeyId, inKeyIdLen) != TV_OK) return TV_FAIL(TV_ERR_DIFFERENT);
    return TV_OK;
}

// Serial numbers are compared as stored octets, not as numbers.
uint32_t IsCertificateIssuerAndSerial(const Certificate* cert, const X509Name* issuer, const uint8_t* serial,
                                      uint32_t serialLen) noexcept {
    if (!cert) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t ownLen = 0;
    const uint8_t* own = ptr_GetCertificateSerialNumber(cert, &ownLen);
    if (!own) return TV_FAIL(TV_ERR_NOT_DER);
    if (IsArrayEquals(own, ownLen, serial, serial ? serialLen : 0) != TV_OK) return TV_FAIL(TV_ERR_DIFFERENT);
    if (!issuer) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const X509Name* ownIssuer = IssuerOf(cert);
    if (!ownIssuer) return TV_FAIL(TV_ERR_ABSENT);
    return CompareX509Names(ownIssuer, issuer);
}

uint32_t IsCertificatePairIssuerAndSerialEqual(const Certificate* a, const Certificate* b) noexcept {
    if (!a || !b) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t serial[kPairSerialBuffer];
    uint32_t serialLen = sizeof serial;
    const uint32_t rc = GetCertificateSerialNumber(a, serial, &serialLen);
    if (rc == TV_ERR_ABSENT) return TV_FAIL(TV_ERR_NOT_DER);  // as for the second certificate
    TV_TRY(IntoWorkBuffer(rc, TV_SITE));
    return IsCertificateIssuerAndSerial(b, IssuerOf(a), serial, serialLen);
}

// The old identifier goes first, so a text that fails to convert or encode leaves the certificate
// without one: deliberate, as callers rely on never keeping a stale identifier.
extern "C" TV_API uint32_t SetCertificateKestruneKeyIdentifier(Certificate* certificate, const char* text) {
    if (!certificate || !text) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    X509Extensions* handle = nullptr;
    TV_TRY(ExtensionsOf(certificate, &handle));
    TV_TRY(RemoveX509ExtensionsExtension2(handle, oid::kKestruneKeyIdentifier));
    char utf8[kKestruneBuffer];
    uint32_t utf8Len = sizeof utf8;
    TV_TRY(IntoWorkBuffer(ConvertAnsiToUTF8(text, utf8, &utf8Len), TV_SITE));
    uint8_t value[kKestruneBuffer];
    uint32_t valueLen = sizeof value;
    TV_TRY(IntoWorkBuffer(
        EncodeExtensionKestruneKeyIdentifier(reinterpret_cast<const uint8_t*>(utf8), utf8Len, value, &valueLen),
        TV_SITE));
    return AddX509ExtensionsExtension(handle, oid::kKestruneKeyIdentifier, 0, value, valueLen);
}
