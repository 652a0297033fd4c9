// The rules of enveloped messages callers rely on: originator certificate and CRL kinds answering
// 306 where SignedData answers 32, originatorInfo made on the first Add, recipients taken over only
// on success and the opaque recipient kinds carried as ANY values, the GOST key transport's
// containers made on demand and its removal rules, and the GOST 28147-89 parameter codec. openssl's
// messages are the fixture and interop tests'.
#include "TestUtil.h"

using namespace tvtest;

namespace {

const Asn1Descriptor kAnyElement{ASN1_CLASS_UNIVERSAL, ASN1_PRIMITIVE_FORM, 0, ASN1_ANY, -1, 0, nullptr, 0, nullptr};

// An ANY value holding `element`, made as the header says a caller makes one.
void* AnyValue(const Bytes& element) {
    void* value = nullptr;
    uint32_t used = 0;
    EXPECT_EQ(Asn1DecodeItem(element.data(), Size(element), &kAnyElement, &value, &used), TV_OK);
    return value;
}

// An EnvelopedData with its mandatory members set, so that it encodes.
Own<FreeCmsEnvelopedData> Minimal() {
    auto ed = Made<FreeCmsEnvelopedData>(CreateCmsEnvelopedData);
    EXPECT_EQ(SetCmsEnvelopedDataVersion(ed, 2), TV_OK);
    EXPECT_EQ(SetCmsEnvelopedDataEncryptedContentTypeOid(ed, Packed("1.2.840.113549.1.7.1").data()), TV_OK);
    EXPECT_EQ(SetCmsEnvelopedDataContentEncryptionAlgorithmOidAndParameters(ed, Packed("2.16.840.1.101.3.4.1.42").data(),
                                                                            nullptr, 0), TV_OK);
    return ed;
}

}  // namespace

TEST(CmsEnvelopedData, OriginatorKindsAnswer306AndOriginatorInfoComesWithTheFirstAdd) {
    const Bytes cert = FixtureFile("pki/ee_rsa.der"), crl = FixtureFile("pki/crl_rsa.der");
    EXPECT_EQ(Child(Get(EncodeCmsEnvelopedData, Minimal().p).bytes, {1}), Hex("31 00")) << "no originatorInfo before an Add";
    const struct {
        uint32_t kind;
        bool crl;
        uint32_t enveloped, signedData;
    } rows[] = {{0, false, 306, 32}, {6, false, 306, 32}, {3, false, 0, 0}, {0, true, 306, 32}, {3, true, 306, 32},
                {2, true, 0, 0}};
    for (const auto& row : rows) {
        auto ed = Minimal();
        auto sd = Made<FreeCmsSignedData>(CreateCmsSignedData);
        const Bytes& in = row.crl ? crl : cert;
        const auto add = row.crl ? AddCmsEnvelopedDataEncodedCrl : AddCmsEnvelopedDataEncodedCertificate;
        EXPECT_EQ(add(ed, row.kind, in.data(), Size(in)), row.enveloped) << row.kind << row.crl;
        EXPECT_EQ((row.crl ? AddCmsSignedDataEncodedCrl : AddCmsSignedDataEncodedCertificate)(sd, row.kind, in.data(), Size(in)),
                  row.signedData);
        // [0] originatorInfo holding the [0] or [1] set, empty when the kind was refused.
        const Bytes der = Get(EncodeCmsEnvelopedData, ed.p).bytes;
        ASSERT_EQ(Child(der, {1}).at(0), 0xA0) << "originatorInfo";
        EXPECT_EQ(Child(der, {1, 0}).at(0), row.crl ? 0xA1 : 0xA0);
        uint32_t kind = 0;
        const auto read = row.crl ? GetCmsEnvelopedDataEncodedCrl : GetCmsEnvelopedDataEncodedCertificate;
        EXPECT_EQ(read(ed, 0, &kind, nullptr, nullptr), row.enveloped ? 32u : 0u);
        if (!row.enveloped) {
            EXPECT_EQ(kind, row.kind);
        }
    }
    auto ed = Minimal();
    EXPECT_EQ(Counted(GetCmsEnvelopedDataCertificatesCount, ed.p), "0");
    EXPECT_EQ(AddCmsEnvelopedDataEncodedCertificate(ed, 1, cert.data(), Size(cert)), TV_OK);
    EXPECT_EQ(AddCmsEnvelopedDataEncodedCertificate(ed, 1, cert.data(), Size(cert)), TV_OK);
    EXPECT_EQ(AddCmsEnvelopedDataEncodedCrl(ed, 1, crl.data(), Size(crl)), TV_OK);
    EXPECT_EQ(AddCmsEnvelopedDataEncodedCrl(ed, 1, crl.data(), Size(crl)), TV_OK);
    EXPECT_EQ(Counted(GetCmsEnvelopedDataCertificatesCount, ed.p), "1") << "stored once";
    EXPECT_EQ(Counted(GetCmsEnvelopedDataCrlsCount, ed.p), "2") << "as often as added";
    EXPECT_EQ(RemoveCmsEnvelopedDataCertificates(ed), TV_OK);
    EXPECT_EQ(RemoveCmsEnvelopedDataCrls(ed), TV_OK);
    EXPECT_EQ(Counted(GetCmsEnvelopedDataCertificatesCount, ed.p), "0");
    EXPECT_EQ(Counted(GetCmsEnvelopedDataCrlsCount, ed.p), "0");
}

