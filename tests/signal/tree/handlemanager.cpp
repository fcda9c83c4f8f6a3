#include <algorithm>
#include <map>
#include <random>
#include <vector>

#include "signal/fakesignal.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<int> Handles(IHandleManager &manager)
{
    std::vector<int> handles;
    for (int handle = manager.GetFirstHandle(); handle != -1; handle = manager.GetNextHandle())
        handles.push_back(handle);
    return handles;
}

std::vector<ISignal *> Signals(IHandleManager &manager, int handle)
{
    std::vector<ISignal *> signals;
    for (ISignal *signal = manager.GetFirstSignal(handle); signal != nullptr; signal = manager.GetNextSignal())
        signals.push_back(signal);
    return signals;
}

TEST(HandleManager, IsEmptyAtStart)
{
    const TReference<IHandleManager> manager = MakeManager();
    EXPECT_EQ(ReferencesTo(*manager), 1u);
    EXPECT_EQ(manager->GetNextHandle(), -1);
    EXPECT_EQ(manager->GetNextSignal(), nullptr);
    EXPECT_EQ(manager->GetFirstHandle(), -1);
    EXPECT_EQ(manager->GetFirstSignal(7), nullptr);
    EXPECT_EQ(CreateHandleManager(nullptr), E_INVALIDARG);
}

TEST(HandleManager, WalksHandlesInRisingOrder)
{
    const TReference<IHandleManager> manager = MakeManager();
    std::vector<FakePtr> signals;
    for (const int handle : {7, -2, 0, 2147483647, 3, -2147483647 - 1}) {
        signals.push_back(NewFake("s", handle));
        EXPECT_EQ(manager->Add(signals.back().get()), S_OK);
    }
    EXPECT_THAT(Handles(*manager), ElementsAre(-2147483647 - 1, -2, 0, 3, 7, 2147483647));
    EXPECT_EQ(manager->GetNextHandle(), -1) << "the end stays the end";
}

TEST(HandleManager, WalksTheSignalsOfAHandleInOrderOfArrival)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr b = NewFake("b", 7), a = NewFake("a", 7), other = NewFake("other", 8);
    for (CFakeSignal *signal : {b.get(), a.get(), other.get()})
        manager->Add(signal);
    EXPECT_THAT(Signals(*manager, 7), ElementsAre(b.get(), a.get()));
    EXPECT_THAT(Signals(*manager, 8), ElementsAre(other.get()));
    EXPECT_THAT(Signals(*manager, 9), IsEmpty());
}

TEST(HandleManager, KeepsASignalOnceButAnswersSuccessAgain)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr signal = NewFake("s", 7);
    EXPECT_EQ(manager->Add(signal.get()), S_OK);
    EXPECT_EQ(manager->Add(signal.get()), S_OK);
    EXPECT_THAT(Signals(*manager, 7), ElementsAre(signal.get()));
}

TEST(HandleManager, RefusesASignalWithoutHandleOrWave)
{
    const TReference<IHandleManager> manager = MakeManager();
    EXPECT_EQ(manager->Add(NewFake("s", -1).get()), E_INVALIDARG);
    const FakePtr withoutWave = NewFake("s", 7);
    withoutWave->m_wave.reset();
    EXPECT_EQ(manager->Add(withoutWave.get()), E_INVALIDARG);
    const TReference<ISignal> array = MakeSignal(VectorType(2));
    ASSERT_NE(array, nullptr);
    array->SetHandle(7);
    EXPECT_EQ(manager->Add(array.get()), E_INVALIDARG);
    EXPECT_EQ(manager->Add(nullptr), E_INVALIDARG);
    EXPECT_THAT(Handles(*manager), IsEmpty());
}

TEST(HandleManager, HoldsNoReferences)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr signal = NewFake("s", 7);
    manager->Add(signal.get());
    EXPECT_EQ(ReferencesTo(*signal), 1u);
}

