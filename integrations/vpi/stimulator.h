// A formula on a signal of the design.
#pragma once

#include <string>
#include <vector>

#include "core/stimulus.h"
#include "integrations/vpi/designsignal.h"
#include "integrations/vpi/signalvalue.h"
#include "integrations/vpi/wakeups.h"

namespace tesk::vpi {

/// What is asked for of a stimulator.
struct SStimulation {
    std::string formula;
    std::string description;  ///< of the type by which values are read; empty for that of the signal
    EStrength strength = EStrength::Override;
    long long start = 0;  ///< ticks; when it is applied
    std::string place;    ///< of what asked for it, for messages
};

/// Plays a formula: puts a value at each change and none between, and releases the signal when all its elements are finished.
class CStimulator : public IWoken {
public:
    /// @throw CRefusal if the signal or the formula cannot be used
    CStimulator(const CDesignSignal &signal, SStimulation asked);
    CStimulator(const CStimulator &) = delete;
    ~CStimulator() override;

    long long Wake(long long now) override;

    const CDesignSignal &Signal() const { return m_signal; }
    /// Takes it away: a signal that it forces goes back to its drivers.
    void Release();

    /// Takes the place of another one, whose signal stays forced until this one has put its first value...
    void TakeOver(CStimulator &other);
    /// ... or has none to put.
    void GiveUpWhatWasTakenOver();

private:
    struct SNext {
        long long time = -1;  // of the next change; -1 for none
        bool isStep = false;  // a step of its own: there need not be a change
    };

    void MakeStimuli();
    void AddStimulus(const std::string &formula);
    long long Begin(long long now);
    SNext NextTime(std::size_t element, long long time);
    void Take(std::size_t element, long long time);
    void Put();
    long long Earliest() const;
    bool IsFinished(long long time) const;

    SStimulation m_asked;
    CDesignSignal m_signal;
    std::string m_name;  // of the signal; the library keeps a pointer to it
    CSignalValue m_value;
    std::vector<StimulusPtr> m_stimuli;
    std::vector<SNext> m_next;  // of each
    bool m_isBegun = false;
    bool m_hasPut = false;
    bool m_hasTold = false;      // of a value that could not be put
    std::size_t m_ownSteps = 0;  // without a later time
};

}  // namespace tesk::vpi
