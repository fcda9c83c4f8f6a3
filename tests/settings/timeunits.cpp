#include "settings/timeunits.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <string>

#include "base/wrap.h"

using tesk::ChangeTime;
using tesk::ChangeTime2;

namespace {

constexpr unsigned Unknown = 0xFFFFFFFF;
constexpr long double StepsInFs[] = {1, 1e3L, 1e6L, 1e9L, 1e12L, 1e15L, 60e15L, 3600e15L};

}  // namespace

TEST(ChangeTime, ConvertsByTheProductOfTheSteps)
{
    EXPECT_EQ(ChangeTime(1.0, 5, 0), 1e15);
    EXPECT_EQ(ChangeTime(1.0, 7, 5), 3600.0);
    for (unsigned from = 0; from < 8; ++from) {
        for (unsigned to = 0; to < 8; ++to)
            EXPECT_DOUBLE_EQ(ChangeTime(7.0, from, to), static_cast<double>(7 * StepsInFs[from] / StepsInFs[to]));
    }
}

TEST(ChangeTime, OfAnUnknownUnitIsMinusOne)
{
    EXPECT_EQ(ChangeTime(5.0, Unknown, 0), -1.0);
    EXPECT_EQ(ChangeTime(5.0, 0, Unknown), -1.0);
    EXPECT_EQ(ChangeTime(5.0, Unknown, Unknown), -1.0);
    EXPECT_EQ(ChangeTime2(5, Unknown, 0), -1);
    EXPECT_EQ(ChangeTime2(5, 0, Unknown), -1);
    EXPECT_EQ(ChangeTime(5.0, 8, 0), -1.0);
    EXPECT_EQ(ChangeTime2(5, 0, 0xFFFF), -1);
}

TEST(ChangeTime2, TruncatesTowardZero)
{
    EXPECT_EQ(ChangeTime2(1500, 2, 3), 1);
    EXPECT_EQ(ChangeTime2(-1500, 2, 3), -1);
    EXPECT_EQ(ChangeTime2(7199, 5, 7), 1);
    EXPECT_EQ(ChangeTime2(2, 7, 5), 7200);
    EXPECT_EQ(ChangeTime2(5, 3, 3), 5);
}

TEST(ChangeTime2, Wraps)
{
    EXPECT_EQ(ChangeTime2(LLONG_MAX, 1, 0), -1000);
}

TEST(Frequencies, ConvertByPowersOf1000)
{
    EXPECT_DOUBLE_EQ(tesk::ChangeFrequency(5.0, 3, 0), 5e9);
    EXPECT_EQ(tesk::ChangeFrequency(5.0, 0, 3), (1.0 / 1e9) * 5.0);
    EXPECT_EQ(tesk::ChangeFrequency(5.0, 2, 2), 5.0);
    EXPECT_DOUBLE_EQ(tesk::PeriodFromFreq(10.0, 1, 1), 1e8);
    EXPECT_DOUBLE_EQ(tesk::FreqFromPeriod(100.0, 2, 2), 10.0);
    EXPECT_EQ(tesk::ChangeFrequency(1.0, 0xFFFFFFF0, 0), std::numeric_limits<double>::infinity());  // and at once
}

TEST(UnitNames, AreFoundInAnyLetterCase)
{
    EXPECT_EQ(tesk::UnitIDFromName("SEC"), 5);
    EXPECT_EQ(tesk::UnitIDFromName("S"), 5);
    EXPECT_EQ(tesk::UnitIDFromName("sec"), 5);
    EXPECT_EQ(tesk::UnitIDFromName("NS"), 2);
    EXPECT_EQ(tesk::UnitIDFromName(""), -1);
    EXPECT_EQ(tesk::UnitIDFromName(nullptr), -1);
    EXPECT_EQ(tesk::UnitIDFromName("n"), -1);
    EXPECT_EQ(tesk::UnitIDFromName("nss"), -1);
    const char *names[] = {"fs", "ps", "ns", "us", "ms", "sec", "min", "hr"};
    for (unsigned id = 0; id < 8; ++id) {
        EXPECT_STREQ(tesk::UnitNameFromID(id), names[id]);
        EXPECT_EQ(tesk::UnitIDFromName(names[id]), static_cast<int>(id));
    }
}

