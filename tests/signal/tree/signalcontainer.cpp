#include "signal/tree/signalcontainer.h"

#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

TEST(SignalContainer, MakesItsOwnManagerOrTakesAReferenceOnTheCallers)
{
    const TReference<ISignalContainer> own = MakeContainer();
    IHandleManager *manager = nullptr;
    ASSERT_EQ(own->GetHandleManager(&manager), S_OK);
    EXPECT_EQ(manager->Release(), 1U) << "handed out with a reference";

    const TReference<IHandleManager> shared = MakeManager();
    TReference<ISignalContainer> container = MakeContainer(shared.get());
    EXPECT_EQ(ReferencesTo(*shared), 2U);
    container.reset();
    EXPECT_EQ(ReferencesTo(*shared), 1U);
    EXPECT_EQ(CreateSignalContainer(nullptr, shared.get()), E_INVALIDARG);
    EXPECT_EQ(ReferencesTo(*shared), 1U);
}

TEST(SignalContainer, ReleasesItsSignalsAtItsEnd)
{
    TReference<ISignalContainer> container = MakeContainer();
    const TReference<ISignal> signal = MakeNamed("s", BitType);
    container->Add(signal.get());
    EXPECT_EQ(ReferencesTo(*signal), 2U);
    container.reset();
    EXPECT_EQ(ReferencesTo(*signal), 1U);
}

TEST(SignalContainer, MakesSignalsThatItDoesNotAdd)
{
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *signal = nullptr;
    ASSERT_EQ(container->CreateStdSignal(1, &signal), S_OK);
    EXPECT_EQ(signal->GetParent(), nullptr);
    EXPECT_EQ(signal->Release(), 0U);
    ASSERT_EQ(container->CreateSignal(RealType, &signal), S_OK);
    EXPECT_EQ(signal->GetValueSize(), 8U);
    EXPECT_EQ(signal->Release(), 0U);
    EXPECT_EQ(container->GetCount(), 0U);

    ISignal *const before = signal = nullptr;
    EXPECT_EQ(container->CreateStdSignal(9, &signal), E_INVALIDARG);
    EXPECT_EQ(container->CreateSignal("x", &signal), E_FAIL);
    EXPECT_EQ(signal, before);
}

TEST(SignalContainer, AnswersToTwoIdentifiers)
{
    const TReference<ISignalContainer> container = MakeContainer();
    void *out = nullptr;
    EXPECT_EQ(container->QueryInterface(IID_ISignalContainer, &out), S_OK);
    container->Release();
    EXPECT_EQ(container->QueryInterface(IID_ISignal, &out), E_NOINTERFACE);
    EXPECT_EQ(container->GetMaxTime(), 0);
}

class Find : public testing::Test {
protected:
    Find() : container(MakeContainer())
    {
        AddNamed(*container, "leaf", BitType);
        AddNamed(*container, "v", VectorType(4));
        AddNamed(*container, "m",
                 ArrayType("m(0 to 1,3 downto 2)", 2, "rict0 1 ricd3 2", RecordType({{"f", VectorType(2)}})));
        AddNamed(*container, "\\x.y(1)\\", VectorType(2));
        AddNamed(*container, ".odd", BitType);
        AddNamed(*container, "", BitType);
    }

    std::string FullNameOf(const char *name)
    {
        ISignal *signal = FindIn(*container, name);
        char buffer[64] = "(none)";
        if (signal != nullptr)
            signal->GetFullName(buffer, sizeof buffer);
        return buffer;
    }

    TReference<ISignalContainer> container;
};

TEST_F(Find, FollowsAPathThroughTheTree)
{
    for (const char *path : {"leaf", "v", "v(3)", "v(0)", "m", "m(0,3)", "m(1,2).f", "m(1,2).f(0)", "\\x.y(1)\\",
                             "\\x.y(1)\\(1)", ".odd", ""})
        EXPECT_EQ(FullNameOf(path), path);
}

TEST_F(Find, GivesTheLeafWhereANameGoesOnBelowIt)
{
    EXPECT_EQ(FullNameOf("leaf(3)"), "leaf");
    EXPECT_EQ(FullNameOf("leaf.f.g"), "leaf");
    EXPECT_EQ(FullNameOf("v(3).x"), "v(3)");
}

