#include "settings/brel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/stimulus.h"
#include "core/support.h"
#include "settings/brel/brelparser.h"
#include "settings/brel/brelsupport.h"
#include "slots.h"

namespace {

std::string PlainFormula(const std::string &text)
{
    SimpleString::CStr formula("unchanged");
    return ExpandBrelFormula(text.c_str(), formula) ? std::string(formula) : "refused " + std::string(formula);
}

std::optional<std::string> ValueAt(const std::string &text, long long time)
{
    CBrelFormula formula;
    EXPECT_TRUE(formula.Parse(text.c_str())) << text;
    SimpleString::CStr value;
    if (!formula.GetValue(time, value))
        return std::nullopt;
    return std::string(value);
}

long long NextEvent(const std::string &text, long long time)
{
    CBrelFormula formula;
    EXPECT_TRUE(formula.Parse(text.c_str())) << text;
    return formula.GetNextEvent(time);
}

TEST(BrelFormula, IsRewrittenAsAPlainFormula)
{
    const struct {
        const char *text, *formula;
    } rows[] = {
        {"H10NS L10NS", "1 0ps,0 10ns -cancel 20000000 fs"},
        {"h10nsl10ns", "1 0ps,0 10ns -cancel 20000000 fs"},
        {" \t\r\n\v\fH10NS\tL10NS\n", "1 0ps,0 10ns -cancel 20000000 fs"},
        {"(H10 L10)4 ", "1 0ps,0 10ns -r 20ns -cancel 80000000 fs"},
        {"(H10 L10)4", "1 0ps,0 10ns -r 20ns -cancel 80000000 fs"},
        {"(H10 L10)1", "1 0ps,0 10ns -cancel 20000000 fs"},
        {"H10 L10 /CLK", "1 0ps,0 10ns"},
        {"H10 L10 /clk (((", "1 0ps,0 10ns"},
        {"(H10 L10)4/Clk", "1 0ps,0 10ns -r 20ns"},
        {"[FF]10", "16#FF 0ps -cancel 10000000 fs"},
        {"[ff]10 [0]1us [-1]1", "16#FF 0ps,16#0 10ns,16#FFFFFFFF 1010ns -cancel 1011000000 fs"},
        {"(H10 (L5 X5)3 )2", "1 0ps,0 10ns,X 15ns -r 20ns -cancel 80000000 fs"},
        {"H1US L1MS X1HR Z1", "1 0ps,0 1us,X 1001us,Z 3600001001us -cancel 3600001001001000000 fs"},
        {"U1 G1 Q1 .1", "1 0ps,0 1ns,Q 2ns,X 3ns -cancel 4000000 fs"},
        {"H60000000US L1PS H1FS", "1 0ps,0 1min,1 60000000000001ps -cancel 60000000000001001 fs"},
        {"H1FS L1", "1 0ps,0 0ps -cancel 1000001 fs"},
    };
    for (const auto &row : rows)
        EXPECT_EQ(PlainFormula(row.text), row.formula) << row.text;
}

TEST(BrelFormula, CannotBeWrittenWithoutItems)
{
    for (const char *text : {"", " ", "/CLK", "[GG]10", "(H10"})
        EXPECT_EQ(PlainFormula(text), "refused ") << text;
    SimpleString::CStr formula("unchanged");
    EXPECT_FALSE(ExpandBrelFormula(nullptr, formula));
    EXPECT_STREQ(formula, "");
}

TEST(BrelFormula, WritesAnEmptyGroupAsNothingBetweenCommas)
{
    EXPECT_EQ(PlainFormula("()1"), " -cancel 0 fs");
    EXPECT_EQ(PlainFormula("H10 ()1"), "1 0ps, -cancel 10000000 fs");
    EXPECT_EQ(PlainFormula("()1 H10"), ",1 0ps -cancel 10000000 fs");
}

TEST(BrelFormula, AnswersNothingBeforeItIsRead)
{
    CBrelFormula formula;
    SimpleString::CStr text("unchanged");
    EXPECT_EQ(formula.GetTextLength(), 0);
    EXPECT_FALSE(formula.GetSource(text));
    EXPECT_EQ(formula.GetDuration(), 0);
    EXPECT_FALSE(formula.GetValue(0, text));
    EXPECT_EQ(formula.GetNextEvent(-1), -1);
    EXPECT_EQ(formula.GetNextEvent(0), -1);
    EXPECT_STREQ(text, "unchanged");
    EXPECT_FALSE(formula.GetFormula(text));
    EXPECT_STREQ(text, "");
}

TEST(BrelFormula, IsReplacedByTheNextOneThatIsRead)
{
    CBrelFormula formula;
    EXPECT_TRUE(formula.Parse("H10 /CLK"));
    EXPECT_TRUE(formula.Parse("L5"));
    SimpleString::CStr text;
    EXPECT_TRUE(formula.GetFormula(text));
    EXPECT_STREQ(text, "0 0ps -cancel 5000000 fs");
}

TEST(BrelFormula, EstimatesItsLength)
{
    const struct {
        const char *text;
        int length;
    } rows[] = {
        {"H10", 7},              // 1 + 1 + 3, a comma, 1
        {"H10 L10", 14},         // time 10: two digits
        {"[FF]10", 13},          // 2 + 5 + 1 + 3
        {"[0]10", 12},           //
        {"(H10 L10)4 ", 15},     // a comma more for the group
        {"()1", 2},              //
        {"H10 /CLK", 7 + 8},     // " -r 10ns"
        {"(H10)3 /CLK", 8 + 8},  //
        {"H L", 13},             // "-0" has one digit
        {"/CLK", 0},             //
    };
    for (const auto &row : rows) {
        CBrelFormula formula;
        ASSERT_TRUE(formula.Parse(row.text)) << row.text;
        EXPECT_EQ(formula.GetTextLength(), row.length) << row.text;
    }
}

TEST(BrelSource, WritesTheNotationBackInItsOwnWay)
{
    const struct {
        const char *text, *source;
    } rows[] = {
        {"(H10NS L5PS)2", "(11005ps)2"},
        {"(H10NS L5PS)2 ", "(11005ps)2"},
        {"h10 [ff]2us", "110[FF]2us"},
        {"((H1)2X1)3", "((11)2X1)3"},
        {"(H1)1", "11"},
        {"(H1)L2", "1102"},
        {"H1.5", "11500ps"},
        {"HR", "1-1fsR-1fs"},
        {"H1 /CLK", "11"},
        {"", ""},
    };
    for (const auto &row : rows)
        EXPECT_EQ(BrelSource(row.text), row.source) << row.text;
}

TEST(BrelValue, IsThatOfTheTimeInItsPass)
{
    const struct {
        const char *text;
        long long time;
        std::optional<std::string> value;
    } rows[] = {
        {"(H10 L10)4 ", 0, "1"},       {"(H10 L10)4 ", 10 * Ns - 1, "1"},
        {"(H10 L10)4 ", 10 * Ns, "0"}, {"(H10 L10)4 ", 25 * Ns, "1"},
        {"(H10 L10)4 ", 35 * Ns, "0"}, {"(H10 L10)4 ", 85 * Ns, "1"},  // deliberate: it runs on behind its end
        {"(H10 L10)4 ", -5 * Ns, "1"}, {"[ff]5 U5", 0, "[FF]"},
        {"[ff]5 U5", 5 * Ns, "U"},     {"H0 L0", 0, std::nullopt},
        {"", 0, std::nullopt},         {"(H10)L5", 0, std::nullopt},  // a count of 0 has no passes
        {"(H10)L5", 10 * Ns, "0"},     {"(H10)0 ", 0, std::nullopt},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ValueAt(row.text, row.time), row.value) << row.text << " at " << row.time;
}

TEST(BrelNextEvent, IsTheNextChangeBeforeTheEnd)
{
    const struct {
        const char *text;
        long long time, next;
    } rows[] = {
        {"(H10 L10)4 ", -1, 0},
        {"(H10 L10)4 ", 0, 10 * Ns},
        {"(H10 L10)4 ", 9 * Ns, 10 * Ns},
        {"(H10 L10)4 ", 10 * Ns, 20 * Ns},
        {"(H10 L10)4 ", 69 * Ns, 70 * Ns},
        {"(H10 L10)4 ", 70 * Ns, -1},  // the end is no change
        {"(H10 L10)4 ", 80 * Ns, -1},
        {"(H10 L10)4 ", 85 * Ns, -1},
        {"H10 (L5 X3)2 Z1", 12 * Ns, 15 * Ns},
        {"H10 (L5 X3)2 Z1", 18 * Ns, 23 * Ns},
        {"H10 (L5 X3)2 Z1", 23 * Ns, 26 * Ns},
        {"H0 L0", 0, -1},
        {"", 0, -1},
        {"", -1, 0},
        {"(H10)L5", 0, -1},
        {"L5(H10)X5", 5 * Ns, -1},
        {"L5(H10)X5", 3 * Ns, 5 * Ns},
    };
    for (const auto &row : rows)
        EXPECT_EQ(NextEvent(row.text, row.time), row.next) << row.text << " behind " << row.time;
}

TEST(BrelEvent, ChangesAtMultiplesOfItsDuration)
{
    CBrelEvent event;
    ASSERT_TRUE(event.Parse("1", false, "10FS"));
    EXPECT_EQ(event.GetNextEvent(0), 10);
    EXPECT_EQ(event.GetNextEvent(25), 30);
    EXPECT_EQ(event.GetNextEvent(-25), -10);
    EXPECT_TRUE(event.CheckRepeat(INT_MIN));
    EXPECT_FALSE(event.HasRepeat());
    CBrelEvent none;
    ASSERT_TRUE(none.Parse("1", false, "0"));
    EXPECT_EQ(none.GetNextEvent(25), -1);
    CBrelEvent withoutTime;
    EXPECT_EQ(withoutTime.GetDuration(), -1);
    EXPECT_EQ(withoutTime.GetNextEvent(LLONG_MIN), LLONG_MAX);
}

TEST(BrelDuration, CountsRepeats)
{
    EXPECT_EQ(BrelDuration("(H10 L10)4 "), 80 * Ns);
    EXPECT_EQ(BrelDuration("((H10)3 L10)4 "), 160 * Ns);
    EXPECT_EQ(BrelDuration("(H10)L5"), 15 * Ns);  // deliberate: a count of 0 is left out of account
    EXPECT_EQ(BrelDuration("(H10)00 "), 10 * Ns);
    EXPECT_EQ(BrelDuration("(H10)2147483648 "), 10 * Ns * INT_MIN);
}

TEST(BrelRepeatCount, IsComparedWithTheMaximum)
{
    EXPECT_FALSE(CheckBrelMaxRepeatCount("(H10)5", 4));
    EXPECT_TRUE(CheckBrelMaxRepeatCount("(H10)5", 5));
    EXPECT_FALSE(CheckBrelMaxRepeatCount("L5 ((H10)5 )2 ", 4));
    EXPECT_TRUE(CheckBrelMaxRepeatCount("L5 ((H10)5 )2 ", 5));
    EXPECT_TRUE(CheckBrelMaxRepeatCount("H10", 1));
    EXPECT_FALSE(CheckBrelMaxRepeatCount("H10", 0));  // the whole is repeated once
    EXPECT_FALSE(CheckBrelMaxRepeatCount("", 0));
    EXPECT_TRUE(CheckBrelMaxRepeatCount("(H10", 0));  // cannot be read
    EXPECT_FALSE(CheckBrelMaxRepeatCount(nullptr, 0));
    EXPECT_TRUE(CheckBrelMaxRepeatCount(nullptr, 1));
}

TEST(BrelInterfaces, KeepTheOrderOfTheirSlots)
{
    // The destructor takes the first two slots.
    EXPECT_EQ(SlotOf(&IBrelFormula::GetTextLength), 2U);
    EXPECT_EQ(SlotOf(&IBrelFormula::WriteFormula), 3U);
    EXPECT_EQ(SlotOf(&IBrelFormula::GetSource), 4U);
    EXPECT_EQ(SlotOf(&IBrelFormula::GetDuration), 5U);
    EXPECT_EQ(SlotOf(&IBrelFormula::GetValue), 6U);
    EXPECT_EQ(SlotOf(&IBrelFormula::GetNextEvent), 7U);
    EXPECT_EQ(SlotOf(&IBrelFormula::CheckRepeat), 8U);
    EXPECT_EQ(SlotOf(&IBrelFormula::HasRepeat), 9U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetTextLength), 2U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetFormula), 3U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetSource), 4U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetDuration), 5U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetValue), 6U);
    EXPECT_EQ(SlotOf(&CBrelFormula::GetNextEvent), 7U);
}

