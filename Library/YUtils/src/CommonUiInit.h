// CommonUiInit.h: what a host hands the library at its start.
#pragma once

#include "CommonUiApi.h"

class IHostnameResolver;
class ISynchObject;
class YProfileStoreFactory;

// Once, on the main thread, before any profile, settings or connect-by-name use. Each function is
// called when the library needs its object, never earlier; each may be null, and so may the
// objects: what needs them then fails with a report. The lock may be null, too.
COMMONUI_API void CommonUiInit(IHostnameResolver* (*hostnameResolverFactory)(),
                               YProfileStoreFactory* (*profileStoreFactory)(),
                               ISynchObject* synchObject);
