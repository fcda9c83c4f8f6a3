// What value a plain formula has at a time, and when it changes next.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

#include "core/support.h"

using ::testing::ElementsAre;

TEST(StimulusValue, HoldsFromItsTimeToTheNext)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns");
    const struct {
        long long time;
        std::optional<std::string> value;
    } rows[] = {{-1, {}}, {0, {}}, {9999, {}}, {10000, "1"}, {19999, "1"}, {20000, "0"}, {LLONG_MAX, "0"}};
    for (const auto &row : rows)
        EXPECT_EQ(ValueAt(*stimulus, row.time), row.value) << row.time;
}

TEST(StimulusValue, IsRepeatedWithThePeriod)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 10ns -r 20ns");
    EXPECT_EQ(ValueAt(*stimulus, 30000), "0");
    EXPECT_EQ(ValueAt(*stimulus, 40000), "1");
    EXPECT_EQ(ValueAt(*stimulus, 49999), "1");
    EXPECT_EQ(ValueAt(*stimulus, 50000), "0");
}

TEST(StimulusValue, IsAbsentFromTheCancelTimeOn)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 10ns -cancel 15ns");
    EXPECT_EQ(ValueAt(*stimulus, 14999), "0");
    EXPECT_EQ(ValueAt(*stimulus, 15000), std::nullopt);
    EXPECT_FALSE(stimulus->IsFinishedAt(14999));
    EXPECT_TRUE(stimulus->IsFinishedAt(15000));
}

TEST(StimulusValue, CountsRelativeTimesFromTheStart)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns, X @5ns", 1000);
    EXPECT_EQ(ValueAt(*stimulus, 10999), std::nullopt);
    EXPECT_EQ(ValueAt(*stimulus, 11000), "X");  // 5000 against 0
    EXPECT_EQ(ValueAt(*stimulus, 21000), "0");  // 5000 against 10000
}

TEST(StimulusValue, ComparesAbsoluteAndRelativeCountsAsTheyStand)
{
    const StimulusPtr stimulus = Create("1 @50ns, 0 0ns");
    EXPECT_EQ(ValueAt(*stimulus, 49999), "0");
    EXPECT_EQ(ValueAt(*stimulus, 60000), "1");
}

TEST(StimulusValue, IsAbsentWhereAnAbsoluteAndARelativeTimeTie)
{
    const StimulusPtr stimulus = Create("1 @10ns, 0 5ns, 1 15ns");
    EXPECT_EQ(ValueAt(*stimulus, 14999), "1");
    EXPECT_EQ(ValueAt(*stimulus, 15000), std::nullopt);  // 10000 and 10000
}

TEST(StimulusValue, OfAnAbsoluteEventBeforeTheStartIsSilentUntilThen)
{
    const StimulusPtr stimulus = Create("1 @5ns, 0 20ns");
    EXPECT_EQ(ValueAt(*stimulus, 19999), std::nullopt);
    EXPECT_EQ(ValueAt(*stimulus, 20000), "1");
}

TEST(NextEventTime, IsTheNextChangeOrMinusOne)
{
    const struct {
        const char *formula;
        long long after, next;
    } rows[] = {
        {"1 10ns, 0 20ns", -1, 10000},
        {"1 10ns, 0 20ns", 0, 10000},
        {"1 10ns, 0 20ns", 10000, 20000},
        {"1 10ns, 0 20ns", 20000, -1},
        {"1 0ns, 0 10ns -r 20ns", 10000, 20000},  // wraps into the next period
        {"1 0ns, 0 10ns -r 20ns", 20000, 30000},
        {"1 5ns, 0 10ns -r 20ns", 10000, 25000},
        {"1 @50ns, 0 0ns", 0, 50000},
        {"1 @50ns, 0 0ns", 50000, -1},
        {"1 @20ns, 0 0ns -r 20ns", 0, -1},  // deliberate: of two equal times neither is told
        {"1 @20ns, 0 0ns -r 20ns", 20000, 40000},
        {"1 @5ns", -1, 5000},
        {"1", -1, 0},
        {"1", 0, -1},
        {"1 0 -r 1", 7, 8},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Create(row.formula)->GetNextEventTime(row.after), row.next) << row.formula << " after " << row.after;
}

