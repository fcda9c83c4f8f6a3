#include "tools/exchange/recurrence.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

#include "core/fileformulaargs.h"
#include "core/stimiterator.h"
#include "core/stimulus.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "platform/kestrin.h"
#include "settings/bitvector.h"
#include "settings/counter.h"
#include "settings/timeunits.h"
#include "tools/play/formula.h"

namespace tesk {

namespace {

// A longer loop is no help to a reader.
constexpr long long MostRounds = 1024;
// Behind it a time is none that a simulation reaches, and two periods would not fit 64 bits.
constexpr long long LatestTick = std::numeric_limits<long long>::max() / 8;

// The tick from which on the stimulator is finished; nothing if it never is.
std::optional<long long> FindCancel(IStimulus &stimulus)
{
    long long low = 0, high = LatestTick;
    if (!stimulus.IsFinishedAt(high))
        return std::nullopt;
    while (low < high) {
        const long long middle = low + (high - low) / 2;
        if (stimulus.IsFinishedAt(middle))
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

// The time of the last event that happens once; -1 if none does.
long long LastAbsolute(const IStimulus &stimulus)
{
    CStimIterator events(&stimulus);
    long long last = -1;
    while (const ISimpleStimulus *event = events.Next()) {
        SimpleString::CStr text;
        event->GetTimeString(text);
        if (std::string(text).starts_with('@'))
            last = std::max(last, event->GetTime());
    }
    return last;
}

// Of a formula that is read as a list of events.
SRecurrence FindPlain(const SBench &bench, const SBenchSignal &signal)
{
    SRecurrence recurrence;
    const StimulusPtr stimulus = CreateStimulus(signal.formula, signal.start, bench.resolution);
    const long long period = stimulus->GetRepeatRateInSimUnits();
    if (period == 0)
        return recurrence;
    const auto cancel = FindCancel(*stimulus);
    recurrence.isEndless = !cancel;
    const long long first = std::max(stimulus->GetNextEventTime(-1), LastAbsolute(*stimulus));
    if (first >= 0 && first < LatestTick && period > 0 && period < LatestTick / 4 &&
        (!cancel || *cancel - first > 3 * period))
        recurrence.period = SPeriod{first, period, cancel};
    return recurrence;
}

// How many counts bring a counter back to where it was; 0 if they are too many to be written.
long long RoundOf(const CCounterStimulusInfoImpl &settings, long long width)
{
    switch (settings.m_type) {
    case CCounterStimulusInfo::CounterJohnson: return 2 * width;
    case CCounterStimulusInfo::CounterCircularOne:
    case CCounterStimulusInfo::CounterCircularZero: return width;
    default: return width < 40 ? 1LL << width : 0;
    }
}

// The bits of a number as wide as it is, the highest first.
std::string BitsOf(const CBitVector &number)
{
    std::string bits;
    for (unsigned i = number.GetWidth(); i-- > 0;)
        bits += number.TestBit(i) ? '1' : '0';
    return bits;
}

// What a binary or Gray counter adds; nothing for any other, and for one that cannot be computed so simply.
std::optional<SCount> CountOf(const CCounterStimulusInfoImpl &settings, unsigned width)
{
    const bool isGray = settings.m_type == CCounterStimulusInfo::CounterGray;
    if ((settings.m_type != CCounterStimulusInfo::CounterBinary && !isGray) || settings.m_reverseBitOrder)
        return std::nullopt;
    const auto radix = static_cast<unsigned>(settings.m_displayRadix);
    CBitVector first(width, settings.m_startingValue, radix);
    const CBitVector increment(width, settings.m_increment, radix);
    if (first.GetWidth() == 0 || increment.GetWidth() == 0)
        return std::nullopt;
    SCount count;
    count.isGray = isGray;
    count.first = BitsOf(first);
    if (isGray)
        first.FromGray();
    count.count = BitsOf(first);
    CBitVector added = increment;
    if (settings.m_direction != CCounterStimulusInfo::DirUp) {
        added = CBitVector(width, "0", 2);
        added.Subtract(increment);
    }
    count.increment = BitsOf(added);
    return count;
}

// Bits in which a signal is counted; 0 for one of a type that is not counted in bits that are shown.
long long CountedBits(const SBenchSignal &signal)
{
    const Kestrin::KTypeInfo type(signal.description.c_str());
    switch (KindOf(type)) {
    case Kestrin::ETypeKind::Integer: return 32;
    case Kestrin::ETypeKind::Array: return type.GetNbOfElements();
    default: return 0;
    }
}

SRecurrence FindCounter(const SBench &bench, const SBenchSignal &signal)
{
    SRecurrence recurrence{true, std::nullopt, std::nullopt};
    CCounterStimulusInfo info;
    const long long width = CountedBits(signal);
    if (!info.FromFormula(signal.formula.c_str()) || width < 1 || width > (1 << 16))
        return recurrence;
    const CCounterStimulusInfoImpl &settings = *info.GetImpl();
    double number = 0;
    int unit = -1;
    if (!TextToTime(settings.m_countPeriod, &number, &unit))
        return recurrence;
    STimeValue time;
    time.SetFromValue(number, UnitOrDefault(unit), UnitOrDefault(unit), bench.resolution);
    const long long period = time.m_ticks;
    if (period < 1 || period > LatestTick / MostRounds || signal.start > LatestTick)
        return recurrence;
    recurrence.count = CountOf(settings, static_cast<unsigned>(width));
    if (recurrence.count) {
        recurrence.count->begin = signal.start;
        recurrence.count->period = period;
    }
    // What is mirrored is shown as it is written first, and does not come back.
    const long long round = RoundOf(settings, width);
    if (round > 0 && round <= MostRounds)
        recurrence.period =
            SPeriod{signal.start + (settings.m_reverseBitOrder ? period : 0), period * round, std::nullopt};
    return recurrence;
}

// A recorded signal is played once, or again and again until it is cancelled.
SRecurrence FindFile(const SFormulaKind &kind, const SBenchSignal &signal)
{
    const CKeywordSearch search(signal.formula.c_str());
    CFileFormulaArgs args;
    const bool isRead = kind.parseArguments(ArgumentsOf(signal.formula.c_str(), search.Behind(kind.keyword)), args);
    return {isRead && !args.m_repeat.IsEmpty() && args.m_cancel.IsEmpty(), std::nullopt, std::nullopt};
}

}  // namespace

SRecurrence FindRecurrence(const SBench &bench, const SBenchSignal &signal)
{
    const CSimulationRun run;
    if (signal.formula.empty())
        return {};
    const SFormulaKind *kind = FindKindToCreate(CKeywordSearch(signal.formula.c_str()));
    if (kind == nullptr || kind->kind == EFormulaKind::Brel)
        return FindPlain(bench, signal);
    if (kind->kind == EFormulaKind::Counter)
        return FindCounter(bench, signal);
    if (kind->RefersToFile())
        return FindFile(*kind, signal);
    return {true, std::nullopt, std::nullopt};
}

std::optional<SLoop> TakeLoop(const SPeriod &period, std::vector<SChange> &changes)
{
    const auto at = [&](long long ticks) { return std::ranges::lower_bound(changes, ticks, {}, &SChange::ticks); };
    const auto begin = at(period.begin);
    const auto middle = at(period.begin + period.period);
    const auto end = at(period.begin + 2 * period.period);
    const auto isSame = [&](const SChange &first, const SChange &second) {
        return first.ticks + period.period == second.ticks && first.value == second.value;
    };
    if (begin == middle || !std::equal(begin, middle, middle, end, isSame))
        return std::nullopt;
    SLoop loop{begin->ticks, period.period, {begin, middle}, period.end};
    for (SChange &change : loop.changes)
        change.ticks -= loop.begin;
    changes.erase(begin, changes.end());
    return loop;
}

}  // namespace tesk
