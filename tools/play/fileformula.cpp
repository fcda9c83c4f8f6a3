#include "tools/play/fileformula.h"

#include <exception>
#include <memory>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "core/fileformulaargs.h"
#include "core/stimulus.h"
#include "formula/kinds/keywords.h"
#include "tools/files/wavefile.h"
#include "tools/loglines.h"
#include "tools/quote.h"
#include "tools/timetext.h"

namespace {

// What there is to say of each kind of file formula.
struct SFileKind {
    std::string_view keyword;
    bool (*parse)(const char *text, CFileFormulaArgs &args);
    const char *extension;  // added to a file name that does not exist as it stands
    const char *form;       // how it is written
    const char *advice;     // where the library did not say what is wrong
};

constexpr SFileKind Kinds[] = {
    {CustomKeyword, ParseCustomArgs, "", "/custom FILE,SIGNAL[,START[,END]] [[@]OFFSET] [-r TIME] [-cancel [@]TIME]",
     "the file is no waveform file, has no such signal, or ends before the stretch does; \"tesk signals FILE\" lists "
     "its "
     "signals and times"},
    {TxtKeyword, ParseTxtArgs, ".txt",
     "/txt FILE,COLUMN[,START[,END]] [-row] [-rel] [-time_points COLUMN] [-interval TIME]",
     "no column of it can be played on a signal of this type, or a time cannot be read"},
    {MatKeyword, ParseMatArgs, ".mat",
     "/mat FILE,VARIABLE [-row] [-rel] [-time_points LANE | -time_var VARIABLE] [-interval TIME] [-point BITS]",
     "the file is no MAT-file, or the variable is no matrix of doubles with a lane for this signal"},
};

const SFileKind *FindKind(const CKeywordSearch &search)
{
    for (const SFileKind &kind : Kinds) {
        if (search.Has(kind.keyword))
            return &kind;
    }
    return nullptr;
}

std::string WithoutClosingQuote(const std::string &formula, const char *rest)
{
    std::string text = rest;
    if (formula.starts_with('"') && text.ends_with('"'))
        text.pop_back();
    return text;
}

// Why the file cannot be read; empty if it can. It is not opened: that of a pipe would wait for its writer.
std::string FindFileFault(const std::string &file, const std::string &extension)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
        return "cannot open " + file + ": it is a directory";
    if (access(file.c_str(), R_OK) == 0)
        return {};
    const std::string why = std::strerror(errno);
    return access((file + extension).c_str(), R_OK) == 0 ? "" : "cannot open " + file + ": " + why;
}

// Opens a file as what its name says. What is wrong with it is told when the stimulus is made.
std::unique_ptr<IWaveFile> OpenQuietly(const CFileFormulaArgs &args)
{
    const std::string path(args.m_file);
    try {
        const CLogLines log(CLogLines::EWarnings::Dropped);
        switch (KindOfName(path)) {
        case EWaveKind::Vcd: return OpenVcdFile(path);
        case EWaveKind::Fst: return OpenFstFile(path);
        case EWaveKind::Stream: return OpenStreamFile(path);
        }
    } catch (const std::exception &) {
    }
    return nullptr;
}

// Looks a whole signal up as the stimuli do: in any letter case, and brackets are square, except in an event stream.
const SFileSignal *FindSignal(IWaveFile &file, const CFileFormulaArgs &args)
{
    std::string name(args.m_signal);
    if (KindOfName(std::string(args.m_file)) != EWaveKind::Stream) {
        std::ranges::replace(name, '(', '[');
        std::ranges::replace(name, ')', ']');
    }
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    const auto isNamed = [&](const SFileSignal &signal) {
        return std::ranges::equal(signal.path, name, {}, lower, lower);
    };
    const auto found = std::ranges::find_if(file.GetSignals(), isNamed);
    return found != file.GetSignals().end() ? &*found : nullptr;
}

// Why nothing of a waveform file can be replayed where the library does not say it.
std::string ExplainReplay(const CFileFormulaArgs &args)
{
    const auto file = OpenQuietly(args);
    if (file == nullptr)
        return std::string(args.m_file) + ": cannot be read as what its name says it is";
    const std::string list = "\"tesk signals " + std::string(args.m_file) + "\" lists its signals and their times";
    if (args.m_start.IsEmpty() && args.m_end.IsEmpty())
        return "the file has no signal " + Quote(std::string(args.m_signal)) + ", or no time passes in it; " + list;
    return "the file has no signal " + Quote(std::string(args.m_signal)) + ", or START or END is not below " +
           std::to_string(file->GetEndTime()) + ", its last time as a number of " + TimeText(file->GetResolution()) +
           ", while they count ticks of --res; leave END out to play to the end; " + list;
}

}  // namespace

bool IsFileFormula(const std::string &formula)
{
    return CKeywordSearch(formula.c_str()).HasFileKeyword();
}

bool NeedsType(const std::string &formula)
{
    return IsFileFormula(formula) && !CKeywordSearch(formula.c_str()).Has(CustomKeyword);
}

std::string FindReplayedType(const std::string &formula)
{
    const CKeywordSearch search(formula.c_str());
    CFileFormulaArgs args;
    if (!search.Has(CustomKeyword) ||
        !ParseCustomArgs(WithoutClosingQuote(formula, search.Behind(CustomKeyword)).c_str(), args))
        return {};
    const auto file = OpenQuietly(args);
    const SFileSignal *signal = file != nullptr ? FindSignal(*file, args) : nullptr;
    return signal != nullptr ? signal->type.GetTypeInfoString() : "";
}

std::string ExplainFileFormula(const std::string &formula, const std::string &error)
{
    const CKeywordSearch search(formula.c_str());
    const SFileKind *kind = FindKind(search);
    if (kind == nullptr)
        return {};
    CFileFormulaArgs args;
    const std::string rest = WithoutClosingQuote(formula, search.Behind(kind->keyword));
    if (!kind->parse(rest.c_str(), args))
        return "what stands behind " + std::string(kind->keyword) + " cannot be read" +
               (error.empty() ? "" : " (" + error + ")") + "; write " + kind->form;
    const std::string file(args.m_file);
    const std::string fault = FindFileFault(file, kind->extension);
    if (!fault.empty())
        return fault;
    if (!error.empty())
        return error.find(file) != std::string::npos ? error : file + ": " + error;
    return kind->keyword == CustomKeyword ? ExplainReplay(args) : kind->advice;
}
