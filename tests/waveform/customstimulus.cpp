#include "waveform/customstimulus.h"

#include <fstream>

#include "logcatcher.h"
#include "waveform/replay/replayedfiles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StreamStimulus : public ReplayedFiles {
protected:
    static StimulusPtr Create(SReplay replay)
    {
        replay.kind = EFileKind::Stream;
        return ReplayedFiles::Create(replay);
    }

    /// The stimulus of a signal in a file of its own.
    static StimulusPtr CreateIn(const std::vector<STreeNode> &nodes, const std::string &signal)
    {
        WriteStream(FileName(EFileKind::Stream), nodes, 1000, 100);
        return ::Create("/custom " + FileName(EFileKind::Stream) + "," + signal);
    }
};

TEST_F(StreamStimulus, PlaysTheChangesOfItsSignal)
{
    const StimulusPtr stimulus = Create({.events = {{0, 1, 0}, {20, 2, 0}, {40, 3, 0}}});
    EXPECT_EQ(ValueAt(*stimulus, 19), "1");
    EXPECT_EQ(ValueAt(*stimulus, 20), "2");
    EXPECT_EQ(stimulus->GetNextEventTime(0), 20);
    EXPECT_EQ(stimulus->GetNextEventTime(20), 40);
    EXPECT_EQ(stimulus->GetNextEventTime(40), -1);
    EXPECT_EQ(ValueAt(*stimulus, 100), "3");
    EXPECT_EQ(ValueAt(*stimulus, 101), std::nullopt);
}

TEST_F(StreamStimulus, DoesNotNeedItsFileAnyMore)
{
    const StimulusPtr stimulus = Create({.events = {{0, 1, 0}, {20, 2, 0}}});
    EXPECT_TRUE(std::filesystem::remove(FileName(EFileKind::Stream)));
    EXPECT_EQ(ValueAt(*stimulus, 20), "2");
    EXPECT_TRUE(g_OpenWaveformFiles.empty());
}

TEST_F(StreamStimulus, TellsNeitherFormulaNorTimesAndHasNoBinaryValues)
{
    const StimulusPtr stimulus =
        Create({.events = {{0, 1, 0}}, .start = "10ps", .offset = "5ps", .repeat = "1ps", .cancel = "1ps"});
    ASSERT_NE(stimulus, nullptr);
    SimpleString::CStr text("x");
    EXPECT_FALSE(stimulus->GetRepeatString(text));
    EXPECT_FALSE(stimulus->GetCancelString(text));
    EXPECT_STREQ(text, "x");
    EXPECT_EQ(FormulaOf(*stimulus), "");
    EXPECT_EQ(stimulus->GetRepeatRate(), 0);
    EXPECT_EQ(stimulus->GetRepeatRateInSimUnits(), 0);
    EXPECT_EQ(stimulus->CheckSettings(nullptr), 0) << "whatever the times are";
    stimulus->AllowBinary8BytesValues();
    long long value = 7;
    EXPECT_FALSE(stimulus->GetBinary8BytesValue(5, value));
    EXPECT_EQ(value, 7);
}

TEST_F(StreamStimulus, PlaysAStretchOfLengthZero)
{
    const StimulusPtr stimulus =
        Create({.events = {{0, 1, 0}, {20, 2, 0}}, .start = "20ps", .end = "20ps", .repeat = "10ps"});
    EXPECT_EQ(ValueAt(*stimulus, 0), "2");
    EXPECT_EQ(ValueAt(*stimulus, 1), std::nullopt);
    EXPECT_EQ(ValueAt(*stimulus, 10), "2");
    EXPECT_EQ(stimulus->GetNextEventTime(0), 10);
}

TEST_F(StreamStimulus, BeginsAtTheVeryEndOfTheFile)
{
    const StimulusPtr stimulus = Create({.events = {{0, 1, 0}, {100, 2, 0}}, .start = "100ps"});
    ASSERT_NE(stimulus, nullptr);
    EXPECT_EQ(ValueAt(*stimulus, 0), "2");
    EXPECT_TRUE(stimulus->IsFinishedAt(1));
}

