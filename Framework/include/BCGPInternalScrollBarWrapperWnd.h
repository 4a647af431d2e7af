// BCGPInternalScrollBarWrapperWnd.h: windows whose own scroll bars are drawn once a paint. Part of
// BCGCBProInc.h.
#pragma once

#include "afxwin.h"

// The scroll positions of a window's own two bars, kept beside the system's: a value that does not
// change costs nothing, and of many changes between two paints one is drawn. The system always
// knows the newest values; only the drawing waits for the next WM_NCPAINT.
class COMMONFRAMEWORK_API CBCGPInternalScrollBars
{
public:
    // Both: TRUE for success. window may have no handle (yet, or no longer): FALSE.
    BOOL SetInfo(CWnd& window, int bar, const SCROLLINFO& info, BOOL redraw);
    BOOL GetInfo(const CWnd& window, int bar, SCROLLINFO& info, UINT mask) const;

    // To be told every message of the window, before and after it is handled. The window may be
    // gone after that, and this object with it: hence the handle.
    void BeforeMessage(UINT message);
    static void AfterMessage(HWND handle, const CWnd* window, CBCGPInternalScrollBars& bars,
                             UINT message);

private:
    struct Bar
    {
        bool isKnown = false;  // the values are those of the window
        int minimum = 0;
        int maximum = 0;
        UINT page = 0;
        int position = 0;  // inside [minimum, maximum - page + 1]

        bool IsNeeded() const;
        void Clamp();
        void Merge(const SCROLLINFO& info);
        SCROLLINFO GetAll() const;
        bool operator==(const Bar&) const = default;
    };

    const Bar& Read(HWND window, int bar) const;
    void MarkDirty(HWND window, int bar);
    void DrawDirty(HWND window);

    // By SB_HORZ, SB_VERT. Dirty: told to the system but not drawn; its place is invalidated.
    mutable Bar bars[2];
    bool isDirty[2] = {};
};

// Gives BASE's window such bars, by operations of the same names.
template <class BASE>
class TBCGPInternalScrollBarWrapperWnd : public BASE
{
public:
    using BASE::BASE;

    BOOL SetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, BOOL bRedraw = TRUE)
    {
        return scrollBars.SetInfo(*this, nBar, *lpScrollInfo, bRedraw);
    }

    BOOL GetScrollInfo(int nBar, LPSCROLLINFO lpScrollInfo, UINT nMask = SIF_ALL)
    {
        return scrollBars.GetInfo(*this, nBar, *lpScrollInfo, nMask);
    }

    int SetScrollPos(int nBar, int nPos, BOOL bRedraw = TRUE)
    {
        const int previous = GetScrollPos(nBar);
        SCROLLINFO info{};
        info.fMask = SIF_POS;
        info.nPos = nPos;
        SetScrollInfo(nBar, &info, bRedraw);
        return previous;
    }

    int GetScrollPos(int nBar) const
    {
        SCROLLINFO info{};
        scrollBars.GetInfo(*this, nBar, info, SIF_POS);
        return info.nPos;
    }

    void SetScrollRange(int nBar, int nMinPos, int nMaxPos, BOOL bRedraw = TRUE)
    {
        SCROLLINFO info{};
        info.fMask = SIF_RANGE;
        info.nMin = nMinPos;
        info.nMax = nMaxPos;
        SetScrollInfo(nBar, &info, bRedraw);
    }

    void GetScrollRange(int nBar, LPINT lpMinPos, LPINT lpMaxPos) const
    {
        SCROLLINFO info{};
        scrollBars.GetInfo(*this, nBar, info, SIF_RANGE);
        *lpMinPos = info.nMin;
        *lpMaxPos = info.nMax;
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        const HWND handle = this->m_hWnd;
        scrollBars.BeforeMessage(message);
        const LRESULT result = BASE::WindowProc(message, wParam, lParam);
        CBCGPInternalScrollBars::AfterMessage(handle, this, scrollBars, message);
        return result;
    }

private:
    CBCGPInternalScrollBars scrollBars;
};
