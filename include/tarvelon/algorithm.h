/**
 * @file tarvelon/algorithm.h
 * Algorithm identifiers, GOST R 34.10 public-key parameters and keys, SubjectPublicKeyInfo.
 *
 * Algorithm ids: 1 rsaEncryption, 2 md2WithRSA, 3 md5WithRSA, 4 sha1WithRSA, 100 GOST R 34.11-94
 * with GOST R 34.10-2001, 101 GOST R 34.11-94 with GOST R 34.10-94, 102 GOST R 34.10-2001 key, 103
 * GOST R 34.10-94 key, 1000 GOST 28147-89, 2000 GOST R 34.11-94, 3000 and 3001 GOST R 34.10-2012
 * keys (256 and 512 bits), 3002 and 3003 GOST R 34.10-2012 signatures with GOST R 34.11-2012 (256,
 * 512).
 *
 * GOST parameter mode: 1 a parameter block, 0 NULL parameters (05 00), 255 no parameters.
 *
 * Parameter-set ids, for the functions that take or give numbers instead of OIDs:
 *   - public-key sets: 1 to 3 CryptoPro A, B, C (1.2.643.2.2.35.1-3), 4 and 5 CryptoPro XchA, XchB
 *     (1.2.643.2.2.36.0-1), 6 the 2001 test set (1.2.643.2.2.35.0), 7 and 9 the 256-bit test set and
 *     set A (1.2.643.7.1.2.1.1.0-1), 8 and 10 to 12 the 512-bit test set and sets A, B, C
 *     (1.2.643.7.1.2.1.2.0-3);
 *   - digest sets: 1 CryptoPro (1.2.643.2.2.30.1), 2 test (1.2.643.2.2.30.0), 3 and 4 GOST R
 *     34.11-2012 256 and 512 (1.2.643.7.1.1.2.2-3);
 *   - encryption sets: 1 to 4 CryptoPro A to D (1.2.643.2.2.31.1-4), 5 Oscar 1.1, 6 Oscar 1.0, 7 RIC 1
 *     (1.2.643.2.2.31.5-7), 8 test (1.2.643.2.2.31.0), 9 TC26 Z (1.2.643.7.1.2.5.1.1).
 *
 * The parameter block of a GOST R 34.10-2001 key leaves out an encryption set equal to CryptoPro A,
 * that of a GOST R 34.10-2012 key one equal to TC26 Z; both blocks require the digest set.
 */
#ifndef TARVELON_ALGORITHM_H
#define TARVELON_ALGORITHM_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }. */
typedef struct AlgorithmIdentifier AlgorithmIdentifier;
/** SubjectPublicKeyInfo ::= SEQUENCE { algorithm AlgorithmIdentifier, subjectPublicKey BIT STRING }. */
typedef struct SubjectPublicKeyInfo SubjectPublicKeyInfo;

/* Algorithm and parameter-set tables. */
/**
 * Looks an algorithm OID up in the library's table and gives its algorithm id.
 *
 * @param[in]  inOid     Packed OID (borrowed).
 * @param[out] outAlgId  Receives the algorithm id (see the list at the top of this page).
 * @return #TV_OK, or a status code; #TV_ERR_OID_NOT_FOUND (308) for an OID not in the table.
 */
TV_API uint32_t FindAlgIdByOid(const uint8_t* inOid, uint32_t* outAlgId);
/**
 * Gives the packed OID of an algorithm id, of any algorithm in the table, not only of key algorithms.
 *
 * @param[in]     algId   Algorithm id (see the list at the top of this page).
 * @param[out]    out     Caller buffer for the packed OID, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ID_NOT_FOUND (309) for an id not in the table.
 */
TV_API uint32_t GetPublicKeyAlgorithmOid(uint32_t algId, uint8_t* out, uint32_t* outLen);

/* GOST R 34.10 public-key parameter blocks; algId 102 selects the 2001 block, 3000 and 3001 the 2012
 * block. */
