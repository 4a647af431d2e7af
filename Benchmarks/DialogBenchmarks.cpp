// Dialogs: opening a tree of pages, going from page to page, and looking for a text.
#include "LineSearch.h"
#include "Report.h"
#include "Subjects.h"
#include "ViewHost.h"
#include "resource.h"

#include <afxwin.h>
#include <dialogs/PropertyTreeIds.h>
#include <dialogs/YPropertyTreeDialog.h>

#include <commctrl.h>

#include <chrono>
#include <cwchar>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int pageCount = 40;
constexpr int childrenPerBranch = 4;  // every fifth page is at the top
constexpr UINT openMessage = WM_APP + 1;
constexpr unsigned layout = 1;
constexpr int dialogTemplate = PROPERTY_TREE_WITH_APPLY;

// The templates of the sample's options, in turn.
unsigned GetPageTemplate(int page)
{
    return static_cast<unsigned>(IDD_OPTIONS_VIEW + page % 9);
}

bool IsAtTop(int page)
{
    return page % (childrenPerBranch + 1) == 0;
}

// A window manager would decide when such a window comes and how often it is painted.
void TakeFromWindowManager(HWND window)
{
    constexpr LONG managed = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME;
    ::SetWindowLongW(window, GWL_STYLE, ::GetWindowLongW(window, GWL_STYLE) & ~managed);
}

// A modal dialog may be waiting for idle time with being shown.
void PaintNow(HWND window)
{
    ::ShowWindow(window, SW_SHOW);
    Pump();
    ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

// Ours. What is done once it is open is done from its message loop.
class TreeDialog : public YPropertyTreeDialog
{
public:
    TreeDialog() : YPropertyTreeDialog(L"Benchmark", layout, nullptr, nullptr, nullptr)
    {
        YPropertyTreePage* branch = nullptr;
        for (int i = 0; i < pageCount; ++i) {
            pages.push_back(std::make_unique<YPropertyTreePage>(GetPageTemplate(i)));
            if (IsAtTop(i)) {
                branch = pages.back().get();
                branch->SetExpanded(true);
                AddPage(branch);
            } else {
                branch->AddPage(pages.back().get());
            }
        }
    }

    std::function<void(CTreeCtrl&)> whenOpen;

protected:
    BOOL OnInitDialog() override
    {
        TakeFromWindowManager(*this);
        PostMessage(openMessage);
        return YPropertyTreeDialog::OnInitDialog();
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != openMessage) {
            return YPropertyTreeDialog::WindowProc(message, wParam, lParam);
        }
        PaintNow(*this);
        if (whenOpen) {
            whenOpen(static_cast<CTreeCtrl&>(*GetDlgItem(PROPERTY_TREE_TREE)));
        }
        EndDialog(IDOK);
        return 0;
    }

private:
    std::vector<std::unique_ptr<YPropertyTreePage>> pages;
};

// The same windows by bare calls.
class BareDialog
{
public:
    std::function<void()> whenOpen;

    void Run()
    {
        const auto result =
            ::DialogBoxParamW(::GetModuleHandleW(L"CommonUi.dll"), MAKEINTRESOURCEW(dialogTemplate),
                              nullptr, &Receive, reinterpret_cast<LPARAM>(this));
        if (result != IDOK) {
            throw std::runtime_error("the bare dialog did not open");
        }
    }
    void GoTo(std::size_t next)
    {
        ::SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(items[next]));
        ::ShowWindow(pages[current], SW_HIDE);
        ::SetDlgItemTextW(dialog, PROPERTY_TREE_HEADER, L"  header");
        ::ShowWindow(pages[next], SW_SHOW);
        current = next;
    }
    HWND GetWindow() const { return dialog; }
    std::size_t CountPages() const { return pages.size(); }

