#include "waveform/matimporter.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/wrap.h"
#include "core/stimulus.h"
#include "platform/crt.h"
#include "platform/kestrin.h"
#include "platform/log.h"
#include "signal/signal.h"
#include "waveform/mat/matlane.h"
#include "waveform/mat/matlibraries.h"
#include "waveform/mat/matnumber.h"
#include "waveform/table/samplesteps.h"

using namespace tesk;

namespace {

constexpr int Failed = 0;
constexpr int NoData = -1;
constexpr int MaximumWidth = 1 << 24;                // a signal has no more elements
constexpr double TimeLimit = 9223372036854775808.0;  // 2^63

struct SClose {
    void operator()(MATFile *file) const { MatLibraries().matClose(file); }
};
using MatFilePtr = std::unique_ptr<MATFile, SClose>;

// Where the times come from.
struct STimeSource {
    bool isThere = false;
    SMatLane times;
    long long lane = -1;  // of the variable of the values; -1 if it is none of these
};

class CMatImport {
public:
    CMatImport(long long startTime, CFileFormulaArgs &args, ISignal *signal)
        : m_startTime(startTime), m_args(args), m_signal(signal), m_byRows((args.m_flags & args.FLAG_ROW) != 0),
          m_isRelative((args.m_flags & args.FLAG_REL) != 0), m_column(std::make_unique<CSampleColumn>())
    {}

    int Run();

private:
    bool OpenFile();
    bool ReadVariable();
    bool ReadTimeSource();
    bool ReadTimePoints();
    bool ReadTimeVariable();
    const mxArray *FindVariable(const char *path);
    bool ReadForm(const Kestrin::KTypeInfo &type);
    bool HasLane(long long lane) const;
    void LogNoData() const;
    void ReadEvents(const SMatLane &values);
    bool TakeTime(std::size_t index, long long &time);
    SampleEvent MakeEvent(long long time, double value) const;
    char *MakeText(double value) const;
    int Finish();

    const long long m_startTime;
    CFileFormulaArgs &m_args;
    ISignal *const m_signal;
    const bool m_byRows;
    const bool m_isRelative;
    MatFilePtr m_file;
    SMatTarget m_target;
    SMatMatrix m_matrix;
    STimeSource m_source;
    tesk::SNumberForm m_form;
    bool m_isVerilog = false;
    long long m_running = 0;  // time of the last event, or of the next one without a source of times
    std::unique_ptr<CSampleColumn> m_column;
};

int CMatImport::Run()
{
    if (!m_target.Read(m_args.m_signal) || !OpenFile() || !ReadInterval(m_args, m_column->m_interval) ||
        !ReadVariable() || !ReadTimeSource())
        return Failed;
    const Kestrin::KTypeInfo *type = m_signal != nullptr ? m_signal->GetTypeInfo() : nullptr;
    if (type == nullptr || !ReadForm(*type))
        return Failed;
    std::optional<long long> lane = FindLane(m_target, *type, m_matrix);
    if (!lane.has_value())
        return Failed;
    if (m_source.lane != -1 && m_source.lane <= *lane)
        ++*lane;
    // Deliberate: for a bit this is not tested. It gets what lies at the places of its lane, most often nothing.
    if (KindOf(type) != Kestrin::ETypeKind::Enumeration && !HasLane(*lane)) {
        LogNoData();
        return NoData;
    }
    ReadEvents(LaneOf(m_matrix, m_byRows, static_cast<std::size_t>(*lane)));
    return Finish();
}

bool CMatImport::OpenFile()
{
    m_file.reset(MatLibraries().matOpen(m_args.m_file, "r"));
    if (m_file != nullptr)
        return true;
    m_args.m_file += ".mat";
    m_file.reset(MatLibraries().matOpen(m_args.m_file, "r"));
    return m_file != nullptr;
}

const mxArray *CMatImport::FindVariable(const char *path)
{
    const mxArray *variable = FindMatVariable(path, m_file.get());
    if (variable == nullptr)
        LogSamples(*m_column, 1, "Cannot find `%s' variable in file `%s'.", path);
    return variable;
}

bool CMatImport::ReadVariable()
{
    m_column->m_args = m_args;
    m_column->m_startTime = m_startTime;
    m_column->m_fromMatFile = true;
    m_running = m_startTime;
    const mxArray *variable = FindVariable(m_target.name);
    return variable != nullptr && ReadMatMatrix(variable, m_matrix);
}

bool CMatImport::ReadTimeSource()
{
    if ((m_args.m_flags & CFileFormulaArgs::FLAG_TIME_POINTS) != 0)
        return ReadTimePoints();
    return m_args.m_timeSource.IsEmpty() || ReadTimeVariable();
}

bool CMatImport::ReadTimePoints()
{
    const long long lane = tesk::ReadInt(m_args.m_timeSource) - 1LL;
    if (m_matrix.rank != 2 || lane < 0 || lane >= static_cast<long long>(LaneCount(m_matrix, m_byRows)))
        return false;
    m_source = {true, LaneOf(m_matrix, m_byRows, static_cast<std::size_t>(lane)), lane};
    return true;
}

bool CMatImport::ReadTimeVariable()
{
    const mxArray *variable = FindVariable(m_args.m_timeSource);
    SMatMatrix times;
    if (variable == nullptr || !ReadMatMatrix(variable, times) || times.rank < 1)
        return false;
    if (times.rank == 2 && times.rows != 1 && times.columns != 1)
        return false;
    m_source = {true, {times.data, times.elements, 1}, -1};
    return true;
}

bool CMatImport::ReadForm(const Kestrin::KTypeInfo &type)
{
    int radix = 0;
    ClassifyValueType(m_signal, *m_column, m_form.width, radix);
    m_form.isSigned = radix < 0;
    m_form.fraction = m_args.m_point.IsEmpty() ? 0 : tesk::ReadInt(m_args.m_point);
    m_isVerilog = type.IsVerilog();
    return m_form.width <= MaximumWidth;
}

bool CMatImport::HasLane(long long lane) const
{
    return m_matrix.rank != 2 || (lane >= 0 && static_cast<std::size_t>(lane) < LaneCount(m_matrix, m_byRows));
}

void CMatImport::LogNoData() const
{
    SimpleString::CStr text;
    if (m_target.index2 == -1)
        text.Format("There is no data for %s(%d).", g_SignalName, m_target.index1);
    else
        text.Format("There is no data for %s(%d)(%d).", g_SignalName, m_target.index1, m_target.index2);
    Q71log_PrintFormattedString(2, "KERNEL", "", text);
}

void CMatImport::ReadEvents(const SMatLane &values)
{
    const std::size_t count = m_source.isThere ? std::min(values.count, m_source.times.count) : values.count;
    m_column->m_events.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        long long time = 0;
        if (!TakeTime(i, time)) {
            LogSamples(*m_column, 2,
                       "Some events on signal `%s' could not be scheduled. (The maximum allowable simulation time "
                       "would be exceeded.)",
                       m_target.name);
            return;
        }
        m_column->m_events.push_back(MakeEvent(time, values.At(i)));
    }
}

