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

// Choose a colour. The user's own colours are kept until the program ends.
class COMMONFRAMEWORK_API CColorDialog
{
public:
    explicit CColorDialog(COLORREF clrInit = 0, DWORD dwFlags = 0, CWnd* pParentWnd = nullptr);
    virtual ~CColorDialog() = default;
    CColorDialog(const CColorDialog&) = delete;
    CColorDialog& operator=(const CColorDialog&) = delete;

    virtual INT_PTR DoModal();  // IDOK or IDCANCEL

    COLORREF GetColor() const { return m_cc.rgbResult; }
    static COLORREF* PASCAL GetSavedCustomColors();  // 16

    CHOOSECOLOR m_cc{};

private:
    CWnd* parent;  // borrowed; null: the main window
};

// A dialog of the system's own: its buttons mean what the system makes of them.
class COMMONFRAMEWORK_API CCommonDialog : public CDialog
{
    DECLARE_DYNAMIC(CCommonDialog)

protected:
    explicit CCommonDialog(CWnd* pParentWnd) : CDialog(0U, pParentWnd) {}

    void OnOK() override { Default(); }
    void OnCancel() override { Default(); }
};

// The modeless box that asks what to find. Its owner gets the registered message FINDMSGSTRING at
// every press of Find Next, and once more when the box closes (IsTerminating). Made with new;
// deletes itself with its window, or after a failed Create.
class COMMONFRAMEWORK_API CFindReplaceDialog : public CCommonDialog
{
    DECLARE_DYNAMIC(CFindReplaceDialog)

    CFindReplaceDialog();

    // Before Create m_fr may be changed: further flags, a hook procedure, a longer buffer for the
    // text. bFindDialogOnly is TRUE: nothing is replaced here. Without a parent: the main window.
    virtual BOOL Create(BOOL bFindDialogOnly, LPCTSTR lpszFindWhat,
                        LPCTSTR lpszReplaceWith = nullptr, DWORD dwFlags = FR_DOWN,
                        CWnd* pParentWnd = nullptr);
    using CDialog::Create;

    // The box that the message comes from; lParam is the message's.
    static CFindReplaceDialog* PASCAL GetNotifier(LPARAM lParam);

    // As of the last message.
    CString GetFindString() const { return m_fr.lpstrFindWhat; }
    BOOL SearchDown() const { return HasFlag(FR_DOWN); }
    BOOL FindNext() const { return HasFlag(FR_FINDNEXT); }
    BOOL MatchCase() const { return HasFlag(FR_MATCHCASE); }
    BOOL MatchWholeWord() const { return HasFlag(FR_WHOLEWORD); }
    BOOL IsTerminating() const { return HasFlag(FR_DIALOGTERM); }

    FINDREPLACE m_fr{};

protected:
    void PostNcDestroy() override { delete this; }

    TCHAR m_szFindWhat[128] = {};

private:
    BOOL HasFlag(DWORD flag) const { return (m_fr.Flags & flag) != 0; }
};
