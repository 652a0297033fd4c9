// OCSP requests and responses through the exported calls: ownership on Add, the part-by-part flow of
// the CertID reader, the responseBytes rules, the certificate status setters and readers, and what
// a fresh message reports as absent. Real messages are in the corpus, openssl's view in the interop test.
#include <fstream>
#include <map>
#include <sstream>

#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kSha1 = Packed("1.3.14.3.2.26"), kNull = Hex("05 00"), kNameHash = Bytes(20, 0x11),
            kKeyHash = Bytes(20, 0x22), kSerial = Hex("01 02 03"), kNonceOid = Packed("1.3.6.1.5.5.7.48.1.2");
const LibraryTime kMarch5{2025, 3, 5, 6, 7, 8};

template <auto Free, typename Create>
Own<Free> Made(Create create) {
    Own<Free> o;
    EXPECT_EQ(create(&o.p), TV_OK);
    return o;
}

uint32_t AddCertId(OcspRequest* request, const X509Extensions* extensions = nullptr) {
    return AddOcspRequestCertRequest(request, kSha1.data(), kNull.data(), Size(kNull), kNameHash.data(),
                                     Size(kNameHash), kKeyHash.data(), Size(kKeyHash), kSerial.data(), Size(kSerial),
                                     extensions);
}

TEST(OcspRequest, CertRequestsAreBuiltCopiedAndRead) {
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    auto extensions = Made<FreeX509Extensions>(CreateX509Extensions);
    ASSERT_EQ(AddX509ExtensionsExtension(extensions, kNonceOid.data(), 0, Hex("04 02 AA BB").data(), 4), TV_OK);
    ASSERT_EQ(AddCertId(request), TV_OK);
    ASSERT_EQ(AddCertId(request, extensions), TV_OK);
    FreeX509Extensions(extensions.release());  // the entry holds its own copy
    for (uint32_t rc : {AddOcspRequestCertRequest(nullptr, kSha1.data(), nullptr, 0, kNameHash.data(), 20,
                                                  kKeyHash.data(), 20, kSerial.data(), 3, nullptr),
                        AddOcspRequestCertRequest(request, kSha1.data(), nullptr, 0, nullptr, 0, kKeyHash.data(), 20,
                                                  kSerial.data(), 3, nullptr),
                        AddOcspRequestCertRequest(request, kSha1.data(), nullptr, 0, kNameHash.data(), 20,
                                                  kKeyHash.data(), 20, kSerial.data(), 0, nullptr)})
        EXPECT_EQ(rc, 32u);
    uint32_t count = 0;
    ASSERT_EQ(GetOcspRequestCertRequestsCount(request, &count), TV_OK);
    EXPECT_EQ(count, 2u);

    // Rooms for hash OID, parameters, name hash, key hash and serial; 0 marks a null buffer (a size
    // query). A part that fits after one that did not ends the call; the serial's shortage is reported
    // with the other four filled.
    // Rooms one octet larger than a part are left as they are unless the part's size is stored.
    const uint32_t fit[5] = {6, 2, 20, 20, 3};
    const struct {
        uint32_t room[5];
        uint32_t rc;
        const char* touched;  // '+': the part's size was stored (written or measured), '-': left alone
    } flows[] = {
        {{7, 3, 21, 21, 4}, 0, "+++++"},   {{7, 3, 21, 21, 1}, 49, "+++++"}, {{1, 3, 21, 21, 4}, 49, "+----"},
        {{7, 1, 21, 21, 4}, 49, "+++--"},  {{7, 1, 19, 21, 4}, 49, "++++-"}, {{7, 1, 19, 19, 2}, 49, "+++++"},
        {{0, 0, 0, 0, 0}, 0, "+++++"},     {{7, 3, 0, 0, 1}, 49, "+++++"},
    };
    for (const auto& f : flows) {
        uint8_t buf[5][32];
        uint32_t len[5];
        uint8_t* out[5];
        for (int i = 0; i < 5; ++i) len[i] = f.room[i] ? f.room[i] : 77, out[i] = f.room[i] ? buf[i] : nullptr;
        X509Extensions* entryExtensions = nullptr;
        EXPECT_EQ(GetOcspRequestCertRequest(request, 1, out[0], &len[0], out[1], &len[1], out[2], &len[2], out[3],
                                            &len[3], out[4], &len[4], &entryExtensions),
                  f.rc);
        std::string touched;
        for (int i = 0; i < 5; ++i) touched += len[i] == fit[i] ? '+' : '-';
        EXPECT_EQ(touched, f.touched) << ::testing::PrintToString(f.room);
        if (f.rc == 0 && f.room[4]) {
            EXPECT_EQ(ToHex(buf[4], len[4]), ToHex(kSerial));
        }
        uint32_t n = 0;
        EXPECT_EQ(GetX509ExtensionsExtensionsCount(entryExtensions, &n), TV_OK);
        EXPECT_EQ(n, 1u);
    }
    uint32_t n[5] = {};
    EXPECT_EQ(GetOcspRequestCertRequest(request, 2, nullptr, &n[0], nullptr, &n[1], nullptr, &n[2], nullptr, &n[3],
                                        nullptr, &n[4], nullptr), 32u);
    EXPECT_EQ(GetOcspRequestCertRequest(request, 0, nullptr, &n[0], nullptr, nullptr, nullptr, &n[2], nullptr, &n[3],
                                        nullptr, &n[4], nullptr), 32u);

    const Bytes der = Get(EncodeOcspRequest, request.p).bytes;
    EXPECT_EQ(Get(EncodeOcspRequest, Decoded<FreeOcspRequest>(DecodeOcspRequest, der).p).bytes, der);
    ASSERT_EQ(ClearOcspRequestCertRequests(request), TV_OK);
    EXPECT_EQ(GetOcspRequestCertRequestsCount(request, &count), TV_OK);
    EXPECT_EQ(count, 0u);
}

