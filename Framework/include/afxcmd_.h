// afxcmd_.h: message maps and the objects that they belong to. Part of afxwin.h.
#pragma once

#include "afx.h"

#include <shellapi.h>

#include <bit>

class CCmdTarget;
class CCmdUI;
class CDC;
class CMenu;
class CScrollBar;
class CWinThread;
class CWnd;

// A handler's address without its signature; the signature is kept beside it as a number.
typedef void (AFX_MSG_CALL CCmdTarget::*AFX_PMSG)();

// Every signature that a handler may have: name, owner, result, parameters. Where two messages
// fill the same parameters from different places they have two names.
#define AFX_SIGNATURES(SIGNATURE)                                        \
    SIGNATURE(AfxSig_Command, CCmdTarget, void, ())                      \
    SIGNATURE(AfxSig_CommandId, CCmdTarget, void, (UINT))                \
    SIGNATURE(AfxSig_CommandUi, CCmdTarget, void, (CCmdUI*))             \
    SIGNATURE(AfxSig_Notify, CCmdTarget, void, (NMHDR*, LRESULT*))       \
    SIGNATURE(AfxSig_NotifyEx, CCmdTarget, BOOL, (NMHDR*, LRESULT*))     \
    SIGNATURE(AfxSig_ThreadMessage, CWinThread, void, (WPARAM, LPARAM))  \
    SIGNATURE(AfxSig_Message, CWnd, LRESULT, (WPARAM, LPARAM))           \
    SIGNATURE(AfxSig_Plain, CWnd, void, ())                              \
    SIGNATURE(AfxSig_Create, CWnd, int, (CREATESTRUCT*))                 \
    SIGNATURE(AfxSig_NcCreate, CWnd, BOOL, (CREATESTRUCT*))              \
    SIGNATURE(AfxSig_Size, CWnd, void, (UINT, int, int))                 \
    SIGNATURE(AfxSig_Move, CWnd, void, (int, int))                       \
    SIGNATURE(AfxSig_EraseBackground, CWnd, BOOL, (CDC*))                \
    SIGNATURE(AfxSig_SetCursor, CWnd, BOOL, (CWnd*, UINT, UINT))         \
    SIGNATURE(AfxSig_Scroll, CWnd, void, (UINT, UINT, CScrollBar*))      \
    SIGNATURE(AfxSig_ScrollReflect, CWnd, void, (UINT, UINT))            \
    SIGNATURE(AfxSig_MouseWheel, CWnd, BOOL, (UINT, short, CPoint))      \
    SIGNATURE(AfxSig_Mouse, CWnd, void, (UINT, CPoint))                  \
    SIGNATURE(AfxSig_MouseActivate, CWnd, int, (CWnd*, UINT, UINT))      \
    SIGNATURE(AfxSig_NcHitTest, CWnd, LRESULT, (CPoint))                 \
    SIGNATURE(AfxSig_Key, CWnd, void, (UINT, UINT, UINT))                \
    SIGNATURE(AfxSig_Timer, CWnd, void, (UINT_PTR))                      \
    SIGNATURE(AfxSig_WindowInWParam, CWnd, void, (CWnd*))                \
    SIGNATURE(AfxSig_WindowInLParam, CWnd, void, (CWnd*))                \
    SIGNATURE(AfxSig_ShowWindow, CWnd, void, (BOOL, UINT))               \
    SIGNATURE(AfxSig_Enable, CWnd, void, (BOOL))                         \
    SIGNATURE(AfxSig_Activate, CWnd, void, (UINT, CWnd*, BOOL))          \
    SIGNATURE(AfxSig_ContextMenu, CWnd, void, (CWnd*, CPoint))           \
    SIGNATURE(AfxSig_InitMenuPopup, CWnd, void, (CMenu*, UINT, BOOL))    \
    SIGNATURE(AfxSig_MenuSelect, CWnd, void, (UINT, UINT, HMENU))        \
    SIGNATURE(AfxSig_DropFiles, CWnd, void, (HDROP))                     \
    SIGNATURE(AfxSig_NcCalcSize, CWnd, void, (BOOL, NCCALCSIZE_PARAMS*)) \
    SIGNATURE(AfxSig_WindowPos, CWnd, void, (WINDOWPOS*))                \
    SIGNATURE(AfxSig_SettingChange, CWnd, void, (UINT, LPCTSTR))         \
    SIGNATURE(AfxSig_ControlColor, CWnd, HBRUSH, (CDC*, CWnd*, UINT))    \
    SIGNATURE(AfxSig_ControlColorReflect, CWnd, HBRUSH, (CDC*, UINT))    \
    SIGNATURE(AfxSig_PrintClient, CWnd, LRESULT, (CDC*, UINT))           \
    SIGNATURE(AfxSig_DrawItem, CWnd, void, (int, DRAWITEMSTRUCT*))       \
    SIGNATURE(AfxSig_MinMaxInfo, CWnd, void, (MINMAXINFO*))

