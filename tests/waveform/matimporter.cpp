#include "waveform/matimporter.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "waveform/matfiles.h"

using testing::ElementsAre;

namespace {

class MatImport : public CMatTest {};

const std::string Byte = VectorType(8);
const std::string Unsigned = ArrayType("UNSIGNED(7 downto 0)", 7, 0);
const std::string VerilogByte = "va#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX";
const std::string VerilogBit = "ve#3#regc4 01ZX";
const std::string Words = ArrayType("words(3 downto 0)", 3, 0, IntegerType);
const std::string NoEvents = "1 KERNEL There are no events for signal `v' in file `t.mat'.";
const std::string TooLate = "2 KERNEL Some events on signal `v' could not be scheduled. (The maximum allowable "
                            "simulation time would be exceeded.)";

std::string SampleFile(const std::string &name)
{
    return TESK_SOURCE_DIR "/tests/data/" + name;
}

// ---- values

TEST_F(MatImport, FillsAColumn)
{
    WriteVariables({Matrix("v", {{5}, {3}})});
    const int handle = ImportHandle("t.mat,v -interval 2ns", Byte, 7000);
    ASSERT_EQ(handle, 1);
    const CSampleColumn &column = *g_SampleColumns.at(1);
    EXPECT_EQ(std::string(column.m_args.m_file), "t.mat");
    EXPECT_EQ(column.m_startTime, 7000);
    EXPECT_EQ(column.m_interval, 2e6);
    EXPECT_EQ(column.m_useCount, 1);
    EXPECT_TRUE(column.m_fromMatFile);
    EXPECT_FALSE(column.m_isReal);
    EXPECT_FALSE(column.m_isInteger);
    EXPECT_THAT(SamplesOf(column), ElementsAre("7000:101", "9000:11"));
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, CountsHandlesAsTheTextImporterDoes)
{
    WriteVariables({Matrix("v", {{5}})});
    EXPECT_EQ(ImportHandle("t.mat,v", Byte), 1);
    EXPECT_EQ(ImportHandle("t.mat,v", Byte), 2);
}

TEST_F(MatImport, WritesValuesByTheTypeOfTheSignal)
{
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::string type;
        double value;
        const char *sample;
    } rows[] = {
        {Byte, 0, "0:null"},
        {Byte, 5, "0:101"},
        {Byte, -5, "0:11111011"},
        {Byte, 300, "0:1111111"},
        {Byte, noNumber, "0:XXXXXXXX"},
        {Unsigned, 300, "0:1111111"},
        {Unsigned, -5, "0:null"},
        {ArrayType("unsigned(7 downto 0)", 7, 0), -5, "0:11111011"},
        {VerilogByte, 5, "0:00000101"},
        {VerilogByte, 300, "0:11111111"},
        {VerilogByte, -5, "0:null"},
        {VerilogByte, noNumber, "0:null"},
        {"vs" + VerilogByte.substr(1), -5, "0:11111011"},
        {VerilogBit, noNumber, "0:null"},
        {VerilogBit, 0.5, "0:1"},
        {StdLogicType, noNumber, "0:X"},
        {StdLogicType, -2, "0:1"},
        {StdLogicType, 0, "0:null"},
        {IntegerType, 5, "0:2#101"},
        {IntegerType, -1, "0:2#11111111111111111111111111111111"},
        {IntegerType, 0, "0:null"},
        {std::string("v") + IntegerType, 5, "0:00000000000000000000000000000101"},
        {PhysicalType, 5, "0:2#101"},
        {PhysicalType, -5, "0:null"},
        {PhysicalType, 300, "0:2#1111111"},
        {RealType, 1.25, "0:1.25"},
        {RealType, noNumber, "0:nan"},
    };
    for (const auto &row : rows)
        EXPECT_THAT(ImportMatrix({{row.value}}, "v", row.type), ElementsAre(row.sample))
            << row.type << " " << row.value;
}

TEST_F(MatImport, TakesThePointIntoAccount)
{
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point 2", Byte), ElementsAre("0:101"));
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point ", Byte), ElementsAre("0:1"));
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point x", Byte), ElementsAre("0:1"));
    EXPECT_THAT(ImportMatrix({{12}}, "v -point -2", Byte), ElementsAre("0:11"));
    EXPECT_THAT(ImportMatrix({{1}}, "v -point 2147483647", Byte), ElementsAre("0:1111111"));
    EXPECT_THAT(ImportMatrix({{1}}, "v -point -2147483648", Byte), ElementsAre("0:null"));
}

