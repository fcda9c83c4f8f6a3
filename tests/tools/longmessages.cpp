// Messages about texts that are longer than a reader wants to see.
#include <gmock/gmock.h>

#include <string>

#include "tools/runtool.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(LongMessages, ShortenTheTextOfAnOption)
{
    const SToolRun run = RunShell("tesk play '1 0ns' --until " + std::string(1000, '7') + "x");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, StartsWith("tesk: --until " + std::string(60, '7') + "...: "));
    EXPECT_THAT(run.err, HasSubstr("unknown time unit \"x\""));
    EXPECT_LT(run.err.size(), 300U);
    EXPECT_THAT(RunShell("tesk play '1 0ns' --until " + std::string(1000, '7') + "ns").err,
                HasSubstr("...: too long;"));
    EXPECT_EQ(RunShell("tesk play '1 0ns' --until 0." + std::string(1000, '0') + "7ns").status, 0);
}

TEST(LongMessages, LeaveTheMiddleOut)
{
    const SToolRun run = RunShell("tesk signals " + std::string(20000, 'x'));
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.err, HasSubstr(" ... "));
    EXPECT_LT(run.err.size(), 7000U);
}

TEST(LongMessages, TellThatValuesTakeTooMuchMemory)
{
    const std::string value(100000, 'A');
    const SToolRun run = RunShell("tesk play '" + value + " 0ns, 1 1ns -r 2ns' --until 1ms");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "tesk: the values of the changes have more than 256 MiB; give an earlier end with --until\n");
}

}  // namespace
