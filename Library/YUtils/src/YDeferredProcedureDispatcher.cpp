#include "YDeferredProcedureDispatcher.h"

#include "YCriticalSection.h"

#include <mutex>

class YDeferredProcedureDispatcher::QueueLock final : public ISynchObject
{
public:
    void Lock() override { section.lock(); }
    void Unlock() override { section.unlock(); }

    // Named for std::unique_lock.
    void lock() { Lock(); }
    void unlock() { Unlock(); }

private:
    YCriticalSection section;
};

namespace {

class ScopedFlag
{
public:
    explicit ScopedFlag(bool& raised) : flag(raised) { flag = true; }
    ~ScopedFlag() { flag = false; }  // NOLINT(clang-analyzer-cplusplus.NewDelete): see IsAbandoned
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& flag;
};

// Gives a lock back for its own life, however that ends.
template <class Held>
class Unlocked
{
public:
    explicit Unlocked(Held& given) : held(given) { held.unlock(); }
    ~Unlocked() { held.lock(); }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    Held& held;
};

}  // namespace

YDeferredProcedureDispatcher::YDeferredProcedureDispatcher() : lock(std::make_unique<QueueLock>())
{}

YDeferredProcedureDispatcher::~YDeferredProcedureDispatcher() = default;

void YDeferredProcedureDispatcher::Queue(IDeferredProcedure* procedure, unsigned argument)
{
    const std::lock_guard guard(*lock);
    queue.push_back({procedure, argument});
}

bool YDeferredProcedureDispatcher::Dispatch()
{
    const YUnknownPointer<YDeferredProcedureDispatcher> self(this);
    return Run(1);
}

bool YDeferredProcedureDispatcher::Run(ULONG ownReferences)
{
    std::unique_lock guard(*lock);
    if (dispatching || queue.empty()) {
        return false;
    }
    const ScopedFlag running(dispatching);  // lowered under the lock: an entry is run or left
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): see IsAbandoned
    while (!queue.empty() && !IsAbandoned(ownReferences)) {
        Entry entry = std::move(queue.front());
        queue.pop_front();
        const Unlocked outside(guard);
        // Ends with this scope, before the lock is taken again: its destructor may come back here.
        const YUnknownPointer<IDeferredProcedure> procedure = std::move(entry.procedure);
        if (procedure) {
            procedure->Run(entry.argument);
        }
    }
    return true;
}

bool YDeferredProcedureDispatcher::HasEntries() const
{
    const std::lock_guard guard(*lock);
    return !queue.empty();
}

// Never the last reference: the caller has one. The analyser cannot know that.
bool YDeferredProcedureDispatcher::IsAbandoned(ULONG ownReferences) const
{
    AddRef();
    return Release() == ownReferences;
}
