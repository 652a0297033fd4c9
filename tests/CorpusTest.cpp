// Every object the fixtures hold, and the certificates of the system store: the MANIFEST of each
// fixture directory names a file, its family and, where there is one, the file of its derived form
// (the to-be-signed element of a signed object, the DER under a PEM text). Each object must decode,
// encode to its input byte for byte, copy to the same bytes, compare equal to its copy and give its
// derived form; values read through typed accessors must rebuild to the same bytes; the objects
// nested in it (names, extension lists and values, attributes) are checked the same way. Then each
// is decoded again with every allocation failing in turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>

#include "TestUtil.h"

using namespace tvtest;
namespace fs = std::filesystem;

namespace {

struct Entry {
    std::string label;   // where it came from, for messages
    std::string family;  // "*": every family
    Bytes der;
    Bytes derived;  // empty: none to compare
    bool strict = true;  // false for foreign input, which need not be DER
};

using Handle = std::shared_ptr<void>;

struct Family {
    std::function<uint32_t(const Bytes&, Handle&)> decode;  // empty for values read as scalars
    std::function<Got(const void*)> encode;
    std::function<uint32_t(const void*, Handle&)> copy;
    std::function<uint32_t(const void*, const void*)> compare;
    std::function<Got(const void*, const Bytes&)> derived;  // from the object, or from the input
    std::function<std::vector<Entry>(void*, const std::string&)> parts;
    std::function<Got(const Bytes&)> rebuild;  // through the typed accessors
};

template <typename T>
Handle Hold(T* p, uint32_t (*free)(T*)) {
    return Handle(p, [free](void* q) { free(static_cast<T*>(q)); });
}

// A family reached through its exported Decode/Encode/Free and, when it has them, Copy and the
// to-be-signed part.
template <typename T>
Family Codec(uint32_t (*decode)(const uint8_t*, uint32_t, T**), uint32_t (*encode)(const T*, uint8_t*, uint32_t*),
             uint32_t (*free)(T*), std::type_identity_t<uint32_t (*)(const T*, T**)> copy = nullptr,
             std::type_identity_t<uint32_t (*)(const T*, uint8_t*, uint32_t*)> tbs = nullptr,
             std::vector<Entry> (*parts)(void*, const std::string&) = nullptr) {
    Family f;
    if (parts) f.parts = parts;
    f.decode = [=](const Bytes& in, Handle& h) {
        T* p = nullptr;
        const uint32_t rc = decode(in.data(), Size(in), &p);
        EXPECT_TRUE(rc == TV_OK || p == nullptr) << "a failed decode handed out an object";
        h = Hold(p, free);
        return rc;
    };
    f.encode = [=](const void* h) { return Get(encode, static_cast<const T*>(h)); };
    if (copy) {
        f.copy = [=](const void* h, Handle& out) {
            T* p = nullptr;
            const uint32_t rc = copy(static_cast<const T*>(h), &p);
            EXPECT_TRUE(rc == TV_OK || p == nullptr) << "a failed copy handed out an object";
            out = Hold(p, free);
            return rc;
        };
    }
    if (tbs) f.derived = [=](const void* h, const Bytes&) { return Get(tbs, static_cast<const T*>(h)); };
    return f;
}

Family Rebuilt(std::function<Got(const Bytes&)> rebuild) {
    Family f;
    f.rebuild = std::move(rebuild);
    return f;
}

// ---- values rebuilt from what their typed decoders hand out ---------------------------------------

template <auto Decode, auto Encode>
Got Number(const Bytes& in) {
    uint32_t number = 0;
    TRY(Decode(in.data(), Size(in), &number));
    return Get(Encode, number);
}

template <auto Decode, auto Encode>
Got Scalar(const Bytes& in) {
    const Got content = Get(Decode, in.data(), Size(in));
    TRY(content.rc);
    return Get(Encode, content.bytes.data(), Size(content.bytes));
}

Got BasicConstraints(const Bytes& in) {
    uint8_t ca = 0;
    uint32_t pathLen = 0;
    TRY(DecodeExtensionBasicConstraints(in.data(), Size(in), &ca, &pathLen));
    return Get(EncodeExtensionBasicConstraints, ca == 0xFF, pathLen);
}

Got AuthorityKeyId(const Bytes& in) {
    uint8_t key[64], serial[64];
    uint32_t keyLen = sizeof key, serialLen = sizeof serial;
    Own<FreeX509GeneralNames> issuer;
    TRY(DecodeExtensionAuthorityKeyIdentifier(in.data(), Size(in), key, &keyLen, &issuer.p, serial, &serialLen));
    return Get(EncodeExtensionAuthorityKeyIdentifier, keyLen ? key : nullptr, keyLen, issuer.p,
               serialLen ? serial : nullptr, serialLen);
}

// A signing-certificate value rebuilt from the lists its decoder hands out.
template <auto Decode, auto Encode, auto FreeCerts>
Got SigningCertificate(const Bytes& in) {
    Own<FreeCerts> certs;
    Own<FreeExtensionCertificatePolicies> policies;
    TRY(Decode(in.data(), Size(in), &certs.p, &policies.p));
    return Get(Encode, certs.p, policies.p);
}

Got AtsHashIndex(const Bytes& in) {
    uint8_t oid[32], params[64];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    Asn1List *certs = nullptr, *crls = nullptr, *attrs = nullptr;
    TRY(DecodeRsaAttributeAtsHashIndex(in.data(), Size(in), oid, &oidLen, params, &paramsLen, &certs, &crls, &attrs));
    Own<FreeOctetStrings> c(certs), r(crls), a(attrs);
    return Get(EncodeRsaAttributeAtsHashIndex, oid, paramsLen ? params : nullptr, paramsLen, static_cast<const Asn1List*>(certs),
               static_cast<const Asn1List*>(crls), static_cast<const Asn1List*>(attrs));
}

Got Gost2814789Parameters(const Bytes& in) {
    uint8_t iv[64], set[64];
    uint32_t ivLen = sizeof iv, setLen = sizeof set;
    TRY(DecodeGost2814789Parameters(in.data(), Size(in), iv, &ivLen, set, &setLen));
    return Get(EncodeGost2814789Parameters, static_cast<const uint8_t*>(iv), ivLen, static_cast<const uint8_t*>(set));
}

Got DocInfo(const Bytes& in) {
    Bytes text[4];
    uint32_t kind = 0, n[4];
    LibraryTime d1{}, d2{};
    for (int i = 0; i < 4; ++i) text[i].resize(256), n[i] = 256;
    TRY(DecodeDocInfo(in.data(), Size(in), &kind, text[0].data(), &n[0], text[1].data(), &n[1], text[2].data(), &n[2],
                      &d1, &d2, text[3].data(), &n[3]));
    auto p = [&](int i) { return n[i] ? text[i].data() : nullptr; };
    return Get(EncodeDocInfo, kind, p(0), n[0], p(1), n[1], p(2), n[2], &d1, &d2, p(3), n[3]);
}

Got RevocationValues(const Bytes& in) {
    X509Crls* crls = nullptr;
    OcspBasicResponses* ocsps = nullptr;
    uint8_t type[64];
    Bytes value(4096);
    uint32_t typeLen = sizeof type, valueLen = Size(value);
    TRY(DecodeRsaAttributeRevocationValues(in.data(), Size(in), &crls, &ocsps, type, &typeLen, value.data(), &valueLen));
    Own<FreeX509Crls> c(crls);
    Own<FreeOcspBasicResponses> o(ocsps);
    return Get(EncodeRsaAttributeRevocationValues, static_cast<const X509Crls*>(crls), static_cast<const OcspBasicResponses*>(ocsps),
               typeLen ? type : nullptr, value.data(), valueLen);
}

Got InvalidityDate(const Bytes& in) {
    LibraryTime t{};
    TRY(DecodeExtensionInvalidityDate(in.data(), Size(in), &t));
    return Get(EncodeExtensionInvalidityDate, &t);
}

Got PrivateKeyUsagePeriod(const Bytes& in) {
    LibraryTime a{}, b{};
    TRY(DecodeExtensionPrivateKeyUsagePeriod(in.data(), Size(in), &a, &b));
    return Get(EncodeExtensionPrivateKeyUsagePeriod, IsLibraryTimeNull(&a) ? nullptr : &a,
               IsLibraryTimeNull(&b) ? nullptr : &b);
}

Got IssuerSignTool(const Bytes& in) {
    uint8_t t[4][256];
    uint32_t n[4] = {256, 256, 256, 256};
    TRY(DecodeExtensionIssuerSignTool(in.data(), Size(in), t[0], &n[0], t[1], &n[1], t[2], &n[2], t[3], &n[3]));
    return Get(EncodeExtensionIssuerSignTool, t[0], n[0], t[1], n[1], t[2], n[2], t[3], n[3]);
}

Got IssuingDistributionPoint(const Bytes& in) {
    Own<FreeX509GeneralNames> full;
    Own<FreeX509Name> relative;
    uint8_t f[4];
    uint32_t present[5], reasons = 0;
    TRY(DecodeExtensionIssuingDistributionPoint(in.data(), Size(in), &full.p, &relative.p, &f[0], &present[0], &f[1],
                                                &present[1], &reasons, &present[2], &f[2], &present[3], &f[3],
                                                &present[4]));
    return Get(EncodeExtensionIssuingDistributionPoint, full.p, relative.p, f[0] == 0xFF, present[0], f[1] == 0xFF,
               present[1], reasons, present[2], f[2] == 0xFF, present[3], f[3] == 0xFF, present[4]);
}

Got CrlDistributionPoints(const Bytes& in) {
    Own<FreeExtensionCrlDistributionPoints> read, built;
    uint32_t count = 0;
    TRY(DecodeExtensionCrlDistributionPoints(in.data(), Size(in), &read.p));
    TRY(CreateExtensionCrlDistributionPoints(&built.p));
    TRY(GetExtensionCrlDistributionPointsCount(read, &count));
    for (uint32_t i = 0; i < count; ++i) {
        GeneralNames *full = nullptr, *issuer = nullptr;
        X509Name* relative = nullptr;
        uint32_t reasons = 0;
        TRY(GetExtensionCrlDistributionPoint(read, i, &full, &relative, &reasons, &issuer));
        Own<FreeX509GeneralNames> fullCopy, issuerCopy;
        Own<FreeX509Name> relativeCopy;
        if (full) TRY(CopyX509GeneralNames(full, &fullCopy.p));
        if (issuer) TRY(CopyX509GeneralNames(issuer, &issuerCopy.p));
        if (relative) TRY(CopyX509Name(relative, &relativeCopy.p));
        TRY(AddExtensionCrlDistributionPoint(built, fullCopy, relativeCopy, reasons, issuerCopy));
        fullCopy.release(), relativeCopy.release(), issuerCopy.release();  // taken over
    }
    return Get(EncodeExtensionCrlDistributionPoints, built.p);
}

Got ExtendedKeyUsage(const Bytes& in) {
    Own<FreeExtensionExtendedKeyUsage> read, built;
    uint32_t count = 0;
    TRY(DecodeExtensionExtendedKeyUsage(in.data(), Size(in), &read.p));
    TRY(CreateExtensionExtendedKeyUsage(&built.p));
    TRY(GetExtensionExtendedKeyUsageCount(read, &count));
    for (uint32_t i = 0; i < count; ++i) {
        const Got oid = Get(GetExtensionExtendedKeyUsage, read.p, i);
        TRY(oid.rc);
        TRY(AddExtensionExtendedKeyUsage(built, oid.bytes.data()));
    }
    return Get(EncodeExtensionExtendedKeyUsage, built.p);
}

Got AuthorityInfoAccess(const Bytes& in) {
    Own<FreeExtensionAuthorityInformationAccess> read, built;
    uint32_t count = 0;
    TRY(DecodeExtensionAuthorityInformationAccess(in.data(), Size(in), &read.p));
    TRY(CreateExtensionAuthorityInformationAccess(&built.p));
    TRY(GetExtensionAuthorityInformationAccessCount(read, &count));
    for (uint32_t i = 0; i < count; ++i) {
        GeneralName* location = nullptr;
        const Got method = Sized([&](uint8_t* o, uint32_t* n) {
            return GetExtensionAuthorityInformationAccess(read, i, o, n, &location);
        });
        TRY(method.rc);
        Own<FreeX509GeneralName> copy;
        TRY(CreateX509GeneralNameCopy(location, &copy.p));
        TRY(AddExtensionAuthorityInformationAccess(built, method.bytes.data(), copy));
        copy.release();
    }
    return Get(EncodeExtensionAuthorityInformationAccess, built.p);
}

Got CertificatePolicies(const Bytes& in) {
    Own<FreeExtensionCertificatePolicies> read, built;
    uint32_t count = 0;
    TRY(DecodeExtensionCertificatePolicies(in.data(), Size(in), &read.p));
    TRY(CreateExtensionCertificatePolicies(&built.p));
    TRY(GetExtensionPolicyInformationCount(read, &count));
    for (uint32_t i = 0; i < count; ++i) {
        const Got policy = Get(GetExtensionPolicyInformation, read.p, i);
        uint32_t index = 99, qualifiers = 0;
        TRY(policy.rc);
        TRY(AddExtensionPolicyInformation(built, policy.bytes.data(), &index));
        EXPECT_EQ(index, i);
        TRY(GetExtensionPolicyQualifiersCount(read, i, &qualifiers));
        for (uint32_t q = 0; q < qualifiers; ++q) {
            uint8_t oid[64];
            uint32_t oidLen = sizeof oid;
            const Got qualifier = Get(GetExtensionPolicyQualifier, read.p, i, q, oid, &oidLen);
            TRY(qualifier.rc);
            TRY(AddExtensionPolicyQualifier(built, index, oid, qualifier.bytes.data(), Size(qualifier.bytes)));
        }
    }
    return Get(EncodeExtensionCertificatePolicies, built.p);
}

// ---- nested objects ---------------------------------------------------------------------------------

void Add(std::vector<Entry>& parts, const std::string& label, const char* family, const Got& g) {
    EXPECT_EQ(g.rc, TV_OK) << label;
    parts.push_back({label, family, g.bytes, {}});
}

// The family of an extension value, by its OID; extensions without one are not looked into.
const char* FamilyOfExtension(const Bytes& oid) {
    static const std::pair<const char*, const char*> families[] = {
        {"2.5.29.15", "keyUsage"}, {"2.5.29.19", "basicConstraints"}, {"2.5.29.14", "subjectKeyIdentifier"},
        {"2.5.29.35", "authorityKeyIdentifier"}, {"2.5.29.31", "crlDistributionPoints"},
        {"2.5.29.37", "extendedKeyUsage"}, {"1.3.6.1.5.5.7.1.1", "authorityInfoAccess"},
        {"2.5.29.32", "certificatePolicies"}, {"2.5.29.17", "generalNames"}, {"2.5.29.18", "generalNames"},
        {"2.5.29.29", "generalNames"}, {"2.5.29.20", "crlNumber"}, {"2.5.29.27", "deltaCrlIndicator"},
        {"2.5.29.21", "reasonCode"}, {"2.5.29.24", "invalidityDate"}, {"2.5.29.16", "privateKeyUsagePeriod"},
        {"2.5.29.28", "issuingDistributionPoint"}, {"1.2.643.100.111", "subjectSignTool"},
        {"1.2.643.100.112", "issuerSignTool"}, {"1.2.643.3.901.3.1", "kestruneKeyIdentifier"},
        {"2.16.840.1.113730.1.1", "netscapeCertType"}, {"1.3.6.1.5.5.7.48.1.2", "ocspNonce"}};
    for (const auto& [dotted, family] : families)
        if (Packed(dotted) == oid) return family;
    return nullptr;
}

std::vector<Entry> ExtensionParts(void* h, const std::string& label) {
    const auto* list = static_cast<const X509Extensions*>(h);
    std::vector<Entry> parts;
    uint32_t count = 0;
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(list, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[64];
        uint32_t oidLen = sizeof oid, critical = 0;
        const Got value = Get(GetX509ExtensionsExtension, list, i, oid, &oidLen, &critical);
        if (const char* family = FamilyOfExtension(Bytes(oid, oid + oidLen)))
            Add(parts, label + "/" + family, family, value);
    }
    return parts;
}

// A list that is there and not empty, as an "extensions" part.
void AddExtensions(std::vector<Entry>& parts, const std::string& label, const X509Extensions* list) {
    uint32_t count = 0;
    if (list && GetX509ExtensionsExtensionsCount(list, &count) == TV_OK && count)
        Add(parts, label, "extensions", Get(EncodeX509Extensions, list));
}

// What a getter hands out by reference, or null: Ref<X509Name>(GetCertificateIssuer, c).
template <typename T, typename Fn, typename... A>
T* Ref(Fn fn, A... args) {
    T* out = nullptr;
    return fn(args..., &out) == TV_OK ? out : nullptr;
}

std::vector<Entry> CertificateParts(void* h, const std::string& label) {
    auto* c = static_cast<Certificate*>(h);
    std::vector<Entry> parts;
    Add(parts, label + "/issuer", "name", Get(EncodeX509Name, Ref<X509Name>(GetCertificateIssuer, c)));
    Add(parts, label + "/subject", "name", Get(EncodeX509Name, Ref<X509Name>(GetCertificateSubject, c)));
    AddExtensions(parts, label + "/extensions", Ref<X509Extensions>(GetCertificateExtensions, c));
    return parts;
}

std::vector<Entry> CrlParts(void* h, const std::string& label) {
    auto* crl = static_cast<X509Crl*>(h);
    uint32_t count = 0;
    std::vector<Entry> parts;
    Add(parts, label + "/issuer", "name", Get(EncodeX509Name, Ref<X509Name>(GetX509CrlIssuer, crl)));
    AddExtensions(parts, label + "/extensions", Ref<X509Extensions>(GetX509CrlExtensions, crl));
    EXPECT_EQ(GetX509CrlRevokedCertificateCount(crl, &count), TV_OK);
    for (uint32_t i = 0; i < std::min(count, 20u); ++i)
        AddExtensions(parts, label + "/entry " + std::to_string(i), Ref<X509Extensions>(GetX509CrlRevokedCertificateExtensions, crl, i));
    return parts;
}

std::vector<Entry> RequestParts(void* h, const std::string& label) {
    auto* request = static_cast<PKCS10CertReq*>(h);
    std::vector<Entry> parts;
    Add(parts, label + "/subject", "name", Get(EncodeX509Name, Ref<X509Name>(GetPKCS10CertReqSubject, request)));
    Add(parts, label + "/attributes", "attributes", Get(EncodeRsaAttributes, Ref<RsaAttributes>(GetPKCS10CertReqAttributes, request)));
    return parts;
}

// The certificates an OCSP message carries, each a certificate of its own.
template <typename T>
void AddCertificates(std::vector<Entry>& parts, const std::string& label, const T* h,
                     uint32_t (*count)(const T*, uint32_t*), uint32_t (*get)(const T*, uint32_t, Certificate**)) {
    uint32_t n = 0;
    if (count(h, &n) != TV_OK) return;
    for (uint32_t i = 0; i < n; ++i)
        Add(parts, label + "/certificate " + std::to_string(i), "certificate", Get(EncodeCertificate, Ref<Certificate>(get, h, i)));
}

std::vector<Entry> OcspRequestParts(void* h, const std::string& label) {
    auto* request = static_cast<OcspRequest*>(h);
    std::vector<Entry> parts;
    AddExtensions(parts, label + "/extensions", Ref<X509Extensions>(GetOcspRequestExtensions, request));
    AddCertificates(parts, label, request, GetOcspRequestCertificatesCount, GetOcspRequestCertificate);
    return parts;
}

// The basic response inside responseBytes, when there is one.
std::vector<Entry> OcspResponseParts(void* h, const std::string& label) {
    uint8_t type[32];
    uint32_t typeLen = sizeof type;
    const Got basic = Get(GetOcspResponseBytes, static_cast<OcspResponse*>(h), type, &typeLen);
    if (basic.rc == TV_ERR_ABSENT) return {};
    std::vector<Entry> parts;
    Add(parts, label + "/basic", "ocspBasicResponse", basic);
    return parts;
}

std::vector<Entry> OcspBasicParts(void* h, const std::string& label) {
    auto* basic = static_cast<OcspBasicResponse*>(h);
    std::vector<Entry> parts;
    uint32_t count = 0;
    EXPECT_EQ(GetOcspBasicResponseSingleResponsesCount(basic, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i)
        Add(parts, label + "/single " + std::to_string(i), "ocspSingleResponse",
            Get(EncodeOcspSingleResponse, Ref<OcspSingleResponse>(GetOcspBasicResponseSingleResponse, basic, i)));
    AddExtensions(parts, label + "/extensions", Ref<X509Extensions>(GetOcspBasicResponseExtensions, basic));
    AddCertificates(parts, label, basic, GetOcspBasicResponseCertificatesCount, GetOcspBasicResponseCertificate);
    return parts;
}

std::vector<Entry> OcspSingleParts(void* h, const std::string& label) {
    std::vector<Entry> parts;
    AddExtensions(parts, label + "/extensions",
                  Ref<X509Extensions>(GetOcspSingleResponseExtensions, static_cast<OcspSingleResponse*>(h)));
    return parts;
}

// The SignedData a ContentInfo carries.
std::vector<Entry> CmsContentInfoParts(void* h, const std::string& label) {
    const auto* info = static_cast<const CmsContentInfo*>(h);
    const bool enveloped = Get(GetCmsContentInfoTypeOid, info).bytes == Packed("1.2.840.113549.1.7.3");
    std::vector<Entry> parts;
    Add(parts, label + (enveloped ? "/envelopedData" : "/signedData"), enveloped ? "cmsEnvelopedData" : "cmsSignedData",
        Get(GetCmsContentInfoContent, info));
    return parts;
}

// Each key-transport recipient, for a GOST R 34.10 key the RFC 4490 key transport its encrypted key
// carries (the RFC 9189 kexp15 recipients carry another structure), and GOST 28147-89 parameters.
std::vector<Entry> CmsEnvelopedDataParts(void* h, const std::string& label) {
    auto* ed = static_cast<CmsEnvelopedData*>(h);
    std::vector<Entry> parts;
    uint8_t cipher[64], cipherParams[128];
    uint32_t cipherLen = sizeof cipher, cipherParamsLen = sizeof cipherParams;
    EXPECT_EQ(GetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(ed, cipher, &cipherLen, cipherParams, &cipherParamsLen),
              TV_OK);
    if (Bytes(cipher, cipher + cipherLen) == Packed("1.2.643.2.2.21"))
        parts.push_back({label + "/content encryption parameters", "gost2814789Parameters",
                         Bytes(cipherParams, cipherParams + cipherParamsLen), {}});
    uint32_t count = 0, kind = 0;
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfosCount(ed, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        void* value = nullptr;
        EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(ed, i, &value, &kind), TV_OK);
        if (kind != TV_CMS_RECIPIENT_KEY_TRANS) continue;
        const auto* kt = static_cast<const KeyTrans*>(value);
        const std::string at = label + "/recipient " + std::to_string(i);
        Add(parts, at, "keyTrans", Get(EncodeKeyTrans, kt));
        uint8_t oid[64], params[128];
        uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
        EXPECT_EQ(GetKeyTransKeyEncryptionAlgorithmOidAndParameters(kt, oid, &oidLen, params, &paramsLen), TV_OK);
        const Bytes alg(oid, oid + oidLen);
        if (alg == Packed("1.2.643.2.2.19") || alg == Packed("1.2.643.7.1.1.1.1") || alg == Packed("1.2.643.7.1.1.1.2"))
            Add(parts, at + "/key transport", "gostKeyTransport", Get(GetKeyTransEncryptedKey, kt));
    }
    return parts;
}

// The certificates and CRLs a SignedData stores, and each signer's issuer and signed attributes.
std::vector<Entry> CmsSignedDataParts(void* h, const std::string& label) {
    auto* sd = static_cast<CmsSignedData*>(h);
    std::vector<Entry> parts;
    uint32_t count = 0, kind = 0;
    EXPECT_EQ(GetCmsSignedDataCertificatesCount(sd, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i)
        Add(parts, label + "/certificate " + std::to_string(i), "certificate", Get(GetCmsSignedDataEncodedCertificate, sd, i, &kind));
    EXPECT_EQ(GetCmsSignedDataCrlsCount(sd, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i)
        Add(parts, label + "/crl " + std::to_string(i), "crl", Get(GetCmsSignedDataEncodedCrl, sd, i, &kind));
    EXPECT_EQ(GetCmsSignedDataSignerInfosCount(sd, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        const std::string signer = label + "/signer " + std::to_string(i);
        CmsSignerInfo* info = Ref<CmsSignerInfo>(GetCmsSignedDataSignerInfo, sd, i);
        X509Name* issuer = nullptr;
        uint32_t serialLen = 0, keyIdLen = 0;
        EXPECT_EQ(GetCmsSignerInfoSignerIdentifier(info, &issuer, nullptr, &serialLen, nullptr, &keyIdLen), TV_OK);
        if (issuer) Add(parts, signer + "/issuer", "name", Get(EncodeX509Name, issuer));
        Add(parts, signer + "/signedAttrs", "attributes", Get(GetCmsSignerInfoEncodedSignedAttributes, info));
    }
    return parts;
}

// Requested extensions, under either attribute OID, are an extension list; a signingCertificateV2
// value has its own codec.
std::vector<Entry> AttributeParts(void* h, const std::string& label) {
    const auto* attributes = static_cast<const RsaAttributes*>(h);
    static const Bytes kRequested[] = {Packed("1.2.840.113549.1.9.14"), Packed("1.3.6.1.4.1.311.2.1.14")};
    static const Bytes kSigningCertificateV2 = Packed("1.2.840.113549.1.9.16.2.47");
    std::vector<Entry> parts;
    uint32_t count = 0;
    EXPECT_EQ(GetRsaAttributesAttributesCount(attributes, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        const Bytes oid = Get(GetRsaAttributesAttributeOid, attributes, i).bytes;
        if (std::count(std::begin(kRequested), std::end(kRequested), oid))
            Add(parts, label + "/requested", "extensions", Get(GetRsaAttributesAttributeValue, attributes, i, 0u));
        if (oid == kSigningCertificateV2)
            Add(parts, label + "/signingCertificateV2", "signingCertificateV2", Get(GetRsaAttributesAttributeValue, attributes, i, 0u));
    }
    return parts;
}

std::vector<Entry> GeneralNameParts(void* h, const std::string& label) {
    const auto* names = static_cast<const GeneralNames*>(h);
    std::vector<Entry> parts;
    uint32_t count = 0, kind = 0;
    EXPECT_EQ(GetX509GeneralNameCount(names, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        const Got value = Get(GetX509GeneralName, names, i, &kind);
        if (kind == 4) Add(parts, label + "/directoryName", "name", value);
    }
    return parts;
}

// The PEM text rebuilt from its DER under its own label, with OpenSSL's LF line ends.
Got Pem(const Bytes& in) {
    const std::string text(in.begin(), in.end());
    const std::string label = text.substr(11, text.find("-----", 11) - 11);
    const Got der = Get(DecodePem, text.data(), Size(in));
    TRY(der.rc);
    Got pem = Sized([&](uint8_t* o, uint32_t* n) {
        return EncodePem(der.bytes.data(), Size(der.bytes), label.c_str(), reinterpret_cast<char*>(o), n);
    });
    std::erase(pem.bytes, '\r');
    return pem;
}

const std::map<std::string, Family>& Families() {
    static const std::map<std::string, Family> families = [] {
        std::map<std::string, Family> m;
        m["certificate"] = Codec(DecodeCertificate, EncodeCertificate, FreeCertificate, CreateCertificateCopy,
                                 GetCertificateToBeSignedPart, CertificateParts);
        m["crl"] = Codec(DecodeX509Crl, EncodeX509Crl, FreeX509Crl, CreateX509CrlCopy, GetX509CrlToBeSignedPart, CrlParts);
        m["request"] = Codec(DecodePKCS10CertReq, EncodePKCS10CertReq, FreePKCS10CertReq, CreatePKCS10CertReqCopy,
                             GetPKCS10CertReqToBeSignedPart, RequestParts);
        m["ocspRequest"] = Codec(DecodeOcspRequest, EncodeOcspRequest, FreeOcspRequest, nullptr, nullptr, OcspRequestParts);
        m["ocspResponse"] = Codec(DecodeOcspResponse, EncodeOcspResponse, FreeOcspResponse, nullptr, nullptr, OcspResponseParts);
        m["ocspBasicResponse"] = Codec(DecodeOcspBasicResponse, EncodeOcspBasicResponse, FreeOcspBasicResponse, nullptr,
                                       GetOcspBasicResponseToBeSignedPart, OcspBasicParts);
        m["ocspSingleResponse"] = Codec(DecodeOcspSingleResponse, EncodeOcspSingleResponse, FreeOcspSingleResponse,
                                        nullptr, nullptr, OcspSingleParts);
        m["cmsContentInfo"] = Codec(DecodeCmsContentInfo, EncodeCmsContentInfo, FreeCmsContentInfo, CreateCmsContentInfoCopy,
                                    nullptr, CmsContentInfoParts);
        m["cmsSignedData"] = Codec(DecodeCmsSignedData, EncodeCmsSignedData, FreeCmsSignedData, CreateCmsSignedDataCopy,
                                   nullptr, CmsSignedDataParts);
        m["name"] = Codec(DecodeX509Name, EncodeX509Name, FreeX509Name, CopyX509Name);
        m["name"].compare = [](const void* a, const void* b) {
            return CompareX509Names(static_cast<const X509Name*>(a), static_cast<const X509Name*>(b));
        };
        m["generalNames"] = Codec(DecodeX509GeneralNames, EncodeX509GeneralNames, FreeX509GeneralNames, CopyX509GeneralNames);
        m["generalNames"].parts = GeneralNameParts;
        m["extensions"] = Codec(DecodeX509Extensions, EncodeX509Extensions, FreeX509Extensions);
        m["extensions"].parts = ExtensionParts;
        m["attributes"] = Codec(DecodeRsaAttributes, EncodeRsaAttributes, FreeRsaAttributes);
        // A received set is written back in its own order only when told to keep it.
        m["attributes"].encode = [](const void* h) {
            EXPECT_EQ(SetRsaAttributesSorted(static_cast<RsaAttributes*>(const_cast<void*>(h)), 0), TV_OK);
            return Get(EncodeRsaAttributes, static_cast<const RsaAttributes*>(h));
        };
        m["attributes"].parts = AttributeParts;
        m["crlDistributionPoints"] = Codec(DecodeExtensionCrlDistributionPoints, EncodeExtensionCrlDistributionPoints,
                                           FreeExtensionCrlDistributionPoints);
        m["crlDistributionPoints"].rebuild = CrlDistributionPoints;
        m["extendedKeyUsage"] = Codec(DecodeExtensionExtendedKeyUsage, EncodeExtensionExtendedKeyUsage,
                                      FreeExtensionExtendedKeyUsage);
        m["extendedKeyUsage"].rebuild = ExtendedKeyUsage;
        m["authorityInfoAccess"] = Codec(DecodeExtensionAuthorityInformationAccess,
                                         EncodeExtensionAuthorityInformationAccess, FreeExtensionAuthorityInformationAccess);
        m["authorityInfoAccess"].rebuild = AuthorityInfoAccess;
        m["certificatePolicies"] = Codec(DecodeExtensionCertificatePolicies, EncodeExtensionCertificatePolicies,
                                         FreeExtensionCertificatePolicies);
        m["certificatePolicies"].rebuild = CertificatePolicies;
        m["keyUsage"] = Rebuilt(Number<DecodeExtensionKeyUsage, EncodeExtensionKeyUsage>);
        m["netscapeCertType"] = Rebuilt(Number<DecodeExtensionNetscapeCertificateType, EncodeExtensionNetscapeCertificateType>);
        m["basicConstraints"] = Rebuilt(BasicConstraints);
        m["authorityKeyIdentifier"] = Rebuilt(AuthorityKeyId);
        m["subjectKeyIdentifier"] = Rebuilt(Scalar<DecodeExtensionSubjectKeyIdentifier, EncodeExtensionSubjectKeyIdentifier>);
        m["crlNumber"] = Rebuilt(Scalar<DecodeExtensionCrlNumber, EncodeExtensionCrlNumber>);
        m["deltaCrlIndicator"] = Rebuilt(Scalar<DecodeExtensionDeltaCrlIndicator, EncodeExtensionDeltaCrlIndicator>);
        m["ocspNonce"] = Rebuilt(Scalar<DecodeExtensionOcspNonce, EncodeExtensionOcspNonce>);
        m["subjectSignTool"] = Rebuilt(Scalar<DecodeExtensionSubjectSignTool, EncodeExtensionSubjectSignTool>);
        m["kestruneKeyIdentifier"] =
            Rebuilt(Scalar<DecodeExtensionKestruneKeyIdentifier, EncodeExtensionKestruneKeyIdentifier>);
        m["reasonCode"] = Rebuilt(Number<DecodeExtensionReasonCode, EncodeExtensionReasonCode>);
        m["invalidityDate"] = Rebuilt(InvalidityDate);
        m["atsHashIndex"] = Rebuilt(AtsHashIndex);
        m["revocationValues"] = Rebuilt(RevocationValues);
        m["severalData"] = Codec(DecodeSeveralData, EncodeSeveralData, FreeSeveralData);
        m["cmsEnvelopedData"] = Codec(DecodeCmsEnvelopedData, EncodeCmsEnvelopedData, FreeCmsEnvelopedData);
        m["cmsEnvelopedData"].parts = CmsEnvelopedDataParts;
        m["keyTrans"] = Codec(DecodeKeyTrans, EncodeKeyTrans, FreeKeyTrans);
        m["gost2814789Parameters"] = Rebuilt(Gost2814789Parameters);
        m["gostKeyTransport"] = Codec(DecodeGostR3410KeyTransport, EncodeGostR3410KeyTransport, FreeGostR3410KeyTransport);
        m["completeRevocationRefs"] = Codec(DecodeRsaAttributeCompleteRevocationRefs, EncodeRsaAttributeCompleteRevocationRefs,
                                           FreeCrlOcspRefs);
        m["docInfo"] = Rebuilt(DocInfo);
        m["signingCertificate"] = Rebuilt(SigningCertificate<DecodeRsaAttributeSigningCertificateValue,
                                                             EncodeRsaAttributeSigningCertificateValue, FreeESSCertIDs>);
        m["signingCertificateV2"] = Rebuilt(SigningCertificate<DecodeRsaAttributeSigningCertificateV2Value,
                                                               EncodeRsaAttributeSigningCertificateV2Value, FreeESSCertIDsV2>);
        m["otherSigningCertificate"] = Rebuilt(SigningCertificate<DecodeRsaAttributeOtherSigningCertificateValue,
                                                                  EncodeRsaAttributeOtherSigningCertificateValue, FreeOtherCertIDs>);
        m["privateKeyUsagePeriod"] = Rebuilt(PrivateKeyUsagePeriod);
        m["issuerSignTool"] = Rebuilt(IssuerSignTool);
        m["issuingDistributionPoint"] = Rebuilt(IssuingDistributionPoint);
        m["pem"] = Rebuilt(Pem);
        m["pem"].derived = [](const void*, const Bytes& in) {
            return Get(DecodePem, reinterpret_cast<const char*>(in.data()), Size(in));
        };
        return m;
    }();
    return families;
}

// ---- the corpus -------------------------------------------------------------------------------------

std::vector<Entry> ManifestEntries() {
    std::vector<Entry> entries;
    std::vector<fs::path> dirs;
    for (const auto& d : fs::directory_iterator(Fixture(""))) dirs.push_back(d.path());
    std::sort(dirs.begin(), dirs.end());
    for (const fs::path& dir : dirs) {
        std::ifstream manifest(dir / "MANIFEST");
        for (std::string line; std::getline(manifest, line);) {
            std::istringstream words(line);
            std::string file, family, derived;
            if (!(words >> file >> family) || file[0] == '#') continue;
            words >> derived;
            std::vector<fs::path> files{dir / file};
            if (file == "*") {
                files.clear();
                for (const auto& f : fs::directory_iterator(dir))
                    if (f.path().extension() != ".md" && f.path().filename() != "MANIFEST") files.push_back(f.path());
            }
            for (const fs::path& f : files) {
                entries.push_back({dir.filename().string() + "/" + f.filename().string(), family, ReadFile(f.string()),
                                   derived.empty() ? Bytes{} : ReadFile((dir / derived).string())});
                EXPECT_FALSE(entries.back().der.empty()) << entries.back().label;
            }
        }
    }
    return entries;
}

// DER of every PEM certificate in /etc/ssl/certs, with the to-be-signed element cut from it.
std::vector<Entry> SystemStoreEntries() {
    std::vector<Entry> entries;
    std::error_code ec;
    for (const auto& f : fs::directory_iterator("/etc/ssl/certs", ec)) {
        if (f.path().extension() != ".pem") continue;
        const Bytes text = ReadFile(f.path().string());
        const Got der = Get(DecodePem, reinterpret_cast<const char*>(text.data()), Size(text));
        if (der.rc == TV_OK) entries.push_back({f.path().string(), "certificate", der.bytes, Child(der.bytes, {0}), false});
    }
    return entries;
}

void Check(const Entry& e) {
    SCOPED_TRACE(e.label);
    const Family& f = Families().at(e.family);
    if (f.rebuild) {
        // Some CAs pad their key usage with a zero octet: what is rebuilt from input that need not
        // be DER must at least rebuild to itself.
        const Got rebuilt = f.rebuild(e.der);
        EXPECT_EQ(rebuilt.hex(), e.strict ? ToHex(e.der) : f.rebuild(rebuilt.bytes).hex()) << "rebuilt";
    }
    if (!f.decode) {
        EXPECT_EQ(e.derived.empty() ? "" : f.derived(nullptr, e.der).hex(), ToHex(e.derived));
        return;
    }
    Handle h, copy;
    ASSERT_EQ(f.decode(e.der, h), TV_OK);
    EXPECT_EQ(f.encode(h.get()).hex(), ToHex(e.der));
    if (f.copy) {
        ASSERT_EQ(f.copy(h.get(), copy), TV_OK);
        EXPECT_EQ(f.encode(copy.get()).hex(), ToHex(e.der)) << "copy";
        EXPECT_EQ(f.compare ? f.compare(h.get(), copy.get()) : uint32_t{TV_OK}, TV_OK);
    }
    EXPECT_EQ(e.derived.empty() ? "" : f.derived(h.get(), e.der).hex(), ToHex(e.derived)) << "derived";
    if (!f.parts) return;
    for (Entry& part : f.parts(h.get(), e.label)) {
        part.strict = e.strict;
        Check(part);
    }
}

// An input of no particular family: whatever decodes re-encodes to a fixpoint, the rest fails cleanly.
void CheckAsAny(const Entry& e) {
    for (const auto& [name, f] : Families()) {
        SCOPED_TRACE(e.label + " as " + name);
        if (f.rebuild) f.rebuild(e.der);
        Handle h, again;
        if (!f.decode || f.decode(e.der, h) != TV_OK) continue;
        const Got once = f.encode(h.get());
        ASSERT_EQ(once.rc, TV_OK);
        ASSERT_EQ(f.decode(once.bytes, again), TV_OK);
        EXPECT_EQ(f.encode(again.get()).hex(), ToHex(once.bytes));
    }
}

// The checks of Check without the comparisons, for runs under allocation failure.
uint32_t RunAll(const Family& f, const Entry& e) {
    if (f.rebuild) TRY(f.rebuild(e.der).rc);
    Handle h, copy;
    if (!f.decode) return e.derived.empty() ? uint32_t{TV_OK} : f.derived(nullptr, e.der).rc;
    TRY(f.decode(e.der, h));
    TRY(f.encode(h.get()).rc);
    if (f.copy) TRY(f.copy(h.get(), copy));
    return e.derived.empty() ? uint32_t{TV_OK} : f.derived(h.get(), e.der).rc;
}

TEST(Corpus, EveryFixtureRoundTrips) {
    for (const Entry& e : ManifestEntries()) e.family == "*" ? CheckAsAny(e) : Check(e);
}

TEST(Corpus, SystemStoreRoundTrips) {
    const auto entries = SystemStoreEntries();
    if (entries.empty()) GTEST_SKIP() << "no PEM certificates in /etc/ssl/certs";
    for (const Entry& e : entries) Check(e);
    RecordProperty("certificates", static_cast<int>(entries.size()));
}

// Small objects only: the runs grow with the square of the allocations.
TEST(Corpus, AllocationFailuresFailCleanly) {
    for (const Entry& e : ManifestEntries()) {
        if (e.family == "*" || e.der.size() > 4096) continue;
        SCOPED_TRACE(e.label);
        EXPECT_GT(ForEachAllocationFailure([&] { return RunAll(Families().at(e.family), e); }), 0);
    }
}

// A fixture nobody reads tests nothing: each DER file is named in its directory's MANIFEST.
TEST(Corpus, EveryFixtureIsListed) {
    for (const auto& f : fs::recursive_directory_iterator(Fixture(""))) {
        if (f.path().extension() != ".der") continue;
        std::ifstream manifest(f.path().parent_path() / "MANIFEST");
        const std::string text((std::istreambuf_iterator<char>(manifest)), std::istreambuf_iterator<char>());
        const bool globbed = text.starts_with("*") || text.find("\n*") != std::string::npos;
        EXPECT_TRUE(globbed || text.find(f.path().filename().string()) != std::string::npos) << f.path();
    }
}

}  // namespace
