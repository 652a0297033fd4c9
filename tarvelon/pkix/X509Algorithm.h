// Algorithm identifiers, subject public key info and GOST R 34.10 keys inside value trees, for every
// family whose structures carry them (certificates, CRLs, requests, CMS, OCSP, enveloped data).
//
// The helpers take the value of an AlgorithmIdentifier or SubjectPublicKeyInfo slot (readers) or the
// address of that slot (writers), so a family accessor is one line:
//   return tv::GetAlgorithmOidAndParameters(Slot(spki, SubjectPublicKeyInfoSlot::kAlgorithm), oid, oidLen,
//                                           params, paramsLen);
// Signed structures reach their signature algorithm through x509/SignedStructure.h instead.
// Failures are recorded under X509Algorithm; a family that must refuse first (a missing
// to-be-signed part: 311) does so itself before calling.
#pragma once

#include <cstdint>

#include "tarvelon/engine/Descriptor.h"
#include "tarvelon/engine/Engine.h"

namespace tv::desc {

// AlgorithmIdentifier ::= SEQUENCE {                                  (RFC 5280 4.1.1.2)
//     algorithm   OBJECT IDENTIFIER,
//     parameters  ANY DEFINED BY algorithm OPTIONAL }
enum class AlgorithmIdentifierSlot : uint32_t { kAlgorithm, kParameters, kCount };
extern const Asn1Descriptor kAlgorithmIdentifier;
// Its components, for fields that give it a DEFAULT (ESSCertIDv2.hashAlgorithm, ATSHashIndex).
extern const Components<SlotCount<AlgorithmIdentifierSlot>> kAlgorithmIdentifierParts;

// SubjectPublicKeyInfo ::= SEQUENCE {                                 (RFC 5280 4.1.2.7)
//     algorithm         AlgorithmIdentifier,
//     subjectPublicKey  BIT STRING }
enum class SubjectPublicKeyInfoSlot : uint32_t { kAlgorithm, kSubjectPublicKey, kCount };
extern const Asn1Descriptor kSubjectPublicKeyInfo;
// Its components, for fields that hold it under another tag (the ephemeral key of GOST key transport).
extern const Components<SlotCount<SubjectPublicKeyInfoSlot>> kSubjectPublicKeyInfoParts;

// GostR3410-2001-PublicKeyParameters ::= SEQUENCE {                   (RFC 4491 2.3.2)
//     publicKeyParamSet   OBJECT IDENTIFIER,
//     digestParamSet      OBJECT IDENTIFIER,
//     encryptionParamSet  OBJECT IDENTIFIER DEFAULT id-Gost28147-89-CryptoPro-A-ParamSet }
// The 2012 block has the same shape with the default id-tc26-gost-28147-param-Z.
enum class GostPublicKeyParametersSlot : uint32_t {
    kPublicKeyParamSet,
    kDigestParamSet,
    kEncryptionParamSet,
    kCount
};
extern const Asn1Descriptor kGostR34102001PublicKeyParameters;
extern const Asn1Descriptor kGostR34102012PublicKeyParameters;

}  // namespace tv::desc