TEST_F(Find, FailsForUnknownNamesAndLeavesTheAnswerAlone)
{
    ISignal *const before = ChildAt(container.get(), 0);
    for (const char *name : {"nothing", "v(4)", "v.f", "m(0,3).g", "m(0)", "LEAF", "\\x.y(1)", "v(", "v("}) {
        ISignal *signal = before;
        EXPECT_EQ(container->Find(name, &signal), E_FAIL) << name;
        EXPECT_EQ(signal, before) << name;
    }
    EXPECT_EQ(container->Find(nullptr, nullptr), E_FAIL);
    EXPECT_EQ(container->Find("leaf", nullptr), E_FAIL);
}

TEST_F(Find, DoesNotSplitAtTheFirstCharacter)
{
    ISignal *v = FindIn(*container, "v");
    EXPECT_EQ(FindIn(*v->GetChildren(), "(3)"), ChildAt(v->GetChildren(), 0));
    ISignal *element = FindIn(*container, "m(0,2)");
    EXPECT_EQ(FindIn(*element->GetChildren(), ".f(1)"), ChildAt(ChildAt(element->GetChildren(), 0)->GetChildren(), 0));
}

TEST_F(Find, AddsNoReference)
{
    EXPECT_EQ(ReferencesTo(*FindIn(*container, "v(3)")), 1U);
}

TEST(SetHandles, BindsTheLeavesDepthFirst)
{
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *record = AddNamed(*container, "r", RecordType({{"a", BitType}, {"v", VectorType(2)}, {"b", BitType}}));
    const int handles[] = {10, 11, 12, 13, 14};
    EXPECT_EQ(container->SetHandles("r", handles, 5), S_OK);
    EXPECT_EQ(FindIn(*container, "r.a")->GetHandle(), 10);
    EXPECT_EQ(FindIn(*container, "r.v(1)")->GetHandle(), 11);
    EXPECT_EQ(FindIn(*container, "r.v(0)")->GetHandle(), 12);
    EXPECT_EQ(FindIn(*container, "r.b")->GetHandle(), 13);
    EXPECT_EQ(record->GetHandle(), -1);
    IHandleManager *manager = nullptr;
    container->GetHandleManager(&manager);
    EXPECT_EQ(manager->GetFirstSignal(12), FindIn(*container, "r.v(0)"));
    manager->Release();
}

TEST(SetHandles, StopsWhereTheHandlesRunOut)
{
    const TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "v", VectorType(3));
    const int handles[] = {10, 11};
    EXPECT_EQ(container->SetHandles("v", handles, 2), S_OK);
    EXPECT_EQ(FindIn(*container, "v(1)")->GetHandle(), 11);
    EXPECT_EQ(FindIn(*container, "v(0)")->GetHandle(), -1);
    const int other = 20;
    EXPECT_EQ(container->SetHandles("v(0)", &other, 1), S_OK);
    EXPECT_EQ(FindIn(*container, "v(0)")->GetHandle(), 20);
}

TEST(SetHandles, NeedsHandlesAndAKnownName)
{
    const TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "s", BitType);
    const int handle = 5;
    EXPECT_EQ(container->SetHandles("s", &handle, 0), E_INVALIDARG);
    EXPECT_EQ(container->SetHandles("s", nullptr, 1), E_INVALIDARG);
    EXPECT_EQ(container->SetHandles("t", &handle, 1), E_FAIL);
}

TEST(SetHandles, LetsSignalsOfOneHandleShareTheWaveOfTheFirst)
{
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *first = AddNamed(*container, "a", StdLogicType);
    ISignal *second = AddNamed(*container, "b", StdLogicType);
    const int seven = 7, eight = 8;
    container->SetHandles("a", &seven, 1);
    container->SetHandles("b", &seven, 1);
    EXPECT_EQ(first->GetWave(), second->GetWave());
    EXPECT_TRUE(first->OwnsWave());
    EXPECT_FALSE(second->OwnsWave());

    container->SetHandles("b", &eight, 1);
    EXPECT_NE(first->GetWave(), second->GetWave());
    EXPECT_TRUE(second->OwnsWave());
    EXPECT_EQ(ReferencesTo(*first->GetWave()), 1U);
}

