#include "core/stimulus.h"
#include "signal/signaltools.h"

namespace {

TEST(SignalProperties, AreFoundWhateverTheirCase)
{
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->GetProperty("x"), nullptr);
    signal->SetProperty("Colour", "red");
    EXPECT_STREQ(signal->GetProperty("COLOUR"), "red");
    signal->SetProperty("colour", "blue");
    EXPECT_STREQ(signal->GetProperty("Colour"), "blue");
    EXPECT_EQ(signal->GetProperty(nullptr), nullptr);
    signal->SetProperty(nullptr, "x");
    signal->SetProperty("empty", nullptr);
    EXPECT_STREQ(signal->GetProperty("empty"), "");
}

TEST(SignalProperties, OfFourNamesTakeEffectInTheSignal)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("Handle", "17x");
    signal->SetProperty("MaxTime", "12345678901234");
    signal->SetProperty("VBus", "1");
    signal->SetProperty("Name", "clk");
    EXPECT_EQ(signal->GetHandle(), 17);
    EXPECT_EQ(signal->GetMaxTime(), 12345678901234);
    EXPECT_TRUE(signal->IsVBus());
    EXPECT_STREQ(signal->GetName(), "clk");
    EXPECT_EQ(PropertyOf(*signal, "Name"), "clk");
    signal->SetProperty("VBus", "0");
    EXPECT_FALSE(signal->IsVBus());
    signal->SetProperty("Name", signal->GetName() + 1);
    EXPECT_STREQ(signal->GetName(), "lk");
}

TEST(SignalProperties, TakeEffectDeliberatelyOnlyInTheirExactSpelling)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetHandle(3);
    signal->SetProperty("handle", "5");
    signal->SetProperty("maxtime", "5");
    signal->SetProperty("VBUS", "1");
    signal->SetProperty("name", "x");
    EXPECT_EQ(signal->GetHandle(), 3);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "5") << "the same key all the same";
    EXPECT_EQ(signal->GetMaxTime(), 0);
    EXPECT_FALSE(signal->IsVBus());
    EXPECT_STREQ(signal->GetName(), "");
}

TEST(SignalHandle, IsKeptInTheTableToo)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetHandle(7);
    EXPECT_EQ(signal->GetHandle(), 7);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "7");
    signal->SetHandle(-1);
    EXPECT_EQ(signal->GetHandle(), -1);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "(none)");
    signal->SetHandle(0);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "0");
}

TEST(SignalHandle, IsNotWrittenAgainWhereTheTextHoldsTheNumber)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("Handle", "007");
    signal->SetHandle(7);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "007");
    signal->SetHandle(8);
    EXPECT_EQ(PropertyOf(*signal, "Handle"), "8");
}

TEST(SignalMode, IsTheParentsUnlessTheSignalHasOne)
{
    const TReference<ISignal> parent = MakeEmpty();
    const TReference<ISignal> child = MakeEmpty();
    EXPECT_EQ(child->GetMode(), 6);
    child->SetParent(parent.get());
    EXPECT_EQ(child->GetMode(), 6);
    parent->SetMode(2);
    EXPECT_EQ(child->GetMode(), 2);
    child->SetMode(-3);
    EXPECT_EQ(child->GetMode(), -3);
    EXPECT_EQ(PropertyOf(*child, "Mode"), "-3");
}

TEST(SignalColor, IsANumberInTheTable)
{
    const TReference<ISignal> signal = MakeEmpty();
    EXPECT_EQ(signal->GetColor(), 0);
    signal->SetColor(255);
    EXPECT_EQ(signal->GetColor(), 255);
    EXPECT_EQ(PropertyOf(*signal, "Color"), "255");
}

TEST(DisplayMode, IsZeroOnlyForASignalOfAStandardType)
{
    const TReference<ISignal> bit = MakeSignal(BitType);
    EXPECT_EQ(bit->SetDisplayMode(0), E_INVALIDARG);
    EXPECT_EQ(bit->GetDisplayMode(), 3);
    EXPECT_EQ(bit->SetDisplayMode(-1), S_OK);
    EXPECT_EQ(bit->GetDisplayMode(), -1);
    const TReference<ISignal> logic = MakeSignal(StdLogicType);
    EXPECT_EQ(logic->SetDisplayMode(2), S_OK);
    EXPECT_EQ(logic->SetDisplayMode(0), S_OK);
    EXPECT_EQ(logic->GetDisplayMode(), 0);
    EXPECT_EQ(MakeEmpty()->GetDisplayMode(), 0);
}

