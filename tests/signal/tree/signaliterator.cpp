#include "signal/tree/signaliterator.h"

#include "signal/signaltools.h"

namespace {

TReference<ISignalIterator> WalkOver(ISignalContainer &container)
{
    ISignalIterator *iterator = nullptr;
    EXPECT_EQ(container.CreateIterator(&iterator), S_OK);
    return TReference<ISignalIterator>(iterator);
}

TEST(SignalIterator, GoesThroughTheListInOrder)
{
    const TReference<ISignalContainer> container = MakeContainer();
    for (const char *name : {"a", "b", "c"})
        AddNamed(*container, name, BitType);
    const TReference<ISignalIterator> walk = WalkOver(*container);
    ISignal *signals[5] = {};
    unsigned fetched = 9;
    EXPECT_EQ(walk->Next(2, signals, &fetched), S_OK);
    EXPECT_EQ(fetched, 2U);
    EXPECT_STREQ(signals[1]->GetName(), "b");
    EXPECT_EQ(ReferencesTo(*signals[1]), 1U) << "no references are added";
    EXPECT_EQ(walk->Next(5, signals, &fetched), S_OK);
    EXPECT_EQ(fetched, 1U);
    EXPECT_STREQ(signals[0]->GetName(), "c");
    EXPECT_EQ(walk->Next(1, signals, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 0U);
    walk->Reset();
    EXPECT_EQ(walk->Next(1, signals, nullptr), S_OK);
    EXPECT_STREQ(signals[0]->GetName(), "a");
    EXPECT_EQ(walk->Next(0, signals, &fetched), S_FALSE);
}

TEST(SignalIterator, OverAnEmptyListHasNothing)
{
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignalIterator> walk = WalkOver(*container);
    ISignal *signal = nullptr;
    EXPECT_EQ(walk->Next(1, &signal, nullptr), S_FALSE);
    EXPECT_EQ(signal, nullptr);
}

TEST(SignalIterator, HoldsNoReferenceOnItsContainer)
{
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignalIterator> walk = WalkOver(*container);
    EXPECT_EQ(ReferencesTo(*container), 1U);
    EXPECT_EQ(container->CreateIterator(nullptr), E_INVALIDARG);
}

TEST(SignalIterator, AnswersToTwoIdentifiers)
{
    const TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignalIterator> walk = WalkOver(*container);
    void *out = nullptr;
    EXPECT_EQ(walk->QueryInterface(IID_ISignalIterator, &out), S_OK);
    walk->Release();
    EXPECT_EQ(walk->QueryInterface(IID_ISignal, &out), E_NOINTERFACE);
}

}  // namespace
