// OCSP through the exported calls: openssl's messages read field by field, ownership on Add, the
// part-by-part flow of the CertID reader, the responseBytes rules and the certificate statuses.
// Byte-exact round trips are the corpus's; openssl's view of what the library builds, the interop test's.

#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kSha1 = Packed("1.3.14.3.2.26"), kNull = Hex("05 00"), kHash = Bytes(20, 0x11), kSerial = Hex("01 02 03"),
            kNonce = Packed("1.3.6.1.5.5.7.48.1.2");
const LibraryTime kMarch5{2025, 3, 5, 6, 7, 8};

template <typename T, typename H>
T* Ref(uint32_t (*get)(H*, T**), H* h) {
    T* out = nullptr;
    EXPECT_EQ(get(h, &out), TV_OK);
    return out;
}

// ---- openssl's messages, field by field -------------------------------------------------------------
// tests/fixtures/ocsp/EXPECT holds what openssl printed: comma lists run over the CertIDs or the
// single responses in order.

std::string Named(const Bytes& oid) {
    for (auto [dotted, name] : {std::pair{"1.3.14.3.2.26", "sha1"}, {"2.16.840.1.101.3.4.2.1", "sha256"},
                                {"1.2.643.7.1.1.2.2", "streebog256"}, {"1.2.840.113549.1.1.11", "sha256WithRSA"},
                                {"1.2.643.7.1.1.3.2", "gost2012_256"}, {"2.5.29.24", "invalidityDate"},
                                {"2.5.29.23", "holdInstructionCode"}})
        if (Packed(dotted) == oid) return name;
    return "?";
}

// The CertID parts as `read(buffers, lengths)` hands them out; SHA-1 hashes are checked against the
// issuer's own subject and key as well (RFC 6960 4.1.1).
template <typename Read>
void CertId(Read read, Fields& got) {
    Bytes part[5];
    uint8_t* out[5];
    uint32_t n[5];
    for (int k = 0; k < 5; ++k) part[k].resize(64), out[k] = part[k].data(), n[k] = 64;
    EXPECT_EQ(read(out, n), TV_OK);
    for (int k = 0; k < 5; ++k) part[k].resize(n[k]);
    Append(got, "hash", Named(part[0]));
    Append(got, "serials", PlainHex(part[4]));
    if (Named(part[0]) != "sha1") return;
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/" + got["issuer"] + ".der"));
    const Bytes name = Get(EncodeX509Name, Ref(GetCertificateSubject, ca.p)).bytes,
                key = Get(GetCertificatePublicKey, ca.p).bytes;
    Bytes nameHash(20), keyHash(20);
    ASSERT_EQ(sha1(name.data(), Size(name), nameHash.data()), TV_OK);
    ASSERT_EQ(sha1(key.data(), Size(key), keyHash.data()), TV_OK);
    EXPECT_EQ(part[2], nameHash);
    EXPECT_EQ(part[3], keyHash);
}

