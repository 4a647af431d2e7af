// TreeKit.h: a property tree that a test drives inside DoModal, and pages that tell what they are asked.
#pragma once

#include "PropertyTreePages.h"
#include "autocomplete/PopupKit.h"
#include "support/ScriptedModal.h"

#include <dialogs/PropertyTreeIds.h>
#include <dialogs/YPropertyTreeDialog.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

class TestTree : public ScriptedModal<YPropertyTreeDialog>
{
public:
    using ScriptedModal::ScriptedModal;

    unsigned applied = 0;

    CTreeCtrl& Tree() { return static_cast<CTreeCtrl&>(*GetDlgItem(PROPERTY_TREE_TREE)); }
    std::wstring SelectedLabel()
    {
        return std::wstring(Tree().GetItemText(Tree().GetSelectedItem()).GetString());
    }
    // The whole tree, with what is below a page in brackets behind it.
    std::wstring TreeText() { return TextFrom(Tree().GetRootItem()); }
    bool PageFillsFrame()
    {
        CRect page;
        CRect place;
        GetCurrentPage()->GetWindowRect(&page);
        ::GetWindowRect(::GetDlgItem(*this, PROPERTY_TREE_PAGE), &place);
        return page == place;
    }
    std::wstring HeaderText() { return GetTextOf(::GetDlgItem(*this, PROPERTY_TREE_HEADER)); }
    POINT GetPlace(HTREEITEM item)
    {
        RECT place{};
        Tree().GetItemRect(item, &place, TRUE);
        return {place.left + 3, place.top + 3};
    }
    void ClickItem(HTREEITEM item)
    {
        AwaitPlace();
        ClickLeft(Tree(), GetPlace(item));
    }
    void AwaitPlace()
    {
        isPlaced = isPlaced || StandsStill(*this);
        EXPECT_TRUE(isPlaced);
    }

protected:
    void OnApply() override { ++applied; }

private:
    bool isPlaced = false;

    std::wstring TextFrom(HTREEITEM item)
    {
        std::wstring text;
        for (; item; item = Tree().GetNextSiblingItem(item)) {
            text += text.empty() ? L"" : L" ";
            text += Tree().GetItemText(item).GetString();
            if (const HTREEITEM below = Tree().GetChildItem(item)) {
                text += L"(" + TextFrom(below) + L")";
            }
        }
        return text;
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
        if (whenEntered) {
            std::exchange(whenEntered, nullptr)();
        }
        return cannotBeEntered ? FALSE : YPropertyTreePage::OnSetActive();
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

    std::wstring TakeLog() { return std::exchange(log, {}); }

    bool refuses = false;  // to be left
    bool cannotBeEntered = false;
    std::function<void()> whenLeft;
    std::function<void()> whenEntered;  // the next time only

private:
    const wchar_t* caption;
    std::wstring log;
};
