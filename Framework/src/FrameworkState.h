// FrameworkState.h: what the framework remembers of the program and of each thread.
#pragma once

#include "afxwin.h"

class DataExchangeInProgress;
class WindowCreation;

struct ModuleState
{
    HINSTANCE instance = nullptr;  // null: ask the system for the program's
    HINSTANCE resources = nullptr;  // null: the instance
    CWinApp* application = nullptr;
};

// No member needs destruction, so the state is there until the thread's very end.
struct ThreadState
{
    CWinThread* thread = nullptr;
    MSG handled{};  // by the innermost window procedure at work
    WindowCreation* creation = nullptr;  // that waits for its window to appear
    DataExchangeInProgress* exchange = nullptr;  // the innermost one
};

ModuleState& GetModuleState();
ThreadState& GetThreadState();

// Between this window and its controls. Their notifications are about values that nobody has
// changed, or come while half of them are taken over.
bool IsExchangingData(HWND window);

// Reports what a handler threw and answers for it: -1 to WM_CREATE, which ends the creation, else
// 0. What was to be painted counts as painted: it would be asked for without end.
LRESULT AnswerForFailedHandler(const char* reason, const MSG& message) noexcept;

// Inside a catch block: what the thread's ProcessWndProcException makes of the exception; without
// a thread object, or for exceptions that are none of the framework's, the answer above.
LRESULT AnswerForCurrentException(const MSG& message) noexcept;
