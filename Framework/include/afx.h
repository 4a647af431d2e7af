// afx.h: the root of the framework: run-time classes, diagnostics, exceptions, value types, files,
// archives.
#pragma once

#include "afxver_.h"
#include "atlstr.h"
#include "atltypes.h"

class CArchive;
class CObject;

// What a program knows of a class at run time; RUNTIME_CLASS(name) gives its address.
struct COMMONFRAMEWORK_API CRuntimeClass
{
    LPCSTR m_lpszClassName;
    int m_nObjectSize;  // bytes
    UINT m_wSchema;  // version of what Serialize stores; 0xFFFF: not serialised
    CObject*(AFXAPI* m_pfnCreateObject)();  // null: the class is not dynamically creatable
    CRuntimeClass* m_pBaseClass;  // null for CObject

    // A new object that the caller deletes; null: not creatable, or no memory.
    CObject* CreateObject();
    // True for the class itself, too.
    BOOL IsDerivedFrom(const CRuntimeClass* pBaseClass) const;

    // Finds a class of any loaded module that objects can be loaded of (IMPLEMENT_SERIAL), else null.
    static CRuntimeClass* AFXAPI FromName(LPCSTR lpszClassName);
    // The version and the name. Null: no such class here.
    void Store(CArchive& ar) const;
    static CRuntimeClass* AFXAPI Load(CArchive& ar, UINT* pwSchemaNum);
};

// The root class: dies through its base, knows its class, is never copied.
class COMMONFRAMEWORK_API CObject
{
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    static CRuntimeClass* AFXAPI GetThisClass();
    virtual CRuntimeClass* GetRuntimeClass() const;
    BOOL IsKindOf(const CRuntimeClass* pClass) const;
    BOOL IsSerializable() const;
    // Stores the object's state or loads it; derived classes call their base first.
    virtual void Serialize(CArchive& ar);
    // Asserts the object's invariants; derived classes call their base first.
    virtual void AssertValid() const;

protected:
    CObject() = default;
};

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())

// In the class. Leaves the access at public.
#define DECLARE_DYNAMIC(class_name)              \
public:                                          \
    static CRuntimeClass* AFXAPI GetThisClass(); \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* AFXAPI CreateObject();

// In a source, once. The description is made at first use: a base class may live in another DLL,
// whose addresses are no constants of this one. The base may be a template's instance, or any class
// that inherits a description.
#define IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, schema, create_object)               \
    CRuntimeClass* AFXAPI class_name::GetThisClass()                                             \
    {                                                                                            \
        static CRuntimeClass description{#class_name, static_cast<int>(sizeof(class_name)),      \
                                         schema, create_object, RUNTIME_CLASS(base_class_name)}; \
        return &description;                                                                     \
    }                                                                                            \
    CRuntimeClass* class_name::GetRuntimeClass() const                                           \
    {                                                                                            \
        return GetThisClass();                                                                   \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name) \
    CObject* AFXAPI class_name::CreateObject()           \
    {                                                    \
        return new class_name;                           \
    }                                                    \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, &class_name::CreateObject)

// The object itself where it is of the class, else null; null for null.
COMMONFRAMEWORK_API CObject* AFXAPI AfxDynamicDownCast(CRuntimeClass* pClass, CObject* pObject);
#define DYNAMIC_DOWNCAST(class_name, object) \
    (static_cast<class_name*>(::AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))

// Diagnostics: in a debug build (_DEBUG) a failed assertion says what and where on the standard
// error stream and to the debugger, and aborts; in a release build they cost nothing, except that
// VERIFY still evaluates.
#ifdef _DEBUG

namespace CommonFramework {

[[noreturn]] COMMONFRAMEWORK_API void AssertFailed(const char* expression, const char* file,
                                                   int line);

}  // namespace CommonFramework

COMMONFRAMEWORK_API void AFXAPI AfxAssertValidObject(const CObject* pOb, LPCSTR lpszFileName,
                                                     int nLine);
