// SettingsFile.h: one file of settings, its tree in memory, and how both come together.
#pragma once

#include "ProfileReport.h"
#include "SafeFile.h"

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

class ProfileNode;

// Loaded once; what other processes have saved since then is merged in by the next save. A change
// here wins over theirs value by value. The operations return Win32 codes and add what they come
// upon to the reports. No locks: the folder's store has one.
class SettingsFile
{
public:
    SettingsFile(std::wstring path, FolderLockFile& lockFile);  // the folder's, borrowed
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile();

    const std::wstring& GetPath() const { return path; }
    const std::shared_ptr<ProfileNode>& GetRoot() const { return root; }

    // ERROR_FILE_NOT_FOUND where there is none or it was damaged: the tree is empty then.
    DWORD Load(std::vector<ProfileReport>& reports);
    void MarkChanged() { isChanged = true; }
    // Whether there is anything to save, or has been saved.
    bool Exists() const { return isChanged || stamp; }
    // Nothing is written where nothing was changed.
    DWORD Save(std::vector<ProfileReport>& reports);
    // The file and the tree; the open keys lead nowhere from then on.
    DWORD Delete();

    unsigned references = 0;  // of keys, counted by the folder's store

private:
    DWORD Read(std::shared_ptr<ProfileNode>& tree);
    DWORD ReadOrKeepAside(std::shared_ptr<ProfileNode>& tree, std::vector<ProfileReport>& reports);
    DWORD MergeFile(std::vector<ProfileReport>& reports);
    void CleanUp();

    const std::wstring path;
    FolderLockFile& folderLock;
    std::shared_ptr<ProfileNode> root;  // shared with the keys
    FileStamp stamp;  // of the file that the tree goes back to
    bool isChanged = false;
    std::string text;  // of the last save: new memory for each would double the price of making it
};
