#include "YHostName.h"

#include "YMessageBox.h"
#include "YMessages.h"
#include "YReportMessageParams.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::wstring_view deviceNames[] = {
    L"CON",  L"PRN",  L"AUX",  L"NUL",  L"COM1", L"COM2", L"COM3",   L"COM4",
    L"COM5", L"COM6", L"COM7", L"COM8", L"COM9", L"LPT1", L"LPT2",   L"LPT3",
    L"LPT4", L"LPT5", L"LPT6", L"LPT7", L"LPT8", L"LPT9", L"CLOCK$",
};

// In upper case as file names compare: the user's language has no say.
bool IsSameName(std::wstring_view left, std::wstring_view right)
{
    return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                  static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

// A device name is one with anything behind a dot, too: the system opens the device all the same.
bool IsDeviceName(std::wstring_view name)
{
    const std::wstring_view first = name.substr(0, name.find(L'.'));
    return std::ranges::any_of(
        deviceNames, [first](std::wstring_view device) { return IsSameName(first, device); });
}

}  // namespace

void YDDV_ValidateHostName(CDataExchange* dataExchange, int controlId,
                           const YUnicodeString& hostName)
{
    if (!dataExchange->m_bSaveAndValidate || !IsDeviceName(hostName)) {
        return;
    }
    dataExchange->PrepareEditCtrl(controlId);
    {
        YReportMessageParams message(MSG_RESERVED_HOST_NAME);
        message.AddInsert(hostName.c_str());
        ::YMessageBox(&message, MB_OK);
    }
    dataExchange->Fail();
}
