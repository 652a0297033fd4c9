// Algorithm vocabulary of the library: the algorithm and GOST parameter-set tables, GOST R 34.10
// public-key parameter blocks (RFC 4491, RFC 9215) and keys, and SubjectPublicKeyInfo.
#include "tarvelon/pkix/X509Algorithm.h"

#include "tarvelon/algorithm.h"
#include "tarvelon/engine/Fields.h"

TV_MODULE(X509Algorithm)

// ---- packed identifiers (length octet + DER contents) ---------------------------------------------

namespace tv {
namespace {

// Algorithms.
constexpr uint8_t kOidRsaEncryption[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x01};  // 1.2.840.113549.1.1.1
constexpr uint8_t kOidMd2WithRsa[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x02};     // 1.2.840.113549.1.1.2
constexpr uint8_t kOidMd5WithRsa[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x04};     // 1.2.840.113549.1.1.4
constexpr uint8_t kOidSha1WithRsa[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x05};    // 1.2.840.113549.1.1.5
constexpr uint8_t kOidGost94With2001[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x03};                    // 1.2.643.2.2.3
constexpr uint8_t kOidGost94With94[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x04};                      // 1.2.643.2.2.4
constexpr uint8_t kOidGostR34102001[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x13};                     // 1.2.643.2.2.19
constexpr uint8_t kOidGostR341094[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x14};                       // 1.2.643.2.2.20
constexpr uint8_t kOidGost28147[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x15};                         // 1.2.643.2.2.21
constexpr uint8_t kOidGostR341194[] = {6, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x09};                       // 1.2.643.2.2.9
constexpr uint8_t kOidGost2012Key256[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x01, 0x01};        // 1.2.643.7.1.1.1.1
constexpr uint8_t kOidGost2012Key512[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x01, 0x02};        // 1.2.643.7.1.1.1.2
constexpr uint8_t kOidGost2012Sign256[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x03, 0x02};       // 1.2.643.7.1.1.3.2
constexpr uint8_t kOidGost2012Sign512[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x03, 0x03};       // 1.2.643.7.1.1.3.3

// GOST R 34.10 public-key parameter sets.
constexpr uint8_t kOidKeySetTest2001[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x23, 0x00};              // 1.2.643.2.2.35.0
constexpr uint8_t kOidKeySetCryptoProA[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x23, 0x01};            // 1.2.643.2.2.35.1
constexpr uint8_t kOidKeySetCryptoProB[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x23, 0x02};            // 1.2.643.2.2.35.2
constexpr uint8_t kOidKeySetCryptoProC[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x23, 0x03};            // 1.2.643.2.2.35.3
constexpr uint8_t kOidKeySetCryptoProXchA[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x24, 0x00};         // 1.2.643.2.2.36.0
constexpr uint8_t kOidKeySetCryptoProXchB[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x24, 0x01};         // 1.2.643.2.2.36.1
constexpr uint8_t kOidKeySetTc26_256Test[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x01, 0x00};  // 1.2.643.7.1.2.1.1.0
constexpr uint8_t kOidKeySetTc26_256A[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x01, 0x01};     // 1.2.643.7.1.2.1.1.1
constexpr uint8_t kOidKeySetTc26_512Test[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x02, 0x00};  // 1.2.643.7.1.2.1.2.0
constexpr uint8_t kOidKeySetTc26_512A[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x02, 0x01};     // 1.2.643.7.1.2.1.2.1
constexpr uint8_t kOidKeySetTc26_512B[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x02, 0x02};     // 1.2.643.7.1.2.1.2.2
constexpr uint8_t kOidKeySetTc26_512C[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x01, 0x02, 0x03};     // 1.2.643.7.1.2.1.2.3

// Digest parameter sets.
constexpr uint8_t kOidDigestSetTest94[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1E, 0x00};             // 1.2.643.2.2.30.0
constexpr uint8_t kOidDigestSetCryptoPro94[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1E, 0x01};        // 1.2.643.2.2.30.1
constexpr uint8_t kOidDigest2012_256[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x02, 0x02};        // 1.2.643.7.1.1.2.2
constexpr uint8_t kOidDigest2012_512[] = {8, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x01, 0x02, 0x03};        // 1.2.643.7.1.1.2.3

// GOST 28147-89 encryption parameter sets.
constexpr uint8_t kOidCipherSetTest[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x00};               // 1.2.643.2.2.31.0
constexpr uint8_t kOidCipherSetCryptoProA[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x01};         // 1.2.643.2.2.31.1
constexpr uint8_t kOidCipherSetCryptoProB[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x02};         // 1.2.643.2.2.31.2
constexpr uint8_t kOidCipherSetCryptoProC[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x03};         // 1.2.643.2.2.31.3
constexpr uint8_t kOidCipherSetCryptoProD[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x04};         // 1.2.643.2.2.31.4
constexpr uint8_t kOidCipherSetOscar11[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x05};            // 1.2.643.2.2.31.5
constexpr uint8_t kOidCipherSetOscar10[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x06};            // 1.2.643.2.2.31.6
constexpr uint8_t kOidCipherSetRic1[] = {7, 0x2A, 0x85, 0x03, 0x02, 0x02, 0x1F, 0x07};               // 1.2.643.2.2.31.7
constexpr uint8_t kOidCipherSetTc26Z[] = {9, 0x2A, 0x85, 0x03, 0x07, 0x01, 0x02, 0x05, 0x01, 0x01};  // 1.2.643.7.1.2.5.1.1

struct OidRow {
    uint32_t id;
    const uint8_t* packed;
};

// Searched in this order; the first match wins.
constexpr OidRow kAlgorithms[] = {
    {1, kOidRsaEncryption},     {2, kOidMd2WithRsa},        {3, kOidMd5WithRsa},
    {4, kOidSha1WithRsa},       {100, kOidGost94With2001},  {101, kOidGost94With94},
    {102, kOidGostR34102001},   {103, kOidGostR341094},     {1000, kOidGost28147},
    {2000, kOidGostR341194},    {3000, kOidGost2012Key256}, {3001, kOidGost2012Key512},
    {3002, kOidGost2012Sign256}, {3003, kOidGost2012Sign512},
};

constexpr OidRow kPublicKeyParamSets[] = {
    {6, kOidKeySetTest2001},      {1, kOidKeySetCryptoProA},    {2, kOidKeySetCryptoProB},
    {3, kOidKeySetCryptoProC},    {4, kOidKeySetCryptoProXchA}, {5, kOidKeySetCryptoProXchB},
    {7, kOidKeySetTc26_256Test},  {9, kOidKeySetTc26_256A},     {8, kOidKeySetTc26_512Test},
    {10, kOidKeySetTc26_512A},    {11, kOidKeySetTc26_512B},    {12, kOidKeySetTc26_512C},
};

constexpr OidRow kDigestParamSets[] = {
    {2, kOidDigestSetTest94}, {1, kOidDigestSetCryptoPro94}, {3, kOidDigest2012_256}, {4, kOidDigest2012_512},
};

constexpr OidRow kEncryptionParamSets[] = {
    {8, kOidCipherSetTest},       {1, kOidCipherSetCryptoProA}, {2, kOidCipherSetCryptoProB},
    {3, kOidCipherSetCryptoProC}, {4, kOidCipherSetCryptoProD}, {5, kOidCipherSetOscar11},
    {6, kOidCipherSetOscar10},    {7, kOidCipherSetRic1},       {9, kOidCipherSetTc26Z},
};

// Id of the encryption set that an omitted encryptionParamSet of the 2001 block stands for.
constexpr uint32_t kDefaultEncryptionSet2001 = 1;

template <size_t N>
uint32_t IdOf(const OidRow (&table)[N], const uint8_t* packed, uint32_t* id) {
    if (!packed || !id) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    for (const OidRow& row : table) {
        if (IsOidEquals(row.packed, packed)) {
            *id = row.id;
            return TV_OK;
        }
    }
    return TV_FAIL(TV_ERR_OID_NOT_FOUND);
}

template <size_t N>
uint32_t OidOf(const OidRow (&table)[N], uint32_t id, const uint8_t** packed) {
    if (!packed) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    for (const OidRow& row : table) {
        if (row.id == id) {
            *packed = row.packed;
            return TV_OK;
        }
    }
    return TV_FAIL(TV_ERR_ID_NOT_FOUND);
}

// The contents of a constant packed OID as an identifier value's content pointer. Default values
// are only ever read (compared and copied), never written through.
constexpr uint8_t* DefaultContents(const uint8_t* packed) { return const_cast<uint8_t*>(packed + 1); }

}  // namespace
}  // namespace tv

