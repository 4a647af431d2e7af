// IAutoCompleteSink.h: told what the user has accepted.
#pragma once

class YAutoCompleteBase;

// The host implements, the pop-up calls, on the edit's thread. Borrowed: outlives the edit.
class IAutoCompleteSink
{
public:
    // text: a completion of the list (fromList), else what stands in the edit; gone after the call.
    // The key flags are of the moment of acceptance. May show a box, write into the edit, destroy
    // it. The pop-up puts the typed text back afterwards unless this writes into the edit. The
    // result is handed back to the caller of YAutoCompleteBase::Accept.
    virtual bool OnAutoCompleteAccept(const wchar_t* text, bool fromList, bool altDown,
                                      bool ctrlDown, bool shiftDown, YAutoCompleteBase* source) = 0;

protected:
    ~IAutoCompleteSink() = default;  // adds no slot; nobody deletes through it
};
