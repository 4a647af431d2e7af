// ColumnWidths.h: the widths of the columns of the program's lists, kept in its settings.
#pragma once

#include <YProfileData.h>
#include <controls/IListCtrlColumnWidthSink.h>

#include <map>

// Each list's widths are one text, "120 80", under the list's name. User-interface thread.
class ColumnWidths : public IListCtrlColumnWidthSink
{
public:
    void GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths) override;
    void SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths) override;

    void Load(const YProfileKey& parent);
    bool IsModified() const { return modified; }
    bool Save(const YProfileKey& parent, YReportMessageParams& error);  // false: error says why

private:
    std::map<YUnicodeString, YUnicodeString> texts;
    bool modified = false;
};
