#include <algorithm>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "signal/reference.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

enum { Exact, Before, After, AtOrBefore, AtOrAfter };

using WavePtr = TReference<ISignalWave>;

void Add(ISignalWave &wave, long long time, std::uint32_t value = 0, unsigned delta = 0)
{
    EXPECT_EQ(wave.AddEvent(time, delta, &value, sizeof value), S_OK);
}

void AddMarked(ISignalWave &wave, long long time, std::uint32_t value = 0, unsigned delta = 0)
{
    EXPECT_EQ(wave.AddMarkedEvent(time, delta, &value, sizeof value), S_OK);
}

void Push(ISignalWave &wave, long long time, std::uint32_t value = 0)
{
    EXPECT_EQ(wave.PushPendingEvent(time, &value, sizeof value), S_OK);
}

WavePtr WaveOf(const std::vector<long long> &times)
{
    WavePtr wave = NewWave();
    for (std::size_t i = 0; i < times.size(); ++i)
        Add(*wave, times[i], static_cast<std::uint32_t>(i));
    return wave;
}

// Equal times one behind the other, which only a commit can bring about.
WavePtr WaveWithEqualTimes(const std::vector<long long> &times)
{
    WavePtr wave = NewWave();
    for (std::size_t i = times.size(); i-- > 0;)
        Push(*wave, times[i], static_cast<std::uint32_t>(i));
    wave->CommitPendingEvents();
    return wave;
}

struct SEvent {
    long long time;
    std::uint32_t value;
    int flags;

    friend bool operator==(const SEvent &, const SEvent &) = default;
    friend void PrintTo(const SEvent &event, std::ostream *out)
    {
        *out << event.value << '@' << event.time << " flags " << event.flags;
    }
};

SEvent Show(IEvent &event)
{
    std::uint32_t value = 0;
    event.GetValue(&value, sizeof value);
    return {event.GetTime(), value, event.GetFlags()};
}

std::vector<SEvent> Events(ISignalWave &wave)
{
    std::vector<SEvent> events;
    const TReference<IEventIterator> iterator = EventsOf(wave);
    IEvent *event = nullptr;
    while (iterator->Next(1, &event, nullptr) == S_OK)
        events.push_back(Show(*event));
    EXPECT_EQ(events.size(), wave.GetEventCount());
    return events;
}

std::vector<long long> Times(ISignalWave &wave)
{
    std::vector<long long> times;
    for (const SEvent &event : Events(wave))
        times.push_back(event.time);
    return times;
}

// The place of the event found, which is its value in a wave of WaveOf.
std::optional<std::uint32_t> Find(ISignalWave &wave, long long time, int mode)
{
    IEvent *event = nullptr;
    const long result = wave.FindEvent(time, mode, &event);
    EXPECT_EQ(result, event != nullptr ? S_OK : E_FAIL);
    return event != nullptr ? std::optional(Show(*event).value) : std::nullopt;
}

TEST(CreateSignalWave, TakesTheSizesOfScalarsOnly)
{
    const struct {
        unsigned size;
        unsigned width;
    } rows[] = {{1, 4}, {2, 4}, {4, 4}, {8, 8}};
    for (const auto &row : rows) {
        const WavePtr wave = NewWave(row.size);
        ASSERT_NE(wave, nullptr) << row.size;
        EXPECT_EQ(wave->GetValueWidth(), row.width) << row.size;
    }
}

TEST(CreateSignalWave, AnswersOutOfMemoryForAnyOtherSize)  // deliberate, not E_INVALIDARG
{
    for (const unsigned size : {0u, 3u, 5u, 6u, 7u, 9u, 16u, 0xFFFFFFFFu}) {
        ISignalWave *wave = nullptr;
        EXPECT_EQ(CreateSignalWave(size, &wave), E_OUTOFMEMORY) << size;
        EXPECT_EQ(wave, nullptr) << size;
    }
}

TEST(CreateSignalWave, RefusesANullOut)
{
    EXPECT_EQ(CreateSignalWave(4, nullptr), E_INVALIDARG);
}