// ---- descriptors ------------------------------------------------------------------------------------

namespace tv::desc {
namespace {

constexpr Asn1Descriptor kOptionalAny = Optional(Any());

}  // namespace

// AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }
constinit const Components<SlotCount<AlgorithmIdentifierSlot>> kAlgorithmIdentifierParts =
    Slots<AlgorithmIdentifierSlot>({
        {AlgorithmIdentifierSlot::kAlgorithm, &kOid},           // algorithm   OBJECT IDENTIFIER
        {AlgorithmIdentifierSlot::kParameters, &kOptionalAny},  // parameters  ANY DEFINED BY algorithm OPTIONAL
    });

// SubjectPublicKeyInfo ::= SEQUENCE { algorithm AlgorithmIdentifier, subjectPublicKey BIT STRING }
constinit const Components<SlotCount<SubjectPublicKeyInfoSlot>> kSubjectPublicKeyInfoParts =
    Slots<SubjectPublicKeyInfoSlot>({
        {SubjectPublicKeyInfoSlot::kAlgorithm, &kAlgorithmIdentifier},  // algorithm         AlgorithmIdentifier
        {SubjectPublicKeyInfoSlot::kSubjectPublicKey, &kBitString},     // subjectPublicKey  BIT STRING
    });

namespace {

// id-Gost28147-89-CryptoPro-A-ParamSet, the default encryption set of the 2001 block (RFC 4491).
constinit const Asn1Primitive kDefaultEncryptionParamSet2001{ASN1_OBJECT_IDENTIFIER, kOidCipherSetCryptoProA[0],
                                                             DefaultContents(kOidCipherSetCryptoProA)};
// id-tc26-gost-28147-param-Z, the default encryption set of the 2012 block.
constinit const Asn1Primitive kDefaultEncryptionParamSet2012{ASN1_OBJECT_IDENTIFIER, kOidCipherSetTc26Z[0],
                                                             DefaultContents(kOidCipherSetTc26Z)};

constexpr Asn1Descriptor kEncryptionParamSet2001 = Optional(kOid, &kDefaultEncryptionParamSet2001);
constexpr Asn1Descriptor kEncryptionParamSet2012 = Optional(kOid, &kDefaultEncryptionParamSet2012);

// GostR3410-2001-PublicKeyParameters ::= SEQUENCE {
//     publicKeyParamSet OBJECT IDENTIFIER, digestParamSet OBJECT IDENTIFIER,
//     encryptionParamSet OBJECT IDENTIFIER DEFAULT id-Gost28147-89-CryptoPro-A-ParamSet }
constexpr auto kGost2001ParametersParts = Slots<GostPublicKeyParametersSlot>({
    {GostPublicKeyParametersSlot::kPublicKeyParamSet, &kOid},                      // publicKeyParamSet   OBJECT IDENTIFIER
    {GostPublicKeyParametersSlot::kDigestParamSet, &kOid},                         // digestParamSet      OBJECT IDENTIFIER
    {GostPublicKeyParametersSlot::kEncryptionParamSet, &kEncryptionParamSet2001},  // encryptionParamSet  OBJECT IDENTIFIER DEFAULT 1.2.643.2.2.31.1
});

// GostR3410-2012-PublicKeyParameters ::= SEQUENCE {
//     publicKeyParamSet OBJECT IDENTIFIER, digestParamSet OBJECT IDENTIFIER,
//     encryptionParamSet OBJECT IDENTIFIER DEFAULT id-tc26-gost-28147-param-Z }
// The digest set is kept mandatory, as in the 2001 block.
constexpr auto kGost2012ParametersParts = Slots<GostPublicKeyParametersSlot>({
    {GostPublicKeyParametersSlot::kPublicKeyParamSet, &kOid},                      // publicKeyParamSet   OBJECT IDENTIFIER
    {GostPublicKeyParametersSlot::kDigestParamSet, &kOid},                         // digestParamSet      OBJECT IDENTIFIER
    {GostPublicKeyParametersSlot::kEncryptionParamSet, &kEncryptionParamSet2012},  // encryptionParamSet  OBJECT IDENTIFIER DEFAULT 1.2.643.7.1.2.5.1.1
});

}  // namespace

constinit const Asn1Descriptor kAlgorithmIdentifier = Sequence(kAlgorithmIdentifierParts);
constinit const Asn1Descriptor kSubjectPublicKeyInfo = Sequence(kSubjectPublicKeyInfoParts);
constinit const Asn1Descriptor kGostR34102001PublicKeyParameters = Sequence(kGost2001ParametersParts);
constinit const Asn1Descriptor kGostR34102012PublicKeyParameters = Sequence(kGost2012ParametersParts);

}  // namespace tv::desc

