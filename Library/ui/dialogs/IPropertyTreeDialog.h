// IPropertyTreeDialog.h: how the pages of a property tree reach their dialog.
#pragma once

class YPropertyPageStateMap;
class YPropertyTreePage;

// The dialog implements, pages call, while it is open. User-interface thread. The order is binary
// contract.
class IPropertyTreeDialog
{
public:
    virtual void SetModified(bool modified) = 0;  // enables the Apply button, where there is one
    virtual YPropertyPageStateMap* GetPageStateMap() const = 0;  // null: nothing is remembered
    // A child has come to a page of the tree, or is about to leave it.
    virtual void OnChildAdded(YPropertyTreePage& child) = 0;
    virtual void OnChildRemoved(YPropertyTreePage& child) = 0;

protected:
    ~IPropertyTreeDialog() = default;  // adds no slot; nobody deletes through it
};
