#include "simulation.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>

#include "testpaths.h"
#include "tools/files/wavefile.h"
#include "waveform/files/filewalk.h"

namespace {

std::string ValueText(const tesk::SFileSignal &signal, const std::vector<std::optional<std::uint64_t>> &values)
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

}  // namespace

int CSimulation::Run(const std::string &command)
{
    const SToolRun run = RunShell("cd '" + Path(".") + "' && { " + command + "\n} 2>&1");
    m_output += run.out;
    return run.status;
}

int CSimulation::RunIcarus(const std::string &arguments)
{
    return Run("iverilog -g2012 -o design.vvp design.v && vvp -M '" TESK_MODULE_FOLDER "' -m tesk design.vvp " +
               arguments + " </dev/null");
}

int CSimulation::RunGhdl(const std::string &arguments)
{
    return Run("ghdl -a --std=08 design.vhd && ghdl -e --std=08 tb && "
               "ghdl -r --std=08 tb --vpi='" TESK_MODULE_FOLDER "/tesk.vpi' " +
               arguments);
}

std::vector<std::string> CSimulation::Lines(const std::string &word) const
{
    std::vector<std::string> lines;
    std::istringstream output(m_output);
    for (std::string line; std::getline(output, line);) {
        if (line.find(word) != std::string::npos)
            lines.push_back(line);
    }
    return lines;
}

std::map<std::string, CChanges> CSimulation::ReadDump(const std::string &path)
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

std::string Told(const CChanges &changes)
{
    constexpr double Nanosecond = 1e6;
    std::ostringstream text;
    for (const auto &[time, value] : changes)
        text << (text.tellp() > 0 ? " " : "") << static_cast<double>(time) / Nanosecond << ':' << value;
    return text.str();
}

void ExpectSameChanges(const std::map<std::string, CChanges> &dump, const std::string &scope, const std::string &other,
                       std::size_t fewest)
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
