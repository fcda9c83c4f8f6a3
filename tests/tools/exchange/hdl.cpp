// Benches as sources of hardware description languages: what simulators make of them is what the tool plays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "testpaths.h"
#include "tools/exchange/benchfixture.h"
#include "tools/exchange/randombench.h"
#include "tools/exchange/walks.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TESK_IS_SANITIZED
#endif
#endif

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Exported : public CBenchFixture {
protected:
    void WriteVerilogTop(long long picoseconds) const
    {
        std::ofstream(m_folder / "top.sv")
            << "module top;\n    timeunit 1ps;\n    timeprecision 1ps;\n    stimuli s();\n"
               "    initial begin\n        $dumpfile(\"dump.vcd\");\n"
               "        $dumpvars(0, top);\n        #"
            << picoseconds << " $finish;\n    end\nendmodule\n";
    }

    CWalks Dump() const { return CDumpReader((m_folder / "dump.vcd").string(), "s").walks; }

    void ExpectSameInIcarus(long long picoseconds, const std::string &options = {})
    {
        ExportTo("stimuli.sv", options);
        WriteVerilogTop(picoseconds);
        Run("iverilog -g2012 -Wall -Wno-timescale -o sim stimuli.sv top.sv && vvp -n sim");
        const CWalks dumped = Dump();
        ExpectEqualWalks(AsDumped(PlayedWalks(Bench(), picoseconds), dumped, true), dumped, m_text);
    }

    void ExpectSameInGhdl(long long picoseconds, const std::string &options = {})
    {
        ExportTo("stimuli.vhd", options);
        std::ofstream(m_folder / "top.vhd") << "entity top is end;\narchitecture a of top is\nbegin\n"
                                               "    s : entity work.stimuli;\nend;\n";
        Run("ghdl -a --std=08 stimuli.vhd top.vhd && ghdl --elab-run --std=08 top --vcd=dump.vcd --stop-time=" +
            std::to_string(picoseconds) + "ps");
        const CWalks dumped = Dump();
        ExpectEqualWalks(AsDumped(PlayedWalks(Bench(), picoseconds), dumped, false), dumped, m_text);
    }
};

[[maybe_unused]] std::string WithoutEnds(std::string text)
{
    // What no longer has a value, or has one of nine, is nothing for a simulator of two states.
    for (const char *name : {"pulses", "recorded", "bus", "sine", "ended"}) {
        const std::size_t line = text.find(std::string(name) + " =");
        text.erase(line, text.find('\n', line) + 1 - line);
    }
    return text;
}

}  // namespace

