// Algorithm and parameter-set tables, GOST R 34.10 parameter blocks and keys, SubjectPublicKeyInfo,
// and the "OID and parameters" helpers that the signed families share. Expected identifiers are
// written as dotted text and converted by the engine's text reader, and the real certificates were
// made by OpenSSL's GOST engine, so neither side restates the tables under test.
#include <gtest/gtest.h>

#include <cstring>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/pkix/X509Algorithm.h"

using namespace tvtest;
using namespace tv;

namespace {

// The DER element of an identifier given as packed form.
Bytes OidElement(const Bytes& packed) {
    Bytes e{ASN1_OBJECT_IDENTIFIER, packed[0]};
    e.insert(e.end(), packed.begin() + 1, packed.end());
    return e;
}

Bytes Block(std::initializer_list<const char*> oids) {
    Bytes body;
    for (const char* o : oids) {
        Bytes e = OidElement(Packed(o));
        body.insert(body.end(), e.begin(), e.end());
    }
    body.insert(body.begin(), {0x30, static_cast<uint8_t>(body.size())});
    return body;
}

// The SubjectPublicKeyInfo element of a DER certificate, found by walking the headers:
// Certificate { TBSCertificate { [0] version?, serial, signature, issuer, validity, subject, spki ...
Bytes SpkiOf(const Bytes& cert) {
    size_t at = 0, hdr = 0, len = 0;
    uint8_t cls = 0;
    auto next = [&] {
        uint8_t constructed = 0;
        uint32_t tag = 0, contentLen = 0, headerLen = 0;
        EXPECT_EQ(GetAsn1ObjectInfo(cert.data() + at, static_cast<uint32_t>(cert.size() - at), &cls, &constructed, &tag,
                                    &contentLen, nullptr, &headerLen),
                  TV_OK);
        hdr = headerLen;
        len = contentLen;
    };
    for (int outer = 0; outer < 2; ++outer, at += hdr) next();  // Certificate, TBSCertificate
    next();
    if (cls == ASN1_CLASS_CONTEXT) at += hdr + len;  // version
    for (int skip = 0; skip < 5; ++skip, at += hdr + len) next();
    next();
    return Bytes(cert.begin() + at, cert.begin() + at + hdr + len);
}

struct Parts {
    uint32_t rc;
    Bytes oid, key, params;
};

Parts DecodeSpki(const Bytes& spki) {
    Parts p;
    uint8_t oid[64], key[512], params[64];
    uint32_t oidLen = sizeof oid, keyLen = sizeof key, paramsLen = sizeof params;
    p.rc = DecodeSubjectPublicKeyInfo(spki.data(), static_cast<uint32_t>(spki.size()), oid, &oidLen, key, &keyLen,
                                      params, &paramsLen);
    if (p.rc == TV_OK) {
        p.oid.assign(oid, oid + oidLen);
        p.key.assign(key, key + keyLen);
        p.params.assign(params, params + paramsLen);
    }
    return p;
}

// The parameter block encoders, through the size protocol.
Bytes Ids2001(uint8_t mode, uint32_t key, uint32_t digest, uint32_t cipher) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return EncodeAlgorithmGostR34102001Parameters(mode, key, digest, cipher, o, n); });
}
Bytes Oids(uint32_t algId, uint8_t mode, const uint8_t* key, const uint8_t* digest, const uint8_t* cipher) {
    return OldSized([&](uint8_t* o, uint32_t* n) {
        return EncodeAlgorithmGostR3410ParametersOid(algId, mode, key, digest, cipher, o, n);
    });
}

uint32_t DecodeIds(const Bytes& params, uint8_t* mode, uint32_t ids[3]) {
    return DecodeAlgorithmGostR34102001Parameters(params.empty() ? nullptr : params.data(),
                                                  static_cast<uint32_t>(params.size()), mode, &ids[0], &ids[1], &ids[2]);
}

TEST(X509Algorithm, DescriptorsLintClean) {
    for (const Asn1Descriptor* d : {&desc::kAlgorithmIdentifier, &desc::kSubjectPublicKeyInfo,
                                    &desc::kGostR34102001PublicKeyParameters, &desc::kGostR34102012PublicKeyParameters}) {
        EXPECT_TRUE(LintDescriptor(d, "descriptor").empty()) << (d - &desc::kAlgorithmIdentifier);
    }
}

