// What tesk convert leaves on the disk, and what it does not.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/stream/streamfiles.h"
#include "testpaths.h"
#include "tools/runconvert.h"
#include "tools/runtool.h"

using convertcommand::DumpOf;
using convertcommand::Refusal;
using convertcommand::Succeed;
using ::testing::HasSubstr;

namespace {

// A short dump that is long when written.
void WriteShortDump(const std::string &file, int changes = 40000)
{
    std::string text = "$var wire 16384 ! v $end\n$enddefinitions $end\n";
    for (int i = 0; i < changes; ++i)
        text += '#' + std::to_string(i) + (i % 2 == 0 ? "\nb0 !\n" : "\nb1 !\n");
    WriteBytesTo(file, text);
}

// Ends a conversion, which ignores no signal, by one as soon as it has a draft. @return its status and what files there are
std::string EndBySignal(const CTemporaryFolder &folder, const std::string &output, const std::string &signal)
{
    const std::string place = (folder / "").string();
    return RunShell("env --default-signal tesk convert " + place + "a.vcd " + place + output + " & child=$!; " +
                    "while [ -z \"$(find " + place + " -name '" + output +
                    ".part*')\" ] && kill -0 $child; do sleep 0.01; done; kill -" + signal +
                    " $child; wait $child; echo $?; ls " + place)
        .out;
}

}  // namespace

TEST(ConvertOutput, LeavesNothingBehindWhereItRefuses)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a").string();
    WriteBytesTo(name + ".vcd", "no dump");
    Refusal(name + ".vcd " + name + ".zyn");
    EXPECT_FALSE(std::filesystem::exists(name + ".zyn"));
    EXPECT_THAT(Refusal("tests/data/tb.ghdl.vcd " + name + "/b.zyn"), HasSubstr("b.zyn cannot be written: "));
    EXPECT_THAT(Refusal("tests/data/tb.ghdl.vcd " + name + "/b.vcd"), HasSubstr("b.vcd: cannot be written: "));
}

TEST(ConvertOutput, ReplacesItsOwnInput)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.vcd").string();
    std::filesystem::copy_file(TESK_SOURCE_DIR "/tests/data/tb.verilator.vcd", file);
    Succeed("tesk convert " + file + " " + file);
    EXPECT_EQ(ReadFile(file), DumpOf("tests/data/tb.verilator.vcd"));
}

TEST(ConvertOutput, WritesWhereASymbolicLinkLeads)
{
    const CTemporaryFolder folder;
    const std::string base = (folder / "").string();
    for (const std::string end : {".vcd", ".zyn"}) {
        std::filesystem::create_symlink("second" + end, base + "first" + end);
        std::filesystem::create_symlink(base + "real" + end, base + "second" + end);
        for (const char *round : {"new", "replaced"}) {
            Succeed("tesk convert tests/data/tb.ghdl.vcd " + base + "first" + end);
            EXPECT_TRUE(std::filesystem::is_symlink(base + "first" + end)) << round;
            EXPECT_TRUE(std::filesystem::is_symlink(base + "second" + end)) << round;
            EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(base + "real" + end)))
                << round;
        }
        std::filesystem::create_symlink("loop" + end, base + "loop" + end);
        EXPECT_THAT(Refusal("tests/data/tb.ghdl.vcd " + base + "loop" + end),
                    HasSubstr("cannot be written: Too many levels of symbolic links"));
    }
}

TEST(ConvertOutput, KeepsTheAccessRightsOfWhatItReplaces)
{
    const CTemporaryFolder folder;
    for (const char *name : {"a.vcd", "a.zyn"}) {
        const std::string file = (folder / name).string();
        WriteBytesTo(file, "old");
        const auto rights = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                            std::filesystem::perms::others_read;
        std::filesystem::permissions(file, rights);
        Succeed("tesk convert tests/data/tb.ghdl.vcd " + file);
        EXPECT_EQ(std::filesystem::status(file).permissions(), rights) << name;
        EXPECT_NE(ReadFile(file), "old");
    }
}

TEST(ConvertOutput, RemovesItsDraftWhenASignalEndsIt)
{
    const CTemporaryFolder folder;
    WriteShortDump((folder / "a.vcd").string());
    WriteBytesTo((folder / "b.vcd").string(), "old");
    const struct {
        const char *name, *status;
    } rows[] = {{"TERM", "143"}, {"HUP", "129"}, {"USR1", "138"}, {"ALRM", "142"}, {"PIPE", "141"}, {"ABRT", "134"}};
    for (const auto &row : rows)
        EXPECT_EQ(EndBySignal(folder, "b.vcd", row.name), std::string(row.status) + "\na.vcd\nb.vcd\n") << row.name;
    EXPECT_EQ(ReadFile(folder / "b.vcd"), "old");
    WriteShortDump((folder / "a.vcd").string(), 1000000);  // a stream is written much faster
    EXPECT_EQ(EndBySignal(folder, "b.zyn", "TERM"), "143\na.vcd\nb.vcd\n");
}

TEST(ConvertOutput, GoesOnWhereTheSignalThatWouldEndItIsIgnored)  // as under nohup
{
    const CTemporaryFolder folder;
    const std::string place = (folder / "").string();
    WriteShortDump(place + "a.vcd", 1000);
    const SToolRun run = RunShell("(trap '' HUP; exec tesk convert " + place + "a.vcd " + place +
                                  "b.vcd) & child=$!; while [ -z \"$(find " + place +
                                  " -name 'b.vcd.part*' -size +0)\" ] && kill -0 $child; do sleep 0.01; done; "
                                  "kill -HUP $child; wait $child; echo $?; ls " +
                                  place);
    EXPECT_EQ(run.out, "0\na.vcd\nb.vcd\n") << run.err;
    EXPECT_THAT(ReadFile(place + "b.vcd"), HasSubstr("#999\n"));
}

TEST(ConvertOutput, SaysThatAFileWouldBeLongerThanItMayBe)
{
    const CTemporaryFolder folder;
    const std::string output = (folder / "b.vcd").string();
    for (const std::string signal : {"", "trap '' XFSZ; "}) {
        const SToolRun run = RunShell(signal + "ulimit -f 1; tesk convert tests/data/tb.ghdl.vcd " + output);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.err, "tesk: " + output + ": cannot be written: File too large\n");
    }
    EXPECT_EQ(RunShell("ls " + (folder / "").string()).out, "");
}

TEST(ConvertOutput, WritesAFileOfTheLongestName)
{
    const CTemporaryFolder folder;
    for (const char *end : {".vcd", ".zyn"}) {
        const std::string name = (folder / "").string() + std::string(251, 'x') + end;
        Succeed("tesk convert tests/data/tb.ghdl.vcd " + name);
        EXPECT_TRUE(std::filesystem::exists(name));
    }
}
