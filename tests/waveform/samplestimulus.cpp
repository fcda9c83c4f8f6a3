#include "waveform/samplestimulus.h"

#include <climits>
#include <cstring>
#include <memory>
#include <random>

#include "base/wrap.h"
#include "core/support.h"
#include "platform/crt.h"
#include "waveform/table/tables.h"

namespace {

class SampleStimulus : public CTableTest {
protected:
    // A column of texts under the next handle; a null one is no value.
    static int AddColumn(const std::vector<std::pair<long long, const char *>> &samples)
    {
        CSampleColumn *column = new CSampleColumn;
        for (const auto &[time, text] : samples) {
            SampleEvent event;
            event.m_time = time;
            event.m_text = text != nullptr ? _strdup(text) : nullptr;
            column->m_events.push_back(event);
        }
        g_SampleColumns[g_NextSampleHandle] = column;
        return g_NextSampleHandle++;
    }

    static StimulusPtr Play(int handle, int index = 0) { return StimulusPtr(new CCMStimulus(handle, index)); }
};

TEST_F(SampleStimulus, HasAValueFromTheFirstSampleToTheLastOnly)
{
    const int handle = AddColumn({{10, "1"}, {20, "0"}});
    const StimulusPtr stimulus = Play(handle);
    const struct {
        long long time;
        std::optional<std::string> value;
    } rows[] = {{LLONG_MIN, std::nullopt}, {5, std::nullopt}, {10, "1"}, {15, "1"}, {20, "0"}, {21, std::nullopt}};
    for (const auto &row : rows)
        EXPECT_EQ(ValueAt(*stimulus, row.time), row.value) << row.time;
}

TEST_F(SampleStimulus, TellsTheNextSample)
{
    const StimulusPtr stimulus = Play(AddColumn({{10, "1"}, {20, "0"}}));
    EXPECT_EQ(stimulus->GetNextEventTime(-1), 10);
    EXPECT_EQ(stimulus->GetNextEventTime(10), 20);
    EXPECT_EQ(stimulus->GetNextEventTime(20), -1);
    EXPECT_EQ(Play(AddColumn({}))->GetNextEventTime(-1), -1);
}

TEST_F(SampleStimulus, CountsElementsFromTheRight)
{
    const struct {
        int index;
        const char *value;
    } rows[] = {{0, "0"}, {1, "1"}, {3, "1"}, {4, "0"}, {INT_MAX, "0"}, {-1, "0"}, {INT_MIN, "0"}};
    const int handle = AddColumn({{0, "1010"}});
    const StimulusPtr keeper = Play(handle);
    for (const auto &row : rows)
        EXPECT_EQ(ValueAt(*Play(handle, row.index), 0), row.value) << row.index;
}

TEST_F(SampleStimulus, TakesNoTextForZero)
{
    EXPECT_EQ(ValueAt(*Play(AddColumn({{0, nullptr}})), 0), "0");
    EXPECT_EQ(ValueAt(*Play(AddColumn({{0, ""}})), 0), "0");
    const int integers = AddColumn({{0, nullptr}});
    g_SampleColumns.at(integers)->m_isInteger = true;
    EXPECT_EQ(ValueAt(*Play(integers), 0), "0");
}

TEST_F(SampleStimulus, GivesWholeNumbersAsTheyStand)
{
    const int handle = AddColumn({{0, "-127"}});
    g_SampleColumns.at(handle)->m_isInteger = true;
    EXPECT_EQ(ValueAt(*Play(handle, 2), 0), "-127");
}

TEST_F(SampleStimulus, PrintsRealsWithSixDecimals)
{
    const struct {
        double real;
        const char *value;
    } rows[] = {{1.5, "1.500000"}, {-0.1234567, "-0.123457"}, {1e20, "100000000000000000000.000000"}, {0, "0.000000"}};
    for (const auto &row : rows) {
        const int handle = AddColumn({{0, nullptr}});
        g_SampleColumns.at(handle)->m_isReal = true;
        g_SampleColumns.at(handle)->m_events[0].m_real = row.real;
        const StimulusPtr stimulus = Play(handle);
        EXPECT_EQ(ValueAt(*stimulus, 0), row.value);
        long long bits = 0;
        EXPECT_TRUE(stimulus->GetBinary8BytesValue(0, bits));
        double real = 0;
        std::memcpy(&real, &bits, sizeof real);
        EXPECT_EQ(real, row.real);
        EXPECT_FALSE(stimulus->GetBinary8BytesValue(1, bits));
        EXPECT_FALSE(stimulus->GetBinary8BytesValue(-1, bits));
    }
}

TEST_F(SampleStimulus, HasBinaryValuesOfRealsOnly)
{
    const StimulusPtr stimulus = Play(AddColumn({{0, "1"}}));
    long long bits = 7;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, bits));
    EXPECT_EQ(bits, 7);
}

