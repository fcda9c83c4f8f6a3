#include <algorithm>
#include <map>
#include <optional>
#include <random>
#include <vector>

#include "signal/testbus.h"

namespace {

using testing::ElementsAre;

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

}  // namespace
