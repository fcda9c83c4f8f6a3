// The format of block characters for a terminal.
#include "tools/writers/writers.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/output.h"
#include "tools/writers/curve.h"
#include "tools/writers/picture.h"

namespace {

using tesk::CurveOf;
using tesk::SCurve;
using tesk::SCurveColumn;

constexpr int High = 0;
constexpr int Middle = 1;
constexpr int Low = 2;
constexpr int LevelRows = 3;
constexpr int CurveRows = 7;
constexpr double MarkDistance = 12;
constexpr std::size_t ScaleWidth = 10;  // of a number beside a curve

// What stands for a cell where the terminal has no line characters.
constexpr std::pair<std::string_view, char> AsciiCells[] = {{"─", '-'}, {"│", '|'}, {"┘", '+'}, {"┐", '+'}, {"┌", '+'},
                                                            {"└", '+'}, {"╳", 'X'}, {"▒", '#'}, {"┴", '+'}, {"▲", '^'}};

std::string AsciiCell(const std::string &cell)
{
    const auto found = std::ranges::find(AsciiCells, cell, &std::pair<std::string_view, char>::first);
    return found != std::end(AsciiCells) ? std::string(1, found->second) : cell;
}

// Lines of cells, each cell one character in UTF-8.
class CCells {
public:
    CCells(int rows, std::size_t columns, bool isAscii)
        : m_isAscii(isAscii), m_cells(static_cast<std::size_t>(rows), std::vector<std::string>(columns, " "))
    {}

    int Rows() const { return static_cast<int>(m_cells.size()); }

    std::size_t Columns() const { return m_cells[0].size(); }

    void Set(int row, std::size_t column, const std::string &cell)
    {
        if (column < Columns())
            m_cells[static_cast<std::size_t>(row)][column] = m_isAscii ? AsciiCell(cell) : cell;
    }

    void Fill(int row, std::size_t begin, std::size_t end, const std::string &cell)
    {
        for (std::size_t column = begin; column < end; ++column)
            Set(row, column, cell);
    }

