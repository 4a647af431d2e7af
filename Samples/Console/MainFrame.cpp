#include "MainFrame.h"

#include "ConsoleMessages.h"
#include "ConsoleOptions.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>

#include <chrono>
#include <exception>
#include <new>
#include <utility>

namespace {

constexpr UINT newsMessage = WM_APP + 1;
constexpr UINT_PTR newsTimer = 1;
constexpr UINT newsPause = 10;  // milliseconds for input and painting
constexpr std::chrono::milliseconds newsTurn{10};  // for new lines

constexpr unsigned bufferSizes[] = {1'000, 10'000, 100'000, 1'000'000};

constexpr UINT indicators[] = {ID_SEPARATOR, ID_INDICATOR_PROGRESS, ID_INDICATOR_LINES,
                               ID_INDICATOR_POSITION, ID_INDICATOR_SELECTION};

std::wstring MakeFullPath(const std::wstring& path)
{
    std::wstring full(::GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(
        ::GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.empty() ? path : full;
}

std::wstring GetFileName(const std::wstring& path)
{
    return path.substr(path.find_last_of(L"\\/:") + 1);
}

const wchar_t* GetName(TextEncoding encoding)
{
    switch (encoding) {
    case TextEncoding::Utf8: return L"UTF-8";
    case TextEncoding::Utf16LittleEndian: return L"UTF-16 LE";
    case TextEncoding::Utf16BigEndian: return L"UTF-16 BE";
    case TextEncoding::CodePage: break;
    }
    return L"ANSI";
}

std::wstring Describe(const FollowerState& state, bool follows)
{
    const wchar_t* const encoding = GetName(state.encoding);
    if (state.ended) {
        return FormatText(IDS_STATE_ENDED, encoding);
    }
    if (!state.atEnd) {
        const ULONGLONG percent = state.size > 0 ? state.bytesRead * 100 / state.size : 0;
        return FormatText(IDS_STATE_LOADING, encoding, static_cast<unsigned>(percent));
    }
    return follows ? FormatText(IDS_STATE_FOLLOWING, encoding) : encoding;
}

// As a menu shows it: "&1 C:\\a && b.log".
std::wstring MakeRecentItem(std::size_t index, const std::wstring& path)
{
    std::wstring item = L"&" + std::to_wstring(index + 1) + L" ";
    for (const wchar_t character : path) {
        item.append(character == L'&' ? 2 : 1, character);
    }
    return item;
}

}  // namespace

BEGIN_MESSAGE_MAP(MainFrame, ConsoleFrame)
    ON_WM_CREATE()
    ON_WM_DESTROY()
    ON_WM_TIMER()
    ON_MESSAGE(newsMessage, &MainFrame::OnNews)
    ON_WM_VSCROLL()
    ON_WM_DROPFILES()
    ON_COMMAND_RANGE(ID_FILE_MRU_FILE1, ID_FILE_MRU_FILE8, &MainFrame::OnRecentFile)
    ON_COMMAND(ID_FILE_RELOAD, &MainFrame::OnFileReload)
    ON_COMMAND(ID_FILE_FOLLOW, &MainFrame::OnFileFollow)
    ON_COMMAND(ID_FILE_CANCEL, &MainFrame::OnFileCancel)
    ON_COMMAND(ID_FILE_CLOSE, &MainFrame::OnFileClose)
    ON_COMMAND(ID_VIEW_SPLIT, &MainFrame::OnViewSplit)
    ON_COMMAND_RANGE(ID_BUFFER_1000, ID_BUFFER_1000000, &MainFrame::OnBufferSize)
    ON_UPDATE_COMMAND_UI(ID_FILE_RELOAD, &MainFrame::OnUpdateHasFile)
    ON_UPDATE_COMMAND_UI(ID_FILE_MRU_FILE1, &MainFrame::OnUpdateRecentFiles)
    ON_UPDATE_COMMAND_UI(ID_FILE_FOLLOW, &MainFrame::OnUpdateFollow)
    ON_UPDATE_COMMAND_UI(ID_FILE_CANCEL, &MainFrame::OnUpdateCancel)
    ON_UPDATE_COMMAND_UI(ID_FILE_CLOSE, &MainFrame::OnUpdateHasFile)
    ON_UPDATE_COMMAND_UI(ID_VIEW_SPLIT, &MainFrame::OnUpdateSplit)
    ON_UPDATE_COMMAND_UI_RANGE(ID_BUFFER_1000, ID_BUFFER_1000000, &MainFrame::OnUpdateBufferSize)
    ON_UPDATE_COMMAND_UI(ID_BUFFER_LOCKED, &MainFrame::OnUpdateBufferLocked)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_PROGRESS, &MainFrame::OnUpdateProgress)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_LINES, &MainFrame::OnUpdateLines)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_POSITION, &MainFrame::OnUpdatePosition)
    ON_UPDATE_COMMAND_UI(ID_INDICATOR_SELECTION, &MainFrame::OnUpdateSelection)
