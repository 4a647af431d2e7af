#include "controls/YStringComboBox.h"

#include "YReportMessageParams.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(YStringComboBox, CComboBox)

BEGIN_MESSAGE_MAP(YStringComboBox, CComboBox)
    ON_MESSAGE(CB_DELETESTRING, &YStringComboBox::OnDeleteString)
    ON_MESSAGE(CB_RESETCONTENT, &YStringComboBox::OnResetContent)
    ON_WM_DESTROY()
END_MESSAGE_MAP()

YStringComboBox::~YStringComboBox() = default;

// The value is there first, so that nothing fails once the line is.
void YStringComboBox::AddItem(const YUnicodeString& text, const YString& value)
{
    values.push_back(value);
    const int index = AddString(text.c_str());
    if (index < 0) {
        values.pop_back();
        return;
    }
    std::rotate(values.begin() + index, values.end() - 1, values.end());
}

void YStringComboBox::AddItem(unsigned messageId, const YString& value)
{
    AddItem(YUnicodeString(YReportMessageParams(messageId).GetTrimmedText()), value);
}

YString YStringComboBox::GetCurrentValue() const
{
    return values.at(static_cast<std::size_t>(GetCurSel()));
}

// By value: binary contract.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void YStringComboBox::SetCurrentValue(YString value)
{
    const auto found = std::find(values.begin(), values.end(), value);
    if (found != values.end()) {
        SetCurSel(static_cast<int>(found - values.begin()));
    }
}

LRESULT YStringComboBox::OnDeleteString(WPARAM wParam, LPARAM)
{
    const LRESULT remaining = Default();
    if (remaining != CB_ERR && wParam < values.size()) {
        values.erase(values.begin() + static_cast<std::ptrdiff_t>(wParam));
    }
    return remaining;
}

LRESULT YStringComboBox::OnResetContent(WPARAM, LPARAM)
{
    values.clear();
    return Default();
}

void YStringComboBox::OnDestroy()
{
    values.clear();
    CComboBox::OnDestroy();
}
