#include "support/MemoryProfile.h"

#include <CommonUiInit.h>
#include <IProfile.h>
#include <IProfileKey.h>
#include <YReportMessageParams.h>
#include <YUnicodeString.h>
#include <YUnknown.h>

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

using Data = std::variant<DWORD, YUnicodeString, std::vector<BYTE>>;  // as YProfileValueKind

// As the system compares the names of files.
struct NameLess
{
    bool operator()(const std::wstring& left, const std::wstring& right) const
    {
        return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                      static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
    }
};

MemoryProfile* current = nullptr;  // the host's

YProfileStoreFactory* GetCurrent()
{
    return current;
}

bool Fail(YReportMessageParams& error, DWORD code)
{
    error.SetErrorCode(code);
    return false;
}

}  // namespace

struct MemoryNode
{
    std::map<std::wstring, Data, NameLess> values;
    std::map<std::wstring, std::shared_ptr<MemoryNode>, NameLess> children;
};

namespace {

using SharedTree = std::shared_ptr<MemoryTree>;

class MemoryKey : public YUnknown<IProfileKey>
{
public:
    MemoryKey(SharedTree sharedTree, std::shared_ptr<MemoryNode> sharedNode)
        : tree(std::move(sharedTree)), node(std::move(sharedNode))
    {}

    bool OpenKey(const wchar_t* name, bool create, IProfileKey** key,
                 YReportMessageParams& error) override
    {
        const std::lock_guard lock(tree->lock);
        auto child = node->children.find(name);
        if (child == node->children.end()) {
            if (!create || tree->writeError != 0) {
                return Fail(error, create ? tree->writeError.load() : ERROR_FILE_NOT_FOUND);
            }
            child = node->children.emplace(name, std::make_shared<MemoryNode>()).first;
        }
        *key = new MemoryKey(tree, child->second);
        return true;
    }

    void GetKeyNames(std::vector<YUnicodeString>& names) override
    {
        const std::lock_guard lock(tree->lock);
        for (const auto& [name, child] : node->children) {
            names.emplace_back(name);
        }
    }
    void GetValueNames(std::vector<YProfileValueName>& names) override
    {
        const std::lock_guard lock(tree->lock);
        for (const auto& [name, data] : node->values) {
            names.push_back({YUnicodeString(name), static_cast<YProfileValueKind>(data.index())});
        }
    }

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

    bool DeleteValue(const wchar_t* name, YReportMessageParams& error) override
    {
        return Change(error, [&] { return node->values.erase(name) != 0; });
    }
    bool DeleteKey(const wchar_t* name, YReportMessageParams& error) override
    {
        return Change(error, [&] { return node->children.erase(name) != 0; });
    }
    bool Flush(YReportMessageParams& error) override
    {
        return Change(error, [&] { return ++tree->flushes != 0; });
    }

private:
    template <class Value>
    bool Read(const wchar_t* name, Value& value, YReportMessageParams& error)
    {
        const std::lock_guard lock(tree->lock);
        const auto found = node->values.find(name);
        if (found == node->values.end()) {
            return Fail(error, ERROR_FILE_NOT_FOUND);
        }
        const auto* stored = std::get_if<Value>(&found->second);
        if (!stored) {
            return Fail(error, ERROR_DATATYPE_MISMATCH);
        }
        value = *stored;
        return true;
    }

    bool Write(const wchar_t* name, const Data& data, YReportMessageParams& error)
    {
        return Change(error, [&] {
            node->values[name] = data;
            return true;
        });
    }

    // The change says whether there was what it is about.
    template <class Operation>
    bool Change(YReportMessageParams& error, Operation operation)
    {
        const std::lock_guard lock(tree->lock);
        if (tree->writeError != 0) {
            return Fail(error, tree->writeError);
        }
        return operation() || Fail(error, ERROR_FILE_NOT_FOUND);
    }

    const SharedTree tree;
    const std::shared_ptr<MemoryNode> node;
};

class MemoryProfileObject : public YUnknown<IProfile>
{
public:
    explicit MemoryProfileObject(SharedTree sharedTree) : tree(std::move(sharedTree))
    {
        ++tree->profiles;
    }
    ~MemoryProfileObject() override { --tree->profiles; }

    bool OpenRoot(IProfileKey** root, YReportMessageParams&) override
    {
        *root = new MemoryKey(tree, tree->root);
        return true;
    }

private:
    const SharedTree tree;
};

}  // namespace

MemoryProfile::MemoryProfile(ISynchObject* hostLock)
    : tree(new MemoryTree{{}, std::make_shared<MemoryNode>()})
{
    current = this;
    CommonUiInit(nullptr, &GetCurrent, hostLock);
}

void MemoryProfile::Withdraw()
{
    CommonUiInit(nullptr, nullptr, nullptr);
    current = nullptr;
}

bool MemoryProfile::CreateProfile(IProfile** profile, YReportMessageParams& error)
{
    if (tree->creationError != 0) {
        return Fail(error, tree->creationError);
    }
    *profile = new MemoryProfileObject(tree);
    return true;
}
