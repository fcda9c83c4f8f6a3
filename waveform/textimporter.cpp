#include "waveform/textimporter.h"

#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "core/stimulus.h"
#include "waveform/table/samplesteps.h"
#include "waveform/table/texttable.h"

using namespace tesk;

namespace {

// The stretch of the table that is played, in ticks.
struct SBounds {
    long long start = 0;
    long long end = std::numeric_limits<long long>::max();
};

// The name without an index "(...)", which says nothing here. @return false for a ")" without a name and "(" before it
bool TakeName(const SimpleString::CStr &signal, SimpleString::CStr &name)
{
    name = signal;
    const std::string_view text(signal, static_cast<std::size_t>(signal.GetLength()));
    if (!text.ends_with(')'))
        return true;
    const std::size_t bracket = text.rfind('(');
    if (bracket == 0 || bracket == std::string_view::npos)
        return false;
    name = signal.Left(static_cast<int>(bracket));
    return true;
}

bool ReadBound(const SimpleString::CStr &text, long long &ticks)
{
    if (text.IsEmpty())
        return true;
    STimeValue time;
    if (!ParseTimeArgument(text, g_simRes, time, -1))
        return false;
    ticks = time.m_ticks;
    return true;
}

bool ReadTable(const CFile &file, CSampleColumn &column, const char *name, int width, int radix)
{
    CTextTable table(file, column, name, width, radix);
    const bool isInRows = (column.m_args.m_flags & CFileFormulaArgs::FLAG_ROW) != 0;
    return isInRows ? table.ReadRows() : table.ReadColumns();
}

// Cuts the stretch out; its start comes to lie at the time at which the stimulator is applied.
void CutStretch(CSampleColumn &column, const SBounds &bounds)
{
    CollapseTo(column, bounds.start);
    std::vector<SampleEvent> &events = column.m_events;
    std::size_t kept = 0;
    while (kept < events.size() && events[kept].m_time <= bounds.end) {
        long long &time = events[kept++].m_time;
        time = tesk::WrapAdd(tesk::WrapSubtract(time, bounds.start), column.m_startTime);
    }
    EraseSamples(column, kept, events.size() - kept);
}

// Deliberate: an end counts only together with a start above 0.
void ApplyBounds(CSampleColumn &column, const SBounds &bounds)
{
    if (bounds.start > 0)
        CutStretch(column, bounds);
    else
        CollapseToStartTime(column);
}

}  // namespace

int ImportTextFile(long long startTime, CFileFormulaArgs &args, ISignal *signal)
try {
    SimpleString::CStr name;
    SBounds bounds;
    if (!TakeName(args.m_signal, name) || !ReadBound(args.m_start, bounds.start) || !ReadBound(args.m_end, bounds.end))
        return 0;
    CFile file = OpenTextTable(args.m_file);
    if (!file.IsOpen())
        return 0;
    auto column = std::make_unique<CSampleColumn>();
    if (!ReadInterval(args, column->m_interval))
        return 0;
    column->m_args = args;
    column->m_startTime = startTime;
    int width = 0, radix = 0;
    ClassifyValueType(signal, *column, width, radix);
    if (!ReadTable(file, *column, name, width, radix))
        return 0;
    file.Close();
    ApplyBounds(*column, bounds);
    if (!OrderSamples(*column, name) || !CheckHasSamples(*column, name))
        return 0;
    return RegisterSamples(std::move(column));
} catch (const std::bad_alloc &) {
    return 0;
}