TEST_F(Exported, IsTheSameInIcarusForEveryKindOfFormula)
{
    WriteBench(AllKinds);
    ExpectSameInIcarus(300'000, "--weaken");
}

TEST_F(Exported, IsTheSameInGhdlForEveryKindOfFormula)
{
    WriteBench(AllKinds);
    ExpectSameInGhdl(300'000);
}

#ifndef TESK_IS_SANITIZED  // its compiling takes seconds
TEST_F(Exported, IsTheSameInVerilatorForEveryKindOfFormula)
{
    WriteBench(WithoutEnds(AllKinds));
    ExportTo("stimuli.sv");
    WriteVerilogTop(300'000);
    Run("verilator --timing --binary --trace -Wno-fatal -CFLAGS -O0 -Mdir v --top-module top stimuli.sv top.sv && "
        "v/Vtop");
    const CWalks dumped = Dump();
    ExpectEqualWalks(AsDumped(PlayedWalks(Bench(), 300'000), dumped, true), dumped, m_text);
}
#endif

TEST_F(Exported, GoesOnForEverWhereItRepeatsItself)
{
    WriteBench("scope = \"tb\"\n[signals]\nclk = \"1 3ns, 0 5ns -r 10ns\"\n"
               "late = { formula = \"0 0ns, 1 4ns, 0 5ns -r 10ns\", start = \"2ns\" }\n"
               "n = { type = \"std_logic_vector(39 downto 0)\", start = \"5ns\", formula = "
               "'\\counter\\TYPE\\2\\DIR\\2\\RADIX\\16\\START\\2\\INC\\3\\PERIOD\\10ns\\REV\\0' }\n");
    const std::string sv = Export("--to sv").out;
    EXPECT_THAT(sv, HasSubstr("        clk <= 1'bz;\n        #3000;\n        forever begin\n            clk <= 1'b1;\n"
                              "            #2000 clk <= 1'b0;\n            #8000;\n        end\n"));
    ExpectSameInIcarus(1'000'000);
    ExpectSameInGhdl(1'000'000);
}

TEST_F(Exported, IsPlayedUpToAnEndWhereItIsNoLoop)
{
    WriteBench("[signals]\nr = { type = \"integer\", formula = '\\RANDOM\\1\\5\\0\\15\\10ns' }\n");
    SToolRun run = Export("--to sv");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err,
                HasSubstr("signal \"r\": the stimulator goes on for ever, which is no loop here; tell the end with "
                          "--until, or with until in the bench"));
    run = Export("--to sv --until 20ns");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("r <= 32'sh00000000;\n        #10000 r <= 32'sh00000008;\n        #10000 r <="));
}

TEST_F(Exported, KeepsTheNineLettersInVhdl)
{
    WriteBench("until = \"100ns\"\n[signals]\na = \"U 0ns, X 1ns, 0 2ns, 1 3ns, W 5ns, L 6ns, H 7ns, - 8ns, Z 9ns\"\n"
               "b = { type = \"std_logic_vector(0 to 8)\", formula = \"UX01ZWLH- 0ns, Z 10ns\" }\n"
               "c = { type = \"std_ulogic\", formula = \"L 0ns\" }\n"
               "d = { type = \"bit_vector(3 downto 2)\", formula = \"10 0ns, 01 10ns -r 20ns\" }\n");
    ExpectSameInGhdl(100'000);
}

TEST_F(Exported, TellsOnceEachLetterWithoutAPlaceAndWritesNothing)
{
    WriteBench(
        "[signals]\na = \"0 0ns, H 5ns, 1 6ns, H 8ns\"\nb = { type = \"std_logic_vector(1 downto 0)\", formula = "
        "\"0- 3ns\" }\nc = \"1 0ns, Z 1ns, X 2ns\"\n");
    SToolRun run = Export("--to sv -o " + (m_folder / "out.sv").string());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "tesk: error: signal \"a\": H, first at 5ns, has no place in sv; --weaken writes 1 instead\n"
              "tesk: error: signal \"b\": -, first at 3ns, has no place in sv; --weaken writes X instead\n"
              "tesk: nothing is written: sv cannot say all of the bench; --weaken writes the nearest there is\n");
    EXPECT_FALSE(std::filesystem::exists(m_folder / "out.sv"));
    run = Export("--to sv --weaken");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.out, HasSubstr("b <= 2'b0x;"));
    EXPECT_THAT(run.err,
                HasSubstr("tesk: warning: signal \"a\": H, first at 5ns, has no place in sv, and is written as 1\n"));
}

TEST_F(Exported, TellsWhereAVhdlTypeHasNoWordForNoValue)
{
    WriteBench("[signals]\na = { type = \"bit\", formula = \"1 5ns -cancel 10ns\" }\n"
               "b = { type = \"integer\", formula = \"1 0ns\" }\n");
    const SToolRun run = Export("--to vhdl");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err,
                HasSubstr("signal \"a\": no value, first at 0ps, has no place in vhdl; --weaken writes the value "
                          "before instead\n"));
    EXPECT_THAT(run.err, Not(HasSubstr("\"b\"")));
}

TEST_F(Exported, TellsAllThatCannotBeSaidInOneRun)
{
    WriteBench("[signals]\na = \"idle 0ns, busy 5ns\"\nb = \"1 -5ns\"\n"
               "c = { type = \"std_logic\", formula = \"1 0ns\", strength = \"drive\" }\n"
               "r = { type = \"bit\", formula = '\\RANDOM\\1\\5\\0\\15\\10ns' }\n");
    const SToolRun run = Export("--to vhdl");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, AllOf(HasSubstr("signal \"a\": its values are words"), HasSubstr("signal \"b\": formula"),
                               HasSubstr("warning: signal \"c\": its strength is left out"),
                               HasSubstr("signal \"r\": the stimulator goes on for ever")));
}

TEST_F(Exported, DoesNotLeaveAReplayOutInSilence)
{
    WriteBench("until = \"50ns\"\n[[replay]]\nfile = \"" TESK_SOURCE_DIR "/examples/traffic.vcd\"\nscope = \"tb\"\n"
               "drive = [\"no\"]\ncompare = [\"count\"]\n[signals]\na = \"1 0ns\"\n");
    const SToolRun run = Export("--to sv");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err, "");
}

