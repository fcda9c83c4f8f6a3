// The comparison of two sides, fed by hand.
#include "tools/compare/comparison.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "tools/compare/memoryfile.h"

using tesk::ECompareSide;
using ::testing::ElementsAre;

namespace {

using CChange = std::tuple<long long, ECompareSide, std::string>;  // time, side, levels
constexpr ECompareSide Expected = ECompareSide::Expected;
constexpr ECompareSide Got = ECompareSide::Got;

// "3 times, first at 10: 1, expected 0" of one pair of levels; "" if they are the same.
std::string Compared(const tesk::SComparePolicy &policy, const std::vector<CChange> &changes, long long last = 100)
{
    tesk::CComparison comparison(policy);
    comparison.AddPair({tesk::EComparedKind::Levels, std::get<2>(changes.front()).size()});
    for (const auto &[time, side, levels] : changes) {
        char *const row = comparison.Change(side, 0, time);
        std::ranges::copy(levels, row);
    }
    comparison.Finish(last);
    const tesk::SPairVerdict &verdict = comparison.Verdict(0);
    if (!verdict.first)
        return "";
    return std::to_string(verdict.stretches) + " times, first at " + std::to_string(verdict.first->time) + ": " +
           verdict.first->got + ", expected " + verdict.first->expected;
}

std::string Text(const tesk::CValueForm &form, std::uint64_t raw, const tesk::CLiteralTexts &literals)
{
    const tesk::SComparedForm one{form.Kind(), 1};
    tesk::CComparedRow row = tesk::EmptyRow(one, {});
    const std::vector<std::optional<std::uint64_t>> values = {raw};
    form.Write(values, row.data());
    return tesk::RowText(one, row, literals);
}

}  // namespace

TEST(Comparison, TakesAllChangesOfATimeTogether)
{
    EXPECT_EQ(Compared({}, {{0, Expected, "0"}, {0, Got, "0"}, {7, Expected, "1"}, {7, Got, "1"}}), "");
    EXPECT_EQ(Compared({}, {{0, Expected, "0"}, {0, Got, "0"}, {7, Got, "x"}, {7, Expected, "1"}, {7, Got, "1"}}), "");
}

TEST(Comparison, CountsTheStretchesAndKeepsTheFirst)
{
    const std::vector<CChange> changes = {{0, Expected, "00"}, {0, Got, "00"}, {5, Got, "01"},
                                          {6, Got, "11"},      {8, Got, "00"}, {9, Expected, "10"}};
    EXPECT_EQ(Compared({}, changes), "2 times, first at 5: 01, expected 00");
}

TEST(Comparison, MeetsTheValuesInForceWhereItBegins)
{
    tesk::SComparePolicy policy;
    policy.from = 20;
    const std::vector<CChange> changes = {{0, Expected, "0"}, {0, Got, "1"}, {30, Got, "0"}};
    EXPECT_EQ(Compared(policy, changes), "1 times, first at 20: 1, expected 0");
    policy.from = 30;
    EXPECT_EQ(Compared(policy, changes), "");
}

TEST(Comparison, EndsWithTheLastTickItIsTold)
{
    const std::vector<CChange> changes = {{0, Expected, "0"}, {0, Got, "0"}, {30, Got, "1"}};
    tesk::SComparePolicy policy;
    policy.until = 29;
    EXPECT_EQ(Compared(policy, changes), "");
    policy.until = 30;
    EXPECT_EQ(Compared(policy, changes), "1 times, first at 30: 1, expected 0");
}

TEST(Comparison, TakesWhatHasNoValueForUnknown)
{
    EXPECT_EQ(Compared({}, {{5, Expected, "x"}}), "");
    EXPECT_EQ(Compared({}, {{5, Expected, "1"}}), "1 times, first at 5: x, expected 1");
}

TEST(Comparison, IgnoresAnUnknownThatIsExpectedAndNoneThatIsGot)
{
    tesk::SComparePolicy policy;
    policy.ignoresUnknown = true;
    EXPECT_EQ(Compared(policy, {{0, Expected, "x1"}, {0, Got, "01"}}), "");
    EXPECT_EQ(Compared(policy, {{0, Expected, "01"}, {0, Got, "x1"}}), "1 times, first at 0: x1, expected 01");
    EXPECT_EQ(Compared(policy, {{0, Expected, "z"}, {0, Got, "1"}}), "1 times, first at 0: 1, expected z");
}

TEST(Comparison, LetsAChangeComeEarlierOrLaterByTheTolerance)
{
    tesk::SComparePolicy policy;
    policy.tolerance = 3;
    for (const long long time : {17, 18, 20, 22, 23})
        EXPECT_EQ(Compared(policy, {{0, Expected, "0"},
                                    {0, Got, "0"},
                                    {std::min(time, 20LL), time < 20 ? Got : Expected, "1"},
                                    {std::max(time, 20LL), time < 20 ? Expected : Got, "1"}}),
                  "")
            << time;
    EXPECT_EQ(Compared(policy, {{0, Expected, "0"}, {0, Got, "0"}, {16, Got, "1"}, {20, Expected, "1"}}),
              "1 times, first at 16: 1, expected 0");
    EXPECT_EQ(Compared(policy, {{0, Expected, "0"}, {0, Got, "0"}, {20, Expected, "1"}, {24, Got, "1"}}),
              "1 times, first at 20: 0, expected 1");
}