// ---- internals --------------------------------------------------------------------------------------

namespace tv {
namespace {

// The parameter block of a GOST key algorithm; null for any other id.
const Asn1Descriptor* GostBlockFor(uint32_t algId) {
    switch (algId) {
        case kAlgGostR34102001:
            return &desc::kGostR34102001PublicKeyParameters;
        case kAlgGostR34102012_256:
        case kAlgGostR34102012_512:
            return &desc::kGostR34102012PublicKeyParameters;
        default:
            return nullptr;
    }
}

bool IsNullParameters(const uint8_t* params, uint32_t len) {
    return len == 2 && params[0] == ASN1_NULL && params[1] == 0x00;
}

uint32_t DecodeGostBlock(const Asn1Descriptor* block, const uint8_t* params, uint32_t len, OwnedValue& value) {
    uint32_t consumed = 0;
    const uint32_t rc = Asn1DecodeItem(params, len, block, value.Out(), &consumed);
    if (rc == TV_ERR_NO_MEMORY) return rc;
    if (rc != TV_OK) return TV_FAIL(TV_ERR_MALFORMED);
    return TV_OK;
}

// The OID part of an AlgorithmIdentifier.
uint32_t GetOidPart(const void* algorithmIdentifier, uint8_t* oid, uint32_t* oidLen) {
    return GetOid(TV_SITE, Slot(algorithmIdentifier, desc::AlgorithmIdentifierSlot::kAlgorithm), oid, oidLen);
}

// The parameters part: the complete element, or length 0 when absent.
uint32_t GetParametersPart(const void* algorithmIdentifier, uint8_t* params, uint32_t* paramsLen) {
    if (!paramsLen) {
        if (params) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
        return TV_OK;  // the caller does not want the parameters
    }
    const auto* any =
        static_cast<const Asn1Primitive*>(Slot(algorithmIdentifier, desc::AlgorithmIdentifierSlot::kParameters));
    if (!any || !any->content) return PutBytes(TV_SITE, nullptr, 0, params, paramsLen);
    return PutBytes(TV_SITE, any->content, any->length, params, paramsLen);
}

uint32_t StoreAlgorithm(void** slot, const uint8_t* packedOid, const uint8_t* params, uint32_t paramsLen) {
    using Part = desc::AlgorithmIdentifierSlot;
    OwnedValue oid(&desc::kOid);
    TV_TRY(SetOid(TV_SITE, oid.Out(), packedOid));
    OwnedValue any(&desc::kAny);
    if (params && paramsLen) TV_TRY(SetAny(TV_SITE, any.Out(), params, paramsLen));
    if (!*slot) {
        OwnedValue fresh(&desc::kAlgorithmIdentifier);
        TV_TRY(NewStructure(TV_SITE, desc::kAlgorithmIdentifier, fresh));
        *slot = fresh.Release();
    }
    void*& algorithm = Slot(*slot, Part::kAlgorithm);
    FreeAsn1Object(&desc::kOid, algorithm);
    algorithm = oid.Release();
    void*& parameters = Slot(*slot, Part::kParameters);
    FreeAsn1Object(&desc::kAny, parameters);
    parameters = any.Release();
    return TV_OK;
}

uint32_t DecodeOctetStringContents(const uint8_t* der, uint32_t len, uint8_t* out, uint32_t* outLen) {
    if (!der || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kOctetString);
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(der, len, &desc::kOctetString, value.Out(), &consumed));
    const auto* p = value.as<Asn1Primitive>();
    return PutBytes(TV_SITE, p->content, p->length, out, outLen);
}

uint32_t EncodeOctetString(const uint8_t* key, uint32_t keyLen, uint8_t* out, uint32_t* outLen) {
    if (!outLen || (!key && keyLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const size_t n = HeaderSize(ASN1_OCTET_STRING, keyLen) + keyLen;
    return WriteSized(TV_SITE, n, out, outLen, [&](uint8_t* to) {
        uint8_t* p = WriteHeader(to, ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, ASN1_OCTET_STRING, keyLen);
        if (keyLen) std::memcpy(p, key, keyLen);
        return uint32_t{TV_OK};
    });
}

// Whether the parameter sets suit the key algorithm (the encryption set is not looked at).
bool GostSetsMatch(uint32_t algId, uint32_t keySet, uint32_t digestSet) {
    switch (algId) {
        case kAlgGostR34102012_256:
            return ((keySet >= 1 && keySet <= 7) || keySet == 9) && digestSet == 3;
        case kAlgGostR34102012_512:
            return (keySet == 8 || (keySet >= 10 && keySet <= 12)) && digestSet == 4;
        case kAlgGostR34102001:
            return keySet >= 1 && keySet <= 6 && (digestSet == 1 || digestSet == 2);
        default:
            return false;
    }
}

}  // namespace

// ---- tables -----------------------------------------------------------------------------------------

uint32_t FindAlgorithmId(const uint8_t* packedOid, uint32_t* algId) noexcept {
    return IdOf(kAlgorithms, packedOid, algId);
}
uint32_t FindAlgorithmOid(uint32_t algId, const uint8_t** packed) noexcept { return OidOf(kAlgorithms, algId, packed); }
uint32_t FindPublicKeyParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept {
    return IdOf(kPublicKeyParamSets, packedOid, id);
}
uint32_t FindPublicKeyParamSetOid(uint32_t id, const uint8_t** packed) noexcept {
    return OidOf(kPublicKeyParamSets, id, packed);
}
uint32_t FindDigestParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept {
    return IdOf(kDigestParamSets, packedOid, id);
}
uint32_t FindDigestParamSetOid(uint32_t id, const uint8_t** packed) noexcept {
    return OidOf(kDigestParamSets, id, packed);
}
uint32_t FindEncryptionParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept {
    return IdOf(kEncryptionParamSets, packedOid, id);
}
uint32_t FindEncryptionParamSetOid(uint32_t id, const uint8_t** packed) noexcept {
    return OidOf(kEncryptionParamSets, id, packed);
}

// ---- "OID and parameters" ---------------------------------------------------------------------------

uint32_t GetAlgorithmOidAndParameters(const void* algorithmIdentifier, uint8_t* oid, uint32_t* oidLen,
                                      uint8_t* params, uint32_t* paramsLen) noexcept {
    if (!oidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!algorithmIdentifier) return TV_FAIL(TV_ERR_ABSENT);
    // Both parts run whatever the other answered, so one call with null buffers sizes both.
    const uint32_t oidRc = GetOidPart(algorithmIdentifier, oid, oidLen);
    const uint32_t paramsRc = GetParametersPart(algorithmIdentifier, params, paramsLen);
    if (oidRc == TV_ERR_BUFFER_TOO_SMALL || paramsRc == TV_ERR_BUFFER_TOO_SMALL) return TV_ERR_BUFFER_TOO_SMALL;
    return oidRc != TV_OK ? oidRc : paramsRc;
}

uint32_t SetAlgorithmOidAndParameters(void** slot, const uint8_t* packedOid, const uint8_t* params,
                                      uint32_t paramsLen, void** mirror) noexcept {
    if (!slot || !packedOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    TV_TRY(StoreAlgorithm(slot, packedOid, params, paramsLen));
    if (mirror) TV_TRY(StoreAlgorithm(mirror, packedOid, params, paramsLen));
    return TV_OK;
}

uint32_t SetAlgorithmIdAndParameters(void** slot, uint32_t algId, const uint8_t* params, uint32_t paramsLen,
                                     void** mirror) noexcept {
    const uint8_t* oid = nullptr;
    TV_TRY(FindAlgorithmOid(algId, &oid));
    return SetAlgorithmOidAndParameters(slot, oid, params, paramsLen, mirror);
}

uint32_t SetAlgorithmGostR34102001AndParameters(void** slot, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId,
                                                uint32_t digestParamId, uint32_t encryptionParamId,
                                                void** mirror) noexcept {
    // Table OIDs are at most nine octets, so a block never exceeds 2 + 3 * 11 octets: the working
    // buffer always suffices and lives on the stack.
    uint8_t params[128];
    uint32_t paramsLen = sizeof params;
    TV_TRY(EncodeGostR34102001ParameterIds(mode, publicKeyParamId, digestParamId, encryptionParamId, params,
                                           &paramsLen));
    return SetAlgorithmIdAndParameters(slot, algId, params, paramsLen, mirror);
}

// ---- GOST parameter blocks --------------------------------------------------------------------------

uint32_t EncodeGostParameterOids(uint32_t algId, uint8_t mode, const uint8_t* publicKeyParamOid,
                                 const uint8_t* digestParamOid, const uint8_t* encryptionParamOid, uint8_t* out,
                                 uint32_t* outLen) noexcept {
    const Asn1Descriptor* block = GostBlockFor(algId);
    if (!block || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    switch (mode) {
        case kGostParametersAbsent:
            *outLen = 0;
            return TV_OK;
        case kGostParametersNull: {
            static constexpr uint8_t kNullElement[] = {ASN1_NULL, 0x00};
            return PutBytes(TV_SITE, kNullElement, sizeof kNullElement, out, outLen);
        }
        case kGostParametersBlock:
            break;
        default:
            return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    }
    if (!publicKeyParamOid || !digestParamOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(block);
    TV_TRY(NewStructure(TV_SITE, *block, value));
    using Part = desc::GostPublicKeyParametersSlot;
    const struct {
        Part slot;
        const uint8_t* oid;
    } sets[] = {{Part::kPublicKeyParamSet, publicKeyParamOid},
                {Part::kDigestParamSet, digestParamOid},
                {Part::kEncryptionParamSet, encryptionParamOid}};
    for (const auto& set : sets)  // only the encryption set may be left out
        if (set.oid) TV_TRY(SetOid(TV_SITE, &Slot(value.get(), set.slot), set.oid));
    // An encryption set equal to the block's default is left out by DER.
    return EncodeSized(TV_SITE, value.get(), block, out, outLen);
}

uint32_t EncodeGostR34102001ParameterIds(uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
                                         uint32_t encryptionParamId, uint8_t* out, uint32_t* outLen) noexcept {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const uint8_t* keySet = nullptr;
    const uint8_t* digestSet = nullptr;
    const uint8_t* encryptionSet = nullptr;
    if (mode == kGostParametersBlock) {
        TV_TRY(FindPublicKeyParamSetOid(publicKeyParamId, &keySet));
        TV_TRY(FindDigestParamSetOid(digestParamId, &digestSet));
        TV_TRY(FindEncryptionParamSetOid(encryptionParamId, &encryptionSet));
    }
    // Always the 2001 block, whatever the sets name.
    return EncodeGostParameterOids(kAlgGostR34102001, mode, keySet, digestSet, encryptionSet, out, outLen);
}

uint32_t DecodeGostR34102001ParameterIds(const uint8_t* params, uint32_t paramsLen, uint8_t* mode,
                                         uint32_t* publicKeyParamId, uint32_t* digestParamId,
                                         uint32_t* encryptionParamId) noexcept {
    if (!mode) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!params || paramsLen == 0) {
        *mode = kGostParametersAbsent;
        return TV_OK;
    }
    if (IsNullParameters(params, paramsLen)) {
        *mode = kGostParametersNull;
        return TV_OK;
    }
    if (!publicKeyParamId || !digestParamId || !encryptionParamId) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *mode = kGostParametersBlock;
    OwnedValue block(&desc::kGostR34102001PublicKeyParameters);
    TV_TRY(DecodeGostBlock(&desc::kGostR34102001PublicKeyParameters, params, paramsLen, block));
    using Part = desc::GostPublicKeyParametersSlot;
    const auto* keySet = static_cast<const Asn1Primitive*>(Slot(block.get(), Part::kPublicKeyParamSet));
    const auto* digestSet = static_cast<const Asn1Primitive*>(Slot(block.get(), Part::kDigestParamSet));
    const auto* encryptionSet = static_cast<const Asn1Primitive*>(Slot(block.get(), Part::kEncryptionParamSet));
    uint8_t packed[256];
    uint32_t packedLen = sizeof packed;
    // Stops at the first set that is not in its table.
    TV_TRY(OidToPacked(keySet, packed, &packedLen));
    TV_TRY(FindPublicKeyParamSetId(packed, publicKeyParamId));
    packedLen = sizeof packed;
    TV_TRY(OidToPacked(digestSet, packed, &packedLen));
    TV_TRY(FindDigestParamSetId(packed, digestParamId));
    if (!encryptionSet) {
        *encryptionParamId = kDefaultEncryptionSet2001;
        return TV_OK;
    }
    packedLen = sizeof packed;
    TV_TRY(OidToPacked(encryptionSet, packed, &packedLen));
    return FindEncryptionParamSetId(packed, encryptionParamId);
}

// ---- public keys ------------------------------------------------------------------------------------

uint32_t GetSubjectPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen) noexcept {
    if (!spki || !keyLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const auto* bits =
        static_cast<const Asn1BitStringValue*>(Slot(spki, desc::SubjectPublicKeyInfoSlot::kSubjectPublicKey));
    if (bits && !bits->content && bits->length) return TV_FAIL(TV_ERR_ABSENT);
    return GetBits(TV_SITE, bits, key, keyLen);
}

uint32_t SetSubjectPublicKey(void* spki, const uint8_t* key, uint32_t keyLen) noexcept {
    if (!spki || (!key && keyLen)) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ReplaceBits(TV_SITE, &Slot(spki, desc::SubjectPublicKeyInfoSlot::kSubjectPublicKey), key, keyLen);
}

uint32_t GetGostPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen) noexcept {
    if (!spki || !keyLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t wrapped[270];
    uint32_t wrappedLen = sizeof wrapped;
    const uint32_t rc = GetSubjectPublicKey(spki, wrapped, &wrappedLen);
    if (rc == TV_ERR_BUFFER_TOO_SMALL) return TV_FAIL(TV_ERR_WORK_BUFFER);
    TV_TRY(rc);
    return DecodeOctetStringContents(wrapped, wrappedLen, key, keyLen);
}

uint32_t SetGostPublicKey(void* spki, const uint8_t* key, uint32_t keyLen) noexcept {
    if (!spki) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t wrapped[256];
    uint32_t wrappedLen = sizeof wrapped;
    const uint32_t rc = EncodeOctetString(key, keyLen, wrapped, &wrappedLen);
    if (rc == TV_ERR_BUFFER_TOO_SMALL) return TV_FAIL(TV_ERR_WORK_BUFFER);
    TV_TRY(rc);
    return SetSubjectPublicKey(spki, wrapped, wrappedLen);
}

uint32_t GetCheckedGostPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen, uint32_t* publicKeyParamId,
                                 uint32_t* digestParamId, uint32_t* encryptionParamId) noexcept {
    if (!spki || !keyLen || !publicKeyParamId || !digestParamId || !encryptionParamId)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint8_t oid[100];
    uint32_t oidLen = sizeof oid;
    uint8_t params[100];
    uint32_t paramsLen = sizeof params;
    TV_TRY(GetAlgorithmOidAndParameters(Slot(spki, desc::SubjectPublicKeyInfoSlot::kAlgorithm), oid, &oidLen, params,
                                        &paramsLen));
    uint32_t algId = 0;
    TV_TRY(FindAlgorithmId(oid, &algId));
    if (!GostBlockFor(algId)) return TV_FAIL(TV_ERR_KEY_KIND);
    uint8_t mode = 0;
    TV_TRY(DecodeGostR34102001ParameterIds(params, paramsLen, &mode, publicKeyParamId, digestParamId,
                                           encryptionParamId));
    if (mode != kGostParametersBlock) return TV_FAIL(TV_ERR_KEY_KIND);
    if (!GostSetsMatch(algId, *publicKeyParamId, *digestParamId)) return TV_FAIL(TV_ERR_KEY_KIND);
    uint8_t wrapped[168];
    uint32_t wrappedLen = sizeof wrapped;
    TV_TRY(GetSubjectPublicKey(spki, wrapped, &wrappedLen));
    return DecodeOctetStringContents(wrapped, wrappedLen, key, keyLen);
}

}  // namespace tv

// ---- exported ---------------------------------------------------------------------------------------

using namespace tv;

namespace {

uint32_t DecodeParameterOids(uint32_t algId, const uint8_t* params, uint32_t paramsLen, uint8_t* mode,
                             uint8_t* keySet, uint32_t* keySetLen, uint8_t* digestSet, uint32_t* digestSetLen,
                             uint8_t* encryptionSet, uint32_t* encryptionSetLen) {
    if (!mode || !keySetLen || !digestSetLen || !encryptionSetLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    const Asn1Descriptor* block = GostBlockFor(algId);
    if (!block) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!params || paramsLen == 0 || IsNullParameters(params, paramsLen)) {
        *mode = (!params || paramsLen == 0) ? kGostParametersAbsent : kGostParametersNull;
        *keySetLen = *digestSetLen = *encryptionSetLen = 0;
        return TV_OK;
    }
    *mode = kGostParametersBlock;
    OwnedValue value(block);
    TV_TRY(DecodeGostBlock(block, params, paramsLen, value));
    using Part = desc::GostPublicKeyParametersSlot;
    auto set = [&](Part part) { return static_cast<const Asn1Primitive*>(Slot(value.get(), part)); };
    // All three are delivered (or sized) before the result is chosen: encryption, digest, key.
    const uint32_t keyRc = OidToPacked(set(Part::kPublicKeyParamSet), keySet, keySetLen);
    const uint32_t digestRc = OidToPacked(set(Part::kDigestParamSet), digestSet, digestSetLen);
    const uint32_t encryptionRc = OidToPacked(set(Part::kEncryptionParamSet), encryptionSet, encryptionSetLen);
    if (encryptionRc != TV_OK) return encryptionRc;
    return digestRc != TV_OK ? digestRc : keyRc;
}

}  // namespace

extern "C" TV_API uint32_t FindAlgIdByOid(const uint8_t* inOid, uint32_t* outAlgId) {
    return FindAlgorithmId(inOid, outAlgId);
}

extern "C" TV_API uint32_t GetPublicKeyAlgorithmOid(uint32_t algId, uint8_t* out, uint32_t* outLen) {
    const uint8_t* packed = nullptr;
    TV_TRY(FindAlgorithmOid(algId, &packed));
    return PutBytes(TV_SITE, packed, packed[0] + 1u, out, outLen);
}

extern "C" TV_API uint32_t DecodeAlgorithmGostR3410ParameterOids(
    uint32_t algId, const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid,
    uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen,
    uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen) {
    return DecodeParameterOids(algId, in, inLen, outMode, outPublicKeyParamOid, outPublicKeyParamOidLen,
                               outDigestParamOid, outDigestParamOidLen, outEncryptionParamOid,
                               outEncryptionParamOidLen);
}

extern "C" TV_API uint32_t DecodeAlgorithmGostR34102001ParameterOids(
    const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid,
    uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen,
    uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen) {
    return DecodeParameterOids(kAlgGostR34102001, in, inLen, outMode, outPublicKeyParamOid,
                               outPublicKeyParamOidLen, outDigestParamOid, outDigestParamOidLen,
                               outEncryptionParamOid, outEncryptionParamOidLen);
}

extern "C" TV_API uint32_t DecodeAlgorithmGostR34102012ParameterOids(
    const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid,
    uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen,
    uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen) {
    return DecodeParameterOids(kAlgGostR34102012_256, in, inLen, outMode, outPublicKeyParamOid,
                               outPublicKeyParamOidLen, outDigestParamOid, outDigestParamOidLen,
                               outEncryptionParamOid, outEncryptionParamOidLen);
}

extern "C" TV_API uint32_t DecodeAlgorithmGostR34102001Parameters(const uint8_t* in, uint32_t inLen,
                                                                  uint8_t* outMode, uint32_t* outPublicKeyParamId,
                                                                  uint32_t* outDigestParamId,
                                                                  uint32_t* outEncryptionParamId) {
    return DecodeGostR34102001ParameterIds(in, inLen, outMode, outPublicKeyParamId, outDigestParamId,
                                           outEncryptionParamId);
}

extern "C" TV_API uint32_t EncodeAlgorithmGostR3410ParametersOid(uint32_t algId, uint8_t mode,
                                                                 const uint8_t* inPublicKeyParamOid,
                                                                 const uint8_t* inDigestParamOid,
                                                                 const uint8_t* inEncryptionParamOid, uint8_t* out,
                                                                 uint32_t* outLen) {
    return EncodeGostParameterOids(algId, mode, inPublicKeyParamOid, inDigestParamOid, inEncryptionParamOid, out,
                                   outLen);
}

extern "C" TV_API uint32_t EncodeAlgorithmGostR34102001ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid,
                                                                     const uint8_t* inDigestParamOid,
                                                                     const uint8_t* inEncryptionParamOid,
                                                                     uint8_t* out, uint32_t* outLen) {
    return EncodeGostParameterOids(kAlgGostR34102001, mode, inPublicKeyParamOid, inDigestParamOid,
                                   inEncryptionParamOid, out, outLen);
}

extern "C" TV_API uint32_t EncodeAlgorithmGostR34102012ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid,
                                                                     const uint8_t* inDigestParamOid,
                                                                     const uint8_t* inEncryptionParamOid,
                                                                     uint8_t* out, uint32_t* outLen) {
    return EncodeGostParameterOids(kAlgGostR34102012_256, mode, inPublicKeyParamOid, inDigestParamOid,
                                   inEncryptionParamOid, out, outLen);
}

