// A recorded run compared with the simulation that is driven by it: the example of the guide.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "integrations/simulation.h"
#include "testpaths.h"
#include "tools/compare/longrecord.h"

namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The example in a folder of its own, with the record of its run.
class CRegression : public CSimulation {
public:
    CRegression() { EXPECT_EQ(Make("record run.vvp broken.vvp"), 0) << Output(); }

    int Make(const std::string &targets)
    {
        return Run("cp -n '" TESK_SOURCE_DIR "'/examples/regression/* . ; make -s TESK='" TESK_MODULE_FOLDER "' " +
                   targets);
    }
    // Runs the design that is right with a bench.
    int Replay(const std::string &bench, const std::string &program = "run.vvp")
    {
        Write("bench.toml", bench);
        return Run("vvp -n -M '" TESK_MODULE_FOLDER "' -m tesk " + program + " +tesk=bench.toml");
    }
    std::string LastLine() const
    {
        const std::vector<std::string> lines = Lines("bench.toml");
        return lines.empty() ? "" : lines.back();
    }
};

// When a bit of a recorded vector is first 1.
long long FirstOne(const CChanges &changes, std::size_t place)
{
    const auto change = std::ranges::find_if(changes, [&](const auto &each) { return each.second[place] == '1'; });
    return change != changes.end() ? change->first : -1;
}

// The last of the lines that hold a word.
std::string LastLine(const CSimulation &simulation, const std::string &word)
{
    const std::vector<std::string> lines = simulation.Lines(word);
    return lines.empty() ? "" : lines.back();
}

constexpr const char *Scope = "[[replay]]\nfile = \"run.fst\"\nscope = \"tb.dut\"\n";

}  // namespace

TEST(ReplayCompared, FindsARunOfIcarusEqualInIcarusAndInGhdl)
{
    CRegression regression;
    EXPECT_EQ(regression.Make("replay ghdl"), 0) << regression.Output();
    EXPECT_THAT(regression.Lines("replay.toml"),
                ElementsAre("replay.toml:2:1: 2 signals as in run.fst from 0ps to 500ns",
                            "replay.toml:2:1: 2 signals as in run.fst from 0fs to 500ns"));
}

TEST(ReplayCompared, FindsAMissingGateAtItsFirstTime)
{
    CRegression regression;
    EXPECT_NE(regression.Make("broken"), 0);
    const CChanges sum = regression.Dump("run.fst")["tb.dut.sum"];
    const std::string first = std::to_string(FirstOne(sum, 0) / 1'000'000) + "ns";  // the bit whose gate is missing
    ASSERT_NE(first, "0ns");
    EXPECT_THAT(
        regression.Lines("replay.toml:"),
        ElementsAre(ContainsRegex("replay.toml:2:1: error: tb.dut.odd differs at " + first + ": got ., expected ."),
                    "replay.toml:2:1: error: 1 of 2 signals not as in run.fst from 0ps to 500ns, first tb.dut.odd at " +
                        first));
}

TEST(ReplayCompared, FindsAMissingGateAtItsFirstTimeInGhdlToo)
{
    CRegression regression;
    EXPECT_EQ(regression.Make("ghdl"), 0) << regression.Output();
    EXPECT_NE(regression.Make("ghdl-broken"), 0);
    const CChanges sum = regression.Dump("run.fst")["tb.dut.sum"];
    const std::string first = std::to_string(FirstOne(sum, 0) / 1'000'000) + "ns";
    ASSERT_NE(first, "0ns");
    EXPECT_THAT(
        regression.Lines("replay.toml:"),
        ElementsAre("replay.toml:2:1: 2 signals as in run.fst from 0fs to 500ns",
                    ContainsRegex("replay.toml:2:1: error: tb.dut.odd differs at " + first + ": got ., expected ."),
                    "replay.toml:2:1: error: 1 of 2 signals not as in run.fst from 0fs to 500ns, first tb.dut.odd at " +
                        first));
}

TEST(ReplayCompared, TakesTheSignalsOfPatterns)
{
    CRegression regression;
    EXPECT_EQ(regression.Replay(std::string(Scope) + "compare = [\"s*\", \"parity.bits\"]\n", "broken.vvp"), 0);
    EXPECT_THAT(regression.LastLine(), HasSubstr(": 2 signals as in run.fst from 0ps to 500ns"));
    EXPECT_EQ(regression.Replay(std::string(Scope) + "compare = [\"od\", \"sum\"]\n"), 1);
    EXPECT_THAT(regression.LastLine(), HasSubstr("the file has no signal \"od\" to compare (did you mean \"odd\"?)"));
}

