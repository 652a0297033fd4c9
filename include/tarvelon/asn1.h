/* Tarvelon: the generic ASN.1 engine (descriptors, value trees, BER/DER codec, identifiers, leaves, lists). */
#ifndef TARVELON_ASN1_H
#define TARVELON_ASN1_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Value trees. */
TV_API uint32_t CreateAsn1Object(const Asn1Descriptor* descriptor, void** outValue, uint32_t leaves);
TV_API uint32_t CreateOptionalAsn1Sequence(const Asn1Descriptor* descriptor, void** outValue, uint32_t leaves);
TV_API uint32_t FreeAsn1Object(const Asn1Descriptor* descriptor, void* value);
TV_API uint32_t CompareAsn1Objects(const Asn1Descriptor* descriptor, const void* valueA, const void* valueB, uint32_t* outEqual);

/* Module ("tarvelon/<Module>.cpp") and line of the most recent failure; null before any failure. */
TV_API const char* GetLastFileErrorAsn(uint32_t* outLine);

/* Decoding and encoding. */
TV_API uint32_t GetAsn1ObjectInfo(const uint8_t* in, uint32_t inLen, uint8_t* outClass, uint8_t* outConstructed, uint32_t* outTag, uint32_t* outContentLen, uint32_t* outIndefinite, uint32_t* outHeaderLen);
TV_API uint32_t Asn1DecodeItem(const uint8_t* in, uint32_t inLen, const Asn1Descriptor* descriptor, void** outValue, uint32_t* outConsumed);
TV_API uint32_t Asn1Encode(const void* value, const Asn1Descriptor* descriptor, uint8_t** outBuffer, uint32_t* outLen);
TV_API uint32_t GetAsn1EncodedValue(const void* value, const Asn1Descriptor* descriptor, uint8_t* out, uint32_t* outLen);

/* Object identifiers; "packed" is one length octet followed by the DER contents. */
TV_API uint32_t IsOidEquals(const uint8_t* packedA, const uint8_t* packedB);
TV_API uint32_t IsOidAndAsn1ObjectIdentifierEquals(const uint8_t* packed, const Asn1Primitive* oidValue);
TV_API uint32_t EncodeAsn1Oid(const uint8_t* packed, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeAsn1Oid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t ConvertOidToString(const uint8_t* packed, char* out, uint32_t* outLen);
TV_API uint32_t ConvertStringToOid(const char* text, uint8_t* out, uint32_t* outLen);

/* Leaves. */
TV_API uint32_t GetAsn1Value(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetAsn1ValueAndType(const Asn1Primitive* value, uint32_t* outWord, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetAsn1ValueLength(const Asn1Primitive* value);
TV_API uint32_t GetAsn1Boolean(const Asn1Primitive* value, uint32_t* outFlag);
TV_API uint32_t CheckAsn1Boolean(const Asn1Primitive* value);
TV_API uint32_t GetAsn1Integer(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetAsn1Int32(const Asn1Primitive* value, uint8_t* outInt32);
TV_API uint32_t CheckAsn1Integer(const Asn1Primitive* value);
TV_API uint32_t SetAsn1Integer(Asn1Primitive* value, const uint8_t* littleEndian, uint32_t littleEndianLen);
TV_API uint32_t SetAsn1Int32(Asn1Primitive* value, int32_t number);
TV_API Asn1Primitive* AllocAsn1Integer(int32_t number);
TV_API Asn1Primitive* AllocAsn1Integer_s(const uint8_t* bigEndian, uint32_t bigEndianLen);
TV_API Asn1Primitive* AllocAsn1Boolean(uint32_t flag);
TV_API uint32_t EncodeAsn1Int32(int32_t number, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodeAsn1Int32(const uint8_t* in, uint32_t inLen, uint8_t* outInt32);
TV_API uint32_t GetAsn1BitString(const Asn1BitStringValue* value, uint8_t* outUnusedBits, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetAsn1AnyValue(const Asn1Primitive* value, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetAsn1AnyInfo(const Asn1Primitive* value, uint8_t* outClass, uint8_t* outConstructed, uint32_t* outTag, uint32_t* outContentLen, uint32_t* outHeaderLen);
TV_API uint32_t GetAsn1ChoiceUnderlyingType(void** inOutValue, const Asn1Descriptor** inOutDescriptor);

/* Lists and the octet-string collection (SEQUENCE OF OCTET STRING). */
TV_API uint32_t GetAsn1ListLength(const Asn1List* list);
TV_API uint32_t GetAsn1ListItem(const Asn1List* list, int32_t index, void** outItem);
TV_API uint32_t SetAsn1ListSorted(Asn1List* list, uint32_t sorted);
TV_API uint32_t CreateOctetStrings(Asn1List** outList);
TV_API uint32_t AddOctetStringsValue(Asn1List* list, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetOctetStringsCount(const Asn1List* list, uint32_t* outCount);
TV_API uint32_t GetOctetStringsValue(const Asn1List* list, uint32_t index, uint8_t* out, uint32_t* outLen);
TV_API uint32_t FreeOctetStrings(Asn1List* list);

#ifdef __cplusplus
}
#endif

#endif
