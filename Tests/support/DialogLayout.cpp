#include "support/DialogLayout.h"

#include "support/Input.h"

#include <algorithm>
#include <cstring>
#include <cwctype>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

using Bytes = std::vector<unsigned char>;

constexpr LANGID english = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr LANGID french = MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH);

// Reads an extended template and writes it again, with other texts.
class TemplateWriter
{
public:
    explicit TemplateWriter(const Bytes& read) : from(read) {}

    Bytes Lengthen()
    {
        constexpr std::size_t headLength = 26;  // up to the menu
        constexpr std::size_t styleAt = 12;
        constexpr std::size_t countAt = 16;
        DWORD style = 0;
        WORD count = 0;
        std::memcpy(&style, from.data() + styleAt, sizeof style);
        std::memcpy(&count, from.data() + countAt, sizeof count);
        Copy(headLength);
        CopyNameOrOrdinal();  // menu
        CopyNameOrOrdinal();  // class
        CopyLonger();
        if ((style & DS_SETFONT) != 0) {
            Copy(6);
            CopyText();
        }
        for (; count > 0; --count) {
            Align();
            constexpr std::size_t itemLength = 24;
            Copy(itemLength);
            CopyNameOrOrdinal();
            CopyLonger();
            const WORD extra = Peek();
            Copy(sizeof(WORD) + extra);
        }
        return to;
    }

private:
    WORD Peek() const
    {
        WORD value = 0;
        std::memcpy(&value, from.data() + place, sizeof value);
        return value;
    }
    void Copy(std::size_t count)
    {
        to.insert(to.end(), from.begin() + static_cast<std::ptrdiff_t>(place),
                  from.begin() + static_cast<std::ptrdiff_t>(place + count));
        place += count;
    }
    void CopyText()
    {
        while (Peek() != 0) {
            Copy(sizeof(WORD));
        }
        Copy(sizeof(WORD));
    }
    void CopyNameOrOrdinal()
    {
        if (Peek() == 0xFFFF) {
            Copy(2 * sizeof(WORD));
        } else {
            CopyText();
        }
    }
    // Four more letters for every ten, with blanks between them as a language has.
    void CopyLonger()
    {
        constexpr wchar_t more[] = L" l\u00F6ng\u00E9r t\u00EBxt";
        if (Peek() == 0xFFFF) {
            Copy(2 * sizeof(WORD));
            return;
        }
        std::size_t length = 0;
        for (; Peek() != 0; ++length) {
            Copy(sizeof(WORD));
        }
        for (std::size_t i = 0; i < (length * 4 + 9) / 10; ++i) {
            Put(static_cast<WORD>(more[i % (std::size(more) - 1)]));
        }
        Copy(sizeof(WORD));
    }
    void Align()
    {
        place = (place + 3) / 4 * 4;
        to.resize((to.size() + 3) / 4 * 4);
    }
    void Put(WORD value)
    {
        to.push_back(LOBYTE(value));
        to.push_back(HIBYTE(value));
    }

    const Bytes& from;
    std::size_t place = 0;
    Bytes to;
};

Bytes LoadTemplate(HMODULE module, int id, Wording wording)
{
    const HRSRC resource = ::FindResourceExW(module, RT_DIALOG, MAKEINTRESOURCEW(id),
                                             wording == Wording::French ? french : english);
    if (!resource) {
        throw std::runtime_error("no template " + std::to_string(id) + " in this language");
    }
    const auto* const bytes =
        static_cast<const unsigned char*>(::LockResource(::LoadResource(module, resource)));
    Bytes copy(bytes, bytes + ::SizeofResource(module, resource));
    constexpr DWORD extended = 0xFFFF'0001;  // the version and signature that DIALOGEX begins with
    DWORD start = 0;
    std::memcpy(&start, copy.data(), sizeof start);
    if (start != extended) {
        throw std::runtime_error("template " + std::to_string(id) + " is no extended one");
    }
    return wording == Wording::Longer ? TemplateWriter(copy).Lengthen() : copy;
}

bool IsChild(const Bytes& layout)
{
    DWORD style = 0;
    std::memcpy(&style, layout.data() + 12, sizeof style);
    return (style & WS_CHILD) != 0;
}

