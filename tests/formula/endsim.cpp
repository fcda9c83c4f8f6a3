#include "core/support.h"
#include "platform/crt.h"
#include "waveform/samplestimulus.h"
#include "waveform/table/tables.h"

namespace {

class EndOfSimulation : public CTableTest {};

TEST_F(EndOfSimulation, DestroysTheLoadedSamplesAndCountsFromOneAgain)
{
    m_folder.Write("t.txt", "s\n1\n");
    EXPECT_TRUE(Import("t.txt,s", BitType));
    EXPECT_TRUE(Import("t.txt,s", IntegerType));
    EXPECT_EQ(g_NextSampleHandle, 3);
    IStimulus::OnEndsim();
    EXPECT_TRUE(g_SampleColumns.empty());
    EXPECT_EQ(g_NextSampleHandle, 1);
    EXPECT_TRUE(std::filesystem::exists("t.txt"));
}

TEST_F(EndOfSimulation, LeavesStimuliWithoutValues)
{
    m_folder.Write("t.txt", "s\n1\n");
    const StimulusPtr stimulus = Create("/txt t.txt,s");
    IStimulus::OnEndsim();
    EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt);
    IStimulus::OnEndsim();
}

}  // namespace
