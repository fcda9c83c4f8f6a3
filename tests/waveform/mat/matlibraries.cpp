#include "waveform/mat/matlibraries.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <cerrno>

#include "platform/loader.h"
#include "testpaths.h"
#include "waveform/fakematlab/installed.h"
#include "waveform/mat/matfiles.h"

using testing::ElementsAre;

namespace {

class MatLibrariesBinding : public testing::Test {
protected:
    MatLibrariesBinding() { ReleaseMatLibraries(); }
    ~MatLibrariesBinding() override { ReleaseMatLibraries(); }
};

TEST_F(MatLibrariesBinding, IsThereWithTheBundledLibraries)
{
    EXPECT_TRUE(LoadMatLibraries());
    EXPECT_TRUE(LoadMatLibraries());
}

TEST_F(MatLibrariesBinding, NeedsEveryEntryPoint)
{
    const struct {
        const char *library;
        std::vector<const char *> entries;
    } rows[] = {
        {"libmat.so", {"matOpen", "matClose", "matGetVariable"}},
        {"libmx.so",
         {"mxGetClassID", "mxGetNumberOfDimensions", "mxGetNumberOfElements", "mxGetNumberOfFields", "mxGetDimensions",
          "mxGetPr", "mxGetNaN", "mxIsNaN", "mxIsStruct", "mxGetFieldNumber", "mxGetFieldNameByNumber", "mxGetField"}},
    };
    for (const auto &row : rows) {
        for (const char *entry : row.entries) {
            const CMatlabCopy incomplete;
            incomplete.Rename(row.library, entry);
            const CInstalledMatlab installed(incomplete.Root());
            ReleaseMatLibraries();
            EXPECT_FALSE(LoadMatLibraries()) << entry;
            CFileFormulaArgs args;
            EXPECT_EQ(ImportMatFile(0, args, nullptr), 0) << entry;
        }
    }
}

TEST_F(MatLibrariesBinding, IsNotTriedAgainBeforeTheEndOfTheSimulation)
{
    {
        const CMatlabCopy incomplete;
        incomplete.Rename("libmx.so", "mxGetNaN");
        const CInstalledMatlab installed(incomplete.Root());
        EXPECT_FALSE(LoadMatLibraries());
    }
    EXPECT_FALSE(LoadMatLibraries());
    IStimulus::OnEndsim();
    EXPECT_TRUE(LoadMatLibraries());
}

TEST_F(MatLibrariesBinding, IsGivenUpAtTheEndOfTheSimulation)
{
    ASSERT_TRUE(LoadMatLibraries());
    const HMODULE libmat = LoadLibraryA("libmat.dll");
    const HMODULE libmx = LoadLibraryA("libmx.dll");
    FreeLibrary(libmat);
    FreeLibrary(libmx);
    EXPECT_NE(GetProcAddress(libmat, "matOpen"), nullptr);
    EXPECT_NE(GetProcAddress(libmx, "mxGetNaN"), nullptr);
    IStimulus::OnEndsim();
    EXPECT_EQ(GetProcAddress(libmat, "matOpen"), nullptr);
    EXPECT_EQ(GetProcAddress(libmx, "mxGetNaN"), nullptr);
}

TEST_F(MatLibrariesBinding, ThatFailsHoldsNoLibrary)
{
    const CMatlabCopy incomplete;
    incomplete.Rename("libmx.so", "mxGetNaN");
    const CInstalledMatlab installed(incomplete.Root());
    const HMODULE libmat = LoadLibraryA("libmat.dll");
    ASSERT_NE(GetProcAddress(libmat, "matOpen"), nullptr);
    EXPECT_FALSE(LoadMatLibraries());
    FreeLibrary(libmat);
    EXPECT_EQ(GetProcAddress(libmat, "matOpen"), nullptr);
}

// Imports from a MATLAB that is made up.
class MadeUpMatlab : public CMatTest {
protected:
    MadeUpMatlab() : m_installed(TESK_FAKE_MATLAB) { ReleaseMatLibraries(); }

