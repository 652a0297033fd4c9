/**
 * @file tarvelon/extension_values.h
 * Typed values of the standard extensions (RFC 5280, OCSP nonce, Netscape certificate type, Russian
 * qualified-certificate extensions), encoded to and decoded from an extnValue.
 *
 * Each value here is the DER that the extnValue OCTET STRING holds; the extension's OID and its
 * criticality are the caller's business. Decoders read one element and ignore any octets after it;
 * empty input is refused with #TV_ERR_INVALID_ARGUMENT.
 */
#ifndef TARVELON_EXTENSION_VALUES_H
#define TARVELON_EXTENSION_VALUES_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/* List-valued extensions: each is a list of element trees handled by its Create/Add/Get/Remove/
 * Free/Count/Encode/Decode family. */
/** CRLDistributionPoints (RFC 5280 4.2.1.13): a list of DistributionPoint trees. */
typedef Asn1List CrlDistributionPoints;
/** ExtKeyUsageSyntax (RFC 5280 4.2.1.12): a list of key-purpose OIDs. */
typedef Asn1List ExtendedKeyUsage;
/** AuthorityInfoAccessSyntax (RFC 5280 4.2.2.1): a list of AccessDescription trees. */
typedef Asn1List AuthorityInformationAccess;
/** certificatePolicies (RFC 5280 4.2.1.4): a list of PolicyInformation trees with their qualifiers. */
typedef Asn1List CertificatePolicies;

/* Scalar values: the caller's content octets under one universal tag (an INTEGER as its big-endian
 * two's-complement contents, a text as its bytes); decoding checks the tag and returns the contents. */
/**
 * Writes the value of an OCSP nonce: the caller's octets as one OCTET STRING element.
 *
 * @param[in]     in      The nonce octets (borrowed); null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspNonce(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of an OCSP nonce: the content octets of one OCTET STRING element.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the nonce octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionOcspNonce(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of a CRL number: the caller's content octets as one INTEGER element.
 *
 * The octets go out as given, without a check: they must already be the minimal big-endian two's
 * complement that DER requires.
 *
 * @param[in]     in      The number's content octets (borrowed); null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionCrlNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a CRL number: the content octets of one INTEGER element, big-endian two's
 * complement of any length.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the content octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionCrlNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of a delta CRL indicator (the number of the base CRL): the caller's content
 * octets as one INTEGER element.
 *
 * The octets go out as given, without a check: they must already be the minimal big-endian two's
 * complement that DER requires.
 *
 * @param[in]     in      The number's content octets (borrowed); null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionDeltaCrlIndicator(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a delta CRL indicator: the content octets of one INTEGER element, big-endian
 * two's complement of any length.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the content octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionDeltaCrlIndicator(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the subject's signature tool extension of a qualified certificate: the
 * caller's text as one UTF8String element.
 *
 * @param[in]     in      UTF-8 text (borrowed), written as given; null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionSubjectSignTool(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the subject's signature tool extension: the text of one UTF8String element.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the UTF-8 text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionSubjectSignTool(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a SNILS (insurance account number) extension value: the caller's text as one UTF8String
 * element.
 *
 * @param[in]     in      The number as text (borrowed), written as given; null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionSnils(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a SNILS extension value: the text of one UTF8String element.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionSnils(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of a subject key identifier: the caller's key identifier as one OCTET STRING
 * element.
 *
 * @param[in]     in      The key identifier (borrowed); null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionSubjectKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a subject key identifier: the content octets of one OCTET STRING element.
 *
 * @param[in]     in      The extnValue (borrowed); an element under another tag is refused.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionSubjectKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* Named-bit lists travel as a flag word whose octets, least significant first, are the first four
 * content octets: digitalSignature 0x80 ... encipherOnly 0x01, decipherOnly 0x8000. Decoding keeps
 * at most four octets and clears the unused bits. */