TEST(CmsEnvelopedData, RecipientsAreTakenOverOnlyOnSuccessAndOpaqueKindsTravelWhole) {
    auto ed = Minimal();
    void* keyAgree = AnyValue(Hex("A1 03 02 01 03"));
    for (uint32_t kind : {0u, 6u}) EXPECT_EQ(AddCmsEnvelopedDataRecipientInfo(ed, kind, keyAgree), 32u);
    EXPECT_EQ(AddCmsEnvelopedDataRecipientInfo(ed, 1, nullptr), 32u);
    ASSERT_EQ(AddCmsEnvelopedDataRecipientInfo(ed, TV_CMS_RECIPIENT_KEY_AGREE, keyAgree), TV_OK);  // the message's now
    KeyTrans* keyTrans = nullptr;
    ASSERT_EQ(CreateKeyTrans(&keyTrans), TV_OK);
    const Bytes keyId = Hex("01 02 03"), encryptedKey = Hex("AA BB");
    ASSERT_EQ(SetKeyTransVersion(keyTrans, 2) | SetKeyTransRecipientIdentifierSubjectKeyIdentifier(keyTrans, keyId.data(), 3) |
                  SetKeyTransKeyEncryptionAlgorithmOidAndParameters(keyTrans, Packed("1.2.840.113549.1.1.1").data(),
                                                                    Hex("05 00").data(), 2) |
                  SetKeyTransEncryptedKey(keyTrans, encryptedKey.data(), 2),
              TV_OK);
    ASSERT_EQ(AddCmsEnvelopedDataRecipientInfo(ed, TV_CMS_RECIPIENT_KEY_TRANS, keyTrans), TV_OK);

    auto back = Decoded<FreeCmsEnvelopedData>(DecodeCmsEnvelopedData, Get(EncodeCmsEnvelopedData, ed.p).bytes);
    EXPECT_EQ(Counted(GetCmsEnvelopedDataRecipientInfosCount, back.p), "2");
    void* value = nullptr;
    uint32_t kind = 0;
    for (uint32_t i = 0; i < 2; ++i) {  // the SET's DER order: the KeyTrans SEQUENCE (0x30) before [1] (0xA1)
        ASSERT_EQ(GetCmsEnvelopedDataRecipientInfo(back, i, &value, &kind), TV_OK);
        if (kind == TV_CMS_RECIPIENT_KEY_AGREE) {
            EXPECT_EQ(Get(GetAsn1AnyValue, static_cast<const Asn1Primitive*>(value)).hex(), H("A1 03 02 01 03"));
            continue;
        }
        ASSERT_EQ(kind, TV_CMS_RECIPIENT_KEY_TRANS);
        auto* got = static_cast<KeyTrans*>(value);
        X509Name* issuer = reinterpret_cast<X509Name*>(1);
        uint8_t serial[8], id[8];
        uint32_t serialLen = 8, idLen = 8, version = 0;
        EXPECT_EQ(GetKeyTransRecipientIdentifier(got, &issuer, serial, &serialLen, id, &idLen), TV_OK);
        EXPECT_EQ(Bytes(id, id + idLen), keyId);
        EXPECT_EQ(issuer, nullptr);
        EXPECT_EQ(GetKeyTransVersion(got, &version), TV_OK);
        EXPECT_EQ(version, 2u);
        EXPECT_EQ(Get(GetKeyTransEncryptedKey, got).bytes, encryptedKey);
    }
    // An alternative outside the five reads as kind 0 (a caller's own tree can hold one).
    auto* recipients = reinterpret_cast<Asn1List**>(back.p)[2];
    static_cast<Asn1ChoiceValue*>(recipients->items[0])->index = 7;
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(back, 0, &value, &kind), TV_OK);
    EXPECT_EQ(kind, 0u);
    static_cast<Asn1ChoiceValue*>(recipients->items[0])->index = 0;
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(back, 2, &value, &kind), 32u);
    EXPECT_EQ(GetCmsEnvelopedDataRecipientInfo(back, 0, nullptr, &kind), 32u);
    EXPECT_EQ(RemoveCmsEnvelopedDataRecipientInfos(back), TV_OK);
    EXPECT_EQ(Counted(GetCmsEnvelopedDataRecipientInfosCount, back.p), "0");

    // After a failed Add the value is still the caller's: freed here, the sanitizer build sees no
    // double free and no leak.
    const Bytes kek = Hex("A2 00");
    EXPECT_GT(ForEachAllocationFailure([&] {
                  Own<FreeCmsEnvelopedData> fresh;
                  void* opaque = nullptr;
                  uint32_t used = 0;
                  TRY(CreateCmsEnvelopedData(&fresh.p));
                  TRY(Asn1DecodeItem(kek.data(), Size(kek), &kAnyElement, &opaque, &used));
                  const uint32_t rc = AddCmsEnvelopedDataRecipientInfo(fresh, TV_CMS_RECIPIENT_KEK, opaque);
                  if (rc != TV_OK) FreeAsn1Object(&kAnyElement, opaque);
                  return rc;
              }),
              1);
}

