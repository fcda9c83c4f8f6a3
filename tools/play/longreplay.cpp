#include "tools/play/longreplay.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "tools/files/recordedtext.h"
#include "tools/message.h"
#include "tools/output.h"
#include "tools/play/fileformula.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

constexpr long long Longest = std::numeric_limits<long long>::max();

}  // namespace

CLongReplay::CLongReplay(const std::string &path, long long resolution)
    : m_path(path), m_resolution(resolution), m_opened(path), m_file(m_opened.Get())
{}

std::unique_ptr<CLongReplay> CLongReplay::Open(const std::string &formula, long long resolution)
{
    const std::optional<SReplayArguments> arguments = ReplayArguments(formula);
    if (!arguments)
        return nullptr;
    std::unique_ptr<CLongReplay> replay(new CLongReplay(arguments->file, resolution));
    if (replay->m_file == nullptr ||
        static_cast<Int128>(replay->m_file->GetEndTime()) * replay->m_file->GetResolution() <= Longest)
        return nullptr;
    replay->m_isWhole = arguments->isWhole;
    return replay;
}

long long CLongReplay::Limit() const
{
    return Longest / m_resolution;
}

std::optional<long long> CLongReplay::TicksOf(long long fileTicks, long long begin) const
{
    const Int128 ticks = static_cast<Int128>(fileTicks) * m_file->GetResolution() / m_resolution + begin;
    return ticks <= Longest ? std::optional(static_cast<long long>(ticks)) : std::nullopt;
}

std::optional<std::vector<SChange>> CLongReplay::Changes(const std::string &formula, const SWalkTimes &times)
{
    const std::optional<SReplayArguments> arguments = ReplayArguments(formula);
    const int handle = arguments ? m_file->FindSignal(arguments->signal.c_str()).value_or(-1) : -1;
    const auto &signals = m_file->GetSignals();
    const auto signal = std::ranges::find_if(signals, [&](const SFileSignal &each) {
        return handle >= each.firstElement && handle - each.firstElement < each.elementCount;
    });
    if (signal == signals.end())
        return std::nullopt;
    const Kestrin::KTypeInfo *element = signal->type.GetArrayElementKTypeInfo();
    std::vector<SChange> changes;
    CChangeRecorder recorder;
    const std::unique_ptr<IElementWalk> walk = m_file->Walk(handle);
    long long time = 0;
    std::uint64_t value = 0;
    while (walk != nullptr && walk->Next(time, value)) {
        const std::optional<long long> ticks = TicksOf(time, times.begin);
        m_isOverflown = m_isOverflown || !ticks;
        if (!ticks || (times.until && *ticks > *times.until))
            break;
        const bool isSameTick = !changes.empty() && changes.back().ticks == *ticks;
        if (isSameTick)
            changes.pop_back();  // the simulator's tick is coarser than the file's: the last value counts
        recorder.Add(changes, {*ticks, ScalarText(element != nullptr ? *element : signal->type, value)}, times.from);
    }
    return changes;
}

void CLongReplay::TellLoss() const
{
    if (m_isOverflown)
        TellWarning(m_path + " goes on behind " + TickText(Longest, m_resolution) +
                    ", the last time of 64 bits of ticks; give a coarser --res");
}

}  // namespace tesk
