#include "afx.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <iterator>
#include <new>

CObject* CRuntimeClass::CreateObject()
{
    if (m_pfnCreateObject == nullptr) {
        TRACE(L"%hs cannot be created by its name.\n", m_lpszClassName);
        return nullptr;
    }
    try {
        return m_pfnCreateObject();
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (CMemoryException* exception) {
        exception->Delete();
        return nullptr;
    }
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* pBaseClass) const
{
    for (const CRuntimeClass* type = this; type != nullptr; type = type->m_pBaseClass) {
        if (type == pBaseClass) {
            return TRUE;
        }
    }
    return FALSE;
}

CRuntimeClass* AFXAPI CObject::GetThisClass()
{
    static CRuntimeClass description{"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr,
                                     nullptr};
    return &description;
}

CRuntimeClass* CObject::GetRuntimeClass() const
{
    return GetThisClass();
}

BOOL CObject::IsKindOf(const CRuntimeClass* pClass) const
{
    return GetRuntimeClass()->IsDerivedFrom(pClass);
}

void CObject::AssertValid() const {}

CObject* AFXAPI AfxDynamicDownCast(CRuntimeClass* pClass, CObject* pObject)
{
    return pObject != nullptr && pObject->IsKindOf(pClass) ? pObject : nullptr;
}

void AFX_CDECL AfxTrace(LPCTSTR lpszFormat, ...)
{
    wchar_t text[1024];
    va_list args;
    va_start(args, lpszFormat);
    ::_vsnwprintf(text, std::size(text) - 1, lpszFormat, args);
    va_end(args);
    text[std::size(text) - 1] = L'\0';  // a text that is too long comes without
    ::OutputDebugStringW(text);
}

#ifdef _DEBUG

void CommonFramework::AssertFailed(const char* expression, const char* file, int line)
{
    char text[1024];
    std::snprintf(text, sizeof(text), "%s:%d: assertion failed: %s\n", file, line, expression);
    ::OutputDebugStringA(text);
    std::fputs(text, stderr);
    std::fflush(stderr);
    std::abort();
}

void AFXAPI AfxAssertValidObject(const CObject* pOb, LPCSTR lpszFileName, int nLine)
{
    if (pOb == nullptr) {
        CommonFramework::AssertFailed("the object is not null", lpszFileName, nLine);
    }
    pOb->AssertValid();
}

CObject* AFXAPI AfxStaticDownCast(CRuntimeClass* pClass, CObject* pObject)
{
    ASSERT(pObject == nullptr || pObject->IsKindOf(pClass));
    return pObject;
}

#endif
