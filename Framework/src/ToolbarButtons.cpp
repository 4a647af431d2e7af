// What toolbars hold: buttons, and edits in the place of buttons.
#include "BCGPEdit.h"
#include "BCGPToolbarEditBoxButton.h"
#include "Dpi.h"
#include "ToolBarList.h"

#include <algorithm>

IMPLEMENT_SERIAL(CBCGPToolbarButton, CObject, 1)
IMPLEMENT_SERIAL(CBCGPToolbarEditBoxButton, CBCGPToolbarButton, 1)

namespace {

// At 96 DPI.
constexpr int separatorWidth = 8;
constexpr int textMargin = 6;
constexpr int editWidth = 120;
constexpr int editMargin = 2;  // between the edit and its neighbours

void DrawSeparator(CDC& dc, const CRect& rect)
{
    const int middle = (rect.left + rect.right) / 2;
    const int inset = ScaleToScreen(2);
    CRect line(middle - 1, rect.top + inset, middle + 1, rect.bottom - inset);
    dc.DrawEdge(&line, EDGE_ETCHED, BF_LEFT);
}

}  // namespace

CBCGPToolbarButton::CBCGPToolbarButton(UINT uiID, int iImage, LPCTSTR lpszText, BOOL bUserButton,
                                       BOOL bLocked)
    : m_nID(uiID),
      m_strText(lpszText),
      m_bUserButton(bUserButton),
      m_iImage(iImage),
      m_bLocked(bLocked)
{}

void CBCGPToolbarButton::CopyFrom(const CBCGPToolbarButton& src)
{
    m_nID = src.m_nID;
    m_nStyle = src.m_nStyle;
    m_strText = src.m_strText;
    m_bUserButton = src.m_bUserButton;
    m_iImage = src.m_iImage;
    m_bLocked = src.m_bLocked;
}

void CBCGPToolbarButton::SetRect(const CRect& rect)
{
    m_rect = rect;
    OnMove();
}

SIZE CBCGPToolbarButton::OnCalculateSize(CDC* pDC, const CSize& sizeDefault, BOOL)
{
    if ((m_nStyle & TBBS_SEPARATOR) != 0) {
        return CSize(ScaleToScreen(separatorWidth), sizeDefault.cy);
    }
    const int text = pDC->GetTextExtent(m_strText).cx + 2 * ScaleToScreen(textMargin);
    return CSize(std::max(text, static_cast<int>(sizeDefault.cx)), sizeDefault.cy);
}

