// afxmsg_.h: the message map macros. Every one checks the handler's signature when it is compiled:
// a handler with other parameters does not convert. Part of afxwin.h.
#pragma once

#include "afxcmd_.h"

// Each of these is half of a function, which no formatter can know.
// clang-format off
#define AFX_BEGIN_ENTRIES(theClass, baseClass)                                                     \
    {                                                                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY entries[] = {

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const { return GetThisMessageMap(); }              \
    const AFX_MSGMAP* PASCAL theClass::GetThisMessageMap()                                         \
    AFX_BEGIN_ENTRIES(theClass, baseClass)

#define BEGIN_TEMPLATE_MESSAGE_MAP(theClass, type_name, baseClass)                                 \
    template <typename type_name>                                                                  \
    const AFX_MSGMAP* theClass<type_name>::GetMessageMap() const { return GetThisMessageMap(); }   \
    template <typename type_name>                                                                  \
    const AFX_MSGMAP* PASCAL theClass<type_name>::GetThisMessageMap()                              \
    AFX_BEGIN_ENTRIES(theClass<type_name>, baseClass)

#define END_MESSAGE_MAP()                                                                          \
            {0, 0, 0, 0, AfxSig_End, nullptr}                                                      \
        };                                                                                         \
        static const AFX_MSGMAP map = {&TheBaseClass::GetThisMessageMap, &entries[0]};             \
        return &map;                                                                               \
    }
// clang-format on

#define AFX_ENTRY(message, code, first, last, signature, handler) \
    {message, code,      first,                                   \
     last,    signature, AfxEraseSignature(static_cast<AfxHandler<signature>::Type>(handler))},

#define AFX_WM(message, signature, function) \
    AFX_ENTRY(message, 0, 0, 0, signature, &ThisClass::function)

#define WM_REFLECT_BASE 0xBC00  // a notification that its parent hands back: message + this
#define WM_CTLCOLOR 0x0019  // stands for WM_CTLCOLORMSGBOX to WM_CTLCOLORSTATIC

// Windows
#define ON_WM_CREATE() AFX_WM(WM_CREATE, AfxSig_Create, OnCreate)
#define ON_WM_NCCREATE() AFX_WM(WM_NCCREATE, AfxSig_NcCreate, OnNcCreate)
#define ON_WM_DESTROY() AFX_WM(WM_DESTROY, AfxSig_Plain, OnDestroy)
#define ON_WM_NCDESTROY() AFX_WM(WM_NCDESTROY, AfxSig_Plain, OnNcDestroy)
#define ON_WM_CLOSE() AFX_WM(WM_CLOSE, AfxSig_Plain, OnClose)
#define ON_WM_ENDSESSION() AFX_WM(WM_ENDSESSION, AfxSig_Enable, OnEndSession)
#define ON_WM_SIZE() AFX_WM(WM_SIZE, AfxSig_Size, OnSize)
#define ON_WM_GETMINMAXINFO() AFX_WM(WM_GETMINMAXINFO, AfxSig_MinMaxInfo, OnGetMinMaxInfo)
#define ON_WM_MOVE() AFX_WM(WM_MOVE, AfxSig_Move, OnMove)
#define ON_WM_SHOWWINDOW() AFX_WM(WM_SHOWWINDOW, AfxSig_ShowWindow, OnShowWindow)
#define ON_WM_ENABLE() AFX_WM(WM_ENABLE, AfxSig_Enable, OnEnable)
#define ON_WM_ACTIVATE() AFX_WM(WM_ACTIVATE, AfxSig_Activate, OnActivate)
#define ON_WM_SETFOCUS() AFX_WM(WM_SETFOCUS, AfxSig_WindowInWParam, OnSetFocus)
#define ON_WM_KILLFOCUS() AFX_WM(WM_KILLFOCUS, AfxSig_WindowInWParam, OnKillFocus)
#define ON_WM_WINDOWPOSCHANGING() \
    AFX_WM(WM_WINDOWPOSCHANGING, AfxSig_WindowPos, OnWindowPosChanging)
#define ON_WM_WINDOWPOSCHANGED() AFX_WM(WM_WINDOWPOSCHANGED, AfxSig_WindowPos, OnWindowPosChanged)
#define ON_WM_NCCALCSIZE() AFX_WM(WM_NCCALCSIZE, AfxSig_NcCalcSize, OnNcCalcSize)

