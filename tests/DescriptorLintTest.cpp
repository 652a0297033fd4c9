// Every family's root descriptor through the lint (a new root is linted by adding one line), and the
// lint itself against tables with the mistakes it exists to find.
#include <gtest/gtest.h>

#include "DescriptorLint.h"
#include "tarvelon/extensions/GeneralObjects.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/pkix/GeneralNames.h"
#include "tarvelon/pkix/X509Algorithm.h"
#include "tarvelon/pkix/X509General.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/text/LibraryTime.h"
#include "tarvelon/x509/Certificate.h"
#include "tarvelon/x509/X509Crl.h"
#include "tarvelon/x509/pkcs10.h"

using tvtest::LintDescriptor;
namespace desc = tv::desc;

namespace {

const char kUniversal[] = ": a tag with the universal class";

TEST(DescriptorLint, EveryRootIsClean) {
    const struct {
        const Asn1Descriptor* root;
        const char* name;
        std::vector<std::string> deviations;  // what the peers' layouts make the lint report
    } roots[] = {
        {&desc::kTime, "Time", {}},
        {&desc::kAlgorithmIdentifier, "AlgorithmIdentifier", {}},
        {&desc::kSubjectPublicKeyInfo, "SubjectPublicKeyInfo", {}},
        {&desc::kGostR34102001PublicKeyParameters, "GostR34102001PublicKeyParameters", {}},
        {&desc::kGostR34102012PublicKeyParameters, "GostR34102012PublicKeyParameters", {}},
        {&desc::kX509Name, "Name", {}},
        {&desc::kGeneralNames, "GeneralNames", {}},
        {&desc::kPKIFreeText, "PKIFreeText", {}},
        {&desc::kExtensions, "Extensions", {}},
        {&desc::kAttributes, "Attributes", {}},
        {&desc::kCrlDistributionPoints, "CRLDistributionPoints", {}},
        {&desc::kAuthorityKeyIdentifier, "AuthorityKeyIdentifier", {}},
        // Reasons under [1], the tag of onlyContainsUserCerts, on purpose.
        {&desc::kIssuingDistributionPoint, "IssuingDistributionPoint",
         {"IssuingDistributionPoint: component 3 starts like an OPTIONAL one before it"}},
        {&desc::kAuthorityInformationAccess, "AuthorityInfoAccessSyntax", {}},
        {&desc::kCertificatePolicies, "CertificatePolicies", {}},
        {&desc::kExtendedKeyUsage, "ExtKeyUsageSyntax", {}},
        {&desc::kStoreItems, "StoreItems", {}},
        // Universal-class retagging is the peers' contract at text3, text4, kind5 and the names of a result.
        {&desc::kOcspCheckFile, "OcspCheckFile",
         {std::string("OcspCheckFile/4") + kUniversal, std::string("OcspCheckFile/5") + kUniversal,
          std::string("OcspCheckFile/6") + kUniversal}},
        {&desc::kExtResults, "ExtResults", {std::string("ExtResults/0/5") + kUniversal}},
        {&desc::kCryptoNetRegistry, "CryptoNetRegistry", {}},
        {&desc::kOcspCheckTime2, "OcspCheckTime2", {}},
        {&desc::kCodedText, "CodedText", {}},
        {&desc::kRequestBlockingDate, "RequestBlockingDate", {}},
        {&desc::kCertificate, "Certificate", {}},
        {&desc::kCertificates, "Certificates", {}},
        {&desc::kCertificateList, "CertificateList", {}},
        {&desc::kX509Crls, "X509Crls", {}},
        {&desc::kRevokedCertificates, "RevokedCertificates", {}},
        {&desc::kCertificationRequest, "CertificationRequest", {}},
    };
    for (const auto& r : roots) EXPECT_EQ(LintDescriptor(r.root, r.name), r.deviations) << r.name;
}

TEST(DescriptorLint, FindsTableMistakes) {
    static constexpr Asn1Descriptor kInt{0, 0, 0, ASN1_INTEGER, -1, 0, nullptr, 0, nullptr};
    static constexpr Asn1Descriptor kOptInt{0, 0, ASN1_FLAG_OPTIONAL, ASN1_INTEGER, -1, 0, nullptr, 0, nullptr};
    static constexpr const Asn1Descriptor* kAmbiguous[] = {&kOptInt, &kInt};
    static constexpr const Asn1Descriptor* kSameTwice[] = {&kInt, &kInt};
    static constinit const Asn1Primitive kNullValue{ASN1_NULL, 0, nullptr};
    const Asn1Descriptor bad[] = {
        {0, 0x20, 0, ASN1_SEQUENCE, -1, 2 * sizeof(void*), kAmbiguous, 2, nullptr},
        {0, 0x20, 0, ASN1_CHOICE, -1, 0, kSameTwice, 2, nullptr},
        {0x80, 0, ASN1_FLAG_EXPLICIT, ASN1_INTEGER, -1, 0, nullptr, 0, nullptr},  // EXPLICIT without a tag
        {0, 0, ASN1_FLAG_OPTIONAL, ASN1_NULL, -1, 0, nullptr, 0, &kNullValue},     // a default never compared
        {0, 0x20, 0, ASN1_SEQUENCE, -1, sizeof(void*), kSameTwice, 2, nullptr},   // one slot short
        {0, 0x20, 0, ASN1_SEQUENCE_OF, -1, 0, kSameTwice, 2, nullptr},            // a list of two kinds
    };
    for (const Asn1Descriptor& d : bad) EXPECT_FALSE(LintDescriptor(&d, "bad").empty()) << (&d - bad);
}

}  // namespace