END_MESSAGE_MAP()

// The window

bool MainFrame::Load(const ConsoleOptions& options, int& show)
{
    const bool asRemembered = options.lineLimit == 0 || GetSettings().IsLineLimitLocked();
    lineLimit = asRemembered ? GetSettings().GetLineLimit() : options.lineLimit;
    follow = options.follow && GetSettings().GetChoices().follows;
    if (!LoadFrame(IDR_MAINFRAME)) {
        return false;
    }
    GetSettings().GetPlacement().Restore(m_hWnd, show);
    ApplyLook(options.outline || GetSettings().GetChoices().outlines);
    views.GetFirst().SetLineLimit(lineLimit);
    if (options.split || GetSettings().GetChoices().splits) {
        views.Split(GetStyle());
    }
    return true;
}

int MainFrame::OnCreate(CREATESTRUCT* create)
{
    if (ConsoleFrame::OnCreate(create) == -1 || !statusBar.Create(this) ||
        !statusBar.SetIndicators(indicators, std::size(indicators))) {
        return -1;
    }
    SetMessageText(static_cast<UINT>(AFX_IDS_IDLEMESSAGE));
    DragAcceptFiles();
    RecalcLayout();
    return 0;
}

BOOL MainFrame::OnCreateClient(LPCREATESTRUCT, CCreateContext*)
{
    return views.Create();
}

void MainFrame::OnDestroy()
{
    candidate.reset();
    follower.reset();
    ConsoleFrame::OnDestroy();
}

void MainFrame::RememberMore()
{
    GetSettings().GetPlacement().Remember(m_hWnd);
}

// Split, the pane is not the only one to share what the bars leave.
void MainFrame::RecalcLayout(BOOL notify)
{
    if (!views.IsSplit()) {
        ConsoleFrame::RecalcLayout(notify);
        return;
    }
    if (laysOut) {
        return;  // a window that moves may bring on a WM_SIZE
    }
    laysOut = true;
    constexpr UINT noPane = 0;
    CRect rest;
    RepositionBars(0, 0xFFFF, noPane);
    RepositionBars(0, 0xFFFF, noPane, reposQuery, &rest);
    views.LayOut(rest);
    laysOut = false;
}

// From the linked bar; a view's own bars never come here.
void MainFrame::OnVScroll(UINT code, UINT position, CScrollBar*)
{
    views.ScrollByBar(code, position);
}

void MainFrame::OnDropFiles(HDROP drop)
{
    std::wstring dropped(::DragQueryFileW(drop, 0, nullptr, 0), L'\0');
    ::DragQueryFileW(drop, 0, dropped.data(), static_cast<UINT>(dropped.size() + 1));
    ::DragFinish(drop);
    OpenFile(dropped);
}

void MainFrame::ShowTitle()
{
    SetWindowText(path.empty() ? L"Console" : (GetFileName(path) + L" - Console").c_str());
    ShowAddress(path);
}

// Lines

void MainFrame::OpenFile(ConsoleSettings& settings, const std::wstring& newPath)
{
    for (ConsoleFrame* const frame : FindConsoleFrames()) {
        if (auto* const there = dynamic_cast<MainFrame*>(frame)) {
            there->OpenFile(newPath);
            there->ActivateFrame();
            return;
        }
    }
    auto* const frame = new MainFrame(settings);  // deletes itself with its window
    int show = SW_SHOWNORMAL;
    if (frame->Load({}, show)) {
        frame->InitialUpdateFrame(nullptr, FALSE);
        frame->ActivateFrame(show);
        frame->OpenFile(newPath);
    }
}

void MainFrame::OpenFile(const std::wstring& newPath)
{
    try {
        candidate.reset();
        candidate = std::make_unique<FileFollower>(MakeFullPath(newPath), follow, m_hWnd,
                                                   newsMessage, GetTextRules());
    } catch (const std::exception&) {  // neither memory nor a thread
        ShowError(this, ERROR_NOT_ENOUGH_MEMORY);
    }
}

TextRules MainFrame::GetTextRules() const
{
    const ConsoleChoices& choices = GetSettings().GetChoices();
    return {choices.codePage, choices.tabWidth};
}