extern "C" TV_API uint32_t EncodeAlgorithmGostR34102001Parameters(uint8_t mode, uint32_t publicKeyParamId,
                                                                  uint32_t digestParamId,
                                                                  uint32_t encryptionParamId, uint8_t* out,
                                                                  uint32_t* outLen) {
    return EncodeGostR34102001ParameterIds(mode, publicKeyParamId, digestParamId, encryptionParamId, out, outLen);
}

extern "C" TV_API uint32_t SetAlgorithmGostR34102001AndParameters(AlgorithmIdentifier* algorithm, uint32_t algId,
                                                                  uint8_t mode, uint32_t publicKeyParamId,
                                                                  uint32_t digestParamId,
                                                                  uint32_t encryptionParamId) {
    if (!algorithm) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    void* slot = algorithm;  // filled in place: the block exists, so the slot is never replaced
    return tv::SetAlgorithmGostR34102001AndParameters(&slot, algId, mode, publicKeyParamId, digestParamId,
                                                      encryptionParamId);
}

extern "C" TV_API uint32_t EncodeGostR34102001PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                        uint32_t* outLen) {
    return EncodeOctetString(in, inLen, out, outLen);
}

extern "C" TV_API uint32_t EncodeGostR34102012PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                        uint32_t* outLen) {
    return EncodeOctetString(in, inLen, out, outLen);
}

