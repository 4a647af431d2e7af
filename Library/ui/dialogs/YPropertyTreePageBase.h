// YPropertyTreePageBase.h: what a property tree knows of any page.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"

#include <windows.h>

class CDialog;
class IPropertyTreeDialog;

// The state of a page, and what the dialog asks of it. Knows no window. User-interface thread. The
// order of the virtual operations is binary contract.
class COMMONUI_API YPropertyTreePageBase
{
public:
    YPropertyTreePageBase();
    YPropertyTreePageBase(const YPropertyTreePageBase&) = delete;
    YPropertyTreePageBase& operator=(const YPropertyTreePageBase&) = delete;

    // The user goes to the page, or leaves it. FALSE: that must not be, and the user knows why.
    virtual BOOL OnSetActive() = 0;
    virtual BOOL OnKillActive() = 0;
    virtual void OnShow() = 0;  // it is the one that is shown
    // Before the page comes into the tree: makes its window inside the dialog.
    virtual void PreModal(CDialog* dialog) = 0;
    virtual void Refresh() = 0;
    virtual void OnOK() = 0;
    virtual void OnCancel() = 0;
    // Names the page among all of the dialog: those above it and itself, divided by "~".
    virtual YUnicodeString GetStateMapName() const = 0;

protected:
    virtual IPropertyTreeDialog* InternalGetParentDialog() const = 0;

public:
    virtual ~YPropertyTreePageBase();

    IPropertyTreeDialog* GetParentDialog() const { return InternalGetParentDialog(); }
    bool IsExpanded() const { return expanded; }
    bool IsSelected() const { return selected; }
    void SetExpanded(bool on) { expanded = on; }
    void SetSelected(bool on) { selected = on; }

    // Writes the two into the dialog's map, or takes them from there; a page that the map does not
    // know is entered as it is. Without a dialog or a map: nothing.
    void SavePageState();
    void SetPageState();

private:
    bool expanded = false;  // its branch of the tree
    bool selected = false;
};
