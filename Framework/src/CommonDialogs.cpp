#include "afxdlgs.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::size_t pathCapacity = 32768;  // the longest path of the system, with its end

HWND OwnerOf(CWnd* parent)
{
    CWnd* const owner = parent != nullptr ? parent : ::AfxGetMainWnd();
    return owner != nullptr ? owner->GetSafeHwnd() : nullptr;
}

std::vector<wchar_t> WithNulEnds(LPCTSTR filter)
{
    const std::wstring_view text(filter);
    std::vector<wchar_t> result(text.begin(), text.end());
    std::replace(result.begin(), result.end(), L'|', L'\0');
    result.insert(result.end(), 2, L'\0');
    return result;
}

}  // namespace

CFileDialog::CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt, LPCTSTR lpszFileName,
                         DWORD dwFlags, LPCTSTR lpszFilter, CWnd* pParentWnd)
    : openFile(bOpenFileDialog),
      parent(pParentWnd),
      defaultExtension(lpszDefExt),
      path(pathCapacity)
{
    if (lpszFileName != nullptr) {
        ::lstrcpynW(path.data(), lpszFileName, static_cast<int>(path.size()));
    }
    if (lpszFilter != nullptr) {
        filter = WithNulEnds(lpszFilter);
    }
    m_ofn.lStructSize = sizeof(m_ofn);
    m_ofn.lpstrFile = path.data();
    m_ofn.nMaxFile = static_cast<DWORD>(path.size());
    m_ofn.lpstrFilter = filter.empty() ? nullptr : filter.data();
    m_ofn.lpstrDefExt = lpszDefExt != nullptr ? defaultExtension.GetString() : nullptr;
    m_ofn.Flags = dwFlags | OFN_EXPLORER | OFN_ENABLESIZING;
}

INT_PTR CFileDialog::DoModal()
{
    m_ofn.hwndOwner = OwnerOf(parent);
    const BOOL chosen = openFile ? ::GetOpenFileNameW(&m_ofn) : ::GetSaveFileNameW(&m_ofn);
    return chosen ? IDOK : IDCANCEL;
}

CString CFileDialog::GetFileName() const
{
    const CString full = GetPathName();
    return full.Mid(full.ReverseFind(L'\\') + 1);
}

CString CFileDialog::GetFileExt() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? CString() : name.Mid(dot + 1);
}

CString CFileDialog::GetFileTitle() const
{
    const CString name = GetFileName();
    const int dot = name.ReverseFind(L'.');
    return dot < 0 ? name : name.Left(dot);
}

CFontDialog::CFontDialog(LPLOGFONT lplfInitial, DWORD dwFlags, CDC* pdcPrinter, CWnd* pParentWnd)
    : parent(pParentWnd)
{
    m_cf.lStructSize = sizeof(m_cf);
    m_cf.Flags = dwFlags;
    m_cf.lpLogFont = &m_lf;
    if (lplfInitial != nullptr) {
        m_lf = *lplfInitial;
        m_cf.Flags |= CF_INITTOLOGFONTSTRUCT;
    }
    if (pdcPrinter != nullptr) {
        m_cf.hDC = pdcPrinter->GetSafeHdc();
        m_cf.Flags |= CF_PRINTERFONTS;
    }
}

INT_PTR CFontDialog::DoModal()
{
    m_cf.hwndOwner = OwnerOf(parent);
    return ::ChooseFontW(&m_cf) ? IDOK : IDCANCEL;
}

CColorDialog::CColorDialog(COLORREF clrInit, DWORD dwFlags, CWnd* pParentWnd) : parent(pParentWnd)
{
    m_cc.lStructSize = sizeof(m_cc);
    m_cc.rgbResult = clrInit;
    m_cc.Flags = dwFlags | (clrInit != 0 ? CC_RGBINIT : 0);
    m_cc.lpCustColors = GetSavedCustomColors();
}

INT_PTR CColorDialog::DoModal()
{
    m_cc.hwndOwner = OwnerOf(parent);
    return ::ChooseColorW(&m_cc) ? IDOK : IDCANCEL;
}

COLORREF* PASCAL CColorDialog::GetSavedCustomColors()
{
    static std::array<COLORREF, 16> colors = [] {
        std::array<COLORREF, 16> white{};
        white.fill(RGB(255, 255, 255));
        return white;
    }();
    return colors.data();
}
