// tesk play, from the shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tools/runtool.h"

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

constexpr char Cancelled[] = "\"1 10ns, 0 20ns -r 30ns -cancel 100ns\"";

std::string Play(const std::string &arguments)
{
    const SToolRun run = RunShell("tesk play " + arguments);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return run.out;
}

std::ptrdiff_t Lines(const std::string &text)
{
    return std::ranges::count(text, '\n');
}

}  // namespace

TEST(Play, WritesCsvRows)
{
    const std::string rows = "ticks,time,value\n10000,10ns,1\n20000,20ns,0\n40000,40ns,1\n50000,50ns,0\n"
                             "70000,70ns,1\n80000,80ns,0\n100000,100ns,\n";
    EXPECT_EQ(Play(Cancelled + std::string(" --format csv")), rows);
    EXPECT_EQ(Play(Cancelled), rows);  // the default in a pipe
}

TEST(Play, QuotesCsvValuesThatNeedIt)
{
    EXPECT_EQ(Play("'(1,0) 0ns, \"a b\" 1ns'"), "ticks,time,value\n0,0ps,\"(1,0)\"\n1000,1ns,\"\"\"a b\"\"\"\n");
}

TEST(Play, WritesATable)
{
    EXPECT_EQ(Play("\"1 10ns, 0 20ns -cancel 100ns\" --format table"),
              " time  value\n 10ns  1\n 20ns  0\n100ns  (none)\n");
}

TEST(Play, WritesJson)
{
    const std::string out = Play("\"1 10ns -cancel 20ns\" --format json");
    EXPECT_THAT(out, HasSubstr("\"formula\": \"1 10ns -cancel 20ns\""));
    EXPECT_THAT(out, HasSubstr("\"resolution_fs\": 1000"));
    EXPECT_THAT(out, HasSubstr("\"ticks\": 10000"));
    EXPECT_THAT(out, HasSubstr("\"value\": null"));
}

TEST(Play, WritesADumpThatAForeignReaderTakes)
{
    const struct {
        const char *formula;
        const char *lines[3];
    } rows[] = {
        {"1 10ns, 0 20ns -cancel 30ns", {"#10000\n1", "#20000\n0", "#30000\nz"}},
        {"1010 0ns, ZX-H 10ns", {"$var wire 4", "b1010 ", "#10000\nbzxx1 "}},
        {"5 0ns, 12 10ns", {"$var integer", "101 ", "1100 "}},
        {"1.5 0ns, 2.25 10ns", {"$var real", "r1.5 ", "r2.25 "}},
        {"idle 0ns, run 10ns", {"$var string", "sidle ", "srun "}},
    };
    for (const auto &row : rows) {
        const SToolRun run = RunShell("d=$(mktemp -d); tesk play '" + std::string(row.formula) +
                                      "' --format vcd -o $d/a.vcd && vcd2fst $d/a.vcd $d/a.fst && fst2vcd $d/a.fst; "
                                      "s=$?; rm -r $d; exit $s");
        EXPECT_EQ(run.status, 0) << run.err;
        for (const char *line : row.lines)
            EXPECT_THAT(run.out, HasSubstr(line)) << row.formula;
    }
}

TEST(Play, ScalesADumpToItsResolution)
{
    EXPECT_THAT(Play("\"1 10ns\" --res 10ps --format vcd"), HasSubstr("$timescale 10ps $end"));
    EXPECT_THAT(Play("\"1 10ns\" --res 10ps --format vcd"), HasSubstr("#1000\n1!"));
    EXPECT_THAT(Play("\"1 12ns\" --res 30ps --format vcd"), HasSubstr("#1200\n1!"));
    EXPECT_THAT(Play("\"1 5sec\" --res 1sec --format vcd"), HasSubstr("$timescale 1s $end"));
}

