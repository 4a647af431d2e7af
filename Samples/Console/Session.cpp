#include "Session.h"

#include "ConsoleChoices.h"

#include <YProfileKey.h>
#include <YReportMessageParams.h>
#include <YUniqueHandle.h>

#include <wincrypt.h>

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t listKey[] = L"Sessions";
constexpr wchar_t passwordName[] = L"Password";

struct TextValue
{
    const wchar_t* name;
    std::wstring Session::*text;
};

constexpr TextValue texts[] = {
    {L"Name", &Session::name},
    {L"Note", &Session::note},
    {L"User", &Session::user},
    {L"First Lines", &Session::firstLines},
};

struct FlagValue
{
    const wchar_t* name;
    bool Session::*flag;
};

constexpr FlagValue flags[] = {
    {L"Log In", &Session::logsIn},
    {L"Log", &Session::logs},
    {L"Show Sent Lines", &Session::showsSent},
    {L"Connect At Start", &Session::connectsAtStart},
};

std::wstring GetKeyName(std::size_t index)
{
    return L"Session" + std::to_wstring(index + 1);
}

// False: there is no such session, or one that nobody can connect to.
bool Read(const YProfileKey& key, Session& session)
{
    DWORD number = 0;
    YUnicodeString text;
    for (const TextValue& value : texts) {
        if (key.ReadString(value.name, text)) {
            session.*value.text = text.c_str();
        }
    }
    for (const FlagValue& value : flags) {
        if (key.ReadDWORD(value.name, number) && number <= 1) {
            session.*value.flag = number != 0;
        }
    }
    if (key.ReadDWORD(L"Line End", number) && number < Session::lineEndAsInOptions) {
        session.lineEnd = number;
    }
    std::vector<BYTE> password;
    if (key.ReadBinary(passwordName, password)) {
        session.password.SetBytes(std::move(password));
    }
    if (!key.ReadString(L"Host", text) || !key.ReadDWORD(L"Port", number) || number == 0 ||
        number > 65'535) {
        return false;
    }
    session.peer = {text.c_str(), static_cast<unsigned short>(number)};
    return !session.name.empty() && !session.peer.host.empty();
}

bool Write(const YProfileKey& key, const Session& session)
{
    const std::vector<BYTE>& password = session.password.GetBytes();
    return std::all_of(std::begin(texts), std::end(texts),
                       [&](const TextValue& value) {
                           return key.WriteString(value.name, YUnicodeString(session.*value.text));
                       }) &&
           std::all_of(std::begin(flags), std::end(flags),
                       [&](const FlagValue& value) {
                           return key.WriteDWORD(value.name, session.*value.flag);
                       }) &&
           key.WriteString(L"Host", YUnicodeString(session.peer.host)) &&
           key.WriteDWORD(L"Port", session.peer.port) &&
           key.WriteDWORD(L"Line End", session.lineEnd) &&
           (password.empty() ||
            key.WriteBinary(passwordName, password.data(), static_cast<unsigned>(password.size())));
}

}  // namespace

bool ProtectedPassword::Set(const YUnicodeString& password)
{
    DATA_BLOB clear{password.GetLength() * sizeof(wchar_t),
                    reinterpret_cast<BYTE*>(const_cast<wchar_t*>(password.c_str()))};
    DATA_BLOB secret{};
    if (!::CryptProtectData(&clear, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_UI_FORBIDDEN,
                            &secret)) {
        return false;
    }
    const YUniqueLocalMemory memory(secret.pbData);
    bytes.assign(secret.pbData, secret.pbData + secret.cbData);
    return true;
}

YUnicodeString ProtectedPassword::Get() const
{
    YUnicodeString password(Str::Sensitive);
    DATA_BLOB secret{static_cast<DWORD>(bytes.size()), const_cast<BYTE*>(bytes.data())};
    DATA_BLOB clear{};
    if (!bytes.empty() && ::CryptUnprotectData(&secret, nullptr, nullptr, nullptr, nullptr,
                                               CRYPTPROTECT_UI_FORBIDDEN, &clear)) {
        const YUniqueLocalMemory memory(clear.pbData);
        password.Append(
            {reinterpret_cast<const wchar_t*>(clear.pbData), clear.cbData / sizeof(wchar_t)});
        ::SecureZeroMemory(clear.pbData, clear.cbData);
    }
    return password;
}

Session& SessionList::Add(const Session& session)
{
    sessions.push_back(std::make_unique<Session>(session));
    Number();
    return *sessions.back();
}

void SessionList::Change(Session& session, const Session& next)
{
    const unsigned number = session.number;
    session = next;
    session.number = number;
    modified = true;
}

void SessionList::Remove(const Session& session)
{
    std::erase_if(sessions, [&](const auto& held) { return held.get() == &session; });
    Number();
}

void SessionList::Exchange(const Session& session, const Session& other)
{
    std::swap(sessions[session.number - 1], sessions[other.number - 1]);
    Number();
}

void SessionList::Number()
{
    unsigned number = 0;
    for (const auto& session : sessions) {
        session->number = ++number;
    }
    modified = true;
}

void SessionList::Load(const YProfileKey& parent)
{
    sessions.clear();
    const YProfileKey list(parent, listKey, YProfileKey::openExisting);
    for (std::size_t i = 0;; ++i) {
        const YProfileKey key(list, GetKeyName(i).c_str(), YProfileKey::openExisting);
        if (!key.IsOpen()) {
            break;
        }
        Session session;
        if (Read(key, session)) {
            Add(session);
        }
    }
    modified = false;
}

// Written anew as a whole: of what was removed nothing stays, least of all a password.
bool SessionList::Save(const YProfileKey& parent, YReportMessageParams& error)
{
    if (!modified) {
        return true;
    }
    parent.DeleteKey(listKey);  // or it is not there anyway
    const YProfileKey list(parent, listKey);
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        const YProfileKey key(list, GetKeyName(i).c_str());
        if (!Write(key, *sessions[i])) {
            error = key.GetLastResult();
            return false;
        }
    }
    modified = false;
    return true;
}