TEST(ANewWave, IsEmpty)
{
    const WavePtr wave = NewWave();
    EXPECT_EQ(wave->GetEventCount(), 0u);
    EXPECT_EQ(wave->GetFirstTime(), -1);
    EXPECT_EQ(wave->GetLastTime(), -1);
    for (int mode = -1; mode <= 5; ++mode)
        EXPECT_EQ(Find(*wave, 0, mode), std::nullopt) << mode;
}

TEST(AddEvent, AppendsOrdinaryEvents)
{
    const WavePtr wave = NewWave();
    Add(*wave, -5, 1);
    Add(*wave, 10, 2);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{-5, 1, 0}, SEvent{10, 2, 0}));
    EXPECT_EQ(wave->GetFirstTime(), -5);
    EXPECT_EQ(wave->GetLastTime(), 10);
}

TEST(AddEvent, LetsALaterDeltaOfOneTimeWinAndDropsASmallerOne)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a', 5);
    Add(*wave, 10, 'b', 3);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'a', 0}));
    Add(*wave, 10, 'c', 5);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'c', 0})) << "an equal delta is not a smaller one";
    Add(*wave, 10, 'd', 4);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'c', 0})) << "the dropped write left the delta at 5";
    Add(*wave, 20, 'e', 0);
    EXPECT_THAT(Times(*wave), ElementsAre(10, 20)) << "the delta of another time does not matter";
}

TEST(AddEvent, ComparesDeltasWithoutSign)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a', 0xFFFFFFFF);
    Add(*wave, 10, 'b', 1);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'a', 0}));
}

TEST(AddEvent, TakesTheDeltaOfAWriteWithoutValue)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a', 1);
    EXPECT_EQ(wave->AddEvent(10, 7, nullptr, 4), S_OK);
    Add(*wave, 10, 'b', 6);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'a', 0}));
}

TEST(AddEvent, NeverCopiesAValueInPart)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a');
    const std::uint32_t value = 'b';
    EXPECT_EQ(wave->AddEvent(10, 0, &value, 2), S_OK);
    EXPECT_EQ(wave->AddMarkedEvent(10, 0, &value, 3), S_OK);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'a', 3})) << "the old value stays";
    EXPECT_EQ(wave->AddEvent(20, 0, &value, 2), S_OK);
    EXPECT_THAT(Times(*wave), ElementsAre(10, 20)) << "the event exists all the same";
}

TEST(AddEvent, CopiesTheWidthOfTheWaveFromALargerBuffer)
{
    const std::uint64_t value = 0x1122334455667788;
    const WavePtr narrow = NewWave(4);
    narrow->AddEvent(0, 0, &value, sizeof value);
    EXPECT_EQ(Events(*narrow)[0].value, 0x55667788u);

    const WavePtr wide = NewWave(8);
    wide->AddEvent(0, 0, &value, sizeof value);
    std::uint64_t read = 0;
    EXPECT_EQ(wide->GetEventValue(0, &read, sizeof read), S_OK);
    EXPECT_EQ(read, value);
}

TEST(AddEvent, LooksOnlyAtTheLastTime)
{
    EXPECT_THAT(Times(*WaveOf({20, 10, 20})), ElementsAre(20, 10, 20));
}

TEST(AddMarkedEvent, MarksANewTime)
{
    const WavePtr wave = NewWave();
    AddMarked(*wave, 10, 'a');
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'a', 1}));
    Add(*wave, 10, 'b', 0);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'b', 1})) << "an ordinary write leaves the flags";
}

TEST(AddMarkedEvent, MarksAnOrdinaryEventAsBoth)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a');
    AddMarked(*wave, 10, 'b');
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'b', 3}));
    AddMarked(*wave, 10, 'c');
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'c', 3}));
}

TEST(AddMarkedEvent, LooksAtBit0OnlyForTheFlags)
{
    const WavePtr wave = NewWave();
    const struct {
        unsigned char before;
        int after;
    } rows[] = {{0, 3}, {1, 1}, {2, 3}, {3, 3}, {4, 3}, {5, 5}};
    for (const auto &row : rows) {
        wave->ClearEvents();
        Add(*wave, 10);
        IEvent *event = nullptr;
        ASSERT_EQ(wave->FindEvent(10, Exact, &event), S_OK);
        event->SetFlags(row.before);
        AddMarked(*wave, 10);
        EXPECT_EQ(Events(*wave)[0].flags, row.after) << int{row.before};
    }
}

