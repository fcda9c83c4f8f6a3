// GHW files, GHDL's own dumps, from the shell.
#include <gmock/gmock.h>

#include "tools/runtool.h"

namespace {

using testing::HasSubstr;

TEST(GhwTool, PlaysAnEnumerationInItsLiterals)
{
    const SToolRun run =
        RunShell("tesk play '/custom tests/data/ghw_types.ghdl.ghw,ghw_types.st' --res 5ns --format csv");
    EXPECT_EQ(run.out, "ticks,time,value\n0,0ns,idle\n2,10ns,run\n7,35ns,\\odd_name\\\n");
    EXPECT_EQ(run.err, "");
}

TEST(GhwTool, PlaysARecordFieldByField)
{
    const SToolRun run =
        RunShell("tesk play '/custom tests/data/ghw_types.ghdl.ghw,ghw_types.pa' --res 1ns --format csv");
    EXPECT_EQ(run.out, "ticks,time,value,.data,.data[1],.data[0],.count\n"
                       "0,0ns,\"(00,0)\",00,0,0,0\n"
                       "15,15ns,\"(01,3)\",01,0,1,3\n"
                       "35,35ns,\"(01,3)\",01,0,1,3\n");
}

TEST(GhwTool, PlaysAnElementOfAnArrayOfTwoDimensions)
{
    const SToolRun run =
        RunShell("tesk play '/custom tests/data/ghw_types.ghdl.ghw,ghw_types.gr(1)(98)' --res 1ns --format csv");
    EXPECT_EQ(run.out, "ticks,time,value\n0,0ns,idle\n15,15ns,run\n35,35ns,run\n");
}

TEST(GhwTool, ListsTheFieldsOfRecordsAsSignals)
{
    const SToolRun run = RunShell("tesk signals tests/data/ghw_types.ghdl.ghw");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\nghw_types.pas[1].data,bit_vector(2 to 4),2,"));
    EXPECT_THAT(run.out, HasSubstr("\nghw_types.pas[1].count,natural,2,"));
    EXPECT_THAT(run.out, HasSubstr("\nghw_types.fa,far,2,"));
}

TEST(GhwTool, ConvertsWhatItReadsWithoutALoss)
{
    const CTemporaryFolder folder;
    const std::string ghw = "tests/data/ghw_types.ghdl.ghw";
    const std::string stream = folder / "run.zyn";
    ASSERT_EQ(RunShell("tesk convert " + ghw + " " + stream).status, 0);
    EXPECT_EQ(RunShell("tesk signals " + stream).out, RunShell("tesk signals " + ghw).out);
    const SToolRun dump = RunShell("tesk convert " + ghw + " -");
    EXPECT_THAT(dump.out, HasSubstr("\nsidle "));
    EXPECT_THAT(dump.out, HasSubstr("\nb01xzhl "));
}

TEST(GhwTool, ReadsACutFileWithAWarning)
{
    const CTemporaryFolder folder;
    const std::string cut = folder / "cut.ghw";
    const SToolRun run = RunShell("head -c 2860 tests/data/ghw_types.ghdl.ghw >" + cut + " && tesk signals " + cut);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "tesk: warning: Waveform file `" + cut + "' is cut off: it is read up to time 15000000.\n");
}

}  // namespace
