// A walk over the events of neighbouring elements together.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk {

/// Merges the events of up to 64 elements by rising time. What is kept of an element is little: there may be millions.
/// @tparam TSource  the events, element by element, counted from 0:
///                  `bool HasNext(element)`; `long long NextTime(element)`; `void Take(element)`, which goes behind all
///                  events at the next time; `std::uint64_t Value(element)`, the last one taken
template <class TSource>
class TElementsWalk final : public IElementsWalk {
public:
    TElementsWalk(TSource source, std::size_t count) : m_source(std::move(source)), m_times(count)
    {
        for (std::size_t i = 0; i < count; ++i)
            Look(i);
    }

    bool Next(long long &time, std::uint64_t &changed) override
    {
        time = *std::ranges::min_element(m_times);
        changed = 0;
        for (std::size_t i = 0; i < m_times.size(); ++i) {
            if (m_times[i] != time || (time == Never && !m_source.HasNext(i)))
                continue;
            changed |= std::uint64_t{1} << i;
            m_source.Take(i);
            Look(i);
        }
        return changed != 0;
    }

    std::uint64_t Value(unsigned element) const override { return m_source.Value(element); }

private:
    static constexpr long long Never = std::numeric_limits<long long>::max();

    void Look(std::size_t element)
    {
        m_times[element] = m_source.HasNext(element) ? m_source.NextTime(element) : Never;
    }

    TSource m_source;
    std::vector<long long> m_times;  // of each element's next event
};

template <class TSource>
std::unique_ptr<IElementsWalk> MakeElementsWalk(TSource source, std::size_t count)
{
    return std::make_unique<TElementsWalk<TSource>>(std::move(source), count);
}

}  // namespace tesk
