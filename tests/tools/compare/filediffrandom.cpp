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
#include "tools/files/wavefile.h"
#include "tools/files/waveoutput.h"

namespace {

// What an element shows at a tick: a letter, or a number as text; empty for no value yet.
using CShown = std::string;

struct SRandomSignal {
    std::string name;
    enum EKind { Levels, Integer, Real } kind = Levels;
    std::vector<std::map<long long, CShown>> elements = {};  // by time in units that both files have
};

struct SRandomSide {
    std::vector<SRandomSignal> signals;
    long long end = 0;
};

class CDice {
public:
    explicit CDice(unsigned seed) : m_random(seed) {}
    long long To(long long last)
    {
        return static_cast<long long>(m_random() % static_cast<unsigned long long>(last + 1));
    }
    bool OneIn(long long count) { return To(count - 1) == 0; }
    template <class TItem>
    const TItem &Of(const std::vector<TItem> &items)
    {
        return items[static_cast<std::size_t>(To(std::ssize(items) - 1))];
    }

private:
    std::mt19937 m_random;
};

constexpr long long Times = 40;

CShown RandomValue(CDice &dice, const SRandomSignal &signal)
{
    static const std::string Letters = "UX01ZWLH-0101010101";
    if (signal.kind == SRandomSignal::Levels)
        return std::string(1, Letters[static_cast<std::size_t>(dice.To(std::ssize(Letters) - 1))]);
    return std::to_string(dice.To(6) - 2);
}

SRandomSide RandomSide(CDice &dice)
{
    SRandomSide side;
    const long long count = 1 + dice.To(3);
    for (long long i = 0; i < count; ++i) {
        SRandomSignal signal{"tb.s" + std::to_string(i),
                             dice.Of<SRandomSignal::EKind>({SRandomSignal::Levels, SRandomSignal::Levels,
                                                            SRandomSignal::Integer, SRandomSignal::Real})};
        signal.elements.resize(signal.kind == SRandomSignal::Levels ? static_cast<std::size_t>(1 + dice.To(3)) : 1);
        for (auto &events : signal.elements) {
            for (long long changes = dice.To(8); changes > 0; --changes)
                events[dice.To(Times)] = RandomValue(dice, signal);
            if (!dice.OneIn(3))
                events.try_emplace(0, RandomValue(dice, signal));
        }
        side.signals.push_back(signal);
    }
    side.end = Times + dice.To(2);
    return side;
}

// Plants differences: a change moves, comes too often, does not come, or has another value.
void Spoil(CDice &dice, SRandomSide &side)
{
    for (long long count = dice.To(3); count > 0; --count) {
        SRandomSignal &signal = side.signals[static_cast<std::size_t>(dice.To(std::ssize(side.signals) - 1))];
        auto &events = signal.elements[static_cast<std::size_t>(dice.To(std::ssize(signal.elements) - 1))];
        const auto event = std::next(events.begin(), events.empty() ? 0 : dice.To(std::ssize(events) - 1));
        const long long what = dice.To(3);
        if (what == 0 || events.empty()) {
            events[dice.To(Times)] = RandomValue(dice, signal);
        } else if (what == 1) {
            events.erase(event);
        } else if (what == 2) {
            event->second = RandomValue(dice, signal);
        } else {
            const CShown value = event->second;
            const long long time = std::clamp(event->first + dice.To(6) - 3, 0LL, Times);
            events.erase(event);
            events[time] = value;
        }
    }
    if (dice.OneIn(4))
        side.end -= dice.To(12);
    for (SRandomSignal &signal : side.signals) {
        for (auto &events : signal.elements)
            events.erase(events.upper_bound(side.end), events.end());
    }
}

// The letter that a type of four states has for one of nine.
char InFourStates(char letter)
{
    switch (letter) {
    case '0':
    case 'L': return '0';
    case '1':
    case 'H': return '1';
    case 'Z': return 'Z';
    default: return 'X';
    }
}

CElementEvents EventsOf(const SRandomSignal &signal, std::size_t element, const std::string &letters, long long unit)
{
    CElementEvents events;
    for (const auto &[time, shown] : signal.elements[element]) {
        std::uint64_t value = 0;
        if (signal.kind == SRandomSignal::Levels)
            value = letters.find(letters.size() == 4 ? InFourStates(shown[0]) : shown[0]);
        else if (signal.kind == SRandomSignal::Integer)
            value = static_cast<std::uint32_t>(std::stoi(shown));
        else
            value = std::bit_cast<std::uint64_t>(std::stod(shown));
        events.emplace_back(time * unit, value);
    }
    return events;
}

// Writes a side in one of the ways in which it can be written: buses or bits, in any order, with aliases.
CMemoryFile FileOf(CDice &dice, SRandomSide &side, long long unit, long long resolution)
{
    CMemoryFile file(resolution, side.end * unit);
    std::vector<std::size_t> order(side.signals.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::rotate(order.begin(), order.begin() + dice.To(std::ssize(order) - 1), order.end());
    for (const std::size_t i : order) {
        SRandomSignal &signal = side.signals[i];
        const bool isFour = dice.OneIn(2);
        const std::string letters = isFour ? "01ZX" : "UX01ZWLH-";
        const std::string type = signal.kind == SRandomSignal::Integer ? Integers
                                 : signal.kind == SRandomSignal::Real  ? Reals
                                 : isFour                              ? FourStates
                                                                       : NineStates;
        std::vector<CElementEvents> elements;
        for (std::size_t element = 0; element < signal.elements.size(); ++element)
            elements.push_back(EventsOf(signal, element, letters, unit));
        if (isFour) {  // what the file has is what is compared
            for (auto &events : signal.elements) {
                for (auto &[time, shown] : events) {
                    if (signal.kind == SRandomSignal::Levels)
                        shown[0] = InFourStates(shown[0]);
                }
            }
        }
        const auto width = static_cast<int>(elements.size());
        if (width == 1) {
            file.Add(signal.name, type, elements);
        } else if (dice.OneIn(2)) {
            file.Add(signal.name, VectorType(width - 1, 0, type), elements);
        } else {
            for (int bit = 0; bit < width; ++bit)
                file.Add(signal.name + '[' + std::to_string(bit) + ']', type,
                         {elements[static_cast<std::size_t>(width - 1 - bit)]});
        }
        if (width == 1 && signal.kind != SRandomSignal::Levels)
            file.AddAlias(signal.name + "_alias", file.GetSignals().size() - 1);
    }
    return file;
}

CShown ShownAt(const std::map<long long, CShown> &events, long long time)
{
    const auto behind = events.upper_bound(time);
    return behind == events.begin() ? "" : std::prev(behind)->second;
}

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
