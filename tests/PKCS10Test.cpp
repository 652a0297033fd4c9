// Certification requests: real requests made by OpenSSL (with its GOST engine) decode, re-encode
// byte for byte and give the signed bytes OpenSSL signed; requests built field by field read back;
// requested extensions through both attribute OIDs and the 1024-octet limit.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "DescriptorLint.h"
#include "TestUtil.h"
#include "tarvelon/x509/pkcs10.h"

using namespace tvtest;

namespace {

struct Request {
    PKCS10CertReq* r = nullptr;
    Request() = default;
    explicit Request(const Bytes& der) {
        EXPECT_EQ(DecodePKCS10CertReq(der.data(), static_cast<uint32_t>(der.size()), &r), 0u);
    }
    ~Request() { FreePKCS10CertReq(r); }
};

Bytes Encoded(const PKCS10CertReq* r) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return EncodePKCS10CertReq(r, o, n); });
}
Bytes Tbs(const PKCS10CertReq* r) {
    return OldSized([&](uint8_t* o, uint32_t* n) { return GetPKCS10CertReqToBeSignedPart(r, o, n); });
}

uint32_t ExtensionCount(PKCS10CertReq* r, uint32_t* rc = nullptr) {
    X509Extensions* e = nullptr;
    uint32_t code = GetPKCS10CertReqExtensions(r, &e);
    if (rc) {
        *rc = code;
    } else {
        EXPECT_EQ(code, 0u);
    }
    uint32_t count = 0;
    if (code == 0) {
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(e, &count), 0u);
    }
    FreeX509Extensions(e);
    return count;
}

uint32_t AttributeCount(PKCS10CertReq* r, const Bytes& oid) {
    RsaAttributes* a = nullptr;
    EXPECT_EQ(GetPKCS10CertReqAttributes(r, &a), 0u);
    uint32_t total = 0, matches = 0;
    EXPECT_EQ(GetRsaAttributesAttributesCount(a, &total), 0u);
    for (uint32_t i = 0; i < total; ++i) {
        uint8_t buf[32];
        uint32_t n = sizeof buf;
        EXPECT_EQ(GetRsaAttributesAttributeOid(a, i, buf, &n), 0u);
        matches += Bytes(buf, buf + n) == oid;
    }
    return matches;
}

// One extension whose list encodes to exactly `total` octets (total of 273 or more).
X509Extensions* ExtensionsOfSize(size_t total) {
    X509Extensions* e = nullptr;
    EXPECT_EQ(CreateX509Extensions(&e), 0u);
    const Bytes value(total - 17, 0x5A);  // 30 82 LL LL { 30 82 LL LL 06 03 55 1D 0E 04 82 LL LL value }
    const Bytes ski = Packed("2.5.29.14");
    EXPECT_EQ(AddX509ExtensionsExtension(e, ski.data(), 0, value.data(), static_cast<uint32_t>(value.size())), 0u);
    uint32_t n = 0;
    EXPECT_EQ(EncodeX509Extensions(e, nullptr, &n), 0u);
    EXPECT_EQ(n, total);
    return e;
}

const Bytes kExtensionRequest = Packed("1.2.840.113549.1.9.14");
const Bytes kMsExtensionRequest = Packed("1.3.6.1.4.1.311.2.1.14");

TEST(PKCS10, DescriptorLintClean) {
    EXPECT_TRUE(LintDescriptor(&tv::desc::kCertificationRequest, "CertificationRequest").empty());
}

