// The format SVG.
#include "tools/writers/writers.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "tools/timetext.h"
#include "tools/writers/curve.h"
#include "tools/writers/picture.h"

namespace {

using tesk::SCurve;
using tesk::SCurveColumn;

constexpr double RowHeight = 46;
constexpr double HeadingHeight = 24;
constexpr double CurveHeight = 96;  // of a row
constexpr double LevelHeight = 26;  // from low to high
constexpr double Slope = 4;         // of the crossing at the ends of a band
constexpr double CharacterWidth = 7.3;
constexpr double Margin = 14;
constexpr double AxisHeight = 30;
constexpr double MarkDistance = 74;
constexpr std::size_t LongestTip = 200;
constexpr std::size_t ScaleWidth = 8;  // of a number beside a curve

constexpr char Style[] = R"(<style>
text { font: 12px ui-monospace, "DejaVu Sans Mono", Menlo, Consolas, monospace; fill: #24292f }
.paper { fill: #ffffff }
.grid { stroke: #e3e7ec; fill: none }
.axis { fill: #5c6670 }
.wave { stroke: #15803d; stroke-width: 1.8; fill: none; stroke-linejoin: round }
.band { stroke: #1d4ed8; stroke-width: 1.5; fill: #eff4ff; stroke-linejoin: round }
.unknown { stroke: #c2410c; stroke-width: 1.5; fill: #ffedd5; stroke-linejoin: round }
.middle { stroke: #b45309; stroke-width: 1.8; fill: none }
.none { stroke: #b6bec8; stroke-width: 1; stroke-dasharray: 2 4; fill: none }
.busy { fill: #86b99b }
.value { text-anchor: middle }
.curve { stroke: #7c3aed; stroke-width: 1.8; fill: none; stroke-linejoin: round }
.gap { fill: #ffedd5; stroke: none }
.scale { font-size: 10px; fill: #5c6670; text-anchor: end }
.heading { fill: #5c6670; font-weight: bold }
.mark { stroke: #dc2626; stroke-width: 1.2; stroke-dasharray: 5 3; fill: none }
</style>
)";

std::string Number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

// XML text; bytes that it cannot hold are shown as '?'.
std::string Escaped(const std::string &text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '&': escaped += "&amp;"; break;
        case '"': escaped += "&quot;"; break;
        default: escaped += c >= ' ' && c < 0x7F ? c : '?';
        }
    }
    return escaped;
}

// Draws one trace between two heights.
class CRow {
public:
    CRow(std::ostream &out, double left, double top)
        : m_out(out), m_left(left), m_high(top + (RowHeight - LevelHeight) / 2), m_low(m_high + LevelHeight),
          m_middle((m_high + m_low) / 2)
    {}

    void Draw(const std::vector<SStretch> &stretches, long long resolution)
    {
        for (const SStretch &stretch : stretches) {
            m_out << "<g><title>" << Escaped(stretch.text.empty() ? "no value" : stretch.text.substr(0, LongestTip))
                  << " from " << TickText(stretch.ticks, resolution) << "</title>";
            DrawOne(stretch);
            m_out << "</g>\n";
        }
    }

private:
    void DrawOne(const SStretch &stretch)
    {
        switch (stretch.level) {
        case ELevel::Low: DrawLine(stretch, "wave", m_low); break;
        case ELevel::High: DrawLine(stretch, "wave", m_high); break;
        case ELevel::Middle: DrawLine(stretch, "middle", m_middle); break;
        case ELevel::None: DrawLine(stretch, "none", m_middle); break;
        case ELevel::Unknown: DrawBand(stretch, "unknown"); break;
        case ELevel::Text: DrawBand(stretch, "band"); break;
        case ELevel::Busy: DrawBlock(stretch); break;
        }
    }

    // A level, with the edge from the level before it.
    void DrawLine(const SStretch &stretch, const char *style, double height)
    {
        m_out << "<path class=\"" << style << "\" d=\"M" << Number(m_left + stretch.begin) << ' ';
        if (m_previousHeight != 0 && stretch.level != ELevel::None)
            m_out << Number(m_previousHeight) << " V";
        m_out << Number(height) << " H" << Number(m_left + stretch.end) << "\"/>";
        m_previousHeight = stretch.level == ELevel::None ? 0 : height;
    }

    void DrawBand(const SStretch &stretch, const char *style)
    {
        const double begin = m_left + stretch.begin;
        const double end = m_left + stretch.end;
        const double slope = std::min(Slope, (end - begin) / 2);
        m_out << "<path class=\"" << style << "\" d=\"M" << Number(begin) << ' ' << Number(m_middle) << " L"
              << Number(begin + slope) << ' ' << Number(m_high) << " H" << Number(end - slope) << " L" << Number(end)
              << ' ' << Number(m_middle) << " L" << Number(end - slope) << ' ' << Number(m_low) << " H"
              << Number(begin + slope) << " Z\"/>";
        if (static_cast<double>(stretch.text.size()) * CharacterWidth + 2 * slope <= end - begin)
            m_out << "<text class=\"value\" x=\"" << Number((begin + end) / 2) << "\" y=\"" << Number(m_middle + 4)
                  << "\">" << Escaped(stretch.text) << "</text>";
        m_previousHeight = 0;
    }

    void DrawBlock(const SStretch &stretch)
    {
        m_out << "<rect class=\"busy\" x=\"" << Number(m_left + stretch.begin) << "\" y=\"" << Number(m_high)
              << "\" width=\"" << Number(std::max(stretch.end - stretch.begin, 0.5)) << "\" height=\""
              << Number(m_low - m_high) << "\"/>";
        m_previousHeight = 0;
    }

    std::ostream &m_out;
    double m_left;
    double m_high;
    double m_low;
    double m_middle;
    double m_previousHeight = 0;  // 0: no level before
};

// Draws one curve between two heights.
class CCurveRow {
public:
    CCurveRow(std::ostream &out, double left, double top)
        : m_out(out), m_left(left), m_high(top + Margin), m_low(top + CurveHeight - Margin)
    {}

    void Draw(const SCurve &curve)
    {
        DrawGaps(curve);
        m_out << "<g><title>" << (curve.isKnown ? curve.LowText() + " to " + ShownHigh(curve) : "no number")
              << "</title><path class=\"curve\" d=\"";
        bool isDown = false;  // the pen
        for (std::size_t column = 0; column < curve.columns.size(); ++column) {
            const SCurveColumn &shown = curve.columns[column];
            if (isDown && (!shown.isKnown || shown.low < shown.high || shown.last != m_number))
                m_out << " H" << Number(m_left + static_cast<double>(column));
            if (shown.isKnown)
                DrawColumn(curve, shown, column, isDown);
            isDown = shown.isKnown;
        }
        if (isDown)
            m_out << " H" << Number(m_left + static_cast<double>(curve.columns.size()));
        m_out << "\"/></g>\n";
        DrawScale(curve.HighText(), m_high);
        DrawScale(curve.LowText(), curve.high > curve.low ? m_low : (m_low + m_high) / 2);
    }

private:
    static std::string ShownHigh(const SCurve &curve)
    {
        return curve.high > curve.low ? curve.HighText() : curve.LowText();
    }

    double Y(const SCurve &curve, double number) const { return m_low - curve.Height(number) * (m_low - m_high); }

    void DrawColumn(const SCurve &curve, const SCurveColumn &shown, std::size_t column, bool isDown)
    {
        if (!isDown)
            m_out << " M" << Number(m_left + static_cast<double>(column)) << ' ' << Number(Y(curve, shown.low));
        if (shown.low < shown.high)
            m_out << " V" << Number(Y(curve, shown.low)) << " V" << Number(Y(curve, shown.high));
        if (!isDown || shown.low < shown.high || shown.last != m_number)
            m_out << " V" << Number(Y(curve, shown.last));
        m_number = shown.last;
    }

    // Where there is a value, but no number.
    void DrawGaps(const SCurve &curve)
    {
        const auto isGap = [&](std::size_t column) {
            return !curve.columns[column].isKnown && !curve.columns[column].isUndriven;
        };
        for (std::size_t column = 0; column < curve.columns.size();) {
            std::size_t end = column;
            while (end < curve.columns.size() && isGap(end))
                ++end;
            if (end > column)
                m_out << "<rect class=\"gap\" x=\"" << Number(m_left + static_cast<double>(column)) << "\" y=\""
                      << Number(m_high) << "\" width=\"" << static_cast<long long>(end - column) << "\" height=\""
                      << Number(m_low - m_high) << "\"/>\n";
            column = end + 1;
        }
    }

    void DrawScale(const std::string &text, double height)
    {
        if (!text.empty())
            m_out << "<text class=\"scale\" x=\"" << Number(m_left - 5) << "\" y=\"" << Number(height + 4) << "\">"
                  << text << "</text>\n";
    }

    std::ostream &m_out;
    double m_left;
    double m_high;
    double m_low;
    double m_number = 0;  // that the pen is at
};

double HeightOf(const SPictureRow &row)
{
    return row.trace == nullptr ? HeadingHeight : row.trace->isCurve ? CurveHeight : RowHeight;
}

// The room for the labels, and for the scales of curves.
double LabelWidth(const std::vector<SPictureRow> &rows)
{
    std::size_t longest = 0;
    for (const SPictureRow &row : rows) {
        const bool isCurve = row.trace != nullptr && row.trace->isCurve;
        longest = std::max({longest, row.trace != nullptr ? row.label.size() : 0, isCurve ? ScaleWidth : 0});
    }
    return longest == 0 ? 0 : static_cast<double>(longest) * CharacterWidth + Margin;
}

void DrawAxis(std::ostream &out, const CTimeScale &scale, double left, double bottom)
{
    for (const SAxisMark &mark : scale.Marks(MarkDistance)) {
        const std::string x = Number(left + mark.position);
        out << "<path class=\"grid\" d=\"M" << x << ' ' << Number(Margin / 2) << " V" << Number(bottom) << "\"/>"
            << "<text class=\"axis value\" x=\"" << x << "\" y=\"" << Number(bottom + 18) << "\">" << mark.label
            << "</text>\n";
    }
}

void DrawLabel(std::ostream &out, const SPictureRow &row, double top)
{
    if (row.label.empty())
        return;
    const std::size_t indent = row.label.find_first_not_of(' ');
    out << "<text" << (row.trace == nullptr ? " class=\"heading\"" : "") << " x=\""
        << Number(Margin + static_cast<double>(indent) * CharacterWidth) << "\" y=\""
        << Number(top + HeightOf(row) / 2 + 4) << "\">" << Escaped(row.label.substr(indent)) << "</text>\n";
}

}  // namespace

void WriteSvg(std::ostream &out, const SWaveform &waveform, int width)
{
    const std::vector<SPictureRow> rows = PictureRows(waveform);
    const double left = Margin + std::max(LabelWidth(rows), 10.0);
    const double right = 3 * Margin;
    double bottom = Margin / 2;
    for (const SPictureRow &row : rows)
        bottom += HeightOf(row);
    const double height = bottom + AxisHeight;
    const double drawing = std::max(width - left - right, 100.0);
    const CTimeScale scale(waveform, drawing);

    const std::string size = Number(left + drawing + right) + "\" height=\"" + Number(height);
    out << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << size << "\" role=\"img\">\n"
        << "<title>" << Escaped(waveform.formula.substr(0, LongestTip)) << "</title>\n"
        << Style << "<rect class=\"paper\" width=\"" << size << "\"/>\n";
    DrawAxis(out, scale, left, bottom);
    double top = Margin / 2;
    for (const SPictureRow &row : rows) {
        DrawLabel(out, row, top);
        if (row.trace != nullptr && row.trace->isCurve)
            CCurveRow(out, left, top).Draw(tesk::CurveOf(*row.trace, scale, static_cast<std::size_t>(drawing)));
        else if (row.trace != nullptr)
            CRow(out, left, top).Draw(Stretches(waveform, *row.trace, scale, 1.5), waveform.resolution);
        top += HeightOf(row);
    }
    if (waveform.mark)
        out << "<path class=\"mark\" d=\"M" << Number(left + std::clamp(scale.Position(*waveform.mark), 0.0, drawing))
            << ' ' << Number(Margin / 2) << " V" << Number(bottom) << "\"/>\n";
    out << "</svg>\n";
}
