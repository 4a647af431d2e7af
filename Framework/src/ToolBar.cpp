#include "BCGPToolBar.h"

#include "Dpi.h"
#include "ToolBarList.h"

#include <algorithm>

IMPLEMENT_DYNAMIC(CBCGPControlBar, CControlBar)
IMPLEMENT_DYNAMIC(CBCGPToolBar, CBCGPControlBar)

BEGIN_MESSAGE_MAP(CBCGPToolBar, CBCGPControlBar)
    ON_WM_DESTROY()
    ON_WM_SIZE()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_CTLCOLOR()
    ON_WM_MOUSEMOVE()
    ON_MESSAGE(WM_MOUSELEAVE, &CBCGPToolBar::OnMouseLeave)
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_CAPTURECHANGED()
    ON_MESSAGE(WM_GETFONT, &CBCGPToolBar::OnGetFont)
END_MESSAGE_MAP()

namespace {

// At 96 DPI.
constexpr int barMargin = 3;
constexpr int textPadding = 4;  // above and below a button's text

// A button as an update handler sees it.
class ButtonUpdate : public CCmdUI
{
public:
    explicit ButtonUpdate(CBCGPToolBar& toolBar) : bar(toolBar) { m_pOther = &toolBar; }

    void Enable(BOOL bOn) override
    {
        m_bEnableChanged = TRUE;
        ChangeStyle(TBBS_DISABLED, bOn ? 0U : static_cast<UINT>(TBBS_DISABLED));
    }
    void SetCheck(int nCheck) override
    {
        ChangeStyle(TBBS_CHECKED, nCheck != 0 ? static_cast<UINT>(TBBS_CHECKED) : 0U);
    }
    void SetRadio(BOOL bOn) override { SetCheck(bOn ? 1 : 0); }
    void SetText(LPCTSTR) override {}  // buttons keep their own

private:
    void ChangeStyle(UINT remove, UINT add)
    {
        const int index = static_cast<int>(m_nIndex);
        bar.SetButtonStyle(index, (bar.GetButtonStyle(index) & ~remove) | add);
    }

    CBCGPToolBar& bar;
};

// The font of the user's menus.
bool CreateMenuFont(CFont& font)
{
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    return font.CreateFontIndirect(&metrics.lfMenuFont) != FALSE;
}

}  // namespace

std::vector<CBCGPToolBar*>& ToolBarList::GetAll()
{
    static std::vector<CBCGPToolBar*> all;
    return all;
}

CBCGPToolBar::CBCGPToolBar()
{
    ToolBarList::GetAll().push_back(this);
}

CBCGPToolBar::~CBCGPToolBar()
{
    std::erase(ToolBarList::GetAll(), this);
    buttons.clear();  // while there is a window for those with windows
    DestroyWindow();
}

BOOL CBCGPToolBar::Create(CWnd* pParentWnd, DWORD dwStyle, UINT nID)
{
    m_dwStyle = dwStyle & (CBRS_ALIGN_TOP | CBRS_ALIGN_BOTTOM);
    if (font.GetSafeHandle() == nullptr && !CreateMenuFont(font)) {
        return FALSE;
    }
    const LPCTSTR windowClass =
        ::AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorW(nullptr, IDC_ARROW));
    const DWORD style = (dwStyle & 0xFFFF0000) | WS_CHILD | WS_CLIPCHILDREN;
    return CWnd::Create(windowClass, nullptr, style, CRect(0, 0, 0, 0), pParentWnd, nID);
}

int CBCGPToolBar::InsertButton(const CBCGPToolbarButton& button, int iInsertAt)
{
    CObject* const object = button.GetRuntimeClass()->CreateObject();
    auto* const copy = STATIC_DOWNCAST(CBCGPToolbarButton, object);
    copy->CopyFrom(button);
    return InsertButton(copy, iInsertAt);
}

int CBCGPToolBar::InsertButton(CBCGPToolbarButton* pButton, int iInsertAt)
{
    Button button(pButton);
    const int index = iInsertAt == -1 ? GetCount() : iInsertAt;
    if (index < 0 || index > GetCount()) {
        return -1;
    }
    buttons.insert(buttons.begin() + index, std::move(button));
    if (m_hWnd != nullptr) {
        pButton->OnChangeParentWnd(this);
        AdjustLayout();
    }
    return index;
}

int CBCGPToolBar::InsertSeparator(int iInsertAt)
{
    CBCGPToolbarButton separator;
    separator.m_nStyle = TBBS_SEPARATOR;
    return InsertButton(separator, iInsertAt);
}

int CBCGPToolBar::ReplaceButton(UINT uiCmd, const CBCGPToolbarButton& button, BOOL bAll)
{
    int replaced = 0;
    for (int i = CommandToIndex(uiCmd); i >= 0; i = CommandToIndex(uiCmd, i + 1)) {
        RemoveButton(i);
        InsertButton(button, i);
        ++replaced;
        if (!bAll) {
            break;
        }
    }
    return replaced;
}

BOOL CBCGPToolBar::RemoveButton(int iIndex)
{
    if (!HasButton(iIndex)) {
        return FALSE;
    }
    ShowStates(-1, -1);
    armedButton = -1;
    GetButton(iIndex)->OnChangeParentWnd(nullptr);
    buttons.erase(buttons.begin() + iIndex);
    AdjustLayout();
    return TRUE;
}

