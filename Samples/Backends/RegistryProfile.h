// RegistryProfile.h: settings kept in the registry.
#pragma once

#include <YProfileStoreFactory.h>

#include <windows.h>

#include <string>

// Profiles below one key of the registry. A key is a key, its values are of type REG_DWORD, REG_SZ
// and REG_BINARY; values of other types are not seen. Texts keep NUL characters inside, which other
// programs take for the end. Only a backslash and a percent sign in the name of a key are written
// in another way (%5c, %25). Every change is at once visible to all processes; Flush waits until it
// is on the disk. Where the user may not write, keys that exist can be read.
// Any thread.
class RegistryProfileFactory : public YProfileStoreFactory
{
public:
    // path: of the root key, which is made by the first profile. rootKey is borrowed.
    RegistryProfileFactory(HKEY rootKey, std::wstring path);
    RegistryProfileFactory(const RegistryProfileFactory&) = delete;
    RegistryProfileFactory& operator=(const RegistryProfileFactory&) = delete;
    virtual ~RegistryProfileFactory();

    bool CreateProfile(IProfile** profile, YReportMessageParams& error) override;

private:
    const HKEY rootKey;
    const std::wstring path;
};
