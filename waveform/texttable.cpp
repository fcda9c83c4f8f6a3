#include "waveform/texttable.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>

#include "core/stimulus.h"
#include "platform/crt.h"
#include "platform/log.h"
#include "settings/wrap.h"
#include "waveform/samplesteps.h"
#include "waveform/samplevalue.h"

namespace {

// Reads as `_atoi64`, of which it is the common case.
long long ReadWholeNumber(std::string_view token)
{
    constexpr std::size_t SafeDigits = 18;
    long long number = 0;
    for (const char c : token.substr(0, SafeDigits)) {
        if (c < '0' || c > '9')
            return _atoi64(std::string(token).c_str());
        number = number * 10 + (c - '0');
    }
    return token.size() <= SafeDigits ? number : _atoi64(std::string(token).c_str());
}

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
    : m_table(file), m_column(column), m_signal(signal), m_width(width), m_radix(radix), m_time(column.m_startTime)
{}

CTextTable::~CTextTable()
{
    FreeSample(m_column, m_value);
}

bool CTextTable::ReadColumns()
{
    ReadHeader();
    if (!CheckFound(m_valueColumn != 0, m_timeColumn != 0))
        return false;
    long long row = 1;
    std::size_t place = 0;
    for (;;) {
        switch (m_table.Next()) {
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
    ELine line = ELine::Unread;
    for (;;) {
        const CTableReader::EPiece piece = m_table.Next();
        if (piece == CTableReader::EPiece::FileEnd)
            return EndRows();
        if (piece == CTableReader::EPiece::LineEnd)
            line = ELine::Unread;
        else if (line == ELine::Unread)
            line = KindOfLine();
        else if (line == ELine::Values)
            TakeRowValue();
        else if (line == ELine::Times)
            TakeRowTime();
    }
}

void CTextTable::ReadHeader()
{
    while (m_table.Next() == CTableReader::EPiece::Token) {
        ++m_columnCount;
        if (m_table.Token() == m_signal)
            m_valueColumn = m_columnCount;
        else if (HasTimes() && m_table.Token() == static_cast<const char *>(m_column.m_args.m_timeSource))
            m_timeColumn = m_columnCount;
    }
}

// An event is complete with the right one of its two cells.
void CTextTable::TakeCell(std::size_t place)
{
    if (place == m_timeColumn)
        ReadTime();
    else if (place == m_valueColumn)
        ReadValue();
    if (place == std::max(m_timeColumn, m_valueColumn))
        Append(m_timeColumn != 0 ? m_time : StepTime(m_column.m_events.size()));
}

CTextTable::ELine CTextTable::KindOfLine() const
{
    if (m_table.Token() == m_signal)
        return ELine::Values;
    const bool isTime = HasTimes() && m_table.Token() == static_cast<const char *>(m_column.m_args.m_timeSource);
    return isTime ? ELine::Times : ELine::Other;
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
        // Deliberate: all messages of a table name the signal, this one too.
        LogSamples(m_column, 1, "Time points `%s' not found in file `%s'.", m_signal);
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

void CTextTable::ReadTime()
{
    const double units = static_cast<double>(ReadWholeNumber(m_table.Token()));
    const long long ticks = tesk::TruncateToInt64(units * m_column.m_interval / static_cast<double>(g_simRes));
    const bool isRelative = (m_column.m_args.m_flags & CFileFormulaArgs::FLAG_REL) != 0;
    m_time = isRelative ? tesk::WrapAdd(m_time, ticks) : ticks;
}

void CTextTable::ReadValue()
{
    FreeSample(m_column, m_value);
    ConvertSample(m_value, m_table.Token(), m_column, m_width, m_radix);
}

void CTextTable::Append(long long time)
{
    m_value.m_time = time;
    std::vector<SampleEvent> &events = m_column.m_events;
    if (events.size() == events.capacity())
        events.reserve(std::max(events.size() * 2, m_table.EstimateTotal(events.size())));
    events.push_back(m_value);
    m_value = SampleEvent();
}

// The time of an event of a table without times.
long long CTextTable::StepTime(std::size_t event) const
{
    return tesk::TruncateToInt64(static_cast<double>(event) * m_column.m_interval / static_cast<double>(g_simRes) +
                                 static_cast<double>(m_column.m_startTime));
}
