// tesk signals and tesk convert on some of the signals, over some of the time, and from standard input.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "testpaths.h"
#include "tools/files/selectedfile.h"
#include "tools/runtool.h"

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

TEST(Glob, MatchesAcrossDotsInAnyLetterCase)
{
    const struct {
        const char *name, *glob;
        bool matches;
    } rows[] = {
        {"tb.clk", "tb.clk", true},
        {"tb.clk", "TB.CLK", true},
        {"tb.clk", "tb.c", false},
        {"tb.a.clk", "tb*clk", true},
        {"tb.a.clk", "*", true},
        {"", "*", true},
        {"", "?", false},
        {"tb.clk", "tb.cl?", true},
        {"tb.clk", "tb.clk?", false},
        {"tb.m[3]", "*[3]", true},
        {"tb.m[3]", "*(3)", true},
        {"aab", "*ab", true},
        {"abcabd", "*abd", true},
        {"abc", "", false},
        {"abc", "a*b*c*", true},
        {"abc", "a**d", false},
    };
    for (const auto &row : rows)
        EXPECT_EQ(tesk::IsLikeGlob(row.name, row.glob), row.matches) << row.name << " " << row.glob;
}

TEST(Glob, TakesNoLongTimeForManyStars)
{
    std::string glob;
    for (int i = 0; i < 200; ++i)
        glob += "*a";
    EXPECT_FALSE(tesk::IsLikeGlob(std::string(20000, 'a') + 'b', glob));
}

TEST(SignalsSelection, ListsWhatIsAskedFor)
{
    EXPECT_EQ(RunShell("tesk signals examples/traffic.vcd 'tb.c*' --names").out,
              "signal,type\ntb.clk,std_logic\ntb.count,std_logic_vector(3 downto 0)\n");
    EXPECT_EQ(RunShell("tesk signals examples/traffic.fst '*.LEVEL' tb.walk --names --format table").out.substr(0, 15),
              "signal    type\n");
    const SToolRun run = RunShell("tesk signals examples/traffic.vcd tb.clok");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("no signal is named \"tb.clok\" (did you mean \"tb.clk\"?)"));
    EXPECT_THAT(RunShell("tesk signals examples/traffic.vcd tb.clk --names --format json").out,
                Not(HasSubstr("changes")));
}

TEST(SignalsSelection, CountsChangesOfTheStretch)
{
    EXPECT_EQ(RunShell("tesk signals examples/traffic.vcd tb.request").out,
              "signal,type,changes,first,last\ntb.request,std_logic,5,0ns,80ns\n");
    EXPECT_EQ(RunShell("tesk signals examples/traffic.vcd tb.request --from 12ns --until 60ns").out,
              "signal,type,changes,first,last\ntb.request,std_logic,3,12ns,60ns\n");
    EXPECT_EQ(RunShell("tesk signals examples/traffic.vcd tb.request --from 13ns --until 20ns").out,
              "signal,type,changes,first,last\ntb.request,std_logic,0,,\n");
    EXPECT_EQ(RunShell("tesk signals examples/traffic.vcd --from 13ns --until 2ns").status, 2);
}

TEST(ConvertSelection, TakesTheSignalsAndTheStretchWithTheValuesInForce)
{
    for (const char *input : {"examples/traffic.vcd", "examples/traffic.fst"}) {
        const std::string dump =
            RunShell("tesk convert " + std::string(input) + " - tb.request 'tb.count' --from 20ns --until 60ns").out;
        EXPECT_THAT(dump, Not(HasSubstr("clk"))) << input;
        EXPECT_THAT(dump, HasSubstr("#20\n")) << input;
        EXPECT_THAT(dump, testing::EndsWith("#60\nx\"\n")) << input << dump;
        EXPECT_THAT(dump, HasSubstr("\n1\"\n")) << input;
        EXPECT_THAT(dump, Not(HasSubstr("#65"))) << input;
    }
}

TEST(ConvertSelection, ReadsBackThroughEveryFormat)
{
    for (const char *output : {"a.vcd", "a.fst", "a.zyn"}) {
        const SToolRun run = RunShell("d=$(mktemp -d); tesk convert examples/traffic.vcd $d/" + std::string(output) +
                                      " 'tb.*u*' --until 50ns && tesk signals $d/" + output + "; rm -r $d");
        EXPECT_EQ(run.err, "") << output;
        EXPECT_THAT(run.out, HasSubstr("tb.request,std_logic,3,0ns,42ns\n")) << output;
        EXPECT_THAT(run.out, Not(HasSubstr("tb.clk"))) << output;
    }
}

