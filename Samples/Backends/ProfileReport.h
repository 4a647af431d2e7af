// ProfileReport.h: what a profile of files has to tell the host and can return to nobody.
#pragma once

#include <YReportMessageParams.h>

#include <functional>
#include <string>

struct ProfileReport
{
    enum class Incident {
        FileDamaged,  // it was kept aside, and what it held is not known: the defaults serve
        SaveFailed,  // when the last key of the file was closed: what was not saved is lost
    };

    Incident incident = Incident::FileDamaged;
    std::wstring file;  // full path
    std::wstring keptAs;  // where a damaged file is now; empty: still there, until the next save
    YReportMessageParams error;  // why, in the system's words, which name no file
};

// On the thread that came upon it, with no lock held: it may use profiles. Throws nothing.
using ProfileReportSink = std::function<void(const ProfileReport&)>;
