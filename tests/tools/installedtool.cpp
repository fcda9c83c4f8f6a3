// The tool where it is installed, started by its name.
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

// An installation in a place of its own, and an empty folder to be in.
class InstalledTool : public testing::Test {
protected:
    InstalledTool()
    {
        const fs::path build = fs::path(TESK_TOOL).parent_path().parent_path();
        fs::create_directories(m_place / "bin");
        fs::create_directories(m_place / "lib");
        fs::copy(TESK_TOOL, m_place / "bin/tesk");
        fs::copy(build / "tesk", m_place / "lib/tesk");
        fs::create_directories(m_place / "at/here");
        fs::copy(TESK_SOURCE_DIR "/examples/sine.mat", m_place / "at/here");
    }

    // The library of somebody else, whose variables are made up and "sine" is not among them.
    static void PutForeignLibraries(const fs::path &folder)
    {
        fs::create_directories(folder);
        for (const char *name : {"libmat.so", "libmx.so"})
            fs::copy(fs::path(TESK_FAKE_MATLAB "/bin/glnxa64") / name, folder);
    }

    // Plays a variable of a MAT-file. @param setting  in front of the tool's name
    SToolRun Play(const std::string &setting = "") const
    {
        return RunShell("cd '" + (m_place / "at/here").string() + "' && PATH='" + (m_place / "bin").string() +
                        "':/usr/bin:/bin && " + setting + " tesk play '/mat sine.mat,sine' --type real --until 1ps");
    }

    // As in a place of its own without anything else.
    void ExpectPlays(const std::string &setting = "") const
    {
        const SToolRun run = Play(setting);
        EXPECT_EQ(run.status, 0) << setting << run.err;
        EXPECT_THAT(run.out, StartsWith("ticks,time,value\n0,0ps,0.000000\n")) << setting;
    }

    CTemporaryFolder m_place;
};

TEST_F(InstalledTool, LoadsNoLibraryOfTheCurrentFolder)
{
    PutForeignLibraries(m_place / "at/here/tesk");
    PutForeignLibraries(m_place / "at/here/glnxa64");
    std::ofstream(m_place / "at/here/matlab") << "";
    ExpectPlays();
}

TEST_F(InstalledTool, LoadsNoLibraryOfAFolderNextToTheCurrentOne)
{
    PutForeignLibraries(m_place / "at/tesk");
    std::ofstream(m_place / "at/here/tesk") << "";
    ExpectPlays();
}

TEST_F(InstalledTool, PassesOverFoldersOfListsThatAreNotAbsolute)
{
    PutForeignLibraries(m_place / "at/here");
    PutForeignLibraries(m_place / "at/here/glnxa64");
    PutForeignLibraries(m_place / "at/here/bin/glnxa64");
    std::ofstream(m_place / "at/here/matlab") << "";
    std::ofstream(m_place / "at/here/bin/matlab") << "";
    for (const char *setting :
         {"PATH=.:$PATH", "PATH=bin:$PATH", "PATH=:$PATH", "PATH=$PATH:", "LD_LIBRARY_PATH=:/nowhere",
          "LD_LIBRARY_PATH=/nowhere:", "LD_LIBRARY_PATH=.", "LD_LIBRARY_PATH='/nowhere;.'"})
        ExpectPlays(setting);
}

TEST_F(InstalledTool, TakesAnInstalledLibraryOfAnAbsoluteFolderFirst)
{
    PutForeignLibraries(m_place / "other");
    const SToolRun run = Play("LD_LIBRARY_PATH='" + (m_place / "other").string() + "'");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("sine"));
}

// Its own ones are told from those of the build by their reading program.
TEST_F(InstalledTool, FindsItsLibrariesWhateverIsCalledLikeItInTheCurrentFolder)
{
    const fs::path used = m_place / "used", reader = m_place / "lib/tesk/tesk-matread";
    fs::rename(reader, m_place / "reader");
    std::ofstream(reader) << "#!/bin/sh\n: >'" << used.string() << "'\nexec '" << (m_place / "reader").string()
                          << "' \"$@\"\n";
    fs::permissions(reader, fs::perms::owner_all);
    ExpectPlays();
    EXPECT_TRUE(fs::remove(used)) << "without anything";
    std::ofstream(m_place / "at/here/tesk") << "";
    ExpectPlays();
    EXPECT_TRUE(fs::remove(used)) << "with an empty file";
    fs::remove(m_place / "at/here/tesk");
    fs::create_directory(m_place / "at/here/tesk");
    ExpectPlays();
    EXPECT_TRUE(fs::remove(used)) << "with a folder";
}

}  // namespace
