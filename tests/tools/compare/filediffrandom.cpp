// The comparison of two files against one that looks at every tick.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/stream/streamfiles.h"
#include "tools/compare/filediff.h"
#include "tools/compare/memoryfile.h"
#include "tools/compare/randomside.h"
#include "tools/files/wavefile.h"
#include "tools/files/waveoutput.h"

using namespace randomside;

namespace {

// The rules of the comparison, once more and in other words.
class CRules {
public:
    explicit CRules(const tesk::SComparePolicy &policy) : m_policy(policy) {}

    bool Agree(const SRandomSignal &signal, const CShown &expected, const CShown &got) const
    {
        if (signal.kind == SRandomSignal::Levels) {
            const char one = Letter(expected);
            const char other = Letter(got);
            return one == other || (m_policy.ignoresUnknown && std::string("UXW-").find(one) != std::string::npos);
        }
        if (m_policy.ignoresUnknown && expected.empty())
            return true;
        if (expected.empty() || got.empty() || signal.kind == SRandomSignal::Integer)
            return expected == got;
        return std::abs(std::stod(expected) - std::stod(got)) <= m_policy.realTolerance.value_or(0);
    }

    // Whether nothing has changed, as far as it is told apart.
    bool AreSame(const SRandomSignal &signal, const CShown &one, const CShown &other) const
    {
        return signal.kind == SRandomSignal::Levels ? Letter(one) == Letter(other) : one == other;
    }

    // Whether the element differs at a tick.
    bool Differs(const SRandomSignal &signal, const std::map<long long, CShown> &expected,
                 const std::map<long long, CShown> &got, long long time) const
    {
        bool expectedIsShown = false;
        bool gotIsExpected = false;
        for (long long near = time - m_policy.tolerance; near <= time + m_policy.tolerance; ++near) {
            expectedIsShown = expectedIsShown || Agree(signal, ShownAt(expected, time), ShownAt(got, near));
            gotIsExpected = gotIsExpected || Agree(signal, ShownAt(expected, near), ShownAt(got, time));
        }
        return !expectedIsShown || !gotIsExpected;
    }

private:
    char Letter(const CShown &shown) const
    {
        const char letter = shown.empty() ? 'X' : shown[0];
        return m_policy.hasNineStates ? letter : InFourStates(letter);
    }

    tesk::SComparePolicy m_policy;
};

struct SExpectedVerdict {
    long long stretches = 0;
    long long first = -1;
};

SExpectedVerdict Judge(const CRules &rules, const SRandomSignal &expected, const SRandomSignal &got, long long from,
                       long long until, long long tolerance)
{
    SExpectedVerdict verdict;
    std::optional<long long> last;  // tick that differed
    for (long long time = from; time <= until; ++time) {
        bool differs = false;
        for (std::size_t i = 0; i < expected.elements.size(); ++i)
            differs = differs || rules.Differs(expected, expected.elements[i], got.elements[i], time);
        if (differs && verdict.first < 0)
            verdict.first = time;
        verdict.stretches += differs && (!last || time - *last > std::max(1LL, tolerance)) ? 1 : 0;
        if (differs)
            last = time;
    }
    return verdict;
}

// When the file that goes on longer first shows something else behind the end of the other one.
std::optional<long long> FindLateChange(const CRules &rules, const SRandomSide &longer, long long after, long long last)
{
    for (long long time = after + 1; time <= last; ++time) {
        for (const SRandomSignal &signal : longer.signals) {
            for (const auto &events : signal.elements) {
                if (!rules.AreSame(signal, ShownAt(events, time), ShownAt(events, time - 1)))
                    return time;
            }
        }
    }
    return std::nullopt;
}

tesk::SFileDiffOptions RandomOptions(CDice &dice)
{
    tesk::SFileDiffOptions options;
    options.policy.ignoresUnknown = dice.OneIn(3);
    options.policy.hasNineStates = dice.OneIn(2);
    options.policy.tolerance = dice.OneIn(2) ? 0 : dice.To(6);
    if (dice.OneIn(3))
        options.policy.realTolerance = static_cast<double>(dice.To(2));
    if (dice.OneIn(3))
        options.policy.from = dice.To(15);
    if (dice.OneIn(3))
        options.policy.until = 16 + dice.To(30);
    return options;
}

std::string Show(const SRandomSide &side)
{
    std::string text = "end " + std::to_string(side.end);
    for (const SRandomSignal &signal : side.signals) {
        for (const auto &events : signal.elements) {
            text += '\n' + signal.name;
            for (const auto &[time, value] : events)
                text += " #" + std::to_string(time) + '=' + value;
        }
    }
    return text + '\n';
}

// Times of the verdict are multiples of `unit`, those of the rules are not.
void ExpectVerdict(const tesk::SFileDiff &diff, std::size_t pair, const SExpectedVerdict &verdict)
{
    const tesk::SPairVerdict &found = diff.Verdict(pair);
    EXPECT_EQ(found.stretches, verdict.stretches) << diff.signals.pairs[pair].expectedName;
    EXPECT_EQ(found.first ? found.first->time : -1, verdict.first) << diff.signals.pairs[pair].expectedName;
}

// A signal, or where both files have its bits one of these.
SRandomSignal PartNamed(const SRandomSignal &signal, const std::string &name)
{
    const std::size_t bracket = name.find('[');
    if (bracket == name.npos)
        return signal;
    const std::size_t bit = std::stoul(name.substr(bracket + 1));
    return {name, signal.kind, {signal.elements[signal.elements.size() - 1 - bit]}};
}

void Hold(const SRandomSide &expected, const SRandomSide &got, const tesk::SFileDiffOptions &options,
          const tesk::SFileDiff &diff)
{
    const CRules rules(options.policy);
    const long long end = std::min(expected.end, got.end);
    const long long until = std::min(end, options.policy.until.value_or(end));
    EXPECT_TRUE(diff.signals.missing.empty() && diff.signals.additional.empty() && diff.signals.unlike.empty());
    std::set<std::string> met;
    for (std::size_t pair = 0; pair < diff.signals.pairs.size(); ++pair) {
        const std::string name = diff.signals.pairs[pair].expectedName;
        for (std::size_t i = 0; i < expected.signals.size(); ++i) {
            if (!name.starts_with(expected.signals[i].name))
                continue;
            met.insert(expected.signals[i].name);
            ExpectVerdict(diff, pair,
                          Judge(rules, PartNamed(expected.signals[i], name), PartNamed(got.signals[i], name),
                                options.policy.from, until, options.policy.tolerance));
        }
    }
    EXPECT_EQ(met.size(), expected.signals.size());
    std::optional<long long> late;
    if (expected.end != got.end)
        late = FindLateChange(rules, expected.end < got.end ? got : expected,
                              until == end ? end + options.policy.tolerance : Times * 2,
                              options.policy.until.value_or(Times * 2));
    EXPECT_EQ(diff.earlyEnd ? std::optional(diff.earlyEnd->next) : std::nullopt, late);
}

}  // namespace

