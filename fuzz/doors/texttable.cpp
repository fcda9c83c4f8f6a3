// Any bytes as a text table, read in columns and in rows, for signals of several types.
#include <iterator>

#include "core/stimulus.h"
#include "fuzz/doors.h"
#include "fuzz/support/inputfile.h"
#include "platform/files/file.h"
#include "waveform/table/samplesteps.h"
#include "waveform/table/texttable.h"

namespace fuzz {

namespace {

struct SValueType {
    int width, radix;
    bool isReal, isInteger;
};

constexpr SValueType ValueTypes[] = {
    {1, -2, false, false}, {8, 2, false, false}, {32, -10, false, false}, {32, -10, false, true}, {1, -2, true, false}};

void Read(unsigned flags, const SValueType &type)
{
    const tesk::CFile file = tesk::CFile::Open("input.txt");
    CSampleColumn column;
    column.m_args.m_timeSource = "t";
    column.m_args.m_flags = flags;
    column.m_interval = 1000;
    column.m_isReal = type.isReal;
    column.m_isInteger = type.isInteger;
    tesk::CTextTable table(file, column, "s", type.width, type.radix);
    const bool isRead = (flags & CFileFormulaArgs::FLAG_ROW) != 0 ? table.ReadRows() : table.ReadColumns();
    if (!isRead)
        return;
    tesk::CollapseTo(column, 5);
    tesk::OrderSamples(column, "s");
}

}  // namespace

void TextTable(std::string_view input)
{
    WriteInput("input.txt", input);
    for (unsigned flags = 0; flags < 8; ++flags)
        Read(flags, ValueTypes[flags % std::size(ValueTypes)]);
}

}  // namespace fuzz
