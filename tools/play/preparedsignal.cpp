#include "tools/play/preparedsignal.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/kestrin.h"
#include "tools/commandline.h"
#include "tools/play/fileformula.h"
#include "tools/play/formula.h"
#include "tools/quote.h"
#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

using Kestrin::ETypeKind;

// The library gives an integer as a based literal where it comes from bits.
void ShowIntegers(STrace &trace)
{
    if (trace.type.empty() || KindOf(Kestrin::KTypeInfo(trace.type.c_str())) != ETypeKind::Integer)
        return;
    for (SChange &change : trace.changes) {
        if (change.value)
            change.value = IntegerText(*change.value);
    }
}

void Describe(const SPlayedSignal &signal, STrace &trace)
{
    trace.name = signal.name;
    trace.type = signal.description;
    trace.isBus = IsBusType(trace.type);
    ShowIntegers(trace);
}

}  // namespace

CPreparedSignal::CPreparedSignal(const std::string &formula, SPlayedSignal signal, long long resolution,
                                 const SWalkTimes &times)
    : m_resolution(resolution), m_times(times)
{
    if (!signal.description.empty())
        IStimulus::SetupAdditionalInfo(SignalName, signal.description.c_str());
    else if (NeedsType(formula))
        throw CRefusal("formula " + Quote(formula) +
                       ": a table is read by the type of the signal; give it with --type, such as --type integer");
    m_longReplay = CLongReplay::Open(formula, m_resolution);
    Add(formula, std::move(signal));
    WarnOfLoss(formula);
}

// @return the node
std::size_t CPreparedSignal::Add(const std::string &formula, SPlayedSignal signal)
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

void CPreparedSignal::AddLeaf(const std::string &formula)
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

SWalkGroup CPreparedSignal::Group() const
{
    return {m_stimuli, m_times.begin, m_longReplay != nullptr ? std::optional(m_longReplay->Limit()) : std::nullopt};
}

long long CPreparedSignal::Ended() const
{
    long long ended = 0;
    for (const auto &changes : m_replayed)
        ended = std::max(ended, changes.empty() ? 0 : changes.back().ticks);
    return ended;
}

std::vector<STrace> CPreparedSignal::Show(std::span<std::vector<SChange>> walked)
{
    if (m_longReplay != nullptr)
        m_longReplay->TellLoss();
    const std::span<std::vector<SChange>> leaves = m_stimuli.empty() ? m_replayed : walked;
    std::vector<STrace> traces(m_nodes.size());
    std::size_t leaf = leaves.size();
    // From the last to the first: elements before what they are elements of.
    for (std::size_t i = m_nodes.size(); i-- > 0;) {
        const SNode &node = m_nodes[i];
        if (node.elements.empty()) {
            traces[i].changes = std::move(leaves[--leaf]);
        } else {
            std::vector<const STrace *> elements;
            for (const std::size_t element : node.elements)
                elements.push_back(&traces[element]);
            traces[i] = MergeElements(elements, node.signal.isBitVector);
        }
        Describe(node.signal, traces[i]);
    }
    return traces;
}

STrace CPreparedSignal::Part(const std::vector<SChange> &changes) const
{
    STrace part;
    part.changes = changes;
    Describe(m_nodes.front().signal, part);
    return part;
}

}  // namespace tesk
