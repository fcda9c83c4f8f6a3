// The text forms of a plain formula and the check of its settings.
#include <gtest/gtest.h>

#include "core/stimiterator.h"
#include "core/support.h"

namespace {

std::string EventTimeText(IStimulus &stimulus, long long time)
{
    SimpleString::CStr text("kept");
    stimulus.GetTimeString(time, text);
    return std::string(text);
}

}  // namespace

TEST(FormulaText, WritesBackTimesAndUnits)
{
    const struct {
        const char *formula;
        const char *canonical;
    } rows[] = {
        {"1 10ns, 0 20ns -r 30ns -cancel 100ns", "1 10ns, 0 20ns -r 30ns -cancel 100ns"},
        {"1", "1"},
        {"1 1.5ns", "1 1500ps"},
        {"1 0ns, 0 10000000fs", "1 0ns, 0 10000000fs"},
        {"1 10ns, 0 20us -r 3ms -cancel 2sec", "1 10ns, 0 20us -r 3ms -cancel 2sec"},
        {"1 1min, 0 1hr", "1 1min, 0 1hr"},
        {"1 10ns -r 1.5us", "1 10ns -r 1us"},  // deliberate: the whole number of the unit as written
        {"1 5ns -cancel @1us", "1 5ns -cancel @1us"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Canonical(row.formula), row.canonical) << row.formula;
}

TEST(FormulaText, DropsToAUnitInWhichTheTimeIsWhole)
{
    EXPECT_EQ(Canonical("1 0, 0 1500fs", 0, 1), "1 0ps, 0 1500fs");
    EXPECT_EQ(Canonical("1 1.5us, 0 2us"), "1 1500ns, 0 2us");
}

TEST(FormulaText, LosesWhatIsFinerThanATick)
{
    EXPECT_EQ(Canonical("1 1500fs"), "1 1000fs");
    EXPECT_EQ(Canonical("1 15ns", 0, 10000000), "1 10ns");
}

TEST(FormulaText, AddsTheOffsetAtEveryCall)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns, X @5ns");
    EXPECT_EQ(FormulaOf(*stimulus), "1 10ns, 0 20ns, X @15ns");  // deliberate: to absolute events too
    EXPECT_EQ(FormulaOf(*stimulus), "1 20ns, 0 30ns, X @25ns");
    EXPECT_EQ(ValueAt(*stimulus, 39999), "X");  // what is written is what is played from now on
}

TEST(FormulaText, KeepsTheCommaOfAnEventWhoseValueWasEmptied)
{
    const StimulusPtr stimulus = Create("1, 0 5ns");
    CStimIterator(stimulus.get()).Next()->SetValue("");
    EXPECT_EQ(FormulaOf(*stimulus), ", 0 5ns");
}

TEST(FormulaText, DoesNotDependOnTheStartBesidesARelativeCancelTime)
{
    EXPECT_EQ(Canonical("1 10ns, 0 20ns -cancel 50ns", 7000), "1 10ns, 0 20ns -cancel 50ns");
}

TEST(TimeText, IsThatOfTheEventWithThisCount)
{
    const StimulusPtr stimulus = Create("1, 0 10ns, X @20ns");
    EXPECT_EQ(EventTimeText(*stimulus, 0), "");  // no time was written
    EXPECT_EQ(EventTimeText(*stimulus, 10000), "10ns");
    EXPECT_EQ(EventTimeText(*stimulus, 20000), "@20ns");
    EXPECT_EQ(EventTimeText(*stimulus, 5), "kept");
}

TEST(TimeText, OfAMovedEventCountsTicksAsFemtoseconds)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns");
    EXPECT_EQ(EventTimeText(*stimulus, 10000), "0ns");  // deliberate: 10000 as they stand after the move
}

TEST(RepeatText, IsGivenOnlyWithoutARepeat)
{
    SimpleString::CStr text("kept");
    EXPECT_FALSE(Create("1 0ns -r 5ns")->GetRepeatString(text));
    EXPECT_STREQ(text, "kept");
    EXPECT_TRUE(Create("1 0ns")->GetRepeatString(text));
    EXPECT_STREQ(text, "0fs");
}

TEST(CancelText, CountsFromTheStartUnlessAbsolute)
{
    const struct {
        const char *formula;
        const char *text;
    } rows[] = {{"1 0ns -cancel 15ns", "15ns"}, {"1 0ns -cancel @15ns", "@15ns"}, {"1 0ns -cancel 1.5ns", "1ns"}};
    for (const auto &row : rows) {
        SimpleString::CStr text;
        EXPECT_TRUE(Create(row.formula, 7000)->GetCancelString(text)) << row.formula;
        EXPECT_STREQ(text, row.text) << row.formula;
    }
    SimpleString::CStr text("kept");
    EXPECT_FALSE(Create("1 0ns")->GetCancelString(text));
    EXPECT_STREQ(text, "kept");
}

