// Lists keyed by OID: an extension list (keyed by extnID) and an attribute set (keyed by attrType)
// hold structures with an OBJECT IDENTIFIER in one slot, and are searched and pruned by it. The
// callers keep their own answers for a handle without a list and for a miss (an extension list
// without a list is simply empty, an attribute handle without one is 311), so these helpers take
// the list itself and treat a null list as empty.
#pragma once

#include "tarvelon/engine/Fields.h"

namespace tv {

// Whether the element's key slot holds the packed OID; an empty element or key matches nothing.
template <SlotEnum KeySlot>
bool HasOid(const void* element, KeySlot key, const uint8_t* packedOid) noexcept {
    if (!element) return false;
    auto* id = static_cast<const Asn1Primitive*>(Slot(element, key));
    return IsOidAndAsn1ObjectIdentifierEquals(packedOid, id) != 0;
}

// The index of the first element keyed by the OID, recording nothing: for searches that walk many
// lists, a list without that OID is an answer rather than a failure.
template <SlotEnum KeySlot>
[[nodiscard]] bool FindOid(const Asn1List* list, KeySlot key, const uint8_t* packedOid, uint32_t* index) noexcept {
    for (uint32_t i = 0; list && i < list->count; ++i) {
        if (HasOid(list->items[i], key, packedOid)) {
            *index = i;
            return true;
        }
    }
    return false;
}

// The first element keyed by the OID, or null: where a value is read by OID.
template <SlotEnum KeySlot>
[[nodiscard]] const void* ElementWithOid(const Asn1List* list, KeySlot key, const uint8_t* packedOid) noexcept {
    uint32_t index = 0;
    return FindOid(list, key, packedOid, &index) ? list->items[index] : nullptr;
}

// How a removal by OID walks the list. Both walks are part of the exported behaviour and differ on
// purpose: callers of the extension lists know that one call removes only the first of two
// adjacent matches, while an attribute set loses every match in one call.
enum class OidWalk {
    // From the front; the index advances after a removal too, so the element that moved into the
    // removed place is not examined.
    kForwardSkippingMovedIn,
    // From the back: what moves down after a removal has already been looked at.
    kBackwardEvery,
};

// Frees the elements keyed by the OID (`f` is the list's family; its removal failure ends the walk).
template <SlotEnum KeySlot>
[[nodiscard]] uint32_t RemoveOid(const Family& f, Asn1List* list, KeySlot key, const uint8_t* packedOid,
                                 OidWalk walk) noexcept {
    if (!list) return TV_OK;
    if (walk == OidWalk::kForwardSkippingMovedIn) {
        for (uint32_t i = 0; i < list->count; ++i)
            if (HasOid(list->items[i], key, packedOid)) TV_TRY(ListRemoveT(f, list, i));
    } else {
        for (uint32_t i = list->count; i-- > 0;)
            if (HasOid(list->items[i], key, packedOid)) TV_TRY(ListRemoveT(f, list, i));
    }
    return TV_OK;
}

}  // namespace tv
