// CAdES values that carry whole CRLs and basic OCSP responses, so they sit above both families;
// the display texts of certificates, CRLs and the version banner; whole-file reads.
#include "tarvelon/messages/CmsTools.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "tarvelon/engine/Fields.h"
#include "tarvelon/extensions/RsaAttributes.h"
#include "tarvelon/extensions/X509Extension.h"
#include "tarvelon/messages/Ocsp.h"
#include "tarvelon/pkix/X509Name.h"
#include "tarvelon/text/Text.h"
#include "tarvelon/x509/X509Crl.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CmsTools)

namespace tv::desc {
namespace {

// RevocationValues ::= SEQUENCE {
enum class RevocationValuesSlot : uint32_t { kCrlVals, kOcspVals, kOtherRevVals, kCount };
constexpr Asn1Descriptor kCrlVals = Explicit(0, Optional(SequenceOf<&kCertificateList>()));
constexpr Asn1Descriptor kOcspVals = Explicit(1, Optional(SequenceOf<&kBasicOcspResponse>()));
constexpr Asn1Descriptor kOtherRevVals = Explicit(2, Optional(Sequence(kOtherRevParts)));
constexpr auto kRevocationValuesParts = Slots<RevocationValuesSlot>({
    {RevocationValuesSlot::kCrlVals, &kCrlVals},            // crlVals       [0] EXPLICIT SEQUENCE OF CertificateList OPTIONAL
    {RevocationValuesSlot::kOcspVals, &kOcspVals},          // ocspVals      [1] EXPLICIT SEQUENCE OF BasicOCSPResponse OPTIONAL
    {RevocationValuesSlot::kOtherRevVals, &kOtherRevVals},  // otherRevVals  [2] EXPLICIT OtherRevVals OPTIONAL
});

}  // namespace

constinit const Asn1Descriptor kRevocationValues = Sequence(kRevocationValuesParts);

}  // namespace tv::desc

using namespace tv;
using S = desc::RevocationValuesSlot;
using R = desc::OtherRevSlot;

