// tesk signals, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/stream/streamfiles.h"
#include "testpaths.h"
#include "tools/runtool.h"

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

std::string Signals(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk signals " + arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
}

// What is refused, with one line that says why.
std::string Refusal(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk signals " + arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << run.err;
    return run.err;
}

}  // namespace

TEST(Signals, ListsAVcdFileAsCsv)
{
    const std::string list = Signals("tests/data/tb.verilator.vcd");
    EXPECT_THAT(list, StartsWith("signal,type,changes,first,last\n"));
    EXPECT_THAT(list, HasSubstr("\nTOP.tb.data,std_logic_vector(7 downto 0),21,0ns,200ns\n"));
    EXPECT_THAT(list, HasSubstr("\nTOP.tb.ascending,std_logic_vector(0 to 3),16,0ns,195ns\n"));
    EXPECT_THAT(list, HasSubstr("\nTOP.tb.voltage,real,21,0ns,200ns\n"));
    EXPECT_THAT(list, HasSubstr("\nTOP.tb.DEPTH,std_logic_vector(31 downto 0),1,0ns,0ns\n"));
}

TEST(Signals, ListsAnFstFileLikeTheVcdFileOfTheSameRun)
{
    EXPECT_EQ(Signals("tests/data/tb.iverilog.fst"), Signals("tests/data/tb.iverilog.vcd"));
    EXPECT_EQ(Signals("tests/data/tb.verilator.fst | sort"), Signals("tests/data/tb.verilator.vcd | sort"));
}

TEST(Signals, ListsTheSignalsInTheRecordsOfAStream)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file, {{"tb.r",
                        "r#1#r1 a e#3#bitc2 01",
                        {},
                        {Bit(".clk", {{5, "\2"}}), Vector(".data", {{{1, "\2"}}, {{1, "\2"}, {3, "\3"}}})}}});
    EXPECT_EQ(Signals(file), "signal,type,changes,first,last\n"
                             "tb.r.clk,std_logic,1,5ps,5ps\n"
                             "tb.r.data,std_logic_vector(1 downto 0),2,1ps,3ps\n");
}

// Parentheses, escaped and extended identifiers, in a VCD, in the FST of it, and in a VCD of that again.
TEST(Signals, NamesAreThoseThatAFormulaTakes)
{
    const CTemporaryFolder folder;
    const std::string stem = (folder / "names").string();
    std::string dump = "$timescale 1ns $end\n$scope module tb $end\n$scope module gen(0) $end\n";
    char code = '!';
    for (const char *name : {"x", "m(3)", "\\a+b", "\\a.b(1) [3]", "\\two, words\\", "\\a\\b", "$unit", "a$b"})
        dump += std::string("$var wire 1 ") + code++ + " " + name + " $end\n";
    dump += "$upscope $end\n$upscope $end\n$enddefinitions $end\n#0\n";
    for (char c = '!'; c < code; ++c)
        dump += std::string("0") + c + "\n";
    dump += "#5\n";
    for (char c = '!'; c < code; ++c)
        dump += std::string("1") + c + "\n";
    WriteBytesTo(stem + ".vcd", dump + "#9\n");
    ASSERT_EQ(
        RunShell("vcd2fst " + stem + ".vcd " + stem + ".fst && tesk convert " + stem + ".fst " + stem + "2.vcd").status,
        0);
    const std::string list = Signals(stem + ".vcd");
    EXPECT_THAT(list, HasSubstr("\ntb.gen[0].m[3],"));
    EXPECT_THAT(list, HasSubstr("\ntb.gen[0].\\a+b\\,"));
    EXPECT_EQ(Signals(stem + ".fst"), list);
    EXPECT_EQ(Signals(stem + "2.vcd"), list);
    const nlohmann::json signals = nlohmann::json::parse(Signals(stem + ".vcd --format json"))["signals"];
    EXPECT_EQ(signals.size(), 8U);
    for (const nlohmann::json &signal : signals) {
        const std::string name = signal["signal"];
        for (const char *file : {".vcd", ".fst", "2.vcd"}) {
            const SToolRun run =
                RunShell("tesk play '/custom " + stem + file + "," + name + "' --type std_logic --res 1ns");
            EXPECT_THAT(run.out, StartsWith("ticks,time,value\n0,0ns,0\n5,5ns,1\n")) << name << run.err;
        }
    }
    EXPECT_EQ(RunShell("tesk play '/custom " + stem + ".fst,tb.gen(0).x' --type std_logic").status, 0);
}

