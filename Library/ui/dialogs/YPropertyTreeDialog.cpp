#include "dialogs/YPropertyTreeDialog.h"

#include "YModule.h"
#include "dialogs/PropertyTreeIds.h"
#include "dialogs/YPluginPage.h"

#include <afxlayout.h>

#include <uxtheme.h>

#include <algorithm>
#include <utility>

IMPLEMENT_DYNAMIC(YPropertyTreeDialog, YPropertyTreeDialogBase)

BEGIN_MESSAGE_MAP(YPropertyTreeDialog, YPropertyTreeDialogBase)
    ON_WM_DESTROY()
    ON_WM_CTLCOLOR()
    ON_NOTIFY(TVN_SELCHANGINGW, PROPERTY_TREE_TREE, &YPropertyTreeDialog::OnSelectionChanging)
    ON_NOTIFY(TVN_SELCHANGEDW, PROPERTY_TREE_TREE, &YPropertyTreeDialog::OnSelectionChanged)
    ON_NOTIFY(TVN_ITEMEXPANDINGW, PROPERTY_TREE_TREE, &YPropertyTreeDialog::OnItemExpanding)
    ON_COMMAND(PROPERTY_TREE_APPLY, &YPropertyTreeDialog::OnApplyClicked)
END_MESSAGE_MAP()

