// A walk over the changes of many signals of a file together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <vector>

#include "waveform/files/waveformfile.h"

namespace tesk {

/// A walk as `IWaveformFile::WalkChanges`, merged where the reader of the file does not have one.
std::unique_ptr<IChangeWalk> WalkInTime(IWaveformFile &file, const std::vector<SFileSignal> &signals);

/// Counts as `IWaveformFile::CountChanges`, in any file.
std::vector<SChangeCount> CountChanges(IWaveformFile &file, const std::vector<SFileSignal> &signals,
                                       const FProgress &progress);

/// Goes from change to change by rising time, and at one time in the order in which the signals were given.
class CFileWalk {
public:
    /// @param file     must outlive the walk
    /// @param signals  of the file
    CFileWalk(IWaveformFile &file, const std::vector<SFileSignal> &signals) : m_walk(WalkInTime(file, signals)) {}

    /// Goes to the next change of a signal. @return false at the end
    bool Next()
    {
        if (++m_place < m_changed.size())
            return true;
        m_place = 0;
        m_changed = {};
        if (!m_walk->Next(m_time, std::numeric_limits<long long>::max()))
            return false;
        m_changed = m_walk->GetChanged();
        return true;
    }
    /// The signal that changes, by its place among those given.
    std::size_t GetSignal() const { return m_changed[m_place]; }
    /// File ticks.
    long long GetTime() const { return m_time; }
    /// The raw value of each of its elements now; none of one that has no event yet.
    const CElementValues &GetValues() const { return m_walk->GetValues(GetSignal()); }
    /// The same of a signal whose elements are of an enumeration of few literals, as positions in it,
    /// `IChangeWalk::NoPosition` for none; empty for others. Quicker; lives until the walk goes on.
    std::span<const std::uint8_t> GetPositions() const { return m_walk->GetPositions(GetSignal()); }

private:
    std::unique_ptr<IChangeWalk> m_walk;
    std::span<const std::uint32_t> m_changed;
    std::size_t m_place = 0;
    long long m_time = -1;
};

}  // namespace tesk
