// tesk convert, from the shell; dumps as GTKWave's converter reads them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/fst/fstvcd.h"
#include "platform/stream/morvelformat.h"
#include "platform/stream/streamfiles.h"
#include "testpaths.h"
#include "tools/runconvert.h"
#include "tools/runtool.h"

using convertcommand::DumpOf;
using convertcommand::Refusal;
using convertcommand::Succeed;
using ::testing::HasSubstr;

using namespace std::string_literals;

namespace {

constexpr std::array Dumps = {"tb.iverilog.vcd",  "tb.iverilog.fst", "tb.verilator.vcd",
                              "tb.verilator.fst", "tb.ghdl.vcd",     "tb.ghdl.fst"};

// GTKWave writes 16 digits of a real.
std::string WithoutReals(const std::string &dump)
{
    std::istringstream in(dump);
    std::string kept;
    for (std::string line; std::getline(in, line);)
        kept += line.starts_with('r') ? "" : line + '\n';
    return kept;
}

bool HasProgram(const std::string &name)
{
    return RunShell("command -v " + name).status == 0;
}

}  // namespace

TEST(Convert, KeepsAllSignalsAndChangesOnTheWayThroughAStream)
{
    const CTemporaryFolder folder;
    const std::string stream = (folder / "a.zyn").string();
    const std::string dump = (folder / "a.vcd").string();
    for (const std::string source : Dumps) {
        const std::string file = "tests/data/" + source;
        Succeed("tesk convert " + file + " " + stream);
        Succeed("tesk convert " + stream + " " + dump);
        const std::string list = RunShell("tesk signals " + file).out;
        EXPECT_EQ(RunShell("tesk signals " + stream).out, list) << source;
        EXPECT_EQ(RunShell("tesk signals " + dump).out, list) << source;
        EXPECT_EQ(DumpOf(dump), ReadFile(dump)) << source;

        // A stream has no aliases, so that only what went through one compares with what did.
        const std::string direct = (folder / "direct.vcd").string();
        Succeed("tesk convert " + file + " " + direct);
        EXPECT_EQ(DumpOf(direct), ReadFile(direct)) << source;
        Succeed("tesk convert " + direct + " " + stream);
        EXPECT_EQ(DumpOf(stream), ReadFile(dump)) << source;
    }
}

TEST(Convert, WritesDumpsThatGtkwaveReadsAsItReadsTheOriginal)
{
    ASSERT_TRUE(HasProgram("vcd2fst") && HasProgram("fst2vcd")) << "both are in the package gtkwave";
    const CTemporaryFolder folder;
    const std::string base = (folder / "a").string();
    for (const std::string source : Dumps) {
        const std::string file = "tests/data/" + source;
        Succeed("tesk convert " + file + " " + base + ".vcd");
        Succeed("vcd2fst " + base + ".vcd " + base + ".fst && fst2vcd " + base + ".fst -o " + base + ".2.vcd");
        EXPECT_EQ(RunShell("tesk signals " + base + ".2.vcd").out, RunShell("tesk signals " + file).out) << source;
        EXPECT_EQ(WithoutReals(DumpOf(base + ".2.vcd")), WithoutReals(ReadFile(base + ".vcd"))) << source;
    }
}

TEST(Convert, RebuildsScopesRangesAndTheTimeScale)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file,
                {Bit("tb.clk", {{0, "\2"}, {5, "\3"}}), Vector("tb.dut.v", {{{5, "\2"}}, {{7, "\1"}}}),
                 Bit("tb.dut.sub.q", {{0, "\0"}}), Bit("top", {{5, "\x8"}})},
                100000, 20);
    EXPECT_EQ(DumpOf(file), "$version tesk $end\n"
                            "$timescale 100ps $end\n"
                            "$scope module tb $end\n"
                            "$var wire 1 ! clk $end\n"
                            "$scope module dut $end\n"
                            "$var wire 2 \" v [1:0] $end\n"
                            "$scope module sub $end\n"
                            "$var wire 1 # q $end\n"
                            "$upscope $end\n"
                            "$upscope $end\n"
                            "$upscope $end\n"
                            "$var wire 1 $ top $end\n"
                            "$enddefinitions $end\n"
                            "#0\n0!\nu#\n"
                            "#5\n1!\nb0x \"\n-$\n"
                            "#7\nb0x \"\n"
                            "#20\n");
}

