#include "tools/compare/sidewalk.h"

#include <cstdint>
#include <span>

#include "waveform/files/signalwalk.h"

namespace tesk {

CSideForms::CSideForms(IWaveformFile &file, const SComparePolicy &policy, CLiteralTexts &literals)
{
    for (const SFileSignal &signal : file.GetSignals()) {
        const Kestrin::KTypeInfo *const element = signal.type.GetArrayElementKTypeInfo();
        const Kestrin::KTypeInfo &scalar = element != nullptr ? *element : signal.type;
        const char *const text =
            element != nullptr ? signal.type.GetArrayElementTypeInfo() : signal.type.GetTypeInfoString();
        const auto known = m_forms.find(text);
        const auto form = known != m_forms.end() ? known : m_forms.try_emplace(text, scalar, policy, literals).first;
        m_ofSignals.push_back(&form->second);
    }
}

std::vector<EComparedKind> CSideForms::Kinds() const
{
    std::vector<EComparedKind> kinds;
    kinds.reserve(m_ofSignals.size());
    for (const CValueForm *form : m_ofSignals)
        kinds.push_back(form->Kind());
    return kinds;
}

CSideWalk::CSideWalk(IWaveformFile &file, ECompareSide side, const CTickMap &ticks, const CSideForms &forms)
    : m_file(file), m_side(side), m_ticks(ticks), m_forms(forms), m_sourceOf(file.GetSignals().size())
{}

std::size_t CSideWalk::SourceOf(std::size_t signal)
{
    if (m_sourceOf[signal])
        return *m_sourceOf[signal];
    const SFileSignal &found = m_file.GetSignals()[signal];
    const auto [known, isNew] =
        m_known.try_emplace({found.type.GetTypeInfoString(), IdentifyEvents(m_file, found)}, m_sources.size());
    if (isNew) {
        m_sources.push_back(found);
        m_uses.emplace_back();
    }
    m_sourceOf[signal] = known->second;
    return known->second;
}

void CSideWalk::Feed(std::size_t pair, const SComparedForm &form, const SPairPart &part)
{
    const CValueForm &own = m_forms.Of(part.signal);
    const bool isInteger = own.Kind() == EComparedKind::Integer && form.kind == EComparedKind::Levels;
    m_uses[SourceOf(part.signal)].push_back(
        {pair, part.element, part.count, part.slot * ElementSize(form.kind), isInteger ? form.width : 0, &own});
}

bool CSideWalk::Next()
{
    if (!m_walk) {
        m_walk.emplace(m_file, m_sources);
        m_known.clear();
    }
    if (!m_walk->Next())
        return false;
    m_time = m_ticks(m_walk->GetTime());
    return true;
}

void CSideWalk::Write(const SUse &use, char *row) const
{
    if (use.form->Kind() == EComparedKind::Levels) {
        const std::span<const std::uint8_t> positions = m_walk->GetPositions();
        if (!positions.empty())
            return use.form->Write(positions.subspan(use.element, use.count), row + use.offset);
    }
    const CElementValues &values = m_walk->GetValues();
    if (use.levels != 0)
        use.form->WriteAsLevels(values.front(), {row, use.levels});
    else
        use.form->Write(std::span(values).subspan(use.element, use.count), row + use.offset);
}

void CSideWalk::Tell(CComparison &comparison) const
{
    for (const SUse &use : m_uses[m_walk->GetSignal()])
        Write(use, comparison.Change(m_side, use.pair, m_time));
}

std::optional<std::size_t> CSideWalk::FindChange(const CComparison &comparison) const
{
    for (const SUse &use : m_uses[m_walk->GetSignal()]) {
        CComparedRow row = comparison.Row(m_side, use.pair);
        Write(use, row.data());
        if (row != comparison.Row(m_side, use.pair))
            return use.pair;
    }
    return std::nullopt;
}

}  // namespace tesk