/**
 * Writes the value of a key usage extension from a flag word.
 *
 * The low octet holds the first eight named bits: digitalSignature 0x80, nonRepudiation 0x40,
 * keyEncipherment 0x20, dataEncipherment 0x10, keyAgreement 0x08, keyCertSign 0x04, cRLSign 0x02,
 * encipherOnly 0x01; decipherOnly is 0x8000. Trailing zero bits are dropped, as DER requires for
 * named bits; 0 gives the empty BIT STRING 03 01 00.
 *
 * @param[in]     bits    The flag word.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionKeyUsage(uint32_t bits, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a key usage extension into a flag word laid out as EncodeExtensionKeyUsage()
 * takes it.
 *
 * Only the first four content octets are kept; unused bits that arrive set are cleared.
 *
 * @param[in]  in       The extnValue, one BIT STRING element (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outBits  Receives the flag word; 0 when the decoding fails.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionKeyUsage(const uint8_t* in, uint32_t inLen, uint32_t* outBits);
/**
 * Writes the value of a Netscape certificate type extension from a flag word.
 *
 * The low octet holds the eight named bits in order from 0x80 down: SSL client, SSL server, S/MIME,
 * object signing, reserved, SSL CA, S/MIME CA, object-signing CA. Trailing zero bits are dropped, as
 * DER requires for named bits.
 *
 * @param[in]     bits    The flag word.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionNetscapeCertificateType(uint32_t bits, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a Netscape certificate type extension into a flag word laid out as
 * EncodeExtensionNetscapeCertificateType() takes it.
 *
 * Only the first four content octets are kept; unused bits that arrive set are cleared.
 *
 * @param[in]  in       The extnValue, one BIT STRING element (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outBits  Receives the flag word; 0 when the decoding fails.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionNetscapeCertificateType(const uint8_t* in, uint32_t inLen, uint32_t* outBits);
/**
 * Writes the value of a CRL entry's reason code as an ENUMERATED.
 *
 * The number is written as the minimal two's complement of its signed 32-bit value (128 gives
 * 0A 02 00 80, 0xFFFFFFFF gives 0A 01 FF), which DecodeExtensionReasonCode() reads back unchanged.
 *
 * @param[in]     reason  The reason (RFC 5280 5.3.1 defines 0 to 10, 7 unused); not checked.
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionReasonCode(uint32_t reason, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a CRL entry's reason code: one ENUMERATED as a signed 32-bit number.
 *
 * @param[in]  in         The extnValue (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outReason  Receives the reason.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for contents of more than four
 *         octets, which no 32-bit number holds.
 */
TV_API uint32_t DecodeExtensionReasonCode(const uint8_t* in, uint32_t inLen, uint32_t* outReason);
/**
 * Writes the value of an invalidity date: one GeneralizedTime to the second, in UTC.
 *
 * The record is written as it is, not checked as a calendar date.
 *
 * @param[in]     time    The date (borrowed).
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field too wide for its place, such as
 *         a year over 9999.
 */
