// Failure sites and the last-error record.
//
// Every failure is recorded where it is detected: `return TV_FAIL(code);` stores the module and
// __LINE__ of that line. Codes handed up from a callee travel through TV_TRY, which does not record,
// so the record names the innermost site. Success never clears the record.
#pragma once

#include <cstdint>

namespace tv {

#define TV_MODULES(X)                                                                             \
    X(Asn1Any) X(Asn1BitString) X(Asn1Choice) X(Asn1Object) X(Asn1ObjectIdentifier) X(Asn1Codec) \
    X(Asn1Value) X(CMS) X(Certificate) X(CertificateProperties) X(CmsContentInfo)                \
    X(CmsEnvelopedData) X(CmsProperties) X(CmsTools) X(GeneralNames) X(GeneralObjects)           \
    X(GostR3410KeyTransport) X(OcspRequest) X(OcspResponse) X(PKCS10Properties) X(RsaAttributes) \
    X(SeveralData) X(X509Algorithm) X(X509Crl) X(X509CrlProperties) X(X509Extension) X(X509Name) \
    X(asn1List) X(base64) X(convert) X(pem) X(pkcs10) X(sha1) X(TimeStamp) X(LibraryTime)        \
    X(X509General)

enum class Module : uint8_t {
#define TV_MODULE_ENUM(name) name,
    TV_MODULES(TV_MODULE_ENUM)
#undef TV_MODULE_ENUM
};

struct Site {
    Module module;
    uint32_t line;
};

// Stores the site in the process-wide record and hands back `code`, so a failure is one expression.
uint32_t Fail(Site site, uint32_t code) noexcept;

const char* ModuleName(Module m) noexcept;

}  // namespace tv

// Opens a source file of module `name`: the failure sites below it are recorded under that module.
#define TV_MODULE(name) \
    namespace {         \
    [[maybe_unused]] constexpr ::tv::Module kThisModule = ::tv::Module::name; \
    }

#define TV_SITE (::tv::Site{kThisModule, static_cast<uint32_t>(__LINE__)})
#define TV_FAIL(code) (::tv::Fail(TV_SITE, (code)))

// Hands a callee's failure up unchanged (the callee has recorded its site).
#define TV_TRY(expr)                              \
    do {                                          \
        if (uint32_t tv_rc_ = (expr); tv_rc_ != 0) \
            return tv_rc_;                        \
    } while (0)