// The extensions of a list by name, "+" between several, "-" for none.
std::string ExtensionNames(const X509Extensions* list) {
    uint32_t count = 0;
    std::string names;
    EXPECT_EQ(GetX509ExtensionsExtensionsCount(list, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[32];
        uint32_t oidLen = sizeof oid, critical = 0, valueLen = 0;
        EXPECT_EQ(GetX509ExtensionsExtension(list, i, oid, &oidLen, &critical, nullptr, &valueLen), TV_OK);
        if (i) names += '+';
        names += Named(Bytes(oid, oid + oidLen));
    }
    return count ? names : "-";
}

std::string Nonce(const X509Extensions* list) {
    uint32_t index = 0;
    return FindX509Extension(list, kNonce.data(), &index) == TV_OK ? "yes" : "no";
}

// The signature algorithm's name and the certificate count, "-" and "0" when there is no signature.
template <typename T>
void Signature(uint32_t (*algorithm)(const T*, uint8_t*, uint32_t*, uint8_t*, uint32_t*),
               uint32_t (*count)(const T*, uint32_t*), const T* h, Fields& got) {
    const Got oid = Get(algorithm, h, Out, nullptr, nullptr);
    const std::string certs = Counted(count, h);
    got["sig"] = oid.rc == TV_ERR_ABSENT ? "-" : Named(oid.bytes);
    got["certs"] = certs == "status 311" ? "0" : certs;
}

Fields RequestFields(const Bytes& der, Fields got) {
    auto request = Decoded<FreeOcspRequest>(DecodeOcspRequest, der);
    uint32_t count = 0;
    GeneralName* requestor = nullptr;
    EXPECT_EQ(GetOcspRequestCertRequestsCount(request, &count), TV_OK);
    for (const char* key : {"hash", "serials", "signed", "requestor", "nonce", "sig", "certs"}) got.erase(key);
    for (uint32_t i = 0; i < count; ++i)
        CertId([&](uint8_t** o, uint32_t* n) { return GetOcspRequestCertRequest(request, i, o[0], &n[0], o[1], &n[1],
                   o[2], &n[2], o[3], &n[3], o[4], &n[4], nullptr); }, got);
    got["signed"] = IsExistsOcspRequestSignature(request) == TV_OK ? "yes" : "no";
    got["requestor"] = GetOcspRequestRequestorName(request, &requestor) == TV_OK ? "name" : "-";
    got["nonce"] = Nonce(Ref(GetOcspRequestExtensions, request.p));
    Signature(GetOcspRequestSignatureAlgorithmAndParameters, GetOcspRequestCertificatesCount, request.p, got);
    return got;
}

Fields ResponseFields(const Bytes& der, const Fields& expected) {
    auto response = Decoded<FreeOcspResponse>(DecodeOcspResponse, der);
    uint32_t status = 0, kind = 0, count = 0;
    EXPECT_EQ(GetOcspResponseStatus(response, &status), TV_OK);
    const char* names[] = {"successful", "malformedRequest", "internalError", "tryLater", "?", "sigRequired", "unauthorized"};
    Fields got{{"response", status < 7 ? names[status] : "?"}};
    if (status != 0) return got;
    uint8_t type[16];
    uint32_t typeLen = sizeof type;
    auto basic = Decoded<FreeOcspBasicResponse>(DecodeOcspBasicResponse, Get(GetOcspResponseBytes, response.p, type,
                                                                             &typeLen).bytes);
    EXPECT_EQ(Bytes(type, type + typeLen), Packed("1.3.6.1.5.5.7.48.1.1"));
    got["issuer"] = expected.at("issuer"), got["request"] = expected.at("request");
    EXPECT_EQ(Get(GetOcspBasicResponseResponderID, basic.p, &kind).rc, TV_OK);
    got["responder"] = kind == 0 ? "name" : kind == 1 ? "key" : "?";
    LibraryTime t{};
    EXPECT_EQ(GetOcspBasicResponseProducedAt(basic, &t), TV_OK);
    EXPECT_EQ(GetOcspBasicResponseSingleResponsesCount(basic, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        OcspSingleResponse* single = nullptr;
        EXPECT_EQ(GetOcspBasicResponseSingleResponse(basic, i, &single), TV_OK);
        CertId([&](uint8_t** o, uint32_t* n) { return GetOcspSingleResponseCertID(single, o[0], &n[0], o[1], &n[1],
                   o[2], &n[2], o[3], &n[3], o[4], &n[4]); }, got);
        int32_t reason = -1;
        EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
        EXPECT_EQ(GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason), status == 1 ? 0u : 32u);
        EXPECT_EQ(GetOcspSingleResponseThisUpdate(single, &t), TV_OK);
        Append(got, "status", status == 0 ? "good" : status == 1 ? "revoked" : "unknown");
        Append(got, "reason", std::to_string(reason));
        Append(got, "singleExt", ExtensionNames(Ref(GetOcspSingleResponseExtensions, single)));
        got["nextUpdate"] = GetOcspSingleResponseNextUpdate(single, &t) == TV_OK ? "yes" : "no";
    }
    got["nonce"] = Nonce(Ref(GetOcspBasicResponseExtensions, basic.p));
    Signature(GetOcspBasicResponseSignatureAlgorithmAndParameters, GetOcspBasicResponseCertificatesCount, basic.p, got);
    EXPECT_EQ(Get(GetOcspBasicResponseSignature, basic.p).rc, TV_OK);
    return got;
}

TEST(OcspFixtures, EveryFieldReadsBackAsOpenSslPrintedIt) {
    int files = 0;
    for (const auto& [file, expected] : ExpectRows("ocsp")) {
        ++files;
        const Bytes der = FixtureFile("ocsp/" + file);
        EXPECT_EQ(file.starts_with("req_") ? RequestFields(der, expected) : ResponseFields(der, expected), expected) << file;
    }
    EXPECT_EQ(files, 14);
}

// ---- the rules of building and reading ------------------------------------------------------------------

uint32_t AddCertId(OcspRequest* request, const X509Extensions* extensions = nullptr) {
    return AddOcspRequestCertRequest(request, kSha1.data(), kNull.data(), 2, kHash.data(), 20, kHash.data(), 20,
                                     kSerial.data(), Size(kSerial), extensions);
}

TEST(OcspRequest, CertRequestCopiesItsExtensionsAndReadsPartByPart) {
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    auto extensions = Made<FreeX509Extensions>(CreateX509Extensions);
    ASSERT_EQ(AddX509ExtensionsExtension(extensions, kNonce.data(), 0, Hex("04 02 AA BB").data(), 4), TV_OK);
    ASSERT_EQ(AddCertId(request, extensions), TV_OK);
    FreeX509Extensions(extensions.release());  // the entry holds a copy
    EXPECT_EQ(AddOcspRequestCertRequest(request, kSha1.data(), nullptr, 0, nullptr, 0, kHash.data(), 20, kSerial.data(),
                                        3, nullptr), 32u);
    // Rooms for hash OID, parameters, name hash, key hash and serial (0: a size query); a room one
    // octet too large stays as it was unless the part's size is stored ('+'). A part that fits after
    // one that did not ends the call; the serial's shortage comes with the other four parts filled.
    const uint32_t fit[5] = {6, 2, 20, 20, 3};
    for (auto [room, rc, stored] :
         {std::tuple{std::array{7u, 3u, 21u, 21u, 4u}, 0u, "+++++"}, {{7, 3, 21, 21, 1}, 49u, "+++++"},
          {{1, 3, 21, 21, 4}, 49u, "+----"}, {{7, 1, 21, 21, 4}, 49u, "+++--"}, {{7, 1, 19, 21, 4}, 49u, "++++-"},
          {{7, 1, 19, 19, 2}, 49u, "+++++"}, {{0, 0, 0, 0, 0}, 0u, "+++++"}, {{7, 3, 0, 0, 1}, 49u, "+++++"}}) {
        uint8_t buf[5][32], *out[5];
        uint32_t len[5];
        for (int i = 0; i < 5; ++i) len[i] = room[i] ? room[i] : 77, out[i] = room[i] ? buf[i] : nullptr;
        X509Extensions* copied = nullptr;
        EXPECT_EQ(GetOcspRequestCertRequest(request, 0, out[0], &len[0], out[1], &len[1], out[2], &len[2], out[3],
                                            &len[3], out[4], &len[4], &copied), rc);
        std::string got;
        for (int i = 0; i < 5; ++i) got += len[i] == fit[i] ? '+' : '-';
        EXPECT_EQ(got, stored) << ::testing::PrintToString(room);
        EXPECT_EQ(Counted(GetX509ExtensionsExtensionsCount, copied), "1");
    }
    uint32_t n[5] = {};
    EXPECT_EQ(GetOcspRequestCertRequest(request, 1, nullptr, &n[0], nullptr, &n[1], nullptr, &n[2], nullptr, &n[3],
                                        nullptr, &n[4], nullptr), 32u);
    ASSERT_EQ(ClearOcspRequestCertRequests(request), TV_OK);
    EXPECT_EQ(Counted(GetOcspRequestCertRequestsCount, request.p), "0");
}

TEST(OcspRequest, SignatureBlockAndRequestorComeAndGo) {
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    uint32_t kind = 0, count = 0;
    GeneralName* name = nullptr;
    for (uint32_t rc : {GetOcspRequestRequestorName(request, &name), IsExistsOcspRequestSignature(request),
                        Get(GetOcspRequestSignature, request.p).rc, GetOcspRequestCertificatesCount(request, &count)})
        EXPECT_EQ(rc, 311u);
    ASSERT_EQ(SetOcspRequestRequestorName(request, 2, U8("ocsp.ru"), 7), TV_OK);
    EXPECT_EQ(SetOcspRequestRequestorName(request, 9, U8("x"), 1), 306u);  // the old name stays
    EXPECT_EQ(Get(GetOcspRequestRequestorNameValue, request.p, &kind).hex(), ToHex(Text("ocsp.ru")));
    EXPECT_EQ(kind, 2u);
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ca_rsa.der"));
    ASSERT_EQ(AddOcspRequestCertificate(request, ca.p), TV_OK);  // makes the signature block
    Certificate* borrowed = nullptr;
    EXPECT_EQ(GetOcspRequestCertificate(request, 0, &borrowed), TV_OK);
    EXPECT_EQ(borrowed, ca.release());
    EXPECT_EQ(GetOcspRequestCertificate(request, 1, &borrowed), 32u);
    EXPECT_EQ(IsExistsOcspRequestSignature(request), TV_OK);
    ASSERT_EQ(RemoveOcspRequestCertificates(request), TV_OK);
    EXPECT_EQ(GetOcspRequestCertificatesCount(request, &count), 311u);
    ASSERT_EQ(SetOcspRequestSignature(request, Hex("5A").data(), 1), TV_OK);
    ASSERT_EQ(RemoveOcspRequestSignature(request), TV_OK);
    ASSERT_EQ(RemoveOcspRequestRequestorName(request), TV_OK);
    EXPECT_EQ(IsExistsOcspRequestSignature(request), 311u);
    EXPECT_EQ(GetOcspRequestRequestorName(request, &name), 311u);
}

// Each Add takes the handle itself: the container frees it, and after a failure the caller still
// owns it (the sanitizer run reports a leak or a double free otherwise).
template <typename T, typename Make, typename Add>
uint32_t Handed(Make make, uint32_t (*free)(T*), Add add) {
    T* h = nullptr;
    TRY(make(&h));
    const uint32_t rc = add(h);
    if (rc) free(h);
    return rc;
}

TEST(Ocsp, AddTakesTheHandleOnlyOnSuccess) {
    const Bytes caDer = FixtureFile("pki/ca_rsa.der"), basicDer = FixtureFile("ocsp/basic_rsa_single.der");
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    auto basic = Made<FreeOcspBasicResponse>(CreateOcspBasicResponse);
    auto list = Made<FreeOcspBasicResponses>(CreateOcspBasicResponses);
    auto cert = [&](Certificate** c) { return DecodeCertificate(caDer.data(), Size(caDer), c); };
    auto decodedBasic = [&](OcspBasicResponse** b) { return DecodeOcspBasicResponse(basicDer.data(), Size(basicDer), b); };
    const std::pair<const char*, std::function<uint32_t()>> adds[] = {
        {"request certificate", [&] {  // a failure leaves no signature block behind
             const uint32_t rc = Handed(cert, FreeCertificate, [&](Certificate* c) { return AddOcspRequestCertificate(request, c); });
             EXPECT_EQ(IsExistsOcspRequestSignature(request), rc ? 311u : 0u);
             return rc; }},
        {"response certificate", [&] { return Handed(cert, FreeCertificate, [&](Certificate* c) {
             return AddOcspBasicResponseCertificate(basic, c); }); }},
        {"single response", [&] { return Handed(CreateOcspSingleResponse, FreeOcspSingleResponse, [&](OcspSingleResponse* s) {
             return AddOcspBasicResponseSingleResponse(basic, s); }); }},
        {"basic response", [&] { return Handed(decodedBasic, FreeOcspBasicResponse, [&](OcspBasicResponse* b) {
             return AddResponseToOcspBasicResponses(list, b); }); }},
        {"cert request", [&] { return AddCertId(request); }},
        {"revoked status", [&] {
             Own<FreeOcspSingleResponse> s;
             TRY(CreateOcspSingleResponse(&s.p));
             return SetOcspSingleResponseCertStatusRevoked(s, &kMarch5, 1); }},
    };
    for (const auto& [what, add] : adds) EXPECT_GT(ForEachAllocationFailure(add), 1) << what;
    for (uint32_t rc : {AddOcspBasicResponseSingleResponse(nullptr, nullptr), AddResponseToOcspBasicResponses(nullptr, nullptr)})
        EXPECT_EQ(rc, 32u);
    const Bytes der = Get(EncodeOcspBasicResponses, list.p).bytes;
    auto copy = Made<FreeOcspBasicResponses>([&](OcspBasicResponses** out) { return CreateOcspBasicResponsesCopy(list, out); });
    OcspBasicResponse* first = nullptr;
    EXPECT_EQ(Counted(GetOcspBasicResponsesCount, copy.p), "1");
    EXPECT_EQ(GetOcspBasicResponsesResponse(copy, 0, &first), TV_OK);
    EXPECT_EQ(Get(EncodeOcspBasicResponse, first).bytes, basicDer);
    EXPECT_EQ(Get(EncodeOcspBasicResponses, copy.p).bytes, der);
}

TEST(OcspResponse, ResponseBytesRules) {
    const Bytes basicType = Packed("1.3.6.1.5.5.7.48.1.1"), other = Packed("1.2.3"), empty = {0x00};
    auto response = Made<FreeOcspResponse>(CreateOcspResponse);
    const char* withOther = "30 0F 0A 01 00 A0 0A 30 08 06 02 2A 03 04 02 30 00";
    const struct {
        const Bytes* type;
        const char* octets;
        uint32_t rc;
        const char* after;
    } steps[] = {
        {nullptr, "", 0, "30 03 0A 01 00"},  // nothing to remove
        {nullptr, "AA", 32, "30 03 0A 01 00"},
        {&basicType, "30 00", 0, "30 16 0A 01 00 A0 11 30 0F 06 09 2B 06 01 05 05 07 30 01 01 04 02 30 00"},
        {&other, "", 0, withOther},  // the type alone: the octets stay
        {&empty, "AA", 32, withOther},
        {&empty, "", 0, "30 03 0A 01 00"},
    };
    ASSERT_EQ(SetOcspResponseStatus(response, 0), TV_OK);
    for (const auto& s : steps) {
        const Bytes octets = Hex(s.octets);
        EXPECT_EQ(SetOcspResponseBytes(response, s.type ? s.type->data() : nullptr, octets.empty() ? nullptr : octets.data(),
                                       Size(octets)), s.rc) << s.after;
        EXPECT_EQ(Get(EncodeOcspResponse, response.p).hex(), H(s.after));
    }
    uint32_t typeLen = 0, len = 0;
    EXPECT_EQ(GetOcspResponseBytes(response, nullptr, &typeLen, nullptr, &len), 311u);
    EXPECT_EQ(SetOcspResponseBytes(nullptr, basicType.data(), nullptr, 0), 32u);
}

TEST(OcspResponse, CertificateStatuses) {
    auto single = Made<FreeOcspSingleResponse>(CreateOcspSingleResponse);
    LibraryTime t{};
    int32_t reason = 7;
    uint32_t status = 9;
    EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), 311u);
    EXPECT_EQ(GetOcspSingleResponseNextUpdate(single, &t), 311u);
    ASSERT_EQ(SetOcspSingleResponseCertID(single, kSha1.data(), nullptr, 0, kHash.data(), 20, kHash.data(), 20,
                                          kSerial.data(), 3), TV_OK);
    ASSERT_EQ(SetOcspSingleResponseThisUpdate(single, &kMarch5), TV_OK);
    const std::string at = "18 0F 32 30 32 35 30 33 30 35 30 36 30 37 30 38 5A";  // GeneralizedTime 20250305060708Z
    for (auto [set, expected, element, expectedReason] :  // reason 99: the revoked-info reader refuses (32)
         {std::tuple{std::function<uint32_t()>([&] { return SetOcspSingleResponseCertStatusGood(single); }), 0u,
                     std::string("80 00"), 99},
          {[&] { return SetOcspSingleResponseCertStatusRevoked(single, &kMarch5, -1); }, 1u, "A1 11 " + at, -1},
          {[&] { return SetOcspSingleResponseCertStatusRevoked(single, &kMarch5, 1); }, 1u, "A1 16 " + at + " A0 03 0A 01 01", 1},
          {[&] { return SetOcspSingleResponseCertStatusUnknown(single); }, 2u, "82 00", 99}}) {
        ASSERT_EQ(set(), TV_OK) << element;
        EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
        EXPECT_EQ(status, expected) << element;
        EXPECT_NE(Get(EncodeOcspSingleResponse, single.p).hex().find(H(element)), std::string::npos) << element;
        reason = 7;
        const uint32_t rc = GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason);
        EXPECT_EQ(rc, expectedReason == 99 ? 32u : 0u) << element;
        if (rc == TV_OK) {
            EXPECT_EQ(reason, expectedReason) << element;
            EXPECT_TRUE(SameTime(t, kMarch5)) << element;
        }
    }
    // The generic setter takes the record over on every path; the status stays on refusal.
    OcspRevokedInfo* info = nullptr;
    for (uint32_t bad : {0u, 2u, 3u}) {
        ASSERT_EQ(AllocCertStatusRevokedInfo(&kMarch5, 4, &info), TV_OK);
        EXPECT_EQ(SetOcspSingleResponseCertStatus(single, bad, info), 32u);
    }
    for (uint32_t rc : {SetOcspSingleResponseCertStatus(single, 1, nullptr), SetOcspSingleResponseCertStatusRevoked(single, nullptr, 1)})
        EXPECT_EQ(rc, 32u);
    EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
    EXPECT_EQ(status, 2u);
    ASSERT_EQ(AllocCertStatusRevokedInfo(&kMarch5, 5, &info), TV_OK);
    ASSERT_EQ(SetOcspSingleResponseCertStatus(single, 1, info), TV_OK);
    EXPECT_EQ(GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason), TV_OK);
    EXPECT_EQ(reason, 5);
}