TEST(Play, DrawsBlockCharacters)
{
    EXPECT_EQ(Play("\"0 0ns, 1 20ns, Z 40ns, X 60ns, 0 80ns\" --until 100ns --format wave --width 50"),
              "          ┌─────────┐         ──────────\n"
              "          │         └─────────╳╳╳╳╳╳╳╳╳╳\n"
              "──────────┘                   ────────────────────\n"
              "┴────────────────────────┴────────────────────────\n"
              "0ns                      50ns\n");
    EXPECT_EQ(Play("\"0000 0ns, 1010 20ns\" --until 40ns --format wave --width 40"),
              "────────────────────────────────────────\n"
              "╳       0000        ╳       1010\n"
              "────────────────────────────────────────\n"
              "┴───────────────────┴───────────────────\n"
              "0ns                 20ns\n");
}

TEST(Play, DrawsTimesUpToTheLargest)
{
    const std::string picture = Play("'1 0fs, 0 9000000000000000000fs' --res 1fs --format svg");
    EXPECT_THAT(picture, HasSubstr(">0sec</text>"));
    EXPECT_THAT(picture, HasSubstr(">9000sec</text>"));
}

TEST(Play, TakesTimesOfLessThan9200Seconds)
{
    EXPECT_EQ(Play("1 --until 9199.9sec"), "ticks,time,value\n0,0ps,1\n");
    EXPECT_THAT(RunShell("tesk play 1 --until 9200sec").err, HasSubstr("a time may have 9.2e18 fs at most"));
}

TEST(Play, DrawsNoMoreThanFits)
{
    const std::string wave = Play("\"1 0ps, 0 1ps -r 2ps\" --until 100ns --format wave --width 40");
    EXPECT_THAT(wave, HasSubstr("▒▒▒▒"));
    const std::string svg = Play("\"1 0ps, 0 1ps -r 2ps\" --until 100ns --format svg");
    EXPECT_LT(svg.size(), 5000U);
}

TEST(Play, DrawsAPictureWithTextInsideBandsWhereItFits)
{
    const std::string svg = Play("\"0 0ns, FF 10ns, 123456789 20ns, Z 21ns\" --until 40ns --format svg --width 400");
    EXPECT_THAT(svg, StartsWith("<svg xmlns=\"http://www.w3.org/2000/svg\""));
    EXPECT_THAT(svg, EndsWith("</svg>\n"));
    EXPECT_THAT(svg, HasSubstr(">FF</text>"));
    EXPECT_THAT(svg, testing::Not(HasSubstr(">123456789</text>")));
    EXPECT_THAT(svg, HasSubstr("<title>123456789 from 20ns</title>"));
    EXPECT_THAT(svg, HasSubstr(">20ns</text>"));
    EXPECT_THAT(Play("'<&> 0ns' --format svg"), HasSubstr("&lt;&amp;&gt;"));
}

TEST(Play, EndsAfterFortyChangesWhereTheStimulatorDoesNot)
{
    const SToolRun cut = RunShell("tesk play \"1 0ns, 0 1ns -r 2ns\"");
    EXPECT_EQ(Lines(cut.out), 41);
    EXPECT_EQ(cut.err,
              "tesk: the stimulator goes on for ever; these are its first 40 changes, give --until for others\n");
    EXPECT_EQ(Lines(Play("\"1 0ns, 0 1ns -r 2ns\" --until 99ns")), 101);
    EXPECT_EQ(Lines(Play("\"1 0ns, 0 1ns -r 2ns -cancel 100ns\"")), 102);
    EXPECT_EQ(Lines(Play("\"$(seq -f '1 %gns' -s, 1 100)\"")), 101);
}

TEST(Play, EndsWithTheFileThatItReplays)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "long.vcd").string();
    std::ofstream dump(file);
    dump << "$timescale 1ns $end $var wire 1 ! x $end $enddefinitions $end\n";
    for (int i = 0; i < 60; ++i)
        dump << '#' << i << ' ' << i % 2 << "!\n";
    dump.close();
    EXPECT_EQ(Lines(Play("'/custom " + file + ",x'")), 61);
}

TEST(Play, ReadsTheTableOfAnElementByTheTypeOfTheElement)
{
    const CTemporaryFolder folder;
    const std::string file = (folder / "table.csv").string();
    std::ofstream(file) << "time,m\n0,25\n10,45\n";
    EXPECT_EQ(Play("'/txt " + file + ",m' --type 'a#1#a1 rict1 2 i#7#integerrict0 99'"),
              "ticks,time,value,[1],[2]\n0,0ps,\"(25,25)\",25,25\n1,1ps,\"(45,45)\",45,45\n");
}

