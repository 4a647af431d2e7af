// TreeKit.h: a property tree that a test drives inside DoModal, and pages that tell what they are asked.
#pragma once

#include "PropertyTreePages.h"
#include "autocomplete/PopupKit.h"
#include "support/Input.h"

#include <dialogs/PropertyTreeIds.h>
#include <dialogs/YPropertyTreeDialog.h>
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <utility>

constexpr UINT scriptMessage = WM_APP + 1;

// Runs its script once it is open; then it ends by Cancel, if the script has not ended it.
class TestTree : public YPropertyTreeDialog
{
public:
    using YPropertyTreeDialog::YPropertyTreeDialog;

    std::function<void()> script;
    unsigned applied = 0;

    CTreeCtrl& Tree() { return static_cast<CTreeCtrl&>(*GetDlgItem(PROPERTY_TREE_TREE)); }
    std::wstring SelectedLabel()
    {
        return std::wstring(Tree().GetItemText(Tree().GetSelectedItem()).GetString());
    }
    std::wstring HeaderText() { return GetTextOf(::GetDlgItem(*this, PROPERTY_TREE_HEADER)); }
    POINT GetPlace(HTREEITEM item)
    {
        RECT place{};
        std::memcpy(&place, &item, sizeof(void*));
        Tree().SendMessage(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place));
        return {place.left + 3, place.top + 3};
    }
    void ClickItem(HTREEITEM item) { ClickLeft(Tree(), GetPlace(item)); }

protected:
    BOOL OnInitDialog() override
    {
        const BOOL setsFocus = YPropertyTreeDialog::OnInitDialog();
        PostMessage(scriptMessage);
        return setsFocus;
    }
    void OnApply() override { ++applied; }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != scriptMessage) {
            return YPropertyTreeDialog::WindowProc(message, wParam, lParam);
        }
        const HWND handle = m_hWnd;
        ::SetForegroundWindow(handle);
        EXPECT_TRUE(PumpUntil(
            [handle] { return ::GetForegroundWindow() == handle && ::IsWindowVisible(handle); }));
        script();
        if (::IsWindow(handle)) {
            ::PostMessageW(handle, WM_COMMAND, IDCANCEL, 0);
        }
        return 0;
    }
};

// Counts what it is asked, and refuses when told to.
class TestPage : public YPropertyTreePage
{
public:
    explicit TestPage(const wchar_t* text, unsigned resource = IDD_TEXT_ONLY)
        : YPropertyTreePage(resource), caption(text)
    {}

    void PreModal(CDialog* dialog) override
    {
        YPropertyTreePage::PreModal(dialog);
        SetWindowText(caption);
    }
    BOOL OnSetActive() override
    {
        log += L"set ";
        return YPropertyTreePage::OnSetActive();
    }
    BOOL OnKillActive() override
    {
        log += L"kill ";
        if (whenLeft) {
            whenLeft();
        }
        return refuses ? FALSE : YPropertyTreePage::OnKillActive();
    }
    void OnShow() override { log += L"show "; }
    using YPropertyTreePage::OnChange;

    std::wstring TakeLog() { return std::exchange(log, {}); }

    bool refuses = false;
    std::function<void()> whenLeft;

private:
    const wchar_t* caption;
    std::wstring log;
};