// ---- times

TEST_F(MatImport, SpacesEventsByTheInterval)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}, {3}}, "v -interval 10ns", IntegerType, 500),
                ElementsAre("500:2#1", "10500:2#10", "20500:2#11"));
    EXPECT_THAT(ImportMatrix({{1}, {2}}, "v", IntegerType), ElementsAre("0:2#1", "1:2#10"));
}

TEST_F(MatImport, CutsTheIntervalToWholeTicks)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}, {3}}, "v -interval 1500fs", IntegerType),
                ElementsAre("0:2#1", "1:2#10", "2:2#11"));
}

TEST_F(MatImport, LetsTheLastValueWinWhereTheIntervalIsBelowATick)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}, {3}}, "v -interval 10fs", IntegerType, 5), ElementsAre("5:2#11"));
}

TEST_F(MatImport, StopsWhereTheNextTimeWouldWrap)
{
    const long long last = std::numeric_limits<long long>::max();
    EXPECT_THAT(ImportMatrix({{1}, {2}, {3}}, "v -interval 2ps", IntegerType, last - 3),
                ElementsAre("9223372036854775804:2#1"));
    EXPECT_THAT(Messages(), ElementsAre(TooLate));
    EXPECT_THAT(ImportMatrix({{1}, {2}}, "v -interval 2ps", IntegerType, last - 1), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre(TooLate, TooLate, NoEvents));
}

TEST_F(MatImport, TakesTimesFromAColumn)
{
    const std::vector<std::vector<double>> matrix = {{10, 1, 2}, {20, 3, 4}, {30, 5, 6}};
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1 -interval 1ns", IntegerType),
                ElementsAre("10000:2#1", "20000:2#11", "30000:2#101"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 3", IntegerType),
                ElementsAre("2:2#1010", "4:2#10100", "6:2#11110"));
}

TEST_F(MatImport, TakesTimesFromARow)
{
    const std::vector<std::vector<double>> matrix = {{10, 20, 30}, {1, 2, 3}};
    EXPECT_THAT(ImportMatrix(matrix, "v -row -time_points 1", IntegerType),
                ElementsAre("10:2#1", "20:2#10", "30:2#11"));
}

TEST_F(MatImport, TakesTimesFromAnotherVariable)
{
    for (const auto &times : {Matrix("t", {{3, 7}}), Matrix("t", {{3}, {7}})}) {
        WriteVariables({Matrix("v", {{1}, {2}, {3}}), times});
        EXPECT_THAT(ImportMat("t.mat,v -time_var t", IntegerType), ElementsAre("3:2#1", "7:2#10"));
    }
    WriteVariables({Matrix("v", {{1}}), Matrix("t", {{3, 7}})});
    EXPECT_THAT(ImportMat("t.mat,v -time_var t", IntegerType), ElementsAre("3:2#1"));
}

