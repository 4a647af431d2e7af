// YPropertyTreeDialog.h: options as a tree of pages.
#pragma once

#include "CommonUiApi.h"
#include "YUnicodeString.h"
#include "dialogs/YPropertyTreeDialogBase.h"
#include "dialogs/YPropertyTreePage.h"

#include <afxcmn.h>
#include <afxwin.h>

#include <vector>

class YPluginPage;

// The tree of pages at the left, the selected page at the right with a header above it. A page whose
// entries are refused cannot be left, by whatever way. Pages may come, go, be hidden and shown while
// the dialog is open. Which page was selected and which branches were open is kept in the map, also
// of pages that are gone meanwhile. User-interface thread.
class COMMONUI_API YPropertyTreeDialog : public YPropertyTreeDialogBase
{
    DECLARE_DYNAMIC(YPropertyTreeDialog)

    // style: the layout. 0: OK and Cancel; 1: an Apply button, too; 2: for large pages; 3: compact,
    // with the buttons at the right. Another one is 0. map, placement: see the base.
    YPropertyTreeDialog(const wchar_t* caption, unsigned style, YPropertyPageStateMap* map,
                        YProfileWindowPlacement* placement, CWnd* parent);
    ~YPropertyTreeDialog() override;

    // page: borrowed, at the top of the tree, behind the others there.
    void AddPage(YPropertyTreePage* page);
    void RemovePage(YPropertyTreePage* page);  // from wherever it is in the tree
    // Out of the tree with all below it and back in its place. A page that is shown when it is
    // hidden gives way to the first of the tree, without being asked.
    void ShowPage(YPropertyTreePage* page);
    void HidePage(YPropertyTreePage* page);
    void CollapsePage(YPropertyTreePage* page);
    // False: not in this dialog. item: the page's; of a hidden one the sibling's behind which it
    // belongs, or TVI_FIRST. parentItem: its parent's, or TVI_ROOT; null: that one is hidden.
    bool FindPage(const YPropertyTreePage* page, HTREEITEM& item, HTREEITEM& parentItem) const;
    YPropertyTreePage* GetCurrentPage() const { return currentPage; }  // null: none

    CWnd* GetApplyButton() const;  // null: the layout has none
    void SetCaption(const wchar_t* text);
    void DisableOkButton();
    // Selects the first page where none is selected, and always in a new session.
    void EnsureValidSelection();
    void AddPluginToDynamicLayout(YPluginPage* page);
    void SetClearSelected(bool on) { clearSelected = on; }  // pages come back without selection
    void SetNewSession(bool on) { newSession = on; }

    // IPropertyTreeDialog
    void SetModified(bool modified) override;
    void OnChildAdded(YPropertyTreePage& child) override;
    void OnChildRemoved(YPropertyTreePage& child) override;

    void OnSetFont(CFont* font) override;
    BOOL PreTranslateMessage(MSG* message) override;

protected:
    BOOL OnInitDialog() override;
    void DoOnOK() override;
    void PreparePages() override;
    void AddToDynamicLayout() override;
    virtual void OnApply() {}

    afx_msg void OnDestroy();
    afx_msg HBRUSH OnCtlColor(CDC* dc, CWnd* window, UINT kind);
    afx_msg void OnSelectionChanging(NMHDR* notification, LRESULT* result);
    afx_msg void OnSelectionChanged(NMHDR* notification, LRESULT* result);
    afx_msg void OnItemExpanding(NMHDR* notification, LRESULT* result);
    afx_msg void OnApplyClicked();
    DECLARE_MESSAGE_MAP()

private:
    using Pages = std::vector<YPropertyTreePage*>;

    // Pages in the tree: YPropertyTreeDialog.cpp
    bool IsOpen() const { return tree.GetSafeHwnd() != nullptr; }
    void OpenPages();
    void Prepare(YPropertyTreePage& page);
    void Insert(YPropertyTreePage& page, HTREEITEM parentItem, HTREEITEM insertAfter, bool recurse);
    void AddToLayout(YPropertyTreePage& page);
    void TakeOut(YPropertyTreePage& page);
    void ForgetItems(YPropertyTreePage& page);
    void Leave(YPropertyTreePage& page);
    const Pages& GetSiblings(const YPropertyTreePage& page) const;
    static bool IsBelow(const YPropertyTreePage* page, const YPropertyTreePage& above);
    template <class Action>
    static void ForEach(const Pages& some, Action action);

    // Going from page to page: YPropertyTreeSelection.cpp
    YPropertyTreePage* GetPage(HTREEITEM item) const;
    void SelectAny();
    template <class Question>
    bool Ask(Question question);
    static bool Announce(YPropertyTreePage* next);
    bool MayChange(YPropertyTreePage* next);
    void RestoreFocus(HWND before);
    void ShowCurrent();
    bool GoByKey(UINT key);

    CTreeCtrl tree;
    CStatic frame;
    CStatic header;
    YUnicodeString caption;
    CFont headerFont;
    CBrush headerBrush;
    Pages pages;  // at the top, in the order in which they came
    YPropertyTreePage* currentPage = nullptr;
    bool clearSelected = false;
    bool newSession = false;
    bool suppressValidation = false;  // while pages are hidden
    bool isOpening = false;
    bool allInLayout = false;  // every page is added to the dynamic layout
    bool isAsking = false;  // a page, whether it may be left
    HWND focusBeforeClick = nullptr;  // the window that had it when the tree was pressed
};
