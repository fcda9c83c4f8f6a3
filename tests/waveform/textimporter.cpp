#include "waveform/textimporter.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cmath>
#include <string>

#include "platform/crt.h"
#include "waveform/table/tables.h"

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::Optional;

namespace {

using CTexts = std::vector<std::string>;

class ImportTextFileTest : public CTableTest {};

TEST_F(ImportTextFileTest, TakesTheColumnThatTheFirstLineNames)
{
    EXPECT_THAT(ImportTable("a b c\n0 1 10\n1 0 11\n", "c"), Optional(ElementsAre("0:10", "1:11")));
}

TEST_F(ImportTextFileTest, DoesNotWaitForAPipeThatNothingWritesTo)
{
    const std::string name = testing::TempDir() + "tesk_" + std::to_string(getpid()) + "_pipe.txt";
    ASSERT_EQ(mkfifo(name.c_str(), 0600), 0);
    EXPECT_EQ(Import(name + ",s", VectorType(8)), std::nullopt);
    unlink(name.c_str());
}

TEST_F(ImportTextFileTest, StepsBySimulationTicksWithoutAnInterval)
{
    g_simRes = 1000;
    EXPECT_THAT(ImportTable("s\n1\n0\n1\n", "s"), Optional(ElementsAre("0:1", "1:0", "2:1")));
}

TEST_F(ImportTextFileTest, StepsByTheInterval)
{
    EXPECT_THAT(ImportTable("s\n1\n0\n1\n", "s -interval 5ns"), Optional(ElementsAre("0:1", "5000:0", "10000:1")));
    EXPECT_THAT(ImportTable("s\n1\n0\n1\n", "s -interval 5ns", VectorType(8), 7),
                Optional(ElementsAre("7:1", "5007:0", "10007:1")));
}

TEST_F(ImportTextFileTest, RefusesAnIntervalOfAnUnknownUnit)
{
    EXPECT_EQ(ImportTable("s\n1\n", "s -interval 5parsec"), std::nullopt);
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(ImportTextFileTest, CutsStepsShorterThanATick)
{
    EXPECT_THAT(ImportTable("s\n1\n10\n11\n100\n", "s -interval 400fs"),
                Optional(ElementsAre("0:11", "1:100")));  // 0, 0.4, 0.8 and 1.2 ticks
}

TEST_F(ImportTextFileTest, TakesRunsOfSeparatorsForOne)
{
    const char *tables[] = {
        "s t\n1 10\n0 20\n",       ",;s\t t;\n;,1,,\t10;;\n  0 ;,20\n",
        "s,t\n1,10\n0,20\n",       "s;t\n1;10\n0;20\n",
        "s\tt\n1\t10\n0\t20\n",    "s t\r1 10\r0 20\r",
        "s t\r\n1 10\r\n0 20\r\n", "s t\n\n\n1 10\n \n0 20",
    };
    for (const char *table : tables)
        EXPECT_THAT(ImportTable(table, "s -time_points t"), Optional(ElementsAre("10:1", "20:0"))) << table;
}

TEST_F(ImportTextFileTest, KnowsNoQuotesAndNoComments)
{
    EXPECT_EQ(ImportTable("\"s\",t\n1,2\n", "s"), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Signal `s' not found in file `t.txt'."));
    EXPECT_THAT(ImportTable("# s\n1 0\n", "s"), Optional(ElementsAre("0:0")));
}

TEST_F(ImportTextFileTest, FindsTheTimeColumnOnEitherSideOfTheValues)
{
    EXPECT_THAT(ImportTable("t s\n10 1\n20 0\n", "s -time_points t"), Optional(ElementsAre("10:1", "20:0")));
    EXPECT_THAT(ImportTable("s x t\n1 9 10\n0 9 20\n", "s -time_points t"), Optional(ElementsAre("10:1", "20:0")));
}

TEST_F(ImportTextFileTest, TakesTheLastColumnOfAName)
{
    EXPECT_THAT(ImportTable("s t s t\n0 5 1 10\n", "s -time_points t"), Optional(ElementsAre("10:1")));
}

TEST_F(ImportTextFileTest, NeverTakesTheValuesForTheTimes)
{
    EXPECT_EQ(ImportTable("s t\n1 10\n", "s -time_points s"), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Time points `s' not found in file `t.txt'."));
}

TEST_F(ImportTextFileTest, ComparesNamesByteByByte)
{
    EXPECT_EQ(ImportTable("S sig\n1 0\n", "s"), std::nullopt);
    EXPECT_EQ(ImportTable(std::string("s\0\n1\n", 5), "s"), std::nullopt);
}

TEST_F(ImportTextFileTest, SaysWhichSignalOrTimePointsItMisses)
{
    EXPECT_EQ(ImportTable("a b\n1 0\n", "s(3) -time_points t"), std::nullopt);
    EXPECT_EQ(ImportTable("s b\n1 0\n", "s(3) -time_points t"), std::nullopt);
    EXPECT_EQ(ImportTable("a 1\nb 0\n", "s(3) -row -time_points t"), std::nullopt);
    EXPECT_EQ(ImportTable("s 1\nb 0\n", "s(3) -row -time_points t"), std::nullopt);
    EXPECT_EQ(ImportTable("s\nt 5", "s -row -time_points t"), std::nullopt);
    EXPECT_EQ(ImportTable("\ns\n1\n", "s"), std::nullopt);  // the first line is empty
    EXPECT_EQ(ImportTable("", "s"), std::nullopt);
    const char *signal = "1 KERNEL Signal `s' not found in file `t.txt'.";
    const char *times = "1 KERNEL Time points `s' not found in file `t.txt'.";  // deliberate: not `t'
    EXPECT_THAT(Messages(), ElementsAre(signal, times, signal, times, signal, signal, signal));
}

TEST_F(ImportTextFileTest, RefusesALineOfAnotherLength)
{
    const struct {
        const char *table, *row;
    } rows[] = {
        {"s t\n1\n", "2"},        {"s t\n1 2 3\n", "2"},           {"s t\n1 2\n1 2\n1\n", "4"},
        {"s t\n1 2\n\n1\n", "4"}, {"s t\r\n1\r\n", "3"},           {"s t\r\n1 2\r\n1\r\n", "5"},
        {"s t\r1 2\r1\r", "3"},   {"s t\n1 2\n1 2 3\n1 2\n", "3"},
    };
    CTexts expected;
    for (const auto &row : rows) {
        EXPECT_EQ(ImportTable(row.table, "s"), std::nullopt) << row.table;
        expected.push_back(std::string("1 KERNEL Improper columns number in row ") + row.row + " of file `t.txt'.");
    }
    EXPECT_EQ(Messages(), expected);
}

TEST_F(ImportTextFileTest, DoesNotCountTheLastLineIfItHasNoEnd)
{
    EXPECT_THAT(ImportTable("s t\n1 10\n0", "s"), Optional(ElementsAre("0:1", "1:0")));
    EXPECT_THAT(ImportTable("s t\n1 10\n0 20 30", "s"), Optional(ElementsAre("0:1", "1:0")));
    EXPECT_THAT(ImportTable("s t\n1 10\n0", "s -time_points t"), Optional(ElementsAre("10:1")));
    EXPECT_THAT(ImportTable("t s\n10 1\n20", "s -time_points t"), Optional(ElementsAre("10:1")));
}

TEST_F(ImportTextFileTest, CountsRelativeTimesFromTheOneBefore)
{
    EXPECT_THAT(ImportTable("t s\n10 1\n10 0\n10 1\n", "s -time_points t -rel", VectorType(8), 100),
                Optional(ElementsAre("110:1", "120:0", "130:1")));
    EXPECT_THAT(ImportTable("t s\n10 1\n10 0\n10 1\n", "s -time_points t -rel -interval 1ns", VectorType(8), 100),
                Optional(ElementsAre("10100:1", "20100:0", "30100:1")));
}

TEST_F(ImportTextFileTest, TakesTimesAsWholeNumbersWithWhatStandsBehindThemIgnored)
{
    EXPECT_THAT(ImportTable("t s\nx 1\n1.9 10\n+2 11\n3e9 100\n", "s -time_points t"),
                Optional(ElementsAre("0:1", "1:10", "2:11", "3:100")));
}

TEST_F(ImportTextFileTest, PutsTheWholeTableAtTheSmallestTimeWhereTimesLieBeyondTheRange)
{
    EXPECT_THAT(ImportTable("t s\n99999999999999999999 0\n", "s -time_points t"),
                Optional(ElementsAre("-9223372036854775808:0")));
    g_simRes = 0;
    EXPECT_THAT(ImportTable("t s\n1 0\n", "s -time_points t"), Optional(ElementsAre("-9223372036854775808:0")));
    EXPECT_THAT(ImportTable("s\n1\n0\n", "s"), Optional(ElementsAre("-9223372036854775808:0")));
}

TEST_F(ImportTextFileTest, ReadsRows)
{
    EXPECT_THAT(ImportTable("a 1 1\ns 1 0 10\nb 5\n", "s -row"), Optional(ElementsAre("0:1", "1:0", "2:10")));
    EXPECT_THAT(ImportTable("s 1 0 10\nt 5 6 7\n", "s -row -time_points t"),
                Optional(ElementsAre("5:1", "6:0", "7:10")));
    EXPECT_THAT(ImportTable("t 5 6 7\r\nx s t\r\ns 1 0 10", "s -row -time_points t"),
                Optional(ElementsAre("5:1", "6:0", "7:10")));
}

TEST_F(ImportTextFileTest, ContinuesARowWhoseNameComesAgain)
{
    EXPECT_THAT(ImportTable("s 1\nt 5 6\n\ns 0 10\nt 7\n", "s -row -time_points t"),
                Optional(ElementsAre("5:1", "6:0", "7:10")));
    EXPECT_THAT(ImportTable("t 5\ns 1\nt 6\ns 0\n", "s -row -time_points t -rel", VectorType(8), 100),
                Optional(ElementsAre("105:1", "111:0")));
}

TEST_F(ImportTextFileTest, TakesAnySecondWordOfALineForAValueEvenAName)
{
    EXPECT_THAT(ImportTable("s s t 1\n", "s -row", IntegerType), Optional(ElementsAre("0:s", "1:t", "2:1")));
    EXPECT_EQ(ImportTable("s 1\n", "s -row -time_points s"), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Time points `s' not found in file `t.txt'."));
}

TEST_F(ImportTextFileTest, DropsWhatOneOfTwoRowsHasMore)
{
    EXPECT_THAT(ImportTable("s 1 0 10\nt 5 6\n", "s -row -time_points t"), Optional(ElementsAre("5:1", "6:0")));
    EXPECT_THAT(ImportTable("t 5 6 7\ns 1 0\n", "s(2) -row -time_points t"), Optional(ElementsAre("5:1", "6:0")));
    const char *message =
        "2 KERNEL The number of time points differs from the number of signal `s' values in file `t.txt'.";
    EXPECT_THAT(Messages(), ElementsAre(message, message));
}

TEST_F(ImportTextFileTest, LetsTheSecondOfTwoValuesAtOneTimeWin)
{
    EXPECT_THAT(ImportTable("t s\n5 1\n5 10\n5 11\n6 1\n6 0\n", "s -time_points t"),
                Optional(ElementsAre("5:11", "6:0")));
    EXPECT_THAT(ImportTable("t s\n5 1.5\n5 2.5\n", "s -time_points t", RealType), Optional(ElementsAre("5:2.5")));
    EXPECT_THAT(ImportTable("t s\n5 1\n5 -1\n", "s -time_points t", ArrayType("UNSIGNED(1 downto 0)", 1, 0)),
                Optional(ElementsAre("5:null")));
}

TEST_F(ImportTextFileTest, RefusesATimeThatGoesBackwards)
{
    EXPECT_EQ(ImportTable("t s\n5 1\n5 0\n7 1\n6 0\n8 1\n", "s(1) -time_points t"), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Events for signal `s' in improper order in file `t.txt'."));
}

TEST_F(ImportTextFileTest, RefusesATableWithoutEvents)
{
    EXPECT_EQ(ImportTable("s\n", "s"), std::nullopt);
    EXPECT_EQ(ImportTable("s", "s"), std::nullopt);
    EXPECT_EQ(ImportTable("t s\n5 1\n", "s(1),10,9 -time_points t"), std::nullopt);
    const char *message = "1 KERNEL There are no events for signal `s' in file `t.txt'.";
    EXPECT_THAT(Messages(), ElementsAre(message, message, message));
}

TEST_F(ImportTextFileTest, CutsAStretchOutAndMovesItToTheStartTime)
{
    const std::string table = "t s\n10 1\n20 10\n30 11\n40 100\n";
    const struct {
        const char *arguments;
        long long startTime;
        CTexts samples;
    } rows[] = {
        {"s,20,30 -time_points t", 0, {"0:10", "10:11"}},
        {"s,25,30 -time_points t", 0, {"0:10", "5:11"}},
        {"s,25,29 -time_points t", 100, {"100:10"}},
        {"s,25 -time_points t", 100, {"100:10", "105:11", "115:100"}},
        {"s,5 -time_points t", 0, {"0:1", "15:10", "25:11", "35:100"}},  // deliberate: the first comes earlier
        {"s,99 -time_points t", 1, {"1:100"}},
        {"s,20ps -time_points t", 0, {"0:10", "10:11", "20:100"}},
        {"s,0.02ns -time_points t", 0, {"0:10", "10:11", "20:100"}},
    };
    for (const auto &row : rows)
        EXPECT_EQ(ImportTable(table, row.arguments, VectorType(8), row.startTime), row.samples) << row.arguments;
}

TEST_F(ImportTextFileTest, AppliesAnEndOnlyTogetherWithAStart)
{
    EXPECT_THAT(ImportTable("t s\n10 1\n20 10\n", "s,0,15 -time_points t"), Optional(ElementsAre("10:1", "20:10")));
    EXPECT_THAT(ImportTable("t s\n10 1\n20 10\n", "s,1,15 -time_points t"), Optional(ElementsAre("0:1")));
}

TEST_F(ImportTextFileTest, CollapsesAbsoluteTimesBeforeTheStartTime)
{
    const std::string table = "t s\n10 1\n20 10\n30 11\n";
    EXPECT_THAT(ImportTable(table, "s -time_points t", VectorType(8), 25), Optional(ElementsAre("25:10", "30:11")));
    EXPECT_THAT(ImportTable(table, "s -time_points t", VectorType(8), 99), Optional(ElementsAre("99:11")));
    EXPECT_THAT(ImportTable(table, "s -time_points t", VectorType(8), 10),
                Optional(ElementsAre("10:1", "20:10", "30:11")));
    EXPECT_THAT(ImportTable(table, "s,0,15 -time_points t", VectorType(8), 25),
                Optional(ElementsAre("25:10", "30:11")));
    EXPECT_THAT(ImportTable("t s\n-10 1\n", "s -time_points t -rel", VectorType(8), 25), Optional(ElementsAre("15:1")));
    EXPECT_THAT(ImportTable("t s\n-10 1\n", "s -time_points t"), Optional(ElementsAre("-10:1")));
}

TEST_F(ImportTextFileTest, RefusesABadTimeOrIndexWithoutAMessage)
{
    m_folder.Write("t.txt", "s\n1\n");
    const struct {
        const char *signal, *start, *end;
    } rows[] = {{"s", "5xx", ""}, {"s", "", "5xx"}, {"s)", "", ""}, {"(3)", "", ""}, {")", "", ""}};
    for (const auto &row : rows) {
        CFileFormulaArgs args;
        args.m_file = "t.txt";
        args.m_signal = row.signal;
        args.m_start = row.start;
        args.m_end = row.end;
        EXPECT_EQ(ImportTextFile(0, args, MakeSignal(BitType).get()), 0) << row.signal << row.start << row.end;
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(ImportTextFileTest, TakesTheLastBracketForTheIndexAndNoMoreThanTheName)
{
    EXPECT_THAT(ImportTable("m(1) s\n1 0\n", "m(1)(7)"), Optional(ElementsAre("0:1")));
    EXPECT_THAT(ImportTable("m(1) s\n1 0\n", "s(any)"), Optional(ElementsAre("0:0")));
    EXPECT_EQ(ImportTable("m(1) s\n1 0\n", "m(1)"), std::nullopt);
}

TEST_F(ImportTextFileTest, AddsTheExtensionThatTheFormulaLeftOut)
{
    m_folder.Write("table.txt", "s\n1\n");
    std::filesystem::create_directory("folder");
    m_folder.Write("folder.txt", "s\n10\n");
    CFileFormulaArgs args;
    args.m_file = "table";
    args.m_signal = "s";
    EXPECT_NE(ImportTextFile(0, args, MakeSignal(BitType).get()), 0);
    EXPECT_STREQ(args.m_file, "table.txt");
    EXPECT_STREQ(g_SampleColumns.at(1)->m_args.m_file, "table.txt");
    EXPECT_THAT(Import("folder,s", VectorType(8)), Optional(ElementsAre("0:10")));
    EXPECT_EQ(Import("missing,s", BitType), std::nullopt);
    EXPECT_THAT(Messages(), IsEmpty());
    EXPECT_FALSE(Import("/dev/zero,s", IntegerType));  // it never ends
}

TEST_F(ImportTextFileTest, NamesTheFileInMessagesAsItWasOpened)
{
    m_folder.Write("table.txt", "a\n1\n");
    EXPECT_EQ(Import("table,s", BitType), std::nullopt);
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Signal `s' not found in file `table.txt'."));
}

TEST_F(ImportTextFileTest, RegistersAColumnUnderTheNextHandle)
{
    m_folder.Write("t.txt", "s\n1\n");
    CFileFormulaArgs args;
    args.m_file = "t.txt";
    args.m_signal = "s";
    args.m_interval = "2ns";
    EXPECT_EQ(ImportTextFile(7, args, MakeSignal(RealType).get()), 1);
    EXPECT_EQ(ImportTextFile(7, args, MakeSignal(RealType).get()), 2);
    args.m_signal = "none";
    EXPECT_EQ(ImportTextFile(7, args, MakeSignal(RealType).get()), 0);
    EXPECT_EQ(g_NextSampleHandle, 3);
    ASSERT_EQ(g_SampleColumns.size(), 2U);
    const CSampleColumn &column = *g_SampleColumns.at(2);
    EXPECT_EQ(column.m_startTime, 7);
    EXPECT_EQ(column.m_interval, 2e6);
    EXPECT_EQ(column.m_useCount, 1);
    EXPECT_STREQ(column.m_args.m_signal, "s");
    EXPECT_TRUE(column.m_isReal);
    EXPECT_FALSE(column.m_isInteger);
    EXPECT_FALSE(column.m_fromMatFile);
}

TEST_F(ImportTextFileTest, DropsTheZerosInFrontOfBitsAndTheBitsBeyondTheWidth)
{
    EXPECT_THAT(ImportTable("s\n0\n1\n00000000\n00000001\n00010010\n1111111100000000\n111110000101\n", "s"),
                Optional(ElementsAre("0:0", "1:1", "2:0", "3:1", "4:10010", "5:0", "6:10000101")));
}

// The values of one token, by the type of the signal.
TEST(ConvertSample, WritesAValueAsTheTypeWantsIt)
{
    const std::string signedVector = ArrayType("SIGNED(3 downto 0)", 3, 0);
    const std::string unsignedVector = ArrayType("UNSIGNED(3 downto 0)", 3, 0);
    const std::string reg = "va#8#reg[3:0]1 ricd3 0 e#3#regc4 01ZX";
    const std::string signedReg = "vsa#8#reg[3:0]1 ricd3 0 e#3#regc4 01ZX";
    const std::string integerReg = "va#13#integer[31:0]1 ricd31 0 e#3#regc4 01ZX";
    const std::string signedIntegerReg = "vsa#13#integer[31:0]1 ricd31 0 e#3#regc4 01ZX";
    const struct {
        std::string type;
        const char *token, *value;
    } rows[] = {
        {VectorType(4), "1010", "1010"},
        {VectorType(4), "0010", "10"},
        {VectorType(4), "0000", "0"},
        {VectorType(4), "1110010", "10"},  // the low four bits
        {VectorType(4), "10000", "0"},
        {VectorType(4), "1XZ0", "1XZ0"},
        {VectorType(4), "x\"A\"", "1010"},
        {VectorType(4), "16#A", "1010"},
        {VectorType(4), "-1", "1111"},
        {VectorType(4), "2", "2"},
        {unsignedVector, "-5", "null"},
        {unsignedVector, "101", "101"},
        {signedVector, "-101", "1011"},
        {reg, "-1", "null"},
        {signedReg, "-1", "1111"},
        {integerReg, "10", "1010"},
        {integerReg, "-10", "null"},
        {integerReg, "1x", "null"},
        {signedIntegerReg, "-1", "11111111111111111111111111111111"},
        {StdLogicType, "1", "1"},
        {StdLogicType, "U", "U"},
        {StdLogicType, "10", "0"},
        {IntegerType, "-17", "-17"},
        {IntegerType, "007", "007"},
        {IntegerType, "word", "word"},
        {"v" + std::string(IntegerType), "-17", "null"},
        {"vs" + std::string(IntegerType), "-17", "-17"},
        {PhysicalType, "-17", "null"},
        {PhysicalType, "17", "17"},
        {RealType, "1.5", "1.5"},
        {RealType, "-1e3", "-1000"},
        {RealType, "word", "0"},
        {RealType, "1,5", "1"},
    };
    for (const auto &row : rows) {
        CSampleColumn column;
        int width = 0, radix = 0;
        ClassifyValueType(MakeSignal(row.type).get(), column, width, radix);
        column.m_events.emplace_back();
        ConvertSample(column.m_events[0], row.token, column, width, radix);
        EXPECT_EQ(SampleText(column, column.m_events[0]), std::string("0:") + row.value)
            << row.type << " " << row.token;
    }
}

}  // namespace