// A file whose text is to be understood in another way is read once more.
void MainFrame::ApplyChoices(const ConsoleChoices& before)
{
    const ConsoleChoices& now = GetSettings().GetChoices();
    ConsoleFrame::ApplyChoices(before);
    if (now.lineLimit != before.lineLimit && !GetSettings().IsLineLimitLocked()) {
        LimitLines(now.lineLimit);
    }
    if (now.follows != before.follows) {
        Follow(now.follows);
    }
    if (!path.empty() && GetTextRules() != TextRules{before.codePage, before.tabWidth}) {
        OpenFile(path);
    }
}

bool MainFrame::IsLoading() const
{
    return candidate || (follower && !follower->GetState().atEnd);
}

LRESULT MainFrame::OnNews(WPARAM, LPARAM)
{
    TakeNews();
    return 0;
}

void MainFrame::OnTimer(UINT_PTR timer)
{
    if (timer == newsTimer) {
        KillTimer(newsTimer);
        TakeNews();
    }
}

void MainFrame::TakeNews()
{
    try {
        if (candidate) {
            JudgeCandidate();
        }
        if (follower) {
            ShowLines();
        }
    } catch (const std::bad_alloc&) {
        GiveUpForMemory();
    }
}

// What a message box says is past already: messages go on being handled under it.
void MainFrame::JudgeCandidate()
{
    const FollowerState state = candidate->GetState();
    if (state.opened) {
        follower = std::move(candidate);
        path = follower->GetPath();
        GetSettings().AddRecentFile(path);
        views.GetFirst().Clear();
        ShowTitle();
    } else if (state.ended) {
        YReportMessageParams message(CONSOLE_CANNOT_READ, ::AfxGetInstanceHandle());
        message.AddInsert(candidate->GetPath());
        message.AddInsert(GetErrorWords(state.error));
        if (state.error == ERROR_FILE_NOT_FOUND) {
            GetSettings().RemoveRecentFile(candidate->GetPath());
        }
        candidate.reset();
        YMessageBox(this, &message);
    }
}

void MainFrame::ShowLines()
{
    const auto end = std::chrono::steady_clock::now() + newsTurn;
    while (std::unique_ptr<LineNews> news = follower->Take()) {
        views.GetFirst().ShowLines(news->lines.GetLines(), news->lines.GetCount(),
                                   news->endsUnfinished);
        follower->GiveBack(std::move(news));
        if (std::chrono::steady_clock::now() >= end) {
            SetTimer(newsTimer, newsPause);
            return;
        }
    }
    ShowEnd();
}

void MainFrame::ShowEnd()
{
    const FollowerState state = follower->GetState();
    if (state.ended) {
        follower.reset();
        const std::wstring text = FormatText(IDS_NOTICE_ENDED, GetErrorWords(state.error).c_str());
        views.GetFirst().ShowNotice(text.c_str());
    }
}

// The second view is given up, too: it is half of the memory, and may lack the latest lines.
void MainFrame::GiveUpForMemory()
{
    candidate.reset();
    follower.reset();
    views.Unsplit();
    ShowError(this, ERROR_NOT_ENOUGH_MEMORY);
}

// Commands

void MainFrame::OnRecentFile(UINT id)
{
    const std::size_t index = id - ID_FILE_MRU_FILE1;
    if (index < GetSettings().GetRecentFiles().size()) {
        OpenFile(GetSettings().GetRecentFiles()[index]);
    }
}

void MainFrame::OnFileReload()
{
    if (!path.empty()) {
        OpenFile(path);
    }
}

void MainFrame::OnFileFollow()
{
    Follow(!follow);
}

void MainFrame::Follow(bool on)
{
    follow = on;
    for (FileFollower* reader : {follower.get(), candidate.get()}) {
        if (reader) {
            reader->SetFollowing(follow);
        }
    }
}

void MainFrame::OnFileCancel()
{
    if (GetView().GetSearch().GetState() == LineSearch::State::Running) {
        ConsoleFrame::OnCancel();
        return;
    }
    if (!IsLoading()) {
        return;
    }
    if (candidate) {
        candidate.reset();  // what is shown stays and is followed
        return;
    }
    follower.reset();
    views.GetFirst().ShowNotice(LoadText(IDS_NOTICE_CANCELLED).c_str());
}

void MainFrame::OnFileClose()
{
    candidate.reset();
    follower.reset();
    path.clear();
    views.GetFirst().Clear();
    ShowTitle();
}

