// CWnd's side of accessibility: the base operations answer as the system does.
#include "WindowAccessibility.h"

namespace {

// The system may ask the window, which may end meanwhile: its object lives as long as the call.
template <class... Parameters>
HRESULT AskStandard(WindowAccessibility* accessibility,
                    HRESULT (STDMETHODCALLTYPE IAccessible::*question)(Parameters...),
                    Parameters... arguments)
{
    if (accessibility == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    const auto standard = accessibility->GetStandard();
    return standard ? (standard.get()->*question)(arguments...) : CO_E_OBJNOTCONNECTED;
}

}  // namespace

void CWnd::EnableActiveAccessibility()
{
    if (!accessibility) {
        accessibility = std::make_unique<WindowAccessibility>(*this);
    }
}

LRESULT CWnd::OnGetObject(WPARAM wParam, LPARAM lParam)
{
    const bool isAsked = accessibility && static_cast<LONG>(lParam) == OBJID_CLIENT;
    const LRESULT answer = isAsked ? accessibility->HandOut(wParam) : 0;
    return answer != 0 ? answer : Default();
}

HRESULT CWnd::get_accParent(IDispatch** ppdispParent)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accParent, ppdispParent);
}

HRESULT CWnd::get_accChildCount(long* pcountChildren)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accChildCount, pcountChildren);
}

HRESULT CWnd::get_accChild(VARIANT varChild, IDispatch** ppdispChild)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accChild, varChild, ppdispChild);
}

HRESULT CWnd::get_accName(VARIANT varChild, BSTR* pszName)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accName, varChild, pszName);
}

HRESULT CWnd::get_accValue(VARIANT varChild, BSTR* pszValue)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accValue, varChild, pszValue);
}

HRESULT CWnd::get_accDescription(VARIANT varChild, BSTR* pszDescription)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accDescription, varChild,
                       pszDescription);
}

HRESULT CWnd::get_accRole(VARIANT varChild, VARIANT* pvarRole)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accRole, varChild, pvarRole);
}

HRESULT CWnd::get_accState(VARIANT varChild, VARIANT* pvarState)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accState, varChild, pvarState);
}

HRESULT CWnd::get_accHelp(VARIANT varChild, BSTR* pszHelp)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accHelp, varChild, pszHelp);
}

HRESULT CWnd::get_accHelpTopic(BSTR* pszHelpFile, VARIANT varChild, long* pidTopic)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accHelpTopic, pszHelpFile, varChild,
                       pidTopic);
}

HRESULT CWnd::get_accKeyboardShortcut(VARIANT varChild, BSTR* pszKeyboardShortcut)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accKeyboardShortcut, varChild,
                       pszKeyboardShortcut);
}

HRESULT CWnd::get_accFocus(VARIANT* pvarChild)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accFocus, pvarChild);
}

HRESULT CWnd::get_accSelection(VARIANT* pvarChildren)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accSelection, pvarChildren);
}

HRESULT CWnd::get_accDefaultAction(VARIANT varChild, BSTR* pszDefaultAction)
{
    return AskStandard(accessibility.get(), &IAccessible::get_accDefaultAction, varChild,
                       pszDefaultAction);
}

HRESULT CWnd::accSelect(long flagsSelect, VARIANT varChild)
{
    return AskStandard(accessibility.get(), &IAccessible::accSelect, flagsSelect, varChild);
}

HRESULT CWnd::accLocation(long* pxLeft, long* pyTop, long* pcxWidth, long* pcyHeight,
                          VARIANT varChild)
{
    return AskStandard(accessibility.get(), &IAccessible::accLocation, pxLeft, pyTop, pcxWidth,
                       pcyHeight, varChild);
}

HRESULT CWnd::accNavigate(long navDir, VARIANT varStart, VARIANT* pvarEndUpAt)
{
    return AskStandard(accessibility.get(), &IAccessible::accNavigate, navDir, varStart,
                       pvarEndUpAt);
}

HRESULT CWnd::accHitTest(long xLeft, long yTop, VARIANT* pvarChild)
{
    return AskStandard(accessibility.get(), &IAccessible::accHitTest, xLeft, yTop, pvarChild);
}

HRESULT CWnd::accDoDefaultAction(VARIANT varChild)
{
    return AskStandard(accessibility.get(), &IAccessible::accDoDefaultAction, varChild);
}

HRESULT CWnd::put_accName(VARIANT varChild, BSTR szNewName)
{
    return AskStandard(accessibility.get(), &IAccessible::put_accName, varChild, szNewName);
}

HRESULT CWnd::put_accValue(VARIANT varChild, BSTR szNewValue)
{
    return AskStandard(accessibility.get(), &IAccessible::put_accValue, varChild, szNewValue);
}
