// What the replays of a bench drive.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/view/recordedwaveform.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// The records of a bench and the signals that its replays drive. A file that several replays name is opened once.
class CBenchReplays {
public:
    /// Opens the files and looks for all that the replays name. A replay that names nothing to be driven drives the inputs of
    /// its scope, where the file tells directions.
    /// @param faults  receives, at the place of each replay, what cannot be read or is not there, and what is driven twice; a
    ///                replay that drives nothing is warned of, since a simulator knows the inputs of its scopes itself
    CBenchReplays(const SBench &bench, std::vector<SBenchFault> &faults);

    /// By the names that the design gives them.
    const std::vector<SRecordedSignal> &Driven() const { return m_driven; }
    /// The end of the longest of the files, rounded up to ticks of the bench; 0 without replays.
    long long End() const;

private:
    IWaveformFile &Open(const std::string &path);
    void Add(const SBenchReplay &replay, std::vector<SBenchFault> &faults);
    void AddDriven(const SBenchReplay &replay, const SRecordedSignal &signal, std::vector<SBenchFault> &faults);

    long long m_resolution;
    std::set<std::string> m_taken;                                  // names of signals that have a formula
    std::set<std::string> m_names;                                  // of those that are driven
    std::map<std::string, std::unique_ptr<IWaveformFile>> m_files;  // by path
    std::vector<SRecordedSignal> m_driven;
};

}  // namespace tesk