TEST(UnitNames, OfUnknownIdsDifferDeliberately)
{
    EXPECT_EQ(tesk::UnitNameFromID(8), nullptr);
    EXPECT_EQ(tesk::UnitNameFromID(Unknown), nullptr);
    EXPECT_STREQ(tesk::GetFreqUnitName(4), "");
    EXPECT_STREQ(tesk::GetFreqUnitName(0), "Hz");
    EXPECT_STREQ(tesk::GetFreqUnitName(1), "kHz");
    EXPECT_STREQ(tesk::GetFreqUnitName(2), "MHz");
    EXPECT_STREQ(tesk::GetFreqUnitName(3), "GHz");
}

TEST(TextToTime, ReadsANumberAndAUnit)
{
    const struct {
        const char *text;
        double value;
        int unit;
    } rows[] = {{"10 ns", 10, 2}, {"10ns", 10, 2},  {"10", 10, -1},  {"1.5 us", 1.5, 3},
                {"-3", -3, -1},   {" \t7ps", 7, 1}, {"ns", 0, 2},    {".5S", 0.5, 5},
                {"5\n hr", 5, 7}, {"-", 0, -1},     {"10 ", 10, -1}, {"1.25min", 1.25, 6}};
    for (const auto &row : rows) {
        double value = -99;
        int unit = -99;
        EXPECT_TRUE(tesk::TextToTime(row.text, &value, &unit)) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
        EXPECT_EQ(unit, row.unit) << row.text;
    }
}

TEST(TextToTime, LeavesTheValueAloneWhenItRefusesATime)
{
    for (const char *text :
         {"", " ", "\t\n", "+5ns", "1e3ns", "5 parsec", "5 ns ", static_cast<const char *>(nullptr)}) {
        double value = 7;
        EXPECT_FALSE(tesk::TextToTime(text, &value, nullptr)) << (text != nullptr ? text : "null");
        EXPECT_EQ(value, 7);
    }
}

TEST(TextToTime, StoresTheUnitWhateverItIs)
{
    int unit = 5;
    EXPECT_FALSE(tesk::TextToTime("5 parsec", nullptr, &unit));
    EXPECT_EQ(unit, -1);
    unit = 5;
    EXPECT_FALSE(tesk::TextToTime("", nullptr, &unit));
    EXPECT_EQ(unit, 5);
    EXPECT_TRUE(tesk::TextToTime("5", nullptr, nullptr));
}

TEST(TextToTime, Accepts127BytesBehindLeadingWhiteSpace)
{
    const std::string digits(127, '1');
    EXPECT_TRUE(tesk::TextToTime(digits.c_str(), nullptr, nullptr));
    EXPECT_TRUE(tesk::TextToTime(("   " + digits).c_str(), nullptr, nullptr));
    EXPECT_FALSE(tesk::TextToTime((digits + "1").c_str(), nullptr, nullptr));
}

TEST(TextToDouble, ReadsSignPointAndExponent)
{
    const struct {
        const char *text;
        double value;
    } rows[] = {{"", 0},
                {"12", 12},
                {"+12.5", 12.5},
                {"-0.25", -0.25},
                {"1e3", 1000},
                {"1E-3", 0.001},
                {"2.5e+2", 250},
                {"5.", 5},
                {".5", 0.5},
                {"1e", 1},
                {"123456789012345", 123456789012345},
                {"1.5e3x", 1500},
                {"-", 0}};
    for (const auto &row : rows)
        EXPECT_EQ(tesk::TextToDouble(row.text), row.value) << row.text;
}

TEST(TextToDouble, CountsAnyOtherByteAsItsDistanceFromZero)
{
    EXPECT_EQ(tesk::TextToDouble("1:"), 20.0);                             // ':' is 10
    EXPECT_EQ(tesk::TextToDouble("1-2"), 100 - 30 + 2);                    // '-' is -3
    EXPECT_EQ(tesk::TextToDouble("1.2.5"), (1000 - 200 + 20 + 5) / 10.0);  // of two points the last one counts
}

TEST(TextToDouble, AgreesWithTheStandardLibraryUpToFifteenDigits)
{
    std::mt19937_64 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::string text = std::to_string(random() % 1000000000000000ULL);
        text.insert(random() % (text.size() + 1), ".");
        EXPECT_EQ(tesk::TextToDouble(text.c_str()), std::stod(text)) << text;
    }
}

TEST(IntegerPower, SquaresAndInverts)
{
    EXPECT_EQ(tesk::IntegerPower(10.0, 0), 1.0);
    EXPECT_EQ(tesk::IntegerPower(10.0, 15), 1e15);
    EXPECT_EQ(tesk::IntegerPower(2.0, -3), 0.125);
    EXPECT_EQ(tesk::IntegerPower(2.0, INT_MIN), 0.0);
}

