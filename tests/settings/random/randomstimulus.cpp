#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <string>
#include <vector>

#include "core/scalarinfo.h"
#include "core/stimulus.h"
#include "core/support.h"
#include "settings/random.h"
#include "settings/random/distributions.h"

namespace {

using ::testing::ElementsAre;

StimulusPtr CreateWithLetters(const char *formula, tesk::CSimpleScalarInfo &letters)
{
    return StimulusPtr(IStimulus::Create(formula, 0, 1000, &letters, false, false));
}

// Zero bytes included.
std::string BytesAt(IStimulus &stimulus, long long time)
{
    SimpleString::CStr value;
    EXPECT_TRUE(stimulus.GetValue(time, value));
    return std::string(value, static_cast<std::size_t>(value.GetLength()));
}

// The values of a stimulus at its first changes.
std::vector<std::string> Values(IStimulus &stimulus, int count, long long time = 0)
{
    std::vector<std::string> values;
    for (; count > 0; --count) {
        values.push_back(ValueAt(stimulus, time).value_or("none"));
        time = stimulus.GetNextEventTime(time);
    }
    return values;
}

std::vector<std::string> Wires(const std::string &formula, int length, int *handle = nullptr)
{
    std::vector<SimpleString::CStr> wires = {"old"};
    const int result = CreateRandomWires(formula.c_str(), length, 1000, wires, false, nullptr, 0);
    if (handle != nullptr)
        *handle = result;
    return std::vector<std::string>(wires.begin(), wires.end());
}

std::vector<StimulusPtr> Attach(const std::vector<std::string> &wires)
{
    std::vector<StimulusPtr> stimuli;
    for (const std::string &wire : wires)
        stimuli.push_back(Create(wire));
    return stimuli;
}

TEST(RandomStimulus, DrawsByItsKindFromItsSeed)
{
    namespace dist = tesk::distributions;
    const struct {
        const char *formula;
        int (*draw)(int &seed);
    } rows[] = {
        {"\\RANDOM\\1\\5\\-10\\10\\1ns", [](int &seed) { return dist::UniformInteger(seed, -10, 10); }},
        {"\\RANDOM\\2\\5\\100\\15\\1ns", [](int &seed) { return dist::Round(dist::Normal(seed, 100, 15)); }},
        {"\\RANDOM\\3\\5\\20\\1ns", [](int &seed) { return dist::Round(dist::Exponential(seed, 20)); }},
        {"\\RANDOM\\4\\5\\20\\1ns", [](int &seed) { return dist::Poisson(seed, 20); }},
        {"\\RANDOM\\5\\5\\20\\1ns", [](int &seed) { return dist::Round(dist::ChiSquare(seed, 20)); }},
        {"\\RANDOM\\6\\5\\2\\1ns", [](int &seed) { return dist::Round(dist::T(seed, 2)); }},
        {"\\RANDOM\\7\\5\\1000\\3\\1ns", [](int &seed) { return dist::Round(dist::Erlang(seed, 3, 1000)); }},
        {"\\RANDOM\\8\\5\\1ns", [](int &seed) { return dist::UniformInteger(seed, INT_MIN, INT_MAX); }},
    };
    for (const auto &row : rows) {
        int seed = 5;
        std::vector<std::string> expected;
        for (int i = 0; i < 20; ++i)
            expected.push_back(std::to_string(row.draw(seed)));
        EXPECT_EQ(Values(*Create(row.formula), 20), expected) << row.formula;
    }
}

TEST(RandomStimulus, HoldsTheFirstDrawFromItsStartTime)
{
    const StimulusPtr fromZero = Create("\\RANDOM\\8\\5\\10ns");
    const StimulusPtr later = Create("\\RANDOM\\8\\5\\10ns", 3000);
    const std::vector<std::string> draws = Values(*fromZero, 3);
    EXPECT_EQ(ValueAt(*later, 3000), draws[0]);
    EXPECT_EQ(ValueAt(*later, 12999), draws[0]);
    EXPECT_EQ(ValueAt(*later, 13000), draws[1]);
    EXPECT_EQ(later->GetNextEventTime(-1), 13000);
    EXPECT_EQ(later->GetNextEventTime(3000), 13000);
    EXPECT_EQ(later->GetNextEventTime(13000), 23000);
    EXPECT_EQ(ValueAt(*later, 13000), draws[1]);
    EXPECT_EQ(ValueAt(*later, 23000), draws[2]);
}

TEST(RandomStimulus, ReadsZeroBehindTheNextDraw)
{
    const StimulusPtr stimulus = Create("\\RANDOM\\1\\5\\7\\7\\10ns");
    EXPECT_EQ(ValueAt(*stimulus, 9999), "7");
    EXPECT_EQ(ValueAt(*stimulus, 10000), "7");
    EXPECT_EQ(ValueAt(*stimulus, 10001), "0");
}

TEST(RandomStimulus, StaysAtItsFirstDrawWithoutAPeriod)
{
    for (const char *formula : {"\\RANDOM\\8\\5\\0ns", "\\RANDOM\\8\\5\\1fs"}) {
        const StimulusPtr stimulus = Create(formula);
        int seed = 5;
        const std::string draw = std::to_string(tesk::distributions::UniformInteger(seed, INT_MIN, INT_MAX));
        EXPECT_EQ(stimulus->GetNextEventTime(0), -1) << formula;
        EXPECT_EQ(ValueAt(*stimulus, 0), draw) << formula;
        EXPECT_EQ(ValueAt(*stimulus, LLONG_MAX), draw) << formula;
    }
}

TEST(RandomStimulus, SurvivesAPeriodThatRunsBackwards)
{
    const StimulusPtr stimulus = Create("\\RANDOM\\8\\5\\-10ns");
    EXPECT_EQ(stimulus->GetNextEventTime(0), -20000);
    EXPECT_EQ(stimulus->GetNextEventTime(LLONG_MIN), -20000);
    EXPECT_EQ(ValueAt(*stimulus, 0), "0");
}

TEST(RandomStimulus, WrapsItsTime)
{
    const StimulusPtr stimulus = Create("\\RANDOM\\8\\5\\10ns", LLONG_MAX - 5000);
    EXPECT_EQ(stimulus->GetNextEventTime(LLONG_MAX), LLONG_MIN + 14999);
}

TEST(RandomStimulus, TakesItsValuesFromAnAlphabet)
{
    tesk::CSimpleScalarInfo letters(3);
    for (int i = 0; i < 3; ++i)
        letters.AddEnumValue(i, "XYZ"[i]);
    const StimulusPtr stimulus = CreateWithLetters("\\RANDOM\\1\\5\\0\\100\\1ns", letters);
    letters.AddEnumValue(0, '?');  // it keeps a copy
    int seed = 5;
    std::vector<std::string> expected;
    for (int i = 0; i < 50; ++i)
        expected.emplace_back(1, "XYZ"[tesk::distributions::UniformInteger(seed, 0, 100) % 3]);
    EXPECT_EQ(Values(*stimulus, 50), expected);
}

TEST(RandomStimulus, GivesAZeroByteForADrawWithoutALetter)
{
    tesk::CSimpleScalarInfo letters(3);
    for (int i = 0; i < 3; ++i)
        letters.AddEnumValue(i, "XYZ"[i]);
    EXPECT_EQ(BytesAt(*CreateWithLetters("\\RANDOM\\1\\5\\-2\\-2\\1ns", letters), 0), std::string(1, '\0'));
    EXPECT_EQ(BytesAt(*CreateWithLetters("\\RANDOM\\1\\5\\-3\\-3\\1ns", letters), 0), "X");
    tesk::CSimpleScalarInfo empty(0);
    EXPECT_EQ(BytesAt(*CreateWithLetters("\\RANDOM\\1\\5\\2\\2\\1ns", empty), 0), std::string(1, '\0'));
}

TEST(RandomStimulus, WritesItsSettingsBack)
{
    EXPECT_EQ(FormulaOf(*Create("\\RANDOM\\1\\5\\0\\10\\20ns")), "\\RANDOM\\1\\5\\0\\10\\20.000000ns");
}

TEST(RandomStimulus, KeepsTheDefaultsOfEveryOtherOperation)
{
    const StimulusPtr stimulus = Create("\\RANDOM\\8\\5\\10ns");
    SimpleString::CStr text("text");
    long long binary = 0;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, binary));
    EXPECT_FALSE(stimulus->IsCustom());
    EXPECT_FALSE(stimulus->IsCounter());
    EXPECT_FALSE(stimulus->IsFinishedAt(LLONG_MAX));
    EXPECT_EQ(stimulus->CheckSettings(nullptr), 0);
    EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
    EXPECT_EQ(stimulus->GetRepeatRate(), 0);
    EXPECT_FALSE(stimulus->GetCancelString(text));
    EXPECT_STREQ(text, "text");
}

