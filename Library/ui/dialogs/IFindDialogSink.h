// IFindDialogSink.h: whose text is searched.
#pragma once

// The host implements, the find dialog calls. Borrowed: outlives the dialog. User-interface thread.
// The order is binary contract.
class IFindDialogSink
{
public:
    virtual ~IFindDialogSink() = default;

    virtual void OnFindNext() = 0;  // the dialog says what and how
    // It is about to delete itself. wrapAround: as it was told when it was made.
    virtual void OnFindDialogClosed(bool wrapAround) = 0;
    virtual void OnFindDialogActivated() = 0;  // or deactivated
    virtual void OnFindDialogMoved() = 0;  // a place to remember: GetPosition
};
