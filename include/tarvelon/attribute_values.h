/* Tarvelon: typed values of CMS, CAdES and private signature attributes. Each codec writes or reads
 * the DER of one attribute value; the caller stores it in an attribute list under the OID of its
 * choice. Writers follow the size protocol. */
#ifndef TARVELON_ATTRIBUTE_VALUES_H
#define TARVELON_ATTRIBUTE_VALUES_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"

#ifdef __cplusplus
extern "C" {
#endif

/* OCTET STRING values: the octets as given. */
TV_API uint32_t EncodeRsaAttributeMessageDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeMessageDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeTemplateDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeTemplateDigestValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeKestrunePubKeyValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeKestrunePubKeyValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/* A certificate's DER carried in an OCTET STRING. */
TV_API uint32_t EncodeRsaAttributeX509CertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeX509CertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeCyksCertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeCyksCertificateValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* UTF8String value. */
TV_API uint32_t EncodeRsaAttributeTokenSerialNumberValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeTokenSerialNumberValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* OBJECT IDENTIFIER values: packed OID in, packed OID out. */
TV_API uint32_t EncodeRsaAttributeContentTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeContentTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeSecurityTokenTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSecurityTokenTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeChannelCspClassValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeChannelCspClassValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeRequestCertificateStatusValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeRequestCertificateStatusValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeSignatureConfirmationTypeValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSignatureConfirmationTypeValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeRsaAttributeUsageValue(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeUsageValue(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* INTEGER values from and to a signed 32-bit number. */
TV_API uint32_t EncodeRsaAttributePacketDigestNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributePacketDigestNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
TV_API uint32_t EncodeRsaAttributePacketDigestCountValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributePacketDigestCountValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
TV_API uint32_t EncodeRsaAttributeTokenSignatureNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeTokenSignatureNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
/* The PIN number is the caller's; the library neither makes nor checks it. */
TV_API uint32_t EncodeRsaAttributePinNumberValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributePinNumberValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
TV_API uint32_t EncodeRsaAttributeRequestCertificateTypeValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeRequestCertificateTypeValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);
TV_API uint32_t EncodeRsaAttributeValidityPeriodValue(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeValidityPeriodValue(const uint8_t* in, uint32_t inLen, int32_t* outNumber);

/* Signing time: the X.509 Time of the record (UTCTime before 2050, GeneralizedTime from then on). */
TV_API uint32_t EncodeRsaAttributeSigningTimeValue(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeRsaAttributeSigningTimeValue(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

#ifdef __cplusplus
}
#endif

#endif
