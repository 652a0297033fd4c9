// Rules every exported call keeps, swept over tables: each size-protocol getter (a null buffer gives
// the size, any shorter room gives 49 with the size, nothing is written past the room, and exact room
// gets what ample room does; null handle or length: 32), and each way of building an object with every allocation failing in turn (1, nothing
// leaked, and where it is promised, the object as it was).
#include <gtest/gtest.h>

#include "TestUtil.h"

using namespace tvtest;

namespace {

// A call of a size-protocol getter on its object, or on a null handle.
struct Getter {
    const char* name;
    std::function<uint32_t(bool nullHandle, uint8_t*, uint32_t*)> call;
};
#define GETTER(fn, h, ...) \
    Getter { #fn, [&](bool null, uint8_t* o, uint32_t* n) { return fn(null ? nullptr : h, __VA_ARGS__ __VA_OPT__(, ) o, n); } }

TEST(SizeProtocol, EveryGetterAndItsNullArguments) {
    auto ee = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ee_gost2012_256.der"));
    auto crl = Decoded<FreeX509Crl>(DecodeX509Crl, FixtureFile("pki/crl_indirect.der"));
    auto req = Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, FixtureFile("pki/req_gost2012_256.der"));
    auto name = Decoded<FreeX509Name>(DecodeX509Name, FixtureFile("names/subject_full.der"));
    auto policies = Decoded<FreeExtensionCertificatePolicies>(DecodeExtensionCertificatePolicies,
                                                              FixtureFile("extensions/certificate_policies.der"));
    auto eku = Decoded<FreeExtensionExtendedKeyUsage>(DecodeExtensionExtendedKeyUsage, FixtureFile("extensions/extended_key_usage.der"));
    auto aia = Decoded<FreeExtensionAuthorityInformationAccess>(DecodeExtensionAuthorityInformationAccess,
                                                                FixtureFile("extensions/authority_info_access.der"));
    auto points = Decoded<FreeExtensionCrlDistributionPoints>(DecodeExtensionCrlDistributionPoints,
                                                              FixtureFile("extensions/crl_distribution_points.der"));
    const Bytes san = Get(GetCertificateExtensionValue, ee.p, Packed("2.5.29.17").data()).bytes;
    auto names = Decoded<FreeX509GeneralNames>(DecodeX509GeneralNames, san);
    X509Extensions* extensions = nullptr;
    RsaAttributes* attributes = nullptr;
    ASSERT_EQ(GetCertificateExtensions(ee, &extensions), 0u);
    ASSERT_EQ(GetPKCS10CertReqAttributes(req, &attributes), 0u);
    Own<FreePKIFreeText> text;
    Own<FreeOctetStrings> strings;
    Own<FreeCertificates> certificates;
    Own<FreeX509Crls> crls;
    ASSERT_EQ(CreatePKIFreeText(&text.p), 0u);
    ASSERT_EQ(AddPKIFreeTextString(text, U8("text"), 4), 0u);
    ASSERT_EQ(CreateOctetStrings(&strings.p), 0u);
    ASSERT_EQ(AddOctetStringsValue(strings, U8("ab"), 2), 0u);
    ASSERT_EQ(CreateCertificates(&certificates.p), 0u);
    ASSERT_EQ(CreateX509Crls(&crls.p), 0u);
    auto ocspRequest = Decoded<FreeOcspRequest>(DecodeOcspRequest, FixtureFile("ocsp/req_rsa_signed.der"));
    auto ocspResponse = Decoded<FreeOcspResponse>(DecodeOcspResponse, FixtureFile("ocsp/resp_rsa_multi.der"));
    auto basic = Decoded<FreeOcspBasicResponse>(DecodeOcspBasicResponse, FixtureFile("ocsp/basic_rsa_multi.der"));
    OcspSingleResponse* single = nullptr;
    ASSERT_EQ(GetOcspBasicResponseSingleResponse(basic, 1, &single), 0u);
    auto info = Decoded<FreeCmsContentInfo>(DecodeCmsContentInfo, FixtureFile("cms/signed_two.der"));
    auto signedData = Decoded<FreeCmsSignedData>(DecodeCmsSignedData, FixtureFile("cms/sd_certs_crl.der"));
    auto enveloped = Decoded<FreeCmsEnvelopedData>(DecodeCmsEnvelopedData, FixtureFile("enveloped/env_gost2012_256.der"));
    auto transport = Decoded<FreeGostR3410KeyTransport>(DecodeGostR3410KeyTransport,
                                                        FixtureFile("enveloped/gost_kt_gost2012_256.der"));
    void* recipient = nullptr;
    uint32_t kind = 0;
    ASSERT_EQ(GetCmsEnvelopedDataRecipientInfo(enveloped, 0, &recipient, &kind), 0u);
    auto* keyTrans = static_cast<KeyTrans*>(recipient);
    const Bytes ski = Packed("2.5.29.14"), data(200, 0x5C), key(128, 0x3A);
    Bytes record(256, 0);
    record[254] = 'A';
    const std::string pem = "-----BEGIN X-----\r\n" + std::string(64, 'A') + "\r\n" + std::string(64, 'A') + "\r\n-----END X-----\r\n";
    auto chars = [](uint8_t* o) { return reinterpret_cast<char*>(o); };
    const Getter getters[] = {
        {"EncodeToBase64", [&](bool null, uint8_t* o, uint32_t* n) { return EncodeToBase64(null ? nullptr : data.data(), 200, chars(o), n); }},
        {"DecodeFromBase64", [&](bool null, uint8_t* o, uint32_t* n) { return DecodeFromBase64(null ? nullptr : pem.data() + 19, 132, o, n); }},
        {"EncodePem", [&](bool null, uint8_t* o, uint32_t* n) { return EncodePem(null ? nullptr : data.data(), 200, "X", chars(o), n); }},
        {"DecodePem", [&](bool null, uint8_t* o, uint32_t* n) { return DecodePem(null ? nullptr : pem.data(), uint32_t(pem.size()), o, n); }},
        GETTER(ConvertX509SignatureToKestrune, key.data(), 64u), GETTER(ConvertKestruneSignatureToX509, key.data(), 128u),
        GETTER(ConvertX509PublicKeyToKestrune, key.data(), 128u), GETTER(ConvertKestrunePublicKeyToX509, record.data(), 256u),
        GETTER(EncodeCertificate, ee.p), GETTER(GetCertificateToBeSignedPart, ee.p),
        GETTER(GetCertificateSerialNumber, ee.p), GETTER(GetCertificateSignature, ee.p),
        GETTER(GetCertificatePublicKey, ee.p), GETTER(GetCertificatePublicKeyGostR3410, ee.p),
        GETTER(GetCertificateSubjectKeyIdentifier, ee.p), GETTER(GetCertificateExtensionValue, ee.p, ski.data()),
        GETTER(EncodeX509Crl, crl.p), GETTER(GetX509CrlToBeSignedPart, crl.p), GETTER(GetX509CrlSignature, crl.p),
        GETTER(GetX509CrlRevokedCertificateSerialNumber, crl.p, 0u),
        GETTER(EncodePKCS10CertReq, req.p), GETTER(GetPKCS10CertReqToBeSignedPart, req.p),
        GETTER(GetPKCS10CertReqSignature, req.p), GETTER(GetPKCS10CertReqPublicKey, req.p),
        GETTER(GetPKCS10CertReqPublicKeyGostR3410, req.p),
        GETTER(EncodeX509Name, name.p), GETTER(EncodeX509GeneralNames, names.p), GETTER(GetX509GeneralName, names.p, 0u, &kind),
        GETTER(EncodeX509Extensions, extensions), GETTER(GetX509ExtensionsExtensionValue, extensions, ski.data()),
        GETTER(EncodeRsaAttributes, attributes), GETTER(GetRsaAttributesAttributeOid, attributes, 0u),
        GETTER(GetRsaAttributesAttributeValue, attributes, 0u, 0u),
        GETTER(EncodeExtensionCertificatePolicies, policies.p), GETTER(GetExtensionPolicyInformation, policies.p, 0u),
        GETTER(EncodeExtensionExtendedKeyUsage, eku.p), GETTER(GetExtensionExtendedKeyUsage, eku.p, 0u),
        GETTER(EncodeExtensionAuthorityInformationAccess, aia.p), GETTER(EncodeExtensionCrlDistributionPoints, points.p),
        GETTER(EncodePKIFreeText, text.p), GETTER(GetPKIFreeTextString, text.p, 0u),
        GETTER(GetOctetStringsValue, strings.p, 0u), GETTER(EncodeCertificates, certificates.p),
        GETTER(EncodeX509Crls, crls.p),
        GETTER(EncodeOcspRequest, ocspRequest.p), GETTER(GetOcspRequestSignature, ocspRequest.p),
        GETTER(GetOcspRequestRequestorNameValue, ocspRequest.p, &kind), GETTER(EncodeOcspResponse, ocspResponse.p),
        GETTER(EncodeOcspBasicResponse, basic.p), GETTER(GetOcspBasicResponseToBeSignedPart, basic.p),
        GETTER(GetOcspBasicResponseSignature, basic.p), GETTER(GetOcspBasicResponseResponderID, basic.p, &kind),
        GETTER(EncodeOcspSingleResponse, single),
        GETTER(EncodeCmsContentInfo, info.p), GETTER(GetCmsContentInfoContent, info.p), GETTER(GetCmsContentInfoTypeOid, info.p),
        GETTER(EncodeCmsSignedData, signedData.p), GETTER(GetCmsSignedDataEncodedCertificate, signedData.p, 0u, &kind),
        GETTER(GetCmsSignedDataEncodedCrl, signedData.p, 0u, &kind),
        GETTER(EncodeCmsEnvelopedData, enveloped.p), GETTER(GetCmsEnvelopedDataEncryptedContent, enveloped.p),
        GETTER(EncodeKeyTrans, keyTrans), GETTER(GetKeyTransEncryptedKey, keyTrans),
        GETTER(EncodeGostR3410KeyTransport, transport.p), GETTER(GetGostR3410KeyTransportEncryptedKey, transport.p),
        GETTER(GetGostR3410KeyTransportEphemeralPublicKey, transport.p), GETTER(GetGostR3410KeyTransportUkm, transport.p),
    };
    for (const Getter& g : getters) {
        SCOPED_TRACE(g.name);
        const Got got = Sized([&](uint8_t* o, uint32_t* n) { return g.call(false, o, n); });
        const uint32_t size = Size(got.bytes);
        EXPECT_EQ(got.rc, 0u);
        ASSERT_GT(size, 0u);
        for (uint32_t room : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, size / 2, size - 1, size, size + 8}) {
            Bytes buffer(size + 8, 0xA5);
            uint32_t n = room;
            ASSERT_EQ(g.call(false, buffer.data(), &n), room < size ? 49u : 0u) << room;
            EXPECT_EQ(n, size) << room;
            EXPECT_EQ(Bytes(buffer.begin() + room, buffer.end()), Bytes(buffer.size() - room, 0xA5)) << room;
            EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + (room < size ? 0 : size)), room < size ? Bytes{} : got.bytes) << room;
        }
        uint8_t buffer[4];
        uint32_t n = sizeof buffer;
        EXPECT_EQ(g.call(true, buffer, &n), 32u) << "null handle";
        EXPECT_EQ(g.call(false, buffer, nullptr), 32u) << "null length";
    }
}

