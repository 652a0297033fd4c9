/**
 * @file tarvelon/crl.h
 * Certificate revocation lists (RFC 5280 CertificateList) and CRL lists.
 */
#ifndef TARVELON_CRL_H
#define TARVELON_CRL_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"
#include "tarvelon/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A CRL: CertificateList ::= SEQUENCE { tbsCertList, signatureAlgorithm, signatureValue }. */
typedef struct X509Crl X509Crl;
/** A list of CRLs: X509Crls ::= SEQUENCE OF CertificateList. */
typedef Asn1List X509Crls;
/** The revokedCertificates list of a CRL, as a value of its own. */
typedef Asn1List X509RevokedCertificates;

/**
 * Creates an empty CRL.
 *
 * Nothing is set: give it an issuer, thisUpdate, a signature algorithm and a signature before
 * encoding it; the version is optional (absent in a v1 CRL).
 *
 * @param[out] outCrl  Receives a new CRL owned by the caller (FreeX509Crl()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509Crl(X509Crl** outCrl);
/**
 * Creates an empty list of CRLs.
 *
 * @param[out] outCrls  Receives a new list owned by the caller (FreeX509Crls()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509Crls(X509Crls** outCrls);
/**
 * Reads a CRL; octets after the first element are ignored.
 *
 * @param[in]  in      The encoding (borrowed).
 * @param[in]  inLen   Octets in @p in.
 * @param[out] outCrl  Receives a new CRL owned by the caller (FreeX509Crl()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509Crl(const uint8_t* in, uint32_t inLen, X509Crl** outCrl);
/**
 * Reads a SEQUENCE OF CertificateList; octets after the first element are ignored.
 *
 * @param[in]  in       The encoding (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outCrls  Receives a new list owned by the caller (FreeX509Crls()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509Crls(const uint8_t* in, uint32_t inLen, X509Crls** outCrls);
/**
 * Writes a CRL as DER.
 *
 * @param[in]     crl     The CRL (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required field was never set.
 */
TV_API uint32_t EncodeX509Crl(const X509Crl* crl, uint8_t* out, uint32_t* outLen);
/**
 * Writes a list of CRLs as a DER SEQUENCE OF CertificateList.
 *
 * @param[in]     crls    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a CRL in it lacks a required field.
 */
TV_API uint32_t EncodeX509Crls(const X509Crls* crls, uint8_t* out, uint32_t* outLen);
/**
 * Makes a deep copy of a CRL.
 *
 * @param[in]  crl     The CRL (borrowed).
 * @param[out] outCrl  Receives a new CRL owned by the caller (FreeX509Crl()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509CrlCopy(const X509Crl* crl, X509Crl** outCrl);
/**
 * Makes a deep copy of a list of CRLs, every CRL in it copied.
 *
 * @param[in]  crls     The list (borrowed).
 * @param[out] outCrls  Receives a new list owned by the caller (FreeX509Crls()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509CrlsCopy(const X509Crls* crls, X509Crls** outCrls);
/**
 * Frees a CRL; not for one that a list holds.
 *
 * @param[in] crl  The CRL to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeX509Crl(X509Crl* crl);
/**
 * Frees a list of CRLs with every CRL in it.
 *
 * @param[in] crls  The list to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeX509Crls(X509Crls* crls);
/**
 * Counts the CRLs of a list.
 *
 * @param[in]  crls      The list (borrowed).
 * @param[out] outCount  Receives the number of CRLs.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509CrlsCount(const X509Crls* crls, uint32_t* outCount);
/**
 * Gives out one CRL of a list.
 *
 * @param[in]  crls    The list (borrowed).
 * @param[in]  index   Position, from 0.
 * @param[out] outCrl  Receives the CRL, lent by @p crls (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end.
 */