TEST(ReplayCompared, TellsARecordAndASimulationThatEndEarly)
{
    CRegression regression;
    ASSERT_EQ(regression.Run("tesk convert run.fst short.vcd --until 200ns && "
                             "iverilog -g2012 -Ptb.LENGTH=300 -o early.vvp tb.v accumulator.v parity.v"),
              0);
    EXPECT_EQ(regression.Replay("[[replay]]\nfile = \"short.vcd\"\nscope = \"tb.dut\"\n"), 0);
    EXPECT_THAT(
        regression.Lines("short.vcd"),
        ElementsAre("bench.toml:1:1: short.vcd ends at 200ns; what the simulation does behind that is not compared",
                    "bench.toml:1:1: 2 signals as in short.vcd from 0ps to 200ns"));
    EXPECT_EQ(regression.Replay(Scope, "early.vvp"), 1);
    EXPECT_THAT(
        regression.Lines("the simulation ends"),
        ElementsAre(ContainsRegex("bench.toml:1:1: error: the simulation ends at 300ns; in run.fst tb.dut.sum changes "
                                  "at [0-9]+ns")));
    EXPECT_EQ(regression.Replay("until = \"250ns\"\n" + std::string(Scope)), 0);
    EXPECT_THAT(regression.LastLine(), HasSubstr("2 signals as in run.fst from 0ps to 250ns"));
}

TEST(ReplayCompared, TakesRecordsOfAnotherUnitTolerancesAndUnknowns)
{
    CRegression regression;
    // The file counts more finely than the simulation.
    const std::string head =
        "$timescale 100fs $end\n$scope module tb $end\n$var wire 1 ! clk $end\n$var wire 1 \" rst_n $end\n"
        "$var wire 1 # valid $end\n$var wire 8 $ din $end\n$var wire 10 % sum $end\n$var wire 1 & odd $end\n"
        "$upscope $end\n$enddefinitions $end\n";
    const std::string run =
        "#0\n0!\n0\"\n1#\nb1 $\nb0 %\n0&\n#10000\n1\"\n#50000\n1!\nb1 %\n1&\n#100000\n0!\n#150000\n1!\nb10 %\n"
        "#170000\nx&\n#200000\n0!\n#300000\n";
    regression.Write("fine.vcd", head + run);
    const std::string bench =
        "[[replay]]\nfile = \"fine.vcd\"\nscope = \"tb\"\nto = \"tb.dut\"\n"
        "drive = [\"clk\", \"rst_n\", \"valid\", \"din\"]\ncompare = [\"sum\", \"odd\"]\nx = \"match\"\n";
    EXPECT_EQ(regression.Replay(bench), 1);
    EXPECT_THAT(regression.Lines("counts in"),
                ElementsAre(HasSubstr("fine.vcd counts in 100fs, the simulation in 1ps: its times are rounded down")));
    EXPECT_THAT(regression.Lines("differs"), ElementsAre(HasSubstr("tb.dut.odd differs at 17ns: got 1, expected x")));
    EXPECT_EQ(regression.Replay(bench.substr(0, bench.find("x ="))), 0) << regression.Output();
    const std::string late = "[signals]\n\"tb.dut.clk\" = \"0 0ns, 1 6ns, 0 10ns, 1 15ns, 0 20ns\"\n";
    EXPECT_EQ(regression.Replay(late + bench.substr(0, bench.find("x ="))), 1);
    EXPECT_THAT(regression.Lines("differs").back(), HasSubstr(" differs at 5ns: got 0"));
    EXPECT_EQ(regression.Replay(late + bench.substr(0, bench.find("x =")) + "tolerance = \"1ns\"\n"), 0)
        << regression.Output();
}

TEST(ReplayCompared, TakesAWindowAndADistanceOfReals)
{
    CSimulation simulation;
    simulation.Write("run.vcd",
                     "$timescale 1ns $end\n$scope module tb $end\n$var wire 1 ! go $end\n$var real 64 r level $end\n"
                     "$upscope $end\n$enddefinitions $end\n#0\n0!\nr9 r\n#10\n1!\nr1.25 r\n#20\n0!\n#30\n");
    simulation.Write("design.v", "`timescale 1ns / 1ps\nmodule tb;\n  reg go = 0;\n  real level = 1;\n"
                                 "  always @(posedge go) level = 1.5;\n  initial #30 $finish;\nendmodule\n");
    const auto replay = [&](const std::string &more) {
        simulation.Write("bench.toml", "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb\"\ndrive = [\"go\"]\n"
                                       "compare = [\"level\"]\n" +
                                           more);
        return simulation.RunIcarus("+tesk=bench.toml");
    };
    EXPECT_EQ(replay(""), 1);
    EXPECT_THAT(LastLine(simulation, "differs"), HasSubstr("tb.level differs at 0ps: got 1, expected 9"));
    EXPECT_EQ(replay("real_tolerance = 0.25\n"), 1);
    EXPECT_EQ(replay("from = \"10ns\"\n"), 1);
    EXPECT_THAT(LastLine(simulation, "differs"), HasSubstr("tb.level differs at 10ns: got 1.5, expected 1.25"));
    EXPECT_EQ(replay("from = \"10ns\"\nreal_tolerance = 0.25\n"), 0) << simulation.Output();
    EXPECT_THAT(LastLine(simulation, "bench.toml"), HasSubstr(": 1 signal as in run.vcd from 10ns to 30ns"));
}