TEST(RandomStimulus, AnswersNothingBeforeItIsAttached)
{
    auto *stimulus = new tesk::CRandomStimulus;
    const StimulusPtr owner(stimulus);
    EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(0), -1);
    EXPECT_EQ(FormulaOf(*stimulus), "");
    EXPECT_FALSE(stimulus->Initialize(nullptr, 0, 1000, nullptr));
    EXPECT_FALSE(stimulus->Initialize("\\random\\wire\\0\\-7", 0, 1000, nullptr));
}

TEST(RandomFormula, IsRefusedIfItNamesNoGenerator)
{
    for (const char *formula :
         {"\\random", "\\random\\", "\\random\\wire", "\\random\\wire\\0", "\\random\\wire\\0\\999999",
          "\\random\\wire\\0\\-1", "\\random\\1\\5\\0\\10\\20ns", "\\RANDOM\\8\\5\\10", "\\RANDOM\\3\\5\\0\\10ns",
          "\\RANDOM\\8\\5", "x\\random\\wire\\0\\0"})
        EXPECT_EQ(Create(formula), nullptr) << formula;
}

TEST(RandomWires, GetOneFormulaEach)
{
    int handle = -1;
    const std::vector<std::string> wires = Wires("\\RANDOM\\8\\5\\10ns", 3, &handle);
    const std::string end = "\\" + std::to_string(handle);
    EXPECT_THAT(wires, ElementsAre("\\random\\wire\\0" + end, "\\random\\wire\\1" + end, "\\random\\wire\\2" + end));
}

