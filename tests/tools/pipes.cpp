// Files of every kind through a pipe.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tools/commandline.h"
#include "tools/files/pipeinput.h"
#include "tools/runtool.h"

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

// A pipe that gives these bytes and ends; they must fit in it.
class CFullPipe {
public:
    explicit CFullPipe(const std::string &bytes)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe(ends), 0);
        EXPECT_EQ(write(ends[1], bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
        close(ends[1]);
        m_end = tesk::CFile(ends[0]);
    }

    const tesk::CFile &End() const { return m_end; }

private:
    tesk::CFile m_end;
};

}  // namespace

TEST(PipeCopy, HoldsWhatThePipeGaveAndGoesWithTheObject)
{
    std::string path;
    {
        const CFullPipe pipe("abc");
        const tesk::CPipeCopy copy(pipe.End(), 3);
        path = copy.Path();
        EXPECT_EQ(ReadFile(path), "abc");
        EXPECT_EQ(ReadFile(path), "abc");
        EXPECT_THAT(std::filesystem::read_symlink(path).string(), testing::EndsWith("(deleted)"));
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PipeCopy, IsBounded)
{
    const CFullPipe pipe("abcd");
    EXPECT_THROW(
        {
            try {
                const tesk::CPipeCopy copy(pipe.End(), 3);
            } catch (const CRefusal &refusal) {
                EXPECT_THAT(refusal.what(), HasSubstr("it is longer than 3 bytes; write it to a file"));
                throw;
            }
        },
        CRefusal);
}

TEST(Pipes, MayHoldFilesOfEveryKind)
{
    const CTemporaryFolder folder;
    const std::string stem = (folder / "t").string();
    ASSERT_EQ(RunShell("tesk convert examples/traffic.vcd " + stem + ".zyn && gzip -kc " + stem + ".zyn >" + stem +
                       ".zyn.gz && gzip -c examples/traffic.vcd >" + stem + ".gz")
                  .status,
              0);
    const std::string list = RunShell("tesk signals examples/traffic.vcd").out;
    for (const std::string &file :
         {std::string("examples/traffic.fst"), stem + ".zyn", stem + ".zyn.gz", stem + ".gz"}) {
        EXPECT_EQ(RunShell("cat " + file + " | tesk signals -").out, list) << file;
        EXPECT_EQ(RunShell("bash -c 'tesk signals <(cat " + file + ")'").out, list) << file;
    }
    EXPECT_EQ(RunShell("cat examples/packets.ghw | tesk signals - --names").out,
              RunShell("tesk signals examples/packets.ghw --names").out);
    for (const char *file : {"octave4.mat", "octave7.mat", "matio73.mat"})
        EXPECT_EQ(RunShell("cat tests/data/" + std::string(file) + " | tesk signals - m").out,
                  "variable,class,size\nm,double,3x4\n")
            << file;
}

TEST(Pipes, AreConverted)
{
    const CTemporaryFolder folder;
    const std::string out = (folder / "o.fst").string();
    EXPECT_EQ(RunShell("cat examples/traffic.fst | tesk convert - -").out,
              RunShell("tesk convert examples/traffic.fst -").out);
    EXPECT_EQ(RunShell("cat examples/traffic.fst | tesk convert - " + out + " && tesk signals " + out).out,
              RunShell("tesk signals examples/traffic.fst").out);
}

TEST(Pipes, MayComeInLittlePiecesAndWithAName)
{
    const CTemporaryFolder folder;
    const std::string pipe = (folder / "p.fst").string();
    const std::string list = RunShell("tesk signals examples/traffic.fst").out;
    const std::string pieces = "(for i in 1 2 3; do head -c 3; sleep 0.05; done; cat) <examples/traffic.fst";
    EXPECT_EQ(RunShell(pieces + " | tesk signals -").out, list);
    EXPECT_EQ(RunShell("mkfifo " + pipe + " && (cat examples/traffic.fst >" + pipe + " &) && tesk signals " + pipe).out,
              list);
}

TEST(Pipes, LeaveNothingBehind)
{
    const CTemporaryFolder folder;
    const std::string place = (folder / "tmp").string();
    EXPECT_EQ(RunShell("mkdir " + place + " && TMPDIR=" + place +
                       " && export TMPDIR && (cat examples/traffic.fst; sleep 0.3) | tesk signals - >/dev/null & sleep "
                       "0.15; ls " +
                       place + "; wait; ls " + place)
                  .out,
              "");
}

TEST(Pipes, NameStandardInputInMessages)
{
    const struct {
        const char *input, *words;
    } rows[] = {
        {"head -c 400 examples/traffic.fst", "standard input"},
        {"head -c 200 examples/sine.mat", "tesk: standard input: the file is no MAT-file, or it is damaged\n"},
        {"head -c 300 examples/packets.ghw", "standard input"},
        {"printf '(SAIFILE\\n'", "it is a SAIF file, which is not read"},
        {"echo hello", "not a VCD file"},
        {":", "the file is empty"},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell(std::string(row.input) + " | tesk signals -");
        EXPECT_EQ(run.status, 1) << row.input;
        EXPECT_EQ(run.out, "") << row.input;
        EXPECT_THAT(run.err, HasSubstr(row.words)) << row.input;
        EXPECT_THAT(run.err, Not(HasSubstr("/proc/"))) << row.input;
    }
}

TEST(Pipes, TellOfAFolderThatTakesNoCopy)
{
    const SToolRun run = RunShell("cat examples/traffic.fst | TMPDIR=/proc tesk signals -");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, StartsWith("tesk: what comes through a pipe is no VCD, and is copied to be read; /proc: "));
}

TEST(Terminal, ShowsHowFarLongWorkIsAndARefusalInColour)
{
    ASSERT_EQ(RunShell("command -v script").status, 0) << "it makes the terminal";
    const auto onTerminal = [](const std::string &command) {
        return RunShell("unset NO_COLOR; TERM=xterm script -qec \"" + command + "\" /dev/null").out;
    };
    const std::string slow = "(head -c 99; sleep 1.1; cat) <examples/traffic.fst | ";
    EXPECT_THAT(onTerminal(slow + "tesk signals - -o /dev/null"), HasSubstr("\rCopying: 0 MiB\r\x1B[K"));
    EXPECT_EQ(RunShell(slow + "tesk signals - -o /dev/null").err, "");
    EXPECT_THAT(onTerminal("tesk play '1 -5ns'"), StartsWith("\x1B[1;31mtesk:\x1B[0m formula "));
    EXPECT_THAT(onTerminal("tesk plya"), StartsWith("\x1B[1;31mtesk:\x1B[0m no command "));
    EXPECT_THAT(onTerminal("tesk check '1 0nz'"), HasSubstr("  1 0nz\r\n    ^~~\r\n"));
    EXPECT_THAT(onTerminal("NO_COLOR=1 tesk plya"), StartsWith("tesk: no command "));
}