TEST(AddMarkedEvent, LandsWhateverItsDeltaAndSetsTheLastDelta)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a', 9);
    AddMarked(*wave, 10, 'b', 3);
    EXPECT_EQ(Events(*wave)[0].value, unsigned{'b'});
    Add(*wave, 10, 'c', 2);
    EXPECT_EQ(Events(*wave)[0].value, unsigned{'b'});
    Add(*wave, 10, 'd', 3);
    EXPECT_EQ(Events(*wave)[0].value, unsigned{'d'});
}

TEST(InsertEvent, IsDeliberatelyNotImplemented)
{
    const WavePtr wave = WaveOf({10});
    const std::uint32_t value = 1;
    EXPECT_EQ(wave->InsertEvent(5, &value, sizeof value), E_NOTIMPL);
    EXPECT_THAT(Times(*wave), ElementsAre(10));
}

TEST(PendingEvents, AreInvisibleUntilTheyAreCommitted)
{
    const WavePtr wave = NewWave();
    Push(*wave, 10);
    EXPECT_EQ(wave->GetEventCount(), 0u);
    EXPECT_EQ(wave->GetLastTime(), -1);
    EXPECT_EQ(Find(*wave, 10, Exact), std::nullopt);
}

TEST(PendingEvents, AreCommittedInFrontInReverseOrder)
{
    const WavePtr wave = NewWave();
    Add(*wave, 40, 4);
    Push(*wave, 30, 3);
    Push(*wave, 20, 2);
    Push(*wave, 10, 1);
    wave->CommitPendingEvents();
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 1, 0}, SEvent{20, 2, 0}, SEvent{30, 3, 0}, SEvent{40, 4, 0}));
    wave->CommitPendingEvents();
    EXPECT_EQ(wave->GetEventCount(), 4u) << "the pending list is empty now";
}

TEST(PendingEvents, AreNotTestedForOrderOrEqualTimes)
{
    const WavePtr wave = NewWave();
    for (const long long time : {5, 5, 9, 1})
        Push(*wave, time);
    wave->CommitPendingEvents();
    EXPECT_THAT(Times(*wave), ElementsAre(1, 9, 5, 5));
}

TEST(PendingEvents, LeaveTheLastDeltaAlone)
{
    const WavePtr wave = NewWave();
    Add(*wave, 40, 'a', 5);
    Push(*wave, 10);
    wave->CommitPendingEvents();
    Add(*wave, 40, 'b', 4);
    EXPECT_EQ(Events(*wave)[1].value, unsigned{'a'});
}

TEST(PendingEvents, CanBeThrownAway)
{
    const WavePtr wave = NewWave();
    Push(*wave, 10);
    wave->ClearPendingEvents();
    wave->CommitPendingEvents();
    EXPECT_EQ(wave->GetEventCount(), 0u);
}

TEST(ClearEvents, KeepsPendingOnesAndForgetsTheDelta)
{
    const WavePtr wave = NewWave();
    Add(*wave, 40, 'a', 5);
    Push(*wave, 10, 'p');
    wave->ClearEvents();
    EXPECT_EQ(wave->GetEventCount(), 0u);
    wave->CommitPendingEvents();
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 'p', 0}));
    Add(*wave, 10, 'b', 0);
    EXPECT_EQ(Events(*wave)[0].value, unsigned{'b'}) << "delta 0 is not below the forgotten one";
}

