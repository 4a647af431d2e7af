// WindowGuard.h: what every window procedure here does round its handler.
#pragma once

#include "YUnknownPointer.h"

#include <afx.h>

#include <windows.h>

// Calls a handler and lets no exception out: the system's frames above cannot carry one.
template <class Handler>
LRESULT CallGuarded(Handler handler) noexcept
{
    try {
        return handler();
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {  // nobody up there could tell what it means
    }
    return 0;
}

// With a reference to the object for the time of the message, which may be its last one.
template <class Object, class Handler>
LRESULT HandleGuarded(DWORD_PTR object, Handler handler) noexcept
{
    return CallGuarded([&] {
        const YUnknownPointer<Object> target(reinterpret_cast<Object*>(object));
        return handler(*target);
    });
}