TEST(FileDiff, AgreesWithALookAtEveryTickOnThousandsOfPairs)
{
    int different = 0;
    for (unsigned round = 0; round < 3000; ++round) {
        CDice dice(round);
        SRandomSide expected = RandomSide(dice);
        SRandomSide got = expected;
        Spoil(dice, got);
        CMemoryFile expectedFile = FileOf(dice, expected, 1, 1000);
        CMemoryFile gotFile = FileOf(dice, got, 1, 1000);
        const tesk::SFileDiffOptions options = RandomOptions(dice);
        if (options.policy.from > std::min(expected.end, got.end))
            continue;
        const tesk::SFileDiff diff = tesk::DiffFiles(expectedFile, gotFile, options);
        Hold(expected, got, options, diff);
        different += std::ranges::any_of(
            diff.pairOf, [&](std::size_t pair) { return diff.comparison.Verdict(pair).first.has_value(); });
        ASSERT_FALSE(::testing::Test::HasFailure())
            << "round " << round << ", tolerance " << options.policy.tolerance << ", x "
            << options.policy.ignoresUnknown << ", nine " << options.policy.hasNineStates << ", from "
            << options.policy.from << ", until " << options.policy.until.value_or(-1) << "\nexpected " << Show(expected)
            << "got " << Show(got);
    }
    EXPECT_GT(different, 1000);
}

// Nothing is computed here: what is found is what was planted.
TEST(FileDiff, FindsTheOneDifferenceThatIsPlantedAndNoOther)
{
    for (unsigned round = 0; round < 1000; ++round) {
        CDice dice(round);
        SRandomSide expected = RandomSide(dice);
        CMemoryFile expectedFile = FileOf(dice, expected, 1, 1000);  // may fold letters
        SRandomSide got = expected;
        const auto place = static_cast<std::size_t>(dice.To(std::ssize(got.signals) - 1));
        SRandomSignal &signal = got.signals[place];
        const auto element = static_cast<std::size_t>(dice.To(std::ssize(signal.elements) - 1));
        auto &events = signal.elements[element];
        const long long time = dice.To(Times - 1);
        const CShown before = ShownAt(events, time);
        if (before.empty())
            continue;
        events.try_emplace(time + 1, before);  // one tick, if nothing changes then
        if (signal.kind == SRandomSignal::Levels)
            events[time] = InFourStates(before[0]) == '1' ? "0" : "1";
        else
            events[time] = std::to_string(std::stoi(before) + 100);
        CMemoryFile gotFile = FileOf(dice, got, 1, 1000);
        const tesk::SFileDiff diff = tesk::DiffFiles(expectedFile, gotFile, {});
        std::size_t different = 0;
        for (std::size_t pair = 0; pair < diff.signals.pairs.size(); ++pair) {
            const tesk::SPairVerdict &verdict = diff.Verdict(pair);
            if (!verdict.first)
                continue;
            ++different;
            EXPECT_TRUE(diff.signals.pairs[pair].expectedName.starts_with(signal.name));
            EXPECT_EQ(verdict.first->time, time);
            EXPECT_EQ(verdict.stretches, 1);
        }
        const bool hasAlias = signal.kind != SRandomSignal::Levels;
        EXPECT_EQ(different, hasAlias ? 2U : 1U);
        EXPECT_FALSE(diff.earlyEnd);
        ASSERT_FALSE(::testing::Test::HasFailure())
            << "round " << round << ", planted at " << time << " in " << signal.name << '\n'
            << Show(expected) << "got " << Show(got);
    }
}

