// afxarc_.h: archives, and classes whose objects go through them. Part of afx.h.
#pragma once

#include "afxfile_.h"

#include <unordered_map>
#include <vector>

class COMMONFRAMEWORK_API CArchiveException : public CException
{
    DECLARE_DYNAMIC(CArchiveException)

    enum {
        none,
        genericException,
        readOnly,  // storing to an archive that loads
        endOfFile,
        writeOnly,  // loading from an archive that stores
        badIndex,  // the bytes are no archive
        badClass,
        badSchema,
        bufferOverflow
    };

    explicit CArchiveException(int cause = none, LPCTSTR lpszArchiveName = nullptr);
    BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError,
                         PUINT pnHelpContext = nullptr) const override;

    int m_cause;
    CString m_strFileName;
};

[[noreturn]] COMMONFRAMEWORK_API void AFXAPI
AfxThrowArchiveException(int cause, LPCTSTR lpszArchiveName = nullptr);

// A one-way stream of values over a file, through a buffer. One thread. The file belongs to the
// archive until Close; then it is the caller's again, at the position that the archive has reached.
//
// What is loaded may be damaged or made to harm. Loading then ends in a CArchiveException*
// (endOfFile, badIndex, badClass, badSchema): no length is believed that the rest of the file could
// not hold, no class is made that was not asked for, and an object whose Serialize throws is
// deleted. Who owns what in a web of objects is their classes' affair: a reference to an object
// that was loaded before gives that object again.
class COMMONFRAMEWORK_API CArchive
{
public:
    enum Mode {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2  // the destructor drops what was not flushed
    };

    // lpBuf: nBufSize bytes that outlive the archive; null: it makes its own.
    CArchive(CFile* pFile, UINT nMode, int nBufSize = 4096, void* lpBuf = nullptr);
    ~CArchive();  // closes; who needs to know that the last bytes were written calls Close
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (mode & load) != 0; }
    BOOL IsStoring() const { return !IsLoading(); }
    CFile* GetFile() const { return file; }

    UINT Read(void* lpBuf, UINT nMax);  // how many came; fewer: the end
    void Write(const void* lpBuf, UINT nMax);
    void Flush();  // loading: the file goes back to the first byte that was not read
    void Close();
    void Abort();  // closes whatever happens, throws nothing

    CArchive& operator<<(BYTE by) { return Put(by); }
    CArchive& operator<<(WORD w) { return Put(w); }
    CArchive& operator<<(LONG l) { return Put(l); }
    CArchive& operator<<(DWORD dw) { return Put(dw); }
    CArchive& operator<<(LONGLONG ll) { return Put(ll); }
    CArchive& operator<<(ULONGLONG ull) { return Put(ull); }
    CArchive& operator<<(float f) { return Put(f); }
    CArchive& operator<<(double d) { return Put(d); }
    CArchive& operator<<(int i) { return Put(i); }
    CArchive& operator<<(unsigned u) { return Put(u); }
    CArchive& operator<<(short w) { return Put(w); }
    CArchive& operator<<(char ch) { return Put(ch); }
    CArchive& operator<<(wchar_t ch) { return Put(ch); }
    CArchive& operator<<(bool b) { return Put(static_cast<BYTE>(b)); }

    CArchive& operator>>(BYTE& by) { return Get(by); }
    CArchive& operator>>(WORD& w) { return Get(w); }
    CArchive& operator>>(LONG& l) { return Get(l); }
    CArchive& operator>>(DWORD& dw) { return Get(dw); }
    CArchive& operator>>(LONGLONG& ll) { return Get(ll); }
    CArchive& operator>>(ULONGLONG& ull) { return Get(ull); }
    CArchive& operator>>(float& f) { return Get(f); }
    CArchive& operator>>(double& d) { return Get(d); }
    CArchive& operator>>(int& i) { return Get(i); }
    CArchive& operator>>(unsigned& u) { return Get(u); }
    CArchive& operator>>(short& w) { return Get(w); }
    CArchive& operator>>(char& ch) { return Get(ch); }
    CArchive& operator>>(wchar_t& ch) { return Get(ch); }
    CArchive& operator>>(bool& b)
    {
        BYTE by = 0;
        Get(by);
        b = by != 0;
        return *this;
    }

    // The number of items that follow. Each takes a byte at least, so that a number that the rest
    // of the file cannot hold is endOfFile.
    void WriteCount(DWORD_PTR dwCount);
    DWORD_PTR ReadCount();

    // An object with its class. Each object and each class is stored once, then by its number. The
    // null pointer is an object, too.
    void WriteObject(const CObject* pOb);
    CObject* ReadObject(const CRuntimeClass* pClass);  // null: any class that can be serialised
    // Gives an object that is not stored or loaded here a number, so that others can refer to it.
    void MapObject(const CObject* pOb);
    void WriteClass(const CRuntimeClass* pClassRef);
    // pObTag receives the number where an object stands in place of a class; the class then is null.
    CRuntimeClass* ReadClass(const CRuntimeClass* pClassRefRequested = nullptr,
                             UINT* pSchema = nullptr, DWORD* pObTag = nullptr);
    // The version that the object being loaded was stored with; -1: not known, or asked before.
    UINT GetObjectSchema();
    void SetObjectSchema(UINT nSchema) { objectSchema = nSchema; }