// Builds an object the way a caller would; the first failing status comes back.
struct Build {
    const char* name;
    std::function<uint32_t()> run;
};

uint32_t BuildCertificate() {
    const Bytes caDer = FixtureFile("pki/ca_gost2012_256.der");
    Own<FreeCertificate> ca, c, copy;
    X509Name* subject = nullptr;
    const Bytes serial = Hex("01 02"), key(64, 7);
    const LibraryTime t{2030, 6, 1, 12, 0, 0};
    TRY(DecodeCertificate(caDer.data(), Size(caDer), &ca.p));
    TRY(CreateCertificate(&c.p));
    TRY(SetCertificateVersion(c, 2));
    TRY(SetCertificateSerialNumber(c, serial.data(), 2));
    TRY(GetCertificateSubject(ca, &subject));
    TRY(SetCertificateSubject(c, subject));
    TRY(SetCertificateIssuer(c, subject));
    TRY(SetCertificateValidNotBefore(c, &t));
    TRY(SetCertificateValidNotAfter(c, &t));
    TRY(SetCertificateGostR34102001SignatureAlgorithmID(c, 3002, 255));
    TRY(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(c, 3000, 1, 1, 3, 1));
    TRY(SetCertificateGostR34102001PublicKey(c, key.data(), 64));
    TRY(SetCertificateSubjectKeyIdentifier(c));
    TRY(SetCertificateAuthorityKeyIdentifier(c, ca));
    TRY(SetCertificateExtensionCrlDistributionPoints(c, "http://crl.example.ru/ca.crl"));
    TRY(SetCertificateKestruneKeyIdentifier(c, "key"));
    TRY(SetCertificateSignature(c, key.data(), 64));
    TRY(CreateCertificateCopy(c, &copy.p));
    return Get(EncodeCertificate, copy.p).rc;
}

