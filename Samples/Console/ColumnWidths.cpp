#include "ColumnWidths.h"

#include <YProfileKey.h>
#include <afxwin.h>

#include <cwchar>

namespace {

constexpr wchar_t keyName[] = L"Columns";
constexpr long widest = 10'000;  // pixels
constexpr long finest = 1'000;  // dots per inch

int GetResolution()
{
    return CClientDC(nullptr).GetDeviceCaps(LOGPIXELSX);
}

// Empty: the text makes no sense.
std::vector<long> ParseNumbers(const std::wstring& text)
{
    std::vector<long> numbers;
    for (const wchar_t* rest = text.c_str(); *rest;) {
        wchar_t* end = nullptr;
        const long number = std::wcstol(rest, &end, 10);
        if (end == rest || number < 0 || number > widest) {
            return {};
        }
        numbers.push_back(number);
        rest = end;
    }
    return numbers;
}

}  // namespace

void ColumnWidths::GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths)
{
    const auto found = texts.find(std::wstring(std::wstring_view(name)));
    const std::vector<long> numbers =
        found == texts.end() ? std::vector<long>() : ParseNumbers(found->second);
    if (numbers.empty() || numbers[0] < 1 || numbers[0] > finest) {
        return;
    }
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        widths.push_back(::MulDiv(numbers[i], GetResolution(), numbers[0]));
    }
}

void ColumnWidths::SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths)
{
    std::wstring text = std::to_wstring(GetResolution());
    for (const int width : widths) {
        text += L' ' + std::to_wstring(width);
    }
    std::wstring& stored = texts[std::wstring(std::wstring_view(name))];
    modified = modified || stored != text;
    stored = std::move(text);
}

void ColumnWidths::Load(const YProfileKey& parent)
{
    texts.clear();
    modified = false;
    const YProfileKey key(parent, keyName, YProfileKey::openExisting);
    if (!key.IsOpen()) {
        return;
    }
    for (const YProfileValueName& value : key.GetValueNames()) {
        YUnicodeString text;
        if (key.ReadString(value.name.c_str(), text)) {
            texts[std::wstring(std::wstring_view(value.name))] = std::wstring_view(text);
        }
    }
}

bool ColumnWidths::Save(const YProfileKey& parent, YReportMessageParams& error)
{
    if (!modified) {
        return true;
    }
    const YProfileKey key(parent, keyName);
    for (const auto& [name, text] : texts) {
        if (!key.WriteString(name.c_str(), YUnicodeString(text))) {
            error = key.GetLastResult();
            return false;
        }
    }
    modified = false;
    return true;
}