TEST(FindEvent, FindsByMode)
{
    const WavePtr wave = WaveOf({10, 20});
    const struct {
        int mode;
        long long time;
        std::optional<std::uint32_t> found;
    } rows[] = {
        {Before, 10, std::nullopt},
        {Before, 11, 0},
        {Before, 20, 0},
        {Before, 21, 1},
        {AtOrBefore, 5, std::nullopt},
        {AtOrBefore, 15, 0},
        {AtOrBefore, 20, 1},
        {AtOrBefore, 25, 1},
        {After, 20, std::nullopt},
        {After, 9, 0},
        {After, 10, 1},
        {AtOrAfter, 25, std::nullopt},
        {AtOrAfter, 20, 1},
        {AtOrAfter, 11, 1},
        {Exact, 15, std::nullopt},
        {Exact, 10, 0},
        {5, 10, std::nullopt},
        {-1, 10, std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Find(*wave, row.time, row.mode), row.found) << "mode " << row.mode << " time " << row.time;
}

TEST(FindEvent, LeavesOutUntouchedIfThereIsNone)
{
    const WavePtr wave = WaveOf({10, 20});
    IEvent *event = nullptr;
    ASSERT_EQ(wave->FindEvent(10, Exact, &event), S_OK);
    IEvent *const found = event;
    EXPECT_EQ(wave->FindEvent(15, Exact, &event), E_FAIL);
    EXPECT_EQ(event, found);
}

TEST(FindEvent, RefusesANullOut)
{
    EXPECT_EQ(WaveOf({10})->FindEvent(10, Exact, nullptr), E_INVALIDARG);
}

// Random times between -3 and 20, rising, some of them equal.
std::vector<long long> NotFallingTimes(std::mt19937 &random)
{
    std::vector<long long> times(random() % 12);
    std::ranges::generate(times, [&random] { return static_cast<long long>(random() % 24) - 3; });
    std::ranges::sort(times);
    return times;
}

std::optional<std::uint32_t> Scan(const std::vector<long long> &times, long long time, int mode)
{
    const auto first = [&](auto matches) -> std::optional<std::uint32_t> {
        for (std::uint32_t i = 0; i < times.size(); ++i)
            if (matches(times[i]))
                return i;
        return std::nullopt;
    };
    const auto last = [&](auto matches) -> std::optional<std::uint32_t> {
        for (std::uint32_t i = static_cast<std::uint32_t>(times.size()); i-- > 0;)
            if (matches(times[i]))
                return i;
        return std::nullopt;
    };
    switch (mode) {
    case Exact: return first([time](long long t) { return t == time; });
    case Before: return last([time](long long t) { return t < time; });
    case After: return first([time](long long t) { return t > time; });
    case AtOrBefore: {
        const auto exact = first([time](long long t) { return t == time; });
        return exact ? exact : last([time](long long t) { return t < time; });
    }
    case AtOrAfter: return first([time](long long t) { return t >= time; });
    default: return std::nullopt;
    }
}

TEST(FindEvent, AgreesWithALinearScanInEveryMode)
{
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        const std::vector<long long> times = NotFallingTimes(random);
        const WavePtr wave = WaveWithEqualTimes(times);
        for (int mode = -1; mode <= 5; ++mode)
            for (long long time = -5; time <= 22; ++time)
                ASSERT_EQ(Find(*wave, time, mode), Scan(times, time, mode))
                    << testing::PrintToString(times) << " mode " << mode << " time " << time;
    }
}

TEST(FindEvent, ComparesTheWholeRangeOfTimes)
{
    constexpr long long Lowest = std::numeric_limits<long long>::min();
    constexpr long long Highest = std::numeric_limits<long long>::max();
    const WavePtr wave = WaveOf({Lowest, 0, Highest});
    EXPECT_EQ(Find(*wave, Lowest, Exact), 0u);
    EXPECT_EQ(Find(*wave, Lowest, Before), std::nullopt);
    EXPECT_EQ(Find(*wave, Highest, AtOrAfter), 2u);
    EXPECT_EQ(Find(*wave, Highest, After), std::nullopt);
}