void MainFrame::OnViewSplit()
{
    if (views.IsSplit()) {
        views.Unsplit();
        return;
    }
    try {
        views.Split(GetStyle());
    } catch (const std::bad_alloc&) {
        ShowError(this, ERROR_NOT_ENOUGH_MEMORY);
    }
}

void MainFrame::OnBufferSize(UINT id)
{
    LimitLines(bufferSizes[id - ID_BUFFER_1000]);
    GetSettings().SetLineLimit(lineLimit);
}

void MainFrame::LimitLines(unsigned lines)
{
    try {
        views.GetFirst().SetLineLimit(lines);
        lineLimit = lines;
    } catch (const std::bad_alloc&) {
        GiveUpForMemory();
    }
}

// The state of commands and panes

void MainFrame::OnUpdateHasFile(CCmdUI* item)
{
    item->Enable(!path.empty());
}

void MainFrame::OnUpdateFollow(CCmdUI* item)
{
    item->SetCheck(follow);
}

void MainFrame::OnUpdateCancel(CCmdUI* item)
{
    item->Enable(IsLoading() || GetView().GetSearch().GetState() == LineSearch::State::Running);
}

void MainFrame::OnUpdateSplit(CCmdUI* item)
{
    item->SetCheck(views.IsSplit());
}

void MainFrame::OnUpdateBufferSize(CCmdUI* item)
{
    item->SetRadio(bufferSizes[item->m_nID - ID_BUFFER_1000] == lineLimit);
    if (!item->m_pSubMenu) {  // the menu itself opens, to say why
        item->Enable(!GetSettings().IsLineLimitLocked());
    }
}

// Says why the sizes cannot be chosen; gone where they can.
void MainFrame::OnUpdateBufferLocked(CCmdUI* item)
{
    if (GetSettings().IsLineLimitLocked()) {
        const std::wstring lines = FormatNumber(lineLimit);
        item->SetText(FormatText(IDS_BUFFER_LOCKED, lines.c_str()).c_str());
        item->Enable(FALSE);
    } else if (item->m_pMenu && !item->m_pSubMenu) {
        item->m_pMenu->DeleteMenu(item->m_nIndex, MF_BYPOSITION);
    }
}

// The one item stands for the whole submenu.
void MainFrame::OnUpdateRecentFiles(CCmdUI* item)
{
    const std::vector<std::wstring>& files = GetSettings().GetRecentFiles();
    item->Enable(!files.empty());
    if (!item->m_pMenu || item->m_pSubMenu || files.empty()) {
        return;
    }
    CMenu& menu = *item->m_pMenu;
    while (menu.GetMenuItemCount() > 0) {
        menu.DeleteMenu(0, MF_BYPOSITION);
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        menu.AppendMenu(MF_STRING, ID_FILE_MRU_FILE1 + i, MakeRecentItem(i, files[i]).c_str());
    }
    item->m_nIndex = static_cast<UINT>(files.size()) - 1;  // the new items need no update
    item->m_nIndexMax = static_cast<UINT>(files.size());
}

void MainFrame::OnUpdateProgress(CCmdUI* item)
{
    std::wstring text;
    if (candidate) {
        text = LoadText(IDS_STATE_OPENING);
    } else if (follower) {
        text = Describe(follower->GetState(), follow);
    } else if (!path.empty()) {
        text = LoadText(IDS_STATE_STOPPED);
    }
    item->SetText(text.c_str());
}

void MainFrame::OnUpdateLines(CCmdUI* item)
{
    const unsigned lines = views.GetFirst().GetBuffer().GetLineCount();
    item->SetText(FormatCount(lines, IDS_ONE_LINE, IDS_LINES).c_str());
}

void MainFrame::OnUpdatePosition(CCmdUI* item)
{
    const ConsoleView& view = views.GetFirst();
    const std::wstring text = FormatText(IDS_AT_LINE, FormatNumber(view.GetTopLine() + 1).c_str());
    item->SetText(view.HasLines() ? text.c_str() : L"");
}

void MainFrame::OnUpdateSelection(CCmdUI* item)
{
    std::wstring text;
    if (const YTextViewHighlight* selection = views.GetFirst().GetHighlight()) {
        const YTextViewCharPosition begin = selection->GetBegin();
        const YTextViewCharPosition end = selection->GetEnd();
        text = begin.line == end.line
                   ? FormatCount(end.column - begin.column + 1, IDS_ONE_CHARACTER_SELECTED,
                                 IDS_CHARACTERS_SELECTED)
                   : FormatCount(end.line - begin.line + 1, IDS_LINES_SELECTED, IDS_LINES_SELECTED);
    }
    item->SetText(text.c_str());
}