extern "C" TV_API uint32_t DecodePublicKeyGostR34102001(const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                        uint32_t* outLen) {
    return DecodeOctetStringContents(in, inLen, out, outLen);
}

extern "C" TV_API uint32_t DecodePublicKeyGostR34102012(const uint8_t* in, uint32_t inLen, uint8_t* out,
                                                        uint32_t* outLen) {
    return DecodeOctetStringContents(in, inLen, out, outLen);
}

extern "C" TV_API uint32_t DecodeSubjectPublicKeyInfo(const uint8_t* in, uint32_t inLen, uint8_t* outOid,
                                                      uint32_t* outOidLen, uint8_t* outKey, uint32_t* outKeyLen,
                                                      uint8_t* outParams, uint32_t* outParamsLen) {
    if (!in || !outOidLen || !outKeyLen || !outParamsLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue spki(&desc::kSubjectPublicKeyInfo);
    uint32_t consumed = 0;
    TV_TRY(Asn1DecodeItem(in, inLen, &desc::kSubjectPublicKeyInfo, spki.Out(), &consumed));
    const void* algorithm = Slot(spki.get(), desc::SubjectPublicKeyInfoSlot::kAlgorithm);
    // All three parts are delivered (or sized); the key's failure comes first, then the parameters'.
    const uint32_t oidRc = GetOidPart(algorithm, outOid, outOidLen);
    const uint32_t paramsRc = GetParametersPart(algorithm, outParams, outParamsLen);
    const uint32_t keyRc = GetSubjectPublicKey(spki.get(), outKey, outKeyLen);
    if (keyRc != TV_OK) return keyRc;
    return paramsRc != TV_OK ? paramsRc : oidRc;
}

extern "C" TV_API uint32_t GetSubjectPublicKeyInfoPublicKey(const SubjectPublicKeyInfo* info, uint8_t* out,
                                                            uint32_t* outLen) {
    return GetSubjectPublicKey(info, out, outLen);
}
