// The look-ups of a plain formula against a second, plain reading of their rules that scans all events.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "core/support.h"

namespace {

struct SEvent {
    std::string value;
    long long time;
    bool isAbsolute;
};

// A formula as the rules see it, times in ticks.
class CScannedFormula {
public:
    std::vector<SEvent> events;
    long long start = 0;
    long long repeat = 0;
    long long cancel = 0;  // as a tick, 0 for none

    std::string Text() const
    {
        std::string text;
        for (const SEvent &event : events)
            text +=
                (text.empty() ? "" : ", ") + event.value + (event.isAbsolute ? " @" : " ") + std::to_string(event.time);
        if (repeat != 0)
            text += " -r " + std::to_string(repeat);
        if (cancel != 0)
            text += " -cancel @" + std::to_string(cancel);
        return text;
    }

    // Of two events at one time the later wins, in the earlier one's place; then the offset is taken out.
    void Settle()
    {
        std::vector<SEvent> kept;
        for (const SEvent &event : events) {
            SEvent *same = nullptr;
            for (SEvent &other : kept) {
                if (other.time == event.time)
                    same = &other;
            }
            if (same != nullptr)
                *same = event;
            else
                kept.push_back(event);
        }
        events = kept;
        offset = 0;
        for (const SEvent &event : events) {
            if (!event.isAbsolute) {
                offset = event.time;
                break;
            }
        }
        for (SEvent &event : events)
            event.time -= event.isAbsolute ? 0 : offset;
    }

    void MoveByOffset()
    {
        for (SEvent &event : events)
            event.time += offset;
    }

    std::optional<std::string> Value(long long time) const
    {
        const long long base = start + offset;
        if (time < base || (cancel != 0 && time >= cancel))
            return std::nullopt;
        long long relativeTime = time - base;
        if (repeat != 0 && relativeTime >= repeat)
            relativeTime %= repeat;
        const SEvent *absolute = Nearest(time, true, false);
        const SEvent *relative = Nearest(relativeTime, false, false);
        if (absolute == nullptr && relative == nullptr)
            return std::nullopt;
        if (absolute == nullptr || relative == nullptr)
            return (absolute != nullptr ? absolute : relative)->value;
        if (absolute->time == relative->time)
            return std::nullopt;
        return (absolute->time > relative->time ? absolute : relative)->value;
    }

    long long Next(long long time, bool useAbsolute = true) const
    {
        if (cancel != 0 && time >= cancel)
            return -1;
        const long long from = time + 1;
        const long long base = start + offset;
        if (from < base)
            return Next(base - 1, useAbsolute);
        const SEvent *found = useAbsolute ? Nearest(from, true, true) : nullptr;
        const long long absolute = found != nullptr ? found->time : -1;
        long long cycles = 0;
        long long position = from - base;
        if (repeat != 0 && position >= repeat) {
            cycles = position / repeat;
            position %= repeat;
        }
        long long relative = -1;
        found = Nearest(position, false, true);
        if (found != nullptr) {
            relative = found->time;
        } else if (repeat != 0 && useAbsolute) {
            const long long first = Next(base - 1, false);
            relative = first == -1 ? -1 : repeat + first - base;
        }
        if (relative != -1)
            relative += base + repeat * cycles;
        long long answer = absolute == -1 ? relative : relative == -1 ? absolute : std::min(absolute, relative);
        if (absolute != -1 && absolute == relative)
            answer = -1;
        if (useAbsolute && cancel != 0 && (answer == -1 || answer >= cancel))
            return cancel;
        return answer;
    }

private:
    const SEvent *Nearest(long long time, bool isAbsolute, bool isForward) const
    {
        const SEvent *nearest = nullptr;
        long long smallest = LLONG_MAX;
        for (const SEvent &event : events) {
            const long long distance = isForward ? event.time - time : time - event.time;
            if (event.isAbsolute != isAbsolute || distance < 0 || distance >= smallest)
                continue;
            nearest = &event;
            smallest = distance;
        }
        return nearest;
    }

    long long offset = 0;
};

CScannedFormula RandomFormula(std::mt19937 &random)
{
    const auto number = [&](unsigned limit) { return static_cast<long long>(random() % limit); };
    CScannedFormula formula;
    for (long long i = number(6); i >= 0; --i)
        formula.events.push_back({"v" + std::to_string(number(100)), number(12), number(4) == 0});
    formula.start = number(3) == 0 ? number(10) : 0;
    formula.repeat = number(2) == 0 ? number(14) : 0;
    formula.cancel = number(3) == 0 ? number(60) : 0;
    return formula;
}

}  // namespace