uint32_t BuildCrl() {
    Own<FreeX509Crl> crl;
    Own<FreeX509Name> issuer;
    const Bytes serial = Hex("0102");
    const LibraryTime april{2025, 4, 1, 0, 0, 0}, may{2025, 5, 1, 0, 0, 0};
    uint32_t index = 0, count = 0;
    TRY(CreateX509Name(&issuer.p));
    TRY(AddX509NameEntry(issuer, U8("CA"), 2, ASN1_UTF8_STRING, Packed("2.5.4.3").data(), 1));
    TRY(CreateX509Crl(&crl.p));
    TRY(SetX509CrlIssuer(crl, issuer));
    TRY(SetX509CrlThisUpdate(crl, &april));
    TRY(SetX509CrlNextUpdate(crl, &may));
    TRY(SetX509CrlVersion(crl, 1));
    TRY(SetX509CrlGostR34102001SignatureAlgorithmIDAndParameters(crl, 102, 1, 1, 1, 1));
    if (const uint32_t rc = AddX509CrlRevokedCertificate(crl, serial.data(), 2, &april, &index)) {
        EXPECT_EQ(GetX509CrlRevokedCertificateCount(crl, &count), 0u);
        EXPECT_EQ(count, 0u) << "a failed add leaves no list behind";
        return rc;
    }
    TRY(SetX509CrlAuthorityKeyIdentifier2(crl, serial.data(), 2, issuer, serial.data(), 2));
    TRY(SetX509CrlSignature(crl, serial.data(), 2));
    const Bytes der = FixtureFile("pki/crl_indirect.der");
    Own<FreeX509Crl> indirect;
    X509Name* own = nullptr;
    TRY(DecodeX509Crl(der.data(), Size(der), &indirect.p));
    TRY(GetX509CrlIssuer(indirect, &own));
    const uint32_t rc = FindX509CrlFind(indirect, own, Hex("3003").data(), 2, &index);
    if (rc != TV_ERR_NOT_FOUND) return rc;
    return Get(EncodeX509Crl, crl.p).rc;
}

