#include "waveform/table/texttable.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "core/stimulus.h"
#include "platform/input/openinput.h"
#include "platform/log.h"
#include "waveform/table/largepages.h"
#include "waveform/table/samplesteps.h"
#include "waveform/table/samplevalue.h"

namespace tesk {

namespace {

// A directory can be opened on some systems, but it holds no table, and a device may never end.
CFile OpenFile(const char *name)
{
    std::error_code ignored;
    const auto type = std::filesystem::status(name, ignored).type();
    const bool canHoldTable = type == std::filesystem::file_type::regular || type == std::filesystem::file_type::fifo;
    return canHoldTable ? OpenInput(name) : CFile();
}

}  // namespace

CFile OpenTextTable(SimpleString::CStr &name)
{
    CFile file = OpenFile(name);
    if (!file.IsOpen()) {
        name += ".txt";
        file = OpenFile(name);
    }
    return file;
}

CTextTable::CTextTable(const CFile &file, CSampleColumn &column, const char *signal, int width, int radix)
    : m_table(file), m_column(column), m_signal(signal), m_width(width), m_radix(radix),
      m_isRelative((column.m_args.m_flags & CFileFormulaArgs::FLAG_REL) != 0), m_time(column.m_startTime)
{}

inline void CTextTable::ReadTime()
{
    const double units = static_cast<double>(m_table.TakeNumber());
    const long long ticks = tesk::TruncateToInt64(units * m_column.m_interval / static_cast<double>(g_simRes));
    m_time = m_isRelative ? tesk::WrapAdd(m_time, ticks) : ticks;
}

inline void CTextTable::ReadValue(SampleEvent &event)
{
    ConvertSample(event, m_table.TakeToken(), m_column, m_width, m_radix);
}

void CTextTable::Grow()
{
    std::vector<SampleEvent> &events = m_column.m_events;
    events.reserve(std::max(events.size() * 2, m_table.EstimateTotal(events.size())));
    PreferLargePages(events.data(), events.capacity() * sizeof(SampleEvent));
}

inline SampleEvent &CTextTable::AddEvent(long long time)
{
    std::vector<SampleEvent> &events = m_column.m_events;
    if (events.size() == events.capacity())
        Grow();
    SampleEvent &event = events.emplace_back();
    event.m_time = time;
    return event;
}

// The time of an event of a table without times.
long long CTextTable::StepTime(std::size_t event) const
{
    return tesk::TruncateToInt64(static_cast<double>(event) * m_column.m_interval / static_cast<double>(g_simRes) +
                                 static_cast<double>(m_column.m_startTime));
}

// Where the time is right of the value, it comes to the event of that value.
inline void CTextTable::TakeCell(std::size_t place)
{
    if (place == m_valueColumn)
        return ReadValue(AddEvent(m_timeColumn != 0 ? m_time : StepTime(m_column.m_events.size())));
    if (place != m_timeColumn)
        return m_table.SkipToken();
    ReadTime();
    if (m_valueColumn < m_timeColumn)
        m_column.m_events.back().m_time = m_time;
}

bool CTextTable::ReadColumns()
{
    ReadHeader();
    if (!CheckRead() || !CheckFound(m_valueColumn != 0, m_timeColumn != 0))
        return false;
    long long row = 1;
    std::size_t place = 0;
    for (;;) {
        switch (m_table.Find()) {
        case CTableReader::EPiece::Token: TakeCell(++place); break;
        case CTableReader::EPiece::LineEnd:
            ++row;
            if (place != 0 && place != m_columnCount)
                return RefuseRow(row);
            place = 0;
            break;
        case CTableReader::EPiece::FileEnd: return EndColumns(place);
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

// Deliberate: a last line without an end may be short. Its value counts only if its time has come, too.
bool CTextTable::EndColumns(std::size_t place)
{
    if (!CheckRead())
        return false;
    if (m_valueColumn <= place && place < m_timeColumn)
        EraseSamples(m_column, m_column.m_events.size() - 1, 1);
    return true;
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
    ReadValue(++m_valueCount > m_timeCount ? AddEvent(0) : m_column.m_events[m_valueCount - 1]);
}

void CTextTable::TakeRowTime()
{
    ReadTime();
    SampleEvent &event = ++m_timeCount > m_valueCount ? AddEvent(0) : m_column.m_events[m_timeCount - 1];
    event.m_time = m_time;
}

bool CTextTable::EndRows()
{
    if (!CheckRead() || !CheckFound(m_valueCount != 0, m_timeCount != 0))
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

// What was read up to an error of the system is no table.
bool CTextTable::CheckRead() const
{
    if (m_table.Error() == 0)
        return true;
    const std::string text =
        "File `" + std::string(m_column.m_args.m_file) + "' cannot be read: " + InputErrorText(m_table.Error()) + ".";
    Q71log_PrintFormattedString(1, "KERNEL", "", text.c_str());
    return false;
}

bool CTextTable::CheckFound(bool hasValues, bool hasTimes) const
{
    if (!hasValues) {
        LogSamples(m_column, 1, "Signal `%s' not found in file `%s'.", m_signal);
        return false;
    }
    if (HasTimes() && !hasTimes) {
        // Deliberate: all messages of a table name the signal, this one too.
        LogSamples(m_column, 1, "Time points `%s' not found in file `%s'.", m_signal);
        return false;
    }
    return true;
}

// Deliberate: `row` counts line ends, so that CR and LF together are two.
bool CTextTable::RefuseRow(long long row) const
{
    SimpleString::CStr text;
    text.Format("Improper columns number in row %d of file `%s'.", static_cast<int>(row),
                static_cast<const char *>(m_column.m_args.m_file));
    Q71log_PrintFormattedString(1, "KERNEL", "", text);
    return false;
}

}  // namespace tesk
