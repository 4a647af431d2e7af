// KeyNames.h: names of keys as names of files and of registry keys, and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// The file for a top-level key: its name with ".ini", and with %xx (or %uxxxx) for whatever the
// system would not take, or would take for something else: separators, device names, a dot or a
// blank at the end, "~" (a short name may be that of another file). Nothing: too long.
std::optional<std::wstring> GetKeyFileName(std::wstring_view key);
// Nothing: the file is no key's.
std::optional<std::wstring> GetFileKeyName(std::wstring_view file);

// Values of the root itself; no key's file has this name.
constexpr wchar_t rootFileName[] = L"Settings.ini";

// The registry takes any character but the separator; %xx as above. Too long is its own affair.
std::wstring GetRegistryName(std::wstring_view key);
std::wstring GetKeyName(std::wstring_view registryName);