void CBCGPToolbarButton::OnDraw(CDC* pDC, const CRect& rect, CBCGPToolBarImages*, BOOL, BOOL,
                                BOOL bHighlight, BOOL bDrawBorder, BOOL bGrayDisabledButtons)
{
    if ((m_nStyle & TBBS_SEPARATOR) != 0) {
        DrawSeparator(*pDC, rect);
        return;
    }
    const bool isDown = (m_nStyle & (TBBS_PRESSED | TBBS_CHECKED)) != 0;
    const bool isOff = bGrayDisabledButtons && (m_nStyle & TBBS_DISABLED) != 0;
    CRect content = rect;
    if (bDrawBorder && (isDown || bHighlight)) {
        pDC->DrawEdge(&content, isDown ? BDR_SUNKENOUTER : BDR_RAISEDINNER, BF_RECT | BF_ADJUST);
    }
    if (isDown) {
        content.OffsetRect(1, 1);
    }
    pDC->SetBkMode(TRANSPARENT);
    pDC->SetTextColor(::GetSysColor(isOff ? COLOR_GRAYTEXT : COLOR_BTNTEXT));
    pDC->DrawText(m_strText, &content, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

CBCGPToolbarEditBoxButton::CBCGPToolbarEditBoxButton(UINT uiID, int iImage, DWORD dwStyle,
                                                     int iWidth)
    : CBCGPToolbarButton(uiID, iImage), m_dwStyle(dwStyle), m_iWidth(iWidth)
{}

CBCGPToolbarEditBoxButton::~CBCGPToolbarEditBoxButton()
{
    DestroyEdit();
}

void CBCGPToolbarEditBoxButton::DestroyEdit()
{
    CBCGPEdit* const leaving = m_pWndEdit;
    m_pWndEdit = nullptr;
    delete leaving;  // and its window
}

CString CBCGPToolbarEditBoxButton::GetContentsAll(UINT uiCmd)
{
    for (CBCGPToolBar* const bar : ToolBarList::GetAll()) {
        CBCGPToolbarButton* const button = bar->GetButton(bar->CommandToIndex(uiCmd));
        if (const auto* const found = DYNAMIC_DOWNCAST(CBCGPToolbarEditBoxButton, button)) {
            return found->m_strContents;
        }
    }
    return CString();
}

void CBCGPToolbarEditBoxButton::SetContents(const CString& sContents)
{
    m_strContents = sContents;
    if (m_pWndEdit != nullptr) {
        m_pWndEdit->SetWindowText(sContents);
    }
}

CBCGPEdit* CBCGPToolbarEditBoxButton::CreateEdit(CWnd* pWndParent, const CRect& rect)
{
    auto edit = std::make_unique<CBCGPEdit>();
    return edit->Create(m_dwStyle | WS_CHILD, rect, pWndParent, m_nID) ? edit.release() : nullptr;
}

void CBCGPToolbarEditBoxButton::CopyFrom(const CBCGPToolbarButton& src)
{
    CBCGPToolbarButton::CopyFrom(src);
    const auto& other = static_cast<const CBCGPToolbarEditBoxButton&>(src);
    m_strContents = other.m_strContents;
    m_dwStyle = other.m_dwStyle;
    m_iWidth = other.m_iWidth;
}

void CBCGPToolbarEditBoxButton::SetStyle(UINT nStyle)
{
    CBCGPToolbarButton::SetStyle(nStyle);
    const BOOL enables = (nStyle & TBBS_DISABLED) == 0;
    if (m_pWndEdit != nullptr && m_pWndEdit->IsWindowEnabled() != enables) {
        m_pWndEdit->EnableWindow(enables);
    }
}

SIZE CBCGPToolbarEditBoxButton::OnCalculateSize(CDC*, const CSize& sizeDefault, BOOL)
{
    const int width = m_iWidth > 0 ? m_iWidth : ScaleToScreen(editWidth);
    return CSize(width + 2 * ScaleToScreen(editMargin), sizeDefault.cy);
}

// The edit draws itself; round it goes a field with a frame.
void CBCGPToolbarEditBoxButton::OnDraw(CDC* pDC, const CRect&, CBCGPToolBarImages*, BOOL, BOOL,
                                       BOOL, BOOL, BOOL)
{
    if (m_pWndEdit == nullptr) {
        return;
    }
    CRect field = GetField();
    pDC->FillSolidRect(&field,
                       ::GetSysColor(m_pWndEdit->IsWindowEnabled() ? COLOR_WINDOW : COLOR_BTNFACE));
    field.InflateRect(1, 1);
    CBrush brush;
    brush.CreateSysColorBrush(COLOR_BTNSHADOW);
    pDC->FrameRect(&field, &brush);
}

CRect CBCGPToolbarEditBoxButton::GetField() const
{
    CRect field = m_rect;
    const int margin = ScaleToScreen(editMargin);
    field.DeflateRect(margin, margin);
    return field;
}

void CBCGPToolbarEditBoxButton::OnChangeParentWnd(CWnd* pWndParent)
{
    CBCGPToolbarButton::OnChangeParentWnd(pWndParent);
    DestroyEdit();
    if (pWndParent == nullptr) {
        return;
    }
    m_pWndEdit = CreateEdit(pWndParent, m_rect);
    if (m_pWndEdit != nullptr) {
        m_pWndEdit->SetFont(pWndParent->GetFont());
        if (!m_strContents.IsEmpty()) {  // nothing would be reported as a change, too
            m_pWndEdit->SetWindowText(m_strContents);
        }
        OnMove();
    }
}

// An edit puts its text at its top: it begins where the text is in the middle of the field.
void CBCGPToolbarEditBoxButton::OnMove()
{
    if (m_pWndEdit == nullptr) {
        return;
    }
    CClientDC dc(m_pWndEdit);
    CFont* const previous = dc.SelectObject(m_pWndEdit->GetFont());
    TEXTMETRIC metrics{};
    dc.GetTextMetrics(&metrics);
    dc.SelectObject(previous);
    CRect place = GetField();
    constexpr int ownMargin = 1;  // of the edit, above its text
    place.top += std::max(0, (place.Height() - static_cast<int>(metrics.tmHeight)) / 2 - ownMargin);
    m_pWndEdit->MoveWindow(&place);
}

HWND CBCGPToolbarEditBoxButton::GetHwnd()
{
    return m_pWndEdit->GetSafeHwnd();
}

BOOL CBCGPToolbarEditBoxButton::NotifyCommand(int iNotifyCode)
{
    if (iNotifyCode != EN_UPDATE || m_pWndEdit == nullptr) {
        return FALSE;
    }
    m_pWndEdit->GetWindowText(m_strContents);
    return TRUE;
}