// Deliberate: unlike a VCD file.
TEST_F(StreamStimulus, SeesNoChangeAheadWhereNoneHasBeen)
{
    EXPECT_EQ(Create({.events = {{30, 1, 0}}})->GetNextEventTime(0), -1);
    EXPECT_EQ(Create({.events = {{30, 1, 0}}, .repeat = "50ps"})->GetNextEventTime(0), 50);
    EXPECT_EQ(Create({.events = {{30, 1, 0}}})->GetNextEventTime(30), -1);
}

TEST_F(StreamStimulus, OfASignalWithoutEventsIsSilent)
{
    const StimulusPtr stimulus = Create({.repeat = "50ps"});
    EXPECT_EQ(ValueAt(*stimulus, 0), std::nullopt);
    EXPECT_EQ(stimulus->GetNextEventTime(0), 50);
}

// A tick of the simulator takes in all events that round to it.
TEST_F(StreamStimulus, OfAFinerFileGivesTheLastEventThatRoundsToTheTick)
{
    const StimulusPtr stimulus = Create(
        {.simRes = 10000,
         .fileRes = 1000,
         .fileEnd = 1000,
         .events = {{0, 1, 0}, {3, 2, 0}, {4, 3, 0}, {5, 4, 0}, {14, 5, 0}, {15, 6, 0}, {16, 7, 0}, {500, 8, 0}}});
    EXPECT_EQ(ValueAt(*stimulus, 0), "3");
    EXPECT_EQ(ValueAt(*stimulus, 1), "5") << "14 rounds to 1, 15 to 2";
    EXPECT_EQ(ValueAt(*stimulus, 2), "7");
}

TEST_F(StreamStimulus, OfAMuchFinerFileTakesManyEventsInOneStep)
{
    CFileEvents events;
    for (std::uint32_t i = 0; i < 20000; ++i)
        events.push_back({i, i, 0});
    const StimulusPtr stimulus =
        Create({.simRes = 10000000000, .fileRes = 1000000, .fileEnd = 100000, .events = events});
    EXPECT_EQ(ValueAt(*stimulus, 0), "4999");
    EXPECT_EQ(ValueAt(*stimulus, 1), "14999");
    EXPECT_EQ(ValueAt(*stimulus, 2), "19999");
}

// Times that the simulator's 64 bits cannot count come out as the earliest of all, so a walk goes on behind them.
TEST_F(StreamStimulus, CountsAnEventBeyondTheRangeOfTimesAsEarly)
{
    WriteStream(FileName(EFileKind::Stream),
                {{"s", IntegerType, BytesOf({{0, 1, 0}, {Latest - 1, 2, 0}, {Latest, 3, 0}}), {}}}, 1000000);
    const StimulusPtr direct = ::Create("/custom " + FileName(EFileKind::Stream) + ",s,0fs,10fs", 0, 1);
    ASSERT_NE(direct, nullptr);
    EXPECT_EQ(ValueAt(*direct, 0), "3");
    WriteStream(FileName(EFileKind::Stream), {{"s", IntegerType, BytesOf({{0, 1, 0}, {5, 2, 0}, {Latest, 3, 0}}), {}}},
                1000000);
    const StimulusPtr stopped = ::Create("/custom " + FileName(EFileKind::Stream) + ",s,0fs,10fs", 0, 1);
    EXPECT_EQ(ValueAt(*stopped, 0), "1") << "an event in between ends the walk";
}

TEST_F(StreamStimulus, PlaysValuesOfAnyLength)
{
    for (const int length : {1, 63, 64, 65, 1000}) {
        STreeNode bus{"b", VectorType(length), {}, {}};
        for (int i = length - 1; i >= 0; --i)
            bus.children.push_back({"(" + std::to_string(i) + ")", StdLogicType, {{0, i % 2 == 0 ? "\2" : "\3"}}, {}});
        const StimulusPtr stimulus = CreateIn({bus}, "b");
        ASSERT_NE(stimulus, nullptr) << length;
        std::string expected;
        for (int i = length - 1; i >= 0; --i)
            expected += i % 2 == 0 ? '0' : '1';
        EXPECT_EQ(ValueAt(*stimulus, 0), expected);
    }
}

