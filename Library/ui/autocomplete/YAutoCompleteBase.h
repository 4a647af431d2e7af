// YAutoCompleteBase.h: completion of a text, without a window.
#pragma once

#include "CommonUiApi.h"
#include "IAutoCompleteDataSink.h"
#include "IAutoCompleteDataSource.h"
#include "YUnknown.h"
#include "YUnknownPointer.h"

#include <mutex>
#include <string>
#include <vector>

class IAutoCompleteSink;

// Asks the data source about each new text, keeps the list that belongs to the newest one, drops
// answers to older ones, and hands what is accepted to the sink. Texts are the same when their
// UTF-16 units are. The list may change between two calls: a row that is gone reads as empty.
// Answers come on any thread, everything else is called on one.
class COMMONUI_API YAutoCompleteBase : public YUnknown<IAutoCompleteDataSink>
{
public:
    YAutoCompleteBase(const YAutoCompleteBase&) = delete;
    YAutoCompleteBase& operator=(const YAutoCompleteBase&) = delete;

    // IAutoCompleteDataSink; std::bad_alloc leaves the old list in place.
    void OnAutoComplete(const wchar_t* text, const std::vector<std::wstring>& completions,
                        IAutoCompleteDataSource* source) override;

protected:
    // source: may be null, then no completions ever arrive. client: borrowed; null: nobody is told.
    YAutoCompleteBase(IAutoCompleteDataSource* source, IAutoCompleteSink* client);
    ~YAutoCompleteBase() override;

    // The list for the newest text is there; on the thread that answered, without a lock.
    virtual void OnAutoComplete() = 0;

    // Asks the data source, unless the text is the one that it was asked about last. The list stays
    // until the answer. May be answered, and come back here, inside the call.
    void AutoComplete(const wchar_t* text);
    unsigned GetCompletionCount();
    std::wstring GetCompletionAtIndex(unsigned index);  // empty at or past the count
    // What the sink returns.
    bool Accept(const wchar_t* text, bool fromList, bool altDown, bool ctrlDown, bool shiftDown,
                YAutoCompleteBase* source);

private:
    void Replace(const std::vector<std::wstring>& found);

    std::wstring currentText;  // the one last asked about
    IAutoCompleteSink* sink;
    YUnknownPointer<IAutoCompleteDataSource> dataSource;
    std::mutex mutex;  // of currentText and completions; never held while anybody is called
    std::vector<std::wstring> completions;  // of currentText, or of the one before
};
