// The rules of the CMS containers and workflows that callers rely on: certificate and CRL kinds,
// deduplication, the SET octet over the signed attributes, the signer identifier alternatives,
// signer matching with its fixed buffers, assembling and taking apart signed messages, the code
// page 1251 display texts and the file codes. openssl's messages and openssl's verdict on ours are
// the fixture and interop tests'.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kSha256 = Packed("2.16.840.1.101.3.4.2.1"), kRsaSha256 = Packed("1.2.840.113549.1.1.11"),
            kDigest = Bytes(32, 0xD1), kSignature = Bytes(64, 0x5A), kContent = Text("the signed document");
const LibraryTime kTime{2025, 3, 5, 6, 7, 8};

Bytes Cert(const char* name) { return FixtureFile(std::string("pki/") + name + ".der"); }

// A message signed by `signer` (its certificate in the message too), added to `existing` if given.
Got Sign(const Bytes& signer, const Bytes* content, const Bytes* existing = nullptr, const LibraryTime* time = &kTime) {
    const uint8_t* certs[] = {signer.data()};
    const uint32_t lens[] = {Size(signer)};
    return Sized([&](uint8_t* out, uint32_t* outLen) {
        return CreateCmsFileSignature2(content ? content->data() : nullptr, content ? Size(*content) : 0, kDigest.data(),
                                       Size(kDigest), time, kSha256.data(), nullptr, 0, signer.data(), Size(signer),
                                       certs, lens, 1, kRsaSha256.data(), nullptr, 0, 1, nullptr, 0, kSignature.data(),
                                       Size(kSignature), existing ? existing->data() : nullptr,
                                       existing ? Size(*existing) : 0, out, outLen);
    });
}

// The SignedData of an encoded message.
Own<FreeCmsSignedData> SignedDataOf(const Bytes& message) {
    auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, message);
    return Decoded<FreeCmsSignedData>(DecodeCmsSignedData, Get(GetCmsContentInfoContent, info.p).bytes);
}

// The message of a changed SignedData.
Bytes Rewrapped(const CmsSignedData* sd) {
    auto info = Made<FreeCmsContentInfo>(CreateCmsContentInfo);
    EXPECT_EQ(SetCmsContentInfoTypeOid(info, Packed("1.2.840.113549.1.7.2").data()), TV_OK);
    const Bytes inner = Get(EncodeCmsSignedData, sd).bytes;
    EXPECT_EQ(SetCmsContentInfoContent(info, inner.data(), Size(inner)), TV_OK);
    return Get(EncodeCmsContentInfo, info.p).bytes;
}

// The first signer of a decoded message.
CmsSignerInfo* FirstSigner(CmsSignedData* sd) {
    CmsSignerInfo* signer = nullptr;
    EXPECT_EQ(GetCmsSignedDataSignerInfo(sd, 0, &signer), TV_OK);
    return signer;
}

std::string Cp1251Of(const Bytes& b) { return std::string(b.begin(), b.end()); }

}  // namespace

TEST(CmsSignedData, CertificateKindsRewriteTheIdentifierOctetAndDeduplicate) {
    const Bytes cert = Cert("ee_rsa");
    auto sd = Made<FreeCmsSignedData>(CreateCmsSignedData);
    const uint8_t octets[] = {0x30, 0xA0, 0xA1, 0xA2, 0xA3};
    for (uint32_t kind = 1; kind <= 5; ++kind) {
        EXPECT_EQ(AddCmsSignedDataEncodedCertificate(sd, kind, cert.data(), Size(cert)), TV_OK);
        EXPECT_EQ(AddCmsSignedDataEncodedCertificate(sd, kind, cert.data(), Size(cert)), TV_OK) << "stored once";
        uint32_t got = 0;
        const Got stored = Get(GetCmsSignedDataEncodedCertificate, sd.p, kind - 1, &got);
        EXPECT_EQ(got, kind);
        ASSERT_EQ(stored.bytes.size(), cert.size());
        EXPECT_EQ(stored.bytes[0], octets[kind - 1]);
        EXPECT_TRUE(std::equal(cert.begin() + 1, cert.end(), stored.bytes.begin() + 1)) << "length and contents kept";
    }
    EXPECT_EQ(Counted(GetCmsSignedDataCertificatesCount, sd.p), "5");
    for (uint32_t kind : {0u, 6u}) EXPECT_EQ(AddCmsSignedDataEncodedCertificate(sd, kind, cert.data(), Size(cert)), 32u);
    uint32_t kind = 9, len = 10;
    uint8_t buffer[10];
    EXPECT_EQ(GetCmsSignedDataEncodedCertificate(sd, 0, &kind, nullptr, nullptr), TV_OK);
    EXPECT_EQ(kind, 1u);
    EXPECT_EQ(GetCmsSignedDataEncodedCertificate(sd, 0, &kind, buffer, nullptr), 32u);
    EXPECT_EQ(GetCmsSignedDataEncodedCertificate(sd, 5, &kind, buffer, &len), 32u);
    EXPECT_EQ(RemoveCmsSignedDataCertificates(sd), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataCertificatesCount, sd.p), "0");
}