TEST(X509Algorithm, AlgorithmTableBothWays) {
    const struct {
        uint32_t id;
        const char* oid;
    } rows[] = {  // first and last rows, and one of each identifier length
        {1, "1.2.840.113549.1.1.1"}, {100, "1.2.643.2.2.3"}, {102, "1.2.643.2.2.19"}, {3001, "1.2.643.7.1.1.1.2"},
        {3003, "1.2.643.7.1.1.3.3"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.oid);
        const Bytes packed = Packed(row.oid);
        uint32_t id = 0;
        EXPECT_EQ(FindAlgIdByOid(packed.data(), &id), TV_OK);
        EXPECT_EQ(id, row.id);
        uint8_t out[32];
        uint32_t n = sizeof out;
        EXPECT_EQ(GetPublicKeyAlgorithmOid(row.id, out, &n), TV_OK);
        EXPECT_EQ(Bytes(out, out + n), packed);
    }
    uint32_t id = 77;
    EXPECT_EQ(FindAlgIdByOid(Packed("1.2.840.113549.1.1.11").data(), &id), TV_ERR_OID_NOT_FOUND);
    EXPECT_EQ(id, 77u);
    // A proper prefix of a table OID is not a match.
    EXPECT_EQ(FindAlgIdByOid(Packed("1.2.643.7.1.1.1").data(), &id), TV_ERR_OID_NOT_FOUND);
    uint32_t n = 0;
    EXPECT_EQ(GetPublicKeyAlgorithmOid(5, nullptr, &n), TV_ERR_ID_NOT_FOUND);
    EXPECT_EQ(FindAlgIdByOid(nullptr, &id), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(GetPublicKeyAlgorithmOid(1, nullptr, nullptr), TV_ERR_INVALID_ARGUMENT);
}

// Every row of the three parameter-set tables, each with the other two sets held at a known row:
// the ids encode to the block written from the dotted OIDs, and both decoders read it back.
TEST(X509Algorithm, ParameterSetRowsEncodeAndDecode) {
    enum Table { kKey, kDigest, kCipher };
    const struct {
        Table table;
        uint32_t id;
        const char* oid;
    } rows[] = {
        {kKey, 6, "1.2.643.2.2.35.0"},      {kKey, 1, "1.2.643.2.2.35.1"},      {kKey, 2, "1.2.643.2.2.35.2"},
        {kKey, 3, "1.2.643.2.2.35.3"},      {kKey, 4, "1.2.643.2.2.36.0"},      {kKey, 5, "1.2.643.2.2.36.1"},
        {kKey, 7, "1.2.643.7.1.2.1.1.0"},   {kKey, 9, "1.2.643.7.1.2.1.1.1"},   {kKey, 8, "1.2.643.7.1.2.1.2.0"},
        {kKey, 10, "1.2.643.7.1.2.1.2.1"},  {kKey, 11, "1.2.643.7.1.2.1.2.2"},  {kKey, 12, "1.2.643.7.1.2.1.2.3"},
        {kDigest, 2, "1.2.643.2.2.30.0"},   {kDigest, 1, "1.2.643.2.2.30.1"},   {kDigest, 3, "1.2.643.7.1.1.2.2"},
        {kDigest, 4, "1.2.643.7.1.1.2.3"},  {kCipher, 8, "1.2.643.2.2.31.0"},   {kCipher, 1, "1.2.643.2.2.31.1"},
        {kCipher, 2, "1.2.643.2.2.31.2"},   {kCipher, 3, "1.2.643.2.2.31.3"},   {kCipher, 4, "1.2.643.2.2.31.4"},
        {kCipher, 5, "1.2.643.2.2.31.5"},   {kCipher, 6, "1.2.643.2.2.31.6"},   {kCipher, 7, "1.2.643.2.2.31.7"},
        {kCipher, 9, "1.2.643.7.1.2.5.1.1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.oid);
        uint32_t ids[3] = {1, 1, 8};  // CryptoPro A key, CryptoPro digest, test cipher set
        const char* oids[3] = {"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.2.2.31.0"};
        ids[row.table] = row.id;
        oids[row.table] = row.oid;
        // DER leaves out an encryption set equal to the 2001 default (CryptoPro A).
        const Bytes expected = ids[kCipher] == 1 ? Block({oids[0], oids[1]}) : Block({oids[0], oids[1], oids[2]});

        const Bytes block = Ids2001(1, ids[0], ids[1], ids[2]);
        EXPECT_EQ(ToHex(block), ToHex(expected));

        uint8_t mode = 0;
        uint32_t got[3] = {};
        ASSERT_EQ(DecodeIds(block, &mode, got), TV_OK);
        EXPECT_EQ(mode, 1);
        EXPECT_TRUE(std::equal(got, got + 3, ids));

        uint8_t o[3][32];
        uint32_t on[3] = {32, 32, 32};
        ASSERT_EQ(DecodeAlgorithmGostR34102001ParameterOids(block.data(), static_cast<uint32_t>(block.size()), &mode, o[0], &on[0], o[1], &on[1], o[2], &on[2]),
                  TV_OK);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(Bytes(o[i], o[i] + on[i]), Packed(oids[i])) << i;
    }
}

// The blocks of real certificates made by the GOST engine: algorithm and set ids as OpenSSL named
// them (NAME.txt beside each fixture), and both encoders give the block back byte for byte.
TEST(X509Algorithm, RealCertificateBlocksRoundTrip) {
    const struct {
        const char* file;
        uint32_t algId, keySet, digestSet;
        const char* keySetOid;
    } rows[] = {
        {"certs/gost2001.der", 102, 1, 1, "1.2.643.2.2.35.1"},
        {"algorithms/gost2001_B.der", 102, 2, 1, "1.2.643.2.2.35.2"},
        {"algorithms/gost2001_C.der", 102, 3, 1, "1.2.643.2.2.35.3"},
        {"algorithms/gost2001_XA.der", 102, 4, 1, "1.2.643.2.2.36.0"},
        {"algorithms/gost2001_XB.der", 102, 5, 1, "1.2.643.2.2.36.1"},
        {"certs/gost2012_256.der", 3000, 1, 3, "1.2.643.2.2.35.1"},
        {"algorithms/gost2012_256_B.der", 3000, 2, 3, "1.2.643.2.2.35.2"},
        {"algorithms/gost2012_256_C.der", 3000, 3, 3, "1.2.643.2.2.35.3"},
        {"algorithms/gost2012_256_XA.der", 3000, 4, 3, "1.2.643.2.2.36.0"},
        {"algorithms/gost2012_256_XB.der", 3000, 5, 3, "1.2.643.2.2.36.1"},
        {"certs/gost2012_512.der", 3001, 10, 4, "1.2.643.7.1.2.1.2.1"},
        {"algorithms/gost2012_512_B.der", 3001, 11, 4, "1.2.643.7.1.2.1.2.2"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        const Bytes spki = SpkiOf(ReadFile(Fixture(row.file)));
        const Parts p = DecodeSpki(spki);
        ASSERT_EQ(p.rc, TV_OK);
        uint32_t algId = 0;
        ASSERT_EQ(FindAlgIdByOid(p.oid.data(), &algId), TV_OK);
        EXPECT_EQ(algId, row.algId);

        // Ids, with the omitted encryption set read as the 2001 default.
        uint8_t mode = 0;
        uint32_t ids[3] = {};
        ASSERT_EQ(DecodeIds(p.params, &mode, ids), TV_OK);
        EXPECT_EQ(mode, 1);
        EXPECT_EQ(ids[0], row.keySet);
        EXPECT_EQ(ids[1], row.digestSet);
        EXPECT_EQ(ids[2], 1u);
        EXPECT_EQ(ToHex(Ids2001(mode, ids[0], ids[1], ids[2])), ToHex(p.params));

        // OIDs through the block of the key's own algorithm: the 2012 block's default is set Z.
        uint8_t o[3][32];
        uint32_t on[3] = {32, 32, 32};
        ASSERT_EQ(DecodeAlgorithmGostR3410ParameterOids(algId, p.params.data(), static_cast<uint32_t>(p.params.size()),
                                                        &mode, o[0], &on[0], o[1], &on[1], o[2], &on[2]),
                  TV_OK);
        EXPECT_EQ(Bytes(o[0], o[0] + on[0]), Packed(row.keySetOid));
        EXPECT_EQ(Bytes(o[2], o[2] + on[2]), Packed(algId == 102 ? "1.2.643.2.2.31.1" : "1.2.643.7.1.2.5.1.1"));
        EXPECT_EQ(ToHex(Oids(algId, mode, o[0], o[1], o[2])), ToHex(p.params));

        // The key: an OCTET STRING of 64 or 128 octets inside the bit string, unchanged both ways.
        uint8_t raw[200];
        uint32_t rawLen = sizeof raw;
        ASSERT_EQ(DecodePublicKeyGostR34102012(p.key.data(), static_cast<uint32_t>(p.key.size()), raw, &rawLen),
                  TV_OK);
        EXPECT_EQ(rawLen, algId == 3001 ? 128u : 64u);
        EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* n) { return EncodeGostR34102001PublicKey(raw, rawLen, o, n); }), p.key);

        // The tree: checked key and ids, and the whole SubjectPublicKeyInfo re-encodes unchanged.
        Tree tree(&desc::kSubjectPublicKeyInfo);
        ASSERT_EQ(Decode(spki, tree), TV_OK);
        EXPECT_EQ(ToHex(Encode(tree.v, tree.d)), ToHex(spki));
        rawLen = sizeof raw;
        EXPECT_EQ(GetCheckedGostPublicKey(tree.v, raw, &rawLen, &ids[0], &ids[1], &ids[2]), TV_OK);
        EXPECT_EQ(ids[0], row.keySet);
        EXPECT_EQ(rawLen, algId == 3001 ? 128u : 64u);
    }

    // The engine writes the set-C block of a 512-bit key with the key set alone (RFC 9215 lets the
    // digest set go); the block here keeps the digest set mandatory, so that block is refused.
    const Parts c = DecodeSpki(SpkiOf(ReadFile(Fixture("algorithms/gost2012_512_C.der"))));
    ASSERT_EQ(c.rc, TV_OK);
    EXPECT_EQ(ToHex(c.params), ToHex(Block({"1.2.643.7.1.2.1.2.3"})));
    uint8_t mode = 0;
    uint32_t ids[3] = {}, lens[3] = {};
    EXPECT_EQ(DecodeIds(c.params, &mode, ids), TV_ERR_MALFORMED);
    EXPECT_EQ(DecodeAlgorithmGostR3410ParameterOids(3001, c.params.data(), static_cast<uint32_t>(c.params.size()),
                                                    &mode, nullptr, &lens[0], nullptr, &lens[1], nullptr, &lens[2]),
              TV_ERR_MALFORMED);
}

