#include "SettingsFile.h"

#include "ProfileText.h"
#include "ProfileTree.h"

#include <string_view>
#include <utility>

SettingsFile::SettingsFile(std::wstring filePath, FolderLockFile& lockFile)
    : path(std::move(filePath)), folderLock(lockFile), root(std::make_shared<ProfileNode>())
{}

SettingsFile::~SettingsFile() = default;

// A reader needs no lock: the file is whole at any moment. But it may be missing for one, or for
// good, where a process has been ended amid a replacement.
DWORD SettingsFile::Load(std::vector<ProfileReport>& reports)
{
    CleanUp();
    std::shared_ptr<ProfileNode> tree;
    DWORD code = Read(tree);
    if (code == ERROR_FILE_CORRUPT || (code == ERROR_FILE_NOT_FOUND && HasTemporaryFile(path))) {
        const FileLock lock(folderLock);
        if (lock.GetError() != ERROR_SUCCESS) {
            return lock.GetError();
        }
        code = ReadOrKeepAside(tree, reports);
    }
    if (code == ERROR_SUCCESS) {
        root = std::move(tree);
    }
    return code;
}

// The owner of a temporary file holds the lock: whoever gets that finds an orphan.
void SettingsFile::CleanUp()
{
    if (!HasTemporaryFile(path)) {
        return;
    }
    const FileLock lock(folderLock, 0);
    if (lock.GetError() == ERROR_SUCCESS) {
        SettleTemporaryFile(path, &IsWholeProfile);
    }
}

// ERROR_FILE_CORRUPT: damaged. The stamp is the file's, none where there is no file.
DWORD SettingsFile::Read(std::shared_ptr<ProfileNode>& tree)
{
    std::string bytes;
    FileStamp found;
    const DWORD code = ReadWholeFile(path, maxProfileBytes, bytes, found);
    if (code == ERROR_PATH_NOT_FOUND || code == ERROR_FILE_NOT_FOUND) {
        stamp = {};
        return ERROR_FILE_NOT_FOUND;
    }
    if (code != ERROR_SUCCESS && code != ERROR_FILE_TOO_LARGE) {
        return code;
    }
    stamp = found;
    tree = code == ERROR_SUCCESS ? ParseProfile(bytes) : nullptr;
    return tree ? ERROR_SUCCESS : ERROR_FILE_CORRUPT;
}

// Under the lock: another process may have kept the damaged file aside, and saved a good one since.
DWORD SettingsFile::ReadOrKeepAside(std::shared_ptr<ProfileNode>& tree,
                                    std::vector<ProfileReport>& reports)
{
    DWORD code = Read(tree);
    if (code != ERROR_FILE_CORRUPT) {
        return code;
    }
    ProfileReport report{
        ProfileReport::Incident::FileDamaged, path, {}, YReportMessageParams(code)};
    code = KeepFileAside(path, report.keptAs);
    if (code != ERROR_SUCCESS) {
        return code;
    }
    if (!report.keptAs.empty()) {
        stamp = {};
    }
    reports.push_back(std::move(report));
    return ERROR_FILE_NOT_FOUND;
}

DWORD SettingsFile::Save(std::vector<ProfileReport>& reports)
{
    if (!isChanged) {
        return ERROR_SUCCESS;
    }
    const FileLock lock(folderLock);
    DWORD code = lock.GetError();
    if (code == ERROR_SUCCESS && GetFileStamp(path) != stamp) {
        code = MergeFile(reports);
    }
    if (code != ERROR_SUCCESS) {
        return code;
    }
    text = FormatProfile(*root, std::move(text));
    code =
        text.size() <= maxProfileBytes ? ReplaceWholeFile(path, text, stamp) : ERROR_FILE_TOO_LARGE;
    if (code == ERROR_SUCCESS) {
        root->ForgetChanges();
        isChanged = false;
    }
    return code;
}

// Where the other file is damaged, what we know is the best that there is.
DWORD SettingsFile::MergeFile(std::vector<ProfileReport>& reports)
{
    std::shared_ptr<ProfileNode> tree;
    const std::size_t before = reports.size();
    const DWORD code = ReadOrKeepAside(tree, reports);
    if (code == ERROR_FILE_NOT_FOUND) {
        if (reports.size() == before) {
            ProfileNode nothing;
            root->Merge(nothing);
        }
        return ERROR_SUCCESS;
    }
    if (code == ERROR_SUCCESS) {
        root->Merge(*tree);
    }
    return code;
}

DWORD SettingsFile::Delete()
{
    DWORD code = ERROR_SUCCESS;
    {
        const FileLock lock(folderLock);
        code = lock.GetError() == ERROR_SUCCESS ? DeleteWholeFile(path) : lock.GetError();
    }
    if (code == ERROR_FILE_NOT_FOUND && Exists()) {
        code = ERROR_SUCCESS;
    }
    if (code == ERROR_SUCCESS) {
        root->Detach();
        isChanged = false;
    }
    return code;
}
