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