TEST(FormulaSearch, AgreesWithAScanAtEveryTime)
{
    std::mt19937 random(1);  // fixed, so that a failure repeats
    for (int round = 0; round < 20000; ++round) {
        CScannedFormula scanned = RandomFormula(random);
        const std::string text = scanned.Text();
        const StimulusPtr stimulus = Create(text, scanned.start);
        scanned.Settle();
        for (long long time = -2; time <= 70; ++time) {
            ASSERT_EQ(ValueAt(*stimulus, time), scanned.Value(time))
                << text << " at " << time << " from " << scanned.start;
            ASSERT_EQ(stimulus->GetNextEventTime(time), scanned.Next(time))
                << text << " after " << time << " from " << scanned.start;
        }
    }
}

TEST(FormulaSearch, AgreesWithAScanAfterTheFormulaWasWritten)  // writing moves the events by the offset
{
    std::mt19937 random(2);
    for (int round = 0; round < 5000; ++round) {
        CScannedFormula scanned = RandomFormula(random);
        const std::string text = scanned.Text();
        const StimulusPtr stimulus = Create(text, scanned.start);
        FormulaOf(*stimulus);
        scanned.Settle();
        scanned.MoveByOffset();
        for (long long time = -2; time <= 70; ++time) {
            ASSERT_EQ(ValueAt(*stimulus, time), scanned.Value(time)) << text << " at " << time;
            ASSERT_EQ(stimulus->GetNextEventTime(time), scanned.Next(time)) << text << " after " << time;
        }
    }
}

TEST(FormulaSearch, WalksForwardOnly)  // a next change lies behind the time asked for
{
    std::mt19937 random(3);
    for (int round = 0; round < 5000; ++round) {
        const CScannedFormula formula = RandomFormula(random);
        const StimulusPtr stimulus = Create(formula.Text(), formula.start);
        long long time = -1;
        for (int step = 0; step < 50; ++step) {
            const long long next = stimulus->GetNextEventTime(time);
            if (next == -1)
                break;
            ASSERT_GT(next, time) << formula.Text();
            time = next;
        }
    }
}

TEST(FormulaText, ReadsBackToTheSameChanges)
{
    std::mt19937 random(4);
    for (int round = 0; round < 5000; ++round) {
        const CScannedFormula formula = RandomFormula(random);
        const StimulusPtr played = Create(formula.Text());
        // Without absolute events, to which the offset is added.
        bool hasAbsolute = false;
        for (const SEvent &event : formula.events)
            hasAbsolute = hasAbsolute || event.isAbsolute;
        if (hasAbsolute)
            continue;
        const StimulusPtr again = Create(Canonical(formula.Text()));
        for (long long time = -1; time < 70; ++time) {
            ASSERT_EQ(ValueAt(*again, time), ValueAt(*played, time)) << formula.Text();
            ASSERT_EQ(again->GetNextEventTime(time), played->GetNextEventTime(time)) << formula.Text();
        }
    }
}

TEST(HostileFormula, GivesNullOrAStimulusThatAnswers)
{
    std::mt19937 random(5);
    const std::string_view alphabets[] = {
        "1 ,@0nps-rcacelZ()\"'\n\t.",          "-r ", "-cancel @,", "((((\"'", ",, ", "@1 ,", "9", "1 1,",
        std::string_view("\x01\xFF\x80 1,", 6)};
    for (const std::string_view alphabet : alphabets) {
        for (const std::size_t size : {1U, 2U, 5U, 50U, 1000U, 1000000U}) {
            std::string text;
            for (std::size_t i = 0; i < size; ++i)
                text += alphabet[random() % alphabet.size()];
            const StimulusPtr stimulus = Create(text);
            if (stimulus == nullptr)
                continue;
            for (const long long time : {LLONG_MIN, -1LL, 0LL, 1000LL, LLONG_MAX}) {
                ValueAt(*stimulus, time);
                stimulus->GetNextEventTime(time);
            }
            stimulus->CheckSettings(nullptr);
            FormulaOf(*stimulus);
        }
    }
}
