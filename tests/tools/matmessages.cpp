// What the tool says of a MAT-file that it cannot play.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "testpaths.h"
#include "tools/runtool.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

const std::string Samples[] = {"octave7.mat", "matio73.mat"};

SToolRun Play(const std::string &file, const std::string &rest)
{
    return RunShell("tesk play '/mat tests/data/" + file + ',' + rest + "' --type real");
}

TEST(MatMessages, NameTheClassAndWhatToDo)
{
    const struct {
        const char *variable, *words;
    } rows[] = {
        {"sg", "variable \"sg\" is of class single, and doubles are played; save it as double(sg)"},
        {"i8", "variable \"i8\" is of class int8, and doubles are played; save it as double(i8)"},
        {"u64", "variable \"u64\" is of class uint64, and doubles are played; save it as double(u64)"},
        {"lg", "variable \"lg\" is of class logical, and doubles are played; save it as double(lg)"},
        {"ce", "variable \"ce\" is of class cell, and a matrix of doubles is played"},
        {"s", "variable \"s\" is of class struct, and a matrix of doubles is played"},
        {"n3", "variable \"n3\" has 3 dimensions; save a matrix of two"},
        {"values -time_var i8", "variable \"i8\" is of class int8, and doubles are played; save it as double(i8)"},
    };
    for (const auto &row : rows) {
        for (const std::string &file : Samples) {
            const SToolRun run = Play(file, row.variable);
            EXPECT_EQ(run.status, 1) << file << row.variable;
            EXPECT_THAT(run.err, HasSubstr("tests/data/" + file + ": " + row.words + "\n"));
        }
    }
    EXPECT_THAT(Play("octave7.mat", "sp").err, HasSubstr("variable \"sp\" is sparse; save it as full(sp)\n"));
}

TEST(MatMessages, TellThatAnImaginaryPartIsLeftOut)
{
    for (const std::string &file : Samples) {
        const SToolRun run = Play(file, "cx");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "tesk: warning: tests/data/" + file +
                               ": variable \"cx\" is complex, and its imaginary part is not played; save real(cx) or "
                               "imag(cx) to have the one that is meant\n");
        EXPECT_EQ(Play(file, "values").err, "");
    }
}

TEST(MatMessages, TellAFileThatIsNoneFromAVariableThatIsNotThere)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "a.mat").string();
    std::ofstream(file) << "time,value\n";
    EXPECT_THAT(RunShell("tesk play '/mat " + file + ",v' --type real").err,
                HasSubstr(file + ": the file is no MAT-file, or it is damaged\n"));
    EXPECT_THAT(
        Play("octave7.mat", "none").err,
        HasSubstr("tests/data/octave7.mat: the file has no variable \"none\"; its variables are \"m\", \"times\", "));
    EXPECT_THAT(Play("octave7.mat", "value").err, HasSubstr("no variable \"value\" (did you mean \"values\"?)"));
    EXPECT_THAT(Play("octave7.mat", "values -time_var tims").err, HasSubstr("(did you mean \"times\"?)"));
}

// An installation whose reading program is replaced.
std::string PlayWithReader(const std::string &reader, fs::perms rights)
{
    const CTemporaryFolder folder;
    const fs::path build = fs::path(TESK_TOOL).parent_path().parent_path();
    fs::create_directories(folder / "bin");
    fs::create_directories(folder / "lib");
    fs::copy(TESK_TOOL, folder / "bin/tesk");
    fs::copy(build / "tesk", folder / "lib/tesk");
    fs::remove(folder / "lib/tesk/tesk-matread");
    if (!reader.empty()) {
        std::ofstream(folder / "lib/tesk/tesk-matread") << reader;
        fs::permissions(folder / "lib/tesk/tesk-matread", rights);
    }
    const SToolRun run =
        RunShell("'" + (folder / "bin/tesk").string() + "' play '/mat examples/sine.mat,sine' --type real");
    EXPECT_EQ(run.status, 1);
    const std::size_t at = run.err.find("tesk-matread ");
    return at != std::string::npos ? run.err.substr(at) : run.err;
}

TEST(MatMessages, NameTheReadingProgramIfItIsAtFault)
{
    EXPECT_EQ(PlayWithReader("", {}), "tesk-matread cannot be started: No such file or directory\n");
    EXPECT_EQ(PlayWithReader("#!/bin/sh\n", fs::perms::owner_read),
              "tesk-matread cannot be started: Permission denied\n");
    EXPECT_EQ(PlayWithReader("#!/bin/sh\nkill -9 $$\n", fs::perms::owner_all),
              "tesk-matread was ended by signal 9 (Killed)\n");
    // It opens the file, and dies over the variable.
    EXPECT_EQ(PlayWithReader("#!/bin/sh\n[ $# != 3 ] && kill -11 $$\nprintf TESKMAT1TESKEND1\n", fs::perms::owner_all),
              "tesk-matread was ended by signal 11 (Segmentation fault)\n");
    EXPECT_THAT(PlayWithReader("#!/bin/sh\nexit 1\n", fs::perms::owner_all),
                HasSubstr("the file is no MAT-file, or it is damaged"));
}

}  // namespace
