/**
 * @file tarvelon/certificate.h
 * X.509 v3 certificates (RFC 5280) and certificate lists.
 *
 * A certificate is built field by field on a tree from CreateCertificate() (or changed after
 * DecodeCertificate()); GetCertificateToBeSignedPart() then hands out the octets to sign and
 * SetCertificateSignature() stores the signature the caller's provider computed over them.
 */
#ifndef TARVELON_CERTIFICATE_H
#define TARVELON_CERTIFICATE_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/algorithm.h"
#include "tarvelon/extensions.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A Certificate: tbsCertificate, signatureAlgorithm and signatureValue. */
typedef struct Certificate Certificate;
/** Certificates ::= SEQUENCE OF Certificate, a list of whole certificate trees. */
typedef Asn1List Certificates;

/* Life cycle and coding. */

/**
 * Creates a certificate whose structures are present and whose fields are unset.
 *
 * An unset field reads as absent (#TV_ERR_ABSENT) rather than as an empty value, and the version
 * reads as v1 (0), its DEFAULT. The certificate encodes once its mandatory fields are set.
 *
 * @param[out] outCertificate  Receives a new certificate owned by the caller (FreeCertificate()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCertificate(Certificate** outCertificate);
/**
 * Decodes a certificate; octets after the first complete element are ignored.
 *
 * @param[in]  in              The encoding (borrowed).
 * @param[in]  inLen           Octets in @p in.
 * @param[out] outCertificate  Receives a new certificate owned by the caller (FreeCertificate()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCertificate(const uint8_t* in, uint32_t inLen, Certificate** outCertificate);
/**
 * Writes a certificate as DER.
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a mandatory field is unset.
 */