uint32_t BuildRequest() {
    Own<FreePKCS10CertReq> q, copy;
    Own<FreeX509Extensions> extensions;
    const Bytes key(64, 0x33);
    TRY(CreatePKCS10CertReq(&q.p));
    TRY(SetPKCS10CertReqGostR34102001PublicKey(q, key.data(), 64));
    TRY(SetPKCS10CertReqGostR34102001PublicKeyAlgorithmIdAndParameters(q, 102, 1, 1, 1, 1));
    TRY(SetPKCS10CertReqGostR34102001SignatureAlgorithmIdAndParameters(q, 100, 0, 0, 0, 0));
    TRY(SetPKCS10CertReqSignature(q, key.data(), 64));
    TRY(CreateX509Extensions(&extensions.p));
    TRY(AddX509ExtensionsExtension(extensions, Packed("2.5.29.19").data(), 1, Hex("3000").data(), 2));
    TRY(SetPKCS10CertReqExtensions(q, extensions));
    TRY(CreatePKCS10CertReqCopy(q, &copy.p));
    return Get(EncodePKCS10CertReq, copy.p).rc;
}

// A failed update of the requested extensions leaves the request's attributes as they were.
uint32_t UpdateRequestExtensions(PKCS10CertReq* q) {
    Own<FreeX509Extensions> wanted, now;
    uint32_t count = 0;
    TRY(CreateX509Extensions(&wanted.p));
    TRY(AddX509ExtensionsExtension(wanted, Packed("2.5.29.19").data(), 1, Hex("3000").data(), 2));
    const uint32_t rc = SetPKCS10CertReqExtensions(q, wanted);
    SetAllocationsBeforeFailure(-1);
    EXPECT_EQ(GetPKCS10CertReqExtensions(q, &now.p), 0u);
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(now, &count), 0u);
    EXPECT_EQ(count, rc == 0 ? 1u : 4u);
    return rc;
}