TEST_F(Exported, HasPortsWithTheLastPartsOfNames)
{
    WriteBench("scope = \"tb\"\n[signals]\n\"reg\" = \"1 0ns\"\n\"process\" = \"1 0ns\"\n\"a+b\" = \"1 0ns\"\nClk = "
               "\"1 0ns\"\n"
               "clk = \"1 0ns\"\nu1.x = \"1 0ns\"\nu2.x = \"1 0ns\"\nnext = { type = \"std_logic_vector(1 downto 0)\", "
               "formula = '\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0' }\n");
    const std::string sv = Export("--to sv").out;
    EXPECT_THAT(sv, AllOf(HasSubstr("output logic \\reg ,"), HasSubstr("output logic process,"),
                          HasSubstr("output logic \\a+b ,"), HasSubstr(" Clk,"), HasSubstr(" clk,"),
                          HasSubstr(" u1_x,  // tb.u1.x\n"), HasSubstr(" u2_x,"), HasSubstr("next_ = next_ + 2'b01")));
    const std::string vhdl = Export("--to vhdl").out;
    EXPECT_THAT(vhdl, AllOf(HasSubstr(" reg : out"), HasSubstr(" \\process\\ : out"), HasSubstr(" \\a+b\\ : out"),
                            HasSubstr(" Clk : out"), HasSubstr(" clk_2 : out"), HasSubstr(" \\next\\ : out")));
    ExportTo("stimuli.sv");
    ExportTo("stimuli.vhd");
    Run("iverilog -g2012 -o sim stimuli.sv && ghdl -a --std=08 stimuli.vhd");
}

TEST_F(Exported, HasAnOutputForEachElementThatIsNoBit)
{
    WriteBench("[signals]\npacket = { formula = \"/custom examples/packets.ghw,packets.tx\" }\n");
    const SToolRun run = Export("--to sv");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("signal \"packet.state\": its values are words"));
    WriteBench(
        "[signals]\nm = { type = \"a#6#matrix1 rict0 1 a#28#std_logic_vector(3 downto 0)1 ricd3 0 e#9#std_logicc9 "
        "UX01ZWLH-\", formula = \"(0101, 1100) 0ns, (1111, 0000) 5ns\" }\n");
    EXPECT_THAT(Export("--to sv").out,
                AllOf(HasSubstr("output logic [3:0] m_0,  // m[0]\n"), HasSubstr("m_1 <= 4'b1100;")));
}

TEST_F(Exported, HasTimesOfAnyResolution)
{
    WriteBench("resolution = \"3ns\"\n[signals]\nclk = \"1 0ns, 0 15ns -r 30ns\"\n");
    ExpectSameInIcarus(600'000);
    ExpectSameInGhdl(600'000);
    WriteBench("resolution = \"1sec\"\nuntil = \"9000sec\"\n[signals]\na = \"1 0ns, 0 1hr\"\n");
    EXPECT_THAT(Export("--to vhdl").out, HasSubstr("wait for 3600 sec;"));
    EXPECT_THAT(Export("--to sv").out, HasSubstr("timeunit 1s;\n"));
}

TEST_F(Exported, IsTheSameInBothLanguagesForRandomBenches)
{
    for (unsigned seed = 1; seed <= 4; ++seed) {
        WriteBench(CRandomBench(seed).Make(40));
        ExpectSameInIcarus(400'000);
        ExpectSameInGhdl(400'000);
        if (HasFailure())
            return;
    }
}
