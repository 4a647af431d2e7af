#include "autocomplete/YToolbarEditBoxButton.h"

#include <memory>

IMPLEMENT_SERIAL(YToolbarEditBoxButton, CBCGPToolbarEditBoxButton, 1)

YToolbarEditBoxButton::YToolbarEditBoxButton() = default;
YToolbarEditBoxButton::~YToolbarEditBoxButton() = default;

YToolbarEditBoxButton::YToolbarEditBoxButton(unsigned id, int image, DWORD style, int width)
    : CBCGPToolbarEditBoxButton(id, image, style, width)
{}

void YToolbarEditBoxButton::SetPlaceholderText(const wchar_t* hint)
{
    placeholder = hint != nullptr ? hint : L"";
    if (YLineEdit* const edit = GetLineEdit()) {
        edit->SetPlaceholderText(hint);
    }
}

bool YToolbarEditBoxButton::IsTextEmpty() const
{
    const YLineEdit* const edit = GetLineEdit();
    return edit == nullptr || edit->GetText().IsEmpty();
}

YLineEdit* YToolbarEditBoxButton::CreateEdit(CWnd* parent, const CRect& place)
{
    auto edit = std::make_unique<YLineEdit>();
    return edit->Create(parent, place, m_nID, placeholder.c_str(), YLineEdit::NoButton)
               ? edit.release()
               : nullptr;
}

void YToolbarEditBoxButton::CopyFrom(const CBCGPToolbarButton& source)
{
    const CString label = m_strText;
    CBCGPToolbarEditBoxButton::CopyFrom(source);
    if (m_strText.IsEmpty()) {
        m_strText = label;
    }
    placeholder = static_cast<const YToolbarEditBoxButton&>(source).placeholder;
}

HBRUSH YToolbarEditBoxButton::OnCtlColor(CDC* dc, UINT kind)
{
    YLineEdit* const edit = GetLineEdit();
    return edit != nullptr ? edit->CtlColor(dc, kind) : nullptr;
}

YLineEdit* YToolbarEditBoxButton::GetLineEdit() const
{
    return DYNAMIC_DOWNCAST(YLineEdit, m_pWndEdit);
}
