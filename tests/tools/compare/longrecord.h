// Records that are long and quickly made, and what it takes to read them.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <fstream>
#include <string>

#include "platform/fstwriter/fstwriter.h"

/// Writes an FST file of small blocks: tb.clk, which changes at each of so many times, 10 ns apart, and tb.bus, of 8 bits, which
/// counts the rises of tb.clk from 0 on.
inline void WriteLongRecord(const std::string &path, std::uint64_t times)
{
    constexpr std::size_t BlockSize = 1 << 16;
    constexpr int Picoseconds = -12;
    constexpr std::uint64_t Step = 10'000;
    std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out | std::ios::trunc);
    NTARN::CFstWriter writer(file, Picoseconds, "", BlockSize);
    writer.OpenScope(NTARN::EFstScope::Module, "tb");
    const std::uint32_t clk = writer.AddVariable(NTARN::EFstVariable::Wire, NTARN::EFstDirection::None, "clk", 1);
    const std::uint32_t bus = writer.AddVariable(NTARN::EFstVariable::Wire, NTARN::EFstDirection::None, "bus [7:0]", 8);
    writer.CloseScope();
    std::array<char, 8> letters{};
    for (std::uint64_t i = 0; i <= times; ++i) {
        writer.SetTime(i * Step);
        writer.Change(clk, i % 2 == 0 ? "0" : "1");
        if (i % 2 != 1 && i != 0)
            continue;
        for (std::size_t bit = 0; bit < letters.size(); ++bit)
            letters[letters.size() - 1 - bit] = ((i + 1) / 2 >> bit & 1) != 0 ? '1' : '0';
        writer.Change(bus, {letters.data(), letters.size()});
    }
    ASSERT_TRUE(writer.Finish()) << writer.Error();
}

/// The most memory that a command has, in kilobytes; no less than this process has. What it writes goes nowhere.
/// @param status  that it must end with
inline long PeakKilobytes(const std::string &command, int status = 0)
{
    const pid_t child = fork();
    if (child == 0) {
        const std::string line = "exec " + command + " >/dev/null 2>&1 </dev/null";
        execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    rusage usage{};
    int ended = -1;
    EXPECT_EQ(wait4(child, &ended, 0, &usage), child);
    EXPECT_TRUE(WIFEXITED(ended) && WEXITSTATUS(ended) == status) << command << " ended with " << ended;
    return usage.ru_maxrss;
}
