// WindowMap.h: which object stands for a window or a menu in the calling thread.
#pragma once

#include "HandleMap.h"
#include "afxwin.h"

struct WindowTraits
{
    static constexpr HandleKind kind = HandleKind::Window;
    using Object = CWnd;
    using Handle = HWND;
    static std::unique_ptr<CWnd> Make(HWND) { return std::make_unique<CWnd>(); }
    static void SetHandle(CWnd& window, HWND handle) noexcept { window.m_hWnd = handle; }
};

struct MenuTraits
{
    static constexpr HandleKind kind = HandleKind::Menu;
    using Object = CMenu;
    using Handle = HMENU;
    static std::unique_ptr<CMenu> Make(HMENU) { return std::make_unique<CMenu>(); }
    static void SetHandle(CMenu& menu, HMENU handle) noexcept { menu.m_hMenu = handle; }
};

using WindowMap = HandleMap<WindowTraits>;
using MenuMap = HandleMap<MenuTraits>;
