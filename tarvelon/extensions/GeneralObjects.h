// Values of the standard extensions (RFC 5280, the OCSP nonce, the Netscape certificate type, the
// Russian qualified-certificate extensions): descriptors for the families that embed them (CRLs,
// certificates, private extensions) and the list helpers every list-valued extension shares.
#pragma once

#include "tarvelon/engine/FamilyOps.h"
#include "tarvelon/extension_values.h"

namespace tv::desc {

// DistributionPointName ::= CHOICE { fullName [0] GeneralNames, nameRelativeToCRLIssuer [1] ... }
// The relative name is carried as a whole Name (RDNSequence) under [1].
enum class DistributionPointNameKind : uint32_t { kFullName, kNameRelativeToCrlIssuer, kCount };
extern const Asn1Descriptor kDistributionPointName;

// DistributionPoint ::= SEQUENCE { distributionPoint [0], reasons [1], cRLIssuer [2] }, all OPTIONAL
enum class DistributionPointSlot : uint32_t { kName, kReasons, kCrlIssuer, kCount };
extern const Asn1Descriptor kDistributionPoint;
// CRLDistributionPoints ::= SEQUENCE SIZE (1..MAX) OF DistributionPoint
extern const Asn1Descriptor kCrlDistributionPoints;

// AuthorityKeyIdentifier ::= SEQUENCE { keyIdentifier [0], authorityCertIssuer [1], authorityCertSerialNumber [2] }
enum class AuthorityKeyIdentifierSlot : uint32_t { kKeyIdentifier, kAuthorityCertIssuer, kAuthorityCertSerialNumber,
                                             kCount };
extern const Asn1Descriptor kAuthorityKeyIdentifier;

// IssuingDistributionPoint, with the reasons under [1] (see the table in GeneralObjects.cpp).
enum class IssuingDistributionPointSlot : uint32_t {
    kDistributionPoint,
    kOnlyContainsUserCerts,
    kOnlyContainsCaCerts,
    kOnlySomeReasons,
    kIndirectCrl,
    kOnlyContainsAttributeCerts,
    kCount
};
extern const Asn1Descriptor kIssuingDistributionPoint;

// AccessDescription ::= SEQUENCE { accessMethod OBJECT IDENTIFIER, accessLocation GeneralName }
enum class AccessDescriptionSlot : uint32_t { kAccessMethod, kAccessLocation, kCount };
extern const Asn1Descriptor kAccessDescription;
extern const Asn1Descriptor kAuthorityInformationAccess;

// PolicyQualifierInfo ::= SEQUENCE { policyQualifierId OBJECT IDENTIFIER, qualifier ANY OPTIONAL }
enum class PolicyQualifierInfoSlot : uint32_t { kPolicyQualifierId, kQualifier, kCount };
extern const Asn1Descriptor kPolicyQualifierInfo;
extern const Asn1Descriptor kPolicyQualifiers;
// PolicyInformation ::= SEQUENCE { policyIdentifier OBJECT IDENTIFIER, policyQualifiers ... OPTIONAL }
enum class PolicyInformationSlot : uint32_t { kPolicyIdentifier, kPolicyQualifiers, kCount };
extern const Asn1Descriptor kPolicyInformation;
extern const Asn1Descriptor kCertificatePolicies;

// ExtKeyUsageSyntax ::= SEQUENCE SIZE (1..MAX) OF KeyPurposeId
extern const Asn1Descriptor kExtendedKeyUsage;

// Private extension values (descriptors in GeneralObjectsPrivate.cpp).
// StoreItem ::= SEQUENCE { kind ENUMERATED, data OCTET STRING }; the three store lists are SEQUENCE OF it.
extern const Asn1Descriptor kStoreItem;
extern const Asn1Descriptor kStoreItems;
extern const Asn1Descriptor kOcspCheckFile;
extern const Asn1Descriptor kExtResult;
extern const Asn1Descriptor kExtResults;
extern const Asn1Descriptor kCryptoNetRegistry;
extern const Asn1Descriptor kOcspCheckTime2;
// ExtendedResult, KeyStorage ::= SEQUENCE { code ENUMERATED, text UTF8String OPTIONAL }
extern const Asn1Descriptor kCodedText;
extern const Asn1Descriptor kRequestBlockingDate;

}  // namespace tv::desc

