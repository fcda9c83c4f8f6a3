// tesk random, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/runtool.h"

using ::testing::HasSubstr;

TEST(RandomCommand, WritesTheFormula)
{
    const struct {
        const char *options, *formula;
    } rows[] = {
        {"--dist normal --mean 100 --deviation 15 --seed 5 --period 10ns", "\\RANDOM\\2\\5\\100\\15\\10.000000ns"},
        {"--low -5 --high 5 --period 10ns", "\\RANDOM\\1\\0\\-5\\5\\10.000000ns"},
        {"--dist exponential --mean 3 --period 10ps", "\\RANDOM\\3\\0\\3\\10.000000ps"},
        {"--dist poisson --mean 3 --period '1.5 ns'", "\\RANDOM\\4\\0\\3\\1500.000000ps"},
        {"--dist chi-square --degrees 4 --period 2sec", "\\RANDOM\\5\\0\\4\\2.000000sec"},
        {"--dist t --degrees 4 --period 1fs", "\\RANDOM\\6\\0\\4\\1.000000fs"},
        {"--dist erlang --order 2 --mean 0 --period 1ns", "\\RANDOM\\7\\0\\0\\2\\1.000000ns"},
        {"--dist full-range --seed -2147483648 --period 1ns", "\\RANDOM\\8\\-2147483648\\1.000000ns"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk random ") + row.options);
        EXPECT_EQ(run.status, 0) << row.options;
        EXPECT_EQ(run.out, std::string(row.formula) + "\n") << row.options;
        EXPECT_EQ(run.err, "") << row.options;
    }
}

TEST(RandomCommand, WritesWhatCanBePlayed)
{
    const SToolRun run = RunShell("tesk play \"$(tesk random --low 7 --high 7 --period 10ns)\" --format csv "
                                  "--until 20ns");
    EXPECT_THAT(run.out, HasSubstr("10000,10ns,7\n"));
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST(RandomCommand, SaysWhatIsWrongWithAnOption)
{
    const struct {
        const char *options, *message;
    } rows[] = {
        {"--low 1 --high 2", "--period is required"},
        {"--low 1 --high 2 --period 0ns", "--period 0ns: no period above 0; write a number and a unit, such as 10ns"},
        {"--period 1ns", "--dist uniform takes --low and --high; --low is missing"},
        {"--period 1ns --low 5", "--dist uniform takes --low and --high; --high is missing"},
        {"--period 1ns --dist poisson --mean 5 --low 3", "--dist poisson takes --mean; --low does not belong to it"},
        {"--period 1ns --dist full-range --mean 3",
         "--dist full-range takes no parameter; --mean does not belong to it"},
        {"--period 1ns --dist exponential --mean 0", "--mean 0: too small for --dist exponential; give 1 or more"},
        {"--period 1ns --dist t --degrees -1", "--degrees -1: too small for --dist t; give 1 or more"},
        {"--period 1ns --dist erlang --mean 5 --order 0", "--order 0: too small for --dist erlang; give 1 or more"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk random ") + row.options);
        EXPECT_EQ(run.status, 2) << row.options;
        EXPECT_EQ(run.out, "") << row.options;
        EXPECT_EQ(run.err, std::string("tesk: ") + row.message + "\n") << row.options;
    }
}

TEST(RandomCommand, HasAnExampleInItsHelp)
{
    const SToolRun run = RunShell("tesk random --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("Example: tesk random --dist normal"));
}