// Expected values are those of OpenSSL's `req -text` beside each fixture.
TEST(PKCS10, RealRequestsRoundTrip) {
    struct Case {
        const char* name;
        const char* keyAlgorithm;
        const char* signatureAlgorithm;
        uint32_t gostKeyLen;  // 0: not a GOST key
        uint32_t extensions;
        uint32_t attributes;
    } cases[] = {
        {"req_rsa", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0, 4, 3},
        {"req_gost2001", "1.2.643.2.2.19", "1.2.643.2.2.3", 64, 4, 3},
        {"req_gost2012_256", "1.2.643.7.1.1.1.1", "1.2.643.7.1.1.3.2", 64, 4, 3},
        {"req_gost2012_512", "1.2.643.7.1.1.1.2", "1.2.643.7.1.1.3.3", 128, 4, 3},
        {"req_ms_extensions", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0, 3, 1},
        {"req_unsorted_attributes", "1.2.840.113549.1.1.1", "1.2.840.113549.1.1.11", 0, 3, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const Bytes der = ReadFile(Fixture(std::string("pki/") + c.name + ".der"));
        const Bytes tbs = ReadFile(Fixture(std::string("pki/") + c.name + ".tbs"));
        ASSERT_FALSE(der.empty());
        Request q(der);
        ASSERT_NE(q.r, nullptr);

        uint32_t version = 99;
        EXPECT_EQ(GetPKCS10CertReqVersion(q.r, &version), 0u);
        EXPECT_EQ(version, 0u);
        const Bytes keyOid = OldSized([&](uint8_t* o, uint32_t* n) {
            return GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q.r, o, n, nullptr, nullptr);
        });
        EXPECT_EQ(keyOid, Packed(c.keyAlgorithm));
        const Bytes sigOid = OldSized([&](uint8_t* o, uint32_t* n) {
            return GetPKCS10CertReqSignatureAlgorithmOidAndParameters(q.r, o, n, nullptr, nullptr);
        });
        EXPECT_EQ(sigOid, Packed(c.signatureAlgorithm));
        // The signature is the last element of the request: its octets end the file.
        const Bytes signature = OldSized([&](uint8_t* o, uint32_t* n) { return GetPKCS10CertReqSignature(q.r, o, n); });
        ASSERT_FALSE(signature.empty());
        EXPECT_TRUE(std::equal(signature.rbegin(), signature.rend(), der.rbegin()));
        if (c.gostKeyLen) {
            const Bytes key = OldSized([&](uint8_t* o, uint32_t* n) { return GetPKCS10CertReqPublicKeyGostR3410(q.r, o, n); });
            EXPECT_EQ(key.size(), c.gostKeyLen);
        }
        // The subject, encoded on its own, sits in the signed bytes.
        X509Name* subject = nullptr;
        ASSERT_EQ(GetPKCS10CertReqSubject(q.r, &subject), 0u);
        const Bytes name = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Name(subject, o, n); });
        EXPECT_NE(std::search(tbs.begin(), tbs.end(), name.begin(), name.end()), tbs.end());

        EXPECT_EQ(ExtensionCount(q.r), c.extensions);
        RsaAttributes* attributes = nullptr;
        ASSERT_EQ(GetPKCS10CertReqAttributes(q.r, &attributes), 0u);
        uint32_t count = 0;
        EXPECT_EQ(GetRsaAttributesAttributesCount(attributes, &count), 0u);
        EXPECT_EQ(count, c.attributes);
    }
}

// The unsorted fixture would come out differently if the set were written in DER order, so the
// byte-for-byte match above is not an accident of the input.
TEST(PKCS10, ReceivedAttributeOrderIsWhatKeepsTheSignedBytes) {
    const Bytes tbs = ReadFile(Fixture("pki/req_unsorted_attributes.tbs"));
    Request q(ReadFile(Fixture("pki/req_unsorted_attributes.der")));
    RsaAttributes* attributes = nullptr;
    ASSERT_EQ(GetPKCS10CertReqAttributes(q.r, &attributes), 0u);
    ASSERT_EQ(SetRsaAttributesSorted(attributes, 1), 0u);
    const Bytes sorted = Tbs(q.r);
    EXPECT_EQ(sorted.size(), tbs.size());
    EXPECT_NE(ToHex(sorted), ToHex(tbs));
}

TEST(PKCS10, ExtensionsFromTheOtherAttributeOid) {
    Request q(ReadFile(Fixture("pki/req_ms_extensions.der")));
    EXPECT_EQ(AttributeCount(q.r, kExtensionRequest), 0u);
    EXPECT_EQ(AttributeCount(q.r, kMsExtensionRequest), 1u);
    X509Extensions* e = nullptr;
    ASSERT_EQ(GetPKCS10CertReqExtensions(q.r, &e), 0u);
    uint8_t ku[8];
    uint32_t n = sizeof ku;
    const Bytes keyUsage = Packed("2.5.29.15");
    EXPECT_EQ(GetX509ExtensionsExtensionValue(e, keyUsage.data(), ku, &n), 0u);
    EXPECT_EQ(ToHex(Bytes(ku, ku + n)), "03 02 05 A0");

    // Setting writes the standard attribute and leaves the other one; reading then prefers ours.
    X509Extensions* one = nullptr;
    ASSERT_EQ(CreateX509Extensions(&one), 0u);
    const Bytes v = Hex("30 00");
    ASSERT_EQ(AddX509ExtensionsExtension(one, Packed("2.5.29.19").data(), 1, v.data(), 2), 0u);
    ASSERT_EQ(SetPKCS10CertReqExtensions(q.r, one), 0u);
    EXPECT_EQ(AttributeCount(q.r, kMsExtensionRequest), 1u);
    EXPECT_EQ(ExtensionCount(q.r), 1u);
    FreeX509Extensions(one);
    FreeX509Extensions(e);
}

