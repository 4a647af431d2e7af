#include "afxext.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CStatusBar, CControlBar)

BEGIN_MESSAGE_MAP(CStatusBar, CControlBar)
    ON_WM_SIZE()
    ON_MESSAGE(WM_SETTEXT, &CStatusBar::OnSetText)
END_MESSAGE_MAP()

namespace {

// A pane as an update handler sees it: off shows no text, checked is popped out.
class PaneUpdate : public CCmdUI
{
public:
    explicit PaneUpdate(CStatusBar& statusBar) : bar(statusBar) { m_pOther = &statusBar; }

    void Enable(BOOL bOn) override
    {
        m_bEnableChanged = TRUE;
        ChangeStyle(SBPS_DISABLED, bOn ? 0U : SBPS_DISABLED);
    }
    void SetCheck(int nCheck) override
    {
        ChangeStyle(SBPS_POPOUT, nCheck != 0 ? static_cast<UINT>(SBPS_POPOUT) : 0U);
    }
    void SetRadio(BOOL bOn) override { SetCheck(bOn ? 1 : 0); }
    void SetText(LPCTSTR lpszText) override { bar.SetPaneText(Index(), lpszText); }

private:
    int Index() const { return static_cast<int>(m_nIndex); }
    void ChangeStyle(UINT remove, UINT add)
    {
        bar.SetPaneStyle(Index(), (bar.GetPaneStyle(Index()) & ~remove) | add);
    }

    CStatusBar& bar;
};

struct Borders
{
    int horizontal;
    int vertical;
    int between;
};

Borders GetBorders(const CWnd& bar)
{
    Borders borders{};
    bar.SendMessage(SB_GETBORDERS, 0, reinterpret_cast<LPARAM>(&borders));
    return borders;
}

constexpr int textMargin = 3;  // pixels left and right of a pane's text

}  // namespace

BOOL CStatusBar::Create(CWnd* pParentWnd, DWORD dwStyle, UINT nID)
{
    return CreateEx(pParentWnd, 0, dwStyle, nID);
}

BOOL CStatusBar::CreateEx(CWnd* pParentWnd, DWORD dwCtrlStyle, DWORD dwStyle, UINT nID)
{
    INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&classes);
    m_dwStyle = dwStyle & (CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM);
    DWORD style = (dwStyle & 0xFFFF0000) | dwCtrlStyle;
    // The frame lays the bar out; by itself it would do so once more.
    style |= CCS_NOPARENTALIGN | CCS_NOMOVEY | CCS_NODIVIDER | CCS_NORESIZE;
    if ((pParentWnd->GetStyle() & WS_THICKFRAME) != 0) {
        style |= SBARS_SIZEGRIP;
    }
    return CWnd::CreateEx(0, STATUSCLASSNAMEW, nullptr, style, CRect(0, 0, 0, 0), pParentWnd, nID);
}

BOOL CStatusBar::SetIndicators(const UINT* lpIDArray, int nIDCount)
{
    ASSERT(nIDCount >= 1);
    std::vector<Pane> next(static_cast<std::size_t>(nIDCount));
    for (std::size_t i = 0; lpIDArray != nullptr && i < next.size(); ++i) {
        Pane& pane = next[i];
        pane.id = lpIDArray[i];
        if (pane.id == ID_SEPARATOR) {
            continue;
        }
        if (!pane.text.LoadString(pane.id)) {
            return FALSE;
        }
        pane.width = MeasureText(pane.text);
    }
    next.front().style = SBPS_STRETCH | SBPS_NOBORDERS;
    panes = std::move(next);
    LayOutPanes();
    for (int i = 0; i < GetCount(); ++i) {
        ShowPaneText(i);
    }
    return TRUE;
}

int CStatusBar::CommandToIndex(UINT nIDFind) const
{
    const auto found = std::find_if(panes.begin(), panes.end(),
                                    [=](const Pane& pane) { return pane.id == nIDFind; });
    return found == panes.end() ? -1 : static_cast<int>(found - panes.begin());
}

UINT CStatusBar::GetItemID(int nIndex) const
{
    return PaneAt(nIndex).id;
}

void CStatusBar::GetItemRect(int nIndex, LPRECT lpRect) const
{
    if (!SendMessage(SB_GETRECT, static_cast<WPARAM>(nIndex), reinterpret_cast<LPARAM>(lpRect))) {
        ::SetRectEmpty(lpRect);
    }
}

CString CStatusBar::GetPaneText(int nIndex) const
{
    return PaneAt(nIndex).text;
}

void CStatusBar::GetPaneText(int nIndex, CString& rString) const
{
    rString = PaneAt(nIndex).text;
}

