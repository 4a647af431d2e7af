#include "ConsoleFrame.h"

#include "AboutDialog.h"
#include "ConnectDialog.h"
#include "ConnectionFrame.h"
#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "OptionsDialog.h"
#include "SessionsDialog.h"
#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxdlgs.h>

#include <utility>

namespace {

BOOL CALLBACK AddFrame(HWND window, LPARAM frames)
{
    if (auto* const frame = dynamic_cast<ConsoleFrame*>(CWnd::FromHandlePermanent(window))) {
        reinterpret_cast<std::vector<ConsoleFrame*>*>(frames)->push_back(frame);
    }
    return TRUE;
}

// The program ends with its main window: while there are others, one of them is that.
void PassOnMainWindow(const CWnd& closing)
{
    CWinThread* const thread = ::AfxGetThread();
    if (!thread || thread->m_pMainWnd != &closing) {
        return;
    }
    for (CWnd* const frame : FindConsoleFrames()) {
        if (frame != &closing) {
            thread->m_pMainWnd = frame;
            return;
        }
    }
}

}  // namespace

std::vector<ConsoleFrame*> FindConsoleFrames()
{
    std::vector<ConsoleFrame*> frames;
    ::EnumThreadWindows(::GetCurrentThreadId(), &AddFrame, reinterpret_cast<LPARAM>(&frames));
    return frames;
}

BEGIN_MESSAGE_MAP(ConsoleFrame, CFrameWnd)
    ON_WM_CREATE()
    ON_WM_CLOSE()
    ON_WM_ENDSESSION()
    ON_WM_DESTROY()
    ON_WM_MOUSEWHEEL()
    ON_COMMAND(ID_FILE_OPEN, &ConsoleFrame::OnFileOpen)
    ON_COMMAND(ID_FILE_CONNECT, &ConsoleFrame::OnFileConnect)
    ON_COMMAND(ID_FILE_SESSIONS, &ConsoleFrame::OnFileSessions)
    ON_COMMAND(ID_ADDRESS, &ConsoleFrame::OnAddress)
    ON_COMMAND(ID_ADDRESS_SHOWN, &ConsoleFrame::OnAddressShown)
    ON_CONTROL(EN_SETFOCUS, ID_ADDRESS, &ConsoleFrame::OnAddressFocus)
    ON_EN_CHANGE(ID_SEARCH, &ConsoleFrame::OnSearchChange)
    ON_COMMAND(ID_SEARCH, &ConsoleFrame::OnSearch)
    ON_COMMAND(ID_SEARCH_PREVIOUS, &ConsoleFrame::OnSearchPrevious)
    ON_COMMAND(ID_SEARCH_PROGRESS, &ConsoleFrame::OnSearchProgress)
    ON_COMMAND(ID_SEARCH_TELL_END, &ConsoleFrame::OnSearchTellEnd)
    ON_COMMAND(ID_EDIT_FIND, &ConsoleFrame::OnEditFind)
    ON_COMMAND(ID_OPTIONS, &ConsoleFrame::OnOptions)
    ON_COMMAND(ID_FILE_CANCEL, &ConsoleFrame::OnCancel)
    ON_COMMAND(ID_BAR_LEAVE, &ConsoleFrame::OnBarLeave)
    ON_COMMAND(ID_VIEW_ADDRESS, &ConsoleFrame::OnViewAddress)
    ON_COMMAND(ID_VIEW_SEARCH, &ConsoleFrame::OnViewSearch)
    ON_COMMAND(ID_EDIT_COPY, &ConsoleFrame::OnEditCopy)
    ON_COMMAND(ID_EDIT_SELECT_ALL, &ConsoleFrame::OnEditSelectAll)
    ON_COMMAND(ID_EDIT_CLEAR_ALL, &ConsoleFrame::OnEditClear)
    ON_COMMAND(ID_VIEW_OUTLINE, &ConsoleFrame::OnViewOutline)
    ON_COMMAND(ID_VIEW_FONT, &ConsoleFrame::OnViewFont)
    ON_COMMAND(ID_VIEW_START, &ConsoleFrame::OnViewStart)
    ON_COMMAND(ID_VIEW_END, &ConsoleFrame::OnViewEnd)
    ON_COMMAND(ID_APP_ABOUT, &ConsoleFrame::OnAbout)
    ON_UPDATE_COMMAND_UI(ID_FILE_CANCEL, &ConsoleFrame::OnUpdateCancel)
    ON_UPDATE_COMMAND_UI(ID_EDIT_COPY, &ConsoleFrame::OnUpdateCopy)
    ON_UPDATE_COMMAND_UI(ID_EDIT_SELECT_ALL, &ConsoleFrame::OnUpdateHasLines)
    ON_UPDATE_COMMAND_UI(ID_EDIT_CLEAR_ALL, &ConsoleFrame::OnUpdateHasLines)
    ON_UPDATE_COMMAND_UI(ID_VIEW_OUTLINE, &ConsoleFrame::OnUpdateOutline)
END_MESSAGE_MAP()

int ConsoleFrame::OnCreate(CREATESTRUCT* create)
{
    return CFrameWnd::OnCreate(create) == -1 || !bar.CreateIn(this) ? -1 : 0;
}

