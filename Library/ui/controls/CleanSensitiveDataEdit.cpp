#include "controls/CleanSensitiveDataEdit.h"

#include <algorithm>

namespace {

constexpr int minimalLength = 32;  // characters

}  // namespace

// A text that is replaced by a shorter one stays in the edit's buffer behind the end of that, and in
// its undo buffer: who types over a password leaves it in both. The undo buffer can be written to only
// by something that is deleted so that it can be undone.
void CleanSensitiveDataEdit(CWnd* edit)
{
    const int length = edit->GetWindowTextLength();
    const CString last(L'*', length > 0 ? length : minimalLength);
    edit->SetWindowText(last);
    edit->SetWindowText(CString(L'*', std::max(length, minimalLength)));
    edit->SendMessage(EM_SETSEL, 0, -1);
    edit->SendMessage(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L""));
    edit->SetWindowText(last);
}
