// ConsoleSettings.h: what the program keeps from one run to the next.
#pragma once

#include "ColumnWidths.h"
#include "ConsoleChoices.h"
#include "Peer.h"
#include "RecentList.h"
#include "SessionList.h"

#include <YProfileData.h>
#include <YProfileWindowPlacement.h>
#include <YRect.h>
#include <dialogs/YPropertyPageStateMap.h>

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

    const ConsoleChoices& GetChoices() const { return choices; }
    void SetChoices(const ConsoleChoices& next);

    unsigned GetLineLimit() const;  // lines
    bool IsLineLimitLocked() const { return lockedLines != 0; }  // by the administrator
    void SetLineLimit(unsigned lines) { choices.lineLimit = lines; }

    // False: none was chosen.
    bool GetFont(LOGFONT& font) const { return ParseFont(choices.font, font); }
    void SetFont(const LOGFONT& font) { choices.font = FormatFont(font); }

    const std::vector<std::wstring>& GetRecentFiles() const { return recentFiles.Get(); }
    void AddRecentFile(const std::wstring& path);
    void RemoveRecentFile(const std::wstring& path) { recentFiles.Remove(path); }

    // The one that was connected to last; without a host: nobody.
    Peer GetPeer() const;
    void SetPeer(const Peer& peer);
    // As ToText gives them, newest first.
    const std::vector<std::wstring>& GetRecentHosts() const { return recentHosts.Get(); }

    void ForgetRecent();  // files and hosts

    SessionList& GetSessions() { return sessions; }
    ColumnWidths& GetColumnWidths() { return columnWidths; }

    YProfileWindowPlacement& GetPlacement() { return placement; }
    YProfileWindowPlacement& GetOptionsPlacement() { return optionsPlacement; }
    YProfileWindowPlacement& GetCertificatePlacement() { return certificatePlacement; }
    YProfileWindowPlacement& GetSessionsPlacement() { return sessionsPlacement; }
    // How the pages of the options were left; until the program ends.
    YPropertyPageStateMap& GetPageStates() { return pageStates; }
    // Of the find box, on the screen; (-1, -1): where the system puts it.
    YPoint GetFindPlace() const;
    void SetFindPlace(YPoint place);

private:
    std::array<YProfileData*, 7> GetValues()
    {
        return {&host,
                &port,
                &placement,
                &optionsPlacement,
                &certificatePlacement,
                &sessionsPlacement,
                &findPlace};
    }
    bool IsModified();

    ConsoleChoices choices;
    ConsoleChoices stored;
    unsigned lockedLines = 0;  // what the administrator wants; 0: the user may choose
    YProfile2<YUnicodeString, YProfileSz> host{L"Host"};
    YProfile2<unsigned, YProfileDword> port{L"Port", 23};
    YProfileWindowPlacement placement{L"Window"};
    YProfileWindowPlacement optionsPlacement{L"Options Window"};
    YProfileWindowPlacement certificatePlacement{L"Certificate Window"};
    YProfileWindowPlacement sessionsPlacement{L"Sessions Window"};
    YProfile2<YUnicodeString, YProfileSz> findPlace{L"Find Window"};
    YPropertyPageStateMap pageStates;
    RecentList recentFiles{L"Recent Files", L"File", mostRecentFiles};
    RecentList recentHosts{L"Recent Hosts", L"Host", mostRecentHosts};
    SessionList sessions;
    ColumnWidths columnWidths;
};
