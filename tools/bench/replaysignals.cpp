#include "tools/bench/replaysignals.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include "tools/commandline.h"
#include "tools/examine/nearname.h"
#include "tools/files/selectedfile.h"
#include "tools/files/wavefile.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// A signal below the scope of a replay.
struct SBelow {
    const SFileSignal *signal;
    std::string name;  // below the scope
};

std::vector<SBelow> SignalsBelow(IWaveformFile &file, const std::string &scope)
{
    std::vector<SBelow> below;
    for (const SFileSignal &signal : file.GetSignals()) {
        if (scope.empty())
            below.push_back({&signal, signal.path});
        else if (signal.path.starts_with(scope + '.'))
            below.push_back({&signal, signal.path.substr(scope.size() + 1)});
    }
    return below;
}

std::vector<std::string> ScopesOf(IWaveformFile &file)
{
    std::set<std::string> scopes;
    for (const SFileSignal &signal : file.GetSignals()) {
        for (std::size_t point = signal.path.find('.'); point != std::string::npos;
             point = signal.path.find('.', point + 1))
            scopes.insert(signal.path.substr(0, point));
    }
    return {scopes.begin(), scopes.end()};
}

bool IsAnyGlob(const std::string &name, const std::vector<std::string> &globs)
{
    return std::ranges::any_of(globs, [&](const std::string &glob) { return IsLikeGlob(name, glob); });
}

SBenchFault FaultOf(const SBenchReplay &replay, const std::string &text, ESeverity severity = ESeverity::Error)
{
    return {severity, replay.place, text};
}

// What a replay names, and no signal below its scope is called.
void FindMissing(const SBenchReplay &replay, const std::vector<SBelow> &below, const std::string &listed,
                 std::vector<SBenchFault> &faults)
{
    std::vector<std::string> names;
    for (const SBelow &signal : below)
        names.push_back(signal.name);
    const std::string where = replay.scope.empty() ? "" : "below " + Quote(replay.scope) + " ";
    for (const std::vector<std::string> *globs : {&replay.drive, &replay.compare}) {
        for (const std::string &glob : *globs) {
            if (std::ranges::none_of(names, [&](const std::string &name) { return IsLikeGlob(name, glob); }))
                faults.push_back(FaultOf(replay, OneLine(replay.file) + ": no signal " + where + "is named " +
                                                     Quote(glob) + DidYouMean(glob, names) + listed));
        }
    }
}

// An input of the scope itself, not of one inside it.
bool IsInput(const SBelow &signal)
{
    return signal.signal->direction == ESignalDirection::In && signal.name.find('.') == std::string::npos;
}

}  // namespace

CBenchReplays::CBenchReplays(const SBench &bench, std::vector<SBenchFault> &faults) : m_resolution(bench.resolution)
{
    for (const SBenchSignal &signal : bench.signals)
        m_taken.insert(signal.name);
    for (const SBenchReplay &replay : bench.replays) {
        if (replay.file.empty())
            continue;  // is told
        try {
            Add(replay, faults);
        } catch (const CRefusal &refusal) {
            faults.push_back(FaultOf(replay, refusal.what()));
        }
    }
}

IWaveformFile &CBenchReplays::Open(const std::string &path)
{
    std::unique_ptr<IWaveformFile> &file = m_files[path];
    if (file == nullptr)
        file = OpenWaveFile(path);
    return *file;
}

void CBenchReplays::Add(const SBenchReplay &replay, std::vector<SBenchFault> &faults)
{
    IWaveformFile &file = Open(replay.file);
    const std::vector<SBelow> below = SignalsBelow(file, replay.scope);
    const std::string listed = "; \"tesk signals " + OneLine(replay.file) + " --names\" lists its signals";
    if (below.empty())
        throw CRefusal(OneLine(replay.file) + ": nothing is below the scope " + Quote(replay.scope) +
                       DidYouMean(replay.scope, ScopesOf(file)) + listed);
    FindMissing(replay, below, listed, faults);
    bool isAnyDriven = false;
    for (const SBelow &signal : below) {
        if (replay.drive.empty() ? !IsInput(signal) : !IsAnyGlob(signal.name, replay.drive))
            continue;
        isAnyDriven = true;
        AddDriven(replay, {&file, *signal.signal, replay.to.empty() ? signal.name : replay.to + '.' + signal.name},
                  faults);
    }
    if (!isAnyDriven && replay.drive.empty())
        faults.push_back(FaultOf(replay,
                                 OneLine(replay.file) + ": the file tells no inputs of the scope " +
                                     Quote(replay.scope) +
                                     "; write drive = [\"clk\", \"din*\"] with what is to be driven",
                                 ESeverity::Warning));
}

void CBenchReplays::AddDriven(const SBenchReplay &replay, const SRecordedSignal &signal,
                              std::vector<SBenchFault> &faults)
{
    if (m_taken.contains(signal.name))
        faults.push_back(FaultOf(replay, "the signal " + Quote(signal.name) +
                                             " has a formula, too; leave it out of drive, or out of the signals"));
    else if (!m_names.insert(signal.name).second)
        faults.push_back(FaultOf(replay, "the signal " + Quote(signal.name) + " is driven by two replays"));
    else
        m_driven.push_back(signal);
}

long long CBenchReplays::End() const
{
    long long end = 0;
    for (const auto &[path, file] : m_files) {
        if (file == nullptr)
            continue;
        const Int128 ticks =
            (static_cast<Int128>(file->GetEndTime()) * file->GetResolution() + m_resolution - 1) / m_resolution;
        end = std::max(end, static_cast<long long>(std::min<Int128>(ticks, std::numeric_limits<long long>::max())));
    }
    return end;
}

}  // namespace tesk
