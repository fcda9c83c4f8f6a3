#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

std::string Leaf()
{
    return Word(0) + Word(0);
}

TEST(ContainerLoad, NeedsACount)
{
    const TReference<ISignalContainer> container = MakeContainer();
    CMemoryStream empty, none(Word(0));
    EXPECT_EQ(container->Load(&empty, nullptr), E_FAIL);
    EXPECT_EQ(container->Load(&none, nullptr), E_FAIL) << "which is how a signal learns that it is a leaf";
    EXPECT_EQ(container->Load(nullptr, nullptr), E_INVALIDARG);
}

TEST(ContainerLoad, MakesSignalsOfStandardTypeOne)
{
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> parent = MakeEmpty();
    CMemoryStream stream(Word(2) + Leaf() + Word(1) + Pair("Color", "3") + Word(0));
    EXPECT_EQ(container->Load(&stream, parent.get()), S_OK);
    ASSERT_EQ(container->GetCount(), 2U);
    ISignal *signal = ChildAt(container.get(), 1);
    EXPECT_EQ(signal->GetColor(), 3);
    EXPECT_EQ(signal->GetStdType(), 1);
    EXPECT_STREQ(signal->GetTypeInfo()->GetTypeIdentifier(), "std_logic");
    EXPECT_EQ(signal->GetParent(), parent.get());
    EXPECT_EQ(ReferencesTo(*signal), 1U);
    EXPECT_EQ(container->GetMaxTime(), 0);
}

TEST(ContainerLoad, PassesOverWhatCannotBeRead)
{
    const TReference<ISignalContainer> container = MakeContainer();
    CMemoryStream stream(Word(5) + Leaf() + Leaf());
    EXPECT_EQ(container->Load(&stream, nullptr), S_OK);
    EXPECT_EQ(container->GetCount(), 2U);
}

TEST(ContainerLoad, ReadsWhatSaveWrote)
{
    const TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "v", VectorType(2))->SetColor(1);
    AddNamed(*container, "r", RecordType({{"a", BitType}}))->SetColor(2);
    CMemoryStream stream;
    ASSERT_EQ(container->Save(&stream), S_OK);
    const TReference<ISignalContainer> loaded = MakeContainer();
    ASSERT_EQ(loaded->Load(&stream, nullptr), S_OK);
    CMemoryStream again;
    ASSERT_EQ(loaded->Save(&again), S_OK);
    EXPECT_EQ(again.bytes, stream.bytes);

    CMemoryStream empty;
    EXPECT_EQ(MakeContainer()->Save(&empty), S_OK);
    EXPECT_EQ(loaded->Load(&empty, nullptr), E_FAIL);
}

CMemoryDatabase SmallDatabase()
{
    CMemoryDatabase database;
    database.roots = {1, 2};
    database.endTime = 500;
    database.signals[1] = {"clk", StdLogicType, {}, 3, 400};
    database.signals[2] = {"bus", VectorType(2), {5, 6}, 4, 300};
    database.signals[5] = {"[1]", StdLogicType, {}, 5, 200};
    database.signals[6] = {"[0]", StdLogicType, {}, 5, 100};
    return database;
}

TEST(LoadFromDatabase, MakesTheTree)
{
    CMemoryDatabase database = SmallDatabase();
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromDatabase(&database), S_OK);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("top/clk", "top/bus"));
    EXPECT_EQ(container->GetMaxTime(), 500);

    ISignal *clock = ChildAt(container.get(), 0);
    EXPECT_EQ(ReferencesTo(*clock), 1U);
    EXPECT_EQ(clock->GetHandle(), 1);
    EXPECT_EQ(clock->GetMode(), 3);
    EXPECT_EQ(clock->GetMaxTime(), 400);
    EXPECT_EQ(clock->GetStdType(), 1);
    EXPECT_EQ(clock->GetValueSize(), 4U);

    ISignal *bus = ChildAt(container.get(), 1);
    EXPECT_EQ(bus->GetHandle(), -1) << "only leaves keep handles";
    EXPECT_EQ(bus->GetStdType(), 7);
    EXPECT_EQ(bus->GetWave(), nullptr);
    EXPECT_THAT(NamesIn(bus->GetChildren()), ElementsAre("[1]", "[0]"));
    ISignal *element = ChildAt(bus->GetChildren(), 1);
    EXPECT_EQ(element->GetHandle(), 6);
    EXPECT_EQ(element->GetParent(), bus);
    EXPECT_EQ(ReferencesTo(*bus->GetChildren()), 1U);

    IHandleManager *manager = nullptr;
    container->GetHandleManager(&manager);
    EXPECT_EQ(manager->GetFirstSignal(1), clock);
    EXPECT_EQ(manager->GetFirstSignal(6), element);
    EXPECT_EQ(manager->GetFirstSignal(2), nullptr);
    manager->Release();
}

