// Keeps of the changes of a trace what a picture shows.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "platform/kestrin.h"
#include "tools/play/recorder.h"
#include "tools/view/recordedwaveform.h"
#include "tools/writers/waveform.h"

namespace tesk {

/// Changes that follow each other within less than two points are drawn as one busy stretch: of these only so many are kept
/// that the picture stays the same. Of the changes of a curve that fall on one point the first, the last, the highest and the
/// lowest are.
class CThinner {
public:
    /// @param window    with 0 points all changes are kept; outlives this
    /// @param type      of the signal
    /// @param recorder  counts what is kept
    CThinner(const SRecordedWindow &window, const Kestrin::KTypeInfo &type, CChangeRecorder &recorder);

    /// By rising time. Of changes at one time the last counts.
    void Add(SChange change);
    /// All that is kept. Once.
    std::vector<SChange> Finish();

private:
    long long PointOf(long long ticks) const;
    bool IsNarrow(long long begin, long long end) const;
    void AddToCurve(SChange change);
    void AddToStretches(SChange change);
    std::optional<double> Number(const SChange &change) const;
    void Flush();
    void Keep(SChange change);

    const SRecordedWindow &m_window;
    CChangeRecorder &m_recorder;
    bool m_isCurve;
    bool m_isOfBits;
    bool m_isSigned;
    std::vector<SChange> m_kept;
    long long m_point = -1;         // the one that is gathered
    std::optional<SChange> m_last;  // of those on the point, behind the first
    std::optional<std::pair<double, SChange>> m_lowest;
    std::optional<std::pair<double, SChange>> m_highest;
};

}  // namespace tesk
