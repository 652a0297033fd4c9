// GOST key transport (RFC 4490): the GostR3410-KeyTransport a GOST recipient's encryptedKey carries,
// and the GOST 28147-89 parameters of the content encryption (RFC 4357). The caller's provider makes
// every octet (wrapped key, MAC, UKM, ephemeral key, IV); they are stored exactly as given, with no
// length enforced, since the sizes belong to the algorithms, not to the structures.
#include "tarvelon/messages/Enveloped.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/enveloped.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(GostR3410KeyTransport)

namespace tv::desc {
namespace {

// Gost28147-89-EncryptedKey ::= SEQUENCE {                            (RFC 4357)
enum class EncryptedKeySlot : uint32_t { kEncryptedKey, kMaskKey, kMacKey, kCount };
constexpr Asn1Descriptor kMaskKey = Implicit(0, Optional(kOctetString));
constexpr auto kEncryptedKeyParts = Slots<EncryptedKeySlot>({
    {EncryptedKeySlot::kEncryptedKey, &kOctetString},  // encryptedKey  Gost28147-89-Key
    {EncryptedKeySlot::kMaskKey, &kMaskKey},           // maskKey       [0] IMPLICIT Gost28147-89-Key OPTIONAL
    {EncryptedKeySlot::kMacKey, &kOctetString},        // macKey        Gost28147-89-MAC
});
constexpr Asn1Descriptor kEncryptedKey = Sequence(kEncryptedKeyParts);

// GostR3410-TransportParameters ::= SEQUENCE {                        (RFC 4490)
enum class TransportParametersSlot : uint32_t { kEncryptionParamSet, kEphemeralPublicKey, kUkm, kCount };
constexpr Asn1Descriptor kEphemeralPublicKey = Implicit(0, Optional(Sequence(kSubjectPublicKeyInfoParts)));
constexpr auto kTransportParametersParts = Slots<TransportParametersSlot>({
    {TransportParametersSlot::kEncryptionParamSet, &kOid},                 // encryptionParamSet  OBJECT IDENTIFIER
    {TransportParametersSlot::kEphemeralPublicKey, &kEphemeralPublicKey},  // ephemeralPublicKey  [0] IMPLICIT SubjectPublicKeyInfo OPTIONAL
    {TransportParametersSlot::kUkm, &kOctetString},                        // ukm                 OCTET STRING
});
constexpr Asn1Descriptor kTransportParameters = Implicit(0, Optional(Sequence(kTransportParametersParts)));

// GostR3410-KeyTransport ::= SEQUENCE {                               (RFC 4490)
enum class KeyTransportSlot : uint32_t { kSessionEncryptedKey, kTransportParameters, kCount };
constexpr auto kKeyTransportParts = Slots<KeyTransportSlot>({
    {KeyTransportSlot::kSessionEncryptedKey, &kEncryptedKey},         // sessionEncryptedKey  Gost28147-89-EncryptedKey
    {KeyTransportSlot::kTransportParameters, &kTransportParameters},  // transportParameters  [0] IMPLICIT GostR3410-TransportParameters OPTIONAL
});

// Gost28147-89-Parameters ::= SEQUENCE {                              (RFC 4357)
enum class Gost2814789ParametersSlot : uint32_t { kIv, kEncryptionParamSet, kCount };
constexpr auto kGost2814789ParametersParts = Slots<Gost2814789ParametersSlot>({
    {Gost2814789ParametersSlot::kIv, &kOctetString},         // iv                  Gost28147-89-IV
    {Gost2814789ParametersSlot::kEncryptionParamSet, &kOid}, // encryptionParamSet  OBJECT IDENTIFIER
});
constexpr Asn1Descriptor kGost2814789Parameters = Sequence(kGost2814789ParametersParts);

}  // namespace

constinit const Asn1Descriptor kGostR3410KeyTransport = Sequence(kKeyTransportParts);

}  // namespace tv::desc

namespace tv {
namespace {

using namespace desc;
using T = KeyTransportSlot;
using S = EncryptedKeySlot;
using P = TransportParametersSlot;
using Spki = SubjectPublicKeyInfoSlot;

// Created without empty leaves: what the caller has not set reads as absent (311), not as empty.
constinit const Family kKeyTransportFamily{&kGostR3410KeyTransport, Module::GostR3410KeyTransport, 0};

// The slot of a SEQUENCE component of the key transport, the SEQUENCE made first when it is absent.
template <typename Part>
uint32_t MadeSlot(GostR3410KeyTransport* keyTransport, T part, Part which, void*** out) noexcept {
    void** container = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &container, part));
    if (!*container) {
        OwnedValue fresh(Component(kGostR3410KeyTransport, part));
        TV_TRY(NewStructure(TV_SITE, *Component(kGostR3410KeyTransport, part), fresh));
        *container = fresh.Release();
    }
    *out = &Slot(*container, which);
    return TV_OK;
}

