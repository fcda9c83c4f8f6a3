#include "signal/signaltools.h"

namespace {

TEST(AttachFromList, TakesInformationAndBusFlag)
{
    CMemoryList list;
    list.AddLeaf(5, "s");
    list.rows[5].properties = {{"Stimulator", "info"}, {"VBus", "2"}};
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> parent = MakeEmpty();
    const TReference<ISignal> signal = MakeNamed("s", StdLogicType);
    signal->SetHandle(5);
    ASSERT_EQ(tesk::Share(signal.get()).release()->AttachFromList(&list, container.get(), parent.get(), 0), S_OK);
    EXPECT_STREQ(signal->GetStimulatorInfo(), "info");
    EXPECT_TRUE(signal->IsVBus());
    EXPECT_EQ(signal->GetParent(), parent.get());
    EXPECT_EQ(ReferencesTo(*signal), 2U) << "the container's and ours";
    EXPECT_EQ(FindIn(*container, "s"), signal.get());
}

TEST(AttachFromList, ReplacesTheChildrenThatASignalHad)
{
    CMemoryList list;
    list.AddBus(5, "s", VectorType(1), {6});
    list.AddLeaf(6, "(0)");
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", VectorType(4));
    signal->SetHandle(5);
    ASSERT_EQ(tesk::Share(signal.get()).release()->AttachFromList(&list, container.get(), nullptr, 1), S_OK);
    EXPECT_EQ(signal->GetChildren()->GetCount(), 1U);
    EXPECT_EQ(signal->GetHandle(), -1);
}

TEST(AttachFromList, KeepsTheOldChildrenAndTheReferenceOnFailure)
{
    CMemoryList list;
    list.AddBus(5, "s", VectorType(2), {6});
    list.AddLeaf(6, "(0)");
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", VectorType(4));
    signal->SetHandle(5);
    EXPECT_EQ(signal->AttachFromList(&list, container.get(), nullptr, 2), E_FAIL) << "the second child is missing";
    EXPECT_EQ(signal->GetChildren()->GetCount(), 4U);
    EXPECT_EQ(ReferencesTo(*signal), 1U);
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(Attach, WithoutASourceOrAContainerIsRefused)
{
    CMemoryList list;
    CMemoryDatabase database;
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->AttachFromList(nullptr, container.get(), nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(signal->AttachFromList(&list, nullptr, nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(signal->AttachFromDatabase(nullptr, container.get(), nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(signal->AttachFromDatabase(&database, nullptr, nullptr, 0), E_INVALIDARG);
}

TEST(AttachFromDatabase, ReleasesTheChildrenThatTheTypeHadBrought)
{
    CMemoryDatabase database;
    database.signals[5] = {"s", VectorType(1), {6, 6}, 0, 0};
    database.signals[6] = {"[0]", StdLogicType, {}, 0, 0};
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", VectorType(4));
    const TReference<ISignalContainer> old = tesk::Share(signal->GetChildren());
    signal->SetHandle(5);
    ASSERT_EQ(tesk::Share(signal.get()).release()->AttachFromDatabase(&database, container.get(), nullptr, 1), S_OK);
    EXPECT_EQ(ReferencesTo(*old), 1U);
    EXPECT_STREQ(ChildAt(signal->GetChildren(), 0)->GetName(), "[0]");
}

TEST(AttachFromDatabase, MakesAFreshWaveForAScalarOfFewerThanFourBytes)
{
    CMemoryDatabase database;
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", StdLogicType);
    AddEvent(*signal, 1, 1);
    ASSERT_EQ(tesk::Share(signal.get()).release()->AttachFromDatabase(&database, container.get(), nullptr, 0), S_OK);
    EXPECT_EQ(signal->GetWave()->GetEventCount(), 0U);
    EXPECT_EQ(signal->GetHandle(), -1);
}

}  // namespace
