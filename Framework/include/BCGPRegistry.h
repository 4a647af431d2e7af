// BCGPRegistry.h: where the control library keeps its settings. Part of BCGCBProInc.h.
#pragma once

#include "afx.h"

// One key of the registry and its values, below HKEY_CURRENT_USER, for an administrator below
// HKEY_LOCAL_MACHINE. All operations return FALSE where there is no such key or value, a value is
// of another type, or the system refuses; outputs then are what they were (an object may be half
// loaded). No exception leaves Read or Write. A derived class may keep the settings elsewhere.
class COMMONFRAMEWORK_API CBCGPRegistry : public CObject
{
    DECLARE_DYNCREATE(CBCGPRegistry)

    explicit CBCGPRegistry(BOOL bAdmin = FALSE, BOOL bReadOnly = FALSE);
    ~CBCGPRegistry() override;

    // Paths start at the root key. A key that was open is closed first.
    virtual BOOL CreateKey(LPCTSTR pszPath);  // opens an existing one
    virtual BOOL Open(LPCTSTR pszPath);
    virtual void Close();

    virtual BOOL DeleteValue(LPCTSTR pszValue);
    // With all below it; a link among them goes, what it points to stays. bAdmin: the root.
    virtual BOOL DeleteKey(LPCTSTR pszPath, BOOL bAdmin = FALSE);

    virtual BOOL Write(LPCTSTR pszKey, int iVal);
    virtual BOOL Write(LPCTSTR pszKey, DWORD dwVal);
    virtual BOOL Write(LPCTSTR pszKey, LPCTSTR pszVal);
    virtual BOOL Write(LPCTSTR pszKey, const CRect& rect);
    virtual BOOL Write(LPCTSTR pszKey, LPBYTE pData, UINT nBytes);
    virtual BOOL Write(LPCTSTR pszKey, CObject& obj);
    virtual BOOL Write(LPCTSTR pszKey, CObject* pObj);

    virtual BOOL Read(LPCTSTR pszKey, int& iVal);
    virtual BOOL Read(LPCTSTR pszKey, DWORD& dwVal);
    virtual BOOL Read(LPCTSTR pszKey, CString& sVal);
    virtual BOOL Read(LPCTSTR pszKey, CRect& rect);
    // A block that the caller frees with delete[].
    virtual BOOL Read(LPCTSTR pszKey, BYTE** ppData, UINT* pBytes);
    virtual BOOL Read(LPCTSTR pszKey, CObject& obj);
    virtual BOOL Read(LPCTSTR pszKey, CObject*& pObj);  // into the object pointed to

protected:
    HKEY m_hKey = nullptr;  // null: none is open
    BOOL m_bAdmin;
    BOOL m_bReadOnly;  // nothing is written or deleted

private:
    friend class CBCGPRegistrySP;

    BOOL WriteValue(LPCTSTR name, DWORD type, const void* bytes, SIZE_T count);
};

// Makes the store that the control library uses: an object of the replacement class, if there is
// one, which lives as long as this.
class COMMONFRAMEWORK_API CBCGPRegistrySP
{
public:
    CBCGPRegistrySP() = default;
    ~CBCGPRegistrySP();
    CBCGPRegistrySP(const CBCGPRegistrySP&) = delete;
    CBCGPRegistrySP& operator=(const CBCGPRegistrySP&) = delete;

    // FALSE: not derived from CBCGPRegistry, or not creatable. Null: no replacement.
    static BOOL AFXAPI SetRuntimeClass(CRuntimeClass* pRTI);
    CBCGPRegistry& Create(BOOL bAdmin, BOOL bReadOnly);

private:
    CBCGPRegistry* registry = nullptr;  // owned
};