TV_API uint32_t GetX509CrlsCrl(const X509Crls* crls, uint32_t index, X509Crl** outCrl);
/**
 * Appends a CRL to a list, which takes it over: the CRL belongs to the list from then on.
 *
 * @param[in,out] crls  The list (borrowed).
 * @param[in]     crl   The CRL (taken over on success: freed with FreeX509Crls()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddX509CrlToX509Crls(X509Crls* crls, X509Crl* crl);
/**
 * Writes the TBSCertList as DER, the octets to sign.
 *
 * The part is encoded afresh from the fields, never sliced from the decoded input: a CRL that came
 * in as BER yields the DER its signature was computed over. Set the signature algorithm first, as
 * it is part of these octets.
 *
 * @param[in]     crl     The CRL (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when a required field was never set.
 */
TV_API uint32_t GetX509CrlToBeSignedPart(const X509Crl* crl, uint8_t* out, uint32_t* outLen);

/**
 * Reads the version: 0 for v1, 1 for v2.
 *
 * @param[in]  crl         The CRL (borrowed).
 * @param[out] outVersion  Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the CRL carries no version field (as
 *         a v1 CRL usually does not), #TV_ERR_NOT_DER (307) for a negative version, one beyond 32
 *         bits or one without contents.
 */
TV_API uint32_t GetX509CrlVersion(const X509Crl* crl, uint32_t* outVersion);
/**
 * Sets the version: 0 for v1, 1 for v2 (needed once the CRL has extensions).
 *
 * 0 too is written as a version field, which v1 CRLs usually omit: leave the version unset for
 * those, as no function removes it.
 *
 * @param[in,out] crl      The CRL (borrowed).
 * @param[in]     version  0 or 1.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for any other number.
 */
TV_API uint32_t SetX509CrlVersion(X509Crl* crl, uint32_t version);
/**
 * Gives out the issuer name; when the CRL holds none, an empty name is made in place so that the
 * caller can fill it.
 *
 * @param[in,out] crl        The CRL (borrowed).
 * @param[out]    outIssuer  Receives the issuer, lent by @p crl (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509CrlIssuer(X509Crl* crl, X509Name** outIssuer);
/**
 * Sets the issuer name.
 *
 * @param[in,out] crl     The CRL (borrowed).
 * @param[in]     issuer  The name (borrowed; copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509CrlIssuer(X509Crl* crl, const X509Name* issuer);
/**
 * Reads thisUpdate.
 *
 * @param[in]  crl      The CRL (borrowed).
 * @param[out] outTime  Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when it is not set.
 */
TV_API uint32_t GetX509CrlThisUpdate(const X509Crl* crl, LibraryTime* outTime);
/**
 * Sets thisUpdate, as UTCTime before 2050 and GeneralizedTime from 2050 on.
 *
 * @param[in,out] crl   The CRL (borrowed).
 * @param[in]     time  The time (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time that is not valid.
 */
TV_API uint32_t SetX509CrlThisUpdate(X509Crl* crl, const LibraryTime* time);
/**
 * Reads the optional nextUpdate.
 *
 * @param[in]  crl      The CRL (borrowed).
 * @param[out] outTime  Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the CRL has none.
 */
TV_API uint32_t GetX509CrlNextUpdate(const X509Crl* crl, LibraryTime* outTime);
/**
 * Sets nextUpdate, as UTCTime before 2050 and GeneralizedTime from 2050 on.
 *
 * @param[in,out] crl   The CRL (borrowed).
 * @param[in]     time  The time (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time that is not valid.
 */
TV_API uint32_t SetX509CrlNextUpdate(X509Crl* crl, const LibraryTime* time);
/**
 * Removes nextUpdate; a CRL without one is left as it is.
 *
 * @param[in,out] crl  The CRL (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveX509CrlNextUpdate(X509Crl* crl);
/**
 * Gives out the crlExtensions field for the functions of extensions.h.
 *
 * The handle is the field itself, valid while the CRL lives, and given out also while no list is
 * held, so that the first extension can be added in place.
 *
 * @param[in,out] crl            The CRL (borrowed).
 * @param[out]    outExtensions  Receives the extensions, lent by @p crl (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509CrlExtensions(X509Crl* crl, X509Extensions** outExtensions);

/**
 * Reads the signature: the octets of the signatureValue BIT STRING.
 *
 * @param[in]     crl     The CRL (borrowed).
 * @param[out]    out     Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the CRL is not signed yet.
 */