TEST(Play, CountsFromTheStart)
{
    EXPECT_EQ(Play("\"1 10ns\" --start 5ns"), "ticks,time,value\n15000,15ns,1\n");
    EXPECT_EQ(Play("\"1 10ns\" --start 1.5us --res 1ns"), "ticks,time,value\n1510,1510ns,1\n");
}

TEST(Play, WritesAFileWholeOrNotAtAll)
{
    const SToolRun run = RunShell("d=$(mktemp -d); tesk play '1 10ns' -o $d/a.csv && cat $d/a.csv; "
                                  "echo old > $d/b.csv; tesk play '1 -5ns' -o $d/b.csv; cat $d/b.csv; ls $d; rm -r $d");
    EXPECT_EQ(run.out, "ticks,time,value\n10000,10ns,1\nold\na.csv\nb.csv\n");
    const SToolRun missing = RunShell("tesk play '1 10ns' -o /nonexistent/a.csv");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, "tesk: /nonexistent/a.csv: cannot be written: No such file or directory\n");
    EXPECT_EQ(RunShell("tesk play '1 10ns' -o /dev/null").status, 0);
    EXPECT_EQ(RunShell("tesk play '1 10ns' >/dev/full").status, 1);
}

TEST(Play, RefusesAFormulaInOneLine)
{
    const struct {
        const char *formula;
        const char *part;
    } rows[] = {{"0 0ns, 1 -5ns", "part 2, \"1 -5ns\""},
                {",1 5ns", "part 1 is empty"},
                {" ", "the formula is empty"},
                {"-r 5ns, -cancel 7ns", "no event"}};
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk play -- '" + std::string(row.formula) + "'");
        EXPECT_EQ(run.status, 1) << row.formula;
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(Lines(run.err), 1) << run.err;
        EXPECT_THAT(run.err, HasSubstr(row.part));
    }
}

TEST(Play, TellsWhatAFormulaOfAnotherKindNeeds)
{
    const struct {
        const char *formula;
        const char *part;
    } rows[] = {{"\\random\\1\\5\\0\\10\\20ns", "the keyword is in capitals; write \\RANDOM"},
                {"\\counter\\TYPE\\2", "tesk counter"},
                {"/brel", "such as (H10 L10)4"},
                {"/custom f.vcd,s", "No such file or directory"},
                {"/custom f.vcd", "write /custom FILE,SIGNAL"},
                {"/txt f.txt,s", "give it with --type"}};
    for (const auto &row : rows) {
        const SToolRun run = RunShell("tesk play '" + std::string(row.formula) + "'");
        EXPECT_EQ(run.status, 1) << row.formula;
        EXPECT_EQ(Lines(run.err), 1) << run.err;
        EXPECT_THAT(run.err, HasSubstr(row.part));
    }
}

TEST(Play, ShowsTheValueOfASignalThatNeverChanges)
{
    const CTemporaryFolder folder;
    std::ofstream(folder / "constant.vcd")
        << "$timescale 1ns $end $var wire 1 ! x $end $enddefinitions $end\n#0\n1!\n#9\n";
    const std::string formula = "'/custom " + (folder / "constant.vcd").string() + ",x'";
    EXPECT_EQ(Play(formula), "ticks,time,value\n0,0ps,1\n");
    EXPECT_EQ(Play(formula + " --start 3ns"), "ticks,time,value\n3000,3ns,1\n");
}

TEST(Play, TellsWhyAFileCannotBeRead)
{
    const CTemporaryFolder folder;
    std::filesystem::create_directory(folder / "d.txt");
    std::filesystem::create_symlink("loop.fst", folder / "loop.fst");
    const struct {
        const char *formula, *why;
    } rows[] = {{"/txt d.txt,s", "d.txt: it is a directory"},
                {"/mat d.txt,s", "d.txt: it is a directory"},
                {"/custom loop.fst,s", "Too many levels of symbolic links"},
                {"/txt missing.txt,s", "cannot open missing.txt: No such file or directory"},
                {"/custom missing.fst,s", "cannot open missing.fst: No such file or directory"}};
    for (const auto &row : rows) {
        const SToolRun run =
            RunShell("cd '" + (folder / "").string() + "' && tesk play --type bit '" + std::string(row.formula) + "'");
        EXPECT_EQ(run.status, 1) << row.formula;
        EXPECT_EQ(Lines(run.err), 1) << run.err;
        EXPECT_THAT(run.err, HasSubstr(row.why));
    }
}

