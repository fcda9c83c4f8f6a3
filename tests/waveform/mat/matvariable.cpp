#include "waveform/mat/matvariable.h"

#include <gmock/gmock.h>

#include "testpaths.h"
#include "waveform/mat/matfiles.h"

using testing::ElementsAre;

namespace {

class MatVariable : public CMatTest {};

std::string SampleFile(const std::string &name)
{
    return TESK_SOURCE_DIR "/tests/data/" + name;
}

TEST_F(MatVariable, FindsAFileWithoutItsExtension)
{
    m_folder.Write("t.mat", MatFileBytes({Matrix("v", {{1}})}));
    CFileFormulaArgs args;
    ASSERT_TRUE(ParseMatArgs("t,v", args));
    EXPECT_EQ(ImportMatFile(0, args, MakeSignal(IntegerType).get()), 1);
    EXPECT_EQ(std::string(args.m_file), "t.mat");
}

TEST_F(MatVariable, SaysNothingOfAFileThatCannotBeOpened)
{
    m_folder.Write("bad.mat", "time,value\n1,2\n");
    for (const char *file : {"missing", "bad.mat", "."})
        EXPECT_THAT(ImportMat(std::string(file) + ",v", IntegerType), ElementsAre("failed")) << file;
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatVariable, SaysNothingOfAnIndexWithoutBeginning)
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

TEST_F(MatVariable, NamesTheVariableThatIsNotThere)
{
    WriteVariables({Matrix("v", {{1}})});
    EXPECT_THAT(ImportMat("t,w(3)", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("t", IntegerType), ElementsAre("failed"));
    EXPECT_THAT(Messages(), ElementsAre("1 KERNEL Cannot find `w' variable in file `t.mat'.",
                                        "1 KERNEL Cannot find `' variable in file `t.mat'."));
}

TEST_F(MatVariable, RefusesVariablesThatAreNoMatrixOfDoubles)
{
    for (const char *name : {"i8", "u64", "sg", "txt", "lg", "sp", "ce", "s", "sa", "n3"}) {
        EXPECT_THAT(ImportMat(SampleFile("octave7.mat") + "," + name, IntegerType), ElementsAre("failed")) << name;
        EXPECT_THAT(ImportMat(SampleFile("octave7.mat") + ",m -time_var " + name, IntegerType), ElementsAre("failed"))
            << name;
    }
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MatVariable, FollowsAPathThroughStructures)
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

TEST_F(MatVariable, DeliberatelyCountsElementsOfStructuresInAnOrderOfItsOwn)
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
    EXPECT_THAT(ImportMat(path + "sa(1,1,2).v", RealType), ElementsAre("0:21")) << "one index more than there are";
}

TEST_F(MatVariable, FindsNothingOnAPathThatLeadsNowhere)
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

TEST_F(MatVariable, TestsTheIndexOfAPlainVariableOnly)
{
    WriteVariables({Matrix("v", {{1}, {2}}), Matrix("t", {{3, 7}})});
    EXPECT_THAT(ImportMat("t.mat,v -time_var t(1,2)", IntegerType), ElementsAre("3:2#1", "7:2#10"));
    for (const char *index : {"t(3)", "t(0)", "t(1", "t(", "t(2,2)"})
        EXPECT_THAT(ImportMat(std::string("t.mat,v -time_var ") + index, IntegerType), ElementsAre("failed")) << index;
}

}  // namespace
