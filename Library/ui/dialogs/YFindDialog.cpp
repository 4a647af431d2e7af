#include "dialogs/YFindDialog.h"

#include "YMessageBox.h"
#include "YMessages.h"
#include "YReportMessageParams.h"
#include "dialogs/IFindDialogSink.h"

#include <dlgs.h>

#include <algorithm>

IMPLEMENT_DYNAMIC(YFindDialog, CFindReplaceDialog)

namespace {

const UINT findMessage = ::RegisterWindowMessageW(FINDMSGSTRINGW);
const UINT changeMessage = ::RegisterWindowMessageW(L"WM_FIND_EN_CHANGE");

constexpr std::size_t bufferLength = 1024;  // characters, with the end
constexpr DWORD callersFlags = FR_DOWN | FR_WHOLEWORD | FR_MATCHCASE;
// Newer than this tool chain's headers: the dialog carries them, its template has no box.
constexpr DWORD showWrapAround = 0x40000;
constexpr DWORD wrapAroundFlag = 0x100000;

const YPoint systemPosition(YFindDialog::systemPlace, YFindDialog::systemPlace);

// Whether all of a window would be seen at a place.
bool IsOnScreen(HWND window, YPoint place)
{
    RECT size{};
    ::GetWindowRect(window, &size);
    const LONG right = place.x + (size.right - size.left) - 1;
    const LONG bottom = place.y + (size.bottom - size.top) - 1;
    const POINT corners[] = {
        {place.x, place.y}, {right, place.y}, {place.x, bottom}, {right, bottom}};
    return std::all_of(std::begin(corners), std::end(corners), [](POINT corner) {
        return ::MonitorFromPoint(corner, MONITOR_DEFAULTTONULL) != nullptr;
    });
}

}  // namespace

// Gets the notifications of the system's dialog, whose parent it is.
class YFindDialog::SinkWindow : public CWnd
{
public:
    explicit SinkWindow(YFindDialog& notified) : dialog(notified) {}

protected:
    afx_msg LRESULT OnFind(WPARAM wParam, LPARAM lParam)
    {
        return dialog.OnFindReplace(wParam, lParam);
    }
    DECLARE_MESSAGE_MAP()

private:
    YFindDialog& dialog;
};

BEGIN_MESSAGE_MAP(YFindDialog::SinkWindow, CWnd)
    ON_REGISTERED_MESSAGE(findMessage, &YFindDialog::SinkWindow::OnFind)
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(YFindDialog, CFindReplaceDialog)
    ON_REGISTERED_MESSAGE(changeMessage, &YFindDialog::OnFindEnChanged)
    ON_WM_ACTIVATE()
    ON_WM_MOVE()
END_MESSAGE_MAP()

YFindDialog::YFindDialog(const wchar_t* initialText, unsigned long flags, IFindDialogSink* sink,
                         CWnd* owner, bool wrapAround)
    : ownerWindow(owner), findSink(sink), searchText(initialText)
{
    searchText.resize(bufferLength - 1);  // the string keeps an end behind it
    m_fr.lpstrFindWhat = searchText.data();
    m_fr.wFindWhatLen = static_cast<WORD>(bufferLength);
    m_fr.Flags = (flags & callersFlags) | showWrapAround | (wrapAround ? wrapAroundFlag : 0UL);
}

YFindDialog::~YFindDialog() = default;

bool YFindDialog::Create(YPoint& position)
{
    sinkWindow = std::make_unique<SinkWindow>(*this);
    if (!sinkWindow->CreateEx(0, ::AfxRegisterWndClass(0), L"YFindDialog Sink", WS_CHILD, 0, 0, 0,
                              0, ownerWindow->GetSafeHwnd(), nullptr)) {
        sinkWindow.reset();
        return false;
    }
    requestedPosition = position;
    m_fr.Flags |= FR_ENABLEHOOK;
    m_fr.lpfnHook = &Place;
    m_fr.lCustData = reinterpret_cast<LPARAM>(this);
    return CFindReplaceDialog::Create(TRUE, m_fr.lpstrFindWhat, nullptr, m_fr.Flags,
                                      sinkWindow.get()) != FALSE;
}

// The text that the dialog begins with is an edit, too, and comes before WM_INITDIALOG.
UINT_PTR CALLBACK YFindDialog::Place(HWND dialog, UINT message, WPARAM wParam,
                                     LPARAM lParam) noexcept
{
    if (message == WM_INITDIALOG) {
        auto& self = *reinterpret_cast<YFindDialog*>(
            reinterpret_cast<const FINDREPLACEW*>(lParam)->lCustData);
        YPoint& place = self.requestedPosition;
        if (place != systemPosition && IsOnScreen(dialog, place)) {
            ::SetWindowPos(dialog, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        } else {
            place = systemPosition;
        }
        return TRUE;
    }
    const HWND edit = ::FindWindowExW(dialog, nullptr, L"Edit", nullptr);
    if (message == WM_COMMAND && HIWORD(wParam) == EN_CHANGE &&
        reinterpret_cast<HWND>(lParam) == edit) {
        ::PostMessageW(dialog, changeMessage, 0, 0);
    }
    return FALSE;
}

void YFindDialog::BringToTop(YPoint position, bool activate)
{
    if (position != systemPosition && IsOnScreen(m_hWnd, position)) {
        SetWindowPos(nullptr, position.x, position.y, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | (activate ? 0U : SWP_NOACTIVATE));
    }
    ShowWindow(activate ? SW_SHOW : SW_SHOWNA);
}

void YFindDialog::Hide()
{
    ShowWindow(SW_HIDE);
}

YPoint YFindDialog::GetPosition() const
{
    CRect window;
    GetWindowRect(&window);
    return YPoint(window.TopLeft());
}

std::wstring YFindDialog::GetString() const
{
    CString text;
    const CWnd* const edit = m_hWnd ? GetDlgItem(edt1) : nullptr;
    if (edit) {
        edit->GetWindowText(text);
        return text.GetString();
    }
    return searchText.c_str();
}

LRESULT YFindDialog::OnFindEnChanged(WPARAM, LPARAM)
{
    return 0;
}

// The sink may close the dialog at a hit: nothing is touched after that.
LRESULT YFindDialog::OnFindReplace(WPARAM, LPARAM)
{
    if (!IsTerminating()) {
        findSink->OnFindNext();
        return 0;
    }
    const bool wrapsAround = (m_fr.Flags & wrapAroundFlag) != 0;
    m_fr.lpstrFindWhat = m_szFindWhat;
    searchText = {};
    findSink->OnFindDialogClosed(wrapsAround);
    return 0;
}

void YFindDialog::OnActivate(UINT state, CWnd* other, BOOL minimized)
{
    CFindReplaceDialog::OnActivate(state, other, minimized);
    findSink->OnFindDialogActivated();
}

void YFindDialog::OnMove(int x, int y)
{
    CFindReplaceDialog::OnMove(x, y);
    findSink->OnFindDialogMoved();
}

void YFindDialog::EndOfFindBufferReached()
{
    OnFindReplace(0, 0);
}

void YFindDialog::PresentEndOfBufferMessage()
{
    YReportMessageParams message(MSG_END_OF_BUFFER);
    PresentMsgBox(&message);
}

void YFindDialog::PresentMsgBox(YReportMessageParams* message)
{
    YMessageBox(this, message);
}