TEST(DeleteEvent, RemovesOneEventOfThatTime)
{
    const WavePtr wave = WaveWithEqualTimes({10, 20, 20, 30});
    EXPECT_EQ(wave->DeleteEvent(15), E_FAIL);
    EXPECT_EQ(wave->DeleteEvent(35), E_FAIL);
    EXPECT_EQ(wave->DeleteEvent(20), S_OK);
    EXPECT_THAT(Events(*wave), ElementsAre(SEvent{10, 0, 0}, SEvent{20, 2, 0}, SEvent{30, 3, 0}));
    EXPECT_EQ(NewWave()->DeleteEvent(0), E_FAIL);
}

TEST(DeleteEvent, LeavesTheLastDeltaAlone)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a', 0);
    Add(*wave, 20, 'b', 5);
    wave->DeleteEvent(20);
    Add(*wave, 10, 'c', 4);
    EXPECT_EQ(Events(*wave)[0].value, unsigned{'a'});
}

TEST(DeleteEvents, RemovesAnInclusiveRangeInEitherOrder)
{
    const struct {
        long long first, last;
        long result;
        std::vector<long long> left;
    } rows[] = {
        {10, 30, S_OK, {5, 40}},
        {30, 10, S_OK, {5, 40}},
        {11, 29, S_OK, {5, 10, 30, 40}},
        {-1, 10, S_OK, {20, 30, 40}},
        {30, -1, S_OK, {5, 10, 20}},
        {-1, -1, S_OK, {}},
        {12, 18, S_OK, {5, 10, 20, 30, 40}},  // nothing lies between
        {-1, 4, S_OK, {5, 10, 20, 30, 40}},
        {50, -1, E_FAIL, {5, 10, 20, 30, 40}},
        {50, 60, E_FAIL, {5, 10, 20, 30, 40}},
        {60, 50, E_FAIL, {5, 10, 20, 30, 40}},
    };
    for (const auto &row : rows) {
        const WavePtr wave = WaveOf({5, 10, 20, 30, 40});
        EXPECT_EQ(wave->DeleteEvents(row.first, row.last), row.result) << row.first << ' ' << row.last;
        EXPECT_EQ(Times(*wave), row.left) << row.first << ' ' << row.last;
    }
}

TEST(DeleteEvents, FailsOnAnEmptyWave)
{
    EXPECT_EQ(NewWave()->DeleteEvents(-1, -1), E_FAIL);
    EXPECT_EQ(NewWave()->DeleteEvents(0, 9), E_FAIL);
}

TEST(DeleteEvents, AgreesWithALinearScan)
{
    std::mt19937 random(2);
    for (int round = 0; round < 2000; ++round) {
        const std::vector<long long> times = NotFallingTimes(random);
        const long long first = static_cast<long long>(random() % 26) - 2;
        const long long last = static_cast<long long>(random() % 26) - 2;
        const bool swap = first != -1 && last != -1 && last < first;
        const long long low = swap ? last : first;
        const long long high = swap ? first : last;
        std::vector<long long> left;
        for (const long long time : times)
            if ((low != -1 && time < low) || (high != -1 && time > high))
                left.push_back(time);
        const bool none = std::ranges::none_of(times, [low](long long time) { return low == -1 || time >= low; });

        const WavePtr wave = WaveWithEqualTimes(times);
        ASSERT_EQ(wave->DeleteEvents(first, last), none ? E_FAIL : S_OK)
            << testing::PrintToString(times) << first << ' ' << last;
        ASSERT_EQ(Times(*wave), left) << testing::PrintToString(times) << first << ' ' << last;
    }
}

TEST(DeleteEvents, IsSafeOnTimesThatDoNotRise)
{
    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        std::vector<long long> times(random() % 12);
        std::ranges::generate(times, [&random] { return static_cast<long long>(random() % 9); });
        const WavePtr wave = WaveWithEqualTimes(times);
        wave->DeleteEvents(static_cast<long long>(random() % 9), static_cast<long long>(random() % 9));
        ASSERT_LE(wave->GetEventCount(), times.size());
    }
}

TEST(GetEventValue, CopiesTheValueOfAnIndex)
{
    const WavePtr wave = NewWave();
    Add(*wave, 10, 'a');
    Add(*wave, 20, 'b');
    std::uint32_t value = 0;
    EXPECT_EQ(wave->GetEventValue(1, &value, sizeof value), S_OK);
    EXPECT_EQ(value, unsigned{'b'});
}

