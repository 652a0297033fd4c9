/* Tarvelon for C++: std::unique_ptr aliases that free each kind of handle with its own Free function,
 * so C++ callers get RAII without a wrapper library. Header-only and optional; the C interface of
 * tarvelon.h is unchanged underneath.
 *
 *   tarvelon::CertificatePtr cert;
 *   Certificate* raw = nullptr;
 *   if (DecodeCertificate(der, derLen, &raw) == 0) cert.reset(raw);   // freed when cert goes
 */
#ifndef TARVELON_HPP
#define TARVELON_HPP

#include <memory>

#include "tarvelon/tarvelon.h"

namespace tarvelon {

/* Frees a handle with the Free function of its family. */
template <auto Free>
struct Deleter {
    template <typename T>
    void operator()(T* handle) const noexcept {
        Free(handle);
    }
};

template <typename T, auto Free>
using Ptr = std::unique_ptr<T, Deleter<Free>>;

using OctetStringsPtr = Ptr<Asn1List, FreeOctetStrings>;
using ESSCertIDsPtr = Ptr<ESSCertIDs, FreeESSCertIDs>;
using ESSCertIDsV2Ptr = Ptr<ESSCertIDsV2, FreeESSCertIDsV2>;
using OtherCertIDsPtr = Ptr<OtherCertIDs, FreeOtherCertIDs>;
using CrlOcspRefsPtr = Ptr<CrlOcspRefs, FreeCrlOcspRefs>;
using CrlListIDsPtr = Ptr<CrlListIDs, FreeCrlListIDs>;
using OcspListIDsPtr = Ptr<OcspListIDs, FreeOcspListIDs>;
using RsaAttributePtr = Ptr<RsaAttribute, FreeRsaAttribute>;
using RsaAttributesPtr = Ptr<RsaAttributes, FreeRsaAttributes>;
using CertificatePtr = Ptr<Certificate, FreeCertificate>;
using CertificatesPtr = Ptr<Certificates, FreeCertificates>;
using CmsContentInfoPtr = Ptr<CmsContentInfo, FreeCmsContentInfo>;
using CmsSignedDataPtr = Ptr<CmsSignedData, FreeCmsSignedData>;
using CmsSignerInfoPtr = Ptr<CmsSignerInfo, FreeCmsSignerInfo>;
using X509CrlPtr = Ptr<X509Crl, FreeX509Crl>;
using X509CrlsPtr = Ptr<X509Crls, FreeX509Crls>;
using X509RevokedCertificatesPtr = Ptr<X509RevokedCertificates, FreeX509RevokedCertificates>;
using CmsEnvelopedDataPtr = Ptr<CmsEnvelopedData, FreeCmsEnvelopedData>;
using KeyTransPtr = Ptr<KeyTrans, FreeKeyTrans>;
using GostR3410KeyTransportPtr = Ptr<GostR3410KeyTransport, FreeGostR3410KeyTransport>;
using ExtensionCrlDistributionPointsPtr = Ptr<CrlDistributionPoints, FreeExtensionCrlDistributionPoints>;
using ExtensionExtendedKeyUsagePtr = Ptr<ExtendedKeyUsage, FreeExtensionExtendedKeyUsage>;
using ExtensionAuthorityInformationAccessPtr = Ptr<AuthorityInformationAccess, FreeExtensionAuthorityInformationAccess>;
using ExtensionCertificatePoliciesPtr = Ptr<CertificatePolicies, FreeExtensionCertificatePolicies>;
using X509ExtensionPtr = Ptr<X509Extension, FreeX509Extension>;
using X509ExtensionsPtr = Ptr<X509Extensions, FreeX509Extensions>;
using OcspRequestPtr = Ptr<OcspRequest, FreeOcspRequest>;
using OcspResponsePtr = Ptr<OcspResponse, FreeOcspResponse>;
using OcspBasicResponsePtr = Ptr<OcspBasicResponse, FreeOcspBasicResponse>;
using OcspSingleResponsePtr = Ptr<OcspSingleResponse, FreeOcspSingleResponse>;
using OcspBasicResponsesPtr = Ptr<OcspBasicResponses, FreeOcspBasicResponses>;
using ExtensionStoreCertificatesPtr = Ptr<StoreItems, FreeExtensionStoreCertificates>;
using ExtensionStorePrivateKeyContextsPtr = Ptr<StoreItems, FreeExtensionStorePrivateKeyContexts>;
using ExtensionStoreOcspRequestDocumentsPtr = Ptr<StoreItems, FreeExtensionStoreOcspRequestDocuments>;
using ExtensionOcspCheckFileExtResultsPtr = Ptr<OcspCheckFileExtResults, FreeExtensionOcspCheckFileExtResults>;
using PKCS10CertReqPtr = Ptr<PKCS10CertReq, FreePKCS10CertReq>;
using LibraryTimePtr = Ptr<LibraryTime, FreeLibraryTime>;
using LibraryPreciseTimePtr = Ptr<LibraryPreciseTime, FreeLibraryPreciseTime>;
using AccuracyPtr = Ptr<Accuracy, FreeAccuracy>;
using SeveralDataPtr = Ptr<SeveralData, FreeSeveralData>;
using X509NamePtr = Ptr<X509Name, FreeX509Name>;
using X509GeneralNamesPtr = Ptr<GeneralNames, FreeX509GeneralNames>;
using X509GeneralNamePtr = Ptr<GeneralName, FreeX509GeneralName>;
using PKIFreeTextPtr = Ptr<PKIFreeText, FreePKIFreeText>;

}  // namespace tarvelon

#endif