TEST(Commands, TellWhereTheirOutputCannotBeWritten)
{
    for (const char *command : {"type bit", "check '1 0, 0 5'", "clock --period 10ns", "play '1 0'", "--help"}) {
        const SToolRun run = RunShell("tesk " + std::string(command) + " >/dev/full");
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_EQ(run.err, "tesk: standard output: cannot be written: No space left on device\n") << command;
    }
}

TEST(Play, TellsWrongUsageApart)
{
    const SToolRun run = RunShell("tesk play '1 0ns' --res 10nz");
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err, "tesk: --res 10nz: unknown time unit \"nz\"; use fs, ps, ns, us, ms, sec, min or hr\n");
    for (const char *arguments : {"play", "", "play '1 0ns' --format xml", "play '1 0ns' --res 0",
                                  "play '1 0ns' --res ns", "play '1 0ns' --until -5ns", "play '1 0ns' --until 1e3",
                                  "play '1 0ns' --start 1.2.3ns", "play '1 0ns' --start 3hr", "fly", "play a b"}) {
        const SToolRun wrong = RunShell(std::string("tesk ") + arguments);
        EXPECT_EQ(wrong.status, 2) << arguments;
        EXPECT_EQ(Lines(wrong.err), 1) << wrong.err;
    }
    EXPECT_EQ(RunShell("tesk --help").status, 0);
    EXPECT_THAT(RunShell("tesk play --help").out, HasSubstr("Example: tesk play"));
}

TEST(Play, StopsBeforeItFillsTheMemory)
{
    const SToolRun run = RunShell("tesk play '1 0ps, 0 1ps -r 2ps -cancel 1sec' --format json");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              "tesk: more than 2000000 changes; give an earlier end with --until, or write a single signal as CSV\n");
}

TEST(Play, WritesTheRowsOfASingleSignalAsTheyCome)
{
    // Of a million million rows the first ones are there at once.
    const SToolRun run = RunShell("tesk play '1 0ps, 0 1ps -r 2ps -cancel 1sec' --format csv | head -n 3");
    EXPECT_EQ(run.out, "ticks,time,value\n0,0ps,1\n1,1ps,0\n");
    EXPECT_EQ(run.err, "");
    const SToolRun counted =
        RunShell("tesk play '1 0ps, 0 1ps -r 2ps' --until 199999ps --format csv | sha1sum; "
                 "{ echo ticks,time,value; "
                 "awk 'BEGIN { for (i = 0; i < 200000; ++i) { t = i \"ps\"; if (i > 0 && i % 1000 == 0) "
                 "t = i / 1000 \"ns\"; print i \",\" t \",\" 1 - i % 2 } }'; } | sha1sum");
    EXPECT_EQ(counted.out.substr(0, 40), counted.out.substr(counted.out.find('\n') + 1, 40));
}

TEST(Play, ShowsAVectorAsABusWithItsWires)
{
    EXPECT_EQ(Play("\"01 0ns, 1Z 10ns -cancel 20ns\" --count 2"),
              "ticks,time,value,[1],[0]\n0,0ps,01,0,1\n10000,10ns,1Z,1,Z\n20000,20ns,,,\n");
    EXPECT_EQ(Play("\"01 0ns\" --type 'bit_vector(5 to 6)' --until 1ns"), "ticks,time,value,[5],[6]\n0,0ps,01,0,1\n");
    const std::string wave = Play("\"01 0ns, 10 10ns\" --count 2 --until 20ns --format wave --width 40");
    EXPECT_EQ(Lines(wave), 11);
    EXPECT_THAT(wave, HasSubstr("\n[1] "));
    EXPECT_THAT(wave, testing::Not(HasSubstr(" \n")));
}

