#include "platform/stream/streamwalk.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <limits>
#include <optional>
#include <queue>
#include <string_view>
#include <utility>

#include "platform/stream/trackloader.h"

namespace Morvel {

// A stretch that is being walked.
class CStreamWalk::CStretch {
public:
    /// @param isWanted  tells of a chunk whether anybody shows an event of it
    CStretch(const SStreamFile &file, std::size_t number, const std::function<bool(const SChunk &)> &isWanted)
        : m_entry(file.index->Stretches()[number]),
          m_table(ReadStretchTable(file.ReadPack(m_entry.table), m_entry, file.index->BlocksOf(m_entry))),
          m_lists(m_table.times.size(), None)
    {
        const auto wanted = static_cast<std::size_t>(std::ranges::count_if(m_table.chunks, isWanted));
        m_cursors.reserve(wanted);
        m_blocks.resize(m_entry.blockCount);
        for (std::uint32_t i = 0; i < m_table.chunks.size(); ++i) {
            if (isWanted(m_table.chunks[i]))
                Open(file, i);
        }
        FindTime();
    }

    bool IsAtEnd() const { return m_time == m_lists.size(); }
    /// Of its next events.
    long long Time() const { return m_table.times[m_time]; }

    /// Calls `take(chunk, event)` for each event at that time, those of one scalar in their order, and goes on.
    template <class FTake>
    void Take(const FTake &take)
    {
        m_met.clear();
        for (std::uint32_t cursor = m_lists[m_time]; cursor != None; cursor = m_cursors[cursor].next)
            m_met.push_back(cursor);
        if (m_overlaps)
            std::ranges::sort(m_met);
        const auto now = static_cast<std::uint32_t>(m_time);
        for (const std::uint32_t cursor : m_met) {
            CGroupDecoder &events = m_cursors[cursor].events;
            bool goesOn = true;
            for (; goesOn && events.Time() == now; goesOn = Next(events))
                take(m_table.chunks[m_cursors[cursor].chunk], events);
            if (goesOn)
                Queue(cursor);
        }
        ++m_time;
        FindTime();
    }

private:
    struct SCursor {
        CGroupDecoder events;
        std::uint32_t chunk;
        std::uint32_t next;  // in the list of its time
    };

    void Open(const SStreamFile &file, std::uint32_t number)
    {
        const SChunk &chunk = m_table.chunks[number];
        std::optional<std::string> &block = m_blocks[chunk.block];
        if (!block)
            block = file.ReadPack(file.index->BlocksOf(m_entry)[chunk.block]);
        m_overlaps = m_overlaps || chunk.firstTrack < m_endTrack;
        m_endTrack = std::max(m_endTrack, chunk.firstTrack + chunk.count);
        const std::string_view bytes = std::string_view(*block).substr(chunk.offset, chunk.size);
        const auto times = static_cast<std::uint32_t>(m_table.times.size());
        m_cursors.push_back({CGroupDecoder(FormOf(*file.index, chunk), bytes, times), number, None});
        if (Next(m_cursors.back().events))
            Queue(static_cast<std::uint32_t>(m_cursors.size() - 1));
    }

    static bool Next(CGroupDecoder &events)
    {
        if (events.Next())
            return true;
        if (!events.IsGood())
            throw XFault("is damaged: a block is not what the index says");
        return false;
    }

    void Queue(std::uint32_t cursor)
    {
        SCursor &queued = m_cursors[cursor];
        queued.next = std::exchange(m_lists[queued.events.Time()], cursor);
    }

    void FindTime()
    {
        while (m_time < m_lists.size() && m_lists[m_time] == None)
            ++m_time;
    }

