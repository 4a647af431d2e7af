// IReportMessageParams.h: a message on its way to the user.
#pragma once

#include "YUnicodeString.h"

#include <windows.h>

#include <unknwn.h>

#include <vector>

// What failed, or what is to be said: an id and its inserts, made into text when somebody asks. The
// library implements it (YReportMessageParams), hosts receive it and may implement it. Handed
// between threads by reference; one thread at a time uses it. The order is binary contract.
class IReportMessageParams : public IUnknown
{
public:
    virtual unsigned GetMessageId() const = 0;  // of a message table, or a system error code
    virtual HMODULE GetModule() const = 0;  // whose table is searched first
    virtual const std::vector<YUnicodeString>& GetInserts() const = 0;
    virtual unsigned GetUserValue() const = 0;  // the reporter's own

    // Never null or empty; valid until the object changes.
    virtual const wchar_t* GetText() const = 0;
    virtual const wchar_t* GetTextSingleLine() const = 0;
    virtual const wchar_t* GetTrimmedText() const = 0;
    virtual const wchar_t* GetTrimmedTextSingleLine() const = 0;
    virtual const wchar_t* GetTextWithLocation(unsigned formatId) const = 0;
};
