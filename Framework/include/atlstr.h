// atlstr.h: the framework's string, UTF-16.
#pragma once

#include "afxver_.h"

#include <compare>
#include <cstdarg>

// A string value of the size of a pointer. Copies share one reference-counted block until one of
// them changes; different threads may hold copies. Lengths and positions count UTF-16 units.
// Comparing ends at the first NUL, everything else at the length. A change that finds no memory
// throws CMemoryException*, a position out of range CInvalidArgException*; the string then is what
// it was. Arguments may point into the string itself.
class COMMONFRAMEWORK_API CStringW
{
public:
    CStringW() noexcept;
    CStringW(const CStringW& strSrc) noexcept;
    CStringW(CStringW&& strSrc) noexcept;
    // Null: empty. A pointer made by MAKEINTRESOURCE: that string resource.
    CStringW(LPCWSTR lpsz);
    CStringW(LPCSTR lpsz);  // in the system's code page
    CStringW(LPCWSTR lpch, int nLength);
    CStringW(LPCSTR lpch, int nLength);
    explicit CStringW(wchar_t ch, int nLength = 1);
    ~CStringW();

    CStringW& operator=(const CStringW& strSrc) noexcept;
    CStringW& operator=(CStringW&& strSrc) noexcept;
    CStringW& operator=(LPCWSTR lpsz);
    CStringW& operator=(LPCSTR lpsz);
    CStringW& operator=(wchar_t ch);

    int GetLength() const noexcept;
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    void Empty() noexcept;
    wchar_t GetAt(int iChar) const;
    wchar_t operator[](int iChar) const { return GetAt(iChar); }
    void SetAt(int iChar, wchar_t ch);
    operator LPCWSTR() const noexcept { return characters; }
    LPCWSTR GetString() const noexcept { return characters; }
    void SetString(LPCWSTR lpsz);
    void SetString(LPCWSTR lpch, int nLength);

    void Append(LPCWSTR lpsz);
    void Append(LPCWSTR lpch, int nLength);
    void AppendChar(wchar_t ch) { Append(&ch, 1); }
    CStringW& operator+=(const CStringW& str);
    CStringW& operator+=(LPCWSTR lpsz);
    CStringW& operator+=(wchar_t ch);

    // Below, equal to or above 0, by the value of the units; without case by the system's table.
    int Compare(LPCWSTR lpsz) const noexcept;
    int CompareNoCase(LPCWSTR lpsz) const noexcept;

    // The position found, or -1.
    int Find(wchar_t ch, int iStart = 0) const noexcept;
    int Find(LPCWSTR lpszSub, int iStart = 0) const noexcept;
    int FindOneOf(LPCWSTR lpszCharSet) const noexcept;
    int ReverseFind(wchar_t ch) const noexcept;

    // Positions and counts are cut to the string.
    CStringW Left(int nCount) const;
    CStringW Mid(int iFirst) const;
    CStringW Mid(int iFirst, int nCount) const;
    CStringW Right(int nCount) const;

    CStringW& MakeUpper();
    CStringW& MakeLower();
    // Without argument: white space.
    CStringW& Trim();
    CStringW& Trim(wchar_t chTarget);
    CStringW& Trim(LPCWSTR lpszTargets);
    CStringW& TrimLeft();
    CStringW& TrimLeft(wchar_t chTarget);
    CStringW& TrimLeft(LPCWSTR lpszTargets);
    CStringW& TrimRight();
    CStringW& TrimRight(wchar_t chTarget);
    CStringW& TrimRight(LPCWSTR lpszTargets);

    // How many were replaced or removed.
    int Replace(wchar_t chOld, wchar_t chNew);
    int Replace(LPCWSTR lpszOld, LPCWSTR lpszNew);
    int Remove(wchar_t chRemove);

    // As wprintf does: %s takes a wide string, or a CString as it stands.
    template <class... Arguments>
    void Format(LPCWSTR lpszFormat, Arguments... arguments)
    {
        FormatArguments(lpszFormat, PrintfArgument(arguments)...);
    }
    template <class... Arguments>
    void Format(UINT nFormatID, Arguments... arguments)
    {
        FormatArguments(FormatResource(nFormatID), PrintfArgument(arguments)...);
    }
    template <class... Arguments>
    void AppendFormat(LPCWSTR lpszFormat, Arguments... arguments)
    {
        AppendFormatArguments(lpszFormat, PrintfArgument(arguments)...);
    }
    void FormatV(LPCWSTR lpszFormat, va_list args);
    void AppendFormatV(LPCWSTR lpszFormat, va_list args);

    // The string's own memory, to be written to until ReleaseBuffer; at least nMinBufferLength
    // units and a terminator. -1: up to the first NUL.
    LPWSTR GetBuffer() { return GetBuffer(GetLength()); }
    LPWSTR GetBuffer(int nMinBufferLength);
    LPWSTR GetBufferSetLength(int nLength);
    void ReleaseBuffer(int nNewLength = -1);

    // FALSE, and empty: there is no such string.
    BOOL LoadString(UINT nID);
    BOOL LoadString(HINSTANCE hInstance, UINT nID);

private:
    // A class with a constructor cannot go through an ellipsis here; its characters can.
    template <class Argument>
    static Argument PrintfArgument(const Argument& argument) noexcept
    {
        return argument;
    }
    static LPCWSTR PrintfArgument(const CStringW& argument) noexcept { return argument; }
    void FormatArguments(LPCWSTR lpszFormat, ...);
    void AppendFormatArguments(LPCWSTR lpszFormat, ...);
    static CStringW FormatResource(UINT nFormatID);

    void SetNarrowString(LPCSTR lpch, int nLength);
    // Makes the block this string's own, with room for so many units and the terminator.
    void MakeWritable(int capacity);
    void SetLength(int length) noexcept;

    LPWSTR characters;  // into a block that the source describes; never null
};

using CString = CStringW;

COMMONFRAMEWORK_API CStringW operator+(const CStringW& left, const CStringW& right);
COMMONFRAMEWORK_API CStringW operator+(const CStringW& left, LPCWSTR right);
COMMONFRAMEWORK_API CStringW operator+(LPCWSTR left, const CStringW& right);
COMMONFRAMEWORK_API CStringW operator+(const CStringW& left, wchar_t right);
COMMONFRAMEWORK_API CStringW operator+(wchar_t left, const CStringW& right);

inline bool operator==(const CStringW& left, const CStringW& right) noexcept
{
    return left.Compare(right) == 0;
}

inline bool operator==(const CStringW& left, LPCWSTR right) noexcept
{
    return left.Compare(right) == 0;
}

inline std::strong_ordering operator<=>(const CStringW& left, const CStringW& right) noexcept
{
    return left.Compare(right) <=> 0;
}

inline std::strong_ordering operator<=>(const CStringW& left, LPCWSTR right) noexcept
{
    return left.Compare(right) <=> 0;
}