uint32_t BuildExtensionValues() {
    const Bytes policyOid = Packed("2.5.29.32.0"), params = Hex("0500");
    const Bytes points = FixtureFile("extensions/crl_distribution_points_issuer.der");
    Own<FreeExtensionCrlDistributionPoints> read, built;
    Own<FreeExtensionCertificatePolicies> policies;
    Own<FreeX509GeneralNames> copy, akiIssuer;
    GeneralNames *full = nullptr, *issuer = nullptr;
    X509Name* relative = nullptr;
    uint32_t reasons = 0, index = 0;
    TRY(DecodeExtensionCrlDistributionPoints(points.data(), Size(points), &read.p));
    TRY(CreateExtensionCrlDistributionPoints(&built.p));
    TRY(GetExtensionCrlDistributionPoint(read, 0, &full, &relative, &reasons, &issuer));
    TRY(CopyX509GeneralNames(issuer, &copy.p));
    TRY(AddExtensionCrlDistributionPoint(built, nullptr, nullptr, reasons, copy));
    copy.release();
    TRY(Get(EncodeExtensionCrlDistributionPoints, built.p).rc);
    TRY(CreateExtensionCertificatePolicies(&policies.p));
    TRY(AddExtensionPolicyInformation(policies, policyOid.data(), &index));
    TRY(AddExtensionPolicyQualifier(policies, index, policyOid.data(), params.data(), 2));
    const Bytes aki = FixtureFile("extensions/aki_full.der");
    uint8_t key[64], serial[64];
    uint32_t keyLen = sizeof key, serialLen = sizeof serial;
    TRY(DecodeExtensionAuthorityKeyIdentifier(aki.data(), Size(aki), key, &keyLen, &akiIssuer.p, serial, &serialLen));
    return Get(EncodeExtensionIssuingDistributionPoint, akiIssuer.p, (X509Name*)nullptr, 1u, 1u, 0u, 0u, 0x60u, 1u,
               0u, 0u, 0u, 0u).rc;
}

// The engine on its own: a SET OF, decoded and written in DER order into a buffer it allocates.
uint32_t EncodeSetOf() {
    static constexpr Asn1Descriptor kInt{0, 0, 0, ASN1_INTEGER, -1, 0, nullptr, 0, nullptr};
    static constexpr const Asn1Descriptor* kElement[] = {&kInt};
    static constexpr Asn1Descriptor kSetOf{0, ASN1_CONSTRUCTED_FORM, 0, ASN1_SET_OF, -1, 0, kElement, 1, nullptr};
    const Bytes in = Hex("31 09 02 01 05 02 01 03 02 01 04");
    void* set = nullptr;
    uint32_t used = 0, len = 0;
    TRY(Asn1DecodeItem(in.data(), Size(in), &kSetOf, &set, &used));
    uint8_t* out = nullptr;
    const uint32_t rc = Asn1Encode(set, &kSetOf, &out, &len);
    EXPECT_EQ(rc ? "" : ToHex(out, len), rc ? "" : H("31 09 02 01 03 02 01 04 02 01 05"));
    std::free(out);
    FreeAsn1Object(&kSetOf, set);
    return rc;
}

