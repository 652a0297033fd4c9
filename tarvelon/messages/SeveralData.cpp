// SeveralData ::= SEQUENCE OF ContentInfo: the library's own container for several CMS messages in
// one encoding (several signed files in one transfer). Add takes the ContentInfo itself.
#include "tarvelon/messages/Cms.h"
#include "tarvelon/messages/TimeStamp.h"

#include "tarvelon/engine/Fields.h"
#include "tarvelon/tarvelon.h"

TV_MODULE(SeveralData)

namespace tv::desc {
constinit const Asn1Descriptor kSeveralData = SequenceOf<&kContentInfo>();
}  // namespace tv::desc

namespace tv {
namespace {
constinit const Family kSeveralDataFamily{&desc::kSeveralData, Module::SeveralData, 0};
}  // namespace
}  // namespace tv

using namespace tv;

TV_FAMILY_LIFE_CYCLE(SeveralData, kSeveralDataFamily)

extern "C" TV_API uint32_t AddSeveralDataContentInfo(SeveralData* list, CmsContentInfo* contentInfo) {
    if (!list || !contentInfo) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    return ListAppend(list, contentInfo);
}

extern "C" TV_API uint32_t GetSeveralDataContentInfoCount(const SeveralData* list, uint32_t* outCount) {
    return ListCountT(kSeveralDataFamily, list, outCount);
}

extern "C" TV_API uint32_t GetSeveralDataContentInfo(const SeveralData* list, uint32_t index, CmsContentInfo** outContentInfo) {
    return ListElementT(kSeveralDataFamily, list, index, outContentInfo);
}

extern "C" TV_API uint32_t RemoveSeveralDataContentInfo(SeveralData* list, uint32_t index) {
    return ListRemoveT(kSeveralDataFamily, list, index);
}
