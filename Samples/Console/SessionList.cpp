#include "SessionList.h"

#include <YProfileKey.h>

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t keyName[] = L"Sessions";
constexpr wchar_t passwordName[] = L"Password";
constexpr wchar_t lineBreak = L'\n';  // between the lines, which have none themselves
constexpr unsigned asInOptions = static_cast<unsigned>(LineEnd::Cr) + 1;

std::wstring ReadText(const YProfileKey& key, const wchar_t* name)
{
    YUnicodeString text;
    return key.ReadString(name, text) ? std::wstring(std::wstring_view(text)) : std::wstring();
}

unsigned ReadNumber(const YProfileKey& key, const wchar_t* name, unsigned most, unsigned usual)
{
    DWORD number = 0;
    return key.ReadDWORD(name, number) && number <= most ? number : usual;
}

std::vector<std::wstring> Split(const std::wstring& text)
{
    std::vector<std::wstring> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find(lineBreak, begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::wstring Join(const std::vector<std::wstring>& lines)
{
    std::wstring text;
    for (const std::wstring& line : lines) {
        text += line + lineBreak;
    }
    return text;
}

// False: this is no session.
bool Read(const YProfileKey& key, Session& session)
{
    session.name = ReadText(key, L"Name");
    session.peer.host = ReadText(key, L"Host");
    session.peer.port = static_cast<unsigned short>(ReadNumber(key, L"Port", 65'535, 0));
    const unsigned end = ReadNumber(key, L"Line End", asInOptions, asInOptions);
    if (end != asInOptions) {
        session.lineEnd = static_cast<LineEnd>(end);
    }
    session.options = ReadNumber(key, L"Options", Session::allOptions, Session::showsSent);
    session.logsIn = ReadNumber(key, L"Log In", 1, 0) != 0;
    session.user = ReadText(key, L"User");
    std::vector<BYTE> bytes;
    if (key.ReadBinary(passwordName, bytes)) {
        session.password.SetBytes(std::move(bytes));
    }
    session.lines = Split(ReadText(key, L"Lines"));
    return !session.name.empty() && !session.peer.host.empty() && session.peer.port != 0;
}

bool WritePassword(const YProfileKey& key, const ProtectedPassword& password)
{
    if (password.IsEmpty()) {
        key.DeleteValue(passwordName);  // or it is not there anyway
        return true;
    }
    const std::vector<BYTE>& bytes = password.GetBytes();
    return key.WriteBinary(passwordName, bytes.data(), static_cast<unsigned>(bytes.size()));
}

bool Write(const YProfileKey& key, const Session& session)
{
    const unsigned end = session.lineEnd ? static_cast<unsigned>(*session.lineEnd) : asInOptions;
    return key.WriteString(L"Name", YUnicodeString(session.name)) &&
           key.WriteString(L"Host", YUnicodeString(session.peer.host)) &&
           key.WriteDWORD(L"Port", session.peer.port) && key.WriteDWORD(L"Line End", end) &&
           key.WriteDWORD(L"Options", session.options) &&
           key.WriteDWORD(L"Log In", session.logsIn ? 1 : 0) &&
           key.WriteString(L"User", YUnicodeString(session.user)) &&
           WritePassword(key, session.password) &&
           key.WriteString(L"Lines", YUnicodeString(Join(session.lines)));
}

// Those that hold a session are all numbers; in their order. Others are not ours.
std::vector<unsigned long> FindNumbers(const YProfileKey& key)
{
    std::vector<unsigned long> numbers;
    for (YProfileKeyIterator child(key); child.IsValid(); child.Next()) {
        unsigned long number = 0;
        if (ParseNumber(child.GetName().c_str(), 1, 999'999, number)) {
            numbers.push_back(number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::wstring NameOf(unsigned long number)
{
    return std::to_wstring(number);
}

}  // namespace

std::size_t SessionList::FindIndex(const Session& session) const
{
    const auto place =
        std::find_if(sessions.begin(), sessions.end(),
                     [&session](const auto& other) { return other.get() == &session; });
    return static_cast<std::size_t>(place - sessions.begin());
}

const Session* SessionList::FindByName(const std::wstring& name) const
{
    const auto place = std::find_if(sessions.begin(), sessions.end(), [&name](const auto& other) {
        return ::CompareStringOrdinal(name.c_str(), -1, other->name.c_str(), -1, TRUE) ==
               CSTR_EQUAL;
    });
    return place == sessions.end() ? nullptr : place->get();
}

Session& SessionList::Add(Session session)
{
    sessions.push_back(std::make_unique<Session>(std::move(session)));
    modified = true;
    return *sessions.back();
}

void SessionList::Replace(Session& session, Session next)
{
    modified = modified || !(session == next);
    session = std::move(next);
}

void SessionList::Remove(const Session& session)
{
    const std::size_t index = FindIndex(session);
    if (index < sessions.size()) {
        sessions.erase(sessions.begin() + static_cast<std::ptrdiff_t>(index));
        modified = true;
    }
}

void SessionList::Exchange(std::size_t index, std::size_t other)
{
    std::swap(sessions[index], sessions[other]);
    modified = true;
}

void SessionList::Load(const YProfileKey& parent)
{
    sessions.clear();
    modified = false;
    const YProfileKey key(parent, keyName, YProfileKey::openExisting);
    if (!key.IsOpen()) {
        return;
    }
    for (const unsigned long number : FindNumbers(key)) {
        const YProfileKey child(key, NameOf(number).c_str(), YProfileKey::openExisting);
        auto session = std::make_unique<Session>();
        if (child.IsOpen() && Read(child, *session)) {
            sessions.push_back(std::move(session));
        }
    }
}

// The keys of now are written first: what fails on the way loses no session.
bool SessionList::Save(const YProfileKey& parent, YReportMessageParams& error)
{
    if (!modified) {
        return true;
    }
    const YProfileKey key(parent, keyName);
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        const YProfileKey child(key, NameOf(i + 1).c_str());
        if (!child.IsOpen() || !Write(child, *sessions[i])) {
            error = child.GetLastResult();
            return false;
        }
    }
    for (const unsigned long number : FindNumbers(key)) {
        if (number > sessions.size() && !key.DeleteKey(NameOf(number).c_str())) {
            error = key.GetLastResult();
            return false;
        }
    }
    modified = false;
    return true;
}
