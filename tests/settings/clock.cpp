#include "settings/clock.h"

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "settings/timeunits.h"
#include <gtest/gtest.h>

namespace {

using SimpleString::CStr;

CClock Frequency(double value, unsigned char unit)
{
    CClock clock;
    clock.SetRateValue(value);
    clock.SetRateUnit(unit);
    return clock;
}

CClock Period(double value, unsigned char unit)
{
    CClock clock = Frequency(value, unit);
    clock.SetRateType(true);
    return clock;
}

std::string Saved(CClock &clock)
{
    CStr text("old");
    clock.StreamOut(text);
    return static_cast<const char *>(text);
}

CClock Restored(const char *text)
{
    CClock clock;
    EXPECT_TRUE(clock.StreamIn(text)) << text;
    return clock;
}

std::string Formula(const CClock &clock, int unit = -1)
{
    CStr formula("old");
    EXPECT_TRUE(clock.GenerateFormula(formula, unit, nullptr));
    return static_cast<const char *>(formula);
}

TEST(Clock, RunsAtTenKilohertzAtFirst)
{
    const CClock clock;
    EXPECT_EQ(clock.GetRateValue(), 10.0);
    EXPECT_EQ(clock.GetRateUnit(), 1);
    EXPECT_FALSE(clock.GetRateType());
    EXPECT_EQ(clock.GetRateOffset(), 0);
    EXPECT_EQ(clock.GetRateCycle(), 50);
    EXPECT_FALSE(clock.IsStartLow());
}

TEST(Clock, HasTheMasksOfItsMarks)
{
    EXPECT_EQ(CClock::m_rateType, 0x0100);
    EXPECT_EQ(CClock::m_startLow, 0x0200);
    static_assert(std::is_same_v<decltype(CClock::m_rateType), const short>);
    static_assert(std::has_virtual_destructor_v<CClock>);
}

TEST(Clock, KeepsWhatIsSet)
{
    CClock clock;
    clock.SetRateValue(2.5);
    clock.SetRateUnit(200);
    clock.SetRateOffset(LLONG_MIN);
    EXPECT_EQ(clock.GetRateValue(), 2.5);
    EXPECT_EQ(clock.GetRateUnit(), 200);
    EXPECT_EQ(clock.GetRateOffset(), LLONG_MIN);
}

TEST(Clock, KeepsCycleAndMarksApart)
{
    for (const int cycle : {0, 1, 50, 255}) {
        for (const bool isPeriod : {false, true}) {
            for (const bool startLow : {false, true}) {
                CClock clock;
                clock.SetStartLow(!startLow);
                clock.SetRateType(isPeriod);
                clock.SetRateCycle(static_cast<unsigned char>(cycle));
                clock.SetStartLow(startLow);
                EXPECT_EQ(clock.GetRateCycle(), cycle);
                EXPECT_EQ(clock.GetRateType(), isPeriod);
                EXPECT_EQ(clock.IsStartLow(), startLow);
            }
        }
    }
}

TEST(Clock, CopiesAllOfIt)
{
    CClock clock = Restored("1.5;2;1;7;30;1");
    CClock copy(clock);
    CClock assigned;
    assigned = clock;
    EXPECT_EQ(Saved(copy), "1.500000;2;1;7;30;1");
    EXPECT_EQ(Saved(assigned), "1.500000;2;1;7;30;1");
}

TEST(ClockStreamOut, WritesSixFields)
{
    CClock clock;
    EXPECT_EQ(Saved(clock), "10.000000;1;0;0;50;0");
    clock.SetRateOffset(-9000000000);
    clock.SetStartLow(true);
    EXPECT_EQ(Saved(clock), "10.000000;1;0;-9000000000;50;1");
}

// Deliberate: saving a period changes how it is expressed.
TEST(ClockStreamOut, RaisesAPeriodInPlaceAsFarAsItStaysWhole)
{
    CClock clock = Period(1000.0, 2);
    EXPECT_EQ(Saved(clock), "1.000000;3;1;0;50;0");
    EXPECT_EQ(clock.GetRateValue(), 1.0);
    EXPECT_EQ(clock.GetRateUnit(), 3);

    CClock fractional = Period(1500.0, 2);
    EXPECT_EQ(Saved(fractional), "1500.000000;2;1;0;50;0");
    EXPECT_EQ(fractional.GetRateValue(), 1500.0);

    CClock hundredMicroseconds = Period(100000.0, 2);
    EXPECT_EQ(Saved(hundredMicroseconds), "100.000000;3;1;0;50;0");
}

TEST(ClockStreamOut, LeavesAFrequencyAlone)
{
    CClock clock = Frequency(1000.0, 2);
    EXPECT_EQ(Saved(clock), "1000.000000;2;0;0;50;0");
    EXPECT_EQ(clock.GetRateUnit(), 2);
}

TEST(ClockStreamOut, WritesNumbersOfAnySize)
{
    CClock clock = Period(std::numeric_limits<double>::max(), 1);
    EXPECT_GT(Saved(clock).size(), 300u);
    for (const double value : {std::numeric_limits<double>::infinity(), std::nan(""), -1e300}) {
        CClock odd = Period(value, 2);
        EXPECT_NE(Saved(odd), "");
    }
}

TEST(ClockStreamIn, RestoresWhatStreamOutWrote)
{
    CClock clock;
    clock.SetRateCycle(7);
    EXPECT_TRUE(clock.StreamIn("10.000000;1;0;0;50;0"));
    EXPECT_EQ(Saved(clock), "10.000000;1;0;0;50;0");

    std::mt19937 random(1);
    for (int round = 0; round < 1000; ++round) {
        CClock original = Period(static_cast<double>(random() % 100000) / 8, static_cast<unsigned char>(random() % 8));
        original.SetRateType(random() % 2 == 0);
        original.SetRateOffset(static_cast<long long>(random()) - 2000000000);
        original.SetRateCycle(static_cast<unsigned char>(random()));
        original.SetStartLow(random() % 2 == 0);
        const std::string saved = Saved(original);
        CClock restored = Restored(saved.c_str());
        ASSERT_EQ(Saved(restored), saved);
    }
}

TEST(ClockStreamIn, RefusesANullText)
{
    CClock clock;
    EXPECT_FALSE(clock.StreamIn(nullptr));
    EXPECT_EQ(Saved(clock), "10.000000;1;0;0;50;0");
}

TEST(ClockStreamIn, KeepsTheFieldsInFrontOfAMissingOne)
{
    const struct {
        const char *text, *saved;
    } rows[] = {{"", "10.000000;1;0;-3;50;1"},          {";;;", "10.000000;1;0;-3;50;1"},
                {"1.5", "1.500000;1;0;-3;50;1"},        {"1.5;2", "1.500000;2;0;-3;50;1"},
                {"1.5;2;1", "1.500000;2;1;-3;50;1"},    {"1.5;2;1;4;", "1.500000;2;1;4;50;1"},
                {"1.5;2;1;4;60", "1.500000;2;1;4;60;1"}};
    for (const auto &row : rows) {
        CClock clock;
        clock.SetRateOffset(-3);
        clock.SetStartLow(true);
        EXPECT_FALSE(clock.StreamIn(row.text)) << row.text;
        EXPECT_EQ(Saved(clock), row.saved) << row.text;
    }
}

TEST(ClockStreamIn, TakesSeparatorsInARowForOne)
{
    CClock clock = Restored(";;1.5;;2;1;;;4;60;1;more;");
    EXPECT_EQ(Saved(clock), "1.500000;2;1;4;60;1");
}

TEST(ClockStreamIn, KeepsTheLowByteOfTheCycle)
{
    CClock clock = Restored("1;1;0;0;300;0");
    EXPECT_EQ(clock.GetRateCycle(), 44);
    EXPECT_FALSE(clock.GetRateType());
    EXPECT_FALSE(clock.IsStartLow());
}

TEST(ClockStreamIn, KeepsTheUnitWhole)
{
    CClock clock = Restored("1;300;0;0;50;0");
    EXPECT_EQ(clock.GetRateUnit(), 44);
    EXPECT_EQ(Saved(clock), "1.000000;300;0;0;50;0");
}

TEST(ClockStreamIn, TakesAnyNumberButZeroForAMark)
{
    CClock clock = Restored("1;1;-5;0;50;256");
    EXPECT_TRUE(clock.GetRateType());
    EXPECT_TRUE(clock.IsStartLow());
    CClock words = Restored("1;1;yes;0;50;x1");
    EXPECT_FALSE(words.GetRateType());
    EXPECT_FALSE(words.IsStartLow());
}

TEST(ClockFormula, OfANewClockHasItsPeriodInMicroseconds)
{
    EXPECT_EQ(Formula(CClock()), "1 0 us, 0 50 us -r 100 us");
}

TEST(ClockFormula, RefinesEachNumberByItself)
{
    CClock clock = Period(15.0, 2);
    EXPECT_EQ(Formula(clock), "1 0 ns, 0 7500 ps -r 15 ns");
    clock.SetStartLow(true);
    EXPECT_EQ(Formula(clock), "0 0 ns, 1 7500 ps -r 15 ns");
}

TEST(ClockFormula, IsWrittenInTheUnitAskedFor)
{
    const CClock clock = Period(15.0, 2);
    EXPECT_EQ(Formula(clock, 0), "1 0 fs, 0 7500000 fs -r 15000000 fs");
    EXPECT_EQ(Formula(clock, 1), "1 0 ps, 0 7500 ps -r 15000 ps");
    EXPECT_EQ(Formula(Period(2.0, 4), 2), "1 0 ns, 0 1000000 ns -r 2000000 ns");
    EXPECT_EQ(Formula(Period(7200.0, 5), 7), "1 0 hr, 0 1 hr -r 2 hr");
    EXPECT_EQ(Formula(Period(1500.0, 2), 3), "1 0 us, 0 750 ns -r 1500 ns");
}

TEST(ClockFormula, TakesTheFrequencyAsAPeriodInTheUnitOfTheSameId)
{
    const struct {
        double value;
        unsigned char unit;
        const char *formula;
    } rows[] = {{10.0, 1, "1 0 us, 0 50 us -r 100 us"}, {100.0, 2, "1 0 ns, 0 5 ns -r 10 ns"},
                {1.0, 0, "1 0 sec, 0 500 ms -r 1 sec"}, {1.0, 3, "1 0 us, 0 500 ps -r 1 ns"},
                {2.0, 3, "1 0 us, 0 250 ps -r 500 ps"}, {8.0, 2, "1 0 ns, 0 62500 ps -r 125 ns"}};
    for (const auto &row : rows)
        EXPECT_EQ(Formula(Frequency(row.value, row.unit)), row.formula) << row.value << " of unit " << int(row.unit);
}

TEST(ClockFormula, CutsAFractionOfAFemtosecond)
{
    EXPECT_EQ(Formula(Period(1.0, 0)), "1 0 fs, 0 0 fs -r 1 fs");
    EXPECT_EQ(Formula(Period(0.0015, 1)), "1 0 ps, 0 0 fs -r 1 fs");
}

TEST(ClockFormula, CountsTheOffsetInItsUnit)
{
    CClock clock = Period(15.0, 2);
    clock.SetRateOffset(100);
    EXPECT_EQ(Formula(clock), "1 100 ns, 0 107500 ps -r 15 ns");
    EXPECT_EQ(Formula(clock, 1), "1 100 ps, 0 7600 ps -r 15000 ps");
}

TEST(ClockFormula, HandsTheOffsetOutAndBeginsAtZero)
{
    CClock clock = Period(15.0, 2);
    clock.SetRateOffset(-100);
    CStr formula;
    long long offset = 0;
    EXPECT_TRUE(clock.GenerateFormula(formula, -1, &offset));
    EXPECT_STREQ(formula, "1 0 ns, 0 7500 ps -r 15 ns");
    EXPECT_EQ(offset, -100);
}

// Deliberate: the fraction of a negative number is not above 0.
TEST(ClockFormula, CutsANegativeNumberInItsUnit)
{
    EXPECT_EQ(Formula(Period(-15.0, 2)), "1 0 ns, 0 -7 ns -r -15 ns");
}

TEST(ClockFormula, AcceptsAnyDutyCycle)
{
    const struct {
        unsigned char cycle;
        const char *formula;
    } rows[] = {{0, "1 0 ns, 0 0 ns -r 10 ns"},
                {30, "1 0 ns, 0 3 ns -r 10 ns"},
                {100, "1 0 ns, 0 10 ns -r 10 ns"},
                {255, "1 0 ns, 0 25500 ps -r 10 ns"}};
    for (const auto &row : rows) {
        CClock clock = Period(10.0, 2);
        clock.SetRateCycle(row.cycle);
        EXPECT_EQ(Formula(clock), row.formula);
    }
}

TEST(ClockFormula, DoesNotChangeTheClock)
{
    CClock clock = Period(100000.0, 2);
    EXPECT_EQ(Formula(clock), "1 0 us, 0 50 us -r 100 us");
    EXPECT_EQ(clock.GetRateValue(), 100000.0);
    EXPECT_EQ(clock.GetRateUnit(), 2);
}

TEST(ClockFormula, HasRoomFor129Bytes)
{
    CStr formula;
    EXPECT_TRUE(CClock().GenerateFormula(formula, -1, nullptr));
    const char *text = formula;
    EXPECT_GE(reinterpret_cast<const int *>(text)[-1], 129);
}

TEST(ClockFormula, LeavesACopyOfItsTargetAlone)
{
    CStr formula("old");
    const CStr copy = formula;
    EXPECT_TRUE(CClock().GenerateFormula(formula, -1, nullptr));
    EXPECT_STREQ(copy, "old");
}

TEST(ClockFormula, NamesNoUnitThatItDoesNotKnow)
{
    EXPECT_EQ(Formula(Period(10.0, 8)), "1 0 (null), 0 5 (null) -r 10 (null)");
    EXPECT_EQ(Formula(Restored("10;-1;1;0;50;0")), "1 0 (null), 0 5 (null) -r 10 (null)");
    EXPECT_EQ(Formula(Restored("10;300;1;0;50;0"), 2), "1 0 ns, 0 0 ns -r -1 ns");  // an unknown unit converts to -1
}

TEST(ClockFormula, EndsForEveryNumberAndUnit)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const double values[] = {0.0, -0.0, 1e-320, 0.1, 1.0 / 3, 1e18 / 7, 1e300, infinity, -infinity, std::nan("")};
    for (const double value : values) {
        for (const char *saved : {"0;0;0;0;50;0", "0;3;0;-1;50;0", "0;7;1;9223372036854775807;255;0", "0;8;0;0;50;0",
                                  "0;-1;0;0;50;0", "0;2147483647;1;0;50;0", "0;-2147483648;0;5;1;1"}) {
            CClock clock = Restored(saved);
            clock.SetRateValue(value);
            for (const int unit : {-1, 0, 3, 7, 8, INT_MAX, INT_MIN, -2})
                EXPECT_LE(Formula(clock, unit).size(), 128u) << value << " " << saved << " " << unit;
        }
    }
}