TEST(X509Algorithm, ModesNullAndAbsent) {
    const struct {
        uint8_t mode;
        const char* params;  // hex of the parameters element
        const char* algorithmIdentifier;
    } rows[] = {
        {0, "0500", "30 0A 06 06 2A8503020213 05 00"},
        {255, "", "30 08 06 06 2A8503020213"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(static_cast<int>(row.mode));
        const Bytes params = Hex(row.params);
        for (uint32_t algId : {102u, 3000u, 3001u}) EXPECT_EQ(Oids(algId, row.mode, nullptr, nullptr, nullptr), params);
        EXPECT_EQ(Ids2001(row.mode, 99, 99, 99), params);  // ids unused

        uint8_t mode = 7;
        uint32_t lens[3] = {5, 5, 5};
        ASSERT_EQ(DecodeAlgorithmGostR34102012ParameterOids(params.data(), static_cast<uint32_t>(params.size()), &mode,
                                                            nullptr, &lens[0], nullptr, &lens[1], nullptr, &lens[2]),
                  TV_OK);
        EXPECT_EQ(mode, row.mode);
        EXPECT_EQ(lens[0] + lens[1] + lens[2], 0u);
        mode = 7;
        uint32_t ids[3];
        ASSERT_EQ(DecodeIds(params, &mode, ids), TV_OK);
        EXPECT_EQ(mode, row.mode);

        Tree alg(&desc::kAlgorithmIdentifier);
        ASSERT_EQ(CreateAsn1Object(alg.d, &alg.v, 1), TV_OK);
        ASSERT_EQ(SetAlgorithmGostR34102001AndParameters(alg.as<AlgorithmIdentifier>(), 102, row.mode, 0, 0, 0),
                  TV_OK);
        EXPECT_EQ(ToHex(Encode(alg.v, alg.d)), ToHex(Hex(row.algorithmIdentifier)));
    }
}

TEST(X509Algorithm, ParameterBlockFailures) {
    const Bytes good = Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1"});
    const struct {
        const char* name;
        Bytes params;
        uint32_t rc;
        uint32_t keySet;  // what the lookups left behind; 0 = untouched
    } rows[] = {
        {"one OID only", Block({"1.2.643.2.2.35.1"}), TV_ERR_MALFORMED, 0},
        {"not a SEQUENCE", Hex("06 03 2A 03 04"), TV_ERR_MALFORMED, 0},
        {"truncated", Bytes(good.begin(), good.end() - 1), TV_ERR_MALFORMED, 0},
        {"NULL with contents", Hex("05 01 00"), TV_ERR_MALFORMED, 0},
        {"unknown key set", Block({"1.2.643.2.2.35.9", "1.2.643.2.2.30.1"}), TV_ERR_OID_NOT_FOUND, 0},
        // The lookups stop at the first unknown set: the key set is stored, nothing after it.
        {"unknown digest set", Block({"1.2.643.2.2.35.2", "1.2.643.2.2.35.2"}), TV_ERR_OID_NOT_FOUND, 2},
        {"unknown cipher set", Block({"1.2.643.2.2.35.3", "1.2.643.2.2.30.1", "1.2.643.2.2.31.10"}),
         TV_ERR_OID_NOT_FOUND, 3},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        uint8_t mode = 0;
        uint32_t ids[3] = {};
        EXPECT_EQ(DecodeIds(row.params, &mode, ids), row.rc);
        EXPECT_EQ(ids[0], row.keySet);
        EXPECT_EQ(ids[2], 0u);
    }

    uint8_t mode = 0;
    uint32_t id = 0, len = 0;
    uint8_t out[64];
    const Bytes a = Packed("1.2.643.2.2.35.1"), d = Packed("1.2.643.2.2.30.1");
    // Algorithms outside 102, 3000, 3001 and modes outside 0, 1, 255.
    EXPECT_EQ(DecodeAlgorithmGostR3410ParameterOids(100, good.data(), 2, &mode, nullptr, &len, nullptr, &len, nullptr,
                                                    &len),
              TV_ERR_INVALID_ARGUMENT);
    len = sizeof out;
    EXPECT_EQ(EncodeAlgorithmGostR3410ParametersOid(1, 1, a.data(), d.data(), nullptr, out, &len),
              TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(EncodeAlgorithmGostR3410ParametersOid(102, 2, a.data(), d.data(), nullptr, out, &len),
              TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(EncodeAlgorithmGostR34102001Parameters(1, 1, 1, 10, out, &len), TV_ERR_ID_NOT_FOUND);
    EXPECT_EQ(EncodeAlgorithmGostR34102001Parameters(1, 13, 1, 1, out, &len), TV_ERR_ID_NOT_FOUND);
    EXPECT_EQ(EncodeAlgorithmGostR34102001Parameters(1, 1, 1, 1, out, nullptr), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(DecodeAlgorithmGostR34102001Parameters(good.data(), static_cast<uint32_t>(good.size()), &mode, &id,
                                                     nullptr, &id),
              TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(DecodeAlgorithmGostR34102001Parameters(good.data(), 2, nullptr, &id, &id, &id), TV_ERR_INVALID_ARGUMENT);

    // Ids 1, 1, 9 carry the TC26 set Z explicitly in the 2001 block.
    EXPECT_EQ(ToHex(Ids2001(1, 1, 1, 9)), ToHex(Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.7.1.2.5.1.1"})));
    // In the 2012 block set Z is the default and is left out, CryptoPro A is kept.
    const Bytes z = Packed("1.2.643.7.1.2.5.1.1"), cpA = Packed("1.2.643.2.2.31.1");
    auto oids2012 = [&](const Bytes& cipher) {
        return OldSized([&](uint8_t* o, uint32_t* n) {
            return EncodeAlgorithmGostR34102012ParametersOid(1, a.data(), d.data(), cipher.data(), o, n);
        });
    };
    EXPECT_EQ(ToHex(oids2012(z)), ToHex(good));
    EXPECT_EQ(ToHex(oids2012(cpA)), ToHex(Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.2.2.31.1"})));
    // The 2001 block keeps set Z and leaves out CryptoPro A.
    EXPECT_EQ(ToHex(OldSized([&](uint8_t* o, uint32_t* n) {
                  return EncodeAlgorithmGostR34102001ParametersOid(1, a.data(), d.data(), cpA.data(), o, n);
              })),
              ToHex(good));
}

// ParameterOids delivers all three OIDs before choosing its result: encryption, digest, key.
TEST(X509Algorithm, ParameterOidsSizeEveryPart) {
    const Bytes block = Block({"1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.3", "1.2.643.2.2.31.1"});
    uint8_t mode = 0, key[32], digest[4], cipher[32];
    uint32_t keyLen = sizeof key, digestLen = sizeof digest, cipherLen = sizeof cipher;
    EXPECT_EQ(DecodeAlgorithmGostR34102012ParameterOids(block.data(), static_cast<uint32_t>(block.size()), &mode, key,
                                                        &keyLen, digest, &digestLen, cipher, &cipherLen),
              TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(Bytes(key, key + keyLen), Packed("1.2.643.7.1.2.1.2.1"));
    EXPECT_EQ(digestLen, 9u);
    EXPECT_EQ(Bytes(cipher, cipher + cipherLen), Packed("1.2.643.2.2.31.1"));
}

TEST(X509Algorithm, OidAndParametersHelpers) {
    const Bytes rsa = Packed("1.2.840.113549.1.1.11");
    const Bytes params = Hex("05 00");
    void* slot = nullptr;  // an absent field is created
    void* mirror = nullptr;
    ASSERT_EQ(SetAlgorithmOidAndParameters(&slot, rsa.data(), params.data(), 2, &mirror), TV_OK);
    OwnedValue own(&desc::kAlgorithmIdentifier, slot), ownMirror(&desc::kAlgorithmIdentifier, mirror);
    EXPECT_EQ(ToHex(Encode(slot, &desc::kAlgorithmIdentifier)), ToHex(Hex("300D06092A864886F70D01010B0500")));
    EXPECT_EQ(ToHex(Encode(mirror, &desc::kAlgorithmIdentifier)), ToHex(Hex("300D06092A864886F70D01010B0500")));

    // Size query of both parts at once; then a short OID buffer: 49 with both sizes filled in.
    uint32_t oidLen = 0, paramsLen = 0;
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, nullptr, &oidLen, nullptr, &paramsLen), TV_OK);
    EXPECT_EQ(oidLen, 10u);
    EXPECT_EQ(paramsLen, 2u);
    uint8_t oid[16], out[16];
    oidLen = 3;
    paramsLen = sizeof out;
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, oid, &oidLen, out, &paramsLen), TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(oidLen, 10u);
    EXPECT_EQ(Bytes(out, out + paramsLen), params);  // the parameters part ran anyway
    // 49 from the parameters wins over nothing; a null parameters length is fine without a buffer.
    oidLen = sizeof oid;
    paramsLen = 1;
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, oid, &oidLen, out, &paramsLen), TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(Bytes(oid, oid + oidLen), rsa);
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, oid, &oidLen, nullptr, nullptr), TV_OK);
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, oid, &oidLen, out, nullptr), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(GetAlgorithmOidAndParameters(nullptr, oid, &oidLen, out, &paramsLen), TV_ERR_ABSENT);
    EXPECT_EQ(GetAlgorithmOidAndParameters(slot, oid, nullptr, out, &paramsLen), TV_ERR_INVALID_ARGUMENT);

    // Replacing works every time (a fresh identifier value, not a second set on the old one);
    // empty parameters are absent and read back as length 0.
    for (uint32_t algId : {3002u, 102u}) {
        SCOPED_TRACE(algId);
        ASSERT_EQ(SetAlgorithmIdAndParameters(&slot, algId, params.data(), 0), TV_OK);
        oidLen = sizeof oid;
        paramsLen = sizeof out;
        ASSERT_EQ(GetAlgorithmOidAndParameters(slot, oid, &oidLen, out, &paramsLen), TV_OK);
        uint32_t id = 0;
        EXPECT_EQ(FindAlgIdByOid(oid, &id), TV_OK);
        EXPECT_EQ(id, algId);
        EXPECT_EQ(paramsLen, 0u);
    }
    // An unknown id leaves both fields as they were.
    EXPECT_EQ(SetAlgorithmIdAndParameters(&slot, 5, nullptr, 0, &mirror), TV_ERR_ID_NOT_FOUND);
    EXPECT_EQ(ToHex(Encode(mirror, &desc::kAlgorithmIdentifier)), ToHex(Hex("300D06092A864886F70D01010B0500")));
    EXPECT_EQ(tv::SetAlgorithmGostR34102001AndParameters(&slot, 3000, 1, 9, 3, 9, &mirror), TV_OK);
    EXPECT_EQ(ToHex(Encode(mirror, &desc::kAlgorithmIdentifier)), ToHex(Encode(slot, &desc::kAlgorithmIdentifier)));
}

TEST(X509Algorithm, SubjectPublicKeyInfoDecoding) {
    const Bytes rsaSpki = SpkiOf(ReadFile(Fixture("certs/rsa_ca.der")));
    Parts p = DecodeSpki(rsaSpki);
    ASSERT_EQ(p.rc, TV_OK);
    EXPECT_EQ(p.oid, Packed("1.2.840.113549.1.1.1"));
    EXPECT_EQ(p.params, Hex("0500"));
    EXPECT_EQ(p.key.size(), 270u);  // RSAPublicKey of a 2048-bit modulus

    // The key's 49 comes first; the OID and parameters are still delivered.
    const Bytes spki = SpkiOf(ReadFile(Fixture("certs/gost2012_512.der")));
    uint8_t oid[4], key[8], params[64];
    uint32_t oidLen = sizeof oid, keyLen = sizeof key, paramsLen = sizeof params;
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), static_cast<uint32_t>(spki.size()), oid, &oidLen, key, &keyLen,
                                         params, &paramsLen),
              TV_ERR_BUFFER_TOO_SMALL);
    EXPECT_EQ(oidLen, 9u);
    EXPECT_EQ(keyLen, 131u);
    EXPECT_EQ(paramsLen, 23u);
    EXPECT_EQ(params[0], 0x30);
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), static_cast<uint32_t>(spki.size()), oid, &oidLen, key, &keyLen,
                                         params, nullptr),
              TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(DecodeSubjectPublicKeyInfo(spki.data(), 5, nullptr, &oidLen, nullptr, &keyLen, nullptr, &paramsLen),
              TV_ERR_MALFORMED);

    Tree tree(&desc::kSubjectPublicKeyInfo);
    ASSERT_EQ(Decode(spki, tree), TV_OK);
    keyLen = 0;
    EXPECT_EQ(GetSubjectPublicKeyInfoPublicKey(tree.as<SubjectPublicKeyInfo>(), nullptr, &keyLen), TV_OK);
    EXPECT_EQ(keyLen, 131u);
    EXPECT_EQ(GetSubjectPublicKeyInfoPublicKey(nullptr, nullptr, &keyLen), TV_ERR_INVALID_ARGUMENT);
}

