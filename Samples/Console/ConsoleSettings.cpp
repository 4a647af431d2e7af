#include "ConsoleSettings.h"

#include <YFormatMessage.h>
#include <YPolicy.h>
#include <YProfileStore.h>

#include <algorithm>
#include <cwchar>

namespace {

constexpr wchar_t keyName[] = L"Console";
constexpr wchar_t policyName[] = L"Buffer Lines";
constexpr wchar_t tlsName[] = L"TLS Versions";
constexpr unsigned defaultPort = 23;  // of hosts to type to

bool IsSensible(unsigned lines)
{
    return lines >= 1 && lines <= ConsoleChoices::mostLines;
}

// What is stored of the choices. A value that is not there, or makes no sense, is the default.

struct NumberValue
{
    const wchar_t* name;
    unsigned ConsoleChoices::*choice;
    unsigned least;
    unsigned most;
};

constexpr NumberValue numbers[] = {
    {L"Buffer Lines", &ConsoleChoices::lineLimit, 1, ConsoleChoices::mostLines},
    {L"Line End", &ConsoleChoices::lineEnd, 0, static_cast<unsigned>(LineEnd::Cr)},
    {L"Code Page", &ConsoleChoices::codePage, 0, 0xFFFF},
    {L"Tab Width", &ConsoleChoices::tabWidth, 1, ConsoleChoices::mostColumnsPerTab},
};

struct FlagValue
{
    const wchar_t* name;
    bool ConsoleChoices::*choice;
};

constexpr FlagValue flags[] = {
    {L"Outline Selection", &ConsoleChoices::outlines},
    {L"Split", &ConsoleChoices::splits},
    {L"Colour Lines", &ConsoleChoices::colorsLines},
    {L"Find Wraps Around", &ConsoleChoices::wrapsAround},
    {L"Find While Typing", &ConsoleChoices::findsWhileTyping},
    {L"Find Matches Case", &ConsoleChoices::matchesCase},
    {L"Find Whole Words", &ConsoleChoices::matchesWords},
    {L"Show Sent Lines", &ConsoleChoices::showsSent},
    {L"Log Connections", &ConsoleChoices::logs},
    {L"Log Sent Lines", &ConsoleChoices::logsSent},
    {L"Log Notices", &ConsoleChoices::logsNotices},
    {L"Follow Files", &ConsoleChoices::follows},
    {L"Remember Recent", &ConsoleChoices::remembers},
};

struct TextValue
{
    const wchar_t* name;
    std::wstring ConsoleChoices::*choice;
};

constexpr TextValue texts[] = {
    {L"Font", &ConsoleChoices::font},
    {L"Log Folder", &ConsoleChoices::logFolder},
    {L"Certificate", &ConsoleChoices::certificate},
};

struct ColorValue
{
    const wchar_t* name;
    LineSeverity severity;
};

constexpr ColorValue colors[] = {
    {L"Warning Colour", LineSeverity::Warning},
    {L"Error Colour", LineSeverity::Error},
    {L"Notice Colour", LineSeverity::Notice},
    {L"Sent Colour", LineSeverity::Sent},
};

COLORREF& ColorOf(ConsoleChoices& choices, const ColorValue& value)
{
    return choices.colors[static_cast<std::size_t>(value.severity)];
}

void ReadNumber(const YProfileKey& key, const wchar_t* name, unsigned least, unsigned most,
                unsigned& number)
{
    YProfileDword value(name);
    if (value.Read(key) && value.Get() >= least && value.Get() <= most) {
        number = value.Get();
    }
}

ConsoleChoices ReadChoices(const YProfileKey& key)
{
    ConsoleChoices choices;
    for (const NumberValue& value : numbers) {
        ReadNumber(key, value.name, value.least, value.most, choices.*value.choice);
    }
    for (const FlagValue& value : flags) {
        unsigned number = choices.*value.choice;
        ReadNumber(key, value.name, 0, 1, number);
        choices.*value.choice = number != 0;
    }
    for (const TextValue& value : texts) {
        YProfileSz text(value.name);
        text.Read(key);
        choices.*value.choice = text.Get().c_str();
    }
    for (const ColorValue& value : colors) {
        unsigned number = ColorOf(choices, value);
        ReadNumber(key, value.name, 0, 0xFFFFFF, number);
        ColorOf(choices, value) = number;
    }
    YProfileTlsVersions versions(tlsName);
    versions.Read(key);
    choices.tlsVersions = versions.GetMask();
    return choices;
}

bool WriteValue(YProfileData& data, const YProfileKey& key, YReportMessageParams& error)
{
    if (data.Write(key)) {
        return true;
    }
    error = key.GetLastResult();
    return false;
}

bool WriteNumber(const wchar_t* name, unsigned next, unsigned before, const YProfileKey& key,
                 YReportMessageParams& error)
{
    YProfileDword value(name);
    value.Set(next);
    return next == before || WriteValue(value, key, error);
}

// Those that have changed.
bool WriteChoices(ConsoleChoices next, ConsoleChoices before, const YProfileKey& key,
                  YReportMessageParams& error)
{
    const auto writeNumber = [&](const NumberValue& value) {
        return WriteNumber(value.name, next.*value.choice, before.*value.choice, key, error);
    };
    const auto writeFlag = [&](const FlagValue& value) {
        return WriteNumber(value.name, next.*value.choice, before.*value.choice, key, error);
    };
    const auto writeText = [&](const TextValue& value) {
        YProfileSz text(value.name);
        text.Set(YUnicodeString(next.*value.choice));
        return next.*value.choice == before.*value.choice || WriteValue(text, key, error);
    };
    const auto writeColor = [&](const ColorValue& value) {
        return WriteNumber(value.name, ColorOf(next, value), ColorOf(before, value), key, error);
    };
    YProfileTlsVersions versions(tlsName);
    versions.SetMask(next.tlsVersions);
    return std::all_of(std::begin(numbers), std::end(numbers), writeNumber) &&
           std::all_of(std::begin(flags), std::end(flags), writeFlag) &&
           std::all_of(std::begin(texts), std::end(texts), writeText) &&
           std::all_of(std::begin(colors), std::end(colors), writeColor) &&
           (next.tlsVersions == before.tlsVersions || WriteValue(versions, key, error));
}

// Why the key is not open.
const YReportMessageParams& GetReason(const YProfileStore& store, const YProfileKey& key)
{
    return store.GetRoot().IsOpen() ? key.GetLastResult() : store.GetRoot().GetLastResult();
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
    choices = stored = ReadChoices(key);
    for (YProfileData* const data : GetValues()) {
        data->Read(key);
    }
    recentFiles.Load(key);
    recentHosts.Load(key);
    sessions.Load(key);
    columnWidths.Load(key);
    return true;
}

bool ConsoleSettings::Save(YReportMessageParams& error)
{
    if (!IsModified()) {
        return true;
    }
    const YProfileStore store;
    const YProfileKey key(store.GetRoot(), keyName);
    if (!key.IsOpen()) {
        error = GetReason(store, key);
        return false;
    }
    const auto save = [&](YProfileData* data) {
        return !data->IsModified() || WriteValue(*data, key, error);
    };
    const auto values = GetValues();
    if (!WriteChoices(choices, stored, key, error) ||
        !std::all_of(values.begin(), values.end(), save) || !recentFiles.Save(key, error) ||
        !recentHosts.Save(key, error) || !sessions.Save(key, error) ||
        !columnWidths.Save(key, error)) {
        return false;
    }
    stored = choices;
    if (!key.Flush()) {
        error = key.GetLastResult();
        return false;
    }
    return true;
}

bool ConsoleSettings::IsModified()
{
    const auto values = GetValues();
    return choices != stored || recentFiles.IsModified() || recentHosts.IsModified() ||
           sessions.IsModified() || columnWidths.IsModified() ||
           std::any_of(values.begin(), values.end(),
                       [](const YProfileData* data) { return data->IsModified(); });
}

void ConsoleSettings::SetChoices(const ConsoleChoices& next)
{
    choices = next;
    if (!choices.remembers) {
        ForgetRecent();
    }
}

unsigned ConsoleSettings::GetLineLimit() const
{
    return lockedLines != 0 ? lockedLines : choices.lineLimit;
}

void ConsoleSettings::AddRecentFile(const std::wstring& path)
{
    if (choices.remembers) {
        recentFiles.Add(path);
    }
}

void ConsoleSettings::ForgetRecent()
{
    recentFiles.Clear();
    recentHosts.Clear();
}

// "120 80"
YPoint ConsoleSettings::GetFindPlace() const
{
    const wchar_t* const text = findPlace.Get().c_str();
    wchar_t* end = nullptr;
    const long x = std::wcstol(text, &end, 10);
    if (end == text || *end != L' ') {
        return YPoint(-1, -1);
    }
    return YPoint(static_cast<int>(x), static_cast<int>(std::wcstol(end, nullptr, 10)));
}

void ConsoleSettings::SetFindPlace(YPoint place)
{
    findPlace.Set(YUnicodeString(YFormatText(L"%1!d! %2!d!", place.x, place.y)));
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
    if (choices.remembers) {
        recentHosts.Add(ToText(peer));
    }
}