TEST(BrelSequence, RefusesToOutgrowItsRoom)
{
    CBrelSequence sequence;
    ASSERT_TRUE(tesk::ReadBrelItems("H1(L1)2", sequence));
    std::vector<char> text(12 + IBrelFormula::SpareRoom);
    long long time = 0;
    EXPECT_TRUE(sequence.WriteFormula(text.data(), time, 12));  // "1 0ps,0 1ns,"
    EXPECT_STREQ(text.data(), "1 0ps,0 1ns");
    EXPECT_EQ(time, 2 * Ns);
    time = 0;
    EXPECT_FALSE(sequence.WriteFormula(text.data(), time, 11));
    time = 0;
    EXPECT_FALSE(sequence.WriteFormula(text.data(), time, 0));
}

TEST(BrelStimulus, GoesOnAsAPlainFormula)
{
    const StimulusPtr stimulus = Create("some text /BREL \t(h10 l10)4 ");
    ASSERT_NE(stimulus, nullptr);
    std::string values;
    std::vector<long long> times;
    for (long long time = stimulus->GetNextEventTime(-1); time != -1; time = stimulus->GetNextEventTime(time)) {
        SimpleString::CStr value;
        times.push_back(time);
        values += stimulus->GetValue(time, value) ? std::string(value) : "-";
    }
    EXPECT_EQ(values, "10101010-");
    EXPECT_THAT(times, ::testing::ElementsAre(0, 10000, 20000, 30000, 40000, 50000, 60000, 70000, 80000));
}