// A dialog without controls.
Bytes MakeEmptyTemplate()
{
    struct
    {
        DLGTEMPLATE head{
            WS_POPUP | WS_CAPTION | WS_VISIBLE, WS_EX_CONTROLPARENT, 0, 20, 20, 460, 320};
        WORD menu = 0;
        WORD windowClass = 0;
        WORD title = 0;
    } layout;
    Bytes bytes(sizeof layout);
    std::memcpy(bytes.data(), &layout, sizeof layout);
    return bytes;
}

const DLGTEMPLATE* AsTemplate(const Bytes& bytes)
{
    return reinterpret_cast<const DLGTEMPLATE*>(bytes.data());
}

std::wstring TextOf(HWND window)
{
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        ::GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring ClassOf(HWND window)
{
    wchar_t name[64] = L"";
    ::GetClassNameW(window, name, 64);
    return name;
}

std::string Describe(HWND control)
{
    std::ostringstream words;
    words << "control " << ::GetDlgCtrlID(control) << " \"";
    for (const wchar_t letter : TextOf(control)) {
        words << (letter < 0x80 ? static_cast<char>(letter) : '?');
    }
    words << '"';
    return words.str();
}

std::vector<HWND> GetControls(HWND dialog)
{
    std::vector<HWND> controls;
    for (HWND child = ::GetWindow(dialog, GW_CHILD); child;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        if (::GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) {
            controls.push_back(child);
        }
    }
    return controls;
}

LONG GetKind(HWND control, LONG mask)
{
    return ::GetWindowLongW(control, GWL_STYLE) & mask;
}

bool IsDialog(HWND window)
{
    return ClassOf(window) == L"#32770";
}

// What other controls lie in.
bool IsFrame(HWND control)
{
    const std::wstring name = ClassOf(control);
    const LONG kind = GetKind(control, name == L"Button" ? BS_TYPEMASK : SS_TYPEMASK);
    return name == L"Button"
               ? kind == BS_GROUPBOX
               : name == L"Static" &&
                     ((kind >= SS_BLACKRECT && kind <= SS_WHITEFRAME) || kind == SS_ETCHEDFRAME);
}

// The room that a text needs in a control's font; width: of a text that wraps, 0 for one line.
SIZE MeasureText(HWND control, const std::wstring& text, int width, UINT flags)
{
    CClientDC dc(CWnd::FromHandle(control));
    const auto font = reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = ::SelectObject(dc.GetSafeHdc(), font);
    RECT room{0, 0, width, 0};
    ::DrawTextW(dc.GetSafeHdc(), text.c_str(), -1, &room,
                DT_CALCRECT | flags | (width > 0 ? DT_WORDBREAK : DT_SINGLELINE));
    ::SelectObject(dc.GetSafeHdc(), before);
    return {room.right, room.bottom};
}

// What a control keeps for its border, box and arrow, at the dialog's resolution.
struct Margins
{
    int x = 0;
    int y = 0;
};

int Scale(HWND control, int pixels)
{
    CClientDC dc(CWnd::FromHandle(control));
    return ::MulDiv(pixels, dc.GetDeviceCaps(LOGPIXELSX), 96);
}

Margins GetButtonMargins(HWND button, LONG kind)
{
    switch (kind) {
    case BS_PUSHBUTTON:
    case BS_DEFPUSHBUTTON: return {Scale(button, 8), Scale(button, 4)};
    case BS_GROUPBOX: return {Scale(button, 16), 0};
    default: return {Scale(button, 17), 0};  // the box and the gap behind it
    }
}

class Faults
{
public:
    void Find(HWND dialog)
    {
        const std::vector<HWND> controls = GetControls(dialog);
        for (const HWND control : controls) {
            CheckPlace(dialog, control);
            CheckText(control);
            for (const HWND other : controls) {
                CheckOverlap(control, other);
            }
            if (IsDialog(control)) {
                Find(control);
            }
        }
    }

    std::vector<std::string> found;

private:
    void CheckPlace(HWND dialog, HWND control)
    {
        RECT inside{};
        ::GetClientRect(dialog, &inside);
        RECT place{};
        ::GetWindowRect(control, &place);
        ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
        RECT both{};
        if (!::IntersectRect(&both, &inside, &place) || !::EqualRect(&both, &place)) {
            found.push_back(Describe(control) + " reaches out of its dialog");
        }
    }
    // Each pair once.
    void CheckOverlap(HWND control, HWND other)
    {
        RECT first{};
        RECT second{};
        RECT both{};
        ::GetWindowRect(control, &first);
        ::GetWindowRect(other, &second);
        if (control < other && !IsFrame(control) && !IsFrame(other) &&
            ::IntersectRect(&both, &first, &second)) {
            found.push_back(Describe(control) + " lies over " + Describe(other));
        }
    }
    void CheckText(HWND control)
    {
        const std::wstring kind = ClassOf(control);
        if (kind == L"Static") {
            CheckStatic(control);
        } else if (kind == L"Button") {
            CheckButton(control);
        } else if (kind == L"ComboBox") {
            CheckItems(control);
        }
    }
    // Closed, the box shows any one of its lines.
    void CheckItems(HWND combo)
    {
        COMBOBOXINFO info{};
        info.cbSize = sizeof info;
        ::GetComboBoxInfo(combo, &info);
        const int width = info.rcItem.right - info.rcItem.left - Scale(combo, 2);
        const auto count = static_cast<WPARAM>(::SendMessageW(combo, CB_GETCOUNT, 0, 0));
        for (WPARAM i = 0; i < count; ++i) {
            std::wstring text(
                static_cast<std::size_t>(::SendMessageW(combo, CB_GETLBTEXTLEN, i, 0)), L'\0');
            ::SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
            const int needed = MeasureText(combo, text, 0, DT_NOPREFIX).cx;
            if (needed > width) {
                std::ostringstream words;
                words << Describe(combo) << " clips its line " << i << ": it needs " << needed
                      << " and has " << width;
                found.push_back(words.str());
            }
        }
    }
    void CheckStatic(HWND control)
    {
        const LONG kind = GetKind(control, SS_TYPEMASK);
        const UINT flags = GetKind(control, SS_NOPREFIX) != 0 ? DT_NOPREFIX : 0;
        if (kind > SS_RIGHT && kind != SS_SIMPLE && kind != SS_LEFTNOWORDWRAP) {
            return;  // no text
        }
        const bool wraps = kind <= SS_RIGHT && GetKind(control, SS_CENTERIMAGE) == 0;
        CheckRoom(control, {}, wraps, flags);
    }
    void CheckButton(HWND control)
    {
        const LONG kind = GetKind(control, BS_TYPEMASK);
        if (kind == BS_GROUPBOX) {
            const SIZE needed = MeasureText(control, TextOf(control), 0, 0);
            RECT room{};
            ::GetClientRect(control, &room);
            if (needed.cx + GetButtonMargins(control, kind).x > room.right) {
                found.push_back(Describe(control) + " is clipped");
            }
            return;
        }
        CheckRoom(control, GetButtonMargins(control, kind), GetKind(control, BS_MULTILINE) != 0, 0);
    }
    void CheckRoom(HWND control, Margins margins, bool wraps, UINT flags)
    {
        RECT room{};
        ::GetClientRect(control, &room);
        const int width = room.right - margins.x;
        const int height = room.bottom - margins.y;
        const SIZE needed = MeasureText(control, TextOf(control), wraps ? width : 0, flags);
        if (needed.cx > width || needed.cy > height) {
            std::ostringstream words;
            words << Describe(control) << " is clipped: it needs " << needed.cx << " x "
                  << needed.cy << " and has " << width << " x " << height;
            found.push_back(words.str());
        }
    }
};

// All that Tab is to come to: of a group of radio buttons the one that is chosen, or the first.
std::set<HWND> GetTabStops(HWND dialog)
{
    std::set<HWND> stops;
    for (const HWND control : GetControls(dialog)) {
        if (IsDialog(control)) {
            stops.merge(GetTabStops(control));
        } else if (::IsWindowEnabled(control) && GetKind(control, WS_TABSTOP) != 0) {
            stops.insert(control);
        }
    }
    return stops;
}

// A list of a combo box and its like belong to the control that has them.
HWND GetFocusedControl(const std::set<HWND>& stops)
{
    HWND focus = ::GetFocus();
    while (focus && stops.count(focus) == 0 && (::GetWindowLongW(focus, GWL_STYLE) & WS_CHILD)) {
        focus = ::GetParent(focus);
    }
    return focus;
}

void CheckTabs(HWND dialog, std::vector<std::string>& found)
{
    const std::set<HWND> stops = GetTabStops(dialog);
    if (stops.empty()) {
        return;
    }
    for (const bool isBack : {false, true}) {
        std::set<HWND> missed = stops;
        ::SetFocus(*stops.begin());
        for (std::size_t i = 0; i <= stops.size(); ++i) {
            missed.erase(GetFocusedControl(stops));
            if (isBack) {
                ::keybd_event(VK_SHIFT, 0, 0, 0);
            }
            TypeKey(VK_TAB);
            if (isBack) {
                ::keybd_event(VK_SHIFT, 0, KEYEVENTF_KEYUP, 0);
                PumpMessages();
            }
        }
        for (const HWND control : missed) {
            found.push_back(Describe(control) + " is not reached by Tab");
        }
    }
}

void CollectMnemonics(HWND dialog, std::map<wchar_t, HWND>& letters,
                      std::vector<std::string>& found)
{
    for (const HWND control : GetControls(dialog)) {
        if (IsDialog(control)) {
            CollectMnemonics(control, letters, found);
            continue;
        }
        const bool isStatic = ClassOf(control) == L"Static";
        if (ClassOf(control) == L"Edit" || (isStatic && GetKind(control, SS_NOPREFIX) != 0)) {
            continue;
        }
        const std::wstring text = TextOf(control);
        const std::size_t mark = text.find(L'&');
        if (mark == std::wstring::npos || mark + 1 >= text.size() || text[mark + 1] == L'&') {
            continue;
        }
        const auto letter = static_cast<wchar_t>(std::towlower(text[mark + 1]));
        const auto [place, isNew] = letters.emplace(letter, control);
        if (!isNew) {
            found.push_back(Describe(control) + " has a mnemonic that is another's");
        }
    }
}

BOOL CALLBACK AddTemplate(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR ids)
{
    if (IS_INTRESOURCE(name)) {
        reinterpret_cast<std::vector<int>*>(ids)->push_back(
            static_cast<int>(reinterpret_cast<ULONG_PTR>(name)));
    }
    return TRUE;
}

}  // namespace