TEST(GetEventValue, RefusesAnIndexBeyondTheEndAndASmallBuffer)
{
    for (const unsigned width : {4u, 8u}) {
        const WavePtr wave = NewWave(width);
        const std::uint64_t value = 7;
        wave->AddEvent(0, 0, &value, sizeof value);
        std::uint64_t read = 9;
        EXPECT_EQ(wave->GetEventValue(1, &read, sizeof read), E_INVALIDARG);
        EXPECT_EQ(wave->GetEventValue(0xFFFFFFFF, &read, sizeof read), E_INVALIDARG);
        EXPECT_EQ(wave->GetEventValue(0, &read, width - 1), E_INVALIDARG);
        EXPECT_EQ(wave->GetEventValue(0, &read, 0), E_INVALIDARG);
        EXPECT_EQ(read, 9u);
        EXPECT_EQ(wave->GetEventValue(0, nullptr, width), E_FAIL);
    }
}

TEST(AnEvent, ReplacesItsValueOnlyFromABufferOfItsSize)
{
    for (const unsigned width : {4u, 8u}) {
        const WavePtr wave = NewWave(width);
        const std::uint64_t old = 7;
        const std::uint64_t value = 8;
        wave->AddEvent(0, 0, &old, sizeof old);
        IEvent *event = nullptr;
        ASSERT_EQ(wave->FindEvent(0, Exact, &event), S_OK);
        EXPECT_EQ(event->GetValueSize(), width);
        EXPECT_FALSE(event->SetValue(&value, width - 1));
        EXPECT_FALSE(event->SetValue(&value, width + 1));
        EXPECT_FALSE(event->SetValue(nullptr, width));
        EXPECT_EQ(std::memcmp(event->GetValuePtr(), &old, width), 0);
        EXPECT_TRUE(event->SetValue(&value, width));
        EXPECT_EQ(std::memcmp(event->GetValuePtr(), &value, width), 0);
    }
}

TEST(AnEvent, GivesItsValueToABufferThatIsLargeEnough)
{
    const WavePtr wave = NewWave();
    Add(*wave, 0, 7);
    IEvent *event = nullptr;
    ASSERT_EQ(wave->FindEvent(0, Exact, &event), S_OK);
    std::uint64_t value = 0;
    EXPECT_EQ(event->GetValue(&value, 3), 0u);
    EXPECT_EQ(event->GetValue(nullptr, 4), 0u);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(event->GetValue(&value, 8), 4u);
    EXPECT_EQ(value, 7u);
}

TEST(AnEvent, StoresAnyFlags)
{
    const WavePtr wave = WaveOf({0});
    IEvent *event = nullptr;
    ASSERT_EQ(wave->FindEvent(0, Exact, &event), S_OK);
    EXPECT_EQ(event->SetFlags(0xFF), 0xFF);
    EXPECT_EQ(event->GetFlags(), 0xFF);
}

TEST(AnEvent, StandsInsideTheWaveSoThatAChangeThroughItIsSeen)
{
    const WavePtr wave = WaveOf({0});
    IEvent *event = nullptr;
    ASSERT_EQ(wave->FindEvent(0, Exact, &event), S_OK);
    const std::uint32_t value = 99;
    std::memcpy(event->GetValuePtr(), &value, sizeof value);
    EXPECT_EQ(Events(*wave)[0].value, 99u);
    IEvent *again = nullptr;
    wave->FindEvent(5, AtOrBefore, &again);
    EXPECT_EQ(again, event);
}

TEST(AnEventIterator, StandsOnTheFirstEventAndCurrentDoesNotMove)
{
    const WavePtr wave = WaveOf({10, 20});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    for (int i = 0; i < 2; ++i) {
        IEvent *event = nullptr;
        ASSERT_EQ(iterator->Current(&event), S_OK);
        EXPECT_EQ(event->GetTime(), 10);
    }
    EXPECT_EQ(iterator->GetCurrentTime(), 10);
    EXPECT_EQ(iterator->Current(nullptr), E_INVALIDARG);
}

