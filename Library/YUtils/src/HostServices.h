// HostServices.h: what the host gave to CommonUiInit, for the library's own use.
#pragma once

class IHostnameResolver;
class IProfile;
class YReportMessageParams;

// The host's resolver; null: there is none.
IHostnameResolver* GetHostnameResolver();

// A new profile of the host's, whose reference the caller owns. False: error says why.
bool CreateHostProfile(IProfile** profile, YReportMessageParams& error);
