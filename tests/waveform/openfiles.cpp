#include "waveform/openfiles.h"

#include "waveform/fakefiles.h"

namespace {

using testing::ElementsAre;

class OpenWaveformFiles : public WaveformFiles {};

TEST_F(OpenWaveformFiles, AreInTheOrderOfTheBytesOfTheirNames)
{
    for (const char *name : {"b", "a", "B", "\xE4", "a.vcd", "aa"})
        Enter(name, nullptr);
    std::vector<std::string> names;
    for (const auto &[name, file] : g_OpenWaveformFiles)
        names.emplace_back(name);
    EXPECT_THAT(names, ElementsAre("B", "a", "a.vcd", "aa", "b", "\xE4"));
}

TEST_F(OpenWaveformFiles, AreToldApartByLetterCaseAndPath)
{
    for (const char *name : {"a.db", "A.db", "./a.db", "a.DB"})
        Enter(name, nullptr);
    EXPECT_EQ(g_OpenWaveformFiles.size(), 4u);
}

TEST_F(OpenWaveformFiles, AreAllEndedAndForgottenAtOnce)
{
    const int ended = CFakeReader::Ended();
    Enter("a.db", new CFakeReader(1000, 10, {}));
    Enter(".vcd", new CFakeReader(1000, 10, {}));
    Enter("a.vcd", new WaveStore);
    Enter("null.db", nullptr);
    Enter("null.vcd", nullptr);
    tesk::CloseOpenWaveformFiles();
    EXPECT_EQ(CFakeReader::Ended(), ended + 2);
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
    tesk::CloseOpenWaveformFiles();
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
}

}  // namespace
