#include "FolderProfile.h"

#include "FolderStore.h"
#include "KeyNames.h"
#include "ProfileTree.h"
#include "SettingsFile.h"

#include <IProfile.h>
#include <IProfileKey.h>
#include <YReportMessageParams.h>
#include <YUnknown.h>
#include <YUnknownPointer.h>

#include <optional>
#include <string_view>
#include <utility>

namespace {

using Visit = FolderStore::Visit;

std::wstring_view View(const wchar_t* name)
{
    return name ? name : L"";
}

bool Tell(YReportMessageParams& error, DWORD code)
{
    if (code != ERROR_SUCCESS) {
        error.SetErrorCode(code);
    }
    return code == ERROR_SUCCESS;
}

// One reference of a file; empty or owned.
class FileReference
{
public:
    FileReference() = default;
    FileReference(std::shared_ptr<FolderStore> folder, std::shared_ptr<SettingsFile> adopted)
        : store(std::move(folder)), file(std::move(adopted))
    {}
    FileReference(FileReference&&) noexcept = default;
    FileReference& operator=(FileReference&& other) noexcept
    {
        std::swap(store, other.store);
        std::swap(file, other.file);
        return *this;
    }
    ~FileReference()
    {
        if (file) {
            store->Release(file);
        }
    }

    // During a visit.
    FileReference Share() const
    {
        ++file->references;
        return {store, file};
    }
    explicit operator bool() const { return static_cast<bool>(file); }
    SettingsFile* operator->() const { return file.get(); }
    SettingsFile& operator*() const { return *file; }

private:
    std::shared_ptr<FolderStore> store;
    std::shared_ptr<SettingsFile> file;
};

// A key below the root, or the root's values. What the operations have in common: a visit, the node,
// the code for the caller.
class FolderKey : public YUnknown<IProfileKey>
{
public:
    // Made before the visit that opens it: what must be undone there dies after the lock is free.
    FolderKey(std::shared_ptr<FolderStore> folder, unsigned keyDepth)
        : store(std::move(folder)), depth(keyDepth)
    {}
    void Open(FileReference owned, std::shared_ptr<ProfileNode> key)
    {
        file = std::move(owned);
        node = std::move(key);
    }

    bool OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                 YReportMessageParams& error) override;
    void GetKeyNames(std::vector<YUnicodeString>& names) override;
    void GetValueNames(std::vector<YProfileValueName>& names) override;
    bool ReadDWORD(const wchar_t* name, DWORD& value, YReportMessageParams& error) override
    {
        return Read(name, value, error);
    }
    bool ReadString(const wchar_t* name, YUnicodeString& value,
                    YReportMessageParams& error) override
    {
        return Read(name, value, error);
    }
    bool ReadBinary(const wchar_t* name, std::vector<BYTE>& value,
                    YReportMessageParams& error) override
    {
        return Read(name, value, error);
    }
    bool WriteDWORD(const wchar_t* name, DWORD value, YReportMessageParams& error) override
    {
        return Write(name, value, error);
    }
    bool WriteString(const wchar_t* name, const YUnicodeString& value,
                     YReportMessageParams& error) override
    {
        return Write(name, value, error);
    }
    bool WriteBinary(const wchar_t* name, const BYTE* data, unsigned size,
                     YReportMessageParams& error) override
    {
        return Write(name, std::vector<BYTE>(data, data + size), error);
    }
    bool DeleteValue(const wchar_t* name, YReportMessageParams& error) override;
    bool DeleteKey(const wchar_t* name, YReportMessageParams& error) override;
    bool Flush(YReportMessageParams& error) override;

protected:
    // Makes file and node usable.
    virtual DWORD Reach(Visit& visit);

    const std::shared_ptr<FolderStore> store;
    FileReference file;
    std::shared_ptr<ProfileNode> node;

private:
    template <class Value>
    bool Read(const wchar_t* name, Value& value, YReportMessageParams& error);
    bool Write(const wchar_t* name, ProfileData data, YReportMessageParams& error);
    DWORD OpenChild(const wchar_t* name, bool create, std::shared_ptr<ProfileNode>& child);

    const unsigned depth;  // in the file, 1: its own key
};

DWORD FolderKey::Reach(Visit&)
{
    return node->IsDetached() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

template <class Value>
bool FolderKey::Read(const wchar_t* name, Value& value, YReportMessageParams& error)
{
    Visit visit(*store);
    if (!Tell(error, Reach(visit))) {
        return false;
    }
    const ProfileValue* const found = node->GetValues().Find(View(name));
    if (!found) {
        return Tell(error, ERROR_FILE_NOT_FOUND);
    }
    const Value* const data = std::get_if<Value>(&found->data);
    if (!data) {
        return Tell(error, ERROR_DATATYPE_MISMATCH);
    }
    value = *data;
    return true;
}

bool FolderKey::Write(const wchar_t* name, ProfileData data, YReportMessageParams& error)
{
    Visit visit(*store);
    if (!Tell(error, Reach(visit))) {
        return false;
    }
    if (node->Write(View(name), std::move(data))) {
        file->MarkChanged();
    }
    return true;
}

bool FolderKey::DeleteValue(const wchar_t* name, YReportMessageParams& error)
{
    Visit visit(*store);
    if (!Tell(error, Reach(visit))) {
        return false;
    }
    if (!node->DeleteValue(View(name))) {
        return Tell(error, ERROR_FILE_NOT_FOUND);
    }
    file->MarkChanged();
    return true;
}

DWORD FolderKey::OpenChild(const wchar_t* name, bool create, std::shared_ptr<ProfileNode>& child)
{
    if (View(name).empty()) {
        return ERROR_INVALID_PARAMETER;
    }
    child = node->FindChild(name);
    if (child) {
        return ERROR_SUCCESS;
    }
    if (!create) {
        return ERROR_FILE_NOT_FOUND;
    }
    if (depth == ProfileNode::maxDepth) {
        return ERROR_FILENAME_EXCED_RANGE;
    }
    child = node->MakeChild(name);
    file->MarkChanged();
    return ERROR_SUCCESS;
}

bool FolderKey::OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                        YReportMessageParams& error)
{
    *key = nullptr;
    auto opened = YUnknownPointer<FolderKey>::Make(store, depth + 1);
    Visit visit(*store);
    std::shared_ptr<ProfileNode> child;
    if (!Tell(error, Reach(visit)) || !Tell(error, OpenChild(name, create, child))) {
        return false;
    }
    opened->Open(file.Share(), std::move(child));
    *key = opened.Detach();
    return true;
}

