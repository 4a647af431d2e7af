#include "FrameworkState.h"
#include "WindowMap.h"
#include "WindowProcedure.h"

#include <cstdio>
#include <iterator>
#include <utility>

namespace {

// The system makes a helper of its own on a thread's first window, in the middle of its creation.
bool IsInputMethodWindow(HWND handle)
{
    return (::GetClassLongPtrW(handle, GCL_STYLE) & CS_IME) != 0;
}

LPCWSTR DefaultClassName()
{
    return ::AfxRegisterWndClass(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW,
                                 ::LoadCursorW(nullptr, IDC_ARROW));
}

bool IsClassRegistered(LPCWSTR name)
{
    WNDCLASSW known{};
    return ::GetClassInfoW(::AfxGetInstanceHandle(), name, &known) != FALSE;
}

}  // namespace

WindowCreation::WindowCreation(CWnd& waiting)
    : window(waiting),
      hook(::SetWindowsHookExW(WH_CBT, &OnHook, nullptr, ::GetCurrentThreadId())),
      outer(std::exchange(GetThreadState().creation, this))
{}

WindowCreation::~WindowCreation()
{
    if (hook != nullptr) {
        ::UnhookWindowsHookEx(hook);
    }
    GetThreadState().creation = outer;
}

LRESULT CALLBACK WindowCreation::OnHook(int code, WPARAM wParam, LPARAM lParam)
{
    if (const LRESULT refused = ::CallNextHookEx(nullptr, code, wParam, lParam)) {
        return refused;
    }
    WindowCreation* const creation = GetThreadState().creation;
    const HWND handle = reinterpret_cast<HWND>(wParam);
    if (code != HCBT_CREATEWND || creation == nullptr || IsInputMethodWindow(handle)) {
        return 0;
    }
    // From here on windows that appear inside this creation are not the one waited for.
    GetThreadState().creation = nullptr;
    return creation->Attach(handle) ? 0 : 1;  // 1: the system gives the window up
}

bool WindowCreation::Attach(HWND handle) noexcept
{
    attached = handle;
    try {
        window.Attach(handle);
        window.PreSubclassWindow();
        return window.HookProcedure();
    } catch (...) {
        AnswerForCurrentException(MSG{handle, WM_NULL, 0, 0, 0, {}});
        return false;
    }
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    int x, int y, int nWidth, int nHeight, HWND hWndParent, HMENU nIDorHMenu,
                    LPVOID lpParam)
{
    ASSERT(m_hWnd == nullptr);
    CREATESTRUCT cs{
        lpParam, ::AfxGetInstanceHandle(),   nIDorHMenu,     hWndParent,    nHeight,  nWidth, y,
        x,       static_cast<LONG>(dwStyle), lpszWindowName, lpszClassName, dwExStyle};
    if (!PreCreateWindow(cs)) {
        PostNcDestroy();
        return FALSE;
    }
    const WindowCreation creation(*this);
    const HWND handle =
        creation.IsReady()
            ? ::CreateWindowExW(cs.dwExStyle, cs.lpszClass, cs.lpszName,
                                static_cast<DWORD>(cs.style), cs.x, cs.y, cs.cx, cs.cy,
                                cs.hwndParent, cs.hMenu, cs.hInstance, cs.lpCreateParams)
            : nullptr;
    return handle != nullptr || AbandonCreation(creation);
}

// A window that came as far as its messages has let go of the object by itself, and the object may
// have deleted itself: it is touched only where neither has happened.
BOOL CWnd::AbandonCreation(const WindowCreation& creation)
{
    if (creation.GetAttached() != nullptr) {
        if (WindowMap::FindPermanent(creation.GetAttached()) != this) {
            return FALSE;
        }
        superWindowProc = nullptr;
        Detach();
    }
    PostNcDestroy();
    return FALSE;
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    const RECT& rect, CWnd* pParentWnd, UINT nID, LPVOID lpParam)
{
    return CreateEx(dwExStyle, lpszClassName, lpszWindowName, dwStyle, rect.left, rect.top,
                    rect.right - rect.left, rect.bottom - rect.top,
                    pParentWnd != nullptr ? pParentWnd->GetSafeHwnd() : nullptr,
                    reinterpret_cast<HMENU>(static_cast<UINT_PTR>(nID)), lpParam);
}

BOOL CWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                  CWnd* pParentWnd, UINT nID, CCreateContext* pContext)
{
    ASSERT(pParentWnd != nullptr);
    ASSERT((dwStyle & WS_POPUP) == 0);
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle | WS_CHILD, rect, pParentWnd, nID,
                    pContext);
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT& cs)
{
    if (cs.lpszClass == nullptr) {
        cs.lpszClass = DefaultClassName();
    }
    return TRUE;
}

LPCTSTR AFXAPI AfxRegisterWndClass(UINT nClassStyle, HCURSOR hCursor, HBRUSH hbrBackground,
                                   HICON hIcon)
{
    static thread_local wchar_t name[96];
    std::swprintf(name, std::size(name), L"Afx:%p:%x:%p:%p:%p",
                  static_cast<void*>(::AfxGetInstanceHandle()), nClassStyle,
                  static_cast<void*>(hCursor), static_cast<void*>(hbrBackground),
                  static_cast<void*>(hIcon));
    if (IsClassRegistered(name)) {
        return name;
    }
    WNDCLASSW description{};
    description.style = nClassStyle;
    description.lpfnWndProc = &::DefWindowProcW;
    description.hInstance = ::AfxGetInstanceHandle();
    description.hIcon = hIcon;
    description.hCursor = hCursor;
    description.hbrBackground = hbrBackground;
    description.lpszClassName = name;
    // Another thread may have been faster.
    if (::RegisterClassW(&description) == 0 && ::GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        ::AfxThrowResourceException();
    }
    return name;
}
