// Bench files: what is read of them, and what is told of their faults.
#include "tools/bench/bench.h"

#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/runtool.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class BenchFile : public testing::Test {
protected:
    tesk::SBench Read(const std::string &text)
    {
        std::ofstream(m_folder / "bench.toml") << text;
        std::vector<tesk::SBenchFault> faults;
        tesk::SBench bench = tesk::ReadBench((m_folder / "bench.toml").string(), faults);
        bench.path = "bench.toml";
        m_lines.clear();
        for (const tesk::SBenchFault &fault : faults)
            m_lines.push_back(tesk::FaultLine(bench, fault));
        return bench;
    }

    CTemporaryFolder m_folder;
    std::vector<std::string> m_lines;
};

}  // namespace

TEST_F(BenchFile, HoldsSignalsInTheOrderOfTheFile)
{
    const tesk::SBench bench = Read("resolution = \"1ns\"\nuntil = \"2us\"\nscope = \"tb\"\n"
                                    "[signals]\n"
                                    "rst_n = \"0 0ns, 1 42ns\"\n"
                                    "clk   = \"1 0ns, 0 5ns -r 10ns\"\n"
                                    "count = { type = \"std_logic_vector(3 downto 0)\", formula = \"0000 0ns\", "
                                    "strength = \"Deposit\", start = \"10ns\" }\n");
    EXPECT_THAT(m_lines, IsEmpty());
    EXPECT_EQ(bench.resolution, 1000000);
    EXPECT_EQ(bench.until, 2000);
    ASSERT_EQ(bench.signals.size(), 3U);
    EXPECT_EQ(bench.signals[0].name, "tb.rst_n");
    EXPECT_EQ(bench.signals[0].formula, "0 0ns, 1 42ns");
    EXPECT_EQ(bench.signals[0].strength, tesk::EStrength::Override);
    EXPECT_EQ(bench.signals[1].name, "tb.clk");
    EXPECT_EQ(bench.signals[2].name, "tb.count");
    EXPECT_EQ(bench.signals[2].typeName, "std_logic_vector(3 downto 0)");
    EXPECT_THAT(bench.signals[2].description, HasSubstr("std_logic_vector(3 downto 0)"));
    EXPECT_EQ(bench.signals[2].strength, tesk::EStrength::Deposit);
    EXPECT_EQ(bench.signals[2].start, 10);
    EXPECT_EQ(bench.signals[2].place.line, 7);
}

TEST_F(BenchFile, TakesScopesInsideTheSignals)
{
    const tesk::SBench bench = Read("[signals]\ndut.clk = \"1 0ns\"\n[signals.dut.sub]\na = \"1 0ns\"\n"
                                    "b = { formula = \"0 0ns\" }\n");
    EXPECT_THAT(m_lines, IsEmpty());
    std::vector<std::string> names;
    for (const tesk::SBenchSignal &signal : bench.signals)
        names.push_back(signal.name);
    EXPECT_THAT(names, ElementsAre("dut.clk", "dut.sub.a", "dut.sub.b"));
}

TEST_F(BenchFile, HoldsReplays)
{
    const tesk::SBench bench =
        Read("[[replay]]\nfile = \"run1.fst\"\nscope = \"tb.dut\"\ndrive = [\"clk\", \"din*\"]\n"
             "compare = \"dout*\"\nx = \"match\"\ntolerance = \"2ns\"\nfrom = \"5ns\"\nreal_tolerance = 0.5\n"
             "[[replay]]\nfile = \"run2.fst\"\nscope = \"a\"\nto = \"b\"\n");
    EXPECT_THAT(m_lines, IsEmpty());
    ASSERT_EQ(bench.replays.size(), 2U);
    EXPECT_EQ(bench.replays[0].file, "run1.fst");
    EXPECT_EQ(bench.replays[0].to, "tb.dut");
    EXPECT_THAT(bench.replays[0].drive, ElementsAre("clk", "din*"));
    EXPECT_THAT(bench.replays[0].compare, ElementsAre("dout*"));
    EXPECT_TRUE(bench.replays[0].matchesUnknown);
    EXPECT_EQ(bench.replays[0].tolerance, 2000);
    EXPECT_EQ(bench.replays[0].from, 5000);
    EXPECT_EQ(bench.replays[0].realTolerance, 0.5);
    EXPECT_EQ(bench.replays[1].realTolerance, std::nullopt);
    EXPECT_EQ(bench.replays[1].to, "b");
    EXPECT_FALSE(bench.replays[1].matchesUnknown);
}

TEST_F(BenchFile, TakesNumbersOfZeroOrAboveForADistance)
{
    for (const char *text : {"0", "2", "1e-9"})
        EXPECT_TRUE(
            Read(std::string("[[replay]]\nfile = \"a.fst\"\nreal_tolerance = ") + text + "\n").replays[0].realTolerance)
            << text;
    EXPECT_THAT(m_lines, IsEmpty());
    for (const char *text : {"-1", "nan", "inf", "\"1\""}) {
        Read(std::string("[[replay]]\nfile = \"a.fst\"\nreal_tolerance = ") + text + "\n");
        EXPECT_THAT(m_lines, ElementsAre(HasSubstr("bench.toml:3:18: error: real_tolerance is a number of 0 or above")))
            << text;
    }
}