TEST(DisplayRadix, FollowsFromTheMode)
{
    const struct {
        int mode, radix;
    } rows[] = {{0, 1}, {1, 2}, {2, 8}, {3, 10}, {4, 16}, {5, 1}, {9, 1}, {-1, 1}, {2147483647, 1}};
    const TReference<ISignal> signal = MakeSignal(StdLogicType);
    for (const auto &row : rows) {
        signal->SetDisplayMode(row.mode);
        EXPECT_EQ(signal->GetDisplayRadix(), row.radix) << row.mode;
    }
}

struct SStimulator {
    int type, strength;
    std::string formula;
    friend bool operator==(const SStimulator &, const SStimulator &) = default;
};

SStimulator StimulatorOf(ISignal &signal)
{
    SStimulator stimulator;
    char formula[256];
    EXPECT_EQ(signal.GetStimulator(&stimulator.type, &stimulator.strength, formula, sizeof formula), S_OK);
    stimulator.formula = formula;
    return stimulator;
}

TEST(Stimulator, IsAbsentAtFirst)
{
    EXPECT_EQ(StimulatorOf(*MakeEmpty()), (SStimulator{-1, -1, ""}));
}

TEST(Stimulator, KeepsTheParsersTextOfAFormula)
{
    const TReference<ISignal> signal = MakeEmpty();
    for (const int type : {0, 1}) {
        signal->SetStimulator(type, 2, "1   10ns ,0 20ns");
        const SStimulator stimulator = StimulatorOf(*signal);
        EXPECT_EQ(stimulator.type, type);
        EXPECT_EQ(stimulator.strength, 2);
        IStimulus *stimulus = IStimulus::Create("1   10ns ,0 20ns", 0, 1000, nullptr, false, false);
        SimpleString::CStr canonical;
        stimulus->GetFormula(canonical);
        stimulus->Destroy();
        EXPECT_EQ(stimulator.formula, static_cast<const char *>(canonical));
        EXPECT_NE(stimulator.formula, "1   10ns ,0 20ns");
    }
}

TEST(Stimulator, IsAbsentAgainWithoutAFormula)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(0, 2, "1 0ns");
    ASSERT_NE(StimulatorOf(*signal).formula, "");
    signal->SetStimulator(1, 2, "");
    EXPECT_EQ(StimulatorOf(*signal), (SStimulator{-1, -1, ""}));
    EXPECT_EQ(signal->GetProperty("Stimulator Formula"), nullptr);
}

TEST(Stimulator, MayReadItsOwnFormulaAgain)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(0, 2, "1 0ns, 0 20ns");
    const std::string formula = StimulatorOf(*signal).formula;
    signal->SetStimulator(1, 2, signal->GetProperty("Stimulator Formula"));
    EXPECT_EQ(StimulatorOf(*signal), (SStimulator{1, 2, formula}));
    signal->SetHotKey(65);
    signal->SetStimulator(3, 2, signal->GetProperty("Hot-Key"));
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Clock"), "65");
}

TEST(Stimulator, WithAStrengthOfMinusOneHasNoStrength)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(0, 2, "1 0ns");
    signal->SetStimulator(0, -1, "1 0ns");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Strength"), "(none)");
    EXPECT_EQ(StimulatorOf(*signal).strength, -1);
}

TEST(Stimulator, StaysWhereTheFormulaCannotBeParsed)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(0, 1, "1 0ns");
    const SStimulator before = StimulatorOf(*signal);
    signal->SetProperty("Hot-Key", "65");
    signal->SetStimulator(1, 2, "-r 5ns");
    EXPECT_EQ(StimulatorOf(*signal), before);
    EXPECT_EQ(PropertyOf(*signal, "Hot-Key"), "(none)");
}

TEST(Stimulator, IsClearedByTypeMinusOneOrNoFormula)
{
    const struct {
        int type;
        const char *formula;
    } rows[] = {{-1, "1 0ns"}, {0, ""}, {0, nullptr}, {3, ""}, {9, nullptr}};
    for (const auto &row : rows) {
        const TReference<ISignal> signal = MakeEmpty();
        signal->SetStimulator(3, 1, "clock");
        signal->SetStimulator(0, 1, "1 0ns");
        signal->SetProperty("Hot-Key", "65");
        signal->SetStimulator(row.type, 1, row.formula);
        EXPECT_EQ(StimulatorOf(*signal), (SStimulator{-1, -1, ""})) << row.type;
        EXPECT_EQ(PropertyOf(*signal, "Hot-Key"), "(none)");
        EXPECT_EQ(PropertyOf(*signal, "Stimulator Clock"), "clock") << "deliberately stays";
    }
}

