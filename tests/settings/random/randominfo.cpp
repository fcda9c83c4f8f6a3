#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "settings/random.h"

namespace {

using CInfo = tesk::CRandomStimulusInfo;

std::string Formula(const CInfo &info)
{
    SimpleString::CStr text("unchanged");
    const bool isWritten = info.GenerateInternalFormula(text);
    return isWritten ? std::string(text) : "refused, text " + std::string(text);
}

// Everything that a good record tells.
std::vector<double> Settings(const CInfo &info)
{
    int seed = 0, low = 0, high = 0, mean = 0, deviation = 0, degrees = 0, order = 0, unit = 0;
    info.GetUniformParameters(seed, low, high);
    info.GetNormalParameters(seed, mean, deviation);
    info.GetTParameters(seed, degrees);
    info.GetErlangParameters(seed, mean, order);
    const double period = info.GetPeriod(unit);
    return {static_cast<double>(info.GetDistributionKind()),
            period,
            static_cast<double>(unit),
            static_cast<double>(seed),
            static_cast<double>(mean),
            static_cast<double>(low),
            static_cast<double>(high),
            static_cast<double>(deviation),
            static_cast<double>(degrees),
            static_cast<double>(order)};
}

TEST(RandomSettings, AreAllZeroWhenNew)
{
    const CInfo info;
    EXPECT_EQ(info.GetErrorStatus(), 0U);
    EXPECT_EQ(Settings(info), std::vector<double>(10, 0.0));
}

TEST(RandomSettings, HaveTheNumbersOfTheirKinds)
{
    EXPECT_EQ(CInfo::KindUniform, 1);
    EXPECT_EQ(CInfo::KindNormal, 2);
    EXPECT_EQ(CInfo::KindExpotential, 3);
    EXPECT_EQ(CInfo::KindPoisson, 4);
    EXPECT_EQ(CInfo::KindChiSquare, 5);
    EXPECT_EQ(CInfo::KindT, 6);
    EXPECT_EQ(CInfo::KindErlang, 7);
    EXPECT_EQ(CInfo::KindRandom, 8);
}

TEST(RandomSettings, RefuseAMeanBelowOneOfAnExponentialOrPoissonDraw)
{
    CInfo info;
    EXPECT_FALSE(info.SetExpotentialParameters(1, 0));
    EXPECT_EQ(info.GetErrorStatus(), 0x004U);
    EXPECT_FALSE(info.SetPoissonParameters(1, -1));
    EXPECT_EQ(info.GetErrorStatus(), 0x004U);
    EXPECT_TRUE(info.SetPoissonParameters(1, 1));
}

TEST(RandomSettings, RefuseLessThanOneDegreeOfFreedom)
{
    CInfo info;
    EXPECT_FALSE(info.SetChiSquareParameters(1, 0));
    EXPECT_EQ(info.GetErrorStatus(), 0x040U);
    EXPECT_FALSE(info.SetTParameters(1, -5));
    EXPECT_EQ(info.GetErrorStatus(), 0x040U);
    EXPECT_TRUE(info.SetTParameters(1, 1));
}

TEST(RandomSettings, RefuseAnOrderBelowOneButTakeAnyMeanOfAnErlangDraw)
{
    CInfo info;
    EXPECT_FALSE(info.SetErlangParameters(1, 0, 0));
    EXPECT_EQ(info.GetErrorStatus(), 0x080U);
    EXPECT_TRUE(info.SetErlangParameters(1, 0, 1));  // deliberate
    EXPECT_TRUE(info.SetErlangParameters(1, INT_MIN, 1));
}

TEST(RandomSettings, TakeAnyParametersOfTheOtherKinds)
{
    CInfo info;
    EXPECT_TRUE(info.SetUniformParameters(1, 5, -5));
    EXPECT_TRUE(info.SetNormalParameters(1, -5, -5));
    EXPECT_TRUE(info.SetRandomParameters(INT_MIN));
}

TEST(RandomSettings, ClearTheStatusWithTheNextGoodSetter)
{
    CInfo info;
    EXPECT_FALSE(info.SetChiSquareParameters(1, 0));
    EXPECT_TRUE(info.SetRandomParameters(2));
    EXPECT_EQ(info.GetErrorStatus(), 0U);
}

TEST(RandomSettings, AreStoredEvenIfRefused)
{
    CInfo info;
    EXPECT_FALSE(info.SetExpotentialParameters(7, 0));
    EXPECT_EQ(info.GetDistributionKind(), CInfo::KindExpotential);
    EXPECT_TRUE(info.SetRandomParameters(8));
    int seed = 0, mean = 5;
    EXPECT_TRUE(info.GetExpotentialParameters(seed, mean));
    EXPECT_EQ(mean, 0);
}

TEST(RandomSettings, KeepTheFieldsOfOtherKinds)
{
    CInfo info;
    info.SetUniformParameters(1, 2, 3);
    info.SetErlangParameters(4, 5, 6);
    info.SetTParameters(7, 8);
    info.SetNormalParameters(9, 10, 11);
    info.SetPeriod(12.5, 3);
    EXPECT_THAT(Settings(info), ::testing::ElementsAre(2, 12.5, 3, 9, 10, 2, 3, 11, 8, 6));
}

TEST(RandomSettings, AreReadByTheirKindsGettersWhateverTheKind)
{
    CInfo info;
    info.SetPoissonParameters(1, 20);
    info.SetTParameters(2, 30);
    int seed = 0, mean = 0, degrees = 0;
    EXPECT_TRUE(info.GetExpotentialParameters(seed, mean));
    EXPECT_TRUE(info.GetChiSquareParameters(seed, degrees));
    EXPECT_EQ(seed, 2);
    EXPECT_EQ(mean, 20);
    EXPECT_EQ(degrees, 30);
    EXPECT_TRUE(info.GetPoissonParameters(seed, mean));
    EXPECT_EQ(mean, 20);
}

TEST(RandomSettings, AreNotGivenOutWhileTheStatusIsBad)
{
    CInfo info;
    info.SetExpotentialParameters(1, 0);
    int a = -1, b = -2, c = -3;
    EXPECT_FALSE(info.GetUniformParameters(a, b, c));
    EXPECT_FALSE(info.GetNormalParameters(a, b, c));
    EXPECT_FALSE(info.GetErlangParameters(a, b, c));
    EXPECT_FALSE(info.GetExpotentialParameters(a, b));
    EXPECT_FALSE(info.GetPoissonParameters(a, b));
    EXPECT_FALSE(info.GetChiSquareParameters(a, b));
    EXPECT_FALSE(info.GetTParameters(a, b));
    EXPECT_FALSE(info.GetRandomParameters(a));
    EXPECT_THAT((std::vector<int>{a, b, c}), ::testing::ElementsAre(-1, -2, -3));
    EXPECT_EQ(Formula(info), "refused, text unchanged");
}

TEST(RandomSettings, AreCopiedMemberByMember)
{
    CInfo info;
    info.SetErlangParameters(1, 2, 0);
    info.SetPeriod(3.0, 4);
    CInfo copy;
    copy = info;
    EXPECT_EQ(copy.GetErrorStatus(), 0x080U);
    copy.SetRandomParameters(5);
    EXPECT_EQ(info.GetDistributionKind(), CInfo::KindErlang);
}

struct STextRow {
    bool (*set)(CInfo &info);
    const char *text;
};

const STextRow TextRows[] = {
    {[](CInfo &info) { return info.SetUniformParameters(5, 0, 10); }, "\\RANDOM\\1\\5\\0\\10\\20.000000ns"},
    {[](CInfo &info) { return info.SetNormalParameters(-1, -2, 3); }, "\\RANDOM\\2\\-1\\-2\\3\\20.000000ns"},
    {[](CInfo &info) { return info.SetExpotentialParameters(1, 2); }, "\\RANDOM\\3\\1\\2\\20.000000ns"},
    {[](CInfo &info) { return info.SetPoissonParameters(1, 2); }, "\\RANDOM\\4\\1\\2\\20.000000ns"},
    {[](CInfo &info) { return info.SetChiSquareParameters(1, 2); }, "\\RANDOM\\5\\1\\2\\20.000000ns"},
    {[](CInfo &info) { return info.SetTParameters(1, 2); }, "\\RANDOM\\6\\1\\2\\20.000000ns"},
    {[](CInfo &info) { return info.SetErlangParameters(1, 2, 3); }, "\\RANDOM\\7\\1\\2\\3\\20.000000ns"},
    {[](CInfo &info) { return info.SetRandomParameters(INT_MIN); }, "\\RANDOM\\8\\-2147483648\\20.000000ns"},
};

TEST(RandomText, IsWrittenAndReadBackForEveryKind)
{
    for (const STextRow &row : TextRows) {
        CInfo info;
        ASSERT_TRUE(row.set(info)) << row.text;
        info.SetPeriod(20.0, 2);
        EXPECT_EQ(Formula(info), row.text);
        CInfo read;
        EXPECT_TRUE(read.InitializeFromInternalFormula(row.text)) << row.text;
        EXPECT_EQ(Settings(read), Settings(info)) << row.text;
    }
}

TEST(RandomText, OfANewRecordHasNeitherKindNorPeriod)
{
    EXPECT_EQ(Formula(CInfo()), "\\RANDOM\\0\\0\\0.000000fs");
}

TEST(RandomText, LeavesOutAUnitThatHasNoName)
{
    CInfo info;
    info.SetRandomParameters(1);
    info.SetPeriod(0.5, 8);
    EXPECT_EQ(Formula(info), "\\RANDOM\\8\\1\\0.500000");
}

struct SReadRow {
    const char *text;
    bool isGood;
    unsigned status;
};

TEST(RandomText, IsReadOnlyWithAllItsFields)
{
    const SReadRow rows[] = {
        {"\\RANDOM\\8\\5\\10ns", true, 0},
        {"\\RANDOM\\8\\5", false, 0x100},
        {"\\RANDOM\\8", false, 0x100},
        {"\\RANDOM\\8\\5\\", false, 0},  // the fields are there, but the period is no time
        {"\\RANDOM\\9\\5\\10ns", false, 0x100},
        {"\\RANDOM\\0\\5\\10ns", false, 0x100},
        {"\\RANDOM\\-1\\5\\10ns", false, 0x100},
        {"\\RANDOM\\x\\5\\10ns", false, 0x100},
        {"\\RANDOM\\", false, 0x100},
        {"\\RANDOM", false, 0x100},
        {"", false, 0x100},
        {nullptr, false, 0x100},
        {"\\random\\1\\5\\0\\10\\20ns", false, 0x100},  // deliberate: the letter case counts here
        {"\\RANDOM\\1\\5\\0\\10ns", false, 0x100},
        {"\\RANDOM\\1\\5\\0\\10\\20ns", true, 0},
        {"\\RANDOM\\2\\5\\0\\10ns", false, 0x100},
        {"\\RANDOM\\7\\5\\0\\10ns", false, 0x100},
        {"\\RANDOM\\3\\5\\10ns", false, 0x100},
        {"\\RANDOM\\3\\5\\7\\10ns", true, 0},
        {"\\RANDOM\\4\\5\\10ns", false, 0x100},
        {"\\RANDOM\\5\\5\\10ns", false, 0x100},
        {"\\RANDOM\\6\\5\\10ns", false, 0x100},
        {"\\RANDOM\\8\\5\\10ns\\more\\and more", true, 0},
        {"\\\\RANDOM\\\\8\\\\5\\\\10ns", true, 0},  // a run of backslashes separates as one does
        {"behind \\RANDOM\\8\\5\\10ns", true, 0},
        {"\"\\RANDOM\\8\\5\\10ns\"", true, 0},
        {"\"\\RANDOM\\8\\5\\10ns", true, 0},
        {"\\RANDOM\\8\\5\\10ns\"", false, 0},  // a closing quote only goes with an opening one
        {"\"", false, 0x100},
        {"\\RANDOM\\3\\5\\0\\10ns", false, 0x004},
        {"\\RANDOM\\5\\5\\0\\10ns", false, 0x040},
        {"\\RANDOM\\7\\5\\0\\0\\10ns", false, 0x080},
        {"\\RANDOM\\8\\5\\10 parsec", false, 0},
        {"\\RANDOM\\8\\5\\10", false, 0},  // a period needs a unit
    };
    for (const SReadRow &row : rows) {
        CInfo info;
        EXPECT_EQ(info.InitializeFromInternalFormula(row.text), row.isGood) << (row.text ? row.text : "null");
        EXPECT_EQ(info.GetErrorStatus(), row.status) << (row.text ? row.text : "null");
    }
}

TEST(RandomText, ReadsNumbersLeniently)
{
    CInfo info;
    EXPECT_TRUE(info.InitializeFromInternalFormula("\\RANDOM\\ 1x\\4294967297\\-3e5\\\t+7 apples\\1.5 US"));
    int seed = 0, low = 0, high = 0, unit = 0;
    EXPECT_TRUE(info.GetUniformParameters(seed, low, high));
    EXPECT_EQ(seed, 1);
    EXPECT_EQ(low, -3);
    EXPECT_EQ(high, 7);
    EXPECT_EQ(info.GetPeriod(unit), 1.5);
    EXPECT_EQ(unit, 3);
}

TEST(RandomText, StoresAPeriodEvenIfItIsRefused)
{
    const struct {
        const char *text;
        double period;
        int unit;
    } rows[] = {
        {"\\RANDOM\\3\\5\\0\\10ns", 0.0, 0},     // the mean is refused
        {"\\RANDOM\\8\\5\\10 parsec", 0.0, -1},  // an unknown unit
        {"\\RANDOM\\8\\5\\", 0.0, 0},            // no time at all
        {"\\RANDOM\\8\\5\\10", 10.0, -1},        // no unit
        {"\\RANDOM\\9\\5\\10ns", 3.0, 4},        // the text is refused before its period
    };
    for (const auto &row : rows) {
        CInfo info;
        info.SetPeriod(3.0, 4);
        EXPECT_FALSE(info.InitializeFromInternalFormula(row.text)) << row.text;
        int unit = 0;
        EXPECT_EQ(info.GetPeriod(unit), row.period) << row.text;
        EXPECT_EQ(unit, row.unit) << row.text;
    }
}

}  // namespace
