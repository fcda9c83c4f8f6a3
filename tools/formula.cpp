#include "tools/formula.h"

#include <string_view>

#include "core/tokenizer.h"

namespace {

constexpr std::size_t LongestQuote = 60;

// A text for a message: on one line, and not longer than a reader needs to find it.
std::string Quote(std::string text)
{
    for (char &c : text)
        c = c >= ' ' && c < 0x7F ? c : '?';
    if (text.size() > LongestQuote)
        text = text.substr(0, LongestQuote) + "...";
    return '"' + text + '"';
}

bool IsReadable(const std::string &chunk, long long start)
{
    // With an event of its own a chunk of switches alone can be read.
    const std::string formula = "1 " + chunk;
    CStimulus alone(-1);
    if (alone.Parse(chunk.c_str(), start, nullptr, false, false) != 0)
        return true;
    CStimulus together(-1);
    return chunk.find('-') != std::string::npos && chunk.find_first_not_of(" \t\n") == chunk.find('-') &&
           together.Parse(formula.c_str(), start, nullptr, false, false) != 0;
}

// The first part between commas that cannot be read by itself, in words; empty if there is none.
std::string FindFault(const std::string &formula, long long start)
{
    std::string_view rest = formula;
    for (int number = 1; !rest.empty(); ++number) {
        const std::string chunk = TakeChunk(rest, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BetweenTokens);
        if (chunk.empty())
            return "part " + std::to_string(number) + " is empty";
        if (!IsReadable(chunk, start))
            return "part " + std::to_string(number) + ", " + Quote(chunk) + ", has no value or a time below 0";
    }
    return {};
}

}  // namespace

StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution)
{
    IStimulus *stimulus = IStimulus::Create(formula.c_str(), start, resolution, nullptr, false, false);
    if (stimulus != nullptr)
        return StimulusPtr(stimulus);
    const std::string fault = FindFault(formula, start);
    throw CRefusal("formula " + Quote(formula) + ": " + (fault.empty() ? "no event in it" : fault) +
                   "; write VALUE TIME parts with commas between, such as \"1 10ns, 0 20ns -r 30ns\"");
}

void AddTimeOptions(CLI::App &command, std::string &resolution, std::string &start)
{
    command.add_option("--res", resolution, "Simulator resolution (default 1ps)")->type_name("TIME");
    command.add_option("--start", start, "When the stimulator is applied (default 0)")->type_name("TIME");
}
