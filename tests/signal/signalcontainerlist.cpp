#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

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
    EXPECT_EQ(list.childrenAskedFor, 0);
    list.rows[1].elements = 1 << 24;
    EXPECT_EQ(MakeContainer()->LoadFromList(&list), E_FAIL) << "but there are not so many";
    EXPECT_EQ(list.childrenAskedFor, 2);
    list.rows[1].elements = -5;
    const TReference<ISignalContainer> container = MakeContainer();
    EXPECT_EQ(container->LoadFromList(&list), S_OK);
    EXPECT_EQ(ChildAt(container.get(), 0)->GetChildren(), nullptr);
}

}  // namespace
