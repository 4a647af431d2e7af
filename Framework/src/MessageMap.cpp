#include "MessageMap.h"

namespace {

constexpr UINT registeredMessage = 0xC000;

template <class Predicate>
const AFX_MSGMAP_ENTRY* FindEntry(const AFX_MSGMAP* map, Predicate matches)
{
    while (map != nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nSig != AfxSig_End; ++entry) {
            if (matches(*entry)) {
                return entry;
            }
        }
        map = map->pfnGetBaseMap != nullptr ? map->pfnGetBaseMap() : nullptr;
    }
    return nullptr;
}

}  // namespace

const AFX_MSGMAP_ENTRY* FindMessageEntry(const AFX_MSGMAP* map, UINT message)
{
    if (message < registeredMessage) {
        return FindEntry(
            map, [message](const AFX_MSGMAP_ENTRY& entry) { return entry.nMessage == message; });
    }
    return FindEntry(map, [message](const AFX_MSGMAP_ENTRY& entry) {
        return entry.nMessage == registeredMessage &&
               *reinterpret_cast<const UINT*>(entry.nSig) == message;
    });
}

const AFX_MSGMAP_ENTRY* FindCommandEntry(const AFX_MSGMAP* map, UINT message, UINT code, UINT id)
{
    return FindEntry(map, [=](const AFX_MSGMAP_ENTRY& entry) {
        return entry.nMessage == message && entry.nCode == code && entry.nID <= id &&
               id <= entry.nLastID;
    });
}