TEST(Stimulator, OfAnUnknownTypeRemovesTheHotKeyAlone)
{
    for (const int type : {4, 7, -2}) {
        const TReference<ISignal> signal = MakeEmpty();
        signal->SetStimulator(0, 1, "1 0ns");
        const SStimulator before = StimulatorOf(*signal);
        signal->SetProperty("Hot-Key", "65");
        signal->SetStimulator(type, 0, "x");
        EXPECT_EQ(StimulatorOf(*signal), before) << type;
        EXPECT_EQ(PropertyOf(*signal, "Hot-Key"), "(none)") << type;
    }
}

TEST(Stimulator, MayBeAClock)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(3, -1, "any text");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Clock"), "any text");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Type"), "3");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Strength"), "-1");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Formula"), "(none)");
}

TEST(Stimulator, IsReadIntoWhatTheCallerGives)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetProperty("Stimulator Formula", "1 0ps");
    char buffer[8] = "";
    EXPECT_EQ(signal->GetStimulator(nullptr, nullptr, nullptr, 0), S_OK);
    EXPECT_EQ(signal->GetStimulator(nullptr, nullptr, buffer, 6), S_OK);
    EXPECT_STREQ(buffer, "1 0ps");
    int type = 0;
    EXPECT_EQ(signal->GetStimulator(&type, nullptr, buffer, 5), E_OUTOFMEMORY);
    EXPECT_EQ(type, -1);
    EXPECT_EQ(MakeEmpty()->GetStimulator(nullptr, nullptr, buffer, 0), E_OUTOFMEMORY);
    EXPECT_EQ(MakeEmpty()->GetStimulator(nullptr, nullptr, buffer, 1), S_OK);
    EXPECT_STREQ(buffer, "");
}

TEST(HotKey, GoesToTheWholeTree)
{
    const TReference<ISignal> record = MakeSignal(RecordType({{"a", BitType}, {"v", VectorType(2)}}));
    ISignal *leaf = ChildAt(ChildAt(record->GetChildren(), 1)->GetChildren(), 0);
    record->SetStimulator(2, 0, "a");
    for (ISignal *signal : {record.get(), leaf}) {
        EXPECT_EQ(signal->GetHotKey(), 'a');
        EXPECT_EQ(PropertyOf(*signal, "Hot-Key"), "97");
        EXPECT_EQ(PropertyOf(*signal, "Stimulator Type"), "2");
    }
}

TEST(HotKey, IsASignedCharacterOfTheFormula)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(2, 0, "\xFF");
    EXPECT_EQ(signal->GetHotKey(), -1);
}

TEST(HotKey, ReplacesFormulaAndClock)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetStimulator(3, 1, "clock");
    signal->SetStimulator(0, 1, "1 0ns");
    signal->SetHotKey(65);
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Formula"), "(none)");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Clock"), "(none)");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Strength"), "1");
}

TEST(HotKey, OfZeroDeliberatelyStillSetsTheType)
{
    const TReference<ISignal> signal = MakeEmpty();
    signal->SetHotKey(65);
    signal->SetHotKey(0);
    EXPECT_EQ(signal->GetHotKey(), 0);
    EXPECT_EQ(PropertyOf(*signal, "Hot-Key"), "(none)");
    EXPECT_EQ(PropertyOf(*signal, "Stimulator Type"), "2");
}

TEST(ValueTextOption, GoesToTheWholeTree)
{
    const TReference<ISignal> record = MakeSignal(RecordType({{"v", VectorType(2)}}));
    ISignal *leaf = ChildAt(ChildAt(record->GetChildren(), 0)->GetChildren(), 1);
    EXPECT_FALSE(leaf->GetValueTextOption());
    record->SetValueTextOption(true);
    EXPECT_TRUE(record->GetValueTextOption());
    EXPECT_TRUE(leaf->GetValueTextOption());
    record->SetValueTextOption(false);
    EXPECT_FALSE(leaf->GetValueTextOption());
}

}  // namespace
