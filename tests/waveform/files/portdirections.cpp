// Which way the ports of a recorded design lead.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>

#include "testpaths.h"
#include "waveform/files/filekinds.h"
#include "waveform/files/waveformfile.h"

using tesk::ESignalDirection;

namespace {

std::map<std::string, ESignalDirection> DirectionsIn(const char *file)
{
    const std::string path = std::string(TESK_SOURCE_DIR) + "/tests/data/" + file;
    const std::unique_ptr<tesk::IWaveformFile> opened = tesk::FileKind(tesk::EFileKind::Database).open(path.c_str());
    std::map<std::string, ESignalDirection> directions;
    for (const tesk::SFileSignal &signal : opened->GetSignals())
        directions[signal.path] = signal.direction;
    return directions;
}

}  // namespace

TEST(PortDirections, AreThoseThatAnFstFileTells)
{
    const auto directions = DirectionsIn("tb.verilator.fst");
    EXPECT_EQ(directions.at("TOP.tb.dut.clk"), ESignalDirection::In);
    EXPECT_EQ(directions.at("TOP.tb.dut.reset"), ESignalDirection::In);
    EXPECT_EQ(directions.at("TOP.tb.dut.count"), ESignalDirection::Out);
    EXPECT_EQ(directions.at("TOP.tb.clk"), ESignalDirection::Unknown);
    for (const auto &[name, direction] : DirectionsIn("tb.iverilog.fst"))
        EXPECT_EQ(direction, ESignalDirection::Unknown) << name;
}

// An element of a port, and a port of an array of arrays, lead as it does.
TEST(PortDirections, AreThoseThatAGhwFileTells)
{
    const auto directions = DirectionsIn("tb.ghdl.ghw");
    EXPECT_EQ(directions.at("tb.dut.clk"), ESignalDirection::In);
    EXPECT_EQ(directions.at("tb.dut.count"), ESignalDirection::Out);
    EXPECT_EQ(directions.at("tb.dut.value"), ESignalDirection::Unknown);
    EXPECT_EQ(directions.at("tb.clk"), ESignalDirection::Unknown);
    const auto types = DirectionsIn("ghw_types.ghdl.ghw");
    EXPECT_EQ(types.at("ghw_types.dut.i"), ESignalDirection::In);
    EXPECT_EQ(types.at("ghw_types.dut.o"), ESignalDirection::Out);
    EXPECT_EQ(types.at("ghw_types.dut.s"), ESignalDirection::InOut);
    EXPECT_EQ(types.at("ghw_types.dut.inner"), ESignalDirection::Unknown);
    EXPECT_EQ(std::count_if(types.begin(), types.end(),
                            [](const auto &entry) {
                                return entry.first.starts_with("ghw_types.dut.v") &&
                                       entry.second == ESignalDirection::In;
                            }),
              4);
}