TEST(HandleManager, MayEndBeforeAndAfterItsSignals)
{
    TReference<IHandleManager> manager = MakeManager();
    FakePtr signal = NewFake("s", 7);
    manager->Add(signal.get());
    manager.reset();
    manager = MakeManager();
    manager->Add(signal.get());
    signal.reset();
}

TEST(HandleManager, RemovesASignalAndMovesTheLaterOnesDown)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 7), c = NewFake("c", 7);
    for (CFakeSignal *signal : {a.get(), b.get(), c.get()})
        manager->Add(signal);
    EXPECT_EQ(manager->Remove(b.get()), S_OK);
    EXPECT_THAT(Signals(*manager, 7), ElementsAre(a.get(), c.get()));
    EXPECT_EQ(manager->Remove(b.get()), E_FAIL);
}

TEST(HandleManager, DropsAHandleWithItsLastSignal)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 8);
    manager->Add(a.get());
    manager->Add(b.get());
    EXPECT_EQ(manager->Remove(a.get()), S_OK);
    EXPECT_THAT(Handles(*manager), ElementsAre(8));
    EXPECT_EQ(manager->Remove(a.get()), E_FAIL);
    EXPECT_EQ(manager->Remove(nullptr), E_FAIL);
}

TEST(HandleManager, LooksASignalUpUnderTheHandleItHasNow)  // deliberate
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr signal = NewFake("s", 7);
    manager->Add(signal.get());
    signal->SetHandle(-1);
    EXPECT_EQ(manager->GetFirstSignal(7), nullptr) << "a signal without a handle is skipped";
    EXPECT_EQ(manager->Remove(signal.get()), E_FAIL);
    EXPECT_THAT(Handles(*manager), ElementsAre(7)) << "its entry is still there";
    signal->SetHandle(8);
    EXPECT_EQ(manager->Remove(signal.get()), E_FAIL);
    EXPECT_EQ(manager->GetFirstSignal(7), signal.get()) << "any handle will do for the walk";
    signal->SetHandle(7);
    EXPECT_EQ(manager->Remove(signal.get()), S_OK);
}

TEST(HandleManager, RemovesAHandleWithAllItsSignals)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 7);
    manager->Add(a.get());
    manager->Add(b.get());
    EXPECT_EQ(manager->RemoveHandle(7), S_OK);
    EXPECT_EQ(manager->RemoveHandle(7), E_FAIL);
    EXPECT_EQ(manager->RemoveHandle(-1), E_FAIL);
    EXPECT_THAT(Handles(*manager), IsEmpty());
}

TEST(HandleManager, ForgetsEverythingWhenCleared)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 8);
    manager->Add(a.get());
    manager->Add(b.get());
    manager->GetFirstHandle();
    manager->GetFirstSignal(7);
    manager->Clear();
    EXPECT_EQ(manager->GetNextHandle(), -1);
    EXPECT_EQ(manager->GetNextSignal(), nullptr);
    EXPECT_THAT(Handles(*manager), IsEmpty());
    EXPECT_EQ(manager->Remove(a.get()), E_FAIL);
}

TEST(HandleManager, HasOneWalkOfEachKind)
{
    const TReference<IHandleManager> manager = MakeManager();
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 7), c = NewFake("c", 8);
    for (CFakeSignal *signal : {a.get(), b.get(), c.get()})
        manager->Add(signal);
    EXPECT_EQ(manager->GetFirstSignal(7), a.get());
    EXPECT_EQ(manager->GetFirstSignal(8), c.get());
    EXPECT_EQ(manager->GetNextSignal(), nullptr) << "the walk over handle 7 is over";
    EXPECT_EQ(manager->GetFirstHandle(), 7);
    EXPECT_EQ(manager->GetFirstHandle(), 7);
    EXPECT_EQ(manager->GetNextHandle(), 8);
    EXPECT_EQ(manager->GetFirstSignal(7), a.get());
    EXPECT_EQ(manager->GetFirstSignal(9), nullptr);
    EXPECT_EQ(manager->GetNextSignal(), nullptr) << "an unknown handle is an empty walk";
}