TEST_F(BenchFile, TellsEveryFaultWithItsPlace)
{
    Read("resoluton = \"1ns\"\n"
         "until = \"10nz\"\n"
         "[signals]\n"
         "clk = \"1 0ns, 0 5nz\"\n"
         "a = 5\n"
         "b = { type = \"std_logc\", formula = \"1 0ns\", strenght = \"drive\" }\n"
         "c = { type = \"bit\", strength = \"strong\" }\n"
         "[[replay]]\n"
         "x = \"maybe\"\n"
         "drive = [1]\n");
    EXPECT_THAT(
        m_lines,
        ElementsAre(HasSubstr("bench.toml:1:1: error: no key \"resoluton\" of a bench (did you mean \"resolution\"?)"),
                    AllOf(HasSubstr("bench.toml:2:9: error: until 10nz: unknown time unit \"nz\"")),
                    AllOf(HasSubstr("bench.toml:4:7: error: signal \"clk\""), HasSubstr("did you mean ns?")),
                    HasSubstr("bench.toml:5:5: error: a signal is a formula or a table"), HasSubstr("bench.toml:6:"),
                    HasSubstr("bench.toml:6:"), HasSubstr("has no formula"),
                    HasSubstr("no strength \"strong\"; write override, deposit or drive"),
                    HasSubstr("the replay has no file"), HasSubstr("x is \"ignore\" or \"match\""),
                    HasSubstr("drive holds texts only")));
}

TEST_F(BenchFile, TellsWhereItIsNoToml)
{
    Read("[signals\nclk = 1\n");
    ASSERT_EQ(m_lines.size(), 1U);
    EXPECT_THAT(m_lines[0], HasSubstr("bench.toml:1:9: error: "));
}

TEST_F(BenchFile, TellsWhatCannotBeRead)
{
    std::vector<tesk::SBenchFault> faults;
    tesk::ReadBench((m_folder / "missing.toml").string(), faults);
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_THAT(faults[0].text, HasSubstr("No such file"));
    Read("");
    EXPECT_THAT(m_lines, ElementsAre(HasSubstr("the bench has no signals")));
}

TEST_F(BenchFile, TellsWarningsToo)
{
    Read("[signals]\na = \"1 0ns, 0 5ns -r 30\"\n");
    ASSERT_EQ(m_lines.size(), 2U);
    EXPECT_THAT(m_lines[0], HasSubstr("bench.toml:2:5: warning: signal \"a\": part 2"));
}

TEST_F(BenchFile, IsCheckedByTheTool)
{
    Read("[signals]\nclk = \"1 0ns, 0 5ns -r 10ns\"\nn = { type = \"std_logic_vector(2 downto 0)\", formula = "
         "'\\counter\\TYPE\\2\\DIR\\1\\RADIX\\10\\START\\000\\INC\\1\\PERIOD\\10ns\\REV\\0' }\n");
    const std::string path = (m_folder / "bench.toml").string();
    SToolRun run = RunShell("tesk check " + path);
    EXPECT_EQ(run.out, "2 signals, 0 replays: 0 errors, 0 warnings\n");
    EXPECT_EQ(run.status, 0);

    Read("[signals]\nclk = \"1 0ns, 0 5nz -r 10ns\"\nq = \"1 -5ns\"\n");
    run = RunShell("tesk check " + path);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, AllOf(HasSubstr(":2:7: error: signal \"clk\": part 2"), HasSubstr(":3:5: error: signal \"q\""),
                               HasSubstr("2 signals, 0 replays: 2 errors, 0 warnings\n")));
    run = RunShell("tesk check " + path + " --format json");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, HasSubstr("\"line\":2"));
}

TEST_F(BenchFile, IsPlayedWithAllItsSignals)
{
    Read("until = \"20ns\"\nscope = \"tb\"\n[signals]\nclk = \"1 0ns, 0 5ns -r 10ns\"\n"
         "n = { type = \"std_logic_vector(1 downto 0)\", start = \"5ns\", formula = \"00 0ns, 11 5ns\" }\n");
    const std::string play = "tesk play " + (m_folder / "bench.toml").string();
    EXPECT_EQ(RunShell(play + " --format csv --no-elements").out, "ticks,time,tb.clk,tb.n\n"
                                                                  "0,0ps,1,\n"
                                                                  "5000,5ns,0,00\n"
                                                                  "10000,10ns,1,11\n"
                                                                  "15000,15ns,0,11\n"
                                                                  "20000,20ns,1,11\n");
    const SToolRun dump = RunShell(play + " --format vcd");
    EXPECT_THAT(dump.out, AllOf(HasSubstr("$scope module tb $end\n$var wire 1 ! clk $end\n$var wire 2 \" n [1:0] $end\n"
                                          "$upscope $end\n"),
                                HasSubstr("#10000\n1!\nb11 \"\n")));
    EXPECT_EQ(dump.err, "");
    EXPECT_EQ(RunShell(play + " --type bit").status, 2);
}

TEST_F(BenchFile, EndsWithTheLastStimulatorThatEnds)
{
    Read("[signals]\nclk = \"1 0ns, 0 5ns -r 10ns\"\nrst = \"1 0ns, 0 12ns\"\n");
    const SToolRun run = RunShell("tesk play " + (m_folder / "bench.toml").string() + " --format csv");
    EXPECT_EQ(run.out, "ticks,time,clk,rst\n0,0ps,1,1\n5000,5ns,0,1\n10000,10ns,1,1\n12000,12ns,1,0\n");
    EXPECT_EQ(run.err, "");
}

TEST_F(BenchFile, IsNotPlayedWhereItCannotBeRead)
{
    Read("[signals]\nclk = \"1 0ns\"\nb = 7\n");
    const SToolRun run = RunShell("tesk play " + (m_folder / "bench.toml").string() + " --format csv");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr(":3:5: error: a signal is a formula or a table"));
}