#define AFX_NAME_OF_SIGNATURE(name, owner, result, parameters) name,
enum AfxSig : UINT_PTR { AfxSig_End, AFX_SIGNATURES(AFX_NAME_OF_SIGNATURE) };
#undef AFX_NAME_OF_SIGNATURE

// The member pointer that a signature stands for.
template <AfxSig signature>
struct AfxHandler;

#define AFX_TYPE_OF_SIGNATURE(name, owner, result, parameters) \
    template <>                                                \
    struct AfxHandler<name>                                    \
    {                                                          \
        typedef result(AFX_MSG_CALL owner::*Type) parameters;  \
    };
AFX_SIGNATURES(AFX_TYPE_OF_SIGNATURE)
#undef AFX_TYPE_OF_SIGNATURE

// Not a cast: the compiler warns of casts between member pointer types, in the host's code too.
// The bits come back in the same way, as the type that they were taken from.
template <class Handler>
AFX_PMSG AfxEraseSignature(Handler handler)
{
    return std::bit_cast<AFX_PMSG>(handler);
}

struct AFX_MSGMAP_ENTRY
{
    UINT nMessage;  // 0xC000: registered at run time, see nSig
    UINT nCode;  // of a control's notification; CN_COMMAND, CN_UPDATE_COMMAND_UI
    UINT nID;  // first id of a control or command
    UINT nLastID;
    UINT_PTR nSig;  // an AfxSig; nMessage 0xC000: the address of the variable with the number
    AFX_PMSG pfn;
};

struct AFX_MSGMAP
{
    const AFX_MSGMAP*(PASCAL* pfnGetBaseMap)();  // null: the root
    const AFX_MSGMAP_ENTRY* lpEntries;  // the last one has nSig AfxSig_End
};

#define DECLARE_MESSAGE_MAP()                            \
protected:                                               \
    static const AFX_MSGMAP* PASCAL GetThisMessageMap(); \
    const AFX_MSGMAP* GetMessageMap() const override;

// Codes that OnCmdMsg takes beside those of the controls.
#define CN_COMMAND 0
#define CN_UPDATE_COMMAND_UI (static_cast<UINT>(-1))

// OnCmdMsg fills it in instead of calling the handler.
struct AFX_CMDHANDLERINFO
{
    CCmdTarget* pTarget;
    AFX_PMSG pmf;
};

// What OnCmdMsg's pExtra points to for WM_NOTIFY.
struct AFX_NOTIFY
{
    LRESULT* pResult;
    NMHDR* pNMHDR;
};

// An object with a message map. Also the base of objects that count their references: the count
// starts at 1, the last release calls OnFinalRelease, which deletes.
class COMMONFRAMEWORK_API CCmdTarget : public CObject
{
    DECLARE_DYNAMIC(CCmdTarget)

public:
    CCmdTarget() = default;

    // Looks for a handler of (id, code) and calls it; info: only says who would be called.
    // False: nobody here handles it. Overrides add further objects to the route.
    virtual BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo);
    virtual void OnFinalRelease();

    DWORD InternalAddRef();
    DWORD InternalRelease();

protected:
    static const AFX_MSGMAP* PASCAL GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

private:
    LONG references = 1;
};

// One menu item or status pane that is being brought up to date. Passed to the handlers of
// ON_UPDATE_COMMAND_UI; derived classes stand for other things than menu items.
class COMMONFRAMEWORK_API CCmdUI
{
public:
    CCmdUI() = default;
    virtual ~CCmdUI() = default;
    CCmdUI(const CCmdUI&) = delete;
    CCmdUI& operator=(const CCmdUI&) = delete;

    virtual void Enable(BOOL bOn = TRUE);
    virtual void SetCheck(int nCheck = 1);  // 0 off, 1 on, 2 undetermined
    virtual void SetRadio(BOOL bOn = TRUE);
    virtual void SetText(LPCTSTR lpszText);

    void ContinueRouting() { m_bContinueRouting = TRUE; }
    // bDisableIfNoHndler: an item that no update handler touched is enabled only if the command
    // itself has a handler. True: somebody handled the update.
    BOOL DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler);

    UINT m_nID = 0;
    UINT m_nIndex = 0;  // of the item or pane
    CMenu* m_pMenu = nullptr;
    CMenu* m_pSubMenu = nullptr;  // the item opens it; m_nID is then its first item
    CWnd* m_pOther = nullptr;  // the window that shows it, if no menu does
    UINT m_nIndexMax = 0;

    BOOL m_bEnableChanged = FALSE;  // by the handler
    BOOL m_bContinueRouting = FALSE;
};
