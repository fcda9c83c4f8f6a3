#include <cstring>

#include "signal/waves.h"

namespace {

using testing::ElementsAre;

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
TEST(AWave, MayBeSharedAndEndsWithItsLastReference)
{
    WavePtr wave = WaveOf({10});
    WavePtr second = tesk::Share(wave.get());
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
