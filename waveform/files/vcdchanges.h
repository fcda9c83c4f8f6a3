// The changes of a VCD file as they come: by time, or counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/changes/changedset.h"
#include "platform/changes/changewalk.h"
#include "platform/changes/presentvalues.h"
#include "waveform/files/vcdopening.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// The signals that are read together. Those that share their events are one track.
class CVcdTracks {
public:
    static constexpr std::uint32_t None = UINT32_MAX;

    struct STrack {
        long long first;  ///< handle of the first element
        long long count;  ///< of the elements
        bool isOfBits;    ///< else it is a real
    };
    /// A word and where it stands in a track.
    struct SWord {
        std::uint32_t track = None;
        unsigned count = 0;
        std::size_t right = 0;  ///< elements from the track's first to behind the word's last
    };

    /// @param signals  whole signals of the file
    CVcdTracks(CVcdOpening &file, const std::vector<SFileSignal> &signals);

    std::size_t Count() const { return m_tracks.size(); }
    const STrack &Track(std::size_t track) const { return m_tracks[track]; }
    std::uint32_t TrackOf(std::size_t signal) const { return m_trackOf[signal]; }
    /// The track of a handle, `None` if it is not read, such as one that was declared among the values.
    std::uint32_t Find(long long handle) const
    {
        const auto place = static_cast<std::size_t>(handle);
        return place < m_trackOfHandle.size() ? m_trackOfHandle[place] : None;
    }
    SWord Word(std::size_t word) const { return word < m_words.size() ? m_words[word] : SWord(); }

private:
    std::uint32_t Add(const STrack &track);

    std::vector<STrack> m_tracks;
    std::vector<std::uint32_t> m_trackOf;        // of each signal
    std::vector<std::uint32_t> m_trackOfHandle;  // of each handle
    std::vector<SWord> m_words;
};

/// Reads the values of a time when it goes there; what it keeps are those of now.
class CVcdWalk final : public IChangeWalk, private IVcdEvents {
public:
    /// @param file     can be read
    /// @param signals  whole signals of the file
    CVcdWalk(std::shared_ptr<CVcdOpening> file, const std::vector<SFileSignal> &signals);
    CVcdWalk(const CVcdWalk &) = delete;
    ~CVcdWalk() override { m_file->End(); }

    bool PeekTime(long long &time) override;
    bool Next(long long &time, long long until) override;
    std::span<const std::uint32_t> GetChanged() const override { return m_changed; }
    const CElementValues &GetValues(std::size_t signal) override { return m_values.Values(m_tracks.TrackOf(signal)); }
    std::span<const std::uint8_t> GetPositions(std::size_t signal) override
    {
        return m_values.Positions(m_tracks.TrackOf(signal));
    }

private:
    void Add(long long handle, const WaveEvent &event) override;
    void AddWord(std::size_t word, long long time, const WaveWord &before, const WaveWord &after) override;
    void Mark(std::uint32_t track);

    std::shared_ptr<CVcdOpening> m_file;
    CVcdTracks m_tracks;
    CPresentValues m_values;                   // by track
    std::vector<std::uint32_t> m_firstSignal;  // of each track
    std::vector<std::uint32_t> m_nextSignal;   // of the same track
    CChangedSet m_marked;
    std::vector<std::uint32_t> m_changed;
    bool m_isAtEnd = false;
};

/// Counts the changes of a file that can be read.
/// @param signals  whole signals of the file
std::vector<SChangeCount> CountVcdChanges(CVcdOpening &file, const std::vector<SFileSignal> &signals,
                                          const SStretch &stretch, const FProgress &progress);

}  // namespace tesk
