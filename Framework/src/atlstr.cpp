#include "atlstr.h"

#include "afx.h"
#include "afxwin.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdio>
#include <cwchar>
#include <cwctype>
#include <new>
#include <string_view>
#include <utility>

namespace {

// Stands before the characters of every string.
struct Block
{
    std::atomic<long> references;
    int length;
    int capacity;  // without the terminator
};

// The text of every empty string: shared, never counted, never freed.
struct EmptyBlock
{
    Block block;
    wchar_t text[1];
};

constinit EmptyBlock emptyBlock{{{1}, 0, 0}, {L'\0'}};

// Far below what an int counts, so that sums of two lengths stay in range.
constexpr int maxCapacity = INT_MAX / 4;

Block& BlockOf(LPWSTR characters) noexcept
{
    return reinterpret_cast<Block*>(characters)[-1];
}

bool IsShared(LPWSTR characters) noexcept
{
    return characters == emptyBlock.text ||
           BlockOf(characters).references.load(std::memory_order_acquire) != 1;
}

LPWSTR AddReference(LPWSTR characters) noexcept
{
    if (characters != emptyBlock.text) {
        BlockOf(characters).references.fetch_add(1, std::memory_order_relaxed);
    }
    return characters;
}

void DropReference(LPWSTR characters) noexcept
{
    if (characters == emptyBlock.text) {
        return;
    }
    Block& block = BlockOf(characters);
    if (block.references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        block.~Block();
        ::operator delete(&block);
    }
}

LPWSTR AllocateText(int capacity)
{
    if (capacity > maxCapacity) {
        AfxThrowMemoryException();
    }
    const std::size_t bytes = sizeof(Block) + (capacity + 1) * sizeof(wchar_t);
    void* memory = ::operator new(bytes, std::nothrow);
    if (memory == nullptr) {
        AfxThrowMemoryException();
    }
    Block* block = new (memory) Block{{1}, 0, capacity};
    LPWSTR text = reinterpret_cast<LPWSTR>(block + 1);
    text[0] = L'\0';
    return text;
}

void CheckArgument(bool right)
{
    if (!right) {
        AfxThrowInvalidArgException();
    }
}

LPCWSTR OrEmpty(LPCWSTR text) noexcept
{
    return text == nullptr ? L"" : text;
}

int LengthOf(LPCWSTR text)
{
    const std::size_t length = std::wcslen(OrEmpty(text));
    if (length > static_cast<std::size_t>(maxCapacity)) {
        AfxThrowMemoryException();
    }
    return static_cast<int>(length);
}

std::wstring_view ViewOf(const CStringW& string) noexcept
{
    return {string.GetString(), static_cast<std::size_t>(string.GetLength())};
}

int PositionOf(std::size_t found) noexcept
{
    return found == std::wstring_view::npos ? -1 : static_cast<int>(found);
}

CStringW Concatenate(std::wstring_view left, std::wstring_view right)
{
    CStringW result;
    const std::size_t length = left.size() + right.size();
    LPWSTR text = result.GetBuffer(static_cast<int>(length));
    std::wmemcpy(text, left.data(), left.size());
    std::wmemcpy(text + left.size(), right.data(), right.size());
    result.ReleaseBuffer(static_cast<int>(length));
    return result;
}

template <class IsTarget>
void CutLeft(CStringW& string, IsTarget isTarget)
{
    const std::wstring_view text = ViewOf(string);
    const auto kept = std::find_if_not(text.begin(), text.end(), isTarget);
    if (kept != text.begin()) {
        string = string.Mid(static_cast<int>(kept - text.begin()));
    }
}

template <class IsTarget>
void CutRight(CStringW& string, IsTarget isTarget)
{
    const std::wstring_view text = ViewOf(string);
    const auto cut = std::find_if_not(text.rbegin(), text.rend(), isTarget);
    if (cut != text.rbegin()) {
        string = string.Left(static_cast<int>(text.rend() - cut));
    }
}

bool IsSpace(wchar_t ch)
{
    return std::iswspace(ch) != 0;
}

auto IsOneOf(LPCWSTR targets)
{
    return [set = std::wstring_view(OrEmpty(targets))](wchar_t ch) {
        return set.find(ch) != std::wstring_view::npos;
    };
}

int CountOf(std::wstring_view text, std::wstring_view part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::wstring_view::npos;
         at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

}  // namespace

CStringW::CStringW() noexcept : characters(emptyBlock.text) {}

CStringW::CStringW(const CStringW& strSrc) noexcept : characters(AddReference(strSrc.characters)) {}

CStringW::CStringW(CStringW&& strSrc) noexcept
    : characters(std::exchange(strSrc.characters, emptyBlock.text))
{}

CStringW::CStringW(LPCWSTR lpsz) : CStringW()
{
    if (lpsz != nullptr && IS_INTRESOURCE(lpsz)) {
        LoadString(LOWORD(reinterpret_cast<ULONG_PTR>(lpsz)));
    } else {
        SetString(lpsz);
    }
}

CStringW::CStringW(LPCSTR lpsz) : CStringW()
{
    SetNarrowString(lpsz, lpsz == nullptr ? 0 : ::lstrlenA(lpsz));
}

CStringW::CStringW(LPCWSTR lpch, int nLength) : CStringW()
{
    SetString(lpch, nLength);
}

CStringW::CStringW(LPCSTR lpch, int nLength) : CStringW()
{
    SetNarrowString(lpch, nLength);
}

CStringW::CStringW(wchar_t ch, int nLength) : CStringW()
{
    if (nLength > 0) {
        std::wmemset(GetBuffer(nLength), ch, nLength);
        SetLength(nLength);
    }
}

CStringW::~CStringW()
{
    DropReference(characters);
}

CStringW& CStringW::operator=(const CStringW& strSrc) noexcept
{
    LPWSTR shared = AddReference(strSrc.characters);  // first: it may be this string
    DropReference(std::exchange(characters, shared));
    return *this;
}

CStringW& CStringW::operator=(CStringW&& strSrc) noexcept
{
    std::swap(characters, strSrc.characters);
    return *this;
}

CStringW& CStringW::operator=(LPCWSTR lpsz)
{
    SetString(lpsz);
    return *this;
}

CStringW& CStringW::operator=(LPCSTR lpsz)
{
    return *this = CStringW(lpsz);
}

CStringW& CStringW::operator=(wchar_t ch)
{
    SetString(&ch, 1);
    return *this;
}

int CStringW::GetLength() const noexcept
{
    return BlockOf(characters).length;
}

void CStringW::Empty() noexcept
{
    DropReference(std::exchange(characters, emptyBlock.text));
}

wchar_t CStringW::GetAt(int iChar) const
{
    CheckArgument(iChar >= 0 && iChar <= GetLength());
    return characters[iChar];
}

void CStringW::SetAt(int iChar, wchar_t ch)
{
    CheckArgument(iChar >= 0 && iChar < GetLength());
    MakeWritable(GetLength());
    characters[iChar] = ch;
}

void CStringW::SetString(LPCWSTR lpsz)
{
    SetString(lpsz, LengthOf(lpsz));
}

void CStringW::SetString(LPCWSTR lpch, int nLength)
{
    CheckArgument(nLength >= 0 && (lpch != nullptr || nLength == 0));
    if (nLength == 0) {
        Empty();
        return;
    }
    // The old block goes last: the source may lie in it.
    LPWSTR target = characters;
    if (IsShared(characters) || BlockOf(characters).capacity < nLength) {
        target = AllocateText(nLength);
    }
    std::wmemmove(target, lpch, nLength);
    if (target != characters) {
        DropReference(std::exchange(characters, target));
    }
    SetLength(nLength);
}

void CStringW::Append(LPCWSTR lpsz)
{
    Append(lpsz, LengthOf(lpsz));
}

void CStringW::Append(LPCWSTR lpch, int nLength)
{
    CheckArgument(nLength >= 0 && (lpch != nullptr || nLength == 0));
    if (nLength == 0) {
        return;
    }
    if (nLength > maxCapacity) {
        AfxThrowMemoryException();
    }
    const int oldLength = GetLength();
    const int length = oldLength + nLength;
    LPWSTR target = characters;
    if (IsShared(characters) || BlockOf(characters).capacity < length) {
        target = AllocateText(std::max(length, std::min(length + length / 2, maxCapacity)));
        std::wmemcpy(target, characters, oldLength);
    }
    std::wmemmove(target + oldLength, lpch, nLength);
    if (target != characters) {
        DropReference(std::exchange(characters, target));
    }
    SetLength(length);
}

CStringW& CStringW::operator+=(const CStringW& str)
{
    Append(str.characters, str.GetLength());
    return *this;
}

CStringW& CStringW::operator+=(LPCWSTR lpsz)
{
    Append(lpsz);
    return *this;
}

CStringW& CStringW::operator+=(wchar_t ch)
{
    AppendChar(ch);
    return *this;
}

int CStringW::Compare(LPCWSTR lpsz) const noexcept
{
    return std::wcscmp(characters, OrEmpty(lpsz));
}

int CStringW::CompareNoCase(LPCWSTR lpsz) const noexcept
{
    return ::CompareStringOrdinal(characters, -1, OrEmpty(lpsz), -1, TRUE) - CSTR_EQUAL;
}

int CStringW::Find(wchar_t ch, int iStart) const noexcept
{
    return iStart < 0 ? -1 : PositionOf(ViewOf(*this).find(ch, iStart));
}

int CStringW::Find(LPCWSTR lpszSub, int iStart) const noexcept
{
    return iStart < 0 || lpszSub == nullptr ? -1 : PositionOf(ViewOf(*this).find(lpszSub, iStart));
}

int CStringW::FindOneOf(LPCWSTR lpszCharSet) const noexcept
{
    return PositionOf(ViewOf(*this).find_first_of(OrEmpty(lpszCharSet)));
}

int CStringW::ReverseFind(wchar_t ch) const noexcept
{
    return PositionOf(ViewOf(*this).rfind(ch));
}

CStringW CStringW::Left(int nCount) const
{
    return Mid(0, nCount);
}

CStringW CStringW::Mid(int iFirst) const
{
    return Mid(iFirst, GetLength());
}

CStringW CStringW::Mid(int iFirst, int nCount) const
{
    const int first = std::clamp(iFirst, 0, GetLength());
    const int count = std::clamp(nCount, 0, GetLength() - first);
    return count == GetLength() ? *this : CStringW(characters + first, count);
}

CStringW CStringW::Right(int nCount) const
{
    const int count = std::clamp(nCount, 0, GetLength());
    return Mid(GetLength() - count, count);
}

CStringW& CStringW::MakeUpper()
{
    MakeWritable(GetLength());
    ::CharUpperBuffW(characters, GetLength());
    return *this;
}

CStringW& CStringW::MakeLower()
{
    MakeWritable(GetLength());
    ::CharLowerBuffW(characters, GetLength());
    return *this;
}

CStringW& CStringW::Trim()
{
    return TrimRight().TrimLeft();
}

CStringW& CStringW::Trim(wchar_t chTarget)
{
    return TrimRight(chTarget).TrimLeft(chTarget);
}

CStringW& CStringW::Trim(LPCWSTR lpszTargets)
{
    const CStringW targets(lpszTargets);  // they may be part of what is cut first
    return TrimRight(targets).TrimLeft(targets);
}

CStringW& CStringW::TrimLeft()
{
    CutLeft(*this, IsSpace);
    return *this;
}

CStringW& CStringW::TrimLeft(wchar_t chTarget)
{
    CutLeft(*this, [chTarget](wchar_t ch) { return ch == chTarget; });
    return *this;
}

CStringW& CStringW::TrimLeft(LPCWSTR lpszTargets)
{
    CutLeft(*this, IsOneOf(lpszTargets));
    return *this;
}

CStringW& CStringW::TrimRight()
{
    CutRight(*this, IsSpace);
    return *this;
}

CStringW& CStringW::TrimRight(wchar_t chTarget)
{
    CutRight(*this, [chTarget](wchar_t ch) { return ch == chTarget; });
    return *this;
}

CStringW& CStringW::TrimRight(LPCWSTR lpszTargets)
{
    CutRight(*this, IsOneOf(lpszTargets));
    return *this;
}

int CStringW::Replace(wchar_t chOld, wchar_t chNew)
{
    const std::wstring_view text = ViewOf(*this);
    const int count = static_cast<int>(std::count(text.begin(), text.end(), chOld));
    if (count != 0) {
        MakeWritable(GetLength());
        std::replace(characters, characters + GetLength(), chOld, chNew);
    }
    return count;
}

int CStringW::Replace(LPCWSTR lpszOld, LPCWSTR lpszNew)
{
    const std::wstring_view text = ViewOf(*this);
    const std::wstring_view part = OrEmpty(lpszOld);
    const std::wstring_view replacement = OrEmpty(lpszNew);
    const int count = part.empty() ? 0 : CountOf(text, part);
    if (count == 0) {
        return 0;
    }
    const long long length =
        GetLength() + static_cast<long long>(count) *
                          (static_cast<int>(replacement.size()) - static_cast<int>(part.size()));
    if (length > maxCapacity) {
        AfxThrowMemoryException();
    }
    CStringW result;
    result.MakeWritable(static_cast<int>(length));
    std::size_t copied = 0;
    for (int i = 0; i < count; ++i) {
        const std::size_t at = text.find(part, copied);
        result.Append(text.data() + copied, static_cast<int>(at - copied));
        result.Append(replacement.data(), static_cast<int>(replacement.size()));
        copied = at + part.size();
    }
    result.Append(text.data() + copied, static_cast<int>(text.size() - copied));
    *this = std::move(result);
    return count;
}

int CStringW::Remove(wchar_t chRemove)
{
    if (ViewOf(*this).find(chRemove) == std::wstring_view::npos) {
        return 0;
    }
    const int length = GetLength();
    MakeWritable(length);
    const int kept =
        static_cast<int>(std::remove(characters, characters + length, chRemove) - characters);
    SetLength(kept);
    return length - kept;
}

void CStringW::FormatV(LPCWSTR lpszFormat, va_list args)
{
    CheckArgument(lpszFormat != nullptr);
    // The C run-time's own functions: the compiler's replacements read %s as narrow text.
    va_list counted;
    va_copy(counted, args);
    const int length = ::_vscwprintf(lpszFormat, counted);
    va_end(counted);
    CheckArgument(length >= 0);
    CStringW result;
    result.MakeWritable(length);
    ::_vsnwprintf(result.characters, length + 1, lpszFormat, args);
    result.SetLength(length);
    *this = std::move(result);
}

void CStringW::AppendFormatV(LPCWSTR lpszFormat, va_list args)
{
    CStringW text;
    text.FormatV(lpszFormat, args);
    *this += text;
}

LPWSTR CStringW::GetBuffer(int nMinBufferLength)
{
    MakeWritable(std::max(nMinBufferLength, GetLength()));
    return characters;
}

LPWSTR CStringW::GetBufferSetLength(int nLength)
{
    CheckArgument(nLength >= 0);
    GetBuffer(nLength);
    SetLength(nLength);
    return characters;
}

void CStringW::ReleaseBuffer(int nNewLength)
{
    const int capacity = BlockOf(characters).capacity;
    CheckArgument(nNewLength <= capacity);
    SetLength(nNewLength < 0 ? static_cast<int>(::wcsnlen(characters, capacity)) : nNewLength);
}

BOOL CStringW::LoadString(UINT nID)
{
    LPCWSTR block = MAKEINTRESOURCEW(nID / 16 + 1);  // strings are stored by sixteens
    return LoadString(::AfxFindResourceHandle(block, RT_STRING), nID);
}

BOOL CStringW::LoadString(HINSTANCE hInstance, UINT nID)
{
    // Room for 0 units asks for the address of the resource itself, whose length has no limit.
    LPCWSTR text = nullptr;
    const int length = ::LoadStringW(hInstance, nID, reinterpret_cast<LPWSTR>(&text), 0);
    SetString(text, length);
    return length > 0;
}

void CStringW::FormatArguments(LPCWSTR lpszFormat, ...)
{
    va_list args;
    va_start(args, lpszFormat);
    FormatV(lpszFormat, args);
    va_end(args);
}

void CStringW::AppendFormatArguments(LPCWSTR lpszFormat, ...)
{
    va_list args;
    va_start(args, lpszFormat);
    AppendFormatV(lpszFormat, args);
    va_end(args);
}

CStringW CStringW::FormatResource(UINT nFormatID)
{
    CStringW format;
    format.LoadString(nFormatID);
    return format;
}

void CStringW::SetNarrowString(LPCSTR lpch, int nLength)
{
    CheckArgument(nLength >= 0 && (lpch != nullptr || nLength == 0));
    CStringW result;
    const int length = ::MultiByteToWideChar(CP_ACP, 0, lpch, nLength, nullptr, 0);
    if (length > 0) {
        result.MakeWritable(length);
        ::MultiByteToWideChar(CP_ACP, 0, lpch, nLength, result.characters, length);
        result.SetLength(length);
    }
    *this = std::move(result);
}

void CStringW::MakeWritable(int capacity)
{
    if (!IsShared(characters) && BlockOf(characters).capacity >= capacity) {
        return;
    }
    const int length = GetLength();
    LPWSTR own = AllocateText(std::max(capacity, length));
    std::wmemcpy(own, characters, length + 1);
    BlockOf(own).length = length;
    DropReference(std::exchange(characters, own));
}

void CStringW::SetLength(int length) noexcept
{
    BlockOf(characters).length = length;
    characters[length] = L'\0';
}

CStringW operator+(const CStringW& left, const CStringW& right)
{
    return Concatenate(ViewOf(left), ViewOf(right));
}

CStringW operator+(const CStringW& left, LPCWSTR right)
{
    return Concatenate(ViewOf(left), OrEmpty(right));
}

CStringW operator+(LPCWSTR left, const CStringW& right)
{
    return Concatenate(OrEmpty(left), ViewOf(right));
}

CStringW operator+(const CStringW& left, wchar_t right)
{
    return Concatenate(ViewOf(left), {&right, 1});
}

CStringW operator+(wchar_t left, const CStringW& right)
{
    return Concatenate({&left, 1}, ViewOf(right));
}
