#include "platform/fst/fstcount.h"

namespace NTARN {

void CFstCounter::Count(const tesk::FProgress &progress)
{
    m_counts.resize(m_tracks.Count());
    for (std::size_t i = 0; i < m_blocks.Count(); ++i)
        CountBlock(i, progress);
}

// What stores have in front of their first change hangs on the chains of the first block.
void CFstCounter::CountBlock(std::size_t block, const tesk::FProgress &progress)
{
    const std::vector<SFstTrackStretch> stretches = m_tracks.StretchesIn(block);
    const std::vector<CFstBuffer> chains = block == 0 ? UnpackAll(stretches) : std::vector<CFstBuffer>();
    if (block == 0)
        CountInitial(stretches, chains);
    const auto stretchCount = static_cast<long long>(stretches.size());
    const auto done = static_cast<long long>(block) * stretchCount;
    const auto all = static_cast<long long>(m_blocks.Count()) * stretchCount;
    CFstBuffer chain;
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        progress(done + static_cast<long long>(i), all);
        if (block > 0)
            m_tracks.Unpack(block, stretches[i], chain);
        CountChain(block, stretches[i].track, block == 0 ? chains[i] : chain);
    }
}

std::vector<CFstBuffer> CFstCounter::UnpackAll(const std::vector<SFstTrackStretch> &stretches)
{
    std::vector<CFstBuffer> chains(stretches.size());
    for (std::size_t i = 0; i < stretches.size(); ++i)
        m_tracks.Unpack(0, stretches[i], chains[i]);
    return chains;
}

void CFstCounter::CountInitial(const std::vector<SFstTrackStretch> &stretches, const std::vector<CFstBuffer> &chains)
{
    std::vector<SFstSpan> chainOf(m_tracks.Count());
    for (std::size_t i = 0; i < stretches.size(); ++i)
        chainOf[stretches[i].track] = chains[i];
    for (const auto &[track, initial] : m_tracks.Initial(chainOf))
        Take(track, initial.time, {initial.letters, false});
}

void CFstCounter::CountChain(std::size_t block, std::uint32_t track, SFstSpan bytes)
try {
    const CFstBlocks::BlockPtr read = m_blocks.Pass(block);
    CFstChain chain(bytes, m_tracks.Store(track));
    while (read && !chain.AtEnd()) {
        std::uint64_t timeIndex = 0;
        const SFstValue value = m_tracks.Next(track, chain, read->Times(), timeIndex);
        Take(track, m_tracks.Track(track).lastTime, value);
    }
} catch (const XFstDamage &) {
    m_blocks.NoteDamage(block);
}

void CFstCounter::Take(std::uint32_t track, std::uint64_t fileTime, const SFstValue &value)
{
    const bool isChange = m_tracks.Take(track, value);
    const long long time = m_clock.Time(fileTime);
    if (isChange && m_stretch.Has(time))
        m_counts[track].Add(time);
}

}  // namespace NTARN
