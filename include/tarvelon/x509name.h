/**
 * @file tarvelon/x509name.h
 * Distinguished names (the RDNSequence form of the RFC 5280 Name), general names and free text.
 */
#ifndef TARVELON_X509NAME_H
#define TARVELON_X509NAME_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A distinguished name: a list of RDNs in wire order; an RDN is a list of {type, value} entries
 * whose value is the whole attribute element (identifier, length, contents). */
typedef Asn1List X509Name;
/** A list of general names; each is a choice record whose index is the kind 0..8 of RFC 5280. */
typedef Asn1List GeneralNames;
/** One general name: Asn1ChoiceValue::index is its kind 0..8 (see AddX509GeneralName()). */
typedef Asn1ChoiceValue GeneralName;
/** PKIFreeText (RFC 4210): a list of UTF8String leaves. */
typedef Asn1List PKIFreeText;

/* Names. tagClass is the class bits (0x00, 0x40, 0x80, 0xC0), constructed is 0 or 0x20 (any non-zero
 * value means constructed), as GetX509NameEntryExt reports them. The first entry of a name needs
 * newRdn != 0; newRdn == 0 adds to the last RDN. */
/**
 * Creates an empty name.
 *
 * @param[out] outName  Receives a new name owned by the caller (FreeX509Name()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509Name(X509Name** outName);
/**
 * Frees a name and its entries.
 *
 * @param[in] name  The name (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeX509Name(X509Name* name);
/**
 * Makes a deep copy of a name.
 *
 * @param[in]  name     The name (borrowed).
 * @param[out] outName  Receives a new name owned by the caller (FreeX509Name()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CopyX509Name(const X509Name* name, X509Name** outName);
/**
 * Removes every RDN of a name, leaving it empty (it then encodes as an empty SEQUENCE).
 *
 * @param[in,out] name  The name (borrowed).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t ClearX509Name(X509Name* name);
/**
 * Decodes a Name (RDNSequence); the attribute values are kept as whole elements, so any string
 * type survives. Octets after the first element are ignored.
 *
 * @param[in]  in       The encoding (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outName  Receives a new name owned by the caller (FreeX509Name()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509Name(const uint8_t* in, uint32_t inLen, X509Name** outName);
/**
 * Encodes a name as DER; the entries of a multi-valued RDN are written in DER order.
 *
 * @param[in]     name    The name (borrowed).
 * @param[out]    out     Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeX509Name(const X509Name* name, uint8_t* out, uint32_t* outLen);
/**
 * Tells the number of RDNs of a name.
 *
 * @param[in]  name      The name (borrowed).
 * @param[out] outCount  Receives the number of RDNs.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509NameRdnCount(const X509Name* name, uint32_t* outCount);
/**
 * Tells the number of entries of one RDN.
 *
 * @param[in]  name      The name (borrowed).
 * @param[in]  rdnIndex  Position of the RDN from 0.
 * @param[out] outCount  Receives the number of entries in that RDN.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an RDN index out of range.
 */
TV_API uint32_t GetX509NameEntryCount(const X509Name* name, uint32_t rdnIndex, uint32_t* outCount);
/**
 * Adds an entry with a value of any class, form and tag, either as a new RDN at the end of the name
 * or to its last RDN.
 *
 * The value element is built from @p tagClass (only the class bits count), @p constructed (any
 * non-zero value means constructed), @p tag and the content octets. The first entry of a name
 * needs @p newRdn non-zero.
 *
 * @param[in,out] name         The name (borrowed).
 * @param[in]     in           Content octets of the value (borrowed, copied); not null, even for
 *                             an empty value.
 * @param[in]     inLen        Octets in @p in.
 * @param[in]     tagClass     Class bits of the value: 0x00, 0x40, 0x80 or 0xC0 (ASN1_CLASS_*).
 * @param[in]     constructed  0 for primitive, 0x20 (or any non-zero value) for constructed.
 * @param[in]     tag          Tag number of the value, such as ASN1_UTF8_STRING.
 * @param[in]     packedOid    Attribute type, packed (borrowed, copied).
 * @param[in]     newRdn       Non-zero to start a new RDN, 0 to add to the last RDN.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for @p newRdn 0 on a name
 *         without RDNs.
 */
