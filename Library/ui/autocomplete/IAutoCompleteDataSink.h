// IAutoCompleteDataSink.h: takes the completions that a data source has found.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>
#include <vector>

class IAutoCompleteDataSource;

// The engine implements, data sources call, from any thread. Reference-counted: a data source that
// answers later holds a reference until it has answered. The order is binary contract.
class IAutoCompleteDataSink : public IUnknown
{
public:
    // text: the one that was asked about; an answer to an older text is dropped. completions: in
    // the order in which they are to be shown; copied. source: who answers.
    // Out of memory: throws std::bad_alloc, the list is empty then.
    virtual void OnAutoComplete(const wchar_t* text, const std::vector<std::wstring>& completions,
                                IAutoCompleteDataSource* source) = 0;
};
