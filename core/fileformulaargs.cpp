#include "core/fileformulaargs.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "base/ascii.h"
#include "platform/log.h"
#include "settings/text/views.h"

namespace {

using SimpleString::CStr;
using tesk::IsDigit;
using tesk::ToCStr;

// The keywords whose arguments know a switch.
constexpr unsigned Custom = 1;
constexpr unsigned Txt = 2;
constexpr unsigned Mat = 4;
constexpr unsigned Tables = Txt | Mat;
constexpr unsigned All = Custom | Tables;

enum class EArgument {
    None,
    Time,          // digits, letters
    AbsoluteTime,  // the same behind an optional "@"
    Interval,      // digits, letters, neither missing
    Word           // bytes up to the next blank
};

struct SSwitch {
    std::string_view name;
    unsigned keywords;
    EArgument argument;
    CStr CFileFormulaArgs::*text;  // where the argument goes
    unsigned flag;                 // set in the record's flags
};

// Matched by prefix and in this order: "-rel" and "-row" come before "-r".
constexpr SSwitch Switches[] = {
    {"-cancel", All, EArgument::AbsoluteTime, &CFileFormulaArgs::m_cancel, 0},
    {"-row", Tables, EArgument::None, nullptr, CFileFormulaArgs::FLAG_ROW},
    {"-rel", Tables, EArgument::None, nullptr, CFileFormulaArgs::FLAG_REL},
    {"-r", All, EArgument::Time, &CFileFormulaArgs::m_repeat, 0},
    {"-col", Tables, EArgument::None, nullptr, 0},
    {"-abs", Tables, EArgument::None, nullptr, 0},
    {"-fixed_step", Tables, EArgument::None, nullptr, 0},
    {"-interval", Tables, EArgument::Interval, &CFileFormulaArgs::m_interval, 0},
    {"-time_points", Tables, EArgument::Word, &CFileFormulaArgs::m_timeSource, CFileFormulaArgs::FLAG_TIME_POINTS},
    {"-time_var", Mat, EArgument::Word, &CFileFormulaArgs::m_timeSource, 0},
    {"-point", Mat, EArgument::Word, &CFileFormulaArgs::m_point, 0},
};

bool IsDigitOrPoint(char c)
{
    return IsDigit(c) || c == '.';
}

bool IsLetter(char c)
{
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

// The bytes of a signal name in front of `text`. It ends before a blank, a quote or a comma that stands outside
// brackets and backslashes, and before a bracket that does not fit.
class CSignalScan {
public:
    std::size_t Run(std::string_view text)
    {
        std::size_t length = 0;
        while (length < text.size() && Keep(text[length]))
            ++length;
        return length;
    }
    // Whether a backslash or bracket still waits for its partner.
    bool IsOpen() const { return m_escaped || m_inBrackets; }

private:
    bool Keep(char c)
    {
        switch (c) {
        case ' ':
        case '"':
        case ',': return IsOpen();
        case '(': return m_escaped || SetInBrackets(true);
        case ')': return m_escaped || SetInBrackets(false);
        case '\\': m_escaped = !m_escaped; return true;
        default: return true;
        }
    }

    bool SetInBrackets(bool inBrackets)
    {
        const bool fits = m_inBrackets != inBrackets;
        m_inBrackets = inBrackets;
        return fits;
    }

    bool m_escaped = false;
    bool m_inBrackets = false;
};

// Reads the text from front to end, once.
class CArgumentReader {
public:
    CArgumentReader(std::string_view text, unsigned keyword, CFileFormulaArgs &args)
        : m_rest(text), m_keyword(keyword), m_args(args)
    {}

    bool Run();

private:
    void TakeFile();
    bool TakeSignal();
    bool TakeStretchTime(bool (*isNumberPart)(char), CStr &time);
    bool TakeOffset();
    bool TakeSwitches();
    bool TakeSwitch();
    bool TakeArgument(const SSwitch &taken);
    bool TakeTime(bool mayBeAbsolute, CStr &time);
    bool TakeInterval(CStr &interval);
    void TakeWord(CStr &word);

    bool IsAtEnd() const { return m_rest.empty(); }
    bool IsAt(char c) const { return !IsAtEnd() && m_rest.front() == c; }
    void Skip(std::string_view bytes)
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(bytes), m_rest.size()));
    }
    void SkipBlanks() { Skip(" "); }
    void SkipBlanksAndQuotes() { Skip(" \""); }
    std::string_view TakeUpTo(char end);
    void Collect(bool (*isPart)(char));
    void CollectAt();
    void Deliver(CStr &text);

    std::string_view m_rest;
    const unsigned m_keyword;
    CFileFormulaArgs &m_args;
    // The text being collected. Deliberate: an "@" that no offset follows waits here and joins the next text collected,
    // be it that of a switch.
    std::string m_collected;
};

bool CArgumentReader::Run()
{
    TakeFile();
    if (IsAtEnd())
        return m_keyword != Custom;
    m_rest.remove_prefix(1);  // the comma
    SkipBlanks();
    if (IsAtEnd() || !TakeSignal())
        return false;
    SkipBlanksAndQuotes();
    if (IsAt(',') && !TakeStretchTime(IsDigitOrPoint, m_args.m_start))
        return false;
    // Deliberate: unlike the start, the end takes no '.'.
    if (IsAt(',') && !TakeStretchTime(IsDigit, m_args.m_end))
        return false;
    return TakeOffset() && TakeSwitches();
}

