#include "core/stimulus.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>

#include "core/support.h"
#include "slots.h"

namespace {

bool IsTagged(IStimulus *stimulus)
{
    return (reinterpret_cast<std::uintptr_t>(stimulus) & 1) != 0;
}

StimulusPtr Untagged(IStimulus *stimulus)
{
    return StimulusPtr(reinterpret_cast<IStimulus *>(reinterpret_cast<std::uintptr_t>(stimulus) & ~std::uintptr_t{1}));
}

// Keeps every default of the interface.
class CPlainDefaults final : public IStimulus {
public:
    void Destroy() override {}
    bool GetValue(long long, SimpleString::CStr &) override { return false; }
    long long GetNextEventTime(long long) override { return -1; }
    void GetFormula(SimpleString::CStr &) override {}
    bool IsFinishedAt(long long) override { return false; }
    int CheckSettings(long long *) override { return 0; }
};

}  // namespace

TEST(StimulusInterface, KeepsTheOrderOfItsSlots)
{
    EXPECT_EQ(SlotOf(&IStimulus::Destroy), 0U);
    EXPECT_EQ(SlotOf(&IStimulus::GetValue), 1U);
    EXPECT_EQ(SlotOf(&IStimulus::GetBinary8BytesValue), 2U);
    EXPECT_EQ(SlotOf(&IStimulus::GetNextEventTime), 3U);
    EXPECT_EQ(SlotOf(&IStimulus::GetFormula), 4U);
    EXPECT_EQ(SlotOf(&IStimulus::AllowBinary8BytesValues), 5U);
    EXPECT_EQ(SlotOf(&IStimulus::IsCustom), 6U);
    EXPECT_EQ(SlotOf(&IStimulus::GetSignalTypeInfo), 7U);
    EXPECT_EQ(SlotOf(&IStimulus::IsFinishedAt), 8U);
    EXPECT_EQ(SlotOf(&IStimulus::IsCounter), 9U);
    EXPECT_EQ(SlotOf(&IStimulus::CheckSettings), 10U);
    EXPECT_EQ(SlotOf(&IStimulus::GetTimeString), 11U);
    EXPECT_EQ(SlotOf(&IStimulus::GetRepeatString), 12U);
    EXPECT_EQ(SlotOf(&IStimulus::GetCancelString), 13U);
    EXPECT_EQ(SlotOf(&IStimulus::GetRepeatRateInSimUnits), 14U);
    EXPECT_EQ(SlotOf(&IStimulus::GetRepeatRate), 15U);
}

TEST(EventInterface, KeepsTheOrderOfItsSlots)
{
    EXPECT_EQ(SlotOf(&ISimpleStimulus::GetValue), 0U);
    EXPECT_EQ(SlotOf(&ISimpleStimulus::SetValue), 1U);
    EXPECT_EQ(SlotOf(&ISimpleStimulus::GetBinary8BytesValue), 2U);
    EXPECT_EQ(SlotOf(&ISimpleStimulus::SetBinary8BytesValue), 3U);
    EXPECT_EQ(SlotOf(&ISimpleStimulus::GetTime), 4U);
    EXPECT_EQ(SlotOf(&ISimpleStimulus::GetTimeString), 5U);
}

TEST(StimulusInterface, HasDefaults)
{
    CPlainDefaults defaults;
    IStimulus &stimulus = defaults;
    long long value = 7;
    SimpleString::CStr text("kept");
    EXPECT_FALSE(stimulus.GetBinary8BytesValue(0, value));
    EXPECT_EQ(value, 7);
    EXPECT_FALSE(stimulus.GetRepeatString(text));
    EXPECT_FALSE(stimulus.GetCancelString(text));
    EXPECT_STREQ(text, "kept");
    stimulus.GetTimeString(0, text);
    EXPECT_STREQ(text, "");
    EXPECT_FALSE(stimulus.IsCustom());
    EXPECT_FALSE(stimulus.IsCounter());
    EXPECT_EQ(stimulus.GetSignalTypeInfo(), nullptr);
    EXPECT_EQ(stimulus.GetRepeatRate(), 0);
    EXPECT_EQ(stimulus.GetRepeatRateInSimUnits(), 0);
}