private:
    friend COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, CString& str);

    // What a number in the stream stands for: a class with its stored version, or an object. Neither:
    // null, or an object whose loading failed.
    struct Loaded
    {
        CRuntimeClass* type = nullptr;
        UINT schema = 0;
        CObject* object = nullptr;
    };

    template <class Value>
    CArchive& Put(Value value)
    {
        Write(&value, sizeof(value));
        return *this;
    }
    template <class Value>
    CArchive& Get(Value& value)
    {
        Value whole{};
        ReadWhole(&whole, sizeof(whole));
        value = whole;
        return *this;
    }

    void RequireOpen(bool loading) const;
    void ReadWhole(void* bytes, UINT count);
    void RequireRest(ULONGLONG count) const;  // endOfFile: the file does not hold so many more
    DWORD ReadStringLength(bool& isWide);
    void FlushStored();
    void Disconnect() noexcept;

    bool WriteKnown(const void* stored, DWORD classFlag);
    void AddStored(const void* added);
    DWORD AddLoaded(const Loaded& added);
    CRuntimeClass* ReadNewClass(UINT& schema);
    const Loaded& GetLoadedClass(DWORD number) const;
    CObject* GetLoadedObject(DWORD number, const CRuntimeClass* requested) const;
    CObject* LoadNewObject(CRuntimeClass* type, UINT schema);

    CFile* file;  // null: closed
    UINT mode;
    std::vector<BYTE> ownBuffer;
    BYTE* buffer;
    UINT capacity;
    // Storing: [0, cursor) waits for the file. Loading: [cursor, filled) was read ahead.
    UINT cursor = 0;
    UINT filled = 0;

    // Numbers count objects and classes together, from 1; 0 is the null pointer.
    std::unordered_map<const void*, DWORD> storedNumbers;
    DWORD lastNumber = 0;
    std::vector<Loaded> loaded;
    UINT objectSchema = static_cast<UINT>(-1);
    UINT depth = 0;  // objects inside objects at work
};

// UTF-16 after a mark; loading also takes strings without it, in the system's code page.
COMMONFRAMEWORK_API CArchive& AFXAPI operator<<(CArchive& ar, const CString& str);
COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, CString& str);

COMMONFRAMEWORK_API CArchive& AFXAPI operator<<(CArchive& ar, const RECT& rect);
COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, RECT& rect);
COMMONFRAMEWORK_API CArchive& AFXAPI operator<<(CArchive& ar, POINT point);
COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, POINT& point);
COMMONFRAMEWORK_API CArchive& AFXAPI operator<<(CArchive& ar, SIZE size);
COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, SIZE& size);

COMMONFRAMEWORK_API CArchive& AFXAPI operator<<(CArchive& ar, const CObject* pOb);
COMMONFRAMEWORK_API CArchive& AFXAPI operator>>(CArchive& ar, CObject*& pOb);

// Makes a class known by its name for as long as its module is loaded.
struct COMMONFRAMEWORK_API AFX_CLASSINIT
{
    explicit AFX_CLASSINIT(CRuntimeClass* pNewClass);
    ~AFX_CLASSINIT();
    AFX_CLASSINIT(const AFX_CLASSINIT&) = delete;
    AFX_CLASSINIT& operator=(const AFX_CLASSINIT&) = delete;

    CRuntimeClass* description;
    AFX_CLASSINIT* next;
};

// Beside a class's version: objects of other versions are handed to Serialize, too, which asks
// GetObjectSchema for theirs. Without it they are badSchema.
#define VERSIONABLE_SCHEMA 0x80000000U

// A class whose objects pointers to it store and load; it overrides Serialize.
#define DECLARE_SERIAL(class_name) \
    DECLARE_DYNCREATE(class_name)  \
    friend CArchive& AFXAPI operator>>(CArchive& ar, class_name*& pOb);

#define IMPLEMENT_SERIAL(class_name, base_class_name, schema)                              \
    CObject* AFXAPI class_name::CreateObject()                                             \
    {                                                                                      \
        return new class_name;                                                             \
    }                                                                                      \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, schema, &class_name::CreateObject) \
    static const AFX_CLASSINIT classInit##class_name(RUNTIME_CLASS(class_name));           \
    CArchive& AFXAPI operator>>(CArchive& ar, class_name*& pOb)                            \
    {                                                                                      \
        pOb = static_cast<class_name*>(ar.ReadObject(RUNTIME_CLASS(class_name)));          \
        return ar;                                                                         \
    }
