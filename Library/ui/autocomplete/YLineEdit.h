// YLineEdit.h: a line of text with a hint and a button inside.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <BCGCBProInc.h>
#include <afxcmn.h>

#include <string>

// While it is empty, an edit shows a grey hint. The hint is window text: it comes whenever the field
// becomes empty, also under the user's hands, and goes before anything is put in. So ask GetText,
// not GetWindowText. The button searches, or clears once there is text, or browses; a derived class
// overrides OnBrowse to do something. For dialogs and, by YToolbarEditBoxButton, for toolbars.
// User-interface thread.
class COMMONUI_API YLineEdit : public CBCGPEdit
{
    DECLARE_DYNAMIC(YLineEdit)

    enum IconType { NoButton, SearchButton, BrowseButton };

    YLineEdit();
    ~YLineEdit() override;

    // A child window, complete once the messages that this posts are handled: until then the text
    // is empty. A null placeholder is an empty one, here and below.
    BOOL Create(CWnd* parent, const CRect& place, unsigned id, const wchar_t* hint, IconType icon);
    using CBCGPEdit::Create;
    // For an edit that a dialog template has made and the object subclasses; the text that it came
    // with is replaced by the hint.
    void InitControl(const wchar_t* hint, IconType icon);

    // For the next time that the field is emptied: what is shown stays, and counts as text.
    void SetPlaceholderText(const wchar_t* hint);

    YUnicodeString GetText() const;  // empty where the hint is shown, or the user has typed it
    bool IsPlaceholderText() const;
    void Clear();

    HBRUSH CtlColor(CDC* dc, UINT kind);
    void OnBrowse() override;  // empties the field, whatever its button
    BOOL PreTranslateMessage(MSG* message) override;

protected:
    BOOL OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    afx_msg void OnKeyDown(UINT key, UINT repetitions, UINT flags);
    afx_msg void OnChar(UINT character, UINT repetitions, UINT flags);
    afx_msg LRESULT OnPaste(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnReplaceSelection(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnImeNotify(WPARAM wParam, LPARAM lParam);
    afx_msg void OnSetFocus(CWnd* previous);
    afx_msg void OnKillFocus(CWnd* next);
    afx_msg void OnLButtonDown(UINT flags, CPoint point);
    afx_msg void OnLButtonDblClk(UINT flags, CPoint point);
    afx_msg void OnMouseMove(UINT flags, CPoint point);
    afx_msg void OnNcPaint();
    afx_msg LRESULT OnRestorePlaceholder(WPARAM wParam, LPARAM lParam);
    afx_msg LRESULT OnFinishInitialisation(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

private:
    class WritingText;

    // The hint: YLineEdit.cpp
    bool ClearPlaceholder();
    void WritePlaceholder();
    void WritePlaceholderIfEmpty();
    void ClearPlaceholderBeforeInsertion();
    void OnChange();
    bool IsHintUnderHand() const { return hasFocus && IsPlaceholderText(); }
    bool IsComposing() const;

    // The button, and the keys in a toolbar: YLineEditButton.cpp
    void UpdateSearchIcon();
    void ShowImage(unsigned id);
    void CreateTooltips();
    CToolTipCtrl& GetTooltip();
    void RelayToTooltip(const MSG& message);
    bool ProcessEditKey(UINT key);

    CToolTipCtrl searchTooltip;
    CToolTipCtrl clearTooltip;
    std::wstring placeholder;
    bool hasFocus = false;
    IconType iconType = NoButton;
    // What changes is the control's own writing, up to the next restoring message: nothing reacts.
    bool settingText = true;
    unsigned currentImage = 0;  // a resource id; 0: none yet
};
