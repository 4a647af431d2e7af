// YPropertyPageState.h: what is remembered of a page of a property tree.
#pragma once

struct YPropertyPageState
{
    bool expanded = false;  // its branch of the tree
    bool selected = false;

    bool operator==(const YPropertyPageState&) const = default;
};
