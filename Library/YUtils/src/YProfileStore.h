// YProfileStore.h: the host's settings, opened for one use.
#pragma once

#include "CommonUiApi.h"
#include "IProfile.h"
#include "YProfileKey.h"
#include "YUnknownPointer.h"

// Asks the host's factory for a profile and opens its root; gives both back when it dies. Where
// there is no factory, or it fails, the root is not open and its last result says why.
class COMMONUI_API YProfileStore
{
public:
    YProfileStore();
    YProfileStore(const YProfileStore&) = delete;
    YProfileStore& operator=(const YProfileStore&) = delete;
    ~YProfileStore();

    const YProfileKey& GetRoot() const { return root; }

private:
    YProfileKey OpenRoot();

    YUnknownPointer<IProfile> profile;  // outlives the root
    YProfileKey root;
};
