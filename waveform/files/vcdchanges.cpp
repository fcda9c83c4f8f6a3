#include "waveform/files/vcdchanges.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "platform/changes/bitgroups.h"

namespace tesk {

namespace {

// Whether the elements of a word are all 0 or 1. @param elements  a bit for each
bool IsTwoState(const WaveWord &word, std::uint64_t elements)
{
    return ((~word.m_planes[1] | word.m_planes[2] | word.m_planes[3]) & elements) == 0;
}

// Eight of the elements of a word. @param first  the rightmost, counted from the right
void StoreGroup(const WaveWord &word, unsigned first, bool isTwoState, std::uint8_t *positions)
{
    if (isTwoState) {
        const auto &group = BitGroupPositions[word.m_planes[0] >> first & 0xFF];
        std::memcpy(positions, group.data(), BitGroup);
        return;
    }
    for (unsigned i = 0; i < BitGroup; ++i)
        positions[BitGroup - 1 - i] = PositionAt(word, first + i);
}

// Stores those that changed, and perhaps neighbours of them.
void StoreWord(const WaveWord &word, std::uint64_t changed, unsigned count, std::uint8_t *behindLast)
{
    const bool isTwoState = IsTwoState(word, ~std::uint64_t{0} >> (64 - count));
    for (unsigned first = 0; changed >> first != 0; first += BitGroup) {
        if ((changed >> first & 0xFF) == 0)
            continue;
        if (count - first >= BitGroup) {
            StoreGroup(word, first, isTwoState, behindLast - first - BitGroup);
        } else {
            for (unsigned i = first; i < count; ++i)
                behindLast[-1 - static_cast<int>(i)] = PositionAt(word, i);
        }
        if (first + BitGroup == 64)
            return;
    }
}

// The bits of the elements that changed.
std::uint64_t ChangedElements(const WaveWord &before, const WaveWord &after, unsigned count)
{
    std::uint64_t changed = 0;
    for (int i = 0; i < 4; ++i)
        changed |= before.m_planes[i] ^ after.m_planes[i];
    return changed & ~std::uint64_t{0} >> (64 - count);
}

}  // namespace

CVcdTracks::CVcdTracks(CVcdOpening &file, const std::vector<SFileSignal> &signals)
{
    const WaveStore &store = file.Store();
    long long handles = 0;
    for (std::size_t i = 0; i < store.GetSignalCount(); ++i)
        handles = std::max(handles, store.GetSignal(i).lastHandle);
    m_trackOfHandle.assign(static_cast<std::size_t>(handles) + 1, None);
    for (const SFileSignal &signal : signals)
        m_trackOf.push_back(
            Add({store.GetOriginal(signal.firstElement), signal.elementCount, IsOfEnumeration(signal)}));
    for (const SVcdWord &word : file.Words()) {
        const std::uint32_t track = Find(word.last);
        const long long right = track != None ? word.last - m_tracks[track].first + 1 : 0;
        m_words.push_back({track, word.count, static_cast<std::size_t>(right)});
    }
}

std::uint32_t CVcdTracks::Add(const STrack &track)
{
    if (track.first < 1 || track.first + track.count > std::ssize(m_trackOfHandle))
        throw std::out_of_range("a signal that shares the events of none");
    const std::span handles = std::span(m_trackOfHandle)
                                  .subspan(static_cast<std::size_t>(track.first))
                                  .first(static_cast<std::size_t>(track.count));
    if (handles.front() == None) {
        std::ranges::fill(handles, static_cast<std::uint32_t>(m_tracks.size()));
        m_tracks.push_back(track);
    }
    return handles.front();
}

CVcdWalk::CVcdWalk(std::shared_ptr<CVcdOpening> file, const std::vector<SFileSignal> &signals)
    : m_file(std::move(file)), m_tracks(*m_file, signals), m_firstSignal(m_tracks.Count(), CVcdTracks::None),
      m_nextSignal(signals.size()), m_marked(signals.size())
{
    for (std::size_t track = 0; track < m_tracks.Count(); ++track) {
        if (m_tracks.Track(track).isOfBits)
            m_values.AddBits(static_cast<std::size_t>(m_tracks.Track(track).count));
        else
            m_values.AddReal();
    }
    for (std::size_t i = signals.size(); i-- > 0;)
        m_nextSignal[i] = std::exchange(m_firstSignal[m_tracks.TrackOf(i)], static_cast<std::uint32_t>(i));
    m_file->Begin(*this);
}

bool CVcdWalk::PeekTime(long long &time)
{
    time = m_file->Time();
    return !m_isAtEnd;
}

// The values of a time are read when the walk goes there.
bool CVcdWalk::Next(long long &time, long long until)
{
    do {
        if (m_isAtEnd || m_file->Time() > until)
            return false;
        time = m_file->Time();
        m_isAtEnd = !m_file->Step();
        m_marked.Take(m_changed);
    } while (m_changed.empty());
    return true;
}

void CVcdWalk::Add(long long handle, const WaveEvent &event)
{
    const std::uint32_t track = m_tracks.Find(handle);
    if (track == CVcdTracks::None)
        return;
    if (m_tracks.Track(track).isOfBits)
        m_values.Positions(track)[static_cast<std::size_t>(handle - m_tracks.Track(track).first)] =
            static_cast<std::uint8_t>(event.m_value);
    else
        m_values.SetReal(track, event.m_value);
    Mark(track);
}

void CVcdWalk::AddWord(std::size_t word, long long, const WaveWord &before, const WaveWord &after)
{
    const auto [track, count, right] = m_tracks.Word(word);
    if (track == CVcdTracks::None)
        return;
    StoreWord(after, ChangedElements(before, after, count), count, m_values.Positions(track).data() + right);
    Mark(track);
}

void CVcdWalk::Mark(std::uint32_t track)
{
    for (std::uint32_t signal = m_firstSignal[track]; signal != CVcdTracks::None; signal = m_nextSignal[signal])
        m_marked.Mark(signal);
}

namespace {

class CVcdCounter final : public IVcdEvents {
public:
    CVcdCounter(CVcdOpening &file, const std::vector<SFileSignal> &signals, const SStretch &stretch)
        : m_tracks(file, signals), m_stretch(stretch), m_counts(m_tracks.Count())
    {}

    const SChangeCount &CountOf(std::size_t signal) const { return m_counts[m_tracks.TrackOf(signal)]; }

    void Add(long long handle, const WaveEvent &event) override { Count(m_tracks.Find(handle), event.m_time); }
    void AddWord(std::size_t word, long long time, const WaveWord &, const WaveWord &) override
    {
        Count(m_tracks.Word(word).track, time);
    }

private:
    void Count(std::uint32_t track, long long time)
    {
        if (track != CVcdTracks::None && m_stretch.Has(time))
            m_counts[track].Add(time);
    }

    CVcdTracks m_tracks;
    SStretch m_stretch;
    std::vector<SChangeCount> m_counts;  // by track
};

}  // namespace

std::vector<SChangeCount> CountVcdChanges(CVcdOpening &file, const std::vector<SFileSignal> &signals,
                                          const SStretch &stretch, const FProgress &progress)
{
    CVcdCounter counter(file, signals, stretch);
    file.Begin(counter);
    while (file.Step())
        progress(file.BytesRead(), file.FileSize());
    file.End();
    std::vector<SChangeCount> counts;
    for (std::size_t i = 0; i < signals.size(); ++i)
        counts.push_back(counter.CountOf(i));
    return counts;
}

}  // namespace tesk
