// ConsoleApp.h: the program.
#pragma once

#include "ConsoleSettings.h"

#include <FolderProfile.h>
#include <HostnameResolver.h>
#include <YUnknownPointer.h>
#include <afxwin.h>

#include <memory>
#include <string>

struct ConsoleOptions;

// A log viewer and line-mode client: see CONSOLE_USAGE for its command line. Its settings live in a folder of the user's.
class ConsoleApp : public CWinApp
{
public:
    BOOL InitInstance() override;
    BOOL PreTranslateMessage(MSG* message) override;

    YProfileStoreFactory* GetProfiles() const { return profiles.get(); }
    IHostnameResolver* GetResolver() const { return resolver.Get(); }

protected:
    afx_msg void OnExit();
    DECLARE_MESSAGE_MAP()

private:
    bool OpenProfiles(const ConsoleOptions& options);
    void LoadSettings();
    void ShowWindows(const ConsoleOptions& options);
    void ConnectAtStart();
    void ShowFile(const ConsoleOptions& options);

    std::unique_ptr<FolderProfileFactory> profiles;
    YUnknownPointer<ThreadedHostnameResolver> resolver =
        YUnknownPointer<ThreadedHostnameResolver>::Make();
    ConsoleSettings settings;
};