TV_API uint32_t AddX509NameEntryExt(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tagClass, uint8_t constructed, uint8_t tag, const uint8_t* packedOid, uint32_t newRdn);
/**
 * Adds an entry with a primitive universal value such as a UTF8String or PrintableString; the same
 * as AddX509NameEntryExt() with class ASN1_CLASS_UNIVERSAL and primitive form.
 *
 * @param[in,out] name       The name (borrowed).
 * @param[in]     in         Content octets of the value (borrowed, copied); not null, even for an
 *                           empty value.
 * @param[in]     inLen      Octets in @p in.
 * @param[in]     tag        Universal tag of the value, such as ASN1_UTF8_STRING
 *                           (DetermineSuitableStringType() proposes one).
 * @param[in]     packedOid  Attribute type, packed (borrowed, copied).
 * @param[in]     newRdn     Non-zero to start a new RDN, 0 to add to the last RDN.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for @p newRdn 0 on a name
 *         without RDNs.
 */
TV_API uint32_t AddX509NameEntry(X509Name* name, const uint8_t* in, uint32_t inLen, uint8_t tag, const uint8_t* packedOid, uint32_t newRdn);
/**
 * Reads one entry of a name: the value's content octets, class, form and tag, and the attribute
 * type.
 *
 * The value and the type are asked together: with @p out and @p outOid both null, both sizes are
 * stored and 0 returned; when only one of them is null, or @p out is short, both sizes are stored
 * and #TV_ERR_BUFFER_TOO_SMALL (49) returned. @p outTag is stored only when the value is copied.
 *
 * @param[in]     name            The name (borrowed).
 * @param[in]     rdnIndex        Position of the RDN from 0.
 * @param[in]     entryIndex      Position of the entry in the RDN from 0.
 * @param[out]    out             Caller buffer for the value's content octets (without identifier
 *                                and length), or null to ask their number.
 * @param[in,out] outLen          Room in @p out; the octets written or needed.
 * @param[out]    outClass        Receives the class bits of the value (ASN1_CLASS_*).
 * @param[out]    outConstructed  Receives ASN1_CONSTRUCTED_FORM or ASN1_PRIMITIVE_FORM.
 * @param[out]    outTag          Receives the tag number of the value (its low eight bits).
 * @param[out]    outOid          Caller buffer for the packed attribute type, or null to ask its size.
 * @param[in,out] outOidLen       Room in @p outOid; the octets written or needed.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range,
 *         #TV_ERR_ABSENT (311) for an entry without type or value.
 */
