/**
 * @file tarvelon/attribute_values.h
 * Typed values of CMS, CAdES and private signature attributes.
 *
 * Each codec writes or reads the DER of one attribute value; the caller stores it in an attribute
 * list under the OID of its choice. Writers follow the @ref size_protocol.
 */
#ifndef TARVELON_ATTRIBUTE_VALUES_H
#define TARVELON_ATTRIBUTE_VALUES_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"
#include "tarvelon/extension_values.h"
#include "tarvelon/crl.h"
#include "tarvelon/ocsp.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Writes a message-digest attribute value: the digest as an OCTET STRING, octets as given.
 *
 * @param[in]     in      The digest (borrowed); may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeMessageDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a message-digest attribute value: the content octets of its OCTET STRING.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the digest, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeMessageDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a template-digest attribute value: the digest as an OCTET STRING, octets as given.
 *
 * @param[in]     in      The digest (borrowed); may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeTemplateDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a template-digest attribute value: the content octets of its OCTET STRING.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the digest, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeTemplateDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a Kestrune public-key attribute value: the key octets as an OCTET STRING, as given.
 *
 * @param[in]     in      The key octets (borrowed); may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeKestrunePubKeyValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a Kestrune public-key attribute value: the content octets of its OCTET STRING.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the key octets, or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeKestrunePubKeyValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes an X.509-certificate attribute value: a certificate's DER carried in an OCTET STRING.
 *
 * The octets are not checked to be a certificate.
 *
 * @param[in]     in      The certificate's DER (borrowed); may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER of the value, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeX509CertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads an X.509-certificate attribute value: the certificate's DER out of its OCTET STRING.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the certificate's DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeX509CertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a Cyks-certificate attribute value: a certificate's DER carried in an OCTET STRING.
 *
 * The octets are not checked to be a certificate.
 *
 * @param[in]     in      The certificate's DER (borrowed); may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER of the value, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeCyksCertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a Cyks-certificate attribute value: the certificate's DER out of its OCTET STRING.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the certificate's DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeCyksCertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/**
 * Writes a token-serial-number attribute value as a UTF8String; the octets are not checked to be
 * UTF-8.
 *
 * @param[in]     in      The serial number's text (borrowed), no terminator; may be null when
 *                        @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeTokenSerialNumberValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a token-serial-number attribute value: the content octets of its UTF8String.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, no terminator added, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeTokenSerialNumberValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/**
 * Writes a content-type attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeContentTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a content-type attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeContentTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a security-token-type attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeSecurityTokenTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a security-token-type attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeSecurityTokenTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a channel-CSP-class attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeChannelCspClassValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a channel-CSP-class attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeChannelCspClassValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a request-certificate-status attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeRequestCertificateStatusValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a request-certificate-status attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeRequestCertificateStatusValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a signature-confirmation-type attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeSignatureConfirmationTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a signature-confirmation-type attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeSignatureConfirmationTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes a usage attribute value: the identifier as an OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The identifier, packed (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeUsageValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads a usage attribute value: its OBJECT IDENTIFIER, packed.
 *
 * @param[in]     in      The value's DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an identifier of more than
 *         255 content octets, which has no packed form.
 */
