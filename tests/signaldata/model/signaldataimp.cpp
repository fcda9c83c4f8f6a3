#include <memory>

#include "platform/felvarbase.h"
#include "signal/unknown.h"
#include "signaldata/datatools.h"

namespace {

using testing::ElementsAre;

// Sets the hierarchy separator for one test.
class CSeparator {
public:
    explicit CSeparator(char separator) : m_before(GetVHDLHierarchySeparator())
    {
        SetVHDLHierarchySeparator(separator);
    }
    ~CSeparator() { SetVHDLHierarchySeparator(m_before); }

private:
    char m_before;
};

std::string PathOf(tesk::ISignalData &data)
{
    char buffer[256];
    return data.GetPath(buffer, 255) ? buffer : "(none)";
}

TEST(CreateSignalData, GivesAnObjectThatKnowsNothing)
{
    const auto data = MakeData();
    EXPECT_EQ(CountOf(*data), 1U);
    EXPECT_STREQ(data->GetFullName(), "");
    EXPECT_STREQ(data->GetName(), "");
    EXPECT_EQ(PathOf(*data), "");
    EXPECT_EQ(data->GetHandle(), -1);
    EXPECT_EQ(data->GetMode(), 0);
    EXPECT_EQ(data->GetMaxTime(), -1);
    EXPECT_EQ(data->GetTypeInfo(), nullptr);
    EXPECT_EQ(data->GetTypeInfo2(), nullptr);
    EXPECT_EQ(data->GetChildCount(), 0U);
    EXPECT_EQ(data->GetScalarCount(), 0U);
    EXPECT_EQ(data->GetReserved(), nullptr);
    EXPECT_EQ(data->Reserved(1), E_NOTIMPL);
    EXPECT_EQ(data->GetProperty("x"), nullptr);
    EXPECT_EQ(tesk::CreateSignalData(nullptr), E_INVALIDARG);
}

TEST(SignalDataCount, BeginsAtOne)
{
    tesk::ISignalData *data = MakeData().release();
    data->AddRef();
    EXPECT_EQ(data->Release(), 1U);
    EXPECT_EQ(data->Release(), 0U);
}

TEST(SignalDataName, IsBehindTheLastSeparator)
{
    const struct {
        char separator;
        const char *fullName, *path, *name;
    } rows[] = {
        {'/', "top/u1/sig", "top/u1/", "sig"},
        {'.', "top.u1.sig", "top.u1.", "sig"},
        {'.', "top/u1/sig", "", "top/u1/sig"},
        {'.', "sig", "", "sig"},
        {'.', ".sig", ".", "sig"},
        {'.', "top.", "top.", ""},
        {'.', "", "", ""},
        {'.', "\\a.b\\", "", "\\a.b\\"},      // the separator is part of the identifier
        {'.', "\\a.b\\.c", "\\a.b\\.", "c"},  // directly behind it
        {'.', "\\a.b\\.c.d", "\\a.b\\.c.", "d"},
        {'.', "\\a.b", "", "\\a.b"},              // an identifier without an end
        {'.', "top.\\a.b\\", "top.\\a.", "b\\"},  // one that is not at the beginning does not count
        {'\0', "top.sig", "", "top.sig"},
    };
    for (const auto &row : rows) {
        const CSeparator separator(row.separator);
        const auto data = MakeData();
        EXPECT_EQ(data->SetFullName(row.fullName), S_OK);
        EXPECT_STREQ(data->GetFullName(), row.fullName);
        EXPECT_STREQ(data->GetName(), row.name);
        EXPECT_EQ(PathOf(*data), row.path) << row.fullName;
    }
}

TEST(SignalDataName, MayBeMadeFromAPartOfItself)
{
    const auto data = MakeData();
    EXPECT_EQ(data->SetFullName("top.u1.sig"), S_OK);
    EXPECT_EQ(data->SetFullName(nullptr), E_INVALIDARG);
    EXPECT_EQ(data->SetFullName(data->GetName()), S_OK);
    EXPECT_STREQ(data->GetFullName(), "sig");
    EXPECT_STREQ(data->GetName(), "sig");
}

TEST(SignalDataPath, NeedsRoomForItsCharactersTheTerminatorNotCounted)
{
    const auto data = MakeData();
    data->SetFullName("top.u1.sig");  // a path of 7 characters
    char buffer[16] = "xxxxxxxxxxxxxxx";
    EXPECT_TRUE(data->GetPath(buffer, 7));
    EXPECT_STREQ(buffer, "top.u1.");
    EXPECT_FALSE(data->GetPath(buffer, 6));
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(data->GetPath(nullptr, 100));
    data->SetFullName("sig");
    EXPECT_TRUE(data->GetPath(buffer, 0));
    EXPECT_STREQ(buffer, "");
}

TEST(SignalDataPath, NeverWritesPastOneByteBehindTheStatedSize)
{
    const auto data = MakeData();
    data->SetFullName("top.u1.sig");
    for (unsigned size = 0; size <= 9; ++size) {
        const std::unique_ptr<char[]> buffer(new char[size + 1]);  // exactly, for the sanitizer
        EXPECT_EQ(data->GetPath(buffer.get(), size), size >= 7) << size;
    }
}

TEST(SignalDataType, ChangesOnlyToOneThatCanBeRead)
{
    const auto data = MakeData();
    EXPECT_EQ(data->SetTypeInfo(nullptr), E_INVALIDARG);
    EXPECT_EQ(data->SetTypeInfo(BitType), S_OK);
    for (const char *bad : {"", "nonsense", "e#3#bitc2 01 "})
        EXPECT_EQ(data->SetTypeInfo(bad), E_INVALIDARG) << bad;
    EXPECT_STREQ(data->GetTypeInfo()->GetTypeIdentifier(), "bit");
    EXPECT_EQ(data->GetTypeInfo2(), data->GetTypeInfo());
    EXPECT_EQ(data->SetTypeInfo(VectorType(2).c_str()), S_OK);
    EXPECT_EQ(data->SetTypeInfo(data->GetTypeInfo()->GetArrayElementTypeInfo()), S_OK);
    EXPECT_STREQ(data->GetTypeInfo()->GetTypeInfoString(), StdLogicType);
}

TEST(SignalDataProperties, AreFoundWhateverTheirCase)
{
    const auto data = MakeData();
    EXPECT_EQ(data->SetProperty(nullptr, "x"), E_FAIL);
    EXPECT_EQ(data->SetProperty("x", nullptr), E_FAIL);
    EXPECT_EQ(data->SetProperty("Key", "one"), S_OK);
    EXPECT_STREQ(data->GetProperty("KEY"), "one");
    EXPECT_EQ(data->SetProperty("kEY", data->GetProperty("key") + 1), S_OK);
    EXPECT_STREQ(data->GetProperty("Key"), "ne");
    EXPECT_EQ(data->GetProperty(nullptr), nullptr);
}

TEST(SignalDataScalars, StandOnceInRisingOrder)
{
    const auto data = MakeData();
    for (const int handle : {0, 3, 3, 7, 0})
        EXPECT_EQ(data->AddScalar(handle), S_OK);
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(0, 3, 7));
    EXPECT_EQ(data->AddScalar(-1), E_INVALIDARG);
    EXPECT_EQ(data->GetScalar(3), -1);
    data->ClearScalars();
    EXPECT_EQ(data->GetScalarCount(), 0U);
}

