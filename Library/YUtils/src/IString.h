// IString.h: a string of the caller's that the library fills in.
#pragma once

#include "YUnicodeString.h"

// Whoever asks for a text implements it; the library calls, and keeps nothing. The order is binary
// contract.
class IString
{
public:
    // text: never null, valid during the call only. Sensitive: to be wiped when no longer needed.
    virtual void Assign(const wchar_t* text, Str::SensitiveState state) = 0;

protected:
    ~IString() = default;  // adds no slot; nobody deletes through it
};
