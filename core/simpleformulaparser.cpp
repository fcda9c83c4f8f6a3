#include "core/simpleformulaparser.h"

#include <algorithm>

#include "base/limits.h"
#include "core/plain/tokenviews.h"
#include "core/stimulus.h"
#include "platform/crt.h"
#include "settings/decconverter.h"
#include "settings/longnumber.h"
#include "settings/text/views.h"

using namespace tesk;

// What became of a chunk; the numbers are what `Run` gives.
enum class CSimpleFormulaParser::ESplit {
    Refused = 0,
    Whole = 1,
    Lossy = -1,  // a value was too long and lost its leading bits
};

struct CSimpleFormulaParser::SValue {
    std::string text;            // a character for each element, or an aggregate without its brackets
    bool quoted = false;         // written between double quotes
    bool characterMode = false;  // of an array of characters: aligned to the right, not padded
    bool lossy = false;
};

namespace {

constexpr std::size_t ConverterBits = 64;

// Characters of a value that is too long which may be dropped.
constexpr std::string_view ValueCharacters = "0123456789abcdefABCDEFzx-UXZWLH";

constexpr std::string_view White = " \t\n\v\f\r";

void Trim(std::string &text, std::string_view set)
{
    text.erase(text.find_last_not_of(set) + 1);
    text.erase(0, text.find_first_not_of(set));
}

bool IsSwitch(const std::string &value)
{
    return _stricmp(value.c_str(), "-r") == 0 || _stricmp(value.c_str(), "-cancel") == 0;
}

void ReplaceFirst(std::string &text, std::string_view found, char replacement)
{
    const std::size_t place = text.find(found);
    if (place != std::string::npos)
        text[place] = replacement;
}

// The formula in its canonical form, with values in bits; empty if it cannot be used. Switches are parts of their own.
std::string Normalize(const char *formula, int width, long long startTime)
{
    CStimulus stimulus(width);
    if (stimulus.Parse(formula, startTime, nullptr, true, false) == 0)
        return {};
    SimpleString::CStr canonical;
    stimulus.GetFormula(canonical);
    std::string text(canonical);
    ReplaceFirst(text, " -r", ',');
    ReplaceFirst(text, " -cancel", ',');
    Trim(text, White);
    return text;
}

void AppendEvent(std::string &element, std::string_view value, std::string_view time)
{
    if (value.empty())
        return;
    element += value;
    if (!time.empty()) {
        element += ' ';
        element += time;
    }
    element += ',';
}

std::string_view TakeWord(std::string_view &chunk)
{
    return TakeToken(chunk, SplitOpen, SplitClose, TokenBlanks);
}

bool IsCharacterType()
{
    return g_SignalTypeDescription.Find("characters") > 0;
}

// Switches stand behind a blank again; the cancel switch may keep its comma.
void FinishElement(std::string &element, bool isBitVector)
{
    if (!isBitVector)
        Trim(element, White);
    if (element.ends_with(','))
        element.pop_back();
    ReplaceFirst(element, ",-r", ' ');
}

}  // namespace

int CSimpleFormulaParser::Run(const char *formula, std::vector<SimpleString::CStr> &elements, int width,
                              bool isBitVector, long long, long long startTime)
{
    if (formula == nullptr || *formula == 0 || !tesk::IsElementCount(width))
        return 0;
    m_width = width;
    m_isBitVector = isBitVector;
    const std::string text = Normalize(formula, width, startTime);
    if (text.empty())
        return 0;

    std::vector<std::string> texts(Width());
    const bool isCharacterType = IsCharacterType();
    ESplit whole = ESplit::Whole;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string chunk = TakeChunk(rest, ",", SplitOpen, SplitClose, TokenBlanks, EJoin::BetweenTokens);
        const ESplit split = splitToken(chunk, isCharacterType, texts);
        if (split == ESplit::Refused || whole == ESplit::Whole)
            whole = split;
    }
    elements.clear();
    elements.reserve(texts.size());
    for (std::string &element : texts) {
        FinishElement(element, isBitVector);
        elements.push_back(tesk::ToCStr(element));
    }
    return static_cast<int>(whole);
}

CSimpleFormulaParser::ESplit CSimpleFormulaParser::splitToken(std::string_view chunk, bool isCharacterType,
                                                              std::vector<std::string> &elements) const
{
    std::string token(TakeWord(chunk));
    if (!m_isBitVector)
        Trim(token, ElementBlanks);
    SValue value;
    value.text = StripGroup(token, ValueOpen, ValueClose);
    if (value.text.empty())
        return ESplit::Refused;
    value.quoted = token.front() == '"';
    const bool isSwitch = IsSwitch(value.text);
    if (!isSwitch && !FitValue(isCharacterType, value))
        return ESplit::Refused;
    const std::string_view time = TakeWord(chunk);

    if (isSwitch) {
        for (std::string &element : elements)
            AppendEvent(element, value.text, time);
    } else if (m_isBitVector) {
        AppendCharacters(value, time, elements);
    } else {
        AppendSubValues(value.text, time, elements);
    }
    return value.lossy ? ESplit::Lossy : ESplit::Whole;
}

// Makes the value as long as there are elements. @return false if it is too long and may not be cut
bool CSimpleFormulaParser::FitValue(bool isCharacterType, SValue &value) const
{
    // Deliberate: where the long number does the work, what is no number is not cut.
    if (!m_isBitVector || Width() > ConverterBits)
        FitLongNumber(value);
    else if (!FitNumber(value))
        return false;
    if (value.text.size() > Width())
        return true;
    value.characterMode = isCharacterType;
    if (!isCharacterType)
        value.text.insert(0, Width() - value.text.size(), '0');
    return true;
}

void CSimpleFormulaParser::FitLongNumber(SValue &value) const
{
    const CLongNumber number(value.text.c_str(), 2);
    if (number.IsNumber())
        value.lossy = !number.ToBinaryText(value.text, m_width, true);
}

bool CSimpleFormulaParser::FitNumber(SValue &value) const
{
    TKc_decConverter number;
    if (number.Convert(value.text.c_str(), 2)) {
        SimpleString::CStr bits;
        value.lossy = !number.MakeBin(m_width, bits);
        value.text = bits;
    }
    if (value.text.size() <= Width())
        return true;
    const std::size_t surplus = value.text.size() - Width();
    if (value.text.find_first_not_of(ValueCharacters) < surplus)
        return false;
    value.text.erase(0, surplus);
    value.lossy = true;
    return true;
}

void CSimpleFormulaParser::AppendSubValues(std::string_view values, std::string_view time,
                                           std::vector<std::string> &elements)
{
    for (std::string &element : elements) {
        const std::string_view value = TakeToken(values, ValueOpen, ValueClose, ElementBlanks);
        if (value.empty())
            return;
        AppendEvent(element, value, time);
    }
}

void CSimpleFormulaParser::AppendCharacters(const SValue &value, std::string_view time,
                                            std::vector<std::string> &elements)
{
    const std::string quote = value.characterMode && value.quoted ? "'" : "";
    const std::size_t missing = value.characterMode ? elements.size() - value.text.size() : 0;
    for (std::size_t i = 0; i < missing; ++i)
        AppendEvent(elements[i], "nul", time);
    for (std::size_t i = missing; i < std::min(elements.size(), missing + value.text.size()); ++i)
        AppendEvent(elements[i], quote + value.text[i - missing] + quote, time);
}