    const SStretchEntry &m_entry;
    SStretchTable m_table;
    std::vector<std::uint32_t> m_lists;  // of each time the first cursor
    std::vector<SCursor> m_cursors;
    std::vector<std::optional<std::string>> m_blocks;  // unpacked
    std::vector<std::uint32_t> m_met;
    std::size_t m_time = 0;
    std::uint32_t m_endTrack = 0;
    bool m_overlaps = false;  // whether a scalar is in several chunks
};

bool AreStretchesInOrder(const CStreamIndex &index)
{
    constexpr std::size_t MostOpen = 4;
    std::priority_queue<long long, std::vector<long long>, std::greater<>> open;  // by their last times
    long long first = 0;
    for (const SStretchEntry &stretch : index.Stretches()) {
        if (stretch.first < first)
            return false;
        first = stretch.first;
        while (!open.empty() && open.top() < first)
            open.pop();
        open.push(stretch.last);
        if (open.size() > MostOpen)
            return false;
    }
    return true;
}

CStreamWalk::CStreamWalk(SStreamFile file, std::span<const tesk::SElements> signals, EValues values)
    : m_file(std::move(file)), m_keeps(values), m_firstUse(m_file.index->TrackCount(), None), m_values(signals.size()),
      m_marked(signals.size())
{
    for (const tesk::SElements &elements : signals)
        AddSignal(elements);
    FindRuns();
}

CStreamWalk::~CStreamWalk() = default;

void CStreamWalk::AddSignal(const tesk::SElements &elements)
{
    const auto signal = static_cast<std::uint32_t>(m_signals.size());
    const auto count = static_cast<std::size_t>(elements.count);
    bool hasPositions = true;
    for (std::uint32_t i = 0; i < count; ++i) {
        const SSignalEntry &element = *m_file.index->Find(static_cast<int>(elements.first + i));
        if (element.track == NoTrack ||
            m_file.index->ValueSizeOf(element.track) != m_file.index->TypeOf(element).GetScalarSize_OldFormat())
            throw XFault("is damaged: a signal has events that its type cannot have");
        hasPositions = hasPositions && HasPositions(element);
        std::uint32_t &use = m_firstUse[element.track];
        m_uses.push_back({signal, i, use});
        use = static_cast<std::uint32_t>(m_uses.size() - 1);
    }
    m_signals.push_back({m_positions.size(), count, hasPositions});
    if (hasPositions)
        m_positions.resize(m_positions.size() + count, NoPosition);
    else
        m_values[signal].resize(count);
}

// A literal in the last place would look as if there were none.
bool CStreamWalk::HasPositions(const SSignalEntry &element) const
{
    const Kestrin::KTypeInfo &type = m_file.index->TypeOf(element);
    const std::uint8_t last = NoPosition;
    return KindOf(type) == Kestrin::ETypeKind::Enumeration && m_file.index->ValueSizeOf(element.track) == 1 &&
           type.GetValueString_OldFormat(&last, 2, 0, 0, false).empty();
}

// The time of the next events. A stretch is opened when its first time has come.
bool CStreamWalk::PeekTime(long long &time)
{
    const std::vector<SStretchEntry> &stretches = m_file.index->Stretches();
    while (true) {
        std::erase_if(m_open, [](const auto &stretch) { return stretch->IsAtEnd(); });
        time = std::numeric_limits<long long>::max();
        for (const auto &stretch : m_open)
            time = std::min(time, stretch->Time());
        if (m_nextStretch == stretches.size() || (!m_open.empty() && stretches[m_nextStretch].first > time))
            return !m_open.empty();
        const auto isWanted = [this](const SChunk &chunk) {
            const auto uses = std::span(m_firstUse).subspan(chunk.firstTrack, chunk.count);
            return std::ranges::any_of(uses, [](std::uint32_t use) { return use != None; });
        };
        m_open.push_back(std::make_unique<CStretch>(m_file, m_nextStretch++, isWanted));
    }
}

bool CStreamWalk::Next(long long &time, long long until)
{
    m_changed.clear();
    long long next = 0;
    if (!PeekTime(next) || next > until)
        return false;
    for (const auto &stretch : m_open) {
        if (!stretch->IsAtEnd() && stretch->Time() == next)
            stretch->Take([this](const SChunk &chunk, const CGroupDecoder &event) { Take(chunk, event); });
    }
    time = next;
    m_marked.Take(m_changed);
    return true;
}

void CStreamWalk::Take(const SChunk &chunk, const CGroupDecoder &event)
{
    if (TakeWord(chunk, event))
        return;
    const std::uint32_t lastTrack = chunk.firstTrack + chunk.count - 1;
    for (std::uint64_t changed = event.Changed(); changed != 0; changed &= changed - 1) {
        const auto bit = static_cast<unsigned>(std::countr_zero(changed));
        const std::uint64_t value = event.Value(bit);
        for (std::uint32_t i = m_firstUse[lastTrack - bit]; i != None; i = m_uses[i].next) {
            const SUse &use = m_uses[i];
            const SSignal &signal = m_signals[use.signal];
            m_marked.Mark(use.signal);
            if (signal.hasPositions)
                m_positions[signal.begin + use.element] = static_cast<std::uint8_t>(value);
            else
                m_values[use.signal][use.element] = value;
        }
    }
}

// The common case: the tracks of a word are neighbouring elements of one signal, and of no other.
bool CStreamWalk::TakeWord(const SChunk &chunk, const CGroupDecoder &event)
{
    if (!event.IsWord() || m_runs[chunk.firstTrack] < chunk.count)
        return false;
    const SUse &first = m_uses[m_firstUse[chunk.firstTrack]];
    m_marked.Mark(first.signal);
    if (m_keeps == EValues::Dropped)
        return true;
    std::uint8_t *const last = m_positions.data() + m_signals[first.signal].begin + first.element + chunk.count - 1;
    for (std::uint64_t changed = event.Changed(); changed != 0; changed &= changed - 1) {
        const auto bit = static_cast<unsigned>(std::countr_zero(changed));
        *(last - bit) = static_cast<std::uint8_t>(event.Low() + (event.Bits() >> bit & 1));
    }
    return true;
}

// Of each track how many from there on are neighbouring elements of a signal with positions, each with no other use.
void CStreamWalk::FindRuns()
{
    m_runs.assign(m_firstUse.size(), 0);
    for (std::size_t track = m_firstUse.size(); track-- > 0;) {
        const std::uint32_t use = m_firstUse[track];
        if (use == None || m_uses[use].next != None || !m_signals[m_uses[use].signal].hasPositions)
            continue;
        const bool goesOn = track + 1 < m_runs.size() && m_runs[track + 1] > 0 && m_firstUse[track + 1] == use + 1 &&
                            m_uses[use + 1].signal == m_uses[use].signal;
        m_runs[track] = static_cast<std::uint8_t>(goesOn ? std::min<unsigned>(m_runs[track + 1] + 1U, MaxGroup) : 1);
    }
}

const tesk::CElementValues &CStreamWalk::GetValues(std::size_t number)
{
    const SSignal &signal = m_signals[number];
    if (!signal.hasPositions)
        return m_values[number];
    tesk::CElementValues &values = m_values[number];
    values.clear();
    for (const std::uint8_t position : GetPositions(number))
        values.push_back(position != NoPosition ? std::optional<std::uint64_t>(position) : std::nullopt);
    return values;
}

std::span<const std::uint8_t> CStreamWalk::GetPositions(std::size_t number)
{
    const SSignal &signal = m_signals[number];
    return signal.hasPositions ? std::span<const std::uint8_t>(m_positions).subspan(signal.begin, signal.count)
                               : std::span<const std::uint8_t>();
}

}  // namespace Morvel
