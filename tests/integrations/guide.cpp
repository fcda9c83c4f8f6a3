// What the guide tells to type for simulators does what it says.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integrations/simulation.h"
#include "testpaths.h"

namespace {

using testing::SizeIs;

void Replace(std::string &text, const std::string &what, const std::string &with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

// The shell blocks of the section, with the module that was built and without a viewer.
std::vector<std::string> Commands()
{
    const std::string guide = ReadFile(TESK_SOURCE_DIR "/docs/guide.md");
    const std::size_t begin = guide.find("## In your simulator\n");
    std::istringstream section(guide.substr(begin, guide.find("\n## ", begin) - begin));
    std::vector<std::string> blocks;
    bool isInside = false;
    for (std::string line; std::getline(section, line);) {
        if (line == "```sh")
            blocks.emplace_back();
        else if (isInside && line != "```")
            blocks.back() += line + '\n';
        isInside = line == "```sh" || (isInside && line != "```");
    }
    for (std::string &block : blocks) {
        Replace(block, "/usr/local/lib/tesk", "$PWD/installed");
        Replace(block, "cd counter", "cd counter && ln -s ../installed .");
        Replace(block, "examples/vpi", TESK_SOURCE_DIR "/examples/vpi");
        Replace(block, "gtkwave ", "ls ");
    }
    return blocks;
}

}  // namespace

TEST(GuideOnSimulators, LeadsToAPictureOfTheCounter)
{
    const char *const dumps[][2] = {
        {"tb.vcd", "tb.count"}, {"counter/ghdl.vcd", "counter.count"}, {"counter/verilator.vcd", "counter.count"}};
    const std::vector<std::string> blocks = Commands();
    ASSERT_THAT(blocks, SizeIs(std::size(dumps)));
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        CSimulation simulation;
        ASSERT_EQ(simulation.Run("mkdir installed && cp '" TESK_MODULE_FOLDER "/tesk.vpi' '" TESK_SOURCE_DIR
                                 "/integrations/vpi/verilated/runverilated.cpp' installed && set -e\n"
                                 "export MAKEFLAGS='OPT_FAST=-O0 OPT_GLOBAL=-O0'\n" +
                                 blocks[i]),
                  0)
            << simulation.Output();
        auto dump = simulation.Dump(dumps[i][0]);
        if (dump.find(dumps[i][1]) == dump.end())
            dump[dumps[i][1]] = dump[std::string("top.") + dumps[i][1]];
        EXPECT_GE(dump.at(dumps[i][1]).size(), 10U) << blocks[i];
    }
}