TV_API uint32_t GetX509CrlSignature(const X509Crl* crl, uint8_t* out, uint32_t* outLen);
/**
 * Stores the signature the caller's provider computed over GetX509CrlToBeSignedPart(), as a BIT
 * STRING with no unused bits.
 *
 * @param[in,out] crl    The CRL (borrowed).
 * @param[in]     in     The signature (borrowed; copied).
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509CrlSignature(X509Crl* crl, const uint8_t* in, uint32_t inLen);
/**
 * Reads the signature algorithm, from the TBSCertList's signature field: its OID and its
 * parameters element.
 *
 * Both parts are always written, each under the size protocol; when either does not fit the answer
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored.
 *
 * @param[in]     crl           The CRL (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outParams     Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when the
 *                              parameters are absent; may be null when @p outParams is null.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when no algorithm is set.
 */
TV_API uint32_t GetX509CrlSignatureAlgorithmOidAndParameters(const X509Crl* crl, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the signature algorithm: its OID and its parameters, in the TBSCertList and in the outer
 * signatureAlgorithm.
 *
 * The TBSCertList's copy is written first and then the outer one; a failure on the first leaves the
 * outer one untouched. The parameters are a complete DER element copied unparsed; null or empty
 * parameters leave them absent.
 *
 * @param[in,out] crl          The CRL (borrowed).
 * @param[in]     inOid        Packed OID of the algorithm (borrowed; copied).
 * @param[in]     inParams     The parameters element (borrowed; copied), or null.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509CrlSignatureAlgorithmOidAndParameters(X509Crl* crl, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets a signature algorithm given by its id, with NULL parameters or none, in the TBSCertList and
 * in the outer signatureAlgorithm.
 *
 * @param[in,out] crl    The CRL (borrowed).
 * @param[in]     algId  Algorithm id of the table of algorithm.h, e.g. 100 or 3002.
 * @param[in]     mode   0 for NULL parameters (05 00), 255 for none; a parameter block (1) needs
 *                       SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters().
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for any other mode,
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm id.
 */
TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmID(X509Crl* crl, uint32_t algId, uint8_t mode);
/**
 * Sets a signature algorithm given by its id, with GOST R 34.10 parameters, in the TBSCertList and
 * in the outer signatureAlgorithm.
 *
 * With mode 1 the parameter block is built from the three parameter-set ids, and it is always the
 * GOST R 34.10-2001 block, whatever the algorithm. A refused call leaves both fields as they were.
 *
 * @param[in,out] crl                The CRL (borrowed).
 * @param[in]     algId              Algorithm id of the table of algorithm.h.
 * @param[in]     mode               1 for a parameter block, 0 for NULL parameters, 255 for none.
 * @param[in]     publicKeyParamId   Public-key parameter-set id; used with mode 1 only.
 * @param[in]     digestParamId      Digest parameter-set id; used with mode 1 only.
 * @param[in]     encryptionParamId  Encryption parameter-set id; used with mode 1 only.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another mode,
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm or parameter-set id.
 */
TV_API uint32_t SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(X509Crl* crl, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/**
 * Counts the revoked entries; a CRL without the list has none.
 *
 * @param[in]  crl       The CRL (borrowed).
 * @param[out] outCount  Receives the number of entries, 0 when the list is absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509CrlRevokedCertificateCount(const X509Crl* crl, uint32_t* outCount);
/**
 * Reads the serial number of a revoked entry, as the INTEGER contents stored.
 *
 * Entries are kept in the order added or decoded.
 *
 * @param[in]     crl     The CRL (borrowed).
 * @param[in]     index   Position of the entry, from 0.
 * @param[out]    out     Caller buffer for the serial, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end (or
 *         no list at all).
 */
TV_API uint32_t GetX509CrlRevokedCertificateSerialNumber(const X509Crl* crl, uint32_t index, uint8_t* out, uint32_t* outLen);
/**
 * Reads the revocation date of a revoked entry.
 *
 * @param[in]  crl      The CRL (borrowed).
 * @param[in]  index    Position of the entry, from 0.
 * @param[out] outTime  Receives the date.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end (or
 *         no list at all), #TV_ERR_ABSENT (311) when the entry has no date.
 */
TV_API uint32_t GetX509CrlRevokedCertificateRevokationDate(const X509Crl* crl, uint32_t index, LibraryTime* outTime);
/**
 * Gives out the crlEntryExtensions field of a revoked entry for the functions of extensions.h.
 *
 * The handle is the field itself, given out also while no list is held, so that the first
 * extension (a reason code, a certificate issuer) can be added in place.
 *
 * @param[in,out] crl            The CRL (borrowed).
 * @param[in]     index          Position of the entry, from 0.
 * @param[out]    outExtensions  Receives the extensions, lent by @p crl (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end (or
 *         no list at all).
 */
TV_API uint32_t GetX509CrlRevokedCertificateExtensions(X509Crl* crl, uint32_t index, X509Extensions** outExtensions);
/**
 * Appends a revoked entry, making the list on first use.
 *
 * Duplicates are allowed. The date is written as UTCTime before 2050 and GeneralizedTime from 2050
 * on. A failed add leaves the CRL as it was, without an empty list made for it.
 *
 * @param[in,out] crl             The CRL (borrowed).
 * @param[in]     inSerial        Serial number as INTEGER contents (borrowed; copied as given).
 * @param[in]     inSerialLen     Octets in @p inSerial, at least 1.
 * @param[in]     revocationDate  The revocation date (borrowed).
 * @param[out]    outIndex        Receives the position of the new entry.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty serial,
 *         #TV_ERR_TIME (313) for a date that is not valid.
 */
TV_API uint32_t AddX509CrlRevokedCertificate(X509Crl* crl, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryTime* revocationDate, uint32_t* outIndex);
/**
 * Frees every revoked entry but keeps the list, which the encoding then writes as an empty
 * SEQUENCE; an absent list stays absent.
 *
 * @param[in,out] crl  The CRL (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearX509CrlRevokedCertificates(X509Crl* crl);
/**
 * Removes the revokedCertificates field with all its entries; an absent one is not a failure.
 *
 * @param[in,out] crl  The CRL (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveX509CrlRevokedCertificates(X509Crl* crl);

/**
 * Creates an empty stand-alone list of revoked entries.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeX509RevokedCertificates()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509RevokedCertificates(X509RevokedCertificates** outList);
/**
 * Writes a list of revoked entries as a DER SEQUENCE OF RevokedCertificate.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeX509RevokedCertificates(const X509RevokedCertificates* list, uint8_t* out, uint32_t* outLen);
/**
 * Frees a list of revoked entries with its entries.
 *
 * @param[in] list  The list to free, or null.
 * @return #TV_OK.
 */
TV_API uint32_t FreeX509RevokedCertificates(X509RevokedCertificates* list);
/**
 * Appends a revoked entry to a stand-alone list; duplicates are allowed.
 *
 * @param[in,out] list            The list (borrowed).
 * @param[in]     inSerial        Serial number as INTEGER contents (borrowed; copied as given).
 * @param[in]     inSerialLen     Octets in @p inSerial, at least 1.
 * @param[in]     revocationDate  The revocation date (borrowed), written as in AddX509CrlRevokedCertificate().
 * @param[out]    outIndex        Receives the position of the new entry.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an empty serial,
 *         #TV_ERR_TIME (313) for a date that is not valid.
 */
TV_API uint32_t AddX509RevokedCertificatesRevokedCertificate(X509RevokedCertificates* list, const uint8_t* inSerial, uint32_t inSerialLen, const LibraryTime* revocationDate, uint32_t* outIndex);
/**
 * Gives out the crlEntryExtensions field of an entry of a stand-alone list; the handle is the field
 * itself, usable also while no list is held.
 *
 * @param[in,out] list           The list (borrowed).
 * @param[in]     index          Position of the entry, from 0.
 * @param[out]    outExtensions  Receives the extensions, lent by @p list (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index beyond the end.
 */
TV_API uint32_t GetX509RevokedCertificatesRevokedCertificateExtensions(X509RevokedCertificates* list, uint32_t index, X509Extensions** outExtensions);

/**
 * Puts an authority key identifier extension (non-critical) into crlExtensions, replacing one
 * already there.
 *
 * A key identifier or serial of no octets counts as absent. The extension needs a key identifier,
 * or an issuer and a serial; but the general names are always built from the issuer, so a key
 * identifier without an issuer fails with #TV_ERR_INVALID_ARGUMENT all the same. With a key
 * identifier and an issuer but no serial, the issuer is written without a serial.
 *
 * @param[in,out] crl          The CRL (borrowed).
 * @param[in]     inKeyId      The key identifier (borrowed; copied), or null.
 * @param[in]     inKeyIdLen   Octets in @p inKeyId.
 * @param[in]     issuer       Issuer name of the CRL issuer's certificate (borrowed; copied).
 * @param[in]     inSerial     Serial number of that certificate as INTEGER contents (borrowed;
 *                             copied), or null.
 * @param[in]     inSerialLen  Octets in @p inSerial.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetX509CrlAuthorityKeyIdentifier2(X509Crl* crl, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/**
 * Puts an authority key identifier extension into crlExtensions from the CRL issuer's certificate:
 * its subject key identifier, its issuer and its serial number (as
 * SetX509CrlAuthorityKeyIdentifier2()).
 *
 * A subject key identifier that cannot be read, including one over 32 octets, is left out. The
 * issuer is read through the certificate functions, which make an empty name in place in a
 * certificate that holds none.
 *
 * @param[in,out] crl         The CRL (borrowed).
 * @param[in]     issuerCert  The issuer's certificate (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_WORK_BUFFER (338) for a serial number over 64 octets.
 */
TV_API uint32_t SetX509CrlAuthorityKeyIdentifier(X509Crl* crl, const Certificate* issuerCert);

/**
 * Finds the first revoked entry for a certificate given by issuer and serial number, following the
 * certificate issuer extensions of an indirect CRL.
 *
 * The issuer in force starts as the CRL's issuer; an entry with a certificate issuer extension
 * makes the last directoryName in it the issuer for itself and the entries after it (RFC 5280
 * 5.3.3). Issuers are compared as DER octets, so another string type or attribute order does not
 * match; serials are compared octet for octet as INTEGER contents. The search works in fixed
 * buffers: an entry's serial over 150 octets, or the CRL's issuer or a certificate issuer extension
 * over 1500 octets, stops it with #TV_ERR_BUFFER_TOO_SMALL, which callers rely on.
 *
 * @param[in]  crl          The CRL (borrowed).
 * @param[in]  issuer       Issuer of the certificate sought (borrowed).
 * @param[in]  inSerial     Its serial number as INTEGER contents (borrowed).
 * @param[in]  inSerialLen  Octets in @p inSerial.
 * @param[out] outIndex     Receives the position of the entry found.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when no entry matches (also with no
 *         entries), #TV_ERR_ABSENT (311) when the CRL has no issuer, #TV_ERR_BUFFER_TOO_SMALL (49)
 *         as said above.
 */
TV_API uint32_t FindX509CrlFind(const X509Crl* crl, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen, uint32_t* outIndex);

#ifdef __cplusplus
}
#endif

#endif
