#include "autocomplete/YAutoComplete.h"

#include "YInput.h"
#include "autocomplete/PopupMessages.h"
#include "autocomplete/WindowGuard.h"

namespace {

bool IsOwnThread(HWND window)
{
    return ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId();
}

}  // namespace

// While it lives, changes of the edit's text are ours.
class YAutoComplete::WritingIntoEdit
{
public:
    explicit WritingIntoEdit(YAutoComplete& writer) : object(writer)
    {
        object.notifyOnChange = false;
    }
    ~WritingIntoEdit() { object.notifyOnChange = true; }
    WritingIntoEdit(const WritingIntoEdit&) = delete;
    WritingIntoEdit& operator=(const WritingIntoEdit&) = delete;

private:
    YAutoComplete& object;
};

bool YAutoComplete::CreateAndAttach(HWND edit, IAutoCompleteDataSource* source,
                                    IAutoCompleteSink* sink, bool fitEditWidth)
{
    DWORD_PTR attached = 0;
    if (::GetWindowSubclass(edit, &SubclassProcedure<YAutoComplete, &YAutoComplete::OnEditMessage>,
                            0, &attached)) {
        return false;
    }
    Pointer::Adopt(new YAutoComplete(edit, source, sink, fitEditWidth))->Attach();
    return true;
}

YAutoComplete::YAutoComplete(HWND window, IAutoCompleteDataSource* source,
                             IAutoCompleteSink* client, bool fitsEdit)
    : YAutoCompleteBase(source, client), edit(window), fitEditWidth(fitsEdit)
{}

YAutoComplete::~YAutoComplete() = default;

void YAutoComplete::Attach()
{
    // The system need not notice that the window is not ours to subclass.
    if (!IsOwnThread(edit) ||
        !::SetWindowSubclass(edit, &SubclassProcedure<YAutoComplete, &YAutoComplete::OnEditMessage>,
                             0, reinterpret_cast<DWORD_PTR>(this))) {
        edit = nullptr;
        return;
    }
    AddRef();  // the edit's; Detach releases it
    try {
        EnterThread();
        EnterParent(::GetParent(edit));
        editHasFocus = ::GetFocus() == edit;
        CreatePopupOf(*this);
        OnTextChange();
    } catch (...) {
        Detach();
        throw;
    }
}

void YAutoComplete::Detach()
{
    if (!::RemoveWindowSubclass(
            edit, &SubclassProcedure<YAutoComplete, &YAutoComplete::OnEditMessage>, 0)) {
        return;
    }
    if (const HWND window = popup) {
        ::DestroyWindow(window);
    }
    StopWatching();  // in case the pop-up has been destroyed by somebody else, too
    LeaveParent(editParent);
    LeaveParent(firstParent);
    LeaveThread();
    edit = nullptr;
    Release();
}

// Several edits of one parent each have a subclass of their own there: the id is the object.
void YAutoComplete::EnterParent(HWND window)
{
    editParent = window;
    if (editParent != nullptr) {
        ::SetWindowSubclass(editParent,
                            &SubclassProcedure<YAutoComplete, &YAutoComplete::OnParentMessage>,
                            GetSubclassId(), reinterpret_cast<DWORD_PTR>(this));
    }
}

void YAutoComplete::LeaveParent(HWND window)
{
    if (window != nullptr) {
        ::RemoveWindowSubclass(window,
                               &SubclassProcedure<YAutoComplete, &YAutoComplete::OnParentMessage>,
                               GetSubclassId());
    }
    if (editParent == window) {
        editParent = nullptr;
    }
    if (firstParent == window) {
        firstParent = nullptr;
    }
}

// The system's edits go on telling the parent that they were made with, others tell the new one:
// the first parent keeps its subclass (test: FollowsItsEditToAnotherParent).
void YAutoComplete::ChangeParent(HWND window)
{
    if (firstParent == nullptr) {
        firstParent = editParent;
    } else if (editParent != firstParent) {
        LeaveParent(editParent);
    }
    EnterParent(window);
}

LRESULT YAutoComplete::OnEditMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_KEYDOWN:
        if (OnKeyDown(wParam)) {
            return 0;
        }
        break;
    case WM_KEYUP:
        if (wParam == VK_UP || wParam == VK_DOWN) {
            return 0;
        }
        break;
    case WM_CHAR:
        if (wParam == VK_RETURN) {
            return 0;  // of the key that has accepted: the edit would only beep at it
        }
        break;
    case WM_WINDOWPOSCHANGING: OnMoving(*reinterpret_cast<const WINDOWPOS*>(lParam)); break;
    case WM_NCDESTROY: Detach(); break;
    default: break;
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

// Looked at before the parent's own handling, which may destroy the edit and the parent.
LRESULT YAutoComplete::OnParentMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND && edit != nullptr && reinterpret_cast<HWND>(lParam) == edit) {
        OnEditNotification(HIWORD(wParam));
    } else if (message == WM_WINDOWPOSCHANGING && window == editParent) {
        OnMoving(*reinterpret_cast<const WINDOWPOS*>(lParam));
    } else if (message == WM_NCDESTROY) {
        LeaveParent(window);
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

LRESULT YAutoComplete::OnRootMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_WINDOWPOSCHANGING: OnMoving(*reinterpret_cast<const WINDOWPOS*>(lParam)); break;
    case WM_ENTERMENULOOP:  // the keys are the menu's now
    case WM_NCLBUTTONDOWN:
    case WM_NCRBUTTONDOWN:
    case WM_NCMBUTTONDOWN:
    case WM_NCXBUTTONDOWN: PostToPopup(hideMessage); break;
    case WM_NCACTIVATE:
        // The caption keeps its active look while the list is used: for the user it is one window.
        if (!wParam && ::GetForegroundWindow() == window && ::IsWindowEnabled(window)) {
            return 0;
        }
        break;
    case WM_NCDESTROY: StopWatching(); break;
    default: break;
    }
    return ::DefSubclassProc(window, message, wParam, lParam);
}

