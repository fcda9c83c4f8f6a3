#include "tools/examine/nearname.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

TEST(NameDistance, CountsLettersAndSwapsInAnyCase)
{
    const struct {
        const char *left, *right;
        std::size_t distance;
    } rows[] = {{"", "", 0},      {"abc", "ABC", 0},   {"abc", "abd", 1},        {"abc", "acb", 1}, {"abc", "abcd", 1},
                {"abc", "bc", 1}, {"plya", "play", 1}, {"kitten", "sitting", 3}, {"abc", "xyz", 3}};
    for (const auto &row : rows) {
        EXPECT_EQ(tesk::NameDistance(row.left, row.right, 10), row.distance) << row.left << " " << row.right;
        EXPECT_EQ(tesk::NameDistance(row.right, row.left, 10), row.distance) << row.right << " " << row.left;
    }
    EXPECT_EQ(tesk::NameDistance("abc", "xyz", 1), 2U);
}

TEST(FindNearName, IsTheNearestOfTheNames)
{
    const std::vector<std::string> names = {"tb.clk", "tb.request", "tb.req", "play"};
    EXPECT_EQ(tesk::FindNearName("tb.requst", names), "tb.request");
    EXPECT_EQ(tesk::FindNearName("TB.CLK", names), "tb.clk");
    EXPECT_EQ(tesk::FindNearName("plya", names), "play");
    EXPECT_EQ(tesk::FindNearName("something", names), "");
    EXPECT_EQ(tesk::FindNearName("", names), "");
    EXPECT_EQ(tesk::FindNearName("x", std::vector<std::string>{"y"}), "");
}

TEST(FindNearName, IsAlsoWhatStandsBehindTheLastDot)
{
    const std::vector<std::string> names = {"tb.clk", "tb.request"};
    EXPECT_EQ(tesk::FindNearName("reqest", names), "tb.request");
    EXPECT_EQ(tesk::FindNearName("clk", names), "tb.clk");
    EXPECT_EQ(tesk::FindNearName("top.x", names), "");  // where scopes were typed they count
}

TEST(FindNearName, IsElseOneThatBeginsAlike)
{
    const std::vector<std::string> names = {"--freq", "--from", "--duty"};
    EXPECT_EQ(tesk::FindNearName("--frequency", names), "--freq");
    EXPECT_EQ(tesk::FindNearName("--d", names), "--duty");
    EXPECT_EQ(tesk::FindNearName("--", names), "");
}
