// IUpdateData.h: takes over what was entered.
#pragma once

// Plug-ins implement, the pages that embed them call. User-interface thread. The order is binary
// contract.
class IUpdateData
{
public:
    virtual bool SavePageData() = 0;  // false: refused, and the user knows why

protected:
    ~IUpdateData() = default;  // adds no slot; nobody deletes through it
};
