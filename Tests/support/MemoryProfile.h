// MemoryProfile.h: the settings of a host that keeps them in memory only.
#pragma once

#include <YProfileStoreFactory.h>

#include <windows.h>

#include <memory>

struct MemoryTree;

// While it lives, it is the host's profile; the profiles and keys made of it share one tree, which
// lives as long as any of them. Any thread. One at a time.
class MemoryProfile : public YProfileStoreFactory
{
public:
    MemoryProfile();
    MemoryProfile(const MemoryProfile&) = delete;
    MemoryProfile& operator=(const MemoryProfile&) = delete;
    virtual ~MemoryProfile();

    bool CreateProfile(IProfile** profile, YReportMessageParams& error) override;

    // Every write, deletion and flush fails with the code from now on; 0: none.
    void FailWrites(DWORD code);
    // No profile can be had; 0: it can.
    void FailCreation(DWORD code);
    unsigned GetFlushCount() const;
    long GetLiveProfiles() const;  // not yet released

private:
    std::shared_ptr<MemoryTree> tree;
};
