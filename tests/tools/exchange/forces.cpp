// Benches as scripts of forces, and such scripts as benches.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "tools/exchange/bothways.h"
#include "tools/exchange/importforms.h"
#include "tools/exchange/randombench.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

class Forced : public CBothWays {};

}  // namespace

TEST_F(Forced, WalksTheSameBothWaysForEveryKindOfFormula)
{
    WriteBench(AllKinds);
    ExpectSameBothWays("force");
    ExpectSameBothWays("add_force");
}

TEST_F(Forced, WalksTheSameBothWaysForRandomBenches)
{
    for (unsigned seed = 11; seed <= 12 && !HasFailure(); ++seed) {
        WriteBench(CRandomBench(seed).Make(15));
        ExpectSameBothWays("force");
        ExpectSameBothWays("add_force");
    }
}

TEST_F(Forced, IsWrittenAsASimulatorReadsIt)
{
    WriteBench("until = \"1us\"\nscope = \"tb\"\n[signals]\nclk = \"1 0ns, 0 5ns -r 10ns -cancel 500ns\"\n"
               "\"mem[3]\" = { type = \"std_logic_vector(3 downto 0)\", formula = 'x\"A\" 1ns, UWH- 2ns' }\n"
               "a = { formula = \"0 0ns, 1 42ns\", strength = \"deposit\" }\nb = { formula = \"0 0ns\", strength = "
               "\"drive\" }\n");
    EXPECT_THAT(Export("--to force").out,
                HasSubstr("# tesk: until 1us\nforce -freeze /tb/clk 1 0ps, 0 5ns -repeat 10ns -cancel 500ns\n"
                          "# tesk: type /tb/mem[3] std_logic_vector(3 downto 0)\n"
                          "force -freeze {/tb/mem[3]} 1010 1ns, UWH- 2ns\nforce -deposit /tb/a 0 0ps, 1 42ns\n"
                          "force -drive /tb/b 0 0ps\n"));
    const SToolRun run = Export("--to add_force --weaken");
    EXPECT_THAT(
        run.out,
        AllOf(HasSubstr("add_force /tb/clk -radix bin {1 0ps} {0 5ns} -repeat_every 10ns -cancel_after 500ns\n"),
              HasSubstr("add_force {/tb/mem[3]} -radix bin {1010 1ns} {UWH- 2ns}\n")));
    EXPECT_EQ(run.err,
              "tesk: warning: signal \"tb.a\": the strength deposit has no place in add_force, and is written as a "
              "force\ntesk: warning: signal \"tb.b\": the strength drive has no place in add_force, and is written "
              "as a force\n");
    ExpectSameBothWays("force");
}

TEST_F(Forced, RefusesNamesAndGapsThatAForceCannotSay)
{
    WriteBench("until = \"300ns\"\n[signals]\n\"a/b\" = \"1 0ns\"\nr = \"/custom "
               "examples/traffic.vcd,tb.request,0ns,20ns @0ns -r "
               "130ns\"\ne = \"a,b 0ns\"\n");
    const SToolRun run = Export("--to force");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("signal \"a/b\": the name cannot be a path with / between scopes"));
}

TEST_F(Forced, IsReadOutOfScriptsOfOthers)
{
    EXPECT_EQ(Imported("# a comment; force x 1\nforce -freeze sim:/tb/clk 1 0, 0 {50 ps} -r 100\n"
                       "force -deposit {/tb/mem[3]} 16#A5 0, 8'h3C {10 ns}, 2#1x 30\nforce rst_n 0 0, \\\n  1 42 ns\n"
                       "force a 1; force b 0\nforce {/top/\\a.b\\/d} 1 @5us\nforce n -5 1ns -cancel {1 ms}\n",
                       "--from force"),
              "tesk: script:2: warning: a time without a unit counts 1ns; --unit tells another\n"
              "\"tb.clk\" = \"1 0ps, 0 50ps -r 100ns\"\n"
              "\"tb.mem[3]\" = { formula = \"10100101 0ps, 00111100 10ns, 1X 30ns\", strength = \"deposit\" }\n"
              "rst_n = \"0 0ps, 1 42ns\"\na = \"1 0ps\"\nb = \"0 0ps\"\n"
              "\"top.\\\\a.b\\\\.d\" = \"1 5us\"\nn = \"-5 1ns -cancel 1ms\"\n");
    EXPECT_EQ(
        Imported(
            "add_force {/tb/clk} {1 0ns} {0 5ns} -repeat_every 10ns\nadd_force /tb/d -radix hex {A5 0ns} {3x 10ns}\n"
            "add_force /tb/n -radix dec 7\n",
            "--from add_force --unit 1us"),
        "\"tb.clk\" = \"1 0ps, 0 5ns -r 10ns\"\n"
        "\"tb.d\" = { type = \"std_logic_vector(7 downto 0)\", formula = \"10100101 0ps, 0011XXXX 10ns\" }\n"
        "\"tb.n\" = \"7 0ps\"\n");
}

TEST_F(Forced, CountsTimesFromWhereARunEnds)
{
    EXPECT_EQ(
        Imported(
            "force clk 1 0ns, 0 5ns -r 10ns\nforce a 1\nforce b 1 0ns, 0 200ns\nrun 102 ns\nforce a 0 3ns\nforce b Z\n"
            "noforce clk\nforce c 1 @105ns\nrun 10ns\nnoforce a\n",
            "--from force"),
        "clk = \"" +
            [] {
                std::string events;
                for (int round = 0; round <= 10; ++round)
                    events += (round == 0 ? "1 0ps, 0 5ns"
                                          : ", 1 " + std::to_string(10 * round) + "ns" +
                                                (round < 10 ? ", 0 " + std::to_string(10 * round + 5) + "ns" : ""));
                return events;
            }() +
            " -cancel 102ns\"\na = \"1 0ps, 0 105ns -cancel 112ns\"\nb = \"1 0ps, Z 102ns\"\nc = \"1 105ns\"\n");
}

