#include "Peer.h"

#include <cwchar>

std::wstring ToText(const Peer& peer)
{
    const bool isBracketed = peer.host.find(L':') != std::wstring::npos;
    return (isBracketed ? L'[' + peer.host + L']' : peer.host) + L':' + std::to_wstring(peer.port);
}

// One letter before a colon is a drive.
bool ParsePeer(const std::wstring& text, Peer& peer)
{
    const std::size_t colon = text.rfind(L':');
    unsigned short port = 0;
    if (colon == std::wstring::npos || colon < 2 ||
        text.find_first_of(L"\\/ \t") != std::wstring::npos ||
        !ParsePort(text.c_str() + colon + 1, port)) {
        return false;
    }
    std::wstring host = text.substr(0, colon);
    const bool isBracketed = host.front() == L'[' && host.back() == L']';
    if (isBracketed) {
        host = host.substr(1, host.size() - 2);
    }
    const bool hasColons = host.find(L':') != std::wstring::npos;
    if (host.empty() || hasColons != isBracketed) {
        return false;
    }
    peer = {host, port};
    return true;
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
