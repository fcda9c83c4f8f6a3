// Finding and deleting events by time.

#include <limits>

#include "signal/waves.h"

namespace {

using testing::ElementsAre;

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

}  // namespace
