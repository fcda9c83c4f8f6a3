// Files that go on for longer than a stimulus can compute with.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/files/wavefile.h"
#include "tools/play/recorder.h"
#include "waveform/files/waveformfile.h"

namespace tesk {

/// A stimulus on a file computes in femtoseconds, of which 64 bits hold 9223 seconds. A formula that replays the whole of a
/// signal in a longer file is played out of the file instead.
class CLongReplay {
public:
    /// @return null if the formula does not replay a signal, or the file is not too long for its stimulus
    static std::unique_ptr<CLongReplay> Open(const std::string &formula, long long resolution);

    /// Whether the formula replays whole signals as they stand. Else its stimulus has to play, up to `Limit`.
    bool IsWhole() const { return m_isWhole; }

    /// The last tick for which a stimulus on this file has an answer that can be trusted.
    long long Limit() const;

    /// The changes of what one such formula replays. @return nothing if the file has no signal of that name
    std::optional<std::vector<SChange>> Changes(const std::string &formula, const SWalkTimes &times);

    /// Tells on standard error where the file was left, if 64 bits of ticks do not reach its end.
    void TellLoss() const;

private:
    CLongReplay(const std::string &path, long long resolution);

    std::optional<long long> TicksOf(long long fileTicks, long long begin) const;

    std::string m_path;
    long long m_resolution;
    bool m_isWhole = false;
    bool m_isOverflown = false;  // a change lies behind the last tick that 64 bits hold
    CFormulaFile m_opened;
    IWaveformFile *m_file;  // null if it cannot be read
};

}  // namespace tesk
