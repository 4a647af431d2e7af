#include "ConsoleText.h"

#include "resource.h"

#include <YMessageBox.h>
#include <YReportMessageParams.h>
#include <afxwin.h>

#include <map>

LANGID GetOwnLanguage(LANGID language)
{
    return PRIMARYLANGID(language) == LANG_FRENCH ? MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH)
                                                  : MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
}

// Systems differ in which of the two decides about resources; messages have a choice of their own.
void UseLanguage(LANGID language)
{
    ::SetThreadUILanguage(language);
    ::SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
    YSetMessageLanguage(language);
}

// Kept: the status bar asks for the same few at every turn of idle work.
const std::wstring& LoadText(UINT id)
{
    static std::map<UINT, std::wstring> texts;
    const auto [text, isNew] = texts.try_emplace(id);
    if (isNew) {
        wchar_t loaded[256] = L"";
        ::LoadStringW(::AfxGetResourceHandle(), id, loaded, static_cast<int>(std::size(loaded)));
        text->second = loaded;
    }
    return text->second;
}

std::wstring FormatNumber(ULONGLONG number)
{
    const std::wstring& separator = LoadText(IDS_THOUSANDS);
    std::wstring text = std::to_wstring(number);
    for (std::size_t i = text.size(); i > 3; i -= 3) {
        text.insert(i - 3, separator);
    }
    return text;
}

std::wstring FormatCount(ULONGLONG count, UINT oneId, UINT manyId)
{
    return count == 1 ? LoadText(oneId) : FormatText(manyId, FormatNumber(count).c_str());
}

std::wstring GetErrorWords(DWORD error)
{
    return YGetErrorText(error);
}

void ShowError(CWnd* parent, DWORD error)
{
    const YReportMessageParams message(error);
    YMessageBox(parent, &message);
}
