// YCheckListBox.h: rows of text with check boxes in columns.
#pragma once

#include "CommonUiApi.h"
#include "YArray.h"
#include "YUnicodeString.h"

#include <afxwin.h>

#include <string>

// A grid of options: each row has a text and a box in every check column, which lie where other
// controls of the dialog are, mostly the captions of the columns. The text takes the widest space
// that the columns leave. The mouse is its only input; screen readers find a part for every box,
// row by row, named by the row and the caption. Rows and columns count from 0, a state above 0 is
// checked. In radio style, which it has at first, a row has one checked box at most, but still
// check boxes. User-interface thread.
class COMMONUI_API YCheckListBox : public CWnd
{
    DECLARE_DYNAMIC(YCheckListBox)

    struct Item
    {
        YUnicodeString text;
        YArray<int> states;  // one for each check column that there was when the row was added
    };

    YCheckListBox();
    ~YCheckListBox() override;

    // Takes the place, the id and the order of a control of the dialog, which is destroyed, at the
    // height of whole rows: best as high as these and 4 pixels. onChange, which may be null, is
    // called after the user has toggled a box and may destroy the control. FALSE: the dialog has no
    // such control, or the window failed.
    BOOL Create(unsigned long style, CWnd* dialog, unsigned controlId, void (*onChange)());
    using CWnd::Create;

    void AddCheckColumn(int screenX);  // of the boxes' left edge; columns are added before rows
    int AddItem(const wchar_t* text);  // its row; null is an empty text
    // Both throw YArray<Item>::OutOfRange for a row and YArray<int>::OutOfRange for a column that
    // is not there.
    int GetCheckState(int row, int column);
    void SetCheckState(int row, int column, int state);  // the user's callback is not called

    int GetCheckColumnCount() const { return static_cast<int>(checkColumns.GetSize()); }
    int GetCheckWidth() const { return rowHeight - 2; }  // the side of a box, in pixels
    int GetCount() const { return static_cast<int>(rows.GetSize()); }
    void SetRadioStyle(bool on) { radioStyle = on; }  // for what is checked from now on
    void SetReadOnly(bool on);

    // To screen readers: a group of check boxes, each a part.
    HRESULT get_accChildCount(long* count) override;
    HRESULT get_accChild(VARIANT child, IDispatch** object) override;
    HRESULT get_accName(VARIANT child, BSTR* name) override;
    HRESULT get_accRole(VARIANT child, VARIANT* role) override;
    HRESULT get_accState(VARIANT child, VARIANT* state) override;
    HRESULT get_accDefaultAction(VARIANT child, BSTR* action) override;
    HRESULT accDoDefaultAction(VARIANT child) override;
    HRESULT accLocation(long* left, long* top, long* width, long* height, VARIANT child) override;
    HRESULT accHitTest(long x, long y, VARIANT* child) override;

protected:
    afx_msg int OnCreate(CREATESTRUCT* create);
    afx_msg void OnPaint();
    afx_msg BOOL OnEraseBkgnd(CDC* dc);
    afx_msg void OnLButtonUp(UINT flags, CPoint point);
    afx_msg void OnVScroll(UINT code, UINT position, CScrollBar* bar);
    DECLARE_MESSAGE_MAP()

private:
    struct Box
    {
        int row = -1;
        int column = -1;

        explicit operator bool() const { return row >= 0; }  // false: there is none
    };

    CFont* GetDialogFont() const;
    void FitToRows(int height);
    CRect GetRowRect(int row) const;
    void RepaintRow(int row);
    CRect GetBoxRect(const Box& box) const;
    bool IsRow(int row) const { return row >= 0 && row < GetCount(); }
    Box FindBox(CPoint point) const;
    void Toggle(const Box& box);

    void Draw(CDC& dc, const CRect& clip);
    void DrawRow(CDC& dc, int row, const CRect& textColumn);
    CRect FindTextColumn() const;

    void ScrollTo(int row);
    int GetTrackPosition(UINT position);

    // Screen readers: YCheckListBoxAccessibility.cpp
    bool IsBoxUnavailable() const { return readOnly || !IsWindowEnabled(); }
    Box ToBox(const VARIANT& child) const;
    long ToChild(const Box& box) const;
    std::wstring FindCaption(int column) const;
    void AnnounceState(const Box& box) const;

    void (*changeCallback)() = nullptr;
    YArray<Item> rows;
    YArray<int> checkColumns;  // left edges, in client coordinates
    int rowHeight = 0;  // pixels
    int visibleRows = 0;  // that the height was given for
    int topRow = 0;
    bool readOnly = false;
    bool radioStyle = true;
};
