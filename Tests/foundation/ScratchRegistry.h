// ScratchRegistry.h: a registry of the test's own.
#pragma once

#include <windows.h>

#include <string>

// While it lives, HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER of this process are two empty keys below
// Software\CommonUiTests\<process>, so that nothing of the user's is seen or touched.
class ScratchRegistry
{
public:
    ScratchRegistry() : path(tests + L"\\" + std::to_wstring(::GetCurrentProcessId()))
    {
        ::RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());  // of one that died with this number
        Redirect(HKEY_LOCAL_MACHINE, L"\\Machine");
        Redirect(HKEY_CURRENT_USER, L"\\User");  // last: the other lies below it
    }
    ~ScratchRegistry()
    {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, path.c_str());
        ::RegDeleteKeyW(HKEY_CURRENT_USER, tests.c_str());  // while no other process has one below
        // The system keeps the roots open once they are used; with the redirection they were closed.
        // Used again here, they are no change that a later test would be blamed for.
        HKEY key = nullptr;
        ::RegOpenKeyW(HKEY_LOCAL_MACHINE, L"Software", &key);
        ::RegCloseKey(key);
    }
    ScratchRegistry(const ScratchRegistry&) = delete;
    ScratchRegistry& operator=(const ScratchRegistry&) = delete;

    static void MakeKey(HKEY root, const std::wstring& key) { ::RegCloseKey(Create(root, key)); }
    // The bytes as they are; makes the key.
    static void Set(HKEY root, const std::wstring& key, const wchar_t* name, DWORD type,
                    const std::string& bytes)
    {
        ::RegSetKeyValueW(root, key.c_str(), name, type, bytes.data(),
                          static_cast<DWORD>(bytes.size()));
    }
    static void SetNumber(HKEY root, const std::wstring& key, const wchar_t* name, DWORD value)
    {
        ::RegSetKeyValueW(root, key.c_str(), name, REG_DWORD, &value, sizeof(value));
    }

private:
    static inline const std::wstring tests = L"Software\\CommonUiTests";

    static HKEY Create(HKEY root, const std::wstring& key)
    {
        HKEY created = nullptr;
        ::RegCreateKeyW(root, key.c_str(), &created);
        return created;
    }
    void Redirect(HKEY root, const wchar_t* name)
    {
        const HKEY key = Create(HKEY_CURRENT_USER, path + name);
        ::RegOverridePredefKey(root, key);
        ::RegCloseKey(key);
    }

    std::wstring path;
};
