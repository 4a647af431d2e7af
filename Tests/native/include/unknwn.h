// unknwn.h: the base of interfaces, for building natively.
#pragma once

#include <windows.h>

struct IID
{
    unsigned char bytes[16];
};
using REFIID = const IID&;

struct IUnknown
{
    virtual HRESULT QueryInterface(REFIID, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;
};