TEST(Play, ShowsARecordByItsFields)
{
    EXPECT_EQ(Play("\"(1, idle) 5ns\" --type 'r#3#rec2 valid e#3#bitc2 01 state e#2#sts2 idle run '"),
              "ticks,time,value,.valid,.state\n5000,5ns,\"(1,idle)\",1,idle\n");
}

TEST(Play, DumpsABusAsOneVector)
{
    const std::string dump = Play("\"01 0ns, 10 10ns\" --count 2 --format vcd");
    EXPECT_THAT(dump, HasSubstr("$var wire 2 ! stimulus [1:0] $end\n$upscope"));
    EXPECT_THAT(dump, HasSubstr("#10000\nb10 !\n"));
}

TEST(Play, WalksTheWiresOfACounterInStep)
{
    EXPECT_EQ(Play("\"$(tesk counter --type gray --width 3 --start 000 --period 10ns)\" --count 3 --until 20ns"),
              "ticks,time,value,[2],[1],[0]\n0,0ps,000,0,0,0\n10000,10ns,001,0,0,1\n20000,20ns,011,0,1,1\n");
}

TEST(Play, BeginsWithTheValueInForceAtTheStart)
{
    EXPECT_EQ(Play("\"$(tesk random --dist uniform --low 0 --high 10 --seed 5 --period 20ns)\" --until 20ns"),
              "ticks,time,value\n0,0ps,0\n20000,20ns,6\n");
}

TEST(Play, RefusesWhatDoesNotFitTheType)
{
    const SToolRun run = RunShell("tesk play 'qqq 0ns' --type 'std_logic_vector(1 downto 0)'");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Lines(run.err), 1);
    EXPECT_THAT(run.err, HasSubstr("\"q\" is no value of \"std_logic\""));
    EXPECT_EQ(RunShell("tesk play '1 0ns' --type nothing").status, 1);
    EXPECT_EQ(RunShell("tesk play '1 0ns' --count 0").status, 2);
    EXPECT_EQ(RunShell("tesk play '1 0ns' --type 'bit_vector(1 to 2000000000)'").status, 1);
}

TEST(Play, AsksWhetherANearEndingWasMeant)
{
    const CTemporaryFolder folder;
    EXPECT_EQ(RunShell("tesk play '1 0ns' -o " + (folder / "x.vdc").string()).err,
              "tesk: warning: the ending .vdc tells no format (did you mean .vcd?); csv is written; --format chooses "
              "another\n");
    EXPECT_EQ(RunShell("tesk play '1 0ns' -o " + (folder / "x.log").string()).err, "");
    EXPECT_EQ(RunShell("tesk play '1 0ns' --format vcd -o " + (folder / "x.vdc").string()).err, "");
}

TEST(Play, TellsWhereQuotesAreMissing)
{
    EXPECT_THAT(RunShell("tesk play 1 10ns, 0 20ns").err, HasSubstr("a formula that has blanks in quotes"));
    EXPECT_THAT(RunShell("tesk play '1 0ns' --type std_logc").err, HasSubstr("(did you mean \"std_logic\"?)"));
}

TEST(Play, TellsOnStandardErrorWhatAFormulaDropsAndPlaysIt)
{
    const SToolRun run = RunShell("tesk play '1 0ns, 0 20nz'");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "ticks,time,value\n0,0ps,0\n");
    EXPECT_THAT(run.err, StartsWith("tesk: error: part 2, column 10: unknown time unit \"nz\""));
}

TEST(Play, IsStrictWhereItIsToldTo)
{
    for (const char *command : {"play", "split --count 2"}) {
        const SToolRun run = RunShell("tesk " + std::string(command) + " '1 0ns, 0 20nz' --strict");
        EXPECT_EQ(run.status, 1) << command;
        EXPECT_EQ(run.out, "") << command;
        EXPECT_THAT(run.err, HasSubstr("unknown time unit")) << command;
    }
    EXPECT_EQ(RunShell("tesk play '1 0ns -r 30' --strict").status, 0);  // a warning alone
}
