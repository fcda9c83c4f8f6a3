// A bench in a folder of its own, exported by the tool.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "testpaths.h"
#include "tools/runtool.h"

/// A bench of this text is written, exported, and whatever else in the folder.
class CBenchFixture : public testing::Test {
protected:
    void WriteBench(const std::string &text)
    {
        m_text = text;
        for (std::size_t at = 0; (at = m_text.find(" examples/", at)) != m_text.npos;)
            m_text.replace(at, 1, " " TESK_SOURCE_DIR "/");
        std::ofstream(m_folder / "bench.toml") << m_text;
    }

    std::string Bench() const { return (m_folder / "bench.toml").string(); }

    SToolRun Export(const std::string &options) const { return RunShell("tesk export " + Bench() + " " + options); }

    // Runs commands in the folder; what they say stands in the failure.
    void Run(const std::string &commands) const
    {
        const SToolRun run = RunShell("cd " + (m_folder / ".").string() + " && " + commands);
        ASSERT_EQ(run.status, 0) << commands << "\n" << run.err << run.out << m_text;
    }

    void ExportTo(const char *file, const std::string &options = {}) const
    {
        const SToolRun run = Export("-o " + (m_folder / file).string() + " " + options);
        ASSERT_EQ(run.status, 0) << run.err << m_text;
    }

    CTemporaryFolder m_folder;
    std::string m_text;
};

/// A signal of every kind of formula, with values from 0 on that every simulator has.
inline const char *const AllKinds = R"toml(resolution = "1ps"
until = "300ns"
scope = "tb"
[signals]
plain = "1 0ns, 0 12ns, 1 37ns"
clk = "1 0ns, 0 5ns -r 10ns"
counted = { type = "std_logic_vector(3 downto 0)", formula = '\counter\TYPE\1\DIR\1\RADIX\10\START\3\INC\5\PERIOD\10ns\REV\0' }
down = { type = "unsigned(7 downto 0)", formula = '\counter\TYPE\1\DIR\2\RADIX\16\START\2\INC\1\PERIOD\7ns\REV\0' }
gray = { type = "std_logic_vector(2 downto 0)", formula = '\counter\TYPE\2\DIR\1\RADIX\10\START\5\INC\1\PERIOD\9ns\REV\0' }
mirrored = { type = "std_logic_vector(2 downto 0)", formula = '\counter\TYPE\2\DIR\1\RADIX\10\START\3\INC\1\PERIOD\9ns\REV\1' }
ring = { type = "std_logic_vector(2 downto 0)", formula = '\counter\TYPE\3\DIR\2\RADIX\2\START\001\INC\1\PERIOD\11ns\REV\0' }
one = { type = "std_logic_vector(0 to 4)", formula = '\counter\TYPE\4\DIR\1\RADIX\2\START\00100\INC\1\PERIOD\13ns\REV\0' }
number = { type = "integer", formula = '\counter\TYPE\1\DIR\1\RADIX\10\START\2147483640\INC\3\PERIOD\10ns\REV\0' }
wide = { type = "std_logic_vector(69 downto 0)", formula = '\counter\TYPE\1\DIR\1\RADIX\16\START\3FFFFFFFFFFFFFFFFE\INC\1\PERIOD\10ns\REV\0' }
uniform = { type = "std_logic_vector(7 downto 0)", formula = '\RANDOM\1\5\0\255\10ns' }
normal = { type = "integer", formula = '\RANDOM\2\7\-10\30\6ns' }
real_one = { type = "real", formula = "0.5 0ns, -1e-20 10ns, 12345.678 20ns -r 40ns" }
flag = { type = "boolean", formula = "true 0ns, false 10ns, true 35ns" }
pulses = "/brel (H10 L5)3"
recorded = { type = "std_logic", formula = "/custom examples/traffic.vcd,tb.clk" }
bus = "/custom examples/traffic.fst,tb.count"
sine = { type = "signed(7 downto 0)", formula = "/txt examples/sine.txt,sine -time_points time -interval 1ns" }
ended = "1 0ns, 0 1ns -r 3ns -cancel 100ns"
)toml";
