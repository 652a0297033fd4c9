// Eight threads at once, each with trees of its own: certificates, CRLs and CMS messages decoded,
// changed and encoded, signer texts read, and failures recorded. Run under ThreadSanitizer
// (`make test-tsan`), it shows that the last-error record is the only state the threads share and
// that it is shared without a data race; in the other builds it checks that the results agree.
#include <atomic>
#include <thread>
#include <vector>

#include "TestUtil.h"

using namespace tvtest;

namespace {

// One thread's round; the number of results that differ from what one thread alone gets.
int Round(const Bytes& cert, const Bytes& crl, const Bytes& message, uint8_t tag) {
    int wrong = 0;
    Own<FreeCertificate> c;
    if (DecodeCertificate(cert.data(), Size(cert), &c.p) != TV_OK) return 1;
    const uint8_t serial[] = {0x01, tag};
    wrong += SetCertificateSerialNumber(c, serial, 2) != TV_OK;
    wrong += Get(GetCertificateSerialNumber, c.p).bytes != Bytes{0x01, tag};
    wrong += Get(EncodeCertificate, c.p).bytes.size() != cert.size() - 6;  // an 8-octet serial became 2

    Own<FreeX509Crl> l;
    if (DecodeX509Crl(crl.data(), Size(crl), &l.p) != TV_OK) return wrong + 1;
    const LibraryTime when{2025, 6, 1, 12, 0, 0};
    uint32_t index = 0, count = 0;
    wrong += AddX509CrlRevokedCertificate(l, serial, 2, &when, &index) != TV_OK;
    wrong += GetX509CrlRevokedCertificateCount(l, &count) != TV_OK || count != 10;
    wrong += Get(EncodeX509Crl, l.p).rc != TV_OK;

    Own<FreeCmsContentInfo> info;
    if (DecodeCmsContentInfo(message.data(), Size(message), &info.p) != TV_OK) return wrong + 1;
    wrong += Get(EncodeCmsContentInfo, info.p).bytes != message;
    LibraryTime t{};
    wrong += Get(GetBufferCmsSignatureTimeAndCN, 1u, message.data(), Size(message), &t, Out).rc != TV_OK;
    wrong += GetCertificateVersion(nullptr, &count) != TV_ERR_INVALID_ARGUMENT;  // a failure recorded
    return wrong;
}

}  // namespace

TEST(Threads, DistinctTreesAtOnceShareOnlyTheLastErrorRecord) {
    const Bytes cert = FixtureFile("pki/ee_gost2012_256.der"), crl = FixtureFile("pki/crl_rsa.der"),
                message = FixtureFile("cms/signed_two.der");
    ASSERT_EQ(Round(cert, crl, message, 0), 0) << "alone";
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (uint8_t t = 1; t <= 8; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < 25; ++round) wrong += Round(cert, crl, message, t);
        });
    for (std::thread& t : threads) t.join();
    EXPECT_EQ(wrong.load(), 0);
    uint32_t line = 0;
    EXPECT_STREQ(GetLastFileErrorAsn(&line), "tarvelon/Certificate.cpp");
}
