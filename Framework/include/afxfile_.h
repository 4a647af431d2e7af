// afxfile_.h: files, on disk and in memory. Part of afx.h.
#pragma once

#include "afx.h"

// What went wrong with a file: the framework's name for it, and the system's number.
class COMMONFRAMEWORK_API CFileException : public CException
{
    DECLARE_DYNAMIC(CFileException)

    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG lOsError = -1, LPCTSTR lpszFileName = nullptr);
    BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError,
                         PUINT pnHelpContext = nullptr) const override;

    static int AFXAPI OsErrorToException(LONG lOsError);
    [[noreturn]] static void AFXAPI ThrowOsError(LONG lOsError, LPCTSTR lpszFileName = nullptr);

    int m_cause;
    LONG m_lOsError;  // -1: none
    CString m_strFileName;
};

[[noreturn]] COMMONFRAMEWORK_API void AFXAPI AfxThrowFileException(int cause, LONG lOsError = -1,
                                                                   LPCTSTR lpszFileName = nullptr);

// A file of the system. Positions and lengths are bytes. What fails throws CFileException*.
class COMMONFRAMEWORK_API CFile : public CObject
{
    DECLARE_DYNAMIC(CFile)

    enum OpenFlags {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareExclusive = 0x0010,  // also without any of these four
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,  // an existing file is emptied ...
        modeNoTruncate = 0x2000  // ... unless this stands beside it
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    CFile() = default;
    CFile(LPCTSTR lpszFileName, UINT nOpenFlags);
    ~CFile() override;  // closes; a failure then is told to nobody

    // FALSE: not opened, and *pError says why.
    virtual BOOL Open(LPCTSTR lpszFileName, UINT nOpenFlags, CFileException* pError = nullptr);
    virtual ULONGLONG GetPosition() const;
    // Past the end is allowed, before the beginning is badSeek. The new position.
    virtual ULONGLONG Seek(LONGLONG lOff, UINT nFrom);
    virtual void SetLength(ULONGLONG dwNewLen);
    virtual ULONGLONG GetLength() const;
    virtual UINT Read(void* lpBuf, UINT nCount);  // how many came; fewer: the end
    virtual void Write(const void* lpBuf, UINT nCount);
    virtual void Flush();
    virtual void Close();
    virtual void Abort();  // closes whatever happens, throws nothing

    void SeekToBegin() { Seek(0, begin); }
    ULONGLONG SeekToEnd() { return Seek(0, end); }

    HANDLE m_hFile = INVALID_HANDLE_VALUE;

protected:
    CString m_strFileName;

private:
    void Require(BOOL success) const;  // else throws the system's last error
};

// A file in memory: a block of its own, or one lent to it. It grows by multiples of nGrowBytes;
// with 0 it cannot, and writing past its end is diskFull.
class COMMONFRAMEWORK_API CMemFile : public CFile
{
    DECLARE_DYNAMIC(CMemFile)

    explicit CMemFile(UINT nGrowBytes = 1024);
    CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    ~CMemFile() override;

    // The block becomes the file, its caller stays the owner. With nGrowBytes 0 its bytes are the
    // file's; else the file is empty and the block, which Realloc must be able to move, its room.
    void Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes = 0);
    // The block, which is the caller's from now on; the file is empty.
    BYTE* Detach();

    ULONGLONG GetPosition() const override { return position; }
    ULONGLONG Seek(LONGLONG lOff, UINT nFrom) override;
    void SetLength(ULONGLONG dwNewLen) override;
    ULONGLONG GetLength() const override { return length; }
    UINT Read(void* lpBuf, UINT nCount) override;
    void Write(const void* lpBuf, UINT nCount) override;
    void Flush() override {}
    void Close() override;
    void Abort() override { Close(); }

protected:
    // Memory for the file; null: there is none. Who overrides these closes in the own destructor.
    virtual BYTE* Alloc(SIZE_T nBytes);
    virtual BYTE* Realloc(BYTE* lpMem, SIZE_T nBytes);
    virtual BYTE* Memcpy(BYTE* lpMemTarget, const BYTE* lpMemSource, SIZE_T nBytes);
    virtual void Free(BYTE* lpMem);
    virtual void GrowFile(SIZE_T dwNewLen);  // makes room for so many bytes

private:
    void Extend(SIZE_T newLength);

    // length <= capacity; bytes below the length are always written. The position may lie past it.
    BYTE* block = nullptr;
    SIZE_T capacity = 0;
    SIZE_T length = 0;
    SIZE_T position = 0;
    UINT growBytes;
    bool ownsBlock = true;
};
