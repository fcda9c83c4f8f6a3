// What tesk play shows of a walk: the stretch, the radix, names, formats by the ending of a file; and files without end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include "tools/runtool.h"
#include "tools/writers/valuetext.h"

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

std::string Shown(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk play " + arguments);
    EXPECT_EQ(run.status, 0) << arguments << ": " << run.err;
    return run.out;
}

// The rows of CSV behind the heading, those up to `time` left out.
std::string RowsBehind(const std::string &csv, long long time)
{
    std::istringstream lines(csv);
    std::string rows;
    std::getline(lines, rows);
    rows.clear();
    for (std::string line; std::getline(lines, line);) {
        if (std::stoll(line) > time)
            rows += line + '\n';
    }
    return rows;
}

// A dump of 28 changes, one each 500 s, in units of 1 s.
std::string WriteLongDump(const CTemporaryFolder &folder)
{
    const std::string path = folder / "long.vcd";
    std::ofstream dump(path);
    dump << "$timescale 1s $end\n$scope module t $end\n$var wire 1 ! clk $end\n$var wire 2 \" bus [1:0] $end\n"
            "$upscope $end\n$enddefinitions $end\n";
    for (int i = 0; i < 28; ++i)
        dump << '#' << 500 * i << '\n' << i % 2 << "!\nb" << i / 2 % 2 << i % 2 << " \"\n";
    dump << "#14000\n";
    return path;
}

}  // namespace

TEST(PlayFrom, BeginsWithTheValueInForce)
{
    EXPECT_EQ(Shown("'1 10ns, 0 20ns -r 30ns -cancel 100ns' --from 45ns"),
              "ticks,time,value\n45000,45ns,1\n50000,50ns,0\n70000,70ns,1\n80000,80ns,0\n100000,100ns,\n");
    EXPECT_EQ(Shown("'1 10ns, 0 20ns' --from 20ns"), "ticks,time,value\n20000,20ns,0\n");
    EXPECT_EQ(Shown("'1 10ns, 0 20ns' --from 5ns"), "ticks,time,value\n10000,10ns,1\n20000,20ns,0\n");
    EXPECT_EQ(Shown("'1 10ns -cancel 20ns' --from 20ns"), "ticks,time,value\n20000,20ns,\n");
}

TEST(PlayFrom, ShowsWhatAWalkFromTheBeginningShows)
{
    for (const char *formula :
         {"'1 10ns, 0 20ns, Z 25ns -r 30ns' --type std_logic", "'0110 0ns, 1001 10ns -r 20ns' --count 4",
          "'/custom examples/traffic.vcd,tb.count'", "'/custom examples/traffic.fst,tb.request,20ns,90ns' --res 1ns",
          "\"$(tesk counter --type gray --width 3 --start 000 --period 10ns)\" --count 3",
          "\"$(tesk random --dist uniform --low 0 --high 15 --seed 7 --period 10ns)\" --count 4",
          "'/txt examples/sine.txt,sine -time_points time -interval 1ns' --type 'signed(7 downto 0)'",
          "'/brel (H10 L10)5'"}) {
        const std::string all = Shown(std::string(formula) + " --until 110ns");
        for (const int from : {0, 9, 10, 40, 100}) {
            const std::string shown =
                Shown(std::string(formula) + " --until 110ns --from " + std::to_string(from) + "ns");
            const long long ticks = from * (std::string(formula).ends_with("--res 1ns") ? 1LL : 1000LL);
            EXPECT_EQ(RowsBehind(shown, ticks), RowsBehind(all, ticks)) << formula << " from " << from;
        }
    }
}

TEST(PlayFrom, DoesNotWalkThroughAnHourOfAPlainFormula)
{
    EXPECT_EQ(Shown("'1 0ps, 0 1ps -r 2ps' --from 1hr --until 3600000000000001ps"),
              "ticks,time,value\n3600000000000000,3600sec,1\n3600000000000001,3600000000000001ps,0\n");
    EXPECT_THAT(RunShell("tesk play '1 0ns' --from 5ns --until 2ns").err, HasSubstr("--from 5ns: later than --until"));
    EXPECT_EQ(RunShell("tesk play '1 0ns' --from 5ns --until 2ns").status, 2);
}