TEST(SignalDataScalars, AreDeliberatelyAppendedEvenIfTheyBelongInFront)
{
    const auto data = MakeData();
    for (const int handle : {5, 3, 9, 3})
        data->AddScalar(handle);
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(5, 3, 9, 3)) << "the search takes the list for sorted, and misses the 3";
}

// An array of two records, each with a vector of two elements and an integer.
CMemoryList RecordList()
{
    const std::string record = RecordType({{"v", VectorType(2)}, {"n", IntegerType}});
    CMemoryList list;
    list.AddBus(1, "top.a", ArrayType("a(0 to 1)", 1, "rict0 1", record), {10, 20});
    for (const int element : {10, 20}) {
        list.AddBus(element, "top.a(" + std::to_string(element / 10 - 1) + ")", record, {element + 1, element + 4});
        list.AddBus(element + 1, "v", VectorType(2), {element + 2, element + 3});
        list.AddLeaf(element + 2, "v(1)");
        list.AddLeaf(element + 3, "v(0)");
        list.AddLeaf(element + 4, "n", IntegerType);
    }
    list.rows[1].mode = 4;
    list.rows[1].maxTime = 99;
    list.rows[1].properties = {{"Stimulator", "info"}, {"VBus", "1"}, {"Color", "3"}};
    list.rows[23].maxTime = 7;
    return list;
}

