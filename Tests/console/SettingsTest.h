// SettingsTest.h: settings that are kept in a folder, as for a user.
#pragma once

#include "ConsoleSettings.h"

#include <CommonUiInit.h>
#include <FolderProfile.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

class SettingsFolderTest : public testing::Test
{
protected:
    using Path = std::filesystem::path;

    SettingsFolderTest()
        : folder(std::filesystem::temp_directory_path() /
                 (L"console-settings-" + std::to_wstring(::GetCurrentProcessId()))),
          profiles(folder.wstring(), [this](const ProfileReport&) { ++incidents; })
    {
        std::filesystem::create_directories(folder);
        factory = &profiles;
        CommonUiInit(nullptr, &GetFactory, nullptr);
    }
    ~SettingsFolderTest() override
    {
        CommonUiInit(nullptr, nullptr, nullptr);
        std::filesystem::remove_all(folder);
    }

    static ConsoleSettings Load()
    {
        ConsoleSettings settings;
        YReportMessageParams error;
        EXPECT_TRUE(settings.Load(error)) << error.GetMessageId();
        return settings;
    }
    static void Save(ConsoleSettings& settings)
    {
        YReportMessageParams error;
        EXPECT_TRUE(settings.Save(error)) << error.GetMessageId();
    }
    void WriteFile(const std::string& text) const
    {
        std::ofstream(folder / L"Console.ini", std::ios::binary) << text;
    }

    static YProfileStoreFactory* GetFactory() { return factory; }

    static inline FolderProfileFactory* factory = nullptr;
    int incidents = 0;
    Path folder;
    FolderProfileFactory profiles;
};
