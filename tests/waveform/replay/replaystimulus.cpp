// What the kinds of files share: how a formula is read, and the window in which it plays.

#include "logcatcher.h"
#include "waveform/replay/replayedfiles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReplayFormula : public ReplayedFiles {};
class ReplayWindow : public ReplayedFiles {};

const CFileEvents Counting = {{0, 1, 0}, {20, 2, 0}, {40, 3, 0}, {60, 4, 0}};

std::vector<long long> ChangesOf(IStimulus &stimulus, std::size_t limit = 20)
{
    std::vector<long long> times;
    for (long long time = stimulus.GetNextEventTime(-1); time != -1 && times.size() < limit;
         time = stimulus.GetNextEventTime(time))
        times.push_back(time);
    return times;
}

// Which of the kinds accept a formula.
struct SAccepting {
    bool stream, database, vcd;

    bool By(EFileKind kind) const
    {
        return kind == EFileKind::Stream ? stream : kind == EFileKind::Database ? database : vcd;
    }
};

TEST_F(ReplayFormula, IsComparedWithTheEndOfTheFileAsItsKindDoes)
{
    constexpr SAccepting All{true, true, true};
    constexpr SAccepting None{false, false, false};
    constexpr SAccepting StreamOnly{true, false, false};
    constexpr SAccepting VcdOnly{false, false, true};
    const struct {
        const char *what;
        const char *start, *end;
        long long simRes, fileRes, fileEnd;
        SAccepting accepting;
    } rows[] = {
        {"the whole file", "", "", 1000, 1000, 100, All},
        {"start before the end", "99ps", "", 1000, 1000, 100, All},
        {"start at the very end", "100ps", "", 1000, 1000, 100, StreamOnly},
        {"start behind the end", "101ps", "", 1000, 1000, 100, None},
        {"end before that of the file", "0ps", "99ps", 1000, 1000, 100, All},
        {"end at that of the file", "0ps", "100ps", 1000, 1000, 100, None},
        {"stretch of length zero", "50ps", "50ps", 1000, 1000, 100, StreamOnly},
        {"end before the start", "50ps", "49ps", 1000, 1000, 100, None},
        {"empty file", "", "", 1000, 1000, 0, StreamOnly},
        // Deliberate: ticks of the simulator are compared with ticks of the file as plain numbers.
        {"ticks that are finer than the file's", "1ns", "", 1000, 1000000, 100, VcdOnly},
        {"ticks that are coarser than the file's, behind its end", "200fs", "", 1000, 1, 100, StreamOnly},
        // Deliberate: in a VCD file the number in units of the file counts, and "1999ps" is one "ns".
        {"1999 ps are 1 ns", "0ps", "1999ps", 1000, 1000000, 2, VcdOnly},
        {"2000 ps are 2 ns", "0ps", "2000ps", 1000, 1000000, 2, None},
        // Deliberate: the scale of a resolution of 10 ps does not count at the end of a VCD file.
        {"a start behind the end unless it is scaled", "50ps", "", 1000, 10000, 40, None},
        {"a start at the end unless it is scaled", "40ps", "", 1000, 10000, 60, All},
    };
    for (const auto &row : rows) {
        for (const EFileKind kind : AllKinds) {
            const CLogCatcher log;
            const StimulusPtr stimulus = Create({.kind = kind,
                                                 .simRes = row.simRes,
                                                 .fileRes = row.fileRes,
                                                 .fileEnd = row.fileEnd,
                                                 .events = {{0, 1, 0}},
                                                 .start = row.start,
                                                 .end = row.end});
            EXPECT_EQ(stimulus != nullptr, row.accepting.By(kind)) << row.what << ", kind " << static_cast<int>(kind);
        }
    }
}

TEST_F(ReplayFormula, LogsAnEndThatIsNotBehindTheStart)
{
    for (const EFileKind kind : AllKinds) {
        const CLogCatcher log;
        EXPECT_EQ(Create({.kind = kind, .start = "50ps", .end = "49ps"}), nullptr);
        EXPECT_THAT(log.Messages(), ElementsAre("1 KERNEL Waveform end time has to be greater than start time."));
    }
}

TEST_F(ReplayFormula, OfATimeThatIsNoneIsRefused)
{
    const CLogCatcher log;
    for (const EFileKind kind : AllKinds) {
        EXPECT_EQ(Create({.kind = kind, .start = "1xx"}), nullptr);
        EXPECT_EQ(Create({.kind = kind, .start = "1ps", .end = "2xx"}), nullptr);
        EXPECT_EQ(Create({.kind = kind, .offset = "1xx"}), nullptr);
        EXPECT_EQ(Create({.kind = kind, .repeat = "1xx"}), nullptr);
        EXPECT_EQ(Create({.kind = kind, .cancel = "1xx"}), nullptr);
    }
    EXPECT_THAT(log.Messages(), IsEmpty());
}

