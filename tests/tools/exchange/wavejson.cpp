// Benches as drawings of WaveDrom, and drawings as benches.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>

#include "tools/exchange/bothways.h"
#include "tools/exchange/importforms.h"
#include "tools/exchange/randombench.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

class Drawn : public CBothWays {
protected:
    // What a drawing shows, brick by brick, of lanes of bits and of labels. A clock shows both of its levels.
    static CWalks ShownIn(const std::string &drawing)
    {
        const auto document = nlohmann::json::parse(drawing);
        CWalks walks;
        const auto step = static_cast<long long>(std::stoll(document["tesk"]["step"].get<std::string>())) * 1'000'000;
        Show(document["signal"], step, walks);
        return walks;
    }

private:
    static void Show(const nlohmann::json &lanes, long long step, CWalks &walks)
    {
        for (const auto &lane : lanes) {
            if (lane.is_array())
                Show(lane, step, walks);
            else if (lane.is_object())
                ShowLane(lane, step, walks[lane["name"].get<std::string>()]);
        }
    }

    static void ShowLane(const nlohmann::json &lane, long long step, CWalk &walk)
    {
        const std::string wave = lane["wave"];
        const long long width = lane.value("period", 1LL) * step;
        std::size_t label = 0;
        char held = 0;
        for (std::size_t i = 0; i < wave.size(); ++i) {
            const long long time = width * static_cast<long long>(i);
            const bool isNew = wave[i] != '.';
            held = isNew ? wave[i] : held;
            if (held == 'p' || held == 'n') {
                AddChange(walk, time, held == 'p' ? "1" : "0");
                AddChange(walk, time + width / 2, held == 'p' ? "0" : "1");
            } else if (isNew && held == '=') {
                AddChange(walk, time, lane["data"][label++].get<std::string>());
            } else if (isNew) {
                AddChange(walk, time,
                          held == 'z'   ? ""
                          : held == 'u' ? "H"
                          : held == 'd' ? "L"
                                        : Upper(std::string(1, held)));
            }
        }
    }
};

}  // namespace

TEST_F(Drawn, WalksTheSameBothWaysForEveryKindOfFormula)
{
    WriteBench(AllKinds);
    ExpectSameBothWays("wavejson");
}

TEST_F(Drawn, WalksTheSameBothWaysForRandomBenches)
{
    for (unsigned seed = 21; seed <= 23 && !HasFailure(); ++seed) {
        WriteBench(CRandomBench(seed).Make(15));
        ExpectSameBothWays("wavejson");
    }
}

TEST_F(Drawn, ShowsWhatIsPlayed)
{
    WriteBench("until = \"99ns\"\nscope = \"tb\"\n[signals]\nclk = \"1 0ns, 0 5ns -r 10ns\"\nslow = \"0 0ns, 1 20ns -r "
               "40ns\"\n"
               "late = \"1 3ns, X 7ns, H 8ns, L 9ns\"\nu.bus = { type = \"std_logic_vector(2 downto 0)\", formula = "
               "\"01- 0ns, UZZ 9ns\" }\n"
               "u.n = { type = \"integer\", formula = \"-5 0ns, 7 10ns\" }\nmode = \"idle 0ns, run 40ns\"\n");
    const std::string drawing = Export("--to wavejson").out;
    CWalks played = PlayedWalks(Bench());
    CWalks shown = ShownIn(drawing);
    for (auto &[name, walk] : shown)  // a clock is drawn to the end of its period
        std::erase_if(walk, [](const auto &change) { return change.first > 99'000'000; });
    ExpectEqualWalks(played, shown, drawing);
    EXPECT_THAT(drawing,
                AllOf(HasSubstr("[\n    \"tb\",\n    {\"name\":\"clk\",\"wave\":\"p.........\",\"period\":10},\n"
                                "    {\"name\":\"slow\",\"wave\":\"n..\",\"period\":40},\n"),
                      HasSubstr("[\n      \"u\",\n      {\"name\":\"bus\",")));
}

TEST_F(Drawn, TellsWhatHasNoBrick)
{
    WriteBench("until = \"30ns\"\n[signals]\na = \"1 0ns, U 10ns, Z 20ns -cancel 25ns\"\n");
    SToolRun run = Export("--to wavejson");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.err,
        AllOf(HasSubstr("signal \"a\": no value beside Z, first at 25ns, has no place in wavejson; --weaken "
                        "writes z instead\n"),
              HasSubstr("signal \"a\": U, first at 10ns, has no place in wavejson; --weaken writes x instead\n")));
    WriteBench("until = \"30us\"\n[signals]\na = \"1 0ns, 0 1ns\"\n");
    run = Export("--to wavejson");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err,
                HasSubstr("tesk: error: the picture would be 30001 bricks wide, since changes are 1ns apart; give an "
                          "earlier --until\n"));
}

TEST_F(Drawn, IsReadOutOfDrawingsOfOthers)
{
    EXPECT_EQ(
        Imported("// a drawing\n{ signal: [\n  {name: 'clk', wave: 'p.....'},\n  {name: 'bus', wave: 'x.34.5x', data: "
                 "'head 0x1F tail', phase: 1},\n  {},\n  ['grp', {name: \"a\", wave: '0.1..0|', period: 2},\n"
                 "    ['in', {name: 'b', wave: 'hlud', node: '.a'}],],\n  {name: 'n', wave: '1n.0'},\n],\n"
                 "  edge: ['a~>b'], head: {tick: 0}, config: {hscale: 2} }\n",
                 "--from wavejson"),
        "tesk: script:3: warning: a brick counts 1ns; --unit tells another\n"
        "clk = \"1 0ps, 0 500ps -r 1ns\"\n"
        "bus = \"X 0ps, head 1ns, 0x1F 2ns, tail 4ns, X 5ns\"\n"
        "\"grp.a\" = \"0 0ps, 1 4ns, 0 10ns\"\n"
        "\"grp.in.b\" = \"1 0ps, 0 1ns, H 2ns, L 3ns\"\n"
        "n = \"1 0ps, 0 1ns, 1 1500ps, 0 2ns, 1 2500ps, 0 3ns\"\n");
    EXPECT_THAT(Import("{signal: [{name: 'a', wave: '01'}]}", "--from wavejson --unit 5us").out,
                AllOf(HasSubstr("until = \"10us\"\n"), HasSubstr("a = \"0 0ps, 1 5us\"\n")));
}