TEST(Convert, WritesEveryTypeOfAStream)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    const std::string integer = "i#7#integerrict-2147483648 2147483647";
    const std::string state = "e#5#states3 idle run stop ";
    WriteStream(file, {{"r", Real, {{0, "\0\0\0\0\0\0\xF8\xBF"s}}, {}},
                       {"i", integer, {{0, "\xFE\xFF\xFF\xFF"s}}, {}},
                       {"t", "p#4#timerict-9223372036854775808 9223372036854775807", {{0, "\5\0\0\0\0\0\0\0"s}}, {}},
                       {"s", state, {{0, "\1"}, {2, "\2"}, {3, "\7"}}, {}},
                       {"b", "e#3#bitc2 01", {{0, "\1"}, {1, "\7"}}, {}},
                       {"v",
                        "va#8#reg[0:1]1 rict0 1 e#3#regc4 01ZX",
                        {},
                        {{"(0)", "e#3#regc4 01ZX", {{0, "\2"}}, {}}, {"(1)", "e#3#regc4 01ZX", {}, {}}}},
                       {"w",
                        "a#11#mem(3 to 4)1 rict3 4 " + integer,
                        {},
                        {{"(3)", integer, {{1, "\1\0\0\0"s}}, {}}, {"(4)", integer, {}, {}}}}});
    const std::string zeros(29, '0');
    EXPECT_THAT(DumpOf(file), HasSubstr("$var real 64 ! r $end\n"
                                        "$var integer 32 \" i $end\n"
                                        "$var integer 64 # t $end\n"
                                        "$var string 1 $ s $end\n"
                                        "$var wire 1 % b $end\n"
                                        "$var wire 2 & v [0:1] $end\n"
                                        "$var integer 32 ' w(3) $end\n"
                                        "$var integer 32 ( w(4) $end\n"
                                        "$enddefinitions $end\n"
                                        "#0\nr-1.5 !\nb11111111111111111111111111111110 \"\n"
                                        "b" +
                                        std::string(61, '0') +
                                        "101 #\nsrun $\n1%\nbzx &\n"
                                        "#1\nx%\nb" +
                                        zeros + "001 '\n#2\nsstop $\n#3\ns $\n"));
}

TEST(Convert, WritesAliasesUnderOneIdentifierCode)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    WriteBytesTo(file, "$timescale 1ns $end\n"
                       "$var wire 1 ! a $end\n$var wire 2 \" v [1:0] $end\n$var wire 2 \" w [0:1] $end\n"
                       "$var wire 1 # c $end\n$var reg 1 ! b $end\n$enddefinitions $end\n"
                       "#0\n1!\n0#\nb10 \"\n#5\n0!\n");
    EXPECT_EQ(DumpOf(file), "$version tesk $end\n"
                            "$timescale 1ns $end\n"
                            "$var wire 1 ! a $end\n"
                            "$var wire 2 \" v [1:0] $end\n"
                            "$var wire 2 \" w [0:1] $end\n"
                            "$var wire 1 # c $end\n"
                            "$var wire 1 ! b $end\n"
                            "$enddefinitions $end\n"
                            "#0\n1!\nb10 \"\n0#\n#5\n0!\n");
    const std::string stream = (folder / "a.zyn").string();
    Succeed("tesk convert " + file + " " + stream);
    EXPECT_EQ(RunShell("tesk signals " + stream).out, RunShell("tesk signals " + file).out);
    EXPECT_EQ(DumpOf(stream), DumpOf(file));
}

