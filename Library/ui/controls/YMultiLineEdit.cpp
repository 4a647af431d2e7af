#include "controls/YMultiLineEdit.h"

#include "YUnicodeString.h"
#include "YUnknownPointer.h"
#include "textview/ClipboardBuffer.h"

#include <optional>

IMPLEMENT_DYNAMIC(YMultiLineEdit, CBCGPEdit)

BEGIN_MESSAGE_MAP(YMultiLineEdit, CBCGPEdit)
    ON_MESSAGE(WM_PASTE, &YMultiLineEdit::OnPaste)
END_MESSAGE_MAP()

namespace {

// Another program's reading is a matter of a moment; the user must not wait for one that hangs.
constexpr int openTries = 10;
constexpr DWORD openWait = 10;  // milliseconds

// The clipboard, opened and for sure closed again. Closing it once more, after the buffer has, does
// no harm.
class OpenedClipboard
{
public:
    explicit OpenedClipboard(HWND window) : isOpen(Open(window)) {}
    ~OpenedClipboard()
    {
        if (isOpen) {
            ::CloseClipboard();
        }
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return isOpen; }

private:
    static bool Open(HWND window)
    {
        for (int tries = 1; !::OpenClipboard(window); ++tries) {
            if (tries == openTries) {
                return false;
            }
            ::Sleep(openWait);
        }
        return true;
    }

    bool isOpen;
};

// Nothing: there is no text, or it could not be read.
std::optional<CString> ReadClipboardText(HWND window)
{
    const bool isUnicode = ::IsClipboardFormatAvailable(CF_UNICODETEXT) != FALSE;
    if (!isUnicode && !::IsClipboardFormatAvailable(CF_TEXT)) {
        return std::nullopt;
    }
    const OpenedClipboard clipboard(window);
    if (!clipboard) {
        return std::nullopt;
    }
    const unsigned format = isUnicode ? CF_UNICODETEXT : CF_TEXT;
    const auto buffer = YUnknownPointer<ClipboardBuffer>::Make(format, false);
    if (!buffer->IsValid()) {
        return std::nullopt;
    }
    YUnicodeString text;
    buffer->GetData(text);
    return text;
}

}  // namespace

YMultiLineEdit::~YMultiLineEdit() = default;

// A field that takes no text refuses a paste, but not a replacement of its selection.
LRESULT YMultiLineEdit::OnPaste(WPARAM, LPARAM)
{
    const bool takesText = (GetStyle() & ES_READONLY) == 0;
    std::optional<CString> text;
    if (!allowNewLines && takesText) {
        text = ReadClipboardText(m_hWnd);
    }
    if (!text) {
        return Default();
    }
    text->Replace(L"\r\n", L" ");
    ReplaceSel(*text, TRUE);
    return 0;
}
