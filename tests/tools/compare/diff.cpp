// tesk diff, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

#include "platform/stream/streamfiles.h"
#include "tools/runtool.h"

using ::testing::HasSubstr;
using ::testing::StartsWith;

using namespace std::string_literals;

namespace {

// Files that a comparison finds by short names, since it is run in their folder.
class CDiffFolder {
public:
    explicit CDiffFolder(const std::string &dump = Dump())
    {
        Write("a.vcd", dump);
        Write("b.vcd", dump);
    }

    static std::string Dump()
    {
        return "$timescale 1ns $end\n$scope module tb $end\n$var wire 1 ! clk $end\n$var wire 4 \" v [3:0] $end\n"
               "$var real 64 # r $end\n$upscope $end\n$enddefinitions $end\n"
               "#0\n0!\nb0000 \"\nr1.5 #\n#5\n1!\nb0011 \"\n#10\n0!\n#15\n1!\nb0111 \"\n#20\n0!\n";
    }

    void Write(const char *name, const std::string &text) const { WriteBytesTo((m_folder / name).string(), text); }

    /// Writes the dump with a text in it replaced.
    void WriteChanged(const char *name, const std::string &from, const std::string &to) const
    {
        std::string text = Dump();
        const std::size_t place = text.find(from);
        ASSERT_NE(place, text.npos);
        Write(name, text.replace(place, from.size(), to));
    }

    SToolRun Diff(const std::string &arguments) const
    {
        return RunShell("cd " + (m_folder / "").string() + " && tesk diff " + arguments);
    }

    /// The status, and what was told first.
    std::string Answer(const std::string &arguments) const
    {
        const SToolRun run = Diff(arguments);
        return std::to_string(run.status) + ' ' + run.out + run.err;
    }

private:
    CTemporaryFolder m_folder;
};

}  // namespace

TEST(Diff, SaysThatFilesAreEqual)
{
    EXPECT_EQ(CDiffFolder().Answer("a.vcd b.vcd"), "0 a.vcd and b.vcd are equal: 3 signals from 0ns to 20ns\n");
}

TEST(Diff, ShowsTheFirstDifferenceOfEachSignal)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", "b0011 \"\n#10\n0!", "b0001 \"\n#10\n");
    EXPECT_EQ(folder.Answer("a.vcd b.vcd"), "1 first  signal  expected  got   times\n"
                                            "5ns    tb.v    0011      0001      1\n"
                                            "10ns   tb.clk  0         1         1\n"
                                            "a.vcd and b.vcd differ: 2 of 3 signals from 0ns to 20ns, first at 5ns\n");
    EXPECT_EQ(folder.Answer("a.vcd b.vcd --limit 1 --radix hex"),
              "1 first  signal  expected  got  times\n"
              "5ns    tb.v    3         1        1\n"
              "and 1 more; --limit 0 shows all\n"
              "a.vcd and b.vcd differ: 2 of 3 signals from 0ns to 20ns, first at 5ns\n");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd tb.v --from 15ns"),
                StartsWith("0 a.vcd and b.vcd are equal: 1 signal from 15ns to 20ns\n"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --until 4ns"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --until 5ns"), StartsWith("1 "));
}

TEST(Diff, ComparesFilesOfAllKinds)
{
    const CDiffFolder folder;
    const SToolRun run = folder.Diff("a.vcd b.vcd && tesk convert a.vcd c.fst && tesk convert a.vcd c.zyn && "
                                     "tesk diff c.fst c.zyn && tesk diff c.zyn a.vcd && tesk diff - c.fst <a.vcd");
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    for (const char *pair : {"tests/data/tb.iverilog.vcd tests/data/tb.iverilog.fst",
                             "tests/data/tb.ghdl.vcd tests/data/tb.ghdl.ghw --common",
                             "tests/data/ghw_types.ghdl.vcd tests/data/ghw_types.ghdl.ghw --common"}) {
        const SToolRun same = RunShell("tesk diff "s + pair);
        EXPECT_EQ(same.status, 0) << pair << same.out << same.err;
    }
}

TEST(Diff, TellsAndCountsSignalsOfOneFileOnly)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", " r $end", " s $end");
    const std::string told = "only in a.vcd: tb.r\nonly in b.vcd: tb.s\n";
    EXPECT_EQ(folder.Answer("a.vcd b.vcd"),
              "1 " + told +
                  "a.vcd and b.vcd differ: 0 of 2 signals from 0ns to 20ns; 1 only in the "
                  "first file; 1 only in the second\n");
    EXPECT_EQ(folder.Answer("a.vcd b.vcd --common"),
              "0 " + told + "a.vcd and b.vcd are equal: 2 signals from 0ns to 20ns\n");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd tb.clk tb.v"), StartsWith("0 "));
}

TEST(Diff, TellsWhatCannotBeCompared)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", "$var real 64 # r $end", "$var wire 1 # r $end");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd"),
                HasSubstr("cannot be compared: tb.r is real in a.vcd, std_logic in b.vcd\n"));
}

TEST(Diff, TellsAFileThatEndsEarly)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", "#15\n1!\nb0111 \"\n#20\n0!\n", "#12\n");
    EXPECT_EQ(folder.Answer("a.vcd b.vcd"),
              "1 b.vcd ends at 12ns; in a.vcd tb.clk changes at 15ns\n"
              "a.vcd and b.vcd differ: 0 of 3 signals from 0ns to 12ns; one ends early\n");
    EXPECT_THAT(folder.Answer("b.vcd a.vcd"), StartsWith("1 b.vcd ends at 12ns; in a.vcd tb.clk changes at 15ns\n"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --common"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --until 12ns"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd tb.r"),
                StartsWith("0 a.vcd ends at 20ns, b.vcd at 12ns\na.vcd and b.vcd are equal"));
}