TEST(X509Algorithm, GostKeysInTheTree) {
    const Bytes spki = SpkiOf(ReadFile(Fixture("certs/gost2012_256.der")));
    Tree tree(&desc::kSubjectPublicKeyInfo);
    ASSERT_EQ(Decode(spki, tree), TV_OK);
    void** slots = tree.as<void*>();
    uint8_t key[256];
    uint32_t keyLen = sizeof key, ids[3];

    // A 256-bit key whose block names the 512-bit digest is refused, and so are keys without a block
    // or of another algorithm.
    const struct {
        const char* name;
        uint32_t algId;
        Bytes params;
        uint32_t rc;
    } rows[] = {
        {"2012-256 with the 512-bit digest", 3000, Block({"1.2.643.2.2.35.1", "1.2.643.7.1.1.2.3"}), TV_ERR_KEY_KIND},
        {"2012-256 with a 512-bit key set", 3000, Block({"1.2.643.7.1.2.1.2.1", "1.2.643.7.1.1.2.2"}), TV_ERR_KEY_KIND},
        {"2012-512 with a 256-bit key set", 3001, Block({"1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.3"}), TV_ERR_KEY_KIND},
        {"2001 with the 2012 digest", 102, Block({"1.2.643.2.2.35.1", "1.2.643.7.1.1.2.2"}), TV_ERR_KEY_KIND},
        {"2001 test set", 102, Block({"1.2.643.2.2.35.0", "1.2.643.2.2.30.0"}), TV_OK},
        {"2012-256 TC26 A", 3000, Block({"1.2.643.7.1.2.1.1.1", "1.2.643.7.1.1.2.2"}), TV_OK},
        {"NULL parameters", 3000, Hex("05 00"), TV_ERR_KEY_KIND},
        {"no parameters", 3000, Bytes{}, TV_ERR_KEY_KIND},
        {"RSA key", 1, Hex("05 00"), TV_ERR_KEY_KIND},
        {"signature algorithm", 3002, Bytes{}, TV_ERR_KEY_KIND},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(SetAlgorithmIdAndParameters(&slots[desc::kSpkiAlgorithm], row.algId, row.params.data(),
                                              static_cast<uint32_t>(row.params.size())),
                  TV_OK);
        keyLen = sizeof key;
        EXPECT_EQ(GetCheckedGostPublicKey(tree.v, key, &keyLen, &ids[0], &ids[1], &ids[2]), row.rc);
    }
    ASSERT_EQ(SetAlgorithmOidAndParameters(&slots[desc::kSpkiAlgorithm], Packed("1.2.643.100.1").data(), nullptr, 0),
              TV_OK);
    EXPECT_EQ(GetCheckedGostPublicKey(tree.v, key, &keyLen, &ids[0], &ids[1], &ids[2]), TV_ERR_OID_NOT_FOUND);

    // Raw keys in and out of the OCTET STRING; the fixed working buffers bound them.
    Bytes raw(64);
    for (size_t i = 0; i < raw.size(); ++i) raw[i] = static_cast<uint8_t>(i * 7);
    ASSERT_EQ(SetGostPublicKey(tree.v, raw.data(), 64), TV_OK);
    keyLen = sizeof key;
    ASSERT_EQ(GetSubjectPublicKey(tree.v, key, &keyLen), TV_OK);
    EXPECT_EQ(ToHex(key, 2), ToHex(Hex("0440")));
    keyLen = sizeof key;
    ASSERT_EQ(GetGostPublicKey(tree.v, key, &keyLen), TV_OK);
    EXPECT_EQ(Bytes(key, key + keyLen), raw);
    Bytes big(254);
    EXPECT_EQ(SetGostPublicKey(tree.v, big.data(), 253), TV_OK);  // 04 81 FD + 253 octets fill the 256
    EXPECT_EQ(SetGostPublicKey(tree.v, big.data(), 254), TV_ERR_WORK_BUFFER);
    Bytes bigger(271);
    ASSERT_EQ(SetSubjectPublicKey(tree.v, bigger.data(), 271), TV_OK);
    keyLen = sizeof key;
    EXPECT_EQ(GetGostPublicKey(tree.v, key, &keyLen), TV_ERR_WORK_BUFFER);
    FreeAsn1Object(&desc::kBitString, slots[desc::kSubjectPublicKey]);
    slots[desc::kSubjectPublicKey] = nullptr;
    ASSERT_EQ(SetSubjectPublicKey(tree.v, raw.data(), 64), TV_OK);  // created when absent
    keyLen = sizeof key;
    EXPECT_EQ(GetSubjectPublicKey(tree.v, key, &keyLen), TV_OK);
}

