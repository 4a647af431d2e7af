#include "ColumnWidths.h"

#include <YReportMessageParams.h>

#include <cwchar>
#include <string>

namespace {

constexpr wchar_t keyName[] = L"Columns";
constexpr long widest = 10'000;  // pixels; more is no width of a column

}  // namespace

void ColumnWidths::GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths)
{
    const auto found = texts.find(name);
    const wchar_t* text = found == texts.end() ? L"" : found->second.c_str();
    wchar_t* end = nullptr;
    for (long width = std::wcstol(text, &end, 10); end != text && width >= 0 && width <= widest;
         width = std::wcstol(text, &end, 10)) {
        widths.push_back(static_cast<int>(width));
        text = end;
    }
}

void ColumnWidths::SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths)
{
    std::wstring text;
    for (const int width : widths) {
        text += (text.empty() ? L"" : L" ") + std::to_wstring(width);
    }
    texts[name] = YUnicodeString(text);
    modified = true;
}

void ColumnWidths::Load(const YProfileKey& parent)
{
    texts.clear();
    const YProfileKey key(parent, keyName, YProfileKey::openExisting);
    for (const YProfileValueName& value : key.GetValueNames()) {
        YUnicodeString text;
        if (key.ReadString(value.name.c_str(), text)) {
            texts[value.name] = text;
        }
    }
    modified = false;
}

bool ColumnWidths::Save(const YProfileKey& parent, YReportMessageParams& error)
{
    if (!modified) {
        return true;
    }
    const YProfileKey key(parent, keyName);
    for (const auto& [name, text] : texts) {
        if (!key.WriteString(name.c_str(), text)) {
            error = key.GetLastResult();
            return false;
        }
    }
    modified = false;
    return true;
}
