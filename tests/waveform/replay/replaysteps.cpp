// The steps of the stimuli that replay files, compared with plain scans.

#include <random>

#include "logcatcher.h"
#include "waveform/replay/replayedfiles.h"
#include "waveform/replay/replaymodel.h"

namespace {

class ReplaySteps : public ReplayedFiles {};

std::string Show(const SReplay &replay)
{
    std::string text = "kind " + std::to_string(static_cast<int>(replay.kind)) + " resolutions " +
                       std::to_string(replay.simRes) + " " + std::to_string(replay.fileRes) + " end " +
                       std::to_string(replay.fileEnd) + " now " + std::to_string(replay.now) + " '" + replay.Tail() +
                       "' events";
    for (const NTARN::SFileEvent &event : replay.events)
        text += " " + std::to_string(event.time) + "=" + std::to_string(event.value);
    return text;
}

class CRandomReplays {
public:
    explicit CRandomReplays(unsigned seed) : m_random(seed) {}

    SReplay DrawFile(EFileKind kind)
    {
        SReplay replay;
        replay.kind = kind;
        replay.simRes = Resolution();
        // No more than three powers of ten apart, for the ranges of both to meet.
        do
            replay.fileRes = Resolution();
        while (replay.fileRes > replay.simRes * 1000 || replay.simRes > replay.fileRes * 1000);
        replay.fileEnd = UpTo(60);
        for (unsigned count = Number(8), i = 0; i < count; ++i)
            replay.events.push_back({UpTo(70), Number(99), 0});
        std::ranges::sort(replay.events, {}, &NTARN::SFileEvent::time);
        if (kind == EFileKind::Stream && !replay.events.empty())  // such a file does not end before its last event
            replay.fileEnd = std::max(replay.fileEnd, replay.events.back().time);
        return replay;
    }

    void DrawFormula(SReplay &replay)
    {
        replay.now = UpTo(3) == 0 ? UpTo(20) : 0;
        const long long tick = std::max(replay.simRes, replay.fileRes);
        replay.start = MaybeTime(tick, 20);
        replay.end = replay.start.empty() ? "" : MaybeTime(tick, 70);
        replay.offset = MaybePoint(tick, 20);
        replay.repeat = MaybeTime(tick, 60);
        replay.cancel = MaybePoint(tick, 150);
    }

    long long UpTo(unsigned last) { return Number(last); }

private:
    unsigned Number(unsigned last) { return static_cast<unsigned>(m_random() % (last + 1)); }

    long long Resolution()
    {
        constexpr long long Resolutions[] = {1, 10, 100, 1000, 2000, 10000, 100000, 1000000};
        return Resolutions[Number(7)];
    }

    // A time of up to `last` steps, or none.
    std::string MaybeTime(long long tick, unsigned last)
    {
        const long long time = UpTo(last) * std::max(1LL, tick / (UpTo(1) == 0 ? 1 : 3));
        return UpTo(1) == 0 ? "" : std::to_string(time) + "fs";
    }

    std::string MaybePoint(long long tick, unsigned last)
    {
        const std::string time = MaybeTime(tick, last);
        return time.empty() || UpTo(1) == 0 ? time : "@" + time;
    }

    std::mt19937 m_random;
};

void ExpectAgreement(IStimulus &stimulus, const SReplay &replay, CRandomReplays &random)
{
    const CReplayModel model(replay);
    long long time = -2;
    for (int step = 0; step < 120; ++step, time += 1 + random.UpTo(step < 60 ? 2 : 400)) {
        ASSERT_EQ(stimulus.GetNextEventTime(time), model.Next(time)) << time << " " << Show(replay);
        ASSERT_EQ(ValueAt(stimulus, time), model.Value(time)) << time << " " << Show(replay);
        ASSERT_EQ(stimulus.IsFinishedAt(time), model.Map(time) < 0) << time << " " << Show(replay);
    }
}

TEST_F(ReplaySteps, AgreeWithPlainScans)
{
    const CLogCatcher log;
    CRandomReplays random(1);
    int good = 0;
    for (int file = 0; file < 900; ++file) {
        SReplay replay = random.DrawFile(AllKinds[file % 3]);
        MakeFile(replay);
        for (int formula = 0; formula < 8; ++formula) {
            random.DrawFormula(replay);
            const StimulusPtr stimulus = Apply(replay);
            ASSERT_EQ(stimulus != nullptr, CReplayModel(replay).IsGood()) << Show(replay);
            if (stimulus == nullptr)
                continue;
            ++good;
            ASSERT_NO_FATAL_FAILURE(ExpectAgreement(*stimulus, replay, random));
        }
    }
    EXPECT_GT(good, 1000);
}

}  // namespace
