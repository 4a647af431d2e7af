// oaidl.h: the variant's integers, for building natively.
#pragma once

#include <windows.h>

using VARTYPE = unsigned short;
using VARIANT_BOOL = short;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum : VARTYPE {
    VT_EMPTY = 0,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_BOOL = 11,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
};

struct VARIANT
{
    VARTYPE vt;
    union
    {
        std::uint8_t bVal;
        std::int16_t iVal;
        std::uint16_t uiVal;
        std::int32_t lVal;
        std::uint32_t ulVal;
        std::int64_t llVal;
        std::uint64_t ullVal;
        VARIANT_BOOL boolVal;
    };
};

inline HRESULT VariantClear(VARIANT* variant)
{
    variant->vt = VT_EMPTY;
    return S_OK;
}