TEST(GostR3410KeyTransport, ContainersMadeOnDemandAndRemovalRules) {
    auto kt = Made<FreeGostR3410KeyTransport>(CreateGostR3410KeyTransport);
    const Bytes paramSet = Packed("1.2.643.7.1.2.5.1.1"), gost2012 = Packed("1.2.643.7.1.1.1.1"), key(64, 0x4B);
    const Bytes keyParams = Hex("30 13 06 07 2A 85 03 02 02 23 01 06 08 2A 85 03 07 01 01 02 02");
    // Nothing set: the MAC and the parameter set are absent, the mask key reads as empty.
    EXPECT_EQ(Get(GetGostR3410KeyTransportMacKey, kt.p).rc, 311u);
    EXPECT_EQ(Get(GetGostR3410KeyTransportMaskKey, kt.p).hex(), "");
    EXPECT_EQ(Get(GetGostR3410KeyTransportEncryptionParamSetOid, kt.p).rc, 311u);
    EXPECT_EQ(Get(GetGostR3410KeyTransportEphemeralPublicKey, kt.p).rc, 311u);
    EXPECT_EQ(SetGostR3410KeyTransportEncryptedKey(kt, nullptr, 0), 32u);
    EXPECT_EQ(SetGostR3410KeyTransportUkm(kt, nullptr, 0), 32u);

    ASSERT_EQ(SetGostR3410KeyTransportEncryptionParamSetOid(kt, paramSet.data()), TV_OK);
    EXPECT_EQ(Get(GetGostR3410KeyTransportEncryptionParamSetOid, kt.p).bytes, paramSet) << "transportParameters made";
    const Bytes wrapped(32, 0x11), mac = Hex("01 02 03 04"), ukm(8, 0x55), mask = Hex("0F");
    ASSERT_EQ(SetGostR3410KeyTransportEncryptedKey(kt, wrapped.data(), 32) | SetGostR3410KeyTransportMacKey(kt, mac.data(), 4) |
                  SetGostR3410KeyTransportUkm(kt, ukm.data(), 8) | SetGostR3410KeyTransportMaskKey(kt, mask.data(), 1) |
                  SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(kt, gost2012.data(), keyParams.data(),
                                                                                      Size(keyParams)) |
                  SetGostR3410KeyTransportEphemeralPublicKey(kt, key.data(), Size(key)),
              TV_OK);
    const Bytes der = Get(EncodeGostR3410KeyTransport, kt.p).bytes;
    auto back = Decoded<FreeGostR3410KeyTransport>(DecodeGostR3410KeyTransport, der);
    EXPECT_EQ(Get(GetGostR3410KeyTransportMaskKey, back.p).bytes, mask);
    EXPECT_EQ(Get(GetGostR3410KeyTransportEphemeralPublicKey, back.p).bytes, key);
    EXPECT_EQ(Get(EncodeGostR3410KeyTransport, back.p).bytes, der);

    // Removing: the mask key alone; the ephemeral key with its algorithm, by either setter.
    ASSERT_EQ(SetGostR3410KeyTransportMaskKey(back, mask.data(), 0), TV_OK);
    EXPECT_EQ(Get(GetGostR3410KeyTransportMaskKey, back.p).hex(), "");
    for (const bool byKey : {true, false}) {
        ASSERT_EQ(SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(back, gost2012.data(), nullptr, 0), TV_OK);
        ASSERT_EQ(byKey ? SetGostR3410KeyTransportEphemeralPublicKey(back, nullptr, 0)
                        : SetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(back, nullptr, nullptr, 0),
                  TV_OK);
        uint8_t oid[16];
        uint32_t oidLen = sizeof oid, paramsLen = 0;
        EXPECT_EQ(GetGostR3410KeyTransportEphemeralPublicKeyAlgorithmOidAndParameters(back, oid, &oidLen, nullptr, &paramsLen),
                  311u);
    }
    EXPECT_EQ(Get(GetGostR3410KeyTransportUkm, back.p).bytes, ukm) << "the rest of transportParameters stays";
}

