// AddressSource.h: what the address line can be completed to.
#pragma once

#include "WorkerLock.h"

#include <YUnknown.h>
#include <YUnknownPointer.h>
#include <autocomplete/IAutoCompleteDataSink.h>
#include <autocomplete/IAutoCompleteDataSource.h>

#include <windows.h>

#include <cstddef>
#include <string>
#include <vector>

// Those of some texts that begin with the typed one, then those that hold it elsewhere; case is not
// told apart, each text counts once, and the typed one itself is none of them. One thread.
class AddressMatches
{
public:
    AddressMatches(const std::wstring& typed, std::size_t longest);

    // known: characters at the beginning of both that need no comparing, such as a folder.
    void Add(const std::wstring& candidate, std::size_t known = 0);
    bool IsFull() const { return beginning.size() >= most; }  // another would change nothing
    std::vector<std::wstring> Take();  // at most so many; ends the use

private:
    std::wstring sought;  // folded
    std::size_t most;
    std::vector<std::wstring> beginning;
    std::vector<std::wstring> holding;
    std::vector<std::wstring> folded;  // of both, sorted
};

// Completes to what was used before and, where a folder has been typed, to what lies in it. Folders
// are read on a thread of the system's pool: one that does not answer holds up nobody. A text that
// was typed over is not answered any more. May be shared by several edits; lives by references.
class AddressSource : public YUnknown<IAutoCompleteDataSource>
{
public:
    static constexpr std::size_t most = 1'000;

    void SetRecent(std::vector<std::wstring> addresses);  // in the order of the answers

    // IAutoCompleteDataSource
    void RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* sink) override;

private:
    struct Request
    {
        std::wstring text;
        YUnknownPointer<IAutoCompleteDataSink> sink;
    };

    static void CALLBACK Work(PTP_CALLBACK_INSTANCE, void* source) noexcept;
    void AnswerAll();
    bool TakeNext(Request& next);
    bool IsOutdated(const Request& request);
    std::vector<std::wstring> Complete(const Request& request);
    void AddFolder(const Request& request, AddressMatches& matches);

    WorkerLock lock;  // guards what follows
    std::vector<std::wstring> recent;
    std::vector<Request> waiting;  // the newest of each sink
    bool isWorking = false;  // on the pool
};
