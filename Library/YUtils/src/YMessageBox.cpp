#include "YMessageBox.h"

#include "IReportMessageParams.h"

#include <BCGCBProInc.h>

#include <string>

namespace {

constexpr unsigned kindMask = 0x0F;
constexpr unsigned iconMask = 0xF0;
constexpr unsigned kindsKnown = 5;  // what came later brings its own look

// Shows the cursor for the life of the object, however often it was hidden before.
class VisibleCursor
{
public:
    VisibleCursor()
    {
        do {
            ++shown;
        } while (::ShowCursor(TRUE) < 0);
    }
    ~VisibleCursor()
    {
        while (shown-- > 0) {
            ::ShowCursor(FALSE);
        }
    }
    VisibleCursor(const VisibleCursor&) = delete;
    VisibleCursor& operator=(const VisibleCursor&) = delete;

private:
    int shown = 0;
};

unsigned GetDefaultIcon(unsigned kind)
{
    switch (kind) {
    case MB_OK:
    case MB_OKCANCEL: return MB_ICONEXCLAMATION;
    case MB_YESNOCANCEL:
    case MB_YESNO: return MB_ICONQUESTION;
    default: return 0;  // Abort/Retry/Ignore says enough by itself
    }
}

unsigned CompleteStyle(unsigned style)
{
    const unsigned kind = style & kindMask;
    return (style & iconMask) == 0 && kind < kindsKnown ? style | GetDefaultIcon(kind) : style;
}

bool IsMainWindow(const CWnd& window)
{
    CWinThread* const thread = ::AfxGetThread();
    return thread && thread->GetMainWnd() == &window;
}

std::wstring GetProgramName()
{
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    std::wstring name(path);
    name.erase(0, name.find_last_of(L"\\/") + 1);
    return name.substr(0, name.find_last_of(L'.'));
}

}  // namespace

const wchar_t* YGetAppName()
{
    const CWinApp* const application = ::AfxGetApp();
    if (application && application->m_pszAppName) {
        return application->m_pszAppName;
    }
    static const std::wstring program = GetProgramName();
    return program.c_str();
}

int YMessageBox(CWnd* parent, const IReportMessageParams* message, unsigned style,
                const wchar_t* caption)
{
    const VisibleCursor cursor;
    if (!caption) {
        caption = YGetAppName();
    }
    style = CompleteStyle(style);
    if (!parent || IsMainWindow(*parent)) {
        return ::BCGPMessageBox(parent ? parent->GetSafeHwnd() : nullptr, message->GetText(),
                                caption, style);
    }
    return parent->MessageBox(message->GetText(), caption, style);
}

int YMessageBox(const IReportMessageParams* message, unsigned style, const wchar_t*)
{
    return ::AfxMessageBox(message->GetText(), style);
}