// The object, which must be null or of the class.
COMMONFRAMEWORK_API CObject* AFXAPI AfxStaticDownCast(CRuntimeClass* pClass, CObject* pObject);

#define ASSERT(f)                                \
    (static_cast<bool>(f) ? static_cast<void>(0) \
                          : ::CommonFramework::AssertFailed(#f, __FILE__, __LINE__))
#define VERIFY(f) ASSERT(f)
#define ASSERT_VALID(pOb) (::AfxAssertValidObject(pOb, __FILE__, __LINE__))
#define TRACE ::AfxTrace
#define STATIC_DOWNCAST(class_name, object) \
    (static_cast<class_name*>(::AfxStaticDownCast(RUNTIME_CLASS(class_name), object)))

#else

#define ASSERT(f) (static_cast<void>(0))
#define VERIFY(f) (static_cast<void>(f))
#define ASSERT_VALID(pOb) (static_cast<void>(0))
#define TRACE(...) (static_cast<void>(0))
#define STATIC_DOWNCAST(class_name, object) (static_cast<class_name*>(object))

#endif

#define ASSERT_KINDOF(class_name, object) ASSERT((object)->IsKindOf(RUNTIME_CLASS(class_name)))

// Formatted as by wprintf, at most 1,023 characters, to the debugger.
COMMONFRAMEWORK_API void AFX_CDECL AfxTrace(LPCTSTR lpszFormat, ...);

// Exceptions are thrown as pointers; who catches one for good calls Delete.
class COMMONFRAMEWORK_API CException : public CObject
{
    DECLARE_DYNAMIC(CException)

    explicit CException(BOOL bAutoDelete = TRUE) : m_bAutoDelete(bAutoDelete) {}

    // Deletes an object made with new, leaves any other.
    void Delete();
    // A NUL-terminated text for the user, cut to nMaxError characters; FALSE: there is none.
    virtual BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError,
                                 PUINT pnHelpContext = nullptr) const;

    BOOL m_bAutoDelete;
};

// The exceptions of the framework itself; the text is a string of the program's, or the system's
// own words in the user's language.
class COMMONFRAMEWORK_API CSimpleException : public CException
{
    DECLARE_DYNAMIC(CSimpleException)

    CSimpleException(BOOL bAutoDelete, UINT nResourceID, DWORD error);
    BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError,
                         PUINT pnHelpContext = nullptr) const override;

private:
    UINT resourceId;  // 0: none
    DWORD systemError;
};

class COMMONFRAMEWORK_API CMemoryException : public CSimpleException
{
    DECLARE_DYNAMIC(CMemoryException)

    explicit CMemoryException(BOOL bAutoDelete = TRUE, UINT nResourceID = 0);
};

class COMMONFRAMEWORK_API CResourceException : public CSimpleException
{
    DECLARE_DYNAMIC(CResourceException)

    explicit CResourceException(BOOL bAutoDelete = TRUE, UINT nResourceID = 0);
};

class COMMONFRAMEWORK_API CUserException : public CSimpleException
{
    DECLARE_DYNAMIC(CUserException)

    explicit CUserException(BOOL bAutoDelete = TRUE, UINT nResourceID = 0);
};

class COMMONFRAMEWORK_API CNotSupportedException : public CSimpleException
{
    DECLARE_DYNAMIC(CNotSupportedException)

    explicit CNotSupportedException(BOOL bAutoDelete = TRUE, UINT nResourceID = 0);
};

class COMMONFRAMEWORK_API CInvalidArgException : public CSimpleException
{
    DECLARE_DYNAMIC(CInvalidArgException)

    explicit CInvalidArgException(BOOL bAutoDelete = TRUE, UINT nResourceID = 0);
};

// Each throws a pointer to an object that exists once and needs no memory.
[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowMemoryException();
[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowResourceException();
[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowUserException();
[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowNotSupportedException();
[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowInvalidArgException();

#include "afxarc_.h"
#include "afxfile_.h"