TEST(HandleManager, LetsAHandleBeRemovedWhileHandlesAreWalked)
{
    const TReference<IHandleManager> manager = MakeManager();
    std::vector<FakePtr> signals;
    for (const int handle : {1, 2, 3, 4}) {
        signals.push_back(NewFake("s", handle));
        manager->Add(signals.back().get());
    }
    std::vector<int> walked;
    for (int handle = manager->GetFirstHandle(); handle != -1; handle = manager->GetNextHandle()) {
        walked.push_back(handle);
        manager->RemoveHandle(handle + 1);  // the one the walk stands on
    }
    EXPECT_THAT(walked, ElementsAre(1, 3));
    for (int handle = manager->GetFirstHandle(); handle != -1; handle = manager->GetNextHandle())
        manager->RemoveHandle(handle);  // the one just walked
    EXPECT_THAT(Handles(*manager), IsEmpty());
}

TEST(HandleManager, EndsAWalkOverSignalsThatAreChanged)
{
    const TReference<IHandleManager> manager = MakeManager();
    std::vector<FakePtr> signals;
    for (int i = 0; i < 4; ++i)
        signals.push_back(NewFake("s", 7));
    const FakePtr elsewhere = NewFake("elsewhere", 8);
    for (const FakePtr &signal : signals)
        manager->Add(signal.get());

    manager->GetFirstSignal(7);
    manager->Add(elsewhere.get());
    manager->Remove(elsewhere.get());
    EXPECT_EQ(manager->GetNextSignal(), signals[1].get()) << "another handle's signals do not matter";
    manager->Remove(signals[3].get());
    EXPECT_EQ(manager->GetNextSignal(), nullptr);

    manager->GetFirstSignal(7);
    manager->Add(signals[3].get());
    EXPECT_EQ(manager->GetNextSignal(), nullptr);

    manager->GetFirstSignal(7);
    manager->RemoveHandle(7);
    EXPECT_EQ(manager->GetNextSignal(), nullptr);
}

TEST(HandleManager, AgreesWithAPlainListOverRandomCalls)
{
    constexpr int Count = 12;
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        const TReference<IHandleManager> manager = MakeManager();
        std::vector<FakePtr> signals;
        for (int i = 0; i < Count; ++i)
            signals.push_back(NewFake("s", -1));
        std::map<int, std::vector<ISignal *>> expected;
        for (int step = 0; step < 60; ++step) {
            CFakeSignal &signal = *signals[random() % Count];
            const auto entry = expected.find(signal.m_handle);
            const bool isIn = entry != expected.end() && std::ranges::count(entry->second, &signal) != 0;
            switch (random() % 8) {
            case 0: signal.SetHandle(static_cast<int>(random() % 5) - 1); break;
            case 1: {
                const int handle = static_cast<int>(random() % 5);
                ASSERT_EQ(manager->RemoveHandle(handle), expected.erase(handle) != 0 ? S_OK : E_FAIL);
                break;
            }
            case 2:
            case 3:
                ASSERT_EQ(manager->Remove(&signal), isIn ? S_OK : E_FAIL);
                if (isIn && std::erase(entry->second, &signal) != 0 && entry->second.empty())
                    expected.erase(entry);
                break;
            default:
                ASSERT_EQ(manager->Add(&signal), signal.m_handle == -1 ? E_INVALIDARG : S_OK);
                if (signal.m_handle != -1 && !isIn)
                    expected[signal.m_handle].push_back(&signal);
            }
            std::vector<int> handles;
            for (const auto &[handle, list] : expected) {
                handles.push_back(handle);
                std::vector<ISignal *> walked;
                std::ranges::copy_if(list, std::back_inserter(walked),
                                     [](ISignal *listed) { return listed->GetHandle() != -1; });
                ASSERT_EQ(Signals(*manager, handle), walked);
            }
            ASSERT_EQ(Handles(*manager), handles);
        }
    }
}

}  // namespace