// A netlist has a bus of its source as single bits, and what simulates it dumps it so.
TEST(ReplayCompared, TakesTheBitsOfARecordForABusAndABusForBits)
{
    CSimulation simulation;
    const std::string head = "`timescale 1ns / 1ps\nmodule ";
    const std::string vectors = head + "half(input clk, input [2:0] in, output reg [1:0] out);\n"
                                       "  always @(posedge clk) out <= in[2:1];\nendmodule\n";
    const std::string bits =
        head + "half(input clk, input \\in[2] , input \\in[1] , input \\in[0] ,\n"
               "  output reg \\out[1] , output reg \\out[0] );\n"
               "  always @(posedge clk) begin \\out[1] <= \\in[2] ; \\out[0] <= \\in[1] ; end\nendmodule\n";
    const std::string test = head + "tb;\n  reg clk = 0;\n  reg [2:0] in = 0;\n  wire [1:0] out;\n"
                                    "  half dut(clk, in[2:0], out);\n"
                                    "  always #5 clk = !clk;\n  always @(negedge clk) in <= 5 * in + 3;\n"
                                    "  initial begin $dumpfile(\"run.vcd\"); $dumpvars(0, tb); end\n"
                                    "  initial #200 $finish;\nendmodule\n";
    const std::string bitTest =
        std::string(test).replace(test.find("in[2:0], out"), 12, "in[2], in[1], in[0], out[1], out[0]");
    const std::string idle = head + "tb;\n  reg clk = 0;\n  reg [2:0] in = 0;\n  wire [1:0] out;\n";
    const std::string idleEnd = "  initial #200 $finish;\nendmodule\n";
    simulation.Write("vectors.v", vectors + test);
    simulation.Write("bits.v", bits + bitTest);
    simulation.Write("idlevectors.v", vectors + idle + "  half dut(clk, in, out);\n" + idleEnd);
    simulation.Write("idlebits.v", bits + idle + "  half dut(clk, in[2], in[1], in[0], out[1], out[0]);\n" + idleEnd);
    simulation.Write("broken.v", std::string(vectors).replace(vectors.find("in[2:1]"), 7, "{in[2], in[0]}") + idle +
                                     "  half dut(clk, in, out);\n" + idleEnd);
    simulation.Write("bench.toml", "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\n");
    const auto replay = [&](const std::string &recorded, const std::string &design) {
        EXPECT_EQ(simulation.Run("iverilog -o r.vvp " + recorded + " && vvp -n r.vvp && iverilog -o d.vvp " + design),
                  0);
        return simulation.Run("vvp -n -M '" TESK_MODULE_FOLDER "' -m tesk d.vvp +tesk=bench.toml");
    };
    EXPECT_EQ(replay("bits.v", "idlevectors.v"), 0) << simulation.Output();
    EXPECT_THAT(LastLine(simulation, "bench.toml"), HasSubstr(": 1 signal as in run.vcd from 0ps to 200ns"));
    EXPECT_EQ(replay("vectors.v", "idlebits.v"), 0) << simulation.Output();
    EXPECT_THAT(LastLine(simulation, "bench.toml"), HasSubstr(": 2 signals as in run.vcd from 0ps to 200ns"));
    EXPECT_EQ(replay("bits.v", "broken.v"), 1) << simulation.Output();
    EXPECT_THAT(LastLine(simulation, "differs"), ContainsRegex("tb.dut.out differs at [0-9]+ns: got .., expected .."));
}