TEST(Comparison, AllowsNoPulseThatTheOtherSideLacksHoweverShort)
{
    tesk::SComparePolicy policy;
    policy.tolerance = 10;
    EXPECT_EQ(Compared(policy, {{0, Expected, "0"}, {0, Got, "0"}, {50, Got, "1"}, {51, Got, "0"}}),
              "1 times, first at 50: 1, expected 0");
    EXPECT_EQ(Compared(policy, {{0, Expected, "0"}, {0, Got, "0"}, {50, Expected, "1"}, {51, Expected, "0"}}),
              "1 times, first at 50: 0, expected 1");
}

// The bits of a bus need not change together.
TEST(Comparison, AppliesTheToleranceToEachElement)
{
    tesk::SComparePolicy policy;
    policy.tolerance = 3;
    EXPECT_EQ(
        Compared(policy, {{0, Expected, "00"}, {0, Got, "00"}, {18, Got, "01"}, {20, Expected, "11"}, {22, Got, "11"}}),
        "");
}

TEST(Comparison, TellsOfTheFirstDifferenceOnce)
{
    tesk::CComparison comparison{tesk::SComparePolicy{}};
    comparison.AddPair({});
    comparison.AddPair({});
    std::vector<std::size_t> told;
    comparison.OnFirstDifference([&](std::size_t pair) { told.push_back(pair); });
    for (const long long time : {5, 6, 7})
        *comparison.Change(Got, 1, time) = time == 6 ? 'x' : '1';
    EXPECT_THAT(told, ElementsAre(1U));
    *comparison.Change(Got, 0, 8) = '1';
    comparison.Finish(8);
    EXPECT_THAT(told, ElementsAre(1U, 0U));
}

TEST(ComparedValue, IsALevelOfFourStatesOrOfNine)
{
    tesk::CLiteralTexts literals;
    const struct {
        const char *type;
        bool hasNine;
        const char *shown;
    } rows[] = {{NineStates, false, "xx01zx01x"},
                {NineStates, true, "UX01ZWLH-"},
                {FourStates, true, "01ZX"},
                {"e#3#bitc2 01", false, "01"}};
    for (const auto &row : rows) {
        tesk::SComparePolicy policy;
        policy.hasNineStates = row.hasNine;
        const tesk::CValueForm form(Kestrin::KTypeInfo(row.type), policy, literals);
        std::string shown;
        for (std::uint64_t position = 0; position < std::string(row.shown).size(); ++position)
            shown += Text(form, position, literals);
        EXPECT_EQ(shown, row.shown) << row.type;
    }
}

TEST(ComparedValue, OfABooleanIsALevelAndOfOtherEnumerationsTheLiteral)
{
    tesk::CLiteralTexts literals;
    const tesk::CValueForm boolean(Kestrin::KTypeInfo("e#7#booleans2 FALSE true "), {}, literals);
    EXPECT_EQ(Text(boolean, 0, literals) + Text(boolean, 1, literals), "01");
    const tesk::CValueForm state(Kestrin::KTypeInfo("e#5#states2 idle run "), {}, literals);
    const tesk::CValueForm turned(Kestrin::KTypeInfo("e#5#states2 run idle "), {}, literals);
    EXPECT_EQ(Text(state, 1, literals), "run");
    EXPECT_EQ(Text(turned, 0, literals), "run");
    EXPECT_EQ(Text(state, 7, literals), "none");
}

TEST(ComparedValue, OfAnIntegerIsSignedAndFitsAVectorOrDiffersFromAll)
{
    tesk::CLiteralTexts literals;
    const tesk::CValueForm form(Kestrin::KTypeInfo(Integers), {}, literals);
    EXPECT_EQ(Text(form, 0xFFFFFFFE, literals), "-2");
    const struct {
        long long value;
        const char *levels;
    } rows[] = {{5, "0101"}, {15, "1111"}, {16, "????"}, {-1, "1111"}, {-8, "1000"}, {-9, "????"}};
    for (const auto &row : rows) {
        std::string levels(4, ' ');
        form.WriteAsLevels(static_cast<std::uint32_t>(row.value), levels);
        EXPECT_EQ(levels, row.levels) << row.value;
    }
    std::string wide(64, ' ');
    form.WriteAsLevels(0xFFFFFFFE, wide);
    EXPECT_EQ(wide, std::string(63, '1') + '0');
}

TEST(ComparedValue, OfARealMayDifferInWhatADumpLoses)
{
    const auto matches = [](double one, double other, std::optional<double> tolerance) {
        tesk::CLiteralTexts literals;
        tesk::SComparePolicy policy;
        policy.realTolerance = tolerance;
        const tesk::CValueForm form(Kestrin::KTypeInfo(Reals), policy, literals);
        tesk::CComparedRow rows[2];
        for (const bool second : {false, true}) {
            rows[second] = tesk::EmptyRow({tesk::EComparedKind::Real, 1}, policy);
            const std::vector<std::optional<std::uint64_t>> values = {
                std::bit_cast<std::uint64_t>(second ? other : one)};
            form.Write(values, rows[second].data());
        }
        return tesk::MatchesRow(policy, tesk::EComparedKind::Real, rows[0], rows[1]);
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(matches(145.9646301269531, 145.96463012695312, {}));
    EXPECT_FALSE(matches(145.9646301269531, 145.96463012695312, 0));
    EXPECT_FALSE(matches(1, 1 + 1e-14, {}));
    EXPECT_TRUE(matches(1, 1.5, 0.5));
    EXPECT_FALSE(matches(1, 1.5, 0.4));
    EXPECT_TRUE(matches(0.0, -0.0, 0));
    EXPECT_TRUE(matches(none, -none, 0));
    EXPECT_TRUE(matches(infinity, infinity, 0));
    EXPECT_FALSE(matches(infinity, -infinity, 1e300));
    EXPECT_FALSE(matches(infinity, 1, {}));
    EXPECT_FALSE(matches(none, 1, 1e300));
}
