// winsock2.h: the sockets of this machine under the names that the addresses use, for building
// natively.
#pragma once

#include <windows.h>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#define MAKEWORD(low, high) ((low) | (high) << 8)

struct WSADATA
{};

inline int WSAStartup(int, WSADATA*)
{
    return 0;
}
