#include "Peer.h"

#include <cwchar>

std::wstring ToText(const Peer& peer)
{
    const bool isBracketed = peer.host.find(L':') != std::wstring::npos;
    return (isBracketed ? L'[' + peer.host + L']' : peer.host) + L':' + std::to_wstring(peer.port);
}

bool ParseNumber(const wchar_t* text, unsigned long least, unsigned long most,
                 unsigned long& number)
{
    if (!text || *text < L'0' || *text > L'9') {
        return false;  // a sign or a blank, which the run time would accept
    }
    wchar_t* end = nullptr;
    const unsigned long value = std::wcstoul(text, &end, 10);
    if (*end != L'\0' || value < least || value > most) {
        return false;
    }
    number = value;
    return true;
}

bool ParsePort(const wchar_t* text, unsigned short& port)
{
    unsigned long number = 0;
    if (!ParseNumber(text, 1, 65'535, number)) {
        return false;
    }
    port = static_cast<unsigned short>(number);
    return true;
}
