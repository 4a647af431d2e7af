// IPasswordEditSink.h: who wants to know what happens to a password edit.
#pragma once

class PasswordEdit;

// The edit calls, the host implements. Borrowed; outlives the edit's window. User-interface thread.
// An implementation may destroy the edit. The order is binary contract.
class IPasswordEditSink
{
public:
    virtual void OnSetFocusPassword(PasswordEdit* edit) = 0;
    virtual void OnKillFocusPassword(PasswordEdit* edit) = 0;
    // Comes with every change of the text, those by which the edit shows and hides its placeholder
    // included; GetTouched tells them apart. edit: null, where it was one of a linked pair.
    virtual void OnEnChangePassword(PasswordEdit* edit) = 0;

protected:
    ~IPasswordEditSink() = default;  // adds no slot; nobody deletes through it
};
