// ConsoleBar.h: the toolbar: where to go, and what to look for.
#pragma once

#include "AddressSource.h"

#include <BCGCBProInc.h>
#include <YUnknownPointer.h>
#include <autocomplete/IAutoCompleteSink.h>

#include <string>
#include <vector>

class YLineEdit;

// Sends its frame the command ID_ADDRESS when an address is accepted; ID_SEARCH and, with Shift,
// ID_SEARCH_PREVIOUS for Return in the search field, EN_CHANGE for what is typed there; ID_BAR_LEAVE
// when the focus is to go back to the view. The address has the width that the rest leaves.
class ConsoleBar : public CBCGPToolBar, private IAutoCompleteSink
{
public:
    bool CreateIn(CWnd* frame);

    std::wstring GetAddress() const;  // what stands there
    void SetAddress(const std::wstring& address);
    void OfferAddresses(std::vector<std::wstring> addresses);  // the likeliest first
    std::wstring GetSearchText() const;

    void FocusAddress();
    void FocusSearch();
    bool HasFocus() const;  // one of its fields

    void AdjustLayout() override;

private:
    class Field;
    class SearchField;

    bool OnAutoCompleteAccept(const wchar_t* text, bool fromList, bool altDown, bool ctrlDown,
                              bool shiftDown, YAutoCompleteBase* source) override;
    int LayOut(int addressShare, int searchShare);
    void Focus(YLineEdit* edit);

    YUnknownPointer<AddressSource> source = YUnknownPointer<AddressSource>::Make();
    Field* address = nullptr;  // the base's
    Field* search = nullptr;  // the base's
};