// Words of 64 elements and what is left of them, values beside 0 and 1, an alias of another width, reals.
std::string DumpOfAllSorts()
{
    std::string dump =
        "$timescale 1ns $end\n$var wire 70 ! v [69:0] $end\n$var wire 70 ! w [0:69] $end\n$var wire 3 ! x [2:0] $end\n"
        "$var real 64 r r $end\n$var wire 1 c c $end\n$var integer 32 i i $end\n$enddefinitions $end\n";
    for (int i = 0; i < 200; ++i) {
        dump += '#' + std::to_string(i / 2) + "\nb";
        for (int bit = 0; bit < 70; ++bit)
            dump += i % 9 == 3 ? 'z' : i % 7 == 2 && bit < 4 ? 'x' : (i * (bit + 3) / 5) % 2 != 0 ? '1' : '0';
        dump += " !\n" + std::to_string(i / 3 % 2) + "c\nr" + std::to_string(i / 4) + " r\nb" +
                (i % 5 == 0 ? "1x0" : "110") + " i\n";
    }
    return dump;
}

TEST(Convert, MakesTheSameStreamOfAVcdAsAWholeAsOfAllItsSignals)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    const std::string whole = (folder / "whole.zyn").string();
    const std::string selected = (folder / "selected.zyn").string();
    WriteBytesTo(file, DumpOfAllSorts());
    Succeed("tesk convert " + file + " " + whole);
    Succeed("tesk convert " + file + " " + selected + " \"*\"");
    EXPECT_EQ(DumpOf(whole), DumpOf(file));
    EXPECT_EQ(DumpOf(selected), DumpOf(file));
    EXPECT_EQ(RunShell("tesk signals " + whole).out, RunShell("tesk signals " + file).out);
    Succeed("tesk convert " + whole + " " + selected + " \"*\" --until 40ns");
    EXPECT_EQ(DumpOf(selected), RunShell("tesk convert " + file + " - --until 40ns").out);
    Succeed("tesk convert - " + selected + " < " + file);
    EXPECT_EQ(ReadBytesOf(selected), ReadBytesOf(whole));
}

TEST(Convert, RefusesAStreamWithADamagedBlock)
{
    const CTemporaryFolder folder;
    const std::string stream = (folder / "a.zyn").string();
    WriteStream(stream, {Bit("a", {{1, "\2"}, {5, "\3"}})});
    std::string bytes = ReadBytesOf(stream);
    bytes[Morvel::HeaderSize] = static_cast<char>(~bytes[Morvel::HeaderSize]);
    WriteBytesTo(stream, bytes);
    EXPECT_EQ(Refusal(stream + " " + (folder / "a.vcd").string()),
              "tesk: Event stream " + stream + " is damaged: a block has the wrong checksum\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "a.vcd"));
}

TEST(Convert, RefusesAVcdOfWhichNothingCanBeRead)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    WriteBytesTo(file, "$timescale 1ns $end\n$var wire 1 ! a\n");
    EXPECT_EQ(Refusal(file + " " + (folder / "a.zyn").string()), Refusal(file + " -"));
    EXPECT_FALSE(std::filesystem::exists(folder / "a.zyn"));
}

TEST(Convert, WritesTheEventsOfTenThousandAliasesOnce)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    const std::string dump = (folder / "b.vcd").string();
    std::string text = "$timescale 1ns $end\n";
    for (int i = 0; i < 10000; ++i)
        text += "$var wire 1 ! n" + std::to_string(i) + " $end\n";
    text += "$enddefinitions $end\n";
    for (int i = 0; i < 5000; ++i)
        text += '#' + std::to_string(i) + (i % 2 == 0 ? "\n0!\n" : "\n1!\n");
    WriteBytesTo(file, text);
    Succeed("tesk convert " + file + " " + dump);
    EXPECT_LT(std::filesystem::file_size(dump), 2 * text.size());
    const std::string list = RunShell("tesk signals " + dump).out;
    EXPECT_THAT(list, HasSubstr("\nn9999,std_logic,5000,0ns,4999ns\n"));
    EXPECT_EQ(RunShell("tesk signals " + file).out, list);
}

