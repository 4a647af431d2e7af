// ConsoleApp.h: the program.
#pragma once

#include "ConsoleSettings.h"

#include <FolderProfile.h>
#include <afxwin.h>

#include <memory>
#include <string>

struct ConsoleOptions;

// A log viewer: see CONSOLE_USAGE for its command line. Its settings live in a folder of the user's.
class ConsoleApp : public CWinApp
{
public:
    BOOL InitInstance() override;

    YProfileStoreFactory* GetProfiles() const { return profiles.get(); }

protected:
    DECLARE_MESSAGE_MAP()

private:
    bool OpenProfiles(const ConsoleOptions& options);
    void LoadSettings();
    void ShowWindow(const ConsoleOptions& options);

    std::unique_ptr<FolderProfileFactory> profiles;
    ConsoleSettings settings;
};
