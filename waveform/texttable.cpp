#include "waveform/texttable.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "core/stimulus.h"
#include "platform/log.h"
#include "settings/wrap.h"
#include "waveform/samplesteps.h"
#include "waveform/samplevalue.h"

namespace {

// A directory can be opened on some systems, but it holds no table.
std::FILE *OpenFile(const char *name)
{
    std::error_code ignored;
    return std::filesystem::is_directory(name, ignored) ? nullptr : std::fopen(name, "rb");
}

}  // namespace

CFilePtr OpenTextTable(SimpleString::CStr &name)
{
    std::FILE *file = OpenFile(name);
    if (file == nullptr) {
        name += ".txt";
        file = OpenFile(name);
    }
    return CFilePtr(file);
}

CTextTable::CTextTable(std::FILE *file, CSampleColumn &column, const char *signal, int width, int radix)
    : m_table(file), m_column(column), m_signal(signal), m_width(width), m_radix(radix),
      m_isRelative((column.m_args.m_flags & CFileFormulaArgs::FLAG_REL) != 0), m_time(column.m_startTime)
{}

CTextTable::~CTextTable()
{
    FreeSample(m_column, m_value);
}

inline void CTextTable::ReadTime()
{
    const double units = static_cast<double>(m_table.TakeNumber());
    const long long ticks = tesk::TruncateToInt64(units * m_column.m_interval / static_cast<double>(g_simRes));
    m_time = m_isRelative ? tesk::WrapAdd(m_time, ticks) : ticks;
}

// Nothing is owned before: a value goes into the column before the next one is read, or the line is too short.
inline void CTextTable::ReadValue()
{
    ConvertSample(m_value, m_table.TakeToken(), m_column, m_width, m_radix);
}

inline void CTextTable::Append(long long time)
{
    std::vector<SampleEvent> &events = m_column.m_events;
    if (events.size() == events.capacity())
        events.reserve(std::max(events.size() * 2, m_table.EstimateTotal(events.size())));
    m_value.m_time = time;
    events.push_back(std::exchange(m_value, SampleEvent()));
}

// The time of an event of a table without times.
long long CTextTable::StepTime(std::size_t event) const
{
    return tesk::TruncateToInt64(static_cast<double>(event) * m_column.m_interval / static_cast<double>(g_simRes) +
                                 static_cast<double>(m_column.m_startTime));
}

// An event is complete with the right one of its two cells.
inline void CTextTable::TakeCell(std::size_t place)
{
    if (place == m_timeColumn)
        ReadTime();
    else if (place == m_valueColumn)
        ReadValue();
    else
        return m_table.SkipToken();
    if (place == m_lastColumn)
        Append(m_timeColumn != 0 ? m_time : StepTime(m_column.m_events.size()));
}

bool CTextTable::ReadColumns()
{
    ReadHeader();
    if (!CheckFound(m_valueColumn != 0, m_timeColumn != 0))
        return false;
    long long row = 1;
    std::size_t place = 0;
    for (;;) {
        switch (m_table.Find()) {
        case CTableReader::EPiece::Token: TakeCell(++place); break;
        case CTableReader::EPiece::LineEnd:
            ++row;
            if (!CheckColumnCount(std::exchange(place, 0), row))
                return false;
            break;
        case CTableReader::EPiece::FileEnd: return true;  // deliberate: a last line without an end may be short
        }
    }
}

bool CTextTable::ReadRows()
{
    for (;;) {
        switch (m_table.Find()) {
        case CTableReader::EPiece::Token: TakeRow(); break;
        case CTableReader::EPiece::LineEnd: break;
        case CTableReader::EPiece::FileEnd: return EndRows();
        }
    }
}

void CTextTable::ReadHeader()
{
    while (m_table.Find() == CTableReader::EPiece::Token) {
        ++m_columnCount;
        switch (KindOf(m_table.TakeToken())) {
        case EName::Values: m_valueColumn = m_columnCount; break;
        case EName::Times: m_timeColumn = m_columnCount; break;
        case EName::Other: break;
        }
    }
    m_lastColumn = std::max(m_timeColumn, m_valueColumn);
}

CTextTable::EName CTextTable::KindOf(std::string_view name) const
{
    if (name == m_signal)
        return EName::Values;
    const bool isTime = HasTimes() && name == static_cast<const char *>(m_column.m_args.m_timeSource);
    return isTime ? EName::Times : EName::Other;
}

// A line from its name on. The end of a table ends the last line, too, and is found again.
void CTextTable::TakeRow()
{
    const EName name = KindOf(m_table.TakeToken());
    if (name == EName::Other)
        return m_table.SkipLine();
    while (m_table.Find() == CTableReader::EPiece::Token)
        name == EName::Values ? TakeRowValue() : TakeRowTime();
}

void CTextTable::TakeRowValue()
{
    ReadValue();
    if (++m_valueCount > m_timeCount)
        return Append(0);
    SampleEvent &event = m_column.m_events[m_valueCount - 1];
    m_value.m_time = event.m_time;
    event = std::exchange(m_value, SampleEvent());
}

void CTextTable::TakeRowTime()
{
    ReadTime();
    if (++m_timeCount > m_valueCount)
        return Append(m_time);
    m_column.m_events[m_timeCount - 1].m_time = m_time;
}

bool CTextTable::EndRows()
{
    if (!CheckFound(m_valueCount != 0, m_timeCount != 0))
        return false;
    std::vector<SampleEvent> &events = m_column.m_events;
    if (m_timeCount == 0) {
        for (std::size_t i = 0; i < events.size(); ++i)
            events[i].m_time = StepTime(i);
    } else if (m_timeCount != m_valueCount) {
        LogSamples(m_column, 2, "The number of time points differs from the number of signal `%s' values in file `%s'.",
                   m_signal);
        const std::size_t count = std::min(m_timeCount, m_valueCount);
        EraseSamples(m_column, count, events.size() - count);
    }
    return true;
}

bool CTextTable::CheckFound(bool hasValues, bool hasTimes) const
{
    if (!hasValues) {
        LogSamples(m_column, 1, "Signal `%s' not found in file `%s'.", m_signal);
        return false;
    }
    if (HasTimes() && !hasTimes) {
        LogSamples(m_column, 1, "Time points `%s' not found in file `%s'.", m_column.m_args.m_timeSource);
        return false;
    }
    return true;
}

// Deliberate: `row` counts line ends, so that CR and LF together are two.
bool CTextTable::CheckColumnCount(std::size_t count, long long row) const
{
    if (count == 0 || count == m_columnCount)
        return true;
    SimpleString::CStr text;
    text.Format("Improper columns number in row %d of file `%s'.", static_cast<int>(row),
                static_cast<const char *>(m_column.m_args.m_file));
    Q71log_PrintFormattedString(1, "KERNEL", "", text);
    return false;
}
