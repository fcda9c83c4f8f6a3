// Several signals on the command line: NAME=FORMULA.
#include "tools/bench/namedformulas.h"

#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/runtool.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char *Counter = R"(\counter\TYPE\1\DIR\1\RADIX\2\START\00\INC\1\PERIOD\10ns\REV\0)";

}  // namespace

TEST(NamedFormula, IsToldByTheNameInFront)
{
    for (const char *named : {"clk=1 0ns", "tb.dut.clk=", "d:bit_vector(3 downto 0)=x\"A\" 0ns", "a[3]=1",
                              "a(0)[1].b=1", "\\odd = name\\=1 0ns", "tb.\\a+b\\.c=1", "_x$1=1", "s:e#1#xc2 ab=a 0ns"})
        EXPECT_TRUE(tesk::IsNamedFormula(named)) << named;
    for (const char *formula :
         {"1 0ns", " a=1 0ns", "1=2 0ns", "/custom f=g,clk", "\\counter\\TYPE\\1=2", "a 5ns, b=c 6ns", "a.=1", ".a=1",
          "a[]=1", "a[3=1", "a:bit(1=2", "\\\\=1", "a", "", "a:b", "x\"=\" 0ns"})
        EXPECT_FALSE(tesk::IsNamedFormula(formula)) << formula;
}

TEST(NamedFormulas, MakeABenchWithPlacesByArgument)
{
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::BenchOfArguments(
        {"tb.clk=1 0ns, 0 5ns -r 10ns", "d:std_logic_vector(7 downto 0)=x\"A5\" 0ns"}, 1000000, 7, faults);
    EXPECT_TRUE(faults.empty());
    EXPECT_EQ(bench.resolution, 1000000);
    ASSERT_EQ(bench.signals.size(), 2U);
    EXPECT_EQ(bench.signals[0].name, "tb.clk");
    EXPECT_EQ(bench.signals[0].formula, "1 0ns, 0 5ns -r 10ns");
    EXPECT_EQ(bench.signals[0].start, 7);
    EXPECT_EQ(bench.signals[1].typeName, "std_logic_vector(7 downto 0)");
    EXPECT_THAT(bench.signals[1].description, StartsWith("a#"));
    EXPECT_EQ(bench.signals[1].place.line, 2);
    EXPECT_EQ(bench.signals[1].place.column, 32);
}

TEST(NamedFormulas, ArePlayedTogether)
{
    const SToolRun run = RunShell("tesk play clk='1 0ns, 0 5ns -r 10ns' "
                                  "'d:std_logic_vector(1 downto 0)=\"01\" 0ns, \"10\" 12ns' --no-elements --until 15ns "
                                  "--format csv");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out,
              "ticks,time,clk,d\n0,0ps,1,01\n5000,5ns,0,01\n10000,10ns,1,01\n12000,12ns,1,10\n15000,15ns,0,10\n");
    EXPECT_EQ(RunShell("tesk play clk='1 5ns' --start 2ns --res 1ns --format csv").out, "ticks,time,clk\n7,7ns,1\n");
}

TEST(NamedFormulas, WalkASharedCounterInStep)
{
    const SToolRun run = RunShell(
        std::string("tesk play 'n:std_logic_vector(1 downto 0)=") + Counter +
        "' 'high=\\counter\\wire\\0\\handle\\0' 'low=\\counter\\wire\\1\\handle\\0' --no-elements --until 40ns");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "ticks,time,n,high,low\n0,0ps,00,0,0\n10000,10ns,01,0,1\n20000,20ns,10,1,0\n30000,30ns,11,1,1\n"
                       "40000,40ns,00,0,0\n");
}

TEST(NamedFormulas, ShareATableAndAFile)
{
    const SToolRun run =
        RunShell("tesk play 'a:integer=/txt examples/sine.txt,time -interval 5ns' "
                 "'b:integer=/txt examples/sine.txt,time -interval 5ns' "
                 "'c=/custom examples/traffic.vcd,tb.request' 'd=/custom examples/traffic.vcd,tb.request' "
                 "--until 10ns");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "ticks,time,a,b,c,d\n0,0ps,0,0,0,0\n5000,5ns,10,10,0,0\n10000,10ns,20,20,0,0\n");
}

TEST(NamedFormulas, EndALittleBehindTheLastThatEnds)
{
    EXPECT_EQ(RunShell("tesk play clk='1 0ns, 0 5ns -r 10ns' rst='1 0ns, 0 12ns' --format csv").out,
              "ticks,time,clk,rst\n0,0ps,1,1\n5000,5ns,0,1\n10000,10ns,1,1\n12000,12ns,1,0\n");
    const SToolRun endless = RunShell("tesk play a='1 0ns, 0 5ns -r 10ns' b='1 0ns, 0 1ns -r 2ns' --format csv");
    EXPECT_THAT(endless.err, HasSubstr("the stimulators go on for ever; these are the first 40 changes"));
    EXPECT_THAT(endless.out, AllOf(HasSubstr("\n39000,39ns,0,0\n"), Not(HasSubstr("\n40000"))));
}

TEST(NamedFormulas, TellAllThatIsWrongInOneRunAndWriteNothing)
{
    const CTemporaryFolder folder;
    const std::string path = folder / "out.csv";
    const SToolRun run =
        RunShell("tesk play a='1 0nz' b='2 -5ns' q:foo='1 0ns' a='1 0ns' t='/txt examples/sine.txt,time' -o " + path);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, AllOf(HasSubstr("tesk: error: signal \"a\": part 1, column 3: unknown time unit \"nz\""),
                               HasSubstr("tesk: error: signal \"b\": formula \"2 -5ns\": part 1"),
                               HasSubstr("tesk: error: signal \"q\": type \"foo\""),
                               HasSubstr("tesk: error: the signal \"a\" is given twice"),
                               HasSubstr("tesk: error: signal \"t\": a table is read by the type of the signal"),
                               HasSubstr("t:integer=FORMULA")));
    EXPECT_FALSE(std::ifstream(path).is_open());
}

TEST(NamedFormulas, StandWithoutWhatIsOfOneSignal)
{
    for (const char *arguments : {"a='1 0ns' '2 0ns'", "'1 0ns' a='2 0ns'", "a='1 0ns' --type bit",
                                  "a='1 0ns' --name b", "examples/counter.toml a='1 0ns'"})
        EXPECT_EQ(RunShell(std::string("tesk play ") + arguments).status, 2) << arguments;
}

TEST(NamedFormulas, LeaveAFormulaWithABlankInFrontAlone)
{
    EXPECT_EQ(RunShell("tesk play ' a=b 5ns' --format csv").out, "ticks,time,value\n5000,5ns,a=b\n");
}