void CBCGPToolBar::RemoveAllButtons()
{
    while (RemoveButton(GetCount() - 1)) {}
}

CBCGPToolbarButton* CBCGPToolBar::GetButton(int iIndex) const
{
    return HasButton(iIndex) ? buttons[static_cast<std::size_t>(iIndex)].get() : nullptr;
}

int CBCGPToolBar::CommandToIndex(UINT uiCmd, int iIndexFrom) const
{
    for (int i = std::max(iIndexFrom, 0); i < GetCount(); ++i) {
        if (GetButton(i)->m_nID == uiCmd) {
            return i;
        }
    }
    return -1;
}

int CBCGPToolBar::HitTest(CPoint point)
{
    for (int i = 0; i < GetCount(); ++i) {
        if (GetButton(i)->Rect().PtInRect(point)) {
            return i;
        }
    }
    return -1;
}

UINT CBCGPToolBar::GetButtonStyle(int nIndex) const
{
    return HasButton(nIndex) ? GetButton(nIndex)->m_nStyle : 0;
}

void CBCGPToolBar::SetButtonStyle(int nIndex, UINT nStyle)
{
    // Idle updates set the same again and again.
    if (HasButton(nIndex) && GetButton(nIndex)->m_nStyle != nStyle) {
        GetButton(nIndex)->SetStyle(nStyle);
        InvalidateButton(nIndex);
    }
}

void CBCGPToolBar::AdjustLayout()
{
    if (m_hWnd != nullptr) {
        MeasureButtons();
        Invalidate();
    }
}

CSize CBCGPToolBar::CalcFixedLayout(BOOL bStretch, BOOL)
{
    const CSize row = MeasureButtons();
    return CSize(bStretch ? 32767 : static_cast<int>(row.cx), row.cy);
}

// Places them in a row, too, in the middle of its height.
CSize CBCGPToolBar::MeasureButtons()
{
    const int margin = ScaleToScreen(barMargin);
    CClientDC dc(this);
    CFont* const previous = dc.SelectObject(&font);
    const CSize standard = GetDefaultSize(dc);
    int left = margin;
    for (const Button& button : buttons) {
        const CSize size = button->OnCalculateSize(&dc, standard, TRUE);
        const int top = margin + (standard.cy - size.cy) / 2;
        const CRect place(CPoint(left, top), size);
        if (button->Rect() != place) {
            button->SetRect(place);
        }
        left = place.right;
    }
    dc.SelectObject(previous);
    return CSize(left + margin, standard.cy + 2 * margin);
}

// Square, as high as a text with its frame.
CSize CBCGPToolBar::GetDefaultSize(CDC& dc) const
{
    TEXTMETRIC metrics{};
    dc.GetTextMetrics(&metrics);
    const int height = metrics.tmHeight + 2 * ScaleToScreen(textPadding);
    return CSize(height, height);
}

void CBCGPToolBar::OnUpdateCmdUI(CFrameWnd* pTarget, BOOL bDisableIfNoHndler)
{
    ButtonUpdate update(*this);
    update.m_nIndexMax = static_cast<UINT>(GetCount());
    for (; update.m_nIndex < update.m_nIndexMax; ++update.m_nIndex) {
        update.m_nID = GetButton(static_cast<int>(update.m_nIndex))->m_nID;
        update.DoUpdate(pTarget, bDisableIfNoHndler);
        update.m_nIndexMax = static_cast<UINT>(GetCount());  // a handler may change it
    }
}

// First the window itself, then its button, then whoever owns the bar.
BOOL CBCGPToolBar::OnCommand(WPARAM wParam, LPARAM lParam)
{
    if (CBCGPControlBar::OnCommand(wParam, lParam)) {
        return TRUE;
    }
    CBCGPToolbarButton* const button = FindByWindow(reinterpret_cast<HWND>(lParam));
    if (button != nullptr && button->NotifyCommand(HIWORD(wParam))) {
        return TRUE;
    }
    CWnd* const owner = GetParentFrame();
    if (owner != nullptr) {
        owner->SendMessage(WM_COMMAND, wParam, lParam);
    }
    return owner != nullptr;
}

CBCGPToolbarButton* CBCGPToolBar::FindByWindow(HWND window) const
{
    const auto found = std::find_if(buttons.begin(), buttons.end(), [=](const Button& button) {
        return window != nullptr && button->GetHwnd() == window;
    });
    return found == buttons.end() ? nullptr : found->get();
}

// The buttons outlive the window; what they host does not.
void CBCGPToolBar::OnDestroy()
{
    for (const Button& button : buttons) {
        button->OnChangeParentWnd(nullptr);
    }
    CBCGPControlBar::OnDestroy();
}

void CBCGPToolBar::OnSize(UINT nType, int cx, int cy)
{
    CBCGPControlBar::OnSize(nType, cx, cy);
    AdjustLayout();
}

HBRUSH CBCGPToolBar::OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor)
{
    CBCGPToolbarButton* const button = FindByWindow(pWnd->GetSafeHwnd());
    const HBRUSH brush = button != nullptr ? button->OnCtlColor(pDC, nCtlColor) : nullptr;
    return brush != nullptr ? brush : CBCGPControlBar::OnCtlColor(pDC, pWnd, nCtlColor);
}

LRESULT CBCGPToolBar::OnGetFont(WPARAM, LPARAM)
{
    return reinterpret_cast<LRESULT>(font.GetSafeHandle());
}