TEST(BrelStimulus, IsNoneIfTheFormulaCannotBeWritten)
{
    for (const char *formula : {"/brel", "/brel (H10)", "/brel /clk", "/brel [x]5"})
        EXPECT_EQ(Create(formula), nullptr) << formula;
}

TEST(BrelStimulus, TakesPartInTheReportOfWideValues)
{
    IStimulus *wide = IStimulus::Create("/brel [FF]10", 0, 1000, nullptr, true, false);
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(wide);
    EXPECT_EQ(address & 1U, 1U);
    const StimulusPtr stimulus(reinterpret_cast<IStimulus *>(address & ~std::uintptr_t{1}));
    IStimulus *narrow = IStimulus::Create("/brel H10", 0, 1000, nullptr, true, false);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(narrow) & 1U, 0U);
    narrow->Destroy();
}

TEST(BrelFormula, NeverOutgrowsItsEstimate)
{
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        const std::string text = RandomBrelText(random, 60);
        CBrelFormula formula;
        SimpleString::CStr plain;
        formula.Parse(text.c_str());
        ASSERT_EQ(formula.GetFormula(plain), formula.GetTextLength() != 0) << text;
    }
}

// What a walk through the flattened items of a tree with good counts says.
TEST(BrelValue, AgreesWithTheFlattenedFormula)
{
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        std::vector<std::pair<char, int>> flat;  // value and nanoseconds
        for (int group = 0; group < 3; ++group) {
            const int count = 1 + static_cast<int>(random() % 3);
            std::string items;
            std::vector<std::pair<char, int>> inside;
            for (int i = 1 + static_cast<int>(random() % 3); i > 0; --i) {
                inside.emplace_back("01XZ"[random() % 4], 1 + static_cast<int>(random() % 5));
                items += inside.back().first + std::to_string(inside.back().second) + " ";
            }
            text += "(" + items + ")" + std::to_string(count) + " ";
            for (int i = 0; i < count; ++i)
                flat.insert(flat.end(), inside.begin(), inside.end());
        }
        long long start = 0;
        for (std::size_t i = 0; i < flat.size(); ++i) {
            const long long end = start + flat[i].second * Ns;
            for (const long long time : {start, end - 1}) {
                ASSERT_EQ(ValueAt(text, time), std::string(1, flat[i].first)) << text << " at " << time;
                ASSERT_EQ(NextEvent(text, time), i + 1 < flat.size() ? end : -1) << text << " behind " << time;
            }
            start = end;
        }
        ASSERT_EQ(BrelDuration(text), start) << text;
    }
}

