// IHostnameChanged.h: hears of the host name that the user types.
#pragma once

// Whoever shows something that depends on a host name implements it; the plug-in in which the name
// is typed calls. User-interface thread. The order is binary contract.
class IHostnameChanged
{
public:
    virtual void OnHostnameChanged(const wchar_t* hostname) = 0;  // gone after the call

protected:
    ~IHostnameChanged() = default;  // adds no slot; nobody deletes through it
};
