#include "platform/fst/fstname.h"

#include <gtest/gtest.h>

namespace {

using NTARN::SFstName;
using NTARN::SplitFstName;

TEST(FstNameSplit, TakesARangeOfTheWholeWidthOffTheName)
{
    const struct {
        const char *text;
        std::uint32_t width;
        const char *base, *index;
        int left, right;
    } rows[] = {
        {"clk", 1, "clk", "", 0, 0},
        {"data", 8, "data", "", 7, 0},
        {"data [7:0]", 8, "data", "", 7, 0},
        {"data[0:7]", 8, "data", "", 0, 7},
        {"data[-1:-4]", 4, "data", "", -1, -4},
        {"bit [0:0]", 1, "bit", "", 0, 0},
        {"bit [3]", 1, "bit", "[3]", 0, 0},
        {"memory[3] [7:0]", 8, "memory[3]", "", 7, 0},
        {"memory [3]", 8, "memory", "[3]", 7, 0},
        {"grid[3:0][1:0]", 8, "grid[3:0]", "[1:0]", 7, 0},
        {"data[7:0]", 4, "data", "[7:0]", 3, 0},
        {"data[7:0", 8, "data[7:0", "", 7, 0},
        {"data[a:b]", 8, "data", "[a:b]", 7, 0},
        {"data[7:0x]", 8, "data", "[7:0x]", 7, 0},
        {"data[99999999999:0]", 8, "data", "[99999999999:0]", 7, 0},
        {"[7:0]", 8, "[7:0]", "", 7, 0},
        {"", 2, "", "", 1, 0},
        {"data  ", 2, "data", "", 1, 0},
        {"\\odd.name[2]", 1, "\\odd.name[2]", "", 0, 0},
        {"\\odd[7:0]", 8, "\\odd[7:0]", "", 7, 0},
        {"\\odd [7:0]", 8, "\\odd", "", 7, 0},
        {"\\memory[1] [7:0]", 8, "\\memory[1]", "", 7, 0},
        {"\\ext.id[3]\\[1:0]", 2, "\\ext.id[3]\\", "", 1, 0},
    };
    for (const auto &row : rows) {
        const SFstName name = SplitFstName(row.text, row.width);
        EXPECT_EQ(name.base, row.base) << row.text;
        EXPECT_EQ(name.index, row.index) << row.text;
        EXPECT_EQ(name.left, row.left) << row.text;
        EXPECT_EQ(name.right, row.right) << row.text;
    }
}

}  // namespace