// @return false if it lies beyond what can be simulated
bool CMatImport::TakeTime(std::size_t index, long long &time)
{
    const double resolution = static_cast<double>(g_simRes);
    if (!m_source.isThere) {
        time = m_running;
        m_running = tesk::WrapAdd(m_running, tesk::TruncateToInt64(m_column->m_interval / resolution));
        return m_running >= time;  // deliberate: an event without a time for the next one goes too
    }
    double exact = m_source.times.At(index) * m_column->m_interval / resolution + 0.5;
    if (m_isRelative)
        exact += static_cast<double>(m_running);
    if (exact > TimeLimit)
        return false;
    m_running = tesk::TruncateToInt64(exact);
    time = m_running;
    return true;
}

SampleEvent CMatImport::MakeEvent(long long time, double value) const
{
    SampleEvent event;
    event.m_time = time;
    if (m_column->m_isReal)
        event.m_real = value;
    else
        event.m_text = MakeText(value);
    return event;
}

char *CMatImport::MakeText(double value) const
{
    const std::string text = m_isVerilog ? VerilogNumberText(value, m_form) : VhdlNumberText(value, m_form);
    if (text.empty())
        return nullptr;
    const bool isMarked = m_column->m_isInteger && !m_isVerilog;
    return _strdup(isMarked ? ("2#" + text).c_str() : text.c_str());
}

int CMatImport::Finish()
{
    if (!OrderSamples(*m_column, m_target.name))
        return Failed;
    const std::vector<SampleEvent> &events = m_column->m_events;
    if (m_startTime != 0 && !m_isRelative && !events.empty() && events.front().m_time < m_startTime)
        CollapseTo(*m_column, m_startTime);
    if (!CheckHasSamples(*m_column, m_target.name))
        return Failed;
    return RegisterSamples(std::move(m_column));
}

}  // namespace

int ImportMatFile(long long startTime, CFileFormulaArgs &args, ISignal *signal)
try {
    return LoadMatLibraries() ? CMatImport(startTime, args, signal).Run() : Failed;
} catch (const std::bad_alloc &) {
    return Failed;
} catch (const std::length_error &) {
    return Failed;
}
