// YProfileStoreFactory.h: where the host's settings come from.
#pragma once

class IProfile;
class YReportMessageParams;

// The host implements it and gives a function that returns it to CommonUiInit; it outlives the
// library's use. Called on the thread that needs a profile, under the host's ISynchObject. The
// order is binary contract.
class YProfileStoreFactory
{
public:
    // A profile whose reference the caller owns. False: error says why, profile is null.
    virtual bool CreateProfile(IProfile** profile, YReportMessageParams& error) = 0;

protected:
    ~YProfileStoreFactory() = default;
};
