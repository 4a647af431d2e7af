// How the user goes from page to page of a property tree.
#include "YInput.h"
#include "dialogs/YPropertyTreeDialog.h"

#include <utility>

YPropertyTreePage* YPropertyTreeDialog::GetPage(HTREEITEM item) const
{
    return item ? reinterpret_cast<YPropertyTreePage*>(tree.GetItemData(item)) : nullptr;
}

void YPropertyTreeDialog::EnsureValidSelection()
{
    if (newSession || !tree.GetSelectedItem()) {
        tree.SelectItem(tree.GetRootItem());
    }
}

// A change that comes while a page is being asked, as from behind its message box, is refused.
void YPropertyTreeDialog::OnSelectionChanging(NMHDR* notification, LRESULT* result)
{
    const auto& change = *reinterpret_cast<const NMTREEVIEWW*>(notification);
    *result = FALSE;
    if (std::exchange(isChanging, true)) {
        *result = TRUE;
        return;
    }
    const HWND before = std::exchange(focusBeforeClick, nullptr);
    if (!MayChange(reinterpret_cast<YPropertyTreePage*>(change.itemNew.lParam))) {
        RestoreFocus(before);
        *result = TRUE;
    }
    isChanging = false;
}

// Both are asked, whatever the first one says: a page that becomes active has always been told.
bool YPropertyTreeDialog::MayChange(YPropertyTreePage* next)
{
    const bool mayLeave = suppressValidation || !currentPage || currentPage->OnKillActive();
    const bool mayEnter = !next || next->OnSetActive();
    return mayLeave && mayEnter;
}

// To the control that refused, if it has taken the focus, else to the one that had it before the
// tree was clicked. Posted: a click's own focus comes after this.
void YPropertyTreeDialog::RestoreFocus(HWND before)
{
    const HWND now = ::GetFocus();
    const bool isInPage = currentPage && ::IsChild(*currentPage, now);
    const HWND target = isInPage || !before ? now : before;
    PostMessage(WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(target), TRUE);
}

void YPropertyTreeDialog::OnSelectionChanged(NMHDR* notification, LRESULT* result)
{
    const auto& change = *reinterpret_cast<const NMTREEVIEWW*>(notification);
    auto* const next = reinterpret_cast<YPropertyTreePage*>(change.itemNew.lParam);
    *result = 0;
    if (!next || next == currentPage) {
        return;
    }
    YPropertyTreePage* const last = std::exchange(currentPage, next);
    if (last) {
        const bool hadFocus = ::IsChild(*last, ::GetFocus()) != FALSE;
        last->ShowWindow(SW_HIDE);
        last->SetSelected(false);
        if (hadFocus) {
            GotoDlgCtrl(&tree);  // or it would stay in a window that cannot be seen
        }
    }
    ShowCurrent();
}

void YPropertyTreeDialog::ShowCurrent()
{
    header.SetWindowText((YUnicodeString(L"  ") + currentPage->GetHeader()).c_str());
    currentPage->ShowWindow(SW_SHOW);
    currentPage->EnableWindow(TRUE);
    currentPage->SetSelected(true);
    currentPage->OnShow();
}

void YPropertyTreeDialog::OnItemExpanding(NMHDR* notification, LRESULT* result)
{
    const auto& change = *reinterpret_cast<const NMTREEVIEWW*>(notification);
    if (auto* const page = reinterpret_cast<YPropertyTreePage*>(change.itemNew.lParam)) {
        page->SetExpanded(change.action == TVE_EXPAND);
    }
    *result = FALSE;
}

BOOL YPropertyTreeDialog::PreTranslateMessage(MSG* message)
{
    if (message->hwnd == tree.GetSafeHwnd() &&
        (message->message == WM_LBUTTONDOWN || message->message == WM_RBUTTONDOWN)) {
        focusBeforeClick = ::GetFocus();
    }
    if (message->message == WM_KEYDOWN && GoByKey(static_cast<UINT>(message->wParam))) {
        return TRUE;
    }
    return YPropertyTreeDialogBase::PreTranslateMessage(message);
}

// From wherever the focus is. Branches that are closed are passed over.
bool YPropertyTreeDialog::GoByKey(UINT key)
{
    const bool isTab = key == VK_TAB;
    if (!IsKeyModifierPressed(VK_CONTROL) || (!isTab && key != VK_NEXT && key != VK_PRIOR)) {
        return false;
    }
    const bool isBack = isTab ? IsKeyModifierPressed(VK_SHIFT) : key == VK_PRIOR;
    const HTREEITEM from = tree.GetSelectedItem();
    HTREEITEM to = nullptr;
    if (from) {
        to = isBack ? tree.GetPrevVisibleItem(from) : tree.GetNextVisibleItem(from);
    }
    if (!to) {
        to = isBack ? tree.GetLastVisibleItem() : tree.GetRootItem();
    }
    tree.SelectItem(to);
    return true;
}