TEST(PKCS10, SetExtensionsReplacesAndRefusesLongLists) {
    Request q(ReadFile(Fixture("pki/req_rsa.der")));
    struct Case {
        size_t size;
        uint32_t rc;
        uint32_t count;  // extensions read back afterwards
    } cases[] = {
        {1024, 0, 1}, {1024, 0, 1},  // twice: still one attribute
        {1025, 49, 1},               // refused; the previous one stays
        {300, 0, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.size);
        X509Extensions* e = ExtensionsOfSize(c.size);
        EXPECT_EQ(SetPKCS10CertReqExtensions(q.r, e), c.rc);
        EXPECT_EQ(AttributeCount(q.r, kExtensionRequest), 1u);
        EXPECT_EQ(ExtensionCount(q.r), c.count);
        FreeX509Extensions(e);
    }
    // The read grows its working buffer for a value over 1024 octets.
    RsaAttributes* a = nullptr;
    ASSERT_EQ(GetPKCS10CertReqAttributes(q.r, &a), 0u);
    ASSERT_EQ(RemoveRsaAttributesAttribute2(a, kExtensionRequest.data()), 0u);
    X509Extensions* big = ExtensionsOfSize(1500);
    const Bytes value = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeX509Extensions(big, o, n); });
    uint32_t index = 0;
    ASSERT_EQ(AddRsaAttributesAttributeWithValue(a, kExtensionRequest.data(), &index, value.data(),
                                                 static_cast<uint32_t>(value.size())),
              0u);
    EXPECT_EQ(ExtensionCount(q.r), 1u);
    FreeX509Extensions(big);
}