TEST(LoadFromDatabase, SharesTheWavesOfEqualHandles)
{
    CMemoryDatabase database = SmallDatabase();
    database.signals[2].children = {1, 1};
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromDatabase(&database), S_OK);
    ISignal *element = ChildAt(ChildAt(container.get(), 1)->GetChildren(), 0);
    EXPECT_EQ(element->GetWave(), ChildAt(container.get(), 0)->GetWave());
}

TEST(LoadFromDatabase, KeepsTheChildrenOfTheTypeWhereTheFileHasNone)
{
    CMemoryDatabase database;
    database.roots = {2};
    database.signals[2] = {"bus", VectorType(3), {}, 0, 0};
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromDatabase(&database), S_OK);
    EXPECT_THAT(NamesIn(ChildAt(container.get(), 0)->GetChildren()), ElementsAre("(2)", "(1)", "(0)"));
    EXPECT_EQ(ChildAt(container.get(), 0)->GetHandle(), -1);
}

TEST(LoadFromDatabase, OfAnUnreadableTypeMakesASignalWithoutOne)
{
    CMemoryDatabase database;
    database.roots = {1};
    database.signals[1] = {"odd", "nonsense", {}, 0, 0};
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromDatabase(&database), S_OK);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetTypeInfo(), nullptr);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetWave(), nullptr);
}

TEST(LoadFromDatabase, GivesUpAtTheFirstFailureAndKeepsWhatItHas)
{
    CMemoryDatabase database = SmallDatabase();
    database.roots = {1, -1, 2};
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromDatabase(&database), E_FAIL);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("top/clk"));
    EXPECT_EQ(container->GetMaxTime(), 0);
    EXPECT_EQ(container->LoadFromDatabase(nullptr), E_INVALIDARG);
}

TEST(AddFromDatabase, ReleasesWhatItMadeIfAChildFails)
{
    CMemoryDatabase database = SmallDatabase();
    database.signals[6].children = {6, 6};  // its own child, without end
    const TReference<IHandleManager> manager = MakeManager();
    const TReference<ISignalContainer> container = MakeContainer(manager.get());
    ISignal *signal = nullptr;
    EXPECT_EQ(container->AddFromDatabase(&database, nullptr, 2, &signal), E_FAIL);
    EXPECT_EQ(signal, nullptr);
    EXPECT_EQ(container->GetCount(), 0U);
    EXPECT_EQ(manager->GetFirstSignal(5), nullptr) << "the first child was bound, and is gone";
    EXPECT_EQ(ReferencesTo(*manager), 2U);
}

TEST(AddFromDatabase, TakesTheOwnNameBelowAParent)
{
    CMemoryDatabase database = SmallDatabase();
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> parent = MakeEmpty();
    ISignal *signal = nullptr;
    ASSERT_EQ(container->AddFromDatabase(&database, parent.get(), 1, &signal), S_OK);
    EXPECT_STREQ(signal->GetName(), "clk");
    EXPECT_EQ(signal->GetParent(), parent.get());
    EXPECT_EQ(container->AddFromDatabase(&database, parent.get(), -1, &signal), E_FAIL);
    EXPECT_EQ(signal, nullptr);
    EXPECT_EQ(container->AddFromDatabase(nullptr, nullptr, 1, &signal), E_FAIL);
    EXPECT_EQ(container->AddFromDatabase(&database, nullptr, 1, nullptr), E_INVALIDARG);
}

TEST(AddFromDatabase, RefusesAChildRangeThatIsTooLong)
{
    for (const NTARN::HSignalRange range :
         {NTARN::HSignalRange{0, 2147483647}, {-2147483648, 2147483647}, {2147483647, 2147483647}}) {
        CMemoryDatabase database;
        database.signals[1] = {"s", StdLogicType, range, 0, 0};
        database.signals[2147483647] = {"t", StdLogicType, {2147483647, -2147483648}, 0, 0};
        const TReference<ISignalContainer> container = MakeContainer();
        ISignal *signal = nullptr;
        EXPECT_EQ(container->AddFromDatabase(&database, nullptr, 1, &signal),
                  range.first == range.last ? S_OK : E_FAIL);
    }
}