private:
    static INT_PTR CALLBACK Receive(HWND window, UINT message, WPARAM, LPARAM lParam)
    {
        if (message == WM_INITDIALOG) {
            ::SetWindowLongPtrW(window, DWLP_USER, lParam);
            reinterpret_cast<BareDialog*>(lParam)->Fill(window);
            return TRUE;
        }
        if (message != openMessage) {
            return FALSE;
        }
        PaintNow(window);
        auto* const self = reinterpret_cast<BareDialog*>(::GetWindowLongPtrW(window, DWLP_USER));
        if (self->whenOpen) {
            self->whenOpen();
        }
        ::EndDialog(window, IDOK);
        return TRUE;
    }
    static INT_PTR CALLBACK ReceivePage(HWND, UINT message, WPARAM, LPARAM)
    {
        return message == WM_INITDIALOG;
    }

    void Fill(HWND window)
    {
        TakeFromWindowManager(window);
        dialog = window;
        tree = ::GetDlgItem(window, PROPERTY_TREE_TREE);
        ::SetWindowLongW(tree, GWL_STYLE, ::GetWindowLongW(tree, GWL_STYLE) | 0x37);
        RECT place{};
        ::GetWindowRect(::GetDlgItem(window, PROPERTY_TREE_PAGE), &place);
        ::MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
        HTREEITEM branch = nullptr;
        for (int i = 0; i < pageCount; ++i) {
            const HWND page =
                ::CreateDialogParamW(::GetModuleHandleW(nullptr),
                                     MAKEINTRESOURCEW(GetPageTemplate(i)), window, &ReceivePage, 0);
            ::SetWindowPos(page, nullptr, place.left, place.top, place.right - place.left,
                           place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
            wchar_t label[64] = L"";
            ::GetWindowTextW(page, label, 64);
            *std::wcschr(label, L'\n') = L'\0';
            TVINSERTSTRUCTW item{};
            item.hParent = IsAtTop(i) ? TVI_ROOT : branch;
            item.hInsertAfter = TVI_LAST;
            item.item.mask = TVIF_TEXT | TVIF_PARAM;
            item.item.pszText = label;
            items.push_back(reinterpret_cast<HTREEITEM>(
                ::SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item))));
            branch = IsAtTop(i) ? items.back() : branch;
            pages.push_back(page);
        }
        for (int i = 0; i < pageCount; i += childrenPerBranch + 1) {
            ::SendMessageW(tree, TVM_EXPAND, TVE_EXPAND,
                           reinterpret_cast<LPARAM>(items[static_cast<std::size_t>(i)]));
        }
        GoTo(0);
        ::PostMessageW(window, openMessage, 0, 0);
    }

    HWND dialog = nullptr;
    HWND tree = nullptr;
    std::vector<HTREEITEM> items;
    std::vector<HWND> pages;
    std::size_t current = 0;
};

// A program's own window behind its dialogs: without one the desktop is in front between two of them,
// which makes every other dialog several times dearer.
class FrontWindow
{
public:
    FrontWindow()
        : window(::CreateWindowExW(0, L"#32770", L"Benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50,
                                   50, 600, 600, nullptr, nullptr, nullptr, nullptr))
    {
        ::SetForegroundWindow(window);
        Pump();
    }
    ~FrontWindow()
    {
        ::DestroyWindow(window);
        Pump();
    }
    FrontWindow(const FrontWindow&) = delete;
    FrontWindow& operator=(const FrontWindow&) = delete;

private:
    HWND window;
};

// From nothing until all is painted, and gone again.
void OpenTree(benchmark::State& state)
{
    const FrontWindow front;
    for (auto _ : state) {
        TreeDialog dialog;
        if (dialog.DoModal() != IDOK) {
            state.SkipWithError("the dialog did not open");
        }
    }
}

void OpenBareTree(benchmark::State& state)
{
    const FrontWindow front;
    for (auto _ : state) {
        BareDialog().Run();
    }
}

// To the next page until all is painted.
void ChangePage(benchmark::State& state)
{
    const FrontWindow front;
    TreeDialog dialog;
    dialog.whenOpen = [&](CTreeCtrl& tree) {
        for (auto _ : state) {
            const HTREEITEM next = tree.GetNextVisibleItem(tree.GetSelectedItem());
            tree.SelectItem(next ? next : tree.GetRootItem());
            PaintNow(dialog);
        }
    };
    dialog.DoModal();
}