TEST(RandomWires, AreNoneForALengthBelowOne)
{
    for (const int length : {0, -1, INT_MIN}) {
        int handle = -1;
        EXPECT_THAT(Wires("\\RANDOM\\8\\5\\10ns", length, &handle), ElementsAre()) << length;
        EXPECT_GE(handle, 0) << length;
    }
}

TEST(RandomWires, AreClearedAndTheHandleIsSpentForABadFormula)
{
    int first = -1, failed = 0, second = -1;
    Wires("\\RANDOM\\8\\5\\10ns", 1, &first);
    EXPECT_THAT(Wires("\\RANDOM\\8\\5", INT_MAX, &failed), ElementsAre());
    Wires("\\RANDOM\\8\\5\\10ns", 1, &second);
    EXPECT_EQ(failed, -1);
    EXPECT_EQ(second, first + 2);
}

TEST(RandomWires, MayTakeThePlaceOfTheirFormula)
{
    std::vector<SimpleString::CStr> wires = {"\\RANDOM\\8\\5\\10ns"};
    EXPECT_GE(CreateRandomWires(wires[0], 2, 1000, wires, true, nullptr, 0), 0);
    ASSERT_EQ(wires.size(), 2U);
    const StimulusPtr second = Create(std::string(wires[1]));  // with whole values every wire has the whole number
    int seed = 5;
    EXPECT_EQ(ValueAt(*second, 0), std::to_string(tesk::distributions::UniformInteger(seed, INT_MIN, INT_MAX)));
}

TEST(RandomWires, ReadTheBitsOfTheDrawFromTheLeft)
{
    int seed = 5;
    const unsigned draw = static_cast<unsigned>(tesk::distributions::UniformInteger(seed, INT_MIN, INT_MAX));
    for (const int length : {1, 8, 32, 40}) {
        std::string bits;
        for (const StimulusPtr &wire : Attach(Wires("\\RANDOM\\8\\5\\10ns", length)))
            bits += ValueAt(*wire, 0).value_or("none");
        std::string expected;
        for (int index = length - 1; index >= 0; --index)
            expected += index < 32 && ((draw >> index) & 1U) != 0 ? '1' : '0';
        EXPECT_EQ(bits, expected);
    }
}

