/* Tarvelon: distinguished names (the RDNSequence form of the RFC 5280 Name), general names and free text. */
#ifndef TARVELON_X509NAME_H
#define TARVELON_X509NAME_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A name is a list of RDNs in wire order; an RDN is a list of {type, value} entries whose value is
 * the whole attribute element (identifier, length, contents). */
typedef Asn1List X509Name;
/* A list of general names; each is a choice record whose index is the kind 0..8 of RFC 5280. */
typedef Asn1List GeneralNames;
typedef Asn1ChoiceValue GeneralName;
/* PKIFreeText (RFC 4210): a list of UTF8String leaves. */
typedef Asn1List PKIFreeText;

/* Names. tagClass is the class bits (0x00, 0x40, 0x80, 0xC0), constructed is 0 or 0x20 (any non-zero
 * value means constructed), as GetX509NameEntryExt reports them. The first entry of a name needs
 * newRdn != 0; newRdn == 0 adds to the last RDN. */
TV_API uint32_t CreateX509Name(X509Name** outName);
TV_API uint32_t FreeX509Name(X509Name* name);
TV_API uint32_t CopyX509Name(const X509Name* name, X509Name** outName);
TV_API uint32_t ClearX509Name(X509Name* name);
TV_API uint32_t DecodeX509Name(const uint8_t* in, uint32_t inLen, X509Name** outName);
TV_API uint32_t EncodeX509Name(const X509Name* name, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetX509NameRdnCount(const X509Name* name, uint32_t* outCount);
TV_API uint32_t GetX509NameEntryCount(const X509Name* name, uint32_t rdnIndex, uint32_t* outCount);
TV_API uint32_t AddX509NameEntryExt(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tagClass, uint8_t constructed, uint8_t tag, const uint8_t* packedOid, uint32_t newRdn);
TV_API uint32_t AddX509NameEntry(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tag, const uint8_t* packedOid, uint32_t newRdn);
TV_API uint32_t GetX509NameEntryExt(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex, uint8_t* out, uint32_t* outLen, uint8_t* outClass, uint8_t* outConstructed, uint8_t* outTag, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t GetX509NameEntry(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex, uint8_t* out, uint32_t* outLen, uint8_t* outTag, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t DeleteX509NameEntry(X509Name* name, uint32_t rdnIndex, uint32_t entryIndex);
/* 0 when equal, TV_ERR_DIFFERENT otherwise. Values are compared after their first octet (so the string
 * type does not matter), position by position; attribute types are not compared. */
TV_API uint32_t CompareX509Names(const X509Name* nameA, const X509Name* nameB);
/* Attribute type ids 1..32 (commonName = 1 ... OGRN = 32) and their packed OIDs. */
TV_API uint32_t GetNameAttributeTypeOid(uint32_t id, uint8_t* outOid, uint32_t* outOidLen);
TV_API uint32_t FindNameAttributeTypeIdByOid(const uint8_t* packedOid, uint32_t* outId);
/* 18 NumericString, 19 PrintableString, 22 IA5String or 12 UTF8String for the given octets. */
TV_API uint32_t DetermineSuitableStringType(const uint8_t* in, uint32_t inLen, uint32_t* outStringType);

/* General names. Kinds 0 otherName, 3 x400Address, 4 directoryName and 5 ediPartyName travel as whole
 * DER elements (a decoded directoryName comes back as the bare Name, a decoded otherName with its [0]
 * octet); kinds 1, 2 and 6 as the IA5String characters, 7 as the address octets, 8 as a packed OID. */
TV_API uint32_t CreateX509GeneralNames(GeneralNames** outNames);
TV_API uint32_t CopyX509GeneralNames(const GeneralNames* names, GeneralNames** outNames);
TV_API uint32_t FreeX509GeneralNames(GeneralNames* names);
TV_API uint32_t CreateX509GeneralName(GeneralName** outName);
TV_API uint32_t CreateX509GeneralNameCopy(const GeneralName* name, GeneralName** outName);
TV_API uint32_t FreeX509GeneralName(GeneralName* name);
TV_API uint32_t DecodeX509GeneralNames(const uint8_t* in, uint32_t inLen, GeneralNames** outNames);
TV_API uint32_t EncodeX509GeneralNames(const GeneralNames* names, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetX509GeneralNameCount(const GeneralNames* names, uint32_t* outCount);
TV_API uint32_t AddX509GeneralName(GeneralNames* names, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t AllocX509GeneralNameValue(GeneralName** outName, uint32_t kind, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetX509GeneralName(const GeneralNames* names, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetX509GeneralNameValue(const GeneralName* name, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/* The first directoryName that decodes as a Name; TV_ERR_NOT_FOUND (322) when there is none. */
TV_API uint32_t GetX509NameFromGeneralNames(const GeneralNames* names, X509Name** outName);

/* Free text: UTF8String octets stored as given. */
TV_API uint32_t CreatePKIFreeText(PKIFreeText** outText);
TV_API uint32_t CreatePKIFreeTextCopy(const PKIFreeText* text, PKIFreeText** outText);
TV_API uint32_t FreePKIFreeText(PKIFreeText* text);
TV_API uint32_t DecodePKIFreeText(const uint8_t* in, uint32_t inLen, PKIFreeText** outText);
TV_API uint32_t EncodePKIFreeText(const PKIFreeText* text, uint8_t* out, uint32_t* outLen);
TV_API uint32_t GetPKIFreeTextStringCount(const PKIFreeText* text, uint32_t* outCount);
TV_API uint32_t AddPKIFreeTextString(PKIFreeText* text, const uint8_t* in, uint32_t inLen);
TV_API uint32_t GetPKIFreeTextString(const PKIFreeText* text, uint32_t index, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
