// OpenProfile.h: a factory's root, opened as the library does it.
#pragma once

#include <IProfile.h>
#include <IProfileKey.h>
#include <YProfileKey.h>
#include <YProfileStoreFactory.h>
#include <YReportMessageParams.h>
#include <YUnknownPointer.h>

inline YProfileKey OpenRoot(YProfileStoreFactory& factory)
{
    YReportMessageParams error;
    IProfile* profile = nullptr;
    if (!factory.CreateProfile(&profile, error)) {
        return YProfileKey(error);
    }
    const auto owner = YUnknownPointer<IProfile>::Adopt(profile);
    IProfileKey* root = nullptr;
    if (!profile->OpenRoot(&root, error)) {
        return YProfileKey(error);
    }
    return YProfileKey(YUnknownPointer<IProfileKey>::Adopt(root).Get());
}

inline DWORD CodeOf(const YProfileKey& key)
{
    return key.GetLastResult().GetMessageId();
}

// 0: there is none.
inline DWORD ReadNumber(const YProfileKey& key, const wchar_t* name)
{
    DWORD value = 0;
    key.ReadDWORD(name, value);
    return value;
}
