// Formulas with "/mat", from the text to the stimulus.
#include <gmock/gmock.h>

#include "waveform/mat/matfiles.h"

using testing::ElementsAre;

namespace {

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