// Painting
#define ON_WM_PAINT() AFX_WM(WM_PAINT, AfxSig_Plain, OnPaint)
#define ON_WM_NCPAINT() AFX_WM(WM_NCPAINT, AfxSig_Plain, OnNcPaint)
#define ON_WM_ERASEBKGND() AFX_WM(WM_ERASEBKGND, AfxSig_EraseBackground, OnEraseBkgnd)
#define ON_WM_PRINTCLIENT() AFX_WM(WM_PRINTCLIENT, AfxSig_PrintClient, OnPrintClient)
#define ON_WM_CTLCOLOR() AFX_WM(WM_CTLCOLOR, AfxSig_ControlColor, OnCtlColor)
#define ON_WM_DRAWITEM() AFX_WM(WM_DRAWITEM, AfxSig_DrawItem, OnDrawItem)
#define ON_WM_SYSCOLORCHANGE() AFX_WM(WM_SYSCOLORCHANGE, AfxSig_Plain, OnSysColorChange)
#define ON_WM_SETTINGCHANGE() AFX_WM(WM_SETTINGCHANGE, AfxSig_SettingChange, OnSettingChange)

// Input
#define ON_WM_SETCURSOR() AFX_WM(WM_SETCURSOR, AfxSig_SetCursor, OnSetCursor)
#define ON_WM_MOUSEACTIVATE() AFX_WM(WM_MOUSEACTIVATE, AfxSig_MouseActivate, OnMouseActivate)
#define ON_WM_MOUSEMOVE() AFX_WM(WM_MOUSEMOVE, AfxSig_Mouse, OnMouseMove)
#define ON_WM_MOUSEWHEEL() AFX_WM(WM_MOUSEWHEEL, AfxSig_MouseWheel, OnMouseWheel)
#define ON_WM_LBUTTONDOWN() AFX_WM(WM_LBUTTONDOWN, AfxSig_Mouse, OnLButtonDown)
#define ON_WM_LBUTTONUP() AFX_WM(WM_LBUTTONUP, AfxSig_Mouse, OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() AFX_WM(WM_LBUTTONDBLCLK, AfxSig_Mouse, OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() AFX_WM(WM_RBUTTONDOWN, AfxSig_Mouse, OnRButtonDown)
#define ON_WM_RBUTTONUP() AFX_WM(WM_RBUTTONUP, AfxSig_Mouse, OnRButtonUp)
#define ON_WM_NCHITTEST() AFX_WM(WM_NCHITTEST, AfxSig_NcHitTest, OnNcHitTest)
#define ON_WM_NCLBUTTONDOWN() AFX_WM(WM_NCLBUTTONDOWN, AfxSig_Mouse, OnNcLButtonDown)
#define ON_WM_NCLBUTTONDBLCLK() AFX_WM(WM_NCLBUTTONDBLCLK, AfxSig_Mouse, OnNcLButtonDblClk)
#define ON_WM_NCMOUSEMOVE() AFX_WM(WM_NCMOUSEMOVE, AfxSig_Mouse, OnNcMouseMove)
#define ON_WM_CAPTURECHANGED() AFX_WM(WM_CAPTURECHANGED, AfxSig_WindowInLParam, OnCaptureChanged)
#define ON_WM_KEYDOWN() AFX_WM(WM_KEYDOWN, AfxSig_Key, OnKeyDown)
#define ON_WM_KEYUP() AFX_WM(WM_KEYUP, AfxSig_Key, OnKeyUp)
#define ON_WM_CHAR() AFX_WM(WM_CHAR, AfxSig_Key, OnChar)
#define ON_WM_SYSKEYDOWN() AFX_WM(WM_SYSKEYDOWN, AfxSig_Key, OnSysKeyDown)
#define ON_WM_VSCROLL() AFX_WM(WM_VSCROLL, AfxSig_Scroll, OnVScroll)
#define ON_WM_HSCROLL() AFX_WM(WM_HSCROLL, AfxSig_Scroll, OnHScroll)
#define ON_WM_TIMER() AFX_WM(WM_TIMER, AfxSig_Timer, OnTimer)
#define ON_WM_CONTEXTMENU() AFX_WM(WM_CONTEXTMENU, AfxSig_ContextMenu, OnContextMenu)
#define ON_WM_INITMENUPOPUP() AFX_WM(WM_INITMENUPOPUP, AfxSig_InitMenuPopup, OnInitMenuPopup)
#define ON_WM_MENUSELECT() AFX_WM(WM_MENUSELECT, AfxSig_MenuSelect, OnMenuSelect)
#define ON_WM_DROPFILES() AFX_WM(WM_DROPFILES, AfxSig_DropFiles, OnDropFiles)

