/**
 * @file tarvelon/private_extensions.h
 * Values of the private extensions: storage lists, OCSP check reports and request options, key
 * storage, blocking dates, owner and parent information, the Kestrune key identifier.
 *
 * Each encoder writes the DER that goes into an extension's extnValue (CreateX509Extension()); the
 * OIDs are the caller's business. Each decoder reads the first element of its input and ignores any
 * octets after it; empty input is refused with #TV_ERR_INVALID_ARGUMENT. Kinds and codes are written
 * as ENUMERATED (or INTEGER) in the minimal two's complement of the number taken as a signed 32-bit
 * value, so every uint32_t reads back unchanged; a decoded number of more than four content octets is
 * answered with #TV_ERR_BUFFER_TOO_SMALL (49). A few fields go out under identifiers the peers
 * expect: 03, 04, 05 and 20, which collide with universal types on purpose, and B0; they are read back
 * the same way.
 */
#ifndef TARVELON_PRIVATE_EXTENSIONS_H
#define TARVELON_PRIVATE_EXTENSIONS_H

#include "tarvelon/types.h"
#include "tarvelon/time.h"
#include "tarvelon/x509name.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * A storage list: `SEQUENCE OF StoreItem { kind ENUMERATED, data OCTET STRING }`, holding
 * certificates, key containers or documents. The three families of store-list functions share this
 * one shape, and a list made by one can be used with the others.
 */
typedef Asn1List StoreItems;
/** The OCSP check results: a SEQUENCE OF ExtResult (AddExtensionOcspCheckFileExtResults()). */
typedef Asn1List OcspCheckFileExtResults;

/**
 * Writes the value of the Kestrune key identifier (OID 1.2.643.3.901.3.1): the caller's text as one
 * UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionKestruneKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the Kestrune key identifier (OID 1.2.643.3.901.3.1): checks that it is one UTF8String
 * and copies out its content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionKestruneKeyIdentifier(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the BsnProdCode extension of an OCSP request: the caller's text as one UTF8String
 * (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestBsnProdCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the BsnProdCode extension of an OCSP request: checks that it is one UTF8String and
 * copies out its content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestBsnProdCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the person of an OCSP request: the caller's text as one UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestPerson(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the person of an OCSP request: checks that it is one UTF8String and copies out its
 * content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestPerson(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the GUID of an OCSP request: the caller's text as one UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestGuid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the GUID of an OCSP request: checks that it is one UTF8String and copies out its
 * content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestGuid(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the organization code: the caller's text as one UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOrganizationCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the organization code: checks that it is one UTF8String and copies out its content
 * octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOrganizationCode(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the clock number: the caller's text as one UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionClockNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the clock number: checks that it is one UTF8String and copies out its content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionClockNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the Corvantis serial number: the caller's text as one UTF8String (identifier 0C).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionCorvantisSerialNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the Corvantis serial number: checks that it is one UTF8String and copies out its
 * content octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionCorvantisSerialNumber(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the related OSB code: the caller's text as one PrintableString (identifier 13).
 *
 * @param[in]     in      The content octets (borrowed), written as they are, without conversion or
 *                        check; may be null when @p inLen is 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionRelatedOsbKod(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the related OSB code: checks that it is one PrintableString and copies out its content
 * octets.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the text, not NUL-terminated, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionRelatedOsbKod(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the documents option of an OCSP request: one INTEGER.
 *
 * The number is taken as a signed 32-bit value and written in its minimal two's complement: 0x80 as
 * 02 02 00 80, 0xFFFFFFFF as 02 01 FF.
 *
 * @param[in]     number  The number.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestDocuments(uint32_t number, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the documents option of an OCSP request: one INTEGER, sign-extended to 32 bits.
 *
 * @param[in]  in         The DER (borrowed).
 * @param[in]  inLen      Octets in @p in.
 * @param[out] outNumber  Receives the number.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for contents of more than four
 *         octets; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestDocuments(const uint8_t* in, uint32_t inLen, uint32_t* outNumber);
/**
 * Writes the value of the certificates option of an OCSP request: one ENUMERATED.
 *
 * Written as the number's minimal two's complement, like EncodeExtensionOcspRequestDocuments().
 *
 * @param[in]     kind    The kind.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestCertificates(uint32_t kind, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the certificates option of an OCSP request: one ENUMERATED, sign-extended to 32 bits.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outKind  Receives the kind.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for contents of more than four
 *         octets; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestCertificates(const uint8_t* in, uint32_t inLen, uint32_t* outKind);
/**
 * Writes the value of the key-container option of an OCSP request: one ENUMERATED.
 *
 * Written as the number's minimal two's complement, like EncodeExtensionOcspRequestDocuments().
 *
 * @param[in]     kind    The kind.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspRequestPrivateKeyContexts(uint32_t kind, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the key-container option of an OCSP request: one ENUMERATED, sign-extended to 32 bits.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outKind  Receives the kind.
 * @return #TV_OK, or a status code; #TV_ERR_BUFFER_TOO_SMALL (49) for contents of more than four
 *         octets; #TV_ERR_MALFORMED (302) for an element of another type.
 */