TEST(Convert, CutsNamesIntoScopesThatGiveThemBack)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    const std::string dump = (folder / "a.vcd").string();
    const char *const names[] = {
        "a",  "a.b", "tb.\\odd.name\\.q", "tb.\\odd name\\", "tb.\\to+the.end[3]", "tb..q",
        ".q", "q.",  "tb.g(0).q",         "tb.m[1]",         "tb.\\x+y\\[3]",      "$unit.a$b"};
    const char *const spelled[] = {
        "a",  "a.b", "tb.\\odd.name\\.q", "tb.\\odd name\\", "tb.\\to+the.end[3]\\", "tb..q",
        ".q", "q.",  "tb.g[0].q",         "tb.m[1]",         "tb.\\x+y\\[3]",        "$unit.a$b"};
    std::vector<STreeNode> nodes;
    std::string list = "signal,type,changes,first,last\n";
    for (const char *name : names)
        nodes.push_back(Bit(name, {{0, "\2"}}));
    for (const char *name : spelled)
        list += name + ",std_logic,1,0ps,0ps\n"s;
    WriteStream(file, nodes);
    Succeed("tesk convert " + file + " " + dump);
    EXPECT_EQ(RunShell("tesk signals " + dump).out, list);
    EXPECT_THAT(ReadFile(dump), HasSubstr("$scope module \\odd.name $end\n$var wire 1 # q $end\n"));
    EXPECT_THAT(ReadFile(dump), HasSubstr("$var wire 1 + \\x+y [3] $end\n"));
}

TEST(Convert, ReplacesWhatADumpCannotHoldInAName)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file, {Bit("", {}), Bit("\\a $end b\\", {}), Bit("x\n.y\t", {}), Bit("$end", {})});
    EXPECT_THAT(DumpOf(file), HasSubstr("$var wire 1 ! _ $end\n"
                                        "$var wire 1 \" \\a _end b\\ $end\n"
                                        "$scope module x_ $end\n"
                                        "$var wire 1 # y_ $end\n"
                                        "$upscope $end\n"
                                        "$var wire 1 $ _end $end\n"));
}

TEST(Convert, SaysWhatItCannotConvert)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a").string();
    WriteStream(name + ".zyn", {});
    EXPECT_EQ(Refusal(name + ".zyn " + name + ".tmp"),
              "tesk: " + name + ".zyn: is an event stream already; it can be converted to VCD and FST\n");
    EXPECT_EQ(
        Refusal("tests/data/tb.ghdl.vcd out.wave"),
        "tesk: out.wave: its name tells no format that can be written; end it in .zyn for an event stream, in .vcd "
        "or in .fst, or use --format\n");
    EXPECT_EQ(Refusal("tests/data/tb.ghdl.vcd - --format fst"),
              "tesk: standard output takes a VCD only; give an event stream or an FST a file\n");
    EXPECT_EQ(Refusal("tests/data/tb.ghdl.vcd - --format stream"),
              "tesk: standard output takes a VCD only; give an event stream or an FST a file\n");
    EXPECT_EQ(Refusal(name + ".none " + name + ".vcd"), "tesk: " + name + ".none: there is no such file\n");
}

// Each variable of a dump, and its changes.
std::vector<std::pair<std::string, std::string>> ChangesByName(const std::string &dump)
{
    std::istringstream text(dump);
    const fsttest::SVcdDump read = fsttest::CVcdText(text).Read();
    std::vector<std::pair<std::string, std::string>> list;
    for (const auto &variable : read.variables) {
        list.emplace_back(variable.name, "");
        for (const auto &change : read.changes.at(variable.id))
            list.back().second += '#' + std::to_string(change.time) + ' ' + change.value + ' ';
    }
    return list;
}

// The VCD of a file, and the VCD of the FST of it.
TEST(Convert, WritesAnFstThatTellsTheSame)
{
    const CTemporaryFolder folder;
    const std::string fst = (folder / "a.fst").string();
    for (const char *file : {"tests/data/tb.verilator.vcd", "tests/data/tb.iverilog.fst", "tests/data/tb.ghdl.vcd",
                             "examples/traffic.vcd"}) {
        Succeed("tesk convert "s + file + " " + fst);
        EXPECT_EQ(ChangesByName(DumpOf(fst)), ChangesByName(DumpOf(TESK_SOURCE_DIR "/"s + file))) << file;
        EXPECT_EQ(RunShell("tesk signals " + fst).out, RunShell("tesk signals "s + file).out) << file;
    }
}

