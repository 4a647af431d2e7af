#include "YAddressBase.h"

#include <algorithm>
#include <cstring>

namespace {

using Bytes = std::span<const unsigned char>;

template <class Parts>
Bytes BytesOf(const typename Parts::Record& record)
{
    const auto& address = Parts::Address(record);
    return {reinterpret_cast<const unsigned char*>(&address), sizeof address};
}

bool HasSamePrefix(Bytes left, Bytes right, unsigned bits)
{
    bits = std::min(bits, static_cast<unsigned>(left.size()) * 8);
    const unsigned whole = bits / 8;
    if (!std::equal(left.begin(), left.begin() + whole, right.begin())) {
        return false;
    }
    const unsigned mask = 0xFF00U >> bits % 8 & 0xFF;
    return mask == 0 || ((left[whole] ^ right[whole]) & mask) == 0;
}

template <class Value>
bool AreCompatible(Value left, Value right)
{
    return left == 0 || right == 0 || left == right;
}

// A numeric text has ASCII characters only; no other may be taken for one. False: it is none.
bool Narrow(const wchar_t* text, std::span<char> narrow)
{
    for (char& character : narrow) {
        if (*text > 0x7F) {
            return false;
        }
        character = static_cast<char>(*text);
        if (*text++ == L'\0') {
            return true;
        }
    }
    return false;
}

}  // namespace

template <class Parts>
std::span<unsigned char> YAddressBase<Parts>::GetBytes()
{
    auto& address = Parts::Address(socketAddress);
    return {reinterpret_cast<unsigned char*>(&address), sizeof address};
}

template <class Parts>
std::span<const unsigned char> YAddressBase<Parts>::GetBytes() const
{
    return BytesOf<Parts>(socketAddress);
}

template <class Parts>
auto YAddressBase<Parts>::MakeEmpty() -> Record
{
    Record record{};
    reinterpret_cast<sockaddr&>(record).sa_family = Parts::family;
    return record;
}

// By the interface alone: a host's own implementation compares as well as ours.
template <class Parts>
auto YAddressBase<Parts>::GetRecord(const IInternetAddress* address) -> const Record*
{
    const sockaddr* record = nullptr;
    int length = 0;
    if (!address || !address->IsValid() || address->GetAddressFamily() != Parts::family ||
        !address->GetSockAddr(&record, &length) || length < int{sizeof(Record)}) {
        return nullptr;
    }
    return reinterpret_cast<const Record*>(record);
}

template <class Parts>
bool YAddressBase<Parts>::IsInSubnet(const IInternetAddress* other, unsigned prefixBits) const
{
    const Record* const record = GetRecord(other);
    return valid && record && HasSamePrefix(GetBytes(), BytesOf<Parts>(*record), prefixBits) &&
           AreCompatible(Parts::Port(socketAddress), Parts::Port(*record)) &&
           AreCompatible(Parts::GetScope(socketAddress), Parts::GetScope(*record));
}

template <class Parts>
bool YAddressBase<Parts>::Equals(const IInternetAddress* other) const
{
    return IsInSubnet(other, static_cast<unsigned>(GetBytes().size()) * 8);
}

template <class Parts>
bool YAddressBase<Parts>::IsAny() const
{
    return valid && std::ranges::all_of(GetBytes(), [](unsigned char part) { return part == 0; });
}

template <class Parts>
bool YAddressBase<Parts>::SetFromSockAddr(const sockaddr* address, int length)
{
    valid = false;
    if (!address || length < int{sizeof(Record)} || address->sa_family != Parts::family) {
        return false;
    }
    Record source;
    std::memcpy(&source, address, sizeof source);  // it may lie in a buffer of bytes
    Parts::Address(socketAddress) = Parts::Address(source);
    Parts::Port(socketAddress) = Parts::Port(source);
    Parts::SetScope(socketAddress, Parts::GetScope(source));
    valid = true;
    return true;
}

template <class Parts>
bool YAddressBase<Parts>::SetFromAddrInfo(const addrinfo* record)
{
    valid = false;
    if (!record || !SetFromSockAddr(record->ai_addr, static_cast<int>(record->ai_addrlen))) {
        return false;
    }
    socketType = record->ai_socktype;
    protocol = record->ai_protocol;
    return true;
}

template <class Parts>
bool YAddressBase<Parts>::SetFromText(const wchar_t* text, unsigned short port)
{
    char narrow[NI_MAXHOST];
    return SetFromText(text && Narrow(text, narrow) ? narrow : nullptr, port);
}

template <class Parts>
bool YAddressBase<Parts>::SetRawAddress(const void* bytes, unsigned length)
{
    valid = bytes && length == GetBytes().size();
    if (valid) {
        std::memcpy(GetBytes().data(), bytes, length);
        Parts::SetScope(socketAddress, 0);  // it was that of the address before
    }
    return valid;
}

template <class Parts>
void YAddressBase<Parts>::SetPort(unsigned short port)
{
    if (valid) {
        Parts::Port(socketAddress) = ::htons(port);
    }
}

template <class Parts>
unsigned short YAddressBase<Parts>::GetPort() const
{
    return valid ? ::ntohs(Parts::Port(socketAddress)) : 0;
}

template <class Parts>
bool YAddressBase<Parts>::GetRawAddress(const void** bytes, unsigned* length) const
{
    *bytes = valid ? GetBytes().data() : nullptr;
    *length = valid ? static_cast<unsigned>(GetBytes().size()) : 0;
    return valid;
}

template <class Parts>
bool YAddressBase<Parts>::GetSockAddr(const sockaddr** address, int* length) const
{
    *address = valid ? reinterpret_cast<const sockaddr*>(&socketAddress) : nullptr;
    *length = valid ? int{sizeof socketAddress} : 0;
    return valid;
}

template <class Parts>
int YAddressBase<Parts>::GetAddressFamily() const
{
    return Parts::family;
}

// Network order puts the most significant byte first, so bytes compare as numbers do.
template <class Parts>
bool YAddressBase<Parts>::LessThan(const IInternetAddress* other) const
{
    const Record* const record = GetRecord(other);
    return valid && record &&
           std::ranges::lexicographical_compare(GetBytes(), BytesOf<Parts>(*record));
}

template class YAddressBase<YSockAddrIPv4>;
template class YAddressBase<YSockAddrIPv6>;
