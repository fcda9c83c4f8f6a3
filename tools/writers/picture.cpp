#include "tools/writers/picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "settings/timeunits.h"
#include "tools/timetext.h"

CTimeScale::CTimeScale(const SWaveform &waveform, double width)
    : m_resolution(waveform.resolution),
      m_begin(static_cast<double>(waveform.begin) * static_cast<double>(m_resolution)), m_width(width)
{
    const double end = static_cast<double>(waveform.end) * static_cast<double>(m_resolution);
    m_span = std::max(end - m_begin, static_cast<double>(m_resolution));
}

double CTimeScale::Position(long long ticks) const
{
    return (static_cast<double>(ticks) * static_cast<double>(m_resolution) - m_begin) / m_span * m_width;
}

std::vector<SAxisMark> CTimeScale::Marks(double distance) const
{
    // Round steps are 1, 2 and 5 times a power of ten.
    const double least = std::max(m_span * distance / m_width, 1.0);
    double step = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {2.0, 2.5, 2.0}) {
        if (step < least)
            step *= factor;
    }
    const Int128 stepFs = static_cast<Int128>(std::llround(std::min(step, 9e18)));
    const int unit = CoarsestWholeUnit(stepFs);
    const std::string unitName = tesk::UnitNameFromID(static_cast<unsigned>(unit));

    std::vector<SAxisMark> marks;
    Int128 time = (static_cast<Int128>(std::ceil(m_begin)) + stepFs - 1) / stepFs * stepFs;
    for (; static_cast<double>(time) <= m_begin + m_span * (1 + 1e-9); time += stepFs) {
        const auto count = static_cast<long long>(time / UnitLength(unit));
        marks.push_back({(static_cast<double>(time) - m_begin) / m_span * m_width, std::to_string(count) + unitName});
    }
    return marks;
}

namespace {

// The look of a value wider than a bit: a band, which stands out if nothing of the value is known.
ELevel BandOf(const std::string &value)
{
    return value.find_first_not_of("XxUW-") == std::string::npos ? ELevel::Unknown : ELevel::Text;
}

}  // namespace

ELevel LevelOf(const std::string &value)
{
    if (value.empty())
        return ELevel::None;
    if (value.size() > 1)
        return BandOf(value);
    switch (value.front()) {
    case '0':
    case 'L': return ELevel::Low;
    case '1':
    case 'H': return ELevel::High;
    case 'Z':
    case 'z': return ELevel::Middle;
    case 'X':
    case 'x':
    case 'U':
    case 'W':
    case '-': return ELevel::Unknown;
    default: return ELevel::Text;
    }
}

namespace {

constexpr const char *Indent = "  ";

// Where the last part of a path begins: behind the last point outside an extended identifier.
std::size_t LastPart(const std::string &path)
{
    std::size_t begin = 0;
    bool isExtended = false;
    for (std::size_t i = 0; i < path.size(); ++i) {
        isExtended = isExtended != (path[i] == '\\');
        if (path[i] == '.' && !isExtended)
            begin = i + 1;
    }
    return begin;
}

}  // namespace

std::vector<SPictureRow> PictureRows(const SWaveform &waveform)
{
    const bool hasHeadings = std::ranges::count(waveform.traces, false, &STrace::IsElement) > 1;
    std::vector<SPictureRow> rows;
    std::string scope;
    std::string indent;
    for (const STrace &trace : waveform.traces) {
        if (trace.IsElement()) {
            rows.push_back({trace.signal.empty() ? trace.name : indent + Indent + trace.name, &trace});
            continue;
        }
        const std::size_t part = hasHeadings ? LastPart(trace.signal) : 0;
        const std::string own = part > 0 ? trace.signal.substr(0, part - 1) : "";
        if (own != scope && !own.empty())
            rows.push_back({own, nullptr});
        scope = own;
        indent = own.empty() ? "" : Indent;
        rows.push_back({indent + trace.signal.substr(part), &trace});
    }
    return rows;
}

std::vector<SStretch> Stretches(const SWaveform &waveform, const STrace &trace, const CTimeScale &scale,
                                double narrowest)
{
    // A value wider than a bit anywhere makes the whole signal a band.
    const bool isWide = trace.isBus || std::ranges::any_of(trace.changes, [](const SChange &change) {
                            return change.value && change.value->size() > 1;
                        });
    std::vector<SStretch> stretches = {{0.0, 0.0, ELevel::None, {}, waveform.begin}};
    const auto close = [&](double end) {
        SStretch &last = stretches.back();
        last.end = end;
        if (last.end <= last.begin) {
            stretches.pop_back();
            return;
        }
        if (last.end - last.begin >= narrowest)
            return;
        last.level = ELevel::Busy;
        if (stretches.size() > 1 && stretches[stretches.size() - 2].level == ELevel::Busy) {
            stretches.pop_back();
            stretches.back().end = end;
        }
    };
    for (const SChange &change : trace.changes) {
        const double position = std::max(scale.Position(change.ticks), 0.0);
        close(position);
        const std::string value = change.value.value_or("");
        const ELevel level = isWide && !value.empty() ? BandOf(value) : LevelOf(value);
        stretches.push_back({position, position, level, value, change.ticks});
    }
    close(scale.Position(waveform.end));
    return stretches;
}

long long PictureEnd(const SWaveform &waveform)
{
    long long last = waveform.begin;
    std::size_t count = 1;
    bool isDriven = false;
    for (const STrace &trace : waveform.traces) {
        if (trace.changes.empty())
            continue;
        count = std::max(count, trace.changes.size());
        if (trace.changes.back().ticks >= last) {
            last = trace.changes.back().ticks;
            isDriven = trace.changes.back().value.has_value();
        }
    }
    // The average distance of changes shows the last value; without one a sliver shows that it has ended.
    const double span = static_cast<double>(last) - static_cast<double>(waveform.begin);
    const double margin = std::max(isDriven ? span / static_cast<double>(count) : span / 20, 1.0);
    const double end = static_cast<double>(last) + std::floor(margin);
    return end < 9.2e18 ? static_cast<long long>(end) : std::numeric_limits<long long>::max();
}