TV_API uint32_t EncodeCertificate(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Makes a deep copy of a certificate.
 *
 * @param[in]  certificate     The certificate to copy (borrowed).
 * @param[out] outCertificate  Receives a new certificate owned by the caller (FreeCertificate()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCertificateCopy(const Certificate* certificate, Certificate** outCertificate);
/**
 * Frees a certificate with everything it holds.
 *
 * @param[in] certificate  The certificate (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeCertificate(Certificate* certificate);
/**
 * Writes the DER of tbsCertificate, the octets the issuer signs.
 *
 * The DER is encoded afresh from the fields, never sliced from a decoded input: a certificate that
 * came in as BER yields the DER its signature was computed over.
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while a mandatory field of tbsCertificate
 *         is unset.
 */
TV_API uint32_t GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* out, uint32_t* outLen);

/* Certificate lists. */

/**
 * Creates an empty certificate list.
 *
 * @param[out] outCertificates  Receives a new list owned by the caller (FreeCertificates()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCertificates(Certificates** outCertificates);
/**
 * Decodes a SEQUENCE OF Certificate; octets after the first complete element are ignored.
 *
 * @param[in]  in               The encoding (borrowed).
 * @param[in]  inLen            Octets in @p in.
 * @param[out] outCertificates  Receives a new list owned by the caller (FreeCertificates()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeCertificates(const uint8_t* in, uint32_t inLen, Certificates** outCertificates);
/**
 * Writes a certificate list as a DER SEQUENCE OF Certificate, in list order.
 *
 * @param[in]     certificates  The list (borrowed).
 * @param[out]    out           Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen        Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeCertificates(const Certificates* certificates, uint8_t* out, uint32_t* outLen);
/**
 * Makes a deep copy of a certificate list, certificates included.
 *
 * @param[in]  certificates     The list to copy (borrowed).
 * @param[out] outCertificates  Receives a new list owned by the caller (FreeCertificates()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCertificatesCopy(const Certificates* certificates, Certificates** outCertificates);
/**
 * Frees a certificate list with every certificate in it, those added to it included.
 *
 * @param[in] certificates  The list (taken over), or null for nothing.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeCertificates(Certificates* certificates);
/**
 * Counts the certificates of a list.
 *
 * @param[in]  certificates  The list (borrowed).
 * @param[out] outCount      Receives the number of certificates.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCertificatesCount(const Certificates* certificates, uint32_t* outCount);
/**
 * Hands out one certificate of a list.
 *
 * @param[in]  certificates    The list (borrowed).
 * @param[in]  index           Position from 0.
 * @param[out] outCertificate  Receives the certificate, lent by @p certificates (do not free).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for an index past the end.
 */
TV_API uint32_t GetCertificatesCertificate(const Certificates* certificates, uint32_t index, Certificate** outCertificate);
/**
 * Appends a certificate to a list without copying it.
 *
 * @param[in,out] certificates  The list (borrowed).
 * @param[in]     certificate   The certificate (taken over on success: freed with @p certificates);
 *                              after a failure the caller still owns it.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddCertificateToCertificates(Certificates* certificates, Certificate* certificate);

/* Fields of tbsCertificate. */

/**
 * Hands out the subject name for reading or filling in place; an unset subject is first created
 * empty, so AddX509NameEntry() on the handle builds it.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[out]    outName      Receives the subject, lent by @p certificate (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCertificateSubject(Certificate* certificate, X509Name** outName);
/**
 * Replaces the subject name with a copy of @p name; a failed copy leaves the old one.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     name         The name (borrowed, copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateSubject(Certificate* certificate, const X509Name* name);
/**
 * Replaces the subject name, copying @p name or taking it over.
 *
 * With @p copy 0 the certificate keeps @p name itself and frees the old subject; handing back the
 * certificate's own subject changes nothing.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     name         The name: borrowed when @p copy is nonzero; otherwise taken over on
 *                             success (freed with @p certificate), the caller keeping it after a
 *                             failure.
 * @param[in]     copy         Nonzero to store a copy, 0 to take @p name over.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateSubject_i(Certificate* certificate, X509Name* name, uint32_t copy);
/**
 * Hands out the issuer name for reading or filling in place; an unset issuer is first created
 * empty, so AddX509NameEntry() on the handle builds it.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[out]    outName      Receives the issuer, lent by @p certificate (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCertificateIssuer(Certificate* certificate, X509Name** outName);
/**
 * Replaces the issuer name with a copy of @p name; a failed copy leaves the old one.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     name         The name (borrowed, copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateIssuer(Certificate* certificate, const X509Name* name);
/**
 * Replaces the issuer name, copying @p name or taking it over.
 *
 * With @p copy 0 the certificate keeps @p name itself and frees the old issuer; handing back the
 * certificate's own issuer changes nothing.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     name         The name: borrowed when @p copy is nonzero; otherwise taken over on
 *                             success (freed with @p certificate), the caller keeping it after a
 *                             failure.
 * @param[in]     copy         Nonzero to store a copy, 0 to take @p name over.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateIssuer_i(Certificate* certificate, X509Name* name, uint32_t copy);
/**
 * Reads the version: 0 for v1, 1 for v2, 2 for v3.
 *
 * A certificate without the version field (DEFAULT v1), a fresh one included, reads 0.
 *
 * @param[in]  certificate  The certificate (borrowed).
 * @param[out] outVersion   Receives the version number.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_DER (307) for a version INTEGER that is empty,
 *         negative or longer than four octets.
 */
TV_API uint32_t GetCertificateVersion(const Certificate* certificate, uint32_t* outVersion);
/**
 * Sets the version: 0 for v1, 1 for v2, 2 for v3.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     version      0, 1 or 2.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for a version above 2.
 */
TV_API uint32_t SetCertificateVersion(Certificate* certificate, uint32_t version);
/**
 * Reads the serial number: the INTEGER's content octets exactly as stored (big-endian two's
 * complement, not normalised).
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no serial number is set.
 */
TV_API uint32_t GetCertificateSerialNumber(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Sets the serial number from INTEGER content octets, stored exactly as given.
 *
 * Nothing is normalised: 00 7F and 7F are different serial numbers to every matcher of the
 * library, so pass the octets the issuer writes.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           Big-endian two's-complement content octets (borrowed, copied).
 * @param[in]     inLen        Octets in @p in, at least 1.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for no octets.
 */
TV_API uint32_t SetCertificateSerialNumber(Certificate* certificate, const uint8_t* in, uint32_t inLen);
/**
 * Lends the serial number's content octets without copying them.
 *
 * Records no failure (GetLastFileErrorAsn() is not updated).
 *
 * @param[in]  certificate  The certificate (borrowed).
 * @param[out] outLen       Receives the number of octets.
 * @return The octets, lent by @p certificate (valid until the serial number changes or the
 *         certificate is freed; do not free), or null when @p certificate or @p outLen is null or no
 *         serial number is set.
 */
TV_API const uint8_t* ptr_GetCertificateSerialNumber(const Certificate* certificate, uint32_t* outLen);
/**
 * Reads the start of the validity period.
 *
 * A UTCTime year 50 to 99 reads as 1950 to 1999, 00 to 49 as 2000 to 2049.
 *
 * @param[in]  certificate  The certificate (borrowed).
 * @param[out] outTime      Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while the time is unset;
 *         #TV_ERR_NOT_DER (307) for a time text too short for a date and time.
 */
TV_API uint32_t GetCertificateValidNotBefore(const Certificate* certificate, LibraryTime* outTime);
/**
 * Reads the end of the validity period.
 *
 * A UTCTime year 50 to 99 reads as 1950 to 1999, 00 to 49 as 2000 to 2049.
 *
 * @param[in]  certificate  The certificate (borrowed).
 * @param[out] outTime      Receives the time.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while the time is unset;
 *         #TV_ERR_NOT_DER (307) for a time text too short for a date and time.
 */
TV_API uint32_t GetCertificateValidNotAfter(const Certificate* certificate, LibraryTime* outTime);
/**
 * Sets the start of the validity period: UTCTime for years before 2050, GeneralizedTime from 2050.
 *
 * A UTCTime holds the year modulo 100, which reads back as 1950 to 2049: an earlier year does not
 * survive.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     time         The time (borrowed, copied).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a record whose fields do not fit the
 *         time text (a year past 9999, another field past 99), the old time then staying.
 */
TV_API uint32_t SetCertificateValidNotBefore(Certificate* certificate, const LibraryTime* time);
/**
 * Sets the end of the validity period: UTCTime for years before 2050, GeneralizedTime from 2050.
 *
 * A UTCTime holds the year modulo 100, which reads back as 1950 to 2049: an earlier year does not
 * survive.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     time         The time (borrowed, copied).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a record whose fields do not fit the
 *         time text (a year past 9999, another field past 99), the old time then staying.
 */
TV_API uint32_t SetCertificateValidNotAfter(Certificate* certificate, const LibraryTime* time);
/**
 * Reads the issuerUniqueID bit string.
 *
 * @param[in]     certificate    The certificate (borrowed).
 * @param[out]    out            Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @param[out]    outUnusedBits  Receives the unused bits of the last octet (0 to 7), or null when
 *                               not wanted; left alone when the field is absent.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the certificate has no issuerUniqueID.
 */
TV_API uint32_t GetCertificateIssuerUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint8_t* outUnusedBits);
/**
 * Reads the subjectUniqueID bit string.
 *
 * @param[in]     certificate    The certificate (borrowed).
 * @param[out]    out            Caller buffer for the octets, or null to ask their number.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @param[out]    outUnusedBits  Receives the unused bits of the last octet (0 to 7), or null when
 *                               not wanted; left alone when the field is absent.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the certificate has no
 *         subjectUniqueID.
 */
TV_API uint32_t GetCertificateSubjectUniqueId(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint8_t* outUnusedBits);
/**
 * Replaces the issuerUniqueID, or removes it when @p in is null.
 *
 * The unused bits of the last octet are cleared in the stored copy.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           The bit-string octets (borrowed, copied), or null to leave the field
 *                             absent.
 * @param[in]     inLen        Octets in @p in.
 * @param[in]     unusedBits   Unused bits of the last octet, 0 to 7.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for more than 7 unused bits.
 */
TV_API uint32_t SetCertificateIssuerUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen, uint8_t unusedBits);
/**
 * Replaces the subjectUniqueID, or removes it when @p in is null.
 *
 * The unused bits of the last octet are cleared in the stored copy.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           The bit-string octets (borrowed, copied), or null to leave the field
 *                             absent.
 * @param[in]     inLen        Octets in @p in.
 * @param[in]     unusedBits   Unused bits of the last octet, 0 to 7.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for more than 7 unused bits.
 */
