// Replays of a bench: what tesk play shows of them, and what is told of their faults.
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/fstwriter/fstwriter.h"
#include "tools/runtool.h"

namespace {

using NTARN::CFstWriter;
using NTARN::EFstDirection;
using NTARN::EFstScope;
using NTARN::EFstVariable;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class BenchReplay : public testing::Test {
protected:
    BenchReplay()
    {
        std::ofstream(Path("run.vcd"))
            << "$timescale 1ns $end\n$scope module tb $end\n$scope module dut $end\n$var wire 1 ! clk $end\n"
               "$var wire 4 \" din [3:0] $end\n$var wire 4 # dout [3:0] $end\n$scope module sub $end\n"
               "$var wire 1 ! clk $end\n$upscope $end\n$upscope $end\n$upscope $end\n$enddefinitions $end\n"
               "#0\n0!\nb0001 \"\nb0000 #\n#5\n1!\n#10\n0!\nb0010 \"\n#15\n1!\nb0001 #\n#20\n";
        WriteFst();
    }

    // The same scope with directions.
    void WriteFst()
    {
        std::ofstream file(Path("run.fst"), std::ios::binary);
        CFstWriter writer(file, -9);
        writer.OpenScope(EFstScope::Module, "tb");
        writer.OpenScope(EFstScope::Module, "dut");
        const auto clk = writer.AddVariable(EFstVariable::Wire, EFstDirection::In, "clk", 1);
        const auto dout = writer.AddVariable(EFstVariable::Wire, EFstDirection::Out, "dout", 1);
        writer.OpenScope(EFstScope::Module, "sub");
        writer.AddAlias(EFstVariable::Wire, EFstDirection::In, "clk", clk);
        writer.CloseScope();
        writer.CloseScope();
        writer.CloseScope();
        writer.SetTime(0);
        writer.Change(clk, "0");
        writer.Change(dout, "1");
        writer.SetTime(7);
        writer.Change(clk, "1");
        EXPECT_TRUE(writer.Finish(9));
    }

    std::string Path(const char *name) { return (m_folder / name).string(); }

    SToolRun Run(const std::string &command, const std::string &bench)
    {
        std::ofstream(Path("bench.toml")) << bench;
        return RunShell("bench=" + Path("bench.toml") + "; cd " + Path("") + "; tesk " + command);
    }

    CTemporaryFolder m_folder;
};

}  // namespace

TEST_F(BenchReplay, ShowsWhatTheRecordSays)
{
    const SToolRun run =
        Run("play $bench --format csv",
            "until = \"18ns\"\n[signals]\nrst = \"1 0ns, 0 12ns\"\n"
            "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\nto = \"top.u1\"\ndrive = [\"clk\", \"d?n\"]\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "ticks,time,rst,top.u1.clk,top.u1.din\n0,0ps,1,0,0001\n5000,5ns,1,1,0001\n10000,10ns,1,0,0010\n"
                       "12000,12ns,0,0,0010\n15000,15ns,0,1,0010\n");
}

TEST_F(BenchReplay, GoesOnToTheEndOfTheRecord)
{
    const std::string bench = "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\ndrive = \"clk\"\n"
                              "[signals]\nx = \"1 0ns, 0 9ns -r 18ns\"\n";
    EXPECT_EQ(Run("play $bench --format csv", bench).out,
              "ticks,time,x,tb.dut.clk\n0,0ps,1,0\n5000,5ns,1,1\n9000,9ns,0,1\n10000,10ns,0,0\n15000,15ns,0,1\n"
              "18000,18ns,1,1\n");
    EXPECT_EQ(Run("play $bench --format csv --from 7ns --until 11ns", bench).out,
              "ticks,time,x,tb.dut.clk\n7000,7ns,1,1\n9000,9ns,0,1\n10000,10ns,0,0\n");
}

TEST_F(BenchReplay, DrivesTheInputsOfItsScopeWhereTheFileTellsThem)
{
    const SToolRun run = Run("play $bench --format csv", "[[replay]]\nfile = \"run.fst\"\nscope = \"tb.dut\"\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "ticks,time,tb.dut.clk\n0,0ps,0\n7000,7ns,1\n");
    const SToolRun untold = Run("check $bench", "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\n");
    EXPECT_EQ(untold.status, 0);
    EXPECT_THAT(untold.out,
                HasSubstr("bench.toml:1:1: warning: run.vcd: the file tells no inputs of the scope \"tb.dut\"; write "
                          "drive = [\"clk\", \"din*\"] with what is to be driven\n"));
}

TEST_F(BenchReplay, TellsAllThatIsNotThere)
{
    const std::string bench =
        "[signals]\ntb.dut.clk = \"1 0ns\"\nb = \"1 -5ns\"\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\ndrive = [\"clk\", \"dinn\", \"dim*\"]\n"
        "compare = [\"doubt\"]\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dud\"\ndrive = \"*\"\n"
        "[[replay]]\nfile = \"ran.vcd\"\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\ndrive = [\"din\"]\n"
        "[[replay]]\nfile = \"run.fst\"\nscope = \"tb.dut\"\nto = \"tb.dut\"\ndrive = [\"dout\"]\n"
        "[[replay]]\nfile = \"run.vcd\"\nscope = \"tb.dut\"\ndrive = [\"dout\"]\n";
    const SToolRun check = Run("check $bench", bench);
    EXPECT_EQ(check.status, 1);
    EXPECT_THAT(check.out,
                AllOf(HasSubstr("bench.toml:3:5: error: signal \"b\""),
                      HasSubstr("bench.toml:4:1: error: run.vcd: no signal below \"tb.dut\" is named \"dinn\" (did you "
                                "mean \"din\"?); \"tesk signals run.vcd --names\" lists its signals"),
                      HasSubstr("is named \"dim*\""), HasSubstr("is named \"doubt\" (did you mean \"dout\"?)"),
                      HasSubstr("the signal \"tb.dut.clk\" has a formula, too"),
                      HasSubstr("nothing is below the scope \"tb.dud\" (did you mean \"tb.dut\"?)"),
                      HasSubstr("error: ran.vcd: there is no such file"),
                      HasSubstr("the signal \"tb.dut.dout\" is driven by two replays"),
                      HasSubstr("2 signals, 6 replays: 8 errors, 0 warnings")));
    const SToolRun play = Run("play $bench -o out.svg", bench);
    EXPECT_EQ(play.status, 1);
    EXPECT_THAT(play.err, AllOf(HasSubstr("\"dinn\""), HasSubstr("ran.vcd: there is no such file")));
    EXPECT_FALSE(std::ifstream(Path("out.svg")).is_open());
}

TEST_F(BenchReplay, KeepsDirectionsThroughAConversion)
{
    const SToolRun run = Run("convert run.fst copy.fst && tesk play $bench --format csv",
                             "[[replay]]\nfile = \"copy.fst\"\nscope = \"tb.dut\"\n");
    EXPECT_EQ(run.out, "ticks,time,tb.dut.clk\n0,0ps,0\n7000,7ns,1\n") << run.err;
}