TEST(NextEventTime, ReportsTheCancelTimeAsOneLastChange)
{
    EXPECT_THAT(Changes("1 0ns, 0 10ns -cancel 15ns"), ElementsAre(0, 10000, 15000));
    EXPECT_THAT(Changes("1 0ns, 0 10ns -cancel 10ns"), ElementsAre(0, 10000));
    EXPECT_THAT(Changes("1 10ns, 0 20ns -r 30ns -cancel 100ns"),
                ElementsAre(10000, 20000, 40000, 50000, 70000, 80000, 100000));
}

TEST(NextEventTime, LooksAtEventsBeforeTheFirstOnlyInTheNextPeriod)
{
    // The event at 2 ns lies 3 ns before the first one: it is never reached going forward.
    EXPECT_THAT(Changes("1 5ns, 0 2ns -r 10ns", 3), ElementsAre(5000, 15000, 25000));
}

TEST(NextEventTime, SeesNothingFurtherAwayThanACountCanTell)
{
    constexpr long long Far = 5'000'000'000'000'000'000;
    const StimulusPtr stimulus = Create("1 @" + std::to_string(Far) + "fs", -Far, 1);
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(stimulus->GetNextEventTime(-Far), -1);
    EXPECT_EQ(stimulus->GetNextEventTime(Far - LLONG_MAX - 2), -1);
    EXPECT_EQ(stimulus->GetNextEventTime(Far - LLONG_MAX - 1), Far);
}

TEST(NextEventTime, SurvivesTheEndsOfTime)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 10ns -r 20ns -cancel 1hr");
    for (const long long time : {LLONG_MIN, LLONG_MIN + 1, LLONG_MAX - 1, LLONG_MAX})
        stimulus->GetNextEventTime(time);
    const StimulusPtr backward = Create("1 0ns, 0 10ns -r -7ns", LLONG_MIN);
    for (const long long time : {LLONG_MIN, -1LL, 0LL, 1LL, LLONG_MAX}) {
        backward->GetNextEventTime(time);
        ValueAt(*backward, time);
    }
    const StimulusPtr single = Create("1 0ns -r -0.001ns", LLONG_MAX);
    for (const long long time : {LLONG_MIN, -1LL, 0LL, LLONG_MAX}) {
        single->GetNextEventTime(time);
        ValueAt(*single, time);
    }
}

TEST(Parsing, KeepsOneEventPerTimeTheLaterInTheText)
{
    EXPECT_EQ(Canonical("1 5ns, 0 5ns"), "0 5ns");
    EXPECT_EQ(Canonical("1 5ns, 0 2ns, X 5ns"), "X 5ns, 0 2ns");
    EXPECT_EQ(Canonical("1 5ns, 0 @5ns"), "0 @5ns");  // absolute or relative
    EXPECT_EQ(Canonical("1, 0"), "0");
}

TEST(Parsing, TakesPicosecondsWithoutAUnit)
{
    EXPECT_EQ(Canonical("1 5"), "1 5ps");
    EXPECT_EQ(Canonical("1 5 ps"), "1 5ps");
    EXPECT_EQ(Canonical("1 5 NS"), "1 5ns");
    EXPECT_EQ(Canonical("1 5 xx"), "1 5ps, xx");  // a value of its own, without a time
}

TEST(Parsing, SplitsAtCommasOutsideGroupsAndAtBlanks)
{
    EXPECT_EQ(Canonical("(1,0) 5ns"), "(1,0) 5ns");
    EXPECT_EQ(Canonical("\"a,b\" 5ns,'c d' 6ns"), "\"a,b\" 5ns, 'c d' 6ns");
    EXPECT_EQ(Canonical("1 5ns 0 6ns"), "1 5ns, 0 6ns");
    EXPECT_EQ(Canonical("1\t5ns\n,\n0 6ns ,, X 7ns ,"), "1 5ns, 0 6ns, X 7ns");
}

