// Curves: signals of numbers in a picture.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/writers/picture.h"
#include "tools/writers/waveform.h"

namespace tesk {

/// What a column of a picture shows of a curve.
struct SCurveColumn {
    bool isKnown = false;     ///< else there is no number
    bool isUndriven = false;  ///< there is no value at all
    double low = 0;           ///< of the numbers in it
    double high = 0;
    double last = 0;
};

/// A curve that steps from number to number.
struct SCurve {
    std::vector<SCurveColumn> columns;
    bool isKnown = false;  ///< else no column has a number
    double low = 0;        ///< of all columns
    double high = 0;

    /// Where a number stands between the lowest, 0, and the highest, 1; 0.5 where they are the same.
    double Height(double number) const;
    /// The lowest and the highest number, for the scale beside the curve.
    std::string LowText() const;
    std::string HighText() const;
};

/// @param columns  of the picture, whose width `scale` has
SCurve CurveOf(const STrace &trace, const CTimeScale &scale, std::size_t columns);

}  // namespace tesk
