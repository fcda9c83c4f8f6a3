#include <random>
#include <string>
#include <vector>

#include "platform/felvarbase.h"
#include "signal/signallist.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<ISignal *> Signals(const tesk::CSignalsProvider &list)
{
    std::vector<ISignal *> signals;
    ISignal *signal = nullptr;
    for (unsigned i = 0; list.GetAt(i, &signal) == S_OK; ++i)
        signals.push_back(signal);
    EXPECT_EQ(signals.size(), list.GetCount());
    return signals;
}

ISignal *Find(const tesk::CSignalsProvider &list, const char *name)
{
    ISignal *found = nullptr;
    const long result = list.FindByName(name, &found);
    EXPECT_EQ(result, found != nullptr ? S_OK : E_FAIL);
    return found;
}

TEST(ListOfSignals, IsEmptyAtStart)
{
    const CList list;
    EXPECT_THAT(Signals(list), IsEmpty());
    EXPECT_EQ(Find(list, "a"), nullptr);
    EXPECT_EQ(Find(list, nullptr), nullptr);
}

TEST(ListOfSignals, AddsAtTheEndWithOneReference)
{
    CList list;
    const FakePtr b = NewFake("b"), a = NewFake("a");
    EXPECT_EQ(list.Add(b.get()), S_OK);
    EXPECT_EQ(list.Add(a.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(b.get(), a.get()));
    EXPECT_EQ(ReferencesTo(*a), 2u);
    EXPECT_EQ(Find(list, "a"), a.get());
    EXPECT_EQ(ReferencesTo(*a), 2u) << "finding adds none";
    EXPECT_EQ(list.Add(nullptr), E_INVALIDARG);
}

TEST(ListOfSignals, InsertsInFrontOfASignal)
{
    CList list;
    const FakePtr a = NewFake("a"), b = NewFake("b"), c = NewFake("c");
    list.Add(a.get());
    EXPECT_EQ(list.InsertBefore(b.get(), a.get()), S_OK);
    EXPECT_EQ(list.InsertBefore(c.get(), a.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(b.get(), c.get(), a.get()));
    EXPECT_EQ(ReferencesTo(*b), 2u);
    EXPECT_EQ(Find(list, "b"), b.get());
}

TEST(ListOfSignals, LeavesASignalAloneThatItCannotInsert)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr stranger = NewFake("stranger"), signal = NewFake("s", 7), a = NewFake("a");
    EXPECT_EQ(list.InsertBefore(signal.get(), nullptr), E_INVALIDARG);
    list.Add(a.get());
    EXPECT_EQ(list.InsertBefore(signal.get(), stranger.get()), E_INVALIDARG);
    EXPECT_EQ(list.InsertBefore(nullptr, a.get()), E_INVALIDARG);
    EXPECT_EQ(ReferencesTo(*signal), 1u);
    EXPECT_EQ(Find(list, "s"), nullptr);
    EXPECT_EQ(manager->GetFirstHandle(), -1);
    EXPECT_EQ(list.GetCount(), 1u);
}

TEST(ListOfSignals, EntersSignalsInTheManager)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 8), without = NewFake("without");
    EXPECT_EQ(list.Add(a.get()), S_OK);
    EXPECT_EQ(list.InsertBefore(b.get(), a.get()), S_OK);
    EXPECT_EQ(list.Add(without.get()), S_OK) << "that the manager refuses it does not matter";
    EXPECT_EQ(manager->GetFirstSignal(7), a.get());
    EXPECT_EQ(manager->GetFirstSignal(8), b.get());
    EXPECT_EQ(ReferencesTo(*manager), 1u) << "the container holds the reference, not the list";
}

TEST(ListOfSignals, GivesItsManagerToTheChildrenOfANewSignal)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr first = NewFakeBus("first", {}), second = NewFakeBus("second", {});
    list.Add(first.get());
    list.InsertBefore(second.get(), first.get());
    for (const FakePtr &bus : {std::cref(first), std::cref(second)}) {
        IHandleManager *used = nullptr;
        ASSERT_EQ(bus->m_children->GetHandleManager(&used), S_OK);
        EXPECT_EQ(used, manager.get());
        used->Release();
    }
}

TEST(ListOfSignals, RemovesASignalFromEverything)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr a = NewFake("a", 7), b = NewFake("b", 8);
    list.Add(a.get());
    list.Add(b.get());
    EXPECT_EQ(list.Remove(a.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(b.get()));
    EXPECT_EQ(Find(list, "a"), nullptr);
    EXPECT_EQ(manager->GetFirstSignal(7), nullptr);
    EXPECT_EQ(ReferencesTo(*a), 1u);
    EXPECT_EQ(list.Remove(a.get()), E_FAIL);
    EXPECT_EQ(list.Remove(nullptr), E_FAIL);
}