TEST(CheckSettings, TellsTheFirstFault)
{
    const struct {
        const char *formula;
        int result;
    } rows[] = {
        {"1 10ns, 0 20ns -r 30ns -cancel 100ns", 0},
        {"1 10ns, 0 20ns", 0},
        {"1 @5ns, 0 10ns", 1},
        {"1 @10ns, 0 10.5ns", 1},
        {"1 @10.5ns, 0 10ns", 0},
        {"1 5ns, 0 2ns, 1 5ns", 2},
        {"1 0ns, 0 20ns, X 10ns", 2},
        {"1 0ns, 0 20ns -r 20ns", 0},
        {"1 0ns, 0 20.001ns -r 20ns", 3},
        {"1 10ns, 0 20ns -cancel 10ns", 4},
        {"1 10ns, 0 20ns -cancel 10.001ns", 5},
        {"1 10ns, 0 20ns -cancel 20ns", 5},
        {"1 10ns, 0 20ns -cancel 20.001ns", 0},
        {"1 @10ns -cancel 5ns", 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Create(row.formula)->CheckSettings(nullptr), row.result) << row.formula;
}

TEST(CheckSettings, TellsWhichAbsoluteEventIsTooEarly)
{
    long long time = 7;
    EXPECT_EQ(Create("1 10ns, 0 @20ns, X @5ns")->CheckSettings(&time), 1);
    EXPECT_EQ(time, 5000);
    time = 7;
    EXPECT_EQ(Create("1 10ns, 0 @20ns")->CheckSettings(&time), 0);
    EXPECT_EQ(time, 7);
}

TEST(Iterator, GivesTheEventsInTheOrderOfTheFormulaOnceEach)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 20ns, X @5ns -r 30ns");
    CStimIterator iterator(stimulus.get());
    for (int round = 0; round < 2; ++round) {
        for (const char *expected : {"1 0ns", "0 20ns", "X @5ns"}) {
            const ISimpleStimulus *event = iterator.Next();
            ASSERT_NE(event, nullptr);
            SimpleString::CStr value;
            SimpleString::CStr time;
            event->GetValue(value);
            event->GetTimeString(time);
            EXPECT_STREQ(value + " " + time, expected);
        }
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(iterator.Next(), nullptr);
        iterator.Reset();
    }
}

TEST(Iterator, GivesTheTimesThatCountFromTheOffset)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns");
    CStimIterator iterator(stimulus.get());
    EXPECT_EQ(iterator.Next()->GetTime(), 0);
    EXPECT_EQ(iterator.Next()->GetTime(), 10000);
}

TEST(Iterator, HasNothingToWalkInAnEmptyStimulus)
{
    CStimIterator iterator(IStimulus::Create("", 0, 1000, nullptr, false, false));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(iterator.Next(), nullptr);
        iterator.Reset();
    }
    CStimIterator nothing(nullptr);
    EXPECT_EQ(nothing.Next(), nullptr);
}

TEST(Iterator, HasNothingToWalkInACounter)
{
    const StimulusPtr counter = Create("\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\0\\INC\\1\\PERIOD\\10ns\\REV\\0");
    ASSERT_NE(counter, nullptr);
    CStimIterator iterator(counter.get());
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(iterator.Next(), nullptr);
        iterator.Reset();
    }
}

TEST(Iterator, AssignedGoesOnWhereTheOtherStands)
{
    const StimulusPtr stimulus = Create("1 0ns, 0 20ns");
    CStimIterator first(stimulus.get());
    first.Next();
    CStimIterator second(nullptr);
    second = first;
    EXPECT_EQ(second.Next()->GetTime(), 20000);
    EXPECT_EQ(first.Next()->GetTime(), 20000);
}

namespace {

// Replays nothing but its own three changes.
class CReplayed final : public IStimulus {
public:
    void Destroy() override {}
    bool GetValue(long long time, SimpleString::CStr &value) override
    {
        value = std::to_string(time).c_str();
        return true;
    }
    long long GetNextEventTime(long long time) override { return time < 30 ? (time < 0 ? 0 : time + 15) : -1; }
    void GetFormula(SimpleString::CStr &) override {}
    bool IsFinishedAt(long long) override { return false; }
    int CheckSettings(long long *) override { return 0; }
    bool IsCustom() const override { return true; }
};

}  // namespace

TEST(Iterator, WalksAReplayedStimulusByTimeAndBeginsAgain)
{
    CReplayed stimulus;
    CStimIterator iterator(&stimulus);
    g_simRes = 1;  // deliberate: the resolution has no part in it
    for (int round = 0; round < 2; ++round) {
        const ISimpleStimulus *previous = nullptr;
        for (const char *expected : {"0 @0fs", "15 @15fs", "30 @30fs"}) {
            const ISimpleStimulus *event = iterator.Next();
            ASSERT_NE(event, nullptr);
            EXPECT_TRUE(previous == nullptr || previous == event);  // one event, overwritten
            previous = event;
            SimpleString::CStr value;
            SimpleString::CStr time;
            event->GetValue(value);
            event->GetTimeString(time);
            EXPECT_STREQ(value + " " + time, expected);
            EXPECT_EQ(event->GetTime(), 0);
        }
        EXPECT_EQ(iterator.Next(), nullptr);
    }
    iterator.Next();
    iterator.Next();
    iterator.Reset();
    SimpleString::CStr value;
    iterator.Next()->GetValue(value);
    EXPECT_STREQ(value, "0");
    g_simRes = 1000;
}