TEST(OcspResponse, ResponderIdAndAbsentFields) {
    auto basic = Made<FreeOcspBasicResponse>(CreateOcspBasicResponse);
    LibraryTime t{};
    uint32_t kind = 9, count = 0, version = 9;
    EXPECT_EQ(GetOcspBasicResponseVersion(basic, &version), TV_OK);
    EXPECT_EQ(version, 0u);  // DEFAULT v1
    ASSERT_EQ(SetOcspBasicResponseVersion(basic, 1), TV_OK);
    EXPECT_EQ(GetOcspBasicResponseVersion(basic, &version), TV_OK);
    EXPECT_EQ(version, 1u);
    for (uint32_t rc : {GetOcspBasicResponseProducedAt(basic, &t), Get(GetOcspBasicResponseResponderID, basic.p, &kind).rc,
                        Get(GetOcspBasicResponseSignature, basic.p).rc, GetOcspBasicResponseCertificatesCount(basic, &count)})
        EXPECT_EQ(rc, 311u);
    for (auto [id, value, rc] : {std::tuple{0u, Hex("30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55"), 0u},
                                 {1u, kHash, 0u}, {2u, kHash, 32u}, {0u, Hex("05 00 05 00"), 32u}}) {
        EXPECT_EQ(SetOcspBasicResponseResponderID(basic, id, value.data(), Size(value)), rc);
        if (rc != TV_OK) continue;
        EXPECT_EQ(Get(GetOcspBasicResponseResponderID, basic.p, &kind).bytes, value);
        EXPECT_EQ(kind, id);
    }
    EXPECT_EQ(SetOcspBasicResponseProducedAt(basic, nullptr), 32u);
}

}  // namespace
