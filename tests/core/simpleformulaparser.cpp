#include "core/simpleformulaparser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "base/limits.h"
#include "core/stimulus.h"

using ::testing::ElementsAre;

namespace {

constexpr bool BitVector = true;
constexpr bool Aggregate = false;

struct SSplit {
    int result;
    std::vector<std::string> elements;

    bool operator==(const SSplit &other) const = default;
};

void PrintTo(const SSplit &split, std::ostream *out)
{
    *out << split.result << ' ' << ::testing::PrintToString(split.elements);
}

SSplit Split(const std::string &formula, int width, bool isBitVector, long long startTime = 0)
{
    g_simRes = 1000;
    std::vector<SimpleString::CStr> elements = {"old"};
    CSimpleFormulaParser parser;
    const int result = parser.Run(formula.c_str(), elements, width, isBitVector, 0, startTime);
    return {result, {elements.begin(), elements.end()}};
}

// Sets the type of the signal for one test.
class CSignalType {
public:
    explicit CSignalType(const char *description) { g_SignalTypeDescription = description; }
    CSignalType(const CSignalType &) = delete;
    CSignalType &operator=(const CSignalType &) = delete;
    ~CSignalType() { g_SignalTypeDescription = ""; }
};

constexpr char Characters[] = "a#6#string(1 to 3)1 ricd1 3 e#9#characters...";

}  // namespace

TEST(SplitBitVector, GivesACharacterToEachElement)
{
    EXPECT_EQ(
        Split("0110 0ns, 1001 10ns -r 20ns", 4, BitVector),
        (SSplit{1, {"0 0ns,1 10ns -r 20ns", "1 0ns,0 10ns -r 20ns", "1 0ns,0 10ns -r 20ns", "0 0ns,1 10ns -r 20ns"}}));
}

TEST(SplitBitVector, PadsAShortValueWithZeros)
{
    EXPECT_EQ(Split("101 0ns", 4, BitVector), (SSplit{1, {"0 0ns", "1 0ns", "0 0ns", "1 0ns"}}));
    EXPECT_EQ(Split("Z 0ns", 3, BitVector), (SSplit{1, {"0 0ns", "0 0ns", "Z 0ns"}}));
    EXPECT_EQ(Split("x\"5\" 0ns", 4, BitVector), (SSplit{1, {"0 0ns", "1 0ns", "0 0ns", "1 0ns"}}));
}

TEST(SplitBitVector, KeepsAValueWithoutATime)
{
    EXPECT_EQ(Split("10", 2, BitVector), (SSplit{1, {"1", "0"}}));
}

TEST(SplitBitVector, GivesTheSwitchesToEachElement)
{
    EXPECT_EQ(Split("10 0ns -cancel 100ns", 2, BitVector), (SSplit{1, {"1 0ns,-cancel 100ns", "0 0ns,-cancel 100ns"}}));
    EXPECT_EQ(Split("10 0ns -R 20ns -CANCEL @1us", 2, BitVector),
              (SSplit{1, {"1 0ns -r 20ns,-cancel @1us", "0 0ns -r 20ns,-cancel @1us"}}));
}

TEST(SplitBitVector, WritesFormulasThatCanBePlayed)
{
    const SSplit split = Split("10 5ns, 01 10ns -r 20ns -cancel 100ns", 2, BitVector);
    for (const std::string &element : split.elements) {
        IStimulus *stimulus = IStimulus::Create(element.c_str(), 0, 1000, nullptr, false, false);
        ASSERT_NE(stimulus, nullptr) << element;
        EXPECT_EQ(stimulus->GetNextEventTime(-1), 5000);
        EXPECT_EQ(stimulus->GetRepeatRateInSimUnits(), 20000);
        EXPECT_TRUE(stimulus->IsFinishedAt(100000));
        stimulus->Destroy();
    }
}

