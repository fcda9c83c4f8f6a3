#include "signaldata/model/scalardataimp.h"

#include "signaldata/datatools.h"

namespace {

using tesk::CScalarDataImp;
using testing::ElementsAre;

std::string ValueOf(tesk::IScalarData &scalar)
{
    return {static_cast<const char *>(scalar.GetValuePtr()), scalar.GetValueSize()};
}

class ScalarData : public testing::Test {
protected:
    tesk::TReference<CScalarDataImp> scalar{new CScalarDataImp(-1)};
};

TEST_F(ScalarData, BeginsEmpty)
{
    EXPECT_EQ(CountOf(*scalar), 1U);
    EXPECT_EQ(scalar->GetHandle(), -1);
    EXPECT_EQ(scalar->GetValueSize(), 0U);
    EXPECT_EQ(scalar->GetSignalCount(), 0U);
    EXPECT_EQ(std::string(static_cast<const char *>(scalar->GetValuePtr()), 10), std::string(10, 0));
}

TEST_F(ScalarData, TakesAHandleThatIsNotNegative)
{
    EXPECT_EQ(scalar->SetHandle(0), S_OK);
    EXPECT_EQ(scalar->GetHandle(), 0);
    EXPECT_EQ(scalar->SetHandle(-1), E_INVALIDARG);
    EXPECT_EQ(scalar->GetHandle(), 0);
}

TEST_F(ScalarData, KeepsSignalsOnceInRisingOrder)
{
    for (const int signal : {5, 1, 9, 5, 0})
        EXPECT_EQ(scalar->AddSignal(signal), S_OK);
    EXPECT_THAT(SignalsOf(*scalar), ElementsAre(0, 1, 5, 9));
    EXPECT_EQ(scalar->AddSignal(-1), E_INVALIDARG);
    EXPECT_EQ(scalar->RemoveSignal(5), S_OK);
    EXPECT_EQ(scalar->RemoveSignal(5), E_FAIL);
    EXPECT_EQ(scalar->RemoveSignal(-1), E_FAIL);
    EXPECT_THAT(SignalsOf(*scalar), ElementsAre(0, 1, 9));
    EXPECT_EQ(scalar->GetSignal(3), -1);
}

TEST_F(ScalarData, HoldsAValueOfUpToTenBytes)
{
    EXPECT_EQ(scalar->SetValue("0123456789", 10), S_OK);
    EXPECT_EQ(ValueOf(*scalar), "0123456789");
    EXPECT_EQ(scalar->SetValue("0123456789a", 11), E_INVALIDARG);
    EXPECT_EQ(scalar->SetValue(nullptr, 1), E_INVALIDARG);
    EXPECT_EQ(ValueOf(*scalar), "0123456789");
    EXPECT_EQ(scalar->SetValue("ab", 2), S_OK);
    EXPECT_EQ(ValueOf(*scalar), "ab");
    EXPECT_EQ(scalar->SetValue(nullptr, 0), S_OK);
    EXPECT_EQ(scalar->GetValueSize(), 0U);
}

TEST_F(ScalarData, ResetsItsValueToZero)
{
    scalar->SetValue("0123456789", 10);
    EXPECT_EQ(scalar->ResetValue(3), S_OK);
    EXPECT_EQ(ValueOf(*scalar), std::string(3, 0));
    EXPECT_EQ(std::string(static_cast<const char *>(scalar->GetValuePtr()), 10), std::string(10, 0));
    const struct {
        unsigned wanted, size;
    } rows[] = {{10, 10}, {11, 10}, {20, 10}, {0xFFFFFFFF, 10}, {0, 0}};
    for (const auto &row : rows) {
        EXPECT_EQ(scalar->ResetValue(row.wanted), S_OK);
        EXPECT_EQ(scalar->GetValueSize(), row.size) << row.wanted;
    }
}

TEST_F(ScalarData, GivesItsValueIntoABufferOfTheExactSize)
{
    scalar->SetValue("abc", 3);
    char buffer[4] = "xyz";
    EXPECT_EQ(scalar->GetValue(buffer, 2), E_INVALIDARG);
    EXPECT_STREQ(buffer, "xyz");
    EXPECT_EQ(scalar->GetValue(buffer, 3), S_OK);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(scalar->GetValue(nullptr, 10), E_INVALIDARG);
    scalar->ResetValue(0);
    EXPECT_EQ(scalar->GetValue(nullptr, 0), S_OK);
}

}  // namespace
