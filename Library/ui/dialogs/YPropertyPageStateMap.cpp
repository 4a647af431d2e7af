#include "dialogs/YPropertyPageStateMap.h"

#include <memory>
#include <utility>

YPropertyPageStateMap::YPropertyPageStateMap() = default;

// The pointers are not copied: each map has states of its own.
YPropertyPageStateMap::YPropertyPageStateMap(const YPropertyPageStateMap& other)
    : YPropertyPageStateMap()
{
    for (unsigned i = 0; i < other.GetCount(); ++i) {
        const YUnicodeString& name = other.GetKey(i);
        CreateEntry(name, *other.FindEntry(name));
    }
}

YPropertyPageStateMap& YPropertyPageStateMap::operator=(const YPropertyPageStateMap& other)
{
    if (this != &other) {
        YPropertyPageStateMap copy(other);
        std::swap(static_cast<Base&>(*this), static_cast<Base&>(copy));
    }
    return *this;
}

YPropertyPageStateMap::~YPropertyPageStateMap()
{
    RemoveAll();
}

YPropertyPageState* YPropertyPageStateMap::FindEntry(const YUnicodeString& name) const
{
    YPropertyPageState* const* const entry = Base::FindEntry(name);
    return entry ? *entry : nullptr;
}

YPropertyPageState& YPropertyPageStateMap::CreateEntry(const YUnicodeString& name,
                                                       const YPropertyPageState& state)
{
    auto* const made = new YPropertyPageState(state);  // Set takes it over
    Set(name, made);
    return *made;
}

void YPropertyPageStateMap::Set(const YUnicodeString& name, YPropertyPageState* state)
{
    std::unique_ptr<YPropertyPageState> owned(state);
    YPropertyPageState*& entry = Base::operator[](name);
    if (entry != state) {
        owned.reset(std::exchange(entry, owned.release()));
    } else {
        static_cast<void>(owned.release());
    }
}

YPropertyPageState& YPropertyPageStateMap::operator[](const YUnicodeString& name)
{
    YPropertyPageState* const there = FindEntry(name);
    return there ? *there : CreateEntry(name, {});
}

bool YPropertyPageStateMap::RemoveKey(const YUnicodeString& name)
{
    const std::unique_ptr<YPropertyPageState> removed(FindEntry(name));
    return Base::RemoveKey(name);
}

void YPropertyPageStateMap::RemoveAll()
{
    while (!IsEmpty()) {
        RemoveKey(YUnicodeString(GetKey(0)));
    }
}
