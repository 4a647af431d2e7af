// IAutoCompleteDataSource.h: knows what a text can be completed to.
#pragma once

#include <windows.h>

#include <unknwn.h>

class IAutoCompleteDataSink;

// The host implements; the engine calls, on the thread of its user, and holds a reference. Matching,
// order, number and memory of candidates are the data source's. The order is binary contract.
class IAutoCompleteDataSource : public IUnknown
{
public:
    // Answers once by sink->OnAutoComplete(text, completions, this), inside the call or later, from
    // any thread. text: gone after the call. sink: AddRef it to answer later.
    virtual void RequestCompletions(const wchar_t* text, IAutoCompleteDataSink* sink) = 0;
};
