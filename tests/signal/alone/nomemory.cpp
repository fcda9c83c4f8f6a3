// The signal model without memory.
#include "nomemory.h"

#include <string>

#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "signal/wave.h"

namespace {

using tesk::TReference;

constexpr const char *Bus = "a#28#std_logic_vector(7 downto 0)1 ricd7 0 e#9#std_logicc9 UX01ZWLH-";

/// What a factory makes at last, when it has memory enough.
template <typename Interface>
TReference<Interface> MakeStarved(const std::function<long(Interface **)> &make)
{
    Interface *made = nullptr;
    EXPECT_GT(Starve([&] {
                  const long result = make(&made);
                  EXPECT_EQ(made != nullptr, result == S_OK);
                  return result;
              }),
              0);
    return TReference<Interface>(made);
}

}  // namespace

TEST(WithoutMemory, NoPartOfTheSignalModelIsMade)
{
    MakeStarved<ISignal>(CreateEmptySignal);
    MakeStarved<IHandleManager>(CreateHandleManager);
    MakeStarved<ISignalContainer>([](ISignalContainer **out) { return CreateSignalContainer(out, nullptr); });
    MakeStarved<ISignalWave>([](ISignalWave **out) { return CreateSignalWave(8, out); });
}

TEST(WithoutMemory, NoSignalOfATypeIsMade)
{
    const TReference<ISignal> signal =
        MakeStarved<ISignal>([](ISignal **out) { return CreateSignal(Bus, nullptr, out); });
    EXPECT_EQ(signal->GetChildren()->GetCount(), 8u);
    const Kestrin::KTypeInfo type(Bus);
    MakeStarved<ISignal>([&type](ISignal **out) { return CreateSignal(type, nullptr, out); });
}

TEST(WithoutMemory, NoIteratorOverABusIsMade)
{
    ISignal *made = nullptr;
    ASSERT_EQ(CreateSignal(Bus, nullptr, &made), S_OK);
    const TReference<ISignal> signal(made);
    MakeStarved<IBusEventIterator>(
        [&signal](IBusEventIterator **out) { return CreateBusEventIterator(signal.get(), out); });
}

TEST(WithoutMemory, ATypeIsNotApplied)
{
    ISignal *made = nullptr;
    ASSERT_EQ(CreateEmptySignal(&made), S_OK);
    const TReference<ISignal> signal(made);
    EXPECT_GT(Starve([&signal] { return signal->SetTypeInfoString(Bus); }), 0);
    EXPECT_STREQ(signal->GetTypeInfo()->GetTypeInfoString(), Bus);
    EXPECT_EQ(signal->GetChildren()->GetCount(), 8u);
}
