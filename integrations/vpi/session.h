// All that the module does in one simulation.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "integrations/vpi/stimulator.h"
#include "integrations/vpi/wakeups.h"
#include "tools/bench/bench.h"
#include "tools/loglines.h"
#include "tools/play/formula.h"

namespace tesk::vpi {

/// Something that lasts until the simulation ends.
class IPart {
public:
    virtual ~IPart() = default;
    /// The simulation ends: the last word, such as a verdict.
    virtual void End() {}
};

class CSession {
public:
    /// That of the simulation that is going on; begun when first asked for.
    static CSession &Current();
    /// Ends the one that is going on: each part says its last word, each stimulus is given up, then what formulas loaded.
    static void End();

    CWakeUps &WakeUps() { return m_wakeUps; }

    /// Applies a formula to a signal, from now on or from a later start, in the place of one that the signal has. What is
    /// found in the formula is told.
    /// @throw CRefusal if it cannot be used; the signal then keeps what it has
    void Stimulate(vpiHandle signal, SStimulation asked);
    /// Takes the stimulator of a signal away. @throw CRefusal if it has none
    void Release(vpiHandle signal);
    /// Whether a signal has a stimulator. @param name  with its scopes
    bool IsStimulated(const std::string &name) const { return m_stimulators.count(name) != 0; }
    /// Keeps a part.
    void Add(std::unique_ptr<IPart> part) { m_parts.push_back(std::move(part)); }

private:
    CSession() = default;

    CLogLines m_log{CLogLines::EWarnings::Shown, CLogLines::EErrors::Shown};
    CSimulationRun m_run;  // outlives the stimuli
    CWakeUps m_wakeUps;
    std::map<std::string, std::unique_ptr<CStimulator>> m_stimulators;  // by the name of the signal
    std::vector<std::unique_ptr<IPart>> m_parts;
};

}  // namespace tesk::vpi
