// The events of a bus against a plain look at all leaves, also while the waves change.
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

#include "signal/testbus.h"

namespace {

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