TEST_F(SampleStimulus, IsCustomAndNeverFinished)
{
    const StimulusPtr stimulus = Play(AddColumn({{0, "1"}}));
    stimulus->AllowBinary8BytesValues();
    SimpleString::CStr text = "old";
    stimulus->GetFormula(text);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_TRUE(stimulus->IsCustom());
    EXPECT_FALSE(stimulus->IsCounter());
    EXPECT_FALSE(stimulus->IsFinishedAt(LLONG_MAX));
    long long time = 0;
    EXPECT_EQ(stimulus->CheckSettings(&time), 0);
    EXPECT_FALSE(stimulus->GetRepeatString(text));
    EXPECT_FALSE(stimulus->GetCancelString(text));
    EXPECT_EQ(stimulus->GetRepeatRate(), 0);
    EXPECT_EQ(stimulus->GetRepeatRateInSimUnits(), 0);
    text = "old";
    stimulus->GetTimeString(0, text);
    EXPECT_TRUE(text.IsEmpty());
}

TEST_F(SampleStimulus, TellsTheKindOfTableByAFlagInAPointersClothing)
{
    const int handle = AddColumn({{0, "1"}});
    const StimulusPtr stimulus = Play(handle);
    EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
    g_SampleColumns.at(handle)->m_fromMatFile = true;
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(stimulus->GetSignalTypeInfo()), 1U);
}

TEST_F(SampleStimulus, SharesTheColumnWhichGoesWithTheLastStimulus)
{
    const int handle = AddColumn({{0, "10"}});
    StimulusPtr first = Play(handle), second = Play(handle, 1);
    EXPECT_EQ(g_SampleColumns.at(handle)->m_useCount, 3);
    first.reset();
    EXPECT_EQ(g_SampleColumns.at(handle)->m_useCount, 2);
    EXPECT_EQ(ValueAt(*second, 0), "1");
    second.reset();
    EXPECT_EQ(g_SampleColumns.count(handle), 0U);
}

TEST_F(SampleStimulus, HasNothingToTellWithoutItsColumn)
{
    const StimulusPtr stimulus = Play(99);
    long long bits = 0;
    EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(-1), -1);
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, bits));
    EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
}

TEST_F(SampleStimulus, AgreesWithAWalkThroughTheSamples)
{
    std::mt19937 random(3);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::pair<long long, const char *>> samples;
        for (long long time = 0; time < 40; ++time)
            if (random() % 3 == 0)
                samples.emplace_back(time, random() % 2 == 0 ? "1" : "10");
        const StimulusPtr stimulus = Play(AddColumn(samples), 1);
        for (long long time = -1; time <= 41; ++time) {
            std::optional<std::string> value;
            long long next = -1;
            for (std::size_t i = 0; i < samples.size(); ++i) {
                if (samples[i].first > time && next == -1)
                    next = samples[i].first;
                const bool isLast = i + 1 == samples.size();
                if (samples[i].first == time || (samples[i].first < time && !isLast && samples[i + 1].first > time))
                    value = samples[i].second[1] == 0 ? "0" : "1";
            }
            ASSERT_EQ(ValueAt(*stimulus, time), value) << time;
            ASSERT_EQ(stimulus->GetNextEventTime(time), next) << time;
        }
    }
}

class TxtFormula : public SampleStimulus {};