TEST(Create, GivesOneSharedStimulusForAnEmptyFormula)
{
    IStimulus *empty = IStimulus::Create(nullptr, 0, 1, nullptr, false, false);
    EXPECT_EQ(g_simRes, 1);
    EXPECT_EQ(IStimulus::Create("", 5, 1000, nullptr, true, false), empty);
    EXPECT_EQ(g_simRes, 1000);
    for (int i = 0; i < 3; ++i)
        empty->Destroy();
    SimpleString::CStr text("text");
    EXPECT_TRUE(empty->GetValue(0, text));
    EXPECT_STREQ(text, "");
    EXPECT_EQ(empty->GetNextEventTime(-1), -1);
    text = "text";
    empty->GetFormula(text);
    EXPECT_STREQ(text, "");
    for (const long long time : {-1LL, 0LL, 1LL << 62})
        EXPECT_FALSE(empty->IsFinishedAt(time));
    EXPECT_EQ(empty->CheckSettings(nullptr), 0);
    EXPECT_FALSE(empty->IsCustom());
}

TEST(EmptyStimulus, ThatIsCancelledIsFinishedAtAnyTime)
{
    CEmptyStimulus cancelled(true);
    for (const long long time : {-1LL, 0LL, 1LL << 62})
        EXPECT_TRUE(cancelled.IsFinishedAt(time));
}

TEST(Create, StoresTheResolutionOfAFailingFormulaToo)
{
    EXPECT_EQ(IStimulus::Create(" ", 0, 77, nullptr, false, false), nullptr);
    EXPECT_EQ(g_simRes, 77);
    g_simRes = 1000;
}

TEST(Create, TagsThePointerOfAWideBinaryValue)
{
    const struct {
        const char *formula;
        bool binaryValues, rawValues, isTagged;
    } rows[] = {
        {"1 0ns", true, false, false},  {"1010 0ns", true, false, true},      {"1010 0ns", false, false, false},
        {"1010 0ns", true, true, true}, {"1 0ns, 10 5ns", true, false, true}, {"10 0ns, 1 0ns", true, false, true},
    };
    for (const auto &row : rows) {
        IStimulus *stimulus = IStimulus::Create(row.formula, 0, 1000, nullptr, row.binaryValues, row.rawValues);
        EXPECT_EQ(IsTagged(stimulus), row.isTagged) << row.formula;
        EXPECT_NE(ValueAt(*Untagged(stimulus), 5000), std::nullopt);
    }
}

TEST(SetupAdditionalInfo, WithoutANameSetsOneDescriptionOnly)
{
    g_SignalName = nullptr;
    g_TypeDescription.Empty();
    IStimulus::SetupAdditionalInfo(nullptr, "e#3#bitc2 01");
    EXPECT_STREQ(g_SignalTypeDescription, "e#3#bitc2 01");
    EXPECT_STREQ(g_TypeDescription, "");
    EXPECT_EQ(g_SignalName, nullptr);
}

TEST(SetupAdditionalInfo, WithANameSharesOneText)
{
    const char name[] = "top/sig";
    IStimulus::SetupAdditionalInfo(name, "e#3#bitc2 01");
    EXPECT_EQ(g_SignalName, name);
    EXPECT_STREQ(g_TypeDescription, "e#3#bitc2 01");
    EXPECT_EQ(static_cast<const char *>(g_TypeDescription), static_cast<const char *>(g_SignalTypeDescription));
    IStimulus::SetupAdditionalInfo(nullptr, nullptr);
    EXPECT_STREQ(g_SignalTypeDescription, "");
    g_SignalName = nullptr;
    g_TypeDescription.Empty();
}
