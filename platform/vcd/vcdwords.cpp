#include "platform/vcd/vcdwords.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <limits>

#include "platform/types/stateletters.h"
#include "platform/vcd/vcdtext.h"

namespace NTARN::NImport {

namespace {

constexpr SVcdCommand Commands[] = {
    {"$comment", EVcdCommand::Skip},
    {"$date", EVcdCommand::Skip},
    {"$version", EVcdCommand::Skip},
    {"$timescale", EVcdCommand::Timescale},
    {"$scope", EVcdCommand::Scope},
    {"$upscope", EVcdCommand::Upscope},
    {"$var", EVcdCommand::Variable},
    {"$enddefinitions", EVcdCommand::EndDefinitions},
    {"$dumpvars", EVcdCommand::Section},
    {"$dumpall", EVcdCommand::Section},
    {"$dumpon", EVcdCommand::Section},
    {"$dumpoff", EVcdCommand::Section},
    {"$dumpports", EVcdCommand::Section},
    {"$dumpportsall", EVcdCommand::Section},
    {"$dumpportson", EVcdCommand::Section},
    {"$dumpportsoff", EVcdCommand::Section},
    {"$end", EVcdCommand::End},
    {"$vcdclose", EVcdCommand::Close},
};

}  // namespace

constexpr CVcdLetters VcdLetters = PositionsOf(ValueStates, NoVcdLetter);
constexpr CVcdLetters VcdPortLetters = PositionsOf(PortStates, NoVcdLetter);

std::string_view TakeVcdWord(std::string_view &rest)
{
    const auto begin = std::ranges::find_if_not(rest, IsVcdBlank);
    const auto end = std::find_if(begin, rest.end(), IsVcdBlank);
    const std::string_view word(begin, end);
    rest = {end, rest.end()};
    return word;
}

std::string QuoteVcdWord(std::string_view word)
{
    constexpr std::size_t Longest = 40;
    std::string text = "\"";
    for (const char c : word.substr(0, Longest))
        text += std::isprint(static_cast<unsigned char>(c)) != 0 ? c : '?';
    return text.append(word.size() > Longest ? "..." : "").append("\"");
}

const SVcdCommand *FindVcdCommand(std::string_view name)
{
    const auto found = std::ranges::find(Commands, name, &SVcdCommand::name);
    return found != std::end(Commands) ? found : nullptr;
}

bool ReadVcdReal(std::string_view text, double &value)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const char *const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, value);
    if (error == std::errc::result_out_of_range) {
        const bool isSmall = text.find("e-") != text.npos || text.find("E-") != text.npos;
        value = isSmall ? 0 : std::numeric_limits<double>::infinity();
        value = text.front() == '-' ? -value : value;
        return end == textEnd;
    }
    return error == std::errc() && end == textEnd;
}

bool ReadVcdTime(std::string_view text, long long &time, bool &isRounded)
{
    const char *const textEnd = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), textEnd, time);
    if (error != std::errc() || time < 0 || text.front() == '-')
        return false;
    if (end == textEnd)
        return true;
    const std::string_view fraction(end + 1, textEnd);
    if (*end != '.' || fraction.find_first_not_of("0123456789") != fraction.npos)
        return false;
    isRounded = fraction.find_first_not_of('0') != fraction.npos;
    const bool isUp = !fraction.empty() && fraction.front() >= '5';
    if (isUp && time == std::numeric_limits<long long>::max())
        return false;
    time += isUp ? 1 : 0;
    return true;
}

}  // namespace NTARN::NImport
