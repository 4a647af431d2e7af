// CaseName.h: names the cases of a table.
#pragma once

#include <string>

// For INSTANTIATE_TEST_SUITE_P: the case's member name.
struct CaseName
{
    template <class Info>
    std::string operator()(const Info& info) const
    {
        return info.param.name;
    }
};
