#include "AddressSource.h"

#include <YUniqueHandle.h>

#include <algorithm>
#include <exception>
#include <mutex>
#include <string_view>
#include <utility>

namespace {

using Guard = std::lock_guard<WorkerLock>;

std::wstring Fold(std::wstring text)
{
    ::CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

// "C:\logs\sys" to "C:\logs\". Empty: no folder of which it is certain where it lies.
std::wstring GetFolder(const std::wstring& text)
{
    const std::size_t end = text.find_last_of(L"\\/");
    const bool isRooted =
        text.size() > 2 && text[1] == L':' && (text[2] == L'\\' || text[2] == L'/');
    const bool isShare = text.starts_with(L"\\\\");
    return end != std::wstring::npos && (isRooted || isShare) ? text.substr(0, end + 1)
                                                              : std::wstring();
}

bool IsRealEntry(const WIN32_FIND_DATAW& entry)
{
    const std::wstring_view name = entry.cFileName;
    return name != L"." && name != L"..";
}

}  // namespace

AddressMatches::AddressMatches(const std::wstring& typed, std::size_t longest)
    : sought(Fold(typed)), most(longest), folded{sought}
{}

void AddressMatches::Add(const std::wstring& candidate, std::size_t known)
{
    std::wstring key = Fold(candidate);
    const std::size_t found = key.find(std::wstring_view(sought).substr(known), known);
    std::vector<std::wstring>& group = found == known ? beginning : holding;
    const auto place = std::lower_bound(folded.begin(), folded.end(), key);
    if (found == std::wstring::npos || group.size() >= most ||
        (place != folded.end() && *place == key)) {
        return;
    }
    folded.insert(place, std::move(key));
    group.push_back(candidate);
}

std::vector<std::wstring> AddressMatches::Take()
{
    const std::size_t rest = std::min(holding.size(), most - beginning.size());
    beginning.insert(beginning.end(), std::make_move_iterator(holding.begin()),
                     std::make_move_iterator(holding.begin() + static_cast<std::ptrdiff_t>(rest)));
    return std::move(beginning);
}

void AddressSource::SetRecent(std::vector<std::wstring> addresses)
{
    const Guard guard(lock);
    recent = std::move(addresses);
}

// The reference that goes with the work keeps this alive until all is answered. Where the pool takes
// no more the work is done here: late is better than never.
void AddressSource::RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* sink)
{
    {
        const Guard guard(lock);
        std::erase_if(waiting, [&](const Request& old) { return old.sink.Get() == sink; });
        waiting.push_back({text, YUnknownPointer<IAutoCompleteDataSink>(sink)});
        if (std::exchange(isWorking, true)) {
            return;
        }
    }
    AddRef();
    if (!::TrySubmitThreadpoolCallback(&Work, this, nullptr)) {
        Work(nullptr, this);
    }
}

void CALLBACK AddressSource::Work(PTP_CALLBACK_INSTANCE, void* source) noexcept
{
    const auto self = YUnknownPointer<AddressSource>::Adopt(static_cast<AddressSource*>(source));
    self->AnswerAll();
}

// Out of memory: this text is left without an answer, and the next one is tried.
void AddressSource::AnswerAll()
{
    Request request;
    while (TakeNext(request)) {
        try {
            const std::vector<std::wstring> completions = Complete(request);
            request.sink->OnAutoComplete(request.text.c_str(), completions, this);
        } catch (const std::exception&) {}
        request = {};  // outside the lock: it may be the last reference to an engine
    }
}

bool AddressSource::TakeNext(Request& next)
{
    const Guard guard(lock);
    isWorking = !waiting.empty();
    if (isWorking) {
        next = std::move(waiting.front());
        waiting.erase(waiting.begin());
    }
    return isWorking;
}

// Its user has typed on.
bool AddressSource::IsOutdated(const Request& request)
{
    const Guard guard(lock);
    return std::any_of(waiting.begin(), waiting.end(), [&](const Request& other) {
        return other.sink.Get() == request.sink.Get();
    });
}

// Nothing typed is completed to nothing: a list would come up over an empty line, and again after
// the Escape that emptied it.
std::vector<std::wstring> AddressSource::Complete(const Request& request)
{
    if (request.text.empty()) {
        return {};
    }
    AddressMatches matches(request.text, most);
    {
        const Guard guard(lock);
        for (const std::wstring& address : recent) {
            matches.Add(address);
        }
    }
    AddFolder(request, matches);
    return matches.Take();
}

void AddressSource::AddFolder(const Request& request, AddressMatches& matches)
{
    const std::wstring folder = GetFolder(request.text);
    if (folder.empty()) {
        return;
    }
    WIN32_FIND_DATAW entry;
    const YUniqueFind search(::FindFirstFileExW((folder + L'*').c_str(), FindExInfoBasic, &entry,
                                                FindExSearchNameMatch, nullptr,
                                                FIND_FIRST_EX_LARGE_FETCH));
    if (!search) {
        return;
    }
    do {
        if (IsRealEntry(entry)) {
            const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            matches.Add(folder + entry.cFileName + (isFolder ? L"\\" : L""), folder.size());
        }
    } while (!matches.IsFull() && !IsOutdated(request) && ::FindNextFileW(search.Get(), &entry));
}
