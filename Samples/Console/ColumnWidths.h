// ColumnWidths.h: how wide the user has made the columns of lists, kept in the profile.
#pragma once

#include <controls/IListCtrlColumnWidthSink.h>

#include <map>
#include <string>
#include <vector>

class YProfileKey;
class YReportMessageParams;

// By the name of the list, in the key "Columns": "96 120 80", the resolution in dots per inch and the
// widths. On a screen of another resolution the columns come back in proportion.
// User-interface thread.
class ColumnWidths : public IListCtrlColumnWidthSink
{
public:
    virtual ~ColumnWidths() = default;

    void GetColumnWidths(const YUnicodeString& name, std::vector<int>& widths) override;
    void SetColumnWidths(const YUnicodeString& name, const std::vector<int>& widths) override;

    void Load(const YProfileKey& parent);
    bool IsModified() const { return modified; }
    // False: error says why.
    bool Save(const YProfileKey& parent, YReportMessageParams& error);

private:
    std::map<std::wstring, std::wstring> texts;  // as stored, by the lists' names
    bool modified = false;
};
