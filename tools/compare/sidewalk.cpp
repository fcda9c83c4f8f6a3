#include "tools/compare/sidewalk.h"

#include <cstdint>
#include <span>

#include "waveform/files/filewalk.h"
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
        m_usesOf.emplace_back();
    }
    m_sourceOf[signal] = known->second;
    return known->second;
}

void CSideWalk::Feed(std::size_t pair, const SComparedForm &form, const SPairPart &part)
{
    const CValueForm &own = m_forms.Of(part.signal);
    const bool isInteger = own.Kind() == EComparedKind::Integer && form.kind == EComparedKind::Levels;
    m_usesOf[SourceOf(part.signal)].push_back(
        {pair, part.element, part.count, part.slot * ElementSize(form.kind), isInteger ? form.width : 0, &own});
}

void CSideWalk::Begin()
{
    for (const std::vector<SUse> &uses : m_usesOf) {
        m_fedBegins.push_back(m_fed.size());
        for (const SUse &use : uses) {
            if (m_fed.size() == m_fedBegins.back() || m_fed.back().pair != use.pair)
                m_fed.push_back({use.pair, m_uses.size(), m_uses.size()});
            m_uses.push_back(use);
            ++m_fed.back().end;
        }
    }
    m_fedBegins.push_back(m_fed.size());
    m_usesOf.clear();
    m_known.clear();
    m_walk = WalkInTime(m_file, m_sources);
    m_hasNext = m_walk->PeekTime(m_nextFileTime);
}

std::optional<long long> CSideWalk::NextTime()
{
    if (m_walk == nullptr)
        Begin();
    return m_hasNext ? std::optional(m_ticks(m_nextFileTime)) : std::nullopt;
}

void CSideWalk::Step()
{
    m_time = m_ticks(m_nextFileTime);
    long long time = 0;
    m_changed = m_walk->Next(time, m_nextFileTime) ? m_walk->GetChanged() : std::span<const std::uint32_t>();
    m_hasNext = m_walk->PeekTime(m_nextFileTime);
}

void CSideWalk::Write(std::size_t source, const SUse &use, char *row) const
{
    if (use.form->Kind() == EComparedKind::Levels) {
        const std::span<const std::uint8_t> positions = m_walk->GetPositions(source);
        if (!positions.empty())
            return use.form->Write(positions.subspan(use.element, use.count), row + use.offset);
    }
    const CElementValues &values = m_walk->GetValues(source);
    if (use.levels != 0)
        use.form->WriteAsLevels(values.front(), {row, use.levels});
    else
        use.form->Write(std::span(values).subspan(use.element, use.count), row + use.offset);
}

void CSideWalk::Tell(CComparison &comparison) const
{
    for (const std::uint32_t source : m_changed) {
        for (const SFed &fed : FedBy(source))
            Tell(comparison, source, fed, m_time);
    }
}

void CSideWalk::Tell(CComparison &comparison, std::size_t source, const SFed &fed, long long time) const
{
    char *const row = comparison.Change(m_side, fed.pair, time);
    for (std::size_t i = fed.begin; i < fed.end; ++i)
        Write(source, m_uses[i], row);
}

std::optional<std::size_t> CSideWalk::FindChange(const CComparison &comparison) const
{
    for (const std::uint32_t source : m_changed) {
        for (const SFed &fed : FedBy(source)) {
            CComparedRow row = comparison.Row(m_side, fed.pair);
            for (std::size_t i = fed.begin; i < fed.end; ++i)
                Write(source, m_uses[i], row.data());
            if (row != comparison.Row(m_side, fed.pair))
                return fed.pair;
        }
    }
    return std::nullopt;
}

}  // namespace tesk
