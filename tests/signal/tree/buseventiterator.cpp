#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <vector>

#include "signal/fakesignal.h"

namespace {

using testing::ElementsAre;

enum { Exact, Before, After, AtOrBefore, AtOrAfter };

using BusPtr = TReference<IBusEventIterator>;
using CTimes = std::vector<long long>;

BusPtr BusOf(ISignal &signal)
{
    IBusEventIterator *iterator = nullptr;
    EXPECT_EQ(CreateBusEventIterator(&signal, &iterator), S_OK);
    return BusPtr(iterator);
}

void AddTimes(ISignal &leaf, const CTimes &times)
{
    for (const long long time : times) {
        const auto value = static_cast<std::uint32_t>(time);
        leaf.GetWave()->AddEvent(time, 0, &value, sizeof value);
    }
}

// A bus of leaves with events at the times given; the value of an event is its time.
struct SBus {
    explicit SBus(const std::vector<CTimes> &leafTimes)
    {
        std::vector<CFakeSignal *> pointers;
        for (const CTimes &times : leafTimes) {
            leaves.push_back(NewFake("leaf"));
            AddTimes(*leaves.back(), times);
            pointers.push_back(leaves.back().get());
        }
        signal = NewFakeBus("bus", pointers);
    }

    std::vector<FakePtr> leaves;
    FakePtr signal;
};

// The times of the events that the leaves show; nothing for a leaf that shows none.
std::vector<std::optional<long long>> Shown(IBusEventIterator &bus)
{
    std::vector<std::optional<long long>> shown;
    IBusEvent &event = *bus.GetEvent();
    for (unsigned i = 0; i < event.GetElementCount(); ++i) {
        std::uint32_t value = 0;
        const bool hasValue = event.GetElementValue(i, &value, sizeof value) != 0;
        EXPECT_EQ(hasValue, event.GetElementValuePtr(i) != nullptr);
        shown.push_back(hasValue ? std::optional<long long>(static_cast<std::int32_t>(value)) : std::nullopt);
    }
    return shown;
}

CTimes BusTimes(IBusEventIterator &bus)
{
    CTimes times;
    while (bus.Next() == S_OK)
        times.push_back(bus.GetEvent()->GetTime());
    EXPECT_EQ(bus.GetEvent()->GetTime(), -1);
    return times;
}

TEST(CreateBusEventIterator, WantsASignalWithChildren)
{
    IBusEventIterator *iterator = nullptr;
    EXPECT_EQ(CreateBusEventIterator(nullptr, &iterator), E_INVALIDARG);
    EXPECT_EQ(CreateBusEventIterator(NewFake("leaf").get(), &iterator), E_INVALIDARG);
    EXPECT_EQ(CreateBusEventIterator(MakeSignal(StdLogicType).get(), &iterator), E_INVALIDARG);
    EXPECT_EQ(iterator, nullptr);
    EXPECT_EQ(CreateBusEventIterator(NewFakeBus("bus", {}).get(), nullptr), E_INVALIDARG);
}

TEST(CreateBusEventIterator, FailsIfALeafGivesNoIterator)
{
    const SBus bus({{0}, {0}, {0}});
    bus.leaves[1]->m_givesIterators = false;
    IBusEventIterator *iterator = nullptr;
    EXPECT_EQ(CreateBusEventIterator(bus.signal.get(), &iterator), E_FAIL);
    EXPECT_EQ(iterator, nullptr);
}

TEST(CreateBusEventIterator, HandsOutOneReferenceAndHoldsNoneOnSignalsAndWaves)
{
    const SBus bus({CTimes{0}});
    const unsigned signalReferences = ReferencesTo(*bus.signal);
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(ReferencesTo(*iterator), 1u);
    EXPECT_EQ(ReferencesTo(*bus.signal), signalReferences);
    EXPECT_EQ(ReferencesTo(*bus.leaves[0]->m_wave), 1u);
    void *out = nullptr;
    EXPECT_EQ(iterator->QueryInterface(IID_IEventIterator, &out), E_NOINTERFACE);
    ASSERT_EQ(iterator->QueryInterface(IID_IBusEventIterator, &out), S_OK);
    iterator->Release();
}

TEST(CreateBusEventIterator, MayEndAfterTheSignal)
{
    BusPtr iterator;
    {
        const SBus bus({{0}, {1}});
        iterator = BusOf(*bus.signal);
    }
}

TEST(BusEventIterator, ShowsNothingBeforeTheFirstMove)
{
    const SBus bus({{5}, {7}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), -1);
    EXPECT_THAT(Shown(*iterator), ElementsAre(std::nullopt, std::nullopt));
    EXPECT_EQ(iterator->GetEvent()->GetElementSize(0), 4u);
}

TEST(BusEventIterator, MergesTheLeavesByTime)
{
    const SBus bus({{0, 10}, {5}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->Next(), S_OK);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), 0);
    EXPECT_THAT(Shown(*iterator), ElementsAre(0, std::nullopt));
    EXPECT_EQ(iterator->Next(), S_OK);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), 5);
    EXPECT_THAT(Shown(*iterator), ElementsAre(0, 5)) << "the first leaf keeps its event";
    EXPECT_EQ(iterator->Next(), S_OK);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), 10);
    EXPECT_THAT(Shown(*iterator), ElementsAre(10, 5));
    EXPECT_EQ(iterator->Next(), S_FALSE);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), -1);
    EXPECT_THAT(Shown(*iterator), ElementsAre(10, 5)) << "the last events stay";
    EXPECT_EQ(iterator->Next(), S_FALSE);
}

