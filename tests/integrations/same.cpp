// One bench gives the same waves in every simulator and in `tesk play`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "integrations/simulation.h"
#include "testpaths.h"

namespace {

using testing::IsEmpty;

const std::string Folder = TESK_SOURCE_DIR "/tests/integrations/";

class OneBench : public testing::Test {
protected:
    OneBench()
    {
        m_simulation.Write("same.toml", ReadFile(Folder + "same.toml"));
        m_simulation.Write("table.txt", "time square\n0 0000\n10 0001\n20 0100\n30 1001\n");
        m_simulation.Write("record.vcd", ReadFile(TESK_SOURCE_DIR "/examples/traffic.vcd"));
        EXPECT_EQ(m_simulation.Run("tesk play same.toml --format vcd --no-elements -o play.vcd"), 0)
            << m_simulation.Output();
    }

    // What the bench names; what a design has beside is its own.
    void ExpectAsPlayed(const char *dump)
    {
        EXPECT_THAT(m_simulation.Lines("error"), IsEmpty());
        const auto played = m_simulation.Dump("play.vcd");
        const auto simulated = m_simulation.Dump(dump);
        EXPECT_EQ(played.size(), 10U);
        for (const auto &[name, changes] : played) {
            auto same = simulated.find(name);
            if (same == simulated.end())
                same = simulated.find("top." + name);  // Verilator has a scope more
            ASSERT_NE(same, simulated.end()) << name << " in " << dump;
            EXPECT_EQ(Told(same->second), Told(changes)) << name << " in " << dump;
        }
    }

    CSimulation m_simulation;
};

}  // namespace

TEST_F(OneBench, GivesItsWavesInIcarus)
{
    m_simulation.Write("design.v", ReadFile(Folder + "same.v"));
    EXPECT_EQ(m_simulation.Run("iverilog '-DDUMP=\"icarus.vcd\"' -o same.vvp design.v && vvp -M '" TESK_MODULE_FOLDER
                               "' -m tesk same.vvp +tesk=same.toml"),
              0);
    ExpectAsPlayed("icarus.vcd");
}

TEST_F(OneBench, GivesItsWavesInGhdl)
{
    m_simulation.Write("design.vhd", ReadFile(Folder + "same.vhd"));
    EXPECT_EQ(m_simulation.RunGhdl("+tesk=same.toml --vcd=ghdl.vcd"), 0) << m_simulation.Output();
    ExpectAsPlayed("ghdl.vcd");
}

TEST_F(OneBench, GivesItsWavesInVerilator)
{
    EXPECT_EQ(m_simulation.Run("'" TESK_VERILATED "' +tesk=same.toml +dump=verilator.vcd"), 0);
    ExpectAsPlayed("verilator.vcd");
}

TEST_F(OneBench, TellsInVerilatorWhatCannotBeForced)
{
    m_simulation.Write("faults.toml",
                       "scope = \"tb\"\n[signals]\n\"part[0].k\" = \"1 0ns\"\ncount = \"0000 0ns\"\nrst = \"1 0ns\"\n");
    m_simulation.Run("'" TESK_VERILATED "' +tesk=faults.toml");
    EXPECT_THAT(m_simulation.Lines(": error"),
                testing::ElementsAre(
                    testing::HasSubstr("faults.toml:3:15: error: tb.part[0].k: this simulator cannot force values; "
                                       "give the strength \"deposit\""),
                    testing::HasSubstr("faults.toml:4:9: error: tb.count: this simulator cannot force values"),
                    testing::HasSubstr(
                        "faults.toml:5:7: error: there is no \"tb.rst\" in \"tb\" (did you mean \"tb.rst_n\"?)")));
}

TEST_F(OneBench, IsReplayedInVerilatorAsIcarusRecordedIt)
{
    m_simulation.Write("design.v", ReadFile(Folder + "same.v"));
    m_simulation.Write("replay.toml",
                       "until = \"200ns\"\n[[replay]]\nfile = \"icarus.fst\"\nscope = \"tb\"\ncompare = [\"count\"]\n");
    EXPECT_EQ(m_simulation.Run("iverilog '-DDUMP=\"icarus.fst\"' -o same.vvp design.v && vvp -M '" TESK_MODULE_FOLDER
                               "' -m tesk same.vvp -fst +tesk=same.toml && '" TESK_VERILATED
                               "' +tesk=replay.toml +dump=verilator.vcd"),
              0);
    EXPECT_THAT(m_simulation.Lines("error"), IsEmpty());
    const auto recorded = m_simulation.Dump("icarus.fst");
    const auto replayed = m_simulation.Dump("verilator.vcd");
    for (const char *signal :
         {"clk", "rst_n", "data", "upward", "wide", "gray", "noise", "table_value", "recorded", "counter.count"}) {
        const std::string name = std::string("tb.") + signal;
        CChanges before = recorded.at(name), after = replayed.at("top." + name);
        std::erase_if(before, [](const auto &change) { return change.first == 0; });  // Verilator has 0 for x there
        std::erase_if(after, [](const auto &change) { return change.first == 0; });
        EXPECT_EQ(Told(after), Told(before)) << name;
    }
}
