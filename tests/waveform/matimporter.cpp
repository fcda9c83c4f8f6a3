#include "waveform/matimporter.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "waveform/mat/matfiles.h"

using testing::ElementsAre;

namespace {

class MatImport : public CMatTest {};

const std::string Unsigned = ArrayType("UNSIGNED(7 downto 0)", 7, 0);
const std::string VerilogByte = "va#8#reg[7:0]1 ricd7 0 e#3#regc4 01ZX";
const std::string VerilogBit = "ve#3#regc4 01ZX";
const std::string NoEvents = "1 KERNEL There are no events for signal `v' in file `t.mat'.";
const std::string TooLate = "2 KERNEL Some events on signal `v' could not be scheduled. (The maximum allowable "
                            "simulation time would be exceeded.)";

TEST_F(MatImport, FillsAColumn)
{
    WriteVariables({Matrix("v", {{5}, {3}})});
    const int handle = ImportHandle("t.mat,v -interval 2ns", ByteType, 7000);
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
    EXPECT_EQ(ImportHandle("t.mat,v", ByteType), 1);
    EXPECT_EQ(ImportHandle("t.mat,v", ByteType), 2);
}

TEST_F(MatImport, WritesValuesByTheTypeOfTheSignal)
{
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::string type;
        double value;
        const char *sample;
    } rows[] = {
        {ByteType, 0, "0:null"},
        {ByteType, 5, "0:101"},
        {ByteType, -5, "0:11111011"},
        {ByteType, 300, "0:1111111"},
        {ByteType, noNumber, "0:XXXXXXXX"},
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
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point 2", ByteType), ElementsAre("0:101"));
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point ", ByteType), ElementsAre("0:1"));
    EXPECT_THAT(ImportMatrix({{1.25}}, "v -point x", ByteType), ElementsAre("0:1"));
    EXPECT_THAT(ImportMatrix({{12}}, "v -point -2", ByteType), ElementsAre("0:11"));
    EXPECT_THAT(ImportMatrix({{1}}, "v -point 2147483647", ByteType), ElementsAre("0:1111111"));
    EXPECT_THAT(ImportMatrix({{1}}, "v -point -2147483648", ByteType), ElementsAre("0:null"));
}

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

}  // namespace
