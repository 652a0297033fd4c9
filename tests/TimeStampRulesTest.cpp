// The rules of the time-stamp codecs and SeveralData that callers rely on: what the encoders leave
// out, the decoders that go on after a field that does not fit, skipped outputs, failInfo both ways,
// the accuracy's seconds left alone, and SeveralData's ownership. openssl's messages are the
// fixture test's; openssl's verdict on ours, the interop test's.
#include "TestUtil.h"

using namespace tvtest;

namespace {

const Bytes kSha256 = Packed("2.16.840.1.101.3.4.2.1"), kPolicy = Packed("1.2.3.4.1"), kHash = Bytes(32, 0xAB),
            kSerial = Hex("01 02"), kNonce = Hex("00 C3 5A");
const LibraryPreciseTime kGenTime{2025, 3, 5, 6, 7, 8, 120, 0};

Got TstInfo(const Accuracy* accuracy, uint32_t ordering = 0, const GeneralName* tsa = nullptr) {
    return Get(EncodeTSTInfo, 1u, kPolicy.data(), kSha256.data(), nullptr, 0u, kHash.data(), Size(kHash), kSerial.data(),
               Size(kSerial), &kGenTime, accuracy, ordering, kNonce.data(), Size(kNonce), tsa,
               static_cast<const X509Extensions*>(nullptr));
}

// The octets of the element that follows `prefix` in `der`, as hex; "" when the prefix is absent.
std::string After(const Bytes& der, const std::string& prefix) {
    const Bytes p = Hex(prefix);
    auto at = std::search(der.begin(), der.end(), p.begin(), p.end());
    if (at == der.end()) return "";
    at += static_cast<long>(p.size());
    return ToHex(Bytes(at, at + 2 + at[1]));
}

}  // namespace

TEST(TimeStamp, AccuracyIsWrittenOnlyWhereItSaysSomething) {
    // genTime with its fraction (".12Z"), then the accuracy element if any.
    const std::string genTime = "18 12 32 30 32 35 30 33 30 35 30 36 30 37 30 38 2E 31 32 5A";
    const struct {
        Accuracy accuracy;
        std::string element;  // the SEQUENCE after genTime, "" for none
    } rows[] = {
        {{0, 0, 0}, ""},
        {{0, 500, 0}, "30 04 80 02 01 F4"},
        {{1, 0, 0}, "30 03 02 01 01"},
        {{2, 0, 7}, "30 06 02 01 02 81 01 07"},
        {{1, 500, 100}, "30 0A 02 01 01 80 02 01 F4 81 01 64"},
    };
    for (const auto& row : rows) {
        const Got der = TstInfo(&row.accuracy);
        ASSERT_EQ(der.rc, TV_OK);
        const std::string next = After(der.bytes, genTime);
        EXPECT_EQ(next.rfind(row.element.empty() ? "02" : H(row.element), 0), 0u) << row.element;  // else the nonce
        Accuracy back{77, 77, 77};
        ASSERT_EQ(DecodeTSTInfo(der.bytes.data(), Size(der.bytes), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &back, nullptr, nullptr, nullptr,
                                nullptr, nullptr),
                  TV_OK);
        // Absent seconds inside a present accuracy leave the caller's value: kept.
        const uint32_t seconds = row.accuracy.seconds || row.element.empty() ? row.accuracy.seconds : 77;
        EXPECT_EQ(back.seconds, seconds) << row.element;
        EXPECT_EQ(back.milliseconds, row.accuracy.milliseconds);
        EXPECT_EQ(back.microseconds, row.accuracy.microseconds);
    }
    EXPECT_EQ(TstInfo(nullptr).bytes, TstInfo(&rows[0].accuracy).bytes);
}

