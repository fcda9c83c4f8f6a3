#include "waveform/mat/matlane.h"

#include <gmock/gmock.h>

#include "waveform/mat/matfiles.h"

using testing::ElementsAre;

namespace {

class MatLane : public CMatTest {};

const std::string Words = ArrayType("words(3 downto 0)", 3, 0, IntegerType);

TEST_F(MatLane, TakesTheFirstLaneWithoutAnIndex)
{
    const std::vector<std::vector<double>> matrix = {{1, 2}, {3, 4}};
    for (const std::string &type : {std::string(IntegerType), ByteType, Words})
        EXPECT_THAT(ImportMatrix(matrix, "v", type).size(), 2U) << type;
    EXPECT_THAT(ImportMatrix(matrix, "v", IntegerType), ElementsAre("0:2#1", "1:2#11"));
    EXPECT_THAT(ImportMatrix(matrix, "v -row", IntegerType), ElementsAre("0:2#1", "1:2#10"));
    EXPECT_THAT(ImportMatrix(matrix, "v", StdLogicType), ElementsAre("0:1", "1:1"));
}

TEST_F(MatLane, TakesTheLaneOfAnIndexWithoutBounds)
{
    const std::vector<std::vector<double>> matrix = {{1, 2}, {3, 4}};
    EXPECT_THAT(ImportMatrix(matrix, "v(1)", IntegerType), ElementsAre("0:2#10", "1:2#100"));
    EXPECT_THAT(ImportMatrix(matrix, "v(1) -row", RealType), ElementsAre("0:3", "1:4"));
    EXPECT_THAT(ImportMatrix(matrix, "v(x)", RealType), ElementsAre("0:1", "1:3"));
    EXPECT_THAT(ImportMatrix(matrix, "v(-1)", RealType), ElementsAre("0:1", "1:3")) << "-1 counts as no index";
}

TEST_F(MatLane, CorrectsTheIndexOfAnArrayByItsBounds)
{
    std::vector<std::vector<double>> matrix(1);
    for (int lane = 0; lane < 8; ++lane)
        matrix[0].push_back(lane);
    EXPECT_THAT(ImportMatrix(matrix, "v(7)", ArrayType("a(7 downto 0)", 7, 0)), ElementsAre("0:111"));
    EXPECT_THAT(ImportMatrix(matrix, "v(8)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("0:111"));
    EXPECT_THAT(ImportMatrix(matrix, "v(8)", ArrayType("a(2 to 9)", 2, 9)), ElementsAre("0:110"));
}

TEST_F(MatLane, CorrectsTheIndexOfAnElementByTheBoundsOfTheWhole)
{
    WriteVariables({Matrix("v", {{1, 2, 3, 4}})});
    IStimulus::SetupAdditionalInfo("sig", ArrayType("words(5 downto 2)", 5, 2, IntegerType).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, IntegerType);
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(4)", IntegerType)), ElementsAre("0:2#11"));
    IStimulus::SetupAdditionalInfo("sig", ArrayType("bytes(1 to 4)", 1, 4, ByteType).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, ByteType.c_str());
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(4)", ByteType)), ElementsAre("0:100"));
}

TEST_F(MatLane, TakesTheSecondIndexOfAWholeArray)
{
    EXPECT_THAT(ImportMatrix({{1, 2, 3, 4}}, "v(9)(3)", ArrayType("a(5 downto 2)", 5, 2)), ElementsAre("0:10"));
    EXPECT_THAT(ImportMatrix({{1, 2, 3, 4}}, "v(9)(3)", ArrayType("a(5 downto 2)", 5, 2, IntegerType)),
                ElementsAre("0:10"));
}

TEST_F(MatLane, TakesTheFirstIndexOfTwoForAnElementOfAnArray)
{
    WriteVariables({Matrix("v", {{1, 2, 3, 4}})});
    IStimulus::SetupAdditionalInfo("sig", ArrayType("bytes(1 to 4)", 1, 4, ByteType).c_str());
    IStimulus::SetupAdditionalInfo(nullptr, ByteType.c_str());
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(3)(5)", ByteType)), ElementsAre("0:11"));
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(-1)(5)", ByteType)), ElementsAre("0:1"));
    EXPECT_THAT(SamplesOfHandle(ImportElement("t.mat,v(3)(5)", Words)), ElementsAre("failed"));
}

TEST_F(MatLane, RefusesIndicesThatDoNotFitTheType)
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

TEST_F(MatLane, DoesNotCountTheTimesAsALaneOfTheSignal)
{
    const std::vector<std::vector<double>> matrix = {{10, 1, 2}, {20, 3, 4}};
    EXPECT_THAT(ImportMatrix(matrix, "v(0) -time_points 1", RealType), ElementsAre("10:1", "20:3"));
    EXPECT_THAT(ImportMatrix(matrix, "v(1) -time_points 1", RealType), ElementsAre("10:2", "20:4"));
    EXPECT_THAT(ImportMatrix({{1, 10, 2}, {3, 20, 4}}, "v(0) -time_points 2", RealType), ElementsAre("10:1", "20:3"));
    EXPECT_THAT(ImportMatrix({{1, 10, 2}, {3, 20, 4}}, "v(1) -time_points 2", RealType), ElementsAre("10:2", "20:4"));
    EXPECT_THAT(ImportMatrix(matrix, "v -time_points 1", StdLogicType), ElementsAre("10:1", "20:1"));
}

TEST_F(MatLane, HasNoDataBeyondTheLastLane)
{
    EXPECT_THAT(ImportMatrix({{1, 2}, {3, 4}}, "v(2)", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}, {3, 4}}, "v(1) -time_points 1", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(1) -row", IntegerType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(0)(9)", ByteType), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(0)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("no data"));
    EXPECT_THAT(ImportMatrix({{1, 2}}, "v(-2147483648)", ArrayType("a(8 downto 1)", 8, 1)), ElementsAre("no data"));
    const std::string one = "2 KERNEL There is no data for sig";
    EXPECT_THAT(Messages(), ElementsAre(one + "(2).", one + "(1).", one + "(1).", one + "(0)(9).", one + "(0).",
                                        one + "(-2147483648)."));
    EXPECT_TRUE(g_SampleColumns.empty());
}

TEST_F(MatLane, DeliberatelyDoesNotTellThatABitHasNoLane)
{
    EXPECT_THAT(ImportMatrix({{1}, {2}}, "v -time_points 1", StdLogicType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL There are no events for signal `v' in file `t.mat'."));
}

}  // namespace
