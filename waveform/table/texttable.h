// Reads the samples of one signal from a text table.
#pragma once

#include <string_view>

#include "platform/files/file.h"
#include "waveform/samplecolumn.h"
#include "waveform/table/tablereader.h"

namespace tesk {

/// Opens a table for reading. A pipe that nothing writes to holds none.
/// @param name  gets ".txt" appended if there is no file of this name
/// @return one that is not open if there is none of that name either
CFile OpenTextTable(SimpleString::CStr &name);

/// One pass through a table. The column tells what is wanted by its arguments, interval, start time and flags, and
/// receives the events in the order of the table.
class CTextTable {
public:
    /// @param signal  name of the signal's values, without an index
    /// @param width   with `radix` from `ClassifyValueType`
    CTextTable(const CFile &file, CSampleColumn &column, const char *signal, int width, int radix);
    CTextTable(const CTextTable &) = delete;
    CTextTable &operator=(const CTextTable &) = delete;

    /// The first line names the columns. @return false, with a message, if the table is not as it should be
    bool ReadColumns();
    /// Each line begins with a name. @return as above
    bool ReadRows();

private:
    enum class EName { Values, Times, Other };

    void ReadHeader();
    EName KindOf(std::string_view name) const;
    void TakeCell(std::size_t place);
    bool EndColumns(std::size_t place);
    void TakeRow();
    void TakeRowValue();
    void TakeRowTime();
    bool EndRows();

    bool HasTimes() const { return (m_column.m_args.m_flags & CFileFormulaArgs::FLAG_TIME_POINTS) != 0; }
    bool CheckRead() const;
    bool CheckFound(bool hasValues, bool hasTimes) const;
    bool RefuseRow(long long row) const;
    void ReadTime();
    void ReadValue(SampleEvent &event);
    void Grow();
    SampleEvent &AddEvent(long long time);
    long long StepTime(std::size_t event) const;

    CTableReader m_table;
    CSampleColumn &m_column;
    const char *m_signal;
    int m_width;
    int m_radix;
    bool m_isRelative;  // each time counts from the one before
    long long m_time;   // the last time read
    std::size_t m_columnCount = 0;
    std::size_t m_valueColumn = 0;  // columns count from 1; 0 for none
    std::size_t m_timeColumn = 0;
    std::size_t m_valueCount = 0;  // of a table in rows
    std::size_t m_timeCount = 0;
};

}  // namespace tesk
