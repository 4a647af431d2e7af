#include "InputLine.h"

#include "resource.h"

#include <utility>

BEGIN_MESSAGE_MAP(InputLine, CEdit)
    ON_WM_KEYDOWN()
    ON_WM_CHAR()
END_MESSAGE_MAP()

void InputHistory::Add(const std::wstring& line)
{
    if (!line.empty() && (lines.empty() || lines.back() != line)) {
        if (lines.size() == most) {
            lines.erase(lines.begin());
        }
        lines.push_back(line);
    }
    shown = lines.size();
    draft.clear();
}

const std::wstring* InputHistory::GoBack(const std::wstring& typed)
{
    if (shown == 0) {
        return nullptr;
    }
    if (shown == lines.size()) {
        draft = typed;
    }
    return &lines[--shown];
}

const std::wstring* InputHistory::GoForward()
{
    if (shown == lines.size()) {
        return nullptr;
    }
    return ++shown == lines.size() ? &draft : &lines[shown];
}

bool InputLine::CreateIn(CWnd* parent, UINT id, CWnd* pages)
{
    pageWindow = pages;
    return CWnd::CreateEx(WS_EX_CLIENTEDGE, L"EDIT", nullptr,
                          WS_CHILD | WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, CRect(0, 0, 0, 0),
                          parent, id) != FALSE;
}

std::wstring InputLine::GetText() const
{
    CString text;
    GetWindowText(text);
    return text.GetString();
}

void InputLine::TakeSent()
{
    history.Add(GetText());
    SetWindowText(L"");
}

bool InputLine::HasSelection() const
{
    const auto ends = static_cast<DWORD>(SendMessage(EM_GETSEL));
    return LOWORD(ends) != HIWORD(ends);
}

void InputLine::Show(const std::wstring* line)
{
    if (line) {
        SetWindowText(line->c_str());
        SetSel(static_cast<int>(line->size()), static_cast<int>(line->size()));
    }
}

void InputLine::OnKeyDown(UINT key, UINT repeats, UINT flags)
{
    switch (key) {
    case VK_RETURN: GetParent()->SendMessage(WM_COMMAND, ID_CONNECTION_SEND); break;
    case VK_UP: Show(history.GoBack(GetText())); break;
    case VK_DOWN: Show(history.GoForward()); break;
    case VK_PRIOR:
    case VK_NEXT: pageWindow->SendMessage(WM_KEYDOWN, key, MAKELPARAM(repeats, flags)); break;
    default: CEdit::OnKeyDown(key, repeats, flags); break;
    }
}

// The system's line would beep at a Return.
void InputLine::OnChar(UINT character, UINT repeats, UINT flags)
{
    if (character != L'\r') {
        CEdit::OnChar(character, repeats, flags);
    }
}
