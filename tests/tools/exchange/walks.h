// What signals show over time, out of a bench and out of dumps, in one form to be compared.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/bench/bench.h"
#include "tools/bench/benchplayer.h"
#include "tools/runtool.h"
#include "tools/writers/valuekind.h"
#include "tools/writers/valuetext.h"

/// Changes by time, in femtoseconds. Values are letters of std_logic in capitals, integers and reals as such, "" for no value.
using CWalk = std::vector<std::pair<long long, std::string>>;
using CWalks = std::map<std::string, CWalk>;

/// Adds a change, unless the value is what it was.
inline void AddChange(CWalk &walk, long long time, const std::string &value)
{
    if (!walk.empty() && walk.back().first == time)
        walk.pop_back();
    if (walk.empty() || walk.back().second != value)
        walk.emplace_back(time, value);
}

inline std::string Upper(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

/// A row of letters, filled on the left as a dump's are.
inline std::string Filled(const std::string &bits, std::size_t width)
{
    const std::string letters = Upper(bits);
    const char filling = letters.empty() || letters[0] == '1' ? '0' : letters[0];
    return letters.size() < width ? std::string(width - letters.size(), filling) + letters : letters;
}

/// The same number has the same text.
inline std::string RealText(const std::string &number)
{
    std::ostringstream text;
    text.precision(17);
    text << std::strtod(number.c_str(), nullptr);
    return text.str() == "nan" ? "" : text.str();
}

/// What `tesk play` shows of the signals of a bench, the last part of their names in front.
/// @param until  picoseconds; that of the bench without one
inline CWalks PlayedWalks(const std::string &path, std::optional<long long> until = std::nullopt)
{
    std::vector<tesk::SBenchFault> faults;
    const tesk::SBench bench = tesk::ReadBench(path, faults);
    for (const tesk::SBenchFault &fault : faults)
        EXPECT_NE(fault.severity, tesk::ESeverity::Error) << tesk::FaultLine(bench, fault);
    if (until)
        until = *until * 1000 / bench.resolution;
    CWalks walks;
    const tesk::SBenchStretch stretch{0, until};
    tesk::CBenchPlayer player(bench, stretch, faults);
    EXPECT_TRUE(player.CanPlay());
    for (const STrace &trace : player.Play().traces) {
        if (trace.IsElement())
            continue;
        const tesk::SValueKind kind = tesk::KindOfValues(trace);
        CWalk &walk = walks[trace.signal.substr(trace.signal.rfind('.') + 1)];
        AddChange(walk, 0, "");
        for (const SChange &change : trace.changes) {
            std::string value = change.value.value_or("");
            if (kind.kind == tesk::EValueKind::Bits && change.value)
                value = Filled(value, kind.width);
            if (kind.kind == tesk::EValueKind::Real && change.value)
                value = RealText(value);
            AddChange(walk, change.ticks * bench.resolution, value);
        }
    }
    return walks;
}

/// The signals of one scope of a dump as a simulator writes it, by their names there without a range.
class CDumpReader {
public:
    CDumpReader(const std::string &path, const std::string &scope) : m_scope(scope), m_file(path)
    {
        for (std::string word; m_file >> word;)
            Take(word);
    }

    CWalks walks;

private:
    struct SVariable {
        std::string type;
        std::size_t width;
        std::vector<std::string> names;
    };

    void Take(const std::string &word)
    {
        if (word == "$scope")
            TakeScope();
        else if (word == "$upscope")
            m_scopes.pop_back();
        else if (word == "$var")
            TakeVariable();
        else if (word == "$timescale")
            TakeTimeScale();
        else if (word == "$date" || word == "$version" || word == "$comment")
            Skip();
        else if (word[0] == '#')
            m_now = std::stoll(word.substr(1)) * m_unit;
        else if (word[0] == 'b' || word[0] == 'r')
            Change(word.substr(1), Next());
        else if (word[0] != '$')
            Change(word.substr(0, 1), word.substr(1));
    }

    std::string Next()
    {
        std::string word;
        m_file >> word;
        return word;
    }

    void Skip()
    {
        while (m_file && Next() != "$end")
            continue;
    }

    void TakeScope()
    {
        Next();
        m_scopes.push_back(Next());
        Skip();
    }

    void TakeTimeScale()
    {
        std::string text;
        for (std::string word = Next(); m_file && word != "$end"; word = Next())
            text += word;
        const std::size_t unit = text.find_first_not_of("0123456789");
        m_unit = std::stoll(text);
        for (const char *name : {"fs", "ps", "ns", "us", "ms", "s"}) {
            if (text.substr(unit) == name)
                return;
            m_unit *= 1000;
        }
    }

    void TakeVariable()
    {
        const std::string type = Next();
        const auto width = static_cast<std::size_t>(std::stoul(Next()));
        const std::string code = Next();
        std::string name = Next();
        name = name.substr(name.starts_with('\\') ? 1 : 0);
        name = name.substr(0, name.find('['));
        name = name.substr(0, name.find('\\'));
        Skip();
        SVariable &variable = m_variables[code];
        variable.type = type;
        variable.width = width;
        if (!m_scopes.empty() && m_scopes.back() == m_scope)
            variable.names.push_back(name);
    }

    void Change(const std::string &value, const std::string &code)
    {
        const SVariable &variable = m_variables[code];
        std::string text = variable.type == "real" ? RealText(value) : Filled(value, variable.width);
        if (text == std::string(text.size(), 'Z'))
            text.clear();
        for (const std::string &name : variable.names)
            AddChange(walks[name], m_now, text);
    }

    std::string m_scope;
    std::ifstream m_file;
    std::vector<std::string> m_scopes;
    std::map<std::string, SVariable> m_variables;
    long long m_unit = 1;
    long long m_now = 0;
};

/// Values as a dump of four states has them: letters of std_logic by the one that a dump has, a row of Z as no value, integers as
/// bits.
/// @param isFourState  else letters stay
inline CWalks AsDumped(const CWalks &walks, const CWalks &dumped, bool isFourState)
{
    CWalks result;
    for (const auto &[name, walk] : walks) {
        const auto found = dumped.find(name);
        std::size_t width = 0;
        if (found != dumped.end()) {
            for (const auto &change : found->second)
                width = std::max(width, change.second.size());
        }
        for (auto [time, value] : walk) {
            const bool isInteger = width == 32 && value.size() < 32 && !value.empty();
            if (value == "true" || value == "false")
                value = value == "true" ? "1" : "0";
            if (isInteger) {
                const auto number = static_cast<std::uint32_t>(std::stoll(value));
                value.clear();
                for (int bit = 31; bit >= 0; --bit)
                    value += (number >> bit & 1) != 0 ? '1' : '0';
            }
            if (isFourState && tesk::IsBitText(value)) {
                for (char &c : value)
                    c = tesk::FourStateLetter(c);
                value = Upper(value);
            }
            if (!value.empty() && value == std::string(value.size(), 'Z'))
                value.clear();
            AddChange(result[name], time, value);
        }
    }
    return result;
}

inline std::string Shown(const CWalk &walk)
{
    std::string text;
    for (const auto &[time, value] : walk)
        text += std::to_string(time / 1000) + "ps " + (value.empty() ? "-" : value) + "\n";
    return text;
}

/// Expects the walks of all signals to be equal.
inline void ExpectEqualWalks(const CWalks &expected, const CWalks &actual, const std::string &context)
{
    EXPECT_EQ(expected.size(), actual.size()) << context;
    for (const auto &[name, walk] : expected) {
        const auto found = actual.find(name);
        ASSERT_NE(found, actual.end()) << name << " is missing\n" << context;
        EXPECT_EQ(Shown(walk), Shown(found->second)) << name << "\n" << context;
    }
}
