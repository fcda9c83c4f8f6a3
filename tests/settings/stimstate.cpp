#include "settings/stimstate.h"

#include <climits>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr long long Picosecond = 1000;
constexpr long long Nanosecond = 1000 * Picosecond;
constexpr long long Second = 1000000000 * Nanosecond;
constexpr long long Minute = 60 * Second;

CStimState StatesOf(const char *text)
{
    CStimState states;
    EXPECT_TRUE(states.Create(text)) << text;
    return states;
}

std::string Stored(CStimState &states)
{
    const unsigned size = states.Store(nullptr, 0);
    if (size == 0)
        return "";
    std::string text(size, '?');
    EXPECT_EQ(states.Store(text.data(), size), size);
    EXPECT_EQ(text.back(), '\0');
    text.pop_back();
    return text;
}

// All times of a list without negative ones.
std::vector<long long> Times(CStimState states)
{
    std::vector<long long> times;
    for (long long time = states.FirstState(); time != -1; time = states.NextState())
        times.push_back(time);
    return times;
}

TEST(StimulusStates, AreReadAsTimesInFemtoseconds)
{
    EXPECT_THAT(Times(StatesOf("10ns;20ns;30ns")), ElementsAre(10000000, 20000000, 30000000));
}

TEST(StimulusStates, AreStoredAsTheyWereRead)
{
    CStimState states = StatesOf("10ns;20ns;30ns");
    EXPECT_EQ(Stored(states), "10ns;20ns;30ns");
}

TEST(StimulusStates, OfAnEmptyListStoreNothing)
{
    CStimState states;
    char buffer[] = "old";
    EXPECT_EQ(states.Store(nullptr, 0), 0u);
    EXPECT_EQ(states.Store(buffer, sizeof buffer), 0u);
    EXPECT_STREQ(buffer, "");
}

TEST(CreateStates, RefusesANullTextAlone)
{
    CStimState states = StatesOf("10ns");
    EXPECT_FALSE(states.Create(nullptr));
    EXPECT_TRUE(states.Create(""));
    EXPECT_TRUE(states.Create(";;;"));
    EXPECT_THAT(Times(states), ElementsAre(10 * Nanosecond));
}

TEST(CreateStates, SkipsWhatIsNoTimeWithoutTakingATurn)
{
    EXPECT_THAT(Times(StatesOf("10;bad;20")), ElementsAre(10 * Picosecond, 20 * Picosecond));
    EXPECT_THAT(Times(StatesOf("10ns;+5ns;1e3ns; ;20 parsec;30ns")), ElementsAre(10 * Nanosecond, 30 * Nanosecond));
}

TEST(CreateStates, ReadsTimesAsTheyAreWrittenEverywhere)
{
    const struct {
        const char *text;
        long long time;
    } rows[] = {{"10", 10 * Picosecond},
                {" 10 NS ", -1},  // a blank behind the unit belongs to it
                {" 10 NS", 10 * Nanosecond},
                {"1.5ns", 1500 * Picosecond},
                {"0.5fs", 0},
                {"2.9fs", 2},
                {"1s", Second},
                {"1 min", Minute},
                {"1hr", 60 * Minute},
                {"0", 0},
                {"-5ns", -5 * Nanosecond},
                {"3hr", LLONG_MIN}};  // more femtoseconds than fit
    for (const auto &row : rows) {
        CStimState states = StatesOf(row.text);
        EXPECT_EQ(states.FirstState(), row.time) << row.text;
    }
}

TEST(CreateStates, AddsToTheListAsItIs)
{
    CStimState states = StatesOf("10ns;40ns");
    EXPECT_TRUE(states.Create("50ns;60ns"));
    EXPECT_THAT(Times(states), ElementsAre(10 * Nanosecond, 40 * Nanosecond, 50 * Nanosecond, 60 * Nanosecond));
}

TEST(CreateStates, BeginsWithOnEachTime)
{
    CStimState states = StatesOf("10ns");
    EXPECT_TRUE(states.Create("20ns"));  // on again, which changes nothing
    EXPECT_THAT(Times(states), ElementsAre(10 * Nanosecond));
}

TEST(CreateStates, TakesTurnsInTheOrderOfTheTextNotOfTheTimes)
{
    EXPECT_THAT(Times(StatesOf("30ns;10ns;20ns")), ElementsAre(10 * Nanosecond, 20 * Nanosecond, 30 * Nanosecond));
}

TEST(AddState, IgnoresOffInAnEmptyList)
{
    CStimState states;
    states.Add(5, false);
    EXPECT_THAT(Times(states), IsEmpty());
}

TEST(AddState, EmptiesTheListWhenItsOnlyEntryTurnsOff)
{
    CStimState states;
    states.Add(5, true);
    states.Add(5, false);
    EXPECT_THAT(Times(states), IsEmpty());
}