void ConsoleFrame::ApplyLook(bool outlined)
{
    outline = outlined;
    LOGFONT font{};
    if (settings.GetFont(font)) {
        GetView().ChangeFont(font);
    }
    GetView().ChangeSelectionStyle(GetStyle());
    GetView().ChangeColors(GetShownColors(settings.GetChoices()));
}

void ConsoleFrame::ApplyChoices(const ConsoleChoices& before)
{
    const ConsoleChoices& now = settings.GetChoices();
    if (now.font != before.font) {
        LOGFONT font{};
        GetView().ChangeFont(settings.GetFont(font) ? font : ConsoleView::GetUsualFont());
    }
    if (now.outlines != before.outlines) {
        outline = now.outlines;
        GetView().ChangeSelectionStyle(GetStyle());
    }
    GetView().ChangeColors(GetShownColors(now));
}

void ChangeChoices(ConsoleSettings& settings, const ConsoleChoices& next)
{
    const ConsoleChoices before = settings.GetChoices();
    settings.SetChoices(next);
    for (ConsoleFrame* const frame : FindConsoleFrames()) {
        frame->ApplyChoices(before);
    }
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

void ConsoleFrame::ShowMessage(const wchar_t* text)
{
    if (text) {
        SetMessageText(text);
    } else {
        SetMessageText(static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
    }
}

void ConsoleFrame::OnFileOpen()
{
    CFileDialog dialog(TRUE, nullptr, nullptr, OFN_HIDEREADONLY | OFN_FILEMUSTEXIST,
                       LoadText(IDS_FILE_FILTER).c_str(), this);
    if (dialog.DoModal() == IDOK) {
        OpenFile(dialog.GetPathName().GetString());
    }
}

void ConsoleFrame::OnFileConnect()
{
    Peer peer = settings.GetPeer();
    if (AskForPeer(*this, peer)) {
        ConnectionFrame::Open(settings, peer, SW_SHOWNORMAL);
    }
}

// The dialog may outlive the window, as the options do.
void ConsoleFrame::OnFileSessions()
{
    const HWND window = m_hWnd;
    ConsoleSettings& kept = settings;
    SessionsDialog dialog(kept, this);
    const bool connects = dialog.DoModal() == IDOK;
    if (::IsWindow(window)) {
        SaveSettings();
    }
    if (connects) {
        ConnectionFrame::Open(kept, dialog.GetChosen(), SW_SHOWNORMAL);
    }
}

// The address and the search

// Posted: a field gets its hint by a message that was posted when it was made, which would take away
// what it had before.
void ConsoleFrame::ShowAddress(const std::wstring& address)
{
    shownAddress = address;
    PostMessage(WM_COMMAND, ID_ADDRESS_SHOWN);
}

void ConsoleFrame::OnAddressShown()
{
    if (!bar.HasFocus()) {
        bar.SetAddress(shownAddress);
    }
}

void ConsoleFrame::OnAddressFocus()
{
    std::vector<std::wstring> known = settings.GetRecentHosts();
    const std::vector<std::wstring>& files = settings.GetRecentFiles();
    known.insert(known.end(), files.begin(), files.end());
    bar.OfferAddresses(std::move(known));
}

void ConsoleFrame::OnAddress()
{
    const std::wstring address = bar.GetAddress();
    Peer peer;
    SetFocus();
    if (ParsePeer(address, peer)) {
        ConnectionFrame::Open(settings, peer, SW_SHOWNORMAL);
    } else if (!address.empty()) {
        OpenFile(address);
    }
}

// The hint that comes and goes is no change.
void ConsoleFrame::OnSearchChange()
{
    if (bar.GetSearchText() != searched) {
        searched = bar.GetSearchText();
        finder.SearchFor(searched, false, false);
    }
}

void ConsoleFrame::OnSearch()
{
    Search(false);
}

void ConsoleFrame::OnSearchPrevious()
{
    Search(true);
}

// Who is in the bar means its text, whatever was looked for elsewhere.
void ConsoleFrame::Search(bool backwards)
{
    if (bar.HasFocus() && !bar.GetSearchText().empty()) {
        finder.SearchFor(bar.GetSearchText(), backwards, true);
    } else {
        finder.FindAgain(backwards);
    }
}

void ConsoleFrame::OnSearchProgress()
{
    finder.OnProgress();
}

void ConsoleFrame::OnSearchTellEnd()
{
    finder.TellEnd();
}

void ConsoleFrame::OnEditFind()
{
    finder.ShowBox();
}

void ConsoleFrame::OnCancel()
{
    finder.Cancel();
}

void ConsoleFrame::OnBarLeave()
{
    SetFocus();
}

void ConsoleFrame::OnViewAddress()
{
    bar.FocusAddress();
}

void ConsoleFrame::OnViewSearch()
{
    bar.FocusSearch();
}

// The view

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

// The dialog may outlive the window, which another one's Exit closes.
void ConsoleFrame::OnOptions()
{
    const HWND window = m_hWnd;
    OptionsDialog(settings, this).DoModal();
    if (::IsWindow(window)) {
        SaveSettings();
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
    AboutDialog(this).DoModal();
}

void ConsoleFrame::OnUpdateCancel(CCmdUI* item)
{
    item->Enable(GetView().GetSearch().GetState() == LineSearch::State::Running);
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
    for (const ConsoleFrame* const frame : FindConsoleFrames()) {
        ::PostMessageW(frame->GetSafeHwnd(), WM_CLOSE, 0, 0);
    }
}