TEST(Signals, LeavesTheTimesOfASignalWithoutChangesEmpty)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file, {Bit("tb.a", {})});
    EXPECT_EQ(Signals(file), "signal,type,changes,first,last\ntb.a,std_logic,0,,\n");
    EXPECT_THAT(Signals(file + " --format json"), HasSubstr("\"first_ticks\": null,\n      \"last_ticks\": null\n"));
}

TEST(Signals, WritesATable)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file, {Bit("tb.\x1B[2J", {{0, "\2"}, {70, "\3"}}), Vector("b", {{}, {}})}, 10000);
    EXPECT_EQ(Signals(file + " --format table"), "signal      type                          changes  first  last\n"
                                                 "tb.\\x1B[2J  std_logic                           2  0ps    700ps\n"
                                                 "b           std_logic_vector(1 downto 0)        0         \n");
}

TEST(Signals, WritesJson)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.zyn").string();
    WriteStream(file, {Bit("tb.clk", {{5, "\2"}, {70, "\3"}})}, 1000, 90);
    EXPECT_EQ(Signals(file + " --format json"), "{\n"
                                                "  \"file\": \"" +
                                                    file +
                                                    "\",\n"
                                                    "  \"resolution_fs\": 1000,\n"
                                                    "  \"end_ticks\": 90,\n"
                                                    "  \"signals\": [\n"
                                                    "    {\n"
                                                    "      \"signal\": \"tb.clk\",\n"
                                                    "      \"type\": \"std_logic\",\n"
                                                    "      \"description\": \"e#9#std_logicc9 UX01ZWLH-\",\n"
                                                    "      \"changes\": 2,\n"
                                                    "      \"first_ticks\": 5,\n"
                                                    "      \"last_ticks\": 70\n"
                                                    "    }\n"
                                                    "  ]\n"
                                                    "}\n");
}

TEST(Signals, WritesToAFile)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "list.csv").string();
    EXPECT_EQ(Signals("tests/data/tb.ghdl.vcd -o " + file), "");
    EXPECT_EQ(ReadFile(file), Signals("tests/data/tb.ghdl.vcd"));
}

TEST(Signals, TellsAFileByItsContents)
{
    const CTemporaryFolder folder;
    for (const char *source : {"tests/data/tb.iverilog.vcd", "tests/data/tb.iverilog.fst"}) {
        const std::string list = Signals(source);
        for (const char *name : {"a.zyn", "a.vcd", "a.fst", "a"}) {
            const std::string copy = (folder / name).string();
            std::filesystem::copy_file(std::string(TESK_SOURCE_DIR "/") + source, copy,
                                       std::filesystem::copy_options::overwrite_existing);
            EXPECT_EQ(Signals(copy), list) << source << " as " << name;
        }
    }
}

TEST(Signals, RefusesWhatItCannotRead)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a").string();
    EXPECT_EQ(Refusal(name), "tesk: " + name + ": there is no such file\n");
    EXPECT_EQ(Refusal(name + ".zyn"), "tesk: " + name + ".zyn: there is no such file\n");
    EXPECT_EQ(Refusal("tests"), "tesk: tests: is a directory; give a VCD, FST, GHW or event-stream file\n");
    EXPECT_EQ(Refusal("tools/main.cpp"),
              "tesk: tools/main.cpp: is damaged, or no VCD, FST, GHW or event-stream file\n");
    WriteBytesTo(name + ".zyn", "");
    EXPECT_EQ(Refusal(name + ".zyn"), "tesk: Event stream " + name + ".zyn is empty.\n");
    WriteBytesTo(name + ".vcd", "no dump");
    EXPECT_THAT(Refusal(name + ".vcd"), HasSubstr(name + ".vcd"));
}

TEST(Signals, SaysWhyAFileCannotBeRead)
{
    const CTemporaryFolder folder;
    const std::string loop = (folder / "loop.vcd").string();
    std::filesystem::create_symlink("loop.vcd", loop);
    EXPECT_EQ(Refusal(loop), "tesk: " + loop + ": cannot be read: Too many levels of symbolic links\n");
    if (geteuid() == 0)
        return;  // may read all files
    const std::string secret = (folder / "secret.vcd").string();
    WriteBytesTo(secret, "");
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    EXPECT_EQ(Refusal(secret), "tesk: " + secret + ": cannot be read: Permission denied\n");
}