TEST(BusEventIterator, AdvancesEveryLeafThatChangesAtOneTime)
{
    const SBus bus({{0, 5, 9}, {0, 5}, {5, 9}});
    EXPECT_THAT(BusTimes(*BusOf(*bus.signal)), ElementsAre(0, 5, 9));
}

TEST(BusEventIterator, EndsAtOnceIfOneLeafHasNoEvents)  // deliberate
{
    for (const std::size_t empty : {0u, 1u, 2u}) {
        std::vector<CTimes> times(3, {0, 1});
        times[empty].clear();
        const SBus bus(times);
        EXPECT_EQ(BusOf(*bus.signal)->Next(), S_FALSE) << empty;
    }
}

TEST(BusEventIterator, HasNothingToShowForABusWithoutLeaves)
{
    const FakePtr neither = NewFake("neither");  // without wave and children it is no leaf
    neither->m_wave.reset();
    const FakePtr bus = NewFakeBus("bus", {neither.get()});
    const BusPtr iterator = BusOf(*bus);
    EXPECT_EQ(iterator->Next(), S_FALSE);
    EXPECT_EQ(iterator->GetTotalValueSize(), 0u);
    EXPECT_EQ(iterator->GetEvent()->GetElementCount(), 0u);
    EXPECT_EQ(iterator->GetEvent()->GetFlags(), 1);
    EXPECT_EQ(iterator->Seek(0, Exact), E_FAIL) << "there is no hit";
    EXPECT_EQ(iterator->Seek(0, AtOrBefore), S_OK) << "and no leaf that fails";
}

TEST(BusEventIterator, FindsLeavesDepthFirst)
{
    const SBus inner({{2}, {3}});
    const FakePtr first = NewFake("first"), last = NewFake("last");
    AddTimes(*first, {1});
    AddTimes(*last, {4});
    const FakePtr bus = NewFakeBus("bus", {first.get(), inner.signal.get(), last.get()});
    const BusPtr iterator = BusOf(*bus);
    iterator->Reset();
    EXPECT_THAT(Shown(*iterator), ElementsAre(1, 2, 3, 4));
}

TEST(BusEventIterator, GoesBackInFrontOfTheFirstChange)
{
    const SBus bus({{0, 10}, {5}});
    const BusPtr iterator = BusOf(*bus.signal);
    BusTimes(*iterator);
    iterator->Reset();
    EXPECT_EQ(iterator->GetEvent()->GetTime(), -1);
    EXPECT_THAT(Shown(*iterator), ElementsAre(0, 5)) << "the first events of the leaves";
    EXPECT_THAT(BusTimes(*iterator), ElementsAre(0, 5, 10));
}

TEST(BusEventIterator, ShowsNoEventOfAnEmptyLeafAfterAReset)
{
    const SBus bus({{3}, {}});
    const BusPtr iterator = BusOf(*bus.signal);
    iterator->Reset();
    EXPECT_THAT(Shown(*iterator), ElementsAre(3, std::nullopt));
}