TV_API uint32_t SetCertificateSubjectUniqueId(Certificate* certificate, const uint8_t* in, uint32_t inLen, uint8_t unusedBits);
/**
 * Hands out the certificate's extensions field as an extension-list handle.
 *
 * The handle is given also while the certificate has no extensions, so the extension list
 * operations (AddX509ExtensionsExtension() and the others) create and fill the list in place.
 *
 * @param[in,out] certificate    The certificate (borrowed).
 * @param[out]    outExtensions  Receives the handle, lent by @p certificate (do not free).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCertificateExtensions(Certificate* certificate, X509Extensions** outExtensions);
/**
 * Replaces the extensions with a copy of a list; a handle that holds no list removes them.
 *
 * The copy is made before the old list goes, so the certificate's own handle may be passed.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     extensions   The extensions (borrowed, copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateExtensions(Certificate* certificate, const X509Extensions* extensions);

/* Signature value, public key and algorithms. Algorithm parameters cross as one complete DER element,
 * length 0 when they are absent. */

/**
 * Reads the signature value's octets (the unused-bits count is not reported).
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the signature, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no signature has been set.
 */
TV_API uint32_t GetCertificateSignature(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Stores the signature the caller computed over GetCertificateToBeSignedPart(), as a BIT STRING
 * with no unused bits.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           The signature octets (borrowed, copied).
 * @param[in]     inLen        Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateSignature(Certificate* certificate, const uint8_t* in, uint32_t inLen);
/**
 * Reads the subjectPublicKey octets (the content of the BIT STRING, unused-bits count not reported).
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the key, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no public key is set.
 */
TV_API uint32_t GetCertificatePublicKey(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Replaces the subjectPublicKey with the given octets as a BIT STRING with no unused bits.
 *
 * The octets are stored as they are: for an RSA key the DER RSAPublicKey, for a GOST key the DER
 * OCTET STRING (SetCertificateGostR34102001PublicKey() wraps a raw one).
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           The key octets (borrowed, copied); may be null only with @p inLen 0.
 * @param[in]     inLen        Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificatePublicKey(Certificate* certificate, const uint8_t* in, uint32_t inLen);
/**
 * Stores a raw GOST R 34.10 public key (2001 or 2012): wrapped in a DER OCTET STRING, it becomes the
 * subjectPublicKey.
 *
 * The OCTET STRING is built in a working buffer of 256 octets, so a key over 253 octets is refused.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     in           The raw key, 64 or 128 octets for the usual key sizes (borrowed, copied).
 * @param[in]     inLen        Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_WORK_BUFFER (338) for a key over 253 octets.
 */
TV_API uint32_t SetCertificateGostR34102001PublicKey(Certificate* certificate, const uint8_t* in, uint32_t inLen);
/**
 * Reads a raw GOST R 34.10 public key: the content of the OCTET STRING the subjectPublicKey holds.
 *
 * The algorithm is not looked at. The subjectPublicKey passes through a working buffer of 270
 * octets.
 *
 * @param[in]     certificate  The certificate (borrowed).
 * @param[out]    out          Caller buffer for the raw key, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no public key is set;
 *         #TV_ERR_MALFORMED (302) when the key is no OCTET STRING (an RSA key, say);
 *         #TV_ERR_WORK_BUFFER (338) for a subjectPublicKey over 270 octets.
 */
TV_API uint32_t GetCertificatePublicKeyGostR3410(const Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Reads a raw GOST R 34.10 public key together with its parameter-set ids, after checking that the
 * key's algorithm and parameters belong together.
 *
 * Despite the name, any GOST R 34.10 key qualifies: algorithm id 3000 (2012, 256 bits) with
 * public-key set 1 to 7 or 9 and digest set 3; 3001 (2012, 512 bits) with public-key set 8, 10, 11
 * or 12 and digest set 4; 102 (2001) with public-key set 1 to 6 and digest set 1 or 2. The
 * encryption set is not checked; an omitted one reads as 1. The algorithm OID and the parameters
 * are read through working buffers of 100 octets and the subjectPublicKey through one of 168, each
 * answering #TV_ERR_BUFFER_TOO_SMALL when exceeded whatever room @p out has.
 *
 * @param[in]     certificate           The certificate (borrowed).
 * @param[out]    out                   Caller buffer for the raw key, or null to ask its size.
 * @param[in,out] outLen                Room in @p out; the octets written or needed
 *                                      (@ref size_protocol).
 * @param[out]    outPublicKeyParamId   Receives the id of the public-key parameter set.
 * @param[out]    outDigestParamId      Receives the id of the digest parameter set.
 * @param[out]    outEncryptionParamId  Receives the id of the encryption parameter set.
 * @return #TV_OK, or a status code; #TV_ERR_KEY_KIND (317) for a key that is not GOST R 34.10,
 *         parameters that are not a parameter block (NULL or none), or sets that do not suit the
 *         algorithm; #TV_ERR_OID_NOT_FOUND (308) for an algorithm or parameter-set OID the library
 *         does not know; #TV_ERR_ABSENT (311) while the algorithm or the key is unset.
 */
TV_API uint32_t GetCertificateDecodedPublicKeyGostR34102012(const Certificate* certificate, uint8_t* out, uint32_t* outLen, uint32_t* outPublicKeyParamId, uint32_t* outDigestParamId, uint32_t* outEncryptionParamId);
/**
 * Reads the subject public key's algorithm as a packed OID and the DER of its parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored (and the part that fitted written).
 *
 * @param[in]     certificate   The certificate (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when absent; may
 *                              be null with a null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no algorithm has been set.
 */
TV_API uint32_t GetCertificatePublicKeyAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the subject public key's algorithm from a packed OID and the DER of its parameters.
 *
 * The new value is built before the old one goes, so a failure leaves the old algorithm.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     inOid        Packed OID of the algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificatePublicKeyAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets the subject public key's algorithm from an algorithm id of tarvelon/algorithm.h and the DER
 * of its parameters.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     algId        Algorithm id.
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code; #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm id.
 */
TV_API uint32_t SetCertificatePublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algId, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets the subject public key's algorithm from an algorithm id and GOST R 34.10 parameters given
 * by mode and parameter-set ids.
 *
 * The parameter block always has the 2001 shape, whose DER leaves out encryption set 1 (its
 * default), whatever algorithm @p algId names.
 *
 * @param[in,out] certificate        The certificate (borrowed).
 * @param[in]     algId              Algorithm id, e.g. 102, 3000 or 3001.
 * @param[in]     mode               1 a parameter block, 0 NULL parameters, 255 no parameters.
 * @param[in]     publicKeyParamId   Id of the public-key parameter set (read with mode 1 only).
 * @param[in]     digestParamId      Id of the digest parameter set (read with mode 1 only).
 * @param[in]     encryptionParamId  Id of the encryption parameter set (read with mode 1 only).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another mode;
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm or parameter-set id.
 */
TV_API uint32_t SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);
/**
 * Reads the signature algorithm, from tbsCertificate.signature, as a packed OID and the DER of its
 * parameters.
 *
 * Both parts are always tried, each under the size protocol: when either does not fit the result
 * is #TV_ERR_BUFFER_TOO_SMALL with both sizes stored (and the part that fitted written).
 *
 * @param[in]     certificate   The certificate (borrowed).
 * @param[out]    outOid        Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the parameters, or null to ask (or skip) them.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when absent; may
 *                              be null with a null @p outParams when the parameters are not wanted.
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no algorithm has been set.
 */
TV_API uint32_t GetCertificateSignatureAlgorithmOidAndParameters(const Certificate* certificate, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Sets the signature algorithm from a packed OID and the DER of its parameters, in
 * tbsCertificate.signature and then in the outer signatureAlgorithm.
 *
 * A failure on the inner field leaves both as they were.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     inOid        Packed OID of the signature algorithm (borrowed).
 * @param[in]     inParams     Complete DER of the parameters (borrowed, copied without parsing), or
 *                             null (or empty) to leave them absent.
 * @param[in]     inParamsLen  Octets in @p inParams.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t SetCertificateSignatureAlgorithmOidAndParameters(Certificate* certificate, const uint8_t* inOid, const uint8_t* inParams, uint32_t inParamsLen);
/**
 * Sets the signature algorithm from an algorithm id, with NULL parameters or none, in
 * tbsCertificate.signature and then in the outer signatureAlgorithm.
 *
 * A failure on the inner field leaves both as they were.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     algId        Algorithm id, e.g. 100, 3002 or 3003.
 * @param[in]     mode         0 for NULL parameters or 255 for none; a parameter block (1) is refused.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for a mode other than 0 or
 *         255; #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm id.
 */
TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmID(Certificate* certificate, uint32_t algId, uint8_t mode);
/**
 * Sets the signature algorithm from an algorithm id and GOST R 34.10-2001 parameters given by mode
 * and parameter-set ids, in tbsCertificate.signature and then in the outer signatureAlgorithm.
 *
 * A failure on the inner field leaves both as they were.
 *
 * @param[in,out] certificate        The certificate (borrowed).
 * @param[in]     algId              Algorithm id.
 * @param[in]     mode               1 a parameter block, 0 NULL parameters, 255 no parameters.
 * @param[in]     publicKeyParamId   Id of the public-key parameter set (read with mode 1 only).
 * @param[in]     digestParamId      Id of the digest parameter set (read with mode 1 only).
 * @param[in]     encryptionParamId  Id of the encryption parameter set (read with mode 1 only).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also for another mode;
 *         #TV_ERR_ID_NOT_FOUND (309) for an unknown algorithm or parameter-set id.
 */
TV_API uint32_t SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(Certificate* certificate, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* Key identifiers. Each setter replaces its extension: older ones of the same OID are removed as
 * RemoveX509ExtensionsExtension2() removes them, and the new one is appended, not critical. */

/**
 * Computes the subject key identifier, the SHA-1 of the subjectPublicKey octets (RFC 5280 4.2.1.2
 * method 1), and stores it as the subjectKeyIdentifier extension.
 *
 * The extension replaces any earlier one and is appended, not critical. The key passes through a
 * working buffer of 512 octets. The new value is encoded before the old extension is removed, so a
 * failure leaves the certificate as it was.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) while no public key is set;
 *         #TV_ERR_WORK_BUFFER (338) for a key over 512 octets.
 */
TV_API uint32_t SetCertificateSubjectKeyIdentifier(Certificate* certificate);
/**
 * Reads the key identifier of the certificate's subjectKeyIdentifier extension.
 *
 * The extension's value passes through a working buffer of 1024 octets; a longer value answers
 * #TV_ERR_NO_MEMORY (1), not #TV_ERR_BUFFER_TOO_SMALL, as callers have always seen it.
 *
 * @param[in,out] certificate  The certificate (borrowed; not changed).
 * @param[out]    out          Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the certificate has no such
 *         extension; #TV_ERR_NO_MEMORY (1) also for an extension value over 1024 octets.
 */
TV_API uint32_t GetCertificateSubjectKeyIdentifier(Certificate* certificate, uint8_t* out, uint32_t* outLen);
/**
 * Stores the authorityKeyIdentifier extension that names an issuer certificate: its subject key
 * identifier, and always its own issuer name and serial number.
 *
 * Either way a verifier can find the issuer certificate. The extension replaces any earlier one
 * and is appended, not critical. The key identifier is left out, without
 * failing, when the issuer certificate has none that can be read (none at all, or one over 32
 * octets); its serial number passes through a working buffer of 64 octets.
 *
 * @param[in,out] certificate        The certificate to change (borrowed).
 * @param[in]     issuerCertificate  The issuer's certificate (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when @p issuerCertificate has no serial
 *         number; #TV_ERR_WORK_BUFFER (338) for a serial number over 64 octets;
 *         #TV_ERR_INVALID_ARGUMENT (32) also when @p issuerCertificate has neither a readable key
 *         identifier nor an issuer name.
 */
TV_API uint32_t SetCertificateAuthorityKeyIdentifier(Certificate* certificate, const Certificate* issuerCertificate);
/**
 * Stores the authorityKeyIdentifier extension from its parts; those not given are left out.
 *
 * The extension replaces any earlier one and is appended, not critical. The issuer is written as
 * one directoryName. Each part is written as given: nothing checks that an issuer comes with a
 * serial number.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     inKeyId      The key identifier (borrowed, copied), or null (or empty) for none.
 * @param[in]     inKeyIdLen   Octets in @p inKeyId.
 * @param[in]     issuer       The issuer certificate's issuer name (borrowed, copied), or null.
 * @param[in]     inSerial     The issuer certificate's serial number as INTEGER content octets
 *                             (borrowed, copied), or null (or empty) for none.
 * @param[in]     inSerialLen  Octets in @p inSerial.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT (32) also when there is no key
 *         identifier and not both an issuer and a serial number.
 */
TV_API uint32_t SetCertificateAuthorityKeyIdentifier2(Certificate* certificate, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/**
 * Reads the certificate's authorityKeyIdentifier extension: key identifier, issuer as general
 * names, serial number.
 *
 * Absent octet parts read as length 0. The extension's value passes through a working buffer of
 * 1024 octets. The issuer copy goes to the caller only with a success: a call answered
 * #TV_ERR_BUFFER_TOO_SMALL leaves nothing to free.
 *
 * @param[in,out] certificate   The certificate (borrowed; not changed).
 * @param[out]    outKeyId      Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outKeyIdLen   Room in @p outKeyId; the octets written or needed, 0 when absent.
 * @param[out]    outIssuer     Receives new general names owned by the caller
 *                              (FreeX509GeneralNames()), null when the extension names no issuer;
 *                              or null when not wanted.
 * @param[out]    outSerial     Caller buffer for the serial number's content octets, or null to ask
 *                              their number.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed, 0 when absent.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the certificate has no such
 *         extension; #TV_ERR_WORK_BUFFER (338) for an extension value over 1024 octets.
 */
TV_API uint32_t GetCertificateAuthorityKeyIdentifier(Certificate* certificate, uint8_t* outKeyId, uint32_t* outKeyIdLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Reads the certificate's authorityKeyIdentifier extension as GetCertificateAuthorityKeyIdentifier()
 * does, with the issuer as a name.
 *
 * The issuer is the first directoryName among the extension's general names that decodes; when
 * there is none (no issuer, or only names of other kinds) the name handed out is null and the call
 * succeeds.
 *
 * @param[in,out] certificate   The certificate (borrowed; not changed).
 * @param[out]    outKeyId      Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outKeyIdLen   Room in @p outKeyId; the octets written or needed, 0 when absent.
 * @param[out]    outIssuer     Receives a new name owned by the caller (FreeX509Name()), or null
 *                              when the extension names no directory name; or null when not wanted.
 * @param[out]    outSerial     Caller buffer for the serial number's content octets, or null to ask
 *                              their number.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed, 0 when absent.
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the certificate has no such
 *         extension; #TV_ERR_WORK_BUFFER (338) for an extension value over 1024 octets.
 */
TV_API uint32_t GetCertificateAuthorityKeyIdentifier2(Certificate* certificate, uint8_t* outKeyId, uint32_t* outKeyIdLen, X509Name** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Tells whether a certificate is the one an authority key identifier names.
 *
 * A given key identifier decides alone, against the certificate's subject key identifier; issuer
 * and serial number are then ignored. Otherwise the serial number is compared first, as stored
 * octets (00 7F is not 7F), then the issuer with CompareX509Names(). The certificate's key
 * identifier passes through a working buffer of 32 octets.
 *
 * @param[in,out] certificate  The candidate certificate (borrowed; not changed).
 * @param[in]     inKeyId      The key identifier (borrowed), or null (or empty) for none.
 * @param[in]     inKeyIdLen   Octets in @p inKeyId.
 * @param[in]     issuer       The issuer name (borrowed), or null.
 * @param[in]     inSerial     The serial number's content octets (borrowed), or null.
 * @param[in]     inSerialLen  Octets in @p inSerial.
 * @return 0 when the certificate is the one named; #TV_ERR_DIFFERENT (320) when it is not, also
 *         when a key identifier is given and the certificate has none; otherwise a status code:
 *         #TV_ERR_INVALID_ARGUMENT (32) when nothing is given, or the serial numbers match and no
 *         issuer is given; #TV_ERR_NOT_DER (307) when the certificate has no serial number;
 *         #TV_ERR_ABSENT (311) when it has no issuer; #TV_ERR_WORK_BUFFER (338) for a certificate's
 *         key identifier over 32 octets.
 */
TV_API uint32_t IsCertificateCorrespondToAuthKeyIdent(Certificate* certificate, const uint8_t* inKeyId, uint32_t inKeyIdLen, const X509Name* issuer, const uint8_t* inSerial, uint32_t inSerialLen);
/**
 * Stores the Kestrune key identifier extension (1.2.643.3.901.3.1): the text as a UTF8String.
 *
 * The extension replaces any earlier one and is appended, not critical. The old one is removed
 * first, so a failure leaves the certificate without one, never with a stale identifier (callers
 * rely on it). The text is converted and encoded in working buffers of
 * 138 octets.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     text         NUL-terminated code page 1251 text (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_WORK_BUFFER (338) for a text whose UTF-8 form or
 *         encoding exceeds 138 octets.
 */
TV_API uint32_t SetCertificateKestruneKeyIdentifier(Certificate* certificate, const char* text);

/* Extension conveniences. */

/**
 * Reads the value of the certificate's first extension with a given OID: the content of its
 * extnValue OCTET STRING, the DER of the extension's own structure.
 *
 * @param[in,out] certificate  The certificate (borrowed; not changed).
 * @param[in]     inOid        Packed OID of the extension (borrowed).
 * @param[out]    out          Caller buffer for the value, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when the certificate has no such
 *         extension, or no extensions at all.
 */
TV_API uint32_t GetCertificateExtensionValue(Certificate* certificate, const uint8_t* inOid, uint8_t* out, uint32_t* outLen);
/**
 * Replaces the cRLDistributionPoints extension with one distribution point whose full name is the
 * URL, appended not critical.
 *
 * The value is encoded in a working buffer of 2048 octets. A longer one answers
 * #TV_ERR_BUFFER_TOO_SMALL and leaves the certificate unchanged: kept as it is, callers depend on it.
 *
 * @param[in,out] certificate  The certificate (borrowed).
 * @param[in]     url          NUL-terminated URL, written as a uniformResourceIdentifier (borrowed).
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an extension value over 2048
 *         octets.
 */
TV_API uint32_t SetCertificateExtensionCrlDistributionPoints(Certificate* certificate, const char* url);

#ifdef __cplusplus
}
#endif

#endif