// Whatever of it is still to come, and whoever reads it: the player, the comparison, and who looks for clocks.
TEST(ReplayCompared, NeedsNoMoreMemoryForALongerRecord)
{
    CSimulation simulation;
    constexpr std::uint64_t Times = 100'000;
    constexpr long Most = 12 << 10;  // kilobytes: a block, and less than half of what all changes take
    WriteLongRecord(simulation.Path("short.fst"), Times);
    WriteLongRecord(simulation.Path("long.fst"), 8 * Times);
    simulation.Write("design.v", "`timescale 1ns / 1ps\nmodule tb;\n  reg clk = 0;\n  reg [7:0] bus = 0;\n"
                                 "  always @(posedge clk) bus <= bus + 1;\n  initial #`LENGTH $finish;\nendmodule\n");
    ASSERT_EQ(simulation.Run(
                  "tesk convert short.fst short.vcd && tesk convert long.fst long.vcd && "
                  "tesk convert short.fst short.zyn && tesk convert long.fst long.zyn && "
                  "iverilog -DLENGTH=1000000 -o short.vvp design.v && iverilog -DLENGTH=8000000 -o long.vvp design.v"),
              0)
        << simulation.Output();
    for (const std::string kind : {".fst", ".vcd", ".zyn"}) {
        const auto peak = [&](const std::string &length) {
            simulation.Write("bench.toml", "[[replay]]\nfile = \"" + simulation.Path((length + kind).c_str()) +
                                               "\"\nscope = \"tb\"\ndrive = [\"clk\"]\ncompare = [\"bus\"]\n");
            return PeakKilobytes("vvp -n -M '" TESK_MODULE_FOLDER "' -m tesk " +
                                 simulation.Path((length + ".vvp").c_str()) +
                                 " +tesk=" + simulation.Path("bench.toml"));
        };
        EXPECT_LT(peak("long"), peak("short") + Most) << kind;
    }
}

TEST(ReplayCompared, StandsInTheGuide)
{
    const std::string guide = ReadFile(TESK_SOURCE_DIR "/docs/guide.md");
    const std::size_t section = guide.find("## A regression in four lines");
    ASSERT_NE(section, guide.npos);
    const auto block = [&](const std::string &fence) {
        const std::size_t begin = guide.find("```" + fence + "\n", section) + fence.size() + 4;
        return guide.substr(begin, guide.find("```", begin) - begin);
    };
    CRegression regression;
    const std::string commands = block("sh");
    EXPECT_EQ(std::ranges::count(commands, '\n'), 4);
    EXPECT_EQ(regression.Run("export TESK='" TESK_MODULE_FOLDER "'\n" + commands + "\necho \"status $?\""), 0);
    std::string told;
    for (const char *word : {"replay.toml:", "status"}) {
        for (const std::string &line : regression.Lines(word))
            told += line + '\n';
    }
    EXPECT_EQ(told, block("text"));
}

// The record is made by Icarus Verilog, with a bench that has a stimulus of each kind.
TEST(ReplayCompared, FindsARunOfIcarusEqualInVerilatorAndAMissingGateAtItsFirstTime)
{
    CSimulation simulation;
    const std::string folder = TESK_SOURCE_DIR "/tests/integrations/";
    simulation.Write("same.toml", ReadFile(folder + "same.toml"));
    simulation.Write("table.txt", "time square\n0 0000\n10 0001\n20 0100\n30 1001\n");
    simulation.Write("record.vcd", ReadFile(TESK_SOURCE_DIR "/examples/traffic.vcd"));
    simulation.Write("design.v", ReadFile(folder + "same.v"));
    simulation.Write("replay.toml", "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb\"\ncompare = [\"odd\", \"count\"]\n");
    ASSERT_EQ(simulation.Run("iverilog '-DDUMP=\"run.vcd\"' -o same.vvp design.v && vvp -n -M '" TESK_MODULE_FOLDER
                             "' -m tesk same.vvp +tesk=same.toml"),
              0)
        << simulation.Output();
    EXPECT_EQ(simulation.Run("'" TESK_VERILATED "' +tesk=replay.toml"), 0);
    EXPECT_THAT(simulation.Lines("replay.toml"), ElementsAre(HasSubstr(": 2 signals as in run.vcd from 0ps to ")));
    EXPECT_EQ(simulation.Run("'" TESK_VERILATED "' +tesk=replay.toml +broken"), 1);
    const std::string first = std::to_string(FirstOne(simulation.Dump("run.vcd")["tb.count"], 0) / 1'000'000) + "ns";
    ASSERT_NE(first, "0ns");
    EXPECT_THAT(simulation.Lines("differs"),
                ElementsAre(ContainsRegex("odd differs at " + first + ": got ., expected .")))
        << simulation.Output();
}

// A module without ports: which signals are inputs only the file tells.
TEST(ReplayCompared, TakesTheDirectionsOfTheFile)
{
    CSimulation simulation;
    simulation.Write("design.v", "`timescale 1ns / 1ps\nmodule tb;\n  reg clk, reset;\n  reg [7:0] count = 0;\n"
                                 "  always @(posedge clk) count <= reset ? 0 : count + 1;\nendmodule\n");
    simulation.Write("bench.toml", "[[replay]]\nfile = \"" TESK_SOURCE_DIR
                                   "/tests/data/tb.verilator.fst\"\nscope = \"TOP.tb.dut\"\nto = \"tb\"\n");
    EXPECT_EQ(simulation.RunIcarus("+tesk=bench.toml"), 0) << simulation.Output();
    EXPECT_THAT(simulation.Lines("bench.toml"), ElementsAre(HasSubstr(": 1 signal as in ")));
}
