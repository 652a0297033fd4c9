// The signature workflows over ContentInfo, SignedData and SignerInfo: the signed attributes and the
// bytes to be signed, assembling a signed message from the caller's digest, certificate and
// signature, matching a signer to a certificate, and reading or removing the signers of a message
// in memory or on files. The caller's provider does every digest and signature.
#include <cstdio>
#include <cstring>
#include <utility>

#include "tarvelon/messages/Cms.h"
#include "tarvelon/messages/CmsTools.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/x509/Certificate.h"
#include "tarvelon/text/Text.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CMS)

namespace tv {
namespace {

using namespace desc;
using D = SignedDataSlot;
using E = EncapsulatedContentInfoSlot;
using I = SignerInfoSlot;

constexpr Cp1251Text kSignerNotFound("Подписант не найден");

// Fixed working buffers of the signer readers; values that do not fit are reported, not grown into.
constexpr uint32_t kSerialRoom = 64;        // signer matching: serial number
constexpr uint32_t kKeyIdRoom = 32;         // signer matching: key identifier
constexpr uint32_t kTextSerialRoom = 1024;  // signer text: serial number
constexpr uint32_t kTextKeyIdRoom = 4;      // signer text: key identifier, kept this small
constexpr uint32_t kAttributeOidRoom = 100;
constexpr uint32_t kAttributeValueRoom = 8192;

// One attribute with one value, encoded by `encode` (size protocol) into a block on the stack.
template <typename Encode>
uint32_t AddAttribute(RsaAttributes* attributes, const uint8_t* oid, Encode encode) noexcept {
    uint8_t small[96];
    HeapBytes large;
    uint32_t len = sizeof small;
    uint8_t* value = small;
    if (const uint32_t rc = encode(small, &len); rc == TV_ERR_BUFFER_TOO_SMALL) {
        TV_TRY(EncodeToHeap(TV_SITE, encode, large, &len));
        value = large.get();
    } else {
        TV_TRY(rc);
    }
    uint32_t index = 0;
    return AddRsaAttributesAttributeWithValue(attributes, oid, &index, value, len);
}

// contentType (always id-data), messageDigest and, with a time, signingTime, in that order; then the
// caller's extra attributes. The first failure ends it; what was added stays.
uint32_t FillSignedAttributes(CmsSignerInfo* signerInfo, const uint8_t* digest, uint32_t digestLen,
                              const LibraryTime* signingTime, const RsaAttributes* extra) noexcept {
    if (!signerInfo || !digest) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    RsaAttributes* attributes = nullptr;
    TV_TRY(GetCmsSignerInfoSignedAttributes(signerInfo, &attributes));
    TV_TRY(AddAttribute(attributes, oid::kContentType, [](uint8_t* o, uint32_t* l) {
        return EncodeRsaAttributeContentTypeValue(oid::kData, o, l);
    }));
    TV_TRY(AddAttribute(attributes, oid::kMessageDigest, [&](uint8_t* o, uint32_t* l) {
        return EncodeRsaAttributeMessageDigestValue(digest, digestLen, o, l);
    }));
    if (signingTime)
        TV_TRY(AddAttribute(attributes, oid::kSigningTime, [&](uint8_t* o, uint32_t* l) {
            return EncodeRsaAttributeSigningTimeValue(signingTime, o, l);
        }));
    return extra ? AppendRsaAttributes(attributes, extra) : uint32_t{TV_OK};
}

// ContentInfo ::= SEQUENCE { contentType OBJECT IDENTIFIER, content [0] EXPLICIT SignedData }: the
// ContentInfo of a signed message with its content typed, so that a message is read into its
// SignedData in one pass (no copy of the inner encoding) and written straight into the caller's
// buffer (no SignedData encoding for a ContentInfo to copy).
constexpr auto kSignedMessageParts = Slots<ContentInfoSlot>({
    {ContentInfoSlot::kContentType, &kOid},            // contentType  ContentType (id-signedData)
    {ContentInfoSlot::kContent, &kSignedDataContent},  // content      [0] EXPLICIT SignedData
});
constexpr Asn1Descriptor kSignedMessage = Sequence(kSignedMessageParts);

uint32_t WriteSignedMessage(const CmsSignedData* signedData, uint8_t* out, uint32_t* outLen) noexcept {
    Asn1Primitive type{ASN1_OBJECT_IDENTIFIER, oid::kSignedData[0], const_cast<uint8_t*>(oid::kSignedData + 1)};
    const void* message[] = {&type, signedData};
    return EncodeSized(TV_SITE, message, &kSignedMessage, out, outLen);
}

bool IsSignedDataType(const void* oid) noexcept {
    const auto* type = static_cast<const Asn1Primitive*>(oid);
    return type && type->length == oid::kSignedData[0] &&
           std::memcmp(type->content, oid::kSignedData + 1, oid::kSignedData[0]) == 0;
}

// The SignedData of an encoded ContentInfo: 32 for no message, 314 when it is not id-signedData
// (told apart from a broken SignedData by reading the input as a plain ContentInfo), 311 without
// content.
uint32_t DecodeSignedMessage(const uint8_t* in, uint32_t inLen, OwnedValue& signedData) noexcept {
    if (!in || inLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue message(&kSignedMessage);
    if (const uint32_t rc = Asn1DecodeItem(in, inLen, &kSignedMessage, message.Out(), nullptr); rc != TV_OK) {
        OwnedValue plain(&kContentInfo);
        if (Asn1DecodeItem(in, inLen, &kContentInfo, plain.Out(), nullptr) == TV_OK &&
            !IsSignedDataType(Slot(plain.get(), ContentInfoSlot::kContentType)))
            return TV_FAIL(TV_ERR_NOT_SIGNED_DATA);
        return rc;
    }
    if (!IsSignedDataType(Slot(message.get(), ContentInfoSlot::kContentType))) return TV_FAIL(TV_ERR_NOT_SIGNED_DATA);
    *signedData.Out() = std::exchange(Slot(message.get(), ContentInfoSlot::kContent), nullptr);
    if (!signedData.get()) return TV_FAIL(TV_ERR_ABSENT);
    return TV_OK;
}

// The signer `number` (from 1) of a decoded message: 322 when there is no such signer.
uint32_t SignerNumber(OwnedValue& signedData, uint32_t number, CmsSignerInfo** out) noexcept {
    auto* sd = signedData.as<CmsSignedData>();
    uint32_t count = 0;
    TV_TRY(GetCmsSignedDataSignerInfosCount(sd, &count));
    if (number > count || count == 0) return TV_FAIL(TV_ERR_NOT_FOUND);
    return GetCmsSignedDataSignerInfo(sd, number - 1, out);
}

const Asn1Primitive* EContentOf(const void* signedData) noexcept {
    const void* encap = Slot(signedData, D::kEncapContentInfo);
    return encap ? static_cast<const Asn1Primitive*>(Slot(encap, E::kEContent)) : nullptr;
}

// The caller's content stands in the eContent slot for the one write and leaves it before the tree
// is freed, so a large content is copied once, into the output.
struct LentContent {
    Asn1Primitive leaf{ASN1_OCTET_STRING, 0, nullptr};
    void** slot = nullptr;
    ~LentContent() {
        if (slot) *slot = nullptr;
    }
    uint32_t Lend(void* signedData, const uint8_t* content, uint32_t contentLen) noexcept {
        void** eContent = nullptr;
        TV_TRY(Walk(TV_SITE, signedData, &eContent, D::kEncapContentInfo, E::kEContent));
        FreeAsn1Object(&kOctetString, *eContent);
        *eContent = nullptr;
        if (!content || contentLen == 0) return TV_OK;
        leaf.length = contentLen;
        leaf.content = const_cast<uint8_t*>(content);
        *eContent = &leaf;
        slot = eContent;
        return TV_OK;
    }
};

// The signer text: for issuer and serial "serial, " (printable serials only) and the issuer's common
// names; for a key identifier a fixed text, the identifier read into a room of four octets.
uint32_t SignerText(CmsSignerInfo* signer, char* outText, uint32_t* outTextLen) noexcept {
    X509Name* issuer = nullptr;
    uint8_t serial[kTextSerialRoom], keyId[kTextKeyIdRoom];
    uint32_t serialLen = sizeof serial, keyIdLen = sizeof keyId;
    TV_TRY(GetCmsSignerInfoSignerIdentifier(signer, &issuer, serial, &serialLen, keyId, &keyIdLen));
    if (!issuer) {
        if (keyIdLen == 0) return TV_FAIL(TV_ERR_MALFORMED_FOR_PURPOSE);
        return PutText(TV_SITE, kSignerNotFound.text, kSignerNotFound.length, outText, outTextLen);
    }
    DisplayText text;
    AppendPrintableSerial(text, serial, serialLen);
    TV_TRY(AppendCommonNames(TV_SITE, text, issuer));
    return PutText(TV_SITE, text.text, text.length, outText, outTextLen);
}

// The first signingTime among the signed attributes, each of which must hold exactly one value of
// sane size (323 otherwise); none at all is 322.
uint32_t SignerTime(const CmsSignerInfo* signer, LibraryTime* outTime) noexcept {
    using A = AttributeSlot;
    *outTime = LibraryTime{};
    const auto* attributes = static_cast<const Asn1List*>(Slot(signer, I::kSignedAttrs));
    for (uint32_t i = 0; attributes && i < attributes->count; ++i) {
        const void* attribute = attributes->items[i];
        const auto* type = static_cast<const Asn1Primitive*>(Slot(attribute, A::kType));
        const auto* values = static_cast<const Asn1List*>(Slot(attribute, A::kValues));
        if (!type || !values || values->count != 1 || type->length + 1 > kAttributeOidRoom)
            return TV_FAIL(TV_ERR_MALFORMED_FOR_PURPOSE);
        const auto* value = static_cast<const Asn1Primitive*>(values->items[0]);
        if (value->length > kAttributeValueRoom) return TV_FAIL(TV_ERR_MALFORMED_FOR_PURPOSE);
        if (type->length == oid::kSigningTime[0] && std::memcmp(type->content, oid::kSigningTime + 1, type->length) == 0)
            return DecodeRsaAttributeSigningTimeValue(value->content, value->length, outTime);
    }
    return TV_FAIL(TV_ERR_NOT_FOUND);
}

}  // namespace
}  // namespace tv

using namespace tv;
using namespace tv::desc;

extern "C" TV_API uint32_t FillCmsSignerInfoWithSignedAttributes(CmsSignerInfo* signerInfo, const uint8_t* inDigest,
                                                                 uint32_t inDigestLen, const LibraryTime* signingTime) {
    return FillSignedAttributes(signerInfo, inDigest, inDigestLen, signingTime, nullptr);
}

extern "C" TV_API uint32_t FillCmsSignerInfoWithSignedAttributes2(CmsSignerInfo* signerInfo, const uint8_t* inDigest,
                                                                  uint32_t inDigestLen, const LibraryTime* signingTime,
                                                                  const RsaAttributes* extra) {
    return FillSignedAttributes(signerInfo, inDigest, inDigestLen, signingTime, extra);
}

extern "C" TV_API uint32_t GetCmsSignedDataToBeSignedPart2(const uint8_t* inDigest, uint32_t inDigestLen,
                                                           const LibraryTime* signingTime, const RsaAttributes* extra,
                                                           uint8_t* out, uint32_t* outLen) {
    if (!outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue signer(&kSignerInfo);
    TV_TRY(CreateAsn1Object(&kSignerInfo, signer.Out(), 1));
    TV_TRY(FillSignedAttributes(signer.as<CmsSignerInfo>(), inDigest, inDigestLen, signingTime, extra));
    return GetCmsSignerInfoEncodedSignedAttributes(signer.as<CmsSignerInfo>(), out, outLen);
}

extern "C" TV_API uint32_t GetCmsSignedDataToBeSignedPart(const uint8_t* inDigest, uint32_t inDigestLen,
                                                          const LibraryTime* signingTime, uint8_t* out, uint32_t* outLen) {
    return GetCmsSignedDataToBeSignedPart2(inDigest, inDigestLen, signingTime, nullptr, out, outLen);
}

// The content is lent to the tree for the write and the message is written straight into the
// caller's buffer, so the content is copied once (into the output) however large it is; an existing
// message costs its decoding on top.
extern "C" TV_API uint32_t CreateCmsFileSignature2(
    const uint8_t* inContent, uint32_t inContentLen, const uint8_t* inDigest, uint32_t inDigestLen,
    const LibraryTime* signingTime, const uint8_t* inDigestOid, const uint8_t* inDigestParams, uint32_t inDigestParamsLen,
    const uint8_t* inSignerCert, uint32_t inSignerCertLen, const uint8_t* const* inCerts, const uint32_t* inCertLens,
    uint32_t certCount, const uint8_t* inSignatureOid, const uint8_t* inSignatureParams, uint32_t inSignatureParamsLen,
    uint32_t withSignedAttributes, const RsaAttributes* extra, uint64_t /*reserved*/, const uint8_t* inSignature,
    uint32_t inSignatureLen, const uint8_t* inExisting, uint32_t inExistingLen, uint8_t* out, uint32_t* outLen) {
    if ((withSignedAttributes && (!inDigest || !signingTime)) || !inDigestOid || !inSignerCert || !inSignatureOid ||
        !inSignature || !outLen || (certCount && (!inCerts || !inCertLens)))
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);

    OwnedValue signedData(&kSignedData);
    if (inExisting && inExistingLen) {
        TV_TRY(DecodeSignedMessage(inExisting, inExistingLen, signedData));
        const Asn1Primitive* present = EContentOf(signedData.get());
        if (inContent && present && present->length &&
            (present->length != inContentLen || std::memcmp(present->content, inContent, inContentLen) != 0))
            return TV_FAIL(TV_ERR_DIFFERENT);
    } else {
        TV_TRY(CreateT(kSignedDataFamily, reinterpret_cast<CmsSignedData**>(signedData.Out())));
    }
    auto* sd = signedData.as<CmsSignedData>();
    TV_TRY(SetCmsSignedDataVersion(sd, 1));
    TV_TRY(AddCmsSignedDataDigestAlgorithmOidAndParameters(sd, inDigestOid, inDigestParams, inDigestParamsLen));
    TV_TRY(SetCmsSignedDataContentTypeOid(sd, oid::kData));
    LentContent content;  // declared after the tree, so it leaves the tree before the tree is freed
    TV_TRY(content.Lend(sd, inContent, inContentLen));
    for (uint32_t i = 0; i < certCount; ++i)
        TV_TRY(AddCmsSignedDataEncodedCertificate(sd, TV_CMS_CERT_CERTIFICATE, inCerts[i], inCertLens[i]));

    CmsSignerInfo* signer = nullptr;
    TV_TRY(AddCmsSignedDataSignerInfo(sd, &signer));
    if (withSignedAttributes) TV_TRY(FillSignedAttributes(signer, inDigest, inDigestLen, signingTime, extra));
    TV_TRY(SetCmsSignerInfoVersion(signer, 1));
    Certificate* cert = nullptr;
    TV_TRY(DecodeCertificate(inSignerCert, inSignerCertLen, &cert));
    OwnedValue certGuard(&kCertificate, cert);
    uint32_t serialLen = 0;
    const uint8_t* serial = ptr_GetCertificateSerialNumber(cert, &serialLen);
    if (!serial) return TV_FAIL(TV_ERR_NOT_DER);
    X509Name* issuer = nullptr;
    TV_TRY(GetCertificateIssuer(cert, &issuer));
    TV_TRY(SetCmsSignerInfoSignerIdentifierIssuerAndSerialNumber(signer, issuer, serial, serialLen));
    TV_TRY(SetCmsSignerInfoDigestAlgorithmOidAndParameters(signer, inDigestOid, inDigestParams, inDigestParamsLen));
    TV_TRY(SetCmsSignerInfoSignatureAlgorithmOidAndParameters(signer, inSignatureOid, inSignatureParams,
                                                              inSignatureParamsLen));
    TV_TRY(SetCmsSignerInfoSignature(signer, inSignature, inSignatureLen));
    return WriteSignedMessage(sd, out, outLen);
}

extern "C" TV_API uint32_t CompareSignerInfoAndCertificate(CmsSignerInfo* signerInfo, Certificate* certificate) {
    if (!signerInfo || !certificate) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    X509Name* issuer = nullptr;
    uint8_t serial[kSerialRoom], keyId[kKeyIdRoom];
    uint32_t serialLen = sizeof serial, keyIdLen = sizeof keyId;
    if (const uint32_t rc = GetCmsSignerInfoSignerIdentifier(signerInfo, &issuer, serial, &serialLen, keyId, &keyIdLen);
        rc != TV_OK)
        return rc == TV_ERR_BUFFER_TOO_SMALL ? TV_FAIL(TV_ERR_WORK_BUFFER) : rc;
    if (issuer) {
        uint32_t certSerialLen = 0;
        const uint8_t* certSerial = ptr_GetCertificateSerialNumber(certificate, &certSerialLen);
        if (!certSerial) return TV_FAIL(TV_ERR_NOT_DER);
        if (certSerialLen != serialLen || std::memcmp(certSerial, serial, serialLen) != 0) return TV_FAIL(TV_ERR_DIFFERENT);
        X509Name* certIssuer = nullptr;
        TV_TRY(GetCertificateIssuer(certificate, &certIssuer));
        return CompareX509Names(certIssuer, issuer);
    }
    uint8_t certKeyId[kKeyIdRoom];
    uint32_t certKeyIdLen = sizeof certKeyId;
    if (const uint32_t rc = GetCertificateSubjectKeyIdentifier(certificate, certKeyId, &certKeyIdLen); rc != TV_OK)
        return rc == TV_ERR_BUFFER_TOO_SMALL ? TV_FAIL(TV_ERR_WORK_BUFFER) : rc;
    if (certKeyIdLen != keyIdLen || std::memcmp(certKeyId, keyId, keyIdLen) != 0) return TV_FAIL(TV_ERR_DIFFERENT);
    return TV_OK;
}

extern "C" TV_API uint32_t GetBufferCmsSignatureTimeAndCN(uint32_t signerNumber, const uint8_t* in, uint32_t inLen,
                                                          LibraryTime* outTime, char* outText, uint32_t* outTextLen) {
    if (signerNumber == 0 || !in || inLen == 0) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue signedData(&kSignedData);
    TV_TRY(DecodeSignedMessage(in, inLen, signedData));
    CmsSignerInfo* signer = nullptr;
    TV_TRY(SignerNumber(signedData, signerNumber, &signer));
    if (outTextLen) TV_TRY(SignerText(signer, outText, outTextLen));
    return outTime ? SignerTime(signer, outTime) : uint32_t{TV_OK};
}

extern "C" TV_API uint32_t GetBufferCmsSignatureTime(uint32_t signerNumber, const uint8_t* in, uint32_t inLen,
                                                     LibraryTime* outTime) {
    return GetBufferCmsSignatureTimeAndCN(signerNumber, in, inLen, outTime, nullptr, nullptr);
}

extern "C" TV_API uint32_t GetCmsSignatureTimeAndCN(uint32_t signerNumber, const char* path, LibraryTime* outTime,
                                                    char* outText, uint32_t* outTextLen) {
    HeapBytes message;
    uint32_t messageLen = 0;
    TV_TRY(ReadWholeFile(TV_SITE, path, message, &messageLen));
    return GetBufferCmsSignatureTimeAndCN(signerNumber, message.get(), messageLen, outTime, outText, outTextLen);
}

extern "C" TV_API uint32_t GetCmsSignatureTime(uint32_t signerNumber, const char* path, LibraryTime* outTime) {
    return GetCmsSignatureTimeAndCN(signerNumber, path, outTime, nullptr, nullptr);
}

// Removing the only signer leaves no signed message, so the content itself is the answer.
extern "C" TV_API uint32_t DeleteBufferCmsSignerInfo(uint32_t signerNumber, const uint8_t* in, uint32_t inLen,
                                                     uint8_t* out, uint32_t* outLen) {
    if (signerNumber == 0 || !in || inLen == 0 || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue signedData(&kSignedData);
    TV_TRY(DecodeSignedMessage(in, inLen, signedData));
    auto* sd = signedData.as<CmsSignedData>();
    uint32_t count = 0;
    TV_TRY(GetCmsSignedDataSignerInfosCount(sd, &count));
    if (signerNumber == 1 && count < 2) {
        const Asn1Primitive* content = EContentOf(sd);
        if (!content) return TV_FAIL(TV_ERR_NOT_FOUND);
        return GetLeaf(TV_SITE, content, out, outLen);
    }
    TV_TRY(DeleteCmsSignedDataSignerInfo(sd, signerNumber - 1));
    return WriteSignedMessage(sd, out, outLen);
}

extern "C" TV_API uint32_t DeleteCmsSignerInfo(uint32_t signerNumber, const char* inPath, const char* outPath) {
    if (!outPath) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    HeapBytes message, result;
    uint32_t messageLen = 0, resultLen = 0;
    TV_TRY(ReadWholeFile(TV_SITE, inPath, message, &messageLen));
    TV_TRY(EncodeToHeap(TV_SITE, [&](uint8_t* o, uint32_t* l) {
        return DeleteBufferCmsSignerInfo(signerNumber, message.get(), messageLen, o, l);
    }, result, &resultLen));
    std::FILE* file = std::fopen(outPath, "wb");
    if (!file) return TV_FAIL(TV_ERR_FILE_OPEN);
    const size_t written = resultLen ? std::fwrite(result.get(), 1, resultLen, file) : 0;
    const bool closed = std::fclose(file) == 0;
    if (written != resultLen || !closed) return TV_FAIL(TV_ERR_FILE_SHORT_WRITE);
    return TV_OK;
}
