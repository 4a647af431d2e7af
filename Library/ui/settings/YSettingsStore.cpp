#include "settings/YSettingsStore.h"

#include "YCriticalSection.h"
#include "YLongPath.h"
#include "YProfileStore.h"
#include "YRect.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

IMPLEMENT_DYNCREATE(YSettingsStore, CBCGPRegistry)

const wchar_t YSettingsStore::INI_FILE_POSTFIX[] = L"MenuToolbarV3";
const wchar_t YSettingsStore::INI_FILE_POSTFIX_DEPRECATED_V2[] = L"MenuToolbarV2";

YProfileKey* YSettingsStore::m_pKey = nullptr;
YProfileStore* YSettingsStore::profile = nullptr;
YUnicodeString YSettingsStore::m_szAppName;
YUnicodeString YSettingsStore::m_szAppConfigPath;
DWORD YSettingsStore::m_dwLoadedToolBarVersion = 0;
int YSettingsStore::m_iToolBarsToLoad = 0;
DWORD YSettingsStore::m_dwReleaseToolBarVersion = 0;
DWORD YSettingsStore::m_dwReleaseMenuBarVersion = 0;

namespace {

constexpr std::wstring_view darkModePath =
    L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize";
constexpr wchar_t toolBarVersion[] = L"ToolBar-Version";
constexpr wchar_t toolBarIsCustom[] = L"ToolBar-IsCustom";
constexpr wchar_t menuBarVersion[] = L"MenuBar-Version";
constexpr wchar_t frameworkVersionPath[] = L"\\BCGControlBarVersion";

constexpr int toolBarsCustomized = 2;
constexpr int toolBarsKnown = 4;

constexpr int archiveBuffer = 4096;  // bytes
constexpr UINT fileGrowth = 1024;  // bytes

constinit YCriticalSection settingsLock;

// What the operation returns, with the lock held; false for an exception.
template <class Operation>
bool RunLocked(Operation operation)
{
    const std::lock_guard lock(settingsLock);
    try {
        return operation();
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {  // of the host's profile, or of a class that is stored
        TRACE(L"A setting was neither read nor written: an exception\n");
    }
    return false;
}

std::vector<BYTE> StoreObject(CObject& object)
{
    CMemFile file(fileGrowth);
    CArchive archive(&file, CArchive::store, archiveBuffer);
    object.Serialize(archive);
    archive.Close();
    std::vector<BYTE> bytes(static_cast<std::size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

// The buffer is the caller's, so that bytes from outside decide on no block of memory at all.
void LoadObject(CObject& object, std::vector<BYTE>& bytes)
{
    BYTE buffer[archiveBuffer];
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load, archiveBuffer, buffer);
    object.Serialize(archive);
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, DWORD value)
{
    return key.WriteDWORD(name, value);
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, int value)
{
    return key.WriteDWORD(name, static_cast<DWORD>(value));
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, LPCTSTR value)
{
    return value && key.WriteString(name, value);
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, const CRect& value)
{
    return key.WriteString(name, YRect(value).ToString());
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, const BYTE* bytes, UINT count)
{
    return (bytes || count == 0) && key.WriteBinary(name, bytes, count);
}

bool StoreValue(const YProfileKey& key, LPCTSTR name, CObject& value)
{
    const std::vector<BYTE> bytes = StoreObject(value);
    return key.WriteBinary(name, bytes.data(), static_cast<unsigned>(bytes.size()));
}

bool FetchValue(const YProfileKey& key, LPCTSTR name, DWORD& value)
{
    return key.ReadDWORD(name, value);
}

bool FetchValue(const YProfileKey& key, LPCTSTR name, int& value)
{
    DWORD stored = 0;
    if (!key.ReadDWORD(name, stored)) {
        return false;
    }
    value = static_cast<int>(stored);
    return true;
}

bool FetchValue(const YProfileKey& key, LPCTSTR name, CString& value)
{
    YUnicodeString stored;
    if (!key.ReadString(name, stored)) {
        return false;
    }
    value = stored;
    return true;
}

// Text that is no rectangle's is absent as the empty one is: a window placed by it would be gone.
bool FetchValue(const YProfileKey& key, LPCTSTR name, CRect& value)
{
    YUnicodeString stored;
    YRect rect;
    if (!key.ReadString(name, stored) || !YRect::Parse(stored.c_str(), rect)) {
        return false;
    }
    value = rect;
    return true;
}

bool FetchValue(const YProfileKey& key, LPCTSTR name, BYTE** data, UINT* size)
{
    std::vector<BYTE> stored;
    if (!key.ReadBinary(name, stored) || stored.empty()) {
        return false;
    }
    auto block = std::make_unique<BYTE[]>(stored.size());
    std::copy(stored.begin(), stored.end(), block.get());
    *data = block.release();
    *size = static_cast<UINT>(stored.size());
    return true;
}

bool FetchValue(const YProfileKey& key, LPCTSTR name, CObject& value)
{
    std::vector<BYTE> stored;
    if (!key.ReadBinary(name, stored)) {
        return false;
    }
    LoadObject(value, stored);
    return true;
}

bool IsFlagSet(const YProfileKey& key, LPCTSTR name)
{
    DWORD value = 0;
    return key.ReadDWORD(name, value) && value != 0;
}

bool HasFile(const YUnicodeString& folder, const YUnicodeString& name)
{
    if (folder.IsEmpty()) {
        return false;  // not told; the current folder is anybody's
    }
    YUnicodeString path = folder;
    if (!std::wstring_view(path).ends_with(L'\\')) {
        path += L'\\';
    }
    path += name + L".ini";
    DWORD attributes = INVALID_FILE_ATTRIBUTES;
    return YRunWithLongPath(path.c_str(),
                            [&](const wchar_t* usable) {
                                attributes = ::GetFileAttributesW(usable);
                                return attributes != INVALID_FILE_ATTRIBUTES;
                            }) &&
           (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace

YSettingsStore::YSettingsStore() = default;

YSettingsStore::~YSettingsStore() = default;

BOOL YSettingsStore::CreateKey(LPCTSTR pszPath)
{
    return RunLocked([&] {
        if (registryMode) {
            return CBCGPRegistry::CreateKey(pszPath) != FALSE;
        }
        if (!pszPath || !currentSectionName.IsEmpty()) {
            return false;
        }
        const std::wstring_view path = pszPath;
        currentSectionName = YUnicodeString(path.substr(path.rfind(L'\\') + 1));
        if (!m_pKey || !m_pKey->IsOpen()) {
            OpenKey();
            ReadToolBarState();
        }
        return true;
    });
}

BOOL YSettingsStore::Open(LPCTSTR pszPath)
{
    if (!pszPath || pszPath != darkModePath) {
        return CreateKey(pszPath);
    }
    registryMode = true;
    return RunLocked([&] { return CBCGPRegistry::Open(pszPath) != FALSE; });
}

void YSettingsStore::Close()
{
    if (registryMode) {
        const std::lock_guard lock(settingsLock);
        CBCGPRegistry::Close();
    }
}

BOOL YSettingsStore::DeleteValue(LPCTSTR pszValue)
{
    return registryMode && RunLocked([&] { return CBCGPRegistry::DeleteValue(pszValue) != FALSE; });
}

BOOL YSettingsStore::DeleteKey(LPCTSTR pszPath, BOOL bAdmin)
{
    if (!registryMode) {
        TRACE(L"Ignoring YSettingsStore::DeleteKey: %ls, %d\n", pszPath, bAdmin);
        return FALSE;
    }
    return RunLocked([&] { return CBCGPRegistry::DeleteKey(pszPath, bAdmin) != FALSE; });
}

YUnicodeString YSettingsStore::GetValueName(LPCTSTR name) const
{
    return currentSectionName + L"-" + name;
}

template <class... Value>
BOOL YSettingsStore::WriteValue(LPCTSTR name, Value&... value)
{
    return RunLocked([&] {
        return registryMode ? CBCGPRegistry::Write(name, value...) != FALSE
                            : m_pKey && StoreValue(*m_pKey, GetValueName(name).c_str(), value...);
    });
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, int iVal)
{
    return WriteValue(pszKey, iVal);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, DWORD dwVal)
{
    return WriteValue(pszKey, dwVal);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, LPCTSTR pszVal)
{
    return WriteValue(pszKey, pszVal);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, const CRect& rect)
{
    return WriteValue(pszKey, rect);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, LPBYTE pData, UINT nBytes)
{
    return WriteValue(pszKey, pData, nBytes);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, CObject& obj)
{
    return WriteValue(pszKey, obj);
}

BOOL YSettingsStore::Write(LPCTSTR pszKey, CObject* pObj)
{
    return pObj && Write(pszKey, *pObj);
}

template <class... Value>
BOOL YSettingsStore::ReadValue(LPCTSTR name, Value&... value)
{
    return RunLocked([&] {
        return registryMode ? CBCGPRegistry::Read(name, value...) != FALSE
                            : m_pKey && FetchValue(*m_pKey, GetValueName(name).c_str(), value...);
    });
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, int& iVal)
{
    return ReadValue(pszKey, iVal);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, DWORD& dwVal)
{
    return ReadValue(pszKey, dwVal);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, CString& sVal)
{
    return ReadValue(pszKey, sVal);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, CRect& rect)
{
    return ReadValue(pszKey, rect);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, BYTE** ppData, UINT* pBytes)
{
    return ReadValue(pszKey, ppData, pBytes);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, CObject& obj)
{
    return ReadValue(pszKey, obj);
}

BOOL YSettingsStore::Read(LPCTSTR pszKey, CObject*& pObj)
{
    return pObj && Read(pszKey, *pObj);
}

void YSettingsStore::SetAppName(LPCTSTR name)
{
    const std::lock_guard lock(settingsLock);
    m_szAppName = name;
}

void YSettingsStore::SetAppConfigPath(LPCTSTR path)
{
    const std::lock_guard lock(settingsLock);
    m_szAppConfigPath = path;
}

YUnicodeString YSettingsStore::GetIniFilename()
{
    return m_szAppName + INI_FILE_POSTFIX;
}

YUnicodeString YSettingsStore::GetDeprecatedIniFilenameV2()
{
    return m_szAppName + INI_FILE_POSTFIX_DEPRECATED_V2;
}

YUnicodeString YSettingsStore::GetOtherIniFilename()
{
    return YUnicodeString(m_szAppName == L"BRNK" ? L"QLT" : L"BRNK") + INI_FILE_POSTFIX;
}

bool YSettingsStore::Load(const YProfileKey& parent)
{
    return RunLocked([&] {
        const YProfileKey& target = *OpenKey();
        const YProfileKey source(parent, GetIniFilename().c_str(), YProfileKey::openExisting);
        return source.IsOpen() ? source.CopyValuesTo(target)
                               : source.GetLastResult().GetMessageId() == ERROR_FILE_NOT_FOUND;
    });
}

bool YSettingsStore::Save(const YProfileKey& parent)
{
    return RunLocked([&] {
        const YProfileKey& source = *OpenKey();
        const YProfileKey target(parent, GetIniFilename().c_str());
        return source.CopyValuesTo(target) && target.Flush();
    });
}

void YSettingsStore::CleanUp()
{
    const std::lock_guard lock(settingsLock);
    delete std::exchange(m_pKey, nullptr);
    delete std::exchange(profile, nullptr);
}

YProfileKey* YSettingsStore::OpenKey()
{
    if (!m_pKey || !m_pKey->IsOpen()) {
        CleanUp();
        profile = new YProfileStore;
        m_pKey = new YProfileKey(profile->GetRoot(), GetIniFilename().c_str());
    }
    return m_pKey;
}

void YSettingsStore::ReadToolBarState()
{
    m_dwLoadedToolBarVersion = 0;
    if (!m_pKey->IsOpen()) {
        return;
    }
    m_pKey->ReadDWORD(toolBarVersion, m_dwLoadedToolBarVersion);
    m_iToolBarsToLoad |= toolBarsKnown;
    if (IsFlagSet(*m_pKey, toolBarIsCustom)) {
        m_iToolBarsToLoad |= toolBarsCustomized;
    }
}

bool YSettingsStore::LoadFrameworkVersion(int& major, int& minor)
{
    YSettingsStore store;
    store.CreateKey(frameworkVersionPath);
    store.Read(L"Major", major);
    store.Read(L"Minor", minor);
    return true;
}

bool YSettingsStore::StoreFrameworkVersion(int major, int minor)
{
    YSettingsStore store;
    return store.CreateKey(frameworkVersionPath) && store.Write(L"Major", major) &&
           store.Write(L"Minor", minor);
}

void YSettingsStore::SetToolBarVersion(DWORD version)
{
    m_dwReleaseToolBarVersion = version;
}

void YSettingsStore::SetMenuBarVersion(DWORD version)
{
    m_dwReleaseMenuBarVersion = version;
}

bool YSettingsStore::WriteOwn(LPCTSTR name, DWORD value)
{
    return RunLocked([&] { return m_pKey && m_pKey->WriteDWORD(name, value); });
}

bool YSettingsStore::StoreToolBarVersion()
{
    return WriteOwn(toolBarVersion, m_dwReleaseToolBarVersion);
}

bool YSettingsStore::StoreMenuBarVersion()
{
    return WriteOwn(menuBarVersion, m_dwReleaseMenuBarVersion);
}

bool YSettingsStore::SetToolBarCustomized(bool customized)
{
    return WriteOwn(toolBarIsCustom, customized);
}

bool YSettingsStore::IsToolBarCustomized()
{
    return RunLocked([] { return m_pKey && IsFlagSet(*m_pKey, toolBarIsCustom); });
}

bool YSettingsStore::HasRecentCustomizeConfig()
{
    return HasFile(m_szAppConfigPath, GetIniFilename());
}

bool YSettingsStore::HasDeprecatedCustomizeConfigV2()
{
    return HasFile(m_szAppConfigPath, GetDeprecatedIniFilenameV2());
}

bool YSettingsStore::HasIncompatibleCustomizeConfig()
{
    if (HasRecentCustomizeConfig() || !HasDeprecatedCustomizeConfigV2()) {
        return false;
    }
    return RunLocked([] {
        const YProfileStore host;
        const YProfileKey old(host.GetRoot(), GetDeprecatedIniFilenameV2().c_str(),
                              YProfileKey::openExisting);
        return IsFlagSet(old, toolBarIsCustom);
    });
}

BOOL YSettingsStore::IsSystemAppDarkMode()
{
    return globalData.IsSystemAppDarkMode();
}