class CThrowingDatabase : public NTARN::IDatabaseReader {
public:
    long long GetEndTime() override { return 0; }
    long long GetResolution() override { return 0; }
    const int *RootHandlesBegin() override { return &m_root; }
    const int *RootHandlesEnd() override { return &m_root + 1; }
    NTARN::HSignalRange GetChildRange(int) override { throw NTARN::XFileCorrupted(); }
    std::string GetName(int) override { return "s"; }
    const Kestrin::KTypeInfo &GetType(int) override { return m_type; }
    NTARN::KEventIterator EventsFrom(int, long long) override { return {nullptr, 0, 0}; }
    NTARN::KEventIterator EventsEnd(int) override { return {nullptr, 0, 0}; }
    int GetMode(int) override { return 0; }
    std::string GetFullName(int, bool) override { return "s"; }
    long long GetSignalEndTime(int) override { return 0; }

private:
    int m_root = 1;
    Kestrin::KTypeInfo m_type{StdLogicType};
};

TEST(LoadFromDatabase, FailsWhereTheReaderFindsTheFileDamaged)
{
    CThrowingDatabase database;
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromDatabase(&database), E_FAIL);
    ISignal *signal = MakeEmpty().release();
    const TReference<ISignal> owner(signal);
    EXPECT_EQ(signal->AttachFromDatabase(&database, container.get(), nullptr, 1), E_FAIL);
}

CMemoryList SmallList()
{
    CMemoryList list;
    list.top = {1, 2};
    list.AddLeaf(1, "clk");
    list.rows[1].mode = 3;
    list.rows[1].maxTime = 400;
    list.AddBus(2, "r", RecordType({{"v", VectorType(2)}, {"b", IntegerType}}), {10, 20});
    list.AddBus(10, ".v", VectorType(2), {11, 12});
    list.AddLeaf(11, "(1)");
    list.AddLeaf(12, "(0)");
    list.AddLeaf(20, ".b", IntegerType);
    list.rows[2].properties = {{"Stimulator", "info"}, {"VBus", "1"}};
    return list;
}

TEST(LoadFromList, MakesTheTree)
{
    CMemoryList list = SmallList();
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("clk", "r"));
    EXPECT_EQ(container->GetMaxTime(), 400);

    ISignal *clock = FindIn(*container, "clk");
    EXPECT_EQ(ReferencesTo(*clock), 1U);
    EXPECT_EQ(clock->GetHandle(), 1);
    EXPECT_EQ(clock->GetMode(), 3);
    EXPECT_EQ(clock->GetMaxTime(), 400);
    EXPECT_EQ(clock->GetValueSize(), 4U);
    EXPECT_EQ(clock->GetDisplayMode(), 0);
    EXPECT_FALSE(clock->IsVBus());
    EXPECT_STREQ(clock->GetStimulatorInfo(), "");

    ISignal *record = FindIn(*container, "r");
    EXPECT_EQ(record->GetHandle(), -1);
    EXPECT_TRUE(record->IsVBus());
    EXPECT_STREQ(record->GetStimulatorInfo(), "info");
    EXPECT_EQ(record->GetDisplayMode(), 3) << "set before the children were there";
    EXPECT_EQ(FindIn(*container, "r.v(0)")->GetHandle(), 12);
    EXPECT_EQ(FindIn(*container, "r.b")->GetParent(), record);
    EXPECT_EQ(PropertyOf(*FindIn(*container, "r.v(0)"), "Handle"), "12");
    EXPECT_EQ(PropertyOf(*record, "Handle"), "(none)");
}

TEST(LoadFromList, PassesOverRowsThatAreNoSignals)
{
    CMemoryList list = SmallList();
    list.top = {3, 1, 4, 5, 2};
    list.AddLeaf(3, "empty");
    list.rows[3].properties = {{"EmptyRow", "1"}};
    list.AddLeaf(4, "expression");
    list.rows[4].properties = {{"Expression", "2"}};
    list.AddLeaf(5, "signal");
    list.rows[5].properties = {{"Expression", "0"}, {"EmptyRow", "no"}};
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("clk", "signal", "r"));
}

TEST(LoadFromList, DeliberatelyFailsForSuchARowBelowASignal)
{
    CMemoryList list = SmallList();
    list.rows[12].properties = {{"EmptyRow", "1"}};
    const TReference<IHandleManager> manager = MakeManager();
    const TReference<ISignalContainer> container = MakeContainer(manager.get());
    EXPECT_EQ(container->LoadFromList(&list), E_FAIL);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("clk"));
    EXPECT_EQ(manager->GetFirstSignal(11), nullptr) << "bound, and gone with the rest";
}

