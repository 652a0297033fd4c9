// Signature attribute values: the signing-certificate attributes openssl writes into CAdES
// signatures and those made with asn1parse, read field by field against what openssl printed; the
// DEFAULT hash algorithm, the both-or-neither issuerSerial, the readers that go on after a short
// buffer, and lists lent to the encoders.

#include "TestUtil.h"

using namespace tvtest;

namespace {

std::map<std::string, Fields> Expected() {
    std::map<std::string, Fields> all;
    for (auto& [file, fields] : ExpectRows("attributes")) all[file] = std::move(fields);
    return all;
}

std::string Lower(const Bytes& b) { return PlainHex(b, true); }

// One certificate identifier as EXPECT names its parts.
template <typename Read>
void CertId(Read read, Fields& got) {
    Bytes oid(32), params(32), hash(64), serial(32);
    uint32_t n[4] = {32, 32, 64, 32};
    GeneralNames* issuer = nullptr;
    EXPECT_EQ(read(oid.data(), &n[0], params.data(), &n[1], hash.data(), &n[2], &issuer, serial.data(), &n[3]), TV_OK);
    oid.resize(n[0]), params.resize(n[1]), hash.resize(n[2]), serial.resize(n[3]);
    Append(got, "hashForm", oid.empty() ? "sha1" : "other");
    Append(got, "hashAlg", Dotted(oid));
    Append(got, "hashParams", params.empty() ? "-" : params == Hex("05 00") ? "null" : "?");
    Append(got, "certHash", Lower(hash));
    Append(got, "issuerSerial", issuer ? "yes" : "no");
    Append(got, "serial", serial.empty() ? "-" : PlainHex(serial));
}

TEST(AttributeValues, SigningCertificatesReadAsOpenSslWroteThem) {
    const auto expected = Expected();
    for (const char* file : {"cades_rsa_signing_certificate_v2.der", "cades_gost_signing_certificate_v2.der",
                             "other_signing_certificate.der"}) {
        SCOPED_TRACE(file);
        const Bytes der = FixtureFile(std::string("attributes/") + file);
        Fields want = expected.at(file), got;
        uint32_t count = 0;
        CertificatePolicies* policies = nullptr;
        Bytes again;
        if (std::string(file).starts_with("other")) {
            Own<FreeOtherCertIDs> certs;
            ASSERT_EQ(DecodeRsaAttributeOtherSigningCertificateValue(der.data(), Size(der), &certs.p, &policies), TV_OK);
            EXPECT_EQ(GetOtherCertIDCount(certs, &count), TV_OK);
            for (uint32_t i = 0; i < count; ++i)
                CertId([&](auto... o) { return GetOtherCertIDInformation(certs, i, o...); }, got);
            again = Get(EncodeRsaAttributeOtherSigningCertificateValue, certs.p, policies).bytes;
        } else {
            Own<FreeESSCertIDsV2> certs;
            ASSERT_EQ(DecodeRsaAttributeSigningCertificateV2Value(der.data(), Size(der), &certs.p, &policies), TV_OK);
            EXPECT_EQ(GetESSCertIDV2Count(certs, &count), TV_OK);
            for (uint32_t i = 0; i < count; ++i)
                CertId([&](auto... o) { return GetESSCertIDV2Information(certs, i, o...); }, got);
            again = Get(EncodeRsaAttributeSigningCertificateV2Value, certs.p, policies).bytes;
            got.erase("hashForm");
            if (got["hashAlg"] == "2.16.840.1.101.3.4.2.1") got["hashAlg"] = "-";  // filled back from the DEFAULT
        }
        EXPECT_EQ(again, der) << "re-encoded";
        got["certs"] = std::to_string(count);
        got["policies"] = policies ? "yes" : "no";
        FreeExtensionCertificatePolicies(policies);
        for (const char* key : {"cert", "issuer"}) want.erase(key);
        EXPECT_EQ(got, want);
    }
}

// openssl's signed attributes read through the attribute-set functions: the signingCertificateV2
// value in the set is the one above, the message digest and signing time are openssl's.
TEST(AttributeValues, CadesSignedAttributesCarryTheValues) {
    const auto expected = Expected();
    for (const std::string kind : {"rsa", "gost"}) {
        SCOPED_TRACE(kind);
        const Bytes set = FixtureFile("attributes/cades_" + kind + "_signed_attrs.der");
        auto attributes = Decoded<FreeRsaAttributes>(DecodeRsaAttributes, set);
        auto value = [&](const char* dotted) {
            uint32_t index = 0;
            EXPECT_EQ(FindRsaAttributesAttribute(attributes, Packed(dotted).data(), &index), TV_OK);
            return Get(GetRsaAttributesAttributeValue, attributes.p, index, 0u).bytes;
        };
        EXPECT_EQ(value("1.2.840.113549.1.9.16.2.47"),
                  FixtureFile("attributes/cades_" + kind + "_signing_certificate_v2.der"));
        const Bytes digest = value("1.2.840.113549.1.9.4"), signingTime = value("1.2.840.113549.1.9.5");
        const Fields& message = expected.at("cades_" + kind + ".der");
        EXPECT_EQ(Lower(Get(DecodeRsaAttributeMessageDigestValue, digest.data(), Size(digest)).bytes),
                  message.at("messageDigest"));
        LibraryTime t{};
        ASSERT_EQ(DecodeRsaAttributeSigningTimeValue(signingTime.data(), Size(signingTime), &t), TV_OK);
        char when[16];
        std::snprintf(when, sizeof when, "%04u%02u%02u%02u%02u%02u", t.year, t.month, t.day, t.hour, t.minute, t.second);
        EXPECT_EQ(when, message.at("signingTime"));
    }
}

TEST(AttributeValues, CertIdRules) {
    const Bytes sha256 = Packed("2.16.840.1.101.3.4.2.1"), gost = Packed("1.2.643.7.1.1.2.2"), hash(32, 0xAB),
                serial = Hex("01 02");
    Own<FreeX509GeneralNames> issuer;
    ASSERT_EQ(CreateX509GeneralNames(&issuer.p), TV_OK);
    ASSERT_EQ(AddX509GeneralName(issuer, 2, U8("ca.ru"), 5), TV_OK);
    Own<FreeESSCertIDsV2> v2;
    ASSERT_EQ(CreateESSCertIDsV2(&v2.p), TV_OK);
    // SHA-256 without parameters is the DEFAULT and stays out; GOST stays in.
    ASSERT_EQ(AddESSCertIDv2ToList(v2, sha256.data(), nullptr, 0, hash.data(), 32, nullptr, nullptr, 0), TV_OK);
    ASSERT_EQ(AddESSCertIDv2ToList(v2, gost.data(), nullptr, 0, hash.data(), 32, issuer, serial.data(), 2), TV_OK);
    const Bytes der = Get(EncodeRsaAttributeSigningCertificateV2Value, v2.p, nullptr).bytes;
    EXPECT_EQ(ToHex(Child(der, {0, 0})), H("30 22 04 20") + " " + ToHex(hash));
    EXPECT_EQ(Child(der, {0, 1, 0}), Hex("30 0A 06 08 2A 85 03 07 01 01 02 02"));
    // Both or neither: nothing is added otherwise.
    for (auto [withIssuer, withSerial] : {std::pair{true, false}, {false, true}})
        EXPECT_EQ(AddESSCertIDv2ToList(v2, gost.data(), nullptr, 0, hash.data(), 32, withIssuer ? issuer.p : nullptr,
                                       withSerial ? serial.data() : nullptr, 2), 32u);
    uint32_t count = 0;
    EXPECT_EQ(GetESSCertIDV2Count(v2, &count), TV_OK);
    EXPECT_EQ(count, 2u);
    // A hash buffer too small: issuer and serial still come, 49 at the end.
    uint8_t oid[16], small[4], sn[8];
    uint32_t oidLen = sizeof oid, paramsLen = 0, hashLen = sizeof small, snLen = sizeof sn;
    GeneralNames* named = nullptr;
    EXPECT_EQ(GetESSCertIDV2Information(v2, 1, oid, &oidLen, nullptr, &paramsLen, small, &hashLen, &named, sn, &snLen), 49u);
    EXPECT_EQ(hashLen, 32u);
    EXPECT_NE(named, nullptr);
    EXPECT_EQ(ToHex(sn, snLen), "01 02");
    EXPECT_EQ(GetESSCertIDV2Information(v2, 2, oid, &oidLen, nullptr, &paramsLen, small, &hashLen, &named, sn, &snLen), 32u);
    // Without an algorithm an other cert ID is a bare sha1Hash.
    Own<FreeOtherCertIDs> other;
    ASSERT_EQ(CreateOtherCertIDs(&other.p), TV_OK);
    ASSERT_EQ(AddOtherCertIDToList(other, nullptr, nullptr, 0, hash.data(), 20, nullptr, nullptr, 0), TV_OK);
    EXPECT_EQ(ToHex(Get(EncodeOtherCertIDs, other.p).bytes), H("30 18 30 16 04 14") + " " + ToHex(Bytes(20, 0xAB)));
    Own<FreeESSCertIDs> v1;
    ASSERT_EQ(CreateESSCertIDs(&v1.p), TV_OK);
    EXPECT_EQ(AddESSCertIDToList(v1, hash.data(), 20, issuer, nullptr, 0), 32u);
    EXPECT_EQ(GetESSCertIDCount(v1, &count), TV_OK);
    EXPECT_EQ(count, 0u);
}

// The encoders borrow the caller's lists: after every path, failed or not, the lists are whole and
// nothing leaked (the sanitizer run watches).
TEST(AttributeValues, EncodersLendTheCallersLists) {
    Own<FreeOtherCertIDs> certs;
    Own<FreeExtensionCertificatePolicies> policies;
    const Bytes hash(20, 0x11);
    ASSERT_EQ(CreateOtherCertIDs(&certs.p), TV_OK);
    ASSERT_EQ(AddOtherCertIDToList(certs, nullptr, nullptr, 0, hash.data(), 20, nullptr, nullptr, 0), TV_OK);
    ASSERT_EQ(CreateExtensionCertificatePolicies(&policies.p), TV_OK);
    uint32_t index = 0;
    ASSERT_EQ(AddExtensionPolicyInformation(policies, Packed("1.2.643.100.113.1").data(), &index), TV_OK);
    const Bytes once = Get(EncodeRsaAttributeOtherSigningCertificateValue, certs.p, policies.p).bytes;
    EXPECT_GT(ForEachAllocationFailure([&] {
                  Own<FreeOtherCertIDs> back;
                  Own<FreeExtensionCertificatePolicies> backPolicies;
                  const Got der = Get(EncodeRsaAttributeOtherSigningCertificateValue, certs.p, policies.p);
                  TRY(der.rc);
                  return DecodeRsaAttributeOtherSigningCertificateValue(der.bytes.data(), Size(der.bytes), &back.p,
                                                                        &backPolicies.p);
              }),
              1);
    EXPECT_EQ(Get(EncodeRsaAttributeOtherSigningCertificateValue, certs.p, policies.p).bytes, once);
    EXPECT_EQ(EncodeRsaAttributeSigningCertificateValue(nullptr, nullptr, nullptr, &index), 32u);
}

std::string Hashes(const Asn1List* list) {
    std::string all;
    for (uint32_t i = 0; i < GetAsn1ListLength(list); ++i) {
        if (i) all += ',';
        all += Lower(Get(GetOctetStringsValue, list, i).bytes);
    }
    return all.empty() ? "-" : all;
}

std::string When(const LibraryTime& t) {
    if (IsLibraryTimeNull(&t)) return "-";
    char text[16];
    std::snprintf(text, sizeof text, "%04u%02u%02u%02u%02u%02u", t.year, t.month, t.day, t.hour, t.minute, t.second);
    return text;
}

// The ATS hash indexes and DocInfo values made with asn1parse, field by field and back to their bytes.
TEST(AttributeValues, AtsHashIndexAndDocInfoReadAsWritten) {
    const auto expected = Expected();
    for (const char* file : {"ats_hash_index_default.der", "ats_hash_index_gost.der"}) {
        SCOPED_TRACE(file);
        const Bytes der = FixtureFile(std::string("attributes/") + file);
        uint8_t oid[32], params[32];
        uint32_t oidLen = sizeof oid, paramsLen = sizeof params;
        Asn1List *certs = nullptr, *crls = nullptr, *attrs = nullptr;
        ASSERT_EQ(DecodeRsaAttributeAtsHashIndex(der.data(), Size(der), oid, &oidLen, params, &paramsLen, &certs, &crls,
                                                 &attrs), TV_OK);
        Own<FreeOctetStrings> c(certs), r(crls), a(attrs);
        const std::string alg = Dotted(Bytes(oid, oid + oidLen));
        Fields got{{"hashIndAlg", alg == "2.16.840.1.101.3.4.2.1" ? "-" : alg}, {"hashParams", paramsLen ? "?" : "-"},
                   {"certs", std::to_string(GetAsn1ListLength(certs))}, {"certHashes", Hashes(certs)},
                   {"crls", std::to_string(GetAsn1ListLength(crls))}, {"crlHashes", Hashes(crls)},
                   {"unsignedAttrs", std::to_string(GetAsn1ListLength(attrs))}, {"unsignedAttrHashes", Hashes(attrs)}};
        EXPECT_EQ(got, expected.at(file));
        EXPECT_EQ(Get(EncodeRsaAttributeAtsHashIndex, oid, paramsLen ? params : nullptr, paramsLen,
                      static_cast<const Asn1List*>(certs), static_cast<const Asn1List*>(crls),
                      static_cast<const Asn1List*>(attrs)).bytes, der);
        // A short OID buffer is no failure: its size is stored and the lists still come.
        oidLen = 1;
        Asn1List *c2 = nullptr, *r2 = nullptr, *a2 = nullptr;
        EXPECT_EQ(DecodeRsaAttributeAtsHashIndex(der.data(), Size(der), oid, &oidLen, params, &paramsLen, &c2, &r2, &a2),
                  TV_OK);
        EXPECT_GT(oidLen, 1u);
        for (Asn1List* list : {c2, r2, a2}) EXPECT_EQ(FreeOctetStrings(list), TV_OK);
    }
    for (const char* file : {"doc_info_full.der", "doc_info_partial.der"}) {
        SCOPED_TRACE(file);
        const Bytes der = FixtureFile(std::string("attributes/") + file);
        Bytes text[4];
        uint32_t kind = 0, n[4] = {128, 128, 128, 128};
        LibraryTime d1{}, d2{};
        for (Bytes& t : text) t.resize(128);
        ASSERT_EQ(DecodeDocInfo(der.data(), Size(der), &kind, text[0].data(), &n[0], text[1].data(), &n[1],
                                text[2].data(), &n[2], &d1, &d2, text[3].data(), &n[3]), TV_OK);
        Fields got{{"docKind", std::to_string(kind)}, {"docDate1", When(d1)}, {"docDate2", When(d2)}};
        for (int i = 0; i < 4; ++i) {
            text[i].resize(n[i]);
            got["docText" + std::to_string(i + 1)] = n[i] ? Lower(text[i]) : "-";
        }
        EXPECT_EQ(got, expected.at(file));
        auto p = [&](int i) { return n[i] ? text[i].data() : nullptr; };
        EXPECT_EQ(Get(EncodeDocInfo, kind, p(0), n[0], p(1), n[1], p(2), n[2], &d1, &d2, p(3), n[3]).bytes, der);
    }
}

TEST(AttributeValues, SmallValuesAndTheirRules) {
    // DocInfo reads every field and reports the last one that failed: a five-octet kind (49 from its
    // reader), then also a date too short to read (307, a later field); the text between still reads.
    uint8_t text[4][8];
    uint32_t kind = 0, n[4];
    LibraryTime d1{}, d2{};
    for (auto [der, rc] : {std::pair{Hex("30 0A 0A 05 01 02 03 04 05 80 01 41"), 49u},
                           {Hex("30 0E 0A 05 01 02 03 04 05 80 01 41 83 02 32 30"), 307u}}) {
        for (uint32_t& room : n) room = 8;
        EXPECT_EQ(DecodeDocInfo(der.data(), Size(der), &kind, text[0], &n[0], text[1], &n[1], text[2], &n[2], &d1, &d2,
                                text[3], &n[3]), rc);
        EXPECT_EQ(ToHex(text[0], n[0]), "41");
    }
    // ExtSubjInfo: the value is one complete element; missing, it reads as 311 after the OID.
    const Bytes oid = Packed("1.2.643.100.5"), value = Hex("0C 02 41 42");
    const Bytes info = Get(EncodeRsaAttributeExtSubjInfoValue, oid.data(), value.data(), Size(value)).bytes;
    uint32_t oidLen = 8, valueLen = 8;
    ASSERT_EQ(DecodeRsaAttributeExtSubjInfoValue(info.data(), Size(info), text[0], &oidLen, text[1], &valueLen), TV_OK);
    EXPECT_EQ(Bytes(text[0], text[0] + oidLen), oid);
    EXPECT_EQ(Bytes(text[1], text[1] + valueLen), value);
    const Bytes bare = Hex("30 07 06 05 2A 85 03 64 05");
    oidLen = valueLen = 8;
    EXPECT_EQ(DecodeRsaAttributeExtSubjInfoValue(bare.data(), Size(bare), text[0], &oidLen, text[1], &valueLen), 311u);
    EXPECT_EQ(oidLen, 6u);
    EXPECT_EQ(EncodeRsaAttributeExtSubjInfoValue(oid.data(), Hex("05 00 05 00").data(), 4, nullptr, &n[0]), 32u);
    // An ATS hash index of three empty lists: the first SEQUENCE is a list, not the algorithm.
    const Bytes empty = Hex("30 06 30 00 30 00 30 00");
    uint8_t ats[16];
    uint32_t atsLen = sizeof ats, paramsLen = 0;
    Asn1List *c = nullptr, *r = nullptr, *a = nullptr;
    ASSERT_EQ(DecodeRsaAttributeAtsHashIndex(empty.data(), Size(empty), ats, &atsLen, nullptr, &paramsLen, &c, &r, &a), TV_OK);
    EXPECT_EQ(Bytes(ats, ats + atsLen), Packed("2.16.840.1.101.3.4.2.1"));
    EXPECT_EQ(Get(EncodeRsaAttributeAtsHashIndex, ats, nullptr, 0u, static_cast<const Asn1List*>(c),
                  static_cast<const Asn1List*>(r), static_cast<const Asn1List*>(a)).bytes, empty);
    for (Asn1List* list : {c, r, a}) FreeOctetStrings(list);
    // Validity: each Time by the year.
    const LibraryTime from{2049, 1, 2, 3, 4, 5}, to{2050, 1, 2, 3, 4, 5};
    const Bytes validity = Get(EncodeRsaAttributeValidityValue, &from, &to).bytes;
    EXPECT_EQ(validity[2], 0x17);  // UTCTime
    EXPECT_EQ(validity[17], 0x18);  // GeneralizedTime
    ASSERT_EQ(DecodeRsaAttributeValidityValue(validity.data(), Size(validity), &d1, &d2), TV_OK);
    EXPECT_TRUE(SameTime(d1, from) && SameTime(d2, to));
}

// The references made with asn1parse, field by field: CRL identifier, OCSP identifiers by name and by
// key. The issued time goes through the lone UTCTime reader, which wants 15 octets: the 13 of a
// UTCTime are 307 there while every other part is still handed out.
TEST(AttributeValues, CompleteRevocationRefsReadAsWritten) {
    const Fields want = Expected().at("complete_revocation_refs.der");
    const Bytes der = FixtureFile("attributes/complete_revocation_refs.der");
    auto refs = Decoded<FreeCrlOcspRefs>(DecodeRsaAttributeCompleteRevocationRefs, der);
    EXPECT_EQ(Get(EncodeRsaAttributeCompleteRevocationRefs, refs.p).bytes, der);
    uint32_t count = 0, crlCount = 0, ocspCount = 0;
    ASSERT_EQ(GetCrlOcspRefCount(refs, &count), TV_OK);
    Fields got{{"refs", std::to_string(count)}};
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ca_rsa.der"));
    X509Name* caName = nullptr;
    ASSERT_EQ(GetCertificateSubject(ca, &caName), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        CrlListIDs* crls = nullptr;
        OcspListIDs* ocsps = nullptr;
        uint32_t typeLen = 0, valueLen = 0;
        ASSERT_EQ(GetCrlOcspRefInformation(refs, i, &crls, &ocsps, nullptr, &typeLen, nullptr, &valueLen), TV_OK);
        Append(got, "crlids", std::to_string(crls && GetCrlListIDsCount(crls, &crlCount) == TV_OK ? crlCount : 0));
        Append(got, "ocspids", std::to_string(ocsps && GetOcspListIDsCount(ocsps, &ocspCount) == TV_OK ? ocspCount : 0));
        Append(got, "otherRev", typeLen ? "yes" : "no");
        for (uint32_t k = 0; crls && k < crlCount; ++k) {
            Bytes hash(64), number(8);
            uint8_t oid[16];
            uint32_t n[4] = {64, 16, 0, 8};
            X509Name* issuer = nullptr;
            LibraryTime issued{};
            EXPECT_EQ(GetCrlValidatedIdInformation(crls, k, hash.data(), &n[0], oid, &n[1], nullptr, &n[2], &issuer,
                                                   &issued, number.data(), &n[3]), 307u);
            hash.resize(n[0]), number.resize(n[3]);
            got["crlHashForm"] = n[1] ? "other" : "sha1";
            got["crlHash"] = Lower(hash);
            got["crlIssuer"] = issuer && CompareX509Names(issuer, caName) == TV_OK ? "ca_rsa" : "?";
            got["crlNumber"] = std::to_string(number.size() == 1 ? number[0] : 0);
        }
        for (uint32_t k = 0; ocsps && k < ocspCount; ++k) {
            Bytes key(32), hash(64);
            uint8_t oid[16];
            uint32_t n[4] = {32, 64, 16, 0};
            X509Name* name = nullptr;
            LibraryTime produced{};
            ASSERT_EQ(GetOcspResponseIdInformation(ocsps, k, &name, key.data(), &n[0], &produced, hash.data(), &n[1], oid,
                                                   &n[2], nullptr, &n[3]), TV_OK);
            key.resize(n[0]), hash.resize(n[1]);
            Append(got, "responder", name ? "name" : "key");
            Append(got, "responderName", name && CompareX509Names(name, caName) == TV_OK ? "ca_rsa" : "-");
            Append(got, "responderKeyHash", key.empty() ? "-" : Lower(key));
            Append(got, "producedAt", When(produced));
            Append(got, "ocspRepHashForm", hash.empty() ? "-" : n[2] ? "other" : "sha1");
            Append(got, "ocspRepHashAlg", n[2] ? Dotted(Bytes(oid, oid + n[2])) : "-");
            Append(got, "ocspRepHashParams", "-");
            Append(got, "ocspRepHash", hash.empty() ? "-" : Lower(hash));
        }
    }
    Fields expected = want;
    expected.erase("crlIssuedTime");  // unreadable here, as above
    EXPECT_EQ(got, expected);
}

// Add takes the two identifier lists only when it succeeds; a responder without a name is byKey.
TEST(AttributeValues, RevocationReferenceRules) {
    const LibraryTime at{2025, 4, 1, 0, 0, 0};
    const Bytes hash(20, 0x42);
    Own<FreeCrlOcspRefs> refs;
    ASSERT_EQ(CreateCrlOcspRefs(&refs.p), TV_OK);
    EXPECT_GT(ForEachAllocationFailure([&] {
                  Own<FreeCrlListIDs> crls;
                  Own<FreeOcspListIDs> ocsps;
                  TRY(CreateCrlListIDs(&crls.p));
                  TRY(CreateOcspListIDs(&ocsps.p));
                  TRY(AddCrlValidatedIdToList(crls, hash.data(), 20, nullptr, nullptr, 0, nullptr, nullptr, nullptr, 0));
                  TRY(AddOcspResponseIdToList(ocsps, nullptr, hash.data(), 20, &at, nullptr, 0, nullptr, nullptr, 0));
                  TRY(AddCrlOcspRefToList(refs, crls, ocsps, nullptr, nullptr, 0));
                  crls.release(), ocsps.release();
                  return uint32_t{TV_OK};
              }),
              1);
    const Bytes der = Get(EncodeRsaAttributeCompleteRevocationRefs, refs.p).bytes;
    // byKey is [2] around the key hash's OCTET STRING.
    Bytes byKey = Hex("A2 16 04 14");
    byKey.insert(byKey.end(), hash.begin(), hash.end());
    EXPECT_EQ(Child(der, {0, 1, 0, 0, 0, 0, 0}), byKey);
    EXPECT_EQ(AddCrlOcspRefToList(refs, nullptr, nullptr, nullptr, nullptr, 0), 32u);
    Own<FreeOcspListIDs> ocsps;
    ASSERT_EQ(CreateOcspListIDs(&ocsps.p), TV_OK);
    EXPECT_EQ(AddOcspResponseIdToList(ocsps, nullptr, nullptr, 0, &at, nullptr, 0, nullptr, nullptr, 0), 32u);

    // The issued time goes out as a 13-octet UTCTime that the reader, wanting 15, refuses (kept).
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ca_rsa.der"));
    X509Name* caName = nullptr;
    ASSERT_EQ(GetCertificateSubject(ca, &caName), TV_OK);
    Own<FreeCrlListIDs> timed;
    ASSERT_EQ(CreateCrlListIDs(&timed.p), TV_OK);
    ASSERT_EQ(AddCrlValidatedIdToList(timed, hash.data(), 20, nullptr, nullptr, 0, caName, &at, nullptr, 0), TV_OK);
    uint8_t out[64], oid[16];
    uint32_t n[4] = {64, 16, 0, 64};
    X509Name* issuer = nullptr;
    LibraryTime issued{};
    EXPECT_EQ(GetCrlValidatedIdInformation(timed, 0, out, &n[0], oid, &n[1], nullptr, &n[2], &issuer, &issued, out, &n[3]),
              307u);
}

// Revocation values carry the real CRL and basic OCSP response; the lists handed out are lent back
// to the encoder, which writes the same bytes and leaves them whole on every path.
TEST(AttributeValues, RevocationValuesCarryWholeCrlsAndResponses) {
    const Bytes der = FixtureFile("attributes/revocation_values.der");
    X509Crls* crls = nullptr;
    OcspBasicResponses* ocsps = nullptr;
    uint32_t typeLen = 0, valueLen = 0;
    ASSERT_EQ(DecodeRsaAttributeRevocationValues(der.data(), Size(der), &crls, &ocsps, nullptr, &typeLen, nullptr, &valueLen),
              TV_OK);
    Own<FreeX509Crls> heldCrls(crls);
    Own<FreeOcspBasicResponses> heldOcsps(ocsps);
    EXPECT_EQ(typeLen + valueLen, 0u);
    X509Crl* crl = nullptr;
    OcspBasicResponse* basic = nullptr;
    ASSERT_EQ(GetX509CrlsCrl(crls, 0, &crl), TV_OK);
    ASSERT_EQ(GetOcspBasicResponsesResponse(ocsps, 0, &basic), TV_OK);
    EXPECT_EQ(Get(EncodeX509Crl, crl).bytes, FixtureFile("pki/crl_rsa.der"));
    EXPECT_EQ(Get(EncodeOcspBasicResponse, basic).bytes, FixtureFile("ocsp/basic_rsa_single.der"));
    EXPECT_GT(ForEachAllocationFailure([&] {
                  return Get(EncodeRsaAttributeRevocationValues, static_cast<const X509Crls*>(crls),
                             static_cast<const OcspBasicResponses*>(ocsps), nullptr, nullptr, 0u).rc;
              }),
              0);
    EXPECT_EQ(Get(EncodeRsaAttributeRevocationValues, static_cast<const X509Crls*>(crls),
                  static_cast<const OcspBasicResponses*>(ocsps), nullptr, nullptr, 0u).bytes, der);
    // Another value alone, and nothing at all.
    const Bytes other = Get(EncodeRsaAttributeRevocationValues, static_cast<const X509Crls*>(nullptr),
                            static_cast<const OcspBasicResponses*>(nullptr), Packed("1.2.3").data(), Hex("05 00").data(), 2u).bytes;
    EXPECT_EQ(ToHex(other), H("30 0A A2 08 30 06 06 02 2A 03 05 00"));
    EXPECT_EQ(EncodeRsaAttributeRevocationValues(nullptr, nullptr, nullptr, nullptr, 0, nullptr, &typeLen), 32u);
}

}  // namespace
