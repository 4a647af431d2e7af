#include "WindowProcedure.h"

#include "FrameworkState.h"
#include "MessageMap.h"
#include "WindowMap.h"

#include <utility>

namespace {

// Makes a message the thread's current one, for Default and for what parents hand back.
class HandledMessage
{
public:
    explicit HandledMessage(const MSG& message)
        : handled(GetThreadState().handled), outer(std::exchange(handled, message))
    {}
    ~HandledMessage() { handled = outer; }

private:
    MSG& handled;  // the thread's
    MSG outer;
};

CDC* DcOf(WPARAM wParam)
{
    return CDC::FromHandle(reinterpret_cast<HDC>(wParam));
}

CWnd* WindowOf(WPARAM parameter)
{
    return CWnd::FromHandle(reinterpret_cast<HWND>(parameter));
}

CWnd* WindowOf(LPARAM parameter)
{
    return CWnd::FromHandle(reinterpret_cast<HWND>(parameter));
}

// Handlers take any sender of scroll messages for a CScrollBar, which adds no data to CWnd.
CScrollBar* ScrollBarOf(LPARAM lParam)
{
    return static_cast<CScrollBar*>(WindowOf(lParam));
}

CPoint PointOf(LPARAM lParam)
{
    return CPoint(static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
}

template <class T>
T* PointerOf(LPARAM lParam)
{
    return reinterpret_cast<T*>(lParam);
}

bool IsControlColor(UINT message)
{
    return message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC;
}

constexpr wchar_t previousProperty[] = L"CommonFrameworkPreviousProcedure";

LRESULT HandOn(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto previous = reinterpret_cast<WNDPROC>(::GetPropW(handle, previousProperty));
    if (previous == nullptr) {
        return ::DefWindowProcW(handle, message, wParam, lParam);
    }
    if (message == WM_NCDESTROY) {
        ::RemovePropW(handle, previousProperty);
    }
    return ::CallWindowProcW(previous, handle, message, wParam, lParam);
}

}  // namespace

void WindowProcedure::LeaveInChain(HWND handle, WNDPROC previous)
{
    ::SetPropW(handle, previousProperty, reinterpret_cast<HANDLE>(previous));
}

LRESULT CALLBACK WindowProcedure::Receive(HWND handle, UINT message, WPARAM wParam, LPARAM lParam)
{
    CWnd* const window = WindowMap::FindPermanent(handle);
    if (window == nullptr) {
        return HandOn(handle, message, wParam, lParam);
    }
    const MSG current{handle, message, wParam, lParam, 0, {}};
    const HandledMessage handled(current);
    try {
        const LRESULT answer = window->WindowProc(message, wParam, lParam);
        // Whatever the handler of the size does, and whether it calls its base: the children follow.
        const bool isSized = message == WM_SIZE && wParam != SIZE_MINIMIZED;
        if (isSized && WindowMap::FindPermanent(handle) == window) {
            window->ResizeDynamicLayout();
        }
        return answer;
    } catch (...) {
        const LRESULT answer = AnswerForCurrentException(current);
        if (message == WM_NCDESTROY && WindowMap::FindPermanent(handle) == window) {
            window->Detach();  // the handle is dead, whatever the handler left undone
        }
        return answer;
    }
}

WNDPROC WindowProcedure::RejoinChain(HWND handle)
{
    return reinterpret_cast<WNDPROC>(::RemovePropW(handle, previousProperty));
}

bool CWnd::HookProcedure()
{
    if (superWindowProc != nullptr) {  // Attach has found us in the chain
        return true;
    }
    const auto previous = reinterpret_cast<WNDPROC>(::SetWindowLongPtrW(
        m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WindowProcedure::Receive)));
    *GetSuperWndProcAddr() = previous;
    return previous != nullptr;
}

// Where somebody came after us, taking our procedure out would take theirs out, too: it stays, and
// Detach sees to it.
void CWnd::RestoreProcedure()
{
    const auto current = reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(m_hWnd, GWLP_WNDPROC));
    const WNDPROC previous = *GetSuperWndProcAddr();
    if (current == &WindowProcedure::Receive && previous != nullptr) {
        ::SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
        superWindowProc = nullptr;
    }
}