TEST(CmsSignedData, CrlsAreNeverDeduplicatedAndOtherFormatsAreWrapped) {
    const Bytes crl = FixtureFile("pki/crl_rsa.der"), other = Hex("06 03 2A 03 04 04 01 AA");
    auto sd = Made<FreeCmsSignedData>(CreateCmsSignedData);
    ASSERT_EQ(SetCmsSignedDataVersion(sd, 1), TV_OK);
    const struct {
        uint32_t kind;
        const Bytes& in;
        uint32_t rc;
        std::string stored;  // empty: the input itself
        uint32_t readKind;
    } rows[] = {
        {1, crl, 0, "", 1},
        {1, crl, 0, "", 1},  // the same CRL again: a second copy
        {2, other, 0, "A1 08 06 03 2A 03 04 04 01 AA", 2},
        {3, crl, 32, "", 0},
    };
    uint32_t index = 0;
    for (const auto& row : rows) {
        EXPECT_EQ(AddCmsSignedDataEncodedCrl(sd, row.kind, row.in.data(), Size(row.in)), row.rc);
        if (row.rc) continue;
        uint32_t kind = 0;
        EXPECT_EQ(Get(GetCmsSignedDataEncodedCrl, sd.p, index++, &kind).bytes, row.stored.empty() ? row.in : Hex(row.stored));
        EXPECT_EQ(kind, row.readKind);
    }
    EXPECT_EQ(Counted(GetCmsSignedDataCrlsCount, sd.p), "3");
    const Bytes der = Get(EncodeCmsSignedData, sd.p).bytes;
    auto back = Decoded<FreeCmsSignedData>(DecodeCmsSignedData, der);
    EXPECT_EQ(Counted(GetCmsSignedDataCrlsCount, back.p), "3");
    EXPECT_EQ(RemoveCmsSignedDataCrls(sd), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataCrlsCount, sd.p), "0");
}

