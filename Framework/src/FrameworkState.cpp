#include "FrameworkState.h"

#include <cstdio>
#include <exception>

ModuleState& GetModuleState()
{
    static ModuleState state;
    return state;
}

ThreadState& GetThreadState()
{
    static thread_local ThreadState state;
    return state;
}

namespace {

void Report(const char* reason, UINT message) noexcept
{
    char line[512];
    std::snprintf(line, sizeof(line), "Exception in the handler of message 0x%04X: %s\n", message,
                  reason);
    std::fputs(line, stderr);
    ::OutputDebugStringA(line);
}

LRESULT AnswerForCException(CException& exception, const MSG& message)
{
    if (CWinThread* const thread = ::AfxGetThread()) {
        return thread->ProcessWndProcException(&exception, &message);
    }
    return AnswerForFailedHandler(exception.GetRuntimeClass()->m_lpszClassName, message);
}

}  // namespace

LRESULT AnswerForFailedHandler(const char* reason, const MSG& message) noexcept
{
    Report(reason, message.message);
    if (message.message == WM_PAINT) {
        ::ValidateRect(message.hwnd, nullptr);
    }
    return message.message == WM_CREATE ? -1 : 0;
}

LRESULT AnswerForCurrentException(const MSG& message) noexcept
{
    try {
        throw;
    } catch (CException* exception) {
        LRESULT answer = 0;
        try {
            answer = AnswerForCException(*exception, message);
        } catch (...) {
            answer = AnswerForFailedHandler("another one while it was processed", message);
        }
        exception->Delete();
        return answer;
    } catch (const std::exception& exception) {
        return AnswerForFailedHandler(exception.what(), message);
    } catch (...) {
        return AnswerForFailedHandler("of unknown type", message);
    }
}
