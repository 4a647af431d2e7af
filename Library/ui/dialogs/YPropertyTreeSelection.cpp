// How the user goes from page to page of a property tree.
#include "YInput.h"
#include "dialogs/YPropertyTreeDialog.h"

#include <memory>
#include <utility>

YPropertyTreePage* YPropertyTreeDialog::GetPage(HTREEITEM item) const
{
    return item ? reinterpret_cast<YPropertyTreePage*>(tree.GetItemData(item)) : nullptr;
}

void YPropertyTreeDialog::EnsureValidSelection()
{
    if (newSession) {
        tree.SelectItem(tree.GetRootItem());
    }
    SelectAny();
}

// In a new session, too, the user stays where he is when pages come later.
void YPropertyTreeDialog::SelectAny()
{
    if (!tree.GetSelectedItem()) {
        tree.SelectItem(tree.GetRootItem());
    }
}

// One question at a time: a change or an OK that comes while a page is being asked, as from behind its
// message box, is refused.
template <class Question>
bool YPropertyTreeDialog::Ask(Question question)
{
    if (std::exchange(isAsking, true)) {
        return false;
    }
    const std::unique_ptr<bool, void (*)(bool*)> end(&isAsking, [](bool* asking) {
        *asking = false;  // also where a page throws
    });
    return question();
}

// What a page takes out of the tree while it is asked can be neither left nor gone to.
void YPropertyTreeDialog::OnSelectionChanging(NMHDR* notification, LRESULT* result)
{
    const auto& change = *reinterpret_cast<const NMTREEVIEWW*>(notification);
    auto* const next = reinterpret_cast<YPropertyTreePage*>(change.itemNew.lParam);
    const YPropertyTreePage* const last = currentPage;
    const HWND before = std::exchange(focusBeforeClick, nullptr);
    const bool isAgreed =
        suppressValidation ? Announce(next) : Ask([&] { return MayChange(next); });
    const bool areThere = currentPage == last && (!next || next->treeItem);
    *result = !isAgreed || !areThere;
    if (*result) {
        RestoreFocus(before);
    }
}

// Where validation is suppressed the page is told, and its answer changes nothing: the current page
// is about to go (test: APageThatIsTakenOutIsLeft).
bool YPropertyTreeDialog::Announce(YPropertyTreePage* next)
{
    if (next) {
        next->OnSetActive();
    }
    return true;
}

// Both are asked, whatever the first one says: a page that becomes active has always been told.
bool YPropertyTreeDialog::MayChange(YPropertyTreePage* next)
{
    const bool mayLeave = isOpening || !currentPage || currentPage->OnKillActive();
    const bool mayEnter = !next || (next->treeItem && next->OnSetActive());
    return mayLeave && mayEnter;
}

void YPropertyTreeDialog::DoOnOK()
{
    if (currentPage && Ask([this] { return currentPage->OnKillActive() != FALSE; })) {
        EndDialog(IDOK);
    }
}

// To the control that refused, if it has taken the focus, else to the one that had it before the
// tree was clicked. Posted: a click's own focus comes after this.
void YPropertyTreeDialog::RestoreFocus(HWND before)
{
    const HWND now = ::GetFocus();
    const bool isInPage = currentPage && ::IsChild(*currentPage, now);
    const HWND target = isInPage || !::IsWindowVisible(before) ? now : before;
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

// Also called for messages of windows over the dialog, such as a box of a page's: their keys are theirs.
BOOL YPropertyTreeDialog::PreTranslateMessage(MSG* message)
{
    const UINT kind = message->message;
    if (kind == WM_KEYDOWN) {
        focusBeforeClick = nullptr;
        if (::GetAncestor(message->hwnd, GA_ROOT) == m_hWnd &&
            GoByKey(static_cast<UINT>(message->wParam))) {
            return TRUE;
        }
    } else if (message->hwnd == tree.GetSafeHwnd() &&
               (kind == WM_LBUTTONDOWN || kind == WM_RBUTTONDOWN)) {
        focusBeforeClick = ::GetFocus();
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
