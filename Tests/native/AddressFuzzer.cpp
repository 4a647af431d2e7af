// Texts of addresses that the fuzzer chooses, and what must hold for every text. Two bytes of port
// come first. What does not hold is a crash, which keeps the input.
#include "IInternetAddress.h"
#include "YAddress.h"
#include "YFormatMessage.h"
#include "YUnknownPointer.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

// The one pattern that an address has, without the system's formatter: host:port.
std::wstring YFormatPattern(const wchar_t*, std::span<const DWORD_PTR> arguments)
{
    return std::wstring(reinterpret_cast<const wchar_t*>(arguments[0])) + L':' +
           std::to_wstring(arguments[1]);
}

namespace {

using Address = YUnknownPointer<IInternetAddress>;

void Require(bool holds, const char* what, const std::string& text)
{
    if (!holds) {
        std::fprintf(stderr, "\"%s\": %s\n", text.c_str(), what);
        std::abort();
    }
}

// Four whole numbers up to 255 without leading zeros, which nobody can read in two ways.
std::optional<unsigned> ReadDottedQuad(const std::string& text)
{
    unsigned parts[4];
    int end = 0;
    if (std::sscanf(text.c_str(), "%3u.%3u.%3u.%3u%n", &parts[0], &parts[1], &parts[2], &parts[3],
                    &end) != 4 ||
        std::any_of(parts, parts + 4, [](unsigned part) { return part > 255; })) {
        return {};
    }
    char again[16];
    std::snprintf(again, sizeof again, "%u.%u.%u.%u", parts[0], parts[1], parts[2], parts[3]);
    return text == again ? std::optional(parts[0] << 24 | parts[1] << 16 | parts[2] << 8 | parts[3])
                         : std::nullopt;
}

std::string Narrow(const YUnicodeString& text)
{
    const std::wstring wide(text.c_str());
    return {wide.begin(), wide.end()};
}

void CheckAddress(IInternetAddress& address, const std::string& text, unsigned short port)
{
    const Address again =
        Address::Adopt(MakeNumericAddress(Narrow(address.ToString(false)).c_str(), port));
    Require(address.IsValid() && address.GetPort() == port, "not what was asked for", text);
    Require(again && again->Equals(&address), "its own text is another address", text);
    Require(address.IsInSubnet(again.Get(), 64) && !address.LessThan(again.Get()),
            "differs from its like", text);
    Require(!address.ToString(true).IsEmpty(), "has no text with its port", text);
    if (address.Increment()) {
        Require(again->LessThan(&address), "the next one is not greater", text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const auto port = static_cast<unsigned short>(data[0] << 8 | data[1]);
    const std::string chosen(reinterpret_cast<const char*>(data) + 2, size - 2);
    const std::string text = chosen.substr(0, chosen.find('\0'));
    const Address address = Address::Adopt(MakeNumericAddress(text.c_str(), port));
    for (const int family : {AF_INET, AF_INET6}) {
        const Address typed = Address::Adopt(MakeAddress(family));
        const bool isTaken = typed->SetFromText(text.c_str(), port);
        const bool isWideTaken =
            typed->SetFromText(std::wstring(text.begin(), text.end()).c_str(), port);
        const bool isAscii =
            std::all_of(text.begin(), text.end(), [](char unit) { return unit > 0; });
        Require(!isAscii || isTaken == isWideTaken, "wide text is read in another way", text);
    }
    if (const std::optional<unsigned> quad = ReadDottedQuad(text)) {
        const sockaddr* record = nullptr;
        int length = 0;
        Require(address && address->GetSockAddr(&record, &length) && record->sa_family == AF_INET &&
                    ntohl(reinterpret_cast<const sockaddr_in*>(record)->sin_addr.s_addr) == *quad,
                "a dotted quad is not what it says", text);
    } else if (text.find(':') == std::string::npos && !text.empty()) {
        const bool isQuad = std::count(text.begin(), text.end(), '.') == 3 &&
                            text.find_first_not_of("0123456789.") == std::string::npos;
        Require(!address || isQuad, "taken for an address", text);
    }
    if (address && !text.empty()) {
        CheckAddress(*address, text, port);
    }
    return 0;
}
