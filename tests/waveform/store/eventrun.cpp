#include "waveform/store/eventrun.h"

#include <malloc.h>

namespace {

TEST(EventRun, CostsSixteenBytesWithoutEvents)
{
    EXPECT_LE(sizeof(tesk::CEventRun), 16u);
    EXPECT_TRUE(tesk::CEventRun().IsEmpty());
}

// What a million changes of a clock take: three bytes each for the time and the value, and no more than a quarter as slack.
TEST(EventRun, IsPacked)
{
    const auto before = mallinfo2().uordblks + mallinfo2().hblkhd;
    tesk::CEventRun run;
    for (int i = 0; i < 1000000; ++i)
        run.Append({500LL * i, static_cast<std::uint64_t>(2 + i % 2), 0});
    const auto after = mallinfo2().uordblks + mallinfo2().hblkhd;
    EXPECT_LT(after - before, 1000000u * 3);
    WaveEvent event;
    ASSERT_TRUE(run.FindLast(499999999, event));
    EXPECT_EQ(event.m_time, 499999500);
}

TEST(EventRun, StoresAnEarlierEventAtTheTimeReached)
{
    tesk::CEventRun run;
    for (const long long time : {10, 5, 20})
        run.Append({time, static_cast<std::uint64_t>(time), 0});
    WaveEvent event;
    ASSERT_TRUE(run.FindLast(15, event));
    EXPECT_EQ(event.m_value, 5u);
    EXPECT_EQ(event.m_time, 10);
    EXPECT_FALSE(run.FindLast(7, event));
    ASSERT_TRUE(run.FindNext(7, event));
    EXPECT_EQ(event.m_value, 10u);
}

}  // namespace
