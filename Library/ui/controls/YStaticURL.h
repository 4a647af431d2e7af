// YStaticURL.h: a text of a dialog that is a link.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <afxwin.h>

class IStaticUrlSink;

// Takes over a static control, mostly by data exchange, whose text it keeps and underlines. A click,
// Space, Return, its menu and screen readers open the link in the user's program. Links that
// OpenURLWithoutConfig refuses are not opened. User-interface thread.
class COMMONUI_API YStaticURL : public CStatic
{
    DECLARE_DYNAMIC(YStaticURL)

    // The address is a string resource of the program, or given. cursorResourceId: a cursor of the
    // program; the system's hand where there is none. sink: borrowed, may be null.
    YStaticURL(unsigned textResourceId, int cursorResourceId, IStaticUrlSink* sink);
    YStaticURL(const wchar_t* text, int cursorResourceId, IStaticUrlSink* sink);
    ~YStaticURL() override;

    void PreSubclassWindow() override;
    BOOL PreTranslateMessage(MSG* message) override;

    // To screen readers: a link whose value is the address.
    HRESULT get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT get_accState(VARIANT child, VARIANT* state) override;
    HRESULT get_accValue(VARIANT child, BSTR* value) override;
    HRESULT get_accDefaultAction(VARIANT child, BSTR* action) override;
    HRESULT accDoDefaultAction(VARIANT child) override;

protected:
    afx_msg HBRUSH CtlColor(CDC* dc, UINT kind);
    afx_msg void OnClicked();
    afx_msg void OnContextMenu(CWnd* window, CPoint point);
    afx_msg void OnSetFocus(CWnd* previous);
    afx_msg void OnKillFocus(CWnd* next);
    afx_msg void OnPaint();
    afx_msg BOOL OnSetCursor(CWnd* window, UINT hitTest, UINT message);
    afx_msg void OnURLContextOpen();
    afx_msg void OnURLContextCopy();
    DECLARE_MESSAGE_MAP()

private:
    void UnderlineFont();
    void Open();
    CRect GetFocusRect();  // in the parent's coordinates
    void DrawFocus();

    HCURSOR handCursor = nullptr;  // the system's: never destroyed
    CFont underlinedFont;
    bool centered = false;
    YUnicodeString linkText;
    int cursorId;
    IStaticUrlSink* urlSink;
    bool focusDrawn = false;  // it is on the screen: drawing it again takes it away
};