TV_API uint32_t GetX509NameEntryExt(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex, uint8_t* out, uint32_t* outLen, uint8_t* outClass, uint8_t* outConstructed, uint8_t* outTag, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Reads one entry of a name without its class and form; otherwise the same as
 * GetX509NameEntryExt(), size queries included.
 *
 * @param[in]     name        The name (borrowed).
 * @param[in]     rdnIndex    Position of the RDN from 0.
 * @param[in]     entryIndex  Position of the entry in the RDN from 0.
 * @param[out]    out         Caller buffer for the value's content octets, or null to ask their number.
 * @param[in,out] outLen      Room in @p out; the octets written or needed.
 * @param[out]    outTag      Receives the tag number of the value, such as ASN1_UTF8_STRING.
 * @param[out]    outOid      Caller buffer for the packed attribute type, or null to ask its size.
 * @param[in,out] outOidLen   Room in @p outOid; the octets written or needed.
 * @return #TV_OK, or a status code; the codes of GetX509NameEntryExt().
 */
TV_API uint32_t GetX509NameEntry(const X509Name* name, uint32_t rdnIndex, uint32_t entryIndex, uint8_t* out, uint32_t* outLen, uint8_t* outTag, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Removes one entry of a name; removing the only entry of an RDN removes the RDN.
 *
 * The entry index is checked against the last RDN before the addressed one (behaviour kept), so
 * an index valid in the addressed RDN is refused when the last RDN has fewer entries.
 *
 * @param[in,out] name        The name (borrowed).
 * @param[in]     rdnIndex    Position of the RDN from 0.
 * @param[in]     entryIndex  Position of the entry in the RDN from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range (see
 *         above).
 */
TV_API uint32_t DeleteX509NameEntry(X509Name* name, uint32_t rdnIndex, uint32_t entryIndex);
/**
 * Compares two names position by position.
 *
 * Values are compared after their first octet, so the string type does not matter, and attribute
 * types are not compared at all (kept: names that differ only in how a value was typed or
 * labelled match). Letter case and spaces count.
 *
 * @param[in] nameA  First name (borrowed).
 * @param[in] nameB  Second name (borrowed).
 * @return 0 when the names match, #TV_ERR_DIFFERENT (320) when they differ; #TV_ERR_ABSENT (311)
 *         when either name has never held an RDN (a freshly created one; a cleared one compares),
 *         or another status code.
 */
TV_API uint32_t CompareX509Names(const X509Name* nameA, const X509Name* nameB);
/* Attribute type ids 1..32 (commonName = 1 ... OGRN = 32) and their packed OIDs. */
/**
 * Gives the packed object identifier of an attribute type known by number.
 *
 * The numbers: 1 commonName, 2 organizationName, 3 organizationalUnitName, 4 countryName,
 * 5 stateOrProvinceName, 6 localityName, 7 emailAddress, 8 surname, 9 givenName, 10 title,
 * 11 domainComponent, 12 aliasedEntryName, 13 dateOfBirth, 14 userCertificate, 15 description,
 * 16 gender, 17 generationQualifier, 18 initials, 19 IP address (1.3.6.1.4.1.42.2.11.2.1),
 * 20 placeOfBirth, 21 postalAddress, 22 postalCode, 23 pseudonym, 24 serialNumber,
 * 25 streetAddress, 26 userid, 27 roleOccupant, 28 owner, 29 uniqueIdentifier, 30 SNILS,
 * 31 INN, 32 OGRN.
 *
 * @param[in]     id         The number, 1 to 32.
 * @param[out]    outOid     Caller buffer for the packed identifier, or null to ask its size.
 * @param[in,out] outOidLen  Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ID_NOT_FOUND (309) for a number outside 1 to 32.
 */
TV_API uint32_t GetNameAttributeTypeOid(uint32_t id, uint8_t* outOid, uint32_t* outOidLen);
/**
 * Finds the number of an attribute type from its packed object identifier; the inverse of
 * GetNameAttributeTypeOid().
 *
 * @param[in]  packedOid  The attribute type, packed (borrowed).
 * @param[out] outId      Receives the number, 1 to 32.
 * @return #TV_OK, or a status code; #TV_ERR_OID_NOT_FOUND (308) for a type without a number.
 */
TV_API uint32_t FindNameAttributeTypeIdByOid(const uint8_t* packedOid, uint32_t* outId);
/* 18 NumericString, 19 PrintableString, 22 IA5String or 12 UTF8String for the given octets. */
/**
 * Proposes the narrowest string type for a value's octets.
 *
 * The answer is ASN1_NUMERIC_STRING (18) for digits and spaces only (also for no octets),
 * ASN1_PRINTABLE_STRING (19) for PrintableString characters, ASN1_IA5_STRING (22) for other
 * characters from 0x20 to 0x7F, and ASN1_UTF8_STRING (12) as soon as an octet lies outside that
 * range; UTF-8 octets are not validated.
 *
 * @param[in]  in             The octets (borrowed).
 * @param[in]  inLen          Octets in @p in.
 * @param[out] outStringType  Receives 18, 19, 22 or 12.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DetermineSuitableStringType(const uint8_t* in, uint32_t inLen, uint32_t* outStringType);

/* General names. Kinds 0 otherName, 3 x400Address, 4 directoryName and 5 ediPartyName travel as whole
 * DER elements (a decoded directoryName comes back as the bare Name, a decoded otherName with its [0]
 * octet); kinds 1, 2 and 6 as the IA5String characters, 7 as the address octets, 8 as a packed OID. */
/**
 * Creates an empty list of general names.
 *
 * @param[out] outNames  Receives a new list owned by the caller (FreeX509GeneralNames()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509GeneralNames(GeneralNames** outNames);
/**
 * Makes a deep copy of a list of general names.
 *
 * @param[in]  names     The list (borrowed).
 * @param[out] outNames  Receives a new list owned by the caller (FreeX509GeneralNames()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CopyX509GeneralNames(const GeneralNames* names, GeneralNames** outNames);
/**
 * Frees a list of general names and the names it holds.
 *
 * @param[in] names  The list (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeX509GeneralNames(GeneralNames* names);
/**
 * Creates an empty general name, with kind 0 and no value; AllocX509GeneralNameValue() makes a
 * filled one.
 *
 * @param[out] outName  Receives a new general name owned by the caller (FreeX509GeneralName()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509GeneralName(GeneralName** outName);
/**
 * Makes a deep copy of a general name.
 *
 * @param[in]  name     The general name (borrowed).
 * @param[out] outName  Receives a new general name owned by the caller (FreeX509GeneralName()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateX509GeneralNameCopy(const GeneralName* name, GeneralName** outName);
/**
 * Frees a general name.
 *
 * @param[in] name  The general name (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeX509GeneralName(GeneralName* name);
/**
 * Decodes a GeneralNames sequence; octets after the first element are ignored.
 *
 * @param[in]  in        The encoding (borrowed).
 * @param[in]  inLen     Octets in @p in.
 * @param[out] outNames  Receives a new list owned by the caller (FreeX509GeneralNames()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeX509GeneralNames(const uint8_t* in, uint32_t inLen, GeneralNames** outNames);
/**
 * Encodes a list of general names as DER; an empty list gives an empty SEQUENCE.
 *
 * @param[in]     names   The list (borrowed).
 * @param[out]    out     Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeX509GeneralNames(const GeneralNames* names, uint8_t* out, uint32_t* outLen);
/**
 * Tells the number of general names in a list.
 *
 * @param[in]  names     The list (borrowed).
 * @param[out] outCount  Receives the number of general names.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetX509GeneralNameCount(const GeneralNames* names, uint32_t* outCount);
/**
 * Appends a general name of a given kind, built from a copy of the caller's octets.
 *
 * Kinds: 0 otherName, 3 x400Address, 4 directoryName and 5 ediPartyName take one whole DER element
 * (for 4 the Name itself, for 0, 3 and 5 the SEQUENCE, retagged when encoded); 1 rfc822Name,
 * 2 dNSName and 6 uniformResourceIdentifier the IA5String characters; 7 iPAddress the address
 * octets; 8 registeredID a packed object identifier.
 *
 * @param[in,out] names  The list (borrowed).
 * @param[in]     kind   The kind, 0 to 8.
 * @param[in]     in     The value as its kind requires (borrowed, copied); not null.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code; #TV_ERR_NO_ALTERNATIVE (306) for a kind over 8,
 *         #TV_ERR_INVALID_ARGUMENT also for a whole-element kind whose octets are not exactly one
 *         element, or a packed identifier longer than @p inLen.
 */
TV_API uint32_t AddX509GeneralName(GeneralNames* names, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Builds a stand-alone general name of a given kind from a copy of the caller's octets, as
 * AddX509GeneralName() does.
 *
 * @param[out] outName  Receives a new general name owned by the caller (FreeX509GeneralName()).
 * @param[in]  kind     The kind, 0 to 8 (see AddX509GeneralName()).
 * @param[in]  in       The value as its kind requires (borrowed, copied); not null.
 * @param[in]  inLen    Octets in @p in.
 * @return #TV_OK, or a status code; the codes of AddX509GeneralName().
 */
TV_API uint32_t AllocX509GeneralNameValue(GeneralName** outName, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Reads one general name of a list: its kind and its value in the form AddX509GeneralName() takes.
 *
 * Values read from a decoded list differ from what was given in three kinds: an otherName,
 * x400Address or ediPartyName comes back with the context tag it arrived with ([0], [3], [5]) as
 * its first octet instead of the SEQUENCE tag. A directoryName is the bare Name either way.
 *
 * @param[in]     names    The list (borrowed).
 * @param[in]     index    Position from 0.
 * @param[out]    outKind  Receives the kind, 0 to 8; stored also on a size query and a short buffer.
 * @param[out]    out      Caller buffer for the value, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range,
 *         #TV_ERR_ABSENT (311) for a general name without a value.
 */
TV_API uint32_t GetX509GeneralName(const GeneralNames* names, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Reads the kind and value of a stand-alone general name, as GetX509GeneralName() does.
 *
 * @param[in]     name     The general name (borrowed).
 * @param[out]    outKind  Receives the kind, 0 to 8.
 * @param[out]    out      Caller buffer for the value, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) for a general name without a value (as
 *         CreateX509GeneralName() makes it).
 */
TV_API uint32_t GetX509GeneralNameValue(const GeneralName* name, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Decodes the first directoryName of a list that holds a decodable Name; others are passed over.
 *
 * @param[in]  names    The list (borrowed).
 * @param[out] outName  Receives a new name owned by the caller (FreeX509Name()).
 * @return #TV_OK, or a status code; #TV_ERR_NOT_FOUND (322) when no directoryName decodes, also
 *         for an empty list.
 */
TV_API uint32_t GetX509NameFromGeneralNames(const GeneralNames* names, X509Name** outName);

/* Free text: UTF8String octets stored as given. */
/**
 * Creates an empty free text.
 *
 * @param[out] outText  Receives a new free text owned by the caller (FreePKIFreeText()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreatePKIFreeText(PKIFreeText** outText);
/**
 * Makes a deep copy of a free text.
 *
 * @param[in]  text     The free text (borrowed).
 * @param[out] outText  Receives a new free text owned by the caller (FreePKIFreeText()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreatePKIFreeTextCopy(const PKIFreeText* text, PKIFreeText** outText);
/**
 * Frees a free text and its strings.
 *
 * @param[in] text  The free text (taken over and freed); null is accepted.
 * @return #TV_OK always.
 */
TV_API uint32_t FreePKIFreeText(PKIFreeText* text);
/**
 * Decodes a PKIFreeText sequence; octets after the first element are ignored.
 *
 * @param[in]  in       The encoding (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outText  Receives a new free text owned by the caller (FreePKIFreeText()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodePKIFreeText(const uint8_t* in, uint32_t inLen, PKIFreeText** outText);
/**
 * Encodes a free text as DER; an empty one gives an empty SEQUENCE.
 *
 * @param[in]     text    The free text (borrowed).
 * @param[out]    out     Caller buffer for the encoding, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodePKIFreeText(const PKIFreeText* text, uint8_t* out, uint32_t* outLen);
/**
 * Tells the number of strings of a free text.
 *
 * @param[in]  text      The free text (borrowed).
 * @param[out] outCount  Receives the number of strings.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetPKIFreeTextStringCount(const PKIFreeText* text, uint32_t* outCount);
/**
 * Appends a string to a free text; the octets are stored as given, not checked as UTF-8.
 *
 * @param[in,out] text   The free text (borrowed).
 * @param[in]     in     UTF-8 octets (borrowed, copied); not null, even for an empty string.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddPKIFreeTextString(PKIFreeText* text, const uint8_t* in, uint32_t inLen);
/**
 * Copies one string of a free text.
 *
 * @param[in]     text    The free text (borrowed).
 * @param[in]     index   Position from 0.
 * @param[out]    out     Caller buffer for the UTF-8 octets (no terminator), or null to ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for an index out of range.
 */
TV_API uint32_t GetPKIFreeTextString(const PKIFreeText* text, uint32_t index, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
