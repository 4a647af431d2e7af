// InputLine.h: the line in which the user types what is to be sent.
#pragma once

#include <afxwin.h>

#include <cstddef>
#include <string>
#include <vector>

// The lines that were sent, the newest last, and the one that is shown of them.
class InputHistory
{
public:
    static constexpr std::size_t most = 100;  // lines

    void Add(const std::wstring& line);  // an empty one, and the newest once more, are not kept
    // Null: there is none further. Before the first step, draft is kept: the way back ends there.
    const std::wstring* GoBack(const std::wstring& draft);
    const std::wstring* GoForward();

private:
    std::vector<std::wstring> lines;
    std::size_t shown = 0;  // lines.size(): the draft
    std::wstring draft;
};

// Return sends ID_CONNECTION_SEND to the parent, Up and Down go through what was sent, the page keys
// go to the view above.
class InputLine : public CEdit
{
public:
    // pages: borrowed, gets the page keys.
    bool CreateIn(CWnd* parent, UINT id, CWnd* pages);

    std::wstring GetText() const;
    void TakeSent();  // keeps the text as sent and clears the line
    bool HasSelection() const;

protected:
    afx_msg void OnKeyDown(UINT key, UINT repeats, UINT flags);
    afx_msg void OnChar(UINT character, UINT repeats, UINT flags);
    DECLARE_MESSAGE_MAP()

private:
    void Show(const std::wstring* line);

    InputHistory history;
    CWnd* pageWindow = nullptr;
};
