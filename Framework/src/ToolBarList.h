// ToolBarList.h: the toolbars of the program.
#pragma once

#include "BCGPToolBar.h"

#include <vector>

// Every toolbar enters itself when it is made and leaves in its end. User-interface thread.
class ToolBarList
{
public:
    static std::vector<CBCGPToolBar*>& GetAll();
};
