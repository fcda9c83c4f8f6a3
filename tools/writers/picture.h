// What the pictures of a waveform have in common: levels, stretches of time and the time axis.
#pragma once

#include <string>
#include <vector>

#include "tools/writers/waveform.h"

enum class ELevel {
    None,     // not driven
    Low,      // 0 or weak 0
    High,     // 1 or weak 1
    Middle,   // Z
    Unknown,  // X and its like
    Text,     // any other value, and all that are wider than a bit
    Busy      // more changes than can be drawn
};

/// A stretch of time with one look. Positions are in units of the drawing, pixels or columns, from its left end.
struct SStretch {
    double begin;
    double end;
    ELevel level;
    std::string text;  ///< the value
    long long ticks;   ///< when it began
};

struct SAxisMark {
    double position;
    std::string label;
};

/// Places times of a waveform on a drawing of a given width.
class CTimeScale {
public:
    CTimeScale(const SWaveform &waveform, double width);

    double Position(long long ticks) const;

    /// Marks at round times, at least `distance` apart.
    std::vector<SAxisMark> Marks(double distance) const;

private:
    long long m_resolution;
    double m_begin;  // femtoseconds
    double m_span;   // femtoseconds, above 0
    double m_width;
};

ELevel LevelOf(const std::string &value);

/// A row of a picture: a trace, or above the traces of a scope its name.
struct SPictureRow {
    std::string label;
    const STrace *trace;  ///< null of a heading
};

/// The rows of all traces. Where there are several signals, those of a scope stand indented below its name; elements stand
/// below what they are elements of.
std::vector<SPictureRow> PictureRows(const SWaveform &waveform);

/// The stretches of a trace from left to right without gaps. Stretches narrower than `narrowest` are joined to busy
/// ones, so there are at most 2 * width / narrowest + 1 of them.
std::vector<SStretch> Stretches(const SWaveform &waveform, const STrace &trace, const CTimeScale &scale,
                                double narrowest);

/// Where a picture that no end was given for ends: far enough behind the last change to show it.
long long PictureEnd(const SWaveform &waveform);
