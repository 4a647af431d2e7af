#include "FolderStore.h"

#include "KeyNames.h"
#include "SettingsFile.h"

#include <YLongPath.h>
#include <YUniqueHandle.h>

#include <exception>
#include <set>
#include <utility>

namespace {

constexpr wchar_t lockFileName[] = L".lock";

// With a separator at its end.
std::wstring GetFullFolder(std::wstring folder)
{
    if (folder.empty()) {
        folder = L".";
    }
    std::wstring full(::GetFullPathNameW(folder.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(
        ::GetFullPathNameW(folder.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    if (!full.ends_with(L'\\')) {
        full += L'\\';
    }
    return full;
}

// In the form without a limit where it, or the name of a file beside it, comes near the limit.
std::wstring GetUsablePath(const std::wstring& path)
{
    constexpr std::size_t margin = 16;
    if (path.size() + margin < MAX_PATH) {
        return path;
    }
    const YUnicodeString longForm = YAddLongPathPrefix(path.c_str());
    return longForm.IsEmpty() ? path : longForm.c_str();
}

}  // namespace

FolderStore::Visit::Visit(FolderStore& visited) : store(visited)
{
    store.lock.lock();
}

FolderStore::Visit::~Visit()
{
    if (store.files.empty()) {
        store.lockFile.Close();
    }
    store.lock.unlock();
    if (!store.sink) {
        return;
    }
    try {
        for (const ProfileReport& report : reports) {
            store.sink(report);
        }
    } catch (const std::exception&) {}  // nobody is left to tell
}

FolderStore::FolderStore(const std::wstring& folderPath, ProfileReportSink reportSink)
    : folder(GetFullFolder(folderPath)),
      sink(std::move(reportSink)),
      lockFile(GetUsablePath(folder + lockFileName))
{}

FolderStore::~FolderStore() = default;

DWORD FolderStore::Open(Visit& visit, const std::wstring& fileName, Missing missing,
                        std::shared_ptr<SettingsFile>& file)
{
    const auto found = files.find(fileName);
    if (found != files.end()) {
        file = found->second;
        ++file->references;
        return ERROR_SUCCESS;
    }
    auto opened = std::make_shared<SettingsFile>(GetUsablePath(folder + fileName), lockFile);
    const DWORD code = opened->Load(visit.reports);
    if (code != ERROR_SUCCESS && (code != ERROR_FILE_NOT_FOUND || missing == Missing::Fails)) {
        return code;
    }
    if (code != ERROR_SUCCESS && missing == Missing::IsMade) {
        opened->MarkChanged();
    }
    files.emplace(fileName, opened);
    ++opened->references;
    file = std::move(opened);
    return ERROR_SUCCESS;
}

DWORD FolderStore::Save(Visit& visit, SettingsFile& file)
{
    return file.Save(visit.reports);
}

// The first failure; the others are saved all the same.
DWORD FolderStore::SaveAll(Visit& visit)
{
    DWORD result = ERROR_SUCCESS;
    for (const auto& [name, file] : files) {
        const DWORD code = file->Save(visit.reports);
        result = result == ERROR_SUCCESS ? code : result;
    }
    return result;
}

DWORD FolderStore::Delete(Visit&, const std::wstring& fileName)
{
    const auto found = files.find(fileName);
    if (found == files.end()) {
        return SettingsFile(GetUsablePath(folder + fileName), lockFile).Delete();
    }
    const DWORD code = found->second->Delete();
    if (code == ERROR_SUCCESS) {
        files.erase(found);
    }
    return code;
}

std::vector<YUnicodeString> FolderStore::GetKeyNames(Visit&) const
{
    std::set<std::wstring, NameLess> names;
    WIN32_FIND_DATAW entry{};
    const YUniqueFind search(::FindFirstFileW(GetUsablePath(folder + L"*").c_str(), &entry));
    for (BOOL more = static_cast<bool>(search); more;
         more = ::FindNextFileW(search.Get(), &entry)) {
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
            names.emplace(entry.cFileName);
        }
    }
    for (const auto& [name, file] : files) {
        if (file->Exists()) {
            names.insert(name);
        }
    }
    std::vector<YUnicodeString> keys;
    for (const std::wstring& name : names) {
        if (const std::optional<std::wstring> key = GetFileKeyName(name)) {
            keys.emplace_back(*key);
        }
    }
    return keys;
}

void FolderStore::Release(const std::shared_ptr<SettingsFile>& file) noexcept
{
    Visit visit(*this);
    if (--file->references > 0) {
        return;
    }
    try {
        Close(visit, file);
    } catch (const std::exception&) {}  // no memory even to report that
}

void FolderStore::Close(Visit& visit, const std::shared_ptr<SettingsFile>& file)
{
    const auto found = files.find(file->GetPath().substr(file->GetPath().rfind(L'\\') + 1));
    if (found != files.end() && found->second == file) {
        files.erase(found);
    }
    DWORD code = ERROR_NOT_ENOUGH_MEMORY;
    try {
        code = file->Save(visit.reports);
    } catch (const std::bad_alloc&) {}
    if (code != ERROR_SUCCESS) {
        visit.reports.push_back(
            {ProfileReport::Incident::SaveFailed, file->GetPath(), {}, YReportMessageParams(code)});
    }
}
