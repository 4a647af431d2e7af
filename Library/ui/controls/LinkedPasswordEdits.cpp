#include "controls/LinkedPasswordEdits.h"

LinkedPasswordEdits::LinkedPasswordEdits(IPasswordEditSink* outer)
    : password(this), confirmation(this), outerSink(outer)
{}

// The edits may take windows with them, and would tell of it.
LinkedPasswordEdits::~LinkedPasswordEdits()
{
    password.sink = nullptr;
    confirmation.sink = nullptr;
}

// Each edit's own writing tells the other that the user has typed: the flags come last.
void LinkedPasswordEdits::SetPseudoPassword()
{
    for (PasswordEdit* const edit : {&password, &confirmation}) {
        edit->placeholderShown = true;
        if (!edit->ShowPlaceholder()) {
            return;
        }
    }
    password.placeholderShown = true;
    confirmation.placeholderShown = true;
}

void LinkedPasswordEdits::OnSetFocusPassword(PasswordEdit* edit)
{
    if (Follow(*edit, &PasswordEdit::HidePlaceholder) && outerSink) {
        outerSink->OnSetFocusPassword(edit);
    }
}

void LinkedPasswordEdits::OnKillFocusPassword(PasswordEdit* edit)
{
    if (Follow(*edit, &PasswordEdit::ShowPlaceholder) && outerSink) {
        outerSink->OnKillFocusPassword(edit);
    }
}

void LinkedPasswordEdits::OnEnChangePassword(PasswordEdit* edit)
{
    OtherThan(edit).MarkChanged();
    if (outerSink) {
        outerSink->OnEnChangePassword(nullptr);
    }
}

PasswordEdit& LinkedPasswordEdits::OtherThan(const PasswordEdit* edit)
{
    return edit == &password ? confirmation : password;
}

// The other edit does what this one has done. Its writing is a change of which this one hears: the
// flag is given back. False: the host has ended them.
bool LinkedPasswordEdits::Follow(PasswordEdit& edit, bool (PasswordEdit::*handle)())
{
    PasswordEdit& other = OtherThan(&edit);
    other.placeholderShown = edit.placeholderShown;
    if (!(other.*handle)()) {
        return false;
    }
    edit.placeholderShown = other.placeholderShown;
    return true;
}
