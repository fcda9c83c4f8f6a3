// The scripts by which the tool is used out of its sources.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tools/runtool.h"

using ::testing::HasSubstr;

TEST(Wrapper, RunsThroughASymbolicLink)
{
    const SToolRun run = RunShell("d=$(mktemp -d); mkdir -p $d/tree/build/release/tools $d/bin; cp ./tesk $d/tree/; "
                                  "printf '#!/bin/sh\\necho ran \"$@\"\\n' > $d/tree/build/release/tools/tesk; "
                                  "chmod +x $d/tree/build/release/tools/tesk; ln -s ../tree/tesk $d/bin/tesk; "
                                  "cd /; $d/bin/tesk play 'a b'; s=$?; rm -r $d; exit $s");
    EXPECT_EQ(run.out, "ran play a b\n");
    EXPECT_EQ(run.status, 0) << run.err;
}

TEST(InstallDeps, NeedsNoAptGetWhereAllIsThere)
{
    const SToolRun run =
        RunShell("d=$(mktemp -d); for c in sh c++ cmake ninja; do ln -s \"$(command -v $c)\" $d/$c; done; "
                 "PATH=$d sh scripts/install-deps tool; s=$?; rm -r $d; exit $s");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(InstallDeps, NamesThePackagesThatItCannotInstall)
{
    const SToolRun run =
        RunShell("d=$(mktemp -d); ln -s \"$(command -v sh)\" $d/sh; ln -s \"$(command -v cmake)\" $d/cmake; "
                 "PATH=$d sh scripts/install-deps tool; s=$?; rm -r $d; exit $s");
    EXPECT_THAT(run.err, HasSubstr("no apt-get here"));
    EXPECT_THAT(run.err, HasSubstr(" g++ ninja-build "));
    EXPECT_EQ(run.status, 1);
}

namespace {

// A tree of a version 0.1.0 that make-release takes for a whole one; `steps` are run in it.
SToolRun Release(const std::string &steps)
{
    return RunShell("d=$(mktemp -d); mkdir -p $d/tree/scripts; cp scripts/make-release $d/tree/scripts/; cd $d/tree; "
                    "printf 'project(tesk VERSION 0.1.0 DESCRIPTION x)\\n' >CMakeLists.txt; "
                    "printf '# Changelog\\n\\n## Unreleased\\n\\n- New.\\n' >CHANGELOG.md; "
                    "export GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_SYSTEM=/dev/null; git init -q -b main . && git "
                    "config user.name a && "
                    "git config user.email a@b && git add . && git commit -q -m x; r=scripts/make-release; (" +
                    steps + "); s=$?; cd /; rm -rf $d; exit $s");
}

}  // namespace

TEST(MakeRelease, SetsTheVersionDatesTheChangelogTagsAndPacks)
{
    const SToolRun run =
        Release("$r 0.2.0 && cat CMakeLists.txt && sed -n '3,8p' CHANGELOG.md && git status --short && "
                "git tag -l -n1 && cd .. && sha256sum -c tesk-0.2.0.tar.gz.sha256 && "
                "tar tzf tesk-0.2.0.tar.gz | sort");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, testing::ContainsRegex("project\\(tesk VERSION 0.2.0 DESCRIPTION x\\)\n"
                                                "## Unreleased\n\n## 0.2.0, 20[0-9-]{8}\n\n- New.\n"
                                                "v0.2.0 +tesk 0.2.0\n"
                                                "tesk-0.2.0.tar.gz: OK\n"
                                                "tesk-0.2.0/\n"
                                                "tesk-0.2.0/CHANGELOG.md\n"));
}

TEST(MakeRelease, ChangesNothingInADryRun)
{
    const SToolRun run =
        Release("$r 0.1.0 --dry-run && git status --short && git tag -l && git log --oneline | wc -l && ls ..");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("Release 0.1.0"));
    EXPECT_THAT(run.out, testing::EndsWith("tesk-0.1.0.tar.gz would hold 3 files. Nothing was changed.\n1\ntree\n"));
}

TEST(MakeRelease, RefusesWhatIsNoRelease)
{
    const struct {
        const char *steps, *error;
    } rows[] = {
        {"$r 1.2", "1.2 is no version such as 1.2.3"},
        {"$r 0.0.9", "0.0.9 is not above the present 0.1.0"},
        {"git tag v0.1.0; $r 0.1.0", "0.1.0 is not above the present 0.1.0"},
        {"echo >>CMakeLists.txt; $r 0.2.0", "there are changes that are not committed"},
        {"$r 0.2.0 >/dev/null && $r 0.3.0", "CHANGELOG.md does not begin with what is unreleased"},
    };
    for (const auto &row : rows) {
        const SToolRun run = Release(row.steps);
        EXPECT_EQ(run.status, 1) << row.steps;
        EXPECT_THAT(run.err, HasSubstr(row.error)) << row.steps;
    }
}

TEST(Fuzz, RefusesWhatIsNoTimeAndWhatIsNoDoor)
{
    for (const char *time : {"", "15", "0s", "vcd"}) {
        const SToolRun run = RunShell(std::string("scripts/fuzz ") + time);
        EXPECT_THAT(run.err, HasSubstr("scripts/fuzz TIME [DOOR...]")) << time;
        EXPECT_EQ(run.status, 1) << time;
    }
    const SToolRun run = RunShell("scripts/fuzz 15m vcd window");
    EXPECT_THAT(run.err, HasSubstr("no door window; doors: bench "));
    EXPECT_EQ(run.status, 1);
}

TEST(Fuzz, HasARowAndSeedsForEachDoor)
{
    const SToolRun run = RunShell("cd fuzz; for d in doors/*.cpp; do d=$(basename $d .cpp); "
                                  "grep -q \"{\\\"$d\\\", \" fuzz.cpp && [ -n \"$(ls seeds/$d)\" ] || echo $d; done");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

TEST(Fuzz, HasADoorForEachDictionaryAndFolderOfSeeds)
{
    const SToolRun run = RunShell("cd fuzz; for d in dictionaries/* seeds/*; do d=$(basename $d .dict); "
                                  "[ -f doors/$d.cpp ] || echo $d; done");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}