void CArgumentReader::TakeFile()
{
    SkipBlanks();
    m_args.m_file = ToCStr(TakeUpTo(','));
    m_args.m_file.TrimLeft();
    m_args.m_file.TrimRight();
}

bool CArgumentReader::TakeSignal()
{
    CSignalScan scan;
    const std::size_t length = scan.Run(m_rest);
    m_args.m_signal = ToCStr(m_rest.substr(0, length));
    m_rest.remove_prefix(length);
    return !scan.IsOpen();
}

// The start or the end of the stretch, from its comma on.
bool CArgumentReader::TakeStretchTime(bool (*isNumberPart)(char), CStr &time)
{
    m_rest.remove_prefix(1);
    SkipBlanks();
    if (IsAtEnd())
        return false;
    Collect(isNumberPart);
    SkipBlanks();
    Collect(IsLetter);
    SkipBlanksAndQuotes();
    Deliver(time);
    return true;
}

bool CArgumentReader::TakeOffset()
{
    CollectAt();
    if (IsAtEnd() || !IsDigit(m_rest.front()))
        return true;
    Collect(IsDigit);
    if (IsAtEnd())
        return false;
    SkipBlanks();
    Collect(IsLetter);
    Deliver(m_args.m_offset);
    SkipBlanks();
    return true;
}

bool CArgumentReader::TakeSwitches()
{
    while (IsAt('-')) {
        if (!TakeSwitch())
            return false;
        SkipBlanks();
    }
    return IsAtEnd();
}

bool CArgumentReader::TakeSwitch()
{
    for (const SSwitch &known : Switches) {
        if ((known.keywords & m_keyword) == 0 || !m_rest.starts_with(known.name))
            continue;
        m_rest.remove_prefix(known.name.size());
        if (!TakeArgument(known))
            return false;
        m_args.m_flags |= known.flag;
        return true;
    }
    return false;
}

bool CArgumentReader::TakeArgument(const SSwitch &taken)
{
    if (taken.argument == EArgument::None)
        return true;
    SkipBlanks();
    CStr &text = m_args.*taken.text;
    switch (taken.argument) {
    case EArgument::Word: TakeWord(text); return true;
    case EArgument::Interval: return TakeInterval(text);
    default: return TakeTime(taken.argument == EArgument::AbsoluteTime, text);
    }
}

bool CArgumentReader::TakeTime(bool mayBeAbsolute, CStr &time)
{
    if (IsAtEnd())
        return false;
    if (mayBeAbsolute)
        CollectAt();
    Collect(IsDigit);
    if (IsAtEnd())
        return false;
    Collect(IsLetter);
    Deliver(time);
    return true;
}

bool CArgumentReader::TakeInterval(CStr &interval)
{
    if (IsAtEnd())
        return false;
    Collect(IsDigit);
    Collect(IsLetter);
    if (m_collected.empty() || !IsDigit(m_collected.front()) || IsDigit(m_collected.back())) {
        Q71log_PrintFormattedString(1, "KERNEL", "", "You have to specify digit and time unit in -interval switch.");
        return false;
    }
    Deliver(interval);
    return true;
}

// Taken as it stands: nothing that was collected joins it.
void CArgumentReader::TakeWord(CStr &word)
{
    word = ToCStr(TakeUpTo(' '));
}

std::string_view CArgumentReader::TakeUpTo(char end)
{
    const std::string_view taken = m_rest.substr(0, m_rest.find(end));
    m_rest.remove_prefix(taken.size());
    return taken;
}

void CArgumentReader::Collect(bool (*isPart)(char))
{
    const auto end = std::ranges::find_if_not(m_rest, isPart);
    m_collected.append(m_rest.begin(), end);
    m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.begin()));
}

void CArgumentReader::CollectAt()
{
    if (!IsAt('@'))
        return;
    m_collected += '@';
    m_rest.remove_prefix(1);
}

void CArgumentReader::Deliver(CStr &text)
{
    text = ToCStr(m_collected);
    m_collected.clear();
}

bool ParseArgs(const char *text, unsigned keyword, CFileFormulaArgs &args)
{
    if (text == nullptr)
        return false;
    const std::string kept = text;  // the text may be one of the fields
    for (CStr CFileFormulaArgs::*field :
         {&CFileFormulaArgs::m_file, &CFileFormulaArgs::m_signal, &CFileFormulaArgs::m_start, &CFileFormulaArgs::m_end,
          &CFileFormulaArgs::m_repeat, &CFileFormulaArgs::m_cancel})
        (args.*field).Empty();
    return CArgumentReader(kept, keyword, args).Run();
}

}  // namespace

bool ParseCustomArgs(const char *text, CFileFormulaArgs &args)
{
    return ParseArgs(text, Custom, args);
}

bool ParseTxtArgs(const char *text, CFileFormulaArgs &args)
{
    return ParseArgs(text, Txt, args);
}

bool ParseMatArgs(const char *text, CFileFormulaArgs &args)
{
    return ParseArgs(text, Mat, args);
}