TEST(ScaleNumber, GoesUpWhileTheValueReachesTheStep)
{
    const struct {
        double value;
        int unit;
        double scaledValue;
        int scaledUnit;
    } rows[] = {{2.5e6, 0, 2.5, 2}, {2.0, 7, 2.0, 8}, {999, 0, 999, 0}, {1000, 0, 1, 1},     {59, 5, 59, 5},
                {60, 5, 1, 6},      {3600, 5, 1, 8},  {5, 8, 5, 8},     {5000, -1, 5000, -1}};
    for (const auto &row : rows) {
        double value = row.value;
        int unit = row.unit;
        tesk::ScaleNumber(&value, &unit);
        EXPECT_EQ(value, row.scaledValue) << row.value << " of " << row.unit;
        EXPECT_EQ(unit, row.scaledUnit) << row.value << " of " << row.unit;
    }
    int unit = 2;
    tesk::ScaleNumber(nullptr, &unit);
    EXPECT_EQ(unit, 2);
}

TEST(ScaleNumberNoFloat, GoesUpOnlyAsFarAsTheValueStaysWhole)
{
    const struct {
        double value;
        int unit;
        double scaledValue;
        int scaledUnit;
    } rows[] = {{1500, 2, 1500, 2}, {3000, 2, 3, 3}, {120, 6, 2, 7},     {120, 7, 120, 7},     {0, 0, 0, 0},
                {1e15, 0, 1, 5},    {90, 5, 90, 5},  {3600e15, 0, 1, 7}, {-3000, 2, -3000, 2}, {5000, 8, 5000, 8}};
    for (const auto &row : rows) {
        double value = row.value;
        int unit = row.unit;
        tesk::ScaleNumberNoFloat(&value, &unit);
        EXPECT_EQ(value, row.scaledValue) << row.value << " of " << row.unit;
        EXPECT_EQ(unit, row.scaledUnit) << row.value << " of " << row.unit;
    }
    double infinite = HUGE_VAL;
    int unit = 0;
    tesk::ScaleNumberNoFloat(&infinite, &unit);
    EXPECT_EQ(unit, 0);
    tesk::ScaleNumberNoFloat(nullptr, nullptr);
}

TEST(ScaleNumberMaxFloat, ToleratesAFixedNumberOfDecimals)
{
    double value = 1500.0;
    int unit = 2;
    tesk::ScaleNumberMaxFloat(&value, &unit, 1);
    EXPECT_EQ(value, 1.5);
    EXPECT_EQ(unit, 3);
    value = 1550.0;
    unit = 2;
    tesk::ScaleNumberMaxFloat(&value, &unit, 1);
    EXPECT_EQ(unit, 2);
}

TEST(ScaleNumberMaxFloat, LeavesAloneWhatIsNoTime)
{
    double value = 1000.0;
    int unit = 8;
    tesk::ScaleNumberMaxFloat(&value, &unit, 1);
    EXPECT_EQ(value, 1000.0);
    EXPECT_EQ(unit, 8);
    unit = 2;
    tesk::ScaleNumberMaxFloat(nullptr, &unit, 1);
    EXPECT_EQ(unit, 2);
    tesk::ScaleNumberMaxFloat(&value, nullptr, 1);
    EXPECT_EQ(value, 1000.0);
}

TEST(TimeValue, StartsAtMinusOne)
{
    const STimeValue time;
    EXPECT_EQ(time.m_value, -1);
    EXPECT_EQ(time.m_ticks, 0);
    EXPECT_EQ(time.m_unit, 0);
    EXPECT_EQ(time.m_displayUnit, 0);
}

TEST(TimeValue, RefinesAFractionToAUnitInWhichItIsWhole)
{
    STimeValue time;
    time.SetFromValue(1.5, 2, 2, 1000);
    EXPECT_EQ(time.m_value, 1500);
    EXPECT_EQ(time.m_unit, 1);
    EXPECT_EQ(time.m_displayUnit, 2);
    EXPECT_EQ(time.m_ticks, 1500);
    EXPECT_EQ(time.GetInDisplayUnit(), 1);
    time.SetFromValue(0.5, 0, 0, 1);
    EXPECT_EQ(time.m_value, 0);
}