TEST(OcspRequest, VersionRequestorAndSignatureBlock) {
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    uint32_t version = 9, kind = 9, count = 0;
    EXPECT_EQ(GetOcspRequestVersion(request, &version), TV_OK);
    EXPECT_EQ(version, 0u);  // DEFAULT v1, left out of the encoding
    ASSERT_EQ(AddCertId(request), TV_OK);
    EXPECT_EQ(Child(Get(EncodeOcspRequest, request.p).bytes, {0, 0})[0], 0x30);  // requestList comes first

    GeneralName* name = nullptr;
    for (uint32_t rc : {GetOcspRequestRequestorName(request, &name), Get(GetOcspRequestRequestorNameValue, request.p,
                                                                         &kind).rc,
                        IsExistsOcspRequestSignature(request), Get(GetOcspRequestSignature, request.p).rc,
                        GetOcspRequestCertificatesCount(request, &count)})
        EXPECT_EQ(rc, 311u);
    ASSERT_EQ(SetOcspRequestRequestorName(request, 2, U8("ocsp.ru"), 7), TV_OK);
    EXPECT_EQ(Get(GetOcspRequestRequestorNameValue, request.p, &kind).hex(), ToHex(Text("ocsp.ru")));
    EXPECT_EQ(kind, 2u);
    EXPECT_EQ(SetOcspRequestRequestorName(request, 9, U8("x"), 1), 306u);  // the old name stays
    EXPECT_EQ(Get(GetOcspRequestRequestorNameValue, request.p, &kind).hex(), ToHex(Text("ocsp.ru")));

    // The signature block is made by whichever setter comes first and goes with its certificates.
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/ca_rsa.der"));
    const Bytes rsaSha256 = Packed("1.2.840.113549.1.1.11");
    ASSERT_EQ(AddOcspRequestCertificate(request, ca.p), TV_OK);
    Certificate* borrowed = ca.release();
    EXPECT_EQ(IsExistsOcspRequestSignature(request), TV_OK);
    ASSERT_EQ(SetOcspRequestSignatureAlgorithmOidAndParameters(request, rsaSha256.data(), kNull.data(), 2), TV_OK);
    ASSERT_EQ(SetOcspRequestSignature(request, Hex("5A 5A").data(), 2), TV_OK);
    Certificate* got = nullptr;
    EXPECT_EQ(GetOcspRequestCertificate(request, 0, &got), TV_OK);
    EXPECT_EQ(got, borrowed);
    EXPECT_EQ(GetOcspRequestCertificate(request, 1, &got), 32u);
    EXPECT_EQ(Get(GetOcspRequestSignature, request.p).hex(), "5A 5A");
    const Bytes der = Get(EncodeOcspRequest, request.p).bytes;
    auto back = Decoded<FreeOcspRequest>(DecodeOcspRequest, der);
    EXPECT_EQ(Get(EncodeOcspRequest, back.p).bytes, der);
    EXPECT_EQ(Get(GetOcspRequestSignatureAlgorithmAndParameters, back.p, Out, nullptr, nullptr).bytes, rsaSha256);

    ASSERT_EQ(RemoveOcspRequestCertificates(request), TV_OK);
    EXPECT_EQ(GetOcspRequestCertificatesCount(request, &count), 311u);
    ASSERT_EQ(RemoveOcspRequestSignature(request), TV_OK);
    EXPECT_EQ(IsExistsOcspRequestSignature(request), 311u);
    ASSERT_EQ(RemoveOcspRequestRequestorName(request), TV_OK);
    EXPECT_EQ(GetOcspRequestRequestorName(request, &name), 311u);
}