/**
 * Reads the parameters field of a GOST R 34.10 key's algorithm identifier into its mode and the
 * packed OIDs of its three parameter sets.
 *
 * No input (null or length 0) gives mode 255 and the NULL element 05 00 mode 0, each with the three
 * lengths 0. A block gives mode 1 and all three OIDs, each delivered or sized whatever the others
 * answered; an encryption set the block leaves out comes back as the block's default (CryptoPro A for
 * 102, TC26 Z for 3000 and 3001). The OIDs are not looked up in the parameter-set tables. The digest
 * set is required in both layouts: a 2012 block holding the key set alone is refused.
 *
 * @param[in]     algId                     102 for the 2001 layout, 3000 or 3001 for the 2012 layout.
 * @param[in]     in                        The parameters element (borrowed), or null.
 * @param[in]     inLen                     Octets in @p in, 0 when there are no parameters.
 * @param[out]    outMode                   Receives 1, 0 or 255 (see the top of this page).
 * @param[out]    outPublicKeyParamOid      Caller buffer for the packed public-key set OID, or null.
 * @param[in,out] outPublicKeyParamOidLen   Room in @p outPublicKeyParamOid; the octets written or
 *                                          needed (@ref size_protocol).
 * @param[out]    outDigestParamOid         Caller buffer for the packed digest set OID, or null.
 * @param[in,out] outDigestParamOidLen      Room in @p outDigestParamOid; the octets written or needed.
 * @param[out]    outEncryptionParamOid     Caller buffer for the packed encryption set OID, or null.
 * @param[in,out] outEncryptionParamOidLen  Room in @p outEncryptionParamOid; the octets written or
 *                                          needed.
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another @p algId;
 *         #TV_ERR_MALFORMED (302) for parameters that are none of the three forms, whatever the
 *         decoder found wrong in them.
 */
