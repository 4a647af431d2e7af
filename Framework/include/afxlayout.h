// afxlayout.h: children that follow the size of their window.
#pragma once

#include "afxwin.h"

#include <vector>

// Places the children of a window anew when its client area changes size, each from where it stood
// when it was added, so that sizing to and fro moves nothing. Ratios are percent of the change.
// Made by CWnd::EnableDynamicLayout; user-interface thread.
class COMMONFRAMEWORK_API CMFCDynamicLayout : public CObject
{
    DECLARE_DYNAMIC(CMFCDynamicLayout)

    struct MoveSettings
    {
        int m_nXRatio = 0;
        int m_nYRatio = 0;
    };
    struct SizeSettings
    {
        int m_nXRatio = 0;
        int m_nYRatio = 0;
    };

    static MoveSettings MoveNone() { return {}; }
    static MoveSettings MoveHorizontal(int nRatio = 100) { return {nRatio, 0}; }
    static MoveSettings MoveVertical(int nRatio = 100) { return {0, nRatio}; }
    static MoveSettings MoveHorizontalAndVertical(int nXRatio = 100, int nYRatio = 100)
    {
        return {nXRatio, nYRatio};
    }
    static SizeSettings SizeNone() { return {}; }
    static SizeSettings SizeHorizontal(int nRatio = 100) { return {nRatio, 0}; }
    static SizeSettings SizeVertical(int nRatio = 100) { return {0, nRatio}; }
    static SizeSettings SizeHorizontalAndVertical(int nXRatio = 100, int nYRatio = 100)
    {
        return {nXRatio, nYRatio};
    }

    BOOL Create(CWnd* pHostWnd);  // borrowed; outlives the layout
    CWnd* GetHostWnd() const { return host; }

    // FALSE: no child of the host, or added already. A child that is destroyed later drops out.
    BOOL AddItem(HWND hwnd, MoveSettings moveSettings, SizeSettings sizeSettings);
    BOOL AddItem(UINT nID, MoveSettings moveSettings, SizeSettings sizeSettings);
    BOOL HasItem(HWND hwnd) const;
    BOOL IsEmpty() const { return items.empty(); }
    void Adjust();  // places the children for the size that the host has now

    // Of the client area, pixels: below it nothing gets smaller, and the user can make a top-level
    // window no smaller.
    void SetMinSize(const CSize& size) { minSize = size; }
    CSize GetMinSize() const { return minSize; }

private:
    struct Item
    {
        HWND window;
        MoveSettings move;
        SizeSettings size;
        CRect place;  // in the host's client area, when that had
        CSize hostSize;
    };

    CSize GetHostSize() const;
    bool IsChildOfHost(HWND window) const;

    CWnd* host = nullptr;
    CSize minSize{0, 0};
    std::vector<Item> items;
};
