// A signal and the stimuli that its formula makes.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "core/stimulus.h"
#include "tools/play/longreplay.h"
#include "tools/play/playedsignal.h"
#include "tools/play/recorder.h"
#include "tools/play/walk.h"

namespace tesk {

/// A formula made into stimuli, ready to be walked, beside those of other signals. A formula that refers to a file is taken
/// apart down to the scalars, any other down to the elements of the signal. Lives within a `CSimulationRun`.
class CPreparedSignal {
public:
    /// Warnings go to standard error. @throw CRefusal if the formula cannot be used
    CPreparedSignal(const std::string &formula, SPlayedSignal signal, long long resolution, const SWalkTimes &times);

    /// The stimuli; none where what they would show is known without. Not to outlive this.
    SWalkGroup Group() const;
    /// The last change of what is known without stimuli, in ticks; 0 if nothing is.
    long long Ended() const;
    /// Whether it has no elements.
    bool IsSingle() const { return m_nodes.size() == 1; }

    /// What the signal shows, and below it its elements. Once. @param walked  the changes of each stimulus
    std::vector<STrace> Show(std::span<std::vector<SChange>> walked);
    /// The trace of a signal without elements, with some of its changes.
    STrace Part(const std::vector<SChange> &changes) const;

private:
    // A signal in the order in which traces are shown: behind its parent, before its own elements.
    struct SNode {
        SPlayedSignal signal;
        std::vector<std::size_t> elements;  // nodes
    };

    std::size_t Add(const std::string &formula, SPlayedSignal signal);
    void AddLeaf(const std::string &formula);

    std::vector<SNode> m_nodes;
    // Of the nodes without elements either stimuli, or changes out of a file that is too long for one.
    std::vector<StimulusPtr> m_stimuli;
    std::vector<std::vector<SChange>> m_replayed;
    std::unique_ptr<CLongReplay> m_longReplay;  // null unless the file is
    long long m_resolution;
    SWalkTimes m_times;
};

}  // namespace tesk