TEST(SeekOfABus, TakesModeExactForAtOrBeforeWithAHitInOneLeaf)
{
    const SBus bus({{0, 10}, {5}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->Seek(7, Exact), E_FAIL);
    EXPECT_THAT(Shown(*iterator), ElementsAre(0, 5)) << "the leaves stand at or before 7";
    EXPECT_EQ(iterator->Seek(5, Exact), S_OK);
    EXPECT_THAT(Shown(*iterator), ElementsAre(0, 5));
    EXPECT_EQ(iterator->Seek(10, Exact), S_OK);
    EXPECT_THAT(Shown(*iterator), ElementsAre(10, 5));
}

TEST(SeekOfABus, LeavesTheTimeAlone)  // deliberate
{
    const SBus bus({{0, 10}, {5}});
    const BusPtr iterator = BusOf(*bus.signal);
    iterator->Next();
    iterator->Next();
    EXPECT_EQ(iterator->Seek(10, AtOrBefore), S_OK);
    EXPECT_EQ(iterator->GetEvent()->GetTime(), 5);
}

TEST(SeekOfABus, GoesOnFromWhereItStands)
{
    const SBus bus({{0, 10, 20}, {5, 15}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->Seek(12, AtOrBefore), S_OK);
    EXPECT_THAT(BusTimes(*iterator), ElementsAre(5, 10, 15, 20)) << "each leaf stands on its event, not behind it";
}

TEST(SeekOfABus, StopsAtTheFirstLeafThatFindsNothing)
{
    const SBus bus({{0, 10}, {5}, {0, 10}});
    const BusPtr iterator = BusOf(*bus.signal);
    iterator->Reset();
    EXPECT_EQ(iterator->Seek(7, After), E_FAIL);
    EXPECT_THAT(Shown(*iterator), ElementsAre(10, 5, 0)) << "the last leaf was not asked";
    EXPECT_EQ(iterator->Seek(0, 9), E_FAIL) << "an unknown mode finds nothing";
}

TEST(SeekOfABus, ClearsTheEventOfAnEmptyLeaf)
{
    const SBus bus({{3}, {}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->Seek(3, AtOrBefore), E_FAIL);
    EXPECT_THAT(Shown(*iterator), ElementsAre(3, std::nullopt));
}

TEST(SeekOfABus, LeavesExhaustedLeavesWithoutEventOnFailure)
{
    const SBus bus({{0}, {5}});
    const BusPtr iterator = BusOf(*bus.signal);
    BusTimes(*iterator);
    EXPECT_EQ(iterator->Seek(-3, AtOrBefore), E_FAIL);
    EXPECT_THAT(Shown(*iterator), ElementsAre(std::nullopt, std::nullopt)) << "they stood behind their last events";
}

TEST(BusEvent, IsOneObjectForTheLifeOfItsIterator)
{
    const SBus bus({CTimes{0, 10}});
    const BusPtr iterator = BusOf(*bus.signal);
    IBusEvent *const event = iterator->GetEvent();
    iterator->Next();
    EXPECT_EQ(iterator->GetEvent(), event);
    EXPECT_EQ(event->GetTime(), 0);
}

TEST(BusEvent, AnswersNothingBeyondTheEnd)
{
    const SBus bus({{0}, {0}});
    const BusPtr iterator = BusOf(*bus.signal);
    iterator->Next();
    IBusEvent &event = *iterator->GetEvent();
    EXPECT_EQ(event.GetElementCount(), 2u);
    EXPECT_EQ(event.GetElementCount2(), 2u);
    for (const unsigned index : {2u, 0xFFFFFFFFu}) {
        std::uint32_t value = 9;
        EXPECT_EQ(event.GetElementSize(index), 0u);
        EXPECT_EQ(event.GetElementValue(index, &value, sizeof value), 0u);
        EXPECT_EQ(event.GetElementValuePtr(index), nullptr);
        EXPECT_EQ(value, 9u);
    }
}

TEST(BusEvent, CopiesAValueOnlyIntoABufferThatIsLargeEnough)
{
    const SBus bus({CTimes{7}});
    const BusPtr iterator = BusOf(*bus.signal);
    iterator->Next();
    std::uint32_t value = 0;
    EXPECT_EQ(iterator->GetEvent()->GetElementValue(0, &value, 3), 0u);
    EXPECT_EQ(iterator->GetEvent()->GetElementValue(0, nullptr, 4), 0u);
    EXPECT_EQ(iterator->GetEvent()->GetElementValue(0, &value, 4), 4u);
    EXPECT_EQ(value, 7u);
}

TEST(BusEvent, AddsUpTheValueSizes)
{
    const TReference<ISignal> vector = MakeSignal(VectorType(3));
    ASSERT_NE(vector, nullptr);
    EXPECT_EQ(BusOf(*vector)->GetTotalValueSize(), 12u);

    const SBus mixed({{0}, {0}});
    mixed.leaves[1]->m_wave = NewWave(8);
    const BusPtr iterator = BusOf(*mixed.signal);
    EXPECT_EQ(iterator->GetTotalValueSize(), 12u);
    EXPECT_EQ(iterator->GetEvent()->GetElementSize(1), 8u);
}

TEST(BusEvent, MergesTheFlagsOfTheEventsAtItsTime)
{
    const struct {
        std::vector<int> flags;
        int merged;
    } rows[] = {
        // -1: no event at this time
        {{1, 1}, 1}, {{0, 1}, 0},  {{0, 0}, 0},  {{3, 1}, 3},  {{3, 0}, 2},  {{3, 3}, 3},
        {{2, 0}, 2}, {{1, -1}, 1}, {{0, -1}, 0}, {{3, -1}, 3}, {{4, -1}, 0},
    };
    for (const auto &row : rows) {
        std::vector<CTimes> times;
        for (const int flags : row.flags)
            times.push_back(flags < 0 ? CTimes{0} : CTimes{0, 5});
        const SBus bus(times);
        for (std::size_t i = 0; i < row.flags.size(); ++i) {
            IEvent *event = nullptr;
            if (bus.leaves[i]->m_wave->FindEvent(5, Exact, &event) == S_OK)
                event->SetFlags(static_cast<unsigned char>(row.flags[i]));
        }
        const BusPtr iterator = BusOf(*bus.signal);
        iterator->Next();
        iterator->Next();
        EXPECT_EQ(iterator->GetEvent()->GetTime(), 5);
        EXPECT_EQ(iterator->GetEvent()->GetFlags(), row.merged) << testing::PrintToString(row.flags);
    }
}

TEST(BusEvent, CountsAsMarkedWhereNoEventHasItsTime)
{
    const SBus bus({{0}, {0}});
    const BusPtr iterator = BusOf(*bus.signal);
    EXPECT_EQ(iterator->GetEvent()->GetFlags(), 1) << "no events at all";
    iterator->Reset();
    EXPECT_EQ(iterator->GetEvent()->GetFlags(), 1) << "the events shown have another time than -1";
}

TEST(BusEventIterator, WalksARealSignalWhoseLeavesShareAWave)
{
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    ASSERT_NE(vector, nullptr);
    vector->SetName("v");
    container->Add(vector.get());
    const int handles[] = {7, 7};
    ASSERT_EQ(container->SetHandles("v", handles, 2), S_OK);
    ISignal *leaf = nullptr;
    vector->GetChildren()->GetAt(0, &leaf);
    AddTimes(*leaf, {0, 5});
    IBusEventIterator *created = nullptr;
    ASSERT_EQ(vector->CreateBusEventIterator(&created), S_OK);
    const BusPtr iterator(created);
    EXPECT_THAT(BusTimes(*iterator), ElementsAre(0, 5));
    EXPECT_THAT(Shown(*iterator), ElementsAre(5, 5));
}

// Random waves against a scan of all times: the bus times are all times of all leaves, and each leaf shows its latest
// change at or before them.
TEST(BusEventIterator, AgreesWithAScanOverAllLeaves)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::vector<CTimes> leaves(1 + random() % 5);
        std::map<long long, int> all;
        for (CTimes &times : leaves) {
            std::map<long long, int> own;
            for (std::size_t i = 0; i < 1 + random() % 8; ++i)
                ++own[static_cast<long long>(random() % 20)];
            for (const auto &[time, count] : own) {
                times.push_back(time);
                ++all[time];
            }
        }
        const SBus bus(leaves);
        const BusPtr iterator = BusOf(*bus.signal);
        for (const auto &[time, count] : all) {
            ASSERT_EQ(iterator->Next(), S_OK);
            ASSERT_EQ(iterator->GetEvent()->GetTime(), time);
            std::vector<std::optional<long long>> expected;
            for (const CTimes &times : leaves) {
                const auto behind = std::ranges::upper_bound(times, time);
                expected.push_back(behind != times.begin() ? std::optional(behind[-1]) : std::nullopt);
            }
            ASSERT_EQ(Shown(*iterator), expected);
        }
        ASSERT_EQ(iterator->Next(), S_FALSE);
    }
}

TEST(SeekOfABus, AgreesWithTheSearchesOfItsLeaves)
{
    std::mt19937 random(2);
    for (int round = 0; round < 200; ++round) {
        std::vector<CTimes> leaves(1 + random() % 4);
        for (CTimes &times : leaves)
            for (long long time = 0; time < 12; ++time)
                if (random() % 3 == 0)
                    times.push_back(time);
        const SBus bus(leaves);
        const BusPtr iterator = BusOf(*bus.signal);
        for (int mode = 0; mode <= 5; ++mode)
            for (long long time = -1; time <= 13; ++time) {
                iterator->Reset();
                long expected = S_OK;
                bool hit = false;
                std::vector<std::optional<long long>> shown;
                for (std::size_t i = 0; i < leaves.size(); ++i) {
                    IEvent *event = nullptr;
                    if (expected == S_OK)
                        expected = bus.leaves[i]->m_wave->FindEvent(time, mode == Exact ? +AtOrBefore : mode, &event);
                    hit = hit || (event != nullptr && event->GetTime() == time);
                    if (event != nullptr)
                        shown.emplace_back(event->GetTime());
                    else
                        shown.push_back(leaves[i].empty() ? std::nullopt : std::optional(leaves[i][0]));
                }
                if (mode == Exact && expected == S_OK && !hit)
                    expected = E_FAIL;
                ASSERT_EQ(iterator->Seek(time, mode), expected) << mode << ' ' << time;
                ASSERT_EQ(Shown(*iterator), shown) << mode << ' ' << time;
            }
    }
}

// The rules of a bus by a look at all leaves in each step, over iterators of its own.
class CPlainBus {
public:
    explicit CPlainBus(const SBus &bus)
    {
        for (const FakePtr &leaf : bus.leaves) {
            IEventIterator *iterator = nullptr;
            leaf->CreateEventIterator(&iterator);
            m_iterators.emplace_back(iterator);
        }
        events.resize(m_iterators.size());
    }

    long Next()
    {
        time = NextTime();
        if (time == -1)
            return S_FALSE;
        for (std::size_t i = 0; i < m_iterators.size(); ++i) {
            const long long current = m_iterators[i]->GetCurrentTime();
            IEvent *event = nullptr;
            if (current != -1 && current <= time && m_iterators[i]->Next(1, &event, nullptr) == S_OK)
                events[i] = event;
        }
        return S_OK;
    }

    void Reset()
    {
        for (const auto &iterator : m_iterators)
            iterator->Reset();
        ShowCurrent();
        time = -1;
    }

    void Seek(long long to, int mode)
    {
        long result = S_OK;
        for (std::size_t i = 0; i < m_iterators.size() && result >= 0; ++i)
            result = m_iterators[i]->Seek(to, mode);
        ShowCurrent();
    }

    std::vector<std::optional<long long>> Shown() const
    {
        std::vector<std::optional<long long>> shown;
        for (IEvent *event : events)
            shown.push_back(event != nullptr ? std::optional(event->GetTime()) : std::nullopt);
        return shown;
    }

    long long time = -1;
    std::vector<IEvent *> events;

private:
    long long NextTime() const
    {
        long long next = -1;
        for (const auto &iterator : m_iterators) {
            if (iterator->HasEvents() == 0)
                return -1;
            const long long current = iterator->GetCurrentTime();
            next = current != -1 && (next == -1 || current < next) ? current : next;
        }
        return next;
    }

    void ShowCurrent()
    {
        for (std::size_t i = 0; i < m_iterators.size(); ++i)
            if (m_iterators[i]->Current(&events[i]) < 0)
                events[i] = nullptr;
    }

    std::vector<TReference<IEventIterator>> m_iterators;
};

CTimes RandomTimes(std::mt19937 &random, long long distance)
{
    CTimes times;
    long long time = static_cast<long long>(random() % 5) - 3;
    for (auto count = 1 + random() % 20; count-- > 0;
         time += 1 + static_cast<long long>(random() % static_cast<unsigned long>(distance)))
        times.push_back(time);
    return times;
}

void ChangeAWave(const SBus &bus, std::mt19937 &random)
{
    ISignalWave &wave = *bus.leaves[random() % bus.leaves.size()]->GetWave();
    const long long time = static_cast<long long>(random() % 300);
    const std::uint32_t value = static_cast<std::uint32_t>(time);
    switch (random() % 40) {
    case 0: wave.ClearEvents(); break;
    case 1: wave.DeleteEvents(time, time + 20); break;
    case 2: wave.DeleteEvent(wave.GetLastTime()); break;
    case 3:
        wave.PushPendingEvent(wave.GetFirstTime() - 1, &value, sizeof value);
        wave.CommitPendingEvents();
        break;
    case 4: wave.AddMarkedEvent(wave.GetLastTime() + 1, 0, &value, sizeof value); break;
    case 5: wave.AddEvent(time, 0, &value, sizeof value); break;  // perhaps not the latest
    default: wave.AddEvent(wave.GetLastTime() + 1 + time % 7, 0, &value, sizeof value);
    }
}

TEST(BusEvents, AreThoseOfALookAtAllLeavesInEachStep)
{
    std::mt19937 random(4);
    for (int round = 0; round < 60; ++round) {
        std::vector<CTimes> times(1 + random() % 150);
        const long long distance = round % 2 == 0 ? 3 : 200;
        for (CTimes &leaf : times)
            leaf = RandomTimes(random, distance);
        const SBus bus(times);
        const BusPtr iterator = BusOf(*bus.signal);
        CPlainBus plain(bus);
        for (int step = 0; step < 400; ++step) {
            if (const auto what = random() % 60; what == 0) {
                iterator->Reset();
                plain.Reset();
            } else if (what == 1) {
                const auto to = static_cast<long long>(random() % 200);
                const int mode = static_cast<int>(1 + random() % 4);
                iterator->Seek(to, mode);
                plain.Seek(to, mode);
            }
            ASSERT_EQ(iterator->Next(), plain.Next()) << round << ' ' << step;
            ASSERT_EQ(iterator->GetEvent()->GetTime(), plain.time) << round << ' ' << step;
            ASSERT_EQ(Shown(*iterator), plain.Shown()) << round << ' ' << step;
        }
    }
}

// What was shown before a change may be gone, and is not looked at.
TEST(BusEvents, AreMergedByTheWavesAsTheyAreNow)
{
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        std::vector<CTimes> times(1 + random() % 100);
        for (CTimes &leaf : times)
            leaf = RandomTimes(random, 20);
        const SBus bus(times);
        const BusPtr iterator = BusOf(*bus.signal);
        CPlainBus plain(bus);
        for (int step = 0; step < 300; ++step) {
            if (random() % 4 == 0)
                ChangeAWave(bus, random);
            ASSERT_EQ(iterator->Next(), plain.Next()) << round << ' ' << step;
            ASSERT_EQ(iterator->GetEvent()->GetTime(), plain.time) << round << ' ' << step;
        }
    }
}

TEST(BusEvents, MayOutliveAndBeOutlivedByTheirIterator)
{
    const SBus bus({{1, 5}, {2, 5}});
    {
        const BusPtr iterator = BusOf(*bus.signal);
        EXPECT_EQ(iterator->Next(), S_OK);
    }
    AddTimes(*bus.leaves[0], {7});
    EXPECT_EQ(BusTimes(*BusOf(*bus.signal)), (CTimes{1, 2, 5, 7}));
    BusPtr iterator;
    {
        const SBus gone({{1}, {2}});
        iterator = BusOf(*gone.signal);
    }
    iterator.reset();
}

}  // namespace
