#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "settings/counter/countersupport.h"

namespace {

using ::testing::ElementsAre;

TEST(CounterWires, GetOneFormulaEachBehindWhatIsThere)
{
    std::vector<SimpleString::CStr> wires = {"there"};
    ASSERT_TRUE(CCounterFormulaParser::Run(SCounter().Formula().c_str(), wires, 2, 1000));
    ASSERT_EQ(wires.size(), 3U);
    EXPECT_STREQ(wires[0], "there");
    const std::string first(wires[1]);
    EXPECT_EQ(first.find("\\counter\\wire\\0\\handle\\"), 0U);
    const std::string handle = first.substr(first.rfind('\\') + 1);
    EXPECT_EQ(std::string(wires[2]), "\\counter\\wire\\1\\handle\\" + handle);
    const std::vector<std::string> next = CounterWires({}, 1);
    EXPECT_EQ(next[0], "\\counter\\wire\\0\\handle\\" + std::to_string(std::stoi(handle) + 1));
}

TEST(CounterWires, AreRefusedForABadDefinition)
{
    const SCounter rows[] = {
        {.start = "2"},          {.increment = "x"}, {.start = "3#12"},   {.radix = "7"},
        {.radix = "1"},          {.period = "0ns"},  {.period = "-10ns"}, {.period = "1 fs"},  // less than a tick
        {.period = "10 parsec"},
    };
    for (const SCounter &row : rows) {
        std::vector<SimpleString::CStr> wires = {"there"};
        EXPECT_FALSE(CCounterFormulaParser::Run(row.Formula().c_str(), wires, INT_MAX, 1000)) << row.Formula();
        EXPECT_EQ(wires.size(), 1U) << row.Formula();
    }
    std::vector<SimpleString::CStr> wires;
    EXPECT_FALSE(CCounterFormulaParser::Run(nullptr, wires, 4, 1000));
    EXPECT_FALSE(CCounterFormulaParser::Run("\\counter\\wire\\0\\handle\\0", wires, 4, 1000));
}

TEST(CounterWires, OfAFailedDefinitionTakeNoHandle)
{
    const std::string before = CounterWires({}, 1)[0];
    std::vector<SimpleString::CStr> wires;
    EXPECT_FALSE(CCounterFormulaParser::Run(SCounter{.start = "x"}.Formula().c_str(), wires, 1, 1000));
    const auto handle = [](const std::string &wire) { return std::stoi(wire.substr(wire.rfind('\\') + 1)); };
    EXPECT_EQ(handle(CounterWires({}, 1)[0]), handle(before) + 1);
}

TEST(CounterWires, AreNoneForANegativeLengthAndRefusedForZero)
{
    for (const int length : {-1, INT_MIN}) {
        EXPECT_THAT(CounterWires({}, length), ElementsAre()) << length;
        std::vector<SimpleString::CStr> wires;
        EXPECT_FALSE(CCounterFormulaParser::Run(SCounter{.start = "x"}.Formula().c_str(), wires, length, 1000));
    }
    std::vector<SimpleString::CStr> wires;
    EXPECT_FALSE(CCounterFormulaParser::Run(SCounter().Formula().c_str(), wires, 0, 1000));
}

TEST(CounterWires, StoreTheResolutionEvenOnFailure)
{
    std::vector<SimpleString::CStr> wires;
    EXPECT_FALSE(CCounterFormulaParser::Run("", wires, 1, 77));
    EXPECT_EQ(g_simRes, 77);
    g_simRes = 1000;
}

TEST(CounterWires, AreNamedFromTheLeft)
{
    EXPECT_EQ(ValueAt(*Create(CounterWires({.start = "1000"}, 4)[0]), 0), "1");
    EXPECT_EQ(ValueAt(*Create(CounterWires({.start = "0111"}, 4)[0]), 0), "0");
}

TEST(CounterWires, BeyondTheVectorAnswerNothing)
{
    const std::string wire = CounterWires({.start = "1111"}, 4)[0];
    const std::string handle = wire.substr(wire.rfind('\\') + 1);
    for (const char *number : {"4", "5", "2147483647"}) {
        const StimulusPtr stimulus = Create(std::string("\\counter\\wire\\") + number + "\\handle\\" + handle);
        ASSERT_NE(stimulus, nullptr);
        EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt) << number;
        EXPECT_EQ(stimulus->GetNextEventTime(0), -1) << number;
    }
    for (const char *number : {"-2", "-2147483648"})
        EXPECT_EQ(ValueAt(*Create(std::string("\\counter\\wire\\") + number + "\\handle\\" + handle), 0), "0")
            << number;
}

