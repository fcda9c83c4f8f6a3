#include "tools/play/formula.h"

#include <cstdio>
#include <string_view>
#include <vector>

#include "core/formulaparser.h"
#include "core/plain/tokenviews.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "tools/loglines.h"
#include "tools/message.h"
#include "tools/play/fileformula.h"
#include "tools/play/kindtexts.h"
#include "tools/quote.h"

namespace {

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
        const std::string chunk =
            tesk::TakeChunk(rest, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BetweenTokens);
        if (chunk.empty())
            return "part " + std::to_string(number) + " is empty";
        if (!IsReadable(chunk, start))
            return "part " + std::to_string(number) + ", " + Quote(chunk) + ", has no value or a time below 0";
    }
    return {};
}

// The first part between commas that is refused by itself, as "part 2, "..."": switches alone are always refused.
std::string FindRefusedPart(const std::string &formula, long long count, bool isBitVector, long long start)
{
    std::string_view rest = formula;
    for (int number = 1; !rest.empty(); ++number) {
        const std::string part = tesk::TakeChunk(rest, ",", ParserOpen, ParserClose, TokenBlanks, EJoin::BetweenTokens);
        std::vector<SimpleString::CStr> unused;
        if (!part.starts_with('-') &&
            CFormulaParser().Run(part.c_str(), unused, static_cast<int>(count), isBitVector, start) == 0)
            return "part " + std::to_string(number) + ", " + Quote(part);
    }
    return Quote(formula);
}

std::string Advice(long long count, bool isBitVector)
{
    if (!isBitVector)
        return "write values such as \"(1, 0, 1) 5ns\"";
    return "write values of at most " + std::to_string(count) +
           " characters, or aggregates such as \"(1, 0, 1) 5ns\" where the elements are no bits";
}

// Why a formula cannot be used, and what would do.
// @param error  what the library logged
std::string Explain(const std::string &formula, long long start, const std::string &error)
{
    const tesk::SFormulaKind *kind = tesk::FindKindToCreate(tesk::CKeywordSearch(formula.c_str()));
    if (kind != nullptr)
        return kind->RefersToFile() ? ExplainFileFormula(formula, error) : TextOf(kind->kind).advice;
    const std::string fault = FindFault(formula, start);
    return (fault.empty() ? "no event in it" : fault) +
           "; write VALUE TIME parts with commas between, such as \"1 10ns, 0 20ns -r 30ns\"";
}

// Why a formula that refers to a file cannot be split.
std::string ExplainSplit(const std::string &formula, long long count, std::size_t found, const std::string &error)
{
    if (error.empty() && found != 0)
        return "the signal in the file does not have " + std::to_string(count) +
               " elements as the one to be played on; " + "\"tesk signals FILE\" shows its type";
    return ExplainFileFormula(formula, error);
}

}  // namespace

tesk::StimulusPtr CreateStimulus(const std::string &formula, long long start, long long resolution)
{
    const CLogLines log;
    IStimulus *stimulus = IStimulus::Create(formula.c_str(), start, resolution, nullptr, false, false);
    if (stimulus != nullptr)
        return tesk::StimulusPtr(stimulus);
    throw CRefusal("formula " + Quote(formula) + ": " + Explain(formula, start, log.LastError()));
}

std::vector<SimpleString::CStr> SplitFormula(const std::string &formula, long long count, bool isBitVector,
                                             long long start, long long resolution)
{
    CFormulaParser parser;
    parser.SetSimRes(resolution);
    std::vector<SimpleString::CStr> elements;
    const CLogLines log;
    const int result = parser.Run(formula.c_str(), elements, static_cast<int>(count), isBitVector, start);
    if (result == 0 && IsFileFormula(formula))
        throw CRefusal("formula " + Quote(formula) + ": " +
                       ExplainSplit(formula, count, elements.size(), log.LastError()));
    if (result == 0) {
        CreateStimulus(formula, start, resolution);  // says what is wrong with the formula as a whole
        throw CRefusal("formula: " + FindRefusedPart(formula, count, isBitVector, start) + ", cannot be split into " +
                       std::to_string(count) + " elements; " + Advice(count, isBitVector));
    }
    if (result == -1)
        TellWarning("a value is too long for " + std::to_string(count) + " elements and lost its leading bits");
    return elements;
}

void AddTimeOptions(CCommand &command, std::string &resolution, std::string &start)
{
    command.Option("--res", resolution, "TIME", "Simulator resolution (default 1ps)");
    command.Option("--start", start, "TIME", "When the stimulator is applied (default 0)");
}