uint32_t BuildLists() {
    Own<FreeX509Extensions> extensions, back;
    Own<FreeRsaAttributes> a, b;
    Own<FreePKIFreeText> text;
    Own<FreeOctetStrings> strings;
    const Bytes contentType = Packed("1.2.840.113549.1.9.3"), utc = Hex("17 0D 3236303130313030303030305A");
    const Bytes set = Hex("31 1A 30 18 06 09 2A864886F70D010903 31 0B 06 09 2A864886F70D010701");
    uint32_t index = 0;
    TRY(CreateX509Extensions(&extensions.p));
    TRY(AddX509ExtensionsExtension(extensions, Packed("2.5.29.15").data(), 1, Hex("03020186").data(), 4));
    const Got der = Get(EncodeX509Extensions, extensions.p);
    TRY(der.rc);
    TRY(DecodeX509Extensions(der.bytes.data(), Size(der.bytes), &back.p));
    TRY(CreateRsaAttributes(&a.p));
    TRY(AddRsaAttributesAttributeWithValue(a, contentType.data(), &index, utc.data(), Size(utc)));
    TRY(DecodeRsaAttributes(set.data(), Size(set), &b.p));
    TRY(AppendRsaAttributes(a, b));
    TRY(Get(EncodeRsaAttributes, a.p).rc);
    TRY(CreatePKIFreeText(&text.p));
    TRY(AddPKIFreeTextString(text, U8("x"), 1));
    TRY(CreateOctetStrings(&strings.p));
    TRY(AddOctetStringsValue(strings, U8("x"), 1));
    const LibraryTime t{2050, 1, 1, 0, 0, 0};
    return Get(EncodeTime, &t).rc;
}

// The message families built the way a signer, a responder, a time-stamp authority and an encrypting
// sender build them.
uint32_t BuildSignedMessage() {
    const Bytes cert = FixtureFile("pki/ee_rsa.der"), digest(32, 0xD1), signature(64, 0x5A);
    const uint8_t* certs[] = {cert.data()};
    const uint32_t lens[] = {Size(cert)};
    const LibraryTime when{2025, 3, 5, 6, 7, 8};
    const Bytes sha256 = Packed("2.16.840.1.101.3.4.2.1"), rsa = Packed("1.2.840.113549.1.1.1");
    return Sized([&](uint8_t* out, uint32_t* outLen) {
        return CreateCmsFileSignature2(digest.data(), 32, digest.data(), 32, &when, sha256.data(), nullptr, 0, cert.data(),
                                       Size(cert), certs, lens, 1, rsa.data(), nullptr, 0, 1, nullptr, 0, signature.data(),
                                       64, nullptr, 0, out, outLen);
    }).rc;
}

uint32_t BuildOcspResponse() {
    Own<FreeOcspBasicResponse> basic;
    Own<FreeOcspSingleResponse> single;
    const Bytes sha1 = Packed("1.3.14.3.2.26"), hash(20, 0x11), serial = Hex("01 02");
    const LibraryTime when{2025, 3, 5, 6, 7, 8};
    TRY(CreateOcspBasicResponse(&basic.p));
    TRY(SetOcspBasicResponseResponderID(basic, 1, hash.data(), Size(hash)));  // byKey
    TRY(SetOcspBasicResponseProducedAt(basic, &when));
    TRY(CreateOcspSingleResponse(&single.p));
    TRY(SetOcspSingleResponseCertID(single, sha1.data(), Hex("05 00").data(), 2, hash.data(), 20, hash.data(), 20,
                                    serial.data(), Size(serial)));
    TRY(SetOcspSingleResponseCertStatusGood(single));
    TRY(SetOcspSingleResponseThisUpdate(single, &when));
    const uint32_t rc = AddOcspBasicResponseSingleResponse(basic, single);
    if (rc == TV_OK) single.release();
    TRY(rc);
    TRY(SetOcspBasicResponseSignatureAlgorithmOidAndParameters(basic, Packed("1.2.840.113549.1.1.11").data(), nullptr, 0));
    TRY(SetOcspBasicResponseSignature(basic, hash.data(), Size(hash)));
    return Get(EncodeOcspBasicResponse, basic.p).rc;
}