TEST(SplitBitVector, DropsSurplusCharactersOfAValueAndSaysSo)
{
    EXPECT_EQ(Split("1x01 0ns", 2, BitVector), (SSplit{-1, {"0 0ns", "1 0ns"}}));
    EXPECT_EQ(Split("1101 0ns", 2, BitVector), (SSplit{-1, {"0 0ns", "1 0ns"}}));
    EXPECT_EQ(Split("0001 0ns", 2, BitVector), (SSplit{1, {"0 0ns", "1 0ns"}}));  // nothing is lost
    EXPECT_EQ(Split("0123456789abcdefABCDEFzx-UXZWLHZ1 0ns", 2, BitVector), (SSplit{-1, {"Z 0ns", "1 0ns"}}));
}

TEST(SplitBitVector, RefusesOtherSurplusCharacters)
{
    EXPECT_EQ(Split("qx01 0ns", 2, BitVector), (SSplit{0, {"", ""}}));
    for (const char *surplus : {"g", "u", "h", "l", "w", "+", "."})
        EXPECT_EQ(Split(std::string(surplus) + "01 0ns", 2, BitVector).result, 0) << surplus;
    EXPECT_EQ(Split("qq 0ns", 2, BitVector), (SSplit{1, {"q 0ns", "q 0ns"}}));  // only surplus is looked at
}

TEST(SplitBitVector, GoesOnBehindARefusedPart)
{
    EXPECT_EQ(Split("qx01 0ns, 10 5ns, 111 6ns", 2, BitVector), (SSplit{0, {"1 5ns,1 6ns", "0 5ns,1 6ns"}}));
}

TEST(SplitBitVector, TakesANegativeValueInTwosComplement)
{
    EXPECT_EQ(Split("-1 0ns", 3, BitVector), (SSplit{1, {"1 0ns", "1 0ns", "1 0ns"}}));
    EXPECT_EQ(Split("-16#1 0ns", 3, BitVector), (SSplit{1, {"1 0ns", "1 0ns", "1 0ns"}}));
}

TEST(SplitBitVector, TakesBracketsAndQuotesOff)
{
    EXPECT_EQ(Split("\"10\" 0ns", 2, BitVector), (SSplit{1, {"1 0ns", "0 0ns"}}));
    EXPECT_EQ(Split("(10) 0ns", 2, BitVector), (SSplit{1, {"1 0ns", "0 0ns"}}));
    EXPECT_EQ(Split("[10] 0ns", 2, BitVector), (SSplit{1, {"1 0ns", "0 0ns"}}));
    EXPECT_EQ(Split("\"\" 0ns", 2, BitVector).result, 0);
}

TEST(SplitBitVector, HoldsUpTo64BitsInOneWord)
{
    const std::string bits = "1" + std::string(63, '0');
    const SSplit split = Split(bits + " 0ns", 64, BitVector);
    EXPECT_EQ(split.result, 1);
    for (std::size_t i = 0; i < 64; ++i)
        EXPECT_EQ(split.elements[i], i == 0 ? "1 0ns" : "0 0ns");
    EXPECT_EQ(Split("1" + bits + " 0ns", 64, BitVector).result, 1);  // deliberate: a 65th digit is ignored
}

TEST(SplitBitVector, HoldsWiderValuesInALongNumber)
{
    const SSplit padded = Split("-1 0ns", 70, BitVector);
    EXPECT_EQ(padded, (SSplit{1, std::vector<std::string>(70, "1 0ns")}));
    EXPECT_EQ(Split("1" + std::string(70, '0') + " 0ns", 70, BitVector),
              (SSplit{-1, std::vector<std::string>(70, "0 0ns")}));
}

// Deliberate: only up to 64 elements surplus is cut off.
TEST(SplitBitVector, TakesTheLeftmostCharactersOfAWideValueThatIsNoNumber)
{
    const SSplit split = Split("qZ" + std::string(69, '1') + " 0ns", 70, BitVector);
    EXPECT_EQ(split.result, 1);
    EXPECT_EQ(split.elements[0], "q 0ns");
    EXPECT_EQ(split.elements[1], "Z 0ns");
    EXPECT_EQ(split.elements[69], "1 0ns");
}

