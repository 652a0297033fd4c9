// Values of the standard and private extensions: the descriptors of the structures that other
// families embed (CRLs, certificates) or that tests and the fuzzer walk.
#pragma once

#include "tarvelon/engine/Descriptor.h"
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

// Private extension values.
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

