#include "platform/stream/stretchwriter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>
#include <utility>

#include "platform/stream/streampack.h"

namespace Morvel {

namespace {

// A stretch ends at the first new time behind so many events, at the latest behind more.
constexpr std::size_t StretchEvents = std::size_t{1} << 19;
constexpr std::size_t MostStretchEvents = std::size_t{1} << 22;
// A block ends behind the group with which it has so many bytes.
constexpr std::size_t BlockBytes = std::size_t{1} << 16;
constexpr std::uint32_t WordFlag = 0x80000000;

}  // namespace

std::uint32_t CStretchWriter::AddTrack(bool isNeighbour, unsigned valueSize, unsigned low)
{
    const auto track = static_cast<std::uint32_t>(m_tracks.size());
    SGroupForm form{1, static_cast<std::uint8_t>(valueSize), static_cast<std::uint8_t>(low)};
    const bool joins = isNeighbour && !m_groups.empty() && m_groups.back().last < 0 &&
                       m_groups.back().form.count < MaxGroup && m_groups.back().form.valueSize == valueSize &&
                       m_groups.back().form.low == low &&
                       m_groups.back().firstTrack + m_groups.back().form.count == track;
    if (!joins)
        m_groups.push_back({-1, track, form});
    else
        ++m_groups.back().form.count;
    m_tracks.push_back({-1, 0, static_cast<std::uint32_t>(m_groups.size() - 1), 0});
    return track;
}

bool CStretchWriter::Add(std::uint32_t track, long long time, std::uint64_t value)
{
    STrack &target = m_tracks[track];
    if (time < target.last)
        return false;
    if (time < m_groups[target.group].last)
        Dissolve(target.group);
    const SGroup &group = m_groups[target.group];
    Log(target.group, time, false, group.firstTrack + group.form.count - 1 - track, value);
    target.last = time;
    ++target.events;
    return true;
}

bool CStretchWriter::AddWord(std::uint32_t first, unsigned count, long long time, std::uint64_t changed,
                             std::uint64_t bits)
{
    const std::uint32_t group = m_tracks[first].group;
    if (m_groups[group].firstTrack != first || m_groups[group].form.count != count || time < m_groups[group].last)
        return false;
    Log(group, time, true, changed, bits & changed);
    for (std::uint64_t left = changed; left != 0; left &= left - 1) {
        STrack &track = m_tracks[first + count - 1 - static_cast<unsigned>(std::countr_zero(left))];
        track.last = time;
        ++track.events;
    }
    return true;
}

void CStretchWriter::Log(std::uint32_t group, long long time, bool isWord, std::uint64_t changed, std::uint64_t value)
{
    if (m_times.empty() || time != m_times.back())
        NumberTime(time);
    else if (m_events.size() >= MostStretchEvents) {
        EndStretch();
        NumberTime(time);
    }
    const auto number = static_cast<std::uint32_t>(m_times.size() - 1);
    m_events.push_back({group, number | (isWord ? WordFlag : 0), changed, value});
    SGroup &target = m_groups[group];
    target.last = time;
    if (target.events++ == 0)
        m_touched.push_back(group);
}

void CStretchWriter::NumberTime(long long time)
{
    if (m_events.size() >= StretchEvents)
        EndStretch();
    m_areTimesRising = m_areTimesRising && (m_times.empty() || time > m_times.back());
    m_times.push_back(time);
    m_lastTime = std::max(m_lastTime, time);
}

// One scalar after the other: from now on each is a group of its own, so that the times of a group never fall.
void CStretchWriter::Dissolve(std::uint32_t group)
{
    const std::uint32_t first = m_groups[group].firstTrack;
    SGroupForm form = m_groups[group].form;
    const unsigned count = std::exchange(form.count, std::uint8_t{1});
    for (std::uint32_t track = first; track < first + count; ++track) {
        m_tracks[track].group = static_cast<std::uint32_t>(m_groups.size());
        m_groups.push_back({m_tracks[track].last, track, form});
    }
}

void CStretchWriter::Finish()
{
    if (!m_events.empty())
        EndStretch();
}

void CStretchWriter::SortTimes()
{
    std::vector<long long> sorted = m_times;
    std::ranges::sort(sorted);
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    for (SEvent &event : m_events) {
        const auto place = std::ranges::lower_bound(sorted, m_times[event.time & ~WordFlag]);
        event.time = static_cast<std::uint32_t>(place - sorted.begin()) | (event.time & WordFlag);
    }
    m_times = std::move(sorted);
}

// The groups by their tracks, each one's events in the order in which they came.
std::vector<std::uint32_t> CStretchWriter::SortByGroup()
{
    std::ranges::sort(m_touched, {},
                      [this](std::uint32_t group) { return std::pair(m_groups[group].firstTrack, group); });
    std::uint32_t next = 0;
    for (const std::uint32_t group : m_touched) {
        m_groups[group].next = next;
        next += m_groups[group].events;
    }
    std::vector<std::uint32_t> order(m_events.size());
    for (std::uint32_t i = 0; i < m_events.size(); ++i)
        order[m_groups[m_events[i].group].next++] = i;
    return order;
}

void CStretchWriter::EndStretch()
{
    if (!m_areTimesRising)
        SortTimes();
    const std::vector<std::uint32_t> order = SortByGroup();
    std::vector<SChunk> chunks;
    std::vector<SPackEntry> blocks;
    std::string bytes;
    std::uint32_t highTrack = 0;
    for (const std::uint32_t number : m_touched) {
        SGroup &group = m_groups[number];
        const auto offset = static_cast<std::uint32_t>(bytes.size());
        Encode(group, order, bytes);
        chunks.push_back({group.firstTrack, group.form.count, static_cast<std::uint32_t>(blocks.size()), offset,
                          static_cast<std::uint32_t>(bytes.size() - offset)});
        highTrack = std::max(highTrack, group.firstTrack + group.form.count - 1);
        group.events = 0;
        if (bytes.size() < BlockBytes)
            continue;
        blocks.push_back(WriteBlock(bytes));
        bytes.clear();
    }
    if (!bytes.empty())
        blocks.push_back(WriteBlock(bytes));
    Append(m_entries, std::int64_t{m_times.front()});
    Append(m_entries, std::int64_t{m_times.back()});
    Append(m_entries, m_groups[m_touched.front()].firstTrack);
    Append(m_entries, highTrack);
    Append(m_entries, static_cast<std::uint32_t>(blocks.size()));
    AppendPackEntry(m_entries, WriteBlock(MakeStretchTable(m_times, chunks, blocks.size())));
    for (const SPackEntry &block : blocks)
        AppendPackEntry(m_entries, block);
    ++m_stretchCount;
    m_events.clear();
    m_times.clear();
    m_areTimesRising = true;
    m_touched.clear();
}

// The events of one time become one, as long as no scalar has two of them.
void CStretchWriter::Encode(const SGroup &group, const std::vector<std::uint32_t> &order, std::string &bytes) const
{
    const auto isWord = [](const SEvent &event) { return (event.time & WordFlag) != 0; };
    const auto changed = [&](const SEvent &event) {
        return isWord(event) ? event.changed : std::uint64_t{1} << event.changed;
    };
    const std::uint32_t *const end = order.data() + group.next;
    const std::uint32_t *next = end - group.events;
    std::size_t count = 0;  // of what stands in the bytes
    std::string events;
    CGroupEncoder encoder(group.form, events);
    for (const std::uint32_t *after = next; next != end; next = after, ++count) {
        const SEvent &event = m_events[*next];
        std::uint64_t met = changed(event);
        for (++after; after != end; ++after) {
            const SEvent &other = m_events[*after];
            if ((other.time & ~WordFlag) != (event.time & ~WordFlag) || (met & changed(other)) != 0)
                break;
            met |= changed(other);
        }
        if (after - next == 1 && isWord(event))
            encoder.AddWord(event.time & ~WordFlag, event.changed, event.value);
        else
            EncodeAtOnce(encoder, group, next, after);
    }
    AppendChunkHead(group.form, count, bytes);
    bytes += events;
}

void CStretchWriter::EncodeAtOnce(CGroupEncoder &encoder, const SGroup &group, const std::uint32_t *begin,
                                  const std::uint32_t *end) const
{
    const std::uint64_t low = group.form.low;
    std::array<std::uint64_t, MaxGroup> values;
    std::uint64_t changed = 0;
    std::uint64_t bits = 0;
    bool areBits = group.form.valueSize == 1;
    for (const std::uint32_t *next = begin; next != end; ++next) {
        const SEvent &event = m_events[*next];
        const bool isWord = (event.time & WordFlag) != 0;
        const std::uint64_t its = isWord ? event.changed : std::uint64_t{1} << event.changed;
        for (std::uint64_t left = its; left != 0; left &= left - 1) {
            const int bit = std::countr_zero(left);
            const std::uint64_t value = isWord ? low + (event.value >> bit & 1) : event.value;
            values[static_cast<std::size_t>(bit)] = value;
            areBits = areBits && (value | 1) == (low | 1);
            bits |= (value & 1) << bit;
        }
        changed |= its;
    }
    const std::uint32_t time = m_events[*begin].time & ~WordFlag;
    if (areBits)
        encoder.AddWord(time, changed, bits);
    else
        encoder.AddValues(time, changed, values);
}

SPackEntry CStretchWriter::WriteBlock(const std::string &bytes)
{
    const std::string packed = PackFast(bytes);
    const std::uint64_t offset = m_write(packed);
    return {offset, static_cast<std::uint32_t>(packed.size()), static_cast<std::uint32_t>(bytes.size()), Crc(packed)};
}

}  // namespace Morvel
