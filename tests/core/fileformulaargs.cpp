#include "core/fileformulaargs.h"

#include <string>

#include "core/fileformulaargsreading.h"
#include "logcatcher.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned Row = CFileFormulaArgs::FLAG_ROW;
constexpr unsigned Rel = CFileFormulaArgs::FLAG_REL;
constexpr unsigned TimePoints = CFileFormulaArgs::FLAG_TIME_POINTS;

constexpr const char *IntervalMessage = "1 KERNEL You have to specify digit and time unit in -interval switch.";

std::string ReadCustom(const std::string &text)
{
    return Read(ParseCustomArgs, text);
}

std::string ReadTxt(const std::string &text)
{
    return Read(ParseTxtArgs, text);
}

std::string ReadMat(const std::string &text)
{
    return Read(ParseMatArgs, text);
}

TEST(FileFormulaArgs, AreEmptyInANewRecord)
{
    EXPECT_EQ(Show(CFileFormulaArgs()), "0");
}

TEST(FileFormulaArgs, FlagsAreTheLowestThreeBits)
{
    EXPECT_EQ(Row, 1u);
    EXPECT_EQ(Rel, 2u);
    EXPECT_EQ(TimePoints, 4u);
}

TEST(FileFormulaArgs, ReadTheSameWayForAllThreeKeywords)
{
    const struct {
        const char *text, *expected;
    } rows[] = {
        {"a.zyn,sig", "file=a.zyn|signal=sig|0"},
        {"  a.zyn , sig  ", "file=a.zyn|signal=sig|0"},
        {"a.zyn,sig,10ns,20ns @5ns -r 100ns -cancel @1us",
         "file=a.zyn|signal=sig|start=10ns|end=20ns|offset=@5ns|repeat=100ns|cancel=@1us|0"},
        {"a.zyn,sig,1.5ns", "file=a.zyn|signal=sig|start=1.5ns|0"},
        {"a.zyn,sig,1.5 ns,2 us", "file=a.zyn|signal=sig|start=1.5ns|end=2us|0"},
        {"a.zyn,sig,10,20", "file=a.zyn|signal=sig|start=10|end=20|0"},
        {"a.zyn,sig,10 , 20 ", "file=a.zyn|signal=sig|start=10|end=20|0"},
        {"a.zyn,sig,,20ns", "file=a.zyn|signal=sig|end=20ns|0"},
        {"a.zyn,sig,ns", "file=a.zyn|signal=sig|start=ns|0"},
        {"a.zyn,sig,1ns\"\" ,2ns \" \"", "file=a.zyn|signal=sig|start=1ns|end=2ns|0"},
        {"a.zyn,sig\" \",1ns", "file=a.zyn|signal=sig|start=1ns|0"},
        {"a.zyn,sig 5ns", "file=a.zyn|signal=sig|offset=5ns|0"},
        {"a.zyn,sig 5 ns ", "file=a.zyn|signal=sig|offset=5ns|0"},
        {"a.zyn,sig 5 ", "file=a.zyn|signal=sig|offset=5|0"},
        {"a.zyn,sig 5 -r 1ns", "file=a.zyn|signal=sig|offset=5|repeat=1ns|0"},
        {"a.zyn,sig,1ns 5ns", "file=a.zyn|signal=sig|start=1ns|offset=5ns|0"},
        {"a.zyn,sig,1ns @5ns", "file=a.zyn|signal=sig|start=1ns|offset=@5ns|0"},
        {"a.zyn,sig @", "file=a.zyn|signal=sig|0"},
        {"a.zyn,sig@5ns", "file=a.zyn|signal=sig@5ns|0"},
        {"a.zyn,sig(1, 2) 5ns", "file=a.zyn|signal=sig(1, 2)|offset=5ns|0"},
        {"a.zyn,sig(1)(2),3ns", "file=a.zyn|signal=sig(1)(2)|start=3ns|0"},
        {"a.zyn,sig(\"a,b\")", "file=a.zyn|signal=sig(\"a,b\")|0"},
        {"a.zyn,\\x y\\ 5ns", "file=a.zyn|signal=\\x y\\|offset=5ns|0"},
        {"a.zyn,\\a,b\\", "file=a.zyn|signal=\\a,b\\|0"},
        {"a.zyn,\\((\\,1ns", "file=a.zyn|signal=\\((\\|start=1ns|0"},
        {"a.zyn,a(\\) \\)b", "file=a.zyn|signal=a(\\) \\)b|0"},
        {"\t a b.zyn\t,sig", "file=a b.zyn|signal=sig|0"},
        {",sig", "signal=sig|0"},
        {"a.zyn,,1ns", "file=a.zyn|start=1ns|0"},
        {"a.zyn,\tsig\t", "file=a.zyn|signal=\tsig\t|0"},
        {"a.zyn,s -r 10ns", "file=a.zyn|signal=s|repeat=10ns|0"},
        {"a.zyn,s -r10ns", "file=a.zyn|signal=s|repeat=10ns|0"},
        {"a.zyn,s -r ns", "file=a.zyn|signal=s|repeat=ns|0"},
        {"a.zyn,s -r 10 -cancel 5 ", "file=a.zyn|signal=s|repeat=10|cancel=5|0"},
        {"a.zyn,s -cancel 1us-r 10ns", "file=a.zyn|signal=s|repeat=10ns|cancel=1us|0"},
        {"a.zyn,s -r 1ns -r 2ns -cancel 3ns -cancel @4ns", "file=a.zyn|signal=s|repeat=2ns|cancel=@4ns|0"},
        {"a.zyn,s \"\"-r 1ns", "file=a.zyn|signal=s|repeat=1ns|0"},
    };
    for (const auto &row : rows) {
        for (const auto &parser : Parsers)
            EXPECT_EQ(Read(parser.parse, row.text), row.expected) << parser.keyword << " " << row.text;
    }
}

