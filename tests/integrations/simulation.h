// Runs simulators with the built module, and reads the dumps that they write.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tools/files/wavefile.h"
#include "tools/runtool.h"
#include "waveform/files/filewalk.h"

/// The changes of a signal: femtoseconds, and the value as text.
using CChanges = std::vector<std::pair<long long, std::string>>;

/// Where a simulation reads and writes. A test writes the files, runs, and looks at the dump.
class CSimulation {
public:
    void Write(const char *name, const std::string &text) const { std::ofstream(m_folder / name) << text; }
    std::string Path(const char *name) const { return (m_folder / name).string(); }

    /// Runs a command line in the folder; what it says on both streams is kept. @return the status
    int Run(const std::string &command)
    {
        const SToolRun run = RunShell("cd '" + Path(".") + "' && { " + command + "\n} 2>&1");
        m_output += run.out;
        return run.status;
    }
    /// Runs design.v in Icarus Verilog. @param arguments  such as "+tesk=bench.toml"
    int RunIcarus(const std::string &arguments = "")
    {
        return Run("iverilog -g2012 -o design.vvp design.v && vvp -M '" TESK_MODULE_FOLDER "' -m tesk design.vvp " +
                   arguments + " </dev/null");
    }
    /// Runs the entity tb of design.vhd in GHDL.
    int RunGhdl(const std::string &arguments = "")
    {
        return Run("ghdl -a --std=08 design.vhd && ghdl -e --std=08 tb && "
                   "ghdl -r --std=08 tb --vpi='" TESK_MODULE_FOLDER "/tesk.vpi' " +
                   arguments);
    }

    /// All that was said.
    const std::string &Output() const { return m_output; }
    /// Lines of it that hold a word.
    std::vector<std::string> Lines(const std::string &word) const
    {
        std::vector<std::string> lines;
        std::istringstream output(m_output);
        for (std::string line; std::getline(output, line);) {
            if (line.find(word) != std::string::npos)
                lines.push_back(line);
        }
        return lines;
    }

    /// Reads a dump; of two changes of a signal at one time the last counts, and one to the value that it has is none.
    std::map<std::string, CChanges> Dump(const char *name) const { return ReadDump(Path(name)); }

    static std::map<std::string, CChanges> ReadDump(const std::string &path)
    {
        std::map<std::string, CChanges> dump;
        const std::unique_ptr<tesk::IWaveformFile> file = OpenWaveFile(path);
        const std::vector<tesk::SFileSignal> &signals = file->GetSignals();
        const long long resolution = file->GetResolution();
        for (tesk::CFileWalk walk(*file, signals); walk.Next();) {
            const tesk::SFileSignal &signal = signals[walk.GetSignal()];
            CChanges &changes = dump[signal.path];
            const std::string value = ValueText(signal, walk.GetValues());
            const long long time = walk.GetTime() * resolution;
            if (!changes.empty() && changes.back().first == time)
                changes.pop_back();
            if (changes.empty() || changes.back().second != value)
                changes.emplace_back(time, value);
        }
        return dump;
    }

private:
    static std::string ValueText(const tesk::SFileSignal &signal,
                                 const std::vector<std::optional<std::uint64_t>> &values)
    {
        const Kestrin::KTypeInfo *element = signal.type.GetArrayElementKTypeInfo();
        const Kestrin::KTypeInfo &type = element != nullptr ? *element : signal.type;
        std::string text;
        for (const auto &value : values) {
            const std::uint64_t bytes = value.value_or(0);
            text += value ? type.GetValueString_OldFormat(&bytes, 0, 0, 0, false) : "?";
        }
        return text;
    }

    CTemporaryFolder m_folder;
    std::string m_output;
};

/// What a signal shows at times in nanoseconds: "0:1 5:0 10:x".
inline std::string Told(const CChanges &changes)
{
    constexpr double Nanosecond = 1e6;
    std::ostringstream text;
    for (const auto &[time, value] : changes)
        text << (text.tellp() > 0 ? " " : "") << static_cast<double>(time) / Nanosecond << ':' << value;
    return text.str();
}

/// Expects each signal of one scope to change as that of the same name in another does.
inline void ExpectSameChanges(const std::map<std::string, CChanges> &dump, const std::string &scope,
                              const std::string &other, std::size_t fewest)
{
    std::size_t count = 0;
    for (const auto &[name, changes] : dump) {
        if (!name.starts_with(scope + "."))
            continue;
        const auto same = dump.find(other + name.substr(scope.size()));
        ASSERT_NE(same, dump.end()) << name;
        EXPECT_EQ(Told(changes), Told(same->second)) << name;
        ++count;
    }
    EXPECT_GE(count, fewest);
}
