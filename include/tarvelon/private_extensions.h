/* Tarvelon: values of the private extensions (storage lists, OCSP check reports and request
 * options, key storage, blocking dates, owner and parent information, Kestrune key identifier). */
#ifndef TARVELON_PRIVATE_EXTENSIONS_H
#define TARVELON_PRIVATE_EXTENSIONS_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/* SEQUENCE OF StoreItem { kind ENUMERATED, data OCTET STRING } (certificates, key containers, documents). */
typedef Asn1List StoreItems;
/* SEQUENCE OF ExtResult. */
typedef Asn1List OcspCheckFileExtResults;

/* Scalar values: the caller's text under one universal tag; decoding checks the tag and returns the text. */
TV_API uint32_t EncodeExtensionKestruneKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionKestruneKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionOcspRequestBsnProdCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestBsnProdCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionOcspRequestPerson(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestPerson(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionOcspRequestGuid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestGuid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionOrganizationCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOrganizationCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionClockNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionClockNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeExtensionCorvantisSerialNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionCorvantisSerialNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/* PrintableString. */
TV_API uint32_t EncodeExtensionRelatedOsbKod(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionRelatedOsbKod(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* Numbers: INTEGER (documents) or ENUMERATED, written as the minimal two's complement of the number
 * taken as a signed 32-bit value; contents longer than four octets are refused on decoding. */
TV_API uint32_t EncodeExtensionOcspRequestDocuments(uint32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestDocuments(const uint8_t* in, uint32_t inLen, uint32_t* outNumber);
TV_API uint32_t EncodeExtensionOcspRequestCertificates(uint32_t kind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestCertificates(const uint8_t* in, uint32_t inLen, uint32_t* outKind);
TV_API uint32_t EncodeExtensionOcspRequestPrivateKeyContexts(uint32_t kind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspRequestPrivateKeyContexts(const uint8_t* in, uint32_t inLen, uint32_t* outKind);

/* OBJECT IDENTIFIER in and out in packed form. */
TV_API uint32_t EncodeExtensionParentAS(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionParentAS(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/* A distinguished name; the decoded name is the caller's to free with FreeX509Name. */
TV_API uint32_t EncodeExtensionOwnerInformation(const X509Name* name, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOwnerInformation(const uint8_t* in, uint32_t inLen, X509Name** outName);
/* GeneralizedTime. */
TV_API uint32_t EncodeExtensionOcspCheckTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspCheckTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* Structures. Optional octet and text fields are written when their pointer is not null and decode
 * to length 0 when absent; optional numbers go with a present flag; absent times decode to the null
 * (all-zero) time. Decoders store every size before they report the first failing output. */
TV_API uint32_t EncodeExtensionOcspCheckFile(const uint8_t* fileHash, uint32_t fileHashLen, const uint8_t* hash0, uint32_t hash0Len, const uint8_t* hash1, uint32_t hash1Len, uint32_t checkKindPresent, uint32_t checkKind, const uint8_t* text3, uint32_t text3Len, const uint8_t* text4, uint32_t text4Len, uint32_t kind5Present, uint32_t kind5, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspCheckFile(const uint8_t* in, uint32_t inLen, uint8_t* outFileHash, uint32_t* outFileHashLen, uint8_t* outHash0, uint32_t* outHash0Len, uint8_t* outHash1, uint32_t* outHash1Len, uint32_t* outCheckKindPresent, uint32_t* outCheckKind, uint8_t* outText3, uint32_t* outText3Len, uint8_t* outText4, uint32_t* outText4Len, uint32_t* outKind5Present, uint32_t* outKind5);
TV_API uint32_t EncodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* text1, uint32_t text1Len, const uint8_t* text2, uint32_t text2Len, uint32_t kindPresent, uint32_t kind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* in, uint32_t inLen, uint8_t* outText1, uint32_t* outText1Len, uint8_t* outText2, uint32_t* outText2Len, uint32_t* outKindPresent, uint32_t* outKind);
/* Written with the identifier B0 ([16] IMPLICIT SEQUENCE), as peers expect. */
TV_API uint32_t EncodeExtensionOcspCheckTime2(uint32_t timeKind, const LibraryTime* checkTime, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspCheckTime2(const uint8_t* in, uint32_t inLen, uint32_t* outTimeKind, LibraryTime* outCheckTime);
TV_API uint32_t EncodeExtensionExtendedResult(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionExtendedResult(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen);
TV_API uint32_t EncodeExtensionKeyStorage(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionKeyStorage(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen);
TV_API uint32_t EncodeExtensionRequestBlockingDate(const LibraryTime* from, const LibraryTime* until, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionRequestBlockingDate(const uint8_t* in, uint32_t inLen, LibraryTime* outFrom, LibraryTime* outUntil);

/* Store lists: three names for one shape. Get copies the data out under the size protocol. */
TV_API uint32_t CreateExtensionStoreCertificates(StoreItems** outList);
TV_API uint32_t AddExtensionStoreCertificates(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetExtensionStoreCertificates(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveExtensionStoreCertificates(StoreItems* list, uint32_t index);
TV_API uint32_t FreeExtensionStoreCertificates(StoreItems* list);
TV_API uint32_t GetExtensionStoreCertificatesCount(const StoreItems* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionStoreCertificates(const StoreItems* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionStoreCertificates(const uint8_t* in, uint32_t inLen, StoreItems** outList);
TV_API uint32_t CreateExtensionStorePrivateKeyContexts(StoreItems** outList);
TV_API uint32_t AddExtensionStorePrivateKeyContexts(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetExtensionStorePrivateKeyContexts(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveExtensionStorePrivateKeyContexts(StoreItems* list, uint32_t index);
TV_API uint32_t FreeExtensionStorePrivateKeyContexts(StoreItems* list);
TV_API uint32_t GetExtensionStorePrivateKeyContextsCount(const StoreItems* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionStorePrivateKeyContexts(const StoreItems* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionStorePrivateKeyContexts(const uint8_t* in, uint32_t inLen, StoreItems** outList);
TV_API uint32_t CreateExtensionStoreOcspRequestDocuments(StoreItems** outList);
TV_API uint32_t AddExtensionStoreOcspRequestDocuments(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetExtensionStoreOcspRequestDocuments(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t RemoveExtensionStoreOcspRequestDocuments(StoreItems* list, uint32_t index);
TV_API uint32_t FreeExtensionStoreOcspRequestDocuments(StoreItems* list);
TV_API uint32_t GetExtensionStoreOcspRequestDocumentsCount(const StoreItems* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionStoreOcspRequestDocuments(const StoreItems* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionStoreOcspRequestDocuments(const uint8_t* in, uint32_t inLen, StoreItems** outList);

/* OCSP check results. Add takes over `items` (null: an empty list) and `names` (null: left out) on
 * success only. Get's outputs may each be null; items and names are lent from the list, names null
 * when absent. */
TV_API uint32_t CreateExtensionOcspCheckFileExtResults(OcspCheckFileExtResults** outList);
TV_API uint32_t AddExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list, uint32_t resultKind, const uint8_t* text, uint32_t textLen, uint32_t statusKind, const LibraryTime* checkTime, StoreItems* items, GeneralNames* names);
TV_API uint32_t GetExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint32_t index, uint32_t* outResultKind, uint8_t* outText, uint32_t* outTextLen, uint32_t* outStatusKind, LibraryTime* outCheckTime, StoreItems** outItems, GeneralNames** outNames);
TV_API uint32_t RemoveExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list, uint32_t index);
TV_API uint32_t FreeExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list);
TV_API uint32_t GetExtensionOcspCheckFileExtResultsCount(const OcspCheckFileExtResults* list, uint32_t* outCount);
TV_API uint32_t EncodeExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeExtensionOcspCheckFileExtResults(const uint8_t* in, uint32_t inLen, OcspCheckFileExtResults** outList);

#ifdef __cplusplus
}
#endif

#endif
