#include "SystemErrorText.h"

#include <algorithm>
#include <cstring>
#include <string>

IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace {

constexpr UINT minimumCapacity = 128;  // a buffer below that would be all overhead

// The lengths of strings and counts: a byte, or this and a word, or that and a double word.
constexpr BYTE wordFollows = 0xFF;
constexpr WORD wideFollows = 0xFFFE;  // UTF-16; the length proper comes after it
constexpr WORD doubleWordFollows = 0xFFFF;

constexpr DWORD maximumStringLength = 0x3FFFFFFF;  // units; twice as many bytes are an int

DWORD GetSystemError(int cause)
{
    switch (cause) {
    case CArchiveException::none: return ERROR_SUCCESS;
    case CArchiveException::endOfFile: return ERROR_HANDLE_EOF;
    case CArchiveException::readOnly:
    case CArchiveException::writeOnly: return ERROR_ACCESS_DENIED;
    case CArchiveException::bufferOverflow: return ERROR_BUFFER_OVERFLOW;
    case CArchiveException::badIndex:
    case CArchiveException::badClass:
    case CArchiveException::badSchema: return ERROR_INVALID_DATA;
    default: return ERROR_GEN_FAILURE;
    }
}

void WriteStringLength(CArchive& archive, DWORD length)
{
    archive << wordFollows << wideFollows;
    if (length < wordFollows) {
        archive << static_cast<BYTE>(length);
    } else if (length < wideFollows) {
        archive << wordFollows << static_cast<WORD>(length);
    } else {
        archive << wordFollows << doubleWordFollows << length;
    }
}

}  // namespace

CArchiveException::CArchiveException(int cause, LPCTSTR lpszArchiveName)
    : m_cause(cause), m_strFileName(lpszArchiveName)
{}

BOOL CArchiveException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const
{
    CException::GetErrorMessage(lpszError, nMaxError, pnHelpContext);
    return DescribeSystemError(GetSystemError(m_cause), lpszError, nMaxError);
}

void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR lpszArchiveName)
{
    throw new CArchiveException(cause, lpszArchiveName);
}

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize, void* lpBuf)
    : file(pFile), mode(nMode), buffer(static_cast<BYTE*>(lpBuf))
{
    ASSERT(pFile != nullptr);
    capacity = nBufSize > 0 ? static_cast<UINT>(nBufSize) : 0;
    if (buffer == nullptr || capacity == 0) {
        capacity = std::max(capacity, minimumCapacity);
        ownBuffer.resize(capacity);
        buffer = ownBuffer.data();
    }
}

CArchive::~CArchive()
{
    if (file == nullptr || (mode & bNoFlushOnDelete) != 0) {
        return;
    }
    try {
        Close();
    } catch (CException* exception) {
        TRACE(L"The last bytes of an archive were not written.\n");
        exception->Delete();
    } catch (...) {  // from a file of the program's own
        TRACE(L"The last bytes of an archive were not written.\n");
    }
}

UINT CArchive::Read(void* lpBuf, UINT nMax)
{
    RequireOpen(true);
    BYTE* target = static_cast<BYTE*>(lpBuf);
    UINT wanted = nMax;
    while (wanted > 0) {
        if (cursor == filled) {
            if (wanted >= capacity) {
                return nMax - wanted + file->Read(target, wanted);
            }
            cursor = filled = 0;
            filled = file->Read(buffer, capacity);
            if (filled == 0) {
                break;
            }
        }
        const UINT count = std::min(wanted, filled - cursor);
        std::memcpy(target, buffer + cursor, count);
        cursor += count;
        target += count;
        wanted -= count;
    }
    return nMax - wanted;
}

void CArchive::Write(const void* lpBuf, UINT nMax)
{
    RequireOpen(false);
    if (nMax > capacity - cursor) {
        FlushStored();
    }
    if (nMax >= capacity) {
        file->Write(lpBuf, nMax);
    } else if (nMax > 0) {
        std::memcpy(buffer + cursor, lpBuf, nMax);
        cursor += nMax;
    }
}

void CArchive::Flush()
{
    RequireOpen(IsLoading() != FALSE);
    if (IsStoring()) {
        FlushStored();
        file->Flush();
        return;
    }
    const LONGLONG unread = filled - cursor;
    cursor = filled = 0;
    if (unread != 0) {
        file->Seek(-unread, CFile::current);
    }
}

