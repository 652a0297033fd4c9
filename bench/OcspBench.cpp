// An OCSP responder's hot path through the public API, beside OpenSSL doing the same in the same run:
// decode a request (one CertID, a nonce), answer "good" for that CertID with the nonce echoed, hand
// out the to-be-signed octets, store a signature (fixed octets: neither side signs), encode the basic
// response and wrap it in the outer response.
//
// OpenSSL has no public setters for the responder ID, producedAt, the signature algorithm and the
// signature; OCSP_basic_sign_ctx writes its own fields, and so does this: the get0 readers hand them
// out, and the responder ID is the member after the version pointer of OCSP_RESPDATA (ocsp_local.h,
// unchanged since 1.1). Its thisUpdate and nextUpdate are ASN1_TIME objects made once, as its
// interface takes them; ours are LibraryTime records.
//
// The responder's certificate: `no_cert` leaves it out on both sides. `held_cert` adds the one the
// responder keeps decoded: a copy for us, since our response frees the certificate it is given, a
// reference for OpenSSL. (Decoding it afresh on both sides would mostly time d2i_X509 building the
// RSA key, about ten times our whole answer.)
//
// Before the first row both sides answer once: the answers must be the same octets, and OpenSSL must
// read ours as "good" for the request's CertID with the request's nonce. Otherwise: abort.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "BenchUtil.h"
#include "tarvelon/tarvelon.h"

// OpenSSL's headers cannot share a translation unit with ours (its ASN1_INTEGER... typedefs collide
// with our type-code enumerators): the peer calls are declared by hand, as libcrypto 3 exports them.
extern "C" {
typedef struct x509_st X509;
typedef struct X509_algor_st X509_ALGOR;
typedef struct asn1_object_st ASN1_OBJECT;
typedef struct evp_md_st EVP_MD;
typedef struct ocsp_request_st OCSP_REQUEST;
typedef struct ocsp_one_request_st OCSP_ONEREQ;
typedef struct ocsp_cert_id_st OCSP_CERTID;
typedef struct ocsp_basic_response_st OCSP_BASICRESP;
typedef struct ocsp_response_data_st OCSP_RESPDATA;
typedef struct ocsp_responder_id_st OCSP_RESPID;
typedef struct ocsp_response_st OCSP_RESPONSE;
typedef struct ocsp_single_response_st OCSP_SINGLERESP;
struct asn1_string_st { int length, type; unsigned char* data; long flags; };  // public in openssl/asn1.h
typedef struct asn1_string_st ASN1_TIME;
X509* d2i_X509(X509** a, const unsigned char** in, long len);
void X509_free(X509* a);
const EVP_MD* EVP_sha1(void);
OCSP_CERTID* OCSP_cert_to_id(const EVP_MD* dgst, const X509* subject, const X509* issuer);
OCSP_REQUEST* OCSP_REQUEST_new(void);
void OCSP_REQUEST_free(OCSP_REQUEST* a);
OCSP_ONEREQ* OCSP_request_add0_id(OCSP_REQUEST* req, OCSP_CERTID* cid);
int OCSP_request_add1_nonce(OCSP_REQUEST* req, unsigned char* val, int len);
int i2d_OCSP_REQUEST(const OCSP_REQUEST* a, unsigned char** out);
OCSP_REQUEST* d2i_OCSP_REQUEST(OCSP_REQUEST** a, const unsigned char** in, long len);
OCSP_ONEREQ* OCSP_request_onereq_get0(OCSP_REQUEST* req, int i);
OCSP_CERTID* OCSP_onereq_get0_id(OCSP_ONEREQ* one);
OCSP_BASICRESP* OCSP_BASICRESP_new(void);
void OCSP_BASICRESP_free(OCSP_BASICRESP* a);
OCSP_SINGLERESP* OCSP_basic_add1_status(OCSP_BASICRESP* rsp, OCSP_CERTID* cid, int status, int reason,
                                        ASN1_TIME* revtime, ASN1_TIME* thisupd, ASN1_TIME* nextupd);
int OCSP_copy_nonce(OCSP_BASICRESP* resp, OCSP_REQUEST* req);
int OCSP_check_nonce(OCSP_REQUEST* req, OCSP_BASICRESP* bs);
const OCSP_RESPDATA* OCSP_resp_get0_respdata(const OCSP_BASICRESP* bs);
const ASN1_TIME* OCSP_resp_get0_produced_at(const OCSP_BASICRESP* bs);
const X509_ALGOR* OCSP_resp_get0_tbs_sigalg(const OCSP_BASICRESP* bs);
const asn1_string_st* OCSP_resp_get0_signature(const OCSP_BASICRESP* bs);
int OCSP_RESPID_set_by_name(OCSP_RESPID* respid, X509* cert);
int i2d_OCSP_RESPDATA(const OCSP_RESPDATA* a, unsigned char** out);
int OCSP_basic_add1_cert(OCSP_BASICRESP* resp, X509* cert);
OCSP_RESPONSE* OCSP_response_create(int status, OCSP_BASICRESP* bs);
int i2d_OCSP_RESPONSE(const OCSP_RESPONSE* a, unsigned char** out);
OCSP_RESPONSE* d2i_OCSP_RESPONSE(OCSP_RESPONSE** a, const unsigned char** in, long len);
void OCSP_RESPONSE_free(OCSP_RESPONSE* a);
int OCSP_response_status(OCSP_RESPONSE* resp);
OCSP_BASICRESP* OCSP_response_get1_basic(OCSP_RESPONSE* resp);
int OCSP_resp_find_status(OCSP_BASICRESP* bs, OCSP_CERTID* id, int* status, int* reason, ASN1_TIME** revtime,
                          ASN1_TIME** thisupd, ASN1_TIME** nextupd);
ASN1_TIME* ASN1_GENERALIZEDTIME_set(ASN1_TIME* s, time_t t);
int ASN1_STRING_set(asn1_string_st* str, const void* data, int len);
int X509_ALGOR_set0(X509_ALGOR* alg, ASN1_OBJECT* aobj, int ptype, void* pval);
ASN1_OBJECT* OBJ_nid2obj(int n);
void CRYPTO_free(void* ptr, const char* file, int line);
}
#define OPENSSL_free(p) CRYPTO_free((p), __FILE__, __LINE__)