TV_API uint32_t DecodeRsaAttributeUsageValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/**
 * Writes a packet-digest-number attribute value: the number as an INTEGER in its shortest form.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributePacketDigestNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a packet-digest-number attribute value: its INTEGER as a signed 32-bit number.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributePacketDigestNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/**
 * Writes a packet-digest-count attribute value: the number as an INTEGER in its shortest form.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributePacketDigestCountValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a packet-digest-count attribute value: its INTEGER as a signed 32-bit number.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributePacketDigestCountValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/**
 * Writes a token-signature-number attribute value: the number as an INTEGER in its shortest form.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeTokenSignatureNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a token-signature-number attribute value: its INTEGER as a signed 32-bit number.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributeTokenSignatureNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/**
 * Writes a PIN-number attribute value: the number as an INTEGER in its shortest form.
 *
 * The PIN number is the caller's; the library neither makes nor checks it.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributePinNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a PIN-number attribute value: its INTEGER as a signed 32-bit number.
 *
 * The PIN number is the caller's; the library neither makes nor checks it.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributePinNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/**
 * Writes a request-certificate-type attribute value: the number as an INTEGER in its shortest form.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeRequestCertificateTypeValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a request-certificate-type attribute value: its INTEGER as a signed 32-bit number.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributeRequestCertificateTypeValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/**
 * Writes a validity-period attribute value: the number as an INTEGER in its shortest form.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeValidityPeriodValue(int32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads a validity-period attribute value: its INTEGER as a signed 32-bit number.
 *
 * @param[in]  in         The value's DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for an INTEGER of more than four
 *         content octets, which does not fit.
 */
TV_API uint32_t DecodeRsaAttributeValidityPeriodValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);