TEST(LoadFromList, GivesUpAtTheFirstFailureAndKeepsWhatItHas)
{
    const TReference<ISignalContainer> container = MakeContainer();
    CMemoryList noType = SmallList();
    noType.rows[2].type.clear();
    EXPECT_EQ(container->LoadFromList(&noType), E_FAIL);
    EXPECT_THAT(NamesIn(container.get()), ElementsAre("clk"));
    CMemoryList noId = SmallList();
    noId.top = {-1, 1};
    EXPECT_EQ(container->LoadFromList(&noId), E_FAIL);
    EXPECT_EQ(container->LoadFromList(nullptr), E_INVALIDARG);
    CMemoryList empty;
    EXPECT_EQ(container->LoadFromList(&empty), S_OK);
}

TEST(LoadFromList, SharesTheWavesOfEqualIdentifiers)
{
    CMemoryList list = SmallList();
    list.top = {1, 2, 11};
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    ISignal *element = FindIn(*container, "r.v(1)");
    ISignal *alias = ChildAt(container.get(), 2);
    EXPECT_EQ(alias->GetWave(), element->GetWave());
    EXPECT_TRUE(element->OwnsWave());
    EXPECT_FALSE(alias->OwnsWave());
}

TEST(LoadFromList, DeliberatelyBindsTheFirstOfTwoSignalsOfOneName)
{
    CMemoryList list;
    list.top = {1, 2};
    list.AddLeaf(1, "s");
    list.AddLeaf(2, "s");
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetHandle(), 2);
    EXPECT_EQ(ChildAt(container.get(), 1)->GetHandle(), 2);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetWave(), ChildAt(container.get(), 1)->GetWave());
}

TEST(AddFromList, OfABusThatSaysItIsNoneMakesALeaf)
{
    CMemoryList list = SmallList();
    list.rows[10].isBus = false;
    const TReference<ISignalContainer> container = MakeContainer();
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    ISignal *vector = FindIn(*container, "r.v");
    EXPECT_EQ(vector->GetChildren(), nullptr);
    EXPECT_EQ(vector->GetHandle(), 10);
    EXPECT_EQ(vector->GetValueSize(), 4U) << "a wave as wide as an element";
}

TEST(AddFromList, GivesNothingForAMissingRow)
{
    CMemoryList list = SmallList();
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *signal = nullptr;
    ASSERT_EQ(container->AddFromList(&list, nullptr, 1, &signal), S_OK);
    EXPECT_STREQ(signal->GetName(), "r");
    EXPECT_EQ(ReferencesTo(*signal), 1U);
    EXPECT_EQ(container->AddFromList(&list, signal, 5, &signal), E_FAIL);
    EXPECT_EQ(signal, nullptr);
    EXPECT_EQ(container->AddFromList(nullptr, nullptr, 0, &signal), E_FAIL);
    EXPECT_EQ(container->AddFromList(&list, nullptr, 0, nullptr), E_FAIL);
}

TEST(LoadFromList, GivesUpOnChildrenThatFormACycle)  // hostile input
{
    CMemoryList list;
    list.top = {1};
    list.AddBus(1, "a", VectorType(2), {2, 2});
    list.AddBus(2, "b", VectorType(2), {1, 1});
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromList(&list), E_FAIL);
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(LoadFromList, GivesUpOnChildrenThatNest100000Deep)  // hostile input
{
    CMemoryList list;
    list.top = {0};
    for (int id = 0; id < 100000; ++id)
        list.AddBus(id, "a", VectorType(1), {id + 1});
    list.AddLeaf(100000, "end");
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromList(&list), E_FAIL);
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(LoadFromList, GivesUpOnMoreChildrenThanASignalMayHave)  // hostile input
{
    CMemoryList list;
    list.top = {1};
    list.AddBus(1, "a", VectorType(1), {2});
    list.AddLeaf(2, "b");
    for (const int elements : {(1 << 24) + 1, 2147483647}) {
        list.rows[1].elements = elements;
        const TReference<ISignalContainer> container = MakeContainer();
        EXPECT_EQ(container->LoadFromList(&list), E_FAIL);
    }
    list.rows[1].elements = -5;
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetChildren(), nullptr);
}

}  // namespace
