#include "waveform/tarnstimulus.h"

#include "waveform/replay/replayedfiles.h"

namespace {

class DatabaseStimulus : public ReplayedFiles {};

TEST_F(DatabaseStimulus, WakesOnceMoreAtTheEndOfTheStretch)
{
    const StimulusPtr stimulus = Create({.fileEnd = 50, .events = {{0, 1, 0}, {20, 2, 0}}});
    EXPECT_EQ(stimulus->GetNextEventTime(20), 50) << "the last event stands here";
    EXPECT_EQ(stimulus->GetNextEventTime(21), 50) << "it lies behind";
    EXPECT_EQ(stimulus->GetNextEventTime(49), 50);
    EXPECT_EQ(stimulus->GetNextEventTime(50), -1);
    EXPECT_EQ(ValueAt(*stimulus, 50), "2");
    EXPECT_EQ(ValueAt(*stimulus, 51), std::nullopt);
}

// Deliberate: at the last event the end of the stretch is taken for a count of units of the file, and elsewhere it is not.
TEST_F(DatabaseStimulus, TakesTheEndForACountOfUnitsAtTheLastEvent)
{
    const StimulusPtr stimulus = Create({.fileRes = 1000000, .fileEnd = 50, .events = {{0, 1, 0}, {20, 2, 0}}});
    EXPECT_EQ(stimulus->GetNextEventTime(20000), 50000000);
    EXPECT_EQ(stimulus->GetNextEventTime(21000), 50000);
}

TEST_F(DatabaseStimulus, AnnouncesAChangeBeyondTheEndUnlessItIsRepeated)
{
    const CFileEvents events = {{0, 1, 0}, {20, 2, 0}, {60, 3, 0}};
    const StimulusPtr stimulus = Create({.events = events, .start = "0ps", .end = "50ps"});
    EXPECT_EQ(stimulus->GetNextEventTime(20), 60);
    EXPECT_EQ(ValueAt(*stimulus, 60), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(60), -1);
    const StimulusPtr repeated = Create({.events = events, .start = "0ps", .end = "50ps", .repeat = "80ps"});
    EXPECT_EQ(repeated->GetNextEventTime(20), 80);
}

TEST_F(DatabaseStimulus, OfARepeatedStretchWakesAtItsEndOnlyBehindTheLastEvent)
{
    const StimulusPtr stimulus = Create({.fileEnd = 50, .events = {{0, 1, 0}, {20, 2, 0}}, .repeat = "80ps"});
    EXPECT_EQ(stimulus->GetNextEventTime(20), 80);
    EXPECT_EQ(stimulus->GetNextEventTime(21), 50) << "deliberate";
    EXPECT_EQ(stimulus->GetNextEventTime(50), 80);
    EXPECT_EQ(stimulus->GetNextEventTime(101), 130);
}

// Deliberate: where the stretch runs out, the period is not looked at.
TEST_F(DatabaseStimulus, WakesAtTheEndOfTheStretchEvenBehindThePeriod)
{
    const StimulusPtr stimulus = Create({.fileEnd = 50, .events = {{0, 1, 0}}, .repeat = "30ps"});
    EXPECT_EQ(stimulus->GetNextEventTime(10), 50);
    EXPECT_EQ(stimulus->GetNextEventTime(0), 30);
}

TEST_F(DatabaseStimulus, OfASignalWithoutEventsWakesAtTheEnd)
{
    const StimulusPtr stimulus = Create({.fileEnd = 50});
    EXPECT_EQ(stimulus->GetNextEventTime(0), 50);
    EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt);
    stimulus->AllowBinary8BytesValues();
    long long value = 7;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, value));
    EXPECT_EQ(value, 7);
}

TEST_F(DatabaseStimulus, DoesNotAnnounceTheEndBehindTheCancelTime)
{
    EXPECT_EQ(Create({.fileEnd = 50, .cancel = "@50ps"})->GetNextEventTime(0), -1);
    EXPECT_EQ(Create({.fileEnd = 50, .cancel = "@51ps"})->GetNextEventTime(0), 50);
}

TEST_F(DatabaseStimulus, FindsAnEventAtTheLastTimeThereIs)
{
    const StimulusPtr stimulus =
        Create({.simRes = 1, .fileRes = 1, .fileEnd = Latest, .events = {{0, 1, 0}, {Latest, 2, 0}, {Latest, 3, 0}}});
    // The end is more than a double holds, and so becomes the earliest time.
    EXPECT_EQ(stimulus, nullptr);
    Enter("late.db", new CFakeReader(1, Latest / 4 * 3, {{"s", IntegerType, {{0, 1, 0}, {Latest / 2, 2, 0}}}}));
    const StimulusPtr late = ::Create("/custom late.db,s", 0, 1);
    ASSERT_NE(late, nullptr);
    EXPECT_EQ(ValueAt(*late, Latest / 2 + 1), "2");
}

// A step asks for a position three times at most, however many events there are.
TEST_F(DatabaseStimulus, LooksUpAndNeverScans)
{
    CFileEvents events;
    for (int i = 0; i < 10000; ++i)
        events.push_back({5, static_cast<std::uint32_t>(i), 0});
    events.push_back({9, 3, 0});
    CFakeReader *reader = new CFakeReader(1000, 10, {{"s", IntegerType, events}});
    Enter("f.db", reader);
    const StimulusPtr stimulus = ::Create("/custom f.db,s");
    for (const long long time : {0, 5, 7, 9}) {
        const int before = reader->Searches();
        stimulus->GetNextEventTime(time);
        ValueAt(*stimulus, time);
        EXPECT_LE(reader->Searches() - before, 3) << time;
    }
    EXPECT_EQ(ValueAt(*stimulus, 5), "9999");
    EXPECT_EQ(stimulus->GetNextEventTime(5), 9);
}

TEST_F(DatabaseStimulus, OfAWholeBusReadsNoMoreThanTheValueHas)
{
    Enter("f.db", new CFakeReader(1000, 100, {{"s", VectorType(100), {{0, 0x03020302, 0x02020303}}}}));
    const StimulusPtr stimulus = ::Create("/custom f.db,s");
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(ValueAt(*stimulus, 0), "01011100" + std::string(92, 'U'));
}

}  // namespace