TEST(RandomWires, BeyondTheVectorReadZero)
{
    int handle = -1;
    const std::vector<std::string> wires = Wires("\\RANDOM\\1\\5\\-1\\-1\\10ns", 8, &handle);
    const StimulusPtr inside = Create(wires[0]);
    EXPECT_EQ(ValueAt(*inside, 0), "1");
    for (const char *wire : {"8", "2147483647", "-25", "-2147483648"}) {
        const std::string formula = std::string("\\RANDOM\\WIRE\\") + wire + "\\" + std::to_string(handle);
        EXPECT_EQ(ValueAt(*Create(formula), 0), "0") << wire;
    }
}

TEST(RandomWires, WriteTheSettingsForWireZeroAndTheirPlaceOtherwise)
{
    int handle = -1;
    const std::vector<std::string> wires = Wires("\\RANDOM\\8\\5\\10ns", 2, &handle);
    EXPECT_EQ(FormulaOf(*Create(wires[1])), "\\RANDOM\\wire\\1\\" + std::to_string(handle));
}

TEST(RandomWires, EndWithTheLastOfThem)
{
    const std::vector<std::string> wires = Wires("\\RANDOM\\8\\5\\10ns", 2);
    StimulusPtr first = Create(wires[0]);
    StimulusPtr second = Create(wires[1]);
    EXPECT_EQ(FormulaOf(*first), "\\RANDOM\\8\\5\\10.000000ns");
    first.reset();
    EXPECT_NE(Create(wires[0]), nullptr);
    second.reset();
    EXPECT_EQ(Create(wires[0]), nullptr);
}

TEST(RandomWires, StayAvailableUntilTheFirstIsAttached)
{
    const std::vector<std::string> wires = Wires("\\RANDOM\\8\\5\\10ns", 1);
    for (int i = 0; i < 1000; ++i)
        Wires("\\RANDOM\\8\\5\\10ns", 1);
    EXPECT_NE(Create(wires[0]), nullptr);
}

TEST(RandomWires, MoveInLockstepWhicheverAsksFirst)
{
    constexpr int Length = 8;
    std::mt19937 random(1);
    std::vector<std::vector<std::string>> runs;
    for (int run = 0; run < 5; ++run) {
        const std::vector<StimulusPtr> stimuli = Attach(Wires("\\RANDOM\\1\\5\\0\\255\\10ns", Length));
        std::vector<int> order = {0, 1, 2, 3, 4, 5, 6, 7};
        std::vector<std::string> values;
        for (long long time = 0; time <= 200000; time += 10000) {
            std::shuffle(order.begin(), order.end(), random);
            std::string value(Length, '?');
            for (const int wire : order)
                value[static_cast<std::size_t>(wire)] = (*ValueAt(*stimuli[static_cast<std::size_t>(wire)], time))[0];
            values.push_back(value);
            for (const int wire : order)
                ASSERT_EQ(stimuli[static_cast<std::size_t>(wire)]->GetNextEventTime(time), time + 10000);
        }
        runs.push_back(values);
        EXPECT_EQ(values, runs[0]) << "run " << run;
    }
}

TEST(RandomFormula, SurvivesAnyBytes)
{
    const std::string alphabet = "\\\\\\\\RANDOMrandomwire0123456789-.ns\"x \xff";
    std::mt19937 random(1);
    for (int round = 0; round < 5000; ++round) {
        std::string formula = round % 2 == 0 ? "\\RANDOM\\" : "\\random\\";
        for (int i = static_cast<int>(random() % 30); i > 0; --i)
            formula += alphabet[random() % alphabet.size()];
        const StimulusPtr stimulus = Create(formula);
        if (stimulus)
            Values(*stimulus, 5);
    }
}

TEST(RandomFormula, OfAMegabyteIsReadInLinearTime)
{
    for (const char *piece : {"\\", "\\1", "1", "\\RANDOM", "\"", "n"}) {
        std::string formula = "\\RANDOM\\";
        while (formula.size() < 1000000)
            formula += piece;
        Create(formula);
    }
}

}  // namespace
