#include "DialogText.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxwin.h>

std::wstring GetTrimmedText(HWND dialog, int id)
{
    const HWND field = ::GetDlgItem(dialog, id);
    std::wstring whole(static_cast<std::size_t>(::GetWindowTextLengthW(field)) + 1, L'\0');
    whole.resize(static_cast<std::size_t>(
        ::GetWindowTextW(field, whole.data(), static_cast<int>(whole.size()))));
    const std::size_t begin = whole.find_first_not_of(L" \t");
    return begin == std::wstring::npos
               ? std::wstring()
               : whole.substr(begin, whole.find_last_not_of(L" \t") - begin + 1);
}

void Complain(HWND dialog, unsigned messageId, int controlId, const wchar_t* insert)
{
    YReportMessageParams message(messageId, ::AfxGetInstanceHandle());
    if (insert) {
        message.AddInsert(insert);
    }
    YMessageBox(CWnd::FromHandle(dialog), &message);
    ::SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(::GetDlgItem(dialog, controlId)),
                   TRUE);
}
