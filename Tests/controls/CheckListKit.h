// CheckListKit.h: a check list in a dialog, clicked, scrolled and read back.
#pragma once

#include "CheckListIds.h"
#include "support/ImportHook.h"
#include "support/Input.h"
#include "support/ScreenReader.h"

#include <controls/YCheckListBox.h>

#include <afxole.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

inline int changes = 0;  // told by the list
inline std::function<void()> atChange;

inline void OnChange()
{
    ++changes;
    if (atChange) {
        atChange();
    }
}

class CheckListTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { ASSERT_TRUE(AfxOleInit()); }

    void SetUp() override
    {
        changes = 0;
        atChange = nullptr;
        Open(IDD_CHECK_LIST);
    }
    void TearDown() override { Close(); }

    // The list stands where the columns of "Sign" and "Encrypt" are.
    void Open(UINT id)
    {
        ASSERT_TRUE(dialog.Create(id));
        dialog.ShowWindow(SW_SHOW);
        ASSERT_TRUE(Activate(dialog));
        ASSERT_TRUE(StandsStill(dialog));
    }
    void Close()
    {
        dialog.DestroyWindow();
        PumpMessages();
    }
    // A placeholder of that many pixels of height.
    void Make(int height)
    {
        CRect place;
        CWnd* const placeholder = dialog.GetDlgItem(IDC_PLACE);
        placeholder->GetWindowRect(&place);
        dialog.ScreenToClient(&place);
        placeholder->MoveWindow(place.left, place.top, place.Width(), height);
        ASSERT_TRUE(list.Create(WS_VISIBLE, &dialog, IDC_PLACE, &OnChange));
        PumpMessages();
    }
    void AddColumns()
    {
        for (const int id : {IDC_SIGN, IDC_ENCRYPT}) {
            CRect caption;
            dialog.GetDlgItem(id)->GetWindowRect(&caption);
            list.AddCheckColumn(caption.left);
            CPoint left(caption.TopLeft());
            list.ScreenToClient(&left);
            columns.push_back(left.x);
        }
    }
    void AddRows(int count)
    {
        for (int row = 0; row < count; ++row) {
            list.AddItem((L"Row " + std::to_wstring(row)).c_str());
        }
        list.UpdateWindow();
    }
    // Five rows are seen.
    void MakeWithRows(int count)
    {
        Make(5 * rowHeight + 4);
        AddColumns();
        AddRows(count);
    }

    // A row on the screen, from the top; the middle of a box.
    POINT InBox(int row, int column) const
    {
        const int half = list.GetCheckWidth() / 2;
        return {columns[static_cast<std::size_t>(column)] + half, row * rowHeight + half};
    }
    // A click on the bar, or a drag of its thumb. All of it is in the input queue before it begins:
    // the loop in which the system follows the bar runs no code of ours.
    void UseBar(POINT from, const POINT* to = nullptr)
    {
        MovePointer(list, from);
        std::vector<INPUT> inputs(to ? 3 : 2);
        for (INPUT& input : inputs) {
            input.type = INPUT_MOUSE;
        }
        inputs.front().mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        inputs.back().mi.dwFlags = MOUSEEVENTF_LEFTUP;
        if (to) {
            POINT end = *to;
            ::ClientToScreen(list, &end);
            inputs[1].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
            inputs[1].mi.dx = 65536 * end.x / ::GetSystemMetrics(SM_CXSCREEN);
            inputs[1].mi.dy = 65536 * end.y / ::GetSystemMetrics(SM_CYSCREEN);
        }
        ::SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
        PumpMessages();
    }
    void Click(int row, int column) { ClickLeft(list, InBox(row, column)); }
    std::vector<int> States(int row)
    {
        return {list.GetCheckState(row, 0), list.GetCheckState(row, 1)};
    }
    int GetTopRow()
    {
        CPoint corner(ScreenReader(list).Location(1).left, ScreenReader(list).Location(1).top);
        list.ScreenToClient(&corner);
        return -corner.y / rowHeight;
    }
    // Whether a box is painted as the system paints one in that state.
    bool IsPainted(int row, int column, UINT state)
    {
        const int side = list.GetCheckWidth();
        list.UpdateWindow();
        CClientDC dc(&list);
        CDC memory;
        CBitmap bitmap;
        memory.CreateCompatibleDC(&dc);
        bitmap.CreateCompatibleBitmap(&dc, side, side);
        CBitmap* const before = memory.SelectObject(&bitmap);
        CRect box(0, 0, side, side);
        memory.FillSolidRect(&box, ::GetSysColor(COLOR_WINDOW));
        memory.DrawFrameControl(&box, DFC_BUTTON, DFCS_BUTTONCHECK | state);
        bool isSame = true;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                isSame = isSame && memory.GetPixel(x, y) ==
                                       dc.GetPixel(columns[static_cast<std::size_t>(column)] + x,
                                                   row * rowHeight + y);
            }
        }
        memory.SelectObject(before);
        return isSame;
    }
    // Pixels of a row that are not of the background, from one x to another.
    int CountInk(int row, int from, int to)
    {
        list.UpdateWindow();
        CClientDC dc(&list);
        int count = 0;
        for (int y = row * rowHeight; y < (row + 1) * rowHeight; ++y) {
            for (int x = from; x < to; ++x) {
                count += dc.GetPixel(x, y) != ::GetSysColor(COLOR_WINDOW);
            }
        }
        return count;
    }
    int GetWidth() const
    {
        CRect client;
        list.GetClientRect(&client);
        return client.Width();
    }

    CDialog dialog;
    YCheckListBox list;
    std::vector<int> columns;  // left edges, client
    int rowHeight = 16;
};