TEST(CmsSignedData, DigestAlgorithmsContentAndSigners) {
    auto sd = Made<FreeCmsSignedData>(CreateCmsSignedData);
    ASSERT_EQ(SetCmsSignedDataVersion(sd, 1), TV_OK);
    const Bytes null = Hex("05 00");
    EXPECT_EQ(AddCmsSignedDataDigestAlgorithmOidAndParameters(sd, kSha256.data(), nullptr, 0), TV_OK);
    EXPECT_EQ(AddCmsSignedDataDigestAlgorithmOidAndParameters(sd, kSha256.data(), nullptr, 0), TV_OK);
    EXPECT_EQ(AddCmsSignedDataDigestAlgorithmOidAndParameters(sd, kSha256.data(), null.data(), 2), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataDigestAlgorithmsCount, sd.p), "2") << "parameters make a different algorithm";
    uint8_t oid[4], params[1];
    uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
    EXPECT_EQ(GetCmsSignedDataDigestAlgorithmOidAndParameters(sd, 1, oid, &oidLen, params, &paramsLen), 49u);
    EXPECT_EQ(oidLen, kSha256.size());
    EXPECT_EQ(paramsLen, 2u) << "both parts report their needs";
    EXPECT_EQ(GetCmsSignedDataDigestAlgorithmOidAndParameters(sd, 0, oid, nullptr, params, &paramsLen), 32u);
    EXPECT_EQ(ClearCmsSignedDataDigestAlgorithms(sd), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataDigestAlgorithmsCount, sd.p), "0");

    EXPECT_EQ(SetCmsSignedDataContentTypeOid(sd, Packed("1.2.840.113549.1.7.1").data()), TV_OK);
    EXPECT_EQ(SetCmsSignedDataContent(sd, kContent.data(), Size(kContent)), TV_OK);
    EXPECT_EQ(Get(GetCmsSignedDataContent, sd.p).bytes, kContent);
    const Bytes octets = Get(EncodeCmsContentInfoContent, kContent.data(), Size(kContent)).bytes;
    EXPECT_EQ(octets.size(), kContent.size() + 2);
    EXPECT_EQ(Get(DecodeCmsContentInfoContent, octets.data(), Size(octets)).bytes, kContent) << "id-data: an OCTET STRING";
    CmsEncapsulatedContentInfo* encap = nullptr;
    EXPECT_EQ(GetCmsSignedDataContentInfo(sd, &encap), TV_OK);
    EXPECT_NE(encap, nullptr);
    EXPECT_EQ(SetCmsSignedDataContent(sd, kContent.data(), 0), TV_OK);
    EXPECT_EQ(Get(GetCmsSignedDataContent, sd.p).bytes, Bytes{}) << "detached";
    EXPECT_EQ(Get(EncodeCmsSignedData, sd.p).hex(), H("30 14 02 01 01 31 00 30 0B 06 09 2A 86 48 86 F7 0D 01 07 01 31 00"))
        << "encapContentInfo holds the type alone";

    CmsSignerInfo *first = nullptr, *second = nullptr, *got = nullptr;
    ASSERT_EQ(AddCmsSignedDataSignerInfo(sd, &first), TV_OK);
    ASSERT_EQ(AddCmsSignedDataSignerInfo(sd, &second), TV_OK);
    EXPECT_EQ(GetCmsSignedDataSignerInfo(sd, 1, &got), TV_OK);
    EXPECT_EQ(got, second);
    EXPECT_EQ(GetCmsSignedDataSignerInfo(sd, 2, &got), 32u);
    EXPECT_EQ(DeleteCmsSignedDataSignerInfo(sd, 0), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, sd.p), "1");
    EXPECT_EQ(ClearCmsSignedDataSignerInfos(sd), TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, sd.p), "0");
}

TEST(CmsSignerInfo, SignedAttributesAreSignedAsASet) {
    auto signer = Made<FreeCmsSignerInfo>(CreateCmsSignerInfo);
    EXPECT_EQ(Get(GetCmsSignerInfoEncodedSignedAttributes, signer.p).bytes, Bytes{}) << "none: length 0";
    for (const LibraryTime* time : {static_cast<const LibraryTime*>(nullptr), &kTime}) {
        const Bytes tbs = Get(GetCmsSignedDataToBeSignedPart, kDigest.data(), Size(kDigest), time).bytes;
        ASSERT_FALSE(tbs.empty());
        EXPECT_EQ(tbs[0], 0x31);
        auto attributes = Decoded<FreeRsaAttributes>(DecodeRsaAttributes, tbs);
        EXPECT_EQ(Counted(GetRsaAttributesAttributesCount, attributes.p), time ? "3" : "2");
    }
    ASSERT_EQ(FillCmsSignerInfoWithSignedAttributes(signer, kDigest.data(), Size(kDigest), &kTime), TV_OK);
    const Bytes set = Get(GetCmsSignerInfoEncodedSignedAttributes, signer.p).bytes;
    EXPECT_EQ(set, Get(GetCmsSignedDataToBeSignedPart, kDigest.data(), Size(kDigest), &kTime).bytes);
    // Inside the message the same octets carry the [0] of the SignerInfo.
    const Bytes message = Sign(Cert("ee_rsa"), &kContent).bytes;
    Bytes implicit = set;
    implicit[0] = 0xA0;
    EXPECT_NE(std::search(message.begin(), message.end(), implicit.begin(), implicit.end()), message.end());
    // contentType is id-data whatever the message carries, and an extra list is appended after.
    auto extra = Made<FreeRsaAttributes>(CreateRsaAttributes);
    uint32_t index = 0;
    const Bytes value = Hex("04 01 07");
    ASSERT_EQ(AddRsaAttributesAttributeWithValue(extra, Packed("1.2.3.4").data(), &index, value.data(), 3), TV_OK);
    auto attributes = Decoded<FreeRsaAttributes>(
        DecodeRsaAttributes, Get(GetCmsSignedDataToBeSignedPart2, kDigest.data(), Size(kDigest), nullptr, extra.p).bytes);
    ASSERT_EQ(FindRsaAttributesAttribute(attributes, Packed("1.2.840.113549.1.9.3").data(), &index), TV_OK);
    EXPECT_EQ(Get(GetRsaAttributesAttributeValue, attributes.p, index, 0u).hex(), H("06 09 2A 86 48 86 F7 0D 01 07 01"));
    EXPECT_EQ(Counted(GetRsaAttributesAttributesCount, attributes.p), "3");
}

