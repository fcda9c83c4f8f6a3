#include "tools/view/thinner.h"

#include <algorithm>
#include <string>

#include "tools/timetext.h"
#include "tools/writers/valuetext.h"

namespace tesk {

CThinner::CThinner(const SRecordedWindow &window, const Kestrin::KTypeInfo &type, CChangeRecorder &recorder)
    : m_window(window), m_recorder(recorder)
{
    const std::string description = type.GetTypeInfoString();
    m_isCurve = KindOf(type) == Kestrin::ETypeKind::Real || (window.isAnalog && IsBusType(description));
    m_isOfBits = IsBitVectorType(description);
    m_isSigned = IsSignedType(description);
}

std::optional<double> CThinner::Number(const SChange &change) const
{
    if (!m_isCurve || !change.value || change.value->size() > WidestDecimal)
        return std::nullopt;
    return NumberOf(m_isOfBits ? BitsInRadix(*change.value, m_isSigned ? ERadix::Signed : ERadix::Decimal)
                               : *change.value);
}

long long CThinner::PointOf(long long ticks) const
{
    const Int128 span = static_cast<Int128>(m_window.until) - m_window.from + 1;
    return static_cast<long long>((static_cast<Int128>(ticks) - m_window.from) *
                                  static_cast<long long>(m_window.points) / span);
}

// Whether a stretch is narrower than two points.
bool CThinner::IsNarrow(long long begin, long long end) const
{
    const Int128 span = static_cast<Int128>(m_window.until) - m_window.from + 1;
    return (static_cast<Int128>(end) - begin) * static_cast<long long>(m_window.points) < 2 * span;
}

void CThinner::Add(SChange change)
{
    if (m_window.points == 0)
        Keep(std::move(change));
    else if (m_isCurve)
        AddToCurve(std::move(change));
    else
        AddToStretches(std::move(change));
}

// The last change is of no interest where the stretches on both sides of it, and both together, are narrow.
void CThinner::AddToStretches(SChange change)
{
    if (m_kept.size() > 1 && IsNarrow(m_kept[m_kept.size() - 2].ticks, change.ticks))
        m_recorder.TakeBack(m_kept);
    Keep(std::move(change));
}

void CThinner::AddToCurve(SChange change)
{
    const long long point = PointOf(change.ticks);
    if (point != m_point) {
        Flush();
        m_point = point;
        return Keep(std::move(change));
    }
    const std::optional<double> number = Number(change);
    if (number && (!m_lowest || *number < m_lowest->first))
        m_lowest = {*number, change};
    if (number && (!m_highest || *number > m_highest->first))
        m_highest = {*number, change};
    m_last = std::move(change);
}

// The point that was gathered is complete.
void CThinner::Flush()
{
    if (!m_last)
        return;
    std::vector<SChange> kept;
    if (m_lowest)
        kept.push_back(std::move(m_lowest->second));
    if (m_highest)
        kept.push_back(std::move(m_highest->second));
    kept.push_back(std::move(*m_last));
    std::ranges::stable_sort(kept, {}, &SChange::ticks);
    for (SChange &change : kept) {
        if (change.ticks != m_kept.back().ticks || &change == &kept.back())
            Keep(std::move(change));
    }
    m_last.reset();
    m_lowest.reset();
    m_highest.reset();
}

void CThinner::Keep(SChange change)
{
    m_recorder.Add(m_kept, std::move(change), m_kept.empty() ? m_window.from : m_kept.back().ticks);
}

std::vector<SChange> CThinner::Finish()
{
    Flush();
    return std::move(m_kept);
}

}  // namespace tesk