TEST(Diff, ReadsNoFurtherThanItCompares)
{
    const CDiffFolder folder;
    folder.Write("b.vcd", CDiffFolder::Dump() + "#50\n1unknown\n");
    EXPECT_EQ(folder.Diff("a.vcd b.vcd --until 10ns").err, "");
    EXPECT_EQ(folder.Diff("a.vcd b.vcd --until 10ns").status, 0);
    EXPECT_THAT(folder.Diff("a.vcd b.vcd").err, HasSubstr("no variable has the identifier code \"unknown\""));
}

TEST(Diff, MapsScopesAndTakesTimesTolerancesAndUnknowns)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", "module tb", "module top");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd"), StartsWith("1 tesk: the files have no signal in common; \"--scope "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --scope tb=top tb.v tb.clk"),
                StartsWith("0 a.vcd and b.vcd are equal: 2 signals"));
    folder.WriteChanged("b.vcd", "#10\n0!", "#11\n0!");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd"), HasSubstr("10ns   tb.clk  0         1        1\n"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --tolerance 1ns"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --tolerance 0.9ns"), StartsWith("1 "));
    folder.WriteChanged("b.vcd", "b0011 ", "bx0z1 ");
    EXPECT_THAT(folder.Answer("b.vcd a.vcd --x ignore"), HasSubstr("5ns    tb.v    x0z1      0011      1\n"));
    folder.WriteChanged("b.vcd", "b0011 ", "bx01x ");
    EXPECT_THAT(folder.Answer("b.vcd a.vcd --x ignore"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --x ignore"), StartsWith("1 "));
    folder.WriteChanged("b.vcd", "b0011 ", "b00hh ");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd"), StartsWith("0 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --states 9"), HasSubstr("0011      00HH"));
    folder.WriteChanged("b.vcd", "r1.5 ", "r1.6 ");
    EXPECT_THAT(folder.Answer("a.vcd b.vcd"), HasSubstr("0ns    tb.r    1.5       1.6      1\n"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --real-tolerance 0.11"), StartsWith("0 "));
}

TEST(Diff, WritesJsonAndDrawsTheFirstDifference)
{
    const CDiffFolder folder;
    folder.WriteChanged("b.vcd", "b0011 \"", "b0001 \"");
    const nlohmann::json json = nlohmann::json::parse(folder.Diff("a.vcd b.vcd --format json").out);
    EXPECT_EQ(json["equal"], false);
    EXPECT_EQ(json["compared"], 3);
    EXPECT_EQ(json["differences"].size(), 1U);
    EXPECT_EQ(json["differences"][0]["signal"], "tb.v");
    EXPECT_EQ(json["differences"][0]["first_ticks"], 5);
    EXPECT_EQ(json["differences"][0]["expected"], "0011");
    EXPECT_EQ(json["differences"][0]["got"], "0001");
    const SToolRun drawn = folder.Diff("a.vcd b.vcd --format wave --width 60");
    EXPECT_EQ(drawn.status, 1);
    for (const char *part : {"\n  v expected", "\n  v got", "▲", "0011", "0001", "0111", "first at 5ns\n"})
        EXPECT_THAT(drawn.out, HasSubstr(part));
    EXPECT_THAT(folder.Answer("a.vcd a.vcd --format wave"), StartsWith("0 a.vcd and a.vcd are equal"));
}

TEST(Diff, RefusesWhatItCannotCompare)
{
    const CDiffFolder folder;
    folder.Write("c.vcd", "no dump");
    EXPECT_THAT(folder.Answer("a.vcd c.vcd"), StartsWith("1 tesk: c.vcd:1: "));
    EXPECT_THAT(folder.Answer("none.vcd a.vcd"), StartsWith("1 tesk: none.vcd: there is no such file"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd tb.x*"), StartsWith("1 tesk: no signal of either file is named \"tb.x*\""));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --from 1us"),
                StartsWith("1 tesk: --from is behind the end of what both files have, 20ns"));
    EXPECT_THAT(folder.Answer("- -"), StartsWith("2 tesk: standard input"));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --scope tb"), StartsWith("2 tesk: --scope tb: write "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --tolerance x"), StartsWith("2 tesk: --tolerance x: "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --real-tolerance -1"), StartsWith("2 tesk: --real-tolerance -1: "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --real-tolerance nan"), StartsWith("2 "));
    EXPECT_THAT(folder.Answer("a.vcd b.vcd --until 1ns --from 2ns"), StartsWith("2 "));
    EXPECT_THAT(folder.Answer("a.vcd"), StartsWith("2 "));
}

// Wherever a file is cut off it is either refused in a line or compared.
TEST(Diff, StandsFilesThatAreCutOff)
{
    const CDiffFolder folder;
    const std::string cut = "tesk convert a.vcd w.fst; for f in a.vcd w.fst; do size=$(wc -c <$f); "
                            "for n in $(seq 0 17 $size); do head -c $n $f >cut; tesk diff $f cut >out 2>&1; "
                            "s=$?; [ $s = 1 ] || [ $s = 0 ] || echo $f $n $s; done; done";
    const SToolRun run = folder.Diff("a.vcd b.vcd >/dev/null; " + cut);
    EXPECT_EQ(run.out, "");
}