// The slot of a component of the ephemeral key, the key (and transportParameters) made first.
uint32_t EphemeralSlot(GostR3410KeyTransport* keyTransport, Spki which, void*** out) noexcept {
    void** key = nullptr;
    TV_TRY(MadeSlot(keyTransport, T::kTransportParameters, P::kEphemeralPublicKey, &key));
    if (!*key) {
        OwnedValue fresh(&kEphemeralPublicKey);
        TV_TRY(NewStructure(TV_SITE, kEphemeralPublicKey, fresh));
        *key = fresh.Release();
    }
    *out = &Slot(*key, which);
    return TV_OK;
}

// Drops the whole ephemeral key, algorithm and key together.
uint32_t RemoveEphemeralKey(GostR3410KeyTransport* keyTransport) noexcept {
    void** parameters = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &parameters, T::kTransportParameters));
    if (*parameters) {
        void*& key = Slot(*parameters, P::kEphemeralPublicKey);
        FreeAsn1Object(&kEphemeralPublicKey, key);
        key = nullptr;
    }
    return TV_OK;
}

// A required OCTET STRING of the key transport (null bytes: 32).
template <typename Part>
uint32_t SetOctets(GostR3410KeyTransport* keyTransport, T part, Part which, const uint8_t* in, uint32_t inLen) noexcept {
    void** slot = nullptr;
    TV_TRY(MadeSlot(keyTransport, part, which, &slot));
    if (!in) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return SetOrCreatePrimitive(slot, ASN1_OCTET_STRING, in, inLen);
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;

// ---- GOST 28147-89 parameters ----------------------------------------------------------------------

extern "C" TV_API uint32_t EncodeGost2814789Parameters(const uint8_t* inIv, uint32_t inIvLen, const uint8_t* inParamSetOid,
                                                       uint8_t* out, uint32_t* outLen) {
    if (!inIv || !inParamSetOid) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return EncodeBuilt(TV_SITE, kGost2814789Parameters, out, outLen, [&](void* parameters) {
        TV_TRY(SetOrCreatePrimitive(&Slot(parameters, Gost2814789ParametersSlot::kIv), ASN1_OCTET_STRING, inIv, inIvLen));
        return SetOid(TV_SITE, &Slot(parameters, Gost2814789ParametersSlot::kEncryptionParamSet), inParamSetOid);
    });
}

// Whatever keeps the input from being these parameters is 302 (running out of memory stays 1); then
// both parts are tried, each under the size protocol, and a part that does not fit makes it 49 once
// the other is written.
extern "C" TV_API uint32_t DecodeGost2814789Parameters(const uint8_t* in, uint32_t inLen, uint8_t* outIv, uint32_t* outIvLen,
                                                       uint8_t* outParamSetOid, uint32_t* outParamSetOidLen) {
    if (!outIvLen || !outParamSetOidLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue parameters(&kGost2814789Parameters);
    const uint32_t decoded = DecodeValue(TV_SITE, kGost2814789Parameters, in, inLen, parameters);
    if (decoded == TV_ERR_NO_MEMORY) return decoded;  // not the input's fault
    if (decoded != TV_OK || !Slot(parameters.get(), Gost2814789ParametersSlot::kIv) ||
        !Slot(parameters.get(), Gost2814789ParametersSlot::kEncryptionParamSet))
        return TV_FAIL(TV_ERR_MALFORMED);
    const uint32_t iv = GetLeaf(TV_SITE, Slot(parameters.get(), Gost2814789ParametersSlot::kIv), outIv, outIvLen);
    const uint32_t oid = GetOid(TV_SITE, Slot(parameters.get(), Gost2814789ParametersSlot::kEncryptionParamSet),
                                outParamSetOid, outParamSetOidLen);
    if (iv == TV_ERR_BUFFER_TOO_SMALL || oid == TV_ERR_BUFFER_TOO_SMALL) return TV_ERR_BUFFER_TOO_SMALL;
    return iv != TV_OK ? iv : oid;
}

// ---- GostR3410-KeyTransport ------------------------------------------------------------------------------

TV_FAMILY_LIFE_CYCLE(GostR3410KeyTransport, kKeyTransportFamily)

extern "C" TV_API uint32_t SetGostR3410KeyTransportEncryptedKey(GostR3410KeyTransport* keyTransport, const uint8_t* in,
                                                                uint32_t inLen) {
    return SetOctets(keyTransport, T::kSessionEncryptedKey, S::kEncryptedKey, in, inLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportEncryptedKey(const GostR3410KeyTransport* keyTransport, uint8_t* out,
                                                                uint32_t* outLen) {
    const void* key = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &key, T::kSessionEncryptedKey, S::kEncryptedKey));
    return GetLeaf(TV_SITE, key, out, outLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportMacKey(GostR3410KeyTransport* keyTransport, const uint8_t* in,
                                                          uint32_t inLen) {
    return SetOctets(keyTransport, T::kSessionEncryptedKey, S::kMacKey, in, inLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportMacKey(const GostR3410KeyTransport* keyTransport, uint8_t* out,
                                                          uint32_t* outLen) {
    const void* mac = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &mac, T::kSessionEncryptedKey, S::kMacKey));
    return GetLeaf(TV_SITE, mac, out, outLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportMaskKey(GostR3410KeyTransport* keyTransport, const uint8_t* in,
                                                           uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(MadeSlot(keyTransport, T::kSessionEncryptedKey, S::kMaskKey, &slot));
    return ReplaceOptionalOctets(slot, in, inLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportMaskKey(const GostR3410KeyTransport* keyTransport, uint8_t* out,
                                                           uint32_t* outLen) {
    const void* mask = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &mask, T::kSessionEncryptedKey, S::kMaskKey));
    return GetOptionalLeaf(TV_SITE, mask, out, outLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportEncryptionParamSetOid(GostR3410KeyTransport* keyTransport,
                                                                         const uint8_t* inOid) {
    void** slot = nullptr;
    TV_TRY(MadeSlot(keyTransport, T::kTransportParameters, P::kEncryptionParamSet, &slot));
    return SetOid(TV_SITE, slot, inOid);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportEncryptionParamSetOid(const GostR3410KeyTransport* keyTransport,
                                                                         uint8_t* outOid, uint32_t* outOidLen) {
    const void* oid = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &oid, T::kTransportParameters, P::kEncryptionParamSet));
    return GetOid(TV_SITE, oid, outOid, outOidLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportUkm(GostR3410KeyTransport* keyTransport, const uint8_t* in, uint32_t inLen) {
    return SetOctets(keyTransport, T::kTransportParameters, P::kUkm, in, inLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportUkm(const GostR3410KeyTransport* keyTransport, uint8_t* out,
                                                       uint32_t* outLen) {
    const void* ukm = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &ukm, T::kTransportParameters, P::kUkm));
    return GetLeaf(TV_SITE, ukm, out, outLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(
    GostR3410KeyTransport* keyTransport, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen) {
    if (!keyTransport) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!inOid) return RemoveEphemeralKey(keyTransport);
    void** slot = nullptr;
    TV_TRY(EphemeralSlot(keyTransport, Spki::kAlgorithm, &slot));
    return SetAlgorithmOidAndParameters(slot, inOid, inParams, inParamsLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(
    const GostR3410KeyTransport* keyTransport, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams,
    uint32_t* outParamsLen) {
    const void* key = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &key, T::kTransportParameters, P::kEphemeralPublicKey));
    if (!key) return TV_FAIL(TV_ERR_ABSENT);
    return GetAlgorithmOidAndParameters(Slot(key, Spki::kAlgorithm), outOid, outOidLen, outParams, outParamsLen);
}

extern "C" TV_API uint32_t SetGostR3410KeyTransportEphemeralPublicKey(GostR3410KeyTransport* keyTransport, const uint8_t* in,
                                                                      uint32_t inLen) {
    if (!keyTransport) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (!in) return RemoveEphemeralKey(keyTransport);
    void** slot = nullptr;
    TV_TRY(EphemeralSlot(keyTransport, Spki::kSubjectPublicKey, &slot));
    return ReplaceBits(TV_SITE, slot, in, inLen);
}

extern "C" TV_API uint32_t GetGostR3410KeyTransportEphemeralPublicKey(const GostR3410KeyTransport* keyTransport, uint8_t* out,
                                                                      uint32_t* outLen) {
    const void* key = nullptr;
    TV_TRY(Walk(TV_SITE, keyTransport, &key, T::kTransportParameters, P::kEphemeralPublicKey));
    if (!key) return TV_FAIL(TV_ERR_ABSENT);
    return GetBits(TV_SITE, Slot(key, Spki::kSubjectPublicKey), out, outLen);
}