TEST(CounterTime, IsThatOfTheLatestStart)
{
    const std::vector<std::string> wires = CounterWires({}, 2);
    const StimulusPtr first = Create(wires[0], 5000);
    EXPECT_EQ(ValueAt(*first, 5000), "0");
    EXPECT_EQ(first->GetNextEventTime(-1), 5000);
    const StimulusPtr second = Create(wires[1], 3000);
    EXPECT_EQ(first->GetNextEventTime(0), 5000);
    const StimulusPtr third = Create(wires[1], 7000);
    EXPECT_EQ(first->GetNextEventTime(5000), 7000);
}

TEST(CounterTime, BeforeZeroHasNoAnswers)
{
    const StimulusPtr stimulus = Create(CounterWires({}, 1)[0], -1);
    EXPECT_EQ(ValueAt(*stimulus, -1), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(-5), -1);
}

TEST(CounterTime, HasValuesAtThePresentAndTheNextCountOnly)
{
    const StimulusPtr stimulus = Create(CounterWires({}, 1)[0], 1000);
    EXPECT_EQ(ValueAt(*stimulus, 999), std::nullopt);
    EXPECT_EQ(ValueAt(*stimulus, 1000), "0");
    EXPECT_EQ(ValueAt(*stimulus, 1001), std::nullopt);
    EXPECT_EQ(ValueAt(*stimulus, 11000), "1");
    EXPECT_EQ(ValueAt(*stimulus, 21000), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(1001), 21000);  // one step, whatever the distance
    EXPECT_EQ(ValueAt(*stimulus, 1000), std::nullopt);   // the past is gone
    EXPECT_EQ(ValueAt(*stimulus, 11000), "1");
    EXPECT_EQ(ValueAt(*stimulus, 21000), "0");
    EXPECT_EQ(stimulus->GetNextEventTime(5), 11000);
}

TEST(CounterTime, WrapsAtTheEnd)
{
    const StimulusPtr stimulus = Create(CounterWires({}, 1)[0], LLONG_MAX - 5000);
    EXPECT_EQ(stimulus->GetNextEventTime(LLONG_MAX - 5000), LLONG_MIN + 4999);
    EXPECT_EQ(stimulus->GetNextEventTime(LLONG_MAX), LLONG_MIN + 14999);
}

TEST(CounterPeriod, IsInPicosecondsWithoutAUnit)
{
    EXPECT_EQ(Create(CounterWires({.period = "10"}, 1)[0])->GetNextEventTime(0), 10);
    EXPECT_EQ(Create(CounterWires({.period = "1.5 ns"}, 1)[0])->GetNextEventTime(0), 1500);
    EXPECT_EQ(Create(CounterWires({.period = "1 fs"}, 1, 1)[0])->GetNextEventTime(0), 1);
}

TEST(CounterStimulus, WritesItsWireAndHandle)
{
    const std::vector<std::string> wires = CounterWires({}, 2);
    EXPECT_EQ(Canonical(wires[1]), wires[1]);
    EXPECT_EQ(Canonical("\\COUNTER\\\\Wire\\" + wires[0].substr(14)), wires[0]);
    EXPECT_EQ(FormulaOf(*StimulusPtr(new CCounterStimulus)), "");
}