TEST(Parsing, ReadsSwitchesInAnyLetterCaseAndPlace)
{
    EXPECT_EQ(Canonical("-R 20ns, 1 5ns -CANCEL 1us, 0 6ns"), "1 5ns, 0 6ns -r 20ns -cancel 1us");
    EXPECT_EQ(Canonical("1 -cancel 30ns 0 5ns"), "1, 0 5ns -cancel 30ns");
    EXPECT_EQ(Canonical("1 5ns -r 10ns -r 20ns"), "1 5ns -r 20ns");
    EXPECT_EQ(Canonical("1 5ns -cancel 10ns -cancel @20ns"), "1 5ns -cancel @20ns");
    EXPECT_EQ(Canonical("1 5ns -r 20 ns"), "1 5ns -r 20ns");
    EXPECT_EQ(Canonical("1 5ns -rx 20ns"), "1 5ns, -rx 20ns");
}

TEST(Parsing, TakesABadTimeForZero)
{
    EXPECT_EQ(Canonical("1 5ns -r bad"), "1 5ns");
    EXPECT_EQ(Canonical("1 5ns -r"), "1 5ns");
    EXPECT_EQ(Canonical("1 5ns -cancel bad"), "1 5ns");
    EXPECT_EQ(Canonical("1 bad"), "1 0ps");
}

TEST(Parsing, RefusesWhatHasNoEventOrANegativeTime)
{
    for (const char *formula : {" ", "\n\t ", ",", ",1 5ns", "-r 10ns", "-cancel 10ns", "1 -5ns", "0 0ns, 1 -0.001ns"})
        EXPECT_EQ(Canonical(formula), "null") << formula;
}

TEST(Parsing, KeepsTheMarkOfAbsoluteTimes)
{
    EXPECT_EQ(Canonical("1 @50ns, 0 0ns"), "1 @50ns, 0 0ns");
    EXPECT_EQ(Canonical("1 @ 50ns, 0 7ns"), "50ns, 0 7ns");  // the mark belongs to the number: here it is 0
}

TEST(RepeatRate, IsToldInTicksAndInTheUnitAsWritten)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 1ns -r 1.5ns");
    EXPECT_EQ(stimulus->GetRepeatRate(), 1);
    EXPECT_EQ(stimulus->GetRepeatRateInSimUnits(), 1500);
}

TEST(BinaryValue, IsThatOfTheEventInForce)
{
    const StimulusPtr stimulus = Create("1 10ns");
    long long value = 7;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(9999, value));
    EXPECT_TRUE(stimulus->GetBinary8BytesValue(10000, value));
    EXPECT_EQ(value, 0);  // nothing in a formula sets it
}

TEST(Event, StartsAtZeroWithATime)
{
    CSimpleStimulus event;
    EXPECT_EQ(event.GetTime(), 0);
    SimpleString::CStr text;
    event.GetTimeString(text);
    EXPECT_STREQ(text, "0fs");
    event.SetBinary8BytesValue(5);
    long long value = 0;
    event.GetBinary8BytesValue(value);
    EXPECT_EQ(value, 5);
}

TEST(Event, RefusesAnEmptyValueAndANegativeTime)
{
    STimeValue time;
    time.SetFromValue(5, 2, 2, 1000);
    CSimpleStimulus event;
    EXPECT_FALSE(event.Init("", time, -1, false, false, false));
    EXPECT_TRUE(event.Init("1", time, -1, true, false, false));
    SimpleString::CStr text;
    event.GetTimeString(text);
    EXPECT_STREQ(text, "@5ns");
    event.GetValue(text);
    EXPECT_STREQ(text, "1");
    time.m_ticks = -1;
    EXPECT_FALSE(event.Init("1", time, -1, false, false, false));
}

// A point takes the way that all numbers can be read by.
TEST(PlainTime, IsReadAlikeWithAPointAndWithout)
{
    std::string digits;
    for (int i = 1; i <= 20; ++i) {
        digits += static_cast<char>('0' + i * 7 % 10);
        for (const char *unit : {"", "fs", "PS", "ns", " us", "sec", "hr", "xy", "longer"}) {
            EXPECT_EQ(Canonical("1 0fs, 0 " + digits + unit), Canonical("1 0fs, 0 " + digits + "." + unit))
                << digits << unit;
        }
    }
}
