#include "tools/examine/fileexamination.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "core/fileformulaargs.h"
#include "formula/kinds/keywordsearch.h"
#include "tools/examine/formulaitems.h"
#include "tools/examine/recordexamination.h"
#include "tools/examine/tableexamination.h"
#include "tools/examine/wordexamination.h"

namespace tesk {

namespace {

// The arguments of a formula, and where they stand in it.
struct SArguments {
    CFileFormulaArgs args;
    std::size_t column = 0;
    bool isRead = false;
};

SArguments ReadArguments(const std::string &formula, const SFormulaKind &kind)
{
    SArguments arguments;
    const CKeywordSearch search(formula.c_str());
    const char *behind = search.Behind(kind.keyword);
    arguments.column = static_cast<std::size_t>(behind - formula.c_str());
    arguments.isRead = kind.parseArguments(ArgumentsOf(formula.c_str(), behind), arguments.args);
    return arguments;
}

// A text of the arguments where it stands in the formula; behind the file, whose name may hold anything.
SFormulaWord Place(const std::string &formula, const SArguments &arguments, const SimpleString::CStr &text)
{
    const std::size_t comma = std::min(formula.find(',', arguments.column), formula.size());
    const std::size_t at = formula.find(static_cast<const char *>(text), comma);
    if (at == std::string::npos)
        return {std::string_view(formula).substr(arguments.column), arguments.column, 1};
    return {std::string_view(formula).substr(at, static_cast<std::size_t>(text.GetLength())), at, 1};
}

struct STimeArgument {
    const char *role;
    SimpleString::CStr CFileFormulaArgs::*text;
};

constexpr STimeArgument TimeArguments[] = {{"START", &CFileFormulaArgs::m_start},
                                           {"END", &CFileFormulaArgs::m_end},
                                           {"OFFSET", &CFileFormulaArgs::m_offset},
                                           {"-r", &CFileFormulaArgs::m_repeat},
                                           {"-cancel", &CFileFormulaArgs::m_cancel}};

// Times that a file formula writes. One without a unit counts in a unit of the file or of the simulator.
void ExamineTimes(const SExamined &examined, const SArguments &arguments, CFindings &findings)
{
    for (const STimeArgument &argument : TimeArguments) {
        const SimpleString::CStr &text = arguments.args.*argument.text;
        if (text.IsEmpty())
            continue;
        SFormulaWord word = Place(examined.formula, arguments, text);
        if (word.text.starts_with('@'))
            word = {word.text.substr(1), word.column + 1, word.part};
        const SFormulaTime time = ReadFormulaTime(word, examined.resolution);
        if (time.isReadable && time.hasNumber && !time.hasUnit)
            continue;
        if (auto finding = ExamineTimeWord(time, argument.role, examined.resolution))
            findings.push_back(*std::move(finding));
    }
}

}  // namespace

void ExamineCustomFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    const SArguments arguments = ReadArguments(examined.formula, kind);
    if (!arguments.isRead)
        return;
    ExamineTimes(examined, arguments, findings);
    ExamineRecord(arguments.args, Place(examined.formula, arguments, arguments.args.m_signal), findings);
}

void ExamineTxtFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    const SArguments arguments = ReadArguments(examined.formula, kind);
    if (!arguments.isRead)
        return;
    ExamineTimes(examined, arguments, findings);
    const SFormulaWord place = Place(examined.formula, arguments, arguments.args.m_timeSource);
    for (const STableFault &fault : ExamineTable(arguments.args))
        findings.push_back(
            FindingAt(place, fault.isError ? ESeverity::Error : ESeverity::Warning, fault.text, fault.advice));
}

void ExamineMatFormula(const SExamined &examined, const SFormulaKind &kind, CFindings &findings)
{
    const SArguments arguments = ReadArguments(examined.formula, kind);
    if (arguments.isRead)
        ExamineTimes(examined, arguments, findings);
}

}  // namespace tesk