TEST(AddState, DropsWhatRepeatsTheStateBefore)
{
    CStimState states;
    states.Add(5, true);
    states.Add(7, true);
    EXPECT_THAT(Times(states), ElementsAre(5));
}

// Deliberate: the entry behind the new one is not looked at.
TEST(AddState, LeavesTheEntryBehindAlone)
{
    CStimState states;
    states.Add(5, true);
    states.Add(9, false);
    states.Add(7, false);
    EXPECT_THAT(Times(states), ElementsAre(5, 7, 9));
}

TEST(AddState, RemovesAnEntryThatComesToRepeatTheStateBefore)
{
    CStimState states = StatesOf("5fs;7fs;9fs");
    states.Add(7, true);
    EXPECT_THAT(Times(states), ElementsAre(5, 9));
}

TEST(AddState, LeavesOffInFrontOfOthers)
{
    CStimState states = StatesOf("5fs;7fs");
    states.Add(3, false);
    EXPECT_THAT(Times(states), ElementsAre(3, 5, 7));
}

TEST(AddState, SortsNegativeTimesInFront)
{
    CStimState states;
    states.Add(5, true);
    states.Add(-7, true);
    EXPECT_EQ(states.FirstState(), -7);
    EXPECT_EQ(states.NextState(), 5);
}

// An independent list of entries, searched from end to end.
TEST(AddState, AgreesWithAPlainList)
{
    using CEntries = std::vector<std::pair<long long, bool>>;
    const auto add = [](CEntries &entries, long long time, bool state) {
        if (entries.empty() && !state)
            return;
        std::size_t at = 0;
        while (at < entries.size() && entries[at].first < time)
            ++at;
        if (at == entries.size() || entries[at].first != time)
            entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(at), {time, state});
        entries[at].second = state;
        if (at > 0 && entries[at - 1].second == state)
            entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(at));
        if (entries.size() == 1 && !entries[0].second)
            entries.clear();
    };
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        CStimState states;
        CEntries entries;
        for (int step = 0; step < 12; ++step) {
            const long long time = static_cast<long long>(random() % 8);
            const bool state = random() % 2 == 0;
            states.Add(time, state);
            add(entries, time, state);
            std::vector<long long> times;
            for (const auto &entry : entries)
                times.push_back(entry.first);
            ASSERT_EQ(Times(states), times) << "round " << round << " step " << step;
        }
    }
}

TEST(StoreStates, TellsTheSizeForANullBuffer)
{
    CStimState states = StatesOf("10ns");
    EXPECT_EQ(states.Store(nullptr, 0), 5u);
    EXPECT_EQ(states.Store(nullptr, 100), 5u);
}