TEST(CmsSignerInfo, IdentifierAlternativesAndSignerMatching) {
    const Bytes ee = Cert("ee_rsa");
    auto cert = Decoded<FreeCertificate>(DecodeCertificate, ee);
    auto other = Decoded<FreeCertificate>(DecodeCertificate, Cert("ca_rsa"));
    X509Name* issuer = nullptr;
    ASSERT_EQ(GetCertificateIssuer(cert, &issuer), TV_OK);
    const Bytes serial = Get(GetCertificateSerialNumber, cert.p).bytes,
                keyId = Get(GetCertificateSubjectKeyIdentifier, cert.p).bytes;
    auto signer = Made<FreeCmsSignerInfo>(CreateCmsSignerInfo);

    const auto identify = [&](const Bytes& s, const Bytes* k) {
        return k ? SetCmsSignerInfoSignerSubjectKeyIdentifier(signer, k->data(), Size(*k))
                 : SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(signer, issuer, s.data(), Size(s));
    };
    const Bytes longSerial(65, 0x11), longKeyId(33, 0x22), otherSerial = Hex("01 02");
    const struct {
        const char* what;
        const Bytes& serial;
        const Bytes* keyId;
        uint32_t withCert, withOther;
    } rows[] = {
        {"issuer and serial", serial, nullptr, 0, 320},
        {"other serial", otherSerial, nullptr, 320, 320},
        {"serial over 64 octets", longSerial, nullptr, 338, 338},
        {"key identifier", serial, &keyId, 0, 320},
        {"key identifier over 32 octets", serial, &longKeyId, 338, 338},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(identify(row.serial, row.keyId), TV_OK) << row.what;
        EXPECT_EQ(CompareSignerInfoAndCertificate(signer, cert), row.withCert) << row.what;
        EXPECT_EQ(CompareSignerInfoAndCertificate(signer, other), row.withOther) << row.what;
        X509Name* gotIssuer = reinterpret_cast<X509Name*>(1);
        uint8_t gotSerial[80], gotKeyId[40];
        uint32_t serialLen = sizeof gotSerial, keyIdLen = sizeof gotKeyId;
        ASSERT_EQ(GetCmsSignerInfoSignerIdentifier(signer, &gotIssuer, gotSerial, &serialLen, gotKeyId, &keyIdLen), TV_OK);
        if (row.keyId) {
            EXPECT_EQ(gotIssuer, nullptr);
            EXPECT_EQ(serialLen, 0u);
            EXPECT_EQ(Bytes(gotKeyId, gotKeyId + keyIdLen), *row.keyId);
        } else {
            EXPECT_EQ(CompareX509Names(gotIssuer, issuer), TV_OK);
            EXPECT_EQ(keyIdLen, 0u);
            EXPECT_EQ(Bytes(gotSerial, gotSerial + serialLen), row.serial);
        }
    }
    // An alternative the tree cannot hold on the wire (a caller's own tree): 306.
    auto* sid = reinterpret_cast<Asn1ChoiceValue**>(signer.p)[1];
    const int32_t kept = sid->index;
    sid->index = 2;
    EXPECT_EQ(GetCmsSignerInfoSignerIdentifier(signer, &issuer, nullptr, nullptr, nullptr, nullptr), 306u);
    sid->index = kept;
}