TEST(X509Algorithm, PublicKeyOctetStringRefusesOtherElements) {
    const Bytes bitString = Hex("03 02 00 01");
    uint8_t out[8];
    uint32_t n = sizeof out;
    EXPECT_EQ(DecodePublicKeyGostR34102001(bitString.data(), 4, out, &n), TV_ERR_MALFORMED);
    EXPECT_EQ(DecodePublicKeyGostR34102001(nullptr, 4, out, &n), TV_ERR_INVALID_ARGUMENT);
    EXPECT_EQ(EncodeGostR34102012PublicKey(nullptr, 3, out, &n), TV_ERR_INVALID_ARGUMENT);
}

TEST(X509Algorithm, AllocationFailuresLeaveNothingBehind) {
    const Bytes spki = SpkiOf(ReadFile(Fixture("certs/gost2001.der")));
    int runs = ForEachAllocationFailure([&] {
        uint8_t oid[16], key[80], params[32];
        uint32_t oidLen = sizeof oid, keyLen = sizeof key, paramsLen = sizeof params;
        return DecodeSubjectPublicKeyInfo(spki.data(), static_cast<uint32_t>(spki.size()), oid, &oidLen, key, &keyLen,
                                          params, &paramsLen);
    });
    EXPECT_GT(runs, 1);
    runs = ForEachAllocationFailure([&] {
        void* slot = nullptr;
        void* mirror = nullptr;
        uint32_t rc = tv::SetAlgorithmGostR34102001AndParameters(&slot, 102, 1, 1, 1, 1, &mirror);
        FreeAsn1Object(&desc::kAlgorithmIdentifier, slot);
        FreeAsn1Object(&desc::kAlgorithmIdentifier, mirror);
        return rc;
    });
    EXPECT_GT(runs, 1);
    const Bytes block = Block({"1.2.643.2.2.35.1", "1.2.643.2.2.30.1", "1.2.643.2.2.31.3"});
    runs = ForEachAllocationFailure([&] {
        uint8_t mode = 0;
        uint32_t ids[3];
        return DecodeIds(block, &mode, ids);
    });
    EXPECT_GT(runs, 1);
}

}  // namespace