// The files count in units of which neither is a multiple of the other one's.
TEST(FileDiff, ComparesFilesOfDifferentUnits)
{
    for (unsigned round = 0; round < 500; ++round) {
        CDice dice(round);
        SRandomSide expected = RandomSide(dice);
        SRandomSide got = expected;
        Spoil(dice, got);
        CMemoryFile expectedFile = FileOf(dice, expected, 3, 2000);
        CMemoryFile gotFile = FileOf(dice, got, 2, 3000);
        tesk::SFileDiffOptions options = RandomOptions(dice);
        options.policy.from = 0;
        options.policy.until.reset();
        const tesk::SFileDiffOptions ticks = options;
        options.policy.tolerance *= 6;  // a tick of the comparison is 1000 fs, one of the rules 6000
        const tesk::SFileDiff diff = tesk::DiffFiles(expectedFile, gotFile, options);
        EXPECT_EQ(diff.resolution, 1000);
        const CRules rules(ticks.policy);
        for (std::size_t pair = 0; pair < diff.signals.pairs.size(); ++pair) {
            for (std::size_t i = 0; i < expected.signals.size(); ++i) {
                const std::string &name = diff.signals.pairs[pair].expectedName;
                if (!name.starts_with(expected.signals[i].name))
                    continue;
                const SExpectedVerdict verdict =
                    Judge(rules, PartNamed(expected.signals[i], name), PartNamed(got.signals[i], name), 0,
                          std::min(expected.end, got.end), 0);
                const tesk::SPairVerdict &found = diff.Verdict(pair);
                EXPECT_EQ(found.first.has_value(), verdict.first >= 0);
                if (options.policy.tolerance == 0 && found.first) {
                    EXPECT_EQ(found.first->time, verdict.first * 6);
                }
            }
        }
        ASSERT_FALSE(::testing::Test::HasFailure()) << "round " << round << '\n' << Show(expected) << Show(got);
    }
}

// Through the writers and readers of three formats.
TEST(FileDiff, FindsTheSameInFilesOfEveryKind)
{
    const CStreamFolder folder;
    const char *const names[] = {"a.vcd", "a.fst", "a.zyn"};
    const auto write = [&](CMemoryFile &file, const std::string &path) {
        if (path.ends_with(".zyn")) {
            WriteEventStream(path, file);
            return;
        }
        std::fstream out(path, std::ios::binary | std::ios::in | std::ios::out | std::ios::trunc);
        if (path.ends_with(".fst"))
            WriteFst(out, file);
        else
            WriteWaveDump(out, file);
    };
    for (unsigned round = 0; round < 40; ++round) {
        CDice dice(round + 10000);
        SRandomSide expected = RandomSide(dice);
        for (SRandomSignal &signal : expected.signals) {  // without a value a dump has x, and a number 0
            for (auto &events : signal.elements)
                events.try_emplace(0, signal.kind == SRandomSignal::Levels ? "X" : "0");
        }
        SRandomSide got = expected;
        Spoil(dice, got);
        for (std::size_t i = 0; i < got.signals.size(); ++i) {
            for (std::size_t element = 0; element < got.signals[i].elements.size(); ++element)
                got.signals[i].elements[element].try_emplace(0, expected.signals[i].elements[element].at(0));
        }
        CMemoryFile expectedMemory = FileOf(dice, expected, 1, 1000);
        CMemoryFile gotMemory = FileOf(dice, got, 1, 1000);
        const std::string expectedPath = folder / ("expected" + std::string(names[round % 3]));
        const std::string gotPath = folder / ("got" + std::string(names[round / 3 % 3]));
        write(expectedMemory, expectedPath);
        write(gotMemory, gotPath);
        const auto expectedFile = OpenWaveFile(expectedPath);
        const auto gotFile = OpenWaveFile(gotPath);
        tesk::SFileDiffOptions options = RandomOptions(dice);
        options.policy.from = 0;
        options.policy.until = std::min(expected.end, got.end);
        const long long factor = expectedFile->GetResolution() / tesk::CommonResolution(*expectedFile, *gotFile);
        ASSERT_EQ(factor, 1);
        Hold(expected, got, options, tesk::DiffFiles(*expectedFile, *gotFile, options));
        ASSERT_FALSE(::testing::Test::HasFailure()) << "round " << round << '\n' << Show(expected) << Show(got);
    }
}