// The caller's lists stand in the slots of a structure on the stack for the one write; only the
// other value is built here.
extern "C" TV_API uint32_t EncodeRsaAttributeRevocationValues(const X509Crls* crls, const OcspBasicResponses* ocspResponses,
                                                              const uint8_t* otherType, const uint8_t* otherValue,
                                                              uint32_t otherValueLen, uint8_t* out, uint32_t* outLen) {
    const bool other = otherType && otherValue && otherValueLen;
    if ((!crls && !ocspResponses && !other) || !outLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue rev(Component(desc::kRevocationValues, S::kOtherRevVals));
    if (other) {
        TV_TRY(NewStructure(TV_SITE, desc::kOtherRev, rev));
        TV_TRY(SetOid(TV_SITE, &Slot(rev.get(), R::kType), otherType));
        TV_TRY(SetAny(TV_SITE, &Slot(rev.get(), R::kValue), otherValue, otherValueLen));
    }
    const void* slots[] = {crls, ocspResponses, rev.get()};
    return EncodeSized(TV_SITE, slots, &desc::kRevocationValues, out, outLen);
}

extern "C" TV_API uint32_t DecodeRsaAttributeRevocationValues(const uint8_t* in, uint32_t inLen, X509Crls** outCrls,
                                                              OcspBasicResponses** outOcspResponses,
                                                              uint8_t* outOtherType, uint32_t* outOtherTypeLen,
                                                              uint8_t* outOtherValue, uint32_t* outOtherValueLen) {
    if (!outCrls || !outOcspResponses || !outOtherTypeLen || !outOtherValueLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    OwnedValue value(&desc::kRevocationValues);
    TV_TRY(DecodeValue(TV_SITE, desc::kRevocationValues, in, inLen, value));
    const void* other = Slot(value.get(), S::kOtherRevVals);
    if (other) {
        TV_TRY(FirstFailure({GetOid(TV_SITE, Slot(other, R::kType), outOtherType, outOtherTypeLen),
                             GetLeaf(TV_SITE, Slot(other, R::kValue), outOtherValue, outOtherValueLen)}));
    } else {
        *outOtherTypeLen = *outOtherValueLen = 0;
    }
    *outCrls = static_cast<X509Crls*>(std::exchange(Slot(value.get(), S::kCrlVals), nullptr));
    *outOcspResponses = static_cast<OcspBasicResponses*>(std::exchange(Slot(value.get(), S::kOcspVals), nullptr));
    return TV_OK;
}

// ---- display texts ------------------------------------------------------------------------------------

namespace tv {
namespace {

constexpr uint8_t kCommonName[] = {0x55, 0x04, 0x03};  // 2.5.4.3
constexpr size_t kOidRoom = 100;                       // packed type OIDs are read into this much
constexpr size_t kValueRoom = 1024;                    // and name values into this much

// One commonName value in code page 1251: UTF8String converted, BMPString converted per code unit,
// any other string type one "?" per content octet. Each must fit the room left (49 otherwise).
uint32_t AppendNameValue(Site site, DisplayText& text, const Asn1Primitive* value) noexcept {
    if (value->length > kValueRoom) return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
    Header h;
    TV_TRY(ParseHeader(value->content, value->length, &h));
    const uint8_t* content = value->content + h.headerLen;
    const size_t n = value->length - h.headerLen;
    char* at = text.text + text.length;
    if (h.tagClass == ASN1_CLASS_UNIVERSAL && h.tag == ASN1_UTF8_STRING) {
        const size_t count = Utf8ToCp1251(content, n, at, text.Room());
        if (count + 1 > text.Room()) return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
        text.length += count;
    } else if (h.tagClass == ASN1_CLASS_UNIVERSAL && h.tag == ASN1_BMP_STRING) {
        if (text.Room() < n / 2) return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
        BmpToCp1251(content, n, at);
        text.length += n / 2;
    } else {
        if (text.Room() < n) return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
        std::memset(at, '?', n);
        text.length += n;
    }
    return TV_OK;
}

}  // namespace

void DisplayText::Append(const char* s, size_t n) noexcept {
    n = std::min(n, kDisplayRoom - 1 - std::min(length, kDisplayRoom - 1));
    std::memcpy(text + length, s, n);
    length += n;
}

void AppendPrintableSerial(DisplayText& text, const uint8_t* serial, uint32_t serialLen) noexcept {
    for (uint32_t i = 0; i < serialLen; ++i)
        if (serial[i] < 0x20 || serial[i] > 0x7A) return;
    text.Append(reinterpret_cast<const char*>(serial), serialLen);
    text.Append(", ", 2);
}

uint32_t AppendCommonNames(Site site, DisplayText& text, const X509Name* name) noexcept {
    using V = desc::AttributeTypeAndValueSlot;
    for (uint32_t r = 0; name && r < name->count; ++r) {
        const auto* rdn = static_cast<const Asn1List*>(name->items[r]);
        for (uint32_t e = 0; rdn && e < rdn->count; ++e) {
            const auto* type = static_cast<const Asn1Primitive*>(Slot(rdn->items[e], V::kType));
            const auto* value = static_cast<const Asn1Primitive*>(Slot(rdn->items[e], V::kValue));
            if (!type || !value) continue;
            if (type->length + 1 > kOidRoom) return Fail(site, TV_ERR_BUFFER_TOO_SMALL);
            if (type->length != sizeof kCommonName || std::memcmp(type->content, kCommonName, sizeof kCommonName) != 0)
                continue;
            TV_TRY(AppendNameValue(site, text, value));
            break;  // the first commonName of an RDN only
        }
    }
    text.text[text.length] = '\0';
    return TV_OK;
}

uint32_t PutText(Site site, const char* text, size_t length, char* out, uint32_t* outLen) noexcept {
    if (!outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    if (!out || *outLen < length + 1) {
        *outLen = static_cast<uint32_t>(length + 1);
        return out ? Fail(site, TV_ERR_BUFFER_TOO_SMALL) : uint32_t{TV_OK};
    }
    std::memcpy(out, text, length);
    out[length] = '\0';
    *outLen = static_cast<uint32_t>(length);
    return TV_OK;
}

uint32_t ReadWholeFile(Site site, const char* path, uint8_t* out, uint32_t* outLen) noexcept {
    if (!path || !outLen) return Fail(site, TV_ERR_INVALID_ARGUMENT);
    std::FILE* file = std::fopen(path, "rb");
    if (!file) return Fail(site, TV_ERR_FILE_OPEN);
    struct Closer {
        std::FILE* f;
        ~Closer() { std::fclose(f); }
    } closer{file};
    if (std::fseek(file, 0, SEEK_END) != 0) return Fail(site, TV_ERR_FILE_SEEK);
    const long size = std::ftell(file);
    if (size < 0 || std::fseek(file, 0, SEEK_SET) != 0) return Fail(site, TV_ERR_FILE_SEEK);
    // Larger files are left unread without a failure, as callers have always seen it.
    if (size > 300'000'000) return TV_OK;
    const auto n = static_cast<uint32_t>(size);
    if (!out || *outLen < n) {
        *outLen = n;
        return out ? Fail(site, TV_ERR_BUFFER_TOO_SMALL) : uint32_t{TV_OK};
    }
    if (n && std::fread(out, 1, n, file) != n) return Fail(site, TV_ERR_FILE_SHORT_READ);
    *outLen = n;
    return TV_OK;
}

uint32_t ReadWholeFile(Site site, const char* path, HeapBytes& out, uint32_t* outLen) noexcept {
    *outLen = 0;
    TV_TRY(ReadWholeFile(site, path, nullptr, outLen));
    if (!out.Allocate(*outLen ? *outLen : 1)) return Fail(site, TV_ERR_NO_MEMORY);
    return *outLen ? ReadWholeFile(site, path, out.get(), outLen) : uint32_t{TV_OK};
}

}  // namespace tv

namespace {

constexpr tv::Cp1251Text kCrlText(
    "Версия=%d, Действителен с %02u.%02u.%04u %02u:%02u:%02u, Поставщик: ");
constexpr tv::Cp1251Text kCrlTextWithNextUpdate(
    "Версия=%d, Действителен с %02u.%02u.%04u %02u:%02u:%02u GMT, по %02u.%02u.%04u %02u:%02u:%02u GMT, Поставщик: ");
// Product, version, word size, build date, revision and the closing notice, one blank apart.
constexpr char kBanner[] = "Tarvelon v1.0 (64bit) 05/02/2019 (R.3729) (c) The Tarvelon developers";

}  // namespace

extern "C" TV_API uint32_t GetVersionInfo(char* outText, uint32_t* outTextLen) {
    // A null buffer is refused rather than answered with the size: the banner has always been fixed.
    if (!outText) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return PutText(TV_SITE, kBanner, sizeof kBanner - 1, outText, outTextLen);
}

extern "C" TV_API uint32_t GetKestruneIdentifierFromCertificate(const Certificate* certificate, char* outText,
                                                                uint32_t* outTextLen) {
    if (!certificate || !outTextLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    auto* cert = const_cast<Certificate*>(certificate);
    HeapBytes extension, utf8;
    uint32_t extensionLen = 0, utf8Len = 0;
    TV_TRY(EncodeToHeap(TV_SITE, [&](uint8_t* o, uint32_t* l) {
        return GetCertificateExtensionValue(cert, oid::kKestruneKeyIdentifier, o, l);
    }, extension, &extensionLen));
    TV_TRY(EncodeToHeap(TV_SITE, [&](uint8_t* o, uint32_t* l) {
        return DecodeExtensionKestruneKeyIdentifier(extension.get(), extensionLen, o, l);
    }, utf8, &utf8Len));
    // The converter counts past the room, so one pass both sizes and writes.
    const size_t room = outText ? *outTextLen : 0;
    const size_t count = Utf8ToCp1251(utf8.get(), utf8Len, outText, room);
    if (!outText || count + 1 > room) {
        *outTextLen = static_cast<uint32_t>(count + 1);
        return outText ? TV_FAIL(TV_ERR_BUFFER_TOO_SMALL) : uint32_t{TV_OK};
    }
    outText[count] = '\0';
    *outTextLen = static_cast<uint32_t>(count);
    return TV_OK;
}

extern "C" TV_API uint32_t GetCertificateCN(Certificate* certificate, char* outText, uint32_t* outTextLen) {
    if (!certificate || !outTextLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    DisplayText text;
    uint8_t serial[100];
    uint32_t serialLen = sizeof serial;
    if (GetCertificateSerialNumber(certificate, serial, &serialLen) == TV_OK) AppendPrintableSerial(text, serial, serialLen);
    X509Name* subject = nullptr;
    TV_TRY(GetCertificateSubject(certificate, &subject));
    TV_TRY(AppendCommonNames(TV_SITE, text, subject));
    return PutText(TV_SITE, text.text, text.length, outText, outTextLen);
}

// The dates are printed as the record holds them: no zone conversion, although the text says GMT.
extern "C" TV_API uint32_t GetCrlCN(X509Crl* crl, char* outText, uint32_t* outTextLen) {
    if (!crl || !outTextLen) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    uint32_t version = 0;
    LibraryTime from{}, to{};
    TV_TRY(GetX509CrlVersion(crl, &version));
    TV_TRY(GetX509CrlThisUpdate(crl, &from));
    const uint32_t next = GetX509CrlNextUpdate(crl, &to);
    if (next != TV_OK && next != TV_ERR_ABSENT) return next;
    DisplayText text;
    const int n = next == TV_OK
                      ? std::snprintf(text.text, kDisplayRoom, kCrlTextWithNextUpdate.text, static_cast<int>(version), from.day,
                                      from.month, from.year, from.hour, from.minute, from.second, to.day, to.month,
                                      to.year, to.hour, to.minute, to.second)
                      : std::snprintf(text.text, kDisplayRoom, kCrlText.text, static_cast<int>(version), from.day,
                                      from.month, from.year, from.hour, from.minute, from.second);
    text.length = std::min<size_t>(n > 0 ? size_t(n) : 0, kDisplayRoom - 1);
    X509Name* issuer = nullptr;
    TV_TRY(GetX509CrlIssuer(crl, &issuer));
    TV_TRY(AppendCommonNames(TV_SITE, text, issuer));
    return PutText(TV_SITE, text.text, text.length, outText, outTextLen);
}
