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
    recentFiles.Load(key);
    recentHosts.Load(key);
    return true;
}

bool ConsoleSettings::Save(YReportMessageParams& error)
{
    const auto values = GetValues();
    const auto isModified = [](const YProfileData* data) { return data->IsModified(); };
    if (std::none_of(values.begin(), values.end(), isModified) && !recentFiles.IsModified() &&
        !recentHosts.IsModified()) {
        return true;
    }
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), keyName);
    if (!key.IsOpen()) {
        error = GetReason(store, key);
        return false;
    }
    const auto save = [&](YProfileData* data) { return SaveValue(*data, key, error); };
    if (!std::all_of(values.begin(), values.end(), save) || !recentFiles.Save(key, error) ||
        !recentHosts.Save(key, error)) {
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
    recentHosts.Add(ToText(peer));
}