namespace tv {

// One primitive of `d`'s universal type over the caller's content octets (no conversion), and the
// content octets of such an element: the scalar extension values, standard and private alike.
uint32_t EncodeScalar(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) noexcept;
uint32_t DecodeScalar(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) noexcept;
// Decodes one value of `d` into `value`; empty input is refused (32) before the engine sees it.
uint32_t DecodeValue(const Asn1Descriptor& d, const uint8_t* in, uint32_t inLen, OwnedValue& value) noexcept;

// The flag word of a named-bit BIT STRING: at most four octets, unused bits cleared.
uint32_t FlagsFromBitString(const Asn1BitStringValue* bits) noexcept;

// The members that every list-valued extension (and any store list built the same way) shares
// beyond FamilyOps.h: a null list is refused, and so is empty input, before the engine sees it.
inline uint32_t EncodeListT(const Family& f, const Asn1List* list, uint8_t* out, uint32_t* outLen) noexcept {
    if (!list) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return EncodeT(f, list, out, outLen);
}

inline uint32_t DecodeListT(const Family& f, const uint8_t* in, uint32_t inLen, Asn1List** out) noexcept {
    if (inLen == 0) return Fail(TV_FAMILY_SITE(f), TV_ERR_INVALID_ARGUMENT);
    return DecodeT(f, in, inLen, out);
}

}  // namespace tv

// The exported pair of a scalar extension value: EncodeExtension<Name> and DecodeExtension<Name>.
#define TV_EXTENSION_SCALAR_CODEC(Name, descriptor)                                                         \
    extern "C" TV_API uint32_t EncodeExtension##Name(const uint8_t* in, uint32_t inLen, uint8_t* out,        \
                                                     uint32_t* outLen) {                                     \
        return ::tv::EncodeScalar(descriptor, in, inLen, out, outLen);                                       \
    }                                                                                                        \
    extern "C" TV_API uint32_t DecodeExtension##Name(const uint8_t* in, uint32_t inLen, uint8_t* out,        \
                                                     uint32_t* outLen) {                                     \
        return ::tv::DecodeScalar(descriptor, in, inLen, out, outLen);                                       \
    }

// The members every list-valued extension value shares, as exported names over the FamilyOps list
// members: CreateExtension<List>, FreeExtension<List>, EncodeExtension<List>, DecodeExtension<List>,
// RemoveExtension<Item> and GetExtension<Counted>Count. Add and Get know the element's shape and
// are written per list.
#define TV_EXTENSION_LIST_MEMBERS(Type, family, List, Item, Counted)                                        \
    extern "C" TV_API uint32_t CreateExtension##List(Type** outList) { return ::tv::CreateT(family, outList); } \
    extern "C" TV_API uint32_t FreeExtension##List(Type* list) { return ::tv::FreeT(family, list); }            \
    extern "C" TV_API uint32_t RemoveExtension##Item(Type* list, uint32_t index) {                             \
        return ::tv::ListRemoveT(family, list, index);                                                           \
    }                                                                                                            \
    extern "C" TV_API uint32_t GetExtension##Counted##Count(const Type* list, uint32_t* outCount) {            \
        return ::tv::ListCountT(family, list, outCount);                                                         \
    }                                                                                                            \
    extern "C" TV_API uint32_t EncodeExtension##List(const Type* list, uint8_t* out, uint32_t* outLen) {       \
        return ::tv::EncodeListT(family, list, out, outLen);                                                     \
    }                                                                                                            \
    extern "C" TV_API uint32_t DecodeExtension##List(const uint8_t* in, uint32_t inLen, Type** outList) {      \
        return ::tv::DecodeListT(family, in, inLen, outList);                                                    \
    }