// Each Add takes the handle itself: the container frees it, and after a failure the caller still
// owns it (the sanitizer run reports a leak or a double free otherwise).
TEST(Ocsp, AddTakesTheHandleOnlyOnSuccess) {
    const Bytes caDer = FixtureFile("pki/ca_rsa.der");
    auto request = Made<FreeOcspRequest>(CreateOcspRequest);
    auto basic = Made<FreeOcspBasicResponse>(CreateOcspBasicResponse);
    auto list = Made<FreeOcspBasicResponses>(CreateOcspBasicResponses);
    auto cert = [&](auto add) {
        Certificate* c = nullptr;
        TRY(DecodeCertificate(caDer.data(), Size(caDer), &c));
        const uint32_t rc = add(c);
        if (rc) FreeCertificate(c);
        return rc;
    };
    const std::pair<const char*, std::function<uint32_t()>> adds[] = {
        {"request certificate", [&] { return cert([&](Certificate* c) { return AddOcspRequestCertificate(request, c); }); }},
        {"response certificate", [&] { return cert([&](Certificate* c) { return AddOcspBasicResponseCertificate(basic, c); }); }},
        {"single response", [&] {
             OcspSingleResponse* s = nullptr;
             TRY(CreateOcspSingleResponse(&s));
             const uint32_t rc = AddOcspBasicResponseSingleResponse(basic, s);
             if (rc) FreeOcspSingleResponse(s);
             return rc; }},
        {"basic response", [&] {
             OcspBasicResponse* b = nullptr;
             TRY(CreateOcspBasicResponse(&b));
             const uint32_t rc = AddResponseToOcspBasicResponses(list, b);
             if (rc) FreeOcspBasicResponse(b);
             return rc; }},
        {"cert request", [&] { return AddCertId(request); }},
        {"status", [&] {
             OcspSingleResponse* s = nullptr;
             TRY(CreateOcspSingleResponse(&s));
             const uint32_t rc = SetOcspSingleResponseCertStatusRevoked(s, &kMarch5, 1);
             FreeOcspSingleResponse(s);
             return rc; }},
    };
    for (const auto& [what, add] : adds) EXPECT_GT(ForEachAllocationFailure(add), 1) << what;
    OcspSingleResponse* single = nullptr;
    ASSERT_EQ(CreateOcspSingleResponse(&single), TV_OK);
    EXPECT_EQ(AddOcspBasicResponseSingleResponse(nullptr, single), 32u);
    EXPECT_EQ(AddResponseToOcspBasicResponses(nullptr, nullptr), 32u);
    FreeOcspSingleResponse(single);
    uint32_t count = 0;
    EXPECT_EQ(GetOcspBasicResponsesCount(list, &count), TV_OK);
    EXPECT_EQ(count, 1u);
    const Bytes der = Get(EncodeOcspBasicResponses, list.p).bytes;
    auto copy = Made<FreeOcspBasicResponses>([&](OcspBasicResponses** out) { return CreateOcspBasicResponsesCopy(list, out); });
    EXPECT_EQ(Get(EncodeOcspBasicResponses, copy.p).bytes, der);
}

