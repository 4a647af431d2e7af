#include "CommonUiInit.h"

#include "HostServices.h"
#include "ISynchObject.h"
#include "YProfileStoreFactory.h"
#include "YReportMessageParams.h"

namespace {

struct HostServices
{
    IHostnameResolver* (*resolver)() = nullptr;
    YProfileStoreFactory* (*profiles)() = nullptr;
    ISynchObject* lock = nullptr;
};

HostServices services;  // written once, before any thread reads it

class HostLock
{
public:
    HostLock()
    {
        if (services.lock) {
            services.lock->Lock();
        }
    }
    ~HostLock()
    {
        if (services.lock) {
            services.lock->Unlock();
        }
    }
    HostLock(const HostLock&) = delete;
    HostLock& operator=(const HostLock&) = delete;
};

}  // namespace

void CommonUiInit(IHostnameResolver* (*hostnameResolverFactory)(),
                  YProfileStoreFactory* (*profileStoreFactory)(), ISynchObject* synchObject)
{
    services = {hostnameResolverFactory, profileStoreFactory, synchObject};
}

IHostnameResolver* GetHostnameResolver()
{
    const HostLock lock;
    return services.resolver ? services.resolver() : nullptr;
}

bool CreateHostProfile(IProfile** profile, YReportMessageParams& error)
{
    *profile = nullptr;
    const HostLock lock;
    YProfileStoreFactory* const factory = services.profiles ? services.profiles() : nullptr;
    if (!factory) {
        error.SetErrorCode(ERROR_NOT_READY);
        return false;
    }
    return factory->CreateProfile(profile, error);
}