TEST(ListOfSignals, TakesTheLeavesBelowARemovedSignalOutOfTheManager)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr leaf = NewFake("leaf", 7), deepLeaf = NewFake("deep", 8);
    const FakePtr inner = NewFakeBus("inner", {deepLeaf.get()});
    const FakePtr bus = NewFakeBus("bus", {leaf.get(), inner.get()});
    manager->Add(leaf.get());
    manager->Add(deepLeaf.get());
    list.Add(bus.get());
    EXPECT_EQ(list.Remove(bus.get()), S_OK);
    EXPECT_EQ(manager->GetFirstHandle(), -1);
}

TEST(ListOfSignals, EndsASignalThatOnlyItHeld)
{
    CList list;
    FakePtr signal = NewFake("a");
    CFakeSignal *const alone = signal.get();
    list.Add(alone);
    signal.reset();
    EXPECT_EQ(list.Remove(alone), S_OK);  // the leak checker sees that it is gone
}

TEST(ListOfSignals, FindsTheFirstEntryOfEqualNames)
{
    CList list;
    const FakePtr first = NewFake("x"), second = NewFake("x"), third = NewFake("x");
    list.Add(first.get());
    list.Add(second.get());
    list.InsertBefore(third.get(), first.get());
    EXPECT_EQ(Find(list, "x"), first.get()) << "the entry made first, not the first of the list";
}

TEST(ListOfSignals, RemovesTheFirstEntryOfEqualNamesWhicheverSignalLeaves)  // deliberate
{
    CList list;
    const FakePtr first = NewFake("x"), second = NewFake("x");
    list.Add(first.get());
    list.Add(second.get());
    EXPECT_EQ(list.Remove(second.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(first.get()));
    EXPECT_EQ(Find(list, "x"), second.get()) << "the entry of the first one went";
    EXPECT_EQ(list.Remove(first.get()), S_OK);
    EXPECT_EQ(Find(list, "x"), nullptr);
}

TEST(ListOfSignals, NeverFindsASignalThatHasEnded)
{
    CList list;
    FakePtr first = NewFake("x"), second = NewFake("x");
    CFakeSignal *const ended = second.get();
    list.Add(first.get());
    list.Add(ended);
    second.reset();
    EXPECT_EQ(list.Remove(ended), S_OK);
    EXPECT_EQ(Find(list, "x"), nullptr);
    EXPECT_THAT(Signals(list), ElementsAre(first.get()));
}

TEST(ListOfSignals, ComparesNamesAsTheHierarchyDoesAtEachLookUp)
{
    CList list;
    const FakePtr signal = NewFake("Clk");
    list.Add(signal.get());
    EXPECT_EQ(Find(list, "clk"), nullptr);
    SetHierarchyCaseSensitive(false);
    EXPECT_EQ(Find(list, "cLK"), signal.get());
    EXPECT_EQ(Find(list, "cl"), nullptr);
    SetHierarchyCaseSensitive(true);
    EXPECT_EQ(Find(list, "cLK"), nullptr);
}

TEST(ListOfSignals, TakesANullNameForEqualToAny)
{
    EXPECT_FALSE(tesk::SNameLess()(nullptr, "a"));
    EXPECT_FALSE(tesk::SNameLess()("a", nullptr));
    EXPECT_FALSE(tesk::SNameLess()(nullptr, nullptr));
    CList list;
    const FakePtr nameless = NewFake(nullptr), a = NewFake("a");
    list.Add(nameless.get());
    EXPECT_EQ(Find(list, "b"), nameless.get());
    EXPECT_EQ(list.Remove(nameless.get()), S_OK);
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_EQ(Find(list, "b"), nameless.get()) << "without a name no entry is erased";
    list.Clear();
    list.Add(a.get());
    EXPECT_EQ(Find(list, nullptr), a.get());
}

TEST(ListOfSignals, KeepsTheNameUnderWhichASignalWasEntered)
{
    CList list;
    std::string name = "before";
    FakePtr signal = NewFake(name.c_str());
    CFakeSignal *const entered = signal.get();
    list.Add(entered);
    signal.reset();
    name = "a new name whose text stands elsewhere in memory, long as it is";
    entered->SetName(name.c_str());
    EXPECT_EQ(Find(list, "before"), entered);
    EXPECT_EQ(Find(list, name.c_str()), nullptr);
    EXPECT_EQ(list.Remove(entered), S_OK);
    EXPECT_EQ(Find(list, "before"), nullptr) << "it has ended";
}

TEST(ListOfSignals, ReplacesASignalInItsPlace)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr a = NewFake("a", 1), old = NewFake("old", 7), c = NewFake("c", 3), fresh = NewFake("fresh", 9);
    for (CFakeSignal *signal : {a.get(), old.get(), c.get()})
        list.Add(signal);
    EXPECT_EQ(list.Replace(old.get(), fresh.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(a.get(), fresh.get(), c.get()));
    EXPECT_STREQ(fresh->GetName(), "old");
    EXPECT_EQ(manager->GetFirstSignal(9), fresh.get());
    EXPECT_EQ(ReferencesTo(*old), 1u);
    EXPECT_EQ(ReferencesTo(*fresh), 2u);
}

TEST(ListOfSignals, KeepsNameAndHandleOfAReplacedSignalThatLives)  // deliberate
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr old = NewFake("old", 7), fresh = NewFake("fresh", 7);
    list.Add(old.get());
    list.Replace(old.get(), fresh.get());
    EXPECT_EQ(Find(list, "old"), old.get());
    EXPECT_EQ(Find(list, "fresh"), nullptr);
    EXPECT_EQ(manager->GetFirstSignal(7), old.get());
    EXPECT_EQ(manager->GetNextSignal(), fresh.get());
}