TEST(PlayRadix, ShowsTheValuesOfBuses)
{
    const struct {
        const char *bits;
        tesk::ERadix radix;
        const char *text;
    } rows[] = {
        {"10100101", tesk::ERadix::Hexadecimal, "A5"}, {"110100101", tesk::ERadix::Hexadecimal, "1A5"},
        {"10100101", tesk::ERadix::Octal, "245"},      {"10100101", tesk::ERadix::Decimal, "165"},
        {"10100101", tesk::ERadix::Signed, "-91"},     {"1000", tesk::ERadix::Signed, "-8"},
        {"0111", tesk::ERadix::Signed, "7"},           {"10100101", tesk::ERadix::Binary, "10100101"},
        {"HL1L", tesk::ERadix::Hexadecimal, "A"},      {"XXXXUUUU", tesk::ERadix::Hexadecimal, "xx"},
        {"1X01ZZZZ", tesk::ERadix::Hexadecimal, "Xz"}, {"1Z01XZXX", tesk::ERadix::Hexadecimal, "ZX"},
        {"XXXX", tesk::ERadix::Decimal, "x"},          {"1XXX", tesk::ERadix::Signed, "X"},
        {"ZZZZ", tesk::ERadix::Signed, "z"},           {"1ZZZ", tesk::ERadix::Decimal, "Z"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(tesk::BitsInRadix(row.bits, row.radix), row.text) << row.bits;
    EXPECT_EQ(tesk::BitsInRadix(std::string(100, '1'), tesk::ERadix::Decimal), "1267650600228229401496703205375");
    EXPECT_EQ(tesk::BitsInRadix('1' + std::string(99, '0'), tesk::ERadix::Signed), "-633825300114114700748351602688");
}

TEST(PlayRadix, LeavesWiresAndDumpsAlone)
{
    EXPECT_EQ(Shown("'1010 0ns' --count 4 --radix hex"), "ticks,time,value,[3],[2],[1],[0]\n0,0ps,A,1,0,1,0\n");
    EXPECT_EQ(Shown("'idle 0ns, 1010 5ns' --radix hex"), "ticks,time,value\n0,0ps,idle\n5000,5ns,1010\n");
    EXPECT_THAT(Shown("'1010 0ns' --count 4 --radix hex --format vcd"), HasSubstr("b1010 !"));
    EXPECT_THAT(RunShell("tesk play '1 0ns' --count 5000 --no-elements --radix dec").err,
                HasSubstr("more than 4096 bits is shown in bin, oct or hex only"));
}

TEST(PlayElements, AreLeftOutOnRequest)
{
    EXPECT_EQ(Shown("'1010 0ns' --count 4 --no-elements"), "ticks,time,value\n0,0ps,1010\n");
}

TEST(PlayName, StandsInEveryFormat)
{
    const std::string formula = "'10 0ns, 01 5ns' --count 2 --name top.bus --until 10ns --format ";
    EXPECT_THAT(Shown(formula + "csv"), StartsWith("ticks,time,top.bus,top.bus[1],top.bus[0]\n"));
    EXPECT_THAT(Shown(formula + "vcd"), HasSubstr("$scope module top $end\n$var wire 2 ! bus [1:0] $end"));
    EXPECT_THAT(Shown(formula + "svg"), HasSubstr(">[1]</text>"));
    EXPECT_THAT(Shown(formula + "wave"), HasSubstr("\ntop.bus "));
    EXPECT_THAT(Shown(formula + "json"), HasSubstr("\"name\": \"top.bus[0]\""));
}

TEST(PlayInteger, IsADecimalNumber)
{
    EXPECT_EQ(tesk::IntegerText("2#101"), "5");
    EXPECT_EQ(tesk::IntegerText("16#FF#"), "255");
    EXPECT_EQ(tesk::IntegerText("2#" + std::string(32, '1')), "-1");
    for (const char *other : {"17", "-3", "2#", "#1", "2#12", "99#1", "2#1#0x", "2#100000000000000000000000000000000"})
        EXPECT_THAT(tesk::IntegerText(other), testing::AnyOf(other, "1")) << other;
    const std::string counter = "\"$(tesk counter --type binary --width 8 --start 254 --period 10ns)\" --type integer ";
    EXPECT_EQ(Shown(counter + "--until 10ns"), "ticks,time,value\n0,0ps,254\n10000,10ns,255\n");
    EXPECT_EQ(Shown("'/mat examples/sine.mat,time -interval 1ns' --type integer --until 1ns"),
              "ticks,time,value\n0,0ps,0\n1000,1ns,10\n");
}

TEST(PlayDump, IsAsWideAsItsType)
{
    EXPECT_THAT(Shown("'0 0ns, 1 5ns' --type integer --format vcd"), HasSubstr("$var integer 32 ! stimulus $end"));
    EXPECT_THAT(Shown("'5 0ns, 12 10ns' --format vcd"), HasSubstr("$var integer 32 "));
    EXPECT_THAT(Shown("'5 0ns, 99999999999 10ns' --format vcd"), HasSubstr("$var integer 64 "));
    EXPECT_THAT(Shown("'1 0ns, 0 5ns' --type real --format vcd"), HasSubstr("$var real 64 "));
    EXPECT_THAT(Shown("'165 0ns' --type 'unsigned(7 downto 0)' --format vcd"),
                HasSubstr("$var wire 8 ! stimulus [7:0]"));
}

TEST(PlayDump, OfAnIntegerReadsBackAsThirtyTwoBits)
{
    const SToolRun run = RunShell("d=$(mktemp -d); tesk play '5 0ns, -1 10ns' --type integer -o $d/a.vcd && "
                                  "tesk signals $d/a.vcd --format csv; rm -r $d");
    EXPECT_THAT(run.out, HasSubstr("tesk.stimulus,std_logic_vector(31 downto 0),2,"));
}

TEST(PlayOutput, HasTheFormatOfItsEnding)
{
    const struct {
        const char *name, *begin;
    } rows[] = {{"a.vcd", "$version tesk"}, {"a.SVG", "<svg "},       {"a.json", "{\n"},
                {"a.csv", "ticks,time"},    {"a.txt", "time  value"}, {"a.other", "ticks,time"}};
    for (const auto &row : rows) {
        const SToolRun run = RunShell("d=$(mktemp -d); tesk play '1 10ns, 0 20ns' -o $d/" + std::string(row.name) +
                                      " && cat $d/" + row.name + "; rm -r $d");
        EXPECT_THAT(run.out, StartsWith(row.begin)) << row.name;
    }
    EXPECT_EQ(Shown("'1 10ns' -o -"), "ticks,time,value\n10000,10ns,1\n");
    EXPECT_THAT(RunShell("d=$(mktemp -d); tesk play '1 10ns' -o $d/a.vcd --format csv && cat $d/a.vcd; rm -r $d").out,
                StartsWith("ticks,time"));
}

TEST(PlayWave, IsPlainAsciiWhereTheLocaleIsNotUtf8)
{
    const std::string formula = "tesk play '0 0ns, 1 20ns, Z 40ns, X 60ns' --until 80ns --format wave --width 40";
    EXPECT_EQ(RunShell("LC_ALL=C " + formula).out, "          +---------+         ----------\n"
                                                   "          |         +---------XXXXXXXXXX\n"
                                                   "----------+                   ----------\n"
                                                   "+------------------------+--------------\n"
                                                   "0ns                      50ns\n");
    EXPECT_THAT(RunShell("unset LC_ALL; LC_CTYPE= LANG=de_DE.utf8 " + formula).out, HasSubstr("┌"));
    EXPECT_THAT(RunShell("unset LC_ALL; LC_CTYPE=C LANG=de_DE.utf8 " + formula).out, Not(HasSubstr("┌")));
}

TEST(PlayColour, IsForTerminalsThatDoNotRefuseIt)
{
    const std::string play = "command -v script >/dev/null || { echo '\x1B[1;31merror\x1B[0m'; exit; }; "
                             "TERM=xterm script -qec \"tesk play '1 0nz' -o /dev/null\" /dev/null";
    EXPECT_THAT(RunShell("unset NO_COLOR; " + play).out, HasSubstr("\x1B[1;31merror\x1B[0m"));
    EXPECT_THAT(RunShell("command -v script >/dev/null || exit 0; NO_COLOR=1; export NO_COLOR; " + play).out,
                Not(HasSubstr("\x1B[1;31m")));
    EXPECT_THAT(RunShell("tesk play '1 0nz'").err, HasSubstr("tesk: error: "));
}

TEST(PlayLongFile, ShowsTheChangesThatItsStimulusCannotReach)
{
    const CTemporaryFolder folder;
    const std::string path = WriteLongDump(folder);
    const std::string all = Shown("'/custom " + path + ",t.clk' --res 1s");
    EXPECT_EQ(std::ranges::count(all, '\n'), 29);
    EXPECT_THAT(all, HasSubstr("\n13500,13500sec,1\n"));
    EXPECT_THAT(all, Not(HasSubstr(",\n")));
    EXPECT_THAT(Shown("'/custom " + path + ",t.bus' --radix dec --no-elements"),
                HasSubstr("\n13500000000000000,13500sec,3\n"));
    EXPECT_THAT(Shown("'/custom " + path + ",t.bus(0)' --res 1s --from 9100sec"),
                StartsWith("ticks,time,value\n9100,9100sec,0\n9500,9500sec,1\n"));
}

TEST(PlayLongFile, EndsWithOneWarningWhereTicksHaveNoMoreBits)
{
    const CTemporaryFolder folder;
    const SToolRun run = RunShell("tesk play '/custom " + WriteLongDump(folder) + ",t.clk' --res 1fs");
    EXPECT_THAT(run.out, testing::EndsWith("\n9000000000000000000,9000sec,0\n"));
    EXPECT_THAT(run.err, HasSubstr("the last time of 64 bits of ticks; give a coarser --res\n"));
}

TEST(PlayLongFile, ShowsNoWrongRowOfAStretch)
{
    const CTemporaryFolder folder;
    const std::string path = WriteLongDump(folder);
    for (const char *rest : {",0sec,13000sec", ",100sec", " @10sec"}) {
        const SToolRun run = RunShell("tesk play '/custom " + path + ",t.clk" + rest + "' --res 1s");
        EXPECT_LE(std::ranges::count(run.out, '\n'), 21) << rest;
        EXPECT_THAT(run.err, HasSubstr("times behind 9223 sec are not played")) << rest;
    }
}
