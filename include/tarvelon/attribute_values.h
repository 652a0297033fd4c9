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

/**
 * Writes a signing-time attribute value: the record as an X.509 Time, UTCTime before 2050 and
 * GeneralizedTime from then on.
 *
 * @param[in]     time    The signing time (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a null @p time. A record that cannot be
 *         written as a time answers #TV_ERR_NO_MEMORY (1), not 313.
 */
TV_API uint32_t EncodeRsaAttributeSigningTimeValue(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
/**
 * Reads a signing-time attribute value written as either alternative of an X.509 Time.
 *
 * @param[in]  in       The value's DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outTime  Receives the signing time.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeSigningTimeValue(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/** List of ESSCertID certificate identifiers (RFC 2634), the certs of a signing-certificate value. */
typedef Asn1List ESSCertIDs;
/** List of ESSCertIDv2 certificate identifiers (RFC 5035), the certs of a signing-certificate-v2 value. */
typedef Asn1List ESSCertIDsV2;
/** List of OtherCertID certificate identifiers (ETSI TS 101 733), as other-signing-certificate holds. */
typedef Asn1List OtherCertIDs;
/**
 * Creates an empty list of ESSCertID identifiers.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeESSCertIDs()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateESSCertIDs(ESSCertIDs** outList);
/**
 * Frees a list of ESSCertID identifiers with every identifier in it.
 *
 * @param[in] list  The list (taken over), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeESSCertIDs(ESSCertIDs* list);
/**
 * Counts the identifiers of an ESSCertID list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of identifiers.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetESSCertIDCount(const ESSCertIDs* list, uint32_t* outCount);
/**
 * Appends an ESSCertID: the certificate's hash and, optionally, its issuer and serial number.
 *
 * Issuer and serial go together: give both or neither. Nothing is added when the call fails.
 *
 * @param[in,out] list       The list (borrowed).
 * @param[in]     hash       The certificate's hash (borrowed), written as given.
 * @param[in]     hashLen    Octets in @p hash.
 * @param[in]     issuer     The issuer's names (borrowed, copied), or null for no issuerSerial.
 * @param[in]     serial     The serial number's INTEGER content octets (borrowed), or null with
 *                           @p issuer.
 * @param[in]     serialLen  Octets in @p serial.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when only one of @p issuer and
 *         @p serial is given.
 */
TV_API uint32_t AddESSCertIDToList(ESSCertIDs* list, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
/**
 * Reads the hash, issuer and serial number of one ESSCertID.
 *
 * A hash buffer too small does not stop the call: issuer and serial are still handed out and
 * #TV_ERR_BUFFER_TOO_SMALL is reported at the end. Without an issuerSerial the issuer is null and
 * the serial length 0.
 *
 * @param[in]     list          The list (borrowed).
 * @param[in]     index         Position of the identifier, from 0.
 * @param[out]    outHash       Caller buffer for the hash, or null to ask its size.
 * @param[in,out] outHashLen    Room in @p outHash; the octets written or needed (@ref size_protocol).
 * @param[out]    outIssuer     Receives the issuer's names, lent by @p list (do not free), or null.
 * @param[out]    outSerial     Caller buffer for the serial's INTEGER content octets, or null to ask.
 * @param[in,out] outSerialLen  Room in @p outSerial; the octets written or needed.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry.
 */
TV_API uint32_t GetESSCertIDInformation(const ESSCertIDs* list, uint32_t index, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Creates an empty list of ESSCertIDv2 identifiers.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeESSCertIDsV2()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateESSCertIDsV2(ESSCertIDsV2** outList);
/**
 * Frees a list of ESSCertIDv2 identifiers with every identifier in it.
 *
 * @param[in] list  The list (taken over), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeESSCertIDsV2(ESSCertIDsV2* list);
/**
 * Counts the identifiers of an ESSCertIDv2 list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of identifiers.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetESSCertIDV2Count(const ESSCertIDsV2* list, uint32_t* outCount);
/**
 * Appends an ESSCertIDv2: the hash algorithm, the certificate's hash and, optionally, its issuer
 * and serial number.
 *
 * The algorithm is stored as given; SHA-256 without parameters is the DEFAULT, left out of the
 * encoding and read back when absent. Issuer and serial go together: give both or neither.
 * Nothing is added when the call fails.
 *
 * @param[in,out] list           The list (borrowed).
 * @param[in]     hashOid        The hash algorithm, packed (borrowed); required.
 * @param[in]     hashParams     The algorithm's parameters as one DER element (borrowed), or null.
 * @param[in]     hashParamsLen  Octets in @p hashParams.
 * @param[in]     hash           The certificate's hash (borrowed), written as given.
 * @param[in]     hashLen        Octets in @p hash.
 * @param[in]     issuer         The issuer's names (borrowed, copied), or null for no issuerSerial.
 * @param[in]     serial         The serial number's INTEGER content octets (borrowed), or null with
 *                               @p issuer.
 * @param[in]     serialLen      Octets in @p serial.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when only one of @p issuer and
 *         @p serial is given.
 */
TV_API uint32_t AddESSCertIDv2ToList(ESSCertIDsV2* list, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
/**
 * Reads the hash algorithm, hash, issuer and serial number of one ESSCertIDv2.
 *
 * Every part is read even when a buffer before it is too small; the first failure in field order
 * is reported. Absent parameters read as length 0; without an issuerSerial the issuer is null and
 * the serial length 0.
 *
 * @param[in]     list              The list (borrowed).
 * @param[in]     index             Position of the identifier, from 0.
 * @param[out]    outHashOid        Caller buffer for the packed algorithm OID, or null to ask its size.
 * @param[in,out] outHashOidLen     Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams     Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen  Room in @p outHashParams; the octets written or needed; may be
 *                                  null (with a null @p outHashParams) when the parameters are not
 *                                  wanted.
 * @param[out]    outHash           Caller buffer for the hash, or null to ask its size.
 * @param[in,out] outHashLen        Room in @p outHash; the octets written or needed.
 * @param[out]    outIssuer         Receives the issuer's names, lent by @p list (do not free), or null.
 * @param[out]    outSerial         Caller buffer for the serial's INTEGER content octets, or null.
 * @param[in,out] outSerialLen      Room in @p outSerial; the octets written or needed
 *                                  (@ref size_protocol for every buffer).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry.
 */
TV_API uint32_t GetESSCertIDV2Information(const ESSCertIDsV2* list, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Creates an empty list of OtherCertID identifiers.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeOtherCertIDs()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOtherCertIDs(OtherCertIDs** outList);
/**
 * Frees a list of OtherCertID identifiers with every identifier in it.
 *
 * @param[in] list  The list (taken over), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOtherCertIDs(OtherCertIDs* list);
/**
 * Counts the identifiers of an OtherCertID list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of identifiers.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOtherCertIDCount(const OtherCertIDs* list, uint32_t* outCount);
/**
 * Appends an OtherCertID: the certificate's hash and, optionally, its issuer and serial number.
 *
 * A null @p hashOid writes the hash as sha1Hash (the parameters are then ignored); an OID writes
 * otherHash { algorithm, hash }. Issuer and serial go together: give both or neither. Nothing is
 * added when the call fails.
 *
 * @param[in,out] list           The list (borrowed).
 * @param[in]     hashOid        The hash algorithm, packed (borrowed), or null for sha1Hash.
 * @param[in]     hashParams     The algorithm's parameters as one DER element (borrowed), or null.
 * @param[in]     hashParamsLen  Octets in @p hashParams.
 * @param[in]     hash           The certificate's hash (borrowed), written as given.
 * @param[in]     hashLen        Octets in @p hash.
 * @param[in]     issuer         The issuer's names (borrowed, copied), or null for no issuerSerial.
 * @param[in]     serial         The serial number's INTEGER content octets (borrowed), or null with
 *                               @p issuer.
 * @param[in]     serialLen      Octets in @p serial.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when only one of @p issuer and
 *         @p serial is given.
 */
TV_API uint32_t AddOtherCertIDToList(OtherCertIDs* list, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const uint8_t* hash, uint32_t hashLen, const GeneralNames* issuer, const uint8_t* serial, uint32_t serialLen);
/**
 * Reads the hash algorithm, hash, issuer and serial number of one OtherCertID.
 *
 * A sha1Hash reads as OID and parameter lengths 0. Every part is read even when a buffer before it
 * is too small; the first failure in field order is reported. Without an issuerSerial the issuer
 * is null and the serial length 0.
 *
 * @param[in]     list              The list (borrowed).
 * @param[in]     index             Position of the identifier, from 0.
 * @param[out]    outHashOid        Caller buffer for the packed algorithm OID, or null to ask its size.
 * @param[in,out] outHashOidLen     Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams     Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen  Room in @p outHashParams; the octets written or needed.
 * @param[out]    outHash           Caller buffer for the hash, or null to ask its size.
 * @param[in,out] outHashLen        Room in @p outHash; the octets written or needed.
 * @param[out]    outIssuer         Receives the issuer's names, lent by @p list (do not free), or null.
 * @param[out]    outSerial         Caller buffer for the serial's INTEGER content octets, or null.
 * @param[in,out] outSerialLen      Room in @p outSerial; the octets written or needed
 *                                  (@ref size_protocol for every buffer).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry.
 */
TV_API uint32_t GetOtherCertIDInformation(const OtherCertIDs* list, uint32_t index, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, uint8_t* outHash, uint32_t* outHashLen, GeneralNames** outIssuer, uint8_t* outSerial, uint32_t* outSerialLen);
/**
 * Writes an OtherCertID list as its SEQUENCE OF.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeOtherCertIDs(const OtherCertIDs* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a SEQUENCE OF OtherCertID; octets after the first complete element are ignored.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeOtherCertIDs()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeOtherCertIDs(const uint8_t* in, uint32_t inLen, OtherCertIDs** outList);

/**
 * Writes a signing-certificate attribute value (RFC 2634): the identifiers and, optionally, the
 * policies.
 *
 * @param[in]     certs     The identifiers (borrowed: they stay the caller's).
 * @param[in]     policies  The policies (borrowed), or null to leave them out.
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeSigningCertificateValue(const ESSCertIDs* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
/**
 * Reads a signing-certificate attribute value (RFC 2634) into new lists.
 *
 * @param[in]  in           The value's DER (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outCerts     Receives a new list owned by the caller (FreeESSCertIDs()).
 * @param[out] outPolicies  Receives new policies owned by the caller
 *                          (FreeExtensionCertificatePolicies()), or null when absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeSigningCertificateValue(const uint8_t* in, uint32_t inLen, ESSCertIDs** outCerts, CertificatePolicies** outPolicies);
/**
 * Writes a signing-certificate-v2 attribute value (RFC 5035): the identifiers and, optionally, the
 * policies.
 *
 * @param[in]     certs     The identifiers (borrowed: they stay the caller's).
 * @param[in]     policies  The policies (borrowed), or null to leave them out.
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeSigningCertificateV2Value(const ESSCertIDsV2* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
/**
 * Reads a signing-certificate-v2 attribute value (RFC 5035) into new lists.
 *
 * @param[in]  in           The value's DER (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outCerts     Receives a new list owned by the caller (FreeESSCertIDsV2()).
 * @param[out] outPolicies  Receives new policies owned by the caller
 *                          (FreeExtensionCertificatePolicies()), or null when absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeSigningCertificateV2Value(const uint8_t* in, uint32_t inLen, ESSCertIDsV2** outCerts, CertificatePolicies** outPolicies);
/**
 * Writes an other-signing-certificate attribute value (ETSI TS 101 733): the identifiers and,
 * optionally, the policies.
 *
 * @param[in]     certs     The identifiers (borrowed: they stay the caller's).
 * @param[in]     policies  The policies (borrowed), or null to leave them out.
 * @param[out]    out       Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen    Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeOtherSigningCertificateValue(const OtherCertIDs* certs, const CertificatePolicies* policies, uint8_t* out, uint32_t* outLen);
/**
 * Reads an other-signing-certificate attribute value (ETSI TS 101 733) into new lists.
 *
 * @param[in]  in           The value's DER (borrowed).
 * @param[in]  inLen        Octets in @p in.
 * @param[out] outCerts     Receives a new list owned by the caller (FreeOtherCertIDs()).
 * @param[out] outPolicies  Receives new policies owned by the caller
 *                          (FreeExtensionCertificatePolicies()), or null when absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeOtherSigningCertificateValue(const uint8_t* in, uint32_t inLen, OtherCertIDs** outCerts, CertificatePolicies** outPolicies);

/**
 * Writes an ATS hash index attribute value (ETSI TS 101 733): the hash algorithm and the hashes of
 * the certificates, CRLs and unsigned attributes.
 *
 * SHA-256 without parameters is the DEFAULT and is left out of the encoding. The three lists are
 * SEQUENCE OF OCTET STRING lists (CreateOctetStrings()); they may be empty but not null.
 *
 * @param[in]     hashOid              The hash algorithm, packed (borrowed); required.
 * @param[in]     hashParams           The algorithm's parameters as one DER element (borrowed), or null.
 * @param[in]     hashParamsLen        Octets in @p hashParams.
 * @param[in]     certificatesHashes   Hashes of the certificates (borrowed).
 * @param[in]     crlsHashes           Hashes of the CRLs (borrowed).
 * @param[in]     unsignedAttrsHashes  Hashes of the unsigned attributes (borrowed).
 * @param[out]    out                  Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen               Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeAtsHashIndex(const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const Asn1List* certificatesHashes, const Asn1List* crlsHashes, const Asn1List* unsignedAttrsHashes, uint8_t* out, uint32_t* outLen);
/**
 * Reads an ATS hash index attribute value (ETSI TS 101 733): the hash algorithm and three new hash
 * lists.
 *
 * An absent algorithm reads as the DEFAULT, SHA-256 without parameters. It is told apart from the
 * certificates' hash list by the first element: a SEQUENCE that begins with an OBJECT IDENTIFIER is
 * the algorithm, anything else (an empty SEQUENCE too) the list. Kept on purpose: an OID or
 * parameters buffer too small only gets the size needed, the lists are still handed out and the
 * result is #TV_OK; compare each stored size with the room you gave.
 *
 * @param[in]     in                      The value's DER (borrowed).
 * @param[in]     inLen                   Octets in @p in.
 * @param[out]    outHashOid              Caller buffer for the packed algorithm OID, or null to ask.
 * @param[in,out] outHashOidLen           Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams           Caller buffer for the parameters' DER, or null to ask.
 * @param[in,out] outHashParamsLen        Room in @p outHashParams; the octets written or needed
 *                                        (0 when absent); may be null with a null @p outHashParams.
 * @param[out]    outCertificatesHashes   Receives a new list owned by the caller (FreeOctetStrings()).
 * @param[out]    outCrlsHashes           Receives a new list owned by the caller (FreeOctetStrings()).
 * @param[out]    outUnsignedAttrsHashes  Receives a new list owned by the caller (FreeOctetStrings()).
 * @return #TV_OK, also when an OID or parameters buffer was too small, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeAtsHashIndex(const uint8_t* in, uint32_t inLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, Asn1List** outCertificatesHashes, Asn1List** outCrlsHashes, Asn1List** outUnsignedAttrsHashes);

/** List of CrlOcspRef entries (ETSI TS 101 733), the complete-revocation-references value. */
typedef Asn1List CrlOcspRefs;
/** List of CrlValidatedID entries: the CRL identifiers of one CrlOcspRef. */
typedef Asn1List CrlListIDs;
/** List of OcspResponsesID entries: the OCSP response identifiers of one CrlOcspRef. */
typedef Asn1List OcspListIDs;
/**
 * Creates an empty list of CrlOcspRef entries.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeCrlOcspRefs()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCrlOcspRefs(CrlOcspRefs** outList);
/**
 * Frees a list of CrlOcspRef entries with everything in them, the identifier lists taken over by
 * AddCrlOcspRefToList() included.
 *
 * @param[in] list  The list (taken over), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeCrlOcspRefs(CrlOcspRefs* list);
/**
 * Counts the entries of a CrlOcspRef list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of entries.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCrlOcspRefCount(const CrlOcspRefs* list, uint32_t* outCount);
/**
 * Appends a CrlOcspRef: a CRL identifier list, an OCSP identifier list and/or another reference
 * { type, value }.
 *
 * The two identifier lists are taken over on success only; after a failure they stay the caller's.
 * The other reference is written only when its type, value and length are all given.
 *
 * @param[in,out] list           The list (borrowed).
 * @param[in]     crlIds         CRL identifiers (taken over on success: freed with @p list), or null.
 * @param[in]     ocspIds        OCSP identifiers (taken over on success: freed with @p list), or null.
 * @param[in]     otherType      The other reference's type, packed OID (borrowed), or null.
 * @param[in]     otherValue     The other reference as one complete DER element (borrowed), or null.
 * @param[in]     otherValueLen  Octets in @p otherValue.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when none of the three parts is
 *         given, or @p otherValue is not one complete element.
 */
TV_API uint32_t AddCrlOcspRefToList(CrlOcspRefs* list, CrlListIDs* crlIds, OcspListIDs* ocspIds, const uint8_t* otherType, const uint8_t* otherValue, uint32_t otherValueLen);
/**
 * Reads the parts of one CrlOcspRef.
 *
 * Both parts of the other reference are read even when the first buffer is too small; absent, they
 * read as length 0.
 *
 * @param[in]     list              The list (borrowed).
 * @param[in]     index             Position of the entry, from 0.
 * @param[out]    outCrlIds         Receives the CRL identifiers, lent by @p list (do not free), or
 *                                  null when absent.
 * @param[out]    outOcspIds        Receives the OCSP identifiers, lent by @p list (do not free), or
 *                                  null when absent.
 * @param[out]    outOtherType      Caller buffer for the other type's packed OID, or null to ask.
 * @param[in,out] outOtherTypeLen   Room in @p outOtherType; the octets written or needed.
 * @param[out]    outOtherValue     Caller buffer for the other value's DER, or null to ask.
 * @param[in,out] outOtherValueLen  Room in @p outOtherValue; the octets written or needed
 *                                  (@ref size_protocol for both buffers).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry.
 */
TV_API uint32_t GetCrlOcspRefInformation(const CrlOcspRefs* list, uint32_t index, CrlListIDs** outCrlIds, OcspListIDs** outOcspIds, uint8_t* outOtherType, uint32_t* outOtherTypeLen, uint8_t* outOtherValue, uint32_t* outOtherValueLen);
/**
 * Writes a complete-revocation-references attribute value (ETSI TS 101 733): the CrlOcspRef list
 * as its SEQUENCE OF.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeRsaAttributeCompleteRevocationRefs(const CrlOcspRefs* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a complete-revocation-references attribute value into a new CrlOcspRef list; octets after
 * the first complete element are ignored.
 *
 * @param[in]  in       The value's DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller (FreeCrlOcspRefs()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeCompleteRevocationRefs(const uint8_t* in, uint32_t inLen, CrlOcspRefs** outList);
/**
 * Creates an empty list of CRL identifiers.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeCrlListIDs(), or handed to
 *                      AddCrlOcspRefToList()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateCrlListIDs(CrlListIDs** outList);
/**
 * Frees a list of CRL identifiers with every identifier in it.
 *
 * @param[in] list  The list (taken over), or null; never one that AddCrlOcspRefToList() took over.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeCrlListIDs(CrlListIDs* list);
/**
 * Counts the identifiers of a CRL identifier list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of identifiers.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetCrlListIDsCount(const CrlListIDs* list, uint32_t* outCount);
/**
 * Appends a CRL identifier: the CRL's hash and, when an issuer is given, the crlIdentifier
 * { issuer, issued time, number }.
 *
 * A null @p hashOid writes the hash as sha1Hash, without an algorithm; an OID writes otherHash
 * { algorithm, hash }. The issued time is written as UTCTime, which keeps two year digits: only
 * years 1950 to 2049 read back as written. Without an issuer the time and number are ignored; the
 * number is written only when its length is not 0. Nothing is added when the call fails.
 *
 * @param[in,out] list           The list (borrowed).
 * @param[in]     hash           The CRL's hash (borrowed); required.
 * @param[in]     hashLen        Octets in @p hash.
 * @param[in]     hashOid        The hash algorithm, packed (borrowed), or null for sha1Hash.
 * @param[in]     hashParams     The algorithm's parameters as one DER element (borrowed), or null.
 * @param[in]     hashParamsLen  Octets in @p hashParams.
 * @param[in]     crlIssuer      The CRL's issuer (borrowed, copied), or null for no crlIdentifier.
 * @param[in]     crlIssuedTime  The CRL's issue time (borrowed); required with @p crlIssuer.
 * @param[in]     crlNumber      The CRL number's INTEGER content octets (borrowed), or null.
 * @param[in]     crlNumberLen   Octets in @p crlNumber.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an issuer without an issued
 *         time, #TV_ERR_TIME (313) for an issued time that cannot be written.
 */
TV_API uint32_t AddCrlValidatedIdToList(CrlListIDs* list, const uint8_t* hash, uint32_t hashLen, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen, const X509Name* crlIssuer, const LibraryTime* crlIssuedTime, const uint8_t* crlNumber, uint32_t crlNumberLen);
/**
 * Reads the hash, algorithm, issuer, issued time and number of one CRL identifier.
 *
 * Every part is read even after one fails, and the first failure in field order is reported. A
 * sha1Hash reads as OID and parameter lengths 0. Without a crlIdentifier the issuer is null, the
 * time the null time and the number length 0. Kept as it is: the issued time is read with the
 * library's lone UTCTime reader, which wants 15 octets, so a DER UTCTime (13 octets) answers
 * #TV_ERR_NOT_DER (307) while every other part is still handed out.
 *
 * @param[in]     list              The list (borrowed).
 * @param[in]     index             Position of the identifier, from 0.
 * @param[out]    outHash           Caller buffer for the hash, or null to ask its size.
 * @param[in,out] outHashLen        Room in @p outHash; the octets written or needed.
 * @param[out]    outHashOid        Caller buffer for the packed algorithm OID, or null to ask its size.
 * @param[in,out] outHashOidLen     Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams     Caller buffer for the parameters' DER, or null to ask its size.
 * @param[in,out] outHashParamsLen  Room in @p outHashParams; the octets written or needed.
 * @param[out]    outCrlIssuer      Receives the issuer, lent by @p list (do not free), or null.
 * @param[out]    outCrlIssuedTime  Receives the issued time.
 * @param[out]    outCrlNumber      Caller buffer for the number's INTEGER content octets, or null.
 * @param[in,out] outCrlNumberLen   Room in @p outCrlNumber; the octets written or needed
 *                                  (@ref size_protocol for every buffer).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry.
 */
TV_API uint32_t GetCrlValidatedIdInformation(const CrlListIDs* list, uint32_t index, uint8_t* outHash, uint32_t* outHashLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen, X509Name** outCrlIssuer, LibraryTime* outCrlIssuedTime, uint8_t* outCrlNumber, uint32_t* outCrlNumberLen);
/**
 * Creates an empty list of OCSP response identifiers.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeOcspListIDs(), or handed to
 *                      AddCrlOcspRefToList()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateOcspListIDs(OcspListIDs** outList);
/**
 * Frees a list of OCSP response identifiers with every identifier in it.
 *
 * @param[in] list  The list (taken over), or null; never one that AddCrlOcspRefToList() took over.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeOcspListIDs(OcspListIDs* list);
/**
 * Counts the identifiers of an OCSP response identifier list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of identifiers.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetOcspListIDsCount(const OcspListIDs* list, uint32_t* outCount);
/**
 * Appends an OCSP response identifier: the responder, the time the response was produced and,
 * optionally, the response's hash.
 *
 * The responder is recorded by name when one is given (the key hash is then ignored), otherwise by
 * its key hash (byKey). A null @p hashOid writes the response hash as sha1Hash, without an
 * algorithm. Nothing is added when the call fails.
 *
 * @param[in,out] list                 The list (borrowed).
 * @param[in]     responderName        The responder's name (borrowed, copied), or null.
 * @param[in]     responderKeyHash     The responder's key hash (borrowed), used without a name.
 * @param[in]     responderKeyHashLen  Octets in @p responderKeyHash.
 * @param[in]     producedAt           The response's producedAt time (borrowed); required.
 * @param[in]     responseHash         The response's hash (borrowed), or null to leave it out.
 * @param[in]     responseHashLen      Octets in @p responseHash.
 * @param[in]     hashOid              The hash algorithm, packed (borrowed), or null for sha1Hash.
 * @param[in]     hashParams           The algorithm's parameters as one DER element (borrowed), or null.
 * @param[in]     hashParamsLen        Octets in @p hashParams.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when neither name nor key hash
 *         is given, #TV_ERR_TIME (313) for a producedAt that cannot be written.
 */
TV_API uint32_t AddOcspResponseIdToList(OcspListIDs* list, const X509Name* responderName, const uint8_t* responderKeyHash, uint32_t responderKeyHashLen, const LibraryTime* producedAt, const uint8_t* responseHash, uint32_t responseHashLen, const uint8_t* hashOid, const uint8_t* hashParams, uint32_t hashParamsLen);
/**
 * Reads the responder, producedAt time and response hash of one OCSP response identifier.
 *
 * Every part is read even after one fails; the first failure among key hash, time and response
 * hash is reported. A responder by name reads as key hash length 0, one by key as a null name.
 * Without a response hash its length, OID and parameter lengths are 0; a sha1Hash has OID and
 * parameter lengths 0.
 *
 * @param[in]     list                    The list (borrowed).
 * @param[in]     index                   Position of the identifier, from 0.
 * @param[out]    outResponderName        Receives the responder's name, lent by @p list (do not
 *                                        free), or null.
 * @param[out]    outResponderKeyHash     Caller buffer for the key hash, or null to ask its size.
 * @param[in,out] outResponderKeyHashLen  Room in @p outResponderKeyHash; the octets written or needed.
 * @param[out]    outProducedAt           Receives the producedAt time.
 * @param[out]    outResponseHash         Caller buffer for the response hash, or null to ask.
 * @param[in,out] outResponseHashLen      Room in @p outResponseHash; the octets written or needed.
 * @param[out]    outHashOid              Caller buffer for the packed algorithm OID, or null to ask.
 * @param[in,out] outHashOidLen           Room in @p outHashOid; the octets written or needed.
 * @param[out]    outHashParams           Caller buffer for the parameters' DER, or null to ask.
 * @param[in,out] outHashParamsLen        Room in @p outHashParams; the octets written or needed
 *                                        (@ref size_protocol for every buffer).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index past the end,
 *         #TV_ERR_ABSENT (311) for an empty entry or one without its OCSP identifier.
 */
TV_API uint32_t GetOcspResponseIdInformation(const OcspListIDs* list, uint32_t index, X509Name** outResponderName, uint8_t* outResponderKeyHash, uint32_t* outResponderKeyHashLen, LibraryTime* outProducedAt, uint8_t* outResponseHash, uint32_t* outResponseHashLen, uint8_t* outHashOid, uint32_t* outHashOidLen, uint8_t* outHashParams, uint32_t* outHashParamsLen);

/**
 * Writes a revocation-values attribute value (ETSI TS 101 733): whole CRLs, basic OCSP responses
 * and/or another value { type, value }.
 *
 * The lists are lent for the one write and stay the caller's. The other value is written only when
 * its type, value and length are all given.
 *
 * @param[in]     crls           The CRLs (borrowed), or null.
 * @param[in]     ocspResponses  The basic OCSP responses (borrowed), or null.
 * @param[in]     otherType      The other value's type, packed OID (borrowed), or null.
 * @param[in]     otherValue     The other value as one complete DER element (borrowed), or null.
 * @param[in]     otherValueLen  Octets in @p otherValue.
 * @param[out]    out            Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen         Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when none of the three parts is
 *         given, or @p otherValue is not one complete element.
 */
TV_API uint32_t EncodeRsaAttributeRevocationValues(const X509Crls* crls, const OcspBasicResponses* ocspResponses, const uint8_t* otherType, const uint8_t* otherValue, uint32_t otherValueLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads a revocation-values attribute value (ETSI TS 101 733) into new lists and the other value.
 *
 * The other value's type and DER are read first, both even when one buffer is too small; any
 * failure there ends the call before the lists are handed out (@p outCrls and @p outOcspResponses
 * are then left as they were). Absent, the other value reads as lengths 0.
 *
 * @param[in]     in                The value's DER (borrowed).
 * @param[in]     inLen             Octets in @p in.
 * @param[out]    outCrls           Receives a new list owned by the caller (FreeX509Crls()), or null
 *                                  when absent.
 * @param[out]    outOcspResponses  Receives a new list owned by the caller (FreeOcspBasicResponses()),
 *                                  or null when absent.
 * @param[out]    outOtherType      Caller buffer for the other type's packed OID, or null to ask.
 * @param[in,out] outOtherTypeLen   Room in @p outOtherType; the octets written or needed.
 * @param[out]    outOtherValue     Caller buffer for the other value's DER, or null to ask.
 * @param[in,out] outOtherValueLen  Room in @p outOtherValue; the octets written or needed
 *                                  (@ref size_protocol for both buffers).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeRevocationValues(const uint8_t* in, uint32_t inLen, X509Crls** outCrls, OcspBasicResponses** outOcspResponses, uint8_t* outOtherType, uint32_t* outOtherTypeLen, uint8_t* outOtherValue, uint32_t* outOtherValueLen);

/**
 * Writes a validity attribute value: Validity { notBefore Time, notAfter Time }, each Time chosen
 * by its year (UTCTime before 2050, GeneralizedTime from then on).
 *
 * @param[in]     notBefore  Start of the period (borrowed).
 * @param[in]     notAfter   End of the period (borrowed).
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time that cannot be written.
 */
TV_API uint32_t EncodeRsaAttributeValidityValue(const LibraryTime* notBefore, const LibraryTime* notAfter, uint8_t* out, uint32_t* outLen);
/**
 * Reads a validity attribute value; each Time may be either alternative.
 *
 * @param[in]  in            The value's DER (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outNotBefore  Receives the start of the period.
 * @param[out] outNotAfter   Receives the end of the period.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeRsaAttributeValidityValue(const uint8_t* in, uint32_t inLen, LibraryTime* outNotBefore, LibraryTime* outNotAfter);

/**
 * Writes an ExtSubjInfo attribute value: { type OBJECT IDENTIFIER, value ANY }.
 *
 * @param[in]     packedOid  The type, packed (borrowed).
 * @param[in]     value      The value as one complete DER element (borrowed).
 * @param[in]     valueLen   Octets in @p value.
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also when @p value is not exactly one
 *         complete element.
 */
TV_API uint32_t EncodeRsaAttributeExtSubjInfoValue(const uint8_t* packedOid, const uint8_t* value, uint32_t valueLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads an ExtSubjInfo attribute value: the type, packed, and the value's complete DER element.
 *
 * Both parts are read even when the first buffer is too small; the type's failure is reported first.
 *
 * @param[in]     in           The value's DER (borrowed).
 * @param[in]     inLen        Octets in @p in.
 * @param[out]    outOid       Caller buffer for the packed type, or null to ask its size.
 * @param[in,out] outOidLen    Room in @p outOid; the octets written or needed.
 * @param[out]    outValue     Caller buffer for the value's DER, or null to ask its size.
 * @param[in,out] outValueLen  Room in @p outValue; the octets written or needed
 *                             (@ref size_protocol for both buffers).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the value part is missing (the type
 *         is still handed out).
 */
TV_API uint32_t DecodeRsaAttributeExtSubjInfoValue(const uint8_t* in, uint32_t inLen, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outValue, uint32_t* outValueLen);

/**
 * Writes a DocInfo attribute value: { docKind ENUMERATED, docText1..3 [0..2] UTF8String,
 * docDate1..2 [3..4] GeneralizedTime, docText4 [5] UTF8String }, all but the kind OPTIONAL.
 *
 * A text is written when its pointer is not null (even with length 0), a date when it is not the
 * null time (a null pointer counts as the null time). Texts are not checked to be UTF-8.
 *
 * @param[in]     docKind      The document kind.
 * @param[in]     docText1     First text (borrowed), or null to leave it out.
 * @param[in]     docText1Len  Octets in @p docText1.
 * @param[in]     docText2     Second text (borrowed), or null to leave it out.
 * @param[in]     docText2Len  Octets in @p docText2.
 * @param[in]     docText3     Third text (borrowed), or null to leave it out.
 * @param[in]     docText3Len  Octets in @p docText3.
 * @param[in]     docDate1     First date (borrowed), or null or the null time to leave it out.
 * @param[in]     docDate2     Second date (borrowed), or null or the null time to leave it out.
 * @param[in]     docText4     Fourth text (borrowed), or null to leave it out.
 * @param[in]     docText4Len  Octets in @p docText4.
 * @param[out]    out          Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a date that cannot be written.
 */
TV_API uint32_t EncodeDocInfo(uint32_t docKind, const uint8_t* docText1, uint32_t docText1Len, const uint8_t* docText2, uint32_t docText2Len, const uint8_t* docText3, uint32_t docText3Len, const LibraryTime* docDate1, const LibraryTime* docDate2, const uint8_t* docText4, uint32_t docText4Len, uint8_t* out, uint32_t* outLen);
/**
 * Reads a DocInfo attribute value: the kind, four texts and two dates.
 *
 * Absent texts read as length 0 and absent dates as the null time. Kept as callers have always had
 * it: every field is read even after one fails, and the code of the last failing field is returned.
 *
 * @param[in]     in              The value's DER (borrowed).
 * @param[in]     inLen           Octets in @p in.
 * @param[out]    outDocKind      Receives the document kind.
 * @param[out]    outDocText1     Caller buffer for the first text, or null to ask its size.
 * @param[in,out] outDocText1Len  Room in @p outDocText1; the octets written or needed.
 * @param[out]    outDocText2     Caller buffer for the second text, or null to ask its size.
 * @param[in,out] outDocText2Len  Room in @p outDocText2; the octets written or needed.
 * @param[out]    outDocText3     Caller buffer for the third text, or null to ask its size.
 * @param[in,out] outDocText3Len  Room in @p outDocText3; the octets written or needed.
 * @param[out]    outDocDate1     Receives the first date.
 * @param[out]    outDocDate2     Receives the second date.
 * @param[out]    outDocText4     Caller buffer for the fourth text, or null to ask its size.
 * @param[in,out] outDocText4Len  Room in @p outDocText4; the octets written or needed
 *                                (@ref size_protocol for every text).
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) also for a kind of more than four
 *         content octets.
 */
TV_API uint32_t DecodeDocInfo(const uint8_t* in, uint32_t inLen, uint32_t* outDocKind, uint8_t* outDocText1, uint32_t* outDocText1Len, uint8_t* outDocText2, uint32_t* outDocText2Len, uint8_t* outDocText3, uint32_t* outDocText3Len, LibraryTime* outDocDate1, LibraryTime* outDocDate2, uint8_t* outDocText4, uint32_t* outDocText4Len);

#ifdef __cplusplus
}
#endif

#endif