TEST(Gost2814789Parameters, CodecAndWhatIsNotParameters) {
    const Bytes iv = Hex("AF 38 A3 07 9B A1 B6 6A"), set = Packed("1.2.643.7.1.2.5.1.1");
    const Got der = Get(EncodeGost2814789Parameters, iv.data(), Size(iv), set.data());
    EXPECT_EQ(der.hex(), H("30 15 04 08 AF 38 A3 07 9B A1 B6 6A 06 09 2A 85 03 07 01 02 05 01 01"));
    EXPECT_EQ(Get(EncodeGost2814789Parameters, iv.data(), Size(iv), static_cast<const uint8_t*>(nullptr)).rc, 32u);
    const struct {
        const char* what;
        std::string in;
        uint32_t ivRoom, oidRoom, rc;
    } rows[] = {
        {"the parameters", der.hex(), 8, 10, 0},
        {"an IV that does not fit: the OID still comes", der.hex(), 7, 10, 49},
        {"an OID that does not fit", der.hex(), 8, 9, 49},
        {"the parts in the other order", "30 15 06 09 2A 85 03 07 01 02 05 01 01 04 08 AF 38 A3 07 9B A1 B6 6A", 8, 10, 302},
        {"an IV alone", "30 0A 04 08 AF 38 A3 07 9B A1 B6 6A", 8, 10, 302},
        {"not a SEQUENCE", "04 08 AF 38 A3 07 9B A1 B6 6A", 8, 10, 302},
        {"cut short", "30 15 04 08 AF 38", 8, 10, 302},
        {"nothing", "", 8, 10, 302},
    };
    for (const auto& row : rows) {
        const Bytes in = Hex(row.in);
        uint8_t gotIv[8], gotOid[10];
        uint32_t ivLen = row.ivRoom, oidLen = row.oidRoom;
        EXPECT_EQ(DecodeGost2814789Parameters(in.data(), Size(in), gotIv, &ivLen, gotOid, &oidLen), row.rc) << row.what;
        if (row.rc == 302) continue;
        EXPECT_EQ(ivLen, 8u) << row.what;
        EXPECT_EQ(oidLen, 10u) << row.what;
        if (row.oidRoom == 10) {
            EXPECT_EQ(Bytes(gotOid, gotOid + 10), set) << row.what;
        }
    }
}