    std::string Line(int row) const
    {
        std::string line;
        for (const std::string &cell : m_cells[static_cast<std::size_t>(row)])
            line += cell;
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    }

private:
    bool m_isAscii;
    std::vector<std::vector<std::string>> m_cells;
};

int LevelRow(ELevel level)
{
    switch (level) {
    case ELevel::High: return High;
    case ELevel::Middle: return Middle;
    case ELevel::Low: return Low;
    default: return -1;
    }
}

void DrawEdge(CCells &cells, std::size_t column, int from, int to)
{
    if (from == to)
        return;
    for (int row = std::min(from, to) + 1; row < std::max(from, to); ++row)
        cells.Set(row, column, "│");
    const bool rises = to < from;
    cells.Set(from, column, rises ? "┘" : "┐");
    cells.Set(to, column, rises ? "┌" : "└");
}

std::string LetterCell(char c)
{
    return c >= ' ' && c < 0x7F ? std::string(1, c) : "?";
}

void DrawBand(CCells &cells, std::size_t begin, std::size_t end, const SStretch &stretch)
{
    cells.Fill(High, begin, end, "─");
    cells.Fill(Low, begin, end, "─");
    cells.Fill(Middle, begin, end, stretch.level == ELevel::Unknown ? "╳" : " ");
    cells.Set(Middle, begin, "╳");
    if (stretch.level == ELevel::Unknown || begin + stretch.text.size() + 1 > end)
        return;
    const std::size_t first = begin + (end - begin - stretch.text.size() + 1) / 2;
    for (std::size_t i = 0; i < stretch.text.size(); ++i)
        cells.Set(Middle, first + i, LetterCell(stretch.text[i]));
}

void DrawStretch(CCells &cells, const SStretch &stretch, int previousRow)
{
    const auto begin = static_cast<std::size_t>(std::lround(stretch.begin));
    const auto end = static_cast<std::size_t>(std::lround(stretch.end));
    const int row = LevelRow(stretch.level);
    if (row >= 0) {
        cells.Fill(row, begin, end, "─");
        if (previousRow >= 0)
            DrawEdge(cells, begin, previousRow, row);
    } else if (stretch.level == ELevel::Busy) {
        for (const int each : {High, Middle, Low})
            cells.Fill(each, begin, end, "▒");
    } else if (stretch.level != ELevel::None) {
        DrawBand(cells, begin, end, stretch);
    }
}

// A curve steps from row to row; numbers that follow too closely for a column fill it from the lowest to the highest.
void DrawCurve(CCells &cells, const SCurve &curve)
{
    const int lowest = cells.Rows() - 1;
    const auto row = [&](double number) { return static_cast<int>(std::lround(lowest * (1 - curve.Height(number)))); };
    int previous = -1;
    for (std::size_t column = 0; column < curve.columns.size(); ++column) {
        const SCurveColumn &shown = curve.columns[column];
        if (!shown.isKnown) {
            if (!shown.isUndriven)
                cells.Set(lowest / 2, column, "╳");
            previous = -1;
            continue;
        }
        const int top = row(shown.high);
        const int bottom = row(shown.low);
        const int last = row(shown.last);
        if (bottom - top > 1 || (previous < 0 && top != bottom)) {
            for (int each = top; each <= bottom; ++each)
                cells.Set(each, column, "│");
        } else if (previous >= 0 && previous != last) {
            DrawEdge(cells, column, previous, last);
        } else {
            cells.Set(last, column, "─");
        }
        previous = last;
    }
}

void DrawLevels(CCells &cells, const std::vector<SStretch> &stretches)
{
    int previousRow = -1;
    for (const SStretch &stretch : stretches) {
        DrawStretch(cells, stretch, previousRow);
        previousRow = LevelRow(stretch.level);
    }
}

// The axis: a line with a tick at each mark, and the labels below, each beginning under its tick.
void DrawAxis(std::ostream &out, const CTimeScale &scale, const SWaveform &waveform, std::size_t indent,
              std::size_t columns, bool isAscii)
{
    std::string labels;
    std::vector<std::string> line(columns, "─");
    for (const SAxisMark &mark : scale.Marks(MarkDistance)) {
        const auto column = static_cast<std::size_t>(std::lround(mark.position));
        if (column >= columns)
            continue;
        line[column] = "┴";
        labels.resize(std::max(labels.size(), column), ' ');
        labels += mark.label;
    }
    if (waveform.mark) {
        const double position = std::clamp(scale.Position(*waveform.mark), 0.0, static_cast<double>(columns - 1));
        line[static_cast<std::size_t>(std::lround(position))] = "▲";
    }
    out << std::string(indent, ' ');
    for (const std::string &cell : line)
        out << (isAscii ? AsciiCell(cell) : cell);
    out << '\n' << std::string(indent, ' ') << labels << '\n';
}

// The room for the labels, and for the scales of curves.
std::size_t LabelWidth(const std::vector<SPictureRow> &rows)
{
    std::size_t longest = 0;
    for (const SPictureRow &row : rows) {
        const bool isCurve = row.trace != nullptr && row.trace->isCurve;
        longest = std::max({longest, row.trace != nullptr ? row.label.size() : 0, isCurve ? ScaleWidth : 0});
    }
    return longest == 0 ? 0 : longest + 1;
}

// What stands in front of each line of cells.
using CLabels = std::map<int, std::string>;

void WriteCells(std::ostream &out, const CCells &cells, const CLabels &labels, std::size_t indent)
{
    for (int row = 0; row < cells.Rows(); ++row) {
        const auto label = labels.find(row);
        std::string line = label != labels.end() ? label->second : "";
        line.resize(indent, ' ');
        line += cells.Line(row);
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

std::string RightAligned(const std::string &text, std::size_t indent)
{
    return std::string(indent - 1 - std::min(text.size(), indent - 1), ' ') + text;
}

void WriteCurve(std::ostream &out, const SPictureRow &row, const CTimeScale &scale, std::size_t columns,
                std::size_t indent, bool isAscii)
{
    const SCurve curve = CurveOf(*row.trace, scale, columns);
    CCells cells(CurveRows, columns, isAscii);
    DrawCurve(cells, curve);
    const int low = curve.high > curve.low ? CurveRows - 1 : CurveRows / 2 + 1;
    WriteCells(out, cells,
               {{0, RightAligned(curve.HighText(), indent)},
                {CurveRows / 2, row.label},
                {low, RightAligned(curve.LowText(), indent)}},
               indent);
}

}  // namespace

void WriteWave(std::ostream &out, const SWaveform &waveform, int width)
{
    const std::vector<SPictureRow> rows = PictureRows(waveform);
    const std::size_t indent = LabelWidth(rows);
    const auto columns = static_cast<std::size_t>(std::max(width - static_cast<int>(indent), 20));
    const bool isAscii = !IsUtf8Locale();
    const CTimeScale scale(waveform, static_cast<double>(columns));
    for (const SPictureRow &row : rows) {
        if (row.trace == nullptr) {
            out << row.label << '\n';
        } else if (row.trace->isCurve) {
            WriteCurve(out, row, scale, columns, indent, isAscii);
        } else {
            CCells cells(LevelRows, columns, isAscii);
            DrawLevels(cells, Stretches(waveform, *row.trace, scale, 1.0));
            WriteCells(out, cells, {{Middle, row.label}}, indent);
        }
    }
    DrawAxis(out, scale, waveform, indent, columns, isAscii);
}
