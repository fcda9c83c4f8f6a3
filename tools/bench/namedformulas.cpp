#include "tools/bench/namedformulas.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "base/ascii.h"
#include "tools/bench/signalexamination.h"
#include "tools/commandline.h"
#include "tools/play/typeargument.h"
#include "tools/quote.h"

namespace tesk {

namespace {

constexpr std::string_view Digits = "0123456789";

bool IsFirstLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// The end of the identifier, a plain or an extended one, that begins at `at`; npos if none does.
std::size_t EndOfIdentifier(std::string_view text, std::size_t at)
{
    if (at >= text.size())
        return text.npos;
    if (text[at] == '\\') {
        const std::size_t end = text.find('\\', at + 1);
        return end == text.npos || end == at + 1 ? text.npos : end + 1;
    }
    if (!IsFirstLetter(text[at]))
        return text.npos;
    const auto isPart = [](char c) { return IsFirstLetter(c) || IsDigit(c) || c == '$'; };
    while (at < text.size() && isPart(text[at]))
        ++at;
    return at;
}

// The end of indices such as "[3](0)"; `at` if there are none.
std::size_t EndOfIndices(std::string_view text, std::size_t at)
{
    while (at < text.size() && (text[at] == '[' || text[at] == '(')) {
        const char closer = text[at] == '[' ? ']' : ')';
        const std::size_t end = std::min(text.find_first_not_of(Digits, at + 1), text.size());
        if (end == at + 1 || end == text.size() || text[end] != closer)
            return at;
        at = end + 1;
    }
    return at;
}

// The end of a path of identifiers; npos if the text begins with none.
std::size_t EndOfName(std::string_view text)
{
    std::size_t at = EndOfIdentifier(text, 0);
    while (at != text.npos) {
        at = EndOfIndices(text, at);
        if (at == text.size() || text[at] != '.')
            return at;
        at = EndOfIdentifier(text, at + 1);
    }
    return at;
}

// The "=" behind a type; npos if there is none. It stands outside brackets.
std::size_t FindEquals(std::string_view text, std::size_t at)
{
    int depth = 0;
    for (; at < text.size(); ++at) {
        if (text[at] == '(')
            ++depth;
        else if (text[at] == ')')
            --depth;
        else if (text[at] == '=' && depth == 0)
            return at;
    }
    return text.npos;
}

struct SNamedFormula {
    std::string name;
    std::optional<std::string> type;
    std::string formula;
    int column;  // of the formula, from 1
};

std::optional<SNamedFormula> TakeApart(const std::string &argument)
{
    const std::size_t nameEnd = EndOfName(argument);
    if (nameEnd == std::string::npos || nameEnd == argument.size())
        return std::nullopt;
    const bool hasType = argument[nameEnd] == ':';
    const std::size_t equals = hasType ? FindEquals(argument, nameEnd + 1) : nameEnd;
    if (equals == std::string::npos || argument[equals] != '=')
        return std::nullopt;
    SNamedFormula named{argument.substr(0, nameEnd), {}, argument.substr(equals + 1), static_cast<int>(equals) + 2};
    if (hasType)
        named.type = argument.substr(nameEnd + 1, equals - nameEnd - 1);
    return named;
}

// Reads what stands between the name and the formula.
void ReadType(const SNamedFormula &named, SBenchSignal &signal, std::vector<SBenchFault> &faults)
{
    if (!named.type)
        return;
    signal.typeName = *named.type;
    try {
        signal.description = ReadTypeArgument(signal.typeName);
    } catch (const CRefusal &fault) {
        faults.push_back({ESeverity::Error, signal.place, "signal " + Quote(signal.name) + ": " + fault.what()});
    }
}

}  // namespace

bool IsNamedFormula(const std::string &argument)
{
    return TakeApart(argument).has_value();
}

SBench BenchOfArguments(const std::vector<std::string> &arguments, long long resolution, long long start,
                        std::vector<SBenchFault> &faults)
{
    SBench bench;
    bench.resolution = resolution;
    std::set<std::string> names;
    for (int number = 1; const std::string &argument : arguments) {
        const SBenchPlace place{number++, 1};
        const auto named = TakeApart(argument);
        if (!named)
            throw CWrongUsage(Quote(argument) +
                              ": of several signals each has a name; write NAME=FORMULA or NAME:TYPE=FORMULA, and a "
                              "formula that has blanks in quotes, as in tesk play \"1 10ns, 0 20ns\"");
        SBenchSignal signal;
        signal.name = named->name;
        signal.formula = named->formula;
        signal.start = start;
        signal.place = {place.line, named->column};
        if (!names.insert(signal.name).second)
            faults.push_back({ESeverity::Error, place, "the signal " + Quote(signal.name) + " is given twice"});
        ReadType(*named, signal, faults);
        ExamineBenchSignal(bench, signal, faults);
        bench.signals.push_back(std::move(signal));
    }
    std::ranges::stable_sort(faults, {}, &SBenchFault::place);
    return bench;
}

}  // namespace tesk