TEST(OcspResponse, ResponseBytesRules) {
    const Bytes basicType = Packed("1.3.6.1.5.5.7.48.1.1"), other = Packed("1.2.3"), empty = {0x00};
    auto response = Made<FreeOcspResponse>(CreateOcspResponse);
    const struct {
        const char* what;
        const Bytes* type;
        const char* octets;
        uint32_t rc;
        const char* after;  // the response afterwards
    } steps[] = {
        {"null type, nothing to remove", nullptr, "", 0, "30 03 0A 01 00"},
        {"null type with octets", nullptr, "AA", 32, "30 03 0A 01 00"},
        {"type and octets", &basicType, "30 00", 0,
         "30 16 0A 01 00 A0 11 30 0F 06 09 2B 06 01 05 05 07 30 01 01 04 02 30 00"},
        {"type alone keeps the octets", &other, "", 0, "30 0F 0A 01 00 A0 0A 30 08 06 02 2A 03 04 02 30 00"},
        {"empty type with octets", &empty, "AA", 32, "30 0F 0A 01 00 A0 0A 30 08 06 02 2A 03 04 02 30 00"},
        {"empty type removes", &empty, "", 0, "30 03 0A 01 00"},
    };
    ASSERT_EQ(SetOcspResponseStatus(response, 0), TV_OK);
    for (const auto& s : steps) {
        const Bytes octets = Hex(s.octets);
        EXPECT_EQ(SetOcspResponseBytes(response, s.type ? s.type->data() : nullptr, octets.empty() ? nullptr : octets.data(),
                                       Size(octets)), s.rc) << s.what;
        EXPECT_EQ(Get(EncodeOcspResponse, response.p).hex(), H(s.after)) << s.what;
    }
    uint32_t typeLen = 0, len = 0, status = 9;
    EXPECT_EQ(GetOcspResponseBytes(response, nullptr, &typeLen, nullptr, &len), 311u);
    EXPECT_EQ(SetOcspResponseBytes(nullptr, basicType.data(), nullptr, 0), 32u);
    ASSERT_EQ(SetOcspResponseStatus(response, 6), TV_OK);
    EXPECT_EQ(GetOcspResponseStatus(response, &status), TV_OK);
    EXPECT_EQ(status, 6u);
}

TEST(OcspResponse, CertificateStatuses) {
    auto single = Made<FreeOcspSingleResponse>(CreateOcspSingleResponse);
    LibraryTime t{};
    int32_t reason = 7;
    uint32_t status = 9;
    EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), 311u);
    ASSERT_EQ(SetOcspSingleResponseCertID(single, kSha1.data(), nullptr, 0, kNameHash.data(), 20, kKeyHash.data(), 20,
                                          kSerial.data(), 3), TV_OK);
    ASSERT_EQ(SetOcspSingleResponseThisUpdate(single, &kMarch5), TV_OK);
    const struct {
        const char* what;
        std::function<uint32_t()> set;
        uint32_t status;
        const char* element;  // certStatus as encoded
        int32_t reason;       // from the revoked-info reader; 99: the reader refuses (32)
    } cases[] = {
        {"good", [&] { return SetOcspSingleResponseCertStatusGood(single); }, 0, "80 00", 99},
        {"revoked, no reason", [&] { return SetOcspSingleResponseCertStatusRevoked(single, &kMarch5, -1); }, 1,
         "A1 11 18 0F 32 30 32 35 30 33 30 35 30 36 30 37 30 38 5A", -1},
        {"revoked, keyCompromise", [&] { return SetOcspSingleResponseCertStatusRevoked(single, &kMarch5, 1); }, 1,
         "A1 16 18 0F 32 30 32 35 30 33 30 35 30 36 30 37 30 38 5A A0 03 0A 01 01", 1},
        {"unknown", [&] { return SetOcspSingleResponseCertStatusUnknown(single); }, 2, "82 00", 99},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(c.set(), TV_OK) << c.what;
        EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
        EXPECT_EQ(status, c.status) << c.what;
        EXPECT_NE(Get(EncodeOcspSingleResponse, single.p).hex().find(H(c.element)), std::string::npos) << c.what;
        reason = 7;
        const uint32_t rc = GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason);
        EXPECT_EQ(rc, c.reason == 99 ? 32u : 0u) << c.what;
        if (rc == TV_OK) {
            EXPECT_EQ(reason, c.reason) << c.what;
            EXPECT_TRUE(SameTime(t, kMarch5)) << c.what;
        }
    }
    // The generic setter takes the record over on every path; the status it had stays on refusal.
    OcspRevokedInfo* info = nullptr;
    for (uint32_t bad : {0u, 2u, 3u}) {
        ASSERT_EQ(AllocCertStatusRevokedInfo(&kMarch5, 4, &info), TV_OK);
        EXPECT_EQ(SetOcspSingleResponseCertStatus(single, bad, info), 32u);
    }
    EXPECT_EQ(SetOcspSingleResponseCertStatus(single, 1, nullptr), 32u);
    EXPECT_EQ(SetOcspSingleResponseCertStatusRevoked(single, nullptr, 1), 32u);
    EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
    EXPECT_EQ(status, 2u);
    ASSERT_EQ(AllocCertStatusRevokedInfo(&kMarch5, 5, &info), TV_OK);
    ASSERT_EQ(SetOcspSingleResponseCertStatus(single, 1, info), TV_OK);
    EXPECT_EQ(GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason), TV_OK);
    EXPECT_EQ(reason, 5);
}

