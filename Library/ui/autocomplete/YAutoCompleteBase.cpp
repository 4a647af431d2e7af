#include "autocomplete/YAutoCompleteBase.h"

#include "autocomplete/IAutoCompleteSink.h"

#include <new>

YAutoCompleteBase::YAutoCompleteBase(IAutoCompleteDataSource* source, IAutoCompleteSink* client)
    : sink(client), dataSource(source)
{}

YAutoCompleteBase::~YAutoCompleteBase() = default;

void YAutoCompleteBase::OnAutoComplete(const wchar_t* text, const std::vector<std::wstring>& found,
                                       IAutoCompleteDataSource*)
{
    {
        const std::lock_guard lock(mutex);
        if (currentText != text) {
            return;
        }
        if (&found != &completions) {
            Replace(found);
        }
    }
    OnAutoComplete();
}

// Into the strings that are there: to make and to free a hundred thousand takes ten times as long as
// to copy them, and holds up the heap for everybody. The lock is held for that, which is nothing to
// a key as long as lists are short enough to be read.
void YAutoCompleteBase::Replace(const std::vector<std::wstring>& found)
{
    try {
        completions = found;
    } catch (const std::bad_alloc&) {
        completions.clear();  // not half of each
        throw;
    }
}

void YAutoCompleteBase::AutoComplete(const wchar_t* text)
{
    {
        const std::lock_guard lock(mutex);
        if (currentText == text) {
            return;
        }
        currentText = text;
    }
    if (dataSource) {
        dataSource->RequestCompletions(text, this);
    }
}

unsigned YAutoCompleteBase::GetCompletionCount()
{
    const std::lock_guard lock(mutex);
    return static_cast<unsigned>(completions.size());
}

std::wstring YAutoCompleteBase::GetCompletionAtIndex(unsigned index)
{
    const std::lock_guard lock(mutex);
    return index < completions.size() ? completions[index] : std::wstring();
}

bool YAutoCompleteBase::Accept(const wchar_t* text, bool fromList, bool altDown, bool ctrlDown,
                               bool shiftDown, YAutoCompleteBase* source)
{
    return sink != nullptr &&
           sink->OnAutoCompleteAccept(text, fromList, altDown, ctrlDown, shiftDown, source);
}
