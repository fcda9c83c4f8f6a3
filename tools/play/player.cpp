#include "tools/play/player.h"

#include <utility>

#include "tools/commandline.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/walk.h"
#include "tools/quote.h"

namespace {

// Makes the stimuli of a signal, walks them in step and puts together what they show.
class CPlayer {
public:
    CPlayer(long long start, long long resolution) : m_start(start), m_resolution(resolution) {}

    void Prepare(const std::string &formula, SPlayedSignal signal);
    std::vector<STrace> Play(std::optional<long long> until);

private:
    // A signal in the order in which traces are shown: behind its parent, before its own elements.
    struct SNode {
        SPlayedSignal signal;
        std::vector<std::size_t> elements;  // nodes
    };

    std::size_t Add(const std::string &formula, SPlayedSignal signal);

    CSimulationRun m_run;  // first: ends behind the stimuli
    std::vector<SNode> m_nodes;
    std::vector<tesk::StimulusPtr> m_stimuli;  // of the nodes without elements
    long long m_start;
    long long m_resolution;
};

void CPlayer::Prepare(const std::string &formula, SPlayedSignal signal)
{
    if (!signal.description.empty())
        IStimulus::SetupAdditionalInfo(SignalName, signal.description.c_str());
    else if (NeedsType(formula))
        throw CRefusal("formula " + Quote(formula) +
                       ": a table is read by the type of the signal; give it with --type, such as --type integer");
    Add(formula, std::move(signal));
    WarnOfLoss(formula);
}

// @return the node
std::size_t CPlayer::Add(const std::string &formula, SPlayedSignal signal)
{
    const std::size_t node = m_nodes.size();
    m_nodes.push_back({std::move(signal), {}});
    const SPlayedSignal &added = m_nodes.back().signal;
    if (added.elements.empty()) {
        m_stimuli.push_back(CreateStimulus(formula, m_start, m_resolution));
        return node;
    }
    const std::vector<SPlayedSignal> elements = added.elements;
    const auto formulas =
        SplitFormula(formula, static_cast<long long>(elements.size()), added.isBitVector, m_start, m_resolution);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        SPlayedSignal element = elements[i];
        const std::string elementFormula(formulas[i]);
        if (IsFileFormula(elementFormula)) {
            DescribeElements(element);
            IStimulus::SetupAdditionalInfo(nullptr, element.description.c_str());
        }
        const std::size_t child = Add(elementFormula, std::move(element));
        m_nodes[node].elements.push_back(child);
    }
    return node;
}

std::vector<STrace> CPlayer::Play(std::optional<long long> until)
{
    auto walked = Walk(m_stimuli, m_start, until);
    std::vector<STrace> traces(m_nodes.size());
    std::size_t stimulus = m_stimuli.size();
    // From the last to the first: elements before what they are elements of.
    for (std::size_t i = m_nodes.size(); i-- > 0;) {
        const SNode &node = m_nodes[i];
        if (node.elements.empty()) {
            traces[i].changes = std::move(walked[--stimulus]);
        } else {
            std::vector<const STrace *> elements;
            for (const std::size_t element : node.elements)
                elements.push_back(&traces[element]);
            traces[i] = MergeElements(elements, node.signal.isBitVector);
        }
        traces[i].name = node.signal.name;
    }
    return traces;
}

}  // namespace

std::vector<STrace> PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long start,
                                 long long resolution, std::optional<long long> until)
{
    CPlayer player(start, resolution);
    player.Prepare(formula, signal);
    return player.Play(until);
}
