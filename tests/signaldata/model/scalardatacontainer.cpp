#include <map>
#include <random>
#include <set>

#include "signal/unknown.h"
#include "signaldata/datatools.h"

namespace {

using testing::ElementsAre;

std::vector<int> HandlesIn(tesk::IScalarDataContainer &container)
{
    std::vector<int> handles;
    for (unsigned i = 0; i < container.GetCount(); ++i)
        handles.push_back(container.GetAt(i)->GetHandle());
    return handles;
}

std::vector<unsigned> SizesOf(tesk::IScalarDataContainer &scalars, tesk::ISignalData &data)
{
    std::vector<unsigned> sizes;
    for (const int handle : ScalarsOf(data))
        sizes.push_back(scalars.Find(handle) != nullptr ? scalars.Find(handle)->GetValueSize() : 99);
    return sizes;
}

TEST(ScalarTable, IsSortedByHandle)
{
    const auto scalars = MakeScalars();
    EXPECT_EQ(CountOf(*scalars), 1U);
    for (const int handle : {5, 1, 9, 5, 0})
        EXPECT_EQ(scalars->Link(handle, 1), S_OK);
    EXPECT_THAT(HandlesIn(*scalars), ElementsAre(0, 1, 5, 9));
    EXPECT_EQ(scalars->GetAt(4), nullptr);
    EXPECT_EQ(scalars->Find(9), scalars->GetAt(3));
    for (const int handle : {-1, 2, 10, 2147483647})
        EXPECT_EQ(scalars->Find(handle), nullptr) << handle;
    EXPECT_EQ(tesk::CreateScalarDataContainer(nullptr), E_INVALIDARG);
}

TEST(ScalarTable, KeepsAScalarExactlyAsLongAsASignalUsesIt)
{
    const auto scalars = MakeScalars();
    EXPECT_EQ(scalars->Link(5, 1), S_OK);
    EXPECT_EQ(scalars->Link(5, 2), S_OK);
    EXPECT_EQ(scalars->Unlink(5, 1), S_OK);
    EXPECT_THAT(SignalsOf(*scalars->Find(5)), ElementsAre(2));
    EXPECT_EQ(scalars->Unlink(5, 7), S_OK) << "a signal that does not use it";
    EXPECT_EQ(scalars->Unlink(5, 2), S_OK);
    EXPECT_EQ(scalars->Find(5), nullptr);
    EXPECT_EQ(scalars->Unlink(5, 2), E_INVALIDARG);
}

TEST(ScalarTable, RefusesNegativeHandles)
{
    const auto scalars = MakeScalars();
    EXPECT_EQ(scalars->Link(-1, 1), E_INVALIDARG);
    EXPECT_EQ(scalars->Link(1, -1), E_INVALIDARG);
    EXPECT_EQ(scalars->GetCount(), 0U);
    scalars->Link(1, 1);
    EXPECT_EQ(scalars->Unlink(-1, 1), E_INVALIDARG);
    EXPECT_EQ(scalars->Unlink(1, -1), E_INVALIDARG);
    EXPECT_EQ(scalars->GetCount(), 1U);
}

TEST(ScalarTable, LeavesAScalarThatIsHeldElsewhereAlive)
{
    auto scalars = MakeScalars();
    scalars->Link(5, 1);
    scalars->Link(6, 1);
    tesk::IScalarData *scalar = scalars->Find(5);
    scalar->AddRef();
    scalars->Clear();
    EXPECT_EQ(scalars->GetCount(), 0U);
    EXPECT_EQ(scalar->GetHandle(), 5);
    EXPECT_EQ(scalar->Release(), 0U);
    scalars->Link(5, 1);
    EXPECT_EQ(scalars->GetCount(), 1U);
}

TEST(ScalarTable, SurvivesAScalarWhoseHandleACallerChanged)
{
    const auto scalars = MakeScalars();
    for (const int handle : {1, 2, 3})
        scalars->Link(handle, 1);
    scalars->Find(2)->SetHandle(9);
    for (int handle = 0; handle < 12; ++handle)
        scalars->Find(handle);
    EXPECT_EQ(scalars->Find(2), nullptr);
    EXPECT_EQ(scalars->Find(9), scalars->GetAt(1)) << "found under its new handle, where the order allows";
    EXPECT_EQ(scalars->Link(2, 1), S_OK);
    scalars->Unlink(9, 1);
}

TEST(LinkSignal, LinksEveryScalarOfASignal)
{
    const auto scalars = MakeScalars();
    const auto first = MakeData(100, {1, 2, 3}), second = MakeData(200, {2, 3, 4});
    EXPECT_EQ(scalars->LinkSignal(first.get()), S_OK);
    EXPECT_EQ(scalars->LinkSignal(second.get()), S_OK);
    EXPECT_THAT(HandlesIn(*scalars), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(SignalsOf(*scalars->Find(2)), ElementsAre(100, 200));
    EXPECT_EQ(scalars->UnlinkSignal(first.get()), S_OK);
    EXPECT_THAT(HandlesIn(*scalars), ElementsAre(2, 3, 4));
    EXPECT_EQ(scalars->UnlinkSignal(second.get()), S_OK);
    EXPECT_EQ(scalars->GetCount(), 0U);
}

TEST(LinkSignal, StopsAtTheFirstFailure)
{
    const auto scalars = MakeScalars();
    EXPECT_EQ(scalars->LinkSignal(nullptr), E_INVALIDARG);
    EXPECT_EQ(scalars->UnlinkSignal(nullptr), E_INVALIDARG);
    EXPECT_EQ(scalars->LinkSignal(MakeData(-1, {1, 2}).get()), E_INVALIDARG);
    EXPECT_EQ(scalars->GetCount(), 0U);
    EXPECT_EQ(scalars->LinkSignal(MakeData(-1).get()), S_OK) << "no scalars, nothing to fail";
    const auto data = MakeData(100, {1, 2, 3});
    scalars->LinkSignal(data.get());
    scalars->Unlink(2, 100);
    EXPECT_EQ(scalars->UnlinkSignal(data.get()), E_INVALIDARG);
    EXPECT_THAT(HandlesIn(*scalars), ElementsAre(3));
}

TEST(ScalarTable, AgreesWithAMapOfSets)  // differential
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> numbers(0, 12);
    const auto scalars = MakeScalars();
    std::map<int, std::set<int>> expected;
    for (int step = 0; step < 5000; ++step) {
        const int scalar = numbers(random), signal = numbers(random);
        if (random() % 2 == 0) {
            ASSERT_EQ(scalars->Link(scalar, signal), S_OK);
            expected[scalar].insert(signal);
        } else {
            ASSERT_EQ(scalars->Unlink(scalar, signal), expected.count(scalar) != 0 ? S_OK : E_INVALIDARG);
            expected[scalar].erase(signal);
            if (expected[scalar].empty())
                expected.erase(scalar);
        }
        ASSERT_EQ(scalars->GetCount(), expected.size());
        unsigned index = 0;
        for (const auto &[handle, signals] : expected) {
            ASSERT_EQ(scalars->GetAt(index)->GetHandle(), handle);
            ASSERT_EQ(SignalsOf(*scalars->GetAt(index++)), std::vector<int>(signals.begin(), signals.end()));
        }
    }
}

// A signal of a type with scalars 0, 1, 2 ..., all linked.
class ValueSizes : public testing::Test {
protected:
    long Init(const std::string &type, int count)
    {
        data = MakeData(7);
        for (int i = 0; i < count; ++i)
            data->AddScalar(i);
        EXPECT_EQ(data->SetTypeInfo(type.c_str()), S_OK) << type;
        scalars = MakeScalars();
        scalars->LinkSignal(data.get());
        return scalars->InitValueSizes(data.get());
    }