void CArchive::Close()
{
    Flush();
    Disconnect();
}

void CArchive::Abort()
{
    Disconnect();
}

void CArchive::WriteCount(DWORD_PTR dwCount)
{
    if (dwCount < doubleWordFollows) {
        *this << static_cast<WORD>(dwCount);
    } else {
        *this << doubleWordFollows << static_cast<DWORD>(dwCount);
    }
}

DWORD_PTR CArchive::ReadCount()
{
    WORD word = 0;
    *this >> word;
    DWORD count = word;
    if (word == doubleWordFollows) {
        *this >> count;
    }
    RequireRest(count);
    return count;
}

void CArchive::RequireOpen(bool loading) const
{
    if (file == nullptr) {
        ::AfxThrowArchiveException(CArchiveException::genericException);
    }
    if (loading != (IsLoading() != FALSE)) {
        ::AfxThrowArchiveException(loading ? CArchiveException::writeOnly
                                           : CArchiveException::readOnly);
    }
}

void CArchive::ReadWhole(void* bytes, UINT count)
{
    if (Read(bytes, count) != count) {
        ::AfxThrowArchiveException(CArchiveException::endOfFile);
    }
}

void CArchive::RequireRest(ULONGLONG count) const
{
    const ULONGLONG length = file->GetLength();
    const ULONGLONG position = file->GetPosition();
    const ULONGLONG rest = filled - cursor + (length > position ? length - position : 0);
    if (count > rest) {
        ::AfxThrowArchiveException(CArchiveException::endOfFile);
    }
}

DWORD CArchive::ReadStringLength(bool& isWide)
{
    BYTE byte = 0;
    WORD word = 0;
    DWORD length = 0;
    isWide = false;
    *this >> byte;
    if (byte != wordFollows) {
        return byte;
    }
    *this >> word;
    if (word == wideFollows) {
        isWide = true;
        *this >> byte;
        if (byte != wordFollows) {
            return byte;
        }
        *this >> word;
    }
    if (word != doubleWordFollows) {
        return word;
    }
    *this >> length;
    return length;
}

void CArchive::FlushStored()
{
    // Emptied first: a write that fails is not tried again by the destructor.
    const UINT count = cursor;
    cursor = 0;
    if (count > 0) {
        file->Write(buffer, count);
    }
}

void CArchive::Disconnect() noexcept
{
    file = nullptr;
    cursor = filled = 0;
    storedNumbers.clear();
    loaded.clear();
}

CArchive& AFXAPI operator<<(CArchive& ar, const CString& str)
{
    const int length = str.GetLength();
    WriteStringLength(ar, static_cast<DWORD>(length));
    ar.Write(str.GetString(), static_cast<UINT>(length) * sizeof(wchar_t));
    return ar;
}

CArchive& AFXAPI operator>>(CArchive& ar, CString& str)
{
    bool isWide = false;
    const DWORD length = ar.ReadStringLength(isWide);
    if (length > maximumStringLength) {
        ::AfxThrowArchiveException(CArchiveException::endOfFile);
    }
    const UINT bytes = isWide ? length * sizeof(wchar_t) : length;
    ar.RequireRest(bytes);
    CString text;
    if (isWide) {
        ar.ReadWhole(text.GetBufferSetLength(static_cast<int>(length)), bytes);
    } else {
        std::string narrow(bytes, '\0');
        ar.ReadWhole(narrow.data(), bytes);
        text = CString(narrow.data(), static_cast<int>(bytes));
    }
    str = text;
    return ar;
}

CArchive& AFXAPI operator<<(CArchive& ar, const RECT& rect)
{
    return ar << rect.left << rect.top << rect.right << rect.bottom;
}

CArchive& AFXAPI operator>>(CArchive& ar, RECT& rect)
{
    return ar >> rect.left >> rect.top >> rect.right >> rect.bottom;
}

CArchive& AFXAPI operator<<(CArchive& ar, POINT point)
{
    return ar << point.x << point.y;
}

CArchive& AFXAPI operator>>(CArchive& ar, POINT& point)
{
    return ar >> point.x >> point.y;
}

CArchive& AFXAPI operator<<(CArchive& ar, SIZE size)
{
    return ar << size.cx << size.cy;
}

CArchive& AFXAPI operator>>(CArchive& ar, SIZE& size)
{
    return ar >> size.cx >> size.cy;
}
