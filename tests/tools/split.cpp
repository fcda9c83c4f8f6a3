// tesk split, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/runtool.h"

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

std::string Split(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk split " + arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return run.out;
}

}  // namespace

TEST(SplitCommand, WritesOneFormulaALine)
{
    EXPECT_EQ(Split("'0110 0ns, 1001 10ns -r 20ns' --count 4"),
              "0 0ns,1 10ns -r 20ns\n1 0ns,0 10ns -r 20ns\n1 0ns,0 10ns -r 20ns\n0 0ns,1 10ns -r 20ns\n");
}

TEST(SplitCommand, TakesAggregatesApart)
{
    EXPECT_EQ(Split("'(1, 0, 1) 5ns' --count 3 --aggregate"), "1 5ns\n0 5ns\n1 5ns\n");
    EXPECT_EQ(Split("'(1, 0) 5ns' --count 3 --aggregate"), "1 5ns\n0 5ns\n\n");
}

TEST(SplitCommand, ReadsTimesAtTheResolutionAndFromTheStart)
{
    const SToolRun run = RunShell("tesk split '1 1500ps -cancel 10ns' --count 1 --res 1ns --start 5ns");
    EXPECT_EQ(run.out, "1 1000ps,-cancel 10ns\n");
    EXPECT_THAT(run.err, HasSubstr("\"1500ps\" is no whole number of ticks of 1ns"));
}

TEST(SplitCommand, WarnsOfLostBits)
{
    const SToolRun run = RunShell("tesk split '1x01 0ns' --count 2");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "0 0ns\n1 0ns\n");
    EXPECT_EQ(run.err, "tesk: warning: a value is too long for 2 elements and lost its leading bits\n");
}

TEST(SplitCommand, SaysInOneLineWhatItRefuses)
{
    const struct {
        const char *arguments;
        const char *message;
    } rows[] = {
        {"'01 0ns, qx01 5ns -r 10ns' --count 2", "part 2, \"qx01 5ns -r 10ns\", cannot be split into 2 elements"},
        {"'() 0ns' --count 2 --aggregate", "part 1, \"() 0ns\", cannot be split into 2 elements"},
        {"'' --count 2", "the formula is empty"},
        {"'1 -5ns' --count 2", "part 1, \"1 -5ns\", has no value or a time below 0"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk split " + std::string(row.arguments));
        EXPECT_EQ(run.status, 1) << row.arguments;
        EXPECT_EQ(run.out, "") << row.arguments;
        EXPECT_THAT(run.err, AllOf(StartsWith("tesk: "), HasSubstr(row.message), EndsWith("\n")));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
}

TEST(SplitCommand, IsRefusedWithoutAUsableCount)
{
    for (const char *arguments : {"'1 0ns'", "'1 0ns' --count 0", "'1 0ns' --count -1", "'1 0ns' --count x",
                                  "'1 0ns' --count 99999999999", "--count 2", "'1 0ns' --count 2 --res 0"})
        EXPECT_EQ(RunShell("tesk split " + std::string(arguments)).status, 2) << arguments;
}
