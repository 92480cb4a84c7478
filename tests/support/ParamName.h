#pragma once

#include <gtest/gtest.h>

#include <string>

// Names each row of a table-driven test after its `name` field.
struct ParamName
{
    template <typename Row> std::string operator()(const testing::TestParamInfo<Row> &row) const
    {
        return row.param.name;
    }
};
