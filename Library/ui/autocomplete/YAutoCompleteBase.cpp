#include "autocomplete/YAutoCompleteBase.h"

#include "autocomplete/IAutoCompleteSink.h"

YAutoCompleteBase::YAutoCompleteBase(IAutoCompleteDataSource* source, IAutoCompleteSink* client)
    : sink(client), dataSource(source)
{}

YAutoCompleteBase::~YAutoCompleteBase() = default;

bool YAutoCompleteBase::IsCurrent(const wchar_t* text)
{
    const std::lock_guard lock(mutex);
    return currentText == text;
}

void YAutoCompleteBase::OnAutoComplete(const wchar_t* text, const std::vector<std::wstring>& found,
                                       IAutoCompleteDataSource*)
{
    if (!IsCurrent(text)) {
        return;
    }
    // Copied without the lock: a long list must not hold up the user's next key. Taken over only if
    // the text is still the same then; what it replaces is freed after the lock, too.
    std::vector<std::wstring> replacement;
    if (&found != &completions) {
        replacement = found;
    }
    {
        const std::lock_guard lock(mutex);
        if (currentText != text) {
            return;
        }
        if (&found != &completions) {
            completions.swap(replacement);
        }
    }
    OnAutoComplete();
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