TEST(TimeStamp, DecodersGoOnAfterAFieldThatDoesNotFitAndSkipWhatIsNotAsked) {
    auto extensions = Made<FreeX509Extensions>(CreateX509Extensions);
    const Bytes value = Hex("04 02 AA BB");
    ASSERT_EQ(AddX509ExtensionsExtension(extensions, Packed("1.2.3.9").data(), 0, value.data(), Size(value)), TV_OK);
    const Got request = Get(EncodeTimeStampReq, 1u, kSha256.data(), nullptr, 0u, kHash.data(), Size(kHash), kPolicy.data(),
                            uint64_t{0}, kNonce.data(), Size(kNonce), 1u, static_cast<const X509Extensions*>(extensions));
    ASSERT_EQ(request.rc, TV_OK);

    uint32_t version = 0, certReq = 0;
    uint8_t oid[16], message[1], policy[16], nonce[8];
    uint32_t oidLen = sizeof oid, messageLen = sizeof message, policyLen = sizeof policy, nonceLen = sizeof nonce,
             paramsLen = 5;
    X509Extensions* got = nullptr;
    EXPECT_EQ(DecodeTimeStampReq(request.bytes.data(), Size(request.bytes), &version, oid, &oidLen, nullptr, &paramsLen,
                                 message, &messageLen, policy, &policyLen, nonce, &nonceLen, &certReq, &got),
              49u);
    Own<FreeX509Extensions> owned(got);
    EXPECT_EQ(messageLen, kHash.size()) << "the size it needs";
    EXPECT_EQ(version, 1u);
    EXPECT_EQ(Bytes(oid, oid + oidLen), kSha256);
    EXPECT_EQ(paramsLen, 0u);
    EXPECT_EQ(Bytes(policy, policy + policyLen), kPolicy);
    EXPECT_EQ(Bytes(nonce, nonce + nonceLen), kNonce);
    EXPECT_EQ(certReq, 1u);
    EXPECT_EQ(Counted(GetX509ExtensionsExtensionsCount, got), "1");
    const uint32_t missing[] = {
        DecodeTimeStampReq(request.bytes.data(), Size(request.bytes), &version, oid, nullptr, nullptr, nullptr, message,
                           &messageLen, nullptr, nullptr, nullptr, nullptr, &certReq, &got),
        DecodeTimeStampReq(request.bytes.data(), 0, &version, oid, &oidLen, nullptr, nullptr, message, &messageLen,
                           nullptr, nullptr, nullptr, nullptr, &certReq, &got),
        DecodeTimeStampReq(request.bytes.data(), Size(request.bytes), &version, oid, &oidLen, nullptr, nullptr, message,
                           &messageLen, nullptr, nullptr, nullptr, nullptr, nullptr, &got),
    };
    for (uint32_t rc : missing) EXPECT_EQ(rc, 32u);

    // TSTInfo: every output may be skipped; the time alone comes back.
    const Bytes info = TstInfo(nullptr, 1).bytes;
    LibraryPreciseTime time{};
    EXPECT_EQ(DecodeTSTInfo(info.data(), Size(info), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, &time, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
              TV_OK);
    EXPECT_EQ(std::make_tuple(time.year, time.second, time.millisecond), std::make_tuple(2025u, 8u, 120u));
    uint8_t serial[1];
    uint32_t serialLen = sizeof serial, ordering = 0;
    policyLen = sizeof policy;
    EXPECT_EQ(DecodeTSTInfo(info.data(), Size(info), nullptr, policy, &policyLen, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, serial, &serialLen, nullptr, nullptr, &ordering, nullptr, nullptr, nullptr,
                            nullptr),
              49u);
    EXPECT_EQ(serialLen, 2u);
    EXPECT_EQ(Bytes(policy, policy + policyLen), kPolicy);
    EXPECT_EQ(ordering, 1u);
}

TEST(TimeStamp, ResponsesStatusTextFailInfoAndToken) {
    // A status-only response (rejection, nothing else).
    EXPECT_EQ(Get(EncodeTimeStampResp, 2u, static_cast<const PKIFreeText*>(nullptr), 0u,
                  static_cast<const CmsContentInfo*>(nullptr)).hex(),
              H("30 05 30 03 02 01 02"));
    // failInfo: the word's octets least significant first, trailing zero bits trimmed; read back the same.
    const struct {
        uint32_t word;
        const char* bits;
    } rows[] = {{0x80, "03 02 07 80"}, {0x40, "03 02 06 40"}, {0x0400, "03 03 02 00 04"}, {0x01000020, "03 05 00 20 00 00 01"}};
    for (const auto& row : rows) {
        const Got der = Get(EncodeTimeStampResp, 2u, static_cast<const PKIFreeText*>(nullptr), row.word,
                            static_cast<const CmsContentInfo*>(nullptr));
        ASSERT_EQ(der.rc, TV_OK);
        EXPECT_NE(der.hex().find(H(row.bits)), std::string::npos) << row.bits;
        uint32_t status = 0, word = 0;
        PKIFreeText* text = nullptr;
        CmsContentInfo* token = nullptr;
        ASSERT_EQ(DecodeTimeStampResp(der.bytes.data(), Size(der.bytes), &status, &text, &word, &token), TV_OK);
        EXPECT_EQ(word, row.word);
        EXPECT_EQ(text, nullptr);
        EXPECT_EQ(token, nullptr);
    }
    // Text and token are the caller's copies, on every allocation path.
    auto text = Made<FreePKIFreeText>(CreatePKIFreeText);
    const Bytes words = Text("policy not accepted");
    ASSERT_EQ(AddPKIFreeTextString(text, words.data(), Size(words)), TV_OK);
    auto token = Made<FreeCmsContentInfo>(CreateCmsContentInfo);
    ASSERT_EQ(SetCmsContentInfoTypeOid(token, Packed("1.2.840.113549.1.7.2").data()), TV_OK);
    const Bytes content = Hex("30 03 02 01 03");
    ASSERT_EQ(SetCmsContentInfoContent(token, content.data(), Size(content)), TV_OK);
    const Bytes response = Get(EncodeTimeStampResp, 0u, static_cast<const PKIFreeText*>(text), 0u,
                               static_cast<const CmsContentInfo*>(token)).bytes;
    EXPECT_GT(ForEachAllocationFailure([&] {
                  uint32_t status = 9, word = 9;
                  PKIFreeText* t = nullptr;
                  CmsContentInfo* c = nullptr;
                  const uint32_t rc = DecodeTimeStampResp(response.data(), Size(response), &status, &t, &word, &c);
                  if (rc == TV_OK) {
                      EXPECT_EQ(Get(EncodeCmsContentInfo, c).bytes, Get(EncodeCmsContentInfo, token.p).bytes);
                      EXPECT_EQ(Counted(GetPKIFreeTextStringCount, t), "1");
                  } else {
                      EXPECT_EQ(t, nullptr) << "the text goes back when the token cannot be copied";
                  }
                  FreePKIFreeText(t);
                  FreeCmsContentInfo(c);
                  return rc;
              }),
              1);
}

TEST(SeveralData, TakesTheContentInfoAndRemovesInPlace) {
    auto list = Made<FreeSeveralData>(CreateSeveralData);
    EXPECT_EQ(Get(EncodeSeveralData, list.p).hex(), H("30 00"));
    const char* types[] = {"1.2.840.113549.1.7.1", "1.2.840.113549.1.7.2"};
    for (const char* type : types) {
        CmsContentInfo* info = nullptr;
        ASSERT_EQ(CreateCmsContentInfo(&info), TV_OK);
        ASSERT_EQ(SetCmsContentInfoTypeOid(info, Packed(type).data()), TV_OK);
        ASSERT_EQ(AddSeveralDataContentInfo(list, info), TV_OK);  // the list frees it now
    }
    EXPECT_EQ(AddSeveralDataContentInfo(list, nullptr), 32u);
    auto back = Decoded<FreeSeveralData>(DecodeSeveralData, Get(EncodeSeveralData, list.p).bytes);
    EXPECT_EQ(Counted(GetSeveralDataContentInfoCount, back.p), "2");
    EXPECT_EQ(RemoveSeveralDataContentInfo(back, 0), TV_OK);
    CmsContentInfo* first = nullptr;
    ASSERT_EQ(GetSeveralDataContentInfo(back, 0, &first), TV_OK);
    EXPECT_EQ(Get(GetCmsContentInfoTypeOid, first).bytes, Packed(types[1])) << "the former second is first";
    EXPECT_EQ(GetSeveralDataContentInfo(back, 1, &first), 32u);
    EXPECT_EQ(RemoveSeveralDataContentInfo(back, 1), 32u);
    auto empty = Decoded<FreeSeveralData>(DecodeSeveralData, Hex("30 00"));
    EXPECT_EQ(Counted(GetSeveralDataContentInfoCount, empty.p), "0");
}
