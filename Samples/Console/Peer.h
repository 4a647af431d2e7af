// Peer.h: whom to connect to.
#pragma once

#include <string>

struct Peer
{
    std::wstring host;  // a name or an address
    unsigned short port = 0;  // 0: nobody
};

// "localhost:7000", "[::1]:7000".
std::wstring ToText(const Peer& peer);

// As ToText writes it. False, peer as it was: there is no port, or it looks like a file's name.
bool ParsePeer(const std::wstring& text, Peer& peer);

// A whole number and nothing else.
bool ParseNumber(const wchar_t* text, unsigned long least, unsigned long most,
                 unsigned long& number);
bool ParsePort(const wchar_t* text, unsigned short& port);  // 1 to 65535
