#include "waveform/vcdstimulus.h"

#include "waveform/replay/replayedfiles.h"

namespace {

class VcdStimulus : public ReplayedFiles {
protected:
    static StimulusPtr Create(SReplay replay)
    {
        replay.kind = EFileKind::Vcd;
        return ReplayedFiles::Create(replay);
    }
};

TEST_F(VcdStimulus, EndsWithTheLastChange)
{
    const StimulusPtr stimulus = Create({.fileEnd = 50, .events = {{0, 1, 0}, {20, 2, 0}}});
    EXPECT_EQ(stimulus->GetNextEventTime(0), 20);
    EXPECT_EQ(stimulus->GetNextEventTime(20), -1);
    EXPECT_EQ(ValueAt(*stimulus, 50), "2");
}

TEST_F(VcdStimulus, SaysNothingOfChangesBeyondTheEnd)
{
    const CFileEvents events = {{0, 1, 0}, {20, 2, 0}, {60, 3, 0}};
    EXPECT_EQ(Create({.events = events, .start = "0ps", .end = "50ps"})->GetNextEventTime(20), -1);
    EXPECT_EQ(Create({.events = events, .start = "0ps", .end = "50ps", .repeat = "80ps"})->GetNextEventTime(20), 80);
}

TEST_F(VcdStimulus, FindsAChangeAheadWhereNoneHasBeen)
{
    EXPECT_EQ(Create({.events = {{30, 1, 0}}})->GetNextEventTime(0), 30);
}

// Deliberate: such a signal has a value, which is what the raw value was before.
TEST_F(VcdStimulus, OfASignalWithoutChangesNeverChangesAndHasTheValueThatWasThere)
{
    const StimulusPtr stimulus = Create({.repeat = "200ps"});
    EXPECT_EQ(stimulus->GetNextEventTime(0), -1) << "also with a repeat";
    EXPECT_EQ(stimulus->GetNextEventTime(150), 200) << "but for the next period behind the stretch";
    EXPECT_EQ(ValueAt(*stimulus, 0), "0");
    EXPECT_EQ(ValueAt(*stimulus, 101), std::nullopt);
    stimulus->AllowBinary8BytesValues();
    long long value = 77;
    EXPECT_TRUE(stimulus->GetBinary8BytesValue(0, value));
    EXPECT_EQ(value, 77);
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(101, value));
}

TEST_F(VcdStimulus, HasNoValueBeforeTheFirstChange)
{
    const StimulusPtr stimulus = Create({.events = {{30, 1, 0}}});
    stimulus->AllowBinary8BytesValues();
    long long value = 77;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(29, value));
    EXPECT_EQ(value, 77);
    EXPECT_EQ(ValueAt(*stimulus, 29), std::nullopt);
}

TEST_F(VcdStimulus, PlaysAnElementOfAVector)
{
    Enter("f.vcd", NewStore(1000, 100, {{"s", VectorType(2), {{{0, 2, 0}}, {{0, 3, 0}}}}}));
    EXPECT_EQ(ValueAt(*::Create("/custom f.vcd,s(1)"), 0), "0");
    EXPECT_EQ(ValueAt(*::Create("/custom f.vcd,S[0]"), 0), "1");
}

// Deliberate: the name of a vector stands for its first element.
TEST_F(VcdStimulus, OfAWholeVectorPlaysItsFirstElement)
{
    Enter("f.vcd", NewStore(1000, 100, {{"s", VectorType(2), {{{0, 2, 0}}, {{0, 3, 0}}}}}));
    const StimulusPtr stimulus = ::Create("/custom f.vcd,s");
    ASSERT_NE(stimulus, nullptr);
    EXPECT_STREQ(stimulus->GetSignalTypeInfo()->GetTypeIdentifier(), "std_logic");
    EXPECT_EQ(ValueAt(*stimulus, 0), "0");
}

}  // namespace
