// Any bytes as a text table, read in columns and in rows, for signals of several types.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "core/stimulus.h"
#include "platform/log.h"
#include "waveform/table/samplesteps.h"
#include "waveform/table/texttable.h"

namespace {

struct SValueType {
    int width, radix;
    bool isReal, isInteger;
};

constexpr SValueType Types[] = {
    {1, -2, false, false}, {8, 2, false, false}, {32, -10, false, false}, {32, -10, false, true}, {1, -2, true, false}};

void Read(const std::uint8_t *data, std::size_t size, unsigned flags, const SValueType &type)
{
    const tesk::CFile file(memfd_create("table", MFD_CLOEXEC));
    if (!file.Write(data, size) || file.Seek(0, SEEK_SET) != 0)
        return;
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

void Ignore(void *, int, const char *, const char *) {}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Q71log_SetSink(Ignore, nullptr);
    for (unsigned flags = 0; flags < 8; ++flags)
        Read(data, size, flags, Types[flags % std::size(Types)]);
    return 0;
}
