// ConsoleSettings.h: what the program keeps from one run to the next.
#pragma once

#include "ConsoleOptions.h"
#include "Peer.h"
#include "RecentList.h"

#include <YProfileData.h>
#include <YProfileWindowPlacement.h>

#include <windows.h>

#include <array>
#include <string>
#include <vector>

// The user's choices, in the key "Console" of the host's profile, and what the administrator has
// decided instead. A value that is not there or makes no sense is the default. User-interface
// thread.
class ConsoleSettings
{
public:
    static constexpr std::size_t mostRecentFiles = 8;
    static constexpr std::size_t mostRecentHosts = 20;

    // False: error says why the profile could not be opened; the defaults are in force.
    bool Load(YReportMessageParams& error);
    // Writes what has changed. False: error says why.
    bool Save(YReportMessageParams& error);

    unsigned GetLineLimit() const;  // lines
    bool IsLineLimitLocked() const { return lockedLines != 0; }  // by the administrator
    void SetLineLimit(unsigned lines) { lineLimit.Set(lines); }

    // False: none was chosen.
    bool GetFont(LOGFONT& font) const;
    void SetFont(const LOGFONT& font);

    const std::vector<std::wstring>& GetRecentFiles() const { return recentFiles.Get(); }
    void AddRecentFile(const std::wstring& path) { recentFiles.Add(path); }
    void RemoveRecentFile(const std::wstring& path) { recentFiles.Remove(path); }

    // The one that was connected to last; without a host: nobody.
    Peer GetPeer() const;
    void SetPeer(const Peer& peer);
    // As ToText gives them, newest first.
    const std::vector<std::wstring>& GetRecentHosts() const { return recentHosts.Get(); }

    YProfileWindowPlacement& GetPlacement() { return placement; }

private:
    std::array<YProfileData*, 5> GetValues()
    {
        return {&lineLimit, &font, &host, &port, &placement};
    }

    YProfile2<unsigned, YProfileDword> lineLimit{L"Buffer Lines", 100'000};
    unsigned lockedLines = 0;  // what the administrator wants; 0: the user may choose
    YProfile2<YUnicodeString, YProfileSz> font{L"Font"};
    YProfile2<YUnicodeString, YProfileSz> host{L"Host"};
    YProfile2<unsigned, YProfileDword> port{L"Port", 23};
    YProfileWindowPlacement placement{L"Window"};
    RecentList recentFiles{L"Recent Files", L"File", mostRecentFiles};
    RecentList recentHosts{L"Recent Hosts", L"Host", mostRecentHosts};
};