void ChangeBarePage(benchmark::State& state)
{
    const FrontWindow front;
    BareDialog dialog;
    dialog.whenOpen = [&] {
        std::size_t page = 0;
        for (auto _ : state) {
            page = (page + 1) % dialog.CountPages();
            dialog.GoTo(page);
            PaintNow(dialog.GetWindow());
        }
    };
    dialog.Run();
}

constexpr unsigned lineCount = 1'000'000;
constexpr std::size_t lineLength = 80;

std::wstring MakeLine(unsigned number)
{
    std::wstring line = L"2026-03-01 10:15:" + std::to_wstring(number % 60) + L" Server request " +
                        std::to_wstring(number) +
                        L" was answered in no time at all, by this very machine";
    line.resize(lineLength, L'.');
    return line;
}

// A text that stands nowhere, although it begins as many words do.
constexpr wchar_t sought[] = L"Requests were";
constexpr wchar_t foldedSought[] = L"requests were";

void SearchLines(benchmark::State& state, bool matchesCase)
{
    YTextViewBuffer lines(lineCount);
    unsigned removed = 0;
    for (unsigned i = 0; i < lineCount; ++i) {
        const std::wstring text = MakeLine(i);
        YTextViewBuffer::LineInfo line{{text.begin(), text.end()}, nullptr};
        lines.AppendLines(&line, 1, removed);
    }
    SearchQuery query;
    query.text = sought;
    query.matchesCase = matchesCase;
    for (auto _ : state) {
        LineSearch search;
        search.Start(lines, query, {0, 0});
        while (search.Continue(lines, std::chrono::milliseconds(20)) ==
               LineSearch::State::Running) {}
        if (search.GetState() != LineSearch::State::NotFound) {
            state.SkipWithError("it stands nowhere");
        }
    }
}

// The same lines, each a text of its own with its end; folded: in small letters already.
void SearchBareLines(benchmark::State& state, bool folded)
{
    std::vector<std::wstring> lines(lineCount);
    for (unsigned i = 0; i < lineCount; ++i) {
        lines[i] = MakeLine(i);
        if (folded) {
            ::CharLowerBuffW(lines[i].data(), static_cast<DWORD>(lines[i].size()));
        }
    }
    for (auto _ : state) {
        for (const std::wstring& line : lines) {
            if (std::wcsstr(line.c_str(), folded ? foldedSought : sought)) {
                state.SkipWithError("it stands nowhere");
            }
        }
    }
}

}  // namespace

void AddDialogSubjects(Report& report)
{
    benchmark::RegisterBenchmark("OpenTree", &OpenTree)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("OpenBareTree", &OpenBareTree)->Unit(benchmark::kMillisecond);
    report.CompareCost("a dialog of 40 pages opened, to the same windows made bare", "OpenTree",
                       "OpenBareTree", 1.5);
    benchmark::RegisterBenchmark("ChangePage", &ChangePage)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("ChangeBarePage", &ChangeBarePage)->Unit(benchmark::kMicrosecond);
    report.CompareCost("to the next page, to a bare hide and show", "ChangePage", "ChangeBarePage",
                       1.5);

    benchmark::RegisterBenchmark("SearchLines", &SearchLines, true)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SearchBareLines", &SearchBareLines, false)
        ->Unit(benchmark::kMillisecond);
    report.CompareRate("a million lines searched, to wcsstr over the same texts", "SearchLines",
                       "SearchBareLines", 0.5);
    benchmark::RegisterBenchmark("SearchFoldedLines", &SearchLines, false)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("SearchBareFoldedLines", &SearchBareLines, true)
        ->Unit(benchmark::kMillisecond);
    report.CompareRate("the same ignoring case, to wcsstr over folded texts", "SearchFoldedLines",
                       "SearchBareFoldedLines", 0.5);
}