TEST(StandardInput, IsADash)
{
    const std::string listed = RunShell("tesk signals examples/traffic.vcd").out;
    EXPECT_EQ(RunShell("cat examples/traffic.vcd | tesk signals -").out, listed);
    EXPECT_EQ(RunShell("tesk signals - < examples/traffic.fst").out, listed);
    EXPECT_THAT(RunShell("cat examples/traffic.vcd | tesk convert - -").out, StartsWith("$version"));
}

TEST(SignalsOfATable, AreItsColumns)
{
    EXPECT_EQ(RunShell("tesk signals examples/sine.txt").out, "column\ntime\nsine\n");
    EXPECT_EQ(RunShell("tesk signals examples/sine.txt 's*' --format table").out, "column\nsine\n");
    EXPECT_EQ(RunShell("tesk signals examples/sine.txt cosine").status, 1);
    EXPECT_THAT(RunShell("tesk signals examples/sine.txt --format json").out, HasSubstr("\"columns\": ["));
    const SToolRun dump = RunShell("d=$(mktemp -d); cp examples/traffic.vcd $d/a.txt; tesk signals $d/a.txt; rm -r $d");
    EXPECT_THAT(dump.out, HasSubstr("tb.request,std_logic,5"));  // what it holds counts
    const SToolRun empty = RunShell("d=$(mktemp -d); : > $d/a.csv; tesk signals $d/a.csv; s=$?; rm -r $d; exit $s");
    EXPECT_EQ(empty.status, 1);
    EXPECT_THAT(empty.err, HasSubstr("has no line with names of columns"));
}

TEST(SignalsOfAMatFile, AreItsVariablesWithClassAndSize)
{
    EXPECT_EQ(RunShell("tesk signals examples/sine.mat").out,
              "variable,class,size\ntime,double,24x1\nsine,double,24x1\n");
    EXPECT_EQ(RunShell("tesk signals tests/data/octave7.mat 's*' cx --format table").out,
              "variable  class           size\n"
              "cx        complex double   2x1\n"
              "s         struct           1x1\n"
              "s.f       double           3x4\n"
              "s.t       struct           1x1\n"
              "s.t.v     double           1x1\n"
              "sa        struct           2x2\n"
              "sa(1).v   double           1x1\n"
              "sg        single           1x1\n"
              "sp        sparse double    2x2\n");
    EXPECT_EQ(nlohmann::json::parse(RunShell("tesk signals examples/sine.mat sine --format json").out).dump(),
              R"({"file":"examples/sine.mat","variables":[{"class":"double","size":[24,1],"variable":"sine"}]})");
    for (const char *name : {"octave4.mat", "scipy4.mat", "octave6.mat", "matio73.mat"}) {
        const SToolRun run = RunShell("d=$(mktemp -d); cp tests/data/" + std::string(name) +
                                      " $d/a; tesk signals $d/a values; rm -r $d");
        EXPECT_EQ(run.out, "variable,class,size\nvalues,double,3x1\n") << name;  // what it holds counts, not its name
    }
}

TEST(SignalsOfAMatFile, AreRefusedInOneLine)
{
    const SToolRun missing = RunShell("tesk signals examples/sine.mat cosine");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err,
              "tesk: examples/sine.mat: no variable is named \"cosine\" (did you mean \"sine\"?); \"tesk signals "
              "examples/sine.mat\" lists them, and * stands for any letters\n");
    const SToolRun timed = RunShell("tesk signals examples/sine.mat --from 1ns");
    EXPECT_EQ(timed.status, 2);
    EXPECT_THAT(timed.err, HasSubstr("a variable has no times of its own"));
    for (const char *bytes : {"0", "60", "127", "300"}) {
        const SToolRun cut =
            RunShell("d=$(mktemp -d); cd $d; head -c " + std::string(bytes) +
                     " '" TESK_SOURCE_DIR "/examples/sine.mat' >a.mat; tesk signals a.mat; s=$?; rm -r $d; exit $s");
        EXPECT_EQ(cut.status, 1) << bytes;
        EXPECT_EQ(cut.out, "") << bytes;
        EXPECT_EQ(cut.err, "tesk: a.mat: the file is no MAT-file, or it is damaged\n") << bytes;
    }
    EXPECT_EQ(RunShell("tesk signals no.mat").err, "tesk: no.mat: there is no such file\n");
}