TEST(Signals, ReadsAVcdFileFromAPipe)
{
    const CTemporaryFolder folder;
    const std::string list = Signals("tests/data/tb.ghdl.vcd");
    EXPECT_EQ(RunShell("cat tests/data/tb.ghdl.vcd | tesk signals /dev/stdin").out, list);
    EXPECT_EQ(RunShell("bash -c 'tesk signals <(cat tests/data/tb.ghdl.vcd)'").out, list);
    const std::string pipe = (folder / "pipe").string();
    EXPECT_EQ(
        RunShell("mkfifo " + pipe + " && (cat tests/data/tb.ghdl.vcd >" + pipe + " &) && tesk signals " + pipe).out,
        list);
}

TEST(Signals, DoesNotWaitForAPipeThatNothingWritesTo)
{
    const CTemporaryFolder folder;
    for (const char *name : {"p.mat", "p.fst", "p.zyn", "p"}) {
        const std::string pipe = (folder / name).string();
        ASSERT_EQ(RunShell("mkfifo " + pipe).status, 0);
        EXPECT_EQ(Refusal(pipe), "tesk: " + pipe + ": cannot open the file: it is a pipe that nothing writes to\n");
    }
}

TEST(Signals, ReadsAPackedVcdFile)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd.gz").string();
    ASSERT_EQ(RunShell("gzip -c tests/data/tb.ghdl.vcd >" + file).status, 0);
    EXPECT_EQ(Signals(file), Signals("tests/data/tb.ghdl.vcd"));
    EXPECT_EQ(RunShell("cat " + file + " | tesk signals /dev/stdin").out, Signals(file));
}

TEST(Signals, NamesAFileOfAKindThatIsNotRead)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.saif").string();
    WriteBytesTo(file, "(SAIFILE\n(SAIFVERSION \"2.0\")\n");
    EXPECT_EQ(Refusal(file), "tesk: " + file +
                                 ": it is a SAIF file, which is not read; it counts changes and holds no waveform; "
                                 "give the VCD that it was made from\n");
}

TEST(Signals, TellsWhatIsPackedByItsContents)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.gz").string();
    ASSERT_EQ(RunShell("gzip -c tests/data/tb.ghdl.vcd >" + file).status, 0);
    EXPECT_EQ(Signals(file), Signals("tests/data/tb.ghdl.vcd"));
    ASSERT_EQ(RunShell("tesk convert tests/data/tb.ghdl.vcd " + (folder / "a.zyn").string()).status, 0);
    ASSERT_EQ(RunShell("gzip -c " + (folder / "a.zyn").string() + " >" + file).status, 0);
    EXPECT_EQ(Signals(file), Signals((folder / "a.zyn").string()));
}

TEST(Signals, WarnsAsTheOtherCommandsDo)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    WriteBytesTo(file, "$var wire 1 ! a $end\n$var string 1 \" s $end\n$enddefinitions $end\n#0\n1!\n");
    const SToolRun run = RunShell("tesk signals " + file);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.err, StartsWith("tesk: warning: " + file));
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << run.err;
}

TEST(Signals, WritesJsonInUtf8WhateverTheNamesAre)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a\xFF.zyn").string();
    WriteStream(file, {Bit("tb.\xC3\xB6\xE9", {{5, "\2"}})});
    const std::string list = Signals("'" + file + "' --format json");
    EXPECT_THAT(list, HasSubstr("a\xEF\xBF\xBD.zyn\""));
    EXPECT_THAT(list, HasSubstr("\"signal\": \"tb.\xC3\xB6\xEF\xBF\xBD\""));
}

TEST(Signals, RefusesAStreamWithADamagedBlock)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a.zyn").string();
    WriteStream(name, {Bit("tb.a", {{0, "\2"}})});
    std::string bytes = ReadBytesOf(name);
    bytes[60] = static_cast<char>(~bytes[60]);
    WriteBytesTo(name, bytes);
    EXPECT_EQ(Refusal(name), "tesk: Event stream " + name + " is damaged: a block has the wrong checksum.\n");
}

TEST(Signals, HasAnExampleInItsHelp)
{
    EXPECT_THAT(RunShell("tesk signals --help").out, HasSubstr("Example: tesk signals "));
    EXPECT_EQ(RunShell("tesk signals").status, 2);
}