// Everything that there is to do with a formula. @return seconds of processor time
double TimeOfAll(const std::string &text)
{
    const std::clock_t start = std::clock();
    CBrelFormula formula;
    SimpleString::CStr out;
    formula.Parse(text.c_str());
    formula.GetFormula(out);
    formula.GetSource(out);
    formula.GetValue(12345, out);
    formula.GetNextEvent(12345);
    formula.CheckRepeat(5);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

constexpr std::size_t LongText = 50000;
constexpr double MostSeconds = 5.0;  // some 0.02 in fact, and ten times as much under a sanitizer

TEST(BrelFormula, OfAnyLengthTakesLinearTime)
{
    const char *pieces[] = {"(", ")",  "[",   "]",   "[F]",  "H",    "H1",    "(H1)2 ",
                            "9", ".H", "NS ", "(((", "()1 ", "\xff", "H.5HR", "((H1)2"};
    for (const char *piece : pieces) {
        std::string text;
        while (text.size() < LongText)
            text += piece;
        EXPECT_LT(TimeOfAll(text), MostSeconds) << piece;
    }
}

TEST(BrelFormula, OfAnyDepthTakesLinearTime)
{
    std::string text(1000, '(');
    while (text.size() < LongText)
        text += "H1";
    for (int i = 0; i < 1000; ++i)
        text += ")2 ";
    EXPECT_LT(TimeOfAll(text), MostSeconds);
}

}  // namespace
