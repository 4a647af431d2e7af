// WindowGuard.h: from the system's window procedures to an object's handler.
#pragma once

#include "CallGuarded.h"
#include "YUnknownPointer.h"

#include <windows.h>

// Hands a message to the object, with a reference to it for the time of the message, which may be
// its last one.
template <class Object>
LRESULT HandleGuarded(DWORD_PTR object, LRESULT (Object::*handler)(HWND, UINT, WPARAM, LPARAM),
                      HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    return CallGuarded([&] {
        const YUnknownPointer<Object> target(reinterpret_cast<Object*>(object));
        return (target.Get()->*handler)(window, message, wParam, lParam);
    });
}

// A subclass of a window (SetWindowSubclass) whose reference data is the object.
template <class Object, LRESULT (Object::*handler)(HWND, UINT, WPARAM, LPARAM)>
LRESULT CALLBACK SubclassProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                   UINT_PTR, DWORD_PTR object) noexcept
{
    return HandleGuarded<Object>(object, handler, window, message, wParam, lParam);
}