TEST_F(ReplayFormula, TakesATimeWithoutAUnitInThatOfTheFile)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind,
                                             .simRes = 1000,
                                             .fileRes = 1000000,
                                             .fileEnd = 6000,
                                             .events = {{0, 1, 0}, {3, 2, 0}},
                                             .start = "2"});
        ASSERT_NE(stimulus, nullptr);
        EXPECT_EQ(ValueAt(*stimulus, 999), "1");
        EXPECT_EQ(ValueAt(*stimulus, 1000), "2");
    }
}

TEST_F(ReplayWindow, BeginsAtTheCreationUnlessTheOffsetIsAbsolute)
{
    const struct {
        const char *offset;
        long long first;
    } rows[] = {{"", 500}, {"30ps", 530}, {"@30ps", 30}, {"@0ps", 0}, {"30 ps", 530}};
    for (const EFileKind kind : AllKinds) {
        for (const auto &row : rows) {
            const StimulusPtr stimulus = Create({.kind = kind, .events = Counting, .offset = row.offset, .now = 500});
            ASSERT_NE(stimulus, nullptr);
            EXPECT_EQ(ValueAt(*stimulus, row.first), "1") << row.offset;
            EXPECT_EQ(ValueAt(*stimulus, row.first + 20), "2") << row.offset;
            if (row.first == 0)
                continue;
            EXPECT_EQ(ValueAt(*stimulus, row.first - 1), std::nullopt) << row.offset;
            EXPECT_TRUE(stimulus->IsFinishedAt(row.first - 1)) << row.offset;
            EXPECT_EQ(stimulus->GetNextEventTime(row.first - 1), row.first) << row.offset;
            EXPECT_EQ(stimulus->GetNextEventTime(-5), row.first) << row.offset;
        }
    }
}

TEST_F(ReplayWindow, EndsAtTheCancelTime)
{
    const struct {
        const char *cancel;
        long long time;
    } rows[] = {{"40ps", 45}, {"@40ps", 40}};
    for (const EFileKind kind : AllKinds) {
        for (const auto &row : rows) {
            const StimulusPtr stimulus =
                Create({.kind = kind, .events = Counting, .offset = "@0ps", .cancel = row.cancel, .now = 5});
            ASSERT_NE(stimulus, nullptr);
            EXPECT_NE(ValueAt(*stimulus, row.time - 1), std::nullopt);
            EXPECT_FALSE(stimulus->IsFinishedAt(row.time - 1));
            EXPECT_EQ(ValueAt(*stimulus, row.time), std::nullopt);
            EXPECT_TRUE(stimulus->IsFinishedAt(row.time));
            EXPECT_EQ(stimulus->GetNextEventTime(row.time), -1);
        }
    }
}

TEST_F(ReplayWindow, DoesNotAnnounceAChangeAtTheCancelTimeOrBehindIt)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = Counting, .cancel = "@40ps"});
        EXPECT_THAT(ChangesOf(*stimulus), ElementsAre(20));
        EXPECT_THAT(ChangesOf(*Create({.kind = kind, .events = Counting, .cancel = "@41ps"})), ElementsAre(20, 40));
    }
}

TEST_F(ReplayWindow, IsNeverOpenedWhereTheOffsetIsNotBeforeTheCancelTime)
{
    for (const EFileKind kind : AllKinds) {
        EXPECT_EQ(Create({.kind = kind, .offset = "@30ps", .cancel = "@30ps"})->GetNextEventTime(-1), -1);
        EXPECT_EQ(Create({.kind = kind, .offset = "@31ps", .cancel = "@30ps"})->GetNextEventTime(0), -1);
        EXPECT_EQ(Create({.kind = kind, .offset = "@29ps", .cancel = "@30ps"})->GetNextEventTime(0), 29);
    }
}

TEST_F(ReplayWindow, HoldsTheEndOfTheStretch)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = Counting, .start = "10ps", .end = "40ps"});
        EXPECT_EQ(ValueAt(*stimulus, 0), "1");
        EXPECT_EQ(ValueAt(*stimulus, 29), "2");
        EXPECT_EQ(ValueAt(*stimulus, 30), "3");
        EXPECT_FALSE(stimulus->IsFinishedAt(30));
        EXPECT_EQ(ValueAt(*stimulus, 31), std::nullopt);
        EXPECT_TRUE(stimulus->IsFinishedAt(31));
        EXPECT_THAT(ChangesOf(*stimulus), ElementsAre(10, 30));
    }
}

