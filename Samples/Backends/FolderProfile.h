// FolderProfile.h: settings kept in files of a folder.
#pragma once

#include "ProfileReport.h"

#include <YProfileStoreFactory.h>

#include <memory>
#include <string>

class FolderStore;

// Profiles of one folder: "NAME.ini" for each key of the root, with its sub-keys as sections, and
// "Settings.ini" for values of the root itself. A file is read when the first key of it is opened,
// serves all keys of this factory's profiles from memory, and is saved by Flush and when the last
// key of it is released. Another process, or another factory for the same folder, may save the same
// files: nothing is lost, and each sees what the other has saved when it next opens or saves.
// Any thread; a thread that opens, flushes or releases a key waits for the disk, and for others that
// do (a few seconds at most where other programs hold the file). docs/settings.md has the rest.
class FolderProfileFactory : public YProfileStoreFactory
{
public:
    // The folder is made by the first save where only its last part is missing. The sink may be
    // empty. Profiles may outlive the factory.
    FolderProfileFactory(const std::wstring& folder, ProfileReportSink sink);
    FolderProfileFactory(const FolderProfileFactory&) = delete;
    FolderProfileFactory& operator=(const FolderProfileFactory&) = delete;
    virtual ~FolderProfileFactory();

    bool CreateProfile(IProfile** profile, YReportMessageParams& error) override;

private:
    const std::shared_ptr<FolderStore> store;  // shared with the profiles and keys
};
