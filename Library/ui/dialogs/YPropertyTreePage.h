// YPropertyTreePage.h: a page of a property tree.
#pragma once

#include "CommonUiApi.h"
#include "dialogs/YPropertyTreePageBase.h"

#include <afxcmn.h>
#include <afxwin.h>

#include <vector>

// A child dialog of the program's, of a template with WS_CHILD and DS_CONTROL. Its caption is what the
// tree shows and, after a line feed, the header over the page. The host owns pages; they outlive the
// dialog that shows them, and may be shown again by another. User-interface thread.
class COMMONUI_API YPropertyTreePage : public CDialog, public YPropertyTreePageBase
{
    DECLARE_DYNAMIC(YPropertyTreePage)

    explicit YPropertyTreePage(unsigned resource);
    ~YPropertyTreePage() override;

    unsigned GetResourceID() const { return resourceId; }
    // While there is a window.
    YUnicodeString GetLabel() const;
    YUnicodeString GetHeader() const;

    // child: borrowed. Where the dialog is open, it comes and goes at once.
    void AddPage(YPropertyTreePage* child);
    void RemovePage(YPropertyTreePage* child);
    const std::vector<YPropertyTreePage*>& GetPages() const { return children; }
    YPropertyTreePage* GetParentPage() const { return parentPage; }  // null: at the top

    // YPropertyTreePageBase. Going to the page fills its controls, leaving it takes them over.
    BOOL OnSetActive() override;
    BOOL OnKillActive() override;
    void OnShow() override {}
    void PreModal(CDialog* dialog) override;
    void Refresh() override {}
    void OnOK() override {}
    void OnCancel() override {}
    YUnicodeString GetStateMapName() const override { return stateMapName; }

    // For the notifications of controls, and for controls that have none of their own for it
    // (YControllingCheckBox): the dialog has something to apply.
    afx_msg void OnChange();

protected:
    IPropertyTreeDialog* InternalGetParentDialog() const override { return parentDialog; }

private:
    friend class YPropertyTreeDialog;

    unsigned resourceId;
    HTREEITEM treeItem = nullptr;  // null: not in the tree
    std::vector<YPropertyTreePage*> children;  // borrowed, in the order of the tree
    YUnicodeString stateMapName;
    bool isInLayout = false;  // of the open dialog
    YPropertyTreePage* parentPage = nullptr;
    IPropertyTreeDialog* parentDialog = nullptr;  // null: none is open
};