std::vector<int> FindDialogTemplates(HMODULE module)
{
    std::vector<int> ids;
    ::EnumResourceNamesW(module, RT_DIALOG, &AddTemplate, reinterpret_cast<LONG_PTR>(&ids));
    return ids;
}

TemplateDialog::TemplateDialog(HMODULE module, int id, Wording wording)
{
    const Bytes layout = LoadTemplate(module, id, wording);
    const Bytes around = MakeEmptyTemplate();
    const bool isChild = IsChild(layout);
    if ((isChild && !top.CreateIndirect(AsTemplate(around))) ||
        !dialog.CreateIndirect(AsTemplate(layout), isChild ? &top : nullptr)) {
        throw std::runtime_error("the dialog could not be made");
    }
    dialog.ShowWindow(SW_SHOW);
    GetTop().ShowWindow(SW_SHOW);
    Activate(GetTop());
}

TemplateDialog::~TemplateDialog()
{
    dialog.DestroyWindow();
    if (top.GetSafeHwnd()) {
        top.DestroyWindow();
    }
    PumpMessages();
}

std::vector<std::string> FindLayoutFaults(HWND dialog)
{
    Faults faults;
    faults.Find(dialog);
    return faults.found;
}

std::vector<std::string> FindKeyboardFaults(HWND dialog, const std::wstring& taken)
{
    std::vector<std::string> found;
    CheckTabs(dialog, found);
    std::map<wchar_t, HWND> letters;
    for (const wchar_t letter : taken) {
        letters.emplace(static_cast<wchar_t>(std::towlower(letter)), nullptr);
    }
    CollectMnemonics(dialog, letters, found);
    return found;
}