TEST_F(MatImport, NeedsAVectorOfTimes)
{
    WriteVariables({Matrix("v", {{1}, {2}}), Matrix("t", {{3, 7}, {9, 11}})});
    EXPECT_THAT(ImportMat("t.mat,v -time_var t", IntegerType), ElementsAre("failed"));
    EXPECT_TRUE(Messages().empty());
    EXPECT_THAT(ImportMat("t.mat,v -time_var u", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Cannot find `u' variable in file `t.mat'."));
}

TEST_F(MatImport, NeedsALaneOfTimes)
{
    for (const char *lane : {"0", "x", "-1", "4", "2147483647", "-2147483648"})
        EXPECT_THAT(ImportMatrix({{1, 2, 3}}, std::string("v -time_points ") + lane, IntegerType),
                    ElementsAre("failed"))
            << lane;
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, TakesTheTextOfTimeVarForANumberIfTimePointsIsSet)
{
    WriteVariables({Matrix("v", {{1, 10}, {2, 20}}), Matrix("t", {{3, 7}})});
    EXPECT_THAT(ImportMat("t.mat,v -time_points 2 -time_var t", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("t.mat,v -time_var t -time_points 2", IntegerType), ElementsAre("10:2#1", "20:2#10"));
}

TEST_F(MatImport, RoundsTimesOfASource)
{
    EXPECT_THAT(ImportMatrix({{0.4, 1}, {1.5, 2}, {2.4, 3}}, "v -time_points 1", IntegerType),
                ElementsAre("0:2#1", "2:2#11"));
    EXPECT_THAT(ImportMatrix({{0.0004, 1}, {0.0016, 2}}, "v -time_points 1 -interval 1ns", IntegerType),
                ElementsAre("0:2#1", "2:2#10"));
}

TEST_F(MatImport, DoesNotAddTheStartToAbsoluteTimes)
{
    EXPECT_THAT(ImportMatrix({{10, 1}, {20, 2}}, "v -time_points 1", IntegerType, 5), ElementsAre("10:2#1", "20:2#10"));
}

TEST_F(MatImport, AddsUpRelativeTimesFromTheStart)
{
    EXPECT_THAT(ImportMatrix({{1, 1}, {1, 2}, {1, 3}}, "v -time_points 1 -rel", IntegerType, 100),
                ElementsAre("101:2#1", "102:2#10", "103:2#11"));
}

TEST_F(MatImport, StopsAtTimesBeyondTheRange)
{
    EXPECT_THAT(ImportMatrix({{1, 1}, {1e19, 2}, {3, 3}}, "v -time_points 1", IntegerType), ElementsAre("1:2#1"));
    EXPECT_THAT(Messages(), ElementsAre(TooLate));
}

TEST_F(MatImport, RefusesTimesThatAreNoNumbersBehindOthers)
{
    EXPECT_THAT(ImportMatrix({{1, 1}, {std::nan(""), 2}}, "v -time_points 1", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Events for signal `v' in improper order in file `t.mat'."));
}

// ---- the end of an import

TEST_F(MatImport, RefusesTimesThatGoBack)
{
    EXPECT_THAT(ImportMatrix({{2, 1}, {1, 2}}, "v -time_points 1", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(ImportMatrix({{2, 1}, {1, 2}}, "v -time_points 1", RealType), ElementsAre("failed"));
    EXPECT_EQ(Messages().size(), 2U);
    EXPECT_EQ(Messages().back(), "1 KERNEL Events for signal `v' in improper order in file `t.mat'.");
    EXPECT_TRUE(g_SampleColumns.empty());
}

TEST_F(MatImport, LetsTheLaterOfTwoValuesWin)
{
    const std::vector<std::vector<double>> matrix = {{1, 1}, {1, 2}, {3, 0}};
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", IntegerType), ElementsAre("1:2#10", "3:null"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", RealType), ElementsAre("1:2", "3:0"));
}

TEST_F(MatImport, BeginsAtTheStartWithTheValueInForce)
{
    const std::vector<std::vector<double>> matrix = {{1, 1}, {5, 2}, {7, 3}};
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", IntegerType, 6), ElementsAre("6:2#10", "7:2#11"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", IntegerType, 5), ElementsAre("5:2#10", "7:2#11"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", IntegerType, 100), ElementsAre("100:2#11"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", RealType, 6), ElementsAre("6:2", "7:3"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", IntegerType, 0), ElementsAre("1:2#1", "5:2#10", "7:2#11"));
}

TEST_F(MatImport, IgnoresStartAndEndOfTheFormula)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}}, "v,1ps,1ps", IntegerType), ElementsAre("0:2#1", "1:2#10"));
}

TEST_F(MatImport, NeedsEvents)
{
    WriteVariables({{"v", 0, 3, {}}});
    EXPECT_THAT(ImportMat("t.mat,v", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre(NoEvents));
}

// ---- lanes

TEST_F(MatImport, TakesTheFirstLaneWithoutAnIndex)
{
    const std::vector<std::vector<double>> matrix = {{1, 2}, {3, 4}};
    for (const std::string &type : {std::string(IntegerType), Byte, Words})
        EXPECT_THAT(ImportMatrix(matrix, "v", type).size(), 2U) << type;
    EXPECT_THAT(ImportMatrix(matrix, "v", IntegerType), ElementsAre("0:2#1", "1:2#11"));
    EXPECT_THAT(ImportMatrix(matrix, "v -row", IntegerType), ElementsAre("0:2#1", "1:2#10"));
    EXPECT_THAT(ImportMatrix(matrix, "v", StdLogicType), ElementsAre("0:1", "1:1"));
}

TEST_F(MatImport, TakesTheLaneOfAnIndexWithoutBounds)
{
    const std::vector<std::vector<double>> matrix = {{1, 2}, {3, 4}};
    EXPECT_THAT(ImportMatrix(matrix, "v(1)", IntegerType), ElementsAre("0:2#10", "1:2#100"));
    EXPECT_THAT(ImportMatrix(matrix, "v(1) -row", RealType), ElementsAre("0:3", "1:4"));
    EXPECT_THAT(ImportMatrix(matrix, "v(x)", RealType), ElementsAre("0:1", "1:3"));
    EXPECT_THAT(ImportMatrix(matrix, "v(-1)", RealType), ElementsAre("0:1", "1:3")) << "-1 counts as no index";
}

TEST_F(MatImport, CorrectsTheIndexOfAnArrayByItsBounds)
{
    std::vector<std::vector<double>> matrix(1);
    for (int lane = 0; lane < 8; ++lane)
        matrix[0].push_back(lane);
    EXPECT_THAT(ImportMatrix(matrix, "v(7)", ArrayType("a(7 downto 0)", 7, 0)), ElementsAre("0:111"));
    EXPECT_THAT(ImportMatrix(matrix, "v(8)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("0:111"));
    EXPECT_THAT(ImportMatrix(matrix, "v(8)", ArrayType("a(2 to 9)", 2, 9)), ElementsAre("0:110"));
}

TEST_F(MatImport, CorrectsTheIndexOfAnElementByTheBoundsOfTheWhole)
{
    WriteVariables({Matrix("v", {{1, 2, 3, 4}})});
    IStimulus::SetupAdditionalInfo("sig", ArrayType("words(5 downto 2)", 5, 2, IntegerType).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, IntegerType);
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(4)", IntegerType)), ElementsAre("0:2#11"));
    IStimulus::SetupAdditionalInfo("sig", ArrayType("bytes(1 to 4)", 1, 4, Byte).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, Byte.c_str());
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(4)", Byte)), ElementsAre("0:100"));
}

TEST_F(MatImport, TakesTheSecondIndexOfAWholeArray)
{
    EXPECT_THAT(ImportMatrix({{1, 2, 3, 4}}, "v(9)(3)", ArrayType("a(5 downto 2)", 5, 2)), ElementsAre("0:10"));
    EXPECT_THAT(ImportMatrix({{1, 2, 3, 4}}, "v(9)(3)", ArrayType("a(5 downto 2)", 5, 2, IntegerType)),
                ElementsAre("0:10"));
}

TEST_F(MatImport, TakesTheFirstIndexOfTwoForAnElementOfAnArray)
{
    WriteVariables({Matrix("v", {{1, 2, 3, 4}})});
    IStimulus::SetupAdditionalInfo("sig", ArrayType("bytes(1 to 4)", 1, 4, Byte).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, Byte.c_str());
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(3)(5)", Byte)), ElementsAre("0:11"));
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(-1)(5)", Byte)), ElementsAre("0:1"));
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(3)(5)", Words)), ElementsAre("failed"));
}

TEST_F(MatImport, RefusesIndicesThatDoNotFitTheType)
{
    const struct {
        const char *signal;
        std::string type;
    } rows[] = {
        {"v(0)", StdLogicType},
        {"v(0)(0)", StdLogicType},
        {"v(0)(0)", IntegerType},
        {"v(0)(0)", RealType},
        {"v", "r#3#bus2 valid " + std::string(BitType) + " data " + IntegerType},
        {"v", ArrayType("records(0 to 1)", 0, 1, "r#1#b1 f " + std::string(BitType))},
        {"v", "a#12#m(0 to 1, 0)2 rict0 1 rict0 1 " + std::string(IntegerType)},
    };
    for (const auto &row : rows)
        EXPECT_THAT(ImportMatrix({{1, 2}}, row.signal, row.type), ElementsAre("failed"))
            << row.signal << " " << row.type;
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, DoesNotCountTheTimesAsALaneOfTheSignal)
{
    const std::vector<std::vector<double>> matrix = {{10, 1, 2}, {20, 3, 4}};
    EXPECT_THAT(ImportMatrix(matrix, "v(0) -time_points 1", RealType), ElementsAre("10:1", "20:3"));
    EXPECT_THAT(ImportMatrix(matrix, "v(1) -time_points 1", RealType), ElementsAre("10:2", "20:4"));
    EXPECT_THAT(ImportMatrix({{1, 10, 2}, {3, 20, 4}}, "v(0) -time_points 2", RealType), ElementsAre("10:1", "20:3"));
    EXPECT_THAT(ImportMatrix({{1, 10, 2}, {3, 20, 4}}, "v(1) -time_points 2", RealType), ElementsAre("10:2", "20:4"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", StdLogicType), ElementsAre("10:1", "20:1"));
}

TEST_F(MatImport, HasNoDataBeyondTheLastLane)
{
    EXPECT_THAT(ImportMatrix({{1, 2}, {3, 4}}, "v(2)", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}, {3, 4}}, "v(1) -time_points 1", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(1) -row", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(0)(9)", Byte), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(0)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(-2147483648)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("no data"));
    const std::string one = "2 KERNEL There is no data for sig";
    EXPECT_THAT(Messages(), ElementsAre(one + "(2).", one + "(1).", one + "(1).", one + "(0)(9).", one + "(0).",
                                        one + "(-2147483648)."));
    EXPECT_TRUE(g_SampleColumns.empty());
}

TEST_F(MatImport, DeliberatelyDoesNotTellThatAScalarHasNoLane)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}}, "v -time_points 1", StdLogicType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre(NoEvents));
}

// ---- files and variables

TEST_F(MatImport, FindsAFileWithoutItsExtension)
{
    m_folder.Write("t.mat", MatFileBytes({Matrix("v", {{1}})}));
    CFileFormulaArgs args;
    ASSERT_TRUE(ParseMatArgs("t,v", args));
    EXPECT_EQ(ImportMatFile(0, args, MakeSignal(IntegerType).get()), 1);
    EXPECT_EQ(std::string(args.m_file), "t.mat");
}

TEST_F(MatImport, SaysNothingOfAFileThatCannotBeOpened)
{
    m_folder.Write("bad.mat", "time,value\n1,2\n");
    for (const char *file : {"missing", "bad.mat", "."})
        EXPECT_THAT(ImportMat(std::string(file) + ",v", IntegerType), ElementsAre("failed")) << file;
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, SaysNothingOfAnIndexWithoutBeginning)
{
    WriteVariables({Matrix("v", {{1}})});
    for (const char *signal : {"v)", ")", "(3)", "v)(1)", "(2)(1)"}) {
        CFileFormulaArgs args;
        args.m_file = "t.mat";
        args.m_signal = signal;
        EXPECT_EQ(ImportMatFile(0, args, MakeSignal(IntegerType).get()), 0) << signal;
    }
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, NamesTheVariableThatIsNotThere)
{
    WriteVariables({Matrix("v", {{1}})});
    EXPECT_THAT(ImportMat("t,w(3)", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("t", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Cannot find `w' variable in file `t.mat'.",
                                        "1 KERNEL Cannot find `' variable in file `t.mat'."));
}

TEST_F(MatImport, RefusesVariablesThatAreNoMatrixOfDoubles)
{
    for (const char *name : {"i8", "u64", "sg", "txt", "lg", "sp", "ce", "s", "sa", "n3"}) {
        EXPECT_THAT(ImportMat(SampleFile("octave7.mat") + "," + name, IntegerType), ElementsAre("failed")) << name;
        EXPECT_THAT(ImportMat(SampleFile("octave7.mat") + ",m -time_var " + name, IntegerType), ElementsAre("failed"))
            << name;
    }
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, FollowsAPathThroughStructures)
{
    for (const char *file : {"octave6.mat", "octave7.mat", "scipy5.mat", "matio73.mat"}) {
        const std::string path = SampleFile(file) + ",";
        EXPECT_THAT(ImportMat(path + "s.f", RealType), ElementsAre("0:10", "1:20", "2:30")) << file;
        EXPECT_THAT(ImportMat(path + "s.f(1)", RealType), ElementsAre("0:1", "1:4", "2:7")) << file;
        EXPECT_THAT(ImportMat(path + "s.t.v", RealType), ElementsAre("0:7")) << file;
        EXPECT_THAT(ImportMat(path + "s(1).t(1).v", RealType), ElementsAre("0:7")) << file;
        EXPECT_THAT(ImportMat(path + "sa.v", RealType), ElementsAre("0:11")) << file;
        EXPECT_THAT(ImportMat(path + "m -time_var times", RealType), ElementsAre("1:10", "2:20", "4:30")) << file;
        EXPECT_THAT(ImportMat(path + "s.f -time_var times(3)", RealType), ElementsAre("1:10", "2:20", "4:30")) << file;
    }
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatImport, DeliberatelyCountsElementsOfStructuresInAnOrderOfItsOwn)
{
    const std::string path = SampleFile("octave7.mat") + ",";
    const double order[] = {11, 21, 12, 22};  // in the file: column by column
    for (int i = 1; i <= 2; ++i) {
        for (int j = 1; j <= 2; ++j) {
            const int element = (i - 1) * 2 + (j - 1);
            const std::string index = std::to_string(i) + ", " + std::to_string(j);
            EXPECT_THAT(ImportMat(path + "sa(" + index + ").v", RealType),
                        ElementsAre("0:" + std::to_string(static_cast<int>(order[element]))))
                << index;
        }
    }
    EXPECT_THAT(ImportMat(path + "sa(3).v", RealType), ElementsAre("0:12"));
    EXPECT_THAT(ImportMat(path + "sa(0,3).v", RealType), ElementsAre("0:11")) << "-1 times 2 and 2 added";
}

TEST_F(MatImport, FindsNothingOnAPathThatLeadsNowhere)
{
    const char *paths[] = {"s.g",
                           "s.",
                           "s..f",
                           ".f",
                           "s.t.v.w",
                           "m.f",
                           "sa(5).v",
                           "sa(0).v",
                           "sa().v",
                           "s.t.",
                           "none.f",
                           "sa(3,1).v",
                           "s(2).f",
                           "S.f",
                           "s.F",
                           "txt.v",
                           "sa(9223372036854775807,2).v",
                           "sa(1,1,9).v",
                           "sa(1,1,1,1).v",
                           "sa(2147483647,2147483647,2147483647).v"};
    for (const char *path : paths)
        EXPECT_THAT(ImportMat(SampleFile("octave7.mat") + "," + path, RealType), ElementsAre("failed")) << path;
    EXPECT_EQ(Messages().size(), std::size(paths));
    EXPECT_EQ(Messages().front(), "1 KERNEL Cannot find `s.g' variable in file `" + SampleFile("octave7.mat") + "'.");
}

TEST_F(MatImport, TestsTheIndexOfAPlainVariableOnly)
{
    WriteVariables({Matrix("v", {{1}, {2}}), Matrix("t", {{3, 7}})});
    EXPECT_THAT(ImportMat("t.mat,v -time_var t(1,2)", IntegerType), ElementsAre("3:2#1", "7:2#10"));
    for (const char *index : {"t(3)", "t(0)", "t(1", "t(", "t(2,2)"})
        EXPECT_THAT(ImportMat(std::string("t.mat,v -time_var ") + index, IntegerType), ElementsAre("failed")) << index;
}

// ---- odd callers

TEST_F(MatImport, NeedsATypeOfTheSignal)
{
    WriteVariables({Matrix("v", {{1}})});
    CFileFormulaArgs args;
    args.m_file = "t.mat";
    args.m_signal = "v";
    EXPECT_EQ(ImportMatFile(0, args, nullptr), 0);
}

TEST_F(MatImport, WorksAtAnyResolution)
{
    WriteVariables({Matrix("v", {{1}, {2}})});
    for (const long long resolution : {0LL, -1LL, 1LL, std::numeric_limits<long long>::max()}) {
        g_simRes = resolution;
        for (const char *arguments : {"t.mat,v", "t.mat,v -interval 9hr", "t.mat,v -time_points 1 -interval 9hr"})
            ImportMat(arguments, RealType);
    }
}

TEST_F(MatImport, WritesWideSignals)
{
    const std::string wide = VectorType(3000);
    EXPECT_THAT(ImportMatrix({{5}, {-1}}, "v", wide), ElementsAre("0:101", "1:" + std::string(3000, '1')));
    EXPECT_THAT(ImportMatrix({{1}}, "v -point 2500", wide), ElementsAre("0:1" + std::string(2500, '0')));
}

// ---- formulas

class MatFormula : public CMatTest {
protected:
    std::string Values(const std::string &formula, const std::vector<long long> &times)
    {
        IStimulus *stimulus = IStimulus::Create(formula.c_str(), 0, 1000, nullptr, false, false);
        if (stimulus == nullptr)
            return "null";
        std::string values;
        for (const long long time : times) {
            SimpleString::CStr value;
            values += stimulus->GetValue(time, value) ? std::string(value) : "-";
        }
        stimulus->Destroy();
        return values;
    }
};

TEST_F(MatFormula, PlaysTheImportedColumn)
{
    WriteVariables({Matrix("v", {{1}, {0}, {1}})});
    IStimulus::SetupAdditionalInfo("sig", StdLogicType);
    EXPECT_EQ(Values("/mat t.mat,v -interval 10ps", {0, 9, 10, 20, 21}), "1101-");
    EXPECT_EQ(Values("/MAT t,v", {1}), "0");
    EXPECT_EQ(Values("\"/mat t,v\"", {1}), "0");
}

TEST_F(MatFormula, CannotBeUsedIfTheImportFails)
{
    IStimulus::SetupAdditionalInfo("sig", StdLogicType);
    EXPECT_EQ(Values("/mat missing,v", {}), "null");
    EXPECT_EQ(Values("/mat t.mat,v(", {}), "null");
    WriteVariables({Matrix("v", {{1}})});
    IStimulus::SetupAdditionalInfo("sig", "no type");
    EXPECT_EQ(Values("/mat t.mat,v", {}), "null");
}

TEST_F(MatFormula, IsCancelledFromTheStartWhereThereIsNoData)
{
    WriteVariables({Matrix("v", {{1, 2}})});
    IStimulus::SetupAdditionalInfo("sig", IntegerType);
    IStimulus *stimulus = IStimulus::Create("/mat t.mat,v(2)", 0, 1000, nullptr, false, false);
    ASSERT_NE(stimulus, nullptr);
    EXPECT_TRUE(stimulus->IsFinishedAt(0));
    EXPECT_FALSE(stimulus->IsCustom());
    EXPECT_EQ(stimulus->GetNextEventTime(-1), -1);
    EXPECT_NE(stimulus, IStimulus::Create("", 0, 1000, nullptr, false, false));
    EXPECT_EQ(stimulus, IStimulus::Create("/mat t.mat,v(3)", 0, 1000, nullptr, false, false));
}

TEST_F(MatFormula, InItsInternalFormHasTheIndexCorrectedByTheBounds)
{
    // The places of a sample count from the right: "11010" holds 1 at 1, 3 and 4.
    const struct {
        int left, right, index;
        const char *value;
    } rows[] = {
        {7, 2, 3, "1"}, {7, 2, 2, "0"}, {7, 2, 4, "0"}, {2, 7, 3, "1"}, {2, 7, 5, "1"}, {7, 0, 3, "1"}, {7, 0, 2, "0"},
    };
    WriteVariables({Matrix("v", {{26}})});
    for (const auto &row : rows) {
        const std::string type = ArrayType("a", row.left, row.right);
        const std::string behind =
            "/internal " + std::to_string(ImportHandle("t.mat,v", type)) + ",(" + std::to_string(row.index) + ")";
        EXPECT_EQ(Values("/mat" + behind, {0}), row.value) << row.left << " " << row.right << " " << row.index;
    }
    const std::string behind = "/internal " + std::to_string(ImportHandle("t.mat,v", ArrayType("a", 7, 2))) + ",(3)";
    EXPECT_EQ(Values("/txt" + behind, {0}), "1") << "element 3";
    IStimulus::SetupAdditionalInfo("sig", StdLogicType);
    WriteVariables({Matrix("v", {{1}})});
    EXPECT_EQ(Values("/mat/internal " + std::to_string(ImportHandle("t.mat,v", StdLogicType)) + ",(0)", {0}), "1");
}

TEST_F(MatFormula, InABadInternalFormCannotBeUsed)
{
    WriteVariables({Matrix("v", {{26}})});
    ImportHandle("t.mat,v", VectorType(8));
    for (const char *formula : {"/mat/internal 1,3", "/mat/internal 1,(3", "/mat/internal ", "/mat/internal x,(1)"})
        EXPECT_EQ(Values(formula, {}), "null") << formula;
}

}  // namespace