TEST(OcspResponse, BasicResponseFields) {
    auto basic = Made<FreeOcspBasicResponse>(CreateOcspBasicResponse);
    LibraryTime t{};
    uint32_t kind = 9, count = 0, version = 9;
    OcspSingleResponse* single = nullptr;
    // A fresh basic response: DEFAULT version, everything else absent.
    EXPECT_EQ(GetOcspBasicResponseVersion(basic, &version), TV_OK);
    EXPECT_EQ(version, 0u);
    for (uint32_t rc : {GetOcspBasicResponseProducedAt(basic, &t), Get(GetOcspBasicResponseResponderID, basic.p, &kind).rc,
                        Get(GetOcspBasicResponseSignature, basic.p).rc, GetOcspBasicResponseCertificatesCount(basic, &count)})
        EXPECT_EQ(rc, 311u);
    EXPECT_EQ(GetOcspBasicResponseSingleResponse(basic, 0, &single), 32u);

    const Bytes name = Hex("30 0D 31 0B 30 09 06 03 55 04 06 13 02 52 55");
    const struct {
        uint32_t kind;
        Bytes value;
        uint32_t rc;
    } ids[] = {{0, name, 0}, {1, kKeyHash, 0}, {2, kKeyHash, 32}, {0, Hex("05 00 05 00"), 32}};
    for (const auto& id : ids) {
        EXPECT_EQ(SetOcspBasicResponseResponderID(basic, id.kind, id.value.data(), Size(id.value)), id.rc);
        if (id.rc) continue;
        EXPECT_EQ(Get(GetOcspBasicResponseResponderID, basic.p, &kind).bytes, id.value);
        EXPECT_EQ(kind, id.kind);
    }

    ASSERT_EQ(SetOcspBasicResponseProducedAt(basic, &kMarch5), TV_OK);
    ASSERT_EQ(CreateOcspSingleResponse(&single), TV_OK);
    ASSERT_EQ(AddOcspBasicResponseSingleResponse(basic, single), TV_OK);
    EXPECT_EQ(GetOcspSingleResponseThisUpdate(single, &t), 311u);
    EXPECT_EQ(GetOcspSingleResponseNextUpdate(single, &t), 311u);
    for (uint32_t rc : {SetOcspSingleResponseCertID(single, kSha1.data(), nullptr, 0, kNameHash.data(), 20,
                                                    kKeyHash.data(), 20, kSerial.data(), 3),
                        SetOcspSingleResponseCertStatusGood(single), SetOcspSingleResponseThisUpdate(single, &kMarch5),
                        SetOcspSingleResponseNextUpdate(single, &kMarch5)})
        ASSERT_EQ(rc, TV_OK);
    OcspSingleResponse* back = nullptr;
    EXPECT_EQ(GetOcspBasicResponseSingleResponse(basic, 0, &back), TV_OK);
    EXPECT_EQ(back, single);
    EXPECT_EQ(SetOcspSingleResponseThisUpdate(single, nullptr), 32u);
    uint8_t oid[8], hashes[2][20], serial[4];
    uint32_t oidLen = 8, paramsLen = 0, hashLen[2] = {20, 20}, serialLen = 4;
    EXPECT_EQ(GetOcspSingleResponseCertID(single, oid, &oidLen, nullptr, &paramsLen, hashes[0], &hashLen[0], hashes[1],
                                          &hashLen[1], serial, &serialLen), TV_OK);
    EXPECT_EQ(ToHex(oid, oidLen) + "|" + ToHex(serial, serialLen) + "|" + std::to_string(paramsLen),
              ToHex(kSha1) + "|" + ToHex(kSerial) + "|0");

    X509Extensions* extensions = nullptr;
    ASSERT_EQ(GetOcspBasicResponseExtensions(basic, &extensions), TV_OK);
    ASSERT_EQ(AddX509ExtensionsExtension(extensions, kNonceOid.data(), 0, Hex("04 01 01").data(), 3), TV_OK);
    ASSERT_EQ(SetOcspBasicResponseSignatureAlgorithmOidAndParameters(basic, Packed("1.2.643.7.1.1.3.2").data(), nullptr, 0),
              TV_OK);
    ASSERT_EQ(SetOcspBasicResponseSignature(basic, Bytes(64, 0x5A).data(), 64), TV_OK);
    const Bytes der = Get(EncodeOcspBasicResponse, basic.p).bytes;
    EXPECT_EQ(Get(GetOcspBasicResponseToBeSignedPart, basic.p).bytes, Child(der, {0}));
    auto decoded = Decoded<FreeOcspBasicResponse>(DecodeOcspBasicResponse, der);
    EXPECT_EQ(Get(EncodeOcspBasicResponse, decoded.p).bytes, der);
    ASSERT_EQ(ClearOcspBasicResponseResponses(basic), TV_OK);
    EXPECT_EQ(GetOcspBasicResponseSingleResponsesCount(basic, &count), TV_OK);
    EXPECT_EQ(count, 0u);
}

