// CallGuarded.h: a call that lets no exception out.
#pragma once

#include <afx.h>

// For what is called by the system, whose frames cannot carry an exception, and for calls of the
// host that must cost nobody else anything. What was thrown is lost, the result then is zero:
// nobody up there could tell what it means.
template <class Call>
auto CallGuarded(const Call& call) noexcept -> decltype(call())
{
    try {
        return call();
    } catch (CException* exception) {
        exception->Delete();
    } catch (...) {}
    return decltype(call())();
}
