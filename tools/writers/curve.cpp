#include "tools/writers/curve.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/writers/valuetext.h"

namespace tesk {

namespace {

void Include(SCurveColumn &column, const std::optional<std::string> &value)
{
    const std::optional<double> number = value ? NumberOf(*value) : std::nullopt;
    if (!number) {
        column.isUndriven = !column.isKnown && !value;
        return;
    }
    column.low = column.isKnown ? std::min(column.low, *number) : *number;
    column.high = column.isKnown ? std::max(column.high, *number) : *number;
    column.last = *number;
    column.isKnown = true;
    column.isUndriven = false;
}

std::string ShortNumber(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", number);
    return text;
}

}  // namespace

double SCurve::Height(double number) const
{
    // Halves: the distance of the largest numbers is beyond a double.
    const double span = high / 2 - low / 2;
    return span > 0 ? (number / 2 - low / 2) / span : 0.5;
}

std::string SCurve::LowText() const
{
    return isKnown ? ShortNumber(low) : "";
}

std::string SCurve::HighText() const
{
    return isKnown && high > low ? ShortNumber(high) : "";
}

SCurve CurveOf(const STrace &trace, const CTimeScale &scale, std::size_t columns)
{
    SCurve curve;
    curve.columns.resize(columns);
    const auto most = static_cast<double>(columns);
    std::size_t done = 0;  // columns that are complete
    std::optional<std::string> value;
    const auto fill = [&](std::size_t end) {
        for (; done < end; ++done)
            Include(curve.columns[done], value);
    };
    for (const SChange &change : trace.changes) {
        const double position = std::clamp(std::round(scale.Position(change.ticks)), 0.0, most);
        fill(static_cast<std::size_t>(position));
        value = change.value;
        if (done < columns)
            Include(curve.columns[done], value);
    }
    fill(columns);
    for (const SCurveColumn &column : curve.columns) {
        if (!column.isKnown)
            continue;
        curve.low = curve.isKnown ? std::min(curve.low, column.low) : column.low;
        curve.high = curve.isKnown ? std::max(curve.high, column.high) : column.high;
        curve.isKnown = true;
    }
    return curve;
}

}  // namespace tesk