TEST_F(Drawn, TellsEachLaneWithoutAnEquivalent)
{
    const SToolRun run =
        Import("{ signal: [\n{name: 'a', wave: '01>'},\n{name: 'b', wave: '=='  , data: ['x']},\n{wave: '01'},\n"
               "{name: 'd', wave: '.1'},\n{name: 'e', wave: 'p..', phase: 0.5},\n{name: 'f', wave: '01', period: 0},\n"
               "{name: 'g', wave: '=', data: ['a b']},\n5,\n{name: 'h', wave: '01', tesk: {type: 'std_logc'}},\n"
               "{name: 'i', wave: '01'},\n{name: 'i', wave: '10'}\n]}",
               "--from wavejson --unit 1ns");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err,
                AllOf(HasSubstr("script:2: error: brick 3 of the wave, \">\", has no equivalent\n"),
                      HasSubstr("script:3: error: brick 2 of the wave has no label in its data\n"),
                      HasSubstr("script:4: error: the lane has no name\n"),
                      HasSubstr("script:5: error: the wave begins with nothing that it could hold\n"),
                      HasSubstr("script:6: error: a clock with a phase has no equivalent; draw its levels\n"),
                      HasSubstr("script:7: error: a period has to be above 0\n"),
                      HasSubstr("script:8: error: signal \"g\": the value \"a b\" cannot stand in a formula\n"),
                      HasSubstr("script:9: error: neither a lane nor a group\n"),
                      HasSubstr("script:10: error: type \"std_logc\""),
                      HasSubstr("script:12: error: the lane \"i\" stands twice\n")));
    const struct {
        const char *text, *error;
    } faults[] = {
        {"{ signal: [\n{name: 'a', wave: '01\n'}]}", "script:2: error: a text is not closed on its line"},
        {"{ signal: [\n{name 'a'}]}", "script:2: error: there is no \":\" behind \"name\""},
        {"[1]", "script:1: error: it has no list \"signal\""},
        {"{ signal: [] }", "script: error: no signal of it can be told"},
        {"{ signal: [] } x", "script:1: error: there is more behind the end"},
        {"{ assign: [", "script:1: error: a value is missing"},
    };
    for (const auto &fault : faults)
        EXPECT_THAT(Import(fault.text, "--from wavejson").err, HasSubstr(fault.error)) << fault.text;
}

TEST_F(Drawn, IsReadToADepthOf64Literals)
{
    const auto nested = [](std::size_t depth) {
        return "{x: " + std::string(depth, '[') + std::string(depth, ']') + ", signal: [{name: 'a', wave: '01'}]}";
    };
    EXPECT_THAT(Import(nested(64), "--from wavejson").out, HasSubstr("a = "));
    EXPECT_THAT(Import(nested(65), "--from wavejson").err, HasSubstr("literals lie too deep inside one another"));
}

TEST_F(Drawn, IsReadWithoutHarmHoweverItIsDamaged)
{
    const std::string drawing =
        "{\n\"tesk\": {\"resolution\":\"1ps\",\"step\":\"1ns\",\"until\":\"90ns\"},\nsignal: [\n  ['tb',\n"
        "    {\"name\":\"clk\",\"wave\":\"p.........\",\"period\":10, \"phase\": 2},\n"
        "    {name: 'b', wave: 'z=.01x=ud|hpl', data: ['01-', \"\\u00e9\"], tesk: {undriven: true, radix: "
        "'hex', type: 'std_logic_vector(2 downto 0)'}}], /* c */\n]}\n";
    std::mt19937 random(7);
    const std::string letters = "{}[]:,'\"\\0123456789.epz=|-\n/*u\xC3" + std::string(1, '\0');
    const auto below = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int round = 0; round < 2000; ++round) {
        std::string damaged = drawing.substr(0, round % 3 == 0 ? 1 + below(drawing.size()) : drawing.size());
        for (std::size_t i = below(6); i > 0; --i)
            damaged[below(damaged.size())] = letters[below(letters.size())];
        tesk::CImported imported;
        tesk::FindImportForm("wavejson", "").read(damaged, {}, imported);
        std::ostringstream bench;
        imported.WriteBench(bench);
        if (round % 8 == 0 && !bench.str().ends_with("[signals]\n"))
            ExpectBench(bench.str(), damaged);
    }
    // Depth and lengths have bounds.
    for (const std::string &text :
         {std::string(100000, '['), "{signal:" + std::string(100000, '[') + "]}",
          std::string("{signal:[{name:'a',wave:'01',period:1e300}]}"),
          std::string("{signal:[{name:'a',wave:'01',phase:-1e18}]}"),
          std::string("{signal:[{name:'a',wave:'01'}], tesk:{step:'9000000000000000000fs'}}")}) {
        tesk::CImported imported;
        tesk::FindImportForm("wavejson", "").read(text, {}, imported);
        std::ostringstream bench;
        imported.WriteBench(bench);
        EXPECT_FALSE(imported.Faults().empty()) << text.substr(0, 100);
    }
}