TEST(FileFormulaArgs, AreRefusedTheSameWayForAllThreeKeywords)
{
    const CLogCatcher log;
    constexpr const char *texts[] = {"a.zyn,",
                                     "a.zyn,  ",
                                     ",",
                                     "a.zyn,sig,",
                                     "a.zyn,sig, ",
                                     "a.zyn,sig,1ns,",
                                     "a.zyn,sig,1ns,1.5ns",
                                     "a.zyn,sig,1..2ns x",
                                     "a.zyn,sig,1 ns s",
                                     "a.zyn,sig(1",
                                     "a.zyn,\\sig",
                                     "a.zyn,sig((1))",
                                     "a.zyn,sig)",
                                     "a.zyn,sig(1))",
                                     "a.zyn,\"sig\"",
                                     "a.zyn,sig,\"1ns\"",
                                     "a.zyn,sig 5",
                                     "a.zyn,sig @5",
                                     "a.zyn,sig @ 5ns",
                                     "a.zyn,sig @@5ns",
                                     "a.zyn,sig 5ns 6ns",
                                     "a.zyn,sig\t5ns,",
                                     "a.zyn,sig \t",
                                     "a.zyn,sig 5ns\"",
                                     "a.zyn,s -",
                                     "a.zyn,s -x",
                                     "a.zyn,s -r",
                                     "a.zyn,s -r ",
                                     "a.zyn,s -r 10",
                                     "a.zyn,s -r 10 ns",
                                     "a.zyn,s -r @10ns",
                                     "a.zyn,s -r 1.5ns",
                                     "a.zyn,s -r 10ns x",
                                     "a.zyn,s -R 10ns",
                                     "a.zyn,s -cancel",
                                     "a.zyn,s -cancel @",
                                     "a.zyn,s -cancel 5",
                                     "a.zyn,s -cancel @ 5ns",
                                     "a.zyn,s -cancel 5 ns",
                                     "a.zyn,s -r 1ns\t"};
    for (const char *text : texts) {
        for (const auto &parser : Parsers)
            EXPECT_EQ(Read(parser.parse, text), "") << parser.keyword << " " << text;
    }
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(FileFormulaArgs, NeedASignalForCustomOnly)
{
    for (const char *text : {"a.zyn", " a.zyn ", "a.zyn -r 10ns"}) {
        EXPECT_EQ(ReadCustom(text), "") << text;
        EXPECT_NE(ReadTxt(text), "") << text;
        EXPECT_NE(ReadMat(text), "") << text;
    }
    EXPECT_EQ(ReadTxt("a.txt"), "file=a.txt|0");
    EXPECT_EQ(ReadTxt("a.txt -r 10ns"), "file=a.txt -r 10ns|0");  // a switch needs the comma in front
    EXPECT_EQ(ReadTxt(""), "0");
    EXPECT_EQ(ReadMat(""), "0");
    EXPECT_EQ(ReadCustom(""), "");
}

TEST(FileFormulaArgs, RefuseANullText)
{
    for (const auto &parser : Parsers) {
        CFileFormulaArgs args;
        EXPECT_FALSE(parser.parse(nullptr, args)) << parser.keyword;
    }
}

TEST(FileFormulaArgs, KeepWhatWasReadInFrontOfAFault)
{
    const struct {
        const char *text, *expected;
    } rows[] = {
        {"a.zyn,sig(1", "file=a.zyn|signal=sig(1|0"},
        {"a.zyn,sig)", "file=a.zyn|signal=sig|0"},
        {"a.zyn,sig,1ns,1.5ns", "file=a.zyn|signal=sig|start=1ns|end=1|0"},
        {"a.zyn,sig -cancel 1us -r 10 ns", "file=a.zyn|signal=sig|repeat=10|cancel=1us|0"},
        {"a.zyn,sig -cancel 1us -r 10", "file=a.zyn|signal=sig|cancel=1us|0"},
    };
    for (const auto &row : rows) {
        for (const auto &parser : Parsers) {
            CFileFormulaArgs args;
            EXPECT_FALSE(parser.parse(row.text, args)) << parser.keyword << " " << row.text;
            EXPECT_EQ(Show(args), row.expected) << parser.keyword << " " << row.text;
        }
    }
}

// Deliberate: only six texts are emptied.
TEST(FileFormulaArgs, KeepOffsetSourcesAndFlagsOfARecordUsedAgain)
{
    CFileFormulaArgs args;
    ASSERT_TRUE(
        ParseMatArgs("a,b,1ns,2ns 3ns -r 4ns -cancel 5ns -interval 6ns -time_points t -point p -row -rel", args));
    ASSERT_TRUE(ParseMatArgs("c", args));
    EXPECT_EQ(Show(args), "file=c|offset=3ns|interval=6ns|source=t|point=p|7");
}

// Deliberate: an "@" that no digit follows waits for the next text that is collected.
TEST(FileFormulaArgs, LetALoneAtJoinTheNextTextCollected)
{
    EXPECT_EQ(ReadCustom("a,s @-r 10ns -cancel 1us"), "file=a|signal=s|repeat=@10ns|cancel=1us|0");
    EXPECT_EQ(ReadCustom("a,s @-cancel @1us -r 10ns"), "file=a|signal=s|repeat=10ns|cancel=@@1us|0");
    EXPECT_EQ(ReadTxt("a,s @-row -r 10ns"), "file=a|signal=s|repeat=@10ns|1");
    EXPECT_EQ(ReadMat("a,s @-time_var t -point p -r 10ns"), "file=a|signal=s|repeat=@10ns|source=t|point=p|0");
}

TEST(FileFormulaArgs, LogAnIntervalSpoiltByALoneAt)
{
    const CLogCatcher log;
    EXPECT_EQ(ReadTxt("a,s @-interval 5ns"), "");
    EXPECT_THAT(log.Messages(), ElementsAre(IntervalMessage));
}

TEST(FileFormulaSwitches, OfTheTablesAreKnownToTxtAndMat)
{
    const struct {
        const char *text, *expected;
    } rows[] = {
        {"d,1 -row", "file=d|signal=1|1"},
        {"d,1 -rel", "file=d|signal=1|2"},
        {"d,1 -rel-row", "file=d|signal=1|3"},
        {"d,1 -row -col", "file=d|signal=1|1"},
        {"d,1 -rel -abs", "file=d|signal=1|2"},
        {"d,1 -col -abs -fixed_step", "file=d|signal=1|0"},
        {"d,1 -r el", "file=d|signal=1|repeat=el|0"},
        {"d,1 -interval 5ns", "file=d|signal=1|interval=5ns|0"},
        {"d,1 -interval5ns -r 1us", "file=d|signal=1|repeat=1us|interval=5ns|0"},
        {"d,1 -time_points t -row", "file=d|signal=1|source=t|5"},
        {"d,1 -time_points t,\"(x)\t -row", "file=d|signal=1|source=t,\"(x)\t|5"},
        {"d,1 -time_points -row", "file=d|signal=1|source=-row|4"},
        {"d,1 -time_points", "file=d|signal=1|4"},
        {"d,1 -time_points  ", "file=d|signal=1|4"},
        {"d,1 -time_points a -time_points b", "file=d|signal=1|source=b|4"},
        {"d,1 -time_points a -time_points", "file=d|signal=1|4"},
        {"d,1 -cancel 1us -interval 5ns -r 2us", "file=d|signal=1|repeat=2us|cancel=1us|interval=5ns|0"},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(ReadTxt(row.text), row.expected) << row.text;
        EXPECT_EQ(ReadMat(row.text), row.expected) << row.text;
    }
}

TEST(FileFormulaSwitches, OfTheTablesAreRefusedByCustom)
{
    for (const char *text : {"d,1 -col", "d,1 -abs", "d,1 -fixed_step", "d,1 -interval 5ns", "d,1 -time_points t"})
        EXPECT_EQ(ReadCustom(text), "") << text;
}

// Deliberate: "/custom" knows only "-r" of the switches that begin so.
TEST(FileFormulaSwitches, RelAndRowAreRepeatsForCustom)
{
    EXPECT_EQ(ReadCustom("d,1 -rel"), "file=d|signal=1|repeat=el|0");
    EXPECT_EQ(ReadCustom("d,1 -row -r 5ns"), "file=d|signal=1|repeat=5ns|0");
    EXPECT_EQ(ReadCustom("d,1 -rel 5ns"), "");
}

TEST(FileFormulaSwitches, TimeVarAndPointAreKnownToMatAlone)
{
    EXPECT_EQ(ReadMat("d.mat,v -time_var t -point p -interval 5ns -row -rel"),
              "file=d.mat|signal=v|interval=5ns|source=t|point=p|3");
    EXPECT_EQ(ReadMat("d.mat,v -time_var"), "file=d.mat|signal=v|0");
    EXPECT_EQ(ReadMat("d.mat,v -pointp(1,2)"), "file=d.mat|signal=v|point=p(1,2)|0");
    for (const char *text : {"d.txt,1 -time_var t", "d.txt,1 -point p"}) {
        EXPECT_EQ(ReadTxt(text), "") << text;
        EXPECT_EQ(ReadCustom(text), "") << text;
    }
}

TEST(FileFormulaSwitches, WithoutArgumentTakeNothingElse)
{
    for (const char *text : {"d,1 -rowx", "d,1 -row 5", "d,1 -fixed", "d,1 -time", "d,1 -row,"})
        EXPECT_EQ(ReadMat(text), "") << text;
}

TEST(IntervalSwitch, LogsThatItNeedsADigitAndAUnit)
{
    for (const char *text :
         {"d,1 -interval 5", "d,1 -interval ns", "d,1 -interval 5 ns", "d,1 -interval -row", "d,1 -interval @5ns"}) {
        for (const CParser parse : {ParseTxtArgs, ParseMatArgs}) {
            const CLogCatcher log;
            EXPECT_EQ(Read(parse, text), "") << text;
            EXPECT_THAT(log.Messages(), ElementsAre(IntervalMessage)) << text;
        }
    }
}

TEST(IntervalSwitch, FailsSilentlyAtTheEndOfTheText)
{
    const CLogCatcher log;
    EXPECT_EQ(ReadTxt("d,1 -interval"), "");
    EXPECT_EQ(ReadTxt("d,1 -interval  "), "");
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(IntervalSwitch, FailsBehindItsLetters)
{
    const CLogCatcher log;
    EXPECT_EQ(ReadTxt("d,1 -interval 5ns5"), "");  // the fault is the digit behind the interval
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST(Arguments, MayStandInTheRecordThatTheyAreReadInto)
{
    for (const auto parse : {ParseCustomArgs, ParseTxtArgs, ParseMatArgs}) {
        CFileFormulaArgs args;
        args.m_file = "a_file_of_a_name_that_is_long,signal,10ns -r 20ns";
        EXPECT_TRUE(parse(args.m_file, args));
        EXPECT_STREQ(args.m_file, "a_file_of_a_name_that_is_long");
        EXPECT_STREQ(args.m_repeat, "20ns");
    }
}

}  // namespace