namespace tv {

// ---- numeric ids ----------------------------------------------------------------------------------

// Algorithm ids of the algorithm table that the code itself tells apart.
enum AlgorithmId : uint32_t {
    kAlgRsaEncryption = 1,
    kAlgGostR34102001 = 102,
    kAlgGostR34102012_256 = 3000,
    kAlgGostR34102012_512 = 3001,
};

// The presence of GOST public-key parameters (the `mode` byte of every GOST parameter operation).
enum GostParametersMode : uint8_t {
    kGostParametersNull = 0,       // parameters are NULL: 05 00
    kGostParametersBlock = 1,      // a GostR3410-20xx-PublicKeyParameters SEQUENCE
    kGostParametersAbsent = 255,   // the parameters field is omitted
};

// ---- tables ---------------------------------------------------------------------------------------
// Each table is searched in order, the first match wins. Lookups by OID answer 308 when the OID is
// not in the table, lookups by id 309; `*packed` then points at a constant packed OID.

uint32_t FindAlgorithmId(const uint8_t* packedOid, uint32_t* algId) noexcept;
uint32_t FindAlgorithmOid(uint32_t algId, const uint8_t** packed) noexcept;
uint32_t FindPublicKeyParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept;
uint32_t FindPublicKeyParamSetOid(uint32_t id, const uint8_t** packed) noexcept;
uint32_t FindDigestParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept;
uint32_t FindDigestParamSetOid(uint32_t id, const uint8_t** packed) noexcept;
uint32_t FindEncryptionParamSetId(const uint8_t* packedOid, uint32_t* id) noexcept;
uint32_t FindEncryptionParamSetOid(uint32_t id, const uint8_t** packed) noexcept;

// ---- "OID and parameters" -------------------------------------------------------------------------

// Reads an AlgorithmIdentifier value: the OID in packed form (length + 1 octets) and the parameters
// as their complete DER element, length 0 when they are absent.
//   - null `oidLen`: 32; null `algorithmIdentifier` (the field is absent) or no OID in it: 311.
//   - a null `paramsLen` is allowed only with a null `params` buffer (otherwise 32 from that part).
//   - both parts are always attempted, each under the size protocol. If either answered 49 the
//     result is 49 with both lengths filled in; otherwise the OID part's failure, else the
//     parameters part's.
uint32_t GetAlgorithmOidAndParameters(const void* algorithmIdentifier, uint8_t* oid, uint32_t* oidLen,
                                      uint8_t* params, uint32_t* paramsLen) noexcept;

// Replaces the OID and the parameters of the AlgorithmIdentifier at `*slot` (created when the slot
// is empty). Null or empty `params` leaves the parameters absent; otherwise they are an opaque copy
// of the given element, not parsed. The new parts are built before anything is freed, so a failure
// leaves the old value as it was.
// With a `mirror` (the outer signatureAlgorithm of a signed structure) the same value is then
// written there too; a failure on `*slot` leaves the mirror untouched.
uint32_t SetAlgorithmOidAndParameters(void** slot, const uint8_t* packedOid, const uint8_t* params,
                                      uint32_t paramsLen, void** mirror = nullptr) noexcept;

// As SetAlgorithmOidAndParameters with the OID taken from the algorithm table (309 when unknown).
uint32_t SetAlgorithmIdAndParameters(void** slot, uint32_t algId, const uint8_t* params, uint32_t paramsLen,
                                     void** mirror = nullptr) noexcept;

// The GOST R 34.10-2001 parameters of `mode` and the three set ids (ignored unless mode 1) are
// encoded first (bad mode: 32, unknown set id: 309), then the algorithm OID is taken by id (309)
// and both are set as above; mode 255 leaves the parameters absent.
uint32_t SetAlgorithmGostR34102001AndParameters(void** slot, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId,
                                                uint32_t digestParamId, uint32_t encryptionParamId,
                                                void** mirror = nullptr) noexcept;

// ---- GOST parameter blocks ------------------------------------------------------------------------

// The parameters element for `mode`, under the size protocol: mode 1 a block of the given OIDs
// (the encryption OID may be null: omitted), mode 0 the octets 05 00, mode 255 length 0. Algorithm
// ids 102 (the 2001 block), 3000 and 3001 (the 2012 block); anything else and bad modes: 32.
uint32_t EncodeGostParameterOids(uint32_t algId, uint8_t mode, const uint8_t* publicKeyParamOid,
                                 const uint8_t* digestParamOid, const uint8_t* encryptionParamOid, uint8_t* out,
                                 uint32_t* outLen) noexcept;

// The same from the ids of the three tables (309 for an unknown id), always with the 2001 block.
uint32_t EncodeGostR34102001ParameterIds(uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId,
                                         uint32_t encryptionParamId, uint8_t* out, uint32_t* outLen) noexcept;

// Reads a parameters element: null or empty `params` is mode 255, exactly 05 00 mode 0, anything
// else mode 1 with the three ids looked up in order public-key, digest, encryption; the first OID
// not found answers 308 and stops. An omitted encryption set reads as its default (id 1). A block
// that does not decode: 302. `mode` is stored whenever the arguments are valid.
uint32_t DecodeGostR34102001ParameterIds(const uint8_t* params, uint32_t paramsLen, uint8_t* mode,
                                         uint32_t* publicKeyParamId, uint32_t* digestParamId,
                                         uint32_t* encryptionParamId) noexcept;

// ---- public keys ----------------------------------------------------------------------------------

// The octets of the subjectPublicKey BIT STRING (null spki: 32, no key: 311), size protocol.
uint32_t GetSubjectPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen) noexcept;
// Replaces the subjectPublicKey with a copy of the octets, zero unused bits; created when absent.
uint32_t SetSubjectPublicKey(void* spki, const uint8_t* key, uint32_t keyLen) noexcept;

// A raw GOST key taken out of the OCTET STRING that the subjectPublicKey holds. The bit-string
// octets go through a fixed working buffer of 270 octets (larger: 338).
uint32_t GetGostPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen) noexcept;
// Stores a raw GOST key wrapped as an OCTET STRING, built in a working buffer of 256 octets
// (larger: 338).
uint32_t SetGostPublicKey(void* spki, const uint8_t* key, uint32_t keyLen) noexcept;

// A raw GOST key together with its parameter-set ids, after checking that the key is a GOST key
// with a parameter block (else 317) whose sets suit its algorithm (else 317):
//   3000: public-key set 1..7 or 9, digest set 3;  3001: 8, 10, 11 or 12, digest set 4;
//   102: 1..6, digest set 1 or 2. The encryption set is not checked.
// The algorithm OID and parameters are read through buffers of 100 octets (larger: 49), an OID
// outside the algorithm table is 308, and the key octets go through a buffer of 168 octets (49).
uint32_t GetCheckedGostPublicKey(const void* spki, uint8_t* key, uint32_t* keyLen, uint32_t* publicKeyParamId,
                                 uint32_t* digestParamId, uint32_t* encryptionParamId) noexcept;

}  // namespace tv