TEST(SignalDataInit, FillsTheTreeAndListsAllLeavesAtTheTop)
{
    CMemoryList list = RecordList();
    const auto data = MakeData();
    ASSERT_EQ(data->Init(&list, 1), S_OK);
    EXPECT_STREQ(data->GetFullName(), "top.a");
    EXPECT_STREQ(data->GetName(), "a");
    EXPECT_EQ(data->GetHandle(), -1) << "deliberately left to the caller";
    EXPECT_EQ(data->GetMode(), 4);
    EXPECT_EQ(data->GetMaxTime(), 99);
    EXPECT_STREQ(data->GetProperty("Stimulator"), "info");
    EXPECT_STREQ(data->GetProperty("VBus"), "1");
    EXPECT_EQ(data->GetProperty("Color"), nullptr) << "only these two are taken";
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(12, 13, 14, 22, 23, 24));
    ASSERT_EQ(data->GetChildCount(), 2U);
    tesk::ISignalData *element = data->GetChild(1);
    EXPECT_STREQ(element->GetFullName(), "top.a(1)");
    EXPECT_EQ(element->GetScalarCount(), 0U);
    EXPECT_EQ(CountOf(*element), 1U);
    tesk::ISignalData *leaf = element->GetChild(0)->GetChild(1);
    EXPECT_EQ(leaf->GetMaxTime(), 7);
    EXPECT_EQ(leaf->GetScalarCount(), 0U);
    EXPECT_EQ(data->GetChild(2), nullptr);
}

TEST(SignalDataInit, OfALeafListsItself)
{
    CMemoryList list = RecordList();
    const auto data = MakeData();
    ASSERT_EQ(data->Init(&list, 14), S_OK);
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(14));
    list.rows[1].isBus = false;
    ASSERT_EQ(data->Init(&list, 1), S_OK);
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(1));
    EXPECT_EQ(data->GetChildCount(), 0U);
}

TEST(SignalDataInit, OfARowWithoutATypeMakesAStdLogic)
{
    CMemoryList list;
    list.AddLeaf(5, "s", "");
    const auto data = MakeData();
    ASSERT_EQ(data->Init(&list, 5), S_OK);
    EXPECT_STREQ(data->GetTypeInfo()->GetTypeIdentifier(), "std_logic");
}

TEST(SignalDataInit, StartsAfresh)
{
    CMemoryList list = RecordList();
    const auto data = MakeData();
    data->Init(&list, 1);
    data->SetHandle(7);
    EXPECT_EQ(data->Init(&list, -1), E_FAIL);
    EXPECT_STREQ(data->GetFullName(), "");
    EXPECT_STREQ(data->GetName(), "");
    EXPECT_EQ(data->GetHandle(), -1);
    EXPECT_EQ(data->GetMode(), 0);
    EXPECT_EQ(data->GetMaxTime(), -1);
    EXPECT_EQ(data->GetProperty("VBus"), nullptr);
    EXPECT_EQ(data->GetTypeInfo(), nullptr);
    EXPECT_EQ(data->GetChildCount(), 0U);
    EXPECT_EQ(data->GetScalarCount(), 0U);
}

TEST(SignalDataInit, WithoutAListChangesNothing)
{
    const auto data = MakeData(7);
    EXPECT_EQ(data->Init(nullptr, 1), E_INVALIDARG);
    EXPECT_EQ(data->GetHandle(), 7);
}