uint32_t BuildTimeStamp() {
    const Bytes policy = Packed("1.2.3.4"), sha256 = Packed("2.16.840.1.101.3.4.2.1"), imprint(32, 0x22), serial = Hex("05");
    const LibraryPreciseTime when{2025, 3, 5, 6, 7, 8, 250, 0};
    const Accuracy accuracy{1, 0, 0};
    return Get(EncodeTSTInfo, 1u, policy.data(), sha256.data(), static_cast<const uint8_t*>(nullptr), 0u, imprint.data(),
               Size(imprint), serial.data(), Size(serial), &when, &accuracy, 1u, serial.data(), Size(serial),
               static_cast<const GeneralName*>(nullptr), static_cast<const X509Extensions*>(nullptr)).rc;
}

uint32_t BuildEnvelopedMessage() {
    Own<FreeCmsEnvelopedData> enveloped;
    Own<FreeKeyTrans> recipient;
    Own<FreeGostR3410KeyTransport> transport;
    const Bytes key(32, 0x33), iv(8, 0x44), set = Packed("1.2.643.7.1.2.5.1.1"), gost = Packed("1.2.643.7.1.1.1.1");
    TRY(CreateGostR3410KeyTransport(&transport.p));
    TRY(SetGostR3410KeyTransportEncryptedKey(transport, key.data(), 32));
    TRY(SetGostR3410KeyTransportMacKey(transport, iv.data(), 4));
    TRY(SetGostR3410KeyTransportEncryptionParamSetOid(transport, set.data()));
    TRY(SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(transport, gost.data(), nullptr, 0));
    TRY(SetGostR3410KeyTransportEphemeralPublicKey(transport, key.data(), 32));
    TRY(SetGostR3410KeyTransportUkm(transport, iv.data(), 8));
    const Got wrapped = Get(EncodeGostR3410KeyTransport, transport.p);
    TRY(wrapped.rc);
    TRY(CreateKeyTrans(&recipient.p));
    TRY(SetKeyTransRecipientIdentifierSubjectKeyIdentifier(recipient, key.data(), 20));
    TRY(SetKeyTransKeyEncryptionAlgorithmOidAndParameters(recipient, gost.data(), nullptr, 0));
    TRY(SetKeyTransEncryptedKey(recipient, wrapped.bytes.data(), Size(wrapped.bytes)));
    TRY(CreateCmsEnvelopedData(&enveloped.p));
    const uint32_t rc = AddCmsEnvelopedDataRecipientInfo(enveloped, TV_CMS_RECIPIENT_KEY_TRANS, recipient.p);
    if (rc == TV_OK) recipient.release();
    TRY(rc);
    const Got parameters = Get(EncodeGost2814789Parameters, iv.data(), 8u, set.data());
    TRY(parameters.rc);
    TRY(SetCmsEnvelopedDataEncryptedContentTypeOid(enveloped, Packed("1.2.840.113549.1.7.1").data()));
    TRY(SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(enveloped, Packed("1.2.643.2.2.21").data(),
                                                                      parameters.bytes.data(), Size(parameters.bytes)));
    TRY(SetCmsEnvelopedDataEncryptedContent(enveloped, key.data(), 32));
    TRY(AddCmsEnvelopedDataEncodedCertificate(enveloped, 1, FixtureFile("pki/ee_rsa.der").data(),
                                              Size(FixtureFile("pki/ee_rsa.der"))));
    return Get(EncodeCmsEnvelopedData, enveloped.p).rc;
}

