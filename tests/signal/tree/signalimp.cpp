#include "signal/tree/signalimp.h"

#include "signal/signaltools.h"

namespace {

using testing::ElementsAre;

TEST(SignalFullName, IsThePathWithoutASeparator)
{
    const TReference<ISignal> array =
        MakeNamed("a", ArrayType("a(1 to 2)", 1, "rict1 2", RecordType({{"f", BitType}})));
    ISignal *element = ChildAt(array->GetChildren(), 0);
    ISignal *field = ChildAt(element->GetChildren(), 0);
    char buffer[32];
    EXPECT_EQ(array->GetFullName(buffer, sizeof buffer), S_OK);
    EXPECT_STREQ(buffer, "a");
    EXPECT_EQ(element->GetFullName(buffer, sizeof buffer), S_OK);
    EXPECT_STREQ(buffer, "a(1)");
    EXPECT_EQ(field->GetFullName(buffer, sizeof buffer), S_OK);
    EXPECT_STREQ(buffer, "a(1).f");
}

TEST(SignalFullName, WantsABuffer)
{
    const TReference<ISignal> signal = MakeNamed("a", BitType);
    char buffer[4] = "xyz";
    EXPECT_EQ(signal->GetFullName(nullptr, 10), E_INVALIDARG);
    EXPECT_EQ(signal->GetFullName(buffer, 0), E_INVALIDARG);
    EXPECT_STREQ(buffer, "xyz");
}

TEST(SignalFullName, WantsDeliberatelyOneByteMoreThanItNeeds)
{
    const TReference<ISignal> vector = MakeNamed("ab", VectorType(2));
    ISignal *element = ChildAt(vector->GetChildren(), 1);  // "ab(0)", 6 bytes with the zero
    char buffer[16];
    EXPECT_EQ(element->GetFullName(buffer, 7), S_OK);
    EXPECT_STREQ(buffer, "ab(0)");
    EXPECT_EQ(element->GetFullName(buffer, 6), E_OUTOFMEMORY);
    EXPECT_STREQ(buffer, "ab") << "the parent's path stays";
    EXPECT_EQ(element->GetFullName(buffer, 3), E_OUTOFMEMORY);
    EXPECT_STREQ(buffer, "");
}

TEST(SignalFullName, NeverWritesBehindTheBuffer)
{
    const TReference<ISignal> vector = MakeNamed("abc", VectorType(12));
    ISignal *element = ChildAt(vector->GetChildren(), 0);
    for (unsigned size = 1; size <= 12; ++size) {
        const std::unique_ptr<char[]> buffer(new char[size]);  // exactly, for the sanitizer
        EXPECT_EQ(element->GetFullName(buffer.get(), size), size >= 9 ? S_OK : E_OUTOFMEMORY) << size;
    }
}

TEST(SharedWave, IsHeldByBothSignals)
{
    const TReference<ISignal> first = MakeSignal(StdLogicType);
    TReference<ISignal> second = MakeSignal(StdLogicType);
    EXPECT_EQ(second->ShareWave(first->GetWave()), S_OK);
    EXPECT_EQ(second->GetWave(), first->GetWave());
    EXPECT_EQ(ReferencesTo(*first->GetWave()), 2U);
    EXPECT_TRUE(first->OwnsWave());
    EXPECT_FALSE(second->OwnsWave());
    second.reset();
    EXPECT_EQ(ReferencesTo(*first->GetWave()), 1U);
}

TEST(SharedWave, OutlivesTheSignalThatProvidedIt)
{
    TReference<ISignal> first = MakeSignal(StdLogicType);
    const TReference<ISignal> second = MakeSignal(StdLogicType);
    second->ShareWave(first->GetWave());
    AddEvent(*first, 5, 3);
    first.reset();
    EXPECT_EQ(second->GetWave()->GetEventCount(), 1U);
}

TEST(SharedWave, MayBeTheSignalsOwn)
{
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    EXPECT_EQ(signal->ShareWave(signal->GetWave()), S_OK);
    EXPECT_EQ(ReferencesTo(*signal->GetWave()), 1U);
    EXPECT_FALSE(signal->OwnsWave());
}

TEST(SharedWave, IsGivenUpForANewOneOfItsWidth)
{
    const TReference<ISignal> real = MakeSignal(RealType);
    const TReference<ISignal> logic = MakeSignal(StdLogicType);
    logic->ShareWave(real->GetWave());
    EXPECT_EQ(logic->ShareWave(nullptr), S_OK);
    EXPECT_TRUE(logic->OwnsWave());
    EXPECT_NE(logic->GetWave(), real->GetWave());
    EXPECT_EQ(logic->GetValueSize(), 8U);
    EXPECT_EQ(ReferencesTo(*real->GetWave()), 1U);
}

TEST(SharedWave, OfNobodyLeavesAnOwnWaveAlone)
{
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    ISignalWave *wave = signal->GetWave();
    EXPECT_EQ(signal->ShareWave(nullptr), S_OK);
    EXPECT_EQ(signal->GetWave(), wave);
}

TEST(SharedWave, IsRefusedByCompositesAndSignalsWithoutAWave)
{
    const TReference<ISignalWave> wave = NewWave();
    EXPECT_EQ(MakeSignal(VectorType(2))->ShareWave(wave.get()), E_FAIL);
    EXPECT_EQ(MakeEmpty()->ShareWave(wave.get()), E_FAIL);
    EXPECT_EQ(MakeEmpty()->ShareWave(nullptr), E_FAIL);
}

TEST(SharedWave, IsNoLongerSharedOnceTheTypeBroughtANewOne)
{
    const TReference<ISignal> first = MakeSignal(StdLogicType);
    const TReference<ISignal> second = MakeSignal(StdLogicType);
    second->ShareWave(first->GetWave());
    EXPECT_EQ(second->SetTypeInfoString(RealType), S_OK);
    EXPECT_TRUE(second->OwnsWave());
    EXPECT_NE(second->GetWave(), first->GetWave());
}

TEST(SignalIterators, ExistForWhatTheSignalHas)
{
    ISignalIterator *signals = nullptr;
    IEventIterator *events = nullptr;
    const TReference<ISignal> scalar = MakeSignal(BitType);
    EXPECT_EQ(scalar->CreateSignalIterator(&signals), E_FAIL);
    ASSERT_EQ(scalar->CreateEventIterator(&events), S_OK);
    EXPECT_EQ(events->Release(), 0U);

    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    EXPECT_EQ(vector->CreateEventIterator(&events), E_FAIL);
    ASSERT_EQ(vector->CreateSignalIterator(&signals), S_OK);
    EXPECT_EQ(signals->Release(), 0U);
}

TEST(SignalBusIterator, ExistsForASignalWithChildren)
{
    IBusEventIterator *events = nullptr;
    EXPECT_EQ(MakeSignal(BitType)->CreateBusEventIterator(&events), E_FAIL);
    const TReference<ISignal> vector = MakeSignal(VectorType(2));
    ASSERT_EQ(vector->CreateBusEventIterator(&events), S_OK);
    EXPECT_EQ(events->GetTotalValueSize(), 8U);
    EXPECT_EQ(events->Release(), 0U);
}

TEST(Signal, StoresNameParentTimeAndInformation)
{
    const TReference<ISignal> signal = MakeEmpty();
    const TReference<ISignal> parent = MakeEmpty();
    signal->SetName("clk");
    signal->SetName(signal->GetName() + 1);
    EXPECT_STREQ(signal->GetName(), "lk");
    signal->SetName(nullptr);
    EXPECT_STREQ(signal->GetName(), "");
    signal->SetParent(parent.get());
    EXPECT_EQ(signal->GetParent(), parent.get());
    signal->SetMaxTime(1LL << 40);
    EXPECT_EQ(signal->GetMaxTime(), 1LL << 40);
    signal->SetStimulatorInfo("F:1:x");
    EXPECT_STREQ(signal->GetStimulatorInfo(), "F:1:x");
    signal->SetStimulatorInfo(nullptr);
    EXPECT_STREQ(signal->GetStimulatorInfo(), "");
    signal->Refresh();
}

}  // namespace