    const CInstalledMatlab m_installed;
};

TEST_F(MadeUpMatlab, IsUsedIfItIsInstalled)
{
    EXPECT_THAT(ImportMat("there,good", RealType), ElementsAre("0:1", "1:2"));
    EXPECT_THAT(ImportMat("there,good(2)", RealType), ElementsAre("0:5", "1:6"));
    EXPECT_THAT(ImportMat("there,structure(6).f", RealType), ElementsAre("0:1", "1:2"));
    EXPECT_THAT(ImportMat("elsewhere,good", RealType), ElementsAre("failed"));
}

TEST_F(MadeUpMatlab, MayCountSizesIn32Bits)
{
    EXPECT_THAT(ImportMat("there,narrow(2)", RealType), ElementsAre("0:5", "1:6"));
    EXPECT_THAT(ImportMat("there,narrow -row", RealType), ElementsAre("0:1", "1:3", "2:5"));
    EXPECT_THAT(ImportMat("there,good -time_var narrow(2,3)", RealType), ElementsAre("failed")) << "no vector";
    EXPECT_EQ(ImportMat("there,narrowempty", RealType), ImportMat("there,nothing", RealType));
}

TEST_F(MadeUpMatlab, MayHaveVariablesOfOneDimension)
{
    const std::string bits = VectorType(8);
    EXPECT_THAT(ImportMat("there,line", RealType).size(), 6U);
    EXPECT_THAT(ImportMat("there,line", bits).size(), 6U);
    EXPECT_THAT(ImportMat("there,line(3)", bits).size(), 6U);
    EXPECT_THAT(ImportMat("there,line(1)(3)", bits).size(), 6U) << "the second index counts as absent";
    EXPECT_THAT(ImportMat("there,line(3)", RealType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("there,line", ArrayType("a", 3, 0, IntegerType)), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("there,line -time_points 1", RealType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("there,good -time_var line", RealType), ElementsAre("1:1", "2:2"));
    EXPECT_THAT(ImportMat("there,good -time_var point", RealType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("there,row(2).f", RealType), ElementsAre("0:1", "1:2"));
    EXPECT_THAT(ImportMat("there,row(1,1).f", RealType), ElementsAre("failed"));
}

TEST_F(MadeUpMatlab, IsNotBelievedEverything)
{
    for (const char *name : {"nosizes", "nodata", "negative", "fewer", "more", "integers", "deep", "nofields",
                             "nullfields", "nofields.f", "nullfields.f", "structure.g", "structure(7).f"}) {
        for (const std::string &type : {std::string(RealType), std::string(StdLogicType), VectorType(8)}) {
            EXPECT_THAT(ImportMat(std::string("there,") + name, type), ElementsAre("failed")) << name;
            EXPECT_THAT(ImportMat(std::string("there,good -time_var ") + name, type), ElementsAre("failed")) << name;
        }
    }
    ImportMat("there,negativerank", RealType);
    ImportMat("there,nosizes(1,2,3).f", RealType);
    EXPECT_THAT(ImportMat("there,nothing", RealType), ElementsAre("no data"));
    EXPECT_THAT(ImportMat("there,nothing", StdLogicType), ElementsAre("failed"));
    EXPECT_THAT(ImportMat("there,hugesizes", RealType), ElementsAre("failed"));
}

TEST(MatImportProcess, LeavesNoProcessAndNoDescriptorBehind)
{
    const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = descriptors();
    CFileFormulaArgs args;
    args.m_file = TESK_SOURCE_DIR "/tests/data/octave7";
    args.m_signal = "m";
    const tesk::TReference<ISignal> signal = MakeSignal(RealType);
    for (int i = 0; i < 5; ++i)
        EXPECT_GT(ImportMatFile(0, args, signal.get()), 0);
    IStimulus::OnEndsim();
    EXPECT_EQ(descriptors(), before);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace
