#include "slots.h"
#include "waveform/customstimulus.h"
#include "waveform/fakefiles.h"
#include "waveform/tarnstimulus.h"
#include "waveform/vcdstimulus.h"

namespace {

// The least that makes the base a class with objects.
class CLeastStimulus final : public ICustomStimulus {
public:
    CLeastStimulus() { CreateSignal(IntegerType, nullptr, &m_signal); }
    bool GetValue(long long, SimpleString::CStr &) override { return false; }
    long long GetNextEventTime(long long) override { return -1; }
    void GetFormula(SimpleString::CStr &) override {}
    int CheckSettings(long long *) override { return 0; }
};

TEST(CustomStimulusBase, AnswersForAllKinds)
{
    CLeastStimulus stimulus;
    SimpleString::CStr text("x");
    long long value = 7;
    EXPECT_TRUE(stimulus.IsCustom());
    EXPECT_FALSE(stimulus.IsCounter());
    EXPECT_FALSE(stimulus.IsFinishedAt(0));
    stimulus.AllowBinary8BytesValues();
    EXPECT_FALSE(stimulus.GetBinary8BytesValue(0, value));
    EXPECT_EQ(value, 7);
    EXPECT_FALSE(stimulus.GetRepeatString(text));
    EXPECT_FALSE(stimulus.GetCancelString(text));
    EXPECT_STREQ(text, "x");
    stimulus.GetTimeString(0, text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(stimulus.GetRepeatRate(), 0);
    EXPECT_EQ(stimulus.GetRepeatRateInSimUnits(), 0);
}

TEST(CustomStimulusBase, GivesUpItsSignalButNotItself)
{
    CLeastStimulus stimulus;
    ASSERT_NE(stimulus.GetSignalTypeInfo(), nullptr);
    EXPECT_STREQ(stimulus.GetSignalTypeInfo()->GetTypeIdentifier(), "integer");
    stimulus.Destroy();
    EXPECT_EQ(stimulus.GetSignalTypeInfo(), nullptr);
    stimulus.Destroy();
    EXPECT_TRUE(stimulus.IsCustom());
}

template <typename TStimulus>
void ExpectTheSlotsOfAStimulus()
{
    using I = TStimulus;
    const std::vector<std::size_t> slots = {
        SlotOf(&I::Destroy),          SlotOf(&I::GetValue),          SlotOf(&I::GetBinary8BytesValue),
        SlotOf(&I::GetNextEventTime), SlotOf(&I::GetFormula),        SlotOf(&I::AllowBinary8BytesValues),
        SlotOf(&I::IsCustom),         SlotOf(&I::GetSignalTypeInfo), SlotOf(&I::IsFinishedAt),
        SlotOf(&I::IsCounter),        SlotOf(&I::CheckSettings),     SlotOf(&I::GetTimeString),
        SlotOf(&I::GetRepeatString),  SlotOf(&I::GetCancelString),   SlotOf(&I::GetRepeatRateInSimUnits),
        SlotOf(&I::GetRepeatRate)};
    for (std::size_t i = 0; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], i);
}

TEST(CustomStimulusSlots, AreThoseOfAStimulusInOrder)
{
    ExpectTheSlotsOfAStimulus<ICustomStimulus>();
    ExpectTheSlotsOfAStimulus<CCustomStimulus>();
    ExpectTheSlotsOfAStimulus<CTarnStimulus>();
    ExpectTheSlotsOfAStimulus<CVcdStimulus>();
}

// The virtual destructor takes slots 16 and 17; what the kinds add comes behind.
struct SFirstBehind : ICustomStimulus {
    virtual void First() {}
};

TEST(CustomStimulusSlots, EndWithTheDestructor)
{
    EXPECT_EQ(SlotOf(&SFirstBehind::First), 18u);
}

template <typename TStimulus>
class NewStimulus : public testing::Test {};

using Kinds = testing::Types<CCustomStimulus, CTarnStimulus, CVcdStimulus>;
TYPED_TEST_SUITE(NewStimulus, Kinds);

TYPED_TEST(NewStimulus, IsSilentUntilItIsFilled)
{
    TypeParam *stimulus = new TypeParam;
    SimpleString::CStr value;
    long long number = 7;
    stimulus->AllowBinary8BytesValues();
    for (long long time : {-1LL, 0LL, 1LL, 9223372036854775807LL}) {
        EXPECT_FALSE(stimulus->GetValue(time, value));
        EXPECT_FALSE(stimulus->GetBinary8BytesValue(time, number));
        EXPECT_EQ(stimulus->GetNextEventTime(time), -1);
    }
    EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
    EXPECT_TRUE(stimulus->IsCustom());
    EXPECT_FALSE(stimulus->IsCounter());
    stimulus->Destroy();
}

TYPED_TEST(NewStimulus, CanBeDeletedAfterAFailure)
{
    for (const char *arguments : {static_cast<const char *>(nullptr), "", "a", " no such file , s"}) {
        const auto stimulus = std::make_unique<TypeParam>();
        EXPECT_FALSE(stimulus->InitFromFormula(0, arguments));
        EXPECT_EQ(stimulus->GetSignalTypeInfo(), nullptr);
    }
}

}  // namespace