void YAutoComplete::OnEditNotification(UINT code)
{
    switch (code) {
    case EN_SETFOCUS: editHasFocus = true; break;
    case EN_KILLFOCUS:
        if (!keepsFocus) {
            editHasFocus = false;
            PostToPopup(hideMessage);
        }
        break;
    case EN_CHANGE:
        if (notifyOnChange) {
            OnTextChange();
        }
        break;
    default: break;
    }
}

// The edit or a window that carries it moves or changes its size; or the edit has a new parent,
// which only this message tells.
void YAutoComplete::OnMoving(const WINDOWPOS& position)
{
    constexpr UINT stays = SWP_NOSIZE | SWP_NOMOVE;
    if ((position.flags & stays) == stays || edit == nullptr) {
        return;
    }
    const HWND parent = ::GetParent(edit);
    if (parent != editParent) {
        ChangeParent(parent);
    } else {
        PostToPopup(hideMessage);
    }
}

bool YAutoComplete::OnKeyDown(WPARAM key)
{
    switch (key) {
    case VK_DOWN: GoDown(); return true;
    case VK_UP: GoUp(); return true;
    case VK_TAB: IsKeyModifierPressed(VK_SHIFT) ? GoUp() : GoDown(); return true;
    case VK_RETURN: AcceptWhatIsThere(); return true;
    case VK_ESCAPE: EmptyEdit(); return true;
    default: return false;
    }
}

void YAutoComplete::GoDown()
{
    PostToPopup(showMessage);
    SelectItem(selectedIndex + 1, true, true);  // npos + 1 is row 0
}

void YAutoComplete::GoUp()
{
    PostToPopup(showMessage);
    if (selectedIndex == npos) {
        SelectItem(GetItemCount() - 1, true, true);  // of no row: npos
    } else {
        SelectItem(selectedIndex - 1, true, true);  // above row 0: npos
    }
}

void YAutoComplete::AcceptWhatIsThere()
{
    if (IsPopupVisible() && selectedIndex != npos) {
        AcceptText(selectedText, true);
    } else {
        AcceptText(GetEditText(), false);
    }
}

void YAutoComplete::AcceptText(const std::wstring& text, bool fromList)
{
    const bool alt = IsKeyModifierPressed(VK_MENU);
    const bool ctrl = IsKeyModifierPressed(VK_CONTROL);
    const bool shift = IsKeyModifierPressed(VK_SHIFT);
    PostToPopup(hideMessage);
    GiveFocusBack();  // before the sink, which may put it elsewhere
    // A copy: text may be ours, and the sink may change it while it reads.
    Accept(std::wstring(text).c_str(), fromList, alt, ctrl, shift, this);
}

void YAutoComplete::EmptyEdit()
{
    if (IsPopupVisible()) {
        PostToPopup(hideMessage);
    }
    ::SetWindowTextW(edit, L"");
    OnTextChange();  // an edit of several lines does not tell its parent
}

void YAutoComplete::OnTextChange()
{
    if (edit == nullptr) {
        return;
    }
    // The data source may change the edit, and with it typedText, while it still reads the text.
    const std::wstring text = GetEditText();
    typedText = text;
    AutoComplete(text.c_str());
}

std::wstring YAutoComplete::GetEditText() const
{
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(edit)), L'\0');
    if (!text.empty()) {
        const int length = ::GetWindowTextW(edit, text.data(), static_cast<int>(text.size()) + 1);
        text.resize(static_cast<std::size_t>(length));
    }
    return text;
}

void YAutoComplete::WriteIntoEdit(const std::wstring& text)
{
    const WritingIntoEdit writing(*this);
    ::SetWindowTextW(edit, text.c_str());
    const int end = ::GetWindowTextLengthW(edit);
    ::SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(end), end);
}

void YAutoComplete::SelectItem(unsigned index, bool makeVisible, bool writeText)
{
    if (index >= GetItemCount()) {
        ClearSelection(writeText);
        return;
    }
    selectedText = GetCompletionAtIndex(index);
    selectedIndex = index;
    MarkItem(index, true);  // the one before loses it: the list has but one
    if (makeVisible) {
        CallList(LVM_ENSUREVISIBLE, index, FALSE);
        UpdateScrollBar();
    }
    if (writeText) {
        WriteIntoEdit(std::wstring(selectedText));
    }
}

void YAutoComplete::ClearSelection(bool writeText)
{
    if (selectedIndex == npos) {
        return;
    }
    MarkItem(selectedIndex, false);
    selectedIndex = npos;
    if (writeText && edit != nullptr) {
        WriteIntoEdit(std::wstring(typedText));
    }
}

void YAutoComplete::MarkItem(unsigned index, bool selected)
{
    LVITEMW state{};
    state.stateMask = LVIS_SELECTED;
    state.state = selected ? LVIS_SELECTED : 0U;
    CallList(LVM_SETITEMSTATE, index, reinterpret_cast<LPARAM>(&state));
}
