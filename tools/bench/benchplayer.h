// What the signals of a bench show.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/bench/replaysignals.h"
#include "tools/play/formula.h"
#include "tools/play/preparedsignal.h"
#include "tools/writers/waveform.h"

namespace tesk {

/// The stretch of a bench that is shown, in ticks.
struct SBenchStretch {
    long long from = 0;
    std::optional<long long> until;  ///< that of the bench where it is not told
};

/// The signals of a bench, each made into stimuli, and those that its replays drive, out of the records. Files, tables and counters that several formulas name are there once.
class CBenchPlayer {
public:
    /// @param bench   outlives this
    /// @param faults  of the bench, in its order; stays so. Receives why a formula is refused, where nothing of it was found
    ///                to be wrong
    CBenchPlayer(const SBench &bench, const SBenchStretch &stretch, std::vector<SBenchFault> &faults);

    /// Whether all that the bench names can be played.
    bool CanPlay() const { return m_canPlay; }

    /// Plays all signals in step. Without an end it is a little behind that of the last stimulator that has one; where none has, the first
    /// changes are shown, which a line on standard error tells. Once, if it can play.
    /// @throw CRefusal if there are more changes than can be shown
    SWaveform Play();

private:
    void Prepare(const SBenchSignal &signal, std::vector<SBenchFault> &faults);
    SWalked WalkAll();

    CSimulationRun m_run;  // first: ends behind the stimuli
    const SBench &m_bench;
    SBenchStretch m_stretch;
    CBenchReplays m_replays;
    bool m_canPlay = true;
    std::vector<CPreparedSignal> m_signals;
};

}  // namespace tesk
