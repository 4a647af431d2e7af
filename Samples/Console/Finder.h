// Finder.h: finding a text in the view of a window.
#pragma once

#include "LineSearch.h"

#include <dialogs/IFindDialogSink.h>

#include <string>

class ConsoleFrame;
class ConsoleSettings;

// What the bar's field, the find box and the keys ask for is looked for in the frame's view. The box
// is modeless, stands where it was the last time and finds as its user types. User-interface thread.
class Finder : private IFindDialogSink
{
public:
    // Both are borrowed.
    Finder(ConsoleFrame& searched, ConsoleSettings& remembered)
        : frame(searched), settings(remembered)
    {}
    Finder(const Finder&) = delete;
    Finder& operator=(const Finder&) = delete;
    ~Finder() override;

    // The box, with what is selected of one line or was looked for last.
    void ShowBox();
    // From the bar. onward: past what is selected, not at it.
    void SearchFor(const std::wstring& text, bool backwards, bool onward);
    // The text that was looked for last; the box where there is none.
    void FindAgain(bool backwards);
    // Ends a search that is under way; false: none was.
    bool Cancel();
    // The view's search has come to an end, or goes on after its first turn.
    void OnProgress();
    // The end that the box is to tell of: with messages handled under it.
    void TellEnd();

private:
    class Box;

    void OnFindNext() override;
    void OnFindDialogClosed(bool wrapAround) override;
    void OnFindDialogActivated() override {}
    void OnFindDialogMoved() override;

    void OnTyped();
    void OnBoxGone();
    std::wstring GetProposal() const;
    unsigned long GetBoxFlags() const;
    void Find(const std::wstring& text, bool backwards, bool onward);

    ConsoleFrame& frame;
    ConsoleSettings& settings;
    Box* box = nullptr;  // deletes itself
    std::wstring last;  // that was looked for
    std::wstring typed;  // what the box had at its last change
    bool asked = false;  // by the box's button: its user waits for an answer
};