// ---- OpenSSL's messages, field by field ---------------------------------------------------------------
// tests/fixtures/ocsp/EXPECT says what openssl printed for each fixture: comma lists run over the
// CertIDs or the single responses in order.

using Fields = std::map<std::string, std::string>;

std::string Named(const Bytes& oid) {
    static const std::pair<const char*, const char*> names[] = {
        {"1.3.14.3.2.26", "sha1"}, {"2.16.840.1.101.3.4.2.1", "sha256"}, {"1.2.643.7.1.1.2.2", "streebog256"},
        {"1.2.840.113549.1.1.11", "sha256WithRSA"}, {"1.2.643.7.1.1.3.2", "gost2012_256"},
        {"2.5.29.24", "invalidityDate"}, {"2.5.29.23", "holdInstructionCode"}};
    for (auto [dotted, name] : names)
        if (Packed(dotted) == oid) return name;
    return "?";
}

std::string Serial(const Bytes& b) {
    std::string hex = ToHex(b);
    std::erase(hex, ' ');
    return hex;
}

template <typename T, typename H>
T* Ref(uint32_t (*get)(H*, T**), H* h) {
    T* out = nullptr;
    EXPECT_EQ(get(h, &out), TV_OK);
    return out;
}

// The extensions of a list by name, "+" between several, "-" for none.
std::string ExtensionNames(const X509Extensions* list) {
    uint32_t count = 0;
    std::string names;
    if (GetX509ExtensionsExtensionsCount(list, &count) != TV_OK || count == 0) return "-";
    for (uint32_t i = 0; i < count; ++i) {
        uint8_t oid[32];
        uint32_t oidLen = sizeof oid, critical = 0, valueLen = 0;
        EXPECT_EQ(GetX509ExtensionsExtension(list, i, oid, &oidLen, &critical, nullptr, &valueLen), TV_OK);
        if (i) names += '+';
        names += Named(Bytes(oid, oid + oidLen));
    }
    return names;
}