    std::vector<unsigned> Sizes() { return SizesOf(*scalars, *data); }

    tesk::TReference<tesk::ISignalData> data = MakeData();
    tesk::TReference<tesk::IScalarDataContainer> scalars = MakeScalars();
};

TEST_F(ValueSizes, OfAScalarIsThatOfItsType)
{
    EXPECT_EQ(Init(StdLogicType, 1), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1));
    EXPECT_EQ(Init(IntegerType, 2), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(4, 0));
    EXPECT_EQ(Init(RealType, 1), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(8));
}

TEST_F(ValueSizes, OfAVectorAreTheSizeOfAnElement)
{
    EXPECT_EQ(Init(VectorType(4), 4), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1, 1, 1, 1));
    EXPECT_EQ(Init(VectorType(4), 5), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1, 1, 1, 1, 0));
    EXPECT_EQ(Init(VectorType(4), 3), E_UNEXPECTED);
    EXPECT_THAT(Sizes(), ElementsAre(0, 0, 0));
    EXPECT_EQ(Init("a#16#std_logic_vector1 riut0 2147483647 estd_logic c9 UX01ZWLH-", 3), E_UNEXPECTED);
}

TEST_F(ValueSizes, OfARecordFollowItsFields)
{
    EXPECT_EQ(Init(RecordType({{"a", BitType}, {"v", VectorType(2)}, {"r", RealType}, {"n", IntegerType}}), 5), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1, 1, 1, 8, 4));
}