TV_API uint32_t DecodeAlgorithmGostR3410ParameterOids(uint32_t algId, const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
/**
 * DecodeAlgorithmGostR3410ParameterOids() for the parameter block of a GOST R 34.10-2001 key (102):
 * an encryption set left out comes back as CryptoPro A.
 *
 * @param[in]     in                        The parameters element (borrowed), or null.
 * @param[in]     inLen                     Octets in @p in, 0 when there are no parameters.
 * @param[out]    outMode                   Receives 1, 0 or 255 (see the top of this page).
 * @param[out]    outPublicKeyParamOid      Caller buffer for the packed public-key set OID, or null.
 * @param[in,out] outPublicKeyParamOidLen   Room in @p outPublicKeyParamOid; the octets written or
 *                                          needed (@ref size_protocol).
 * @param[out]    outDigestParamOid         Caller buffer for the packed digest set OID, or null.
 * @param[in,out] outDigestParamOidLen      Room in @p outDigestParamOid; the octets written or needed.
 * @param[out]    outEncryptionParamOid     Caller buffer for the packed encryption set OID, or null.
 * @param[in,out] outEncryptionParamOidLen  Room in @p outEncryptionParamOid; the octets written or
 *                                          needed.
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for parameters that are none of the
 *         three forms.
 */
TV_API uint32_t DecodeAlgorithmGostR34102001ParameterOids(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
/**
 * DecodeAlgorithmGostR3410ParameterOids() for the parameter block of a GOST R 34.10-2012 key (3000
 * or 3001): an encryption set left out comes back as TC26 Z, and the digest set is required.
 *
 * @param[in]     in                        The parameters element (borrowed), or null.
 * @param[in]     inLen                     Octets in @p in, 0 when there are no parameters.
 * @param[out]    outMode                   Receives 1, 0 or 255 (see the top of this page).
 * @param[out]    outPublicKeyParamOid      Caller buffer for the packed public-key set OID, or null.
 * @param[in,out] outPublicKeyParamOidLen   Room in @p outPublicKeyParamOid; the octets written or
 *                                          needed (@ref size_protocol).
 * @param[out]    outDigestParamOid         Caller buffer for the packed digest set OID, or null.
 * @param[in,out] outDigestParamOidLen      Room in @p outDigestParamOid; the octets written or needed.
 * @param[out]    outEncryptionParamOid     Caller buffer for the packed encryption set OID, or null.
 * @param[in,out] outEncryptionParamOidLen  Room in @p outEncryptionParamOid; the octets written or
 *                                          needed.
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for parameters that are none of the
 *         three forms, also for a block without its digest set.
 */
TV_API uint32_t DecodeAlgorithmGostR34102012ParameterOids(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
/**
 * Reads the parameters field of a GOST R 34.10 key's algorithm identifier into its mode and the ids
 * of its three parameter sets.
 *
 * No input or the NULL element gives mode 255 or 0 and leaves the ids untouched; their pointers may
 * then be null. A block is always read in the 2001 layout, so an encryption set it leaves out reads
 * as 1 (CryptoPro A), also for the block of a 2012 key, whose own default is 9 (TC26 Z). The sets are
 * looked up in the order key, digest, encryption, and the lookups stop at the first unknown set: the
 * ids before it are stored, the others are not.
 *
 * @param[in]  in                    The parameters element (borrowed), or null.
 * @param[in]  inLen                 Octets in @p in, 0 when there are no parameters.
 * @param[out] outMode               Receives 1, 0 or 255 (see the top of this page).
 * @param[out] outPublicKeyParamId   Receives the public-key set id; required for a block.
 * @param[out] outDigestParamId      Receives the digest set id; required for a block.
 * @param[out] outEncryptionParamId  Receives the encryption set id; required for a block.
 * @return #TV_OK, or a status code; #TV_ERR_MALFORMED (302) for parameters that are none of the
 *         three forms, #TV_ERR_OID_NOT_FOUND (308) for a set not in its table.
 */
TV_API uint32_t DecodeAlgorithmGostR34102001Parameters(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint32_t* outPublicKeyParamId, uint32_t* outDigestParamId, uint32_t* outEncryptionParamId);
/**
 * Writes the parameters field of a GOST R 34.10 key's algorithm identifier from packed set OIDs.
 *
 * Mode 255 stores the length 0 and writes nothing, mode 0 writes the NULL element 05 00, mode 1 a
 * block; the OIDs are used in mode 1 only and are not checked against the parameter-set tables. An
 * encryption set equal to the block's default (CryptoPro A for 102, TC26 Z for 3000 and 3001) is left
 * out, as DER requires.
 *
 * @param[in]     algId                 102 for the 2001 layout, 3000 or 3001 for the 2012 layout.
 * @param[in]     mode                  1, 0 or 255 (see the top of this page).
 * @param[in]     inPublicKeyParamOid   Packed public-key set OID (borrowed); required in mode 1.
 * @param[in]     inDigestParamOid      Packed digest set OID (borrowed); required in mode 1.
 * @param[in]     inEncryptionParamOid  Packed encryption set OID (borrowed), or null to leave it out.
 * @param[out]    out                   Caller buffer for the parameters element, or null to ask its
 *                                      size.
 * @param[in,out] outLen                Room in @p out; the octets written or needed
 *                                      (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another @p algId or @p mode.
 */
TV_API uint32_t EncodeAlgorithmGostR3410ParametersOid(uint32_t algId, uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
/**
 * EncodeAlgorithmGostR3410ParametersOid() for a GOST R 34.10-2001 key (102): an encryption set equal
 * to CryptoPro A is left out.
 *
 * @param[in]     mode                  1, 0 or 255 (see the top of this page).
 * @param[in]     inPublicKeyParamOid   Packed public-key set OID (borrowed); required in mode 1.
 * @param[in]     inDigestParamOid      Packed digest set OID (borrowed); required in mode 1.
 * @param[in]     inEncryptionParamOid  Packed encryption set OID (borrowed), or null to leave it out.
 * @param[out]    out                   Caller buffer for the parameters element, or null to ask its
 *                                      size.
 * @param[in,out] outLen                Room in @p out; the octets written or needed
 *                                      (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another @p mode.
 */
TV_API uint32_t EncodeAlgorithmGostR34102001ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
/**
 * EncodeAlgorithmGostR3410ParametersOid() for a GOST R 34.10-2012 key (3000 or 3001): an encryption
 * set equal to TC26 Z is left out.
 *
 * @param[in]     mode                  1, 0 or 255 (see the top of this page).
 * @param[in]     inPublicKeyParamOid   Packed public-key set OID (borrowed); required in mode 1.
 * @param[in]     inDigestParamOid      Packed digest set OID (borrowed); required in mode 1.
 * @param[in]     inEncryptionParamOid  Packed encryption set OID (borrowed), or null to leave it out.
 * @param[out]    out                   Caller buffer for the parameters element, or null to ask its
 *                                      size.
 * @param[in,out] outLen                Room in @p out; the octets written or needed
 *                                      (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_INVALID_ARGUMENT also for another @p mode.
 */
TV_API uint32_t EncodeAlgorithmGostR34102012ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
/**
 * Writes the parameters field of a GOST R 34.10 key's algorithm identifier from parameter-set ids.
 *
 * The block is always written in the 2001 layout, whatever sets the ids name: an encryption set 1
 * (CryptoPro A) is left out, 9 (TC26 Z) is written. The ids are looked up in mode 1 only.
 *
 * @param[in]     mode               1, 0 or 255 (see the top of this page); 255 stores the length 0.
 * @param[in]     publicKeyParamId   Public-key set id (see the top of this page).
 * @param[in]     digestParamId      Digest set id.
 * @param[in]     encryptionParamId  Encryption set id; there is no way to leave it out but 1.
 * @param[out]    out                Caller buffer for the parameters element, or null to ask its size.
 * @param[in,out] outLen             Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ID_NOT_FOUND (309) for an id not in its table,
 *         #TV_ERR_INVALID_ARGUMENT also for another @p mode.
 */
TV_API uint32_t EncodeAlgorithmGostR34102001Parameters(uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId, uint8_t* out, uint32_t* outLen);
/**
 * Sets the OID and the parameters of an algorithm identifier in place: the OID of @p algId and the
 * parameters written as EncodeAlgorithmGostR34102001Parameters() writes them (none in mode 255).
 *
 * Any id of the algorithm table is accepted. After a failure the identifier is unchanged.
 *
 * @param[in,out] algorithm          The algorithm identifier to change (borrowed).
 * @param[in]     algId              Algorithm id (see the top of this page).
 * @param[in]     mode               1, 0 or 255 (see the top of this page).
 * @param[in]     publicKeyParamId   Public-key set id; used in mode 1 only.
 * @param[in]     digestParamId      Digest set id; used in mode 1 only.
 * @param[in]     encryptionParamId  Encryption set id; used in mode 1 only.
 * @return #TV_OK, or a status code; #TV_ERR_ID_NOT_FOUND (309) for an algorithm or set id not in
 *         its table, #TV_ERR_INVALID_ARGUMENT also for another @p mode.
 */
TV_API uint32_t SetAlgorithmGostR34102001AndParameters(AlgorithmIdentifier* algorithm, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* GOST public keys: the raw key octets as given, wrapped in or taken out of a DER OCTET STRING. */
/**
 * Wraps a GOST R 34.10-2001 public key in the DER OCTET STRING that the subjectPublicKey bits carry.
 *
 * The key octets (64 of them) are taken as given; their number is not checked.
 *
 * @param[in]     in      The key value (borrowed); null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the OCTET STRING, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeGostR34102001PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Wraps a GOST R 34.10-2012 public key (64 or 128 octets) in the DER OCTET STRING that the
 * subjectPublicKey bits carry; the same operation as EncodeGostR34102001PublicKey().
 *
 * @param[in]     in      The key value (borrowed), taken as given; null only with @p inLen 0.
 * @param[in]     inLen   Octets in @p in, not checked.
 * @param[out]    out     Caller buffer for the OCTET STRING, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t EncodeGostR34102012PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Takes a GOST R 34.10-2001 public key out of the DER OCTET STRING that the subjectPublicKey bits
 * carry; octets after that element are ignored, and the key's length is not checked.
 *
 * @param[in]     in      The OCTET STRING element (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the key value, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodePublicKeyGostR34102001(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
/**
 * Takes a GOST R 34.10-2012 public key out of the DER OCTET STRING that the subjectPublicKey bits
 * carry; the same operation as DecodePublicKeyGostR34102001().
 *
 * @param[in]     in      The OCTET STRING element (borrowed).
 * @param[in]     inLen   Octets in @p in.
 * @param[out]    out     Caller buffer for the key value, or null to ask its size.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodePublicKeyGostR34102012(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* SubjectPublicKeyInfo: packed algorithm OID, subjectPublicKey octets, parameters element (length 0 when
 * absent). */
/**
 * Reads a DER SubjectPublicKeyInfo into its packed algorithm OID, its key octets and its parameters
 * element.
 *
 * All three parts are delivered or sized in one call, so null buffers ask every size at once. Of
 * several failures the key's is returned, then the parameters', then the OID's. Octets after the
 * element are ignored.
 *
 * @param[in]     in            The SubjectPublicKeyInfo element (borrowed).
 * @param[in]     inLen         Octets in @p in.
 * @param[out]    outOid        Caller buffer for the packed algorithm OID, or null to ask its size.
 * @param[in,out] outOidLen     Room in @p outOid; the octets written or needed (@ref size_protocol).
 * @param[out]    outKey        Caller buffer for the subjectPublicKey octets (without the unused-bits
 *                              octet), or null to ask their number.
 * @param[in,out] outKeyLen     Room in @p outKey; the octets written or needed.
 * @param[out]    outParams     Caller buffer for the whole parameters element, or null to ask its
 *                              size.
 * @param[in,out] outParamsLen  Room in @p outParams; the octets written or needed, 0 when the
 *                              algorithm identifier has no parameters.
 * @return #TV_OK, or a status code.
 */
TV_API uint32_t DecodeSubjectPublicKeyInfo(const uint8_t* in, uint32_t inLen, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outKey, uint32_t* outKeyLen, uint8_t* outParams, uint32_t* outParamsLen);
/**
 * Copies the subjectPublicKey octets of a SubjectPublicKeyInfo (for a GOST key, the OCTET STRING
 * that DecodePublicKeyGostR34102001() opens).
 *
 * @param[in]     info    The SubjectPublicKeyInfo (borrowed).
 * @param[out]    out     Caller buffer for the key octets, without the unused-bits octet, or null to
 *                        ask their number.
 * @param[in,out] outLen  Room in @p out; the octets written or needed (@ref size_protocol).
 * @return #TV_OK, or a status code; #TV_ERR_ABSENT (311) when the key is absent.
 */
TV_API uint32_t GetSubjectPublicKeyInfoPublicKey(const SubjectPublicKeyInfo* info, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
