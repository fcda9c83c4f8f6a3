// tesk counter, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/runtool.h"

using ::testing::HasSubstr;

TEST(CounterCommand, WritesTheFormula)
{
    const struct {
        const char *options, *formula;
    } rows[] = {
        {"--type gray --width 8 --start 0 --inc 1 --period 10ns",
         "\\counter\\TYPE\\2\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0"},
        {"--period 10ns", "\\counter\\TYPE\\1\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0"},
        {"--period '1.5 us' --down --reverse --radix 16 --start fE --inc 2#11",
         "\\counter\\TYPE\\1\\DIR\\2\\RADIX\\16\\START\\fE\\INC\\2#11\\PERIOD\\1500ns\\REV\\1"},
        {"--period 10ps --start -128",
         "\\counter\\TYPE\\1\\DIR\\1\\RADIX\\10\\START\\-128\\INC\\1\\PERIOD\\10ps\\REV\\0"},
        {"--period 1fs --start 255", "\\counter\\TYPE\\1\\DIR\\1\\RADIX\\10\\START\\255\\INC\\1\\PERIOD\\1fs\\REV\\0"},
        {"--period 1ns --type johnson", "\\counter\\TYPE\\3\\DIR\\1\\RADIX\\10\\START\\0\\INC\\1\\PERIOD\\1ns\\REV\\0"},
        {"--period 1ns --type circular-one",
         "\\counter\\TYPE\\4\\DIR\\1\\RADIX\\10\\START\\1\\INC\\1\\PERIOD\\1ns\\REV\\0"},
        {"--period 1ns --type circular-zero --width 4",
         "\\counter\\TYPE\\5\\DIR\\1\\RADIX\\10\\START\\2#1110\\INC\\1\\PERIOD\\1ns\\REV\\0"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk counter ") + row.options);
        EXPECT_EQ(run.status, 0) << row.options;
        EXPECT_EQ(run.out, std::string(row.formula) + "\n") << row.options;
        EXPECT_EQ(run.err, "") << row.options;
    }
}

TEST(CounterCommand, WritesWhatCanBePlayed)
{
    const SToolRun run = RunShell("tesk play \"$(tesk counter --width 1 --period 10ns)\" --format csv --until 20ns");
    EXPECT_EQ(run.out, "ticks,time,value\n0,0ps,2#0\n10000,10ns,2#1\n20000,20ns,2#0\n");
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST(CounterCommand, SaysWhatIsWrongWithAnOption)
{
    const struct {
        const char *options, *message;
    } rows[] = {
        {"", "--period is required"},
        {"--period 0", "--period 0: no period above 0; write a number and a unit, such as 10ns"},
        {"--period 10xs", "--period 10xs: unknown time unit \"xs\"; use fs, ps, ns, us, ms, sec, min or hr"},
        {"--period 1ns --start 12 --radix 2",
         "--start 12: no number in radix 2; use its digits, or a radix such as in 16#ff"},
        {"--period 1ns --inc x", "--inc x: no number in radix 10; use its digits, or a radix such as in 16#ff"},
        {"--period 1ns --start 256", "--start 256: more than 8 bits; give a larger --width"},
        {"--period 1ns --inc 16 --width 4", "--inc 16: more than 4 bits; give a larger --width"},
        {"--period 1ns --type circular-one --start 6",
         "--start 6: no start of a circular-one counter; of its 8 bits exactly one must be 1"},
        {"--period 1ns --type circular-zero --start 6",
         "--start 6: no start of a circular-zero counter; of its 8 bits exactly one must be 0"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk counter ") + row.options);
        EXPECT_EQ(run.status, 2) << row.options;
        EXPECT_EQ(run.out, "") << row.options;
        EXPECT_EQ(run.err, std::string("tesk: ") + row.message + "\n") << row.options;
    }
}

TEST(CounterCommand, HasAnExampleInItsHelp)
{
    const SToolRun run = RunShell("tesk counter --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("Example: tesk counter --type gray"));
}
