#include "ConsoleSettings.h"

#include <YFormatMessage.h>
#include <YPolicy.h>
#include <YProfileStore.h>
#include <afxwin.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>

namespace {

constexpr wchar_t keyName[] = L"Console";
constexpr wchar_t recentKeyName[] = L"Recent Files";
constexpr wchar_t policyName[] = L"Buffer Lines";
constexpr unsigned defaultLines = 100'000;
constexpr unsigned defaultPort = 23;  // of hosts to type to
constexpr int tenthsPerInch = 720;  // of points

int GetSystemResolution()
{
    const CClientDC screen(nullptr);
    return screen.GetDeviceCaps(LOGPIXELSY);
}

bool IsSensible(unsigned lines)
{
    return lines >= 1 && lines <= ConsoleOptions::mostLines;
}

std::wstring GetRecentName(std::size_t index)
{
    return L"File" + std::to_wstring(index + 1);
}

// The same file for the file system, which does not tell case apart.
auto Names(const std::wstring& path)
{
    return [&path](const std::wstring& other) {
        return ::CompareStringOrdinal(path.c_str(), -1, other.c_str(), -1, TRUE) == CSTR_EQUAL;
    };
}

// Why the key is not open.
const YReportMessageParams& GetReason(const YProfileStore& store, const YProfileKey& key)
{
    return store.GetRoot().IsOpen() ? key.GetLastResult() : store.GetRoot().GetLastResult();
}

// Writes one value if it has changed.
bool SaveValue(YProfileData& data, const YProfileKey& key, YReportMessageParams& error)
{
    if (!data.IsModified() || data.Write(key)) {
        return true;
    }
    error = key.GetLastResult();
    return false;
}

}  // namespace

bool ConsoleSettings::Load(YReportMessageParams& error)
{
    const unsigned wanted = GetPolicyDWORD(policyName, L"Console", L"Settings", 0);
    lockedLines = IsSensible(wanted) ? wanted : 0;
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), keyName, YProfileKey::openExisting);
    if (!key.IsOpen()) {
        error = GetReason(store, key);
        return error.GetMessageId() == ERROR_FILE_NOT_FOUND;  // the first run
    }
    for (YProfileData* const data : GetValues()) {
        data->Read(key);
    }
    LoadRecentFiles(key);
    return true;
}

bool ConsoleSettings::Save(YReportMessageParams& error)
{
    const auto values = GetValues();
    const auto isModified = [](const YProfileData* data) { return data->IsModified(); };
    if (std::none_of(values.begin(), values.end(), isModified) && !recentFilesChanged) {
        return true;
    }
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), keyName);
    if (!key.IsOpen()) {
        error = GetReason(store, key);
        return false;
    }
    const auto save = [&](YProfileData* data) { return SaveValue(*data, key, error); };
    if (!std::all_of(values.begin(), values.end(), save) || !SaveRecentFiles(key, error)) {
        return false;
    }
    if (!key.Flush()) {
        error = key.GetLastResult();
        return false;
    }
    return true;
}

unsigned ConsoleSettings::GetLineLimit() const
{
    if (lockedLines != 0) {
        return lockedLines;
    }
    return IsSensible(lineLimit.Get()) ? lineLimit.Get() : defaultLines;
}

// "100 400 0 Courier New": size in tenths of points, weight, italic, face.
bool ConsoleSettings::GetFont(LOGFONT& chosen) const
{
    const wchar_t* text = font.Get().c_str();
    long numbers[3] = {};
    for (long& number : numbers) {
        wchar_t* end = nullptr;
        number = std::wcstol(text, &end, 10);
        if (end == text) {
            return false;
        }
        text = end;
    }
    const std::size_t length = *text == L' ' ? std::wcslen(++text) : 0;
    if (length == 0 || length >= LF_FACESIZE || numbers[0] < 10 || numbers[0] > 10'000 ||
        numbers[1] < 0 || numbers[1] > 1000) {
        return false;
    }
    chosen = {};
    chosen.lfHeight = -::MulDiv(numbers[0], GetSystemResolution(), tenthsPerInch);
    chosen.lfWeight = numbers[1];
    chosen.lfItalic = numbers[2] != 0;
    chosen.lfCharSet = DEFAULT_CHARSET;
    std::wcscpy(chosen.lfFaceName, text);
    return true;
}

void ConsoleSettings::SetFont(const LOGFONT& chosen)
{
    const int tenths = ::MulDiv(std::abs(chosen.lfHeight), tenthsPerInch, GetSystemResolution());
    font.Set(YUnicodeString(YFormatText(L"%1!d! %2!d! %3!d! %4", tenths, chosen.lfWeight,
                                        chosen.lfItalic ? 1 : 0, chosen.lfFaceName)));
}

Peer ConsoleSettings::GetPeer() const
{
    const unsigned last = port.Get() >= 1 && port.Get() <= 65'535 ? port.Get() : defaultPort;
    return {std::wstring(host.Get().c_str()), static_cast<unsigned short>(last)};
}

void ConsoleSettings::SetPeer(const Peer& peer)
{
    host.Set(YUnicodeString(peer.host));
    port.Set(peer.port);
}

void ConsoleSettings::AddRecentFile(const std::wstring& path)
{
    if (!recentFiles.empty() && recentFiles.front() == path) {
        return;
    }
    std::erase_if(recentFiles, Names(path));
    recentFiles.insert(recentFiles.begin(), path);
    recentFiles.resize(std::min(recentFiles.size(), mostRecentFiles));
    recentFilesChanged = true;
}

void ConsoleSettings::RemoveRecentFile(const std::wstring& path)
{
    recentFilesChanged = std::erase_if(recentFiles, Names(path)) > 0 || recentFilesChanged;
}

void ConsoleSettings::LoadRecentFiles(const YProfileKey& key)
{
    recentFiles.clear();
    recentFilesChanged = false;
    const YProfileKey recent(key, recentKeyName, YProfileKey::openExisting);
    YUnicodeString path;
    while (recentFiles.size() < mostRecentFiles &&
           recent.ReadString(GetRecentName(recentFiles.size()).c_str(), path) && !path.IsEmpty()) {
        recentFiles.emplace_back(path);
    }
}

bool ConsoleSettings::SaveRecentFiles(const YProfileKey& key, YReportMessageParams& error)
{
    if (!recentFilesChanged) {
        return true;
    }
    const YProfileKey recent(key, recentKeyName);
    for (std::size_t i = 0; i < mostRecentFiles; ++i) {
        const std::wstring name = GetRecentName(i);
        if (i >= recentFiles.size()) {
            recent.DeleteValue(name.c_str());  // or it is not there anyway
        } else if (!recent.WriteString(name.c_str(), YUnicodeString(recentFiles[i]))) {
            error = recent.GetLastResult();
            return false;
        }
    }
    recentFilesChanged = false;
    return true;
}
