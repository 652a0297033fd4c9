// ContentInfo (RFC 5652 3): the outer container of every CMS message. Its content stays the complete
// encoding it arrived as, so the inner message (SignedData, a time-stamp token, enveloped data) is
// decoded only by the family that knows it, from exactly the octets that were signed.
#include "tarvelon/messages/Cms.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(CmsContentInfo)

namespace tv::desc {
namespace {

constexpr Asn1Descriptor kContent = Explicit(0, Optional(kAny));

}  // namespace

// ContentInfo ::= SEQUENCE {                                          (RFC 5652 3)
constinit const Components<SlotCount<ContentInfoSlot>> kContentInfoParts = Slots<ContentInfoSlot>({
    {ContentInfoSlot::kContentType, &kOid},  // contentType  ContentType
    {ContentInfoSlot::kContent, &kContent},  // content      [0] EXPLICIT ANY DEFINED BY contentType OPTIONAL
});

constinit const Asn1Descriptor kContentInfo = Sequence(kContentInfoParts);

}  // namespace tv::desc

namespace tv {
constinit const Family kContentInfoFamily{&desc::kContentInfo, Module::CmsContentInfo, 1};
}  // namespace tv

using namespace tv;
using S = desc::ContentInfoSlot;

TV_FAMILY_LIFE_CYCLE(CmsContentInfo, kContentInfoFamily)

extern "C" TV_API uint32_t CreateCmsContentInfoCopy(const CmsContentInfo* contentInfo, CmsContentInfo** outContentInfo) {
    return CopyT(kContentInfoFamily, contentInfo, outContentInfo);
}

// The primitive-value codecs with the type fixed to OCTET STRING: an id-data content is nothing more.
extern "C" TV_API uint32_t EncodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    return EncodeScalar(TV_SITE, desc::kOctetString, in, inLen, out, outLen);
}
extern "C" TV_API uint32_t DecodeCmsContentInfoContent(const uint8_t* in, uint32_t inLen, uint8_t* out, uint32_t* outLen) {
    return DecodeScalar(TV_SITE, desc::kOctetString, in, inLen, out, outLen);
}

extern "C" TV_API uint32_t SetCmsContentInfoTypeOid(CmsContentInfo* contentInfo, const uint8_t* inOid) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, contentInfo, &slot, S::kContentType));
    return SetOid(TV_SITE, slot, inOid);
}

extern "C" TV_API uint32_t GetCmsContentInfoTypeOid(const CmsContentInfo* contentInfo, uint8_t* outOid, uint32_t* outOidLen) {
    const void* oid = nullptr;
    TV_TRY(Walk(TV_SITE, contentInfo, &oid, S::kContentType));
    return GetOid(TV_SITE, oid, outOid, outOidLen);
}

// The old content goes first, so a failed store leaves the ContentInfo without content rather than
// with the content the caller meant to replace.
extern "C" TV_API uint32_t SetCmsContentInfoContent(CmsContentInfo* contentInfo, const uint8_t* in, uint32_t inLen) {
    void** slot = nullptr;
    TV_TRY(Walk(TV_SITE, contentInfo, &slot, S::kContent));
    FreeAsn1Object(&desc::kAny, *slot);
    *slot = nullptr;
    if (!in || inLen == 0) return TV_OK;
    return SetAny(TV_SITE, slot, in, inLen);
}

extern "C" TV_API uint32_t GetCmsContentInfoContent(const CmsContentInfo* contentInfo, uint8_t* out, uint32_t* outLen) {
    const void* content = nullptr;
    TV_TRY(Walk(TV_SITE, contentInfo, &content, S::kContent));
    return GetOptionalLeaf(TV_SITE, content, out, outLen);
}
