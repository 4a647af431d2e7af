// YAccessibleAnswer.h: how the get_acc... operations of a window put what they say.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string_view>

// Whether the window itself is meant, not a part of it.
inline bool YIsAccessibleSelf(const VARIANT& child) noexcept
{
    return child.vt == VT_I4 && child.lVal == CHILDID_SELF;
}

// The text becomes the asker's. An empty one is no answer: S_FALSE.
inline HRESULT YAnswerText(std::wstring_view text, BSTR* answer) noexcept
{
    *answer = nullptr;
    if (text.empty()) {
        return S_FALSE;
    }
    *answer = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    return *answer ? S_OK : E_OUTOFMEMORY;
}

// A role, a state, the number of a part.
inline HRESULT YAnswerNumber(long number, VARIANT* answer) noexcept
{
    *answer = VARIANT{};
    answer->vt = VT_I4;
    answer->lVal = number;
    return S_OK;
}
