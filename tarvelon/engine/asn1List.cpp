// SEQUENCE OF / SET OF values.
#include <cstdlib>

#include "tarvelon/engine/Engine.h"

TV_MODULE(asn1List)

namespace tv {

Asn1List* ListCreate() noexcept {
    auto* list = New<Asn1List>();
    if (list) list->sorted = 1;
    return list;
}

uint32_t ListAppend(Asn1List* list, void* item) noexcept {
    if (!list) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (list->count == list->capacity) {
        // 10 slots first, then half as much again plus 200: few reallocations for long CRLs.
        uint64_t grown = list->capacity == 0 ? 10 : uint64_t{list->capacity} + list->capacity / 2 + 200;
        if (grown > UINT32_MAX / sizeof(void*)) return TV_FAIL(TV_ERR_NO_MEMORY);
        void* items = Realloc(list->items, grown * sizeof(void*));
        if (!items) return TV_FAIL(TV_ERR_NO_MEMORY);
        list->items = static_cast<void**>(items);
        list->capacity = static_cast<uint32_t>(grown);
    }
    list->items[list->count++] = item;
    return TV_OK;
}

uint32_t ListRemoveAt(Asn1List* list, uint32_t index, const Asn1Descriptor* element) noexcept {
    if (!list || index >= list->count) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    if (element) FreeAsn1Object(element, list->items[index]);
    else Free(list->items[index]);
    std::memmove(list->items + index, list->items + index + 1, (list->count - index - 1) * sizeof(void*));
    --list->count;
    return TV_OK;
}

void ListClear(Asn1List* list, const Asn1Descriptor* element) noexcept {
    if (!list) return;
    for (uint32_t i = 0; i < list->count; ++i) {
        if (element) FreeAsn1Object(element, list->items[i]);
        else Free(list->items[i]);
    }
    list->count = 0;
}

void ListFree(Asn1List* list, const Asn1Descriptor* element) noexcept {
    if (!list) return;
    ListClear(list, element);
    Free(list->items);
    Free(list);
}

void ListSort(Asn1List* list) noexcept {
    if (list && list->compare && list->count > 1) std::qsort(list->items, list->count, sizeof(void*), list->compare);
}

uint32_t ListAppendUnique(Asn1List* list, const Asn1Descriptor* element, void* item) noexcept {
    if (!list || !element || !item) return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    HeapBytes fresh;
    uint32_t freshLen = 0;
    TV_TRY(Asn1Encode(item, element, fresh.Out(), &freshLen));
    for (uint32_t i = 0; i < list->count; ++i) {
        HeapBytes present;
        uint32_t presentLen = 0;
        TV_TRY(Asn1Encode(list->items[i], element, present.Out(), &presentLen));
        if (presentLen == freshLen && std::memcmp(present.get(), fresh.get(), freshLen) == 0)
            return TV_FAIL(TV_ERR_DUPLICATE);
    }
    return ListAppend(list, item);
}

}  // namespace tv

using namespace tv;

extern "C" TV_API uint32_t GetAsn1ListLength(const Asn1List* list) { return list ? list->count : 0; }

extern "C" TV_API uint32_t GetAsn1ListItem(const Asn1List* list, int32_t index, void** outItem) {
    if (!list || !outItem || index < 0 || static_cast<uint32_t>(index) >= list->count)
        return TV_FAIL(TV_ERR_INVALID_ARGUMENT);
    *outItem = list->items[index];
    return TV_OK;
}

extern "C" TV_API uint32_t SetAsn1ListSorted(Asn1List* list, uint32_t sorted) {
    if (list) list->sorted = sorted;
    return TV_OK;
}