TEST(CmsWorkflow, AssemblingAddingAndRemovingSigners) {
    const Bytes rsa = Cert("ee_rsa"), ca = Cert("ca_rsa"), otherContent = Text("another document");
    const Bytes attached = Sign(rsa, &kContent).bytes;
    auto sd = SignedDataOf(attached);
    EXPECT_EQ(Get(GetCmsSignedDataContent, sd.p).bytes, kContent);
    EXPECT_EQ(Counted(GetCmsSignedDataCertificatesCount, sd.p), "1") << "the signer's own, passed in the array";

    // A second signer: same content or none; other content is 320; the digest algorithm is listed once.
    EXPECT_EQ(Sign(ca, &otherContent, &attached).rc, 320u);
    const Bytes two = Sign(ca, &kContent, &attached).bytes;
    const Bytes twoDetached = Sign(ca, nullptr, &attached).bytes;
    auto both = SignedDataOf(two);
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, both.p), "2");
    EXPECT_EQ(Counted(GetCmsSignedDataDigestAlgorithmsCount, both.p), "1");
    EXPECT_EQ(Counted(GetCmsSignedDataCertificatesCount, both.p), "2");
    EXPECT_EQ(Get(GetCmsSignedDataContent, SignedDataOf(twoDetached).p).bytes, Bytes{}) << "no content: detached";

    // Removing: signer 2 of two leaves a message; the only signer leaves the content; detached: 322.
    const Got one = Get(DeleteBufferCmsSignerInfo, 2u, two.data(), Size(two));
    ASSERT_EQ(one.rc, TV_OK);
    EXPECT_EQ(Counted(GetCmsSignedDataSignerInfosCount, SignedDataOf(one.bytes).p), "1");
    EXPECT_EQ(Get(DeleteBufferCmsSignerInfo, 1u, attached.data(), Size(attached)).bytes, kContent);
    const Bytes detached = Sign(rsa, nullptr).bytes;
    EXPECT_EQ(Get(DeleteBufferCmsSignerInfo, 1u, detached.data(), Size(detached)).rc, 322u);
    EXPECT_EQ(Get(DeleteBufferCmsSignerInfo, 3u, two.data(), Size(two)).rc, 32u);
    EXPECT_EQ(Get(DeleteBufferCmsSignerInfo, 0u, two.data(), Size(two)).rc, 32u);

    // Not a signed message: 314, for every reader of messages.
    auto info = Made<FreeCmsContentInfo>(CreateCmsContentInfo);
    ASSERT_EQ(SetCmsContentInfoTypeOid(info, Packed("1.2.840.113549.1.7.1").data()), TV_OK);
    const Bytes notSigned = Get(EncodeCmsContentInfo, info.p).bytes;
    EXPECT_EQ(Sign(rsa, &kContent, &notSigned).rc, 314u);
    EXPECT_EQ(GetBufferCmsSignatureTime(1, notSigned.data(), Size(notSigned), nullptr), 314u);

    // Arguments the call cannot do without.
    const uint8_t* certs[] = {rsa.data()};
    const uint32_t lens[] = {Size(rsa)};
    uint32_t len = 0;
    const auto create = [&](const uint8_t* digest, const LibraryTime* time, const uint8_t* digestOid, const uint8_t* cert,
                            uint32_t count, const uint8_t* signature, uint32_t* outLen) {
        return CreateCmsFileSignature2(nullptr, 0, digest, 32, time, digestOid, nullptr, 0, cert, Size(rsa), certs, lens,
                                       count, kRsaSha256.data(), nullptr, 0, 1, nullptr, 0, signature, 64, nullptr, 0,
                                       nullptr, outLen);
    };
    EXPECT_EQ(create(kDigest.data(), &kTime, kSha256.data(), rsa.data(), 1, kSignature.data(), &len), TV_OK);
    for (uint32_t rc : {create(nullptr, &kTime, kSha256.data(), rsa.data(), 1, kSignature.data(), &len),
                        create(kDigest.data(), nullptr, kSha256.data(), rsa.data(), 1, kSignature.data(), &len),
                        create(kDigest.data(), &kTime, nullptr, rsa.data(), 1, kSignature.data(), &len),
                        create(kDigest.data(), &kTime, kSha256.data(), nullptr, 1, kSignature.data(), &len),
                        create(kDigest.data(), &kTime, kSha256.data(), rsa.data(), 1, nullptr, &len),
                        create(kDigest.data(), &kTime, kSha256.data(), rsa.data(), 1, kSignature.data(), nullptr)})
        EXPECT_EQ(rc, 32u);

    // Every intermediate object is freed on every path (the sanitizer build checks for leaks).
    EXPECT_GT(ForEachAllocationFailure([&] { return Sign(ca, &kContent, &attached).rc; }), 1);
}

