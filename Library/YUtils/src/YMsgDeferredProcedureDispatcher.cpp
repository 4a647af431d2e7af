#include "YMsgDeferredProcedureDispatcher.h"

namespace {

constexpr UINT dispatchMessage = WM_USER + 1;

}  // namespace

// Here, while OnNotify is still this class's: the window's thread may be on its way into it.
YMsgDeferredProcedureDispatcher::~YMsgDeferredProcedureDispatcher()
{
    Destroy();
}

void YMsgDeferredProcedureDispatcher::Queue(IDeferredProcedure* procedure, unsigned argument)
{
    YDeferredProcedureDispatcher::Queue(procedure, argument);
    PostDispatch();
}

bool YMsgDeferredProcedureDispatcher::Dispatch()
{
    const YUnknownPointer<YMsgDeferredProcedureDispatcher> self(this);
    return RunOrPost();
}

LRESULT YMsgDeferredProcedureDispatcher::OnNotify(UINT message, WPARAM, LPARAM)
{
    if (message != dispatchMessage) {
        return 0;
    }
    // The first reference again: another thread has dropped the last one and waits in the
    // destructor for this window to close. It does not look at the count any more, and nobody is
    // left to queue another message.
    if (AddRef() == 1) {
        return 0;
    }
    const auto self = YUnknownPointer<YMsgDeferredProcedureDispatcher>::Adopt(this);
    postPending = false;  // first: what is queued from here on has a message of its own
    RunOrPost();
    return 0;
}

// The caller holds one reference of its own.
bool YMsgDeferredProcedureDispatcher::RunOrPost()
{
    try {
        return Run(1);
    } catch (...) {
        if (HasEntries()) {
            PostDispatch();
        }
        throw;
    }
}

void YMsgDeferredProcedureDispatcher::PostDispatch()
{
    if (!postPending.exchange(true) && !Post(dispatchMessage, 0, 0)) {
        postPending = false;
    }
}

IDeferredProcedureDispatcher* CreateYMsgDeferredProcedureDispatcher(IReportMessageParams** error)
{
    auto made = YUnknownPointer<YMsgDeferredProcedureDispatcher>::Make();
    if (made->Create()) {
        return made.Detach();
    }
    if (error) {
        *error = new YReportMessageParams(made->GetError());
    }
    return nullptr;
}
