// Whole simulation runs: the host's calls in their order, for formulas of every kind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "core/formulaparser.h"
#include "core/support.h"
#include "logcatcher.h"
#include "testpaths.h"
#include "waveform/openfiles.h"
#include "waveform/samplecolumn.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr long long Picosecond = 1000;

/// A bus of four wires and what drives it, in the folder of the examples' files.
class SimulationRun : public ::testing::Test {
protected:
    static constexpr int Wires = 4;

    SimulationRun() : m_oldFolder(std::filesystem::current_path())
    {
        std::filesystem::current_path(TESK_SOURCE_DIR "/examples");
    }
    ~SimulationRun() override
    {
        IStimulus::OnEndsim();
        std::filesystem::current_path(m_oldFolder);
    }

    // The first changes of the bus: "ticks value", with "-" for a wire that is silent.
    std::vector<std::string> Play(const std::string &formula, std::size_t changes)
    {
        std::vector<SimpleString::CStr> formulas;
        CFormulaParser parser;
        parser.SetSimRes(Picosecond);
        IStimulus::SetupAdditionalInfo("bus", BusType);
        EXPECT_EQ(parser.Run(formula.c_str(), formulas, Wires, true, 0), 1) << formula;
        std::vector<StimulusPtr> wires;
        for (const SimpleString::CStr &wireFormula : formulas)
            wires.emplace_back(IStimulus::Create(wireFormula, 0, Picosecond, nullptr, false, false));
        std::vector<std::string> played;
        if (std::ranges::any_of(wires, [](const StimulusPtr &wire) { return wire == nullptr; }))
            return {"a wire has no stimulus"};
        for (long long time = Next(wires, -1); time != -1 && played.size() < changes; time = Next(wires, time))
            played.push_back(std::to_string(time) + " " + Value(wires, time));
        return played;
    }

    static constexpr char BusType[] = "a#28#std_logic_vector(3 downto 0)1 ricd3 0 e#9#std_logicc9 UX01ZWLH-";

private:
    static long long Next(const std::vector<StimulusPtr> &wires, long long time)
    {
        long long next = -1;
        for (const StimulusPtr &wire : wires) {
            const long long change = wire->GetNextEventTime(time);
            if (change != -1 && (next == -1 || change < next))
                next = change;
        }
        return next;
    }

    static std::string Value(const std::vector<StimulusPtr> &wires, long long time)
    {
        std::string value;
        for (const StimulusPtr &wire : wires)
            value += ValueAt(*wire, time).value_or("-");
        return value;
    }

    std::filesystem::path m_oldFolder;
};

TEST_F(SimulationRun, PlaysFormulasOfEveryKindOnABus)
{
    const struct {
        const char *formula;
        std::vector<std::string> changes;
    } rows[] = {
        {"x\"A\" 5ns, 0110 10ns", {"5000 1010", "10000 0110"}},
        {"\\counter\\TYPE\\1\\DIR\\1\\RADIX\\2\\START\\1110\\INC\\1\\PERIOD\\10ns\\REV\\0",
         {"0 1110", "10000 1111", "20000 0000"}},
        {"/brel [5]10 [A]10", {"0 0101", "10000 1010", "20000 ----"}},
        {"/custom traffic.vcd,tb.count,60ns,80ns", {"5000 0111", "15000 1000"}},
        {"/custom traffic.fst,tb.count", {"5000 0001", "15000 0010", "25000 0011"}},
        {"/txt sine.txt,sine -time_points time -interval 1ns", {"0 0000", "10000 1111", "20000 1101"}},
        {"/mat sine.mat,sine -time_var time -interval 1ns -point 3", {"0 0000", "10000 0010", "20000 0100"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(Play(row.formula, row.changes.size()), row.changes) << row.formula;
}

TEST_F(SimulationRun, DrawsTheSameRandomValuesAgain)
{
    const char formula[] = "\\RANDOM\\1\\5\\0\\15\\10.000000ns";
    const std::vector<std::string> first = Play(formula, 20);
    EXPECT_EQ(first.size(), 20u);
    EXPECT_EQ(Play(formula, 20), first);
}

TEST_F(SimulationRun, EndsWithoutOpenFilesAndLoadedTables)
{
    const CLogCatcher log;
    for (int run = 0; run < 2; ++run) {
        const auto replayed = Play("/custom traffic.vcd,tb.count", 3);
        EXPECT_THAT(replayed, ElementsAre("5000 0001", "15000 0010", "25000 0011"));
        Play("/custom traffic.fst,tb.count", 3);
        EXPECT_EQ(g_OpenWaveformFiles.size(), 2u) << "held until the run ends, whichever stimuli have gone";
        std::vector<SimpleString::CStr> loaded;
        IStimulus::SetupAdditionalInfo("bus", BusType);
        EXPECT_EQ(CFormulaParser().Run("/txt sine.txt,sine", loaded, Wires, true, 0), 1);
        EXPECT_EQ(g_SampleColumns.size(), 1u);
        EXPECT_STREQ(loaded.front(), "/txt/internal 1,(3)") << "handles count from 1 in each run";
        IStimulus::OnEndsim();
        EXPECT_THAT(g_OpenWaveformFiles, IsEmpty());
        EXPECT_THAT(g_SampleColumns, IsEmpty());
    }
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(RoadOfAFormula, LeadsFromTheTextToTheLastAnswer)
{
    const StimulusPtr stimulus = Create("1 10ns, 0 20ns -r 30ns -cancel 100ns");
    EXPECT_EQ(g_simRes, Picosecond);
    ASSERT_NE(dynamic_cast<CStimulus *>(stimulus.get()), nullptr);
    std::vector<std::string> road;
    long long time = stimulus->GetNextEventTime(-1);
    for (; time != -1; time = stimulus->GetNextEventTime(time))
        road.push_back(std::to_string(time) + " " + ValueAt(*stimulus, time).value_or("-"));
    EXPECT_THAT(road, ElementsAre("10000 1", "20000 0", "40000 1", "50000 0", "70000 1", "80000 0", "100000 -"));
    EXPECT_TRUE(stimulus->IsFinishedAt(100000));
    EXPECT_FALSE(stimulus->IsFinishedAt(99999));
}

}  // namespace