TEST(ListOfSignals, NeverLeadsToAReplacedSignalThatHasEnded)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    FakePtr old = NewFake("old", 7);
    const FakePtr fresh = NewFake("fresh", 7);
    CFakeSignal *const ended = old.get();
    list.Add(ended);
    old.reset();
    EXPECT_EQ(list.Replace(ended, fresh.get()), S_OK);
    EXPECT_EQ(Find(list, "old"), nullptr);
    EXPECT_EQ(manager->GetFirstSignal(7), fresh.get());
    EXPECT_EQ(list.Remove(fresh.get()), S_OK);
}

TEST(ListOfSignals, RefusesToReplaceWhatIsNotThereOrByWhatHasAParent)
{
    CList list;
    const FakePtr a = NewFake("a"), stranger = NewFake("stranger"), child = NewFake("child");
    child->SetParent(stranger.get());
    list.Add(a.get());
    EXPECT_EQ(list.Replace(stranger.get(), NewFake("b").get()), E_INVALIDARG);
    EXPECT_EQ(list.Replace(a.get(), child.get()), E_INVALIDARG);
    EXPECT_EQ(list.Replace(a.get(), nullptr), E_INVALIDARG);
    EXPECT_EQ(list.Replace(nullptr, a.get()), E_INVALIDARG);
    EXPECT_STREQ(child->GetName(), "child");
    EXPECT_THAT(Signals(list), ElementsAre(a.get()));
}

TEST(ListOfSignals, MayReplaceASignalByItself)
{
    CList list;
    FakePtr signal = NewFake("a");
    CFakeSignal *const a = signal.get();
    list.Add(a);
    signal.reset();
    EXPECT_EQ(list.Replace(a, a), S_OK);
    EXPECT_EQ(ReferencesTo(*a), 1u);
    EXPECT_EQ(Find(list, "a"), a);
}

TEST(ListOfSignals, MayHoldASignalTwice)
{
    CList list;
    const FakePtr a = NewFake("a");
    list.Add(a.get());
    list.Add(a.get());
    EXPECT_EQ(ReferencesTo(*a), 3u);
    EXPECT_EQ(list.Remove(a.get()), S_OK);
    EXPECT_THAT(Signals(list), ElementsAre(a.get()));
    EXPECT_EQ(Find(list, "a"), a.get());
}

TEST(ListOfSignals, ReleasesEverySignalWhenCleared)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list(manager.get());
    const FakePtr held = NewFake("held", 7);
    list.Add(held.get());
    list.Add(NewFake("not held", 8).get());
    list.Clear();
    EXPECT_EQ(list.GetCount(), 0u);
    EXPECT_EQ(Find(list, "held"), nullptr);
    EXPECT_EQ(ReferencesTo(*held), 1u);
}

TEST(ListOfSignals, ClearsAManagerThatHasNoOtherOwner)
{
    const TReference<IHandleManager> manager = MakeManager();  // this reference stands for the container's
    CList list(manager.get());
    const FakePtr held = NewFake("held", 7), elsewhere = NewFake("elsewhere", 9);
    list.Add(held.get());
    manager->Add(elsewhere.get());
    list.Clear();
    EXPECT_EQ(manager->GetFirstHandle(), -1);
}