TEST_F(ValueSizes, OfARecordDeliberatelyGoOnBehindAFieldThatFails)
{
    const std::string type = RecordType({{"v", VectorType(9)}, {"n", IntegerType}});
    EXPECT_EQ(Init(type, 2), S_OK) << "the last field's result";
    EXPECT_THAT(Sizes(), ElementsAre(4, 0));
    EXPECT_EQ(Init(RecordType({{"n", IntegerType}, {"m", IntegerType}}), 1), E_INVALIDARG);
}

TEST_F(ValueSizes, OfAnArrayOfRecordsFollowEveryElement)
{
    const std::string record = RecordType({{"b", BitType}, {"n", IntegerType}});
    EXPECT_EQ(Init(ArrayType("a", 1, "rict0 2", record), 6), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1, 4, 1, 4, 1, 4));
    EXPECT_EQ(Init(ArrayType("a", 1, "rict0 2", record), 5), E_INVALIDARG);
    EXPECT_THAT(Sizes(), ElementsAre(1, 4, 1, 4, 1));
}

TEST_F(ValueSizes, OfAnArrayOfVectorsFollowEveryElement)
{
    EXPECT_EQ(Init(ArrayType("a", 1, "rict0 1", VectorType(2)), 4), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(1, 1, 1, 1));
}

TEST_F(ValueSizes, OfAnArrayDeliberatelyCountItsElementsOnceForEachDimension)
{
    const std::string type = ArrayType("a", 2, "rict0 1 rict0 1", IntegerType);
    EXPECT_EQ(Init(type, 4), E_INVALIDARG) << "8 are wanted";
    EXPECT_THAT(Sizes(), ElementsAre(4, 4, 4, 4));
    EXPECT_EQ(Init(type, 8), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(4, 4, 4, 4, 4, 4, 4, 4));
}

TEST_F(ValueSizes, NeedSignalTypeAndScalars)
{
    EXPECT_EQ(scalars->InitValueSizes(nullptr), E_INVALIDARG);
    EXPECT_EQ(scalars->InitValueSizes(MakeData(1, {1}).get()), E_UNEXPECTED);
    const auto none = MakeData(1);
    none->SetTypeInfo(BitType);
    EXPECT_EQ(scalars->InitValueSizes(none.get()), E_UNEXPECTED);
}

TEST_F(ValueSizes, NeedEveryScalarInTheTable)
{
    EXPECT_EQ(Init(VectorType(3), 3), S_OK);
    scalars->Unlink(1, 7);
    scalars->Find(0)->ResetValue(9);
    scalars->Find(2)->ResetValue(9);
    EXPECT_EQ(scalars->InitValueSizes(data.get()), E_INVALIDARG);
    EXPECT_THAT(Sizes(), ElementsAre(1, 99, 9)) << "a vector stops at the missing one";

    EXPECT_EQ(Init(RecordType({{"a", IntegerType}, {"b", IntegerType}}), 2), S_OK);
    scalars->Unlink(0, 7);
    scalars->Find(1)->ResetValue(9);
    EXPECT_EQ(scalars->InitValueSizes(data.get()), S_OK) << "the missing one counts as done";
    EXPECT_THAT(Sizes(), ElementsAre(99, 4));
}

TEST_F(ValueSizes, OfArraysThatNeverFailAndUseUpNothingAreSoonDone)  // hostile input
{
    const std::string empty = "r#1#r0 ";
    const std::string endless = "rict-2147483648 2147483647 rict-2147483648 2147483647";
    EXPECT_EQ(Init(ArrayType("a", 2, endless, empty), 3), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(0, 0, 0));

    // Each round uses up scalars, fails beyond the last one, and says that all is well.
    const std::string record = RecordType({{"n", IntegerType}, {"e", empty}});
    EXPECT_EQ(Init(ArrayType("a", 2, endless, record), 3), S_OK);
    EXPECT_THAT(Sizes(), ElementsAre(4, 4, 4));

    std::string nested = record;
    for (int depth = 0; depth < 60; ++depth)
        nested = ArrayType("a", 2, endless, nested);
    EXPECT_EQ(Init(nested, 1000), S_OK);
}

}  // namespace
