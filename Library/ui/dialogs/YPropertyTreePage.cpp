#include "dialogs/YPropertyTreePage.h"

#include "dialogs/IPropertyTreeDialog.h"

#include <algorithm>
#include <string_view>

IMPLEMENT_DYNAMIC(YPropertyTreePage, CDialog)

namespace {

constexpr wchar_t labelEnd = L'\n';

CString GetCaption(const CWnd& page)
{
    CString caption;
    page.GetWindowText(caption);
    return caption;
}

}  // namespace

YPropertyTreePage::YPropertyTreePage(unsigned resource) : resourceId(resource) {}

YPropertyTreePage::~YPropertyTreePage() = default;

YUnicodeString YPropertyTreePage::GetLabel() const
{
    const CString caption = GetCaption(*this);
    const std::wstring_view text = caption.GetString();
    return YUnicodeString(text.substr(0, text.find(labelEnd)));
}

YUnicodeString YPropertyTreePage::GetHeader() const
{
    const CString caption = GetCaption(*this);
    const std::wstring_view text = caption.GetString();
    const std::size_t end = text.find(labelEnd);
    return YUnicodeString(end == std::wstring_view::npos ? text : text.substr(end + 1));
}

void YPropertyTreePage::AddPage(YPropertyTreePage* child)
{
    children.push_back(child);
    child->parentPage = this;
    if (parentDialog) {
        parentDialog->OnChildAdded(*child);
    }
}

void YPropertyTreePage::RemovePage(YPropertyTreePage* child)
{
    if (std::find(children.begin(), children.end(), child) == children.end()) {
        return;
    }
    if (parentDialog) {
        parentDialog->OnChildRemoved(*child);
    }
    std::erase(children, child);  // found anew: pages may have come and gone meanwhile
    child->parentPage = nullptr;
}

BOOL YPropertyTreePage::OnSetActive()
{
    UpdateData(FALSE);
    return TRUE;
}

BOOL YPropertyTreePage::OnKillActive()
{
    return UpdateData(TRUE);
}

// The window is hidden until the page is selected, whatever its template says.
void YPropertyTreePage::PreModal(CDialog* dialog)
{
    parentDialog = dynamic_cast<IPropertyTreeDialog*>(dialog);
    if (!m_hWnd && Create(resourceId, dialog)) {
        ShowWindow(SW_HIDE);
    }
}

void YPropertyTreePage::OnChange()
{
    if (parentDialog) {
        parentDialog->SetModified(true);
    }
}
