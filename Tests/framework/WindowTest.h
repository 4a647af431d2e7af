// WindowTest.h: what the tests of windows share.
#pragma once

#include "support/Input.h"

#include <afxwin.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

// What happened, in order.
using Log = std::vector<std::string>;

// A test with one top-level window to put children into.
class WindowTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(top.CreateEx(0, nullptr, L"Top", WS_OVERLAPPEDWINDOW, 0, 0, 400, 300, nullptr,
                                 nullptr));
    }

    void TearDown() override
    {
        top.DestroyWindow();
        PumpMessages();
    }

    void ShowTop()
    {
        top.ShowWindow(SW_SHOWNORMAL);
        top.UpdateWindow();
        PumpMessages();
    }

    CWnd top;
};
