// The format of block characters for a terminal.
#include "tools/writers/writers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/output.h"
#include "tools/writers/picture.h"

namespace {

constexpr int Rows = 3;
constexpr int High = 0;
constexpr int Middle = 1;
constexpr int Low = 2;
constexpr double MarkDistance = 12;

// What stands for a cell where the terminal has no line characters.
constexpr std::pair<std::string_view, char> AsciiCells[] = {{"─", '-'}, {"│", '|'}, {"┘", '+'}, {"┐", '+'}, {"┌", '+'},
                                                            {"└", '+'}, {"╳", 'X'}, {"▒", '#'}, {"┴", '+'}};

std::string AsciiCell(const std::string &cell)
{
    const auto found = std::ranges::find(AsciiCells, cell, &std::pair<std::string_view, char>::first);
    return found != std::end(AsciiCells) ? std::string(1, found->second) : cell;
}

// Three lines of cells, each cell one character in UTF-8.
class CCells {
public:
    CCells(std::size_t columns, bool isAscii) : m_isAscii(isAscii)
    {
        for (auto &row : m_cells)
            row.assign(columns, " ");
    }

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
    std::array<std::vector<std::string>, Rows> m_cells;
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

std::string Printable(char c)
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
        cells.Set(Middle, first + i, Printable(stretch.text[i]));
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

// The axis: a line with a tick at each mark, and the labels below, each beginning under its tick.
void DrawAxis(std::ostream &out, const CTimeScale &scale, std::size_t indent, std::size_t columns, bool isAscii)
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
    out << std::string(indent, ' ');
    for (const std::string &cell : line)
        out << (isAscii ? AsciiCell(cell) : cell);
    out << '\n' << std::string(indent, ' ') << labels << '\n';
}

std::size_t NameWidth(const SWaveform &waveform)
{
    std::size_t longest = 0;
    for (const STrace &trace : waveform.traces)
        longest = std::max(longest, trace.FullName().size());
    return longest == 0 ? 0 : longest + 1;
}

}  // namespace

void WriteWave(std::ostream &out, const SWaveform &waveform, int width)
{
    const std::size_t indent = NameWidth(waveform);
    const auto columns = static_cast<std::size_t>(std::max(width - static_cast<int>(indent), 20));
    const bool isAscii = !IsUtf8Locale();
    const CTimeScale scale(waveform, static_cast<double>(columns));
    for (const STrace &trace : waveform.traces) {
        CCells cells(columns, isAscii);
        int previousRow = -1;
        for (const SStretch &stretch : Stretches(waveform, trace, scale, 1.0)) {
            DrawStretch(cells, stretch, previousRow);
            previousRow = LevelRow(stretch.level);
        }
        for (const int row : {High, Middle, Low}) {
            std::string line = row == Middle ? trace.FullName() : "";
            line.resize(indent, ' ');
            line += cells.Line(row);
            line.erase(line.find_last_not_of(' ') + 1);
            out << line << '\n';
        }
    }
    DrawAxis(out, scale, indent, columns, isAscii);
}