TEST(ListOfSignals, LeavesAllEntriesInASharedManagerWhenCleared)  // deliberate
{
    const TReference<IHandleManager> manager = MakeManager();
    const TReference<IHandleManager> otherOwner = tesk::Share(manager.get());
    CList list(manager.get());
    const FakePtr held = NewFake("held", 7);
    list.Add(held.get());
    list.Add(NewFake("not held", 8).get());
    list.Clear();
    EXPECT_EQ(manager->GetFirstHandle(), 7);
    EXPECT_EQ(manager->GetNextHandle(), 8);
    EXPECT_EQ(manager->GetFirstSignal(7), held.get());
    EXPECT_EQ(manager->GetFirstSignal(8), nullptr) << "that one has ended";
    EXPECT_EQ(manager->RemoveHandle(8), S_OK);
}

TEST(ListOfSignals, WorksWithoutAManager)
{
    CList list;
    const FakePtr a = NewFake("a", 7), bus = NewFakeBus("bus", {}), b = NewFake("b");
    list.Add(a.get());
    list.Add(bus.get());
    IHandleManager *used = nullptr;
    EXPECT_EQ(bus->m_children->GetHandleManager(&used), E_FAIL) << "the children have none either";
    EXPECT_EQ(list.Replace(a.get(), b.get()), S_OK);
    EXPECT_EQ(list.Remove(b.get()), S_OK);
    list.Clear();
}

TEST(ListOfSignals, PassesAManagerOnToAllChildrenButDoesNotKeepIt)
{
    const TReference<IHandleManager> manager = MakeManager();
    CList list;
    const FakePtr inner = NewFakeBus("inner", {});
    const FakePtr bus = NewFakeBus("bus", {inner.get()}), leaf = NewFake("leaf", 7);
    list.Add(bus.get());
    list.Add(leaf.get());
    EXPECT_EQ(list.PassHandleManager(manager.get()), S_OK);
    for (CFakeSignal *signal : {bus.get(), inner.get()}) {
        IHandleManager *used = nullptr;
        ASSERT_EQ(signal->m_children->GetHandleManager(&used), S_OK);
        EXPECT_EQ(used, manager.get());
        used->Release();
    }
    EXPECT_EQ(manager->GetFirstHandle(), -1) << "signals in the list are not entered";
}

TEST(ListOfSignals, RefusesAnIndexBeyondTheEnd)
{
    CList list;
    const FakePtr a = NewFake("a");
    list.Add(a.get());
    ISignal *out = nullptr;
    EXPECT_EQ(list.GetAt(0, nullptr), E_INVALIDARG);
    EXPECT_EQ(list.GetAt(1, &out), E_INVALIDARG);
    EXPECT_EQ(list.GetAt(0xFFFFFFFF, &out), E_INVALIDARG);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(list.FindByName("a", nullptr), E_INVALIDARG);
}

// A list against plain vectors that do the same, step by step. The names are few, so that many are equal.
TEST(ListOfSignals, AgreesWithPlainVectorsOverRandomCalls)
{
    struct SEntry {
        std::string name;
        ISignal *signal;
    };
    const char *const names[] = {"a", "b", "c"};
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        CList list;
        std::vector<FakePtr> pool;
        for (int i = 0; i < 8; ++i)
            pool.push_back(NewFake(names[random() % 3]));
        std::vector<ISignal *> expected;
        std::vector<SEntry> entries;  // in the order of entering
        const auto firstNamed = [&entries](const char *name) {
            return std::ranges::find(entries, std::string(name), &SEntry::name);
        };
        for (int step = 0; step < 40; ++step) {
            CFakeSignal *signal = pool[random() % pool.size()].get();
            CFakeSignal *other = pool[random() % pool.size()].get();
            const auto place = std::ranges::find(expected, static_cast<ISignal *>(signal));
            const auto otherPlace = std::ranges::find(expected, static_cast<ISignal *>(other));
            switch (random() % 5) {
            case 0:
                list.Add(signal);
                expected.push_back(signal);
                entries.push_back({signal->GetName(), signal});
                break;
            case 1:
                ASSERT_EQ(list.InsertBefore(signal, other), otherPlace != expected.end() ? S_OK : E_INVALIDARG);
                if (otherPlace == expected.end())
                    break;
                expected.insert(otherPlace, signal);
                entries.push_back({signal->GetName(), signal});
                break;
            case 2:
                ASSERT_EQ(list.Replace(signal, other), place != expected.end() ? S_OK : E_INVALIDARG);
                if (place != expected.end())
                    *place = other;
                break;
            default: {
                ASSERT_EQ(list.Remove(signal), place != expected.end() ? S_OK : E_FAIL);
                if (place == expected.end())
                    break;
                expected.erase(place);
                const auto entry = firstNamed(signal->GetName());
                if (entry != entries.end())
                    entries.erase(entry);
            }
            }
            ASSERT_EQ(Signals(list), expected);
            for (const char *name : names) {
                const auto entry = firstNamed(name);
                ASSERT_EQ(Find(list, name), entry != entries.end() ? entry->signal : nullptr);
            }
        }
    }
}

}  // namespace
