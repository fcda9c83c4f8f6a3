#include "tools/play/fileformula.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>

#include "core/fileformulaargs.h"
#include "core/stimulus.h"
#include "formula/kinds/keywordsearch.h"
#include "formula/kinds/kinds.h"
#include "platform/kestrin.h"
#include "signal/signal.h"
#include "signal/tree/component.h"
#include "tools/files/wavefile.h"
#include "tools/loglines.h"
#include "tools/message.h"
#include "tools/play/kindtexts.h"
#include "tools/play/matadvice.h"
#include "tools/quote.h"
#include "tools/timetext.h"

using tesk::IWaveformFile;
using tesk::SFileSignal;

namespace {

// The arguments of a formula of a kind that refers to a file. @return false if they cannot be read
bool ParseArguments(const std::string &formula, const tesk::SFormulaKind &kind, CFileFormulaArgs &args)
{
    const tesk::CKeywordSearch search(formula.c_str());
    return kind.parseArguments(tesk::ArgumentsOf(formula.c_str(), search.Behind(kind.keyword)), args);
}

// The kind of a formula that refers to a file; null for any other formula.
const tesk::SFormulaKind *FindFileKind(const std::string &formula)
{
    const tesk::SFormulaKind *kind = tesk::FindKindToCreate(tesk::CKeywordSearch(formula.c_str()));
    return kind != nullptr && kind->RefersToFile() ? kind : nullptr;
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

// The name of the signal as the stimuli look it up: brackets are square, except in an event stream.
std::string SpelledName(const CFileFormulaArgs &args)
{
    SimpleString::CStr rewritten = args.m_signal;
    if (tesk::FileKind(tesk::KindOfName(std::string(args.m_file))).rules.renamesBrackets)
        tesk::RenameBrackets(rewritten);
    return std::string(rewritten);
}

// Looks a whole signal up, in any letter case.
const SFileSignal *FindSignal(IWaveformFile &file, const CFileFormulaArgs &args)
{
    const std::string name = SpelledName(args);
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    const auto isNamed = [&](const SFileSignal &signal) {
        return std::ranges::equal(signal.path, name, {}, lower, lower);
    };
    const auto found = std::ranges::find_if(file.GetSignals(), isNamed);
    return found != file.GetSignals().end() ? &*found : nullptr;
}

// The type of a record, or of an array of other things than scalars, of which the file lists the parts; empty if it has none
// of this name.
std::string FindPartType(IWaveformFile &file, const CFileFormulaArgs &args)
{
    const std::optional<int> handle = file.FindSignal(SpelledName(args).c_str());
    ISignal *made = nullptr;
    if (!handle || file.MakeSignal(*handle, false, &made) < 0)
        return {};
    const tesk::TReference<ISignal> signal(made);
    const Kestrin::KTypeInfo *type = signal->GetTypeInfo();
    return type != nullptr ? type->GetTypeInfoString() : "";
}

// Why nothing of a waveform file can be replayed where the library does not say it.
std::string ExplainReplay(const CFileFormulaArgs &args)
{
    const CFormulaFile opened{std::string(args.m_file)};
    IWaveformFile *file = opened.Get();
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
    return FindFileKind(formula) != nullptr;
}

bool NeedsType(const std::string &formula)
{
    const tesk::SFormulaKind *kind = FindFileKind(formula);
    return kind != nullptr && kind->kind != tesk::EFormulaKind::Custom;
}

std::optional<SReplayArguments> ReplayArguments(const std::string &formula)
{
    const tesk::SFormulaKind *kind = FindFileKind(formula);
    CFileFormulaArgs args;
    if (kind == nullptr || kind->kind != tesk::EFormulaKind::Custom || !ParseArguments(formula, *kind, args))
        return std::nullopt;
    bool isWhole = true;
    for (const SimpleString::CStr *part : {&args.m_start, &args.m_end, &args.m_offset, &args.m_repeat, &args.m_cancel})
        isWhole = isWhole && part->IsEmpty();
    return SReplayArguments{std::string(args.m_file), SpelledName(args), isWhole};
}

std::string FindReplayedType(const std::string &formula)
{
    const tesk::SFormulaKind *kind = FindFileKind(formula);
    CFileFormulaArgs args;
    if (kind == nullptr || kind->kind != tesk::EFormulaKind::Custom || !ParseArguments(formula, *kind, args))
        return {};
    const CFormulaFile file{std::string(args.m_file)};
    if (file.Get() == nullptr)
        return {};
    const SFileSignal *signal = FindSignal(*file.Get(), args);
    return signal != nullptr ? signal->type.GetTypeInfoString() : FindPartType(*file.Get(), args);
}

std::string ExplainFileFormula(const std::string &formula, const std::string &error)
{
    const tesk::SFormulaKind *kind = FindFileKind(formula);
    if (kind == nullptr)
        return {};
    const SKindText &text = TextOf(kind->kind);
    CFileFormulaArgs args;
    if (!ParseArguments(formula, *kind, args))
        return "what stands behind " + std::string(kind->keyword) + " cannot be read" +
               (error.empty() ? "" : " (" + error + ")") + "; write " + std::string(kind->keyword) + ' ' + text.form;
    const std::string file(args.m_file);
    const std::string fault = FindFileFault(file, text.extension);
    if (!fault.empty())
        return fault;
    const std::string matFault = kind->kind == tesk::EFormulaKind::Mat ? ExplainMatFormula(args) : "";
    if (!matFault.empty())
        return file + ": " + matFault;
    if (!error.empty())
        return error.find(file) != std::string::npos ? error : file + ": " + error;
    return kind->kind == tesk::EFormulaKind::Custom ? ExplainReplay(args) : text.advice;
}

void WarnOfLoss(const std::string &formula)
{
    const tesk::SFormulaKind *kind = FindFileKind(formula);
    CFileFormulaArgs args;
    if (kind == nullptr || kind->kind != tesk::EFormulaKind::Mat || !ParseArguments(formula, *kind, args))
        return;
    const std::string loss = FindMatLoss(args);
    if (!loss.empty())
        TellWarning(std::string(args.m_file) + ": " + loss);
}
