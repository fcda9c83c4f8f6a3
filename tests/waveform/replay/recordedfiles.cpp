// Files on disk, as simulators write them.

#include <filesystem>
#include <fstream>

#include "logcatcher.h"
#include "platform/stream/streamfiles.h"
#include "testpaths.h"
#include "waveform/fakefiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

namespace {

using testing::IsEmpty;

class RecordedFiles : public WaveformFiles {};

std::string Data(const std::string &name)
{
    return TESK_SOURCE_DIR "/tests/data/" + name;
}

TEST_F(RecordedFiles, PlayTheSameFromEitherDumpOfOneSimulation)
{
    const CLogCatcher log;
    for (const char *signal : {"tb.clk", "TB.DATA(3)", "tb.level[15]", "tb.middle(2)", "tb.ascending(3)"}) {
        const StimulusPtr vcd = Create("/custom " + Data("tb.iverilog.vcd") + "," + signal);
        const StimulusPtr fst = Create("/custom " + Data("tb.iverilog.fst") + "," + signal);
        ASSERT_NE(vcd, nullptr) << signal;
        ASSERT_NE(fst, nullptr) << signal;
        ASSERT_NE(dynamic_cast<CVcdStimulus *>(vcd.get()), nullptr);
        ASSERT_NE(dynamic_cast<CTarnStimulus *>(fst.get()), nullptr);
        long long changes = 0;
        for (long long time = 0; time != -1; time = fst->GetNextEventTime(time), ++changes) {
            ASSERT_EQ(ValueAt(*vcd, time), ValueAt(*fst, time)) << signal << " at " << time;
            ASSERT_NE(ValueAt(*vcd, time), std::nullopt) << signal << " at " << time;
        }
        EXPECT_GT(changes, 1) << signal;
    }
    EXPECT_EQ(g_OpenWaveformFiles.size(), 2u);
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(RecordedFiles, AreReadOnceForAllTheirStimuli)
{
    const CStreamFolder folder;
    const std::string file = folder / "a.vcd";
    std::filesystem::copy(Data("tb.iverilog.vcd"), file);
    EXPECT_NE(Create("/custom " + file + ",tb.clk"), nullptr);
    std::filesystem::remove(file);
    EXPECT_NE(Create("/custom " + file + ",tb.reset"), nullptr);
    EXPECT_EQ(g_OpenWaveformFiles[file.c_str()].m_useCount, 2);
}

TEST_F(RecordedFiles, AreReadAgainUnderAnotherSpellingOfTheirName)
{
    EXPECT_NE(Create("/custom " + Data("tb.iverilog.vcd") + ",tb.clk"), nullptr);
    EXPECT_NE(Create("/custom " + Data("../data/tb.iverilog.vcd") + ",tb.clk"), nullptr);
    EXPECT_EQ(g_OpenWaveformFiles.size(), 2u);
}

TEST_F(RecordedFiles, AreClosedAgainWhereTheStimulusFails)
{
    const CLogCatcher log;
    for (const char *name : {"tb.iverilog.vcd", "tb.iverilog.fst"})
        EXPECT_EQ(Create("/custom " + Data(name) + ",none"), nullptr) << name;
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
    EXPECT_EQ(log.Messages().size(), 2u);
}

TEST_F(RecordedFiles, ThatAreNoneAreRefused)
{
    const CStreamFolder folder;
    const struct {
        const char *name;
        const char *message;
    } rows[] = {{"a.db", "1 KERNEL Waveform file corrupted."}, {"none.db", "1 KERNEL Waveform file does not exist."}};
    std::ofstream(folder / "a.db") << "no database";
    for (const auto &row : rows) {
        const CLogCatcher log;
        EXPECT_EQ(Create("/custom " + (folder / row.name) + ",s"), nullptr) << row.name;
        EXPECT_THAT(log.Messages(), testing::Contains(row.message));
    }
    std::ofstream(folder / "a.vcd") << "$end no dump";
    for (const char *name : {"a.vcd", "none.vcd"}) {
        const CLogCatcher log;
        EXPECT_EQ(Create("/custom " + (folder / name) + ",s"), nullptr) << name;
        ASSERT_EQ(log.Messages().size(), 1u) << name;
        EXPECT_EQ(log.Messages()[0].substr(0, 6), "1 VCD ");
    }
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
}

}  // namespace
