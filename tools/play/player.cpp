#include "tools/play/player.h"

#include <memory>
#include <optional>
#include <utility>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/play/longreplay.h"
#include "tools/play/walk.h"
#include "tools/quote.h"
#include "tools/writers/valuetext.h"

namespace {

// Whether values are drawn as a band, however short they are.
bool IsBus(const std::string &type)
{
    constexpr int EnumerationKind = 1;
    return !type.empty() && Kestrin::KTypeInfo(type.c_str()).GetKind() != EnumerationKind;
}

// The library gives an integer as a based literal where it comes from bits.
void ShowIntegers(STrace &trace)
{
    constexpr int IntegerKind = 2;
    if (trace.type.empty() || Kestrin::KTypeInfo(trace.type.c_str()).GetKind() != IntegerKind)
        return;
    for (SChange &change : trace.changes) {
        if (change.value)
            change.value = tesk::IntegerText(*change.value);
    }
}

// Makes the stimuli of a signal, walks them in step and puts together what they show.
class CPlayer {
public:
    CPlayer(long long resolution, const tesk::SWalkTimes &times, const tesk::CTraceSink &sink)
        : m_resolution(resolution), m_times(times), m_sink(sink)
    {}

    void Prepare(const std::string &formula, SPlayedSignal signal);
    SPlayed Play();

private:
    // A signal in the order in which traces are shown: behind its parent, before its own elements.
    struct SNode {
        SPlayedSignal signal;
        std::vector<std::size_t> elements;  // nodes
    };

    std::size_t Add(const std::string &formula, SPlayedSignal signal);
    void AddLeaf(const std::string &formula);
    SWalked WalkLeaves();
    tesk::CChangeSink ChangeSink() const;
    void Describe(const SPlayedSignal &signal, STrace &trace) const;

    CSimulationRun m_run;  // first: ends behind the stimuli
    std::vector<SNode> m_nodes;
    // Of the nodes without elements either stimuli, or changes out of a file that is too long for one.
    std::vector<tesk::StimulusPtr> m_stimuli;
    std::vector<std::vector<SChange>> m_replayed;
    std::unique_ptr<tesk::CLongReplay> m_longReplay;  // null unless the file is
    long long m_resolution;
    tesk::SWalkTimes m_times;
    const tesk::CTraceSink &m_sink;
};

void CPlayer::Describe(const SPlayedSignal &signal, STrace &trace) const
{
    trace.name = signal.name;
    trace.type = signal.description;
    trace.isBus = IsBus(trace.type);
    ShowIntegers(trace);
}

// What a walk gives its changes to; empty if it keeps them.
tesk::CChangeSink CPlayer::ChangeSink() const
{
    if (!m_sink || m_nodes.size() != 1)
        return {};
    return [this](const std::vector<SChange> &changes) {
        STrace part;
        part.changes = changes;
        Describe(m_nodes.front().signal, part);
        m_sink(part);
    };
}

void CPlayer::Prepare(const std::string &formula, SPlayedSignal signal)
{
    if (!signal.description.empty())
        IStimulus::SetupAdditionalInfo(SignalName, signal.description.c_str());
    else if (NeedsType(formula))
        throw CRefusal("formula " + Quote(formula) +
                       ": a table is read by the type of the signal; give it with --type, such as --type integer");
    m_longReplay = tesk::CLongReplay::Open(formula, m_resolution);
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
        AddLeaf(formula);
        return node;
    }
    const std::vector<SPlayedSignal> elements = added.elements;
    const auto formulas =
        SplitFormula(formula, static_cast<long long>(elements.size()), added.isBitVector, m_times.begin, m_resolution);
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

void CPlayer::AddLeaf(const std::string &formula)
{
    if (m_longReplay != nullptr && m_longReplay->IsWhole()) {
        auto changes = m_longReplay->Changes(formula, m_times);
        if (!changes)
            CreateStimulus(formula, m_times.begin, m_resolution);  // tells why
        m_replayed.push_back(std::move(changes).value_or(std::vector<SChange>()));
        return;
    }
    m_stimuli.push_back(CreateStimulus(formula, m_times.begin, m_resolution));
}

SWalked CPlayer::WalkLeaves()
{
    SWalked walked;
    if (m_longReplay == nullptr)
        return Walk(m_stimuli, m_times, std::nullopt, ChangeSink());
    if (m_stimuli.empty())
        walked.changes = std::move(m_replayed);
    else
        walked = Walk(m_stimuli, m_times, m_longReplay->Limit());
    m_longReplay->TellLoss();
    return walked;
}

SPlayed CPlayer::Play()
{
    SWalked walked = WalkLeaves();
    std::vector<STrace> traces(m_nodes.size());
    std::size_t leaf = walked.changes.size();
    // From the last to the first: elements before what they are elements of.
    for (std::size_t i = m_nodes.size(); i-- > 0;) {
        const SNode &node = m_nodes[i];
        if (node.elements.empty()) {
            traces[i].changes = std::move(walked.changes[--leaf]);
        } else {
            std::vector<const STrace *> elements;
            for (const std::size_t element : node.elements)
                elements.push_back(&traces[element]);
            traces[i] = MergeElements(elements, node.signal.isBitVector);
        }
        Describe(node.signal, traces[i]);
    }
    return {std::move(traces), walked.isCut};
}

}  // namespace

SPlayed PlayOnSignal(const std::string &formula, const SPlayedSignal &signal, long long resolution,
                     const tesk::SWalkTimes &times, const tesk::CTraceSink &sink)
{
    CPlayer player(resolution, times, sink);
    player.Prepare(formula, signal);
    return player.Play();
}