TEST(SplitCharacters, AlignsToTheRight)
{
    const CSignalType type(Characters);
    EXPECT_EQ(Split("\"ab\" 0ns", 3, BitVector), (SSplit{1, {"nul 0ns", "'a' 0ns", "'b' 0ns"}}));
    EXPECT_EQ(Split("ab", 3, BitVector), (SSplit{1, {"nul", "a", "b"}}));
    EXPECT_EQ(Split("\"abc\" 0ns", 3, BitVector), (SSplit{1, {"'a' 0ns", "'b' 0ns", "'c' 0ns"}}));
    EXPECT_EQ(Split("\"dabc\" 0ns", 3, BitVector), (SSplit{-1, {"'a' 0ns", "'b' 0ns", "'c' 0ns"}}));
}

TEST(SplitCharacters, IsNotMeantByATypeThatBeginsWithTheWord)
{
    const CSignalType type("characters");
    EXPECT_EQ(Split("ab", 3, BitVector), (SSplit{1, {"0", "a", "b"}}));
}

TEST(SplitAggregate, GivesASubValueToEachElement)
{
    EXPECT_EQ(Split("(1, 0, 1) 5ns", 3, Aggregate), (SSplit{1, {"1 5ns", "0 5ns", "1 5ns"}}));
    EXPECT_EQ(Split("(1, 0, 1) 5ns, (idle, run, 7) 10ns -r 20ns", 3, Aggregate),
              (SSplit{1, {"1 5ns,idle 10ns -r 20ns", "0 5ns,run 10ns -r 20ns", "1 5ns,7 10ns -r 20ns"}}));
}

TEST(SplitAggregate, KeepsTheBracketsOfSubValues)
{
    EXPECT_EQ(Split("((1, 0), \"a b\", 'c') 5ns", 3, Aggregate), (SSplit{1, {"(1, 0) 5ns", "\"a b\" 5ns", "'c' 5ns"}}));
}

TEST(SplitAggregate, LeavesAFourthSubValueUnused)
{
    EXPECT_EQ(Split("(1, 0, 1, 0) 5ns", 3, Aggregate), (SSplit{1, {"1 5ns", "0 5ns", "1 5ns"}}));
}

TEST(SplitAggregate, LeavesElementsWithoutASubValueEmpty)
{
    EXPECT_EQ(Split("(1, 0) 5ns", 3, Aggregate), (SSplit{1, {"1 5ns", "0 5ns", ""}}));
}

// Deliberate: an aggregate is fitted to the width like any value, as a number or as a text.
TEST(SplitAggregate, FitsTheTextOfAllSubValuesToTheWidth)
{
    EXPECT_EQ(Split("(1) 5ns", 3, Aggregate), (SSplit{1, {"001 5ns", "", ""}}));
    EXPECT_EQ(Split("(11111) 5ns", 3, Aggregate), (SSplit{-1, {"111 5ns", "", ""}}));
    EXPECT_EQ(Split("(1,0) 5ns", 5, Aggregate), (SSplit{1, {"001 5ns", "0 5ns", "", "", ""}}));
    const CSignalType type(Characters);
    EXPECT_EQ(Split("(a,0) 5ns", 5, Aggregate), (SSplit{1, {"a 5ns", "0 5ns", "", "", ""}}));
}

TEST(Split, LeavesTheElementsAloneWhereTheFormulaIsRefused)
{
    for (const char *formula : {"", " ", ",", "-r 10ns", ",1 0ns", "1 -5ns"})
        EXPECT_EQ(Split(formula, 2, BitVector), (SSplit{0, {"old"}})) << formula;
    std::vector<SimpleString::CStr> elements = {"old"};
    EXPECT_EQ(CSimpleFormulaParser().Run(nullptr, elements, 2, true, 1000, 0), 0);
    EXPECT_THAT(elements, ElementsAre(::testing::StrEq("old")));
}

