#include "YProfileStore.h"

#include "HostServices.h"

YProfileStore::YProfileStore() : root(OpenRoot()) {}

YProfileStore::~YProfileStore() = default;

YProfileKey YProfileStore::OpenRoot()
{
    YReportMessageParams error;
    IProfile* opened = nullptr;
    if (!CreateHostProfile(&opened, error)) {
        return YProfileKey(error);
    }
    profile = YUnknownPointer<IProfile>::Adopt(opened);
    IProfileKey* key = nullptr;
    if (!profile->OpenRoot(&key, error)) {
        return YProfileKey(error);
    }
    return YProfileKey(YUnknownPointer<IProfileKey>::Adopt(key).Get());
}
