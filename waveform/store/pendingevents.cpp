#include "waveform/store/pendingevents.h"

#include <algorithm>
#include <bit>

namespace tesk {

// One pass of a radix sort, by as many of the upper bits of the run as make up to 256 bundles. It keeps the order of
// what is equal.
void CPendingEvents::BundleRuns()
{
    constexpr int BundleBits = 8;
    const std::uint64_t largest = m_keys.empty() ? 0 : std::ranges::max(m_keys);
    const int shift = std::max(static_cast<int>(std::bit_width(largest)) - BundleBits, 32);
    std::array<std::size_t, (1 << BundleBits) + 1> places{};  // where the next key of a bundle goes
    for (const std::uint64_t key : m_keys)
        ++places[(key >> shift) + 1];
    for (std::size_t i = 1; i < places.size(); ++i)
        places[i] += places[i - 1];
    m_bundled.resize(m_keys.size());
    for (const std::uint64_t key : m_keys)
        m_bundled[places[key >> shift]++] = key;
    m_keys.swap(m_bundled);
}

void CPendingEvents::Release()
{
    *this = CPendingEvents();
}

}  // namespace tesk