TEST_F(StreamStimulus, FindsElementsAndFieldsByTheNamesAsWritten)
{
    const std::string record = RecordType({{"a", StdLogicType}});
    const std::vector<STreeNode> nodes = {
        {"tb.b", VectorType(2), {}, {{"(1)", StdLogicType, {{0, "\2"}}, {}}, {"(0)", StdLogicType, {{0, "\3"}}, {}}}},
        {"tb.r", record, {}, {{".a", StdLogicType, {{0, "\4"}}, {}}}}};
    EXPECT_EQ(ValueAt(*CreateIn(nodes, "tb.b(1)"), 0), "0");
    EXPECT_EQ(ValueAt(*CreateIn(nodes, "TB.B(0)"), 0), "1");
    EXPECT_EQ(ValueAt(*CreateIn(nodes, "tb.r.A"), 0), "Z");
    const CLogCatcher log;
    for (const char *name : {"tb.b[1]", "tb.b(2)", "tb.ra", "tb.r", "tb", "none"})
        EXPECT_EQ(CreateIn(nodes, name), nullptr) << name;
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(StreamStimulus, OfAMissingFileIsRefusedWithoutAMessage)
{
    const CLogCatcher log;
    EXPECT_EQ(::Create("/custom nowhere/a.zyn,s"), nullptr);
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(StreamStimulus, OfADamagedFileIsRefused)
{
    const CLogCatcher log;
    std::ofstream(FileName(EFileKind::Stream)) << "no stream";
    EXPECT_EQ(::Create("/custom " + FileName(EFileKind::Stream) + ",s"), nullptr);
    EXPECT_EQ(log.Messages().size(), 1u);
}

// A tree of signals in memory, of which the first ones are top-level ones.
class CFakeStream final : public Morvel::IMorvelRead {
public:
    struct SSignal {
        std::string name;
        std::vector<int> children;
    };

    CFakeStream(std::vector<SSignal> signals, int topLevel) : m_signals(std::move(signals)), m_topLevel(topLevel) {}

    int GetSignalCount() override { return m_topLevel; }
    int GetChild(int parent, int number) override { return At(parent).children.at(static_cast<std::size_t>(number)); }
    int GetSignal(int number) override { return number; }
    void GetInfo(int handle, bool *hasChildren, int *childCount, const char **name, int *, int *) override
    {
        *hasChildren = !At(handle).children.empty();
        *childCount = static_cast<int>(At(handle).children.size());
        *name = At(handle).name.c_str();
    }
    const char *GetTypeText(int) override { return nullptr; }
    void Release() override {}

private:
    const SSignal &At(int handle) const { return m_signals.at(static_cast<std::size_t>(handle)); }

    std::vector<SSignal> m_signals;
    int m_topLevel;
};

TEST(FindStreamSignalHandle, WalksAsTheSearchInADatabaseDoesButAddsNoPoint)
{
    CFakeStream stream({{"si", {3, 4}}, {"SIG", {}}, {"sig", {}}, {"x", {}}, {"g", {5}}, {".a", {}}}, 3);
    const struct {
        const char *name;
        int handle;
    } rows[] = {{"sig", 4}, {"six", 3}, {"SI", 0}, {"sig.a", 5}, {"siga", -1}, {"s", -1}, {"", -1}, {"sigg", -1}};
    for (const auto &row : rows)
        EXPECT_EQ(FindStreamSignalHandle(&stream, row.name, -1, nullptr, 0), row.handle) << row.name;
    EXPECT_EQ(FindStreamSignalHandle(&stream, "six", 0, "si", 1), 3);
    EXPECT_EQ(FindStreamSignalHandle(&stream, "sig", 0, "si", 1), -1);
    EXPECT_EQ(FindStreamSignalHandle(&stream, "sig", 0, "si", 2), 4);
}

TEST(FindStreamSignalHandle, EndsWhereASignalIsItsOwnChild)
{
    CFakeStream stream({{"", {0}}}, 1);
    EXPECT_EQ(FindStreamSignalHandle(&stream, "a", -1, nullptr, 0), -1);
}

}  // namespace
