// tesk view: recorded signals as pictures, and what is kept of them.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/files/wavefile.h"
#include "tools/runtool.h"
#include "tools/view/recordedwaveform.h"
#include "tools/writers/writers.h"

namespace {

using tesk::SRecordedSignal;
using tesk::SRecordedWindow;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A dump of a bit, a vector and a real, in nanoseconds.
std::string Dump(const std::string &changes)
{
    return "$timescale 1ns $end\n$scope module tb $end\n$var wire 1 ! clk $end\n$var wire 4 \" bus [3:0] $end\n"
           "$var real 64 # level $end\n$var wire 1 ! alias $end\n$upscope $end\n$enddefinitions $end\n" +
           changes;
}

class View : public testing::Test {
protected:
    std::string Write(const std::string &changes)
    {
        const std::string path = m_folder / "view.vcd";
        std::ofstream(path) << Dump(changes);
        return path;
    }

    std::vector<SRecordedSignal> Open(const std::string &changes)
    {
        m_file = OpenWaveFile(Write(changes));
        std::vector<SRecordedSignal> signals;
        for (const tesk::SFileSignal &signal : m_file->GetSignals())
            signals.push_back({m_file.get(), signal, signal.path});
        return signals;
    }

    CTemporaryFolder m_folder;
    std::unique_ptr<tesk::IWaveformFile> m_file;
};

std::vector<std::string> Texts(const STrace &trace)
{
    std::vector<std::string> texts;
    for (const SChange &change : trace.changes)
        texts.push_back(std::to_string(change.ticks) + "=" + change.value.value_or("(none)"));
    return texts;
}

std::string Picture(const std::vector<SRecordedSignal> &signals, const SRecordedWindow &window)
{
    const SWaveform waveform = tesk::RecordedWaveform(signals, window, "");
    std::ostringstream out;
    WriteWave(out, waveform, 80);
    WriteSvg(out, waveform, 400);
    return out.str();
}

std::pair<double, double> Extremes(const STrace &trace)
{
    std::pair<double, double> extremes = {1e9, -1e9};
    for (const SChange &change : trace.changes) {
        const double number = std::stod(change.value.value_or("0"));
        extremes = {std::min(extremes.first, number), std::max(extremes.second, number)};
    }
    return extremes;
}

}  // namespace

TEST_F(View, DrawsTheSignalsOfAFile)
{
    const SToolRun run = RunShell("tesk view examples/traffic.vcd tb.clk tb.count --from 40ns --until 80ns --width 60");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "tb\n"
                       "               ┌─────┐      ┌─────┐      ┌─────┐      ┌─────\n"
                       "  clk          │     │      │     │      │     │      │\n"
                       "        ───────┘     └──────┘     └──────┘     └──────┘\n"
                       "        ────────────────────────────────────────────────────\n"
                       "  count ╳  4   ╳     5      ╳     6      ╳     7      ╳  8\n"
                       "        ────────────────────────────────────────────────────\n"
                       "        ┴────────────┴────────────┴────────────┴────────────\n"
                       "        40ns         50ns         60ns         70ns\n");
}

TEST_F(View, WritesWhatTheEndingOfTheOutputTells)
{
    const std::string svg = m_folder / "v.svg";
    EXPECT_EQ(RunShell("tesk view examples/traffic.fst 'tb.c*' -o " + svg).status, 0);
    EXPECT_THAT(ReadFile(svg), AllOf(HasSubstr("<svg "), HasSubstr(">count</text>"), HasSubstr(">tb</text>")));
    EXPECT_THAT(RunShell("tesk view examples/packets.ghw packets.tx.state --format csv --until 25ns").out,
                "ticks,time,packets.tx.state\n0,0fs,idle\n10000000,10ns,header\n20000000,20ns,payload\n");
    EXPECT_THAT(RunShell("tesk view examples/traffic.vcd tb.count --format vcd --from 35ns --until 45ns").out,
                AllOf(HasSubstr("#35\nb0100 !\n"), HasSubstr("#45\nb0101 !\n"), Not(HasSubstr("#25\n"))));
}

TEST_F(View, ShowsTheFirstSignalsAndSaysSo)
{
    const SToolRun run = RunShell("tesk view examples/traffic.vcd --limit 2 --format csv --until 3ns");
    EXPECT_EQ(run.out, "ticks,time,tb.walk,tb.clk\n0,0ns,0,0\n");
    EXPECT_EQ(run.err, "tesk: the first 2 of 5 signals are shown; name others, or give --limit 5\n");
}

