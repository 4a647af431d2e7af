// Kit.h: a data source and a sink that tests look into.
#pragma once

#include "YUnknown.h"
#include "YUnknownPointer.h"
#include "autocomplete/IAutoCompleteDataSource.h"
#include "autocomplete/IAutoCompleteSink.h"
#include "autocomplete/YAutoCompleteBase.h"

#include <functional>
#include <string>
#include <vector>

// Keeps what it is asked; answers when the test says so, or at once.
class TestSource : public YUnknown<IAutoCompleteDataSource>
{
public:
    void RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* sink) override
    {
        requests.emplace_back(text);
        sinks.assign(1, YUnknownPointer<IAutoCompleteDataSink>(sink));
        if (answersAtOnce) {
            Answer(text, answersAtOnce(text));
        }
    }

    void Answer(const wchar_t* text, const std::vector<std::wstring>& completions)
    {
        const auto last = sinks;  // the answer may lead to the next request
        for (const auto& sink : last) {
            sink->OnAutoComplete(text, completions, this);
        }
    }

    std::function<std::vector<std::wstring>(const std::wstring&)> answersAtOnce;
    std::vector<std::wstring> requests;
    std::vector<YUnknownPointer<IAutoCompleteDataSink>> sinks;  // the last one that asked
};

// Keeps what is accepted, with the words "list", "alt", "ctrl", "shift" for what was true.
class RecordingSink : public IAutoCompleteSink
{
public:
    bool OnAutoCompleteAccept(const wchar_t* text, bool fromList, bool altDown, bool ctrlDown,
                              bool shiftDown, YAutoCompleteBase*) override
    {
        accepted.push_back(std::wstring(text) + (fromList ? L" list" : L"") +
                           (altDown ? L" alt" : L"") + (ctrlDown ? L" ctrl" : L"") +
                           (shiftDown ? L" shift" : L""));
        if (atAccept) {
            atAccept();
        }
        return result;
    }

    std::function<void()> atAccept;
    std::vector<std::wstring> accepted;
    bool result = false;
};
