// Runs simulators with the built module, and reads the dumps that they write.
#pragma once

#include <cstddef>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/runtool.h"

/// The changes of a signal: femtoseconds, and the value as text.
using CChanges = std::vector<std::pair<long long, std::string>>;

/// Where a simulation reads and writes. A test writes the files, runs, and looks at the dump.
class CSimulation {
public:
    void Write(const char *name, const std::string &text) const { std::ofstream(m_folder / name) << text; }
    std::string Path(const char *name) const { return (m_folder / name).string(); }

    /// Runs a command line in the folder; what it says on both streams is kept. @return the status
    int Run(const std::string &command);
    /// Runs design.v in Icarus Verilog. @param arguments  such as "+tesk=bench.toml"
    int RunIcarus(const std::string &arguments = "");
    /// Runs the entity tb of design.vhd in GHDL.
    int RunGhdl(const std::string &arguments = "");

    /// All that was said.
    const std::string &Output() const { return m_output; }
    /// Lines of it that hold a word.
    std::vector<std::string> Lines(const std::string &word) const;

    /// Reads a dump; of two changes of a signal at one time the last counts, and one to the value that it has is none.
    std::map<std::string, CChanges> Dump(const char *name) const { return ReadDump(Path(name)); }

    static std::map<std::string, CChanges> ReadDump(const std::string &path);

private:
    CTemporaryFolder m_folder;
    std::string m_output;
};

/// What a signal shows at times in nanoseconds: "0:1 5:0 10:x".
std::string Told(const CChanges &changes);

/// Expects each signal of one scope to change as that of the same name in another does.
void ExpectSameChanges(const std::map<std::string, CChanges> &dump, const std::string &scope, const std::string &other,
                       std::size_t fewest);
