/**
 * @file tarvelon/tarvelon.hpp
 * Tarvelon for C++: std::unique_ptr aliases that free each kind of handle with its own Free function,
 * so C++ callers get RAII without a wrapper library. Header-only and optional; the C interface of
 * tarvelon.h is unchanged underneath.
 *
 *   tarvelon::CertificatePtr cert;
 *   Certificate* raw = nullptr;
 *   if (DecodeCertificate(der, derLen, &raw) == 0) cert.reset(raw);   // freed when cert goes
 *
 * Each alias NamePtr owns a handle released by FreeName(); only handles the caller owns
 * (@ref ownership) belong in one.
 */
#ifndef TARVELON_HPP
#define TARVELON_HPP

#include <memory>

#include "tarvelon/tarvelon.h"

/** The C++ conveniences. */
namespace tarvelon {

/** Frees a handle with the Free function of its family. @tparam Free that function. */
template <auto Free>
struct Deleter {
    /** Releases a handle. @param handle the handle (never null: unique_ptr does not pass one). */
    template <typename T>
    void operator()(T* handle) const noexcept {
        Free(handle);
    }
};

/** A handle of type @p T owned through its @p Free function. */
template <typename T, auto Free>
using Ptr = std::unique_ptr<T, Deleter<Free>>;

using OctetStringsPtr = Ptr<Asn1List, FreeOctetStrings>; /**< Owns a Asn1List, released by FreeOctetStrings(). */
using ESSCertIDsPtr = Ptr<ESSCertIDs, FreeESSCertIDs>; /**< Owns a ESSCertIDs, released by FreeESSCertIDs(). */
using ESSCertIDsV2Ptr = Ptr<ESSCertIDsV2, FreeESSCertIDsV2>; /**< Owns a ESSCertIDsV2, released by FreeESSCertIDsV2(). */
using OtherCertIDsPtr = Ptr<OtherCertIDs, FreeOtherCertIDs>; /**< Owns a OtherCertIDs, released by FreeOtherCertIDs(). */
using CrlOcspRefsPtr = Ptr<CrlOcspRefs, FreeCrlOcspRefs>; /**< Owns a CrlOcspRefs, released by FreeCrlOcspRefs(). */
using CrlListIDsPtr = Ptr<CrlListIDs, FreeCrlListIDs>; /**< Owns a CrlListIDs, released by FreeCrlListIDs(). */
using OcspListIDsPtr = Ptr<OcspListIDs, FreeOcspListIDs>; /**< Owns a OcspListIDs, released by FreeOcspListIDs(). */
using RsaAttributePtr = Ptr<RsaAttribute, FreeRsaAttribute>; /**< Owns a RsaAttribute, released by FreeRsaAttribute(). */
using RsaAttributesPtr = Ptr<RsaAttributes, FreeRsaAttributes>; /**< Owns a RsaAttributes, released by FreeRsaAttributes(). */
using CertificatePtr = Ptr<Certificate, FreeCertificate>; /**< Owns a Certificate, released by FreeCertificate(). */
using CertificatesPtr = Ptr<Certificates, FreeCertificates>; /**< Owns a Certificates, released by FreeCertificates(). */
using CmsContentInfoPtr = Ptr<CmsContentInfo, FreeCmsContentInfo>; /**< Owns a CmsContentInfo, released by FreeCmsContentInfo(). */
using CmsSignedDataPtr = Ptr<CmsSignedData, FreeCmsSignedData>; /**< Owns a CmsSignedData, released by FreeCmsSignedData(). */
using CmsSignerInfoPtr = Ptr<CmsSignerInfo, FreeCmsSignerInfo>; /**< Owns a CmsSignerInfo, released by FreeCmsSignerInfo(). */
using X509CrlPtr = Ptr<X509Crl, FreeX509Crl>; /**< Owns a X509Crl, released by FreeX509Crl(). */
using X509CrlsPtr = Ptr<X509Crls, FreeX509Crls>; /**< Owns a X509Crls, released by FreeX509Crls(). */
using X509RevokedCertificatesPtr = Ptr<X509RevokedCertificates, FreeX509RevokedCertificates>; /**< Owns a X509RevokedCertificates, released by FreeX509RevokedCertificates(). */
using CmsEnvelopedDataPtr = Ptr<CmsEnvelopedData, FreeCmsEnvelopedData>; /**< Owns a CmsEnvelopedData, released by FreeCmsEnvelopedData(). */
using KeyTransPtr = Ptr<KeyTrans, FreeKeyTrans>; /**< Owns a KeyTrans, released by FreeKeyTrans(). */
using GostR3410KeyTransportPtr = Ptr<GostR3410KeyTransport, FreeGostR3410KeyTransport>; /**< Owns a GostR3410KeyTransport, released by FreeGostR3410KeyTransport(). */
using ExtensionCrlDistributionPointsPtr = Ptr<CrlDistributionPoints, FreeExtensionCrlDistributionPoints>; /**< Owns a CrlDistributionPoints, released by FreeExtensionCrlDistributionPoints(). */
using ExtensionExtendedKeyUsagePtr = Ptr<ExtendedKeyUsage, FreeExtensionExtendedKeyUsage>; /**< Owns a ExtendedKeyUsage, released by FreeExtensionExtendedKeyUsage(). */
using ExtensionAuthorityInformationAccessPtr = Ptr<AuthorityInformationAccess, FreeExtensionAuthorityInformationAccess>; /**< Owns a AuthorityInformationAccess, released by FreeExtensionAuthorityInformationAccess(). */
using ExtensionCertificatePoliciesPtr = Ptr<CertificatePolicies, FreeExtensionCertificatePolicies>; /**< Owns a CertificatePolicies, released by FreeExtensionCertificatePolicies(). */
using X509ExtensionPtr = Ptr<X509Extension, FreeX509Extension>; /**< Owns a X509Extension, released by FreeX509Extension(). */
using X509ExtensionsPtr = Ptr<X509Extensions, FreeX509Extensions>; /**< Owns a X509Extensions, released by FreeX509Extensions(). */
using OcspRequestPtr = Ptr<OcspRequest, FreeOcspRequest>; /**< Owns a OcspRequest, released by FreeOcspRequest(). */
using OcspResponsePtr = Ptr<OcspResponse, FreeOcspResponse>; /**< Owns a OcspResponse, released by FreeOcspResponse(). */
using OcspBasicResponsePtr = Ptr<OcspBasicResponse, FreeOcspBasicResponse>; /**< Owns a OcspBasicResponse, released by FreeOcspBasicResponse(). */
using OcspSingleResponsePtr = Ptr<OcspSingleResponse, FreeOcspSingleResponse>; /**< Owns a OcspSingleResponse, released by FreeOcspSingleResponse(). */
using OcspBasicResponsesPtr = Ptr<OcspBasicResponses, FreeOcspBasicResponses>; /**< Owns a OcspBasicResponses, released by FreeOcspBasicResponses(). */
using ExtensionStoreCertificatesPtr = Ptr<StoreItems, FreeExtensionStoreCertificates>; /**< Owns a StoreItems, released by FreeExtensionStoreCertificates(). */
using ExtensionStorePrivateKeyContextsPtr = Ptr<StoreItems, FreeExtensionStorePrivateKeyContexts>; /**< Owns a StoreItems, released by FreeExtensionStorePrivateKeyContexts(). */
using ExtensionStoreOcspRequestDocumentsPtr = Ptr<StoreItems, FreeExtensionStoreOcspRequestDocuments>; /**< Owns a StoreItems, released by FreeExtensionStoreOcspRequestDocuments(). */
using ExtensionOcspCheckFileExtResultsPtr = Ptr<OcspCheckFileExtResults, FreeExtensionOcspCheckFileExtResults>; /**< Owns a OcspCheckFileExtResults, released by FreeExtensionOcspCheckFileExtResults(). */
using PKCS10CertReqPtr = Ptr<PKCS10CertReq, FreePKCS10CertReq>; /**< Owns a PKCS10CertReq, released by FreePKCS10CertReq(). */
using LibraryTimePtr = Ptr<LibraryTime, FreeLibraryTime>; /**< Owns a LibraryTime, released by FreeLibraryTime(). */
using LibraryPreciseTimePtr = Ptr<LibraryPreciseTime, FreeLibraryPreciseTime>; /**< Owns a LibraryPreciseTime, released by FreeLibraryPreciseTime(). */
using AccuracyPtr = Ptr<Accuracy, FreeAccuracy>; /**< Owns a Accuracy, released by FreeAccuracy(). */
using SeveralDataPtr = Ptr<SeveralData, FreeSeveralData>; /**< Owns a SeveralData, released by FreeSeveralData(). */
using X509NamePtr = Ptr<X509Name, FreeX509Name>; /**< Owns a X509Name, released by FreeX509Name(). */
using X509GeneralNamesPtr = Ptr<GeneralNames, FreeX509GeneralNames>; /**< Owns a GeneralNames, released by FreeX509GeneralNames(). */
using X509GeneralNamePtr = Ptr<GeneralName, FreeX509GeneralName>; /**< Owns a GeneralName, released by FreeX509GeneralName(). */
using PKIFreeTextPtr = Ptr<PKIFreeText, FreePKIFreeText>; /**< Owns a PKIFreeText, released by FreePKIFreeText(). */

}  // namespace tarvelon

#endif