TEST(SetHandles, SharesAcrossTheWholeTree)
{
    const TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "a", StdLogicType);
    AddNamed(*container, "v", VectorType(2));
    const int handles[] = {7, 8};
    container->SetHandles("v", handles, 2);
    container->SetHandles("a", &handles[1], 1);
    EXPECT_EQ(FindIn(*container, "a")->GetWave(), FindIn(*container, "v(0)")->GetWave());
}

TEST(SetHandles, BoundAgainKeepsAnOwnWaveAndItsEvents)
{
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *signal = AddNamed(*container, "a", StdLogicType);
    const int handles[] = {7, 7, 8};
    for (const int &handle : handles) {
        container->SetHandles("a", &handle, 1);
        AddEvent(*signal, handle, 1);
    }
    EXPECT_EQ(signal->GetWave()->GetEventCount(), 2U);
    EXPECT_TRUE(signal->OwnsWave());
}

TEST(HandleManagerOfAContainer, GoesDownTheTree)
{
    const TReference<ISignalContainer> container = MakeContainer();
    ISignal *vector = AddNamed(*container, "v", VectorType(2));
    const TReference<IHandleManager> manager = MakeManager();
    EXPECT_EQ(container->SetHandleManager(manager.get()), S_OK);
    EXPECT_EQ(ReferencesTo(*manager), 3U);
    EXPECT_EQ(container->SetHandleManager(manager.get()), S_OK);
    EXPECT_EQ(ReferencesTo(*manager), 3U);
    EXPECT_EQ(manager->GetFirstHandle(), -1) << "signals in the list are not entered";
    EXPECT_EQ(container->SetHandleManager(nullptr), S_OK);
    EXPECT_EQ(ReferencesTo(*manager), 1U);
    IHandleManager *none = manager.get();
    EXPECT_EQ(container->GetHandleManager(&none), E_FAIL);
    EXPECT_EQ(vector->GetChildren()->GetHandleManager(&none), E_FAIL);
    EXPECT_EQ(none, manager.get());
}

TEST(HandleManagerOfAContainer, MayBeMissing)
{
    TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "a", StdLogicType);
    container->SetHandleManager(nullptr);
    const int handle = 7;
    EXPECT_EQ(container->SetHandles("a", &handle, 1), S_OK);
    EXPECT_EQ(FindIn(*container, "a")->GetHandle(), 7);
    AddNamed(*container, "v", VectorType(2));
    container->Clear();
    EXPECT_EQ(container->GetCount(), 0U);
}

TEST(HandleManagerOfAContainer, IsClearedWithItsOnlyOwner)
{
    const TReference<ISignalContainer> container = MakeContainer();
    AddNamed(*container, "v", VectorType(2));
    const int handles[] = {7, 8};
    container->SetHandles("v", handles, 2);
    container->Clear();
    IHandleManager *manager = nullptr;
    container->GetHandleManager(&manager);
    EXPECT_EQ(manager->GetFirstHandle(), -1);
    manager->Release();
}

TEST(HandleManagerOfAContainer, LeadsToNoSignalThatIsGone)
{
    const TReference<IHandleManager> manager = MakeManager();  // a second owner: nobody clears it
    const TReference<ISignalContainer> container = MakeContainer(manager.get());
    const int handles[] = {7, 8};
    ISignal *record = AddNamed(*container, "r", RecordType({{"v", VectorType(2)}}));
    container->SetHandles("r", handles, 2);
    record->SetTypeInfoString(RecordType({{"v", VectorType(2)}}).c_str());  // the bound leaves are gone
    EXPECT_EQ(manager->GetFirstSignal(7), nullptr);
    container->SetHandles("r", handles, 2);
    EXPECT_EQ(manager->GetFirstSignal(8), FindIn(*container, "r.v(0)"));
    container->Clear();
    EXPECT_EQ(manager->GetFirstSignal(8), nullptr);
    AddNamed(*container, "s", StdLogicType);
    EXPECT_EQ(container->SetHandles("s", handles, 1), S_OK);
    EXPECT_EQ(manager->GetFirstSignal(7), FindIn(*container, "s"));
}

}  // namespace
