// Input.h: what a user does, through the system's own input queue, and the waiting that goes with it.
#pragma once

#include <windows.h>

#include <functional>
#include <string_view>

// Handles messages until none is left, including those that handling them posts.
void PumpMessages();

// Handles messages until the condition holds; false when it does not within the limit. Tests wait
// for what must happen, never for a time.
bool PumpUntil(const std::function<bool()>& condition, DWORD limitMilliseconds = 5000);

// The pointer, in client coordinates of a window; each call is pumped before it returns.
void MovePointer(HWND window, POINT point);
void PressLeft(HWND window, POINT point);
void ReleaseLeft(HWND window, POINT point);
void ClickLeft(HWND window, POINT point);
// Press, a few steps on the way, release.
void DragLeft(HWND window, POINT from, POINT to);
// Turns the wheel over the point; delta in wheel units (120 a notch).
void TurnWheel(HWND window, POINT point, int delta);

// A key, to whichever window has the focus.
void TypeKey(WORD virtualKey);

// Characters as from a keyboard that has a key for each.
void TypeText(std::wstring_view text);

// Brings a window to the front and gives it the focus, as a click on its caption would.
bool Activate(HWND window);

// A window manager may move a new window for a moment, in which clicks miss it, and gives no sign when
// it is through: true once the window has stood still for a while. Before the first click on it.
bool StandsStill(HWND window);
