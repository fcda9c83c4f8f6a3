// tesk convert from the shell.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tools/runtool.h"

namespace convertcommand {

/// Runs what has to go well.
inline void Succeed(const std::string &commandLine)
{
    const SToolRun run = RunShell(commandLine);
    EXPECT_EQ(run.status, 0) << commandLine << '\n' << run.err;
}

/// What a conversion says that is refused, in one line.
inline std::string Refusal(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk convert " + arguments);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(std::ranges::count(run.err, '\n'), 1) << run.err;
    return run.err;
}

/// The VCD that a file is converted to.
inline std::string DumpOf(const std::string &file)
{
    const SToolRun run = RunShell("tesk convert " + file + " -");
    EXPECT_EQ(run.status, 0) << run.err;
    return run.out;
}

}  // namespace convertcommand