TEST(CmsWorkflow, SignerTimeAndText) {
    const Bytes message = Sign(Cert("ee_rsa"), &kContent).bytes;
    LibraryTime time{};
    const Got text = Get(GetBufferCmsSignatureTimeAndCN, 1u, message.data(), Size(message), &time, Out);
    EXPECT_TRUE(SameTime(time, kTime));
    // The EE's serial is not printable, so only the issuer's common name: "Тестовый УЦ RSA".
    EXPECT_EQ(text.hex(), H("D2 E5 F1 F2 EE E2 FB E9 20 D3 D6 20 52 53 41"));
    EXPECT_EQ(Get(GetBufferCmsSignatureTimeAndCN, 2u, message.data(), Size(message), &time, Out).rc, 322u);
    auto sd = SignedDataOf(message);
    RsaAttributes* attributes = nullptr;
    ASSERT_EQ(GetCmsSignerInfoSignedAttributes(FirstSigner(sd), &attributes), TV_OK);
    ASSERT_EQ(RemoveRsaAttributesAttribute2(attributes, Packed("1.2.840.113549.1.9.5").data()), TV_OK);
    const Bytes untimed = Rewrapped(sd);
    EXPECT_EQ(GetBufferCmsSignatureTime(1, untimed.data(), Size(untimed), &time), 322u);

    // A signer named by its key identifier: a fixed text for 1..4 octets, 49 beyond (text only), 323 when empty.
    const Bytes notFound = Hex("CF EE E4 EF E8 F1 E0 ED F2 20 ED E5 20 ED E0 E9 E4 E5 ED");
    const struct {
        size_t keyIdLen;
        uint32_t textRc, timeRc;
    } rows[] = {{1, 0, 0}, {4, 0, 0}, {20, 49, 0}, {0, 323, 0}};
    for (const auto& row : rows) {
        auto sd = SignedDataOf(message);
        const uint8_t keyId[20] = {0x42};
        ASSERT_EQ(SetCmsSignerInfoSignerSubjectKeyIdentifier(FirstSigner(sd), keyId, row.keyIdLen), TV_OK);
        const Bytes changed = Rewrapped(sd);
        const Got got = Get(GetBufferCmsSignatureTimeAndCN, 1u, changed.data(), Size(changed), &time, Out);
        EXPECT_EQ(got.rc, row.textRc) << row.keyIdLen;
        if (got.rc == TV_OK) {
            EXPECT_EQ(got.bytes, notFound);
        }
        EXPECT_EQ(GetBufferCmsSignatureTime(1, changed.data(), Size(changed), &time), row.timeRc) << row.keyIdLen;
    }
}

