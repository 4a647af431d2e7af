// YModuleResourceHandle.h: resources of another module, for a while.
#pragma once

#include <afxwin.h>

// While it lives, the framework takes resources from the module. User-interface thread.
class YModuleResourceHandle
{
public:
    explicit YModuleResourceHandle(HINSTANCE module) : before(::AfxGetResourceHandle())
    {
        ::AfxSetResourceHandle(module);
    }
    ~YModuleResourceHandle() { ::AfxSetResourceHandle(before); }
    YModuleResourceHandle(const YModuleResourceHandle&) = delete;
    YModuleResourceHandle& operator=(const YModuleResourceHandle&) = delete;

private:
    HINSTANCE before;
};