// Handed back by the parent; the handlers carry no "On".
#define ON_WM_CTLCOLOR_REFLECT() \
    AFX_WM(WM_REFLECT_BASE + WM_CTLCOLOR, AfxSig_ControlColorReflect, CtlColor)
#define ON_WM_VSCROLL_REFLECT() AFX_WM(WM_REFLECT_BASE + WM_VSCROLL, AfxSig_ScrollReflect, VScroll)
#define ON_WM_HSCROLL_REFLECT() AFX_WM(WM_REFLECT_BASE + WM_HSCROLL, AfxSig_ScrollReflect, HScroll)
#define ON_CONTROL_REFLECT(code, handler) \
    AFX_ENTRY(WM_REFLECT_BASE + WM_COMMAND, static_cast<WORD>(code), 0, 0, AfxSig_Command, handler)
#define ON_NOTIFY_REFLECT(code, handler) \
    AFX_ENTRY(WM_REFLECT_BASE + WM_NOTIFY, static_cast<WORD>(code), 0, 0, AfxSig_Notify, handler)
// FALSE from the handler: the parent hears of it, too.
#define ON_NOTIFY_REFLECT_EX(code, handler) \
    AFX_ENTRY(WM_REFLECT_BASE + WM_NOTIFY, static_cast<WORD>(code), 0, 0, AfxSig_NotifyEx, handler)

// Messages of our own
#define ON_MESSAGE(message, handler) AFX_ENTRY(message, 0, 0, 0, AfxSig_Message, handler)
#define ON_THREAD_MESSAGE(message, handler) \
    AFX_ENTRY(message, 0, 0, 0, AfxSig_ThreadMessage, handler)
#define ON_REGISTERED_MESSAGE(variable, handler)                      \
    {0xC000,                                                          \
     0,                                                               \
     0,                                                               \
     0,                                                               \
     reinterpret_cast<UINT_PTR>(static_cast<const UINT*>(&variable)), \
     AfxEraseSignature(static_cast<AfxHandler<AfxSig_Message>::Type>(handler))},

// Commands
#define AFX_COMMAND(message, code, first, last, signature, handler) \
    AFX_ENTRY(message, code, static_cast<WORD>(first), static_cast<WORD>(last), signature, handler)
#define ON_COMMAND(id, handler) AFX_COMMAND(WM_COMMAND, CN_COMMAND, id, id, AfxSig_Command, handler)
#define ON_COMMAND_RANGE(first, last, handler) \
    AFX_COMMAND(WM_COMMAND, CN_COMMAND, first, last, AfxSig_CommandId, handler)
#define ON_UPDATE_COMMAND_UI(id, handler) \
    AFX_COMMAND(WM_COMMAND, CN_UPDATE_COMMAND_UI, id, id, AfxSig_CommandUi, handler)
#define ON_UPDATE_COMMAND_UI_RANGE(first, last, handler) \
    AFX_COMMAND(WM_COMMAND, CN_UPDATE_COMMAND_UI, first, last, AfxSig_CommandUi, handler)

// Controls
#define ON_CONTROL(code, id, handler) \
    AFX_COMMAND(WM_COMMAND, static_cast<WORD>(code), id, id, AfxSig_Command, handler)
#define ON_CONTROL_RANGE(code, first, last, handler) \
    AFX_COMMAND(WM_COMMAND, static_cast<WORD>(code), first, last, AfxSig_CommandId, handler)
#define ON_NOTIFY(code, id, handler) \
    AFX_COMMAND(WM_NOTIFY, static_cast<WORD>(code), id, id, AfxSig_Notify, handler)
#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_EN_CHANGE(id, handler) ON_CONTROL(EN_CHANGE, id, handler)
#define ON_EN_SETFOCUS(id, handler) ON_CONTROL(EN_SETFOCUS, id, handler)
#define ON_EN_KILLFOCUS(id, handler) ON_CONTROL(EN_KILLFOCUS, id, handler)
#define ON_LBN_SELCHANGE(id, handler) ON_CONTROL(LBN_SELCHANGE, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)
#define ON_CLBN_CHKCHANGE(id, handler) ON_CONTROL(CLBN_CHKCHANGE, id, handler)