TEST(Split, AnswersForAnyWidth)
{
    EXPECT_EQ(Split("1 0ns", 0, BitVector), (SSplit{-1, {}}));
    EXPECT_EQ(Split("1 0ns", 0, Aggregate), (SSplit{-1, {}}));
    for (const int width : {-1, -2, INT_MIN, INT_MAX, (1 << 24) + 1})
        EXPECT_EQ(Split("1 0ns", width, BitVector), (SSplit{0, {"old"}})) << width;
    EXPECT_EQ(Split("1 0ns", 100000, BitVector).elements.back(), "1 0ns");
}

// To split for so many takes a gigabyte: only the question is asked here.
TEST(Split, IsMeantForUpTo2To24Elements)
{
    EXPECT_TRUE(tesk::IsElementCount(0));
    EXPECT_TRUE(tesk::IsElementCount(1 << 24));
    EXPECT_FALSE(tesk::IsElementCount((1 << 24) + 1));
    EXPECT_FALSE(tesk::IsElementCount(-1));
}

TEST(Split, WritesTimesInTheUnitsThatHoldThem)
{
    EXPECT_EQ(Split("1 0.5ns, 0 1.5ns", 1, BitVector), (SSplit{1, {"1 500ps,0 1500ps"}}));
    EXPECT_EQ(Split("1 @3, 0 5", 1, BitVector, 7), (SSplit{1, {"1 @8ps,0 5ps"}}));  // the offset moves both kinds
}

TEST(Split, ReadsTimesAtTheLibrarysResolution)
{
    std::vector<SimpleString::CStr> elements;
    g_simRes = 1000000;
    EXPECT_EQ(CSimpleFormulaParser().Run("1 1500ps", elements, 1, true, 1000, 0), 1);
    EXPECT_STREQ(elements[0], "1 1000ps");
    g_simRes = 1000;
}

TEST(Split, MayBeCopied)
{
    CSimpleFormulaParser parser;
    const CSimpleFormulaParser other;
    parser = other;
    std::vector<SimpleString::CStr> elements;
    EXPECT_EQ(parser.Run("1", elements, 1, true, 1000, 0), 1);
}

// Rising times of whole nanoseconds and random values, each written to one element.
TEST(Split, GivesBackWhatWasPutTogether)
{
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        const std::size_t width = 1 + random() % 100;
        const bool isBitVector = random() % 2 != 0;
        std::vector<std::string> expected(width);
        std::string formula;
        for (std::size_t event = 0, events = 1 + random() % 5; event < events; ++event) {
            const std::string time = std::to_string(event * 7) + "ns";
            formula += std::string(event != 0 ? ", " : "") + (isBitVector ? "" : "(");
            for (std::size_t i = 0; i < width; ++i) {
                const std::string value(1, "01ZXUWLH"[random() % 8]);
                formula += (i != 0 && !isBitVector ? ", " : "") + value;
                expected[i] += (event != 0 ? "," : "") + value + ' ' + time;
            }
            formula += (isBitVector ? " " : ") ") + time;
        }
        const SSplit split = Split(formula, static_cast<int>(width), isBitVector);
        ASSERT_EQ(split.result, 1) << formula;
        ASSERT_EQ(split.elements, expected) << formula;
    }
}

TEST(Split, TakesLongTextsOfAnyBytes)
{
    for (const char *piece : {"1 1ns,", "1 ", "1,", "(", ")", "\"", "'", "[", "-r ", "x\"F\" ", "-cancel 1ns,", "10#7",
                              "7", "\xff", "(1,0)5ns,", " ", "((1)", "\"1\"", "[1 "}) {
        std::string formula;
        while (formula.size() < 30000)
            formula += piece;
        for (const bool isBitVector : {false, true}) {
            const SSplit split = Split(formula, 3, isBitVector);
            EXPECT_TRUE(split.elements.size() == 3 || split.result == 0) << piece;
        }
    }
}