BOOL CStatusBar::SetPaneText(int nIndex, LPCTSTR lpszNewText, BOOL bUpdate)
{
    if (!HasPane(nIndex)) {
        return FALSE;
    }
    Pane& pane = PaneAt(nIndex);
    const CString text(lpszNewText);
    if (pane.text != text) {  // idle updates set the same again and again
        pane.text = text;
        if (bUpdate) {
            ShowPaneText(nIndex);
        }
    }
    return TRUE;
}

void CStatusBar::GetPaneInfo(int nIndex, UINT& nID, UINT& nStyle, int& cxWidth) const
{
    const Pane& pane = PaneAt(nIndex);
    nID = pane.id;
    nStyle = pane.style;
    cxWidth = pane.width;
}

void CStatusBar::SetPaneInfo(int nIndex, UINT nID, UINT nStyle, int cxWidth)
{
    Pane& pane = PaneAt(nIndex);
    pane.id = nID;
    SetPaneStyle(nIndex, nStyle);
    if (pane.width != cxWidth) {
        pane.width = cxWidth;
        LayOutPanes();
    }
}

UINT CStatusBar::GetPaneStyle(int nIndex) const
{
    return PaneAt(nIndex).style;
}

void CStatusBar::SetPaneStyle(int nIndex, UINT nStyle)
{
    Pane& pane = PaneAt(nIndex);
    const UINT changed = pane.style ^ nStyle;
    if (changed == 0) {
        return;
    }
    pane.style = nStyle;
    if ((changed & SBPS_STRETCH) != 0) {
        LayOutPanes();
    }
    ShowPaneText(nIndex);
}

CSize CStatusBar::CalcFixedLayout(BOOL bStretch, BOOL)
{
    CClientDC dc(this);
    CFont* const previous = dc.SelectObject(GetFont());
    TEXTMETRIC metrics{};
    dc.GetTextMetrics(&metrics);
    dc.SelectObject(previous);
    const int frame = 2 * (::GetSystemMetrics(SM_CYEDGE) + GetBorders(*this).vertical);
    return CSize(bStretch ? 32767 : 0, metrics.tmHeight + frame);
}

void CStatusBar::OnUpdateCmdUI(CFrameWnd* pTarget, BOOL)
{
    PaneUpdate pane(*this);
    pane.m_nIndexMax = static_cast<UINT>(GetCount());
    for (; pane.m_nIndex < pane.m_nIndexMax; ++pane.m_nIndex) {
        pane.m_nID = GetItemID(static_cast<int>(pane.m_nIndex));
        pane.DoUpdate(pTarget, FALSE);  // a pane without handler just shows its text
    }
}

void CStatusBar::OnSize(UINT nType, int cx, int cy)
{
    CControlBar::OnSize(nType, cx, cy);
    LayOutPanes();
}

// The bar's own text is that of its first pane.
LRESULT CStatusBar::OnSetText(WPARAM, LPARAM lParam)
{
    return SetPaneText(0, reinterpret_cast<LPCTSTR>(lParam));
}

int CStatusBar::MeasureText(const CString& text) const
{
    CClientDC dc(const_cast<CStatusBar*>(this));
    CFont* const previous = dc.SelectObject(GetFont());
    const int width = dc.GetTextExtent(text).cx;
    dc.SelectObject(previous);
    return width;
}

// Fixed panes have their width; the one that stretches shares nothing with them.
void CStatusBar::LayOutPanes()
{
    if (panes.empty() || m_hWnd == nullptr) {
        return;
    }
    CRect client;
    GetClientRect(&client);
    const bool hasGrip = (GetStyle() & SBARS_SIZEGRIP) != 0;
    int left = client.Width() - (hasGrip ? ::GetSystemMetrics(SM_CXVSCROLL) : 0);
    const int margins = 2 * (textMargin + GetBorders(*this).between);
    for (const Pane& pane : panes) {
        left -= (pane.style & SBPS_STRETCH) != 0 ? 0 : pane.width + margins;
    }
    std::vector<int> rightEdges;
    int edge = 0;
    for (const Pane& pane : panes) {
        const bool stretches = (pane.style & SBPS_STRETCH) != 0;
        edge += stretches ? std::max(left, 0) : pane.width + margins;
        rightEdges.push_back(edge);
    }
    SendMessage(SB_SETPARTS, rightEdges.size(), reinterpret_cast<LPARAM>(rightEdges.data()));
}

void CStatusBar::ShowPaneText(int index)
{
    const Pane& pane = PaneAt(index);
    const bool isOff = (pane.style & SBPS_DISABLED) != 0;
    const UINT drawing = pane.style & (SBPS_NOBORDERS | SBPS_POPOUT);
    SendMessage(SB_SETTEXTW, static_cast<WPARAM>(index) | drawing,
                reinterpret_cast<LPARAM>(isOff ? L"" : pane.text.GetString()));
}