void FolderKey::GetKeyNames(std::vector<YUnicodeString>& names)
{
    Visit visit(*store);
    names.clear();
    for (const ProfileChild& child : node->GetChildren()) {
        names.push_back(child.name);
    }
}

void FolderKey::GetValueNames(std::vector<YProfileValueName>& names)
{
    Visit visit(*store);
    names.clear();
    if (Reach(visit) != ERROR_SUCCESS) {
        return;
    }
    for (const ProfileValue& value : node->GetValues()) {
        names.push_back({value.name, value.GetKind()});
    }
}

bool FolderKey::DeleteKey(const wchar_t* name, YReportMessageParams& error)
{
    Visit visit(*store);
    if (!Tell(error, Reach(visit))) {
        return false;
    }
    if (!node->DeleteChild(View(name))) {
        return Tell(error, ERROR_FILE_NOT_FOUND);
    }
    file->MarkChanged();
    return true;
}

bool FolderKey::Flush(YReportMessageParams& error)
{
    Visit visit(*store);
    return Tell(error, Reach(visit)) && Tell(error, store->Save(visit, *file));
}

// Its children are files. Its own values are in one as well, which is opened when they are asked
// for: most hosts have none, and where that file cannot be read the others still can.
class FolderRootKey : public FolderKey
{
public:
    explicit FolderRootKey(std::shared_ptr<FolderStore> folder) : FolderKey(std::move(folder), 0) {}

    bool OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                 YReportMessageParams& error) override;
    void GetKeyNames(std::vector<YUnicodeString>& names) override;
    bool DeleteKey(const wchar_t* name, YReportMessageParams& error) override;
    bool Flush(YReportMessageParams& error) override;

private:
    DWORD Reach(Visit& visit) override;
};

DWORD FolderRootKey::Reach(Visit& visit)
{
    if (file) {
        return ERROR_SUCCESS;
    }
    std::shared_ptr<SettingsFile> opened;
    const DWORD code = store->Open(visit, rootFileName, FolderStore::Missing::IsEmpty, opened);
    if (code == ERROR_SUCCESS) {
        Open(FileReference(store, opened), opened->GetRoot());
    }
    return code;
}

// A key of the root that has no file name, or too long a one, cannot be there.
DWORD GetFileName(const wchar_t* key, std::wstring& fileName)
{
    if (View(key).empty()) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::optional<std::wstring> name = GetKeyFileName(key);
    fileName = name.value_or(std::wstring());
    return name ? ERROR_SUCCESS : ERROR_FILENAME_EXCED_RANGE;
}

bool FolderRootKey::OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                            YReportMessageParams& error)
{
    *key = nullptr;
    std::wstring fileName;
    if (!Tell(error, GetFileName(name, fileName))) {
        return false;
    }
    auto opened = YUnknownPointer<FolderKey>::Make(store, 1u);
    Visit visit(*store);
    const auto missing = create ? FolderStore::Missing::IsMade : FolderStore::Missing::Fails;
    std::shared_ptr<SettingsFile> found;
    if (!Tell(error, store->Open(visit, fileName, missing, found))) {
        return false;
    }
    opened->Open(FileReference(store, found), found->GetRoot());
    *key = opened.Detach();
    return true;
}

void FolderRootKey::GetKeyNames(std::vector<YUnicodeString>& names)
{
    Visit visit(*store);
    names = store->GetKeyNames(visit);
}

bool FolderRootKey::DeleteKey(const wchar_t* name, YReportMessageParams& error)
{
    std::wstring fileName;
    if (!Tell(error, GetFileName(name, fileName))) {
        return false;
    }
    Visit visit(*store);
    return Tell(error, store->Delete(visit, fileName));
}

bool FolderRootKey::Flush(YReportMessageParams& error)
{
    Visit visit(*store);
    return Tell(error, store->SaveAll(visit));
}

class FolderProfile : public YUnknown<IProfile>
{
public:
    explicit FolderProfile(std::shared_ptr<FolderStore> folder) : store(std::move(folder)) {}

    bool OpenRoot(IProfileKey** root, YReportMessageParams&) override
    {
        *root = new FolderRootKey(store);
        return true;
    }

private:
    const std::shared_ptr<FolderStore> store;
};

}  // namespace

FolderProfileFactory::FolderProfileFactory(const std::wstring& folder, ProfileReportSink sink)
    : store(std::make_shared<FolderStore>(folder, std::move(sink)))
{}

FolderProfileFactory::~FolderProfileFactory() = default;

bool FolderProfileFactory::CreateProfile(IProfile** profile, YReportMessageParams&)
{
    *profile = new FolderProfile(store);
    return true;
}