TEST(PKCS10, BuiltRequestReadsBack) {
    Request q;
    ASSERT_EQ(CreatePKCS10CertReq(&q.r), 0u);

    // A fresh request: version v1, an empty subject and attribute set, everything else absent.
    uint32_t version = 99, rc = 0;
    EXPECT_EQ(GetPKCS10CertReqVersion(q.r, &version), 0u);
    EXPECT_EQ(version, 0u);
    uint8_t buf[8];
    uint32_t n = sizeof buf;
    struct Absent {
        const char* name;
        uint32_t rc;
        uint32_t expected;
    } absent[] = {
        {"public key", GetPKCS10CertReqPublicKey(q.r, buf, &n), 311},
        {"gost key", GetPKCS10CertReqPublicKeyGostR3410(q.r, buf, &n), 311},
        {"key algorithm", GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q.r, buf, &n, nullptr, nullptr), 311},
        {"signature algorithm", GetPKCS10CertReqSignatureAlgorithmOidAndParameters(q.r, buf, &n, nullptr, nullptr), 311},
        {"signature", GetPKCS10CertReqSignature(q.r, buf, &n), 311},
        {"encoding", EncodePKCS10CertReq(q.r, nullptr, &n), 311},
        {"signature id with a block", SetPKCS10CertReqGostR34102001SignatureAlgorithmID(q.r, 100, 1), 32},
        {"null request", GetPKCS10CertReqVersion(nullptr, &version), 32},
        {"null subject", SetPKCS10CertReqSubject(q.r, nullptr), 32},
    };
    for (const Absent& a : absent) EXPECT_EQ(a.rc, a.expected) << a.name;
    EXPECT_EQ(ExtensionCount(q.r, &rc), 0u);
    EXPECT_EQ(rc, 322u);

    const Bytes subjectDer = Hex("30 1A 31 0B 30 09 06 03 55 04 06 13 02 52 55 31 0B 30 09 06 03 55 04 03 0C 02 D0 90");
    X509Name* subject = nullptr;
    ASSERT_EQ(DecodeX509Name(subjectDer.data(), static_cast<uint32_t>(subjectDer.size()), &subject), 0u);
    ASSERT_EQ(SetPKCS10CertReqSubject(q.r, subject), 0u);
    FreeX509Name(subject);  // the request holds its own copy
    const Bytes key(64, 0x11);
    ASSERT_EQ(SetPKCS10CertReqGostR34102012PublicKey(q.r, key.data(), 64), 0u);
    ASSERT_EQ(SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(q.r, 102, 1, 1, 1, 1), 0u);
    ASSERT_EQ(SetPKCS10CertReqGostR34102001SignatureAlgorithmID(q.r, 100, 255), 0u);
    const Bytes signature(64, 0x22);
    ASSERT_EQ(SetPKCS10CertReqSignature(q.r, signature.data(), 64), 0u);
    ASSERT_EQ(SetPKCS10CertReqVersion(q.r, 5), 0u);
    X509Extensions* e = ExtensionsOfSize(400);
    ASSERT_EQ(SetPKCS10CertReqExtensions(q.r, e), 0u);
    FreeX509Extensions(e);

    // Decoded again, every field is what was set.
    Request back(Encoded(q.r));
    ASSERT_NE(back.r, nullptr);
    EXPECT_EQ(ToHex(Tbs(back.r)), ToHex(Tbs(q.r)));
    EXPECT_EQ(GetPKCS10CertReqVersion(back.r, &version), 0u);
    EXPECT_EQ(version, 5u);
    EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* m) { return GetPKCS10CertReqPublicKeyGostR3410(back.r, o, m); }), key);
    EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* m) { return GetPKCS10CertReqSignature(back.r, o, m); }), signature);
    Bytes params;
    const Bytes keyOid = OldSized([&](uint8_t* o, uint32_t* m) {
        uint32_t p = 64;
        params.resize(64);
        uint32_t r = GetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(back.r, o, m, params.data(), &p);
        params.resize(p);
        return r;
    });
    EXPECT_EQ(keyOid, Packed("1.2.643.2.2.19"));
    EXPECT_EQ(ToHex(params), "30 12 06 07 2A 85 03 02 02 23 01 06 07 2A 85 03 02 02 1E 01");
    uint32_t paramsLen = 8;
    const Bytes sigOid = OldSized([&](uint8_t* o, uint32_t* m) {
        return GetPKCS10CertReqSignatureAlgorithmOidAndParameters(back.r, o, m, buf, &paramsLen);
    });
    EXPECT_EQ(sigOid, Packed("1.2.643.2.2.3"));
    EXPECT_EQ(paramsLen, 0u);
    X509Name* name = nullptr;
    ASSERT_EQ(GetPKCS10CertReqSubject(back.r, &name), 0u);
    EXPECT_EQ(OldSized([&](uint8_t* o, uint32_t* m) { return EncodeX509Name(name, o, m); }), subjectDer);
    EXPECT_EQ(ExtensionCount(back.r), 1u);
}

TEST(PKCS10, VersionsAreAnyNonNegativeNumber) {
    struct Case {
        uint32_t version;
        const char* element;
    } cases[] = {
        {0, "02 01 00"}, {5, "02 01 05"}, {128, "02 02 00 80"}, {0x7FFFFFFF, "02 04 7F FF FF FF"},
        {0x80000000, "02 05 00 80 00 00 00"}, {0xFFFFFFFF, "02 05 00 FF FF FF FF"},
    };
    Request q;
    ASSERT_EQ(CreatePKCS10CertReq(&q.r), 0u);
    const Bytes rsa = Packed("1.2.840.113549.1.1.1"), key = Hex("30 03 02 01 03");
    ASSERT_EQ(SetPKCS10CertReqPublicKeyAlgorithmOidAndParameters(q.r, rsa.data(), nullptr, 0), 0u);
    ASSERT_EQ(SetPKCS10CertReqPublicKey(q.r, key.data(), static_cast<uint32_t>(key.size())), 0u);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.version);
        ASSERT_EQ(SetPKCS10CertReqVersion(q.r, c.version), 0u);
        uint32_t back = 0;
        EXPECT_EQ(GetPKCS10CertReqVersion(q.r, &back), 0u);
        EXPECT_EQ(back, c.version);
        const Bytes expected = Hex(c.element);
        const Bytes tbs = Tbs(q.r);
        ASSERT_GT(tbs.size(), expected.size() + 2);
        EXPECT_EQ(ToHex(Bytes(tbs.begin() + 2, tbs.begin() + 2 + expected.size())), ToHex(expected));
    }
}

