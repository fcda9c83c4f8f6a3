// What the examination says of recorded signals that do not play as they look, and of tables.
#include <fstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/stimulus.h"
#include "tools/examine/examination.h"
#include "tools/examine/findingtext.h"
#include "tools/runtool.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class RecordExamination : public testing::Test {
protected:
    ~RecordExamination() override { IStimulus::OnEndsim(); }

    std::string Write(const char *name, const std::string &text) const
    {
        std::ofstream(m_folder / name) << text;
        return (m_folder / name).string();
    }

    // A dump of 13 changes of the declared variable of code "!".
    std::string Dump(const std::string &declarations, const std::string &unit = "1ns", bool isBus = false) const
    {
        std::string text = "$timescale " + unit + " $end\n$scope module t $end\n" + declarations +
                           "$upscope $end\n$enddefinitions $end\n";
        for (int i = 0; i < 13; ++i)
            text += "#" + std::to_string(i * 10) + "\n" +
                    (isBus ? (i % 2 != 0 ? "b11 !" : "b00 !") : (i % 2 != 0 ? "1!" : "0!")) + "\n";
        return Write("dump.vcd", text);
    }

    static std::vector<std::string> Examine(const std::string &formula)
    {
        std::vector<std::string> lines;
        for (const tesk::SFinding &finding : tesk::ExamineFormula({formula, "", 1000, 0}))
            lines.push_back(tesk::FindingLine(finding));
        return lines;
    }

    CTemporaryFolder m_folder;
};

constexpr char Clock[] = "$var wire 1 ! clk $end\n";

}  // namespace

TEST_F(RecordExamination, IsSilentOfASignalThatPlaysAsItLooks)
{
    EXPECT_THAT(Examine("/custom " + Dump(Clock) + ",t.clk"), IsEmpty());
    EXPECT_THAT(Examine("/custom " + Dump(Clock) + ",T.CLK,10ns,20ns @5ns -r 100ns"), IsEmpty());
}

TEST_F(RecordExamination, NamesTheNearestSignal)
{
    EXPECT_THAT(Examine("/custom " + Dump(Clock) + ",t.clck"),
                ElementsAre(HasSubstr("the file has no signal \"t.clck\" (did you mean \"t.clk\"?)")));
}

TEST_F(RecordExamination, FindsASignalByTheEndOfItsName)
{
    EXPECT_THAT(Examine("/custom " + Dump(Clock) + ",clk"), ElementsAre(HasSubstr("(did you mean \"t.clk\"?)")));
}

TEST_F(RecordExamination, TellsTheElementsOfABusThatHasNotTheOneAskedFor)
{
    const std::string path = Dump("$var wire 2 ! v [1:0] $end\n", "1ns", true);
    EXPECT_THAT(Examine("/custom " + path + ",t.v(2)"),
                ElementsAre(HasSubstr("\"t.v\" has no element [2]; its elements are 1 downto 0")));
    EXPECT_THAT(Examine("/custom " + path + ",t.v(1:0)"), ElementsAre(HasSubstr("\"t.v\" has no element [1:0]")));
    for (const char *element : {"(0)", "[1]"})
        EXPECT_THAT(Examine("/custom " + path + ",t.v" + element), IsEmpty()) << element;
}

TEST_F(RecordExamination, WarnsOfNamesThatDifferInLetterCaseOnly)
{
    const std::string both = "$var wire 1 ! ABC $end\n$var wire 1 \" abc $end\n";
    EXPECT_THAT(Examine("/custom " + Dump(both) + ",t.abc"),
                ElementsAre(HasSubstr("\"t.ABC\" and \"t.abc\" differ in letter case only; the first is played")));
}

TEST_F(RecordExamination, WarnsOfSeveralSignalsOfOneName)
{
    const std::string both = "$var wire 1 ! a $end\n$var wire 1 \" a $end\n";
    EXPECT_THAT(Examine("/custom " + Dump(both) + ",t.a"),
                ElementsAre(HasSubstr("the file has several signals \"t.a\"; the first is played")));
}

TEST_F(RecordExamination, TellsHowFarADumpPlaysWhoseUnitIsNotOneOfSomething)
{
    const auto lines = Examine("/custom " + Dump(Clock, "10ns") + ",t.clk");
    EXPECT_THAT(lines, ElementsAre(AllOf(HasSubstr("a VCD whose unit is 10ns plays to 120ns of 1200ns"),
                                         HasSubstr("tesk convert"))));
}