const MSG* PASCAL CWnd::GetCurrentMessage()
{
    return &GetThreadState().handled;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = 0;
    if (!OnWndMsg(message, wParam, lParam, &result)) {
        result = DefWindowProc(message, wParam, lParam);
    }
    return result;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (const WNDPROC super = *GetSuperWndProcAddr()) {
        return ::CallWindowProcW(super, m_hWnd, message, wParam, lParam);
    }
    return ::DefWindowProcW(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default()
{
    const MSG& current = GetThreadState().handled;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult)
{
    LRESULT result = 0;
    if (message == WM_COMMAND) {
        return OnCommand(wParam, lParam);
    }
    if (message == WM_NOTIFY) {
        return OnNotify(wParam, lParam, pResult);
    }
    const UINT sought = IsControlColor(message) ? WM_CTLCOLOR : message;
    const AFX_MSGMAP_ENTRY* const entry = FindMessageEntry(GetMessageMap(), sought);
    if (entry == nullptr) {
        return FALSE;
    }
    result = CallHandler(*entry, message, wParam, lParam);
    if (pResult != nullptr) {
        *pResult = result;
    }
    // A control without a brush of its own leaves the choice to its parent.
    return entry->nSig != AfxSig_ControlColorReflect || result != 0;
}

LRESULT CWnd::CallHandler(const AFX_MSGMAP_ENTRY& entry, UINT message, WPARAM wParam, LPARAM lParam)
{
    // Every case: the handler as it was declared, called with the parameters unpacked for it.
#define AFX_CALL(signature) (this->*RestoreSignature<signature>(entry.pfn))
#define AFX_CALL_VOID(signature, arguments) \
    case signature:                         \
        AFX_CALL(signature) arguments;      \
        return 0
#define AFX_CALL_RESULT(signature, arguments) \
    case signature:                           \
        return static_cast<LRESULT>(AFX_CALL(signature) arguments)
#define AFX_CALL_BRUSH(signature, arguments) \
    case signature: return reinterpret_cast<LRESULT>(AFX_CALL(signature) arguments)

    const UINT low = LOWORD(wParam);
    const UINT high = HIWORD(wParam);
    const UINT_PTR signature = entry.nMessage == 0xC000 ? AfxSig_Message : entry.nSig;
    switch (signature) {
        AFX_CALL_RESULT(AfxSig_Message, (wParam, lParam));
        AFX_CALL_VOID(AfxSig_Plain, ());
        AFX_CALL_RESULT(AfxSig_Create, (PointerOf<CREATESTRUCT>(lParam)));
        AFX_CALL_RESULT(AfxSig_NcCreate, (PointerOf<CREATESTRUCT>(lParam)));
        AFX_CALL_VOID(AfxSig_Size, (wParam, LOWORD(lParam), HIWORD(lParam)));
        AFX_CALL_VOID(AfxSig_Move, (PointOf(lParam).x, PointOf(lParam).y));
        AFX_CALL_RESULT(AfxSig_EraseBackground, (DcOf(wParam)));
        AFX_CALL_RESULT(AfxSig_PrintClient, (DcOf(wParam), static_cast<UINT>(lParam)));
        AFX_CALL_RESULT(AfxSig_SetCursor, (WindowOf(wParam), LOWORD(lParam), HIWORD(lParam)));
        AFX_CALL_VOID(AfxSig_Scroll, (low, high, ScrollBarOf(lParam)));
        AFX_CALL_VOID(AfxSig_ScrollReflect, (low, high));
        AFX_CALL_RESULT(AfxSig_MouseWheel, (low, static_cast<short>(high), PointOf(lParam)));
        AFX_CALL_VOID(AfxSig_Mouse, (wParam, PointOf(lParam)));
        AFX_CALL_RESULT(AfxSig_MouseActivate, (WindowOf(wParam), LOWORD(lParam), HIWORD(lParam)));
        AFX_CALL_RESULT(AfxSig_NcHitTest, (PointOf(lParam)));
        AFX_CALL_VOID(AfxSig_Key, (wParam, LOWORD(lParam), HIWORD(lParam)));
        AFX_CALL_VOID(AfxSig_Timer, (wParam));
        AFX_CALL_VOID(AfxSig_WindowInWParam, (WindowOf(wParam)));
        AFX_CALL_VOID(AfxSig_WindowInLParam, (WindowOf(lParam)));
        AFX_CALL_VOID(AfxSig_ShowWindow, (static_cast<BOOL>(wParam), static_cast<UINT>(lParam)));
        AFX_CALL_VOID(AfxSig_Enable, (static_cast<BOOL>(wParam)));
        AFX_CALL_VOID(AfxSig_Activate, (low, WindowOf(lParam), static_cast<BOOL>(high)));
        AFX_CALL_VOID(AfxSig_ContextMenu, (WindowOf(wParam), PointOf(lParam)));
        AFX_CALL_VOID(AfxSig_InitMenuPopup, (CMenu::FromHandle(reinterpret_cast<HMENU>(wParam)),
                                             LOWORD(lParam), HIWORD(lParam)));
        AFX_CALL_VOID(AfxSig_MenuSelect, (low, high, reinterpret_cast<HMENU>(lParam)));
        AFX_CALL_VOID(AfxSig_DropFiles, (reinterpret_cast<HDROP>(wParam)));
        AFX_CALL_VOID(AfxSig_NcCalcSize,
                      (static_cast<BOOL>(wParam), PointerOf<NCCALCSIZE_PARAMS>(lParam)));
        AFX_CALL_VOID(AfxSig_WindowPos, (PointerOf<WINDOWPOS>(lParam)));
        AFX_CALL_VOID(AfxSig_SettingChange, (wParam, PointerOf<const TCHAR>(lParam)));
        AFX_CALL_VOID(AfxSig_DrawItem,
                      (static_cast<int>(wParam), PointerOf<DRAWITEMSTRUCT>(lParam)));
        AFX_CALL_VOID(AfxSig_MinMaxInfo, (PointerOf<MINMAXINFO>(lParam)));
        AFX_CALL_BRUSH(AfxSig_ControlColor,
                       (DcOf(wParam), WindowOf(lParam), message - WM_CTLCOLORMSGBOX));
        AFX_CALL_BRUSH(AfxSig_ControlColorReflect, (DcOf(wParam), static_cast<UINT>(lParam)));
    default: ASSERT(false); return 0;
    }
#undef AFX_CALL
#undef AFX_CALL_VOID
#undef AFX_CALL_RESULT
#undef AFX_CALL_BRUSH
}