TEST_F(TxtFormula, InItsInternalFormPlaysAnElementOfALoadedColumn)
{
    const int handle = AddColumn({{0, "1010"}});
    const std::string start = "/txt/internal " + std::to_string(handle);
    const StimulusPtr keeper = Play(handle);
    EXPECT_EQ(ValueAt(*Create(start + ",(3)"), 0), "1");
    EXPECT_EQ(ValueAt(*Create(start + ",(2)"), 0), "0");
    EXPECT_EQ(ValueAt(*Create("/TXT/internal " + std::to_string(handle) + ",(3) and more"), 0), "1");
    EXPECT_EQ(ValueAt(*Create(start + ",(-3)"), 0), "0");
    for (const char *rest : {",3", ",(3", ",(3]", "(3)", " ,(3)", ", (3)", ",()", ",(x)", ""})
        EXPECT_EQ(Create(start + rest), nullptr) << rest;
    EXPECT_EQ(Create("/txt/internal ,(3)"), nullptr);
    EXPECT_EQ(Create("/txt/internal x,(3)"), nullptr);
    EXPECT_NE(Create("/txt/internal 77,(3)"), nullptr);
    EXPECT_NE(Create("/txt/internal 99999999999999999999,(99999999999999999999)"), nullptr);
    EXPECT_EQ(Create("/txt/INTERNAL 1,(3)"), nullptr);  // a file of that name
}

TEST_F(TxtFormula, PlaysATableFromAFile)
{
    m_folder.Write("t.txt", "t s\n10 1\n20 0\n");
    IStimulus::SetupAdditionalInfo("s", StdLogicType);
    const StimulusPtr stimulus = Create("/txt t,s -time_points t");
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(ValueAt(*stimulus, 10), "1");
    EXPECT_EQ(stimulus->GetNextEventTime(10), 20);
    EXPECT_EQ(g_SampleColumns.at(1)->m_useCount, 2);
}

TEST_F(TxtFormula, LosesTheClosingQuoteOfOneInQuotes)
{
    m_folder.Write("t.txt", "t s\n10 1\n20 0\n");
    EXPECT_NE(Create("\"/txt t.txt,s\""), nullptr);
    EXPECT_NE(Create("\"/txt t.txt,s -time_points t\""), nullptr);
    EXPECT_EQ(Create("/txt t.txt,s -time_points t\""), nullptr);
    EXPECT_EQ(Create("\"/txt\""), nullptr);
}

TEST_F(TxtFormula, GivesNothingForWhatCannotBeUsed)
{
    m_folder.Write("t.txt", "s\n1\n");
    EXPECT_EQ(Create("/txt missing,s"), nullptr);
    EXPECT_EQ(Create("/txt t.txt,"), nullptr);
    EXPECT_EQ(Create("/txt t.txt,x"), nullptr);
    IStimulus::SetupAdditionalInfo("s", "no type");
    EXPECT_EQ(Create("/txt t.txt,s"), nullptr);
}

TEST_F(TxtFormula, StandsAnywhereInTheText)
{
    m_folder.Write("t.txt", "s\n1\n");
    EXPECT_EQ(ValueAt(*Create("1 0ns, \\counter /brel /TXT t.txt,s"), 0), "1");
}

TEST(CEmptyStimulus, HasTwoSharedObjects)
{
    IStimulus *empty = CEmptyStimulus::Shared(false);
    IStimulus *cancelled = CEmptyStimulus::Shared(true);
    EXPECT_EQ(IStimulus::Create("", 0, 1000, nullptr, false, false), empty);
    EXPECT_NE(cancelled, empty);
    EXPECT_EQ(CEmptyStimulus::Shared(true), cancelled);
    for (IStimulus *stimulus : {empty, cancelled}) {
        stimulus->Destroy();
        stimulus->Destroy();
        EXPECT_EQ(ValueAt(*stimulus, 5), "");
        EXPECT_EQ(stimulus->GetNextEventTime(-1), -1);
        EXPECT_EQ(stimulus->IsFinishedAt(0), stimulus == cancelled);
        EXPECT_EQ(stimulus->IsFinishedAt(LLONG_MIN), stimulus == cancelled);
    }
}

}  // namespace
