#include "support/Input.h"

#include <afxwin.h>

namespace {

void Send(INPUT& input)
{
    ::SendInput(1, &input, sizeof input);
    PumpMessages();
}

void SendMouse(DWORD flags, DWORD data = 0)
{
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = data;
    Send(input);
}

void SendKey(WORD virtualKey, DWORD flags)
{
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    Send(input);
}

// As the framework's own message loop does: translated by the windows first.
void Handle(MSG& message)
{
    if (!CWnd::WalkPreTranslateTree(nullptr, &message)) {
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
}

}  // namespace

void PumpMessages()
{
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        Handle(message);
    }
}

bool PumpUntil(const std::function<bool()>& condition, DWORD limitMilliseconds)
{
    const ULONGLONG end = ::GetTickCount64() + limitMilliseconds;
    for (;;) {
        PumpMessages();
        if (condition()) {
            return true;
        }
        if (::GetTickCount64() >= end) {
            return false;
        }
        // Woken by the next message; the short limit is for conditions that no message announces.
        ::MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    }
}

void MovePointer(HWND window, POINT point)
{
    ::ClientToScreen(window, &point);
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    // Rounded up, so that the system's own division gives the same pixel back.
    input.mi.dx = static_cast<LONG>((point.x * 65536LL + ::GetSystemMetrics(SM_CXSCREEN) - 1) /
                                    ::GetSystemMetrics(SM_CXSCREEN));
    input.mi.dy = static_cast<LONG>((point.y * 65536LL + ::GetSystemMetrics(SM_CYSCREEN) - 1) /
                                    ::GetSystemMetrics(SM_CYSCREEN));
    Send(input);
}

void PressLeft(HWND window, POINT point)
{
    MovePointer(window, point);
    SendMouse(MOUSEEVENTF_LEFTDOWN);
}

void ReleaseLeft(HWND window, POINT point)
{
    MovePointer(window, point);
    SendMouse(MOUSEEVENTF_LEFTUP);
}

void ClickLeft(HWND window, POINT point)
{
    PressLeft(window, point);
    ReleaseLeft(window, point);
}

void DragLeft(HWND window, POINT from, POINT to)
{
    constexpr int steps = 4;
    PressLeft(window, from);
    for (int step = 1; step <= steps; ++step) {
        MovePointer(window, {from.x + (to.x - from.x) * step / steps,
                             from.y + (to.y - from.y) * step / steps});
    }
    ReleaseLeft(window, to);
}

void TurnWheel(HWND window, POINT point, int delta)
{
    MovePointer(window, point);
    SendMouse(MOUSEEVENTF_WHEEL, static_cast<DWORD>(delta));
}

void TypeKey(WORD virtualKey)
{
    SendKey(virtualKey, 0);
    SendKey(virtualKey, KEYEVENTF_KEYUP);
}

void TypeText(std::wstring_view text)
{
    for (const wchar_t character : text) {
        INPUT input{};
        input.type = INPUT_KEYBOARD;
        input.ki.wScan = character;
        for (const DWORD flags : {DWORD{0}, DWORD{KEYEVENTF_KEYUP}}) {
            input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
            Send(input);
        }
    }
}

bool Activate(HWND window)
{
    // A window manager may still be busy giving the front to a window that was made before.
    const auto isInFront = [window] {
        return ::GetForegroundWindow() == ::GetAncestor(window, GA_ROOT);
    };
    const auto bring = [&] {
        ::SetForegroundWindow(window);
        ::SetFocus(window);
        return PumpUntil(isInFront, 500);
    };
    return PumpUntil(bring);
}

bool StandsStill(HWND window)
{
    constexpr ULONGLONG milliseconds = 100;
    CRect last;
    ULONGLONG since = ::GetTickCount64();
    return PumpUntil([&] {
        CRect now;
        ::GetWindowRect(window, &now);
        if (now != last) {
            last = now;
            since = ::GetTickCount64();
        }
        return ::GetTickCount64() - since >= milliseconds;
    });
}