TEST(CmsWorkflow, DisplayTextsInCodePage1251) {
    const uint8_t cn[] = {3, 0x55, 0x04, 0x03};
    const struct {
        const char* what;
        std::vector<std::pair<uint8_t, Bytes>> commonNames;  // string tag and contents, one RDN each
        const char* serial;
        std::string text;  // code page 1251, as hex
    } rows[] = {
        {"RDNs joined", {{12, Text("AB")}, {12, Text("CD")}}, "01", H("41 42 43 44")},
        {"printable serial", {{12, Text("AB")}}, "31 32 7A", H("31 32 7A 2C 20 41 42")},
        {"serial with 0x7B", {{12, Text("AB")}}, "31 7B", H("41 42")},
        {"serial with 0x1F", {{12, Text("AB")}}, "1F 31", H("41 42")},
        {"UTF-8 Cyrillic, Ё ё, three-octet dropped", {{12, Hex("D0 90 D1 8F D0 81 D1 91 E2 84 96 5A")}}, "01",
         H("C0 FF A8 B8 5A")},
        {"BMPString table and block", {{30, Hex("04 04 04 54 00 B0 21 16 04 01 04 10 04 4F 04 00 4E 00 00 41")}}, "01",
         H("AA BA B0 B9 A8 C0 FF B0 3F 41")},
        {"other string types: one ? per octet", {{19, Text("XYZ")}}, "01", H("3F 3F 3F")},
        {"no common name", {}, "01", ""},
    };
    for (const auto& row : rows) {
        auto cert = Made<FreeCertificate>(CreateCertificate);
        const Bytes serial = Hex(row.serial);
        ASSERT_EQ(SetCertificateSerialNumber(cert, serial.data(), Size(serial)), TV_OK);
        X509Name* subject = nullptr;
        ASSERT_EQ(GetCertificateSubject(cert, &subject), TV_OK);
        const Bytes country = Text("RU");
        ASSERT_EQ(AddX509NameEntry(subject, country.data(), 2, 19, Packed("2.5.4.6").data(), 1), TV_OK);
        for (const auto& [tag, value] : row.commonNames)
            ASSERT_EQ(AddX509NameEntry(subject, value.data(), Size(value), tag, cn, 1), TV_OK);
        const Got text = Get(GetCertificateCN, cert.p);
        EXPECT_EQ(text.hex(), row.text) << row.what;
    }
    // The CRL text, with and without nextUpdate, dates as stored.
    auto crl = Decoded<FreeX509Crl>(DecodeX509Crl, FixtureFile("pki/crl_rsa.der"));
    const std::string withNext = Cp1251Of(Get(GetCrlCN, crl.p).bytes);
    EXPECT_NE(withNext.find("=1, "), std::string::npos);
    EXPECT_NE(withNext.find(" 01.04.2025 00:00:00 GMT, "), std::string::npos);
    EXPECT_NE(withNext.find(" 01.05.2025 00:00:00 GMT, "), std::string::npos);
    EXPECT_EQ(withNext.substr(withNext.size() - 6), "\xD3\xD6 RSA") << "issuer's common name last";
    // The certificate's identifier text (UTF-8 in the extension) in code page 1251; without the extension, its 322.
    auto ee = Decoded<FreeCertificate>(DecodeCertificate, Cert("ee_rsa"));
    EXPECT_EQ(Get(GetKestruneIdentifierFromCertificate, ee.p, Out).bytes, Text("\xEA\xEB\xFE\xF7-7f3a-19c2"));
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, Cert("ca_rsa"));
    EXPECT_EQ(Get(GetKestruneIdentifierFromCertificate, ca.p, Out).rc, 322u);
    // GetVersionInfo: the NUL needs room; a null buffer is refused, not sized.
    char banner[200];
    uint32_t len = sizeof banner;
    ASSERT_EQ(GetVersionInfo(banner, &len), TV_OK);
    EXPECT_EQ(std::string(banner).rfind("Tarvelon v1.0 (64bit) 05/02/2019 (R.3729) ", 0), 0u);
    const uint32_t exact = len;
    EXPECT_EQ(GetVersionInfo(banner, &len), 49u);
    EXPECT_EQ(len, exact + 1);
    EXPECT_EQ(GetVersionInfo(nullptr, &len), 32u);
}

TEST(CmsWorkflow, FileForms) {
    const Bytes one = Sign(Cert("ee_rsa"), &kContent).bytes, two = Sign(Cert("ca_rsa"), &kContent, &one).bytes;
    const auto dir = std::filesystem::temp_directory_path() / ("tv_cms_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const std::string in = (dir / "two.p7s").string(), out = (dir / "one.p7s").string(),
                      missing = (dir / "missing.p7s").string(), noDir = (dir / "none" / "x.p7s").string();
    std::FILE* f = std::fopen(in.c_str(), "wb");
    std::fwrite(two.data(), 1, two.size(), f);
    std::fclose(f);

    LibraryTime time{};
    EXPECT_EQ(GetCmsSignatureTime(2, in.c_str(), &time), TV_OK);
    EXPECT_TRUE(SameTime(time, kTime));
    EXPECT_EQ(DeleteCmsSignerInfo(2, in.c_str(), out.c_str()), TV_OK);
    EXPECT_EQ(ReadFile(out), Get(DeleteBufferCmsSignerInfo, 2u, two.data(), Size(two)).bytes);
    const struct {
        const char* what;
        uint32_t rc;
    } rows[] = {
        {"missing input", GetCmsSignatureTime(1, missing.c_str(), &time)},
        {"missing input, delete", DeleteCmsSignerInfo(1, missing.c_str(), out.c_str())},
        {"output directory missing", DeleteCmsSignerInfo(2, in.c_str(), noDir.c_str())},
    };
    for (const auto& row : rows) EXPECT_EQ(row.rc, 12u) << row.what;
    EXPECT_EQ(DeleteCmsSignerInfo(2, in.c_str(), "/dev/full"), 47u) << "short write";
    std::filesystem::remove_all(dir);
}
