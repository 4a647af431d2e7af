#include "BCGPRegistry.h"

#include <algorithm>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include <winternl.h>

// The system has it, its headers do not.
extern "C" NTSTATUS NTAPI NtDeleteKey(HANDLE KeyHandle);

IMPLEMENT_DYNCREATE(CBCGPRegistry, CObject)

namespace {

using Bytes = std::vector<BYTE>;

struct KeyCloser
{
    void operator()(HKEY key) const noexcept { ::RegCloseKey(key); }
};
using UniqueKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

CRuntimeClass* replacement = nullptr;  // set while the program starts

HKEY GetRoot(BOOL admin)
{
    return admin ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

// What the operation returns; FALSE for an exception.
template <class Operation>
BOOL Guard(Operation operation)
{
    try {
        return operation();
    } catch (CException* exception) {
        exception->Delete();
    } catch (const std::bad_alloc&) {
        TRACE(L"No memory for a value of the registry.\n");
    }
    return FALSE;
}

// The type and the bytes of one moment, though others may write the value meanwhile.
bool ReadValue(HKEY key, LPCTSTR name, DWORD& type, Bytes& bytes)
{
    if (key == nullptr) {
        return false;
    }
    DWORD count = 0;
    LSTATUS status = ::RegQueryValueExW(key, name, nullptr, &type, nullptr, &count);
    while (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
        bytes.resize(std::max<std::size_t>(count, 1));  // no room at all would ask for the size
        count = static_cast<DWORD>(bytes.size());
        status = ::RegQueryValueExW(key, name, nullptr, &type, bytes.data(), &count);
        if (status == ERROR_SUCCESS) {
            bytes.resize(count);
            return true;
        }
    }
    return false;
}

template <class Value>
BOOL ReadFixed(HKEY key, LPCTSTR name, DWORD type, Value& value)
{
    return Guard([&] {
        DWORD found = 0;
        Bytes bytes;
        if (!ReadValue(key, name, found, bytes) || found != type || bytes.size() != sizeof(value)) {
            return FALSE;
        }
        std::copy(bytes.begin(), bytes.end(), reinterpret_cast<BYTE*>(&value));
        return TRUE;
    });
}

// Others may have stored a string without an end, or half of its last character.
CString DecodeString(const Bytes& bytes)
{
    const wchar_t* const first = reinterpret_cast<const wchar_t*>(bytes.data());
    const wchar_t* const last = std::find(first, first + bytes.size() / sizeof(wchar_t), L'\0');
    return CString(first, static_cast<int>(last - first));
}

Bytes StoreObject(CObject& object)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    object.Serialize(archive);
    archive.Close();
    Bytes bytes(static_cast<std::size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

// Opened as a link, so that what a link points to is neither searched nor deleted. The system's
// own deleting of trees and keys by name follows links.
bool DeleteTree(HKEY parent, LPCTSTR name)
{
    HKEY opened = nullptr;
    if (::RegOpenKeyExW(parent, name, REG_OPTION_OPEN_LINK, KEY_READ | DELETE, &opened) !=
        ERROR_SUCCESS) {
        return false;
    }
    const UniqueKey key(opened);
    wchar_t child[256];
    for (;;) {
        DWORD length = 256;
        const LSTATUS status =
            ::RegEnumKeyExW(opened, 0, child, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) {
            return ::NtDeleteKey(opened) >= 0;
        }
        if (status != ERROR_SUCCESS || !DeleteTree(opened, child)) {
            return false;
        }
    }
}

// Without a name the whole root would be meant.
bool NamesKey(LPCTSTR path)
{
    return path != nullptr && path[::wcsspn(path, L"\\")] != L'\0';
}

}  // namespace

CBCGPRegistry::CBCGPRegistry(BOOL bAdmin, BOOL bReadOnly) : m_bAdmin(bAdmin), m_bReadOnly(bReadOnly)
{}

CBCGPRegistry::~CBCGPRegistry()
{
    CBCGPRegistry::Close();
}

BOOL CBCGPRegistry::CreateKey(LPCTSTR pszPath)
{
    if (m_bReadOnly) {
        return CBCGPRegistry::Open(pszPath);
    }
    CBCGPRegistry::Close();
    return pszPath != nullptr &&
           ::RegCreateKeyExW(GetRoot(m_bAdmin), pszPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                             KEY_READ | KEY_WRITE, nullptr, &m_hKey, nullptr) == ERROR_SUCCESS;
}

BOOL CBCGPRegistry::Open(LPCTSTR pszPath)
{
    CBCGPRegistry::Close();
    const REGSAM access = m_bReadOnly ? KEY_READ : KEY_READ | KEY_WRITE;
    return pszPath != nullptr &&
           ::RegOpenKeyExW(GetRoot(m_bAdmin), pszPath, 0, access, &m_hKey) == ERROR_SUCCESS;
}

void CBCGPRegistry::Close()
{
    if (m_hKey != nullptr) {
        ::RegCloseKey(m_hKey);
        m_hKey = nullptr;
    }
}

BOOL CBCGPRegistry::DeleteValue(LPCTSTR pszValue)
{
    return m_hKey != nullptr && !m_bReadOnly &&
           ::RegDeleteValueW(m_hKey, pszValue) == ERROR_SUCCESS;
}

BOOL CBCGPRegistry::DeleteKey(LPCTSTR pszPath, BOOL bAdmin)
{
    return !m_bReadOnly && NamesKey(pszPath) && DeleteTree(GetRoot(bAdmin), pszPath);
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, int iVal)
{
    return WriteValue(pszKey, REG_DWORD, &iVal, sizeof(iVal));
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, DWORD dwVal)
{
    return WriteValue(pszKey, REG_DWORD, &dwVal, sizeof(dwVal));
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, LPCTSTR pszVal)
{
    return pszVal != nullptr &&
           WriteValue(pszKey, REG_SZ, pszVal, (::wcslen(pszVal) + 1) * sizeof(wchar_t));
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, const CRect& rect)
{
    return WriteValue(pszKey, REG_BINARY, static_cast<const RECT*>(&rect), sizeof(RECT));
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, LPBYTE pData, UINT nBytes)
{
    return WriteValue(pszKey, REG_BINARY, pData, nBytes);
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, CObject& obj)
{
    return Guard([&] {
        const Bytes bytes = StoreObject(obj);
        return WriteValue(pszKey, REG_BINARY, bytes.data(), bytes.size());
    });
}

BOOL CBCGPRegistry::Write(LPCTSTR pszKey, CObject* pObj)
{
    return pObj != nullptr && Write(pszKey, *pObj);
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, int& iVal)
{
    return ReadFixed(m_hKey, pszKey, REG_DWORD, iVal);
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, DWORD& dwVal)
{
    return ReadFixed(m_hKey, pszKey, REG_DWORD, dwVal);
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, CString& sVal)
{
    return Guard([&] {
        DWORD type = 0;
        Bytes bytes;
        if (!ReadValue(m_hKey, pszKey, type, bytes) || (type != REG_SZ && type != REG_EXPAND_SZ)) {
            return FALSE;
        }
        sVal = DecodeString(bytes);
        return TRUE;
    });
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, CRect& rect)
{
    return ReadFixed<RECT>(m_hKey, pszKey, REG_BINARY, rect);
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, BYTE** ppData, UINT* pBytes)
{
    return Guard([&] {
        DWORD type = 0;
        Bytes bytes;
        if (!ReadValue(m_hKey, pszKey, type, bytes) || type != REG_BINARY || bytes.empty()) {
            return FALSE;
        }
        auto block = std::make_unique<BYTE[]>(bytes.size());
        std::copy(bytes.begin(), bytes.end(), block.get());
        *ppData = block.release();
        *pBytes = static_cast<UINT>(bytes.size());
        return TRUE;
    });
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, CObject& obj)
{
    return Guard([&] {
        DWORD type = 0;
        Bytes bytes;
        if (!ReadValue(m_hKey, pszKey, type, bytes) || type != REG_BINARY) {
            return FALSE;
        }
        CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
        CArchive archive(&file, CArchive::load);
        obj.Serialize(archive);
        return TRUE;
    });
}

BOOL CBCGPRegistry::Read(LPCTSTR pszKey, CObject*& pObj)
{
    return pObj != nullptr && Read(pszKey, *pObj);
}

BOOL CBCGPRegistry::WriteValue(LPCTSTR name, DWORD type, const void* bytes, SIZE_T count)
{
    return m_hKey != nullptr && !m_bReadOnly &&
           ::RegSetValueExW(m_hKey, name, 0, type, static_cast<const BYTE*>(bytes),
                            static_cast<DWORD>(count)) == ERROR_SUCCESS;
}

CBCGPRegistrySP::~CBCGPRegistrySP()
{
    delete registry;
}

BOOL AFXAPI CBCGPRegistrySP::SetRuntimeClass(CRuntimeClass* pRTI)
{
    if (pRTI != nullptr && (pRTI->m_pfnCreateObject == nullptr ||
                            !pRTI->IsDerivedFrom(RUNTIME_CLASS(CBCGPRegistry)))) {
        return FALSE;
    }
    replacement = pRTI;
    return TRUE;
}

CBCGPRegistry& CBCGPRegistrySP::Create(BOOL bAdmin, BOOL bReadOnly)
{
    ASSERT(registry == nullptr);
    CRuntimeClass* const type = replacement != nullptr ? replacement : RUNTIME_CLASS(CBCGPRegistry);
    registry = static_cast<CBCGPRegistry*>(type->CreateObject());
    if (registry == nullptr) {
        ::AfxThrowMemoryException();
    }
    registry->m_bAdmin = bAdmin;
    registry->m_bReadOnly = bReadOnly;
    return *registry;
}