/* Signing time: the X.509 Time of the record (UTCTime before 2050, GeneralizedTime from then on). */
TV_API uint32_t EncodeRsaAttributeSigningTimeValue(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSigningTimeValue(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/* Certificate-identifier lists of the signing-certificate attributes (RFC 2634, RFC 5035, ETSI TS
 * 101 733). Hashes and serials are content octets; an issuer is copied in, and Get hands out a
 * reference into the list element. Issuer and serial go together: both or neither (32). */
typedef Asn1List ESSCertIDs;
typedef Asn1List ESSCertIDsV2;
typedef Asn1List OtherCertIDs;
TV_API uint32_t CreateESSCertIDs(ESSCertIDs** outList);
TV_API uint32_t FreeESSCertIDs(ESSCertIDs* list);
TV_API uint32_t GetESSCertIDCount(const ESSCertIDs* list, uint32_t* outCount);
TV_API uint32_t AddESSCertIDToList(ESSCertIDs* list, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
/* A hash buffer too small does not stop the call: issuer and serial are still handed out and 49 is
 * reported at the end. No issuerSerial: a null issuer and serial length 0. */
TV_API uint32_t GetESSCertIDInformation(const ESSCertIDs* list, uint32_t index, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
TV_API uint32_t CreateESSCertIDsV2(ESSCertIDsV2** outList);
TV_API uint32_t FreeESSCertIDsV2(ESSCertIDsV2* list);
TV_API uint32_t GetESSCertIDV2Count(const ESSCertIDsV2* list, uint32_t* outCount);
/* SHA-256 without parameters is the DEFAULT: left out of the encoding, read back when absent. */
TV_API uint32_t AddESSCertIDv2ToList(ESSCertIDsV2* list, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
TV_API uint32_t GetESSCertIDV2Information(const ESSCertIDsV2* list, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
TV_API uint32_t CreateOtherCertIDs(OtherCertIDs** outList);
TV_API uint32_t FreeOtherCertIDs(OtherCertIDs* list);
TV_API uint32_t GetOtherCertIDCount(const OtherCertIDs* list, uint32_t* outCount);
/* A null hash OID writes the hash as sha1Hash; an OID as otherHash { algorithm, hash }. */
TV_API uint32_t AddOtherCertIDToList(OtherCertIDs* list, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
/* sha1Hash: OID and parameter lengths 0. */
TV_API uint32_t GetOtherCertIDInformation(const OtherCertIDs* list, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
TV_API uint32_t EncodeOtherCertIDs(const OtherCertIDs* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeOtherCertIDs(const uint8_t* in, uint32_t inLen, OtherCertIDs** outList);

/* Signing-certificate values. The lists stay the caller's; policies may be null. Decoding hands out
 * new lists (policies null when absent). */
TV_API uint32_t EncodeRsaAttributeSigningCertificateValue(const ESSCertIDs* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSigningCertificateValue(const uint8_t* in, uint32_t inLen, ESSCertIDs** outCerts, CertificatePolicies** outPolicies);
TV_API uint32_t EncodeRsaAttributeSigningCertificateV2Value(const ESSCertIDsV2* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSigningCertificateV2Value(const uint8_t* in, uint32_t inLen, ESSCertIDsV2** outCerts, CertificatePolicies** outPolicies);
TV_API uint32_t EncodeRsaAttributeOtherSigningCertificateValue(const OtherCertIDs* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeOtherSigningCertificateValue(const uint8_t* in, uint32_t inLen, OtherCertIDs** outCerts, CertificatePolicies** outPolicies);

/* ATS hash index (ETSI TS 101 733). The three hash lists are SEQUENCE OF OCTET STRING lists
 * (CreateOctetStrings); the encoder borrows them. SHA-256 without parameters is the DEFAULT. When
 * decoding, an OID or parameters buffer too small gets its needed size and nothing else, the lists
 * are still handed out and the result is 0: compare each stored size with the room you gave. */
TV_API uint32_t EncodeRsaAttributeAtsHashIndex(const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const Asn1List* certificatesHashes, const Asn1List* crlsHashes, const Asn1List* unsignedAttrsHashes, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeAtsHashIndex(const uint8_t* in, uint32_t inLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, Asn1List** outCertificatesHashes, Asn1List** outCrlsHashes, Asn1List** outUnsignedAttrsHashes);

/* Complete revocation references (ETSI TS 101 733): a list of CrlOcspRef, each holding a CRL
 * identifier list, an OCSP identifier list and/or another reference. Add takes the two identifier
 * lists over on success only; Get hands out references into the element (null when absent) and the
 * other reference's OID and value under the size protocol (length 0 when absent). */
typedef Asn1List CrlOcspRefs;
typedef Asn1List CrlListIDs;
typedef Asn1List OcspListIDs;
TV_API uint32_t CreateCrlOcspRefs(CrlOcspRefs** outList);
TV_API uint32_t FreeCrlOcspRefs(CrlOcspRefs* list);
TV_API uint32_t GetCrlOcspRefCount(const CrlOcspRefs* list, uint32_t* outCount);
TV_API uint32_t AddCrlOcspRefToList(CrlOcspRefs* list, CrlListIDs* crlIds, OcspListIDs* ocspIds, const uint8_t* otherType, const uint8_t* otherValue, uint32_t otherValueLen);
TV_API uint32_t GetCrlOcspRefInformation(const CrlOcspRefs* list, uint32_t index, CrlListIDs** outCrlIds, OcspListIDs** outOcspIds, uint8_t* outOtherType, uint32_t* outOtherTypeLen, uint8_t* outOtherValue, uint32_t* outOtherValueLen);
TV_API uint32_t EncodeRsaAttributeCompleteRevocationRefs(const CrlOcspRefs* list, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeCompleteRevocationRefs(const uint8_t* in, uint32_t inLen, CrlOcspRefs** outList);
/* A CRL identifier: the hash (sha1Hash without an algorithm), and when an issuer is given the
 * crlIdentifier { issuer copied, issued time as UTCTime, number when given }. The issued time is
 * read with the library's lone UTCTime reader, which wants 15 octets (a 13-octet UTCTime is 307). */
TV_API uint32_t CreateCrlListIDs(CrlListIDs** outList);
TV_API uint32_t FreeCrlListIDs(CrlListIDs* list);
TV_API uint32_t GetCrlListIDsCount(const CrlListIDs* list, uint32_t* outCount);
TV_API uint32_t AddCrlValidatedIdToList(CrlListIDs* list, const uint8_t* hash, uint32_t hashLen, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const X509Name* crlIssuer, const LibraryTime* crlIssuedTime, const uint8_t* crlNumber, uint32_t crlNumberLen);
TV_API uint32_t GetCrlValidatedIdInformation(const CrlListIDs* list, uint32_t index, uint8_t* outHash, uint32_t* outHashLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, X509Name** outCrlIssuer, LibraryTime* outCrlIssuedTime, uint8_t* outCrlNumber, uint32_t* outCrlNumberLen);
/* An OCSP response identifier: the responder by name (copied) or, without a name, by its key hash;
 * producedAt required; the response hash when given (sha1Hash without an algorithm). */
TV_API uint32_t CreateOcspListIDs(OcspListIDs** outList);
TV_API uint32_t FreeOcspListIDs(OcspListIDs* list);
TV_API uint32_t GetOcspListIDsCount(const OcspListIDs* list, uint32_t* outCount);
TV_API uint32_t AddOcspResponseIdToList(OcspListIDs* list, const X509Name* responderName, const uint8_t* responderKeyHash, uint32_t responderKeyHashLen, const LibraryTime* producedAt, const uint8_t* responseHash, uint32_t responseHashLen, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen);
TV_API uint32_t GetOcspResponseIdInformation(const OcspListIDs* list, uint32_t index, X509Name** outResponderName, uint8_t* outResponderKeyHash, uint32_t* outResponderKeyHashLen, LibraryTime* outProducedAt, uint8_t* outResponseHash, uint32_t* outResponseHashLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen);

/* Revocation values (ETSI TS 101 733): decoded CRLs and basic OCSP responses, lent to the encoder,
 * and/or another value { type, value }. At least one is required (32). Decoding hands out new lists
 * (null when absent) and the other value's OID and DER under the size protocol (length 0 when absent). */
TV_API uint32_t EncodeRsaAttributeRevocationValues(const X509Crls* crls, const OcspBasicResponses* ocspResponses, const uint8_t* otherType, const uint8_t* otherValue, uint32_t otherValueLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeRevocationValues(const uint8_t* in, uint32_t inLen, X509Crls** outCrls, OcspBasicResponses** outOcspResponses, uint8_t* outOtherType, uint32_t* outOtherTypeLen, uint8_t* outOtherValue, uint32_t* outOtherValueLen);

/* Validity { notBefore Time, notAfter Time }, each Time chosen by the year (UTCTime before 2050). */
TV_API uint32_t EncodeRsaAttributeValidityValue(const LibraryTime* notBefore, const LibraryTime* notAfter, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeValidityValue(const uint8_t* in, uint32_t inLen, LibraryTime* outNotBefore, LibraryTime* outNotAfter);

/* ExtSubjInfo { type OBJECT IDENTIFIER, value ANY }: the value is one complete DER element. */
TV_API uint32_t EncodeRsaAttributeExtSubjInfoValue(const uint8_t* packedOid, const uint8_t* value, uint32_t valueLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeExtSubjInfoValue(const uint8_t* in, uint32_t inLen, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outValue, uint32_t* outValueLen);

/* DocInfo { docKind ENUMERATED, docText1..3 [0..2] UTF8String, docDate1..2 [3..4] GeneralizedTime,
 * docText4 [5] UTF8String, all but the kind OPTIONAL }. A text is written when its pointer is not
 * null, a date when it is not the null time; absent ones read back as length 0 and the null time.
 * Decoding reads every field even after one fails and returns the last failing field's code. */
TV_API uint32_t EncodeDocInfo(uint32_t docKind, const uint8_t* docText1, uint32_t docText1Len, const uint8_t* docText2, uint32_t docText2Len, const uint8_t* docText3, uint32_t docText3Len, const LibraryTime* docDate1, const LibraryTime* docDate2, const uint8_t* docText4, uint32_t docText4Len, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeDocInfo(const uint8_t* in, uint32_t inLen, uint32_t* outDocKind, uint8_t* outDocText1, uint32_t* outDocText1Len, uint8_t* outDocText2, uint32_t* outDocText2Len, uint8_t* outDocText3, uint32_t* outDocText3Len, LibraryTime* outDocDate1, LibraryTime* outDocDate2, uint8_t* outDocText4, uint32_t* outDocText4Len);

#ifdef __cplusplus
}
#endif

#endif