TEST_F(Forced, IsNotGuessedWhereForcesMeet)
{
    const struct {
        const char *script, *error;
    } rows[] = {
        {"force a 1 0ns, 0 5ns -r 10ns\nforce a 0 1ns\n",
         "script:2: error: the signal is forced again while a force goes on that is repeated or cancelled"},
        {"force a 1 0ns -cancel 5ns\nforce a 0 10ns\n",
         "script:2: error: the signal is forced again while a force goes on that is repeated or cancelled"},
        {"force a 0 0ns\nrun 10ns\nforce a 1 0ns, 0 5ns -r 100ns\n",
         "script:3: error: a repeated force behind other values cannot be said in a formula"},
        {"run 10ns\nforce a 1 @9ns\n", "script:2: error: \"@9ns\" has passed when the command comes"},
        {"force a 1 0ns, 0 1fs -r 2fs\nrun 9000 sec\nforce a 0\n",
         "script:3: error: there are more values than can be held"},
        {"force a 1 9000sec -r 1fs\nrun 9001 sec\nrun 9000 sec\n",
         "script:3: error: a time beyond 9.2e18 fs, about 2.5 hr"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(Import(row.script, "--from force").err, HasSubstr(row.error)) << row.script;
    // Those that are commanded at one time are one.
    EXPECT_EQ(Imported("force a 1 5ns\nforce a 0 0ns\nrun 20ns\nforce a Z 5ns\nforce a 1 0ns\n", "--from force"),
              "a = \"0 0ps, 1 5ns, 1 20ns, Z 25ns\"\n");
}

TEST_F(Forced, TellsEachLineWithoutAnEquivalent)
{
    const std::string script =
        "add wave *\nforce x\nforce $y 1\nforce /a 1 5nz\nforeach s {a b} {\n  force $s 1\n}\n"
        "force b 1 0, 0 10 -r 5\nforce c 1 -cancel 5ns\nrun 10ns\nforce c 0\nforce d 1 -q\nforce e 1 -d\n"
        "force f a@b 0\nforce g 1 0 0 0\nforce h 1 -r 0\nforce i 1 -r\nforce j 1\nrun -all\nforce {k 1\n";
    SToolRun run = Import(script, "--from force");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err,
              "tesk: script:1: warning: \"add\" is left out\n"
              "tesk: script:2: error: it has no value\n"
              "tesk: script:3: error: variables, and commands in brackets, are not computed; put names with brackets "
              "in braces\n"
              "tesk: script:4: error: \"5nz\" is no time of 0 or later, such as 10ns\n"
              "tesk: script:5: error: a force inside of \"foreach\" is not read\n"
              "tesk: script:8: warning: a time without a unit counts 1ns; --unit tells another\n"
              "tesk: script:8: error: signal \"b\": the period is shorter than its events, which overlap\n"
              "tesk: script:11: error: signal \"c\": it is let go and forced again, which a formula cannot say\n"
              "tesk: script:12: error: no switch \"-q\" is known\n"
              "tesk: script:13: error: \"-d\" may be -deposit or -drive\n"
              "tesk: script:14: error: signal \"f\": the value \"a@b\" cannot stand in a formula\n"
              "tesk: script:15: error: \"0\" is too much; write VALUE TIME parts with commas between\n"
              "tesk: script:16: error: a period of 0\n"
              "tesk: script:17: error: \"-r\" has nothing behind it\n"
              "tesk: script:19: warning: a run without a time is left out; what comes behind it counts from where it "
              "began\n"
              "tesk: script:20: error: braces or quotes are not closed\n"
              "tesk: script: no bench is written, since not all has an equivalent; --partial writes what has\n");
    run = Import(script, "--from force --partial");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "resolution = \"1ps\"\n\n[signals]\nj = \"1 10ns\"\n");
}

TEST_F(Forced, IsReadWithoutHarmHoweverItIsDamaged)
{
    const std::string script =
        "# tesk: resolution 1ps\n# tesk: until 300ns\n# tesk: type /tb/n std_logic_vector(3 downto 0)\n"
        "force -freeze /tb/n 0110 0ps, 1-H0 5ns -repeat 10ns -cancel 1us\nforce /tb/clk 1 0, 0 5 -r 10\n"
        "add_force /tb/clk -radix bin {1 0ps} {0 5ns} -repeat_every 10ns -cancel_after 100ns\n"
        "run 100 ns\nnoforce /tb/clk\nforce {/tb/x y} 8'hA5 {5 ns}, \"1 0\" @7us -c 1ms\n"
        "add_force {/tb/\\a+b\\} -radix hex {A5 1} 3F\n";
    std::mt19937 random(5);
    const std::string letters = "\n\\{}[]\"$;#,@-' /:19xZ\xC3\xFF" + script.substr(0, 40) + '\0';
    const auto below = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int round = 0; round < 300; ++round) {
        std::string damaged = script.substr(0, 1 + below(script.size()));
        for (std::size_t i = below(8); i > 0; --i)
            damaged[below(damaged.size())] = letters[below(letters.size())];
        for (const tesk::SImportForm &form :
             {tesk::FindImportForm("force", ""), tesk::FindImportForm("add_force", "")}) {
            tesk::CImported imported;
            form.read(damaged, {}, imported);
            std::ostringstream bench;
            imported.WriteBench(bench);
            // What comes out is a bench, whatever went in.
            if (round % 4 == 0 && !bench.str().ends_with("[signals]\n"))
                ExpectBench(bench.str(), damaged);
        }
    }
}