TEST(TimeValue, CountsTicksOfTheResolution)
{
    // Deliberate: a resolution of 1500 fs is 1.5 ps and counts as 2 ps.
    const struct {
        double value;
        int unit;
        long long resolution, ticks;
    } rows[] = {{10, 2, 1000, 10000}, {10, 2, 1, 10000000}, {10, 2, 10000, 1000}, {10, 2, 0, 0},
                {10, 2, -5, 0},       {1, 0, 1000, 0},      {2500, 0, 1000, 2},   {1, 7, 1000, 3600000000000000},
                {-5, 2, 1000, -5000}, {7, 1, 2000, 3},      {10, 2, 1500, 5000},  {3, 2, 3000000, 1}};
    for (const auto &row : rows) {
        STimeValue time;
        time.SetFromValue(row.value, row.unit, row.unit, row.resolution);
        EXPECT_EQ(time.m_ticks, row.ticks) << row.value << " of " << row.unit << " at " << row.resolution;
    }
}

TEST(TimeValue, OfNoNumberIsTheSmallest)
{
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300}) {
        STimeValue time;
        time.SetFromValue(value, 7, 7, 1000);
        EXPECT_EQ(time.m_value, LLONG_MIN);
        time.GetInDisplayUnit();
    }
}

TEST(TimeValue, FromTicksIsInFemtoseconds)
{
    STimeValue time;
    time.SetFromValue(1, 5, 5, 1);
    time.SetFromTicks(7, 1000);
    EXPECT_EQ(time.m_value, 7000);
    EXPECT_EQ(time.m_ticks, 7);
    EXPECT_EQ(time.m_unit, 0);
    EXPECT_EQ(time.m_displayUnit, 0);
}

TEST(TimeValue, InAnUnknownDisplayUnitIsMinusOne)
{
    STimeValue time;
    time.SetFromValue(5, 2, -1, 1000);
    EXPECT_EQ(time.m_displayUnit, 0xFFFF);
    EXPECT_EQ(time.GetInDisplayUnit(), -1);
}

TEST(TimeArgument, TakesTheDefaultUnit)
{
    STimeValue time;
    ASSERT_TRUE(ParseTimeArgument("5us", 1000, time, 2));
    EXPECT_EQ(time.m_value, 5);
    EXPECT_EQ(time.m_unit, 3);
    EXPECT_EQ(time.m_displayUnit, 2);  // deliberate: the default, not the unit as written
    ASSERT_TRUE(ParseTimeArgument("5us", 1000, time, -1));
    EXPECT_EQ(time.m_displayUnit, 0xFFFF);
    ASSERT_TRUE(ParseTimeArgument("5", 1000, time, 3));
    EXPECT_EQ(time.m_unit, 3);
    EXPECT_EQ(time.m_ticks, 5000000);
}

TEST(TimeArgument, WithoutAnyUnitTakesTheFinestThatIsNotFinerThanTheResolution)
{
    const struct {
        long long resolution;
        int unit;
    } rows[] = {{1, 0}, {0, 0}, {-5, 0}, {2, 1}, {1000, 1}, {1001, 1}, {2000, 2}, {1000000, 2}, {1999999, 2}};
    for (const auto &row : rows) {
        STimeValue time;
        ASSERT_TRUE(ParseTimeArgument("5", row.resolution, time, -1));
        EXPECT_EQ(time.m_unit, row.unit) << row.resolution;
        EXPECT_EQ(time.m_displayUnit, row.unit) << row.resolution;
    }
}

TEST(TimeArgument, LeavesTheTimeAloneForNoTextAndForABadOne)
{
    STimeValue time;
    time.SetFromTicks(7, 1);
    EXPECT_TRUE(ParseTimeArgument("", 1000, time, -1));
    EXPECT_TRUE(ParseTimeArgument(nullptr, 1000, time, -1));
    EXPECT_FALSE(ParseTimeArgument("5 parsec", 1000, time, -1));
    EXPECT_EQ(time.m_ticks, 7);
}

TEST(Wrapping, IsDefinedEverywhere)
{
    EXPECT_EQ(tesk::WrapAdd(LLONG_MAX, 1), LLONG_MIN);
    EXPECT_EQ(tesk::WrapSubtract(LLONG_MIN, 1), LLONG_MAX);
    EXPECT_EQ(tesk::WrapMultiply(LLONG_MIN, -1), LLONG_MIN);
    EXPECT_EQ(tesk::WrapDivide(LLONG_MIN, -1), LLONG_MIN);
    EXPECT_EQ(tesk::WrapModulo(LLONG_MIN, -1), 0);
    EXPECT_EQ(tesk::TruncateToInt64(9223372036854775808.0), LLONG_MIN);
    EXPECT_EQ(tesk::TruncateToInt64(-1.9), -1);
    EXPECT_EQ(tesk::ReadInt(" 12x"), 12);
    EXPECT_EQ(tesk::ReadInt("4294967297"), 1);
}
