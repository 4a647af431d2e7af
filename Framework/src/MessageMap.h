// MessageMap.h: finding entries in message maps and calling what they name.
#pragma once

#include "afxwin.h"

// The handler as the type that the macro took its bits from.
template <AfxSig signature>
typename AfxHandler<signature>::Type RestoreSignature(AFX_PMSG handler)
{
    return std::bit_cast<typename AfxHandler<signature>::Type>(handler);
}

// From the most derived map to the root; null: no entry. Messages from 0xC000 on are registered at
// run time: their entries name a variable.
const AFX_MSGMAP_ENTRY* FindMessageEntry(const AFX_MSGMAP* map, UINT message);
const AFX_MSGMAP_ENTRY* FindCommandEntry(const AFX_MSGMAP* map, UINT message, UINT code, UINT id);
