#include "platform/fst/fstwalk.h"

#include <algorithm>
#include <utility>

namespace NTARN {

bool AreFstBlocksInOrder(const SFstLayout &layout)
{
    for (std::size_t i = 0; i < layout.changes.size(); ++i) {
        const SFstChangeBlock &block = layout.changes[i];
        if (block.begin > block.end || (i > 0 && block.begin < layout.changes[i - 1].end))
            return false;
    }
    return true;
}

CFstWalk::CFstWalk(CFstBlocks &blocks, const std::vector<SFstStore> &stores, const SFstClock &clock,
                   std::span<const std::uint32_t> wanted, std::function<void()> onDamage)
    : m_blocks(blocks), m_clock(clock), m_onDamage(std::move(onDamage)), m_tracks(blocks, stores),
      m_nextSignal(wanted.size(), None), m_marked(wanted.size())
{
    for (const std::uint32_t store : wanted)
        m_trackOf.push_back(m_tracks.Add(store));
    m_firstSignal.assign(m_tracks.Count(), None);
    for (std::size_t i = wanted.size(); i-- > 0;)
        m_nextSignal[i] = std::exchange(m_firstSignal[m_trackOf[i]], static_cast<std::uint32_t>(i));
}

// The time of the next value, if there is one.
bool CFstWalk::PeekTime(long long &time)
{
    if (!FindBucket())
        return false;
    time = m_clock.Time(!m_initial.empty() ? m_initial.front().second.time : m_block->Times().At(m_bucket));
    return true;
}

// Different times of the file may be one of its ticks, and the last of a block the first of the next.
bool CFstWalk::Next(long long &time, long long until)
{
    do {
        if (!PeekTime(time) || time > until)
            return false;
        for (long long next = time; next == time && FindBucket(); PeekTime(next))
            m_initial.empty() ? TakeBucket() : TakeInitial();
        m_marked.Take(m_changed);
    } while (m_changed.empty());
    return true;
}

// Goes to the next time that has changes. @return false if there is none
bool CFstWalk::FindBucket()
{
    for (;;) {
        if (!m_initial.empty())
            return true;
        while (m_bucket < m_buckets.size() && m_buckets[m_bucket] == None)
            ++m_bucket;
        if (m_bucket == m_buckets.size() && !LoadBlock())
            return false;
        if (!m_initial.empty() || m_bucket == m_buckets.size() || m_buckets[m_bucket] == None)
            continue;
        if (m_block->Times().At(m_bucket) >= m_fileTime)
            return true;
        DropBucket();
    }
}

bool CFstWalk::LoadBlock()
{
    const std::size_t index = m_nextBlock;
    if (index == m_blocks.Count())
        return false;
    ++m_nextBlock;
    m_block = m_blocks.Pass(index);
    m_cursors.clear();
    m_bucket = 0;
    m_buckets.assign(m_block ? m_block->Times().Count() : 0, None);
    for (const SFstTrackStretch &stretch : m_tracks.StretchesIn(index)) {
        CFstBuffer chain;
        m_tracks.Unpack(index, stretch, chain);
        m_cursors.emplace_back(stretch.track, m_tracks.Store(stretch.track), std::move(chain));
    }
    if (index == 0)
        FindInitial();
    for (std::uint32_t cursor = 0; cursor < m_cursors.size(); ++cursor)
        Queue(cursor);
    m_onDamage();
    return true;
}

void CFstWalk::FindInitial()
{
    std::vector<SFstSpan> chains(m_tracks.Count());
    for (const SCursor &cursor : m_cursors)
        chains[cursor.track] = cursor.buffer;
    m_initial = m_tracks.Initial(chains);
}

// Puts a cursor into the list of its next change's time.
void CFstWalk::Queue(std::uint32_t cursor)
try {
    SCursor &queued = m_cursors[cursor];
    if (queued.chain.AtEnd())
        return;
    std::uint64_t timeIndex = 0;
    queued.value = m_tracks.Next(queued.track, queued.chain, m_block->Times(), timeIndex);
    queued.next = std::exchange(m_buckets[static_cast<std::size_t>(timeIndex)], cursor);
} catch (const XFstDamage &) {
    m_blocks.NoteDamage(m_nextBlock - 1);
    m_onDamage();
}

void CFstWalk::TakeInitial()
{
    for (const auto &[track, initial] : m_initial)
        Take(track, {initial.letters, false});
    m_initial.clear();
}

// A store may change several times at one time.
void CFstWalk::TakeBucket()
{
    m_fileTime = m_block->Times().At(m_bucket);
    while (m_buckets[m_bucket] != None) {
        const std::uint32_t cursor = m_buckets[m_bucket];
        m_buckets[m_bucket] = m_cursors[cursor].next;
        Take(m_cursors[cursor].track, m_cursors[cursor].value);
        Queue(cursor);
    }
}

// The head of the file told another time than its block: these changes come too late.
void CFstWalk::DropBucket()
{
    m_blocks.NoteDamage(m_nextBlock - 1);
    m_onDamage();
    while (m_buckets[m_bucket] != None) {
        const std::uint32_t cursor = m_buckets[m_bucket];
        m_buckets[m_bucket] = m_cursors[cursor].next;
        Queue(cursor);
    }
}

void CFstWalk::Take(std::uint32_t track, const SFstValue &value)
{
    if (!m_tracks.Take(track, value))
        return;
    for (std::uint32_t signal = m_firstSignal[track]; signal != None; signal = m_nextSignal[signal])
        m_marked.Mark(signal);
}

}  // namespace NTARN