TEST(CounterStimulus, KeepsTheDefaultsOfEveryOtherOperation)
{
    const StimulusPtr stimulus = Create(CounterWires({}, 1)[0]);
    SimpleString::CStr text("text");
    long long binary = 0;
    EXPECT_TRUE(stimulus->IsCounter());
    EXPECT_FALSE(stimulus->IsCustom());
    EXPECT_FALSE(stimulus->IsFinishedAt(LLONG_MAX));
    EXPECT_EQ(stimulus->CheckSettings(nullptr), 0);
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, binary));
    EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
    EXPECT_FALSE(stimulus->GetRepeatString(text));
    EXPECT_FALSE(stimulus->GetCancelString(text));
}

TEST(CounterStimulus, IsNoneWithoutACounter)
{
    for (const char *formula : {"\\counter", "\\counter\\wire\\0\\handle\\999999", "\\counter\\wire\\0\\handle\\-1",
                                "\\counter\\wire\\0", "\\counter\\wire\\0\\handle", "x\\counter\\wire\\0\\handle\\0"})
        EXPECT_EQ(Create(formula), nullptr) << formula;
    EXPECT_FALSE(static_cast<CCounterStimulus *>(StimulusPtr(new CCounterStimulus).get())->Initialize(nullptr, 0));
}

TEST(CounterStimulus, OutlivesItsWires)
{
    const std::string wire = CounterWires({}, 1)[0];
    Create(wire)->GetNextEventTime(1);
    EXPECT_EQ(ValueAt(*Create(wire), 10000), "1");
}

TEST(WholeCounter, CountsASignalByItsType)
{
    const struct {
        const char *type, *value;
    } rows[] = {
        {"i#7#integerrict-2147483648 2147483647", "2#11111111111111111111111111111111"},
        {"e#3#bitc2 01", "2#1"},
        {"", "2#1"},
        {"nonsense", "2#1"},
    };
    for (const auto &row : rows) {
        IStimulus::SetupAdditionalInfo(nullptr, row.type);
        const StimulusPtr stimulus = Create(SCounter{.start = "-1", .radix = "dec"}.Formula());
        ASSERT_NE(stimulus, nullptr) << row.type;
        EXPECT_EQ(ValueAt(*stimulus, 0), row.value) << row.type;
        EXPECT_EQ(ValueAt(*stimulus, 10000), "2#0") << row.type;
    }
    IStimulus::SetupAdditionalInfo(nullptr, "");
}

TEST(WholeCounter, CountsARealSignalIn512Bits)
{
    IStimulus::SetupAdditionalInfo(nullptr, "f#4#realrrut0 1.5");
    const StimulusPtr stimulus = Create(SCounter{.start = "-1", .radix = "dec"}.Formula());
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(ValueAt(*stimulus, 0), "2#" + std::string(512, '1'));
    IStimulus::SetupAdditionalInfo(nullptr, "");
}

TEST(WholeCounter, CountsWithoutLeadingZeros)
{
    IStimulus::SetupAdditionalInfo(nullptr, "i#7#integerrict-2147483648 2147483647");
    const StimulusPtr stimulus = Create("\"" + SCounter{.start = "3", .radix = "dec"}.Formula() + "\"", 500);
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(ValueAt(*stimulus, 500), "2#11");
    EXPECT_EQ(ValueAt(*stimulus, 10500), "2#100");
    EXPECT_EQ(FormulaOf(*stimulus).find("\\counter\\wire\\0\\handle\\"), 0U);
    IStimulus::SetupAdditionalInfo(nullptr, "");
}

TEST(WholeCounter, IsBinaryOrNone)
{
    const CLogCapture log;
    for (const int type : {0, 2, 3, 4, 5, 6})
        EXPECT_EQ(Create(SCounter{.type = type, .start = "1"}.Formula()), nullptr) << type;
}

}  // namespace