TV_API uint32_t DecodeExtensionOcspRequestPrivateKeyContexts(const uint8_t* in, uint32_t inLen, uint32_t* outKind);

/**
 * Writes the value of the parent AS extension: one OBJECT IDENTIFIER.
 *
 * @param[in]     packedOid  The packed OID (borrowed), written as it is, not checked.
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionParentAS(const uint8_t* packedOid, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the parent AS extension: one OBJECT IDENTIFIER, copied out packed.
 *
 * @param[in]     in      The DER (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for an element that is not an OBJECT
 *         IDENTIFIER, #TV_ERR_INVALID_ARGUMENT for one of more than 255 content octets, which has no
 *         packed form.
 */
TV_API uint32_t DecodeExtensionParentAS(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Writes the value of the owner information extension: a distinguished name as DER.
 *
 * @param[in]     name    The name (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOwnerInformation(const X509Name* name, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the owner information extension: a distinguished name.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outName  Receives a new name owned by the caller (FreeX509Name()), stored only on
 *                      success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionOwnerInformation(const uint8_t* in, uint32_t inLen, X509Name** outName);
/**
 * Writes the value of the OCSP check time extension: one GeneralizedTime "YYYYMMDDhhmmssZ".
 *
 * The fields are not checked beyond their number of digits: the null (all-zero) record is written as
 * zeros, which DecodeExtensionOcspCheckTime() refuses.
 *
 * @param[in]     time    The time (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field too wide for its digits.
 */
TV_API uint32_t EncodeExtensionOcspCheckTime(const LibraryTime* time, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the OCSP check time extension: one GeneralizedTime, to the second (a fraction
 * and the zone mark are ignored).
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outTime  Receives the time; after #TV_ERR_TIME its fields may be partly written.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a text that is not a valid date and time
 *         from 1900 to 2100, #TV_ERR_NOT_DER (307) for one shorter than 15 characters.
 */
TV_API uint32_t DecodeExtensionOcspCheckTime(const uint8_t* in, uint32_t inLen, LibraryTime* outTime);

/**
 * Writes the value of the OCSP file check extension.
 *
 * The fields, in order: the file hash (OCTET STRING), two optional hashes ([0] and [1] IMPLICIT
 * OCTET STRING), an optional check kind (ENUMERATED), two optional texts (UTF8String contents under
 * the identifiers 03 and 04) and an optional kind (ENUMERATED contents under 05). An optional octet
 * or text field is written when its pointer is not null, even with length 0; a kind when its present
 * flag is non-zero.
 *
 * @param[in]     fileHash          The file hash (borrowed); required, even when its length is 0.
 * @param[in]     fileHashLen       Octets in @p fileHash.
 * @param[in]     hash0             The [0] hash (borrowed), or null to leave it out.
 * @param[in]     hash0Len          Octets in @p hash0.
 * @param[in]     hash1             The [1] hash (borrowed), or null to leave it out.
 * @param[in]     hash1Len          Octets in @p hash1.
 * @param[in]     checkKindPresent  Non-zero to write @p checkKind.
 * @param[in]     checkKind         The check kind.
 * @param[in]     text3             The text under 03 (borrowed, not converted), or null to leave it out.
 * @param[in]     text3Len          Octets in @p text3.
 * @param[in]     text4             The text under 04 (borrowed, not converted), or null to leave it out.
 * @param[in]     text4Len          Octets in @p text4.
 * @param[in]     kind5Present      Non-zero to write @p kind5.
 * @param[in]     kind5             The kind under 05.
 * @param[out]    out               Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen            Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspCheckFile(const uint8_t* fileHash, uint32_t fileHashLen, const uint8_t* hash0, uint32_t hash0Len, const uint8_t* hash1, uint32_t hash1Len, uint32_t checkKindPresent, uint32_t checkKind, const uint8_t* text3, uint32_t text3Len, const uint8_t* text4, uint32_t text4Len, uint32_t kind5Present, uint32_t kind5, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the OCSP file check extension into its fields.
 *
 * Every output is filled before the result is chosen, so one call stores every size; the first
 * failing field in the order of the structure is reported. Absent octet and text fields read as
 * length 0 (as do empty ones), absent kinds as present 0 and kind 0.
 *
 * @param[in]     in                   The DER (borrowed).
 * @param[in]     inLen                Octets in @p in.
 * @param[out]    outFileHash          Caller buffer for the file hash, or null to ask its size.
 * @param[in,out] outFileHashLen       Room in @p outFileHash; the octets written or needed
 *                                     (@ref size_protocol).
 * @param[out]    outHash0             Caller buffer for the [0] hash, or null to ask its size.
 * @param[in,out] outHash0Len          Room in @p outHash0; the octets written or needed, 0 when absent.
 * @param[out]    outHash1             Caller buffer for the [1] hash, or null to ask its size.
 * @param[in,out] outHash1Len          Room in @p outHash1; the octets written or needed, 0 when absent.
 * @param[out]    outCheckKindPresent  Receives 1 when the check kind is present, else 0.
 * @param[out]    outCheckKind         Receives the check kind, 0 when absent.
 * @param[out]    outText3             Caller buffer for the text under 03, or null to ask its size.
 * @param[in,out] outText3Len          Room in @p outText3; the octets written or needed, 0 when absent.
 * @param[out]    outText4             Caller buffer for the text under 04, or null to ask its size.
 * @param[in,out] outText4Len          Room in @p outText4; the octets written or needed, 0 when absent.
 * @param[out]    outKind5Present      Receives 1 when the kind under 05 is present, else 0.
 * @param[out]    outKind5             Receives the kind under 05, 0 when absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionOcspCheckFile(const uint8_t* in, uint32_t inLen, uint8_t* outFileHash, uint32_t* outFileHashLen, uint8_t* outHash0, uint32_t* outHash0Len, uint8_t* outHash1, uint32_t* outHash1Len, uint32_t* outCheckKindPresent, uint32_t* outCheckKind, uint8_t* outText3, uint32_t* outText3Len, uint8_t* outText4, uint32_t* outText4Len, uint32_t* outKind5Present, uint32_t* outKind5);
/**
 * Writes the value of the OCSP CryptoNet registry check extension: two UTF8Strings and an optional
 * kind (ENUMERATED).
 *
 * @param[in]     text1        The first text (borrowed, not converted); required, even when empty.
 * @param[in]     text1Len     Octets in @p text1.
 * @param[in]     text2        The second text (borrowed, not converted); required, even when empty.
 * @param[in]     text2Len     Octets in @p text2.
 * @param[in]     kindPresent  Non-zero to write @p kind.
 * @param[in]     kind         The kind.
 * @param[out]    out          Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen       Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* text1, uint32_t text1Len, const uint8_t* text2, uint32_t text2Len, uint32_t kindPresent, uint32_t kind, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the OCSP CryptoNet registry check extension into its fields.
 *
 * Every output is filled before the result is chosen; the first failing field is reported.
 *
 * @param[in]     in              The DER (borrowed).
 * @param[in]     inLen           Octets in @p in.
 * @param[out]    outText1        Caller buffer for the first text, or null to ask its size.
 * @param[in,out] outText1Len     Room in @p outText1; the octets written or needed (@ref size_protocol).
 * @param[out]    outText2        Caller buffer for the second text, or null to ask its size.
 * @param[in,out] outText2Len     Room in @p outText2; the octets written or needed (@ref size_protocol).
 * @param[out]    outKindPresent  Receives 1 when the kind is present, else 0.
 * @param[out]    outKind         Receives the kind, 0 when absent.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionOcspCheckCryptoNetRegistry(const uint8_t* in, uint32_t inLen, uint8_t* outText1, uint32_t* outText1Len, uint8_t* outText2, uint32_t* outText2Len, uint32_t* outKindPresent, uint32_t* outKind);
/**
 * Writes the value of the second OCSP check time extension: a time kind (ENUMERATED) and an
 * optional GeneralizedTime, under the identifier B0 ([16] IMPLICIT SEQUENCE) as the peers expect.
 *
 * @param[in]     timeKind   The time kind.
 * @param[in]     checkTime  The check time (borrowed), or null to leave it out; the null record is
 *                           not taken for absent but written as zeros.
 * @param[out]    out        Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen     Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field too wide for its digits.
 */
TV_API uint32_t EncodeExtensionOcspCheckTime2(uint32_t timeKind, const LibraryTime* checkTime, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the second OCSP check time extension; only the identifier B0 is accepted.
 *
 * @param[in]  in            The DER (borrowed).
 * @param[in]  inLen         Octets in @p in.
 * @param[out] outTimeKind   Receives the time kind.
 * @param[out] outCheckTime  Receives the check time, or the null (all-zero) time when absent.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a check time that is not a valid date.
 */
TV_API uint32_t DecodeExtensionOcspCheckTime2(const uint8_t* in, uint32_t inLen, uint32_t* outTimeKind, LibraryTime* outCheckTime);
/**
 * Writes the value of the extended result extension: a code (ENUMERATED) and an optional UTF8String.
 *
 * @param[in]     code     The result code.
 * @param[in]     text     The text (borrowed, not converted), or null to leave it out.
 * @param[in]     textLen  Octets in @p text.
 * @param[out]    out      Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionExtendedResult(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the extended result extension; an absent text reads as length 0, like an
 * empty one.
 *
 * @param[in]     in          The DER (borrowed).
 * @param[in]     inLen       Octets in @p in.
 * @param[out]    outCode     Receives the result code.
 * @param[out]    outText     Caller buffer for the text, or null to ask its size.
 * @param[in,out] outTextLen  Room in @p outText; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionExtendedResult(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen);
/**
 * Writes the value of the key storage extension: a code (ENUMERATED) and an optional UTF8String,
 * the shape of the extended result.
 *
 * @param[in]     code     The storage code.
 * @param[in]     text     The text (borrowed, not converted), or null to leave it out.
 * @param[in]     textLen  Octets in @p text.
 * @param[out]    out      Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionKeyStorage(uint32_t code, const uint8_t* text, uint32_t textLen, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the key storage extension; an absent text reads as length 0, like an empty one.
 *
 * @param[in]     in          The DER (borrowed).
 * @param[in]     inLen       Octets in @p in.
 * @param[out]    outCode     Receives the storage code.
 * @param[out]    outText     Caller buffer for the text, or null to ask its size.
 * @param[in,out] outTextLen  Room in @p outText; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionKeyStorage(const uint8_t* in, uint32_t inLen, uint32_t* outCode, uint8_t* outText, uint32_t* outTextLen);
/**
 * Writes the value of the request blocking date extension: two optional times, [0] and [1]
 * IMPLICIT GeneralizedTime.
 *
 * A null pointer leaves its time out (both null give an empty SEQUENCE); the null record is not
 * taken for absent but written as zeros, which the decoder refuses.
 *
 * @param[in]     from    The start of the blocking (borrowed), or null.
 * @param[in]     until   The end of the blocking (borrowed), or null.
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a field too wide for its digits.
 */
TV_API uint32_t EncodeExtensionRequestBlockingDate(const LibraryTime* from, const LibraryTime* until, uint8_t* out, uint32_t* outLen);
/**
 * Reads the value of the request blocking date extension; an absent time reads as the null
 * (all-zero) time.
 *
 * @param[in]  in        The DER (borrowed).
 * @param[in]  inLen     Octets in @p in.
 * @param[out] outFrom   Receives the start of the blocking.
 * @param[out] outUntil  Receives the end of the blocking.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a time that is not a valid date.
 */
TV_API uint32_t DecodeExtensionRequestBlockingDate(const uint8_t* in, uint32_t inLen, LibraryTime* outFrom, LibraryTime* outUntil);

/**
 * Creates an empty certificate storage list.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionStoreCertificates()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionStoreCertificates(StoreItems** outList);
/**
 * Appends an item to a certificate storage list: its kind and a copy of its data.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     kind   The item's kind.
 * @param[in]     in     The item's data (borrowed, copied); required even when @p inLen is 0.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionStoreCertificates(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Copies out the kind and data of the item at an index of a certificate storage list.
 *
 * Both outputs are filled before the result is chosen, so a short buffer still delivers the kind.
 *
 * @param[in]     list     The list (borrowed).
 * @param[in]     index    Position in the list, from 0.
 * @param[out]    outKind  Receives the item's kind.
 * @param[out]    out      Caller buffer for the data, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t GetExtensionStoreCertificates(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Frees the item at an index of a certificate storage list; those after it move down one place.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Position in the list, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t RemoveExtensionStoreCertificates(StoreItems* list, uint32_t index);
/**
 * Frees a certificate storage list with its items.
 *
 * @param[in] list  The list (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeExtensionStoreCertificates(StoreItems* list);
/**
 * Counts the items of a certificate storage list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of items.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionStoreCertificatesCount(const StoreItems* list, uint32_t* outCount);
/**
 * Writes a certificate storage list as DER, in list order; an empty list is an empty SEQUENCE.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionStoreCertificates(const StoreItems* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a certificate storage list; an empty SEQUENCE gives an empty list.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller
 *                      (FreeExtensionStoreCertificates()), stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionStoreCertificates(const uint8_t* in, uint32_t inLen, StoreItems** outList);
/**
 * Creates an empty key container storage list.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionStorePrivateKeyContexts()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionStorePrivateKeyContexts(StoreItems** outList);
/**
 * Appends an item to a key container storage list: its kind and a copy of its data.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     kind   The item's kind.
 * @param[in]     in     The item's data (borrowed, copied); required even when @p inLen is 0.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionStorePrivateKeyContexts(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Copies out the kind and data of the item at an index of a key container storage list.
 *
 * Both outputs are filled before the result is chosen, so a short buffer still delivers the kind.
 *
 * @param[in]     list     The list (borrowed).
 * @param[in]     index    Position in the list, from 0.
 * @param[out]    outKind  Receives the item's kind.
 * @param[out]    out      Caller buffer for the data, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t GetExtensionStorePrivateKeyContexts(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Frees the item at an index of a key container storage list; those after it move down one place.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Position in the list, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t RemoveExtensionStorePrivateKeyContexts(StoreItems* list, uint32_t index);
/**
 * Frees a key container storage list with its items.
 *
 * @param[in] list  The list (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeExtensionStorePrivateKeyContexts(StoreItems* list);
/**
 * Counts the items of a key container storage list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of items.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionStorePrivateKeyContextsCount(const StoreItems* list, uint32_t* outCount);
/**
 * Writes a key container storage list as DER, in list order; an empty list is an empty SEQUENCE.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionStorePrivateKeyContexts(const StoreItems* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a key container storage list; an empty SEQUENCE gives an empty list.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller
 *                      (FreeExtensionStorePrivateKeyContexts()), stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionStorePrivateKeyContexts(const uint8_t* in, uint32_t inLen, StoreItems** outList);
/**
 * Creates an empty OCSP request document storage list.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionStoreOcspRequestDocuments()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionStoreOcspRequestDocuments(StoreItems** outList);
/**
 * Appends an item to a OCSP request document storage list: its kind and a copy of its data.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     kind   The item's kind.
 * @param[in]     in     The item's data (borrowed, copied); required even when @p inLen is 0.
 * @param[in]     inLen  Octets in @p in.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t AddExtensionStoreOcspRequestDocuments(StoreItems* list, uint32_t kind, const uint8_t* in, uint32_t inLen);
/**
 * Copies out the kind and data of the item at an index of a OCSP request document storage list.
 *
 * Both outputs are filled before the result is chosen, so a short buffer still delivers the kind.
 *
 * @param[in]     list     The list (borrowed).
 * @param[in]     index    Position in the list, from 0.
 * @param[out]    outKind  Receives the item's kind.
 * @param[out]    out      Caller buffer for the data, or null to ask its size.
 * @param[in,out] outLen   Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t GetExtensionStoreOcspRequestDocuments(const StoreItems* list, uint32_t index, uint32_t* outKind, uint8_t* out, uint32_t* outLen);
/**
 * Frees the item at an index of a OCSP request document storage list; those after it move down one place.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Position in the list, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t RemoveExtensionStoreOcspRequestDocuments(StoreItems* list, uint32_t index);
/**
 * Frees a OCSP request document storage list with its items.
 *
 * @param[in] list  The list (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeExtensionStoreOcspRequestDocuments(StoreItems* list);
/**
 * Counts the items of a OCSP request document storage list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of items.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionStoreOcspRequestDocumentsCount(const StoreItems* list, uint32_t* outCount);
/**
 * Writes a OCSP request document storage list as DER, in list order; an empty list is an empty SEQUENCE.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionStoreOcspRequestDocuments(const StoreItems* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a OCSP request document storage list; an empty SEQUENCE gives an empty list.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller
 *                      (FreeExtensionStoreOcspRequestDocuments()), stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionStoreOcspRequestDocuments(const uint8_t* in, uint32_t inLen, StoreItems** outList);

/**
 * Creates an empty list of OCSP check results.
 *
 * @param[out] outList  Receives a new list owned by the caller (FreeExtensionOcspCheckFileExtResults()).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t CreateExtensionOcspCheckFileExtResults(OcspCheckFileExtResults** outList);
/**
 * Appends a check result to a list: result kind, text and status kind (ENUMERATED, UTF8String,
 * ENUMERATED), an optional GeneralizedTime, a storage list and optional general names.
 *
 * The items and names are taken over only on success: after any failure they are still the caller's
 * to free. The names go out under the identifier 20, as the peers expect.
 *
 * @param[in,out] list        The list (borrowed).
 * @param[in]     resultKind  The result kind.
 * @param[in]     text        The text (borrowed, copied, not converted); null only with @p textLen 0,
 *                            which writes an empty text.
 * @param[in]     textLen     Octets in @p text.
 * @param[in]     statusKind  The status kind.
 * @param[in]     checkTime   The check time (borrowed), or null to leave it out.
 * @param[in]     items       A storage list (taken over on success: freed with @p list), or null to
 *                            write an empty one.
 * @param[in]     names       General names (taken over on success: freed with @p list), or null to
 *                            leave them out.
 * @return #TV_OK, or a status code; #TV_ERR_TIME (313) for a check time with a field too wide for
 *         its digits.
 */
TV_API uint32_t AddExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list, uint32_t resultKind, const uint8_t* text, uint32_t textLen, uint32_t statusKind, const LibraryTime* checkTime, StoreItems* items, GeneralNames* names);
/**
 * Reads the check result at an index of a list.
 *
 * Each output may be null and is then skipped (@p outText is used only with @p outTextLen). Every
 * output asked for is filled before the result is chosen; the first failing field is reported.
 *
 * @param[in]     list           The list (borrowed).
 * @param[in]     index          Position in the list, from 0.
 * @param[out]    outResultKind  Receives the result kind, or null.
 * @param[out]    outText        Caller buffer for the text, or null to ask its size.
 * @param[in,out] outTextLen     Room in @p outText; the octets written or needed (@ref size_protocol);
 *                               or null to skip the text.
 * @param[out]    outStatusKind  Receives the status kind, or null.
 * @param[out]    outCheckTime   Receives the check time, the null (all-zero) time when absent; or null.
 * @param[out]    outItems       Receives the storage list, lent by @p list (do not free); or null.
 * @param[out]    outNames       Receives the general names, lent by @p list (do not free), null when
 *                               absent; or null.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end,
 *         #TV_ERR_TIME (313) for a check time that is not a valid date.
 */
TV_API uint32_t GetExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint32_t index, uint32_t* outResultKind, uint8_t* outText, uint32_t* outTextLen, uint32_t* outStatusKind, LibraryTime* outCheckTime, StoreItems** outItems, GeneralNames** outNames);
/**
 * Frees the check result at an index, with its items and names; those after it move down one place.
 *
 * @param[in,out] list   The list (borrowed).
 * @param[in]     index  Position in the list, from 0.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT for an index past the end.
 */
TV_API uint32_t RemoveExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list, uint32_t index);
/**
 * Frees a list of check results with everything in it, the items and names taken over included.
 *
 * @param[in] list  The list (taken over: freed here), or null.
 * @return #TV_OK always.
 */
TV_API uint32_t FreeExtensionOcspCheckFileExtResults(OcspCheckFileExtResults* list);
/**
 * Counts the check results of a list.
 *
 * @param[in]  list      The list (borrowed).
 * @param[out] outCount  Receives the number of results.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t GetExtensionOcspCheckFileExtResultsCount(const OcspCheckFileExtResults* list, uint32_t* outCount);
/**
 * Writes a list of check results as DER, in list order; an empty list is an empty SEQUENCE.
 *
 * @param[in]     list    The list (borrowed).
 * @param[out]    out     Caller buffer for the DER, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeExtensionOcspCheckFileExtResults(const OcspCheckFileExtResults* list, uint8_t* out, uint32_t* outLen);
/**
 * Reads a list of check results.
 *
 * @param[in]  in       The DER (borrowed).
 * @param[in]  inLen    Octets in @p in.
 * @param[out] outList  Receives a new list owned by the caller
 *                      (FreeExtensionOcspCheckFileExtResults()), stored only on success.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeExtensionOcspCheckFileExtResults(const uint8_t* in, uint32_t inLen, OcspCheckFileExtResults** outList);

#ifdef __cplusplus
}
#endif

#endif
