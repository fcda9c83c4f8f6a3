#include "tools/exchange/hdltext.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <map>
#include <set>
#include <utility>

#include "base/ascii.h"
#include "base/stdlogic.h"
#include "tools/files/vcdname.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

// Waits and assigns one change after the other.
class CProcessWriter {
public:
    explicit CProcessWriter(IHdlProcess &process) : m_process(process) {}

    void GoTo(long long ticks)
    {
        if (ticks > m_now)
            m_process.Wait(ticks - m_now);
        m_now = ticks;
    }

    void Assign(const std::optional<std::string> &value)
    {
        if (!m_isKnown || value != m_value)
            m_process.Assign(value);
        m_isKnown = true;
        m_value = value;
    }

    void Changes(const std::vector<SChange> &changes, long long offset, long long end)
    {
        for (const SChange &change : changes) {
            if (change.ticks + offset >= end)
                return;
            GoTo(change.ticks + offset);
            Assign(change.value);
        }
    }

    // Where a round ends is not known here what the signal has.
    void Loop(const SLoop &loop)
    {
        GoTo(loop.begin);
        std::optional<long long> rounds;
        if (loop.end)
            rounds = (*loop.end - loop.begin) / loop.period;
        m_process.BeginLoop(rounds);
        m_isKnown = false;
        Changes(loop.changes, loop.begin, loop.begin + loop.period);
        GoTo(loop.begin + loop.period);
        m_process.EndLoop();
        if (!loop.end)
            return;
        m_now = loop.begin + *rounds * loop.period;
        Changes(loop.changes, m_now, *loop.end);
        GoTo(*loop.end);
        Assign(std::nullopt);
    }

    void Count(const SCount &count)
    {
        GoTo(count.begin);
        Assign(count.first);
        m_process.BeginLoop(std::nullopt);
        m_process.Wait(count.period);
        m_process.Step();
        m_process.EndLoop();
    }

private:
    IHdlProcess &m_process;
    long long m_now = 0;
    bool m_isKnown = false;  // what the signal has
    std::optional<std::string> m_value;
};

long long FirstTick(const SCourse &course)
{
    if (!course.changes.empty())
        return course.changes[0].ticks;
    if (course.loop)
        return course.loop->begin;
    return course.count ? course.count->begin : 1;
}

std::string Lower(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// Scopes that all names begin with.
std::size_t CommonScopes(const std::vector<SVcdName> &names)
{
    std::size_t common = names.empty() ? 0 : names[0].scopes.size();
    for (const SVcdName &name : names) {
        const auto differing = std::ranges::mismatch(name.scopes, names[0].scopes).in1;
        common = std::min(common, static_cast<std::size_t>(differing - name.scopes.begin()));
    }
    return common;
}

std::string LongName(const SVcdName &name, std::size_t from)
{
    std::string text;
    for (std::size_t i = from; i < name.scopes.size(); ++i)
        text += name.scopes[i] + "_";
    return text + name.variable;
}

// The brackets of an element are no letters of a name, unless it has others that are none.
std::string WithoutBrackets(std::string name)
{
    if (name.starts_with('\\'))
        return name;
    std::erase(name, ']');
    std::ranges::replace(name, '[', '_');
    return name;
}

}  // namespace

void WriteProcess(const SCourse &course, IHdlProcess &process)
{
    CProcessWriter writer(process);
    if (FirstTick(course) > 0)
        writer.Assign(std::nullopt);
    writer.Changes(course.changes, 0, LastTick(course) + 1);
    if (course.count)
        writer.Count(*course.count);
    else if (course.loop)
        writer.Loop(*course.loop);
}

std::vector<SChange> AllChanges(const SCourse &course)
{
    std::vector<SChange> changes = course.changes;
    if (FirstTick(course) > 0)
        changes.insert(changes.begin(), {0, std::nullopt});
    if (course.loop) {
        for (const SChange &change : course.loop->changes)
            changes.push_back({change.ticks + course.loop->begin, change.value});
        if (course.loop->end)
            changes.push_back({*course.loop->end, std::nullopt});
    }
    if (course.count)
        changes.push_back({course.count->begin, course.count->first});
    return changes;
}

void TellLostLetters(const SCourse &course, long long resolution, std::string_view instead, const std::string &undriven,
                     CLosses &losses)
{
    for (const SChange &change : AllChanges(course)) {
        const std::string time = TickText(change.ticks, resolution);
        if (!change.value && !undriven.empty())
            losses.Weaken(course.name, "no value", time, undriven);
        if (!change.value || course.shape != EShape::Bits)
            continue;
        for (const char c : FullBits(course, *change.value)) {
            const std::size_t letter = StdLogicLetters.find(c);
            if (letter != StdLogicLetters.npos && instead[letter] != c)
                losses.Weaken(course.name, std::string(1, c), time, std::string(1, instead[letter]));
        }
    }
}

std::vector<std::string> PortNames(const SCourses &courses, bool isCaseSensitive)
{
    const auto folded = [=](const std::string &name) { return isCaseSensitive ? name : Lower(name); };
    std::vector<SVcdName> names;
    std::map<std::string, int> shortNames;
    for (const SCourse &course : courses.signals) {
        names.push_back(SplitVcdName(course.name));
        names.back().variable = WithoutBrackets(names.back().variable);
        ++shortNames[folded(names.back().variable)];
    }
    const std::size_t common = CommonScopes(names);
    std::set<std::string> taken;
    std::vector<std::string> ports;
    for (const SVcdName &name : names) {
        std::string port = name.variable;
        if (shortNames[folded(port)] > 1)
            port = LongName(name, common);
        const std::string wanted = port;
        for (int i = 2;
             !taken.insert(folded(port)).second || (port != name.variable && shortNames.contains(folded(port))); ++i)
            port = wanted + "_" + std::to_string(i);
        ports.push_back(port);
    }
    return ports;
}

std::string FreeName(std::string name, const std::vector<std::string> &ports)
{
    const auto isTaken = [&](const std::string &port) { return Lower(port) == name; };
    while (std::ranges::any_of(ports, isTaken))
        name += "_";
    return name;
}

std::string RealLiteral(double number)
{
    std::array<char, 40> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number).ptr;
    std::string literal(text.data(), end);
    if (literal.find('.') == literal.npos)
        literal.insert(std::min(literal.find('e'), literal.size()), ".0");
    return literal;
}

bool IsBasicWord(std::string_view text)
{
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; };
    return !text.empty() && isLetter(text[0]) &&
           std::ranges::all_of(text, [&](char c) { return isLetter(c) || IsDigit(c); });
}

}  // namespace tesk