TV_API uint32_t EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of an invalidity date: one GeneralizedTime, to the second.
 *
 * @param[in]  in       The extnValue (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outTime  Receives the date.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a date or time that does not exist or a
 *         year outside 1900 to 2100; the fields read before the faulty one are stored all the same.
 */
TV_API uint32_t DecodeExtensionInvalidityDate(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* Structures. */
/**
 * Writes the value of a basic constraints extension.
 *
 * cA FALSE is left out, as DER requires for a default. The two fields are not checked against each
 * other: a path length with cA false is written as given.
 *
 * @param[in]     cA       Non-zero for a CA certificate.
 * @param[in]     pathLen  The path length constraint, taken as unsigned; 0xFFFFFFFF leaves it out.
 * @param[out]    out      Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionBasicConstraints(int cA, uint32_t pathLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a basic constraints extension.
 *
 * @param[in]  in          The extnValue (borrowed).
 * @param[in]  inLen       Octets in @p in.
 * @param[out] outCa       Receives the raw BOOLEAN octet of cA (0xFF or 0x00; 0x00 when absent).
 * @param[out] outPathLen  Receives the path length, 0xFFFFFFFF when absent.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for a path length of more than
 *         four content octets, so one of 0x80000000 or more that the encoder wrote does not read back.
 */
TV_API uint32_t DecodeExtensionBasicConstraints(const uint8_t* in, uint32_t inLen, uint8_t* outCa, uint32_t* outPathLen);
/**
 * Writes the value of an authority key identifier extension; each of the three parts is written when
 * its pointer is not null.
 *
 * @param[in]     keyId      Key identifier octets (borrowed), or null to leave it out.
 * @param[in]     keyIdLen   Octets in @p keyId.
 * @param[in]     issuer     The authority's certificate issuer (borrowed, copied), or null.
 * @param[in]     serial     Content octets of the authority certificate's serial number, big-endian
 *                           two's complement written as given (borrowed), or null.
 * @param[in]     serialLen  Octets in @p serial.
 * @param[out]    out        Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyId, uint32_t keyIdLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of an authority key identifier extension into its three parts.
 *
 * Every part is delivered or sized whatever the others answered, so one call with null buffers asks
 * both sizes; of several failures the key identifier's is returned first, then the issuer's, then
 * the serial's. The issuer copy goes to the caller only on success: a call answered with
 * #TV_ERR_BUFFER_TOO_SMALL leaves nothing to free.
 *
 * @param[in]     in            The extnValue (borrowed).
 * @param[in]     inLen         Octets in @p in.
 * @param[out]    outKeyId      Caller buffer for the key identifier, or null to ask its size.
 * @param[in,out] outKeyIdLen   Room in @p outKeyId; the octets written or needed (@ref size_protocol),
 *                              0 when the part is absent.
 * @param[out]    outIssuer     Receives a copy of the issuer owned by the caller
 *                              (FreeX509GeneralNames()), null when absent; or null not to ask for it.
 * @param[out]    outSerial     Caller buffer for the serial number's content octets, or null to ask
 *                              their number.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed, 0 when the part is
 *                              absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionAuthorityKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* outKeyId, uint32_t* outKeyIdLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Writes the value of a private key usage period extension; a null time is left out.
 *
 * @param[in]     notBefore  Start of the period (borrowed), or null.
 * @param[in]     notAfter   End of the period (borrowed), or null.
 * @param[out]    out        Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time field too wide for its place.
 */
TV_API uint32_t EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore, const LibraryTime* notAfter, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a private key usage period extension; an absent part reads as the null
 * (all-zero) time.
 *
 * @param[in]  in            The extnValue (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outNotBefore  Receives the start of the period.
 * @param[out] outNotAfter   Receives the end of the period.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a date or time that does not exist.
 */
TV_API uint32_t DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* in, uint32_t inLen, LibraryTime* outNotBefore, LibraryTime* outNotAfter);
/**
 * Writes the value of the issuer's signature tool extension of a qualified certificate: four
 * UTF8Strings in the order of the parameters.
 *
 * The texts are written as given, unchecked; each may be empty but none may be null.
 *
 * @param[in]     signTool         Name of the issuer's signature tool (borrowed), UTF-8.
 * @param[in]     signToolLen      Octets in @p signTool.
 * @param[in]     caTool           Name of the certification authority tool (borrowed), UTF-8.
 * @param[in]     caToolLen        Octets in @p caTool.
 * @param[in]     signToolCert     Conformity certificate of the signature tool (borrowed), UTF-8.
 * @param[in]     signToolCertLen  Octets in @p signToolCert.
 * @param[in]     caToolCert       Conformity certificate of the authority tool (borrowed), UTF-8.
 * @param[in]     caToolCertLen    Octets in @p caToolCert.
 * @param[out]    out              Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen           Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionIssuerSignTool(const uint8_t* signTool, uint32_t signToolLen, const uint8_t* caTool, uint32_t caToolLen, const uint8_t* signToolCert, uint32_t signToolCertLen, const uint8_t* caToolCert, uint32_t caToolCertLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the issuer's signature tool extension into its four texts.
 *
 * Every text is delivered or sized whatever the others answered, so one call with null buffers asks
 * all four sizes; of several failures the last text's code is returned.
 *
 * @param[in]     in                  The extnValue (borrowed).
 * @param[in]     inLen               Octets in @p in.
 * @param[out]    outSignTool         Caller buffer for the signature tool's name, or null to ask.
 * @param[in,out] outSignToolLen      Room in @p outSignTool; the octets written or needed
 *                                    (@ref size_protocol).
 * @param[out]    outCaTool           Caller buffer for the authority tool's name, or null to ask.
 * @param[in,out] outCaToolLen        Room in @p outCaTool; the octets written or needed.
 * @param[out]    outSignToolCert     Caller buffer for the signature tool's certificate, or null.
 * @param[in,out] outSignToolCertLen  Room in @p outSignToolCert; the octets written or needed.
 * @param[out]    outCaToolCert       Caller buffer for the authority tool's certificate, or null.
 * @param[in,out] outCaToolCertLen    Room in @p outCaToolCert; the octets written or needed.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionIssuerSignTool(const uint8_t* in, uint32_t inLen, uint8_t* outSignTool, uint32_t* outSignToolLen, uint8_t* outCaTool, uint32_t* outCaToolLen, uint8_t* outSignToolCert, uint32_t* outSignToolCertLen, uint8_t* outCaToolCert, uint32_t* outCaToolCertLen);
/**
 * Writes the value of a CRL's issuing distribution point extension.
 *
 * The reasons go under context tag [1], not the [3] of RFC 5280: values written this way exist and
 * DecodeExtensionIssuingDistributionPoint() reads them back. A name relative to the CRL issuer goes
 * under [1] of the distribution point name as a whole Name, not as the single
 * RelativeDistinguishedName of RFC 5280. A flag whose present argument is non-zero is stored, but a
 * FALSE flag is then left out, as DER requires for a default.
 *
 * @param[in]     fullName                   Full name of the distribution point (borrowed, copied),
 *                                           or null; it wins when both names are given.
 * @param[in]     relativeName               Name relative to the CRL issuer (borrowed, copied), or
 *                                           null.
 * @param[in]     onlyUserCerts              Non-zero for TRUE.
 * @param[in]     onlyUserCertsPresent       Non-zero to write @p onlyUserCerts.
 * @param[in]     onlyCaCerts                Non-zero for TRUE.
 * @param[in]     onlyCaCertsPresent         Non-zero to write @p onlyCaCerts.
 * @param[in]     reasons                    Reason flags, laid out as AddExtensionCrlDistributionPoint()
 *                                           takes them.
 * @param[in]     reasonsPresent             Non-zero to write @p reasons.
 * @param[in]     indirectCrl                Non-zero for TRUE.
 * @param[in]     indirectCrlPresent         Non-zero to write @p indirectCrl.
 * @param[in]     onlyAttributeCerts         Non-zero for TRUE.
 * @param[in]     onlyAttributeCertsPresent  Non-zero to write @p onlyAttributeCerts.
 * @param[out]    out                        Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen                     Room in @p out; the octets written or needed
 *                                           (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionIssuingDistributionPoint(const GeneralNames* fullName, const X509Name* relativeName, uint32_t onlyUserCerts, uint32_t onlyUserCertsPresent, uint32_t onlyCaCerts, uint32_t onlyCaCertsPresent, uint32_t reasons, uint32_t reasonsPresent, uint32_t indirectCrl, uint32_t indirectCrlPresent, uint32_t onlyAttributeCerts, uint32_t onlyAttributeCertsPresent, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a CRL's issuing distribution point extension.
 *
 * The reasons are read under [1], as EncodeExtensionIssuingDistributionPoint() writes them: a [1]
 * element after the optional name is the user-certificates flag when it holds the one octet 0xFF, or 0x00
 * followed by another [1], and the reasons otherwise. An element under [3], where RFC 5280 has the
 * reasons, is not taken for them. A name relative to the CRL issuer must be a whole Name; the single
 * RelativeDistinguishedName of RFC 5280 fails to decode.
 *
 * @param[in]  in                            The extnValue (borrowed).
 * @param[in]  inLen                         Octets in @p in.
 * @param[out] outFullName                   Receives a copy of the full name owned by the caller
 *                                           (FreeX509GeneralNames()), null when absent.
 * @param[out] outRelativeName               Receives a copy of the relative name owned by the caller
 *                                           (FreeX509Name()), null when absent.
 * @param[out] outOnlyUserCerts              Receives the raw BOOLEAN octet, 0x00 when absent.
 * @param[out] outOnlyUserCertsPresent       Receives 1, always: an absent flag reads as its default.
 * @param[out] outOnlyCaCerts                Receives the raw BOOLEAN octet, 0x00 when absent.
 * @param[out] outOnlyCaCertsPresent         Receives 1, always.
 * @param[out] outReasons                    Receives the reason flags, 0 when absent.
 * @param[out] outReasonsPresent             Receives 1 when the reasons are there, else 0.
 * @param[out] outIndirectCrl                Receives the raw BOOLEAN octet, 0x00 when absent.
 * @param[out] outIndirectCrlPresent         Receives 1, always.
 * @param[out] outOnlyAttributeCerts         Receives the raw BOOLEAN octet, 0x00 when absent.
 * @param[out] outOnlyAttributeCertsPresent  Receives 1, always.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionIssuingDistributionPoint(const uint8_t* in, uint32_t inLen, GeneralNames** outFullName, X509Name** outRelativeName, uint8_t* outOnlyUserCerts, uint32_t* outOnlyUserCertsPresent, uint8_t* outOnlyCaCerts, uint32_t* outOnlyCaCertsPresent, uint32_t* outReasons, uint32_t* outReasonsPresent, uint8_t* outIndirectCrl, uint32_t* outIndirectCrlPresent, uint8_t* outOnlyAttributeCerts, uint32_t* outOnlyAttributeCertsPresent);

/* CRL distribution points. Add takes the given trees over (the caller no longer frees them after a
 * successful add); Get hands out borrowed references into the list. */
/**
 * Creates an empty list for the value of a CRL distribution points extension.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionCrlDistributionPoints()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionCrlDistributionPoints(CrlDistributionPoints** outList);
/**
 * Appends a distribution point to the list, taking over the trees it is given.
 *
 * On success the list owns @p fullName, @p relativeName and @p crlIssuer and frees them with itself;
 * after a failure they stay the caller's. A name relative to the CRL issuer is written as a whole
 * Name under [1], not as the single RelativeDistinguishedName of RFC 5280.
 *
 * @param[in,out] list          The list (borrowed).
 * @param[in]     fullName      Full name of the distribution point (taken over: freed with the list),
 *                              or null.
 * @param[in]     relativeName  Name relative to the CRL issuer (taken over: freed with the list), or
 *                              null; not together with @p fullName.
 * @param[in]     reasons       Reason flags, 0 to leave them out: unused 0x80, keyCompromise 0x40,
 *                              cACompromise 0x20, affiliationChanged 0x10, superseded 0x08,
 *                              cessationOfOperation 0x04, certificateHold 0x02, privilegeWithdrawn
 *                              0x01, aACompromise 0x8000.
 * @param[in]     crlIssuer     The CRL issuer (taken over: freed with the list), or null.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when both names are given, or when
 *         all four parts are left out.
 */
TV_API uint32_t AddExtensionCrlDistributionPoint(CrlDistributionPoints* list, GeneralNames* fullName, X509Name* relativeName, uint32_t reasons, GeneralNames* crlIssuer);
/**
 * Gives the parts of the distribution point at @p index, lent by the list.
 *
 * The outputs are cleared before anything else, so after a failure they hold null and 0.
 *
 * @param[in]  list             The list (borrowed).
 * @param[in]  index            Zero-based index.
 * @param[out] outFullName      Receives the full name, lent by @p list (do not free), or null when
 *                              absent.
 * @param[out] outRelativeName  Receives the name relative to the CRL issuer, lent by @p list (do not
 *                              free), or null when absent.
 * @param[out] outReasons       Receives the reason flags (see AddExtensionCrlDistributionPoint()), 0
 *                              when absent.
 * @param[out] outCrlIssuer     Receives the CRL issuer, lent by @p list (do not free), or null when
 *                              absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionCrlDistributionPoint(const CrlDistributionPoints* list, uint32_t index, GeneralNames** outFullName, X509Name** outRelativeName, uint32_t* outReasons, GeneralNames** outCrlIssuer);
/**
 * Removes the distribution point at @p index and frees it; the entries after it move down by one.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Zero-based index; one past the end is refused (#TV_ERR_INVALID_ARGUMENT).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveExtensionCrlDistributionPoint(CrlDistributionPoints* list, uint32_t index);
/**
 * Frees a list of distribution points and everything in it.
 *
 * @param[in] list  The list (taken over and freed), or null.
 * @return #TV_OK, also for a null list.
 */
TV_API uint32_t FreeExtensionCrlDistributionPoints(CrlDistributionPoints* list);
/**
 * Gives the number of distribution points in the list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of distribution points.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionCrlDistributionPointsCount(const CrlDistributionPoints* list, uint32_t* outCount);
/**
 * Writes a list of distribution points as the value of a CRL distribution points extension.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionCrlDistributionPoints(const CrlDistributionPoints* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a CRL distribution points extension into a new list of distribution points.
 *
 * @param[in]  in       The extnValue (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionCrlDistributionPoints()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionCrlDistributionPoints(const uint8_t* in, uint32_t inLen, CrlDistributionPoints** outList);

/* Extended key usage: packed key-purpose OIDs. */
/**
 * Creates an empty list for the value of a extended key usage extension.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionExtendedKeyUsage()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionExtendedKeyUsage(ExtendedKeyUsage** outList);
/**
 * Appends a key purpose to the list.
 *
 * @param[in,out] list        The list (borrowed).
 * @param[in]     purposeOid  Packed key-purpose OID (borrowed, copied).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionExtendedKeyUsage(ExtendedKeyUsage* list, const uint8_t* purposeOid);
/**
 * Copies the key purpose at @p index as a packed OID.
 *
 * @param[in]     list       The list (borrowed).
 * @param[in]     index      Zero-based index.
 * @param[out]    outOid     Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outOidLen  Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionExtendedKeyUsage(const ExtendedKeyUsage* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Removes the key purpose at @p index and frees it; the entries after it move down by one.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Zero-based index; one past the end is refused (#TV_ERR_INVALID_ARGUMENT).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveExtensionExtendedKeyUsage(ExtendedKeyUsage* list, uint32_t index);
/**
 * Frees a list of key purposes and everything in it.
 *
 * @param[in] list  The list (taken over and freed), or null.
 * @return #TV_OK, also for a null list.
 */
TV_API uint32_t FreeExtensionExtendedKeyUsage(ExtendedKeyUsage* list);
/**
 * Gives the number of key purposes in the list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of key purposes.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionExtendedKeyUsageCount(const ExtendedKeyUsage* list, uint32_t* outCount);
/**
 * Writes a list of key purposes as the value of a extended key usage extension.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionExtendedKeyUsage(const ExtendedKeyUsage* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a extended key usage extension into a new list of key purposes.
 *
 * @param[in]  in       The extnValue (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionExtendedKeyUsage()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionExtendedKeyUsage(const uint8_t* in, uint32_t inLen, ExtendedKeyUsage** outList);

/* Authority information access: Add copies the method OID and takes the location over; Get lends it. */
/**
 * Creates an empty list for the value of a authority information access extension.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionAuthorityInformationAccess()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionAuthorityInformationAccess(AuthorityInformationAccess** outList);
/**
 * Appends an access description to the list: the method OID is copied, the location taken over.
 *
 * On success the list owns @p location and frees it with itself; after a failure it stays the
 * caller's.
 *
 * @param[in,out] list       The list (borrowed).
 * @param[in]     methodOid  Packed access-method OID (borrowed, copied), such as id-ad-ocsp.
 * @param[in]     location   The access location (taken over: freed with the list).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionAuthorityInformationAccess(AuthorityInformationAccess* list, const uint8_t* methodOid, GeneralName* location);
/**
 * Gives the access description at @p index: a copy of its method OID and its location, lent by the
 * list.
 *
 * @param[in]     list         The list (borrowed).
 * @param[in]     index        Zero-based index.
 * @param[out]    outOid       Caller buffer for the packed method OID, or null to ask its size.
 * @param[in,out] outOidLen    Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outLocation  Receives the location, lent by @p list (do not free); or null not to
 *                             ask for it. Stored only when the OID call succeeds.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen, GeneralName** outLocation);
/**
 * Removes the access description at @p index and frees it; the entries after it move down by one.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Zero-based index; one past the end is refused (#TV_ERR_INVALID_ARGUMENT).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveExtensionAuthorityInformationAccess(AuthorityInformationAccess* list, uint32_t index);
/**
 * Frees a list of access descriptions and everything in it.
 *
 * @param[in] list  The list (taken over and freed), or null.
 * @return #TV_OK, also for a null list.
 */
TV_API uint32_t FreeExtensionAuthorityInformationAccess(AuthorityInformationAccess* list);
/**
 * Gives the number of access descriptions in the list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of access descriptions.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionAuthorityInformationAccessCount(const AuthorityInformationAccess* list, uint32_t* outCount);
/**
 * Writes a list of access descriptions as the value of a authority information access extension.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionAuthorityInformationAccess(const AuthorityInformationAccess* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a authority information access extension into a new list of access descriptions.
 *
 * @param[in]  in       The extnValue (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionAuthorityInformationAccess()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionAuthorityInformationAccess(const uint8_t* in, uint32_t inLen, AuthorityInformationAccess** outList);

/* Certificate policies and their qualifiers; a qualifier is handed in and out as its whole DER element. */
/**
 * Creates an empty list for the value of a certificate policies extension.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionCertificatePolicies()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionCertificatePolicies(CertificatePolicies** outList);
/**
 * Appends a policy without qualifiers to the list; AddExtensionPolicyQualifier() adds them.
 *
 * @param[in,out] list       The list (borrowed).
 * @param[in]     policyOid  Packed policy OID (borrowed, copied).
 * @param[out]    outIndex   Receives the new policy's index, or null.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionPolicyInformation(CertificatePolicies* list, const uint8_t* policyOid, uint32_t* outIndex);
/**
 * Copies the OID of the policy at @p index.
 *
 * @param[in]     list       The list (borrowed).
 * @param[in]     index      Zero-based index of the policy.
 * @param[out]    outOid     Caller buffer for the packed policy OID, or null to ask its size.
 * @param[in,out] outOidLen  Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionPolicyInformation(const CertificatePolicies* list, uint32_t index, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Removes the policy at @p index with its qualifiers and frees it; the entries after it move down by one.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Zero-based index; one past the end is refused (#TV_ERR_INVALID_ARGUMENT).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t RemoveExtensionPolicyInformation(CertificatePolicies* list, uint32_t index);
/**
 * Frees a list of policies and everything in it.
 *
 * @param[in] list  The list (taken over and freed), or null.
 * @return #TV_OK, also for a null list.
 */
TV_API uint32_t FreeExtensionCertificatePolicies(CertificatePolicies* list);
/**
 * Gives the number of policies in the list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of policies.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionPolicyInformationCount(const CertificatePolicies* list, uint32_t* outCount);
/**
 * Writes a list of policies as the value of a certificate policies extension.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the extnValue, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionCertificatePolicies(const CertificatePolicies* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of a certificate policies extension into a new list of policies.
 *
 * @param[in]  in       The extnValue (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionCertificatePolicies()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionCertificatePolicies(const uint8_t* in, uint32_t inLen, CertificatePolicies** outList);
/**
 * Appends a qualifier to the policy at @p policyIndex.
 *
 * The qualifier is handed in as its whole DER element (an IA5String holding a CPS URI, a UserNotice
 * SEQUENCE, ...), copied and later written out unchanged.
 *
 * @param[in,out] list          The list (borrowed).
 * @param[in]     policyIndex   Zero-based index of the policy.
 * @param[in]     qualifierOid  Packed policy-qualifier OID (borrowed, copied).
 * @param[in]     in            The qualifier element (borrowed, copied), or null to write the OID
 *                              alone.
 * @param[in]     inLen         Octets in @p in, 0 to write the OID alone.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when @p in is not exactly one
 *         element.
 */
TV_API uint32_t AddExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex, const uint8_t* qualifierOid, const uint8_t* in, uint32_t inLen);
/**
 * Gives the number of qualifiers of the policy at @p policyIndex.
 *
 * @param[in]  list         The list (borrowed).
 * @param[in]  policyIndex  Zero-based index of the policy.
 * @param[out] outCount     Receives the number of qualifiers, 0 when the policy has none.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionPolicyQualifiersCount(const CertificatePolicies* list, uint32_t policyIndex, uint32_t* outCount);
/**
 * Copies one qualifier of a policy: its packed OID and its whole DER element.
 *
 * Both parts are delivered or sized in one call: a short qualifier buffer still gets the OID, and
 * #TV_ERR_BUFFER_TOO_SMALL comes back with the qualifier's size stored.
 *
 * @param[in]     list            The list (borrowed).
 * @param[in]     policyIndex     Zero-based index of the policy.
 * @param[in]     qualifierIndex  Zero-based index of the qualifier within the policy.
 * @param[out]    outOid          Caller buffer for the packed qualifier OID, or null to ask its size.
 * @param[in,out] outOidLen       Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    out             Caller buffer for the qualifier element, or null to ask its size.
 * @param[in,out] outLen          Room in @p out; the octets written or needed, 0 when the qualifier
 *                                has the OID alone.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when the policy has no qualifiers.
 */
TV_API uint32_t GetExtensionPolicyQualifier(const CertificatePolicies* list, uint32_t policyIndex, uint32_t qualifierIndex, uint8_t* outOid, uint32_t* outOidLen, uint8_t* out, uint32_t* outLen);
/**
 * Removes one qualifier of a policy and frees it.
 *
 * Removing the last one drops the emptied qualifier list too, so that the policy is written without
 * the field rather than with an empty SEQUENCE.
 *
 * @param[in,out] list            The list (borrowed).
 * @param[in]     policyIndex     Zero-based index of the policy.
 * @param[in]     qualifierIndex  Zero-based index of the qualifier within the policy.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when the policy has no qualifiers.
 */
TV_API uint32_t RemoveExtensionPolicyQualifier(CertificatePolicies* list, uint32_t policyIndex, uint32_t qualifierIndex);

#ifdef __cplusplus
}
#endif

#endif
