// Signals that live on outside their list or their parent: while they live they are found as before, and when they end
// nothing leads to them.
#include <gtest/gtest.h>

#include "signal/signaltools.h"

namespace {

constexpr unsigned GenerousSize = 100;

}  // namespace

TEST(DepartedSignal, IsFoundByItsOldNameUntilItEnds)
{
    const TReference<ISignalContainer> list = MakeContainer();
    TReference<ISignal> old = MakeNamed("n", BitType);
    list->Add(old.get());
    const TReference<ISignal> successor = MakeNamed("other", BitType);
    ASSERT_EQ(list->Replace(old.get(), successor.get()), S_OK);
    EXPECT_EQ(FindIn(*list, "n"), old.get());  // deliberate: names are not told of a replacement
    old.reset();
    ISignal *found = nullptr;
    EXPECT_EQ(list->Find("n", &found), E_FAIL);
}

TEST(DepartedSignal, OfTwoWithOneNameLeavesNoEntryBehind)
{
    const TReference<ISignalContainer> list = MakeContainer();
    const TReference<ISignal> first = MakeNamed("n", BitType);
    TReference<ISignal> second = MakeNamed("n", BitType);
    list->Add(first.get());
    list->Add(second.get());
    ASSERT_EQ(list->Remove(second.get()), S_OK);
    EXPECT_EQ(FindIn(*list, "n"), second.get());  // deliberate: the first entry of the name went
    second.reset();
    ISignal *found = nullptr;
    EXPECT_EQ(list->Find("n", &found), E_FAIL);
}

TEST(DepartedSignal, ThatWasRenamedAndMovedIsForgottenByItsFirstList)
{
    const TReference<ISignalContainer> list = MakeContainer();
    {
        const TReference<ISignalContainer> other = MakeContainer();
        const TReference<ISignal> signal = MakeNamed("", BitType);
        list->Add(signal.get());
        signal->SetName("top");
        ASSERT_EQ(list->Remove(signal.get()), S_OK);
        other->Add(signal.get());
    }
    ISignal *found = nullptr;
    EXPECT_EQ(list->Find("", &found), E_FAIL);
}

TEST(DepartedSignal, MayOutliveTheList)
{
    TReference<ISignal> signal = MakeNamed("n", BitType);
    {
        const TReference<ISignalContainer> list = MakeContainer();
        list->Add(signal.get());
        list->Add(MakeNamed("m", BitType).get());
        signal->SetName("renamed");
        list->Remove(signal.get());
    }
    EXPECT_STREQ(signal->GetName(), "renamed");
    signal.reset();
}

TEST(Child, ThatOutlivesItsParentHasNone)
{
    TReference<ISignal> parent = MakeNamed("a", VectorType(2));
    ISignal *child = ChildAt(parent->GetChildren(), 0);
    child->AddRef();
    const TReference<ISignal> kept(child);
    parent.reset();
    EXPECT_EQ(kept->GetParent(), nullptr);
    char name[GenerousSize];
    EXPECT_EQ(kept->GetFullName(name, sizeof name), S_OK);
    EXPECT_STREQ(name, "(1)");
    kept->GetMode();
}

TEST(Child, ThatLeftItsParentHasNoneWhenThatEnds)
{
    const struct {
        const char *how;
        void (*leave)(ISignal &parent, ISignal &child);
    } rows[] = {
        {"type", [](ISignal &parent, ISignal &) { parent.SetTypeInfoString(BitType); }},
        {"removal", [](ISignal &parent, ISignal &child) { parent.GetChildren()->Remove(&child); }},
        {"clearing", [](ISignal &parent, ISignal &) { parent.GetChildren()->Clear(); }},
        {"replacement",
         [](ISignal &parent, ISignal &child) {
             parent.GetChildren()->Replace(&child, MakeNamed("other", BitType).get());
         }},
    };
    for (const auto &row : rows) {
        TReference<ISignal> parent = MakeNamed("a", VectorType(2));
        ISignal *child = ChildAt(parent->GetChildren(), 0);
        child->AddRef();
        const TReference<ISignal> kept(child);
        row.leave(*parent, *child);
        EXPECT_EQ(kept->GetParent(), parent.get()) << row.how;  // deliberate: leaving does not tell the child
        parent.reset();
        EXPECT_EQ(kept->GetParent(), nullptr) << row.how;
        kept->GetMode();
    }
}

TEST(Parent, IsLeftByAnyOfItsChildrenInAnyOrder)
{
    TReference<ISignal> parent = MakeNamed("a", BitType);
    TReference<ISignal> children[4];
    for (TReference<ISignal> &child : children) {
        child = MakeNamed("c", BitType);
        child->SetParent(parent.get());
    }
    children[1].reset();
    children[0]->SetParent(children[2].get());
    children[3].reset();
    children[2]->SetParent(nullptr);
    parent.reset();
    EXPECT_EQ(children[0]->GetParent(), children[2].get());
    children[2].reset();
    EXPECT_EQ(children[0]->GetParent(), nullptr);
}
