// Events that come as words, and events read one after the other.
#include <gmock/gmock.h>

#include <limits>
#include <random>
#include <thread>
#include <vector>

#include "waveform/storetools.h"

namespace {

// Adds a signal with the next `count` handles.
void Add(WaveStore &store, long long first, long long count)
{
    store.addSignal("v", StdLogicType, 0, 0, 0, 0, 0);
    for (long long handle = first; handle < first + count; ++handle)
        store.addHandle(&handle, 0);
    store.endSignal();
}

TEST(WaveStore, ReadsTheEventsOfAnElementPieceByPiece)
{
    WaveStore store;
    Add(store, 1, 3);
    const long long shared = 3;
    const long long original = 1;
    store.shareEvents(&shared, &original);
    for (int i = 0; i < 1000; ++i)
        PutEvent(store, 1, i / 2, i % 7 == 0 ? UINT64_MAX : static_cast<std::uint64_t>(i % 9), i % 31 == 0 ? 5 : 0);
    for (const std::size_t room : {1U, 2U, 7U, 64U, 999U, 1000U, 5000U}) {
        std::vector<WaveEvent> events(room);
        tesk::SEventPlace place;
        int read = 0;
        while (const std::size_t count = store.ReadEvents(3, place, events.data(), events.size())) {
            for (std::size_t i = 0; i < count; ++i, ++read) {
                ASSERT_EQ(events[i].m_time, read / 2);
                ASSERT_EQ(events[i].m_value, read % 7 == 0 ? UINT64_MAX : static_cast<std::uint64_t>(read % 9));
                ASSERT_EQ(events[i].m_unused, read % 31 == 0 ? 5U : 0U);
            }
        }
        EXPECT_EQ(read, 1000) << room;
        EXPECT_EQ(store.ReadEvents(3, place, nullptr, 0), 0u);
    }
    tesk::SEventPlace place;
    std::vector<WaveEvent> events(3);
    EXPECT_EQ(store.ReadEvents(2, place, events.data(), events.size()), 0u);
    EXPECT_EQ(store.ReadEvents(9, place, events.data(), events.size()), 0u);
}

TEST(WaveStore, GoesOnReadingWhatWasAddedMeanwhile)
{
    WaveStore store;
    Add(store, 1, 1);
    tesk::SEventPlace place;
    WaveEvent event;
    for (int i = 0; i < 500; ++i) {
        ASSERT_EQ(store.ReadEvents(1, place, &event, 1), 0u);
        PutEvent(store, 1, i * 40LL, 3);
        ASSERT_EQ(store.ReadEvents(1, place, &event, 1), 1u);
        ASSERT_EQ(event.m_time, i * 40LL);
    }
}

void AddWord(WaveStore &store, long long last, std::intptr_t count)
{
    store.addWord(&last, count);
}

TEST(WaveStore, TakesWordsLikeTheEventsOfTheirElements)
{
    std::mt19937_64 random(2);
    for (int round = 0; round < 100; ++round) {
        const auto count = static_cast<long long>(1 + random() % 64);
        WaveStore words;
        WaveStore events;
        for (WaveStore *store : {&words, &events})
            Add(*store, 1, 3 + count);
        AddWord(words, 1, 1);
        AddWord(words, 2 + count, count);
        WaveWord before = NoWord;
        long long time = round % 5 == 0 ? std::numeric_limits<long long>::min() : -3;
        for (int i = 0; i < 200; ++i) {
            const unsigned width = 1U << random() % 7;
            WaveWord after;
            for (int plane = 0; plane < 4; ++plane)
                after.m_planes[plane] = before.m_planes[plane] ^ (random() % 2 * (random() >> (64 - width) % 64));
            time += static_cast<long long>(random() % 2 * (random() >> random() % 63) >> 10);
            words.addWordEvents(1, &time, &before, &after);
            for (unsigned bit = 0; bit < count; ++bit) {
                if (PositionAt(after, bit) != PositionAt(before, bit))
                    PutEvent(events, 2 + count - bit, time, PositionAt(after, bit));
            }
            before = after;
            const long long handle = 1 + static_cast<long long>(random() % static_cast<std::uint64_t>(count + 2));
            if (random() % 20 == 0) {
                ASSERT_EQ(EventText(words.FindLast(handle, time)), EventText(events.FindLast(handle, time)));
            }
        }
        for (long long handle = 1; handle <= 3 + count; ++handle) {
            ASSERT_EQ(words.HasEvents(handle), events.HasEvents(handle));
            tesk::SEventPlace place;
            tesk::SEventPlace otherPlace;
            WaveEvent event;
            WaveEvent other;
            while (words.ReadEvents(handle, place, &event, 1) == 1) {
                ASSERT_EQ(events.ReadEvents(handle, otherPlace, &other, 1), 1u);
                ASSERT_EQ(EventText(&event), EventText(&other));
            }
            ASSERT_EQ(events.ReadEvents(handle, otherPlace, &other, 1), 0u);
        }
    }
}

TEST(WaveStore, IgnoresWordsThatAWriterMustNotSend)
{
    WaveStore store;
    Add(store, 1, 70);
    const struct {
        long long last;
        std::intptr_t count;
    } rows[] = {{4, 5}, {71, 1}, {70, 65}, {70, 0}, {70, -1}, {0, 1}, {std::numeric_limits<long long>::min(), 1},
                {8, 4}, {6, 2}};
    for (const auto &row : rows)
        AddWord(store, row.last, row.count);
    store.addWord(nullptr, 1);
    const long long time = 5;
    const WaveWord zeros{};
    for (std::size_t word = 0; word < 20; ++word) {
        store.addWordEvents(word, &time, &NoWord, &zeros);
        store.addWordEvents(word, nullptr, nullptr, nullptr);
    }
    for (long long handle = 1; handle <= 70; ++handle)
        EXPECT_EQ(store.HasEvents(handle), handle >= 5 && handle <= 8) << handle;
}

TEST(WaveStore, SharesTheEventsOfAWord)
{
    WaveStore store;
    Add(store, 1, 3);
    AddWord(store, 2, 2);
    const long long time = 5;
    const WaveWord zeros{};
    const auto share = [&store](long long handle, long long original) { store.shareEvents(&handle, &original); };
    share(3, 2);
    store.addWordEvents(0, &time, &NoWord, &zeros);
    EXPECT_EQ(EventText(store.FindLast(3, 9)), "5=0");
    share(1, 2);  // its own events are given up, and those to come ignored
    const long long later = 8;
    const WaveWord ones{{3, 0, 0, 0}};
    store.addWordEvents(0, &later, &zeros, &ones);
    EXPECT_EQ(EventText(store.FindNext(1, 0)), "5=0");
    EXPECT_EQ(EventText(store.FindNext(1, 5)), "8=1");
    EXPECT_EQ(store.FindNext(1, 8), nullptr);
}

TEST(WaveStore, StoresAnEarlierWordAtTheTimeReached)
{
    WaveStore store;
    Add(store, 1, 1);
    AddWord(store, 1, 1);
    WaveWord before = NoWord;
    for (const long long time : {10, 5, 20}) {
        const WaveWord after{{static_cast<std::uint64_t>(time == 5), 0, 0, 0}};
        store.addWordEvents(0, &time, &before, &after);
        before = after;
    }
    EXPECT_EQ(EventText(store.FindLast(1, 15)), "10=1");
    EXPECT_EQ(store.FindLast(1, 7), nullptr);
}

// 20 words of 8 elements that all change at each time.
void FillWords(WaveStore &store)
{
    constexpr long long Words = 20;
    Add(store, 1, 8 * Words);
    for (long long last = 8; last <= 8 * Words; last += 8)
        store.addWord(&last, 8);
    WaveWord before = NoWord;
    for (long long time = 0; time < 500; ++time) {
        const WaveWord after{{static_cast<std::uint64_t>(time % 2 != 0 ? 0xFF : 0), 0xFF, 0, 0}};
        for (std::size_t word = 0; word < Words; ++word)
            store.addWordEvents(word, &time, &before, &after);
        before = after;
    }
}

std::size_t CountEvents(const WaveStore &store, long long handle)
{
    std::vector<WaveEvent> events(64);
    tesk::SEventPlace place;
    std::size_t all = 0;
    while (const std::size_t count = store.ReadEvents(handle, place, events.data(), events.size()))
        all += count;
    return all;
}

TEST(FilledWaveStore, IsReadByThreadsAtTheSameTime)
{
    WaveStore store;
    FillWords(store);
    store.endEvents();
    std::vector<std::size_t> counts(4);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        threads.emplace_back([&store, &count = counts[i]] {
            WaveEvent event{};
            for (long long handle = 1; handle <= 160; ++handle)
                count += CountEvents(store, handle) + (store.FindLast(handle, 7, event) && event.m_time == 7 ? 1 : 0);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_THAT(counts, testing::Each(160U * 501U));
}

TEST(FilledWaveStore, TakesMoreEventsAllTheSame)
{
    WaveStore store;
    FillWords(store);
    store.endEvents();
    EXPECT_EQ(CountEvents(store, 1), 500U);
    const long long time = 1000;
    const WaveWord before{{0xFF, 0xFF, 0, 0}};
    const WaveWord after{{0, 0xFF, 0, 0}};
    store.addWordEvents(0, &time, &before, &after);
    EXPECT_EQ(CountEvents(store, 1), 501U);
    store.endEvents();
    EXPECT_EQ(CountEvents(store, 8), 501U);
}

}  // namespace
