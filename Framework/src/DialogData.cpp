// The exchange of single values between members and controls, and their validation.
#include "DialogTexts.h"
#include "afxwin.h"

#include <charconv>
#include <string>
#include <string_view>

extern "C" IMAGE_DOS_HEADER __ImageBase;  // this DLL, by the linker

namespace {

std::wstring LoadOwnText(UINT id)
{
    const wchar_t* text = nullptr;  // inside the resource, without an end
    const int length = ::LoadStringW(reinterpret_cast<HINSTANCE>(&__ImageBase), id,
                                     reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? std::wstring(text, static_cast<std::size_t>(length)) : std::wstring();
}

void Replace(std::wstring& text, std::wstring_view what, const std::wstring& with)
{
    if (const std::size_t at = text.find(what); at != std::wstring::npos) {
        text.replace(at, what.size(), with);
    }
}

[[noreturn]] void Refuse(CDataExchange& exchange, UINT textId, const std::wstring& first = {},
                         const std::wstring& second = {})
{
    std::wstring text = LoadOwnText(textId);
    Replace(text, L"%1", first);
    Replace(text, L"%2", second);
    ::AfxMessageBox(text.c_str(), MB_ICONEXCLAMATION);
    exchange.Fail();
}

CString TextOf(HWND control)
{
    CString text;
    const int length = ::GetWindowTextLengthW(control);
    const int copied = ::GetWindowTextW(control, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer(copied);
    return text;
}

// Equal text would still move the caret and send EN_CHANGE.
void ShowText(HWND control, const CString& text)
{
    if (TextOf(control) != text) {
        ::SetWindowTextW(control, text);
    }
}

// False: there is something else than a number of the type.
template <class Number>
bool ReadNumber(CString text, Number& value)
{
    text.Trim();
    std::string digits;
    for (int i = 0; i < text.GetLength(); ++i) {
        digits += text[i] < 0x80 ? static_cast<char>(text[i]) : '?';
    }
    const char* const end = digits.data() + digits.size();
    Number number = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error != std::errc() || stop != end) {
        return false;
    }
    value = number;
    return true;
}

template <class Number>
void ExchangeNumber(CDataExchange& exchange, int id, Number& value, UINT refusal)
{
    const HWND control = exchange.PrepareEditCtrl(id);
    if (!exchange.m_bSaveAndValidate) {
        ShowText(control, std::to_wstring(value).c_str());
    } else if (!ReadNumber(TextOf(control), value)) {
        Refuse(exchange, refusal);
    }
}

template <class Number>
void CheckRange(CDataExchange& exchange, Number value, Number least, Number most)
{
    ASSERT(least <= most);
    if (exchange.m_bSaveAndValidate && (value < least || value > most)) {
        Refuse(exchange, TEXT_ENTER_BETWEEN, std::to_wstring(least), std::to_wstring(most));
    }
}

struct SelectionMessages
{
    UINT get;
    UINT set;
};

void ExchangeIndex(CDataExchange& exchange, int id, int& index, SelectionMessages messages)
{
    constexpr auto none = static_cast<WPARAM>(-1);
    const HWND control = exchange.PrepareCtrl(id);
    if (exchange.m_bSaveAndValidate) {
        index = static_cast<int>(::SendMessageW(control, messages.get, 0, 0));
        return;
    }
    // A line that does not exist would leave the old one selected, on some systems.
    ::SendMessageW(control, messages.set, none, 0);
    ::SendMessageW(control, messages.set, static_cast<WPARAM>(index), 0);
}

bool IsRadioButton(HWND control)
{
    return (::SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) != 0;
}

bool BeginsGroup(HWND control)
{
    return (::GetWindowLongW(control, GWL_STYLE) & WS_GROUP) != 0;
}

}  // namespace

void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl)
{
    if (rControl.m_hWnd != nullptr) {
        return;
    }
    if (!rControl.SubclassWindow(pDX->PrepareCtrl(nIDC))) {
        ::AfxThrowNotSupportedException();  // the control has an object
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value)
{
    const HWND control = pDX->PrepareEditCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = TextOf(control);
    } else {
        ShowText(control, value);
    }
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value)
{
    ExchangeNumber(*pDX, nIDC, value, TEXT_ENTER_INTEGER);
}

void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, UINT& value)
{
    ExchangeNumber(*pDX, nIDC, value, TEXT_ENTER_POSITIVE_INTEGER);
}

void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value)
{
    const HWND control = pDX->PrepareCtrl(nIDC);
    if (pDX->m_bSaveAndValidate) {
        value = static_cast<int>(::SendMessageW(control, BM_GETCHECK, 0, 0));
    } else {
        ::SendMessageW(control, BM_SETCHECK, static_cast<WPARAM>(value), 0);
    }
}

void AFXAPI DDX_Radio(CDataExchange* pDX, int nIDC, int& value)
{
    HWND control = pDX->PrepareCtrl(nIDC);
    ASSERT(BeginsGroup(control) && IsRadioButton(control));
    const bool isSaving = pDX->m_bSaveAndValidate != FALSE;
    if (isSaving) {
        value = -1;
    }
    int button = 0;
    do {
        if (!IsRadioButton(control)) {
            continue;  // a text or a field among them
        }
        if (!isSaving) {
            ::SendMessageW(control, BM_SETCHECK, button == value, 0);
        } else if (::SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED) {
            value = button;
        }
        ++button;
    } while ((control = ::GetWindow(control, GW_HWNDNEXT)) != nullptr && !BeginsGroup(control));
}

void AFXAPI DDX_LBIndex(CDataExchange* pDX, int nIDC, int& index)
{
    ExchangeIndex(*pDX, nIDC, index, {LB_GETCURSEL, LB_SETCURSEL});
}

void AFXAPI DDX_CBIndex(CDataExchange* pDX, int nIDC, int& index)
{
    ExchangeIndex(*pDX, nIDC, index, {CB_GETCURSEL, CB_SETCURSEL});
}

void AFXAPI DDV_MinMaxInt(CDataExchange* pDX, int value, int minVal, int maxVal)
{
    CheckRange(*pDX, value, minVal, maxVal);
}

void AFXAPI DDV_MinMaxUInt(CDataExchange* pDX, UINT value, UINT minVal, UINT maxVal)
{
    CheckRange(*pDX, value, minVal, maxVal);
}

void AFXAPI DDV_MaxChars(CDataExchange* pDX, const CString& value, int nChars)
{
    ASSERT(nChars >= 1);
    if (pDX->m_bSaveAndValidate) {
        if (value.GetLength() > nChars) {
            Refuse(*pDX, TEXT_ENTER_NO_MORE_THAN, std::to_wstring(nChars));
        }
    } else if (pDX->m_bEditLastControl) {
        const HWND control = ::GetDlgItem(*pDX->m_pDlgWnd, pDX->m_idLastControl);
        ::SendMessageW(control, EM_LIMITTEXT, static_cast<WPARAM>(nChars), 0);
    }
}