TEST(SignalDataInit, KeepsWhatItReachedOnFailure)
{
    CMemoryList list = RecordList();
    list.rows[23].type = "nonsense";
    const auto data = MakeData();
    EXPECT_EQ(data->Init(&list, 1), E_FAIL);
    EXPECT_THAT(ScalarsOf(*data), ElementsAre(12, 13, 14, 22));
    EXPECT_EQ(data->GetChildCount(), 2U);
    EXPECT_EQ(data->GetChild(1)->GetChildCount(), 1U);

    list = RecordList();
    list.rows[20].elements = 3;  // there are two
    EXPECT_EQ(data->Init(&list, 1), E_FAIL);
    EXPECT_EQ(data->GetChild(1)->GetChildCount(), 3U) << "the child that failed stays too";
}

TEST(SignalDataInit, MakesNoChildrenForANegativeNumber)
{
    CMemoryList list = RecordList();
    list.rows[1].elements = -1;
    const auto data = MakeData();
    EXPECT_EQ(data->Init(&list, 1), S_OK);
    EXPECT_EQ(data->GetChildCount(), 0U);
    EXPECT_EQ(data->GetScalarCount(), 0U);
}

TEST(SignalDataInit, GivesUpOnChildrenThatFormACycleOrNestTooDeep)  // hostile input
{
    CMemoryList list;
    list.AddBus(1, "a", VectorType(2), {2, 2});
    list.AddBus(2, "b", VectorType(2), {1, 1});
    for (int id = 10; id < 100000; ++id)
        list.AddBus(id, "deep", VectorType(1), {id + 1});
    list.AddLeaf(100000, "end");
    const auto data = MakeData();
    EXPECT_EQ(data->Init(&list, 1), E_FAIL);
    EXPECT_EQ(data->Init(&list, 10), E_FAIL);
    EXPECT_EQ(data->Init(&list, 99999), S_OK);
}

TEST(SignalDataFindByName, SearchesTheTreeDepthFirst)
{
    CMemoryList list = RecordList();
    const auto data = MakeData();
    data->Init(&list, 1);
    EXPECT_EQ(data->FindByName("top.a"), data.get());
    EXPECT_EQ(data->FindByName("top.a(1)"), data->GetChild(1));
    EXPECT_EQ(data->FindByName("n"), data->GetChild(0)->GetChild(1)) << "the first of two";
    EXPECT_EQ(data->FindByName("v(0)"), data->GetChild(0)->GetChild(0)->GetChild(1));
    EXPECT_EQ(data->FindByName("a"), nullptr) << "full names are compared";
    EXPECT_EQ(data->FindByName("TOP.A"), nullptr);
    EXPECT_EQ(data->FindByName(nullptr), nullptr);
}

TEST(SignalDataFindByName, FollowsTheCaseSettingOfTheHierarchy)
{
    const auto data = MakeData();
    data->SetFullName("Top.A");
    SetHierarchyCaseSensitive(false);
    EXPECT_EQ(data->FindByName("top.a"), data.get());
    SetHierarchyCaseSensitive(true);
    EXPECT_EQ(data->FindByName("top.a"), nullptr);
}

TEST(SignalDataClearScalars, ReachesTheWholeTree)
{
    CMemoryList list = RecordList();
    const auto data = MakeData();
    data->Init(&list, 1);
    tesk::ISignalData *leaf = data->GetChild(1)->GetChild(1);
    leaf->AddScalar(5);
    data->ClearScalars();
    EXPECT_EQ(data->GetScalarCount(), 0U);
    EXPECT_EQ(leaf->GetScalarCount(), 0U);
}

TEST(SignalData, KeepsAChildThatIsHeldElsewhere)
{
    CMemoryList list = RecordList();
    auto data = MakeData();
    data->Init(&list, 1);
    tesk::ISignalData *child = data->GetChild(1);
    child->AddRef();
    data.reset();
    EXPECT_STREQ(child->GetFullName(), "top.a(1)");
    EXPECT_EQ(child->Release(), 0U);
}

}  // namespace
