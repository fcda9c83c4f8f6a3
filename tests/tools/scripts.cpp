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
