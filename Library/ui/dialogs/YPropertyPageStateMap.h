// YPropertyPageStateMap.h: how the pages of a property tree were left.
#pragma once

#include "CommonUiApi.h"
#include "YMap.h"
#include "YUnicodeString.h"
#include "dialogs/YPropertyPageState.h"

// By the name of the page, "Terminal~Colours". The host keeps one from one opening of a dialog to the
// next. Owns the states, which stay where they are until they are removed or replaced; a copy has
// states of its own. What changes it is used through this class, not through the base, which knows
// nothing of ownership. User-interface thread.
class COMMONUI_API YPropertyPageStateMap : public YMap<YUnicodeString, YPropertyPageState*>
{
    using Base = YMap<YUnicodeString, YPropertyPageState*>;

public:
    YPropertyPageStateMap();
    YPropertyPageStateMap(const YPropertyPageStateMap& other);
    YPropertyPageStateMap& operator=(const YPropertyPageStateMap& other);
    ~YPropertyPageStateMap();

    YPropertyPageState* FindEntry(const YUnicodeString& name) const;  // null: there is none
    YPropertyPageState& CreateEntry(const YUnicodeString& name, const YPropertyPageState& state);

    // Takes the state over, which was made with new. Out of memory: throws, and it is deleted.
    void Set(const YUnicodeString& name, YPropertyPageState* state);
    YPropertyPageState& operator[](const YUnicodeString& name);  // made where it is not there
    bool RemoveKey(const YUnicodeString& name);
    void RemoveAll();
};
