#include "tools/examine/wordexamination.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <regex>
#include <string_view>
#include <utility>
#include <vector>

#include "core/kinds/keywords.h"
#include "tools/examine/nearname.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace tesk {

namespace {

using namespace std::string_literals;

const std::array<std::string, 10> UnitNames = {"fs", "ps", "ns", "us", "ms", "sec", "s", "min", "hr", "n"};
constexpr const char *UnitList = "fs, ps, ns, us, ms, sec, min or hr";

std::string Text(const SFormulaWord &word)
{
    return std::string(word.text);
}

// Letters of other alphabets stay as they were typed.
std::string InQuotes(const std::string &text)
{
    return '"' + OneLine(Shorten(text)) + '"';
}

// What was meant by a word that a regular expression knows.
struct SLookAlike {
    const char *pattern;
    const char *text;
    const char *advice;  // with the groups of the pattern
};

constexpr const char *VerilogLiteral = "is a literal of Verilog, and here a value of just these letters";
constexpr const char *CLiteral = "is a literal of C, and here a value of just these letters";

// In the order in which they are tried.
constexpr SLookAlike LookAlikes[] = {
    {"\\d*'s?h([0-9a-fxz_?]+)", VerilogLiteral, "write x\"$1\""},
    {"\\d*'s?b([01xz_?]+)", VerilogLiteral, "write b\"$1\""},
    {"\\d*'s?o([0-7xz_?]+)", VerilogLiteral, "write o\"$1\""},
    {"\\d*'s?d([0-9_]+)", VerilogLiteral, "write d\"$1\""},
    {"0x([0-9a-f]+)", CLiteral, "write x\"$1\""},
    {"0b([01]+)", CLiteral, "write b\"$1\""},
    {"(2|8|10|16)#([^#]+)#", "has a closing # too many, and is a value of just these letters", "write $1#$2"},
    {"([^@]+)@(-?[0-9].*)", "is one word and taken as a value", "write a blank between value and time: $1 @$2"},
    {".*;.*", "is taken as a value", "parts are separated by commas"},
    {"(-?[0-9.]+)(fs|ps|ns|us|ms|sec|min|hr)", "is a time, and stands where a value should",
     "write VALUE TIME, with commas between"},
    {"(fs|ps|ns|us|ms|sec|min|hr)", "is a unit, and stands where a value should",
     "write VALUE TIME, with commas between"},
    {"\\$(u?random|dist_\\w+)(\\(.*\\)?)?", "is a function of Verilog, and here a value of just these letters",
     "\"tesk random\" writes such a process as a formula"},
};

struct SLookAlikePattern {
    std::regex pattern;
    const SLookAlike *row;
};

const std::vector<SLookAlikePattern> &LookAlikePatterns()
{
    static const std::vector<SLookAlikePattern> s_patterns = [] {
        std::vector<SLookAlikePattern> patterns;
        for (const SLookAlike &row : LookAlikes)
            patterns.push_back({std::regex(row.pattern, std::regex::ECMAScript | std::regex::icase), &row});
        return patterns;
    }();
    return s_patterns;
}

// Most values are letters of bits: they need no closer look.
bool IsBits(std::string_view text)
{
    return text.find_first_not_of("01xXzZuUwWlLhH-") == std::string_view::npos;
}

std::optional<SFinding> FindLookAlike(const SFormulaWord &value)
{
    constexpr std::size_t Longest = 200;  // a longer word is none of these
    const bool isGroup = value.text.front() == '(' || value.text.front() == '"';
    if (value.text.size() > Longest || isGroup || IsBits(value.text))
        return std::nullopt;
    const std::string text = Text(value);
    // 'hA5 opens a quote that takes all that follows.
    const std::string word = text.starts_with('\'') ? text.substr(0, text.find(' ')) : text;
    for (const auto &[pattern, row] : LookAlikePatterns()) {
        std::smatch match;
        if (std::regex_match(word, match, pattern))
            return FindingAt(value, ESeverity::Error, Quote(word) + " " + row->text, match.format(row->advice));
    }
    return std::nullopt;
}

// Quotes and dashes as word processors set them, in UTF-8.
std::optional<SFinding> FindTypography(const SFormulaWord &value)
{
    struct SMark {
        std::string_view bytes;
        const char *advice;
    };
    constexpr SMark Marks[] = {{"\xE2\x80\x9C", "write \""}, {"\xE2\x80\x9D", "write \""}, {"\xE2\x80\x9E", "write \""},
                               {"\xE2\x80\x98", "write '"},  {"\xE2\x80\x99", "write '"},  {"\xE2\x80\x93", "write -"},
                               {"\xE2\x80\x94", "write -"},  {"\xE2\x88\x92", "write -"}};
    for (const SMark &mark : Marks) {
        if (value.text.find(mark.bytes) != std::string_view::npos)
            return FindingAt(value, ESeverity::Error,
                             InQuotes(Text(value)) + " has a " + InQuotes(std::string(mark.bytes)) +
                                 ", which is a letter like others, and is taken as a value",
                             mark.advice);
    }
    return std::nullopt;
}

// "-repeat", "/custm": the first letter says that no value was meant.
std::optional<SFinding> FindStrayKeyword(const SFormulaWord &value)
{
    static const std::array<std::string, 2> Switches = {"-r", "-cancel"};
    static const std::vector<std::string> Keywords = {std::string(CustomKeyword), std::string(TxtKeyword),
                                                      std::string(MatKeyword),    std::string(CounterKeyword),
                                                      std::string(RandomKeyword), std::string(BrelKeyword)};
    const std::string text = Text(value).substr(value.text.starts_with("--") ? 1 : 0);
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (text.size() < 2 || !isLetter(text[1]))
        return std::nullopt;
    if (text[0] == '-') {
        const std::string near = text.starts_with("-r") || text.starts_with("-R") ? "-r" : FindNearName(text, Switches);
        return FindingAt(value, ESeverity::Error, Quote(Text(value)) + " is no switch, and is taken as a value",
                         near.empty() ? "the switches are -r TIME and -cancel TIME"s
                                      : "did you mean " + near + " TIME?");
    }
    if (text[0] == '/' || text[0] == '\\') {
        const std::string word = text.substr(0, text.find('\\', 1));
        if (text[0] == '\\' && word.size() < text.size() && word.size() + 1 == text.size())
            return std::nullopt;  // an extended identifier
        const std::string near = FindNearName(word, Keywords);
        return FindingAt(value, ESeverity::Error, Quote(word) + " is no keyword, and is taken as a value",
                         near.empty() ? "the keywords are /custom, /txt, /mat, /brel, \\counter and \\random"s
                                      : "did you mean " + near + "?");
    }
    return std::nullopt;
}

// "1 0ns repeat 30ns": behind an event such a word is hardly a value.
std::optional<SFinding> FindBareSwitch(const SFormulaWord &value)
{
    struct SBareSwitch {
        const char *word, *advice;
    };
    constexpr SBareSwitch BareSwitches[] = {
        {"repeat", "to repeat write -r TIME"},   {"every", "to repeat write -r TIME"},
        {"period", "to repeat write -r TIME"},   {"r", "to repeat write -r TIME"},
        {"cancel", "to end write -cancel TIME"}, {"until", "to end write -cancel TIME"},
        {"stop", "to end write -cancel TIME"}};
    for (const SBareSwitch &bare : BareSwitches) {
        if (NameDistance(bare.word, value.text, 0) == 0)
            return FindingAt(value, ESeverity::Warning, Quote(Text(value)) + " is taken as a value", bare.advice);
    }
    return std::nullopt;
}

// A group that nothing closes takes the rest of the formula.
std::optional<SFinding> FindOpenGroup(const SFormulaWord &value)
{
    constexpr std::string_view Openers = "(\"'", Closers = ")\"'";
    const std::size_t kind = Openers.find(value.text.front());
    if (kind == std::string_view::npos || (value.text.size() > 1 && value.text.back() == Closers[kind]))
        return std::nullopt;
    return FindingAt(value, ESeverity::Error, Quote(Text(value)) + " is not closed, and takes all that follows",
                     "a "s + Closers[kind] + " is missing");
}

// The unit that was typed, as far as it can be told from the number.
std::string TypedUnit(std::string_view time)
{
    const std::size_t end = time.find_first_not_of("@-.0123456789");
    std::string_view unit = end == std::string_view::npos ? std::string_view() : time.substr(end);
    while (unit.starts_with(' '))
        unit.remove_prefix(1);
    return std::string(unit);
}

// Other words for units than those that are read.
struct SUnitWord {
    const char *word, *unit;
};

constexpr SUnitWord UnitWords[] = {{"fsec", "fs"},    {"psec", "ps"},     {"nsec", "ns"},    {"usec", "us"},
                                   {"msec", "ms"},    {"seconds", "sec"}, {"second", "sec"}, {"m", "min"},
                                   {"minute", "min"}, {"minutes", "min"}, {"h", "hr"},       {"hour", "hr"},
                                   {"hours", "hr"},   {"hrs", "hr"}};

std::string UnitAdvice(const std::string &unit)
{
    for (const SUnitWord &other : UnitWords) {
        if (NameDistance(other.word, unit, 0) == 0)
            return "write "s + other.unit;
    }
    if (unit.starts_with("\xC2\xB5") || unit.starts_with("\xCE\xBC"))  // micro sign, Greek mu
        return "write us";
    if (unit.find(';') != std::string::npos)
        return "parts are separated by commas";
    if (unit.starts_with('e') || unit.starts_with('E') || unit.starts_with('+'))
        return "exponents and signs are not read; write the number out, with one of "s + UnitList;
    const std::string near = unit == "n" ? "ns" : FindNearName(unit, UnitNames);
    return near.empty() || near == "n" ? "the units are "s + UnitList : "did you mean " + near + "?";
}

SFinding Unreadable(const SFormulaTime &time, const std::string &role)
{
    const std::string typed = Text(time.word);
    const std::string counted = role.empty() ? "the time counts as 0" : role + " counts as 0";
    const std::string unit = TypedUnit(typed);
    if (unit == typed && UnitIDFromName(unit.c_str()) >= 0)
        return FindingAt(time.word, ESeverity::Error, Quote(typed) + " is a unit without a number; " + counted,
                         "write VALUE TIME, with commas between");
    if (typed.starts_with('-') && typed.size() > 1 && (typed[1] < '0' || typed[1] > '9') && typed[1] != '.')
        return FindingAt(time.word, ESeverity::Error,
                         Quote(typed) + " stands where a time is expected, and is no time; " + counted,
                         "write a time behind the value: VALUE 0ns " + typed);
    return FindingAt(time.word, ESeverity::Error,
                     unit.empty() ? Quote(typed) + " is no time; " + counted
                                  : "unknown time unit " + InQuotes(unit) + " in " + InQuotes(typed) + "; " + counted,
                     UnitAdvice(unit));
}

// Femtoseconds; exact for what a formula can write sensibly.
double NearFemtoseconds(const SFormulaTime &time)
{
    return ChangeTime(time.number, static_cast<unsigned>(time.unit), 0);
}

std::optional<SFinding> FindLostPart(const SFormulaTime &time, long long resolution)
{
    const double wanted = NearFemtoseconds(time);
    const double counted = static_cast<double>(time.value.m_ticks) * static_cast<double>(resolution);
    const double lost = std::fabs(wanted - counted);
    const std::string tick = TickText(1, resolution);
    if (lost <= std::fabs(wanted) * 1e-12)
        return std::nullopt;
    if (lost >= static_cast<double>(resolution) * 1.5)
        return FindingAt(time.word, ESeverity::Error,
                         Quote(Text(time.word)) + " is too long for a count of " + tick + " ticks", "");
    if (time.value.m_ticks == 0)
        return FindingAt(time.word, ESeverity::Warning,
                         Quote(Text(time.word)) + " is below the resolution of " + tick + ", and counts as 0",
                         "give a finer --res");
    return FindingAt(time.word, ESeverity::Warning,
                     Quote(Text(time.word)) + " is no whole number of ticks of " + tick + ", and counts as " +
                         TickText(time.value.m_ticks, resolution),
                     "give a finer --res");
}

}  // namespace

SFinding FindingAt(const SFormulaWord &word, ESeverity severity, std::string text, std::string advice)
{
    return {severity, word.part, word.column, word.text.size(), std::move(text), std::move(advice)};
}

std::optional<SFinding> ExamineValueWord(const SFormulaItem &event)
{
    for (const auto &find : {FindLookAlike, FindTypography, FindStrayKeyword, FindOpenGroup}) {
        if (auto finding = find(event.word))
            return finding;
    }
    return event.isFirstOfPart ? std::nullopt : FindBareSwitch(event.word);
}

std::optional<SFinding> ExamineTimeWord(const SFormulaTime &time, const std::string &role, long long resolution)
{
    if (!time.isReadable || !time.hasNumber)
        return Unreadable(time, role);
    if (!time.hasUnit && time.number != 0)
        return FindingAt(time.word, ESeverity::Warning,
                         (role.empty() ? "" : role + " ") + Quote(Text(time.word)) +
                             " has no unit, and counts picoseconds",
                         "write a unit, such as " + Text(time.word) + "ns");
    return FindLostPart(time, resolution);
}

}  // namespace tesk
