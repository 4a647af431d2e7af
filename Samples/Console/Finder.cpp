#include "Finder.h"

#include "ConsoleFrame.h"
#include "ConsoleMessages.h"
#include "ConsoleSettings.h"
#include "ConsoleText.h"
#include "ConsoleView.h"
#include "resource.h"

#include <YReportMessageParams.h>
#include <dialogs/YFindDialog.h>

#include <utility>

namespace {

constexpr std::size_t longestProposal = 200;  // characters; a selection may be as long as its line

}  // namespace

class Finder::Box : public YFindDialog
{
public:
    Box(const std::wstring& text, Finder& asking, CWnd* parent)
        : YFindDialog(text.c_str(), asking.GetBoxFlags(), &asking, parent,
                      asking.settings.GetChoices().wrapsAround),
          finder(&asking)
    {}

    ~Box() override
    {
        if (finder) {
            finder->OnBoxGone();
        }
    }

    void Leave() { finder = nullptr; }

protected:
    LRESULT OnFindEnChanged(WPARAM, LPARAM) override
    {
        if (finder) {
            finder->OnTyped();
        }
        return 0;
    }

private:
    Finder* finder;  // null: is gone
};

Finder::~Finder()
{
    if (box) {
        box->Leave();
    }
}

void Finder::ShowBox()
{
    if (box) {
        box->BringToTop(YPoint(-1, -1), true);
        box->SetActiveWindow();  // where it was shown already
        return;
    }
    typed = GetProposal();
    box = new Box(typed, *this, &frame);
    YPoint place = settings.GetFindPlace();
    if (box->Create(place)) {
        box->BringToTop(YPoint(-1, -1), true);
    } else {
        delete box;  // unless it is gone already
    }
}

std::wstring Finder::GetProposal() const
{
    const ConsoleView& view = frame.GetView();
    const YTextViewHighlight* const selection = view.GetHighlight();
    if (!selection || selection->GetBegin().line != selection->GetEnd().line) {
        return last;
    }
    const std::vector<wchar_t>& line =
        view.GetBuffer().GetLineInfo(selection->GetBegin().line).text;
    const std::size_t begin = selection->GetBegin().column;
    const std::size_t length = selection->GetEnd().column - begin + 1;
    const bool isWhole = begin + length <= line.size() && length <= longestProposal;
    return isWhole ? std::wstring(line.data() + begin, length) : last;
}

unsigned long Finder::GetBoxFlags() const
{
    const ConsoleChoices& choices = settings.GetChoices();
    return FR_DOWN | (choices.matchesCase ? FR_MATCHCASE : 0) |
           (choices.matchesWords ? FR_WHOLEWORD : 0);
}

// Requests

void Finder::SearchFor(const std::wstring& text, bool backwards, bool onward)
{
    asked = false;
    Find(text, backwards, onward);
}

void Finder::FindAgain(bool backwards)
{
    if (last.empty()) {
        ShowBox();
    } else {
        SearchFor(last, backwards, true);
    }
}

// How the user wants it found is one choice of the program's, wherever it is asked for.
void Finder::Find(const std::wstring& text, bool backwards, bool onward)
{
    const ConsoleChoices& choices = settings.GetChoices();
    SearchQuery query;
    query.text = last = text;
    query.matchesCase = choices.matchesCase;
    query.isWholeWord = choices.matchesWords;
    query.isBackwards = backwards;
    query.wraps = choices.wrapsAround;
    frame.ShowMessage(nullptr);
    frame.GetView().Find(query, onward);
}

bool Finder::Cancel()
{
    ConsoleView& view = frame.GetView();
    if (view.GetSearch().GetState() != LineSearch::State::Running) {
        return false;
    }
    view.CancelSearch();
    frame.ShowMessage(LoadText(IDS_SEARCH_CANCELLED).c_str());
    return true;
}

// The box

void Finder::OnFindNext()
{
    ConsoleChoices choices = settings.GetChoices();
    choices.matchesCase = box->MatchCase() != FALSE;
    choices.matchesWords = box->MatchWholeWord() != FALSE;
    settings.SetChoices(choices);
    asked = true;
    Find(box->GetString(), !box->SearchDown(), true);
}

// The first change comes when the box is made.
void Finder::OnTyped()
{
    const std::wstring text = box->GetString();
    if (text == typed) {
        return;
    }
    typed = text;
    if (settings.GetChoices().findsWhileTyping) {
        SearchFor(text, false, false);
    }
}

void Finder::OnFindDialogMoved()
{
    if (box && box->IsWindowVisible()) {
        settings.SetFindPlace(box->GetPosition());
    }
}

void Finder::OnFindDialogClosed(bool)
{
    Cancel();
}

void Finder::OnBoxGone()
{
    box = nullptr;
    asked = false;
}

void Finder::OnProgress()
{
    const LineSearch& search = frame.GetView().GetSearch();
    switch (search.GetState()) {
    case LineSearch::State::Idle: break;
    case LineSearch::State::Running: frame.ShowMessage(LoadText(IDS_SEARCH_RUNNING).c_str()); break;
    case LineSearch::State::Found:
        frame.ShowMessage(search.HasWrapped() ? LoadText(IDS_SEARCH_WRAPPED).c_str() : nullptr);
        break;
    case LineSearch::State::NotFound:
        frame.ShowMessage(FormatText(IDS_SEARCH_NOT_FOUND, search.GetQuery().text.c_str()).c_str());
        break;
    }
    if (search.GetState() == LineSearch::State::Running || !box) {
        return;
    }
    box->SetNotFound(search.GetState() == LineSearch::State::NotFound);
    if (std::exchange(asked, false) && box->GetNotFound()) {
        frame.PostMessage(WM_COMMAND, ID_SEARCH_TELL_END);
    }
}

// The frame is disabled meanwhile: its user is to answer first. It may be gone afterwards.
void Finder::TellEnd()
{
    if (!box) {
        return;
    }
    const HWND window = frame.GetSafeHwnd();
    ::EnableWindow(window, FALSE);
    if (settings.GetChoices().wrapsAround) {
        YReportMessageParams message(CONSOLE_NOT_FOUND, ::AfxGetInstanceHandle());
        message.AddInsert(last);
        box->PresentMsgBox(&message);
    } else {
        box->PresentEndOfBufferMessage();
    }
    ::EnableWindow(window, TRUE);
}