namespace {

constexpr int kNidSha256WithRsa = 668, kVAsn1Null = 5, kStringFlagBitsLeft = 0x08, kCertStatusGood = 0;

using bench::Bytes;
using bench::Encoded;
using bench::Load;

X509* ToX509(const Bytes& der) {
    const unsigned char* p = der.data();
    return d2i_X509(nullptr, &p, long(der.size()));
}

[[noreturn]] void Fail(const char* what) {
    std::fprintf(stderr, "OcspBench: %s\n", what);
    std::abort();
}

constexpr uint8_t kNonceOid[] = {9, 0x2B, 0x06, 0x01, 0x05, 0x05, 0x07, 0x30, 0x01, 0x02};
constexpr uint8_t kBasicOid[] = {9, 0x2B, 0x06, 0x01, 0x05, 0x05, 0x07, 0x30, 0x01, 0x01};
constexpr uint8_t kSha256Rsa[] = {9, 0x2A, 0x86, 0x48, 0x86, 0xF7, 0x0D, 0x01, 0x01, 0x0B};
constexpr uint8_t kNull[] = {0x05, 0x00};
constexpr LibraryTime kNow{2026, 11, 21, 12, 0, 0}, kNext{2026, 11, 28, 12, 0, 0};

struct Fixture {
    Bytes request;  // one CertID (ee_rsa under ca_rsa, SHA-1) and a 16-octet nonce
    Certificate* ca = nullptr;  // the responder's certificate
    Bytes caSubject;            // its subject's DER: our byName responder ID
    X509* caX509 = nullptr;     // the same for OpenSSL, and for OCSP_RESPID_set_by_name
    time_t now = 0;             // kNow and kNext for OpenSSL
    ASN1_TIME* thisUpdate = nullptr;
    ASN1_TIME* nextUpdate = nullptr;
    Bytes signature = Bytes(256, 0x5A);
};

Bytes TarvelonRespond(const Fixture& f, bool withCert) {
    OcspRequest* request = nullptr;
    uint32_t rc = DecodeOcspRequest(f.request.data(), uint32_t(f.request.size()), &request);
    uint8_t hashOid[32], params[32], nameHash[64], keyHash[64], serial[32], nonce[64];
    uint32_t hashOidLen = sizeof hashOid, paramsLen = sizeof params, nameHashLen = sizeof nameHash,
             keyHashLen = sizeof keyHash, serialLen = sizeof serial, nonceLen = sizeof nonce;
    rc |= GetOcspRequestCertRequest(request, 0, hashOid, &hashOidLen, params, &paramsLen, nameHash, &nameHashLen,
                                    keyHash, &keyHashLen, serial, &serialLen, nullptr);
    X509Extensions* requestExtensions = nullptr;
    rc |= GetOcspRequestExtensions(request, &requestExtensions);
    rc |= GetX509ExtensionsExtensionValue(requestExtensions, kNonceOid, nonce, &nonceLen);

    OcspBasicResponse* basic = nullptr;
    rc |= CreateOcspBasicResponse(&basic);
    rc |= SetOcspBasicResponseResponderID(basic, TV_OCSP_RESPONDER_BY_NAME, f.caSubject.data(),
                                          uint32_t(f.caSubject.size()));
    rc |= SetOcspBasicResponseProducedAt(basic, &kNow);
    OcspSingleResponse* single = nullptr;
    rc |= CreateOcspSingleResponse(&single);
    rc |= SetOcspSingleResponseCertID(single, hashOid, params, paramsLen, nameHash, nameHashLen, keyHash, keyHashLen,
                                      serial, serialLen);
    rc |= SetOcspSingleResponseCertStatusGood(single);
    rc |= SetOcspSingleResponseThisUpdate(single, &kNow);
    rc |= SetOcspSingleResponseNextUpdate(single, &kNext);
    if (const uint32_t added = AddOcspBasicResponseSingleResponse(basic, single); added != 0) {
        FreeOcspSingleResponse(single);
        rc |= added;
    }
    X509Extensions* responseExtensions = nullptr;
    rc |= GetOcspBasicResponseExtensions(basic, &responseExtensions);
    rc |= AddX509ExtensionsExtension(responseExtensions, kNonceOid, 0, nonce, nonceLen);
    rc |= SetOcspBasicResponseSignatureAlgorithmOidAndParameters(basic, kSha256Rsa, kNull, sizeof kNull);
    const Bytes toBeSigned = Encoded(GetOcspBasicResponseToBeSignedPart, basic);
    benchmark::DoNotOptimize(toBeSigned.data());
    rc |= SetOcspBasicResponseSignature(basic, f.signature.data(), uint32_t(f.signature.size()));
    if (withCert) {
        Certificate* copy = nullptr;
        rc |= CreateCertificateCopy(f.ca, &copy);
        if (const uint32_t added = AddOcspBasicResponseCertificate(basic, copy); added != 0) {
            FreeCertificate(copy);
            rc |= added;
        }
    }
    const Bytes basicDer = Encoded(EncodeOcspBasicResponse, basic);
    OcspResponse* response = nullptr;
    rc |= CreateOcspResponse(&response);
    rc |= SetOcspResponseStatus(response, 0);
    rc |= SetOcspResponseBytes(response, kBasicOid, basicDer.data(), uint32_t(basicDer.size()));
    Bytes out = Encoded(EncodeOcspResponse, response);
    FreeOcspResponse(response);
    FreeOcspBasicResponse(basic);
    FreeOcspRequest(request);
    return rc == 0 && !toBeSigned.empty() && !basicDer.empty() ? out : Bytes{};
}

Bytes OpenSslRespond(const Fixture& f, bool withCert) {
    const unsigned char* in = f.request.data();
    OCSP_REQUEST* request = d2i_OCSP_REQUEST(nullptr, &in, long(f.request.size()));
    OCSP_BASICRESP* basic = OCSP_BASICRESP_new();
    OCSP_RESPONSE* response = nullptr;
    if (request && basic &&
        OCSP_basic_add1_status(basic, OCSP_onereq_get0_id(OCSP_request_onereq_get0(request, 0)), kCertStatusGood, 0,
                               nullptr, f.thisUpdate, f.nextUpdate) &&
        OCSP_copy_nonce(basic, request) == 1) {
        // What OCSP_basic_sign_ctx does around the signing itself, on the same fields.
        auto* data = const_cast<OCSP_RESPDATA*>(OCSP_resp_get0_respdata(basic));
        auto* responderId = reinterpret_cast<OCSP_RESPID*>(reinterpret_cast<char*>(data) + sizeof(void*));
        auto* signature = const_cast<asn1_string_st*>(OCSP_resp_get0_signature(basic));
        unsigned char* toBeSigned = nullptr;
        bool ok = OCSP_RESPID_set_by_name(responderId, f.caX509) &&
                  ASN1_GENERALIZEDTIME_set(const_cast<ASN1_TIME*>(OCSP_resp_get0_produced_at(basic)), f.now) &&
                  X509_ALGOR_set0(const_cast<X509_ALGOR*>(OCSP_resp_get0_tbs_sigalg(basic)),
                                  OBJ_nid2obj(kNidSha256WithRsa), kVAsn1Null, nullptr) &&
                  i2d_OCSP_RESPDATA(data, &toBeSigned) > 0 &&
                  ASN1_STRING_set(signature, f.signature.data(), int(f.signature.size()));
        OPENSSL_free(toBeSigned);
        signature->flags = (signature->flags & ~0x07L) | kStringFlagBitsLeft;  // no unused bits, as signing leaves it
        if (ok && withCert) ok = OCSP_basic_add1_cert(basic, f.caX509);
        if (ok) response = OCSP_response_create(0, basic);
    }
    Bytes out;
    if (response) {
        out.resize(size_t(i2d_OCSP_RESPONSE(response, nullptr)));
        unsigned char* p = out.data();
        i2d_OCSP_RESPONSE(response, &p);
    }
    OCSP_RESPONSE_free(response);
    OCSP_BASICRESP_free(basic);
    OCSP_REQUEST_free(request);
    return out;
}

// OpenSSL reads our answer: successful, "good" for the request's CertID, the request's nonce.
bool OpenSslAcceptsOurs(const Fixture& f, const Bytes& ours) {
    const unsigned char* p = ours.data();
    OCSP_RESPONSE* response = d2i_OCSP_RESPONSE(nullptr, &p, long(ours.size()));
    OCSP_BASICRESP* basic = response ? OCSP_response_get1_basic(response) : nullptr;
    const unsigned char* q = f.request.data();
    OCSP_REQUEST* request = d2i_OCSP_REQUEST(nullptr, &q, long(f.request.size()));
    int status = -1;
    const bool ok = basic && request && OCSP_response_status(response) == 0 &&
                    OCSP_resp_find_status(basic, OCSP_onereq_get0_id(OCSP_request_onereq_get0(request, 0)), &status,
                                          nullptr, nullptr, nullptr, nullptr) == 1 &&
                    status == kCertStatusGood && OCSP_check_nonce(request, basic) == 1;
    OCSP_REQUEST_free(request);
    OCSP_BASICRESP_free(basic);
    OCSP_RESPONSE_free(response);
    return ok;
}

Fixture MakeFixture() {
    Fixture f;
    const Bytes caDer = Load("pki/ca_rsa.der");
    f.caX509 = ToX509(caDer);
    X509* ee = ToX509(Load("pki/ee_rsa.der"));
    OCSP_REQUEST* request = OCSP_REQUEST_new();
    unsigned char nonce[16] = {0x4E, 0x6F, 0x6E, 0x63, 0x65};
    if (!f.caX509 || !ee || !OCSP_request_add0_id(request, OCSP_cert_to_id(EVP_sha1(), ee, f.caX509)) ||
        !OCSP_request_add1_nonce(request, nonce, sizeof nonce))
        Fail("cannot make the request");
    f.request.resize(size_t(i2d_OCSP_REQUEST(request, nullptr)));
    unsigned char* p = f.request.data();
    i2d_OCSP_REQUEST(request, &p);
    OCSP_REQUEST_free(request);
    X509_free(ee);

    X509Name* subject = nullptr;
    if (DecodeCertificate(caDer.data(), uint32_t(caDer.size()), &f.ca) != 0 || GetCertificateSubject(f.ca, &subject) != 0)
        Fail("cannot read the responder certificate");
    f.caSubject = Encoded(EncodeX509Name, subject);

    std::tm tm{};
    tm.tm_year = kNow.year - 1900, tm.tm_mon = kNow.month - 1, tm.tm_mday = kNow.day, tm.tm_hour = kNow.hour;
    f.now = timegm(&tm);
    f.thisUpdate = ASN1_GENERALIZEDTIME_set(nullptr, f.now);
    f.nextUpdate = ASN1_GENERALIZEDTIME_set(nullptr, f.now + 7 * 86400);  // kNext

    for (const bool withCert : {false, true}) {
        const Bytes ours = TarvelonRespond(f, withCert);
        if (ours.empty() || ours != OpenSslRespond(f, withCert)) Fail("the two answers differ");
        if (!OpenSslAcceptsOurs(f, ours)) Fail("OpenSSL does not read our answer as good with the nonce");
    }
    return f;
}

const Fixture& TheFixture() {
    static const Fixture fixture = MakeFixture();
    return fixture;
}

void Respond(benchmark::State& state, Bytes (*respond)(const Fixture&, bool), bool withCert) {
    const Fixture& f = TheFixture();
    for (auto _ : state) {
        const Bytes out = respond(f, withCert);
        if (out.empty()) {
            state.SkipWithError("no answer");
            break;
        }
        benchmark::DoNotOptimize(out.data());
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_TarvelonOcspRespond(benchmark::State& state, bool withCert) { Respond(state, TarvelonRespond, withCert); }
void BM_OpenSslOcspRespond(benchmark::State& state, bool withCert) { Respond(state, OpenSslRespond, withCert); }

BENCHMARK_CAPTURE(BM_TarvelonOcspRespond, no_cert, false);
BENCHMARK_CAPTURE(BM_OpenSslOcspRespond, no_cert, false);
BENCHMARK_CAPTURE(BM_TarvelonOcspRespond, held_cert, true);
BENCHMARK_CAPTURE(BM_OpenSslOcspRespond, held_cert, true);

}  // namespace
