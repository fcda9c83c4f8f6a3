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

TEST(ContainerLoad, ForgetsTheLastTimeOfTheLoadBefore)
{
    const TReference<ISignalContainer> container = MakeContainer();
    CMemoryList list;
    list.top = {1};
    list.AddLeaf(1, "a");
    list.rows[1].maxTime = 70;
    ASSERT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_EQ(container->GetMaxTime(), 70);
    CMemoryStream stream(Word(1) + Leaf());
    ASSERT_EQ(container->Load(&stream, nullptr), S_OK);
    EXPECT_EQ(container->GetMaxTime(), 0);
}

TEST(ContainerLoad, RefusesWhatSaveWroteOfNoSignals)
{
    CMemoryStream stream;
    EXPECT_EQ(MakeContainer()->Save(&stream), S_OK);
    EXPECT_EQ(MakeContainer()->Load(&stream, nullptr), E_FAIL);
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

// Each signal has the next one below it twice: few handles, and more ways down than any memory holds.
CMemoryDatabase SharedDatabase(int nodes)
{
    CMemoryDatabase database;
    database.roots = {2};
    for (int i = 1; i <= nodes; ++i) {
        for (const int handle : {2 * i, 2 * i + 1})
            database.signals[handle] = {"s", StdLogicType, {2 * i + 2, 2 * i + 3}, 0, 0};
    }
    for (const int handle : {2 * nodes + 2, 2 * nodes + 3})
        database.signals[handle] = {"s", StdLogicType, {-1, -1}, 0, 0};
    return database;
}

TEST(LoadFromDatabase, RefusesATreeThatSharedChildrenMakeTooLargeBeforeItIsMade)
{
    CMemoryDatabase database = SharedDatabase(40);
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromDatabase(&database), E_FAIL);
    ISignal *signal = nullptr;
    EXPECT_EQ(container->AddFromDatabase(&database, nullptr, 2, &signal), E_FAIL);
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(LoadFromDatabase, CountsTheTreesOfAllRootsTogether)
{
    CMemoryDatabase database = SharedDatabase(20);
    database.roots.assign(12, 2);  // 12 times 2^21 - 1
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromDatabase(&database), E_FAIL);
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(LoadFromDatabase, TakesSharedChildrenApart)
{
    CMemoryDatabase database = SharedDatabase(3);
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromDatabase(&database), S_OK);
    EXPECT_EQ(container->GetCount(), 1U);
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

}  // namespace
