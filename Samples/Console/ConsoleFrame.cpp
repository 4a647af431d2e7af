#include "ConsoleFrame.h"

#include "ConnectDialog.h"
#include "ConnectionFrame.h"
#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleView.h"
#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxdlgs.h>

#include <vector>

namespace {

BOOL CALLBACK AddFrame(HWND window, LPARAM frames)
{
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (object && object->IsFrameWnd()) {
        reinterpret_cast<std::vector<CWnd*>*>(frames)->push_back(object);
    }
    return TRUE;
}

// Those of this thread; the topmost first.
std::vector<CWnd*> FindFrames()
{
    std::vector<CWnd*> frames;
    ::EnumThreadWindows(::GetCurrentThreadId(), &AddFrame, reinterpret_cast<LPARAM>(&frames));
    return frames;
}

// The program ends with its main window: while there are others, one of them is that.
void PassOnMainWindow(const CWnd& closing)
{
    CWinThread* const thread = ::AfxGetThread();
    if (!thread || thread->m_pMainWnd != &closing) {
        return;
    }
    for (CWnd* const frame : FindFrames()) {
        if (frame != &closing) {
            thread->m_pMainWnd = frame;
            return;
        }
    }
}

}  // namespace

BEGIN_MESSAGE_MAP(ConsoleFrame, CFrameWnd)
    ON_WM_CLOSE()
    ON_WM_ENDSESSION()
    ON_WM_DESTROY()
    ON_WM_MOUSEWHEEL()
    ON_COMMAND(ID_FILE_CONNECT, &ConsoleFrame::OnFileConnect)
    ON_COMMAND(ID_EDIT_COPY, &ConsoleFrame::OnEditCopy)
    ON_COMMAND(ID_EDIT_SELECT_ALL, &ConsoleFrame::OnEditSelectAll)
    ON_COMMAND(ID_EDIT_CLEAR_ALL, &ConsoleFrame::OnEditClear)
    ON_COMMAND(ID_VIEW_OUTLINE, &ConsoleFrame::OnViewOutline)
    ON_COMMAND(ID_VIEW_FONT, &ConsoleFrame::OnViewFont)
    ON_COMMAND(ID_VIEW_START, &ConsoleFrame::OnViewStart)
    ON_COMMAND(ID_VIEW_END, &ConsoleFrame::OnViewEnd)
    ON_COMMAND(ID_APP_ABOUT, &ConsoleFrame::OnAbout)
    ON_UPDATE_COMMAND_UI(ID_EDIT_COPY, &ConsoleFrame::OnUpdateCopy)
    ON_UPDATE_COMMAND_UI(ID_EDIT_SELECT_ALL, &ConsoleFrame::OnUpdateHasLines)
    ON_UPDATE_COMMAND_UI(ID_EDIT_CLEAR_ALL, &ConsoleFrame::OnUpdateHasLines)
    ON_UPDATE_COMMAND_UI(ID_VIEW_OUTLINE, &ConsoleFrame::OnUpdateOutline)
END_MESSAGE_MAP()

void ConsoleFrame::ApplyLook(bool outlined)
{
    outline = outlined;
    LOGFONT font{};
    if (settings.GetFont(font)) {
        GetView().ChangeFont(font);
    }
    GetView().ChangeSelectionStyle(GetStyle());
}

SelectionDrawStyle ConsoleFrame::GetStyle() const
{
    return outline ? SelectionDrawStyle::Outline : SelectionDrawStyle::Filled;
}

// While there is a window to say over that it went wrong.
void ConsoleFrame::OnClose()
{
    SaveSettings();
    CFrameWnd::OnClose();
}

// Nobody is left to read a message.
void ConsoleFrame::OnEndSession(BOOL ending)
{
    if (ending) {
        RememberMore();
        YReportMessageParams unheard;
        settings.Save(unheard);
    }
    CFrameWnd::OnEndSession(ending);
}

void ConsoleFrame::SaveSettings()
{
    RememberMore();
    YReportMessageParams error;
    if (!settings.Save(error)) {
        YReportMessageParams message(CONSOLE_SETTINGS_NOT_SAVED, ::AfxGetInstanceHandle());
        message.AddInsert(error.GetTrimmedText());
        YMessageBox(this, &message);
    }
}

void ConsoleFrame::OnDestroy()
{
    PassOnMainWindow(*this);
    CFrameWnd::OnDestroy();
}

// Over the bars, or with the focus on no view.
BOOL ConsoleFrame::OnMouseWheel(UINT flags, short delta, CPoint point)
{
    GetView().SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(flags, delta), MAKELPARAM(point.x, point.y));
    return TRUE;
}

void ConsoleFrame::OnFileConnect()
{
    Peer peer = settings.GetPeer();
    if (AskForPeer(*this, peer)) {
        ConnectionFrame::Open(settings, peer, SW_SHOWNORMAL);
    }
}

void ConsoleFrame::OnEditCopy()
{
    GetView().Copy();
}

void ConsoleFrame::OnEditSelectAll()
{
    GetView().SelectAllLines();
}

void ConsoleFrame::OnEditClear()
{
    GetView().Clear();
}

void ConsoleFrame::OnViewOutline()
{
    outline = !outline;
    GetView().ChangeSelectionStyle(GetStyle());
}

void ConsoleFrame::OnViewFont()
{
    LOGFONT font = GetView().GetShownFont();
    CFontDialog dialog(&font, CF_SCREENFONTS | CF_FIXEDPITCHONLY | CF_INITTOLOGFONTSTRUCT, nullptr,
                       this);
    if (dialog.DoModal() == IDOK) {
        dialog.GetCurrentFont(&font);
        GetView().ChangeFont(font);
        settings.SetFont(font);
    }
}

void ConsoleFrame::OnViewStart()
{
    GetView().GoToStart();
}

void ConsoleFrame::OnViewEnd()
{
    GetView().GoToEnd();
}

void ConsoleFrame::OnAbout()
{
    const YReportMessageParams message(CONSOLE_ABOUT, ::AfxGetInstanceHandle());
    YMessageBox(this, &message, MB_ICONINFORMATION);
}

void ConsoleFrame::OnUpdateCopy(CCmdUI* item)
{
    item->Enable(GetView().CanCopy());
}

void ConsoleFrame::OnUpdateHasLines(CCmdUI* item)
{
    item->Enable(GetView().HasLines());
}

void ConsoleFrame::OnUpdateOutline(CCmdUI* item)
{
    item->SetCheck(outline);
}

void CloseAllFrames()
{
    for (const CWnd* const frame : FindFrames()) {
        ::PostMessageW(frame->GetSafeHwnd(), WM_CLOSE, 0, 0);
    }
}
