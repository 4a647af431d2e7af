// afxdlgs.h: the system's common dialogs.
#pragma once

#include "afxwin.h"

#include <commdlg.h>

#include <vector>

// Choose a file to open or save. Filter: pairs of text and pattern, each ended by '|', one more at
// the end ("Text (*.txt)|*.txt|All (*.*)|*.*||").
class COMMONFRAMEWORK_API CFileDialog
{
public:
    explicit CFileDialog(BOOL bOpenFileDialog, LPCTSTR lpszDefExt = nullptr,
                         LPCTSTR lpszFileName = nullptr,
                         DWORD dwFlags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT,
                         LPCTSTR lpszFilter = nullptr, CWnd* pParentWnd = nullptr);
    virtual ~CFileDialog() = default;
    CFileDialog(const CFileDialog&) = delete;
    CFileDialog& operator=(const CFileDialog&) = delete;

    OPENFILENAME& GetOFN() { return m_ofn; }
    virtual INT_PTR DoModal();  // IDOK or IDCANCEL

    // After IDOK.
    CString GetPathName() const { return m_ofn.lpstrFile; }
    CString GetFileName() const;  // with extension
    CString GetFileExt() const;  // without the dot
    CString GetFileTitle() const;  // without extension
    BOOL GetReadOnlyPref() const { return (m_ofn.Flags & OFN_READONLY) != 0; }

    OPENFILENAME m_ofn{};

private:
    BOOL openFile;
    CWnd* parent;  // borrowed; null: the main window
    CString defaultExtension;
    std::vector<wchar_t> filter;  // as the system wants it: ends of texts are NUL
    std::vector<wchar_t> path;  // in: what is proposed; out: what was chosen
};

// Choose a font.
class COMMONFRAMEWORK_API CFontDialog
{
public:
    explicit CFontDialog(LPLOGFONT lplfInitial = nullptr,
                         DWORD dwFlags = CF_EFFECTS | CF_SCREENFONTS, CDC* pdcPrinter = nullptr,
                         CWnd* pParentWnd = nullptr);
    virtual ~CFontDialog() = default;
    CFontDialog(const CFontDialog&) = delete;
    CFontDialog& operator=(const CFontDialog&) = delete;

    virtual INT_PTR DoModal();  // IDOK or IDCANCEL

    void GetCurrentFont(LPLOGFONT lplf) const { *lplf = m_lf; }
    CString GetFaceName() const { return m_lf.lfFaceName; }
    int GetSize() const { return m_cf.iPointSize; }  // tenths of a point
    int GetWeight() const { return m_lf.lfWeight; }
    BOOL IsItalic() const { return m_lf.lfItalic != 0; }
    COLORREF GetColor() const { return m_cf.rgbColors; }

    CHOOSEFONT m_cf{};
    LOGFONT m_lf{};

private:
    CWnd* parent;  // borrowed; null: the main window
};