TEST_F(View, RefusesWhatIsNotThere)
{
    const std::string path = m_folder / "v.svg";
    SToolRun run = RunShell("tesk view examples/traffic.vcd tb.cluk -o " + path);
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("no signal is named \"tb.cluk\" (did you mean \"tb.clk\"?)"));
    EXPECT_FALSE(std::ifstream(path).is_open());
    run = RunShell("tesk view examples/traffic.vcd --from 5us");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.err, HasSubstr("--from 5us: the file ends at 120ns"));
}

TEST_F(View, DrawsARealAsACurveAndAVectorIfAsked)
{
    const std::string path = Write("#0\n0!\nb0000 \"\nr-1 #\n#10\nb1111 \"\nr3 #\n#20\nbx \"\n#40\n");
    const SToolRun run = RunShell("tesk view " + path + " '*bus' '*level' --radix analog --width 52 --until 40ns");
    EXPECT_EQ(run.out, "tb\n"
                       "        15           ┌──────────\n"
                       "                     │\n"
                       "                     │\n"
                       "  bus                │          ╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳╳\n"
                       "                     │\n"
                       "                     │\n"
                       "         0 ──────────┘\n"
                       "         3           ┌──────────────────────────────\n"
                       "                     │\n"
                       "                     │\n"
                       "  level              │\n"
                       "                     │\n"
                       "                     │\n"
                       "        -1 ──────────┘\n"
                       "           ┴────────────────────┴───────────────────\n"
                       "           0ns                  20ns\n");
}

TEST_F(View, KeepsTheValueInForceWhereTheWindowBegins)
{
    const auto signals = Open("#0\n0!\nb0001 \"\n#5\n1!\n#10\nb0010 \"\n#15\n0!\n#20\nb0011 \"\n#21\nb0011 \"\n");
    const auto traces = tesk::ReadRecorded(signals, {1000000, 7, 20});
    EXPECT_THAT(Texts(traces[0]), ElementsAre("7=1", "15=0"));
    EXPECT_THAT(Texts(traces[1]), ElementsAre("7=0001", "10=0010", "20=0011"));
    EXPECT_THAT(Texts(traces[2]), ElementsAre());
    EXPECT_THAT(Texts(traces[3]), ElementsAre("7=1", "15=0"));
    EXPECT_THAT(Texts(tesk::ReadRecorded(signals, {1000000, 10, 30})[1]), ElementsAre("10=0010", "20=0011"));
    EXPECT_THAT(Texts(tesk::ReadRecorded(signals, {10000000, 0, 2})[0]), ElementsAre("0=1", "1=0"));
}

TEST_F(View, KeepsNoMoreThanAPictureShows)
{
    std::mt19937 random(1);
    std::string changes;
    long long time = 0;
    for (int i = 0; i < 20000; ++i, time += 1 + static_cast<long long>(random() % (i % 100 == 0 ? 400 : 3)))
        changes += "#" + std::to_string(time) + "\n" + std::to_string(i % 2) + "!\nb" + std::to_string(i / 7 % 2) +
                   "01 \"\nr" + std::to_string(std::sin(i / 2000.0) + static_cast<double>(random() % 100) / 300) +
                   " #\n";
    const auto signals = Open(changes);
    for (const long long from : {0LL, 1234LL, time / 2}) {
        SRecordedWindow window{1000000, from, time - from / 3};
        const std::vector<SRecordedSignal> levels = {signals[0], signals[1], signals[3]};
        const std::string whole = Picture(levels, window);
        const std::vector<STrace> all = tesk::ReadRecorded(signals, window);
        window.points = 800;
        EXPECT_TRUE(Picture(levels, window) == whole) << from;
        const std::vector<STrace> kept = tesk::ReadRecorded(signals, window);
        for (std::size_t i = 0; i < kept.size(); ++i)
            EXPECT_LE(kept[i].changes.size(), std::min<std::size_t>(all[i].changes.size(), 4 * 800U));
        EXPECT_EQ(Extremes(kept[2]), Extremes(all[2]));
    }
}

TEST_F(View, ReadsNoFurtherThanItShows)
{
    const std::string path = Write("#0\n0!\n#5\n1!\n#50\n1unknown\n");
    EXPECT_EQ(RunShell("tesk view " + path + " --until 10ns").err, "");
    EXPECT_THAT(RunShell("tesk view " + path).err, HasSubstr("no variable has the identifier code \"unknown\""));
}