TEST(StoreStates, EmptiesABufferThatIsTooSmall)
{
    CStimState states = StatesOf("10ns");
    char buffer[] = "oldtext";
    EXPECT_EQ(states.Store(buffer, 4), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(states.Store(buffer, 5), 5u);
    EXPECT_STREQ(buffer, "10ns");
}

// Deliberate: the stored form keeps one to three digits.
TEST(StoreStates, CutsTimesToTheCoarsestUnit)
{
    const struct {
        long long time;
        const char *text;
    } rows[] = {{0, "0fs"},
                {999, "999fs"},
                {1000, "1ps"},
                {1500 * Picosecond, "1ns"},
                {999999 * Picosecond, "999ns"},
                {59 * Second, "59sec"},
                {60 * Second, "1min"},
                {119 * Second, "1min"},
                {59 * Minute, "59min"},
                {-5 * Nanosecond, "-5000000fs"},
                {LLONG_MIN, "-9223372036854775808fs"}};
    for (const auto &row : rows) {
        CStimState states;
        states.Add(row.time, true);
        EXPECT_EQ(Stored(states), row.text) << row.time;
    }
}

TEST(StoreStates, WritesHoursInMinutes)
{
    const struct {
        long long time;
        const char *text;
    } rows[] = {{60 * Minute, "60min"},
                {60 * Minute + 59 * Second, "60min"},
                {61 * Minute, "61min"},
                {120 * Minute, "120min"},
                {LLONG_MAX, "153min"}};
    for (const auto &row : rows) {
        CStimState states;
        states.Add(row.time, true);
        EXPECT_EQ(Stored(states), row.text) << row.time;
    }
}

TEST(StoreStates, AgreesWithRepeatedDivision)
{
    const struct {
        const char *name;
        long double step;
    } units[] = {{"fs", 1000}, {"ps", 1000}, {"ns", 1000}, {"us", 1000}, {"ms", 1000}, {"sec", 60}, {"min", 1e9L}};
    std::mt19937_64 random(1);
    for (int round = 0; round < 5000; ++round) {
        const long long time = static_cast<long long>((random() >> 12) >> (random() % 52));  // exact as a double
        long double value = static_cast<long double>(time);
        std::size_t unit = 0;
        while (value >= units[unit].step)
            value /= units[unit++].step;
        CStimState states;
        states.Add(time, true);
        ASSERT_EQ(Stored(states), std::to_string(static_cast<long long>(value)) + units[unit].name) << time;
    }
}

TEST(StoreStates, OfTheStoredTextGivesItAgain)
{
    std::mt19937_64 random(2);
    for (int round = 0; round < 500; ++round) {
        CStimState states;
        for (int step = 0; step < 6; ++step)
            states.Add(static_cast<long long>(random() >> (1 + random() % 60)), step % 2 == 0);
        CStimState once = StatesOf(Stored(states).c_str());
        CStimState twice = StatesOf(Stored(once).c_str());
        ASSERT_EQ(Stored(once), Stored(twice));
    }
}

TEST(WalkThroughStates, OfAnEmptyListGivesMinusOne)
{
    CStimState states;
    EXPECT_EQ(states.FirstState(), -1);
    EXPECT_EQ(states.NextState(), -1);
}

TEST(WalkThroughStates, GivesMinusOneBehindTheLastForEver)
{
    CStimState states = StatesOf("10ns");
    EXPECT_EQ(states.FirstState(), 10 * Nanosecond);
    EXPECT_EQ(states.NextState(), -1);
    EXPECT_EQ(states.NextState(), -1);
    states.Add(20 * Nanosecond, false);
    EXPECT_EQ(states.NextState(), -1);
    EXPECT_EQ(states.FirstState(), 10 * Nanosecond);
}

TEST(WalkThroughStates, GivesMinusOneBeforeItIsStarted)
{
    CStimState states = StatesOf("10ns;20ns");
    EXPECT_EQ(states.NextState(), -1);
}

TEST(WalkThroughStates, GoesOnBehindAnEntryThatIsGone)
{
    CStimState states = StatesOf("5fs;7fs;9fs");
    EXPECT_EQ(states.FirstState(), 5);
    states.Add(7, true);  // removes the entry that is next
    EXPECT_EQ(states.NextState(), 9);
    EXPECT_EQ(states.NextState(), -1);
}

TEST(WalkThroughStates, EndsWhenTheListIsEmptied)
{
    CStimState states = StatesOf("5fs;7fs");
    EXPECT_EQ(states.FirstState(), 5);
    states.Add(7, true);
    states.Add(5, false);
    EXPECT_EQ(states.NextState(), -1);
}

TEST(WalkThroughStates, PassesByAnEntryAddedInFrontOfTheNextOne)
{
    CStimState states = StatesOf("5fs;9fs");
    EXPECT_EQ(states.FirstState(), 5);
    states.Add(7, false);
    EXPECT_EQ(states.NextState(), 9);
}

TEST(WalkThroughStates, GoesOnInACopyWhereItStands)
{
    CStimState copy;
    CStimState assigned = StatesOf("1fs");
    {
        CStimState states = StatesOf("5fs;7fs;9fs");
        EXPECT_EQ(states.FirstState(), 5);
        copy = CStimState(states);
        assigned = states;
        EXPECT_EQ(states.NextState(), 7);
    }
    EXPECT_EQ(copy.NextState(), 7);
    EXPECT_EQ(copy.NextState(), 9);
    EXPECT_EQ(copy.NextState(), -1);
    EXPECT_EQ(assigned.NextState(), 7);
}

// A walk is a place in a map as long as nothing removes the entry it stands on.
TEST(WalkThroughStates, AgreesWithAPlaceInAMap)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        CStimState states;
        std::map<long long, bool> map;
        for (int i = 0; i < 4; ++i) {
            states.Add(10 * i, i % 2 == 0);
            map[10 * i] = i % 2 == 0;
        }
        auto place = map.end();
        for (int step = 0; step < 12; ++step) {
            const long long time = static_cast<long long>(random() % 40);
            switch (random() % 3) {
            case 0:
                if (map.count(time) == 0 && time > 0) {  // adds one that does not repeat the state before it
                    const bool state = !std::prev(map.lower_bound(time))->second;
                    states.Add(time, state);
                    map[time] = state;
                }
                break;
            case 1:
                place = map.begin();
                ASSERT_EQ(states.FirstState(), (place++)->first);
                break;
            default: ASSERT_EQ(states.NextState(), place == map.end() ? -1 : (place++)->first);
            }
        }
    }
}

TEST(StimulusStates, SurviveAMegabyteOfAnything)
{
    constexpr std::size_t Size = 1 << 20;
    std::mt19937 random(4);
    std::string noise(Size, ' ');
    for (char &c : noise)
        c = static_cast<char>(random() % 255 + 1);
    std::string times;
    while (times.size() < Size)
        times += std::to_string(random()) + ";";
    for (const std::string &text : {noise, times, std::string(Size, ';'), std::string(Size, '1'),
                                    std::string(Size, ' '), std::string(Size, ':'), std::string(Size, '\\')}) {
        CStimState states;
        EXPECT_TRUE(states.Create(text.c_str()));
        Stored(states);
        Times(states);
    }
}

}  // namespace