TEST_F(ReplayWindow, HasGapsWhereThePeriodIsLongerThanTheStretch)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus =
            Create({.kind = kind, .events = Counting, .start = "10ps", .end = "40ps", .repeat = "100ps"});
        EXPECT_EQ(ValueAt(*stimulus, 30), "3");
        EXPECT_EQ(ValueAt(*stimulus, 31), std::nullopt);
        EXPECT_EQ(ValueAt(*stimulus, 99), std::nullopt);
        EXPECT_EQ(ValueAt(*stimulus, 100), "1");
        EXPECT_EQ(ValueAt(*stimulus, 131), std::nullopt);
        EXPECT_THAT(ChangesOf(*stimulus, 6), ElementsAre(10, 30, 100, 110, 130, 200));
    }
}

TEST_F(ReplayWindow, PlaysOnlyTheFirstPeriodOfALongerStretch)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = Counting, .repeat = "40ps"});
        EXPECT_THAT(ChangesOf(*stimulus, 4), ElementsAre(20, 40, 60, 80));
        EXPECT_EQ(ValueAt(*stimulus, 39), "2");
        EXPECT_EQ(ValueAt(*stimulus, 40), "1") << "a change at the end of the period is passed over";
    }
}

TEST_F(ReplayWindow, TakesANegativeTimeForZero)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = Counting});
        EXPECT_EQ(ValueAt(*stimulus, -7), "1");
        EXPECT_EQ(stimulus->GetNextEventTime(-7), 20);
        EXPECT_FALSE(stimulus->IsFinishedAt(-Latest - 1));
    }
}

TEST_F(ReplayWindow, GivesTheLastOfSeveralEventsAtOneTime)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus =
            Create({.kind = kind, .events = {{0, 1, 0}, {10, 2, 0}, {10, 3, 0}, {10, 4, 0}, {20, 5, 0}}});
        EXPECT_EQ(ValueAt(*stimulus, 9), "1");
        EXPECT_EQ(ValueAt(*stimulus, 10), "4");
        EXPECT_EQ(ValueAt(*stimulus, 19), "4");
        EXPECT_EQ(stimulus->GetNextEventTime(0), 10);
        EXPECT_EQ(stimulus->GetNextEventTime(10), 20);
    }
}

TEST_F(ReplayWindow, HasNoValueBeforeTheFirstEvent)
{
    for (const EFileKind kind : AllKinds) {
        const StimulusPtr stimulus = Create({.kind = kind, .events = {{10, 2, 0}}});
        EXPECT_EQ(ValueAt(*stimulus, 9), std::nullopt);
        EXPECT_FALSE(stimulus->IsFinishedAt(9));
        EXPECT_EQ(ValueAt(*stimulus, 10), "2");
    }
}

// Nothing here crashes, hangs or traps; what is answered is another matter.
TEST_F(ReplayWindow, SurvivesTimesAndResolutionsAtTheirLimits)
{
    constexpr long long Extremes[] = {0, 1, 1000, Latest, -1, -Latest - 1, 1000000000000000000, 999999999999};
    const CFileEvents events = {{0, 1, 0}, {1, 2, 0}, {Latest / 2, 3, 0}, {Latest - 1, 4, 0}, {Latest, 5, 0}};
    const CLogCatcher log;
    for (const EFileKind kind : AllKinds) {
        for (const long long simRes : Extremes) {
            for (const long long fileRes : Extremes) {
                if (kind == EFileKind::Stream && fileRes < 1)
                    continue;  // such a file cannot be written
                for (const char *time : {"", "99999999999999999999hr", "1fs"}) {
                    const StimulusPtr stimulus = Create({.kind = kind,
                                                         .simRes = simRes,
                                                         .fileRes = fileRes,
                                                         .fileEnd = Latest,
                                                         .events = events,
                                                         .start = time,
                                                         .repeat = time,
                                                         .now = simRes});
                    if (stimulus == nullptr)
                        continue;
                    FormulaOf(*stimulus);
                    stimulus->CheckSettings(nullptr);
                    for (const long long asked : Extremes) {
                        ValueAt(*stimulus, asked);
                        stimulus->GetNextEventTime(asked);
                        stimulus->IsFinishedAt(asked);
                    }
                }
            }
        }
    }
}

}  // namespace
