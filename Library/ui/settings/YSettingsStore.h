// YSettingsStore.h: keeps the control library's workspace among the host's own settings.
#pragma once

#include "CommonUiApi.h"
#include "YProfileKey.h"
#include "YUnicodeString.h"

#include <BCGCBProInc.h>

class YProfileStore;

// The control library saves tool bars, menus and docking through an object of a class that the host
// names: CBCGPRegistrySP::SetRuntimeClass(RUNTIME_CLASS(YSettingsStore)). This one sends all of it
// into one key of the host's profile, "file mode" below, and only the key that tells dark from
// light to the registry, "registry mode".
//
// In the key a value is named SECTION-NAME, where the section is what follows the last backslash
// of the path that was opened. Numbers are DWORDs, strings and rectangles (YRect's text) strings,
// blocks and objects binary values.
//
// Any thread: one lock of the process is held for the whole of every operation below, registry and
// host's profile included; an object's Serialize may come back here. Whoever holds a lock that the
// host's profile takes, or its ISynchObject, must stay away. A single object belongs to one thread
// at a time. No exception leaves a read or a write.
class COMMONUI_API YSettingsStore : public CBCGPRegistry
{
    DECLARE_DYNCREATE(YSettingsStore)

    static const wchar_t INI_FILE_POSTFIX[];
    static const wchar_t INI_FILE_POSTFIX_DEPRECATED_V2[];

    YSettingsStore();
    ~YSettingsStore() override;

    // File mode: once for an object, FALSE after that. TRUE says nothing of the profile: where the
    // host has none, or it cannot be opened, reading and writing tell.
    BOOL CreateKey(LPCTSTR pszPath) override;
    // The key of dark and light, spelt exactly so, is opened in the registry and the object stays
    // in registry mode. Any other path: as CreateKey.
    BOOL Open(LPCTSTR pszPath) override;
    void Close() override;  // file mode: nothing, the section stays

    // FALSE in file mode, and nothing is deleted: the control library deletes its keys before it
    // writes them anew, and what fails in between would leave the user without a workspace.
    BOOL DeleteValue(LPCTSTR pszValue) override;
    BOOL DeleteKey(LPCTSTR pszPath, BOOL bAdmin = FALSE) override;

    // FALSE: the value was not stored. The host's profile knows why: m_pKey->GetLastResult().
    BOOL Write(LPCTSTR pszKey, int iVal) override;
    BOOL Write(LPCTSTR pszKey, DWORD dwVal) override;
    BOOL Write(LPCTSTR pszKey, LPCTSTR pszVal) override;
    BOOL Write(LPCTSTR pszKey, const CRect& rect) override;
    BOOL Write(LPCTSTR pszKey, LPBYTE pData, UINT nBytes) override;
    BOOL Write(LPCTSTR pszKey, CObject& obj) override;
    BOOL Write(LPCTSTR pszKey, CObject* pObj) override;

    // FALSE: there is no such value, or it is damaged or of another kind; the output is as it was
    // (but an object may be half loaded).
    BOOL Read(LPCTSTR pszKey, int& iVal) override;
    BOOL Read(LPCTSTR pszKey, DWORD& dwVal) override;
    BOOL Read(LPCTSTR pszKey, CString& sVal) override;
    BOOL Read(LPCTSTR pszKey, CRect& rect) override;
    // A block that the caller frees with delete[]. An empty one is none.
    BOOL Read(LPCTSTR pszKey, BYTE** ppData, UINT* pBytes) override;
    BOOL Read(LPCTSTR pszKey, CObject& obj) override;
    BOOL Read(LPCTSTR pszKey, CObject*& pObj) override;

    // At the start, before any other thread comes here. The name is short and begins the name of
    // the key; the folder holds the files that the Has...Config functions look for.
    static void SetAppName(LPCTSTR name);
    static void SetAppConfigPath(LPCTSTR path);
    static YUnicodeString GetIniFilename();
    static YUnicodeString GetDeprecatedIniFilenameV2();
    static YUnicodeString GetOtherIniFilename();  // of the product beside this one

    // Between the key and the parent's child of the same name; what is there and not copied over
    // stays. Save also flushes the child. False: something was not copied; a missing child is
    // nothing to load.
    static bool Load(const YProfileKey& parent);
    static bool Save(const YProfileKey& parent);
    // Gives the host's profile back. At the host's end, while its profile still works.
    static void CleanUp();

    // Always true; what was not stored leaves its output alone.
    static bool LoadFrameworkVersion(int& major, int& minor);
    static bool StoreFrameworkVersion(int major, int minor);

    // The versions that this release of the host ships, and storing them once the user has taken
    // the new bars. False: not stored. The key must be open.
    static void SetToolBarVersion(DWORD version);
    static void SetMenuBarVersion(DWORD version);
    static bool StoreToolBarVersion();
    static bool StoreMenuBarVersion();
    static bool SetToolBarCustomized(bool customized);
    static bool IsToolBarCustomized();  // false, too, while the key is not open
    static int FindToolBarsToLoad() { return m_iToolBarsToLoad; }

    // Whether the configuration folder holds the file of the key, or that of two releases ago.
    static bool HasRecentCustomizeConfig();
    static bool HasDeprecatedCustomizeConfigV2();
    // There is the old file only, and the user has changed the tool bars in it.
    static bool HasIncompatibleCustomizeConfig();

    // The user wants dark applications, by what the control library knows.
    static BOOL IsSystemAppDarkMode();

    // Opened by the first CreateKey, Load or Save, and again where that failed. Whoever uses it
    // directly must keep other threads out.
    static YProfileKey* m_pKey;
    static YUnicodeString m_szAppName;
    static YUnicodeString m_szAppConfigPath;
    // Both as CreateKey found them when it opened the key. Load and Save leave them alone: they
    // move values, and the control library has not asked for anything yet.
    static DWORD m_dwLoadedToolBarVersion;  // 0: none
    static int m_iToolBarsToLoad;  // 4: the key was opened; 2: the tool bars are customised
    static DWORD m_dwReleaseToolBarVersion;
    static DWORD m_dwReleaseMenuBarVersion;

private:
    static YProfileKey* OpenKey();
    static void ReadToolBarState();
    static bool WriteOwn(LPCTSTR name, DWORD value);

    YUnicodeString GetValueName(LPCTSTR name) const;
    template <class... Value>
    BOOL WriteValue(LPCTSTR name, Value&... value);
    template <class... Value>
    BOOL ReadValue(LPCTSTR name, Value&... value);

    // The profile that m_pKey is a part of. Both stay when the process ends without CleanUp: the
    // host's code that they would call has ended before.
    static YProfileStore* profile;

    YUnicodeString currentSectionName;
    bool registryMode = false;
};
