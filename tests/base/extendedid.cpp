#include "base/extendedid.h"

#include <gtest/gtest.h>

#include <cstddef>

TEST(ExtendedLength, IsThatOfTheIdentifierInFront)
{
    const struct {
        const char *name;
        std::size_t length;
    } rows[] = {
        {"", 0},          {"a", 0},        {"a\\b\\", 0},       {"\\", 0},
        {"\\a", 0},       {"\\a\\", 3},    {"\\a\\.b\\c\\", 3}, {"\\a+b c\\(3)", 7},
        {"\\\\", 2},      {"\\\\\\", 0},   {"\\a\\\\b\\", 6},   {"\\a\\\\", 0},
        {"\\a\\\\\\", 5}, {"\\\\\\\\", 4},
    };
    for (const auto &row : rows)
        EXPECT_EQ(tesk::ExtendedLength(row.name), row.length) << row.name;
}