bool HasNonce(const X509Extensions* list) {
    uint32_t index = 0;
    return FindX509Extension(list, kNonceOid.data(), &index) == TV_OK;
}

template <typename T>
std::string Algorithm(uint32_t (*get)(const T*, uint8_t*, uint32_t*, uint8_t*, uint32_t*), const T* h) {
    const Got oid = Get(get, h, Out, nullptr, nullptr);
    return oid.rc == TV_ERR_ABSENT ? "-" : Named(oid.bytes);
}

template <typename T>
std::string Count(uint32_t (*count)(const T*, uint32_t*), const T* h) {
    uint32_t n = 0;
    const uint32_t rc = count(h, &n);
    return rc == TV_ERR_ABSENT ? "0" : rc == TV_OK ? std::to_string(n) : "status " + std::to_string(rc);
}

// The CertID parts under the names EXPECT uses; SHA-1 hashes are checked against the issuer's own
// subject and key as well (RFC 6960 4.1.1).
void CertIdFields(const Bytes (&part)[5], const std::string& issuer, Fields& got) {
    got["hash"] += (got["hash"].empty() ? "" : ",") + Named(part[0]);
    got["serials"] += (got["serials"].empty() ? "" : ",") + Serial(part[4]);
    if (Named(part[0]) != "sha1") return;
    auto ca = Decoded<FreeCertificate>(DecodeCertificate, FixtureFile("pki/" + issuer + ".der"));
    X509Name* subject = nullptr;
    ASSERT_EQ(GetCertificateSubject(ca, &subject), TV_OK);
    const Bytes name = Get(EncodeX509Name, subject).bytes, key = Get(GetCertificatePublicKey, ca.p).bytes;
    Bytes digest(20);
    ASSERT_EQ(sha1(name.data(), Size(name), digest.data()), TV_OK);
    EXPECT_EQ(ToHex(part[2]), ToHex(digest)) << "issuerNameHash";
    ASSERT_EQ(sha1(key.data(), Size(key), digest.data()), TV_OK);
    EXPECT_EQ(ToHex(part[3]), ToHex(digest)) << "issuerKeyHash";
}

Fields RequestFields(const Bytes& der, const Fields& expected) {
    auto request = Decoded<FreeOcspRequest>(DecodeOcspRequest, der);
    Fields got{{"issuer", expected.at("issuer")}};
    uint32_t count = 0;
    EXPECT_EQ(GetOcspRequestCertRequestsCount(request, &count), TV_OK);
    for (uint32_t i = 0; i < count; ++i) {
        Bytes part[5];
        for (int k = 0; k < 5; ++k) part[k].resize(64);
        uint32_t n[5] = {64, 64, 64, 64, 64};
        EXPECT_EQ(GetOcspRequestCertRequest(request, i, part[0].data(), &n[0], part[1].data(), &n[1], part[2].data(),
                                            &n[2], part[3].data(), &n[3], part[4].data(), &n[4], nullptr), TV_OK);
        for (int k = 0; k < 5; ++k) part[k].resize(n[k]);
        CertIdFields(part, got["issuer"], got);
    }
    GeneralName* requestor = nullptr;
    got["signed"] = IsExistsOcspRequestSignature(request) == TV_OK ? "yes" : "no";
    got["requestor"] = GetOcspRequestRequestorName(request, &requestor) == TV_OK ? "name" : "-";
    got["nonce"] = HasNonce(Ref(GetOcspRequestExtensions, request.p)) ? "yes" : "no";
    got["sig"] = Algorithm(GetOcspRequestSignatureAlgorithmAndParameters, request.p);
    got["certs"] = Count(GetOcspRequestCertificatesCount, request.p);
    return got;
}

