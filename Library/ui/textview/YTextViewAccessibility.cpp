// What the view says to screen readers. They ask for the text each time that they hear of a change,
// so they hear of one a paint at most: one a line makes them fall behind and hang.

#include "textview/YTextView.h"

#include "YAccessibleAnswer.h"
#include "textview/YTextViewPixels.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace {

// A reader can do nothing with more, and gets all of it by another process each time.
constexpr std::size_t maxLine = 4'096;  // characters of a line
constexpr std::size_t maxSelection = 65'536;  // characters

std::wstring_view TextOf(const YTextViewBuffer::LineInfo& line)
{
    return {line.text.data(), line.text.size()};
}

// Columns from to to, which is not included; the line may be shorter.
std::wstring_view Cut(std::wstring_view line, std::size_t from, std::size_t to)
{
    from = std::min(from, line.size());
    return line.substr(from, std::max(to, from) - from);
}

}  // namespace

std::wstring YTextView::GetVisibleText() const
{
    unsigned first = 0;
    unsigned count = 0;
    CalculateVisibleLines(first, count);
    std::wstring text;
    for (unsigned row = 0; row < count; ++row) {
        if (row > 0) {
            text += L'\n';
        }
        text += TextOf(GetBuffer().GetLineInfo(first + row)).substr(0, maxLine);
    }
    return text;
}

std::wstring YTextView::GetSelectedText() const
{
    std::wstring text;
    const YTextViewHighlight* const selected = GetHighlight();
    if (!selected) {
        return text;
    }
    const YTextViewCharPosition begin = selected->GetBegin();
    const YTextViewCharPosition end = selected->GetEnd();
    const unsigned lines = std::min(GetBuffer().GetLineCount(), AddSaturated(end.line, 1));
    for (unsigned line = begin.line; line < lines && text.size() < maxSelection; ++line) {
        const std::wstring_view whole = TextOf(GetBuffer().GetLineInfo(line));
        const bool fromStart = line != begin.line && !IsColumnSelect();
        const bool toEnd = line != end.line && !IsColumnSelect();
        if (line != begin.line) {
            text += L'\n';
        }
        text += Cut(whole, fromStart ? 0 : begin.column,
                    toEnd ? whole.size() : AddSaturated(end.column, 1));
    }
    text.resize(std::min(text.size(), maxSelection));
    return text;
}

// Sums instead of copies of what was told last. Nothing is summed while nobody listens.
void YTextView::AnnounceChange()
{
    if (!::IsWinEventHookInstalled(EVENT_OBJECT_VALUECHANGE) &&
        !::IsWinEventHookInstalled(EVENT_OBJECT_TEXTSELECTIONCHANGED)) {
        return;
    }
    const std::size_t text = SumVisibleText();
    const std::size_t selection = SumSelection();
    const bool otherText = text != announcedText;
    if (otherText || selection != announcedSelection) {
        announcedText = text;
        announcedSelection = selection;
        ::NotifyWinEvent(otherText ? EVENT_OBJECT_VALUECHANGE : EVENT_OBJECT_TEXTSELECTIONCHANGED,
                         m_hWnd, OBJID_CLIENT, CHILDID_SELF);
    }
}

std::size_t YTextView::SumVisibleText() const
{
    constexpr std::size_t factor = 16'777'619;
    unsigned first = 0;
    unsigned count = 0;
    CalculateVisibleLines(first, count);
    std::size_t sum = 0;
    for (unsigned row = 0; row < count; ++row) {
        const auto line = TextOf(GetBuffer().GetLineInfo(first + row)).substr(0, maxLine);
        sum = sum * factor + std::hash<std::wstring_view>()(line);
    }
    return sum;
}

std::size_t YTextView::SumSelection() const
{
    const YTextViewHighlight* const selected = GetHighlight();
    if (!selected) {
        return 0;
    }
    const YTextViewCharPosition begin = selected->GetBegin();
    const YTextViewCharPosition end = selected->GetEnd();
    const unsigned ends[] = {begin.line, begin.column, end.line, end.column, IsColumnSelect()};
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(ends), sizeof ends});
}

HRESULT YTextView::get_accRole(VARIANT child, VARIANT* role)
{
    return YIsAccessibleSelf(child) ? YAnswerNumber(ROLE_SYSTEM_TEXT, role) : E_INVALIDARG;
}

HRESULT YTextView::get_accState(VARIANT child, VARIANT* state)
{
    const HRESULT result = CView::get_accState(child, state);
    if (SUCCEEDED(result) && state->vt == VT_I4) {
        state->lVal |= STATE_SYSTEM_READONLY;
    }
    return result;
}

HRESULT YTextView::get_accValue(VARIANT child, BSTR* value)
{
    return YIsAccessibleSelf(child) ? YAnswerText(GetVisibleText(), value) : E_INVALIDARG;
}

// The selection as numbers of parts would say nothing: the view has none.
HRESULT YTextView::get_accDescription(VARIANT child, BSTR* description)
{
    return YIsAccessibleSelf(child) ? YAnswerText(GetSelectedText(), description) : E_INVALIDARG;
}
