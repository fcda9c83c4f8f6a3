#include "waveform/table/samplesteps.h"

#include <cstdlib>
#include <utility>
#include <vector>

#include "core/stimulus.h"
#include "platform/log.h"

namespace tesk {

void FreeSample(const CSampleColumn &column, SampleEvent &event)
{
    if (column.m_isReal)
        return;
    std::free(event.m_text);
    event.m_text = nullptr;
}

void EraseSamples(CSampleColumn &column, std::size_t first, std::size_t count)
{
    const auto begin = column.m_events.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    for (auto event = begin; event != end; ++event)
        FreeSample(column, *event);
    column.m_events.erase(begin, end);
}

bool ReadInterval(const CFileFormulaArgs &args, double &interval)
{
    double value = static_cast<double>(g_simRes);
    int unit = 0;
    if (!args.m_interval.IsEmpty()) {
        if (!tesk::TextToTime(args.m_interval, &value, &unit))
            return false;
        unit = UnitOrDefault(unit);
    }
    STimeValue time;
    time.SetFromValue(value, unit, 0, g_simRes);
    interval = static_cast<double>(time.GetInDisplayUnit());
    return true;
}

void CollapseTo(CSampleColumn &column, long long start)
{
    std::vector<SampleEvent> &events = column.m_events;
    if (events.empty())
        return;
    std::size_t reached = 0;
    while (reached + 1 < events.size() && events[reached + 1].m_time <= start)
        ++reached;
    events[reached].m_time = start;
    EraseSamples(column, 0, reached);
}

void CollapseToStartTime(CSampleColumn &column)
{
    const bool isRelative = (column.m_args.m_flags & CFileFormulaArgs::FLAG_REL) != 0;
    if (column.m_startTime == 0 || isRelative || column.m_events.empty())
        return;
    if (column.m_events.front().m_time < column.m_startTime)
        CollapseTo(column, column.m_startTime);
}

bool OrderSamples(CSampleColumn &column, const char *signal)
{
    std::vector<SampleEvent> &events = column.m_events;
    if (events.size() < 2)
        return true;
    std::size_t last = 0;  // of those kept; between it and the event at hand nothing is owned
    for (std::size_t next = 1; next < events.size(); ++next) {
        if (events[next].m_time < events[last].m_time) {
            LogSamples(column, 1, "Events for signal `%s' in improper order in file `%s'.", signal);
            return false;
        }
        if (events[next].m_time == events[last].m_time)
            FreeSample(column, events[last]);
        else
            ++last;
        if (last != next)
            events[last] = std::exchange(events[next], SampleEvent());
    }
    events.resize(last + 1);
    return true;
}

bool CheckHasSamples(const CSampleColumn &column, const char *signal)
{
    if (!column.m_events.empty())
        return true;
    LogSamples(column, 1, "There are no events for signal `%s' in file `%s'.", signal);
    return false;
}

int RegisterSamples(std::unique_ptr<CSampleColumn> column)
{
    const int handle = g_NextSampleHandle;
    CSampleColumn *&place = g_SampleColumns[handle];
    delete place;  // one that a host put there by hand
    place = column.release();
    g_NextSampleHandle = static_cast<int>(static_cast<unsigned>(handle) + 1);
    return handle;
}

void LogSamples(const CSampleColumn &column, int level, const char *format, const char *signal)
{
    SimpleString::CStr text;
    text.Format(format, signal, static_cast<const char *>(column.m_args.m_file));
    Q71log_PrintFormattedString(level, "KERNEL", "", text);
}

void ClearSampleColumns()
{
    for (const auto &[handle, column] : g_SampleColumns)
        delete column;
    g_SampleColumns.clear();
    g_NextSampleHandle = 1;
}

}  // namespace tesk
