#include "ConnectDialog.h"

#include "ConsoleMessages.h"
#include "DialogText.h"
#include "resource.h"

#include <afxwin.h>

#include <exception>

namespace {

constexpr WPARAM longestHost = 1'024;  // characters; no name has more
constexpr WPARAM longestPort = 5;

void Show(HWND dialog, Peer& peer)
{
    ::SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(&peer));
    ::SendDlgItemMessageW(dialog, IDC_HOST, EM_LIMITTEXT, longestHost, 0);
    ::SendDlgItemMessageW(dialog, IDC_PORT, EM_LIMITTEXT, longestPort, 0);
    ::SetDlgItemTextW(dialog, IDC_HOST, peer.host.c_str());
    ::SetDlgItemInt(dialog, IDC_PORT, peer.port, FALSE);
}

void Accept(HWND dialog)
{
    Peer chosen;
    chosen.host = GetTrimmedText(dialog, IDC_HOST);
    if (chosen.host.empty()) {
        Complain(dialog, CONSOLE_NO_HOST, IDC_HOST);
    } else if (!ParsePort(GetTrimmedText(dialog, IDC_PORT).c_str(), chosen.port)) {
        Complain(dialog, CONSOLE_WRONG_PORT, IDC_PORT);
    } else {
        *reinterpret_cast<Peer*>(::GetWindowLongPtrW(dialog, DWLP_USER)) = chosen;
        ::EndDialog(dialog, IDOK);
    }
}

INT_PTR HandleMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        Show(dialog, *reinterpret_cast<Peer*>(lParam));
        return TRUE;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDOK) {
        Accept(dialog);
        return TRUE;
    }
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        ::EndDialog(dialog, IDCANCEL);
        return TRUE;
    }
    return FALSE;
}

INT_PTR CALLBACK DialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) noexcept
{
    try {
        return HandleMessage(dialog, message, wParam, lParam);
    } catch (const std::exception&) {  // out of memory: as if the user had given up
        ::EndDialog(dialog, IDCANCEL);
        return TRUE;
    }
}

}  // namespace

bool AskForPeer(CWnd& parent, Peer& peer)
{
    return ::DialogBoxParamW(::AfxGetResourceHandle(), MAKEINTRESOURCEW(IDD_CONNECT),
                             parent.GetSafeHwnd(), &DialogProcedure,
                             reinterpret_cast<LPARAM>(&peer)) == IDOK;
}
