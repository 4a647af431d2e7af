// YFindDialog.h: the modeless box that asks what to find.
#pragma once

#include "CommonUiApi.h"
#include "YRect.h"

#include <afxdlgs.h>

#include <memory>
#include <string>

class IFindDialogSink;
class YReportMessageParams;

// The system's find dialog at a place of the host's, which tells a sink of everything. Every edit of
// the text posts the registered message WM_FIND_EN_CHANGE to it: a derived dialog searches as the
// user types. Made with new; deletes itself with its window. User-interface thread.
class COMMONUI_API YFindDialog : public CFindReplaceDialog
{
    DECLARE_DYNAMIC(YFindDialog)

    // Where the system puts it.
    static constexpr int systemPlace = -1;

    // flags: FR_DOWN, FR_WHOLEWORD, FR_MATCHCASE; others are not for the caller. sink, owner:
    // borrowed. wrapAround is kept and told to the sink: the system's dialog has no box for it.
    YFindDialog(const wchar_t* initialText, unsigned long flags, IFindDialogSink* sink, CWnd* owner,
                bool wrapAround);
    ~YFindDialog() override;

    // position: of the top left corner on the screen, or (-1, -1); a place where it would not be
    // seen whole is left to the system. False: failed; delete the object unless its window was
    // being made.
    bool Create(YPoint& position);
    using CFindReplaceDialog::Create;

    // Shows it at the position, as above.
    void BringToTop(YPoint position, bool activate);
    void Hide();
    YPoint GetPosition() const;
    unsigned long GetFlags() const { return m_fr.Flags; }  // as of the last Find Next
    std::wstring GetString() const;  // what stands in the dialog now

    void SetNotFound(bool on) { notFound = on; }
    bool GetNotFound() const { return notFound; }
    void EndOfFindBufferReached();  // as if the user had pressed Find Next
    void PresentEndOfBufferMessage();
    void PresentMsgBox(YReportMessageParams* message);

protected:
    virtual LRESULT OnFindEnChanged(WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnFindReplace(WPARAM wParam, LPARAM lParam);
    afx_msg void OnActivate(UINT state, CWnd* other, BOOL minimized);
    afx_msg void OnMove(int x, int y);
    DECLARE_MESSAGE_MAP()

private:
    class SinkWindow;

    static UINT_PTR CALLBACK Place(HWND dialog, UINT message, WPARAM wParam,
                                   LPARAM lParam) noexcept;

    CWnd* ownerWindow;
    IFindDialogSink* findSink;
    std::wstring searchText;  // a buffer that the system's dialog writes to
    std::unique_ptr<SinkWindow> sinkWindow;
    YPoint requestedPosition{systemPlace, systemPlace};
    bool notFound = true;
};
