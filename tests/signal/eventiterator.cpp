#include "signal/waves.h"

namespace {

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

}  // namespace