TEST(PKCS10, AttributesHandleAndSetter) {
    Request q(ReadFile(Fixture("pki/req_unsorted_attributes.der")));
    Request fresh;
    ASSERT_EQ(CreatePKCS10CertReq(&fresh.r), 0u);
    RsaAttributes* from = nullptr;
    ASSERT_EQ(GetPKCS10CertReqAttributes(q.r, &from), 0u);
    ASSERT_EQ(SetPKCS10CertReqAttributes(fresh.r, from), 0u);
    ASSERT_EQ(SetPKCS10CertReqAttributes(fresh.r, from), 0u);  // replaces, does not add
    EXPECT_EQ(ExtensionCount(fresh.r), 3u);
    RsaAttributes* to = nullptr;
    ASSERT_EQ(GetPKCS10CertReqAttributes(fresh.r, &to), 0u);
    uint32_t count = 0;
    EXPECT_EQ(GetRsaAttributesAttributesCount(to, &count), 0u);
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh.r, to), 0u);  // itself

    // The copy keeps the received order, so it writes the same [0] element.
    const Bytes a = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeRsaAttributes(from, o, n); });
    const Bytes b = OldSized([&](uint8_t* o, uint32_t* n) { return EncodeRsaAttributes(to, o, n); });
    EXPECT_EQ(ToHex(a), ToHex(b));

    RsaAttributes* empty = nullptr;
    ASSERT_EQ(CreateRsaAttributes(&empty), 0u);
    ASSERT_EQ(RemoveRsaAttributes(empty), 0u);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh.r, empty), 311u);
    FreeRsaAttributes(empty);
    EXPECT_EQ(SetPKCS10CertReqAttributes(fresh.r, nullptr), 32u);
}

TEST(PKCS10, AllocationFailuresLeakNothing) {
    const Bytes der = ReadFile(Fixture("pki/req_gost2012_256.der"));
    int runs = ForEachAllocationFailure([&]() -> uint32_t {
        PKCS10CertReq* q = nullptr;
        uint32_t rc = DecodePKCS10CertReq(der.data(), static_cast<uint32_t>(der.size()), &q);
        uint32_t n = 0;
        X509Extensions* e = nullptr;
        PKCS10CertReq* copy = nullptr;
        if (rc == 0) rc = GetPKCS10CertReqExtensions(q, &e);
        if (rc == 0) rc = CreatePKCS10CertReqCopy(q, &copy);
        if (rc == 0) rc = SetPKCS10CertReqExtensions(copy, e);
        if (rc == 0) rc = GetPKCS10CertReqToBeSignedPart(copy, nullptr, &n);
        FreeX509Extensions(e);
        FreePKCS10CertReq(copy);
        FreePKCS10CertReq(q);
        return rc;
    });
    EXPECT_GT(runs, 20);

    const Bytes key(64, 0x33);
    runs = ForEachAllocationFailure([&]() -> uint32_t {
        PKCS10CertReq* q = nullptr;
        uint32_t rc = CreatePKCS10CertReq(&q);
        if (rc == 0) rc = SetPKCS10CertReqGostR34102001PublicKey(q, key.data(), 64);
        if (rc == 0) rc = SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(q, 102, 1, 1, 1, 1);
        if (rc == 0) rc = SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(q, 100, 0, 0, 0, 0);
        if (rc == 0) rc = SetPKCS10CertReqSignature(q, key.data(), 64);
        uint32_t n = 0;
        if (rc == 0) rc = EncodePKCS10CertReq(q, nullptr, &n);
        FreePKCS10CertReq(q);
        return rc;
    });
    EXPECT_GT(runs, 5);

    // A failed extension update leaves the attribute set as it was.
    Request q(der);
    X509Extensions* e = ExtensionsOfSize(300);
    ForEachAllocationFailure([&] {
        uint32_t rc = SetPKCS10CertReqExtensions(q.r, e);
        SetAllocationsBeforeFailure(-1);
        EXPECT_EQ(AttributeCount(q.r, kExtensionRequest), 1u);
        EXPECT_EQ(ExtensionCount(q.r), rc == 0 ? 1u : 4u);
        return rc;
    });
    FreeX509Extensions(e);
}

}  // namespace
