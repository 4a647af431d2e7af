// ConsoleApp.h: the program.
#pragma once

#include <afxwin.h>

// A log viewer: see consoleUsage for its command line.
class ConsoleApp : public CWinApp
{
public:
    BOOL InitInstance() override;

protected:
    DECLARE_MESSAGE_MAP()
};
