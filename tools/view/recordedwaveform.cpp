#include "tools/view/recordedwaveform.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "tools/commandline.h"
#include "tools/files/recordedtext.h"
#include "tools/play/recorder.h"
#include "tools/progress.h"
#include "tools/timetext.h"
#include "tools/view/thinner.h"
#include "tools/writers/valuetext.h"
#include "waveform/files/filewalk.h"
#include "waveform/files/signalwalk.h"

namespace tesk {

namespace {

constexpr long long Latest = std::numeric_limits<long long>::max();
constexpr std::size_t MostChanges = 8'000'000;
constexpr const char *Advice =
    "show a shorter stretch with --from and --until, or fewer signals; \"tesk convert\" writes "
    "any number of them to a file";

long long Clamped(Int128 time)
{
    return time > Latest ? Latest : static_cast<long long>(time);
}

// A time of a file in ticks of a window, rounded down.
long long TicksOf(long long fileTime, long long fileResolution, long long resolution)
{
    return Clamped(static_cast<Int128>(fileTime) * fileResolution / resolution);
}

// The last time of a file that is in a tick of a window.
long long LastOf(long long ticks, long long fileResolution, long long resolution)
{
    return Clamped(((static_cast<Int128>(ticks) + 1) * resolution - 1) / fileResolution);
}

// What is read of one signal. Those that share their events are read once.
class CRecordedTrace {
public:
    CRecordedTrace(const SFileSignal &signal, const SRecordedWindow &window, CChangeRecorder &recorder)
        : m_text(signal.type), m_thinner(window, signal.type, recorder)
    {}

    void Add(long long ticks, IChangeWalk &walk, std::size_t signal)
    {
        const std::span<const std::uint8_t> positions = walk.GetPositions(signal);
        std::optional<std::string> text =
            positions.empty() ? m_text.Text(walk.GetValues(signal)) : m_text.TextOfPositions(positions);
        if (!text || text == m_last)
            return;
        m_last = text;
        m_thinner.Add({ticks, std::move(text)});
    }

    std::vector<SChange> Finish() { return m_thinner.Finish(); }

private:
    CRecordedText m_text;
    CThinner m_thinner;
    std::optional<std::string> m_last;
};

// Goes through one file from the beginning to the end of the window.
// @param signals  of the file, each with events of its own
std::vector<std::vector<SChange>> ReadFile(IWaveformFile &file, const std::vector<SFileSignal> &signals,
                                           const SRecordedWindow &window, CChangeRecorder &recorder)
{
    const long long resolution = file.GetResolution();
    const long long end = LastOf(window.until, resolution, window.resolution);
    CProgressLine progress("Reading");
    std::vector<CRecordedTrace> traces;
    for (const SFileSignal &signal : signals)
        traces.emplace_back(signal, window, recorder);
    const std::unique_ptr<IChangeWalk> walk = WalkInTime(file, signals);
    long long time = 0;
    while (walk->Next(time, LastOf(window.from, resolution, window.resolution)))
        progress.Show(time, end);
    for (std::size_t i = 0; i < signals.size(); ++i)
        traces[i].Add(window.from, *walk, i);
    while (walk->Next(time, end)) {
        progress.Show(time, end);
        for (const std::uint32_t changed : walk->GetChanged())
            traces[changed].Add(TicksOf(time, resolution, window.resolution), *walk, changed);
    }
    std::vector<std::vector<SChange>> changes;
    for (CRecordedTrace &trace : traces)
        changes.push_back(trace.Finish());
    return changes;
}

// What signals have in common of which the changes are the same.
using CTraceKey = std::pair<std::string, std::vector<long long>>;

// The signals of one file, by their places among all.
struct SReadFile {
    IWaveformFile *file;
    std::map<CTraceKey, std::size_t> known;  // places in `signals`
    std::vector<SFileSignal> signals;
    std::vector<std::pair<std::size_t, std::size_t>> traces;  // place among all, and in `signals`
};

std::vector<SReadFile> ByFile(const std::vector<SRecordedSignal> &signals)
{
    std::vector<SReadFile> files;
    for (std::size_t i = 0; i < signals.size(); ++i) {
        auto file = std::ranges::find(files, signals[i].file, &SReadFile::file);
        if (file == files.end())
            file = files.insert(file, {signals[i].file, {}, {}, {}});
        const SFileSignal &signal = signals[i].signal;
        const auto [known, isNew] = file->known.try_emplace(
            {signal.type.GetTypeInfoString(), IdentifyEvents(*file->file, signal)}, file->signals.size());
        if (isNew)
            file->signals.push_back(signal);
        file->traces.emplace_back(i, known->second);
    }
    return files;
}

}  // namespace

std::vector<STrace> ReadRecorded(const std::vector<SRecordedSignal> &signals, const SRecordedWindow &window)
{
    std::vector<STrace> traces;
    for (const SRecordedSignal &signal : signals) {
        traces.push_back({.signal = signal.name, .type = signal.signal.type.GetTypeInfoString()});
        traces.back().isBus = IsBusType(traces.back().type);
    }
    CChangeRecorder recorder(Advice, window.points == 0 ? CChangeRecorder::UsualMost : MostChanges);
    for (const SReadFile &read : ByFile(signals)) {
        auto changes = ReadFile(*read.file, read.signals, window, recorder);
        std::vector<std::optional<std::size_t>> taken(changes.size());  // by the first trace that shows them
        for (const auto &[trace, signal] : read.traces) {
            traces[trace].changes =
                taken[signal] ? recorder.Copy(traces[*taken[signal]].changes) : std::move(changes[signal]);
            taken[signal] = taken[signal].value_or(trace);
        }
    }
    return traces;
}

SWaveform RecordedWaveform(const std::vector<SRecordedSignal> &signals, const SRecordedWindow &window,
                           const std::string &title)
{
    SWaveform waveform;
    waveform.formula = title;
    waveform.resolution = window.resolution;
    waveform.begin = window.from;
    waveform.end = window.until;
    waveform.traces = ReadRecorded(signals, window);
    return waveform;
}

}  // namespace tesk
