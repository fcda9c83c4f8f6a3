// What the stimuli on databases and VCD files tell about themselves.

#include "logcatcher.h"
#include "waveform/replay/replayedfiles.h"

namespace {

class SharedFileStimulus : public ReplayedFiles {};

constexpr EFileKind SharedKinds[] = {EFileKind::Database, EFileKind::Vcd};

std::string RepeatOf(const IStimulus &stimulus, bool &result)
{
    SimpleString::CStr text("untouched");
    result = stimulus.GetRepeatString(text);
    return std::string(text);
}

std::string CancelOf(const IStimulus &stimulus, bool &result)
{
    SimpleString::CStr text("untouched");
    result = stimulus.GetCancelString(text);
    return std::string(text);
}

TEST_F(SharedFileStimulus, WritesItsFormulaWithTheStretchInQuotesAndAbsoluteTimesBehind)
{
    const struct {
        SReplay replay;
        const char *tail;
    } rows[] = {
        {{}, ",s,0ps,100ps\""},
        {{.start = "10ps", .end = "90ps"}, ",s,10ps,90ps\""},
        {{.start = "10", .end = "90"}, ",s,10ps,90ps\""},
        {{.start = "1.5ps"}, ",s,1ps,100ps\""},
        {{.now = 7}, ",s,0ps,100ps\" @7000fs"},
        {{.offset = "5ps", .now = 7}, ",s,0ps,100ps\" @12ps"},
        {{.offset = "@5ps", .now = 7}, ",s,0ps,100ps\" @5ps"},
        {{.offset = "@0ps", .now = 7}, ",s,0ps,100ps\""},
        {{.repeat = "200ps"}, ",s,0ps,100ps\" -r 200ps"},
        {{.cancel = "1ns", .now = 7}, ",s,0ps,100ps\" @7000fs -cancel @1007ps"},
        {{.offset = "@1ns", .repeat = "2ns", .cancel = "@3ns"}, ",s,0ps,100ps\" @1000ps -r 2000ps -cancel @3000ps"},
        // A time without a unit keeps the unit that it was read in.
        {{.offset = "2 -r 200ps"}, ",s,0ps,100ps\" @2ps -r 200ps"},
        // The unit of the simulator stands in for the one that was written.
        {{.simRes = 1, .repeat = "200ps"}, ",s,0ps,100ps\" -r 200000fs"},
        {{.simRes = 10000, .fileRes = 1000000, .offset = "@1ns"}, ",s,0ns,100ns\" @1000ps"},
        {{.simRes = 1000000, .fileRes = 1000000, .fileEnd = 6000, .cancel = "@5us"}, ",s,0ns,6000ns\" -cancel @5000ns"},
        // The unit of the file is that of the stretch.
        {{.simRes = 1000, .fileRes = 1000000, .fileEnd = 6000, .start = "1500ps"}, ",s,1ns,6000ns\""},
    };
    for (const auto &row : rows) {
        for (const EFileKind kind : SharedKinds) {
            SReplay replay = row.replay;
            replay.kind = kind;
            const StimulusPtr stimulus = Create(replay);
            ASSERT_NE(stimulus, nullptr) << replay.Tail();
            EXPECT_EQ(FormulaOf(*stimulus), "\"/custom " + FileName(kind) + row.tail) << replay.Tail();
        }
    }
}

TEST_F(SharedFileStimulus, WritesTheEndOfAVcdFileAsItIsReadDeliberatelyWithoutTheScale)
{
    const SReplay replay{.kind = EFileKind::Vcd, .fileRes = 10000};
    EXPECT_EQ(FormulaOf(*Create(replay)), "\"/custom f.vcd,s,0ps,100ps\"");
    EXPECT_EQ(FormulaOf(*Create({.kind = EFileKind::Database, .fileRes = 10000})), "\"/custom f.db,s,0ps,1000ps\"");
}

TEST_F(SharedFileStimulus, WritesTheSameFormulaAgain)
{
    for (const EFileKind kind : SharedKinds) {
        const StimulusPtr stimulus = Create(
            {.kind = kind, .start = "1ps", .end = "9ps", .offset = "5ps", .repeat = "10ps", .cancel = "1ns", .now = 3});
        const std::string formula = FormulaOf(*stimulus);
        EXPECT_EQ(FormulaOf(*stimulus), formula);
        const StimulusPtr again = ::Create(formula, 77);
        ASSERT_NE(again, nullptr) << formula;
        EXPECT_EQ(FormulaOf(*again), formula);
    }
}

TEST_F(SharedFileStimulus, FillsInTheRepeatAndDeliberatelyDeniesIt)
{
    for (const EFileKind kind : SharedKinds) {
        bool result = true;
        EXPECT_EQ(RepeatOf(*Create({.kind = kind, .repeat = "20ns"}), result), "20000ps");
        EXPECT_FALSE(result);
        result = true;
        EXPECT_EQ(RepeatOf(*Create({.kind = kind}), result), "untouched");
        EXPECT_FALSE(result);
        result = true;
        EXPECT_EQ(RepeatOf(*Create({.kind = kind, .repeat = "0ns"}), result), "untouched");
        EXPECT_FALSE(result);
    }
}

TEST_F(SharedFileStimulus, TellsItsCancelTime)
{
    for (const EFileKind kind : SharedKinds) {
        bool result = false;
        EXPECT_EQ(CancelOf(*Create({.kind = kind, .cancel = "20ns", .now = 5}), result), "@20005ps");
        EXPECT_TRUE(result);
        EXPECT_EQ(CancelOf(*Create({.kind = kind, .now = 5}), result), "untouched");
        EXPECT_FALSE(result);
    }
}

TEST_F(SharedFileStimulus, TellsItsRepeatRate)
{
    for (const EFileKind kind : SharedKinds) {
        const StimulusPtr repeated = Create({.kind = kind, .simRes = 10000, .repeat = "20ns"});
        EXPECT_EQ(repeated->GetRepeatRateInSimUnits(), 2000);
        EXPECT_EQ(repeated->GetRepeatRate(), 20000);
        const StimulusPtr single = Create({.kind = kind});
        EXPECT_EQ(single->GetRepeatRateInSimUnits(), 0);
        EXPECT_EQ(single->GetRepeatRate(), -1) << "that of a time that was never set";
    }
}

TEST_F(SharedFileStimulus, ReadsTimesBackInTheUnitOfTheResolutionThatHoldsThen)
{
    const StimulusPtr stimulus = Create({.repeat = "20ns"});
    g_simRes = 1000000;
    EXPECT_EQ(stimulus->GetRepeatRate(), 20);
    g_simRes = 0;
    EXPECT_EQ(stimulus->GetRepeatRate(), 20000000);
}

TEST_F(SharedFileStimulus, ChecksItsTimes)
{
    const struct {
        SReplay replay;
        int code;
    } rows[] = {
        {{}, 0},
        {{.repeat = "100ps"}, 0},
        {{.repeat = "99ps"}, 3},
        {{.offset = "@200ps", .repeat = "99ps", .cancel = "@200ps"}, 3},
        {{.offset = "@200ps", .cancel = "@200ps"}, 4},
        {{.offset = "@200ps", .cancel = "@199ps"}, 4},
        {{.offset = "@200ps", .cancel = "@201ps"}, 0},
        {{.cancel = "@99ps"}, 5},
        {{.cancel = "@100ps"}, 0},
        {{.start = "50ps", .cancel = "@50ps"}, 0},
        {{.start = "50ps", .cancel = "@49ps"}, 5},
        {{.repeat = "100ps", .cancel = "@99ps"}, 5},
    };
    for (const auto &row : rows) {
        for (const EFileKind kind : SharedKinds) {
            SReplay replay = row.replay;
            replay.kind = kind;
            const StimulusPtr stimulus = Create(replay);
            ASSERT_NE(stimulus, nullptr) << replay.Tail();
            long long time = 7;
            EXPECT_EQ(stimulus->CheckSettings(&time), row.code) << replay.Tail();
            EXPECT_EQ(stimulus->CheckSettings(nullptr), row.code) << replay.Tail();
            EXPECT_EQ(time, 7);
        }
    }
}

TEST_F(SharedFileStimulus, HasBinaryValuesOnceTheyAreAllowed)
{
    for (const EFileKind kind : SharedKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = {{0, 7, 0}, {10, 0xFFFFFFFE, 0x80000001}}});
        long long value = 5;
        EXPECT_FALSE(stimulus->GetBinary8BytesValue(0, value));
        EXPECT_EQ(value, 5);
        stimulus->AllowBinary8BytesValues();
        EXPECT_TRUE(stimulus->GetBinary8BytesValue(0, value));
        EXPECT_EQ(value, 7);
        EXPECT_TRUE(stimulus->GetBinary8BytesValue(10, value));
        EXPECT_EQ(static_cast<unsigned long long>(value), 0x80000001FFFFFFFE);
        EXPECT_FALSE(stimulus->GetBinary8BytesValue(101, value));
    }
}

