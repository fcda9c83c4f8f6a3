// Gathers events into stretches of time, and makes the blocks of these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/stream/groupevents.h"
#include "platform/stream/morvelformat.h"
#include "platform/stream/stretchtable.h"

namespace Morvel {

/// The events may come in any order of the scalars, and those of one scalar by rising time. Memory is that of one stretch,
/// and some of each scalar. A stretch ends between two times where that can be, so that a stream that is written by rising
/// time has one stretch behind the other.
class CStretchWriter {
public:
    /// @param write  puts packed bytes into the file, and tells where they begin
    explicit CStretchWriter(std::function<std::uint64_t(std::string_view)> write) : m_write(std::move(write)) {}

    /// Adds a scalar. @param isNeighbour  of the one before, so that they make a group
    /// @param valueSize  bytes of a raw value, 1 to 8
    /// @param low        as in `SGroupForm`
    /// @return its track
    std::uint32_t AddTrack(bool isNeighbour, unsigned valueSize, unsigned low);

    /// Adds an event. @return false, and nothing is added, if it is earlier than the last one of the scalar
    bool Add(std::uint32_t track, long long time, std::uint64_t value);
    /// Adds an event of neighbours whose values are `low` or the one behind it.
    /// @param first    a track with `count` - 1 behind it
    /// @param changed  those that have it; bit 0 stands for the last of them
    /// @param bits     of theirs
    /// @return false, and nothing is added, if they are not one whole group, or it is earlier than the last one of any
    bool AddWord(std::uint32_t first, unsigned count, long long time, std::uint64_t changed, std::uint64_t bits);

    /// Ends the last stretch. Nothing may be added behind it.
    void Finish();

    std::uint64_t EventsOf(std::uint32_t track) const { return m_tracks[track].events; }
    /// Time of the last event of all, 0 if there is none.
    long long LastTime() const { return m_lastTime; }
    /// What the index tells of the stretches.
    std::uint32_t StretchCount() const { return m_stretchCount; }
    const std::string &Entries() const { return m_entries; }

private:
    struct STrack {
        long long last;
        std::uint64_t events;
        std::uint32_t group;
        std::uint32_t bit;
    };
    struct SGroup {
        long long last;
        std::uint32_t firstTrack;
        SGroupForm form;
        std::uint32_t events = 0;  // in the stretch
        std::uint32_t next = 0;    // place of the next one while they are sorted
    };
    struct SEvent {
        std::uint32_t group;
        std::uint32_t time;     // number of the time; the highest bit is set in a word
        std::uint64_t changed;  // of a word; else the bit of the scalar
        std::uint64_t value;    // the bits of a word, else raw
    };

    void Log(std::uint32_t group, long long time, bool isWord, std::uint64_t changed, std::uint64_t value);
    void NumberTime(long long time);
    void Dissolve(std::uint32_t group);
    void EndStretch();
    void SortTimes();
    std::vector<std::uint32_t> SortByGroup();
    void Encode(const SGroup &group, const std::vector<std::uint32_t> &order, std::string &bytes) const;
    void EncodeAtOnce(CGroupEncoder &encoder, const SGroup &group, const std::uint32_t *begin,
                      const std::uint32_t *end) const;
    SPackEntry WriteBlock(const std::string &bytes);

    std::function<std::uint64_t(std::string_view)> m_write;
    std::vector<STrack> m_tracks;
    std::vector<SGroup> m_groups;
    long long m_lastTime = 0;

    // The stretch.
    std::vector<SEvent> m_events;
    std::vector<long long> m_times;
    bool m_areTimesRising = true;
    std::vector<std::uint32_t> m_touched;  // groups with events

    std::uint32_t m_stretchCount = 0;
    std::string m_entries;
};

}  // namespace Morvel
