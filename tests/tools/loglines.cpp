// What the library logs while the tool is at work.
#include <gmock/gmock.h>

#include <fstream>
#include <string>

#include "testpaths.h"
#include "tools/runtool.h"

namespace {

// A waveform file of which one signal's changes are damaged, so that the library finds it out when they are asked for.
std::string DamagedFile()
{
    std::string bytes = ReadFile(TESK_SOURCE_DIR "/examples/traffic.fst");
    constexpr std::size_t FirstBlock = 330, Begin = 60, End = 90;
    for (std::size_t i = Begin; i < End; ++i)
        bytes.at(FirstBlock + i) = static_cast<char>(bytes[FirstBlock + i] ^ 0x55);
    return bytes;
}

TEST(LogLines, TellInTheToolsFormWhatComesUpWhileValuesAreRead)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a\nb.fst").string(), shown = (folder / "a\\x0Ab.fst").string();
    std::ofstream(name, std::ios::binary) << DamagedFile();
    const SToolRun run = RunShell("tesk play '/custom " + name + ",tb.count(3)' --until 1us");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "tesk: warning: Waveform file `" + shown + "' is damaged: value changes behind time 0 are left out.\n");
}

TEST(LogLines, TellAWarningOnceHoweverOftenAFileIsRead)
{
    const CTemporaryFolder folder;
    const std::string name = (folder / "a.vcd").string();
    std::ofstream(name) << "$timescale 1ns $end $var wire 1 ! clk $end $enddefinitions $end\n#0\n0!\n#5\n1!\n1\"\n#7\n";
    const SToolRun run = RunShell("sed '/1!/d; /\"/d' " + name + " >" + name + ".other; tesk diff " + name + " " +
                                  name + ".other --format wave");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.out, testing::HasSubstr("first at 5ns"));
    EXPECT_EQ(run.err, "tesk: warning: " + name +
                           ":6: no variable has the identifier code \"\"\"; values without one are left out\n");
}

}  // namespace