TEST_F(RecordExamination, RefusesABusWhoseElementsAreLookedUpShifted)
{
    for (const char *range : {"[5:4]", "[0:-1]"}) {
        const std::string path = Dump("$var wire 2 ! v " + std::string(range) + " $end\n", "1ns", true);
        EXPECT_THAT(Examine("/custom " + path + ",t.v"), ElementsAre(HasSubstr("another bit would be played")))
            << range;
        const SToolRun run = RunShell("tesk play '/custom " + path + ",t.v'");
        EXPECT_EQ(run.status, 1) << range;
        EXPECT_EQ(run.out, "") << range;
        EXPECT_THAT(run.err, HasSubstr("tesk convert"));
        IStimulus::OnEndsim();
    }
    EXPECT_THAT(Examine("/custom " + Dump("$var wire 2 ! v [1:0] $end\n", "1ns", true) + ",t.v"), IsEmpty());
}

TEST_F(RecordExamination, TellsOfANameThatIsThatOfAnotherKind)
{
    const std::string stream = Write("dump.zyn", ReadFile(Dump(Clock)));
    EXPECT_THAT(Examine("/custom " + stream + ",t.clk"),
                ElementsAre(HasSubstr("is a VCD, but its name makes it an event stream")));
}

TEST_F(RecordExamination, TellsWhatTimesOfATableLose)
{
    const std::string path = Write("f.csv", "time,data\n0.2,1\n0.7,2\n1.4,3\n2,4\n");
    EXPECT_THAT(Examine("/txt " + path + ",data -time_points time -interval 1ns"),
                ElementsAre(AllOf(HasSubstr("3 times in column \"time\", first \"0.2\", lose"),
                                  HasSubstr("write whole numbers and a finer -interval"))));
    EXPECT_THAT(Examine("/txt " + Write("g.csv", "time,data\n2,1\n7,2\n") + ",data -time_points time -interval 1ns"),
                IsEmpty());
}

TEST_F(RecordExamination, TellsOfTheTimesOfARow)
{
    const std::string path = Write("f.txt", "time 1e3 2\ndata 1 2\n");
    EXPECT_THAT(Examine("/txt " + path + ",data -row -time_points time -interval 1ns"),
                ElementsAre(HasSubstr("1 time in column \"time\", first \"1e3\"")));
}

TEST_F(RecordExamination, ListsTheColumnsOfATable)
{
    const std::string path = Write("f.csv", "time,data\n1,1\n");
    EXPECT_THAT(Examine("/txt " + path + ",data -time_points tme -interval 1ns"),
                ElementsAre(AllOf(HasSubstr("no column \"tme\" (did you mean \"time\"?)"),
                                  HasSubstr("its columns are \"time\", \"data\""))));
    EXPECT_THAT(
        Examine("/txt " + Write("b.csv", "\xEF\xBB\xBFtime,data\n1,1\n") + ",data -time_points data -interval 1ns"),
        ElementsAre(HasSubstr("byte-order mark")));
    EXPECT_THAT(Examine("/txt " + Write("q.csv", "\"time\",data\n1,1\n") + ",data -interval 1ns"),
                ElementsAre(HasSubstr("quotes are read as part of a name")));
}

TEST_F(RecordExamination, TellsOfRowsWithAnotherNumberOfValues)
{
    EXPECT_THAT(
        Examine("/txt " + Write("c.csv", "time;data\n1;1\n0,5;1\n") + ",data -interval 1ns"),
        ElementsAre(AllOf(HasSubstr("row 2 of values has 3 for 2 columns"), HasSubstr("write 0.5 and not 0,5"))));
    EXPECT_THAT(Examine("/txt " + Write("m.csv", "time,data\n1,1\n2,\n") + ",data -interval 1ns"),
                ElementsAre(HasSubstr("row 2 of values has 1 for 2 columns; give each column a value")));
    EXPECT_THAT(Examine("/txt " + Write("l.csv", "time,data\n\n1,1\n\n2,3") + ",data -interval 1ns"), IsEmpty());
}

TEST_F(RecordExamination, TellsThatANameIsReadWithItsQuotes)
{
    EXPECT_THAT(Examine("/txt " + Write("q.csv", "\"time\",\"data\"\n1,1\n") + ",data -interval 1ns"),
                testing::Contains(HasSubstr("no column \"data\": quotes are read as part of a name")));
}