Fields ResponseFields(const Bytes& der, const Fields& expected) {
    static const char* const kStatus[] = {"successful", "malformedRequest", "internalError", "tryLater", "", "sigRequired",
                                          "unauthorized"};
    auto response = Decoded<FreeOcspResponse>(DecodeOcspResponse, der);
    uint32_t status = 0, kind = 0, count = 0;
    EXPECT_EQ(GetOcspResponseStatus(response, &status), TV_OK);
    Fields got{{"response", status < 7 ? kStatus[status] : "?"}};
    if (status != 0) return got;
    uint8_t type[16];
    uint32_t typeLen = sizeof type;
    const Bytes octets = Get(GetOcspResponseBytes, response.p, type, &typeLen).bytes;
    EXPECT_EQ(Bytes(type, type + typeLen), Packed("1.3.6.1.5.5.7.48.1.1"));
    auto basic = Decoded<FreeOcspBasicResponse>(DecodeOcspBasicResponse, octets);
    got["issuer"] = expected.at("issuer");
    got["request"] = expected.at("request");
    EXPECT_EQ(Get(GetOcspBasicResponseResponderID, basic.p, &kind).rc, TV_OK);
    got["responder"] = kind == 0 ? "name" : kind == 1 ? "key" : "?";
    LibraryTime t{};
    EXPECT_EQ(GetOcspBasicResponseProducedAt(basic, &t), TV_OK);
    EXPECT_EQ(GetOcspBasicResponseSingleResponsesCount(basic, &count), TV_OK);
    bool next = false;
    for (uint32_t i = 0; i < count; ++i) {
        OcspSingleResponse* single = nullptr;
        EXPECT_EQ(GetOcspBasicResponseSingleResponse(basic, i, &single), TV_OK);
        Bytes part[5];
        for (int k = 0; k < 5; ++k) part[k].resize(64);
        uint32_t n[5] = {64, 64, 64, 64, 64};
        EXPECT_EQ(GetOcspSingleResponseCertID(single, part[0].data(), &n[0], part[1].data(), &n[1], part[2].data(),
                                              &n[2], part[3].data(), &n[3], part[4].data(), &n[4]), TV_OK);
        for (int k = 0; k < 5; ++k) part[k].resize(n[k]);
        CertIdFields(part, got["issuer"], got);
        EXPECT_EQ(GetOcspSingleResponseCertStatus(single, &status), TV_OK);
        int32_t reason = -1;
        EXPECT_EQ(GetOcspSingleResponseCertStatusRevokedInfo(single, &t, &reason), status == 1 ? 0u : 32u);
        const char* sep = i ? "," : "";
        got["status"] += sep + std::string(status == 0 ? "good" : status == 1 ? "revoked" : "unknown");
        got["reason"] += sep + std::to_string(reason);
        got["singleExt"] += sep + ExtensionNames(Ref(GetOcspSingleResponseExtensions, single));
        EXPECT_EQ(GetOcspSingleResponseThisUpdate(single, &t), TV_OK);
        next = GetOcspSingleResponseNextUpdate(single, &t) == TV_OK;
    }
    got["nextUpdate"] = next ? "yes" : "no";
    got["nonce"] = HasNonce(Ref(GetOcspBasicResponseExtensions, basic.p)) ? "yes" : "no";
    got["sig"] = Algorithm(GetOcspBasicResponseSignatureAlgorithmAndParameters, basic.p);
    got["certs"] = Count(GetOcspBasicResponseCertificatesCount, basic.p);
    EXPECT_EQ(Get(GetOcspBasicResponseSignature, basic.p).rc, TV_OK);
    return got;
}

TEST(OcspFixtures, EveryFieldReadsBackAsOpenSslPrintedIt) {
    std::ifstream manifest(Fixture("ocsp/EXPECT"));
    int files = 0;
    for (std::string line; std::getline(manifest, line);) {
        if (line.empty() || line[0] == '#') continue;
        std::istringstream words(line);
        std::string file, pair;
        words >> file;
        Fields expected;
        while (words >> pair) expected[pair.substr(0, pair.find('='))] = pair.substr(pair.find('=') + 1);
        const Bytes der = FixtureFile("ocsp/" + file);
        EXPECT_EQ(file.starts_with("req_") ? RequestFields(der, expected) : ResponseFields(der, expected), expected)
            << file;
        ++files;
    }
    EXPECT_EQ(files, 14);
}

}  // namespace