namespace {

constexpr unsigned templates[] = {PROPERTY_TREE_PLAIN, PROPERTY_TREE_WITH_APPLY,
                                  PROPERTY_TREE_LARGE, PROPERTY_TREE_COMPACT};
constexpr DWORD treeStyles =
    TVS_HASBUTTONS | TVS_LINESATROOT | TVS_DISABLEDRAGDROP | TVS_SHOWSELALWAYS;
constexpr wchar_t nameDivider[] = L"~";

// Sets a flag while it lives.
class Raised
{
public:
    explicit Raised(bool& which) : flag(which), before(std::exchange(which, true)) {}
    ~Raised() { flag = before; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

private:
    bool& flag;
    bool before;
};

// Where the system draws trees in its theme, branches are told apart without lines.
bool HasThemedLook(HWND tree)
{
    return ::IsThemeActive() && ::IsAppThemed() && ::GetWindowTheme(tree) != nullptr;
}

}  // namespace

YPropertyTreeDialog::YPropertyTreeDialog(const wchar_t* text, unsigned style,
                                         YPropertyPageStateMap* map,
                                         YProfileWindowPlacement* placement, CWnd* parent)
    : YPropertyTreeDialogBase(templates[style < std::size(templates) ? style : 0],
                              YGetLibraryModule(), parent, placement, map),
      caption(text)
{}

YPropertyTreeDialog::~YPropertyTreeDialog() = default;

// Opening and closing

BOOL YPropertyTreeDialog::OnInitDialog()
{
    tree.SubclassDlgItem(PROPERTY_TREE_TREE, this);
    frame.SubclassDlgItem(PROPERTY_TREE_PAGE, this);
    header.SubclassDlgItem(PROPERTY_TREE_HEADER, this);
    headerBrush.CreateSysColorBrush(COLOR_BTNSHADOW);
    header.SetFont(&headerFont);
    YPropertyTreeDialogBase::OnInitDialog();
    tree.ModifyStyle(0, treeStyles | (HasThemedLook(tree) ? 0U : TVS_HASLINES));
    SetWindowText(caption.c_str());
    SetModified(false);
    OpenPages();
    GotoDlgCtrl(&tree);
    return FALSE;
}

// Pages that were selected when they were last here give way to one another, and in a new session to
// the first one. Nobody has seen them: they are not asked.
void YPropertyTreeDialog::OpenPages()
{
    const Raised opening(isOpening);
    PreparePages();
    EnsureValidSelection();
}

void YPropertyTreeDialog::PreparePages()
{
    allInLayout = GetDynamicLayout() != nullptr;
    for (YPropertyTreePage* const page : Pages(pages)) {
        Prepare(*page);
        Insert(*page, TVI_ROOT, TVI_LAST, true);
    }
}

void YPropertyTreeDialog::AddToDynamicLayout()
{
    using Layout = CMFCDynamicLayout;
    Layout& layout = *GetDynamicLayout();
    layout.AddItem(tree, Layout::MoveNone(), Layout::SizeVertical());
    layout.AddItem(frame, Layout::MoveNone(), Layout::SizeHorizontalAndVertical());
    layout.AddItem(header, Layout::MoveNone(), Layout::SizeHorizontal());
    for (const UINT button : {UINT{IDOK}, UINT{IDCANCEL}, UINT{PROPERTY_TREE_APPLY}}) {
        layout.AddItem(button, Layout::MoveHorizontalAndVertical(), Layout::SizeNone());
    }
}

// The windows of the pages go with the dialog's.
void YPropertyTreeDialog::OnDestroy()
{
    SaveDynamicLayoutDialogPlacement();
    ForEach(pages, [](YPropertyTreePage& page) {
        if (page.treeItem) {
            page.SavePageState();
        }
    });
    for (YPropertyTreePage* const page : pages) {
        Leave(*page);
    }
    currentPage = nullptr;
    YPropertyTreeDialogBase::OnDestroy();
    tree.UnsubclassWindow();
    frame.UnsubclassWindow();
    header.UnsubclassWindow();
    headerBrush.DeleteObject();
}

void YPropertyTreeDialog::OnApplyClicked()
{
    OnApply();
}

void YPropertyTreeDialog::OnSetFont(CFont* font)
{
    LOGFONT bold{};
    if (font && font->GetLogFont(&bold)) {
        bold.lfWeight = FW_BOLD;
        headerFont.DeleteObject();
        headerFont.CreateFontIndirect(&bold);
    }
}

HBRUSH YPropertyTreeDialog::OnCtlColor(CDC* dc, CWnd* window, UINT kind)
{
    if (window->GetSafeHwnd() != header.GetSafeHwnd() || !IsOpen()) {
        return YPropertyTreeDialogBase::OnCtlColor(dc, window, kind);
    }
    dc->SetTextColor(::GetSysColor(COLOR_WINDOWTEXT));
    dc->SetBkColor(::GetSysColor(COLOR_BTNSHADOW));
    return static_cast<HBRUSH>(headerBrush.GetSafeHandle());
}

CWnd* YPropertyTreeDialog::GetApplyButton() const
{
    return m_hWnd ? GetDlgItem(PROPERTY_TREE_APPLY) : nullptr;
}

void YPropertyTreeDialog::SetModified(bool modified)
{
    if (CWnd* const apply = GetApplyButton()) {
        apply->EnableWindow(modified);
    }
}

void YPropertyTreeDialog::SetCaption(const wchar_t* text)
{
    caption = YUnicodeString(text);
    if (m_hWnd) {
        SetWindowText(text);
    }
}

void YPropertyTreeDialog::DisableOkButton()
{
    GetDlgItem(IDOK)->EnableWindow(FALSE);
}

// Pages in the tree

template <class Action>
void YPropertyTreeDialog::ForEach(const Pages& some, Action action)
{
    for (YPropertyTreePage* const page : some) {
        action(*page);
        ForEach(page->children, action);
    }
}

void YPropertyTreeDialog::AddPage(YPropertyTreePage* page)
{
    pages.push_back(page);
    if (IsOpen()) {
        Prepare(*page);
        Insert(*page, TVI_ROOT, TVI_LAST, true);
        SelectAny();
    }
}

void YPropertyTreeDialog::OnChildAdded(YPropertyTreePage& child)
{
    Prepare(child);
    if (const HTREEITEM parentItem = child.parentPage->treeItem) {
        Insert(child, parentItem, TVI_LAST, true);
    }
}

void YPropertyTreeDialog::RemovePage(YPropertyTreePage* page)
{
    if (page->parentPage) {
        page->parentPage->RemovePage(page);
        return;
    }
    const auto place = std::find(pages.begin(), pages.end(), page);
    if (place == pages.end()) {
        return;
    }
    if (IsOpen()) {
        OnChildRemoved(*page);
    }
    std::erase(pages, page);
}

void YPropertyTreeDialog::OnChildRemoved(YPropertyTreePage& child)
{
    TakeOut(child);
    Leave(child);
}

// Makes the windows of the page and of those below it. Tab goes from the tree into the page, not to
// the buttons first.
void YPropertyTreeDialog::Prepare(YPropertyTreePage& page)
{
    page.PreModal(this);
    if (page.m_hWnd) {
        page.SetWindowPos(&frame, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

// A page without a window, as for want of its template, does not come into the tree.
void YPropertyTreeDialog::Insert(YPropertyTreePage& page, HTREEITEM parentItem,
                                 HTREEITEM insertAfter, bool recurse)
{
    if (!page.m_hWnd) {
        return;
    }
    CRect place;  // the dialog may have been sized since it opened
    frame.GetWindowRect(&place);
    ScreenToClient(&place);
    page.SetWindowPos(nullptr, place.left, place.top, place.Width(), place.Height(),
                      SWP_NOZORDER | SWP_NOACTIVATE);
    const YUnicodeString label = page.GetLabel();
    page.treeItem = tree.InsertItem(label.c_str(), parentItem, insertAfter);
    tree.SetItemData(page.treeItem, reinterpret_cast<DWORD_PTR>(&page));
    page.stateMapName =
        page.parentPage ? page.parentPage->stateMapName + nameDivider + label : label;
    AddToLayout(page);
    for (YPropertyTreePage* const child : Pages(page.children)) {
        if (recurse) {
            Prepare(*child);
        }
        Insert(*child, page.treeItem, TVI_LAST, recurse);
    }
    page.SetPageState();
    if (page.IsExpanded()) {
        tree.Expand(page.treeItem, TVE_EXPAND);
    }
    if (page.IsSelected()) {
        tree.SelectItem(page.treeItem);
        page.SetSelected(currentPage == &page);  // another one may have refused to be left
    }
    tree.Invalidate();
}

void YPropertyTreeDialog::AddToLayout(YPropertyTreePage& page)
{
    using Layout = CMFCDynamicLayout;
    if (allInLayout && !page.isInLayout) {
        GetDynamicLayout()->AddItem(page, Layout::MoveNone(), Layout::SizeHorizontalAndVertical());
        page.isInLayout = true;
    }
}

void YPropertyTreeDialog::AddPluginToDynamicLayout(YPluginPage* page)
{
    using Layout = CMFCDynamicLayout;
    if (CMFCDynamicLayout* const layout = GetDynamicLayout()) {
        layout->AddItem(page->GetSafeHwnd(), Layout::MoveNone(),
                        Layout::SizeHorizontalAndVertical());
    }
}

void YPropertyTreeDialog::HidePage(YPropertyTreePage* page)
{
    if (page->treeItem) {
        TakeOut(*page);
    }
}

void YPropertyTreeDialog::TakeOut(YPropertyTreePage& page)
{
    if (!page.treeItem) {
        return;
    }
    const Raised silent(suppressValidation);
    if (IsBelow(currentPage, page)) {
        const HTREEITEM first = tree.GetRootItem();
        tree.SelectItem(first == page.treeItem ? tree.GetNextSiblingItem(first) : first);
    }
    if (!page.treeItem) {
        return;  // by the page that has just been told; the tree takes no item for all of them
    }
    ForEach({&page}, [](YPropertyTreePage& gone) { gone.SavePageState(); });
    tree.DeleteItem(page.treeItem);
    ForgetItems(page);
    if (tree.GetCount() == 0 && currentPage) {
        currentPage->ShowWindow(SW_HIDE);
        currentPage = nullptr;
        header.SetWindowText(L"");
        GotoDlgCtrl(&tree);
    }
}

void YPropertyTreeDialog::ForgetItems(YPropertyTreePage& page)
{
    ForEach({&page}, [](YPropertyTreePage& gone) { gone.treeItem = nullptr; });
}

void YPropertyTreeDialog::ShowPage(YPropertyTreePage* page)
{
    HTREEITEM after = nullptr;
    HTREEITEM parentItem = nullptr;
    if (page->treeItem || !FindPage(page, after, parentItem) || !parentItem) {
        return;
    }
    if (clearSelected || currentPage) {
        ForEach({page}, [](YPropertyTreePage& shown) {
            shown.SetSelected(false);
            shown.SavePageState();
        });
    }
    Insert(*page, parentItem, after, false);
    if (page->parentPage && page->parentPage->IsExpanded()) {
        tree.Expand(parentItem, TVE_EXPAND);
    }
    SelectAny();
}

void YPropertyTreeDialog::CollapsePage(YPropertyTreePage* page)
{
    if (page->treeItem) {
        tree.Expand(page->treeItem, TVE_COLLAPSE);
        page->SetExpanded(false);
    }
}

const YPropertyTreeDialog::Pages&
YPropertyTreeDialog::GetSiblings(const YPropertyTreePage& page) const
{
    return page.parentPage ? page.parentPage->children : pages;
}

bool YPropertyTreeDialog::FindPage(const YPropertyTreePage* page, HTREEITEM& item,
                                   HTREEITEM& parentItem) const
{
    const Pages& siblings = GetSiblings(*page);
    const auto place = std::find(siblings.begin(), siblings.end(), page);
    if (place == siblings.end()) {
        return false;
    }
    parentItem = page->parentPage ? page->parentPage->treeItem : TVI_ROOT;
    item = page->treeItem;
    for (auto before = place; !item && before != siblings.begin();) {
        item = (*--before)->treeItem;
    }
    item = item ? item : TVI_FIRST;
    return true;
}

bool YPropertyTreeDialog::IsBelow(const YPropertyTreePage* page, const YPropertyTreePage& above)
{
    while (page && page != &above) {
        page = page->parentPage;
    }
    return page != nullptr;
}

// The page forgets the dialog; its window goes.
void YPropertyTreeDialog::Leave(YPropertyTreePage& page)
{
    ForEach({&page}, [](YPropertyTreePage& leaving) {
        leaving.treeItem = nullptr;
        leaving.isInLayout = false;
        leaving.DestroyWindow();
        leaving.parentDialog = nullptr;
    });
}
