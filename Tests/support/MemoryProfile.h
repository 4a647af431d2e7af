// MemoryProfile.h: the settings of a host that keeps them in memory only.
#pragma once

#include <YCriticalSection.h>
#include <YProfileStoreFactory.h>

#include <windows.h>

#include <atomic>
#include <memory>

class ISynchObject;
struct MemoryNode;

struct MemoryTree
{
    YCriticalSection lock;  // over all nodes
    const std::shared_ptr<MemoryNode> root;
    std::atomic<DWORD> writeError = 0;
    std::atomic<DWORD> creationError = 0;
    std::atomic<unsigned> flushes = 0;
    std::atomic<long> profiles = 0;
};

// While it lives, it is the host's profile; the profiles and keys made of it share one tree, which
// lives as long as any of them. Any thread. One at a time.
class MemoryProfile : public YProfileStoreFactory
{
public:
    explicit MemoryProfile(ISynchObject* hostLock = nullptr);
    MemoryProfile(const MemoryProfile&) = delete;
    MemoryProfile& operator=(const MemoryProfile&) = delete;
    virtual ~MemoryProfile() { Withdraw(); }

    // The library has no host from now on.
    void Withdraw();
    bool CreateProfile(IProfile** profile, YReportMessageParams& error) override;

    // Every write, deletion and flush fails with the code from now on; 0: none.
    void FailWrites(DWORD code) { tree->writeError = code; }
    // No profile can be had; 0: it can.
    void FailCreation(DWORD code) { tree->creationError = code; }
    unsigned GetFlushCount() const { return tree->flushes; }
    long GetLiveProfiles() const { return tree->profiles; }  // not yet released

private:
    const std::shared_ptr<MemoryTree> tree;
};
