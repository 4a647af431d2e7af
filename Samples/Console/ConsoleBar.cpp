#include "ConsoleBar.h"

#include "ConsoleText.h"
#include "resource.h"

#include <YUnicodeString.h>
#include <autocomplete/YAutoComplete.h>
#include <autocomplete/YLineEdit.h>
#include <autocomplete/YToolbarEditBoxButton.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

// At 96 DPI.
constexpr int leastWidth = 80;  // of a field
constexpr int searchWidth = 180;  // at most

int Scale(int pixels)
{
    const CClientDC screen(nullptr);
    return ::MulDiv(pixels, screen.GetDeviceCaps(LOGPIXELSX), 96);
}

YLineEdit* GetLineEdit(const CBCGPToolbarEditBoxButton& button)
{
    return DYNAMIC_DOWNCAST(YLineEdit, button.GetEditBox());
}

void SendCommand(const CWnd& window, UINT command)
{
    window.GetParentFrame()->SendMessage(WM_COMMAND, command);
}

// The keys of the field; what they do may end the window.
class SearchEdit : public YLineEdit
{
public:
    BOOL PreTranslateMessage(MSG* message) override
    {
        if (message->message != WM_KEYDOWN || message->hwnd != m_hWnd) {
            return YLineEdit::PreTranslateMessage(message);
        }
        if (message->wParam == VK_RETURN) {
            const bool isBackwards = ::GetKeyState(VK_SHIFT) < 0;
            SendCommand(*this, isBackwards ? ID_SEARCH_PREVIOUS : ID_SEARCH);
            return TRUE;
        }
        if (message->wParam == VK_ESCAPE) {
            if (GetText().IsEmpty()) {
                SendCommand(*this, ID_BAR_LEAVE);
            } else {
                Clear();
            }
            return TRUE;
        }
        return YLineEdit::PreTranslateMessage(message);
    }
};

}  // namespace

// As wide as its bar says.
class ConsoleBar::Field : public YToolbarEditBoxButton
{
public:
    explicit Field(UINT id) : YToolbarEditBoxButton(id, -1, ES_AUTOHSCROLL, 0) {}

    void SetWidth(int pixels) { width = pixels; }
    SIZE OnCalculateSize(CDC*, const CSize& standard, BOOL) override
    {
        return CSize(width, standard.cy);
    }

private:
    int width = 0;
};

// With the magnifier, which becomes a cross.
class ConsoleBar::SearchField : public Field
{
public:
    SearchField() : Field(ID_SEARCH) {}

    YLineEdit* CreateEdit(CWnd* parent, const CRect& place) override
    {
        auto edit = std::make_unique<SearchEdit>();
        return edit->Create(parent, place, m_nID, LoadText(IDS_SEARCH_HINT).c_str(),
                            YLineEdit::SearchButton)
                   ? edit.release()
                   : nullptr;
    }
};

bool ConsoleBar::CreateIn(CWnd* frame)
{
    if (!Create(frame)) {
        return false;
    }
    InsertButton(CBCGPToolbarButton(ID_FILE_OPEN, -1, LoadText(IDS_BAR_OPEN).c_str()));
    InsertButton(CBCGPToolbarButton(ID_FILE_CONNECT, -1, LoadText(IDS_BAR_CONNECT).c_str()));
    InsertSeparator();
    auto addressField = std::make_unique<Field>(ID_ADDRESS);
    addressField->SetPlaceholderText(LoadText(IDS_ADDRESS_HINT).c_str());
    address = addressField.get();
    InsertButton(addressField.release());
    InsertSeparator();
    search = new SearchField;  // the bar's, as the others
    InsertButton(search);
    AdjustLayout();
    const YLineEdit* const edit = GetLineEdit(*address);
    return edit && GetLineEdit(*search) &&
           YAutoComplete::CreateAndAttach(edit->GetSafeHwnd(), source.Get(), this, true);
}

// What the narrowest fields leave goes to the search first, as far as it has use for it.
void ConsoleBar::AdjustLayout()
{
    if (search) {
        const int rest = std::max(0, LayOut(0, 0));
        const int searchShare = std::min(rest, Scale(searchWidth - leastWidth));
        LayOut(rest - searchShare, searchShare);
    }
    CBCGPToolBar::AdjustLayout();
}

// The pixels that are left at the right.
int ConsoleBar::LayOut(int addressShare, int searchShare)
{
    address->SetWidth(Scale(leastWidth) + addressShare);
    search->SetWidth(Scale(leastWidth) + searchShare);
    CRect client;
    GetClientRect(&client);
    return client.right - CalcFixedLayout(FALSE, TRUE).cx;
}

std::wstring ConsoleBar::GetAddress() const
{
    return std::wstring(GetLineEdit(*address)->GetText());
}

void ConsoleBar::SetAddress(const std::wstring& text)
{
    GetLineEdit(*address)->SetWindowText(text.c_str());
}

void ConsoleBar::OfferAddresses(std::vector<std::wstring> addresses)
{
    source->SetRecent(std::move(addresses));
}

std::wstring ConsoleBar::GetSearchText() const
{
    return std::wstring(GetLineEdit(*search)->GetText());
}

void ConsoleBar::FocusAddress()
{
    Focus(GetLineEdit(*address));
}

void ConsoleBar::FocusSearch()
{
    Focus(GetLineEdit(*search));
}

// With its text selected, so that typing replaces it.
void ConsoleBar::Focus(YLineEdit* edit)
{
    edit->SetFocus();
    if (!edit->IsPlaceholderText()) {
        edit->SetSel(0, -1);
    }
}

bool ConsoleBar::HasFocus() const
{
    return ::IsChild(m_hWnd, ::GetFocus()) != FALSE;
}

// The chosen row stays: what stands in the field is what is gone to. Posted, because the frame may
// open a window or show a box.
bool ConsoleBar::OnAutoCompleteAccept(const wchar_t* text, bool fromList, bool, bool, bool,
                                      YAutoCompleteBase*)
{
    if (fromList) {
        SetAddress(text);
    }
    if (!GetAddress().empty()) {
        GetParentFrame()->PostMessage(WM_COMMAND, ID_ADDRESS);
    }
    return true;
}
