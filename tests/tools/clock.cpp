// tesk clock, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/runtool.h"

using ::testing::HasSubstr;

TEST(ClockCommand, WritesTheFormula)
{
    const struct {
        const char *options, *formula;
    } rows[] = {
        {"--freq 100MHz", "1 0 ns, 0 5 ns -r 10 ns"},
        {"--freq 100MHz --duty 30 --start-low", "0 0 ns, 1 3 ns -r 10 ns"},
        {"--freq '10 kHz'", "1 0 us, 0 50 us -r 100 us"},
        {"--freq 1hz", "1 0 sec, 0 500 ms -r 1 sec"},
        {"--freq 2.5GHZ", "1 0 us, 0 200 ps -r 400 ps"},
        {"--freq 1e6Hz", "1 0 us, 0 500 ns -r 1 us"},
        {"--freq 30MHz", "1 0 ns, 0 16666666 fs -r 33333333 fs"},
        {"--period 10ns", "1 0 ns, 0 5 ns -r 10 ns"},
        {"--period 10ps", "1 0 ps, 0 5 ps -r 10 ps"},
        {"--period '1.5 us'", "1 0 ns, 0 750 ns -r 1500 ns"},
        {"--period 15ns", "1 0 ns, 0 7500 ps -r 15 ns"},
        {"--period 2fs", "1 0 fs, 0 1 fs -r 2 fs"},
        {"--period 90min", "1 0 min, 0 45 min -r 90 min"},
        {"--period 10ns --offset 0", "1 0 ns, 0 5 ns -r 10 ns"},
        {"--period 10ns --offset 20ns", "1 20 ns, 0 25 ns -r 10 ns"},
        {"--period 15ns --offset 1us", "1 1000 ns, 0 1007500 ps -r 15 ns"},
        {"--period 10us --offset 2.5ns --start-low", "0 2500 ps, 1 5002500 ps -r 10000000 ps"},
        {"--freq 30MHz --offset 10ns", "1 10 ns, 0 26666666 fs -r 33333333 fs"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk clock ") + row.options);
        EXPECT_EQ(run.status, 0) << row.options;
        EXPECT_EQ(run.out, std::string(row.formula) + "\n") << row.options;
        EXPECT_EQ(run.err, "") << row.options;
    }
}

TEST(ClockCommand, WritesWhatCanBePlayed)
{
    const SToolRun run = RunShell("tesk play \"$(tesk clock --freq 100MHz --duty 30 --start-low --offset 5ns)\" "
                                  "--format csv --until 20ns");
    EXPECT_EQ(run.out, "ticks,time,value\n5000,5ns,0\n8000,8ns,1\n15000,15ns,0\n18000,18ns,1\n");
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST(ClockCommand, SaysWhatIsWrongWithAnOption)
{
    const struct {
        const char *options, *message;
    } rows[] = {
        {"", "clock: give one of --freq, such as 100MHz, and --period, such as 10ns"},
        {"--freq 1MHz --period 2ns", "clock: give one of --freq, such as 100MHz, and --period, such as 10ns"},
        {"--freq fast", "--freq fast: no frequency above 0; write a number and a unit, such as 100MHz"},
        {"--freq 0MHz", "--freq 0MHz: no frequency above 0; write a number and a unit, such as 100MHz"},
        {"--freq -5MHz", "--freq -5MHz: no frequency above 0; write a number and a unit, such as 100MHz"},
        {"--freq inf", "--freq inf: no frequency above 0; write a number and a unit, such as 100MHz"},
        {"--freq 1e999Hz", "--freq 1e999Hz: no frequency above 0; write a number and a unit, such as 100MHz"},
        {"--freq 10xHz", "--freq 10xHz: unknown frequency unit \"xHz\"; use Hz, kHz, MHz or GHz"},
        {"--freq 100", "--freq 100: unknown frequency unit \"\"; use Hz, kHz, MHz or GHz"},
        {"--freq 1000000GHz", "--freq 1000000GHz: too fast; each level of the clock must last 1 fs at least"},
        {"--freq 1e-5Hz", "--freq 1e-5Hz: too slow; a period may have 9.2e18 fs at most, about 2.5 hr"},
        {"--period 1fs", "--period 1fs: too fast; each level of the clock must last 1 fs at least"},
        {"--period 0", "--period 0: too fast; each level of the clock must last 1 fs at least"},
        {"--period 10nz", "--period 10nz: unknown time unit \"nz\"; use fs, ps, ns, us, ms, sec, min or hr"},
        {"--period 10fs --duty 5", "--period 10fs: too fast; each level of the clock must last 1 fs at least"},
        {"--period 1ns --duty 0", "--duty 0: no duty cycle; write a whole number of percent, 1 to 99"},
        {"--period 1ns --duty 100", "--duty 100: no duty cycle; write a whole number of percent, 1 to 99"},
        {"--period 1ns --duty 33.3", "--duty 33.3: no duty cycle; write a whole number of percent, 1 to 99"},
        {"--period 1ns --offset -5ns",
         "--offset -5ns: no time of 0 or later; write a number and a unit, such as 10ns or 1.5us"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string("tesk clock ") + row.options);
        EXPECT_EQ(run.status, 2) << row.options;
        EXPECT_EQ(run.out, "") << row.options;
        EXPECT_EQ(run.err, "tesk: " + std::string(row.message) + "\n") << row.options;
    }
}

TEST(ClockCommand, TakesPeriodsOfLessThan9200Seconds)
{
    EXPECT_EQ(RunShell("tesk clock --freq 1.087e-4Hz").status, 0);
    EXPECT_THAT(RunShell("tesk clock --freq 1.0869e-4Hz").err, HasSubstr("a period may have 9.2e18 fs at most"));
}

TEST(ClockCommand, HasAnExampleInItsHelp)
{
    const SToolRun run = RunShell("tesk clock --help");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("tesk clock --freq 100MHz --duty 30 --start-low"));
}

TEST(ClockCommand, WarnsOfATimeWithoutAUnit)
{
    const SToolRun run = RunShell("tesk clock --period 10");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "1 0 ps, 0 5 ps -r 10 ps\n");
    EXPECT_EQ(run.err, "tesk: warning: --period 10 has no unit, and counts picoseconds\n");
}
