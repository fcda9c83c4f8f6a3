#include <random>

#include "signal/unknown.h"
#include "signaldata/datatools.h"

namespace {

using testing::ElementsAre;

std::vector<int> HandlesIn(tesk::ISignalDataContainer &container)
{
    std::vector<int> handles;
    for (unsigned i = 0; i < container.GetCount(); ++i)
        handles.push_back(container.GetAt(i)->GetHandle());
    return handles;
}

TEST(SignalDataContainer, KeepsSignalsSortedByHandle)
{
    const auto container = MakeDataContainer();
    EXPECT_EQ(CountOf(*container), 1U);
    for (const int handle : {5, 1, 9, 3})
        EXPECT_EQ(container->Add(MakeData(handle).get()), S_OK);
    EXPECT_THAT(HandlesIn(*container), ElementsAre(1, 3, 5, 9));
    EXPECT_EQ(container->GetAt(4), nullptr);
    EXPECT_EQ(CountOf(*container->GetAt(0)), 1U) << "the container holds the only reference";
}

TEST(SignalDataContainer, PutsANewSignalInFrontOfThoseOfItsHandle)
{
    const auto container = MakeDataContainer();
    const auto first = MakeData(5), second = MakeData(5);
    container->Add(first.get());
    container->Add(second.get());
    EXPECT_EQ(container->GetAt(0), second.get());
    EXPECT_EQ(container->FindByHandle(5), second.get());
    EXPECT_EQ(container->GetAt(1), first.get());
}

TEST(SignalDataContainer, RefusesNullAndNegativeHandles)
{
    const auto container = MakeDataContainer();
    EXPECT_EQ(container->Add(nullptr), E_INVALIDARG);
    EXPECT_EQ(container->Add(MakeData().get()), E_INVALIDARG);
    EXPECT_EQ(container->GetCount(), 0U);
    EXPECT_EQ(tesk::CreateSignalDataContainer(nullptr), E_INVALIDARG);
}

TEST(SignalDataContainer, RemovesASignalThatIsThere)
{
    const auto container = MakeDataContainer();
    const auto first = MakeData(5), second = MakeData(5), stranger = MakeData(5);
    container->Add(first.get());
    container->Add(second.get());
    EXPECT_EQ(container->Remove(nullptr), E_INVALIDARG);
    EXPECT_EQ(container->Remove(stranger.get()), E_FAIL);
    EXPECT_EQ(container->Remove(first.get()), S_OK);
    EXPECT_EQ(CountOf(*first), 1U);
    EXPECT_EQ(container->Remove(first.get()), E_FAIL);
    EXPECT_EQ(container->GetAt(0), second.get());
}

TEST(SignalDataContainer, ReleasesItsSignalsAtItsEnd)
{
    auto container = MakeDataContainer();
    const auto data = MakeData(5);
    container->Add(data.get());
    EXPECT_EQ(CountOf(*data), 2U);
    container.reset();
    EXPECT_EQ(CountOf(*data), 1U);
}

TEST(SignalDataContainer, FindsByHandle)
{
    const auto container = MakeDataContainer();
    EXPECT_EQ(container->FindByHandle(5), nullptr);
    container->Add(MakeData(5).get());
    container->Add(MakeData(0).get());
    EXPECT_EQ(container->FindByHandle(5)->GetHandle(), 5);
    EXPECT_EQ(container->FindByHandle(0)->GetHandle(), 0);
    for (const int handle : {-1, 1, 4, 6, 2147483647})
        EXPECT_EQ(container->FindByHandle(handle), nullptr) << handle;
}

TEST(SignalDataContainer, FindsByNameInTheTreesInTurn)
{
    CMemoryList list;
    list.AddBus(1, "bus", VectorType(1), {2});
    list.AddLeaf(2, "x");
    const auto container = MakeDataContainer();
    const auto bus = MakeData(), scalar = MakeData();
    bus->Init(&list, 1);
    bus->SetHandle(8);
    scalar->Init(&list, 2);
    scalar->SetHandle(4);
    container->Add(bus.get());
    EXPECT_EQ(container->FindByName("x"), bus->GetChild(0));
    container->Add(scalar.get());
    EXPECT_EQ(container->FindByName("x"), scalar.get()) << "handle 4 stands in front";
    EXPECT_EQ(container->FindByName("bus"), bus.get());
    EXPECT_EQ(container->FindByName("y"), nullptr);
    EXPECT_EQ(container->FindByName(nullptr), nullptr);
}

TEST(SignalDataContainer, AgreesWithAListThatIsSortedByHand)  // differential
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> handles(0, 20);
    const auto container = MakeDataContainer();
    std::vector<int> expected;
    for (int step = 0; step < 2000; ++step) {
        const int handle = handles(random);
        const auto place = std::find(expected.begin(), expected.end(), handle);
        ASSERT_EQ(container->FindByHandle(handle) != nullptr, place != expected.end());
        if (place != expected.end() && random() % 2 == 0) {
            container->Remove(container->FindByHandle(handle));
            expected.erase(place);
        } else {
            container->Add(MakeData(handle).get());
            expected.push_back(handle);
            std::sort(expected.begin(), expected.end());
        }
        ASSERT_EQ(HandlesIn(*container), expected);
    }
}

}  // namespace
