#pragma once

#include <textview/YTextView.h>

#include <string_view>

class LogView : public YTextView
{
public:
    void Show(std::wstring_view text, const COLORREF* color = nullptr)
    {
        const YTextViewBuffer::LineInfo line{{text.begin(), text.end()}, color};
        AppendLines(&line, 1);  // copies the text, and follows the end
    }
    using YTextView::OnEditCopy, YTextView::SelectAll;  // for the menu

protected:
    void GetTextAttributes(const void* attributes, COLORREF& color) const override
    {
        if (attributes) {
            color = *static_cast<const COLORREF*>(attributes);
        }
    }
};