TEST(Convert, WritesAnFstThatAForeignReaderTakes)
{
    const CTemporaryFolder folder;
    const std::string stream = (folder / "a.zyn").string();
    const std::string fst = (folder / "a.fst").string();
    WriteStream(stream, {Bit("tb.\\a+b\\", {{0, "\2"}, {7, "\5"}}),
                         {"tb.n", "i#7#integerrict-2147483648 2147483647", {{3, "\xff\xff\xff\xff"}}, {}},
                         {"tb.s", "e#5#states2 IDLE BUSY ", {{3, "\1"}}, {}}});
    Succeed("tesk convert " + stream + " " + fst);
    const std::string dump = RunShell("fst2vcd -e -f " + fst).out;
    for (const char *line :
         {"\t1ps\n", "$scope module tb $end\n$var wire 1 ! \\a+b $end\n$var integer 32 \" n $end\n$var string", "#0\n",
          "0!\n", "#3\n", "b11111111111111111111111111111111 \"\n", "sBUSY #\n", "#7\nw!\n"})
        EXPECT_THAT(dump, HasSubstr(line));
}

TEST(Convert, RefusesATimeThatIsTooLongForAnFst)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a").string();
    WriteBytesTo(name + ".vcd", "$timescale 244ns $end\n$var wire 1 ! a $end\n$enddefinitions $end\n#0\n0!\n"
                                "#9223372036854775800\n1!\n");
    EXPECT_THAT(Refusal(name + ".vcd " + name + ".fst"), HasSubstr("a time is too long for an FST file"));
    EXPECT_FALSE(std::filesystem::exists(name + ".fst"));
}

TEST(Convert, TakesItsFormatOnStandardOutputFromTheOption)
{
    EXPECT_EQ(RunShell("tesk convert tests/data/tb.ghdl.vcd - --format vcd").out, DumpOf("tests/data/tb.ghdl.vcd"));
}

TEST(Convert, ReadsADumpFromAPipe)
{
    EXPECT_EQ(DumpOf("/dev/stdin <tests/data/tb.ghdl.vcd"), DumpOf("tests/data/tb.ghdl.vcd"));
    EXPECT_EQ(RunShell("cat tests/data/tb.ghdl.vcd | tesk convert /dev/stdin -").out, DumpOf("tests/data/tb.ghdl.vcd"));
}

TEST(Convert, NamesFilesOnOneLine)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a\n\x1B\xC2\x9Bö").string();
    const std::string shown = (folder / "a\\x0A\\x1B\\xC2\\x9Bö").string();
    EXPECT_EQ(Refusal("'" + name + "' out.vcd"), "tesk: " + shown + ": there is no such file\n");
    EXPECT_THAT(Refusal("tests/data/tb.ghdl.vcd '" + name + "'"), HasSubstr(shown + ": its name tells no format"));
    EXPECT_EQ(Refusal("tests/data/tb.ghdl.vcd '" + name + "/b.vcd'"),
              "tesk: " + shown + "/b.vcd: cannot be written: No such file or directory\n");
    EXPECT_EQ(Refusal("tests/data/tb.ghdl.vcd '" + name + "/b.zyn'"),
              "tesk: Event stream " + shown + "/b.zyn cannot be written: No such file or directory.\n");
    for (const char *letter : {"\xC2\xA0", "\xC3\x80"})  // the first behind the control characters, and one like them
        EXPECT_EQ(Refusal(std::string("'") + letter + "' out.vcd"),
                  "tesk: " + std::string(letter) + ": there is no such file\n");
    EXPECT_EQ(Refusal("'\xC2\x9F' out.vcd"), "tesk: \\xC2\\x9F: there is no such file\n");
    WriteBytesTo(name + ".zyn", "no stream");
    EXPECT_EQ(Refusal("'" + name + ".zyn' out.vcd"), "tesk: Event stream " + shown + ".zyn is no event stream.\n");
    WriteStream(name + ".zyn", {});
    EXPECT_EQ(Refusal("'" + name + ".zyn' out.zyn"),
              "tesk: " + shown + ".zyn: is an event stream already; it can be converted to VCD and FST\n");
}

TEST(Convert, HasAnExampleInItsHelp)
{
    EXPECT_THAT(RunShell("tesk convert --help").out, HasSubstr("Example: tesk convert "));
    EXPECT_EQ(RunShell("tesk convert a.vcd").status, 2);
}
