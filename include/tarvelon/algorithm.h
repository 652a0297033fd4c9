/* Tarvelon: algorithm identifiers, GOST R 34.10 public-key parameters and keys, SubjectPublicKeyInfo.
 *
 * Algorithm ids: 1 rsaEncryption, 2 md2WithRSA, 3 md5WithRSA, 4 sha1WithRSA, 100 GOST R 34.11-94 with
 * GOST R 34.10-2001, 101 GOST R 34.11-94 with GOST R 34.10-94, 102 GOST R 34.10-2001 key, 103
 * GOST R 34.10-94 key, 1000 GOST 28147-89, 2000 GOST R 34.11-94, 3000 and 3001 GOST R 34.10-2012 keys
 * (256 and 512 bits), 3002 and 3003 GOST R 34.10-2012 signatures with GOST R 34.11-2012 (256, 512).
 * GOST parameter mode: 1 a parameter block, 0 NULL parameters (05 00), 255 no parameters. */
#ifndef TARVELON_ALGORITHM_H
#define TARVELON_ALGORITHM_H

#include "tarvelon/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL } */
typedef struct AlgorithmIdentifier AlgorithmIdentifier;
/* SubjectPublicKeyInfo ::= SEQUENCE { algorithm AlgorithmIdentifier, subjectPublicKey BIT STRING } */
typedef struct SubjectPublicKeyInfo SubjectPublicKeyInfo;

/* Algorithm and parameter-set tables. */
TV_API uint32_t FindAlgIdByOid(const uint8_t* inOid, uint32_t* outAlgId);
TV_API uint32_t GetPublicKeyAlgorithmOid(uint32_t algId, uint8_t* out, uint32_t* outLen);

/* GOST R 34.10 public-key parameter blocks; algId 102 selects the 2001 block, 3000 and 3001 the 2012 block. */
TV_API uint32_t DecodeAlgorithmGostR3410ParameterOids(uint32_t algId, const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
TV_API uint32_t DecodeAlgorithmGostR34102001ParameterOids(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
TV_API uint32_t DecodeAlgorithmGostR34102012ParameterOids(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint8_t* outPublicKeyParamOid, uint32_t* outPublicKeyParamOidLen, uint8_t* outDigestParamOid, uint32_t* outDigestParamOidLen, uint8_t* outEncryptionParamOid, uint32_t* outEncryptionParamOidLen);
TV_API uint32_t DecodeAlgorithmGostR34102001Parameters(const uint8_t* in, uint32_t inLen, uint8_t* outMode, uint32_t* outPublicKeyParamId, uint32_t* outDigestParamId, uint32_t* outEncryptionParamId);
TV_API uint32_t EncodeAlgorithmGostR3410ParametersOid(uint32_t algId, uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeAlgorithmGostR34102001ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeAlgorithmGostR34102012ParametersOid(uint8_t mode, const uint8_t* inPublicKeyParamOid, const uint8_t* inDigestParamOid, const uint8_t* inEncryptionParamOid, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeAlgorithmGostR34102001Parameters(uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId, uint8_t* out, uint32_t* outLen);
TV_API uint32_t SetAlgorithmGostR34102001AndParameters(AlgorithmIdentifier* algorithm, uint32_t algId, uint8_t mode, uint32_t publicKeyParamId, uint32_t digestParamId, uint32_t encryptionParamId);

/* GOST public keys: the raw key octets as given, wrapped in or taken out of a DER OCTET STRING. */
TV_API uint32_t EncodeGostR34102001PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t EncodeGostR34102012PublicKey(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodePublicKeyGostR34102001(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);
TV_API uint32_t DecodePublicKeyGostR34102012(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen);

/* SubjectPublicKeyInfo: packed algorithm OID, subjectPublicKey octets, parameters element (length 0 when absent). */
TV_API uint32_t DecodeSubjectPublicKeyInfo(const uint8_t* in, uint32_t inLen, uint8_t* outOid, uint32_t* outOidLen, uint8_t* outKey, uint32_t* outKeyLen, uint8_t* outParams, uint32_t* outParamsLen);
TV_API uint32_t GetSubjectPublicKeyInfoPublicKey(const SubjectPublicKeyInfo* info, uint8_t* out, uint32_t* outLen);

#ifdef __cplusplus
}
#endif

#endif