TEST(AnEventIterator, FetchesUpToACount)
{
    const WavePtr wave = WaveOf({10, 20, 30});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    IEvent *events[4] = {};
    unsigned fetched = 9;
    EXPECT_EQ(iterator->Next(0, events, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(iterator->Next(2, events, &fetched), S_OK);
    EXPECT_EQ(fetched, 2u);
    EXPECT_EQ(events[1]->GetTime(), 20);
    EXPECT_EQ(iterator->GetCurrentTime(), 30);
    EXPECT_EQ(iterator->Next(4, events, &fetched), S_OK);
    EXPECT_EQ(fetched, 1u);
    EXPECT_EQ(events[0]->GetTime(), 30);
    EXPECT_EQ(events[1]->GetTime(), 20) << "only what was fetched is stored";
    EXPECT_EQ(iterator->Next(1, events, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0u);
    EXPECT_EQ(iterator->GetCurrentTime(), -1);
    EXPECT_EQ(iterator->Current(events), E_FAIL);
    EXPECT_EQ(iterator->Next(3, nullptr, &fetched), S_FALSE);
}

TEST(AnEventIterator, KnowsItsNeighbours)
{
    const WavePtr wave = WaveOf({10, 20});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    IEvent *event = nullptr;
    const struct {
        int hasPrevious, hasNext;
    } positions[] = {{0, 1}, {1, 0}, {1, 1}};  // deliberate: 1 when exhausted
    for (const auto &position : positions) {
        EXPECT_EQ(iterator->HasPrevious(), position.hasPrevious);
        EXPECT_EQ(iterator->HasNext(), position.hasNext);
        EXPECT_EQ(iterator->HasEvents(), 1);
        iterator->Next(1, &event, nullptr);
    }
}

TEST(AnEventIterator, OfAnEmptyWaveHasANextButNoEvents)  // deliberate
{
    const WavePtr wave = NewWave();
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    EXPECT_EQ(iterator->HasNext(), 1);
    EXPECT_EQ(iterator->HasPrevious(), 0);
    EXPECT_EQ(iterator->HasEvents(), 0);
    EXPECT_EQ(iterator->GetCurrentTime(), -1);
    IEvent *event = nullptr;
    EXPECT_EQ(iterator->Current(&event), E_FAIL);
}

TEST(AnEventIterator, GoesBackToTheFirstEvent)
{
    const WavePtr wave = WaveOf({10, 20});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    IEvent *events[2] = {};
    iterator->Next(2, events, nullptr);
    iterator->Reset();
    EXPECT_EQ(iterator->GetCurrentTime(), 10);
}

TEST(AnEventIterator, StaysWhereItIsIfASeekFails)
{
    const WavePtr wave = WaveOf({10, 20});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    EXPECT_EQ(iterator->Seek(15, AtOrAfter), S_OK);
    EXPECT_EQ(iterator->GetCurrentTime(), 20);
    EXPECT_EQ(iterator->Seek(15, Exact), E_FAIL);
    EXPECT_EQ(iterator->Seek(20, After), E_FAIL);
    EXPECT_EQ(iterator->Seek(20, 5), E_FAIL);
    EXPECT_EQ(iterator->GetCurrentTime(), 20);
}

TEST(AnEventIterator, SeeksWhatFindEventFinds)
{
    std::mt19937 random(4);
    for (int round = 0; round < 200; ++round) {
        const std::vector<long long> times = NotFallingTimes(random);
        const WavePtr wave = WaveWithEqualTimes(times);
        const TReference<IEventIterator> iterator = EventsOf(*wave);
        for (int mode = 0; mode <= 5; ++mode)
            for (long long time = -5; time <= 22; ++time) {
                iterator->Reset();
                const auto expected = Scan(times, time, mode);
                ASSERT_EQ(iterator->Seek(time, mode), expected ? S_OK : E_FAIL);
                IEvent *event = nullptr;
                if (iterator->Current(&event) == S_OK) {
                    ASSERT_EQ(Show(*event).value, expected.value_or(0)) << mode << ' ' << time;
                }
            }
    }
}

TEST(AnEventIterator, HoldsNoReferenceOnItsWave)
{
    const WavePtr wave = WaveOf({10});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    EXPECT_EQ(ReferencesTo(*wave), 1u);
    EXPECT_EQ(ReferencesTo(*iterator), 1u);
}

TEST(AnEventIterator, MayBeReleasedAfterItsWave)
{
    WavePtr wave = WaveOf({10});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    wave.reset();
}

TEST(AnEventIterator, IsAComponentOfItsOwn)
{
    const WavePtr wave = NewWave();
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    void *out = nullptr;
    EXPECT_EQ(iterator->QueryInterface(IID_ISignalWave, &out), E_NOINTERFACE);
    ASSERT_EQ(iterator->QueryInterface(IID_IEventIterator, &out), S_OK);
    EXPECT_EQ(iterator->Release(), 1u);
    EXPECT_EQ(wave->CreateEventIterator(nullptr), E_INVALIDARG);
}

TEST(AnEventIterator, NeverReadsFreedMemoryAfterAChangeOfTheWave)  // its position is then just any
{
    const WavePtr wave = WaveOf({10, 20, 30});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    iterator->Seek(30, Exact);
    wave->DeleteEvents(15, -1);
    IEvent *event = nullptr;
    EXPECT_EQ(iterator->Next(1, &event, nullptr), S_FALSE);
    EXPECT_EQ(iterator->GetCurrentTime(), -1);
    for (long long time = 100; time < 200; ++time)
        Add(*wave, time);
    EXPECT_EQ(iterator->Current(&event), S_OK);
}

TEST(AWave, MayBeSharedAndEndsWithItsLastReference)
{
    WavePtr wave = WaveOf({10});
    WavePtr second = Share(wave.get());
    EXPECT_EQ(ReferencesTo(*wave), 2u);
    wave.reset();
    EXPECT_THAT(Times(*second), ElementsAre(10));
}

TEST(AWave, KeepsItsEventsInOneRunOfMemory)
{
    const WavePtr wave = WaveOf({10, 20, 30, 40});
    const TReference<IEventIterator> iterator = EventsOf(*wave);
    IEvent *events[4] = {};
    ASSERT_EQ(iterator->Next(4, events, nullptr), S_OK);
    const auto address = [&events](int i) { return static_cast<const char *>(events[i]->GetValuePtr()); };
    for (int i = 1; i < 3; ++i)
        EXPECT_EQ(address(i + 1) - address(i), address(1) - address(0));
}

// A wave against a plain list of records that does the same, step by step.
TEST(AWave, AgreesWithAPlainListOverRandomWrites)
{
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        const WavePtr wave = NewWave();
        std::vector<SEvent> list, pending;
        unsigned lastDelta = 0;
        long long time = 0;
        for (int step = 0; step < 60; ++step) {
            const auto value = static_cast<std::uint32_t>(random());
            const unsigned delta = random() % 4;
            time += random() % 2;
            const bool atLast = !list.empty() && list.back().time == time;
            switch (random() % 16) {
            case 0:
                wave->ClearEvents();
                list.clear();
                lastDelta = 0;
                break;
            case 1:
                wave->CommitPendingEvents();
                list.insert(list.begin(), pending.rbegin(), pending.rend());
                pending.clear();
                break;
            case 2:
            case 3:
                Push(*wave, time, value);
                pending.push_back({time, value, 0});
                break;
            case 4:
            case 5:
            case 6:
                AddMarked(*wave, time, value, delta);
                if (atLast)
                    list.back() = {time, value, (list.back().flags & 1) != 0 ? list.back().flags : 3};
                else
                    list.push_back({time, value, 1});
                lastDelta = delta;
                break;
            default:
                Add(*wave, time, value, delta);
                if (atLast && delta < lastDelta)
                    break;
                if (atLast)
                    list.back().value = value;
                else
                    list.push_back({time, value, 0});
                lastDelta = delta;
            }
            ASSERT_EQ(Events(*wave), list) << "round " << round << " step " << step;
        }
    }
}

}  // namespace
