#include "controls/YListSavedWidthsCtrl.h"

#include "controls/IListCtrlColumnWidthSink.h"

IMPLEMENT_DYNAMIC(YListSavedWidthsCtrl, YListCtrl)

YListSavedWidthsCtrl::YListSavedWidthsCtrl(const YUnicodeString& name,
                                           IListCtrlColumnWidthSink* sink)
    : widthSink(sink), widthName(name)
{
    extraExtendedStyles |= LVS_EX_LABELTIP | LVS_EX_FULLROWSELECT;
}

YListSavedWidthsCtrl::~YListSavedWidthsCtrl() = default;

void YListSavedWidthsCtrl::InitializeName(const YUnicodeString& name,
                                          IListCtrlColumnWidthSink* sink)
{
    widthName = name;
    widthSink = sink;
}

void YListSavedWidthsCtrl::GetSavedColumnWidths(std::vector<int>& widths)
{
    if (widthSink) {
        widthSink->GetColumnWidths(widthName, widths);
    }
}

void YListSavedWidthsCtrl::SaveColumnWidths(const std::vector<int>& widths)
{
    if (widthSink) {
        widthSink->SetColumnWidths(widthName, widths);
    }
}
