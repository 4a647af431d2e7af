// PasswordEdit.h: an edit that stands for a stored password without showing it.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <afxwin.h>

class IPasswordEditSink;

// For an edit of a dialog, with ES_PASSWORD. A stored password is never put in: the field shows eight
// asterisks in its place, is empty while it has the focus, and tells by GetTouched whether the user
// has typed anything, that is, whether the stored one is to be replaced. Three states: plain (as
// made), placeholder (after SetPseudoPassword) and typed (after the first change by the user, for
// good). The text is overwritten when the window is destroyed, and the flags say afterwards what
// they said before. The parent gets no EN_CHANGE: the sink does. User-interface thread.
class COMMONUI_API PasswordEdit : public CEdit
{
    DECLARE_DYNAMIC(PasswordEdit)

    explicit PasswordEdit(IPasswordEditSink* sink);  // borrowed, may be null
    ~PasswordEdit() override;

    // Borrowed, may be null; gets every text that the edit itself writes, not what the user types.
    void AssociateString(YUnicodeString* string) { associatedString = string; }
    // While there is a window.
    void SetPseudoPassword();

    bool GetTouched() const { return touched && !placeholderShown; }
    // Also while the placeholder has made room for the focus.
    bool IsEmpty() const { return LineLength(-1) == 0; }

protected:
    afx_msg void OnSetFocus(CWnd* previous);
    afx_msg void OnKillFocus(CWnd* next);
    afx_msg void OnEnChange();
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnDestroy();
    DECLARE_MESSAGE_MAP()

private:
    friend class LinkedPasswordEdits;

    // These write, and so notify: false, the host has ended the window.
    bool SetPassword(const YUnicodeString& text);
    bool SetStandIn(const YUnicodeString& text);
    bool HidePlaceholder();
    bool ShowPlaceholder();
    void MarkChanged();

    bool placeholderShown = false;  // it stands there, or for what is not there while focused
    bool touched = false;  // set by every change of the text, also by our own
    YUnicodeString* associatedString = nullptr;
    IPasswordEditSink* sink;
};