TEST_F(SharedFileStimulus, StepsAsBeforeOnceBinaryValuesAreAllowed)
{
    for (const EFileKind kind : SharedKinds) {
        const StimulusPtr stimulus =
            Create({.kind = kind, .fileRes = 1000000, .events = {{1, 7, 0}, {10, 8, 0}}, .end = ""});
        const long long next = stimulus->GetNextEventTime(0);
        stimulus->AllowBinary8BytesValues();
        EXPECT_EQ(stimulus->GetNextEventTime(0), next);
        EXPECT_EQ(next, 1000);
    }
}

TEST_F(SharedFileStimulus, LeavesTheCallersTextWhereAValueHasNone)
{
    for (const EFileKind kind : SharedKinds) {
        if (kind == EFileKind::Database)
            Enter("f.db", new CFakeReader(1000, 100, {{"s", StdLogicType, {{0, 77, 0}}}}));
        else
            Enter("f.vcd", NewStore(1000, 100, {{"s", StdLogicType, {{{0, 77, 0}}}}}));
        const StimulusPtr stimulus = ::Create("/custom " + FileName(kind) + ",s");
        SimpleString::CStr value;
        EXPECT_FALSE(stimulus->GetValue(0, value));
        value = "kept";
        EXPECT_TRUE(stimulus->GetValue(0, value));
        EXPECT_STREQ(value, "kept");
    }
}

TEST_F(SharedFileStimulus, TellsTheTypeOfItsSignal)
{
    for (const EFileKind kind : SharedKinds) {
        const StimulusPtr stimulus = Create({.kind = kind});
        ASSERT_NE(stimulus->GetSignalTypeInfo(), nullptr);
        EXPECT_STREQ(stimulus->GetSignalTypeInfo()->GetTypeInfoString(), IntegerType);
    }
}

}  // namespace
