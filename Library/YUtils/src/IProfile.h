// IProfile.h: a profile, the tree of a host's settings.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IProfileKey;
class YReportMessageParams;

// The library asks a YProfileStoreFactory for one and releases it after use; several may be open on
// one storage. The order is binary contract.
class IProfile : public IUnknown
{
public:
    // The caller owns the reference. False: error says why, root is null.
    virtual bool OpenRoot(IProfileKey** root, YReportMessageParams& error) = 0;
};
