#include "ProfileTree.h"

#include "ProfileText.h"

#include <algorithm>

namespace {

constexpr bool IsAscii(wchar_t unit)
{
    return unit < 0x80;
}

constexpr wchar_t ToUpper(wchar_t unit)
{
    return unit >= L'a' && unit <= L'z' ? static_cast<wchar_t>(unit - L'a' + L'A') : unit;
}

}  // namespace

// The system compares unit by unit, so ASCII at the front can be decided here; asking it costs more
// than all else that finding a value does.
bool NameLess::operator()(std::wstring_view left, std::wstring_view right) const
{
    const std::size_t common = std::min(left.size(), right.size());
    std::size_t i = 0;
    for (; i < common && IsAscii(left[i]) && IsAscii(right[i]); ++i) {
        if (ToUpper(left[i]) != ToUpper(right[i])) {
            return ToUpper(left[i]) < ToUpper(right[i]);
        }
    }
    if (i == common) {
        return left.size() < right.size();
    }
    return ::CompareStringOrdinal(left.data() + i, static_cast<int>(left.size() - i),
                                  right.data() + i, static_cast<int>(right.size() - i),
                                  TRUE) == CSTR_LESS_THAN;
}

bool ProfileNode::Write(std::wstring_view name, ProfileData data)
{
    ProfileValue* value = values.Find(name);
    if (value && value->data == data) {
        return false;
    }
    if (value) {
        value->SetData(std::move(data));
        value->changedIn = period;
    } else {
        value = &values.Add({YUnicodeString(name), std::move(data), period});
        deletedValues.erase(value->name.c_str());
    }
    value->line = FormatValue(*value);
    return true;
}

void ProfileNode::Load(std::wstring_view name, ProfileData data)
{
    if (ProfileValue* const value = values.Find(name)) {
        value->SetData(std::move(data));
    } else {
        values.Add({YUnicodeString(name), std::move(data)});
    }
}

bool ProfileNode::DeleteValue(std::wstring_view name)
{
    if (!values.Remove(name)) {
        return false;
    }
    deletedValues.emplace(name);
    return true;
}

std::shared_ptr<ProfileNode> ProfileNode::FindChild(std::wstring_view name) const
{
    const ProfileChild* const child = children.Find(name);
    return child ? child->node : nullptr;
}

std::shared_ptr<ProfileNode> ProfileNode::MakeChild(std::wstring_view name)
{
    auto node = std::make_shared<ProfileNode>();
    node->isNew = true;
    return children.Add({YUnicodeString(name), std::move(node)}).node;
}

bool ProfileNode::DeleteChild(std::wstring_view name)
{
    const std::shared_ptr<ProfileNode> child = FindChild(name);
    if (!child) {
        return false;
    }
    child->Detach();
    deletedChildren.emplace(name);
    return children.Remove(name);
}

void ProfileNode::Detach()
{
    isDetached = true;
    for (ProfileChild& child : children) {
        child.node->Detach();
    }
}

void ProfileNode::Merge(ProfileNode& file)
{
    MergeValues(file);
    MergeChildren(file);
}

void ProfileNode::MergeValues(ProfileNode& file)
{
    for (auto value = values.begin(); value != values.end();) {
        const bool stays = IsChanged(*value) || file.values.Find(value->name);
        value = stays ? std::next(value) : values.Remove(value);
    }
    for (ProfileValue& other : file.values) {
        ProfileValue* const own = values.Find(other.name);
        if (own && !IsChanged(*own)) {
            own->SetData(std::move(other.data));
        } else if (!own && !deletedValues.contains(other.name)) {
            values.Add({other.name, std::move(other.data)});
        }
    }
}

void ProfileNode::MergeChildren(ProfileNode& file)
{
    for (const std::wstring& name : deletedChildren) {
        file.children.Remove(name);
    }
    for (auto child = children.begin(); child != children.end();) {
        const std::shared_ptr<ProfileNode> other = file.FindChild(child->name);
        if (!other && !child->node->HasChanges()) {
            child->node->Detach();
            child = children.Remove(child);
            continue;
        }
        ProfileNode nothing;
        child->node->Merge(other ? *other : nothing);
        ++child;
    }
    for (ProfileChild& other : file.children) {
        if (!children.Find(other.name)) {
            children.Add(std::move(other));
        }
    }
}

bool ProfileNode::HasChanges() const
{
    const auto isChanged = [this](const ProfileValue& value) { return IsChanged(value); };
    const auto hasChanges = [](const ProfileChild& child) { return child.node->HasChanges(); };
    return isNew || !deletedValues.empty() || !deletedChildren.empty() ||
           std::any_of(values.begin(), values.end(), isChanged) ||
           std::any_of(children.begin(), children.end(), hasChanges);
}

void ProfileNode::ForgetChanges()
{
    ++period;
    isNew = false;
    deletedValues.clear();
    deletedChildren.clear();
    for (ProfileChild& child : children) {
        child.node->ForgetChanges();
    }
}
