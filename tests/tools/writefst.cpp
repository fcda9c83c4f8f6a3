// The format FST of tesk play, held against its VCD.
#include <fstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/runtool.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

// Signals of every form, some of them without a value at first.
constexpr const char *Bench = R"toml(until = "60ns"
scope = "tb"
[signals]
clk = "1 0ns, 0 5ns -r 10ns"
late = "1 7ns -cancel 33ns"
n = { type = "std_logic_vector(4 downto 1)", formula = '"UX01" 0ns, "ZWLH" 10ns, "1" 20ns, "-0-1" 30ns' }
dut.i = { type = "integer", formula = "-5 0ns, 2147483647 9ns" }
dut.r = { type = "real", formula = "0.5 2ns, -1.25e3 11ns" }
dut.b = { type = "boolean", formula = "true 3ns, false 12ns" }
dut.sub.text = "idle 0ns, two\\words 13ns"
)toml";

class FstOfABench : public testing::Test {
protected:
    FstOfABench()
    {
        std::ofstream(m_folder / "bench.toml") << Bench;
        m_fst = (m_folder / "b.fst").string();
        m_vcd = (m_folder / "b.vcd").string();
        for (const std::string &file : {m_fst, m_vcd}) {
            const SToolRun run = RunShell("tesk play " + (m_folder / "bench.toml").string() + " -o " + file);
            EXPECT_EQ(run.status, 0) << run.err;
        }
    }

    CTemporaryFolder m_folder;
    std::string m_fst;
    std::string m_vcd;
};

}  // namespace

TEST_F(FstOfABench, HasTheSignalsAndChangesOfTheVcd)
{
    const std::string names = RunShell("tesk signals --names " + m_fst).out;
    EXPECT_THAT(names, HasSubstr("tb.n,std_logic_vector(4 downto 1)\n"));
    for (const char *signals : {"tb.clk", "tb.late", "tb.dut.i", "tb.clk tb.late tb.dut.i"}) {
        const SToolRun fst = RunShell("tesk convert " + m_fst + " - " + signals);
        EXPECT_EQ(fst.out, RunShell("tesk convert " + m_vcd + " - " + signals).out);
        EXPECT_THAT(fst.out, HasSubstr("#60000\n")) << fst.err;
    }
}

TEST_F(FstOfABench, KeepsTheNineLetters)
{
    EXPECT_THAT(RunShell("tesk convert " + m_fst + " - tb.n").out,
                HasSubstr("#0\nbux01 !\n#10000\nbzwlh !\n#20000\nb0001 !\n#30000\nb-0-1 !\n"));
}

TEST_F(FstOfABench, IsReadByAForeignReader)
{
    const SToolRun run = RunShell("fst2vcd " + m_fst);
    ASSERT_EQ(run.status, 0) << "fst2vcd is in the package gtkwave";
    EXPECT_THAT(run.out, AllOf(HasSubstr("$scope module sub $end\n$var string 0 "), HasSubstr("\nstrue "),
                               HasSubstr("\nstwo\\\\words "), HasSubstr("\nr0.5 "), HasSubstr("\nr-1250 "),
                               HasSubstr("\nb01111111111111111111111111111111 "), HasSubstr("n [4:1] $end\n")));
}

TEST(WriteFst, GoesThroughAPipe)
{
    const CTemporaryFolder folder;
    const std::string path = folder / "piped.fst";
    EXPECT_EQ(RunShell("tesk play '1 0ns, 0 5ns' --format fst | cat > " + path + " && tesk signals " + path).out,
              "signal,type,changes,first,last\ntesk.stimulus,std_logic,2,0ps,5000ps\n");
}