// The formula computed once more, number by number.
TEST(ClockFormula, AgreesWithItsDefinition)
{
    const auto number = [](double value, int unit) {
        while (unit > 0 && value > std::trunc(value))
            value *= --unit >= 5 ? 60.0 : 1000.0;
        static const char *const names[] = {"fs", "ps", "ns", "us", "ms", "sec", "min", "hr"};
        return std::to_string(static_cast<long long>(value)) + " " + names[unit];
    };
    std::mt19937 random(5);
    for (int round = 0; round < 5000; ++round) {
        const double value = static_cast<double>(random() % 4000 + 1) / static_cast<double>(1u << random() % 6);
        const int unit = static_cast<int>(random() % 8);
        const int cycle = static_cast<int>(random() % 101);
        const int offset = static_cast<int>(random() % 100);
        CClock clock = Period(value, static_cast<unsigned char>(unit));
        clock.SetRateCycle(static_cast<unsigned char>(cycle));
        clock.SetRateOffset(offset);
        const double duty = cycle * value * 0.01;
        ASSERT_EQ(Formula(clock, unit),
                  "1 " + number(offset, unit) + ", 0 " + number(offset + duty, unit) + " -r " + number(value, unit))
            << value << " of unit " << unit << " at " << cycle;
    }
}

TEST(ClockStreamIn, SurvivesAMegabyteOfAnything)
{
    constexpr std::size_t Size = 1 << 20;
    std::mt19937 random(6);
    std::string noise(Size, ' ');
    for (char &c : noise)
        c = static_cast<char>(random() % 255 + 1);
    std::string large(Size, '9');
    large += ";9999999999;1;99999999999999999999;9999999999;1";
    const std::vector<std::string> texts = {noise, large, std::string(Size, ';'), std::string(Size, '.')};
    for (const std::string &text : texts) {
        CClock clock;
        clock.StreamIn(text.c_str());
        Saved(clock);
        Formula(clock);
    }
}

}  // namespace