// Additions that fail leave their list as it was: one scenario per list kind.
template <typename Count, typename Add>
uint32_t Unchanged(Count count, Add add) {
    const uint32_t before = count(), rc = add();
    SetAllocationsBeforeFailure(-1);
    EXPECT_EQ(count(), rc == 0 ? before + 1 : before);
    return rc;
}

TEST(Allocation, EveryBuildFailsCleanly) {
    auto request = Decoded<FreePKCS10CertReq>(DecodePKCS10CertReq, FixtureFile("pki/req_gost2012_256.der"));
    Own<FreeX509Name> name;
    Own<FreeX509GeneralNames> names;
    Own<FreeRsaAttributes> attributes;
    Own<FreeOctetStrings> strings;
    ASSERT_EQ(CreateX509Name(&name.p), 0u);
    ASSERT_EQ(AddX509NameEntry(name, U8("RU"), 2, ASN1_PRINTABLE_STRING, Packed("2.5.4.6").data(), 1), 0u);
    ASSERT_EQ(CreateX509GeneralNames(&names.p), 0u);
    ASSERT_EQ(CreateRsaAttributes(&attributes.p), 0u);
    uint32_t index = 0;
    ASSERT_EQ(AddRsaAttributesAttributeWithValue(attributes, Packed("1.2.840.113549.1.9.3").data(), &index,
                                                 Hex("06 01 00").data(), 3), 0u);
    ASSERT_EQ(CreateOctetStrings(&strings.p), 0u);
    for (int i = 0; i < 10; ++i) ASSERT_EQ(AddOctetStringsValue(strings, U8("x"), 1), 0u);  // the next one grows the list
    auto entries = [&] { uint32_t n = 0; GetX509NameEntryCount(name, 0, &n); return n; };
    auto generalNames = [&] { uint32_t n = 0; GetX509GeneralNameCount(names, &n); return n; };
    auto values = [&] { uint32_t n = 0; GetRsaAttributesAttributeValuesCount(attributes, 0, &n); return n; };
    auto octetStrings = [&] { uint32_t n = 0; GetOctetStringsCount(strings, &n); return n; };
    const Bytes directoryName = Hex("30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55"), cn = Packed("2.5.4.3"),
                oid = Hex("06 01 01");
    const Build builds[] = {
        {"certificate", BuildCertificate},
        {"CRL", BuildCrl},
        {"request", BuildRequest},
        {"request extensions", [&] { return UpdateRequestExtensions(request); }},
        {"extension values", BuildExtensionValues},
        {"lists and time", BuildLists},
        {"SET OF", EncodeSetOf},
        {"CMS signed message", BuildSignedMessage},
        {"OCSP basic response", BuildOcspResponse},
        {"time-stamp TSTInfo", BuildTimeStamp},
        {"enveloped message", BuildEnvelopedMessage},
        {"name entry", [&] { return Unchanged(entries, [&] { return AddX509NameEntry(name, U8("x"), 1, ASN1_UTF8_STRING, cn.data(), 0); }); }},
        {"directoryName", [&] { return Unchanged(generalNames, [&] { return AddX509GeneralName(names, 4, directoryName.data(), Size(directoryName)); }); }},
        {"dNSName", [&] { return Unchanged(generalNames, [&] { return AddX509GeneralName(names, 2, U8("a.ru"), 4); }); }},
        {"attribute value", [&] { return Unchanged(values, [&] { return AddRsaAttributesAttributeValue(attributes, 0, oid.data(), 3); }); }},
        {"octet string", [&] { return Unchanged(octetStrings, [&] { return AddOctetStringsValue(strings, U8("y"), 1); }); }},
    };
    for (const Build& b : builds) EXPECT_GT(ForEachAllocationFailure(b.run), 1) << b.name;
}

}  // namespace
