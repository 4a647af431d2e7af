// LinkedPasswordEdits.h: a password and its confirmation.
#pragma once

#include "CommonUiApi.h"
#include "controls/IPasswordEditSink.h"
#include "controls/PasswordEdit.h"

// Two password edits that move as one: the placeholder goes from both when either gets the focus,
// comes back to both when nothing was typed, and is gone for good once the user types into either.
// Whether they hold the same is the host's to compare. User-interface thread.
class COMMONUI_API LinkedPasswordEdits : public IPasswordEditSink
{
public:
    // Borrowed, may be null; hears of both edits, of changes without saying which: they concern
    // both.
    explicit LinkedPasswordEdits(IPasswordEditSink* outer);
    virtual ~LinkedPasswordEdits();
    LinkedPasswordEdits(const LinkedPasswordEdits&) = delete;
    LinkedPasswordEdits& operator=(const LinkedPasswordEdits&) = delete;

    // While both have a window.
    void SetPseudoPassword();
    bool GetTouched() const { return password.GetTouched(); }

    // IPasswordEditSink, for the edits.
    void OnSetFocusPassword(PasswordEdit* edit) override;
    void OnKillFocusPassword(PasswordEdit* edit) override;
    void OnEnChangePassword(PasswordEdit* edit) override;

    // For the dialog to bind to its controls (DDX_Control).
    PasswordEdit password;
    PasswordEdit confirmation;

private:
    PasswordEdit& OtherThan(const PasswordEdit* edit);
    bool Follow(PasswordEdit& edit, bool (PasswordEdit::*handle)());

    IPasswordEditSink* outerSink;
};
