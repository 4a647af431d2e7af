#include "CallGuarded.h"
#include "autocomplete/PopupMessages.h"
#include "autocomplete/YAutoComplete.h"

std::mutex YAutoComplete::m_mutexAutoComplete;
std::map<HWND, YAutoComplete::Pointer> YAutoComplete::m_mapHwndAutoComplete;
std::map<DWORD, YAutoComplete::Pointer> YAutoComplete::m_mapThreadIdAutoComplete;
std::map<DWORD, std::pair<HHOOK, unsigned>> YAutoComplete::m_mapThreadIdHookCount;

namespace {

bool IsPress(WPARAM message)
{
    switch (message) {
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_XBUTTONDOWN:
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_NCMBUTTONDOWN:
    case WM_NCXBUTTONDOWN: return true;
    default: return false;
    }
}

// In a menu, or while a window is moved or sized, the keys belong to that loop of the system's, though
// they still come under the name of the edit.
bool IsInLoopOfSystem()
{
    constexpr DWORD loops =
        GUI_INMENUMODE | GUI_POPUPMENUMODE | GUI_SYSTEMMENUMODE | GUI_INMOVESIZE;
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return ::GetGUIThreadInfo(::GetCurrentThreadId(), &info) && (info.flags & loops) != 0;
}

bool Contains(HWND window, POINT screenPoint)
{
    RECT place{};
    return ::GetWindowRect(window, &place) && ::PtInRect(&place, screenPoint);
}

}  // namespace

void YAutoComplete::EnterThread()
{
    Pointer replaced(this);  // an entry that is replaced is released behind the lock
    const std::lock_guard lock(m_mutexAutoComplete);
    std::swap(m_mapHwndAutoComplete[edit], replaced);
    auto& [hook, count] = m_mapThreadIdHookCount[::GetCurrentThreadId()];
    if (count++ == 0) {
        hook = ::SetWindowsHookExW(WH_GETMESSAGE, &MessageHook, nullptr, ::GetCurrentThreadId());
    }
}

void YAutoComplete::LeaveThread()
{
    Pointer entry;  // released behind the lock
    const std::lock_guard lock(m_mutexAutoComplete);
    const auto own = m_mapHwndAutoComplete.find(edit);
    if (own == m_mapHwndAutoComplete.end()) {
        return;
    }
    entry = std::move(own->second);
    m_mapHwndAutoComplete.erase(own);
    const auto thread = m_mapThreadIdHookCount.find(::GetCurrentThreadId());
    if (thread != m_mapThreadIdHookCount.end() && --thread->second.second == 0) {
        ::UnhookWindowsHookEx(thread->second.first);
        m_mapThreadIdHookCount.erase(thread);
    }
}

void YAutoComplete::BecomeShown()
{
    Pointer replaced(this);
    const std::lock_guard lock(m_mutexAutoComplete);
    std::swap(m_mapThreadIdAutoComplete[::GetCurrentThreadId()], replaced);
}

// The entry may already be that of the next edit, whose list came up before this one went.
void YAutoComplete::StopBeingShown()
{
    Pointer entry;
    const std::lock_guard lock(m_mutexAutoComplete);
    const auto own = m_mapThreadIdAutoComplete.find(::GetCurrentThreadId());
    if (own != m_mapThreadIdAutoComplete.end() && own->second == this) {
        entry = std::move(own->second);
        m_mapThreadIdAutoComplete.erase(own);
    }
}

YAutoComplete::Pointer YAutoComplete::FindByEdit(HWND edit)
{
    const std::lock_guard lock(m_mutexAutoComplete);
    const auto found = m_mapHwndAutoComplete.find(edit);
    return found != m_mapHwndAutoComplete.end() ? found->second : Pointer();
}

YAutoComplete::Pointer YAutoComplete::FindShown()
{
    const std::lock_guard lock(m_mutexAutoComplete);
    const auto found = m_mapThreadIdAutoComplete.find(::GetCurrentThreadId());
    return found != m_mapThreadIdAutoComplete.end() ? found->second : Pointer();
}

LRESULT CALLBACK YAutoComplete::MessageHook(int code, WPARAM wParam, LPARAM lParam) noexcept
{
    if (code == HC_ACTION) {
        CallGuarded([&] { OnThreadMessage(*reinterpret_cast<MSG*>(lParam), wParam == PM_REMOVE); });
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

// A dialog takes Tab and Escape before the edit sees them; it must not even look at them. Shown or
// not, the list is what these keys are for in such an edit.
void YAutoComplete::OnThreadMessage(MSG& message, bool isRemoved)
{
    if (message.message != WM_KEYDOWN ||
        (message.wParam != VK_TAB && message.wParam != VK_ESCAPE)) {
        return;
    }
    const Pointer object = FindByEdit(message.hwnd);
    if (!object || IsInLoopOfSystem()) {
        return;
    }
    message.message = WM_NULL;
    if (isRemoved) {
        object->OnKeyDown(message.wParam);
    }
}

LRESULT CALLBACK YAutoComplete::MouseHook(int code, WPARAM wParam, LPARAM lParam) noexcept
{
    if (code == HC_ACTION && IsPress(wParam)) {
        CallGuarded([&] {
            if (const Pointer object = FindShown()) {
                object->OnPressAnywhere(reinterpret_cast<const MOUSEHOOKSTRUCT*>(lParam)->pt);
            }
        });
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

void YAutoComplete::OnPressAnywhere(POINT point)
{
    if (!Contains(edit, point) && !Contains(popup, point)) {
        PostToPopup(hideMessage);
    }
}
