// YListSavedWidthsCtrl.h: a list that keeps its column widths between runs.
#pragma once

#include "controls/YListCtrl.h"

class IListCtrlColumnWidthSink;

// Whole rows are selected, and cut texts shown beside the pointer.
class COMMONUI_API YListSavedWidthsCtrl : public YListCtrl
{
    DECLARE_DYNAMIC(YListSavedWidthsCtrl)

    // name: what the sink knows the widths by. sink: borrowed; null: nothing is kept.
    YListSavedWidthsCtrl(const YUnicodeString& name, IListCtrlColumnWidthSink* sink);
    ~YListSavedWidthsCtrl() override;
    void InitializeName(const YUnicodeString& name, IListCtrlColumnWidthSink* sink);  // before Init

    void GetSavedColumnWidths(std::vector<int>& widths) override;
    void SaveColumnWidths(const std::vector<int>& widths) override;

private:
    IListCtrlColumnWidthSink* widthSink;
    YUnicodeString widthName;
};
